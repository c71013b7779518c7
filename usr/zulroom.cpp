// The floor plan: the evaluation with its map, and how the plan is laid out, painted and printed.
#include "usr/zulroom.h"

#include "lib/xassert.h"
#include "usr/edcapp.h"
#include "usr/edcbase2.h"
#include "win/application.h"
#include "win/boxes.h"
#include "win/dc.h"

#include <algorithm>

#include "lib/xon.h"

namespace
{
const double INCH_PER_CM = 0.39370078740157477;
const double KEY_HEIGHT = 0.5905511811023622; // inches, 1.5 cm
const double KEY_WIDTH_MOST = 2.0;            // cm
const char face[] = "Arial";
const double TEXT_POINTS = 10;  // of the colour table and of the walls' letters
const double ROW_POINTS = 12.5; // of the colour table, from row to row

/// Inches.
double KeyWidth(const AgPOINT &hall)
{
    return std::max(0.0, std::min(KEY_WIDTH_MOST, 1.5 / hall.y * hall.x)) * INCH_PER_CM;
}

EmROOM *Needed(EmROOM *room)
{
    ASSERT(room != NULL);
    return room;
}

/// What the plan must show: the hall, and what stands or hangs beyond it.
EmBOX PlanBounds(const EmROOM &room)
{
    EmBOX bounds = Union(room.Emitters()->Bounds(), room.AirHeaters()->Bounds());
    bounds = Union(bounds, room.Surfaces()->Floor()->Bounds());
    return Union(bounds, room.Zones()->Bounds());
}
} // namespace

bool (*TZulRoomBlock::askParams)(TZulUpdateData &params) = NULL;

TZulRoomBlock::TZulRoomBlock(EmROOM *aRoom, TZulMapInfo *anInfo, TZulRoomPalette *aPalette, const char *aTitle)
    : TZulPlanBlock(aTitle), room(Needed(aRoom)), emittLayer(room->Emitters(), &axes),
      airhtLayer(room->AirHeaters(), &axes), holeLayer(room->Surfaces()->Floor()->Holes(), &axes),
      zoneLayer(room->Zones(), &axes), palette(aPalette), info(anInfo)
{
    ASSERT_AS(anInfo != NULL && aPalette != NULL, "info != NULL && palette != NULL");
    AddLayers();
}

/// Openings are placed and drawn, the others only either.
void TZulRoomBlock::AddLayers()
{
    airhtLayer.SetOptions(airhtLayer.Options() & static_cast<uint16_t>(~EDC_LoACTIVABLE));
    TEdcSpriteLayer *const layers[] = {&emittLayer, &airhtLayer, &zoneLayer, &holeLayer};
    for (TEdcSpriteLayer *ly : layers)
        sprites.AddLayer(ly);
    tools.Join(sprites);
    for (TEdcSpriteLayer *ly : layers) {
        sprites.Permit(ly, &tools.selector);
        sprites.Permit(ly, &tools.aligner);
        if (ly != &zoneLayer)
            sprites.Permit(ly, &tools.stockCreator);
        if (ly == &zoneLayer || ly == &holeLayer)
            sprites.Permit(ly, &tools.rectCreator);
    }
}

TZulRoomBlock::~TZulRoomBlock() = default;

void TZulRoomBlock::Update(bool partial)
{
    __enter
        sprites.Reload(NULL); __test;
        valid = false;
        bool runs = !partial && AsksForRun(); __test;
        if (runs) {
            Evaluate(); __test;
            valid = true;
        }
    __point
        valid = false;
    __treat
}

bool TZulRoomBlock::AsksForRun()
{
    bool runs = false;
    __enter
        if (askParams) {
            runs = askParams(params); __test;
        } else {
            TZulUpdateDialog dialog(params); __test;
            runs = dialog.Execute() == WIN_ID_OK; __test;
        }
    __point
        runs = false;
    __treat
    return runs;
}

