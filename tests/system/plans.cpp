// A plan with rectangles and lines in a window, for looking at and for roads on a real screen. It starts with
// the plan opened.
#include "lib/charstr.h"
#include "support/plandoc.h"
#include "usr/edcapp.h"
#include "win/frame.h"
#include "win/gadgets.h"

#include <memory>

namespace
{
std::unique_ptr<TPlanDoc> document;
std::unique_ptr<TControlBar> toolBar;
std::unique_ptr<TStatusBar> statusBar;

void StartUp()
{
    StrCopy(TEdcApplication::title, "Planprobe", sizeof TEdcApplication::title);
    TEdcApplication::menuId = 1000;
    TEdcApplication::iconId = 1030;
    toolBar = std::make_unique<TControlBar>();
    for (auto [picture, command] : {std::pair{1607, int{EDC_TlSELECT}}, std::pair{1603, int{EDC_TlSTOCK}},
                                    std::pair{1604, int{EDC_TlRECT}}, std::pair{1609, int{PLAN_LINETOOL}},
                                    std::pair{1606, int{EDC_CmDELETE}}, std::pair{1608, int{PLAN_RECTS}},
                                    std::pair{1600, int{PLAN_LINES}}})
        toolBar->Insert(std::make_unique<TButtonGadget>(picture, command));
    statusBar = std::make_unique<TStatusBar>();
    TEdcApplication::toolBar = toolBar.get();
    TEdcApplication::statusBar = statusBar.get();
    document = std::make_unique<TPlanDoc>();
    SetAppDocument(document.get());
}

class PlansApplication : public TEdcApplication
{
public:
    using TEdcApplication::TEdcApplication;
    /// The window is on the screen at the first idle turn.
    bool IdleAction(long idleCount) override
    {
        if (!started) {
            started = true;
            document->Start();
        }
        return TEdcApplication::IdleAction(idleCount);
    }

private:
    bool started = false;
};
} // namespace

int main(int argc, char **argv)
{
    PlansApplication application(argc, argv);
    TEdcApplication::startUp = StartUp;
    int code = application.Run();
    document.reset();
    toolBar.reset();
    statusBar.reset();
    return code;
}
