// One evaluated hall: what zulcalc reads and computes, and what its outputs are made of.
#ifndef TOOLS_ZULCALC_EVALUATION_H
#define TOOLS_ZULCALC_EVALUATION_H

#include "tools/zulcalc_options.h"
#include "usr/zulhygmaps.h"
#include "usr/zulpass.h"

#include <memory>

/// Seconds of the steps of one run.
struct ZulcalcTiming {
    double load = 0;
    double pass = 0;    // preparation, both scans, index raster
    double hygiene = 0; // three maps and summary
    double save = 0;
};

struct ZulcalcEvaluation {
    std::unique_ptr<EmROOM> room;
    TZulMapInfo info;
    ZulPassMap map;
    ZulHygieneMaps hygiene;
    ZulcalcTiming timing;
};

/// The answers at one --point.
struct ZulcalcPoint {
    AgPOINT p;
    double irradiation = 0; // W/m2
    double operative = 0;   // C, at the air temperature of the point's height
    // The values that are judged, at the point's x and y, and their classes.
    double headTemp = 0; // C
    double diffTemp = 0; // K
    double headInte = 0; // W/m2
    int headTempClass = 0;
    int diffTempClass = 0;
    int headInteClass = 0;
};

ZulcalcPoint AskPoint(const ZulcalcEvaluation &evaluation, const AgPOINT &p);

#endif
