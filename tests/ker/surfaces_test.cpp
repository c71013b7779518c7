#include "hall.h"
#include "support/child.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <vector>

namespace
{
struct FLAT {
    long double x;
    long double y;
};

/// Area of the rotated rectangle above y = z, by walking its edges with more digits than the kernel has.
long double PlainUpperArea(const EmHOLE &hole, double z)
{
    const long double s = std::sin(static_cast<long double>(hole.rotation));
    const long double c = std::cos(static_cast<long double>(hole.rotation));
    std::vector<FLAT> corners;
    for (auto [u, v] : {FLAT{-0.5L, -0.5L}, FLAT{0.5L, -0.5L}, FLAT{0.5L, 0.5L}, FLAT{-0.5L, 0.5L}}) {
        const long double x = u * hole.size.x;
        const long double y = v * hole.size.y;
        corners.push_back({hole.pos.x + c * x - s * y, hole.pos.y + s * x + c * y});
    }
    std::vector<FLAT> kept;
    for (size_t i = 0; i < 4; ++i) {
        const FLAT p = corners[i];
        const FLAT q = corners[(i + 1) % 4];
        if (p.y >= z)
            kept.push_back(p);
        if ((p.y >= z) != (q.y >= z)) {
            const long double t = (z - p.y) / (q.y - p.y);
            kept.push_back({p.x + t * (q.x - p.x), z});
        }
    }
    long double twice = 0;
    for (size_t i = 0; i < kept.size(); ++i) {
        const FLAT &p = kept[i];
        const FLAT &q = kept[(i + 1) % kept.size()];
        twice += p.x * q.y - q.x * p.y;
    }
    return std::fabs(twice) / 2;
}

struct TRANSMISSION {
    double a, b, c, d;
};

TRANSMISSION Of(const EmSURFACE *surface, double z)
{
    TRANSMISSION t;
    surface->Transmission(&t.a, &t.b, &t.c, &t.d, z);
    return t;
}

TRANSMISSION Of(const EmSURFACESET *set, double z)
{
    TRANSMISSION t;
    set->Transmission(&t.a, &t.b, &t.c, &t.d, z);
    return t;
}

void ExpectNear(const TRANSMISSION &t, const TRANSMISSION &u, double tolerance)
{
    EXPECT_NEAR(t.a, u.a, tolerance);
    EXPECT_NEAR(t.b, u.b, tolerance);
    EXPECT_NEAR(t.c, u.c, tolerance);
    EXPECT_NEAR(t.d, u.d, tolerance);
}

EmCONSTRUCTION SplitOf(const EmHOLE *hole, double z)
{
    EmCONSTRUCTION part;
    hole->Split(&part, z);
    return part;
}

/// A hall with its own values on every element and openings of both kinds on every surface.
void Furnish(HALL &hall)
{
    hall.SetConstruction(EM_FLOOR, 0.4, 8);
    hall.SetConstruction(EM_CEILING, 0.7, -12);
    hall.SetConstruction(EM_WALLS, 1.1, -10);
    CHANCE dice(3);
    for (int place = 0; place < 6; ++place) {
        const AgPOINT size = hall.Side(place)->size;
        for (int i = 0; i < 3; ++i) {
            EmHOLE *hole = hall.Open(place, {dice.Real(0.2, 0.8) * size.x, dice.Real(0.2, 0.8) * size.y},
                                     dice.Real(0.5, 2), dice.Real(0.5, 2), dice.Real(-3, 3));
            hole->flags = i % 2;
            hole->constr.k = dice.Real(1, 9);
            hole->constr.tExt = dice.Real(-20, 5);
        }
    }
    hall.Surfaces()->Prepare();
    hall.Surfaces()->UpdateTemps(18);
}
} // namespace

TEST(Surfaces, StandInTheirOrderAroundTheHall)
{
    const double L = 20, W = 12, H = 6;
    HALL hall(L, W, H);
    const struct {
        int element;
        AgPOINT size, origin, uAxis, vAxis;
    } expected[] = {
        {EM_FLOOR, {L, W}, {0, 0, 0}, {1, 0, 0}, {0, 1, 0}},
        {EM_CEILING, {L, W}, {0, 0, H}, {1, 0, 0}, {0, 1, 0}},
        {EM_WALLS, {L, H}, {L, 0, 0}, {-1, 0, 0}, {0, 0, 1}},
        {EM_WALLS, {W, H}, {L, W, 0}, {0, -1, 0}, {0, 0, 1}},
        {EM_WALLS, {L, H}, {0, W, 0}, {1, 0, 0}, {0, 0, 1}},
        {EM_WALLS, {W, H}, {0, 0, 0}, {0, 1, 0}, {0, 0, 1}},
    };
    ASSERT_EQ(hall.Surfaces()->Count(), 6);
    for (int place = 0; place < 6; ++place) {
        const EmSURFACE *surface = hall.Side(place);
        EXPECT_EQ(surface->constr, hall.Data()->constr + expected[place].element) << place;
        EXPECT_EQ(surface->size, expected[place].size) << place;
        EXPECT_EQ(surface->origin, expected[place].origin) << place;
        EXPECT_EQ(surface->uAxis, expected[place].uAxis) << place;
        EXPECT_EQ(surface->vAxis, expected[place].vAxis) << place;
        EXPECT_EQ(surface->Holes()->surface, surface) << place;
    }
    EXPECT_EQ(hall.Surfaces()->Floor(), hall.Side(FLOOR));
    EXPECT_EQ(hall.Surfaces()->Ceiling(), hall.Side(CEILING));
    EXPECT_EQ(hall.Surfaces()->FirstWall(), hall.Side(WALL_A));
}

