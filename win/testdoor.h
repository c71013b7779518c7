// A door for tests only: real events into real windows, in device pixels, and scripts for what is modal. A
// script is posted before the modal loop starts and runs inside it, so a test reads top to bottom.
#ifndef WIN_TESTDOOR_H
#define WIN_TESTDOOR_H

#include "win/window.h"
#include <functional>
#include <string>
#include <vector>

class TDecoratedFrame;
class TModalFace;

namespace testdoor
{

void ResizeClient(TWindow &window, TSize size); // device pixels; the size message comes before this returns
enum Button { LEFT, RIGHT };
void Press(TWindow &window, TPoint at, Button button = LEFT, unsigned keys = 0);
void Release(TWindow &window, TPoint at, Button button = LEFT, unsigned keys = 0);
void Click(TWindow &window, TPoint at, Button button = LEFT, unsigned keys = 0);
void DoubleClick(TWindow &window, TPoint at, unsigned keys = 0); // press, release, double press, release
void Move(TWindow &window, TPoint at, unsigned keys = 0, bool leftDown = false, bool rightDown = false);
void Wheel(TWindow &window, TPoint at, int notches, unsigned keys = 0);
/// The thumb of a scroll bar is dragged to a position and held, or let go.
void DragThumb(TWindow &window, TBar bar, int position, bool letGo);
void Drop(TWindow &window, const char *nativePath); // a file from another program
void LoseActivation(TWindow &window);               // another program comes to the front
void Minimize(TWindow &window, bool on);
void MoveToScreen(TWindow &window, int screen);                 // from 0
void DarkTheme(bool on);                                        // the desktop's
void Key(TWindow &window, const char *name, unsigned keys = 0); // "PgDown", "Home", "F5", "Ctrl+P" ...
void HoldKey(TWindow &window, const char *name, int repeats, unsigned keys = 0);
std::string KeyName(const char *key); // as menus show it, Windows-1252
bool IsWaitCursor();
void PostClose(TWindow &window); // the desktop asks the window to close, through the queue
/// Paints what is invalid and settles the queue.
void Settle();
bool IdleStep();
TColor Pixel(TWindow &window, TPoint at);                     // of the backing image
std::vector<TColor> Pixels(TWindow &window);                  // the client area row by row
std::vector<TColor> ShownPixels(TWindow &window);             // the same as the screen shows it
bool SaveScreenshot(TWindow &window, const char *nativePath); // the whole window as it is shown

/// A menu as a user would see it after opening it: texts with their keys ("&Neu...\tStrg+N"), grey or not.
struct MenuEntry {
    int id;
    std::string text; // Windows-1252
    bool enabled;
    bool checked;
};
std::vector<MenuEntry> Menu(TDecoratedFrame &frame, int popup); // from the left, 0 first
void ChooseMenu(TDecoratedFrame &frame, int id);
bool ClickGadget(TDecoratedFrame &frame, int command);            // false where the button is grey or missing
void PointAtGadget(TDecoratedFrame &frame, int command, bool on); // the pointer comes or leaves
/// What a person sees of a bar's button.
struct Gadget {
    bool enabled = false;
    bool checked = false;
    std::string tip;  // Windows-1252
    std::string text; // in place of a picture
};
std::vector<Gadget> Gadgets(TDecoratedFrame &frame, int command); // all buttons of the command

/// The next modal box runs this once it is up; scripts queue. A box that is still up behind its script takes
/// the next one: a file dialog that refused a name, say. A box without a script is answered with its cancelling
/// button and counted, so that a test never hangs.
class ModalBox;
void Script(std::function<void(ModalBox &)> script);
int UnexpectedBoxes(); // since the last call
int PendingScripts();  // scripts that no box has met, forgotten by this call
/// Runs while the abort dialog of a print job shows that page, before the page is printed; "abort" has no other
/// scripts and needs none. Page 0: when it comes up.
void ScriptAbort(int page, std::function<void(ModalBox &)> script);
/// Boxes are scripted from now on, or cancelled; without this (and off the screen-less platform, where nobody
/// could answer) they wait for a person. Each of the functions above does it too.
void Enable();

class ModalBox
{
public:
    std::string Kind() const;    // "message", "open", "save", "print", "abort", "popup", "dialog"
    std::string Caption() const; // Windows-1252
    std::string Text() const;    // of a message box; items of a popup menu, one a line
    void Answer(int id);         // a button or menu item by its id; TBoxAnswer for boxes and dialogs
    void FileName(const std::string &nativePath); // what a file dialog or a print dialog's PDF field is told
    void Pages(int from, int to);                 // of the print dialog
    std::string FileName() const;                 // what the field holds now, UTF-8
    int Default() const;                          // id of the item that a popup menu shows bold, 0 for none
    std::string Buttons() const;                  // their texts in order of the alphabet, a blank between
    void Press(const char *key);                  // a real key, as "Esc" or "Return"
    void TypeKeys(const std::string &utf8);       // real keys, one a character

    explicit ModalBox(TModalFace &aFace) : face(aFace) {}

private:
    friend class DialogBox; // the controls within
    TModalFace &face;
};

} // namespace testdoor

#endif
