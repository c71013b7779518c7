// What the painting contexts put where: corners, outlines, patterns, cells of text, bitmaps and shapes, two
// contexts on one surface, the damage, and images that are moved, resized or cannot be had.
#include "win/surface.h"

#include "support/chance.h"
#include "support/folder.h"
#include "support/testapp.h"
#include "win/dc.h"
#include "win/window.h"

#include <gtest/gtest.h>

#include <climits>
#include <functional>
#include <new>
#include <string>

namespace
{
const TColor RED = {255, 0, 0};
const TColor BLUE = {0, 0, 255};

/// Pixels as characters: . white, # black, r red, b blue, o anything else.
std::string Picture(TSurface &surface)
{
    std::string picture;
    for (int y = 0; y < surface.Size().cy; ++y) {
        for (int x = 0; x < surface.Size().cx; ++x) {
            const TColor c = surface.Pixel({x, y});
            picture += c == WIN_WHITE ? '.' : c == WIN_BLACK ? '#' : c == RED ? 'r' : c == BLUE ? 'b' : 'o';
        }
        picture += '\n';
    }
    return picture;
}

std::string Drawn(TSize size, const std::function<void(TDC &)> &draw)
{
    TestApplication();
    const std::unique_ptr<TSurface> surface = TSurface::Image(size, 96);
    TSurfaceDC dc(*surface);
    dc.SetOpaque(false);
    dc.SetBrush(NoBrush());
    dc.SetBackground(BLUE);
    draw(dc);
    return Picture(*surface);
}

TPen Pen(int width, TPenStyle style = WIN_PEN_SOLID)
{
    return {WIN_BLACK, width, style};
}
} // namespace

TEST(SurfaceDC, FiguresAreDrawnToTheLastPixel)
{
    const TPoint square[] = {{1, 1}, {6, 1}, {6, 4}, {1, 4}};
    const TPoint triangle[] = {{1, 1}, {7, 1}, {4, 4}};
    const struct {
        const char *name;
        std::function<void(TDC &)> draw;
        const char *picture; // 8 x 6
    } rows[] = {
        {"polyline", [&](TDC &dc) { dc.Polyline(triangle, 3); },
         "........\n.#######\n......#.\n.....#..\n....#...\n........\n"},
        {"rectangle",
         [&](TDC &dc) {
             dc.SetBrush(SolidBrush(RED));
             dc.Rectangle({1, 1, 7, 5});
         },
         "........\n.######.\n.#rrrr#.\n.#rrrr#.\n.######.\n........\n"},
        {"rectangle without a pen",
         [&](TDC &dc) {
             dc.SetPen(NoPen());
             dc.SetBrush(SolidBrush(RED));
             dc.Rectangle({1, 1, 7, 5});
         },
         "........\n.rrrrrr.\n.rrrrrr.\n.rrrrrr.\n.rrrrrr.\n........\n"},
        {"rectangle, wide pen",
         [&](TDC &dc) {
             dc.SetPen(Pen(2));
             dc.Rectangle({1, 1, 6, 4});
         },
         "........\n.######.\n.######.\n.######.\n.######.\n........\n"},
        {"ellipse",
         [&](TDC &dc) {
             dc.SetBrush(SolidBrush(RED));
             dc.Ellipse({1, 1, 7, 5});
         },
         "........\n..####..\n.#rrrr#.\n.#rrrr#.\n..####..\n........\n"},
        {"polygon",
         [&](TDC &dc) {
             dc.SetBrush(SolidBrush(RED));
             dc.Polygon(triangle, 3);
         },
         "........\n.#######\n..#rrr#.\n...#r#..\n....#...\n........\n"},
        {"polygon without a pen",
         [&](TDC &dc) {
             dc.SetPen(NoPen());
             dc.SetBrush(SolidBrush(RED));
             dc.Polygon(square, 4);
         },
         "........\n.rrrrr..\n.rrrrr..\n.rrrrr..\n........\n........\n"},
        {"line, wide pen",
         [&](TDC &dc) {
             dc.SetPen(Pen(3));
             dc.Line({1, 2}, {6, 2});
         },
         "........\n.######.\n.######.\n.######.\n........\n........\n"},
        {"line from the other end, wide pen",
         [&](TDC &dc) {
             dc.SetPen(Pen(2));
             dc.Line({6, 2}, {1, 2});
         },
         "........\n........\n.######.\n.######.\n........\n........\n"},
        {"point, wide pen",
         [&](TDC &dc) {
             dc.SetPen(Pen(3));
             dc.Line({3, 2}, {3, 2});
         },
         "........\n..###...\n..###...\n..###...\n........\n........\n"},
        {"no width is one pixel",
         [&](TDC &dc) {
             dc.SetPen(Pen(0));
             dc.Line({1, 2}, {3, 2});
         },
         "........\n........\n.###....\n........\n........\n........\n"},
        {"nothing of a no-op mix",
         [&](TDC &dc) {
             dc.SetMix(WIN_MIX_NOP);
             dc.SetBrush(SolidBrush(RED));
             dc.Rectangle({1, 1, 7, 5});
             dc.FillRect({1, 1, 7, 5}, SolidBrush(RED));
         },
         "........\n........\n........\n........\n........\n........\n"},
        {"clipped",
         [&](TDC &dc) {
             dc.SetViewportOrg({1, 1});
             dc.SetClip({1, 0, 3, 9});
             dc.FillRect({-9, 0, 9, 2}, SolidBrush(RED));
             dc.ClearClip();
             dc.FillRect({-9, 3, 9, 4}, SolidBrush(RED));
         },
         "........\n..rr....\n..rr....\n........\nrrrrrrrr\n........\n"},
        {"turned",
         [&](TDC &dc) {
             dc.SetViewportOrg({1, 4});
             dc.SetTurn(1);
             dc.SetBrush(SolidBrush(RED));
             dc.Rectangle({0, 0, 4, 6});
             dc.Line({0, 0}, {2, 2});
         },
         "........\n.######.\n.#r#rr#.\n.##rrr#.\n.######.\n........\n"},
    };
    for (const auto &row : rows)
        EXPECT_EQ(Drawn({8, 6}, row.draw), row.picture) << row.name;
}

