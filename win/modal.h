// How a modal box shows itself to the test door: whoever runs a modal loop puts a face over it and a scope
// around the loop. Inside it the next script of the door runs, once the box is up. Without the door (see
// testdoor::Enable) a scope does nothing: a user's box waits for the user.
#ifndef WIN_MODAL_H
#define WIN_MODAL_H

#include "win/native.h"

#include <memory>
#include <string>

class TWindow;

/// What a script can see of a box and do to it. Texts in Windows-1252, paths native. What a kind of box does
/// not have stays as it is here: nothing happens.
class TModalFace
{
public:
    virtual ~TModalFace() = default;
    virtual const char *Kind() const = 0; // as ModalBox::Kind() names them
    virtual bool IsUp() const = 0;        // shown and not answered yet
    virtual void Answer(int id) = 0;      // presses the button or takes the item; one that is grey does nothing
    virtual void Cancel() = 0;            // as Esc does it
    virtual TNativeWidget *Widget() const { return NULL; } // gets the keys; NULL: the box takes none
    virtual std::string Caption() const { return {}; }
    virtual std::string Text() const { return {}; }
    virtual void SetFileName(const std::string &) {}
    virtual std::string FileName() const { return {}; }
    virtual void SetPages(int /*from*/, int /*to*/) {}
    virtual int Default() const { return 0; } // the item that stands out
};

/// Made right before the modal loop starts, gone right after it. Scripts run one after another until the box is
/// no longer up; where there is none left the box is cancelled and counted as unexpected.
class TModalScope
{
public:
    explicit TModalScope(TModalFace &face); // a view
    ~TModalScope();
    TModalScope(const TModalScope &) = delete;
    TModalScope &operator=(const TModalScope &) = delete;

private:
    struct Watch;
    std::shared_ptr<Watch> watch; // NULL without the door
};

/// The abort dialog of a print job runs the scripts for the page that it shows.
void RunAbortScripts(TModalFace &face, int page);

/// The face over a message box of the toolkit, ours or one of its own.
std::unique_ptr<TModalFace> MessageBoxFace(TNativeWidget *box);

/// What a modal box is put over: the modal box that is up, else the owner's window, else the main window's.
/// NULL where there is no window.
TNativeWidget *ModalParent(TWindow *owner);

#endif
