// Raster mixes, pixel by pixel: the sixteen functions with each kind of brush, and that whatever is drawn twice
// with an inverting mix leaves what was there. On a bitmap and on a window at each display scale.
#include "support/testapp.h"
#include "win/dc.h"
#include "win/surface.h"
#include "win/testdoor.h"
#include "win/window.h"

#include "support/chance.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>

namespace
{
using Picture = std::vector<TColor>;

constexpr TSize EXTENT = {80, 60};

uint8_t Mixed(TMix mix, uint8_t p, uint8_t d)
{
    const int results[] = {0,     0,        ~(p | d), ~p & d, ~p, p & ~d, ~d,    p ^ d, ~(p & d),
                           p & d, ~(p ^ d), d,        ~p | d, p,  p | ~d, p | d, 0xFF};
    return static_cast<uint8_t>(results[mix]);
}

TColor Mixed(TMix mix, TColor p, TColor d)
{
    return {Mixed(mix, p.red, d.red), Mixed(mix, p.green, d.green), Mixed(mix, p.blue, d.blue)};
}

/// A colour of its own for each place, with bits of all kinds.
TColor Ground(int x, int y)
{
    return {static_cast<uint8_t>(x * 37 + y * 11), static_cast<uint8_t>(x * 5 + y * 59),
            static_cast<uint8_t>(x * y * 3 + 17 * x)};
}

void PaintGround(TDC &dc)
{
    const TDCState before = dc.State();
    dc.SetState(TDCState());
    for (int y = 0; y < EXTENT.cy; ++y) {
        for (int x = 0; x < EXTENT.cx; ++x)
            dc.FillRect({x, y, x + 1, y + 1}, SolidBrush(Ground(x, y)));
    }
    dc.SetState(before);
}

Picture PictureOf(const TMemoryDC &dc)
{
    Picture picture;
    for (int y = 0; y < EXTENT.cy; ++y) {
        for (int x = 0; x < EXTENT.cx; ++x)
            picture.push_back(dc.Pixel({x, y}));
    }
    return picture;
}

std::vector<TMix> AllMixes()
{
    std::vector<TMix> mixes;
    for (int mix = WIN_MIX_BLACK; mix <= WIN_MIX_WHITE; ++mix)
        mixes.push_back(static_cast<TMix>(mix));
    return mixes;
}

TBrush Hatch(THatch hatch)
{
    return {.style = WIN_BRUSH_HATCH, .color = {200, 90, 33}, .hatch = hatch};
}

const TBrush PATTERN = {.style = WIN_BRUSH_PATTERN,
                        .color = {250, 3, 128},
                        .back = {15, 240, 99},
                        .pattern = {0x81, 0x42, 0x24, 0x18, 0xF0, 0x0F, 0x55, 0xAA}};

/// A drawing call on a surface of EXTENT.
struct Call {
    const char *name;
    std::function<void(TDC &)> draw;
};

const TPoint crossing[] = {{5, 5}, {70, 50}, {70, 5}, {5, 50}, {5, 5}, {70, 50}};
const TPoint star[] = {{40, 3}, {60, 55}, {8, 20}, {72, 20}, {20, 55}};
const TPoint single[] = {{30, 30}, {30, 30}, {30, 30}};
const TPoint outside[] = {{-2000000000, -1000}, {2000000000, 1060}, {30, -2000000000}};

std::vector<Call> Calls()
{
    static const TBitmap bitmap = [] {
        TBitmap made(7, 5);
        TPalette palette;
        for (int i = 0; i < 35; ++i) {
            palette.entries.push_back(Ground(i, 2 * i));
            made.SetPixel(i % 7, i / 7, static_cast<uint8_t>(i));
        }
        made.SetPalette(palette);
        return made;
    }();
    return {
        {"line",
         [](TDC &dc) {
             dc.Line({3, 40}, {71, 11});
         }},
        {"level line",
         [](TDC &dc) {
             dc.Line({3, 40}, {71, 40});
         }},
        {"polyline through points twice", [](TDC &dc) { dc.Polyline(crossing, 6); }},
        {"polyline of one point", [](TDC &dc) { dc.Polyline(single, 3); }},
        {"polyline far out", [](TDC &dc) { dc.Polyline(outside, 3); }},
        {"polygon", [](TDC &dc) { dc.Polygon(star, 5); }},
        {"polygon far out", [](TDC &dc) { dc.Polygon(outside, 3); }},
        {"rectangle",
         [](TDC &dc) {
             dc.Rectangle({10, 12, 66, 49});
         }},
        {"thin rectangle",
         [](TDC &dc) {
             dc.Rectangle({10, 12, 11, 49});
         }},
        {"rectangle far out",
         [](TDC &dc) {
             dc.Rectangle({-2000000000, 12, 66, 2000000000});
         }},
        {"ellipse",
         [](TDC &dc) {
             dc.Ellipse({10, 12, 66, 49});
         }},
        {"ellipse far out",
         [](TDC &dc) {
             dc.Ellipse({-90000, 12, 90000, 80000});
         }},
        {"fill",
         [](TDC &dc) {
             dc.FillRect({10, 12, 66, 49}, dc.State().brush);
         }},
        {"invert",
         [](TDC &dc) {
             dc.InvertRect({10, 12, 66, 49});
         }},
        {"bitmap",
         [](TDC &dc) {
             dc.StretchBitmap({10, 12, 66, 49}, bitmap);
         }},
        {"shape",
         [](TDC &dc) {
             dc.Shape({{{{160, 160}, {1000, 300}, {500, 800}}, true}, {{{90, 90}, {1100, 700}}, false}}, true);
         }},
    };
}

struct Manner {
    const char *name;
    TPen pen;
    TBrush brush;
    bool opaque;
    void (*more)(TDC &dc);
};

void Nothing(TDC &) {}

std::vector<Manner> Manners()
{
    const TPen thin = {{250, 130, 5}}; // neither leaves all alone with exclusive-or nor with its opposite
    const TPen dotted = {{255, 255, 128}, 1, WIN_PEN_DOT};
    const TPen dashed = {{250, 130, 5}, 1, WIN_PEN_DASH};
    const TPen wide = {{255, 130, 255}, 5};
    const TPen wideDotted = {{250, 130, 5}, 4, WIN_PEN_DOT};
    const TBrush solid = SolidBrush({240, 240, 15});
    return {
        {"thin", thin, solid, true, Nothing},
        {"dotted, gaps left", dotted, NoBrush(), false, Nothing},
        {"dotted, gaps filled", dotted, solid, true, Nothing},
        {"dashed", dashed, PATTERN, false, Nothing},
        {"wide", wide, Hatch(WIN_HATCH_CROSS), false, Nothing},
        {"wide dotted, gaps left", wideDotted, NoBrush(), false, Nothing},
        {"wide dotted, gaps filled", wideDotted, solid, true, Nothing},
        {"no pen, pattern", NoPen(), PATTERN, true,
         [](TDC &dc) {
             dc.SetBrushOrg({3, 5});
         }},
        {"no pen, hatch", NoPen(), Hatch(WIN_HATCH_FDIAGONAL), true, Nothing},
        {"clipped", thin, solid, true,
         [](TDC &dc) {
             dc.SetClip({20, 10, 55, 43});
         }},
        {"turned", thin, solid, true,
         [](TDC &dc) {
             dc.SetViewportOrg({5, 58});
             dc.SetTurn(1);
         }},
    };
}

void Apply(TDC &dc, const Manner &manner, TMix mix)
{
    dc.SetState(TDCState());
    dc.SetPen(manner.pen);
    dc.SetBrush(manner.brush);
    dc.SetOpaque(manner.opaque);
    dc.SetBackground({33, 200, 100});
    dc.SetMix(mix);
    manner.more(dc);
}

/// A call that has nothing to draw in a manner.
bool IsEmpty(const Call &call, const Manner &manner)
{
    const std::string name = call.name;
    if (manner.brush == NoBrush() && name == "fill")
        return true;
    if (manner.pen == NoPen() && name.find("line") != std::string::npos)
        return true;
    return manner.name == std::string("clipped") && name == "thin rectangle";
}

/// Draws every call in every manner twice in each inverting mix. `picture` reads the pixels.
void ExpectErased(TDC &dc, const std::function<Picture()> &picture)
{
    PaintGround(dc);
    const Picture ground = picture();
    for (const Manner &manner : Manners()) {
        for (TMix mix : {WIN_MIX_INVERT, WIN_MIX_XOR, WIN_MIX_NOTXOR}) {
            for (const Call &call : Calls()) {
                Apply(dc, manner, mix);
                call.draw(dc);
                EXPECT_EQ(picture() == ground, IsEmpty(call, manner))
                    << call.name << ", " << manner.name << ", mix " << mix;
                call.draw(dc);
                ASSERT_TRUE(picture() == ground) << call.name << ", " << manner.name << ", mix " << mix;
            }
        }
    }
    dc.SetState(TDCState());
}

/// What a fill of `brush` puts at a place, or false where it leaves it alone.
bool Source(const TBrush &brush, const uint8_t *bits, const TDCState &state, TPoint at, TColor *source)
{
    const int column = ((at.x - state.brushOrigin.x) % 8 + 8) % 8;
    const int row = ((at.y - state.brushOrigin.y) % 8 + 8) % 8;
    const bool set = brush.style == WIN_BRUSH_SOLID || (bits[row] & (0x80 >> column)) != 0;
    *source = set ? brush.color : brush.style == WIN_BRUSH_HATCH ? state.background : brush.back;
    return set || brush.style == WIN_BRUSH_PATTERN || state.opaque;
}
} // namespace

