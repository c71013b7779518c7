#include "support/recorddc.h"

#include <gtest/gtest.h>

namespace
{
std::string Recorded(void (*draw)(TRecordDC &))
{
    TRecordDC dc;
    draw(dc);
    return dc.calls;
}

const TPoint triangle[] = {{0, 0}, {9, 0}, {9, 9}};
} // namespace

TEST(Recorder, WritesEachCallWithWhatOfTheStateShowsInIt)
{
    const struct {
        const char *line;
        void (*draw)(TRecordDC &);
    } rows[] = {
        {"Line 10,20 30,20 pen 000000\n",
         [](TRecordDC &dc) {
             dc.Line({10, 20}, {30, 20});
         }},
        {"Polyline 0,0 9,0 9,9 pen ff0000 3 dot on ffffff xor\n",
         [](TRecordDC &dc) {
             dc.SetPen({{255, 0, 0}, 3, WIN_PEN_DOT});
             dc.SetMix(WIN_MIX_XOR);
             dc.Polyline(triangle, 3);
         }},
        {"Line 0,0 1,1 pen 000000 dash notxor\n",
         [](TRecordDC &dc) {
             dc.SetPen({WIN_BLACK, 1, WIN_PEN_DASH});
             dc.SetOpaque(false);
             dc.SetMix(WIN_MIX_NOTXOR);
             dc.Line({0, 0}, {1, 1});
         }},
        {"Polygon 0,0 9,0 9,9 pen none brush 00ff00\n",
         [](TRecordDC &dc) {
             dc.SetPen(NoPen());
             dc.SetBrush(SolidBrush({0, 255, 0}));
             dc.Polygon(triangle, 3);
         }},
        {"Rect 0,0,10,10 pen 000000 brush none\n",
         [](TRecordDC &dc) {
             dc.SetBrush(NoBrush());
             dc.Rectangle({0, 0, 10, 10});
         }},
        {"Ellipse 0,0,10,10 pen 000000 brush hatch cross 0000ff at 3,4\n",
         [](TRecordDC &dc) {
             dc.SetOpaque(false);
             dc.SetBrushOrg({3, 4});
             dc.SetBrush({.style = WIN_BRUSH_HATCH, .color = {0, 0, 255}, .hatch = WIN_HATCH_CROSS});
             dc.Ellipse({0, 0, 10, 10});
         }},
        {"Fill 0,0,10,10 brush pattern 000000/ffffff 8040201008040201\n",
         [](TRecordDC &dc) {
             dc.FillRect({0, 0, 10, 10}, {.style = WIN_BRUSH_PATTERN,
                                          .color = WIN_BLACK,
                                          .pattern = {0x80, 0x40, 0x20, 0x10, 8, 4, 2, 1}});
         }},
        {"Invert 0,0,10,10\n",
         [](TRecordDC &dc) {
             dc.SetMix(WIN_MIX_XOR);
             dc.InvertRect({0, 0, 10, 10});
         }},
        {"Text 10,20 \"Länge\" Arial -13 bold italic underline 000000 on ffffff bottom\n",
         [](TRecordDC &dc) {
             dc.SetFont({.weight = 700, .italic = true, .underline = true});
             dc.SetTextAlign(WIN_TEXT_BOTTOM);
             dc.TextOut(10, 20, "L\xE4nge", 5);
         }},
        {"Text 0,0 \"a\\\"\\\\\\x09\" Arial 16 weight 500 ff0000 baseline\n",
         [](TRecordDC &dc) {
             dc.SetFont({.height = 16, .weight = 500});
             dc.SetOpaque(false);
             dc.SetTextColor({255, 0, 0});
             dc.SetTextAlign(WIN_TEXT_BASELINE);
             dc.TextOut(0, 0, "a\"\\\tb", 4);
         }},
        {"Bitmap 0,0,100,50 20x10 mask\n",
         [](TRecordDC &dc) {
             dc.SetMix(WIN_MIX_MASK);
             dc.StretchBitmap({0, 0, 100, 50}, TBitmap(20, 10));
         }},
        {"Shape winding closed 0,0 160,0 160,160 open 16,16 32,32 pen 000000 brush none\n",
         [](TRecordDC &dc) {
             dc.SetBrush(NoBrush());
             dc.Shape({{{{0, 0}, {160, 0}, {160, 160}}, true}, {{{16, 16}, {32, 32}}, false}}, true);
         }},
        {"Palette 2\n",
         [](TRecordDC &dc) {
             dc.SelectPalette({{WIN_BLACK, WIN_WHITE}});
         }},
    };
    for (const auto &row : rows)
        EXPECT_EQ(Recorded(row.draw), row.line);
}

TEST(Recorder, PlacesAreOnTheSurfaceAndClipAndTurnShow)
{
    TRecordDC dc;
    dc.SetViewportOrg({100, 200});
    dc.SetClip({0, 0, 50, 50});
    dc.SetTurn(1);
    dc.SetBrush(NoBrush());
    dc.Rectangle({0, 0, 10, 5});
    dc.Line({0, 0}, {10, 0});
    EXPECT_EQ(dc.calls, "Rect 100,191,105,201 pen 000000 brush none clip 100,200,150,250 turn 1\n"
                        "Line 100,200 100,190 pen 000000 clip 100,200,150,250 turn 1\n");
}

TEST(Recorder, EveryMixHasANameOfItsOwn)
{
    std::string former;
    for (int mix = WIN_MIX_BLACK; mix <= WIN_MIX_WHITE; ++mix) {
        TRecordDC dc;
        dc.SetMix(static_cast<TMix>(mix));
        dc.Line({0, 0}, {1, 1});
        EXPECT_NE(dc.calls, former);
        former = dc.calls;
    }
}

TEST(Recorder, ACellHeightGivesItsEmSquareBack)
{
    for (int em = 1; em <= 300; ++em) {
        TRecordDC dc;
        dc.SetFont({.height = -em});
        const TFontMetrics metrics = dc.FontMetrics();
        EXPECT_EQ(metrics.ascent, em);
        EXPECT_EQ(metrics.height, metrics.ascent + metrics.descent);
        dc.SetFont({.height = metrics.height});
        EXPECT_EQ(dc.FontMetrics().ascent, em);
    }
}

TEST(Recorder, WidthsOfCharactersAreRoundedPartsOfTheEmSquare)
{
    TRecordDC dc;
    dc.SetFont({.height = -13});
    EXPECT_EQ(dc.CharWidth('a'), 7);
    EXPECT_EQ(dc.CharWidth('i'), 3);
    EXPECT_EQ(dc.CharWidth(' '), 3);
    EXPECT_EQ(dc.CharWidth('W'), 10);
    dc.SetFont({.height = -13, .weight = 700});
    EXPECT_EQ(dc.CharWidth('a'), 8);
}
