// The axes' settings, conversions and numbers.
#include "usr/edcitem_axes.h"

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
enum { DIGITS_MAX = 8, EXPONENT_MAX = 300 };
enum { FARTHEST = 1 << 28 }; // px: beyond any device, and sums of such places are still integers
const double NOISE = 1e-5;   // of a step: what rounding may do to it, or to its multiples at the range's ends

double NearestMultiple(double value, double step)
{
    return step > 0 ? std::round(value / step) * step : value;
}
} // namespace

double EdcWrapAngle(double angle)
{
    const double noise = 1e-12;
    double wrapped = std::remainder(angle, 2 * AgPI);
    return wrapped <= -AgPI + noise ? AgPI : wrapped;
}

TEdcAxes::~TEdcAxes()
{
    EdcFreeTicks(xTicks);
    EdcFreeTicks(yTicks);
}

void TEdcAxes::SetFlags(unsigned f)
{
    const unsigned drawn = EDC_AxXAXIS | EDC_AxYAXIS;
    AppDocument()->Obsolete((flags ^ f) & drawn ? EDC_LAYOUT : EDC_PAINT);
    flags = f;
}

void TEdcAxes::SetXRange(double min, double max)
{
    ASSERT(max != min);
    xMin = std::min({min, max, 0.0});
    xMax = std::max({min, max, 0.0});
    AppDocument()->Obsolete(EDC_LAYOUT);
}

void TEdcAxes::SetYRange(double min, double max)
{
    ASSERT(max != min);
    yMin = std::min({min, max, 0.0});
    yMax = std::max({min, max, 0.0});
    AppDocument()->Obsolete(EDC_LAYOUT);
}

void TEdcAxes::SetFont(const char *name, int points, bool bold)
{
    fontName = name;
    fontSize = points;
    fontBold = bold;
    AppDocument()->Obsolete(EDC_LAYOUT);
}

void TEdcAxes::SetTitles(const char *x, const char *y)
{
    xTitle = x;
    yTitle = y;
    AppDocument()->Obsolete(EDC_LAYOUT);
}

void TEdcAxes::SetXDigits(int digits, int exponent)
{
    xDigits = std::clamp<int>(digits, 0, DIGITS_MAX);
    xExp = exponent;
    AppDocument()->Obsolete(EDC_LAYOUT);
}

void TEdcAxes::SetYDigits(int digits, int exponent)
{
    yDigits = std::clamp<int>(digits, 0, DIGITS_MAX);
    yExp = exponent;
    AppDocument()->Obsolete(EDC_LAYOUT);
}

void TEdcAxes::SetMaxScale(double x, double y)
{
    xMaxScale = x;
    yMaxScale = y;
    AppDocument()->Obsolete(EDC_LAYOUT);
}

void TEdcAxes::SetDivision(double x, double y)
{
    xStep = std::fabs(x);
    yStep = std::fabs(y);
    if ((flags & EDC_AxGRID) && !(flags & EDC_AxMINORGRID))
        AppDocument()->Obsolete(EDC_PAINT);
}

void TEdcAxes::SetMinorDivision(double x, double y)
{
    xMinorStep = std::fabs(x);
    yMinorStep = std::fabs(y);
    if ((flags & EDC_AxGRID) && (flags & EDC_AxMINORGRID))
        AppDocument()->Obsolete(EDC_PAINT);
}

void TEdcAxes::SetSnap(double x, double y)
{
    xSnap = std::fabs(x);
    ySnap = std::fabs(y);
}

void TEdcAxes::SetAngle(double base, double snap)
{
    xAngleBase = std::fabs(base);
    angleSnap = std::fabs(snap);
}

void TEdcAxes::SetColor(TColor c)
{
    color = c;
    AppDocument()->Obsolete(EDC_PAINT);
}

void TEdcAxes::SetGridStyle(TMix mix)
{
    gridStyle = mix;
    AppDocument()->Obsolete(EDC_PAINT);
}

// Axes without an extent on the device show one point only, and every distance is 0.

double TEdcAxes::ToModelX(int pixels) const
{
    return xScale > 0 ? pixels / xScale : 0;
}

double TEdcAxes::ToModelY(int pixels) const
{
    return yScale > 0 && pixels != 0 ? -(pixels / yScale) : 0; // a negative 0 would have an angle of its own
}

AgPOINT TEdcAxes::ToModel(TPoint p) const
{
    double x = static_cast<double>(p.x) - originX;
    double y = static_cast<double>(originY) - p.y;
    return AgPOINT(xScale > 0 ? x / xScale : 0, yScale > 0 ? y / yScale : 0);
}

TPoint TEdcAxes::ToDevice(const AgPOINT &p) const
{
    auto within = [](double place) { return std::clamp<int>(EdcNearest(place), -FARTHEST, FARTHEST); };
    return {within(originX + p.x * xScale), within(originY - p.y * yScale)};
}

