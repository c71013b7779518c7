// The hall's record: its bytes, the tails of its older forms, what is skipped and what is refused.
#include "support/cdeitems.h"
#include "support/sampleroom.h"

#include "lib/charstr.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>

namespace
{
// A small hall, 10 x 6 x 4 m, item by item as it stands in a file.

CdeITEMS Box(double height = 4)
{
    return ItGroup(ItReals({0, 0, 0, 10, 6, height}));
}

CdeITEMS NoMembers()
{
    return ItGroup({});
}

CdeITEMS OldEmitter(const char *model) // up to the tilt
{
    return CdeITEMS{ItStr(model)} + ItReals({1.5, 2.5, 3.5, 0.5, 0.25});
}

CdeITEMS Emitter(const char *model)
{
    return ItGroup(OldEmitter(model) + ItReals({9000}));
}

CdeITEMS Constructions() // k, alpha, tExt of floor, ceiling, walls
{
    return ItReals({0.4, 6.5, 8, 0.5, 7.5, -12, 0.6, 8.5, -14});
}

// The portions of the data that came later, each whole or not at all.
CdeITEMS AirPortion()
{
    return ItReals({0.5, -13});
}

CdeITEMS SeasonPortion(double reserved = 33.4)
{
    return CdeITEMS{ItInt(220), ItInt(5)} + ItReals({16, 3.5, 17, 12, reserved, 0.95, 0.75});
}

CdeITEMS GainPortion()
{
    return ItReals({5000, 18});
}

CdeITEMS FuelPortion()
{
    return {ItInt(2), ItReal(-15)};
}

CdeITEMS WorkPortion()
{
    return {ItInt(3), ItInt(2)};
}

const std::vector<CdeITEMS> &LaterPortions()
{
    static const std::vector<CdeITEMS> portions = {AirPortion(), SeasonPortion(), GainPortion(), FuelPortion(),
                                                   WorkPortion()};
    return portions;
}

CdeITEMS DataGroup(size_t portions = 5, double reserved = 33.4)
{
    CdeITEMS inner = Constructions();
    for (size_t i = 0; i < portions; ++i)
        inner = inner + (i == 1 ? SeasonPortion(reserved) : LaterPortions()[i]);
    return ItGroup(inner);
}

CdeITEMS OldHole() // size, centre, rotation, k, alpha, tExt
{
    return ItReals({2, 1.5, 4, 2.5, 0.25, 1.1, 8, 3});
}

CdeITEMS Hole()
{
    return ItGroup(OldHole() + CdeITEMS{ItInt(0), ItStr("T\xFCr 100%")});
}

// Size, origin and axes of the six, in their order. A negated unit vector has negative zeros.
const std::vector<double> frames[] = {
    {10, 6, 0, 0, 0, 1, 0, 0, 0, 1, 0},         {10, 6, 0, 0, 4, 1, 0, 0, 0, 1, 0},
    {10, 4, 10, 0, 0, -1, -0.0, -0.0, 0, 0, 1}, {6, 4, 10, 6, 0, -0.0, -1, -0.0, 0, 0, 1},
    {10, 4, 0, 6, 0, 1, 0, 0, 0, 0, 1},         {6, 4, 0, 0, 0, 0, 1, 0, 0, 0, 1},
};

CdeITEMS Surface(size_t i, const CdeITEMS &holes = {})
{
    return ItGroup(ItReals(frames[i])) + ItGroup(holes);
}

CdeITEMS Surfaces(const CdeITEMS &wallHoles = Hole())
{
    return ItGroup(Surface(0) + Surface(1) + Surface(2, wallHoles) + Surface(3) + Surface(4) + Surface(5));
}

CdeITEMS OldUnit() // up to the position
{
    return CdeITEMS{ItStr("Umluft 20")} + ItReals({20000, 0.9, 0.6, 0.7, 1, 2, 3});
}

CdeITEMS Unit(double reserved = 0.0)
{
    return ItGroup(OldUnit() + ItReals({reserved, 2400, 25}));
}

CdeITEMS Zone()
{
    return ItGroup(ItReals({3, 2, 5, 4, 0.5}));
}

CdeITEMS Article()
{
    return ItGroup({ItInt(2), ItInt(7), ItStr("Kopf"), ItStr("Text\nzwei")});
}

CdeITEMS Conclusion()
{
    return ItGroup({ItStr("Ende"), ItText("Langer Text"), ItStr("K. Mei\xDFner"), ItInt(20251231)});
}

CdeITEMS WholeHall(const CdeITEMS &emitters = Emitter(""))
{
    return ItGroup(Box() + ItGroup(emitters) + DataGroup() + Surfaces() + ItGroup(Unit()) + Article() +
                   ItGroup(Zone())) +
           Conclusion();
}

std::unique_ptr<EmROOM> Read(const CdeITEMS &items)
{
    return RoomOfBytes(EncodeItems(items));
}

/// What reading the items fails with.
XCODE Failure(const CdeITEMS &items)
{
    Read(items);
    return TakeFailure();
}

const EmSURFACE *SurfaceOf(const EmROOM &room, int place)
{
    const EmSURFACE *surface = room.Surfaces()->First();
    while (place-- > 0)
        surface = EmSURFACESET::Next(surface);
    return surface;
}

// The hall of the table, made by hand through the kernel.
std::unique_ptr<EmROOM> HallOfTheTable(EmMODEL *model)
{
    auto room = std::make_unique<EmROOM>(10.0, 6.0, 4.0, "Kopf", "Ende", 20251231);
    EmEMITTER *emitter = new EmEMITTER;
    emitter->SetModel(ModelAddRef(model));
    emitter->pos = {1.5, 2.5, 3.5};
    emitter->rotation = 0.5;
    emitter->tilt = 0.25;
    emitter->power = 9000;
    emitter->Insert(room->Emitters());
    EmROOMDATA &data = *room->Data();
    data.constr[EM_FLOOR] = {.k = 0.4, .alpha = 6.5, .tExt = 8, .tSurf = 99, .qSurf = 99};
    data.constr[EM_CEILING] = {.k = 0.5, .upperArea = 99, .alpha = 7.5, .tExt = -12};
    data.constr[EM_WALLS] = {.k = 0.6, .lowerArea = 99, .alpha = 8.5, .tExt = -14};
    data.airChange = 0.5;
    data.airTemp = -13;
    data.periodDays = 220;
    data.weekDays = 5;
    data.dayHours = 16;
    data.meanOutTemp = 3.5;
    data.runAirTemp = 17;
    data.reducedAirTemp = 12;
    data.regulation = 0.95;
    data.fuelPrice = 0.75;
    data.techGain = 5000;
    data.resultTemp = 18;
    data.fuelType = EM_PROPANE;
    data.designOutTemp = -15;
    data.workClass = 3;
    data.position = EM_SITTING;
    EmHOLE *hole = new EmHOLE;
    hole->size = {2, 1.5};
    hole->pos = {4, 2.5};
    hole->rotation = 0.25;
    hole->constr.k = 1.1;
    hole->constr.tExt = 3;
    StrCopy(hole->description, "T\xFCr 100%", sizeof(hole->description));
    hole->Insert(room->Surfaces()->FirstWall()->Holes());
    EmAIRHEATER *unit = new EmAIRHEATER;
    StrCopy(unit->type, "Umluft 20", sizeof(unit->type));
    unit->power = 20000;
    unit->size = {0.9, 0.6, 0.7};
    unit->pos = {1, 2, 3};
    unit->airFlow = 2400;
    unit->tempRise = 25;
    unit->Insert(room->AirHeaters());
    EmZONE *zone = new EmZONE;
    zone->size = {3, 2, 77};
    zone->pos = {5, 4, 77};
    zone->rotation = 0.5;
    zone->Insert(room->Zones());
    room->Article()->level = 2;
    room->Article()->reserved = 7;
    StrCopy(room->Article()->text, "Text\nzwei", 256);
    StrCopy(room->Conclusion()->text, "Langer Text", 256);
    StrCopy(room->Conclusion()->author, "K. Mei\xDFner", 32);
    return room;
}

TEST(RecordBytes, AHallIsWrittenAsItsTableOfItems)
{
    SAMPLEMODELS models;
    const char *name = models.Model(1)->Info()->name;
    EXPECT_EQ(RoomBytes(*HallOfTheTable(models.Model(1))), EncodeItems(WholeHall(Emitter(name))));
    EXPECT_EQ(RoomBytes(*HallOfTheTable(NULL)), EncodeItems(WholeHall(Emitter(""))));
}

TEST(RecordBytes, AHallReadsBackAsItsTableOfItems)
{
    SAMPLEMODELS models;
    CdeITEMS table = WholeHall(Emitter(models.Model(1)->Info()->name) + Emitter(""));
    auto room = Read(table);
    ASSERT_STREQ(TakeFailure(), XNULL);
    EXPECT_EQ(room->Emitters()->First()->model, models.Model(1));
    EXPECT_EQ(EmEMITTERSET::Next(room->Emitters()->First())->model, static_cast<EmMODEL *>(NULL));
    EXPECT_EQ(RoomBytes(*room), EncodeItems(table));
}

// Field by field, so that no two of them can change places on both ways.
TEST(RecordFields, OfTheSourcesComeInTheirOrder)
{
    auto room = Read(WholeHall());
    ASSERT_STREQ(TakeFailure(), XNULL);
    EXPECT_EQ(room->Box().min, AgE0);
    EXPECT_EQ(room->Box().max, AgPOINT(10, 6, 4));
    const EmEMITTER *emitter = room->Emitters()->First();
    EXPECT_EQ(emitter->pos, AgPOINT(1.5, 2.5, 3.5));
    EXPECT_EQ(emitter->rotation, 0.5);
    EXPECT_EQ(emitter->tilt, 0.25);
    EXPECT_EQ(emitter->power, 9000.0);
    const EmAIRHEATER *unit = room->AirHeaters()->First();
    EXPECT_STREQ(unit->type, "Umluft 20");
    EXPECT_EQ(unit->power, 20000.0);
    EXPECT_EQ(unit->size, AgPOINT(0.9, 0.6, 0.7));
    EXPECT_EQ(unit->pos, AgPOINT(1, 2, 3));
    EXPECT_EQ(unit->airFlow, 2400.0);
    EXPECT_EQ(unit->tempRise, 25.0);
    const EmZONE *zone = room->Zones()->First();
    EXPECT_EQ(zone->size, AgPOINT(3, 2));
    EXPECT_EQ(zone->pos, AgPOINT(5, 4));
    EXPECT_EQ(zone->rotation, 0.5);
}

TEST(RecordFields, OfTheDataComeInTheirOrder)
{
    auto room = Read(WholeHall());
    ASSERT_STREQ(TakeFailure(), XNULL);
    const EmROOMDATA &data = *room->Data();
    const double constr[][3] = {{0.4, 6.5, 8}, {0.5, 7.5, -12}, {0.6, 8.5, -14}};
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(data.constr[i].k, constr[i][0]);
        EXPECT_EQ(data.constr[i].alpha, constr[i][1]);
        EXPECT_EQ(data.constr[i].tExt, constr[i][2]);
    }
    EXPECT_EQ(data.airChange, 0.5);
    EXPECT_EQ(data.airTemp, -13.0);
    EXPECT_EQ(data.periodDays, 220);
    EXPECT_EQ(data.weekDays, 5);
    EXPECT_EQ(data.dayHours, 16.0);
    EXPECT_EQ(data.meanOutTemp, 3.5);
    EXPECT_EQ(data.runAirTemp, 17.0);
    EXPECT_EQ(data.reducedAirTemp, 12.0);
    EXPECT_EQ(data.regulation, 0.95);
    EXPECT_EQ(data.fuelPrice, 0.75);
    EXPECT_EQ(data.techGain, 5000.0);
    EXPECT_EQ(data.resultTemp, 18.0);
    EXPECT_EQ(data.fuelType, EM_PROPANE);
    EXPECT_EQ(data.designOutTemp, -15.0);
    EXPECT_EQ(data.workClass, 3);
    EXPECT_EQ(data.position, EM_SITTING);
}