TEST(Surfaces, WallsFaceTheHallAndMeasureItsHeight)
{
    HALL hall(20, 12, 6);
    hall.Surfaces()->Prepare();
    CHANCE dice(1);
    for (int i = 0; i < 50; ++i) {
        const AgPOINT p(dice.Real(0, 20), dice.Real(0, 12), dice.Real(0, 6));
        const double distance[] = {p.z, p.z - 6, p.y, 20 - p.x, 12 - p.y, p.x}; // ahead of the normal
        for (int place = 0; place < 6; ++place) {
            const AgPOINT local = hall.Side(place)->transform * p;
            EXPECT_NEAR(local.z, distance[place], 1e-12) << place;
            EXPECT_NEAR(local.y, place < WALL_A ? p.y : p.z, 1e-12) << place;
            EXPECT_GE(local.x, 0) << place;
            EXPECT_LE(local.x, hall.Side(place)->size.x) << place;
        }
    }
}

TEST(Surfaces, AreBuiltAnewWithoutWhatTheyHeldBefore)
{
    HALL hall(20, 12, 6);
    hall.Open(WALL_B, {3, 3}, 1, 1);
    EmSURFACE *spare = new EmSURFACE(hall.Data()->constr);
    spare->Insert(hall.Surfaces());
    hall.Surfaces()->BuildSurfaces({10, 8, 4}, hall.Data()->constr);
    ASSERT_EQ(hall.Surfaces()->Count(), 6);
    EXPECT_EQ(hall.Side(WALL_B)->Holes()->Count(), 0);
    EXPECT_EQ(hall.Side(WALL_B)->size, AgPOINT(8, 4));
}

TEST(Surfaces, AnEnvelopeThatWasNeverBuiltIsAFaultOfTheProgram)
{
    const char file[] = "ker/emroom_surfaces.cpp";
    EmSURFACESET set;
    EmCONSTRUCTION constr;
    EXPECT_TRUE(AbortsOnAssertion("Count() >= 1", file, [&] { set.Floor(); }));
    (new EmSURFACE(&constr))->Insert(&set);
    EXPECT_TRUE(AbortsOnAssertion("Count() >= 2", file, [&] { set.Ceiling(); }));
    EXPECT_TRUE(AbortsOnAssertion("Count() >= 2", file, [&] { Of(&set, 1); }));
    (new EmSURFACE(&constr))->Insert(&set);
    EXPECT_TRUE(AbortsOnAssertion("Count() >= 3", file, [&] { set.FirstWall(); }));
}

TEST(Hole, WithoutSurfaceIsAFaultOfTheProgram)
{
    const char condition[] = "holeSet != NULL && holeSet->surface != NULL";
    const char file[] = "ker/emroom_surfaces.cpp";
    EmHOLE loose;
    EXPECT_TRUE(AbortsOnAssertion(condition, file, [&] { loose.Surface(); }));
    EmHOLESET orphaned(NULL);
    EmHOLE *hole = new EmHOLE;
    hole->Insert(&orphaned);
    EXPECT_TRUE(AbortsOnAssertion(condition, file, [&] { hole->Surface(); }));
    EXPECT_TRUE(AbortsOnAssertion(condition, file, [&] { SplitOf(hole, 1); }));
    hole->flags = EmHOLE::OWN_TEMP;
    EXPECT_EQ(SplitOf(hole, 1).tExt, 0); // asks no surface
}

TEST(Surface, BoundsReachToCentresOutsideTheWall)
{
    HALL hall(20, 12, 6);
    const EmSURFACE *wall = hall.Side(WALL_A);
    EXPECT_EQ(wall->Bounds().min, AgE0);
    EXPECT_EQ(wall->Bounds().max, AgPOINT(20, 6));
    hall.Open(WALL_A, {5, 3}, 100, 100);
    EXPECT_EQ(wall->Bounds().max, AgPOINT(20, 6));
    hall.Open(WALL_A, {-2, 7, 99}, 1, 1);
    hall.Open(WALL_A, {21, -1, -99}, 1, 1);
    EXPECT_EQ(wall->Bounds().min, AgPOINT(-2, -1));
    EXPECT_EQ(wall->Bounds().max, AgPOINT(21, 7));
}

