// The envelope of the hall: what its rectangles and their openings conduct below and above a height, and what
// they radiate onto a point.
#include "ker/emroom.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "lib/xon.h"

double RectangleFlux(double px, double py, double pz, double w, double h, double q)
{
    const double x1 = -px;
    const double x2 = w - px;
    const double y1 = -py;
    const double y2 = h - py;
    const double d = pz < 0.01 ? 0.01 : pz;
    // The solid angle of a rectangle with one corner at the foot of the perpendicular from the point.
    auto corner = [d](double a, double b) { return std::atan(a * b / (d * std::sqrt(a * a + b * b + d * d))); };
    const double solidAngle = corner(x2, y2) - corner(x1, y2) - corner(x2, y1) + corner(x1, y1);
    return q * 0.5 * 0.3183098861837907 * solidAngle;
}

namespace
{
/// Corners of an opening in its surface's coordinates, counter-clockwise before rotation from the lower left
/// one.
void FindCorners(const EmHOLE &hole, AgPOINT (&corners)[4])
{
    const double hw = hole.size.x / 2;
    const double hh = hole.size.y / 2;
    AgTRANSFORM place;
    place.RotateZ(hole.rotation);
    place.Translate(hole.pos);
    corners[0] = place * AgPOINT(-hw, -hh);
    corners[1] = place * AgPOINT(hw, -hh);
    corners[2] = place * AgPOINT(hw, hh);
    corners[3] = place * AgPOINT(-hw, hh);
}

/// The part of a polygon that lies above a horizontal line.
struct UPPERPART {
    double x[8]; // each of four corners adds at most itself and one crossing
    double y[8];
    int count = 0;

    UPPERPART(const AgPOINT (&corners)[4], double z);
    double Area() const;

private:
    void Add(double aX, double aY)
    {
        x[count] = aX;
        y[count] = aY;
        ++count;
    }
};

UPPERPART::UPPERPART(const AgPOINT (&corners)[4], double z)
{
    for (int i = 0; i < 4; ++i) {
        const AgPOINT &prev = corners[(i + 3) % 4];
        const AgPOINT &here = corners[i];
        const AgPOINT &next = corners[(i + 1) % 4];
        // A corner on the line belongs to the part only where the part touches it with an edge.
        bool kept = here.y == z ? prev.y > z || next.y > z : here.y > z;
        if (kept)
            Add(here.x, here.y);
        if ((here.y > z && next.y < z) || (here.y < z && next.y > z))
            Add(here.x - (here.x - next.x) * (here.y - z) / (here.y - next.y), z);
    }
}

double UPPERPART::Area() const
{
    if (count <= 2)
        return 0;
    double sum = 0;
    for (int i = 0; i < count; ++i)
        sum += (y[(i + 2) % count] - y[i]) * x[(i + 1) % count];
    return std::fabs(sum) * 0.5;
}

/// Inside surface temperature of an element between tAir and tOut, and its radiant excess over the air.
void UpdateElement(EmCONSTRUCTION *c, double tAir, double tOut)
{
    double r = c->k / c->alpha; // share of the temperature drop that falls between the air and the surface
    if (r > 1)
        r = 1;
    c->tSurf = tAir - r * (tAir - tOut);
    c->qSurf = (std::pow(c->tSurf + 273.15, 4.0) - std::pow(tAir + 273.15, 4.0)) * 5.669e-8;
}

void AddConduction(const EmCONSTRUCTION &part, double *a, double *b, double *c, double *d)
{
    *a += part.k * part.lowerArea * part.tExt;
    *b += part.k * part.upperArea * part.tExt;
    *c += part.k * part.lowerArea;
    *d += part.k * part.upperArea;
}

/// A height on a surface, kept between its lower and its upper edge.
double WithinHeight(double z, double height)
{
    return std::max(std::min(z, height), 0.0);
}
} // namespace

EmHOLE::EmHOLE(const EmHOLE &source)
    : LINK(source), flags(source.flags), size(source.size), pos(source.pos), rotation(source.rotation),
      constr(source.constr)
{
    std::memcpy(description, source.description, sizeof description);
}

EmSURFACE *EmHOLE::Surface() const
{
    const EmHOLESET *holeSet = static_cast<const EmHOLESET *>(List());
    ASSERT(holeSet != NULL && holeSet->surface != NULL);
    return holeSet->surface;
}

double EmHOLE::OuterTemp() const
{
    return flags & OWN_TEMP ? constr.tExt : Surface()->constr->tExt;
}

void EmHOLE::Prepare()
{
    FindCorners(*this, corners);
    transform = Surface()->transform;
    transform.Translate(-pos);
    transform.RotateZ(-rotation);
    transform.Translate(size.x / 2, size.y / 2, 0);
}

void EmHOLE::Split(EmCONSTRUCTION *out, double z) const
{
    AgPOINT ring[4];
    FindCorners(*this, ring);
    *out = constr;
    out->tExt = OuterTemp();
    out->upperArea = UPPERPART(ring, z).Area();
    out->lowerArea = size.x * size.y - out->upperArea;
}

double EmHOLE::Radiation(const AgPOINT &p, double qOffset) const
{
    AgPOINT local = transform * p;
    return RectangleFlux(local.x, local.y, std::fabs(local.z), size.x, size.y, constr.qSurf + qOffset);
}

void EmSURFACE::Set(const AgPOINT &aSize, const AgPOINT &aOrigin, const AgPOINT &aU, const AgPOINT &aV)
{
    size = aSize;
    origin = aOrigin;
    uAxis = aU;
    vAxis = aV;
}

