// Random programs of gestures on a plan: with every event on no screen, followed by a plain model of geometry,
// selection and focus; and as whole gestures in a window, which must leave what a fresh paint shows.
#include "layerfaults.h"
#include "plancase.h"
#include "planmodel.h"
#include "support/chance.h"
#include "support/programtables.h"
#include "win/testdoor.h"

#include <algorithm>
#include <functional>

namespace
{
/// Draws nowhere. Ghosts are added up so that two equal ones come to nothing.
class GhostSumDC : public TRecordDC
{
public:
    void Polyline(const TPoint *points, int count) override
    {
        if (state.mix != WIN_MIX_XOR)
            return;
        uint64_t hash = static_cast<uint64_t>(count);
        for (int i = 0; i < count; ++i)
            hash = (hash ^ static_cast<uint64_t>(points[i].x * 40503LL + points[i].y)) * 0x9E3779B97F4A7C15u;
        sum ^= hash;
        ++ghosts;
    }
    void Polygon(const TPoint *, int) override {}
    void InvertRect(const TRect &) override {}
    void Rectangle(const TRect &rect) override
    {
        if (state.mix == WIN_MIX_XOR)
            sum ^=
                static_cast<uint64_t>((rect.left * 7919 + rect.top) * 104729LL + rect.right * 31 + rect.bottom);
    }

    uint64_t sum = 0; // 0 where all ghosts are gone
    int ghosts = 0;
};

/// What a program works on.
struct Kind {
    const char *name;
    int sprites;     // of each layer at the start
    int most;        // of each layer, before they are cleared away
    double extent;   // m, of the largest
    int commandOnce; // in so many events
};
const Kind kinds[] = {
    {"few and small", 3, 8, 3, 14},       {"a heap", 8, 16, 12, 14},
    {"one or none", 1, 2, 6, 10},         {"gestures alone", 6, 20, 6, 1000},
    {"commands in between", 6, 16, 6, 3},
};

/// A plan with the model beside it.
class Program : public PlanBench
{
public:
    Program(const Kind &aKind, unsigned from) : kind(aKind), chance(from)
    {
        model.layers[0].active = true;
        Zoom();
        for (int i = 0; i < kind.sprites; ++i)
            for (int ly : {0, 1})
                Put(ly);
        Work();
    }

    void Step()
    {
        bool idle = model.IsIdle();
        if (chance.One(kind.commandOnce))
            Change();
        else
            Gesture();
        Work();
        ++events;
        drags += model.dragging;
        bands += model.band;
        if (idle)
            screen.sum = 0; // whatever was cut off before
        cutOff &= !idle;
        if (model.IsIdle() && !cutOff)
            leftGhosts += screen.sum != 0;
    }
    /// Where plan and model differ; empty where they agree.
    std::string Difference()
    {
        std::string text;
        for (int ly : {0, 1})
            text += DifferenceOf(Real(ly), model.layers[ly], ly == 0 ? "rects: " : "lines: ");
        if ((Plan().manager.Tool() == &Plan().selector) != (model.tool == PlanModel::SELECTOR))
            text += "another tool";
        if (TEdcDrawSprite::IsDragging() && !model.dragging && model.IsIdle())
            text += "a drag is left";
        return text;
    }
    void Shift(const AgVECTOR &by) // behind the model's back
    {
        TEdcDrawDrag drag;
        drag.mode = EDC_DRAWDRAGMOVE;
        drag.shift = by;
        static_cast<TEdcDrawSprite *>(Real(0).LnkFirst())->Apply(drag);
    }

