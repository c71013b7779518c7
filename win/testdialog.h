// The test door into dialogs: real mouse and real keys by the controls' numbers, and what a person sees there.
#ifndef WIN_TESTDIALOG_H
#define WIN_TESTDIALOG_H

#include "win/control.h"
#include "win/testdoor.h"
#include <string>
#include <vector>

class TDialog;

namespace testdoor
{

/// A click by the way that the desktop's events take, so that a modal box in front keeps it away.
void DesktopClick(TWindow &window, TPoint at);

/// One control as it stands in the dialog.
struct Placed {
    int id;
    std::string windowClass;
    std::string text; // Windows-1252
    bool shown;
    TRect rect;   // toolkit's units, within the dialog's client area
    TSize needed; // at which nothing of its text is cut
    bool isFrame; // others may stand within it
};

/// A drop-down list that is open, in the toolkit's units of the screen.
struct DroppedList {
    TRect rect;  // the list with its frame
    TRect field; // the closed box
    TRect screen;
    int shown;  // entries that fit without scrolling
    bool isCut; // an entry is wider than its room
};

/// A dialog that is up. A control that is not there is a failure of the test and ends the process.
class DialogBox
{
public:
    explicit DialogBox(ModalBox &box);
    explicit DialogBox(TDialog &dialog);

    void Click(int id, unsigned keys = 0); // in the middle, with the left button
    void DoubleClick(int id);
    void ClickEntry(int id, int entry, bool twice = false); // of a list box, scrolled to where it shows
    void Type(int id, const std::string &utf8);             // in place of what is there
    void TypeKeys(const std::string &utf8);                 // to whatever has the focus
    void Paste(int id, const std::string &utf8);            // in place of what is there
    void PasteKeys(const std::string &utf8);                // at the cursor of whatever has the focus
    void PasteByMenu(int id, const std::string &utf8);      // with the field's own menu
    void DropText(int id, const std::string &utf8);         // from another program, behind what is there
    void Commit(const std::string &utf8);       // an input method gives it to whatever has the focus
    std::vector<std::string> FieldMenu(int id); // texts of a field's own menu
    void Press(const char *key);                // "Tab", "Return", "Alt+A", to whatever has the focus
    void Drop(int id);                          // a click on a combo box, which opens its list
    void PointAt(int id, int entry);            // of a dropped list: the pointer over an entry
    void ClickDropped(int id, int entry);       // takes it
    void ClickBeside(int id);                   // leaves the dropped list
    void Choose(int id, int entry);             // Drop and ClickDropped
    void DragFromArrow(int id, int entry);      // the button goes down on the arrow and up on the entry
    DroppedList Dropped(int id) const;
    void DragEntries(int id, int from, int to); // of a list box; beyond its ends the pointer leaves the box
    void CloseByFrame();                        // the window's own closing button

    int Focus() const; // number of who has it, 0 for none
    std::string Text(int id) const;
    std::string SelectedText(int id) const;
    std::vector<std::string> Entries(int id) const;
    int Selected(int id) const; // entry
    bool IsDropped(int id) const;
    TCheckState Check(int id) const;
    bool IsEnabled(int id) const;
    bool IsShown(int id) const;
    std::string Tip(int id) const;
    std::string AccessibleName(int id) const;
    std::string Caption() const;
    TSize Extent() const; // toolkit's units, of the client area
    std::vector<Placed> Layout() const;
    bool SaveScreenshot(const char *nativePath) const;
    std::vector<TColor> Pixels(int id, TSize &extent) const; // device pixels of a control, row by row

private:
    TNativeWidget *dialog;
};

} // namespace testdoor

#endif
