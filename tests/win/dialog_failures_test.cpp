// What fails in a dialog, and what happens to the program round it meanwhile.
#include "dialogfixture.h"
#include "frameclient.h"

#include <memory>
#include <new>
#include <vector>

#include "lib/xon.h"

namespace
{
void Raise(XCODE code)
{
    __enter
        __raise(code);
    __point
    __treat
}

void TakeOff()
{
    xCode = XNULL;
}

const std::function<void()> failures[] = {
    [] { Raise(XALLOC); },
    [] { throw std::bad_alloc(); },
    [] { throw 1; },
};

TEST_F(Dialogs, AFailureInAHandlerIsShownAndTheDialogStaysUp)
{
    for (const std::function<void()> &failure : failures) {
        Numbers numbers(diary);
        bool armed = true;
        numbers.dialog.onMessage = [&](const TDialogMessage &message) {
            if (std::exchange(armed, message.kind != TDialogMessage::INIT))
                failure();
        };
        reports = 0;
        Play([&](testdoor::DialogBox &box) {
            EXPECT_EQ(reports, 1) << "the INIT message";
            box.Click(3);
            EXPECT_EQ(reports, 1);
            armed = true;
            box.Click(3);
            EXPECT_EQ(reports, 2);
            armed = true;
            box.CloseByFrame();
            EXPECT_EQ(reports, 3);
            armed = true;
            box.Press("Esc");
            EXPECT_EQ(reports, 4);
            numbers.dialog.PostNotify(1, 2);
            armed = true;
            testdoor::Settle();
            EXPECT_EQ(reports, 5);
            EXPECT_TRUE(box.IsShown(10));
            armed = false;
            box.Click(1);
        });
        EXPECT_EQ(numbers.dialog.Execute(), WIN_ID_OK);
        EXPECT_STREQ(xCode, XNULL);
    }
}

TEST_F(Dialogs, AFailureWhileItClosesKeepsTheDialogOpen)
{
    for (const std::function<void()> &failure : failures) {
        Numbers numbers(diary);
        Play([&](testdoor::DialogBox &box) {
            reports = 0;
            diary.Read();
            numbers.second->onAsked = failure;
            box.Click(1);
            EXPECT_EQ(diary.Read(), "command1/0 ask10 ask11");
            EXPECT_EQ(reports, 1);
            numbers.second->onAsked = NULL;
            numbers.first->onTransfer = failure;
            box.Click(1);
            EXPECT_EQ(diary.Read(), "command1/0 ask10 ask11 get10");
            EXPECT_EQ(reports, 2);
            numbers.first->onTransfer = NULL;
            box.Click(1);
        });
        EXPECT_EQ(numbers.dialog.Execute(), WIN_ID_OK);
    }
}

TEST_F(Dialogs, AFailureInAControlComesBeforeTheDialogHears)
{
    HearingDialog dialog(NUMBERS, diary);
    auto *button = new HearingButton(&dialog, 3, diary);
    Play([&](testdoor::DialogBox &box) {
        diary.Read();
        button->onNotify = [] { Raise(XALLOC); };
        box.Click(3);
        EXPECT_EQ(diary.Read(), "notify3/0");
        EXPECT_EQ(reports, 1);
        button->onNotify = [&] { dialog.Destroy(4); };
        box.Click(3);
        EXPECT_EQ(diary.Read(), "notify3/0") << "a control that ends the dialog has the last word";
    });
    EXPECT_EQ(dialog.Execute(), 4);
}

TEST_F(Dialogs, AWindowThatCannotBeSetUpIsLeftPendingAndNeverShown)
{
    for (const std::function<void()> &failure : failures) {
        Numbers numbers(diary);
        struct {
            std::function<void()> &where;
            const char *heard;
        } rows[] = {
            {numbers.second->onSetup, "setup10 setup11 cleanup10 cleanup11"},
            {numbers.first->onTransfer, "setup10 setup11 set10 cleanup10 cleanup11"},
        };
        for (auto &row : rows) {
            for (bool modal : {true, false}) {
                diary.Read();
                row.where = failure;
                if (modal) {
                    EXPECT_EQ(numbers.dialog.Execute(), WIN_ID_CANCEL);
                } else {
                    numbers.dialog.Create();
                }
                row.where = NULL;
                EXPECT_NE(xCode, XNULL);
                TakeOff();
                EXPECT_EQ(diary.Read(), row.heard);
                EXPECT_FALSE(numbers.dialog.IsCreated());
                EXPECT_FALSE(numbers.first->IsCreated());
            }
        }
        Play([](testdoor::DialogBox &box) { box.Click(1); });
        EXPECT_EQ(numbers.dialog.Execute(), WIN_ID_OK) << "the next time it is there";
    }
    EXPECT_EQ(reports, 0);
}

TEST_F(Dialogs, NoDialogComesUpWhileAFailureIsPendingOrRepaired)
{
    Numbers numbers(diary);
    Raise(XLIMIT);
    EXPECT_EQ(numbers.dialog.Execute(), WIN_ID_CANCEL);
    numbers.dialog.Create();
    EXPECT_FALSE(numbers.dialog.IsCreated());
    TakeOff();
    int result = 0;
    __enter
        __raise(XLIMIT);
    __point
        result = numbers.dialog.Execute();
        numbers.dialog.Create();
        __repair;
    __treat
    EXPECT_EQ(result, WIN_ID_CANCEL);
    EXPECT_FALSE(numbers.dialog.IsCreated());
    EXPECT_EQ(diary.Read(), "");
}

/// While it stands over a repair section, a box has the user's attention.
TEST_F(Dialogs, OverARepairSectionADialogTakesNoInput)
{
    Numbers numbers(diary);
    Play([&](testdoor::DialogBox &box) {
        diary.Read();
        __enter
            __raise(XLIMIT);
        __point
            box.Click(3);
            box.Press("Return");
            box.Press("Esc");
            box.CloseByFrame();
            numbers.dialog.PostNotify(1, 2);
            testdoor::Settle();
            __repair;
        __treat
        EXPECT_EQ(diary.Read(), "");
        bool arrived = false;
        numbers.dialog.onMessage = [&](const TDialogMessage &) { arrived = true; };
        while (!arrived)
            testdoor::Settle();
        EXPECT_EQ(diary.Read(), "notice1/2") << "it waits for the end of the section";
        numbers.dialog.Destroy(6);
    });
    EXPECT_EQ(numbers.dialog.Execute(), 6);
}

/// Fails at its n-th step, in every way that there is.
class Steps
{
public:
    void Arm(int n, const std::function<void()> &aFailure)
    {
        left = n;
        failure = aFailure;
    }
    void operator()()
    {
        if (left > 0 && --left == 0)
            failure();
    }
    bool Fired() const { return left == 0; }

private:
    int left = 0;
    std::function<void()> failure;
};

TEST_F(Dialogs, WhereverARunFailsItLeavesNothingBehind)
{
    int swept = 0;
    for (const std::function<void()> &failure : failures) {
        bool more = true;
        for (int n = 1; more; ++n) {
            SCOPED_TRACE(n);
            Steps step;
            Numbers numbers(diary);
            for (NumberField *field : {numbers.first, numbers.second})
                field->onSetup = field->onTransfer = field->onAsked = [&step] { step(); };
            numbers.dialog.onMessage = [&step](const TDialogMessage &) { step(); };
            reports = 0;
            step.Arm(n, failure);
            Play([&](testdoor::DialogBox &box) {
                box.Type(10, "56");
                box.Click(3);
                box.Click(1);
                if (numbers.dialog.IsCreated())
                    box.Press("Esc");
                box.Press("Esc");
            });
            numbers.dialog.Execute();
            more = step.Fired();
            swept += more;
            bool pending = xCode != XNULL;
            if (pending)
                testdoor::PendingScripts();
            TakeOff();
            EXPECT_EQ(reports + pending, more ? 1 : 0);
            EXPECT_EQ(xDepth, 0);
            EXPECT_FALSE(numbers.dialog.IsCreated());
            EXPECT_FALSE(numbers.first->IsCreated());
        }
    }
    EXPECT_GE(swept, 3 * 10);
}

// Notices and commands of the program.

TEST_F(Dialogs, ANoticeComesOnceTheMessageIsDone)
{
    Numbers numbers(diary);
    numbers.dialog.onMessage = [&](const TDialogMessage &message) {
        if (message.kind == TDialogMessage::COMMAND && message.id == 3) {
            numbers.dialog.PostNotify(1, 5);
            numbers.dialog.PostNotify(2, 6);
            testdoor::Settle(); // a loop within, as a box has one
            diary.Write("done");
        }
    };
    Play([&](testdoor::DialogBox &box) {
        diary.Read();
        box.Click(3);
        EXPECT_EQ(diary.Read(), "command3/0 done");
        testdoor::Settle();
        EXPECT_EQ(diary.Read(), "notice1/5 notice2/6");
        numbers.dialog.PostNotify(3, 7);
        box.Press("Esc");
    });
    numbers.dialog.Execute();
    testdoor::Settle();
    EXPECT_EQ(diary.Read(), "key2/0 cleanup10 cleanup11") << "behind the end no notice comes";
    numbers.dialog.PostNotify(4, 8);
    testdoor::Settle();
    EXPECT_EQ(diary.Read(), "");
}

TEST_F(Dialogs, ASentCommandTakesTheWayOfAReportedOne)
{
    HearingDialog dialog(NUMBERS, diary);
    auto *button = new HearingButton(&dialog, 3, diary);
    dialog.SendCommand(NULL, WIN_BN_CLICKED);
    Play([&](testdoor::DialogBox &box) {
        diary.Read();
        dialog.SendCommand(button->GetHandle(), WIN_BN_DBLCLK);
        EXPECT_EQ(diary.Read(), "notify3/5 command3/5");
        dialog.SendCommand(dialog.Item(11), 300);
        EXPECT_EQ(diary.Read(), "command11/300");
        box.Press("Esc");
    });
    dialog.Execute();
}

// Without waiting.

TEST_F(Dialogs, ACreatedDialogWorksWhileTheProgramGoesOn)
{
    Numbers numbers(diary);
    numbers.dialog.Create();
    testdoor::Settle();
    EXPECT_EQ(diary.Read(), "setup10 setup11 set10 set11 init");
    EXPECT_TRUE(numbers.dialog.IsCreated());
    EXPECT_FALSE(numbers.dialog.IsModal());
    {
        testdoor::DialogBox box(numbers.dialog);
        EXPECT_EQ(box.Focus(), 10);
        box.Type(10, "56");
        box.Click(1);
    }
    EXPECT_EQ(diary.Read(), "command1/0 ask10 ask11 get10 get11 cleanup10 cleanup11");
    EXPECT_FALSE(numbers.dialog.IsCreated());
    EXPECT_EQ(numbers.record.first, 56);
    testdoor::Settle();
    numbers.dialog.Create();
    testdoor::Settle();
    EXPECT_EQ(testdoor::DialogBox(numbers.dialog).Text(10), "56");
    testdoor::DialogBox(numbers.dialog).Press("Esc");
    EXPECT_FALSE(numbers.dialog.IsCreated());
}

TEST_F(Dialogs, ACreatedDialogCanBeRunAfterwards)
{
    Numbers numbers(diary);
    numbers.dialog.Create();
    numbers.dialog.Create();
    EXPECT_EQ(diary.Read(), "setup10 setup11 set10 set11 init") << "twice is once";
    numbers.dialog.Destroy(4);
    Play([](testdoor::DialogBox &box) { box.Click(1); });
    EXPECT_EQ(numbers.dialog.Execute(), WIN_ID_OK);
}

TEST_F(Dialogs, ADialogThatDeletesItselfGoesInALaterTurn)
{
    auto *numbers = new HearingDialog(NUMBERS, diary);
    new NumberField(numbers, 10, diary);
    numbers->SetAutoDelete(true);
    numbers->Create();
    testdoor::Settle();
    testdoor::DialogBox(*numbers).Click(2);
    EXPECT_EQ(diary.Read(), "setup10 init command2/0 cleanup10");
    EXPECT_FALSE(numbers->IsCreated());
    testdoor::Settle();
    EXPECT_EQ(diary.Read(), "gone");
}

TEST_F(Dialogs, ARefusingDialogIsNotDeleted)
{
    auto *numbers = new HearingDialog(NUMBERS, diary);
    auto *field = new NumberField(numbers, 10, diary);
    int record = 1;
    numbers->SetTransferRecord(&record);
    numbers->SetAutoDelete(true);
    numbers->Create();
    testdoor::Settle();
    field->mayClose = false;
    testdoor::DialogBox(*numbers).Click(1);
    testdoor::Settle();
    EXPECT_EQ(diary.Read(), "setup10 set10 init command1/0 ask10");
    field->mayClose = true;
    testdoor::DialogBox(*numbers).Click(1);
    testdoor::Settle();
    EXPECT_EQ(diary.Read(), "command1/0 ask10 get10 cleanup10 gone");
}

/// The loop of a box within a handler of the dialog must leave it alone.
TEST_F(Dialogs, ADialogIsNotDeletedUnderItsOwnHandler)
{
    auto *dialog = new HearingDialog(NUMBERS, diary);
    dialog->SetAutoDelete(true);
    dialog->onMessage = [&, dialog](const TDialogMessage &message) {
        if (message.kind != TDialogMessage::COMMAND)
            return;
        dialog->Destroy(1);
        testdoor::Script([](testdoor::ModalBox &box) { box.Answer(WIN_ID_OK); });
        MessageBox(NULL, "Text", "Kopf", WIN_BOX_OK, WIN_ICON_NONE);
        diary.Write("done");
    };
    dialog->Create();
    testdoor::Settle();
    diary.Read();
    testdoor::DialogBox(*dialog).Click(3);
    EXPECT_EQ(diary.Read(), "command3/0 done");
    testdoor::Settle();
    EXPECT_EQ(diary.Read(), "gone");
}

TEST_F(Dialogs, AShownDialogMayBeDeleted)
{
    auto numbers = std::make_unique<Numbers>(diary);
    numbers->dialog.Create();
    numbers->dialog.PostNotify(1, 2);
    numbers.reset();
    EXPECT_EQ(diary.Read(), "setup10 setup11 set10 set11 init gone cleanup10 cleanup11");
    testdoor::Settle();
}

TEST_F(Dialogs, AShownDialogMayBeDeletedByItsOwnHandler)
{
    class Ending : public HearingDialog
    {
    public:
        using HearingDialog::HearingDialog;
        void DialogProc(const TDialogMessage &message) override
        {
            if (message.kind == TDialogMessage::COMMAND)
                delete this;
        }
    };
    auto *dialog = new Ending(NUMBERS, diary);
    dialog->Create();
    testdoor::Settle();
    testdoor::DialogBox(*dialog).Click(3);
    EXPECT_EQ(diary.Read(), "gone");
    testdoor::Settle();
}

TEST_F(Dialogs, CondemnedWindowsGoInALaterTurnOfTheSameLoop)
{
    Numbers numbers(diary);
    Play([&](testdoor::DialogBox &) {
        diary.Read();
        TestApplication().Condemn(new HearingDialog(NUMBERS, diary));
        TestApplication().Condemn(new HearingDialog(NUMBERS, diary));
        testdoor::Script([](testdoor::ModalBox &message) { message.Answer(WIN_ID_OK); });
        MessageBox(NULL, "Text", "Kopf", WIN_BOX_OK, WIN_ICON_NONE);
        EXPECT_EQ(diary.Read(), "") << "the loop of a box within is not the same";
        Play([&](testdoor::DialogBox &) {
            EXPECT_EQ(diary.Read(), "gone gone");
            numbers.dialog.Destroy(2);
        });
    });
    numbers.dialog.Execute();
}

// The main window.

/// Counts the presses of the mouse.
class PressedClient : public FrameClient
{
public:
    int presses = 0;
    void EvLButtonDown(unsigned, TPoint) override { ++presses; }
};

/// A main window on the screen, and the dialogs again over its resources.
struct Desktop {
    Desktop() : frame(new TDecoratedFrame("Fenster", client))
    {
        AddNumbers(tables);
        TestApplication().SetMainWindow(frame.get());
        frame->Create();
        testdoor::Settle();
    }
    ~Desktop()
    {
        TestApplication().SetMainWindow(NULL);
        frame.reset();
    }

