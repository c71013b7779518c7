#include "ker/emfield.h"

#include <algorithm>
#include <cmath>

#include "lib/xon.h"

double AirTempAt(const TZulMapInfo &r, double z)
{
    return (z - 1.5) * 0.3 + r.airTemp;
}

double HeadTemp(const EmROOM &room, const TZulMapInfo &r, double x, double y)
{
    double head = HeadHeight(room.Data()->position);
    return room.OperativeTemp(room.Irradiation({x, y, head}), AirTempAt(r, head));
}

double DiffTemp(const EmROOM &room, const TZulMapInfo &r, double x, double y)
{
    double ankle = room.OperativeTemp(room.Irradiation({x, y, EM_ANKLE_HEIGHT}), AirTempAt(r, EM_ANKLE_HEIGHT));
    return HeadTemp(room, r, x, y) - ankle;
}

double HeadInte(const EmROOM &room, double x, double y)
{
    AgPOINT p(x, y, HeadHeight(room.Data()->position));
    return room.Irradiation(p) + room.Surfaces()->Ceiling()->Radiation(p);
}

// Seven inches at 72 dots an inch, the nominal width of the map on paper.
EmRASTER IrradiationRaster(const EmBOX &box, bool draft)
{
    EmRASTER raster;
    double k = draft ? 3 : 1;
    double n = 7.0 * 72.0 / k;
    double step = box.Length() / n;
    double columns = std::trunc(n) + 1;
    double rows = std::trunc(box.Width() / step) + 1;
    __enter
        // Negated, so that a hall whose sides are no numbers is refused too.
        if (!std::isfinite(step) || !(rows * columns <= static_cast<double>(EM_RASTER_MAX)))
            __raise(XALLOC);
        raster.columns = static_cast<int>(columns);
        raster.rows = static_cast<int>(rows);
        raster.step = step;
        raster.xMin = std::min(box.min.x, box.max.x);
        raster.yMin = std::min(box.min.y, box.max.y);
    __point
    __treat
    return raster;
}

EmRASTER CriterionRaster(const EmBOX &box, const EmRASTER &irradiation)
{
    EmRASTER raster = irradiation;
    if (raster.rows > 1)
        raster.step = std::fabs(box.max.y - box.min.y) / (raster.rows - 1);
    return raster;
}

struct EmFIELD::STORE {
    const EmEMITTERSET *set; // view
};

EmFIELD::EmFIELD(const EmEMITTERSET &set) : store(NULL)
{
    __enter
        store = new STORE{&set}; __test;
    __point
    __treat
}

EmFIELD::~EmFIELD()
{
    delete store;
}

void EmFIELD::Sample(const EmRASTER &raster, double z, int first, int count, double *out) const
{
    for (int i = first; i < first + count; ++i)
        for (int j = 0; j < raster.rows; ++j) {
            AgPOINT p(raster.X(i), raster.Y(j), z);
            double sum = 0;
            for (EmEMITTER *e = store->set->First(); e != NULL; e = EmEMITTERSET::Next(e))
                sum += e->Irradiation(p);
            *out++ = sum;
        }
}
