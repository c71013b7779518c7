// The hall's record, which is the whole of a document file: the envelope's groups and the room around them.
// Every field that came later is optional and keeps its default, so that the oldest file still opens; what no
// hall can have is refused before anything is computed from it. Some kilobytes; 5,000 emitters make half a
// megabyte.
#include "ker/emroom.h"

#include "ker/emrecord.h"

#include <cmath>

#include "lib/xon.h"

// What of a construction is kept: the rest of it are results.
static void ReadConstruction(CdeFILE &file, EmCONSTRUCTION *constr)
{
    __enter
        constr->k = GetFinite(file); __test;
        constr->alpha = GetFinite(file); __test;
        constr->tExt = GetFinite(file); __test;
    __point
    __treat
}

static void WriteConstruction(CdeFILE &file, const EmCONSTRUCTION &constr)
{
    __enter
        file.PutReal(constr.k); __test;
        file.PutReal(constr.alpha); __test;
        file.PutReal(constr.tExt); __test;
    __point
    __treat
}

// The envelope

// Files from before openings could follow their surface end behind the temperature: it was always the opening's
// own.
void EmHOLE::Read(CdeFILE &file)
{
    __enter
        file.GetSection(); __test;
        size = GetPlanPoint(file); __test;
        pos = GetPlanPoint(file); __test;
        rotation = GetFinite(file); __test;
        ReadConstruction(file, &constr); __test;
        bool over = file.GetOver(); __test;
        if (over) {
            flags = OWN_TEMP;
        } else {
            flags = file.GetInt(); __test;
            file.GetStr(description, sizeof(description)); __test;
        }
        file.EndSection(1); __test;
    __point
    __treat
}

void EmHOLE::Write(CdeFILE &file) const
{
    __enter
        file.PutSection(0); __test;
        PutPlanPoint(file, size); __test;
        PutPlanPoint(file, pos); __test;
        file.PutReal(rotation); __test;
        WriteConstruction(file, constr); __test;
        file.PutInt(flags); __test;
        file.PutStr(description); __test;
        file.PutEnd(); __test;
    __point
    __treat
}

void EmHOLESET::Read(CdeFILE &file)
{
    ReadMembers<EmHOLE>(file, this);
}

void EmHOLESET::Write(CdeFILE &file) const
{
    WriteMembers<EmHOLE>(file, this);
}

// The transform of a surface needs axes that span a plane; it asserts what is refused here.
static bool SpansPlane(const AgPOINT &u, const AgPOINT &v)
{
    double determinant = AgDeterminant(u, v, u % v);
    return std::isfinite(determinant) && determinant != 0;
}

void EmSURFACE::Read(CdeFILE &file)
{
    __enter
        file.GetSection(); __test;
        size = GetPlanPoint(file); __test;
        origin = GetPoint(file); __test;
        uAxis = GetPoint(file); __test;
        vAxis = GetPoint(file); __test;
        if (!SpansPlane(uAxis, vAxis))
            __raise(XCDE_INVOLVED);
        file.EndSection(1); __test;
        holes.Read(file); __test;
    __point
    __treat
}

void EmSURFACE::Write(CdeFILE &file) const
{
    __enter
        file.PutSection(0); __test;
        PutPlanPoint(file, size); __test;
        PutPoint(file, origin); __test;
        PutPoint(file, uAxis); __test;
        PutPoint(file, vAxis); __test;
        file.PutEnd(); __test;
        holes.Write(file); __test;
    __point
    __treat
}

// The place in the file decides on the construction: floor, ceiling, and every further one a wall.
void EmSURFACESET::Read(CdeFILE &file, EmCONSTRUCTION *constr)
{
    EmSURFACE *fresh = NULL; // ours until it is in the set
    __enter
        Clear();
        file.GetSection(); __test;
        for (;;) {
            bool over = file.GetOver(); __test;
            if (over)
                break;
            fresh = new EmSURFACE(&constr[Count() < EM_WALLS ? Count() : EM_WALLS]);
            fresh->Read(file); __test;
            fresh->Insert(this);
            fresh = NULL;
        }
        if (Count() != COUNT)
            __raise(XCDE_INVOLVED);
        file.EndSection(1); __test;
    __point
        delete fresh;
    __treat
}

