// Marked-up text: what becomes of the marks, of blanks and of long lines, where it is put and how it is drawn.
// On the recording device a letter is half as wide as the font's em square, a blank a quarter.
#include "usr/edcapp.h"
#include "usr/edcbase2.h"
#include "usr/edcitem.h"

#include "support/child.h"
#include "support/fault.h"
#include "support/recorddc.h"

#include <climits>
#include <ctime>
#include <gtest/gtest.h>

#include "lib/xon.h"

namespace
{
enum { WIDE = 10000 };
// px at font size 10: a line, a letter, a blank, and both in the small font of sub- and superscript.
enum { LINE = 12, LETTER = 5, BLANK = 3, SMALL_LETTER = 3, SMALL_BLANK = 2 };

class EdcText : public testing::Test
{
protected:
    EdcText()
    {
        SetAppDocument(&doc);
        text.SetFont("Arial", 10, 1);
    }

    /// Lays the text out at (0, 0) and tells the fragments, one a line: place, width, style, text.
    std::string Fragments(const std::string &source, int width = WIDE, int breakMode = EDC_BREAKWIDTH)
    {
        current = source;
        text.SetText(current.c_str());
        TRect rect = {0, 0, width, 0};
        text.Layout(dc, rect, breakMode, EDC_HLEFT, EDC_VTOP);
        std::string told;
        for (const TEdcTextFrag *frag = text.first; frag != NULL; frag = frag->next) {
            EXPECT_TRUE(frag->completed);
            told += std::to_string(frag->x) + "," + std::to_string(frag->y) + " " +
                    std::to_string(frag->width) + " " + std::to_string(frag->style) + " [" +
                    std::string(frag->text, static_cast<size_t>(frag->length)) + "]\n";
        }
        return told;
    }
    /// The texts of the fragments alone, "|" at a change of fragment and "/" at a new line.
    std::string Lines(const std::string &source, int width = WIDE, int breakMode = EDC_BREAKWIDTH)
    {
        Fragments(source, width, breakMode);
        std::string told;
        const TEdcTextFrag *before = NULL;
        for (const TEdcTextFrag *frag = text.first; frag != NULL; before = frag, frag = frag->next) {
            if (before != NULL)
                told += before->y != frag->y ? "/" : "|";
            told += std::string(frag->text, static_cast<size_t>(frag->length));
        }
        return told;
    }
    std::string Styles(const std::string &source)
    {
        Fragments(source);
        std::string told;
        for (const TEdcTextFrag *frag = text.first; frag != NULL; frag = frag->next)
            told += std::string(1, static_cast<char>('0' + frag->style)) +
                    std::string(frag->text, static_cast<size_t>(frag->length)) + " ";
        return told;
    }
    std::string Painted(const std::string &source, int width = WIDE)
    {
        Fragments(source, width);
        dc.calls.clear();
        text.Paint(dc);
        return dc.calls;
    }

    TEdcDocument doc;
    TRecordDC dc;
    TEdcText text;
    std::string current;
};
} // namespace

TEST_F(EdcText, EmptyHasNoFragmentAndTheHeightOfOneLine)
{
    for (const char *source : {"", "   ", "\t \r", "^", "_^_", " _ "}) {
        EXPECT_EQ(Fragments(source), "") << source;
        EXPECT_EQ(text.first, static_cast<TEdcTextFrag *>(NULL));
        EXPECT_EQ(text.width, 0);
        EXPECT_EQ(text.height, LINE);
    }
}

TEST_F(EdcText, IsPartedByAPairOfMarksIntoThreeFragmentsOfOneLine)
{
    EXPECT_EQ(Fragments("H_2_O"), "0,0 5 0 [H]\n5,0 3 1 [2]\n8,0 5 0 [O]\n");
    EXPECT_EQ(text.width, 2 * LETTER + SMALL_LETTER);
    EXPECT_EQ(text.height, LINE);
    EXPECT_EQ(Fragments("m^2^"), "0,0 8 0 [m]\n8,0 3 2 [2]\n");
}

TEST_F(EdcText, TakesAMarkBehindAnExclamationMarkAsALetter)
{
    EXPECT_EQ(Fragments("H!_2"), "0,0 15 0 [H_2]\n");
    EXPECT_EQ(Fragments("a!^b!~c"), "0,0 25 0 [a^b~c]\n");
    EXPECT_EQ(Lines("!"), "!");
    EXPECT_EQ(Lines("a!b!!"), "a!b!!");
    EXPECT_EQ(Lines("!!^"), "!^"); // the second one belongs to the mark
    EXPECT_EQ(Lines("!!~b"), "!~b");
}

