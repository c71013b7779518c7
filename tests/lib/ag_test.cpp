// Points, polar values, planes and transforms: laws on random values, tables of special angles, the edge of the
// tolerance, and the assertions of the whole geometry.
#include "lib/ag.h"
#include "ag_random.h"
#include "support/child.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>

namespace
{
const double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();

testing::AssertionResult SameMap(const AgTRANSFORM &a, const AgTRANSFORM &b, double eps = ROUNDING)
{
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j < 4; ++j)
            if (!(std::fabs(a.Row(i)[j] - b.Row(i)[j]) <= eps))
                return testing::AssertionFailure()
                       << "element " << i << ", " << j << ": " << a.Row(i)[j] << " is not " << b.Row(i)[j];
    return testing::AssertionSuccess();
}
} // namespace

TEST(AgPOINT, OperatorsWorkByCoordinate)
{
    AgPOINT a(1, 2, 3);
    AgPOINT b(-4, 5, 0.5);
    EXPECT_TRUE(Close(a + b, {-3, 7, 3.5}, 0));
    EXPECT_TRUE(Close(a - b, {5, -3, 2.5}, 0));
    EXPECT_TRUE(Close(-a, {-1, -2, -3}, 0));
    EXPECT_TRUE(Close(a * 2, {2, 4, 6}, 0));
    EXPECT_TRUE(Close(2 * a, {2, 4, 6}, 0));
    EXPECT_TRUE(Close(a / 4, {0.25, 0.5, 0.75}, 0));
    EXPECT_EQ(a * b, -4 + 10 + 1.5);
    EXPECT_TRUE(Close(a % b, {2 * 0.5 - 3 * 5, 3 * -4 - 1 * 0.5, 1 * 5 - 2 * -4}, 0));
    EXPECT_EQ(AgPOINT(2, 3, 6).Length(), 7);
}

TEST(AgPOINT, AssigningOperatorsDoWhatThePlainOnesDo)
{
    AgRandom random(1);
    for (int n = 0; n < 100; ++n) {
        AgPOINT a = random.Point();
        AgPOINT b = random.Point();
        double f = random.Number(1, 9);
        AgPOINT p = a;
        EXPECT_TRUE(Close(p += b, a + b, 0));
        EXPECT_TRUE(Close(p = a, a, 0) && Close(p -= b, a - b, 0));
        EXPECT_TRUE(Close(p = a, a, 0) && Close(p *= f, a * f, 0));
        EXPECT_TRUE(Close(p = a, a, 0) && Close(p /= f, a / f, 0));
        EXPECT_TRUE(Close(p = a, a, 0) && Close(p %= b, a % b, 0));
    }
    AgPOINT self(1, 2, 3);
    EXPECT_TRUE(Close(self %= self, AgE0, 0));
}

TEST(AgPOINT, ATwoDimensionalPointLiesInThePlaneZ0)
{
    EXPECT_TRUE(Close(AgPOINT(3, 4), {3, 4, 0}, 0));
    EXPECT_TRUE(Close(AgPOINT(), AgE0, 0));
}

TEST(AgPOINT, TheUnitVectorsFormARightHandedFrame)
{
    EXPECT_TRUE(Close(AgE1 % AgE2, AgE3, 0));
    EXPECT_TRUE(Close(AgE2 % AgE3, AgE1, 0));
    EXPECT_TRUE(Close(AgE3 % AgE1, AgE2, 0));
    EXPECT_EQ(AgDeterminant(AgE1, AgE2, AgE3), 1);
}

TEST(AgPOINT, CrossProductStandsOnBothFactorsWithTheAreaAsLength)
{
    AgRandom random(2);
    for (int n = 0; n < 1000; ++n) {
        AgPOINT a = random.Point();
        AgPOINT b = random.Point();
        AgPOINT c = a % b;
        EXPECT_NEAR(c * a, 0, 1e-10);
        EXPECT_NEAR(c * b, 0, 1e-10);
        EXPECT_NEAR(c * c + (a * b) * (a * b), (a * a) * (b * b), 1e-9 * (a * a) * (b * b));
    }
}

