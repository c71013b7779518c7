// A hall's document in its frame, as the program has it, over the program folder of the build: models, logos,
// catalogues, help, manual and sample halls. The frame has no widget until a test creates it; boxes and dialogs
// are scripted.
#ifndef TESTS_USR_ZULDOCCASE_H
#define TESTS_USR_ZULDOCCASE_H

#include "lib/cde.h"
#include "lib/disk.h"
#include "lib/platform.h"
#include "lib/xfail.h"
#include "support/folder.h"
#include "support/programtables.h"
#include "support/testapp.h"
#include "usr/edcapp.h"
#include "usr/edcctlg.h"
#include "usr/edcutils.h"
#include "usr/zuldoc.h"
#include "usr/zulreport.h"
#include "win/application.h"
#include "win/boxes.h"
#include "win/frame.h"
#include "win/gadgets.h"
#include "win/shell.h"
#include "win/testdialog.h"
#include "win/testdoor.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

/// A native path in the system's form.
inline std::string NameOf(const std::string &native)
{
    char name[NATIVE_MAX];
    if (!NameFromNative(name, native.c_str(), sizeof name))
        throw std::runtime_error("no name for " + native);
    return name;
}

/// A block that the next rebuild throws away carries no mark afterwards.
enum : uint32_t { MARK = 0x40000000 };

/// The parts that are there, one letter each in the order of the report: A is the introduction, U the appendix.
inline std::string PartsThere(const TZulDoc &doc)
{
    std::string there;
    char letter = 'A';
    for (const TEdcBlock *blk : doc.Parts()) {
        if (blk != NULL)
            there += letter;
        ++letter;
    }
    return there;
}

/// The parts whose first block carries no mark, in the same letters; all are marked afterwards.
inline std::string FreshParts(TZulDoc &doc)
{
    std::string fresh;
    char letter = 'A';
    for (TEdcBlock *blk : doc.Parts()) {
        if (blk != NULL && !(blk->state & MARK))
            fresh += letter;
        if (blk != NULL)
            blk->state |= MARK;
        ++letter;
    }
    return fresh;
}

/// The chain is the parts that the document names, each group whole, in the order of the report.
inline testing::AssertionResult ChainIsTheParts(const TZulDoc &doc)
{
    const TEdcBlock *former = NULL;
    const TEdcBlock *blk = doc.blocks;
    char letter = 'A';
    for (const TEdcBlock *part : doc.Parts()) {
        if (part != NULL && blk != part)
            return testing::AssertionFailure() << "part " << letter << " is not where it belongs";
        while (blk != NULL && (blk == part || (part != NULL && part->group == part && blk->group == part))) {
            if (blk->prev != former || !(blk->state & EDC_BsLINKED) || blk->size.base != &doc.page)
                return testing::AssertionFailure() << "a block of part " << letter << " is not linked";
            former = blk;
            blk = blk->next;
        }
        ++letter;
    }
    if (blk != NULL)
        return testing::AssertionFailure() << "a block behind all parts";
    return testing::AssertionSuccess();
}

class DocCase : public testing::Test
{
protected:
    enum Command {
        NEW = 20003,
        OPEN = 20005,
        CLOSE = 20007,
        SAVE = 20009,
        SAVE_AS = 20011,
        PARTIAL = 20021,
        RECALC = 20023,
    };

    DocCase()
    {
        EdcUseResources();
        SetFailureHook(EdcFailureHook);
        UseProgramFolder(ZUL_PROGRAM_FOLDER);
        testdoor::PendingScripts();
        testdoor::UnexpectedBoxes();
        doc = std::make_unique<TZulDoc>();
        SetAppDocument(doc.get());
        frame = std::make_unique<TDecoratedFrame>("Zulerion", *doc);
        frame->Insert(status, TDecoratedFrame::BOTTOM);
        TestApplication().SetMainWindow(frame.get());
        TestApplication().SetStatusWindow(&status);
        TZulRoomBlock::askParams = [](TZulUpdateData &) { return true; };
    }
    ~DocCase() override
    {
        TZulRoomBlock::askParams = NULL;
        doc.reset();
        TestApplication().SetMainWindow(NULL);
        TestApplication().SetStatusWindow(NULL);
        frame.reset();
        SetShellDoor(TShellDoor());
        SetFailureHook(NULL);
        SetResTextSink(NULL);
        EXPECT_EQ(testdoor::PendingScripts(), 0) << "a script waited for a box that never came";
        EXPECT_EQ(testdoor::UnexpectedBoxes(), 0);
    }

    static void UseProgramFolder(const std::string &native)
    {
        ASSERT_TRUE(SetProgramPath((native + "/Zulerion").c_str()));
        CdeFILENAME catalogs(ProgramFolder());
        catalogs.AddName("Katalogy");
        TEdcCtlgList::SetCatalogDirectory(catalogs, "zec");
    }

    /// The next box is a dialog of that caption, and this happens in it.
    static void InDialog(const std::string &caption, const std::function<void(testdoor::DialogBox &)> &act)
    {
        testdoor::Script([=](testdoor::ModalBox &face) {
            EXPECT_EQ(face.Kind(), "dialog");
            EXPECT_EQ(face.Caption(), caption);
            testdoor::DialogBox box(face);
            act(box);
        });
    }
    /// The next box is a message with that caption; what it says is kept in `said`.
    void Expect(const std::string &caption, int answer = WIN_ID_OK)
    {
        testdoor::Script([=, this](testdoor::ModalBox &face) {
            EXPECT_EQ(face.Kind(), "message");
            EXPECT_EQ(face.Caption(), caption);
            said = face.Text();
            face.Answer(answer);
        });
    }
    static void ChooseFile(const char *kind, const std::string &native)
    {
        testdoor::Script([=](testdoor::ModalBox &face) {
            EXPECT_EQ(face.Kind(), kind);
            face.FileName(native);
            face.Answer(WIN_ID_OK);
        });
    }

    /// What a user types into "Neu" before OK.
    static void Sizes(const char *length, const char *width, const char *height)
    {
        enum { LENGTH = 100, WIDTH = 101, HEIGHT = 102 };
        InDialog("Neu", [=](testdoor::DialogBox &box) {
            box.Type(LENGTH, length);
            box.Type(WIDTH, width);
            box.Type(HEIGHT, height);
            box.Click(WIN_ID_OK);
        });
    }
    void New(const char *length = "20", const char *width = "12", const char *height = "6")
    {
        Sizes(length, width, height);
        doc->EvCommand(NEW);
        ASSERT_NE(doc->Room(), nullptr);
    }
    void Open(const std::string &native) { doc->EvDropFile(NameOf(native).c_str()); }
    static std::string Sample(const char *name)
    {
        return std::string(ZUL_PROGRAM_FOLDER "/Beispiele/") + name + ".sc1";
    }

    TestServices services;
    ProgramTables tables;
    FOLDER folder;
    TStatusBar status;
    std::unique_ptr<TZulDoc> doc;
    std::unique_ptr<TDecoratedFrame> frame;
    std::string said; // by the last message box, Windows-1252
};

#endif
