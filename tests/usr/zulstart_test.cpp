// The program from its start to its end: what the start-up code sets, the frame as a person sees it, the empty
// window, and the end without the logo.
#include "support/child.h"
#include "support/folder.h"
#include "support/freshpaint.h"
#include "support/testapp.h"
#include "usr/edcapp.h"
#include "usr/edcutils.h"
#include "usr/zuldoc.h"
#include "usr/zulhole.h"
#include "win/boxes.h"
#include "win/frame.h"
#include "win/gadgets.h"
#include "win/guard.h"
#include "win/testdialog.h"
#include "win/testdoor.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{
const TColor blue = {0, 0, 128};
std::string programFolder; // native
int asked;                 // for the parameters of an update

/// The program without its loop: turns of the loop come from the test door.
class PROGRAM
{
public:
    explicit PROGRAM(const std::string &folder = ZUL_PROGRAM_FOLDER)
    {
        programFolder = folder;
        TEdcApplication::startUp = [] {
            SetProgramPath((programFolder + "/Zulerion").c_str()); // the test itself lies elsewhere
            ZulStartUp();
        };
        asked = 0;
        TZulRoomBlock::askParams = [](TZulUpdateData &) {
            ++asked;
            return true;
        };
        application = std::make_unique<TEdcApplication>(count, values);
        testdoor::PendingScripts();
        testdoor::UnexpectedBoxes();
    }
    ~PROGRAM()
    {
        EXPECT_EQ(testdoor::PendingScripts(), 0) << "a script waited for a box that never came";
        EXPECT_EQ(testdoor::UnexpectedBoxes(), 0);
        TZulRoomBlock::askParams = NULL;
        ZulShutDown();
        application.reset();
        TEdcApplication::startUp = [] {};
        TEdcApplication::title[0] = '\0';
        TEdcApplication::iconId = TEdcApplication::menuId = 0;
    }
    PROGRAM(const PROGRAM &) = delete;
    PROGRAM &operator=(const PROGRAM &) = delete;

    void Show()
    {
        application->InitMainWindow();
        ASSERT_STREQ(xCode, XNULL);
        Frame().Create();
        testdoor::Settle();
    }
    TDecoratedFrame &Frame() { return *application->MainWindow(); }
    TZulDoc &Doc() { return *static_cast<TZulDoc *>(AppDocument()); }
    TStatusBar &Bar() { return *AppStatusBar(); }
    void Open(const std::string &native)
    {
        testdoor::Drop(Doc(), native.c_str());
        testdoor::Settle();
    }
    void OpenSample() { Open(ZUL_PROGRAM_FOLDER "/Beispiele/Werkstatt.sc1"); }
    void Choose(int id)
    {
        testdoor::ChooseMenu(Frame(), id);
        testdoor::Settle();
    }

    std::unique_ptr<TEdcApplication> application;

private:
    int count = 1;
    char name[9] = "Zulerion";
    char *values[2] = {name, NULL};
};

std::string Texts(TDecoratedFrame &frame, int popup, bool enabledOnly = false)
{
    std::string texts;
    for (const testdoor::MenuEntry &entry : testdoor::Menu(frame, popup))
        if (!enabledOnly || (entry.enabled && entry.id != 0))
            texts += std::to_string(entry.id) + " " + entry.text + "\n";
    return texts;
}

/// What the status bar shows of a file.
std::string RevisionOf(const std::string &native)
{
    struct stat info;
    if (stat(native.c_str(), &info) != 0)
        return "";
    std::tm date = *std::localtime(&info.st_mtime);
    return EdcFormat("Rev. %d-%02d", date.tm_year + 1900, date.tm_mon + 1);
}

/// The pixels of a window that are not of the empty window's colour.
TRect Logo(TZulDoc &doc)
{
    std::vector<TColor> pixels = testdoor::Pixels(doc);
    TRect client = doc.GetClientRect();
    TRect found = {client.right, client.bottom, 0, 0};
    for (int y = 0; y < client.Height(); ++y)
        for (int x = 0; x < client.Width(); ++x)
            if (!(pixels[static_cast<size_t>(y) * client.Width() + x] == blue))
                found = {std::min(found.left, x), std::min(found.top, y), std::max(found.right, x + 1),
                         std::max(found.bottom, y + 1)};
    return found;
}

