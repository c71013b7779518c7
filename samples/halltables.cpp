#include "samples/halltables.h"

// A workshop of brick, heated with propane: tubes across the hall, one bright heater at the wall over the
// fitter's place.

static const EMITTERROW workshopEmitters[] = {
    {"Dunkel 15", false, {5, 6, 4.8}, {9.5, 0, 0}, 2, 90, 0},
    {"Hell 10", false, {10, 11.4, 5.2}, {0, 0, 0}, 1, 0, -30},
};

static const OPENINGROW workshopOpenings[] = {
    {ON_FLOOR, "Montagegrube", 1.1, true, 8, {6, 1}, {14, 3}, {0, 0}, 1},
    {ON_CEILING, "Lichtkuppel 1,2 x 1,2 m", 2.2, false, 0, {1.2, 1.2}, {5, 6}, {5, 0}, 3},
    {ON_WALL_A, "Fenster, Isolierglas", 2.8, false, 0, {2.4, 1.5}, {3, 2.2}, {4.6, 0}, 4},
    {ON_WALL_B, "Sektionaltor 4 x 4 m", 1.8, false, 0, {4, 4}, {6, 2}, {0, 0}, 1},
    {ON_WALL_B, "Oberlicht im Giebel", 2.8, false, 0, {1.2, 1.2}, {6, 5.1}, {0, 0}, 1},
    {ON_WALL_C, "Fenster, Isolierglas", 2.8, false, 0, {2.4, 1.5}, {3, 2.2}, {4.6, 0}, 4},
    {ON_WALL_D, "Tür zum Büro", 1.6, true, 18, {1, 2.1}, {2, 1.05}, {0, 0}, 1},
};

static const ZONEROW workshopZones[] = {
    {{4, 3}, {10, 9.5}, 0},
    {{5, 2.5}, {4, 2}, 0},
};

static const char workshopText[] = "Werkstatt für den Bau von Vorrichtungen. Beheizt werden soll die ganze "
                                   "Halle; am Montageplatz vor der Wand C "
                                   "wird ständig gearbeitet.";

static const char workshopConclusion[] =
    "Zwei Dunkelstrahler quer zur Halle decken den Wärmebedarf der Werkstatt. Über dem Montageplatz vor der "
    "Wand C "
    "hängt zusätzlich ein geneigter Hellstrahler, der getrennt geschaltet wird, wenn dort niemand arbeitet.\r\n"
    "\r\n"
    "Die Strahler werden von zwei Kugelfühlern geregelt. Eine Nachtabsenkung auf 8 Grad ist eingerechnet; ein "
    "tieferes "
    "Absenken lohnt bei der schweren Bauweise nicht.\r\n"
    "\r\n"
    "Vor der Ausführung ist zu klären:\r\n"
    "\r\n"
    "- Aufstellort des Flüssiggasbehälters\r\n"
    "- Führung der Abgasleitungen durch das Dach\r\n"
    "- Schutz der Leitungen am Tor gegen Anfahren\r\n";

static EmROOMDATA WorkshopData()
{
    EmROOMDATA data;
    data.constr[EM_FLOOR] = {.k = 0.6, .tExt = 8};
    data.constr[EM_CEILING] = {.k = 0.8, .tExt = -14};
    data.constr[EM_WALLS] = {.k = 1.1, .tExt = -14};
    data.airChange = 0.8;
    data.airTemp = -14;
    data.periodDays = 235;
    data.weekDays = 5;
    data.dayHours = 9;
    data.meanOutTemp = 3.4;
    data.designOutTemp = -14;
    data.runAirTemp = 14;
    data.reducedAirTemp = 8;
    data.resultTemp = 19;
    data.fuelType = EM_PROPANE;
    data.regulation = 0.92;
    data.fuelPrice = 1.35;
    data.techGain = 1500;
    data.workClass = 3;
    data.position = EM_STANDING;
    return data;
}

// A production hall of steel with sandwich walls: two stages for spring and autumn, workplaces on both long
// sides.

static const EMITTERROW productionEmitters[] = {
    {"Dunkel 30-2", false, {9, 6, 6.5}, {14, 0, 0}, 4, 0, 0},
    {"Dunkel 30-2", false, {9, 24, 6.5}, {14, 0, 0}, 4, 0, 0},
    {"Platte 6", false, {10, 15, 6.8}, {10, 0, 0}, 5, 90, 0},
    {"Hell 20-2", true, {58.8, 15, 5.5}, {0, 0, 0}, 1, 90, 40},
};

static const UNITROW productionUnits[] = {
    {"Warmluftgerät WG 24", 24000, 26, 2700, {0.9, 0.7, 0.8}, {1, 15, 4}, {0, 0, 0}, 1},
    {"Torluftschleier TL 4", 18000, 18, 3000, {4, 0.5, 0.4}, {59.6, 15, 4.6}, {0, 0, 0}, 1},
};

