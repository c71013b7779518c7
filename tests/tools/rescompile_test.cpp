// The compiler of texts, menus and keys, as a child process on small files.
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>
#include <sys/wait.h>

namespace
{
class Rescompile : public testing::Test
{
protected:
    Rescompile()
    {
        char pattern[] = "/tmp/rescompile-XXXXXX";
        folder = mkdtemp(pattern);
    }
    ~Rescompile() override { std::filesystem::remove_all(folder); }

    static std::string Bytes(const std::string &path)
    {
        std::ifstream file(path, std::ios::binary);
        std::ostringstream bytes;
        bytes << file.rdbuf();
        return bytes.str();
    }

    /// The exit status; what the compiler made and said is in `table` and `said`.
    int Compile(const std::string &source) { return Run("", "texts.txt", source); }
    int CompileMenus(const std::string &source) { return Run("--menus ", "menus.txt", source); }

    int Run(const std::string &option, const std::string &file, const std::string &source)
    {
        std::filesystem::remove(folder + "/table.cpp");
        std::ofstream(folder + "/" + file, std::ios::binary) << source;
        std::string command =
            "cd " + folder + " && " RESCOMPILE_PROGRAM " " + option + file + " table.cpp 2>said";
        int status = std::system(command.c_str());
        table = Bytes(folder + "/table.cpp");
        said = Bytes(folder + "/said");
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

    std::string folder;
    std::string table;
    std::string said;
};
} // namespace

TEST_F(Rescompile, SortsTheTextsAndWritesThemInTheSystemsCharacterSet)
{
    EXPECT_EQ(
        Compile("# Bemerkung\n20 \"Größe 5 €\\n\"\n\n  10\t\"a\\\\b\\t\\\"c\\\"?\"\r\n     \" weiter\"\n"), 0)
        << said;
    EXPECT_EQ(table,
              "// Made by tools/rescompile.\n#include \"res/strings.h\"\n\nconst ResSTRING resStrings[] = {\n"
              "    {10, \"a\\134b\\011\\042c\\042\\077 weiter\"},\n"
              "    {20, \"Gr\\366\\337e 5 \\200\\012\"},\n"
              "};\nconst int resStringCount = 2;\n");
    EXPECT_EQ(said, "");
}

TEST_F(Rescompile, TakesTextsOfUpToAThousandAndTwentyThreeCharacters)
{
    std::string half = "\"" + std::string(512, 'x') + "\"\n";
    EXPECT_EQ(Compile("1 \"" + std::string(511, 'x') + "\"\n  " + half), 0) << said;
    EXPECT_EQ(Compile("1 " + half + "  " + half), 1);
    EXPECT_EQ(said, "texts.txt:2: the text has more than 1023 characters\n");
}

TEST_F(Rescompile, RefusesEachFaultWithItsLineAndWritesNothing)
{
    const struct {
        std::string source;
        const char *message;
    } cases[] = {
        {"1 \"a\"\n2 \"b\"\n1 \"c\"\n", "texts.txt:3: number 1 stands twice\n"},
        {"\n1 \"\u65e5\"\n", "texts.txt:2: a character is outside Windows-1252, or not UTF-8\n"},
        {"1 \"\xFC\"\n", "texts.txt:1: a character is outside Windows-1252, or not UTF-8\n"},
        {"1 \"a\n", "texts.txt:1: the closing quote is missing\n"},
        {"1 \"a\\", "texts.txt:1: unknown escape; \\n \\t \\\" \\\\ are known\n"},
        {"1 \"a\\x\"\n", "texts.txt:1: unknown escape; \\n \\t \\\" \\\\ are known\n"},
        {"1 \"a\" b\n", "texts.txt:1: something stands behind the closing quote\n"},
        {"1 \"a\tb\"\n", "texts.txt:1: a control character stands in the text\n"},
        {std::string("1 \"a\0b\"\n", 8), "texts.txt:1: a control character stands in the text\n"},
        {"1\n", "texts.txt:1: a blank and a text in quotes are expected behind the number\n"},
        {"1\"a\"\n", "texts.txt:1: a blank and a text in quotes are expected behind the number\n"},
        {"1 a\n", "texts.txt:1: a text in quotes is expected\n"},
        {"a \"1\"\n", "texts.txt:1: a number is expected\n"},
        {"70000 \"a\"\n", "texts.txt:1: numbers end at 65535\n"},
        {"99999999999999999999 \"a\"\n", "texts.txt:1: numbers end at 65535\n"},
        {"\"a\"\n", "texts.txt:1: this text continues none\n"},
        {"1 \"a\"\n\n  \"b\"\n", "texts.txt:3: this text continues none\n"},
        {"# nichts\n", "texts.txt:1: there is no text in this file\n"},
    };
    for (const auto &c : cases) {
        EXPECT_EQ(Compile(c.source), 1) << c.source;
        EXPECT_EQ(said, c.message) << c.source;
        EXPECT_EQ(table, "") << c.source;
    }
}

TEST_F(Rescompile, WritesMenusAndKeysSortedByNumber)
{
    EXPECT_EQ(CompileMenus("# Bemerkung\n"
                           "key 30 \"Ctrl+Shift+S\"\n"
                           "menu 20\r\n"
                           "    7 \"\u00D6&ffnen...\"\r\n"
                           "menu 10\n"
                           "    popup \"&Datei\"\n"
                           "        1 \"Neu?\"\n"
                           "\n"
                           "        separator\n"
                           "        # zwischen den Zeilen\n"
                           "        popup \"Mehr\"\n"
                           "            2 \"a\\\"b\"\n"
                           "        3 \"c\"\n"
                           "    4 \"d\"\n"
                           "key 4 \"F5\"\n"
                           "key 30 \"Del\"\n"),
              0)
        << said;
    EXPECT_EQ(table, "// Made by tools/rescompile.\n#include \"res/tables.h\"\n\nnamespace\n{\n"
                     "const ResMENUITEM items10[] = {\n"
                     "    {0, 0, \"&Datei\"},\n"
                     "    {1, 1, \"Neu\\077\"},\n"
                     "    {1, 0, NULL},\n"
                     "    {1, 0, \"Mehr\"},\n"
                     "    {2, 2, \"a\\042b\"},\n"
                     "    {1, 3, \"c\"},\n"
                     "    {0, 4, \"d\"},\n"
                     "};\n"
                     "const ResMENUITEM items20[] = {\n"
                     "    {0, 7, \"\\326&ffnen...\"},\n"
                     "};\n"
                     "} // namespace\n\n"
                     "const ResMENU resMenus[] = {\n"
                     "    {10, items10, 7},\n"
                     "    {20, items20, 1},\n"
                     "};\nconst int resMenuCount = 2;\n\n"
                     "const ResACCEL resAccels[] = {\n"
                     "    {4, \"F5\"},\n"
                     "    {30, \"Ctrl+Shift+S\"},\n"
                     "    {30, \"Del\"},\n"
                     "};\nconst int resAccelCount = 3;\n");
}

TEST_F(Rescompile, CountsNoKeysWhereThereAreNone)
{
    EXPECT_EQ(CompileMenus("menu 1\n    2 \"a\"\n"), 0) << said;
    EXPECT_NE(table.find("{0, \"\"},\n};\nconst int resAccelCount = 0;\n"), std::string::npos) << table;
}

TEST_F(Rescompile, KnowsTheKeysOfACommand)
{
    for (const char *key : {"Ctrl+N", "Alt+F4", "Ctrl+Alt+Shift+F12", "Shift+Ins", "Esc", "Del", "F1", "Ctrl+0",
                            "Ctrl+PgDown", "Return", "Tab", "Home", "End", "Up", "Left"})
        EXPECT_EQ(CompileMenus(std::string("menu 1\n    2 \"a\"\nkey 2 \"") + key + "\"\n"), 0) << key << said;
    for (const char *key : {"N", "7", "Shift+N", "Strg+N", "ctrl+N", "Ctrl+n", "Shift+Ctrl+N", "Ctrl+Ctrl+N",
                            "Ctrl+", "Ctrl", "Ctrl+Entf", "F0", "F13", "Ctrl+ N", "Ctrl+\u00C4"})
        EXPECT_EQ(CompileMenus(std::string("menu 1\n    2 \"a\"\nkey 2 \"") + key + "\"\n"), 1) << key;
}

TEST_F(Rescompile, RefusesEachFaultOfAMenuWithItsLineAndWritesNothing)
{
    const struct {
        std::string source;
        const char *message;
    } cases[] = {
        {"", "menus.txt:0: there is no menu in this file\n"},
        {"key 1 \"F1\"\n", "menus.txt:1: there is no menu in this file\n"},
        {"menu\n", "menus.txt:1: a number up to 65535 is expected behind \"menu\"\n"},
        {"menu x\n", "menus.txt:1: a number up to 65535 is expected behind \"menu\"\n"},
        {"menu 1 2\n", "menus.txt:1: a number up to 65535 is expected behind \"menu\"\n"},
        {"menu 0\n", "menus.txt:1: a number up to 65535 is expected behind \"menu\"\n"},
        {"menu 65536\n", "menus.txt:1: a number up to 65535 is expected behind \"menu\"\n"},
        {"menu 99999999999999999999\n", "menus.txt:1: a number up to 65535 is expected behind \"menu\"\n"},
        {"menus 1\n", "menus.txt:1: \"menu\", \"key\" or an indented item is expected\n"},
        {"7 \"a\"\n", "menus.txt:1: \"menu\", \"key\" or an indented item is expected\n"},
        {"menu 1\n    2 \"a\"\nmenu 1\n", "menus.txt:3: menu 1 stands twice\n"},
        {"menu 1\n", "menus.txt:1: the menu above has no items\n"},
        {"menu 1\nkey 2 \"F1\"\n", "menus.txt:2: the menu above has no items\n"},
        {"menu 1\nmenu 2\n", "menus.txt:2: the menu above has no items\n"},
        {"    2 \"a\"\n", "menus.txt:1: this item belongs to no menu\n"},
        {"menu 1\n    2 \"a\"\nkey 2 \"F1\"\n    3 \"b\"\n", "menus.txt:4: this item belongs to no menu\n"},
        {"menu 1\n\t2 \"a\"\n", "menus.txt:2: the indentation has tabs; a level is 4 blanks\n"},
        {"menu 1\n   2 \"a\"\n", "menus.txt:2: the indentation is no multiple of 4 blanks\n"},
        {"menu 1\n        2 \"a\"\n", "menus.txt:2: this item stands deeper than its popup's items\n"},
        {"menu 1\n    2 \"a\"\n        3 \"b\"\n",
         "menus.txt:3: this item stands deeper than its popup's items\n"},
        {"menu 1\n    separator\n        3 \"b\"\n",
         "menus.txt:3: this item stands deeper than its popup's items\n"},
        {"menu 1\n    popup \"a\"\n    3 \"b\"\n", "menus.txt:3: the popup above has no items\n"},
        {"menu 1\n    popup \"a\"\n", "menus.txt:2: the popup above has no items\n"},
        {"menu 1\n    popup \"a\"\n        popup \"b\"\n            popup \"c\"\n                popup \"d\"\n"
         "                    5 \"e\"\n",
         "menus.txt:6: popups lie at most 3 levels deep\n"},
        {"menu 1\n    popup\n", "menus.txt:2: a text in quotes is expected\n"},
        {"menu 1\n    popup \"\"\n", "menus.txt:2: the text is empty\n"},
        {"menu 1\n    2 \"\"\n", "menus.txt:2: the text is empty\n"},
        {"menu 1\n    2 \"a\n", "menus.txt:2: the closing quote is missing\n"},
        {"menu 1\n    2\n", "menus.txt:2: a blank and a text in quotes are expected behind the number\n"},
        {"menu 1\n    0 \"a\"\n", "menus.txt:2: commands begin at 1\n"},
        {"menu 1\n    70000 \"a\"\n", "menus.txt:2: numbers end at 65535\n"},
        {"menu 1\n    2 \"\u65e5\"\n", "menus.txt:2: a character is outside Windows-1252, or not UTF-8\n"},
        {"menu 1\n    2 \"a\"\n    2 \"b\"\n", "menus.txt:3: command 2 stands twice in this menu\n"},
        {"menu 1\n    separator 5\n", "menus.txt:2: something stands behind the separator\n"},
        {"menu 1\n    2 \"a\"\nkey 0 \"F1\"\n", "menus.txt:3: commands begin at 1\n"},
        {"menu 1\n    2 \"a\"\nkey \"F1\"\n", "menus.txt:3: a number is expected\n"},
        {"menu 1\n    2 \"a\"\nkey 2 \"F77\"\n", "menus.txt:3: \"F77\" is no key\n"},
        {"menu 1\n    2 \"a\"\nkey 2 \"F1\"\nkey 3 \"F1\"\n",
         "menus.txt:4: F1 is the key of command 2 already\n"},
    };
    for (const auto &c : cases) {
        EXPECT_EQ(CompileMenus(c.source), 1) << c.source;
        EXPECT_EQ(said, c.message) << c.source;
        EXPECT_EQ(table, "") << c.source;
    }
}

TEST_F(Rescompile, SaysWhichFileItCannotRead)
{
    std::string command = "cd " + folder + " && " RESCOMPILE_PROGRAM " --menus keine.txt table.cpp 2>said";
    EXPECT_NE(std::system(command.c_str()), 0);
    EXPECT_EQ(Bytes(folder + "/said"), "keine.txt:0: the file cannot be read\n");
    EXPECT_FALSE(std::filesystem::exists(folder + "/table.cpp"));
}
