// The main window: commands from menus and keys, their questions, failures, and closing.
#include "frameclient.h"
#include "lib/platform.h"
#include "win/boxes.h"
#include "win/gadgets.h"

#include <gtest/gtest.h>
#include <new>

#include "lib/xon.h"

namespace
{
std::string Shown(const std::vector<testdoor::MenuEntry> &entries)
{
    std::string shown;
    for (const testdoor::MenuEntry &entry : entries)
        shown += std::to_string(entry.id) + (entry.enabled ? " + " : " - ") + (entry.checked ? "* " : "") +
                 entry.text + "\n";
    return shown;
}

class Frame : public testing::Test, public ShownFrame
{
protected:
    Frame() { Show(); }
};

int reports = 0;

class FrameFailures : public Frame
{
protected:
    FrameFailures()
    {
        reports = 0;
        SetFailureHook([] { ++reports; });
    }
    ~FrameFailures() override { SetFailureHook(NULL); }
};
} // namespace

TEST_F(Frame, MenuShowsTextsAndKeysAndWhatTheClientAllows)
{
    client.allowed = {101, 103};
    client.ticked = {103};
    client.refused = {102};
    EXPECT_EQ(Shown(testdoor::Menu(frame, 0)), "101 + \326&ffnen...\tStrg+O\n"
                                               "0 - \n"
                                               "102 - &Schlie\337en\tStrg+Umschalt+S\n"
                                               "0 + &Mehr\n"
                                               "103 + * &Liste\n");
    EXPECT_EQ(Shown(testdoor::Menu(frame, 1)), "104 - &Themen\tF1\n") << "nobody answered";
    EXPECT_EQ(Shown(testdoor::Menu(frame, 2)), "");
}

TEST_F(Frame, MenuAsksAnewEachTimeItOpens)
{
    EXPECT_EQ(Shown(testdoor::Menu(frame, 1)), "104 - &Themen\tF1\n");
    client.allowed = {104};
    client.ticked = {104};
    EXPECT_EQ(Shown(testdoor::Menu(frame, 1)), "104 + * &Themen\tF1\n");
    client.allowed = {};
    EXPECT_EQ(Shown(testdoor::Menu(frame, 1)), "104 - &Themen\tF1\n");
}

TEST_F(Frame, ChosenItemReachesTheClientAndAGreyOneDoesNot)
{
    client.allowed = {101, 103};
    for (int id : {101, 102, 103, 104})
        testdoor::ChooseMenu(frame, id);
    EXPECT_EQ(client.Heard(), "101 103 ");
}

TEST_F(Frame, AnotherMenuTakesTheFirstOnesPlace)
{
    frame.AssignMenu(1);
    EXPECT_EQ(testdoor::Menu(frame, 1).size(), 1u);
    EXPECT_EQ(testdoor::Menu(frame, 2).size(), 0u) << "not added to the first one";
}

TEST_F(Frame, KeyAsksForItsCommandAtTheMomentItIsPressed)
{
    testdoor::Key(client, "F5");
    EXPECT_EQ(client.Heard(), "key0 ") << "grey: the key stays a key";
    client.allowed = {107, 101, 102};
    testdoor::Key(client, "F5");
    testdoor::Key(client, "Ctrl+O");
    testdoor::Key(client, "Ctrl+Shift+S");
    EXPECT_EQ(client.Heard(), "107 101 102 ");
    client.refused = {107};
    client.allowed = {};
    testdoor::Key(client, "F5");
    EXPECT_EQ(client.Heard(), "key0 ");
}

TEST_F(Frame, EscAndDelReachTheClientAsKeysWhileTheirCommandsAreGrey)
{
    testdoor::Key(client, "Esc");
    testdoor::Key(client, "Del");
    EXPECT_EQ(client.Heard(),
              "key" + std::to_string(WIN_VK_ESCAPE) + " key" + std::to_string(WIN_VK_DELETE) + " ");
    client.allowed = {105, 106};
    testdoor::Key(client, "Esc");
    testdoor::Key(client, "Del");
    EXPECT_EQ(client.Heard(), "106 105 ");
}

