// Intersections of lines and planes, and the solver behind them: tables of the kinds of position, random values
// against direct formulas, decisions on rank at the edge of the tolerance.
#include "lib/ag.h"
#include "ag_random.h"

#include <gtest/gtest.h>

#include <cmath>

TEST(Intersect, TwoLinesThroughOnePointMeetThere)
{
    AgRandom random(12);
    for (int n = 0; n < 5000; ++n) {
        AgPOINT meeting = random.Point();
        AgPOINT a = random.Direction();
        AgPOINT b = random.Direction();
        if ((a % b).Length() < 0.05)
            continue;
        AgLINE first(meeting + a * random.Number(-9, 9), a * random.Number(0.1, 9));
        AgLINE second(meeting + b * random.Number(-9, 9), b * random.Number(-9, -0.1));
        // Rounding lifts random lines apart by more than the default tolerance of the rank.
        AgSetTolerance(1e-9);
        AgPOINT p;
        EXPECT_EQ(Intersect(first, second, p), 1);
        EXPECT_TRUE(Close(p, meeting, 1e-10));
        EXPECT_EQ(Intersect(second, first, p), 1);
        EXPECT_TRUE(Close(p, meeting, 1e-10));
        AgSetTolerance(1e-13);
    }
}

TEST(Intersect, LinesTable)
{
    const struct {
        AgLINE a, b;
        int result;
        AgPOINT p;
    } rows[] = {
        {{{0, 0, 0}, {1, 0, 0}}, {{3, 4, 0}, {0, 2, 0}}, 1, {3, 0, 0}},
        {{{0, 0, 5}, {1, 1, 0}}, {{4, 0, 5}, {-1, 1, 0}}, 1, {2, 2, 5}},
        {{{2, 0, 0}, {0, 0, 3}}, {{0, 0, 6}, {1, 0, 0}}, 1, {2, 0, 6}},
        {{{0, 0, 0}, {0, 1, 0}}, {{0, 5, 5}, {0, 0, 1}}, 1, {0, 5, 0}},
        {{{0, 0, 0}, {1, 0, 0}}, {{0, 0, 1}, {0, 1, 0}}, 0, {}}, // skew
        {{{0, 0, 0}, {1, 0, 0}}, {{0, 1, 0}, {1, 0, 0}}, 0, {}}, // parallel
        {{{0, 0, 0}, {1, 0, 0}}, {{0, 1, 0}, {-4, 0, 0}}, 0, {}},
        {{{0, 0, 0}, {1, 2, 3}}, {{0, 0, 1}, {2, 4, 6}}, 0, {}},
        {{{0, 0, 0}, {1, 0, 0}}, {{7, 0, 0}, {-2, 0, 0}}, 2, {}}, // the same line
        {{{0, 0, 0}, {1, 2, 4}}, {{2, 4, 8}, {-2, -4, -8}}, 2, {}},
        {{{1, 1, 1}, {0, 0, 1}}, {{1, 1, 1}, {0, 0, 1}}, 2, {}},
    };
    for (const auto &row : rows) {
        AgPOINT p(9, 9, 9);
        EXPECT_EQ(Intersect(row.a, row.b, p), row.result);
        EXPECT_TRUE(Close(p, row.result == 1 ? row.p : AgPOINT(9, 9, 9)));
        EXPECT_EQ(Intersect(row.b, row.a, p), row.result);
        EXPECT_TRUE(Close(p, row.result == 1 ? row.p : AgPOINT(9, 9, 9)));
    }
}

TEST(Intersect, LineMeetsAPlaneWhereTheDirectFormulaSays)
{
    AgRandom random(13);
    for (int n = 0; n < 5000; ++n) {
        AgPOINT s1 = random.Direction() * random.Number(0.1, 5);
        AgPOINT s2 = random.Direction() * random.Number(0.1, 5);
        AgPOINT dir = random.Direction() * random.Number(0.1, 5);
        AgPOINT normal = s1 % s2;
        if (std::fabs(AgDeterminant(s1, s2, dir)) < 0.05 * s1.Length() * s2.Length() * dir.Length())
            continue;
        AgPLANE plane(random.Point(), s1, s2);
        AgLINE line(random.Point(), dir);
        AgPOINT p;
        ASSERT_EQ(Intersect(plane, line, p), 1);
        double t = (plane.point - line.point) * normal / (dir * normal);
        EXPECT_TRUE(Close(p, line.At(t), 1e-9));
        EXPECT_NEAR((p - plane.point) * plane.Normal(), 0, 1e-9);
    }
}

