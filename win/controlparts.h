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

/// The least extent in the toolkit's units at which nothing of the widget's text or picture is cut, lines
/// broken at the present width where its kind breaks lines.
TSize NeededExtent(HWND control);

#endif
