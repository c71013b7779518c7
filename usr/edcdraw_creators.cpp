// The creators of shapes that are drawn with the mouse. They work in metres, on the grid.
#include "usr/edcdraw.h"

#include "win/dc.h"

#include <cmath>

#include "lib/xon.h"

namespace
{
enum : uint16_t { LINE_SHAPE = 1, RECT_SHAPE = 2 }; // bits of a creation's flags
} // namespace

TEdcDrawLineCreator::TEdcDrawLineCreator(int aId, int cursorId, int aNextCommand, uint16_t someFlags)
    : TEdcDrawGestureTool(aId, cursorId, aNextCommand), flags(someFlags | LINE_SHAPE)
{
}

void TEdcDrawLineCreator::Activate(bool on)
{
    stock = NULL;
    TEdcDrawGestureTool::Activate(on);
}

void TEdcDrawLineCreator::Ask(bool first)
{
    stock = DrawLayer()->QueryCreation(Id(), first);
}

AgPOINT TEdcDrawLineCreator::Place(TPoint point) const
{
    return Axes().Snap(Axes().ToModel(point));
}

void TEdcDrawLineCreator::Follow(unsigned keys, TPoint point)
{
    end = Place(point);
    Constrain(keys);
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
    EdcSetGhostPen(dc, WIN_PEN_DOT);
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
            TEdcDrawSprite *spr = Make(creation); __test;
            if (spr) {
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
    flags = someFlags | RECT_SHAPE;
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
    EdcSetGhostPen(dc, WIN_PEN_SOLID);
    dc.Rectangle({rect.left, rect.top, rect.right + 1, rect.bottom + 1});
    dc.SetState(former);
}
