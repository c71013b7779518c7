// The life of a dialog: how it is built, filled, asked, read and ended, whatever fails meanwhile.
#include "win/dialog.h"
#include "dialogfixture.h"
#include "support/child.h"
#include "win/utf8.h"

#include <memory>

namespace
{
TEST_F(Dialogs, ControlsAreSetUpThenFilledInTheOrderOfTheirMaking)
{
    HearingDialog dialog(NUMBERS, diary);
    new NumberField(&dialog, 11, diary); // not the order of the resource
    new NumberField(&dialog, 10, diary);
    int record[] = {1, 2};
    dialog.SetTransferRecord(record);
    Play([&](testdoor::DialogBox &box) {
        EXPECT_EQ(diary.Read(), "setup11 setup10 set11 set10 init");
        EXPECT_EQ(box.Text(11) + " " + box.Text(10), "1 2");
        box.Press("Esc");
    });
    EXPECT_EQ(dialog.Execute(), WIN_ID_CANCEL);
}

TEST_F(Dialogs, OkAsksAllControlsBeforeItTransfersOne)
{
    Numbers numbers(diary);
    Play([&](testdoor::DialogBox &box) {
        box.Type(10, "56");
        box.Type(11, "78");
        diary.Read();
        box.Click(1);
        EXPECT_EQ(diary.Read(), "command1/0 ask10 ask11 get10 get11");
    });
    EXPECT_EQ(numbers.dialog.Execute(), WIN_ID_OK);
    EXPECT_EQ(diary.Read(), "cleanup10 cleanup11");
    EXPECT_EQ(numbers.record.first, 56);
    EXPECT_EQ(numbers.record.second, 78);
}

TEST_F(Dialogs, AControlThatRefusesKeepsTheDialogOpenAndTheRecordAsItWas)
{
    Numbers numbers(diary);
    numbers.first->mayClose = false;
    Play([&](testdoor::DialogBox &box) {
        box.Type(10, "56");
        diary.Read();
        box.Click(1);
        EXPECT_EQ(diary.Read(), "command1/0 ask10");
        EXPECT_EQ(numbers.record.first, 12);
        EXPECT_TRUE(box.IsShown(10));
        numbers.first->mayClose = true;
        box.Click(1);
    });
    EXPECT_EQ(numbers.dialog.Execute(), WIN_ID_OK);
    EXPECT_EQ(numbers.record.first, 56);
}

TEST_F(Dialogs, HoweverItIsCancelledNobodyIsAskedAndNothingTransferred)
{
    const struct {
        std::function<void(testdoor::DialogBox &)> act;
        const char *heard;
    } rows[] = {
        {[](testdoor::DialogBox &box) { box.Click(2); }, "command2/0 cleanup10 cleanup11"},
        {[](testdoor::DialogBox &box) { box.Press("Esc"); }, "key2/0 cleanup10 cleanup11"},
        {[](testdoor::DialogBox &box) { box.CloseByFrame(); }, "close cleanup10 cleanup11"},
        {[](testdoor::DialogBox &box) { box.Press("Alt+F4"); }, "close cleanup10 cleanup11"},
    };
    for (const auto &row : rows) {
        Numbers numbers(diary);
        numbers.first->mayClose = false;
        Play([&](testdoor::DialogBox &box) {
            box.Type(10, "56");
            diary.Read();
            row.act(box);
        });
        EXPECT_EQ(numbers.dialog.Execute(), WIN_ID_CANCEL);
        EXPECT_EQ(diary.Read(), row.heard);
        EXPECT_EQ(numbers.record.first, 12);
    }
}

TEST_F(Dialogs, ADialogRunsAnyNumberOfTimes)
{
    Numbers numbers(diary);
    for (int i = 0; i < 3; ++i) {
        Play([&](testdoor::DialogBox &box) {
            EXPECT_EQ(box.Text(10), std::to_string(12 + i));
            box.Type(10, std::to_string(13 + i));
            box.Click(1);
        });
        EXPECT_FALSE(numbers.dialog.IsCreated());
        EXPECT_EQ(numbers.dialog.Execute(), WIN_ID_OK);
    }
    EXPECT_EQ(numbers.record.first, 15);
}

TEST_F(Dialogs, WithoutARecordNothingIsTransferred)
{
    Numbers numbers(diary);
    numbers.dialog.SetTransferRecord(NULL);
    Play([&](testdoor::DialogBox &box) {
        EXPECT_EQ(box.Text(10), "");
        box.Click(1);
    });
    EXPECT_EQ(numbers.dialog.Execute(), WIN_ID_OK);
    EXPECT_EQ(diary.Read(), "setup10 setup11 init command1/0 ask10 ask11 cleanup10 cleanup11");
}

TEST_F(Dialogs, AControlWithoutAFieldLeavesItToTheNextOne)
{
    HearingDialog dialog(NUMBERS, diary);
    new TButton(&dialog, 3);
    new NumberField(&dialog, 11, diary);
    int record = 7;
    dialog.SetTransferRecord(&record);
    Play([&](testdoor::DialogBox &box) {
        EXPECT_EQ(box.Text(11), "7");
        box.Click(1);
    });
    EXPECT_EQ(dialog.Execute(), WIN_ID_OK);
    EXPECT_EQ(record, 7);
}

TEST_F(Dialogs, AControlThatGoesFirstTakesItselfOff)
{
    HearingDialog dialog(NUMBERS, diary);
    auto first = std::make_unique<NumberField>(&dialog, 10, diary);
    new NumberField(&dialog, 11, diary);
    first.reset();
    EXPECT_EQ(dialog.Controls().size(), 1U);
    int record = 7;
    dialog.SetTransferRecord(&record);
    Play([&](testdoor::DialogBox &box) {
        EXPECT_EQ(box.Text(11), "7");
        box.Click(1);
    });
    EXPECT_EQ(dialog.Execute(), WIN_ID_OK);
}

TEST_F(Dialogs, HandlesLeadToControlsWhileTheDialogIsUp)
{
    Numbers numbers(diary);
    EXPECT_EQ(numbers.dialog.Item(10), static_cast<HWND>(NULL));
    EXPECT_EQ(numbers.dialog.FindControl(NULL), static_cast<TControl *>(NULL));
    Play([&](testdoor::DialogBox &box) {
        HWND item = numbers.dialog.Item(10);
        ASSERT_NE(item, static_cast<HWND>(NULL));
        EXPECT_EQ(item, numbers.first->GetHandle());
        EXPECT_EQ(numbers.dialog.FindControl(item), numbers.first);
        EXPECT_NE(numbers.dialog.Item(3), static_cast<HWND>(NULL)) << "a control without an object";
        EXPECT_EQ(numbers.dialog.FindControl(numbers.dialog.Item(3)), static_cast<TControl *>(NULL));
        EXPECT_EQ(numbers.dialog.Item(99), static_cast<HWND>(NULL));
        EXPECT_TRUE(numbers.dialog.IsModal());
        box.Press("Esc");
    });
    numbers.dialog.Execute();
    EXPECT_EQ(numbers.first->GetHandle(), static_cast<HWND>(NULL));
    EXPECT_FALSE(numbers.dialog.IsModal());
}

TEST_F(Dialogs, CaptionsAreShownAsTheyStand)
{
    tables.Add(7002, "Größe [*] & „Höhe“", {Line(RES_BUTTON, 2, "Schließen")});
    HearingDialog dialog(7002, diary);
    testdoor::Script([&](testdoor::ModalBox &box) {
        EXPECT_EQ(box.Caption(), FromUtf8("Größe [*] & „Höhe“"));
        EXPECT_EQ(testdoor::DialogBox(box).Caption(), box.Caption());
        EXPECT_EQ(box.Buttons(), FromUtf8("Schließen"));
        dialog.SetCaption("Anders");
        EXPECT_EQ(testdoor::DialogBox(box).Caption(), "Anders");
        box.Answer(2);
    });
    EXPECT_EQ(dialog.Execute(), WIN_ID_CANCEL);
}

TEST_F(Dialogs, WhatIsNotInTheResourceIsAFaultOfTheProgram)
{
    EXPECT_TRUE(AbortsOnAssertion("resource != NULL", "win/dialog.cpp", [&] {
        HearingDialog dialog(9999, diary);
        dialog.Execute();
    }));
    EXPECT_TRUE(AbortsOnAssertion("item != NULL", "win/dialog.cpp", [&] {
        HearingDialog dialog(NUMBERS, diary);
        new TButton(&dialog, 99);
        dialog.Execute();
    }));
    HearingDialog dialog(NUMBERS, diary);
    dialog.Create();
    EXPECT_TRUE(AbortsOnAssertion("!IsCreated()", "win/dialog.cpp", [&] { dialog.Execute(); }));
}

// Ends from within.

TEST_F(Dialogs, ADialogThatEndsInItsInitIsNeverShown)
{
    for (bool record : {true, false}) {
        Numbers numbers(diary);
        numbers.dialog.onMessage = [&](const TDialogMessage &) {
            EXPECT_EQ(numbers.dialog.CloseWindow(5), true);
            numbers.record.first = 99;
        };
        if (!record)
            numbers.dialog.SetTransferRecord(NULL);
        EXPECT_EQ(numbers.dialog.Execute(), 5);
        EXPECT_EQ(numbers.record.first, 99) << "transferred once, before";
    }
}

TEST_F(Dialogs, TheFirstEndCounts)
{
    Numbers numbers(diary);
    Play([&](testdoor::DialogBox &box) {
        box.Type(10, "56");
        numbers.dialog.Destroy(7);
        numbers.dialog.Destroy(8);
        EXPECT_TRUE(numbers.dialog.CloseWindow(9));
        EXPECT_EQ(numbers.first->Text(), "56") << "what is there can be read to the end";
    });
    EXPECT_EQ(numbers.dialog.Execute(), 7);
    EXPECT_EQ(numbers.record.first, 12);
    EXPECT_TRUE(numbers.dialog.CloseWindow(1)) << "nothing is up, so nothing refuses";
    EXPECT_EQ(numbers.record.first, 12);
}

TEST_F(Dialogs, AnotherDialogRunsWithinAHandler)
{
    Numbers outer(diary);
    Numbers inner(diary);
    int answer = 0;
    outer.dialog.onMessage = [&](const TDialogMessage &message) {
        if (message.kind == TDialogMessage::COMMAND && message.id == 3)
            answer = inner.dialog.Execute();
    };
    Play([&](testdoor::DialogBox &box) {
        Play([&](testdoor::DialogBox &second) {
            diary.Read();
            box.Click(3);
            EXPECT_EQ(diary.Read(), "") << "the outer dialog has no input meanwhile";
            second.Type(10, "99");
            second.Click(1);
        });
        box.Click(3);
        EXPECT_EQ(answer, WIN_ID_OK);
        box.Click(1);
    });
    EXPECT_EQ(outer.dialog.Execute(), WIN_ID_OK);
    EXPECT_EQ(inner.record.first, 99);
    EXPECT_EQ(outer.record.first, 12);
}

TEST_F(Dialogs, AnOuterDialogMayEndUnderAnInnerOne)
{
    Numbers outer(diary);
    Numbers inner(diary);
    outer.dialog.onMessage = [&](const TDialogMessage &message) {
        if (message.kind == TDialogMessage::COMMAND && message.id == 3) {
            EXPECT_EQ(inner.dialog.Execute(), WIN_ID_OK);
        }
    };
    Play([&](testdoor::DialogBox &box) {
        Play([&](testdoor::DialogBox &second) {
            outer.dialog.Destroy(5);
            EXPECT_TRUE(second.IsShown(10));
            second.Click(1);
        });
        box.Click(3);
    });
    EXPECT_EQ(outer.dialog.Execute(), 5);
}

/// Its last word is its own end.
class EndingDialog : public HearingDialog
{
public:
    using HearingDialog::HearingDialog;
    void DialogProc(const TDialogMessage &message) override
    {
        if (message.kind == TDialogMessage::COMMAND)
            delete this;
    }
};

TEST_F(Dialogs, ADialogMayBeDeletedByItsOwnHandler)
{
    auto *dialog = new EndingDialog(NUMBERS, diary);
    auto *field = new NumberField(dialog, 10, diary);
    new HearingButton(dialog, 3, diary);
    int record = 7;
    dialog->SetTransferRecord(&record);
    Play([&](testdoor::DialogBox &box) {
        EXPECT_EQ(field->Text(), "7");
        box.Click(3);
    });
    EXPECT_EQ(dialog->Execute(), WIN_ID_CANCEL);
    EXPECT_EQ(diary.Read(), "setup10 set10 notify3/0 gone cleanup10");
}
} // namespace
