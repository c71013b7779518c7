#include "win/runs.h"
#include <algorithm>
#include <cmath>
#include <cstdint>

namespace
{

int64_t FloorDivide(int64_t a, int64_t b) // b > 0
{
    return a >= 0 ? a / b : -((b - 1 - a) / b);
}

/// One straight piece of a line, from step `first` to step `last`. Places along it are steps of its longer
/// extent, the major one; the minor coordinate is rounded half up, which does not depend on the direction.
struct Segment {
    TPoint from;
    bool steep; // the major extent is y
    int64_t major;
    int64_t minor;
    int64_t steps;
    int64_t first = 0;
    int64_t last;

    Segment(TPoint aFrom, TPoint to) : from(aFrom)
    {
        const int64_t dx = int64_t(to.x) - from.x;
        const int64_t dy = int64_t(to.y) - from.y;
        steep = std::abs(dy) > std::abs(dx);
        major = steep ? dy : dx;
        minor = steep ? dx : dy;
        steps = std::abs(major);
        last = steps;
    }

    TPoint At(int64_t i) const
    {
        const int along = static_cast<int>(major < 0 ? -i : i);
        const int aside = steps == 0 ? 0 : static_cast<int>(FloorDivide(2 * i * minor + steps, 2 * steps));
        return steep ? TPoint{from.x + aside, from.y + along} : TPoint{from.x + along, from.y + aside};
    }

    /// The steps that may be visible: those within the extent of `visible` along the major axis.
    void Limit(const TRect &visible)
    {
        const int64_t low = int64_t(steep ? visible.top : visible.left) - (steep ? from.y : from.x);
        const int64_t high = int64_t(steep ? visible.bottom : visible.right) - 1 - (steep ? from.y : from.x);
        first = std::max(first, major < 0 ? -high : low);
        last = std::min(last, major < 0 ? -low : high);
    }
};

bool Drawn(int64_t place, TDash dash)
{
    return dash.off == 0 || place % (dash.on + dash.off) < dash.on;
}

/// Adds a pixel, to the last run where it goes on with that one.
void AddPixel(TRuns &runs, size_t from, TPoint p)
{
    if (runs.size() > from && runs.back().top == p.y) {
        TRect &last = runs.back();
        if (p.x == last.right) {
            ++last.right;
            return;
        }
        if (p.x == last.left - 1) {
            --last.left;
            return;
        }
    }
    runs.push_back({p.x, p.y, p.x + 1, p.y + 1});
}

void AddSegment(TRuns &runs, const Segment &segment, int64_t place, TDash dash, bool gaps, const TRect &visible)
{
    const size_t from = runs.size();
    for (int64_t i = segment.first; i <= segment.last; ++i) {
        const TPoint p = segment.At(i);
        if (Drawn(place + i, dash) != gaps && visible.Contains(p))
            AddPixel(runs, from, p);
    }
}

bool AddStraight(TRuns &runs, const std::vector<TPoint> &points, const TRect &visible)
{
    if (points.size() != 2 || (points[0].x != points[1].x && points[0].y != points[1].y))
        return false;
    const TRect line = TRect{points[0].x, points[0].y, points[1].x, points[1].y}.Normalized();
    const TRect seen = TRect{line.left, line.top, line.right + 1, line.bottom + 1} & visible;
    if (!seen.IsEmpty())
        runs.push_back(seen);
    return true;
}

TRuns Cut(const TRect &outer, const TRect &inner, const TRect &visible)
{
    const TRect around[] = {{outer.left, outer.top, outer.right, inner.top},
                            {outer.left, inner.bottom, outer.right, outer.bottom},
                            {outer.left, inner.top, inner.left, inner.bottom},
                            {inner.right, inner.top, outer.right, inner.bottom}};
    TRuns runs;
    for (const TRect &r : around) {
        const TRect seen = r & visible;
        if (!seen.IsEmpty())
            runs.push_back(seen);
    }
    return runs;
}

/// The outer edge of an outline whose middle pixels are the outermost ones of `rect`.
TRect OuterEdge(const TRect &rect, int width)
{
    const int before = width > 0 ? (width - 1) / 2 : 0;
    const int behind = width / 2;
    return {rect.left - before, rect.top - before, rect.right + behind, rect.bottom + behind};
}

/// Pixels of one row from `left` to before `right`.
struct Span {
    int left = 0;
    int right = 0;