TEST(AgPOINT, EqualityHoldsWithinTheToleranceOnEachAxisAndFailsAtTwiceThat)
{
    const AgPOINT axes[] = {AgE1, AgE2, AgE3, -AgE1, -AgE2, -AgE3};
    for (const AgPOINT &axis : axes) {
        EXPECT_TRUE(AgE0 == axis * 1e-13);
        EXPECT_FALSE(AgE0 != axis * 1e-13);
        EXPECT_FALSE(AgE0 == axis * 2e-13);
        EXPECT_TRUE(AgE0 != axis * 2e-13);
    }
    EXPECT_TRUE(AgPOINT(1e-13, -1e-13, 1e-13) == AgE0) << "each axis counts for itself, not the distance";
    EXPECT_FALSE(AgPOINT(NOT_A_NUMBER, 0, 0) == AgPOINT(NOT_A_NUMBER, 0, 0));
}

TEST(AgPOINT, TheToleranceIsTheAbsoluteValueOfWhatIsSet)
{
    AgSetTolerance(-0.5);
    EXPECT_EQ(AgTolerance, 0.5);
    EXPECT_TRUE(AgPOINT(1, 2, 3) == AgPOINT(1.5, 1.5, 3.5));
    EXPECT_FALSE(AgPOINT(1, 2, 3) == AgPOINT(1.75, 2, 3));
    AgSetTolerance(0);
    EXPECT_TRUE(AgPOINT(1, 2, 3) == AgPOINT(1, 2, 3));
    EXPECT_FALSE(AgPOINT(1, 2, 3) == AgPOINT(1, 2, std::nextafter(3, 4)));
    AgSetTolerance(1e-13);
}

TEST(AgPOINT, AngleIsThatBetweenTheDirections)
{
    const struct {
        AgPOINT a, b;
        double angle;
    } rows[] = {
        {{1, 0, 0}, {5, 0, 0}, 0},
        {{1, 0, 0}, {0, 3, 0}, AgPI / 2},
        {{1, 0, 0}, {-2, 0, 0}, AgPI},
        {{1, 0, 0}, {2, 2, 0}, AgPI / 4},
        {{0, 0, 2}, {0, 1, -1}, 3 * AgPI / 4},
        {{1, 1, 0}, {1, 0, 1}, AgPI / 3},
        {{1, 1, 1}, {1, 1, 1}, 0},
        {{1, 1, 1}, {-3, -3, -3}, AgPI},
    };
    for (const auto &row : rows) {
        EXPECT_NEAR(Angle(row.a, row.b), row.angle, 1e-7); // acos is flat at 1: half of the digits are left
        EXPECT_NEAR(Angle(row.b, row.a), row.angle, 1e-7);
    }
}

TEST(AgPOINT, AngleOfParallelVectorsIsANumberWhateverTheRounding)
{
    AgRandom random(3);
    for (int n = 0; n < 10000; ++n) {
        AgPOINT a = random.Point();
        EXPECT_NEAR(Angle(a, a * random.Number(0.1, 9)), 0, 1e-7);
        EXPECT_NEAR(Angle(a, a * random.Number(-9, -0.1)), AgPI, 1e-7);
    }
    EXPECT_TRUE(std::isnan(Angle(AgE0, AgE1)));
}

TEST(AgCYLINDRIC, SpecialAnglesAreExact)
{
    const double below = 1e-13;
    const double above = 3e-13;
    const struct {
        double x, y, phi;
    } rows[] = {
        {0, 0, 0},
        {2, 0, 0},
        {-2, 0, AgPI},
        {-2, -0.0, AgPI},
        {0, 2, AgPI / 2},
        {0, -2, -AgPI / 2},
        {-0.0, -2, -AgPI / 2},
        {2, below, 0},
        {2, -below, 0},
        {-2, below, AgPI},
        {-2, -below, AgPI},
        {below, 2, AgPI / 2},
        {-below, 2, AgPI / 2},
        {below, -2, -AgPI / 2},
        {-below, -2, -AgPI / 2},
        {below, below, 0},
        {-below, below, AgPI}, // x counts by its sign, however small
        {2, above, std::atan(above / 2)},
        {2, -above, -std::atan(above / 2)},
        {-2, above, std::atan(-above / 2) + AgPI},
        {-2, -above, std::atan(above / 2) - AgPI},
        {2, 2, AgPI / 4},
        {-2, 2, -AgPI / 4 + AgPI},
        {-2, -2, AgPI / 4 - AgPI},
        {2, -2, -AgPI / 4},
    };
    for (const auto &row : rows) {
        EXPECT_EQ(AgCYLINDRIC(AgPOINT(row.x, row.y, 7)).phi, row.phi) << row.x << ", " << row.y;
        EXPECT_EQ(AgSPHERIC(AgPOINT(row.x, row.y, 7)).phi, row.phi) << row.x << ", " << row.y;
    }
}