TEST(SurfaceDC, GapsOfAPatternAreLeftAloneOrFilled)
{
    const auto line = [](int width, bool opaque) {
        return Drawn({14, 3}, [=](TDC &dc) {
            dc.SetPen(Pen(width, WIN_PEN_DOT));
            dc.SetOpaque(opaque);
            dc.Line({0, 1}, {13, 1});
        });
    };
    EXPECT_EQ(line(1, false), "..............\n###...###...##\n..............\n");
    EXPECT_EQ(line(1, true), "..............\n###bbb###bbb##\n..............\n");
    EXPECT_EQ(line(2, false), "..............\n######......##\n######......##\n");
    EXPECT_EQ(line(2, true), "..............\n######bbbbbb##\n######bbbbbb##\n");
}

TEST(SurfaceDC, HatchesAndPatternsLieFromTheBrushOrigin)
{
    TBrush pattern = {.style = WIN_BRUSH_PATTERN, .color = WIN_BLACK, .back = RED};
    pattern.pattern[0] = 0x80;
    TBrush hatch = {.style = WIN_BRUSH_HATCH, .color = WIN_BLACK, .hatch = WIN_HATCH_VERTICAL};
    const auto fill = [](const TBrush &brush, bool opaque) {
        return Drawn({10, 2}, [&](TDC &dc) {
            dc.SetOpaque(opaque);
            dc.SetBrushOrg({1, 1});
            dc.SetViewportOrg({2, 0}); // of no concern to the origin
            dc.FillRect({-2, 0, 8, 2}, brush);
        });
    };
    EXPECT_EQ(fill(pattern, false), "rrrrrrrrrr\nr#rrrrrrr#\n");
    EXPECT_EQ(fill(hatch, false), "#.......#.\n#.......#.\n");
    EXPECT_EQ(fill(hatch, true), "#bbbbbbb#b\n#bbbbbbb#b\n");
}

TEST(SurfaceDC, EveryHatchRepeatsAfterEightPixelsAndHasItsOwnPicture)
{
    std::string former;
    for (THatch hatch : {WIN_HATCH_HORIZONTAL, WIN_HATCH_VERTICAL, WIN_HATCH_FDIAGONAL, WIN_HATCH_BDIAGONAL,
                         WIN_HATCH_CROSS, WIN_HATCH_DIAGCROSS}) {
        const std::string picture = Drawn({24, 24}, [hatch](TDC &dc) {
            dc.FillRect({0, 0, 24, 24}, {.style = WIN_BRUSH_HATCH, .color = WIN_BLACK, .hatch = hatch});
        });
        EXPECT_NE(picture, former);
        former = picture;
        for (size_t y = 0; y < 16; ++y) {
            for (size_t x = 0; x < 16; ++x) {
                EXPECT_EQ(picture[y * 25 + x], picture[y * 25 + x + 8]);
                EXPECT_EQ(picture[y * 25 + x], picture[(y + 8) * 25 + x]);
            }
        }
    }
}

