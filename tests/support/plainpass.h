// The evaluation of a hall in the plainest way: every point asked for by itself, both scans computed anew, each
// criterion by its own formula, nothing shared and nothing kept. The twin of usr/zulpass and usr/zulhygmaps for
// tests and benchmarks. Free of the test framework.
#ifndef TESTS_SUPPORT_PLAINPASS_H
#define TESTS_SUPPORT_PLAINPASS_H

#include "usr/zulhygmaps.h"
#include "usr/zulpass.h"

#include <string>

void PlainRunPass(EmROOM &room, const ZulPassParams &params, TZulMapInfo &info, ZulPassMap &map);
void PlainJudgePlan(const EmROOM &room, const TZulMapInfo &info, const ZulPassMap &map, ZulHygieneMaps &out);

// Where two results differ, in words; "" where they are the same bit for bit. Numbers that are none count as
// equal.
std::string DifferPass(const TZulMapInfo &a, const ZulPassMap &mapA, const TZulMapInfo &b,
                       const ZulPassMap &mapB);
std::string DifferHygiene(const ZulHygieneMaps &a, const ZulHygieneMaps &b);

/// A number that stands for all bits of a result, for benchmarks.
unsigned long long Checksum(const TZulMapInfo &info, const ZulPassMap &map);
unsigned long long Checksum(const ZulHygieneMaps &maps);

#endif
