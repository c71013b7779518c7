#include "win/window.h"

#include <algorithm>
#include <cmath>

namespace
{
constexpr double WHEEL_LINES = 3; // lines a notch

int Limited(int64_t pos, int range)
{
    return static_cast<int>(std::clamp<int64_t>(pos, 0, range));
}

/// Where a message takes the position.
int64_t Target(TScrollCode code, int pos, int range, int line, int page)
{
    switch (code) {
    case WIN_SCROLL_LINEUP:
        return int64_t{pos} - line;
    case WIN_SCROLL_LINEDOWN:
        return int64_t{pos} + line;
    case WIN_SCROLL_PAGEUP:
        return int64_t{pos} - page;
    case WIN_SCROLL_PAGEDOWN:
        return int64_t{pos} + page;
    case WIN_SCROLL_TOP:
        return 0;
    case WIN_SCROLL_BOTTOM:
        return range;
    }
    return pos;
}

/// Whole units of a way that a fine wheel makes in fractions; the rest waits for the next turn.
int WholeSteps(double way, double &rest)
{
    double sum = rest + way;
    double whole = std::clamp(std::trunc(sum), -1e9, 1e9);
    rest = std::clamp(sum - whole, -1.0, 1.0);
    return static_cast<int>(whole);
}
} // namespace

TScroller::TScroller(TWindow &aWindow, int aXUnit, int aYUnit, int aXRange, int aYRange)
    : window(aWindow), xUnit(std::max(1, aXUnit)), yUnit(std::max(1, aYUnit)), xRange(std::max(1, aXRange)),
      yRange(std::max(1, aYRange))
{
}

int TScroller::XPage() const
{
    return std::max(1, window.GetClientRect().Width() / xUnit);
}

int TScroller::YPage() const
{
    return std::max(1, window.GetClientRect().Height() / yUnit);
}

void TScroller::SetLine(int x, int y)
{
    xLine = std::max(1, x);
    yLine = std::max(1, y);
    window.ShowBars();
}

void TScroller::SetRange(int x, int y)
{
    xRange = std::max(1, x);
    yRange = std::max(1, y);
    ScrollTo(xPos, yPos);
    window.ShowBars();
}

void TScroller::ScrollTo(int x, int y)
{
    int newX = Limited(x, xRange);
    int newY = Limited(y, yRange);
    if (newX == xPos && newY == yPos)
        return;
    int64_t dx = (int64_t{xPos} - newX) * xUnit;
    int64_t dy = (int64_t{yPos} - newY) * yUnit;
    xPos = newX;
    yPos = newY;
    window.ShowBars();
    window.ShiftPicture(dx, dy);
}

void TScroller::ScrollBy(int dx, int dy)
{
    ScrollTo(Limited(int64_t{xPos} + dx, xRange), Limited(int64_t{yPos} + dy, yRange));
}

void TWindow::ScrollMessage(TBar bar, TScrollCode code)
{
    if (bar == WIN_BAR_BOTH) {
        ScrollMessage(WIN_BAR_HORIZONTAL, code);
        ScrollMessage(WIN_BAR_VERTICAL, code);
        return;
    }
    if (!IsScrollBarEnabled(bar))
        return;
    TScroller &s = *scroller;
    bool across = bar == WIN_BAR_HORIZONTAL;
    int pos = across ? s.xPos : s.yPos;
    int range = across ? s.xRange : s.yRange;
    int to =
        Limited(Target(code, pos, range, across ? s.xLine : s.yLine, across ? s.XPage() : s.YPage()), range);
    s.ScrollTo(across ? to : s.xPos, across ? s.yPos : to);
}

void TWindow::EvMouseWheel(unsigned keys, TPoint, double notchesX, double notchesY)
{
    if (!scroller || (keys & WIN_KEY_CTRL))
        return;
    if (keys & WIN_KEY_SHIFT) {
        notchesX += notchesY;
        notchesY = 0;
    }
    if (!IsScrollBarEnabled(WIN_BAR_HORIZONTAL))
        notchesX = 0;
    if (!IsScrollBarEnabled(WIN_BAR_VERTICAL))
        notchesY = 0;
    TScroller &s = *scroller;
    s.ScrollBy(WholeSteps(-notchesX * WHEEL_LINES * s.xLine, s.xRest),
               WholeSteps(-notchesY * WHEEL_LINES * s.yLine, s.yRest));
}
