// A program of ours run as a child process in a folder, and what came of it.
#ifndef TESTS_SUPPORT_RUNPROGRAM_H
#define TESTS_SUPPORT_RUNPROGRAM_H

#include "support/folder.h"

#include <fcntl.h>
#include <functional>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

struct ProgramRun {
    int exitCode = -1; // of a program that exited, else -1
    int signal = 0;    // that ended it, 0 if it exited
    std::string out;
    std::string err;
};

/// Starts it with both outputs in files of `outputs`. `before` runs in the child: limits, rights, environment.
inline pid_t StartProgram(std::vector<std::string> args, const std::string &workFolder, const FOLDER &outputs,
                          const std::function<void()> &before = {})
{
    std::vector<char *> argv;
    for (std::string &arg : args)
        argv.push_back(arg.data());
    argv.push_back(NULL);
    pid_t pid = fork();
    if (pid != 0)
        return pid;
    for (int fd : {STDOUT_FILENO, STDERR_FILENO}) {
        std::string file = outputs.Path(fd == STDOUT_FILENO ? "out" : "err");
        dup2(open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600), fd);
    }
    if (before)
        before();
    if (chdir(workFolder.c_str()) == 0)
        execv(argv[0], argv.data());
    _exit(126);
}

inline ProgramRun RunProgram(const std::vector<std::string> &args, const std::string &workFolder,
                             const std::function<void()> &before = {})
{
    FOLDER outputs;
    pid_t pid = StartProgram(args, workFolder, outputs, before);
    int status = 0;
    waitpid(pid, &status, 0);
    ProgramRun run;
    if (WIFEXITED(status))
        run.exitCode = WEXITSTATUS(status);
    if (WIFSIGNALED(status))
        run.signal = WTERMSIG(status);
    run.out = outputs.Get("out");
    run.err = outputs.Get("err");
    return run;
}

#endif
