// What goes wrong around a person's work: damaged halls, disks that are full or closed, and pieces of the
// program folder that are missing. Each brings a message, nothing is lost, and the window works on.
#include "zulerioncase.h"

#include "support/cdeitems.h"
#include "support/chance.h"
#include "win/shell.h"

#include <cerrno>
#include <sys/stat.h>

namespace
{
using testdoor::DialogBox;

std::string BytesOf(const std::string &native)
{
    std::ifstream in(native, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
}

/// While it lives, nothing more can be written to the disk.
class FULLDISK
{
public:
    FULLDISK() : table(posixDisk)
    {
        table.write = [](int, const void *, size_t) -> ssize_t {
            errno = ENOSPC;
            return -1;
        };
        disk = &table;
    }
    ~FULLDISK() { disk = &posixDisk; }
    FULLDISK(const FULLDISK &) = delete;
    FULLDISK &operator=(const FULLDISK &) = delete;

private:
    CdeDISK table;
};

class Damages : public Zulerion
{
protected:
    ~Damages() override { chmod(folder.path.c_str(), 0700); }

    void ExpectUsable()
    {
        OpenSample("Werkstatt");
        Update();
        EXPECT_TRUE(Report().Has("Auswertung"));
        EXPECT_TRUE(LooksFresh(Doc()));
        Choose(CLOSE);
        EXPECT_TRUE(IsEmptyWindow());
    }
    /// A program folder of the test's own, with everything but these; the program runs in it from here on.
    void RunWithout(const std::vector<std::string> &missing)
    {
        End();
        home = folder.Path("Programm");
        std::filesystem::remove_all(home);
        std::filesystem::create_directory(home);
        for (const char *piece :
             {"Zulerio.lgo", "Torvane.lgo", "Zulerio.hlp", "Torvane.pdf", "Modely", "Katalogy", "zulhelp"})
            std::filesystem::copy(std::string(ZUL_PROGRAM_FOLDER "/") + piece, home + "/" + piece,
                                  std::filesystem::copy_options::recursive);
        for (const std::string &piece : missing)
            EXPECT_GT(std::filesystem::remove_all(home + "/" + piece), 0u) << piece;
        Start(home);
    }
    /// Opens the copied Werkstatt and changes it.
    void OpenAndChange()
    {
        std::filesystem::copy(Sample("Werkstatt"), folder.Path("halle.sc1"));
        OpenHall(folder.Path("halle.sc1"));
        Edit(ENERGY, "Wärmequellen", [](DialogBox &box) { box.Type(104, "88.5"); });
    }
    void ExpectStillOpen()
    {
        EXPECT_EQ(Caption(), "Zulerion - halle");
        EXPECT_TRUE(Doc().modified);
        EXPECT_TRUE(Lines(Print(1, 1)).Has("Dauerwärmegewinn: 88.5 kW"));
        EXPECT_TRUE(LooksFresh(Doc()));
        std::filesystem::remove(folder.Path("bericht.pdf"));
    }

    std::string home; // native
};
} // namespace

TEST_F(Damages, OfAHallAreToldWithTheFileAndWhatToDo)
{
    const std::string whole = BytesOf(Sample("Werkstatt"));
    const std::pair<const char *, std::string> table[] = {
        {"leer", ""},
        {"Text", "Dies ist keine Halle."},
        {"halb", whole.substr(0, 300)},
        {"gekippt", std::string(whole).replace(5, 1, "\x7F")},
        {"Modell", BytesOf(ZUL_PROGRAM_FOLDER "/Modely/Hell 10.gim").substr(0, 3000)},
        {"Katalog", BytesOf(ZUL_PROGRAM_FOLDER "/Katalogy/.StavPrv.zec")},
        {"Bericht", BytesOf(ZUL_PROGRAM_FOLDER "/Torvane.pdf").substr(0, 3000)},
        {"Häuser", std::string(3000, '\xFF')},
    };
    for (bool isOpen : {false, true})
        for (const auto &[name, bytes] : table) {
            SCOPED_TRACE(name);
            if (isOpen)
                OpenSample("Produktionshalle");
            const std::string file = std::string(name) + ".sc1";
            folder.Put(file, bytes);
            said.clear();
            ChooseFile("open", folder.Path(file));
            Expect();
            Choose(OPEN);
            EXPECT_NE(said, "");
            EXPECT_EQ(Status(),
                      "Die Halle \"" + file +
                          "\" wurde nicht geöffnet. Bitte die Datei und die Emissionsmodelle im Ordner "
                          "\"Modely\" prüfen.");
            EXPECT_TRUE(IsEmptyWindow());
            EXPECT_EQ(folder.Get(file), bytes);
        }
    ExpectUsable();
}

TEST_F(Damages, OfAHallAtAnyPlaceGiveAMessageOrAReport)
{
    CdeITEMS items = DecodeItems(BytesOf(Sample("Werkstatt")));
    int refused = 0, opened = 0;
    for (unsigned i = 0; i < 40; ++i) {
        SCOPED_TRACE(i);
        CHANCE chance(i);
        std::string bytes;
        if (i % 2 == 0) {
            CdeITEMS damaged = items;
            DamageItems(damaged, chance);
            bytes = EncodeItems(damaged);
        } else {
            bytes = BytesOf(Sample("Werkstatt"));
            DamageBytes(bytes, chance);
        }
        folder.Put("halle.sc1", bytes);
        said.clear();
        Expect();
        testdoor::Drop(Doc(), folder.Path("halle.sc1").c_str());
        testdoor::Settle();
        if (testdoor::PendingScripts() == 0) {
            EXPECT_NE(said, "");
            EXPECT_TRUE(IsEmptyWindow());
            ++refused;
        } else {
            EXPECT_EQ(Caption(), "Zulerion - halle");
            EXPECT_TRUE(LooksFresh(Doc()));
            Choose(CLOSE);
            ++opened;
        }
    }
    EXPECT_GT(refused, 2);
    EXPECT_GT(opened, 2);
    ExpectUsable();
}

TEST_F(Damages, OfAFileOfAnotherKindAreToldBeforeItIsRead)
{
    OpenSample("Werkstatt");
    Expect();
    testdoor::Drop(Doc(), ZUL_PROGRAM_FOLDER "/Torvane.pdf");
    testdoor::Settle();
    EXPECT_NE(said.find("Torvane.pdf"), std::string::npos) << said;
    EXPECT_NE(said.find("*.sc1"), std::string::npos) << said;
    EXPECT_EQ(Caption(), "Zulerion - Werkstatt") << "the open hall stays";
}

TEST_F(Damages, OfAFullDiskKeepTheOldFileAndTheChanges)
{
    OpenAndChange();
    const std::string old = folder.Get("halle.sc1");
    Expect();
    {
        FULLDISK full;
        Key("Ctrl+S");
    }
    EXPECT_NE(said.find(folder.Path("halle.sc1")), std::string::npos) << said;
    EXPECT_NE(said.find("Platz"), std::string::npos) << said;
    EXPECT_EQ(folder.Get("halle.sc1"), old);
    EXPECT_EQ(folder.List(), std::set<std::string>{"halle.sc1"});
    ExpectStillOpen();
    Expect(WIN_ID_YES); // save before it closes?
    Expect();
    {
        FULLDISK full;
        Choose(CLOSE);
    }
    ExpectStillOpen();
    Key("Ctrl+S");
    EXPECT_NE(folder.Get("halle.sc1"), old);
    EXPECT_FALSE(Doc().modified);
}

TEST_F(Damages, OfAFolderWithoutRightsKeepTheOldFileAndTheChanges)
{
    OpenAndChange();
    const std::string old = folder.Get("halle.sc1");
    chmod(folder.path.c_str(), 0555);
    Expect();
    {
        PLAINUSER plain;
        Key("Ctrl+S");
    }
    EXPECT_NE(said.find(folder.Path("halle.sc1")), std::string::npos) << said;
    EXPECT_EQ(folder.Get("halle.sc1"), old);
    EXPECT_EQ(folder.List(), std::set<std::string>{"halle.sc1"});
    chmod(folder.path.c_str(), 0755);
    ExpectStillOpen();
    Key("Ctrl+S");
    EXPECT_FALSE(Doc().modified);
}

TEST_F(Damages, OfAModelFolderNameTheModelThatIsMissing)
{
    RunWithout({"Modely/Hell 10.gim"});
    said.clear();
    ChooseFile("open", Sample("Werkstatt"));
    Expect();
    Key("Ctrl+O");
    EXPECT_NE(said.find(home + "/Modely/Hell 10.gim"), std::string::npos) << said;
    EXPECT_NE(Status().find("\"Werkstatt.sc1\""), std::string::npos) << Status();
    EXPECT_NE(Status().find("\"Modely\""), std::string::npos) << Status();
    EXPECT_TRUE(IsEmptyWindow());
    OpenSample("Produktionshalle"); // which has none of that model
    Update();
    EXPECT_TRUE(Report().Has("Auswertung"));
    std::filesystem::copy(ZUL_PROGRAM_FOLDER "/Modely/Hell 10.gim", home + "/Modely/Hell 10.gim");
    OpenSample("Werkstatt");
}

TEST_F(Damages, OfTheCataloguesAreToldAndTheDialogKeepsWhatWasEntered)
{
    RunWithout({"Katalogy/.StavPrv.zec"});
    std::filesystem::remove(home + "/Katalogy/.TvAgreg.zec");
    std::ofstream(home + "/Katalogy/.TvAgreg.zec") << "kein Katalog";
    NewHall();
    Edit(INSULATION, "Baukonstruktion", [this](DialogBox &box) {
        for (int id : {100, 102, 103, 105, 107, 109, 111, 112})
            box.Type(id, "0.75");
        EXPECT_NE(SaidWhile([&box] { box.Click(101); }), "");
        EXPECT_EQ(box.Text(100), "0.75");
        testdoor::PendingScripts();
    });
    EXPECT_TRUE(Report().Has("Durchgangsquotient: 0.75"));
    said.clear();
    Expect();
    testdoor::Script([](testdoor::ModalBox &box) { box.Answer(WIN_ID_CANCEL); }); // the empty catalogue
    Choose(1513);
    EXPECT_NE(said, "");
    EXPECT_EQ(BytesOf(home + "/Katalogy/.TvAgreg.err"), "kein Katalog") << "it is laid aside";
    testdoor::PendingScripts();
    EXPECT_TRUE(LooksFresh(Doc()));
    EXPECT_EQ(Caption(), "Zulerion - neu");
}

TEST_F(Damages, OfHelpAndManualAreTold)
{
    RunWithout({"Zulerio.hlp", "Torvane.pdf", "zulhelp"});
    OpenSample("Werkstatt");
    for (int command : {1517, 1519, 1521}) {
        std::string caption;
        testdoor::Script([&](testdoor::ModalBox &box) {
            caption = box.Caption();
            said = ToUtf8(box.Text().c_str());
            box.Answer(WIN_ID_OK);
        });
        Choose(command);
        EXPECT_EQ(caption, "Unexpected situation");
        EXPECT_EQ(said, "Cannot start Winhlp32 viewer (2)");
    }
    EXPECT_FALSE(Frame().MayCommand(1529)) << "there is no manual to open";
    EXPECT_EQ(Caption(), "Zulerion - Werkstatt");
    EXPECT_TRUE(LooksFresh(Doc()));
}

TEST_F(Damages, OfADataSheetAreTold)
{
    RunWithout({});
    std::ofstream(home + "/Modely/Dunkel 15.pdf") << "%PDF";
    OpenSample("Werkstatt");
    testdoor::DoubleClick(Doc(), Middle(Doc().RoomBlock()));
    testdoor::Settle();
    ASSERT_EQ(Doc().openedBlk, Doc().RoomBlock());
    ASSERT_TRUE(Press(2001));
    ASSERT_TRUE(Press(21011));
    const EmEMITTER *emitter = Doc().Room()->Emitters()->First();
    TRect place = Doc().ToWindow(Doc().RoomBlock()->rect.Rect());
    TPoint at = Doc().RoomBlock()->Axes().ToDevice(emitter->pos) + place.TopLeft();
    TShellDoor door;
    door.canOpen = [](const char *) { return false; };
    door.open = [](const char *) { return static_cast<int>(WIN_SHELL_NOPROGRAM); };
    TShellDoor former = SetShellDoor(door);
    InDialog("Infrastrahler", [](DialogBox &box) {
        EXPECT_TRUE(box.IsEnabled(102)) << "its data sheet lies there";
        std::string note = SaidWhile([&box] { box.Click(102); });
        EXPECT_NE(note.find("Acrobat Reader"), std::string::npos) << note;
        box.Choose(100, 1);
        EXPECT_FALSE(box.IsEnabled(102)) << "the other model has none";
        box.Press("Esc");
    });
    testdoor::DoubleClick(Doc(), at);
    testdoor::Settle();
    SetShellDoor(former);
    EXPECT_FALSE(Doc().modified);
    EXPECT_TRUE(LooksFresh(Doc()));
}
