// What a device context draws with: pens, brushes, fonts, raster mixes, palettes and bitmaps. Plain values that
// are copied into the context, so nothing has to be selected out again before it dies.
#ifndef WIN_GDI_H
#define WIN_GDI_H

#include "win/geometry.h"
#include <string>
#include <vector>

/// How a drawn pixel meets the one that is there. The numbers are the sixteen Boolean functions of pen P and
/// destination D, in the customary order; drawn twice, the exclusive-or ones restore what was there.
enum TMix {
    WIN_MIX_BLACK = 1,        // 0
    WIN_MIX_NOTMERGE = 2,     // not (P or D)
    WIN_MIX_MASKNOT = 3,      // not P and D
    WIN_MIX_NOTCOPY = 4,      // not P
    WIN_MIX_MASKPENNOT = 5,   // P and not D
    WIN_MIX_INVERT = 6,       // not D
    WIN_MIX_XOR = 7,          // P xor D
    WIN_MIX_NOTMASK = 8,      // not (P and D)
    WIN_MIX_MASK = 9,         // P and D
    WIN_MIX_NOTXOR = 10,      // not (P xor D)
    WIN_MIX_NOP = 11,         // D
    WIN_MIX_MERGENOT = 12,    // not P or D
    WIN_MIX_COPY = 13,        // P
    WIN_MIX_MERGEPENNOT = 14, // P or not D
    WIN_MIX_MERGE = 15,       // P or D
    WIN_MIX_WHITE = 16,       // 1
};

enum TPenStyle { WIN_PEN_SOLID, WIN_PEN_DASH, WIN_PEN_DOT, WIN_PEN_NONE };

struct TPen {
    TColor color = WIN_BLACK;
    int width = 1; // px; 0 counts as 1
    TPenStyle style = WIN_PEN_SOLID;

    bool operator==(const TPen &) const = default;
};

enum TBrushStyle { WIN_BRUSH_SOLID, WIN_BRUSH_NONE, WIN_BRUSH_HATCH, WIN_BRUSH_PATTERN };
enum THatch {
    WIN_HATCH_HORIZONTAL,
    WIN_HATCH_VERTICAL,
    WIN_HATCH_FDIAGONAL,
    WIN_HATCH_BDIAGONAL,
    WIN_HATCH_CROSS,
    WIN_HATCH_DIAGCROSS
};

/// Hatches and patterns are cells of 8 x 8 device pixels, laid from the context's brush origin. A pattern has a
/// bit for each pixel, row by row, the highest bit leftmost: set bits in `color`, clear bits in `back`. A hatch
/// leaves clear bits alone in transparent mode and fills them with the background colour in opaque mode.
struct TBrush {
    TBrushStyle style = WIN_BRUSH_SOLID;
    TColor color = WIN_WHITE;
    TColor back = WIN_WHITE;
    THatch hatch = WIN_HATCH_HORIZONTAL;
    uint8_t pattern[8] = {};

    bool operator==(const TBrush &) const = default;
};

inline TBrush NoBrush()
{
    return {.style = WIN_BRUSH_NONE};
}
inline TBrush SolidBrush(TColor color)
{
    return {.style = WIN_BRUSH_SOLID, .color = color};
}
inline TPen NoPen()
{
    return {.style = WIN_PEN_NONE};
}

/// A font by the height of its cell (`height` above 0: ascent plus descent, never taller than asked) or of its
/// characters (`height` below 0: the em square). Equal heights give whole pixel widths, and the width of a text
/// is the sum of the widths of its characters: no kerning, full hinting.
struct TFont {
    std::string face = "Arial"; // in the system's character set
    int height = -13;           // px, not 0
    int weight = 400;           // 700 is bold
    bool italic = false;
    bool underline = false;

    bool operator==(const TFont &) const = default;
};

struct TFontMetrics {
    int height = 0; // px, ascent plus descent
    int ascent = 0;
    int descent = 0;
};

/// Colours that indexed bitmaps refer to.
struct TPalette {
    std::vector<TColor> entries;
};

/// Bitmap of one byte a pixel, an index into its colour table; rows from the top. A new one is all 0.
/// The constructor throws std::bad_alloc where the bitmap cannot be had; the extents must not be negative.
class TBitmap
{
public:
    TBitmap(int width, int height);

    int Width() const { return width; }
    int Height() const { return height; }
    uint8_t *Row(int y) { return pixels.data() + static_cast<size_t>(y) * static_cast<size_t>(width); }
    const uint8_t *Row(int y) const
    {
        return pixels.data() + static_cast<size_t>(y) * static_cast<size_t>(width);
    }
    uint8_t Pixel(int x, int y) const { return Row(y)[x]; }
    void SetPixel(int x, int y, uint8_t index) { Row(y)[x] = index; }
    /// Takes a copy of the first 256 entries; a pixel beyond the table is black.
    void SetPalette(const TPalette &palette);
    const std::vector<TColor> &Colors() const { return colors; }

private:
    int width;
    int height;
    std::vector<uint8_t> pixels; // width * height
    std::vector<TColor> colors;
};

#endif
