#include "support/child.h"
#include "support/recorddc.h"
#include "support/testblock.h"

#include <gtest/gtest.h>

namespace
{
TEST(Block, StartsUnlinkedWithNothingSet)
{
    TEdcBlock blk;
    EXPECT_EQ(blk.state, 0u);
    EXPECT_EQ(blk.options, 0u);
    EXPECT_EQ(blk.prev, nullptr);
    EXPECT_EQ(blk.next, nullptr);
    EXPECT_EQ(blk.group, nullptr);
    EXPECT_EQ(blk.tool, nullptr);
    EXPECT_EQ(blk.size.Width(), 0);
    EXPECT_EQ(blk.rect.width, 0);
}

TEST(Block, TheBaseKnowsNoCommandAndAnswersNoQuestion)
{
    TEdcBlock blk;
    TCommandEnabler ce(20033);
    blk.EnableCommand(ce);
    EXPECT_FALSE(ce.IsAnswered());
    EXPECT_FALSE(blk.DoCommand(20033));
}

TEST(Block, TheBaseLeavesTheOfferedSizeAlone)
{
    TEdcBlock blk;
    TRecordDC dc;
    TEdcSize size(3, 4);
    blk.Layout(dc, size, 1.0);
    EXPECT_EQ(size.Width(), 3);
    EXPECT_EQ(size.Height(), 4);
}

TEST(Block, ThePlaceholderIsAnOutlineAndBothDiagonalsOnScreenAndOnPaper)
{
    TEdcBlock blk;
    blk.rect = {100, 200, 30, 20};
    TRecordDC screen, paper, expected;
    TPoint outline[] = {{0, 0}, {29, 0}, {29, 19}, {0, 19}, {0, 0}};
    expected.Polyline(outline, 5);
    expected.Line({0, 0}, {29, 19});
    expected.Line({0, 19}, {29, 0});
    blk.Paint(screen, {5, 5, 10, 10});
    blk.Print(paper, {0, 0, 30, 20});
    EXPECT_EQ(screen.calls, expected.calls);
    EXPECT_EQ(paper.calls, expected.calls);
}

struct Setter {
    const char *name;
    void (*set)(TEdcBlock &);
};
const Setter setters[] = {
    {"options", [](TEdcBlock &b) { b.SetOptions(EDC_BoROW); }},
    {"size", [](TEdcBlock &b) { b.SetSize(TEdcSize(2, 3)); }},
    {"margins", [](TEdcBlock &b) { b.SetMargins(TEdcMargins(1, 2, 3, 4)); }},
};

TEST(Block, ASetterAsksForALayoutOfALinkedBlockOnly)
{
    for (const Setter &setter : setters) {
        TTestDoc doc;
        TTestBlock loose("loose", doc.log);
        TTestBlock *linked = doc.Append("linked");
        for (int level : {0, 1, 2, 3, 4}) {
            doc.obsolete = level;
            setter.set(loose);
            EXPECT_EQ(doc.obsolete, level) << setter.name;
            setter.set(*linked);
            EXPECT_EQ(doc.obsolete, std::max(level, 2)) << setter.name;
        }
    }
}

TEST(Block, SettersOfSizeAndMarginsKeepTheBlocksOwnBase)
{
    TEdcSize own(8, 10), foreign(1, 1);
    TEdcBlock blk;
    blk.size.base = blk.margins.base = &own;
    blk.SetSize(TEdcSize(0.5, 0.1, EDC_UREL, &foreign));
    blk.SetMargins(TEdcMargins(0.25, 0.1, 0, 0, EDC_UREL, &foreign));
    EXPECT_EQ(blk.size.Width(), 4);
    EXPECT_EQ(blk.size.Height(), 1);
    EXPECT_EQ(blk.margins.Left(), 2);
    EXPECT_EQ(blk.margins.Top(), 1);
}

TEST(Block, ANewMouseToolIsActivatedBehindTheFormerOne)
{
    TestLog log;
    TTestBlock blk("blk", log);
    TTestTool a("a", log), b("b", log);
    EXPECT_EQ(blk.SetMouseTool(&a), nullptr);
    EXPECT_EQ(log.Take(), "a.on ");
    EXPECT_EQ(blk.SetMouseTool(&b), &a);
    EXPECT_EQ(log.Take(), "a.off b.on ");
    EXPECT_EQ(blk.tool, &b);
    EXPECT_EQ(blk.SetMouseTool(NULL), &b);
    EXPECT_EQ(log.Take(), "b.off ");
    EXPECT_EQ(blk.tool, nullptr);
}

TEST(Block, AToolThatFailsToComeOrToGoLeavesNone)
{
    for (const char *failing : {"a.off", "b.on"}) {
        TestLog log;
        TTestBlock blk("blk", log);
        TTestTool a("a", log), b("b", log);
        blk.SetMouseTool(&a);
        log.failing = failing;
        EXPECT_EQ(blk.SetMouseTool(&b), &a) << failing;
        EXPECT_EQ(blk.tool, nullptr) << failing;
        EXPECT_EQ(xCode, XLIMIT) << failing;
        xCode = XNULL;
    }
}

TEST(BlockGroup, ABuilderHoldsOnePointerAndAddsBlockAfterBlock)
{
    TestLog log;
    TTestBlock a("a", log), b("b", log), c("c", log), d("d", log);
    TEdcBlock *at = NULL;
    a.AddToGroup(&at);
    EXPECT_EQ(at, &a);
    EXPECT_EQ(a.group, nullptr);
    b.AddToGroup(&at);
    EXPECT_EQ(a.group, &a);
    EXPECT_EQ(b.group, &a);
    c.AddToGroup(&at);
    EXPECT_EQ(at, &b);
    d.AddToGroup(&at);
    TEdcBlock *order[] = {&a, &b, &c, &d};
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(order[i]->group, &a) << i;
        EXPECT_EQ(order[i]->prev, i > 0 ? order[i - 1] : nullptr) << i;
        EXPECT_EQ(order[i]->next, i < 3 ? order[i + 1] : nullptr) << i;
    }
}

