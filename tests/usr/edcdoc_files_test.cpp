#include "lib/platform.h"
#include "support/child.h"
#include "support/folder.h"
#include "support/programtables.h"
#include "support/testblock.h"
#include "usr/edcutils.h"
#include "win/boxes.h"
#include "win/testdialog.h"

#include <gtest/gtest.h>

namespace
{
enum { NEW = 20003, OPEN = 20005, CLOSE = 20007, SAVE = 20009, SAVE_AS = 20011, PRINT = 20013, ZOOM = 20019 };

std::string shownMessage; // the last one

/// A document in a frame, with boxes that a test answers.
class Files : public testing::Test
{
protected:
    void SetUp() override
    {
        TestApplication();
        testdoor::PendingScripts();
        testdoor::UnexpectedBoxes();
        shownMessage.clear();
        SetMessageSink([](const char *text, bool) { shownMessage = text; });
    }
    void TearDown() override
    {
        SetMessageSink(NULL);
        EXPECT_EQ(testdoor::PendingScripts(), 0) << "a script waited for a box that never came";
        EXPECT_EQ(testdoor::UnexpectedBoxes(), 0);
    }

    static void Answer(int id)
    {
        testdoor::Script([id](testdoor::ModalBox &box) { box.Answer(id); });
    }
    static void Choose(const char *kind, const std::string &path)
    {
        testdoor::Script([=](testdoor::ModalBox &box) {
            EXPECT_EQ(box.Kind(), kind);
            box.FileName(path);
            box.Answer(WIN_ID_OK);
        });
    }
    /// What one question shows, for a look at it; it is answered with cancel.
    static void Look(std::string &seen)
    {
        testdoor::Script([&seen](testdoor::ModalBox &box) {
            seen = box.Kind() + "|" + box.Caption() + "|" + box.Text() + "|" + box.Buttons();
            box.Answer(WIN_ID_CANCEL);
        });
    }

