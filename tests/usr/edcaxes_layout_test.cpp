// Where the axes put their plot, labels and titles, and what they draw. On the recording device at 96 dots an
// inch a label of 10 pt is 16 px high, a digit 7 px wide, a point 3; a stroke of 5 pt is 7 px long.
#include "support/child.h"
#include "support/fault.h"
#include "support/recorddc.h"
#include "support/testapp.h"
#include "usr/edcapp.h"
#include "usr/edcbase2.h"
#include "usr/edcitem.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <vector>

#include "lib/xon.h"

namespace
{
/// Keeps the places of texts and lines as rectangles.
class TPlaceDC : public TRecordDC
{
public:
    using TRecordDC::TRecordDC;

    void TextOut(int x, int y, const char *text, int length) override
    {
        int height = FontMetrics().height;
        int top = State().align == WIN_TEXT_BOTTOM ? y - height : y;
        cells.push_back({ToSurface(TRect{x, top, x + TextWidth(text, length), top + height}),
                         std::string(text, static_cast<size_t>(length))});
        TRecordDC::TextOut(x, y, text, length);
    }
    void Polyline(const TPoint *points, int count) override
    {
        TPoint a = ToSurface(points[0]);
        TPoint b = ToSurface(points[count - 1]);
        lines.push_back({a.x, a.y, b.x + 1, b.y + 1});
        TRecordDC::Polyline(points, count);
    }

    struct Cell {
        TRect rect;
        std::string text;
    };
    std::vector<Cell> cells;
    std::vector<TRect> lines;
};

bool IsWithin(const TRect &inner, const TRect &outer)
{
    return inner.left >= outer.left && inner.top >= outer.top && inner.right <= outer.right &&
           inner.bottom <= outer.bottom;
}

std::string Show(const TRect &r)
{
    return std::to_string(r.left) + "," + std::to_string(r.top) + "," + std::to_string(r.right) + "," +
           std::to_string(r.bottom);
}

class EdcAxesLayout : public testing::Test
{
protected:
    EdcAxesLayout()
    {
        SetAppDocument(&doc);
        axes.SetFont("Arial", 10, false);
    }
    void SetPlan(double length, double width)
    {
        axes.SetXRange(0, length);
        axes.SetYRange(0, width);
        axes.SetXDigits(2, 0);
        axes.SetYDigits(2, 0);
    }
    std::string Painted(const TRect &clip)
    {
        dc.calls.clear();
        axes.Paint(dc, clip);
        return dc.calls;
    }

    TEdcDocument doc;
    TPlaceDC dc;
    TEdcAxes axes;
    const TRect everything = {-10000, -10000, 10000, 10000};
};
} // namespace

TEST_F(EdcAxesLayout, DrawsAxesStrokesLabelsAndTitles)
{
    SetPlan(20, 10);
    axes.SetTitles("X [m]", "Y [m]");
    TRect outer = axes.Layout(dc, {10, 20, 310, 320}, 1.0, true);
    // 18 for the title, 30 for labels at the left; 12, half a label, at the right.
    EXPECT_EQ(Show(axes.plot), "58,28,298,148");
    EXPECT_EQ(Show(outer), "10,20,310,188");
    EXPECT_EQ(outer, axes.outer);
    EXPECT_TRUE(axes.decorated);
    EXPECT_EQ(axes.xScale, 12);
    EXPECT_EQ(axes.yScale, 12);
    EXPECT_EQ(Painted(everything), "Line 58,148 298,148 pen 000000 clip 10,20,310,188\n"
                                   "Line 298,145 298,151 pen 000000 clip 10,20,310,188\n"
                                   "Text 291,154 \"20\" Arial -13 000000 clip 10,20,310,188\n"
                                   "Line 238,145 238,151 pen 000000 clip 10,20,310,188\n"
                                   "Text 231,154 \"15\" Arial -13 000000 clip 10,20,310,188\n"
                                   "Line 178,145 178,151 pen 000000 clip 10,20,310,188\n"
                                   "Text 171,154 \"10\" Arial -13 000000 clip 10,20,310,188\n"
                                   "Line 118,145 118,151 pen 000000 clip 10,20,310,188\n"
                                   "Text 115,154 \"5\" Arial -13 000000 clip 10,20,310,188\n"
                                   "Line 58,145 58,151 pen 000000 clip 10,20,310,188\n"
                                   "Line 58,28 58,148 pen 000000 clip 10,20,310,188\n"
                                   "Line 55,28 61,28 pen 000000 clip 10,20,310,188\n"
                                   "Text 38,20 \"10\" Arial -13 000000 clip 10,20,310,188\n"
                                   "Line 55,88 61,88 pen 000000 clip 10,20,310,188\n"
                                   "Text 45,80 \"5\" Arial -13 000000 clip 10,20,310,188\n"
                                   "Line 55,148 61,148 pen 000000 clip 10,20,310,188\n"
                                   "Text 161,172 \"X [m]\" Arial 16 000000 clip 10,20,310,188\n"
                                   "Text 10,104 \"Y [m]\" Arial 16 000000 clip 10,20,310,188 turn 1\n");
}

