// A device context for pictures from anywhere: it draws nowhere, counts what it is asked for, and insists on
// what a drawing surface needs.
#ifndef TESTS_SUPPORT_COUNTDC_H
#define TESTS_SUPPORT_COUNTDC_H

#include "lib/xassert.h"
#include "win/dc.h"

#include <cstdlib>

class TCountDC : public TDC
{
public:
    int DpiX() const override { return 96; }
    int DpiY() const override { return 96; }
    TFontMetrics FontMetrics() override { return {}; }
    int CharWidth(unsigned char) override { return 1; }
    void Polyline(const TPoint *, int) override { ++others; }
    void Polygon(const TPoint *, int) override { ++others; }
    void Rectangle(const TRect &) override { ++others; }
    void Ellipse(const TRect &) override { ++others; }
    void FillRect(const TRect &, const TBrush &) override { ++others; }
    void InvertRect(const TRect &) override { ++others; }
    void TextOut(int, int, const char *, int) override { ++others; }
    void StretchBitmap(const TRect &, const TBitmap &) override { ++others; }
    void Shape(const std::vector<Outline> &outlines, bool) override
    {
        ++shapes;
        ASSERT(state.pen.width >= 1 && state.pen.width <= 32767);
        for (const Outline &outline : outlines) {
            ASSERT(!outline.points.empty());
            points += outline.points.size();
            for (const TPoint &p : outline.points)
                ASSERT(std::abs(p.x) <= 1 << 30 && std::abs(p.y) <= 1 << 30);
        }
    }

    size_t shapes = 0;
    size_t points = 0;
    size_t others = 0; // calls other than shapes
};

#endif
