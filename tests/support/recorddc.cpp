#include "support/recorddc.h"
#include "lib/charstr.h"
#include "lib/disk.h"
#include <algorithm>
#include <cstdio>

namespace
{

const char *const mixNames[] = {"",         "black", "notmerge",    "masknot", "notcopy", "maskpennot",
                                "invert",   "xor",   "notmask",     "mask",    "notxor",  "nop",
                                "mergenot", "copy",  "mergepennot", "merge",   "white"};
const char *const hatchNames[] = {"horizontal", "vertical", "fdiagonal", "bdiagonal", "cross", "diagcross"};

std::string Text(TPoint p)
{
    return " " + std::to_string(p.x) + "," + std::to_string(p.y);
}

std::string Text(const TRect &r)
{
    return Text(r.TopLeft()) + "," + Text(r.BottomRight()).substr(1);
}

std::string Text(TColor color)
{
    char hex[8];
    snprintf(hex, sizeof hex, "%02x%02x%02x", color.red, color.green, color.blue);
    return hex;
}

std::string Utf8(unsigned char c)
{
    if (c < 0x20 || c == 0x7F) {
        char code[8];
        snprintf(code, sizeof code, "\\x%02x", c);
        return code;
    }
    if (c == '"' || c == '\\')
        return {'\\', static_cast<char>(c)};
    const char single[] = {static_cast<char>(c), EOS};
    char utf8[8];
    TextToUtf8(utf8, single, sizeof utf8);
    return utf8;
}

std::string Quoted(const char *text, int length)
{
    std::string s = " \"";
    for (int i = 0; i < length; ++i)
        s += Utf8(static_cast<unsigned char>(text[i]));
    return s + "\"";
}

std::string Background(const TDCState &state)
{
    return state.opaque ? " on " + Text(state.background) : "";
}

std::string Pen(const TDCState &state)
{
    const TPen &pen = state.pen;
    if (pen.style == WIN_PEN_NONE)
        return " pen none";
    std::string s = " pen " + Text(pen.color);
    if (pen.width > 1)
        s += " " + std::to_string(pen.width);
    if (pen.style == WIN_PEN_SOLID)
        return s;
    return s + (pen.style == WIN_PEN_DASH ? " dash" : " dot") + Background(state);
}

std::string Cells(const uint8_t (&pattern)[8])
{
    std::string s;
    for (uint8_t row : pattern) {
        char hex[4];
        snprintf(hex, sizeof hex, "%02x", row);
        s += hex;
    }
    return s;
}

std::string Brush(const TDCState &state, const TBrush &brush)
{
    if (brush.style == WIN_BRUSH_NONE)
        return " brush none";
    if (brush.style == WIN_BRUSH_SOLID)
        return " brush " + Text(brush.color);
    std::string s;
    if (brush.style == WIN_BRUSH_HATCH)
        s = std::string(" brush hatch ") + hatchNames[brush.hatch] + " " + Text(brush.color) +
            Background(state);
    else
        s = " brush pattern " + Text(brush.color) + "/" + Text(brush.back) + " " + Cells(brush.pattern);
    return state.brushOrigin == TPoint() ? s : s + " at" + Text(state.brushOrigin);
}

std::string Mix(const TDCState &state)
{
    return state.mix == WIN_MIX_COPY ? "" : std::string(" ") + mixNames[state.mix];
}

std::string Font(const TFont &font)
{
    std::string s = " " + font.face + " " + std::to_string(font.height);
    if (font.weight == 700)
        s += " bold";
    else if (font.weight != 400)
        s += " weight " + std::to_string(font.weight);
    if (font.italic)
        s += " italic";
    return font.underline ? s + " underline" : s;
}

std::string End(const TDCState &state)
{
    std::string s = state.clipped ? " clip" + Text(state.clip) : "";
    if (state.turn != 0)
        s += " turn " + std::to_string(state.turn);
    return s + "\n";
}

/// The em square of a font, px.
int Em(const TFont &font)
{
    return std::max(1, font.height < 0 ? -font.height : (4 * font.height + 3) / 5);
}

} // namespace

void TRecordDC::SelectPalette(const TPalette &entries)
{
    calls += "Palette " + std::to_string(entries.entries.size()) + "\n";
}

TFontMetrics TRecordDC::FontMetrics()
{
    const int em = Em(state.font);
    return {.height = em + em / 4, .ascent = em, .descent = em / 4};
}

int TRecordDC::CharWidth(unsigned char c)
{
    const int em = Em(state.font);
    int quarters = 2;
    if (c == 'i' || c == 'l' || c == '.' || c == ',' || c == ' ')
        quarters = 1;
    else if (c == 'm' || c == 'W')
        quarters = 3;
    return (quarters * em + 2) / 4 + (state.font.weight >= 700 ? 1 : 0);
}

void TRecordDC::Polyline(const TPoint *points, int count)
{
    calls += count == 2 ? "Line" : "Polyline";
    for (int i = 0; i < count; ++i)
        calls += Text(ToSurface(points[i]));
    calls += Pen(state) + Mix(state) + End(state);
}

void TRecordDC::Polygon(const TPoint *points, int count)
{
    calls += "Polygon";
    for (int i = 0; i < count; ++i)
        calls += Text(ToSurface(points[i]));
    calls += Pen(state) + Brush(state, state.brush) + Mix(state) + End(state);
}

void TRecordDC::Rectangle(const TRect &rect)
{
    calls += "Rect" + Text(ToSurface(rect)) + Pen(state) + Brush(state, state.brush) + Mix(state) + End(state);
}

void TRecordDC::Ellipse(const TRect &rect)
{
    calls +=
        "Ellipse" + Text(ToSurface(rect)) + Pen(state) + Brush(state, state.brush) + Mix(state) + End(state);
}

void TRecordDC::FillRect(const TRect &rect, const TBrush &brush)
{
    calls += "Fill" + Text(ToSurface(rect)) + Brush(state, brush) + Mix(state) + End(state);
}

void TRecordDC::InvertRect(const TRect &rect)
{
    calls += "Invert" + Text(ToSurface(rect)) + End(state);
}

void TRecordDC::TextOut(int x, int y, const char *text, int length)
{
    calls += "Text" + Text(ToSurface(TPoint{x, y})) + Quoted(text, length) + Font(state.font) + " " +
             Text(state.textColor) + Background(state);
    if (state.align != WIN_TEXT_TOP)
        calls += state.align == WIN_TEXT_BOTTOM ? " bottom" : " baseline";
    calls += End(state);
}

void TRecordDC::StretchBitmap(const TRect &rect, const TBitmap &bitmap)
{
    calls += "Bitmap" + Text(ToSurface(rect)) + " " + std::to_string(bitmap.Width()) + "x" +
             std::to_string(bitmap.Height()) + Mix(state) + End(state);
}

void TRecordDC::Shape(const std::vector<Outline> &outlines, bool winding)
{
    calls += winding ? "Shape winding" : "Shape alternate";
    for (const Outline &outline : outlines) {
        calls += outline.closed ? " closed" : " open";
        for (const TPoint &p : outline.points)
            calls += Text(SixteenthsToSurface(p));
    }
    calls += Pen(state) + Brush(state, state.brush) + Mix(state) + End(state);
}
