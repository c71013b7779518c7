// Mouse, wheel, keys, size and focus of the document, and the scrolling while a drag leaves the window. One
// gesture runs from the first button down to the last one up; whatever cuts it short (a failure, the platform
// taking the mouse away) ends it the way a user would cancel it, so that no tool stays in the middle of a drag.
#include "usr/edcbase2.h"
#include "usr/edcutils.h"
#include "win/application.h"
#include "win/dc.h"

#include <algorithm>
#include <cmath>
#include <functional>

#include "lib/xon.h"

namespace
{
enum { BUTTON_UP = 0, BUTTON_DOWN = 1, BUTTON_DOUBLE = 2 };
enum { AUTOSCROLL_PAUSE = 149 };         // ms between two steps, to be exceeded
constexpr double AUTOSCROLL_SPEED = 0.1; // lines a step for each pixel beyond the edge
constexpr double AUTOSCROLL_FASTEST = 4; // lines a step
constexpr double WHEEL_FACTOR = 1.1;     // of the percentage, a notch
constexpr double WHEEL_MOST = 100;       // notches; more than any zoom's range holds

/// Pixels of an auto-scroll step for a pointer that is `beyond` pixels outside.
int StepBeyond(int beyond, int line)
{
    if (beyond <= 0)
        return 0;
    return static_cast<int>(std::min(AUTOSCROLL_FASTEST, AUTOSCROLL_SPEED * beyond) * line);
}

int ElapsedSince(int tick) // ms; right also when the clock has run over
{
    return static_cast<int>(static_cast<unsigned>(WinTickCount()) - static_cast<unsigned>(tick));
}
} // namespace

/// What all mouse messages share: the work, the refresh behind it, and the end of the gesture where it fails. A
/// pointer that merely passes over the document changes nothing, so nothing is worked off for it.
void TEdcDocument::MouseMessage(MouseWork work, unsigned keys, TPoint point)
{
    bool failed = false;
    bool passes = !openedBlk && work == &TEdcDocument::MouseMove;
    lastPoint = point;
    __enter
        std::invoke(work, this, keys, point); __test;
        if (!passes) {
            RefreshUnderGesture(); __test;
        }
    __point
        failed = true;
        __repair;
        __report;
    __treat
    if (failed)
        EndGesture();
}

void TEdcDocument::EvLButtonDown(unsigned keys, TPoint point)
{
    if (locked == 0)
        MouseMessage(&TEdcDocument::LeftDown, keys, point);
}

void TEdcDocument::EvLButtonUp(unsigned keys, TPoint point)
{
    if (leftDown > 0)
        MouseMessage(&TEdcDocument::LeftUp, keys, point);
}

void TEdcDocument::EvLButtonDblClk(unsigned keys, TPoint point)
{
    if (locked == 0)
        MouseMessage(&TEdcDocument::LeftDouble, keys, point);
}

void TEdcDocument::EvRButtonDown(unsigned keys, TPoint point)
{
    if (locked == 0)
        MouseMessage(&TEdcDocument::RightDown, keys, point);
}

void TEdcDocument::EvRButtonUp(unsigned keys, TPoint point)
{
    if (rightDown > 0)
        MouseMessage(&TEdcDocument::RightUp, keys, point);
}

void TEdcDocument::EvMouseMove(unsigned keys, TPoint point)
{
    if (locked == 0 || leftDown > 0 || rightDown > 0)
        MouseMessage(&TEdcDocument::MouseMove, keys, point);
}

/// Painting in the middle of a gesture would take away half of what its tool has drawn and takes back later:
/// what is still to be painted is painted before the tool draws, and what comes up on the way while it is
/// hidden.
void TEdcDocument::PaintPending()
{
    __enter
        Refresh(0); __test;
        UpdateWindow(); __test;
    __point
    __treat
}

void TEdcDocument::RefreshUnderGesture()
{
    bool paints = openedBlk && IsObsolete(EDC_PAINT);
    __enter
        if (paints) {
            HideGesture(true); __test;
        }
        Refresh(0); __test;
        if (paints) {
            HideGesture(false); __test;
        }
    __point
    __treat
}

void TEdcDocument::LeftDown(unsigned keys, TPoint point)
{
    __enter
        leftDown = BUTTON_DOWN;
        if (openedBlk) {
            PaintPending(); __test;
            PressTool(TOOL_LEFT_DOWN, keys, point); __test;
        } else if (!autoScroll) {
            SelectBlock(HitTest(point)); __test;
        }
        if (rightDown == BUTTON_UP)
            PressCapture();
    __point
    __treat
}

/// The button counts as up before anybody hears of it: an executed block or a tool may open a dialog, which
/// needs the mouse.
void TEdcDocument::LeftUp(unsigned keys, TPoint point)
{
    __enter
        bool activates = leftDown == BUTTON_DOUBLE && !autoScroll;
        leftDown = BUTTON_UP;
        ReleaseIfUp();
        if (openedBlk) {
            CallTool(TOOL_LEFT_UP, keys, point); __test;
        } else if (activates) {
            ActivateBlock(NULL); __test;
        }
    __point
    __treat
}

