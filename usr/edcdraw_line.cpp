// Lines, by their middle, length and direction.
#include "usr/edcdraw.h"

#include "win/dc.h"

#include <cmath>

namespace
{
enum { ENDS = 2 };

/// 0 for no length. A negative 0 above or below would turn pi into -pi.
double Direction(const AgVECTOR &v)
{
    return v == AgE0 ? 0 : EdcWrapAngle(std::atan2(v.y, v.x));
}
} // namespace

TEdcDrawLine::TEdcDrawLine(int aType, const AgPOINT &from, const AgPOINT &to)
    : TEdcDrawShape(aType, FRAMEONLY), length((to - from).Length())
{
    centre = (from + to) / 2;
    angle = Direction(to - from);
}

TEdcDrawLine::TEdcDrawLine(int aType, const TEdcDrawCreation &creation)
    : TEdcDrawLine(aType, creation.points[0], creation.points[1])
{
}

TEdcDrawLine::TEdcDrawLine(const TEdcDrawLine &other) : TEdcDrawShape(other), length(other.length) {}

TEdcDrawLine *TEdcDrawLine::Clone()
{
    return new TEdcDrawLine(*this);
}

TEdcDrawShape::POINTS TEdcDrawLine::Points()
{
    return {ENDS, ENDS, ends, devEnds, dragEnds};
}

void TEdcDrawLine::Paint(TDC &dc)
{
    dc.SetPen({DrawLayer()->LineColor(state), 1, WIN_PEN_SOLID});
    dc.SetMix(WIN_MIX_COPY);
    dc.Polyline(devEnds, ENDS);
}

void TEdcDrawLine::Reshape(SHAPE &s, int corner, const AgVECTOR &d) const
{
    s.size = AgVECTOR(d.Length(), 0);
    s.angle = Direction(corner == 0 ? -d : d);
}
