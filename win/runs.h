// Which pixels a thin line, a rectangle or an ellipse covers, computed in integers: every pixel once, also
// where a line crosses itself, the same ones from either end, and the same ones whatever part of them is
// visible. What is drawn with exclusive-or keeps no holes that way and goes when it is drawn again. No toolkit
// in it.
#ifndef WIN_RUNS_H
#define WIN_RUNS_H

#include "win/geometry.h"
#include <vector>

/// Rectangles of pixels on the surface, none of which overlap.
using TRuns = std::vector<TRect>;

/// A pattern along a line: `on` pixels drawn, `off` pixels left out. off = 0: all drawn.
struct TDash {
    int on = 1; // px
    int off = 0;
};

/// A line one pixel wide through all points, both ends included; `gaps` asks for what the pattern leaves out
/// instead. The pattern goes on around the corners. Coordinates within WIN_FAR.
TRuns LineRuns(const std::vector<TPoint> &points, bool closed, TDash dash, bool gaps, const TRect &visible);

struct TOutlineRuns {
    TRuns outline;
    TRuns inside;
};

/// The outline follows the outermost pixels of `rect`, which stand in the middle of it where it is wider than
/// 1 px (the odd pixel to the right and below). width = 0: no outline, all is inside.
TOutlineRuns RectangleRuns(const TRect &rect, int width, const TRect &visible);
TOutlineRuns EllipseRuns(const TRect &rect, int width, const TRect &visible);

/// Filled by alternation; a thin outline through all corners, or none with width 0, where the pixels on the
/// left and upper edges are inside and those on the right and lower ones are not.
TOutlineRuns PolygonRuns(const std::vector<TPoint> &corners, int width, const TRect &visible);

/// Joins what overlaps. The runs must be 1 px high.
void UniteRuns(TRuns &runs);
TRect BoundsOf(const TRuns &runs);

#endif