TEST(AgCYLINDRIC, TheOriginHasNoAngles)
{
    AgCYLINDRIC c(AgE0);
    EXPECT_EQ(c.r, 0);
    EXPECT_EQ(c.phi, 0);
    EXPECT_EQ(c.z, 0);
    AgSPHERIC s(AgE0);
    EXPECT_EQ(s.r, 0);
    EXPECT_EQ(s.phi, 0);
    EXPECT_EQ(s.theta, 0);
    EXPECT_EQ(AgSPHERIC(AgPOINT(0, 0, -1e-13)).theta, 0) << "too near for a direction";
    EXPECT_EQ(AgSPHERIC(AgPOINT(0, 0, -3e-13)).theta, AgPI);
}

TEST(AgCYLINDRIC, RoundTripsGiveThePointBack)
{
    AgRandom random(4);
    for (int n = 0; n < 10000; ++n) {
        AgPOINT p = random.Point();
        AgCYLINDRIC c(p);
        EXPECT_TRUE(Close(AgPOINT(c), p));
        EXPECT_EQ(c.r, std::sqrt(p.x * p.x + p.y * p.y));
        EXPECT_NEAR(c.phi, std::atan2(p.y, p.x), 1e-12);
        EXPECT_EQ(c.z, p.z);
        AgSPHERIC s(p);
        EXPECT_TRUE(Close(AgPOINT(s), p, 1e-6)); // acos near the poles
        EXPECT_EQ(s.r, p.Length());
        EXPECT_NEAR(s.theta, std::atan2(c.r, p.z), 1e-7);
    }
}

TEST(AgSPHERIC, ThetaCountsFromTheZAxis)
{
    const struct {
        AgSPHERIC s;
        AgPOINT p;
    } rows[] = {
        {{2, 0, 0}, {0, 0, 2}},
        {{2, 0, AgPI}, {0, 0, -2}},
        {{2, 0, AgPI / 2}, {2, 0, 0}},
        {{2, AgPI / 2, AgPI / 2}, {0, 2, 0}},
        {{2, AgPI, AgPI / 2}, {-2, 0, 0}},
        {{2, -AgPI / 2, AgPI / 2}, {0, -2, 0}},
        {{2, 0, AgPI / 4}, {std::sqrt(2), 0, std::sqrt(2)}},
    };
    for (const auto &row : rows) {
        EXPECT_TRUE(Close(AgPOINT(row.s), row.p));
        EXPECT_NEAR(AgSPHERIC(row.p).theta, row.s.theta, 1e-12);
    }
}

TEST(AgSPHERIC, PolarValuesCompareLikePoints)
{
    const double near = 1e-13;
    const double far = 2e-13;
    EXPECT_TRUE(AgCYLINDRIC(0, 0, 0) == AgCYLINDRIC(near, -near, near));
    EXPECT_FALSE(AgCYLINDRIC(0, 0, 0) != AgCYLINDRIC(near, -near, near));
    EXPECT_TRUE(AgSPHERIC(0, 0, 0) == AgSPHERIC(near, -near, near));
    EXPECT_FALSE(AgSPHERIC(0, 0, 0) != AgSPHERIC(near, -near, near));
    const double off[][3] = {{far, 0, 0}, {0, far, 0}, {0, 0, far}};
    for (const double *d : off) {
        EXPECT_TRUE(AgCYLINDRIC(0, 0, 0) != AgCYLINDRIC(d[0], d[1], d[2]));
        EXPECT_FALSE(AgCYLINDRIC(0, 0, 0) == AgCYLINDRIC(d[0], d[1], d[2]));
        EXPECT_TRUE(AgSPHERIC(0, 0, 0) != AgSPHERIC(d[0], d[1], d[2]));
        EXPECT_FALSE(AgSPHERIC(0, 0, 0) == AgSPHERIC(d[0], d[1], d[2]));
    }
}

