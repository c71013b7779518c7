// Lists, weak references and cursors: the edges of each operation, copies, assertion texts, and random programs
// of everything together against a naive twin.
#include "lib/linkage.h"
#include "support/child.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <tuple>
#include <vector>

namespace
{
std::vector<int> dead; // ids in the order in which members died

struct Member : LINK {
    int id;
    explicit Member(int aId) : id(aId) {}
    ~Member() override { dead.push_back(id); }
};

using Cursor = LISTITER<Member>;

int Id(const LINK *lnk)
{
    return lnk ? static_cast<const Member *>(lnk)->id : -1;
}

/// The ids forwards, after a walk backwards has shown the same.
std::vector<int> Ids(const LIST &list)
{
    std::vector<int> there, back;
    for (LINK *lnk = list.First(); lnk != NULL; lnk = lnk->Next()) {
        EXPECT_EQ(lnk->List(), &list);
        there.push_back(Id(lnk));
    }
    for (LINK *lnk = list.Last(); lnk != NULL; lnk = lnk->Prev())
        back.insert(back.begin(), Id(lnk));
    EXPECT_EQ(there, back);
    EXPECT_EQ(list.Count(), static_cast<int>(there.size()));
    EXPECT_EQ(list.IsEmpty(), there.empty());
    return there;
}

bool IsUnlinked(const LINK &lnk)
{
    return lnk.List() == NULL && lnk.Next() == NULL && lnk.Prev() == NULL;
}

/// A list with the members 0 to n - 1, and pointers to them.
struct Filled {
    LIST list;
    std::vector<Member *> m;
    explicit Filled(int n)
    {
        for (int i = 0; i < n; ++i) {
            m.push_back(new Member(i));
            m.back()->Insert(&list);
        }
    }
};

using V = std::vector<int>;

class Linkage : public testing::Test
{
protected:
    void SetUp() override { dead.clear(); }
};
using LinkTest = Linkage;
using ListTest = Linkage;
using QueueTest = Linkage;
using RefTest = Linkage;
using CursorTest = Linkage;
} // namespace

TEST_F(LinkTest, RemoveTakesAMemberOutOfAnyPlace)
{
    const struct {
        int n, taken;
        V left;
    } rows[] = {{1, 0, {}}, {2, 0, {1}}, {2, 1, {0}}, {3, 0, {1, 2}}, {3, 1, {0, 2}}, {3, 2, {0, 1}}};
    for (const auto &row : rows) {
        Filled f(row.n);
        std::unique_ptr<Member> taken(f.m[static_cast<size_t>(row.taken)]);
        taken->Remove();
        EXPECT_EQ(Ids(f.list), row.left);
        EXPECT_TRUE(IsUnlinked(*taken));
        taken->Remove();
        EXPECT_TRUE(IsUnlinked(*taken)) << "once more does nothing";
        EXPECT_EQ(Ids(f.list), row.left);
    }
}

TEST_F(LinkTest, TheSoleMemberLeavesAnEmptyList)
{
    LIST list;
    Member only(1);
    only.Insert(&list);
    only.Remove();
    EXPECT_EQ(list.First(), static_cast<LINK *>(NULL));
    EXPECT_EQ(list.Last(), static_cast<LINK *>(NULL));
    EXPECT_EQ(list.Count(), 0);
    EXPECT_TRUE(list.IsEmpty());
}

TEST_F(LinkTest, InsertAfterAndBeforePutAMemberBesideAnother)
{
    const struct {
        int beside;
        V after, before;
    } rows[] = {
        {0, {0, 9, 1, 2}, {9, 0, 1, 2}},
        {1, {0, 1, 9, 2}, {0, 9, 1, 2}},
        {2, {0, 1, 2, 9}, {0, 1, 9, 2}},
    };
    for (const auto &row : rows) {
        Filled a(3), b(3);
        (new Member(9))->InsertAfter(a.m[static_cast<size_t>(row.beside)]);
        (new Member(9))->InsertBefore(b.m[static_cast<size_t>(row.beside)]);
        EXPECT_EQ(Ids(a.list), row.after);
        EXPECT_EQ(Ids(b.list), row.before);
    }
}