    PlanModel model;
    int events = 0, drags = 0, bands = 0, leftGhosts = 0, zooms = 0;
    TPlanLayer &Real(int ly) { return ly == 0 ? Rects() : Lines(); }

private:
    /// As the document's refresh does it.
    void Work()
    {
        if (doc.IsObsolete(EDC_LAYOUT))
            Plan().manager.Layout(screen);
        if (doc.IsObsolete(EDC_PAINT))
            Plan().manager.Paint(screen, {});
        doc.obsolete = 0;
    }
    /// Scales at which no line of the grid falls between two pixels.
    void Zoom()
    {
        const double scales[] = {9.7345, 13.3771, 6.1393};
        Scale(chance.Of(scales), {chance.Int(-50, 50), chance.Int(250, 330)});
        model.axes = axes;
        doc.Obsolete(EDC_LAYOUT);
        ++zooms;
    }
    void Put(int ly)
    {
        AgPOINT at(chance.Real(1, 40), chance.Real(1, 22));
        double w = chance.Real(-kind.extent, kind.extent);
        double h = chance.Real(-kind.extent, kind.extent);
        TEdcDrawSprite *spr = NULL;
        if (ly == 0)
            spr = new TPlanRect(at, w, h, chance.One(2) ? 0 : chance.Real(-3, 3));
        else
            spr = new TPlanLine(at, at + AgPOINT(w, h));
        Real(ly).Add(spr);
        model.Add(ly, PlainOf(spr));
    }
    TPoint Point()
    {
        TPoint at = AnyPoint();
        for (int i = 0; model.IsDoubtful(at); ++i)
            at = i < 9 ? AnyPoint() : TPoint{at.x + 1, at.y};
        return at;
    }
    /// Half of them hit something, many of those a handle.
    TPoint AnyPoint()
    {
        const std::vector<int> &lnk = model.layers[model.active].lnk;
        if (lnk.empty() || chance.One(2))
            return {chance.Int(-40, 620), chance.Int(-30, 380)};
        int spr = lnk[static_cast<size_t>(chance.Int(0, static_cast<int>(lnk.size()) - 1))];
        const plain::SHAPE &shape = model.sprites[spr].Now();
        if (chance.One(2)) {
            std::vector<TPoint> outline = plain::Outline(shape, axes);
            TPoint corner = outline[static_cast<size_t>(chance.Int(0, static_cast<int>(outline.size()) - 1))];
            return corner + TPoint{chance.Int(-4, 4), chance.Int(-4, 4)};
        }
        plain::POINT within(chance.Real(-0.5, 0.5) * shape.width, chance.Real(-0.5, 0.5) * shape.height);
        return axes.Pixel(shape.centre + within * std::polar(1.0, shape.angle));
    }
    /// What a hand on the mouse would do next: press, move a few times, let go.
    int LikelyEvent()
    {
        enum { LEFT_DOWN = 0, LEFT_UP = 3, RIGHT_DOWN = 7, RIGHT_UP = 8, MOVE = 11 };
        if (model.leftState == 0 && model.rightState == 0)
            return chance.One(3) ? RIGHT_DOWN : LEFT_DOWN;
        if (!chance.One(4))
            return MOVE;
        return model.leftState != 0 ? LEFT_UP : RIGHT_UP;
    }
    void Gesture()
    {
        TPoint at = chance.One(8) ? model.last : chance.One(12) ? model.start : Point();
        if (model.IsDoubtful(at))
            at = Point();
        unsigned keys = chance.One(3) ? 4u * static_cast<unsigned>(chance.Int(0, 3)) : 0;
        TEdcMouseTool &real = Tool();
        switch (chance.One(2) ? chance.Int(0, 10) : LikelyEvent()) {
        case 0:
        case 1:
        case 2:
            cutOff |= model.tool == PlanModel::CREATOR && model.leftState == 1; // no mouse does that
            real.LeftDown(screen, keys, at);
            model.LeftDown(keys, at);
            break;
        case 3:
        case 4:
        case 5:
            real.LeftUp(screen, keys, at);
            model.LeftUp(keys, at);
            break;
        case 6:
            if (model.IsIdle()) {
                real.LeftDouble(screen, keys, at);
                model.LeftDouble();
            }
            break;
        case 7:
            real.RightDown(screen, keys, at);
            model.RightDown(keys, at);
            break;
        case 8:
        case 9:
            real.RightUp(screen, keys, at);
            model.RightUp(keys, at);
            break;
        case 10: {
            bool out = !model.outside && chance.One(3);
            if (out != model.outside) {
                real.Outside(screen, out);
                model.Outside(out);
            }
            break;
        }
        default:
            real.MouseMove(screen, keys, at);
            model.MouseMove(keys, at);
        }
    }
    /// What happens between two events of the mouse.
    void Change()
    {
        const int commands[] = {EDC_CmDELETE, EDC_CmSELECTALL, EDC_CmSELECTNONE, EDC_CmINVERT};
        cutOff = true;
        switch (chance.Int(0, 9)) {
        case 0:
        case 1:
        case 2:
            Put(chance.Int(0, 1));
            break;
        case 3:
        case 4: {
            int id = chance.Of(commands);
            EXPECT_TRUE(Plan().manager.Command(id));
            model.Command(id);
            break;
        }
        case 5: {
            int ly = chance.Int(0, 1);
            EXPECT_TRUE(Plan().manager.SetLayer(&Real(ly)));
            model.SetLayer(ly);
            break;
        }
        case 6:
            Plan().manager.SetTool(&Plan().selector);
            model.SetTool(PlanModel::SELECTOR);
            break;
        case 7: {
            TEdcSpriteTool *creator = &Plan().rectCreator;
            if (model.active == 1)
                creator = &Plan().lineCreator;
            EXPECT_TRUE(Plan().manager.SetTool(creator));
            model.SetTool(PlanModel::CREATOR);
            break;
        }
        case 8:
            if (model.IsIdle())
                Zoom();
            break;
        default:
            Prune();
        }
    }
    void Prune()
    {
        for (int ly : {0, 1})
            while (Real(ly).CountLnk() > kind.most) {
                int at = chance.Int(0, Real(ly).CountLnk() - 1);
                TEdcSprite *spr = Real(ly).LnkFirst();
                for (int i = 0; i < at; ++i)
                    spr = spr->lnkNext;
                Real(ly).Delete(spr, true);
                model.Remove(ly, model.layers[ly].lnk[static_cast<size_t>(at)]);
            }
    }

