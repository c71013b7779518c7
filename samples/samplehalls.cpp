#include "samples/samplehalls.h"

#include "lib/disk.h"
#include "lib/xassert.h"
#include "samples/halltables.h"

#include "lib/xon.h"

namespace
{
double Radians(double degrees)
{
    return degrees * AgPI / 180;
}

EmEMITTER *MakeEmitter(const EMITTERROW &row, int i)
{
    EmEMITTER *emitter = NULL;
    char name[sizeof(EmMODELINFO::name)];
    __enter
        ASSERT(TextFromUtf8(name, row.model, sizeof(name)));
        emitter = new EmEMITTER;
        EmMODEL *model = ModelAcquire(name); __test;
        emitter->SetModel(model);
        emitter->pos = row.first + row.step * i;
        emitter->rotation = Radians(row.rotation);
        emitter->tilt = Radians(row.tilt);
        emitter->power = row.reduced ? model->Info()->reducedPower : model->Info()->power;
    __point
        delete emitter;
        emitter = NULL;
    __treat
    return emitter;
}

void AddEmitters(EmROOM &room, const HALLTABLE &hall)
{
    __enter
        for (const EMITTERROW &row : hall.emitters)
            for (int i = 0; i < row.count; ++i) {
                EmEMITTER *emitter = MakeEmitter(row, i); __test;
                emitter->Insert(room.Emitters());
            }
    __point
    __treat
}

void AddUnits(EmROOM &room, const HALLTABLE &hall)
{
    __enter
        for (const UNITROW &row : hall.units)
            for (int i = 0; i < row.count; ++i) {
                EmAIRHEATER *unit = new EmAIRHEATER;
                unit->Insert(room.AirHeaters());
                ASSERT(TextFromUtf8(unit->type, row.type, sizeof(unit->type)));
                unit->power = row.power;
                unit->tempRise = row.tempRise;
                unit->airFlow = row.airFlow;
                unit->size = row.size;
                unit->pos = row.first + row.step * i;
            }
    __point
    __treat
}

void AddOpenings(EmROOM &room, const HALLTABLE &hall)
{
    __enter
        for (const OPENINGROW &row : hall.openings) {
            EmSURFACE *surface = room.Surfaces()->First();
            for (int place = 0; place < row.surface; ++place)
                surface = EmSURFACESET::Next(surface);
            for (int i = 0; i < row.count; ++i) {
                EmHOLE *hole = new EmHOLE;
                hole->Insert(surface->Holes());
                ASSERT(TextFromUtf8(hole->description, row.description, sizeof(hole->description)));
                hole->size = row.size;
                hole->pos = row.first + row.step * i;
                hole->rotation = Radians(row.rotation);
                hole->constr.k = row.k;
                hole->flags = row.ownTemp ? EmHOLE::OWN_TEMP : 0;
                hole->constr.tExt = row.ownTemp ? row.tExt : 0;
            }
        }
    __point
    __treat
}

void AddZones(EmROOM &room, const HALLTABLE &hall)
{
    __enter
        for (const ZONEROW &row : hall.zones) {
            EmZONE *zone = new EmZONE;
            zone->Insert(room.Zones());
            zone->size = row.size;
            zone->pos = row.pos;
            zone->rotation = Radians(row.rotation);
        }
    __point
    __treat
}

void SetTexts(EmROOM &room, const HALLTABLE &hall)
{
    EmARTICLE &article = *room.Article();
    EmCONCLUSION &conclusion = *room.Conclusion();
    ASSERT(TextFromUtf8(article.head, hall.head, sizeof(article.head)));
    ASSERT(TextFromUtf8(article.text, hall.text, sizeof(article.text)));
    ASSERT(TextFromUtf8(conclusion.head, "Schlußfolgerung", sizeof(conclusion.head)));
    ASSERT(TextFromUtf8(conclusion.text, hall.conclusion, sizeof(conclusion.text)));
    ASSERT(TextFromUtf8(conclusion.author, hall.author, sizeof(conclusion.author)));
}
} // namespace

const char *SampleHallFile(int i)
{
    return hallTables[i].file;
}

EmROOM *MakeSampleHall(int i)
{
    EmROOM *room = NULL;
    __enter
        const HALLTABLE &hall = hallTables[i];
        room = new EmROOM(hall.size.x, hall.size.y, hall.size.z, "", "", hall.date); __test;
        *room->Data() = hall.data;
        SetTexts(*room, hall);
        AddEmitters(*room, hall); __test;
        AddUnits(*room, hall); __test;
        AddOpenings(*room, hall); __test;
        AddZones(*room, hall); __test;
    __point
        delete room;
        room = NULL;
    __treat
    return room;
}
