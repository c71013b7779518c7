// The start of the program: the frame that is built from the pieces, the real menu and keys, and the accessors.
#include "lib/platform.h"
#include "support/child.h"
#include "usr/edcapp.h"
#include "usr/edcbase2.h"
#include "usr/edcutils.h"
#include "win/frame.h"
#include "win/gadgets.h"
#include "win/resources.h"
#include "win/testdoor.h"

#include <cstring>
#include <gtest/gtest.h>

#include "lib/xon.h"

namespace
{
/// A document that allows what it is told to and closes the window at the first idle turn.
class Document : public TEdcDocument
{
public:
    bool IdleAction(long count) override
    {
        bool more = TEdcDocument::IdleAction(count);
        if (atIdle)
            std::exchange(atIdle, std::function<void()>())();
        return more;
    }

    void EnableCommand(TCommandEnabler &ce) override
    {
        TEdcDocument::EnableCommand(ce);
        if (!ce.IsAnswered() && allowed.contains(ce.id))
            ce.Enable(true);
    }

    bool DoCommand(int id) override
    {
        heard += std::to_string(id) + " ";
        return TEdcDocument::DoCommand(id);
    }

    std::set<int> allowed;
    std::string heard;
    std::function<void()> atIdle;
};

struct Pieces {
    TControlBar tools;
    TStatusBar status;
    Document document;
};

/// What the start-up code makes; there is one, as the program has one.
std::unique_ptr<Pieces> pieces;
bool withDocument = true;
XCODE failWith = XNULL;

const struct {
    int picture;
    int command;
} buttons[] = {{1607, 21011}, {1603, 21511}, {1604, 21515}, {1606, 21001}, {1601, 2001},
               {1600, 2501},  {1602, 3001},  {1608, 5001},  {1605, 20035}, {1609, 1525}};

void StartUp()
{
    std::strcpy(TEdcApplication::title, "Zulerion");
    TEdcApplication::iconId = 1030;
    TEdcApplication::menuId = 1000;
    pieces = std::make_unique<Pieces>();
    for (const auto &button : buttons)
        pieces->tools.Insert(std::make_unique<TButtonGadget>(button.picture, button.command));
    TEdcApplication::toolBar = &pieces->tools;
    TEdcApplication::statusBar = &pieces->status;
    if (withDocument)
        SetAppDocument(&pieces->document);
    if (failWith != XNULL)
        XRaise(failWith, __FILE__, __LINE__);
}

class Start : public testing::Test
{
protected:
    Start()
    {
        withDocument = true;
        failWith = XNULL;
        TEdcApplication::startUp = StartUp;
        application = std::make_unique<TEdcApplication>(count, values);
    }

    ~Start() override
    {
        application.reset();
        if (HasAppDocument())
            SetAppDocument(NULL);
        pieces.reset();
        TEdcApplication::startUp = [] {};
        TEdcApplication::toolBar = NULL;
        TEdcApplication::statusBar = NULL;
        TEdcApplication::title[0] = '\0';
    }

    /// Runs the program; `look` is called in its loop, then the window is closed. @return the exit code
    int Run(const std::function<void()> &look)
    {
        inner = TEdcApplication::startUp;
        toLook = look;
        looked = false;
        TEdcApplication::startUp = [] {
            inner();
            pieces->document.atIdle = [] {
                looked = true;
                toLook();
                TApplication::Current()->MainWindow()->CloseWindow();
            };
        };
        return application->Run();
    }

    TDecoratedFrame &Frame() { return *application->MainWindow(); }

    static inline std::function<void()> toLook;
    static inline void (*inner)() = NULL;
    static inline bool looked = false;
    int count = 1;
    char name[5] = "test";
    char *values[2] = {name, NULL};
    std::unique_ptr<TEdcApplication> application;
};

std::string Texts(TDecoratedFrame &frame, int popup)
{
    std::string texts;
    for (const testdoor::MenuEntry &entry : testdoor::Menu(frame, popup))
        texts += std::to_string(entry.id) + " " + entry.text + "\n";
    return texts;
}
} // namespace

TEST_F(Start, BuildsTheFrameFromThePieces)
{
    int code = Run([this] {
        EXPECT_EQ(&Frame().Client(), &pieces->document);
        EXPECT_EQ(AppDocument(), &pieces->document);
        EXPECT_EQ(AppStatusBar(), &pieces->status);
        EXPECT_EQ(application->Name(), "Zulerion");
        EXPECT_EQ(Frame().Caption(), "Zulerion");
        EXPECT_TRUE(pieces->document.IsCreated());
        EXPECT_LT(pieces->tools.ClientToScreen({0, 0}).y, pieces->document.ClientToScreen({0, 0}).y);
        EXPECT_LT(pieces->document.ClientToScreen({0, 0}).y, pieces->status.ClientToScreen({0, 0}).y);
    });
    EXPECT_EQ(code, 0);
    EXPECT_TRUE(looked);
}

