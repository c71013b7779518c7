// The device context: everything above this layer draws through it, in device pixels. It keeps its state as
// plain data; what draws is behind virtual operations, so a test can record the calls instead of painting them.
//
// Surfaces: a window's backing image, a bitmap in memory, the printer or a PDF, and a measuring surface that
// has a resolution and no pixels. Several contexts may share a surface: each applies its own state when it
// draws.
#ifndef WIN_DC_H
#define WIN_DC_H

#include "win/gdi.h"
#include <memory>

class TSurface;
class TWindow;

inline constexpr int WIN_FAR = (1 << 30) - (1 << 16); // px from the surface's corner; nothing is placed beyond

enum TTextAlign { WIN_TEXT_TOP, WIN_TEXT_BOTTOM, WIN_TEXT_BASELINE }; // what of the text stands at the given y

struct TDCState {
    TPoint viewport;    // where (0, 0) of the drawing lies on the surface
    int turn = 0;       // quarter turns counter-clockwise of all drawing about the viewport origin, 0 to 3
    TPoint brushOrigin; // on the surface, where the cells of hatches and patterns start
    TPen pen;
    TBrush brush;
    TFont font;
    TMix mix = WIN_MIX_COPY;
    bool opaque = true; // background mode: gaps of pens and hatches and the cells of text are filled
    TColor textColor = WIN_BLACK;
    TColor background = WIN_WHITE;
    TTextAlign align = WIN_TEXT_TOP;
    bool clipped = false;
    TRect clip; // on the surface
};

class TDC
{
public:
    TDC() = default;
    TDC(const TDC &) = delete;
    TDC &operator=(const TDC &) = delete;
    virtual ~TDC() = default;

    // The device.
    virtual int DpiX() const = 0; // logical pixels per inch
    virtual int DpiY() const = 0;
    virtual bool HasPalette() const { return false; }
    virtual bool HasMixes() const { return true; } // false on paper: every mix paints as WIN_MIX_COPY there
    virtual TPoint PhysicalOffset() const { return {}; } // the printable area's corner on the paper
    virtual void SelectPalette(const TPalette &) {}      // selects and realizes; only where HasPalette()

    // State. Each setter returns the former value.
    const TDCState &State() const { return state; }
    void SetState(const TDCState &s) { state = s; }
    TPoint SetViewportOrg(TPoint origin) { return Swap(state.viewport, origin); }
    int SetTurn(int quarters) { return Swap(state.turn, quarters & 3); }
    TPoint SetBrushOrg(TPoint origin) { return Swap(state.brushOrigin, origin); }
    TPen SetPen(const TPen &pen) { return Swap(state.pen, pen); }
    TBrush SetBrush(const TBrush &brush) { return Swap(state.brush, brush); }
    TFont SetFont(const TFont &font) { return Swap(state.font, font); }
    TMix SetMix(TMix mix) { return Swap(state.mix, mix); }
    bool SetOpaque(bool on) { return Swap(state.opaque, on); }
    TColor SetTextColor(TColor color) { return Swap(state.textColor, color); }
    TColor SetBackground(TColor color) { return Swap(state.background, color); }
    TTextAlign SetTextAlign(TTextAlign align) { return Swap(state.align, align); }
    void SetClip(const TRect &rect); // relative to the viewport; what is drawn outside is lost
    void ClearClip() { state.clipped = false; }

    // Measuring, with the font that is set.
    virtual TFontMetrics FontMetrics() = 0;
    virtual int CharWidth(unsigned char c) = 0;  // px
    int TextWidth(const char *text, int length); // the sum of the single widths

