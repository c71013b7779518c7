// The window: events in device pixels, the invalid region and its painting, scrolling of the picture, capture.
// Runs at several display scales.
#include "lib/charstr.h"
#include "lib/platform.h"
#include "support/testapp.h"
#include "win/dc.h"
#include "win/surface.h"
#include "win/testdoor.h"
#include "win/window.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <gtest/gtest.h>
#include <string>
#include <thread>
#include <vector>

#include "lib/xon.h"

namespace
{
std::string Text(const TRect &r)
{
    return "(" + std::to_string(r.left) + "," + std::to_string(r.top) + " " + std::to_string(r.right) + "," +
           std::to_string(r.bottom) + ")";
}

std::string Text(TPoint p)
{
    return std::to_string(p.x) + "," + std::to_string(p.y);
}

/// A colour that no neighbour has, so that a picture shifted by a pixel shows.
TColor Speckle(int x, int y)
{
    unsigned mixed = static_cast<unsigned>(x) * 2654435761U ^ static_cast<unsigned>(y) * 2246822519U;
    mixed ^= mixed >> 13;
    return {static_cast<uint8_t>(mixed), static_cast<uint8_t>(mixed >> 8), static_cast<uint8_t>(mixed >> 16)};
}

/// Writes down what it hears, and paints a picture where every pixel differs, moved by the scroller.
class Canvas : public TWindow
{
public:
    explicit Canvas(bool scrolls = false)
    {
        TestApplication();
        if (scrolls)
            SetScroller(std::make_unique<TScroller>(*this, 1, 1, 1000, 1000));
    }

    void Open(TSize size = {61, 43})
    {
        opening = true; // the toolkit's first extent is large
        Create();
        testdoor::ResizeClient(*this, size);
        testdoor::Settle();
        opening = false;
        Invalidate();
        testdoor::Settle();
        heard.clear();
        painted.clear();
    }

    void Paint(TDC &dc, bool erase, const TRect &rect) override
    {
        if (opening)
            return;
        painted += Text(rect) + (erase ? "e " : " ");
        if (paint)
            return paint(dc, rect);
        int sx = Scroller() ? Scroller()->XPos() : 0;
        int sy = Scroller() ? Scroller()->YPos() : 0;
        for (int y = rect.top; y < rect.bottom; ++y)
            for (int x = rect.left; x < rect.right; ++x)
                dc.FillRect({x, y, x + 1, y + 1}, SolidBrush(Speckle(x + sx, y + sy)));
    }

    void EvLButtonDown(unsigned keys, TPoint p) override { Hear("ldown", keys, p); }
    void EvLButtonUp(unsigned keys, TPoint p) override { Hear("lup", keys, p); }
    void EvLButtonDblClk(unsigned keys, TPoint p) override { Hear("ldbl", keys, p); }
    void EvRButtonDown(unsigned keys, TPoint p) override { Hear("rdown", keys, p); }
    void EvRButtonUp(unsigned keys, TPoint p) override { Hear("rup", keys, p); }
    void EvMouseMove(unsigned keys, TPoint p) override { Hear("move", keys, p); }
    void EvKeyDown(TVirtualKey key, unsigned keys) override { Hear("key", keys, {key, 0}); }
    void EvCaptureLost() override { heard += "lost "; }
    void EvSetFocus() override { ++focused; }
    void EvDropFile(const char *path) override { heard += std::string("drop ") + path; }
    void EvSize(TSizeKind kind, TSize size) override
    {
        sizes += std::to_string(kind) + ":" + Text(TPoint{size.cx, size.cy}) + " ";
    }

    std::string heard;
    std::string painted;
    std::string sizes;
    int focused = 0;
    std::function<void()> onDown;
    std::function<void(TDC &, const TRect &)> paint;

private:
    bool opening = false;

