#include "support/chance.h"
#include "support/child.h"
#include "support/testblock.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <vector>

namespace
{
/// Names along `next`, after a look that `prev` says the same.
std::string Chain(const TEdcBlock *first)
{
    std::string names;
    const TEdcBlock *before = NULL;
    for (const TEdcBlock *blk = first; blk; before = blk, blk = blk->next) {
        EXPECT_EQ(blk->prev, before) << names;
        names += static_cast<const TTestBlock *>(blk)->name;
    }
    return names;
}

/// New blocks of one letter each in one group.
TTestBlock *Group(TestLog &log, const char *letters)
{
    TEdcBlock *at = NULL;
    TTestBlock *first = NULL;
    for (; *letters != '\0'; ++letters) {
        auto *blk = new TTestBlock(std::string(1, *letters), log);
        blk->AddToGroup(&at);
        first = first ? first : blk;
    }
    return first;
}

TEdcBlock *Find(const TEdcDocument &doc, char name)
{
    TEdcBlock *blk = doc.blocks;
    while (blk && static_cast<TTestBlock *>(blk)->name[0] != name)
        blk = blk->next;
    return blk;
}

TEST(DocumentChain, ALinkedBlockGetsThePageAsBaseAndRaisesLayout)
{
    TTestDoc doc;
    TTestBlock *blk = new TTestBlock("a", doc.log);
    EXPECT_EQ(doc.obsolete, 0);
    doc.LinkBlock(blk, NULL, true);
    EXPECT_EQ(doc.obsolete, EDC_LAYOUT);
    EXPECT_EQ(blk->state, static_cast<uint32_t>(EDC_BsLINKED));
    EXPECT_EQ(blk->size.base, &doc.page);
    EXPECT_EQ(blk->margins.base, &doc.page);
    doc.obsolete = 0;
    doc.UnlinkBlock(blk);
    EXPECT_EQ(doc.obsolete, EDC_LAYOUT);
    EXPECT_EQ(blk->state, 0u);
    EXPECT_EQ(blk->size.base, nullptr);
    EXPECT_EQ(blk->margins.base, nullptr);
    EXPECT_EQ(doc.blocks, nullptr);
    delete blk;
}

TEST(DocumentChain, NoBlockIsIgnored)
{
    TTestDoc doc;
    doc.LinkBlock(NULL, NULL, true);
    doc.UnlinkBlock(NULL);
    doc.RemoveBlock(NULL);
    EXPECT_EQ(doc.obsolete, 0);
    EXPECT_EQ(doc.blocks, nullptr);
}

struct Linking {
    const char *name;
    char anchor; // 0 for NULL, '?' for one that is not in the chain
    bool after;
    const char *expected; // of "xy" linked into the chain a (bcd) e
};
const Linking linkings[] = {
    {"no anchor", 0, true, "abcdexy"},
    {"no anchor, before", 0, false, "abcdexy"},
    {"an anchor elsewhere", '?', true, "abcdexy"},
    {"an anchor elsewhere, before", '?', false, "abcdexy"},
    {"behind the first", 'a', true, "axybcde"},
    {"before the first", 'a', false, "xyabcde"},
    {"behind the last", 'e', true, "abcdexy"},
    {"before the last", 'e', false, "abcdxye"},
    {"behind a group's first", 'b', true, "abcdxye"},
    {"behind a group's middle", 'c', true, "abcdxye"},
    {"behind a group's last", 'd', true, "abcdxye"},
    {"before a group's first", 'b', false, "axybcde"},
    {"before a group's middle", 'c', false, "axybcde"},
    {"before a group's last", 'd', false, "axybcde"},
};

TEST(DocumentChain, AGroupGoesBehindOrBeforeTheWholeGroupOfItsAnchor)
{
    for (const Linking &row : linkings) {
        for (int named = 0; named < 2; ++named) {
            TTestDoc doc;
            TTestBlock elsewhere("?", doc.log);
            doc.Append("a");
            doc.LinkBlock(Group(doc.log, "bcd"), NULL, true);
            doc.Append("e");
            TEdcBlock *run = Group(doc.log, "xy");
            if (named == 1)
                run = run->next; // a group is addressed by any of its members
            TEdcBlock *anchor = row.anchor == '?' ? &elsewhere : row.anchor ? Find(doc, row.anchor) : NULL;
            doc.LinkBlock(run, anchor, row.after);
            EXPECT_EQ(Chain(doc.blocks), row.expected) << row.name;
        }
    }
}

TEST(DocumentChain, AGroupComesOutWholeAndKeepsItsOwnLinks)
{
    TTestDoc doc;
    doc.Append("a");
    TTestBlock *first = Group(doc.log, "bcd");
    doc.LinkBlock(first, NULL, true);
    doc.Append("e");
    doc.UnlinkBlock(first->next);
    EXPECT_EQ(Chain(doc.blocks), "ae");
    EXPECT_EQ(Chain(first), "bcd");
    for (TEdcBlock *blk = first; blk; blk = blk->next)
        EXPECT_EQ(blk->state, 0u);
    doc.UnlinkBlock(first); // once more does no harm
    EXPECT_EQ(Chain(doc.blocks), "ae");
    doc.LinkBlock(first, doc.blocks, false);
    EXPECT_EQ(Chain(doc.blocks), "bcdae");
}

TEST(DocumentChain, RemovingAMemberDestroysTheGroupInOrder)
{
    TTestDoc doc;
    std::string dead;
    doc.Append("a");
    TTestBlock *first = Group(doc.log, "bcd");
    for (TEdcBlock *blk = first; blk; blk = blk->next)
        static_cast<TTestBlock *>(blk)->onDeath = [&dead](TTestBlock *gone) { dead += gone->name; };
    doc.LinkBlock(first, NULL, true);
    doc.RemoveBlock(first->next);
    EXPECT_EQ(dead, "bcd");
    EXPECT_EQ(Chain(doc.blocks), "a");
    doc.RemoveAllBlocks();
    EXPECT_EQ(doc.blocks, nullptr);
}

TEST(DocumentChain, ARemovedBlockIsNeitherSelectedNorOpened)
{
    TTestDoc doc;
    TTestBlock *blk = doc.Append("a", EDC_BoSELECT);
    doc.Start();
    doc.SelectBlock(blk);
    doc.OpenBlock(blk);
    doc.log.Take();
    doc.RemoveBlock(blk);
    EXPECT_EQ(doc.log.Take(), "a.close ");
    EXPECT_EQ(doc.selectedBlk, nullptr);
    EXPECT_EQ(doc.openedBlk, nullptr);
    EXPECT_EQ(doc.openedDC, nullptr);
}

TEST(DocumentChain, BlocksAreRemovedAlsoWhereOneFailsToClose)
{
    TTestDoc doc;
    TTestBlock *first = Group(doc.log, "abc");
    int dead = 0;
    for (TEdcBlock *blk = first; blk; blk = blk->next) {
        blk->options = EDC_BoSELECT;
        static_cast<TTestBlock *>(blk)->onDeath = [&dead](TTestBlock *) { ++dead; };
    }
    doc.LinkBlock(first, NULL, true);
    doc.Start();
    doc.SelectBlock(first->next);
    doc.OpenBlock(first);
    doc.log.failing = "a.close";
    doc.RemoveAllBlocks();
    EXPECT_EQ(xCode, XLIMIT);
    xCode = XNULL;
    EXPECT_EQ(dead, 3);
    EXPECT_EQ(doc.selectedBlk, nullptr);
    EXPECT_EQ(doc.openedBlk, nullptr);
    EXPECT_EQ(doc.blocks, nullptr);
}

TEST(DocumentChain, ARunThatHasNeighboursIsNotLinked)
{
    TTestDoc doc;
    doc.Append("a");
    TTestBlock *b = doc.Append("b");
    const char *file = "usr/edcbase2_chain.cpp";
    EXPECT_TRUE(AbortsOnAssertion("first->prev == NULL", file, [&] { doc.LinkBlock(b, NULL, true); }));
    EXPECT_TRUE(AbortsOnAssertion("last->next == NULL", file, [&] { doc.LinkBlock(doc.blocks, NULL, true); }));
}

TEST(DocumentChain, ADocumentThatDiesLetsItsBlocksLive)
{
    TestLog log;
    TTestBlock a("a", log), b("b", log);
    {
        TestApplication();
        TEdcDocument doc;
        doc.LinkBlock(&a, NULL, true);
        doc.LinkBlock(&b, NULL, true);
    }
    EXPECT_EQ(a.state, 0u);
    EXPECT_EQ(a.next, nullptr);
    EXPECT_EQ(b.prev, nullptr);
}

/// The chain as a list of names, and every group as a list of its own: all operations by plain insertion.
class Twin
{
public:
    std::string chain;
    std::map<char, std::string> groups; // of each living block: its group's names, alone its own

