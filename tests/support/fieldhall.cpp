#include "support/fieldhall.h"

#include <algorithm>
#include <cmath>

namespace
{
/// W/m2 of a beam of 10 kW, x and y m off its axis and z m below the emitter.
double Beam(double x, double y, double z)
{
    double depth = z + 2;
    double off = (x * x * 0.6 + y * y) / (depth * depth);
    return 2500 / (depth * depth) / ((1 + off) * (1 + off));
}

void FillLayer(EmGRID &grid, int iz, int rx, int ry, CHANCE &chance)
{
    grid.AllocLayer(iz, rx, ry);
    for (int ix = -rx; ix <= rx; ++ix)
        for (int iy = 0; iy <= ry; ++iy) {
            bool rim = std::abs(ix) == rx || iy == ry || iz == grid.Depth();
            grid.Set(ix, iy, iz, rim ? 0 : Beam(ix, iy, iz) * chance.Real(0.9, 1.1));
        }
}

void SetClimate(EmROOM &room, double resultTemp)
{
    EmROOMDATA &data = *room.Data();
    for (EmCONSTRUCTION &c : data.constr) {
        c.k = 0.6;
        c.tExt = -12;
    }
    data.constr[EM_FLOOR].tExt = 5;
    data.airChange = 0.4;
    data.airTemp = -12;
    data.periodDays = 220;
    data.weekDays = 5;
    data.dayHours = 10;
    data.meanOutTemp = 4;
    data.runAirTemp = 16;
    data.reducedAirTemp = 8;
    data.resultTemp = resultTemp;
    data.regulation = 0.9;
    data.fuelPrice = 0.8;
    data.workClass = 2;
}
} // namespace

FIELDHALL::FIELDHALL(double length, double width, double height) : room(length, width, height, "", "", 20261121)
{
}

FIELDHALL::~FIELDHALL()
{
    RemoveEmitters();
}

void FIELDHALL::RemoveEmitters()
{
    for (EmEMITTER *e = room.Emitters()->First(); e != NULL; e = EmEMITTERSET::Next(e))
        e->model = NULL; // its reference was never counted
    room.Emitters()->Clear();
}

EmMODEL *FIELDHALL::AddModel(const FIELDTABLE &table, CHANCE &chance)
{
    EmMODELINFO info;
    info.power = table.power;
    info.radiantPart = 0.6;
    EmGRID *grid = NULL;
    models.push_back(std::make_unique<EmMODEL>(info, &grid));
    grid->Alloc(table.rz);
    for (int iz = 0; iz <= table.rz; ++iz) {
        int rx = table.uneven ? chance.Int(1, table.rx) : table.rx;
        int ry = table.uneven ? chance.Int(1, table.ry) : table.ry;
        FillLayer(*grid, iz, rx, ry, chance);
    }
    return models.back().get();
}

EmEMITTER *FIELDHALL::AddEmitter(EmMODEL *model, const AgPOINT &pos, double rotation, double tilt, double power)
{
    EmEMITTER *e = new EmEMITTER;
    e->model = model;
    e->pos = pos;
    e->rotation = rotation;
    e->tilt = tilt;
    e->power = power;
    e->Insert(room.Emitters());
    return e;
}

EmHOLE *FIELDHALL::AddHole(EmSURFACE *surface, const AgPOINT &pos, const AgPOINT &size, double k,
                           double rotation)
{
    EmHOLE *hole = new EmHOLE;
    hole->pos = pos;
    hole->size = size;
    hole->constr.k = k;
    hole->rotation = rotation;
    hole->Insert(surface->Holes());
    return hole;
}

std::unique_ptr<FIELDHALL> MakeGridHall(const FIELDGRID &g)
{
    CHANCE chance(7);
    auto hall = std::make_unique<FIELDHALL>(g.length, g.width, g.height);
    SetClimate(hall->room, 18);
    FIELDTABLE table;
    table.rz = static_cast<int>(g.height) + 2;
    table.rx = static_cast<int>(g.height) + 2;
    table.ry = static_cast<int>(g.height);
    EmMODEL *model = hall->AddModel(table, chance);
    for (int j = 0; j < g.alongY; ++j)
        for (int i = 0; i < g.alongX; ++i)
            hall->AddEmitter(model,
                             {(i + 0.5) * g.length / g.alongX + 0.03 * i,
                              (j + 0.5) * g.width / g.alongY + 0.02 * j, g.height - 1.03},
                             g.rotation, (i + j) % 2 ? g.tilt : 0, 20000);
    hall->AddHole(hall->room.Surfaces()->Ceiling(), {g.length * 0.3, g.width * 0.5}, {g.length * 0.1, 2}, 2.8);
    hall->AddHole(hall->room.Surfaces()->Ceiling(), {g.length * 0.7, g.width * 0.5}, {g.length * 0.1, 2}, 2.8,
                  0.4);
    return hall;
}