/// The bar shows a text: some pixels are far darker than the rest.
int DarkPixels(TWindow &bar)
{
    std::vector<TColor> pixels = testdoor::ShownPixels(bar);
    return static_cast<int>(std::count_if(pixels.begin(), pixels.end(), [](const TColor &color) {
        return color.red < 100 && color.green < 100 && color.blue < 100;
    }));
}
} // namespace

TEST(Start, SetsWhatTheFrameIsMadeOf)
{
    PROGRAM program;
    program.Show();
    EXPECT_STREQ(TEdcApplication::title, "Zulerion");
    EXPECT_EQ(TEdcApplication::iconId, 1030);
    EXPECT_EQ(TEdcApplication::menuId, 1000);
    EXPECT_NE(dynamic_cast<TZulDoc *>(AppDocument()), nullptr);
    EXPECT_EQ(&program.Frame().Client(), AppDocument());
    EXPECT_EQ(AppStatusBar(), TEdcApplication::statusBar);
    EXPECT_EQ(program.application->StatusWindow(), TEdcApplication::statusBar);
    EXPECT_EQ(program.application->Name(), "Zulerion");
    EXPECT_EQ(program.Frame().Caption(), "Zulerion");
    EXPECT_EQ(xHook, EdcFailureHook);
    CdeFILENAME catalog(ProgramFolder());
    catalog.AddName("Katalogy");
    catalog.AddName(".StavPrv.zec");
    EXPECT_STREQ(TZulHoleTypeCatalog(NULL).Path(), catalog);
}

TEST(Start, PutsTheToolsAboveTheDocumentAndTheStatusBelow)
{
    PROGRAM program;
    program.Show();
    int tools = TEdcApplication::toolBar->ClientToScreen({0, 0}).y;
    int document = program.Doc().ClientToScreen({0, 0}).y;
    int status = program.Bar().ClientToScreen({0, 0}).y;
    EXPECT_LT(tools, document);
    EXPECT_LT(document, status);
    EXPECT_GE(program.Doc().GetClientRect().Width(), 350 * TestScale()) << "the screen here is small";
    EXPECT_GE(program.Doc().GetClientRect().Height(), 250 * TestScale());
}

TEST(Menu, HasAllItsItemsInTheirOrder)
{
    PROGRAM program;
    program.Show();
    EXPECT_EQ(Texts(program.Frame(), 0), "20003 &Neu...\tStrg+N\n20005 \xD6&ffnen...\tStrg+O\n"
                                         "20007 S&chlie\xDF"
                                         "en\tStrg+F4\n20009 &Speichern\tStrg+S\n"
                                         "20011 Speichern &unter...\tStrg+Umschalt+S\n0 \n"
                                         "20013 &Drucken...\tStrg+P\n0 \n20001 &Beenden\tAlt+F4\n");
    EXPECT_EQ(Texts(program.Frame(), 1),
              "20023 &Aktualisierung...\tF5\n20019 &Vergr\xF6\xDF"
              "erung...\tStrg+G\n0 \n1503 &Einleitungstext\n1505 &Heizperiode\n1507 Ba&ukonstruktion\n"
              "1509 &W\xE4rmequellen\n1523 Ar&beitsbedingungen\n1527 &Schlu\xDFtext\n0 \n"
              "21003 W\xE4h&le alles aus\tStrg+A\n");
    EXPECT_EQ(Texts(program.Frame(), 2), "0 &Kataloge\n1511 &Bauelemente\n1513 &Warmluftaggregate\n");
    EXPECT_EQ(Texts(program.Frame(), 3),
              "1517 &Themen\tF1\n0 \n1519 &Kurze Vorgehensweise\n1521 &Zulerion ?\n");
    EXPECT_TRUE(testdoor::Menu(program.Frame(), 4).empty());
}