    ClientResources resources;
    DialogTables tables;
    PressedClient client;
    std::unique_ptr<TDecoratedFrame> frame;
};

TEST_F(Dialogs, TheMainWindowHasNoMouseUnderAModalDialog)
{
    Desktop desktop;
    Numbers numbers(diary);
    Play([&](testdoor::DialogBox &box) {
        testdoor::DesktopClick(desktop.client, {5, 5});
        EXPECT_EQ(desktop.client.presses, 0);
        box.Press("Esc");
    });
    numbers.dialog.Execute();
    testdoor::Settle();
    testdoor::DesktopClick(desktop.client, {5, 5});
    EXPECT_EQ(desktop.client.presses, 1);
    numbers.dialog.Create();
    testdoor::Settle();
    testdoor::DesktopClick(desktop.client, {5, 5});
    EXPECT_EQ(desktop.client.presses, 2) << "one that does not wait leaves the mouse to the others";
    numbers.dialog.Destroy(2);
}

TEST_F(Dialogs, ADialogEndsWithTheProgram)
{
    Desktop desktop;
    Numbers numbers(diary);
    int result = 0;
    desktop.client.onCommand = [&](int) {
        result = numbers.dialog.Execute();
        EXPECT_FALSE(numbers.dialog.IsCreated());
    };
    Play([&](testdoor::DialogBox &) { desktop.frame->CloseWindow(); });
    desktop.frame->PostCommand(1);
    EXPECT_EQ(TestApplication().Run(), 0);
    EXPECT_EQ(result, WIN_ID_CANCEL);
}

TEST_F(Dialogs, ADialogEndsWithTheWindowThatItStandsOver)
{
    Desktop desktop;
    Numbers modal(diary);
    auto *alone = new HearingDialog(NUMBERS, diary);
    alone->SetAutoDelete(true);
    alone->Create();
    testdoor::Settle();
    Play([&](testdoor::DialogBox &) {
        diary.Read();
        TestApplication().SetMainWindow(NULL);
        desktop.frame.reset();
    });
    EXPECT_EQ(modal.dialog.Execute(), WIN_ID_CANCEL);
    EXPECT_FALSE(modal.dialog.IsCreated());
    EXPECT_FALSE(modal.first->IsCreated());
    testdoor::Settle();
    EXPECT_EQ(diary.Read(), "cleanup10 cleanup11 gone");
}

TEST_F(Dialogs, AParentThatHasGoneLeavesTheDialogToItself)
{
    auto owner = std::make_unique<TWindow>();
    HearingDialog dialog(NUMBERS, diary, owner.get());
    owner.reset();
    Play([](testdoor::DialogBox &box) { box.Click(2); });
    EXPECT_EQ(dialog.Execute(), WIN_ID_CANCEL);
}

/// The window asks its dialogs, too, whether it may close. One that is not up has nothing against it.
TEST_F(Dialogs, OnlyADialogThatIsUpCanRefuseForItsParent)
{
    TWindow owner;
    HearingDialog dialog(NUMBERS, diary, &owner);
    auto *field = new NumberField(&dialog, 10, diary);
    field->mayClose = false;
    EXPECT_TRUE(dialog.CanClose());
    dialog.Create();
    EXPECT_FALSE(dialog.CanClose());
    dialog.Destroy(2);
    EXPECT_TRUE(dialog.CanClose());
    EXPECT_EQ(diary.Read(), "setup10 init ask10 cleanup10");
}

// How scripts see dialogs.

TEST_F(Dialogs, ADialogThatNoScriptExpectsEndsWhateverItMakesOfEsc)
{
    HearingDialog dialog(NUMBERS, diary);
    dialog.passive = true;
    EXPECT_EQ(dialog.Execute(), WIN_ID_CANCEL);
    EXPECT_EQ(testdoor::UnexpectedBoxes(), 1);
    EXPECT_EQ(diary.Read(), "init key2/0");
}

TEST_F(Dialogs, AnAnswerIsAClickOnAButtonThatIsThere)
{
    tables.Add(7002, "Kopf",
               {Line(RES_BUTTON, 3, "Grau", RES_GREY), Line(RES_BUTTON, 4, "Verborgen", RES_HIDDEN),
                Line(RES_CHECK, 5, "Keiner"), Line(RES_BUTTON, 6, "Wirklich")});
    HearingDialog dialog(7002, diary);
    testdoor::Script([&](testdoor::ModalBox &box) {
        EXPECT_EQ(box.Kind(), "dialog");
        diary.Read();
        for (int id : {3, 4, 5, 99})
            box.Answer(id);
        EXPECT_EQ(diary.Read(), "");
        box.Answer(6);
        EXPECT_EQ(diary.Read(), "command6/0");
    });
    PressIn("Esc");
    EXPECT_EQ(dialog.Execute(), WIN_ID_CANCEL);
}
} // namespace
