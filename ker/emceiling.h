// What the ceiling with its openings radiates onto a plan, nearly: four arcus tangents a rectangle and a point
// are too many for a whole raster, so every eighth point is computed and the others lie between, with a bound
// of the error. Enough to tell on which side of a limit almost every point lies.
#ifndef KER_EMCEILING_H
#define KER_EMCEILING_H

#include "ker/emfield.h"

#include <vector>

class EmCEILING
{
public:
    static constexpr int SPAN = 8; // points from one computed one to the next

    /// For the raster's points at height z. The ceiling must outlive it.
    EmCEILING(const EmSURFACE &aCeiling, const EmRASTER &aRaster, double aZ);

    /// By how much Column may differ from EmSURFACE::Radiation, W/m2; infinite or not a number where the
    /// ceiling is not parallel to the plane or its fluxes are not finite.
    double Error() const { return error; }
    /// Takes `count` columns from `first` on into view. Throws std::bad_alloc.
    void Begin(int first, int count);
    /// Radiation at the points of column i from row `top` on, a multiple of SPAN, W/m2. Fills up to the next
    /// multiple of SPAN.
    void Column(int i, int top, int count, double *out) const;

private:
    const EmSURFACE &ceiling; // view
    EmRASTER raster;
    double z;
    double error;
    int first = 0;
    int nodeRows;              // computed points of a column
    std::vector<double> nodes; // by column

    double RectangleError(const AgTRANSFORM &transform, double flux) const;
};

#endif