    void Hear(const char *what, unsigned keys, TPoint p)
    {
        heard += std::string(what) + " " + std::to_string(keys) + " " + Text(p) + " ";
        if (onDown && std::string(what) == "ldown")
            onDown();
    }
};

/// The picture that a canvas shows when all of it was painted at once.
std::vector<TColor> WholePicture(Canvas &canvas)
{
    std::vector<TColor> pixels;
    TRect client = canvas.GetClientRect();
    int sx = canvas.Scroller() ? canvas.Scroller()->XPos() : 0;
    int sy = canvas.Scroller() ? canvas.Scroller()->YPos() : 0;
    for (int y = 0; y < client.bottom; ++y)
        for (int x = 0; x < client.right; ++x)
            pixels.push_back(Speckle(x + sx, y + sy));
    return pixels;
}

/// Where two pictures of the canvas differ first, and in how many pixels; empty where they are equal.
std::string Difference(Canvas &canvas, const std::vector<TColor> &is, const std::vector<TColor> &wanted)
{
    if (is.size() != wanted.size())
        return std::to_string(is.size()) + " pixels for " + std::to_string(wanted.size());
    int width = canvas.GetClientRect().Width();
    int count = 0;
    std::string first;
    for (size_t i = 0; i < is.size(); ++i)
        if (!(is[i] == wanted[i]) && count++ == 0)
            first = Text(TPoint{static_cast<int>(i) % width, static_cast<int>(i) / width});
    return count == 0 ? "" : std::to_string(count) + " of " + std::to_string(is.size()) + " from " + first;
}

/// The image and the screen show `wanted`.
void ExpectPicture(Canvas &canvas, const std::vector<TColor> &wanted, const std::string &where = "")
{
    EXPECT_EQ(Difference(canvas, testdoor::Pixels(canvas), wanted), "") << "image " << where;
    EXPECT_EQ(Difference(canvas, testdoor::ShownPixels(canvas), wanted), "") << "screen " << where;
}

std::vector<std::string> reports; // codes that the reporting hook met

void NoteFailure()
{
    reports.push_back(xRepaired);
}

struct HookScope {
    HookScope()
    {
        reports.clear();
        SetFailureHook(NoteFailure);
    }
    ~HookScope() { SetFailureHook(NULL); }
};
} // namespace

TEST(Window, ObjectWithoutAWidgetTakesEveryOperation)
{
    TestApplication();
    TWindow window(NULL, "Blatt");
    window.SetScroller(std::make_unique<TScroller>(window, 1, 1, 100, 100));
    window.Invalidate();
    window.InvalidateRect({0, 0, 10, 10});
    window.UpdateWindow();
    window.EnableScrollBar(WIN_BAR_BOTH, true);
    window.Scroller()->ScrollTo(7, 8);
    window.ScrollMessage(WIN_BAR_VERTICAL, WIN_SCROLL_LINEDOWN);
    window.SetFocus();
    window.SetCursor({TCursor::CROSS});
    window.SetCapture();
    EXPECT_TRUE(window.HasCapture());
    window.ReleaseCapture();
    window.SetCaption("Plan");

    EXPECT_FALSE(window.IsCreated());
    EXPECT_EQ(window.Native(), static_cast<TNativeWidget *>(NULL));
    EXPECT_EQ(window.BackingSurface(), static_cast<TSurface *>(NULL));
    EXPECT_EQ(window.GetClientRect(), TRect());
    EXPECT_FALSE(window.NeedsPaint());
    EXPECT_EQ(window.Scroller()->YPos(), 9);
    EXPECT_EQ(window.Caption(), "Plan");
    EXPECT_TRUE(window.CanClose());
}

TEST(Window, ResolutionAndClientAreaFollowTheDisplayScale)
{
    Canvas canvas;
    canvas.Open({60, 30});
    EXPECT_EQ(canvas.Dpi(), std::lround(96 * TestScale()));
    EXPECT_EQ(canvas.BackingSurface()->DpiX(), canvas.Dpi());
    EXPECT_EQ(canvas.BackingSurface()->Size(), (TSize{60, 30}));
    EXPECT_EQ(canvas.GetClientRect(), (TRect{0, 0, 60, 30}));
}

TEST(Window, EventsCarryDevicePixelsAndKeys)
{
    Canvas canvas;
    canvas.Open();
    for (int x = 0; x < 61; ++x) {
        canvas.heard.clear();
        testdoor::Move(canvas, {x, 42});
        EXPECT_EQ(canvas.heard, "move 0 " + std::to_string(x) + ",42 ");
    }
    canvas.heard.clear();
    testdoor::Press(canvas, {3, 5}, testdoor::LEFT, WIN_KEY_SHIFT);
    testdoor::Release(canvas, {4, 5}, testdoor::LEFT, WIN_KEY_CTRL);
    testdoor::Click(canvas, {1, 2}, testdoor::RIGHT, WIN_KEY_CTRL | WIN_KEY_SHIFT);
    EXPECT_EQ(canvas.heard, "ldown 4 3,5 lup 8 4,5 rdown 12 1,2 rup 12 1,2 ");
    canvas.heard.clear();
    testdoor::DoubleClick(canvas, {7, 8});
    EXPECT_EQ(canvas.heard, "ldown 0 7,8 lup 0 7,8 ldbl 0 7,8 lup 0 7,8 ");
}

