// The growable array: growth, results and assertion texts as tables, items that fail to travel, failures
// pending and under repair.
#include "lib/array.h"
#include "lib/linkage.h"

#if defined(__enter) || defined(__test) || defined(__raise) || defined(__point) || defined(__treat) ||         \
    defined(__repair) || defined(__report)
#error "a header leaves macros of the failure protocol behind"
#endif

#include "array_items.h"
#include "support/child.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <csignal>
#include <cstring>
#include <functional>
#include <tuple>
#include <type_traits>
#include <vector>

namespace
{
static_assert(!std::is_polymorphic_v<ARRAY<int>>);
static_assert(std::is_standard_layout_v<ARRAY<int>>);

/// The fields of an array as they lie, to build what no operation would build.
struct RawArray {
    int *data;
    int size;
    int count;
};
static_assert(sizeof(RawArray) == sizeof(ARRAY<int>));

void Damage(ARRAY<int> &a, const RawArray &raw)
{
    std::memcpy(static_cast<void *>(&a), &raw, sizeof raw);
}

ARRAY<int> Numbers(int n, int first = 1)
{
    ARRAY<int> a;
    for (int i = 0; i < n; ++i)
        a.Insert(first + i);
    return a;
}

std::vector<int> Used(const ARRAY<int> &a)
{
    return a.Count() == 0 ? std::vector<int>() : std::vector<int>(a + 0, a + a.Count());
}

/// A failure pending for the life of the object, or under repair with depth 1.
struct Pending {
    explicit Pending(XCODE code, int depth = 0) { xCode = code, xDepth = depth; }
    ~Pending() { xCode = XNULL, xDepth = 0; }
};

const int capacities[] = {10, 20, 40, 80, 160, 320, 640, 1280, 2280, 3280, 4280};
} // namespace

TEST(ARRAY, InsertGrowsByDoublingThenByAThousand)
{
    ARRAY<int> a;
    for (int i = 0; i <= 3280; ++i) {
        EXPECT_EQ(a.Insert(i), i);
        int expected = *std::lower_bound(std::begin(capacities), std::end(capacities), a.Count());
        ASSERT_EQ(a.Size(), expected);
    }
}

TEST(ARRAY, ExtendGrowsAtLeastByTheSameSteps)
{
    const struct {
        int size, count, n, grown;
    } rows[] = {
        {0, 0, 1, 10},
        {0, 0, 10, 10},
        {0, 0, 11, 11},
        {0, 0, 5000, 5000},
        {10, 10, 1, 20},
        {10, 10, 10, 20},
        {10, 10, 11, 21},
        {10, 4, 6, 10},
        {10, 4, 7, 20},
        {10, 4, 16, 20},
        {10, 4, 17, 21},
        {5, 5, 1, 15},
        {999, 999, 1, 1998},
        {1000, 1000, 1, 2000},
        {1280, 1280, 1, 2280},
        {1280, 1280, 1000, 2280},
        {1280, 1280, 1001, 2281},
        {10, 3, 0, 10},
    };
    for (const auto &row : rows) {
        ARRAY<int> a(row.size);
        if (row.count > 0)
            a.Extend(row.count);
        int *first = a.Extend(row.n);
        EXPECT_EQ(a.Size(), row.grown) << row.size << ", " << row.count << " + " << row.n;
        EXPECT_EQ(a.Count(), row.count + row.n);
        EXPECT_EQ(first, a + row.count);
        for (int i = 0; i < row.n; ++i)
            ASSERT_EQ(first[i], 0);
    }
}

TEST(ARRAY, AResizeOfAnEmptyArrayToNothingChangesNothing)
{
    ARRAY<int> a;
    EXPECT_EQ(a.Resize(0), 0);
    EXPECT_TRUE(a == NULL);
    EXPECT_EQ(a.Size(), 0);
    EXPECT_EQ(a.Count(), 0);
}

TEST(ARRAY, AShorterBlockCutsTheCount)
{
    ARRAY<int> a = Numbers(7);
    EXPECT_EQ(a.Resize(8), 10);
    EXPECT_EQ(a.Count(), 7);
    EXPECT_EQ(a.Resize(3), 8);
    EXPECT_EQ(Used(a), (std::vector<int>{1, 2, 3}));
    EXPECT_EQ(a.Resize(3), 3);
    EXPECT_EQ(a.Resize(0), 3);
    EXPECT_TRUE(a == NULL);
    EXPECT_TRUE(a.IsEmpty());
}