static const OPENINGROW productionOpenings[] = {
    {ON_FLOOR, "Pressengrube, beheizt", 0.9, true, 15, {5, 3}, {22, 15}, {0, 0}, 1},
    {ON_FLOOR, "Kabelkanal", 0.9, true, 10, {20, 0.6}, {40, 10}, {0, 0}, 1},
    {ON_CEILING, "Lichtband 18 x 2 m", 1.9, false, 0, {18, 2}, {15, 10.5}, {30, 0}, 2},
    {ON_CEILING, "Lichtband 18 x 2 m", 1.9, false, 0, {18, 2}, {15, 19.5}, {30, 0}, 2},
    {ON_CEILING, "Rauchabzug", 2.4, false, 0, {1.5, 1.5}, {30, 15}, {0, 0}, 1},
    {ON_WALL_A, "Fensterband", 1.4, false, 0, {10, 1.5}, {7, 3.5}, {11.5, 0}, 5},
    {ON_WALL_A, "Fluchttür", 1.8, false, 0, {1, 2.1}, {30, 1.05}, {0, 0}, 1},
    {ON_WALL_B, "Schnelllauftor 4 x 4,5 m", 2.6, false, 0, {4, 4.5}, {15, 2.25}, {0, 0}, 1},
    {ON_WALL_B, "Fluchttür", 1.8, false, 0, {1, 2.1}, {24, 1.05}, {0, 0}, 1},
    {ON_WALL_C, "Fensterband", 1.4, false, 0, {10, 1.5}, {7, 3.5}, {11.5, 0}, 5},
    {ON_WALL_C, "Lüftungsgitter, 45° gedreht", 3.5, false, 0, {0.8, 0.8}, {58.5, 6.5}, {0, 0}, 1, 45},
    {ON_WALL_D, "Durchgang zum Lager", 2, true, 12, {3, 3.5}, {12, 1.75}, {0, 0}, 1},
    {ON_WALL_D, "Bürofenster, 100 % feststehend", 1.3, true, 20, {6, 1.2}, {22, 4.2}, {0, 0}, 1},
};

static const ZONEROW productionZones[] = {
    {{26, 5}, {16, 5}, 0},
    {{26, 5}, {16, 25}, 0},
    {{8, 4}, {45, 24}, 0},
    {{3, 3}, {52, 8}, 45},
};

static const char productionText[] =
    "Fertigungshalle mit Arbeitsplätzen an beiden Längsseiten. Die Mittelzone dient dem Durchgang und der "
    "Aufstellung von Maschinen; das Tor in der Wand B wird etwa zehnmal am Tag geöffnet.";

static const char productionConclusion[] =
    "Acht zweistufige Dunkelstrahler in zwei Reihen über den Arbeitsplätzen tragen die Grundlast, "
    "Deckenstrahlplatten "
    "über dem Durchgang gleichen die Halle aus. In der Übergangszeit genügt die kleine Stufe.\r\n"
    "\r\n"
    "Am Tor der Wand B hängt ein Hellstrahler, der nach innen geneigt ist und auf der kleinen Stufe läuft. Er "
    "verkürzt "
    "die Erholzeit nach dem Öffnen des Tores und wird mit dem Torkontakt geschaltet.\r\n"
    "\r\n"
    "Die Warmluftgeräte dienen dem raschen Aufheizen am Wochenbeginn und dem Torschleier. Zur Deckung des "
    "Wärmebedarfs "
    "werden sie nicht gebraucht.\r\n"
    "\r\n"
    "Die Aufhängehöhe von 6,5 m hält den Kranbereich frei. Die Strahler sind nach Reihen getrennt zu "
    "regeln.\r\n";

static EmROOMDATA ProductionData()
{
    EmROOMDATA data;
    data.constr[EM_FLOOR] = {.k = 0.4, .tExt = 9};
    data.constr[EM_CEILING] = {.k = 0.35, .tExt = -12};
    data.constr[EM_WALLS] = {.k = 0.45, .tExt = -12};
    data.airChange = 1.05;
    data.airTemp = -12;
    data.periodDays = 220;
    data.weekDays = 5;
    data.dayHours = 16;
    data.meanOutTemp = 4.2;
    data.designOutTemp = -12;
    data.runAirTemp = 15;
    data.reducedAirTemp = 12;
    data.resultTemp = 20;
    data.fuelType = EM_NATURAL_GAS;
    data.regulation = 0.95;
    data.fuelPrice = 0.85;
    data.techGain = 12000;
    data.workClass = 2;
    data.position = EM_STANDING;
    return data;
}

// A logistics hall: long rows over the aisles, closer ones over the packing places at wall D, bright heaters
// behind the gates of wall A.

