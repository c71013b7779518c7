// Fonts of the toolkit behind the values that contexts are given. A report asks the width of each of its
// characters, so widths lie in a table that fills as it is asked; a screen shows some ten fonts at a time, and
// a cache keeps the last few dozen.
#ifndef WIN_FONTS_H
#define WIN_FONTS_H

#include "win/gdi.h"
#include <array>
#include <cstdint>
#include <memory>

struct TNativeFont; // a font of the toolkit

class TFontTable
{
public:
    explicit TFontTable(const TFont &font);
    ~TFontTable();
    TFontTable(const TFontTable &) = delete;
    TFontTable &operator=(const TFontTable &) = delete;

    /// Advance in px, a whole number; the same alone as within a text.
    int Width(unsigned char c) { return widths[c] >= 0 ? widths[c] : Measure(c); }
    const TFontMetrics &Metrics() const { return metrics; }
    int Em() const { return em; } // px
    const TNativeFont *Native() const { return native.get(); }

private:
    struct Deleter {
        void operator()(TNativeFont *font) const;
    };
    int Measure(unsigned char c);

    std::unique_ptr<TNativeFont, Deleter> native;
    int em = 1;
    TFontMetrics metrics;
    std::array<int16_t, 256> widths; // px; -1: not yet asked
};

/// The table of a font, made on first use. Valid until the next call. Needs an application.
TFontTable &FontTable(const TFont &font);
int FontTablesInCache();

/// The Unicode that stands for a character when it is drawn: what has no picture (control characters, the five
/// open places of the set) is a blank, and a soft hyphen is a hyphen.
char16_t DrawnCode(unsigned char c);

/// The family that the toolkit has found for a face, in UTF-8.
std::string ResolvedFamily(const TFont &font);

#endif
