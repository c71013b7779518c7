// A hall for the tests of the kernel: room, openings and emitters in one line each. The emitters' models belong
// to the hall itself and are not counted, so that no model folder is needed.
#ifndef TESTS_KER_HALL_H
#define TESTS_KER_HALL_H

#include "ker/emroom.h"
#include "support/chance.h"

#include <list>

enum { FLOOR = 0, CEILING = 1, WALL_A = 2, WALL_B = 3, WALL_C = 4, WALL_D = 5 }; // places in the surface set

class HALL : public EmROOM
{
public:
    HALL(double length, double width, double height) : EmROOM(length, width, height, "", "", 20260101) {}
    ~HALL()
    {
        for (EmEMITTER *emitter = Emitters()->First(); emitter; emitter = EmEMITTERSET::Next(emitter))
            emitter->model = NULL;
    }

    EmSURFACE *Side(int place)
    {
        EmSURFACE *surface = Surfaces()->First();
        while (place-- > 0)
            surface = EmSURFACESET::Next(surface);
        return surface;
    }

    EmHOLE *Open(int place, const AgPOINT &centre, double width, double height, double rotation = 0)
    {
        EmHOLE *hole = new EmHOLE;
        hole->pos = centre;
        hole->size = {width, height};
        hole->rotation = rotation;
        hole->Insert(Side(place)->Holes());
        return hole;
    }

    /// A model of 1 kW whose table reaches 3 m down and 3 m to each side and has no two equal values.
    EmMODEL *Model(double radiantPart)
    {
        EmMODELINFO info;
        info.radiantPart = radiantPart;
        info.power = 1000;
        EmGRID *grid = NULL;
        EmMODEL *model = &models.emplace_back(info, &grid);
        grid->Alloc(4);
        for (int iz = 0; iz <= 4; ++iz) {
            grid->AllocLayer(iz, 4, 4);
            for (int ix = -4; ix <= 4; ++ix)
                for (int iy = 0; iy <= 4; ++iy)
                    grid->Set(ix, iy, iz, 100.0 / (1 + iz + ix * ix + 1.5 * iy * iy) + 0.1 * ix);
        }
        return model;
    }

    EmEMITTER *Hang(EmMODEL *model, const AgPOINT &pos, double power)
    {
        EmEMITTER *emitter = new EmEMITTER;
        emitter->model = model;
        emitter->pos = pos;
        emitter->power = power;
        emitter->Insert(Emitters());
        return emitter;
    }

    void SetConstruction(int element, double k, double tExt)
    {
        Data()->constr[element].k = k;
        Data()->constr[element].tExt = tExt;
    }

private:
    std::list<EmMODEL> models;
};

#endif
