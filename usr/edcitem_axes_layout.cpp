// Layout of the axes: room for decoration, scales, the plotting rectangle, ticks and titles.
#include "usr/edcitem_axes.h"

#include "lib/charstr.h"
#include "lib/xassert.h"
#include "usr/edcapp.h"
#include "usr/edcutils.h"
#include "win/dc.h"

#include <algorithm>
#include <cmath>

#include "lib/xon.h"

namespace
{
const double USABLE_LEAST = 0.7; // of the whole length that decoration must leave
const double SCALE_MOST = 1e300; // a range next to nothing stays finite
enum { TICKS_MAX = 1000 };       // more cannot be read on any device
enum { DIGITS_WIDEST = 12 };     // a longer number is printed with an exponent

/// Room along one direction, px. The labels of the crossing axis hang from it to the side of the range's start:
/// into the range as far as that goes, beyond the plot with the rest. A crossing axis at the range's end has
/// them beyond the end.
struct Room {
    double min = 0; // range, model units
    double max = 1;
    int title = 0; // of the crossing axis, beyond everything on the side of its labels
    int hang = 0;  // from the crossing axis to the far ends of its labels
    int half = 0;  // of the own labels, over both ends of the range

    bool AtEnd() const { return max <= 0; }
    /// What hangs out beyond the plot, with the title.
    int Labels(double scale) const
    {
        int inside = AtEnd() ? 0 : EdcNearest(-min * scale);
        return title + std::max(half, hang - inside);
    }
    int Start(double scale) const { return AtEnd() ? half : Labels(scale); }
    int End(double scale) const { return AtEnd() ? Labels(scale) : half; }
    double Usable(int whole) const;
    bool LeavesEnough(int whole) const { return Usable(whole) >= std::max(USABLE_LEAST * whole, 1.0); }
};

/// Length of the range that fits with its room into `whole`, in full pixels.
double Room::Usable(int whole) const
{
    ASSERT(max > min);
    double inside = AtEnd() ? 0 : -min / (max - min); // share of the range that the labels hang into
    double byEnds = static_cast<double>(whole) - title - 2.0 * half;
    double byLabels = (static_cast<double>(whole) - title - half - hang) / (1 - inside);
    if (inside > 0)
        byLabels -= 1; // the crossing axis is rounded to a pixel
    return std::max(std::floor(std::min(byEnds, byLabels)), 0.0);
}

/// px along the text
int TitleLength(const TEdcText &title)
{
    return title.first != NULL ? title.width : 0;
}

int TitleRoom(const TEdcText &title, int gap)
{
    return title.first != NULL ? title.height + gap : 0;
}

/// The start of a `length` centred on the middle of [start, end), but within [from, to).
int Centred(int start, int end, int length, int from, int to)
{
    return std::max(std::min(start + (end - start - length) / 2, to - length), from);
}
} // namespace

struct TEdcAxesLayout {
    TEdcAxesLayout(TEdcAxes &anAxes, TDC &aDc, const TRect &aMax);
    void Run(bool keepRatio);

private:
    TEdcAxes &axes;
    TDC &dc;
    TRect maxRect;
    TEdcAxesMetrics metrics;
    TEdcTickNumbers xNumbers;
    TEdcTickNumbers yNumbers;
    int textHeight = 0;
    int noughtWidth = 0;
    int gap = 0;     // between strokes, labels and titles
    int xSample = 0; // widest label
    int ySample = 0;
    Room across; // room along x
    Room up;     // room along y

    int SampleWidth(const TEdcTickNumbers &numbers, int digits);
    void Decorate();
    void MeasureTitle(TEdcText &label, const char *text, int whole);
    void MeasureRoom();
    void Scale(bool keepRatio);
    void PlacePlot();
    void MakeTicks();
    TEdcAxesLabel *FittingTicks(const TEdcTickNumbers &numbers, double min, double max, double scale,
                                bool alongText);
    int Widest(const TEdcAxesLabel *ticks);
    void PlaceTicks();
    void PlaceTitles();
};

TEdcAxesLayout::TEdcAxesLayout(TEdcAxes &anAxes, TDC &aDc, const TRect &aMax)
    : axes(anAxes), dc(aDc), maxRect(aMax), metrics(anAxes, aDc)
{
    across.min = axes.xMin;
    across.max = axes.xMax;
    up.min = axes.yMin;
    up.max = axes.yMax;
    maxRect.right = std::max(maxRect.left, maxRect.right);
    maxRect.bottom = std::max(maxRect.top, maxRect.bottom);
}

void TEdcAxesLayout::Run(bool keepRatio)
{
    __enter
        dc.SetFont(metrics.font);
        textHeight = dc.FontMetrics().height;
        noughtWidth = dc.CharWidth('0');
        gap = std::max(textHeight / 6, 1);
        xNumbers = EdcTickNumbers(axes.xMin, axes.xMax, axes.xDigits, axes.xExp);
        yNumbers = EdcTickNumbers(axes.yMin, axes.yMax, axes.yDigits, axes.yExp);
        Decorate();
        if (axes.decorated) {
            MeasureTitle(axes.xLabel, axes.xText, maxRect.Width()); __test;
            MeasureTitle(axes.yLabel, axes.yText, maxRect.Height()); __test;
            MeasureRoom();
        }
        Scale(keepRatio);
        PlacePlot();
        if (axes.decorated) {
            dc.SetFont(metrics.font);
            MakeTicks(); __test;
            PlaceTicks();
            PlaceTitles();
        }
    __point
    __treat
}

