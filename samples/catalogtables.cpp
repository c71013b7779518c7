#include "samples/catalogtables.h"

namespace
{
const ELEMENTROW floors[] = {
    {"Betonplatte 20 cm", 3.77},
    {"Betonplatte mit Estrich 5 cm", 3.32},
    {"Betonplatte mit Holzpflaster", 1.84},
    {"Betonplatte, 5 cm Dämmung", 0.66},
    {"Betonplatte, 10 cm Dämmung", 0.32},
};

const ELEMENTROW walls[] = {
    {"Trapezblech, einschalig", 5.88},
    {"Stahlbeton 20 cm", 3.89},
    {"Kalksandstein 24 cm, verputzt", 2.19},
    {"Vollziegel 24 cm, verputzt", 1.96},
    {"Vollziegel 36,5 cm, verputzt", 1.5},
    {"Hochlochziegel 30 cm, verputzt", 1.02},
    {"Porenbeton 30 cm, verputzt", 0.48},
    {"Stahlkassette, 10 cm Dämmung", 0.55}, // with its webs, which carry heat past the insulation
    {"Betonsandwich, 8 cm Dämmung", 0.44},
    {"Sandwichpaneel 6 cm", 0.39},
    {"Sandwichpaneel 10 cm", 0.24},
    {"Mauerwerk 24 cm, 12 cm Dämmung", 0.26},
};

const ELEMENTROW roofs[] = {
    {"Faserzement-Wellplatten", 6.61},        {"Holzschalung mit Dachbahn", 2.61},
    {"Porenbetonplatten 20 cm", 0.69},        {"Stahltrapezdach, 6 cm Dämmung", 0.59},
    {"Stahlbetondach, 8 cm Dämmung", 0.44},   {"Dachpaneel 8 cm", 0.3},
    {"Stahltrapezdach, 12 cm Dämmung", 0.28}, {"Stahltrapezdach, 20 cm Dämmung", 0.17},
};

const ELEMENTROW windows[] = {
    {"Einfachglas, Metallrahmen", 5.8},  {"Einfachglas, Holzrahmen", 5.0},   {"Profilbauglas, einschalig", 5.6},
    {"Profilbauglas, zweischalig", 2.8}, {"Isolierglas, Metallrahmen", 4.3}, {"Isolierglas, Holzrahmen", 2.7},
    {"Wärmeschutzglas, zweifach", 1.3},  {"Wärmeschutzglas, dreifach", 0.9},
};

const ELEMENTROW roofLights[] = {
    {"Lichtplatten, einschalig", 5.7},     {"Lichtkuppel, einschalig", 5.4},
    {"Lichtkuppel, zweischalig", 2.7},     {"Lichtkuppel, dreischalig", 1.8},
    {"Lichtband, Stegplatten 10 mm", 3.1}, {"Lichtband, Stegplatten 16 mm", 2.4},
};

const ELEMENTROW gates[] = {
    {"Schnelllauftor aus Folie", 6.0},   {"Stahltor, ungedämmt", 5.9},
    {"Rolltor, doppelwandig", 4.5},      {"Holztor 4 cm", 2.1},
    {"Sektionaltor, 4 cm gedämmt", 1.5}, {"Sektionaltor, 8 cm gedämmt", 0.9},
    {"Außentür aus Metall", 4.0},        {"Außentür aus Holz", 3.5},
    {"Stahltür, gedämmt", 1.8},
};

const ELEMENTGROUP groups[] = {
    {"Fußböden", floors},        {"Wände", walls},          {"Decken und Dächer", roofs}, {"Fenster", windows},
    {"Oberlichter", roofLights}, {"Tore und Türen", gates},
};

const AIRHEATERROW airHeaters[] = {
    {"Warmluftgerät WG 12", 12000, 26, 1350, 0.65, 0.55, 0.6},
    {"Warmluftgerät WG 18", 18000, 26, 2050, 0.8, 0.6, 0.7},
    {"Warmluftgerät WG 24", 24000, 26, 2700, 0.9, 0.7, 0.8},
    {"Warmluftgerät WG 30", 30000, 27.6, 3200, 0.95, 0.7, 0.8},
    {"Warmluftgerät WG 36", 36000, 27.9, 3800, 1, 0.75, 0.85},
    {"Warmluftgerät WG 45", 45000, 28.2, 4700, 1.1, 0.8, 0.85},
    {"Warmluftgerät WG 60", 60000, 28.5, 6200, 1.25, 0.85, 0.9},
    {"Warmluftgerät WG 75", 75000, 29, 7600, 1.4, 0.9, 0.95},
    {"Warmluftgerät WG 95", 95000, 29.4, 9500, 1.6, 0.95, 1},
    {"Warmluftgerät WG 120", 120000, 29.4, 12000, 1.8, 1, 1.1},
    {"Torluftschleier TL 3", 13500, 18, 2250, 3, 0.5, 0.4},
    {"Torluftschleier TL 4", 18000, 18, 3000, 4, 0.5, 0.4},
    {"Torluftschleier TL 5", 22500, 18, 3750, 5, 0.5, 0.4},
};
} // namespace

std::span<const ELEMENTGROUP> SampleElements()
{
    return groups;
}

std::span<const AIRHEATERROW> SampleAirHeaters()
{
    return airHeaters;
}
