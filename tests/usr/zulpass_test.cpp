#include "support/fault.h"
#include "support/fieldhall.h"
#include "support/lanesets.h"
#include "support/plainpass.h"
#include "support/sampleroom.h"
#include "usr/edcutils.h"

#include "lib/platform.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>

namespace
{
constexpr double INF = std::numeric_limits<double>::infinity();

struct RUN {
    TZulMapInfo info;
    ZulPassMap map;

    explicit RUN(EmROOM &room, const ZulPassParams &params = ZulPassParams())
    {
        ZulRunPass(room, params, info, map);
    }
};

/// Parameters that a designer, or a fool, may state.
ZulPassParams AnyParams(CHANCE &chance)
{
    ZulPassParams params;
    params.height = chance.One(4) ? chance.Real(-2, 12) : chance.Real(0, 2);
    params.draft = !chance.One(12);
    params.fineScale = chance.One(2);
    if (chance.One(3))
        params.minInte = chance.Real(-50, 200);
    if (chance.One(3))
        params.maxInte = chance.Real(-50, 400);
    if (chance.One(2))
        params.airTemp = chance.One(8) ? chance.Real(-400, 3000) : chance.Real(-5, 30);
    return params;
}

std::vector<std::string> statusTexts;
void KeepStatus(const char *text, bool)
{
    statusTexts.push_back(text);
}

/// While it lives, the numbered texts are there and status texts are kept.
class TEXTS
{
public:
    TEXTS() : status(SetStatusSink(KeepStatus))
    {
        formerTexts = SetResTextSink(NULL);
        EdcUseResources();
        statusTexts.clear();
    }
    ~TEXTS()
    {
        SetStatusSink(status);
        SetResTextSink(formerTexts);
    }

private:
    StatusSink status;
    ResTextSink formerTexts;
};

/// A hall of 12 x 8 x 5 m with one model.
struct SMALLHALL : FIELDHALL {
    CHANCE chance{3};
    EmMODEL *model;

    SMALLHALL() : FIELDHALL(12, 8, 5), model(AddModel(FIELDTABLE(), chance)) {}
};
} // namespace

TEST(Pass, IsThatOfThePlainTwinOnRandomHalls)
{
    for (unsigned start = 1; start <= 120; ++start) {
        SCOPED_TRACE(start);
        CHANCE chance(start);
        auto hall = MakeFieldHall(start);
        ZulPassParams params = AnyParams(chance);
        TZulMapInfo info;
        ZulPassMap map;
        PlainRunPass(hall->room, params, info, map);
        for (const EmLANES *lanes : LaneSets()) {
            LANESINUSE inUse(lanes);
            RUN run(hall->room, params);
            EXPECT_EQ(DifferPass(run.info, run.map, info, map), "") << lanes->width << " points at a time";
        }
    }
}

TEST(Pass, ComparisonFindsOnePixelAndOneBit)
{
    SMALLHALL hall;
    hall.AddEmitter(hall.model, {6, 4, 4});
    RUN a(hall.room);
    RUN b(hall.room);
    ASSERT_TRUE(a.map.HasMap());
    ASSERT_EQ(DifferPass(a.info, a.map, b.info, b.map), "");
    b.info.spread = std::nextafter(b.info.spread, 1e9);
    EXPECT_NE(DifferPass(a.info, a.map, b.info, b.map), "");
    b.info = a.info;
    b.map.pixels.Row(40)[100] ^= 1;
    EXPECT_NE(DifferPass(a.info, a.map, b.info, b.map), "");
    EXPECT_NE(Checksum(a.info, a.map), Checksum(b.info, b.map));
}

TEST(Pass, InNarrowBandsIsTheSame)
{
    for (unsigned start : {3U, 8U, 21U, 34U}) {
        auto hall = MakeFieldHall(start);
        RUN whole(hall->room);
        for (long long samples : {1LL, 500LL, 3000LL}) {
            long long former = ZulSetPassBand(samples);
            RUN banded(hall->room);
            ZulSetPassBand(former);
            EXPECT_EQ(DifferPass(banded.info, banded.map, whole.info, whole.map), "") << samples;
        }
    }
}