TEST(Intersect, PlaneAndLineTable)
{
    const AgPLANE floor({0, 0, 0}, {1, 0, 0}, {0, 1, 0});
    const AgPLANE wall({5, 0, 0}, {0, 0, 2}, {0, 3, 0});
    const AgPLANE slope({0, 0, 1}, {1, 0, 1}, {0, 1, 0});
    const struct {
        AgPLANE plane;
        AgLINE line;
        int result;
        AgPOINT p;
    } rows[] = {
        {floor, {{1, 2, 3}, {0, 0, -1}}, 1, {1, 2, 0}}, {floor, {{1, 2, 3}, {1, 1, 1}}, 1, {-2, -1, 0}},
        {wall, {{0, 1, 1}, {2, 0, 0}}, 1, {5, 1, 1}},   {slope, {{4, 4, 0}, {0, 0, 1}}, 1, {4, 4, 5}},
        {floor, {{1, 2, 3}, {1, 0, 0}}, 0, {}},         {floor, {{1, 2, -3}, {-2, 5, 0}}, 0, {}},
        {wall, {{0, 0, 0}, {0, 1, 1}}, 0, {}},          {floor, {{1, 2, 0}, {3, -1, 0}}, 2, {}},
        {wall, {{5, 7, 8}, {0, 1, -1}}, 2, {}},         {slope, {{1, 9, 2}, {2, 5, 2}}, 2, {}},
    };
    for (const auto &row : rows) {
        AgPOINT p(9, 9, 9);
        EXPECT_EQ(Intersect(row.plane, row.line, p), row.result);
        EXPECT_TRUE(Close(p, row.result == 1 ? row.p : AgPOINT(9, 9, 9)));
    }
}

TEST(Intersect, TwoPlanesMeetInALineThatLiesInBoth)
{
    AgRandom random(14);
    for (int n = 0; n < 5000; ++n) {
        AgPOINT na = random.Direction();
        AgPOINT nb = random.Direction();
        if ((na % nb).Length() < 0.05)
            continue;
        AgPLANE a(random.Point(), na);
        AgPLANE b(random.Point(), nb);
        AgLINE line;
        ASSERT_EQ(Intersect(a, b, line), 1);
        EXPECT_NEAR(line.dir.Length(), 1, ROUNDING);
        EXPECT_TRUE(Close(line.dir, na % nb / (na % nb).Length(), 1e-11));
        for (double t : {-3.0, 0.0, 5.0}) {
            EXPECT_NEAR((line.At(t) - a.point) * na, 0, 1e-8);
            EXPECT_NEAR((line.At(t) - b.point) * nb, 0, 1e-8);
        }
    }
}

TEST(Intersect, PlanesTable)
{
    const AgPLANE floor({0, 0, 0}, {1, 0, 0}, {0, 1, 0});
    const struct {
        AgPLANE b;
        int result;
        AgPOINT point, dir;
    } rows[] = {
        {{{4, 0, 7}, {0, 0, 1}, {0, 1, 0}}, 1, {4, 0, 0}, {0, -1, 0}},
        {{{4, 0, 7}, {0, 1, 0}, {0, 0, 1}},
         1,
         {4, -7, 0},
         {0, 1, 0}}, // s1 lies along the floor: s1 + s2 leads there
        {{{0, 0, 3}, {1, 0, 0}, {0, 1, 0}}, 0, {}, {}},
        {{{0, 0, 3}, {1, 1, 0}, {0, -2, 0}}, 0, {}, {}},
        {{{8, 9, 0}, {1, 1, 0}, {0, -2, 0}}, 2, {}, {}},
        {{{8, 9, 0}, {1, 0, 0}, {0, 1, 0}}, 2, {}, {}},
    };
    for (const auto &row : rows) {
        AgLINE line({9, 9, 9}, {0, 0, 1});
        EXPECT_EQ(Intersect(floor, row.b, line), row.result);
        if (row.result == 1) {
            EXPECT_TRUE(Close(line.point, row.point));
            EXPECT_TRUE(Close(line.dir, row.dir));
        } else {
            EXPECT_TRUE(Close(line.point, {9, 9, 9}, 0)) << "no result, no change";
        }
    }
}

