// What the platform does for the core library: messages, status line, order, dates, currency, the end.
#include "lib/charstr.h"
#include "lib/platform.h"
#include "lib/xfail.h"
#include "support/child.h"
#include "support/testapp.h"
#include "win/application.h"
#include "win/boxes.h"
#include "win/gadgets.h"
#include "win/testdoor.h"

#include <clocale>
#include <cstdlib>
#include <gtest/gtest.h>
#include <string>

TEST(Services, AreInstalledOnceAndRestored)
{
    TestApplication();
    static const auto mine = [](const char *, bool) {};
    MessageSink sink = mine;
    SetMessageSink(sink);
    InstallServices();
    InstallServices();
    EXPECT_STREQ(CurrencySymbol(), "\x80");
    RemoveServices();
    EXPECT_EQ(SetMessageSink(NULL), sink);
    RemoveServices();
}

TEST(Services, MessageIsABoxUnderTheProgramsName)
{
    TestServices services;
    std::string kind, caption, text;
    testdoor::Script([&](testdoor::ModalBox &box) {
        kind = box.Kind();
        caption = box.Caption();
        text = box.Text();
        box.Answer(WIN_ID_OK);
    });
    Message("!Datei \"%s\" zu gro\xDF!", "H\xE4lle");
    EXPECT_EQ(kind, "message");
    EXPECT_EQ(caption, TestApplication().Name());
    EXPECT_EQ(text, "Datei \"H\xE4lle\" zu gro\xDF!");
    EXPECT_EQ(testdoor::PendingScripts(), 0);
}

TEST(Services, StatusTextGoesToTheStatusWindow)
{
    TestServices services;
    StatusMessage("ohne Fenster");
    TStatusBar bar;
    TestApplication().SetStatusWindow(&bar);
    StatusMessage("Auswertung l\xE4uft %d", 7);
    EXPECT_EQ(bar.Text(), "Auswertung l\xE4uft 7");
    StatusMessage("!Halt");
    EXPECT_EQ(bar.Text(), "Halt");
    StatusMessage(NULL);
    EXPECT_EQ(bar.Text(), "");
    TestApplication().SetStatusWindow(NULL);
}

TEST(Services, TerminateEndsTheProcessAtOnce)
{
    TestServices services;
    ChildEnd end = RunInChild([] { Terminate(); });
    EXPECT_EQ(end.exitCode, EXIT_FAILURE);
}

TEST(Services, OrderIsGerman)
{
    TestServices services;
    static const struct {
        const char *first, *second;
        bool ignoreCase;
        int order;
    } table[] = {
        {"\xC4pfel", "Zebra", false, -1}, // not behind Z, where its code stands
        {"\xC4pfel", "Apfel", false, 1},  // an umlaut behind its vowel
        {"\xC4pfel", "Apfelsine", false, -1},
        {"apfel", "Apfel", true, 0},
        {"\xE4pfel", "\xC4pfel", true, 0},
        {"apfel", "Birne", false, -1},
        {"Stra\xDF\x65", "Strasse", false, 1},
        {"", "a", false, -1},
        {"", "", false, 0},
        {"gleich", "gleich", false, 0},
    };
    for (const auto &row : table) {
        EXPECT_EQ(Collate(row.first, row.second, row.ignoreCase), row.order) << row.first << " " << row.second;
        EXPECT_EQ(Collate(row.second, row.first, row.ignoreCase), -row.order) << row.second << " " << row.first;
    }
    EXPECT_NE(Collate("apfel", "Apfel", false), 0);
}

TEST(Services, DatesAreGermanWithFourDigitsOfTheYear)
{
    TestServices services;
    static const struct {
        int year, month, day, max;
        const char *text;
    } table[] = {
        {2026, 11, 21, 32, "21.11.2026"}, {2026, 3, 1, 32, "01.03.2026"}, {1999, 12, 31, 32, "31.12.1999"},
        {2026, 11, 21, 6, "21.11"},       {2026, 11, 21, 1, ""},          {2026, 13, 40, 32, ""},
    };
    for (const auto &row : table) {
        char text[32] = "?";
        ShortDate(row.year, row.month, row.day, text, row.max);
        EXPECT_STREQ(text, row.text) << row.year << " " << row.month << " " << row.day;
    }
}

TEST(Services, NumbersKeepTheirPoint)
{
    TestServices services;
    EXPECT_STREQ(std::localeconv()->decimal_point, ".");
    EXPECT_EQ(std::strtod("1.5", NULL), 1.5);
}

TEST(Services, ClockGoesForward)
{
    int before = WinTickCount();
    int after = WinTickCount();
    EXPECT_GE(before, 0);
    EXPECT_GE(after, before);
}

TEST(Services, WaitCursorsNest)
{
    TestApplication();
    EXPECT_FALSE(testdoor::IsWaitCursor());
    {
        TWaitCursor outer;
        {
            TWaitCursor inner;
            EXPECT_TRUE(testdoor::IsWaitCursor());
        }
        EXPECT_TRUE(testdoor::IsWaitCursor());
    }
    EXPECT_FALSE(testdoor::IsWaitCursor());
}
