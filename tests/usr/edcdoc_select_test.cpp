#include "support/recorddc.h"
#include "support/testblock.h"
#include "win/testdoor.h"

#include <gtest/gtest.h>

#include <vector>

namespace
{
/// Three blocks in a window that shows two of them and a part of the third. They are filled with stripes, so
/// that a frame that stands one pixel wrong shows.
struct Shown {
    TTestDoc doc;
    TTestBlock *a;
    TTestBlock *b;
    TTestBlock *c;

    Shown()
    {
        a = doc.Append("a", EDC_BoSELECT, 2, 1);
        b = doc.Append("b", EDC_BoSELECT | EDC_BoEXECUTE | EDC_BoROW, 2.5, 0.7);
        c = doc.Append("c", EDC_BoROW, 3, 3);
        for (TTestBlock *blk : {a, b, c})
            blk->onPaint = [blk](TDC &dc) {
                for (int x = 0; x < blk->rect.width; x += 3)
                    dc.FillRect({x, 0, x + 1, blk->rect.height}, SolidBrush({0, 90, 160}));
            };
        doc.docZoom.SetCustom(100);
        doc.Create();
        testdoor::ResizeClient(doc, {400, 300});
        doc.Start("C:\\x.tst");
        testdoor::Settle();
    }
    std::vector<TColor> Now() { return testdoor::Pixels(doc); }
    std::vector<TColor> Fresh()
    {
        doc.Invalidate();
        testdoor::Settle();
        return testdoor::Pixels(doc);
    }
};

TEST(Selection, WhateverIsSelectedTheWindowShowsWhatAFreshPaintShows)
{
    Shown t;
    std::vector<TColor> plain = t.Now();
    TEdcBlock *order[] = {t.a, t.a, t.b, t.a, NULL, t.b, t.c, t.b, NULL, NULL, t.a};
    for (TEdcBlock *blk : order) {
        EXPECT_EQ(t.doc.SelectBlock(blk), blk && blk != t.c);
        EXPECT_FALSE(t.doc.NeedsPaint());
        std::vector<TColor> now = t.Now();
        EXPECT_EQ(now != plain, t.doc.selectedBlk != NULL);
        EXPECT_EQ(now, t.Fresh());
    }
}

TEST(Selection, SelectingTwiceLeavesNoTraces)
{
    Shown t;
    std::vector<TColor> plain = t.Now();
    for (int i = 0; i < 2; ++i) {
        t.doc.SelectBlock(t.a);
        t.doc.SelectBlock(t.a);
    }
    EXPECT_NE(t.Now(), plain);
    t.doc.SelectBlock(NULL);
    EXPECT_EQ(t.Now(), plain);
}

TEST(Selection, AScrolledFrameComesOffWithoutTraces)
{
    Shown t;
    t.doc.SelectBlock(t.a);
    for (TPoint by : {TPoint{0, 13}, TPoint{0, 31}, TPoint{0, -20}, TPoint{17, 5}, TPoint{-17, -29}}) {
        t.doc.Scroller()->ScrollBy(by.x, by.y);
        testdoor::Settle();
        std::vector<TColor> now = t.Now();
        EXPECT_EQ(now, t.Fresh()) << PlaceText(by);
        t.doc.SelectBlock(NULL);
        std::vector<TColor> off = t.Now();
        EXPECT_EQ(off, t.Fresh()) << PlaceText(by);
        t.doc.SelectBlock(t.a);
    }
}

TEST(Selection, AFrameThatIsPartlyPaintedAnewStaysWhole)
{
    Shown t;
    t.doc.SelectBlock(t.a);
    std::vector<TColor> framed = t.Now();
    for (TRect part :
         {TRect{0, 0, 50, 50}, TRect{40, 0, 43, 300}, TRect{0, 60, 400, 101}, TRect{150, 90, 260, 140}}) {
        t.doc.InvalidateRect(part);
        testdoor::Settle();
        EXPECT_EQ(t.Now(), framed);
    }
}

TEST(Selection, AFrameWaitsForALayoutThatIsDue)
{
    Shown t;
    std::vector<TColor> plain = t.Now();
    t.doc.Obsolete(EDC_LAYOUT);
    EXPECT_TRUE(t.doc.SelectBlock(t.a));
    EXPECT_EQ(t.Now(), plain);
    t.doc.Refresh(0);
    testdoor::Settle();
    EXPECT_NE(t.Now(), plain);
    t.doc.SelectBlock(NULL);
    EXPECT_EQ(t.Now(), plain);
}

TEST(Selection, WhileABlockIsOpenedNoFrameIsDrawn)
{
    Shown t;
    t.doc.OpenBlock(t.a);
    t.doc.Refresh(0);
    testdoor::Settle();
    std::vector<TColor> opened = t.Now();
    EXPECT_TRUE(t.doc.SelectBlock(t.b));
    EXPECT_EQ(t.Now(), opened);
    EXPECT_TRUE(t.doc.SelectBlock(t.a));
    EXPECT_EQ(t.Now(), opened);
    EXPECT_EQ(t.Fresh(), opened);
}

TEST(Selection, TheFrameIsADottedExclusiveOrRectangleTwoPixelsAround)
{
    TTestDoc doc;
    TTestBlock *blk = doc.Append("a", EDC_BoSELECT, 2, 1);
    doc.docZoom.SetCustom(100);
    doc.Start();
    blk->onPaint = [](TDC &) {};
    doc.SelectBlock(blk);
    TRecordDC dc(doc.Dpi()), expected(doc.Dpi());
    doc.Paint(dc, true, {0, 0, 300, 300});
    expected.SetPen({.color = WIN_WHITE, .style = WIN_PEN_DOT});
    expected.SetBrush(NoBrush());
    expected.SetOpaque(false);
    expected.SetMix(WIN_MIX_XOR);
    TSize size = blk->size.ToPixels(dc, 1.0);
    expected.Rectangle({3, 3, 5 + size.cx + 2, 5 + size.cy + 2});
    EXPECT_EQ(dc.calls, expected.calls);
}

TEST(Selection, OnlyALinkedSelectableBlockIsSelected)
{
    Shown t;
    TTestBlock loose("loose", t.doc.log, EDC_BoSELECT);
    t.doc.SelectBlock(t.a);
    EXPECT_FALSE(t.doc.SelectBlock(t.c));
    EXPECT_EQ(t.doc.selectedBlk, nullptr);
    EXPECT_FALSE(t.doc.SelectBlock(&loose));
    EXPECT_EQ(t.doc.selectedBlk, nullptr);
    EXPECT_TRUE(t.doc.SelectBlock(t.b));
    EXPECT_EQ(t.doc.selectedBlk, t.b);
}

struct Activation {
    unsigned options;
    const char *calls;
    bool opened;
};
const Activation activations[] = {
    {0, "", false},
    {EDC_BoEXECUTE, "", false},
    {EDC_BoSELECT, "a.open ", true},
    {EDC_BoSELECT | EDC_BoEXECUTE, "a.execute ", false},
    {EDC_BoSELECT | EDC_BoEXECUTE | EDC_BoROW | EDC_BoKEEP, "a.execute ", false},
};

TEST(Activation, ABlockIsExecutedWhereItsOptionsSaySoAndOpenedElse)
{
    for (const Activation &row : activations)
        for (bool named : {false, true}) {
            TTestDoc doc;
            TTestBlock *blk = doc.Append("a", EDC_BoSELECT);
            doc.Start();
            doc.SelectBlock(blk);
            blk->options = row.options;
            doc.ActivateBlock(named ? blk : NULL);
            EXPECT_EQ(doc.log.Take(), row.calls) << row.options;
            EXPECT_EQ(doc.openedBlk != NULL, row.opened) << row.options;
        }
}

TEST(Activation, WithNothingSelectedNothingIsActivated)
{
    TTestDoc doc;
    doc.Append("a", EDC_BoSELECT);
    doc.Start();
    doc.ActivateBlock(NULL);
    doc.ExecuteBlock(NULL);
    doc.OpenBlock(NULL);
    EXPECT_EQ(doc.log.Take(), "");
    EXPECT_EQ(doc.obsolete, 0);
}

TEST(Execution, ABlockIsBusyWhileItIsExecutedAndStaysInPlace)
{
    Shown t;
    t.doc.SelectBlock(t.b);
    TEdcRect former = t.b->rect;
    t.doc.ExecuteBlock(NULL);
    EXPECT_EQ(t.doc.log.Take(), "b.execute ");
    EXPECT_TRUE(t.b->busyInside);
    EXPECT_FALSE(t.b->state & EDC_BsBUSY);
    EXPECT_EQ(t.doc.openedBlk, nullptr);
    EXPECT_EQ(t.doc.obsolete, 0);
    EXPECT_EQ(t.b->rect.Rect(), former.Rect());
}

TEST(Execution, AFailureLeavesTheBlockIdle)
{
    Shown t;
    t.doc.log.failing = "b.execute";
    t.doc.ExecuteBlock(t.b);
    EXPECT_EQ(xCode, XLIMIT);
    xCode = XNULL;
    EXPECT_FALSE(t.b->state & EDC_BsBUSY);
}

TEST(Execution, AnOpenedBlockIsClosedFirst)
{
    Shown t;
    t.doc.OpenBlock(t.a);
    t.doc.log.Take();
    t.doc.ExecuteBlock(t.b);
    EXPECT_EQ(t.doc.log.Take(), "a.close b.execute ");
    EXPECT_EQ(t.doc.openedBlk, nullptr);
}

TEST(Opening, AnOpenedBlockIsBusyAndHasADeviceContext)
{
    Shown t;
    t.doc.OpenBlock(t.a);
    EXPECT_EQ(t.doc.log.Take(), "a.open ");
    EXPECT_TRUE(t.a->busyInside);
    EXPECT_TRUE(t.a->state & EDC_BsBUSY);
    EXPECT_EQ(t.doc.openedBlk, t.a);
    EXPECT_NE(t.doc.openedDC, nullptr);
    EXPECT_EQ(t.doc.obsolete, EDC_LAYOUT);
    t.doc.CloseBlock();
    EXPECT_EQ(t.doc.log.Take(), "a.close ");
    EXPECT_FALSE(t.a->state & EDC_BsBUSY);
    EXPECT_EQ(t.doc.openedBlk, nullptr);
    EXPECT_EQ(t.doc.openedDC, nullptr);
    t.doc.CloseBlock(); // nothing to close
    EXPECT_EQ(t.doc.log.Take(), "");
}

TEST(Opening, OnlyALinkedSelectableBlockIsOpenedAndTheFormerOneClosesAllTheSame)
{
    Shown t;
    TTestBlock loose("loose", t.doc.log, EDC_BoSELECT);
    for (TEdcBlock *blk : {static_cast<TEdcBlock *>(t.c), static_cast<TEdcBlock *>(&loose)}) {
        t.doc.OpenBlock(t.a);
        t.doc.log.Take();
        t.doc.OpenBlock(blk);
        EXPECT_EQ(t.doc.log.Take(), "a.close ");
        EXPECT_EQ(t.doc.openedBlk, nullptr);
    }
}

TEST(Opening, ClosingScrollsBackToWhereTheDocumentStood)
{
    Shown t;
    testdoor::ResizeClient(t.doc, {120, 100});
    t.doc.Scroller()->ScrollTo(40, 57);
    t.doc.blockZoom.SetCustom(200);
    t.doc.OpenBlock(t.a);
    t.doc.Refresh(0);
    EXPECT_EQ(t.doc.Scroller()->XPos(), 0);
    EXPECT_EQ(t.doc.Scroller()->YPos(), 0);
    t.doc.Scroller()->ScrollTo(100, 50);
    t.doc.CloseBlock();
    t.doc.Refresh(0);
    EXPECT_EQ(t.doc.Scroller()->XPos(), 40);
    EXPECT_EQ(t.doc.Scroller()->YPos(), 57);
}

TEST(Opening, OneBlockAfterAnotherKeepsThePlaceInTheDocument)
{
    Shown t;
    testdoor::ResizeClient(t.doc, {120, 100});
    t.doc.Scroller()->ScrollTo(40, 57);
    t.b->options = EDC_BoSELECT;
    t.doc.OpenBlock(t.a);
    t.doc.Refresh(0);
    t.doc.OpenBlock(t.b);
    t.doc.Refresh(0);
    t.doc.CloseBlock();
    t.doc.Refresh(0);
    EXPECT_EQ(t.doc.Scroller()->XPos(), 40);
    EXPECT_EQ(t.doc.Scroller()->YPos(), 57);
}

TEST(Opening, AFailureClosesTheBlockAgain)
{
    Shown t;
    t.doc.log.failing = "a.open";
    t.doc.OpenBlock(t.a);
    EXPECT_EQ(xCode, XLIMIT);
    xCode = XNULL;
    EXPECT_EQ(t.doc.log.Take(), "a.open a.close ");
    EXPECT_EQ(t.doc.openedBlk, nullptr);
    EXPECT_EQ(t.doc.openedDC, nullptr);
    EXPECT_FALSE(t.a->state & EDC_BsBUSY);
}

TEST(Opening, ABlockThatFailsToCloseIsClosedAllTheSame)
{
    Shown t;
    t.doc.OpenBlock(t.a);
    t.doc.Refresh(0);
    t.doc.log.failing = "a.close";
    t.doc.CloseBlock();
    EXPECT_EQ(xCode, XLIMIT);
    xCode = XNULL;
    EXPECT_EQ(t.doc.openedBlk, nullptr);
    EXPECT_EQ(t.doc.openedDC, nullptr);
    EXPECT_FALSE(t.a->state & EDC_BsBUSY);
    EXPECT_EQ(t.doc.obsolete, EDC_LAYOUT);
}

TEST(Opening, ADocumentThatDiesClosesItsBlock)
{
    TestLog log;
    TTestBlock blk("a", log, EDC_BoSELECT);
    {
        TestApplication();
        TEdcDocument doc;
        SetAppDocument(&doc);
        doc.LinkBlock(&blk, NULL, true);
        doc.OpenBlock(&blk);
    }
    EXPECT_EQ(log.Take(), "a.open a.close ");
    EXPECT_FALSE(HasAppDocument());
    EXPECT_EQ(blk.state, 0u);
}
} // namespace
