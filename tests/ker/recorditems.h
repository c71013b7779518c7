// A small hall, 10 x 6 x 4 m, item by item as it stands in a file, for the tests of the hall's record.
#ifndef TESTS_KER_RECORDITEMS_H
#define TESTS_KER_RECORDITEMS_H

#include "support/cdeitems.h"
#include "support/sampleroom.h"

#include <memory>
#include <string>
#include <vector>

inline CdeITEMS Box(double height = 4)
{
    return ItGroup(ItReals({0, 0, 0, 10, 6, height}));
}

inline CdeITEMS NoMembers()
{
    return ItGroup({});
}

inline CdeITEMS OldEmitter(const char *model) // up to the tilt
{
    return CdeITEMS{ItStr(model)} + ItReals({1.5, 2.5, 3.5, 0.5, 0.25});
}

inline CdeITEMS Emitter(const char *model)
{
    return ItGroup(OldEmitter(model) + ItReals({9000}));
}

inline CdeITEMS Constructions() // k, alpha, tExt of floor, ceiling, walls
{
    return ItReals({0.4, 6.5, 8, 0.5, 7.5, -12, 0.6, 8.5, -14});
}

// The portions of the data that came later, each whole or not at all.
inline CdeITEMS AirPortion()
{
    return ItReals({0.5, -13});
}

inline CdeITEMS SeasonPortion(double reserved = 33.4)
{
    return CdeITEMS{ItInt(220), ItInt(5)} + ItReals({16, 3.5, 17, 12, reserved, 0.95, 0.75});
}

inline CdeITEMS GainPortion()
{
    return ItReals({5000, 18});
}

inline CdeITEMS FuelPortion()
{
    return {ItInt(2), ItReal(-15)};
}

inline CdeITEMS WorkPortion()
{
    return {ItInt(3), ItInt(2)};
}

inline const std::vector<CdeITEMS> &LaterPortions()
{
    static const std::vector<CdeITEMS> portions = {AirPortion(), SeasonPortion(), GainPortion(), FuelPortion(),
                                                   WorkPortion()};
    return portions;
}

inline CdeITEMS DataGroup(size_t portions = 5, double reserved = 33.4)
{
    CdeITEMS inner = Constructions();
    for (size_t i = 0; i < portions; ++i)
        inner = inner + (i == 1 ? SeasonPortion(reserved) : LaterPortions()[i]);
    return ItGroup(inner);
}

inline CdeITEMS OldHole() // size, centre, rotation, k, alpha, tExt
{
    return ItReals({2, 1.5, 4, 2.5, 0.25, 1.1, 8, 3});
}

inline CdeITEMS Hole()
{
    return ItGroup(OldHole() + CdeITEMS{ItInt(0), ItStr("T\xFCr 100%")});
}

// Size, origin and axes of the six, in their order. A negated unit vector has negative zeros.
inline const std::vector<double> frames[] = {
    {10, 6, 0, 0, 0, 1, 0, 0, 0, 1, 0},         {10, 6, 0, 0, 4, 1, 0, 0, 0, 1, 0},
    {10, 4, 10, 0, 0, -1, -0.0, -0.0, 0, 0, 1}, {6, 4, 10, 6, 0, -0.0, -1, -0.0, 0, 0, 1},
    {10, 4, 0, 6, 0, 1, 0, 0, 0, 0, 1},         {6, 4, 0, 0, 0, 0, 1, 0, 0, 0, 1},
};

inline CdeITEMS Surface(size_t i, const CdeITEMS &holes = {})
{
    return ItGroup(ItReals(frames[i])) + ItGroup(holes);
}

inline CdeITEMS Surfaces(const CdeITEMS &wallHoles = Hole())
{
    return ItGroup(Surface(0) + Surface(1) + Surface(2, wallHoles) + Surface(3) + Surface(4) + Surface(5));
}

inline CdeITEMS OldUnit() // up to the position
{
    return CdeITEMS{ItStr("Umluft 20")} + ItReals({20000, 0.9, 0.6, 0.7, 1, 2, 3});
}

inline CdeITEMS Unit(double reserved = 0.0)
{
    return ItGroup(OldUnit() + ItReals({reserved, 2400, 25}));
}

inline CdeITEMS Zone()
{
    return ItGroup(ItReals({3, 2, 5, 4, 0.5}));
}

inline CdeITEMS Article()
{
    return ItGroup({ItInt(2), ItInt(7), ItStr("Kopf"), ItStr("Text\nzwei")});
}

inline CdeITEMS Conclusion()
{
    return ItGroup({ItStr("Ende"), ItText("Langer Text"), ItStr("K. Mei\xDFner"), ItInt(20251231)});
}

inline CdeITEMS WholeHall(const CdeITEMS &emitters = Emitter(""))
{
    return ItGroup(Box() + ItGroup(emitters) + DataGroup() + Surfaces() + ItGroup(Unit()) + Article() +
                   ItGroup(Zone())) +
           Conclusion();
}

inline std::unique_ptr<EmROOM> Read(const CdeITEMS &items)
{
    return RoomOfBytes(EncodeItems(items));
}

/// What reading the items fails with.
inline XCODE Failure(const CdeITEMS &items)
{
    Read(items);
    return TakeFailure();
}

inline const EmSURFACE *SurfaceOf(const EmROOM &room, int place)
{
    const EmSURFACE *surface = room.Surfaces()->First();
    while (place-- > 0)
        surface = EmSURFACESET::Next(surface);
    return surface;
}

#endif
