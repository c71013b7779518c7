// What stands in a dialog. A control object is bound to a line of the dialog's resource by its number; the
// widget comes with the dialog's and goes with it, so until then every operation does nothing to the screen,
// reads as empty, and leaves no trace. What the program sets by itself is never reported; what the user does is
// reported to the dialog as a notification. Texts are Windows-1252; what the set cannot hold cannot be typed.
#ifndef WIN_CONTROL_H
#define WIN_CONTROL_H

#include "lib/restable.h"
#include "win/window.h"
#include <memory>
#include <string>

class TDialog;
class TValidator;

// The low bits of a control's style, by its window class.
enum : unsigned {
    WIN_STYLE_KIND = 0x0F,
    WIN_BS_PUSH = 0,
    WIN_BS_DEFPUSH = 1,
    WIN_BS_CHECK = 2, // switched by the program
    WIN_BS_AUTOCHECK = 3,
    WIN_BS_RADIO = 4, // switched by the program
    WIN_BS_3STATE = 5,
    WIN_BS_AUTO3STATE = 6,
    WIN_BS_GROUP = 7,
    WIN_CBS_DROPDOWN = 2,     // with an edit field
    WIN_CBS_DROPDOWNLIST = 3, // without
    WIN_LBS_NOTIFY = 1,
    WIN_SS_TEXT = 0,
    WIN_SS_BITMAP = 14,
    // Above the kind.
    WIN_STYLE_BITMAP = 0x80, // a button with a picture
    WIN_STYLE_TABSTOP = 0x00010000,
    WIN_STYLE_CHILD = 0x40000000 // of every control, so no style is 0
};

/// What the user did to a control. The numbers are unique within a window class only.
enum TNotification {
    WIN_BN_CLICKED = 0,
    WIN_BN_DBLCLK = 5,
    WIN_BN_SETFOCUS = 6,  // of a frame; one with a tab stop takes the focus
    WIN_BN_KILLFOCUS = 7, // of a frame
    WIN_BN_NEXT =
        0x100, // of a radio button and a frame with the focus: key down or right; of a frame: space, too
    WIN_BN_PRIOR = 0x101, // ... up or left
    WIN_LBN_SELCHANGE = 1,
    WIN_LBN_DBLCLK = 2,
    WIN_CBN_SELCHANGE = 1, // before the list closes: with it dropped, each step of the arrow keys
    WIN_CBN_SETFOCUS = 3,
    WIN_CBN_DROPDOWN = 7,
    WIN_CBN_CLOSEUP = 8,
    WIN_CBN_SELENDOK = 9,     // an entry was taken; with the list closed, each step of keys or wheel
    WIN_CBN_SELENDCANCEL = 10 // the list was left by Esc or by a click beside it
};

enum TCheckState { WIN_UNCHECKED, WIN_CHECKED, WIN_INDETERMINATE };

// Of any control of a dialog, with an object or without.
const char *WindowClass(HWND control); // "BUTTON", "COMBOBOX", "EDIT", "LISTBOX", "STATIC"; NULL for others
unsigned WindowStyle(HWND control);    // 0 for others
int WindowId(HWND control);            // 0 for others

class TControl : public TWindow
{
public:
    /// The dialog owns what is made with new; a control that goes before it takes itself off.
    TControl(TDialog *dialog, int resId);
    ~TControl() override;

    TDialog *Dialog() const { return controlDialog; }
    int Id() const { return controlId; }
    unsigned Style() const { return WindowStyle(GetHandle()); }
    void EnableWindow(bool on);
    bool IsWindowEnabled() const;
    void ShowWindow(bool on);
    bool IsWindowVisible() const; // of its own, whether the dialog is up or not
    bool HasFocus() const;        // within its dialog, whether that is in front or not
    /// The focus comes as by Tab: what can be typed over is selected.
    void TakeFocus();
    void SetTabStop(bool on);
    void SetTip(const char *text); // tooltip; "" for none
    /// A dithered frame 2 pixels outside the control, which shows that it has the focus.
    void ShowMark(bool on);
    bool IsMarked() const;
    std::string Text() const; // as the window shows it; mnemonics with their &
    virtual void SetText(const char *text);

