// Compiles res/strings.txt into the C++ table of res/strings.h, res/menus.txt into menus and keys of
// res/tables.h, and res/dialogs.txt into dialogs there. The sources are UTF-8, so that they read in any editor;
// the tables are in the system's character set, so that the program needs no conversion. A few hundred lines:
// read whole, one pass. Nothing is written unless every line is sound.
#include "tools/rescompile.h"

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace
{
constexpr size_t TEXT_MAX = 1023; // characters; the buffer of GetResString holds no more

using Table = std::map<int, std::string>;

Table ReadTexts(const char *file)
{
    Line line{file, 0};
    std::ifstream in(file, std::ios::binary);
    if (!in)
        line.Refuse("the file cannot be read");
    Table table;
    std::string source;
    std::string *current = NULL; // the text that a continuation line adds to
    while (std::getline(in, source)) {
        ++line.number;
        size_t pos = source.find_first_not_of(" \t\r");
        if (pos == std::string::npos || source[pos] == '#') {
            current = NULL;
            continue;
        }
        if (source[pos] == '"' && current == NULL)
            line.Refuse("this text continues none");
        if (source[pos] != '"') {
            int number = TextNumber(line, source, &pos);
            auto [place, fresh] = table.emplace(number, "");
            if (!fresh)
                line.Refuse("number %d stands twice", number);
            current = &place->second;
        }
        *current += LastText(line, source, pos);
        if (current->size() > TEXT_MAX)
            line.Refuse("the text has more than %zu characters", TEXT_MAX);
    }
    if (in.bad())
        line.Refuse("the file cannot be read");
    if (table.empty())
        line.Refuse("there is no text in this file");
    return table;
}

struct Item {
    int level;
    int id;
    bool separator;
    std::string text;
};
using Menu = std::vector<Item>;
struct Key {
    int command;
    std::string key;
};
struct MenuFile {
    std::map<int, Menu> menus;
    std::vector<Key> keys;
};

constexpr int INDENT = 4;    // blanks a level
constexpr int LEVEL_MAX = 4; // popups within popups; nobody finds what lies deeper

/// Is this "F5", "Ctrl+Shift+S" and the like? Modifiers stand in this order, and what types a character has
/// one.
bool IsKey(std::string_view key)
{
    static const std::set<std::string_view> named = {"Esc", "Del",  "Ins", "Home", "End",   "PgUp",  "PgDown",
                                                     "Up",  "Down", "Tab", "Left", "Right", "Return"};
    bool command = false;
    for (std::string_view modifier : {"Ctrl+", "Alt+", "Shift+"}) {
        if (!key.starts_with(modifier))
            continue;
        key.remove_prefix(modifier.size());
        command |= modifier != "Shift+";
    }
    if (key.size() == 1)
        return command && std::string_view("ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789").find(key) != key.npos;
    if (named.contains(key))
        return true;
    static const std::set<std::string_view> functions = {"F1", "F2", "F3", "F4",  "F5",  "F6",
                                                         "F7", "F8", "F9", "F10", "F11", "F12"};
    return functions.contains(key);
}

/// The text in quotes at `pos`, not empty, in the system's character set.
std::string LabelText(const Line &line, const std::string &source, size_t pos)
{
    std::string text = LastText(line, source, pos);
    if (text.empty())
        line.Refuse("the text is empty");
    return text;
}

/// Reads menus and keys, line by line.
class MenuReader
{
public:
    explicit MenuReader(const char *file) : line{file, 0} {}

    MenuFile Read()
    {
        std::ifstream in(line.file, std::ios::binary);
        if (!in)
            line.Refuse("the file cannot be read");
        std::string source;
        while (std::getline(in, source)) {
            ++line.number;
            size_t pos = source.find_first_not_of(" \t\r");
            if (pos != std::string::npos && source[pos] != '#')
                ReadLine(source, pos);
        }
        if (in.bad())
            line.Refuse("the file cannot be read");
        CloseMenu();
        if (found.menus.empty())
            line.Refuse("there is no menu in this file");
        auto before = [](const Key &a, const Key &b) { return a.command < b.command; };
        std::stable_sort(found.keys.begin(), found.keys.end(), before);
        return std::move(found);
    }

private:
    void ReadLine(const std::string &source, size_t pos)
    {
        if (source.find('\t') < pos)
            line.Refuse("the indentation has tabs; a level is %d blanks", INDENT);
        if (pos % INDENT != 0)
            line.Refuse("the indentation is no multiple of %d blanks", INDENT);
        if (pos != 0)
            ReadItem(source, pos);
        else if (TakeWord(source, &pos, "menu"))
            OpenMenu(source, pos);
        else if (TakeWord(source, &pos, "key"))
            ReadKey(source, pos);
        else
            line.Refuse("\"menu\", \"key\" or an indented item is expected");
    }

    void OpenMenu(const std::string &source, size_t pos)
    {
        CloseMenu();
        size_t end = source.find_last_not_of(" \t\r") + 1;
        size_t digits = source.find_first_not_of("0123456789", pos);
        if (pos == end || std::min(digits, source.size()) != end || end - pos > 5)
            line.Refuse("a number up to 65535 is expected behind \"menu\"");
        int id = std::stoi(source.substr(pos, end - pos));
        if (id < 1 || id > 65535)
            line.Refuse("a number up to 65535 is expected behind \"menu\"");
        auto [place, fresh] = found.menus.emplace(id, Menu());
        if (!fresh)
            line.Refuse("menu %d stands twice", id);
        menu = &place->second;
    }

    void ReadItem(const std::string &source, size_t pos)
    {
        if (!menu)
            line.Refuse("this item belongs to no menu");
        int level = static_cast<int>(pos) / INDENT - 1;
        if (level >= LEVEL_MAX)
            line.Refuse("popups lie at most %d levels deep", LEVEL_MAX - 1);
        CheckLevel(level);
        Item item = {level, 0, false, ""};
        if (TakeWord(source, &pos, "separator")) {
            if (pos != source.size())
                line.Refuse("something stands behind the separator");
            item.separator = true;
        } else if (TakeWord(source, &pos, "popup")) {
            item.text = LabelText(line, source, pos);
        } else {
            item.id = TextNumber(line, source, &pos);
            item.text = LabelText(line, source, pos);
            CheckCommand(item.id);
        }
        menu->push_back(item);
    }

    /// An item stands as deep as the one above it, or less, or right below a popup; a popup is not left empty.
    void CheckLevel(int level)
    {
        bool below = !menu->empty() && IsPopup(menu->back());
        int deepest = menu->empty() ? 0 : menu->back().level + (below ? 1 : 0);
        if (level > deepest)
            line.Refuse("this item stands deeper than its popup's items");
        if (below && level < deepest)
            line.Refuse("the popup above has no items");
    }

    static bool IsPopup(const Item &item) { return !item.separator && item.id == 0; }

    void CheckCommand(int id)
    {
        if (id == 0)
            line.Refuse("commands begin at 1");
        for (const Item &item : *menu)
            if (item.id == id)
                line.Refuse("command %d stands twice in this menu", id);
    }

    /// Ends the menu that is being read.
    void CloseMenu()
    {
        if (menu && menu->empty())
            line.Refuse("the menu above has no items");
        if (menu && IsPopup(menu->back()))
            line.Refuse("the popup above has no items");
        menu = NULL;
    }

    void ReadKey(const std::string &source, size_t pos)
    {
        CloseMenu();
        int command = TextNumber(line, source, &pos);
        std::string key = LabelText(line, source, pos);
        if (command == 0)
            line.Refuse("commands begin at 1");
        if (!IsKey(key))
            line.Refuse("\"%s\" is no key", key.c_str());
        for (const Key &other : found.keys)
            if (other.key == key)
                line.Refuse("%s is the key of command %d already", key.c_str(), other.command);
        found.keys.push_back({command, key});
    }

    Line line;
    MenuFile found;
    Menu *menu = NULL; // view: the one that items add to
};

void WriteTable(std::ostream &out, const Table &table)
{
    out << "// Made by tools/rescompile.\n#include \"res/strings.h\"\n\nconst ResSTRING resStrings[] = {\n";
    for (const auto &[number, text] : table)
        out << "    {" << number << ", " << Literal(text) << "},\n";
    out << "};\nconst int resStringCount = " << table.size() << ";\n";
}

void WriteItems(std::ostream &out, int id, const Menu &menu)
{
    out << "const ResMENUITEM items" << id << "[] = {\n";
    for (const Item &item : menu)
        out << "    {" << item.level << ", " << item.id << ", "
            << (item.separator ? "NULL" : Literal(item.text)) << "},\n";
    out << "};\n";
}

/// An array has an element at least; the count beside it tells the truth.
void WriteMenus(std::ostream &out, const MenuFile &file)
{
    out << "// Made by tools/rescompile.\n#include \"res/tables.h\"\n\nnamespace\n{\n";
    for (const auto &[id, menu] : file.menus)
        WriteItems(out, id, menu);
    out << "} // namespace\n\nconst ResMENU resMenus[] = {\n";
    for (const auto &[id, menu] : file.menus)
        out << "    {" << id << ", items" << id << ", " << menu.size() << "},\n";
    out << "};\nconst int resMenuCount = " << file.menus.size() << ";\n\nconst ResACCEL resAccels[] = {\n";
    for (const Key &key : file.keys)
        out << "    {" << key.command << ", \"" << key.key << "\"},\n";
    if (file.keys.empty())
        out << "    {0, \"\"},\n";
    out << "};\nconst int resAccelCount = " << file.keys.size() << ";\n";
}
} // namespace

int main(int argc, char **argv)
{
    std::string_view option = argc == 4 ? argv[1] : "";
    if (argc != 3 && option != "--menus" && option != "--dialogs") {
        std::fprintf(stderr, "usage: rescompile STRINGS.txt TABLE.cpp\n"
                             "       rescompile --menus MENUS.txt TABLE.cpp\n"
                             "       rescompile --dialogs DIALOGS.txt TABLE.cpp\n");
        return 2;
    }
    const char *source = argv[argc - 2];
    const char *target = argv[argc - 1];
    std::ostringstream text;
    if (option == "--menus")
        WriteMenus(text, MenuReader(source).Read());
    else if (option == "--dialogs")
        CompileDialogs(source, text);
    else
        WriteTable(text, ReadTexts(source));
    std::ofstream out(target, std::ios::binary);
    out << text.str();
    out.close();
    if (!out.good()) {
        std::fprintf(stderr, "%s: cannot be written\n", target);
        std::remove(target);
        return 1;
    }
    return 0;
}