TEST_F(EdcText, StaysRaisedToItsEndAfterAMarkThatNeverCloses)
{
    EXPECT_EQ(Styles("a^b c"), "0a 2b c ");
    EXPECT_EQ(Styles("a_b c"), "0a 1b c ");
}

TEST_F(EdcText, ChangesItsStyleWithEachMark)
{
    const struct {
        const char *source, *styles;
    } rows[] = {
        {"_a_b", "1a 0b "},     {"^a^b", "2a 0b "},          {"a_b^c", "0a 1b 2c "},
        {"a^b_c", "0a 2b 1c "}, {"a^b_c_d", "0a 2b 1c 0d "}, {"a_^b", "0a 2b "},
        {"a__b", "0a 0b "},     {"a^^^b", "0a 2b "},         {"_^_a", "1a "},
        {"a_b_", "0a 1b "},     {"a_ _b", "0a 1  0b "},      {"~_~", "0  1  "},
    };
    for (const auto &row : rows)
        EXPECT_EQ(Styles(row.source), row.styles) << row.source;
}

TEST_F(EdcText, CountsARunOfWhiteSpaceAsOneBlank)
{
    const struct {
        const char *source, *lines;
    } rows[] = {
        {"  a", "a"},
        {"a \t\r b", "a b"},
        {"a\xA0\xA0"
         "b",
         "a b"},
        {"a  \n  b", "a /b"}, // none behind a line end, one before it
        {"a ^ b", "a | b"},   // runs end at a mark
        {" \n a", "/a"},
        {"a ~ b", "a   b"},
    };
    for (const auto &row : rows)
        EXPECT_EQ(Lines(row.source), row.lines) << row.source;
}

TEST_F(EdcText, BreaksOnlyWhereNoTildeStands)
{
    int all = 3 * LETTER + 2 * BLANK;
    EXPECT_EQ(Lines("a~b c", all), "a b c");
    EXPECT_EQ(Lines("a~b c", all - 1), "a b/c");
    EXPECT_EQ(Lines("c a~b", all - 1), "c/a b");
    EXPECT_EQ(Lines("a\xA0"
                    "b c",
                    all - 1),
              "a b/c");
    EXPECT_EQ(Painted("a~b"), "Text 0,0 \"a b\" Arial 12 000000\n");
    EXPECT_EQ(text.width, 2 * LETTER + BLANK);
}

TEST_F(EdcText, DropsTheBlankAtAPlaceWhereALineEnds)
{
    EXPECT_EQ(Fragments("ab cd", 4 * LETTER), "0,0 10 0 [ab]\n0,12 10 0 [cd]\n");
    EXPECT_EQ(text.width, 2 * LETTER);
    EXPECT_EQ(text.height, 2 * LINE);
    EXPECT_EQ(Lines("ab ~~ cd", 4 * LETTER), "ab/cd");     // and the holding ones behind it
    EXPECT_EQ(Lines("ab \ncd", 2 * LETTER), "ab/cd");      // with one line end
    EXPECT_EQ(Lines("ab \n\ncd", 2 * LETTER), "ab//cd");   // but not two
    EXPECT_EQ(Lines("ab\n~~cd", 100 * LETTER), "ab/  cd"); // an indent behind a line end stays
}

TEST_F(EdcText, HasAnEmptyLineBetweenTwoLineEnds)
{
    EXPECT_EQ(Lines("a\n\nb"), "a//b");
    EXPECT_EQ(text.height, 3 * LINE);
    EXPECT_EQ(Lines("\n\na"), "//a");
    EXPECT_EQ(Lines("a\n \n b"), "a//b");
}

TEST_F(EdcText, TakesALineEndAsABlankWhereAllIsOneLine)
{
    EXPECT_EQ(Fragments("ab\ncd ef", 1, EDC_BREAKNONE), "0,0 36 0 [ab cd ef]\n");
    EXPECT_EQ(text.height, LINE);
    EXPECT_EQ(Lines("ab_\n_c", 1, EDC_BREAKNONE), "ab| |c");
    EXPECT_EQ(text.width, 3 * LETTER + SMALL_BLANK);
}