void EmSURFACESET::Write(CdeFILE &file) const
{
    WriteMembers<EmSURFACE>(file, this);
}

// The room

// Kept in its place so that every program finds the fields behind it; no reader looks at what it is.
static const double RESERVED_DATA = 33.4;

// Each portion came with a later version of the program and stands whole or not at all.
void EmROOM::ReadData(CdeFILE &file)
{
    __enter
        bool over = false;
        file.GetSection(); __test;
        for (EmCONSTRUCTION &constr : data.constr) {
            ReadConstruction(file, &constr); __test;
        }
        over = file.GetOver(); __test;
        if (!over) {
            data.airChange = GetFinite(file); __test;
            data.airTemp = GetFinite(file); __test;
        }
        over = file.GetOver(); __test;
        if (!over) {
            ReadSeason(file); __test;
        }
        over = file.GetOver(); __test;
        if (!over) {
            data.techGain = GetFinite(file); __test;
            data.resultTemp = GetFinite(file); __test;
        }
        over = file.GetOver(); __test;
        if (!over) {
            data.fuelType = file.GetInt(); __test;
            data.designOutTemp = GetFinite(file); __test;
        }
        over = file.GetOver(); __test;
        if (!over) {
            data.workClass = file.GetInt(); __test;
            data.position = file.GetInt(); __test;
        }
        file.EndSection(1); __test;
    __point
    __treat
}

void EmROOM::ReadSeason(CdeFILE &file)
{
    __enter
        data.periodDays = file.GetInt(); __test;
        data.weekDays = file.GetInt(); __test;
        data.dayHours = GetFinite(file); __test;
        data.meanOutTemp = GetFinite(file); __test;
        data.runAirTemp = GetFinite(file); __test;
        data.reducedAirTemp = GetFinite(file); __test;
        file.GetReal(); __test; // reserved, whatever it holds
        data.regulation = GetFinite(file); __test;
        data.fuelPrice = GetFinite(file); __test;
    __point
    __treat
}

void EmROOM::WriteData(CdeFILE &file) const
{
    __enter
        file.PutSection(0); __test;
        for (const EmCONSTRUCTION &constr : data.constr) {
            WriteConstruction(file, constr); __test;
        }
        file.PutReal(data.airChange); __test;
        file.PutReal(data.airTemp); __test;
        file.PutInt(data.periodDays); __test;
        file.PutInt(data.weekDays); __test;
        file.PutReal(data.dayHours); __test;
        file.PutReal(data.meanOutTemp); __test;
        file.PutReal(data.runAirTemp); __test;
        file.PutReal(data.reducedAirTemp); __test;
        file.PutReal(RESERVED_DATA); __test;
        file.PutReal(data.regulation); __test;
        file.PutReal(data.fuelPrice); __test;
        file.PutReal(data.techGain); __test;
        file.PutReal(data.resultTemp); __test;
        file.PutInt(data.fuelType); __test;
        file.PutReal(data.designOutTemp); __test;
        file.PutInt(data.workClass); __test;
        file.PutInt(data.position); __test;
        file.PutEnd(); __test;
    __point
    __treat
}

void EmROOM::ReadArticle(CdeFILE &file)
{
    __enter
        file.GetSection(); __test;
        articObj.level = file.GetInt(); __test;
        articObj.reserved = file.GetInt(); __test;
        file.GetStr(articObj.head, sizeof(articObj.head)); __test;
        file.GetStr(articObj.text, sizeof(articObj.text)); __test;
        file.EndSection(1); __test;
    __point
    __treat
}

void EmROOM::WriteArticle(CdeFILE &file) const
{
    __enter
        file.PutSection(0); __test;
        file.PutInt(articObj.level); __test;
        file.PutInt(articObj.reserved); __test;
        file.PutStr(articObj.head); __test;
        file.PutStr(articObj.text); __test;
        file.PutEnd(); __test;
    __point
    __treat
}

