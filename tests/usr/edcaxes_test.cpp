// Settings of the axes, what each raises, and the conversions between pixels and metres.
#include "support/child.h"
#include "support/recorddc.h"
#include "usr/edcapp.h"
#include "usr/edcbase2.h"
#include "usr/edcitem.h"

#include <climits>
#include <cmath>
#include <functional>
#include <gtest/gtest.h>
#include <limits>
#include <random>

namespace
{
const double DEGREE = AgPI / 180;
const char *const SOURCE = "usr/edcitem_axes.cpp";

class EdcAxes : public testing::Test
{
protected:
    EdcAxes() { SetAppDocument(&doc); }

    /// The level that a setting raises from 0.
    int Raised(const std::function<void()> &set)
    {
        doc.obsolete = 0;
        set();
        return doc.obsolete;
    }
    /// Without axes drawn, so that the plot is the rectangle and the figures are round.
    void LayoutPlain(const TRect &rect, double xMin, double xMax, double yMin, double yMax)
    {
        axes.SetFlags(0);
        axes.SetXRange(xMin, xMax);
        axes.SetYRange(yMin, yMax);
        axes.Layout(dc, rect, 1.0, false);
        EXPECT_EQ(axes.plot, rect);
    }

    TEdcDocument doc;
    TRecordDC dc;
    TEdcAxes axes;
};
} // namespace

TEST_F(EdcAxes, StartAsAUnitSquareWithBothAxesDrawn)
{
    EXPECT_EQ(axes.flags, 3u);
    EXPECT_EQ(axes.fontName, static_cast<const char *>(NULL));
    EXPECT_EQ(axes.fontSize, 0);
    EXPECT_TRUE(axes.fontBold);
    EXPECT_EQ(axes.color, WIN_BLACK);
    EXPECT_EQ(axes.gridStyle, 13);
    EXPECT_EQ(axes.xMin, 0);
    EXPECT_EQ(axes.yMin, 0);
    EXPECT_EQ(axes.xMax, 1);
    EXPECT_EQ(axes.yMax, 1);
    EXPECT_EQ(axes.xDigits, 1);
    EXPECT_EQ(axes.yDigits, 1);
    EXPECT_EQ(axes.zoom, 1);
    EXPECT_FALSE(axes.decorated);
    EXPECT_EQ(axes.xTicks, static_cast<TEdcAxesLabel *>(NULL));
}

TEST_F(EdcAxes, WidenEachRangeSoThatItHoldsZero)
{
    struct {
        double min, max, rangeMin, rangeMax;
    } rows[] = {
        {2, 5, 0, 5},   {5, -3, -3, 5}, {-3, 5, -3, 5}, {-5, -2, -5, 0},       {-2, -5, -5, 0},
        {0, 60, 0, 60}, {60, 0, 0, 60}, {0, -7, -7, 0}, {1e-9, 2e-9, 0, 2e-9},
    };
    for (const auto &row : rows) {
        axes.SetXRange(row.min, row.max);
        EXPECT_EQ(axes.xMin, row.rangeMin) << row.min << " " << row.max;
        EXPECT_EQ(axes.xMax, row.rangeMax) << row.min << " " << row.max;
        axes.SetYRange(row.min, row.max);
        EXPECT_EQ(axes.yMin, row.rangeMin) << row.min << " " << row.max;
        EXPECT_EQ(axes.yMax, row.rangeMax) << row.min << " " << row.max;
    }
}

TEST_F(EdcAxes, RefuseARangeWithoutExtent)
{
    EXPECT_TRUE(AbortsOnAssertion("max != min", SOURCE, [&] { axes.SetXRange(3, 3); }));
    EXPECT_TRUE(AbortsOnAssertion("max != min", SOURCE, [&] { axes.SetYRange(0, 0); }));
    EXPECT_TRUE(AbortsOnAssertion("max != min", SOURCE, [&] { axes.SetYRange(0.0, -0.0); }));
}

TEST_F(EdcAxes, RefuseToBeLaidOutWithoutScaleOrRange)
{
    const char *const source = "usr/edcitem_axes_layout.cpp";
    TRect rect = {0, 0, 100, 100};
    for (double scale : {0.0, -1.0, std::numeric_limits<double>::quiet_NaN()})
        EXPECT_TRUE(AbortsOnAssertion("scale > 0", source, [&] { axes.Layout(dc, rect, scale, false); }));
    axes.xMax = axes.xMin;
    EXPECT_TRUE(AbortsOnAssertion("max > min", source, [&] { axes.Layout(dc, rect, 1, false); }));
    axes.flags = 0;
    EXPECT_TRUE(AbortsOnAssertion("max > min", source, [&] { axes.Layout(dc, {0, 0, 0, 0}, 1, false); }));
}