    bool IsEmpty() const { return left >= right; }
};

/// The pixels of row y whose middles lie in the ellipse within `rect`.
Span EllipseSpan(const TRect &rect, int y)
{
    if (rect.IsEmpty() || y < rect.top || y >= rect.bottom)
        return {};
    const double height = rect.Height();
    const double v = (2.0 * (static_cast<double>(y) - rect.top) + 1 - height) / height;
    const double reach = 0.5 * rect.Width() * std::sqrt(std::max(0.0, 1 - v * v));
    const double middle = 0.5 * rect.Width();
    const int left = rect.left + static_cast<int>(std::ceil(middle - reach - 0.5));
    const int right = rect.left + static_cast<int>(std::floor(middle + reach - 0.5)) + 1;
    return {std::min(left, rect.left + (rect.Width() - 1) / 2),
            std::max(right, rect.left + rect.Width() / 2 + 1)};
}

Span Common(const Span &a, const Span &b)
{
    return {std::max(a.left, b.left), std::min(a.right, b.right)};
}

/// What of row y lies within the outline. Of a thin one: the pixels that have neighbours of the ellipse on all
/// four sides, so that the outline has no gap and no double pixel.
Span InnerSpan(const TRect &outer, int width, int y)
{
    if (width == 0)
        return EllipseSpan(outer, y);
    if (width > 1)
        return EllipseSpan(outer.Inflated(-width, -width), y);
    Span span = EllipseSpan(outer, y);
    span = Common({span.left + 1, span.right - 1}, EllipseSpan(outer, y - 1));
    return Common(span, EllipseSpan(outer, y + 1));
}

void AddSpan(TRuns &runs, const Span &span, int y, const TRect &visible)
{
    const Span seen = Common(span, {visible.left, visible.right});
    if (!seen.IsEmpty())
        runs.push_back({seen.left, y, seen.right, y + 1});
}

/// Where the rows of a polygon enter and leave it: of each visible row the first pixels at or behind its edges.
/// Rows at the lower end of an edge do not meet it, so that each corner counts once.
std::vector<std::vector<int>> Crossings(const std::vector<TPoint> &corners, const TRect &visible)
{
    std::vector<std::vector<int>> rows(static_cast<size_t>(visible.Height()));
    for (size_t i = 0; i < corners.size(); ++i) {
        TPoint upper = corners[i];
        TPoint lower = corners[(i + 1) % corners.size()];
        if (upper.y > lower.y)
            std::swap(upper, lower);
        const int64_t dx = int64_t(lower.x) - upper.x;
        const int64_t dy = int64_t(lower.y) - upper.y;
        const int last = std::min(lower.y, visible.bottom);
        for (int y = std::max(upper.y, visible.top); y < last; ++y) {
            const int64_t aside = -FloorDivide(-(int64_t(y) - upper.y) * dx, dy);
            rows[static_cast<size_t>(y - visible.top)].push_back(static_cast<int>(upper.x + aside));
        }
    }
    return rows;
}

/// Adds a span of row y without what the outline covers, whose runs are sorted; `next` is the first of them
/// that may matter.
void AddUncovered(TRuns &runs, Span span, int y, const TRuns &outline, size_t next, const TRect &visible)
{
    for (; next < outline.size() && outline[next].top == y && outline[next].left < span.right; ++next) {
        AddSpan(runs, {span.left, outline[next].left}, y, visible);
        span.left = std::max(span.left, outline[next].right);
    }
    AddSpan(runs, span, y, visible);
}

} // namespace