TEST_F(LinkTest, AMoveWithinAListOrToAnotherIsOneCall)
{
    Filled a(4), b(2);
    a.m[0]->InsertAfter(a.m[2]);
    EXPECT_EQ(Ids(a.list), (V{1, 2, 0, 3}));
    a.m[3]->InsertBefore(a.m[1]);
    EXPECT_EQ(Ids(a.list), (V{3, 1, 2, 0}));
    a.m[2]->InsertAfter(a.m[1]);
    EXPECT_EQ(Ids(a.list), (V{3, 1, 2, 0})) << "it stood there";
    a.m[1]->InsertAfter(b.m[0]);
    EXPECT_EQ(Ids(a.list), (V{3, 2, 0}));
    EXPECT_EQ(Ids(b.list), (V{0, 1, 1}));
    a.m[1]->Insert(&a.list);
    EXPECT_EQ(Ids(a.list), (V{3, 2, 0, 1}));
    EXPECT_EQ(Ids(b.list), (V{0, 1}));
}

TEST_F(LinkTest, InsertOfAMemberOfTheSameListMovesItToTheEnd)
{
    Filled f(3);
    f.m[0]->Insert(&f.list);
    EXPECT_EQ(Ids(f.list), (V{1, 2, 0}));
    f.m[0]->Insert(&f.list);
    EXPECT_EQ(Ids(f.list), (V{1, 2, 0}));
    Filled one(1);
    one.m[0]->Insert(&one.list);
    EXPECT_EQ(Ids(one.list), (V{0}));
}

TEST_F(LinkTest, AMemberBesideItselfStaysWhereItIs)
{
    Filled f(3);
    f.m[1]->InsertAfter(f.m[1]);
    f.m[1]->InsertBefore(f.m[1]);
    EXPECT_EQ(Ids(f.list), (V{0, 1, 2}));
}

TEST_F(LinkTest, DeletingAMemberUnlinksIt)
{
    Filled f(3);
    delete f.m[1];
    EXPECT_EQ(Ids(f.list), (V{0, 2}));
    EXPECT_EQ(dead, (V{1}));
}

TEST_F(LinkTest, LinkageDoesNotTravelByCopy)
{
    Filled f(3);
    REF ref(f.m[1]);
    Member copy(*f.m[1]);
    EXPECT_TRUE(IsUnlinked(copy));
    EXPECT_FALSE(copy.HasRefs());
    EXPECT_EQ(copy.id, 1) << "what the member itself holds travels";
    copy = *f.m[2];
    EXPECT_TRUE(IsUnlinked(copy));
    EXPECT_EQ(copy.id, 2);
    EXPECT_EQ(&(*f.m[0] = copy), f.m[0]);
    EXPECT_EQ(Ids(f.list), (V{2, 1, 2})) << "the left side keeps its place";
    EXPECT_TRUE(ref == f.m[1]);
    *f.m[1] = copy;
    EXPECT_TRUE(f.m[1]->HasRefs());
}

TEST_F(ListTest, ACopiedListIsEmptyAndAssignmentMovesNoMembers)
{
    Filled a(3), b(1);
    LIST copy(a.list);
    EXPECT_TRUE(copy.IsEmpty());
    EXPECT_EQ(&(b.list = a.list), &b.list);
    EXPECT_EQ(Ids(a.list), (V{0, 1, 2}));
    EXPECT_EQ(Ids(b.list), (V{0}));
}

TEST_F(ListTest, ItsEndDeletesTheMembersFromTheFirst)
{
    {
        Filled f(3);
    }
    EXPECT_EQ(dead, (V{0, 1, 2}));
    Filled g(2);
    dead.clear();
    g.list.Clear();
    EXPECT_EQ(dead, (V{0, 1}));
    EXPECT_EQ(Ids(g.list), V());
    g.list.Clear();
    (new Member(5))->Insert(&g.list);
    EXPECT_EQ(Ids(g.list), (V{5})) << "a cleared list takes members again";
}

TEST_F(ListTest, ListsCanBeMembersOfLists)
{
    {
        LIST outer;
        LIST *inner = new LIST;
        inner->Insert(&outer);
        (new Member(1))->Insert(inner);
        (new Member(2))->Insert(inner);
        (new Member(3))->InsertAfter(inner);
        EXPECT_EQ(outer.Count(), 2);
        EXPECT_EQ(Ids(*inner), (V{1, 2}));
    }
    EXPECT_EQ(dead, (V{1, 2, 3}));
}

namespace
{
/// Keeps its members in the order of their ids.
struct SortedList : LIST {
    LINK *Position(LINK *lnk) override
    {
        LINK *at = First();
        while (at != NULL && Id(at) < Id(lnk))
            at = at->Next();
        return at;
    }
};
} // namespace

