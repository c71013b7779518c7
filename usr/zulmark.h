// What the numbered things of a plan have in common: the marker with the number, and the font and the smallest
// sizes by which they stay readable at every zoom.
#ifndef USR_ZULMARK_H
#define USR_ZULMARK_H

#include "usr/edcdraw.h"

/// Kinds of sprites.
enum { ZUL_EMITTER = 2003, ZUL_AIRHEATER = 2503, ZUL_HOLE = 3003, ZUL_ZONE = 5003 };
/// Layers.
enum { ZUL_EMITTERS = 2001, ZUL_AIRHEATERS = 2501, ZUL_HOLES = 3001, ZUL_ZONES = 5001 };

/// The number of a thing on its plan.
class TZulLabel
{
public:
    void Set(int number);
    const char *Text() const { return text; }
    void Paint(TDC &dc, const TFont &font, TPoint centre, TColor color) const; // centred, no ground

private:
    char text[12] = "";
};

/// A layer of numbered sprites: numbers them in the order of creation at each layout.
class TZulMarkedLayer : public TEdcDrawLayer
{
public:
    using TEdcDrawLayer::TEdcDrawLayer;
    void SetFont(const char *name, int size); // px; 0 counts as 1; the name stays the caller's
    /// px; a thin line is at least 1 wide, a thick one 2 more than a thin one. x and y apart.
    void SetMinSizes(TSize thin, TSize thick);
    TFont Font() const;

    int minThin = 1, minThinY = 1;   // px
    int minThick = 3, minThickY = 3; // px
    int markerX = 0, markerY = 0;    // px, half sizes of the marker

protected:
    /// Width of a number of as many digits as `count` has, and height of the font, px.
    TSize NumberSize(TDC &dc, int count) const;
    /// A marker round a number, of one physical size in both directions.
    void MakeRoundMarker(TDC &dc, int count);

    const char *fontName = "Arial"; // view
    int32_t fontSize = 1;           // px
};

/// Font and sizes of a layer's marks on the device at the view's scale: 8 pt, lines of 1 and 3 pt at least.
void ZulSizeMarks(TZulMarkedLayer &layer, const TDC &dc, double scale);

/// a^2 (x - cx)^2 + b^2 (y - cy)^2 <= a^2 b^2 for the half sizes a and b.
bool ZulInEllipse(TPoint point, TPoint centre, int a, int b);
/// A rectangle with rounded corners, `x` and `y` being the whole axes of their ellipse, in the pen and brush
/// set.
void ZulRoundRect(TDC &dc, const TRect &rect, int x, int y);
/// A filled ellipse of those half sizes with a thin outline, the label in it.
void ZulPaintMarker(TDC &dc, TPoint centre, int a, int b, TColor line, TColor fill);

#endif