TEST_F(EdcAxesLayout, DrawsTheGridInItsRasterMix)
{
    SetPlan(20, 10);
    axes.SetFlags(EDC_AxGRID);
    axes.SetDivision(10, 5);
    axes.SetGridStyle(WIN_MIX_MASK);
    axes.Layout(dc, {0, 0, 200, 100}, 1.0, true);
    // Without decoration the end of the range has no pixel of its own, so its line is drawn beside it.
    EXPECT_EQ(Painted(everything), "Line 0,0 0,99 pen 7f7f7f dot mask clip 0,0,200,100\n"
                                   "Line 100,0 100,99 pen 7f7f7f dot mask clip 0,0,200,100\n"
                                   "Line 199,0 199,99 pen 7f7f7f dot mask clip 0,0,200,100\n"
                                   "Line 0,99 199,99 pen 7f7f7f dot mask clip 0,0,200,100\n"
                                   "Line 0,50 199,50 pen 7f7f7f dot mask clip 0,0,200,100\n"
                                   "Line 0,0 199,0 pen 7f7f7f dot mask clip 0,0,200,100\n");
}

TEST_F(EdcAxesLayout, DrawsTheFinerGridWhereBothBitsAreSet)
{
    SetPlan(20, 10);
    axes.SetDivision(10, 5);
    axes.SetMinorDivision(2, 1);
    struct {
        unsigned flags;
        double xStep, xMinor;
        size_t lines; // with the six or eleven horizontal ones
    } rows[] = {
        {EDC_AxGRID, 10, 2, 3 + 3},
        {EDC_AxGRID | EDC_AxMINORGRID, 10, 2, 11 + 11},
        {EDC_AxMINORGRID, 10, 2, 0},
        {0, 10, 2, 0},
        {EDC_AxGRID, 0, 2, 3}, // a step of 0 draws none
        {EDC_AxGRID | EDC_AxMINORGRID, 10, 0, 11},
        {EDC_AxGRID, 3, 2, 7 + 3},        // 0, 3 ... 18
        {EDC_AxGRID, 20.0 / 3, 2, 4 + 3}, // a last line that rounding put beyond the end
        {EDC_AxGRID, 1e-9, 2, 3},         // nearer than pixels it would be an area
        {EDC_AxGRID, 1e-300, 2, 3},
    };
    for (const auto &row : rows) {
        axes.SetFlags(row.flags);
        axes.SetDivision(row.xStep, 5);
        axes.SetMinorDivision(row.xMinor, 1);
        axes.Layout(dc, {0, 0, 200, 100}, 1.0, true);
        dc.lines.clear();
        axes.Paint(dc, everything);
        EXPECT_EQ(dc.lines.size(), row.lines) << row.flags << " " << row.xStep << " " << row.xMinor;
    }
}

TEST_F(EdcAxesLayout, StartsTheGridAtTheFirstMultipleOfTheRange)
{
    axes.SetFlags(EDC_AxGRID);
    axes.SetXRange(-25, 15);
    axes.SetYRange(0, 1);
    axes.SetDivision(10, 0);
    axes.Layout(dc, {0, 0, 400, 100}, 1.0, false);
    axes.Paint(dc, everything);
    ASSERT_EQ(dc.lines.size(), 4u); // -20, -10, 0, 10
    for (int i = 0; i < 4; ++i)
        EXPECT_EQ(dc.lines[static_cast<size_t>(i)].left, 50 + 100 * i);
}