TEST(BlockGroup, ABuilderThatStandsAnywhereInTheGroupAddsAtItsEnd)
{
    TestLog log;
    TTestBlock a("a", log), b("b", log), c("c", log), d("d", log);
    TEdcBlock *at = NULL;
    for (TTestBlock *blk : {&a, &b, &c})
        blk->AddToGroup(&at);
    at = &a;
    d.AddToGroup(&at);
    EXPECT_EQ(at, &c);
    EXPECT_EQ(c.next, &d);
}

TEST(BlockGroup, ABlockAddedToALinkedGroupIsLinkedInItsPlace)
{
    TTestDoc doc;
    TTestBlock *a = doc.Append("a");
    TTestBlock *z = doc.Append("z");
    doc.obsolete = 0;
    TEdcBlock *at = a;
    auto *b = new TTestBlock("b", doc.log);
    b->AddToGroup(&at);
    EXPECT_EQ(doc.obsolete, EDC_LAYOUT);
    EXPECT_TRUE(b->state & EDC_BsLINKED);
    EXPECT_EQ(b->size.base, &doc.page);
    EXPECT_EQ(b->margins.base, &doc.page);
    EXPECT_EQ(a->next, b);
    EXPECT_EQ(b->next, z);
    EXPECT_EQ(z->prev, b);
}

TEST(BlockGroup, ABlockIsInOneGroupOnly)
{
    TestLog log;
    TTestBlock a("a", log), b("b", log);
    TEdcBlock *at = NULL;
    a.AddToGroup(&at);
    b.AddToGroup(&at);
    EXPECT_TRUE(AbortsOnAssertion("group == NULL", "usr/edcbase1_block.cpp", [&] { b.AddToGroup(&at); }));
}
} // namespace
