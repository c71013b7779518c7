// Positions and limits of the scroller, its bars and the wheel.
#include "support/testapp.h"
#include "win/testdoor.h"
#include "win/window.h"

#include <climits>
#include <gtest/gtest.h>
#include <memory>
#include <string>

namespace
{
/// A window with a scroller of 20 px lines, 100 x 90 px of client area where it is shown.
class Pane : public TWindow
{
public:
    explicit Pane(int xRange = 500, int yRange = 700, int xUnit = 1, int yUnit = 1)
    {
        TestApplication();
        SetScroller(std::make_unique<TScroller>(*this, xUnit, yUnit, xRange, yRange));
        Scroller()->SetLine(20, 20);
    }
    void Open()
    {
        Create();
        testdoor::ResizeClient(*this, {100, 90});
    }
    std::string Place() const
    {
        return std::to_string(Scroller()->XPos()) + "," + std::to_string(Scroller()->YPos());
    }
};
} // namespace

TEST(Scroller, PositionIsLimitedToTheRange)
{
    static const struct {
        int x, y;
        const char *place;
    } table[] = {
        {0, 0, "0,0"},
        {1, 1, "1,1"},
        {500, 700, "500,700"},
        {501, 701, "500,700"},
        {-1, -1, "0,0"},
        {INT_MAX, INT_MAX, "500,700"},
        {INT_MIN, INT_MIN, "0,0"},
        {-7, 650, "0,650"},
    };
    for (bool shown : {false, true}) {
        Pane pane;
        if (shown)
            pane.Open();
        for (const auto &row : table) {
            pane.Scroller()->ScrollTo(row.x, row.y);
            EXPECT_EQ(pane.Place(), row.place) << row.x << "," << row.y;
        }
    }
}

TEST(Scroller, NewRangeLimitsThePosition)
{
    Pane pane;
    pane.Open();
    pane.Scroller()->ScrollTo(400, 600);
    pane.Scroller()->SetRange(450, 100);
    EXPECT_EQ(pane.Place(), "400,100");
    pane.Scroller()->SetRange(0, -5);
    EXPECT_EQ(pane.Place(), "1,1");
    EXPECT_EQ(pane.Scroller()->XRange(), 1);
    EXPECT_EQ(pane.Scroller()->YRange(), 1);
}

TEST(Scroller, HugeRangesDoNotOverflow)
{
    Pane pane(INT_MAX, INT_MAX, 1000, 1000);
    pane.Open();
    pane.Scroller()->ScrollTo(INT_MAX, INT_MAX);
    EXPECT_EQ(pane.Scroller()->XPos(), INT_MAX);
    pane.Scroller()->ScrollBy(INT_MAX, 20);
    EXPECT_EQ(pane.Scroller()->YPos(), INT_MAX);
    pane.ScrollMessage(WIN_BAR_BOTH, WIN_SCROLL_PAGEDOWN);
    EXPECT_EQ(pane.Scroller()->XPos(), INT_MAX);
    testdoor::Wheel(pane, {5, 5}, -15000);
    EXPECT_EQ(pane.Scroller()->YPos(), INT_MAX);
    pane.Scroller()->ScrollBy(INT_MIN, INT_MIN);
    EXPECT_EQ(pane.Place(), "0,0");
    testdoor::Settle();
    EXPECT_FALSE(pane.NeedsPaint());
}

TEST(Scroller, MessagesActAsTheBarWould)
{
    static const struct {
        TBar bar;
        TScrollCode code;
        const char *from300; // place after the message, from (300, 300)
    } table[] = {
        {WIN_BAR_HORIZONTAL, WIN_SCROLL_LINEUP, "280,300"},
        {WIN_BAR_HORIZONTAL, WIN_SCROLL_LINEDOWN, "320,300"},
        {WIN_BAR_HORIZONTAL, WIN_SCROLL_PAGEUP, "200,300"},
        {WIN_BAR_HORIZONTAL, WIN_SCROLL_PAGEDOWN, "400,300"},
        {WIN_BAR_HORIZONTAL, WIN_SCROLL_TOP, "0,300"},
        {WIN_BAR_HORIZONTAL, WIN_SCROLL_BOTTOM, "500,300"},
        {WIN_BAR_VERTICAL, WIN_SCROLL_LINEUP, "300,280"},
        {WIN_BAR_VERTICAL, WIN_SCROLL_LINEDOWN, "300,320"},
        {WIN_BAR_VERTICAL, WIN_SCROLL_PAGEUP, "300,210"},
        {WIN_BAR_VERTICAL, WIN_SCROLL_PAGEDOWN, "300,390"},
        {WIN_BAR_VERTICAL, WIN_SCROLL_TOP, "300,0"},
        {WIN_BAR_VERTICAL, WIN_SCROLL_BOTTOM, "300,700"},
        {WIN_BAR_BOTH, WIN_SCROLL_LINEDOWN, "320,320"},
    };
    Pane pane;
    pane.Open();
    for (const auto &row : table) {
        pane.Scroller()->ScrollTo(300, 300);
        pane.ScrollMessage(row.bar, row.code);
        EXPECT_EQ(pane.Place(), row.from300) << row.bar << " " << row.code;
    }
}