TEST(Menu, IsGreyWhereThereIsNoHallToWorkOn)
{
    PROGRAM program;
    program.Show();
    auto enabled = [&program] {
        std::string ids;
        for (int popup = 0; popup < 4; ++popup)
            for (const testdoor::MenuEntry &entry : testdoor::Menu(program.Frame(), popup))
                if (entry.enabled && entry.id != 0)
                    ids += std::to_string(entry.id) + " ";
        return ids;
    };
    EXPECT_EQ(enabled(), "20003 20005 20001 1511 1513 1517 1519 1521 ");
    program.OpenSample();
    EXPECT_EQ(enabled(), "20003 20005 20007 20009 20011 20013 20001 20023 20019 1503 1505 1507 1509 1523 1527 "
                         "1511 1513 1517 1519 1521 ");
    program.Doc().OpenBlock(program.Doc().RoomBlock());
    program.Doc().Refresh(0);
    EXPECT_NE(enabled().find("1527 21003 1511"), std::string::npos) << "all of a plan can be selected";
    program.Choose(20007);
    EXPECT_EQ(enabled(), "20003 20005 20001 1511 1513 1517 1519 1521 ");
}

TEST(Tools, HaveTheirTipsAndAreGreyWhereTheyCannotBeUsed)
{
    const struct {
        int command;
        const char *tip;
        const char *enabled; // without a hall, with one, with its floor plan open
    } table[] = {{21011, "Objekthandhabungsinstrument", "001"},
                 {21511, "Objektbildungsinstrument", "001"},
                 {21515, "Instrument zur Herstellung rechteckiger Objekte", "000"},
                 {21001, "Befehl zur Beseitigung ausgew\xE4hlter Objekte", "000"},
                 {2001, "Wahl der Infrastrahlerschicht", "001"},
                 {2501, "Wahl der Schicht der Warmluftaggregate", "000"},
                 {3001,
                  "Wahl der Bau\xF6"
                  "ffnungsschicht",
                  "001"},
                 {5001, "Wahl der Daueraufenthaltszonenschicht", "001"},
                 {20035,
                  "Befehl zur R\xFC"
                  "ckkehr ins Dokument",
                  "001"},
                 {1525, "Befehl zur Aktualisierung (Berechnung)", "011"}};
    PROGRAM program;
    program.Show();
    for (int state = 0; state < 3; ++state) {
        if (state == 1)
            program.OpenSample();
        if (state == 2)
            program.Doc().OpenBlock(program.Doc().RoomBlock());
        program.Doc().Refresh(0);
        testdoor::IdleStep();
        for (const auto &row : table) {
            std::vector<testdoor::Gadget> shown = testdoor::Gadgets(program.Frame(), row.command);
            ASSERT_EQ(shown.size(), 1u) << row.command;
            EXPECT_EQ(shown[0].tip, row.tip);
            EXPECT_EQ(shown[0].text, "") << "a picture, no letter";
            EXPECT_EQ(shown[0].enabled, row.enabled[state] == '1') << row.command << " in state " << state;
        }
    }
}

// The empty window

TEST(EmptyWindow, IsBlueWithTheLogoInItsMiddle)
{
    PROGRAM program;
    program.Show();
    for (TSize size : {TSize{900, 600}, TSize{640, 700}}) {
        TSize scaled = {static_cast<int>(size.cx * TestScale()), static_cast<int>(size.cy * TestScale())};
        testdoor::ResizeClient(program.Doc(), scaled);
        testdoor::Settle();
        TRect client = program.Doc().GetClientRect();
        for (TPoint corner : {TPoint{0, 0}, TPoint{client.right - 1, 0}, TPoint{0, client.bottom - 1},
                              TPoint{client.right - 1, client.bottom - 1}})
            EXPECT_EQ(testdoor::Pixel(program.Doc(), corner), blue);
        TRect logo = Logo(program.Doc());
        ASSERT_FALSE(logo.IsEmpty());
        EXPECT_GT(logo.Width(), client.Width() / 5);
        EXPECT_LT(std::abs(logo.left + logo.right - client.right), client.Width() / 10);
        EXPECT_LT(std::abs(logo.top + logo.bottom - client.bottom), client.Height() / 10);
        EXPECT_TRUE(LooksFresh(program.Doc()));
    }
}

TEST(EmptyWindow, ShrinksTheLogoWhereThereIsNoRoomForIt)
{
    PROGRAM program;
    program.Show();
    TRect whole = Logo(program.Doc());
    int small = static_cast<int>(300 * TestScale());
    testdoor::ResizeClient(program.Doc(), {small, small});
    testdoor::Settle();
    TRect client = program.Doc().GetClientRect();
    TRect logo = Logo(program.Doc());
    ASSERT_FALSE(logo.IsEmpty());
    EXPECT_LE(logo.right, client.right);
    if (whole.Width() > client.Width()) {
        EXPECT_LT(logo.Width(), whole.Width());
    }
    EXPECT_NEAR(static_cast<double>(logo.Height()) / logo.Width(),
                static_cast<double>(whole.Height()) / whole.Width(), 0.05);
}

