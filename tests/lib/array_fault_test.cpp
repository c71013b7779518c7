// ARRAY when memory runs out at any point: the array keeps what it held, nothing leaks, and the failure is
// told.
#include "lib/array.h"

#include "support/fault.h"

#include <gtest/gtest.h>

#include "lib/xon.h"

namespace
{
enum { ITEMS = 25 }; // growth at 10 and at 20

/// Items 0, 1, 2, ... as far as memory goes.
void Fill(ARRAY<int> &array, int items)
{
    __enter
        for (int i = 0; i < items; ++i) {
            array.Insert(i); __test;
        }
    __point
    __treat
}

void ExpectCounting(const ARRAY<int> &array)
{
    ASSERT_LE(array.Count(), array.Size());
    for (int i = 0; i < array.Count(); ++i)
        EXPECT_EQ(array[i], i);
}
} // namespace

TEST(ArrayFault, AGrowingArrayKeepsWhatItHeld)
{
    int count = 0;
    long left = 0;
    int swept = SweepFaults(
        [&] {
            long before = LiveBlocks();
            {
                ARRAY<int> array;
                Fill(array, ITEMS);
                count = array.Count();
                FaultPause pause;
                ExpectCounting(array);
            }
            left = LiveBlocks() - before;
        },
        [&](const FaultRun &run) {
            EXPECT_EQ(run.code, run.fired ? XALLOC : XNULL);
            EXPECT_EQ(count, run.fired ? run.n == 1 ? 0 : 10 << (run.n - 2) : ITEMS);
            EXPECT_EQ(left, 0);
        });
    EXPECT_EQ(swept, 2 * 3); // blocks of 10, 20 and 40
}

TEST(ArrayFault, ACopyIsWholeOrEmpty)
{
    ARRAY<int> source;
    Fill(source, ITEMS);
    int count = -1;
    SweepFaults(
        [&] {
            ARRAY<int> copy(source);
            count = copy.Count();
        },
        [&](const FaultRun &run) { EXPECT_EQ(count, run.code == XNULL ? ITEMS : 0); });
    ExpectCounting(source);
}

TEST(ArrayFault, ResizeAndExtendLeaveTheBlockAsItWas)
{
    ARRAY<int> array;
    SweepFaults(
        [&] {
            array.Resize(0);
            Fill(array, 10);
        },
        [&] {
            __enter
                array.Resize(50); __test;
                array.Extend(500); __test;
            __point
            __treat
        },
        [&](const FaultRun &run) {
            int size = run.code == XNULL ? 510 : run.n == 1 ? 10 : 50;
            EXPECT_EQ(array.Size(), size);
            EXPECT_EQ(array.Count(), run.code == XNULL ? 510 : 10);
            array.Truncate(array + 10);
            ExpectCounting(array);
        });
}