TEST_F(EdcAxes, LimitTheDigitsOfTheirLabels)
{
    struct {
        int given, digits;
    } rows[] = {{-1, 0}, {0, 0}, {1, 1}, {8, 8}, {9, 8}, {INT_MAX, 8}, {INT_MIN, 0}};
    for (const auto &row : rows) {
        axes.SetXDigits(row.given, 3);
        axes.SetYDigits(row.given, -3);
        EXPECT_EQ(axes.xDigits, row.digits) << row.given;
        EXPECT_EQ(axes.yDigits, row.digits) << row.given;
        EXPECT_EQ(axes.xExp, 3);
        EXPECT_EQ(axes.yExp, -3);
    }
}

TEST_F(EdcAxes, RaiseWhatASettingCosts)
{
    EXPECT_EQ(Raised([&] { axes.SetXRange(0, 1); }), EDC_LAYOUT);
    EXPECT_EQ(Raised([&] { axes.SetYRange(0, 1); }), EDC_LAYOUT);
    EXPECT_EQ(Raised([&] { axes.SetXDigits(1, 0); }), EDC_LAYOUT);
    EXPECT_EQ(Raised([&] { axes.SetYDigits(1, 0); }), EDC_LAYOUT);
    EXPECT_EQ(Raised([&] { axes.SetFont("Arial", 10, true); }), EDC_LAYOUT);
    EXPECT_EQ(Raised([&] { axes.SetTitles("X", "Y"); }), EDC_LAYOUT);
    EXPECT_EQ(Raised([&] { axes.SetMaxScale(1, 1); }), EDC_LAYOUT);
    EXPECT_EQ(Raised([&] { axes.SetColor(WIN_BLACK); }), EDC_PAINT);
    EXPECT_EQ(Raised([&] { axes.SetGridStyle(WIN_MIX_XOR); }), EDC_PAINT);
    EXPECT_EQ(Raised([&] { axes.SetSnap(1, 1); }), 0);
    EXPECT_EQ(Raised([&] { axes.SetAngle(1, 1); }), 0);
    EXPECT_EQ(Raised([&] { axes.SetFlags(EDC_AxXAXIS | EDC_AxYAXIS | EDC_AxGRID); }), EDC_PAINT);
    EXPECT_EQ(Raised([&] { axes.SetFlags(EDC_AxXAXIS); }), EDC_LAYOUT);
}

TEST_F(EdcAxes, RaisePaintForAGridThatIsShownOnly)
{
    struct {
        unsigned flags;
        int coarse, fine; // raised by the division and the finer one
    } rows[] = {
        {0, 0, 0},
        {EDC_AxXAXIS | EDC_AxYAXIS, 0, 0},
        {EDC_AxGRID, EDC_PAINT, 0},
        {EDC_AxMINORGRID, 0, 0},
        {EDC_AxGRID | EDC_AxMINORGRID, 0, EDC_PAINT},
    };
    for (const auto &row : rows) {
        axes.SetFlags(row.flags);
        EXPECT_EQ(Raised([&] { axes.SetDivision(2, 2); }), row.coarse) << row.flags;
        EXPECT_EQ(Raised([&] { axes.SetMinorDivision(1, 1); }), row.fine) << row.flags;
    }
}

TEST_F(EdcAxes, LeaveAHigherLevelStanding)
{
    doc.obsolete = EDC_RECALC;
    axes.SetXRange(0, 1);
    axes.SetColor(WIN_WHITE);
    EXPECT_EQ(doc.obsolete, EDC_RECALC);
}

TEST_F(EdcAxes, TakeStepsWithoutTheirSign)
{
    axes.SetDivision(-2, -3);
    EXPECT_EQ(axes.xStep, 2);
    EXPECT_EQ(axes.yStep, 3);
    axes.SetMinorDivision(-0.5, 0.25);
    EXPECT_EQ(axes.xMinorStep, 0.5);
    EXPECT_EQ(axes.yMinorStep, 0.25);
    axes.SetSnap(-0.01, 0.02);
    EXPECT_EQ(axes.xSnap, 0.01);
    EXPECT_EQ(axes.ySnap, 0.02);
    axes.SetAngle(-1, -5 * DEGREE);
    EXPECT_EQ(axes.xAngleBase, 1);
    EXPECT_EQ(axes.angleSnap, 5 * DEGREE);
}

