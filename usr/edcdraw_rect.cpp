// Rectangles. The sides are signed: a corner dragged across its opposite turns their sign, not the rectangle.
#include "usr/edcdraw.h"

#include "win/dc.h"

#include <cmath>

namespace
{
enum { CORNERS = 4, CLOSED = 5 };
} // namespace

TEdcDrawRect::TEdcDrawRect(int aType) : TEdcDrawShape(aType, SOLID) {}

TEdcDrawRect::TEdcDrawRect(int aType, const TEdcDrawCreation &creation)
    : TEdcDrawShape(aType, creation.flags), size(creation.points[1] - creation.points[0])
{
    centre = (creation.points[0] + creation.points[1]) / 2;
}

TEdcDrawRect::TEdcDrawRect(const TEdcDrawRect &other) : TEdcDrawShape(other), size(other.size) {}

TEdcDrawRect *TEdcDrawRect::Clone()
{
    return new TEdcDrawRect(*this);
}

TEdcDrawShape::POINTS TEdcDrawRect::Points()
{
    return {CORNERS, CLOSED, corners, devCorners, dragCorners};
}

void TEdcDrawRect::Paint(TDC &dc)
{
    dc.SetPen({DrawLayer()->LineColor(state), 1, WIN_PEN_SOLID});
    dc.SetBrush(kind & FRAMEONLY ? NoBrush() : SolidBrush(DrawLayer()->FillColor(state)));
    dc.SetMix(WIN_MIX_COPY);
    dc.Polygon(devCorners, CLOSED);
}

/// From the fixed corner the dragged one lies in another quadrant of the rectangle's own axes for each corner.
void TEdcDrawRect::Reshape(SHAPE &s, int corner, const AgVECTOR &d) const
{
    double a = std::atan2(d.y, d.x);
    double r = d.Length();
    const double own[CORNERS] = {a - AgPI - s.angle, s.angle - a, a - s.angle, AgPI - a + s.angle};
    s.size = AgVECTOR(r * std::cos(own[corner]), r * std::sin(own[corner]));
}
