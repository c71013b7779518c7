#include "support/child.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <stdexcept>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace
{
enum { SECONDS = 60, THREW = 99 };

[[noreturn]] void BeTheChild(int err, const std::function<void()> &body)
{
    rlimit noCore = {0, 0};
    setrlimit(RLIMIT_CORE, &noCore);
    dup2(err, STDERR_FILENO);
    close(err);
    alarm(SECONDS);
    try {
        body();
    } catch (...) {
        _exit(THREW);
    }
    _exit(0);
}

std::string ReadAll(int fd)
{
    std::string text;
    char block[4096];
    for (;;) {
        ssize_t n = read(fd, block, sizeof block);
        if (n > 0)
            text.append(block, static_cast<size_t>(n));
        else if (n == 0 || errno != EINTR)
            return text;
    }
}

std::string Description(const ChildEnd &end)
{
    std::string how =
        end.signal ? "signal " + std::to_string(end.signal) : "exit code " + std::to_string(end.exitCode);
    return "the child ended with " + how + " and wrote:\n" + end.err;
}
} // namespace

ChildEnd RunInChild(const std::function<void()> &body)
{
    int ends[2];
    if (pipe(ends) != 0)
        throw std::runtime_error("no pipe for a child");
    std::fflush(NULL); // or the child would write the parent's buffered text once more
    pid_t pid = fork();
    if (pid == 0) {
        close(ends[0]);
        BeTheChild(ends[1], body);
    }
    close(ends[1]);
    ChildEnd end;
    if (pid > 0)
        end.err = ReadAll(ends[0]);
    close(ends[0]);
    if (pid < 0)
        throw std::runtime_error("no child process");
    int status = 0;
    while (waitpid(pid, &status, 0) < 0 && errno == EINTR)
        ;
    if (WIFEXITED(status))
        end.exitCode = WEXITSTATUS(status);
    else if (WIFSIGNALED(status))
        end.signal = WTERMSIG(status);
    return end;
}

testing::AssertionResult AbortsWith(const std::string &text, const std::function<void()> &body)
{
    ChildEnd end = RunInChild(body);
    if (end.signal == SIGABRT && end.err == text + "\n")
        return testing::AssertionSuccess();
    return testing::AssertionFailure() << "expected an abort saying:\n" << text << "\n" << Description(end);
}

testing::AssertionResult AbortsOnAssertion(const std::string &condition, const std::string &file,
                                           const std::function<void()> &body)
{
    ChildEnd end = RunInChild(body);
    std::string start = "Assertion failed: " + condition + ", file " + file + ", line ";
    std::string rest = end.err.substr(0, start.size()) == start ? end.err.substr(start.size()) : "";
    size_t digits = rest.find_first_not_of("0123456789");
    if (end.signal == SIGABRT && digits != 0 && digits != std::string::npos && rest.substr(digits) == "\n")
        return testing::AssertionSuccess();
    return testing::AssertionFailure() << "expected an abort saying:\n" << start << "N\n" << Description(end);
}