TRuns LineRuns(const std::vector<TPoint> &points, bool closed, TDash dash, bool gaps, const TRect &visible)
{
    TRuns runs;
    if (points.empty() || (dash.off == 0 && gaps))
        return runs;
    if (dash.off == 0 && !closed && AddStraight(runs, points, visible))
        return runs;
    const size_t count = points.size();
    const size_t pieces = closed || count == 1 ? count : count - 1;
    int64_t place = 0;
    for (size_t i = 0; i < pieces; ++i) {
        Segment segment(points[i], points[(i + 1) % count]);
        segment.first = i == 0 ? 0 : 1;
        segment.last -= closed && i > 0 && i == count - 1 ? 1 : 0;
        segment.Limit(visible);
        AddSegment(runs, segment, place, dash, gaps, visible);
        place += segment.steps;
    }
    UniteRuns(runs);
    return runs;
}

TOutlineRuns RectangleRuns(const TRect &rect, int width, const TRect &visible)
{
    if (rect.IsEmpty())
        return {};
    const TRect outer = OuterEdge(rect, width);
    TRect inner = outer.Inflated(-width, -width);
    if (inner.IsEmpty())
        inner = {outer.left, outer.bottom, outer.left, outer.bottom};
    TOutlineRuns runs;
    runs.outline = Cut(outer, inner, visible);
    if (!(inner & visible).IsEmpty())
        runs.inside.push_back(inner & visible);
    return runs;
}

TOutlineRuns EllipseRuns(const TRect &rect, int width, const TRect &visible)
{
    TOutlineRuns runs;
    if (rect.IsEmpty())
        return runs;
    const TRect outer = OuterEdge(rect, width);
    const TRect seen = outer & visible;
    for (int y = seen.top; y < seen.bottom; ++y) {
        const Span all = EllipseSpan(outer, y);
        const Span inner = InnerSpan(outer, width, y);
        if (inner.IsEmpty()) {
            AddSpan(runs.outline, all, y, visible);
            continue;
        }
        AddSpan(runs.outline, {all.left, inner.left}, y, visible);
        AddSpan(runs.inside, inner, y, visible);
        AddSpan(runs.outline, {inner.right, all.right}, y, visible);
    }
    return runs;
}

TOutlineRuns PolygonRuns(const std::vector<TPoint> &corners, int width, const TRect &visible)
{
    TOutlineRuns runs;
    if (corners.empty() || visible.IsEmpty())
        return runs;
    if (width > 0)
        runs.outline = LineRuns(corners, true, TDash(), false, visible);
    std::vector<std::vector<int>> rows = Crossings(corners, visible);
    size_t next = 0;
    for (int y = visible.top; y < visible.bottom; ++y) {
        std::vector<int> &row = rows[static_cast<size_t>(y - visible.top)];
        std::sort(row.begin(), row.end());
        while (next < runs.outline.size() && runs.outline[next].top < y)
            ++next;
        for (size_t i = 0; i + 1 < row.size(); i += 2)
            AddUncovered(runs.inside, {row[i], row[i + 1]}, y, runs.outline, next, visible);
    }
    return runs;
}

void UniteRuns(TRuns &runs)
{
    const auto before = [](const TRect &a, const TRect &b) {
        return a.top != b.top ? a.top < b.top : a.left < b.left;
    };
    std::sort(runs.begin(), runs.end(), before);
    size_t kept = 0;
    for (size_t i = 1; i < runs.size(); ++i) {
        if (runs[i].top == runs[kept].top && runs[i].left <= runs[kept].right)
            runs[kept].right = std::max(runs[kept].right, runs[i].right);
        else
            runs[++kept] = runs[i];
    }
    runs.resize(runs.empty() ? 0 : kept + 1);
}

TRect BoundsOf(const TRuns &runs)
{
    TRect bounds;
    for (const TRect &r : runs)
        bounds = bounds | r;
    return bounds;
}