static const EMITTERROW logisticsEmitters[] = {
    {"Dunkel 50", false, {58, 20, 10}, {26, 0, 0}, 6, 0, 0},
    {"Dunkel 50", false, {58, 40, 10}, {26, 0, 0}, 6, 0, 0},
    {"Dunkel 50", false, {58, 60, 10}, {26, 0, 0}, 6, 0, 0},
    {"Dunkel 50", false, {58, 80, 10}, {26, 0, 0}, 6, 0, 0},
    {"Dunkel 30-2", false, {8, 10, 8}, {0, 16, 0}, 6, 90, 0},
    {"Dunkel 30-2", false, {22, 10, 8}, {0, 16, 0}, 6, 90, 0},
    {"Dunkel 30-2", true, {36, 10, 8}, {0, 16, 0}, 6, 90, 0},
    {"Hell 20-2", false, {70, 1.5, 6}, {20, 0, 0}, 6, 0, 35},
};

static const UNITROW logisticsUnits[] = {
    {"Torluftschleier TL 4", 18000, 18, 3000, {4, 0.5, 0.4}, {70, 0.4, 4.8}, {20, 0, 0}, 6},
};

static const OPENINGROW logisticsOpenings[] = {
    {ON_CEILING, "Lichtband 30 x 2 m", 1.6, false, 0, {30, 2}, {25, 30}, {50, 0}, 4},
    {ON_CEILING, "Lichtband 30 x 2 m", 1.6, false, 0, {30, 2}, {25, 70}, {50, 0}, 4},
    {ON_WALL_A, "Verladetor 4 x 4,2 m", 1.5, false, 0, {4, 4.2}, {30, 2.1}, {20, 0}, 6},
    {ON_WALL_A, "Fensterband", 1.3, false, 0, {24, 1.2}, {180, 3}, {0, 0}, 1},
    {ON_WALL_B, "Sektionaltor 5 x 5 m", 1.5, false, 0, {5, 5}, {50, 2.5}, {0, 0}, 1},
    {ON_WALL_C, "Fluchttür", 1.8, false, 0, {1, 2.1}, {25, 1.05}, {50, 0}, 4},
    {ON_WALL_D, "Fensterband", 1.3, false, 0, {24, 1.2}, {20, 3}, {30, 0}, 3},
};

static const ZONEROW logisticsZones[] = {
    {{30, 80}, {22, 50}, 0},
    {{110, 8}, {120, 6}, 0},
};

static const char logisticsText[] = "Umschlaghalle mit Packplätzen an der Wand D und sechs Verladetoren in der "
                                    "Wand A. In den Gängen zwischen den "
                                    "Regalen hält sich niemand ständig auf.";

static const char logisticsConclusion[] = "Über den Packplätzen hängen die Strahler dichter und niedriger als "
                                          "über den Gängen; die dritte Reihe dort läuft auf "
                                          "der kleinen Stufe. So wird an den Packplätzen die geforderte "
                                          "Temperatur erreicht, ohne die ganze Halle auf dieser "
                                          "zu halten.\r\n"
                                          "\r\n"
                                          "Hinter den Verladetoren wirken Hellstrahler, die von der Wand weg "
                                          "geneigt sind. Sie laufen nur, solange verladen "
                                          "wird.\r\n"
                                          "\r\n"
                                          "Die Halle ist in vier Regelkreise geteilt: Packplätze, Tore, Gänge "
                                          "Nord, Gänge Süd. Für jeden Kreis ist ein eigener "
                                          "Kugelfühler in 1,5 m Höhe vorzusehen.\r\n";

static EmROOMDATA LogisticsData()
{
    EmROOMDATA data;
    data.constr[EM_FLOOR] = {.k = 0.25, .tExt = 9};
    data.constr[EM_CEILING] = {.k = 0.28, .tExt = -12};
    data.constr[EM_WALLS] = {.k = 0.35, .tExt = -12};
    data.airChange = 0.45;
    data.airTemp = -12;
    data.periodDays = 215;
    data.weekDays = 6;
    data.dayHours = 16;
    data.meanOutTemp = 4.5;
    data.designOutTemp = -12;
    data.runAirTemp = 13;
    data.reducedAirTemp = 9;
    data.resultTemp = 15;
    data.fuelType = EM_NATURAL_GAS;
    data.regulation = 0.9;
    data.fuelPrice = 0.78;
    data.techGain = 25000;
    data.workClass = 3;
    data.position = EM_STANDING;
    return data;
}

const HALLTABLE hallTables[] = {
    {"Werkstatt.sc1",
     {20, 12, 6},
     20260115,
     WorkshopData(),
     "Strahlungsheizung der Werkstatt",
     workshopText,
     workshopConclusion,
     "M. Sommer",
     workshopEmitters,
     {},
     workshopOpenings,
     workshopZones},
    {"Produktionshalle.sc1",
     {60, 30, 8},
     20260116,
     ProductionData(),
     "Strahlungsheizung der Produktionshalle",
     productionText,
     productionConclusion,
     "M. Sommer",
     productionEmitters,
     productionUnits,
     productionOpenings,
     productionZones},
    {"Logistikhalle.sc1",
     {200, 100, 12},
     20260119,
     LogisticsData(),
     "Strahlungsheizung der Logistikhalle",
     logisticsText,
     logisticsConclusion,
     "Dipl.-Ing. B. Kögler",
     logisticsEmitters,
     logisticsUnits,
     logisticsOpenings,
     logisticsZones},
};
