// The geometry of shapes on a plan as plain complex numbers, written down apart from the real ones: what they
// cover, where they can be grasped, and what a step of a drag may make of them. Where rounding leaves a choice
// (a point half way between two lines of the grid, two corners equally near to it) every choice is right.
#ifndef TESTS_USR_PLAINPLAN_H
#define TESTS_USR_PLAINPLAN_H

#include "win/geometry.h"

#include <complex>
#include <string>
#include <vector>

namespace plain
{
using POINT = std::complex<double>; // m, x and y

/// A rectangle, or a line as its length by nothing.
struct SHAPE {
    bool line = false;
    POINT centre;
    double width = 0; // m, signed
    double height = 0;
    double angle = 0; // rad
    bool frameOnly = false;

    std::vector<POINT> Corners() const; // four, or the two ends
};
std::string Text(const SHAPE &shape); // "10,10 4x2 90": degrees, six digits
bool Near(const SHAPE &a, const SHAPE &b);

/// Both directions scaled alike.
struct AXES {
    double scale = 10; // px/m
    TPoint origin;     // px, where (0, 0) lies
    double snap = 0;   // m, 0 for none
    double angleSnap = 0;

    TPoint Pixel(POINT p) const;
    POINT Metres(TPoint p) const;
};

/// The smallest upright rectangle that holds the shape, turned by `frame` about (0, 0).
struct BOX {
    POINT low, high; // as seen in the frame
    double frame = 0;

    POINT At(double x, double y) const; // 0, 0: lower left; 1, 1: upper right; in the plan
};
BOX Around(const SHAPE &shape, double frame);

enum MEETS { MISSES, HITS, DOUBTFUL }; // the last: too near to the edge of what counts
MEETS Meets(const SHAPE &shape, const AXES &axes, int tolerance, TPoint at); // px
/// Which handle is there, -1 for none.
int HandleAt(const SHAPE &shape, const AXES &axes, int extent, TPoint at);
/// The outline in pixels, closed, never without an extent.
std::vector<TPoint> Outline(const SHAPE &shape, const AXES &axes);

POINT Snapped(POINT p, double step); // onto the grid

struct STEP {
    enum KIND { NOTHING, MOVE, HANDLE, TURN };
    KIND kind = NOTHING;
    bool shift = false, ctrl = false;
    int handle = 0;        // HANDLE
    TPoint by;             // px, from the press
    TPoint pivot;          // px, what the pointer turns about
    double startAngle = 0; // rad, where it was seen from there
    TPoint pointer;        // px
};
/// All shapes that the step may make.
std::vector<SHAPE> Stepped(const SHAPE &shape, const STEP &step, const AXES &axes);
/// Whether `after` is one of them.
bool Leads(const SHAPE &before, const STEP &step, const AXES &axes, const SHAPE &after);
} // namespace plain

#endif
