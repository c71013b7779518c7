#include "usr/edcblks.h"

#include "lib/charstr.h"
#include "usr/edcapp.h"
#include "usr/edcbase2.h"
#include "win/dc.h"

#include <cstring>

#include "lib/xon.h"

TEdcTextBlock::TEdcTextBlock()
{
    size = TEdcSize(0, 1, EDC_UREL);
}

TEdcTextBlock::~TEdcTextBlock()
{
    delete[] source;
}

void TEdcTextBlock::SetText(const char *s)
{
    __enter
        char *fresh = NULL;
        if (s != NULL) {
            size_t bytes = std::strlen(s) + 1;
            fresh = new char[bytes];
            std::memcpy(fresh, s, bytes);
        }
        delete[] source;
        source = fresh;
        txt.SetText(source);
    __point
    __treat
}

void TEdcTextBlock::SetFontRec(const TEdcFontRec *rec)
{
    font = rec;
    if (state & EDC_BsLINKED)
        AppDocument()->Obsolete(EDC_LAYOUT);
}

void TEdcTextBlock::SetSize(double width, double height, int unit)
{
    SetSize(TEdcSize(width, height, unit));
}

void TEdcTextBlock::Layout(TDC &dc, TEdcSize &trueSize, double scale)
{
    __enter
        const TEdcFontRec &rec = font != NULL ? *font : edcDefaultFont;
        int width = EdcInchToPixel(trueSize.Width(), scale, dc.DpiX());
        TRect placed = {0, 0, width, 0};
        txt.SetFont(rec.name, EdcInchToPixel(rec.size / 72.0, scale, dc.DpiY()), rec.charset);
        txt.SetFormat(rec.format);
        txt.Layout(dc, placed, EDC_BREAKWIDTH, EDC_HLEFT, EDC_VTOP); __test;
        trueSize.SetHeight(EdcPixelToInch(placed.Height(), scale, dc.DpiY()));
    __point
    __treat
}

void TEdcTextBlock::Paint(TDC &dc, const TRect &part)
{
    txt.Paint(dc, part);
}