TEST(Pass, OfAHallWithoutEmittersHasFiguresButNoMap)
{
    FIELDHALL hall(20, 12, 6);
    hall.room.Data()->constr[EM_CEILING].k = 1;
    hall.room.Data()->constr[EM_CEILING].tExt = -10;
    hall.room.Data()->runAirTemp = 15;
    RUN run(hall.room);
    EXPECT_EQ(run.info.minInte, 0);
    EXPECT_EQ(run.info.maxInte, 0);
    EXPECT_EQ(run.info.meanInte, 0);
    EXPECT_EQ(run.info.spread, 0);
    EXPECT_EQ(run.info.sumInte, 0);
    EXPECT_EQ(run.info.area, 240);
    EXPECT_EQ(run.info.volume, 1440);
    EXPECT_DOUBLE_EQ(run.info.loss, 240 * 25);
    EXPECT_EQ(run.map.lo, run.map.hi);
    EXPECT_FALSE(run.map.HasMap());
    EXPECT_EQ(run.map.raster.columns, 169);
    EXPECT_EQ(run.map.raster.rows, 101);
}

TEST(Pass, FillsTheFiguresOfTheRoom)
{
    SMALLHALL hall;
    hall.AddEmitter(hall.model, {6, 4, 4}, 0, 0, 12000);
    EmROOMDATA &data = *hall.room.Data();
    for (EmCONSTRUCTION &c : data.constr)
        c.k = 0.8;
    data.runAirTemp = 15;
    data.periodDays = 200;
    data.weekDays = 7;
    data.dayHours = 24;
    data.regulation = 1;
    data.fuelPrice = 0.5;
    ZulPassParams params;
    params.height = 1.25;
    RUN run(hall.room, params);
    double volume, area, emitters, airHeaters, loss, amount, cost;
    hall.room.VolumeAndArea(volume, area);
    hall.room.Balance(emitters, airHeaters, loss);
    hall.room.AnnualFuel(amount, cost);
    EXPECT_EQ(run.info.height, 1.25);
    EXPECT_EQ(run.info.volume, volume);
    EXPECT_EQ(run.info.area, area);
    EXPECT_EQ(run.info.emittPower, 12000);
    EXPECT_EQ(run.info.airhtPower, 0);
    EXPECT_EQ(run.info.loss, loss);
    EXPECT_EQ(run.info.yearFuel, amount);
    EXPECT_EQ(run.info.yearCost, cost);
    EXPECT_GT(cost, 0);
    EXPECT_EQ(run.info.maxFuel, hall.room.MaxFuelRate());
    EXPECT_EQ(run.info.maxAirTemp, hall.room.MaxAirTemp());
}

TEST(Pass, WritesTheFuelsUnitInMarkup)
{
    TEXTS texts;
    SMALLHALL hall;
    static const struct {
        int fuel;
        const char *unit;
    } cases[] = {{EM_NATURAL_GAS, "m^3^"}, {EM_PROPANE, "kg"}, {0, ""}, {7, ""}};
    for (const auto &c : cases) {
        hall.room.Data()->fuelType = c.fuel;
        EXPECT_STREQ(RUN(hall.room).info.fuelUnit, c.unit);
    }
}

TEST(Pass, HoldsAtTheReachableAirTemperatureUnlessOneIsEntered)
{
    SMALLHALL hall;
    hall.AddEmitter(hall.model, {6, 4, 4});
    hall.room.Data()->constr[EM_CEILING].k = 2;
    RUN open(hall.room);
    EXPECT_EQ(open.info.airTemp, open.info.maxAirTemp);
    double cold = hall.room.Data()->constr[EM_CEILING].qSurf;
    ZulPassParams params;
    params.airTemp = open.info.maxAirTemp + 30; // more than can be reached
    RUN entered(hall.room, params);
    EXPECT_EQ(entered.info.airTemp, *params.airTemp);
    EXPECT_EQ(entered.info.maxAirTemp, open.info.maxAirTemp);
    EXPECT_LT(hall.room.Data()->constr[EM_CEILING].qSurf, cold) << "the surfaces follow the air";
}

