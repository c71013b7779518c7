// Fonts: whole-pixel widths that add up to what is drawn, heights that name one em square, and a bounded cache.
#include "win/fonts.h"

#include "lib/charstr.h"
#include "support/chance.h"
#include "support/fault.h"
#include "support/testapp.h"
#include "win/dc.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstdlib>
#include <string>

namespace
{
const char *const faces[] = {"Arial", "Courier New", "Times New Roman"};

std::string AllCharacters()
{
    std::string all;
    for (int c = 1; c < 256; ++c)
        all += static_cast<char>(c);
    return all;
}

/// The rectangle of pixels that are not white.
TRect Ink(const TMemoryDC &dc, TSize size)
{
    TRect ink;
    for (int y = 0; y < size.cy; ++y) {
        for (int x = 0; x < size.cx; ++x) {
            if (!(dc.Pixel({x, y}) == WIN_WHITE))
                ink = ink | TRect{x, y, x + 1, y + 1};
        }
    }
    return ink;
}

void ExpectSamePixels(const TMemoryDC &a, const TMemoryDC &b, TSize size, const std::string &what,
                      int tolerance = 0)
{
    for (int y = 0; y < size.cy; ++y) {
        for (int x = 0; x < size.cx; ++x)
            ASSERT_LE(std::abs(a.Pixel({x, y}).red - b.Pixel({x, y}).red), tolerance)
                << what << " at " << x << "," << y;
    }
}
} // namespace

TEST(Fonts, TheThreeFacesAreTheLiberationOnes)
{
    TestApplication();
    EXPECT_EQ(ResolvedFamily({.face = "Arial"}), "Liberation Sans");
    EXPECT_EQ(ResolvedFamily({.face = "Courier New"}), "Liberation Mono");
    EXPECT_EQ(ResolvedFamily({.face = "Times New Roman"}), "Liberation Serif");
}

TEST(Fonts, CourierNewHasOneWidthAndTheOthersHaveNot)
{
    TestApplication();
    TMeasureDC dc(96);
    for (int height : {-8, -13, -37, -100}) {
        dc.SetFont({.face = "Courier New", .height = height});
        for (int c = 0; c < 256; ++c)
            EXPECT_EQ(dc.CharWidth(static_cast<unsigned char>(c)), dc.CharWidth('m')) << c;
        dc.SetFont({.face = "Arial", .height = height});
        EXPECT_LT(dc.CharWidth('i'), dc.CharWidth('m'));
    }
}

TEST(Fonts, AHeightOfAFontGivesItsEmSquareBack)
{
    TestApplication();
    for (const char *face : faces) {
        for (int em = 4; em <= 200; ++em) {
            TFontTable font({.face = face, .height = -em});
            EXPECT_EQ(font.Em(), em);
            const TFontTable again({.face = face, .height = font.Metrics().height});
            EXPECT_EQ(again.Em(), em) << face;
            EXPECT_EQ(again.Metrics().height, font.Metrics().height);
        }
    }
}

TEST(Fonts, ACellIsTheTallestThatIsNotTallerThanAsked)
{
    TestApplication();
    for (const char *face : faces) {
        for (int height = 3; height <= 300; ++height) {
            TFontTable font({.face = face, .height = height});
            EXPECT_LE(font.Metrics().height, height);
            EXPECT_EQ(font.Metrics().height, font.Metrics().ascent + font.Metrics().descent);
            EXPECT_GT(TFontTable({.face = face, .height = -font.Em() - 1}).Metrics().height, height);
        }
    }
}

TEST(Fonts, AnyHeightGivesAFont)
{
    TestApplication();
    for (int height : {INT_MIN, -100000, 0, 1, INT_MAX}) {
        TFontTable font({.height = height});
        EXPECT_GE(font.Em(), 1);
        EXPECT_LE(font.Em(), 10000);
        EXPECT_GE(font.Metrics().height, 1);
    }
}

