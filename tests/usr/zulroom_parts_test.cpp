// What all drawn blocks share, part by part.
#include "zulmapcase.h"

#include "support/child.h"
#include "support/fault.h"
#include "support/folder.h"
#include "support/logofile.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>

namespace
{
const std::string PARTS = "usr/zulroom_parts.cpp";

std::string Rgb(int red, int green, int blue)
{
    return EdcFormat("%02x%02x%02x", red, green, blue);
}

struct Parts : testing::Test, MAPDOC {
    TPlaceDC dc;

    const TRect *Text(const std::string &text) const
    {
        for (const TPlaceDC::Cell &cell : dc.cells)
            if (cell.text == text)
                return &cell.rect;
        return NULL;
    }
    TRect Strokes() const
    {
        TRect all;
        for (const TRect &stroke : dc.strokes)
            all = all | stroke;
        return all;
    }
};
} // namespace

TEST_F(Parts, PaletteHasItsColoursInOrder)
{
    const char *wanted[] = {"646464", "700078", "700000", "960000", "bc0000", "da0000", "eb2000", "eb4100",
                            "eb5f00", "eb7d00", "eb9b00", "ebb900", "ebb9af", "700078", "eb2000", "ebb9af",
                            "e6a07d", "9b9bd7", "7d7db9", "000000", "323232", "424242", "525252", "626262",
                            "727272", "828282", "929292", "a2a2a2", "b2b2b2", "c2c2c2", "ffffff"};
    ASSERT_EQ(palette.count, 31);
    for (int i = 0; i < 31; ++i)
        EXPECT_EQ(Rgb(palette.defs[i].red, palette.defs[i].green, palette.defs[i].blue), wanted[i]) << i;
}

TEST_F(Parts, PaletteIsComposedIntoFiveScales)
{
    struct {
        const TEdcColorScale &scale;
        const ZulCOLORS &colors;
        int first;
    } rows[] = {{palette.hallColors, hallColors, 0},
                {palette.mapColors, mapColors, 1},
                {palette.mapColorsCoarse, mapColorsCoarse, 13},
                {palette.criterionColors, criterionColors, 16},
                {palette.greyColors, greyColors, 19}};
    for (const auto &row : rows) {
        EXPECT_EQ(row.scale.first, row.first);
        ASSERT_EQ(row.scale.Size(), row.colors.count);
        for (int i = 0; i < row.colors.count; ++i) {
            const ZulRGB &c = row.colors.colors[i];
            EXPECT_EQ(row.scale.Color(i), (TColor{c.red, c.green, c.blue})) << row.first << " " << i;
        }
    }
}

TEST_F(Parts, PaletteWithoutMemoryFails)
{
    int fired = SweepFaults([] { TZulRoomPalette fresh; },
                            [](const FaultRun &run) {
                                if (run.fired > 0 && run.kind == FAULT::ALLOC) {
                                    EXPECT_STREQ(run.code, XALLOC);
                                }
                            });
    EXPECT_GT(fired, 0);
}

TEST_F(Parts, PictureHasTheColoursOfItsScale)
{
    ZulPixels pixels;
    pixels.Alloc(3, 2, 0);
    for (int j = 0; j < 2; ++j)
        for (int i = 0; i < 3; ++i)
            pixels.Row(j)[i] = static_cast<uint8_t>((j * 3 + i) % 3);
    for (const TEdcColorScale *scale :
         {&palette.mapColors, &palette.mapColorsCoarse, &palette.criterionColors}) {
        std::unique_ptr<TEdcPicture> picture = ZulMakePicture(pixels, *scale);
        ASSERT_TRUE(picture);
        EXPECT_EQ(picture->bitmap.Width(), 3);
        EXPECT_EQ(picture->bitmap.Height(), 2);
        for (int j = 0; j < 2; ++j)
            for (int i = 0; i < 3; ++i) {
                uint8_t pixel = picture->bitmap.Pixel(i, j);
                EXPECT_EQ(pixel, scale->Index(pixels.Row(j)[i]));
                EXPECT_EQ(picture->bitmap.Colors()[pixel], scale->Color(pixels.Row(j)[i]));
            }
    }
}