TEST_F(EdcText, BreaksAtLineEndsOnlyInTheOtherModes)
{
    for (int breakMode : {0, 2, 4, -1})
        EXPECT_EQ(Lines("ab cd\nef gh", 1, breakMode), "ab cd/ef gh") << breakMode;
}

TEST_F(EdcText, KeepsACharacterThatIsWiderThanTheLine)
{
    EXPECT_EQ(Lines("W", 0), "W");
    EXPECT_EQ(text.width, 8);
    EXPECT_EQ(text.height, LINE);
    EXPECT_EQ(Lines("abc", 0), "a/b/c");
    EXPECT_EQ(Lines("abc", LETTER), "a/b/c");
    EXPECT_EQ(Lines("abc", 2 * LETTER), "ab/c");
    EXPECT_EQ(Lines("!~!~", 0), "~/~"); // one character in two
    EXPECT_EQ(text.height, 2 * LINE);
}

TEST_F(EdcText, IsMeasuredWithoutTheBlanksAtItsEndButWithALineEnd)
{
    EXPECT_EQ(Fragments("ab \t "), "0,0 10 0 [ab]\n");
    EXPECT_EQ(text.width, 2 * LETTER);
    EXPECT_EQ(Lines("ab\n  "), "ab/");
    EXPECT_EQ(text.width, 2 * LETTER);
    EXPECT_EQ(text.height, 2 * LINE);
    EXPECT_EQ(Lines("ab~"), "ab "); // one that holds is measured
    EXPECT_EQ(text.width, 2 * LETTER + BLANK);
}

TEST_F(EdcText, GoesBackOverFragmentsToTheLastBlank)
{
    // "ab c" and a small "d" that does not fit any more: the word goes to the next line with it.
    EXPECT_EQ(Fragments("ab c_d_", 3 * LETTER + BLANK), "0,0 10 0 [ab]\n0,12 5 0 [c]\n5,12 3 1 [d]\n");
    EXPECT_EQ(text.width, 2 * LETTER);
    // What was passed once and is passed again keeps its marks.
    EXPECT_EQ(Lines("ab c~!~_dd_", 4 * LETTER + 2 * BLANK), "ab/c ~|dd");
    EXPECT_EQ(Lines("ab !~~c~d_e_", 4 * LETTER + 2 * BLANK), "ab/~ c d|e");
    EXPECT_EQ(Lines("_ab_ cd", 2 * LETTER + 4), "ab|/cd"); // a blank that begins a fragment is a place too
}

TEST_F(EdcText, MeasuresSubAndSuperscriptInTheSmallFont)
{
    Fragments("a_ b_");
    EXPECT_EQ(text.width, LETTER + SMALL_BLANK + SMALL_LETTER);
    text.SetFormat(EDC_TfSUB); // the whole text
    Fragments("ab");
    EXPECT_EQ(text.width, 2 * SMALL_LETTER);
    EXPECT_EQ(text.height, LINE);
    text.SetFormat(EDC_TfBOLD);
    Fragments("ab");
    EXPECT_EQ(text.width, 2 * (LETTER + 1));
}

TEST_F(EdcText, DrawsSubscriptAtTheLinesBottomAndSuperscriptAtItsTop)
{
    text.SetColor({255, 0, 0});
    EXPECT_EQ(Painted("a_b_^c^\nd"), "Text 0,0 \"a\" Arial 12 ff0000\n"
                                     "Text 5,12 \"b\" Arial 7 ff0000 bottom\n"
                                     "Text 8,0 \"c\" Arial 7 ff0000\n"
                                     "Text 0,12 \"d\" Arial 12 ff0000\n");
    EXPECT_TRUE(dc.State().opaque);
    EXPECT_EQ(dc.State().align, WIN_TEXT_TOP);
}

TEST_F(EdcText, KeepsBoldInASuperscriptAndLosesUnderline)
{
    text.SetFormat(EDC_TfBOLD | EDC_TfITALIC | EDC_TfUNDERLINE);
    EXPECT_EQ(Painted("a^b^_c_"), "Text 0,0 \"a\" Arial 12 bold italic underline 000000\n"
                                  "Text 6,0 \"b\" Arial 7 bold italic 000000\n"
                                  "Text 10,12 \"c\" Arial 7 bold italic 000000 bottom\n");
    text.SetFormat(EDC_TfSUB | EDC_TfUNDERLINE);
    EXPECT_EQ(Painted("a"), "Text 0,12 \"a\" Arial 7 000000 bottom\n");
}

