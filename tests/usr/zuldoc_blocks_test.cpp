// The blocks of a hall's report: what there is, in which order, what is rebuilt when, and what is left where
// memory fails.
#include "zuldoccase.h"

#include "ker/recorditems.h"
#include "support/chance.h"
#include "support/fault.h"
#include "support/memdisk.h"

#include <algorithm>
#include <cstring>

namespace
{
/// The sets that give a list of their own, in the order of their lists.
enum LISTS {
    FLOOR_HOLES,
    EMITTERS,
    AIR_HEATERS,
    HOLES_A,
    HOLES_B,
    HOLES_C,
    HOLES_D,
    CEILING_HOLES,
    LIST_COUNT
};
const char listLetters[] = "DEFHJLNP";

EmHOLESET *HolesOf(EmROOM &room, int list)
{
    EmSURFACE *surface = room.Surfaces()->FirstWall();
    if (list == FLOOR_HOLES)
        return room.Surfaces()->Floor()->Holes();
    if (list == CEILING_HOLES)
        return room.Surfaces()->Ceiling()->Holes();
    for (int i = HOLES_A; i < list; ++i)
        surface = EmSURFACESET::Next(surface);
    return surface->Holes();
}

LIST *SetOf(EmROOM &room, int list)
{
    if (list == EMITTERS)
        return room.Emitters();
    if (list == AIR_HEATERS)
        return room.AirHeaters();
    return HolesOf(room, list);
}

LINK *MemberOf(int list)
{
    if (list == EMITTERS)
        return new EmEMITTER;
    if (list == AIR_HEATERS)
        return new EmAIRHEATER;
    return new EmHOLE;
}

/// The hall has these sets filled (bit i: list i) and that working class.
void Furnish(EmROOM &room, int filled, int workClass)
{
    for (int list = 0; list < LIST_COUNT; ++list) {
        LIST *set = SetOf(room, list);
        bool wanted = filled >> list & 1;
        if (!wanted)
            set->Clear();
        else if (set->IsEmpty())
            MemberOf(list)->Insert(set);
    }
    room.Data()->workClass = workClass;
}

/// What there must be, in the letters of the parts.
class PLAIN
{
public:
    void Rebuild(int filled, int workClass, bool partial)
    {
        lists.clear();
        for (int list = 0; list < LIST_COUNT; ++list)
            if (filled >> list & 1)
                lists += listLetters[list];
        hasHygiene = workClass != 0;
        evaluated = evaluated || !partial;
        hasResult = hasHygiene && (hasResult || !partial);
    }
    std::string There() const
    {
        std::string there = "ABCGIKMOT" + lists;
        if (evaluated)
            there += 'Q';
        if (hasHygiene)
            there += "RU";
        if (hasResult)
            there += 'S';
        std::sort(there.begin(), there.end());
        return there;
    }
    /// Of those that are there now, what a pass has built.
    std::string Fresh(bool partial) const
    {
        std::string fresh;
        for (char letter : There())
            if (!std::strchr("ACGIKMO", letter) && !(partial && (letter == 'Q' || letter == 'S')))
                fresh += letter;
        return fresh;
    }

private:
    std::string lists;
    bool hasHygiene = false;
    bool hasResult = false;
    bool evaluated = false;
};

class Blocks : public DocCase
{
protected:
    /// As the document works off level 3 or 4, but for the blocks' own updates.
    void Rebuild(bool partial)
    {
        doc->Reconstruct(partial, true);
        doc->Reconstruct(partial, false);
    }
    void ReadHall(const CdeITEMS &items)
    {
        MemPut("/mem/halle.sc1", EncodeItems(items));
        ASSERT_TRUE(doc->ReadFile("\\mem\\halle.sc1"));
    }
    void ReadPlainHall() { ReadHall(ItGroup(Box() + NoMembers())); }
};
} // namespace

// The fixed blocks