TEST(SurfaceDC, NothingButShapesHasSmoothEdges)
{
    const TPoint corners[] = {{1, 2}, {37, 11}, {9, 28}};
    for (int width : {1, 2, 5}) {
        const std::string picture = Drawn({40, 30}, [&](TDC &dc) {
            dc.SetPen(Pen(width));
            dc.SetBrush(SolidBrush(RED));
            dc.Polygon(corners, 3);
            dc.Ellipse({3, 3, 33, 22});
            dc.SetPen(Pen(width, WIN_PEN_DASH));
            dc.Polyline(corners, 3);
            dc.Ellipse({8, 8, 33, 22});
        });
        EXPECT_EQ(picture.find('o'), std::string::npos) << width;
    }
}

TEST(SurfaceDC, ShapesAreSmoothAndFilledByTheirRule)
{
    const std::vector<TDC::Outline> nested = {{{{0, 0}, {128, 0}, {128, 96}, {0, 96}}, true},
                                              {{{32, 32}, {96, 32}, {96, 64}, {32, 64}}, true}};
    const auto shape = [&](bool winding) {
        return Drawn({8, 6}, [&](TDC &dc) {
            dc.SetPen(NoPen());
            dc.SetBrush(SolidBrush(RED));
            dc.Shape(nested, winding);
        });
    };
    EXPECT_EQ(shape(true), "rrrrrrrr\nrrrrrrrr\nrrrrrrrr\nrrrrrrrr\nrrrrrrrr\nrrrrrrrr\n");
    EXPECT_EQ(shape(false), "rrrrrrrr\nrrrrrrrr\nrr....rr\nrr....rr\nrrrrrrrr\nrrrrrrrr\n");
    const std::vector<TDC::Outline> slanted = {{{{0, 0}, {320, 130}, {50, 300}}, true}};
    for (TMix mix : {WIN_MIX_COPY, WIN_MIX_MASK}) {
        const std::string picture = Drawn({20, 20}, [&](TDC &dc) {
            dc.SetPen(NoPen());
            dc.SetBrush(SolidBrush(RED));
            dc.SetMix(mix);
            dc.Shape(slanted, true);
            dc.Line({0, 19}, {19, 15}); // the smoothness ends with the shape
        });
        EXPECT_EQ(picture.find('o') != std::string::npos, mix == WIN_MIX_COPY);
        EXPECT_NE(picture.find('r'), std::string::npos);
    }
}

TEST(SurfaceDC, AnOpenOutlineIsStrokedOpenAndAClosedOneClosed)
{
    const auto stroke = [](bool closed) {
        return Drawn({12, 12}, [closed](TDC &dc) {
            dc.SetPen(Pen(2));
            dc.Shape({{{{32, 32}, {160, 32}, {160, 160}, {32, 160}}, closed}}, true);
        });
    };
    EXPECT_EQ(stroke(true)[6 * 13 + 1], '#');
    EXPECT_EQ(stroke(false)[6 * 13 + 1], '.');
    EXPECT_EQ(stroke(false)[6 * 13 + 10], '#');
}

