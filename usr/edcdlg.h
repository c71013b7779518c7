// Values that pass between the model and a dialog. A value knows, beside its content, whether it holds
// something, is undefined or is explicitly nothing: fields of several objects are merged one by one, a field
// that they disagree on turns undefined, the dialog shows it empty, and what stays undefined is not written
// back. The same state tells what came of parsing a text. A record of values is walked by Size(), so a value
// class has no virtual destructor and nothing stands before Size() in it.
// Validators check and convert a control's text against a range and a unit.
// Dialogs and controls bind a record of values to a window: each control takes its field, in the order in which
// the controls are constructed, and tells by the field's Size() where the next one stands.
#ifndef USR_EDCDLG_H
#define USR_EDCDLG_H

#include "win/dialog.h"
#include "win/menu.h"
#include "win/validator.h"
#include <memory>

enum {
    EDC_VUDF = -2, // undefined: not set, merged values differ, parsing failed, or a text did not fit
    EDC_VVAL = -3, // holds a value
    EDC_VNUL = -4, // explicitly nothing; strings only
};                 // 0 and above: the identifier of an item in a list control; strings only

enum {
    EDC_XLOAD = 1,  // takes over the other
    EDC_XSTORE = 2, // gives itself to the other, unless undefined
    EDC_XMERGE = 3, // turns undefined where the two differ
    EDC_XMATCH = 4, // whether the two agree; undefined agrees with all
};

enum { SHORTSTRMAX = 32, LONGSTRMAX = 256 }; // capacities, with the terminator

/// One field of a record. What the derived classes call Exchange is called on the record's field, with the
/// object's own value; it is true but for strings that did not fit and for an EDC_XMATCH that fails.
class TEdcValue
{
public:
    int id = EDC_VUDF; // the state

    virtual int Size() const; // of the whole object, bytes
};

class TEdcInt : public TEdcValue
{
public:
    int value = 0;

    TEdcInt() = default;
    TEdcInt(int v) { Set(v); }
    int Size() const override;
    void Set(int v);
    bool Exchange(int mode, TEdcInt &other);
};

class TEdcFloat : public TEdcValue
{
public:
    double value = 0;

    TEdcFloat() = default;
    TEdcFloat(double v) { Set(v); }
    int Size() const override;
    void Set(double v);
    bool Exchange(int mode, TEdcFloat &other); // compares without tolerance
};

/// A date, a time of day, or both; a field that is not given is -1.
class TEdcTime : public TEdcValue
{
public:
    short year = -1;
    short month = -1; // from 1
    short day = -1;   // from 1
    short hour = -1;
    short minute = -1;
    short second = -1;

    TEdcTime() = default;
    TEdcTime(int y, int M, int d, int h, int m, int s);
    int Size() const override;
    void SetDate(int y, int M, int d, bool clearTime);
    void SetTime(int h, int m, int s, bool clearDate);
    bool Exchange(int mode, TEdcTime &other);
};

/// A text in a buffer of the caller's, or of a derived class. What does not fit is cut and makes the value
/// undefined. A copy made by the constructor shares the buffer; an assignment copies the text.
class TEdcAStr : public TEdcValue
{
public:
    char *text; // view, but for derived classes
    int max;    // capacity of `text`, terminator included

    TEdcAStr(char *buf, int aMax, int anId);
    TEdcAStr(const TEdcAStr &) = default;
    int Size() const override;
    virtual void BindText(); // points `text` at the object's own storage; base: there is none
    TEdcAStr &operator=(const char *s);
    TEdcAStr &operator=(const TEdcAStr &other);

    void Set(int newId, const char *s);
    void SetRes(int newId, int resId);
    /// printf. The caller sees to the width; what is too long for `max` is cut as by Set.
    void Format(int newId, const char *format, ...) __attribute__((format(printf, 3, 4)));
    void FormatRes(int newId, int resId, ...);
    void SetInt(const TEdcInt &v, int newId = EDC_VVAL);
    /// @param digits  behind the point; below 0 six significant ones, as "%lg" shows them
    /// @param unit    weak; picks a decimal prefix and stands behind the number, "" the prefix alone ("1.2
    /// k."),
    ///                NULL neither. From 1e21 on and below 1e-20 in size there is no prefix, and no unit.
    void SetFloat(const TEdcFloat &v, int digits, const char *unit, int newId = EDC_VVAL);
    /// @param format  weak; r or y, M, d, h, m and s stand for the fields, all else for itself; NULL is
    ///                "d.M.r, h:m:s". A field that is not given shows as "?".
    void SetTime(const TEdcTime &v, const char *format, int newId = EDC_VVAL);