TEST_F(Frame, KeyWithOtherModifiersIsAnotherKey)
{
    client.allowed = {101, 102, 104, 105, 106, 107};
    for (const char *key : {"O", "Shift+F5", "Ctrl+S", "Ctrl+Alt+O", "Ctrl+Shift+O", "F2"})
        testdoor::Key(client, key);
    EXPECT_EQ(client.Heard(), "key0 key0 key0 key0 key0 key0 ");
}

TEST_F(Frame, KeysGiveNoCommandsDuringAGestureWithTheMouse)
{
    client.allowed = {107};
    client.SetCapture();
    testdoor::Key(client, "F5");
    EXPECT_EQ(client.Heard(), "key0 ");
    client.ReleaseCapture();
    testdoor::Key(client, "F5");
    EXPECT_EQ(client.Heard(), "107 ");
}

TEST_F(Frame, PostedCommandComesWithALaterTurnOfTheLoop)
{
    frame.PostCommand(5);
    frame.PostCommand(6);
    EXPECT_EQ(client.Heard(), "");
    testdoor::Settle();
    EXPECT_EQ(client.Heard(), "5 6 ");
}

TEST_F(Frame, PostedCommandWaitsUntilTheMessageBoxIsAnswered)
{
    frame.PostCommand(5);
    testdoor::Script([this](testdoor::ModalBox &box) {
        testdoor::Settle();
        EXPECT_EQ(client.Heard(), "");
        box.Answer(WIN_ID_OK);
    });
    MessageBox(&client, "Text", "Titel", WIN_BOX_OK, WIN_ICON_NONE);
    EXPECT_EQ(testdoor::PendingScripts(), 0);
    std::string heard;
    for (int start = WinTickCount(); heard.empty() && WinTickCount() - start < 10000;) {
        testdoor::Settle();
        heard = client.Heard();
    }
    EXPECT_EQ(heard, "5 ");
}

TEST_F(Frame, PostedCommandOfAFrameThatIsGoneComesToNothing)
{
    FrameClient other;
    {
        TDecoratedFrame gone("kurz", other);
        gone.PostCommand(5);
    }
    testdoor::Settle();
    EXPECT_EQ(other.Heard(), "");
}

TEST_F(Frame, TriesOnlyWhatIsAllowed)
{
    client.allowed = {7};
    client.refused = {8};
    EXPECT_TRUE(frame.TryCommand(7));
    EXPECT_FALSE(frame.TryCommand(8));
    EXPECT_FALSE(frame.TryCommand(9));
    EXPECT_EQ(client.Heard(), "7 ");
}

TEST_F(FrameFailures, FailureOfACommandIsReportedAndEndsThere)
{
    client.onCommand = [](int id) {
        if (id == 101)
            XRaise(XLIMIT, __FILE__, __LINE__);
        if (id == 107)
            throw std::bad_alloc();
    };
    client.allowed = {101, 107, 103};
    testdoor::ChooseMenu(frame, 101);
    EXPECT_EQ(reports, 1);
    EXPECT_EQ(xRepaired, XLIMIT);
    testdoor::Key(client, "F5");
    EXPECT_EQ(reports, 2);
    EXPECT_EQ(xRepaired, XALLOC);
    frame.PostCommand(101);
    testdoor::Settle();
    EXPECT_EQ(reports, 3);
    testdoor::ChooseMenu(frame, 103);
    EXPECT_EQ(client.Heard(), "101 107 101 103 ");
    EXPECT_STREQ(xCode, XNULL);
}

TEST_F(Frame, CloseBoxAsksTheClient)
{
    client.mayClose = false;
    frame.CloseWindow();
    EXPECT_EQ(client.Heard(), "close? ");
    TestApplication().SetMainWindow(NULL); // the loop's end is another test's
    client.mayClose = true;
    frame.CloseWindow();
    testdoor::Settle();
    EXPECT_EQ(client.Heard(), "close? hidden ");
}

