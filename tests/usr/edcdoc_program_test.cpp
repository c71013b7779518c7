// Random programs of events on a document in a window: presses, drags, wheels, keys, commands, sizes, locks,
// changes of the chain between them, and every now and then something that fails.
#include "support/chance.h"
#include "support/testblock.h"
#include "win/testdoor.h"

#include <gtest/gtest.h>

#include <vector>

namespace
{
class Program
{
public:
    explicit Program(unsigned start) : chance(start)
    {
        doc.Create();
        testdoor::ResizeClient(doc, {160, 120});
        doc.Start("C:\\x.tst");
        for (int i = 0; i < 4; ++i)
            Link();
    }
    ~Program()
    {
        while (doc.locked > 0)
            doc.Lock(false);
        doc.EvCaptureLost();
        for (TTestBlock *blk : loose)
            doc.RemoveBlock(blk);
    }

    void Step()
    {
        doc.log.Take();
        int reports = hook.Reports();
        if (chance.One(4))
            Change();
        doc.log.failing = chance.One(3) ? chance.Of(words) : "";
        bool worksOff = Send();
        doc.log.failing.clear();
        bool failed = reports != hook.Reports();
        if (failed)
            ++failures;
        Check(worksOff && !failed && doc.locked == 0);
        if (doc.openedBlk)
            ++opened;
        if (doc.autoScroll)
            ++scrolls;
    }

    int failures = 0, opened = 0, scrolls = 0;

private:
    TPoint Point() { return {chance.Int(-60, 220), chance.Int(-60, 180)}; }
    TPoint Inside() { return {chance.Int(0, 159), chance.Int(0, 119)}; }

    void Link()
    {
        static const unsigned options[] = {EDC_BoSELECT,
                                           EDC_BoSELECT | EDC_BoROW,
                                           EDC_BoSELECT | EDC_BoEXECUTE | EDC_BoROW,
                                           EDC_BoROW,
                                           EDC_BoPAGE,
                                           EDC_BoSELECT | EDC_BoROW | EDC_BoKEEP};
        std::string name(1, static_cast<char>('a' + made++ % 3));
        auto *blk = new TTestBlock(name, doc.log, chance.Of(options), chance.Real(0.2, 3), chance.Real(0.2, 3));
        blk->tool = chance.One(5) ? NULL : &tool;
        doc.LinkBlock(blk, doc.blocks, chance.One(2));
    }
    TTestBlock *Any()
    {
        std::vector<TEdcBlock *> all;
        for (TEdcBlock *blk = doc.blocks; blk; blk = blk->next)
            all.push_back(blk);
        return all.empty() ? NULL
                           : static_cast<TTestBlock *>(
                                 all[static_cast<size_t>(chance.Int(0, static_cast<int>(all.size()) - 1))]);
    }
    int Linked() const
    {
        int count = 0;
        for (const TEdcBlock *blk = doc.blocks; blk; blk = blk->next)
            ++count;
        return count;
    }

    /// What an application does to its document between two events.
    void Change()
    {
        TTestBlock *blk = Any();
        switch (chance.Int(0, 9)) {
        case 0:
        case 1:
            if (Linked() < 8)
                Link();
            break;
        case 2:
            doc.RemoveBlock(blk);
            break;
        case 3:
            if (blk)
                loose.push_back(blk);
            doc.UnlinkBlock(blk);
            break;
        case 4:
            if (!loose.empty()) {
                doc.LinkBlock(loose.back(), blk, chance.One(2));
                loose.pop_back();
            }
            break;
        case 5:
            if (blk)
                blk->SetOptions(blk->options ^ EDC_BoSELECT);
            break;
        case 6:
            if (doc.locked < 2 && chance.One(3))
                doc.Lock(true);
            break;
        case 7:
            if (doc.locked > 0)
                doc.Lock(false);
            break;
        default:
            doc.Obsolete(chance.Int(0, 4));
        }
    }