TEST_F(EdcAxes, TurnPixelsIntoMetresWithYUpwards)
{
    LayoutPlain({100, 50, 300, 250}, -5, 5, -2, 2); // 20 px/m and 50 px/m
    EXPECT_EQ(axes.ToModelX(40), 2);
    EXPECT_EQ(axes.ToModelX(-40), -2);
    EXPECT_EQ(axes.ToModelY(100), -2);
    EXPECT_EQ(axes.ToModelY(-100), 2);
    EXPECT_EQ(axes.ToModel({200, 150}), AgPOINT(0, 0));
    EXPECT_EQ(axes.ToModel({100, 250}), AgPOINT(-5, -2));
    EXPECT_EQ(axes.ToModel({300, 50}), AgPOINT(5, 2));
    EXPECT_EQ(axes.ToModel({300, 50}).z, 0);
    EXPECT_EQ(axes.ToDevice(AgPOINT(1, 1)), (TPoint{220, 100}));
    EXPECT_EQ(axes.ToDevice(AgPOINT(-5, 2, 7)), (TPoint{100, 50}));
}

TEST_F(EdcAxes, RoundDevicePointsHalfAwayFromZero)
{
    LayoutPlain({0, 0, 4, 4}, -2, 2, -2, 2); // 1 px/m, origin (2, 2)
    EXPECT_EQ(axes.ToDevice(AgPOINT(0.5, 0)), (TPoint{3, 2}));
    EXPECT_EQ(axes.ToDevice(AgPOINT(0.49, 0)), (TPoint{2, 2}));
    EXPECT_EQ(axes.ToDevice(AgPOINT(-2.5, 0)), (TPoint{-1, 2}));
    EXPECT_EQ(axes.ToDevice(AgPOINT(0, 2.5)), (TPoint{2, -1}));
    EXPECT_EQ(axes.ToDevice(AgPOINT(0, -0.5)), (TPoint{2, 3}));
}

TEST_F(EdcAxes, LimitDevicePointsToWhereSumsOfThemAreIntegers)
{
    const int farthest = 1 << 28;
    LayoutPlain({0, 0, 100, 100}, 0, 10, 0, 10);
    double huge = 1e300;
    double infinite = std::numeric_limits<double>::infinity();
    double none = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(axes.ToDevice(AgPOINT(huge, huge)), (TPoint{farthest, -farthest}));
    EXPECT_EQ(axes.ToDevice(AgPOINT(-infinite, -infinite)), (TPoint{-farthest, farthest}));
    EXPECT_EQ(axes.ToDevice(AgPOINT(none, none)), (TPoint{0, 0}));
    AgPOINT far = axes.ToModel({INT_MAX, INT_MIN});
    EXPECT_DOUBLE_EQ(far.x, INT_MAX / 10.0);
    EXPECT_DOUBLE_EQ(far.y, (100.0 - INT_MIN) / 10);
    EXPECT_DOUBLE_EQ(axes.ToModelY(INT_MIN), -(INT_MIN / 10.0));
}

TEST_F(EdcAxes, ConvertThereAndBackWithinHalfAPixel)
{
    std::mt19937 random(7);
    std::uniform_int_distribution<int> place(-5000, 5000);
    std::uniform_real_distribution<double> metres(-100, 100);
    for (int run = 0; run < 300; ++run) {
        axes.SetXRange(metres(random), metres(random));
        axes.SetYRange(metres(random), metres(random));
        axes.Layout(dc, {place(random) / 10, place(random) / 10, 600, 700}, 1 + run % 3, run % 2 == 0);
        for (int i = 0; i < 20; ++i) {
            TPoint p = {place(random), place(random)};
            ASSERT_EQ(axes.ToDevice(axes.ToModel(p)), p);
            AgPOINT m(metres(random), metres(random));
            AgPOINT back = axes.ToModel(axes.ToDevice(m));
            ASSERT_LE(std::fabs(back.x - m.x) * axes.xScale, 0.5 + 1e-9);
            ASSERT_LE(std::fabs(back.y - m.y) * axes.yScale, 0.5 + 1e-9);
        }
    }
}

TEST_F(EdcAxes, WithoutAnExtentShowEveryPointInOnePlace)
{
    axes.Layout(dc, {30, 40, 30, 40}, 1, false);
    EXPECT_EQ(axes.ToDevice(AgPOINT(5, -7)), (TPoint{30, 40}));
    EXPECT_EQ(axes.ToModel({90, 90}), AgE0);
    EXPECT_EQ(axes.ToModelX(9), 0);
    EXPECT_EQ(axes.ToModelY(9), 0);
    EXPECT_EQ(axes.Length(3, 4), 0);
    EXPECT_EQ(axes.Angle(-3, 0), 0);
}

