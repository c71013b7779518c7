// The plans in the window: how a person gets into one and out again, looks around in it and in the report, and
// that nothing stays behind on the screen.
#include "zulerioncase.h"

namespace
{
using testdoor::DialogBox;

enum { ZOOM_BOX = 100 };

class Plans : public Zulerion
{
protected:
    Plans() { OpenSample("Produktionshalle"); }

    /// Floor, walls and ceiling, in their order.
    std::vector<TEdcBlock *> All()
    {
        std::vector<TEdcBlock *> parts = Doc().Parts();
        return {parts[2], parts[6], parts[8], parts[10], parts[12], parts[14]};
    }
    /// A double click on the plan's head, which is in view whatever the window's size.
    void OpenPlan(TEdcBlock *plan)
    {
        ScrollTo(plan);
        TRect place = Doc().ToWindow(plan->rect.Rect());
        testdoor::DoubleClick(Doc(), {place.left + 20, place.top + 10});
        testdoor::Settle();
        ASSERT_EQ(Doc().openedBlk, plan);
    }
    int Percent() { return Doc().CurrentZoom().Percent(); }
    bool IsGadgetEnabled(int command)
    {
        testdoor::IdleStep();
        return testdoor::Gadgets(Frame(), command)[0].enabled;
    }
};
} // namespace

TEST_F(Plans, OpenWithADoubleClickAndCloseWithEscOrTheBarsButton)
{
    std::vector<TColor> report;
    for (bool byKey : {true, false})
        for (TEdcBlock *plan : All()) {
            ScrollTo(plan);
            int top = Doc().Scroller()->YPos();
            report = testdoor::Pixels(Doc());
            EXPECT_FALSE(IsGadgetEnabled(BACK));
            OpenPlan(plan);
            EXPECT_TRUE(IsGadgetEnabled(BACK));
            EXPECT_TRUE(IsGadgetEnabled(3001)) << "every plan has openings";
            EXPECT_EQ(IsGadgetEnabled(2001), plan == Doc().RoomBlock()) << "emitters hang on the floor plan";
            EXPECT_TRUE(LooksFresh(Doc()));
            EXPECT_NE(testdoor::Pixels(Doc()), report);
            if (byKey)
                Key("Esc");
            else
                EXPECT_TRUE(Press(BACK));
            EXPECT_EQ(Doc().openedBlk, nullptr);
            EXPECT_NEAR(Doc().Scroller()->YPos(), top, 1);
            EXPECT_TRUE(LooksFresh(Doc()));
            if (byKey) {
                testdoor::Click(Doc(), {1, 1}); // nothing is selected any more
                testdoor::Settle();
            }
        }
    EXPECT_FALSE(Press(BACK)) << "the button is grey in the report";
    EXPECT_FALSE(Doc().modified);
}

TEST_F(Plans, AreTheOnlyPartsThatOpen)
{
    Update();
    for (TEdcBlock *part : Doc().Parts()) {
        if (part == NULL || std::ranges::count(All(), part) > 0)
            continue;
        ScrollTo(part);
        TRect place = Doc().ToWindow(part->rect.Rect());
        testdoor::DoubleClick(Doc(), {place.left + 20, place.top + 5});
        testdoor::Settle();
        EXPECT_EQ(Doc().openedBlk, nullptr);
    }
    EXPECT_TRUE(LooksFresh(Doc()));
}

TEST_F(Plans, ZoomWithTheDialogAndWithTheWheel)
{
    for (bool opened : {false, true}) {
        if (opened)
            OpenPlan(All()[0]);
        InDialog("Vergrößerung", [](DialogBox &box) {
            box.Type(ZOOM_BOX, "57");
            box.Press("Return");
        });
        Key("Ctrl+G");
        EXPECT_EQ(Percent(), 57);
        EXPECT_TRUE(LooksFresh(Doc()));
        TRect client = Doc().GetClientRect();
        TPoint middle = {client.right / 2, client.bottom / 2};
        testdoor::Wheel(Doc(), middle, 5, WIN_KEY_CTRL);
        testdoor::Settle();
        EXPECT_GT(Percent(), 57);
        EXPECT_TRUE(LooksFresh(Doc()));
        testdoor::Wheel(Doc(), middle, -20, WIN_KEY_CTRL);
        testdoor::Settle();
        EXPECT_LT(Percent(), 57);
        EXPECT_TRUE(LooksFresh(Doc()));
        InDialog("Vergrößerung", [](DialogBox &box) {
            EXPECT_FALSE(box.Entries(ZOOM_BOX).empty());
            box.Choose(ZOOM_BOX, 0);
            box.Press("Return");
        });
        Key("Ctrl+G");
        EXPECT_EQ(Doc().CurrentZoom().presetIndex, 0);
        EXPECT_TRUE(LooksFresh(Doc()));
    }
}