TEST(SurfaceDC, TheCellOfATextIsFilledInOpaqueModeOnly)
{
    TestApplication();
    for (int turn = 0; turn < 4; ++turn) {
        for (TTextAlign align : {WIN_TEXT_TOP, WIN_TEXT_BOTTOM, WIN_TEXT_BASELINE}) {
            TMemoryDC dc({80, 80}, 96);
            dc.SetViewportOrg({40, 40});
            dc.SetTurn(turn);
            dc.SetTextAlign(align);
            dc.SetBackground(BLUE);
            dc.SetTextColor(BLUE); // the cell without the ink
            dc.TextOut(3, 2, "Hg", 2);
            const TFontMetrics metrics = dc.FontMetrics();
            const int top = align == WIN_TEXT_TOP      ? 2
                            : align == WIN_TEXT_BOTTOM ? 2 - metrics.height
                                                       : 2 - metrics.ascent;
            const TRect cell = dc.ToSurface(TRect{3, top, 3 + dc.TextWidth("Hg", 2), top + metrics.height});
            dc.SetOpaque(false);
            TMemoryDC transparent({80, 80}, 96);
            TDCState state = dc.State();
            state.textColor = WIN_BLACK;
            transparent.SetState(state);
            transparent.TextOut(3, 2, "Hg", 2);
            int ink = 0;
            for (int y = 0; y < 80; ++y) {
                for (int x = 0; x < 80; ++x) {
                    EXPECT_EQ(dc.Pixel({x, y}), cell.Contains({x, y}) ? BLUE : WIN_WHITE) << x << "," << y;
                    const bool white = transparent.Pixel({x, y}) == WIN_WHITE;
                    EXPECT_TRUE(white || cell.Contains({x, y})) << "turn " << turn << " at " << x << "," << y;
                    ink += !white;
                }
            }
            EXPECT_GT(ink, 20);
            EXPECT_LT(ink, cell.Width() * cell.Height());
        }
    }
}

TEST(SurfaceDC, ABitmapIsScaledToTheNearestPixel)
{
    TestApplication();
    TBitmap bitmap(5, 3);
    TPalette palette;
    for (int i = 0; i < 15; ++i) {
        palette.entries.push_back({static_cast<uint8_t>(10 * i), static_cast<uint8_t>(200 - i), 7});
        bitmap.SetPixel(i % 5, i / 5, static_cast<uint8_t>(i));
    }
    bitmap.SetPixel(4, 2, 15); // beyond the table: black
    bitmap.SetPalette(palette);
    palette.entries.push_back(WIN_BLACK);
    const TRect targets[] = {{0, 0, 5, 3}, {2, 1, 37, 20}, {-20, -9, 61, 50}, {3, 3, 5, 4}, {0, 0, 40, 24}};
    for (const TRect &rect : targets) {
        for (int turn = 0; turn < 4; ++turn) {
            TMemoryDC dc({40, 24}, 96);
            dc.SetViewportOrg({turn == 0 || turn == 3 ? 0 : 20, turn < 2 ? 20 : 0});
            dc.SetTurn(turn);
            dc.StretchBitmap(rect, bitmap);
            for (int y = rect.top; y < rect.bottom; ++y) {
                for (int x = rect.left; x < rect.right; ++x) {
                    const TPoint at = dc.ToSurface(TPoint{x, y});
                    const int column = (2 * (x - rect.left) + 1) * 5 / (2 * rect.Width());
                    const int row = (2 * (y - rect.top) + 1) * 3 / (2 * rect.Height());
                    if ((TRect{0, 0, 40, 24}).Contains(at)) {
                        ASSERT_EQ(dc.Pixel(at), palette.entries[bitmap.Pixel(column, row)])
                            << "turn " << turn << " at " << x << "," << y;
                    }
                }
            }
        }
    }
}

TEST(SurfaceDC, ABitmapFarLargerThanTheSurfaceCostsWhatIsSeen)
{
    TestApplication();
    TBitmap bitmap(2, 2);
    bitmap.SetPalette({{RED, BLUE}});
    bitmap.SetPixel(1, 1, 1);
    TMemoryDC dc({10, 10}, 96);
    dc.StretchBitmap({5 - 1000000000, 5 - 1000000000, 5 + 1000000000, 5 + 1000000000}, bitmap);
    EXPECT_EQ(dc.Pixel({4, 9}), RED);
    EXPECT_EQ(dc.Pixel({5, 5}), BLUE);
    dc.StretchBitmap({0, 0, 0, 5}, bitmap);
    dc.StretchBitmap({5, 5, 1, 1}, bitmap);
    dc.StretchBitmap({0, 0, 5, 5}, TBitmap(0, 3));
    EXPECT_EQ(dc.Pixel({1, 1}), RED);
}