    // Undefined where the text is undefined or no such thing; a number too large for its type is none.
    TEdcInt GetInt() const;
    TEdcFloat GetFloat(const char *unit) const; // NULL: a plain number, exponents included
    TEdcTime GetTime(const char *format) const; // what follows the format's end is ignored
    bool IsBlank() const;                       // nothing but white space

    /// @param exact  false: texts agree whatever their case and white space
    bool Exchange(int mode, TEdcAStr &other, bool exact = false);

private:
    void Finish(int newId, bool fits) { id = fits ? newId : static_cast<int>(EDC_VUDF); }
    bool Differs(const TEdcAStr &other, bool exact) const;
    void Append(const char *s, bool &fits);
};

class TEdcShortStr : public TEdcAStr
{
public:
    TEdcShortStr();
    TEdcShortStr(const TEdcShortStr &other);
    int Size() const override;
    void BindText() override;
    using TEdcAStr::operator=;
    TEdcShortStr &operator=(const TEdcShortStr &other);

private:
    char storage[SHORTSTRMAX];
};

class TEdcLongStr : public TEdcAStr
{
public:
    TEdcLongStr();
    TEdcLongStr(const TEdcLongStr &other);
    int Size() const override;
    void BindText() override;
    using TEdcAStr::operator=;
    TEdcLongStr &operator=(const TEdcLongStr &other);

private:
    char storage[LONGSTRMAX];
};

/// Transfer takes a pointer to the TEdcValue that the class converts, and texts of SHORTSTRMAX characters.
class TEdcValueValidator : public TValidator
{
public:
    explicit TEdcValueValidator(bool aNullOK) : nullOK(aNullOK) {}
    void Error(TWindow *owner) override; // a box with the reason; needs an owner
    bool IsValid(const char *text) override;
    int Transfer(char *text, void *value, int direction) override;

protected:
    bool nullOK;           // a blank text will do
    bool wasBlank = false; // what was asked about last; an error then is that a value is missing
};

class TEdcFloatValidator : public TEdcValueValidator
{
public:
    TEdcFloatValidator(double aMin, double aMax, bool aNullOK, const char *aUnit);
    void SetRange(double aMin, double aMax);
    void SetUnit(const char *aUnit) { unit = aUnit; }
    void Error(TWindow *owner) override;
    bool IsValid(const char *text) override;
    int Transfer(char *text, void *value, int direction) override;
    std::string Hint() const override;

private:
    double min, max;  // both included
    const char *unit; // weak, may be NULL
};

class TEdcIntValidator : public TEdcValueValidator
{
public:
    TEdcIntValidator(int aMin, int aMax, bool aNullOK);
    void SetRange(int aMin, int aMax);
    void Error(TWindow *owner) override;
    bool IsValid(const char *text) override;
    int Transfer(char *text, void *value, int direction) override;
    std::string Hint() const override;

private:
    int min, max; // both included
};

class TEdcTimeValidator : public TEdcValueValidator
{
public:
    TEdcTimeValidator(const char *aFormat, bool aNullOK, int aMinYear, int aMaxYear);
    void SetRange(int aMinYear, int aMaxYear);
    void SetFormat(const char *aFormat);
    void Error(TWindow *owner) override;
    bool IsValid(const char *text) override;
    int Transfer(char *text, void *value, int direction) override;
    std::string Hint() const override;

private:
    int minYear, maxYear; // both included; nothing to a format without a year
    const char *format;   // weak
};

/// A dialog whose subclasses see what the user does through three hooks. A failure that a hook leaves pending
/// is reported, and the dialog stays open.
class TEdcDialog : public TDialog
{
public:
    /// The parent is the application's main window. `record`: the transfer record, a view.
    explicit TEdcDialog(int resId, void *record = NULL);

    virtual void Cancel();              // the user closes the window; base: Close(2, true)
    virtual void Button(int id);        // a push button, or Return (1) and Esc (2); base: 1 closes, 2 cancels
    virtual void Changed(HWND control); // what the user changed; NULL once, when the dialog has opened
    virtual void Double(HWND control);  // a second click

    /// With `cancel` ends the dialog as it is. Without, all controls are asked, transferred and then it ends; a
    /// control that refuses keeps it open.
    void Close(int id, bool cancel);
    /// Changed() comes for the window once the current message is done; of several in one turn the last counts.
    void PostChanged(TWindow *wnd);