TEST(Pass, TakesItsScaleFromTheSamplesOrFromTheDesigner)
{
    SMALLHALL hall;
    hall.AddEmitter(hall.model, {2, 2, 4}); // the far end stays dark
    double most = RUN(hall.room).info.maxInte;
    static const double none = std::nan("");
    const struct {
        double min, max; // NaN: left empty
        double lo, hi;
        bool map;
    } cases[] = {
        {none, none, 0, most, true},     {10, none, 10, most, true},
        {none, 40, 0, 40, true},         {10, 40, 10, 40, true},
        {40, 40, 40, 40, false},         {41, 40, 41, 40, false},
        {most, none, most, most, false}, {2 * most, none, 2 * most, most, false},
        {none, 0, 0, 0, false},          {-INF, INF, -INF, INF, true},
    };
    for (const auto &c : cases) {
        ZulPassParams params;
        if (!std::isnan(c.min))
            params.minInte = c.min;
        if (!std::isnan(c.max))
            params.maxInte = c.max;
        RUN run(hall.room, params);
        EXPECT_EQ(run.map.lo, c.lo);
        EXPECT_EQ(run.map.hi, c.hi);
        EXPECT_EQ(run.map.HasMap(), c.map) << c.min << " to " << c.max;
        EXPECT_EQ(run.info.maxInte, most) << "the figures stay";
    }
}

TEST(Pass, WithALimitThatIsNoNumberHasNoMap)
{
    SMALLHALL hall;
    hall.AddEmitter(hall.model, {6, 4, 4});
    ZulPassParams params;
    params.maxInte = std::nan("");
    EXPECT_FALSE(RUN(hall.room, params).map.HasMap());
}

TEST(Pass, AboveTheEmittersSeesNothing)
{
    SMALLHALL hall;
    hall.AddEmitter(hall.model, {6, 4, 4});
    ZulPassParams params;
    params.height = 4.5;
    RUN run(hall.room, params);
    EXPECT_EQ(run.info.maxInte, 0);
    EXPECT_FALSE(run.map.HasMap());
}

TEST(Pass, WorksOnHallsOfOneRow)
{
    FIELDHALL hall(300, 1, 5);
    CHANCE chance(1);
    EmMODEL *model = hall.AddModel(FIELDTABLE(), chance);
    hall.AddEmitter(model, {150, 0.5, 4});
    for (bool draft : {false, true}) {
        ZulPassParams params;
        params.draft = draft;
        RUN run(hall.room, params);
        EXPECT_EQ(run.map.raster.rows, draft ? 1 : 2);
        EXPECT_TRUE(run.map.HasMap());
        TZulMapInfo info;
        ZulPassMap map;
        PlainRunPass(hall.room, params, info, map);
        EXPECT_EQ(DifferPass(run.info, run.map, info, map), "");
    }
}

TEST(Pass, WorksOnNarrowHallsOfManyRows)
{
    FIELDHALL hall(1, 200, 5);
    CHANCE chance(1);
    EmMODEL *model = hall.AddModel(FIELDTABLE(), chance);
    hall.AddEmitter(model, {0.5, 20, 4});
    hall.AddEmitter(model, {0.5, 170, 4}, 0.4, 0.2);
    long long former = ZulSetPassBand(1 << 18);
    RUN run(hall.room);
    ZulSetPassBand(former);
    EXPECT_EQ(run.map.raster.rows, 33601);
    TZulMapInfo info;
    ZulPassMap map;
    PlainRunPass(hall.room, ZulPassParams(), info, map);
    EXPECT_EQ(DifferPass(run.info, run.map, info, map), "");
}

TEST(Pass, OfAHallTooLargeForItsRasterIsOutOfMemoryAndHasNoMap)
{
    for (double width : {1e6, 1e300, INF, std::nan("")}) {
        FIELDHALL hall(1, width, 5);
        TZulMapInfo info;
        ZulPassMap map;
        map.pixels.Alloc(3, 3, 0);
        ZulRunPass(hall.room, ZulPassParams(), info, map);
        EXPECT_EQ(TakeFailure(), XALLOC) << width;
        EXPECT_FALSE(map.HasMap());
    }
}

