// Lengths of the layout and the colours of a document. All of it runs at each layout for each block, so nothing
// here allocates but the one table of a palette.
#include "usr/edcbase1.h"

#include "lib/xassert.h"
#include "usr/edcutils.h"
#include "win/dc.h"

#include <algorithm>
#include <new>

#include "lib/xon.h"

namespace
{
const double CM_PER_INCH = 2.54;
const double POINTS_PER_INCH = 72;

/// Lengths and limits: what is below 0, and no number, is 0.
double NotNegative(double length)
{
    return length > 0 ? length : 0;
}

/// A length of the unit in inches; `whole` is asked for fractions alone and answers in inches.
template <class WHOLE>
double ToInches(double length, int unit, const TEdcSize *base, WHOLE whole)
{
    switch (unit) {
    case EDC_UCM:
        return length / CM_PER_INCH;
    case EDC_UPT:
        return length * (1 / POINTS_PER_INCH);
    case EDC_UREL:
        ASSERT(base != NULL);
        return length * whole(*base);
    default:
        return length;
    }
}

double FromInches(double inches, int unit)
{
    return unit == EDC_UCM ? inches * CM_PER_INCH : unit == EDC_UPT ? inches * POINTS_PER_INCH : inches;
}

double WholeWidth(const TEdcSize &base)
{
    return base.Width();
}

double WholeHeight(const TEdcSize &base)
{
    return base.Height();
}
} // namespace

TEdcSize::TEdcSize(double aWidth, double aHeight, int aUnit, const TEdcSize *aBase)
    : width(NotNegative(aWidth)), height(NotNegative(aHeight)), unit(aUnit), base(aBase)
{
}

double TEdcSize::Width() const
{
    return ToInches(width, unit, base, WholeWidth);
}

double TEdcSize::Height() const
{
    return ToInches(height, unit, base, WholeHeight);
}

void TEdcSize::SetWidth(double inches)
{
    inches = NotNegative(inches);
    if (unit == EDC_UREL) {
        ASSERT(base != NULL);
        ASSERT(base->Width() > 0);
        width = inches / base->Width();
    } else {
        width = FromInches(inches, unit);
    }
}

void TEdcSize::SetHeight(double inches)
{
    inches = NotNegative(inches);
    if (unit == EDC_UREL) {
        ASSERT(base != NULL);
        ASSERT(base->Height() > 0);
        height = inches / base->Height();
    } else {
        height = FromInches(inches, unit);
    }
}

void TEdcSize::Clamp(double maxWidth, double maxHeight)
{
    SetWidth(NotNegative(std::min(maxWidth, Width())));
    SetHeight(NotNegative(std::min(maxHeight, Height())));
}

void TEdcSize::FromPixels(const TDC &dc, TSize pixels, double scale)
{
    SetWidth(EdcPixelToInch(pixels.cx, scale, dc.DpiX()));
    SetHeight(EdcPixelToInch(pixels.cy, scale, dc.DpiY()));
}

TSize TEdcSize::ToPixels(const TDC &dc, double scale) const
{
    return {EdcInchToPixel(Width(), scale, dc.DpiX()), EdcInchToPixel(Height(), scale, dc.DpiY())};
}

TEdcMargins::TEdcMargins(double aLeft, double aTop, double aRight, double aBottom, int aUnit,
                         const TEdcSize *aBase)
    : left(NotNegative(aLeft)), top(NotNegative(aTop)), right(NotNegative(aRight)),
      bottom(NotNegative(aBottom)), unit(aUnit), base(aBase)
{
}

double TEdcMargins::Left() const
{
    return ToInches(left, unit, base, WholeWidth);
}

double TEdcMargins::Top() const
{
    return ToInches(top, unit, base, WholeHeight);
}

double TEdcMargins::Right() const
{
    return ToInches(right, unit, base, WholeWidth);
}

double TEdcMargins::Bottom() const
{
    return ToInches(bottom, unit, base, WholeHeight);
}

int EdcInchToPixel(double inches, double scale, int dpi)
{
    ASSERT(scale > 0);
    return EdcNearest(inches * scale * dpi);
}

double EdcPixelToInch(int pixels, double scale, int dpi)
{
    ASSERT(scale > 0);
    return static_cast<double>(pixels) / dpi / scale;
}

TColor TEdcColorScale::Color(int index) const
{
    ASSERT(palette != NULL);
    ASSERT(index >= 0 && index < size);
    return palette->entries[static_cast<size_t>(Index(index))];
}

TEdcPalette::~TEdcPalette()
{
    delete[] defs;
}

/// The colours of before are gone; on a failure they stay.
void TEdcPalette::SetColors(int n)
{
    TEdcColorDef *fresh = NULL;
    __enter
        ASSERT_AS(n > 0, "colors > 0");
        fresh = new TEdcColorDef[static_cast<size_t>(n)];
        delete[] defs;
        defs = fresh;
        colors = n;
        count = 0;
    __point
    __treat
}

void TEdcPalette::Add(uint8_t red, uint8_t green, uint8_t blue, TEdcColorScale *scale, uint8_t flags)
{
    ASSERT(defs != NULL);
    if (count < colors)
        defs[count++] = {red, green, blue, flags, scale};
}

void TEdcPalette::Select(TDC &dc) const
{
    ASSERT(compal != NULL);
    if (dc.HasPalette())
        dc.SelectPalette(*compal);
}
