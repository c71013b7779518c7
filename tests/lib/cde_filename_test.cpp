#include "lib/cde.h"
#include "lib/charstr.h"
#include "support/chance.h"
#include "support/child.h"

#include <gtest/gtest.h>

#include <string>

namespace
{
std::string RandomName(CHANCE &chance, const char *alphabet, int longest)
{
    std::string text;
    for (int n = chance.Int(0, longest); n > 0; --n)
        text += alphabet[chance.Int(0, StrLength(alphabet) - 1)];
    return text;
}

/// The name after one operation.
template <class... ARGS>
std::string After(const char *name, void (CdeFILENAME::*operation)(ARGS...), ARGS... args)
{
    CdeFILENAME changed = name;
    (changed.*operation)(args...);
    return static_cast<const char *>(changed);
}

std::string Text(const CdeFILENAME &name)
{
    return static_cast<const char *>(name);
}

TEST(FileName, IsNormalisedWhenItIsAssigned)
{
    struct {
        const char *text, *name;
    } table[] = {
        {"", ""},
        {"   ", ""},
        {"a", "a"},
        {"C:\\", "C:\\"},
        {"C:\\Dir\\", "C:\\Dir"},
        {"C:\\Dir\\.", "C:\\Dir\\."},
        {"C:\\Dir\\..", "C:\\Dir\\.."},
        {" my  file ", "my  file"},
        {"my\t\xA0"
         "file",
         "my  file"},
        {"C : \\ Dir \\ file . txt ", "C:\\Dir\\file . txt"},
        {"C: \\file", "C:\\file"},
        {"C:\\ file", "C:\\ file"}, // in a word a '\' does not end it
        {"\\ file", "\\file"},
        {"a \\ b", "a\\b"},
        {"\\", "\\"},
        {" \\ ", "\\"},
        {"\\\\", "\\"},
        {"\\\\server\\share\\", "\\\\server\\share"},
        {"a\\\\", "a"},
        {"C:", "C:"},
        {"C:\\\\", "C:\\"},
        {"file.", "file"},
        {".", "."},
        {"..", ".."},
        {"C:.", "C:."},
        {"\\.", "\\."},
        {"a..", "a.."},
        {"a.\\", "a"},
        {"a .", "a"},
        {"a. b", "a. b"},
        {".StavPrv", ".StavPrv"},
        {"M\xFCller & S\xF6hne.sc1", "M\xFCller & S\xF6hne.sc1"},
    };
    for (const auto &row : table) {
        CdeFILENAME name = row.text;
        EXPECT_STREQ(name, row.name) << '"' << row.text << '"';
        EXPECT_EQ(name.IsBlank(), *row.name == EOS);
    }
}

TEST(FileName, EqualsItsCopyWhateverItWasMadeFrom)
{
    CHANCE chance(1);
    for (int i = 0; i < 200000; ++i) {
        std::string text = RandomName(chance, "a.\\: \tB", 10);
        CdeFILENAME name = text.c_str();
        CdeFILENAME copy = static_cast<const char *>(name);
        ASSERT_STREQ(copy, name) << '"' << text << '"';
        ASSERT_LE(StrLength(name), static_cast<int>(text.size()));
    }
}

/// The walk as a state over characters, written down a second time with lists; the end as a search for what
/// goes.
std::string PlainNormal(const std::string &text)
{
    std::string name;
    bool word = false;
    size_t blanks = 0;
    for (char c : text) {
        bool space = ChrClass(c) & 16;
        bool border = c == '\\' || c == ':';
        if (word && space) {
            word = false;
            blanks = 1;
        } else if (word) {
            name += c;
        } else if (space) {
            blanks += blanks > 0;
        } else if (border) {
            blanks = 0;
            name += c;
        } else {
            name += std::string(blanks, ' ') + c;
            blanks = 0;
            word = true;
        }
    }
    for (;;) {
        size_t n = name.size();
        std::string end = n >= 2 ? name.substr(n - 2) : "";
        bool backslash = n >= 2 && end[1] == '\\' && end[0] != ':';
        bool dot = n >= 2 && end[1] == '.' && end[0] != '\\' && end[0] != ':' && end[0] != '.';
        if (!backslash && !dot && !(n >= 1 && name.back() == ' '))
            return name;
        name.pop_back();
    }
}

TEST(FileName, IsNormalisedAsThePlainWalkDoesIt)
{
    CHANCE chance(2);
    for (int i = 0; i < 200000; ++i) {
        std::string text = RandomName(chance, "a.\\: \tB", 10);
        ASSERT_EQ(Text(text.c_str()), PlainNormal(text)) << '"' << text << '"';
    }
}

TEST(FileName, HoldsAtMost255Characters)
{
    for (size_t length = 250; length <= 300; ++length) {
        std::string text(length, 'x');
        EXPECT_EQ(Text(text.c_str()), text.substr(0, 255));
    }
    std::string folder = std::string(254, 'x');
    EXPECT_EQ(Text((folder + "\\y").c_str()), folder); // the cut leaves a '\' at the end, which goes
    EXPECT_EQ(Text((folder + ".y").c_str()), folder);
    EXPECT_EQ(Text((folder + " y").c_str()), folder);
    std::string longest(255, 'x');
    EXPECT_EQ(After<const char *>(longest.c_str(), &CdeFILENAME::AddName, "y"), longest);
    EXPECT_EQ(After<const char *>(longest.c_str(), &CdeFILENAME::AddExt, "y"), longest);
    EXPECT_EQ(After<const char *>(longest.c_str(), &CdeFILENAME::SetDrive, "C:"),
              ("C:" + longest).substr(0, 255));
    EXPECT_EQ(After(longest.c_str(), &CdeFILENAME::MakeRooted), ("\\" + longest).substr(0, 255));
}

TEST(FileName, MayBeAssignedAPieceOfItself)
{
    CdeFILENAME name = "C:\\Dir\\file.txt";
    name = static_cast<const char *>(name) + 7;
    EXPECT_STREQ(name, "file.txt");
    name.SetName(static_cast<const char *>(name) + 5);
    EXPECT_STREQ(name, "txt");
    name = "a.b";
    name.SetExt(static_cast<const char *>(name));
    EXPECT_STREQ(name, "a.a.b");
    name = "a\\b";
    name.AddName(static_cast<const char *>(name));
    EXPECT_STREQ(name, "a\\b\\a\\b");
}

TEST(FileName, ChangesItsCase)
{
    struct {
        const char *name, *lower, *upper, *capitalized;
    } table[] = {
        {"", "", "", ""},
        {"C:\\mY dIR\\fILE.tXT", "c:\\my dir\\file.txt", "C:\\MY DIR\\FILE.TXT", "C:\\My dir\\File.txt"},
        {"c:abc", "c:abc", "C:ABC", "C:Abc"},
        {"\\\xFC"
         "BER\\x",
         "\\\xFC"
         "ber\\x",
         "\\\xDC"
         "BER\\X",
         "\\\xDC"
         "ber\\X"},
        {"c:\\ aB", "c:\\ ab", "C:\\ AB", "C:\\ Ab"}, // the first that is no blank
        {".aB", ".ab", ".AB", ".ab"},
    };
    for (const auto &row : table) {
        EXPECT_EQ(After(row.name, &CdeFILENAME::Lower), row.lower);
        EXPECT_EQ(After(row.name, &CdeFILENAME::Upper), row.upper);
        EXPECT_EQ(After(row.name, &CdeFILENAME::Capitalize), row.capitalized);
    }
}

TEST(FileName, KnowsItsExtension)
{
    struct {
        const char *name, *ext, *without, *withBak, *withDefault;
        bool has;
    } table[] = {
        {"a.b.zec", "zec", "a.b", "a.b.bak", "a.b.zec", true},
        {"a", "", "a", "a.bak", "a.bak", false},
        {"C:\\x.y\\a", "", "C:\\x.y\\a", "C:\\x.y\\a.bak", "C:\\x.y\\a.bak", false},
        {"C:\\x.y\\a.gim", "gim", "C:\\x.y\\a", "C:\\x.y\\a.bak", "C:\\x.y\\a.gim", true},
        {".StavPrv", "", ".StavPrv", ".StavPrv.bak", ".StavPrv.bak", false},
        {".StavPrv.zec", "zec", ".StavPrv", ".StavPrv.bak", ".StavPrv.zec", true},
        {"C:.zec", "", "C:.zec", "C:.zec.bak", "C:.zec.bak", false},
        {"C:\\", "", "C:\\", "C:\\", "C:\\", false},
        {"C:", "", "C:", "C:", "C:", false},
        {"..", "", "..", "..", "..", false},
        {"x\\..", "", "x\\..", "x\\..", "x\\..", false},
        {"", "", "", ".bak", ".bak", false},
        {"a .b", "b", "a", "a.bak", "a .b", true}, // what stands free when the extension goes, goes too
        {"a..b", "b", "a", "a.bak", "a..b", true},
    };
    for (const auto &row : table) {
        CdeFILENAME name = row.name;
        EXPECT_STREQ(name.GetExt(), row.ext) << row.name;
        EXPECT_EQ(name.HasExt("*"), row.has) << row.name;
        EXPECT_EQ(After(row.name, &CdeFILENAME::CutExt), row.without);
        EXPECT_EQ(After<const char *>(row.name, &CdeFILENAME::SetExt, "bak"), row.withBak);
        EXPECT_EQ(After<const char *>(row.name, &CdeFILENAME::DefaultExt, "bak"), row.withDefault);
    }
}

TEST(FileName, ComparesItsExtensionWithAPattern)
{
    struct {
        const char *name, *pattern;
        bool has;
    } table[] = {
        {"a.zec", "zec", true},      {"a.zec", ".zec", true},   {"a.zec", " \t.ZEC", true},
        {"a.ZEC", "zec", true},      {"a.zec", "..zec", false}, {"a.zec", "z?c", true},
        {"a.zec", "z*", true},       {"a.zec", "ze", false},    {"a.zec", "ec", false},
        {"a.zec", "", false},        {"a", "", false},          {"a", "*", false},
        {"a.b.zec", "b.zec", false},
    };
    for (const auto &row : table)
        EXPECT_EQ(CdeFILENAME(row.name).HasExt(row.pattern), row.has) << row.name << ", " << row.pattern;
}

TEST(FileName, TakesAnExtensionWithOrWithoutItsDot)
{
    struct {
        const char *name, *ext, *result;
    } table[] = {
        {"a", "b", "a.b"},     {"a", ".b", "a.b"},          {"a", " .b", "a.b"}, {"a", "", "a"},
        {"a.b", "c", "a.b.c"}, {"C:\\", "b", "C:\\"},       {"C:", "b", "C:"},   {"\\", "b", "\\"},
        {"a..", "b", "a.."},   {"a", "tar.gz", "a.tar.gz"},
    };
    for (const auto &row : table)
        EXPECT_EQ(After(row.name, &CdeFILENAME::AddExt, row.ext), row.result) << row.name << ", " << row.ext;
}

TEST(FileName, IsMadeOfDriveFolderAndName)
{
    struct {
        const char *name, *drive, *withoutDrive, *folder, *last;
        bool rooted;
    } table[] = {
        {"", "", "", "", "", false},
        {"file", "", "file", "", "file", false},
        {"a\\file", "", "a\\file", "a", "file", false},
        {"\\file", "", "\\file", "\\", "file", true},
        {"\\a\\file", "", "\\a\\file", "\\a", "file", true},
        {"\\", "", "\\", "\\", "", true},
        {"C:", "C:", "", "C:", "", false},
        {"C:\\", "C:", "\\", "C:\\", "", true},
        {"C:file", "C:", "file", "C:", "file", false},
        {"C:\\file", "C:", "\\file", "C:\\", "file", true},
        {"C:\\a\\file", "C:", "\\a\\file", "C:\\a", "file", true},
        {"C:a\\file", "C:", "a\\file", "C:a", "file", false},
        {"\\a\\12:30", "", "\\a\\12:30", "\\a", "12:30", true}, // a ':' in a component
        {"\\\\server\\x", "", "\\\\server\\x", "\\\\server", "x", true},
        {"C:\\a\\\\file", "C:", "\\a\\\\file", "C:\\a", "file", true},
        {"a\\..", "", "a\\..", "a", "..", false},
    };
    for (const auto &row : table) {
        CdeFILENAME name = row.name;
        EXPECT_STREQ(name.GetDrive(), row.drive) << row.name;
        EXPECT_STREQ(name.GetName(), row.last) << row.name;
        EXPECT_EQ(name.IsRooted(), row.rooted) << row.name;
        EXPECT_EQ(After(row.name, &CdeFILENAME::CutDrive), row.withoutDrive);
        EXPECT_EQ(After(row.name, &CdeFILENAME::CutName), row.folder);
    }
}

TEST(FileName, ChangesItsName)
{
    struct {
        const char *name, *added, *set;
    } table[] = {
        {"", "x", "x"}, // relative stays relative
        {"C:", "C:x", "C:x"},     {"C:\\", "C:\\x", "C:\\x"},        {"\\", "\\x", "\\x"},
        {"a", "a\\x", "x"},       {"C:\\a", "C:\\a\\x", "C:\\x"},    {"C:\\a\\b", "C:\\a\\b\\x", "C:\\a\\x"},
        {"C:a", "C:a\\x", "C:x"}, {"Co.\\a", "Co.\\a\\x", "Co.\\x"}, // the folder is not Co
    };
    for (const auto &row : table) {
        EXPECT_EQ(After<const char *>(row.name, &CdeFILENAME::AddName, "x"), row.added) << row.name;
        EXPECT_EQ(After<const char *>(row.name, &CdeFILENAME::SetName, "x"), row.set) << row.name;
    }
    EXPECT_EQ(After<const char *>("a", &CdeFILENAME::AddName, "x\\"), "a\\x");
    EXPECT_EQ(After<const char *>("a", &CdeFILENAME::AddName, ""), "a");
}

TEST(FileName, ChangesItsDrive)
{
    struct {
        const char *name, *drive, *result;
    } table[] = {
        {"a", "C:", "C:a"},    {"a", "C", "C:a"}, {"C:\\a", "D:", "D:\\a"},  {"C:\\a", "", "\\a"},
        {"C:\\a", " ", "\\a"}, {"C:", "D", "D:"}, {"\\a", "D:\\x", "D:\\a"}, {"\\a", " D : ", "D:\\a"},
    };
    for (const auto &row : table)
        EXPECT_EQ(After(row.name, &CdeFILENAME::SetDrive, row.drive), row.result)
            << row.name << ", " << row.drive;
}

TEST(FileName, IsMadeRootedAndRelative)
{
    struct {
        const char *name, *rooted, *relative;
    } table[] = {
        {"", "\\", ""},
        {"a", "\\a", "a"},
        {"\\a", "\\a", "a"},
        {"\\", "\\", ""},
        {"C:", "C:\\", "C:"},
        {"C:a", "C:\\a", "C:a"},
        {"C:\\a", "C:\\a", "C:a"},
        {"C:\\", "C:\\", "C:"},
        {"\\\\server\\x", "\\\\server\\x", "server\\x"},
        {"a\\b", "\\a\\b", "a\\b"},
    };
    for (const auto &row : table) {
        EXPECT_EQ(After(row.name, &CdeFILENAME::MakeRooted), row.rooted) << row.name;
        EXPECT_EQ(After(row.name, &CdeFILENAME::MakeRelative), row.relative) << row.name;
    }
}

TEST(FileName, StaysNormalUnderEveryOperation)
{
    CHANCE chance(3);
    const char alphabet[] = "aB.\\: ";
    for (int i = 0; i < 50000; ++i) {
        CdeFILENAME name = RandomName(chance, alphabet, 9).c_str();
        std::string before = Text(name);
        std::string text = RandomName(chance, alphabet, 4);
        int operation = chance.Int(0, 11);
        switch (operation) {
        case 0:
            name.Capitalize();
            break;
        case 1:
            name.CutExt();
            break;
        case 2:
            name.AddExt(text.c_str());
            break;
        case 3:
            name.SetExt(text.c_str());
            break;
        case 4:
            name.DefaultExt(text.c_str());
            break;
        case 5:
            name.CutName();
            break;
        case 6:
            name.AddName(text.c_str());
            break;
        case 7:
            name.SetName(text.c_str());
            break;
        case 8:
            name.CutDrive();
            break;
        case 9:
            name.SetDrive(text.c_str());
            break;
        case 10:
            name.MakeRooted();
            break;
        case 11:
            name.MakeRelative();
            break;
        }
        ASSERT_EQ(Text(name), PlainNormal(Text(name))) << before << ", operation " << operation << ", " << text;
    }
}

TEST(FileName, IsPutTogetherFromItsPiecesAgain)
{
    CHANCE chance(4);
    for (int i = 0; i < 50000; ++i) {
        CdeFILENAME name = ((chance.One(2) ? "C:" : "") + RandomName(chance, "aB.\\", 9)).c_str();
        std::string before = Text(name);
        name.SetName(name.GetName());
        ASSERT_EQ(Text(name), before);
        if (name.HasExt("?*") && before.find("..") == std::string::npos)
            name.SetExt(name.GetExt());
        ASSERT_EQ(Text(name), before);
        name.SetDrive(name.GetDrive());
        ASSERT_EQ(Text(name), before);
    }
}

TEST(FileName, MatchesPatterns)
{
    struct {
        const char *name, *pattern;
        bool whole, last; // of the whole name, of the last component
    } table[] = {
        {"C:\\a\\file.gim", "*", true, true},
        {"C:\\a\\file.gim", "*.GIM", true, true},
        {"C:\\a\\file.gim", "file.gim", false, true},
        {"C:\\a\\file.gim", "f*.g?m", false, true},
        {"C:\\a\\file.gim", "c:*", true, false},
        {"C:\\a\\file.gim", "?:\\A\\*", true, false},
        {"C:\\a\\file.gim", "C:\\a\\file.gim", true, false},
        {"C:\\a\\file.gim", "a\\file.gim", false, false}, // the first piece stands at the start
        {"C:\\a\\file.gim", "C:\\a\\file", false, false}, // and the last one at the end
        {"C:\\a\\file.gim", "*file*", true, true},
        {"C:\\a\\file.gim", "*gim*file*", false, false}, // the pieces in order
        {"C:\\a\\file.gim", "", false, false},
        {"", "", true, true},
        {"", "*", true, true},
        {"", "?", false, false},
        {"file", "*.*", false, false},
        {"aab", "*ab", true, true},
        {"abab", "*ab*ab", true, true},
        {"ab", "*ab*ab", false, false}, // pieces do not overlap
        {"M\xDCLLER", "m\xFC*", true, true},
    };
    for (const auto &row : table) {
        EXPECT_EQ(CdeFILENAME(row.name).Match(row.pattern), row.whole) << row.name << ", " << row.pattern;
        EXPECT_EQ(CdeFILENAME(row.name).HasName(row.pattern), row.last) << row.name << ", " << row.pattern;
    }
}

bool PlainMatch(const char *s, const char *pattern)
{
    if (*pattern == EOS)
        return *s == EOS;
    if (*pattern == '*')
        return PlainMatch(s, pattern + 1) || (*s != EOS && PlainMatch(s + 1, pattern));
    return *s != EOS && (*pattern == '?' || ChrLower(*pattern) == ChrLower(*s)) &&
           PlainMatch(s + 1, pattern + 1);
}

TEST(FileName, MatchesPatternsAsTheRecursiveSearchDoes)
{
    CHANCE chance(5);
    int matches = 0;
    for (int i = 0; i < 200000; ++i) {
        CdeFILENAME name = RandomName(chance, "aAb", 8).c_str();
        std::string pattern = RandomName(chance, "ab?**", 7);
        bool expected = PlainMatch(name, pattern.c_str());
        ASSERT_EQ(name.Match(pattern.c_str()), expected) << Text(name) << ", " << pattern;
        matches += expected;
    }
    EXPECT_GT(matches, 20000) << "too few pairs match for the comparison to mean something";
}

TEST(FileName, MatchesSoonWhatInvitesManyChoices)
{
    std::string pattern;
    for (int i = 0; i < 60; ++i)
        pattern += "*a";
    CdeFILENAME name = std::string(255, 'a').c_str();
    EXPECT_TRUE(name.Match(pattern.c_str()));
    EXPECT_FALSE(name.Match((pattern + "b").c_str()));
}

TEST(FileName, StopsOnATextThatIsNone)
{
    static CdeFILENAME name = "a.b";
    EXPECT_TRUE(
        AbortsOnAssertion("s != NULL", "lib/cde_filename.cpp", [] { name = static_cast<const char *>(NULL); }));
    EXPECT_TRUE(AbortsOnAssertion("ext != NULL", "lib/cde_filename.cpp", [] { name.AddExt(NULL); }));
    EXPECT_TRUE(AbortsOnAssertion("component != NULL", "lib/cde_filename.cpp", [] { name.AddName(NULL); }));
    EXPECT_TRUE(AbortsOnAssertion("drive != NULL", "lib/cde_filename.cpp", [] { name.SetDrive(NULL); }));
    EXPECT_TRUE(AbortsOnAssertion("pattern != NULL", "lib/cde_filename.cpp", [] { name.Match(NULL); }));
    EXPECT_TRUE(AbortsOnAssertion("pattern != NULL", "lib/cde_filename.cpp", [] { name.HasName(NULL); }));
    EXPECT_TRUE(AbortsOnAssertion("pattern != NULL", "lib/cde_filename.cpp", [] { name.HasExt(NULL); }));
    EXPECT_TRUE(AbortsOnAssertion("nativePath != NULL", "lib/cde_filename.cpp", [] { SetProgramPath(NULL); }));
}

TEST(ProgramPath, GivesTheFolderAsItIsSpelledAndTheNameInLowerCase)
{
    struct {
        const char *path, *folder, *name;
    } table[] = {
        {"/opt/Zulerion/ZulCalc", "\\opt\\Zulerion", "zulcalc"},
        {"/ZulCalc", "\\", "zulcalc"},
        {"ZulCalc", "", "zulcalc"},
        {"/home/J\xC3\xBCrgen/zulcalc", "\\home\\J\xFCrgen", "zulcalc"},
        {"/a b/c/zulcalc", "\\a b\\c", "zulcalc"},
    };
    for (const auto &row : table) {
        EXPECT_TRUE(SetProgramPath(row.path));
        EXPECT_STREQ(ProgramFolder(), row.folder);
        EXPECT_STREQ(ProgramName(), row.name);
    }
}

TEST(ProgramPath, IsRefusedWhereANameWouldBeAnotherPath)
{
    ASSERT_TRUE(SetProgramPath("/opt/zul/prog"));
    std::string tooLong = "/" + std::string(255, 'x') + "/prog";
    for (const char *path : {"/opt /prog", "/opt/a\tb/prog", "/opt/\xE2\x98\x83/prog", "/opt/a\\b/prog",
                             "/opt/Co./prog", tooLong.c_str()}) {
        EXPECT_FALSE(SetProgramPath(path)) << path;
        EXPECT_STREQ(ProgramFolder(), "\\opt\\zul") << "the former folder is lost";
        EXPECT_STREQ(ProgramName(), "prog");
    }
}
} // namespace