TEST(RecordFields, OfTheEnvelopeComeInTheirOrder)
{
    auto room = Read(WholeHall());
    ASSERT_STREQ(TakeFailure(), XNULL);
    for (int i = 0; i < EmSURFACESET::COUNT; ++i) {
        const EmSURFACE *surface = SurfaceOf(*room, i);
        const std::vector<double> &frame = frames[i];
        EXPECT_EQ(surface->size, AgPOINT(frame[0], frame[1]));
        EXPECT_EQ(surface->origin, AgPOINT(frame[2], frame[3], frame[4]));
        EXPECT_EQ(surface->uAxis, AgPOINT(frame[5], frame[6], frame[7]));
        EXPECT_EQ(surface->vAxis, AgPOINT(frame[8], frame[9], frame[10]));
        EXPECT_EQ(surface->Holes()->Count(), i == 2 ? 1 : 0);
    }
    const EmHOLE *hole = SurfaceOf(*room, 2)->Holes()->First();
    EXPECT_EQ(hole->size, AgPOINT(2, 1.5));
    EXPECT_EQ(hole->pos, AgPOINT(4, 2.5));
    EXPECT_EQ(hole->rotation, 0.25);
    EXPECT_EQ(hole->constr.k, 1.1);
    EXPECT_EQ(hole->constr.alpha, 8.0);
    EXPECT_EQ(hole->constr.tExt, 3.0);
    EXPECT_EQ(hole->flags, 0);
    EXPECT_STREQ(hole->description, "T\xFCr 100%");
}