TEST_F(ListTest, InsertAsksTheListForThePosition)
{
    SortedList list;
    for (int id : {5, 1, 9, 3, 7, 2})
        (new Member(id))->Insert(&list);
    EXPECT_EQ(Ids(list), (V{1, 2, 3, 5, 7, 9}));
    LIST plain;
    EXPECT_EQ(plain.Position(list.First()), static_cast<LINK *>(NULL));
}

TEST_F(QueueTest, TheModeTellsWhereMembersGo)
{
    const struct {
        int mode;
        V order;
    } rows[] = {{2, {2, 1, 0}}, {0, {0, 1, 2}}, {1, {0, 1, 2}}, {3, {0, 1, 2}}, {-2, {0, 1, 2}}};
    for (const auto &row : rows) {
        QUEUE queue(row.mode);
        EXPECT_EQ(queue.GetMode(), row.mode);
        for (int i = 0; i < 3; ++i)
            (new Member(i))->Insert(&queue);
        EXPECT_EQ(Ids(queue), row.order) << "mode " << row.mode;
    }
}

TEST_F(QueueTest, AStackTakesItsOwnFirstMemberBackOnTop)
{
    QUEUE stack(QUEUE::STACK);
    Member *a = new Member(0), *b = new Member(1);
    a->Insert(&stack);
    b->Insert(&stack);
    b->Insert(&stack);
    EXPECT_EQ(Ids(stack), (V{1, 0}));
    a->Insert(&stack);
    EXPECT_EQ(Ids(stack), (V{0, 1}));
}

TEST_F(QueueTest, SetModeReturnsTheFormerOneAndCopiesTakeTheModeAlone)
{
    QUEUE queue(2);
    (new Member(1))->Insert(&queue);
    EXPECT_EQ(queue.SetMode(1), 2);
    EXPECT_EQ(queue.GetMode(), 1);
    QUEUE copy(queue);
    EXPECT_EQ(copy.GetMode(), 1);
    EXPECT_TRUE(copy.IsEmpty());
    QUEUE other(7);
    (new Member(2))->Insert(&other);
    other = queue;
    EXPECT_EQ(other.GetMode(), 1);
    EXPECT_EQ(Ids(other), (V{2}));
    EXPECT_EQ(Ids(queue), (V{1}));
}

TEST_F(RefTest, DeletingTheTargetEmptiesEveryReference)
{
    for (int n : {1, 2, 5}) {
        Member *target = new Member(1);
        std::vector<REF> refs(static_cast<size_t>(n), REF(target));
        EXPECT_TRUE(target->HasRefs());
        for (REF &ref : refs)
            EXPECT_EQ(ref.Get(), target);
        delete target;
        for (REF &ref : refs)
            EXPECT_EQ(ref.Get(), static_cast<REFOBJ *>(NULL));
    }
}

TEST_F(RefTest, ReferencesLeaveTheirTargetInAnyOrder)
{
    V order{0, 1, 2, 3};
    do {
        Member target(1);
        REF refs[4];
        for (REF &ref : refs)
            ref = &target;
        for (size_t n = 0; n < order.size(); ++n) {
            EXPECT_TRUE(target.HasRefs());
            refs[order[n]].Set(NULL);
            for (size_t k = 0; k < order.size(); ++k)
                ASSERT_EQ(refs[order[k]].Get() == &target, k > n);
        }
        EXPECT_FALSE(target.HasRefs());
    } while (std::next_permutation(order.begin(), order.end()));
}

TEST_F(RefTest, CopiesAndAssignmentsReferToTheSameTarget)
{
    Member a(1), b(2);
    REF first(&a);
    REF copy(first);
    REF empty;
    EXPECT_EQ(copy.Get(), &a);
    EXPECT_EQ(empty.Get(), static_cast<REFOBJ *>(NULL));
    EXPECT_EQ(&(copy = &b), &copy);
    EXPECT_EQ(copy.Get(), &b);
    EXPECT_EQ(first.Get(), &a);
    EXPECT_EQ(&(empty = first), &empty);
    EXPECT_EQ(empty.Get(), &a);
    const REF &same = first;
    first = same;
    EXPECT_EQ(first.Get(), &a);
    first = &a;
    EXPECT_EQ(first.Get(), &a);
    copy = NULL;
    EXPECT_FALSE(b.HasRefs());
    copy = REF();
    EXPECT_EQ(copy.Get(), static_cast<REFOBJ *>(NULL));
    REF *dying = new REF(&b);
    EXPECT_TRUE(b.HasRefs());
    delete dying;
    EXPECT_FALSE(b.HasRefs());
}

