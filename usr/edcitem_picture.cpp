// A bitmap of a map, over the part of the plan that it belongs to.
#include "usr/edcitem.h"
#include "win/dc.h"

TEdcPicture::TEdcPicture(int width, int height) : bitmap(width, height) {}

namespace
{
/// The corners come from axes, whose y runs upwards.
void Stretch(TDC &dc, const TRect &rect, const TBitmap &bitmap, TMix mix)
{
    TMix former = dc.SetMix(mix);
    dc.StretchBitmap(rect.Normalized(), bitmap);
    dc.SetMix(former);
}
} // namespace

void TEdcPicture::Paint(TDC &dc) const
{
    Stretch(dc, rect, bitmap, WIN_MIX_COPY);
}

void TEdcPicture::Print(TDC &dc) const
{
    Stretch(dc, rect, bitmap, printMix);
}