TEST(RecordFields, OfTheTextsComeInTheirOrder)
{
    auto room = Read(WholeHall());
    ASSERT_STREQ(TakeFailure(), XNULL);
    EXPECT_EQ(room->Article()->level, 2);
    EXPECT_EQ(room->Article()->reserved, 7);
    EXPECT_STREQ(room->Article()->head, "Kopf");
    EXPECT_STREQ(room->Article()->text, "Text\nzwei");
    EXPECT_STREQ(room->Conclusion()->head, "Ende");
    EXPECT_STREQ(room->Conclusion()->text, "Langer Text");
    EXPECT_STREQ(room->Conclusion()->author, "K. Mei\xDFner");
    EXPECT_EQ(room->Conclusion()->date, 20251231);
}

// The place decides, whatever the surface looks like.
TEST(RecordFields, SurfacesTakeTheirConstructionByTheirPlace)
{
    CdeITEMS mixed = ItGroup(Surface(5) + Surface(4) + Surface(0) + Surface(1) + Surface(3) + Surface(2));
    auto room = Read(ItGroup(Box() + NoMembers() + DataGroup() + mixed));
    ASSERT_STREQ(TakeFailure(), XNULL);
    const int places[] = {EM_FLOOR, EM_CEILING, EM_WALLS, EM_WALLS, EM_WALLS, EM_WALLS};
    for (int i = 0; i < EmSURFACESET::COUNT; ++i)
        EXPECT_EQ(SurfaceOf(*room, i)->constr, &room->Data()->constr[places[i]]) << i;
    EXPECT_EQ(SurfaceOf(*room, 0)->size, AgPOINT(6, 4));
}

