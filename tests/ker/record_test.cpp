// The hall's record: its bytes, its fields, and the tails of its older forms.
#include "recorditems.h"

#include "lib/charstr.h"

#include <gtest/gtest.h>

#include <cmath>

namespace
{
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
} // namespace
