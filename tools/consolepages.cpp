#include "tools/consolepages.h"

#include "lib/platform.h"
#include "tools/console.h"
#include "usr/edcbase2.h"
#include "win/boxes.h"
#include "win/dc.h"

#include <cstdlib>

#include "lib/xon.h"

void PagesWithoutScreen()
{
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    unsetenv("QT_SCALE_FACTOR");
    unsetenv("QT_SCREEN_SCALE_FACTORS");
    setenv("QT_LOGGING_RULES", "*.warning=false", 1); // the toolkit complains of what a screen would have
}

void PagesSpeakToTerminal()
{
    SetMessageSink(ConsoleMessage);
    SetBoxSink(ConsoleMessage);
}

void LayOutForPaper(TEdcDocument &doc)
{
    enum { PAPER_DPI = 600 };
    __enter
        doc.Refresh(0); __test;
        TMeasureDC dc(PAPER_DPI);
        TEdcZoom zoom;
        zoom.SetCustom(100);
        doc.LayoutBlocks(dc, &zoom); __test;
    __point
    __treat
}
