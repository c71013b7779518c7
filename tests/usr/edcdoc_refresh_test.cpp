#include "support/child.h"
#include "support/recorddc.h"
#include "support/testblock.h"
#include "win/testdoor.h"

#include <gtest/gtest.h>

#include <vector>

namespace
{
const char *const sourceFile = "usr/edcbase2.cpp";

/// Two blocks of 2 x 1 inches below each other at 96 pixels an inch, without a window.
struct TwoBlocks {
    TTestDoc doc;
    TTestBlock *a;
    TTestBlock *b;

    TwoBlocks()
    {
        a = doc.Append("a", EDC_BoSELECT, 2, 1);
        b = doc.Append("b", EDC_BoSELECT | EDC_BoROW, 2, 1);
        doc.docZoom.SetCustom(100);
        doc.Start("C:\\x.tst");
        a->layouts = b->layouts = 0;
    }
};

/// The same in a window of 300 x 200 pixels that has been painted.
struct TwoBlocksShown : TwoBlocks {
    TwoBlocksShown()
    {
        doc.Create();
        testdoor::ResizeClient(doc, {300, 200});
        testdoor::Settle();
        doc.log.Take();
        a->layouts = b->layouts = a->paints = b->paints = 0;
    }
};

TEST(Obsolete, TheLevelOnlyRises)
{
    for (int was = 0; was <= 4; ++was)
        for (int level = 0; level <= 4; ++level) {
            TTestDoc doc;
            doc.obsolete = was;
            doc.Obsolete(level);
            EXPECT_EQ(doc.obsolete, std::max(was, level));
            EXPECT_TRUE(doc.IsObsolete(std::max(was, level)));
            EXPECT_FALSE(doc.IsObsolete(std::max(was, level) + 1));
            EXPECT_EQ(doc.log.text, "");
        }
}

struct Level {
    int level;
    const char *calls;
    int layouts;
};
const Level levels[] = {
    {0, "", 0},
    {EDC_PAINT, "", 0},
    {EDC_LAYOUT, "", 1},
    {EDC_UPDATE, "partial.before a.partial b.partial partial.after ", 1},
    {EDC_RECALC, "full.before a.update b.update full.after ", 1},
};

TEST(Refresh, ALevelIncludesThoseBelowIt)
{
    for (const Level &row : levels) {
        TwoBlocks t;
        t.doc.Refresh(row.level);
        EXPECT_EQ(t.doc.log.Take(), row.calls) << row.level;
        EXPECT_EQ(t.a->layouts, row.layouts) << row.level;
        EXPECT_EQ(t.b->layouts, row.layouts) << row.level;
        EXPECT_EQ(t.doc.obsolete, 0) << row.level;
    }
}

TEST(Refresh, EachLevelAboveZeroRepaintsTheWindowOnce)
{
    TwoBlocksShown t;
    for (const Level &row : levels) {
        t.a->paints = 0;
        t.doc.Refresh(row.level);
        EXPECT_EQ(t.doc.NeedsPaint(), row.level > 0) << row.level;
        testdoor::Settle();
        EXPECT_EQ(t.a->paints, row.level > 0 ? 1 : 0) << row.level;
    }
}

TEST(Refresh, WithNothingPendingItRepaintsNothing)
{
    TwoBlocksShown t;
    t.doc.Refresh(0);
    EXPECT_FALSE(t.doc.NeedsPaint());
    testdoor::Settle();
    EXPECT_EQ(t.a->paints, 0);
    EXPECT_EQ(t.a->layouts, 0);
}

TEST(Refresh, ManyChangesInOneEventCostOnePass)
{
    TwoBlocksShown t;
    t.doc.ownCommand = 20021;
    t.a->command = 4711;
    t.doc.SelectBlock(t.a);
    t.a->onExecute = [&] {
        for (int i = 0; i < 10; ++i) {
            t.a->SetSize(TEdcSize(1 + 0.1 * i, 1));
            t.b->SetOptions(EDC_BoSELECT);
            t.doc.SetModified();
            t.doc.Append("c");
        }
        t.doc.Obsolete(EDC_UPDATE);
    };
    t.a->options |= EDC_BoEXECUTE;
    t.doc.EvCommand(20031);
    testdoor::Settle();
    EXPECT_EQ(t.a->layouts, 1);
    EXPECT_EQ(t.b->layouts, 1);
    EXPECT_EQ(t.a->paints, 1);
    EXPECT_EQ(t.b->paints, 1);
    EXPECT_EQ(t.doc.log.Take().substr(0, 25), "a.command20031 a.execute ");
}

TEST(Refresh, WhileTheDocumentIsLockedItOnlyRaisesTheLevel)
{
    TwoBlocks t;
    t.doc.Lock(true);
    t.doc.Refresh(EDC_UPDATE);
    EXPECT_EQ(t.doc.log.text, "");
    EXPECT_EQ(t.a->layouts, 0);
    EXPECT_EQ(t.doc.obsolete, EDC_UPDATE);
    t.doc.Lock(false);
    t.doc.Refresh(0);
    EXPECT_EQ(t.a->layouts, 1);
    EXPECT_EQ(t.doc.obsolete, 0);
}

TEST(Refresh, FromWithinAnUpdateItOnlyRaisesTheLevel)
{
    TwoBlocks t;
    t.a->onUpdate = [&] { t.doc.Refresh(EDC_RECALC); };
    t.doc.Refresh(EDC_UPDATE);
    EXPECT_EQ(t.doc.log.Take(), "partial.before a.partial b.partial partial.after ");
    EXPECT_EQ(t.a->layouts, 1);
    EXPECT_EQ(t.doc.obsolete, 0);
    t.a->onUpdate = NULL;
    t.doc.Refresh(EDC_LAYOUT);
    EXPECT_EQ(t.a->layouts, 2);
}

const char *const failures[] = {"partial.before", "a.partial", "b.partial",
                                "partial.after",  "a.layout",  "b.layout"};

TEST(Refresh, AFailureLeavesTheLevelAndTheNextRefreshTriesAgain)
{
    for (const char *failing : failures) {
        TwoBlocks t;
        t.doc.log.failing = failing;
        t.doc.Refresh(EDC_UPDATE);
        EXPECT_EQ(xCode, XLIMIT) << failing;
        xCode = XNULL;
        EXPECT_EQ(t.doc.obsolete, EDC_UPDATE) << failing;
        std::string calls = t.doc.log.Take();
        EXPECT_EQ(calls.substr(calls.size() - std::string(failing).size() - 1), std::string(failing) + " ");
        t.doc.log.failing.clear();
        t.doc.Refresh(0);
        EXPECT_EQ(t.doc.log.Take(), "partial.before a.partial b.partial partial.after ") << failing;
        EXPECT_EQ(t.doc.obsolete, 0) << failing;
    }
}

TEST(Refresh, AnEventShowsItsFailureAndLeavesTheWindowUsable)
{
    for (const char *failing : failures) {
        TwoBlocksShown t;
        TestHook hook;
        t.doc.log.failing = failing;
        t.doc.EvCommand(20021);
        EXPECT_EQ(hook.Reports(), 1) << failing;
        EXPECT_EQ(xCode, XNULL) << failing;
        EXPECT_EQ(t.doc.obsolete, EDC_UPDATE) << failing;
        t.doc.log.failing.clear();
        t.doc.EvCommand(1);
        testdoor::Settle();
        EXPECT_EQ(hook.Reports(), 1) << failing;
        EXPECT_GE(t.a->paints, 1) << failing;
    }
}

TEST(Refresh, WhatIsNoLongerSelectableIsNeitherSelectedNorOpen)
{
    TwoBlocks t;
    t.doc.SelectBlock(t.a);
    t.a->SetOptions(0);
    t.doc.Refresh(0);
    EXPECT_EQ(t.doc.selectedBlk, nullptr);

    t.doc.SelectBlock(t.b);
    t.doc.OpenBlock(t.b);
    t.b->SetOptions(0);
    t.doc.Refresh(0);
    EXPECT_EQ(t.doc.selectedBlk, nullptr);
    EXPECT_EQ(t.doc.openedBlk, nullptr);
}

TEST(Refresh, AnOpenedBlockStaysOpenWhileTheSelectedOneIsFit)
{
    TwoBlocks t;
    t.doc.SelectBlock(t.a);
    t.doc.OpenBlock(t.b);
    t.b->SetOptions(0);
    t.doc.Refresh(0);
    EXPECT_EQ(t.doc.openedBlk, t.b);
    EXPECT_EQ(t.doc.selectedBlk, t.a);
}

TEST(Refresh, AnUnlinkedBlockIsDroppedBeforeAnythingIsLaidOut)
{
    TwoBlocks t;
    t.doc.SelectBlock(t.b);
    t.doc.OpenBlock(t.b);
    t.doc.log.Take();
    t.doc.UnlinkBlock(t.b);
    t.doc.Refresh(EDC_UPDATE);
    EXPECT_EQ(t.doc.log.Take(), "b.close partial.before a.partial partial.after ");
    EXPECT_EQ(t.doc.selectedBlk, nullptr);
    EXPECT_EQ(t.doc.openedBlk, nullptr);
    delete t.b;
}

struct Range {
    TSize client;
    int xRange, yRange;
    bool xOn, yOn;
};
// two blocks of 192 x 96 px each below each other, and 10 px around
const Range ranges[] = {
    {{300, 300}, 1, 1, false, false},  {{202, 202}, 1, 1, false, false}, {{201, 300}, 1, 1, true, false},
    {{300, 201}, 1, 1, false, true},   {{150, 300}, 52, 1, true, false}, {{300, 150}, 1, 52, false, true},
    {{150, 100}, 52, 102, true, true},
};

TEST(Refresh, TheScrollRangeIsWhatTheBlocksTakeBeyondTheClientArea)
{
    TwoBlocksShown t;
    for (int dpiScaled = t.doc.Dpi(); const Range &row : ranges) {
        ASSERT_EQ(dpiScaled, 96);
        testdoor::ResizeClient(t.doc, row.client);
        EXPECT_EQ(t.doc.Scroller()->XRange(), row.xRange) << row.client.cx << "x" << row.client.cy;
        EXPECT_EQ(t.doc.Scroller()->YRange(), row.yRange) << row.client.cx << "x" << row.client.cy;
        EXPECT_EQ(t.doc.IsScrollBarEnabled(WIN_BAR_HORIZONTAL), row.xOn) << row.client.cx;
        EXPECT_EQ(t.doc.IsScrollBarEnabled(WIN_BAR_VERTICAL), row.yOn) << row.client.cy;
    }
}

TEST(Refresh, ADocumentWithoutBlocksHasARangeOfOneAndNoScrollBars)
{
    TTestDoc doc;
    for (bool shown : {false, true}) {
        if (shown)
            doc.Create();
        doc.Start();
        EXPECT_EQ(doc.Scroller()->XRange(), 1) << shown;
        EXPECT_EQ(doc.Scroller()->YRange(), 1) << shown;
        EXPECT_FALSE(doc.IsScrollBarEnabled(WIN_BAR_HORIZONTAL)) << shown;
        EXPECT_FALSE(doc.IsScrollBarEnabled(WIN_BAR_VERTICAL)) << shown;
    }
}

TEST(Refresh, AnOpenedBlockAloneMakesTheRange)
{
    TwoBlocksShown t;
    testdoor::ResizeClient(t.doc, {100, 100});
    t.doc.blockZoom.SetCustom(100);
    t.doc.OpenBlock(t.b);
    t.doc.Refresh(0);
    EXPECT_EQ(t.doc.Scroller()->XRange(), 192 + 10 - 100);
    EXPECT_EQ(t.doc.Scroller()->YRange(), 96 + 10 - 100);
}

TEST(Refresh, ARequestedScrollIsAppliedAtTheScaleOfTheView)
{
    TwoBlocksShown t;
    testdoor::ResizeClient(t.doc, {100, 60});
    t.doc.SetScroll({40, 60});
    EXPECT_EQ(t.doc.obsolete, EDC_PAINT);
    EXPECT_TRUE(t.doc.scrollPending);
    t.doc.Refresh(0);
    EXPECT_FALSE(t.doc.scrollPending);
    EXPECT_EQ(t.doc.Scroller()->XPos(), 40);
    EXPECT_EQ(t.doc.Scroller()->YPos(), 60);
    t.doc.docZoom.SetCustom(150);
    t.doc.SetScroll(t.doc.GetScroll());
    t.doc.Refresh(EDC_LAYOUT);
    EXPECT_EQ(t.doc.scale, 1.5);
    EXPECT_EQ(t.doc.Scroller()->XPos(), 60);
    EXPECT_EQ(t.doc.Scroller()->YPos(), 90);
    EXPECT_EQ(t.doc.GetScroll(), (TPoint{40, 60}));
}

TEST(Lock, TheFirstLockEmptiesTheWindowAndTheLastUnlockAsksForALayout)
{
    TwoBlocksShown t;
    testdoor::ResizeClient(t.doc, {100, 60});
    testdoor::Settle();
    t.doc.Lock(true);
    EXPECT_FALSE(t.doc.IsScrollBarEnabled(WIN_BAR_HORIZONTAL));
    EXPECT_FALSE(t.doc.IsScrollBarEnabled(WIN_BAR_VERTICAL));
    EXPECT_TRUE(t.doc.NeedsPaint());
    testdoor::Settle();
    for (TColor pixel : testdoor::Pixels(t.doc))
        ASSERT_EQ(pixel, WIN_WHITE);
    t.doc.Lock(true);
    EXPECT_FALSE(t.doc.NeedsPaint());
    t.doc.Lock(false);
    EXPECT_EQ(t.doc.obsolete, 0);
    EXPECT_EQ(t.doc.locked, 1);
    t.doc.Lock(false);
    EXPECT_EQ(t.doc.obsolete, EDC_LAYOUT);
    t.doc.Refresh(0);
    EXPECT_TRUE(t.doc.IsScrollBarEnabled(WIN_BAR_HORIZONTAL));
    testdoor::Settle();
    EXPECT_EQ(testdoor::Pixel(t.doc, {5, 5}), (TColor{200, 220, 240}));
}

TEST(Lock, LocksAreCountedWithinTheirBounds)
{
    TTestDoc doc;
    EXPECT_TRUE(AbortsOnAssertion("locked > 0", sourceFile, [&] { doc.Lock(false); }));
    doc.locked = 0x7fffffff;
    EXPECT_TRUE(AbortsOnAssertion("locked < MAXINT", sourceFile, [&] { doc.Lock(true); }));
    doc.locked = 0;
}

struct Painted {
    const char *name;
    void (*set)(TTestDoc &);
    bool empty; // PaintEmpty is called
    int paints; // of the block
};
const Painted painted[] = {
    {"a document", [](TTestDoc &) {}, false, 1},
    {"locked", [](TTestDoc &doc) { doc.locked = 1; }, false, 0},
    {"no document",
     [](TTestDoc &doc) {
         delete[] doc.path;
         doc.path = NULL;
     },
     true, 0},
    {"no document, something obsolete",
     [](TTestDoc &doc) {
         delete[] doc.path;
         doc.path = NULL;
         doc.obsolete = EDC_LAYOUT;
     },
     true, 0},
    {"no document, locked",
     [](TTestDoc &doc) {
         delete[] doc.path;
         doc.path = NULL;
         doc.locked = 1;
     },
     false, 0},
    {"to be painted anyway", [](TTestDoc &doc) { doc.obsolete = EDC_PAINT; }, false, 0},
    {"to be laid out", [](TTestDoc &doc) { doc.obsolete = EDC_LAYOUT; }, false, 0},
};

TEST(Paint, OnlyADocumentThatIsUpToDateIsPainted)
{
    for (const Painted &row : painted) {
        TwoBlocks t;
        TRecordDC dc;
        row.set(t.doc);
        int level = t.doc.obsolete;
        t.doc.Paint(dc, true, {0, 0, 50, 50});
        EXPECT_EQ(t.doc.log.Take(), row.empty ? "empty " : "") << row.name;
        EXPECT_EQ(t.a->paints, row.paints) << row.name;
        EXPECT_EQ(t.doc.obsolete, level) << row.name;
        t.doc.locked = 0;
    }
}

TEST(Paint, WhileAnythingIsObsoleteTheWindowStaysUnpaintedUntilItIsRefreshed)
{
    TwoBlocksShown t;
    t.doc.Obsolete(EDC_LAYOUT);
    t.doc.Invalidate();
    testdoor::Settle();
    EXPECT_EQ(testdoor::Pixel(t.doc, {20, 20}), WIN_WHITE);
    EXPECT_EQ(t.doc.obsolete, EDC_LAYOUT);
    t.doc.Refresh(0);
    testdoor::Settle();
    EXPECT_EQ(testdoor::Pixel(t.doc, {20, 20}), (TColor{200, 220, 240}));
}

struct Part {
    TRect invalid; // window
    TRect a, b;    // relative to the block; empty: it is not painted
};
// a stands at (5, 5), b at (5, 101), both 192 x 96
const Part parts[] = {
    {{0, 0, 300, 300}, {0, 0, 192, 96}, {0, 0, 192, 96}},
    {{0, 0, 5, 300}, {}, {}},
    {{0, 0, 6, 6}, {0, 0, 1, 1}, {}},
    {{100, 90, 110, 120}, {95, 85, 105, 96}, {95, 0, 105, 19}},
    {{196, 196, 300, 300}, {}, {191, 95, 192, 96}},
    {{197, 0, 300, 300}, {}, {}},
    {{10, 50, 10, 60}, {}, {}},
};

TEST(Paint, BlocksOutsideTheInvalidRectangleAreSkipped)
{
    for (const Part &row : parts) {
        TwoBlocks t;
        TRecordDC dc;
        t.doc.Paint(dc, true, row.invalid);
        EXPECT_EQ(t.a->paints, row.a.IsEmpty() ? 0 : 1);
        EXPECT_EQ(t.a->lastPart, row.a);
        EXPECT_EQ(t.b->paints, row.b.IsEmpty() ? 0 : 1);
        EXPECT_EQ(t.b->lastPart, row.b);
    }
}

TEST(Paint, EachBlockGetsAFreshContextAtItsPlace)
{
    TwoBlocks t;
    TRecordDC dc;
    t.a->onPaint = [](TDC &on) {
        on.SetPen({.color = {1, 2, 3}, .width = 9});
        on.SetOpaque(false);
        on.SetClip({0, 0, 1, 1});
        on.SetTurn(1);
        on.SetBrushOrg({3, 3});
    };
    t.doc.Paint(dc, true, {0, 0, 300, 300});
    EXPECT_EQ(t.a->lastState.viewport, (TPoint{5, 5}));
    EXPECT_EQ(t.b->lastState.viewport, (TPoint{5, 101}));
    EXPECT_EQ(t.b->lastState.pen, TPen());
    EXPECT_TRUE(t.b->lastState.opaque);
    EXPECT_FALSE(t.b->lastState.clipped);
    EXPECT_EQ(t.b->lastState.turn, 0);
    EXPECT_EQ(t.b->lastState.brushOrigin, (TPoint{0, 0}));
}

TEST(Paint, AnOpenedBlockIsPaintedAlone)
{
    TwoBlocks t;
    TRecordDC dc;
    t.doc.OpenBlock(t.b);
    t.doc.Refresh(0);
    t.doc.Paint(dc, true, {0, 0, 3000, 3000});
    EXPECT_EQ(t.a->paints, 0);
    EXPECT_EQ(t.b->paints, 1);
    EXPECT_EQ(t.b->lastState.viewport, (TPoint{5, 5}));
}

TEST(Paint, BrushCellsStickToTheScrolledDocument)
{
    TwoBlocksShown t;
    testdoor::ResizeClient(t.doc, {50, 50});
    for (int sx : {0, 1, 7, 8, 9, 23})
        for (int sy : {0, 5, 16}) {
            TRecordDC dc;
            t.doc.Scroller()->ScrollTo(sx, sy);
            t.doc.PrepareDC(dc);
            EXPECT_EQ(dc.State().brushOrigin, (TPoint{(8 - sx % 8) % 8, (8 - sy % 8) % 8}));
            EXPECT_EQ(dc.State().viewport, TPoint());
        }
}

TEST(Paint, TheComposedPaletteGoesIntoDevicesThatHaveOne)
{
    for (bool device : {false, true})
        for (bool composed : {false, true}) {
            TwoBlocks t;
            TEdcPalette pal;
            pal.SetColors(1);
            pal.Add(9, 8, 7, NULL);
            t.doc.AddPalette(&pal);
            if (composed)
                t.doc.ComposePalette();
            TRecordDC dc, expected;
            dc.palette = expected.palette = device;
            if (device && composed)
                expected.SelectPalette(*t.doc.compal);
            t.doc.PrepareDC(dc);
            EXPECT_EQ(dc.calls, expected.calls) << device << composed;
        }
}

TEST(Paint, ABlockMayNotChangeTheDocumentWhileItIsPainted)
{
    TwoBlocks t;
    TRecordDC dc;
    t.a->onPaint = [&](TDC &) { t.doc.Obsolete(EDC_PAINT); };
    t.doc.Paint(dc, true, {0, 0, 300, 300});
    EXPECT_EQ(t.doc.obsolete, 0);
    t.a->onPaint = [&](TDC &) { t.doc.Obsolete(EDC_LAYOUT); };
    EXPECT_TRUE(AbortsOnAssertion("obsolete <= EDC_PAINT", sourceFile, [&] {
        t.doc.Paint(dc, true, {0, 0, 300, 300});
    }));
}

TEST(Paint, AFailureIsShownBehindThePaintEventAndTheWindowStaysUsable)
{
    TwoBlocksShown t;
    TestHook hook;
    t.doc.log.failing = "a.paint";
    t.doc.Invalidate();
    testdoor::Settle();
    EXPECT_EQ(hook.Reports(), 1);
    t.doc.log.failing.clear();
    t.doc.Invalidate();
    testdoor::Settle();
    EXPECT_EQ(hook.Reports(), 1);
    EXPECT_EQ(testdoor::Pixel(t.doc, {5, 101}), (TColor{200, 220, 240}));
}

TEST(Coordinates, TheDocumentStandsBehindTheFrameAndMovesWithTheScrollPosition)
{
    TwoBlocksShown t;
    testdoor::ResizeClient(t.doc, {50, 50});
    t.doc.Scroller()->ScrollTo(30, 7);
    EXPECT_EQ(t.doc.ToDocument(TPoint{5, 5}), (TPoint{30, 7}));
    EXPECT_EQ(t.doc.ToWindow(TPoint{30, 7}), (TPoint{5, 5}));
    EXPECT_EQ(t.doc.ToDocument(TRect{0, 1, 2, 3}), (TRect{25, 3, 27, 5}));
    EXPECT_EQ(t.doc.ToWindow(TRect{25, 3, 27, 5}), (TRect{0, 1, 2, 3}));
}

TEST(HitTest, TheFirstBlockThatHoldsThePointWinsWithoutItsRightAndBottomEdges)
{
    TwoBlocks t;
    t.b->rect = {100, 50, 192, 96}; // over a corner of the first
    EXPECT_EQ(t.doc.HitTest({5, 5}), t.a);
    EXPECT_EQ(t.doc.HitTest({4, 5}), nullptr);
    EXPECT_EQ(t.doc.HitTest({105, 55}), t.a);
    EXPECT_EQ(t.doc.HitTest({196, 100}), t.a);
    EXPECT_EQ(t.doc.HitTest({197, 100}), t.b);
    EXPECT_EQ(t.doc.HitTest({196, 101}), t.b);
    EXPECT_EQ(t.doc.HitTest({296, 150}), t.b);
    EXPECT_EQ(t.doc.HitTest({297, 150}), nullptr);
    EXPECT_EQ(t.doc.HitTest({296, 151}), nullptr);
    t.doc.openedBlk = t.b; // asked alone
    EXPECT_EQ(t.doc.HitTest({105, 55}), t.b);
    EXPECT_EQ(t.doc.HitTest({5, 5}), nullptr);
    t.doc.openedBlk = NULL;
}
} // namespace
