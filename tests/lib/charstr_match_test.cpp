// Comparison with flags and patterns, and the tokeniser.
#include "lib/charstr.h"
#include "support/chance.h"
#include "support/child.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace
{
constexpr int BOTH = STR_NOSPACE | STR_NOPUNCT;
constexpr int WILD = STR_PATTERN;

struct MATCHROW {
    const char *s, *pat;
    int flags;
    bool equal;
};

void ExpectMatches(const MATCHROW *row, size_t count)
{
    for (; count > 0; --count, ++row)
        EXPECT_EQ(StrMatch(row->s, row->pat, row->flags), row->equal)
            << '"' << row->s << "\", \"" << row->pat << "\", flags " << std::hex << row->flags;
}

TEST(StrMatch, ComparesWithWhatTheFlagsIgnore)
{
    const MATCHROW table[] = {
        {"", "", 0, true},
        {"a", "", 0, false},
        {"Halle", "Halle", 0, true},
        {"Halle", "halle", 0, false},
        {"a*", "ab", 0, false},
        {"Halle", "hALLE", STR_NOCASE, true},
        {"\xDC"
         "ber",
         "\xFC"
         "BER",
         STR_NOCASE, true},
        {"\xDF", "ss", STR_NOCASE, false},
        {"Hallen", "Halle", STR_NOCASE, false},
        {"a  b", "a b", STR_NOSPACE, true},
        {"a b", "ab", STR_NOSPACE, false},
        {"ab", "a b", STR_NOSPACE, false},
        {" a b ",
         "a\t\xA0"
         "b",
         STR_NOSPACE, true},
        {"  ", "", STR_NOSPACE, true},
        {"", "  ", STR_NOSPACE, true},
        {"a ", "a", STR_NOSPACE, true},
        {"a, b", "a,b", STR_NOSPACE, true},
        {"a , b", "a,b", STR_NOSPACE, true},
        {"a b", "a,b", STR_NOSPACE, false},
        {"a-b", "a,b", STR_NOPUNCT, true},
        {"a-b", "ab", STR_NOPUNCT, false},
        {"(ab)", "ab", STR_NOPUNCT, true},
        {"a - b", "a b", STR_NOPUNCT, false}, // one blank more stays
        {"a-b", "a b", STR_NOPUNCT, false},
        {"a - b", "a b", BOTH, true},
        {"a-b", "a b", BOTH, true},
        {"a-b", "ab", BOTH, false},
        {"...", "", BOTH, true},
        {"Wand 1", "wand  1", STR_NOCASE | STR_NOSPACE, true},
        {"Wand 1", "wand1", STR_NOCASE | STR_NOSPACE, false},
        {"Wand 1", "Wand 2", STR_NOCASE | STR_NOSPACE, false},
        {"5 %", "5%", STR_NOSPACE, true}, // a separator needs no agreement
    };
    ExpectMatches(table, std::size(table));
}

TEST(StrMatch, ComparesWithPatterns)
{
    const MATCHROW table[] = {
        {"", "*", WILD, true},
        {"", "?", WILD, false},
        {"", "**", WILD, true},
        {"a", "?", WILD, true},
        {"ab", "?", WILD, false},
        {"abc", "a*c", WILD, true},
        {"ac", "a*c", WILD, true},
        {"abcd", "a*c", WILD, false},
        {"abcbc", "a*bc", WILD, true},
        {"aXbXc", "a*X?", WILD, true},
        {"abc", "*", WILD, true},
        {"abc", "*?*?*?*", WILD, true},
        {"abc", "*?*?*?*?*", WILD, false},
        {"a*c", "a\\*c", WILD, true},
        {"abc", "a\\*c", WILD, false},
        {"a?c", "a\\?c", WILD, true},
        {"a\\c", "a\\\\c", WILD, true},
        {"abc", "a\\bc", WILD, true},
        {"a\\", "a\\", WILD, true}, // nothing behind it: itself
        {"ab", "a\\", WILD, false},
        {"ABC", "a*C", WILD, false},
        {"ABC", "a*C", WILD | STR_NOCASE, true},
        {"a b", "a b*", WILD | STR_NOSPACE, true},
        {"a  bc", "a b*", WILD | STR_NOSPACE, true},
        {"abc", "a b*", WILD | STR_NOSPACE, false},
        {"a b", "a*b", WILD | STR_NOSPACE, true},
        {"axb", "a* b", WILD | STR_NOSPACE, false}, // behind the run a word must begin
        {"ax b", "a* b", WILD | STR_NOSPACE, true},
        {"b", "* b", WILD | STR_NOSPACE, true},
        {"a b", "a?", WILD | STR_NOSPACE, false},
        {"ab", "a?", WILD | STR_NOSPACE, true},
        {"a ,", "a?", WILD | STR_NOSPACE, true},
        {"a-b", "a*b", WILD | STR_NOPUNCT, true}, // wild characters stay wild when separators are ignored
        {"a*b", "a\\*b", WILD | STR_NOPUNCT, true},
        {"a-b", "a\\*b", WILD | STR_NOPUNCT, true},
        {"ab", "a\\*b", WILD | STR_NOPUNCT, false},
    };
    ExpectMatches(table, std::size(table));
}

// The same rules as a search over all choices, on pairs of lists instead of a walk.
struct PLAINELEMENT {
    char kind; // 'c' a character, '?' any one, '*' a run
    char c;
    bool passed; // something was passed over before it
};

struct PLAINPATTERN {
    std::vector<PLAINELEMENT> elements;
    int skip;
    int flags;
};

PLAINPATTERN ParsePlainly(const std::string &pat, int flags)
{
    PLAINPATTERN plain = {{}, (flags & STR_NOSPACE ? 16 : 0) | (flags & STR_NOPUNCT ? 8 : 0), flags};
    bool wild = flags & STR_PATTERN;
    bool passed = false;
    for (size_t i = 0; i < pat.size(); ++i) {
        PLAINELEMENT e = {'c', pat[i], false};
        if (wild && (pat[i] == '*' || pat[i] == '?'))
            e.kind = pat[i];
        else if (wild && pat[i] == '\\' && i + 1 < pat.size())
            e.c = pat[++i];
        if (e.kind == 'c' && (ChrClass(e.c) & plain.skip)) {
            passed = true;
            continue;
        }
        e.passed = passed;
        passed = false;
        plain.elements.push_back(e);
    }
    return plain;
}

bool PlainMatch(const std::string &s, size_t i, const PLAINPATTERN &p, size_t j, char before)
{
    size_t k = i;
    while (k < s.size() && (ChrClass(s[k]) & p.skip))
        ++k;
    if (j == p.elements.size())
        return k == s.size();
    const PLAINELEMENT &e = p.elements[j];
    if (e.kind == '*') {
        for (size_t end = i; end <= s.size(); ++end)
            if (PlainMatch(s, end, p, j + 1, '*'))
                return true;
        return false;
    }
    if (k == s.size())
        return false;
    bool same = s[k] == e.c || ((p.flags & STR_NOCASE) && ChrLower(s[k]) == ChrLower(e.c));
    if (e.kind == 'c' && !same)
        return false;
    bool word = ChrClass(s[k]) & 7;
    if (p.skip != 0 && word) {
        bool startOfText = k == 0 || !(ChrClass(s[k - 1]) & 7);
        bool startOfPattern = e.passed || before == ' ';
        bool either = before == '*' && !e.passed;
        if (!either && startOfText != startOfPattern)
            return false;
    }
    return PlainMatch(s, k + 1, p, j + 1, word ? 'w' : ' ');
}

std::string RandomText(CHANCE &chance, const char *alphabet, int longest)
{
    std::string text;
    for (int n = chance.Int(0, longest); n > 0; --n)
        text += alphabet[chance.Int(0, StrLength(alphabet) - 1)];
    return text;
}

/// A pattern that has something of the text in it, or two independent texts would hardly ever match.
std::string PatternFor(CHANCE &chance, const std::string &text, const char *alphabet)
{
    std::string pat;
    for (char c : text) {
        int way = chance.Int(0, 11);
        if (way == 0)
            pat += '*';
        else if (way == 1)
            pat += '?';
        else if (way == 2)
            pat += std::string("\\") + c;
        else if (way == 3)
            pat += alphabet[chance.Int(0, StrLength(alphabet) - 1)];
        else if (way != 4)
            pat += c;
        if (chance.One(6))
            pat += chance.One(2) ? ' ' : ',';
    }
    return pat;
}

TEST(StrMatch, AgreesWithASearchOverAllChoicesOnRandomTexts)
{
    const char alphabet[] = "abA ,*?\\";
    CHANCE chance(3);
    int equal[64] = {};
    for (int i = 0; i < 300000; ++i) {
        int choice = chance.Int(1, 15);
        int flags = (choice & 1 ? STR_NOCASE : 0) | (choice & 2 ? STR_NOSPACE : 0) |
                    (choice & 4 ? STR_NOPUNCT : 0) | (choice & 8 ? STR_PATTERN : 0);
        std::string s = RandomText(chance, alphabet, 8);
        std::string pat = chance.One(3) ? RandomText(chance, alphabet, 8) : PatternFor(chance, s, alphabet);
        bool expected = PlainMatch(s, 0, ParsePlainly(pat, flags), 0, ' ');
        ASSERT_EQ(StrMatch(s.c_str(), pat.c_str(), flags), expected)
            << '"' << s << "\", \"" << pat << "\", flags " << std::hex << flags;
        equal[choice] += expected;
    }
    for (int choice = 1; choice <= 15; ++choice)
        EXPECT_GT(equal[choice], 500) << "too few pairs match for the comparison to mean something";
}

TEST(StrMatch, EndsSoonOnPatternsThatInviteManyChoices)
{
    std::string pat;
    for (int i = 0; i < 40; ++i)
        pat += "*a";
    std::string s(2000, 'a');
    EXPECT_TRUE(StrMatch(s.c_str(), pat.c_str(), STR_PATTERN));
    EXPECT_FALSE(StrMatch(s.c_str(), (pat + "b").c_str(), STR_PATTERN));
    EXPECT_FALSE(StrMatch(s.c_str(), (pat + "*b").c_str(), STR_PATTERN | STR_NOSPACE));
}

std::vector<std::string> Tokens(const char *text, const char *set, char quote, int flags)
{
    std::vector<std::string> tokens;
    std::vector<char> s(text, text + StrLength(text) + 1);
    TOKEN tok;
    for (TokInit(&tok, s.data(), -1); TokNext(&tok, set, quote, flags);) {
        tokens.push_back(tok.cur);
        EXPECT_EQ(tok.len, StrLength(tok.cur));
        EXPECT_EQ(tok.mod, 2);
    }
    EXPECT_FALSE(TokNext(&tok, set, quote, flags)) << "an end stays an end";
    TokEnd(&tok);
    EXPECT_EQ(tok.cur, static_cast<char *>(NULL));
    EXPECT_STREQ(s.data(), text) << "the text is not put together again";
    return tokens;
}

TEST(Tokeniser, CutsATextIntoItsTokens)
{
    using LIST_OF = std::vector<std::string>;
    struct {
        const char *text, *set;
        char quote;
        int flags;
        LIST_OF tokens;
    } table[] = {
        {"", ",", EOS, 0, {""}},
        {"a", ",", EOS, 0, {"a"}},
        {",", ",", EOS, 0, {"", ""}},
        {"a,b;c", ",;", EOS, 0, {"a", "b", "c"}},
        {"a,,c", ",", EOS, 0, {"a", "", "c"}},
        {",a,", ",", EOS, 0, {"", "a", ""}},
        {"a\\,b,c", ",", '\\', 0, {"a\\,b", "c"}},
        {"a\\\\,b", ",", '\\', 0, {"a\\\\", "b"}},
        {"a,b\\", ",", '\\', 0, {"a", "b\\"}},
        {"a b\tc", "", EOS, CHR_SPACE, {"a", "b", "c"}},
        {"a b,c", ",", EOS, CHR_SPACE, {"a", "b", "c"}},
        {"a,b,c", ",", EOS, STR_LAST, {"a", "b", "c"}}, // the last place is never meant
        {"1xX2", "x", EOS, STR_NOCASE, {"1", "", "2"}},
    };
    for (const auto &row : table)
        EXPECT_EQ(Tokens(row.text, row.set, row.quote, row.flags), row.tokens) << '"' << row.text << '"';
}

TEST(Tokeniser, ShowsOneTokenAtATimeAndPutsTheRestBack)
{
    char s[] = "ab,cd,ef";
    TOKEN tok;
    TokInit(&tok, s, -1);
    EXPECT_EQ(tok.mod, 0);
    EXPECT_STREQ(s, "ab,cd,ef");
    ASSERT_TRUE(TokNext(&tok, ",", EOS, 0));
    EXPECT_STREQ(s, "ab");
    EXPECT_EQ(tok.saved, ',');
    ASSERT_TRUE(TokNext(&tok, ",", EOS, 0));
    EXPECT_STREQ(s, "ab,cd");
    EXPECT_EQ(tok.cur, s + 3);
    EXPECT_EQ(tok.len, 2);
    TokEnd(&tok);
    EXPECT_STREQ(s, "ab,cd,ef");
}

TEST(Tokeniser, MayChangeItsSeparatorsOnTheWay)
{
    char s[] = "name=1,2";
    TOKEN tok;
    TokInit(&tok, s, -1);
    ASSERT_TRUE(TokNext(&tok, "=", EOS, 0));
    EXPECT_STREQ(tok.cur, "name");
    ASSERT_TRUE(TokNext(&tok, ",", EOS, 0));
    EXPECT_STREQ(tok.cur, "1");
    ASSERT_TRUE(TokNext(&tok, "", EOS, 0));
    EXPECT_STREQ(tok.cur, "2");
    TokEnd(&tok);
    EXPECT_STREQ(s, "name=1,2");
}

TEST(Tokeniser, KeepsItsPlaceWhenATokenIsShortened)
{
    char s[] = "ab  ,cd";
    TOKEN tok;
    TokInit(&tok, s, -1);
    ASSERT_TRUE(TokNext(&tok, ",", EOS, 0));
    StrTrim(tok.cur, STR_END);
    EXPECT_STREQ(tok.cur, "ab");
    ASSERT_TRUE(TokNext(&tok, ",", EOS, 0));
    EXPECT_STREQ(tok.cur, "cd");
    TokEnd(&tok);
}

TEST(Tokeniser, CutsOnceAtAGivenLength)
{
    for (int len = 0; len <= 5; ++len) {
        char s[] = "Halle";
        TOKEN tok;
        TokInit(&tok, s, len);
        EXPECT_EQ(tok.mod, 1);
        EXPECT_EQ(tok.len, len);
        EXPECT_EQ(std::string(s), std::string("Halle").substr(0, static_cast<size_t>(len)));
        TokEnd(&tok);
        EXPECT_STREQ(s, "Halle");
    }
}

TEST(Tokeniser, PutsAnUncutTextBack)
{
    char s[] = "Halle";
    TOKEN tok;
    TokInit(&tok, s, -1);
    TokEnd(&tok);
    EXPECT_STREQ(s, "Halle");
}

TEST(Tokeniser, StopsOnWrongUse)
{
    static char s[] = "ab,cd";
    static TOKEN tok;
    struct {
        const char *condition;
        void (*fault)();
    } table[] = {
        {"tok != NULL && s != NULL", [] { TokInit(NULL, s, -1); }},
        {"tok != NULL && s != NULL", [] { TokInit(&tok, NULL, -1); }},
        {"len >= -1 && len <= StrLength(s)", [] { TokInit(&tok, s, -2); }},
        {"len >= -1 && len <= StrLength(s)", [] { TokInit(&tok, s, 6); }},
        {"tok != NULL", [] { TokNext(NULL, ",", EOS, 0); }},
        {"tok != NULL", [] { TokEnd(NULL); }},
        {"tok->mod == 0 || tok->mod == 2",
         [] {
             TokInit(&tok, s, 2);
             TokNext(&tok, ",", EOS, 0);
         }},
        {"tok->len >= 0",
         [] {
             TokInit(&tok, s, -1);
             TokEnd(&tok);
             TokNext(&tok, ",", EOS, 0);
         }},
        {"tok->len >= 0",
         [] {
             TokInit(&tok, s, 2);
             TokEnd(&tok);
             TokEnd(&tok);
         }},
        {"*p == EOS",
         [] {
             TokInit(&tok, s, -1);
             TokNext(&tok, ",", EOS, 0);
             s[2] = 'x';
             TokNext(&tok, ",", EOS, 0);
         }},
        {"*p == EOS",
         [] {
             TokInit(&tok, s, 2);
             s[2] = 'x';
             TokEnd(&tok);
         }},
        {"s != NULL && set != NULL",
         [] {
             TokInit(&tok, s, -1);
             TokNext(&tok, NULL, EOS, 0);
         }},
    };
    for (const auto &row : table)
        EXPECT_TRUE(AbortsOnAssertion(row.condition, "lib/charstr.cpp", row.fault)) << &row - table;
}
} // namespace
