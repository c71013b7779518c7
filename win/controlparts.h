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

/// Makes a widget known as a control: WindowClass, WindowStyle and WindowId answer from it.
void MarkControl(HWND widget, const char *windowClass, unsigned style, int id); // the class is a literal

/// A field of one line that takes only what the character set holds, as a child of `parent`.
TNativeWidget *MakeLineField(TNativeWidget *parent);
/// @param textLimit  with the terminator, 0 for none. @param rules  a view, may be NULL
void SetFieldRules(TNativeWidget *field, int textLimit, const TValidator *rules);

/// The least extent in the toolkit's units at which nothing of the widget's text or picture is cut, lines
/// broken at the present width where its kind breaks lines.
TSize NeededExtent(HWND control);

#endif