TEST_F(Plans, ScrollWithWheelKeysAndBarInTheReportAndWhenOpened)
{
    for (bool opened : {false, true}) {
        if (opened) {
            OpenPlan(All()[0]);
            Doc().blockZoom.SetCustom(250);
            Doc().Obsolete(EDC_LAYOUT);
            Doc().Refresh(0);
            testdoor::Settle();
        }
        TScroller &scroller = *Doc().Scroller();
        Key("Home");
        EXPECT_EQ(scroller.YPos(), 0);
        testdoor::Wheel(Doc(), {50, 50}, -2);
        EXPECT_GT(scroller.YPos(), 0);
        EXPECT_TRUE(LooksFresh(Doc()));
        int below = scroller.YPos();
        Key("PgDown");
        EXPECT_GT(scroller.YPos(), below);
        EXPECT_TRUE(LooksFresh(Doc()));
        Key("End");
        EXPECT_EQ(scroller.YPos(), scroller.YRange());
        EXPECT_TRUE(LooksFresh(Doc()));
        testdoor::DragThumb(Doc(), WIN_BAR_VERTICAL, scroller.YRange() / 2, true);
        testdoor::Settle();
        EXPECT_NEAR(scroller.YPos(), scroller.YRange() / 2, 2);
        EXPECT_TRUE(LooksFresh(Doc()));
        Key("Home");
        EXPECT_EQ(scroller.YPos(), 0);
    }
}

TEST_F(Plans, KeepTheReportWholeWhenTheWindowIsResized)
{
    Update();
    for (TSize size : {TSize{640, 480}, TSize{1300, 900}, TSize{200, 150}, TSize{900, 700}}) {
        testdoor::ResizeClient(Doc(), size);
        testdoor::Settle();
        EXPECT_TRUE(LooksFresh(Doc()));
        OpenPlan(All()[0]);
        testdoor::ResizeClient(Doc(), {size.cx + 60, size.cy - 20});
        testdoor::Settle();
        EXPECT_TRUE(LooksFresh(Doc()));
        Key("Esc");
        EXPECT_TRUE(LooksFresh(Doc()));
    }
}

TEST_F(Plans, TakeAZoneThatIsDrawnAndKeepItInTheFile)
{
    std::filesystem::copy(Sample("Produktionshalle"), folder.Path("halle.sc1"));
    OpenHall(folder.Path("halle.sc1"));
    int zones = Doc().Room()->Zones()->Count();
    OpenPlan(All()[0]);
    EXPECT_TRUE(Press(5001)); // zones
    EXPECT_TRUE(Press(21515));
    TRect place = Doc().ToWindow(Doc().RoomBlock()->rect.Rect());
    TPoint from = Doc().RoomBlock()->Axes().ToDevice(AgPOINT(22, 17)) + place.TopLeft();
    TPoint to = Doc().RoomBlock()->Axes().ToDevice(AgPOINT(28, 20)) + place.TopLeft();
    testdoor::Press(Doc(), from);
    testdoor::Move(Doc(), {(from.x + to.x) / 2, (from.y + to.y) / 2}, 0, true);
    testdoor::Move(Doc(), to, 0, true);
    testdoor::Release(Doc(), to);
    testdoor::Settle();
    EXPECT_EQ(Doc().Room()->Zones()->Count(), zones + 1);
    EXPECT_TRUE(Doc().modified);
    EXPECT_TRUE(LooksFresh(Doc()));
    Key("Esc");
    EXPECT_TRUE(LooksFresh(Doc()));
    Key("Ctrl+S");
    EXPECT_FALSE(Doc().modified);
    Choose(CLOSE);
    OpenHall(folder.Path("halle.sc1"));
    EXPECT_EQ(Doc().Room()->Zones()->Count(), zones + 1);
}
