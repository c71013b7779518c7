// The start-up code: what the application is called and looks like, and its one document.
#include "lib/cde.h"
#include "lib/charstr.h"
#include "usr/edcapp.h"
#include "usr/edcctlg.h"
#include "usr/edcutils.h"
#include "usr/zuldoc.h"
#include "win/gadgets.h"

#include "lib/xon.h"

namespace
{
enum { MENU = 1000, ICON = 1030 };

std::unique_ptr<TZulDoc> document;
std::unique_ptr<TControlBar> toolBar;
std::unique_ptr<TStatusBar> statusBar;

/// A button, or with picture 0 a separator.
struct GADGET {
    int picture;
    int command;
};
const GADGET gadgets[] = {{1607, 21011}, {},           {1603, 21511},
                          {1604, 21515}, {},           {},
                          {1606, 21001}, {},           {},
                          {1601, 2001},  {1600, 2501}, {1602, 3001},
                          {1608, 5001},  {},           {1605, 20035},
                          {1609, 1525}};

std::unique_ptr<TControlBar> MakeToolBar()
{
    auto bar = std::make_unique<TControlBar>(TGadgetWindowFont{.points = 10, .bold = false, .italic = false});
    for (const GADGET &gadget : gadgets) {
        if (gadget.picture != 0)
            bar->Insert(std::make_unique<TButtonGadget>(gadget.picture, gadget.command));
        else
            bar->Insert(std::make_unique<TSeparatorGadget>());
    }
    return bar;
}
} // namespace

void ZulStartUp()
{
    __enter
        CdeFILENAME catalogs(ProgramFolder());
        catalogs.AddName("Katalogy");
        TEdcCtlgList::SetCatalogDirectory(catalogs, "zec"); __test;
        StrCopy(TEdcApplication::title, "Zulerion", sizeof TEdcApplication::title);
        TEdcApplication::iconId = ICON;
        toolBar = MakeToolBar();
        statusBar = std::make_unique<TStatusBar>();
        TEdcApplication::toolBar = toolBar.get();
        TEdcApplication::statusBar = statusBar.get();
        TEdcApplication::menuId = MENU;
        document = std::make_unique<TZulDoc>(); __test;
        SetAppDocument(document.get());
    __point
        ZulShutDown();
    __treat
}

void ZulShutDown()
{
    document.reset();
    TEdcApplication::toolBar = NULL;
    TEdcApplication::statusBar = NULL;
    toolBar.reset();
    statusBar.reset();
}
