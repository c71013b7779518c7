#include "hall.h"
#include "ker/emfield.h"
#include "ker/emhygiene.h"
#include "lib/platform.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <limits>
#include <string>

namespace
{
constexpr double INF = std::numeric_limits<double>::infinity();

double Above(double v)
{
    return std::nextafter(v, INF);
}

double Below(double v)
{
    return std::nextafter(v, -INF);
}

/// Numbered texts that tell their number.
const char *NumberAsText(int id)
{
    static std::string text;
    text = std::to_string(id);
    return text.c_str();
}

class Hygiene : public testing::Test
{
protected:
    void SetUp() override { former = SetResTextSink(NumberAsText); }
    void TearDown() override { SetResTextSink(former); }

private:
    ResTextSink former = NULL;
};
} // namespace

TEST_F(Hygiene, EachWorkClassHasItsNameEnergyAndLimits)
{
    const struct {
        int workClass;
        const char *name, *energy;
        double low, high;
    } cases[] = {
        {0, "20510", "", 10, 24},
        {1, "4270", "0 - 80", 20, 24},
        {2, "4271", "81 - 105", 18, 22},
        {3, "4272", "106 - 130", 14, 18},
        {4, "4273", "131 - 160", 10, 14},
        {5, "4274", "161 - 200", 10, 14},
        {6, "", "", 10, 24},
        {-1, "", "", 10, 24},
        {INT_MAX, "", "", 10, 24},
        {INT_MIN, "", "", 10, 24},
    };
    for (const auto &row : cases) {
        EXPECT_STREQ(WorkName(row.workClass), row.name) << row.workClass;
        EXPECT_STREQ(WorkEnergy(row.workClass), row.energy) << row.workClass;
        double low = 0, high = 0;
        WorkLimits(row.workClass, low, high);
        EXPECT_EQ(low, row.low) << row.workClass;
        EXPECT_EQ(high, row.high) << row.workClass;
    }
}

TEST_F(Hygiene, PositionsAndFuelsHaveTheirNames)
{
    const struct {
        int number;
        const char *position, *fuel, *unit, *markup;
        double head;
    } cases[] = {
        {1, "4280", "4250", "4261", "4262", 1.7},
        {2, "4281", "4251", "4260", "4260", 1.1},
        {0, "", "", "", "", 1.7},
        {3, "", "", "", "", 1.7},
        {INT_MAX, "", "", "", "", 1.7},
        {INT_MIN, "", "", "", "", 1.7},
    };
    for (const auto &row : cases) {
        EXPECT_STREQ(PositionName(row.number), row.position) << row.number;
        EXPECT_STREQ(FuelName(row.number), row.fuel) << row.number;
        EXPECT_STREQ(FuelUnit(row.number, false), row.unit) << row.number;
        EXPECT_STREQ(FuelUnit(row.number, true), row.markup) << row.number;
        EXPECT_EQ(HeadHeight(row.number), row.head) << row.number;
    }
    EXPECT_EQ(EM_ANKLE_HEIGHT, 0.15);
}

TEST(Criterion, HeadTemperatureHasTheClassesOfItsLimits)
{
    const struct {
        int workClass;
        double low, high;
    } cases[] = {{0, 10, 24}, {1, 20, 24}, {2, 18, 22}, {3, 14, 18}, {4, 10, 14}, {5, 10, 14}, {6, 10, 24}};
    for (const auto &row : cases) {
        const EmCRITERION c = HeadTempCriterion(row.workClass);
        EXPECT_EQ(c.Classify((row.low + row.high) / 2), 0) << row.workClass;
        EXPECT_EQ(c.Classify(row.low), 0) << row.workClass;
        EXPECT_EQ(c.Classify(row.high), 0) << row.workClass;
        EXPECT_EQ(c.Classify(Below(row.low)), 1) << row.workClass;
        EXPECT_EQ(c.Classify(Above(row.high)), 1) << row.workClass;
        EXPECT_EQ(c.Classify(row.low - 2), 1) << row.workClass;
        EXPECT_EQ(c.Classify(row.high + 2), 1) << row.workClass;
        EXPECT_EQ(c.Classify(Below(row.low - 2)), 2) << row.workClass;
        EXPECT_EQ(c.Classify(Above(row.high + 2)), 2) << row.workClass;
    }
}

TEST(Criterion, DifferenceOfHeadAndAnkleLiesBetweenMinusNineAndThree)
{
    const struct {
        double v;
        int expected;
    } cases[] = {
        {0, 0}, {-9, 0},   {3, 0},          {Below(-9), 1}, {Above(3), 1}, {-10, 1},
        {4, 1}, {-100, 2}, {Below(-10), 2}, {Above(4), 2},  {100, 2},
    };
    for (const auto &row : cases)
        EXPECT_EQ(DiffTempCriterion().Classify(row.v), row.expected) << row.v;
}

