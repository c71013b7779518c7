// The compiler of texts, menus, keys and dialogs, as a child process on small files.
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
    int CompileDialogs(const std::string &source) { return Run("--dialogs ", "dialogs.txt", source); }
    /// The same of a dialog of 100 x 50 units with these lines.
    int CompileLines(const std::string &lines) { return CompileDialogs("dialog 7 \"a\" 100 50\n" + lines); }

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

TEST_F(Rescompile, WritesDialogsWithTheirControlsInTheOrderOfTheFile)
{
    EXPECT_EQ(CompileDialogs("# Bemerkung\n"
                             "dialog 20 \"Gr\u00F6\u00DFe\" 100 50\r\n"
                             "    label -1 \"&L\u00E4nge [m]\\n\\\"?\\\"\" 1 2 30 10 right\n"
                             "\n"
                             "    edit 100 \"\" 31 2 40 13\r\n"
                             "    # zwischen den Zeilen\n"
                             "    picture 101 22200 0 20 28 30\n"
                             "\tbutton\t102  30 70 20 30 30   bitmap  notab\t\n"
                             "dialog 21 \"b\" 1000 1000\n"
                             "    choice 65535 \"\" 0 0 1000 1000 sort hidden grey notab\n"),
              0)
        << said;
    EXPECT_EQ(table,
              "// Made by tools/rescompile.\n#include \"res/tables.h\"\n\nnamespace\n{\n"
              "const ResCONTROL controls20[] = {\n"
              "    {RES_LABEL, -1, \"&L\\344nge [m]\\012\\042\\077\\042\", 0, 1, 2, 30, 10, RES_RIGHT},\n"
              "    {RES_EDIT, 100, \"\", 0, 31, 2, 40, 13, 0},\n"
              "    {RES_PICTURE, 101, \"\", 22200, 0, 20, 28, 30, 0},\n"
              "    {RES_BUTTON, 102, \"\", 30, 70, 20, 30, 30, RES_BITMAP | RES_NOTAB},\n"
              "};\n"
              "const ResCONTROL controls21[] = {\n"
              "    {RES_CHOICE, 65535, \"\", 0, 0, 0, 1000, 1000, RES_SORT | RES_NOTAB | RES_HIDDEN | "
              "RES_GREY},\n"
              "};\n"
              "} // namespace\n\n"
              "const ResDIALOG resDialogs[] = {\n"
              "    {20, \"Gr\\366\\337e\", 100, 50, controls20, 4},\n"
              "    {21, \"b\", 1000, 1000, controls21, 1},\n"
              "};\nconst int resDialogCount = 2;\n");
    EXPECT_EQ(said, "");
}

TEST_F(Rescompile, KnowsTheKindsOfControlsWithTheirStyles)
{
    const struct {
        const char *line; // without place
        const char *style;
        const char *row; // of the table, up to the place
    } cases[] = {
        {"label 5 \"a\"", "right", "{RES_LABEL, 5, \"a\", 0,"},
        {"label 5 \"a\"", "center", "{RES_LABEL, 5, \"a\", 0,"},
        {"picture 5 9", "hidden", "{RES_PICTURE, 5, \"\", 9,"},
        {"picture 5 0", "grey", "{RES_PICTURE, 5, \"\", 0,"},
        {"frame 5 \"a\"", "hidden", "{RES_FRAME, 5, \"a\", 0,"},
        {"edit 5 \"\"", "grey", "{RES_EDIT, 5, \"\", 0,"},
        {"memo 5 \"\"", "notab", "{RES_MEMO, 5, \"\", 0,"},
        {"combo 5 \"\"", "sort", "{RES_COMBO, 5, \"\", 0,"},
        {"choice 5 \"\"", "sort", "{RES_CHOICE, 5, \"\", 0,"},
        {"list 5 \"\"", "sort", "{RES_LIST, 5, \"\", 0,"},
        {"button 5 9", "bitmap", "{RES_BUTTON, 5, \"\", 9,"},
        {"button 5 \"a\"", "notab", "{RES_BUTTON, 5, \"a\", 0,"},
        {"default 5 \"a && b\"", "grey", "{RES_DEFAULT, 5, \"a && b\", 0,"},
        {"check 5 \"&a\"", "push", "{RES_CHECK, 5, \"&a\", 0,"},
        {"check3 5 \"a\"", "push", "{RES_CHECK3, 5, \"a\", 0,"},
        {"radio 5 \"a\"", "push", "{RES_RADIO, 5, \"a\", 0,"},
        {"radio 5 9", "push bitmap", "{RES_RADIO, 5, \"\", 9,"},
        {"check 5 9", "bitmap", "{RES_CHECK, 5, \"\", 9,"},
        {"check3 5 9", "bitmap", "{RES_CHECK3, 5, \"\", 9,"},
    };
    for (const auto &c : cases) {
        EXPECT_EQ(CompileLines(std::string("    ") + c.line + " 0 0 9 9 " + c.style + "\n"), 0)
            << c.line << said;
        EXPECT_NE(table.find(c.row), std::string::npos) << c.line << table;
    }
}