/// The advance of the last character does not show in its ink, so a bar stands behind it.
TEST(Fonts, ATextIsAsWideAsItsCharactersTogetherOnScreenAndAt600Dpi)
{
    TestApplication();
    const std::string texts[] = {"AVAToWaffifl.,;", "Auswertung l\xE4uft . . .", "VAVAVA  yyy\"'fj",
                                 AllCharacters()};
    for (const char *face : faces) {
        for (int em : {7, 8, 10, 11, 12, 13, 14, 16, 17, 21, 27, 83, 100}) {
            for (const std::string &text : texts) {
                TMeasureDC measure(600);
                measure.SetFont({.face = face, .height = -em});
                const int width = measure.TextWidth(text.data(), static_cast<int>(text.size()));
                const TSize size = {width + 3 * em, 2 * em};
                TMemoryDC dc(size, 600);
                dc.SetFont({.face = face, .height = -em});
                dc.SetOpaque(false);
                const std::string barred = text + "|";
                dc.TextOut(em, 0, barred.data(), static_cast<int>(barred.size()));
                TMemoryDC bar(size, 600);
                bar.SetFont({.face = face, .height = -em});
                bar.SetOpaque(false);
                bar.TextOut(em + width, 0, "|", 1);
                EXPECT_EQ(Ink(dc, size).right, Ink(bar, size).right) << face << " " << em << " " << text;
            }
        }
    }
}

TEST(Fonts, ATextIsDrawnAsItsCharactersOneByOne)
{
    TestApplication();
    const std::string text = "W\xE4rme To VA ffi \x80 1,5 m\xB2 fj\xAD"
                             "end\tx";
    for (const char *face : faces) {
        for (int em : {8, 11, 13, 16, 30, 83}) {
            for (int style = 0; style < 4; ++style) {
                const TFont font = {
                    .face = face, .height = -em, .weight = style & 1 ? 700 : 400, .italic = (style & 2) != 0};
                const TSize size = {30 * em, 2 * em};
                TMemoryDC whole(size, 96);
                TMemoryDC single(size, 96);
                for (TMemoryDC *dc : {&whole, &single}) {
                    dc->SetFont(font);
                    dc->SetOpaque(false);
                }
                whole.TextOut(em, 0, text.data(), static_cast<int>(text.size()));
                int x = em;
                for (char c : text) {
                    single.TextOut(x, 0, &c, 1);
                    x += single.CharWidth(static_cast<unsigned char>(c));
                }
                const int tolerance = em > 64 ? 16 : 0; // large letters are one shape, smooth where they touch
                ExpectSamePixels(whole, single, size, std::string(face) + " " + std::to_string(em), tolerance);
            }
        }
    }
}

TEST(Fonts, ClippedAndFarTextsAreDrawnAsTheWholeWouldBe)
{
    TestApplication();
    const std::string text(5000, 'm');
    for (int turn = 0; turn < 4; ++turn) {
        TMemoryDC cut({100, 100}, 96);
        cut.SetOpaque(false);
        cut.SetTurn(turn);
        cut.SetViewportOrg({50, 50});
        cut.TextOut(-20000, 0, text.data(), static_cast<int>(text.size()));
        TMemoryDC few({100, 100}, 96);
        few.SetOpaque(false);
        few.SetTurn(turn);
        few.SetViewportOrg({50, 50});
        const int skipped = (20000 - 100) / few.CharWidth('m');
        few.TextOut(-20000 + skipped * few.CharWidth('m'), 0, text.data(), 60);
        ExpectSamePixels(cut, few, {100, 100}, std::to_string(turn));
        EXPECT_FALSE(Ink(cut, {100, 100}).IsEmpty());
    }
}

TEST(Fonts, AMillionCharactersAreDrawnAsFarAsTheyShow)
{
    TestApplication();
    TMemoryDC dc({200, 30}, 96);
    const std::string text(1000000, 'x');
    dc.TextOut(5, 5, text.data(), static_cast<int>(text.size()));
    EXPECT_EQ(Ink(dc, {200, 30}).right, 200);
    dc.TextOut(INT_MAX, INT_MAX, text.data(), static_cast<int>(text.size()));
    dc.TextOut(INT_MIN, INT_MIN, text.data(), static_cast<int>(text.size()));
}

