// The hygiene criteria: limits by working class, classes of a judged value, and the names that go with them.
// One place, so that maps and reports cannot disagree.
#ifndef KER_EMHYGIENE_H
#define KER_EMHYGIENE_H

#include <cfloat>

inline constexpr double EM_ANKLE_HEIGHT = 0.15; // m

double HeadHeight(int position); // m: 1.1 sitting, 1.7 otherwise

/// Limits of the operative temperature at the head, C. Any value without a class of its own has 10 and 24.
void WorkLimits(int workClass, double &low, double &high);
const char *WorkName(int workClass);   // "I" to "IIIb"; "(nichts)" for 0, "" for others
const char *WorkEnergy(int workClass); // energy output in W/m2 as text, "" for others
const char *PositionName(int position);
const char *FuelName(int fuelType);
const char *FuelUnit(int fuelType, bool markup);

/// A band with a tolerance. A limit of the lowest or highest double is none.
struct EmCRITERION {
    double min = -DBL_MAX;
    double max = DBL_MAX;
    double tol = 0;

    double LowTol() const;  // min - tol, the lowest double where that cannot be formed
    double HighTol() const; // max + tol, the highest double where that cannot be formed
    /// 0 met, 1 within the tolerance, 2 neither; a value that is no number is 2.
    int Classify(double v) const;
};

EmCRITERION HeadTempCriterion(int workClass); // operative temperature at the head, C
EmCRITERION DiffTempCriterion();              // head less ankle, K
EmCRITERION HeadInteCriterion();              // irradiation of the head, W/m2

#endif