TEST_F(Blocks, OfANewHallAreSevenFixedOnes)
{
    MemDisk memory;
    ReadPlainHall();
    EXPECT_EQ(PartsThere(*doc), "ACGIKMO");
    EXPECT_TRUE(ChainIsTheParts(*doc));
    EXPECT_EQ(doc->obsolete, EDC_UPDATE);
    EXPECT_DOUBLE_EQ(doc->page.Width(), 19.0 / 2.54);
    EXPECT_DOUBLE_EQ(doc->page.Height(), 27.7 / 2.54);
    for (const TEdcBlock *blk = doc->blocks; blk != NULL; blk = blk->next) {
        bool isFirst = blk == doc->blocks;
        EXPECT_EQ(blk->group, nullptr);
        EXPECT_EQ(blk->options, isFirst ? 0u : unsigned{EDC_BoSELECT});
        EXPECT_EQ(blk->size.Width(), doc->page.Width());
        EXPECT_EQ(blk->size.Height(), isFirst ? doc->page.Height() : 0.0);
        EXPECT_EQ(blk->margins.Top(), isFirst ? 0.0 : 34.0 / 72);
        EXPECT_EQ(blk->margins.Left() + blk->margins.Right() + blk->margins.Bottom(), 0.0);
    }
}

TEST_F(Blocks, ShowTheSurfacesInTheirOrder)
{
    MemDisk memory;
    ReadPlainHall();
    EmSURFACESET *set = doc->Room()->Surfaces();
    const EmSURFACE *expected[] = {set->FirstWall(), EmSURFACESET::Next(set->FirstWall()),
                                   EmSURFACESET::Next(EmSURFACESET::Next(set->FirstWall())), NULL,
                                   set->Ceiling()};
    expected[3] = EmSURFACESET::Next(expected[2]);
    size_t i = 0;
    for (int part : {6, 8, 10, 12, 14}) {
        auto *wall = dynamic_cast<TZulWallBlock *>(doc->Parts()[static_cast<size_t>(part)]);
        ASSERT_NE(wall, nullptr);
        EXPECT_EQ(wall->Surface(), expected[i++]) << part;
        EXPECT_EQ(wall->RoomBlock(), doc->RoomBlock());
    }
    EXPECT_EQ(doc->RoomBlock()->Room(), doc->Room());
    EXPECT_EQ(doc->RoomBlock()->Info(), &doc->MapInfo());
    EXPECT_EQ(doc->RoomBlock()->Palette(), doc->regpal);
}

// The order

TEST_F(Blocks, StandInTheirOrderInEveryCombination)
{
    MemDisk memory;
    ReadPlainHall();
    PLAIN plain;
    for (bool partial : {true, false, true}) { // never evaluated; by each full update; behind one
        for (int workClass : {0, 1}) {
            for (int filled = 0; filled < 1 << LIST_COUNT; ++filled) {
                Furnish(*doc->Room(), filled, workClass);
                Rebuild(partial);
                plain.Rebuild(filled, workClass, partial);
                ASSERT_EQ(PartsThere(*doc), plain.There()) << filled << " " << workClass << " " << partial;
                ASSERT_TRUE(ChainIsTheParts(*doc)) << filled << " " << workClass << " " << partial;
            }
        }
    }
}

TEST_F(Blocks, StandInTheirOrderBehindTheFirstPassOfEveryCombination)
{
    MemDisk memory;
    for (int i = 0; i < 4 << LIST_COUNT; ++i) {
        bool partial = i & 1;
        int workClass = i >> 1 & 1;
        int filled = i >> 2;
        ReadPlainHall();
        Furnish(*doc->Room(), filled, workClass);
        Rebuild(partial);
        PLAIN plain;
        plain.Rebuild(filled, workClass, partial);
        ASSERT_EQ(PartsThere(*doc), plain.There()) << i;
        ASSERT_TRUE(ChainIsTheParts(*doc)) << i;
        doc->ClearDocument();
        ASSERT_EQ(PartsThere(*doc), "");
        ASSERT_EQ(doc->blocks, nullptr);
    }
}

