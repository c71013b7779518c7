#include "usr/edcdlg.h"
#include "lib/charstr.h"
#include "lib/xassert.h"
#include "win/application.h"
#include "win/boxes.h"
#include "win/frame.h"

#include "lib/xon.h"

namespace
{
enum { NOTICE_ID = -1, NOTICE_CODE = -99 };

/// What PostChanged() has posted last. One for all dialogs, for only one has the user's focus.
struct NOTICE {
    const TEdcDialog *dialog; // views, for comparison only; NULL where nothing waits
    const TWindow *window;
    HWND handle; // of the window when the notice was posted
};
NOTICE notice;

/// How far the user is with a drop list. An end of the choice that follows the other end, before the list has
/// closed, is not told again.
struct CHOICE {
    int lastEnd; // WIN_CBN_SELENDOK or WIN_CBN_SELENDCANCEL, any other number before the first
    bool dropped;
    bool selChanged; // moved in the dropped list
    bool fire;       // the last end told of a change
};
enum { NO_END = 1 };
CHOICE choice;

TWindow *MainWindow()
{
    TApplication *application = TApplication::Current();
    return application != NULL ? application->MainWindow() : NULL;
}

bool IsPushButton(unsigned kind)
{
    return kind == WIN_BS_PUSH || kind == WIN_BS_DEFPUSH;
}

bool Lives(const TDialog &dialog, const TWindow *window)
{
    if (window == &dialog)
        return true;
    for (const TControl *control : dialog.Controls())
        if (control == window)
            return true;
    return false;
}
} // namespace

TEdcDialog::TEdcDialog(int aResId, void *aRecord) : TDialog(MainWindow(), aResId)
{
    if (aRecord != NULL)
        SetTransferRecord(aRecord);
}

void TEdcDialog::Cancel()
{
    Close(WIN_ID_CANCEL, true);
}

void TEdcDialog::Button(int id)
{
    if (id == WIN_ID_OK)
        Close(WIN_ID_OK, false);
    else if (id == WIN_ID_CANCEL)
        Close(WIN_ID_CANCEL, true);
}

void TEdcDialog::Changed(HWND) {}

void TEdcDialog::Double(HWND) {}

void TEdcDialog::Close(int id, bool cancel)
{
    if (cancel)
        Destroy(id);
    else
        CloseWindow(id);
}

void TEdcDialog::PostChanged(TWindow *wnd)
{
    ASSERT(wnd != NULL);
    ASSERT(GetHandle() != 0);
    notice = {this, wnd, wnd->GetHandle()};
    PostNotify(NOTICE_ID, NOTICE_CODE);
}

/// The notice is taken off before its call, which may post the next one.
void TEdcDialog::TakeNotice()
{
    NOTICE taken = notice;
    if (taken.dialog != this)
        return;
    notice = {};
    if (taken.handle != NULL && Lives(*this, taken.window) && taken.window->GetHandle() == taken.handle)
        Changed(taken.handle);
}

void TEdcDialog::DialogProc(const TDialogMessage &message)
{
    __enter
        Dispatch(message); __test;
    __point
        __repair;
        __report;
    __treat
}

void TEdcDialog::Dispatch(const TDialogMessage &message)
{
    switch (message.kind) {
    case TDialogMessage::INIT:
        Changed(NULL);
        break;
    case TDialogMessage::COMMAND:
        if (message.control != NULL)
            Notification(message.control, message.code);
        else
            Button(message.id);
        break;
    case TDialogMessage::CLOSE:
        Cancel();
        break;
    case TDialogMessage::NOTIFY:
        if (message.id == NOTICE_ID && message.code == NOTICE_CODE)
            TakeNotice();
        break;
    }
}

/// The codes of a class mean other things to another class, so the class comes first.
void TEdcDialog::Notification(HWND control, int code)
{
    const char *name = WindowClass(control);
    unsigned style = WindowStyle(control);
    if (name == NULL || style == 0)
        return;
    unsigned kind = style & WIN_STYLE_KIND;
    if (StrMatch(name, "BUTTON", STR_NOCASE))
        ButtonNotification(control, kind, code);
    else if (StrMatch(name, "COMBOBOX", STR_NOCASE) && kind == WIN_CBS_DROPDOWNLIST)
        DropList(control, code);
    else if (StrMatch(name, "LISTBOX", STR_NOCASE) && code == WIN_LBN_SELCHANGE)
        Changed(control);
    else if (StrMatch(name, "LISTBOX", STR_NOCASE) && code == WIN_LBN_DBLCLK)
        Double(control);
}

void TEdcDialog::ButtonNotification(HWND control, unsigned kind, int code)
{
    if (code == WIN_BN_CLICKED && IsPushButton(kind))
        Button(WindowId(control));
    else if (code == WIN_BN_CLICKED)
        Changed(control);
    else if (code == WIN_BN_DBLCLK && !IsPushButton(kind))
        Double(control);
}

/// A drop list tells of a change only when the user has finished choosing.
void TEdcDialog::DropList(HWND control, int code)
{
    switch (code) {
    case WIN_CBN_SETFOCUS:
    case WIN_CBN_DROPDOWN:
    case WIN_CBN_CLOSEUP:
        choice = {NO_END, code == WIN_CBN_DROPDOWN, false, false};
        break;
    case WIN_CBN_SELCHANGE:
        choice.selChanged = choice.selChanged || choice.dropped;
        break;
    case WIN_CBN_SELENDOK:
        if (choice.lastEnd != WIN_CBN_SELENDCANCEL)
            EndChoice(control, code, true);
        break;
    case WIN_CBN_SELENDCANCEL:
        if (choice.lastEnd != WIN_CBN_SELENDOK)
            EndChoice(control, code, choice.selChanged);
        break;
    default:
        break;
    }
}

void TEdcDialog::EndChoice(HWND control, int code, bool fire)
{
    choice.lastEnd = code;
    choice.fire = fire;
    if (choice.fire)
        Changed(control);
}