void TZulRoomBlock::Evaluate()
{
    __enter
        AppDocument()->UpdateWindow();
        TWaitCursor wait;
        DropMap();
        ZulRunPass(*room, params.Params(), *info, map); __test;
        if (map.HasMap()) {
            const TEdcColorScale &colors =
                map.colors == &::mapColors ? palette->mapColors : palette->mapColorsCoarse;
            picture = ZulMakePicture(map.pixels, colors); __test;
            scale = ZulMakeColorScale(ZulMakeScale(*room, *info, map), colors); __test;
        }
    __point
        DropMap();
    __treat
}

void TZulRoomBlock::DropMap()
{
    map.pixels.Free();
    picture.reset();
    scale.reset();
}

/// A map that no longer holds may stay in the report until the next run, but not under the hands of whoever
/// edits the plan.
bool TZulRoomBlock::ShowsMap() const
{
    return valid || !(state & EDC_BsBUSY);
}

/// The foot has the walls' letters on the right and the colour table on their left.
/// @return its height, px
int TZulRoomBlock::LayoutFoot(TDC &dc, const TRect &foot, double viewScale)
{
    int height = 0;
    __enter
        int keySlot = EdcInchToPixel(KEY_WIDTH_MOST * INCH_PER_CM, viewScale, dc.DpiX());
        int keyWidth = EdcInchToPixel(KeyWidth(room->Surfaces()->Floor()->size), viewScale, dc.DpiX());
        int left = std::max(foot.left, foot.right - keySlot);
        int fontSize = ZulFontPixels(dc, TEXT_POINTS, viewScale);
        height = EdcInchToPixel(KEY_HEIGHT, viewScale, dc.DpiY());
        letters.SetFont(face, fontSize);
        letters.Layout(dc, {left + (keySlot - keyWidth) / 2, foot.top, left + (keySlot + keyWidth) / 2,
                            foot.top + height});
        if (scale != NULL && ShowsMap()) {
            scale->SetFont(face, fontSize);
            scale->SetPitch(ROW_POINTS / 72.0 * viewScale * dc.DpiY());
            TRect place = {foot.left, foot.top, std::max(foot.left, left - fontSize), foot.bottom};
            height = std::max(height, scale->Layout(dc, place)); __test;
        }
    __point
    __treat
    return height;
}

/// From the top down: head, axes, foot. The foot is measured first, for the axes take all that is left; it then
/// stands right below them, for they keep the hall's proportions and need not fill their place.
void TZulRoomBlock::Layout(TDC &dc, TEdcSize &trueSize, double viewScale)
{
    __enter
        TSize space = trueSize.ToPixels(dc, viewScale);
        int gap = ZulFontPixels(dc, TEXT_POINTS, viewScale) / 2;
        int top = head.Layout(dc, space.cx, viewScale); __test;
        int foot = LayoutFoot(dc, {0, 0, space.cx, 0}, viewScale); __test;
        ZulSetRange(axes, PlanBounds(*room));
        axes.Layout(dc, {0, top, space.cx, space.cy - foot - gap}, viewScale, true); __test;
        int footTop = axes.outer.bottom + gap;
        LayoutFoot(dc, {0, footTop, space.cx, footTop + foot}, viewScale); __test;
        if (picture) {
            TPoint low = axes.ToDevice(room->Box().min);
            TPoint high = axes.ToDevice(room->Box().max);
            picture->SetRect({low.x, high.y, high.x, low.y});
        }
        ZulSizeMarks(emittLayer, dc, viewScale);
        ZulSizeMarks(airhtLayer, dc, viewScale);
        ZulSizeMarks(holeLayer, dc, viewScale);
        ZulSizePerson(zoneLayer, dc, viewScale);
        sprites.Layout(dc); __test;
        trueSize.FromPixels(dc, {space.cx, footTop + foot}, viewScale);
    __point
    __treat
}

void TZulRoomBlock::PaintPlan(TDC &dc, const TRect &part)
{
    __enter
        head.Paint(dc); __test;
        if (picture != NULL && ShowsMap())
            picture->Paint(dc);
        letters.Paint(dc);
        if (scale != NULL && ShowsMap()) {
            scale->Paint(dc); __test;
        }
        axes.Paint(dc, part); __test;
        ZulFrame(dc, axes, AgE0, room->Surfaces()->Floor()->size);
    __point
    __treat
}
