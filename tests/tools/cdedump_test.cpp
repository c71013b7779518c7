// cdedump as its user meets it: a child process on files made by hand.
#include "support/cdeitems.h"
#include "support/chance.h"
#include "support/folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <sys/wait.h>

namespace
{
using std::string;

struct RUN {
    int status; // -1: ended by a signal
    string out;
    string err;
};

class CdeDump : public testing::Test
{
protected:
    FOLDER folder;

    /// Runs the program with these arguments, as a shell reads them, in the test's folder.
    RUN Run(const string &arguments, const string &output = "out")
    {
        string command = "cd " + folder.path + " && timeout 60 " + CDEDUMP + " " + arguments + " >" + output +
                         " 2>err </dev/null";
        int status = std::system(command.c_str());
        return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, folder.Get("out"), folder.Get("err")};
    }
    RUN Dump(const string &bytes)
    {
        folder.Put("file", bytes);
        return Run("file");
    }
};

string Bytes(std::initializer_list<int> values)
{
    string bytes;
    for (int value : values)
        bytes.push_back(static_cast<char>(value));
    return bytes;
}
} // namespace

TEST_F(CdeDump, PrintsEveryKindOfItemWithItsOffsetAndIndentation)
{
    CdeITEMS items = CdeITEMS{ItHeader("IE/GIM", 1),
                              ItSection(),
                              ItInt(-5),
                              ItReal(0.1),
                              ItSection(7),
                              ItStr("H\xE4ngelampe"),
                              ItEnd(),
                              ItText("Zeile 1\nZeile 2"),
                              ItReal(5400),
                              ItEnd()};
    RUN run = Dump(EncodeItems(items));
    EXPECT_EQ(run.out, "         0  header \"IE/GIM\" version 1\n"
                       "        12  section 0\n"
                       "        17    int -5\n"
                       "        22    real 0.1\n"
                       "        31    section 7\n"
                       "        36      string \"Hängelampe\"\n"
                       "        48    end\n"
                       "        49    text \"Zeile 1\\nZeile 2\"\n"
                       "        69    real 5400\n"
                       "        78  end\n"
                       "        79  eof\n");
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(run.status, 0);
}

TEST_F(CdeDump, PrintsNumbersThatComeBackTheSame)
{
    RUN run = Dump(EncodeItems({ItReal(1e300), ItReal(1.0 / 3), ItReal(NAN), ItReal(-INFINITY), ItReal(-0.0),
                                ItInt(INT32_MIN), ItInt(INT32_MAX)}));
    for (const char *line : {"real 1e+300\n", "real 0.3333333333333333\n", "real nan\n", "real -inf\n",
                             "real -0\n", "int -2147483648\n", "int 2147483647\n"})
        EXPECT_NE(run.out.find(line), string::npos) << line << " in\n" << run.out;
}

TEST_F(CdeDump, EscapesWhatWouldSteerTheTerminal)
{
    RUN run = Dump(EncodeItems({ItStr(string("\0\x1B[2J\t\r\x7F\x81\"\\\x80", 12)), ItHeader("\x9D\n", -1)}));
    EXPECT_EQ(run.out, "         0  string \"\\x00\\x1B[2J\\t\\r\\x7F\\x81\\\"\\\\€\"\n"
                       "        14  header \"\\x9D\\n\" version -1\n"
                       "        22  eof\n");
}

TEST_F(CdeDump, PrintsAnEmptyFileAsItsEnd)
{
    RUN run = Dump("");
    EXPECT_EQ(run.out, "         0  eof\n");
    EXPECT_EQ(run.status, 0);
}

TEST_F(CdeDump, PrintsAsFarAsTheFileIsSoundAndTellsWhereItIsNot)
{
    string head = EncodeItems({ItSection(), ItInt(1)}); // 10 bytes
    string lines = "         0  section 0\n         5    int 1\n";
    struct {
        string bytes;
        const char *finding;
    } rows[] = {
        {head + "A", "ab Byte 10 nicht in Ordnung: das Byte 0x41 ist kein Element"},
        {head + "\xA0", "ab Byte 10 nicht in Ordnung: das Byte 0xA0 ist kein Element"},
        {head + Bytes({0xA7, 0xFE, 0xFF, 0xFF, 0xFF}),
         "ab Byte 10 nicht in Ordnung: die Länge eines Textes ist negativ (-2)"},
        {head + Bytes({0xA7, 9, 0, 0, 0}) + "abc",
         "ab Byte 10 nicht in Ordnung: die Datei endet mitten in einem Element (text)"},
        {head + Bytes({0xA7, 0xFF, 0xFF, 0xFF, 0x7F}), "mitten in einem Element (text)"},
        {head + Bytes({0xA7, 0, 0}), "mitten in einem Element (text)"},
        {head + Bytes({0xA5}), "mitten in einem Element (string)"},
        {head + Bytes({0xA5, 3}) + "ab", "mitten in einem Element (string)"},
        {head + Bytes({0xA3, 3}), "mitten in einem Element (int)"},
        {head + Bytes({0xA4, 3, 0, 0, 0, 0, 0, 0}), "mitten in einem Element (real)"},
        {head + Bytes({0xA1, 0, 0, 0}), "mitten in einem Element (section)"},
        {head, "ab Byte 10 nicht in Ordnung: die Datei endet in einem offenen Abschnitt"},
        {head + EncodeItems({ItHeader("A", 1)}),
         "ab Byte 10 nicht in Ordnung: ein Typkopf steht in einem offenen Abschnitt"},
    };
    for (const auto &row : rows) {
        RUN run = Dump(row.bytes);
        EXPECT_EQ(run.status, 1) << row.finding;
        EXPECT_EQ(run.out, lines) << row.finding;
        EXPECT_EQ(run.err.find("Datei \"file\" ist ab Byte"), 0u) << run.err;
        EXPECT_NE(run.err.find(string(row.finding) + "\n"), string::npos) << run.err;
    }
    RUN run = Dump(EncodeItems({ItInt(1), ItEnd()}));
    EXPECT_EQ(run.out, "         0  int 1\n");
    EXPECT_EQ(run.err,
              "Datei \"file\" ist ab Byte 5 nicht in Ordnung: ein Abschnitt endet, der nicht begonnen hat\n");
    run = Dump(EncodeItems({ItSection(), ItSection()}));
    EXPECT_EQ(run.err,
              "Datei \"file\" ist ab Byte 10 nicht in Ordnung: die Datei endet in 2 offenen Abschnitten\n");
    run = Dump(Bytes({0xA6, 3, 'A', 'B', 'C', 1, 0, 0}));
    EXPECT_EQ(
        run.err,
        "Datei \"file\" ist ab Byte 0 nicht in Ordnung: die Datei endet mitten in einem Element (header)\n");
}

