// Lengths with a unit: what they answer, how they are set, limited and turned into pixels.
#include "support/child.h"
#include "support/recorddc.h"
#include "usr/edcbase1.h"

#include <climits>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace
{
const double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();
const double INFINITE = std::numeric_limits<double>::infinity();
const char *const SOURCE = "usr/edcbase1.cpp";

/// A device whose pixels are not square.
class TOblongDC : public TRecordDC
{
public:
    int DpiX() const override { return 100; }
    int DpiY() const override { return 300; }
};
} // namespace

TEST(TEdcSize, AnswersInInchesWhateverItsUnit)
{
    TEdcSize base(8, 10);
    struct {
        int unit;
        double width, height; // stored
        double inchesX, inchesY;
    } rows[] = {
        {EDC_UIN, 3, 4, 3, 4},
        {EDC_UCM, 21.0, 29.7, 21.0 / 2.54, 29.7 / 2.54},
        {EDC_UPT, 36, 90, 36 * (1 / 72.0), 90 * (1 / 72.0)},
        {EDC_UREL, 0.5, 0.25, 4, 2.5},
    };
    for (const auto &row : rows) {
        TEdcSize size(row.width, row.height, row.unit, &base);
        EXPECT_EQ(size.Width(), row.inchesX) << row.unit;
        EXPECT_EQ(size.Height(), row.inchesY) << row.unit;
    }
}

TEST(TEdcSize, TakesInchesIntoItsOwnUnit)
{
    TEdcSize base(8, 10);
    struct {
        int unit;
        double width, height; // stored, for 2 by 5 inches
    } rows[] = {{EDC_UIN, 2, 5}, {EDC_UCM, 5.08, 12.7}, {EDC_UPT, 144, 360}, {EDC_UREL, 0.25, 0.5}};
    for (const auto &row : rows) {
        TEdcSize size(0, 0, row.unit, &base);
        size.SetWidth(2);
        size.SetHeight(5);
        EXPECT_DOUBLE_EQ(size.width, row.width) << row.unit;
        EXPECT_DOUBLE_EQ(size.height, row.height) << row.unit;
        EXPECT_EQ(size.unit, row.unit);
        EXPECT_EQ(size.base, &base);
    }
}

TEST(TEdcSize, FollowsItsBase)
{
    TEdcSize base(10, 20);
    TEdcSize half(0.5, 0.5, EDC_UREL, &base);
    TEdcSize quarter(0.5, 0.5, EDC_UREL, &half);
    EXPECT_EQ(quarter.Width(), 2.5);
    base.SetWidth(4);
    EXPECT_EQ(half.Width(), 2);
    EXPECT_EQ(quarter.Width(), 1);
    EXPECT_EQ(quarter.Height(), 5);
}

TEST(TEdcSize, IsNeverNegative)
{
    TEdcSize size(-1, -2, EDC_UCM);
    EXPECT_EQ(size.width, 0);
    EXPECT_EQ(size.height, 0);
    size = TEdcSize(1, 2);
    size.SetWidth(-0.5);
    size.SetHeight(-1e300);
    EXPECT_EQ(size.Width(), 0);
    EXPECT_EQ(size.Height(), 0);
    size.SetWidth(NOT_A_NUMBER);
    EXPECT_EQ(size.Width(), 0);
}

TEST(TEdcSize, IsLimitedToWhatIsOffered)
{
    struct {
        double width, height, maxWidth, maxHeight, newWidth, newHeight; // inches
    } rows[] = {
        {3, 4, 5, 6, 3, 4}, {3, 4, 2, 6, 2, 4},  {3, 4, 5, 1, 3, 1},
        {3, 4, 3, 4, 3, 4}, {3, 4, -1, 6, 0, 4}, {3, 4, 0, -2, 0, 0},
    };
    for (const auto &row : rows) {
        TEdcSize size(row.width, row.height);
        size.Clamp(row.maxWidth, row.maxHeight);
        EXPECT_EQ(size.Width(), row.newWidth);
        EXPECT_EQ(size.Height(), row.newHeight);
        TEdcSize other(row.width, row.height);
        other.ClampTo(TEdcSize(row.maxWidth, row.maxHeight));
        EXPECT_EQ(other.Width(), row.newWidth);
        EXPECT_EQ(other.Height(), row.newHeight);
    }
}

