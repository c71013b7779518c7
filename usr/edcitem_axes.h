// What the sources of the axes share: how the numbers of one axis are shown, apart from any device.
#ifndef USR_EDCITEM_AXES_H
#define USR_EDCITEM_AXES_H

#include "usr/edcitem.h"

/// How an axis shows its numbers: a label is the value divided by 10^exponent.
struct TEdcTickNumbers {
    double span = 0;  // model units, the longer half axis
    int exponent = 0; // the shown one
    int places = 0;   // labels that so many digits can tell apart along the span
    int digits = 0;   // digits of the longest label, noughts in front included
};
/// A span without a decimal exponent (0, or at the ends of what a double holds) has no places.
TEdcTickNumbers EdcTickNumbers(double min, double max, int digits, int exponent);

/// The distance of ticks, 1, 2 or 5 times a power of ten, with at most `count` of them along the span; 0 where
/// there is no room for any.
double EdcTickStep(double span, int count);

/// The multiples of a step within a range. A multiple that rounding put beyond an end is one of them.
struct TEdcMultiples {
    double step;
    double first; // in steps
    double end;   // model units; multiples stay below this

    TEdcMultiples(double min, double max, double aStep);
    double Value(double n) const { return n * step; } // steps to model units, never a negative 0
};

/// A label at each multiple, the last one at the head of the chain. NULL after a failure.
TEdcAxesLabel *EdcMakeTicks(double min, double max, double step, int exponent);
void EdcFreeTicks(TEdcAxesLabel *&chain);

/// Title and exponent note of an axis, cut so that the note stays whole.
void EdcComposeTitle(char (&text)[TEdcAxes::TITLEMAX], const char *title, int exponent);

/// Measures that layout and painting must agree on, px.
struct TEdcAxesMetrics {
    TFont font;  // of the labels
    int line;    // width of pens
    int strokeX; // length of the strokes on the x axis
    int strokeY;

    TEdcAxesMetrics(const TEdcAxes &axes, const TDC &dc);
    /// Pixels of a stroke on its axis and to the side of the labels; the others lie on the other side.
    static int Outside(int stroke) { return stroke - stroke / 2; }
};

#endif
