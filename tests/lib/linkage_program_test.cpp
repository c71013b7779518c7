// Random programs of lists, references and cursors against a naive twin that knows nothing but numbers: vectors
// of ids, a map of references, cursors of four ids.
#include "lib/linkage.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <map>
#include <memory>
#include <random>
#include <set>
#include <vector>

namespace
{
std::multiset<int> alive;

struct Member : LINK {
    int id;
    explicit Member(int aId) : id(aId) { alive.insert(id); }
    ~Member() override { alive.erase(id); }
};

using Cursor = LISTITER<Member>;

int Id(const LINK *lnk)
{
    return lnk ? static_cast<const Member *>(lnk)->id : -1;
}

/// A cursor as four ids, -1 for NULL.
struct TwinCursor {
    int link = -1;
    int prev = -1;
    int next = -1;
    int list = -1;

    void MoveTo(int id)
    {
        link = id;
        prev = next = -1;
    }
    bool Knows(int id) const { return link == id || prev == id || next == id; }
};

class Program
{
public:
    enum { LISTS = 4, REFS = 12, CURSORS = 6, MEMBERS = 60 };

    explicit Program(unsigned start) : engine(start)
    {
        lists[0] = std::make_unique<LIST>();
        lists[1] = std::make_unique<LIST>();
        lists[2] = std::make_unique<QUEUE>(0);
        lists[3] = std::make_unique<QUEUE>(QUEUE::STACK);
    }

    ~Program()
    {
        for (const auto &[id, member] : members)
            delete member;
    }

    void Step()
    {
        int op = Pick(100);
        if (op < 14)
            Create();
        else if (op < 34)
            MoveBeside(Pick(2) == 0);
        else if (op < 44)
            MoveToList();
        else if (op < 50)
            Remove();
        else if (op < 57)
            Delete();
        else if (op < 58)
            ClearList(Pick(LISTS));
        else if (op < 72)
            SetRef();
        else
            MoveCursor();
    }

    bool Matches() const
    {
        return ListsMatch() && RefsMatch() && CursorsMatch() && alive.size() == members.size();
    }

    /// A fault for the comparison to find: a twin that lost one thing.
    void DamageTwin(int what)
    {
        if (what == 0)
            std::iter_swap(twins[0].begin(), twins[0].end() - 1);
        else if (what == 1)
            refTwins[3] = refTwins[3] < 0 ? members.begin()->first : -1;
        else if (what == 2)
            cursorTwins[2].link = cursorTwins[2].link < 0 ? members.begin()->first : -1;
        else
            twins[0].pop_back();
    }

private:
    std::mt19937 engine;
    std::unique_ptr<LIST> lists[LISTS];
    std::vector<int> twins[LISTS];
    std::map<int, Member *> members; // all that live, linked or not
    std::unique_ptr<REF> refs[REFS];
    int refTwins[REFS] = {-1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1};
    Cursor cursors[CURSORS];
    TwinCursor cursorTwins[CURSORS];
    int lastId = 0;

    int Pick(int n) { return std::uniform_int_distribution<int>(0, n - 1)(engine); }

    int AnyMember()
    {
        return members.empty() ? -1 : std::next(members.begin(), Pick(static_cast<int>(members.size())))->first;
    }

    int ListOf(int id) const
    {
        for (int l = 0; l < LISTS; ++l)
            if (std::find(twins[l].begin(), twins[l].end(), id) != twins[l].end())
                return l;
        return -1;
    }

    /// The neighbour of a member in its list, -1 for none.
    int Beside(int id, int step) const
    {
        int l = ListOf(id);
        if (l < 0)
            return -1;
        auto at = std::find(twins[l].begin(), twins[l].end(), id) - twins[l].begin() + step;
        return at < 0 || at >= static_cast<ptrdiff_t>(twins[l].size()) ? -1 : twins[l][static_cast<size_t>(at)];
    }

    Member *Pointer(int id) const { return id < 0 ? NULL : members.at(id); }