TEST(Scroller, DisabledBarScrollsNothingButTheProgramStillCan)
{
    Pane pane;
    pane.Open();
    pane.EnableScrollBar(WIN_BAR_VERTICAL, false);
    EXPECT_FALSE(pane.IsScrollBarEnabled(WIN_BAR_VERTICAL));
    EXPECT_TRUE(pane.IsScrollBarEnabled(WIN_BAR_HORIZONTAL));
    pane.ScrollMessage(WIN_BAR_VERTICAL, WIN_SCROLL_BOTTOM);
    testdoor::Wheel(pane, {5, 5}, -1);
    EXPECT_EQ(pane.Place(), "0,0");
    pane.ScrollMessage(WIN_BAR_BOTH, WIN_SCROLL_LINEDOWN);
    EXPECT_EQ(pane.Place(), "20,0");
    pane.Scroller()->ScrollTo(5, 6);
    EXPECT_EQ(pane.Place(), "5,6");
    pane.EnableScrollBar(WIN_BAR_BOTH, false);
    EXPECT_FALSE(pane.IsScrollBarEnabled(WIN_BAR_HORIZONTAL));
    pane.EnableScrollBar(WIN_BAR_BOTH, true);
    EXPECT_TRUE(pane.IsScrollBarEnabled(WIN_BAR_VERTICAL));
}

TEST(Scroller, WindowWithoutAScrollerHasNoBars)
{
    TestApplication();
    TWindow window;
    EXPECT_FALSE(window.IsScrollBarEnabled(WIN_BAR_VERTICAL));
    window.ScrollMessage(WIN_BAR_VERTICAL, WIN_SCROLL_LINEDOWN);
    window.EvMouseWheel(0, {0, 0}, 0, 1);
    EXPECT_EQ(window.Scroller(), static_cast<TScroller *>(NULL));
}

TEST(Scroller, WheelScrollsThreeLinesANotchWithShiftSideways)
{
    Pane pane;
    pane.Open();
    pane.Scroller()->ScrollTo(300, 300);
    testdoor::Wheel(pane, {5, 5}, 1);
    EXPECT_EQ(pane.Place(), "300,240");
    testdoor::Wheel(pane, {5, 5}, -2);
    EXPECT_EQ(pane.Place(), "300,360");
    testdoor::Wheel(pane, {5, 5}, 1, WIN_KEY_SHIFT);
    EXPECT_EQ(pane.Place(), "240,360");
    testdoor::Wheel(pane, {5, 5}, 1, WIN_KEY_CTRL);
    EXPECT_EQ(pane.Place(), "240,360");
    pane.EvMouseWheel(0, {5, 5}, -1, 0);
    EXPECT_EQ(pane.Place(), "300,360");
}

TEST(Scroller, FineWheelAddsUpWithoutLoss)
{
    Pane pane;
    for (int i = 0; i < 120; ++i)
        pane.EvMouseWheel(0, {0, 0}, 0, -1.0 / 120);
    EXPECT_NEAR(pane.Scroller()->YPos(), 60, 1);
    for (int i = 0; i < 7; ++i)
        pane.EvMouseWheel(0, {0, 0}, 0, -0.125);
    EXPECT_NEAR(pane.Scroller()->YPos(), 112, 1);
}

TEST(Scroller, ThumbMovesTheContentAtOnceOnlyWithTracking)
{
    Pane pane;
    pane.Open();
    pane.Scroller()->trackMode = false;
    pane.Scroller()->SetRange(500, 700);
    testdoor::DragThumb(pane, WIN_BAR_VERTICAL, 123, false);
    EXPECT_EQ(pane.Place(), "0,0");
    testdoor::DragThumb(pane, WIN_BAR_VERTICAL, 200, true);
    EXPECT_EQ(pane.Place(), "0,200");
    pane.Scroller()->trackMode = true;
    pane.Scroller()->SetRange(500, 700);
    testdoor::DragThumb(pane, WIN_BAR_HORIZONTAL, 77, false);
    EXPECT_EQ(pane.Place(), "77,200");
}

TEST(Scroller, UnitsAndPages)
{
    Pane pane(50, 70, 10, 30);
    pane.Open();
    EXPECT_EQ(pane.Scroller()->XPage(), 10);
    EXPECT_EQ(pane.Scroller()->YPage(), 3);
    pane.ScrollMessage(WIN_BAR_BOTH, WIN_SCROLL_PAGEDOWN);
    EXPECT_EQ(pane.Place(), "10,3");
    Pane hidden(50, 70, 10, 30);
    EXPECT_EQ(hidden.Scroller()->XPage(), 1) << "a window without a widget shows nothing";
}
