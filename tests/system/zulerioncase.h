// The whole program for a test: the frame that its start-up code and its application make, over the program
// folder of the build. Only the loop is missing; turns of it come from the test door. A test acts as a person
// does, with keys, mouse, menus and boxes, and reads what a person sees. Texts are UTF-8 here.
#ifndef TESTS_SYSTEM_ZULERIONCASE_H
#define TESTS_SYSTEM_ZULERIONCASE_H

#include "lib/disk.h"
#include "lib/platform.h"
#include "lib/xfail.h"
#include "support/folder.h"
#include "support/freshpaint.h"
#include "support/reportlines.h"
#include "support/runprogram.h"
#include "support/testapp.h"
#include "usr/edcapp.h"
#include "usr/zuldoc.h"
#include "win/boxes.h"
#include "win/frame.h"
#include "win/gadgets.h"
#include "win/testdialog.h"
#include "win/testdoor.h"
#include "win/utf8.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

class Zulerion : public testing::Test
{
protected:
    enum Command {
        NEW = 20003,
        OPEN = 20005,
        CLOSE = 20007,
        SAVE = 20009,
        SAVE_AS = 20011,
        PRINT = 20013,
        ZOOM = 20019,
        RECALC = 20023,
        BACK = 20035,
        ARTICLE = 1503,
        PERIOD = 1505,
        INSULATION = 1507,
        ENERGY = 1509,
        HYGIENE = 1523,
        UPDATE_BUTTON = 1525,
        CONCLUSION = 1527,
    };
    using USER = std::function<void(testdoor::DialogBox &)>;

    Zulerion() { Start(ZUL_PROGRAM_FOLDER); }
    ~Zulerion() override
    {
        if (application)
            End();
    }

    /// The program in that folder, shown and settled.
    void Start(const std::string &native)
    {
        programFolder = native;
        TEdcApplication::startUp = [] {
            SetProgramPath((programFolder + "/Zulerion").c_str()); // the test itself lies elsewhere
            ZulStartUp();
        };
        application = std::make_unique<TEdcApplication>(argc, argv);
        testdoor::Enable();
        testdoor::PendingScripts();
        testdoor::UnexpectedBoxes();
        application->InitMainWindow();
        ASSERT_STREQ(xCode, XNULL);
        Frame().Create();
        testdoor::Settle();
    }
    void End()
    {
        EXPECT_EQ(testdoor::PendingScripts(), 0) << "a script waited for a box that never came";
        EXPECT_EQ(testdoor::UnexpectedBoxes(), 0);
        ZulShutDown();
        application.reset();
        TEdcApplication::startUp = [] {};
        TEdcApplication::title[0] = '\0';
        TEdcApplication::iconId = TEdcApplication::menuId = 0;
    }

    TDecoratedFrame &Frame() { return *application->MainWindow(); }
    TZulDoc &Doc() { return *static_cast<TZulDoc *>(AppDocument()); }
    std::string Caption() { return ToUtf8(Frame().Caption().c_str()); }
    std::string Status() { return ToUtf8(AppStatusBar()->Text().c_str()); }

    // Acts.

    void Choose(int command)
    {
        testdoor::ChooseMenu(Frame(), command);
        testdoor::Settle();
    }
    void Key(const char *key)
    {
        testdoor::Key(Doc(), key);
        testdoor::Settle();
    }
    bool Press(int gadget)
    {
        testdoor::IdleStep(); // the bar's buttons are enabled in idle time
        bool pressed = testdoor::ClickGadget(Frame(), gadget);
        testdoor::Settle();
        return pressed;
    }

    // What the next box is, and what happens in it.

