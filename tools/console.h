// What the companion programs share: their start-up, messages on standard error, and the border between the
// terminal, which speaks UTF-8 and native paths, and the system, which speaks Windows-1252 and names of its
// own.
#ifndef TOOLS_CONSOLE_H
#define TOOLS_CONSOLE_H

#include "lib/cde.h"
#include "lib/xfail.h"

#include <string>

/// The first call of main: resources, the failure hook, messages in UTF-8 on standard error. Afterwards
/// standard input, output and error are open, and a reader that goes away is a failed write, not the end of the
/// process.
void ConsoleStart();

/// A line on standard error, for a text of the system's.
void ConsoleMessage(const char *text, bool error);

/// A path from the command line as a name of the system. One that would not come back as it was given
/// (characters outside the set, more of them than fit, blanks or dots that names do not keep) raises `code`,
/// which is XFOPEN for what is to be read and XFCREATE for what is to be written.
void ConsoleName(CdeFILENAME &name, const char *path, XCODE code);

/// A text of the system in UTF-8. Throws std::bad_alloc.
std::string ConsoleUtf8(const char *text);
/// Makes control characters other than the line break into '?': what comes out of a file must not steer the
/// terminal. In place, for UTF-8.
void ConsoleDisarm(char *text);

/// Writes UTF-8 text to standard output, all of it: XFWRITE.
void ConsoleWrite(const std::string &text);

#endif
