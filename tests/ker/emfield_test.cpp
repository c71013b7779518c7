#include "ker/emceiling.h"
#include "ker/emfield.h"
#include "support/fault.h"
#include "support/fieldhall.h"
#include "support/lanesets.h"
#include "support/sampleroom.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>

namespace
{
constexpr double INF = std::numeric_limits<double>::infinity();

bool SameBits(double a, double b)
{
    return (std::isnan(a) && std::isnan(b)) || memcmp(&a, &b, sizeof a) == 0;
}

std::vector<double> SampleAll(const EmROOM &room, const EmRASTER &raster, double z)
{
    std::vector<double> samples(static_cast<size_t>(raster.columns) * raster.rows);
    EmFIELD(*room.Emitters()).Sample(raster, z, 0, raster.columns, samples.data());
    return samples;
}

/// The first sample that is not what the room gives at its point; "" if there is none.
std::string FirstWrong(const EmROOM &room, const EmRASTER &raster, double z, const std::vector<double> &samples)
{
    const double *v = samples.data();
    for (int i = 0; i < raster.columns; ++i)
        for (int j = 0; j < raster.rows; ++j, ++v) {
            double expected = room.Irradiation({raster.X(i), raster.Y(j), z});
            if (!SameBits(*v, expected))
                return "column " + std::to_string(i) + " row " + std::to_string(j) + ": " + std::to_string(*v) +
                       " for " + std::to_string(expected);
        }
    return "";
}

/// The samples of both sets of loops against the room's own answers.
void ExpectBitForBit(FIELDHALL &hall, const EmRASTER &raster, double z)
{
    hall.room.Emitters()->Prepare();
    for (const EmLANES *lanes : LaneSets()) {
        LANESINUSE inUse(lanes);
        EXPECT_EQ(FirstWrong(hall.room, raster, z, SampleAll(hall.room, raster, z)), "")
            << "with " << lanes->width << " points at a time";
    }
}

/// A hall of 12 x 8 x 5 m with one model and no emitter yet.
struct SMALLHALL : FIELDHALL {
    CHANCE chance{3};
    EmMODEL *model;
    EmRASTER raster;

    explicit SMALLHALL(const FIELDTABLE &table = FIELDTABLE()) : FIELDHALL(12, 8, 5)
    {
        model = AddModel(table, chance);
        raster = IrradiationRaster(room.Box(), true);
    }
};

EmBOX Box(double x0, double y0, double x1, double y1)
{
    return {AgPOINT(x0, y0, 0), AgPOINT(x1, y1, 5)};
}
} // namespace

TEST(AirTemp, RisesByThreeTenthsOfAKelvinAMetreFromOneAndAHalfMetres)
{
    TZulMapInfo info;
    info.airTemp = 18;
    EXPECT_EQ(AirTempAt(info, 1.5), 18);
    EXPECT_DOUBLE_EQ(AirTempAt(info, 0.15), 18 - 1.35 * 0.3);
    EXPECT_DOUBLE_EQ(AirTempAt(info, 6.5), 19.5);
}

TEST(Raster, FollowsTheHallsSides)
{
    static const struct {
        double length, width;
        bool draft;
        int columns, rows;
        double step;
    } cases[] = {
        {60, 30, false, 505, 253, 60 / 504.0},
        {60, 30, true, 169, 85, 60 / 168.0},
        {1, 10000, true, 169, 1680001, 1 / 168.0},
        {10000, 1, true, 169, 1, 10000 / 168.0},
        {10000, 10, false, 505, 1, 10000 / 504.0},
        {20, 0, true, 169, 1, 20 / 168.0}, // no width: one row, and it works
    };
    for (const auto &c : cases) {
        EmRASTER r = IrradiationRaster(Box(0, 0, c.length, c.width), c.draft);
        ASSERT_STREQ(xCode, XNULL);
        EXPECT_EQ(r.columns, c.columns);
        EXPECT_EQ(r.rows, c.rows) << c.length << " x " << c.width;
        EXPECT_EQ(r.step, c.step);
    }
}

