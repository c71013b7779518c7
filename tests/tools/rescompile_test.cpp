// The compiler of the numbered texts, as a child process on small files.
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
    int Compile(const std::string &source)
    {
        std::ofstream(folder + "/texts.txt", std::ios::binary) << source;
        std::string command = "cd " + folder + " && " RESCOMPILE_PROGRAM " texts.txt table.cpp 2>said";
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