TEST_F(EdcText, HasASmallFontOfAtLeastOnePixel)
{
    text.SetFont("Arial", 0, 1); // counts as 1
    EXPECT_EQ(text.fontSize, 1);
    EXPECT_EQ(Painted("a^b^"), "Text 0,0 \"a\" Arial 1 000000\nText 1,0 \"b\" Arial 1 000000\n");
    EXPECT_EQ(text.height, 1);
}

TEST_F(EdcText, RoundsTheHeightOfTheSmallFont)
{
    const struct {
        int size, line, small;
    } rows[] = {{4, 5, 3}, {10, 12, 7}, {11, 13, 8}, {20, 25, 15}, {100, 125, 75}};
    for (const auto &row : rows) {
        text.SetFont("Arial", row.size, 1);
        EXPECT_EQ(Painted("^a^"), "Text 0,0 \"a\" Arial " + std::to_string(row.small) + " 000000\n");
        EXPECT_EQ(text.height, row.line);
    }
}

TEST_F(EdcText, TakesCharactersAboveTheFirstHalfAsTheyAre)
{
    EXPECT_EQ(Painted("L\xE4nge \x80 \xFF"), "Text 0,0 \"Länge € ÿ\" Arial 12 000000\n");
    EXPECT_EQ(text.width, 7 * LETTER + 2 * BLANK);
}

TEST_F(EdcText, AlignsEachLineToTheWidestOne)
{
    const struct {
        int format;
        const char *fragments;
    } rows[] = {
        {0, "0,0 20 0 [abcd]\n0,12 5 0 [e]\n5,12 3 1 [f]\n"},
        {EDC_TfLEFT, "0,0 20 0 [abcd]\n0,12 5 0 [e]\n5,12 3 1 [f]\n"},
        {EDC_TfRIGHT, "0,0 20 0 [abcd]\n12,12 5 0 [e]\n17,12 3 1 [f]\n"},
        {EDC_TfCENTER, "0,0 20 0 [abcd]\n6,12 5 0 [e]\n11,12 3 1 [f]\n"},
        {EDC_TfLEFT | EDC_TfRIGHT, "0,0 20 0 [abcd]\n0,12 5 0 [e]\n5,12 3 1 [f]\n"},
    };
    for (const auto &row : rows) {
        text.SetFormat(row.format);
        EXPECT_EQ(Fragments("abcd\ne_f_"), row.fragments) << row.format;
    }
    text.SetFormat(EDC_TfCENTER);
    EXPECT_EQ(Fragments("abcd\ne"), "0,0 20 0 [abcd]\n7,12 5 0 [e]\n"); // 7.5 cut off
}

TEST_F(EdcText, IsPlacedInItsRectangle)
{
    const struct {
        int hAlign, vAlign;
        TRect given, placed;
    } rows[] = {
        {EDC_HLEFT, EDC_VTOP, {10, 20, 110, 60}, {10, 20, 20, 32}},
        {EDC_HRIGHT, EDC_VTOP, {10, 20, 110, 60}, {100, 20, 110, 32}},
        {EDC_CENTER, EDC_VTOP, {10, 20, 110, 60}, {55, 20, 65, 32}},
        {EDC_HLEFT, EDC_VBOTTOM, {10, 20, 110, 60}, {10, 48, 20, 60}},
        {EDC_HLEFT, EDC_CENTER, {10, 20, 110, 60}, {10, 34, 20, 46}},
        {EDC_CENTER, EDC_CENTER, {10, 20, 111, 61}, {55, 34, 65, 46}},    // halves are cut off
        {EDC_CENTER, EDC_CENTER, {-5, -8, 0, 1}, {-7, -9, 3, 3}},         // towards zero
        {EDC_HRIGHT, EDC_VBOTTOM, {110, 60, 10, 20}, {100, 48, 110, 60}}, // the wrong way round
        {0, 0, {10, 20, 110, 60}, {10, 20, 20, 32}},
    };
    text.SetText("ab");
    for (const auto &row : rows) {
        TRect rect = row.given;
        text.Layout(dc, rect, EDC_BREAKLINES, row.hAlign, row.vAlign);
        EXPECT_EQ(rect, row.placed) << rect.left << " " << rect.top << " " << rect.right << " " << rect.bottom;
        EXPECT_EQ(text.x, row.placed.left);
        EXPECT_EQ(text.y, row.placed.top);
    }
}

