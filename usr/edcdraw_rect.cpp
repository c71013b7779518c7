// Rectangles. The sides are signed: a corner dragged across its opposite turns their sign, not the rectangle.
#include "usr/edcdraw.h"

#include "lib/xassert.h"
#include "win/dc.h"

#include <algorithm>
#include <cmath>

#include "lib/xon.h"

namespace
{
enum { CORNERS = 4, CLOSED = 5 };

/// From the lower left one, counter-clockwise while the sides are positive.
void FindCorners(AgPOINT *corners, const AgVECTOR &size, const AgPOINT &centre, double angle)
{
    static const double signs[CORNERS][2] = {{-1, -1}, {1, -1}, {1, 1}, {-1, 1}};
    for (int i = 0; i < CORNERS; ++i)
        corners[i] = centre + EdcTurned(AgPOINT(signs[i][0] * size.x / 2, signs[i][1] * size.y / 2), angle);
}

/// The closed outline in pixels; one that closes on its third corner would not be seen.
void FindOutline(TPoint *outline, const AgPOINT *corners, const TEdcAxes &axes)
{
    for (int i = 0; i < CORNERS; ++i)
        outline[i] = axes.ToDevice(corners[i]);
    outline[CORNERS] = outline[0];
    if (outline[CORNERS] == outline[2])
        ++outline[CORNERS].x;
}
} // namespace

TEdcDrawRect::TEdcDrawRect(int aType) : TEdcDrawSprite(aType) {}

TEdcDrawRect::TEdcDrawRect(int aType, const TEdcDrawCreation &creation)
    : TEdcDrawSprite(aType), kind(creation.flags)
{
    const AgPOINT &from = creation.points[0];
    const AgPOINT &to = creation.points[1];
    centre = (from + to) / 2;
    size = to - from;
}

TEdcDrawRect::TEdcDrawRect(const TEdcDrawRect &other)
    : TEdcDrawSprite(other), kind(other.kind), size(other.size), centre(other.centre), angle(other.angle)
{
}

TEdcDrawRect *TEdcDrawRect::Clone()
{
    return new TEdcDrawRect(*this);
}

void TEdcDrawRect::Recompute()
{
    FindCorners(corners, size, centre, angle);
}

void TEdcDrawRect::Layout(TDC &dc)
{
    __enter
        TEdcDrawSprite::Layout(dc); __test;
        FindOutline(devCorners, corners, Axes());
    __point
    __treat
}

void TEdcDrawRect::SetTool(int id)
{
    __enter
        TEdcDrawSprite::SetTool(id); __test;
        MakeHandles(corners, devCorners, CORNERS); __test;
    __point
    __treat
}

void TEdcDrawRect::Describe(TEdcDrawDesc &d, double refAngle)
{
    EdcDescribe(d, corners, CORNERS, centre, refAngle);
    d.angle = angle;
}

bool TEdcDrawRect::HitTest(TPoint point)
{
    if (TEdcDrawSprite::HitTest(point))
        return true;
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

void TEdcDrawRect::Paint(TDC &dc)
{
    dc.SetPen({DrawLayer()->LineColor(state), 1, WIN_PEN_SOLID});
    dc.SetBrush(kind & FRAMEONLY ? NoBrush() : SolidBrush(DrawLayer()->FillColor(state)));
    dc.SetMix(WIN_MIX_COPY);
    dc.Polygon(devCorners, CLOSED);
}

/// The shape behind a step.
TEdcDrawRect::SHAPE TEdcDrawRect::Dragged(const TEdcDrawDrag &drag) const
{
    SHAPE s = {size, centre, angle};
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
    int i = drag.handle->index;
    const AgPOINT &fixed = corners[(i + 2) % CORNERS];
    AgVECTOR d = corners[i] + drag.shift - fixed;
    double a = std::atan2(d.y, d.x);
    // From the fixed corner the dragged one lies in another quadrant of the sprite's own axes for each i.
    const double own[CORNERS] = {a - AgPI - s.angle, s.angle - a, a - s.angle, AgPI - a + s.angle};
    double r = d.Length();
    s.size = AgVECTOR(r * std::cos(own[i]), r * std::sin(own[i]));
    s.centre = fixed + d / 2;
    return s;
}

void TEdcDrawRect::Take(const SHAPE &s)
{
    size = s.size;
    centre = s.centre;
    angle = s.angle;
}

/// What could not be stored stays as it was.
TEdcDrawSprite *TEdcDrawRect::Apply(TEdcDrawDrag &drag)
{
    TEdcDrawRect *worked = this;
    const SHAPE former = {size, centre, angle};
    __enter
        if (drag.mode & EDC_DRAWDRAGCOPY) {
            worked = Clone(); __test;
            EdcSelectCopy(*this, *worked); __test;
        }
        worked->Take(Dragged(drag));
        worked->Store(); __test;
    __point
        if (worked)
            worked->Take(former);
    __treat
    return worked;
}

void TEdcDrawRect::DragUpdate(TEdcDrawDrag &drag)
{
    SHAPE s = Dragged(drag);
    AgPOINT moved[CORNERS];
    FindCorners(moved, s.size, s.centre, s.angle);
    FindOutline(dragCorners, moved, Axes());
}

void TEdcDrawRect::DragPaint(TDC &dc)
{
    EdcInvertGhost(dc, dragCorners, CLOSED);
}
