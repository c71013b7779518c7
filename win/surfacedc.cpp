// Painting contexts. On an image, thin lines, rectangles and ellipses are drawn as the runs of pixels that they
// cover, so that every raster mix meets each pixel once; wide lines and everything on paper are strokes of the
// toolkit's painter. Each call sets what it needs, so contexts may take turns on a surface. The shapes of
// metafiles alone have smooth edges.
#include "win/dc.h"
#include "win/fonts.h"
#include "win/runs.h"
#include "win/surface.h"
#include <QBrush>
#include <QFont>
#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <QPen>
#include <QPolygonF>
#include <QString>
#include <QTransform>
#include <algorithm>
#include <array>
#include <cmath>
#include <map>

namespace
{

constexpr int PEN_MAX = 10000; // px; a pen wider than that hides all there is
// px from the corner; the painter's strokes are cut to that, because it gives up patterns on longer ones
constexpr int PEN_REACH = 1 << 15;
constexpr int CELL = 8;        // px, of hatches and patterns
constexpr int SCREEN_DPI = 96; // a cell is as large on paper as at this resolution

QRect ToQt(const TRect &r)
{
    return {QPoint(r.left, r.top), QPoint(r.right - 1, r.bottom - 1)};
}

QColor ToQt(TColor color)
{
    return {color.red, color.green, color.blue};
}

QPainter::CompositionMode Mode(TMix mix)
{
    static const std::array<QPainter::CompositionMode, 17> modes = {
        QPainter::CompositionMode_SourceOver,          // no mix has number 0
        QPainter::RasterOp_ClearDestination,           // WIN_MIX_BLACK
        QPainter::RasterOp_NotSourceAndNotDestination, // WIN_MIX_NOTMERGE
        QPainter::RasterOp_NotSourceAndDestination,    // WIN_MIX_MASKNOT
        QPainter::RasterOp_NotSource,                  // WIN_MIX_NOTCOPY
        QPainter::RasterOp_SourceAndNotDestination,    // WIN_MIX_MASKPENNOT
        QPainter::RasterOp_NotDestination,             // WIN_MIX_INVERT
        QPainter::RasterOp_SourceXorDestination,       // WIN_MIX_XOR
        QPainter::RasterOp_NotSourceOrNotDestination,  // WIN_MIX_NOTMASK
        QPainter::RasterOp_SourceAndDestination,       // WIN_MIX_MASK
        QPainter::RasterOp_NotSourceXorDestination,    // WIN_MIX_NOTXOR
        QPainter::CompositionMode_Destination,         // WIN_MIX_NOP
        QPainter::RasterOp_NotSourceOrDestination,     // WIN_MIX_MERGENOT
        QPainter::CompositionMode_SourceOver,          // WIN_MIX_COPY
        QPainter::RasterOp_SourceOrNotDestination,     // WIN_MIX_MERGEPENNOT
        QPainter::RasterOp_SourceOrDestination,        // WIN_MIX_MERGE
        QPainter::RasterOp_SetDestination,             // WIN_MIX_WHITE
    };
    return modes[static_cast<size_t>(mix)];
}

/// One filling. Most brushes and mixes take one.
struct Pass {
    TMix mix;
    QBrush brush;
};
using Passes = std::vector<Pass>;

TColor Inverted(TColor c)
{
    const auto inverted = [](uint8_t part) { return static_cast<uint8_t>(255 - part); };
    return {inverted(c.red), inverted(c.green), inverted(c.blue)};
}

void HatchCell(THatch hatch, uint8_t (&rows)[CELL])
{
    for (int y = 0; y < CELL; ++y) {
        const int falling = 0x80 >> y;
        const int rising = 1 << y;
        const int level = y == CELL - 1 ? 0xFF : 0;
        const int upright = 1;
        const int bits[] = {level, upright, falling, rising, level | upright, falling | rising};
        rows[y] = static_cast<uint8_t>(bits[hatch]);
    }
}

QBrush CellBrush(const uint8_t (&rows)[CELL], QRgb set, QRgb clear)
{
    const bool solid = qAlpha(clear) == 255;
    QImage cell(CELL, CELL, solid ? QImage::Format_RGB32 : QImage::Format_ARGB32_Premultiplied);
    if (cell.isNull())
        throw std::bad_alloc();
    for (int y = 0; y < CELL; ++y) {
        for (int x = 0; x < CELL; ++x)
            cell.setPixel(x, y, (rows[y] & (0x80 >> x)) != 0 ? set : clear);
    }
    QBrush brush;
    brush.setTextureImage(cell);
    return brush;
}

/// A hatch over what is there, in any mix. The painter's mixes know no transparency, so where there is one that
/// leaves the destination alone for some colour, the clear bits get that colour; the others are put together
/// from an inversion of the set bits and such a mix.
Passes SparsePasses(const uint8_t (&rows)[CELL], TColor color, TMix mix)
{
    struct Recipe {
        TMix mix;
        bool invertFirst;  // the destination under the set bits
        bool invertColor;  // of the set bits
        bool whiteIsClear; // the colour that leaves the destination alone: white, else black
    };
    static const std::map<TMix, Recipe> recipes = {
        {WIN_MIX_NOTMERGE, {WIN_MIX_MASK, true, true, true}},
        {WIN_MIX_MASKNOT, {WIN_MIX_MASK, false, true, true}},
        {WIN_MIX_MASKPENNOT, {WIN_MIX_MASK, true, false, true}},
        {WIN_MIX_XOR, {WIN_MIX_XOR, false, false, false}},
        {WIN_MIX_NOTMASK, {WIN_MIX_MERGE, true, true, false}},
        {WIN_MIX_MASK, {WIN_MIX_MASK, false, false, true}},
        {WIN_MIX_NOTXOR, {WIN_MIX_XOR, false, true, false}},
        {WIN_MIX_MERGENOT, {WIN_MIX_MERGE, false, true, false}},
        {WIN_MIX_MERGEPENNOT, {WIN_MIX_MERGE, true, false, false}},
        {WIN_MIX_MERGE, {WIN_MIX_MERGE, false, false, false}},
    };
    const auto plain = [&rows](TColor set) {
        return Pass{WIN_MIX_COPY, CellBrush(rows, ToQt(set).rgb(), qRgba(0, 0, 0, 0))};
    };
    const Pass inversion = {WIN_MIX_XOR, CellBrush(rows, qRgb(255, 255, 255), qRgb(0, 0, 0))};
    if (mix == WIN_MIX_COPY || mix == WIN_MIX_NOTCOPY)
        return {plain(mix == WIN_MIX_COPY ? color : Inverted(color))};
    if (mix == WIN_MIX_BLACK || mix == WIN_MIX_WHITE)
        return {plain(mix == WIN_MIX_BLACK ? WIN_BLACK : WIN_WHITE)};
    if (mix == WIN_MIX_INVERT)
        return {inversion};
    const Recipe &recipe = recipes.at(mix);
    Passes passes;
    if (recipe.invertFirst)
        passes.push_back(inversion);
    const TColor set = recipe.invertColor ? Inverted(color) : color;
    const QRgb clear = recipe.whiteIsClear ? qRgb(255, 255, 255) : qRgb(0, 0, 0);
    passes.push_back({recipe.mix, CellBrush(rows, ToQt(set).rgb(), clear)});
    return passes;
}

Passes PassesOf(const TBrush &brush, const TDCState &state, TMix mix)
{
    if (brush.style == WIN_BRUSH_NONE)
        return {};
    if (brush.style == WIN_BRUSH_SOLID)
        return {{mix, QBrush(ToQt(brush.color))}};
    if (brush.style == WIN_BRUSH_PATTERN)
        return {{mix, CellBrush(brush.pattern, ToQt(brush.color).rgb(), ToQt(brush.back).rgb())}};
    uint8_t rows[CELL];
    HatchCell(brush.hatch, rows);
    if (!state.opaque)
        return SparsePasses(rows, brush.color, mix);
    return {{mix, CellBrush(rows, ToQt(brush.color).rgb(), ToQt(state.background).rgb())}};
}

int WidthOf(const TPen &pen)
{
    return std::clamp(pen.width, 1, PEN_MAX);
}

TDash DashOf(const TPen &pen)
{
    if (pen.style == WIN_PEN_DOT)
        return {3, 3};
    return pen.style == WIN_PEN_DASH ? TDash{18, 6} : TDash{1, 0};
}

/// A stroke of the painter. Patterns of wide pens grow with the width. `gaps`: what the pattern leaves out.
QPen StrokePen(const TPen &pen, TColor color, bool gaps)
{
    QPen made(ToQt(color), WidthOf(pen), Qt::SolidLine, Qt::FlatCap, Qt::MiterJoin);
    const TDash dash = DashOf(pen);
    if (dash.off == 0)
        return made;
    if (gaps) {
        made.setDashPattern({qreal(dash.off), qreal(dash.on)});
        made.setDashOffset(dash.off);
    } else
        made.setDashPattern({qreal(dash.on), qreal(dash.off)});
    return made;
}

/// The middle of a pixel.
QPointF Middle(TPoint p)
{
    return {p.x + 0.5, p.y + 0.5};
}

bool IsNear(const std::vector<TPoint> &points)
{
    const auto isNear = [](const TPoint &p) {
        return std::abs(p.x) <= PEN_REACH && std::abs(p.y) <= PEN_REACH;
    };
    return std::all_of(points.begin(), points.end(), isNear);
}

/// Cuts a line to the square of PEN_REACH. False where nothing of it lies within.
bool CutLine(QPointF &from, QPointF &to)
{
    const double dx = to.x() - from.x();
    const double dy = to.y() - from.y();
    const double p[] = {-dx, dx, -dy, dy};
    const double q[] = {from.x() + PEN_REACH, PEN_REACH - from.x(), from.y() + PEN_REACH, PEN_REACH - from.y()};
    double enter = 0;
    double leave = 1;
    for (int i = 0; i < 4; ++i) {
        if (p[i] == 0 && q[i] < 0)
            return false;
        if (p[i] < 0)
            enter = std::max(enter, q[i] / p[i]);
        else if (p[i] > 0)
            leave = std::min(leave, q[i] / p[i]);
    }
    if (enter > leave)
        return false;
    to = from + QPointF(dx, dy) * leave;
    from += QPointF(dx, dy) * enter;
    return true;
}

/// Cuts a polygon to one half plane of the square of PEN_REACH, which `inside` measures: not below 0.
template <class Inside>
QPolygonF CutHalf(const QPolygonF &polygon, Inside inside)
{
    QPolygonF cut;
    for (qsizetype i = 0; i < polygon.size(); ++i) {
        const QPointF a = polygon[i];
        const QPointF b = polygon[(i + 1) % polygon.size()];
        const double da = inside(a);
        const double db = inside(b);
        if (da >= 0)
            cut.append(a);
        if ((da >= 0) != (db >= 0))
            cut.append(a + (b - a) * (da / (da - db)));
    }
    return cut;
}

QPolygonF CutPolygon(QPolygonF polygon)
{
    polygon = CutHalf(polygon, [](QPointF p) { return p.x() + PEN_REACH; });
    polygon = CutHalf(polygon, [](QPointF p) { return PEN_REACH - p.x(); });
    polygon = CutHalf(polygon, [](QPointF p) { return p.y() + PEN_REACH; });
    return CutHalf(polygon, [](QPointF p) { return PEN_REACH - p.y(); });
}

/// An open line's ends reach to the far edges of their pixels, so that a level one covers all of them.
void Lengthen(QPolygonF &line)
{
    const auto push = [](QPointF &end, QPointF next) {
        const QPointF along = end - next;
        const double length = std::hypot(along.x(), along.y());
        end += length > 0 ? along * (0.5 / length) : QPointF();
    };
    push(line.front(), line[1]);
    push(line.back(), line[line.size() - 2]);
}

/// A line as a path of the painter; one that reaches far out as single pieces, cut.
QPainterPath LinePath(const std::vector<TPoint> &points, bool closed)
{
    QPolygonF line;
    for (const TPoint &p : points) {
        if (line.isEmpty() || line.back() != Middle(p))
            line.append(Middle(p));
    }
    if (closed && line.size() > 2)
        line.append(line.front());
    else if (line.size() > 1)
        Lengthen(line);
    QPainterPath path;
    if (IsNear(points)) {
        path.addPolygon(line);
        if (closed && line.size() > 3)
            path.closeSubpath();
        return path;
    }
    for (qsizetype i = 0; i + 1 < line.size(); ++i) {
        QPointF from = line[i];
        QPointF to = line[i + 1];
        if (CutLine(from, to)) {
            path.moveTo(from);
            path.lineTo(to);
        }
    }
    return path;
}

/// The inside of a polygon; `inset` 0.5 puts its corners into the middles of their pixels.
QPainterPath PolygonPath(const std::vector<TPoint> &corners, double inset)
{
    QPolygonF polygon;
    for (const TPoint &p : corners)
        polygon.append(QPointF(p.x + inset, p.y + inset));
    QPainterPath path;
    path.addPolygon(IsNear(corners) ? polygon : CutPolygon(polygon));
    path.closeSubpath();
    return path;
}

/// Whole pixels around a rectangle of the painter, which lies within PEN_REACH.
TRect Around(const QRectF &rect)
{
    return {static_cast<int>(std::floor(rect.left())) - 1, static_cast<int>(std::floor(rect.top())) - 1,
            static_cast<int>(std::ceil(rect.right())) + 1, static_cast<int>(std::ceil(rect.bottom())) + 1};
}

/// Corners of a polygon that stands for a far or dotted ellipse through the middles of its outermost pixels,
/// some 4 px apart.
std::vector<TPoint> EllipsePoints(const TRect &rect)
{
    const double rx = 0.5 * (rect.Width() - 1);
    const double ry = 0.5 * (rect.Height() - 1);
    const int count = static_cast<int>(std::clamp((rx + ry) * 0.8, 8.0, 4096.0)) / 4 * 4;
    std::vector<TPoint> points;
    for (int i = 0; i < count; ++i) {
        const double angle = 2 * M_PI * i / count;
        points.push_back({static_cast<int>(std::lround(rect.left + rx + rx * std::cos(angle))),
                          static_cast<int>(std::lround(rect.top + ry - ry * std::sin(angle)))});
    }
    return points;
}

/// One call of a context: what of the surface it may touch, and how it fills and strokes there.
class Canvas
{
public:
    Canvas(TSurface &aSurface, const TDCState &aState) : surface(aSurface), state(aState)
    {
        visible = surface.Reach();
        if (state.clipped)
            visible = visible & state.clip;
        mix = surface.HasMixes() || state.mix == WIN_MIX_NOP ? state.mix : WIN_MIX_COPY;
    }

