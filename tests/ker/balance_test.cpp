#include "hall.h"
#include "support/child.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>

namespace
{
struct FIGURES {
    double emitters, airHeaters, loss, amount, cost, maxFuel, maxAirTemp;

    explicit FIGURES(const EmROOM &room)
    {
        room.Balance(emitters, airHeaters, loss);
        room.AnnualFuel(amount, cost);
        maxFuel = room.MaxFuelRate();
        maxAirTemp = room.MaxAirTemp();
    }
    bool operator==(const FIGURES &) const = default;
};

double LossOf(const EmROOM &room)
{
    return FIGURES(room).loss;
}

/// W/K that the air exchange carries off.
double Ventilation(const EmROOM &room)
{
    double volume, area;
    room.VolumeAndArea(volume, area);
    return room.Data()->airChange * volume * 1.28 * 1010 / 3600;
}

/// What the emitters give off, and where they hang.
struct SUMS {
    double radiant = 0, convective = 0, height = 0;

    explicit SUMS(const EmROOM &room)
    {
        double moment = 0;
        for (const EmEMITTER *e = room.Emitters()->First(); e; e = EmEMITTERSET::Next(e)) {
            radiant += e->model->Info()->radiantPart * e->power;
            convective += (1 - e->model->Info()->radiantPart) * e->power;
            moment += e->model->Info()->radiantPart * e->power * e->pos.z;
        }
        height = moment / radiant;
    }
};

/// A hall as a designer might draw it, with values of any size that stays physical.
void Furnish(HALL &hall, CHANCE &dice)
{
    EmROOMDATA *data = hall.Data();
    for (int element : {EM_FLOOR, EM_CEILING, EM_WALLS})
        hall.SetConstruction(element, dice.Real(0.1, 3), dice.Real(-20, 10));
    data->airChange = dice.Real(0, 2);
    data->airTemp = dice.Real(-20, 10);
    data->techGain = dice.Real(0, 50000);
    data->runAirTemp = dice.Real(10, 20);
    for (int i = 0; i < 6; ++i) {
        const AgPOINT size = hall.Side(i)->size;
        hall.Open(i, size * 0.5, dice.Real(0.5, 3), dice.Real(0.5, 3), dice.Real(-3, 3))->constr.k = 4;
    }
    for (int i = 0; i < 5; ++i)
        hall.Hang(hall.Model(dice.Real(0.4, 0.9)), {1, 1, dice.Real(2, 6)}, dice.Real(1000, 30000));
}

/// The hall of the fuel tests: its ceiling alone conducts, 180 W/K, and loses 5,400 W between 18 and -12
/// degrees.
class FUELHALL : public HALL
{
public:
    FUELHALL() : HALL(10, 6, 3)
    {
        EmROOMDATA *design = Data();
        for (int element : {EM_FLOOR, EM_CEILING, EM_WALLS})
            SetConstruction(element, element == EM_CEILING ? 3.0 : 0, -12);
        design->airTemp = -12;
        design->runAirTemp = 18;
        design->reducedAirTemp = 18;
        design->meanOutTemp = 8;
        design->periodDays = 220;
        design->weekDays = 7;
        design->dayHours = 24;
        design->regulation = 1;
        design->fuelPrice = 0.5;
    }

    double Amount() const { return FIGURES(*this).amount; }
    /// The heat that the amount stands for, before the stated factors, Wh.
    double WattHours() const { return Amount() * HeatValue() / (Data()->regulation * 0.65 * 0.0036); }
};
} // namespace

TEST(VolumeAndArea, AreThoseOfTheBox)
{
    HALL hall(20, 12, 6);
    double volume, area;
    hall.VolumeAndArea(volume, area);
    EXPECT_EQ(volume, 1440);
    EXPECT_EQ(area, 240);
    HALL turned(-20, 12, -6);
    turned.VolumeAndArea(volume, area);
    EXPECT_EQ(volume, 1440);
    EXPECT_EQ(area, 240);
}

TEST(Balance, ACeilingLosesByAreaTransmittanceAndDifference)
{
    HALL hall(5, 3, 4);
    hall.SetConstruction(EM_CEILING, 3.0, -2);
    hall.Data()->runAirTemp = 20;
    EXPECT_EQ(LossOf(hall), 990);
}