TEST(Fonts, CharactersWithoutAPictureAreBlank)
{
    for (int c : {0, 9, 10, 13, 31, 127, 0x81, 0x8D, 0x8F, 0x90, 0x9D, 0xA0})
        EXPECT_EQ(DrawnCode(static_cast<unsigned char>(c)), u' ') << c;
    EXPECT_EQ(DrawnCode(0xAD), u'-');
    EXPECT_EQ(DrawnCode(0x80), u'\u20AC');
    EXPECT_EQ(DrawnCode(0xE4), u'\u00E4');
    EXPECT_EQ(DrawnCode('A'), u'A');
}

TEST(Fonts, EachCharacterOfTheSetThatHasAPictureLeavesInk)
{
    TestApplication();
    for (const char *face : faces) {
        for (int c = 1; c < 256; ++c) {
            TMemoryDC dc({60, 60}, 96);
            dc.SetFont({.face = face, .height = -30});
            dc.SetOpaque(false);
            const char text[] = {static_cast<char>(c), EOS};
            dc.TextOut(10, 10, text, 1);
            EXPECT_EQ(Ink(dc, {60, 60}).IsEmpty(), DrawnCode(static_cast<unsigned char>(c)) == u' ') << c;
        }
    }
}

TEST(Fonts, BoldIsWiderAndUnderlinedIsNot)
{
    TestApplication();
    TMeasureDC dc(96);
    const std::string text = "Strahlungsheizung";
    const int length = static_cast<int>(text.size());
    dc.SetFont({.height = -20});
    const int plain = dc.TextWidth(text.data(), length);
    dc.SetFont({.height = -20, .weight = 700});
    EXPECT_GT(dc.TextWidth(text.data(), length), plain);
    dc.SetFont({.height = -20, .underline = true});
    EXPECT_EQ(dc.TextWidth(text.data(), length), plain);
}

TEST(Fonts, AnUnderlineRunsUnderTheWholeTextBelowTheBaseline)
{
    TestApplication();
    TMemoryDC dc({200, 60}, 96);
    dc.SetFont({.height = -30, .underline = true});
    dc.SetTextAlign(WIN_TEXT_BASELINE);
    dc.TextOut(10, 40, "a  a", 4);
    const int width = dc.TextWidth("a  a", 4);
    bool found = false;
    for (int y = 41; y < 50 && !found; ++y) {
        int dark = 0;
        for (int x = 10; x < 10 + width; ++x)
            dark += dc.Pixel({x, y}) == WIN_BLACK;
        found = dark == width;
    }
    EXPECT_TRUE(found);
}

TEST(Fonts, TheCacheIsBoundedAndGivesTheSameFontEveryTime)
{
    TestApplication();
    CHANCE chance(6);
    for (int i = 0; i < 1000; ++i) {
        const TFont font = {.face = chance.Of(faces), .height = -chance.Int(4, 60), .italic = chance.One(2)};
        TFontTable &table = FontTable(font);
        EXPECT_EQ(table.Em(), -font.height);
        EXPECT_EQ(&FontTable(font), &table);
        TFontTable fresh(font);
        EXPECT_EQ(table.Width('W'), fresh.Width('W'));
    }
    EXPECT_LE(FontTablesInCache(), 64);
    EXPECT_GT(FontTablesInCache(), 10);
}

TEST(Fonts, AFontThatIsUsedStaysWhileOthersComeAndGo)
{
    TestApplication();
    const TFont often = {.face = "Arial", .height = -13};
    TFontTable *table = &FontTable(often);
    for (int em = 100; em < 400; ++em) {
        FontTable({.face = "Arial", .height = -em});
        EXPECT_EQ(&FontTable(often), table);
    }
}

TEST(Fonts, AWidthThatWasAskedBeforeCostsNoAllocation)
{
    TestApplication();
    TMeasureDC dc(96);
    dc.SetFont({.face = "Times New Roman", .height = -17});
    int first = 0;
    for (int c = 0; c < 256; ++c)
        first += dc.CharWidth(static_cast<unsigned char>(c));
    const size_t asked = BytesAsked();
    int again = 0;
    for (int c = 0; c < 256; ++c)
        again += dc.CharWidth(static_cast<unsigned char>(c));
    EXPECT_EQ(BytesAsked(), asked);
    EXPECT_EQ(again, first);
}