TEST(Hole, StartsEmptyAndCopiesWhatIsStored)
{
    HALL hall(20, 12, 6);
    EmHOLE fresh;
    EXPECT_EQ(fresh.flags, 0);
    EXPECT_STREQ(fresh.description, "");
    EXPECT_EQ(fresh.size, AgE0);
    EXPECT_EQ(fresh.pos, AgE0);
    EXPECT_EQ(fresh.rotation, 0);
    EXPECT_EQ(fresh.constr.k, 0);
    EXPECT_EQ(fresh.constr.alpha, 8.0);

    EmHOLE *source = hall.Open(WALL_A, {4, 2}, 1.5, 2.5, 0.3);
    source->flags = 5;
    std::strcpy(source->description, "Tor 4");
    source->constr = {1.5, 2, 3, 7, -4, 5, 6};
    EmHOLE copy(*source);
    EXPECT_EQ(copy.List(), static_cast<LIST *>(NULL));
    EXPECT_EQ(hall.Side(WALL_A)->Holes()->Count(), 1);
    EXPECT_EQ(copy.flags, 5);
    EXPECT_STREQ(copy.description, "Tor 4");
    EXPECT_EQ(copy.size, source->size);
    EXPECT_EQ(copy.pos, source->pos);
    EXPECT_EQ(copy.rotation, source->rotation);
    for (double EmCONSTRUCTION::*field :
         {&EmCONSTRUCTION::k, &EmCONSTRUCTION::upperArea, &EmCONSTRUCTION::lowerArea, &EmCONSTRUCTION::alpha,
          &EmCONSTRUCTION::tExt, &EmCONSTRUCTION::tSurf, &EmCONSTRUCTION::qSurf})
        EXPECT_EQ(copy.constr.*field, source->constr.*field);
}

TEST(Hole, PreparesItsCornersCounterClockwiseAndItsOwnCoordinates)
{
    HALL hall(20, 12, 6);
    EmHOLE *level = hall.Open(WALL_A, {4, 2}, 2, 1);
    hall.Surfaces()->Prepare();
    const AgPOINT expected[] = {{3, 1.5}, {5, 1.5}, {5, 2.5}, {3, 2.5}};
    for (int i = 0; i < 4; ++i)
        EXPECT_EQ(level->corners[i], expected[i]);

    CHANCE dice(5);
    for (int i = 0; i < 100; ++i) {
        const int place = dice.Int(0, 5);
        EmSURFACE *surface = hall.Side(place);
        EmHOLE *hole = hall.Open(place, {dice.Real(0, 10), dice.Real(0, 5)}, dice.Real(0.1, 3),
                                 dice.Real(0.1, 3), dice.Real(-7, 7));
        hole->Prepare();
        const AgPOINT own[] = {{0, 0}, {hole->size.x, 0}, hole->size, {0, hole->size.y}};
        for (int corner = 0; corner < 4; ++corner) {
            const AgPOINT &at = hole->corners[corner];
            const AgPOINT inHall = surface->origin + surface->uAxis * at.x + surface->vAxis * at.y;
            EXPECT_LT((hole->transform * inHall - own[corner]).Length(), 1e-12);
        }
    }
}

TEST(Split, CutsRectanglesAtTheLine)
{
    const double quarter = AgPI / 4;
    const struct {
        const char *what;
        double rotation, width, height, z, upper;
    } cases[] = {
        {"wholly above", 0, 2, 1, 1.0, 2},
        {"lower edge on the line", 0, 2, 1, 1.5, 2},
        {"a quarter below", 0, 2, 1, 1.75, 1.5},
        {"halved", 0, 2, 1, 2.0, 1},
        {"upper edge on the line", 0, 2, 1, 2.5, 0},
        {"wholly below", 0, 2, 1, 3.0, 0},
        {"turned upside down", AgPI, 2, 1, 1.75, 1.5},
        {"standing on a corner, halved", quarter, 2, 2, 2.0, 2},
        {"standing on a corner, the tip above", quarter, 2, 2, 3.0, (std::sqrt(2) - 1) * (std::sqrt(2) - 1)},
        {"standing on a corner, the tip below", quarter, 2, 2, 1.0,
         4 - (std::sqrt(2) - 1) * (std::sqrt(2) - 1)},
        {"no width", 0, 0, 1, 2.0, 0},
        {"no height", 0, 2, 0, 2.0, 0},
    };
    HALL hall(20, 12, 6);
    for (const auto &row : cases) {
        EmHOLE *hole = hall.Open(WALL_A, {4, 2}, row.width, row.height, row.rotation);
        hole->constr.k = 1.25;
        const EmCONSTRUCTION part = SplitOf(hole, row.z);
        EXPECT_NEAR(part.upperArea, row.upper, 1e-14) << row.what;
        EXPECT_NEAR(part.lowerArea, row.width * row.height - row.upper, 1e-14) << row.what;
        EXPECT_EQ(part.k, 1.25);
    }
}