TEST_F(FrameFailures, FailureWhileClosingKeepsTheWindowOpen)
{
    struct Failing : FrameClient {
        bool CanClose() override
        {
            XRaise(XFWRITE, __FILE__, __LINE__);
            return true;
        }
    } failing;
    TDecoratedFrame other("anderes", failing);
    other.Create();
    testdoor::Settle();
    other.CloseWindow();
    testdoor::Settle();
    EXPECT_EQ(reports, 1);
    EXPECT_EQ(failing.Heard(), "");
}

TEST_F(Frame, IdleTimeGoesToTheClient)
{
    EXPECT_TRUE(frame.IdleAction(3));
    EXPECT_EQ(client.Heard(), "idle3 ");
}

TEST_F(Frame, FitsTheScreenAndGivesTheClientMostOfItself)
{
    TRect whole = frame.GetClientRect();
    EXPECT_GT(whole.Width(), 300);
    EXPECT_LT(whole.Width(), 1024 * TestScale());
    EXPECT_LT(whole.Height(), 768 * TestScale());
    EXPECT_EQ(client.GetClientRect().Width(), whole.Width());
    EXPECT_GT(client.GetClientRect().Height(), whole.Height() * 8 / 10);
}

TEST_F(Frame, BarsStandAboveAndBelowTheClient)
{
    FrameClient middle;
    TStatusBar status;
    TControlBar tools;
    tools.Insert(std::make_unique<TButtonGadget>(1, 101));
    TDecoratedFrame other("mit Leisten", middle);
    other.Insert(status, TDecoratedFrame::BOTTOM);
    other.Insert(tools, TDecoratedFrame::TOP);
    other.Create();
    testdoor::Settle();
    TPoint top = tools.ClientToScreen({0, 0});
    TPoint center = middle.ClientToScreen({0, 0});
    TPoint bottom = status.ClientToScreen({0, 0});
    EXPECT_LT(top.y, center.y);
    EXPECT_LT(center.y, bottom.y);
    EXPECT_EQ(top.x, bottom.x);
    EXPECT_EQ(tools.Parent(), &other);
    EXPECT_EQ(status.Parent(), &other);
}

TEST(FrameLife, ClientAndBarsOutliveTheFrameWithoutAWidget)
{
    ClientResources resources;
    FrameClient client;
    TStatusBar status;
    TControlBar tools;
    tools.Insert(std::make_unique<TButtonGadget>(1, 101));
    for (int round = 0; round < 2; ++round) {
        TDecoratedFrame frame("Fenster", client);
        EXPECT_FALSE(frame.IsCreated());
        frame.SetCaption("noch nicht da");
        frame.CloseWindow();
        frame.Insert(status, TDecoratedFrame::BOTTOM);
        frame.Insert(tools, TDecoratedFrame::TOP);
        frame.Create();
        frame.Create();
        frame.AssignMenu(4711); // there is none
        frame.SetIcon(4711);
        frame.SetCaption("Hall [*].sc1");
        frame.IdleEnable();
        testdoor::Settle();
        EXPECT_TRUE(client.IsCreated() && status.IsCreated() && tools.IsCreated());
        EXPECT_EQ(frame.Caption(), "Hall [*].sc1");
        EXPECT_EQ(testdoor::Menu(frame, 0).size(), 0u);
    }
    EXPECT_FALSE(client.IsCreated() || status.IsCreated() || tools.IsCreated());
    EXPECT_EQ(client.Parent(), static_cast<TWindow *>(NULL));
    EXPECT_EQ(status.Parent(), static_cast<TWindow *>(NULL));
    EXPECT_FALSE(tools.Press(101));
    status.SetText("niemand sieht das");
    EXPECT_EQ(status.Text(), "niemand sieht das");
}

TEST(FrameLife, BarThatGoesFirstLeavesTheFrameWhole)
{
    FrameClient client;
    auto tools = std::make_unique<TControlBar>();
    tools->Insert(std::make_unique<TButtonGadget>(1, 101));
    TDecoratedFrame frame("Fenster", client);
    frame.Insert(*tools, TDecoratedFrame::TOP);
    frame.Create();
    testdoor::Settle();
    tools.reset();
    frame.IdleEnable();
    EXPECT_FALSE(frame.PressGadget(101));
}
