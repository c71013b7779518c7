#include "support/fault.h"
#include "support/fieldhall.h"
#include "support/lanesets.h"
#include "support/plainpass.h"
#include "support/sampleroom.h"
#include "usr/edcutils.h"
#include "usr/zulhygmaps.h"

#include "lib/platform.h"

#include <gtest/gtest.h>

#include <cmath>

namespace
{
/// A plan with a map whatever its samples are.
ZulPassParams AlwaysMap()
{
    ZulPassParams params;
    params.minInte = 0;
    params.maxInte = 100;
    return params;
}

struct JUDGED {
    TZulMapInfo info;
    ZulPassMap map;
    ZulHygieneMaps maps;

    explicit JUDGED(EmROOM &room, const ZulPassParams &params = AlwaysMap())
    {
        ZulRunPass(room, params, info, map);
        ZulJudgePlan(room, info, map, maps);
    }
};

std::vector<long long> Hist(const ZulCriterionMap &map)
{
    return map.pixels.Histogram(3);
}

/// A hall of 12 x 8 x 5 m at 20 degrees with one emitter.
struct SMALLHALL : FIELDHALL {
    CHANCE chance{3};
    EmMODEL *model;
    EmEMITTER *emitter;
    ZulPassParams params = AlwaysMap();

    SMALLHALL()
        : FIELDHALL(12, 8, 5), model(AddModel(FIELDTABLE(), chance)), emitter(AddEmitter(model, {4, 4, 4}))
    {
        params.airTemp = 20;
        room.Data()->workClass = 2;
    }
};

std::vector<std::string> statusTexts;
} // namespace

TEST(Judging, IsThatOfThePlainTwinOnRandomHalls)
{
    int mixed = 0;
    for (unsigned start = 1; start <= 100; ++start) {
        SCOPED_TRACE(start);
        CHANCE chance(start);
        auto hall = MakeFieldHall(start);
        ZulPassParams params = AlwaysMap();
        params.draft = !chance.One(15);
        double low = 0;
        double high = 0;
        WorkLimits(hall->room.Data()->workClass, low, high);
        params.airTemp = chance.One(8) ? chance.Real(-400, 3000) : chance.Real(low - 5, low + 2);
        TZulMapInfo info;
        ZulPassMap map;
        ZulRunPass(hall->room, params, info, map);
        ZulHygieneMaps plain;
        PlainJudgePlan(hall->room, info, map, plain);
        for (const EmLANES *lanes : LaneSets()) {
            LANESINUSE inUse(lanes);
            ZulHygieneMaps maps;
            ZulJudgePlan(hall->room, info, map, maps);
            EXPECT_EQ(DifferHygiene(maps, plain), "") << lanes->width << " points at a time";
        }
        mixed += plain.passed != 0 && plain.passed != plain.total;
    }
    EXPECT_GT(mixed, 15) << "too few plans with both kinds of points";
}

// Limits met exactly, or missed by less than a square root is good for: the guard must send these to the
// powers.
TEST(Judging, IsThatOfThePlainTwinWhereTheAirStandsAtALimit)
{
    static const double limits[] = {8, 10, 14, 16, 18, 20, 22, 24, 26};
    for (double limit : limits)
        for (double off : {0.0, 1e-15, -4e-15, 1e-12, -1e-9, 1e-6, -1e-6, 2e-6})
            for (int workClass : {1, 2, 4}) {
                SMALLHALL hall;
                hall.room.Data()->workClass = workClass;
                hall.params.airTemp = limit - 0.2 * 0.3 + off;
                TZulMapInfo info;
                ZulPassMap map;
                ZulRunPass(hall.room, hall.params, info, map);
                ZulHygieneMaps plain;
                ZulHygieneMaps maps;
                PlainJudgePlan(hall.room, info, map, plain);
                ZulJudgePlan(hall.room, info, map, maps);
                ASSERT_EQ(DifferHygiene(maps, plain), "") << limit << " and " << off << " class " << workClass;
            }
}