TEST(Split, OnWholeNumbersIsExact)
{
    HALL hall(20, 12, 6);
    EmHOLE *hole = hall.Open(WALL_A, {4, 2}, 2, 1);
    for (double z : {-1.0, 0.0, 1.5}) {
        EXPECT_EQ(SplitOf(hole, z).upperArea, 2) << z;
        EXPECT_EQ(SplitOf(hole, z).lowerArea, 0) << z;
    }
    for (double z : {2.5, 6.0, 9.0}) {
        EXPECT_EQ(SplitOf(hole, z).upperArea, 0) << z;
        EXPECT_EQ(SplitOf(hole, z).lowerArea, 2) << z;
    }
}

// A square on its corner whose upper tip lies exactly on the line, and one whose side corners do.
TEST(Split, ACornerOnTheLineCountsOnlyWhereANeighbourIsAbove)
{
    HALL hall(20, 12, 6);
    EmHOLE *hole = hall.Open(WALL_A, {4, 0}, 2, 2, AgPI / 4);
    hole->Prepare();
    EXPECT_EQ(SplitOf(hole, hole->corners[2].y).upperArea, 0);
    EXPECT_NEAR(SplitOf(hole, hole->corners[1].y).upperArea, 2, 1e-14);
    EXPECT_NEAR(SplitOf(hole, hole->corners[0].y).upperArea, 4, 1e-14);
}

TEST(Split, AgreesWithAPlainPolygonAndLosesNoArea)
{
    HALL hall(20, 12, 6);
    EmHOLE *hole = hall.Open(WALL_C, {0, 0}, 1, 1);
    CHANCE dice(17);
    int cut = 0;
    for (int i = 0; i < 20000; ++i) {
        hole->pos = {dice.Real(-5, 25), dice.Real(-2, 8)};
        hole->size = {dice.Real(0.01, 6), dice.Real(0.01, 6)};
        hole->rotation = i % 10 ? dice.Real(-7, 7) : AgPI / 4 * dice.Int(0, 8);
        const double z = i % 7 ? dice.Real(-1, 7) : hole->pos.y;
        const EmCONSTRUCTION part = SplitOf(hole, z);
        const double area = hole->size.x * hole->size.y;
        EXPECT_NEAR(part.upperArea, static_cast<double>(PlainUpperArea(*hole, z)), 1e-11);
        EXPECT_NEAR(part.upperArea + part.lowerArea, area, 1e-14 * area);
        cut += part.upperArea > 0.01 * area && part.lowerArea > 0.01 * area;
    }
    EXPECT_GT(cut, 4000);
}

TEST(Split, TakesAwayAsTheLineRises)
{
    HALL hall(20, 12, 6);
    CHANCE dice(19);
    for (int i = 0; i < 50; ++i) {
        EmHOLE *hole = hall.Open(WALL_C, {3, 3}, dice.Real(0.5, 4), dice.Real(0.5, 4), dice.Real(-7, 7));
        double above = hole->size.x * hole->size.y + 1e-12;
        for (double z = -1; z < 7; z += 0.05) {
            const double upper = SplitOf(hole, z).upperArea;
            EXPECT_LE(upper, above + 1e-13);
            above = upper;
        }
        EXPECT_EQ(above, 0);
    }
}

TEST(Split, NeedsNoPrepareAndFollowsEveryChange)
{
    HALL hall(20, 12, 6);
    EmHOLE *hole = hall.Open(WALL_A, {4, 2}, 2, 1, 0.7);
    const EmCONSTRUCTION before = SplitOf(hole, 1.9);
    hall.Surfaces()->Prepare();
    EXPECT_EQ(SplitOf(hole, 1.9).upperArea, before.upperArea);
    hole->pos.y = 10; // the prepared corners are stale now
    EXPECT_NEAR(SplitOf(hole, 1.9).upperArea, 2, 1e-14);
}

TEST(Split, TakesTheOuterTemperatureThatTheFlagNames)
{
    HALL hall(20, 12, 6);
    hall.SetConstruction(EM_WALLS, 1, -10);
    EmHOLE *hole = hall.Open(WALL_A, {4, 2}, 2, 1);
    hole->constr.tExt = 5;
    const struct {
        int32_t flags;
        double outer;
    } cases[] = {{0, -10}, {1, 5}, {2, -10}, {3, 5}, {INT32_MIN, -10}, {-1, 5}};
    for (const auto &row : cases) {
        hole->flags = row.flags;
        EXPECT_EQ(hole->OuterTemp(), row.outer) << row.flags;
        EXPECT_EQ(SplitOf(hole, 2).tExt, row.outer) << row.flags;
        EXPECT_EQ(hole->constr.tExt, 5);
    }
}