    void DialogProc(const TDialogMessage &message) override;

private:
    void Dispatch(const TDialogMessage &message);
    void Notification(HWND control, int code);
    void ButtonNotification(HWND control, unsigned kind, int code);
    void DropList(HWND control, int code);
    void EndChoice(HWND control, int code, bool fire);
    void TakeNotice();
};

enum {
    EDC_CfNOTRANSFER = 1, // no field of the record is this control's
    EDC_CfNOGET = 2,      // the record gets back what was set, whatever the window shows
    EDC_CfCASE = 4,       // texts that differ in case differ
    EDC_CfUNIQUE = 8      // Add() takes no text twice
};

class TEdcEdit : public TEdit
{
public:
    /// @param txtLim  room with the terminator, SHORTSTRMAX to LONGSTRMAX
    TEdcEdit(TDialog *dialog, int resId, int txtLim = SHORTSTRMAX, TValidator *validator = NULL,
             int aFlags = 0);

    void SetValue(const TEdcAStr &v); // anything but EDC_VVAL shows as empty
    void GetValue(TEdcAStr &v) const; // undefined where it is blank or does not fit
    bool IsChanged() const;
    void SetFlags(int f) { flags = f; }
    int GetFlags() const { return flags; }
    int Transfer(void *field, int direction) override; // a TEdcValue *

private:
    TEdcLongStr value; // what was set or got last
    int flags;
};

/// The items' data tell what they stand for: EDC_VVAL for ordinary entries, EDC_VUDF for "(Auswahl)", which
/// takes all that is not in the list, EDC_VNUL for "(nichts)".
class TEdcComboBox : public TComboBox
{
public:
    TEdcComboBox(TDialog *dialog, int resId, int txtLim = SHORTSTRMAX, TValidator *validator = NULL,
                 int aFlags = 0);

    void SetValidator(TValidator *v); // owned; the former one goes
    TValidator *GetValidator() const { return validator.get(); }
    int Add(const TEdcAStr &v);                          // @return its index, below 0 where there is no window
    int Find(const char *text, int start, int id) const; // id -1: any; @return -1 where there is none
    /// The first entry with the id in that direction; without one, of those with EDC_VUDF the last of the list.
    /// @return the index or -1, which unselects
    int SelectById(int id, bool forward);
    void SetValue(const TEdcAStr &v);
    void GetValue(TEdcAStr &v) const;
    bool IsChanged() const;
    void SetFlags(int f) { flags = f; }
    int GetFlags() const { return flags; }
    bool IsValid(bool report);
    bool CanClose() override;
    void SetupWindow() override;
    int Transfer(void *field, int direction) override;

private:
    std::unique_ptr<TValidator> validator;
    TEdcLongStr value;
    int flags;
};

/// As the combo box without an edit field.
class TEdcListBox : public TListBox
{
public:
    TEdcListBox(TDialog *dialog, int resId, TValidator *validator = NULL, int aFlags = 0);

    void SetValidator(TValidator *v);
    TValidator *GetValidator() const { return validator.get(); }
    int Add(const TEdcAStr &v);
    int Find(const char *text, int start, int id) const;
    int SelectById(int id, bool forward);
    void SetValue(const TEdcAStr &v);
    void GetValue(TEdcAStr &v) const;
    bool IsChanged() const;
    void SetFlags(int f) { flags = f; }
    int GetFlags() const { return flags; }
    bool IsValid(bool report);
    bool CanClose() override;
    void SetupWindow() override;
    int Transfer(void *field, int direction) override;

private:
    std::unique_ptr<TValidator> validator;
    TEdcLongStr value;
    int flags;
};

class TEdcStatic : public TStatic
{
public:
    using TStatic::TStatic;
    /// A numbered text, or the picture of that number where the style shows pictures; 0 is empty. Without a
    /// call the resource's own stays. SetText() puts another in its place until the window is made anew.
    void SetRes(int aResId);
    void SetupWindow() override;
    void CleanupWindow() override;

private:
    enum { NONE = -1 };
    void ShowRes();
    int resId = NONE;
};

class TEdcButton : public TButton
{
public:
    using TButton::TButton;
    void SetRes(int aResId); // as TEdcStatic
    void SetupWindow() override;
    void CleanupWindow() override;

private:
    enum { NONE = -1 };
    void ShowRes();
    int resId = NONE;
};