TEST(Raster, StartsAtTheSmallerCornerAndHasTheFarSideOnTop)
{
    EmRASTER r = IrradiationRaster(Box(24, 9, -4, -3), true);
    EXPECT_EQ(r.columns, 169);
    EXPECT_EQ(r.rows, 73);
    EXPECT_EQ(r.X(0), -4);
    EXPECT_DOUBLE_EQ(r.X(168), 24);
    EXPECT_DOUBLE_EQ(r.Y(0), 9);
    EXPECT_EQ(r.Y(72), -3);
}

TEST(Raster, ThatCannotBeHeldOrCountedIsOutOfMemory)
{
    const double nan = std::nan("");
    static const struct {
        double length, width;
        bool draft;
    } cases[] = {
        {1, 10000, false},      {1, 1e6, true}, {1, 1e300, true}, {0, 10, true},  {0, 0, true},
        {1e-320, 1e-10, false}, {nan, 5, true}, {5, nan, true},   {INF, 5, true}, {5, INF, true},
    };
    for (const auto &c : cases) {
        EmRASTER r = IrradiationRaster(Box(0, 0, c.length, c.width), c.draft);
        EXPECT_EQ(TakeFailure(), XALLOC) << c.length << " x " << c.width;
        EXPECT_EQ(r.columns, 0);
    }
}

TEST(Raster, OfTheCriteriaTakesItsStepFromTheWidth)
{
    EmBOX box = Box(0, 0, 50, 17);
    EmRASTER plan = IrradiationRaster(box, true);
    EmRASTER r = CriterionRaster(box, plan);
    EXPECT_EQ(r.columns, plan.columns);
    EXPECT_EQ(r.rows, plan.rows);
    EXPECT_EQ(r.step, 17.0 / (plan.rows - 1));
    EXPECT_DOUBLE_EQ(r.Y(0), 17);
}

TEST(Raster, OfTheCriteriaWithOneRowKeepsTheStep)
{
    EmBOX box = Box(0, 0, 500, 1);
    EmRASTER plan = IrradiationRaster(box, true);
    ASSERT_EQ(plan.rows, 1);
    EXPECT_EQ(CriterionRaster(box, plan).step, plan.step);
}

TEST(JudgedValues, AreThoseOfAirAloneWithoutEmitters)
{
    FIELDHALL hall(20, 10, 6);
    TZulMapInfo info;
    info.airTemp = 17;
    EXPECT_NEAR(HeadTemp(hall.room, info, 3, 4), AirTempAt(info, 1.7), 1e-9);
    EXPECT_NEAR(DiffTemp(hall.room, info, 3, 4), 1.55 * 0.3, 1e-9);
    hall.room.Surfaces()->Prepare();
    EXPECT_EQ(HeadInte(hall.room, 3, 4), 0);
}

TEST(JudgedValues, OfASittingPersonAreTakenLower)
{
    SMALLHALL hall;
    hall.AddEmitter(hall.model, {6, 4, 4});
    hall.room.Emitters()->Prepare();
    hall.room.Surfaces()->Prepare();
    TZulMapInfo info;
    info.airTemp = 17;
    hall.room.Data()->position = EM_SITTING;
    EXPECT_EQ(HeadTemp(hall.room, info, 6, 4),
              hall.room.OperativeTemp(hall.room.Irradiation({6, 4, 1.1}), AirTempAt(info, 1.1)));
    EXPECT_EQ(HeadInte(hall.room, 6, 4), hall.room.Irradiation({6, 4, 1.1}));
    hall.room.Data()->position = EM_STANDING;
    EXPECT_EQ(HeadInte(hall.room, 6, 4), hall.room.Irradiation({6, 4, 1.7}));
    EXPECT_LT(hall.room.Irradiation({6, 4, 1.1}), hall.room.Irradiation({6, 4, 1.7}));
}

