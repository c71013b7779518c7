// A plan on no screen for tests of what lies on it: 10 px a metre, (0, 0) at (20, 300) px, a grid of half a
// metre and steps of 5 degrees, with the layer of rectangles active under the selector. Shapes show what is
// inside them and fail where a test wants it.
#ifndef TESTS_USR_PLANCASE_H
#define TESTS_USR_PLANCASE_H

#include "lib/xfail.h"
#include "plainplan.h"
#include "support/plandoc.h"
#include "support/recorddc.h"
#include "support/testapp.h"
#include "usr/edcapp.h"

#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <string>
#include <utility>
#include <vector>

/// Which operation of the shapes is to fail.
struct PlanFault {
    std::string at; // its name, empty for none
    int call = 0;   // which call of it from now, 1 for the next
    int fired = 0;

    void Meet(const char *name)
    {
        if (at != name || --call != 0)
            return;
        ++fired;
        XRaise(XALLOC, __FILE__, __LINE__);
    }
};

class SeenRect : public TPlanRect
{
public:
    using TEdcDrawRect::devCorners;
    using TEdcDrawRect::dragCorners;
    using TEdcDrawRect::kind;
    using TEdcDrawSprite::dragOk;
    using TEdcDrawSprite::handles;
    using TEdcDrawSprite::MakeHandles;
    using TEdcDrawSprite::toolId;
    using TPlanRect::TPlanRect;

    void SetTool(int id) override { Meet("tool"), TPlanRect::SetTool(id); }
    void Layout(TDC &dc) override { Meet("layout"), TPlanRect::Layout(dc); }
    void Describe(TEdcDrawDesc &d, double refAngle) override
    {
        Meet("describe"), TPlanRect::Describe(d, refAngle);
    }
    TEdcDrawSprite *Apply(TEdcDrawDrag &drag) override
    {
        Meet("apply");
        return xCode == XNULL ? TPlanRect::Apply(drag) : this;
    }
    void DragUpdate(TEdcDrawDrag &drag) override
    {
        Meet("update");
        if (xCode == XNULL)
            TPlanRect::DragUpdate(drag);
    }
    void DragPaint(TDC &dc) override
    {
        Meet("paint");
        if (xCode == XNULL)
            TPlanRect::DragPaint(dc);
    }
    void Store() override { Meet("store"), TPlanRect::Store(); }
    TEdcDrawRect *Clone() override
    {
        Meet("clone");
        if (xCode != XNULL)
            return NULL;
        auto *copy = new SeenRect(*this);
        Meet("half clone"); // there it is, but its model failed
        return copy;
    }

    PlanFault *fault = NULL; // view

private:
    void Meet(const char *name)
    {
        if (fault)
            fault->Meet(name);
    }
};

class SeenLine : public TPlanLine
{
public:
    using TEdcDrawLine::devEnds;
    using TEdcDrawLine::dragEnds;
    using TEdcDrawSprite::handles;
    using TEdcDrawSprite::toolId;
    using TPlanLine::TPlanLine;
    TEdcDrawLine *Clone() override { return new SeenLine(*this); }
};

inline plain::SHAPE PlainOf(const TEdcSprite *spr)
{
    if (auto *line = dynamic_cast<const TEdcDrawLine *>(spr))
        return {true, {line->Centre().x, line->Centre().y}, line->Length(), 0, line->LineAngle(), false};
    const auto &rect = dynamic_cast<const TEdcDrawRect &>(*spr);
    return {false, {rect.Centre().x, rect.Centre().y}, rect.Size().x, rect.Size().y, rect.RectAngle(), false};
}

class PlanBench
{
public:
    PlanBench()
    {
        TestApplication();
        SetAppDocument(&doc);
        doc.NewDocument(true);
        Scale(10, {20, 300});
        Plan().manager.Resume(true);
        LayOut();
    }

    TDrawBlock &Plan() { return *doc.plan; }
    TPlanLayer &Rects() { return doc.plan->rects; }
    TPlanLayer &Lines() { return doc.plan->lines; }
    TEdcMouseTool &Tool() { return *doc.plan->tool; }
    void Scale(double scale, TPoint origin)
    {
        axes.scale = scale;
        axes.origin = origin;
        SetSnap(0.5, AgPI / 36);
        Plan().axes.xScale = Plan().axes.yScale = scale;
        Plan().axes.originX = origin.x;
        Plan().axes.originY = origin.y;
    }
    void SetSnap(double step, double angle)
    {
        axes.snap = step;
        axes.angleSnap = angle;
        Plan().axes.SetSnap(step, step);
        Plan().axes.SetAngle(0, angle);
    }
    /// As the document's refresh does it, but on these axes.
    void LayOut()
    {
        Plan().manager.Layout(dc);
        Plan().manager.Paint(dc, {0, 0, 1000, 1000});
        dc.calls.clear();
        doc.obsolete = 0;
    }
    SeenRect *PutRect(const AgPOINT &middle, double width, double height, double turn = 0)
    {
        auto *spr = new SeenRect(middle, width, height, turn);
        Rects().Add(spr);
        return spr;
    }
    SeenLine *PutLine(const AgPOINT &from, const AgPOINT &to)
    {
        auto *spr = new SeenLine(from, to);
        Lines().Add(spr);
        return spr;
    }
    static std::string Place(const TEdcSprite *spr) { return plain::Text(PlainOf(spr)); }
    std::string TakeCalls() { return std::exchange(dc.calls, std::string()); }
    static XCODE TakeFailure() { return std::exchange(xCode, XNULL); }

    TPlanDoc doc;
    TRecordDC dc;
    plain::AXES axes;
};

class PlanCase : public testing::Test, protected PlanBench
{
protected:
    ~PlanCase() override
    {
        EXPECT_FALSE(TEdcDrawSprite::IsDragging());
        EXPECT_FALSE(TEdcDrawSprite::IsCopying());
    }
};

/// The recorded lines one by one.
inline std::vector<std::string> CallsOf(const std::string &calls)
{
    std::vector<std::string> lines;
    for (size_t from = 0, to; (to = calls.find('\n', from)) != std::string::npos; from = to + 1)
        lines.push_back(calls.substr(from, to - from));
    return lines;
}

/// What a polygon or a polyline of these points is recorded as, without pen and brush.
inline std::string PointsText(const std::vector<TPoint> &points)
{
    std::string text;
    for (TPoint p : points)
        text += " " + std::to_string(p.x) + "," + std::to_string(p.y);
    return text;
}

inline std::string GhostText(const plain::SHAPE &shape, const plain::AXES &axes)
{
    return (shape.line ? "Line" : "Polyline") + PointsText(plain::Outline(shape, axes)) + " pen ffffff xor";
}

/// The recorded ghosts, and how often each was drawn.
inline std::map<std::string, int> GhostsOf(const std::string &calls)
{
    std::map<std::string, int> ghosts;
    for (const std::string &line : CallsOf(calls))
        if (line.ends_with(" xor"))
            ++ghosts[line];
    return ghosts;
}

/// Each ghost was taken away again.
inline bool AllErased(const std::string &calls)
{
    for (const auto &[line, count] : GhostsOf(calls))
        if (count % 2 != 0)
            return false;
    return true;
}

#endif
