// What device contexts draw on. One painter a surface, with one owner context at a time; it ends before the
// image goes and before its pixels are read or shown.
#ifndef WIN_SURFACE_H
#define WIN_SURFACE_H

#include "win/geometry.h"
#include "win/native.h"
#include <functional>
#include <memory>

class TDC;

class TSurface
{
public:
    /// A true-colour image, white. Throws std::bad_alloc where it cannot be had; extents below 1 count as 1.
    static std::unique_ptr<TSurface> Image(TSize size, int dpi);
    /// Resolution without pixels: measures as the others do, drawing goes nowhere.
    static std::unique_ptr<TSurface> Measuring(int dpi);
    /// A device of the toolkit (printer, PDF) and the painter that the print job has begun on it; both are
    /// views.
    static std::unique_ptr<TSurface> Paper(TNativePainter *painter, int dpiX, int dpiY, TPoint physicalOffset);
    virtual ~TSurface() = default;

    virtual int DpiX() const = 0;
    virtual int DpiY() const = 0;
    virtual bool HasMixes() const = 0;
    virtual TPoint PhysicalOffset() const = 0;

    // Images only; the others answer 0 and do nothing.
    virtual TSize Size() const = 0;
    /// A new extent and resolution; contexts on the surface stay good. What fits keeps its pixels, the rest is
    /// white. Throws std::bad_alloc where the image cannot be had, the old one stays then.
    virtual void Resize(TSize size, int dpi) = 0;
    virtual TColor Pixel(TPoint at) = 0;
    virtual bool SavePng(const char *path) = 0;
    /// Moves the picture by (dx, dy); what is uncovered keeps its old pixels.
    virtual void Shift(int dx, int dy) = 0;
    /// Paints `part` of the image through a painter of a widget whose pixels are `ratio` device pixels wide.
    virtual void BlitTo(TNativePainter *painter, const TRect &part, double ratio) = 0;
    virtual void EndPainting() = 0;

    // For the contexts.
    /// Where drawing can be seen; empty on a measuring surface.
    virtual TRect Reach() const = 0;
    /// The painter, clipped to `clip` (NULL: to nothing), begun where it was not. Whoever draws sets pen, brush
    /// and mix and leaves it with no transform and no smoothing. NULL where nothing is painted.
    virtual TNativePainter *Painter(const TRect *clip) = 0;
    virtual void AddDamage(const TRect &rect) = 0; // images only

    /// Bounds of what was drawn since the last call; empty where nothing was.
    virtual TRect TakeDamage() = 0;
    /// Called when drawing makes the damage non-empty; a window asks for a paint event then.
    std::function<void()> onDamage;
};

#endif
