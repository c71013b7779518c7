// A plan in a window for tests of the tools on it, which are called with a device context that writes down what
// they draw: 10 px a metre, (0, 0) at (20, 300) px of the block, a grid of half a metre. A layer of its own,
// beside the plan's, tells what a tool asked it and fails where a test wants it.
#ifndef TESTS_USR_TOOLCASE_H
#define TESTS_USR_TOOLCASE_H

#include "gesture.h"
#include "planwindow.h"
#include "support/recorddc.h"
#include "win/dc.h"

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <string>
#include <utility>
#include <vector>

/// Which call of which operation is to fail, counted from 1.
struct ToolFault {
    std::string at;
    int call = 0;

    bool Meets(const char *name)
    {
        if (at != name || --call != 0)
            return false;
        XRaise(XALLOC, __FILE__, __LINE__);
        return true;
    }
};

class ToolRect : public TPlanRect
{
public:
    ToolRect(ToolFault *aFault, const AgPOINT &middle, double width, double height)
        : TPlanRect(middle, width, height), fault(aFault)
    {
    }
    void Recompute() override
    {
        if (!fault->Meets("recompute"))
            TPlanRect::Recompute();
    }
    void Describe(TEdcDrawDesc &d, double refAngle) override
    {
        if (!fault->Meets("describe"))
            TPlanRect::Describe(d, refAngle);
    }
    TEdcDrawSprite *Apply(TEdcDrawDrag &drag) override
    {
        return fault->Meets("apply") ? this : TPlanRect::Apply(drag);
    }
    void SetState(uint16_t mask, bool on) override
    {
        TPlanRect::SetState(mask, on);
        if (on)
            fault->Meets(mask == EDC_SsFOCUS ? "focus" : "select");
    }

private:
    ToolFault *fault; // view
};

/// Rectangles of 4 x 2 m, whose middle is not where they begin.
class ToolLayer : public TPlanLayer
{
public:
    using TPlanLayer::TPlanLayer;
    TEdcDrawSprite *CreateSprite(const TEdcDrawCreation &creation) override
    {
        creations.push_back(creation);
        if (fault.Meets("create") || !CanCreate(creation) || static_cast<int>(creations.size()) > most)
            return NULL;
        return new ToolRect(&fault, AgPOINT(7, 5), stock.width, stock.height);
    }
    void *QueryCreation(int asker, bool first) override
    {
        queries += std::to_string(asker) + (first ? " first " : " again ");
        return fault.Meets("query") ? NULL : TPlanLayer::QueryCreation(asker, first);
    }

    std::vector<TEdcDrawCreation> creations; // as they came
    std::string queries;
    int most = 1000; // sprites it makes
    ToolFault fault;
};

/// A tool that writes down what it is asked to draw and to finish, and fails where a test wants it.
template <class TOOL>
class SeenTool : public TOOL
{
public:
    using TOOL::leftState;
    using TOOL::outside;
    using TOOL::rightState;
    using TOOL::TOOL;

    std::string States() const
    {
        return std::to_string(leftState) + " " + std::to_string(rightState) + (outside ? " outside" : "");
    }

    std::string calls;
    ToolFault fault;
};

class ToolCase : public PlanWindow
{
protected:
    ToolCase()
    {
        FixAxes();
        layer =
            std::make_unique<ToolLayer>(PLAN_RECTS, uint16_t{EDC_LoACTIVABLE | EDC_LoVISIBLE}, &doc.plan->axes);
    }

    /// A layout of the document fits them to the window.
    void FixAxes()
    {
        TEdcAxes &axes = doc.plan->axes;
        axes.xScale = axes.yScale = 10;
        axes.originX = 20;
        axes.originY = 300;
    }
    /// Pixels of a place in metres.
    static TPoint Px(double x, double y)
    {
        return {static_cast<int>(std::lround(20 + 10 * x)), static_cast<int>(std::lround(300 - 10 * y))};
    }
    void Play(TEdcMouseTool &tool, const std::string &events)
    {
        FixAxes();
        for (const GestureEvent &event : ParseGesture(events, NULL))
            PlayEvent(tool, dc, event);
    }
    /// From a press to a release, both in metres.
    void Draw(TEdcMouseTool &tool, double x1, double y1, double x2, double y2, unsigned keys = 0)
    {
        FixAxes();
        tool.LeftDown(dc, keys, Px(x1, y1));
        tool.MouseMove(dc, keys, Px(x2, y2));
        tool.LeftUp(dc, keys, Px(x2, y2));
    }
    void Click(TEdcMouseTool &tool, double x, double y)
    {
        FixAxes();
        tool.LeftDown(dc, 0, Px(x, y));
        tool.LeftUp(dc, 0, Px(x, y));
    }
    static void ExpectNoParameters()
    {
        testdoor::Script([](testdoor::ModalBox &box) {
            EXPECT_EQ(box.Kind(), "message");
            EXPECT_EQ(box.Text(), "Objekt kann nicht hergestellt werden.\n\nZuerst sind die Objektparameter\n"
                                  "zu spezifizieren.");
            box.Answer(WIN_ID_OK);
        });
    }
    ToolRect *Put(double x, double y)
    {
        auto *spr = new ToolRect(&layer->fault, AgPOINT(x, y), 4, 2);
        layer->Add(spr);
        layer->Select(spr, true, NULL);
        layer->SetFocus(spr, NULL);
        return spr;
    }
    void LeaveSelector() { doc.plan->manager.SetTool(&doc.plan->rectCreator); }
    /// Whether the tool has given the command that leads to the selector.
    bool TookSelector()
    {
        testdoor::Settle();
        bool took = doc.plan->manager.Tool() == &doc.plan->selector;
        LeaveSelector();
        testdoor::Settle();
        return took;
    }
    TCursor Shown()
    {
        TCursor now = doc.SetCursor({});
        doc.SetCursor(now);
        return now;
    }
    std::string TakeCalls() { return std::exchange(dc.calls, std::string()); }
    static XCODE TakeFailure() { return std::exchange(xCode, XNULL); }

    std::unique_ptr<ToolLayer> layer;
    TRecordDC dc;
};

/// With one tool on that layer.
template <class TOOL>
class ToolOf : public ToolCase
{
protected:
    ToolOf(int id, int cursorId, int nextCommand) : tool(id, cursorId, nextCommand)
    {
        LeaveSelector();
        tool.SetLayer(layer.get());
    }
    TOOL tool;
};

/// Of the pixels of a surface, row by row.
inline std::vector<TColor> PixelsOf(const TMemoryDC &dc, TSize size)
{
    std::vector<TColor> pixels;
    for (int y = 0; y < size.cy; ++y)
        for (int x = 0; x < size.cx; ++x)
            pixels.push_back(dc.Pixel({x, y}));
    return pixels;
}

/// A ground of stripes and colours, on which a trace would show.
inline void PaintGround(TDC &dc, TSize size)
{
    const TColor colors[] = {WIN_WHITE, WIN_BLACK, {0, 0, 255}, {0, 255, 0}, {120, 130, 140}};
    for (int x = 0, i = 0; x < size.cx; x += 17, ++i)
        dc.FillRect({x, 0, x + 17, size.cy}, SolidBrush(colors[i % 5]));
}

#endif
