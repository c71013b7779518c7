// How a table is made from a function of space. No part of the application comes here: models are made by
// tools.
#include "ker/emmodel.h"

#include <algorithm>
#include <cmath>

#include "lib/xon.h"

namespace
{
enum { EXTENT_MAX = 1000000 }; // a field that has not fallen off by then never does

/// Where a field falls below the threshold, going outward by whole metres from `from`. XALLOC if it never does:
/// no table could hold it.
template <class FALLOFF>
int Reach(int from, double stop, FALLOFF at)
{
    int r = from;
    __enter
        while (r < EXTENT_MAX && at(r) >= stop)
            ++r;
        if (r == EXTENT_MAX)
            __raise(XALLOC);
    __point
    __treat
    return r;
}

/// Three layers as one sees them from the middle one, with the extents that they share.
struct SANDWICH {
    EmGRID::LAYER *above;
    EmGRID::LAYER *mid;
    EmGRID::LAYER *below;
    int cx;
    int cy;

    SANDWICH(EmGRID &grid, int iz)
        : above(grid.Layer(iz - 1, NULL, NULL)), mid(grid.Layer(iz, NULL, NULL)),
          below(grid.Layer(iz + 1, NULL, NULL)), cx(std::min({above->rx, mid->rx, below->rx})),
          cy(std::min({above->ry, mid->ry, below->ry}))
    {
    }

    /// Sum of the six neighbours' shares; the table is mirrored at iy 0. The two neighbours on x are added
    /// first, so that a symmetric table stays symmetric to the last bit.
    template <class SHARE>
    double Neighbours(int ix, int iy, SHARE share) const
    {
        int before = iy == 0 ? 1 : iy - 1;
        return share(mid->F[ix - 1][iy]) + share(mid->F[ix + 1][iy]) + share(mid->F[ix][before]) +
               share(mid->F[ix][iy + 1]) + share(above->F[ix][iy]) + share(below->F[ix][iy]);
    }
};

void SmoothCell(const SANDWICH &s, int ix, int iy, double weight)
{
    double &v = s.mid->F[ix][iy];
    if (v > 0)
        v = (1 - weight) * v + weight / 6 * s.Neighbours(ix, iy, [](double n) { return n; });
}

void SmoothLayer(const SANDWICH &s, double weight)
{
    for (int iy = 0; iy < s.cy; ++iy) {
        for (int ix = 0; ix > -s.cx; --ix)
            SmoothCell(s, ix, iy, weight);
        for (int ix = 1; ix < s.cx; ++ix)
            SmoothCell(s, ix, iy, weight);
    }
}

/// Cells filled here are negative until the layer is done, so that they feed none of their neighbours in it.
void FillLayer(const SANDWICH &s)
{
    for (int iy = 0; iy < s.cy; ++iy) {
        for (int ix = -s.cx + 1; ix < s.cx; ++ix) {
            if (s.mid->F[ix][iy] == 0)
                s.mid->F[ix][iy] = -(s.Neighbours(ix, iy, [](double n) { return n < 0 ? 0 : n; }) / 6);
        }
    }
    for (int iy = 0; iy < s.cy; ++iy) {
        for (int ix = -s.cx + 1; ix < s.cx; ++ix)
            s.mid->F[ix][iy] = std::fabs(s.mid->F[ix][iy]);
    }
}
} // namespace

void EmMODEL::Compute(FIELD fn, void *arg, double stop)
{
    __enter
        ASSERT(stop > 0);
        StatusMessage("Vypocet modelu (priprava)");
        int rz = Reach(1, stop, [&](int z) { return fn(AgPOINT(0, 0, z), arg); }); __test;
        int rx = 1;
        int ry = 1;
        for (int iz = 0; iz <= rz; ++iz) {
            rx = Reach(rx, stop, [&](int x) {
                return std::max(fn(AgPOINT(x, 0, iz), arg), fn(AgPOINT(-x, 0, iz), arg));
            }); __test;
            ry = Reach(ry, stop, [&](int y) { return fn(AgPOINT(0, y, iz), arg); }); __test;
        }
        grid.Alloc(rz); __test;
        for (int iz = 0; iz <= rz; ++iz) {
            grid.AllocLayer(iz, rx, ry); __test;
            ComputeLayer(iz, fn, arg, stop);
            StatusMessage("Vypocet modelu (%dx%dx%dm - %d%%)", 2 * rx, 2 * ry, rz,
                          static_cast<int>(static_cast<double>(iz) / rz * 100));
        }
        StatusMessage(NULL);
    __point
        grid.Free();
        StatusMessage(NULL);
    __treat
}

void EmMODEL::ComputeLayer(int iz, FIELD fn, void *arg, double stop)
{
    int rx, ry;
    EmGRID::LAYER *l = grid.Layer(iz, &rx, &ry);
    for (int iy = 0; iy <= ry; ++iy) {
        for (int ix = -rx; ix <= rx; ++ix) {
            double w = fn(AgPOINT(ix, iy, iz), arg);
            if (w < stop || std::abs(ix) == rx || iy == ry || iz == grid.Depth())
                w = 0;
            ASSERT(w >= 0);
            l->F[ix][iy] = w;
        }
    }
}

void EmMODEL::Smooth(double weight, int count)
{
    ASSERT(weight >= 0 && weight <= 1);
    ASSERT(count >= 0);
    for (int pass = 0; pass < count; ++pass) {
        for (int iz = 1; iz < grid.Depth(); ++iz)
            SmoothLayer(SANDWICH(grid, iz), weight);
    }
}

void EmMODEL::FillGaps(int count)
{
    ASSERT(count >= 0);
    for (int pass = 0; pass < count; ++pass) {
        for (int iz = 1; iz < grid.Depth(); ++iz)
            FillLayer(SANDWICH(grid, iz));
    }
}