TEST_F(Start, MenuHasItsTextsAndKeys)
{
    Run([this] {
        EXPECT_EQ(Texts(Frame(), 0), "20003 &Neu...\tStrg+N\n"
                                     "20005 \326&ffnen...\tStrg+O\n"
                                     "20007 S&chlie\337en\tStrg+F4\n"
                                     "20009 &Speichern\tStrg+S\n"
                                     "20011 Speichern &unter...\tStrg+Umschalt+S\n"
                                     "0 \n"
                                     "20013 &Drucken...\tStrg+P\n"
                                     "0 \n"
                                     "20001 &Beenden\tAlt+F4\n");
        EXPECT_EQ(Texts(Frame(), 1), "20023 &Aktualisierung...\tF5\n"
                                     "20019 &Vergr\366\337erung...\tStrg+G\n"
                                     "0 \n"
                                     "1503 &Einleitungstext\n"
                                     "1505 &Heizperiode\n"
                                     "1507 Ba&ukonstruktion\n"
                                     "1509 &W\344rmequellen\n"
                                     "1523 Ar&beitsbedingungen\n"
                                     "1527 &Schlu\337text\n"
                                     "0 \n"
                                     "21003 W\344h&le alles aus\tStrg+A\n");
        EXPECT_EQ(Texts(Frame(), 2), "0 &Kataloge\n"
                                     "1511 &Bauelemente\n"
                                     "1513 &Warmluftaggregate\n");
        EXPECT_EQ(Texts(Frame(), 3), "1517 &Themen\tF1\n"
                                     "0 \n"
                                     "1519 &Kurze Vorgehensweise\n"
                                     "1521 &Zulerion ?\n");
    });
    EXPECT_TRUE(looked);
}

TEST_F(Start, WithoutADocumentMostOfTheMenuIsGrey)
{
    Run([this] {
        std::string enabled;
        for (int popup = 0; popup < 4; ++popup)
            for (const testdoor::MenuEntry &entry : testdoor::Menu(Frame(), popup))
                if (entry.enabled && entry.id)
                    enabled += std::to_string(entry.id) + " ";
        EXPECT_EQ(enabled, "20003 20005 20001 ");
        for (const auto &button : buttons)
            EXPECT_FALSE(testdoor::ClickGadget(Frame(), button.command)) << button.command;
    });
    EXPECT_TRUE(looked);
}

TEST_F(Start, ButtonsHavePicturesAndTooltips)
{
    const char *tips[] = {"Objekthandhabungsinstrument",
                          "Objektbildungsinstrument",
                          "Instrument zur Herstellung rechteckiger Objekte",
                          "Befehl zur Beseitigung ausgew\344hlter Objekte",
                          "Wahl der Infrastrahlerschicht",
                          "Wahl der Schicht der Warmluftaggregate",
                          "Wahl der Bau\366ffnungsschicht",
                          "Wahl der Daueraufenthaltszonenschicht",
                          "Befehl zur R\374ckkehr ins Dokument",
                          "Befehl zur Aktualisierung (Berechnung)"};
    Run([&] {
        for (size_t i = 0; i < std::size(buttons); ++i) {
            auto shown = testdoor::Gadgets(Frame(), buttons[i].command);
            ASSERT_EQ(shown.size(), 1u);
            EXPECT_EQ(shown[0].tip, tips[i]);
            EXPECT_EQ(shown[0].text, "") << "a picture, no letter";
        }
    });
    EXPECT_TRUE(looked);
}

TEST_F(Start, PicturesOfTheProgramAreSoundAndShowSomething)
{
    for (const auto &[id, side] : {std::pair(1600, 24),
                                   {1601, 24},
                                   {1602, 24},
                                   {1603, 24},
                                   {1604, 24},
                                   {1605, 24},
                                   {1606, 24},
                                   {1607, 24},
                                   {1608, 24},
                                   {1609, 24},
                                   {1030, 32},
                                   {20299, 32}}) {
        for (double scale : {1.0, 1.25, 2.0}) {
            TDrawnPicture drawn = DrawPicture(id, scale);
            EXPECT_EQ(drawn.size, (TSize{static_cast<int>(side * scale), static_cast<int>(side * scale)}))
                << id;
            auto seen = std::count_if(drawn.pixels.begin(), drawn.pixels.end(),
                                      [](uint32_t pixel) { return pixel >> 24 == 255; });
            EXPECT_GT(seen, drawn.size.cx * drawn.size.cy / 10) << id;
            EXPECT_LT(seen, drawn.size.cx * drawn.size.cy) << id << " leaves corners free";
        }
    }
}