TEST(Pass, ClearsWhatTheFormerOneFound)
{
    SMALLHALL hall;
    hall.AddEmitter(hall.model, {6, 4, 4});
    RUN run(hall.room);
    hall.RemoveEmitters();
    ZulRunPass(hall.room, ZulPassParams(), run.info, run.map);
    EXPECT_FALSE(run.map.HasMap());
    EXPECT_EQ(run.info.maxInte, 0);
    EXPECT_EQ(run.info.emittPower, 0);
}

TEST(Pass, ShowsThatItRunsAndClearsThatAtItsGoodEnd)
{
    TEXTS texts;
    SMALLHALL hall;
    RUN run(hall.room);
    EXPECT_EQ(statusTexts, (std::vector<std::string>{"Auswertung l\xE4uft . . .", ""}));
    FIELDHALL large(1, 1e6, 5);
    statusTexts.clear();
    RUN failed(large.room);
    EXPECT_EQ(TakeFailure(), XALLOC);
    EXPECT_EQ(statusTexts, (std::vector<std::string>{"Auswertung l\xE4uft . . ."})) << "a failure leaves it";
}

// 504 / 31.5 m and 16 / m are powers of two, so that mirrored points are mirrored to the last bit.
TEST(Pass, OfAMirroredHallIsTheMirroredMap)
{
    CHANCE chance(9);
    FIELDHALL hall(10.5, 8, 5);
    FIELDHALL acrossX(10.5, 8, 5);
    FIELDHALL acrossY(10.5, 8, 5);
    EmMODELINFO info;
    info.power = 10000;
    EmGRID *grid = NULL;
    EmMODEL model(info, &grid);
    grid->Alloc(6);
    for (int iz = 0; iz <= 6; ++iz) {
        grid->AllocLayer(iz, 5, 5);
        for (int ix = 0; ix <= 5; ++ix)
            for (int iy = 0; iy <= 5; ++iy) {
                double v = ix == 5 || iy == 5 || iz == 6 ? 0 : chance.Int(0, 500);
                grid->Set(ix, iy, iz, v);
                grid->Set(-ix, iy, iz, v);
            }
    }
    for (AgPOINT p : {AgPOINT(2.5, 1.25, 4), AgPOINT(7, 6.5, 3.5), AgPOINT(11, 4, 4.25)}) {
        hall.AddEmitter(&model, p);
        acrossX.AddEmitter(&model, {10.5 - p.x, p.y, p.z});
        acrossY.AddEmitter(&model, {p.x, 8 - p.y, p.z});
    }
    RUN a(hall.room);
    RUN x(acrossX.room);
    RUN y(acrossY.room);
    ASSERT_EQ(a.map.raster.rows, 129);
    for (const RUN *mirrored : {&x, &y}) {
        EXPECT_EQ(mirrored->info.minInte, a.info.minInte);
        EXPECT_EQ(mirrored->info.maxInte, a.info.maxInte);
        EXPECT_NEAR(mirrored->info.sumInte, a.info.sumInte, 1e-9 * a.info.sumInte);
        EXPECT_NEAR(mirrored->info.spread, a.info.spread, 1e-9);
        EXPECT_EQ(mirrored->map.pixels.Histogram(12), a.map.pixels.Histogram(12));
    }
    for (int j = 0; j < 129; ++j)
        for (int i = 0; i < 169; ++i) {
            ASSERT_EQ(a.map.pixels.Row(j)[i], x.map.pixels.Row(j)[168 - i]);
            ASSERT_EQ(a.map.pixels.Row(j)[i], y.map.pixels.Row(128 - j)[i]);
        }
}