AgPOINT TEdcAxes::Snap(const AgPOINT &p) const
{
    return AgPOINT(NearestMultiple(p.x, xSnap), NearestMultiple(p.y, ySnap), p.z);
}

double TEdcAxes::SnapAngle(double a) const
{
    return EdcWrapAngle(NearestMultiple(a, angleSnap));
}

double TEdcAxes::Angle(int dx, int dy) const
{
    return std::atan2(ToModelY(dy), ToModelX(dx));
}

double TEdcAxes::Length(int dx, int dy) const
{
    double x = ToModelX(dx);
    double y = ToModelY(dy);
    return std::sqrt(x * x + y * y);
}

TEdcTickNumbers EdcTickNumbers(double min, double max, int digits, int exponent)
{
    const double least = 1e-290; // beyond these a power of ten on the way leaves what a double holds
    const double most = 1e290;
    TEdcTickNumbers numbers;
    double span = std::max(-min, max);
    if (!(span > least && span < most))
        return numbers;
    int k = 0;
    double mantissa = Frexp10(span, k);
    // Places in front of the point; powers of ten beyond what a double holds are nobody's wish.
    int front = k - std::clamp<int>(exponent, -EXPONENT_MAX, EXPONENT_MAX);
    numbers.span = span;
    numbers.exponent = front < 2 ? front - 1 : std::max(front - digits, 0);
    numbers.exponent = std::clamp<int>(numbers.exponent, -EXPONENT_MAX, EXPONENT_MAX);
    numbers.places = static_cast<int>(mantissa * std::pow(10.0, digits) + NOISE);
    int last = k - digits; // place of the last digit that counts
    numbers.digits = std::max(k - numbers.exponent, 1) + std::max(numbers.exponent - last, 0);
    return numbers;
}

double EdcTickStep(double span, int count)
{
    static const double steps[] = {0.1, 0.2, 0.5, 1.0};
    if (count <= 0)
        return 0;
    int k = 0;
    double m = Frexp10(span / count, k);
    ASSERT(m < 1);
    int above = 0;
    while (steps[above] <= m)
        ++above;
    double power = std::pow(10.0, k);
    double finer = above > 0 ? steps[above - 1] * power : 0;
    double tooFine = span / (count + 1.0) * (1 + NOISE);
    return finer > tooFine ? finer : steps[above] * power;
}

TEdcMultiples::TEdcMultiples(double min, double max, double aStep)
    : step(aStep), first(std::ceil(min / aStep - NOISE) + 0.0), end(max + aStep * NOISE)
{
}

TEdcAxesLabel *EdcMakeTicks(double min, double max, double step, int exponent)
{
    TEdcAxesLabel *chain = NULL;
    __enter
        TEdcMultiples multiples(min, max, step);
        double unit = std::pow(10.0, exponent);
        for (double n = multiples.first; multiples.Value(n) < multiples.end; ++n) {
            TEdcAxesLabel *label = new TEdcAxesLabel;
            label->value = multiples.Value(n);
            snprintf(label->text, sizeof label->text, "%0.8lg", label->value / unit);
            label->next = chain;
            chain = label;
        }
    __point
        EdcFreeTicks(chain);
    __treat
    return chain;
}

void EdcFreeTicks(TEdcAxesLabel *&chain)
{
    while (chain != NULL) {
        TEdcAxesLabel *label = chain;
        chain = label->next;
        delete label;
    }
}

void EdcComposeTitle(char (&text)[TEdcAxes::TITLEMAX], const char *title, int exponent)
{
    char note[32] = "";
    if (exponent != 0)
        snprintf(note, sizeof note, "\n(x10^%d^)", exponent);
    StrCopy(text, title != NULL ? title : "", TEdcAxes::TITLEMAX - StrLength(note));
    bool alone = text[0] == EOS && note[0] != EOS;
    StrCat(text, alone ? note + 1 : note, TEdcAxes::TITLEMAX);
}

TEdcAxesMetrics::TEdcAxesMetrics(const TEdcAxes &axes, const TDC &dc)
{
    const double stroke = 5 / 72.0;   // inches
    const double hairline = 0.5 / 72; // a single pixel on a screen, and still seen on paper
    const TEdcFontRec &rec = edcDefaultFont;
    int points = axes.fontSize > 0 ? axes.fontSize : rec.size;
    font.face = axes.fontName != NULL ? axes.fontName : rec.name;
    font.height = -std::max(EdcInchToPixel(points / 72.0, axes.zoom, dc.DpiY()), 1);
    font.weight = axes.fontBold ? 700 : 400;
    line = std::max(EdcInchToPixel(hairline, axes.zoom, dc.DpiX()), 1);
    strokeX = std::max(EdcInchToPixel(stroke, axes.zoom, dc.DpiY()), 1);
    strokeY = std::max(EdcInchToPixel(stroke, axes.zoom, dc.DpiX()), 1);
}