    const TRect &Visible() const { return visible; }
    TMix Mix() const { return mix; }
    bool IsPaper() const { return !surface.HasMixes(); }
    bool DrawsNothing() const { return visible.IsEmpty() || mix == WIN_MIX_NOP; }
    /// Width of the outline of figures, px; 0 without a pen.
    int PenWidth() const { return state.pen.style == WIN_PEN_NONE ? 0 : WidthOf(state.pen); }
    bool HasDashes() const { return DashOf(state.pen).off != 0; }

    QPainter &Painter(TMix wanted)
    {
        TNativePainter *native = surface.Painter(state.clipped ? &visible : NULL);
        QPainter &painter = *reinterpret_cast<QPainter *>(native);
        if (painter.compositionMode() != Mode(wanted))
            painter.setCompositionMode(Mode(wanted));
        return painter;
    }
    void Damage(const TRect &rect) { surface.AddDamage(rect & visible); }

    void FillRuns(const TRuns &runs, const Passes &passes);
    void FillRuns(const TRuns &runs, const TBrush &brush) { FillRuns(runs, PassesOf(brush, state, mix)); }
    void FillPath(const QPainterPath &path, const TBrush &brush);
    void StrokePath(const QPainterPath &path);
    void Line(const std::vector<TPoint> &points, bool closed);

private:
    void ThinLine(const std::vector<TPoint> &points, bool closed);
    void WideLine(const std::vector<TPoint> &points, bool closed);