TEST_F(Rescompile, RefusesEachFaultOfADialogWithItsLineAndWritesNothing)
{
    const struct {
        std::string source;
        const char *message;
    } cases[] = {
        {"", "dialogs.txt:0: there is no dialog in this file\n"},
        {"# nichts\n", "dialogs.txt:1: there is no dialog in this file\n"},
        {"dialogs 7\n", "dialogs.txt:1: \"dialog\" or an indented control is expected\n"},
        {"menu 7\n", "dialogs.txt:1: \"dialog\" or an indented control is expected\n"},
        {"dialog\n", "dialogs.txt:1: the dialog's number is expected\n"},
        {"dialog x\n", "dialogs.txt:1: the dialog's number is expected\n"},
        {"dialog 7x\n", "dialogs.txt:1: the dialog's number is expected\n"},
        {"dialog 0 \"a\" 9 9\n", "dialogs.txt:1: the dialog's number is expected, from 1 to 65535\n"},
        {"dialog 65536 \"a\" 9 9\n", "dialogs.txt:1: the dialog's number is expected, from 1 to 65535\n"},
        {"dialog 99999999999999999999 \"a\" 9 9\n",
         "dialogs.txt:1: the dialog's number is expected, from 1 to 65535\n"},
        {"dialog 7\n", "dialogs.txt:1: a text in quotes is expected\n"},
        {"dialog 7 a 9 9\n", "dialogs.txt:1: a text in quotes is expected\n"},
        {"dialog 7 \"\" 9 9\n", "dialogs.txt:1: the caption is empty\n"},
        {"dialog 7 \"a\n", "dialogs.txt:1: the closing quote is missing\n"},
        {"dialog 7 \"a\"9 9\n", "dialogs.txt:1: a blank is expected behind the closing quote\n"},
        {"dialog 7 \"a\"\n", "dialogs.txt:1: the width is expected\n"},
        {"dialog 7 \"a\" 0 9\n", "dialogs.txt:1: the width is expected, from 1 to 1000\n"},
        {"dialog 7 \"a\" 9\n", "dialogs.txt:1: the height is expected\n"},
        {"dialog 7 \"a\" 9 1001\n", "dialogs.txt:1: the height is expected, from 1 to 1000\n"},
        {"dialog 7 \"a\" 9 9 9\n", "dialogs.txt:1: something stands behind the height\n"},
        {"dialog 7 \"a\" 9 9\n", "dialogs.txt:1: the dialog above has no controls\n"},
        {"dialog 7 \"a\" 9 9\n\ndialog 8 \"a\" 9 9\n", "dialogs.txt:3: the dialog above has no controls\n"},
        {"dialog 7 \"a\" 9 9\n  frame 1 \"\" 0 0 9 9\ndialog 7 \"b\" 9 9\n",
         "dialogs.txt:3: dialog 7 stands twice\n"},
        {"dialog 7 \"a\" 9 9\n  frame 1 \"\" 0 0 9 9\ndialog 6 \"b\" 9 9\n",
         "dialogs.txt:3: dialog 6 stands behind dialog 7; they are sorted\n"},
        {"    edit 1 \"\" 0 0 9 9\n", "dialogs.txt:1: this control belongs to no dialog\n"},
    };
    for (const auto &c : cases) {
        EXPECT_EQ(CompileDialogs(c.source), 1) << c.source;
        EXPECT_EQ(said, c.message) << c.source;
        EXPECT_EQ(table, "") << c.source;
    }
}