    std::string DifferenceOf(TPlanLayer &real, const PlainLayer &layer, const char *name)
    {
        std::string text = FaultOf(real);
        std::vector<const TEdcSprite *> order; // of creation, which gives the sprites their numbers
        for (TEdcSprite *spr = real.LnkFirst(); spr; spr = spr->lnkNext)
            order.push_back(spr);
        if (order.size() != layer.lnk.size())
            return name + text + "another number of sprites";
        for (size_t i = 0; i < order.size(); ++i) {
            plain::SHAPE now = PlainOf(order[i]);
            if (!model.sprites[layer.lnk[i]].Adopt(now))
                text += "sprite " + std::to_string(i) + " is at " + plain::Text(now) + " ";
        }
        auto numbers = [&](const TEdcSprite *first, TEdcSprite *TEdcSprite::*next) {
            std::vector<int> list;
            for (const TEdcSprite *spr = first; spr; spr = spr->*next)
                list.push_back(
                    layer.lnk[static_cast<size_t>(std::find(order.begin(), order.end(), spr) - order.begin())]);
            return list;
        };
        if (numbers(real.PntFirst(), &TEdcSprite::pntNext) != layer.pnt)
            text += "another order of painting ";
        if (numbers(real.SelFirst(), &TEdcSprite::selNext) != layer.sel)
            text += "another selection ";
        std::vector<int> focus = {0};
        if (real.Focus())
            focus = {layer.lnk[static_cast<size_t>(std::find(order.begin(), order.end(), real.Focus()) -
                                                   order.begin())]};
        if (focus[0] != layer.focus)
            text += "another focus ";
        if (real.IsActive() != layer.active)
            text += "activity ";
        return text.empty() ? "" : name + text;
    }

    const Kind &kind;
    CHANCE chance;
    GhostSumDC screen;
    bool cutOff = false; // something came into the gesture from outside
};

TEST(PlanProgram, WhateverTheMouseDoesThePlanFollowsTheModel)
{
    enum { PROGRAMS = 20, STEPS = 2000 }; // of each kind
    int events = 0, drags = 0, bands = 0, made = 0, copies = 0, leftGhosts = 0, zooms = 0;
    int drops[4] = {};
    for (const Kind &kind : kinds)
        for (unsigned from = 1; from <= PROGRAMS && !testing::Test::HasFailure(); ++from) {
            Program program(kind, from);
            for (int i = 0; i < STEPS && !testing::Test::HasFailure(); ++i) {
                program.Step();
                ASSERT_EQ(program.Difference(), "") << kind.name << ", program " << from << ", step " << i;
                ASSERT_STREQ(xCode, XNULL);
            }
            events += program.events;
            drags += program.drags;
            bands += program.bands;
            leftGhosts += program.leftGhosts;
            zooms += program.zooms;
            made += program.model.made;
            copies += program.model.copies;
            for (int i = 0; i < 4; ++i)
                drops[i] += program.model.drops[i];
        }
    TEdcDrawSprite::ForgetDrag();
    EXPECT_EQ(events, 200000);
    EXPECT_EQ(leftGhosts, 0);
    EXPECT_GT(drags, 15000);
    EXPECT_GT(bands, 5000);
    EXPECT_GT(made, 1000);
    EXPECT_GT(copies, 500);
    EXPECT_GT(zooms, 300);
    EXPECT_GT(drops[plain::STEP::MOVE], 1000);
    EXPECT_GT(drops[plain::STEP::HANDLE], 300);
    EXPECT_GT(drops[plain::STEP::TURN], 500);
}

TEST(PlanProgram, ItsChecksSeeWhatIsWrong)
{
    const struct {
        const char *name;
        std::function<void(Program &)> harm;
    } faults[] = {
        {"nothing", [](Program &) {}},
        {"a place", [](Program &p) { p.Shift(AgVECTOR(1e-6, 0)); }},
        {"selection", [](Program &p) { p.Real(0).Select(p.Real(0).LnkFirst(), true, NULL); }},
        {"selection in the model", [](Program &p) { p.model.layers[1].Select(2, true); }},
        {"painting",
         [](Program &p) { std::reverse(p.model.layers[0].pnt.begin(), p.model.layers[0].pnt.end()); }},
        {"a sprite less", [](Program &p) { p.Real(1).Delete(p.Real(1).LnkFirst(), false); }},
        {"a state", [](Program &p) { p.Real(1).LnkFirst()->state |= EDC_SsSELECTED; }},
        {"the layer", [](Program &p) { p.model.layers[0].active = false; }},
        {"the tool", [](Program &p) { p.model.tool = PlanModel::CREATOR; }},
        {"a lock", [](Program &p) { p.Real(0).LockRepaint(); }},
    };
    for (const auto &fault : faults) {
        Program program(kinds[1], 7);
        EXPECT_EQ(program.Difference(), "");
        fault.harm(program);
        EXPECT_EQ(program.Difference().empty(), std::string(fault.name) == "nothing") << fault.name;
    }
}

/// Whole gestures in a window.
class PlanWindow : public testing::Test
{
protected:
    enum { WIDTH = 420, HEIGHT = 300 }; // px

