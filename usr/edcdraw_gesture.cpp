// What the tools that follow a press have in common. A button counts as up before its release is carried out,
// for that may open a dialog.
#include "usr/edcdraw.h"

#include <utility>

#include "lib/xon.h"

namespace
{
enum { IDLE = 0, PRESSED = 1 };
} // namespace

TEdcDrawGestureTool::TEdcDrawGestureTool(int aId, int cursorId, int aNextCommand)
    : TEdcDrawTool(aId, cursorId), nextCommand(aNextCommand)
{
}

void TEdcDrawGestureTool::Activate(bool on)
{
    __enter
        leftState = rightState = IDLE;
        drawn = outside = false;
        TEdcDrawTool::Activate(on); __test;
        if (on && layer) {
            Ask(true); __test;
        }
    __point
    __treat
}

bool TEdcDrawGestureTool::IsMove(unsigned, TPoint) const
{
    return true;
}

AgPOINT TEdcDrawGestureTool::Place(TPoint point) const
{
    return Axes().ToModel(point);
}

void TEdcDrawGestureTool::Ask(bool) {}

void TEdcDrawGestureTool::Erase(TDC &dc)
{
    if (std::exchange(drawn, false) && !outside)
        Draw(dc);
}

/// Also where the release of a former press never came.
void TEdcDrawGestureTool::LeftDown(TDC &dc, unsigned, TPoint point)
{
    if (!layer || rightState != IDLE)
        return;
    __enter
        Erase(dc); __test;
        leftState = PRESSED;
        outside = false;
        Begin(point);
    __point
        leftState = IDLE;
    __treat
}

void TEdcDrawGestureTool::MouseMove(TDC &dc, unsigned keys, TPoint point)
{
    EdcShowTool(Id(), layer);
    if (layer)
        EdcShowPointer(Place(point), NULL);
    if (!layer || leftState != PRESSED || outside || !IsMove(keys, point))
        return;
    __enter
        Erase(dc); __test;
        Follow(keys, point);
        drawn = true;
        Draw(dc); __test;
    __point
        leftState = IDLE;
        drawn = false;
    __treat
}

void TEdcDrawGestureTool::LeftUp(TDC &dc, unsigned, TPoint)
{
    bool pressed = std::exchange(leftState, IDLE) == PRESSED;
    if (outside)
        drawn = false; // it is hidden already
    if (!layer || !pressed || outside)
        return;
    __enter
        Erase(dc); __test;
        bool done = Finish(); __test;
        if (done && nextCommand != 0)
            EdcPostCommand(nextCommand);
    __point
    __treat
}

/// The other button takes a gesture back.
void TEdcDrawGestureTool::RightDown(TDC &dc, unsigned keys, TPoint point)
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
        drawn = false;
    __treat
}

/// A press that is taken back was no click.
void TEdcDrawGestureTool::RightUp(TDC &, unsigned keys, TPoint)
{
    bool pressed = std::exchange(rightState, IDLE) == PRESSED;
    if (!pressed || !layer || (keys & EDC_KEY_TAKEBACK))
        return;
    __enter
        if (nextCommand != 0) {
            EdcPostCommand(nextCommand);
        } else {
            Ask(false); __test;
        }
    __point
    __treat
}

void TEdcDrawGestureTool::Outside(TDC &dc, bool on)
{
    outside = on;
    if (layer && leftState == PRESSED && drawn)
        Draw(dc);
}

/// A new sprite, selected, that the layer owns; NULL where the layer makes none.
TEdcDrawSprite *TEdcDrawGestureTool::Make(const TEdcDrawCreation &creation)
{
    TEdcDrawSprite *spr = NULL;
    __enter
        spr = DrawLayer()->CreateSprite(creation); __test;
        if (spr) {
            layer->Add(spr); __test;
            layer->Select(spr, true, NULL); __test;
        }
    __point
        spr = NULL;
    __treat
    return spr;
}