    TSurface &surface;
    const TDCState &state;
    TRect visible;
    TMix mix;
};

void Canvas::FillRuns(const TRuns &runs, const Passes &passes)
{
    if (runs.empty() || passes.empty())
        return;
    std::vector<QRect> rects;
    for (const TRect &run : runs)
        rects.push_back(ToQt(run));
    for (const Pass &pass : passes) {
        QPainter &painter = Painter(pass.mix);
        painter.setPen(Qt::NoPen);
        painter.setBrush(pass.brush);
        painter.setBrushOrigin(state.brushOrigin.x, state.brushOrigin.y);
        painter.drawRects(rects.data(), static_cast<int>(rects.size()));
    }
    Damage(BoundsOf(runs));
}

/// Cells of a printer's own pixels would be too fine to be told apart.
void Canvas::FillPath(const QPainterPath &path, const TBrush &brush)
{
    const int scale = IsPaper() ? std::max(1, surface.DpiX() / SCREEN_DPI) : 1;
    for (Pass &pass : PassesOf(brush, state, mix)) {
        QPainter &painter = Painter(pass.mix);
        painter.setBrushOrigin(state.brushOrigin.x, state.brushOrigin.y);
        pass.brush.setTransform(QTransform::fromScale(scale, scale));
        painter.fillPath(path, pass.brush);
        Damage(Around(path.boundingRect()));
    }
}

void Canvas::Line(const std::vector<TPoint> &points, bool closed)
{
    if (PenWidth() == 1 && !IsPaper())
        ThinLine(points, closed);
    else if (PenWidth() != 0)
        WideLine(points, closed);
}

void Canvas::ThinLine(const std::vector<TPoint> &points, bool closed)
{
    const TDash dash = DashOf(state.pen);
    if (state.opaque && HasDashes())
        FillRuns(LineRuns(points, closed, dash, true, visible), SolidBrush(state.background));
    FillRuns(LineRuns(points, closed, dash, false, visible), SolidBrush(state.pen.color));
}

/// A line that is only a point is a square as wide as the pen.
void Canvas::WideLine(const std::vector<TPoint> &points, bool closed)
{
    const TPoint start = points.front();
    if (std::any_of(points.begin(), points.end(), [start](const TPoint &p) { return p != start; })) {
        StrokePath(LinePath(points, closed));
        return;
    }
    const TRect pixel = {start.x, start.y, start.x + 1, start.y + 1};
    FillRuns(RectangleRuns(pixel, PenWidth(), visible).outline, SolidBrush(state.pen.color));
}

void Canvas::StrokePath(const QPainterPath &path)
{
    QPainter &painter = Painter(mix);
    if (state.opaque && HasDashes())
        painter.strokePath(path, StrokePen(state.pen, state.background, true));
    painter.strokePath(path, StrokePen(state.pen, state.pen.color, false));
    const int reach = 2 * PenWidth() + 1; // corners reach out farther than half the width
    Damage(Around(path.boundingRect()).Inflated(reach, reach));
}

/// Rectangles and ellipses are drawn alike: with runs where the outline is solid and on an image, else filled
/// and then stroked.
struct Figure {
    TOutlineRuns (*runs)(const TRect &rect, int width, const TRect &visible);
    std::vector<TPoint> (*corners)(const TRect &rect);
    QPainterPath (*path)(const QRectF &rect);
};

std::vector<TPoint> RectanglePoints(const TRect &rect)
{
    const TPoint first = rect.TopLeft();
    const TPoint last = {rect.right - 1, rect.bottom - 1};
    if (first.x == last.x || first.y == last.y)
        return {first, last};
    return {first, {last.x, first.y}, last, {first.x, last.y}};
}

QPainterPath RectanglePath(const QRectF &rect)
{
    QPainterPath path;
    path.addRect(rect);
    return path;
}

QPainterPath EllipsePath(const QRectF &rect)
{
    QPainterPath path;
    path.addEllipse(rect);
    return path;
}

constexpr Figure RECTANGLE = {RectangleRuns, RectanglePoints, RectanglePath};
constexpr Figure ELLIPSE = {EllipseRuns, EllipsePoints, EllipsePath};

void DrawFigureOnImage(Canvas &canvas, const TDCState &state, const Figure &figure, const TRect &rect)
{
    const TOutlineRuns runs = figure.runs(rect, canvas.PenWidth(), canvas.Visible());
    canvas.FillRuns(runs.inside, state.brush);
    if (!canvas.HasDashes()) {
        canvas.FillRuns(runs.outline, SolidBrush(state.pen.color));
        return;
    }
    const std::vector<TPoint> corners = figure.corners(rect);
    canvas.Line(corners, corners.size() > 2);
}

void DrawFigureOnPaper(Canvas &canvas, const TDCState &state, const Figure &figure, const TRect &rect)
{
    const std::vector<TPoint> corners = figure.corners(rect);
    const double inset = canvas.PenWidth() > 0 ? 0.5 : 0;
    const QRectF edge = QRectF(rect.left, rect.top, rect.Width(), rect.Height());
    const QPainterPath path = IsNear(corners) ? figure.path(edge.adjusted(inset, inset, -inset, -inset))
                                              : PolygonPath(corners, inset);
    canvas.FillPath(path, state.brush);
    if (IsNear(corners) && corners.size() > 2 && canvas.PenWidth() > 0)
        canvas.StrokePath(path);
    else
        canvas.Line(corners, corners.size() > 2);
}

void DrawFigure(TSurface &surface, const TDCState &state, const Figure &figure, const TRect &rect)
{
    Canvas canvas(surface, state);
    if (rect.IsEmpty() || canvas.DrawsNothing())
        return;
    if (canvas.IsPaper())
        DrawFigureOnPaper(canvas, state, figure, rect);
    else
        DrawFigureOnImage(canvas, state, figure, rect);
}

std::vector<TPoint> OnSurface(const TDC &dc, const TPoint *points, int count)
{
    std::vector<TPoint> placed(static_cast<size_t>(std::max(count, 0)));
    std::transform(points, points + placed.size(), placed.begin(), [&dc](TPoint p) { return dc.ToSurface(p); });
    return placed;
}

QPainterPath ShapePath(const TDC &dc, const std::vector<TDC::Outline> &outlines)
{
    const auto placed = [&dc](TPoint sixteenths) {
        const TPoint p = dc.SixteenthsToSurface(sixteenths);
        const double far = PEN_REACH;
        return QPointF(std::clamp(p.x / 16.0, -far, far), std::clamp(p.y / 16.0, -far, far));
    };
    QPainterPath path;
    for (const TDC::Outline &outline : outlines) {
        if (outline.points.empty())
            continue;
        path.moveTo(placed(outline.points.front()));
        for (size_t i = 1; i < outline.points.size(); ++i)
            path.lineTo(placed(outline.points[i]));
        if (outline.closed)
            path.closeSubpath();
    }
    return path;
}

/// Which pixel of `source` in a row stands at each of the `count` places from `first` in a target of `extent`.
std::vector<int> NearestOf(int source, int extent, int first, int count, bool backwards)
{
    std::vector<int> nearest;
    for (int i = 0; i < count; ++i) {
        const int64_t place = backwards ? int64_t(extent) - 1 - first - i : int64_t(first) + i;
        nearest.push_back(static_cast<int>((2 * place + 1) * source / (2 * int64_t(extent))));
    }
    return nearest;
}

QList<QRgb> ColorTable(const TBitmap &bitmap)
{
    QList<QRgb> table(256, qRgb(0, 0, 0));
    for (size_t i = 0; i < bitmap.Colors().size(); ++i)
        table[static_cast<qsizetype>(i)] = ToQt(bitmap.Colors()[i]).rgb();
    return table;
}

QImage MadeImage(int width, int height, QImage::Format format)
{
    QImage image(width, height, format);
    if (image.isNull())
        throw std::bad_alloc();
    return image;
}

/// The visible part of a scaled bitmap, pixel by pixel as the surface will show it.
QImage ScaledPart(const TBitmap &bitmap, const TRect &target, const TRect &seen, int turn)
{
    const bool across = turn % 2 != 0; // the bitmap's rows stand upright
    const std::vector<int> columns = NearestOf(across ? bitmap.Height() : bitmap.Width(), target.Width(),
                                               seen.left - target.left, seen.Width(), turn >= 2);
    const std::vector<int> rows = NearestOf(across ? bitmap.Width() : bitmap.Height(), target.Height(),
                                            seen.top - target.top, seen.Height(), turn == 1 || turn == 2);
    const QList<QRgb> table = ColorTable(bitmap);
    const QRgb *colors = table.constData();
    QImage part = MadeImage(seen.Width(), seen.Height(), QImage::Format_RGB32);
    for (int y = 0; y < seen.Height(); ++y) {
        QRgb *line = reinterpret_cast<QRgb *>(part.scanLine(y));
        const int row = rows[static_cast<size_t>(y)];
        for (int x = 0; x < seen.Width(); ++x) {
            const int column = columns[static_cast<size_t>(x)];
            line[x] = colors[across ? bitmap.Pixel(row, column) : bitmap.Pixel(column, row)];
        }
    }
    return part;
}

/// The bitmap itself with its colours, turned.
QImage WholeImage(const TBitmap &bitmap, int turn)
{
    QImage image = MadeImage(bitmap.Width(), bitmap.Height(), QImage::Format_Indexed8);
    image.setColorTable(ColorTable(bitmap));
    for (int y = 0; y < bitmap.Height(); ++y)
        std::copy_n(bitmap.Row(y), bitmap.Width(), image.scanLine(y));
    return turn == 0 ? image : image.transformed(QTransform().rotate(-90.0 * turn));
}

/// Maps the drawing to the surface for what cannot be placed point by point.
QTransform TurnedDrawing(const TDCState &state)
{
    const double x = state.viewport.x;
    const double y = state.viewport.y;
    switch (state.turn) {
    case 1:
        return {0, -1, 1, 0, x, y + 1};
    case 2:
        return {-1, 0, 0, -1, x + 1, y + 1};
    case 3:
        return {0, 1, -1, 0, x + 1, y};
    default:
        return {1, 0, 0, 1, x, y};
    }
}

/// How far behind the start of a turned line of text the visible part begins and ends, px.
void VisiblePart(const TRect &visible, TPoint start, int turn, int64_t &from, int64_t &to)
{
    const int64_t x = start.x;
    const int64_t y = start.y;
    const int64_t froms[] = {visible.left - x, y - visible.bottom, x - visible.right, visible.top - y};
    const int64_t tos[] = {visible.right - x, y - visible.top, x - visible.left, visible.bottom - y};
    from = froms[turn];
    to = tos[turn];
}

/// The part of a text that can be seen: a line of a file may have a million characters.
struct TextPart {
    QString text;
    int64_t offset = 0; // px from the start of the whole
    int64_t width = 0;  // of the whole, px
};

TextPart PartOf(TFontTable &font, const char *text, int length, int64_t from, int64_t to)
{
    TextPart part;
    const int overhang = font.Em(); // a slanted letter leaves its cell
    for (int i = 0; i < length; ++i) {
        const unsigned char c = static_cast<unsigned char>(text[i]);
        const int64_t end = part.width + font.Width(c);
        if (end + overhang >= from && part.width - overhang <= to) {
            if (part.text.isEmpty())
                part.offset = part.width;
            part.text += QChar(DrawnCode(c));
        }
        part.width = end;
    }
    return part;
}

} // namespace

