// The creators of shapes that are drawn with the mouse. They work in metres, on the grid.
#include "usr/edcdraw.h"

#include "win/dc.h"

#include <cmath>
#include <utility>

#include "lib/xon.h"

namespace
{
enum { IDLE = 0, PRESSED = 1 };
enum : uint16_t { LINE_SHAPE = 1, RECT_SHAPE = 2 }; // bits of a creation's flags

/// White, exclusive-or: drawn twice it leaves no trace.
void SetGhostPen(TDC &dc, TPenStyle style)
{
    dc.SetPen({WIN_WHITE, 1, style});
    dc.SetBrush(NoBrush());
    dc.SetOpaque(false);
    dc.SetMix(WIN_MIX_XOR);
}
} // namespace

TEdcDrawLineCreator::TEdcDrawLineCreator(int aId, int cursorId, int aNextCommand, uint16_t someFlags)
    : TEdcDrawTool(aId, cursorId), nextCommand(aNextCommand), flags(someFlags | LINE_SHAPE)
{
}

void TEdcDrawLineCreator::Activate(bool on)
{
    __enter
        stock = NULL;
        leftState = rightState = IDLE;
        drawn = outside = false;
        TEdcDrawTool::Activate(on); __test;
        if (on && layer) {
            stock = DrawLayer()->QueryCreation(Id(), true); __test;
        }
    __point
    __treat
}

AgPOINT TEdcDrawLineCreator::Snapped(TPoint point) const
{
    return Axes().Snap(Axes().ToModel(point));
}

void TEdcDrawLineCreator::LeftDown(TDC &, unsigned, TPoint point)
{
    if (!layer || rightState != IDLE)
        return;
    leftState = PRESSED;
    outside = drawn = false;
    origin = start = end = Snapped(point);
}

void TEdcDrawLineCreator::MouseMove(TDC &dc, unsigned keys, TPoint point)
{
    if (layer)
        EdcShowPointer(Snapped(point), NULL);
    if (!layer || leftState != PRESSED || outside)
        return;
    __enter
        if (drawn) {
            DrawShape(dc); __test;
        }
        end = Snapped(point);
        Constrain(keys);
        drawn = true;
        DrawShape(dc); __test;
    __point
        leftState = IDLE;
    __treat
}

void TEdcDrawLineCreator::LeftUp(TDC &dc, unsigned, TPoint)
{
    int32_t former = std::exchange(leftState, IDLE);
    if (!layer || former != PRESSED || outside)
        return;
    __enter
        if (drawn) {
            DrawShape(dc); __test;
        }
        drawn = false;
        bool done = Finish(); __test;
        if (done && nextCommand != 0)
            EdcPostCommand(nextCommand);
    __point
    __treat
}

void TEdcDrawLineCreator::RightDown(TDC &dc, unsigned keys, TPoint point)
{
    if (!layer)
        return;
    __enter
        if (leftState == PRESSED) {
            if (!outside) {
                Outside(dc, true); __test;
            }
            LeftUp(dc, keys, point); __test;
        } else {
            rightState = PRESSED;
            outside = false;
        }
    __point
        leftState = rightState = IDLE;
    __treat
}

void TEdcDrawLineCreator::RightUp(TDC &, unsigned, TPoint)
{
    __enter
        bool pressed = std::exchange(rightState, IDLE) == PRESSED && layer;
        if (pressed && nextCommand != 0) {
            EdcPostCommand(nextCommand);
        } else if (pressed) {
            stock = DrawLayer()->QueryCreation(Id(), false); __test;
        }
    __point
    __treat
}

void TEdcDrawLineCreator::Outside(TDC &dc, bool on)
{
    outside = on;
    if (layer && leftState == PRESSED && drawn)
        DrawShape(dc);
}

void TEdcDrawLineCreator::Constrain(unsigned keys)
{
    start = origin;
    AgVECTOR v = end - start;
    if ((keys & WIN_KEY_SHIFT) && std::fabs(v.x) <= std::fabs(v.y))
        end.x = start.x;
    else if (keys & WIN_KEY_SHIFT)
        end.y = start.y;
    if (keys & WIN_KEY_CTRL)
        start = origin - (end - origin);
}

void TEdcDrawLineCreator::DrawShape(TDC &dc)
{
    TDCState former = dc.State();
    SetGhostPen(dc, WIN_PEN_DOT);
    dc.Line(Axes().ToDevice(start), Axes().ToDevice(end));
    dc.SetState(former);
}

/// Equal points make nothing. What was made before a failure stays, without a focus.
bool TEdcDrawLineCreator::Finish()
{
    bool done = start != end;
    __enter
        if (done) {
            TEdcDrawCreation creation;
            creation.type = Id();
            creation.flags = flags;
            creation.stock = stock;
            creation.points.Insert(start); __test;
            creation.points.Insert(end); __test;
            layer->SelectAll(false, NULL); __test;
            TEdcDrawSprite *spr = DrawLayer()->CreateSprite(creation); __test;
            if (spr) {
                layer->Add(spr); __test;
                layer->Select(spr, true, NULL); __test;
                layer->SetFocus(spr, NULL); __test;
            }
        }
    __point
        layer->SetFocus(NULL, NULL);
    __treat
    return done;
}

TEdcDrawRectCreator::TEdcDrawRectCreator(int aId, int cursorId, int aNextCommand, uint16_t someFlags)
    : TEdcDrawLineCreator(aId, cursorId, aNextCommand, someFlags)
{
    flags = static_cast<uint16_t>((someFlags & ~LINE_SHAPE) | RECT_SHAPE);
}

void TEdcDrawRectCreator::Constrain(unsigned keys)
{
    start = origin;
    AgVECTOR v = end - start;
    if ((keys & WIN_KEY_SHIFT) && std::fabs(v.x) <= std::fabs(v.y))
        v.x = std::copysign(v.y, v.x < 0 ? -1.0 : 1.0);
    else if (keys & WIN_KEY_SHIFT)
        v.y = std::copysign(v.x, v.y < 0 ? -1.0 : 1.0);
    end = start + v;
    if (keys & WIN_KEY_CTRL)
        start = origin - (end - origin);
}

void TEdcDrawRectCreator::DrawShape(TDC &dc)
{
    TPoint a = Axes().ToDevice(start);
    TPoint b = Axes().ToDevice(end);
    TRect rect = TRect{a.x, a.y, b.x, b.y}.Normalized();
    TDCState former = dc.State();
    SetGhostPen(dc, WIN_PEN_SOLID);
    dc.Rectangle({rect.left, rect.top, rect.right + 1, rect.bottom + 1});
    dc.SetState(former);
}