TEST_F(Parts, PictureWithoutMemoryIsNone)
{
    ZulPixels pixels;
    pixels.Alloc(30, 20, 1);
    std::unique_ptr<TEdcPicture> picture;
    int fired =
        SweepFaults([&] { picture.reset(); }, [&] { picture = ZulMakePicture(pixels, palette.mapColors); },
                    [&](const FaultRun &run) {
                        bool failed = run.fired > 0 && run.kind == FAULT::ALLOC;
                        EXPECT_EQ(picture == NULL, failed);
                        if (failed) {
                            EXPECT_STREQ(run.code, XALLOC);
                        }
                    });
    EXPECT_GT(fired, 0);
}

TEST_F(Parts, HeadHasTheTitleBesideTheLogo)
{
    TZulPlanHead head("Fu\xDF"
                      "boden");
    int height = head.Layout(dc, 700, 1);
    head.Paint(dc);
    TRect box = {700 - 5 - 85, 5, 695, 48}; // 64 x 32 pt at 96 px/in
    EXPECT_EQ(height, 48);
    ASSERT_FALSE(dc.strokes.empty());
    EXPECT_TRUE(IsWithin(Strokes(), box.Inflated(1, 1))) << ShowRect(Strokes());
    const TRect *title = Text("Fu\xDF"
                              "boden");
    ASSERT_TRUE(title);
    EXPECT_EQ(title->TopLeft(), (TPoint{0, 0}));
    EXPECT_LT(title->right, box.left);
    EXPECT_NE(dc.calls.find("Arial 23 underline"), std::string::npos)
        << dc.calls; // 14 pt, as the height of a cell
}

TEST_F(Parts, HeadFollowsTheScaleOfTheView)
{
    TZulPlanHead head("Decke");
    EXPECT_EQ(head.Layout(dc, 1400, 2), 5 + 85);
    TPlaceDC paper(600);
    EXPECT_EQ(head.Layout(paper, 4488, 1), 5 + 267);
}

TEST_F(Parts, HeadGrowsWithALongTitle)
{
    TZulPlanHead head(std::string(60, 'W').c_str());
    int broken = head.Layout(dc, 500, 1);
    EXPECT_GT(broken, 48);
    head.Paint(dc);
    for (const TPlaceDC::Cell &cell : dc.cells)
        EXPECT_TRUE(IsWithin(cell.rect, {0, 0, 410, broken})) << cell.text << ShowRect(cell.rect);
    EXPECT_GT(dc.cells.size(), 1U);
}

TEST_F(Parts, HeadStandsInPlacesOfAnyWidth)
{
    TZulPlanHead head("Wand A");
    for (int width : {0, 1, 5, 40, 90, 100, 200})
        EXPECT_GE(head.Layout(dc, width, 1), 48) << width;
}

TEST_F(Parts, HeadTakesATitleOf255Characters)
{
    EXPECT_EQ(TZulPlanHead(std::string(300, 'x').c_str()).Title(), std::string(255, 'x'));
    TZulPlanHead head("eins");
    head.SetTitle("zwei");
    EXPECT_STREQ(head.Title(), "zwei");
    head.Layout(dc, 700, 1);
    head.Paint(dc);
    EXPECT_TRUE(dc.Shows("zwei"));
    EXPECT_TRUE(AbortsOnAssertion("str != NULL", PARTS, [&] { head.SetTitle(NULL); }));
}

TEST_F(Parts, HeadWithoutItsLogoFileFails)
{
    FOLDER empty;
    SetLogoDirectory(empty.Name("").c_str());
    TZulPlanHead head("Decke");
    head.Layout(dc, 700, 1);
    EXPECT_STREQ(xCode, XFOPEN);
    EXPECT_NE(std::string(xFOpenName).find("Torvane.lgo"), std::string::npos);
    xCode = XNULL;
}

TEST_F(Parts, HeadKeepsTheProportionsOfTheLogo)
{
    FOLDER folder;
    folder.Put("Torvane.lgo", LogoFile("Torvane.lgo", 'T', SmallEnhanced())); // a square
    SetLogoDirectory(folder.Name("").c_str());
    TZulPlanHead head("Decke");
    head.Layout(dc, 700, 1);
    head.Paint(dc);
    ASSERT_FALSE(dc.strokes.empty());
    EXPECT_TRUE(IsWithin(Strokes(), TRect{695 - 43, 5, 695, 48}.Inflated(1, 1))) << ShowRect(Strokes());
}