TEST_F(RefTest, ReferencesCompareByTheirTargets)
{
    Member a(1), b(2);
    REF a1(&a), a2(&a), b1(&b), none, none2;
    EXPECT_TRUE(a1 == a2 && none == none2 && a1 != b1 && a1 != none);
    EXPECT_FALSE(a1 != a2 || none != none2 || a1 == b1 || a1 == none);
    EXPECT_TRUE(a1 == &a && a1 != &b && none == static_cast<REFOBJ *>(NULL));
    EXPECT_FALSE(a1 != &a || a1 == &b || none != static_cast<REFOBJ *>(NULL));
}

TEST_F(RefTest, AReferenceCanSitInAListAndBeReferredTo)
{
    Member a(1);
    LIST list;
    REF *ref = new REF(&a);
    ref->Insert(&list);
    EXPECT_EQ(list.First(), ref);
    ref->Set(NULL);
    EXPECT_EQ(list.Count(), 1) << "the target has nothing to do with the list";
    ref->Set(&a);
    REF toRef(ref);
    REF toList(&list);
    list.Clear();
    EXPECT_FALSE(a.HasRefs());
    EXPECT_EQ(toRef.Get(), static_cast<REFOBJ *>(NULL));
    EXPECT_EQ(toList.Get(), &list);
    REF *self = new REF;
    self->Set(self);
    EXPECT_EQ(self->Get(), self);
    delete self;
}

TEST_F(CursorTest, FirstAndLastStandAtTheEnds)
{
    Filled f(3);
    Cursor it;
    EXPECT_FALSE(it.First());
    EXPECT_FALSE(it.Last());
    EXPECT_EQ(it.SetList(&f.list), static_cast<LIST *>(NULL));
    EXPECT_TRUE(it == NULL);
    EXPECT_TRUE(it.First());
    EXPECT_EQ(it->id, 0);
    EXPECT_TRUE(it.Last());
    EXPECT_EQ((*it).id, 2);
    LIST empty;
    EXPECT_EQ(it.SetList(&empty), &f.list);
    EXPECT_EQ(it.GetList(), &empty);
    EXPECT_FALSE(it.First());
    EXPECT_FALSE(it.Last());
}

TEST_F(CursorTest, WalksGoToEitherEndAndEndAtNothing)
{
    Filled f(3);
    V there, back;
    Cursor it;
    it.SetList(&f.list);
    for (bool more = it.First(); more; more = ++it)
        there.push_back(it->id);
    for (bool more = it.Last(); more; more = --it)
        back.push_back(it->id);
    EXPECT_EQ(there, (V{0, 1, 2}));
    EXPECT_EQ(back, (V{2, 1, 0}));
    EXPECT_TRUE(it == NULL);
    EXPECT_FALSE(++it);
    EXPECT_FALSE(--it) << "from nothing it steps to nothing";
}

TEST_F(CursorTest, AMemberBringsItsList)
{
    Filled f(3), g(1);
    Cursor it(f.m[1]);
    EXPECT_EQ(it.GetList(), &f.list);
    EXPECT_TRUE(++it);
    EXPECT_TRUE(it == f.m[2]);
    it = g.m[0];
    EXPECT_EQ(it.GetList(), &g.list);
    it = static_cast<Member *>(NULL);
    EXPECT_EQ(it.GetList(), static_cast<LIST *>(NULL));
    EXPECT_FALSE(++it);
    EXPECT_EQ(it.SetList(&f.list), static_cast<LIST *>(NULL));
}

TEST_F(CursorTest, WithoutAListItDoesNotMove)
{
    Filled f(2);
    Cursor it(f.m[0]);
    it.SetList(NULL);
    EXPECT_FALSE(++it);
    EXPECT_FALSE(--it);
    EXPECT_FALSE(it.First());
    EXPECT_TRUE(it == NULL);
}

TEST_F(CursorTest, AfterDetachItStepsOnFromTheGap)
{
    const struct {
        int taken;
        int next, prev; // -1 for none
    } rows[] = {{0, 1, -1}, {1, 2, 0}, {2, -1, 1}};
    for (const auto &row : rows) {
        for (bool forwards : {true, false}) {
            Filled f(3);
            Cursor it(f.m[static_cast<size_t>(row.taken)]);
            std::unique_ptr<Member> taken(it.Detach());
            EXPECT_EQ(taken->id, row.taken);
            EXPECT_TRUE(IsUnlinked(*taken));
            EXPECT_TRUE(it == NULL);
            EXPECT_EQ(it.GetList(), &f.list);
            int expected = forwards ? row.next : row.prev;
            EXPECT_EQ(forwards ? ++it : --it, expected >= 0);
            EXPECT_EQ(Id(it), expected);
        }
    }
}

