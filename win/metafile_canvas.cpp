// What both kinds of metafiles draw on while they are read: states, objects, paths, and figures turned into
// outlines of lines and cubic curves.
#include "win/metafile_body.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace
{
constexpr double FARTHEST = 1e12;   // device units; no sound picture has a point there
constexpr double EXTENT_MIN = 1e-9; // of windows and viewports, which scaling records can shrink
constexpr double WORLD_MAX = 1e15;  // elements of a world transform
constexpr size_t SAVED_MAX = 256;   // states
constexpr double FULL = 2 * std::numbers::pi;
constexpr double MM_PER_UNIT[] = {0.1, 0.01, 0.254, 0.0254, 25.4 / 1440}; // of the metric modes, from 2

double Limited(double v)
{
    return std::clamp(v, -FARTHEST, FARTHEST);
}

bool IsExtent(double v)
{
    return std::fabs(v) >= EXTENT_MIN && std::fabs(v) <= FARTHEST;
}
} // namespace

MetaBox MetaBox::Normalized() const
{
    return {std::min(left, right), std::min(top, bottom), std::max(left, right), std::max(top, bottom)};
}

MetaMatrix MetaMatrix::Then(const MetaMatrix &next) const
{
    MetaMatrix m;
    m.xx = next.xx * xx + next.yx * xy;
    m.xy = next.xy * xx + next.yy * xy;
    m.yx = next.xx * yx + next.yx * yy;
    m.yy = next.xy * yx + next.yy * yy;
    const MetaPoint origin = next.Apply({dx, dy});
    m.dx = origin.x;
    m.dy = origin.y;
    return m;
}

bool MetaMatrix::IsSound() const
{
    for (double v : {xx, xy, yx, yy, dx, dy}) {
        if (!(std::fabs(v) <= WORLD_MAX)) // NaN too
            return false;
    }
    return Determinant() != 0;
}

bool MetaObjects::Put(uint32_t handle, const MetaObject &object)
{
    if (handle < first || handle >= end)
        return false;
    objects[handle] = object;
    return true;
}

bool MetaObjects::PutInFreeSlot(const MetaObject &object)
{
    if (freed.empty())
        return Put(next, object) && ++next > 0;
    objects[*freed.begin()] = object;
    freed.erase(freed.begin());
    return true;
}

bool MetaObjects::Delete(uint32_t handle)
{
    if (objects.erase(handle) == 0)
        return false;
    freed.insert(handle);
    return true;
}

const MetaObject *MetaObjects::Find(uint32_t handle) const
{
    const auto found = objects.find(handle);
    return found == objects.end() ? NULL : &found->second;
}

bool MetaCanvas::Save()
{
    if (saved.size() == SAVED_MAX)
        return false;
    saved.push_back(state);
    return true;
}

bool MetaCanvas::Restore(int level)
{
    const int64_t depth = static_cast<int64_t>(saved.size());
    const int64_t target = level < 0 ? depth + level : level - int64_t(1);
    if (target < 0 || target >= depth)
        return false;
    state = saved[static_cast<size_t>(target)];
    saved.resize(static_cast<size_t>(target));
    figure = false;
    return true;
}

bool MetaCanvas::Select(const MetaObject &object)
{
    if (object.kind == MetaObject::PEN)
        state.pen = object.pen;
    else if (object.kind == MetaObject::BRUSH)
        state.brush = object.brush;
    return object.kind != MetaObject::REGION; // would clip to a shape that was not read
}

bool MetaCanvas::SetMode(int mode)
{
    state.page.mode = mode;
    return mode >= 1 && mode <= 8;
}

bool MetaCanvas::SetExt(MetaPoint &extent, MetaPoint value)
{
    extent = value;
    return IsExtent(value.x) && IsExtent(value.y);
}

bool MetaCanvas::ScaleWindowExt(MetaPoint num, MetaPoint denom)
{
    const MetaPoint &ext = state.page.windowExt;
    return denom.x != 0 && denom.y != 0 && SetWindowExt({ext.x * num.x / denom.x, ext.y * num.y / denom.y});
}