TEST(RecordRound, AnyHallWrittenReadAndWrittenGivesTheSameBytes)
{
    SAMPLEMODELS models;
    for (unsigned i = 0; i < 400; ++i) {
        SCOPED_TRACE(i);
        std::string bytes = RoomBytes(*MakeSampleRoom(i, models));
        auto read = RoomOfBytes(bytes);
        ASSERT_STREQ(TakeFailure(), XNULL);
        ASSERT_EQ(RoomBytes(*read), bytes);
    }
}

TEST(RecordRound, TextsOfFullLengthComeBackWhole)
{
    EmROOM room(1, 1, 1, std::string(255, 'a').c_str(), std::string(255, 'b').c_str(), 0);
    StrCopy(room.Article()->text, std::string(255, 'c').c_str(), 256);
    StrCopy(room.Conclusion()->text, std::string(16383, 'd').c_str(), 16384);
    StrCopy(room.Conclusion()->author, std::string(31, 'e').c_str(), 32);
    EmHOLE *hole = new EmHOLE;
    StrCopy(hole->description, std::string(255, 'f').c_str(), 256);
    hole->Insert(room.Surfaces()->Ceiling()->Holes());
    EmAIRHEATER *unit = new EmAIRHEATER;
    StrCopy(unit->type, std::string(31, 'g').c_str(), 32);
    unit->Insert(room.AirHeaters());
    std::string bytes = RoomBytes(room);
    auto read = RoomOfBytes(bytes);
    ASSERT_STREQ(TakeFailure(), XNULL);
    EXPECT_EQ(StrLength(read->Conclusion()->text), 16383);
    EXPECT_EQ(RoomBytes(*read), bytes);
}

TEST(RecordRound, LongerTextsThanAFieldTakesAreCutWithoutAFailure)
{
    CdeITEMS unit = CdeITEMS{ItStr(std::string(255, 'g'))} + ItReals({1, 1, 1, 1, 1, 1, 1, 0, 1, 1});
    CdeITEMS conclusion = {ItStr("x"), ItText(std::string(70000, 'd')), ItStr(std::string(200, 'e')), ItInt(5)};
    auto room = Read(ItGroup(Box() + NoMembers() + DataGroup() + Surfaces() + ItGroup(ItGroup(unit))) +
                     ItGroup(conclusion));
    ASSERT_STREQ(TakeFailure(), XNULL);
    EXPECT_EQ(StrLength(room->AirHeaters()->First()->type), 31);
    EXPECT_EQ(StrLength(room->Conclusion()->text), 16383);
    EXPECT_EQ(StrLength(room->Conclusion()->author), 31);
    EXPECT_EQ(room->Conclusion()->date, 5);
}

// Older forms

TEST(OldHall, OfBoxAndEmittersGetsSurfacesAndDefaults)
{
    const struct {
        const char *form;
        CdeITEMS items;
    } forms[] = {
        {"closed", ItGroup(Box() + NoMembers())},
        {"ends early", CdeITEMS{ItSection()} + Box() + NoMembers()},
        {"ends within the emitters", CdeITEMS{ItSection()} + Box() + CdeITEMS{ItSection()}},
    };
    for (const auto &form : forms) {
        SCOPED_TRACE(form.form);
        auto room = Read(form.items);
        ASSERT_STREQ(TakeFailure(), XNULL);
        ASSERT_EQ(room->Surfaces()->Count(), 6);
        for (int i = 0; i < EmSURFACESET::COUNT; ++i) {
            EXPECT_EQ(SurfaceOf(*room, i)->size, AgPOINT(frames[i][0], frames[i][1]));
            EXPECT_EQ(SurfaceOf(*room, i)->origin, AgPOINT(frames[i][2], frames[i][3], frames[i][4]));
            EXPECT_EQ(SurfaceOf(*room, i)->constr->alpha, 8.0);
            EXPECT_EQ(SurfaceOf(*room, i)->constr->k, 0.0);
        }
        EXPECT_EQ(room->Data()->fuelType, EM_NATURAL_GAS);
        EXPECT_EQ(room->Data()->position, EM_STANDING);
        EXPECT_STREQ(room->Article()->head, "Entwurf");
        EXPECT_STREQ(room->Conclusion()->text, "");
        EXPECT_EQ(room->Conclusion()->date, 20260115);
    }
}

// The first three sections of a room are its box, its emitters and its data.
TEST(OldHall, WithoutSurfacesKeepsItsDataAndBuildsThemFromItsBox)
{
    auto room = Read(ItGroup(Box() + NoMembers() + DataGroup()));
    ASSERT_STREQ(TakeFailure(), XNULL);
    ASSERT_EQ(room->Surfaces()->Count(), 6);
    EXPECT_EQ(SurfaceOf(*room, 2)->size, AgPOINT(10, 4));
    EXPECT_EQ(SurfaceOf(*room, 2)->constr->k, 0.6);
    EXPECT_STREQ(room->Conclusion()->text, "");
}