TEST_F(Parts, AxesAreSetUpInMetres)
{
    TEdcAxes axes;
    ZulSetUpAxes(axes);
    EXPECT_STREQ(axes.xTitle, "X [m]");
    EXPECT_STREQ(axes.yTitle, "Y [m]");
    EXPECT_STREQ(axes.fontName, "Arial");
    EXPECT_EQ(axes.fontSize, 10);
    EXPECT_EQ(axes.xStep, 2.0);
    EXPECT_EQ(axes.yStep, 2.0);
    EXPECT_EQ(axes.xSnap, 0.01);
    EXPECT_EQ(axes.ySnap, 0.01);
    EXPECT_EQ(axes.xAngleBase, 1.0);
    EXPECT_EQ(axes.angleSnap, 0.08726646259971647);
    EXPECT_EQ(axes.flags, static_cast<uint32_t>(EDC_AxXAXIS | EDC_AxYAXIS));
}

TEST_F(Parts, AxesOfUsualHallsAreLabelledInMetres)
{
    for (double length : {3.0, 12.0, 60.0, 240.0, 900.0}) {
        TEdcAxes axes;
        ZulSetUpAxes(axes);
        ZulSetRange(axes, EmBOX{AgE0, AgPOINT(length, length / 2)});
        axes.Layout(dc, {0, 0, 700, 700}, 1, true);
        EXPECT_STREQ(axes.xText, "X [m]") << length; // no power of ten behind it
        EXPECT_TRUE(axes.decorated);
        ASSERT_TRUE(axes.xTicks != NULL);
        EXPECT_EQ(atof(axes.xTicks->text), axes.xTicks->value);
    }
}

TEST_F(Parts, RangeHoldsTheOriginAndIsNeverEmpty)
{
    const double most = 1e308;
    struct {
        AgPOINT min, max;
        double xMin, yMin, xMax, yMax;
    } rows[] = {
        {AgE0, AgPOINT(60, 24), 0, 0, 60, 24},
        {AgPOINT(-3, -2), AgPOINT(60, 24), -3, -2, 60, 24},
        {AgPOINT(10, 5), AgPOINT(60, 24), 0, 0, 60, 24},
        {AgPOINT(-9, -8), AgPOINT(-3, -2), -9, -8, 0, 0},
        {AgE0, AgE0, 0, 0, 1, 1},
        {AgPOINT(5, 5), AgPOINT(5, 5), 0, 0, 5, 5},
        {AgPOINT(-5, -5), AgPOINT(-5, -5), -5, -5, 0, 0},
        {AgE0, AgPOINT(0, 7), 0, 0, 1, 7},
        {AgPOINT(-most, -most), AgPOINT(most, most), -most, -most, most, most},
        {AgE0, AgPOINT(5e-324, 5e-324), 0, 0, 5e-324, 5e-324},
    };
    for (const auto &row : rows) {
        TEdcAxes axes;
        ZulSetUpAxes(axes);
        ZulSetRange(axes, EmBOX{row.min, row.max});
        EXPECT_EQ(axes.xMin, row.xMin);
        EXPECT_EQ(axes.yMin, row.yMin);
        EXPECT_EQ(axes.xMax, row.xMax);
        EXPECT_EQ(axes.yMax, row.yMax);
        axes.Layout(dc, {0, 0, 700, 400}, 1, true);
        axes.Paint(dc, {0, 0, 700, 400});
        ZulFrame(dc, axes, AgE0, row.max);
    }
}

TEST_F(Parts, FrameIsOnePixelRoundTheRectangle)
{
    TEdcAxes axes;
    axes.SetFlags(0);
    axes.SetXRange(-10, 20);
    axes.SetYRange(0, 10);
    axes.Layout(dc, {0, 0, 300, 100}, 1, true);
    dc.SetPen({.color = {1, 2, 3}, .width = 4});
    dc.SetBrush(SolidBrush({4, 5, 6}));
    TDCState former = dc.State();
    ZulFrame(dc, axes, AgE0, AgPOINT(20, 10));
    EXPECT_EQ(dc.calls, "Rect 100,0,301,101 pen 000000 brush none\n");
    EXPECT_EQ(dc.State().pen, former.pen);
    EXPECT_EQ(dc.State().brush, former.brush);
}