TEST(Criterion, HeadIrradiationHasNoLowerLimit)
{
    const struct {
        double v;
        int expected;
    } cases[] = {
        {-1, 0},         {-1e300, 0}, {-DBL_MAX, 0},   {0, 0},     {200, 0},
        {Above(200), 1}, {250, 1},    {Above(250), 2}, {1e300, 2}, {DBL_MAX, 2},
    };
    for (const auto &row : cases)
        EXPECT_EQ(HeadInteCriterion().Classify(row.v), row.expected) << row.v;
}

TEST(Criterion, WhatIsNoNumberOrHasNoEndIsNotMet)
{
    for (const EmCRITERION &c : {HeadTempCriterion(1), DiffTempCriterion(), HeadInteCriterion()}) {
        EXPECT_EQ(c.Classify(NAN), 2);
        EXPECT_EQ(c.Classify(INF), 2);
    }
}

TEST(Criterion, ToleranceLimitsStopAtTheEndsOfTheNumbers)
{
    const struct {
        double min, max, tol, low, high;
    } cases[] = {
        {14, 18, 2, 12, 20},
        {-DBL_MAX, 200, 50, -DBL_MAX, 250},
        {-DBL_MAX, DBL_MAX, 1e300, -DBL_MAX, DBL_MAX},
        {-1e308, 1e308, 1e308, -DBL_MAX, DBL_MAX},
        {0, DBL_MAX, 0, 0, DBL_MAX},
        {0, 1, DBL_MAX, -DBL_MAX, DBL_MAX},
    };
    for (const auto &row : cases) {
        const EmCRITERION c{row.min, row.max, row.tol};
        EXPECT_EQ(c.LowTol(), row.low) << row.min;
        EXPECT_EQ(c.HighTol(), row.high) << row.max;
    }
}

TEST(Criterion, ClassesRiseAwayFromTheBand)
{
    for (const EmCRITERION &c : {HeadTempCriterion(3), DiffTempCriterion(), HeadInteCriterion()}) {
        int last = 0;
        for (double v = c.max; v < c.max + 3 * c.tol; v += c.tol / 64) {
            EXPECT_GE(c.Classify(v), last) << v;
            last = c.Classify(v);
        }
        EXPECT_EQ(last, 2);
    }
}

TEST(Criterion, TheTwoHeaviestClassesJudgeAlike)
{
    for (double v = 0; v < 30; v += 0.125)
        EXPECT_EQ(HeadTempCriterion(4).Classify(v), HeadTempCriterion(5).Classify(v)) << v;
}

TEST(JudgedValues, WithoutRadiationAreThoseOfTheAir)
{
    HALL hall(20, 12, 6);
    TZulMapInfo info;
    info.airTemp = 18;
    const struct {
        int32_t position;
        double head;
    } cases[] = {{EM_STANDING, 1.7}, {EM_SITTING, 1.1}, {0, 1.7}, {7, 1.7}};
    for (const auto &row : cases) {
        hall.Data()->position = row.position;
        EXPECT_NEAR(HeadTemp(hall, info, 5, 5), 18 + (row.head - 1.5) * 0.3, 1e-11) << row.position;
        EXPECT_NEAR(DiffTemp(hall, info, 5, 5), (row.head - 0.15) * 0.3, 1e-11) << row.position;
        EXPECT_EQ(HeadInte(hall, 5, 5), 0) << row.position;
    }
}

TEST(JudgedValues, AreTakenAtTheHeightOfThePosition)
{
    HALL hall(20, 12, 6);
    hall.Hang(hall.Model(0.6), {5, 5, 4}, 3000);
    hall.SetConstruction(EM_CEILING, 2, -12);
    hall.SetConstruction(EM_WALLS, 2, -12);
    hall.Open(CEILING, {6, 5}, 2, 2)->constr.k = 5;
    hall.Emitters()->Prepare();
    hall.Surfaces()->Prepare();
    hall.Surfaces()->UpdateTemps(18);
    TZulMapInfo info;
    info.airTemp = 18;
    const struct {
        int32_t position;
        double head;
    } cases[] = {{EM_STANDING, 1.7}, {EM_SITTING, 1.1}};
    for (const auto &row : cases) {
        hall.Data()->position = row.position;
        const AgPOINT head(5.3, 4.8, row.head);
        const AgPOINT ankle(5.3, 4.8, 0.15);
        ASSERT_GT(hall.Irradiation(head), 50);
        const double headTemp = hall.OperativeTemp(hall.Irradiation(head), (row.head - 1.5) * 0.3 + 18);
        const double ankleTemp = hall.OperativeTemp(hall.Irradiation(ankle), (0.15 - 1.5) * 0.3 + 18);
        EXPECT_EQ(HeadTemp(hall, info, 5.3, 4.8), headTemp) << row.position;
        EXPECT_EQ(DiffTemp(hall, info, 5.3, 4.8), headTemp - ankleTemp) << row.position;
        // The cold ceiling takes from the head, the walls, as cold, do not.
        const double ceiling = hall.Side(CEILING)->Radiation(head);
        EXPECT_LT(ceiling, -1);
        EXPECT_EQ(HeadInte(hall, 5.3, 4.8), hall.Irradiation(head) + ceiling) << row.position;
    }
}