void EmSURFACE::Prepare()
{
    transform.Reset();
    transform.FromFrame(origin, uAxis, vAxis, uAxis % vAxis);
    for (EmHOLE *hole = holes.First(); hole; hole = EmHOLESET::Next(hole))
        hole->Prepare();
}

EmBOX EmSURFACE::Bounds() const
{
    EmBOX bounds{AgE0, size};
    for (const EmHOLE *hole = holes.First(); hole; hole = EmHOLESET::Next(hole)) {
        AgPOINT centre(hole->pos.x, hole->pos.y);
        bounds = Union(bounds, EmBOX{centre, centre});
    }
    return bounds;
}

void EmSURFACE::SplitAreas(EmCONSTRUCTION *out, double z) const
{
    *out = *constr;
    out->upperArea = size.x * WithinHeight(size.y - z, size.y);
    out->lowerArea = size.x * WithinHeight(z, size.y);
    for (const EmHOLE *hole = holes.First(); hole; hole = EmHOLESET::Next(hole)) {
        EmCONSTRUCTION part;
        hole->Split(&part, z);
        out->upperArea -= part.upperArea;
        out->lowerArea -= part.lowerArea;
    }
    if (out->upperArea < 0)
        out->upperArea = 0;
    if (out->lowerArea < 0)
        out->lowerArea = 0;
}

void EmSURFACE::Transmission(double *a, double *b, double *c, double *d, double z) const
{
    EmCONSTRUCTION part;
    SplitAreas(&part, z);
    *a = *b = *c = *d = 0;
    AddConduction(part, a, b, c, d);
    for (const EmHOLE *hole = holes.First(); hole; hole = EmHOLESET::Next(hole)) {
        hole->Split(&part, z);
        AddConduction(part, a, b, c, d);
    }
}

double EmSURFACE::Radiation(const AgPOINT &p) const
{
    AgPOINT local = transform * p;
    double sum = RectangleFlux(local.x, local.y, std::fabs(local.z), size.x, size.y, constr->qSurf);
    for (const EmHOLE *hole = holes.First(); hole; hole = EmHOLESET::Next(hole))
        sum += hole->Radiation(p, -constr->qSurf);
    return sum;
}

EmSURFACE *EmSURFACESET::Floor() const
{
    ASSERT(Count() >= 1);
    return First();
}

EmSURFACE *EmSURFACESET::Ceiling() const
{
    ASSERT(Count() >= 2);
    return Next(First());
}

EmSURFACE *EmSURFACESET::FirstWall() const
{
    ASSERT(Count() >= 3);
    return Next(Next(First()));
}

void EmSURFACESET::BuildSurfaces(const AgPOINT &dims, EmCONSTRUCTION *constr)
{
    const double length = dims.x;
    const double width = dims.y;
    const double height = dims.z;
    // Seen from inside, a wall runs from left to right, so that its normal points into the hall.
    const struct {
        int element;
        AgPOINT size;
        AgPOINT origin;
        AgPOINT uAxis;
        AgPOINT vAxis;
    } sides[COUNT] = {
        {EM_FLOOR, {length, width}, {0, 0, 0}, AgE1, AgE2},
        {EM_CEILING, {length, width}, {0, 0, height}, AgE1, AgE2},
        {EM_WALLS, {length, height}, {length, 0, 0}, -AgE1, AgE3},
        {EM_WALLS, {width, height}, {length, width, 0}, -AgE2, AgE3},
        {EM_WALLS, {length, height}, {0, width, 0}, AgE1, AgE3},
        {EM_WALLS, {width, height}, {0, 0, 0}, AgE2, AgE3},
    };
    __enter
        Clear();
        for (const auto &side : sides) {
            EmSURFACE *surface = new EmSURFACE(constr + side.element);
            surface->Set(side.size, side.origin, side.uAxis, side.vAxis);
            surface->Insert(this);
        }
    __point
        Clear();
    __treat
}

void EmSURFACESET::Prepare()
{
    for (EmSURFACE *surface = First(); surface; surface = Next(surface))
        surface->Prepare();
}

void EmSURFACESET::UpdateTemps(double tAir)
{
    for (EmSURFACE *surface = First(); surface; surface = Next(surface)) {
        UpdateElement(surface->constr, tAir, surface->constr->tExt);
        for (EmHOLE *hole = surface->Holes()->First(); hole; hole = EmHOLESET::Next(hole))
            UpdateElement(&hole->constr, tAir, hole->OuterTemp());
    }
}

void EmSURFACESET::Transmission(double *a, double *b, double *c, double *d, double z) const
{
    const EmSURFACE *floor = Floor();
    const EmSURFACE *ceiling = Ceiling();
    *a = *b = *c = *d = 0;
    for (const EmSURFACE *surface = floor; surface; surface = Next(surface)) {
        double split = z;
        if (surface == floor)
            split = z <= 0 ? 0 : floor->size.y; // a plan coordinate there: the floor lies wholly on one side
        else if (surface == ceiling)
            split = 0;
        double part[4];
        surface->Transmission(&part[0], &part[1], &part[2], &part[3], split);
        *a += part[0];
        *b += part[1];
        *c += part[2];
        *d += part[3];
    }
}

double EmSURFACESET::Radiation(const AgPOINT &p) const
{
    double sum = 0;
    for (const EmSURFACE *surface = First(); surface; surface = Next(surface))
        sum += surface->Radiation(p);
    return sum;
}