    PlanWindow()
    {
        TestApplication();
        SetAppDocument(&doc);
        doc.docZoom.SetCustom(100);
        doc.blockZoom.SetCustom(100);
        doc.Create();
        testdoor::ResizeClient(doc, {WIDTH, HEIGHT}); // smaller than the plan: it can be scrolled
        doc.Start();
        Fill();
    }
    ~PlanWindow() override
    {
        doc.modified = false;
        EXPECT_FALSE(doc.HasCapture());
        EXPECT_FALSE(TEdcDrawSprite::IsDragging());
    }

    void Fill()
    {
        doc.plan->rects.DeleteAll(true);
        doc.plan->lines.DeleteAll(true);
        for (int i = 0; i < 9; ++i) {
            AgPOINT at(chance.Real(3, 50), chance.Real(3, 20));
            doc.plan->rects.Add(new TPlanRect(at, chance.Real(0, 8), chance.Real(0, 6),
                                              chance.One(2) ? 0 : chance.Real(-3, 3)));
            doc.plan->lines.Add(new TPlanLine(at, at + AgPOINT(chance.Real(-6, 6), chance.Real(-6, 6))));
        }
        doc.Refresh(EDC_LAYOUT);
        testdoor::Settle();
    }
    TPlanLayer &Layer()
    {
        return doc.plan->manager.Layer() == &doc.plan->lines ? doc.plan->lines : doc.plan->rects;
    }
    unsigned Keys() { return chance.One(2) ? 0 : 4u * static_cast<unsigned>(chance.Int(0, 3)); }
    TPoint AnyPoint() { return {chance.Int(0, WIDTH - 1), chance.Int(0, HEIGHT - 1)}; }
    /// On the middle of something, or on a corner, where it is seen.
    TPoint PressPoint()
    {
        std::vector<TPoint> seen;
        for (TEdcSprite *spr = Layer().LnkFirst(); spr; spr = spr->lnkNext) {
            plain::SHAPE shape = PlainOf(spr);
            std::vector<plain::POINT> points = shape.Corners();
            points.insert(points.end(), 3, shape.centre);
            for (plain::POINT p : points)
                if (TRect{0, 0, WIDTH, HEIGHT}.Contains(doc.At(p.real(), p.imag())))
                    seen.push_back(doc.At(p.real(), p.imag()));
        }
        if (seen.empty() || chance.One(6))
            return AnyPoint();
        return seen[static_cast<size_t>(chance.Int(0, static_cast<int>(seen.size()) - 1))];
    }
    void Move(TPoint at, bool right) { testdoor::Move(doc, at, Keys(), !right, right); }
    /// One gesture from its press to its end, which may be any that a user can give it.
    void Gesture()
    {
        bool right = chance.One(3);
        testdoor::Button button = right ? testdoor::RIGHT : testdoor::LEFT;
        if (chance.One(12)) {
            testdoor::DoubleClick(doc, PressPoint(), Keys());
            return;
        }
        testdoor::Press(doc, PressPoint(), button, Keys());
        for (int n = chance.Int(0, 6); n > 0; --n) {
            switch (chance.Int(0, 9)) {
            case 0: // beyond the edge, where it scrolls
                Move({chance.Int(-80, WIDTH + 80), chance.One(2) ? -chance.Int(1, 60) : HEIGHT + 40}, right);
                doc.scrollTick -= 1000;
                doc.IdleAction(0);
                break;
            case 1:
                testdoor::Wheel(doc, AnyPoint(), chance.One(2) ? 1 : -1, chance.One(2) ? WIN_KEY_SHIFT : 0);
                break;
            case 2: {
                const char *const keys[] = {"Left", "Right", "Up", "Down"};
                testdoor::Key(doc, chance.Of(keys));
                break;
            }
            default:
                Move(AnyPoint(), right);
            }
            if (chance.One(4))
                testdoor::Settle();
        }
        TPoint end = chance.One(12) ? TPoint{-30, 10} : AnyPoint();
        switch (chance.Int(0, 11)) {
        case 0:
            testdoor::Press(doc, end, right ? testdoor::LEFT : testdoor::RIGHT, Keys());
            testdoor::Release(doc, end, right ? testdoor::LEFT : testdoor::RIGHT, Keys());
            break;
        case 1:
            testdoor::Key(doc, "Esc");
            break;
        case 2:
            doc.EvCaptureLost();
            break;
        default:
            break;
        }
        testdoor::Release(doc, end, button, Keys());
    }
    /// What a user does between two gestures.
    void Between()
    {
        const int commands[] = {EDC_CmSELECTALL, EDC_CmSELECTNONE, EDC_CmINVERT, EDC_CmDELETE};
        const int tools[] = {EDC_TlSELECT, EDC_TlSELECT, EDC_TlSELECT, EDC_TlRECT, PLAN_LINETOOL};
        switch (chance.Int(0, 9)) {
        case 0: { // zooms; letters beyond 64 px become outlines, whose edges change with what is clipped
            bool large = doc.scale * TestScale() > 3;
            testdoor::Wheel(doc, AnyPoint(), large || chance.One(2) ? -2 : 2, WIN_KEY_CTRL);
            break;
        }
        case 1:
            testdoor::Wheel(doc, AnyPoint(), chance.One(2) ? 1 : -1);
            break;
        case 2:
            doc.EvCommand(chance.Of(commands));
            break;
        case 3:
            doc.EvCommand(chance.One(2) ? PLAN_RECTS : PLAN_LINES);
            break;
        case 4:
        case 5:
            doc.EvCommand(chance.Of(tools));
            break;
        default:
            testdoor::Move(doc, AnyPoint());
        }
    }
    bool LooksFresh()
    {
        testdoor::Settle();
        std::vector<TColor> now = testdoor::Pixels(doc);
        doc.Invalidate();
        testdoor::Settle();
        return now == testdoor::Pixels(doc);
    }