TEST_F(Parts, PointsBecomePixelsOfDeviceAndView)
{
    struct {
        int dpi;
        double points, scale;
        int pixels;
    } rows[] = {{96, 10, 1, 13},  {96, 14, 1, 19}, {96, 8, 1, 11},     {600, 10, 1, 83},
                {96, 10, 0.5, 7}, {96, 10, 2, 27}, {96, 10, 0.001, 1}, {72, 10, 1, 10}};
    for (const auto &row : rows)
        EXPECT_EQ(ZulFontPixels(TPlaceDC(row.dpi), row.points, row.scale), row.pixels)
            << row.dpi << " " << row.points << " " << row.scale;
}

TEST_F(Parts, LettersNameTheWallsRoundASolidRectangle)
{
    TZulWallLetters letters;
    letters.SetFont("Arial", 16); // 20 px high, letters 8 px wide, a gap of 3 px
    letters.Layout(dc, {100, 200, 180, 280});
    letters.Paint(dc);
    EXPECT_EQ(letters.Rect(), (TRect{100, 200, 180, 280}));
    EXPECT_EQ(dc.calls, "Fill 111,220,169,260 brush 646464\n"
                        "Text 136,260 \"A\" Arial -16 000000\n"
                        "Text 172,230 \"B\" Arial -16 000000\n"
                        "Text 136,200 \"C\" Arial -16 000000\n"
                        "Text 100,230 \"D\" Arial -16 000000\n");
}

TEST_F(Parts, LettersTakeWhatTheyNeedRoundTheMiddleOfANarrowPlan)
{
    for (int width : {0, 1, 5, 14}) {
        TZulWallLetters letters;
        letters.SetFont("Arial", 16);
        letters.Layout(dc, {100, 200, 100 + width, 280});
        TRect taken = letters.Rect();
        EXPECT_EQ(taken.Width(), 2 * (8 + 3) + 10);
        EXPECT_EQ(taken.top, 200);
        EXPECT_EQ(taken.bottom, 280);
        EXPECT_NEAR((taken.left + taken.right) / 2.0, 100 + width / 2.0, 1);
    }
    TZulWallLetters letters;
    letters.SetFont("Arial", 16);
    letters.Layout(dc, {0, 0, 80, 2});
    EXPECT_EQ(letters.Rect().Height(), 2 * 20 + 10);
}

TEST_F(Parts, LettersMeetNeitherEachOtherNorTheRectangle)
{
    for (int dpi : {72, 96, 200, 600})
        for (double size : {6.0, 10.0, 24.0})
            for (double length : {2.0, 1.5, 0.3, 0.01}) {
                TPlaceDC on(dpi);
                TZulWallLetters letters;
                letters.SetFont("Arial", ZulFontPixels(on, size, 1));
                letters.Layout(
                    on, {0, 0, EdcInchToPixel(length / 2.54, 1, dpi), EdcInchToPixel(1.5 / 2.54, 1, dpi)});
                letters.Paint(on);
                TRect body;
                ASSERT_EQ(sscanf(on.calls.c_str(), "Fill %d,%d,%d,%d", &body.left, &body.top, &body.right,
                                 &body.bottom),
                          4);
                EXPECT_FALSE(body.IsEmpty());
                ASSERT_EQ(on.cells.size(), 4U);
                for (size_t i = 0; i < 4; ++i) {
                    EXPECT_TRUE((on.cells[i].rect & body).IsEmpty());
                    EXPECT_TRUE(IsWithin(on.cells[i].rect, letters.Rect())) << ShowRect(on.cells[i].rect);
                    for (size_t j = 0; j < i; ++j)
                        EXPECT_TRUE((on.cells[i].rect & on.cells[j].rect).IsEmpty());
                }
                EXPECT_GE(on.cells[0].rect.top, body.bottom); // A at the near side
                EXPECT_GE(on.cells[1].rect.left, body.right);
                EXPECT_LE(on.cells[2].rect.bottom, body.top);
                EXPECT_LE(on.cells[3].rect.right, body.left);
            }
}

TEST_F(Parts, LettersTakeNoFontWithoutANameOrBelowNought)
{
    TZulWallLetters letters;
    EXPECT_TRUE(AbortsOnAssertion("name != NULL && size >= 0", PARTS, [&] { letters.SetFont(NULL, 1); }));
    EXPECT_TRUE(AbortsOnAssertion("name != NULL && size >= 0", PARTS, [&] { letters.SetFont("Arial", -1); }));
    letters.SetFont("Arial", 0);
    letters.Layout(dc, {0, 0, 80, 80});
    letters.Paint(dc);
    EXPECT_NE(dc.calls.find("Arial -1 "), std::string::npos); // 0 counts as 1
}