TEST_F(EdcText, IsDrawnWhereItWasPlaced)
{
    text.SetText("ab\nc");
    TRect rect = {100, 200, 300, 400};
    text.Layout(dc, rect, EDC_BREAKWIDTH, EDC_HRIGHT, EDC_VBOTTOM);
    text.Paint(dc);
    EXPECT_EQ(dc.calls, "Text 290,376 \"ab\" Arial 12 000000\nText 290,388 \"c\" Arial 12 000000\n");
}

TEST_F(EdcText, WithoutASourceTakesNoRoom)
{
    text.SetText(NULL);
    TRect rect = {30, 50, 10, 20};
    text.Layout(dc, rect, EDC_BREAKWIDTH, EDC_HLEFT, EDC_VTOP);
    EXPECT_EQ(rect, (TRect{10, 20, 10, 20}));
    text.Paint(dc);
    EXPECT_EQ(dc.calls, "");
}

TEST_F(EdcText, LeavesTheContextAsItWas)
{
    TFont font;
    font.face = "Courier New";
    dc.SetFont(font);
    dc.SetTextAlign(WIN_TEXT_BASELINE);
    dc.SetOpaque(false);
    Fragments("a_b_");
    EXPECT_EQ(dc.State().font, font);
    text.Paint(dc);
    EXPECT_FALSE(dc.State().opaque);
    EXPECT_EQ(dc.State().align, WIN_TEXT_BASELINE);
}

TEST_F(EdcText, HasTheDefaultFontUntilItGetsOne)
{
    TEdcText fresh;
    fresh.SetText("a");
    TRect rect = {0, 0, WIDE, 0};
    fresh.Layout(dc, rect, EDC_BREAKWIDTH, EDC_HLEFT, EDC_VTOP);
    fresh.Paint(dc);
    EXPECT_EQ(dc.calls, "Text 0,0 \"a\" Arial 1 000000\n");
}

TEST_F(EdcText, DropsItsFragmentsWhereASetterMakesThemStale)
{
    const struct {
        const char *what;
        void (*set)(TEdcText &);
        int level;
        bool drops;
    } rows[] = {
        {"text", [](TEdcText &t) { t.SetText("b"); }, EDC_LAYOUT, true},
        {"font", [](TEdcText &t) { t.SetFont("Arial", 12, 1); }, EDC_LAYOUT, true},
        {"format", [](TEdcText &t) { t.SetFormat(EDC_TfBOLD); }, EDC_LAYOUT, true},
        {"color",
         [](TEdcText &t) {
             t.SetColor({1, 2, 3});
         },
         EDC_PAINT, false},
        {"clear", [](TEdcText &t) { t.Clear(); }, 0, true},
    };
    for (const auto &row : rows) {
        Fragments("a");
        doc.obsolete = 0;
        row.set(text);
        EXPECT_EQ(doc.obsolete, row.level) << row.what;
        EXPECT_EQ(text.first == NULL, row.drops) << row.what;
        EXPECT_EQ(text.width == 0 && text.height == 0, row.drops) << row.what;
    }
}

TEST_F(EdcText, StopsTheProgramWhenItIsMisused)
{
    EXPECT_TRUE(AbortsOnAssertion("name != NULL && size >= 0", "usr/edcitem_text.cpp",
                                  [&] { text.SetFont(NULL, 10, 1); }));
    EXPECT_TRUE(AbortsOnAssertion("name != NULL && size >= 0", "usr/edcitem_text.cpp",
                                  [&] { text.SetFont("Arial", -1, 1); }));
    EXPECT_TRUE(
        AbortsOnAssertion("name != NULL", "usr/edcitem_text.cpp", [] { TEdcFontRec().Set(NULL, 10, 0); }));
}

