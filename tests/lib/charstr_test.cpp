#include "lib/charstr.h"
#include "lib/platform.h"
#include "support/chance.h"
#include "support/child.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

namespace
{
/// The text after a change in place, with room for it.
std::string Changed(const char *text, void (*change)(char *))
{
    std::vector<char> s(text, text + std::strlen(text) + 1);
    change(s.data());
    return s.data();
}

std::string Changed(const char *text, void (*change)(char *, int), int flags)
{
    std::vector<char> s(text, text + std::strlen(text) + 1);
    change(s.data(), flags);
    return s.data();
}

std::string RandomText(CHANCE &chance, const char *alphabet, int longest)
{
    std::string text;
    for (int n = chance.Int(0, longest); n > 0; --n)
        text += alphabet[chance.Int(0, StrLength(alphabet) - 1)];
    return text;
}

int Place(const char *text, const char *found)
{
    return found != NULL ? static_cast<int>(found - text) : -1;
}

struct CLASSES {
    int first, last, classes;
};

// 1 alphabetic, 2 digit, 4 hexadecimal, 8 punctuation, 16 white space, 32 control, 64 lower, 128 upper.
const CLASSES classTable[] = {
    {0x00, 0x08, 32},  {0x09, 0x0D, 16 | 32}, {0x0E, 0x1F, 32}, {0x20, 0x20, 16},
    {0x21, 0x2F, 8},   {0x30, 0x39, 2 | 4},   {0x3A, 0x40, 8},  {0x41, 0x46, 1 | 4 | 128},
    {0x47, 0x5A, 129}, {0x5B, 0x60, 8},       {0x61, 0x66, 69}, {0x67, 0x7A, 65},
    {0x7B, 0x7E, 8},   {0x7F, 0x7F, 32},      {0x80, 0x80, 8},  // euro sign
    {0x81, 0x81, 32},  {0x82, 0x82, 8},       {0x83, 0x83, 65}, // florin, a small letter
    {0x84, 0x87, 8},   {0x88, 0x88, 1},       {0x89, 0x89, 8},  {0x8A, 0x8A, 129},
    {0x8B, 0x8B, 8},   {0x8C, 0x8C, 129},     {0x8D, 0x8D, 32}, {0x8E, 0x8E, 129},
    {0x8F, 0x90, 32},  {0x91, 0x99, 8},       {0x9A, 0x9A, 65}, {0x9B, 0x9B, 8},
    {0x9C, 0x9C, 65},  {0x9D, 0x9D, 32},      {0x9E, 0x9E, 65}, {0x9F, 0x9F, 129},
    {0xA0, 0xA0, 16},                                                             // blank that does not break
    {0xA1, 0xA9, 8},   {0xAA, 0xAA, 65},      {0xAB, 0xB4, 8},  {0xB5, 0xB5, 65}, // micro sign
    {0xB6, 0xB9, 8},   {0xBA, 0xBA, 65},      {0xBB, 0xBF, 8},  {0xC0, 0xD6, 129},
    {0xD7, 0xD7, 8},   {0xD8, 0xDE, 129},     {0xDF, 0xF6, 65}, // sharp s and on
    {0xF7, 0xF7, 8},   {0xF8, 0xFF, 65},
};

TEST(Characters, EveryOneHasItsClasses)
{
    int next = 0;
    for (const CLASSES &row : classTable) {
        ASSERT_EQ(row.first, next) << "the table has a gap";
        for (int c = row.first; c <= row.last; ++c)
            EXPECT_EQ(ChrClass(static_cast<char>(c)), row.classes) << "character " << c;
        next = row.last + 1;
    }
    EXPECT_EQ(next, 256);
}

TEST(Characters, CaseIsPairedAndWhatHasNoPartnerStays)
{
    struct PAIR {
        char lower, upper;
    };
    std::vector<PAIR> pairs = {{'\x9A', '\x8A'}, {'\x9C', '\x8C'}, {'\x9E', '\x8E'}, {'\xFF', '\x9F'}};
    for (int c = 'a'; c <= 'z'; ++c)
        pairs.push_back({static_cast<char>(c), static_cast<char>(c - 32)});
    for (int c = 0xE0; c <= 0xFE; ++c)
        if (c != 0xF7)
            pairs.push_back({static_cast<char>(c), static_cast<char>(c - 32)});
    bool paired[256] = {};
    for (PAIR pair : pairs) {
        EXPECT_EQ(ChrUpper(pair.lower), pair.upper);
        EXPECT_EQ(ChrUpper(pair.upper), pair.upper);
        EXPECT_EQ(ChrLower(pair.upper), pair.lower);
        EXPECT_EQ(ChrLower(pair.lower), pair.lower);
        paired[static_cast<unsigned char>(pair.lower)] = paired[static_cast<unsigned char>(pair.upper)] = true;
    }
    for (int i = 0; i < 256; ++i) { // among them sharp s, micro sign and florin
        if (paired[i])
            continue;
        EXPECT_EQ(ChrUpper(static_cast<char>(i)), static_cast<char>(i)) << i;
        EXPECT_EQ(ChrLower(static_cast<char>(i)), static_cast<char>(i)) << i;
    }
}

TEST(Characters, EveryOneComesBackFromItsCode)
{
    for (int i = 0; i < 256; ++i) {
        char c = '#';
        EXPECT_TRUE(ChrOfCode(&c, ChrCode(static_cast<char>(i))));
        EXPECT_EQ(c, static_cast<char>(i));
    }
    EXPECT_EQ(ChrCode('\x80'), 0x20ACu);
    EXPECT_EQ(ChrCode('\xFC'), 0xFCu);
}

TEST(Characters, CodesOutsideTheSetAreRefused)
{
    for (unsigned code : {0x80u, 0x9Fu, 0x100u, 0x39Cu, 0x20ABu, 0x1F600u, 0xFFFFFFFFu}) {
        char c = '#';
        EXPECT_FALSE(ChrOfCode(&c, code)) << code;
        EXPECT_EQ(c, '#');
    }
}

TEST(StrLength, CountsUpToTheTerminator)
{
    EXPECT_EQ(StrLength(""), 0);
    EXPECT_EQ(StrLength("\x80\xA0\xFF"), 3);
    EXPECT_EQ(StrLength("a\0b"), 1);
}

TEST(StrClass, GivesWhatAllShareAndWhatFallsOutside)
{
    struct {
        const char *text;
        int mask, classes;
    } table[] = {
        {"", 255, 0},       {"", 0, 0},      {"12", 2, 2},     {"12", 7, 6},        {"12", 255, 6},
        {"ab", 1, 1},       {"ab", 7, 5},    {"ab", 255, 69},  {"aB", 255, 5},      {"xy", 7, 1},
        {"a1", 7, 4},       {"x1", 7, 0},    {"12 ", 2, 16},   {"ab,", 1, 8},       {"1,2 3", 2, 8 | 16},
        {" ", 16, 16},      {" \t", 16, 16}, {" \t", 255, 16}, {"\t", 16 | 32, 48}, {"abc", 0, 69},
        {"\xFC\xDF", 1, 1}, {"\x80", 1, 8},  {"\xA0", 1, 16},  {"a\xA0", 17, 0},
    };
    for (const auto &row : table)
        EXPECT_EQ(StrClass(row.text, row.mask), row.classes) << '"' << row.text << "\", " << row.mask;
}

TEST(StrIsBlank, IsTrueOfWhiteSpaceAndOfNothing)
{
    for (const char *blank : {"", " ", "\t\r\n\v\f ", "\xA0"})
        EXPECT_TRUE(StrIsBlank(blank)) << '"' << blank << '"';
    for (const char *text : {"a", " a", "a ", " . ", "\x80", " \x01"})
        EXPECT_FALSE(StrIsBlank(text)) << '"' << text << '"';
}

TEST(StrCase, ChangesWholeTexts)
{
    struct {
        const char *text, *lower, *upper, *capitalized;
    } table[] = {
        {"", "", "", ""},
        {"hALLE", "halle", "HALLE", "Halle"},
        {"  hALLE 2b", "  halle 2b", "  HALLE 2B", "  Halle 2b"},
        {"(nORD)", "(nord)", "(NORD)", "(Nord)"},
        {"3D ansicht", "3d ansicht", "3D ANSICHT", "3d ansicht"},
        {"\xFC"
         "BER",
         "\xFC"
         "ber",
         "\xDC"
         "BER",
         "\xDC"
         "ber"},
        {"STRA\xDF"
         "E",
         "stra\xDF"
         "e",
         "STRA\xDF"
         "E",
         "Stra\xDF"
         "e"},
        {"...", "...", "...", "..."},
        {"\xB5W \x80 \xFF", "\xB5w \x80 \xFF", "\xB5W \x80 \x9F", "\xB5w \x80 \xFF"},
    };
    for (const auto &row : table) {
        EXPECT_EQ(Changed(row.text, StrLower), row.lower);
        EXPECT_EQ(Changed(row.text, StrUpper), row.upper);
        EXPECT_EQ(Changed(row.text, StrCapitalize), row.capitalized);
    }
}

TEST(StrTrim, CutsTheEndsThatAreAskedFor)
{
    struct {
        const char *text, *start, *end, *both;
    } table[] = {
        {"", "", "", ""},
        {"a", "a", "a", "a"},
        {"   ", "", "", ""},
        {" a ", "a ", " a", "a"},
        {"\t\xA0 a  b \r\n", "a  b \r\n", "\t\xA0 a  b", "a  b"},
        {". ", ". ", ".", "."},
    };
    for (const auto &row : table) {
        EXPECT_EQ(Changed(row.text, StrTrim, STR_START), row.start);
        EXPECT_EQ(Changed(row.text, StrTrim, STR_END), row.end);
        EXPECT_EQ(Changed(row.text, StrTrim, STR_START | STR_END), row.both);
        EXPECT_EQ(Changed(row.text, StrTrim, 0), row.both);
    }
}

TEST(StrCollapse, ReducesRunsToOneBlankOrToNothing)
{
    struct {
        const char *text, *blank, *besideWords, *nothing;
    } table[] = {
        {"", "", "", ""},
        {"   ", "", "", ""},
        {"a", "a", "a", "a"},
        {"a  ,  b", "a , b", "a,b", "a,b"},
        {"  a  b  ", "a b", "a b", "ab"},
        {"a\t\n b", "a b", "a b", "ab"},
        {"a \xA0 b", "a b", "a b", "ab"},
        {"20. 11. 2026, 7 : 05", "20. 11. 2026, 7 : 05", "20.11.2026,7:05", "20.11.2026,7:05"},
        {" , ", ",", ",", ","},
        {", ,", ", ,", ",,", ",,"},
        {"\x80 5", "\x80 5",
         "\x80"
         "5",
         "\x80"
         "5"},
        {"\xFC \xE4", "\xFC \xE4", "\xFC \xE4", "\xFC\xE4"},
        {"a \x01 b", "a \x01 b", "a \x01 b",
         "a\x01"
         "b"},
    };
    for (const auto &row : table) {
        EXPECT_EQ(Changed(row.text, StrCollapse, 0), row.blank);
        EXPECT_EQ(Changed(row.text, StrCollapse, STR_NOSPACE), row.besideWords);
        EXPECT_EQ(Changed(row.text, StrCollapse, STR_NOBLANK), row.nothing);
        EXPECT_EQ(Changed(row.text, StrCollapse, STR_NOBLANK | STR_NOSPACE), row.nothing);
    }
}

TEST(StrCollapse, IsDoneAfterOnce)
{
    CHANCE chance(1);
    for (int i = 0; i < 5000; ++i) {
        std::string text = RandomText(chance, "ab,. \t\xA0", 10);
        for (int flags : {0, +STR_NOSPACE, +STR_NOBLANK}) {
            std::string once = Changed(text.c_str(), StrCollapse, flags);
            EXPECT_EQ(Changed(once.c_str(), StrCollapse, flags), once) << '"' << text << '"';
        }
    }
}

TEST(StrCopy, KeepsItsBoundForEveryRoomAndLength)
{
    const std::string source = "Halle 12";
    for (int length = 0; length <= 8; ++length) {
        std::string src = source.substr(0, static_cast<size_t>(length));
        for (int max = 1; max <= 11; ++max) {
            char dest[16];
            std::memset(dest, '#', sizeof dest);
            EXPECT_EQ(StrCopy(dest, src.c_str(), max), length < max);
            EXPECT_EQ(dest, src.substr(0, static_cast<size_t>(max) - 1));
            for (int i = std::min(length, max - 1) + 1; i < 16; ++i)
                EXPECT_EQ(dest[i], '#') << "length " << length << ", max " << max << ", place " << i;
        }
    }
}

TEST(StrCat, KeepsItsBoundForEveryRoomAndLength)
{
    const std::string words = "Halle 12";
    for (int before = 0; before <= 5; ++before)
        for (int length = 0; length <= 5; ++length)
            for (int max = before + 1; max <= 12; ++max) {
                std::string first = words.substr(0, static_cast<size_t>(before));
                std::string second = words.substr(3, static_cast<size_t>(length));
                char dest[16];
                std::memset(dest, '#', sizeof dest);
                std::memcpy(dest, first.c_str(), first.size() + 1);
                EXPECT_EQ(StrCat(dest, second.c_str(), max), before + length < max);
                EXPECT_EQ(dest, (first + second).substr(0, static_cast<size_t>(max) - 1));
                for (int i = max; i < 16; ++i)
                    EXPECT_EQ(dest[i], i <= before ? first.c_str()[i] : '#');
            }
}

TEST(StrCopy, TakesASourceThatEndsBeforeTheDestinationOrBeginsBehindIt)
{
    char before[] = "abc\0####";
    EXPECT_TRUE(StrCopy(before + 4, before, 4));
    EXPECT_STREQ(before + 4, "abc");
    char behind[] = "####\0abc";
    EXPECT_TRUE(StrCopy(behind, behind + 5, 5));
    EXPECT_STREQ(behind, "abc");
}

TEST(StrMove, CopiesBetweenAnyTwoPlacesOfOneText)
{
    for (int from = 0; from < 10; ++from)
        for (int to = 0; to < 10; ++to) {
            char s[24] = "0123456789";
            std::string moved = s + from;
            std::string head = std::string(s, static_cast<size_t>(to));
            StrMove(s + to, s + from);
            EXPECT_EQ(s, head + moved) << "from " << from << " to " << to;
        }
}

TEST(StrFindChar, FindsTheFirstOrTheLastOneAndTheTerminator)
{
    struct {
        const char *text;
        char c;
        int flags, place;
    } table[] = {
        {"abcabc", 'b', 0, 1},
        {"abcabc", 'b', STR_LAST, 4},
        {"abcabc", 'B', 0, -1},
        {"abcabc", 'B', STR_NOCASE, 1},
        {"abcabc", 'B', STR_NOCASE | STR_LAST, 4},
        {"abc", 'x', 0, -1},
        {"abc", 'x', STR_LAST, -1},
        {"abc", EOS, 0, 3},
        {"abc", EOS, STR_LAST, 3},
        {"", EOS, 0, 0},
        {"", 'a', 0, -1},
        {"\xE4\xC4", '\xC4', 0, 1},
        {"\xE4\xC4", '\xC4', STR_NOCASE, 0},
    };
    for (const auto &row : table)
        EXPECT_EQ(Place(row.text, StrFindChar(row.text, row.c, row.flags)), row.place) << row.text << row.flags;
}

TEST(StrFind, FindsTextsWordsAndTheLastOne)
{
    struct {
        const char *text, *pat;
        int flags, place;
    } table[] = {
        {"", "a", 0, -1},
        {"a", "", 0, -1},
        {"", "", 0, -1},
        {"abab", "ab", 0, 0},
        {"abab", "ab", STR_LAST, 2},
        {"aaaa", "aa", STR_LAST, 2},
        {"abab", "abc", 0, -1},
        {"abab", "ababa", 0, -1},
        {"Halle", "hALL", 0, -1},
        {"Halle", "hALL", STR_NOCASE, 0},
        {"\xDC"
         "ber",
         "\xFC"
         "B",
         STR_NOCASE, 0},
        {"Hallentor Tor", "tor", 0, 6},
        {"Hallentor tor", "tor", STR_WORDS, 10},
        {"Hallentor", "tor", STR_WORDS, -1},
        {"tore", "tor", STR_WORDS, -1},
        {"tor2", "tor", STR_WORDS, -1},
        {"(tor)", "tor", STR_WORDS, 1},
        {"tor", "tor", STR_WORDS, 0},
        {"tor tore tor", "tor", STR_WORDS | STR_LAST, 9},
        {"tor tore", "tor", STR_WORDS | STR_LAST, 0},
        {"a,b", ",b", STR_WORDS, 1}, // a border behind a separator cuts no word
        {"a,b", ",", STR_WORDS, 1},
        {"ab,", "b,", STR_WORDS, -1}, // the border between a and b does
        {"x Tor", "TOR", STR_WORDS | STR_NOCASE, 2},
    };
    for (const auto &row : table)
        EXPECT_EQ(Place(row.text, StrFind(row.text, row.pat, row.flags)), row.place)
            << '"' << row.text << "\", \"" << row.pat << "\", " << row.flags;
}

TEST(StrFind, AgreesWithTheStandardLibraryOnRandomTexts)
{
    CHANCE chance(2);
    for (int i = 0; i < 20000; ++i) {
        std::string text = RandomText(chance, "ab ", 12);
        std::string pat = RandomText(chance, "ab ", 3);
        size_t first = pat.empty() || text.empty() ? std::string::npos : text.find(pat);
        size_t last = pat.empty() || text.empty() ? std::string::npos : text.rfind(pat);
        EXPECT_EQ(Place(text.c_str(), StrFind(text.c_str(), pat.c_str(), 0)), static_cast<int>(first));
        EXPECT_EQ(Place(text.c_str(), StrFind(text.c_str(), pat.c_str(), STR_LAST)), static_cast<int>(last));
    }
}

TEST(StrFindAny, StopsAtClassesAndSetsAndPassesWhatIsQuoted)
{
    struct {
        const char *text, *set;
        char quote;
        int flags, place;
    } table[] = {
        {"", ",", EOS, 0, 0},
        {"abc", ",", EOS, 0, 3},
        {"a,b;c", ",;", EOS, 0, 1},
        {"a,b;c", ";", EOS, 0, 3},
        {"a,b;c", ",;", EOS, STR_LAST, 3},
        {"abc", ",", EOS, STR_LAST, 3},
        {"ab 1", "", EOS, CHR_SPACE, 2},
        {"ab 1", "", EOS, CHR_DIGIT, 3},
        {"ab 1", "b", EOS, CHR_SPACE, 1},
        {"ab,1", "", EOS, CHR_PUNCT, 2},
        {"a\\,b,c", ",", '\\', 0, 4},
        {"a\\,b", ",", '\\', 0, 4},
        {"a\\\\,b", ",", '\\', 0, 3},
        {"a,b\\", ",", '\\', STR_LAST, 1},
        {"a\\", "\\", '\\', 0, 2},
        {"\\", ",", '\\', 0, 1},
        {"aXb", "x", EOS, 0, 3},
        {"aXb", "x", EOS, STR_NOCASE, 1},
        {"a\xA0"
         "b",
         "", EOS, CHR_SPACE, 1},
    };
    for (const auto &row : table)
        EXPECT_EQ(Place(row.text, StrFindAny(row.text, row.set, row.quote, row.flags)), row.place)
            << '"' << row.text << "\", \"" << row.set << "\", " << row.flags;
}

TEST(StrFunctions, GiveAWritablePlaceInAWritableText)
{
    char s[] = "a,b,c";
    *StrFindChar(s, ',', 0) = ';';
    *StrFind(s, "b,", 0) = 'B';
    *StrFindAny(s, ",", EOS, STR_LAST) = '.';
    EXPECT_STREQ(s, "a;B.c");
}

int collated[3]; // calls, with and without regard to case; the last one's result to give

int CollateForTest(const char *s1, const char *s2, bool ignoreCase)
{
    ++collated[ignoreCase];
    return std::strcmp(s1, s2) == 0 ? 0 : collated[2];
}

TEST(StrCompare, AsksThePlatformAndGivesTheSign)
{
    CollateSink former = SetCollateSink(CollateForTest);
    collated[0] = collated[1] = 0;
    for (int given : {-700, -1, 0, 1, 700}) {
        collated[2] = given;
        EXPECT_EQ(StrCompare("a", "b", 0), (given > 0) - (given < 0));
    }
    EXPECT_EQ(StrCompare("a", "a", STR_NOCASE), 0);
    EXPECT_EQ(collated[0], 5);
    EXPECT_EQ(collated[1], 1);
    SetCollateSink(former);
}

TEST(StrCompare, OrdersByCodeWithoutAPlatform)
{
    EXPECT_EQ(StrCompare("Halle", "halle", STR_NOCASE), 0);
    EXPECT_EQ(StrCompare("Halle", "halle", 0), -1);
    EXPECT_EQ(StrCompare("halle", "Hallen", 0), -1);
    EXPECT_EQ(StrCompare("b", "A", 0), 1);
}

TEST(StrAssertions, NameTheConditionThatDoesNotHold)
{
    static char s[16] = "abcdef";
    static char full[4] = {'a', 'b', 'c', 'd'};
    const char *apart = "src >= dest+max || dest > src+StrLength(src)";
    struct {
        const char *condition;
        void (*fault)();
    } table[] = {
        {"s != NULL", [] { StrLength(NULL); }},
        {"s != NULL", [] { StrClass(NULL, 1); }},
        {"s != NULL", [] { StrIsBlank(NULL); }},
        {"s != NULL", [] { StrUpper(NULL); }},
        {"s != NULL", [] { StrLower(NULL); }},
        {"s != NULL", [] { StrCapitalize(NULL); }},
        {"s != NULL", [] { StrTrim(NULL, 0); }},
        {"s != NULL", [] { StrCollapse(NULL, 0); }},
        {"max > 0", [] { StrCopy(s, "x", 0); }},
        {"max > 0", [] { StrCat(s, "x", -1); }},
        {"src != NULL && dest != NULL", [] { StrCopy(s, NULL, 4); }},
        {"src != NULL && dest != NULL", [] { StrCopy(NULL, "x", 4); }},
        {"src != NULL && dest != NULL", [] { StrCat(s, NULL, 4); }},
        {"src != NULL && dest != NULL", [] { StrMove(s, NULL); }},
        {"src != NULL && dest != NULL", [] { StrMove(NULL, s); }},
        {apart, [] { StrCopy(s, s, 4); }},
        {apart, [] { StrCopy(s, s + 3, 4); }},
        {apart, [] { StrCopy(s + 6, s, 4); }},
        {apart, [] { StrCat(s, s + 2, 16); }},
        {"max > 1", [] { StrCat(s, "x", 6); }},
        {"max > 1", [] { StrCat(full, "", 4); }},
        {"s != NULL", [] { StrFindChar(static_cast<const char *>(NULL), 'a', 0); }},
        {"s != NULL && pat != NULL", [] { StrFind(static_cast<const char *>(NULL), "a", 0); }},
        {"s != NULL && pat != NULL", [] { StrFind(s, NULL, 0); }},
        {"s != NULL && set != NULL", [] { StrFindAny(s, NULL, EOS, 0); }},
        {"s1 != NULL && s2 != NULL", [] { StrCompare(NULL, s, 0); }},
        {"s1 != NULL && s2 != NULL", [] { StrCompare(s, NULL, 0); }},
        {"s != NULL && pat != NULL", [] { StrMatch(s, NULL, 0); }},
        {"s != NULL && pat != NULL", [] { StrMatch(NULL, s, STR_NOCASE); }},
    };
    for (const auto &row : table)
        EXPECT_TRUE(AbortsOnAssertion(row.condition, "lib/charstr.cpp", row.fault)) << &row - table;
}

TEST(StrCopy, BesideABorderCaseOfOverlapGoesOn)
{
    char s[16] = "abcdef";
    EXPECT_TRUE(StrCopy(s + 7, s, 7)); // directly behind the source's terminator
    EXPECT_STREQ(s + 7, "abcdef");
    EXPECT_FALSE(StrCopy(s, s + 3, 3)); // the source begins where the room ends
    EXPECT_STREQ(s, "de");
}
} // namespace
