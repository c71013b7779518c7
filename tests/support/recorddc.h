// A device context that draws nowhere and writes down what it is asked, one call a line, so that a test
// compares layout and painting as text. Its fonts have fixed metrics: em = -height, or 4/5 of a cell height;
// ascent = em, descent = a quarter of it; a character is em/2 wide, "i", "l", ".", "," and the blank em/4, "m"
// and "W" 3/4 em, rounded, and one more in bold. A cell of ascent plus descent gives the em back.
//
// A line is the call, its places on the surface, and of the state what shows in it:
//
//     Line 10,20 30,20 pen 000000
//     Polyline 0,0 5,0 5,5 pen ff0000 3 dot on ffffff xor          width if not 1; gaps filled in opaque mode
//     Polygon 0,0 9,0 9,9 pen none brush 00ff00
//     Rect 0,0,10,10 pen 000000 brush none                         left, top, right, bottom
//     Ellipse 0,0,10,10 pen 000000 brush hatch cross 0000ff at 3,4 brush origin if not 0,0
//     Fill 0,0,10,10 brush pattern 000000/ffffff 8040201008040201
//     Invert 0,0,10,10
//     Text 10,20 "Länge" Arial -13 bold italic underline 000000 on ffffff bottom
//     Bitmap 0,0,100,50 20x10
//     Shape winding closed 0,0 160,0 160,160 open 16,16 32,32 pen 000000 brush none   1/16 px
//     Palette 12                                                   number of entries
//
// Then come the mix if it is not copy and matters ("xor", "notxor", "invert" ...), "clip 0,0,50,50" and
// "turn 1" where they are set. Colours are rrggbb; "on" is the background colour, in opaque mode. Texts are
// UTF-8 here, with \", \\ and \x09 for what cannot stand as it is.
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
