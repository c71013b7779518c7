// The field that the designer looks at, over a whole plan at a time. A raster has some hundred thousand points
// and each is a sum over all emitters, so the sums are formed emitter by emitter over their footprints, on flat
// copies of the tables; every point still adds its emitters in the order of the set, and comes out bit for bit
// as EmROOM::Irradiation gives it.
#ifndef KER_EMFIELD_H
#define KER_EMFIELD_H

#include "ker/emhygiene.h"
#include "ker/emroom.h"

/// What the last evaluation found. Before a run all numbers are 0 and the text is empty.
struct TZulMapInfo {
    double height = 0;      // m, of the map above the floor
    double minInte = 0;     // W/m2, smallest sample
    double maxInte = 0;     // W/m2, largest
    double meanInte = 0;    // W/m2
    double spread = 0;      // standard deviation over mean
    double sumInte = 0;     // W/m2
    double loss = 0;        // W, heat loss
    double emittPower = 0;  // W, installed
    double airhtPower = 0;  // W, installed
    double area = 0;        // m2, floor
    double volume = 0;      // m3
    double airTemp = 0;     // C at 1.5 m, designed: all maps hold at it
    double maxAirTemp = 0;  // C at 1.5 m, reachable
    double maxFuel = 0;     // fuel units an hour
    double yearFuel = 0;    // fuel units a year
    double yearCost = 0;    // currency a year
    char fuelUnit[32] = ""; // in text markup
};

/// The air temperature at height z, C: 0.3 K a metre, anchored at 1.5 m.
double AirTempAt(const TZulMapInfo &r, double z);

// The three values that are judged, at a point (x, y) of the plan.
double HeadTemp(const EmROOM &room, const TZulMapInfo &r, double x, double y);
double DiffTemp(const EmROOM &room, const TZulMapInfo &r, double x, double y);
double HeadInte(const EmROOM &room, double x, double y); // the emitters and the ceiling, no other surface

/// The points of a plan. Column i from the left, row j from the far side, as a picture has it.
struct EmRASTER {
    int columns = 0;
    int rows = 0;
    double step = 0; // m
    double xMin = 0; // m
    double yMin = 0; // m

    double X(int i) const { return i * step + xMin; }
    double Y(int j) const { return (rows - j - 1) * step + yMin; }
};

/// The irradiation raster of a hall: 504 steps along its length, 168 with `draft`. XALLOC where the hall's
/// sides give more points than can be held (EM_RASTER_MAX) or none that can be counted.
EmRASTER IrradiationRaster(const EmBOX &box, bool draft);
/// The raster on which the criteria are judged, with the same columns and rows: its step comes from the width,
/// or from the irradiation raster where there is one row only.
EmRASTER CriterionRaster(const EmBOX &box, const EmRASTER &irradiation);

enum { EM_RASTER_MAX = 1 << 29 }; // points

/// The emitters of a prepared set, laid out for sampling. Holds views of the models: the set must outlive it.
class EmFIELD
{
public:
    explicit EmFIELD(const EmEMITTERSET &set); // XALLOC
    ~EmFIELD();
    EmFIELD(const EmFIELD &) = delete;
    EmFIELD &operator=(const EmFIELD &) = delete;

    /// Irradiation of the raster's points at height z, W/m2, for `count` columns from `first` on, column by
    /// column: sample of column i and row j in out[(i - first) * rows + j]. Bit for bit what
    /// EmROOM::Irradiation gives.
    void Sample(const EmRASTER &raster, double z, int first, int count, double *out) const;

private:
    struct STORE;
    STORE *store; // owner
};

#endif