TEST(Window, KeysComeByTheirMeaning)
{
    Canvas canvas;
    canvas.Open();
    static const struct {
        const char *name;
        TVirtualKey key;
    } table[] = {
        {"PgUp", WIN_VK_PRIOR}, {"PgDown", WIN_VK_NEXT}, {"End", WIN_VK_END},       {"Home", WIN_VK_HOME},
        {"Left", WIN_VK_LEFT},  {"Right", WIN_VK_RIGHT}, {"Up", WIN_VK_UP},         {"Down", WIN_VK_DOWN},
        {"Esc", WIN_VK_ESCAPE}, {"Del", WIN_VK_DELETE},  {"Return", WIN_VK_RETURN}, {"Enter", WIN_VK_RETURN},
        {"A", WIN_VK_OTHER},
    };
    for (const auto &row : table) {
        canvas.heard.clear();
        testdoor::Key(canvas, row.name, WIN_KEY_SHIFT);
        EXPECT_EQ(canvas.heard, "key 4 " + std::to_string(row.key) + ",0 ") << row.name;
    }
}

TEST(Window, InvalidRegionReachesPaintOnceAndOnlyFromThePaintEvent)
{
    Canvas canvas;
    canvas.Open();
    canvas.InvalidateRect({10, 10, 20, 20});
    canvas.InvalidateRect({10, 15, 20, 30}, false);
    EXPECT_TRUE(canvas.NeedsPaint());
    EXPECT_EQ(canvas.painted, "");
    testdoor::Settle();
    EXPECT_EQ(canvas.painted, "(10,10 20,30)e ");
    EXPECT_FALSE(canvas.NeedsPaint());

    canvas.painted.clear();
    testdoor::Settle();
    EXPECT_EQ(canvas.painted, "") << "nothing was invalid";
    canvas.InvalidateRect({100, 100, 200, 200});
    canvas.InvalidateRect({-5, -5, 0, 0});
    EXPECT_FALSE(canvas.NeedsPaint()) << "outside the client area";
    canvas.InvalidateRect({-5, -5, 2, 2}, false);
    canvas.UpdateWindow();
    EXPECT_EQ(canvas.painted, "(0,0 2,2) ");
}

TEST(Window, WhatIsUpdatedWithinThePaintingOfAnotherWindowIsPaintedBehindIt)
{
    Canvas bar, window;
    bar.Open();
    window.Open();
    std::string within;
    window.paint = [&](TDC &, const TRect &) {
        bar.Invalidate();
        bar.UpdateWindow();
        within = bar.painted;
    };
    window.Invalidate();
    window.UpdateWindow();
    EXPECT_EQ(within, "");
    testdoor::Settle();
    const std::string whole = Text(bar.GetClientRect()) + "e ";
    EXPECT_EQ(bar.painted, whole);
    bar.Invalidate();
    bar.UpdateWindow();
    EXPECT_EQ(bar.painted, whole + whole) << "at once, as ever";
}

TEST(Window, DistantRectanglesArePaintedApart)
{
    Canvas canvas;
    canvas.Open();
    canvas.InvalidateRect({0, 0, 5, 5});
    canvas.InvalidateRect({40, 30, 50, 40});
    testdoor::Settle();
    EXPECT_EQ(canvas.painted, "(0,0 5,5)e (40,30 50,40)e ");
}

TEST(Window, ManyRectanglesArePaintedInFewTurns)
{
    Canvas canvas;
    canvas.Open();
    for (int i = 0; i < 12; ++i)
        canvas.InvalidateRect({i * 4, i * 2, i * 4 + 2, i * 2 + 1});
    testdoor::Settle();
    EXPECT_LE(std::count(canvas.painted.begin(), canvas.painted.end(), 'e'), 8);
    EXPECT_EQ(canvas.painted.substr(0, 4), "(0,0");
    ExpectPicture(canvas, WholePicture(canvas));
}