TEST(SplitAreas, KeepTheSplitWithinTheWall)
{
    HALL hall(20, 12, 6);
    hall.SetConstruction(EM_WALLS, 1.5, -10);
    EmHOLE *hole = hall.Open(WALL_A, {4, 2}, 2, 1);
    const struct {
        double z, upper, lower;
    } cases[] = {
        {-3, 118, 0}, {0, 118, 0}, {1.5, 88, 30}, {2, 79, 39},
        {4, 40, 78},  {6, 0, 118}, {9, 0, 118},   {1e300, 0, 118},
    };
    for (const auto &row : cases) {
        EmCONSTRUCTION part;
        hall.Side(WALL_A)->SplitAreas(&part, row.z);
        EXPECT_EQ(part.upperArea, row.upper) << row.z;
        EXPECT_EQ(part.lowerArea, row.lower) << row.z;
        EXPECT_EQ(part.k, 1.5);
        EXPECT_EQ(part.tExt, -10);
    }
    EXPECT_EQ(hole->constr.upperArea, 0); // results go to the caller's record alone
    EXPECT_EQ(hall.Data()->constr[EM_WALLS].upperArea, 0);
}

TEST(SplitAreas, AnOpeningBiggerThanItsWallLeavesNoWallAndCountsInFull)
{
    HALL hall(20, 12, 6);
    hall.SetConstruction(EM_WALLS, 1.5, -10);
    EmHOLE *hole = hall.Open(WALL_A, {10, 3}, 30, 10);
    hole->constr.k = 2;
    for (double z : {0.0, 3.0, 6.0}) {
        EmCONSTRUCTION part;
        hall.Side(WALL_A)->SplitAreas(&part, z);
        EXPECT_EQ(part.upperArea, 0) << z;
        EXPECT_EQ(part.lowerArea, 0) << z;
        const TRANSMISSION t = Of(hall.Side(WALL_A), z);
        EXPECT_EQ(t.c, 2 * 30 * (2 + z)) << z;
        EXPECT_EQ(t.d, 2 * 30 * (8 - z)) << z;
    }
}

TEST(Transmission, OfACeilingIsAreaTimesTransmittance)
{
    HALL hall(5, 3, 4);
    hall.SetConstruction(EM_CEILING, 3.0, -2);
    for (double z : {-1.0, 0.0, 2.0, 4.0, 9.0}) {
        const TRANSMISSION t = Of(hall.Surfaces(), z);
        EXPECT_EQ(t.a, 0);
        EXPECT_EQ(t.c, 0);
        EXPECT_EQ(t.d * 20 - t.b, 990) << z; // W between 20 and -2 degrees
    }
}

TEST(Transmission, TheFloorLiesAboveASplitAtZeroAndBelowEveryOther)
{
    HALL hall(5, 3, 4);
    hall.SetConstruction(EM_FLOOR, 2.0, 7);
    EmHOLE *pit = hall.Open(FLOOR, {2, 2.5}, 2, 1);
    pit->constr.k = 10;
    const double conductance = 13 * 2.0 + 2 * 10;
    for (double z : {-1.0, 0.0}) {
        const TRANSMISSION t = Of(hall.Surfaces(), z);
        EXPECT_EQ(t.c, 0) << z;
        EXPECT_EQ(t.d, conductance) << z;
        EXPECT_EQ(t.b, conductance * 7) << z;
    }
    for (double z : {1e-9, 1.0, 4.0, 50.0}) {
        const TRANSMISSION t = Of(hall.Surfaces(), z);
        EXPECT_EQ(t.c, conductance) << z;
        EXPECT_EQ(t.d, 0) << z;
        EXPECT_EQ(t.a, conductance * 7) << z;
    }
}

TEST(Transmission, BelowAndAboveAddUpToTheWholeAtAnyHeight)
{
    HALL hall(20, 12, 6);
    Furnish(hall);
    const TRANSMISSION whole = Of(hall.Surfaces(), 0);
    EXPECT_NEAR(whole.c, 0, 1e-12);
    for (double z = 0.1; z < 8; z += 0.13) {
        const TRANSMISSION t = Of(hall.Surfaces(), z);
        EXPECT_NEAR(t.a + t.b, whole.a + whole.b, 1e-9) << z;
        EXPECT_NEAR(t.c + t.d, whole.c + whole.d, 1e-10) << z;
        EXPECT_GT(t.c, 0) << z;
    }
}

