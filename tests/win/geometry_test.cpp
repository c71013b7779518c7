#include "win/geometry.h"

#include <gtest/gtest.h>

#include <climits>

TEST(Rect, EdgesThatStandTheWrongWayRoundAreSwapped)
{
    EXPECT_EQ((TRect{9, 8, 1, 2}).Normalized(), (TRect{1, 2, 9, 8}));
    EXPECT_EQ((TRect{1, 8, 9, 2}).Normalized(), (TRect{1, 2, 9, 8}));
    EXPECT_EQ((TRect{1, 2, 9, 8}).Normalized(), (TRect{1, 2, 9, 8}));
}

TEST(Rect, HoldsItsLeftAndTopEdgesOnly)
{
    const TRect rect = {2, 3, 5, 7};
    EXPECT_TRUE(rect.Contains({2, 3}));
    EXPECT_TRUE(rect.Contains({4, 6}));
    EXPECT_FALSE(rect.Contains({5, 6}));
    EXPECT_FALSE(rect.Contains({4, 7}));
    EXPECT_FALSE(rect.Contains({1, 3}));
    EXPECT_EQ(rect.Width(), 3);
    EXPECT_EQ(rect.Height(), 4);
}

TEST(Rect, CommonPartAndHullOfTwo)
{
    const struct {
        TRect a, b, common, hull;
    } rows[] = {
        {{0, 0, 10, 10}, {5, 6, 20, 20}, {5, 6, 10, 10}, {0, 0, 20, 20}},
        {{0, 0, 10, 10}, {2, 3, 4, 5}, {2, 3, 4, 5}, {0, 0, 10, 10}},
        {{0, 0, 10, 10}, {10, 0, 20, 10}, {}, {0, 0, 20, 10}},
        {{0, 0, 10, 10}, {30, 30, 40, 40}, {}, {0, 0, 40, 40}},
        {{0, 0, 10, 10}, {3, 3, 3, 9}, {}, {0, 0, 10, 10}},
        {{7, 7, 1, 1}, {2, 2, 3, 3}, {}, {2, 2, 3, 3}},
        {{INT_MIN, INT_MIN, INT_MAX, INT_MAX},
         {1, 2, 3, 4},
         {1, 2, 3, 4},
         {INT_MIN, INT_MIN, INT_MAX, INT_MAX}},
    };
    for (const auto &row : rows) {
        EXPECT_EQ(row.a & row.b, row.common);
        EXPECT_EQ(row.b & row.a, row.common);
        EXPECT_EQ(row.a | row.b, row.hull);
        EXPECT_EQ(row.b | row.a, row.hull);
    }
}

TEST(Rect, TwoEmptyOnesAreEmptyTogether)
{
    EXPECT_TRUE((TRect{} | TRect{}).IsEmpty());
    EXPECT_TRUE((TRect{} & TRect{}).IsEmpty());
}

TEST(Rect, MovesAndGrows)
{
    EXPECT_EQ((TRect{1, 2, 3, 4}).Offset(10, -10), (TRect{11, -8, 13, -6}));
    EXPECT_EQ((TRect{1, 2, 3, 4}).Inflated(2, 1), (TRect{-1, 1, 5, 5}));
}