TEST(AgTRANSFORM, EachOperationHasItsMatrix)
{
    const double c = std::cos(0.3);
    const double s = std::sin(0.3);
    const AgPOINT x(1, 4, -2), y(0.5, 3, 7), z(2, 2, 1), o(6, 5, 4);
    using Step = std::function<void(AgTRANSFORM &)>;
    const struct {
        const char *name;
        Step step;
        double m[3][4];
    } rows[] = {
        {"nothing", [](AgTRANSFORM &) {}, {{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}}},
        {"Translate", [](AgTRANSFORM &t) { t.Translate(2, 3, 4); }, {{1, 0, 0, 2}, {0, 1, 0, 3}, {0, 0, 1, 4}}},
        {"Translate", [&](AgTRANSFORM &t) { t.Translate(o); }, {{1, 0, 0, 6}, {0, 1, 0, 5}, {0, 0, 1, 4}}},
        {"Scale", [](AgTRANSFORM &t) { t.Scale(2, -3, 0); }, {{2, 0, 0, 0}, {0, -3, 0, 0}, {0, 0, 0, 0}}},
        {"Scale", [&](AgTRANSFORM &t) { t.Scale(o); }, {{6, 0, 0, 0}, {0, 5, 0, 0}, {0, 0, 4, 0}}},
        {"RotateX", [](AgTRANSFORM &t) { t.RotateX(0.3); }, {{1, 0, 0, 0}, {0, c, -s, 0}, {0, s, c, 0}}},
        {"RotateY", [](AgTRANSFORM &t) { t.RotateY(0.3); }, {{c, 0, s, 0}, {0, 1, 0, 0}, {-s, 0, c, 0}}},
        {"RotateZ", [](AgTRANSFORM &t) { t.RotateZ(0.3); }, {{c, -s, 0, 0}, {s, c, 0, 0}, {0, 0, 1, 0}}},
        {"Project 0", [](AgTRANSFORM &t) { t.Project(0); }, {{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 0, 0}}},
        {"Project 1", [](AgTRANSFORM &t) { t.Project(1); }, {{1, 0, 0, 0}, {0, 0, 0, 0}, {0, 0, 1, 0}}},
        {"Project 2", [](AgTRANSFORM &t) { t.Project(2); }, {{0, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}}},
        {"Mirror 0", [](AgTRANSFORM &t) { t.Mirror(0); }, {{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, -1, 0}}},
        {"Mirror 1", [](AgTRANSFORM &t) { t.Mirror(1); }, {{1, 0, 0, 0}, {0, -1, 0, 0}, {0, 0, 1, 0}}},
        {"Mirror 2", [](AgTRANSFORM &t) { t.Mirror(2); }, {{-1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}}},
        {"ToFrame",
         [&](AgTRANSFORM &t) { t.ToFrame(o, x, y, z); },
         {{1, 0.5, 2, 6}, {4, 3, 2, 5}, {-2, 7, 1, 4}}},
        {"Reset",
         [&](AgTRANSFORM &t) {
             t.ToFrame(o, x, y, z);
             t.Reset();
         },
         {{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}}},
    };
    for (const auto &row : rows) {
        AgTRANSFORM t;
        row.step(t);
        for (int i = 0; i < 3; ++i)
            for (int j = 0; j < 4; ++j)
                EXPECT_EQ(t.Row(i)[j], row.m[i][j]) << row.name << " at " << i << ", " << j;
    }
}

TEST(AgTRANSFORM, EachOperationAppliesAfterWhatIsThere)
{
    AgRandom random(5);
    for (int n = 0; n < 500; ++n) {
        AgPOINT o = random.Point();
        AgPOINT a, b, c;
        random.Frame(a, b, c);
        double angle = random.Number(-4, 4);
        const std::function<void(AgTRANSFORM &)> steps[] = {
            [&](AgTRANSFORM &t) { t.Translate(o); },          [&](AgTRANSFORM &t) { t.Scale(o); },
            [&](AgTRANSFORM &t) { t.RotateX(angle); },        [&](AgTRANSFORM &t) { t.RotateY(angle); },
            [&](AgTRANSFORM &t) { t.RotateZ(angle); },        [&](AgTRANSFORM &t) { t.Project(n % 3); },
            [&](AgTRANSFORM &t) { t.Mirror(n % 3); },         [&](AgTRANSFORM &t) { t.ToFrame(o, a, b, c); },
            [&](AgTRANSFORM &t) { t.FromFrame(o, a, b, c); },
        };
        for (const auto &step : steps) {
            AgTRANSFORM old = random.Transform();
            AgTRANSFORM both = old;
            step(both);
            AgTRANSFORM alone;
            step(alone);
            AgPOINT p = random.Point();
            EXPECT_TRUE(Close(both * p, alone * (old * p), 1e-9));
        }
    }
}

