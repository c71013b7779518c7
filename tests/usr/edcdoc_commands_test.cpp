#include "support/testblock.h"
#include "win/boxes.h"
#include "win/testdoor.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace
{
/// What a document can be in when a menu opens.
enum State { NONE, EMPTY, BLOCKS, SELECTED, OPENED, NO_PRINTER, STATES };
const char *const stateNames[] = {"none", "empty", "blocks", "selected", "opened", "no printer"};

void Bring(TTestDoc &doc, State state)
{
    if (state == NONE)
        return;
    doc.Start();
    if (state == EMPTY)
        return;
    TTestBlock *blk = doc.Append("a", EDC_BoSELECT);
    doc.Refresh(0);
    if (state == SELECTED || state == OPENED)
        doc.SelectBlock(blk);
    if (state == OPENED)
        doc.OpenBlock(blk);
    if (state == NO_PRINTER) {
        delete doc.printer;
        doc.printer = NULL;
    }
    doc.Refresh(0);
    doc.log.Take();
}

struct Command {
    int id;
    bool enabled[STATES];
};
const Command commands[] = {
    {20001, {true, true, true, true, true, true}},
    {20003, {true, true, true, true, true, true}},
    {20005, {true, true, true, true, true, true}},
    {20007, {false, true, true, true, true, true}},
    {20009, {false, true, true, true, true, true}},
    {20011, {false, true, true, true, true, true}},
    {20013, {false, false, true, true, true, false}},
    {20019, {false, true, true, true, true, true}},
    {20021, {false, true, true, true, true, true}},
    {20023, {false, true, true, true, true, true}},
    {20029, {false, false, false, true, false, false}},
    {20031, {false, false, false, true, false, false}},
    {20033, {false, false, false, true, false, false}},
    {20035, {false, false, false, false, true, false}},
    {20037, {}},
    {20002, {}},
    {0, {}},
    {-1, {}},
};

TEST(Commands, EachIsEnabledWhereItCanBeGivenAndAnUnknownOneIsGreyed)
{
    for (int state = NONE; state < STATES; ++state) {
        TTestDoc doc;
        Bring(doc, static_cast<State>(state));
        for (const Command &row : commands) {
            TCommandEnabler ce(row.id);
            doc.EvCommandEnable(ce);
            EXPECT_TRUE(ce.IsAnswered());
            EXPECT_EQ(ce.IsEnabled(), row.enabled[state]) << row.id << " with " << stateNames[state];
        }
    }
}

TEST(Commands, TheDocumentKnowsItsOwnAndNoOther)
{
    const int known[] = {20007, 20009, 20011, 20013, 20019, 20021, 20023, 20029, 20031, 20033, 20035};
    for (int id = 19990; id < 20050; ++id) {
        if (id == 20003 || id == 20005)
            continue; // they ask the user
        TTestDoc doc;
        bool expected = std::find(std::begin(known), std::end(known), id) != std::end(known);
        EXPECT_EQ(doc.DoCommand(id), expected) << id;
        EXPECT_EQ(doc.obsolete, 0) << id; // with no document nothing comes of it
        EXPECT_EQ(doc.log.Take(), "") << id;
    }
}

TEST(Commands, TheOpenedElseTheSelectedBlockIsAskedBeforeTheDocument)
{
    TTestDoc doc;
    TTestBlock *a = doc.Append("a", EDC_BoSELECT);
    TTestBlock *b = doc.Append("b", EDC_BoSELECT);
    doc.Start();
    doc.ownCommand = 99;
    doc.EvCommand(99);
    EXPECT_EQ(doc.log.Take(), "command ");
    doc.SelectBlock(a);
    doc.EvCommand(99);
    EXPECT_EQ(doc.log.Take(), "a.command99 command ");
    doc.OpenBlock(b);
    doc.Refresh(0);
    doc.log.Take();
    doc.EvCommand(99);
    EXPECT_EQ(doc.log.Take(), "b.command99 command ");
    b->command = 99;
    doc.EvCommand(99);
    EXPECT_EQ(doc.log.Take(), "b.command99 ");
}

TEST(Commands, ABlocksAnswerStandsBeforeTheDocuments)
{
    TTestDoc doc;
    TTestBlock *a = doc.Append("a", EDC_BoSELECT);
    doc.Start();
    doc.SelectBlock(a);
    a->command = 20035; // which the document would grey
    TCommandEnabler ce(20035);
    doc.EvCommandEnable(ce);
    EXPECT_TRUE(ce.IsEnabled());
}

TEST(Commands, WhileTheDocumentIsLockedNoneGoesAnywhere)
{
    TTestDoc doc;
    TTestBlock *a = doc.Append("a", EDC_BoSELECT);
    doc.Start();
    doc.SelectBlock(a);
    doc.Lock(true);
    for (int id : {20001, 20021, 20029, 99}) {
        TCommandEnabler ce(id);
        doc.EvCommandEnable(ce);
        EXPECT_FALSE(ce.IsAnswered()) << id;
        doc.EvCommand(id);
        EXPECT_EQ(doc.log.Take(), "") << id;
    }
    EXPECT_EQ(doc.obsolete, 0);
}

TEST(Commands, UpdateAndRecalculateRaiseTheirLevels)
{
    TTestDoc doc;
    doc.Append("a");
    doc.Start();
    EXPECT_TRUE(doc.DoCommand(20021));
    EXPECT_EQ(doc.obsolete, EDC_UPDATE);
    EXPECT_TRUE(doc.DoCommand(20023));
    EXPECT_EQ(doc.obsolete, EDC_RECALC);
    doc.EvCommand(20021);
    EXPECT_EQ(doc.log.Take(), "full.before a.update full.after ");
    doc.EvCommand(20021);
    EXPECT_EQ(doc.log.Take(), "partial.before a.partial partial.after ");
}

struct BlockCommand {
    int id;
    const char *calls; // for a block that can be executed
};
const BlockCommand blockCommands[] = {{20029, "a.execute "}, {20031, "a.execute "}, {20033, "a.open "}};

TEST(Commands, TheSelectedBlockIsActivatedExecutedOrOpenedUnlessOneIsOpened)
{
    for (const BlockCommand &row : blockCommands) {
        TTestDoc doc;
        TTestBlock *a = doc.Append("a", EDC_BoSELECT | EDC_BoEXECUTE);
        doc.Start();
        EXPECT_TRUE(doc.DoCommand(row.id));
        EXPECT_EQ(doc.log.Take(), "") << row.id;
        doc.SelectBlock(a);
        EXPECT_TRUE(doc.DoCommand(row.id));
        EXPECT_EQ(doc.log.Take(), row.calls) << row.id;
        doc.OpenBlock(a);
        doc.log.Take();
        EXPECT_TRUE(doc.DoCommand(row.id));
        EXPECT_EQ(doc.log.Take(), "") << row.id;
        EXPECT_TRUE(doc.DoCommand(20035));
        EXPECT_EQ(doc.log.Take(), "a.close ") << row.id;
    }
}

TEST(Commands, AFailingCommandIsReportedOnceAndTheNextOneWorks)
{
    for (const char *failing : {"a.command99", "command"}) {
        TTestDoc doc;
        TTestBlock *a = doc.Append("a", EDC_BoSELECT);
        doc.Start();
        doc.SelectBlock(a);
        doc.ownCommand = 99;
        TestHook hook;
        doc.log.failing = failing;
        doc.EvCommand(99);
        EXPECT_EQ(hook.Reports(), 1) << failing;
        EXPECT_EQ(xCode, XNULL) << failing;
        doc.log.failing.clear();
        doc.log.Take();
        doc.EvCommand(99);
        EXPECT_EQ(doc.log.Take(), "a.command99 command ");
        EXPECT_EQ(hook.Reports(), 1) << failing;
    }
}

TEST(Commands, ExitClosesTheFrameUnlessTheUserKeepsTheDocument)
{
    TTestDoc doc;
    TDecoratedFrame frame("Zulerion", doc);
    doc.Start("C:\\a.tst");
    doc.SetModified();
    frame.Create();
    testdoor::Settle();
    testdoor::Script([](testdoor::ModalBox &box) { box.Answer(WIN_ID_CANCEL); });
    doc.EvCommand(20001);
    EXPECT_NE(doc.path, nullptr);
    testdoor::Script([](testdoor::ModalBox &box) { box.Answer(WIN_ID_NO); });
    doc.EvCommand(20001);
    EXPECT_EQ(doc.path, nullptr);
    EXPECT_EQ(testdoor::UnexpectedBoxes(), 0);
    EXPECT_EQ(testdoor::PendingScripts(), 0);
}

TEST(Commands, WithoutAFrameThereIsNothingToClose)
{
    TTestDoc doc;
    doc.Start("C:\\a.tst");
    doc.EvCommand(20001);
    EXPECT_NE(doc.path, nullptr);
}

struct Closing {
    const char *name;
    int locks;
    bool document, modified;
    int answer; // 0: no question
    bool can;
    const char *calls;
};
const Closing closings[] = {
    {"no document", 0, false, false, 0, true, ""},
    {"unchanged", 0, true, false, 0, true, "clear "},
    {"changed, saved", 0, true, true, WIN_ID_YES, true, "write clear "},
    {"changed, thrown away", 0, true, true, WIN_ID_NO, true, "clear "},
    {"changed, kept", 0, true, true, WIN_ID_CANCEL, false, ""},
    {"locked", 1, false, false, 0, false, ""},
    {"locked with a document", 2, true, true, 0, false, ""},
};

TEST(CanClose, TheWindowClosesWhenNoDocumentIsLeft)
{
    for (const Closing &row : closings) {
        TTestDoc doc;
        if (row.document)
            doc.Start("C:\\a.tst");
        doc.modified = row.modified;
        doc.locked = row.locks;
        if (row.answer)
            testdoor::Script([&row](testdoor::ModalBox &box) { box.Answer(row.answer); });
        EXPECT_EQ(doc.CanClose(), row.can) << row.name;
        EXPECT_EQ(doc.log.Take(), row.calls) << row.name;
        EXPECT_EQ(testdoor::UnexpectedBoxes(), 0) << row.name;
        EXPECT_EQ(testdoor::PendingScripts(), 0) << row.name;
        doc.locked = 0;
    }
}

TEST(CanClose, AChildThatRefusesKeepsTheDocument)
{
    class Refusing : public TWindow
    {
    public:
        using TWindow::TWindow;
        bool CanClose() override { return false; }
    };
    TTestDoc doc;
    Refusing child(&doc);
    doc.Start("C:\\a.tst");
    EXPECT_FALSE(doc.CanClose());
    EXPECT_NE(doc.path, nullptr);
}

TEST(CanClose, ADocumentThatCannotBeSavedKeepsTheWindowOpen)
{
    TTestDoc doc;
    TestHook hook;
    doc.Start("C:\\a.tst");
    doc.SetModified();
    doc.log.failing = "write";
    testdoor::Script([](testdoor::ModalBox &box) { box.Answer(WIN_ID_YES); });
    EXPECT_FALSE(doc.CanClose());
    EXPECT_EQ(hook.Reports(), 1);
    EXPECT_TRUE(doc.modified);
    EXPECT_STREQ(doc.path, "C:\\a.tst");
}
} // namespace