TEST_F(EdcAxes, SnapPointsToTheNearestMultipleHalvesAwayFromZero)
{
    struct {
        double step, value, snapped;
    } rows[] = {
        {2, 0.9, 0},   {2, 1, 2},          {2, -1, -2},         {2, -0.9, 0},      {2, 3, 4},
        {2, 5.1, 6},   {0.25, 0.12, 0},    {0.25, 0.125, 0.25}, {0, 0.123, 0.123}, {0.01, 12.345678, 12.35},
        {1e9, 4e8, 0}, {0.5, -0.75, -1.0},
    };
    for (const auto &row : rows) {
        axes.SetSnap(row.step, 0);
        EXPECT_DOUBLE_EQ(axes.Snap(AgPOINT(row.value, row.value)).x, row.snapped) << row.value;
        EXPECT_EQ(axes.Snap(AgPOINT(row.value, row.value)).y, row.value);
        axes.SetSnap(0, -row.step);
        EXPECT_EQ(axes.Snap(AgPOINT(row.value, row.value)).x, row.value);
        EXPECT_DOUBLE_EQ(axes.Snap(AgPOINT(row.value, row.value, 3)).y, row.snapped) << row.value;
    }
}

TEST_F(EdcAxes, SnapAnglesAndWrapThem)
{
    struct {
        double step, angle, snapped; // degrees
    } rows[] = {
        {5, 12.4, 10},  {5, 12.5, 15},   {5, -12.5, -15}, {5, 182, 180},   {5, -182, 180},
        {5, 180, 180},  {5, -180, 180},  {5, 183, -175},  {5, 360, 0},     {5, 725, 5},
        {5, -540, 180}, {0, 33.3, 33.3}, {0, 190, -170},  {0, -180, 180},  {0, 540, 180},
        {90, 46, 90},   {90, -134, -90}, {90, 135, 180},  {90, -136, 180}, {7, 178.5, 179.5 - 4.5},
        {7, 179, -178},
    };
    for (const auto &row : rows) {
        axes.SetAngle(1, row.step * DEGREE);
        double snapped = axes.SnapAngle(row.angle * DEGREE);
        EXPECT_NEAR(snapped / DEGREE, row.snapped, 1e-9) << row.angle << " to " << row.step;
        EXPECT_GT(snapped, -AgPI);
        EXPECT_LE(snapped, AgPI);
    }
}

TEST_F(EdcAxes, WrapEveryMultipleOfFiveDegrees)
{
    axes.SetAngle(1.0, 0.08726646259971647);
    for (int n = -400; n <= 400; ++n) {
        double snapped = axes.SnapAngle(n * 0.08726646259971647 + 0.01);
        int degrees = ((5 * n + 180) % 360 + 360) % 360 - 180;
        EXPECT_NEAR(snapped / DEGREE, degrees == -180 ? 180 : degrees, 1e-9) << n;
    }
}

TEST_F(EdcAxes, MeasureAnglesCounterClockwiseOnTheScreen)
{
    LayoutPlain({0, 0, 100, 100}, 0, 10, 0, 10);
    struct {
        int dx, dy;
        double degrees;
    } rows[] = {{1, 0, 0},    {1, -1, 45},       {0, -3, 90},      {-2, -2, 135},
                {-5, 0, 180}, {-1, 1, -135},     {0, 4, -90},      {1, 1, -45},
                {0, 0, 0},    {INT_MIN, 0, 180}, {0, INT_MIN, 90}, {INT_MAX, INT_MAX, -45}};
    for (const auto &row : rows)
        EXPECT_NEAR(axes.Angle(row.dx, row.dy) / DEGREE, row.degrees, 1e-9) << row.dx << " " << row.dy;
}

TEST_F(EdcAxes, MeasureLengthsAndAnglesInTheModel)
{
    LayoutPlain({0, 0, 100, 100}, 0, 10, 0, 20); // 10 px/m and 5 px/m
    EXPECT_DOUBLE_EQ(axes.Length(30, 20), 5);
    EXPECT_DOUBLE_EQ(axes.Length(-30, 0), 3);
    EXPECT_DOUBLE_EQ(axes.Length(0, -20), 4);
    EXPECT_NEAR(axes.Angle(10, -5) / DEGREE, 45, 1e-9);
}
