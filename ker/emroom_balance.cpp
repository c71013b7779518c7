// The steady-state heat balance of the hall and what it will burn. The air is taken as two zones, split at the
// mean height of the emitters: their radiation warms the lower one, the convective rest of their power the
// upper one.
#include "ker/emroom.h"

#include <cmath>

namespace
{
constexpr double AIR_DENSITY = 1.28;         // kg/m3
constexpr double AIR_HEAT_CAPACITY = 1010.0; // J/(kg K)
constexpr double HOURS_PER_SECOND = 1.0 / 3600;
constexpr double AIR_GRADIENT = 0.3;            // K per metre of height
constexpr double REFERENCE_HEIGHT = 1.5;        // m, where an air temperature counts
constexpr double HEAT_VALUE_NATURAL_GAS = 33.4; // MJ/m3
constexpr double HEAT_VALUE_PROPANE = 43.13;    // MJ/kg
constexpr double SEASON_FACTOR = 0.65;
constexpr double BOILER_FACTOR = 1.1111111111111112; // one over an efficiency of 0.9
constexpr double MJ_PER_WH = 0.0036;

/// What the emitters give off, W, and their radiant power times height, W m.
struct EMITTERSUMS {
    double radiant = 0;
    double convective = 0;
    double radiantByHeight = 0;

    explicit EMITTERSUMS(const EmEMITTERSET &emitters)
    {
        for (const EmEMITTER *emitter = emitters.First(); emitter; emitter = EmEMITTERSET::Next(emitter)) {
            if (emitter->model == NULL)
                continue;
            double part = emitter->model->Info()->radiantPart;
            radiant += part * emitter->power;
            convective += (1 - part) * emitter->power;
            radiantByHeight += part * emitter->power * emitter->pos.z;
        }
    }
};
} // namespace

double EmROOM::HeatValue() const
{
    switch (data.fuelType) {
    case EM_NATURAL_GAS:
        return HEAT_VALUE_NATURAL_GAS;
    case EM_PROPANE:
        return HEAT_VALUE_PROPANE;
    default:
        return 0.0;
    }
}

double EmROOM::VentilationConductance() const
{
    const AgPOINT &plan = surfSet.Floor()->size;
    const double height = surfSet.FirstWall()->size.y;
    return data.airChange * plan.x * plan.y * height * AIR_DENSITY * AIR_HEAT_CAPACITY * HOURS_PER_SECOND;
}

double EmROOM::MaxAirTemp() const
{
    const double qv = VentilationConductance();
    const double hallHeight = surfSet.FirstWall()->size.y;
    const double gains = airhtSet.TotalPower() + data.techGain;
    const EMITTERSUMS sums(emittSet);

    double h = sums.radiant == 0 ? hallHeight : sums.radiantByHeight / sums.radiant;
    double a, b, c, d;
    surfSet.Transmission(&a, &b, &c, &d, h);

    const double tUpper = d == 0 ? 0 : (sums.convective + b) / d;
    double t = tUpper;
    if (c + qv != 0)
        t = (qv * data.airTemp + sums.radiant + gains + a) / (c + qv);
    if (tUpper < t) { // warm air below rises: no two zones, one
        const double conductance = c + d + qv;
        t = conductance == 0
                ? 0
                : (qv * data.airTemp + sums.radiant + gains + sums.convective + a + b) / conductance;
        h = hallHeight;
    }
    // A zone's temperature is that of its middle. Exactly 0 says that nothing holds a temperature at all.
    return t == 0 ? t : t - (h * 0.5 - REFERENCE_HEIGHT) * AIR_GRADIENT;
}

void EmROOM::VolumeAndArea(double &volume, double &area) const
{
    area = box.Length() * box.Width();
    volume = box.Length() * box.Width() * box.Height();
}

void EmROOM::Balance(double &emitters, double &airHeaters, double &loss) const
{
    emitters = 0;
    for (const EmEMITTER *emitter = emittSet.First(); emitter; emitter = EmEMITTERSET::Next(emitter))
        if (emitter->model != NULL)
            emitters += emitter->power;
    airHeaters = airhtSet.TotalPower();

    const double qv = VentilationConductance();
    double a, b, c, d;
    surfSet.Transmission(&a, &b, &c, &d, 0); // everything lies above 0: b and d are the whole envelope
    loss = (d + qv) * data.runAirTemp - (qv * data.airTemp + b);
    if (loss < 0)
        loss = 0;
}

void EmROOM::AnnualFuel(double &amount, double &cost) const
{
    double tMin = data.airTemp; // the coldest that the hall loses heat to
    for (const EmCONSTRUCTION &element : data.constr)
        if (element.tExt < tMin)
            tMin = element.tExt;

    double emitters, airHeaters, loss;
    Balance(emitters, airHeaters, loss);

    // Mean load over full load, in operating hours and outside them.
    const double dT = data.runAirTemp - tMin;
    const double running = dT == 0 ? 0 : (data.runAirTemp - data.meanOutTemp) / dT;
    const double reduced = dT == 0 ? 0 : (data.reducedAirTemp - data.meanOutTemp) / dT;

    const double w = data.weekDays * (1.0 / 7);
    const double hours = running * w * data.dayHours + ((24 - data.dayHours) * w + (1 - w) * 24) * reduced;
    const double wattHours = data.periodDays * loss * hours; // of a season
    const double heatValue = HeatValue();
    amount = heatValue == 0 ? 0 : data.regulation * SEASON_FACTOR * wattHours * MJ_PER_WH / heatValue;
    cost = amount * data.fuelPrice;
}

double EmROOM::MaxFuelRate() const
{
    const double power = emittSet.NominalPower() + airhtSet.TotalPower();
    const double heatValue = HeatValue();
    return heatValue <= 0 ? 0 : power * 3600 * BOILER_FACTOR / heatValue * 1e-6;
}
