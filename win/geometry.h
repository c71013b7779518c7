// Points, sizes, rectangles and colours of the window system layer. All lengths are device pixels, y down.
#ifndef WIN_GEOMETRY_H
#define WIN_GEOMETRY_H

#include <cstdint>

struct TPoint {
    int x = 0;
    int y = 0;

    bool operator==(const TPoint &) const = default;
    TPoint operator+(const TPoint &p) const { return {x + p.x, y + p.y}; }
    TPoint operator-(const TPoint &p) const { return {x - p.x, y - p.y}; }
};

struct TSize {
    int cx = 0;
    int cy = 0;

    bool operator==(const TSize &) const = default;
};

/// Left and top edges belong to the rectangle, right and bottom edges do not.
struct TRect {
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;

    bool operator==(const TRect &) const = default;
    int Width() const { return right - left; }
    int Height() const { return bottom - top; }
    bool IsEmpty() const { return right <= left || bottom <= top; }
    TPoint TopLeft() const { return {left, top}; }
    TPoint BottomRight() const { return {right, bottom}; }
    bool Contains(const TPoint &p) const { return p.x >= left && p.x < right && p.y >= top && p.y < bottom; }
    TRect Normalized() const; // edges swapped where they stand the wrong way round
    TRect Offset(int dx, int dy) const { return {left + dx, top + dy, right + dx, bottom + dy}; }
    TRect Inflated(int dx, int dy) const { return {left - dx, top - dy, right + dx, bottom + dy}; }
    TRect operator&(const TRect &r) const; // the common part; empty and (0, 0, 0, 0) where there is none
    TRect operator|(const TRect &r) const; // the smallest that holds both; an empty one adds nothing
};

struct TColor {
    uint8_t red = 0;
    uint8_t green = 0;
    uint8_t blue = 0;

    bool operator==(const TColor &) const = default;
};

inline constexpr TColor WIN_BLACK = {0, 0, 0};
inline constexpr TColor WIN_WHITE = {255, 255, 255};

#endif