TSurfaceDC::TSurfaceDC(TSurface &aSurface) : surface(aSurface) {}

TSurfaceDC::~TSurfaceDC() = default;

int TSurfaceDC::DpiX() const
{
    return surface.DpiX();
}

int TSurfaceDC::DpiY() const
{
    return surface.DpiY();
}

bool TSurfaceDC::HasMixes() const
{
    return surface.HasMixes();
}

TPoint TSurfaceDC::PhysicalOffset() const
{
    return surface.PhysicalOffset();
}

TFontMetrics TSurfaceDC::FontMetrics()
{
    return FontTable(state.font).Metrics();
}

int TSurfaceDC::CharWidth(unsigned char c)
{
    return FontTable(state.font).Width(c);
}

void TSurfaceDC::Polyline(const TPoint *points, int count)
{
    Canvas canvas(surface, state);
    if (count >= 1 && !canvas.DrawsNothing())
        canvas.Line(OnSurface(*this, points, count), false);
}

void TSurfaceDC::Polygon(const TPoint *points, int count)
{
    Canvas canvas(surface, state);
    if (count < 1 || canvas.DrawsNothing())
        return;
    const std::vector<TPoint> corners = OnSurface(*this, points, count);
    if (canvas.IsPaper() || canvas.PenWidth() > 1)
        canvas.FillPath(PolygonPath(corners, canvas.PenWidth() > 0 ? 0.5 : 0), state.brush);
    else
        canvas.FillRuns(PolygonRuns(corners, canvas.PenWidth(), canvas.Visible()).inside, state.brush);
    canvas.Line(corners, true);
}

