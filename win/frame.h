// The main window: a frame with menu, bars and one client window. A command from a menu, a key or a button goes
// to the client's EvCommand; before a menu opens, and in idle time for buttons, the client's EvCommandEnable is
// asked.
#ifndef WIN_FRAME_H
#define WIN_FRAME_H

#include "win/window.h"

/// One question: may this command be given, is it on? Whoever knows the command answers it.
class TCommandEnabler
{
public:
    explicit TCommandEnabler(int command) : id(command) {}
    virtual ~TCommandEnabler() = default;
    virtual void Enable(bool on)
    {
        answered = true;
        enabled = on;
    }
    virtual void SetCheck(bool on) { checked = on; }
    bool IsAnswered() const { return answered; }
    bool IsEnabled() const { return enabled; }
    bool IsChecked() const { return checked; }
    const int id;

protected:
    bool answered = false;
    bool enabled = false;
    bool checked = false;
};

class TDecoratedFrame : public TWindow
{
public:
    enum Place { TOP, BOTTOM };

    /// The client is a view and becomes a child.
    TDecoratedFrame(const char *title, TWindow &client);
    ~TDecoratedFrame() override;

    void AssignMenu(int menuId); // of the resources; its accelerators come with it
    void SetIcon(int pictureId);
    void SetWantedSize(TSize size); // before Create(), at 96 pixels an inch; the screen may be too small for it
    void Insert(TWindow &bar, Place place); // before Create(); a view
    void Remove(TWindow &bar);              // the bars of this layer do it when they go
    void Create() override;
    void SetCaption(const char *text) override;
    TWindow &Client() const { return client; }

    /// To the client, guarded: what it throws is shown and ends here.
    void EvCommand(int id) override;
    void EvCommandEnable(TCommandEnabler &ce) override;
    bool CanClose() override;
    bool IdleAction(long idleCount) override;
    bool MayCommand(int id); // asks its enabler now
    /// Gives the command where it may be given. @return whether it did
    bool TryCommand(int id);
    /// As a click on the bar's button does it. @return false where it is grey or there is none
    bool PressGadget(int command);
    /// The command comes with a later turn of the loop, once nothing modal is up.
    void PostCommand(int id);
    void CloseWindow(); // asks CanClose() first
    /// Command enabling of all bars.
    void IdleEnable();

private:
    struct FrameImpl;
    TWindow &client;
    std::unique_ptr<FrameImpl> frame;
};

#endif