// The head's intensity of points that no emitter reaches is the ceiling's own: bring that to a limit.
TEST(Judging, IsThatOfThePlainTwinWhereTheCeilingMeetsALimit)
{
    for (double flux : {200.0, 250.0, 400.0, 2000.0, -500.0, 1e7, 1e300}) {
        SMALLHALL hall;
        TZulMapInfo info;
        ZulPassMap map;
        ZulRunPass(hall.room, hall.params, info, map);
        hall.room.Data()->constr[EM_CEILING].qSurf = flux;
        ZulHygieneMaps plain;
        ZulHygieneMaps maps;
        PlainJudgePlan(hall.room, info, map, plain);
        ZulJudgePlan(hall.room, info, map, maps);
        EXPECT_EQ(DifferHygiene(maps, plain), "") << flux;
    }
}

TEST(Judging, IsThatOfThePlainTwinOnRastersOfOneRowAndOfManyRows)
{
    static const double sides[][2] = {{300, 1}, {1000, 5.9}, {1, 120}, {0.5, 0}};
    for (const auto &side : sides) {
        FIELDHALL hall(side[0], side[1], 5);
        CHANCE chance(1);
        EmMODEL *model = hall.AddModel(FIELDTABLE(), chance);
        hall.AddEmitter(model, {side[0] / 2, side[1] / 2, 4}, 0.1);
        ZulPassParams params = AlwaysMap();
        params.airTemp = 19;
        hall.room.Data()->workClass = 2;
        JUDGED judged(hall.room, params);
        ZulHygieneMaps plain;
        PlainJudgePlan(hall.room, judged.info, judged.map, plain);
        EXPECT_EQ(DifferHygiene(judged.maps, plain), "") << side[0] << " x " << side[1];
    }
}

TEST(Judging, ComparisonFindsOnePixel)
{
    SMALLHALL hall;
    JUDGED a(hall.room, hall.params);
    JUDGED b(hall.room, hall.params);
    ASSERT_EQ(DifferHygiene(a.maps, b.maps), "");
    for (ZulPixels *pixels :
         {&b.maps.headTemp.pixels, &b.maps.diffTemp.pixels, &b.maps.headInte.pixels, &b.maps.summary}) {
        pixels->Row(10)[20] ^= 1;
        EXPECT_NE(DifferHygiene(a.maps, b.maps), "");
        EXPECT_NE(Checksum(a.maps), Checksum(b.maps));
        pixels->Row(10)[20] ^= 1;
    }
    ++b.maps.passed;
    EXPECT_NE(DifferHygiene(a.maps, b.maps), "");
}

TEST(Judging, WithoutAMapGivesNone)
{
    SMALLHALL hall;
    ZulPassParams params;
    params.minInte = params.maxInte = 5;
    JUDGED judged(hall.room, params);
    EXPECT_FALSE(judged.maps.HasMaps());
    EXPECT_EQ(judged.maps.total, 0);
    EXPECT_TRUE(judged.maps.headTemp.pixels.IsEmpty());
    JUDGED former(hall.room);
    ASSERT_TRUE(former.maps.HasMaps());
    ZulJudgePlan(hall.room, judged.info, judged.map, former.maps);
    EXPECT_FALSE(former.maps.HasMaps()) << "what an earlier run found is gone";
}

TEST(Judging, GivesTheBandsOfTheThreeCriteria)
{
    SMALLHALL hall;
    JUDGED judged(hall.room, hall.params);
    EXPECT_EQ(judged.maps.headTemp.band.min, 18);
    EXPECT_EQ(judged.maps.headTemp.band.max, 22);
    EXPECT_EQ(judged.maps.headTemp.band.tol, 2);
    EXPECT_EQ(judged.maps.diffTemp.band.min, -9);
    EXPECT_EQ(judged.maps.diffTemp.band.max, 3);
    EXPECT_EQ(judged.maps.diffTemp.band.tol, 1);
    EXPECT_EQ(judged.maps.headInte.band.min, -DBL_MAX);
    EXPECT_EQ(judged.maps.headInte.band.max, 200);
    EXPECT_EQ(judged.maps.headInte.band.tol, 50);
}