TEST(OldHall, WithoutACeilingHeightGetsWallsOf1000Metres)
{
    const struct {
        double height, wall;
    } cases[] = {{2e6, 1000}, {1e300, 1000}, {std::nextafter(1e6, 2e6), 1000}, {1e6, 1e6}, {-3, -3}, {0, 0}};
    for (const auto &row : cases) {
        auto room = Read(ItGroup(Box(row.height) + NoMembers()));
        ASSERT_STREQ(TakeFailure(), XNULL);
        EXPECT_EQ(room->Box().max.z, row.height);
        EXPECT_EQ(room->Surfaces()->FirstWall()->size.y, row.wall);
        EXPECT_EQ(room->Surfaces()->Ceiling()->origin.z, row.wall);
    }
}

TEST(OldHall, MeasuresItsSurfacesBetweenTheCornersOfItsBox)
{
    auto room = Read(ItGroup(ItGroup(ItReals({1, 2, 3, 11, 8, 7})) + NoMembers()));
    ASSERT_STREQ(TakeFailure(), XNULL);
    EXPECT_EQ(room->Box().min, AgPOINT(1, 2, 3));
    EXPECT_EQ(SurfaceOf(*room, 0)->size, AgPOINT(10, 6));
    EXPECT_EQ(SurfaceOf(*room, 2)->size, AgPOINT(10, 4));
}

TEST(OldHall, WhoseBoxHasNoFiniteSizeIsRefused)
{
    EXPECT_STREQ(Failure(ItGroup(ItGroup(ItReals({-1e308, 0, 0, 1e308, 6, 4})) + NoMembers())), XCDE_INVOLVED);
}

TEST(OldHall, EndsItsDataAtAnyPortionAndKeepsTheDefaultsBehindIt)
{
    const EmROOMDATA none;
    for (size_t portions = 0; portions <= 5; ++portions) {
        SCOPED_TRACE(portions);
        auto room = Read(ItGroup(Box() + NoMembers() + DataGroup(portions) + Surfaces()));
        ASSERT_STREQ(TakeFailure(), XNULL);
        const EmROOMDATA &data = *room->Data();
        EXPECT_EQ(data.constr[EM_WALLS].tExt, -14.0);
        EXPECT_EQ(data.airTemp, portions >= 1 ? -13.0 : none.airTemp);
        EXPECT_EQ(data.periodDays, portions >= 2 ? 220 : none.periodDays);
        EXPECT_EQ(data.fuelPrice, portions >= 2 ? 0.75 : none.fuelPrice);
        EXPECT_EQ(data.techGain, portions >= 3 ? 5000.0 : none.techGain);
        EXPECT_EQ(data.resultTemp, portions >= 3 ? 18.0 : none.resultTemp);
        EXPECT_EQ(data.fuelType, portions >= 4 ? 2 : none.fuelType);
        EXPECT_EQ(data.designOutTemp, portions >= 4 ? -15.0 : none.designOutTemp);
        EXPECT_EQ(data.workClass, portions >= 5 ? 3 : none.workClass);
        EXPECT_EQ(data.position, portions >= 5 ? 2 : none.position);
        EXPECT_EQ(SurfaceOf(*room, 2)->Holes()->Count(), 1);
    }
}

TEST(OldHall, EndsAtAnyGroupAndKeepsTheDefaultsBehindIt)
{
    const CdeITEMS groups[] = {DataGroup(), Surfaces(), ItGroup(Unit()), Article(), ItGroup(Zone())};
    for (bool closed : {true, false}) {
        CdeITEMS inner = Box() + ItGroup(Emitter(""));
        for (int n = 0; n <= 5; ++n) {
            SCOPED_TRACE(n);
            auto room = Read(closed ? ItGroup(inner) + Conclusion() : CdeITEMS{ItSection()} + inner);
            ASSERT_STREQ(TakeFailure(), XNULL);
            EXPECT_EQ(room->Emitters()->Count(), 1);
            EXPECT_EQ(room->Data()->airTemp, n >= 1 ? -13.0 : 0.0);
            EXPECT_EQ(room->Surfaces()->Count(), 6);
            EXPECT_EQ(SurfaceOf(*room, 2)->Holes()->Count(), n >= 2 ? 1 : 0);
            EXPECT_EQ(room->AirHeaters()->Count(), n >= 3 ? 1 : 0);
            EXPECT_STREQ(room->Article()->head, n >= 4 ? "Kopf" : "Entwurf");
            EXPECT_EQ(room->Zones()->Count(), n >= 5 ? 1 : 0);
            EXPECT_STREQ(room->Conclusion()->head, closed ? "Ende" : "Schlu\xDF");
            if (n < 5)
                inner = inner + groups[n];
        }
    }
}