    FOLDER folder;
    TTestDoc doc;
    TDecoratedFrame frame{"Zulerion", doc};
};

TEST_F(Files, ANewDocumentIsUnnamedAndNeu)
{
    doc.EvCommand(NEW);
    EXPECT_EQ(doc.log.Take(), "new.ask new.create ");
    ASSERT_NE(doc.path, nullptr);
    EXPECT_STREQ(doc.path, "");
    EXPECT_STREQ(doc.FileName(), "neu");
    EXPECT_EQ(frame.Caption(), "Zulerion - neu");
}

TEST_F(Files, ANewDocumentThatTheApplicationDoesNotWantLeavesTheOldOne)
{
    doc.Start("C:\\old.tst");
    doc.SetModified();
    doc.mayCreate = false;
    doc.EvCommand(NEW);
    EXPECT_EQ(doc.log.Take(), "new.ask ");
    EXPECT_STREQ(doc.path, "C:\\old.tst");
}

TEST_F(Files, ANewDocumentNeedsTheOldOneClosed)
{
    doc.Start("C:\\old.tst");
    doc.SetModified();
    Answer(WIN_ID_CANCEL);
    doc.EvCommand(NEW);
    EXPECT_EQ(doc.log.Take(), "new.ask ");
    EXPECT_STREQ(doc.path, "C:\\old.tst");
    Answer(WIN_ID_NO);
    doc.EvCommand(NEW);
    EXPECT_EQ(doc.log.Take(), "new.ask clear new.create ");
    EXPECT_STREQ(doc.path, "");
}

TEST_F(Files, ANewDocumentThatIsNotMadeLeavesNone)
{
    doc.Start("C:\\old.tst");
    doc.creates = false;
    doc.EvCommand(NEW);
    EXPECT_EQ(doc.log.Take(), "new.ask clear new.create ");
    EXPECT_EQ(doc.path, nullptr);
    EXPECT_EQ(frame.Caption(), "Zulerion");
}

TEST_F(Files, AnOpenedDocumentHasTheNameOfItsFile)
{
    folder.Put("Halle 7.tst", "x");
    Choose("open", folder.Path("Halle 7.tst"));
    doc.EvCommand(OPEN);
    EXPECT_EQ(doc.log.Take(), "read ");
    EXPECT_EQ(doc.lastName, folder.Name("Halle 7.tst"));
    EXPECT_EQ(std::string(doc.path), folder.Name("Halle 7.tst"));
    EXPECT_EQ(frame.Caption(), "Zulerion - Halle 7");
}

TEST_F(Files, WithNoNameChosenTheOldDocumentIsNotEvenAskedFor)
{
    doc.Start("C:\\old.tst");
    doc.SetModified();
    Answer(WIN_ID_CANCEL);
    doc.EvCommand(OPEN);
    EXPECT_EQ(doc.log.Take(), "");
    EXPECT_STREQ(doc.path, "C:\\old.tst");
}

TEST_F(Files, OpeningClosesTheOldDocumentFirst)
{
    folder.Put("b.tst", "x");
    doc.Start("C:\\old.tst");
    doc.SetModified();
    Choose("open", folder.Path("b.tst"));
    Answer(WIN_ID_CANCEL);
    doc.EvCommand(OPEN);
    EXPECT_EQ(doc.log.Take(), "");
    EXPECT_STREQ(doc.path, "C:\\old.tst");
    Choose("open", folder.Path("b.tst"));
    Answer(WIN_ID_YES);
    doc.EvCommand(OPEN);
    EXPECT_EQ(doc.log.Take(), "write clear read ");
    EXPECT_EQ(std::string(doc.path), folder.Name("b.tst"));
}

TEST_F(Files, AFileThatIsNotReadLeavesNoDocument)
{
    folder.Put("b.tst", "x");
    doc.reads = false;
    Choose("open", folder.Path("b.tst"));
    doc.EvCommand(OPEN);
    EXPECT_EQ(doc.path, nullptr);
    EXPECT_EQ(frame.Caption(), "Zulerion");
}

struct Failing {
    int command;
    const char *word;
};

TEST_F(Files, AFailureThatLeavesNoDocumentShowsAnEmptyWindowThatCannotBeScrolled)
{
    frame.Create();
    testdoor::Settle();
    for (const Failing &row : {Failing{NEW, "new.create"}, Failing{NEW, "new.ask"}, Failing{OPEN, "read"}}) {
        TestHook hook;
        folder.Put("b.tst", "x");
        doc.log.failing = row.word;
        doc.EnableScrollBar(WIN_BAR_BOTH, true);
        testdoor::Settle();
        if (row.command == OPEN)
            Choose("open", folder.Path("b.tst"));
        doc.EvCommand(row.command);
        EXPECT_EQ(hook.Reports(), 1) << row.word;
        EXPECT_EQ(doc.path, nullptr) << row.word;
        EXPECT_FALSE(doc.IsScrollBarEnabled(WIN_BAR_HORIZONTAL)) << row.word;
        EXPECT_FALSE(doc.IsScrollBarEnabled(WIN_BAR_VERTICAL)) << row.word;
        EXPECT_TRUE(doc.NeedsPaint()) << row.word;
        doc.log.failing.clear();
        doc.log.Take();
        testdoor::Settle();
        EXPECT_EQ(doc.log.Take().substr(0, 6), "empty ") << row.word;
        EXPECT_EQ(testdoor::Pixel(doc, {50, 50}), (TColor{10, 20, 30})) << row.word;
    }
}

TEST_F(Files, ClosingAnUnchangedDocumentAsksNothing)
{
    doc.Start("C:\\old.tst");
    doc.EvCommand(CLOSE);
    EXPECT_EQ(doc.log.Take(), "clear ");
    EXPECT_EQ(doc.path, nullptr);
    EXPECT_EQ(frame.Caption(), "Zulerion");
    doc.EvCommand(CLOSE); // with no document nothing happens
    EXPECT_EQ(doc.log.Take(), "");
}

TEST_F(Files, AChangedDocumentIsAskedFor)
{
    std::string seen;
    doc.Start("C:\\old.tst");
    doc.SetModified();
    Look(seen);
    doc.EvCommand(CLOSE);
    EXPECT_EQ(seen, std::string("message|Zulerion|") + GetResString(20204) + "|Abbrechen Ja Nein");
    EXPECT_EQ(doc.log.Take(), "");
    EXPECT_TRUE(doc.modified);
    EXPECT_STREQ(doc.path, "C:\\old.tst");
}

TEST_F(Files, ClosingEndsSelectionAndOpenedBlockAndLaysOutFromTheTop)
{
    TTestBlock *blk = doc.Append("a", EDC_BoSELECT);
    doc.Start("C:\\old.tst");
    doc.SelectBlock(blk);
    doc.OpenBlock(blk);
    doc.Refresh(0);
    doc.SetScroll({3, 4});
    doc.log.Take();
    doc.Obsolete(EDC_RECALC);
    EXPECT_TRUE(doc.DoCommand(CLOSE));
    EXPECT_EQ(doc.log.Take(), "a.close clear ");
    EXPECT_EQ(doc.selectedBlk, nullptr);
    EXPECT_EQ(doc.openedBlk, nullptr);
    EXPECT_EQ(doc.obsolete, EDC_LAYOUT); // a derived content of nothing needs no update
    EXPECT_TRUE(doc.scrollPending);
    EXPECT_EQ(doc.scrollTarget, TPoint());
}

TEST_F(Files, AChangedDocumentIsSavedThrownAwayOrKept)
{
    const struct {
        int answer;
        const char *calls;
        bool closed;
    } rows[] = {{WIN_ID_YES, "write clear ", true}, {WIN_ID_NO, "clear ", true}, {WIN_ID_CANCEL, "", false}};
    for (const auto &row : rows) {
        doc.Start("C:\\old.tst");
        doc.SetModified();
        Answer(row.answer);
        doc.EvCommand(CLOSE);
        EXPECT_EQ(doc.log.Take(), row.calls);
        EXPECT_EQ(doc.path == NULL, row.closed);
        EXPECT_EQ(doc.modified, !row.closed);
    }
}

TEST_F(Files, ANewDocumentWhoseNameIsNotGivenIsKept)
{
    doc.EvCommand(NEW);
    doc.SetModified();
    doc.log.Take();
    Answer(WIN_ID_YES);
    Answer(WIN_ID_CANCEL); // the file dialog
    doc.EvCommand(CLOSE);
    EXPECT_EQ(doc.log.Take(), "");
    EXPECT_STREQ(doc.path, "");
    EXPECT_TRUE(doc.modified);
    doc.modified = false;
}

TEST_F(Files, SavingWritesUnderTheNameThatTheDocumentHas)
{
    doc.EvCommand(SAVE);
    EXPECT_EQ(doc.log.Take(), "");
    doc.Start("C:\\old.tst");
    doc.SetModified();
    doc.EvCommand(SAVE);
    EXPECT_EQ(doc.log.Take(), "write ");
    EXPECT_EQ(doc.lastName, "C:\\old.tst");
    EXPECT_FALSE(doc.modified);
}

TEST_F(Files, AnUnnamedDocumentIsSavedAs)
{
    doc.EvCommand(NEW);
    doc.SetModified();
    doc.log.Take();
    Choose("save", folder.Path("Werkhalle"));
    doc.EvCommand(SAVE);
    EXPECT_EQ(doc.log.Take(), "write ");
    EXPECT_EQ(doc.lastName, folder.Name("Werkhalle.tst"));
    EXPECT_EQ(frame.Caption(), "Zulerion - Werkhalle");
    EXPECT_FALSE(doc.modified);
}

TEST_F(Files, SavingThatFailsKeepsTheChangesAndTheNewName)
{
    doc.Start("C:\\old.tst");
    doc.SetModified();
    TestHook hook;
    doc.log.failing = "write";
    doc.EvCommand(SAVE);
    EXPECT_EQ(hook.Reports(), 1);
    EXPECT_TRUE(doc.modified);
    Choose("save", folder.Path("new.tst"));
    doc.EvCommand(SAVE_AS);
    EXPECT_EQ(hook.Reports(), 2);
    EXPECT_TRUE(doc.modified);
    EXPECT_EQ(std::string(doc.path), folder.Name("new.tst"));
    EXPECT_EQ(frame.Caption(), "Zulerion - new");
    doc.modified = false;
}

TEST_F(Files, SaveAsWithoutANameChangesNothing)
{
    doc.EvCommand(SAVE_AS); // no document, no question
    doc.Start("C:\\old.tst");
    doc.SetModified();
    Answer(WIN_ID_CANCEL);
    doc.EvCommand(SAVE_AS);
    EXPECT_EQ(doc.log.Take(), "");
    EXPECT_STREQ(doc.path, "C:\\old.tst");
    EXPECT_TRUE(doc.modified);
    doc.modified = false;
}

struct Shown {
    const char *path; // NULL: no document
    const char *name;
};

TEST_F(Files, TheDocumentsNameIsThatOfItsFileWithoutFolderAndExtension)
{
    const Shown rows[] = {
        {"", "neu"},
        {"C:\\Hallen\\Werk.tst", "Werk"},
        {"\\home\\x\\Werk", "Werk"},
        {"Werk.alt.tst", "Werk.alt"},
        {"\\a.b\\c", "c"},
    };
    EXPECT_STREQ(doc.FileName(), "");
    for (const Shown &row : rows) {
        doc.Start(row.path);
        EXPECT_STREQ(doc.FileName(), row.name);
    }
}

TEST_F(Files, ADroppedFileIsOpenedAsByCommand)
{
    frame.Create();
    folder.Put("Halle.TST", "x");
    doc.Start("C:\\old.tst");
    doc.SetModified();
    Answer(WIN_ID_NO);
    testdoor::Drop(doc, folder.Path("Halle.TST").c_str());
    testdoor::Settle();
    EXPECT_EQ(doc.lastName, folder.Name("Halle.TST"));
    EXPECT_EQ(frame.Caption(), "Zulerion - Halle");
    EXPECT_EQ(shownMessage, "");
    EXPECT_EQ(doc.obsolete, 0);
}

TEST_F(Files, ADroppedFileOfAnotherKindGetsAMessage)
{
    doc.Start("C:\\old.tst");
    for (const char *name : {"C:\\Bilder\\Halle.png", "C:\\tst", "C:\\x.tst2"}) {
        shownMessage.clear();
        doc.EvDropFile(name);
        EXPECT_EQ(doc.log.Take(), "");
        EXPECT_STREQ(doc.path, "C:\\old.tst");
        EXPECT_NE(shownMessage.find("*.tst"), std::string::npos) << name;
        EXPECT_EQ(shownMessage.find('\\'), std::string::npos) << name;
    }
}

TEST_F(Files, ADroppedFileWithTooLongANameGetsAMessage)
{
    doc.EvDropFile((std::string(300, 'x') + ".tst").c_str());
    EXPECT_EQ(doc.log.Take(), "");
    EXPECT_NE(shownMessage.find("255"), std::string::npos);
    doc.EvDropFile((std::string(251, 'x') + ".tst").c_str());
    EXPECT_EQ(doc.log.Take(), "read ");
}

TEST_F(Files, ADropIsIgnoredWhileTheDocumentIsLocked)
{
    doc.Lock(true);
    doc.EvDropFile("C:\\x.tst");
    doc.Lock(false);
    EXPECT_EQ(doc.log.Take(), "");
    EXPECT_EQ(shownMessage, "");
}

TEST_F(Files, ADroppedFileThatCannotBeReadIsReported)
{
    TestHook hook;
    doc.log.failing = "read";
    doc.EvDropFile("C:\\x.tst");
    EXPECT_EQ(hook.Reports(), 1);
    EXPECT_EQ(doc.path, nullptr);
}

enum { ZOOM_BOX = 100 };

/// A document of two presets in a window, 250 of 740 pixels scrolled down.
class Zoomed : public Files
{
protected:
    void SetUp() override
    {
        Files::SetUp();
        doc.Append("a", EDC_BoSELECT, 5, 9);
        frame.Create();
        testdoor::ResizeClient(doc, {400, 300});
        doc.docZoom.SetCustom(100);
        doc.Start("C:\\x.tst");
        doc.Scroller()->ScrollTo(50, 250);
    }
    void Type(const std::string &text)
    {
        testdoor::Script([text](testdoor::ModalBox &box) {
            testdoor::DialogBox(box).Type(ZOOM_BOX, text);
            box.Answer(WIN_ID_OK);
        });
        doc.EvCommand(ZOOM);
    }
    /// What the dialog shows as it opens; it is cancelled.
    std::string Shown()
    {
        std::string shown;
        testdoor::Script([&](testdoor::ModalBox &box) {
            shown = testdoor::DialogBox(box).Text(ZOOM_BOX);
            box.Answer(WIN_ID_CANCEL);
        });
        doc.EvCommand(ZOOM);
        return shown;
    }