    /// One event; true if it ends with working off what is obsolete.
    bool Send()
    {
        static const int commands[] = {20021, 20023, 20029, 20031, 20033, 20035, 20035, 4711};
        unsigned keys = chance.One(4) ? unsigned{WIN_KEY_SHIFT} : 0;
        switch (chance.Int(0, 16)) {
        case 0:
        case 1:
            return Real([&] { testdoor::Press(doc, Inside(), testdoor::LEFT, keys); },
                        [&] { doc.EvLButtonDown(keys, Inside()); });
        case 2:
        case 3: {
            bool taken = doc.leftDown > 0;
            doc.EvLButtonUp(keys, Point());
            return taken;
        }
        case 4:
            doc.EvLButtonDblClk(keys, Inside());
            return true;
        case 5:
            doc.EvRButtonDown(keys, Inside());
            return true;
        case 6: {
            bool taken = doc.rightDown > 0;
            doc.EvRButtonUp(keys, Point());
            return taken;
        }
        case 7:
        case 8:
        case 9:
            doc.EvMouseMove(keys, Point());
            return doc.openedBlk != NULL;
        case 10:
            doc.EvCommand(chance.Of(commands));
            return true;
        case 11:
            doc.EvCaptureLost();
            return true;
        case 12:
            doc.scrollTick -= 200;
            doc.IdleAction(0);
            return false;
        case 13:
            doc.EvMouseWheel(chance.One(2) ? unsigned{WIN_KEY_CTRL} : keys, Inside(), chance.Int(-1, 1),
                             chance.Int(-2, 2));
            return false;
        case 14:
            doc.EvKeyDown(static_cast<TVirtualKey>(chance.Int(0, 11)), keys);
            return false;
        case 15:
            if (chance.One(10))
                testdoor::ResizeClient(doc, {chance.Int(60, 300), chance.Int(60, 300)});
            else
                doc.EvSize(WIN_SIZE_RESTORED, {});
            return true;
        default:
            if (chance.One(4))
                testdoor::Settle();
            else
                testdoor::DoubleClick(doc, Inside());
            return false;
        }
    }
    template <class REAL, class DIRECT>
    bool Real(REAL real, DIRECT direct)
    {
        if (chance.One(4))
            real();
        else
            direct();
        return true;
    }

    void Check(bool refreshed)
    {
        const TEdcBlock *before = NULL;
        bool selected = doc.selectedBlk == NULL, open = doc.openedBlk == NULL;
        for (const TEdcBlock *blk = doc.blocks; blk; before = blk, blk = blk->next) {
            ASSERT_EQ(blk->prev, before);
            ASSERT_TRUE(blk->state & EDC_BsLINKED);
            ASSERT_EQ((blk->state & EDC_BsBUSY) != 0, blk == doc.openedBlk);
            selected |= blk == doc.selectedBlk;
            open |= blk == doc.openedBlk;
        }
        if (refreshed) {
            ASSERT_EQ(doc.obsolete, 0);
            ASSERT_TRUE(selected) << "the selected block is not in the chain";
            ASSERT_TRUE(open) << "the opened block is not in the chain";
            ASSERT_TRUE(!doc.selectedBlk || (doc.selectedBlk->options & EDC_BoSELECT));
        }
        bool down = doc.leftDown > 0 || doc.rightDown > 0;
        ASSERT_TRUE(down || !doc.HasCapture());
        ASSERT_TRUE(down || !doc.autoScroll);
        ASSERT_EQ(doc.openedDC != NULL, doc.openedBlk != NULL);
        ASSERT_STREQ(xCode, XNULL);
        ASSERT_EQ(xDepth, 0);
        ASSERT_GT(doc.scale, 0);
    }

    static constexpr const char *words[] = {"t.down",    "t.move",         "t.up",    "t.outside", "t.rdown",
                                            "a.open",    "b.close",        "a.close", "c.execute", "a.layout",
                                            "b.partial", "partial.before", "c.paint", "full.after"};
    CHANCE chance;
    TestHook hook;
    TTestDoc doc;
    TTestTool tool{"t", doc.log};
    std::vector<TTestBlock *> loose;
    int made = 0;
};

TEST(DocumentProgram, WhateverHappensTheDocumentStaysSound)
{
    enum { PROGRAMS = 25, STEPS = 1000 };
    int failures = 0, opened = 0, scrolls = 0;
    for (unsigned start = 1; start <= PROGRAMS && !testing::Test::HasFailure(); ++start) {
        Program program(start);
        for (int i = 0; i < STEPS && !testing::Test::HasFailure(); ++i) {
            SCOPED_TRACE(testing::Message() << "program " << start << ", step " << i);
            program.Step();
        }
        failures += program.failures;
        opened += program.opened;
        scrolls += program.scrolls;
    }
    EXPECT_GT(failures, PROGRAMS * STEPS / 500);
    EXPECT_GT(opened, PROGRAMS * STEPS / 20);
    EXPECT_GT(scrolls, PROGRAMS * STEPS / 50);
    testdoor::UnexpectedBoxes();
}
} // namespace