TEST(OldHall, HasEmittersThatTakeTheirPowerFromTheirModel)
{
    SAMPLEMODELS models;
    CdeITEMS emitters = ItGroup(OldEmitter(models.Model(2)->Info()->name)) + ItGroup(OldEmitter(""));
    auto room = Read(WholeHall(emitters));
    ASSERT_STREQ(TakeFailure(), XNULL);
    const EmEMITTER *emitter = room->Emitters()->First();
    EXPECT_EQ(emitter->power, models.Model(2)->Info()->power);
    EXPECT_EQ(EmEMITTERSET::Next(emitter)->power, 0.0);
}

TEST(OldHall, HasOpeningsWithATemperatureOfTheirOwn)
{
    auto room = Read(ItGroup(Box() + NoMembers() + DataGroup() + Surfaces(ItGroup(OldHole()))));
    ASSERT_STREQ(TakeFailure(), XNULL);
    const EmHOLE *hole = SurfaceOf(*room, 2)->Holes()->First();
    EXPECT_EQ(hole->flags, EmHOLE::OWN_TEMP);
    EXPECT_STREQ(hole->description, "");
    EXPECT_EQ(hole->OuterTemp(), 3.0);
}

// Flags and description came together.
TEST(OldHall, HasNoOpeningsWithFlagsAndWithoutDescription)
{
    CdeITEMS half = ItGroup(OldHole() + CdeITEMS{ItInt(0)});
    EXPECT_STREQ(Failure(ItGroup(Box() + NoMembers() + DataGroup() + Surfaces(half))), XCDE_INVOLVED);
}

TEST(OldHall, HasWarmAirUnitsWithoutFlowAndRise)
{
    auto room = Read(ItGroup(Box() + NoMembers() + DataGroup() + Surfaces() + ItGroup(ItGroup(OldUnit()))));
    ASSERT_STREQ(TakeFailure(), XNULL);
    EXPECT_EQ(room->AirHeaters()->First()->pos, AgPOINT(1, 2, 3));
    EXPECT_EQ(room->AirHeaters()->First()->airFlow, 0.0);
    EXPECT_EQ(room->AirHeaters()->First()->tempRise, 0.0);
}

TEST(Reading, TakesNoNoticeOfReservedNumbers)
{
    for (double reserved : {0.0, -1.0, 1e300, std::numeric_limits<double>::quiet_NaN(),
                            std::numeric_limits<double>::infinity()}) {
        auto room = Read(ItGroup(Box() + ItGroup(Emitter("")) + DataGroup(5, reserved) + Surfaces() +
                                 ItGroup(Unit(reserved)) + Article() + ItGroup(Zone())) +
                         Conclusion());
        ASSERT_STREQ(TakeFailure(), XNULL);
        EXPECT_EQ(RoomBytes(*room), EncodeItems(WholeHall())) << "33.4 and 0.0 stand there again";
    }
}

TEST(Reading, ReplacesWhatARoomHeld)
{
    SAMPLEMODELS models;
    auto room = MakeFullRoom(models);
    CdeFILE file;
    file.Open(NULL, "c");
    std::string old = EncodeItems(ItGroup(Box() + NoMembers()));
    file.Write(old.data(), static_cast<int>(old.size()));
    file.Seek(0);
    room->Read(file);
    ASSERT_STREQ(TakeFailure(), XNULL);
    EXPECT_EQ(room->Emitters()->Count() + room->AirHeaters()->Count() + room->Zones()->Count(), 0);
    EXPECT_EQ(room->Surfaces()->Count(), 6);
    EXPECT_EQ(SurfaceOf(*room, 0)->Holes()->Count(), 0);
    EXPECT_EQ(room->Data()->airChange, 0.0);
    EXPECT_EQ(room->Data()->constr[EM_FLOOR].k, 0.0);
}

// What a later version may add

const CdeITEMS unknown = {ItInt(-1), ItReal(NAN), ItStr("neu"), ItText("neu"), ItSection(3), ItSection(4),
                          ItStr(""), ItEnd(),     ItReal(1),    ItEnd(),       ItInt(9)};

/// Whether the section that begins there holds members and nothing else.
bool IsListOf(const CdeITEMS &items, size_t begin)
{
    int depth = 0;
    for (size_t i = begin; i < items.size(); ++i) {
        depth += items[i].tag == CDE_SECTION;
        depth -= items[i].tag == CDE_END;
        if (depth == 0)
            return begin != 0; // the room itself holds groups of many kinds
        if (depth == 1 && items[i].tag != CDE_SECTION && items[i].tag != CDE_END)
            return false;
    }
    return false;
}