    ProgramTables tables;
};

TEST_F(Zoomed, TheDialogOffersThePresetsAndShowsWhatApplies)
{
    std::vector<std::string> entries;
    testdoor::Script([&](testdoor::ModalBox &box) {
        EXPECT_EQ(box.Kind(), "dialog");
        EXPECT_EQ(box.Caption(), "Vergr\xF6\xDF"
                                 "erung");
        entries = testdoor::DialogBox(box).Entries(ZOOM_BOX);
        box.Answer(WIN_ID_CANCEL);
    });
    doc.EvCommand(ZOOM);
    std::string standard =
        std::string(GetResString(20201)) + " (" + std::to_string(doc.docZoom.percents[0]) + "%)";
    EXPECT_EQ(entries, (std::vector<std::string>{standard, std::string(GetResString(20203)) + " (100%)"}));
    EXPECT_EQ(Shown(), "100%");
    doc.docZoom.SetPreset(0);
    EXPECT_EQ(Shown(), standard);
    EXPECT_EQ(doc.docZoom.presetIndex, 0);
}

TEST_F(Zoomed, AnEntrySetsThePresetAndTheViewKeepsItsPlace)
{
    testdoor::Script([](testdoor::ModalBox &box) {
        testdoor::DialogBox(box).Choose(ZOOM_BOX, 0);
        box.Answer(WIN_ID_OK);
    });
    doc.EvCommand(ZOOM);
    EXPECT_EQ(doc.docZoom.presetIndex, 0);
    EXPECT_EQ(doc.scale, doc.docZoom.percents[0] * 0.01);
    EXPECT_EQ(doc.obsolete, 0);
    EXPECT_NEAR(doc.GetScroll().y, 250, 1);
}

struct Typed {
    const char *text;
    int percent;
};

TEST_F(Zoomed, ATypedPercentageIsReadUpToTheFirstThatIsNoDigitAndLimited)
{
    TMeasureDC dc(doc.Dpi());
    TEdcZoom bound;
    bound.SetCustom(0x7fffffff);
    bound.Limit(dc, doc.page);
    int most = bound.custom;
    bound.SetCustom(1);
    bound.Limit(dc, doc.page);
    int least = bound.custom;
    ASSERT_LT(least, 25);
    ASSERT_GT(most, 250);
    const Typed rows[] = {
        {"150%", 150}, {"250", 250},        {"73 oder mehr", 73}, {"", 100},  {"abc", 100},
        {"-5", 100},   {"999999999", most}, {"1", least},         {"0", 100}, {"99999999999999999999", most},
        {"80,5", 80},  {"%", 100},
    };
    for (const Typed &row : rows) {
        Type(row.text);
        EXPECT_EQ(doc.docZoom.presetIndex, -1) << row.text;
        EXPECT_EQ(doc.docZoom.custom, row.percent) << row.text;
        EXPECT_EQ(doc.scale, row.percent * 0.01) << row.text;
        EXPECT_EQ(Shown(), std::to_string(row.percent) + "%") << row.text;
    }
}

TEST_F(Zoomed, AnOpenedBlockHasAZoomOfItsOwn)
{
    doc.OpenBlock(doc.blocks);
    doc.Refresh(0);
    Type("130");
    EXPECT_EQ(doc.blockZoom.custom, 130);
    EXPECT_EQ(doc.docZoom.custom, 100);
    EXPECT_EQ(doc.scale, 1.3);
    doc.CloseBlock();
    doc.Refresh(0);
    EXPECT_EQ(doc.scale, 1.0);
}

TEST_F(Zoomed, WithoutADocumentThereIsNoQuestion)
{
    doc.EvCommand(CLOSE);
    doc.EvCommand(ZOOM);
    EXPECT_EQ(doc.path, nullptr);
}

TEST_F(Files, PrintingNeedsADocumentBlocksAndAPrinter)
{
    doc.EvCommand(PRINT);
    doc.Start("C:\\x.tst");
    doc.EvCommand(PRINT);
    doc.Append("a");
    delete doc.printer;
    doc.printer = NULL;
    doc.EvCommand(PRINT);
    EXPECT_EQ(doc.obsolete, 0);
}

TEST_F(Files, AfterPrintingTheDocumentIsLaidOutForTheScreenAgain)
{
    TTestBlock *blk = doc.Append("a", 0, 2, 1);
    doc.docZoom.SetCustom(100);
    frame.Create();
    doc.Start("C:\\Halle.tst");
    testdoor::Script([&](testdoor::ModalBox &box) {
        EXPECT_EQ(box.Kind(), "print");
        box.FileName(folder.Path("out.pdf"));
        box.Answer(WIN_ID_OK);
    });
    bool paintedLocked = false;
    blk->onPaint = [&](TDC &) { paintedLocked |= doc.locked > 0; };
    TEdcRect former = blk->rect;
    doc.EvCommand(PRINT);
    EXPECT_TRUE(paintedLocked);
    EXPECT_EQ(doc.locked, 0);
    EXPECT_EQ(doc.obsolete, 0);
    EXPECT_EQ(blk->rect.Rect(), former.Rect());
    EXPECT_EQ(folder.Get("out.pdf").substr(0, 5), "%PDF-");
}
} // namespace