TEST_F(CdeDump, ShowsTheLevelWhereSectionsNestTooDeeplyToIndent)
{
    string bytes;
    for (int i = 0; i < 100000; ++i)
        bytes += EncodeItems({ItSection()});
    RUN run = Dump(bytes + EncodeItems({ItInt(1)}) + string(100000, '\xA2'));
    EXPECT_EQ(run.status, 0);
    EXPECT_NE(run.out.find("\n       160  " + string(64, ' ') + "section 0\n"), string::npos);
    EXPECT_NE(run.out.find("\n       165  " + string(64, ' ') + "[33] section 0\n"), string::npos);
    EXPECT_NE(run.out.find("\n    500000  " + string(64, ' ') + "[100000] int 1\n"), string::npos);
    EXPECT_NE(run.out.find("\n    600005  eof\n"), string::npos) << run.out.substr(run.out.size() - 200);
}

TEST_F(CdeDump, PassesLongTextsAndManyItemsThrough)
{
    string text(3000000, 'x');
    CdeITEMS items(100000, ItReal(1));
    RUN run = Dump(EncodeItems(CdeITEMS{ItText(text)} + items));
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.out.substr(0, 30), "         0  text \"" + string(12, 'x'));
    EXPECT_EQ(std::count(run.out.begin(), run.out.end(), 'x'), 3000000 + 1) << "one in text";
    EXPECT_EQ(std::count(run.out.begin(), run.out.end(), '\n'), 100002);
}

TEST_F(CdeDump, TellsWhatItCannotReadOrWrite)
{
    RUN run = Run("fehlt.sc1");
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.err, "Datei \"fehlt.sc1\" kann nicht geöffnet werden!\nWahrscheinlich falscher Name.\n");
    run = Run(".");
    EXPECT_EQ(run.status, 1);
    EXPECT_NE(run.err.find("kann nicht geöffnet werden!"), string::npos);
    folder.Put("file", EncodeItems({ItInt(1)}));
    run = Run("file", "/dev/full");
    EXPECT_EQ(run.status, 1);
    EXPECT_NE(run.err.find("Standardausgabe"), string::npos) << run.err;
    EXPECT_EQ(folder.Get("file"), EncodeItems({ItInt(1)})) << "the file itself is not touched";
}

TEST_F(CdeDump, OpensAFileWithAGermanName)
{
    folder.Put("Prüfhalle.sc1", EncodeItems({ItInt(1)}));
    EXPECT_EQ(Run("Prüfhalle.sc1").status, 0);
}

TEST_F(CdeDump, EndsWith2OnWrongUsageAndHelps)
{
    for (const char *arguments : {"", "eins zwei", "--wrong", "file --wrong"}) {
        RUN run = Run(arguments);
        EXPECT_EQ(run.status, 2) << arguments;
        EXPECT_EQ(run.out, "");
        EXPECT_NE(run.err.find("Aufruf: cdedump DATEI"), string::npos);
    }
    RUN run = Run("--help");
    EXPECT_EQ(run.status, 0);
    EXPECT_NE(run.out.find("Aufruf"), string::npos) << run.out;
    EXPECT_NE(run.out.find("DATEI"), string::npos) << run.out;
    EXPECT_EQ(run.err, "");
}

TEST_F(CdeDump, EndsOnAnyBytes)
{
    CdeITEMS sound = CdeITEMS{ItHeader("A", 1)} + ItGroup({ItInt(1), ItStr("a"), ItText("b"), ItReal(2)});
    int statuses[2] = {0, 0};
    for (unsigned start = 0; start < 150; ++start) {
        CHANCE chance(start);
        CdeITEMS items = sound;
        DamageItems(items, chance);
        string bytes = EncodeItems(items);
        if (chance.One(2))
            DamageBytes(bytes, chance);
        RUN run = Dump(bytes);
        ASSERT_TRUE(run.status == 0 || run.status == 1) << "start " << start << "\n" << run.err;
        EXPECT_EQ(run.status == 0, run.err.empty());
        ++statuses[run.status];
    }
    EXPECT_GT(statuses[0], 0);
    EXPECT_GT(statuses[1], 10);
}