    // Drawing, with pen, brush, font and mix that are set, relative to the viewport.
    virtual void Polyline(const TPoint *points, int count) = 0; // the last point is drawn too
    virtual void Polygon(const TPoint *points, int count) = 0;  // closed, filled by alternation
    /// Outline from (left, top) to (right - 1, bottom - 1), filled within it; without a pen all is filled.
    virtual void Rectangle(const TRect &rect) = 0;
    virtual void Ellipse(const TRect &rect) = 0;                       // within the same corners
    virtual void FillRect(const TRect &rect, const TBrush &brush) = 0; // no outline
    virtual void InvertRect(const TRect &rect) = 0;                    // WIN_MIX_INVERT; nothing on paper
    /// Windows-1252. Text is subject to no mix: it is always copied.
    virtual void TextOut(int x, int y, const char *text, int length) = 0;
    /// The bitmap over `rect`, nearest neighbour, in the mix that is set; lossless on paper.
    virtual void StretchBitmap(const TRect &rect, const TBitmap &bitmap) = 0;
    /// Vector strokes for metafiles: outlines in 1/16 px, each closed or open, in one fill by `winding` or
    /// alternation; smooth edges where the device has them.
    struct Outline {
        std::vector<TPoint> points; // 1/16 px
        bool closed = false;
    };
    virtual void Shape(const std::vector<Outline> &outlines, bool winding) = 0;

    void Line(TPoint from, TPoint to);

    /// Where a pixel or a rectangle of the drawing lies on the surface: turned, then moved to the viewport.
    /// What lies farther out than WIN_FAR is drawn in to it, so that no sum overflows.
    TPoint ToSurface(TPoint p) const;
    TRect ToSurface(const TRect &rect) const;
    /// Likewise for a place of Shape(), in 1/16 px; (0, 0) is the corner of a pixel here.
    TPoint SixteenthsToSurface(TPoint p) const;

protected:
    TDCState state;

private:
    template <class T>
    static T Swap(T &field, T value)
    {
        T former = field;
        field = value;
        return former;
    }
};

/// A context on a surface. The surface must outlive it.
class TSurfaceDC : public TDC
{
public:
    explicit TSurfaceDC(TSurface &surface);
    ~TSurfaceDC() override;
    int DpiX() const override;
    int DpiY() const override;
    bool HasMixes() const override;
    TPoint PhysicalOffset() const override;
    TFontMetrics FontMetrics() override;
    int CharWidth(unsigned char c) override;
    void Polyline(const TPoint *points, int count) override;
    void Polygon(const TPoint *points, int count) override;
    void Rectangle(const TRect &rect) override;
    void Ellipse(const TRect &rect) override;
    void FillRect(const TRect &rect, const TBrush &brush) override;
    void InvertRect(const TRect &rect) override;
    void TextOut(int x, int y, const char *text, int length) override;
    void StretchBitmap(const TRect &rect, const TBitmap &bitmap) override;
    void Shape(const std::vector<Outline> &outlines, bool winding) override;

private:
    TSurface &surface;
};

/// Measures like a screen (or any device) of the given resolution and draws nowhere.
class TMeasureDC : public TSurfaceDC
{
public:
    explicit TMeasureDC(int dpi);
    ~TMeasureDC() override;

private:
    explicit TMeasureDC(std::unique_ptr<TSurface> own);
    std::unique_ptr<TSurface> own;
};

/// Draws into a true-colour image in memory, white at first. Throws std::bad_alloc where it cannot be had.
class TMemoryDC : public TSurfaceDC
{
public:
    TMemoryDC(TSize size, int dpi);
    ~TMemoryDC() override;
    TColor Pixel(TPoint at) const;  // surface coordinates; black outside
    bool SavePng(const char *path); // for tools and tests; false where the file cannot be written

private:
    explicit TMemoryDC(std::unique_ptr<TSurface> own);
    std::unique_ptr<TSurface> own;
};

/// Draws straight onto a window's client area, outside its paint event; the screen follows at the next turn of
/// the message loop. On a window that is not on screen it measures and draws nowhere.
class TClientDC : public TSurfaceDC
{
public:
    explicit TClientDC(TWindow &window);
};

#endif
