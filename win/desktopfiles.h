// Which program the desktop has for a kind of file, as its own databases say: the kinds of extensions
// (mime/globs2), the user's and the system's choices (mimeapps.list), what programs offer (mimeinfo.cache), and
// the .desktop files that these name. The files have some thousand lines and are read once a question; nothing
// is started to find out.
#ifndef WIN_DESKTOPFILES_H
#define WIN_DESKTOPFILES_H

#include <string>
#include <vector>

/// The kind of files with that extension, ".pdf" in any case: "application/pdf"; "" for an unknown one. Throws
/// std::bad_alloc, as the other one does.
std::string DesktopKind(const std::string &extension);

/// The command that opens `file`, a native path, with the desktop's program for files of that kind: program and
/// arguments in UTF-8, empty where there is no such program.
std::vector<std::string> DesktopCommand(const std::string &kind, const std::string &file);

#endif
