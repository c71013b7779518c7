#include "support/chance.h"
#include "usr/edcutils.h"
#include "usr/zulreport.h"

#include "lib/charstr.h"
#include "lib/platform.h"

#include <gtest/gtest.h>

namespace
{
using PIECES = std::vector<std::string>;

std::string Repeated(const std::string &text, int count)
{
    std::string all;
    while (count-- > 0)
        all += text;
    return all;
}

PIECES Pieces(const std::string &text)
{
    return ZulClosingPieces(text.c_str());
}

bool IsBlank(char c)
{
    return (ChrClass(c) & CHR_SPACE) != 0;
}

int NonBlanks(const std::string &text)
{
    int count = 0;
    for (char c : text)
        count += !IsBlank(c);
    return count;
}

const std::string longLine = Repeated("Halle ", 20); // 100 characters that are no blanks
const std::string paragraph = longLine + "\r\n";

/// Where each piece begins in the text, if the pieces are the text less blanks and line breaks between them.
testing::AssertionResult CoversTheText(const std::string &text, const PIECES &pieces)
{
    size_t at = 0;
    for (size_t i = 0; i < pieces.size(); ++i) {
        if (text.compare(at, pieces[i].size(), pieces[i]) != 0)
            return testing::AssertionFailure()
                   << "piece " << i << " is not in its place: \"" << pieces[i] << '"';
        at += pieces[i].size();
        // The next piece goes on where the scan ended: at most one line break with blanks about it further.
        size_t begin = at;
        if (i + 1 < pieces.size())
            while (at < text.size() && text.compare(at, pieces[i + 1].size(), pieces[i + 1]) != 0)
                ++at;
        for (; begin < at; ++begin)
            if (!IsBlank(text[begin]))
                return testing::AssertionFailure() << "'" << text[begin] << "' is lost behind piece " << i;
    }
    for (; at < text.size(); ++at)
        if (!IsBlank(text[at]))
            return testing::AssertionFailure() << "'" << text[at] << "' is lost at the end";
    return testing::AssertionSuccess();
}
} // namespace

TEST(ZulClosingPieces, FollowTheLinesOfTheText)
{
    const struct {
        const char *what;
        std::string text;
        PIECES pieces;
    } cases[] = {
        {"nothing", "", {}},
        {"one short line", "kurz", {"kurz"}},
        {"a short line keeps its line break at the end", "kurz\r\n", {"kurz\r\n"}},
        {"two short lines are one piece", "a\r\nb", {"a\r\nb"}},
        {"three short lines are one piece", "a\r\nb\r\nc", {"a\r\nb\r\nc"}},
        {"of four short lines two and two are pieces", "a\r\nb\r\nc\r\nd", {"a\r\nb", "c\r\nd"}},
        {"five short lines: the last one stays with its two",
         "a\r\nb\r\nc\r\nd\r\ne",
         {"a\r\nb", "c\r\nd\r\ne"}},
        {"a line of 89 characters is short",
         std::string(89, 'x') + "\r\nb\r\nc\r\nd",
         {std::string(89, 'x') + "\r\nb", "c\r\nd"}},
        {"a line of 90 characters is a paragraph",
         std::string(90, 'x') + "\r\nb\r\nc\r\nd",
         {std::string(90, 'x'), "b\r\nc\r\nd"}},
        {"a short line stays with the paragraph before it", paragraph + "kurz", {paragraph + "kurz"}},
        {"also across an empty line", paragraph + "\r\nkurz", {paragraph + "\r\nkurz"}},
        {"paragraphs are parted", paragraph + paragraph + longLine, {longLine, longLine, longLine}},
        {"a second short line no longer stays", paragraph + "a\r\nb", {longLine, "a\r\nb"}},
        {"an empty line opens the next piece",
         "a\r\n\r\n" + paragraph + paragraph + "b\r\nc",
         {"a", "\r\n" + longLine, longLine, "b\r\nc"}},
        {"an empty first line stops no scan, the line behind it does",
         "\r\na\r\nb\r\nc\r\nd",
         {"\r\na", "b\r\nc\r\nd"}},
        {"the third empty line does", "\r\n\r\n\r\na\r\nb", {"\r\n", "\r\na\r\nb"}},
        {"only blanks", "   ", {"   "}},
        {"only line breaks", "\r\n\r\n", {"\r\n\r\n"}},
        {"a single line feed parts no lines", "a\nb\nc\nd", {"a\nb\nc\nd"}},
        {"a single carriage return parts no lines", "a\rb\r", {"a\rb\r"}},
    };
    for (const auto &c : cases)
        EXPECT_EQ(Pieces(c.text), c.pieces) << c.what;
}