TEST(Reading, SkipsWhatALaterVersionAddsToAnyRecord)
{
    const CdeITEMS table = WholeHall();
    const std::string bytes = EncodeItems(table);
    std::vector<size_t> open;
    int records = 0, lists = 0;
    for (size_t i = 0; i < table.size(); ++i) {
        if (table[i].tag == CDE_SECTION)
            open.push_back(i);
        if (table[i].tag != CDE_END)
            continue;
        SCOPED_TRACE(i);
        bool list = IsListOf(table, open.back());
        open.pop_back();
        CdeITEMS longer = table;
        longer.insert(longer.begin() + static_cast<long>(i), unknown.begin(), unknown.end());
        auto room = Read(longer);
        EXPECT_STREQ(TakeFailure(), list ? XCDE_INVOLVED : XNULL);
        if (!list) {
            EXPECT_EQ(RoomBytes(*room), bytes);
        }
        ++(list ? lists : records);
    }
    EXPECT_EQ(records, 15); // room, box, emitter, data, 6 surfaces, opening, unit, article, zone, conclusion
    EXPECT_EQ(lists, 10);   // emitters, surfaces, openings of 6, units, zones
}

TEST(Reading, TakesNoNoticeOfSectionNumbersAndOfWhatFollowsTheConclusion)
{
    CdeITEMS items = WholeHall();
    for (CdeITEM &item : items)
        if (item.tag == CDE_SECTION)
            item.number = 4711;
    auto room = Read(items + unknown);
    ASSERT_STREQ(TakeFailure(), XNULL);
    EXPECT_EQ(RoomBytes(*room), EncodeItems(WholeHall()));
}

// What no hall can have

TEST(Refused, IsANumberThatIsNotFiniteWhereverItStands)
{
    SAMPLEMODELS models;
    const CdeITEMS table = WholeHall(Emitter(models.Model(0)->Info()->name));
    int numbers = 0, ignored = 0;
    for (size_t i = 0; i < table.size(); ++i) {
        if (table[i].tag != CDE_REAL)
            continue;
        ++numbers;
        for (double bad : {std::nan(""), HUGE_VAL, -HUGE_VAL}) {
            CdeITEMS damaged = table;
            damaged[i].real = bad;
            XCODE code = Failure(damaged);
            if (code == XNULL)
                ++ignored;
            else
                EXPECT_STREQ(code, XCDE_INVOLVED) << i;
        }
    }
    EXPECT_EQ(numbers, 6 + 6 + 9 + 12 + 66 + 8 + 10 + 5);
    EXPECT_EQ(ignored, 2 * 3) << "the two reserved numbers";
}

TEST(Refused, IsAnItemOfAnotherKindWhereverItStands)
{
    const CdeITEMS table = WholeHall();
    for (size_t i = 0; i < table.size(); ++i) {
        if (table[i].tag == CDE_SECTION || table[i].tag == CDE_END)
            continue;
        for (const CdeITEM &other : {ItInt(1), ItReal(1), ItStr("1"), ItText("1")}) {
            if (other.tag == table[i].tag)
                continue;
            CdeITEMS damaged = table;
            damaged[i] = other;
            EXPECT_STREQ(Failure(damaged), XCDE_INVOLVED) << i;
        }
    }
}

TEST(Refused, IsAnyOtherNumberOfSurfacesThanSix)
{
    for (int count : {0, 1, 2, 5, 7, 12}) {
        CdeITEMS surfaces;
        for (int i = 0; i < count; ++i)
            surfaces = surfaces + Surface(static_cast<size_t>(i % 6));
        EXPECT_STREQ(Failure(ItGroup(Box() + NoMembers() + DataGroup() + ItGroup(surfaces))), XCDE_INVOLVED)
            << count;
        EXPECT_STREQ(Failure(CdeITEMS{ItSection()} + Box() + NoMembers() + DataGroup() + CdeITEMS{ItSection()} +
                             surfaces),
                     XCDE_INVOLVED)
            << count;
    }
}

TEST(Refused, AreSurfaceAxesThatSpanNoPlane)
{
    const struct {
        const char *why;
        double u[3], v[3];
        XCODE code;
    } cases[] = {
        {"one is nothing", {0, 0, 0}, {0, 1, 0}, XCDE_INVOLVED},
        {"both are nothing", {0, 0, 0}, {0, 0, 0}, XCDE_INVOLVED},
        {"the same", {1, 0, 0}, {1, 0, 0}, XCDE_INVOLVED},
        {"opposite", {0, 0, 2}, {0, 0, -1}, XCDE_INVOLVED},
        {"so short that nothing is left", {1e-200, 0, 0}, {0, 1e-200, 0}, XCDE_INVOLVED},
        {"so long that all bounds are left", {1e200, 0, 0}, {0, 1e200, 0}, XCDE_INVOLVED},
        {"oblique and long, as nobody draws it", {3, 0, 1}, {0, 1, 1}, XNULL},
        {"short", {1e-30, 0, 0}, {0, 1e-30, 0}, XNULL},
    };
    for (const auto &row : cases) {
        CdeITEMS axes = ItReals({row.u[0], row.u[1], row.u[2], row.v[0], row.v[1], row.v[2]});
        CdeITEMS surfaces = ItGroup(ItReals({6, 4, 0, 0, 0}) + axes) + NoMembers();
        for (size_t i = 1; i < 6; ++i)
            surfaces = surfaces + Surface(i, Hole());
        auto room = Read(ItGroup(Box() + NoMembers() + DataGroup() + ItGroup(surfaces)));
        XCODE code = TakeFailure();
        EXPECT_STREQ(code, row.code) << row.why;
        if (code == XNULL)
            room->Surfaces()->Prepare();
    }
}

