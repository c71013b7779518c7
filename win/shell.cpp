#include "win/shell.h"

#include "lib/cde.h"
#include "lib/charstr.h"
#include "lib/disk.h"
#include "win/desktopfiles.h"
#include "win/utf8.h"

#include <QProcess>
#include <QString>
#include <QStringList>
#include <cerrno>
#include <filesystem>
#include <unistd.h>
#include <utility>
#include <vector>

namespace
{
const char STOCK_VIEWER[] = "Winhlp32.exe"; // goes before ours where it lies there
const char OWN_VIEWER[] = "zulhelp";

TShellDoor door;

/// Whether the calling process may do that with a file: WIN_SHELL_OK or why not.
int Access(const std::string &path, int mode)
{
    std::error_code unknown;
    if (access(path.c_str(), mode) != 0)
        return errno == ENOENT || errno == ENOTDIR ? WIN_SHELL_NOFILE : WIN_SHELL_DENIED;
    return std::filesystem::is_regular_file(path, unknown) ? WIN_SHELL_OK : WIN_SHELL_DENIED;
}

/// Starts a program by its native path.
int Start(const std::string &program, const std::vector<std::string> &arguments)
{
    if (door.start) {
        std::string joined;
        for (const std::string &argument : arguments)
            joined += (joined.empty() ? "" : "\n") + argument;
        return door.start(program.c_str(), joined.c_str());
    }
    int access = Access(program, X_OK);
    if (access != WIN_SHELL_OK)
        return access;
    QStringList list;
    for (const std::string &argument : arguments)
        list << QString::fromStdString(argument);
    return QProcess::startDetached(QString::fromStdString(program), list) ? WIN_SHELL_OK : WIN_SHELL_DENIED;
}

/// A name in its native form, "" where it has none.
std::string Native(const char *name)
{
    char path[NATIVE_MAX];
    return NameToNative(path, name, sizeof path) ? path : "";
}

std::string BesideProgram(const char *name)
{
    CdeFILENAME file = ProgramFolder();
    file.AddName(name);
    return Native(file);
}

/// A full path: a program that is started may take "-x.pdf" for an option.
std::string Absolute(const std::string &path)
{
    std::error_code unknown;
    std::filesystem::path whole = std::filesystem::absolute(path, unknown);
    return unknown ? path : whole.string();
}
} // namespace

int ShellStart(const char *program, const char *argument)
{
    std::string path = Native(program);
    if (path.empty())
        return WIN_SHELL_NOFILE;
    std::vector<std::string> arguments;
    if (argument != NULL && argument[0] != EOS)
        arguments.push_back(Native(argument));
    return Start(path, arguments);
}

bool ShellCanOpen(const char *extension)
{
    if (door.canOpen)
        return door.canOpen(extension);
    std::string kind = DesktopKind(ToUtf8(extension));
    return !kind.empty() && !DesktopCommand(kind, "/").empty();
}

int ShellOpen(const char *file)
{
    if (door.open)
        return door.open(file);
    std::string path = Native(file);
    int access = path.empty() ? WIN_SHELL_NOFILE : Access(path, R_OK);
    if (access != WIN_SHELL_OK)
        return access;
    std::string kind = DesktopKind(std::filesystem::path(path).extension().string());
    std::vector<std::string> command;
    if (!kind.empty())
        command = DesktopCommand(kind, Absolute(path));
    if (command.empty())
        return WIN_SHELL_NOPROGRAM;
    return Start(command[0], {command.begin() + 1, command.end()});
}

int WinHelp(const char *file, int context)
{
    std::string help = Native(file);
    std::string viewer = BesideProgram(STOCK_VIEWER);
    std::error_code unknown;
    if (help.empty())
        return WIN_SHELL_NOFILE;
    if (std::filesystem::exists(viewer, unknown))
        return context == 0 ? Start(viewer, {help}) : Start(viewer, {"-n", std::to_string(context), help});
    viewer = BesideProgram(OWN_VIEWER);
    return context == 0 ? Start(viewer, {help}) : Start(viewer, {help, std::to_string(context)});
}

TShellDoor SetShellDoor(const TShellDoor &newDoor)
{
    return std::exchange(door, newDoor);
}