TEST(Transmission, OfTheHallIsTheSumOfItsSurfaces)
{
    HALL hall(20, 12, 6);
    Furnish(hall);
    for (double z : {0.5, 3.0, 5.5}) {
        TRANSMISSION sum = {0, 0, 0, 0};
        for (int place = 0; place < 6; ++place) {
            const double split = place == FLOOR ? 12 : place == CEILING ? 0 : z;
            const TRANSMISSION t = Of(hall.Side(place), split);
            sum = {sum.a + t.a, sum.b + t.b, sum.c + t.c, sum.d + t.d};
        }
        ExpectNear(Of(hall.Surfaces(), z), sum, 1e-9);
    }
}

TEST(Transmission, TwoHalfOpeningsAreOneWhole)
{
    HALL whole(20, 12, 6);
    HALL halves(20, 12, 6);
    for (HALL *hall : {&whole, &halves})
        hall->SetConstruction(EM_WALLS, 1.5, -10);
    whole.Open(WALL_B, {5, 3}, 4, 2)->constr.k = 3;
    halves.Open(WALL_B, {4, 3}, 2, 2)->constr.k = 3;
    halves.Open(WALL_B, {6, 3}, 2, 2)->constr.k = 3;
    for (double z : {0.0, 2.0, 2.7, 3.5, 5.0})
        ExpectNear(Of(whole.Surfaces(), z), Of(halves.Surfaces(), z), 1e-10);
}

TEST(Transmission, AnOpeningOfTheWallsOwnConstructionChangesNothing)
{
    HALL plain(20, 12, 6);
    HALL open(20, 12, 6);
    for (HALL *hall : {&plain, &open})
        for (int element : {EM_FLOOR, EM_CEILING, EM_WALLS})
            hall->SetConstruction(element, 0.5 + element, -10 + element);
    CHANCE dice(23);
    for (int place = 0; place < 6; ++place) {
        const AgPOINT size = open.Side(place)->size;
        EmHOLE *hole = open.Open(place, size * 0.5, dice.Real(1, 3), dice.Real(1, 3), dice.Real(-3, 3));
        hole->constr.k = open.Side(place)->constr->k;
    }
    for (HALL *hall : {&plain, &open}) {
        hall->Surfaces()->Prepare();
        hall->Surfaces()->UpdateTemps(17);
    }
    for (double z : {0.0, 1.0, 2.9, 3.0, 4.5, 7.0})
        ExpectNear(Of(plain.Surfaces(), z), Of(open.Surfaces(), z), 1e-9);
    for (int i = 0; i < 50; ++i) {
        const AgPOINT p(dice.Real(0, 20), dice.Real(0, 12), dice.Real(0, 6));
        EXPECT_NEAR(plain.Surfaces()->Radiation(p), open.Surfaces()->Radiation(p), 1e-11);
    }
}

TEST(UpdateTemps, DropTheTemperatureByTheSurfacesShareOfTheResistance)
{
    const struct {
        double k, alpha, tAir, tOut, tSurf;
    } cases[] = {
        {0, 8, 20, -12, 20},  // nothing passes: as warm as the air
        {4, 8, 20, -12, 4},   // half of the drop
        {2, 8, 20, -12, 12},  //
        {8, 8, 20, -12, -12}, // no resistance but that of the surface
        {9, 8, 20, -12, -12}, // nor can there be less
        {1e300, 8, 20, 5, 5}, //
        {3, 0, 20, -12, -12}, // no coefficient at all
        {4, 8, -10, 10, 0},   // a warm ground warms
        {4, -8, 20, 10, 25},  // taken as it comes
    };
    HALL hall(20, 12, 6);
    EmCONSTRUCTION *constr = hall.Data()->constr;
    for (const auto &row : cases) {
        for (int element : {EM_FLOOR, EM_CEILING, EM_WALLS}) {
            hall.SetConstruction(element, row.k, row.tOut);
            constr[element].alpha = row.alpha;
        }
        hall.Surfaces()->UpdateTemps(row.tAir);
        for (int element : {EM_FLOOR, EM_CEILING, EM_WALLS}) {
            EXPECT_EQ(constr[element].tSurf, row.tSurf) << row.k;
            const double excess = std::pow(row.tSurf + 273.15, 4.0) - std::pow(row.tAir + 273.15, 4.0);
            EXPECT_EQ(constr[element].qSurf, excess * 5.669e-8) << row.k;
            EXPECT_EQ(constr[element].qSurf > 0, row.tSurf > row.tAir);
        }
    }
}

