#include "win/dc.h"
#include <algorithm>
#include <cstdint>

namespace
{

int Limited(int64_t place)
{
    return static_cast<int>(std::clamp<int64_t>(place, -WIN_FAR, WIN_FAR));
}

} // namespace

TPoint TDC::ToSurface(TPoint p) const
{
    const int64_t x = p.x;
    const int64_t y = p.y;
    const int64_t turnedX[] = {x, y, -x, -y};
    const int64_t turnedY[] = {y, -x, -y, x};
    return {Limited(turnedX[state.turn] + state.viewport.x), Limited(turnedY[state.turn] + state.viewport.y)};
}

/// Pixels turn as pixels: the last one inside stays the last one inside.
TRect TDC::ToSurface(const TRect &rect) const
{
    const int64_t l = rect.left;
    const int64_t t = rect.top;
    const int64_t r = rect.right;
    const int64_t b = rect.bottom;
    const int64_t lefts[] = {l, t, 1 - r, 1 - b};
    const int64_t tops[] = {t, 1 - r, 1 - b, l};
    const int64_t rights[] = {r, b, 1 - l, 1 - t};
    const int64_t bottoms[] = {b, 1 - l, 1 - t, r};
    const TPoint &at = state.viewport;
    const int i = state.turn;
    return {Limited(lefts[i] + at.x), Limited(tops[i] + at.y), Limited(rights[i] + at.x),
            Limited(bottoms[i] + at.y)};
}

TPoint TDC::SixteenthsToSurface(TPoint p) const
{
    const int64_t x = p.x;
    const int64_t y = p.y;
    const int64_t turnedX[] = {x, y, 16 - x, 16 - y};
    const int64_t turnedY[] = {y, 16 - x, 16 - y, x};
    return {Limited(turnedX[state.turn] + int64_t(16) * state.viewport.x),
            Limited(turnedY[state.turn] + int64_t(16) * state.viewport.y)};
}

void TDC::SetClip(const TRect &rect)
{
    state.clip = ToSurface(rect);
    state.clipped = true;
}

int TDC::TextWidth(const char *text, int length)
{
    int width = 0;
    for (int i = 0; i < length; ++i)
        width += CharWidth(static_cast<unsigned char>(text[i]));
    return width;
}

void TDC::Line(TPoint from, TPoint to)
{
    const TPoint ends[] = {from, to};
    Polyline(ends, 2);
}
