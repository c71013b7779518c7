// The application: builds the main frame from pieces that the start-up code hands it, and the two accessors
// through which any code reaches the document and the status bar.
#ifndef USR_EDCAPP_H
#define USR_EDCAPP_H

#include "win/application.h"
#include <memory>

class TControlBar;
class TEdcDocument;
class TStatusBar;

class TEdcApplication : public TApplication
{
public:
    TEdcApplication(int &argc, char **argv);
    ~TEdcApplication() override;
    /// The start-up code, then the frame: document, icon, menu, status bar at the bottom, tool bar at the top.
    void InitMainWindow() override;

    // Class-wide settings, made before the main window exists.
    static char title[32];
    static int iconId;
    static int menuId;
    static TControlBar *toolBar; // views; the frame shows them where they are set
    static TStatusBar *statusBar;
    /// The start-up code: fills the settings and sets the document. A failure ends the program.
    static void (*startUp)();

private:
    std::unique_ptr<TDecoratedFrame> frame;
};

/// The one document. Asserts that there is one.
TEdcDocument *AppDocument();
bool HasAppDocument();
void SetAppDocument(TEdcDocument *document); // once; a document that dies takes itself off
TStatusBar *AppStatusBar();                  // NULL where there is none

#endif
