// Tools with a cursor of their own: the selector of plans, the aligner, and the creator of objects from stock.
#include "usr/edcdraw.h"

#include "lib/xassert.h"
#include "usr/edcapp.h"
#include "usr/edcbase2.h"
#include "win/dc.h"

#include <cmath>

#include "lib/xon.h"

namespace
{
const double HEAD_INCHES = 5.0 / 72; // length of an arrow's head

TCursor PictureCursor(int id)
{
    return {TCursor::RESOURCE, id};
}
} // namespace

TEdcDrawSelector::TEdcDrawSelector(int aId, int cursorId, int copyId)
    : TEdcSpriteSelector(aId), cursor(PictureCursor(cursorId)), cursorCopy(PictureCursor(copyId)),
      hasCopy(copyId != 0)
{
}

void TEdcDrawSelector::Activate(bool on)
{
    TEdcSpriteSelector::Activate(on);
    TEdcDrawSprite::ForgetDrag();
    EdcSwapCursor(on, activeNow, cursor, cursorSaved);
    EdcHideTool();
    if (on)
        EdcShowTool(Id(), layer);
}

/// The cursor, and the pointer's place in the status bar.
void TEdcDrawSelector::Show(TPoint point)
{
    if (activeNow && hasCopy)
        AppDocument()->SetCursor(TEdcDrawSprite::IsCopying() ? cursorCopy : cursor);
    EdcShowTool(Id(), layer);
    if (layer)
        EdcShowPointer(static_cast<TEdcDrawLayer *>(layer)->Axes()->ToModel(point),
                       TEdcDrawSprite::RunningDrag());
}

void TEdcDrawSelector::MouseMove(TDC &dc, unsigned keys, TPoint point)
{
    __enter
        TEdcSpriteSelector::MouseMove(dc, keys, point); __test;
        Show(point); __test;
    __point
    __treat
}

void TEdcDrawSelector::Drop(TDC &dc, unsigned keys, TPoint point)
{
    __enter
        TEdcSpriteSelector::Drop(dc, keys, point); __test;
    __point
    __treat
    TEdcDrawSprite::ForgetDrag(); // also where nothing was left to drop
    Show(point);
}

void EdcSwapCursor(bool on, bool &active, const TCursor &cursor, TCursor &saved)
{
    if (on == active)
        return;
    active = on;
    EdcHidePointer();
    if (on)
        saved = AppDocument()->SetCursor(cursor);
    else
        AppDocument()->SetCursor(saved);
}

TEdcDrawTool::TEdcDrawTool(int aId, int cursorId) : TEdcSpriteTool(aId), cursor(PictureCursor(cursorId)) {}

void TEdcDrawTool::Activate(bool on)
{
    EdcSwapCursor(on, activeNow, cursor, cursorSaved);
    EdcHideTool();
    if (on)
        EdcShowTool(Id(), layer);
}

TEdcDrawLayer *TEdcDrawTool::DrawLayer() const
{
    ASSERT(layer != NULL);
    return static_cast<TEdcDrawLayer *>(layer);
}

TEdcAxes &TEdcDrawTool::Axes() const
{
    return *DrawLayer()->Axes();
}

/// With Shift on the axis through the press along which the pointer has gone farther.
TPoint TEdcDrawAligner::Pulled(unsigned keys, TPoint point) const
{
    TPoint v = point - start;
    if ((keys & WIN_KEY_SHIFT) && std::abs(v.x) < std::abs(v.y))
        point.x = start.x;
    else if (keys & WIN_KEY_SHIFT)
        point.y = start.y;
    return point;
}

/// The shaft ends at the head, or the two would invert each other.
void TEdcDrawAligner::DrawLine(TDC &dc)
{
    if (start == end)
        return;
    double head = HEAD_INCHES * dc.DpiY(); // px
    double dx = end.x - start.x;
    double dy = end.y - start.y;
    double length = std::hypot(dx, dy);
    double ux = dx / length;
    double uy = dy / length;
    auto behind = [&](double back, double aside) {
        return TPoint{static_cast<int>(std::lround(end.x - ux * back - uy * aside)),
                      static_cast<int>(std::lround(end.y - uy * back + ux * aside))};
    };
    const TPoint tip[] = {end, behind(head, head / 3), behind(head, -head / 3)};
    TDCState former = dc.State();
    dc.SetMix(WIN_MIX_NOTXOR);
    dc.SetPen({WIN_BLACK, 1, WIN_PEN_SOLID});
    if (length > head + 1)
        dc.Line(start, behind(head + 1, 0));
    dc.SetPen(NoPen());
    dc.SetBrush(SolidBrush(WIN_BLACK));
    dc.Polygon(tip, 3);
    dc.SetState(former);
}

/// Without a selection there is nothing to align, and the tool is done.
bool TEdcDrawAligner::Finish()
{
    bool done = true;
    __enter
        AgPOINT from = Axes().ToModel(start);
        AgPOINT to = Axes().ToModel(end);
        if (layer->Focus() && from == to) {
            done = false;
        } else if (layer->Focus()) {
            TEdcDrawAlign spec;
            bool answered = DrawLayer()->AlignQuery(spec, from, to, NULL); __test;
            if (answered) {
                DrawLayer()->Align(spec); __test;
            }
        }
    __point
    __treat
    return done;
}

void TEdcDrawStockCreator::Activate(bool on)
{
    stock = NULL;
    TEdcDrawAligner::Activate(on);
}

void TEdcDrawStockCreator::Ask(bool first)
{
    stock = DrawLayer()->QueryCreation(Id(), first);
}

/// What was made before a failure stays, without a focus.
bool TEdcDrawStockCreator::Finish()
{
    __enter
        AgPOINT from = Axes().ToModel(start);
        AgPOINT to = Axes().ToModel(end);
        if (from == to) {
            PlaceOne(from); __test;
        } else {
            PlaceRow(from, to); __test;
        }
    __point
        layer->SetFocus(NULL, NULL);
    __treat
    return true;
}

TEdcDrawSprite *TEdcDrawStockCreator::CreateOne()
{
    TEdcDrawCreation creation;
    creation.type = Id();
    creation.stock = stock;
    return Make(creation);
}

/// Centred on the click, which is not snapped.
void TEdcDrawStockCreator::PlaceOne(const AgPOINT &at)
{
    __enter
        layer->SelectAll(false, NULL); __test;
        TEdcDrawSprite *spr = CreateOne(); __test;
        if (spr) {
            TEdcDrawDesc desc;
            TEdcDrawDrag drag;
            layer->SetFocus(spr, NULL); __test;
            spr->Recompute(); __test;
            spr->Describe(desc, 0); __test;
            Complete(desc);
            drag.mode = EDC_DRAWDRAGMOVE;
            drag.shift = at - desc.centre;
            DrawLayer()->ApplyDrag(drag); __test;
        }
    __point
    __treat
}

void TEdcDrawStockCreator::PlaceRow(const AgPOINT &from, const AgPOINT &to)
{
    __enter
        TEdcDrawAlign spec;
        int count = 0;
        bool answered = DrawLayer()->AlignQuery(spec, from, to, &count); __test;
        if (answered) {
            layer->SelectAll(false, NULL); __test;
            bool more = true;
            for (int i = 0; i < count && more; ++i) {
                more = CreateOne() != NULL; __test;
            }
        }
        if (answered && layer->CountSel() > 0) {
            layer->SetFocus(layer->SelLast(), NULL); __test;
            DrawLayer()->Align(spec); __test;
            layer->SetFocus(NULL, NULL); __test;
        }
    __point
    __treat
}
