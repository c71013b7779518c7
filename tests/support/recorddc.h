// A device context that draws nowhere and writes down what it is asked, one call a line, so that a test
// compares layout and painting as text. Its fonts have fixed metrics: em = -height, or 4/5 of a cell height;
// ascent = em, descent = a quarter of it; a character is em/2 wide, "i", "l", ".", "," and the blank em/4, "m"
// and "W" 3/4 em, rounded, and one more in bold.
#ifndef TESTS_SUPPORT_RECORDDC_H
#define TESTS_SUPPORT_RECORDDC_H

#include "win/dc.h"
#include <string>

class TRecordDC : public TDC
{
public:
    explicit TRecordDC(int aDpi = 96) : dpi(aDpi) {}

    int DpiX() const override { return dpi; }
    int DpiY() const override { return dpi; }
    bool HasPalette() const override { return palette; }
    bool HasMixes() const override { return mixes; }
    TPoint PhysicalOffset() const override { return offset; }
    void SelectPalette(const TPalette &entries) override;
    TFontMetrics FontMetrics() override;
    int CharWidth(unsigned char c) override;
    void Polyline(const TPoint *points, int count) override;
    void Polygon(const TPoint *points, int count) override;
    void Rectangle(const TRect &rect) override;
    void Ellipse(const TRect &rect) override;
    void FillRect(const TRect &rect, const TBrush &brush) override;
    void InvertRect(const TRect &rect) override;
    void TextOut(int x, int y, const char *text, int length) override;
    void StretchBitmap(const TRect &rect, const TBitmap &bitmap) override;
    void Shape(const std::vector<Outline> &outlines, bool winding) override;

    std::string calls; // one line a call, places on the surface (the viewport is added)
    bool palette = false;
    bool mixes = true;
    TPoint offset;

private:
    int dpi;
};

#endif