TEST_F(Start, KeysAndButtonsReachTheDocument)
{
    Run([this] {
        pieces->document.allowed = {1517, 21003, 21001, 1525};
        for (const char *key : {"F1", "Ctrl+A", "Del", "F5", "Ctrl+P"})
            testdoor::Key(pieces->document, key);
        testdoor::IdleStep();
        EXPECT_TRUE(testdoor::ClickGadget(Frame(), 1525));
        EXPECT_EQ(pieces->document.heard, "1517 21003 21001 1525 ");
    });
    EXPECT_TRUE(looked);
}

TEST_F(Start, StatusTextsGoToTheStatusBar)
{
    Run([] {
        StatusMessage("Auswertung %d", 7);
        EXPECT_EQ(pieces->status.Text(), "Auswertung 7");
        StatusMessage("!laut");
        EXPECT_EQ(pieces->status.Text(), "laut");
        StatusMessage(NULL);
        EXPECT_EQ(pieces->status.Text(), "");
    });
    EXPECT_TRUE(looked);
}

TEST_F(Start, FailuresAreReportedInTheProgramsWords)
{
    testdoor::Script([](testdoor::ModalBox &box) {
        EXPECT_EQ(box.Text(), "Ungenug Speicher!");
        EXPECT_EQ(box.Caption(), "Zulerion");
        box.Answer(1);
    });
    Run([] {
        __enter
            __raise(XALLOC);
        __point
            __repair;
            __report;
        __treat
    });
    EXPECT_EQ(testdoor::PendingScripts(), 0);
    EXPECT_TRUE(looked);
}

TEST_F(Start, FailureOfTheStartUpCodeEndsTheProgram)
{
    failWith = XALLOC;
    testdoor::Script([](testdoor::ModalBox &box) {
        EXPECT_EQ(box.Text(), "Ungenug Speicher!");
        box.Answer(1);
    });
    EXPECT_NE(application->Run(), 0);
    EXPECT_EQ(testdoor::PendingScripts(), 0);
    EXPECT_EQ(application->MainWindow(), static_cast<TDecoratedFrame *>(NULL));
}

TEST_F(Start, PiecesMayBeMissing)
{
    TEdcApplication::startUp = [] {
        pieces = std::make_unique<Pieces>();
        SetAppDocument(&pieces->document);
        TEdcApplication::menuId = 0;
        TEdcApplication::iconId = 0;
    };
    EXPECT_EQ(Run([this] {
                  EXPECT_TRUE(testdoor::Menu(Frame(), 0).empty());
                  EXPECT_EQ(AppStatusBar(), static_cast<TStatusBar *>(NULL));
                  StatusMessage("niemand sieht das");
              }),
              0);
    EXPECT_TRUE(looked);
}

TEST(Accessors, OneDocumentAtATime)
{
    EXPECT_FALSE(HasAppDocument());
    EXPECT_TRUE(AbortsOnAssertion("appDocumentWin != NULL", "usr/edcapp.cpp", [] { AppDocument(); }));
    Document first, second;
    SetAppDocument(&first);
    EXPECT_TRUE(HasAppDocument());
    EXPECT_EQ(AppDocument(), &first);
    EXPECT_TRUE(
        AbortsOnAssertion("appDocumentWin == NULL", "usr/edcapp.cpp", [&] { SetAppDocument(&second); }));
    SetAppDocument(NULL);
    EXPECT_FALSE(HasAppDocument());
    SetAppDocument(&second);
    SetAppDocument(NULL);
}

TEST(Accessors, DocumentThatDiesTakesItselfOff)
{
    {
        Document document;
        SetAppDocument(&document);
    }
    EXPECT_FALSE(HasAppDocument());
}

TEST_F(Start, MissingDocumentIsAnAssertion)
{
    withDocument = false;
    EXPECT_TRUE(AbortsOnAssertion("appDocumentWin != NULL", "usr/edcapp.cpp", [this] {
        SetMessageSink(NULL);
        SetTerminateSink(NULL);
        application->InitMainWindow();
    }));
}
