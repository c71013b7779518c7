// Rectangles. The sides are signed: a corner dragged across its opposite turns their sign, not the rectangle.
#include "usr/edcdraw.h"

#include "win/dc.h"

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

/// The sides are what `d` is along the rectangle's own axes, each positive where its corner lies on that side.
/// Without a turn they are exact: a corner that is put at stated coordinates gives the sides that these state.
void TEdcDrawRect::Reshape(SHAPE &s, int corner, const AgVECTOR &d) const
{
    static const double signs[CORNERS][2] = {{-1, -1}, {1, -1}, {1, 1}, {-1, 1}};
    AgPOINT own = EdcTurned(d, -s.angle);
    s.size = AgVECTOR(signs[corner][0] * own.x, signs[corner][1] * own.y);
}