TEST(ARRAY, AnArrayOfAGivenSizeHasNoItemsInUse)
{
    ARRAY<int> a(5);
    EXPECT_EQ(a.Size(), 5);
    EXPECT_EQ(a.Count(), 0);
    for (int i = 0; i < 5; ++i)
        EXPECT_EQ(a[i], 0);
    EXPECT_EQ(ARRAY<int>(0).Size(), 0);
}

TEST(ARRAY, UnusedSlotsMayBeAddressedAndTravelWithTheBlock)
{
    ARRAY<int> a = Numbers(3);
    a[a.Count()] = 44;
    a[9] = 99;
    ARRAY<int> b = Numbers(25);
    b = a;
    EXPECT_EQ(b.Size(), 10);
    EXPECT_EQ(b.Count(), 3);
    EXPECT_EQ(b[3], 44);
    EXPECT_EQ(b[9], 99);
    a.Resize(30);
    EXPECT_EQ(a[3], 44);
    EXPECT_EQ(a[9], 99);
    EXPECT_EQ(a[10], 0);
    const ARRAY<int> &c = a;
    EXPECT_EQ(c[9], 99);
}

TEST(ARRAY, AssignmentFromAnEmptyArrayLeavesNoBlock)
{
    ARRAY<int> a = Numbers(12);
    a = ARRAY<int>();
    EXPECT_TRUE(a == NULL);
    EXPECT_EQ(a.Size(), 0);
    EXPECT_EQ(a.Count(), 0);
    ARRAY<int> b = Numbers(4);
    const ARRAY<int> &same = b;
    b = same;
    EXPECT_EQ(Used(b), (std::vector<int>{1, 2, 3, 4}));
}

TEST(ARRAY, InsertShiftsWhatLiesBehind)
{
    ARRAY<int> a;
    EXPECT_EQ(a.Insert(5, -1), 0);
    EXPECT_EQ(a.Size(), 10);
    EXPECT_EQ(a.Insert(7, 1), 1);
    EXPECT_EQ(a.Insert(6, 1), 1);
    EXPECT_EQ(a.Insert(4, 0), 0);
    EXPECT_EQ(a.Insert(8), 4);
    EXPECT_EQ(Used(a), (std::vector<int>{4, 5, 6, 7, 8}));
}

TEST(ARRAY, AnItemOfTheArrayItselfMayBeInserted)
{
    for (int n : {3, 10})
        for (int from = 0; from < n; ++from)
            for (int to = 0; to <= n; ++to) {
                ARRAY<int> a = Numbers(n, 100);
                std::vector<int> expected = Used(a);
                expected.insert(expected.begin() + to, 100 + from);
                a.Insert(a[from], to);
                ASSERT_EQ(Used(a), expected) << from << " to " << to << " of " << n;
            }
}

TEST(ARRAY, DeleteClosesTheGapAndVacatesTheLastSlot)
{
    ARRAY<int> a = Numbers(5);
    a.Delete(1);
    EXPECT_EQ(Used(a), (std::vector<int>{1, 3, 4, 5}));
    EXPECT_EQ(a[4], 0);
    a.Delete(3);
    a.Delete(0);
    EXPECT_EQ(Used(a), (std::vector<int>{3, 4}));
    EXPECT_EQ(a.Size(), 10);
}

TEST(ARRAY, TruncateAndClearKeepTheBlockAndVacateTheSlots)
{
    ARRAY<int> a = Numbers(8);
    a.Truncate(a + 6);
    EXPECT_EQ(Used(a), (std::vector<int>{1, 2, 3, 4, 5, 6}));
    EXPECT_EQ(a[6], 0);
    a.Truncate(a + 6);
    EXPECT_EQ(a.Count(), 6);
    a.Clear();
    EXPECT_EQ(a.Count(), 0);
    EXPECT_EQ(a.Size(), 10);
    for (int i = 0; i < 10; ++i)
        EXPECT_EQ(a[i], 0);
    ARRAY<int> never;
    never.Clear();
    EXPECT_TRUE(never == NULL);
}