TEST(TEdcSize, IsLimitedInItsOwnUnit)
{
    TEdcSize base(8, 10);
    TEdcSize size(1, 1, EDC_UREL, &base);
    size.ClampTo(TEdcSize(2, 20));
    EXPECT_EQ(size.width, 0.25);
    EXPECT_EQ(size.height, 1);
    EXPECT_EQ(size.unit, EDC_UREL);
}

TEST(TEdcSize, TurnsIntoPixelsOfEachDirection)
{
    TOblongDC dc;
    TEdcSize size(2, 3);
    EXPECT_EQ(size.ToPixels(dc, 1.0), (TSize{200, 900}));
    EXPECT_EQ(size.ToPixels(dc, 0.5), (TSize{100, 450}));
    size.FromPixels(dc, {50, 75}, 0.5);
    EXPECT_EQ(size.Width(), 1);
    EXPECT_EQ(size.Height(), 0.5);
    TEdcSize metric(0, 0, EDC_UCM);
    metric.FromPixels(dc, {100, 300}, 1.0);
    EXPECT_EQ(metric.width, 2.54);
    EXPECT_EQ(metric.height, 2.54);
}

TEST(EdcInchToPixel, RoundsHalvesAwayFromZero)
{
    struct {
        double inches, scale;
        int dpi, pixels;
    } rows[] = {
        {1, 1, 96, 96},           {0.5, 1, 3, 2},
        {-0.5, 1, 3, -2},         {0.25, 0.5, 12, 2},
        {0.25, 1, 1, 0},          {0.4999, 1, 1, 0},
        {2.5, 1, 1, 3},           {-2.5, 1, 1, -3},
        {5 / 72.0, 1, 96, 7},     {5 / 72.0, 1, 600, 42},
        {0, 1, 600, 0},           {1e300, 1, 96, INT_MAX},
        {-1e300, 1, 96, INT_MIN}, {INFINITE, 1, 96, INT_MAX},
        {NOT_A_NUMBER, 1, 96, 0}, {1e308, 1e308, 96, INT_MAX},
    };
    for (const auto &row : rows)
        EXPECT_EQ(EdcInchToPixel(row.inches, row.scale, row.dpi), row.pixels) << row.inches << " " << row.dpi;
}

/// The order of operations shows in the last bit, and a half in it decides about a pixel.
TEST(EdcInchToPixel, MultipliesByTheScaleBeforeTheResolution)
{
    int differing = 0;
    for (int i = 1; i < 4000; ++i) {
        double inches = i / 400.0;
        double scale = 0.35;
        EXPECT_EQ(EdcInchToPixel(inches, scale, 600), static_cast<int>(std::round(inches * scale * 600)));
        EXPECT_EQ(EdcPixelToInch(i, scale, 300), static_cast<double>(i) / 300 / scale);
        differing += std::round(inches * scale * 600) != std::round(inches * (scale * 600));
    }
    EXPECT_GT(differing, 0) << "these numbers tell no order from another";
}

TEST(EdcInchToPixel, GivesPixelsBackUnchanged)
{
    for (int dpi : {72, 96, 120, 144, 192, 300, 600, 1200}) {
        for (double scale : {0.01, 0.33, 1.0, 1.5, 7.0, 80.0}) {
            for (int pixels = -3000; pixels <= 3000; pixels += 7)
                ASSERT_EQ(EdcInchToPixel(EdcPixelToInch(pixels, scale, dpi), scale, dpi), pixels)
                    << dpi << " " << scale;
        }
    }
}

TEST(TEdcSize, TooLargeForPixelsIsLimitedToTheIntegers)
{
    TRecordDC dc;
    EXPECT_EQ(TEdcSize(1e30, INFINITE).ToPixels(dc, 1.0), (TSize{INT_MAX, INT_MAX}));
    EXPECT_EQ(TEdcSize(NOT_A_NUMBER, 1).ToPixels(dc, 1.0), (TSize{0, 96}));
}