int TEdcAxesLayout::SampleWidth(const TEdcTickNumbers &numbers, int digits)
{
    int shown = std::clamp<int>(std::max(digits, numbers.digits), 0, DIGITS_WIDEST);
    return digits > 0 ? shown * noughtWidth + dc.CharWidth('.') + dc.CharWidth('-') : 0;
}

/// Titles, samples of the labels, and whether there is width for them at all.
void TEdcAxesLayout::Decorate()
{
    bool hasX = axes.flags & EDC_AxXAXIS;
    bool hasY = axes.flags & EDC_AxYAXIS;
    EdcComposeTitle(axes.xText, hasX ? axes.xTitle : NULL, hasX && axes.xDigits > 0 ? xNumbers.exponent : 0);
    EdcComposeTitle(axes.yText, hasY ? axes.yTitle : NULL, hasY && axes.yDigits > 0 ? yNumbers.exponent : 0);
    xSample = hasX ? SampleWidth(xNumbers, axes.xDigits) : 0;
    ySample = hasY ? SampleWidth(yNumbers, axes.yDigits) : 0;
    axes.decorated = (hasX || hasY) && std::max(xSample, metrics.strokeY + ySample) < maxRect.Width();
}

/// A title too long for the axis is broken into lines.
void TEdcAxesLayout::MeasureTitle(TEdcText &label, const char *text, int whole)
{
    __enter
        label.SetText(text[0] != EOS ? text : NULL);
        label.SetFont(axes.fontName != NULL ? axes.fontName : edcDefaultFont.name, -metrics.font.height,
                      edcDefaultFont.charset);
        label.SetFormat(EDC_TfCENTER | (axes.fontBold ? EDC_TfBOLD : 0));
        label.SetColor(axes.color);
        TRect room = {0, 0, static_cast<int>(USABLE_LEAST * whole), 0};
        label.Layout(dc, room, EDC_BREAKWIDTH, EDC_HLEFT, EDC_VTOP); __test;
    __point
    __treat
}

void TEdcAxesLayout::MeasureRoom()
{
    if ((axes.flags & EDC_AxYAXIS) && axes.yDigits > 0) {
        across.hang = TEdcAxesMetrics::Outside(metrics.strokeY) + gap + ySample;
        up.half = (textHeight + 1) / 2;
    }
    if ((axes.flags & EDC_AxXAXIS) && axes.xDigits > 0) {
        up.hang = TEdcAxesMetrics::Outside(metrics.strokeX) + gap + textHeight;
        across.half = (xSample + 1) / 2;
    }
    across.title = TitleRoom(axes.yLabel, gap);
    up.title = TitleRoom(axes.xLabel, gap);
    across.half = std::max(across.half, metrics.line); // lines at the ends of the range
    up.half = std::max(up.half, metrics.line);
    axes.decorated = across.LeavesEnough(maxRect.Width()) && up.LeavesEnough(maxRect.Height());
}

/// Inches per model unit first, for the limits are given so.
void TEdcAxesLayout::Scale(bool keepRatio)
{
    double width = axes.decorated ? across.Usable(maxRect.Width()) : maxRect.Width();
    double height = axes.decorated ? up.Usable(maxRect.Height()) : maxRect.Height();
    ASSERT_AS(across.max > across.min && up.max > up.min, "max > min");
    double x = std::min(width / dc.DpiX() / (axes.xMax - axes.xMin), SCALE_MOST);
    double y = std::min(height / dc.DpiY() / (axes.yMax - axes.yMin), SCALE_MOST);
    if (axes.xMaxScale > 0)
        x = std::min(x, axes.xMaxScale * axes.zoom);
    if (axes.yMaxScale > 0)
        y = std::min(y, axes.yMaxScale * axes.zoom);
    if (keepRatio)
        x = y = std::min(x, y);
    axes.xScale = x * dc.DpiX();
    axes.yScale = y * dc.DpiY();
}

/// The plot in the corner of what is offered, behind its room. Where a title is longer than the axis and its
/// room, the plot stands in the middle of it.
void TEdcAxesLayout::PlacePlot()
{
    int width = EdcNearest((axes.xMax - axes.xMin) * axes.xScale);
    int height = EdcNearest((axes.yMax - axes.yMin) * axes.yScale);
    TRect room;
    if (axes.decorated)
        room = {across.Start(axes.xScale), up.End(axes.yScale), across.End(axes.xScale), up.Start(axes.yScale)};
    int neededX = room.left + width + room.right;
    int neededY = room.top + height + room.bottom;
    int outerX = axes.decorated ? std::max(neededX, across.title + TitleLength(axes.xLabel)) : neededX;
    int outerY = axes.decorated ? std::max(neededY, TitleLength(axes.yLabel)) : neededY;
    int left = maxRect.left + room.left + (outerX - neededX) / 2;
    int top = maxRect.top + room.top + (outerY - neededY) / 2;
    axes.outer = {maxRect.left, maxRect.top, maxRect.left + outerX, maxRect.top + outerY};
    axes.plot = {left, top, left + width, top + height};
    axes.originX = axes.plot.left + EdcNearest(-axes.xMin * axes.xScale);
    axes.originY = axes.plot.bottom + EdcNearest(axes.yMin * axes.yScale);
}