TEST(ARRAY, PointersCompareWithTheStartOfTheBlock)
{
    ARRAY<int> a = Numbers(5);
    const ARRAY<int> &c = a;
    int *start = a;
    const int *constant = c;
    EXPECT_EQ(start, constant);
    EXPECT_EQ(a + 2, start + 2);
    EXPECT_EQ(c + 2, constant + 2);
    EXPECT_EQ(a - 0, start);
    EXPECT_EQ((a + 3) - 1, start + 2);
    EXPECT_EQ(c - 0, constant);
    EXPECT_EQ(a - (start + 3), -3) << "array minus pointer";
    EXPECT_EQ(c - (constant + 3), -3);
    EXPECT_TRUE(a == start && c == constant && a == constant && start == a);
    EXPECT_FALSE(a != start || c != constant || a == start + 1);
    EXPECT_TRUE(a != start + 1 && a != NULL && c != NULL);
    EXPECT_TRUE(a <= start && a >= start && a < start + 1 && c > constant - 1);
    EXPECT_FALSE(a < start || a > start || a >= start + 1 || c <= constant - 1);
    *(a + 1) = 77;
    EXPECT_EQ(c[1], 77);
}

TEST(ARRAY, OperationsCostTheAssignmentsOfTheItemsThatTravel)
{
    ARRAY<RaisingItem> a;
    const struct {
        const char *what;
        std::function<void()> operation;
        int cost;
    } rows[] = {
        {"the first block", [&] { a.Resize(4); }, 0},
        {"four slots into use", [&] { a.Extend(4); }, 0},
        {"growth and the item", [&] { a.Insert(RaisingItem(1)); }, 4 + 1},
        {"two behind and the item", [&] { a.Insert(RaisingItem(2), 3); }, 2 + 1},
        {"four behind and the freed slot", [&] { a.Delete(1); }, 4 + 1},
        {"the last", [&] { a.Delete(4); }, 0 + 1},
        {"the whole block", [&] { ARRAY<RaisingItem> b(a); }, 14},
        {"three items", [&] { a.Truncate(a + 1); }, 3},
        {"what fits", [&] { a.Resize(3); }, 3},
        {"nothing", [&] { a.Resize(3); }, 0},
        {"one item", [&] { a.Clear(); }, 1},
        {"no block", [&] { a.Resize(0); }, 0},
    };
    for (const auto &row : rows) {
        assignments = 0;
        row.operation();
        EXPECT_EQ(assignments, row.cost) << row.what;
    }
}

TEST(ARRAY, ItemsTravelInTheOrderThatIsSafeForOverlap)
{
    ARRAY<RaisingItem> a;
    a.Extend(5);
    RaisingItem *p = a;
    targets.clear();
    a.Insert(RaisingItem(9), 2);
    EXPECT_EQ(targets, (std::vector<void *>{p + 5, p + 4, p + 3, p + 2}))
        << "upwards in the block, so from the end";
    targets.clear();
    a.Delete(2);
    EXPECT_EQ(targets, (std::vector<void *>{p + 2, p + 3, p + 4, p + 5}));
    targets.clear();
}

TEST(ARRAY, APendingFailureLeavesEveryOperationWithoutEffect)
{
    ARRAY<int> a = Numbers(5);
    ARRAY<int> other = Numbers(2);
    ARRAY<int> empty;
    int *start = a;
    Pending pending(XFREAD);
    EXPECT_EQ(a.Resize(77), 10);
    EXPECT_EQ(a.Resize(-1), 10) << "entry is refused before any assertion";
    EXPECT_EQ(a.Insert(9), 5) << "-1 becomes the count even then";
    EXPECT_EQ(a.Insert(9, 2), 2);
    EXPECT_EQ(a.Insert(9, 1000), 1000);
    EXPECT_EQ(a.Extend(3), static_cast<int *>(NULL));
    EXPECT_EQ(a.Extend(-3), static_cast<int *>(NULL));
    a.Delete(0);
    a.Delete(100);
    a.Truncate(a + 1);
    a.Truncate(NULL);
    a.Clear();
    a = other;
    EXPECT_EQ(ARRAY<int>(8).Size(), 0);
    EXPECT_TRUE(ARRAY<int>(a) == NULL);
    EXPECT_EQ(empty.Insert(1), 0);
    EXPECT_TRUE(empty == NULL);
    EXPECT_EQ(Used(a), (std::vector<int>{1, 2, 3, 4, 5}));
    EXPECT_TRUE(a == start);
    EXPECT_EQ(a[2], 3) << "access is no guarded operation";
    EXPECT_EQ(xCode, XFREAD);
}