    /// The widget is there, the record is not transferred yet. Base: nothing.
    virtual void SetupWindow();
    /// The widget is about to go. Base: nothing.
    virtual void CleanupWindow();
    /// Takes its field of the transfer record. Base: none.
    /// @return bytes of the field, 0 where the control has none
    virtual int Transfer(void *field, int direction);
    /// Hears of its own notification before the dialog does. Base: nothing.
    virtual void EvNotify(int code);

protected:
    void SetHint(const char *text); // a tooltip for where SetTip has given none

private:
    friend class TDialog;
    TDialog *controlDialog; // view
    int controlId;
};

/// An edit field, of one line or of many. Lines of a long text are parted by CR LF, whatever came in.
class TEdit : public TControl
{
public:
    /// @param textLimit  room for what can be typed or set, with the terminator; 0 for no limit. A longer text
    ///                   is cut.
    TEdit(TDialog *dialog, int resId, int textLimit = 0, TValidator *validator = NULL);
    ~TEdit() override;

    void SetValidator(TValidator *v); // owned; the former one goes
    TValidator *GetValidator() const { return validator.get(); }
    int TextLimit() const { return textLimit; }
    int GetText(char *buf, int max) const;         // cut at max - 1 characters; @return its length
    int TextLength() const;                        // characters, CR LF counts as two
    void GetSelection(int &start, int &end) const; // positions in the text
    void SetSelection(int start, int end);         // (0, -1) is all; scrolls there
    void ReplaceSelection(const char *text);       // as typed: limited, one step of undo
    /// Whether the validator takes the text; `report` lets it say why not. True without a validator.
    virtual bool IsValid(bool report);
    /// A disabled edit is never in the way; one that is not valid gets the focus and its text selected.
    bool CanClose() override;
    void SetupWindow() override;

private:
    int textLimit;
    std::unique_ptr<TValidator> validator;
};

/// A drop-down list, with an edit field or without. What is typed unselects the entry.
class TComboBox : public TControl
{
public:
    TComboBox(TDialog *dialog, int resId, int textLimit = 0);

    bool HasEdit() const;                          // by its style
    int AddString(const char *text);               // @return its index, below 0 where there is no window
    int InsertString(int index, const char *text); // whatever the order of the list; below 0 beside it
    void DeleteString(int index); // of the selected entry: none is then, but an edit field keeps its text
    void ClearList();             // and the edit field
    int GetCount() const;
    std::string GetString(int index) const; // "" beside the list
    void SetItemData(int index, int data);
    int GetItemData(int index) const;        // 0 until it is set, and beside the list
    int GetSelIndex() const;                 // -1 for none
    void SetSelIndex(int index);             // -1 for none, which empties the edit field
    void SetText(const char *text) override; // of the edit field; unselects
    void SetEditSelection(int start, int end);
    void ShowList(bool drop); // reported as if the user had
    /// What a number field does with the comma key; called by those that have a validator.
    void SetInputRules(const TValidator *validator); // view, must outlive the window; NULL for none
    void SetupWindow() override;

private:
    int textLimit;
    const TValidator *rules = NULL; // view
};

class TListBox : public TControl
{
public:
    TListBox(TDialog *dialog, int resId);

    int AddString(const char *text); // as TComboBox
    int InsertString(int index, const char *text);
    void DeleteString(int index);
    void ClearList();
    int GetCount() const;
    std::string GetString(int index) const;
    void SetItemData(int index, int data);
    int GetItemData(int index) const;
    int GetSelIndex() const;
    void SetSelIndex(int index);
    int GetTopIndex() const; // of the first entry that shows
    void SetTopIndex(int index);
    void SetRedraw(bool on); // off while a list is filled anew
};

class TStatic : public TControl
{
public:
    using TControl::TControl;
    /// Of the resources; 0 or one that is not there clears it.
    void SetPicture(int pictureId);
};

/// Push buttons, check boxes, radio buttons and frames.
class TButton : public TControl
{
public:
    using TControl::TControl;
    void SetPicture(int pictureId); // as TStatic
    TCheckState GetCheck() const;
    void SetCheck(TCheckState state);
    void SetKind(unsigned kind); // WIN_BS_..., among check boxes
};

#endif