    ProgramTables tables;
    CHANCE chance{static_cast<unsigned>(TestScale() * 100)};
    TPlanDoc doc;
};

TEST_F(PlanWindow, AfterEachGestureItShowsWhatAFreshPaintShows)
{
    enum { GESTURES = 300, ROUND = 20 };
    int dragged = 0;
    for (int i = 0; i < GESTURES && !HasFailure(); ++i) {
        SCOPED_TRACE(i);
        if (i % ROUND == 0) {
            doc.blockZoom.SetCustom(static_cast<int>((60 + i) / TestScale()));
            Fill();
        }
        Between();
        int before = doc.changes + Layer().CountLnk();
        Gesture();
        dragged += doc.changes + Layer().CountLnk() > before;
        EXPECT_TRUE(LooksFresh());
        EXPECT_EQ(FaultOf(doc.plan->rects), "");
        EXPECT_EQ(FaultOf(doc.plan->lines), "");
        EXPECT_EQ(doc.leftDown + doc.rightDown, 0);
        EXPECT_EQ(doc.obsolete, 0);
        EXPECT_FALSE(TEdcDrawSprite::IsDragging());
    }
    EXPECT_GT(dragged, 50);
    testdoor::UnexpectedBoxes(); // the menus of the right button, which nobody answers here
}

TEST_F(PlanWindow, ATraceOnTheScreenIsSeen)
{
    EXPECT_TRUE(LooksFresh());
    TClientDC screen(doc);
    screen.Line({10, 10}, {60, 40});
    EXPECT_FALSE(LooksFresh());
    EXPECT_TRUE(LooksFresh());
}
} // namespace