TEST(Window, EveryPixelOfTheImageIsOnePixelOfTheScreen)
{
    Canvas canvas;
    canvas.Open();
    ExpectPicture(canvas, WholePicture(canvas));
    canvas.InvalidateRect({7, 9, 8, 33}); // a blit of a part must fall on the same pixels
    testdoor::Settle();
    ExpectPicture(canvas, WholePicture(canvas));
}

TEST(Window, OddExtentsAreShownWholeToo)
{
    for (int width = 30; width < 38; ++width) {
        Canvas canvas;
        canvas.Open({width, 57 - width});
        ExpectPicture(canvas, WholePicture(canvas), std::to_string(width));
    }
}

TEST(Window, PaintingNeverLeavesTheInvalidRectangle)
{
    Canvas canvas;
    canvas.Open();
    std::vector<TColor> before = testdoor::Pixels(canvas);
    canvas.paint = [](TDC &dc, const TRect &) {
        dc.FillRect({0, 0, 1000, 1000}, SolidBrush({255, 0, 0}));
        dc.SetClip({0, 0, 30, 1000});
        dc.FillRect({0, 0, 1000, 1000}, SolidBrush({0, 0, 255}));
        EXPECT_EQ(dc.State().clip, (TRect{0, 0, 30, 1000})) << "the painter sees its own clip";
    };
    canvas.InvalidateRect({20, 10, 40, 20});
    testdoor::Settle();
    std::vector<TColor> after = testdoor::Pixels(canvas);
    int width = canvas.GetClientRect().Width();
    for (size_t i = 0; i < after.size(); ++i) {
        TPoint at = {static_cast<int>(i) % width, static_cast<int>(i) / width};
        TColor expected = before[i];
        if (TRect{20, 10, 40, 20}.Contains(at))
            expected = at.x < 30 ? TColor{0, 0, 255} : TColor{255, 0, 0};
        ASSERT_EQ(after[i], expected) << Text(at);
    }
}

TEST(Window, InvertedOnceHoweverTheInvalidRegionLooks)
{
    Canvas canvas;
    canvas.Open();
    canvas.paint = [](TDC &dc, const TRect &) { dc.InvertRect({0, 0, 60, 30}); };
    canvas.Invalidate();
    testdoor::Settle();
    canvas.InvalidateRect({5, 5, 20, 20});
    canvas.InvalidateRect({10, 10, 40, 30});
    canvas.InvalidateRect({30, 2, 50, 12});
    testdoor::Settle();
    for (int y = 0; y < 30; ++y)
        for (int x = 0; x < 60; ++x)
            ASSERT_EQ(testdoor::Pixel(canvas, {x, y}), WIN_BLACK) << x << "," << y;
}

TEST(Window, PaperIsWhiteInADarkTheme)
{
    Canvas canvas;
    testdoor::DarkTheme(true);
    canvas.paint = [](TDC &, const TRect &) {};
    canvas.Open({60, 30});
    ExpectPicture(canvas, std::vector<TColor>(60 * 30, WIN_WHITE));
    testdoor::DarkTheme(false);
}

TEST(Window, WithoutErasingTheOldPixelsStay)
{
    Canvas canvas;
    canvas.Open();
    canvas.paint = [](TDC &, const TRect &) {};
    canvas.InvalidateRect({0, 0, 10, 10}, false);
    testdoor::Settle();
    EXPECT_EQ(testdoor::Pixel(canvas, {3, 3}), Speckle(3, 3));
    canvas.InvalidateRect({0, 0, 10, 10}, true);
    testdoor::Settle();
    EXPECT_EQ(testdoor::Pixel(canvas, {3, 3}), WIN_WHITE);
}

TEST(Window, ClientContextDrawsAtOnceAndTheScreenFollows)
{
    Canvas canvas;
    canvas.Open();
    {
        TClientDC dc(canvas);
        dc.InvertRect({10, 10, 20, 20});
        EXPECT_NE(testdoor::Pixel(canvas, {12, 12}), Speckle(12, 12));
        dc.FillRect({12, 12, 13, 13}, SolidBrush({1, 2, 3}));
    }
    EXPECT_EQ(canvas.painted, "") << "what is drawn is not invalid";
    testdoor::Settle();
    EXPECT_EQ(canvas.painted, "");
    ExpectPicture(canvas, testdoor::Pixels(canvas));
    EXPECT_EQ(testdoor::Pixel(canvas, {12, 12}), (TColor{1, 2, 3}));
}