bool MetaCanvas::ScaleViewportExt(MetaPoint num, MetaPoint denom)
{
    const MetaPoint &ext = state.page.viewportExt;
    return denom.x != 0 && denom.y != 0 && SetViewportExt({ext.x * num.x / denom.x, ext.y * num.y / denom.y});
}

bool MetaCanvas::SetWorld(const MetaMatrix &world)
{
    state.world = world;
    return world.IsSound();
}

bool MetaCanvas::SetFillMode(uint32_t mode)
{
    state.winding = mode == 2;
    return mode == 1 || mode == 2;
}

/// Device units per unit of the page. The metric modes have y up; equal scales are equal in millimetres.
MetaPoint MetaCanvas::PageScale() const
{
    const MetaPage &page = state.page;
    if (page.mode == 1)
        return {1, 1};
    if (page.mode <= 6) {
        const double mm = MM_PER_UNIT[page.mode - 2];
        return {mm * unitsPerMm.x, -mm * unitsPerMm.y};
    }
    MetaPoint scale = {page.viewportExt.x / page.windowExt.x, page.viewportExt.y / page.windowExt.y};
    if (page.mode == 7) {
        const double mm = std::min(std::fabs(scale.x) / unitsPerMm.x, std::fabs(scale.y) / unitsPerMm.y);
        scale = {std::copysign(mm * unitsPerMm.x, scale.x), std::copysign(mm * unitsPerMm.y, scale.y)};
    }
    return scale;
}

MetaMatrix MetaCanvas::ToDevice() const
{
    const MetaPage &page = state.page;
    const MetaPoint scale = PageScale();
    MetaMatrix m;
    m.xx = scale.x;
    m.yy = scale.y;
    m.dx = page.viewportOrg.x - page.windowOrg.x * scale.x;
    m.dy = page.viewportOrg.y - page.windowOrg.y * scale.y;
    return state.world.Then(m);
}

// Figures.

void MetaCanvas::AddVertex(MetaPoint p, bool control)
{
    const MetaPoint at = ToDevice().Apply(p);
    picture.vertices.push_back({{Limited(at.x), Limited(at.y)}, control});
    ++picture.outlines.back().count;
}

void MetaCanvas::Start(MetaPoint p)
{
    picture.outlines.push_back({picture.vertices.size(), 0, false});
    figure = true;
    AddVertex(p, false);
}

void MetaCanvas::Continue()
{
    if (!figure)
        Start(state.position);
}

void MetaCanvas::Curve(MetaPoint c1, MetaPoint c2, MetaPoint end)
{
    AddVertex(c1, true);
    AddVertex(c2, true);
    AddVertex(end, false);
}

void MetaCanvas::Close()
{
    picture.outlines.back().closed = true;
    figure = false;
}

void MetaCanvas::AddShape(size_t first, size_t last, MetaInk ink)
{
    MetaShape shape;
    shape.first = first;
    shape.count = last - first;
    shape.winding = state.winding;
    shape.pen = state.pen;
    shape.pen.width *= std::sqrt(std::fabs(ToDevice().Determinant()));
    shape.brush = state.brush;
    shape.clip = state.clip;
    if ((ink & META_STROKE) == 0)
        shape.pen.style = WIN_PEN_NONE;
    if ((ink & META_FILL) == 0)
        shape.brush.none = true;
    if (shape.count > 0 && !(shape.pen.IsNone() && shape.brush.none))
        picture.shapes.push_back(shape);
}

void MetaCanvas::Paint(MetaInk ink)
{
    if (InPath())
        return;
    AddShape(painted, picture.outlines.size(), ink);
    painted = picture.outlines.size();
    figure = false;
}

void MetaCanvas::MoveTo(MetaPoint p)
{
    state.position = p;
    figure = false;
}