TEST_F(Blocks, AreRebuiltByAPassAsItsLevelSays)
{
    MemDisk memory;
    CHANCE chance(17);
    ReadPlainHall();
    PLAIN plain;
    FreshParts(*doc);
    for (int i = 0; i < 2000; ++i) {
        int filled = chance.Int(0, (1 << LIST_COUNT) - 1);
        int workClass = chance.One(2) ? 0 : chance.Int(1, 5);
        bool partial = !chance.One(3);
        Furnish(*doc->Room(), filled, workClass);
        Rebuild(partial);
        plain.Rebuild(filled, workClass, partial);
        ASSERT_EQ(PartsThere(*doc), plain.There()) << i;
        ASSERT_EQ(FreshParts(*doc), plain.Fresh(partial)) << i;
        ASSERT_TRUE(ChainIsTheParts(*doc)) << i;
    }
}

TEST_F(Blocks, AreNotRebuiltWithoutAHall)
{
    for (bool partial : {true, false})
        Rebuild(partial);
    EXPECT_EQ(PartsThere(*doc), "");
    EXPECT_EQ(doc->blocks, nullptr);
}

// What a user does

TEST_F(Blocks, OfAHallWithAllListsAndAClassAreTwentyOneParts)
{
    New();
    Furnish(*doc->Room(), 255, 3);
    doc->EvCommand(RECALC);
    EXPECT_EQ(PartsThere(*doc), "ABCDEFGHIJKLMNOPQRSTU");
    EXPECT_TRUE(ChainIsTheParts(*doc));
    EXPECT_EQ(doc->obsolete, 0);
    int maps = 0;
    for (TEdcBlock *blk = doc->Parts()[18]; blk != NULL && blk->group == doc->Parts()[18]; blk = blk->next)
        ++maps;
    EXPECT_EQ(maps, 4);
    EXPECT_NE(dynamic_cast<TZulSummaryMap *>(doc->Parts()[18]), nullptr);
    EXPECT_NE(dynamic_cast<TZulHeadTempMap *>(doc->Parts()[18]->next), nullptr);
    EXPECT_NE(dynamic_cast<TZulDiffTempMap *>(doc->Parts()[18]->next->next), nullptr);
    EXPECT_NE(dynamic_cast<TZulHeadInteMap *>(doc->Parts()[18]->next->next->next), nullptr);
}

TEST_F(Blocks, OfTheHygieneGoWithTheWorkingClass)
{
    New();
    Furnish(*doc->Room(), 0, 2);
    doc->EvCommand(RECALC);
    EXPECT_EQ(PartsThere(*doc), "ABCGIKMOQRSTU");
    Furnish(*doc->Room(), 0, 0);
    doc->EvCommand(PARTIAL);
    EXPECT_EQ(PartsThere(*doc), "ABCGIKMOQT");
    Furnish(*doc->Room(), 0, 2);
    doc->EvCommand(PARTIAL);
    EXPECT_EQ(PartsThere(*doc), "ABCGIKMOQRTU") << "the maps come with the next evaluation";
    EXPECT_TRUE(ChainIsTheParts(*doc));
    doc->EvCommand(RECALC);
    EXPECT_EQ(PartsThere(*doc), "ABCGIKMOQRSTU");
    EXPECT_TRUE(ChainIsTheParts(*doc));
}

TEST_F(Blocks, OfTheEvaluationStayAsTheyAreBehindAnEdit)
{
    New();
    Furnish(*doc->Room(), 1 << AIR_HEATERS, 4);
    doc->EvCommand(RECALC);
    FreshParts(*doc);
    double loss = doc->MapInfo().loss;
    InDialog("Heizperiode", [](testdoor::DialogBox &box) {
        box.Type(105, "45"); // the operating air temperature, which the loss is of
        box.Click(WIN_ID_OK);
    });
    doc->EvCommand(1505);
    EXPECT_EQ(FreshParts(*doc), "BFRTU");
    EXPECT_EQ(doc->MapInfo().loss, loss);
    doc->Room()->Data()->constr[EM_WALLS].k = 2;
    doc->EvCommand(RECALC);
    EXPECT_EQ(FreshParts(*doc), "BFQRSTU");
    EXPECT_NE(doc->MapInfo().loss, loss);
    doc->modified = false;
}

