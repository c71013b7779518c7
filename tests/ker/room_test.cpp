#include "hall.h"
#include "lib/xfail.h"
#include "support/child.h"
#include "support/fault.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <optional>
#include <string>

TEST(Box, SidesAreNeverNegative)
{
    EmBOX box{{5, 1, 2}, {-5, 4, 0}};
    EXPECT_EQ(box.Length(), 10);
    EXPECT_EQ(box.Width(), 3);
    EXPECT_EQ(box.Height(), 2);
}

TEST(Box, UnionHoldsBothWhicheverWayRoundTheyStand)
{
    const EmBOX straight{{0, -1, 2}, {4, 3, 5}};
    const EmBOX other{{2, -6, 3}, {9, 1, 4}};
    const EmBOX turned[] = {
        {{9, 1, 4}, {2, -6, 3}}, {{2, 1, 4}, {9, -6, 3}}, {{9, -6, 4}, {2, 1, 3}}, {{2, -6, 3}, {9, 1, 4}}};
    for (const EmBOX &box : turned) {
        for (const EmBOX &both : {Union(straight, box), Union(box, straight)}) {
            EXPECT_EQ(both.min, AgPOINT(0, -6, 2));
            EXPECT_EQ(both.max, AgPOINT(9, 3, 5));
        }
    }
    EXPECT_EQ(Union(EmBOX{{3, 2, 1}, {1, 2, 3}}, EmBOX{{2, 2, 2}, {2, 2, 2}}).min, AgPOINT(1, 2, 1));
    EXPECT_EQ(Union(other, other).max, other.max);
}

TEST(Room, StartsWithTheDefaultsOfANewHall)
{
    HALL hall(20, 12, 6);
    const EmROOMDATA *data = hall.Data();
    for (const EmCONSTRUCTION &c : data->constr) {
        EXPECT_EQ(c.alpha, 8.0);
        for (double zero : {c.k, c.upperArea, c.lowerArea, c.tExt, c.tSurf, c.qSurf})
            EXPECT_EQ(zero, 0);
    }
    for (double zero : {data->airChange, data->airTemp, data->dayHours, data->meanOutTemp, data->designOutTemp,
                        data->runAirTemp, data->reducedAirTemp, data->resultTemp, data->regulation,
                        data->fuelPrice, data->techGain})
        EXPECT_EQ(zero, 0);
    for (int32_t zero : {data->periodDays, data->weekDays, data->workClass})
        EXPECT_EQ(zero, 0);
    EXPECT_EQ(data->fuelType, 1);
    EXPECT_EQ(data->position, 1);
    EXPECT_EQ(hall.Emitters()->Count(), 0);
    EXPECT_EQ(hall.AirHeaters()->Count(), 0);
    EXPECT_EQ(hall.Zones()->Count(), 0);
    EXPECT_EQ(hall.Surfaces()->Count(), 6);
    EXPECT_EQ(hall.Box().min, AgE0);
    EXPECT_EQ(hall.Box().max, AgPOINT(20, 12, 6));
}

TEST(Room, TakesHeadsAndDateAndLeavesTheTextsEmpty)
{
    EmROOM room(1, 1, 1, "Einleitung", "Schluss", 20261121);
    EXPECT_EQ(room.Article()->level, 1);
    EXPECT_EQ(room.Article()->reserved, 0);
    EXPECT_STREQ(room.Article()->head, "Einleitung");
    EXPECT_STREQ(room.Article()->text, "");
    EXPECT_STREQ(room.Conclusion()->head, "Schluss");
    EXPECT_STREQ(room.Conclusion()->text, "");
    EXPECT_STREQ(room.Conclusion()->author, "");
    EXPECT_EQ(room.Conclusion()->date, 20261121);
}

TEST(Room, CutsHeadsThatAreTooLong)
{
    const std::string head(300, 'x');
    EmROOM room(1, 1, 1, head.c_str(), head.c_str(), 20261121);
    EXPECT_EQ(std::strlen(room.Article()->head), 255u);
    EXPECT_EQ(std::strlen(room.Conclusion()->head), 255u);
}

TEST(Room, AConclusionWithoutHeadIsAFaultOfTheProgram)
{
    EXPECT_TRUE(AbortsOnAssertion("head != NULL", "ker/emroom.cpp", [] { EmCONCLUSION(NULL, 20261121); }));
}

TEST(Room, BuiltWhileAFailureIsPendingHasNoSurfaces)
{
    XRaise(XALLOC, "elsewhere", 1);
    HALL hall(20, 12, 6);
    EXPECT_EQ(hall.Surfaces()->Count(), 0);
    EXPECT_EQ(xCode, XALLOC);
    xCode = XNULL;
}

