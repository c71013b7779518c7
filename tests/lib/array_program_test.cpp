// Random programs of array operations against a naive twin, over items of several kinds, two of them failing
// ones.
#include "lib/array.h"
#include "lib/ag.h"
#include "array_items.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <type_traits>
#include <utility>
#include <vector>

namespace
{
// How a program makes its items of numbers and reads them back; 0 is T().

struct IntCase {
    using Item = int;
    static int Make(int v) { return v; }
    static int Value(int item) { return item; }
    static XCODE Code() { return XNULL; }
};

struct PointerCase {
    using Item = const char *;
    static inline const char pool[1000] = {};
    static const char *Make(int v) { return v ? pool + v : NULL; }
    static int Value(const char *item) { return item ? static_cast<int>(item - pool) : 0; }
    static XCODE Code() { return XNULL; }
};

struct PointCase {
    using Item = AgPOINT;
    static AgPOINT Make(int v) { return AgPOINT(v, 2 * v, -v); }
    static int Value(const AgPOINT &item)
    {
        EXPECT_EQ(item, Make(static_cast<int>(item.x)));
        return static_cast<int>(item.x);
    }
    static XCODE Code() { return XNULL; }
};

struct RaisingCase {
    using Item = RaisingItem;
    static RaisingItem Make(int v) { return RaisingItem(v); }
    static int Value(const RaisingItem &item) { return item.value; }
    static XCODE Code() { return XLIMIT; }
};

struct ThrowingCase {
    using Item = ThrowingItem;
    static ThrowingItem Make(int v) { return ThrowingItem(v); }
    static int Value(const ThrowingItem &item) { return item.value; }
    static XCODE Code() { return ThrowingItem::what == 0 ? XALLOC : XUNKNOWN; }
};

/// What the array should be, as plainly as can be: every slot, used or not, in one vector.
struct Twin {
    std::vector<int> slots;
    int count = 0;

    int Size() const { return static_cast<int>(slots.size()); }
    int Resize(int sz)
    {
        int former = Size();
        slots.resize(static_cast<size_t>(sz), 0);
        count = std::min(count, sz);
        return former;
    }
    void Grow(int needed)
    {
        int delta = Size();
        if (delta < 10)
            delta = 10;
        if (delta > 1000)
            delta = 1000;
        if (delta < needed - Size())
            delta = needed - Size();
        Resize(Size() + delta);
    }
    int Insert(int v, int i)
    {
        if (count == Size())
            Grow(count + 1);
        slots.insert(slots.begin() + i, v);
        slots.erase(slots.begin() + count + 1); // the slot that was taken into use
        ++count;
        return i;
    }
    void Delete(int i)
    {
        slots.erase(slots.begin() + i);
        slots.insert(slots.begin() + count - 1, 0);
        --count;
    }
    int Extend(int n)
    {
        if (count + n > Size())
            Grow(count + n);
        count += n;
        return count - n;
    }
    void Truncate(int at)
    {
        std::fill(slots.begin() + at, slots.begin() + count, 0);
        count = at;
    }
};

template <class CASE>
class ArrayProgram : public testing::Test
{
protected:
    using Item = typename CASE::Item;

    void TearDown() override { fuse = 0; }

    int Pick(int n) { return std::uniform_int_distribution<int>(0, n - 1)(engine); }

    void Step()
    {
        int op = Pick(100);
        wasResize = false;
        before = twin;
        if (op < 45)
            StepInsert();
        else if (op < 66)
            StepDelete();
        else if (op < 74)
            StepExtend();
        else if (op < 80)
            StepTruncate();
        else if (op < 82)
            array.Clear(), twin.Truncate(0);
        else if (op < 90)
            StepResize();
        else if (op < 93)
            StepAssign();
        else if (twin.Size() > 0)
            StepWrite();
        targets.clear();
    }

    void StepInsert()
    {
        int v = Pick(1000);
        int i = Pick(3) == 0 ? -1 : Pick(twin.count + 1);
        int expected = i == -1 ? twin.count : i;
        if (Pick(8) == 0 && twin.count > 0) { // an item of the array itself
            int k = Pick(twin.count);
            v = twin.slots[static_cast<size_t>(k)];
            EXPECT_EQ(array.Insert(array[k], i), expected);
        } else {
            EXPECT_EQ(array.Insert(CASE::Make(v), i), expected);
        }
        twin.Insert(v, expected);
    }

    void StepDelete()
    {
        if (twin.count == 0)
            return;
        int i = Pick(twin.count);
        array.Delete(i);
        twin.Delete(i);
    }