TEST(UpdateTemps, AnOpeningFollowsTheFlagAndItsOwnTransmittance)
{
    HALL hall(20, 12, 6);
    hall.SetConstruction(EM_CEILING, 4, -12);
    EmHOLE *hole = hall.Open(CEILING, {4, 2}, 2, 1);
    hole->constr.k = 2;
    hole->constr.tExt = 0;
    hall.Surfaces()->UpdateTemps(20);
    EXPECT_EQ(hole->constr.tSurf, 12);
    EXPECT_EQ(hall.Data()->constr[EM_CEILING].tSurf, 4);
    hole->flags = EmHOLE::OWN_TEMP;
    hall.Surfaces()->UpdateTemps(20);
    EXPECT_EQ(hole->constr.tSurf, 15);
    EXPECT_EQ(hole->constr.qSurf, (std::pow(288.15, 4.0) - std::pow(293.15, 4.0)) * 5.669e-8);
    EXPECT_EQ(hall.Data()->constr[EM_CEILING].tSurf, 4);
    hole->constr.k = 100;
    hall.Surfaces()->UpdateTemps(20);
    EXPECT_EQ(hole->constr.tSurf, 0);
}

TEST(RectangleFlux, AboveTheCentreIsTheSolidAngleOfAPyramid)
{
    CHANCE dice(29);
    for (int i = 0; i < 2000; ++i) {
        const double a = dice.Real(0.01, 50), b = dice.Real(0.01, 50), h = dice.Real(0.01, 50);
        const double angle = 4 * std::asin(a * b / std::sqrt((a * a + h * h) * (b * b + h * h)));
        EXPECT_NEAR(RectangleFlux(a, b, h, 2 * a, 2 * b, 2 * AgPI), angle,
                    1e-7); // asin is flat near a right angle
    }
}

// The solid angle is the integral of h / r^3 over the rectangle.
TEST(RectangleFlux, AgreesWithSummingSmallPatches)
{
    CHANCE dice(31);
    for (int i = 0; i < 40; ++i) {
        const double w = dice.Real(0.5, 6), h = dice.Real(0.5, 6), q = dice.Real(-100, 100);
        const double px = dice.Real(-4, 9), py = dice.Real(-4, 9), pz = dice.Real(0.5, 6);
        const int n = 200;
        double angle = 0;
        for (int ix = 0; ix < n; ++ix) {
            for (int iy = 0; iy < n; ++iy) {
                const double dx = w * (ix + 0.5) / n - px;
                const double dy = h * (iy + 0.5) / n - py;
                const double r2 = dx * dx + dy * dy + pz * pz;
                angle += pz / (r2 * std::sqrt(r2)) * (w / n) * (h / n);
            }
        }
        EXPECT_NEAR(RectangleFlux(px, py, pz, w, h, q), q * angle / (2 * AgPI), 1e-4 * std::fabs(q));
    }
}

TEST(RectangleFlux, AddsUpOverAnyCutOfTheRectangle)
{
    CHANCE dice(37);
    for (int i = 0; i < 500; ++i) {
        const double w = dice.Real(1, 9), h = dice.Real(1, 9), x = dice.Real(0, w), y = dice.Real(0, h);
        const double px = dice.Real(-5, 15), py = dice.Real(-5, 15), pz = dice.Real(0, 5);
        const double parts = RectangleFlux(px, py, pz, x, y, 10) + RectangleFlux(px - x, py, pz, w - x, y, 10) +
                             RectangleFlux(px, py - y, pz, x, h - y, 10) +
                             RectangleFlux(px - x, py - y, pz, w - x, h - y, 10);
        EXPECT_NEAR(RectangleFlux(px, py, pz, w, h, 10), parts, 1e-12);
    }
}

TEST(RectangleFlux, InThePlaneIsTheFluxInsideAndNothingBeyond)
{
    EXPECT_NEAR(RectangleFlux(5, 5, 0, 10, 10, 80), 80, 0.2);
    EXPECT_NEAR(RectangleFlux(15, 5, 0, 10, 10, 80), 0, 0.1);
    EXPECT_NEAR(RectangleFlux(5, 5, 0, 10, 10, -80), -80, 0.2);
    EXPECT_NEAR(RectangleFlux(0, 5, 0, 10, 10, 80), 40, 0.2); // on the edge: half of it
    EXPECT_NEAR(RectangleFlux(0, 0, 0, 10, 10, 80), 20, 0.2); // in the corner: a quarter
}

TEST(RectangleFlux, NearerThanACentimetreCountsAsACentimetre)
{
    for (double pz : {0.0, 0.005, 0.00999, -0.0, -3.0})
        EXPECT_EQ(RectangleFlux(2, 3, pz, 10, 10, 80), RectangleFlux(2, 3, 0.01, 10, 10, 80)) << pz;
    EXPECT_NE(RectangleFlux(2, 3, 0.0101, 10, 10, 80), RectangleFlux(2, 3, 0.01, 10, 10, 80));
}

TEST(Radiation, SixFacesOfEqualFluxGiveTwiceThatFlux)
{
    HALL hall(20, 12, 6);
    hall.Surfaces()->Prepare();
    CHANCE dice(41);
    for (int i = 0; i < 1000; ++i) {
        const double q = dice.Real(-80, 80);
        for (EmCONSTRUCTION &c : hall.Data()->constr)
            c.qSurf = q;
        const AgPOINT p(dice.Real(0.01, 19.99), dice.Real(0.01, 11.99), dice.Real(0.01, 5.99));
        EXPECT_NEAR(hall.Surfaces()->Radiation(p), 2 * q, 1e-11);
    }
}