TEST(SurfaceDC, TwoContextsTakeTurnsWithAStateOfTheirOwn)
{
    TestApplication();
    const auto first = [](TDC &dc, int i) {
        dc.SetPen({RED, 1 + i % 3, i % 2 ? WIN_PEN_DOT : WIN_PEN_SOLID});
        dc.SetMix(WIN_MIX_XOR);
        dc.SetClip({5, 5, 50, 40});
        dc.Rectangle({i, 2 * i, 40 + i, 30 + i});
        dc.TextOut(i, 3 * i, "Halle", 5);
    };
    const auto second = [](TDC &dc, int i) {
        dc.SetBrush({.style = WIN_BRUSH_PATTERN, .color = BLUE, .pattern = {1, 2, 4, 8, 16, 32, 64, 128}});
        dc.SetTurn(i);
        dc.SetViewportOrg({30, 30});
        dc.SetFont({.height = -9 - i});
        dc.Ellipse({0, 0, 20, 9 + i});
        dc.TextOut(-5, -9, "Wand", 4);
        dc.Shape({{{{0, 0}, {300, 100}, {20, 130}}, true}}, true);
    };
    const std::unique_ptr<TSurface> shared = TSurface::Image({60, 60}, 96);
    const std::unique_ptr<TSurface> plain = TSurface::Image({60, 60}, 96);
    TSurfaceDC a(*shared);
    TSurfaceDC b(*shared);
    for (int i = 0; i < 12; ++i) {
        first(a, i);
        second(b, i);
        for (void (*draw)(TDC &, int) : {+first, +second}) {
            TSurfaceDC fresh(*plain);
            draw(fresh, i);
            plain->EndPainting();
        }
        ASSERT_EQ(Picture(*shared), Picture(*plain)) << i;
    }
}

TEST(Surface, TheDamageHoldsEveryChangedPixelAndIsTold)
{
    TestApplication();
    const TPoint corners[] = {{12, 40}, {70, 20}, {30, 50}, {33, 49}};
    TBitmap bitmap(3, 3);
    bitmap.SetPalette({{RED}});
    const std::vector<std::function<void(TDC &)>> calls = {
        [&](TDC &dc) { dc.Polyline(corners, 4); },
        [&](TDC &dc) { dc.Polygon(corners, 4); },
        [&](TDC &dc) {
            dc.Rectangle({20, 10, 50, 40});
        },
        [&](TDC &dc) {
            dc.Ellipse({20, 10, 50, 40});
        },
        [&](TDC &dc) {
            dc.FillRect({20, 10, 50, 40}, SolidBrush(RED));
        },
        [&](TDC &dc) {
            dc.InvertRect({20, 10, 50, 40});
        },
        [&](TDC &dc) { dc.TextOut(20, 10, "fjW\xC4", 4); },
        [&](TDC &dc) {
            dc.StretchBitmap({20, 10, 50, 40}, bitmap);
        },
        [&](TDC &dc) {
            dc.Shape({{{{320, 160}, {990, 700}, {330, 710}}, true}}, true);
        },
    };
    for (size_t call = 0; call < calls.size(); ++call) {
        for (int width : {1, 7}) {
            for (int turn : {0, 1}) {
                for (bool clipped : {false, true}) {
                    const std::unique_ptr<TSurface> surface = TSurface::Image({80, 60}, 96);
                    int told = 0;
                    surface->onDamage = [&told] { ++told; };
                    TSurfaceDC dc(*surface);
                    dc.SetPen({RED, width});
                    dc.SetFont({.height = -20, .italic = true});
                    dc.SetViewportOrg({turn * 5, turn * 59});
                    if (clipped)
                        dc.SetClip({20, 12, 34, 44});
                    dc.SetTurn(turn);
                    EXPECT_TRUE(surface->TakeDamage().IsEmpty());
                    calls[call](dc);
                    calls[call](dc);
                    TRect changed;
                    for (int y = 0; y < 60; ++y) {
                        for (int x = 0; x < 80; ++x) {
                            if (!(surface->Pixel({x, y}) == WIN_WHITE))
                                changed = changed | TRect{x, y, x + 1, y + 1};
                        }
                    }
                    const TRect damage = surface->TakeDamage();
                    EXPECT_EQ(damage | changed, damage) << "call " << call;
                    EXPECT_EQ(damage & TRect({0, 0, 80, 60}), damage);
                    EXPECT_EQ(told, damage.IsEmpty() ? 0 : 1);
                    EXPECT_TRUE(surface->TakeDamage().IsEmpty());
                    calls[call](dc);
                    EXPECT_EQ(told, damage.IsEmpty() ? 0 : 2);
                }
            }
        }
    }
}

