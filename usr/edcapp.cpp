#include "usr/edcapp.h"

#include "lib/cde.h"
#include "lib/platform.h"
#include "lib/xassert.h"
#include "res/tables.h"
#include "usr/edcbase2.h"
#include "usr/edcutils.h"
#include "win/frame.h"
#include "win/gadgets.h"
#include "win/resources.h"
#include "lib/xon.h"

namespace
{
TEdcDocument *appDocumentWin = NULL; // view; the frame's client
} // namespace

char TEdcApplication::title[32] = "";
int TEdcApplication::iconId = 0;
int TEdcApplication::menuId = 0;
TControlBar *TEdcApplication::toolBar = NULL;
TStatusBar *TEdcApplication::statusBar = NULL;
void (*TEdcApplication::startUp)() = [] {};

TEdcApplication::TEdcApplication(int &argc, char **argv) : TApplication(title, argc, argv)
{
    static const ResTABLES tables = {resMenus,    resMenuCount,    resAccels,  resAccelCount,
                                     resPictures, resPictureCount, resDialogs, resDialogCount};
    EdcUseResources();
    SetResourceTables(&tables);
    SetFailureHook(EdcFailureHook);
}

TEdcApplication::~TEdcApplication()
{
    SetMainWindow(NULL);
    SetStatusWindow(NULL);
    frame.reset();
    SetFailureHook(NULL);
    SetResourceTables(NULL);
    SetResTextSink(NULL);
}

void TEdcApplication::InitMainWindow()
{
    __enter
        FindProgramPath(); __test;
        startUp(); __test;
        ASSERT(appDocumentWin != NULL);
        SetName(title);
        frame = std::make_unique<TDecoratedFrame>(title, *appDocumentWin);
        frame->SetIcon(iconId);
        frame->AssignMenu(menuId);
        if (statusBar)
            frame->Insert(*statusBar, TDecoratedFrame::BOTTOM);
        if (toolBar)
            frame->Insert(*toolBar, TDecoratedFrame::TOP);
        SetStatusWindow(statusBar);
        SetMainWindow(frame.get());
    __point
        frame.reset();
    __treat
}

TEdcDocument *AppDocument()
{
    ASSERT(appDocumentWin != NULL);
    return appDocumentWin;
}

bool HasAppDocument()
{
    return appDocumentWin != NULL;
}

void SetAppDocument(TEdcDocument *document)
{
    if (document)
        ASSERT(appDocumentWin == NULL);
    appDocumentWin = document;
}

TStatusBar *AppStatusBar()
{
    return TEdcApplication::statusBar;
}