    static void InDialog(const std::string &caption, const USER &user)
    {
        testdoor::Script([=](testdoor::ModalBox &face) {
            EXPECT_EQ(face.Kind(), "dialog");
            EXPECT_EQ(ToUtf8(face.Caption().c_str()), caption);
            testdoor::DialogBox box(face);
            user(box);
        });
    }
    /// A message of the program; what it says is kept in `said`.
    void Expect(int answer = WIN_ID_OK)
    {
        testdoor::Script([=, this](testdoor::ModalBox &face) {
            EXPECT_EQ(face.Kind(), "message");
            EXPECT_EQ(face.Caption(), "Zulerion");
            said = ToUtf8(face.Text().c_str());
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
    /// Does something in a dialog and answers the message that it brings. @return what it says
    static std::string SaidWhile(const std::function<void()> &act)
    {
        std::string text;
        testdoor::Script([&text](testdoor::ModalBox &face) {
            EXPECT_EQ(face.Kind(), "message");
            text = ToUtf8(face.Text().c_str());
            face.Answer(WIN_ID_OK);
        });
        act();
        return text;
    }

    // Roads that many tests begin with.

    static std::string Sample(const std::string &name)
    {
        return std::string(ZUL_PROGRAM_FOLDER "/Beispiele/") + name + ".sc1";
    }
    void OpenHall(const std::string &native)
    {
        ChooseFile("open", native);
        Key("Ctrl+O");
    }
    void OpenSample(const std::string &name)
    {
        OpenHall(Sample(name));
        ASSERT_NE(Doc().Room(), nullptr);
    }
    void NewHall(const char *length = "20", const char *width = "12", const char *height = "6")
    {
        InDialog("Neu", [=](testdoor::DialogBox &box) {
            box.Type(100, length);
            box.Type(101, width);
            box.Type(102, height);
            box.Click(WIN_ID_OK);
        });
        Key("Ctrl+N");
        ASSERT_NE(Doc().Room(), nullptr);
    }
    /// F5, this in the dialog, and OK.
    void Update(const USER &user = [](testdoor::DialogBox &) {})
    {
        InDialog("Aktualisierung", [=](testdoor::DialogBox &box) {
            user(box);
            box.Click(WIN_ID_OK);
        });
        Key("F5");
    }
    void CancelUpdate()
    {
        InDialog("Aktualisierung", [](testdoor::DialogBox &box) { box.Press("Esc"); });
        Key("F5");
    }
    /// One of the dialogs over the hall's data: this in it, and OK.
    void Edit(int command, const std::string &caption, const USER &user)
    {
        InDialog(caption, [=](testdoor::DialogBox &box) {
            user(box);
            box.Click(WIN_ID_OK);
        });
        Choose(command);
    }
    /// Prints into a PDF of the test's folder. @return its native path
    std::string Print(int from = 0, int to = 0)
    {
        std::string pdf = folder.Path("bericht.pdf");
        std::filesystem::remove(pdf);
        testdoor::Script([=](testdoor::ModalBox &face) {
            EXPECT_EQ(face.Kind(), "print");
            face.FileName(pdf);
            if (from != 0)
                face.Pages(from, to);
            face.Answer(WIN_ID_OK);
        });
        Key("Ctrl+P");
        return pdf;
    }
    Lines Report() { return Lines(Print()); }

    /// What zulcalc says of a hall.
    nlohmann::json Figures(std::vector<std::string> args)
    {
        args.insert(args.begin(), {ZUL_PROGRAM_FOLDER "/zulcalc", "--json", "-"});
        return nlohmann::json::parse(RunProgram(args, folder.path).out);
    }

    // What a person sees.

    /// Brings the block's upper edge to that of the window, as far as the range goes.
    void ScrollTo(const TEdcBlock *blk)
    {
        Doc().Scroller()->ScrollTo(0, blk->rect.y);
        testdoor::Settle();
    }
    TPoint Middle(const TEdcBlock *blk)
    {
        TRect place = Doc().ToWindow(blk->rect.Rect());
        return {(place.left + place.right) / 2, (place.top + place.bottom) / 2};
    }
    /// Pixels of the window in that colour.
    long CountPixels(const TColor &color)
    {
        std::vector<TColor> pixels = testdoor::Pixels(Doc());
        return std::count(pixels.begin(), pixels.end(), color);
    }
    /// Behind a message that tells of a failure the window is painted a moment later.
    void SettleBehindMessages()
    {
        enum { TRIES = 400 };
        testdoor::Settle();
        for (int i = 0; i < TRIES && Doc().NeedsPaint(); ++i) {
            usleep(5000);
            testdoor::Settle();
        }
    }
    bool IsBlue() { return testdoor::Pixel(Doc(), {0, 0}) == TColor{0, 0, 128}; }
    testing::AssertionResult IsEmptyWindow()
    {
        if (Doc().Room() != NULL || Caption() != "Zulerion")
            return testing::AssertionFailure() << "there is a hall: " << Caption();
        if (Doc().IsScrollBarEnabled(WIN_BAR_VERTICAL))
            return testing::AssertionFailure() << "it scrolls";
        SettleBehindMessages();
        if (!IsBlue())
            return testing::AssertionFailure() << "it is not blue";
        return testing::AssertionSuccess();
    }

    FOLDER folder;
    std::unique_ptr<TEdcApplication> application;
    std::string said; // by the last message box

private:
    static inline std::string programFolder; // native
    int argc = 1;
    char program[9] = "Zulerion";
    char *argv[2] = {program, NULL};
};

#endif