TEST(Mix, EachOneIsItsFunctionOfPenAndPixelForEveryKindOfBrush)
{
    TestApplication();
    const uint8_t cross[] = {1, 1, 1, 1, 1, 1, 1, 0xFF};
    const struct {
        TBrush brush;
        const uint8_t *bits;
    } rows[] = {{SolidBrush({200, 90, 33}), NULL}, {PATTERN, PATTERN.pattern}, {Hatch(WIN_HATCH_CROSS), cross}};
    const TRect filled = {3, 4, 70, 51};
    TMemoryDC dc(EXTENT, 96);
    dc.SetBrushOrg({-3, 13});
    dc.SetBackground({9, 77, 211});
    for (const auto &row : rows) {
        for (bool opaque : {false, true}) {
            for (TMix mix : AllMixes()) {
                dc.SetMix(WIN_MIX_COPY);
                PaintGround(dc);
                dc.SetOpaque(opaque);
                dc.SetMix(mix);
                dc.FillRect(filled, row.brush);
                for (int y = 0; y < EXTENT.cy; ++y) {
                    for (int x = 0; x < EXTENT.cx; ++x) {
                        TColor expected = Ground(x, y);
                        TColor source;
                        if (filled.Contains({x, y}) && Source(row.brush, row.bits, dc.State(), {x, y}, &source))
                            expected = Mixed(mix, source, expected);
                        ASSERT_EQ(dc.Pixel({x, y}), expected) << "mix " << mix << " at " << x << "," << y;
                    }
                }
            }
        }
    }
}