TEST(Window, ClientContextOutlivesANewExtent)
{
    Canvas canvas;
    canvas.Open({40, 40});
    TClientDC dc(canvas);
    dc.FillRect({0, 0, 5, 5}, SolidBrush(WIN_BLACK));
    testdoor::ResizeClient(canvas, {90, 60});
    dc.FillRect({80, 50, 90, 60}, SolidBrush(WIN_BLACK));
    EXPECT_EQ(testdoor::Pixel(canvas, {85, 55}), WIN_BLACK);
    EXPECT_EQ(testdoor::Pixel(canvas, {70, 55}), Speckle(70, 55));
}

TEST(Window, MouseHandlerFindsThePictureUpToDate)
{
    Canvas canvas;
    canvas.Open();
    canvas.Invalidate();
    canvas.onDown = [&canvas] { EXPECT_FALSE(canvas.NeedsPaint()); };
    testdoor::Press(canvas, {5, 5});
    EXPECT_EQ(canvas.painted, Text(canvas.GetClientRect()) + "e ");
}

TEST(Window, SizeMessagesTellExtentAndKind)
{
    Canvas canvas;
    canvas.Open({60, 30});
    canvas.sizes.clear();
    testdoor::ResizeClient(canvas, {90, 60});
    EXPECT_EQ(canvas.sizes, "0:90,60 ");
    EXPECT_EQ(canvas.painted, "(0,0 90,60)e ");
    canvas.sizes.clear();
    testdoor::Minimize(canvas, true);
    testdoor::Minimize(canvas, false);
    EXPECT_EQ(canvas.sizes, "1:0,0 0:90,60 ");
}

TEST(Window, MovesOutsideComeOnlyWithTheCapture)
{
    Canvas canvas;
    canvas.Open();
    testdoor::Press(canvas, {5, 5});
    canvas.heard.clear();
    testdoor::Move(canvas, {-20, -1}, 0, true);
    EXPECT_EQ(canvas.heard, "");
    canvas.SetCapture();
    testdoor::Move(canvas, {-20, -1}, 0, true);
    testdoor::Move(canvas, {400, 300}, WIN_KEY_CTRL, true);
    EXPECT_EQ(canvas.heard, "move 0 -20,-1 move 8 400,300 ");
    canvas.ReleaseCapture();
    EXPECT_FALSE(canvas.HasCapture());
    EXPECT_EQ(canvas.heard, "move 0 -20,-1 move 8 400,300 ") << "letting go is no loss";
}

TEST(Window, CaptureIsLostWithTheActivationToAnotherWindowAndWhenHidden)
{
    Canvas canvas;
    Canvas other;
    canvas.Open();
    other.Open();
    canvas.SetCapture();
    testdoor::LoseActivation(canvas);
    EXPECT_EQ(canvas.heard, "lost ");
    EXPECT_FALSE(canvas.HasCapture());
    testdoor::LoseActivation(canvas);
    EXPECT_EQ(canvas.heard, "lost ");

    canvas.SetCapture();
    other.SetCapture();
    EXPECT_EQ(canvas.heard, "lost lost ");
    EXPECT_TRUE(other.HasCapture());
    other.ReleaseCapture();
}

TEST(Window, CaptureIsLostToAModalBox)
{
    Canvas canvas;
    canvas.Open();
    TestServices services;
    testdoor::Press(canvas, {5, 5});
    canvas.SetCapture();
    bool held = true;
    testdoor::Script([&](testdoor::ModalBox &box) {
        held = canvas.HasCapture();
        box.Answer(1);
    });
    Message("Halt");
    EXPECT_FALSE(held);
    EXPECT_EQ(canvas.heard, "ldown 0 5,5 lost ");
    EXPECT_EQ(testdoor::PendingScripts(), 0);
}