TEST(ARRAY, RepairStatementsUseArraysAsEver)
{
    ARRAY<int> a = Numbers(5);
    Pending repairing(XFREAD, 1);
    EXPECT_EQ(a.Insert(6), 5);
    a.Delete(0);
    EXPECT_EQ(a.Resize(30), 10);
    EXPECT_EQ(Used(a), (std::vector<int>{2, 3, 4, 5, 6}));
    int *first = a.Extend(30);
    EXPECT_EQ(first, a + 5);
    ARRAY<int> b(a);
    EXPECT_EQ(b.Count(), 35);
    a.Clear();
    EXPECT_EQ(a.Count(), 0);
    EXPECT_EQ(xCode, XFREAD);
    EXPECT_EQ(xDepth, 1);
}

TEST(ARRAY, TheBlockIsFreedThoughAFailureIsPending)
{
    {
        ARRAY<RaisingItem> a;
        a.Extend(5);
        EXPECT_EQ(Counted::live, 10);
        xCode = XFREAD;
    }
    xCode = XNULL;
    EXPECT_EQ(Counted::live, 0);
}

namespace
{
/// Its arrays get no memory.
struct Homeless {
    static inline bool refuse = false;
    static void *operator new[](size_t size, const std::nothrow_t &tag) noexcept
    {
        return refuse ? NULL : ::operator new[](size, tag);
    }
    static void operator delete[](void *p) { ::operator delete[](p); }
};

/// The so many-th construction throws.
struct Unborn : Counted {
    static inline int birthFuse = 0;
    Unborn()
    {
        if (birthFuse > 0 && --birthFuse == 0)
            ThrowingItem::Throw();
    }
};
} // namespace

TEST(ARRAY, AnAllocationThatYieldsNothingIsOutOfMemoryRaisedInResize)
{
    ARRAY<Homeless> a(3);
    a.Extend(3);
    Homeless *start = a;
    Homeless::refuse = true;
    const std::function<void()> operations[] = {
        [&] { EXPECT_EQ(a.Resize(5), 3); },
        [&] { EXPECT_EQ(a.Resize(2), 3); },
        [&] { EXPECT_EQ(a.Insert(Homeless()), 3); },
        [&] { EXPECT_EQ(a.Extend(1), static_cast<Homeless *>(NULL)); },
    };
    for (const auto &operation : operations) {
        operation();
        EXPECT_EQ(xCode, XALLOC);
        EXPECT_STREQ(xFile, "lib/array.h");
        EXPECT_GT(xLine, 0);
        xCode = XNULL;
        EXPECT_TRUE(a == start);
        EXPECT_EQ(a.Size(), 3);
        EXPECT_EQ(a.Count(), 3);
    }
    ARRAY<Homeless> b(7);
    EXPECT_EQ(xCode, XALLOC);
    xCode = XNULL;
    EXPECT_TRUE(b == NULL);
    EXPECT_EQ(b.Size(), 0);
    Homeless::refuse = false;
}

TEST(ARRAY, AConstructorThatThrowsInTheNewBlockLeavesTheOldOne)
{
    const struct {
        int what;
        XCODE code;
    } rows[] = {{0, XALLOC}, {1, XUNKNOWN}, {2, XUNKNOWN}};
    for (const auto &row : rows) {
        ARRAY<Unborn> a(6);
        ThrowingItem::what = row.what;
        Unborn::birthFuse = 4;
        EXPECT_EQ(a.Resize(9), 6);
        EXPECT_EQ(xCode, row.code);
        EXPECT_STREQ(xFile, "lib/array.h");
        xCode = XNULL;
        EXPECT_EQ(a.Size(), 6);
        EXPECT_EQ(Counted::live, 6);
        Unborn::birthFuse = 0;
    }
}