void TSurfaceDC::Rectangle(const TRect &rect)
{
    DrawFigure(surface, state, RECTANGLE, ToSurface(rect));
}

void TSurfaceDC::Ellipse(const TRect &rect)
{
    DrawFigure(surface, state, ELLIPSE, ToSurface(rect));
}

void TSurfaceDC::FillRect(const TRect &rect, const TBrush &brush)
{
    Canvas canvas(surface, state);
    if (!canvas.DrawsNothing())
        canvas.FillRuns(RectangleRuns(ToSurface(rect), 0, canvas.Visible()).inside, brush);
}

void TSurfaceDC::InvertRect(const TRect &rect)
{
    Canvas canvas(surface, state);
    if (!canvas.Visible().IsEmpty() && !canvas.IsPaper())
        canvas.FillRuns(RectangleRuns(ToSurface(rect), 0, canvas.Visible()).inside,
                        {{WIN_MIX_INVERT, QBrush(Qt::black)}});
}

void TSurfaceDC::TextOut(int x, int y, const char *text, int length)
{
    Canvas canvas(surface, state);
    if (canvas.Visible().IsEmpty() || std::abs(int64_t(x)) > WIN_FAR || std::abs(int64_t(y)) > WIN_FAR)
        return;
    TFontTable &font = FontTable(state.font);
    const TFontMetrics &metrics = font.Metrics();
    const int above[] = {0, metrics.height, metrics.ascent}; // by TTextAlign
    const int top = y - above[state.align];
    int64_t from = 0;
    int64_t to = 0;
    VisiblePart(canvas.Visible(), ToSurface(TPoint{x, top}), state.turn, from, to);
    const TextPart part = PartOf(font, text, length, from, to);
    const int right = static_cast<int>(std::min<int64_t>(x + part.width, WIN_FAR));
    const TRect cell = ToSurface(TRect{x, top, right, top + metrics.height});
    if (state.opaque)
        canvas.FillRuns(RectangleRuns(cell, 0, canvas.Visible()).inside,
                        {{WIN_MIX_COPY, QBrush(ToQt(state.background))}});
    if (part.text.isEmpty())
        return;
    QPainter &painter = canvas.Painter(WIN_MIX_COPY);
    painter.setPen(ToQt(state.textColor));
    painter.setFont(*reinterpret_cast<const QFont *>(font.Native()));
    const QTransform before = painter.worldTransform();
    painter.setWorldTransform(TurnedDrawing(state), true);
    painter.drawText(QPointF(static_cast<double>(x + part.offset), top + metrics.ascent), part.text);
    painter.setWorldTransform(before);
    canvas.Damage(cell.Inflated(font.Em(), font.Em()));
}

