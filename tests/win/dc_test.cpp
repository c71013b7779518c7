// The base of device contexts: state, places on the surface, what is put together from virtual operations.
#include "win/dc.h"

#include "support/recorddc.h"

#include <gtest/gtest.h>

#include <climits>

TEST(DeviceContext, EachSetterReturnsTheFormerValue)
{
    TRecordDC dc;
    EXPECT_EQ(dc.SetViewportOrg({3, 4}), TPoint());
    EXPECT_EQ(dc.SetViewportOrg({}), (TPoint{3, 4}));
    EXPECT_EQ(dc.SetTurn(5), 0);
    EXPECT_EQ(dc.SetTurn(-1), 1);
    EXPECT_EQ(dc.SetTurn(0), 3);
    EXPECT_EQ(dc.SetBrushOrg({1, 1}), TPoint());
    EXPECT_EQ(dc.SetPen({WIN_WHITE, 3, WIN_PEN_DOT}), TPen());
    EXPECT_EQ(dc.SetPen(TPen()), (TPen{WIN_WHITE, 3, WIN_PEN_DOT}));
    EXPECT_EQ(dc.SetBrush(NoBrush()), TBrush());
    EXPECT_EQ(dc.SetBrush(TBrush()), NoBrush());
    EXPECT_EQ(dc.SetFont({.face = "Courier New", .height = -20}), TFont());
    EXPECT_EQ(dc.SetFont(TFont()).height, -20);
    EXPECT_EQ(dc.SetMix(WIN_MIX_XOR), WIN_MIX_COPY);
    EXPECT_EQ(dc.SetMix(WIN_MIX_COPY), WIN_MIX_XOR);
    EXPECT_TRUE(dc.SetOpaque(false));
    EXPECT_FALSE(dc.SetOpaque(true));
    EXPECT_EQ(dc.SetTextColor(WIN_WHITE), WIN_BLACK);
    EXPECT_EQ(dc.SetBackground(WIN_BLACK), WIN_WHITE);
    EXPECT_EQ(dc.SetTextAlign(WIN_TEXT_BASELINE), WIN_TEXT_TOP);
}

TEST(DeviceContext, TheClipIsGivenFromTheViewportAndStaysOnTheSurface)
{
    TRecordDC dc;
    dc.SetViewportOrg({100, 50});
    dc.SetClip({1, 2, 3, 4});
    dc.SetViewportOrg({});
    EXPECT_TRUE(dc.State().clipped);
    EXPECT_EQ(dc.State().clip, (TRect{101, 52, 103, 54}));
    dc.ClearClip();
    EXPECT_FALSE(dc.State().clipped);
}

TEST(DeviceContext, QuarterTurnsGoCounterClockwiseAboutTheViewport)
{
    const struct {
        int turn;
        TPoint point;
        TRect rect;
        TPoint sixteenths;
    } rows[] = {
        {0, {107, 202}, {105, 201, 109, 204}, {1600 + 112, 3200 + 32}},
        {1, {102, 193}, {101, 192, 104, 196}, {1600 + 32, 3200 - 96}},
        {2, {93, 198}, {92, 197, 96, 200}, {1600 - 96, 3200 - 16}},
        {3, {98, 207}, {97, 205, 100, 209}, {1600 - 16, 3200 + 112}},
    };
    for (const auto &row : rows) {
        TRecordDC dc;
        dc.SetViewportOrg({100, 200});
        dc.SetTurn(row.turn);
        EXPECT_EQ(dc.ToSurface(TPoint{7, 2}), row.point);
        EXPECT_EQ(dc.ToSurface(TRect{5, 1, 9, 4}), row.rect);
        EXPECT_EQ(dc.SixteenthsToSurface({112, 32}), row.sixteenths);
    }
}

TEST(DeviceContext, PixelsOfATurnedRectangleAreTheTurnedPixels)
{
    const TRect rect = {-2, 3, 4, 5};
    for (int turn = 0; turn < 4; ++turn) {
        TRecordDC dc;
        dc.SetTurn(turn);
        const TRect turned = dc.ToSurface(rect);
        int inside = 0;
        for (int y = rect.top; y < rect.bottom; ++y) {
            for (int x = rect.left; x < rect.right; ++x)
                inside += turned.Contains(dc.ToSurface(TPoint{x, y}));
        }
        EXPECT_EQ(inside, rect.Width() * rect.Height());
        EXPECT_EQ(turned.Width() * turned.Height(), inside);
    }
}

TEST(DeviceContext, PlacesFarOutAreDrawnInInsteadOfOverflowing)
{
    for (int turn = 0; turn < 4; ++turn) {
        TRecordDC dc;
        dc.SetViewportOrg({INT_MAX, INT_MIN});
        dc.SetTurn(turn);
        for (int x : {INT_MIN, 0, INT_MAX}) {
            for (int y : {INT_MIN, 0, INT_MAX}) {
                const TPoint p = dc.ToSurface(TPoint{x, y});
                EXPECT_LE(std::abs(p.x), WIN_FAR);
                EXPECT_LE(std::abs(p.y), WIN_FAR);
                dc.SixteenthsToSurface({x, y});
            }
        }
        const TRect all = dc.ToSurface(TRect{INT_MIN, INT_MIN, INT_MAX, INT_MAX});
        EXPECT_GE(all.Width(), 0);
        EXPECT_GE(all.Height(), 0);
    }
}

TEST(DeviceContext, ATextIsAsWideAsItsCharactersTogether)
{
    TRecordDC dc;
    dc.SetFont({.height = -20});
    EXPECT_EQ(dc.TextWidth("Wim", 3), 15 + 5 + 15);
    EXPECT_EQ(dc.TextWidth("Wim", 0), 0);
    EXPECT_EQ(dc.TextWidth("\xE4", 1), 10);
}

TEST(DeviceContext, ALineIsAPolylineOfTwoPoints)
{
    TRecordDC dc;
    dc.Line({1, 2}, {3, 4});
    EXPECT_EQ(dc.calls, "Line 1,2 3,4 pen 000000\n");
}
