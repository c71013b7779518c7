// Dialogs built from the resources. A dialog object lives apart from its window: Execute() or Create() makes
// the window and all its controls from the resource, binds the control objects by their numbers, and hands the
// transfer record round; it may be run any number of times.
#ifndef WIN_DIALOG_H
#define WIN_DIALOG_H

#include "win/control.h"
#include <memory>
#include <vector>

/// What a dialog hears of.
struct TDialogMessage {
    enum Kind {
        INIT,    // the controls are there and filled
        COMMAND, // a control's notification; control NULL: id 1 or 2 by Return or Esc
        CLOSE,   // the user closes the window
        NOTIFY   // what the dialog has posted to itself; `id` and `code` as they were posted
    };
    Kind kind;
    int id = 0;
    int code = 0; // TNotification
    HWND control = NULL;
};

class TDialog : public TWindow
{
public:
    TDialog(TWindow *parent, int resId);
    ~TDialog() override; // with its controls

    int ResId() const { return resId; }
    /// Runs the dialog over its parent until it ends. What the handlers leave pending is reported there; a
    /// window that cannot be made is left pending here.
    /// @return the result it ended with, WIN_ID_CANCEL after a failure
    int Execute();
    void Create() override; // without waiting for its end
    bool IsModal() const { return modal; }
    void SetAutoDelete(bool on) { autoDelete = on; } // of one that was created: its end deletes it
    void SetTransferRecord(void *r) { record = r; }  // view; NULL for none
    void *TransferRecord() const { return record; }
    /// Walks the controls in the order of their construction, each with its field of the record.
    void TransferData(int direction);
    /// Asks all controls, then transfers to the record and ends. @return false where a control refuses
    bool CloseWindow(int result);
    /// Ends at once, without question and without transfer.
    void Destroy(int result);
    /// Asks the controls in the order of their construction, up to the first that refuses.
    bool CanClose() override;

    const std::vector<TControl *> &Controls() const { return controls; } // in the order of construction
    HWND Item(int id) const;                                             // NULL where there is none
    TControl *FindControl(HWND item) const;                              // NULL where there is no object
    /// As if the control had reported it.
    void SendCommand(HWND control, int code);
    /// Comes back as a NOTIFY message once the current message is done.
    void PostNotify(int id, int code);

    /// Sees each message first. Base: Return and OK close, Esc, cancel and the closing of the window destroy.
    virtual void DialogProc(const TDialogMessage &message);
    /// The controls are made: sets them up, transfers the record to them. Overriders call the base first.
    virtual void SetupWindow();

private:
    friend class TControl;
    struct DialogImpl;
    void Build();
    void TakeDown();

    int resId;
    void *record = NULL; // view
    bool modal = false;
    bool autoDelete = false;
    std::vector<TControl *> controls;   // owned, but those that take themselves off
    std::shared_ptr<DialogImpl> dialog; // while the window is there
};

#endif
