// Pixels of lines and figures against plain twins that look at every pixel of a small field.
#include "win/runs.h"

#include "support/chance.h"

#include <gtest/gtest.h>

#include <cmath>
#include <set>
#include <utility>

namespace
{
using Pixels = std::set<std::pair<int, int>>;

const TRect FIELD = {-5, -5, 45, 45};
const TRect EVERYWHERE = {-100000, -100000, 100000, 100000};

/// Fails where a pixel comes twice.
Pixels PixelsOf(const TRuns &runs)
{
    Pixels pixels;
    for (const TRect &run : runs) {
        for (int y = run.top; y < run.bottom; ++y) {
            for (int x = run.left; x < run.right; ++x)
                EXPECT_TRUE(pixels.insert({x, y}).second) << x << "," << y << " twice";
        }
    }
    return pixels;
}

Pixels Within(const Pixels &all, const TRect &rect)
{
    Pixels within;
    for (const auto &[x, y] : all) {
        if (rect.Contains({x, y}))
            within.insert({x, y});
    }
    return within;
}

Pixels Together(Pixels a, const Pixels &b)
{
    for (const auto &pixel : b)
        EXPECT_TRUE(a.insert(pixel).second) << pixel.first << "," << pixel.second << " in both";
    return a;
}

/// The pixels along a line in order: along the longer extent, the other one rounded half up.
std::vector<TPoint> PlainLine(TPoint a, TPoint b)
{
    const int steps = std::max(std::abs(b.x - a.x), std::abs(b.y - a.y));
    std::vector<TPoint> line;
    for (int i = 0; i <= steps; ++i) {
        const double t = steps == 0 ? 0 : static_cast<double>(i) / steps;
        line.push_back({static_cast<int>(std::floor(a.x + t * (b.x - a.x) + 0.5 + 1e-9)),
                        static_cast<int>(std::floor(a.y + t * (b.y - a.y) + 0.5 + 1e-9))});
    }
    return line;
}

std::vector<TPoint> AnyPoints(CHANCE &chance, int count)
{
    std::vector<TPoint> points;
    for (int i = 0; i < count; ++i)
        points.push_back({chance.Int(0, 40), chance.Int(0, 40)});
    return points;
}
} // namespace

TEST(LineRuns, AreThePixelsOfThePlainLineAndBothEnds)
{
    CHANCE chance(1);
    for (int i = 0; i < 2000; ++i) {
        const std::vector<TPoint> ends = AnyPoints(chance, 2);
        Pixels plain;
        for (const TPoint &p : PlainLine(ends[0], ends[1]))
            plain.insert({p.x, p.y});
        EXPECT_EQ(PixelsOf(LineRuns(ends, false, {}, false, FIELD)), plain);
        EXPECT_TRUE(plain.count({ends[0].x, ends[0].y}) && plain.count({ends[1].x, ends[1].y}));
    }
}

TEST(LineRuns, AreTheSameFromEitherEnd)
{
    CHANCE chance(2);
    for (int i = 0; i < 2000; ++i) {
        const std::vector<TPoint> ends = AnyPoints(chance, 2);
        EXPECT_EQ(PixelsOf(LineRuns(ends, false, {}, false, FIELD)),
                  PixelsOf(LineRuns({ends[1], ends[0]}, false, {}, false, FIELD)));
    }
}

TEST(LineRuns, OfAVisiblePartAreThatPartOfTheWhole)
{
    CHANCE chance(3);
    for (int i = 0; i < 1000; ++i) {
        const std::vector<TPoint> points = AnyPoints(chance, chance.Int(1, 6));
        const bool closed = chance.One(2);
        const TDash dash = chance.One(2) ? TDash{3, 2} : TDash{};
        const TRect part = TRect{chance.Int(0, 40), chance.Int(0, 40), chance.Int(0, 40), chance.Int(0, 40)};
        EXPECT_EQ(PixelsOf(LineRuns(points, closed, dash, false, part)),
                  Within(PixelsOf(LineRuns(points, closed, dash, false, FIELD)), part));
    }
}

