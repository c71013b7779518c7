// The sample catalogues as tables. Names are UTF-8 of at most 31 characters, in the order of the file.
#ifndef SAMPLES_CATALOGTABLES_H
#define SAMPLES_CATALOGTABLES_H

#include <span>

struct ELEMENTROW {
    const char *name;
    double k; // W/(m2 K)
};

struct ELEMENTGROUP {
    const char *name;
    std::span<const ELEMENTROW> elements;
};

struct AIRHEATERROW {
    const char *type;
    double output;                // W, sensible
    double tempRise;              // K
    double airFlow;               // m3/h
    double length, width, height; // m
};

/// Building elements as the usual tables of building physics have them. Floors, walls, ceilings and roofs are
/// reckoned from their layers: conductivities of EN ISO 10456, surface resistances of EN ISO 6946 (a floor has
/// the ground outside, and none there). Glazing, roof lights, gates and doors are the flat values for buildings
/// that stand already, frames included.
std::span<const ELEMENTGROUP> SampleElements();

/// Gas-fired unit heaters of the usual sizes and air curtains for gates, those of the sample halls among them.
/// Output, flow and rise agree within 2 % by the heat that air takes up, 0.34 Wh/(m3 K).
std::span<const AIRHEATERROW> SampleAirHeaters();

#endif