void EmROOM::ReadConclusion(CdeFILE &file)
{
    __enter
        file.GetSection(); __test;
        file.GetStr(conclObj.head, sizeof(conclObj.head)); __test;
        file.GetText(conclObj.text, sizeof(conclObj.text)); __test;
        file.GetStr(conclObj.author, sizeof(conclObj.author)); __test;
        conclObj.date = file.GetInt(); __test;
        file.EndSection(1); __test;
    __point
    __treat
}

void EmROOM::WriteConclusion(CdeFILE &file) const
{
    __enter
        file.PutSection(0); __test;
        file.PutStr(conclObj.head); __test;
        file.PutText(conclObj.text); __test;
        file.PutStr(conclObj.author); __test;
        file.PutInt(conclObj.date); __test;
        file.PutEnd(); __test;
    __point
    __treat
}

void EmROOM::ReadBox(CdeFILE &file)
{
    __enter
        file.GetSection(); __test;
        box.min = GetPoint(file); __test;
        box.max = GetPoint(file); __test;
        file.EndSection(1); __test;
    __point
    __treat
}

void EmROOM::WriteBox(CdeFILE &file) const
{
    __enter
        file.PutSection(0); __test;
        PutPoint(file, box.min); __test;
        PutPoint(file, box.max); __test;
        file.PutEnd(); __test;
    __point
    __treat
}

// The first halls had no envelope, and some of them no ceiling: their height was a number beyond all buildings.
// The walls become 1000 m high, which the split heights and fluxes bear; the box stays as it was drawn.
void EmROOM::BuildOldSurfaces()
{
    __enter
        AgPOINT dims = box.max - box.min;
        if (!std::isfinite(dims.x) || !std::isfinite(dims.y) || !std::isfinite(dims.z))
            __raise(XCDE_INVOLVED);
        if (dims.z > 1e6)
            dims.z = 1000.0;
        surfSet.BuildSurfaces(dims, data.constr); __test;
    __point
    __treat
}

// The room's group without its article and the conclusion behind it: box and emitters are as old as the format.
void EmROOM::ReadEnvelope(CdeFILE &file)
{
    __enter
        bool over = false;
        ReadBox(file); __test;
        emittSet.Read(file); __test;
        over = file.GetOver(); __test;
        if (!over) {
            ReadData(file); __test;
        }
        over = file.GetOver(); __test;
        if (over) {
            BuildOldSurfaces(); __test;
        } else {
            surfSet.Read(file, data.constr); __test;
        }
    __point
    __treat
}

// A room that was in use gives up all it held, so that nothing of it shines through what an old file lacks. The
// texts stay: their heads are the program's own until a file brings others.
void EmROOM::Empty()
{
    data = EmROOMDATA();
    emittSet.Clear();
    airhtSet.Clear();
    surfSet.Clear();
    zoneSet.Clear();
}

void EmROOM::Read(CdeFILE &file)
{
    __enter
        bool over = false;
        file.Walk(); __test;
        Empty();
        file.GetSection(); __test;
        ReadEnvelope(file); __test;
        over = file.GetOver(); __test;
        if (!over) {
            airhtSet.Read(file); __test;
        }
        over = file.GetOver(); __test;
        if (!over) {
            ReadArticle(file); __test;
        }
        over = file.GetOver(); __test;
        if (!over) {
            zoneSet.Read(file); __test;
        }
        file.EndSection(1); __test;
        over = file.GetOver(); __test;
        if (!over) {
            ReadConclusion(file); __test;
        }
    __point
    __treat
}

void EmROOM::Write(CdeFILE &file) const
{
    __enter
        file.PutSection(0); __test;
        WriteBox(file); __test;
        emittSet.Write(file); __test;
        WriteData(file); __test;
        surfSet.Write(file); __test;
        airhtSet.Write(file); __test;
        WriteArticle(file); __test;
        zoneSet.Write(file); __test;
        file.PutEnd(); __test;
        WriteConclusion(file); __test;
    __point
    __treat
}
