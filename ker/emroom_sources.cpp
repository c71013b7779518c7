// What the designer places in the hall's space: emitters, warm-air units, zones of permanent occupancy. Their
// data, their records and the little arithmetic they do.
#include "ker/emroom.h"

#include "ker/emrecord.h"

#include "lib/xon.h"

// Emitters

EmEMITTER::EmEMITTER(const EmEMITTER &source)
    : LINK(source), model(ModelAddRef(source.model)), pos(source.pos), rotation(source.rotation),
      tilt(source.tilt), power(source.power)
{
}

EmEMITTER::~EmEMITTER()
{
    ModelRelease(model);
}

EmEMITTER &EmEMITTER::operator=(const EmEMITTER &source)
{
    if (&source == this)
        return *this;
    SetModel(ModelAddRef(source.model));
    pos = source.pos;
    rotation = source.rotation;
    tilt = source.tilt;
    power = source.power;
    return *this;
}

void EmEMITTER::SetModel(EmMODEL *m)
{
    ModelRelease(model);
    model = m;
}

void EmEMITTER::Reset()
{
    SetModel(NULL);
    pos = AgE0;
    rotation = 0;
    tilt = 0;
    power = 0;
}

// A point straight below a level emitter gets (0, 0, depth): the table's z runs down from the body.
void EmEMITTER::Prepare()
{
    transform.Reset();
    transform.Translate(-pos);
    transform.RotateZ(-rotation);
    transform.RotateX(-tilt);
    transform.Mirror(0);
    scale = model != NULL ? power / model->Info()->power : 0;
}

double EmEMITTER::Irradiation(const AgPOINT &p) const
{
    if (model == NULL)
        return 0;
    return model->Value(transform * p) * scale;
}

// The name comes first, so that a model whose file is gone fails before anything else of its emitter is read.
// Early files knew no power of an emitter's own.
void EmEMITTER::Read(CdeFILE &file)
{
    char name[sizeof(EmMODELINFO::name)] = "";
    __enter
        file.GetSection(); __test;
        file.GetStr(name, sizeof(name)); __test;
        EmMODEL *named = ModelAcquire(name); __test;
        SetModel(named);
        pos = GetPoint(file); __test;
        rotation = GetFinite(file); __test;
        tilt = GetFinite(file); __test;
        bool over = file.GetOver(); __test;
        if (over) {
            power = model != NULL ? model->Info()->power : 0;
        } else {
            power = GetFinite(file); __test;
        }
        file.EndSection(1); __test;
    __point
    __treat
}

void EmEMITTER::Write(CdeFILE &file) const
{
    __enter
        file.PutSection(0); __test;
        file.PutStr(model != NULL ? model->Info()->name : ""); __test;
        PutPoint(file, pos); __test;
        file.PutReal(rotation); __test;
        file.PutReal(tilt); __test;
        file.PutReal(power); __test;
        file.PutEnd(); __test;
    __point
    __treat
}

// The box around the members of a set, each taken for the point that `where` gives.
template <class SET, class WHERE>
static EmBOX BoundsOf(const SET *set, WHERE where)
{
    EmBOX bounds;
    const auto *first = set->First();
    if (first == NULL)
        return bounds;
    bounds.min = bounds.max = where(first);
    for (const auto *member = set->Next(first); member != NULL; member = set->Next(member))
        bounds = Union(bounds, EmBOX{where(member), where(member)});
    return bounds;
}

EmBOX EmEMITTERSET::Bounds() const
{
    return BoundsOf(this, [](const EmEMITTER *emitter) { return emitter->pos; });
}

double EmEMITTERSET::NominalPower() const
{
    double sum = 0;
    for (const EmEMITTER *emitter = First(); emitter != NULL; emitter = Next(emitter))
        if (emitter->model != NULL)
            sum += emitter->model->Info()->power;
    return sum;
}

void EmEMITTERSET::Prepare()
{
    for (EmEMITTER *emitter = First(); emitter != NULL; emitter = Next(emitter))
        emitter->Prepare();
}

void EmEMITTERSET::Read(CdeFILE &file)
{
    ReadMembers<EmEMITTER>(file, this);
}

void EmEMITTERSET::Write(CdeFILE &file) const
{
    WriteMembers<EmEMITTER>(file, this);
}

// Warm-air units

// Early files end behind the position.
void EmAIRHEATER::Read(CdeFILE &file)
{
    __enter
        file.GetSection(); __test;
        file.GetStr(type, sizeof(type)); __test;
        power = GetFinite(file); __test;
        size = GetPoint(file); __test;
        pos = GetPoint(file); __test;
        bool over = file.GetOver(); __test;
        if (!over) {
            file.GetReal(); __test; // reserved, whatever it holds
            airFlow = GetFinite(file); __test;
            tempRise = GetFinite(file); __test;
        }
        file.EndSection(1); __test;
    __point
    __treat
}

void EmAIRHEATER::Write(CdeFILE &file) const
{
    __enter
        file.PutSection(0); __test;
        file.PutStr(type); __test;
        file.PutReal(power); __test;
        PutPoint(file, size); __test;
        PutPoint(file, pos); __test;
        file.PutReal(0.0); __test; // reserved
        file.PutReal(airFlow); __test;
        file.PutReal(tempRise); __test;
        file.PutEnd(); __test;
    __point
    __treat
}

EmBOX EmAIRHEATERSET::Bounds() const
{
    return BoundsOf(this, [](const EmAIRHEATER *unit) { return unit->pos; });
}

void EmAIRHEATERSET::Read(CdeFILE &file)
{
    ReadMembers<EmAIRHEATER>(file, this);
}

void EmAIRHEATERSET::Write(CdeFILE &file) const
{
    WriteMembers<EmAIRHEATER>(file, this);
}

// Zones

void EmZONE::Read(CdeFILE &file)
{
    __enter
        file.GetSection(); __test;
        size = GetPlanPoint(file); __test;
        pos = GetPlanPoint(file); __test;
        rotation = GetFinite(file); __test;
        file.EndSection(1); __test;
    __point
    __treat
}

void EmZONE::Write(CdeFILE &file) const
{
    __enter
        file.PutSection(0); __test;
        PutPlanPoint(file, size); __test;
        PutPlanPoint(file, pos); __test;
        file.PutReal(rotation); __test;
        file.PutEnd(); __test;
    __point
    __treat
}

EmBOX EmZONESET::Bounds() const
{
    return BoundsOf(this, [](const EmZONE *zone) { return AgPOINT(zone->pos.x, zone->pos.y); });
}

void EmZONESET::Read(CdeFILE &file)
{
    ReadMembers<EmZONE>(file, this);
}

void EmZONESET::Write(CdeFILE &file) const
{
    WriteMembers<EmZONE>(file, this);
}