TEST_F(Blocks, OfACancelledUpdateAreRebuiltWithoutAnEvaluation)
{
    TZulRoomBlock::askParams = [](TZulUpdateData &) { return false; };
    New();
    Furnish(*doc->Room(), 1 << HOLES_B, 1);
    FreshParts(*doc);
    doc->EvCommand(RECALC);
    EXPECT_EQ(FreshParts(*doc), "BJQRSTU");
    EXPECT_FALSE(doc->RoomBlock()->IsValid());
    EXPECT_EQ(doc->MapInfo().area, 0.0) << "nothing has been computed";
    TZulRoomBlock::askParams = [](TZulUpdateData &) { return true; };
    doc->EvCommand(RECALC);
    EXPECT_EQ(doc->MapInfo().area, 240.0);
    TZulRoomBlock::askParams = [](TZulUpdateData &) { return false; };
    doc->EvCommand(RECALC);
    EXPECT_EQ(doc->MapInfo().area, 240.0) << "the figures of the last evaluation stand";
    EXPECT_FALSE(doc->RoomBlock()->IsValid());
}

TEST_F(Blocks, OfAnOpenedPlanSurviveARebuildAroundIt)
{
    New();
    doc->OpenBlock(doc->RoomBlock());
    doc->Refresh(0);
    Furnish(*doc->Room(), 255, 3);
    doc->EvCommand(RECALC);
    EXPECT_EQ(doc->openedBlk, doc->RoomBlock());
    EXPECT_TRUE(ChainIsTheParts(*doc));
    doc->EvCommand(CLOSE);
    EXPECT_EQ(doc->openedBlk, nullptr);
    EXPECT_EQ(doc->blocks, nullptr);
    EXPECT_EQ(PartsThere(*doc), "");
}

// Without memory

namespace
{
/// A document whose n-th allocation within a rebuild fails; 0: none.
class FAULTYDOC : public TZulDoc
{
public:
    void Reconstruct(bool partial, bool before) override
    {
        if (failing == 0)
            return TZulDoc::Reconstruct(partial, before);
        FaultArm arm(FAULT::ALLOC, failing, false);
        TZulDoc::Reconstruct(partial, before);
    }
    int failing = 0;
};

CdeITEMS FullHall()
{
    return ItGroup(Box() + ItGroup(Emitter("") + Emitter("")) + DataGroup() + Surfaces() + ItGroup(Unit()) +
                   Article() + ItGroup(Zone())) +
           Conclusion();
}
} // namespace

TEST_F(Blocks, AreWholeOrGoneWhereMemoryFails)
{
    MemDisk memory;
    SCOPED_TRACE("all four passes"); // the trace has its memory before blocks are counted
    ReadHall(FullHall());
    Rebuild(false);
    const std::string there = PartsThere(*doc);
    EXPECT_EQ(there, "ABCEFGHIKMOQRSTU");
    long whole = LiveBlocks();
    const struct {
        bool partial, before;
        std::string mayMiss; // groups that the pass replaces
        int atLeast;         // allocations
    } passes[] = {{true, true, "BEFHR", 40},
                  {false, true, "BEFHRS", 50},
                  {true, false, "TU", 30},
                  {false, false, "QTU", 40}};
    for (const auto &pass : passes) {
        int failed = SweepFaults([&] { Rebuild(false); }, [&] { doc->Reconstruct(pass.partial, pass.before); },
                                 [&](const FaultRun &run) {
                                     SCOPED_TRACE(testing::Message()
                                                  << FaultName(run.kind) << " " << run.n << " " << run.onwards);
                                     EXPECT_STREQ(run.code, run.fired ? XALLOC : XNULL);
                                     EXPECT_TRUE(ChainIsTheParts(*doc));
                                     std::string missing;
                                     std::string left = PartsThere(*doc);
                                     std::set_difference(there.begin(), there.end(), left.begin(), left.end(),
                                                         std::back_inserter(missing));
                                     EXPECT_LE(missing.size(), run.fired ? 2u : 0u) << missing;
                                     for (char letter : missing)
                                         EXPECT_NE(pass.mayMiss.find(letter), std::string::npos) << letter;
                                     Rebuild(pass.partial);
                                     if (missing.find('S') == std::string::npos || !pass.partial) {
                                         EXPECT_EQ(PartsThere(*doc), there);
                                     }
                                 });
        EXPECT_GT(failed, pass.atLeast);
        Rebuild(false);
        long left = LiveBlocks();
        EXPECT_EQ(left, whole) << pass.mayMiss;
    }
}

