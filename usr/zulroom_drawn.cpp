// What drawn blocks of the report do alike: painting and printing below and with their layers, editing on a
// plan, and the plan that all hygiene maps have.
#include "usr/zulroom.h"

#include "win/dc.h"

#include <algorithm>

#include "lib/xon.h"

TZulDrawnBlock::TZulDrawnBlock(const char *aTitle) : sprites(this), head(aTitle)
{
    ZulSetUpAxes(axes);
}

void TZulDrawnBlock::Paint(TDC &dc, const TRect &part)
{
    __enter
        PaintPlan(dc, part); __test;
        sprites.Paint(dc, part); __test;
    __point
    __treat
}

void TZulDrawnBlock::Print(TDC &dc, const TRect &part)
{
    std::unique_ptr<TEdcPicture> printed;
    printed.swap(picture);
    __enter
        if (printed != NULL && ShowsMap())
            printed->Print(dc);
        PaintPlan(dc, part); __test;
        sprites.PaintPlain(dc, part); __test;
    __point
    __treat
    printed.swap(picture);
}

void TZulPlanBlock::Open()
{
    sprites.Resume(true);
}

/// The tool is forgotten: opening begins with the selector, and a creator that was handed over first would ask
/// for properties.
void TZulPlanBlock::Close()
{
    sprites.Suspend(true);
}

bool TZulPlanBlock::DoCommand(int id)
{
    return sprites.Command(id);
}

void TZulPlanBlock::EnableCommand(TCommandEnabler &ce)
{
    sprites.CommandEnable(ce);
}

TZulMapBlock::TZulMapBlock(EmROOM &room, const char *aTitle)
    : TZulDrawnBlock(aTitle), zoneLayer(room.Zones(), &axes), min(room.Box().min), max(room.Box().max)
{
    ZulSetRange(axes, room.Box());
    sprites.AddLayer(&zoneLayer);
}

int TZulMapBlock::LayoutPlan(TDC &dc, TSize space, double scale)
{
    int bottom = 0;
    __enter
        int top = head.Layout(dc, space.cx, scale); __test;
        axes.Layout(dc, {0, top, space.cx, std::max(top, space.cy)}, scale, true); __test;
        if (picture != NULL)
            picture->SetRect(HallRect());
        ZulSizePerson(zoneLayer, dc, scale);
        sprites.Layout(dc); __test;
        bottom = std::max(top, axes.outer.bottom);
    __point
    __treat
    return bottom;
}

TRect TZulMapBlock::HallRect() const
{
    TPoint a = axes.ToDevice(min);
    TPoint b = axes.ToDevice(max);
    return TRect{a.x, a.y, b.x, b.y}.Normalized();
}

void TZulMapBlock::PaintPlan(TDC &dc, const TRect &part)
{
    __enter
        head.Paint(dc); __test;
        if (picture != NULL)
            picture->Paint(dc);
        PaintLegends(dc); __test;
        axes.Paint(dc, part); __test;
        ZulFrame(dc, axes, min, max);
    __point
    __treat
}
