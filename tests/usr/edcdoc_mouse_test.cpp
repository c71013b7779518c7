#include "mousefixture.h"
#include "win/application.h"
#include "win/boxes.h"
#include "win/testdoor.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>

namespace
{
TEST_F(Mouse, APressSelectsTheBlockUnderThePointer)
{
    testdoor::Press(doc, {10, 10});
    EXPECT_EQ(doc.selectedBlk, a);
    EXPECT_EQ(doc.leftDown, 1);
    EXPECT_TRUE(doc.HasCapture());
    testdoor::Release(doc, {10, 10});
    ExpectIdle("after the release");
    EXPECT_EQ(doc.selectedBlk, a);
    EXPECT_EQ(doc.openedBlk, nullptr);
    testdoor::Click(doc, {2, 2}); // beside the document
    EXPECT_EQ(doc.selectedBlk, nullptr);
    EXPECT_EQ(doc.log.Take(), "");
}

TEST_F(Mouse, TheRightButtonSelectsNothing)
{
    doc.SelectBlock(a);
    testdoor::Press(doc, {2, 2}, testdoor::RIGHT);
    EXPECT_EQ(doc.rightDown, 1);
    EXPECT_TRUE(doc.HasCapture());
    testdoor::Release(doc, {2, 2}, testdoor::RIGHT);
    ExpectIdle("after the release");
    EXPECT_EQ(doc.selectedBlk, a);
}

TEST_F(Mouse, ADoubleClickOpensABlockOrExecutesItInPlace)
{
    testdoor::DoubleClick(doc, {10, 10});
    EXPECT_EQ(doc.openedBlk, a);
    EXPECT_EQ(doc.log.Take(), "a.open ");
    EXPECT_EQ(doc.obsolete, 0);
    ExpectIdle("opened");
    doc.EvCommand(20035);
    doc.Scroller()->ScrollTo(0, 250);
    doc.log.Take();
    TEdcRect former = b->rect;
    testdoor::DoubleClick(doc, {10, 100});
    EXPECT_EQ(doc.log.Take(), "b.execute ");
    EXPECT_EQ(doc.openedBlk, nullptr);
    EXPECT_EQ(b->rect.Rect(), former.Rect());
    EXPECT_EQ(doc.Scroller()->YPos(), 250);
    ExpectIdle("executed");
}

TEST_F(Mouse, TheBlockIsActivatedWhenTheButtonComesUpAndNotOutsideTheWindow)
{
    doc.EvLButtonDown(0, {10, 10});
    doc.EvLButtonUp(0, {10, 10});
    doc.EvLButtonDblClk(0, {10, 10});
    EXPECT_EQ(doc.leftDown, 2);
    EXPECT_EQ(doc.log.Take(), "");
    doc.EvMouseMove(0, {-30, 10});
    EXPECT_TRUE(doc.autoScroll);
    doc.EvLButtonUp(0, {-30, 10});
    EXPECT_EQ(doc.log.Take(), "");
    ExpectIdle("let go outside");
}

TEST_F(Mouse, AnExecutedBlockMayAskTheUser)
{
    std::string seen;
    b->onExecute = [&] {
        EXPECT_FALSE(doc.HasCapture());
        MessageBox(&doc, "Frage", "Titel", WIN_BOX_OK, WIN_ICON_NONE);
    };
    doc.Scroller()->ScrollTo(0, 250);
    testdoor::Script([&](testdoor::ModalBox &box) {
        seen = box.Text();
        box.Answer(WIN_ID_OK);
    });
    testdoor::DoubleClick(doc, {10, 100});
    EXPECT_EQ(seen, "Frage");
    ExpectIdle("executed");
}

TEST_F(Mouse, WhileTheDocumentIsLockedNoGestureBegins)
{
    OpenA();
    doc.Lock(true);
    doc.EvLButtonDown(0, {10, 10});
    doc.EvLButtonUp(0, {10, 10});
    doc.EvLButtonDblClk(0, {10, 10});
    doc.EvRButtonDown(0, {10, 10});
    doc.EvRButtonUp(0, {10, 10});
    doc.EvMouseMove(0, {20, 10});
    EXPECT_EQ(doc.log.Take(), "");
    ExpectIdle("locked");
    doc.Lock(false);
}

TEST_F(Mouse, AGestureThatTheLockFoundGoesOnToItsEnd)
{
    OpenA();
    doc.EvLButtonDown(0, {10, 10});
    doc.Lock(true);
    doc.EvMouseMove(0, {20, 10});
    doc.EvLButtonUp(0, {20, 10});
    EXPECT_EQ(doc.log.Take(), "t.down t.move t.up ");
    doc.EvMouseMove(0, {20, 10});
    EXPECT_EQ(doc.log.Take(), "");
    ExpectIdle("let go");
    doc.Lock(false);
}

struct Event {
    void (TEdcDocument::*send)(unsigned keys, TPoint point);
    const char *word;
};
const Event events[] = {
    {&TEdcDocument::EvLButtonDown, "t.down"}, {&TEdcDocument::EvMouseMove, "t.move"},
    {&TEdcDocument::EvLButtonUp, "t.up"},     {&TEdcDocument::EvLButtonDblClk, "t.double"},
    {&TEdcDocument::EvLButtonUp, "t.up"},     {&TEdcDocument::EvRButtonDown, "t.rdown"},
    {&TEdcDocument::EvRButtonUp, "t.rup"},
};

TEST_F(Mouse, TheOpenedBlocksToolGetsEachEventAtTheBlocksPlace)
{
    OpenA();
    for (TPoint scroll : {TPoint{0, 0}, TPoint{30, 11}}) {
        doc.Scroller()->ScrollTo(scroll.x, scroll.y);
        for (unsigned keys : {0u, 4u, 8u, 12u})
            for (const Event &event : events) {
                (doc.*event.send)(keys, {40, 50});
                EXPECT_EQ(doc.log.Take(), std::string(event.word) + " ");
                EXPECT_EQ(tool.lastKeys, keys) << event.word;
                EXPECT_EQ(tool.lastPoint, (TPoint{40 - 5 + scroll.x, 50 - 5 + scroll.y})) << event.word;
                EXPECT_EQ(tool.lastState.viewport, (TPoint{5 - scroll.x, 5 - scroll.y})) << event.word;
                EXPECT_EQ(tool.lastState.brushOrigin, (TPoint{(8 - scroll.x % 8) % 8, (8 - scroll.y % 8) % 8}))
                    << event.word;
            }
    }
    EXPECT_EQ(doc.selectedBlk, nullptr);
}

TEST_F(Mouse, AnOpenedBlockWithoutAToolTakesNothing)
{
    OpenA();
    a->tool = NULL;
    for (const Event &event : events)
        (doc.*event.send)(0, {40, 50});
    EXPECT_EQ(doc.log.Take(), "");
    EXPECT_EQ(doc.openedBlk, a);
}

TEST_F(Mouse, ADragKeepsOneDeviceContext)
{
    OpenA();
    TClientDC *kept = doc.openedDC;
    for (const Event &event : events)
        (doc.*event.send)(0, {40, 50});
    EXPECT_EQ(doc.openedDC, kept);
}

TEST_F(Mouse, WhatAToolChangesIsWorkedOffOnceAtTheEventsEnd)
{
    OpenA();
    tool.onEvent = [&] {
        for (int i = 0; i < 5; ++i)
            doc.Obsolete(EDC_LAYOUT);
    };
    for (const Event &event : events) {
        a->layouts = 0;
        (doc.*event.send)(0, {40, 50});
        EXPECT_EQ(a->layouts, 2) << event.word; // at scale 1, and at that of the view
        EXPECT_EQ(doc.obsolete, 0) << event.word;
    }
}

TEST_F(Mouse, TheMouseIsCapturedFromTheFirstButtonDownToTheLastOneUp)
{
    OpenA();
    doc.EvLButtonDown(0, {10, 10});
    EXPECT_TRUE(doc.HasCapture());
    doc.EvRButtonDown(0, {10, 10});
    doc.EvLButtonUp(0, {10, 10});
    EXPECT_TRUE(doc.HasCapture());
    EXPECT_EQ(doc.rightDown, 1);
    doc.EvLButtonDown(0, {10, 10});
    doc.EvRButtonUp(0, {10, 10});
    EXPECT_TRUE(doc.HasCapture());
    doc.EvLButtonUp(0, {10, 10});
    ExpectIdle("both up");
}

TEST_F(Mouse, AButtonThatComesUpWithoutHavingGoneDownIsIgnored)
{
    OpenA();
    doc.EvLButtonUp(0, {10, 10});
    doc.EvRButtonUp(0, {10, 10});
    EXPECT_EQ(doc.log.Take(), "");
}

TEST_F(Mouse, TheToolIsToldWhenThePointerLeavesTheViewAndComesBack)
{
    OpenA();
    doc.EvLButtonDown(0, {10, 10});
    doc.log.Take();
    const struct {
        TPoint at;
        const char *calls;
    } moves[] = {
        {{199, 149}, "t.move "},        {{200, 149}, "t.outside t.move "}, {{250, 10}, "t.move "},
        {{10, 10}, "t.inside t.move "}, {{10, 150}, "t.outside t.move "},  {{0, 0}, "t.inside t.move "},
        {{-1, 0}, "t.outside t.move "},
    };
    for (const auto &move : moves) {
        doc.EvMouseMove(0, move.at);
        EXPECT_EQ(doc.log.Take(), move.calls) << PlaceText(move.at);
    }
    doc.EvLButtonUp(0, {-1, 0});
    EXPECT_EQ(doc.log.Take(), "t.up ");
    ExpectIdle("let go outside");
}

TEST_F(Mouse, APointerThatPassesByWithNoButtonDownScrollsNothing)
{
    doc.EvMouseMove(0, {-10, -10});
    EXPECT_FALSE(doc.autoScroll);
    EXPECT_FALSE(doc.IdleAction(0));
}

struct Speed {
    TPoint at;
    int stepX, stepY;
    bool scrolls;
};
const Speed speeds[] = {
    {{100, 100}, 0, 0, false}, {{0, 0}, 0, 0, false},      {{199, 149}, 0, 0, false},
    {{200, 100}, 0, 0, true},  {{100, 150}, 0, 0, true},   {{201, 100}, 2, 0, true},
    {{215, 100}, 30, 0, true}, {{240, 100}, 80, 0, true},  {{900, 100}, 80, 0, true},
    {{-1, 100}, -2, 0, true},  {{-13, 100}, -26, 0, true}, {{-40, -41}, -80, -80, true},
    {{100, 153}, 0, 6, true},  {{-7, 250}, -14, 80, true}, {{203, -2}, 6, -4, true},
};

TEST_F(Mouse, TheFartherOutsideTheFasterTheDocumentScrolls)
{
    doc.EvLButtonDown(0, {10, 10});
    for (const Speed &row : speeds) {
        doc.EvMouseMove(0, row.at);
        EXPECT_EQ(doc.autoScroll, row.scrolls) << PlaceText(row.at);
        EXPECT_EQ(doc.stepX, row.stepX) << PlaceText(row.at);
        EXPECT_EQ(doc.stepY, row.stepY) << PlaceText(row.at);
    }
    doc.Scroller()->SetLine(7, 3); // a third of a line is cut
    doc.EvMouseMove(0, {-5, 152});
    EXPECT_EQ(doc.stepX, -3);
    EXPECT_EQ(doc.stepY, 0);
    doc.EvLButtonUp(0, {10, 10});
}

TEST_F(Mouse, IdleTimeScrollsOnceInAHundredAndFiftyMilliseconds)
{
    doc.EvLButtonDown(0, {10, 10});
    doc.EvMouseMove(0, {230, 160});
    doc.scrollTick = WinTickCount() + 1000;
    EXPECT_TRUE(doc.IdleAction(0));
    EXPECT_EQ(doc.Scroller()->XPos(), 0);
    doc.scrollTick = WinTickCount() - 150;
    EXPECT_TRUE(doc.IdleAction(0));
    EXPECT_EQ(doc.Scroller()->XPos(), 60);
    EXPECT_EQ(doc.Scroller()->YPos(), 20);
    EXPECT_LE(doc.scrollTick, WinTickCount());
    doc.EvMouseMove(0, {100, 100});
    doc.scrollTick = WinTickCount() - 150;
    EXPECT_FALSE(doc.IdleAction(0));
    EXPECT_EQ(doc.Scroller()->XPos(), 60);
    doc.EvLButtonUp(0, {100, 100});
    EXPECT_FALSE(doc.IdleAction(0));
}

struct Broken {
    const char *failing;
    const char *calls; // of press, move, leave, release
    int reports;
};
const Broken broken[] = {
    {"t.down", "t.down t.outside t.up t.move t.move ", 1},
    {"t.move", "t.down t.move t.outside t.up t.move ", 2}, // the second move fails too, without a gesture
    {"t.outside", "t.down t.move t.outside t.up ", 1},
    {"t.up", "t.down t.move t.outside t.move t.up ", 1},
};

TEST_F(Mouse, AFailureOfAToolEndsTheGestureAndLeavesTheWindowUsable)
{
    for (const Broken &row : broken) {
        OpenA();
        TestHook hook;
        doc.log.failing = row.failing;
        doc.EvLButtonDown(0, {10, 10});
        doc.EvMouseMove(0, {20, 20});
        doc.EvMouseMove(0, {500, 20});
        doc.EvLButtonUp(0, {500, 20});
        EXPECT_EQ(doc.log.Take(), row.calls) << row.failing;
        EXPECT_EQ(hook.Reports(), row.reports) << row.failing;
        ExpectIdle(row.failing);
        EXPECT_EQ(xCode, XNULL);
        doc.log.failing.clear();
        doc.EvLButtonDown(0, {10, 10});
        doc.EvLButtonUp(0, {10, 10});
        EXPECT_EQ(doc.log.Take(), "t.down t.up ") << row.failing;
        EXPECT_EQ(hook.Reports(), row.reports) << row.failing;
        doc.CloseBlock();
        doc.Refresh(0);
    }
}

TEST_F(Mouse, AFailureOfTheRightButtonEndsBoth)
{
    OpenA();
    TestHook hook;
    doc.EvLButtonDown(0, {10, 10});
    doc.log.failing = "t.rdown";
    doc.EvRButtonDown(0, {10, 10});
    EXPECT_EQ(doc.log.Take(), "t.down t.rdown t.outside t.up t.rup ");
    EXPECT_EQ(hook.Reports(), 1);
    ExpectIdle("failed");
}

TEST_F(Mouse, AFailingUpdateBehindAGestureIsReportedAndTheButtonsAreUp)
{
    OpenA();
    TestHook hook;
    tool.onEvent = [&] { doc.Obsolete(EDC_UPDATE); };
    doc.log.failing = "partial.before";
    doc.EvLButtonDown(0, {10, 10});
    EXPECT_EQ(hook.Reports(), 1);
    ExpectIdle("failed");
    EXPECT_EQ(doc.obsolete, EDC_UPDATE);
    doc.log.failing.clear();
    tool.onEvent = NULL;
    doc.EvMouseMove(0, {10, 10});
    EXPECT_EQ(doc.obsolete, 0);
}

TEST_F(Mouse, AFailingActivationIsReportedAndTheButtonsAreUp)
{
    TestHook hook;
    doc.log.failing = "a.open";
    testdoor::DoubleClick(doc, {10, 10});
    EXPECT_EQ(hook.Reports(), 1);
    EXPECT_EQ(doc.openedBlk, nullptr);
    ExpectIdle("failed");
}

TEST_F(Mouse, AnotherProgramThatComesToTheFrontEndsTheDrag)
{
    OpenA();
    testdoor::Press(doc, {10, 10});
    testdoor::Move(doc, {300, 10}, 0, true);
    EXPECT_TRUE(doc.autoScroll);
    doc.log.Take();
    testdoor::LoseActivation(doc);
    testdoor::Settle();
    EXPECT_EQ(doc.log.Take(), "t.up ");
    ExpectIdle("lost");
    testdoor::Release(doc, {300, 10});
    EXPECT_EQ(doc.log.Take(), "");
}

TEST_F(Mouse, AToolMayAskTheUserWhenTheButtonComesUp)
{
    OpenA();
    testdoor::Press(doc, {10, 10});
    doc.log.Take();
    tool.onEvent = [&] {
        ExpectIdle("in the tool");
        tool.onEvent = NULL;
        MessageBox(&doc, "Frage", "Titel", WIN_BOX_OK, WIN_ICON_NONE);
    };
    testdoor::Script([](testdoor::ModalBox &box) { box.Answer(WIN_ID_OK); });
    testdoor::Release(doc, {10, 10});
    EXPECT_EQ(doc.log.Take(), "t.up ");
    ExpectIdle("after the question");
}

TEST_F(Mouse, AQuestionInTheMiddleOfADragEndsIt)
{
    OpenA();
    testdoor::Press(doc, {10, 10});
    doc.log.Take();
    tool.onEvent = [&] {
        tool.onEvent = NULL;
        MessageBox(&doc, "Frage", "Titel", WIN_BOX_OK, WIN_ICON_NONE);
    };
    testdoor::Script([](testdoor::ModalBox &box) { box.Answer(WIN_ID_OK); });
    testdoor::Move(doc, {20, 20}, 0, true);
    EXPECT_EQ(doc.log.Take(), "t.move t.outside t.up ");
    ExpectIdle("after the question");
}

TEST_F(Mouse, AToolMayCloseItsBlock)
{
    for (const Event &event : events) {
        OpenA();
        tool.onEvent = [&] { doc.CloseBlock(); };
        doc.leftDown = event.send == &TEdcDocument::EvLButtonUp;
        doc.rightDown = event.send == &TEdcDocument::EvRButtonUp;
        (doc.*event.send)(0, {10, 10});
        tool.onEvent = NULL;
        EXPECT_EQ(doc.openedBlk, nullptr) << event.word;
        EXPECT_EQ(doc.openedDC, nullptr) << event.word;
        EXPECT_EQ(doc.obsolete, 0) << event.word;
        doc.EvCaptureLost();
    }
}

struct KeyRow {
    const char *name;
    TVirtualKey key;
    TPoint to; // from (40, 200)
};

TEST_F(Mouse, KeysScroll)
{
    // 300 x 600 px and 10 around in a window of 200 x 150
    const KeyRow rows[] = {
        {"PgUp", WIN_VK_PRIOR, {40, 50}},  {"PgDown", WIN_VK_NEXT, {40, 350}},
        {"End", WIN_VK_END, {40, 460}},    {"Home", WIN_VK_HOME, {40, 0}},
        {"Left", WIN_VK_LEFT, {20, 200}},  {"Right", WIN_VK_RIGHT, {60, 200}},
        {"Up", WIN_VK_UP, {40, 180}},      {"Down", WIN_VK_DOWN, {40, 220}},
        {"Del", WIN_VK_DELETE, {40, 200}}, {"Esc", WIN_VK_ESCAPE, {40, 200}},
    };
    for (const KeyRow &row : rows) {
        doc.Scroller()->ScrollTo(40, 200);
        doc.Lock(true);
        doc.EvKeyDown(row.key, 0);
        EXPECT_EQ(doc.Scroller()->YPos(), 200) << row.name;
        EXPECT_EQ(doc.Scroller()->XPos(), 40) << row.name;
        doc.Lock(false);
        doc.Refresh(0);
        doc.Scroller()->ScrollTo(40, 200);
        testdoor::Key(doc, row.name);
        EXPECT_EQ((TPoint{doc.Scroller()->XPos(), doc.Scroller()->YPos()}), row.to) << row.name;
    }
}

TEST_F(Mouse, TheWheelScrollsAndWithShiftSideways)
{
    testdoor::Wheel(doc, {50, 50}, -1);
    EXPECT_EQ(doc.Scroller()->YPos(), 60);
    testdoor::Wheel(doc, {50, 50}, -1, WIN_KEY_SHIFT);
    EXPECT_EQ(doc.Scroller()->XPos(), 60);
    testdoor::Wheel(doc, {50, 50}, 1);
    EXPECT_EQ(doc.Scroller()->YPos(), 0);
    doc.Lock(true);
    doc.EvMouseWheel(0, {50, 50}, 0, -1);
    EXPECT_EQ(doc.Scroller()->YPos(), 0);
    doc.Lock(false);
}

TEST_F(Mouse, CtrlAndWheelSetTheFreePercentageByATenthANotch)
{
    int expected = 100;
    doc.docZoom.SetPreset(1); // 100 %
    for (int notch : {1, 1, 1, -1, -1, -1, -1, -1, 3, -2}) {
        for (int i = 0; i < std::abs(notch); ++i)
            expected = static_cast<int>(std::lround(expected * (notch > 0 ? 1.1 : 1 / 1.1)));
        for (int i = 0; i < std::abs(notch); ++i)
            testdoor::Wheel(doc, {50, 50}, notch > 0 ? 1 : -1, WIN_KEY_CTRL);
        EXPECT_EQ(doc.docZoom.presetIndex, -1);
        EXPECT_EQ(doc.docZoom.custom, expected);
        EXPECT_EQ(doc.scale, expected * 0.01);
        EXPECT_EQ(doc.obsolete, 0);
    }
}

TEST_F(Mouse, SmallPercentagesChangeByOneAtLeast)
{
    doc.SetPaper(TEdcSize(300, 300)); // so big that its bounds go far down
    doc.docZoom.SetCustom(4);
    doc.Refresh(0);
    testdoor::Wheel(doc, {50, 50}, 1, WIN_KEY_CTRL);
    EXPECT_EQ(doc.docZoom.custom, 5);
    testdoor::Wheel(doc, {50, 50}, -1, WIN_KEY_CTRL);
    EXPECT_EQ(doc.docZoom.custom, 4);
}

TEST_F(Mouse, PartsOfANotchAddUp)
{
    for (int i = 0; i < 9; ++i)
        doc.EvMouseWheel(WIN_KEY_CTRL, {50, 50}, 0, 0.01);
    EXPECT_EQ(doc.docZoom.custom, 101);
    for (int i = 0; i < 11; ++i)
        doc.EvMouseWheel(WIN_KEY_CTRL, {50, 50}, 0, 0.1);
    EXPECT_NEAR(doc.docZoom.custom, 112, 3);
}

TEST_F(Mouse, ThePointOfTheDocumentUnderThePointerStays)
{
    for (TPoint at : {TPoint{100, 75}, TPoint{20, 140}, TPoint{199, 0}}) {
        doc.docZoom.SetCustom(100);
        doc.Refresh(EDC_LAYOUT);
        doc.Scroller()->ScrollTo(60, 210);
        double x = doc.ToDocument(at).x / doc.scale;
        double y = doc.ToDocument(at).y / doc.scale;
        for (int notch : {1, 1, 1, 1, -1, -1, -1}) {
            testdoor::Wheel(doc, at, notch, WIN_KEY_CTRL);
            // each step may round by half a pixel, and they add up
            EXPECT_NEAR(doc.ToDocument(at).x / doc.scale, x, 4) << PlaceText(at) << " at " << doc.scale;
            EXPECT_NEAR(doc.ToDocument(at).y / doc.scale, y, 4) << PlaceText(at) << " at " << doc.scale;
        }
    }
}

TEST_F(Mouse, TheWheelStopsAtTheBoundsOfTheZoom)
{
    TMeasureDC dc(doc.Dpi());
    TEdcZoom bound;
    bound.SetCustom(0x7fffffff);
    bound.Limit(dc, doc.page);
    for (int i = 0; i < 60; ++i)
        testdoor::Wheel(doc, {50, 50}, 1, WIN_KEY_CTRL);
    EXPECT_EQ(doc.docZoom.custom, bound.custom);
    bound.SetCustom(1);
    bound.Limit(dc, doc.page);
    for (int i = 0; i < 60; ++i)
        testdoor::Wheel(doc, {50, 50}, -1, WIN_KEY_CTRL);
    EXPECT_EQ(doc.docZoom.custom, bound.custom);
    testdoor::Wheel(doc, {50, 50}, 1, WIN_KEY_CTRL); // and comes away from them at once
    EXPECT_GT(doc.docZoom.custom, bound.custom);
}

TEST_F(Mouse, CtrlAndWheelWorkOnTheViewThatIsShown)
{
    OpenA();
    testdoor::Wheel(doc, {50, 50}, 1, WIN_KEY_CTRL);
    EXPECT_EQ(doc.blockZoom.custom, 110);
    EXPECT_EQ(doc.docZoom.custom, 100);
}

TEST_F(Mouse, CtrlAndWheelAreIgnoredInADragUnderALockAndWithoutADocument)
{
    doc.EvLButtonDown(0, {10, 10});
    doc.EvMouseWheel(WIN_KEY_CTRL, {50, 50}, 0, 1);
    doc.EvLButtonUp(0, {10, 10});
    doc.EvRButtonDown(0, {10, 10});
    doc.EvMouseWheel(WIN_KEY_CTRL, {50, 50}, 0, 1);
    doc.EvRButtonUp(0, {10, 10});
    doc.Lock(true);
    doc.EvMouseWheel(WIN_KEY_CTRL, {50, 50}, 0, 1);
    doc.Lock(false);
    doc.Refresh(0);
    EXPECT_EQ(doc.docZoom.custom, 100);
    doc.EvCommand(20007);
    doc.EvMouseWheel(WIN_KEY_CTRL, {50, 50}, 0, 1);
    EXPECT_EQ(doc.docZoom.custom, 100);
}

TEST_F(Mouse, ASizeMessageLaysOutAndKeepsThePlaceInTheDocument)
{
    doc.docZoom.SetPreset(0); // as wide as the window
    doc.Refresh(EDC_LAYOUT);
    doc.Scroller()->ScrollTo(0, doc.Scroller()->YRange() / 2);
    TPoint place = doc.GetScroll();
    for (TSize size : {TSize{150, 120}, TSize{300, 160}, TSize{260, 90}}) {
        a->layouts = 0;
        testdoor::ResizeClient(doc, size);
        EXPECT_GE(a->layouts, 1);
        EXPECT_EQ(doc.obsolete, 0);
        EXPECT_NEAR(doc.GetScroll().y, place.y, 3) << size.cx << "x" << size.cy;
    }
}

TEST_F(Mouse, AWindowThatIsMinimizedOrHiddenIsNotLaidOut)
{
    const struct {
        TSizeKind kind;
        int layouts;
    } rows[] = {{WIN_SIZE_MINIMIZED, 0}, {WIN_SIZE_HIDDEN, 0}, {WIN_SIZE_RESTORED, 1}, {WIN_SIZE_MAXIMIZED, 1}};
    for (const auto &row : rows) {
        a->layouts = 0;
        doc.EvSize(row.kind, {100, 100});
        EXPECT_EQ(a->layouts, row.layouts) << row.kind;
    }
}

TEST_F(Mouse, ASizeMessageThatFailsIsReported)
{
    TestHook hook;
    doc.log.failing = "a.layout";
    doc.EvSize(WIN_SIZE_RESTORED, {100, 100});
    EXPECT_EQ(hook.Reports(), 1);
    EXPECT_EQ(doc.obsolete, EDC_LAYOUT);
    doc.log.failing.clear();
    doc.EvSize(WIN_SIZE_RESTORED, {100, 100});
    EXPECT_EQ(doc.obsolete, 0);
}

TEST_F(Mouse, TheFocusRepaintsTheWindow)
{
    EXPECT_FALSE(doc.NeedsPaint());
    doc.EvSetFocus();
    EXPECT_TRUE(doc.NeedsPaint());
}
} // namespace
