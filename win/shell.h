// What the program asks of the desktop: to start a program, to open a file with the program that it belongs to,
// and to show the help. File names are in the system's character set and form.
#ifndef WIN_SHELL_H
#define WIN_SHELL_H

#include <cstddef>

enum { WIN_SHELL_OK = 33, WIN_SHELL_NOFILE = 2, WIN_SHELL_DENIED = 5, WIN_SHELL_NOPROGRAM = 31 };

/// Starts a program with one argument, a file or NULL for none; it lives on by itself.
/// @return above 32 where it runs, else why not: WIN_SHELL_NOFILE, WIN_SHELL_DENIED
int ShellStart(const char *program, const char *argument);
/// Whether the desktop has a program for files of that extension, ".pdf".
bool ShellCanOpen(const char *extension);
/// Opens a file with the desktop's program for it. @return as ShellStart, or WIN_SHELL_NOPROGRAM
int ShellOpen(const char *file);
/// Shows a help file at one of its contexts, 0 for its beginning, in the help viewer beside the program.
/// @return as ShellStart
int WinHelp(const char *file, int context);

/// What tests put in the place of the desktop. `start` gets a native path and its arguments, parted by line
/// breaks; NULL members: the real thing.
struct TShellDoor {
    int (*start)(const char *program, const char *arguments) = NULL;
    bool (*canOpen)(const char *extension) = NULL;
    int (*open)(const char *file) = NULL;
};
TShellDoor SetShellDoor(const TShellDoor &door); // @return the former one

#endif
