#include "usr/zulmark.h"
#include "lib/charstr.h"
#include "lib/xassert.h"
#include "usr/edcapp.h"
#include "usr/edcbase2.h"
#include "usr/edcutils.h"
#include "win/dc.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "lib/xon.h"

namespace
{
/// A layer may be set up before there is a document.
void RaiseLayout()
{
    if (HasAppDocument())
        AppDocument()->Obsolete(EDC_LAYOUT);
}

int Digits(int count)
{
    int digits = 1;
    for (int rest = count / 10; rest > 0; rest /= 10)
        ++digits;
    return digits;
}
} // namespace

void TZulLabel::Set(int number)
{
    snprintf(text, sizeof text, "%d", number);
}

void TZulLabel::Paint(TDC &dc, const TFont &font, TPoint centre, TColor color) const
{
    TDCState former = dc.State();
    dc.SetFont(font);
    dc.SetTextColor(color);
    dc.SetOpaque(false);
    int length = StrLength(text);
    TPoint half = {dc.TextWidth(text, length) / 2, dc.FontMetrics().height / 2};
    dc.TextOut(centre.x - half.x, centre.y - half.y, text, length);
    dc.SetState(former);
}

void TZulMarkedLayer::SetFont(const char *name, int size)
{
    ASSERT(name != NULL && size >= 0);
    fontName = name;
    fontSize = std::max(1, size);
    RaiseLayout();
}

void TZulMarkedLayer::SetMinSizes(TSize thin, TSize thick)
{
    minThin = std::max(1, std::min(thin.cx, thick.cx - 2));
    minThinY = std::max(1, std::min(thin.cy, thick.cy - 2));
    minThick = std::max(minThin + 2, thick.cx);
    minThickY = std::max(minThinY + 2, thick.cy);
    RaiseLayout();
}

TFont TZulMarkedLayer::Font() const
{
    return {.face = fontName, .height = fontSize, .weight = 400};
}

TSize TZulMarkedLayer::NumberSize(TDC &dc, int count) const
{
    TDCState former = dc.State();
    dc.SetFont(Font());
    TSize size = {dc.TextWidth("0", 1) * Digits(count), dc.FontMetrics().height};
    dc.SetState(former);
    return size;
}

/// As wide and as high on the device as the half diagonal of the number, so that the number fits into it.
void TZulMarkedLayer::MakeRoundMarker(TDC &dc, int count)
{
    TSize number = NumberSize(dc, count);
    double x = number.cx / 2 / static_cast<double>(dc.DpiX()); // inches
    double y = number.cy / 2 / static_cast<double>(dc.DpiY());
    double radius = std::sqrt(x * x + y * y);
    markerX = EdcNearest(radius * dc.DpiX());
    markerY = EdcNearest(radius * dc.DpiY()) - 1;
}

void ZulSizeMarks(TZulMarkedLayer &layer, const TDC &dc, double scale)
{
    auto pixels = [&dc, scale](double points) {
        return TSize{EdcInchToPixel(points / 72, scale, dc.DpiX()),
                     EdcInchToPixel(points / 72, scale, dc.DpiY())};
    };
    layer.SetFont("Arial", pixels(8).cy);
    layer.SetMinSizes(pixels(1), pixels(3));
}

bool ZulInEllipse(TPoint point, TPoint centre, int a, int b)
{
    double dx = static_cast<double>(point.x) - centre.x;
    double dy = static_cast<double>(point.y) - centre.y;
    double aa = static_cast<double>(a) * a;
    double bb = static_cast<double>(b) * b;
    return aa * dx * dx + bb * dy * dy <= aa * bb;
}

void ZulRoundRect(TDC &dc, const TRect &rect, int x, int y)
{
    enum { CORNERS = 4, STEPS = 6 }; // points of a quarter of the ellipse
    double a = std::clamp(rect.Width() - 1, 0, std::max(0, x)) / 2.0;
    double b = std::clamp(rect.Height() - 1, 0, std::max(0, y)) / 2.0;
    TPoint points[CORNERS * STEPS];
    for (int i = 0; i < CORNERS * STEPS; ++i) {
        int corner = i / STEPS; // right lower, left lower, left upper, right upper
        double angle = AgPI / 2 * (corner + static_cast<double>(i % STEPS) / (STEPS - 1));
        double cx = corner == 0 || corner == 3 ? rect.right - 1 - a : rect.left + a;
        double cy = corner < 2 ? rect.bottom - 1 - b : rect.top + b;
        points[i] = {EdcNearest(cx + a * std::cos(angle)), EdcNearest(cy + b * std::sin(angle))};
    }
    dc.Polygon(points, CORNERS * STEPS);
}

void ZulPaintMarker(TDC &dc, TPoint centre, int a, int b, TColor line, TColor fill)
{
    TDCState former = dc.State();
    dc.SetPen({.color = line});
    dc.SetBrush(SolidBrush(fill));
    dc.Ellipse({centre.x - a, centre.y - b, centre.x + a, centre.y + b});
    dc.SetState(former);
}