TEST(Balance, FreshAirCostsItsHeatCapacity)
{
    HALL hall(10, 6, 3);
    hall.Data()->airChange = 2;
    hall.Data()->airTemp = -10;
    hall.Data()->runAirTemp = 15;
    EXPECT_NEAR(LossOf(hall), 2 * 180 * 1.28 * 1010 / 3600 * 25, 1e-9);
}

TEST(Balance, AddsEveryElementAndOpeningAtItsOwnOuterTemperature)
{
    HALL hall(5, 3, 4);
    hall.SetConstruction(EM_FLOOR, 0.5, 10);
    hall.SetConstruction(EM_CEILING, 1, -10);
    hall.SetConstruction(EM_WALLS, 2, -12);
    hall.Data()->runAirTemp = 20;
    double loss = 15 * 0.5 * 10 + 15 * 1 * 30 + 64 * 2 * 32;
    EXPECT_EQ(LossOf(hall), loss);
    EmHOLE *gate = hall.Open(WALL_A, {2, 2}, 2, 1);
    gate->constr.k = 5;
    loss += 2 * (5 - 2) * 32;
    EXPECT_EQ(LossOf(hall), loss);
    gate->flags = EmHOLE::OWN_TEMP; // leads to a room at 0 degrees
    loss -= 2 * 5 * 12;
    EXPECT_EQ(LossOf(hall), loss);
}

TEST(Balance, IsNeverNegative)
{
    HALL hall(5, 3, 4);
    hall.SetConstruction(EM_CEILING, 3.0, 30);
    hall.Data()->runAirTemp = 20;
    EXPECT_EQ(LossOf(hall), 0);
}

TEST(Balance, CountsInstalledPowerOfEmittersWithAModel)
{
    HALL hall(20, 12, 6);
    EmMODEL *model = hall.Model(0.6); // nominal 1 kW
    hall.Hang(model, {1, 1, 4}, 2500);
    hall.Hang(model, {2, 1, 4}, 700);
    hall.Hang(NULL, {3, 1, 4}, 9000);
    EXPECT_EQ(FIGURES(hall).emitters, 3200);
    EXPECT_NEAR(FIGURES(hall).maxFuel, 2000 * 3600 / 0.9 / 33.4 * 1e-6, 1e-15); // goes by nominal power
}

TEST(Balance, WarmAirUnitsChangeNoFigure)
{
    HALL hall(20, 12, 6);
    CHANCE dice(2);
    Furnish(hall, dice);
    const FIGURES before(hall);
    for (int i = 0; i < 10; ++i) {
        EmAIRHEATER *unit = new EmAIRHEATER;
        unit->power = 20000;
        unit->airFlow = 3000;
        unit->tempRise = 20;
        unit->Insert(hall.AirHeaters());
    }
    EXPECT_EQ(FIGURES(hall), before);
    EXPECT_EQ(before.airHeaters, 0);
}

TEST(Balance, AHallWithoutSurfacesIsAFaultOfTheProgram)
{
    HALL hall(20, 12, 6);
    hall.Surfaces()->Clear();
    const char file[] = "ker/emroom_surfaces.cpp";
    double emitters, airHeaters, loss;
    EXPECT_TRUE(AbortsOnAssertion("Count() >= 1", file, [&] { hall.MaxAirTemp(); }));
    EXPECT_TRUE(AbortsOnAssertion("Count() >= 1", file, [&] { hall.Balance(emitters, airHeaters, loss); }));
}

TEST(MaxAirTemp, WithoutEmittersOnlyTheCeilingLiesAboveTheSplit)
{
    HALL hall(20, 12, 6);
    const double correction = (6 * 0.5 - 1.5) * 0.3;
    hall.SetConstruction(EM_FLOOR, 1, -6);
    hall.SetConstruction(EM_WALLS, 1, -6);
    hall.SetConstruction(EM_CEILING, 1, 30); // the air above is warmer: it stays apart
    EXPECT_NEAR(hall.MaxAirTemp(), -6 - correction, 1e-12);
    hall.SetConstruction(EM_CEILING, 0, 30); // nothing holds the upper zone, which counts as 0 degrees
    EXPECT_NEAR(hall.MaxAirTemp(), -6 - correction, 1e-12);
    hall.SetConstruction(EM_WALLS, 1, 6);
    hall.SetConstruction(EM_FLOOR, 1, 6); // now the air below is warmer
    EXPECT_NEAR(hall.MaxAirTemp(), 6 - correction, 1e-12);
    hall.SetConstruction(EM_CEILING, 1, -18);
    const double below = 240 + 2 * (20 + 12) * 6;
    EXPECT_NEAR(hall.MaxAirTemp(), (below * 6 + 240 * -18) / (below + 240) - correction, 1e-12);
}