TEST(AgTRANSFORM, TranslateThenRotateTurnsAboutTheOriginAfterShifting)
{
    AgTRANSFORM t;
    t.Translate(1, 0, 0);
    t.RotateZ(AgPI / 2);
    EXPECT_TRUE(Close(t * AgPOINT(2, 0, 5), {0, 3, 5}));
    AgTRANSFORM other;
    other.RotateZ(AgPI / 2);
    other.Translate(1, 0, 0);
    EXPECT_TRUE(Close(other * AgPOINT(2, 0, 5), {1, 2, 5}));
}

TEST(AgTRANSFORM, RotationsTurnFromOneAxisTowardsTheNext)
{
    AgTRANSFORM x, y, z;
    x.RotateX(AgPI / 2);
    y.RotateY(AgPI / 2);
    z.RotateZ(AgPI / 2);
    EXPECT_TRUE(Close(x * AgE2, AgE3));
    EXPECT_TRUE(Close(y * AgE3, AgE1));
    EXPECT_TRUE(Close(z * AgE1, AgE2));
}

TEST(AgTRANSFORM, AnOperationAndItsInverseGiveTheIdentity)
{
    AgRandom random(6);
    for (int n = 0; n < 1000; ++n) {
        double a = random.Number(-10, 10);
        AgPOINT by = random.Point();
        AgPOINT f(random.Number(0.1, 10), random.Number(-10, -0.1), random.Number(0.1, 10));
        AgTRANSFORM t;
        t.RotateX(a), t.RotateX(-a);
        EXPECT_TRUE(SameMap(t, AgTRANSFORM(), 1e-15 * 4));
        t.Reset();
        t.RotateY(a), t.RotateY(-a);
        EXPECT_TRUE(SameMap(t, AgTRANSFORM(), 1e-15 * 4));
        t.Reset();
        t.RotateZ(a), t.RotateZ(-a);
        EXPECT_TRUE(SameMap(t, AgTRANSFORM(), 1e-15 * 4));
        t.Reset();
        t.Translate(by), t.Translate(-by);
        EXPECT_TRUE(SameMap(t, AgTRANSFORM(), 0));
        t.Reset();
        t.Scale(f), t.Scale(1 / f.x, 1 / f.y, 1 / f.z);
        EXPECT_TRUE(SameMap(t, AgTRANSFORM(), 1e-15));
        t.Reset();
        t.Mirror(n % 3), t.Mirror(n % 3);
        EXPECT_TRUE(SameMap(t, AgTRANSFORM(), 0));
    }
}

TEST(AgTRANSFORM, Mirror0TurnsZAround)
{
    AgTRANSFORM t;
    t.Translate(0, 0, 1);
    t.Mirror(0);
    EXPECT_TRUE(Close(t * AgPOINT(3, 4, 5), {3, 4, -6}, 0));
}

TEST(AgTRANSFORM, ProjectingTwiceChangesNothingMore)
{
    AgRandom random(7);
    for (int plane = 0; plane < 3; ++plane) {
        AgTRANSFORM once = random.Transform();
        once.Project(plane);
        AgTRANSFORM twice = once;
        twice.Project(plane);
        EXPECT_TRUE(SameMap(once, twice, 0));
    }
}

TEST(AgTRANSFORM, RotationsKeepLengthsAndAngles)
{
    AgRandom random(8);
    for (int n = 0; n < 1000; ++n) {
        AgTRANSFORM t;
        t.RotateX(random.Number(-4, 4));
        t.RotateY(random.Number(-4, 4));
        t.RotateZ(random.Number(-4, 4));
        AgPOINT a = random.Point();
        AgPOINT b = random.Point();
        EXPECT_NEAR((t * a) * (t * b), a * b, 1e-10);
        EXPECT_TRUE(Close((t * a) % (t * b), t * (a % b), 1e-10));
    }
}