void TSurfaceDC::StretchBitmap(const TRect &rect, const TBitmap &bitmap)
{
    Canvas canvas(surface, state);
    const TRect target = ToSurface(rect);
    const TRect seen = target & canvas.Visible();
    if (seen.IsEmpty() || canvas.DrawsNothing() || bitmap.Width() == 0 || bitmap.Height() == 0)
        return;
    QPainter &painter = canvas.Painter(canvas.Mix());
    if (canvas.IsPaper()) {
        const QRectF edge = QRectF(target.left, target.top, target.Width(), target.Height());
        painter.drawImage(edge, WholeImage(bitmap, state.turn));
        return;
    }
    painter.drawImage(seen.left, seen.top, ScaledPart(bitmap, target, seen, state.turn));
    canvas.Damage(seen);
}

void TSurfaceDC::Shape(const std::vector<Outline> &outlines, bool winding)
{
    Canvas canvas(surface, state);
    if (canvas.DrawsNothing())
        return;
    QPainterPath path = ShapePath(*this, outlines);
    path.setFillRule(winding ? Qt::WindingFill : Qt::OddEvenFill);
    canvas.Painter(canvas.Mix()).setRenderHint(QPainter::Antialiasing, canvas.Mix() == WIN_MIX_COPY);
    canvas.FillPath(path, state.brush);
    if (canvas.PenWidth() > 0)
        canvas.StrokePath(path);
    canvas.Painter(canvas.Mix()).setRenderHint(QPainter::Antialiasing, false);
}
