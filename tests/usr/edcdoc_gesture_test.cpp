// What cuts a gesture short or paints in the middle of it: scrolling, the other work of the document, keys, the
// desktop.
#include "lib/platform.h"
#include "mousefixture.h"
#include "support/freshpaint.h"
#include "support/programtables.h"
#include "usr/edcutils.h"

namespace
{
TEST_F(Mouse, WhatAToolDrawsComesOffAgainAlsoWhereTheDocumentIsScrolledUnderIt)
{
    a->onPaint = [](TDC &dc) {
        for (int x = 0; x < 300; x += 7)
            dc.FillRect({x, 0, x + 2, 300}, SolidBrush({90, 30, 160}));
    };
    OpenA();
    TPoint end = {30, 30};
    auto toggle = [&](TDC &dc) {
        dc.SetMix(WIN_MIX_XOR);
        dc.SetPen({.color = WIN_WHITE});
        dc.Line({20, 20}, end);
    };
    testdoor::Press(doc, {50, 50});
    bool hidden = false;
    tool.drawing = [&](TDC &dc) {
        if (hidden)
            return;
        toggle(dc);
        end = tool.lastPoint;
        toggle(dc);
    };
    tool.hiding = [&](TDC &dc, bool outside) {
        hidden = outside;
        toggle(dc);
    };
    toggle(*doc.openedDC);
    for (TPoint at : {TPoint{150, 100}, TPoint{240, 160}, TPoint{260, 180}, TPoint{190, 140}, TPoint{60, 20}}) {
        testdoor::Move(doc, at, 0, true);
        doc.scrollTick -= 1000;
        doc.IdleAction(0);
        testdoor::Wheel(doc, {50, 50}, -1);
        testdoor::Wheel(doc, {50, 50}, 1, WIN_KEY_SHIFT);
        testdoor::Key(doc, "Down");
        testdoor::Key(doc, "Right");
    }
    EXPECT_GT(doc.Scroller()->XPos(), 0);
    EXPECT_GT(doc.Scroller()->YPos(), 0);
    EXPECT_FALSE(hidden);
    tool.drawing = toggle;
    testdoor::Release(doc, {100, 100});
    EXPECT_TRUE(LooksFresh(doc));
}

TEST_F(Mouse, ScrollingInADragHidesWhatTheToolDraws)
{
    OpenA();
    doc.EvMouseWheel(0, {50, 50}, 0, -1);
    EXPECT_EQ(doc.log.Take(), "");
    doc.EvLButtonDown(0, {10, 10});
    doc.log.Take();
    doc.EvMouseWheel(0, {50, 50}, 0, -1);
    EXPECT_EQ(doc.log.Take(), "t.outside t.inside ");
    doc.EvKeyDown(WIN_VK_DOWN, 0);
    EXPECT_EQ(doc.log.Take(), "t.outside t.inside ");
    doc.EvMouseMove(0, {-5, 10});
    doc.log.Take();
    doc.EvMouseWheel(0, {50, 50}, 0, -1); // it is hidden there
    EXPECT_EQ(doc.log.Take(), "");
    doc.EvLButtonUp(0, {10, 10});
}

TEST_F(Mouse, WhatAToolMakesObsoleteInADragIsPaintedWhileItsDrawingIsHidden)
{
    OpenA();
    doc.EvLButtonDown(0, {10, 10});
    doc.log.Take();
    tool.onEvent = [&] { doc.Obsolete(EDC_PAINT); };
    int paints = a->paints;
    doc.EvMouseMove(0, {20, 10});
    EXPECT_EQ(doc.log.Take(), "t.move t.outside t.inside ");
    EXPECT_EQ(a->paints, paints + 1) << "at once";
    doc.EvMouseMove(0, {-5, 10}); // it is hidden there
    EXPECT_EQ(doc.log.Take(), "t.outside t.move ");
    doc.EvMouseMove(0, {20, 10});
    EXPECT_EQ(doc.log.Take(), "t.inside t.move t.outside t.inside ");
    doc.EvLButtonUp(0, {20, 10}); // no gesture is left to hide
    EXPECT_EQ(doc.log.Take(), "t.up ");
    tool.onEvent = NULL;
}

TEST_F(Mouse, APressPaintsWhatIsPendingBeforeTheToolDraws)
{
    OpenA();
    for (auto press : {&TEdcDocument::EvLButtonDown, &TEdcDocument::EvRButtonDown}) {
        int before = a->paints, atPress = 0;
        doc.Obsolete(EDC_PAINT);
        tool.onEvent = [&] { atPress = a->paints; };
        (doc.*press)(0, {10, 10});
        tool.onEvent = NULL;
        EXPECT_EQ(atPress, before + 1);
        EXPECT_FALSE(doc.NeedsPaint());
        doc.EvCaptureLost();
    }
}

TEST_F(Mouse, APressOutsideTheViewIsTakenBackToo)
{
    OpenA();
    doc.EvRButtonDown(0, {10, 10});
    doc.EvMouseMove(0, {-20, 10});
    doc.log.Take();
    doc.EvLButtonDown(0, {-20, 10});
    EXPECT_EQ(doc.log.Take(), "t.down t.outside ");
    doc.EvKeyDown(WIN_VK_ESCAPE, 0);
    EXPECT_EQ(doc.log.Take(), "t.up t.rup ");
    ExpectIdle("taken back");
}

TEST_F(Mouse, ALostMouseCancelsTheGestureForTheTool)
{
    OpenA();
    doc.EvLButtonDown(0, {10, 10});
    doc.log.Take();
    doc.EvCaptureLost();
    EXPECT_EQ(doc.log.Take(), "t.outside t.up ");
    ExpectIdle("lost inside");

    doc.EvRButtonDown(0, {10, 10});
    doc.EvMouseMove(0, {10, -10});
    doc.log.Take();
    doc.EvCaptureLost();
    EXPECT_EQ(doc.log.Take(), "t.rup ");
    ExpectIdle("lost outside");

    doc.EvCaptureLost(); // nothing to lose
    EXPECT_EQ(doc.log.Take(), "");
    doc.EvMouseMove(0, {10, 10});
    EXPECT_EQ(doc.log.Take(), "t.move ");
}

/// Menu keys behind a document that is shown in a frame of the program's menus.
class MouseAndKeys : public Mouse
{
protected:
    MouseAndKeys() : frame("Probe", doc)
    {
        EdcUseResources();
        TestApplication().SetMainWindow(&frame);
        frame.AssignMenu(1000);
        frame.Create();
    }
    ~MouseAndKeys() override
    {
        TestApplication().SetMainWindow(NULL);
        SetResTextSink(NULL);
    }