    void TwinRemove(int id)
    {
        for (auto &twin : twins)
            twin.erase(std::remove(twin.begin(), twin.end(), id), twin.end());
    }

    void TwinAppend(int id, int l)
    {
        TwinRemove(id);
        twins[l].insert(l == 3 ? twins[l].begin() : twins[l].end(), id);
    }

    void Create()
    {
        if (members.size() >= MEMBERS)
            return;
        int id = ++lastId;
        members[id] = new Member(id);
        if (int l = Pick(LISTS + 1); l < LISTS) {
            members[id]->Insert(lists[l].get());
            TwinAppend(id, l);
        }
    }

    void MoveBeside(bool after)
    {
        int id = AnyMember();
        int other = AnyMember();
        if (id < 0 || ListOf(other) < 0)
            return;
        if (after)
            members[id]->InsertAfter(members[other]);
        else
            members[id]->InsertBefore(members[other]);
        if (id == other)
            return;
        TwinRemove(id);
        auto &twin = twins[ListOf(other)];
        twin.insert(std::find(twin.begin(), twin.end(), other) + after, id);
    }

    void MoveToList()
    {
        int id = AnyMember();
        if (id < 0)
            return;
        int l = Pick(LISTS);
        members[id]->Insert(lists[l].get());
        TwinAppend(id, l);
    }

    void Remove()
    {
        int id = AnyMember();
        if (id < 0)
            return;
        members[id]->Remove();
        TwinRemove(id);
    }

    /// Cursors are weak: before a member dies, those that know it go elsewhere.
    void Forget(int id)
    {
        for (int c = 0; c < CURSORS; ++c) {
            if (cursorTwins[c].Knows(id)) {
                cursors[c].SetList(cursors[c].GetList());
                cursorTwins[c].MoveTo(-1);
            }
        }
        for (int &target : refTwins)
            if (target == id)
                target = -1;
    }

    void Delete()
    {
        int id = AnyMember();
        if (id < 0)
            return;
        Forget(id);
        delete members[id];
        members.erase(id);
        TwinRemove(id);
    }

    void ClearList(int l)
    {
        for (int id : twins[l]) {
            Forget(id);
            members.erase(id);
        }
        twins[l].clear();
        lists[l]->Clear();
    }

    void SetRef()
    {
        int r = Pick(REFS);
        int how = Pick(5);
        int source = Pick(REFS);
        if (how == 0 || !refs[r]) {
            refs[r] = how == 1 && refs[source] ? std::make_unique<REF>(*refs[source]) : std::make_unique<REF>();
            refTwins[r] = how == 1 && refs[source] && source != r ? refTwins[source] : -1;
        } else if (how == 1 && refs[source]) {
            *refs[r] = *refs[source];
            refTwins[r] = refTwins[source];
        } else if (how == 2) {
            refs[r].reset();
            refTwins[r] = -1;
        } else {
            refTwins[r] = how == 3 ? AnyMember() : -1;
            *refs[r] = Pointer(refTwins[r]);
        }
    }

    void MoveCursor()
    {
        int c = Pick(CURSORS);
        Cursor &cursor = cursors[c];
        TwinCursor &twin = cursorTwins[c];
        switch (Pick(9)) {
        case 0: {
            int l = Pick(LISTS);
            EXPECT_EQ(cursor.SetList(lists[l].get()), twin.list < 0 ? NULL : lists[twin.list].get());
            twin = {-1, -1, -1, l};
            break;
        }
        case 1:
            twin.MoveTo(twin.list < 0 || twins[twin.list].empty() ? -1 : twins[twin.list].front());
            EXPECT_EQ(cursor.First(), twin.link >= 0);
            break;
        case 2:
            twin.MoveTo(twin.list < 0 || twins[twin.list].empty() ? -1 : twins[twin.list].back());
            EXPECT_EQ(cursor.Last(), twin.link >= 0);
            break;
        case 3:
        case 4:
            if (twin.list >= 0)
                twin.MoveTo(twin.link >= 0 ? Beside(twin.link, 1) : twin.next);
            EXPECT_EQ(++cursor, twin.link >= 0);
            break;
        case 5:
            if (twin.list >= 0)
                twin.MoveTo(twin.link >= 0 ? Beside(twin.link, -1) : twin.prev);
            EXPECT_EQ(--cursor, twin.link >= 0);
            break;
        case 6:
            if (twin.link >= 0) {
                int id = twin.link;
                twin = {-1, Beside(id, -1), Beside(id, 1), twin.list};
                TwinRemove(id);
                EXPECT_EQ(cursor.Detach(), members[id]);
            }
            break;
        case 7:
            if (int id = AnyMember(); id >= 0 && ListOf(id) >= 0) {
                cursor = members[id];
                twin = {id, -1, -1, ListOf(id)};
            }
            break;
        default: {
            int other = Pick(CURSORS);
            cursor = cursors[other];
            twin = cursorTwins[other];
        }
        }
    }