TEST(ZulClosingPieces, PartALineBehindABlankAfterSixHundredCharacters)
{
    // 120 words of five characters reach the limit; the last of them is given back, since a blank stands before
    // it.
    std::string text = Repeated("wort. ", 300);
    PIECES pieces = Pieces(text);
    ASSERT_EQ(pieces.size(), 3u);
    EXPECT_EQ(pieces[0], Repeated("wort. ", 119));
    EXPECT_EQ(pieces[1], Repeated("wort. ", 119));
    EXPECT_EQ(pieces[2], Repeated("wort. ", 62));
}

TEST(ZulClosingPieces, DoNotPartALineThatEndsAtTheLimit)
{
    std::string line(600, 'x');
    EXPECT_EQ(Pieces(line), PIECES({line}));
    EXPECT_EQ(Pieces(line + "\r\n" + line), PIECES({line, line}));
}

TEST(ZulClosingPieces, BackUpOverAtMostTwoHundredCharacters)
{
    std::string words = Repeated("wort. ", 80); // 400 characters that are no blanks
    EXPECT_EQ(Pieces(words + std::string(201, 'x'))[0], words);
    EXPECT_EQ(Pieces(words + std::string(300, 'x'))[0], words) << "200 characters of the word fit";

    std::string fewer = Repeated("wort. ", 79) + "ort. "; // one less: 201 characters of the word fit
    PIECES pieces = Pieces(fewer + std::string(290, 'x'));
    EXPECT_EQ(pieces, PIECES({fewer + std::string(290, 'x')})) << "the rest is a short line and stays";
    pieces = Pieces(fewer + std::string(400, 'x'));
    EXPECT_EQ(pieces, PIECES({fewer + std::string(201, 'x'), std::string(199, 'x')}));
}

TEST(ZulClosingPieces, SplitAWordWithoutEnd)
{
    PIECES pieces = Pieces(std::string(16383, 'x'));
    ASSERT_EQ(pieces.size(), 28u);
    for (size_t i = 0; i + 1 < pieces.size(); ++i)
        EXPECT_EQ(pieces[i].size(), 600u);
    EXPECT_EQ(pieces.back().size(), 16383u - 27 * 600);
}

TEST(ZulClosingPieces, LoseNothingButBlanksAtTheirEndsWhateverTheText)
{
    CHANCE chance(20260101);
    const char *const parts[] = {"\r\n", "\r\n", " ", "\t", "\r", "\n", "x", "wort ", "\xA0", "~", "\xE4"};
    for (int round = 0; round < 400; ++round) {
        std::string text;
        int length = chance.Int(0, 3000);
        while (static_cast<int>(text.size()) < length) {
            if (chance.One(20))
                text += std::string(static_cast<size_t>(chance.Int(1, 700)), 'y');
            else
                text += Repeated(chance.Of(parts), chance.Int(1, 30));
        }
        PIECES pieces = Pieces(text);
        EXPECT_TRUE(CoversTheText(text, pieces)) << "round " << round;
        EXPECT_LE(pieces.size(), text.size());
        int nonBlanks = 0;
        for (const std::string &piece : pieces) {
            EXPECT_LE(NonBlanks(piece), 600 + 89 + 89) << "a paragraph with a short line, or short lines";
            nonBlanks += NonBlanks(piece);
        }
        EXPECT_EQ(nonBlanks, NonBlanks(text)) << "round " << round;
    }
}

TEST(ZulClosingLine, NamesTheDateAndTheAuthor)
{
    EmCONCLUSION conclusion("Schluss", 20261121);
    StrCopy(conclusion.author, "M\xFCller 100%", sizeof conclusion.author);
    EXPECT_EQ(ZulClosingLine(conclusion), "Den 21.11.2026, Ersteller: M\xFCller 100%");
    conclusion.date = 0;
    conclusion.author[0] = EOS;
    EXPECT_EQ(ZulClosingLine(conclusion), "Den 0, Ersteller: ");
}

TEST(ZulDateText, ShowsADateThatIsNoneAsItsNumber)
{
    const struct {
        int date;
        const char *text;
    } cases[] = {
        {20261121, "21.11.2026"},
        {20240229, "29.02.2024"},
        {20230229, "20230229"},
        {20000229, "29.02.2000"},
        {19000229, "19000229"},
        {20261301, "20261301"},
        {20260001, "20260001"},
        {20260100, "20260100"},
        {20260132, "20260132"},
        {20260431, "20260431"},
        {0, "0"},
        {-20260101, "-20260101"},
        {101, "101"},
        {2147483647, "2147483647"},
        {-2147483647 - 1, "-2147483648"},
    };
    for (const auto &c : cases)
        EXPECT_EQ(ZulDateText(c.date), c.text);
}