TEST(Window, FailingPaintIsReportedAndTheWindowStaysUsable)
{
    HookScope hook;
    Canvas canvas;
    canvas.Open();
    canvas.paint = [](TDC &, const TRect &) {
        __enter
            __raise(XLIMIT);
        __point
        __treat
    };
    canvas.Invalidate();
    testdoor::Settle();
    EXPECT_EQ(reports, (std::vector<std::string>{"XLIMIT"}));
    EXPECT_STREQ(xCode, XNULL);
    testdoor::Settle();
    EXPECT_EQ(reports.size(), 1U) << "a failing picture is not tried without end";

    canvas.paint = [](TDC &, const TRect &) { throw 1; };
    canvas.Invalidate();
    testdoor::Settle();
    EXPECT_EQ(reports, (std::vector<std::string>{"XLIMIT", "XUNKNOWN"}));

    canvas.paint = nullptr;
    canvas.Invalidate();
    testdoor::Settle();
    ExpectPicture(canvas, WholePicture(canvas));
    testdoor::Click(canvas, {1, 1});
    EXPECT_EQ(canvas.heard, "ldown 0 1,1 lup 0 1,1 ");
}

TEST(Window, MessageOutOfPaintIsShown)
{
    Canvas canvas;
    canvas.Open();
    TestServices services;
    std::string text;
    testdoor::Script([&](testdoor::ModalBox &box) {
        text = box.Text();
        canvas.Invalidate(); // the box is moved about over the window
        testdoor::Settle();
        box.Answer(1);
    });
    canvas.paint = [&text](TDC &dc, const TRect &r) {
        if (text.empty())
            Message("Assertion failed");
        dc.FillRect(r, SolidBrush(WIN_BLACK));
    };
    canvas.InvalidateRect({0, 0, 10, 10});
    testdoor::Settle();
    EXPECT_EQ(text, "Assertion failed");
    EXPECT_FALSE(canvas.NeedsPaint());
    ExpectPicture(canvas, std::vector<TColor>(testdoor::Pixels(canvas).size(), WIN_BLACK));
}

TEST(Window, FailureOfAHandlerEndsAtTheLoop)
{
    HookScope hook;
    Canvas canvas;
    canvas.Open();
    canvas.onDown = [] {
        __enter
            __raise(XALLOC);
        __point
        __treat
    };
    testdoor::Click(canvas, {1, 1});
    EXPECT_EQ(reports, (std::vector<std::string>{"XALLOC"}));
    canvas.onDown = [] { throw 1; };
    testdoor::Click(canvas, {1, 1});
    EXPECT_EQ(reports, (std::vector<std::string>{"XALLOC", "XUNKNOWN"}));
    EXPECT_STREQ(xCode, XNULL);
}

TEST(Window, NothingIsPaintedOrSentDuringARepairSection)
{
    Canvas canvas;
    canvas.Open();
    std::vector<TColor> before = testdoor::Pixels(canvas);
    canvas.paint = [](TDC &dc, const TRect &r) { dc.FillRect(r, SolidBrush(WIN_BLACK)); };
    canvas.sizes.clear();
    __enter
        __raise(XLIMIT);
    __point
        __repair;
        canvas.Invalidate();
        testdoor::Click(canvas, {1, 1});
        testdoor::Settle();
        EXPECT_EQ(canvas.painted, "");
        EXPECT_EQ(canvas.heard, "");
        ExpectPicture(canvas, before, "the old image");
        testdoor::ResizeClient(canvas, {90, 60});
        EXPECT_EQ(canvas.sizes, "");
        EXPECT_TRUE(canvas.NeedsPaint());
    __treat
    for (int i = 0; i < 2000 && (canvas.NeedsPaint() || canvas.sizes.empty()); ++i) {
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
        testdoor::Settle();
    }
    EXPECT_EQ(canvas.sizes, "0:90,60 ");
    EXPECT_EQ(canvas.painted, "(0,0 90,60)e ");
    EXPECT_EQ(testdoor::Pixel(canvas, {89, 59}), WIN_BLACK);
}

TEST(Window, ScrolledStripsEqualAFullPicture)
{
    Canvas canvas(true);
    canvas.Open();
    canvas.EnableScrollBar(WIN_BAR_BOTH, true);
    static const TPoint table[] = {{1, 0},   {0, 1},   {8, 5},     {3, 9},       {0, 0},      {200, 3},
                                   {3, 200}, {5, 201}, {999, 999}, {1000, 1000}, {990, 1000}, {0, 500}};
    for (TPoint to : table) {
        canvas.Scroller()->ScrollTo(to.x, to.y);
        testdoor::Settle();
        ExpectPicture(canvas, WholePicture(canvas), Text(to));
    }
}

