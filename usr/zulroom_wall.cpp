// The plan of a wall or of the ceiling: a head over the surface's own axes.
#include "usr/zulroom.h"

#include "lib/xassert.h"
#include "win/dc.h"

#include "lib/xon.h"

namespace
{
EmHOLESET *HolesOf(const TZulRoomBlock *rm, EmSURFACE *surf)
{
    ASSERT(rm != NULL && surf != NULL);
    return surf->Holes();
}
} // namespace

TZulWallBlock::TZulWallBlock(TZulRoomBlock *rm, EmSURFACE *surf, const char *aTitle)
    : TZulPlanBlock(aTitle), holeLayer(HolesOf(rm, surf), &axes), roomBlk(rm), surface(surf)
{
    sprites.AddLayer(&holeLayer);
    tools.Join(sprites);
    for (TEdcSpriteTool *each : tools.All())
        sprites.Permit(&holeLayer, each);
}

void TZulWallBlock::Update(bool)
{
    sprites.Reload(NULL);
}

void TZulWallBlock::Layout(TDC &dc, TEdcSize &trueSize, double scale)
{
    __enter
        TSize space = trueSize.ToPixels(dc, scale);
        int top = head.Layout(dc, space.cx, scale); __test;
        ZulSetRange(axes, Surface()->Bounds());
        axes.Layout(dc, {0, top, space.cx, space.cy}, scale, true); __test;
        ZulSizeMarks(holeLayer, dc, scale);
        sprites.Layout(dc); __test;
        trueSize.FromPixels(dc, {space.cx, axes.outer.bottom}, scale);
    __point
    __treat
}

void TZulWallBlock::PaintPlan(TDC &dc, const TRect &part)
{
    __enter
        head.Paint(dc); __test;
        axes.Paint(dc, part); __test;
        ZulFrame(dc, axes, AgE0, Surface()->size);
    __point
    __treat
}