    void Link(char name, char anchor, bool after)
    {
        const std::string run = groups[name];
        size_t at = anchor != '\0' && groups.count(anchor) ? chain.find(groups[anchor]) : std::string::npos;
        if (at == std::string::npos)
            at = chain.size();
        else if (after)
            at += groups[anchor].size();
        chain.insert(at, run);
    }
    void Unlink(char name)
    {
        size_t at = chain.find(groups[name]);
        if (at != std::string::npos)
            chain.erase(at, groups[name].size());
    }
    void Remove(char name)
    {
        Unlink(name);
        for (char gone : std::string(groups[name]))
            groups.erase(gone);
    }
    void AddToGroup(char name, char first)
    {
        const std::string former = groups[first];
        size_t at = chain.find(former);
        if (at != std::string::npos)
            chain.insert(at + former.size(), 1, name);
        for (char member : former + name)
            groups[member] = former + name;
    }
    bool IsLinked(char name) const { return chain.find(name) != std::string::npos; }
};

/// Random operations on the document and on the twin.
class Program
{
public:
    explicit Program(unsigned start) : chance(start) {}

    void Step()
    {
        switch (chance.Int(0, 5)) {
        case 0:
            Make();
            break;
        case 1:
        case 2:
            Link();
            break;
        case 3:
            Unlink();
            break;
        case 4:
            Remove();
            break;
        default:
            AddToGroup();
        }
        Check();
    }
    int Linked() const { return static_cast<int>(twin.chain.size()); }
    void Finish()
    {
        while (!alive.empty())
            RemoveOne(alive.begin()->first);
    }

private:
    char Any()
    {
        auto at = alive.begin();
        std::advance(at, chance.Int(0, static_cast<int>(alive.size()) - 1));
        return at->first;
    }
    void Make()
    {
        char name = 'A';
        while (alive.count(name))
            ++name;
        if (name > 'z')
            return;
        alive[name] = new TTestBlock(std::string(1, name), doc.log);
        twin.groups[name] = std::string(1, name);
    }
    void Link()
    {
        if (alive.empty())
            return;
        char name = Any();
        if (twin.IsLinked(name))
            return;
        char anchor = chance.One(6) ? '\0' : Any();
        bool after = chance.One(2);
        doc.LinkBlock(alive[name], anchor ? alive[anchor] : NULL, after);
        twin.Link(name, anchor, after);
    }
    void Unlink()
    {
        if (alive.empty())
            return;
        char name = Any();
        doc.UnlinkBlock(alive[name]);
        twin.Unlink(name);
    }
    void RemoveOne(char name)
    {
        std::string gone = twin.groups[name];
        doc.RemoveBlock(alive[name]);
        twin.Remove(name);
        for (char member : gone)
            alive.erase(member);
    }
    void Remove()
    {
        if (!alive.empty() && chance.One(2))
            RemoveOne(Any());
    }
    void AddToGroup()
    {
        if (alive.size() < 2)
            return;
        char name = Any(), first = Any();
        if (name == first || twin.groups[name].size() > 1 || twin.IsLinked(name))
            return;
        TEdcBlock *at = alive[first];
        alive[name]->AddToGroup(&at);
        twin.AddToGroup(name, first);
    }
    void Check()
    {
        ASSERT_EQ(Chain(doc.blocks), twin.chain);
        for (const auto &[name, blk] : alive) {
            bool linked = twin.IsLinked(name);
            ASSERT_EQ(blk->state & EDC_BsLINKED, linked ? unsigned{EDC_BsLINKED} : 0u) << name;
            ASSERT_EQ(blk->size.base, linked ? &doc.page : NULL) << name;
            ASSERT_EQ(blk->margins.base, linked ? &doc.page : NULL) << name;
            const std::string &group = twin.groups[name];
            TEdcBlock *head = group.size() > 1 ? alive[group[0]] : NULL;
            ASSERT_EQ(blk->group, head) << name;
            if (!linked) {
                ASSERT_EQ(Chain(alive[group[0]]), group);
            }
        }
    }