TEST_F(CursorTest, TheGapIsForgottenByEveryMove)
{
    Filled f(4);
    Cursor it(f.m[1]);
    std::unique_ptr<Member> taken(it.Detach());
    Cursor gap(it);
    EXPECT_TRUE(gap == it) << "a copy takes the gap along";
    EXPECT_TRUE(++gap);
    EXPECT_EQ(gap->id, 2);
    gap = it;
    EXPECT_TRUE(gap.First() && gap->id == 0);
    EXPECT_TRUE(gap == f.m[0]);
    gap = it;
    gap.SetList(&f.list);
    EXPECT_FALSE(++gap);
    gap = it;
    gap = static_cast<Member *>(NULL);
    EXPECT_TRUE(gap == Cursor());
}

TEST_F(CursorTest, AWholeListCanBeTakenApartInOneWalk)
{
    Filled f(5);
    V taken;
    Cursor it;
    it.SetList(&f.list);
    for (bool more = it.First(); more; more = ++it) {
        if (it->id % 2 == 0) {
            std::unique_ptr<Member> member(it.Detach());
            taken.push_back(member->id);
        }
    }
    EXPECT_EQ(taken, (V{0, 2, 4}));
    EXPECT_EQ(Ids(f.list), (V{1, 3}));
}

TEST_F(CursorTest, AMemberRemovedByOtherMeansStaysUnderTheCursor)
{
    Filled f(3);
    std::unique_ptr<Member> removed(f.m[1]);
    Cursor it(removed.get());
    removed->Remove();
    EXPECT_TRUE(it == removed.get());
    EXPECT_FALSE(++it) << "it has no next member now";
}

TEST_F(CursorTest, CursorsCompareByMemberAndGapNotByList)
{
    Filled f(3), g(1);
    Cursor a(f.m[1]), b(f.m[1]);
    EXPECT_TRUE(a == b);
    EXPECT_FALSE(a != b);
    std::unique_ptr<Member> taken(a.Detach());
    EXPECT_TRUE(a != b);
    EXPECT_TRUE(b == taken.get());
    Cursor none;
    none.SetList(&f.list);
    EXPECT_TRUE(a == NULL && none == NULL);
    EXPECT_TRUE(a != none) << "one of them holds neighbours";
    EXPECT_FALSE(a == none);
    Cursor elsewhere;
    elsewhere.SetList(&g.list);
    EXPECT_TRUE(none == elsewhere);
    EXPECT_TRUE(b != f.m[0]);
    const Member *constant = f.m[0];
    EXPECT_TRUE(b != constant && !(b == constant));
}

TEST_F(Linkage, AssertionsStopTheProcessWithTheirText)
{
    Filled f(2);
    LIST list;
    Member loose(7), other(8);
    Cursor none;
    const struct {
        const char *condition, *file;
        std::function<void()> fault;
    } rows[] = {
        {"lnk != NULL", "lib/linkage.cpp", [&] { loose.InsertAfter(NULL); }},
        {"lnk != NULL", "lib/linkage.cpp", [&] { loose.InsertBefore(NULL); }},
        {"lnk->list != this", "lib/linkage.cpp", [&] { f.list.InsertAfter(f.m[0]); }},
        {"lnk->list != this", "lib/linkage.cpp", [&] { f.list.InsertBefore(f.m[0]); }},
        {"list != NULL", "lib/linkage.cpp", [&] { loose.InsertAfter(&other); }},
        {"list != NULL", "lib/linkage.cpp", [&] { loose.InsertBefore(&other); }},
        {"lst != NULL", "lib/linkage.cpp", [&] { loose.Insert(NULL); }},
        {"lst != this", "lib/linkage.cpp", [&] { list.Insert(&list); }},
        {"list != NULL || lnk == NULL", "lib/linkage.h", [&] { Cursor it(&loose); }},
        {"list != NULL || lnk == NULL", "lib/linkage.h", [&] { none = &loose; }},
        {"link != NULL", "lib/linkage.h", [&] { std::ignore = *none; }},
        {"link != NULL", "lib/linkage.h", [&] { std::ignore = none->id; }},
        {"link != NULL", "lib/linkage.h", [&] { none.Detach(); }},
    };
    for (const auto &row : rows)
        EXPECT_TRUE(AbortsOnAssertion(row.condition, row.file, row.fault));
}