TEST(AgTRANSFORM, ToFrameTakesLocalCoordinatesOut)
{
    AgRandom random(9);
    for (int n = 0; n < 1000; ++n) {
        AgPOINT a, b, c;
        random.Frame(a, b, c);
        AgPOINT o = random.Point();
        AgPOINT p = random.Point();
        AgTRANSFORM out;
        out.ToFrame(o, a, b, c);
        EXPECT_TRUE(Close(out * p, o + a * p.x + b * p.y + c * p.z, 1e-11));
        EXPECT_TRUE(Close(out * AgE0, o, 0));
        AgTRANSFORM in;
        in.FromFrame(o, a, b, c);
        EXPECT_TRUE(Close(in * o, AgE0, 1e-10));
        EXPECT_TRUE(Close(in * (o + b), AgE2, 1e-10));
    }
}

TEST(AgTRANSFORM, FromFrameUndoesToFrameInEitherOrder)
{
    AgRandom random(10);
    for (int n = 0; n < 1000; ++n) {
        AgPOINT a, b, c;
        random.Frame(a, b, c); // also left-handed ones
        AgPOINT o = random.Point();
        AgTRANSFORM there;
        there.ToFrame(o, a, b, c);
        there.FromFrame(o, a, b, c);
        EXPECT_TRUE(SameMap(there, AgTRANSFORM(), 1e-10));
        AgTRANSFORM back;
        back.FromFrame(o, a, b, c);
        back.ToFrame(o, a, b, c);
        EXPECT_TRUE(SameMap(back, AgTRANSFORM(), 1e-9));
    }
}

TEST(AgTRANSFORM, FromFrameOfAnExactFrameIsExact)
{
    AgTRANSFORM t;
    t.FromFrame({20, 0, 3}, {0, 1, 0}, {0, 0, 1}, {1, 0, 0}); // a wall seen from inside
    EXPECT_TRUE(Close(t * AgPOINT(20, 5, 4), {5, 1, 0}, 0));
    EXPECT_TRUE(Close(t * AgPOINT(18, 0, 3), {0, 0, -2}, 0));
}

TEST(AgTRANSFORM, LinesAndPlanesMoveTheirPointsInFullAndTheirDirectionsLinearly)
{
    AgRandom random(11);
    for (int n = 0; n < 1000; ++n) {
        AgTRANSFORM t = random.Transform();
        AgLINE line(random.Point(), random.Direction());
        double s = random.Number(-5, 5);
        EXPECT_TRUE(Close((t * line).At(s), t * line.At(s), 1e-11));
        EXPECT_TRUE(Close((t * line).point, t * line.point, 0));
        AgPLANE plane(random.Point(), AgPOINT(random.Direction()));
        double u = random.Number(-5, 5);
        double v = random.Number(-5, 5);
        EXPECT_TRUE(Close((t * plane).At(u, v), t * plane.At(u, v), 1e-11));
    }
}

TEST(AgTRANSFORM, AProjectedLineMayLoseItsDirection)
{
    AgTRANSFORM t;
    t.Project(0);
    AgLINE flat = t * AgLINE({1, 2, 3}, AgE3);
    EXPECT_TRUE(Close(flat.point, {1, 2, 0}, 0));
    EXPECT_TRUE(Close(flat.dir, AgE0, 0));
}

TEST(AgDeterminant, IsTheSignedVolume)
{
    EXPECT_EQ(AgDeterminant({2, 0, 0}, {0, 3, 0}, {0, 0, 4}), 24);
    EXPECT_EQ(AgDeterminant({0, 3, 0}, {2, 0, 0}, {0, 0, 4}), -24);
    EXPECT_EQ(AgDeterminant({1, 2, 3}, {4, 5, 6}, {5, 7, 9}), 0);
    EXPECT_EQ(AgDeterminant({1, 2, 3}, {0, 1, 4}, {5, 6, 0}), 1);
}

TEST(AgPLANE, AtAndNormalFollowTheDirections)
{
    AgPLANE plane({1, 2, 3}, {2, 0, 0}, {0, 4, 0});
    EXPECT_TRUE(Close(plane.At(0.5, 0.25), {2, 3, 3}, 0));
    EXPECT_TRUE(Close(plane.Normal(), AgE3, 0));
    AgLINE line({1, 2, 3}, {0, -1, 2});
    EXPECT_TRUE(Close(line.At(2), {1, 0, 7}, 0));
}