TEST(Refused, IsAFileThatIsNoHall)
{
    const struct {
        const char *what;
        std::string bytes;
        XCODE code;
    } cases[] = {
        {"nothing", "", XFREAD},
        {"a text", "Hallo Halle", XCDE_INVOLVED},
        {"a model", EncodeItems({ItHeader("IE/GIM", 1), ItSection(), ItStr("x"), ItEnd()}), XCDE_INVOLVED},
        {"an empty section", EncodeItems(ItGroup({})), XCDE_INVOLVED},
        {"no emitters", EncodeItems(ItGroup(Box())), XCDE_INVOLVED},
        {"the end of a section", EncodeItems({ItEnd()}), XCDE_INVOLVED},
        {"a box of five numbers", EncodeItems(ItGroup(ItGroup(ItReals({0, 0, 0, 1, 1})) + NoMembers())),
         XCDE_INVOLVED},
        {"a section that ends with the file", EncodeItems({ItSection()}), XFREAD},
        {"bytes that are no item behind all that is read",
         EncodeItems(ItGroup(Box() + NoMembers() + CdeITEMS{ItRaw("\x01")})), XCDE_INVOLVED},
        {"a negative length behind all that is read",
         EncodeItems(ItGroup(Box() + NoMembers() + DataGroup() + Surfaces() + NoMembers() + Article() +
                             NoMembers() + CdeITEMS{ItRaw("\xA7\xFF\xFF\xFF\xFF")})),
         XCDE_INVOLVED},
    };
    for (const auto &row : cases) {
        RoomOfBytes(row.bytes);
        EXPECT_STREQ(TakeFailure(), row.code) << row.what;
    }
}

TEST(Reading, PassesOverSectionsNestedAsDeepAsTheFileIsLong)
{
    enum { DEPTH = 100000 };
    CdeITEMS nest = CdeITEMS(DEPTH, ItSection()) + CdeITEMS(DEPTH, ItEnd());
    auto room = Read(
        ItGroup(Box() + NoMembers() + DataGroup() + Surfaces() + NoMembers() + Article() + NoMembers() + nest));
    EXPECT_STREQ(TakeFailure(), XNULL);
    EXPECT_STREQ(Failure(CdeITEMS(DEPTH, ItSection())), XCDE_INVOLVED);
}

TEST(Reading, FailsAsAWholeWhereAModelIsGone)
{
    SAMPLEMODELS models;
    SetModelFolder("\\nowhere\\at all");
    CdeITEMS emitters = Emitter(models.Model(0)->Info()->name) + Emitter("Fehlt") + Emitter("");
    auto room = Read(WholeHall(emitters));
    EXPECT_STREQ(TakeFailure(), XFOPEN);
    EXPECT_NE(StrFind(xFOpenName, "Fehlt.gim", 0), static_cast<const char *>(NULL)) << xFOpenName;
    EXPECT_EQ(room->Emitters()->Count(), 1) << "the emitter that was read by half is not in the set";
    SetModelFolder("");
}

TEST(Reading, LooksForNoModelOutsideItsFolder)
{
    for (const char *name : {"..\\x", "\\x", "C:x", "a/b", "../x", "..", ".", "/etc/passwd"})
        EXPECT_STREQ(Failure(WholeHall(Emitter(name))), XFOPEN) << name;
}

TEST(Reading, TakesABlankNameForNoModel)
{
    auto room = Read(WholeHall(Emitter("   ")));
    ASSERT_STREQ(TakeFailure(), XNULL);
    EXPECT_EQ(room->Emitters()->First()->model, static_cast<EmMODEL *>(NULL));
    EXPECT_EQ(RoomBytes(*room), EncodeItems(WholeHall(Emitter(""))));
}

TEST(Reading, TakesIntegersAsTheyCome)
{
    for (int value : {0, -1, 77, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()}) {
        CdeITEMS items = WholeHall();
        for (CdeITEM &item : items)
            if (item.tag == CDE_INT)
                item.number = value;
        auto room = Read(items);
        ASSERT_STREQ(TakeFailure(), XNULL);
        EXPECT_EQ(room->Data()->fuelType, value);
        EXPECT_EQ(room->HeatValue(), 0.0);
        AskAll(*room);
        EXPECT_EQ(RoomBytes(*room), EncodeItems(items));
    }
}

// Legal, if odd: they read, answer and write.
TEST(Reading, TakesHallsWithoutSizeAndBeyondAllSize)
{
    for (double size : {0.0, -5.0, 1e-300, 1e4, 1e150, 1e308}) {
        SCOPED_TRACE(size);
        EmROOM room(size, 1, size, "", "", 0);
        std::string bytes = RoomBytes(room);
        auto read = RoomOfBytes(bytes);
        ASSERT_STREQ(TakeFailure(), XNULL);
        AskAll(*read);
        EXPECT_EQ(RoomBytes(*read), bytes);
    }
}
} // namespace
