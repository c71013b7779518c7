// Halls on which the sampling of the field is tried and timed: models with tables made on the spot, emitters
// hung in any way, and whatever may be odd about either. Free of the test framework.
#ifndef TESTS_SUPPORT_FIELDHALL_H
#define TESTS_SUPPORT_FIELDHALL_H

#include "ker/emroom.h"
#include "support/chance.h"

#include <memory>
#include <vector>

/// A model's table as a test wants it: a beam below the emitter with some noise, 0 at its rim.
struct FIELDTABLE {
    int rz = 8;
    int rx = 8;
    int ry = 6;
    bool uneven = false;  // extents change from layer to layer
    double power = 10000; // W, nominal
};

/// A hall with its models. They are in no cache and nobody counts them: the hall's emitters only view them.
class FIELDHALL
{
public:
    FIELDHALL(double length, double width, double height);
    ~FIELDHALL();
    FIELDHALL(const FIELDHALL &) = delete;
    FIELDHALL &operator=(const FIELDHALL &) = delete;

    EmROOM room;

    EmMODEL *AddModel(const FIELDTABLE &table, CHANCE &chance);
    EmEMITTER *AddEmitter(EmMODEL *model, const AgPOINT &pos, double rotation = 0, double tilt = 0,
                          double power = 10000);
    void RemoveEmitters();
    EmHOLE *AddHole(EmSURFACE *surface, const AgPOINT &pos, const AgPOINT &size, double k, double rotation = 0);

private:
    std::vector<std::unique_ptr<EmMODEL>> models;
};

/// How the emitters of a regular hall hang.
struct FIELDGRID {
    double length; // m
    double width;
    double height;
    int alongX; // emitters in a row
    int alongY; // rows
    double rotation = 0;
    double tilt = 0;
};

/// A working hall in winter, heated by emitters of one model in rows over the whole plan.
std::unique_ptr<FIELDHALL> MakeGridHall(const FIELDGRID &grid);

/// A small hall in which anything may be odd, seldom all at once; the same for the same start.
std::unique_ptr<FIELDHALL> MakeFieldHall(unsigned start);

#endif