class TEdcCheckGroup;

class TEdcCheckBox : public TEdcButton
{
public:
    TEdcCheckBox(TDialog *dialog, int resId, TEdcCheckGroup *group = NULL, bool aTristate = false,
                 int aFlags = 0);
    ~TEdcCheckBox() override;

    void SetTristate(bool on); // off makes an undefined box unchecked
    void SetValue(const TEdcInt &v);
    void GetValue(TEdcInt &v) const; // undefined where it is neither
    bool IsChecked() const;
    bool IsUnchecked() const;
    bool IsChanged() const;
    void SetFlags(int f) { flags = f; }
    int GetFlags() const { return flags; }
    TEdcCheckGroup *Group() const { return group; }
    void SetupWindow() override;
    int Transfer(void *field, int direction) override;
    void EvNotify(int code) override; // the group first

private:
    friend class TEdcCheckGroup;
    TEdcCheckBox *next = NULL;    // view; next box of the group
    TEdcCheckGroup *group = NULL; // view
    bool tristate;
    TEdcInt value; // what was set or got last
    int flags;
};

inline constexpr unsigned MAXLONG = 0x7FFFFFFF;

/// Takes no part in transfer; its group does.
class TEdcRadioButton : public TEdcCheckBox
{
public:
    TEdcRadioButton(TDialog *dialog, unsigned resId, TEdcCheckGroup *group); // reports its number
    TEdcRadioButton(TDialog *dialog, unsigned resId, TEdcCheckGroup *group, int aData);

    void SetData(int aData) { data = aData; }
    int Data() const { return data; }
    void SetupWindow() override;
    int Transfer(void *field, int direction) override;
    void EvNotify(int code) override; // arrow keys go to the group

private:
    int data; // what the group reports while this button is on
};

/// Check boxes that speak with one voice: a click in one is a click in the group for the dialog.
class TEdcCheckGroup : public TControl
{
public:
    TEdcCheckGroup(TDialog *dialog, int resId);
    ~TEdcCheckGroup() override;

    void Add(TEdcCheckBox *ck); // at the head of the chain
    TEdcCheckBox *First() const { return first; }
    TEdcCheckBox *Next(TEdcCheckBox *ck) const;
    void Enable(bool on);                   // all boxes and the group
    virtual void Clicked(TEdcCheckBox *ck); // base: tells the dialog

protected:
    friend class TEdcCheckBox;
    void Remove(TEdcCheckBox *ck);
    TEdcCheckBox *first = NULL; // view; the one added last
};

class TEdcRadioGroup : public TEdcCheckGroup
{
public:
    TEdcRadioGroup(TDialog *dialog, int resId, bool aAllowNone = false, int aFlags = 0);

    void SetAllowNone(bool on);
    bool GetAllowNone() const { return allowNone; }
    int FocusMark() const { return mark; }
    void SetValue(const TEdcInt &v);
    void GetValue(TEdcInt &v) const;
    bool IsChanged() const;
    void SetFlags(int f) { flags = f; }
    int GetFlags() const { return flags; }
    void Clicked(TEdcCheckBox *ck) override;
    /// The focus goes to the neighbour in the order of adding, round the end, and clicks it where it is off.
    /// Those that are disabled or hidden are passed by. From NULL: to the one added first, or last.
    void Step(TEdcCheckBox *from, bool forward);
    int Transfer(void *field, int direction) override;
    void EvNotify(int code) override;

private:
    TEdcCheckBox *Chosen() const; // NULL where none is on
    TEdcCheckBox *Neighbour(TEdcCheckBox *from, bool forward) const;
    void Mark(int aMark);

    bool allowNone;
    TEdcInt value;
    int flags;
    int mark = 0; // 2: a frame shows that the group has the focus, 1: the frame is to go, 0: none
};

/// A menu of the resources for the right mouse button. What memory does not allow leaves it as it was.
class TEdcPopupMenu
{
public:
    explicit TEdcPopupMenu(int resId);
    void Load(int resId);   // in place of what is there
    void Append(int resId); // behind it
    /// Shows it on the main window's client at a point of its client area; `defaultItem` stands out, 0 for
    /// none.
    void Track(const TPoint &pos, int defaultItem);
    TMenu &Handle() { return handle; }

    /// Copies the items of one menu into another, popups with all that is in them; before the item `offset`, or
    /// behind all.
    static void Copy(TMenu *hDest, const TMenu *hSrc, int offset);

private:
    TMenu handle;
};

#endif
