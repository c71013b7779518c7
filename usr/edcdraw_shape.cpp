// What lines and rectangles have in common: everything that follows from a size, a centre and an angle.
#include "usr/edcdraw.h"

#include "lib/xassert.h"
#include "win/dc.h"

#include <cmath>

#include "lib/xon.h"

namespace
{
/// From the lower left one, counter-clockwise while the sides are positive. A line has the first two.
void FindCorners(AgPOINT *corners, int n, const AgVECTOR &size, const AgPOINT &centre, double angle)
{
    static const double signs[][2] = {{-1, -1}, {1, -1}, {1, 1}, {-1, 1}};
    for (int i = 0; i < n; ++i)
        corners[i] = centre + EdcTurned(AgPOINT(signs[i][0] * size.x / 2, signs[i][1] * size.y / 2), angle);
}
} // namespace

TEdcDrawShape::TEdcDrawShape(const TEdcDrawShape &other)
    : TEdcDrawSprite(other), kind(other.kind), centre(other.centre), angle(other.angle)
{
}

void TEdcDrawShape::Recompute()
{
    POINTS points = Points();
    FindCorners(points.model, points.corners, Extents(), centre, angle);
}

/// Closed where there is room for it. An outline whose last point falls on the one half way round would not be
/// seen.
void TEdcDrawShape::FindOutline(TPoint *outline, const AgPOINT *corners)
{
    POINTS points = Points();
    for (int i = 0; i < points.outline; ++i)
        outline[i] = Axes().ToDevice(corners[i % points.corners]);
    int last = points.outline - 1;
    if (outline[last] == outline[last - points.corners / 2])
        ++outline[last].x;
}

void TEdcDrawShape::Layout(TDC &dc)
{
    __enter
        TEdcDrawSprite::Layout(dc); __test;
        POINTS points = Points();
        FindOutline(points.device, points.model);
    __point
    __treat
}

void TEdcDrawShape::SetTool(int id)
{
    __enter
        TEdcDrawSprite::SetTool(id); __test;
        POINTS points = Points();
        MakeHandles(points.model, points.device, points.corners); __test;
    __point
    __treat
}

void TEdcDrawShape::Describe(TEdcDrawDesc &d, double refAngle)
{
    POINTS points = Points();
    EdcDescribe(d, points.model, points.corners, centre, refAngle);
    d.angle = angle;
}

bool TEdcDrawShape::HitTest(TPoint point)
{
    if (TEdcDrawSprite::HitTest(point))
        return true;
    const AgVECTOR size = Extents();
    double t = DrawLayer()->PickTolerance();
    AgVECTOR away = Axes().ToModel(point) - centre;
    if (away.Length() > size.Length() / 2 + t)
        return false;
    AgPOINT p = EdcTurned(away, -angle);
    double x = std::fabs(p.x);
    double y = std::fabs(p.y);
    double hw = std::fabs(size.x) / 2;
    double hh = std::fabs(size.y) / 2;
    bool within = x <= hw + t && y <= hh + t;
    bool inside = x < hw - t && y < hh - t;
    return within && !((kind & FRAMEONLY) && inside);
}

/// The shape behind a step.
TEdcDrawShape::SHAPE TEdcDrawShape::Dragged(const TEdcDrawDrag &drag)
{
    SHAPE s = Now();
    if (drag.mode & EDC_DRAWDRAGROTATE) {
        double turn = drag.angle - (drag.mode & EDC_DRAWDRAGABSOLUTE ? angle : 0);
        s.centre = drag.pivot + EdcTurned(centre - drag.pivot, turn);
        s.angle = EdcWrapAngle(angle + turn);
    }
    if (!(drag.mode & EDC_DRAWDRAGMOVE))
        return s;
    if (!drag.handle) {
        s.centre += drag.shift;
        return s;
    }
    ASSERT(~drag.mode & EDC_DRAWDRAGCOPY);
    POINTS points = Points();
    int i = drag.handle->index;
    const AgPOINT &fixed = points.model[(i + points.corners / 2) % points.corners];
    AgVECTOR d = points.model[i] + drag.shift - fixed;
    Reshape(s, i, d);
    s.centre = fixed + d / 2;
    return s;
}

void TEdcDrawShape::Take(const SHAPE &s)
{
    SetExtents(s.size);
    centre = s.centre;
    angle = s.angle;
}

/// What could not be stored stays as it was.
TEdcDrawSprite *TEdcDrawShape::Apply(TEdcDrawDrag &drag)
{
    TEdcDrawShape *worked = this;
    TEdcDrawShape *fresh = NULL; // ours until the layer has it
    const SHAPE former = Now();
    __enter
        if (drag.mode & EDC_DRAWDRAGCOPY) {
            fresh = Clone(); __test;
            worked = fresh;
            fresh = NULL;
            EdcSelectCopy(*this, *worked); __test;
        }
        worked->Take(Dragged(drag));
        worked->Store(); __test;
    __point
        delete fresh;
        worked->Take(former);
    __treat
    return worked;
}

void TEdcDrawShape::DragUpdate(TEdcDrawDrag &drag)
{
    SHAPE s = Dragged(drag);
    POINTS points = Points();
    AgPOINT moved[CORNERSMAX];
    FindCorners(moved, points.corners, s.size, s.centre, s.angle);
    FindOutline(points.ghost, moved);
}

void TEdcDrawShape::DragPaint(TDC &dc)
{
    POINTS points = Points();
    EdcInvertGhost(dc, points.ghost, points.outline);
}