TEST(Window, ScrollingPaintsNoMoreThanTheStrips)
{
    Canvas canvas(true);
    canvas.Open();
    TRect client = canvas.GetClientRect();
    canvas.Scroller()->ScrollTo(0, 4);
    testdoor::Settle();
    EXPECT_EQ(canvas.painted, Text(TRect{0, client.bottom - 4, client.right, client.bottom}) + "e ");
    canvas.painted.clear();
    canvas.Scroller()->ScrollTo(3, 0);
    testdoor::Settle();
    EXPECT_EQ(canvas.painted, Text(TRect{0, 0, client.right, 4}) + "e " +
                                  Text(TRect{client.right - 3, 4, client.right, client.bottom}) + "e ");
}

TEST(Window, InvalidRegionScrollsAlong)
{
    Canvas canvas(true);
    canvas.Open();
    // A wrong spot that is to be painted over, wherever the picture goes before that happens.
    auto spoil = [&canvas](const TRect &r) {
        TClientDC dc(canvas);
        dc.FillRect(r, SolidBrush({255, 0, 255}));
        canvas.InvalidateRect(r);
    };
    spoil({20, 20, 25, 25});
    canvas.Scroller()->ScrollTo(6, 9);
    canvas.Scroller()->ScrollTo(4, 12);
    spoil({0, 0, 3, 3});
    canvas.Scroller()->ScrollTo(5, 12); // partly out of sight
    testdoor::Settle();
    ExpectPicture(canvas, WholePicture(canvas));
}

TEST(Window, StripsAreThereAtOnceDuringADrag)
{
    Canvas canvas(true);
    canvas.Open();
    canvas.SetCapture();
    canvas.Scroller()->ScrollTo(0, 4);
    EXPECT_FALSE(canvas.NeedsPaint());
    ExpectPicture(canvas, WholePicture(canvas));
    canvas.ReleaseCapture();
}

TEST(Window, DroppedFileComesInTheSystemsForm)
{
    Canvas canvas;
    canvas.Open();
    testdoor::Drop(canvas, "/tmp/H\xC3\xA4lle.sc1");
    EXPECT_EQ(canvas.heard, "") << "the program that drops must not wait for us";
    testdoor::Settle();
    EXPECT_EQ(canvas.heard, "drop \\tmp\\H\xE4lle.sc1");
}

TEST(Window, DroppedFileWithAForeignNameIsRefusedWithAMessage)
{
    Canvas canvas;
    canvas.Open();
    static std::string shown;
    shown.clear();
    SetMessageSink([](const char *text, bool) { shown += text; });
    SetResTextSink([](int id) { return id == 1014 ? "!Datei \"%s\" zu" : ""; });
    testdoor::Drop(canvas, "/tmp/\xD0\x96.sc1");
    testdoor::Settle();
    EXPECT_EQ(canvas.heard, "");
    EXPECT_EQ(shown, "Datei \"\\tmp\\?.sc1\" zu");
    SetMessageSink(NULL);
    SetResTextSink(NULL);
}

TEST(Window, ChildrenAreAskedBeforeClosing)
{
    struct Stubborn : TWindow {
        using TWindow::TWindow;
        bool CanClose() override { return may; }
        bool may = false;
    };
    TWindow parent;
    {
        Stubborn child(&parent);
        EXPECT_FALSE(parent.CanClose());
        child.may = true;
        EXPECT_TRUE(parent.CanClose());
        child.may = false;
    }
    EXPECT_TRUE(parent.CanClose()) << "a child that is gone is not asked";
}

TEST(Window, MayDieInItsOwnHandlerAndBeforeItsParent)
{
    auto *canvas = new Canvas;
    canvas->Open();
    canvas->onDown = [canvas] {
        std::function<void()> self = canvas->onDown; // the closure lives in what it deletes
        delete canvas;
    };
    testdoor::Press(*canvas, {1, 1});
    testdoor::Settle();

    auto parent = std::make_unique<Canvas>();
    parent->Open();
    Canvas child;
    child.SetParent(parent.get());
    child.Create();
    parent.reset();
    EXPECT_FALSE(child.IsCreated()) << "the widget went with its parent";
    child.Invalidate();
    child.UpdateWindow();
    EXPECT_EQ(child.Parent(), static_cast<TWindow *>(NULL));
}
