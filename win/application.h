// The application: the message loop with its idle action, and the platform's services for the layers below
// (message boxes, status line, collation, dates, currency), all in German whatever the environment says.
// Decimal points stay points: the C library's number format is never touched.
#ifndef WIN_APPLICATION_H
#define WIN_APPLICATION_H

#include <memory>
#include <string>

class TDecoratedFrame;
class TStatusBar;
class TWindow;

class TApplication
{
public:
    /// One at a time. Installs the services of lib/platform.h; the destructor brings the former ones back.
    TApplication(const char *name, int &argc, char **argv);
    TApplication(const TApplication &) = delete;
    TApplication &operator=(const TApplication &) = delete;
    virtual ~TApplication();

    static TApplication *Current(); // NULL where there is none
    /// InitMainWindow(), shows it, runs the loop. @return the exit code
    int Run();
    void Quit(int code);
    virtual void InitMainWindow();
    /// Asks the main window; called whenever the loop has nothing to do, again after 10 ms while it says true.
    virtual bool IdleAction(long idleCount);
    /// Handles what waits in the queue and comes back.
    void PumpWaitingMessages();
    /// Runs one idle turn now, as the loop would: command enabling of bars, then IdleAction.
    bool IdleStep();

    /// Deletes a window in a later turn of the loop, or with the application; nobody else may.
    void Condemn(TWindow *window);

    TDecoratedFrame *MainWindow() const { return mainWindow; }
    void SetMainWindow(TDecoratedFrame *frame) { mainWindow = frame; } // view
    void SetStatusWindow(TStatusBar *bar) { statusBar = bar; } // view; shows status texts, NULL for none
    TStatusBar *StatusWindow() const { return statusBar; }
    const std::string &Name() const { return name; }
    void SetName(const char *aName) { name = aName; } // Windows-1252; heads captions and boxes

private:
    struct Impl;
    std::string name;
    TDecoratedFrame *mainWindow = NULL;
    TStatusBar *statusBar = NULL;
    std::unique_ptr<Impl> impl;
};

/// The platform's services for lib/platform.h: message boxes, the status line, German order, dates and
/// currency, the end of the process. Twice is once.
void InstallServices();
/// Brings back what was there before.
void RemoveServices();

/// Milliseconds since the program asked first; starts again at 0 after 24 days.
int WinTickCount();
void WinBeep();
/// What hears the beeps in place of the user; NULL: nobody. @return the former one
using BeepSink = void (*)();
BeepSink SetBeepSink(BeepSink sink);
/// Shows the wait cursor while it lives; they may nest.
class TWaitCursor
{
public:
    TWaitCursor();
    ~TWaitCursor();
    TWaitCursor(const TWaitCursor &) = delete;
    TWaitCursor &operator=(const TWaitCursor &) = delete;
};

#endif
