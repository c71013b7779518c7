// A plan with rectangles and lines in a window, for looking at and for roads on a real screen. It starts with
// the plan opened.
#include "probe.h"
#include "support/plandoc.h"

namespace
{
std::unique_ptr<TProbe<TPlanDoc>> probe;

void StartUp()
{
    const std::vector<ProbeButton> buttons = {{1607, EDC_TlSELECT},  {1603, EDC_TlSTOCK},  {1604, EDC_TlRECT},
                                              {1609, PLAN_LINETOOL}, {1606, EDC_CmDELETE}, {1608, PLAN_RECTS},
                                              {1600, PLAN_LINES}};
    probe = std::make_unique<TProbe<TPlanDoc>>("Planprobe", buttons);
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
            probe->document.Start();
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
    return RunProbe(application, probe, StartUp);
}
