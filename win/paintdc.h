// The device context of a window's paint event.
#ifndef WIN_PAINTDC_H
#define WIN_PAINTDC_H

#include "win/dc.h"

/// Whatever clip the painting sets, it changes nothing outside the invalid
/// rectangle: exclusive-or and smooth edges must not meet the same pixel twice.
class TPaintDC : public TSurfaceDC
{
public:
    TPaintDC(TSurface &on, const TRect &aLimit) : TSurfaceDC(on), limit(aLimit) {}

    void Polyline(const TPoint *points, int count) override
    {
        Within([=, this] { TSurfaceDC::Polyline(points, count); });
    }
    void Polygon(const TPoint *points, int count) override
    {
        Within([=, this] { TSurfaceDC::Polygon(points, count); });
    }
    void Rectangle(const TRect &rect) override
    {
        Within([&, this] { TSurfaceDC::Rectangle(rect); });
    }
    void Ellipse(const TRect &rect) override
    {
        Within([&, this] { TSurfaceDC::Ellipse(rect); });
    }
    void FillRect(const TRect &rect, const TBrush &brush) override
    {
        Within([&, this] { TSurfaceDC::FillRect(rect, brush); });
    }
    void InvertRect(const TRect &rect) override
    {
        Within([&, this] { TSurfaceDC::InvertRect(rect); });
    }
    void TextOut(int x, int y, const char *text, int length) override
    {
        Within([=, this] { TSurfaceDC::TextOut(x, y, text, length); });
    }
    void StretchBitmap(const TRect &rect, const TBitmap &bitmap) override
    {
        Within([&, this] { TSurfaceDC::StretchBitmap(rect, bitmap); });
    }
    void Shape(const std::vector<Outline> &outlines, bool winding) override
    {
        Within([&, this] { TSurfaceDC::Shape(outlines, winding); });
    }

private:
    template <class DRAW>
    void Within(DRAW draw)
    {
        bool clipped = state.clipped;
        TRect clip = state.clip;
        state.clip = clipped ? clip & limit : limit;
        state.clipped = true;
        if (!state.clip.IsEmpty())
            draw();
        state.clipped = clipped;
        state.clip = clip;
    }

    TRect limit; // surface coordinates
};

#endif