TEST(Pass, LessALimitPaintsTheSamePixelsAsTheIndexTells)
{
    SMALLHALL hall;
    hall.AddEmitter(hall.model, {6, 4, 4});
    ZulPassParams params;
    params.minInte = 20;
    RUN run(hall.room, params);
    const EmRASTER &r = run.map.raster;
    std::vector<long long> hist(12, 0);
    for (int j = 0; j < r.rows; ++j)
        for (int i = 0; i < r.columns; ++i) {
            int index = ZulColorIndex(hall.room.Irradiation({r.X(i), r.Y(j), 0}), run.map.lo, run.map.hi, 12);
            ASSERT_EQ(run.map.pixels.Row(j)[i], index);
            ++hist[index];
        }
    EXPECT_EQ(run.map.pixels.Histogram(12), hist);
    EXPECT_GT(hist[0], 0);
    EXPECT_EQ(hist[11], 0) << "the largest sample has the last colour but one";
    EXPECT_GT(hist[10], 0);
}

TEST(ColorIndex, RoundsUpAndIsLimitedToTheScale)
{
    const double nan = std::nan("");
    const double above = std::nextafter(1.0, 2.0);
    static const struct {
        double v, lo, hi;
        int colors, index;
    } cases[] = {
        {0, 0, 100, 12, 0},
        {0.001, 0, 100, 12, 1},
        {10, 0, 100, 12, 1},
        {10.001, 0, 100, 12, 2},
        {100, 0, 100, 12, 10},
        {100.001, 0, 100, 12, 11},
        {1e300, 0, 100, 12, 11},
        {-1, 0, 100, 12, 0},
        {-1e300, 0, 100, 12, 0},
        {INF, 0, 100, 12, 11},
        {-INF, 0, 100, 12, 0},
        {nan, 0, 100, 12, 0},
        {50, 0, 100, 3, 1},
        {100.5, 0, 100, 3, 2},
        {0, 0, 100, 3, 0},
        {1, 1, above, 12, 0},
        {above, 1, above, 12, 10},
        {2, 1, above, 12, 11},
        {1e300, 1, above, 12, 11},
        {-1e300, 1, above, 12, 0},
        {5, 0, 5e-324, 12, 11},
        {0, 0, 5e-324, 12, 0},
        {5, -INF, INF, 12, 0},
        {5, 0, INF, 12, 0},
        {1e308, -1e308, 1e308, 12, 0},
    };
    for (const auto &c : cases)
        EXPECT_EQ(ZulColorIndex(c.v, c.lo, c.hi, c.colors), c.index)
            << c.v << " from " << c.lo << " to " << c.hi << " of " << c.colors;
}

TEST(Pixels, StartInOneColorAndCountTheirColors)
{
    ZulPixels pixels;
    EXPECT_TRUE(pixels.IsEmpty());
    EXPECT_EQ(pixels.Histogram(3), (std::vector<long long>{0, 0, 0}));
    pixels.Alloc(4, 3, 2);
    pixels.Row(1)[3] = 0;
    EXPECT_EQ(pixels.Histogram(3), (std::vector<long long>{1, 0, 11}));
    pixels.Free();
    EXPECT_TRUE(pixels.IsEmpty());
    EXPECT_EQ(pixels.Width(), 0);
}

TEST(Pass, OutOfMemoryLeavesNoMapAndNoLeak)
{
    SMALLHALL hall;
    hall.AddEmitter(hall.model, {6, 4, 4});
    hall.room.Emitters()->Prepare();
    long before = 0;
    TZulMapInfo info;
    ZulPassMap map;
    int swept = SweepFaults(
        [&] {
            map.pixels.Free();
            before = LiveBlocks();
        },
        [&] { ZulRunPass(hall.room, ZulPassParams(), info, map); },
        [&](const FaultRun &run) {
            EXPECT_EQ(run.code, run.fired ? XALLOC : XNULL);
            EXPECT_EQ(map.HasMap(), run.fired == 0);
            EXPECT_EQ(LiveBlocks() - before, run.fired == 0 ? 1 : 0) << "only the map itself";
        });
    EXPECT_GT(swept, 6);
    RUN whole(hall.room);
    EXPECT_TRUE(whole.map.HasMap()) << "the room is as good as before";
}