    CHANCE chance;
    TTestDoc doc;
    Twin twin;
    std::map<char, TTestBlock *> alive;
};

TEST(DocumentChain, RandomProgramsLeaveTheChainOfTheNaiveTwin)
{
    int longest = 0;
    for (unsigned start = 1; start <= 20 && !testing::Test::HasFailure(); ++start) {
        Program program(start);
        for (int i = 0; i < 1000 && !testing::Test::HasFailure(); ++i) {
            program.Step();
            longest = std::max(longest, program.Linked());
        }
        program.Finish();
    }
    EXPECT_GT(longest, 12);
}

TEST(DocumentPaper, ThePageIsThePaperLessItsMargins)
{
    TTestDoc doc;
    EXPECT_DOUBLE_EQ(doc.paper.Width(), 21.0 / 2.54);
    EXPECT_DOUBLE_EQ(doc.paper.Height(), 29.7 / 2.54);
    EXPECT_NEAR(doc.page.Width(), 17.0 / 2.54, 1e-12);
    EXPECT_NEAR(doc.page.Height(), 25.7 / 2.54, 1e-12);
    EXPECT_EQ(doc.page.unit, EDC_UIN);
    EXPECT_EQ(doc.obsolete, 0);
    doc.SetPaper(TEdcSize(10, 20));
    EXPECT_EQ(doc.obsolete, EDC_LAYOUT);
    doc.obsolete = 0;
    doc.SetMargins(TEdcMargins(1, 2, 3, 4));
    EXPECT_EQ(doc.obsolete, EDC_LAYOUT);
    EXPECT_DOUBLE_EQ(doc.page.Width(), 6);
    EXPECT_DOUBLE_EQ(doc.page.Height(), 14);
    doc.SetPaper(TEdcSize(3, 5)); // margins wider than the paper leave nothing
    EXPECT_EQ(doc.page.Width(), 0);
    EXPECT_EQ(doc.page.Height(), 0);
}

TEST(DocumentPalette, ScalesGetTheirPlacesInTheComposedPalette)
{
    TTestDoc doc;
    TEdcColorScale red, green, late;
    TEdcPalette first, second;
    first.SetColors(3);
    first.Add(1, 2, 3, &red);
    first.Add(4, 5, 6, &red);
    first.Add(7, 8, 9, NULL);
    second.SetColors(4);
    second.Add(10, 0, 0, &green);
    second.Add(11, 0, 0, &late);
    second.Add(12, 0, 0, &late);
    second.Add(13, 0, 0, &late);
    doc.AddPalette(&first);
    doc.AddPalette(&second); // at the head
    EXPECT_EQ(doc.regpal, &second);
    doc.ComposePalette();
    EXPECT_EQ(doc.obsolete, EDC_PAINT);
    ASSERT_EQ(doc.compal->entries.size(), 7u);
    EXPECT_EQ(doc.compal->entries[0], (TColor{10, 0, 0}));
    EXPECT_EQ(doc.compal->entries[4], (TColor{1, 2, 3}));
    EXPECT_EQ(green.first, 0);
    EXPECT_EQ(green.size, 1);
    EXPECT_EQ(late.first, 1);
    EXPECT_EQ(late.size, 3);
    EXPECT_EQ(red.first, 4);
    EXPECT_EQ(red.size, 2);
    for (const TEdcColorScale *scale : {&red, &green, &late})
        EXPECT_EQ(scale->palette, doc.compal);
    EXPECT_EQ(first.compal, doc.compal);
    EXPECT_EQ(second.compal, doc.compal);
    EXPECT_EQ(late.Color(2), (TColor{13, 0, 0}));
}

TEST(DocumentPalette, ComposingAgainTakesTheFormerPalettesPlace)
{
    TTestDoc doc;
    TEdcColorScale scale;
    TEdcPalette one, two;
    one.SetColors(1);
    one.Add(1, 1, 1, &scale);
    doc.AddPalette(&one);
    doc.ComposePalette();
    two.SetColors(1);
    two.Add(2, 2, 2, NULL);
    doc.AddPalette(&two);
    doc.ComposePalette();
    EXPECT_EQ(scale.first, 1);
    EXPECT_EQ(scale.size, 1);
    EXPECT_EQ(one.compal, doc.compal);
    EXPECT_EQ(doc.compal->entries.size(), 2u);
}

TEST(DocumentPalette, ComposingNeedsAPaletteAndANumberOfColoursThatCanBeCounted)
{
    TTestDoc doc;
    const char *file = "usr/edcbase2_chain.cpp";
    EXPECT_TRUE(AbortsOnAssertion("regpal != NULL", file, [&] { doc.ComposePalette(); }));
    TEdcPalette pal, huge;
    pal.SetColors(1);
    pal.Add(1, 1, 1, NULL);
    doc.AddPalette(&huge);
    doc.AddPalette(&pal);
    huge.count = 0x7fffffff - 1;
    EXPECT_TRUE(AbortsOnAssertion("(long)psize+pal->count < MAXINT", file, [&] { doc.ComposePalette(); }));
    huge.count = 0;
}
} // namespace