void MetaCanvas::LineTo(MetaPoint p)
{
    Continue();
    Line(p);
    state.position = p;
    Paint(META_STROKE);
}

void MetaCanvas::AddPolyline(const MetaPoints &points)
{
    if (points.Count() == 0)
        return;
    Start(points[0]);
    for (size_t i = 1; i < points.Count(); ++i)
        Line(points[i]);
    figure = false;
}

void MetaCanvas::AddPolygon(const MetaPoints &points)
{
    AddPolyline(points);
    if (points.Count() > 0)
        Close();
}

void MetaCanvas::Polyline(const MetaPoints &points)
{
    AddPolyline(points);
    Paint(META_STROKE);
}

void MetaCanvas::Polygon(const MetaPoints &points)
{
    AddPolygon(points);
    Paint(META_BOTH);
}

void MetaCanvas::PolylineTo(const MetaPoints &points)
{
    if (points.Count() == 0)
        return;
    Continue();
    for (size_t i = 0; i < points.Count(); ++i)
        Line(points[i]);
    state.position = points[points.Count() - 1];
    Paint(META_STROKE);
}

bool MetaCanvas::Bezier(const MetaPoints &points)
{
    if (points.Count() % 3 != 1)
        return false;
    Start(points[0]);
    for (size_t i = 1; i < points.Count(); i += 3)
        Curve(points[i], points[i + 1], points[i + 2]);
    figure = false;
    Paint(META_STROKE);
    return true;
}

bool MetaCanvas::BezierTo(const MetaPoints &points)
{
    if (points.Count() == 0 || points.Count() % 3 != 0)
        return false;
    Continue();
    for (size_t i = 0; i < points.Count(); i += 3)
        Curve(points[i], points[i + 1], points[i + 2]);
    state.position = points[points.Count() - 1];
    Paint(META_STROKE);
    return true;
}

/// The types: 6 moves, 2 draws a line, three of 4 a curve; 1 in the last type of a figure closes it.
bool MetaCanvas::Draw(const MetaPoints &points, const uint8_t *types)
{
    size_t i = 0;
    while (i < points.Count()) {
        const int type = types[i] & ~1;
        const size_t length = type == 4 ? 3 : 1;
        if ((type != 2 && type != 4 && types[i] != 6) || points.Count() - i < length)
            return false;
        if (type == 4 && (types[i] != 4 || types[i + 1] != 4 || (types[i + 2] & ~1) != 4))
            return false;
        if (type != 6)
            Continue();
        if (type == 2)
            Line(points[i]);
        else if (type == 4)
            Curve(points[i], points[i + 1], points[i + 2]);
        else
            figure = false;
        i += length;
        state.position = points[i - 1];
        if ((types[i - 1] & 1) != 0)
            Close();
    }
    Paint(META_STROKE);
    return true;
}

void MetaCanvas::Rectangle(const MetaBox &box)
{
    Start({box.left, box.top});
    Line({box.right, box.top});
    Line({box.right, box.bottom});
    Line({box.left, box.bottom});
    Close();
    Paint(META_BOTH);
}

void MetaCanvas::RoundRect(const MetaBox &given, MetaPoint corner)
{
    const MetaBox box = given.Normalized();
    const double rx = std::min(std::fabs(corner.x), box.right - box.left) / 2;
    const double ry = std::min(std::fabs(corner.y), box.bottom - box.top) / 2;
    if (rx == 0 || ry == 0) {
        Rectangle(box);
        return;
    }
    const double quarter = FULL / 4;
    const Ellipsis corners[] = {
        {{box.right - rx, box.top + ry}, {rx, ry}, -quarter, quarter},
        {{box.right - rx, box.bottom - ry}, {rx, ry}, 0, quarter},
        {{box.left + rx, box.bottom - ry}, {rx, ry}, quarter, quarter},
        {{box.left + rx, box.top + ry}, {rx, ry}, 2 * quarter, quarter},
    };
    Start({box.left + rx, box.top});
    for (const Ellipsis &arc : corners) {
        Line(arc.At(arc.start));
        AddArc(arc);
    }
    Close();
    Paint(META_BOTH);
}

