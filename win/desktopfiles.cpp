#include "win/desktopfiles.h"

#include <algorithm>
#include <cctype>
#include <climits>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>
#include <unistd.h>

namespace
{
enum { FILE_MAX = 16 << 20 }; // bytes of a database that are read

using Words = std::vector<std::string>;

Words Split(const std::string &text, char separator)
{
    Words parts;
    std::istringstream in(text);
    for (std::string part; std::getline(in, part, separator);)
        if (!part.empty())
            parts.push_back(part);
    return parts;
}

std::string Lower(std::string text)
{
    for (char &c : text)
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return text;
}

std::string Trimmed(const std::string &text)
{
    size_t begin = text.find_first_not_of(" \t\r");
    size_t end = text.find_last_not_of(" \t\r");
    return begin == std::string::npos ? std::string() : text.substr(begin, end - begin + 1);
}

std::string Joined(const std::string &folder, const std::string &name)
{
    return (std::filesystem::path(folder) / name).string();
}

std::string Variable(const char *name)
{
    const char *value = std::getenv(name);
    return value ? value : "";
}

/// Only a full path may stand in these variables; what is relative does not count.
Words Folders(const char *homeVariable, const char *homeDefault, const char *listVariable,
              const char *listDefault)
{
    std::string home = Variable(homeVariable);
    if (home.empty() && !Variable("HOME").empty())
        home = Variable("HOME") + homeDefault;
    std::string list = Variable(listVariable);
    Words folders = {home};
    for (const std::string &folder : Split(list.empty() ? listDefault : list, ':'))
        folders.push_back(folder);
    std::erase_if(folders, [](const std::string &folder) { return folder.empty() || folder[0] != '/'; });
    return folders;
}

Words DataFolders()
{
    return Folders("XDG_DATA_HOME", "/.local/share", "XDG_DATA_DIRS", "/usr/local/share:/usr/share");
}

/// The lines of a regular file, as many as fit into FILE_MAX bytes; none of a file that cannot be read.
Words Lines(const std::string &path)
{
    Words lines;
    std::error_code unknown;
    if (!std::filesystem::is_regular_file(path, unknown))
        return lines;
    std::ifstream in(path, std::ios::binary);
    std::string bytes(std::min<uintmax_t>(std::filesystem::file_size(path, unknown), FILE_MAX), '\0');
    in.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    bytes.resize(static_cast<size_t>(in.gcount()));
    return Split(bytes, '\n');
}

/// Calls back with key and value of each line of a group: "[group]", then "key=value".
template <class CALLBACK>
void EachEntry(const std::string &path, const std::string &group, const CALLBACK &callback)
{
    bool isInside = false;
    for (const std::string &raw : Lines(path)) {
        std::string line = Trimmed(raw);
        size_t equals = line.find('=');
        if (line.starts_with('['))
            isInside = line == "[" + group + "]";
        else if (isInside && !line.starts_with('#') && equals != std::string::npos)
            callback(Trimmed(line.substr(0, equals)), Trimmed(line.substr(equals + 1)));
    }
}

std::string Entry(const std::string &path, const std::string &group, const std::string &key)
{
    std::string found;
    bool has = false;
    EachEntry(path, group, [&](const std::string &name, const std::string &value) {
        if (name == key && !has)
            found = value;
        has = has || name == key;
    });
    return found;
}

/// The .desktop files that a line of a database names for a kind of file.
Words Named(const std::string &path, const std::string &group, const std::string &kind)
{
    return Split(Entry(path, group, kind), ';');
}

/// The file of an identifier: its '-' may stand for folders.
std::string DesktopFile(const std::string &id)
{
    if (!id.ends_with(".desktop") || id.find('/') != std::string::npos)
        return {};
    for (const std::string &folder : DataFolders()) {
        std::string name = id;
        for (size_t dash = 0; dash != std::string::npos; dash = name.find('-', 1)) {
            if (dash > 0)
                name[dash] = '/';
            std::string path = Joined(folder, "applications/" + name);
            std::error_code unknown;
            if (std::filesystem::is_regular_file(path, unknown))
                return path;
        }
    }
    return {};
}

bool IsProgram(const std::string &path)
{
    std::error_code unknown;
    return std::filesystem::is_regular_file(path, unknown) && access(path.c_str(), X_OK) == 0;
}

/// Where a program lies, "" where it is not installed.
std::string FindProgram(const std::string &name)
{
    if (name.find('/') != std::string::npos)
        return IsProgram(name) ? name : std::string();
    std::string path = Variable("PATH");
    for (const std::string &folder : Split(path.empty() ? "/usr/local/bin:/usr/bin:/bin" : path, ':')) {
        std::string program = Joined(folder, name);
        if (!name.empty() && IsProgram(program))
            return program;
    }
    return {};
}

/// Resolves the escapes that every value may hold.
std::string Unescaped(const std::string &value)
{
    std::string text;
    for (size_t i = 0; i < value.size(); ++i) {
        if (value[i] != '\\' || i + 1 == value.size()) {
            text += value[i];
            continue;
        }
        static const std::string letters = "sntr\\", meanings = " \n\t\r\\";
        size_t which = letters.find(value[++i]);
        if (which == std::string::npos)
            text += {'\\', value[i]}; // a quoted argument's own
        else
            text += meanings[which];
    }
    return text;
}

/// The arguments of a command line as the value of Exec has it: parted by blanks, some in double quotes.
Words Arguments(const std::string &line)
{
    Words arguments;
    std::string word;
    bool isQuoted = false, hasWord = false;
    for (size_t i = 0; i < line.size(); ++i) {
        char c = line[i];
        if (c == '"') {
            isQuoted = !isQuoted;
            hasWord = true;
        } else if (c == '\\' && isQuoted && i + 1 < line.size()) {
            word += line[++i];
        } else if (c == ' ' && !isQuoted) {
            if (hasWord)
                arguments.push_back(word);
            word.clear();
            hasWord = false;
        } else {
            word += c;
            hasWord = true;
        }
    }
    if (hasWord)
        arguments.push_back(word);
    return arguments;
}

std::string Address(const std::string &file)
{
    static const char digits[] = "0123456789ABCDEF";
    std::string address = "file://";
    for (unsigned char c : file) {
        if (std::isalnum(c) || std::string_view("/-._~").find(static_cast<char>(c)) != std::string_view::npos)
            address += static_cast<char>(c);
        else
            address += {'%', digits[c >> 4], digits[c & 15]};
    }
    return address;
}

/// An argument with its codes replaced: %f, %F the file, %u, %U its address, %% a percent sign; the others
/// stand for nothing here.
std::string Filled(const std::string &argument, const std::string &file, bool *takesFile)
{
    std::string text;
    for (size_t i = 0; i < argument.size(); ++i) {
        if (argument[i] != '%' || i + 1 == argument.size()) {
            text += argument[i];
            continue;
        }
        char code = argument[++i];
        bool isFile = code == 'f' || code == 'F', isAddress = code == 'u' || code == 'U';
        *takesFile = *takesFile || isFile || isAddress;
        text += isFile ? file : isAddress ? Address(file) : code == '%' ? "%" : "";
    }
    return text;
}

/// The command of a program that is installed and has windows of its own, else nothing.
Words CommandOf(const std::string &desktopFile, const std::string &file)
{
    const char *group = "Desktop Entry";
    std::string tried = Unescaped(Entry(desktopFile, group, "TryExec"));
    Words command, arguments = Arguments(Unescaped(Entry(desktopFile, group, "Exec")));
    bool isUsable = !arguments.empty() && Entry(desktopFile, group, "Hidden") != "true" &&
                    Entry(desktopFile, group, "Terminal") != "true" &&
                    (tried.empty() || !FindProgram(tried).empty()) && !FindProgram(arguments[0]).empty();
    if (!isUsable)
        return command;
    bool takesFile = false;
    command.push_back(FindProgram(arguments[0]));
    for (size_t i = 1; i < arguments.size(); ++i) {
        std::string argument = Filled(arguments[i], file, &takesFile);
        if (!argument.empty())
            command.push_back(argument);
    }
    if (!takesFile)
        command.push_back(file);
    return command;
}

/// The lists of choices, the ones that count most first.
Words ChoiceLists()
{
    Words folders = Folders("XDG_CONFIG_HOME", "/.config", "XDG_CONFIG_DIRS", "/etc/xdg"), lists;
    for (const std::string &folder : DataFolders())
        folders.push_back(folder + "/applications");
    for (const std::string &folder : folders) {
        for (const std::string &desktop : Split(Variable("XDG_CURRENT_DESKTOP"), ':'))
            lists.push_back(folder + "/" + Lower(desktop) + "-mimeapps.list");
        lists.push_back(folder + "/mimeapps.list");
    }
    return lists;
}

/// All .desktop files that are named for a kind of file, the best first.
Words Candidates(const std::string &kind)
{
    Words candidates, offered;
    std::set<std::string> removed;
    for (const std::string &list : ChoiceLists()) {
        for (const std::string &id : Named(list, "Default Applications", kind))
            candidates.push_back(id);
        for (const std::string &id : Named(list, "Added Associations", kind))
            if (!removed.contains(id))
                offered.push_back(id);
        for (const std::string &id : Named(list, "Removed Associations", kind))
            removed.insert(id);
    }
    for (const std::string &folder : DataFolders())
        for (const std::string &id : Named(folder + "/applications/mimeinfo.cache", "MIME Cache", kind))
            if (!removed.contains(id))
                offered.push_back(id);
    candidates.insert(candidates.end(), offered.begin(), offered.end());
    return candidates;
}
} // namespace

std::string DesktopKind(const std::string &extension)
{
    std::string pattern = "*" + Lower(extension), found;
    int best = INT_MIN;
    for (const std::string &folder : DataFolders()) {
        for (const std::string &line : Lines(folder + "/mime/globs2")) {
            Words fields = Split(Trimmed(line), ':'); // weight, kind, pattern, and marks that may follow
            if (line.starts_with('#') || fields.size() < 3 || Lower(fields[2]) != pattern)
                continue;
            int weight = std::atoi(fields[0].c_str());
            if (weight > best)
                found = fields[1];
            best = std::max(best, weight);
        }
    }
    if (found.empty() && pattern == "*.pdf") // the database is a package of its own
        found = "application/pdf";
    return found;
}

std::vector<std::string> DesktopCommand(const std::string &kind, const std::string &file)
{
    Words command;
    for (const std::string &id : Candidates(kind)) {
        std::string desktopFile = DesktopFile(id);
        if (command.empty() && !desktopFile.empty())
            command = CommandOf(desktopFile, file);
    }
    return command;
}
