// Runs a piece of a test in a child process, for what ends a process: assertions, fatal texts, exit codes. The
// child is a fork, so it sees everything that the test has set up; nothing that it changes comes back, failed
// expectations in it included.
#ifndef TESTS_SUPPORT_CHILD_H
#define TESTS_SUPPORT_CHILD_H

#include <gtest/gtest.h>

#include <functional>
#include <string>

struct ChildEnd {
    std::string err;   // all that the child wrote to standard error
    int exitCode = -1; // of a child that exited, else -1
    int signal = 0;    // that ended the child, 0 if it exited
};

/// Runs `body` and waits. A body that returns ends the child with exit code 0, without leak check, handlers at
/// exit or flushing; one that throws with exit code 99; one that runs for more than 60 s with SIGALRM.
ChildEnd RunInChild(const std::function<void()> &body);

/// That `body` aborts and leaves nothing on standard error but `text` and a newline.
testing::AssertionResult AbortsWith(const std::string &text, const std::function<void()> &body);

/// That `body` aborts with the text of a failed assertion: this condition, in this file (as the build names it,
/// for example "lib/array.h"), at whatever line.
testing::AssertionResult AbortsOnAssertion(const std::string &condition, const std::string &file,
                                           const std::function<void()> &body);

#endif
