// Painting of the axes. A repaint of a few pixels draws what meets them and no more.
#include "usr/edcitem_axes.h"

#include "lib/charstr.h"
#include "win/dc.h"

#include <algorithm>
#include <cmath>

#include "lib/xon.h"

namespace
{
const double GRID_LEAST = 2; // px; nearer lines would be an area

/// Halfway to white, so that labels and what the plot shows stand out. It also shows in every raster mix.
TColor GridColor(TColor c)
{
    auto half = [](uint8_t part) { return static_cast<uint8_t>((part + 255) / 2); };
    return {half(c.red), half(c.green), half(c.blue)};
}

class Painter
{
public:
    Painter(const TEdcAxes &anAxes, TDC &aDc, const TRect &aClip);
    ~Painter() { dc.SetState(former); }
    Painter(const Painter &) = delete;
    Painter &operator=(const Painter &) = delete;

    void Grid();
    void XAxis();
    void YAxis();
    void Titles();

private:
    const TEdcAxes &axes;
    TDC &dc;
    TRect clip;
    TDCState former;
    TEdcAxesMetrics metrics;
    int textHeight = 0;

    bool Meets(const TRect &r) const { return !(r & clip).IsEmpty(); }
    /// Without decoration the ends of the range have no pixel of their own.
    int InsideX(int x) const { return std::min(x, axes.outer.right - 1); }
    int InsideY(int y) const { return std::min(y, axes.outer.bottom - 1); }
    int DeviceX(double x) const { return InsideX(axes.ToDevice(AgPOINT(x, 0)).x); }
    int DeviceY(double y) const { return InsideY(axes.ToDevice(AgPOINT(0, y)).y); }
    void Line(TPoint from, TPoint to);
    void VerticalLines(double step);
    void HorizontalLines(double step);
    void Label(const TEdcAxesLabel &label);
};

Painter::Painter(const TEdcAxes &anAxes, TDC &aDc, const TRect &aClip)
    : axes(anAxes), dc(aDc), clip(aClip & anAxes.outer), former(aDc.State()), metrics(anAxes, aDc)
{
    dc.SetClip(clip);
    if (former.clipped) { // on the surface, both of them
        TDCState state = dc.State();
        state.clip = state.clip & former.clip;
        dc.SetState(state);
    }
    dc.SetOpaque(false);
    dc.SetTextColor(axes.color);
    dc.SetTextAlign(WIN_TEXT_TOP);
    dc.SetFont(metrics.font);
    textHeight = dc.FontMetrics().height;
}

void Painter::Line(TPoint from, TPoint to)
{
    TRect hull = {from.x, from.y, to.x + 1, to.y + 1};
    if (Meets(hull.Inflated(metrics.line, metrics.line)))
        dc.Line(from, to);
}

/// Each line whole: its dots fall the same way in every repaint.
void Painter::Grid()
{
    bool minor = axes.flags & EDC_AxMINORGRID;
    if (!(axes.flags & EDC_AxGRID))
        return;
    dc.SetMix(static_cast<TMix>(axes.gridStyle));
    dc.SetPen({.color = GridColor(axes.color), .width = metrics.line, .style = WIN_PEN_DOT});
    VerticalLines(minor ? axes.xMinorStep : axes.xStep);
    HorizontalLines(minor ? axes.yMinorStep : axes.yStep);
}

void Painter::VerticalLines(double step)
{
    if (!(step > 0 && step * axes.xScale >= GRID_LEAST))
        return;
    TEdcMultiples multiples(axes.xMin, axes.xMax, step);
    double n = std::floor(axes.ToModel({clip.left - metrics.line, 0}).x / step);
    for (n = std::max(n, multiples.first); multiples.Value(n) < multiples.end; ++n) {
        int x = DeviceX(multiples.Value(n));
        if (x - metrics.line >= clip.right)
            return;
        Line({x, axes.plot.top}, {x, InsideY(axes.plot.bottom)});
    }
}

void Painter::HorizontalLines(double step)
{
    if (!(step > 0 && step * axes.yScale >= GRID_LEAST))
        return;
    TEdcMultiples multiples(axes.yMin, axes.yMax, step);
    double n = std::floor(axes.ToModel({0, clip.bottom + metrics.line}).y / step);
    for (n = std::max(n, multiples.first); multiples.Value(n) < multiples.end; ++n) {
        int y = DeviceY(multiples.Value(n));
        if (y + metrics.line < clip.top)
            return;
        Line({axes.plot.left, y}, {InsideX(axes.plot.right), y});
    }
}

void Painter::XAxis()
{
    dc.SetMix(WIN_MIX_COPY);
    dc.SetPen({.color = axes.color, .width = metrics.line});
    int y = InsideY(axes.originY);
    int outside = TEdcAxesMetrics::Outside(metrics.strokeX);
    int top = y - (axes.yMax <= 0 ? outside - 1 : metrics.strokeX - outside);
    Line({axes.plot.left, y}, {InsideX(axes.plot.right), y});
    for (const TEdcAxesLabel *tick = axes.xTicks; tick != NULL; tick = tick->next) {
        int x = DeviceX(tick->value);
        Line({x, top}, {x, top + metrics.strokeX - 1});
        if (x != axes.originX || !(axes.flags & EDC_AxYAXIS))
            Label(*tick);
    }
}

void Painter::YAxis()
{
    dc.SetMix(WIN_MIX_COPY);
    dc.SetPen({.color = axes.color, .width = metrics.line});
    int x = InsideX(axes.originX);
    int outside = TEdcAxesMetrics::Outside(metrics.strokeY);
    int left = x - (axes.xMax <= 0 ? metrics.strokeY - outside : outside - 1);
    Line({x, axes.plot.top}, {x, InsideY(axes.plot.bottom)});
    for (const TEdcAxesLabel *tick = axes.yTicks; tick != NULL; tick = tick->next) {
        int y = DeviceY(tick->value);
        Line({left, y}, {left + metrics.strokeY - 1, y});
        if (y != axes.originY || !(axes.flags & EDC_AxXAXIS))
            Label(*tick);
    }
}

void Painter::Label(const TEdcAxesLabel &label)
{
    if (label.y >= clip.bottom || label.y + textHeight <= clip.top || label.x >= clip.right)
        return;
    int length = StrLength(label.text);
    if (label.x + dc.TextWidth(label.text, length) > clip.left)
        dc.TextOut(label.x, label.y, label.text, length);
}

void Painter::Titles()
{
    const TEdcText &x = axes.xLabel;
    const TEdcText &y = axes.yLabel;
    if (Meets({x.x, x.y, x.x + x.width, x.y + x.height}))
        x.Paint(dc);
    if (Meets({y.y, 1 - y.x - y.width, y.y + y.height, 1 - y.x})) {
        dc.SetTurn(1);
        y.Paint(dc);
    }
}
} // namespace

void TEdcAxes::Paint(TDC &dc, const TRect &clip) const
{
    __enter
        if (xScale > 0 && yScale > 0) {
            Painter painter(*this, dc, clip);
            painter.Grid();
            if (flags & EDC_AxXAXIS)
                painter.XAxis();
            if (flags & EDC_AxYAXIS)
                painter.YAxis();
            if (decorated)
                painter.Titles();
        }
    __point
    __treat
}