    bool ListsMatch() const
    {
        for (int l = 0; l < LISTS; ++l) {
            std::vector<int> there, back;
            for (LINK *lnk = lists[l]->First(); lnk != NULL; lnk = lnk->Next())
                there.push_back(lnk->List() == lists[l].get() ? Id(lnk) : -2);
            for (LINK *lnk = lists[l]->Last(); lnk != NULL; lnk = lnk->Prev())
                back.push_back(Id(lnk));
            if (there != twins[l] || !std::equal(back.rbegin(), back.rend(), there.begin(), there.end()) ||
                lists[l]->Count() != static_cast<int>(there.size()) || lists[l]->IsEmpty() != there.empty())
                return false;
        }
        for (const auto &[id, member] : members)
            if (ListOf(id) < 0 && (member->List() || member->Next() || member->Prev()))
                return false;
        return true;
    }

    bool RefsMatch() const
    {
        std::set<int> targets;
        for (int r = 0; r < REFS; ++r) {
            if (refs[r] && refs[r]->Get() != Pointer(refTwins[r]))
                return false;
            if (!refs[r] && refTwins[r] != -1)
                return false;
            targets.insert(refTwins[r]);
        }
        for (const auto &[id, member] : members)
            if (member->HasRefs() != (targets.count(id) > 0))
                return false;
        return true;
    }

    /// The gap shows in comparisons and in the next step; both are asked of a copy.
    bool CursorsMatch() const
    {
        for (int c = 0; c < CURSORS; ++c) {
            const TwinCursor &twin = cursorTwins[c];
            if (!(cursors[c] == Pointer(twin.link)) ||
                cursors[c].GetList() != (twin.list < 0 ? NULL : lists[twin.list].get()))
                return false;
            if (twin.link >= 0 || twin.list < 0)
                continue;
            Cursor next(cursors[c]), prev(cursors[c]);
            ++next, --prev;
            if (Id(next) != twin.next || Id(prev) != twin.prev)
                return false;
        }
        for (int c = 1; c < CURSORS; ++c) {
            const TwinCursor &a = cursorTwins[c - 1], &b = cursorTwins[c];
            bool same = a.link == b.link && a.prev == b.prev && a.next == b.next;
            if ((cursors[c - 1] == cursors[c]) != same || (cursors[c - 1] != cursors[c]) == same)
                return false;
        }
        return true;
    }
};
} // namespace

TEST(LinkageProgram, ListsReferencesAndCursorsMatchTheNaiveTwin)
{
    for (unsigned start = 0; start < 20; ++start) {
        Program program(start);
        for (int step = 0; step < 5000; ++step) {
            program.Step();
            ASSERT_TRUE(program.Matches()) << "at step " << step << " of program " << start;
        }
    }
    EXPECT_TRUE(alive.empty());
}

TEST(LinkageProgram, TheComparisonSeesEachKindOfFault)
{
    for (int what = 0; what < 4; ++what) {
        Program program(99);
        for (int step = 0; step < 400; ++step)
            program.Step();
        ASSERT_TRUE(program.Matches());
        program.DamageTwin(what);
        EXPECT_FALSE(program.Matches()) << what;
    }
}
