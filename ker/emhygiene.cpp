#include "ker/emhygiene.h"
#include "ker/emroom.h"
#include "lib/platform.h"

#include <algorithm>

namespace
{
struct WORKCLASS {
    int name;           // number of the text
    const char *energy; // output of the body, W/m2
    double low;         // limits of the operative temperature at the head, C
    double high;
};

constexpr WORKCLASS workClasses[] = {
    {4270, "0 - 80", 20, 24},    // I
    {4271, "81 - 105", 18, 22},  // IIa
    {4272, "106 - 130", 14, 18}, // IIb
    {4273, "131 - 160", 10, 14}, // IIIa
    {4274, "161 - 200", 10, 14}, // IIIb: the same limits on purpose
};
constexpr int WORK_CLASSES = sizeof workClasses / sizeof *workClasses;

constexpr int TEXT_NONE = 20510; // "(nichts)"

/// The class of a stored number, which counts from 1; NULL if it names none.
const WORKCLASS *FindWorkClass(int workClass)
{
    return workClass >= 1 && workClass <= WORK_CLASSES ? &workClasses[workClass - 1] : NULL;
}
} // namespace

double HeadHeight(int position)
{
    return position == EM_SITTING ? 1.1 : 1.7;
}

void WorkLimits(int workClass, double &low, double &high)
{
    const WORKCLASS *known = FindWorkClass(workClass);
    low = known ? known->low : 10;
    high = known ? known->high : 24;
}

const char *WorkName(int workClass)
{
    if (workClass == 0)
        return ResText(TEXT_NONE);
    const WORKCLASS *known = FindWorkClass(workClass);
    return known ? ResText(known->name) : "";
}

const char *WorkEnergy(int workClass)
{
    const WORKCLASS *known = FindWorkClass(workClass);
    return known ? known->energy : "";
}

const char *PositionName(int position)
{
    switch (position) {
    case EM_STANDING:
        return ResText(4280);
    case EM_SITTING:
        return ResText(4281);
    default:
        return "";
    }
}

const char *FuelName(int fuelType)
{
    switch (fuelType) {
    case EM_NATURAL_GAS:
        return ResText(4250);
    case EM_PROPANE:
        return ResText(4251);
    default:
        return "";
    }
}

const char *FuelUnit(int fuelType, bool markup)
{
    switch (fuelType) {
    case EM_NATURAL_GAS:
        return ResText(markup ? 4262 : 4261);
    case EM_PROPANE:
        return ResText(4260);
    default:
        return "";
    }
}

double EmCRITERION::LowTol() const
{
    return std::max(min - tol, -DBL_MAX);
}

double EmCRITERION::HighTol() const
{
    return std::min(max + tol, DBL_MAX);
}

int EmCRITERION::Classify(double v) const
{
    if (min <= v && v <= max)
        return 0;
    if (LowTol() <= v && v <= HighTol())
        return 1;
    return 2;
}

EmCRITERION HeadTempCriterion(int workClass)
{
    EmCRITERION criterion;
    WorkLimits(workClass, criterion.min, criterion.max);
    criterion.tol = 2.0;
    return criterion;
}

EmCRITERION DiffTempCriterion()
{
    return {-9.0, 3.0, 1.0};
}

EmCRITERION HeadInteCriterion()
{
    return {-DBL_MAX, 200.0, 50.0};
}