TEST(Surface, WhatIsDrawnOutsideDamagesNothing)
{
    TestApplication();
    const std::unique_ptr<TSurface> surface = TSurface::Image({20, 20}, 96);
    TSurfaceDC dc(*surface);
    dc.Rectangle({30, 30, 50, 50});
    dc.FillRect({-9, -9, 0, 0}, SolidBrush(RED));
    dc.Line({0, 25}, {19, 25});
    dc.SetClip({5, 5, 5, 9});
    dc.FillRect({0, 0, 20, 20}, SolidBrush(RED));
    EXPECT_TRUE(surface->TakeDamage().IsEmpty());
    EXPECT_EQ(Picture(*surface).find('r'), std::string::npos);
}

TEST(Surface, ShiftMovesThePictureAndLeavesTheRest)
{
    TestApplication();
    CHANCE chance(7);
    const int moves[][2] = {{3, 2},  {-3, 2}, {3, -2},   {-3, -2},     {0, 5},       {0, -5},
                            {19, 0}, {0, 0},  {-20, -1}, {INT_MAX, 0}, {0, INT_MIN}, {INT_MIN, INT_MAX}};
    for (const auto &[dx, dy] : moves) {
        const std::unique_ptr<TSurface> surface = TSurface::Image({20, 15}, 96);
        TSurfaceDC dc(*surface);
        for (int i = 0; i < 300; ++i) {
            const TColor color = {static_cast<uint8_t>(chance.Int(0, 255)), static_cast<uint8_t>(i), 3};
            dc.FillRect({i % 20, i / 20, i % 20 + 1, i / 20 + 1}, SolidBrush(color));
        }
        std::vector<TColor> before;
        for (int i = 0; i < 300; ++i)
            before.push_back(surface->Pixel({i % 20, i / 20}));
        dc.Line({0, 0}, {0, 0}); // so that a painter is at work
        before[0] = WIN_BLACK;
        surface->Shift(dx, dy);
        for (int i = 0; i < 300; ++i) {
            const int64_t x = int64_t(i % 20) - dx;
            const int64_t y = int64_t(i / 20) - dy;
            const bool moved = x >= 0 && x < 20 && y >= 0 && y < 15;
            EXPECT_EQ(surface->Pixel({i % 20, i / 20}), before[static_cast<size_t>(moved ? y * 20 + x : i)])
                << dx << "," << dy;
        }
    }
}

TEST(Surface, ANewExtentKeepsWhatFitsAndIsWhiteElsewhere)
{
    TestApplication();
    const std::unique_ptr<TSurface> surface = TSurface::Image({4, 3}, 96);
    TSurfaceDC dc(*surface);
    dc.FillRect({0, 0, 4, 3}, SolidBrush(RED));
    surface->Resize({6, 2}, 144);
    EXPECT_EQ(Picture(*surface), "rrrr..\nrrrr..\n");
    EXPECT_EQ(dc.DpiX(), 144);
    dc.FillRect({5, 0, 6, 1}, SolidBrush(BLUE));
    surface->Resize({6, 4}, 96);
    EXPECT_EQ(Picture(*surface), "rrrr.b\nrrrr..\n......\n......\n");
    EXPECT_THROW(surface->Resize({INT_MAX, INT_MAX}, 96), std::bad_alloc);
    EXPECT_EQ(Picture(*surface), "rrrr.b\nrrrr..\n......\n......\n");
}

TEST(Surface, AnImageThatCannotBeHadThrowsAndASmallOneHasAPixel)
{
    TestApplication();
    EXPECT_THROW(TSurface::Image({INT_MAX, INT_MAX}, 96), std::bad_alloc);
    EXPECT_THROW(TMemoryDC({100000, 1}, 96), std::bad_alloc);
    EXPECT_THROW(TMemoryDC({32000, 32000}, 96), std::bad_alloc);
    EXPECT_EQ(TSurface::Image({0, -5}, 96)->Size(), (TSize{1, 1}));
    TMemoryDC dc({0, 0}, 96);
    dc.FillRect({0, 0, 1, 1}, SolidBrush(RED));
    EXPECT_EQ(dc.Pixel({0, 0}), RED);
    EXPECT_EQ(dc.Pixel({1, 0}), WIN_BLACK);
    EXPECT_EQ(dc.Pixel({-1, 0}), WIN_BLACK);
}

