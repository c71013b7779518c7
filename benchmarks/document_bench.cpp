// A report of 500 text blocks: its layout, a repaint of one screen and a scroll step, each beside its plain
// twin in the same run. The twin of the layout copies whatever it parts and asks the font for every character;
// that of the repaint paints every block of the document, that of the scroll step the whole window. The counter
// "times" is the ratio to the twin; both must come to the same places and pixels, or the program ends with an
// error.
#include "screen.h"
#include "support/pagedoc.h"
#include "support/plaintext.h"
#include "support/testapp.h"
#include "usr/edcapp.h"
#include "usr/edcutils.h"
#include "win/dc.h"

#include <string>
#include <vector>

namespace
{
constexpr int BLOCKS = 500;
constexpr int SCROLL_STEP = 60; // px, three lines

/// Paints all blocks for whatever part is asked.
class PlainDoc : public TPageDoc
{
public:
    void Paint(TDC &dc, bool, const TRect &) override
    {
        PrepareDC(dc);
        for (TEdcBlock *blk = blocks; blk; blk = blk->next) {
            dc.SetViewportOrg(ToWindow(TPoint{blk->rect.x, blk->rect.y}));
            blk->Paint(dc, {0, 0, blk->rect.width, blk->rect.height});
        }
    }
};

/// A document with a window, filled and painted once.
template <class DOCUMENT>
struct Shown {
    Shown()
    {
        TestApplication();
        SetAppDocument(&doc);
        doc.Create();
        testdoor::ResizeClient(doc, WINDOW);
        doc.DoCommand(20003);
        doc.Fill(BLOCKS);
        doc.Refresh(EDC_LAYOUT);
        testdoor::Settle();
    }
    DOCUMENT doc;
};

/// A chain of texts as a report has them, and nothing else.
class TextDoc : public TEdcDocument
{
public:
    TextDoc()
    {
        TestApplication();
        SetAppDocument(this);
        SetMargins(TEdcMargins(1.0, 1.0, 1.0, 1.0, EDC_UCM));
        font.Set("Courier New", 12, 0);
        for (int i = 0; i < BLOCKS; ++i) {
            texts.push_back(EdcFormat(PAGEDOC_PARAGRAPH, i));
            auto *blk = new TEdcTextBlock;
            blk->SetText(texts.back().c_str());
            blk->SetFontRec(&font);
            blk->SetSize(1.0);
            blk->SetOptions(EDC_BoROW);
            LinkBlock(blk, NULL, true);
        }
    }
    ~TextDoc() override { RemoveAllBlocks(); }

    TEdcFontRec font;
    std::vector<std::string> texts;
};

void LayoutTwin(benchmark::State &state)
{
    TextDoc doc;
    TMeasureDC dc(96);
    unsigned long long sum = 0;
    PlainOrder order;
    order.face = doc.font.name;
    order.size = EdcInchToPixel(doc.font.size / 72.0, 1.0, 96);
    order.width = EdcInchToPixel(doc.page.Width(), 1.0, 96);
    order.breakMode = EDC_BREAKWIDTH;
    Measure(
        state, "layout", true,
        [&] {
            sum = 0;
            for (const std::string &text : doc.texts) {
                order.source = text;
                sum = Mix(sum, static_cast<unsigned long long>(LayPlainText(order, dc).height));
            }
        },
        [&] { return sum; });
}

void Layout(benchmark::State &state)
{
    TextDoc doc;
    TMeasureDC dc(96);
    TEdcZoom zoom;
    zoom.SetCustom(100);
    Measure(
        state, "layout", false, [&] { doc.LayoutBlocks(dc, &zoom); },
        [&] {
            unsigned long long sum = 0;
            for (TEdcBlock *blk = doc.blocks; blk; blk = blk->next)
                sum = Mix(sum, static_cast<unsigned long long>(blk->rect.height));
            return sum;
        });
}

template <class DOCUMENT>
void Repaint(benchmark::State &state)
{
    Shown<DOCUMENT> shown;
    TEdcDocument &doc = shown.doc;
    doc.Scroller()->ScrollTo(0, doc.Scroller()->YRange() / 2);
    Measure(
        state, "repaint", std::is_same_v<DOCUMENT, PlainDoc>,
        [&] {
            doc.Invalidate();
            doc.UpdateWindow();
        },
        [&] { return PixelSum(doc); });
}

template <bool TWIN>
void Scroll(benchmark::State &state)
{
    Shown<TPageDoc> shown;
    TEdcDocument &doc = shown.doc;
    int top = doc.Scroller()->YRange() / 2;
    Measure(
        state, "scroll", TWIN,
        [&] {
            doc.Scroller()->ScrollBy(0, doc.Scroller()->YPos() > top ? -SCROLL_STEP : SCROLL_STEP);
            if (TWIN)
                doc.Invalidate();
            doc.UpdateWindow();
        },
        [&] {
            doc.Scroller()->ScrollTo(0, top);
            doc.UpdateWindow();
            return PixelSum(doc);
        });
}

BENCHMARK(LayoutTwin)->Name("layout_of_500_blocks/plain_twin")->Unit(benchmark::kMillisecond);
BENCHMARK(Layout)->Name("layout_of_500_blocks")->Unit(benchmark::kMillisecond);
BENCHMARK(Repaint<PlainDoc>)->Name("repaint_of_a_screen/plain_twin")->Unit(benchmark::kMillisecond);
BENCHMARK(Repaint<TPageDoc>)->Name("repaint_of_a_screen")->Unit(benchmark::kMillisecond);
BENCHMARK(Scroll<true>)->Name("scroll_step/plain_twin")->Unit(benchmark::kMillisecond);
BENCHMARK(Scroll<false>)->Name("scroll_step")->Unit(benchmark::kMillisecond);
} // namespace

int main(int argc, char **argv)
{
    return RunOffScreen(argc, argv);
}
