// The selector: one gesture of either button at a time, from its press to its release. A button counts as up
// before its release is carried out, for that may open a dialog. A failure ends the gesture; what it leaves of
// a drag or of the band is taken back with the next release or press, as if the pointer had left the view.
#include "usr/edcsprit.h"

#include "usr/edcapp.h"
#include "usr/edcbase2.h"
#include "win/dc.h"

#include <utility>

#include "lib/xon.h"

namespace
{
enum { IDLE = 0, PRESSED = 1, DOUBLE = 2 };
enum { BUTTON_LEFT = 1, BUTTON_RIGHT = 2 };

/// The topmost sprite there, NULL where there is none.
TEdcSprite *TopAt(const TEdcSpriteLayer &layer, TPoint point)
{
    TEdcSprite *found = NULL;
    __enter
        for (TEdcSprite *spr = layer.PntLast(); spr && !found; spr = spr->pntPrev) {
            found = spr->HitTest(point) ? spr : NULL; __test;
        }
    __point
        found = NULL;
    __treat
    return found;
}

void SelectIn(TEdcSpriteLayer &layer, const TRect &rect, TDC &dc)
{
    layer.LockDecorate(&dc);
    __enter
        for (TEdcSprite *spr = layer.LnkFirst(); spr; spr = spr->lnkNext) {
            bool inside = spr->InRect(rect); __test;
            if (inside) {
                layer.Select(spr, true, &dc); __test;
            }
        }
    __point
    __treat
    layer.UnlockDecorate(&dc);
}
} // namespace

void TEdcSpriteSelector::Begin(TDC &dc, int32_t which, unsigned keys, TPoint point)
{
    __enter
        TakeBack(dc, keys, point); __test;
        outside = false;
        start = last = point;
        button = which;
    __point
    __treat
}

/// No button counts as down. What has been drawn may be in any state.
void TEdcSpriteSelector::Forget()
{
    leftState = rightState = IDLE;
    if (HasAppDocument())
        AppDocument()->Obsolete(EDC_PAINT);
}

/// The gesture goes on as if the pointer had left the view: what ends there changes nothing.
void TEdcSpriteSelector::Leave(TDC &dc)
{
    if (!outside)
        Outside(dc, true);
}

/// Ends what a failure has left of a gesture; after a second failure it is left alone.
void TEdcSpriteSelector::TakeBack(TDC &dc, unsigned keys, TPoint point)
{
    if (!dragging && !rubber)
        return;
    __enter
        Leave(dc); __test;
        if (dragging) {
            Drop(dc, keys, point); __test;
        }
        if (rubber) {
            RubberEnd(dc); __test;
        }
    __point
        dragging = rubber = false;
    __treat
}

/// The tool changes hands: no gesture goes on from before.
void TEdcSpriteSelector::Activate(bool)
{
    leftState = rightState = IDLE;
    dragging = rubber = false;
}

void TEdcSpriteSelector::LeftDown(TDC &dc, unsigned keys, TPoint point)
{
    if (!layer)
        return;
    __enter
        if (rightState == IDLE) {
            Begin(dc, BUTTON_LEFT, keys, point); __test;
            leftState = PRESSED;
            if (!(keys & WIN_KEY_SHIFT)) {
                Pick(dc, point); __test;
            }
        } else {
            Leave(dc); __test;
            RightUp(dc, keys, point); __test;
        }
    __point
        Forget();
    __treat
}

void TEdcSpriteSelector::LeftUp(TDC &dc, unsigned keys, TPoint point)
{
    int32_t former = std::exchange(leftState, IDLE);
    if (!layer)
        return;
    __enter
        if (former == PRESSED) {
            if (dragging) {
                Drop(dc, keys, point); __test;
            } else if (rubber) {
                RubberEnd(dc); __test;
            } else if ((keys & WIN_KEY_SHIFT) && !outside) {
                PickToggle(dc, point, true); __test;
            }
        } else if (former == DOUBLE && !(keys & EDC_KEY_TAKEBACK)) {
            OpenAt(keys, point); __test;
        } else if (rightState == IDLE) {
            TakeBack(dc, keys, point); __test;
        }
    __point
        Forget();
    __treat
}

/// The first press of the two has picked.
void TEdcSpriteSelector::LeftDouble(TDC &dc, unsigned keys, TPoint point)
{
    if (!layer || rightState != IDLE)
        return;
    __enter
        TakeBack(dc, keys, point); __test;
        leftState = DOUBLE;
        outside = false;
    __point
        Forget();
    __treat
}

void TEdcSpriteSelector::RightDown(TDC &dc, unsigned keys, TPoint point)
{
    if (!layer)
        return;
    __enter
        if (leftState == IDLE) {
            Begin(dc, BUTTON_RIGHT, keys, point); __test;
            rightState = PRESSED;
            Pick(dc, point); __test;
        } else if (leftState == PRESSED) {
            Leave(dc); __test;
            LeftUp(dc, keys, point); __test;
        } else {
            leftState = IDLE;
        }
    __point
        Forget();
    __treat
}

void TEdcSpriteSelector::RightUp(TDC &dc, unsigned keys, TPoint point)
{
    int32_t former = std::exchange(rightState, IDLE);
    if (!layer)
        return;
    __enter
        if (former == PRESSED) {
            if (dragging) {
                Drop(dc, keys, point); __test;
            } else if (point == start && !outside) {
                MenuAt(keys, point); __test;
            }
        } else if (leftState == IDLE) {
            TakeBack(dc, keys, point); __test;
        }
    __point
        Forget();
    __treat
}

