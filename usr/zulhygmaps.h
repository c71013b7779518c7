// The hygiene evaluation of a whole plan: three criterion maps and their summary, without any drawing. The
// field at head height serves all three, and a class is decided by a cheap bound wherever that is certain; only
// values within a guard band of a limit are computed as EmROOM and the criteria do it. Pixels are bit for bit
// the same.
#ifndef USR_ZULHYGMAPS_H
#define USR_ZULHYGMAPS_H

#include "usr/zulpass.h"

struct ZulCriterionMap {
    EmCRITERION band;
    ZulPixels pixels; // class of each raster point, an index into criterionColors
};

struct ZulHygieneMaps {
    ZulCriterionMap headTemp; // operative temperature at the head
    ZulCriterionMap diffTemp; // head less ankle
    ZulCriterionMap headInte; // irradiation of the head
    ZulPixels summary;        // 0 where all three are met, 2 elsewhere
    long long total = 0;      // raster points
    long long passed = 0;     // points where all three are met

    bool HasMaps() const { return !summary.IsEmpty(); }
    double PassedShare() const { return static_cast<double>(passed) / static_cast<double>(total) * 100; } // %
};

/// Judges the plan on the raster of the last run, at the air temperature and the surface temperatures of that
/// run. Without a map in `map` there are none here either.
void ZulJudgePlan(const EmROOM &room, const TZulMapInfo &info, const ZulPassMap &map, ZulHygieneMaps &out);

#endif