TEST(Judging, CountsAPointThatFailsSeveralCriteriaOnce)
{
    SMALLHALL hall;
    hall.emitter->power = 200000;
    JUDGED judged(hall.room, hall.params);
    const ZulHygieneMaps &maps = judged.maps;
    long long failing = 0;
    long long twice = 0;
    for (int j = 0; j < maps.summary.Height(); ++j)
        for (int i = 0; i < maps.summary.Width(); ++i) {
            int fails = (maps.headTemp.pixels.Row(j)[i] != 0) + (maps.diffTemp.pixels.Row(j)[i] != 0) +
                        (maps.headInte.pixels.Row(j)[i] != 0);
            failing += fails > 0;
            twice += fails > 1;
            ASSERT_EQ(maps.summary.Row(j)[i], fails > 0 ? 2 : 0);
        }
    EXPECT_GT(twice, 0);
    EXPECT_GT(maps.passed, 0);
    EXPECT_EQ(maps.total, maps.summary.Width() * maps.summary.Height());
    EXPECT_EQ(maps.passed, maps.total - failing);
    EXPECT_EQ(maps.summary.Histogram(3), (std::vector<long long>{maps.passed, 0, failing}));
    EXPECT_EQ(maps.PassedShare(), static_cast<double>(maps.passed) / static_cast<double>(maps.total) * 100);
}

TEST(Judging, OfAPlanWhollyInTheToleranceHasNoPassingPoint)
{
    FIELDHALL hall(12, 8, 5);
    hall.room.Data()->workClass = 2; // 18 to 22
    ZulPassParams params = AlwaysMap();
    params.airTemp = 17;
    JUDGED judged(hall.room, params);
    EXPECT_EQ(Hist(judged.maps.headTemp), (std::vector<long long>{0, judged.maps.total, 0}));
    EXPECT_EQ(judged.maps.passed, 0);
    EXPECT_EQ(judged.maps.PassedShare(), 0);
}

TEST(Judging, WithoutEmittersFollowsTheAirAlone)
{
    static const struct {
        double airTemp;
        int headTemp;
    } cases[] = {{15, 2}, {17, 1}, {20, 0}, {23, 1}, {25, 2}};
    for (const auto &c : cases) {
        FIELDHALL hall(12, 8, 5);
        hall.room.Data()->workClass = 2;
        ZulPassParams params = AlwaysMap();
        params.airTemp = c.airTemp;
        JUDGED judged(hall.room, params);
        EXPECT_EQ(Hist(judged.maps.headTemp)[c.headTemp], judged.maps.total) << c.airTemp;
        EXPECT_EQ(Hist(judged.maps.diffTemp)[0], judged.maps.total);
        EXPECT_EQ(Hist(judged.maps.headInte)[0], judged.maps.total);
        EXPECT_EQ(judged.maps.passed, c.headTemp == 0 ? judged.maps.total : 0);
    }
}

TEST(Judging, OfTheTwoHeaviestClassesIsTheSame)
{
    SMALLHALL hall;
    hall.params.airTemp = 11;
    hall.room.Data()->workClass = 4;
    JUDGED four(hall.room, hall.params);
    hall.room.Data()->workClass = 5;
    JUDGED five(hall.room, hall.params);
    EXPECT_EQ(DifferHygiene(four.maps, five.maps), "");
}

TEST(Judging, WithoutAWorkingClassTakesTheWidestLimits)
{
    SMALLHALL hall;
    hall.room.Data()->workClass = 0;
    JUDGED judged(hall.room, hall.params);
    EXPECT_TRUE(judged.maps.HasMaps());
    EXPECT_EQ(judged.maps.headTemp.band.min, 10);
    EXPECT_EQ(judged.maps.headTemp.band.max, 24);
}

