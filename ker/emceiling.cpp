#include "ker/emceiling.h"

#include <algorithm>
#include <cmath>

EmCEILING::EmCEILING(const EmSURFACE &aCeiling, const EmRASTER &aRaster, double aZ)
    : ceiling(aCeiling), raster(aRaster), z(aZ),
      error(RectangleError(ceiling.transform, ceiling.constr->qSurf)), nodeRows((raster.rows - 1) / SPAN + 2)
{
    for (const EmHOLE *hole = ceiling.Holes()->First(); hole != NULL; hole = EmHOLESET::Next(hole))
        error += RectangleError(hole->transform, hole->constr.qSurf - ceiling.constr->qSurf);
}

// The solid angle of a rectangle is a sum of four terms T(a, b) = atan(a b / (d sqrt(a^2 + b^2 + d^2))), where
// a and b are distances along its sides. Since dT/da = b d / ((a^2 + d^2) sqrt(a^2 + b^2 + d^2)), neither
// d2T/da2 nor d2T/db2 exceeds 3 d |a| / (a^2 + d^2)^2 < 0.975 / d^2, and d2T/da db = d / (a^2 + b^2 +
// d^2)^(3/2) <= 1 / d^2. So the second derivative of the sum along a line whose steps are u and v along the
// sides is at most 4 (|u| + |v|)^2 / d^2. Values between the corners of a cell are off by an eighth of that for
// each of its sides.
double EmCEILING::RectangleError(const AgTRANSFORM &transform, double flux) const
{
    const double *a = transform.Row(0);
    const double *b = transform.Row(1);
    const double *c = transform.Row(2);
    if (c[0] != 0 || c[1] != 0)
        return HUGE_VAL; // aslant: the distance is not one number
    double d = std::max(0.01, std::fabs((transform * AgPOINT(0, 0, z)).z));
    double side = SPAN * raster.step;
    double alongX = (std::fabs(a[0]) + std::fabs(b[0])) * side / d;
    double alongY = (std::fabs(a[1]) + std::fabs(b[1])) * side / d;
    double angle = 4 * (alongX * alongX + alongY * alongY) / 8;
    // An angle over 2 pi is a share of the flux; the sums themselves are good to far better than the last term.
    return std::fabs(flux) * (angle / (2 * AgPI) + 1e-9);
}

void EmCEILING::Begin(int aFirst, int count)
{
    first = aFirst;
    int nodeColumns = (count - 1) / SPAN + 2;
    nodes.resize(static_cast<size_t>(nodeColumns) * nodeRows);
    for (int i = 0; i < nodeColumns; ++i)
        for (int j = 0; j < nodeRows; ++j)
            nodes[static_cast<size_t>(i) * nodeRows + j] =
                ceiling.Radiation({raster.X(first + i * SPAN), raster.Y(j * SPAN), z});
}

void EmCEILING::Column(int i, int top, int count, double *out) const
{
    const double *left = nodes.data() + static_cast<size_t>((i - first) / SPAN) * nodeRows + top / SPAN;
    const double *right = left + nodeRows;
    const double share = (i - first) % SPAN / static_cast<double>(SPAN);
    double from = left[0] + (right[0] - left[0]) * share;
    for (int j = 0; j < count; j += SPAN) {
        ++left;
        ++right;
        double to = left[0] + (right[0] - left[0]) * share;
        for (int k = 0; k < SPAN; ++k)
            out[j + k] = from + (to - from) * (k * (1.0 / SPAN));
        from = to;
    }
}
