// What the dialog and the widgets of its controls know of each other. For the sources of this folder.
#ifndef WIN_CONTROLPARTS_H
#define WIN_CONTROLPARTS_H

#include "win/control.h"

/// Where a dialog's widgets report what the user did. Reports of what the program did never arrive here.
class TControlSite
{
public:
    virtual void Report(HWND control, int code) = 0;

protected:
    ~TControlSite() = default;
};

/// Makes the widget of a dialog's line as a child of the dialog's widget; the site outlives it. Place and size,
/// tab order and label buddies are the dialog's business, all else the widget's.
HWND MakeControl(const ResCONTROL &line, TNativeWidget *dialog, TControlSite &site);

/// The part of MakeControl for drop-down lists and list boxes.
HWND MakeListControl(const ResCONTROL &line, TNativeWidget *dialog, TControlSite &site);

/// The same widget with another style; its class and number stay.
void SetWindowStyle(HWND widget, unsigned style);

/// Makes a widget known as a control: WindowClass, WindowStyle and WindowId answer from it.
void MarkControl(HWND widget, const char *windowClass, unsigned style, int id); // the class is a literal

/// A field of one line that takes only what the character set holds, as a child of `parent`.
TNativeWidget *MakeLineField(TNativeWidget *parent);
/// The same of many lines.
TNativeWidget *MakeMemo(TNativeWidget *parent);
/// @param textLimit  with the terminator, 0 for none. @param rules  a view, may be NULL
void SetFieldRules(TNativeWidget *field, int textLimit, const TValidator *rules);

/// A field of text, as its control sees it. Texts in Windows-1252; lines are parted by CR LF, and positions
/// count its characters as two.
class TFieldFace
{
public:
    virtual std::string Text() const = 0;
    virtual void SetText(const char *text) = 0; // cut at the limit; what could be undone no longer can
    virtual int Length() const = 0;
    virtual void GetSelection(int &start, int &end) const = 0;
    virtual void SetSelection(int start, int end) = 0;
    virtual void Insert(const char *text) = 0; // in place of the selection, as if it were pasted

protected:
    ~TFieldFace() = default;
};
TFieldFace *FieldFace(HWND control); // NULL for others

/// A check box or radio button, whatever it looks like.
class TCheckFace
{
public:
    virtual TCheckState State() const = 0;
    virtual void SetState(TCheckState state) = 0;
    virtual void SetKind(unsigned kind) = 0; // WIN_BS_...

protected:
    ~TCheckFace() = default;
};
TCheckFace *CheckFace(HWND control); // NULL for others

/// What the control shows, in Windows-1252: a drop-down list its entry or the text of its field.
std::string ControlText(HWND control);
void SetControlText(HWND control, const char *text); // of all but drop-down lists and list boxes
void SetWindowStyle(HWND control, unsigned style);
/// A picture of the resources on a button or a static; 0, or one that is not there, takes it off.
void SetControlPicture(HWND control, int pictureId);
/// Whether Tab stops there; the style tells it from now on.
void SetControlTabStop(HWND control, bool on);

/// Tells screen readers the text of a label as the name of the field that it leads to, if it is the label that
/// names it. For the dialog, and for whoever changes a label's text.
void NameBuddy(HWND label);

/// The least extent in the toolkit's units at which nothing of the widget's text or picture is cut, lines
/// broken at the present width where its kind breaks lines.
TSize NeededExtent(HWND control);

#endif