TEST_F(Blocks, AreBuiltByTheNextRefreshAfterAFailureThatTheUserHasRead)
{
    auto faulty = std::make_unique<FAULTYDOC>();
    FAULTYDOC &its = *faulty;
    TestApplication().SetMainWindow(NULL);
    doc.reset();
    doc = std::move(faulty);
    SetAppDocument(doc.get());
    frame->Remove(status);
    frame = std::make_unique<TDecoratedFrame>("Zulerion", *doc);
    New();
    Furnish(*doc->Room(), 255, 1);
    its.failing = 30;
    Expect("Zulerion");
    doc->EvCommand(PARTIAL);
    EXPECT_EQ(said, "Ungenug Speicher!");
    EXPECT_EQ(doc->obsolete, EDC_UPDATE);
    EXPECT_TRUE(ChainIsTheParts(*doc));
    its.failing = 0;
    doc->Refresh(0);
    EXPECT_EQ(doc->obsolete, 0);
    EXPECT_EQ(PartsThere(*doc), "ABCDEFGHIJKLMNOPRTU");
    EXPECT_TRUE(ChainIsTheParts(*doc));
}

TEST_F(Blocks, OfAHallThatCannotBeReadWholeAreNone)
{
    MemDisk memory;
    ReadHall(FullHall());
    TestApplication().SetStatusWindow(NULL); // the toolkit's texts are not swept
    long before = 0;
    bool read = false;
    int failed = SweepFaults(
        [&] {
            doc->ClearDocument();
            before = LiveBlocks();
        },
        [&] { read = doc->ReadFile("\\mem\\halle.sc1"); },
        [&](const FaultRun &run) {
            long leaked = read ? 0 : LiveBlocks() - before;
            SCOPED_TRACE(testing::Message() << FaultName(run.kind) << " " << run.n << " " << run.onwards);
            EXPECT_EQ(leaked, 0);
            EXPECT_EQ(read, run.code == XNULL);
            EXPECT_EQ(doc->Room() != NULL, read);
            EXPECT_EQ(PartsThere(*doc), read ? "ACGIKMO" : "");
            EXPECT_TRUE(ChainIsTheParts(*doc));
            EXPECT_EQ(MemOpenFiles(), 0);
            if (run.kind == FAULT::ALLOC) {
                EXPECT_STREQ(run.code, run.fired ? XALLOC : XNULL);
            }
        });
    EXPECT_GT(failed, 40);
}

TEST_F(Blocks, OfAHallThatCannotBeMadeWholeAreNone)
{
    Sizes("20", "12", "6");
    ASSERT_TRUE(doc->NewDocument(false));
    TestApplication().SetStatusWindow(NULL);
    doc->NewDocument(true);
    long before = 0;
    bool made = false;
    int failed = SweepFaults(
        [&] {
            doc->ClearDocument();
            before = LiveBlocks();
        },
        [&] { made = doc->NewDocument(true); },
        [&](const FaultRun &run) {
            long leaked = made ? 0 : LiveBlocks() - before;
            SCOPED_TRACE(testing::Message() << run.n << " " << run.onwards);
            EXPECT_EQ(leaked, 0);
            EXPECT_STREQ(run.code, run.fired ? XALLOC : XNULL);
            EXPECT_EQ(made, run.fired == 0);
            EXPECT_EQ(doc->Room() != NULL, made);
            EXPECT_EQ(PartsThere(*doc), made ? "ACGIKMO" : "");
        });
    EXPECT_GT(failed, 20);
}