TEST(JudgedValues, OfTheHeadTakeInTheCeilingAndNoOtherSurface)
{
    FIELDHALL hall(20, 10, 6);
    for (EmCONSTRUCTION &c : hall.room.Data()->constr)
        c.qSurf = -30;
    hall.room.Surfaces()->Prepare();
    AgPOINT p(3, 4, 1.7);
    EXPECT_EQ(HeadInte(hall.room, 3, 4), hall.room.Surfaces()->Ceiling()->Radiation(p));
    EXPECT_LT(HeadInte(hall.room, 3, 4), 0);
}

TEST(Field, IsThatOfEachPointOnRandomHalls)
{
    for (unsigned start = 1; start <= 150; ++start) {
        SCOPED_TRACE(start);
        auto hall = MakeFieldHall(start);
        EmRASTER raster = IrradiationRaster(hall->room.Box(), start % 10 != 0);
        ExpectBitForBit(*hall, raster, CHANCE(start).Real(-1, 5));
    }
}

TEST(Field, IsThatOfEachPointHoweverAnEmitterHangs)
{
    static const double turns[] = {0, 1, 2, 3, -1, -2};
    for (double turn : turns)
        for (double off : {0.0, 1e-17, -1e-16, 3e-16, 1e-12, 1e-6, 0.3})
            for (double tilt : {0.0, 1e-17, 1e-9, 0.5, -1.5, AgPI / 2, AgPI}) {
                SMALLHALL hall;
                hall.AddEmitter(hall.model, {6, 4, 4}, turn * AgPI / 2 + off, tilt);
                hall.AddEmitter(hall.model, {-2.25, 8.5, 3.3}, turn * AgPI / 2 + off, tilt);
                SCOPED_TRACE(testing::Message() << turn << " quarter turns and " << off << ", tilt " << tilt);
                ExpectBitForBit(hall, hall.raster, 1);
            }
}

// Powers of 2 put points of the raster on the borders of cells, of the table and of its layers.
TEST(Field, IsThatOfEachPointOnTheBordersOfCells)
{
    FIELDHALL hall(10.5, 7, 5); // 168 steps of 1/16 m
    CHANCE chance(5);
    EmMODEL *model = hall.AddModel(FIELDTABLE(), chance);
    for (double rotation : {0.0, AgPI / 2, AgPI, -AgPI / 2}) {
        hall.AddEmitter(model, {5, 3, 4}, rotation);
        hall.AddEmitter(model, {-4, 3, 3}, rotation);
    }
    EmRASTER raster = IrradiationRaster(hall.room.Box(), true);
    ASSERT_EQ(raster.step, 0.0625);
    for (double z : {-4.0, -0.0, 0.0, 1.0, 1.5, 3.0, 4.0, 4.5})
        ExpectBitForBit(hall, raster, z);
}

TEST(Field, AboveTheEmittersAndBelowTheirReachIsNone)
{
    SMALLHALL hall;
    for (double tilt : {0.0, 0.4}) {
        hall.AddEmitter(hall.model, {6, 4, 4}, 0, tilt);
        hall.room.Emitters()->Prepare();
        for (double z : {13.0, -14.0})
            for (double v : SampleAll(hall.room, hall.raster, z))
                ASSERT_EQ(v, 0);
    }
}

TEST(Field, TakesScalesThatAreNotFiniteToEveryPoint)
{
    for (double power : {0.0, 5000.0, -5000.0, INF, std::nan("")})
        for (double rotation : {0.0, 1.0})
            for (double z : {1.0, 30.0}) {
                FIELDTABLE table;
                table.power = 0;
                SMALLHALL hall(table);
                hall.AddEmitter(hall.model, {2, 2, 4}, rotation, rotation / 3, power);
                hall.AddEmitter(hall.model, {500, 2, 4}, rotation, 0, power); // far outside
                hall.room.Emitters()->Prepare();
                ExpectBitForBit(hall, hall.raster, z);
                EXPECT_TRUE(std::isnan(SampleAll(hall.room, hall.raster, z)[0]));
            }
}

