// The framework's own document in a window, for looking at and for roads on a real screen. It starts with a new
// document.
#include "probe.h"
#include "support/pagedoc.h"

namespace
{
std::unique_ptr<TProbe<TPageDoc>> probe;

void StartUp()
{
    const std::vector<ProbeButton> buttons = {{1605, 20035}, {1609, 20023}};
    probe = std::make_unique<TProbe<TPageDoc>>("Seitenprobe", buttons);
    probe->toolBar.Insert(std::make_unique<TSeparatorGadget>());
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
    return RunProbe(application, probe, StartUp);
}