void TEdcAxesLayout::MakeTicks()
{
    __enter
        if (axes.flags & EDC_AxXAXIS) {
            axes.xTicks = FittingTicks(xNumbers, axes.xMin, axes.xMax, axes.xScale, true); __test;
        }
        if (axes.flags & EDC_AxYAXIS) {
            axes.yTicks = FittingTicks(yNumbers, axes.yMin, axes.yMax, axes.yScale, false); __test;
        }
    __point
    __treat
}

/// As many labels as the device and the digits allow. Along the text the labels must not meet each other, and
/// upwards also not those of the x axis, which lie below it where both axes cross.
TEdcAxesLabel *TEdcAxesLayout::FittingTicks(const TEdcTickNumbers &numbers, double min, double max,
                                            double scale, bool alongText)
{
    TEdcAxesLabel *ticks = NULL;
    __enter
        int pitch = alongText ? SampleWidth(numbers, axes.xDigits) + noughtWidth
                              : textHeight + textHeight / 2 + TEdcAxesMetrics::Outside(metrics.strokeX) + gap;
        double fitting = std::clamp<double>(numbers.span * scale / pitch, 1, TICKS_MAX);
        int count = std::min(numbers.places, static_cast<int>(fitting));
        for (; count > 0 && ticks == NULL; --count) {
            double step = EdcTickStep(numbers.span, count);
            ticks = EdcMakeTicks(min, max, step, numbers.exponent); __test;
            // The sample is wider than most labels, so its count is a start and the labels decide.
            if (step * scale < (alongText ? Widest(ticks) + noughtWidth : pitch))
                EdcFreeTicks(ticks);
        }
    __point
    __treat
    return ticks;
}

int TEdcAxesLayout::Widest(const TEdcAxesLabel *ticks)
{
    int widest = 0;
    for (; ticks != NULL; ticks = ticks->next)
        widest = std::max(widest, dc.TextWidth(ticks->text, StrLength(ticks->text)));
    return widest;
}

/// Left upper corners of the labels: those of the x axis centred at their ticks, those of the y axis aligned
/// towards it.
void TEdcAxesLayout::PlaceTicks()
{
    int below = TEdcAxesMetrics::Outside(metrics.strokeX) + gap;
    int aside = TEdcAxesMetrics::Outside(metrics.strokeY) + gap;
    for (TEdcAxesLabel *label = axes.xTicks; label != NULL; label = label->next) {
        int width = dc.TextWidth(label->text, StrLength(label->text));
        label->x = axes.ToDevice(AgPOINT(label->value, 0)).x - width / 2;
        label->y = up.AtEnd() ? axes.originY - below - textHeight : axes.originY + below;
    }
    for (TEdcAxesLabel *label = axes.yTicks; label != NULL; label = label->next) {
        int width = dc.TextWidth(label->text, StrLength(label->text));
        label->x = across.AtEnd() ? axes.originX + aside : axes.originX - aside - width;
        label->y = axes.ToDevice(AgPOINT(0, label->value)).y - textHeight / 2;
    }
}

/// The title of x in the row below everything, or above it; that of y in the column at the side, turned: what
/// it calls x runs upwards.
void TEdcAxesLayout::PlaceTitles()
{
    const TRect &outer = axes.outer;
    const TRect &plot = axes.plot;
    TEdcText &x = axes.xLabel;
    TEdcText &y = axes.yLabel;
    int from = outer.left + (across.AtEnd() ? 0 : across.title);
    int to = outer.right - (across.AtEnd() ? across.title : 0);
    x.x = Centred(plot.left, plot.right, x.width, from, to);
    x.y = up.AtEnd() ? outer.top : outer.bottom - x.height;
    int top = Centred(plot.top, plot.bottom, y.width, outer.top, outer.bottom);
    y.x = 1 - top - y.width;
    y.y = across.AtEnd() ? outer.right - y.height : outer.left;
}

TRect TEdcAxes::Layout(TDC &dc, const TRect &maxRect, double aZoom, bool keepRatio)
{
    TFont former;
    __enter
        ASSERT_AS(aZoom > 0, "scale > 0");
        former = dc.State().font;
        zoom = aZoom;
        EdcFreeTicks(xTicks);
        EdcFreeTicks(yTicks);
        TEdcAxesLayout(*this, dc, maxRect).Run(keepRatio); __test;
        dc.SetFont(former);
    __point
        EdcFreeTicks(xTicks);
        EdcFreeTicks(yTicks);
        decorated = false;
        dc.SetFont(former);
    __treat
    return outer;
}