TEST(MaxAirTemp, OfAHallThatLosesNothingIsZeroWithoutCorrection)
{
    HALL hall(20, 12, 6);
    EXPECT_EQ(hall.MaxAirTemp(), 0);
    hall.Data()->techGain = 5000.0;
    EXPECT_EQ(hall.MaxAirTemp(), 0);
    hall.Hang(hall.Model(0.6), {5, 5, 4}, 20000);
    EXPECT_EQ(hall.MaxAirTemp(), 0);
}

TEST(MaxAirTemp, EmittersOfOnlyConvectivePowerSplitAtTheCeiling)
{
    HALL hall(20, 12, 6);
    for (int element : {EM_FLOOR, EM_CEILING, EM_WALLS})
        hall.SetConstruction(element, 1, -6);
    hall.Hang(hall.Model(0), {5, 5, 2}, 2400);
    // Below: envelope at -6 and nothing that warms it. Above: the ceiling and all the power, 10 K over -6.
    EXPECT_NEAR(hall.MaxAirTemp(), -6 - (3 - 1.5) * 0.3, 1e-12);
}

TEST(MaxAirTemp, TechnologyWarmsTheLowerZoneByWatts)
{
    HALL hall(5, 3, 4);
    hall.SetConstruction(EM_FLOOR, 1, 0);
    hall.SetConstruction(EM_WALLS, 1, 0);
    hall.SetConstruction(EM_CEILING, 1, 200);
    const double below = 15 + 64;
    const double cold = hall.MaxAirTemp(); // exactly 0 below: no correction
    EXPECT_EQ(cold, 0);
    hall.Data()->techGain = 5000.0; // 5 kW
    EXPECT_NEAR(hall.MaxAirTemp(), 5000 / below - (2 - 1.5) * 0.3, 1e-12);
}

TEST(MaxAirTemp, MeansTheHeightOfOneAndAHalfMetres)
{
    HALL low(20, 12, 3);
    HALL high(20, 12, 13);
    for (HALL *hall : {&low, &high})
        for (int element : {EM_FLOOR, EM_CEILING, EM_WALLS})
            hall->SetConstruction(element, 1, 10);
    EXPECT_NEAR(low.MaxAirTemp(), 10, 1e-12); // its middle
    EXPECT_NEAR(high.MaxAirTemp(), 10 - 5 * 0.3, 1e-12);
}

// Both branches come up among these halls; each must give back the heat that was put in.
TEST(MaxAirTemp, BalancesTheZonesItAssumes)
{
    CHANCE dice(61);
    int oneZone = 0, twoZones = 0;
    for (int i = 0; i < 400; ++i) {
        HALL hall(dice.Real(5, 60), dice.Real(5, 30), dice.Real(6, 12));
        Furnish(hall, dice);
        EmROOMDATA *data = hall.Data();
        const double height = hall.Box().max.z;
        if (i % 2) // a roof so cold and so thin that its air sinks
            hall.SetConstruction(EM_CEILING, 6, -25);
        const SUMS sums(hall);
        const double qv = Ventilation(hall);
        double a, b, c, d;
        hall.Surfaces()->Transmission(&a, &b, &c, &d, sums.height);
        const double tUpper = (sums.convective + b) / d;
        const double tLower = (qv * data->airTemp + sums.radiant + data->techGain + a) / (c + qv);
        const double found = hall.MaxAirTemp();
        if (tUpper < tLower) {
            ++oneZone;
            data->runAirTemp = found + (height * 0.5 - 1.5) * 0.3;
            EXPECT_NEAR(LossOf(hall), sums.radiant + sums.convective + data->techGain, 1e-6);
        } else {
            ++twoZones;
            const double t = found + (sums.height * 0.5 - 1.5) * 0.3;
            EXPECT_NEAR(c * t - a + qv * (t - data->airTemp), sums.radiant + data->techGain, 1e-6);
        }
    }
    EXPECT_GT(oneZone, 20);
    EXPECT_GT(twoZones, 20);
}

TEST(MaxAirTemp, ZonesOfEqualTemperatureStayApart)
{
    HALL hall(10, 10, 4);
    hall.SetConstruction(EM_FLOOR, 1, 0);
    hall.SetConstruction(EM_CEILING, 1, 0);
    hall.Hang(hall.Model(0.5), {5, 5, 2}, 2000); // 10 K over 0 degrees above and below
    EXPECT_NEAR(hall.MaxAirTemp(), 10 - (1 - 1.5) * 0.3, 1e-12);
}