TEST(EdcFontRec, TakesTheNameThatFits)
{
    TEdcFontRec rec;
    EXPECT_STREQ(rec.name, "Arial");
    rec.Set("Times New Roman", 14, EDC_TfBOLD);
    EXPECT_STREQ(rec.name, "Times New Roman");
    EXPECT_EQ(rec.size, 14);
    EXPECT_EQ(rec.charset, 1);
    EXPECT_EQ(rec.format, EDC_TfBOLD);
    rec.Set("0123456789012345678901234567890123456789", 14, 0);
    EXPECT_STREQ(rec.name, "0123456789012345678901234567890");
}

TEST_F(EdcText, StandsWithoutFragmentsWhereMemoryFails)
{
    const char *source =
        "Ein Text, der H_2_O und m^2^ hat und in mehr als eine Zeile geht, damit er gebrochen wird";
    text.SetText(source);
    TRect rect;
    int failed = SweepFaults(
        [&] {
            rect = {0, 0, 60, 0};
        },
        [&] { text.Layout(dc, rect, EDC_BREAKWIDTH, EDC_HLEFT, EDC_VTOP); },
        [&](const FaultRun &run) {
            EXPECT_STREQ(run.code, run.fired ? XALLOC : XNULL);
            EXPECT_EQ(text.first == NULL, run.fired > 0);
            EXPECT_EQ(text.height > 0, run.fired == 0);
            EXPECT_EQ(text.text, source);
        });
    EXPECT_GT(failed, 3);
    long before = LiveBlocks();
    text.Layout(dc, rect, EDC_BREAKWIDTH, EDC_HLEFT, EDC_VTOP); // in the place of the former fragments
    EXPECT_EQ(LiveBlocks(), before);
}

namespace
{
/// CPU seconds of one layout, the least of some.
double LayoutTime(TEdcText &text, TDC &dc, const std::string &source, int width)
{
    double least = 1e9;
    for (int i = 0; i < 3; ++i) {
        timespec begin, end;
        text.SetText(source.c_str());
        TRect rect = {0, 0, width, 0};
        clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &begin);
        text.Layout(dc, rect, EDC_BREAKWIDTH, EDC_HLEFT, EDC_VTOP);
        clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &end);
        least = std::min(least, static_cast<double>(end.tv_sec - begin.tv_sec) +
                                    static_cast<double>(end.tv_nsec - begin.tv_nsec) * 1e-9);
    }
    return least;
}

std::string Repeated(const std::string &piece, size_t length)
{
    std::string s;
    while (s.size() < length)
        s += piece;
    return s;
}
} // namespace

TEST_F(EdcText, CostsNoMoreThanItsLengthWhateverIsInIt)
{
    const size_t length = 1 << 15;
    const int times = 16;
    const char *pieces[] = {"a", "abc ", "a^b^", "~", "!~", "a\n", " ", "a~b_c d_ ", "_", "!_", "a ^b c"};
    for (const char *piece : pieces) {
        for (int width : {1, 20, 1000, INT_MAX}) {
            double few = LayoutTime(text, dc, Repeated(piece, length), width);
            double many = LayoutTime(text, dc, Repeated(piece, length * times), width);
            // In the same run on the same machine; what grows with the square costs 256 times as much.
            EXPECT_LT(many, few * times * 6 + 1e-3) << piece << " at " << width;
        }
    }
}

TEST_F(EdcText, OfAMillionCharactersAsksTheDeviceOnceForEach)
{
    class Counting : public TRecordDC
    {
    public:
        int asked = 0;
        int CharWidth(unsigned char c) override
        {
            ++asked;
            return TRecordDC::CharWidth(c);
        }
    } counting;
    std::string source = Repeated("abcde_f_ ghi^j^ ", 1 << 20);
    text.SetText(source.c_str());
    TRect rect = {0, 0, 500, 0};
    text.Layout(counting, rect, EDC_BREAKWIDTH, EDC_HLEFT, EDC_VTOP);
    EXPECT_EQ(counting.asked, 11); // ten letters and the blank
    EXPECT_GT(text.height, 1000 * LINE);
    EXPECT_LE(text.width, 500);
}

TEST_F(EdcText, CutsAWordOfAHundredThousandLettersIntoFullLines)
{
    std::string word(100000, 'a');
    Fragments(word, 20 * LETTER);
    EXPECT_EQ(text.height, 100000 / 20 * LINE);
    EXPECT_EQ(text.width, 20 * LETTER);
    long before = LiveBlocks();
    text.Clear();
    EXPECT_LT(before - LiveBlocks(), 5000 / 2); // fragments come in packs
}
