// The child runner that other tests lean on: it must see every kind of end, and refuse the wrong one.
#include "support/child.h"
#include "lib/xfail.h"

#include <gtest/gtest.h>

#include <csignal>
#include <string>
#include <unistd.h>

TEST(Child, TellsHowItEnded)
{
    ChildEnd end = RunInChild([] { _exit(3); });
    EXPECT_EQ(end.exitCode, 3);
    EXPECT_EQ(end.signal, 0);
    end = RunInChild([] { throw 1; });
    EXPECT_EQ(end.exitCode, 99);
    end = RunInChild([] { raise(SIGKILL); });
    EXPECT_EQ(end.signal, SIGKILL);
    EXPECT_EQ(end.exitCode, -1);
    end = RunInChild([] {
        std::string text(200000, 'x'); // more than a pipe holds
        if (write(STDERR_FILENO, text.data(), text.size()) != static_cast<ssize_t>(text.size()))
            _exit(1);
    });
    EXPECT_EQ(end.exitCode, 0);
    EXPECT_EQ(end.err.size(), 200000u);
}

TEST(Child, AbortExpectationsRefuseAnyOtherEnd)
{
    auto say = [](const char *text, bool die) {
        return [=] {
            Message("%s", text);
            if (die)
                Terminate();
        };
    };
    EXPECT_TRUE(AbortsWith("a", say("a", true)));
    EXPECT_FALSE(AbortsWith("a", say("a", false)));
    EXPECT_FALSE(AbortsWith("a", say("ab", true)));
    EXPECT_FALSE(AbortsWith("ab", say("a", true)));
    EXPECT_TRUE(AbortsOnAssertion("c", "f", say("Assertion failed: c, file f, line 12", true)));
    EXPECT_FALSE(AbortsOnAssertion("c", "f", say("Assertion failed: c, file f, line 12", false)));
    EXPECT_FALSE(AbortsOnAssertion("c", "f", say("Assertion failed: d, file f, line 12", true)));
    EXPECT_FALSE(AbortsOnAssertion("c", "f", say("Assertion failed: c, file g, line 12", true)));
    EXPECT_FALSE(AbortsOnAssertion("c", "f", say("Assertion failed: c, file f, line ", true)));
    EXPECT_FALSE(AbortsOnAssertion("c", "f", say("Assertion failed: c, file f, line 12x", true)));
}