// No dialog takes a transmittance below 0, but a file can hold one.
TEST(MaxAirTemp, OfConductancesThatCancelIsZero)
{
    HALL hall(10, 10, 4);
    hall.SetConstruction(EM_FLOOR, 1, 10);
    hall.SetConstruction(EM_CEILING, -1, 0);
    EXPECT_EQ(hall.MaxAirTemp(), 0);
}

TEST(MaxAirTemp, OfAnUnreachableDesignSimplyStaysBelowIt)
{
    HALL hall(20, 12, 6);
    for (int element : {EM_FLOOR, EM_CEILING, EM_WALLS})
        hall.SetConstruction(element, 2, -12);
    hall.Hang(hall.Model(0.6), {5, 5, 4}, 1000);
    hall.Data()->runAirTemp = 18;
    EXPECT_LT(hall.MaxAirTemp(), -10);
    EXPECT_GT(hall.MaxAirTemp(), -13);
}

TEST(MaxAirTemp, RisesWithTheInstalledPower)
{
    HALL hall(20, 12, 6);
    CHANCE dice(67);
    Furnish(hall, dice);
    double before = hall.MaxAirTemp();
    for (int i = 0; i < 40; ++i) {
        for (EmEMITTER *e = hall.Emitters()->First(); e; e = EmEMITTERSET::Next(e))
            e->power *= 1.1;
        EXPECT_GT(hall.MaxAirTemp(), before);
        before = hall.MaxAirTemp();
    }
}

TEST(MaxAirTemp, OfAMirroredHallIsTheSame)
{
    HALL hall(20, 12, 6);
    HALL mirror(20, 12, 6);
    const int opposite[] = {FLOOR, CEILING, WALL_A, WALL_D, WALL_C, WALL_B};
    CHANCE dice(71);
    Furnish(hall, dice);
    CHANCE again(71);
    Furnish(mirror, again);
    for (int place = 0; place < 6; ++place)
        mirror.Side(place)->Holes()->Clear();
    for (int place = 0; place < 6; ++place) {
        for (const EmHOLE *hole = hall.Side(place)->Holes()->First(); hole; hole = EmHOLESET::Next(hole)) {
            EmHOLE *image = new EmHOLE(*hole);
            image->pos.x = hall.Side(place)->size.x - hole->pos.x;
            image->rotation = -hole->rotation;
            image->Insert(mirror.Side(opposite[place])->Holes());
        }
    }
    for (EmEMITTER *e = mirror.Emitters()->First(); e; e = EmEMITTERSET::Next(e))
        e->pos.x = 20 - e->pos.x;
    EXPECT_NEAR(hall.MaxAirTemp(), mirror.MaxAirTemp(), 1e-10);
    EXPECT_NEAR(LossOf(hall), LossOf(mirror), 1e-8);
}

TEST(AnnualFuel, LossTimesSeasonAtTheMeanTemperature)
{
    FUELHALL hall;
    EXPECT_EQ(LossOf(hall), 5400); // W at 30 K; a third of it at 8 degrees outside, 220 days of 24 hours
    EXPECT_NEAR(hall.WattHours(), 9504000, 1e-6);
    EXPECT_NEAR(hall.Amount(), 0.65 * 9504000 * 0.0036 / 33.4, 1e-9);
    EXPECT_EQ(FIGURES(hall).cost, hall.Amount() * 0.5);
}

TEST(AnnualFuel, WithoutSetBackTheHoursOfOperationDoNotMatter)
{
    FUELHALL hall;
    for (int days = 0; days <= 7; ++days) {
        for (double hours : {0.0, 8.0, 24.0}) {
            hall.Data()->weekDays = days;
            hall.Data()->dayHours = hours;
            EXPECT_NEAR(hall.WattHours(), 9504000, 1e-6) << days << " " << hours;
        }
    }
}

TEST(AnnualFuel, OutsideOperationTheReducedTemperatureCounts)
{
    FUELHALL hall;
    hall.Data()->weekDays = 5;
    hall.Data()->dayHours = 10;
    hall.Data()->reducedAirTemp = 14;
    const double running = 50.0 / 168; // share of the week
    EXPECT_NEAR(hall.WattHours(), 220 * 24 * 180 * (running * 10 + (1 - running) * 6), 1e-6);
    hall.Data()->reducedAirTemp = 2; // below the mean outside: taken as it comes
    EXPECT_NEAR(hall.WattHours(), 220 * 24 * 180 * (running * 10 - (1 - running) * 6), 1e-6);
}