TEST(TEdcMargins, AnswerInInchesWhateverTheirUnit)
{
    TEdcSize base(8, 10);
    struct {
        int unit;
        double factorX, factorY; // inches per unit
    } rows[] = {
        {EDC_UIN, 1, 1}, {EDC_UCM, 1 / 2.54, 1 / 2.54}, {EDC_UPT, 1 / 72.0, 1 / 72.0}, {EDC_UREL, 8, 10}};
    for (const auto &row : rows) {
        TEdcMargins margins(1, 2, 3, 4, row.unit, &base);
        EXPECT_DOUBLE_EQ(margins.Left(), 1 * row.factorX) << row.unit;
        EXPECT_DOUBLE_EQ(margins.Top(), 2 * row.factorY) << row.unit;
        EXPECT_DOUBLE_EQ(margins.Right(), 3 * row.factorX) << row.unit;
        EXPECT_DOUBLE_EQ(margins.Bottom(), 4 * row.factorY) << row.unit;
    }
}

TEST(TEdcMargins, AreNeverNegative)
{
    TEdcMargins margins(-1, -2, -3, -4);
    EXPECT_EQ(margins.Left(), 0);
    EXPECT_EQ(margins.Top(), 0);
    EXPECT_EQ(margins.Right(), 0);
    EXPECT_EQ(margins.Bottom(), 0);
    EXPECT_EQ(TEdcMargins().Left(), 0);
}

TEST(TEdcSize, WithoutABaseRefusesFractions)
{
    const TEdcSize size(0.5, 0.5, EDC_UREL);
    const TEdcMargins margins(0.5, 0.5, 0.5, 0.5, EDC_UREL);
    TEdcSize changed(0.5, 0.5, EDC_UREL);
    EXPECT_TRUE(AbortsOnAssertion("base != NULL", SOURCE, [&] { size.Width(); }));
    EXPECT_TRUE(AbortsOnAssertion("base != NULL", SOURCE, [&] { size.Height(); }));
    EXPECT_TRUE(AbortsOnAssertion("base != NULL", SOURCE, [&] { changed.SetWidth(1); }));
    EXPECT_TRUE(AbortsOnAssertion("base != NULL", SOURCE, [&] { changed.SetHeight(1); }));
    EXPECT_TRUE(AbortsOnAssertion("base != NULL", SOURCE, [&] { margins.Left(); }));
    EXPECT_TRUE(AbortsOnAssertion("base != NULL", SOURCE, [&] { margins.Bottom(); }));
}

TEST(TEdcSize, CannotBeAFractionOfNothing)
{
    TEdcSize flat(0, 10);
    TEdcSize narrow(10, 0);
    TEdcSize ofFlat(0.5, 0.5, EDC_UREL, &flat);
    TEdcSize ofNarrow(0.5, 0.5, EDC_UREL, &narrow);
    EXPECT_TRUE(AbortsOnAssertion("base->Width() > 0", SOURCE, [&] { ofFlat.SetWidth(1); }));
    EXPECT_TRUE(AbortsOnAssertion("base->Height() > 0", SOURCE, [&] { ofNarrow.SetHeight(1); }));
    ofFlat.SetHeight(5);
    ofNarrow.SetWidth(5);
    EXPECT_EQ(ofFlat.height, 0.5);
    EXPECT_EQ(ofNarrow.width, 0.5);
}

TEST(TEdcSize, NeedsAScaleAboveZeroForPixels)
{
    TRecordDC dc;
    TEdcSize size(1, 1);
    for (double scale : {0.0, -1.0, NOT_A_NUMBER}) {
        EXPECT_TRUE(AbortsOnAssertion("scale > 0", SOURCE, [&] { size.ToPixels(dc, scale); })) << scale;
        EXPECT_TRUE(AbortsOnAssertion("scale > 0", SOURCE, [&] { size.FromPixels(dc, {1, 1}, scale); }));
    }
}