    void StepExtend()
    {
        int n = Pick(twin.Size() > 0 ? 40 : 39) + (twin.Size() > 0 ? 0 : 1);
        Item *first = array.Extend(n);
        int at = twin.Extend(n);
        EXPECT_EQ(first, xCode == XNULL ? &array[0] + at : NULL);
    }

    void StepTruncate()
    {
        if (twin.Size() == 0)
            return;
        int at = twin.count - Pick(std::min(twin.count, 60) + 1);
        array.Truncate(array + at);
        twin.Truncate(at);
    }

    void StepResize()
    {
        wasResize = true;
        int sz = Pick(40) == 0 ? 0 : Pick(twin.Size() + 50);
        EXPECT_EQ(array.Resize(sz), twin.Resize(sz));
    }

    void StepAssign()
    {
        ARRAY<Item> other;
        int n = Pick(30);
        for (int k = 0; k < n && xCode == XNULL; ++k)
            other.Insert(CASE::Make(k));
        if (xCode != XNULL)
            return;
        other = array;
        if (xCode != XNULL)
            return;
        ARRAY<Item> copy(other);
        if (xCode != XNULL)
            return;
        array.Clear();
        array = copy;
        array = std::as_const(array);
    }

    void StepWrite()
    {
        int i = Pick(twin.Size());
        int v = Pick(1000);
        int remaining = std::exchange(fuse, 0); // this assignment is the test's own
        array[i] = CASE::Make(v);
        fuse = remaining;
        twin.slots[static_cast<size_t>(i)] = v;
    }

    std::vector<int> Slots() const
    {
        std::vector<int> values;
        for (int i = 0; i < array.Size(); ++i)
            values.push_back(CASE::Value(array[i]));
        return values;
    }

    void Check(int expectedLive)
    {
        ASSERT_GE(array.Count(), 0);
        ASSERT_LE(array.Count(), array.Size());
        ASSERT_EQ(array.IsEmpty(), array.Count() == 0);
        ASSERT_EQ(array == NULL, array.Size() == 0);
        if (std::is_base_of_v<Counted, Item>) {
            ASSERT_EQ(Counted::live, expectedLive);
        }
        if (xCode != XNULL) {
            ASSERT_EQ(xCode, CASE::Code());
            xCode = XNULL;
            ++failures;
            if (wasResize) {
                ASSERT_EQ(Slots(), before.slots) << "a resize that fails changes nothing";
                ASSERT_EQ(array.Count(), before.count);
            }
            twin.slots = Slots();
            twin.count = array.Count();
        }
        ASSERT_TRUE(Matches());
    }

    testing::AssertionResult Matches() const
    {
        if (array.Size() == twin.Size() && array.Count() == twin.count && Slots() == twin.slots)
            return testing::AssertionSuccess();
        return testing::AssertionFailure() << array.Count() << " of " << array.Size() << " against "
                                           << twin.count << " of " << twin.Size() << ", or a slot differs";
    }

    std::mt19937 engine{7};
    ARRAY<Item> array;
    Twin twin;
    Twin before;
    bool wasResize = false;
    int failures = 0;
};

using Cases = testing::Types<IntCase, PointerCase, PointCase, RaisingCase, ThrowingCase>;
TYPED_TEST_SUITE(ArrayProgram, Cases);

TYPED_TEST(ArrayProgram, RandomProgramsMatchTheNaiveTwin)
{
    bool fails = std::is_base_of_v<Counted, typename TypeParam::Item>;
    int largest = 0;
    for (int step = 0; step < 50000; ++step) {
        if (fails && this->Pick(3) == 0) {
            fuse = 1 + this->Pick(60);
            ThrowingItem::what = this->Pick(3);
        }
        this->Step();
        fuse = 0;
        ASSERT_NO_FATAL_FAILURE(this->Check(this->array.Size())) << "at step " << step;
        largest = std::max(largest, this->twin.count);
    }
    EXPECT_EQ(this->failures > 1000, fails) << this->failures << " failures";
    EXPECT_GT(largest, 200) << "the program reaches longer arrays";
}

TYPED_TEST(ArrayProgram, TheComparisonSeesOneWrongSlotUsedOrNotAndAWrongCount)
{
    for (int i = 0; i < 5; ++i)
        this->array.Insert(TypeParam::Make(i)), this->twin.Insert(i, i);
    ASSERT_TRUE(this->Matches());
    for (int i : {0, 4, 5, 9}) {
        this->array[i] = TypeParam::Make(77);
        EXPECT_FALSE(this->Matches());
        this->array[i] = TypeParam::Make(this->twin.slots[static_cast<size_t>(i)]);
        ASSERT_TRUE(this->Matches());
    }
    this->array.Extend(1);
    EXPECT_FALSE(this->Matches());
}
} // namespace
