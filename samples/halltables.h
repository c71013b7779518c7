// The sample halls as tables. Lengths in m, angles in degrees, texts in UTF-8. A row stands for `count` like
// objects, each `step` behind the one before.
#ifndef SAMPLES_HALLTABLES_H
#define SAMPLES_HALLTABLES_H

#include "ker/emroom.h"

#include <span>

struct EMITTERROW {
    const char *model;
    bool reduced; // runs on the model's second stage
    AgPOINT first;
    AgVECTOR step;
    int count;
    double rotation;
    double tilt; // positive: the beam leans to the left of the body's axis, +y for rotation 0
};

struct UNITROW {
    const char *type;
    double power;    // W
    double tempRise; // K
    double airFlow;  // m3/h
    AgPOINT size;
    AgPOINT first;
    AgVECTOR step;
    int count;
};

enum { ON_FLOOR = 0, ON_CEILING = 1, ON_WALL_A = 2, ON_WALL_B = 3, ON_WALL_C = 4, ON_WALL_D = 5 };

struct OPENINGROW {
    int surface; // place among the six
    const char *description;
    double k;     // W/(m2 K)
    bool ownTemp; // tExt counts
    double tExt;  // C
    AgPOINT size;
    AgPOINT first; // centre, in the surface's plan
    AgVECTOR step;
    int count;
    double rotation = 0;
};

struct ZONEROW {
    AgPOINT size;
    AgPOINT pos;
    double rotation;
};

struct HALLTABLE {
    const char *file;
    AgPOINT size;
    int date;
    EmROOMDATA data;
    const char *head;
    const char *text;
    const char *conclusion;
    const char *author;
    std::span<const EMITTERROW> emitters;
    std::span<const UNITROW> units;
    std::span<const OPENINGROW> openings;
    std::span<const ZONEROW> zones;
};

extern const HALLTABLE hallTables[];

#endif