TEST(Surface, APictureIsSavedOrTheFailureIsTold)
{
    TestApplication();
    const FOLDER folder;
    TMemoryDC dc({3, 3}, 96);
    EXPECT_TRUE(dc.SavePng(folder.Path("bild \xC3\xA4.png").c_str()));
    EXPECT_EQ(folder.Get("bild \xC3\xA4.png").substr(1, 3), "PNG");
    EXPECT_FALSE(dc.SavePng(folder.Path("no/such.png").c_str()));
}

TEST(Surface, AMeasuringOneMeasuresAsAnImageDoesAndDrawsNowhere)
{
    TestApplication();
    TMeasureDC measure(150);
    TMemoryDC image({20, 20}, 150);
    EXPECT_EQ(measure.DpiX(), 150);
    EXPECT_EQ(measure.DpiY(), 150);
    EXPECT_TRUE(measure.HasMixes());
    for (int c = 0; c < 256; ++c)
        EXPECT_EQ(measure.CharWidth(static_cast<unsigned char>(c)),
                  image.CharWidth(static_cast<unsigned char>(c)));
    EXPECT_EQ(measure.FontMetrics().height, image.FontMetrics().height);
    const TPoint corners[] = {{0, 0}, {5, 0}, {5, 5}};
    measure.Polyline(corners, 3);
    measure.Polygon(corners, 3);
    measure.Rectangle({0, 0, 5, 5});
    measure.Ellipse({0, 0, 5, 5});
    measure.FillRect({0, 0, 5, 5}, SolidBrush(RED));
    measure.InvertRect({0, 0, 5, 5});
    measure.TextOut(0, 0, "a", 1);
    measure.StretchBitmap({0, 0, 5, 5}, TBitmap(2, 2));
    measure.Shape({{{{0, 0}, {5, 0}}, true}}, true);
    const std::unique_ptr<TSurface> surface = TSurface::Measuring(96);
    EXPECT_EQ(surface->Size(), TSize());
    EXPECT_TRUE(surface->TakeDamage().IsEmpty());
    EXPECT_FALSE(surface->SavePng("/tmp/never.png"));
}

TEST(Surface, AContextOnAWindowThatIsNotOnScreenMeasures)
{
    TestApplication();
    TWindow window;
    TClientDC dc(window);
    EXPECT_EQ(dc.DpiX(), window.Dpi());
    EXPECT_GT(dc.TextWidth("abc", 3), 0);
    dc.Rectangle({0, 0, 10, 10});
}

/// Any integers may come as coordinates: nothing overflows, hangs or ends the program.
TEST(SurfaceDC, TakesAnyCoordinates)
{
    TestApplication();
    CHANCE chance(8);
    const int extremes[] = {INT_MIN, INT_MIN + 1, -40000, -32768, -1,          0,
                            1,       15,          32767,  70000,  INT_MAX - 1, INT_MAX};
    const auto any = [&] { return chance.One(2) ? chance.Of(extremes) : chance.Int(-50, 50); };
    const auto anyRect = [&] { return TRect{any(), any(), any(), any()}; };
    TBitmap bitmap(3, 3);
    TMemoryDC dc({30, 30}, 96);
    for (int i = 0; i < 1500; ++i) {
        dc.SetPen(
            {WIN_BLACK, chance.One(4) ? any() : chance.Int(0, 4), static_cast<TPenStyle>(chance.Int(0, 3))});
        dc.SetBrush({.style = static_cast<TBrushStyle>(chance.Int(0, 3)),
                     .hatch = static_cast<THatch>(chance.Int(0, 5))});
        dc.SetMix(static_cast<TMix>(chance.Int(1, 16)));
        dc.SetOpaque(chance.One(2));
        dc.SetTurn(chance.Int(0, 3));
        dc.SetViewportOrg({any(), any()});
        dc.SetBrushOrg({any(), any()});
        dc.SetClip(anyRect());
        if (chance.One(2))
            dc.ClearClip();
        const TPoint points[] = {{any(), any()}, {any(), any()}, {any(), any()}, {any(), any()}};
        dc.Polyline(points, chance.Int(0, 4));
        dc.Polygon(points, chance.Int(0, 4));
        dc.Rectangle(anyRect());
        dc.Ellipse(anyRect());
        dc.FillRect(anyRect(), dc.State().brush);
        dc.InvertRect(anyRect());
        dc.TextOut(any(), any(), "Halle", 5);
        dc.StretchBitmap(anyRect(), bitmap);
        dc.Shape({{{points, points + 4}, chance.One(2)}}, chance.One(2));
    }
}