TEST(Field, TakesTablesThatHoldOddValues)
{
    FIELDHALL hall(12, 8, 5);
    EmMODELINFO info;
    info.power = 10000;
    EmGRID *grid = NULL;
    EmMODEL model(info, &grid);
    grid->Alloc(2);
    for (int iz = 0; iz <= 2; ++iz) {
        grid->AllocLayer(iz, 3, 3);
        for (int ix = -3; ix <= 3; ++ix)
            for (int iy = 0; iy <= 3; ++iy)
                grid->Set(ix, iy, iz, ix == 1 ? INF : iy == 2 ? std::nan("") : -0.0);
    }
    hall.AddEmitter(&model, {5, 3, 2});
    hall.AddEmitter(&model, {6, 5, 2}, 0.4, 0.3);
    ExpectBitForBit(hall, IrradiationRaster(hall.room.Box(), true), 1);
}

TEST(Field, OfAnEmitterWithoutModelOrTableIsNone)
{
    SMALLHALL hall;
    EmMODELINFO info;
    info.power = 10000;
    EmMODEL empty(info, NULL);
    hall.AddEmitter(NULL, {6, 4, 4});
    hall.AddEmitter(&empty, {6, 4, 4});
    ExpectBitForBit(hall, hall.raster, 1);
    info.power = 0;
    EmMODEL noPower(info, NULL);
    hall.AddEmitter(&noPower, {6, 4, 4}); // an infinite scale times nothing is no number
    ExpectBitForBit(hall, hall.raster, 1);
}

TEST(Field, OfATableTooUnevenForOneBlockIsTheSame)
{
    FIELDHALL hall(12, 8, 5);
    EmMODELINFO info;
    info.power = 10000;
    EmGRID *grid = NULL;
    EmMODEL model(info, &grid);
    grid->Alloc(2);
    static const int extents[][2] = {{4, 3000}, {3000, 4}, {5, 5}}; // together 54 million values
    for (int iz = 0; iz <= 2; ++iz) {
        grid->AllocLayer(iz, extents[iz][0], extents[iz][1]);
        for (int ix = -extents[iz][0]; ix <= extents[iz][0]; ++ix)
            for (int iy = 0; iy <= extents[iz][1]; ++iy)
                grid->Set(ix, iy, iz, 10 + ix + iy + iz);
    }
    hall.AddEmitter(&model, {5, 3, 2});
    hall.AddEmitter(&model, {6, 5, 2}, 0.4, 0.3);
    ExpectBitForBit(hall, IrradiationRaster(hall.room.Box(), true), 1);
}

TEST(Field, OfPartOfTheColumnsIsThatOfThePlan)
{
    SMALLHALL hall;
    hall.AddEmitter(hall.model, {6, 4, 4}, 0.3);
    hall.room.Emitters()->Prepare();
    std::vector<double> all = SampleAll(hall.room, hall.raster, 1);
    std::vector<double> part(static_cast<size_t>(hall.raster.rows) * 40, -1);
    EmFIELD(*hall.room.Emitters()).Sample(hall.raster, 1, 70, 39, part.data());
    EXPECT_EQ(memcmp(part.data(), all.data() + 70 * hall.raster.rows, sizeof(double) * 39 * hall.raster.rows),
              0);
    EXPECT_EQ(part[39 * hall.raster.rows], -1) << "wrote behind its columns";
}

TEST(Field, AddsOverEmittersInTheOrderOfTheSet)
{
    SMALLHALL one;
    SMALLHALL two;
    SMALLHALL both;
    one.AddEmitter(one.model, {3, 2, 4}, 0.2);
    two.AddEmitter(two.model, {8, 5, 4}, 0, 0.1);
    both.AddEmitter(both.model, {3, 2, 4}, 0.2);
    both.AddEmitter(both.model, {8, 5, 4}, 0, 0.1);
    for (SMALLHALL *hall : {&one, &two, &both})
        hall->room.Emitters()->Prepare();
    std::vector<double> a = SampleAll(one.room, one.raster, 1);
    std::vector<double> b = SampleAll(two.room, two.raster, 1);
    std::vector<double> sum = SampleAll(both.room, both.raster, 1);
    for (size_t i = 0; i < sum.size(); ++i)
        ASSERT_EQ(sum[i], a[i] + b[i]);
}

