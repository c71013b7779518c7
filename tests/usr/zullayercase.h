// A layer of the things that have numbers on a plan, over a hall of 20 x 12 x 6 m, on no screen: 10 px a metre,
// (0, 0) at (20, 300) px, a grid of half a metre and steps of 5 degrees. The layer is active under the
// selector. Dialogs are scripted.
#ifndef TESTS_USR_ZULLAYERCASE_H
#define TESTS_USR_ZULLAYERCASE_H

#include "gesture.h"
#include "plancase.h"
#include "support/chance.h"
#include "support/child.h"
#include "support/fault.h"
#include "usr/edcbase2.h"
#include "usr/zulobjects.h"
#include "win/application.h"
#include "zuldlgcase.h"

#include <array>
#include <string>
#include <vector>

enum { FONT_PIXELS = 10 };         // a digit is 4 px wide and 10 high
enum { TOLERANCE = 3, GRASP = 7 }; // px: reach of a click, extent of a handle
const double DEGREE = AgPI / 180;  // rad

/// How a thing may stand on its plan.
struct LOOK {
    const char *name;
    bool active, selected;
    const char *line, *fill; // rrggbb
};
const LOOK looks[] = {{"idle", false, false, "000000", "ffffff"},
                      {"active", true, false, "0000ff", "ffffff"},
                      {"selected", true, true, "00ff00", "000000"}};

/// All subsets of `n` fields.
inline std::vector<unsigned> Subsets(size_t n)
{
    std::vector<unsigned> all;
    for (unsigned set = 0; set < 1U << n; ++set)
        all.push_back(set);
    return all;
}
inline bool Has(unsigned set, size_t field)
{
    return (set >> field & 1) != 0;
}

class LayerCase : public DialogCase
{
protected:
    LayerCase()
    {
        TestApplication();
        SetAppDocument(&doc);
        axes.xScale = axes.yScale = 10;
        axes.originX = 20;
        axes.originY = 300;
        axes.SetSnap(0.5, 0.5);
        axes.SetAngle(0, 5 * DEGREE);
        plainAxes = {10, {20, 300}, 0.5, 5 * DEGREE};
        doc.modified = false;
        EdcForgetPlaces();
    }
    ~LayerCase() override
    {
        EXPECT_STREQ(xCode, XNULL);
        EXPECT_FALSE(TEdcDrawSprite::IsDragging());
        doc.modified = false;
    }

    void Ready(TZulMarkedLayer &layer)
    {
        layer.SetFont("Arial", FONT_PIXELS);
        layer.SetMinSizes({1, 1}, {3, 3});
        layer.SetActive(true);
        selector.SetLayer(&layer);
        LayOut(layer);
    }
    /// As a refresh of the document does it.
    void LayOut(TZulMarkedLayer &layer)
    {
        layer.Layout(dc);
        layer.SetTool(EDC_TlSELECT);
        dc.calls.clear();
        doc.obsolete = 0;
        doc.modified = false;
    }
    static void Choose(TZulMarkedLayer &layer, TEdcSprite *spr)
    {
        layer.SelectAll(false, NULL);
        layer.Select(spr, true, NULL);
        layer.SetFocus(spr, NULL);
    }
    void Play(const std::string &events)
    {
        for (const GestureEvent &event : ParseGesture(events, NULL))
            PlayEvent(selector, dc, event);
    }
    static void Look(TEdcSprite &spr, const LOOK &look)
    {
        spr.state =
            static_cast<uint16_t>((look.active ? EDC_SsACTIVE : 0) | (look.selected ? EDC_SsSELECTED : 0));
    }
    std::string TakeCalls() { return std::exchange(dc.calls, std::string()); }
    TPoint Px(const AgPOINT &p) const { return plainAxes.Pixel({p.x, p.y}); }

    TEdcDocument doc;
    TEdcAxes axes;
    plain::AXES plainAxes; // the same, for what is computed apart
    EmROOM room{20, 12, 6, "", "", 0};
    TRecordDC dc;
    TEdcDrawSelector selector{EDC_TlSELECT, 21690, 21691};
};

/// What is recorded for a label in the middle of a marker.
inline std::string LabelText(int number, TPoint middle, const char *line)
{
    std::string text = std::to_string(number);
    int width = 4 * static_cast<int>(text.size());
    return EdcFormat("Text %d,%d \"%s\" Arial 10 %s\n", middle.x - width / 2, middle.y - 5, text.c_str(), line);
}

/// Ghosts that are drawn twice leave no trace, and seen once they show.
template <class SPRITE>
void ExpectGhost(SPRITE &spr, TEdcDrawDrag &drag, TEdcDrawLayer &layer)
{
    const TSize extent = {300, 320};
    TMemoryDC screen(extent, 96);
    auto pixels = [&] {
        std::vector<TColor> all;
        for (int y = 0; y < extent.cy; ++y)
            for (int x = 0; x < extent.cx; ++x)
                all.push_back(screen.Pixel({x, y}));
        return all;
    };
    const TColor ground[] = {WIN_WHITE, WIN_BLACK, {0, 0, 255}, {0, 255, 0}, {120, 130, 140}};
    for (int x = 0, i = 0; x < extent.cx; x += 17, ++i)
        screen.FillRect({x, 0, x + 17, extent.cy}, SolidBrush(ground[i % 5]));
    layer.Paint(screen, {0, 0, extent.cx, extent.cy});
    std::vector<TColor> before = pixels();
    spr.DragUpdate(drag);
    spr.DragPaint(screen);
    EXPECT_NE(pixels(), before) << "the ghost is seen";
    spr.DragPaint(screen);
    EXPECT_EQ(pixels(), before) << "and gone";
}

#endif
