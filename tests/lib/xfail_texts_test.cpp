// What the failure protocol shows: messages, status texts, assertions, and the texts with which the process
// ends.
#include "lib/platform.h"
#include "lib/xassert.h"
#include "lib/xfail.h"
#include "support/child.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstddef>
#include <cstring>
#include <functional>
#include <iterator>
#include <string>
#include <unistd.h>
#include <vector>

namespace
{
struct Shown {
    std::string text;
    bool marked = false; // error look of a message, beep of a status text
    const char *buffer = NULL;
};
std::vector<Shown> messages, statuses;

void KeepMessage(const char *text, bool error)
{
    messages.push_back({text, error, text});
}

void KeepStatus(const char *text, bool beep)
{
    statuses.push_back({text, beep, text});
}

class Texts : public testing::Test
{
protected:
    void SetUp() override
    {
        messages.clear();
        statuses.clear();
        formerMessage = SetMessageSink(KeepMessage);
        formerStatus = SetStatusSink(KeepStatus);
    }
    void TearDown() override
    {
        EXPECT_EQ(SetMessageSink(formerMessage), KeepMessage);
        EXPECT_EQ(SetStatusSink(formerStatus), KeepStatus);
    }
    MessageSink formerMessage;
    StatusSink formerStatus;
};
} // namespace

TEST_F(Texts, ALeadingExclamationMarkAsksForTheErrorLookAndIsNotShown)
{
    Message("Datei \"%s\" hat %d Zeilen", "a.sc1", 12);
    Message("!Datei \"%s\" fehlt", "b.sc1");
    Message("!!zwei");
    Message("!");
    Message("%s", "!kein Zeichen des Formats");
    Message("eins!");
    const Shown expected[] = {
        {"Datei \"a.sc1\" hat 12 Zeilen", false},
        {"Datei \"b.sc1\" fehlt", true},
        {"!zwei", true},
        {"", true},
        {"!kein Zeichen des Formats", false},
        {"eins!", false},
    };
    ASSERT_EQ(messages.size(), std::size(expected));
    for (size_t i = 0; i < messages.size(); ++i) {
        EXPECT_EQ(messages[i].text, expected[i].text);
        EXPECT_EQ(messages[i].marked, expected[i].marked) << expected[i].text;
    }
}

TEST_F(Texts, AStatusTextBeepsOrEmptiesTheLine)
{
    StatusMessage("Auswertung %d%%", 40);
    StatusMessage("!Außerhalb");
    StatusMessage(NULL);
    const Shown expected[] = {{"Auswertung 40%", false}, {"Außerhalb", true}, {"", false}};
    ASSERT_EQ(statuses.size(), std::size(expected));
    for (size_t i = 0; i < statuses.size(); ++i) {
        EXPECT_EQ(statuses[i].text, expected[i].text);
        EXPECT_EQ(statuses[i].marked, expected[i].marked);
    }
    EXPECT_TRUE(messages.empty());
}

TEST_F(Texts, OneBufferOf512HoldsThemAll)
{
    const std::string exact(511, 'a');
    for (int length : {510, 511, 512, 5000}) {
        std::string text(static_cast<size_t>(length), 'a');
        Message("%s", text.c_str());
        Message("!%s", text.c_str());
        StatusMessage("%s", text.c_str());
        EXPECT_EQ(messages.back().text, text.substr(0, 511));
        EXPECT_EQ((messages.end() - 2)->text, text.substr(0, 511));
        EXPECT_EQ(statuses.back().text, text.substr(0, 511));
        EXPECT_EQ(messages.back().buffer, statuses.back().buffer);
    }
}

TEST_F(Texts, AnAssertionShowsTheConditionAsWrittenAndEvaluatesItOnce)
{
    const char *here = "tests/lib/xfail_texts_test.cpp";
    int n = 0;
    ASSERT(++n == 1);
    ASSERT_AS(++n == 2, "n == 2");
    EXPECT_EQ(n, 2);
    EXPECT_TRUE(messages.empty());
    SetMessageSink(formerMessage);
    EXPECT_TRUE(AbortsOnAssertion("n == 3 && n > 0", here, [&] { ASSERT(n == 3 && n > 0); }));
    EXPECT_TRUE(AbortsOnAssertion("n==3", here, [&] { ASSERT_AS(n == 3, "n==3"); }));
    SetMessageSink(KeepMessage);
}

TEST_F(Texts, NoSinkBringsTheDefaultBack)
{
    EXPECT_EQ(SetMessageSink(NULL), KeepMessage);
    EXPECT_EQ(SetMessageSink(KeepMessage), formerMessage);
    EXPECT_EQ(SetStatusSink(NULL), KeepStatus);
    EXPECT_EQ(SetStatusSink(KeepStatus), formerStatus);
    TerminateSink former = SetTerminateSink(NULL);
    EXPECT_EQ(SetTerminateSink(former), former);
}

TEST(Defaults, AMessageIsALineOnStandardErrorAndAStatusTextIsNone)
{
    ChildEnd end = RunInChild([] {
        Message("Fertig");
        Message("!Datei \"%s\" fehlt", "x");
        StatusMessage("Auswertung läuft");
        StatusMessage(NULL);
    });
    EXPECT_EQ(end.exitCode, 0);
    EXPECT_EQ(end.err, "Fertig\nDatei \"x\" fehlt\n");
}

TEST(Terminate, EndsTheProcessAbnormallyAtOnce)
{
    ChildEnd end = RunInChild([] { Terminate(); });
    EXPECT_EQ(end.signal, SIGABRT);
    EXPECT_EQ(end.err, "");
    end = RunInChild([] {
        SetTerminateSink([] { _exit(7); });
        TerminateOn(XFREAD, "some.cpp", 3);
    });
    EXPECT_EQ(end.exitCode, 7);
    EXPECT_EQ(end.err, "Terminate on exception: XFREAD, file some.cpp, line 3\n");
}

TEST(Terminate, ASinkThatReturnsDoesNotLetTheProcessGoOn)
{
    ChildEnd end = RunInChild([] {
        SetTerminateSink([] {});
        Terminate();
    });
    EXPECT_EQ(end.signal, SIGABRT);
}

TEST(Terminate, FatalTextsAskForTheErrorLookAnAssertionDoesNot)
{
    const struct {
        std::function<void()> fatal;
        const char *look;
    } rows[] = {
        {[] { TerminateOn(XFREAD, "f.cpp", 1); }, "error"},
        {[] { xCode = XALLOC, TerminateOn(XFREAD, "f.cpp", 1); }, "error"},
        {[] { XMissing("f.cpp", 1); }, "error"},
        {[] { AssertFailed("a", "f.cpp", 1); }, "information"},
    };
    for (const auto &row : rows) {
        ChildEnd end = RunInChild([&] {
            SetMessageSink([](const char *, bool error) {
                const char *look = error ? "error" : "information";
                if (write(STDERR_FILENO, look, std::strlen(look)) < 0)
                    _exit(1);
            });
            row.fatal();
        });
        EXPECT_EQ(end.signal, SIGABRT);
        EXPECT_EQ(end.err, row.look);
    }
}