TEST_F(Rescompile, RefusesEachFaultOfAControlWithItsLineAndWritesNothing)
{
    const struct {
        std::string lines;
        const char *message;
    } cases[] = {
        {"  slider 1 \"\" 0 0 9 9\n", "dialogs.txt:2: \"slider\" is no kind of control\n"},
        {"  Edit 1 \"\" 0 0 9 9\n", "dialogs.txt:2: \"Edit\" is no kind of control\n"},
        {"  edit\n", "dialogs.txt:2: the control's number is expected\n"},
        {"  edit \"\" 1 0 0 9 9\n", "dialogs.txt:2: the control's number is expected\n"},
        {"  edit -2 \"\" 0 0 9 9\n", "dialogs.txt:2: the control's number is expected, from -1 to 65535\n"},
        {"  edit 65536 \"\" 0 0 9 9\n", "dialogs.txt:2: the control's number is expected, from -1 to 65535\n"},
        {"  label 0 \"a\" 0 0 9 9\n",
         "dialogs.txt:2: controls are numbered from 1, or -1 where nobody asks for them\n"},
        {"  edit -1 \"\" 0 0 9 9\n", "dialogs.txt:2: this edit needs a number\n"},
        {"  label 1 a 0 0 9 9\n", "dialogs.txt:2: a text in quotes or the number of a picture is expected\n"},
        {"  label 1\n", "dialogs.txt:2: a text in quotes or the number of a picture is expected\n"},
        {"  label 1 5 0 0 9 9\n", "dialogs.txt:2: a text in quotes is expected\n"},
        {"  label 1 \"\u65e5\" 0 0 9 9\n",
         "dialogs.txt:2: a character is outside Windows-1252, or not UTF-8\n"},
        {"  label 1 \"a\\q\" 0 0 9 9\n", "dialogs.txt:2: unknown escape; \\n \\t \\\" \\\\ are known\n"},
        {"  button 1 5 0 0 9 9\n", "dialogs.txt:2: a text in quotes is expected\n"},
        {"  button 1 \"a\" 0 0 9 9 bitmap\n",
         "dialogs.txt:2: the number of a picture is expected in place of the text\n"},
        {"  picture 1 \"5\" 0 0 9 9\n",
         "dialogs.txt:2: the number of a picture is expected in place of the text\n"},
        {"  picture 1 65536 0 0 9 9\n",
         "dialogs.txt:2: a text in quotes or the number of a picture is expected, from 0 to 65535\n"},
        {"  edit 1 \"a\" 0 0 9 9\n",
         "dialogs.txt:2: this edit shows no text of its own; its label stands before it\n"},
        {"  edit 1 \"\"\n", "dialogs.txt:2: the left edge is expected\n"},
        {"  edit 1 \"\" 0\n", "dialogs.txt:2: the upper edge is expected\n"},
        {"  edit 1 \"\" 0 0\n", "dialogs.txt:2: the width is expected\n"},
        {"  edit 1 \"\" 0 0 9\n", "dialogs.txt:2: the height is expected\n"},
        {"  edit 1 \"\" -1 0 9 9\n", "dialogs.txt:2: the left edge is expected, from 0 to 1000\n"},
        {"  edit 1 \"\" 0 1001 9 9\n", "dialogs.txt:2: the upper edge is expected, from 0 to 1000\n"},
        {"  edit 1 \"\" 0 0 0 9\n", "dialogs.txt:2: the width is expected, from 1 to 1000\n"},
        {"  edit 1 \"\" 0 0 9 0\n", "dialogs.txt:2: the height is expected, from 1 to 1000\n"},
        {"  edit 1 \"\" 0 0 9 9.5\n", "dialogs.txt:2: the height is expected\n"},
        {"  edit 1 \"\" 0 0 9 9 9\n", "dialogs.txt:2: \"9\" is no style\n"},
        {"  edit 1 \"\" 0 0 9 9 gray\n", "dialogs.txt:2: \"gray\" is no style\n"},
        {"  edit 1 \"\" 0 0 9 9 sort\n", "dialogs.txt:2: no edit has the style \"sort\"\n"},
        {"  frame 1 \"\" 0 0 9 9 notab\n", "dialogs.txt:2: no frame has the style \"notab\"\n"},
        {"  list 1 \"\" 0 0 9 9 sort sort\n", "dialogs.txt:2: the style \"sort\" stands twice\n"},
        {"  label 1 \"a\" 0 0 9 9 right center\n", "dialogs.txt:2: a text stands right or in the middle\n"},
        {"  edit 1 \"\" 92 0 9 9\n",
         "dialogs.txt:2: this control reaches out of its dialog, which has 100 x 50 units\n"},
        {"  edit 1 \"\" 0 42 9 9\n",
         "dialogs.txt:2: this control reaches out of its dialog, which has 100 x 50 units\n"},
        {"  edit 1 \"\" 0 0 9 9\n  list 1 \"\" 0 0 9 9\n",
         "dialogs.txt:3: control 1 stands twice in this dialog\n"},
        {"  default 1 \"a\" 0 0 9 9\n  default 2 \"b\" 0 0 9 9\n",
         "dialogs.txt:3: control 1 is the default button already\n"},
        {"  button 1 \"a&\" 0 0 9 9\n",
         "dialogs.txt:2: & stands before the letter or digit of a mnemonic; && is the character itself\n"},
        {"  button 1 \"a & b\" 0 0 9 9\n",
         "dialogs.txt:2: & stands before the letter or digit of a mnemonic; && is the character itself\n"},
        {"  button 1 \"&a&b\" 0 0 9 9\n", "dialogs.txt:2: a text has one mnemonic\n"},
        {"  label -1 \"&a\" 0 0 9 9\n",
         "dialogs.txt:2: this mnemonic leads to nothing: what it stands for follows the label\n"},
        {"  label -1 \"&a\" 0 0 9 9\n  frame 5 \"b\" 0 0 9 9\n",
         "dialogs.txt:2: this mnemonic leads to nothing: what it stands for follows the label\n"},
        {"  button 1 \"&\u00C4ndern\" 0 0 9 9\n  edit 2 \"\" 0 0 9 9\n  check 3 \"h&\u00E4lt\" 0 0 9 9\n",
         "dialogs.txt:4: the control of line 2 has this mnemonic already\n"},
    };
    for (const auto &c : cases) {
        EXPECT_EQ(CompileLines(c.lines), 1) << c.lines;
        EXPECT_EQ(said, c.message) << c.lines;
        EXPECT_EQ(table, "") << c.lines;
    }
}

TEST_F(Rescompile, LetsHiddenControlsAndOtherDialogsShareMnemonicsAndNumbers)
{
    EXPECT_EQ(CompileLines("    button 1 \"&a\" 0 0 9 9\n"
                           "    button 2 \"&A\" 0 0 9 9 hidden\n"
                           "    button 3 \"a&&b\" 0 0 9 9\n"
                           "    label -1 \"x\" 0 0 9 9\n"
                           "    label -1 \"&b\" 0 0 9 9\n"
                           "    edit 4 \"\" 0 0 9 9\n"
                           "dialog 8 \"a\" 9 9\n"
                           "    button 1 \"&a\" 0 0 9 9\n"),
              0)
        << said;
}

TEST_F(Rescompile, SaysWhichFileItCannotRead)
{
    std::string command = "cd " + folder + " && " RESCOMPILE_PROGRAM " --menus keine.txt table.cpp 2>said";
    EXPECT_NE(std::system(command.c_str()), 0);
    EXPECT_EQ(Bytes(folder + "/said"), "keine.txt:0: the file cannot be read\n");
    EXPECT_FALSE(std::filesystem::exists(folder + "/table.cpp"));
}