TEST(ARRAY, MoreItemsThanAnIntCountsAreOutOfMemory)
{
    ARRAY<char> a(10);
    a.Extend(3);
    EXPECT_EQ(a.Extend(INT_MAX), static_cast<char *>(NULL));
    EXPECT_EQ(xCode, XALLOC);
    xCode = XNULL;
    EXPECT_EQ(a.Count(), 3);
    EXPECT_EQ(a.Size(), 10);
}

TEST(ARRAY, EveryAssignmentOfEveryOperationMayFail)
{
    using Array = ARRAY<RaisingItem>;
    const struct {
        const char *what;
        std::function<void(Array &, Array &)> operation;
        int assignments; // that can fail
        int size, count; // after a failure, whichever it was
    } rows[] = {
        {"Resize", [](Array &a, Array &) { a.Resize(25); }, 10, 10, 10},
        {"Resize to less", [](Array &a, Array &) { a.Resize(4); }, 4, 10, 10},
        {"Delete", [](Array &a, Array &) { a.Delete(3); }, 7, 10, 10},
        {"Truncate", [](Array &a, Array &) { a.Truncate(a + 4); }, 6, 10, 4},
        {"Clear", [](Array &a, Array &) { a.Clear(); }, 10, 10, 0},
        {"assignment", [](Array &a, Array &b) { a = b; }, 10, 10, 0},
    };
    for (const auto &row : rows) {
        for (int n = 1; n <= row.assignments + 1; ++n) {
            Array a, b;
            a.Extend(10);
            b.Extend(5);
            fuse = n;
            row.operation(a, b);
            bool failed = fuse == 0;
            fuse = 0;
            EXPECT_EQ(failed, n <= row.assignments) << row.what << " " << n;
            EXPECT_EQ(xCode, failed ? XLIMIT : XNULL);
            xCode = XNULL;
            if (failed) {
                EXPECT_EQ(a.Size(), row.size) << row.what << " " << n;
                EXPECT_EQ(a.Count(), row.count) << row.what << " " << n;
            }
            EXPECT_EQ(Counted::live, a.Size() + b.Size());
        }
        EXPECT_EQ(Counted::live, 0);
    }
    targets.clear();
}

TEST(ARRAY, AFailedInsertCountsNothingIn)
{
    for (int n = 1; n <= 18; ++n) { // ten into the larger block, seven behind, the item; then none fails
        ARRAY<RaisingItem> a;
        a.Extend(10);
        fuse = n;
        EXPECT_EQ(a.Insert(RaisingItem(1), 3), 3);
        EXPECT_EQ(xCode, XLIMIT);
        EXPECT_EQ(a.Count(), 10);
        EXPECT_EQ(a.Size(), n <= 10 ? 10 : 20) << "room once made stays";
        xCode = XNULL;
    }
    ARRAY<RaisingItem> a;
    a.Extend(10);
    fuse = 19;
    a.Insert(RaisingItem(1), 3);
    EXPECT_EQ(fuse, 1);
    EXPECT_EQ(xCode, XNULL);
    fuse = 0;
    targets.clear();
}

TEST(ARRAY, AFailureDuringRepairEndsTheProcess)
{
    ChildEnd end = RunInChild([] {
        ARRAY<RaisingItem> a;
        a.Extend(3);
        xCode = XFREAD, xFile = "first.cpp", xLine = 12, xDepth = 1;
        fuse = 2;
        a.Resize(20);
    });
    EXPECT_EQ(end.signal, SIGABRT);
    EXPECT_EQ(end.err.find("Exception during repair!\nRepaired exception: XFREAD, file first.cpp, line 12\n"
                           "New exception: XLIMIT, file tests/lib/array_items.h, line "),
              0u)
        << end.err;
}

