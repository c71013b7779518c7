// Lines, by their middle, length and direction.
#include "usr/edcdraw.h"

#include "lib/xassert.h"
#include "win/dc.h"

#include <cmath>

#include "lib/xon.h"

namespace
{
enum { ENDS = 2 };

void FindEnds(AgPOINT *ends, double length, const AgPOINT &centre, double angle)
{
    AgVECTOR half = EdcTurned(AgPOINT(length / 2, 0), angle);
    ends[0] = centre - half;
    ends[1] = centre + half;
}

/// A line of no length stays visible.
void FindOutline(TPoint *outline, const AgPOINT *ends, const TEdcAxes &axes)
{
    for (int i = 0; i < ENDS; ++i)
        outline[i] = axes.ToDevice(ends[i]);
    if (outline[0] == outline[1])
        ++outline[1].x;
}

/// 0 for no length. A negative 0 above or below would turn pi into -pi.
double Direction(const AgVECTOR &v)
{
    return v == AgE0 ? 0 : EdcWrapAngle(std::atan2(v.y, v.x));
}
} // namespace

TEdcDrawLine::TEdcDrawLine(int aType, const AgPOINT &from, const AgPOINT &to) : TEdcDrawSprite(aType)
{
    Span(from, to);
}

TEdcDrawLine::TEdcDrawLine(int aType, const TEdcDrawCreation &creation) : TEdcDrawSprite(aType)
{
    Span(creation.points[0], creation.points[1]);
}

TEdcDrawLine::TEdcDrawLine(const TEdcDrawLine &other)
    : TEdcDrawSprite(other), kind(other.kind), length(other.length), centre(other.centre), angle(other.angle)
{
}

void TEdcDrawLine::Span(const AgPOINT &from, const AgPOINT &to)
{
    AgVECTOR d = to - from;
    length = d.Length();
    centre = (from + to) / 2;
    angle = Direction(d);
}

TEdcDrawLine *TEdcDrawLine::Clone()
{
    return new TEdcDrawLine(*this);
}

void TEdcDrawLine::Recompute()
{
    FindEnds(ends, length, centre, angle);
}

void TEdcDrawLine::Layout(TDC &dc)
{
    __enter
        TEdcDrawSprite::Layout(dc); __test;
        FindOutline(devEnds, ends, Axes());
    __point
    __treat
}

void TEdcDrawLine::SetTool(int id)
{
    __enter
        TEdcDrawSprite::SetTool(id); __test;
        MakeHandles(ends, devEnds, ENDS); __test;
    __point
    __treat
}

void TEdcDrawLine::Describe(TEdcDrawDesc &d, double refAngle)
{
    EdcDescribe(d, ends, ENDS, centre, refAngle);
    d.angle = angle;
}

bool TEdcDrawLine::HitTest(TPoint point)
{
    if (TEdcDrawSprite::HitTest(point))
        return true;
    double t = DrawLayer()->PickTolerance();
    AgVECTOR away = Axes().ToModel(point) - centre;
    if (away.Length() > length / 2 + t)
        return false;
    AgPOINT p = EdcTurned(away, -angle);
    return std::fabs(p.x) <= length / 2 + t && std::fabs(p.y) <= t;
}

void TEdcDrawLine::Paint(TDC &dc)
{
    dc.SetPen({DrawLayer()->LineColor(state), 1, WIN_PEN_SOLID});
    dc.SetMix(WIN_MIX_COPY);
    dc.Polyline(devEnds, ENDS);
}

/// The shape behind a step.
TEdcDrawLine::SHAPE TEdcDrawLine::Dragged(const TEdcDrawDrag &drag) const
{
    SHAPE s = {length, centre, angle};
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
    const AgPOINT &fixed = ends[(i + 1) % ENDS];
    AgVECTOR d = ends[i] + drag.shift - fixed;
    s.length = d.Length();
    s.centre = fixed + d / 2;
    s.angle = Direction(i == 0 ? -d : d);
    return s;
}

void TEdcDrawLine::Take(const SHAPE &s)
{
    length = s.length;
    centre = s.centre;
    angle = s.angle;
}

/// What could not be stored stays as it was.
TEdcDrawSprite *TEdcDrawLine::Apply(TEdcDrawDrag &drag)
{
    TEdcDrawLine *worked = this;
    const SHAPE former = {length, centre, angle};
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

void TEdcDrawLine::DragUpdate(TEdcDrawDrag &drag)
{
    SHAPE s = Dragged(drag);
    AgPOINT moved[ENDS];
    FindEnds(moved, s.length, s.centre, s.angle);
    FindOutline(dragEnds, moved, Axes());
}

void TEdcDrawLine::DragPaint(TDC &dc)
{
    EdcInvertGhost(dc, dragEnds, ENDS);
}
