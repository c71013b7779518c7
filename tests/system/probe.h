// What the programs share that show a document of the tests to a person: its window with bars, from the start
// of the program to its end.
#ifndef TESTS_SYSTEM_PROBE_H
#define TESTS_SYSTEM_PROBE_H

#include "lib/charstr.h"
#include "usr/edcapp.h"
#include "win/frame.h"
#include "win/gadgets.h"

#include <memory>
#include <vector>

struct ProbeButton {
    int picture;
    int command;
};

/// The document and the bars around it. Made when the application has started; there is one.
template <class DOCUMENT>
class TProbe
{
public:
    TProbe(const char *title, const std::vector<ProbeButton> &buttons)
    {
        StrCopy(TEdcApplication::title, title, sizeof TEdcApplication::title);
        TEdcApplication::menuId = 1000;
        TEdcApplication::iconId = 1030;
        for (const ProbeButton &button : buttons)
            toolBar.Insert(std::make_unique<TButtonGadget>(button.picture, button.command));
        TEdcApplication::toolBar = &toolBar;
        TEdcApplication::statusBar = &statusBar;
        SetAppDocument(&document);
    }

    TStatusBar statusBar;
    TControlBar toolBar;
    DOCUMENT document; // the first to go
};

/// @return the program's exit code
template <class DOCUMENT>
int RunProbe(TEdcApplication &application, std::unique_ptr<TProbe<DOCUMENT>> &probe, void (*startUp)())
{
    TEdcApplication::startUp = startUp;
    int code = application.Run();
    probe.reset();
    return code;
}

#endif
