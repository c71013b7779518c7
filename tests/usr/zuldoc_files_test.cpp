// A hall's way into the program and back onto the disk: new, open, save, and whatever can go wrong on the way.
#include "zuldoccase.h"

#include "lib/charstr.h"

#include "ker/recorditems.h"
#include "support/cdeitems.h"
#include "support/child.h"
#include "support/fault.h"
#include "support/memdisk.h"
#include "support/recorddc.h"

#include <algorithm>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{
using testdoor::DialogBox;

std::string BytesOf(const std::string &native)
{
    std::ifstream in(native, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
}

/// A disk in memory with the logo that stands on each plan.
class HALLDISK
{
public:
    HALLDISK() { MemPut(ZUL_PROGRAM_FOLDER "/Torvane.lgo", logo); }

private:
    const std::string logo = BytesOf(ZUL_PROGRAM_FOLDER "/Torvane.lgo");
    MemDisk memory;
};

class Files : public DocCase
{
protected:
    ~Files() override
    {
        if (doc)
            doc->modified = false;
    }

    /// No document, and a window that says so.
    testing::AssertionResult HasNoDocument(bool isShown = true)
    {
        if (doc->path != NULL || doc->Room() != NULL || doc->blocks != NULL || PartsThere(*doc) != "")
            return testing::AssertionFailure() << "something is left of a document";
        if (isShown &&
            (doc->IsScrollBarEnabled(WIN_BAR_HORIZONTAL) || doc->IsScrollBarEnabled(WIN_BAR_VERTICAL)))
            return testing::AssertionFailure() << "the empty window scrolls";
        if (frame->Caption() != "Zulerion")
            return testing::AssertionFailure() << frame->Caption();
        return testing::AssertionSuccess();
    }
    /// The window takes the next document as if nothing had been.
    void ExpectUsable()
    {
        Open(Sample("Werkstatt"));
        EXPECT_NE(doc->Room(), nullptr);
        EXPECT_EQ(doc->obsolete, 0);
        EXPECT_TRUE(ChainIsTheParts(*doc));
        doc->EvCommand(CLOSE);
        EXPECT_TRUE(HasNoDocument());
    }
    void AnswerSaving(int answer) { Expect("Zulerion", answer); }
};

// New

TEST_F(Files, ANewHallHasTheSizesThatWereTyped)
{
    New("24.5", "12", "7.25");
    EXPECT_STREQ(doc->path, "");
    EXPECT_EQ(doc->Room()->Box().max, AgPOINT(24.5, 12, 7.25));
    EXPECT_STREQ(doc->Room()->Article()->head, "Entwurf der Strahlungsheizung");
    EXPECT_STREQ(doc->Room()->Conclusion()->head, "Schlu\xDF"
                                                  "folgerung");
    EXPECT_EQ(doc->Room()->Conclusion()->date, ZulToday());
    EXPECT_EQ(PartsThere(*doc), "ABCGIKMOT");
    EXPECT_EQ(doc->obsolete, 0);
    EXPECT_FALSE(doc->modified);
    EXPECT_EQ(status.Text(), "");
    EXPECT_EQ(doc->paper.Width(), 21.0 / 2.54);
    EXPECT_EQ(doc->paper.Height(), 29.7 / 2.54);
    for (double margin : {doc->margins.Left(), doc->margins.Top(), doc->margins.Right(), doc->margins.Bottom()})
        EXPECT_EQ(margin, 1.0 / 2.54);
}

TEST_F(Files, CancellingNewAsksNothingAndChangesNothing)
{
    InDialog("Neu", [](DialogBox &box) { box.Click(WIN_ID_CANCEL); });
    doc->EvCommand(NEW);
    EXPECT_TRUE(HasNoDocument(false));
    Open(Sample("Werkstatt"));
    doc->SetModified();
    const EmROOM *room = doc->Room();
    InDialog("Neu", [](DialogBox &box) {
        EXPECT_EQ(box.Text(100), "");
        box.Type(100, "30");
        box.Click(WIN_ID_CANCEL);
    });
    doc->EvCommand(NEW);
    EXPECT_EQ(doc->Room(), room);
    EXPECT_TRUE(doc->modified);
    EXPECT_EQ(frame->Caption(), "Zulerion - Werkstatt");
}

TEST_F(Files, NewOverAChangedHallAsksBeforeAndCancelKeepsTheOldOne)
{
    Open(Sample("Werkstatt"));
    doc->SetModified();
    const EmROOM *room = doc->Room();
    Sizes("30", "20", "10");
    AnswerSaving(WIN_ID_CANCEL);
    doc->EvCommand(NEW);
    EXPECT_EQ(said, "Dokument wurde ver\xE4ndert.\nWollen Sie es speichern?");
    EXPECT_EQ(doc->Room(), room);
    EXPECT_TRUE(doc->modified);
    EXPECT_EQ(frame->Caption(), "Zulerion - Werkstatt");
    InDialog("Neu", [](DialogBox &box) { // the sizes are gone
        for (int id : {100, 101, 102})
            EXPECT_EQ(box.Text(id), "");
        box.Click(WIN_ID_CANCEL);
    });
    doc->EvCommand(NEW);
}

TEST_F(Files, NewOverAChangedHallDropsTheChangesOrSavesThem)
{
    folder.Put("alt.sc1", BytesOf(Sample("Werkstatt")));
    for (int answer : {WIN_ID_NO, WIN_ID_YES}) {
        Open(folder.Path("alt.sc1"));
        doc->Room()->Data()->periodDays = 77;
        doc->SetModified();
        Sizes("30", "20", "10");
        AnswerSaving(answer);
        doc->EvCommand(NEW);
        EXPECT_STREQ(doc->path, "");
        EXPECT_EQ(doc->Room()->Box().max, AgPOINT(30, 20, 10));
        EXPECT_FALSE(doc->modified);
        Open(folder.Path("alt.sc1"));
        EXPECT_EQ(doc->Room()->Data()->periodDays == 77, answer == WIN_ID_YES);
        doc->EvCommand(CLOSE);
    }
}

// Open

TEST_F(Files, TheSampleHallsOpenAndAreShown)
{
    for (const char *name : {"Werkstatt", "Produktionshalle", "Logistikhalle"}) {
        ChooseFile("open", Sample(name));
        doc->EvCommand(OPEN);
        ASSERT_NE(doc->Room(), nullptr) << name;
        EXPECT_EQ(doc->path, NameOf(Sample(name)));
        EXPECT_EQ(frame->Caption(), std::string("Zulerion - ") + name);
        EXPECT_FALSE(doc->modified);
        EXPECT_EQ(doc->obsolete, 0);
        EXPECT_TRUE(ChainIsTheParts(*doc));
        EXPECT_EQ(PartsThere(*doc).find('Q'), std::string::npos) << "nothing is evaluated yet";
        EXPECT_GT(doc->PageCount(), 4);
        EXPECT_EQ(status.Text(), "");
        doc->EvCommand(RECALC);
        EXPECT_NE(PartsThere(*doc).find('Q'), std::string::npos);
        EXPECT_GT(doc->MapInfo().meanInte, 0.0);
        EXPECT_FALSE(doc->modified);
    }
}

TEST_F(Files, OfBoxEmittersAndDataAloneAHallIsWholeAndPlain)
{
    HALLDISK memory;
    MemPut("/mem/alt.sc1", EncodeItems(ItGroup(Box() + NoMembers() + DataGroup())));
    Open("/mem/alt.sc1");
    ASSERT_NE(doc->Room(), nullptr);
    EXPECT_EQ(doc->Room()->Surfaces()->Count(), 6);
    EXPECT_EQ(doc->Room()->Surfaces()->FirstWall()->size, AgPOINT(10, 4));
    EXPECT_STREQ(doc->Room()->Conclusion()->text, "");
    EXPECT_STREQ(doc->Room()->Conclusion()->head, "Schlu\xDF"
                                                  "folgerung");
    EXPECT_STREQ(doc->Room()->Article()->head, "Entwurf der Strahlungsheizung");
    EXPECT_EQ(doc->Room()->Conclusion()->date, ZulToday());
    EXPECT_EQ(PartsThere(*doc), "ABCGIKMORTU") << "its data have a working class";
    EXPECT_EQ(doc->obsolete, 0);
}

TEST_F(Files, ABoxWithoutACeilingGivesAHallOf1000Metres)
{
    HALLDISK memory;
    MemPut("/mem/hoch.sc1", EncodeItems(ItGroup(Box(2e6) + NoMembers())));
    Open("/mem/hoch.sc1");
    ASSERT_NE(doc->Room(), nullptr);
    EXPECT_EQ(doc->Room()->Surfaces()->FirstWall()->size.y, 1000.0);
    EXPECT_EQ(doc->Room()->Surfaces()->Ceiling()->origin.z, 1000.0);
    doc->EvCommand(RECALC);
    EXPECT_EQ(doc->obsolete, 0);
}

TEST_F(Files, ClosingLeavesTheEmptyWindowAndTheOldFile)
{
    const std::string before = BytesOf(Sample("Logistikhalle"));
    Open(Sample("Logistikhalle"));
    doc->OpenBlock(doc->RoomBlock());
    doc->Refresh(0);
    doc->EvCommand(CLOSE);
    EXPECT_EQ(doc->Room(), nullptr);
    EXPECT_EQ(doc->blocks, nullptr);
    EXPECT_EQ(frame->Caption(), "Zulerion");
    EXPECT_TRUE(BytesOf(Sample("Logistikhalle")) == before);
}

TEST_F(Files, AMissingFileIsNamed)
{
    Expect("Zulerion");
    Open(folder.Path("weg.sc1"));
    EXPECT_EQ(said, "Datei \"" + folder.Path("weg.sc1") +
                        "\" kann nicht ge\xF6"
                        "ffnet werden!\nWahrscheinlich falscher Name.");
    EXPECT_TRUE(HasNoDocument());
    EXPECT_NE(status.Text().find("\"weg.sc1\""), std::string::npos) << status.Text();
    ExpectUsable();
}

TEST_F(Files, AFileThatMayNotBeReadIsNamed)
{
    folder.Put("geheim.sc1", BytesOf(Sample("Werkstatt")));
    chmod(folder.Path("geheim.sc1").c_str(), 0);
    chmod(folder.path.c_str(), 0755);
    Expect("Zulerion");
    {
        PLAINUSER plain;
        Open(folder.Path("geheim.sc1"));
    }
    EXPECT_NE(said.find(folder.Path("geheim.sc1")), std::string::npos) << said;
    EXPECT_TRUE(HasNoDocument());
    ExpectUsable();
}

TEST_F(Files, AMissingModelIsNamed)
{
    const struct {
        const char *hall, *model;
    } table[] = {{"Werkstatt", "Hell 10"}, {"Logistikhalle", "Dunkel 50"}};
    UseProgramFolder(folder.path);
    for (const auto &row : table) {
        folder.Put("Torvane.lgo", BytesOf(ZUL_PROGRAM_FOLDER "/Torvane.lgo"));
        Expect("Zulerion");
        Open(Sample(row.hall));
        EXPECT_NE(said.find("/Modely/"), std::string::npos) << said;
        EXPECT_NE(said.find(".gim"), std::string::npos) << said;
        EXPECT_TRUE(HasNoDocument());
        EXPECT_NE(status.Text().find(std::string("\"") + row.hall + ".sc1\""), std::string::npos);
        EXPECT_NE(status.Text().find("\"Modely\""), std::string::npos) << "what to do";
    }
    UseProgramFolder(ZUL_PROGRAM_FOLDER);
    ExpectUsable();
}

TEST_F(Files, AHallWhosePlansLackTheirLogoStaysOpenAndCanBeSaved)
{
    MemDisk memory;
    const std::string old = EncodeItems(WholeHall());
    MemPut("/mem/halle.sc1", old);
    Expect("Zulerion");
    Open("/mem/halle.sc1");
    EXPECT_NE(said.find("Torvane.lgo"), std::string::npos) << said;
    ASSERT_NE(doc->Room(), nullptr);
    EXPECT_EQ(frame->Caption(), "Zulerion - halle");
    doc->SetModified();
    Expect("Zulerion"); // the layout is still to be done
    doc->EvCommand(SAVE);
    EXPECT_FALSE(doc->modified);
    EXPECT_TRUE(MemGet("/mem/halle.sc1") != old) << "the day has changed";
    doc->EvCommand(CLOSE);
    EXPECT_TRUE(HasNoDocument());
}

TEST_F(Files, AFileThatIsNoHallLeavesTheWindowUsable)
{
    const std::string whole = BytesOf(Sample("Werkstatt"));
    const std::pair<const char *, std::string> table[] = {
        {"leer", ""},
        {"text", "Dies ist keine Halle.\n"},
        {"modell", BytesOf(ZUL_PROGRAM_FOLDER "/Modely/Hell 10.gim").substr(0, 2000)},
        {"katalog", BytesOf(ZUL_PROGRAM_FOLDER "/Katalogy/.StavPrv.zec")},
        {"nullen", std::string(5000, '\0')},
        {"halb", whole.substr(0, 300)},
        {"gekippt", std::string(whole).replace(5, 1, "\x7F")},
    };
    for (const auto &[name, bytes] : table) {
        SCOPED_TRACE(name);
        folder.Put(std::string(name) + ".sc1", bytes);
        said.clear();
        Expect("Zulerion");
        Open(folder.Path(std::string(name) + ".sc1"));
        EXPECT_NE(said, "");
        EXPECT_TRUE(HasNoDocument());
        EXPECT_NE(status.Text().find(name), std::string::npos) << "the status line names the file";
        EXPECT_TRUE(folder.Get(std::string(name) + ".sc1") == bytes);
    }
    ExpectUsable();
}

TEST_F(Files, AFolderIsNoHall)
{
    std::filesystem::create_directory(folder.Path("Ordner.sc1"));
    Expect("Zulerion");
    Open(folder.Path("Ordner.sc1"));
    EXPECT_TRUE(HasNoDocument());
    ExpectUsable();
}

TEST_F(Files, AnUnreadableFileInPlaceOfAnOpenHallLeavesNone)
{
    Open(Sample("Werkstatt"));
    folder.Put("kaputt.sc1", "nichts");
    Expect("Zulerion");
    Open(folder.Path("kaputt.sc1"));
    EXPECT_TRUE(HasNoDocument());
    EXPECT_NE(status.Text().find("kaputt.sc1"), std::string::npos);
}

TEST_F(Files, ADroppedHallAsksForTheChangedOne)
{
    frame->Create();
    Open(Sample("Werkstatt"));
    doc->SetModified();
    AnswerSaving(WIN_ID_CANCEL);
    testdoor::Drop(*doc, Sample("Logistikhalle").c_str());
    testdoor::Settle();
    EXPECT_EQ(frame->Caption(), "Zulerion - Werkstatt");
    AnswerSaving(WIN_ID_NO);
    testdoor::Drop(*doc, Sample("Logistikhalle").c_str());
    testdoor::Settle();
    EXPECT_EQ(frame->Caption(), "Zulerion - Logistikhalle");
    Expect("Zulerion");
    testdoor::Drop(*doc, (std::string(ZUL_PROGRAM_FOLDER) + "/Torvane.pdf").c_str());
    testdoor::Settle();
    EXPECT_NE(said.find("*.sc1"), std::string::npos) << said;
    EXPECT_EQ(frame->Caption(), "Zulerion - Logistikhalle");
}

// Damage

/// Opens damaged halls one after the other, evaluates and draws what opened, and counts it.
class Damaged : public Files
{
protected:
    void SetUp() override
    {
        SetMessageSink([](const char *text, bool) { messages += *text != '\0'; });
    }
    void OpenAndShow(const std::string &bytes)
    {
        messages = 0;
        MemPut("/mem/halle.sc1", bytes);
        Open("/mem/halle.sc1");
        EXPECT_EQ(doc->Room() == NULL, messages == 1) << "a message or a hall";
        if (doc->Room() == NULL) {
            EXPECT_TRUE(HasNoDocument());
            return;
        }
        ++opened;
        doc->EvCommand(RECALC);
        if (messages == 0) {
            EXPECT_EQ(doc->obsolete, 0);
            Draw();
        }
        EXPECT_TRUE(ChainIsTheParts(*doc));
        doc->EvCommand(CLOSE);
        EXPECT_EQ(doc->Room(), nullptr);
    }
    void Draw()
    {
        for (TEdcBlock *blk = doc->blocks; blk != NULL; blk = blk->next) {
            TRecordDC dc(doc->Dpi());
            blk->Paint(dc, {0, 0, blk->rect.width, blk->rect.height});
            EXPECT_STREQ(xCode, XNULL);
        }
    }

    HALLDISK memory;
    int opened = 0;
    static inline int messages;
};

TEST_F(Damaged, HallsOfChangedItemsGiveAMessageOrAReport)
{
    const std::string whole = EncodeItems(WholeHall());
    for (unsigned i = 0; i < 150; ++i) {
        SCOPED_TRACE(i);
        CHANCE chance(i);
        CdeITEMS items = DecodeItems(whole);
        DamageItems(items, chance);
        OpenAndShow(EncodeItems(items));
    }
    EXPECT_GT(opened, 10);
    EXPECT_LT(opened, 140);
}

TEST_F(Damaged, HallsOfChangedBytesGiveAMessageOrAReport)
{
    const std::string whole = EncodeItems(WholeHall());
    for (unsigned i = 0; i < 150; ++i) {
        SCOPED_TRACE(i);
        CHANCE chance(i);
        std::string bytes = whole;
        DamageBytes(bytes, chance);
        OpenAndShow(bytes);
    }
    EXPECT_GT(opened, 10);
    EXPECT_LT(opened, 140);
}

TEST_F(Damaged, HallsThatEndEarlyGiveAMessageOrAReport)
{
    const std::string whole = EncodeItems(WholeHall());
    for (size_t length = 0; length < whole.size(); ++length) {
        SCOPED_TRACE(length);
        OpenAndShow(whole.substr(0, length));
    }
    EXPECT_GT(opened, 5);
}

TEST_F(Damaged, HallsOfAnySizeGiveAMessageOrAReport)
{
    for (double length : {-1.0, 0.0, 1e-300, 1e-9, 0.001, 1.0, 1e6, 1e12, 1e300})
        for (double width : {0.0, 1e-9, 1.0, 1e12, 1e300}) {
            SCOPED_TRACE(testing::Message() << length << " x " << width);
            OpenAndShow(EncodeItems(ItGroup(ItGroup(ItReals({0, 0, 0, length, width, 5})) + NoMembers())));
        }
    EXPECT_GT(opened, 20);
}

// Save

TEST_F(Files, ASavedHallHoldsItsRecordAndNothingElse)
{
    for (const char *name : {"Werkstatt", "Produktionshalle", "Logistikhalle"}) {
        const std::string bytes = BytesOf(Sample(name));
        Open(Sample(name));
        doc->EvCommand(RECALC);
        doc->docZoom.SetCustom(37);
        doc->OpenBlock(doc->RoomBlock());
        doc->Refresh(0);
        doc->SetScroll({10, 10});
        doc->Refresh(0);
        ChooseFile("save", folder.Path(std::string(name) + " neu"));
        doc->EvCommand(SAVE_AS);
        EXPECT_TRUE(folder.Get(std::string(name) + " neu.sc1") == bytes) << name;
        EXPECT_EQ(frame->Caption(), std::string("Zulerion - ") + name + " neu");
        EXPECT_FALSE(doc->modified);
        doc->EvCommand(CLOSE);
    }
}

TEST_F(Files, AnEditedHallComesBackAsItWasLeft)
{
    New("33", "14.5", "6.75");
    InDialog("Heizperiode", [](DialogBox &box) {
        box.Type(100, "199");
        box.Type(101, "-3.25");
        box.Click(WIN_ID_OK);
    });
    doc->EvCommand(1505);
    EXPECT_TRUE(doc->modified);
    ChooseFile("save", folder.Path("H\xC3\xA4user.sc1"));
    doc->EvCommand(SAVE);
    EXPECT_FALSE(doc->modified);
    EXPECT_EQ(folder.List(), std::set<std::string>{"H\xC3\xA4user.sc1"});
    doc->EvCommand(CLOSE);
    ChooseFile("open", folder.Path("H\xC3\xA4user.sc1"));
    doc->EvCommand(OPEN);
    ASSERT_NE(doc->Room(), nullptr);
    EXPECT_EQ(doc->Room()->Box().max, AgPOINT(33, 14.5, 6.75));
    EXPECT_EQ(doc->Room()->Data()->periodDays, 199);
    EXPECT_EQ(doc->Room()->Data()->meanOutTemp, -3.25);
    EXPECT_EQ(frame->Caption(), "Zulerion - H\xE4user");
}

/// A changed hall whose file holds the former state.
class Saving : public Files
{
protected:
    void Start(const std::string &native)
    {
        Open(native);
        ASSERT_NE(doc->Room(), nullptr);
        doc->Room()->Data()->periodDays = 123;
        StrCopy(doc->Room()->Conclusion()->author, "K. Berg", sizeof doc->Room()->Conclusion()->author);
        doc->SetModified();
    }
    /// The document as it stood before a failed save: open, changed and whole.
    void ExpectStillOpen()
    {
        EXPECT_TRUE(doc->modified);
        ASSERT_NE(doc->Room(), nullptr);
        EXPECT_EQ(doc->Room()->Data()->periodDays, 123);
        EXPECT_TRUE(ChainIsTheParts(*doc));
        EXPECT_EQ(doc->obsolete, 0);
    }
    void PutSmallHall() { MemPut("/mem/halle.sc1", EncodeItems(WholeHall())); }
};

TEST_F(Saving, OntoAFullDiskKeepsTheOldFileAndTheChanges)
{
    HALLDISK memory;
    PutSmallHall();
    const std::string old = MemGet("/mem/halle.sc1");
    Start("/mem/halle.sc1");
    const std::vector<std::string> files = MemList();
    for (long long room : {0, 1, 100, 500}) {
        MemLimit(static_cast<long long>(old.size()) + room);
        said.clear();
        Expect("Zulerion");
        doc->EvCommand(SAVE);
        EXPECT_NE(said.find("\"/mem/halle.sc1\""), std::string::npos) << said;
        EXPECT_NE(said.find("wenig Platz auf der Platte"), std::string::npos) << said;
        EXPECT_TRUE(MemGet("/mem/halle.sc1") == old);
        EXPECT_EQ(MemList(), files);
        ExpectStillOpen();
    }
    MemLimit(-1);
    doc->EvCommand(SAVE);
    EXPECT_FALSE(doc->modified);
    EXPECT_TRUE(MemGet("/mem/halle.sc1") != old);
    doc->EvCommand(CLOSE);
}

TEST_F(Saving, IntoAFolderWithoutRightsKeepsTheChanges)
{
    folder.Put("halle.sc1", BytesOf(Sample("Werkstatt")));
    Start(folder.Path("halle.sc1"));
    chmod(folder.path.c_str(), 0555);
    Expect("Zulerion");
    {
        PLAINUSER plain;
        doc->EvCommand(SAVE);
    }
    EXPECT_NE(said.find(folder.Path("halle.sc1")), std::string::npos) << said;
    ExpectStillOpen();
    EXPECT_TRUE(folder.Get("halle.sc1") == BytesOf(Sample("Werkstatt")));
    EXPECT_EQ(folder.List(), std::set<std::string>{"halle.sc1"});
    chmod(folder.path.c_str(), 0755);
    doc->EvCommand(SAVE);
    EXPECT_FALSE(doc->modified);
}

TEST_F(Saving, UnderANewNameThatFailsKeepsTheChangesAndTheNewName)
{
    folder.Put("halle.sc1", BytesOf(Sample("Werkstatt")));
    Start(folder.Path("halle.sc1"));
    ChooseFile("save", folder.Path("neu.sc1"));
    Expect("Zulerion");
    {
        FaultArm arm(FAULT::OPEN, 1, true);
        doc->EvCommand(SAVE_AS);
    }
    EXPECT_NE(said.find(folder.Path("neu.sc1")), std::string::npos) << said;
    ExpectStillOpen();
    EXPECT_EQ(frame->Caption(), "Zulerion - neu");
    EXPECT_TRUE(folder.Get("halle.sc1") == BytesOf(Sample("Werkstatt")));
    EXPECT_EQ(folder.List(), std::set<std::string>{"halle.sc1"});
    doc->EvCommand(SAVE);
    EXPECT_FALSE(doc->modified);
    EXPECT_EQ(folder.List(), (std::set<std::string>{"halle.sc1", "neu.sc1"}));
}

TEST_F(Saving, ThatFailsAtAnyCallKeepsTheOldFileAndTheChanges)
{
    HALLDISK memory;
    PutSmallHall();
    const std::string old = MemGet("/mem/halle.sc1");
    int failures = 0;
    for (FAULT kind : {FAULT::OPEN, FAULT::WRITE, FAULT::SEEK, FAULT::SYNC, FAULT::CLOSE, FAULT::RENAME})
        for (int n = 1;; ++n) {
            SCOPED_TRACE(testing::Message() << FaultName(kind) << " " << n);
            PutSmallHall();
            Start("/mem/halle.sc1");
            said.clear();
            testdoor::PendingScripts();
            Expect("Zulerion");
            int fired = 0;
            {
                FaultArm arm(kind, n, false);
                doc->EvCommand(SAVE);
                fired = FaultsFired();
            }
            bool isSaved = !doc->modified;
            EXPECT_EQ(testdoor::PendingScripts(), isSaved ? 1 : 0);
            EXPECT_EQ(MemGet("/mem/halle.sc1") == old, !isSaved);
            EXPECT_EQ(MemOpenFiles(), 0);
            if (!isSaved) {
                ++failures;
                EXPECT_NE(said.find("halle.sc1"), std::string::npos) << said;
                ExpectStillOpen();
                doc->modified = false;
            }
            doc->EvCommand(CLOSE);
            if (fired == 0)
                break;
        }
    EXPECT_GT(failures, 4);
}

TEST_F(Saving, AsTheAnswerToClosingKeepsAHallThatCannotBeSaved)
{
    HALLDISK memory;
    PutSmallHall();
    const std::string old = MemGet("/mem/halle.sc1");
    Start("/mem/halle.sc1");
    MemReadOnly("/mem/");
    AnswerSaving(WIN_ID_YES);
    Expect("Zulerion");
    EXPECT_FALSE(doc->CanClose());
    ExpectStillOpen();
    EXPECT_TRUE(MemGet("/mem/halle.sc1") == old);
    MemReadOnly("/mem/", false);
    AnswerSaving(WIN_ID_YES);
    EXPECT_TRUE(doc->CanClose());
    EXPECT_TRUE(MemGet("/mem/halle.sc1") != old);
}

// The end of the process in the middle of a save

namespace
{
enum { KILLED = 42 };
int callsLeft = 0;  // until the process ends
bool before = true; // the call, or behind it

void Count()
{
    if (--callsLeft == 0)
        _exit(KILLED);
}

/// A call of the disk at which the process may end, before it or behind it.
template <auto MEMBER>
struct DEADLY;
template <class RESULT, class... ARGS, RESULT (*CdeDISK::*MEMBER)(ARGS...)>
struct DEADLY<MEMBER> {
    static RESULT Call(ARGS... args)
    {
        if (before)
            Count();
        RESULT result = (posixDisk.*MEMBER)(args...);
        if (!before)
            Count();
        return result;
    }
};

/// Half of what is written reaches the disk when the process ends at it.
ssize_t DeadlyWrite(int fd, const void *blk, size_t size)
{
    if (callsLeft == 1)
        posixDisk.write(fd, blk, size / 2);
    Count();
    return posixDisk.write(fd, blk, size);
}

const CdeDISK deadlyDisk = {
    DEADLY<&CdeDISK::open>::Call,     DEADLY<&CdeDISK::read>::Call,   DeadlyWrite,
    DEADLY<&CdeDISK::seek>::Call,     DEADLY<&CdeDISK::sync>::Call,   DEADLY<&CdeDISK::close>::Call,
    DEADLY<&CdeDISK::rename>::Call,   DEADLY<&CdeDISK::unlink>::Call, DEADLY<&CdeDISK::readlink>::Call,
    DEADLY<&CdeDISK::likeness>::Call, DEADLY<&CdeDISK::access>::Call, DEADLY<&CdeDISK::mkdir>::Call,
};
} // namespace

TEST_F(Saving, ThatEndsWithTheProcessAtAnyCallLeavesTheOldFileOrTheNewOne)
{
    const std::string old = BytesOf(Sample("Werkstatt"));
    folder.Put("halle.sc1", old);
    Start(folder.Path("halle.sc1"));
    ChooseFile("save", folder.Path("soll.sc1"));
    doc->EvCommand(SAVE_AS);
    const std::string fresh = folder.Get("soll.sc1");
    ASSERT_TRUE(fresh != old && !fresh.empty());
    const std::string name = NameOf(folder.Path("halle.sc1"));
    int olds = 0, news = 0;
    for (bool isBefore : {true, false})
        for (int n = 1;; ++n) {
            SCOPED_TRACE(testing::Message() << n << " " << isBefore);
            folder.Put("halle.sc1", old);
            ChildEnd end = RunInChild([&] {
                callsLeft = n;
                before = isBefore;
                disk = &deadlyDisk;
                doc->WriteFile(name.c_str());
            });
            ASSERT_TRUE(end.exitCode == KILLED || end.exitCode == 0) << end.exitCode << end.err;
            std::string left = folder.Get("halle.sc1");
            ASSERT_TRUE(left == old || left == fresh) << left.size() << " bytes";
            ++(left == old ? olds : news);
            if (end.exitCode == 0) {
                EXPECT_TRUE(left == fresh);
                break;
            }
            doc->WriteFile(name.c_str()); // what the dead process left behind is in nobody's way
            EXPECT_STREQ(xCode, XNULL);
            ASSERT_TRUE(folder.Get("halle.sc1") == fresh);
            for (const std::string &file :
                 folder.List()) // what the dead process left, with its halves of a file
                if (file != "halle.sc1" && file != "soll.sc1")
                    std::filesystem::remove(folder.Path(file));
        }
    EXPECT_GT(olds, 8);
    EXPECT_GT(news, 2);
}
} // namespace