TEST(AnnualFuel, TheColdestSideIsFullLoad)
{
    FUELHALL hall;
    const double atMinus12 = hall.WattHours();
    hall.Data()->designOutTemp = -40; // plays no part
    EXPECT_EQ(hall.WattHours(), atMinus12);
    hall.Data()->airTemp = -42; // twice the difference: the same loss, half the load
    EXPECT_NEAR(hall.WattHours(), atMinus12 / 2, 1e-6);
    hall.Data()->airTemp = 0;
    EXPECT_NEAR(hall.WattHours(), atMinus12, 1e-6);
    for (int element : {EM_FLOOR, EM_WALLS}) {
        hall.Data()->constr[element].tExt = -42;
        EXPECT_NEAR(hall.WattHours(), atMinus12 / 2, 1e-6) << element;
        hall.Data()->constr[element].tExt = -12;
    }
}

TEST(AnnualFuel, IsNothingWithoutDifferenceOrWithoutLoss)
{
    FUELHALL level;
    level.Data()->constr[EM_CEILING].tExt = 30; // from there heat comes in, so let the air carry some out
    level.Data()->constr[EM_FLOOR].tExt = level.Data()->constr[EM_WALLS].tExt = 18;
    level.Data()->airTemp = 18;
    level.Data()->constr[EM_CEILING].k = 0;
    EmHOLE *gate = level.Open(WALL_A, {2, 1}, 2, 1);
    gate->flags = EmHOLE::OWN_TEMP;
    gate->constr.k = 5;
    gate->constr.tExt = -10; // an opening's own temperature is not among those that count
    EXPECT_GT(LossOf(level), 0);
    EXPECT_EQ(level.Amount(), 0);
    EXPECT_EQ(FIGURES(level).cost, 0);

    FUELHALL warm;
    warm.Data()->constr[EM_CEILING].tExt = 40;
    EXPECT_EQ(LossOf(warm), 0);
    EXPECT_EQ(warm.Amount(), 0);
}

TEST(AnnualFuel, GoesWithTheRegulationUpToAndBeyondOne)
{
    FUELHALL hall;
    const double atOne = hall.Amount();
    hall.Data()->regulation = 1.1;
    EXPECT_NEAR(hall.Amount(), 1.1 * atOne, 1e-9);
    hall.Data()->regulation = 0;
    EXPECT_EQ(hall.Amount(), 0);
}

TEST(AnnualFuel, PropaneBurnsByItsOwnHeatValue)
{
    FUELHALL hall;
    const double gas = hall.Amount();
    hall.Data()->fuelType = EM_PROPANE;
    EXPECT_NEAR(hall.Amount(), gas * 33.4 / 43.13, 1e-9);
}

TEST(HeatValue, OfAnUnknownFuelIsZeroAndSoAreItsFigures)
{
    const struct {
        int32_t fuel;
        double value;
    } cases[] = {{1, 33.4}, {2, 43.13}, {0, 0}, {3, 0}, {-1, 0}, {INT32_MAX, 0}, {INT32_MIN, 0}};
    for (const auto &row : cases) {
        FUELHALL hall;
        hall.Hang(hall.Model(0.6), {5, 5, 2}, 3000);
        hall.Data()->fuelType = row.fuel;
        EXPECT_EQ(hall.HeatValue(), row.value) << row.fuel;
        EXPECT_EQ(hall.Amount() > 0, row.value > 0) << row.fuel;
        EXPECT_EQ(hall.MaxFuelRate() > 0, row.value > 0) << row.fuel;
        if (row.value == 0) {
            EXPECT_EQ(hall.Amount(), 0);
            EXPECT_EQ(FIGURES(hall).cost, 0);
            EXPECT_EQ(hall.MaxFuelRate(), 0);
        }
    }
}

TEST(Balance, TakesWholeNumbersOfAnySize)
{
    FUELHALL hall;
    for (int32_t number : {INT32_MIN, -1, 0, 1, INT32_MAX}) {
        EmROOMDATA *data = hall.Data();
        data->periodDays = data->weekDays = data->workClass = data->position = number;
        EXPECT_TRUE(std::isfinite(hall.Amount())) << number;
    }
}
