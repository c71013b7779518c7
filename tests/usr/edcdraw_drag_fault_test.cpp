// Drags that fail, lose what they drag or are cut off: nothing is left of them.
#include "dragcase.h"
#include "support/countdc.h"
#include "support/fault.h"

namespace
{
using DragFault = DragCase;

TEST_F(DragFault, ASuspendedPlanHasNoDrag)
{
    Fill("ab", 'a');
    Send("L+A cM150,150");
    EXPECT_TRUE(TEdcDrawSprite::IsDragging());
    Plan().manager.Suspend(false);
    EXPECT_FALSE(TEdcDrawSprite::IsDragging());
    EXPECT_FALSE(TEdcDrawSprite::IsCopying());
    Plan().manager.Resume(false);
    Send("M160,160 L-160,160");
    EXPECT_EQ(Changes(), "");
}

TEST_F(DragFault, WhatIsDeletedOnTheWayIsGoneAndNothingElseIsHarmed)
{
    for (const char *begin : {"L+A M150,150", "L+R M150,150", "R+130,200 M140,200"})
        for (const char *victims : {"a", "b", "ab", "ba"}) {
            Fill("ab", 'a');
            Send(begin);
            for (const char *name = victims; *name; ++name)
                Rects().Delete(ByName(*name), true);
            Send("M160,160 L-160,160 R-160,160");
            EXPECT_EQ(Rects().CountLnk(), 3 - static_cast<int>(std::string(victims).size()));
            EXPECT_EQ(Place(ByName('c')), "30.1,10.2 4x2 0");
            EXPECT_FALSE(TEdcDrawSprite::IsDragging());
        }
}

/// Wherever a gesture fails, the other shapes and the next gesture do not know of it.
TEST_F(DragFault, WhereverItFailsNoGhostAndNoDragIsLeft)
{
    const char *const gestures[] = {"L+A M125,195 M130,190 L-130,190", "L+A cM130,150 cL-130,150",
                                    "L+R M150,180 M160,170 L-160,170", "R+130,200 M140,200 M120,150 R-120,150",
                                    "L+A M130,190 O+ O-140,180 L-140,180"};
    const char *const operations[] = {"update", "paint",  "apply",    "clone",
                                      "store",  "layout", "describe", "tool"};
    int failures = 0;
    for (const char *gesture : gestures)
        for (const char *operation : operations)
            for (int n = 1; n < 50; ++n) {
                SCOPED_TRACE(testing::Message() << gesture << ", " << operation << " " << n);
                Fill("abc", 'a');
                PlanFault fault = {operation, n, 0};
                for (SeenRect *spr : sprites)
                    spr->fault = &fault;
                bool failed = false;
                for (const GestureEvent &event : ParseGesture(gesture, DragPlace)) {
                    Send(Tool(), event);
                    if (fault.fired > 0 && !failed) {
                        failed = true;
                        EXPECT_EQ(TakeFailure(), XALLOC);
                        EXPECT_GE(doc.obsolete, EDC_PAINT) << "what is left on the screen is painted over";
                        Tool().Outside(dc, true); // what the document does behind a failure
                        Tool().LeftUp(dc, 0, event.at);
                        Tool().RightUp(dc, 0, event.at);
                        EXPECT_FALSE(TEdcDrawSprite::IsDragging());
                        EXPECT_FALSE(TEdcDrawSprite::IsCopying());
                    }
                    ASSERT_STREQ(xCode, XNULL);
                }
                std::string name = operation;
                if (failed && name == "update") {
                    EXPECT_TRUE(AllErased(dc.calls)) << dc.calls;
                    EXPECT_EQ(Changes(), "") << "it was taken back";
                }
                bool shaped = name == "apply" || name == "clone" || name == "store";
                if (failed && shaped && n == 1 && std::string(gesture).find('c') == std::string::npos) {
                    EXPECT_EQ(Changes(), "") << "what was not stored is where it was";
                }
                for (TEdcSprite *spr = Rects().LnkFirst(); spr; spr = spr->lnkNext)
                    static_cast<SeenRect *>(spr)->fault = NULL;
                failures += failed;
                LayOut();
                Fill("", 0);
                Send("L+A M130,190 L-130,190");
                EXPECT_EQ(Changes(), "a 11,11 4x2 0");
                EXPECT_TRUE(AllErased(TakeCalls()));
                if (!failed)
                    break;
            }
    EXPECT_GT(failures, 100);
}

TEST_F(DragFault, ACopyThatCannotBeMadeLeavesTheOriginalAsItIs)
{
    for (const char *operation : {"clone", "half clone"}) {
        Fill("a", 'a');
        Send("L+A cM130,150");
        PlanFault fault = {operation, 1, 0};
        ByName('a')->fault = &fault;
        Send("cL-130,150");
        EXPECT_EQ(TakeFailure(), XALLOC);
        EXPECT_EQ(Rects().CountLnk(), 3);
        EXPECT_EQ(Changes(), "");
        EXPECT_EQ(Lists(), "a a");
        ByName('a')->fault = NULL;
    }
}

TEST_F(DragFault, ACopyThatCannotBeStoredLiesWhereItsModelLies)
{
    Fill("a", 'a');
    Send("L+A cM130,150");
    PlanFault fault = {"store", 1, 0};
    ByName('a')->fault = &fault; // the copy takes it over
    Send("cL-130,150");
    EXPECT_EQ(TakeFailure(), XALLOC);
    EXPECT_EQ(Rects().CountLnk(), 4) << "it is in the layer already";
    EXPECT_EQ(Place(ByName('a')), "10,10 4x2 0");
    EXPECT_EQ(Place(Rects().LnkLast()), "10,10 4x2 0");
}

/// Every allocation of a drop fails once.
TEST_F(DragFault, AMemoryThatFailsAtTheDropLosesNothing)
{
    TCountDC nowhere;
    int fired = 0;
    for (const char *keys : {"", "c"})
        SweepFaults(
            [&] {
                Tool().Activate(true);
                Fill("ab", 'a');
                Tool().LeftDown(nowhere, 0, {120, 200});
                Tool().MouseMove(nowhere, 0, {130, 190});
            },
            [&] {
                Tool().LeftUp(nowhere, *keys ? WIN_KEY_CTRL : 0, {130, 190});
            },
            [&](const FaultRun &run) {
                fired += run.fired > 0;
                if (run.fired > 0) {
                    EXPECT_EQ(run.code, XALLOC);
                    EXPECT_FALSE(TEdcDrawSprite::IsDragging());
                    EXPECT_GE(Rects().CountLnk(), 3);
                    EXPECT_EQ(Rects().CountSel(), 2);
                }
            });
    EXPECT_GT(fired, 1) << "the copies need memory";
}
} // namespace