TEST(AgPLANE, FromANormalInAnyOctantIsOrthonormalAndRightHanded)
{
    const double values[] = {-7, -1, -1e-3, 0, 1e-3, 1, 7};
    for (double x : values)
        for (double y : values)
            for (double z : values) {
                AgPOINT n(x, y, z);
                if (n == AgE0)
                    continue;
                AgPLANE plane({1, 2, 3}, n);
                SCOPED_TRACE(testing::Message() << x << ", " << y << ", " << z);
                EXPECT_NEAR(plane.s1.Length(), 1, ROUNDING);
                EXPECT_NEAR(plane.s2.Length(), 1, ROUNDING);
                EXPECT_NEAR(plane.s1 * plane.s2, 0, ROUNDING);
                EXPECT_TRUE(Close(plane.s1 % plane.s2, n / n.Length()));
                EXPECT_TRUE(Close(plane.Normal(), n / n.Length()));
                EXPECT_TRUE(Close(plane.point, {1, 2, 3}, 0));
            }
}

TEST(AgPLANE, TheHelpVectorTurnsAwayFromANormalCloseToIt)
{
    AgPLANE upright(AgE0, AgPOINT(0, 0, 1)); // at 54.7 degrees from (1, 1, 1): the help vector stays
    EXPECT_TRUE(Close(upright.s2, AgPOINT(-1, 1, 0) / std::sqrt(2)));
    EXPECT_TRUE(Close(upright.s1, AgPOINT(1, 1, 0) / std::sqrt(2)));
    AgPLANE slanted(AgE0, AgPOINT(1, 1, 0)); // at 35.3 degrees: (-1, 1, 1)
    EXPECT_TRUE(Close(slanted.s2, AgPOINT(1, -1, 2) / std::sqrt(6)));
    AgPLANE diagonal(AgE0, AgPOINT(1, 1, 1)); // (1, 1, 1) would give nothing: (-1, 1, 1)
    EXPECT_TRUE(Close(diagonal.s2, AgPOINT(0, -1, 1) / std::sqrt(2)));
    AgPLANE opposite(AgE0, AgPOINT(-2, -2, -2));
    EXPECT_TRUE(Close(opposite.s2, AgPOINT(0, 1, -1) / std::sqrt(2)));
}

TEST(AgAssertions, StopTheProcessWithTheirText)
{
    AgTRANSFORM t;
    AgSYSTEM system;
    const struct {
        const char *condition;
        std::function<void()> fault;
    } rows[] = {
        {"aS != AgE0", [] { AgLINE(AgE1, AgE0); }},
        {"aS != AgE0", [] { AgLINE(AgE1, AgPOINT(1e-13, -1e-13, 0)); }},
        {"aS1 % aS2 != AgE0", [] { AgPLANE(AgE1, AgPOINT(1, 2, 3), AgPOINT(-2, -4, -6)); }},
        {"aS1 % aS2 != AgE0", [] { AgPLANE(AgE1, AgE0, AgE2); }},
        {"aN != AgE0", [] { AgPLANE(AgE1, AgE0); }},
        {"D != 0",
         [&] {
             t.FromFrame(AgE0, {1, 2, 3}, {4, 5, 6}, {5, 7, 9});
         }},
        {"D != 0", [&] { t.FromFrame(AgE0, AgE0, AgE2, AgE3); }},
        {"i >= 0 && i < 3", [&] { system.Swap(-1, 0); }},
        {"i >= 0 && i < 3", [&] { system.Swap(3, 0); }},
        {"j >= 0 && j < 3", [&] { system.Swap(0, -1); }},
        {"j >= 0 && j < 3", [&] { system.Swap(0, 3); }},
        {"i >= 0 && i < 3", [&] { system.At(3, 0); }},
        {"j >= 0 && j < 4", [&] { system.At(0, 4); }},
        {"i >= 0 && i < 3", [&] { system.Result(3); }},
        {"k >= 1 && k <= 3", [&] { system.Solve(0); }},
        {"k >= 1 && k <= 3", [&] { system.Solve(4); }},
    };
    for (const auto &row : rows)
        EXPECT_TRUE(AbortsOnAssertion(row.condition, "lib/ag.cpp", row.fault));
}