TEST(Intersect, PlanesWhoseNormalsAreTheSameNumberHaveNoCommonLine)
{
    // The long axis of the second plane rises by more than the tolerance, its normal still rounds to that of
    // the first.
    const AgPLANE floor(AgE0, AgE1, AgE2);
    const AgPOINT axis(1e152, 0, 1e-12);
    AgLINE line(AgE1, AgE2);
    EXPECT_EQ(Intersect(floor, AgPLANE({0, 0, 5}, axis, AgE2), line), 0);
    EXPECT_EQ(Intersect(floor, AgPLANE({0, 0, 0}, axis, AgE2), line), 2);
    EXPECT_TRUE(Close(line.point, AgE1, 0));
    AgRandom random(16);
    for (int n = 0; n < 5000; ++n) {
        AgPLANE a(random.Point(), AgPOINT(random.Direction()));
        AgPLANE b(random.Point(), a.s1 * 1e6, a.s2 * 1e6);
        line.dir = AgE1;
        Intersect(a, b, line);
        EXPECT_NEAR(line.dir.Length(), 1, ROUNDING) << "a line that is found has a direction";
    }
}

TEST(AgSYSTEM, SolvesThreeEquationsThatNeedARowSwap)
{
    const double rows[3][4] = {{0, 2, 1, 7}, {1, -2, -3, -12}, {-1, 1, 2, 7}}; // x = 1, y = 2, z = 3
    AgSYSTEM system;
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j < 4; ++j)
            system.At(i, j) = rows[i][j];
    ASSERT_EQ(system.Reduce(), 3);
    system.Solve(3);
    EXPECT_NEAR(system.Result(0), 1, ROUNDING);
    EXPECT_NEAR(system.Result(1), 2, ROUNDING);
    EXPECT_NEAR(system.Result(2), 3, ROUNDING);
}

TEST(AgSYSTEM, TellsTheRankFromTheBottom)
{
    const struct {
        const char *what;
        double m[3][4];
        int rank;
    } rows[] = {
        {"three unknowns", {{1, 0, 0, 5}, {0, 1, 0, 6}, {0, 0, 1, 7}}, 3},
        {"no right-hand side is needed", {{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}}, 3},
        {"two", {{1, 0, 0, 5}, {0, 1, 0, 6}, {0, 0, 0, 0}}, 2},
        {"one", {{1, 2, 0, 5}, {2, 4, 0, 10}, {3, 6, 0, 15}}, 1},
        {"none", {{0, 0, 0, 0}, {0, 0, 0, 0}, {0, 0, 0, 0}}, 0},
        {"a contradiction in the last row", {{1, 0, 0, 5}, {0, 1, 0, 6}, {0, 0, 0, 1}}, 0},
        {"a negative one", {{1, 0, 0, 5}, {0, 1, 0, 6}, {0, 0, 0, -1}}, 0},
        {"one that shows after elimination", {{1, 2, 0, 5}, {2, 4, 0, 11}, {3, 6, 0, 15}}, 0},
        {"an entry at the tolerance counts as 0", {{1, 0, 0, 5}, {0, 1, 0, 6}, {0, 0, 1e-13, 0}}, 2},
        {"one above it counts", {{1, 0, 0, 5}, {0, 1, 0, 6}, {0, 0, 2e-13, 0}}, 3},
        {"a right-hand side at the tolerance too", {{1, 0, 0, 5}, {0, 1, 0, 6}, {0, 0, 0, 1e-13}}, 2},
        {"and above it", {{1, 0, 0, 5}, {0, 1, 0, 6}, {0, 0, 0, 2e-13}}, 0},
    };
    for (const auto &row : rows) {
        AgSYSTEM system;
        for (int i = 0; i < 3; ++i)
            for (int j = 0; j < 4; ++j)
                system.At(i, j) = row.m[i][j];
        EXPECT_EQ(system.Reduce(), row.rank) << row.what;
    }
}

TEST(AgSYSTEM, SwapsRowsByTheirPointers)
{
    AgSYSTEM system;
    system.At(0, 1) = 4;
    system.At(2, 1) = 6;
    double *first = &system.At(0, 0);
    system.Swap(0, 2);
    EXPECT_EQ(system.At(0, 1), 6);
    EXPECT_EQ(system.At(2, 1), 4);
    EXPECT_EQ(&system.At(2, 0), first);
}

TEST(AgSYSTEM, SolvesWhatItReduced)
{
    AgRandom random(15);
    for (int n = 0; n < 5000; ++n) {
        AgPOINT a, b, c;
        random.Frame(a, b, c);
        AgPOINT x = random.Point();
        AgSYSTEM system;
        system.Column(0, a);
        system.Column(1, b);
        system.Column(2, c);
        system.Column(3, a * x.x + b * x.y + c * x.z);
        ASSERT_EQ(system.Reduce(), 3);
        system.Solve(3);
        EXPECT_TRUE(Close({system.Result(0), system.Result(1), system.Result(2)}, x, 1e-10));
    }
}