TEST(Mix, LinesTextureAndBitmapsTakeThePensPart)
{
    TestApplication();
    const TColor pen = {200, 90, 33};
    TBitmap bitmap(1, 1);
    bitmap.SetPalette({{pen}});
    for (TMix mix : AllMixes()) {
        TMemoryDC dc(EXTENT, 96);
        PaintGround(dc);
        dc.SetMix(mix);
        for (int width : {1, 3}) {
            dc.SetPen({pen, width});
            dc.Line({10, 10 * width}, {40, 10 * width});
            EXPECT_EQ(dc.Pixel({10, 10 * width}), Mixed(mix, pen, Ground(10, 10 * width))) << mix;
            EXPECT_EQ(dc.Pixel({40, 10 * width}), Mixed(mix, pen, Ground(40, 10 * width))) << mix;
            EXPECT_EQ(dc.Pixel({41, 10 * width}), Ground(41, 10 * width)) << mix;
        }
        dc.StretchBitmap({50, 40, 60, 50}, bitmap);
        EXPECT_EQ(dc.Pixel({50, 40}), Mixed(mix, pen, Ground(50, 40))) << mix;
        EXPECT_EQ(dc.Pixel({59, 49}), Mixed(mix, pen, Ground(59, 49))) << mix;
        dc.SetMix(WIN_MIX_WHITE); // of no concern to an inversion
        dc.InvertRect({0, 50, 5, 55});
        EXPECT_EQ(dc.Pixel({4, 54}), Mixed(WIN_MIX_INVERT, pen, Ground(4, 54)));
    }
}

TEST(Mix, TextIsNotSubjectToMixes)
{
    TestApplication();
    TMemoryDC plain(EXTENT, 96);
    plain.TextOut(2, 2, "Halle", 5);
    for (TMix mix : AllMixes()) {
        TMemoryDC dc(EXTENT, 96);
        dc.SetMix(mix);
        dc.TextOut(2, 2, "Halle", 5);
        EXPECT_TRUE(PictureOf(dc) == PictureOf(plain)) << mix;
    }
}

TEST(Mix, DrawnTwiceOnABitmapIsErased)
{
    TestApplication();
    TMemoryDC dc(EXTENT, 96);
    ExpectErased(dc, [&dc] { return PictureOf(dc); });
}

TEST(Mix, DrawnTwiceOnAWindowIsErasedAtThisScale)
{
    TestApplication();
    TWindow window;
    window.Create();
    testdoor::ResizeClient(window, EXTENT);
    testdoor::Settle();
    TClientDC dc(window);
    EXPECT_EQ(dc.DpiX(), static_cast<int>(std::lround(96 * TestScale())));
    ExpectErased(dc, [&window] { return testdoor::Pixels(window); });
}

/// What was drawn before the picture came and went between two drawings.
TEST(Mix, AFrameIsErasedThoughTheWindowWasShownInBetween)
{
    TestApplication();
    TWindow window;
    window.Create();
    testdoor::ResizeClient(window, EXTENT);
    testdoor::Settle();
    TClientDC dc(window);
    PaintGround(dc);
    const Picture ground = testdoor::Pixels(window);
    for (int i = 0; i < 2; ++i) {
        dc.SetPen({WIN_WHITE, 1, WIN_PEN_DOT});
        dc.SetBrush(NoBrush());
        dc.SetOpaque(false);
        dc.SetMix(WIN_MIX_XOR);
        dc.Rectangle({5, 5, 60, 50});
        EXPECT_EQ(testdoor::Pixels(window) == ground, i == 1);
        testdoor::Settle();
    }
}