TEST(Radiation, ThreePairsOfFacesShareTheSphereAsTheirSolidAngles)
{
    CHANCE dice(43);
    for (int i = 0; i < 300; ++i) {
        HALL hall(dice.Real(1, 100), dice.Real(1, 100), dice.Real(1, 30));
        hall.Surfaces()->Prepare();
        const AgPOINT centre = hall.Box().max * 0.5;
        const double half[3] = {centre.x, centre.y, centre.z};
        hall.Data()->constr[EM_CEILING].qSurf = AgPI * 2; // the flux is then the solid angle
        const double up = std::asin(
            half[0] * half[1] /
            std::sqrt((half[0] * half[0] + half[2] * half[2]) * (half[1] * half[1] + half[2] * half[2])));
        EXPECT_NEAR(hall.Surfaces()->Radiation(centre), 4 * up, 1e-8);
    }
}

TEST(Radiation, AnOpeningCountsWithItsDifferenceToTheSurface)
{
    HALL hall(20, 12, 6);
    EmHOLE *hole = hall.Open(CEILING, {4, 2}, 2, 1, 0.4);
    hall.Surfaces()->Prepare();
    hall.Data()->constr[EM_CEILING].qSurf = -30;
    hole->constr.qSurf = -75;
    CHANCE dice(47);
    for (int i = 0; i < 100; ++i) {
        const AgPOINT p(dice.Real(0, 20), dice.Real(0, 12), dice.Real(0, 6));
        const AgPOINT local = hole->transform * p;
        const double alone = RectangleFlux(local.x, local.y, std::fabs(local.z), 2, 1, -75 + 30);
        EXPECT_EQ(hole->Radiation(p, 30), alone);
        const double bare = RectangleFlux(p.x, p.y, 6 - p.z, 20, 12, -30);
        EXPECT_NEAR(hall.Side(CEILING)->Radiation(p), bare + alone, 1e-12);
        EXPECT_LT(alone, 0);
    }
}

TEST(Radiation, AnOpeningAsBigAsItsWallReplacesIt)
{
    HALL hall(20, 12, 6);
    EmHOLE *hole = hall.Open(WALL_B, {6, 3}, 12, 6);
    hall.Surfaces()->Prepare();
    hall.Data()->constr[EM_WALLS].qSurf = -30;
    hole->constr.qSurf = -75;
    HALL other(20, 12, 6);
    other.Surfaces()->Prepare();
    other.Data()->constr[EM_WALLS].qSurf = -75;
    CHANCE dice(53);
    for (int i = 0; i < 100; ++i) {
        const AgPOINT p(dice.Real(0, 20), dice.Real(0, 12), dice.Real(0, 6));
        EXPECT_NEAR(hall.Side(WALL_B)->Radiation(p), other.Side(WALL_B)->Radiation(p), 1e-12);
    }
}

TEST(Radiation, AMirroredHallRadiatesMirrored)
{
    const double L = 20, W = 12, H = 6;
    HALL hall(L, W, H);
    Furnish(hall);
    HALL mirror(L, W, H);
    const int opposite[] = {FLOOR, CEILING, WALL_A, WALL_D, WALL_C, WALL_B};
    for (int i = 0; i < 3; ++i)
        mirror.Data()->constr[i] = hall.Data()->constr[i];
    for (int place = 0; place < 6; ++place) {
        const EmSURFACE *surface = hall.Side(place);
        for (const EmHOLE *hole = surface->Holes()->First(); hole; hole = EmHOLESET::Next(hole)) {
            EmHOLE *image = new EmHOLE(*hole);
            image->pos.x = surface->size.x - hole->pos.x;
            image->rotation = -hole->rotation;
            image->Insert(mirror.Side(opposite[place])->Holes());
        }
    }
    mirror.Surfaces()->Prepare();
    mirror.Surfaces()->UpdateTemps(18);
    CHANCE dice(59);
    for (int i = 0; i < 300; ++i) {
        const AgPOINT p(dice.Real(0, L), dice.Real(0, W), dice.Real(0, H));
        const AgPOINT image(L - p.x, p.y, p.z);
        EXPECT_NEAR(hall.Surfaces()->Radiation(p), mirror.Surfaces()->Radiation(image), 1e-10);
        for (int place = 0; place < 6; ++place)
            EXPECT_NEAR(hall.Side(place)->Radiation(p), mirror.Side(opposite[place])->Radiation(image), 1e-10);
    }
    for (double z : {0.0, 1.0, 3.3, 5.0})
        ExpectNear(Of(hall.Surfaces(), z), Of(mirror.Surfaces(), z), 1e-9);
}
