// Gestures on a plan in a window: a step of a drag with 1,000 selected sprites, and a rubber band in 20 steps
// over 10,000, each beside its plain twin in the same run. The twin of the drag moves the sprites for good at
// each step and paints the window anew; that of the band does the same with the selection. The counter "times"
// is the ratio to the twin; both must come to the same places and pixels, or the program ends with an error.
#include "screen.h"
#include "support/plandoc.h"
#include "support/testapp.h"
#include "usr/edcapp.h"
#include "usr/edcutils.h"
#include "win/dc.h"

#include <cstdio>
#include <cstdlib>
#include <functional>

namespace
{
constexpr int BAND_STEPS = 20;

/// A plan with squares in columns and rows, the first one in the left lower corner.
struct Shown {
    Shown(int columns, int rows, double pitchX, double pitchY, double side) // m
    {
        TestApplication();
        SetAppDocument(&doc);
        doc.Create();
        testdoor::ResizeClient(doc, WINDOW);
        doc.Start();
        for (int i = 0; i < columns * rows; ++i)
            layer().Add(new TPlanRect(AgPOINT(FIRST_X + i % columns * pitchX, FIRST_Y + i / columns * pitchY),
                                      side, side));
        doc.Refresh(EDC_LAYOUT);
        testdoor::Settle();
    }
    ~Shown() { doc.modified = false; }

    TPlanLayer &layer() { return doc.plan->rects; }
    void Repaint()
    {
        doc.Refresh(EDC_PAINT);
        doc.Invalidate();
        doc.UpdateWindow();
    }
    /// Of places, selection and pixels.
    unsigned long long Sum()
    {
        testdoor::Settle();
        Repaint();
        unsigned long long sum = SUM_START;
        for (TEdcSprite *spr = layer().LnkFirst(); spr; spr = spr->lnkNext) {
            const AgPOINT &centre = static_cast<TPlanRect *>(spr)->Centre();
            sum = Mix(sum, static_cast<unsigned long long>(EdcNearest(centre.x * 1000)));
            sum = Mix(sum, static_cast<unsigned long long>(EdcNearest(centre.y * 1000)));
            sum = Mix(sum, layer().IsSelected(spr));
        }
        return PixelSum(doc, sum);
    }

    static constexpr double FIRST_X = 4.25, FIRST_Y = 2.25; // m
    TPlanDoc doc;
};

/// From grid line to grid line and back, 1 m to the right and 1 m up.
template <bool TWIN>
void Drag(benchmark::State &state)
{
    Shown shown(50, 20, 1, 1, 0.5);
    TPlanLayer &layer = shown.layer();
    layer.SelectAll(true, NULL);
    layer.SetFocus(layer.LnkFirst(), NULL);
    shown.doc.Refresh(EDC_PAINT);
    testdoor::Settle();
    TPoint grip = shown.doc.At(Shown::FIRST_X, Shown::FIRST_Y);
    TPoint beyond = shown.doc.At(Shown::FIRST_X + 1, Shown::FIRST_Y + 1);
    bool away = false;
    TMeasureDC dc(96);
    auto plainStep = [&] {
        away = !away;
        TEdcDrawDrag drag;
        drag.mode = EDC_DRAWDRAGMOVE;
        drag.shift = away ? AgVECTOR(1, 1) : AgVECTOR(-1, -1);
        for (TEdcSprite *spr = layer.SelFirst(); spr; spr = spr->selNext) {
            static_cast<TEdcDrawSprite *>(spr)->Apply(drag);
            spr->Layout(dc);
        }
        shown.Repaint();
    };
    auto step = [&] {
        away = !away;
        testdoor::Move(shown.doc, away ? beyond : grip, 0, true);
    };
    if (!TWIN) {
        testdoor::Press(shown.doc, grip);
        step();
    }
    Measure(state, "drag", TWIN, TWIN ? std::function<void()>(plainStep) : std::function<void()>(step), [&] {
        if (TWIN && !away)
            plainStep();
        if (!TWIN) {
            testdoor::Move(shown.doc, grip, 0, true);
            testdoor::Release(shown.doc, beyond);
        }
        shown.doc.Refresh(EDC_LAYOUT);
        return shown.Sum();
    });
}

template <bool TWIN>
void Band(benchmark::State &state)
{
    Shown shown(125, 80, 0.4, 0.25, 0.15);
    TPlanLayer &layer = shown.layer();
    TPoint from = shown.doc.At(1, 1);
    TPoint to = shown.doc.At(59, 23);
    auto at = [&](int i) {
        return TPoint{from.x + (to.x - from.x) * i / BAND_STEPS, from.y + (to.y - from.y) * i / BAND_STEPS};
    };
    auto plainBand = [&] {
        layer.SelectAll(false, NULL);
        shown.Repaint();
        for (int i = 1; i <= BAND_STEPS; ++i) {
            TPoint a = shown.doc.plan->At(1, 1);
            TPoint b = a + (at(i) - from);
            TRect band = TRect{a.x, a.y, b.x, b.y}.Normalized();
            for (TEdcSprite *spr = layer.LnkFirst(); spr; spr = spr->lnkNext)
                layer.Select(spr, spr->InRect(band), NULL);
            shown.Repaint();
        }
    };
    auto band = [&] {
        testdoor::Press(shown.doc, from);
        for (int i = 1; i <= BAND_STEPS; ++i)
            testdoor::Move(shown.doc, at(i), 0, true);
        testdoor::Release(shown.doc, to);
    };
    Measure(state, "band", TWIN, TWIN ? std::function<void()>(plainBand) : std::function<void()>(band), [&] {
        if (layer.CountSel() != layer.CountLnk()) {
            fprintf(stderr, "the band selected %d of %d\n", layer.CountSel(), layer.CountLnk());
            exit(1);
        }
        return shown.Sum();
    });
}

BENCHMARK(Drag<true>)->Name("drag_step_with_1000_selected/plain_twin")->Unit(benchmark::kMillisecond);
BENCHMARK(Drag<false>)->Name("drag_step_with_1000_selected")->Unit(benchmark::kMillisecond);
BENCHMARK(Band<true>)->Name("band_over_10000/plain_twin")->Unit(benchmark::kMillisecond);
BENCHMARK(Band<false>)->Name("band_over_10000")->Unit(benchmark::kMillisecond);
} // namespace

int main(int argc, char **argv)
{
    return RunOffScreen(argc, argv);
}