// Arcs.

MetaPoint MetaCanvas::Ellipsis::At(double angle) const
{
    return {center.x + radius.x * std::cos(angle), center.y + radius.y * std::sin(angle)};
}

/// The direction in which angles of logical units grow: 1 where the arc runs that way, -1 against it.
double MetaCanvas::Turning() const
{
    return state.clockwise == (ToDevice().Determinant() > 0) ? 1 : -1;
}

/// The arc between the rays through two points; the same ray twice is the whole ellipse. False for an ellipse
/// without an extent, which nothing draws.
bool MetaCanvas::SpanArc(const MetaBox &given, MetaPoint from, MetaPoint to, Ellipsis &arc) const
{
    const MetaBox box = given.Normalized();
    arc.center = {(box.left + box.right) / 2, (box.top + box.bottom) / 2};
    arc.radius = {(box.right - box.left) / 2, (box.bottom - box.top) / 2};
    if (arc.radius.x == 0 || arc.radius.y == 0)
        return false;
    auto angle = [&arc](MetaPoint p) {
        return std::atan2((p.y - arc.center.y) / arc.radius.y, (p.x - arc.center.x) / arc.radius.x);
    };
    arc.start = angle(from);
    const double turning = Turning();
    double sweep = (angle(to) - arc.start) * turning;
    if (sweep <= 0)
        sweep += FULL;
    arc.sweep = sweep * turning;
    return true;
}

/// Appends the arc, whose start is the last vertex: a cubic curve for each quarter or less of it, with the
/// control points on the tangents at 4/3 tan(angle / 4) of the radius.
void MetaCanvas::AddArc(const Ellipsis &arc)
{
    const int pieces = std::max(1, static_cast<int>(std::ceil(std::fabs(arc.sweep) / (FULL / 4) - 1e-9)));
    const double step = arc.sweep / pieces;
    const double k = 4.0 / 3.0 * std::tan(step / 4);
    auto ahead = [&arc](double angle, double tangent) {
        const MetaPoint p = arc.At(angle);
        return MetaPoint{p.x - tangent * arc.radius.x * std::sin(angle),
                         p.y + tangent * arc.radius.y * std::cos(angle)};
    };
    for (int i = 0; i < pieces; ++i) {
        const double a = arc.start + i * step;
        const double b = arc.start + (i + 1) * step;
        Curve(ahead(a, k), ahead(b, -k), arc.At(b));
    }
}

void MetaCanvas::Ellipse(const MetaBox &box)
{
    Ellipsis arc;
    if (!SpanArc(box, {box.right, 0}, {box.right, 0}, arc))
        return;
    arc.start = 0;
    Start(arc.At(0));
    AddArc(arc);
    Close();
    Paint(META_BOTH);
}

void MetaCanvas::Arc(const MetaBox &box, MetaPoint from, MetaPoint to, MetaArc kind)
{
    Ellipsis arc;
    if (!SpanArc(box, from, to, arc))
        return;
    Start(kind == META_PIE ? arc.center : arc.At(arc.start));
    if (kind == META_PIE)
        Line(arc.At(arc.start));
    AddArc(arc);
    figure = false;
    if (kind != META_ARC)
        Close();
    Paint(kind == META_ARC ? META_STROKE : META_BOTH);
}

void MetaCanvas::ArcTo(const MetaBox &box, MetaPoint from, MetaPoint to)
{
    Ellipsis arc;
    if (!SpanArc(box, from, to, arc))
        return;
    Continue();
    Line(arc.At(arc.start));
    AddArc(arc);
    state.position = arc.At(arc.start + arc.sweep);
    Paint(META_STROKE);
}