void TEdcDocument::LeftDouble(unsigned keys, TPoint point)
{
    __enter
        leftDown = BUTTON_DOUBLE;
        CallTool(TOOL_LEFT_DOUBLE, keys, point); __test;
    __point
    __treat
}

void TEdcDocument::RightDown(unsigned keys, TPoint point)
{
    __enter
        rightDown = BUTTON_DOWN;
        if (openedBlk) {
            PaintPending(); __test;
            PressTool(TOOL_RIGHT_DOWN, keys, point); __test;
        }
        if (leftDown == BUTTON_UP)
            PressCapture();
    __point
    __treat
}

void TEdcDocument::RightUp(unsigned keys, TPoint point)
{
    __enter
        rightDown = BUTTON_UP;
        ReleaseIfUp();
        CallTool(TOOL_RIGHT_UP, keys, point); __test;
    __point
    __treat
}

void TEdcDocument::MouseMove(unsigned keys, TPoint point)
{
    __enter
        bool former = autoScroll;
        UpdateAutoScroll(point);
        if (autoScroll != former) {
            if (!autoScroll)
                UpdateWindow();
            CallTool(autoScroll ? TOOL_OUTSIDE : TOOL_INSIDE, keys, point); __test;
        }
        CallTool(TOOL_MOVE, keys, point); __test;
    __point
    __treat
}

/// Hands an event to the tool of the opened block, with the point as the block sees it. No block opened or no
/// tool: nothing.
void TEdcDocument::CallTool(ToolEvent event, unsigned keys, TPoint point)
{
    if (!openedBlk || !openedDC || !openedBlk->tool)
        return;
    __enter
        TEdcMouseTool *tool = openedBlk->tool;
        PrepareOpenedDC();
        TPoint p = ToDocument(point) - TPoint{openedBlk->rect.x, openedBlk->rect.y};
        switch (event) {
        case TOOL_LEFT_DOWN:
            tool->LeftDown(*openedDC, keys, p);
            break;
        case TOOL_LEFT_UP:
            tool->LeftUp(*openedDC, keys, p);
            break;
        case TOOL_LEFT_DOUBLE:
            tool->LeftDouble(*openedDC, keys, p);
            break;
        case TOOL_RIGHT_DOWN:
            tool->RightDown(*openedDC, keys, p);
            break;
        case TOOL_RIGHT_UP:
            tool->RightUp(*openedDC, keys, p);
            break;
        case TOOL_MOVE:
            tool->MouseMove(*openedDC, keys, p);
            break;
        case TOOL_OUTSIDE:
            tool->Outside(*openedDC, true);
            break;
        case TOOL_INSIDE:
            tool->Outside(*openedDC, false);
            break;
        }
        __test;
    __point
    __treat
}

/// A press takes the pointer for inside; under the other button it may be elsewhere.
void TEdcDocument::PressTool(ToolEvent event, unsigned keys, TPoint point)
{
    __enter
        CallTool(event, keys, point); __test;
        if (autoScroll) {
            CallTool(TOOL_OUTSIDE, keys, point); __test;
        }
    __point
    __treat
}

void TEdcDocument::PrepareOpenedDC()
{
    PrepareDC(*openedDC);
    openedDC->SetViewportOrg(ToWindow(TPoint{openedBlk->rect.x, openedBlk->rect.y}));
}

/// Only a gesture scrolls: a pointer that passes by with no button down is nowhere outside.
void TEdcDocument::UpdateAutoScroll(TPoint point)
{
    TRect client = GetClientRect();
    autoScroll = (leftDown > 0 || rightDown > 0) && !client.Contains(point);
    if (!Scroller())
        return;
    stepX = StepBeyond(point.x - client.right, Scroller()->XLine()) -
            StepBeyond(client.left - point.x, Scroller()->XLine());
    stepY = StepBeyond(point.y - client.bottom, Scroller()->YLine()) -
            StepBeyond(client.top - point.y, Scroller()->YLine());
}

void TEdcDocument::PressCapture()
{
    scrollTick = WinTickCount();
    SetCapture();
}

void TEdcDocument::ReleaseIfUp()
{
    if (leftDown > 0 || rightDown > 0)
        return;
    autoScroll = false;
    if (HasCapture())
        ReleaseCapture();
}

/// Ends a gesture that no button-up will end. The tool hears of it as of a pointer that left the view and a
/// button that was let go there, which undoes what it had begun.
void TEdcDocument::EndGesture()
{
    bool left = leftDown > 0;
    bool right = rightDown > 0;
    bool inside = !autoScroll;
    leftDown = rightDown = BUTTON_UP;
    __enter
        if (inside && (left || right)) {
            CallTool(TOOL_OUTSIDE, 0, lastPoint); __test;
        }
        ReleaseIfUp();
        if (left) {
            CallTool(TOOL_LEFT_UP, EDC_KEY_TAKEBACK, lastPoint); __test;
        }
        if (right) {
            CallTool(TOOL_RIGHT_UP, EDC_KEY_TAKEBACK, lastPoint); __test;
        }
    __point
        __repair;
        __report;
    __treat
    ReleaseIfUp();
}