/// A press with Shift picks here, at the first move: the sprite that is already selected must not drop out of
/// the selection that is about to be dragged.
void TEdcSpriteSelector::MouseMove(TDC &dc, unsigned keys, TPoint point)
{
    bool pressed = leftState == PRESSED || rightState == PRESSED;
    if (!layer || !pressed || outside || point == last)
        return;
    __enter
        last = point;
        if (!dragging && !rubber) {
            PickToggle(dc, start, false); __test;
        }
        if (layer->Focus() && !rubber) {
            Drag(dc, keys, point); __test;
        } else if (leftState == PRESSED && !dragging) {
            RubberMove(dc, point); __test;
        }
    __point
        Forget();
    __treat
}

/// After a failure the pointer counts as where it was, so that all of the drag is hidden before it is dropped.
void TEdcSpriteSelector::Outside(TDC &dc, bool on)
{
    if (!layer)
        return;
    bool former = std::exchange(outside, on);
    __enter
        if (dragging)
            for (TEdcSprite *spr = layer->SelFirst(); spr; spr = spr->selNext) {
                spr->DragHide(dc, on); __test;
            }
        if (rubber) {
            RubberDraw(dc); __test;
        }
    __point
        outside = former;
        Forget();
    __treat
}

void TEdcSpriteSelector::MenuAt(unsigned keys, TPoint point)
{
    if (layer)
        layer->MenuAt(keys, point);
}

void TEdcSpriteSelector::OpenAt(unsigned keys, TPoint point)
{
    if (layer)
        layer->OpenAt(keys, point);
}

void TEdcSpriteSelector::PickToggle(TDC &dc, TPoint point, bool toggle)
{
    __enter
        TEdcSprite *spr = TopAt(*layer, point); __test;
        if (!spr) {
            layer->SetFocus(NULL, &dc); __test;
        } else {
            bool leaves = toggle && layer->IsSelected(spr);
            layer->LockDecorate(&dc);
            layer->Select(spr, !leaves, &dc);
            if (!leaves)
                layer->SetFocus(spr, &dc);
            layer->UnlockDecorate(&dc); __test;
        }
    __point
    __treat
}

void TEdcSpriteSelector::Pick(TDC &dc, TPoint point)
{
    __enter
        TEdcSprite *spr = TopAt(*layer, point); __test;
        if (!spr || !layer->IsSelected(spr)) {
            layer->SelectAll(false, &dc); __test;
            layer->Select(spr, true, &dc); __test;
        }
        layer->SetFocus(spr, &dc); __test;
    __point
    __treat
}

/// The count ends the walk: a drop that copies puts new members of the selection in place of the old ones.
void TEdcSpriteSelector::DragEach(DragStep step, TDC &dc, unsigned keys, TPoint point)
{
    unsigned mode = static_cast<unsigned>(button) | (keys & (WIN_KEY_SHIFT | WIN_KEY_CTRL));
    TPoint from = start;
    TPoint shift = point - start;
    __enter
        TEdcSprite *lead = layer->Focus();
        int left = layer->CountSel() - (lead ? 1 : 0);
        if (lead) {
            (lead->*step)(dc, mode, from, shift); __test;
        }
        TEdcSprite *following = NULL;
        for (TEdcSprite *spr = layer->SelFirst(); spr && left > 0; spr = following) {
            following = spr->selNext;
            if (spr != lead) {
                --left;
                (spr->*step)(dc, mode, from, shift); __test;
            }
        }
    __point
    __treat
}

void TEdcSpriteSelector::Drag(TDC &dc, unsigned keys, TPoint point)
{
    __enter
        if (!dragging) {
            dragging = true;
            DragEach(&TEdcSprite::DragBegin, dc, keys, point); __test;
        }
        DragEach(&TEdcSprite::DragMove, dc, keys, point); __test;
    __point
    __treat
}

void TEdcSpriteSelector::Drop(TDC &dc, unsigned keys, TPoint point)
{
    TEdcSpriteLayer *dropped = layer;
    dragging = false;
    __enter
        DragEach(&TEdcSprite::DragEnd, dc, keys, point); __test;
        if (!outside) {
            dropped->RepaintSelection(NULL); __test;
        }
    __point
    __treat
}

void TEdcSpriteSelector::RubberMove(TDC &dc, TPoint point)
{
    __enter
        if (rubber) {
            RubberDraw(dc); __test;
        }
        rubber = true;
        rubberEnd = point;
        RubberDraw(dc); __test;
    __point
    __treat
}

void TEdcSpriteSelector::RubberEnd(TDC &dc)
{
    rubber = false;
    if (outside)
        return;
    __enter
        RubberDraw(dc); __test;
        TRect band = TRect{start.x, start.y, rubberEnd.x, rubberEnd.y}.Normalized();
        SelectIn(*layer, band, dc); __test;
    __point
    __treat
}

/// Inverts: twice is nothing.
void TEdcSpriteSelector::RubberDraw(TDC &dc)
{
    TDCState former = dc.State();
    dc.SetPen({.color = WIN_WHITE, .width = 1, .style = WIN_PEN_DOT});
    dc.SetBrush(NoBrush());
    dc.SetMix(WIN_MIX_XOR);
    dc.SetOpaque(false);
    dc.Rectangle(TRect{start.x, start.y, rubberEnd.x, rubberEnd.y}.Normalized());
    dc.SetState(former);
}