TEST_F(EdcAxesLayout, PaintsOnlyWhatMeetsTheClip)
{
    SetPlan(20, 10);
    axes.SetTitles("X [m]", "Y [m]");
    axes.SetFlags(EDC_AxXAXIS | EDC_AxYAXIS | EDC_AxGRID);
    axes.SetDivision(2, 2);
    axes.Layout(dc, {10, 20, 310, 320}, 1.0, true);
    EXPECT_EQ(Painted({232, 156, 236, 160}), "Text 231,154 \"15\" Arial -13 000000 clip 232,156,236,160\n");
    EXPECT_EQ(Painted({161, 180, 162, 181}), "Text 161,172 \"X [m]\" Arial 16 000000 clip 161,180,162,181\n");
    EXPECT_EQ(Painted({12, 71, 14, 72}), "Text 10,104 \"Y [m]\" Arial 16 000000 clip 12,71,14,72 turn 1\n");
    EXPECT_EQ(Painted({12, 69, 14, 71}), "");
    EXPECT_EQ(Painted({84, 60, 88, 62}), ""); // between two lines of the grid
    EXPECT_EQ(Painted({105, 60, 107, 62}), "Line 106,28 106,148 pen 7f7f7f dot clip 105,60,107,62\n");
    EXPECT_EQ(Painted({400, 400, 500, 500}), "");
    EXPECT_EQ(Painted({0, 0, 0, 0}), "");
}

TEST_F(EdcAxesLayout, LeavesTheDeviceContextAsItFoundIt)
{
    SetPlan(60, 24);
    axes.SetTitles("X_1_", "Y");
    axes.SetFlags(EDC_AxXAXIS | EDC_AxYAXIS | EDC_AxGRID);
    axes.SetDivision(2, 2);
    axes.SetGridStyle(WIN_MIX_XOR);
    dc.SetFont({.face = "Courier New", .height = 20});
    dc.SetPen({.color = {1, 2, 3}, .width = 5});
    dc.SetMix(WIN_MIX_INVERT);
    dc.SetTextColor({4, 5, 6});
    dc.SetTextAlign(WIN_TEXT_BASELINE);
    dc.SetViewportOrg({3, 4});
    dc.SetClip({0, 0, 500, 400});
    TDCState before = dc.State();
    axes.Layout(dc, {0, 0, 600, 400}, 1.0, true);
    axes.Paint(dc, everything);
    const TDCState &after = dc.State();
    EXPECT_EQ(after.font, before.font);
    EXPECT_EQ(after.pen, before.pen);
    EXPECT_EQ(after.brush, before.brush);
    EXPECT_EQ(after.mix, before.mix);
    EXPECT_EQ(after.textColor, before.textColor);
    EXPECT_EQ(after.align, before.align);
    EXPECT_EQ(after.opaque, before.opaque);
    EXPECT_EQ(after.turn, before.turn);
    EXPECT_EQ(after.viewport, before.viewport);
    EXPECT_EQ(after.clipped, before.clipped);
    EXPECT_EQ(after.clip, before.clip);
}

TEST_F(EdcAxesLayout, StaysWithinTheClipThatIsSet)
{
    SetPlan(60, 24);
    axes.Layout(dc, {0, 0, 600, 400}, 1.0, true);
    dc.SetViewportOrg({100, 200});
    dc.SetClip({10, 20, 300, 310});
    std::string calls = Painted({0, 0, 200, 400});
    EXPECT_NE(calls.find(" clip 110,220,300,"), std::string::npos) << calls;
}

TEST_F(EdcAxesLayout, TakesTheDefaultFontWhereNoneIsNamed)
{
    axes.SetFont(NULL, 0, false);
    SetPlan(20, 10);
    axes.SetTitles("X", "Y");
    axes.Layout(dc, {0, 0, 300, 300}, 1.0, true);
    std::string calls = Painted(everything);
    EXPECT_NE(calls.find("\"5\" Arial -13 000000"), std::string::npos) << calls;
    EXPECT_NE(calls.find("\"X\" Arial 16 000000"), std::string::npos);
}