TEST(Field, OfRandomHallsInAnyOrderOfHeightsDependsOnNothingBefore)
{
    auto hall = MakeFieldHall(77);
    hall->room.Emitters()->Prepare();
    EmRASTER raster = IrradiationRaster(hall->room.Box(), true);
    EmFIELD field(*hall->room.Emitters());
    std::vector<double> first(static_cast<size_t>(raster.columns) * raster.rows);
    std::vector<double> again(first.size());
    field.Sample(raster, 1, 0, raster.columns, first.data());
    field.Sample(raster, 40, 0, raster.columns, again.data());
    field.Sample(raster, 1, 0, raster.columns, again.data());
    EXPECT_EQ(memcmp(first.data(), again.data(), sizeof(double) * first.size()), 0);
}

TEST(Field, IsOutOfMemoryOrWhole)
{
    SMALLHALL hall;
    hall.AddEmitter(hall.model, {6, 4, 4});
    hall.AddEmitter(NULL, {6, 4, 4});
    int swept = SweepFaults([&] { EmFIELD field(*hall.room.Emitters()); },
                            [&](const FaultRun &run) { EXPECT_EQ(run.code, run.fired ? XALLOC : XNULL); });
    EXPECT_GT(swept, 3);
}

// The comparison must be able to fail: one bit of one sample.
TEST(Field, ComparisonFindsOneBit)
{
    SMALLHALL hall;
    hall.AddEmitter(hall.model, {6, 4, 4});
    hall.room.Emitters()->Prepare();
    std::vector<double> samples = SampleAll(hall.room, hall.raster, 1);
    EXPECT_EQ(FirstWrong(hall.room, hall.raster, 1, samples), "");
    samples[4321] = std::nextafter(samples[4321], 1e9);
    EXPECT_NE(FirstWrong(hall.room, hall.raster, 1, samples), "");
}

TEST(CeilingField, StaysWithinItsErrorOnRandomHalls)
{
    int bounded = 0;
    for (unsigned start = 1; start <= 120; ++start) {
        auto hall = MakeFieldHall(start);
        EmROOM &room = hall->room;
        room.Surfaces()->Prepare();
        room.Surfaces()->UpdateTemps(18);
        EmRASTER raster = IrradiationRaster(room.Box(), true);
        double z = CHANCE(start).Real(0, 1) * room.Box().Height();
        EmCEILING field(*room.Surfaces()->Ceiling(), raster, z);
        if (!(field.Error() < 1e6))
            continue;
        ++bounded;
        field.Begin(8, 30);
        std::vector<double> column(raster.rows + EmCEILING::SPAN);
        for (int i = 8; i < 38; ++i) {
            field.Column(i, 0, raster.rows, column.data());
            for (int j = 0; j < raster.rows; ++j)
                ASSERT_NEAR(column[j], room.Surfaces()->Ceiling()->Radiation({raster.X(i), raster.Y(j), z}),
                            field.Error())
                    << "start " << start;
        }
    }
    EXPECT_GT(bounded, 60);
}

TEST(CeilingField, IsCloseInAWorkingHall)
{
    auto hall = MakeGridHall({60, 30, 8, 6, 4});
    hall->room.Surfaces()->Prepare();
    hall->room.Surfaces()->UpdateTemps(18);
    EmCEILING field(*hall->room.Surfaces()->Ceiling(), IrradiationRaster(hall->room.Box(), false), 1.7);
    EXPECT_LT(field.Error(), 0.5); // W/m2
}

TEST(CeilingField, HasNoBoundForACeilingAslant)
{
    FIELDHALL hall(12, 8, 5);
    EmSURFACE *ceiling = hall.room.Surfaces()->Ceiling();
    ceiling->Set(ceiling->size, ceiling->origin, AgE1 + AgE3 * 0.1, AgE2);
    hall.room.Surfaces()->Prepare();
    EmCEILING field(*ceiling, IrradiationRaster(hall.room.Box(), true), 1.7);
    EXPECT_EQ(field.Error(), HUGE_VAL);
}
