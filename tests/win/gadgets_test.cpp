// Tool bar and status bar, as a person sees them.
#include "frameclient.h"
#include "lib/platform.h"
#include "lib/xfail.h"
#include "support/metawriter.h"
#include "win/gadgets.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace
{
std::string RedSquare()
{
    return EnhancedFile({{39, {1, 0, 0x0000FF, 0}},
                         {37, {1}},
                         {37, {0x80000008}},
                         {3, {0, 0, 1600, 1600, 4, 0, 0, 1600, 0, 1600, 1600, 0, 1600}}});
}

const char *CommandText(int id)
{
    switch (id) {
    case 101:
        return "Holt eine Halle\n\326ffnen";
    case 102:
        return "\nSchlie\337en";
    case 103:
        return "ohne Umbruch";
    default:
        return NULL;
    }
}

class Bars : public testing::Test
{
protected:
    Bars() : frame("Fenster", client)
    {
        SetResTextSink(CommandText);
        picture = {50, reinterpret_cast<const uint8_t *>(red.data()), red.size(), 24, 24, 0, 0};
        resources.tables.pictures = &picture;
        resources.tables.pictureCount = 1;
        for (int command : {101, 102, 103}) {
            tools.Insert(std::make_unique<TButtonGadget>(command == 102 ? 999 : 50, command));
            tools.Insert(std::make_unique<TSeparatorGadget>());
            tools.Insert(std::make_unique<TSeparatorGadget>());
        }
        frame.Insert(status, TDecoratedFrame::BOTTOM);
        frame.Insert(tools, TDecoratedFrame::TOP);
        TestApplication().SetMainWindow(&frame);
        TestApplication().SetStatusWindow(&status);
        frame.Create();
        testdoor::Settle();
        client.Heard();
    }

    ~Bars() override
    {
        TestApplication().SetMainWindow(NULL);
        TestApplication().SetStatusWindow(NULL);
        SetResTextSink(NULL);
    }

    /// The device pixels of the bar that are of this colour.
    static long Count(TWindow &bar, TColor color)
    {
        std::vector<TColor> shown = testdoor::ShownPixels(bar);
        return std::count(shown.begin(), shown.end(), color);
    }

    testdoor::Gadget Button(int command) { return testdoor::Gadgets(frame, command).at(0); }

    ClientResources resources;
    std::string red = RedSquare();
    ResPICTURE picture;
    FrameClient client;
    TStatusBar status;
    TControlBar tools;
    TDecoratedFrame frame;
};

const TColor RED = {255, 0, 0};
} // namespace

TEST_F(Bars, ButtonsShowTheirPicturesInEveryDevicePixel)
{
    client.allowed = {101, 103};
    testdoor::IdleStep();
    testdoor::Settle();
    long side = std::lround(24 * TestScale());
    EXPECT_EQ(Count(tools, RED), 2 * side * side);
}

TEST_F(Bars, DisabledButtonHasNoColourButCanBeSeen)
{
    client.allowed = {101};
    testdoor::IdleStep();
    testdoor::Settle();
    long side = std::lround(24 * TestScale());
    EXPECT_EQ(Count(tools, RED), side * side);
    std::vector<TColor> shown = testdoor::ShownPixels(tools);
    EXPECT_TRUE(std::none_of(shown.begin(), shown.end(), [](TColor c) {
        return !(c == RED) && c.red - std::min(c.green, c.blue) > 40;
    })) << "no trace of red beside the enabled one";
    std::vector<TColor> before = shown;
    client.allowed = {101, 103};
    testdoor::IdleStep();
    testdoor::Settle();
    EXPECT_NE(testdoor::ShownPixels(tools), before);
}

TEST_F(Bars, ClickGivesTheCommandWhereItIsAllowed)
{
    client.allowed = {101, 102};
    testdoor::IdleStep();
    client.Heard();
    EXPECT_TRUE(testdoor::ClickGadget(frame, 101));
    EXPECT_TRUE(testdoor::ClickGadget(frame, 102));
    EXPECT_FALSE(testdoor::ClickGadget(frame, 103)) << "grey";
    EXPECT_FALSE(testdoor::ClickGadget(frame, 104)) << "no such button";
    EXPECT_EQ(client.Heard(), "101 102 ");
}

TEST_F(Bars, ClickAsksAgainWhatIdleTimeHasShown)
{
    client.allowed = {101};
    testdoor::IdleStep();
    client.Heard();
    client.allowed = {};
    testdoor::ClickGadget(frame, 101);
    EXPECT_FALSE(frame.PressGadget(101));
    EXPECT_EQ(client.Heard(), "");
    client.allowed = {101};
    EXPECT_TRUE(frame.PressGadget(101));
    EXPECT_FALSE(frame.PressGadget(4711));
    EXPECT_EQ(client.Heard(), "101 ");
}

TEST_F(Bars, IdleTimeShowsWhatIsAllowedAndTicked)
{
    client.allowed = {101, 102};
    client.ticked = {102};
    testdoor::IdleStep();
    EXPECT_TRUE(Button(101).enabled);
    EXPECT_FALSE(Button(101).checked);
    EXPECT_TRUE(Button(102).enabled);
    EXPECT_TRUE(Button(102).checked);
    EXPECT_FALSE(Button(103).enabled) << "nobody answered";
    client.refused = {102};
    client.allowed = {101};
    client.ticked = {101};
    testdoor::IdleStep();
    EXPECT_TRUE(Button(101).checked);
    EXPECT_FALSE(Button(102).enabled);
    EXPECT_FALSE(Button(102).checked);
}