TEST_F(EdcAxesLayout, UsesItsFontAndColourForLabelsAndTitles)
{
    axes.SetFont("Courier New", 20, true);
    axes.SetColor({255, 0, 0});
    SetPlan(20, 10);
    axes.SetTitles("X", "Y");
    axes.Layout(dc, {0, 0, 1200, 1200}, 1.5, true);
    std::string calls = Painted(everything);
    EXPECT_NE(calls.find("\"10\" Courier New -40 bold ff0000"), std::string::npos) << calls;
    EXPECT_NE(calls.find("\"X\" Courier New 50 bold ff0000"), std::string::npos);
    EXPECT_NE(calls.find("\"Y\" Courier New 50 bold ff0000"), std::string::npos);
    EXPECT_NE(calls.find("pen ff0000"), std::string::npos);
    EXPECT_EQ(calls.find("000000"), std::string::npos);
}

TEST_F(EdcAxesLayout, ShowsOnlyTheAxesThatAreOn)
{
    SetPlan(20, 10);
    axes.SetTitles("X", "Y");
    struct {
        unsigned flags;
        const char *shown;
    } rows[] = {
        {EDC_AxXAXIS | EDC_AxYAXIS, "20 15 10 5 10 5 X Y"},
        {EDC_AxXAXIS, "20 15 10 5 0 X"}, // the nought too, for no y axis stands there
        {EDC_AxYAXIS, "10 5 0 Y"},
        {0, ""},
    };
    for (const auto &row : rows) {
        axes.SetFlags(row.flags);
        axes.Layout(dc, {0, 0, 300, 300}, 1.0, true);
        dc.cells.clear();
        axes.Paint(dc, everything);
        std::string shown;
        for (const TPlaceDC::Cell &cell : dc.cells)
            shown += (shown.empty() ? "" : " ") + cell.text;
        EXPECT_EQ(shown, row.shown) << row.flags;
    }
}

TEST_F(EdcAxesLayout, NotesTheExponentOfItsLabels)
{
    struct {
        unsigned flags;
        const char *title;
        int digits;
        const char *xText;
    } rows[] = {
        {3, "X [m]", 1, "X [m]\n(x10^1^)"}, {3, "X [m]", 2, "X [m]"}, {3, NULL, 1, "(x10^1^)"},
        {3, "X [m]", 0, "X [m]"},           {3, NULL, 2, ""},         {EDC_AxYAXIS, "X [m]", 1, ""},
    };
    for (const auto &row : rows) {
        axes.SetFlags(row.flags);
        axes.SetXRange(0, 60);
        axes.SetTitles(row.title, NULL);
        axes.SetXDigits(row.digits, 0);
        axes.Layout(dc, {0, 0, 600, 300}, 1.0, false);
        EXPECT_STREQ(axes.xText, row.xText);
        EXPECT_STREQ(axes.yText, "");
    }
    axes.SetFlags(3);
    axes.SetYRange(-400, 2);
    axes.SetTitles(NULL, "Y [m]");
    axes.Layout(dc, {0, 0, 600, 300}, 1.0, false);
    EXPECT_STREQ(axes.yText, "Y [m]\n(x10^2^)");
}

TEST_F(EdcAxesLayout, PutsLabelsOnTheOuterSideOfANegativeRange)
{
    axes.SetXRange(-60, 0);
    axes.SetYRange(-24, 0);
    axes.SetXDigits(2, 0);
    axes.SetYDigits(2, 0);
    axes.SetTitles("X", "Y");
    axes.Layout(dc, {0, 0, 600, 400}, 1.0, true);
    axes.Paint(dc, everything);
    EXPECT_EQ(axes.originX, axes.plot.right);
    EXPECT_EQ(axes.originY, axes.plot.top);
    for (const TEdcAxesLabel *label = axes.xTicks; label != NULL; label = label->next)
        EXPECT_LE(label->y + 16, axes.plot.top) << label->text;
    for (const TEdcAxesLabel *label = axes.yTicks; label != NULL; label = label->next)
        EXPECT_GT(label->x, axes.plot.right) << label->text;
    ASSERT_GE(dc.cells.size(), 2u);
    EXPECT_EQ(dc.cells[dc.cells.size() - 2].rect.top, axes.outer.top); // the titles beyond them
    EXPECT_EQ(dc.cells.back().rect.right, axes.outer.right);
}

