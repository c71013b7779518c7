#include "plainplan.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace plain
{
namespace
{
const double PI = std::acos(-1.0);
const double NOISE = 1e-9; // m and rad

/// What brings `value` onto the grid: one answer, or two half way between its lines.
std::vector<double> Rests(double value, double step)
{
    if (step <= 0)
        return {0};
    double below = std::floor(value / step) * step - value;
    double above = below + step;
    if (std::abs(above + below) < NOISE)
        return {below, above};
    return {above < -below ? above : below};
}

std::vector<POINT> Rests(POINT p, double step)
{
    std::vector<POINT> all;
    for (double x : Rests(p.real(), step))
        for (double y : Rests(p.imag(), step))
            all.emplace_back(x, y);
    return all;
}

/// Those that are the nearest.
std::vector<POINT> Nearest(const std::vector<POINT> &points, POINT by, double step)
{
    std::vector<POINT> all;
    for (POINT p : points)
        for (POINT rest : Rests(p + by, step))
            all.push_back(rest);
    double least = std::abs(all.front());
    for (POINT rest : all)
        least = std::min(least, std::abs(rest));
    std::erase_if(all, [&](POINT rest) { return std::abs(rest) > least + NOISE; });
    return all;
}

double Wrapped(double angle)
{
    while (angle > PI)
        angle -= 2 * PI;
    while (angle <= -PI)
        angle += 2 * PI;
    return angle;
}

SHAPE Reshaped(const SHAPE &shape, int handle, POINT by)
{
    const double rightwards[] = {-1, 1, 1, -1};
    const double upwards[] = {-1, -1, 1, 1};
    std::vector<POINT> corners = shape.Corners();
    auto i = static_cast<size_t>(handle);
    POINT fixed = corners[(i + corners.size() / 2) % corners.size()];
    POINT way = corners[i] + by - fixed;
    SHAPE made = shape;
    made.centre = fixed + way / 2.0;
    if (shape.line) {
        made.width = std::abs(way);
        made.angle = way == POINT() ? 0 : Wrapped(std::arg(i == 0 ? POINT() - way : way));
        return made;
    }
    POINT own = way * std::polar(1.0, -shape.angle);
    made.width = rightwards[i] * own.real();
    made.height = upwards[i] * own.imag();
    return made;
}

std::vector<SHAPE> Moved(const SHAPE &shape, const STEP &step, const AXES &axes)
{
    TPoint px = step.by;
    if (step.shift)
        (std::abs(px.x) <= std::abs(px.y) ? px.x : px.y) = 0;
    POINT by = POINT(px.x, -px.y) / axes.scale;
    std::vector<SHAPE> all;
    if (step.kind == STEP::HANDLE) {
        POINT grasped = shape.Corners()[static_cast<size_t>(step.handle)];
        for (POINT rest : Nearest({grasped}, by, axes.snap))
            all.push_back(Reshaped(shape, step.handle, by + rest));
        return all;
    }
    BOX box = Around(shape, 0);
    for (POINT rest : Nearest({box.At(0, 1), box.At(1, 1), box.At(0, 0), box.At(1, 0)}, by, axes.snap)) {
        all.push_back(shape);
        all.back().centre += by + rest;
    }
    return all;
}

std::vector<double> Add(const std::vector<double> &values, double step)
{
    std::vector<double> all;
    for (double value : values)
        for (double rest : Rests(value, step))
            all.push_back(value + rest);
    return all;
}

double Direction(TPoint v)
{
    return std::arg(POINT(v.x, v.y == 0 ? 0 : -v.y));
}

std::vector<SHAPE> Turned(const SHAPE &shape, const STEP &step, const AXES &axes)
{
    std::vector<double> angles = {Direction(step.pointer - step.pivot) - (step.ctrl ? 0 : step.startAngle)};
    if (step.shift)
        angles = Add(angles, PI / 2);
    std::vector<SHAPE> all;
    for (double angle : Add(angles, axes.angleSnap)) {
        all.push_back(shape);
        all.back().angle = Wrapped(step.ctrl ? angle : shape.angle + angle);
    }
    return all;
}

int Rounded(double value)
{
    return static_cast<int>(std::lround(value));
}
} // namespace

std::vector<POINT> SHAPE::Corners() const
{
    POINT half = POINT(width, height) / 2.0;
    POINT turn = std::polar(1.0, angle);
    if (line)
        return {centre - turn * half.real(), centre + turn * half.real()};
    return {centre - turn * half, centre + turn * std::conj(half), centre + turn * half,
            centre - turn * std::conj(half)};
}

std::string Text(const SHAPE &shape)
{
    auto shown = [](double value) { return std::round(value * 1e6) / 1e6 + 0.0; };
    char text[120];
    snprintf(text, sizeof text, "%g,%g %gx%g %g", shown(shape.centre.real()), shown(shape.centre.imag()),
             shown(shape.width), shown(shape.height), shown(shape.angle * 180 / PI));
    return text;
}

bool Near(const SHAPE &a, const SHAPE &b)
{
    bool isPoint = a.line && std::abs(a.width) < NOISE; // which has no direction
    return std::abs(a.centre - b.centre) < NOISE && std::abs(a.width - b.width) < NOISE &&
           std::abs(a.height - b.height) < NOISE &&
           (isPoint || std::abs(std::remainder(a.angle - b.angle, 2 * PI)) < 10 * NOISE);
}

TPoint AXES::Pixel(POINT p) const
{
    return {Rounded(origin.x + p.real() * scale), Rounded(origin.y - p.imag() * scale)};
}

POINT AXES::Metres(TPoint p) const
{
    return POINT(p.x - origin.x, origin.y - p.y) / scale;
}

BOX Around(const SHAPE &shape, double frame)
{
    BOX box;
    box.frame = frame;
    std::vector<POINT> corners = shape.Corners();
    for (size_t i = 0; i < corners.size(); ++i) {
        POINT p = corners[i] * std::polar(1.0, -frame);
        box.low = i == 0 ? p : POINT(std::min(box.low.real(), p.real()), std::min(box.low.imag(), p.imag()));
        box.high = i == 0 ? p : POINT(std::max(box.high.real(), p.real()), std::max(box.high.imag(), p.imag()));
    }
    return box;
}

POINT BOX::At(double x, double y) const
{
    POINT extent = high - low;
    return (low + POINT(x * extent.real(), y * extent.imag())) * std::polar(1.0, frame);
}

MEETS Meets(const SHAPE &shape, const AXES &axes, int tolerance, TPoint at)
{
    double t = tolerance / axes.scale;
    POINT own = (axes.Metres(at) - shape.centre) * std::polar(1.0, -shape.angle);
    POINT half = POINT(std::abs(shape.width), std::abs(shape.height)) / 2.0;
    // m beyond the nearest side, and beyond the circle through the corners; negative within
    double beyond = std::max(std::abs(own.real()) - half.real(), std::abs(own.imag()) - half.imag());
    double outside = std::abs(own) - std::abs(half);
    for (double edge : {beyond - t, outside - t, beyond + t})
        if (std::abs(edge) < NOISE)
            return DOUBTFUL;
    bool hollow = shape.frameOnly && !shape.line;
    return beyond < t && outside < t && !(hollow && beyond < -t) ? HITS : MISSES;
}

int HandleAt(const SHAPE &shape, const AXES &axes, int extent, TPoint at)
{
    std::vector<TPoint> outline = Outline(shape, axes);
    size_t handles = shape.line ? 2 : 4;
    for (size_t i = 0; i < handles; ++i) {
        TPoint from = {outline[i].x - extent / 2, outline[i].y - extent / 2};
        TPoint to = {outline[i].x + extent / 2, outline[i].y + extent / 2};
        if (at.x >= from.x && at.y >= from.y && at.x < to.x && at.y < to.y)
            return static_cast<int>(i);
    }
    return -1;
}

std::vector<TPoint> Outline(const SHAPE &shape, const AXES &axes)
{
    std::vector<TPoint> outline;
    for (POINT p : shape.Corners())
        outline.push_back(axes.Pixel(p));
    if (shape.line) {
        outline[1].x += outline[0] == outline[1];
        return outline;
    }
    outline.push_back(outline[0]);
    outline[4].x += outline[4] == outline[2];
    return outline;
}

POINT Snapped(POINT p, double step)
{
    return {std::round(p.real() / step) * step, std::round(p.imag() / step) * step};
}

std::vector<SHAPE> Stepped(const SHAPE &shape, const STEP &step, const AXES &axes)
{
    switch (step.kind) {
    case STEP::MOVE:
    case STEP::HANDLE:
        return Moved(shape, step, axes);
    case STEP::TURN:
        return Turned(shape, step, axes);
    default:
        return {shape};
    }
}

bool Leads(const SHAPE &before, const STEP &step, const AXES &axes, const SHAPE &after)
{
    std::vector<SHAPE> all = Stepped(before, step, axes);
    return std::any_of(all.begin(), all.end(), [&](const SHAPE &shape) { return Near(shape, after); });
}
} // namespace plain