TEST(EmptyWindow, ShowsTheLogosRevisionInTheBar)
{
    FOLDER folder;
    std::filesystem::copy(ZUL_PROGRAM_FOLDER "/Zulerio.lgo", folder.path);
    std::tm date = {};
    date.tm_year = 119;
    date.tm_mon = 6;
    date.tm_mday = 15;
    timespec times[2] = {};
    times[0].tv_sec = times[1].tv_sec = std::mktime(&date);
    ASSERT_EQ(utimensat(AT_FDCWD, folder.Path("Zulerio.lgo").c_str(), times, 0), 0);
    PROGRAM program(folder.path);
    program.Show();
    EXPECT_EQ(program.Bar().Text(), "Rev. 2019-07");
    EXPECT_GT(DarkPixels(program.Bar()), 20) << "the bar is painted behind the window's own paint event";
    EXPECT_TRUE(LooksFresh(program.Bar()));
    EXPECT_EQ(testdoor::Pixels(program.Bar()), testdoor::ShownPixels(program.Bar()));
    EXPECT_EQ(testdoor::Pixels(program.Doc()), testdoor::ShownPixels(program.Doc()));
}

TEST(EmptyWindow, PaintsItselfAndTheBarWhenBothAreUncoveredAtOnce)
{
    PROGRAM program;
    program.Show();
    std::vector<TColor> window = testdoor::ShownPixels(program.Doc());
    std::vector<TColor> bar = testdoor::ShownPixels(program.Bar());
    program.OpenSample();
    for (int i = 0; i < 3; ++i) {
        program.Choose(20007); // the paint event that follows sets the text of the bar
        EXPECT_EQ(testdoor::ShownPixels(program.Doc()), window);
        EXPECT_EQ(testdoor::ShownPixels(program.Bar()), bar);
        program.OpenSample();
        EXPECT_NE(testdoor::ShownPixels(program.Doc()), window);
        EXPECT_NE(testdoor::ShownPixels(program.Bar()), bar);
    }
}

TEST(EmptyWindow, SaysWhyAHallWasNotOpenedUntilTheNextOne)
{
    const std::string revision = RevisionOf(ZUL_PROGRAM_FOLDER "/Zulerio.lgo");
    FOLDER folder;
    folder.Put("kaputt.sc1", "x");
    PROGRAM program;
    program.Show();
    EXPECT_EQ(program.Bar().Text(), revision);
    for (bool isOpen : {false, true}) {
        if (isOpen)
            program.OpenSample();
        testdoor::Script([](testdoor::ModalBox &box) { box.Answer(WIN_ID_OK); });
        program.Open(folder.Path("kaputt.sc1"));
        EXPECT_NE(program.Bar().Text().find("kaputt.sc1"), std::string::npos) << program.Bar().Text();
        program.Doc().Invalidate();
        testdoor::Settle();
        EXPECT_NE(program.Bar().Text().find("kaputt.sc1"), std::string::npos) << program.Bar().Text();
        EXPECT_EQ(testdoor::Pixel(program.Doc(), {0, 0}), blue);
        program.OpenSample();
        EXPECT_EQ(program.Bar().Text(), "");
        program.Choose(20007);
        EXPECT_EQ(program.Bar().Text(), revision);
    }
}

// Keys and closing

TEST(Keys, F5UpdatesAndEscLeavesAnOpenedPlan)
{
    PROGRAM program;
    program.Show();
    testdoor::Key(program.Doc(), "F5");
    testdoor::Key(program.Doc(), "Esc");
    EXPECT_EQ(asked, 0) << "there is nothing to update";
    program.OpenSample();
    EXPECT_EQ(program.Frame().Caption(), "Zulerion - Werkstatt");
    testdoor::Key(program.Doc(), "F5");
    testdoor::Settle();
    EXPECT_EQ(asked, 1);
    EXPECT_NE(program.Doc().Parts()[16], nullptr);
    EXPECT_TRUE(testdoor::ClickGadget(program.Frame(), 1525));
    testdoor::Settle();
    EXPECT_EQ(asked, 2);
    program.Doc().OpenBlock(program.Doc().RoomBlock());
    program.Doc().Refresh(0);
    testdoor::Key(program.Doc(), "F5");
    testdoor::Settle();
    EXPECT_EQ(asked, 3);
    EXPECT_NE(program.Doc().openedBlk, nullptr);
    testdoor::Key(program.Doc(), "Esc");
    testdoor::Settle();
    EXPECT_EQ(program.Doc().openedBlk, nullptr);
    EXPECT_TRUE(LooksFresh(program.Doc()));
}