TEST_F(EdcAxesLayout, HangsLabelsIntoTheNegativePartOfARange)
{
    SetPlan(60, 24);
    axes.Layout(dc, {0, 0, 640, 400}, 1.0, false);
    int roomLeft = axes.plot.left;
    int roomBelow = axes.outer.bottom - axes.plot.bottom;
    axes.SetXRange(-30, 60);
    axes.SetYRange(-12, 24);
    axes.Layout(dc, {0, 0, 640, 400}, 1.0, false);
    EXPECT_LT(axes.plot.left, roomLeft);
    EXPECT_LT(axes.outer.bottom - axes.plot.bottom, roomBelow);
    for (const TEdcAxesLabel *label = axes.xTicks; label != NULL; label = label->next)
        EXPECT_TRUE(label->y > axes.originY && label->y + 16 <= axes.plot.bottom);
}

TEST_F(EdcAxesLayout, GoesWithoutLabelsWhereTheyWouldTakeMoreThanThreeTenths)
{
    SetPlan(60, 24);
    axes.SetTitles("X", "Y");
    // Room of labels and title: 18 + 30 + 12 across, 8 + 22 + 18 upwards.
    struct {
        TSize size;
        bool decorated;
    } rows[] = {
        {{200, 160}, true},   // leaves 140 and 112, both 0.7 of the whole
        {{199, 1000}, false}, // 139 of 199
        {{1000, 159}, false}, // 111 of 159
        {{200, 1000}, true},  {{1000, 160}, true}, {{30, 30}, false},
    };
    for (const auto &row : rows) {
        TRect whole = {5, 7, 5 + row.size.cx, 7 + row.size.cy};
        TRect outer = axes.Layout(dc, whole, 1.0, false);
        EXPECT_EQ(axes.decorated, row.decorated) << row.size.cx << " x " << row.size.cy;
        EXPECT_EQ(outer, whole);
        EXPECT_EQ(axes.plot.Width(), row.decorated ? row.size.cx - 60 : row.size.cx);
        EXPECT_EQ(axes.plot.Height(), row.decorated ? row.size.cy - 48 : row.size.cy);
        EXPECT_EQ(axes.xTicks != NULL, row.decorated);
        dc.cells.clear();
        axes.Paint(dc, everything);
        EXPECT_EQ(dc.cells.empty(), !row.decorated);
    }
}

TEST_F(EdcAxesLayout, LimitsTheScalesAndKeepsTheRatio)
{
    axes.SetFlags(0);
    axes.SetXRange(0, 60);
    axes.SetYRange(0, 24);
    struct {
        double xMax, yMax, zoom; // in/m
        bool keep;
        double xScale, yScale; // px/m
    } rows[] = {
        {0, 0, 1, false, 10, 20},         {0, 0, 1, true, 10, 10},          {0.05, 0, 1, false, 4.8, 20},
        {0.05, 0, 1, true, 4.8, 4.8},     {0, 0.125, 1, false, 10, 12},     {0, 0.125, 1, true, 10, 10},
        {0.05, 0.1, 2, false, 9.6, 19.2}, {0.05, 0.025, 2, true, 4.8, 4.8}, {1, 1, 1, false, 10, 20},
        {-1, -1, 1, false, 10, 20},
    };
    for (const auto &row : rows) {
        axes.SetMaxScale(row.xMax, row.yMax);
        TRect outer = axes.Layout(dc, {0, 0, 600, 480}, row.zoom, row.keep);
        EXPECT_DOUBLE_EQ(axes.xScale, row.xScale) << row.xMax << " " << row.yMax << " " << row.keep;
        EXPECT_DOUBLE_EQ(axes.yScale, row.yScale) << row.xMax << " " << row.yMax << " " << row.keep;
        EXPECT_EQ(axes.plot.Width(), std::lround(60 * row.xScale));
        EXPECT_EQ(axes.plot.Height(), std::lround(24 * row.yScale));
        EXPECT_EQ(outer, axes.plot);
        EXPECT_EQ(axes.zoom, row.zoom);
    }
}

