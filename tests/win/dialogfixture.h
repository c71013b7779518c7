// Stand-in dialogs for tests: controls and dialogs that write down what happens to them, in the order in which
// it happens.
#ifndef TESTS_WIN_DIALOGFIXTURE_H
#define TESTS_WIN_DIALOGFIXTURE_H

#include "lib/xfail.h"
#include "support/testapp.h"
#include "support/testdialog.h"
#include "win/boxes.h"
#include "win/dialog.h"
#include "win/testdialog.h"
#include "win/validator.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <string>
#include <utility>

/// What happened, a blank between; asking empties it.
class Diary
{
public:
    void Write(const std::string &entry) { text += (text.empty() ? "" : " ") + entry; }
    void Write(const char *what, int id) { Write(what + std::to_string(id)); }
    std::string Read() { return std::exchange(text, std::string()); }

private:
    std::string text;
};

/// A line of a dialog without a place: they stand below each other.
inline ResCONTROL Line(ResCONTROLKIND kind, int id, const char *text = "", unsigned style = 0)
{
    return {kind, id, text, 0, 0, 0, 0, 0, style};
}

/// A field for a whole number in the record.
class NumberField : public TEdit
{
public:
    NumberField(TDialog *dialog, int id, Diary &aDiary) : TEdit(dialog, id), diary(aDiary) {}

    bool mayClose = true;
    std::function<void()> onSetup, onTransfer, onAsked;

    void SetupWindow() override
    {
        TEdit::SetupWindow();
        diary.Write("setup", Id());
        if (onSetup)
            onSetup();
    }
    void CleanupWindow() override { diary.Write("cleanup", Id()); }
    bool CanClose() override
    {
        diary.Write("ask", Id());
        if (onAsked)
            onAsked();
        return mayClose;
    }
    int Transfer(void *field, int direction) override
    {
        auto &number = *static_cast<int *>(field);
        diary.Write(direction == WIN_TRANSFER_SETDATA ? "set" : "get", Id());
        if (direction == WIN_TRANSFER_SETDATA)
            SetText(std::to_string(number).c_str());
        else
            number = std::atoi(Text().c_str());
        if (onTransfer)
            onTransfer();
        return sizeof number;
    }

private:
    Diary &diary;
};

/// Hears of its clicks.
class HearingButton : public TButton
{
public:
    HearingButton(TDialog *dialog, int id, Diary &aDiary) : TButton(dialog, id), diary(aDiary) {}
    std::function<void()> onNotify;
    void EvNotify(int code) override
    {
        diary.Write("notify" + std::to_string(Id()) + "/" + std::to_string(code));
        if (onNotify)
            onNotify();
    }

private:
    Diary &diary;
};

/// Writes down the messages that tell something of push buttons, keys and notices, then does as every dialog.
class HearingDialog : public TDialog
{
public:
    HearingDialog(int id, Diary &aDiary, TWindow *owner = NULL) : TDialog(owner, id), diary(aDiary) {}
    ~HearingDialog() override { diary.Write("gone"); }

    std::function<void(const TDialogMessage &)> onMessage; // before the base
    bool passive = false;                                  // the base hears of nothing

    void DialogProc(const TDialogMessage &message) override
    {
        std::string code = std::to_string(message.id) + "/" + std::to_string(message.code);
        switch (message.kind) {
        case TDialogMessage::INIT:
            diary.Write("init");
            break;
        case TDialogMessage::COMMAND:
            if (!IsFocus(message))
                diary.Write((message.control ? "command" : "key") + code);
            break;
        case TDialogMessage::CLOSE:
            diary.Write("close");
            break;
        case TDialogMessage::NOTIFY:
            diary.Write("notice" + code);
            break;
        }
        if (onMessage)
            onMessage(message);
        if (!passive && !XPending())
            TDialog::DialogProc(message);
    }

private:
    /// When a combo box gets the focus depends on the desktop.
    static bool IsFocus(const TDialogMessage &message)
    {
        const char *name = WindowClass(message.control);
        return name && std::string(name) == "COMBOBOX" && message.code == WIN_CBN_SETFOCUS;
    }

    Diary &diary;
};

/// The next dialog is played by this once it is up. An empty script leaves it to the next one.
inline void Play(std::function<void(testdoor::DialogBox &)> part)
{
    testdoor::Script([part = std::move(part)](testdoor::ModalBox &box) {
        EXPECT_EQ(box.Kind(), "dialog");
        testdoor::DialogBox dialog(box);
        part(dialog);
    });
}

/// The next dialog or box gets a key.
inline void PressIn(const char *key)
{
    testdoor::Script([key](testdoor::ModalBox &box) { box.Press(key); });
}

enum { NUMBERS = 7001 }; // the dialog of most tests

inline void AddNumbers(DialogTables &tables)
{
    tables.Add(NUMBERS, "Zahlen",
               {Line(RES_LABEL, -1, "&Erste:"), Line(RES_EDIT, 10), Line(RES_LABEL, -1, "&Zweite:"),
                Line(RES_EDIT, 11), Line(RES_DEFAULT, 1, "OK"), Line(RES_BUTTON, 2, "Abbrechen"),
                Line(RES_BUTTON, 3, "&Mehr")});
}

class Dialogs : public testing::Test
{
protected:
    void SetUp() override
    {
        TestApplication();
        testdoor::PendingScripts();
        testdoor::UnexpectedBoxes();
        reports = 0;
        SetFailureHook([] { ++reports; });
        AddNumbers(tables);
    }
    void TearDown() override
    {
        testdoor::Settle();
        SetFailureHook(NULL);
        EXPECT_EQ(testdoor::PendingScripts(), 0) << "a script waited for a box that never came";
        EXPECT_EQ(testdoor::UnexpectedBoxes(), 0);
    }

    static inline int reports = 0; // failures that were shown
    DialogTables tables;
    Diary diary;
};

/// The dialog with two numbers: 10 is made first, then 11.
struct Numbers {
    explicit Numbers(Diary &diary) : dialog(NUMBERS, diary)
    {
        first = new NumberField(&dialog, 10, diary);
        second = new NumberField(&dialog, 11, diary);
        dialog.SetTransferRecord(&record);
    }
    struct {
        int first = 12;
        int second = 34;
    } record;
    HearingDialog dialog;
    NumberField *first;  // the dialog's
    NumberField *second; // the dialog's
};

#endif