TEST(Closing, AsksForAChangedHall)
{
    PROGRAM program;
    program.Show();
    program.OpenSample();
    program.Doc().SetModified();
    testdoor::Script([](testdoor::ModalBox &box) {
        EXPECT_EQ(box.Caption(), "Zulerion");
        box.Answer(WIN_ID_CANCEL);
    });
    EXPECT_FALSE(program.Frame().CanClose());
    EXPECT_NE(program.Doc().Room(), nullptr);
    testdoor::Script([](testdoor::ModalBox &box) { box.Answer(WIN_ID_NO); });
    EXPECT_TRUE(program.Frame().CanClose());
    EXPECT_EQ(program.Doc().Room(), nullptr);
}

TEST(Closing, WithAPlanOpenTakesEverythingAlong)
{
    PROGRAM program;
    program.Show();
    program.OpenSample();
    testdoor::Key(program.Doc(), "F5");
    testdoor::Settle();
    program.Doc().OpenBlock(program.Doc().RoomBlock());
    program.Doc().Refresh(0);
    testdoor::Settle(); // the end of the test ends the program
    EXPECT_NE(program.Doc().openedBlk, nullptr);
}

// Without the logo

namespace
{
/// Runs the program's loop in a process of its own over that folder; what its message boxes say goes to
/// standard error, and after some time the window is closed.
ChildEnd RunProgram(const std::string &folder)
{
    return RunInChild([&folder] {
        PROGRAM program(folder);
        testdoor::Script([](testdoor::ModalBox &box) {
            std::fputs((box.Kind() + "|" + box.Text()).c_str(), stderr);
            box.Answer(WIN_ID_OK);
        });
        _exit(program.application->Run());
    });
}
} // namespace

TEST(WithoutItsLogo, TheProgramSaysSoAndEndsWithExitCode1)
{
    FOLDER folder;
    ChildEnd end = RunProgram(folder.path);
    EXPECT_EQ(end.exitCode, 1);
    const std::string message = "message|Datei \"" + folder.Path("Zulerio.lgo") +
                                "\" kann nicht ge\xF6"
                                "ffnet werden!\nWahrscheinlich falscher Name.";
    EXPECT_NE(end.err.find(message), std::string::npos) << end.err;
}

TEST(WithoutItsLogo, TheProgramEndsWhereTheFileIsDamagedToo)
{
    FOLDER folder;
    std::ifstream in(ZUL_PROGRAM_FOLDER "/Zulerio.lgo", std::ios::binary);
    std::string bytes((std::istreambuf_iterator<char>(in)), {});
    for (size_t length : {size_t{0}, size_t{10}, size_t{64}, size_t{100}}) {
        folder.Put("Zulerio.lgo", bytes.substr(0, length));
        ChildEnd end = RunProgram(folder.path);
        EXPECT_EQ(end.exitCode, 1) << length;
        EXPECT_NE(end.err.find("Zulerio.lgo"), std::string::npos) << end.err;
    }
}

TEST(WithoutItsLogo, TheProgramFileItselfEnds)
{
    FOLDER folder;
    const std::string program = folder.Path("Zulerion");
    std::filesystem::copy(ZUL_PROGRAM_FOLDER "/Zulerion", program);
    ChildEnd end = RunInChild([&program] {
        setenv("QT_QPA_PLATFORM", "offscreen", 1); // where the message answers itself
        execl(program.c_str(), program.c_str(), static_cast<char *>(NULL));
    });
    EXPECT_EQ(end.exitCode, 1) << end.err;
    EXPECT_EQ(folder.List(), std::set<std::string>{"Zulerion"}) << "it leaves nothing behind";
}