TEST(Judging, OfASittingPersonIsTakenAtItsOwnHeight)
{
    SMALLHALL hall;
    hall.emitter->power = 200000;
    JUDGED standing(hall.room, hall.params);
    hall.room.Data()->position = EM_SITTING;
    JUDGED sitting(hall.room, hall.params);
    EXPECT_NE(Hist(standing.maps.headTemp), Hist(sitting.maps.headTemp));
    EXPECT_NE(Hist(standing.maps.diffTemp), Hist(sitting.maps.diffTemp));
    EXPECT_NE(Hist(standing.maps.headInte), Hist(sitting.maps.headInte));
    double step = 8.0 / (sitting.map.raster.rows - 1);
    for (int i = 0; i < 169; ++i) {
        double v = hall.room.Irradiation({i * step, 0, 1.1}) +
                   hall.room.Surfaces()->Ceiling()->Radiation({i * step, 0, 1.1});
        ASSERT_EQ(sitting.maps.headInte.pixels.Row(sitting.map.raster.rows - 1)[i],
                  sitting.maps.headInte.band.Classify(v));
    }
}

TEST(Judging, OfColdHeadsHasNoLowerLimitOfIrradiation)
{
    SMALLHALL hall;
    hall.room.Data()->constr[EM_CEILING].k = 8;
    hall.room.Data()->constr[EM_CEILING].tExt = -40;
    hall.emitter->power = 0;
    JUDGED judged(hall.room, hall.params);
    ASSERT_LT(HeadInte(hall.room, 6, 4), -50);
    EXPECT_EQ(Hist(judged.maps.headInte)[0], judged.maps.total);
}

TEST(Judging, OfWhatIsNoNumberIsTheWorstClass)
{
    SMALLHALL hall;
    hall.emitter->power = std::nan("");
    JUDGED judged(hall.room, hall.params);
    EXPECT_EQ(Hist(judged.maps.headTemp)[2], judged.maps.total);
    EXPECT_EQ(Hist(judged.maps.diffTemp)[2], judged.maps.total);
    EXPECT_EQ(Hist(judged.maps.headInte)[2], judged.maps.total);
    EXPECT_EQ(judged.maps.passed, 0);
}

TEST(Judging, StandsOnTheRasterOfTheWidth)
{
    FIELDHALL hall(50, 17, 5); // 57 rows, whose step by the width is longer than the one by the length
    CHANCE chance(2);
    EmMODEL *model = hall.AddModel(FIELDTABLE(), chance);
    hall.AddEmitter(model, {40, 9, 4}, 0, 0, 60000);
    ZulPassParams params = AlwaysMap();
    params.airTemp = 19;
    hall.room.Data()->workClass = 2;
    JUDGED judged(hall.room, params);
    double step = 17.0 / (judged.map.raster.rows - 1);
    ASSERT_NE(step, judged.map.raster.step);
    for (int j = 0; j < judged.map.raster.rows; j += 3)
        for (int i = 0; i < 169; ++i) {
            double v = HeadTemp(hall.room, judged.info, i * step, (judged.map.raster.rows - 1 - j) * step);
            ASSERT_EQ(judged.maps.headTemp.pixels.Row(j)[i], judged.maps.headTemp.band.Classify(v));
        }
}

TEST(Judging, ShowsThatItRunsAndClearsThatAtItsGoodEnd)
{
    ResTextSink former = SetResTextSink(NULL);
    EdcUseResources();
    SMALLHALL hall;
    JUDGED judged(hall.room, hall.params);
    statusTexts.clear();
    StatusSink status = SetStatusSink([](const char *text, bool) { statusTexts.push_back(text); });
    ZulJudgePlan(hall.room, judged.info, judged.map, judged.maps);
    SetStatusSink(status);
    SetResTextSink(former);
    EXPECT_EQ(statusTexts, (std::vector<std::string>{"Hygienische Pr\xFC"
                                                     "fung l\xE4uft . . .",
                                                     ""}));
}

TEST(Judging, OutOfMemoryLeavesNoMaps)
{
    SMALLHALL hall;
    JUDGED judged(hall.room, hall.params);
    ZulHygieneMaps maps;
    int swept = SweepFaults([&] { ZulJudgePlan(hall.room, judged.info, judged.map, maps); },
                            [&](const FaultRun &run) {
                                EXPECT_EQ(run.code, run.fired ? XALLOC : XNULL);
                                EXPECT_EQ(maps.HasMaps(), run.fired == 0);
                                EXPECT_EQ(maps.headInte.pixels.IsEmpty(), run.fired != 0);
                            });
    EXPECT_GT(swept, 8);
}