namespace
{
double AnyRotation(CHANCE &chance)
{
    switch (chance.Int(0, 4)) {
    case 0:
        return 0;
    case 1:
        return AgPI / 2 * chance.Int(-2, 2);
    case 2:
        return AgPI / 2 * chance.Int(-2, 2) + chance.Real(-1e-15, 1e-15);
    default:
        return chance.Real(-AgPI, AgPI);
    }
}

double AnyPower(CHANCE &chance)
{
    static const double odd[] = {0, -8000, 1e12, 1e-300, 1e300};
    return chance.One(8) ? chance.Of(odd) : chance.Real(2000, 40000);
}

void AddAnyEmitter(FIELDHALL &hall, const std::vector<EmMODEL *> &models, CHANCE &chance)
{
    EmBOX box = hall.room.Box();
    EmMODEL *model = chance.One(10) ? NULL : models[chance.Int(0, static_cast<int>(models.size()) - 1)];
    AgPOINT pos(chance.Real(-4, box.Length() + 4), chance.Real(-4, box.Width() + 4),
                chance.Real(-1, box.Height() + 2));
    if (chance.One(3)) // whole metres: cells begin on points of the raster
        pos = AgPOINT(std::floor(pos.x), std::floor(pos.y), std::floor(pos.z));
    if (chance.One(12))
        pos *= chance.One(2) ? 1e9 : 1e200;
    hall.AddEmitter(model, pos, AnyRotation(chance), chance.One(3) ? chance.Real(-1.2, 1.2) : 0,
                    AnyPower(chance));
}

void AddAnyHole(FIELDHALL &hall, CHANCE &chance)
{
    EmBOX box = hall.room.Box();
    hall.AddHole(hall.room.Surfaces()->Ceiling(), {chance.Real(0, box.Length()), chance.Real(0, box.Width())},
                 {chance.Real(0, 4), chance.Real(0, 3)}, chance.Real(0, 6),
                 chance.One(2) ? 0 : chance.Real(-3, 3));
}

/// The ceiling as a file may hold it: hung elsewhere, aslant, with axes that are neither straight nor of
/// length 1.
void BendCeiling(FIELDHALL &hall, CHANCE &chance)
{
    EmSURFACE *ceiling = hall.room.Surfaces()->Ceiling();
    auto any = [&chance](double size) {
        return AgPOINT(chance.Real(-size, size), chance.Real(-size, size), chance.Real(-size, size));
    };
    if (chance.One(2)) {
        ceiling->Set(ceiling->size, ceiling->origin, AgE1 * chance.Real(0.5, 2), AgE2 * chance.Real(-2, -0.5));
        return;
    }
    ceiling->Set(ceiling->size, ceiling->origin + any(3), AgE1 + any(0.3), AgE2 + any(0.3));
}
} // namespace

std::unique_ptr<FIELDHALL> MakeFieldHall(unsigned start)
{
    CHANCE chance(start);
    double length = chance.Real(3, 40);
    auto hall = std::make_unique<FIELDHALL>(length, length * chance.Real(0.02, 0.6), chance.Real(3, 9));
    SetClimate(hall->room, chance.Real(5, 30));
    hall->room.Data()->workClass = chance.Int(0, 6);
    hall->room.Data()->position = chance.Int(1, 2);
    hall->room.Data()->fuelType = chance.Int(1, 2);
    std::vector<EmMODEL *> models;
    for (int i = chance.Int(1, 3); i > 0; --i) {
        FIELDTABLE table{chance.Int(1, 10), chance.Int(1, 9), chance.Int(1, 9), chance.One(3)};
        table.power = chance.One(20) ? 0 : 10000;
        models.push_back(hall->AddModel(table, chance));
    }
    for (int i = chance.Int(0, 7); i > 0; --i)
        AddAnyEmitter(*hall, models, chance);
    for (int i = chance.Int(0, 2); i > 0; --i)
        AddAnyHole(*hall, chance);
    if (chance.One(5))
        BendCeiling(*hall, chance);
    return hall;
}