TEST_F(EdcAxesLayout, RoundsThePlotHalfAwayFromZero)
{
    axes.SetFlags(0);
    axes.SetXRange(0, 100);
    axes.SetYRange(0, 1);
    axes.Layout(dc, {0, 0, 50, 10}, 1.0, true); // 0.5 px/m
    EXPECT_EQ(axes.plot.Height(), 1);
    axes.SetXRange(0, 101);
    axes.Layout(dc, {0, 0, 50, 10}, 1.0, true);
    EXPECT_EQ(axes.plot.Height(), 0);
}

TEST_F(EdcAxesLayout, BreaksATitleThatIsLongerThanItsAxis)
{
    std::string title;
    for (int i = 0; i < 10; ++i)
        title += "Abstand ";
    SetPlan(60, 24);
    axes.SetTitles(title.c_str(), title.c_str());
    axes.Layout(dc, {0, 0, 500, 500}, 1.0, true);
    EXPECT_TRUE(axes.decorated);
    axes.Paint(dc, everything);
    int lines = 0;
    for (const TPlaceDC::Cell &cell : dc.cells) {
        EXPECT_TRUE(IsWithin(cell.rect, axes.outer)) << cell.text << " " << Show(cell.rect);
        lines += cell.text.find("Abstand") != std::string::npos;
    }
    EXPECT_GE(lines, 4);
}