void MetaCanvas::AngleArc(MetaPoint center, double radius, double start, double sweep)
{
    if (std::fabs(sweep) > FULL)
        sweep = std::copysign(FULL, sweep) + std::fmod(sweep, FULL); // once round is enough
    const double turning = ToDevice().Determinant() > 0 ? -1 : 1;
    const Ellipsis arc = {center, {radius, radius}, std::fmod(start, FULL) * turning, sweep * turning};
    Continue();
    Line(arc.At(arc.start));
    AddArc(arc);
    state.position = arc.At(arc.start + arc.sweep);
    Paint(META_STROKE);
}

// Paths and clipping.

bool MetaCanvas::BeginPath()
{
    if (path == OPEN)
        return false;
    path = OPEN;
    pathFirst = picture.outlines.size();
    figure = false;
    return true;
}

bool MetaCanvas::EndPath()
{
    if (path != OPEN)
        return false;
    path = READY;
    pathLast = painted = picture.outlines.size();
    figure = false;
    return true;
}

void MetaCanvas::AbortPath()
{
    path = NONE;
    painted = picture.outlines.size();
    figure = false;
}

bool MetaCanvas::CloseFigure()
{
    if (path != OPEN)
        return false;
    if (picture.outlines.size() > pathFirst)
        Close();
    return true;
}

bool MetaCanvas::PaintPath(MetaInk ink)
{
    if (path != READY)
        return false;
    for (size_t i = pathFirst; i < pathLast && (ink & META_FILL) != 0; ++i)
        picture.outlines[i].closed = true;
    AddShape(pathFirst, pathLast, ink);
    path = NONE;
    return true;
}

/// The path as an upright rectangle; false where it is anything else.
bool MetaCanvas::PathBox(MetaBox &box) const
{
    if (pathLast - pathFirst != 1)
        return false;
    const MetaOutline &outline = picture.outlines[pathFirst];
    if (outline.count != 4 && outline.count != 5)
        return false;
    const MetaVertex *v = &picture.vertices[outline.first];
    for (size_t i = 0; i < outline.count; ++i) {
        if (v[i].control)
            return false;
    }
    auto level = [v](size_t i, size_t j) { return v[i].at.y == v[j].at.y; };
    auto plumb = [v](size_t i, size_t j) { return v[i].at.x == v[j].at.x; };
    if (outline.count == 5 && !(level(0, 4) && plumb(0, 4)))
        return false;
    if (!(level(0, 1) && plumb(1, 2) && level(2, 3) && plumb(3, 0)) &&
        !(plumb(0, 1) && level(1, 2) && plumb(2, 3) && level(3, 0)))
        return false;
    box = MetaBox{v[0].at.x, v[0].at.y, v[2].at.x, v[2].at.y}.Normalized();
    return true;
}

bool MetaCanvas::ClipToPath(uint32_t mode)
{
    MetaBox box;
    if (path != READY || (mode != 1 && mode != 5) || !PathBox(box))
        return false;
    path = NONE;
    if (mode == 5)
        state.clip = {};
    Narrow(box);
    return true;
}

/// The common part of the clip and a box; where there is none, an empty box.
void MetaCanvas::Narrow(const MetaBox &box)
{
    MetaBox &clip = state.clip.box;
    if (!state.clip.set)
        clip = box;
    state.clip.set = true;
    clip.left = std::max(clip.left, box.left);
    clip.top = std::max(clip.top, box.top);
    clip.right = std::max(clip.left, std::min(clip.right, box.right));
    clip.bottom = std::max(clip.top, std::min(clip.bottom, box.bottom));
}

bool MetaCanvas::ClipTo(const MetaBox &box)
{
    const MetaMatrix m = ToDevice();
    if ((m.xy != 0 || m.yx != 0) && (m.xx != 0 || m.yy != 0))
        return false;
    const MetaPoint a = m.Apply({box.left, box.top});
    const MetaPoint b = m.Apply({box.right, box.bottom});
    Narrow(MetaBox{Limited(a.x), Limited(a.y), Limited(b.x), Limited(b.y)}.Normalized());
    return true;
}