void TEdcDocument::EvCaptureLost()
{
    __enter
        EndGesture();
        Refresh(0); __test;
    __point
        __repair;
        __report;
    __treat
}

bool TEdcDocument::IdleAction(long idleCount)
{
    bool more = false;
    __enter
        more = TWindow::IdleAction(idleCount); __test;
        if (autoScroll && Scroller() && ElapsedSince(scrollTick) > AUTOSCROLL_PAUSE) {
            Scroller()->ScrollBy(stepX, stepY); __test;
            scrollTick = WinTickCount();
        }
    __point
        __repair;
        __report;
    __treat
    return more || autoScroll;
}

/// A tool that draws over the document takes that away while the picture moves under it.
void TEdcDocument::HideGesture(bool on)
{
    if (autoScroll || (leftDown == BUTTON_UP && rightDown == BUTTON_UP))
        return;
    __enter
        if (!on)
            UpdateWindow();
        CallTool(on ? TOOL_OUTSIDE : TOOL_INSIDE, 0, lastPoint); __test;
    __point
    __treat
}

void TEdcDocument::EvMouseWheel(unsigned keys, TPoint point, double notchesX, double notchesY)
{
    if (locked != 0)
        return;
    __enter
        if (!(keys & WIN_KEY_CTRL)) {
            HideGesture(true); __test;
            TWindow::EvMouseWheel(keys, point, notchesX, notchesY); __test;
            HideGesture(false); __test;
        } else if (path && leftDown == BUTTON_UP && rightDown == BUTTON_UP) {
            ZoomAt(point, notchesY); __test;
        }
    __point
        __repair;
        __report;
    __treat
}

/// Sets the free percentage of the view; the point of the document under the pointer stays there. Parts of a
/// notch, as finer wheels send them, are kept until they make a percent.
void TEdcDocument::ZoomAt(TPoint point, double notches)
{
    __enter
        if (std::isfinite(notches))
            wheelRest = std::clamp(wheelRest + notches, -WHEEL_MOST, WHEEL_MOST);
        int former = CurrentZoom().Percent();
        int wanted = EdcNearest(former * std::pow(WHEEL_FACTOR, wheelRest));
        if (wanted == former && std::fabs(wheelRest) >= 1)
            wanted += wheelRest > 0 ? 1 : -1;
        if (wanted != former) {
            double before = scale;
            TPoint under = ToDocument(point);
            wheelRest = 0;
            CurrentZoom().SetCustom(std::max(1, wanted));
            Refresh(EDC_LAYOUT); __test;
            TPoint moved = {EdcNearest(under.x * scale / before), EdcNearest(under.y * scale / before)};
            if (Scroller())
                Scroller()->ScrollTo(moved.x + FRAME - point.x, moved.y + FRAME - point.y);
        }
    __point
    __treat
}

void TEdcDocument::EvSize(TSizeKind kind, TSize)
{
    if (kind == WIN_SIZE_MINIMIZED || kind == WIN_SIZE_HIDDEN)
        return;
    __enter
        SetScroll(StandsAt());
        Refresh(EDC_LAYOUT); __test;
    __point
        __repair;
        __report;
    __treat
}

void TEdcDocument::EvSetFocus()
{
    __enter
        Invalidate();
    __point
        __repair;
        __report;
    __treat
}

/// A key that has a command of its own comes here while a button is down: Esc takes the gesture back then, and
/// closes the block otherwise.
void TEdcDocument::EvKeyDown(TVirtualKey key, unsigned)
{
    static const struct {
        TVirtualKey key;
        TBar bar;
        TScrollCode code;
    } scrolls[] = {
        {WIN_VK_PRIOR, WIN_BAR_VERTICAL, WIN_SCROLL_PAGEUP},
        {WIN_VK_NEXT, WIN_BAR_VERTICAL, WIN_SCROLL_PAGEDOWN},
        {WIN_VK_END, WIN_BAR_VERTICAL, WIN_SCROLL_BOTTOM},
        {WIN_VK_HOME, WIN_BAR_VERTICAL, WIN_SCROLL_TOP},
        {WIN_VK_LEFT, WIN_BAR_HORIZONTAL, WIN_SCROLL_LINEUP},
        {WIN_VK_RIGHT, WIN_BAR_HORIZONTAL, WIN_SCROLL_LINEDOWN},
        {WIN_VK_UP, WIN_BAR_VERTICAL, WIN_SCROLL_LINEUP},
        {WIN_VK_DOWN, WIN_BAR_VERTICAL, WIN_SCROLL_LINEDOWN},
    };
    if (locked != 0)
        return;
    __enter
        if (key == WIN_VK_ESCAPE) {
            EndGesture();
            Refresh(0); __test;
        }
        for (const auto &scroll : scrolls)
            if (scroll.key == key) {
                HideGesture(true); __test;
                ScrollMessage(scroll.bar, scroll.code); __test;
                HideGesture(false); __test;
            }
    __point
        __repair;
        __report;
    __treat
}