    ProgramTables tables;
    TDecoratedFrame frame;
};

TEST_F(MouseAndKeys, EscTakesAGestureBackAndClosesTheBlockWhenNoButtonIsDown)
{
    const struct {
        const char *name;
        testdoor::Button button;
        bool outside;
        const char *calls; // of Esc
    } rows[] = {
        {"left", testdoor::LEFT, false, "t.outside t.up "},
        {"right", testdoor::RIGHT, false, "t.outside t.rup "},
        {"left, outside", testdoor::LEFT, true, "t.up "},
        {"right, outside", testdoor::RIGHT, true, "t.rup "},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        OpenA();
        bool left = row.button == testdoor::LEFT;
        testdoor::Press(doc, {10, 10}, row.button);
        testdoor::Move(doc, row.outside ? TPoint{-10, 20} : TPoint{20, 20}, 0, left, !left);
        doc.log.Take();
        tool.onEvent = [&] { doc.Obsolete(EDC_PAINT); };
        testdoor::Key(doc, "Esc");
        tool.onEvent = NULL;
        EXPECT_EQ(doc.log.Take(), row.calls);
        EXPECT_EQ(doc.openedBlk, a);
        EXPECT_EQ(doc.obsolete, 0);
        ExpectIdle("taken back");
        testdoor::Release(doc, {20, 20}, row.button);
        EXPECT_EQ(doc.log.Take(), "");
        testdoor::Key(doc, "Esc");
        EXPECT_EQ(doc.log.Take(), "a.command20035 a.close ");
        EXPECT_EQ(doc.openedBlk, nullptr);
    }
}

TEST_F(MouseAndKeys, AHeldEscTakesTheGestureBackAndNoMore)
{
    enum { REPEATS = 20 };
    for (testdoor::Button button : {testdoor::LEFT, testdoor::RIGHT}) {
        OpenA();
        testdoor::Press(doc, {10, 10}, button);
        doc.log.Take();
        testdoor::HoldKey(doc, "Esc", REPEATS);
        EXPECT_EQ(doc.log.Take(), button == testdoor::LEFT ? "t.outside t.up " : "t.outside t.rup ");
        EXPECT_EQ(doc.openedBlk, a);
        ExpectIdle("held");
        testdoor::Release(doc, {10, 10}, button);
        testdoor::HoldKey(doc, "Esc", REPEATS); // pressed anew, it closes the block, and once
        EXPECT_EQ(doc.log.Take(), "a.command20035 a.close ");
        EXPECT_EQ(doc.openedBlk, nullptr);
    }
}

TEST_F(Mouse, AFailureWhileAGestureIsTakenBackLeavesTheWindowUsable)
{
    for (const char *failing : {"t.outside", "t.up"}) {
        OpenA();
        TestHook hook;
        doc.EvLButtonDown(0, {10, 10});
        doc.log.failing = failing;
        doc.EvKeyDown(WIN_VK_ESCAPE, 0);
        EXPECT_EQ(hook.Reports(), 1) << failing;
        ExpectIdle(failing);
        doc.log.failing.clear();
        doc.CloseBlock();
        doc.Refresh(0);
    }
}
} // namespace