TEST(LineRuns, APatternAndItsGapsMakeTheWholeOfALine)
{
    CHANCE chance(4);
    for (int i = 0; i < 1000; ++i) {
        const std::vector<TPoint> ends = AnyPoints(chance, 2);
        const TDash dash = {chance.Int(1, 5), chance.Int(1, 5)};
        const Pixels drawn = PixelsOf(LineRuns(ends, false, dash, false, FIELD));
        const Pixels gaps = PixelsOf(LineRuns(ends, false, dash, true, FIELD));
        EXPECT_EQ(Together(drawn, gaps), PixelsOf(LineRuns(ends, false, {}, false, FIELD)));
        const std::vector<TPoint> line = PlainLine(ends[0], ends[1]);
        for (size_t k = 0; k < line.size(); ++k)
            EXPECT_EQ(drawn.count({line[k].x, line[k].y}) != 0,
                      static_cast<int>(k) % (dash.on + dash.off) < dash.on);
    }
}

TEST(LineRuns, APatternGoesOnAroundCornersAndClosesWithoutADoublePixel)
{
    const std::vector<TPoint> square = {{0, 0}, {10, 0}, {10, 10}, {0, 10}};
    const Pixels drawn = PixelsOf(LineRuns(square, true, {3, 3}, false, FIELD));
    const Pixels gaps = PixelsOf(LineRuns(square, true, {3, 3}, true, FIELD));
    EXPECT_EQ(Together(drawn, gaps).size(), 40u);
    EXPECT_TRUE(drawn.count({0, 0}) && drawn.count({2, 0}) && gaps.count({3, 0}));
    EXPECT_TRUE(gaps.count({10, 0}) && gaps.count({10, 1}) && drawn.count({10, 2})); // steps 10, 11 and 12
}

TEST(LineRuns, OneThatRunsBackOverItselfIsDrawnOnce)
{
    const std::vector<TPoint> there = {{0, 0}, {20, 0}};
    const std::vector<TPoint> andBack = {{0, 0}, {20, 0}, {0, 0}, {20, 0}, {0, 0}};
    EXPECT_EQ(PixelsOf(LineRuns(andBack, false, {}, false, FIELD)),
              PixelsOf(LineRuns(there, false, {}, false, FIELD)));
}

TEST(LineRuns, APointIsAPixel)
{
    for (bool closed : {false, true}) {
        EXPECT_EQ(PixelsOf(LineRuns({{3, 4}}, closed, {}, false, FIELD)), (Pixels{{3, 4}}));
        EXPECT_EQ(PixelsOf(LineRuns({{3, 4}, {3, 4}}, closed, {}, false, FIELD)), (Pixels{{3, 4}}));
        EXPECT_EQ(PixelsOf(LineRuns({{3, 4}}, closed, {3, 3}, false, FIELD)), (Pixels{{3, 4}}));
    }
    EXPECT_TRUE(LineRuns({}, true, {}, false, FIELD).empty());
}

TEST(LineRuns, FarEndsKeepTheSlopeAndThePhase)
{
    const int far = 1 << 29;
    const Pixels line = PixelsOf(LineRuns({{-far, -far}, {far, far}}, false, {4, 4}, false, FIELD));
    Pixels plain;
    for (int i = FIELD.left; i < FIELD.right; ++i) {
        if ((int64_t(far) + i) % 8 < 4)
            plain.insert({i, i});
    }
    EXPECT_EQ(line, plain);
}

TEST(RectangleRuns, OutlineAndInsideMakeTheWholeWithEachPixelOnce)
{
    for (int width = 0; width <= 5; ++width) {
        for (int size = 1; size <= 12; ++size) {
            const TRect rect = {10, 10, 10 + size, 22};
            const TOutlineRuns runs = RectangleRuns(rect, width, FIELD);
            const int before = width > 0 ? (width - 1) / 2 : 0;
            const TRect outer = {10 - before, 10 - before, rect.right + width / 2, rect.bottom + width / 2};
            const Pixels all = Together(PixelsOf(runs.outline), PixelsOf(runs.inside));
            EXPECT_EQ(all, PixelsOf({outer}));
            EXPECT_EQ(width == 0, runs.outline.empty());
        }
    }
    EXPECT_TRUE(RectangleRuns({3, 3, 3, 9}, 1, FIELD).outline.empty());
    EXPECT_TRUE(RectangleRuns({9, 9, 3, 3}, 1, FIELD).outline.empty());
}

