// The sets of sampling loops that this machine can run, and a guard that puts one of them in use.
#ifndef TESTS_SUPPORT_LANESETS_H
#define TESTS_SUPPORT_LANESETS_H

#include "ker/emfield_lanes.h"

#include <vector>

inline std::vector<const EmLANES *> LaneSets()
{
    std::vector<const EmLANES *> sets = {&EmLanesPlain};
#ifdef __x86_64__
    if (EmHasAvx2())
        sets.push_back(&EmLanesAvx2);
#endif
    return sets;
}

/// While it lives, the field is sampled by these loops.
class LANESINUSE
{
public:
    explicit LANESINUSE(const EmLANES *lanes) { EmSetLanes(lanes); }
    ~LANESINUSE() { EmSetLanes(NULL); }
    LANESINUSE(const LANESINUSE &) = delete;
    LANESINUSE &operator=(const LANESINUSE &) = delete;
};

#endif
