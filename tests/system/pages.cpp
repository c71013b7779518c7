// The framework's own document in a window, for looking at and for roads on a real screen. It starts with a new
// document.
#include "lib/charstr.h"
#include "support/pagedoc.h"
#include "usr/edcapp.h"
#include "win/frame.h"
#include "win/gadgets.h"

#include <memory>

namespace
{
std::unique_ptr<TPageDoc> document;
std::unique_ptr<TControlBar> toolBar;
std::unique_ptr<TStatusBar> statusBar;

void StartUp()
{
    StrCopy(TEdcApplication::title, "Seitenprobe", sizeof TEdcApplication::title);
    TEdcApplication::menuId = 1000;
    TEdcApplication::iconId = 1030;
    toolBar = std::make_unique<TControlBar>();
    for (auto [picture, command] : {std::pair{1605, 20035}, std::pair{1609, 20023}})
        toolBar->Insert(std::make_unique<TButtonGadget>(picture, command));
    toolBar->Insert(std::make_unique<TSeparatorGadget>());
    statusBar = std::make_unique<TStatusBar>();
    TEdcApplication::toolBar = toolBar.get();
    TEdcApplication::statusBar = statusBar.get();
    document = std::make_unique<TPageDoc>();
    SetAppDocument(document.get());
}

class PagesApplication : public TEdcApplication
{
public:
    using TEdcApplication::TEdcApplication;
    void InitMainWindow() override
    {
        enum { COMMAND_NEW = 20003 };
        TEdcApplication::InitMainWindow();
        MainWindow()->PostCommand(COMMAND_NEW);
    }
};
} // namespace

int main(int argc, char **argv)
{
    PagesApplication application(argc, argv);
    TEdcApplication::startUp = StartUp;
    int code = application.Run();
    document.reset();
    toolBar.reset();
    statusBar.reset();
    return code;
}