TEST(Room, ThatFindsNoMemoryForItsSurfacesHasNone)
{
    std::optional<HALL> hall;
    long blocks = 0;
    auto build = [&] {
        blocks = LiveBlocks();
        hall.emplace(20, 12, 6);
    };
    const int faults = SweepFaults([&] { hall.reset(); }, build,
                                   [&](const FaultRun &run) {
                                       EXPECT_EQ(run.code, run.fired ? XALLOC : XNULL);
                                       EXPECT_EQ(hall->Surfaces()->Count(), run.fired ? 0 : 6);
                                       hall.reset();
                                       EXPECT_EQ(LiveBlocks(), blocks);
                                   });
    EXPECT_EQ(faults, 12); // six surfaces, each refused once and from then on
}

TEST(Room, OfNoSizeHasSixSurfacesAndZeroFigures)
{
    HALL hall(0, 0, 0);
    hall.Surfaces()->Prepare();
    EXPECT_EQ(hall.Surfaces()->Count(), 6);
    EXPECT_EQ(hall.MaxAirTemp(), 0);
}

TEST(Irradiation, IsTheSumOverTheEmittersInTheirOrder)
{
    HALL hall(20, 12, 6);
    EmMODEL *model = hall.Model(0.6);
    CHANCE dice(7);
    for (int i = 0; i < 9; ++i) {
        EmEMITTER *emitter = hall.Hang(model, {dice.Real(2, 8), dice.Real(2, 8), 4}, dice.Real(500, 3000));
        emitter->rotation = dice.Real(-3, 3);
    }
    hall.Hang(NULL, {5, 5, 4}, 5000);
    hall.Emitters()->Prepare();
    double highest = 0;
    for (int i = 0; i < 200; ++i) {
        const AgPOINT p(dice.Real(0, 10), dice.Real(0, 10), dice.Real(0, 4));
        double sum = 0;
        for (EmEMITTER *e = hall.Emitters()->First(); e; e = EmEMITTERSET::Next(e))
            sum += e->Irradiation(p);
        EXPECT_EQ(hall.Irradiation(p), sum);
        highest = std::max(highest, sum);
    }
    EXPECT_GT(highest, 100);
}

TEST(Irradiation, IsNothingAboveTheEmittersAndWithoutThem)
{
    HALL hall(20, 12, 6);
    EXPECT_EQ(hall.Irradiation({5, 5, 1}), 0);
    hall.Hang(hall.Model(0.6), {5, 5, 4}, 2000);
    hall.Emitters()->Prepare();
    EXPECT_GT(hall.Irradiation({5, 5, 3.9}), 0);
    EXPECT_EQ(hall.Irradiation({5, 5, 4.1}), 0);
}

TEST(Irradiation, DoesNotSeeTheSurfacesOfTheHall)
{
    HALL hall(20, 12, 6);
    hall.Hang(hall.Model(0.6), {5, 5, 4}, 2000);
    hall.Emitters()->Prepare();
    const double before = hall.Irradiation({5, 5, 1});
    hall.SetConstruction(EM_CEILING, 3, -20);
    hall.Open(WALL_A, {4, 2}, 2, 2);
    hall.Surfaces()->Prepare();
    hall.Surfaces()->UpdateTemps(20);
    EXPECT_EQ(hall.Irradiation({5, 5, 1}), before);
}

TEST(OperativeTemp, WithoutRadiationIsThatOfTheAir)
{
    HALL hall(1, 1, 1);
    for (double t : {-40.0, -0.3, 0.0, 10.0, 18.5, 24.0, 90.0})
        EXPECT_NEAR(hall.OperativeTemp(0, t), t, 1e-12 * 400);
}

TEST(OperativeTemp, IsThreeQuartersAirAndOneQuarterRadiant)
{
    HALL hall(1, 1, 1);
    CHANCE dice(11);
    for (int i = 0; i < 500; ++i) {
        const double t = dice.Real(-20, 40);
        const double intensity = dice.Real(-100, 1000);
        const double radiant = 4 * hall.OperativeTemp(intensity, t) - 3 * t;
        // The black-body flux of the radiant temperature exceeds that of the air by the intensity.
        EXPECT_NEAR(5.6687e-08 * (std::pow(radiant + 273.15, 4) - std::pow(t + 273.15, 4)), intensity, 1e-8);
    }
}

TEST(OperativeTemp, RisesWithIntensityAndWithTheAir)
{
    HALL hall(1, 1, 1);
    for (double t = -30; t < 60; t += 3) {
        for (double intensity = -150; intensity < 2000; intensity += 50) {
            EXPECT_LT(hall.OperativeTemp(intensity, t), hall.OperativeTemp(intensity + 50, t));
            EXPECT_LT(hall.OperativeTemp(intensity, t), hall.OperativeTemp(intensity, t + 3));
        }
    }
}

TEST(OperativeTemp, IsNoNumberWhereTheRadiationWouldBeNegative)
{
    HALL hall(1, 1, 1);
    EXPECT_TRUE(std::isnan(hall.OperativeTemp(-1000, 0)));
}

// The fourth root of 100 / 5.6687e-8 + 293.15^4 is 309.275920 K.
TEST(OperativeTemp, HasTheValueOfAWorkedExample)
{
    HALL hall(1, 1, 1);
    EXPECT_NEAR(hall.OperativeTemp(100, 20), 24.031479943315, 1e-11);
}