TEST(ARRAY, AssertionsStopTheProcessWithTheirText)
{
    using Fault = std::function<void()>;
    ARRAY<int> none;
    ARRAY<int> a = Numbers(5);
    ARRAY<int> bad;
    const ARRAY<int> &constNone = none;
    const ARRAY<int> &constA = a;
    int *null = NULL;
    int block[4] = {};
    auto damaged = [&](int *data, int size, int count, const Fault &fault) -> Fault {
        return [=, &bad] {
            Damage(bad, {data, size, count});
            fault();
        };
    };
    const struct {
        const char *condition;
        Fault fault;
    } rows[] = {
        {"a.size > 0 || a.data == NULL", damaged(block, 0, 9, [&] { a = bad; })},
        {"a.size == 0 || a.data != NULL", damaged(NULL, 4, 9, [&] { a = bad; })},
        {"a.count >= 0 && a.count <= a.size", damaged(block, 4, 5, [&] { a = bad; })},
        {"a.count >= 0 && a.count <= a.size", damaged(block, 4, -1, [&] { a = bad; })},
        {"a.count >= 0 && a.count <= a.size", damaged(block, 4, 5, [&] { ARRAY<int> copy(bad); })},
        {"data != NULL", [&] { none[-1] = 1; }},
        {"i >= 0 && i < size", [&] { a[-1] = 1; }},
        {"i >= 0 && i < size", [&] { a[10] = 1; }},
        {"data != NULL", [&] { std::ignore = constNone[0]; }},
        {"i >= 0 && i < size", [&] { std::ignore = constA[10]; }},
        {"data != NULL", [&] { null = none; }},
        {"data != NULL", [&] { std::ignore = static_cast<const int *>(constNone); }},
        {"data != NULL", [&] { std::ignore = none + 1; }},
        {"data != NULL", [&] { std::ignore = constNone + 1; }},
        {"data != NULL", [&] { std::ignore = none - 1; }},
        {"data != NULL", [&] { std::ignore = constNone - 1; }},
        {"data != NULL && p != NULL", [&] { std::ignore = none - block; }},
        {"data != NULL && p != NULL", [&] { std::ignore = a - null; }},
        {"data != NULL && p != NULL", [&] { std::ignore = none <= block; }},
        {"data != NULL && p != NULL", [&] { std::ignore = a <= null; }},
        {"data != NULL && p != NULL", [&] { std::ignore = none >= block; }},
        {"data != NULL && p != NULL", [&] { std::ignore = a >= null; }},
        {"data != NULL && p != NULL", [&] { std::ignore = none < block; }},
        {"data != NULL && p != NULL", [&] { std::ignore = a < null; }},
        {"data != NULL && p != NULL", [&] { std::ignore = none > block; }},
        {"data != NULL && p != NULL", [&] { std::ignore = a > null; }},
        {"sz >= 0", [&] { a.Resize(-1); }},
        {"sz >= 0", [] { ARRAY<int> negative(-5); }},
        {"count >= 0 && count <= size", damaged(block, 4, 5, [&] { bad.Insert(1, 99); })},
        {"count >= 0 && count <= size", damaged(block, 4, -1, [&] { bad.Insert(1, 99); })},
        {"data != NULL", damaged(NULL, 4, 2, [&] { bad.Insert(1, 99); })},
        {"i >= 0 && i <= count", [&] { a.Insert(1, 6); }},
        {"i >= 0 && i <= count", [&] { a.Insert(1, -2); }},
        {"i >= 0 && i <= count", [&] { none.Insert(1, 1); }},
        {"data != NULL", [&] { none.Delete(0); }},
        {"count > 0 && count <= size", damaged(block, 4, 0, [&] { bad.Delete(9); })},
        {"count > 0 && count <= size", damaged(block, 4, 5, [&] { bad.Delete(9); })},
        {"i >= 0 && i < count", [&] { a.Delete(5); }},
        {"i >= 0 && i < count", [&] { a.Delete(-1); }},
        {"n >= 0", damaged(block, 4, 5, [&] { bad.Extend(-1); })},
        {"count >= 0 && count <= size", damaged(block, 4, 5, [&] { bad.Extend(1); })},
        {"data != NULL", [&] { none.Extend(0); }},
        {"data != NULL", [&] { none.Truncate(null); }},
        {"count >= 0 && count <= size", damaged(block, 4, 5, [&] { bad.Truncate(null); })},
        {"p >= data && p <= data+count", [&] { a.Truncate(null); }},
        {"p >= data && p <= data+count", [&] { a.Truncate(a + 6); }},
    };
    for (const auto &row : rows)
        EXPECT_TRUE(AbortsOnAssertion(row.condition, "lib/array.h", row.fault));
}