/// Any range on any device in any room: everything lies where it was promised, and no text meets another one.
TEST(EdcAxesLayoutLaws, HoldForAnyAxes)
{
    TEdcDocument doc;
    SetAppDocument(&doc);
    std::mt19937 random(17);
    auto pick = [&](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
    std::uniform_real_distribution<double> exponent(-9, 12);
    std::uniform_real_distribution<double> share(0.02, 1);
    const char *const titles[] = {NULL, "", "X [m]",
                                  "Fl\xE4"
                                  "che [m^2^] je H_2_O",
                                  "ein langer Titel, der gebrochen wird"};
    const int dpis[] = {72, 96, 144, 192, 600};
    int decorated = 0;
    int labels = 0;
    for (int run = 0; run < 3000; ++run) {
        TPlaceDC dc(dpis[pick(5)]);
        TEdcAxes axes;
        double size = run % 2 == 0 ? std::pow(10.0, exponent(random)) : 60;
        double ratio = run % 4 == 0 ? std::pow(10.0, exponent(random) / 3) : 1;
        double ends[4]; // x and y, from and to
        for (int i = 0; i < 4; ++i)
            ends[i] = size * share(random) * (i < 2 ? 1 : ratio);
        int kind = pick(9);
        axes.SetXRange(kind % 3 == 0 ? 0 : -ends[0], kind % 3 == 1 ? 0 : ends[1]);
        axes.SetYRange(kind / 3 == 0 ? 0 : -ends[2], kind / 3 == 1 ? 0 : ends[3]);
        axes.SetXDigits(pick(9), pick(5) == 0 ? pick(7) - 3 : 0);
        axes.SetYDigits(pick(9), pick(5) == 0 ? pick(7) - 3 : 0);
        axes.SetFlags(static_cast<unsigned>(pick(8)));
        axes.SetDivision(size / 30, size * ratio / 30);
        axes.SetTitles(titles[pick(5)], titles[pick(5)]);
        axes.SetFont(pick(2) ? "Arial" : NULL, 4 + pick(12), pick(2));
        if (pick(3) == 0)
            axes.SetMaxScale(share(random) * 10 / size, share(random) * 10 / size / ratio);
        TRect whole = {pick(50), pick(50), 100 + pick(900), 100 + pick(900)};
        bool keep = pick(2);
        double zoom = share(random) * 2;
        TRect outer = axes.Layout(dc, whole, zoom, keep);
        axes.Paint(dc, {-5000, -5000, 5000, 5000});

        std::string which = "run " + std::to_string(run) + " outer " + Show(outer) + " plot " + Show(axes.plot);
        ASSERT_TRUE(IsWithin(outer, whole)) << which << " in " << Show(whole);
        ASSERT_TRUE(IsWithin(axes.plot, outer)) << which;
        ASSERT_GE(axes.xScale, 0);
        ASSERT_EQ(axes.plot.Width(), std::lround((axes.xMax - axes.xMin) * axes.xScale)) << which;
        ASSERT_EQ(axes.plot.Height(), std::lround((axes.yMax - axes.yMin) * axes.yScale)) << which;
        ASSERT_TRUE(axes.originX >= axes.plot.left && axes.originX <= axes.plot.right) << which;
        ASSERT_TRUE(axes.originY >= axes.plot.top && axes.originY <= axes.plot.bottom) << which;
        if (keep) {
            ASSERT_NEAR(axes.xScale, axes.yScale, 1e-9 * axes.xScale);
        }
        if (axes.xMaxScale > 0) {
            ASSERT_LE(axes.xScale, axes.xMaxScale * zoom * dc.DpiX() * (1 + 1e-12));
        }
        decorated += axes.decorated;
        ASSERT_TRUE(axes.decorated || dc.cells.empty()) << which;
        for (size_t i = 0; i < dc.cells.size(); ++i) {
            ++labels;
            ASSERT_TRUE(IsWithin(dc.cells[i].rect, outer))
                << which << dc.cells[i].text << Show(dc.cells[i].rect);
            for (size_t j = 0; j < i; ++j) {
                ASSERT_TRUE((dc.cells[i].rect & dc.cells[j].rect).IsEmpty())
                    << which << " \"" << dc.cells[i].text << "\" " << Show(dc.cells[i].rect) << " \""
                    << dc.cells[j].text << "\" " << Show(dc.cells[j].rect);
            }
        }
    }
    EXPECT_GT(decorated, 1000);
    EXPECT_GT(labels, 10000);
}

/// No device is too small, and no range too wide.
TEST(EdcAxesLayoutLaws, EndOnDegenerateDevicesAndRanges)
{
    TEdcDocument doc;
    SetAppDocument(&doc);
    const double most = 1.7e308;
    const double ranges[][2] = {{0, 1},     {-1, 1},       {0, 1e-9},     {0, 1e12},        {-1e-300, 1e300},
                                {0, most},  {-most, most}, {0, 5e-324},   {-1e300, 5e-324}, {-5e-324, 1},
                                {-1e12, 0}, {0, 1e308},    {-1e-9, 1e12}, {0, 1e-308}};
    const TSize sizes[] = {{0, 0},   {1, 1}, {2, 1},     {0, 300},        {300, 0},
                           {1, 300}, {7, 7}, {300, 300}, {100000, 100000}};
    for (const auto &x : ranges) {
        for (const auto &y : ranges) {
            for (const TSize &size : sizes) {
                for (double zoom : {1e-6, 1.0, 100.0}) {
                    TRecordDC dc;
                    TEdcAxes axes;
                    axes.SetFlags(EDC_AxXAXIS | EDC_AxYAXIS | EDC_AxGRID);
                    axes.SetXRange(x[0], x[1]);
                    axes.SetYRange(y[0], y[1]);
                    axes.SetXDigits(8, 0);
                    axes.SetYDigits(3, -2);
                    axes.SetDivision(x[1] / 7, 1e-300);
                    axes.SetTitles("X", "Y");
                    TRect whole = {3, 4, 3 + size.cx, 4 + size.cy};
                    TRect outer = axes.Layout(dc, whole, zoom, size.cx % 2 == 0);
                    axes.Paint(dc, whole);
                    ASSERT_TRUE(IsWithin(outer, whole))
                        << x[0] << " " << x[1] << " " << y[0] << " " << y[1] << " on " << Show(whole);
                    ASSERT_TRUE(std::isfinite(axes.xScale) && std::isfinite(axes.yScale));
                    TPoint origin = axes.ToDevice(AgE0);
                    ASSERT_TRUE(origin == (TPoint{axes.originX, axes.originY}));
                }
            }
        }
    }
}

TEST_F(EdcAxesLayout, OutOfMemoryStandsWithoutTicks)
{
    SetPlan(60, 24);
    axes.SetTitles("X [m]", "Y [m]");
    int swept = SweepFaults(
        [&] {
            TRecordDC device;
            axes.Layout(device, {0, 0, 600, 400}, 1.0, true);
        },
        [&](const FaultRun &run) {
            if (run.fired > 0) {
                EXPECT_EQ(run.code, XALLOC);
                EXPECT_FALSE(axes.decorated);
            }
            EXPECT_EQ(axes.xTicks == NULL, run.fired > 0);
            EXPECT_EQ(axes.yTicks == NULL, run.fired > 0);
        });
    EXPECT_GT(swept, 10);
}

/// A repaint in pieces gives the pixels of one painting at once, whatever the raster mix of the grid is.
TEST(EdcAxesPixels, AreTheSameInOnePaintingAndInPieces)
{
    TestApplication();
    TEdcDocument doc;
    SetAppDocument(&doc);
    for (int mix : {WIN_MIX_COPY, WIN_MIX_XOR, WIN_MIX_INVERT, WIN_MIX_MASK}) {
        TSize size = {330, 240};
        TMemoryDC whole(size, 96);
        TMemoryDC pieces(size, 96);
        TEdcAxes axes;
        axes.SetFlags(EDC_AxXAXIS | EDC_AxYAXIS | EDC_AxGRID);
        axes.SetXRange(-7, 30);
        axes.SetYRange(-3, 20);
        axes.SetXDigits(2, 0);
        axes.SetYDigits(2, 0);
        axes.SetDivision(2, 2);
        axes.SetGridStyle(static_cast<TMix>(mix));
        axes.SetTitles("X [m]", "Y [m^2^]");
        axes.Layout(whole, {10, 10, 320, 230}, 1.0, true);
        axes.Paint(whole, {0, 0, size.cx, size.cy});
        for (int y = 0; y < size.cy; y += 37) {
            for (int x = 0; x < size.cx; x += 29)
                axes.Paint(pieces, {x, y, x + 29, y + 37});
        }
        int dark = 0;
        for (int y = 0; y < size.cy; ++y) {
            for (int x = 0; x < size.cx; ++x) {
                ASSERT_EQ(whole.Pixel({x, y}), pieces.Pixel({x, y}))
                    << "mix " << mix << " at " << x << "," << y;
                dark += whole.Pixel({x, y}).red < 128;
            }
        }
        EXPECT_GT(dark, 500);
    }
}

/// With real fonts too everything keeps within its rectangle: around it the surface stays white.
TEST(EdcAxesPixels, KeepWithinTheRectangleThatLayoutReports)
{
    TestApplication();
    TEdcDocument doc;
    SetAppDocument(&doc);
    for (int dpi : {96, 144, 192}) {
        TSize size = {7 * dpi, 5 * dpi};
        TMemoryDC dc(size, dpi);
        TEdcAxes axes;
        axes.SetXRange(0, 60);
        axes.SetYRange(0, 24);
        axes.SetXDigits(2, 0);
        axes.SetYDigits(2, 0);
        axes.SetTitles("X [m]", "Y [m]");
        TRect outer = axes.Layout(dc, {40, 40, size.cx - 40, size.cy - 40}, 1.0, true);
        EXPECT_TRUE(axes.decorated);
        axes.Paint(dc, {0, 0, size.cx, size.cy});
        int inside = 0;
        for (int y = 0; y < size.cy; ++y) {
            for (int x = 0; x < size.cx; ++x) {
                bool white = dc.Pixel({x, y}) == WIN_WHITE;
                inside += !white;
                ASSERT_TRUE(white || outer.Contains({x, y})) << x << "," << y << " outside " << Show(outer);
            }
        }
        EXPECT_GT(inside, 3 * dpi);
        EXPECT_EQ(dc.Pixel({axes.originX + 20, axes.originY}), WIN_BLACK);
        EXPECT_EQ(dc.Pixel({axes.originX, axes.originY - 20}), WIN_BLACK);
    }
}