TEST_F(Bars, TickThatGoesIsGoneFromTheScreen)
{
    client.allowed = {101, 102};
    testdoor::IdleStep();
    testdoor::Settle();
    std::vector<TColor> plain = testdoor::ShownPixels(tools);
    for (int command : {101, 102}) {
        client.ticked = {command};
        testdoor::IdleStep();
        testdoor::Settle();
        EXPECT_NE(testdoor::ShownPixels(tools), plain) << command;
    }
    client.ticked.clear();
    testdoor::IdleStep();
    testdoor::Settle();
    EXPECT_EQ(testdoor::ShownPixels(tools), plain);
}

TEST_F(Bars, ClickOnATickedButtonLeavesTheTickToTheClient)
{
    client.allowed = {101};
    client.ticked = {101};
    testdoor::IdleStep();
    testdoor::ClickGadget(frame, 101);
    testdoor::IdleStep();
    EXPECT_TRUE(Button(101).checked);
}

TEST_F(Bars, TooltipIsTheTextBehindTheLineBreak)
{
    EXPECT_EQ(Button(101).tip, "\326ffnen");
    EXPECT_EQ(Button(102).tip, "Schlie\337en");
    EXPECT_EQ(Button(103).tip, "");
}

TEST_F(Bars, ButtonWithoutAPictureShowsTheFirstLetterOfItsTooltip)
{
    EXPECT_EQ(Button(101).text, "");
    EXPECT_EQ(Button(102).text, "S");
}

TEST_F(Bars, PointingAtAButtonShowsItsStatusText)
{
    TestServices services;
    StatusMessage("Rev. 2026-11");
    testdoor::PointAtGadget(frame, 102, true);
    EXPECT_EQ(status.Text(), "Rev. 2026-11") << "it has none";
    testdoor::PointAtGadget(frame, 102, false);
    EXPECT_EQ(status.Text(), "Rev. 2026-11");
    testdoor::PointAtGadget(frame, 101, true);
    EXPECT_EQ(status.Text(), "Holt eine Halle");
    testdoor::PointAtGadget(frame, 101, false);
    EXPECT_EQ(status.Text(), "");
}

TEST_F(Bars, StatusTextIsOnTheScreenBeforeTheLoopTurns)
{
    std::vector<TColor> empty = testdoor::ShownPixels(status);
    status.SetText("Auswertung l\344uft . . .");
    std::vector<TColor> shown = testdoor::ShownPixels(status);
    EXPECT_NE(shown, empty);
    EXPECT_EQ(shown, testdoor::Pixels(status));
    status.SetText("");
    EXPECT_EQ(testdoor::ShownPixels(status), empty);
}

TEST_F(Bars, StatusTextStaysOutOfTheRightField)
{
    status.SetRightText("100%");
    EXPECT_EQ(status.RightText(), "100%");
    std::vector<TColor> before = testdoor::ShownPixels(status);
    status.SetText(std::string(5000, 'W').c_str());
    std::vector<TColor> after = testdoor::ShownPixels(status);
    int width = status.GetClientRect().Width();
    int field = static_cast<int>(40 * TestScale());
    ASSERT_EQ(before.size(), after.size());
    bool changed = false;
    for (size_t i = 0; i < after.size(); ++i) {
        bool same = before[i] == after[i];
        changed = changed || !same;
        ASSERT_TRUE(same || static_cast<int>(i) % width < width - field) << "pixel " << i;
    }
    EXPECT_TRUE(changed);
    status.SetText("");
    EXPECT_EQ(testdoor::ShownPixels(status), before);
    status.SetRightText("");
    EXPECT_NE(testdoor::ShownPixels(status), before);
}

TEST_F(Bars, StatusBarTakesControlCharactersForBlanks)
{
    status.SetText("a\nb\tc");
    EXPECT_EQ(status.Text(), "a b c");
}

TEST_F(Bars, StatusBarFollowsTheDesktopsColours)
{
    status.SetText("Text");
    std::vector<TColor> light = testdoor::ShownPixels(status);
    testdoor::DarkTheme(true);
    testdoor::Settle();
    std::vector<TColor> dark = testdoor::ShownPixels(status);
    testdoor::DarkTheme(false);
    testdoor::Settle();
    EXPECT_LT(dark.back().red, 100);
    EXPECT_GT(light.back().red, 150);
    EXPECT_EQ(testdoor::ShownPixels(status), light);
}

TEST(BarLife, BarsWithoutAWidgetOnlyRemember)
{
    TestApplication();
    TStatusBar status;
    status.SetText("Text");
    status.SetRightText("rechts");
    EXPECT_EQ(status.Text(), "Text");
    TControlBar tools({.points = 8, .bold = true, .italic = true});
    tools.Insert(std::make_unique<TButtonGadget>(1, 2));
    EXPECT_FALSE(tools.Press(2));
}