TEST(EllipseRuns, AreTheEllipseWithEachPixelOnceAndSymmetric)
{
    for (int width = 0; width <= 4; ++width) {
        for (int w = 1; w <= 25; ++w) {
            for (int h = 1; h <= 25; h += 3) {
                const TRect rect = {5, 5, 5 + w, 5 + h};
                const TOutlineRuns runs = EllipseRuns(rect, width, EVERYWHERE);
                const Pixels all = Together(PixelsOf(runs.outline), PixelsOf(runs.inside));
                const int shift = (width + 1) % 2 * (width > 0 ? 1 : 0); // an even outline leans right and down
                for (const auto &[x, y] : all) {
                    EXPECT_TRUE(all.count({rect.left + rect.right - 1 - x + shift, y})) << w << "x" << h;
                    EXPECT_TRUE(all.count({x, rect.top + rect.bottom - 1 - y + shift})) << w << "x" << h;
                }
                EXPECT_TRUE(width > 0 || PixelsOf(runs.inside) == all);
            }
        }
    }
}

TEST(EllipseRuns, TouchTheFourEdgesOfTheRectangle)
{
    const Pixels outline = PixelsOf(EllipseRuns({2, 3, 33, 20}, 1, FIELD).outline);
    bool left = false, right = false, top = false, bottom = false;
    for (const auto &[x, y] : outline) {
        left = left || x == 2;
        right = right || x == 32;
        top = top || y == 3;
        bottom = bottom || y == 19;
        EXPECT_TRUE((TRect{2, 3, 33, 20}).Contains({x, y}));
    }
    EXPECT_TRUE(left && right && top && bottom);
}

/// Walking from the middle, no path over edges of pixels gets out.
TEST(EllipseRuns, AThinOutlineHasNoGap)
{
    for (int w = 3; w <= 30; ++w) {
        const TOutlineRuns runs = EllipseRuns({0, 0, w, 41 - w}, 1, EVERYWHERE);
        const Pixels outline = PixelsOf(runs.outline);
        const Pixels inside = PixelsOf(runs.inside);
        for (const auto &[x, y] : inside) {
            for (const auto &[dx, dy] : {std::pair(1, 0), {-1, 0}, {0, 1}, {0, -1}})
                EXPECT_TRUE(inside.count({x + dx, y + dy}) || outline.count({x + dx, y + dy}));
        }
    }
}

TEST(EllipseRuns, AFarOneIsLimitedToWhatIsVisible)
{
    const int far = (1 << 30) - (1 << 16);
    const TOutlineRuns runs = EllipseRuns({-far, -far, far, far}, 3, FIELD);
    EXPECT_TRUE(runs.outline.empty());
    EXPECT_EQ(PixelsOf(runs.inside), PixelsOf({FIELD}));
}

TEST(PolygonRuns, FillWhatAPlainTestOfEachPixelFinds)
{
    CHANCE chance(5);
    for (int i = 0; i < 500; ++i) {
        const std::vector<TPoint> corners = AnyPoints(chance, chance.Int(1, 7));
        Pixels plain;
        for (int y = FIELD.top; y < FIELD.bottom; ++y) {
            for (int x = FIELD.left; x < FIELD.right; ++x) {
                bool inside = false;
                for (size_t k = 0; k < corners.size(); ++k) {
                    const TPoint a = corners[k];
                    const TPoint b = corners[(k + 1) % corners.size()];
                    if ((a.y <= y) != (b.y <= y))
                        inside ^=
                            (x - a.x) * std::abs(b.y - a.y) >= (y - a.y) * (b.x - a.x) * (b.y > a.y ? 1 : -1);
                }
                if (inside)
                    plain.insert({x, y});
            }
        }
        EXPECT_EQ(PixelsOf(PolygonRuns(corners, 0, FIELD).inside), plain);
        const TOutlineRuns runs = PolygonRuns(corners, 1, FIELD);
        const Pixels both = Together(PixelsOf(runs.outline), PixelsOf(runs.inside));
        for (const auto &pixel : plain)
            EXPECT_TRUE(both.count(pixel));
        EXPECT_EQ(PixelsOf(runs.outline), PixelsOf(LineRuns(corners, true, {}, false, FIELD)));
    }
}

TEST(UniteRuns, JoinsWhatOverlapsOrTouches)
{
    TRuns runs = {{5, 1, 9, 2}, {1, 1, 3, 2}, {3, 1, 6, 2}, {0, 0, 1, 1}, {8, 1, 9, 2}, {20, 1, 21, 2}};
    UniteRuns(runs);
    EXPECT_EQ(runs, (TRuns{{0, 0, 1, 1}, {1, 1, 9, 2}, {20, 1, 21, 2}}));
    EXPECT_EQ(BoundsOf(runs), (TRect{0, 0, 21, 2}));
    TRuns none;
    UniteRuns(none);
    EXPECT_TRUE(none.empty());
}
