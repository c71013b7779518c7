// The creators of lines and rectangles, event by event, with their geometry against plain arithmetic.
#include "support/chance.h"
#include "toolcase.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <set>
#include <sstream>

namespace
{
std::string Number(double value)
{
    char text[32];
    snprintf(text, sizeof text, "%g", value);
    return text;
}

std::string Pair(const AgPOINT &p)
{
    return Number(p.x) + "," + Number(p.y);
}

/// Writes down in metres.
template <class CREATOR>
class Seen : public SeenTool<CREATOR>
{
public:
    using CREATOR::end;
    using CREATOR::origin;
    using CREATOR::start;
    using SeenTool<CREATOR>::SeenTool;

    bool Finish() override
    {
        this->calls += "finish ";
        return !this->fault.Meets("finish") && CREATOR::Finish();
    }
    void DrawShape(TDC &dc) override
    {
        this->calls += Pair(start) + ">" + Pair(end) + " ";
        if (!this->fault.Meets("draw"))
            CREATOR::DrawShape(dc);
    }
};
using SeenLineCreator = Seen<TEdcDrawLineCreator>;
using SeenRectCreator = Seen<TEdcDrawRectCreator>;

class Creators : public ToolCase
{
protected:
    Creators()
    {
        LeaveSelector();
        line.SetLayer(layer.get());
        rect.SetLayer(layer.get());
        line.Activate(true);
        rect.Activate(true);
        layer->queries.clear();
    }
    ~Creators() override
    {
        rect.Activate(false);
        line.Activate(false);
    }
    const TPlanRect &Made() { return static_cast<TPlanRect &>(*layer->LnkLast()); }

    SeenLineCreator line{PLAN_LINETOOL, 21694, EDC_TlSELECT, 0x10};
    SeenRectCreator rect{EDC_TlRECT, 21695, 0, 0x20};
};

// 10 px a metre and (0, 0) at (20, 300): L+120,200 is (10, 10), a grid line every 5 px.
struct Row {
    const char *name;
    const char *events;
    const char *calls;
    const char *states;
    bool leaves; // for the selector
    int made;
};
const Row rows[] = {
    {"a click makes nothing", "L+120,200 L-120,200", "finish ", "0 0", false, 0},
    {"a press waits", "L+120,200", "", "1 0", false, 0},
    {"a move draws", "L+120,200 M140,190", "10,10>12,11 ", "1 0", false, 0},
    {"the next one takes the shape back", "L+120,200 M140,190 M150,180", "10,10>12,11 10,10>12,11 10,10>13,12 ",
     "1 0", false, 0},
    {"an equal point is drawn anew", "L+120,200 M140,190 M141,190", "10,10>12,11 10,10>12,11 10,10>12,11 ",
     "1 0", false, 0},
    {"a release finishes what was drawn last", "L+120,200 M140,190 L-300,100",
     "10,10>12,11 10,10>12,11 finish ", "0 0", true, 1},
    {"a drag within one step of the grid makes nothing", "L+119,199 M122,202 L-122,202",
     "10,10>10,10 10,10>10,10 finish ", "0 0", false, 0},
    {"a drag back to the press makes nothing", "L+120,200 M140,190 M120,200 L-120,200",
     "10,10>12,11 10,10>12,11 10,10>10,10 10,10>10,10 finish ", "0 0", false, 0},
    {"press and moves are snapped", "L+122,197 M143,188 L-143,188", "10,10.5>12.5,11 10,10.5>12.5,11 finish ",
     "0 0", true, 1},
    {"a move without a press", "M140,190 L-140,190", "", "0 0", false, 0},

    {"the right button takes it back", "L+120,200 M140,190 R+140,190", "10,10>12,11 10,10>12,11 ",
     "0 0 outside", false, 0},
    {"and its release goes nowhere", "L+120,200 M140,190 R+140,190 R-140,190 M150,180 L-150,180",
     "10,10>12,11 10,10>12,11 ", "0 0 outside", false, 0},
    {"a press behind it begins anew", "L+120,200 M140,190 R+1,1 R-1,1 L-1,1 L+130,200 M140,190",
     "10,10>12,11 10,10>12,11 11,10>12,11 ", "1 0", false, 0},
    {"a press without a shape is taken back", "L+120,200 R+1,1 L-1,1 R-1,1", "", "0 0 outside", false, 0},
    {"a right click leaves", "R+1,1 R-1,1", "", "0 0", true, 0},
    {"a release without a right press", "R-1,1", "", "0 0", false, 0},
    {"nothing under the right button", "R+1,1 L+120,200 M140,190 L-140,190", "", "0 1", false, 0},

    {"leaving hides the shape", "L+120,200 M140,190 O+", "10,10>12,11 10,10>12,11 ", "1 0 outside", false, 0},
    {"moves outside are not drawn", "L+120,200 M140,190 O+ M-10,5", "10,10>12,11 10,10>12,11 ", "1 0 outside",
     false, 0},
    {"coming back shows it", "L+120,200 M140,190 O+ O- M150,180 L-150,180",
     "10,10>12,11 10,10>12,11 10,10>12,11 10,10>12,11 10,10>13,12 10,10>13,12 finish ", "0 0", true, 1},
    {"a release outside makes nothing", "L+120,200 M140,190 O+ L--9,5", "10,10>12,11 10,10>12,11 ",
     "0 0 outside", false, 0},
    {"the right button outside", "L+120,200 M140,190 O+ R+-9,5 L--9,5 R--9,5", "10,10>12,11 10,10>12,11 ",
     "0 0 outside", false, 0},
    {"leaving without a press", "O+ O-", "", "0 0", false, 0},

    {"a press whose release never came is taken back", "L+120,200 M140,190 L+130,200 M150,180",
     "10,10>12,11 10,10>12,11 11,10>13,12 ", "1 0", false, 0},
    {"what is hidden is not shown by it", "L+120,200 M140,190 O+ L+130,200", "10,10>12,11 10,10>12,11 ", "1 0",
     false, 0},

    {"keys count at each move", "L+120,200 sM140,190 M140,190 cM140,190 L-140,190",
     "10,10>12,10 10,10>12,10 10,10>12,11 10,10>12,11 8,9>12,11 8,9>12,11 finish ", "0 0", true, 1},
    {"Ctrl that is let go gives the press back", "L+120,200 cM140,190 M140,190",
     "8,9>12,11 8,9>12,11 10,10>12,11 ", "1 0", false, 0},
    {"keys at the release do not count", "L+120,200 M140,190 scL-140,190", "10,10>12,11 10,10>12,11 finish ",
     "0 0", true, 1},
};

TEST_F(Creators, GoFromStateToStateWithEachEvent)
{
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        line.Activate(false);
        line.Activate(true);
        line.calls.clear();
        Play(line, row.events);
        EXPECT_EQ(line.calls, row.calls);
        EXPECT_EQ(line.States(), row.states);
        EXPECT_EQ(layer->CountLnk(), row.made);
        EXPECT_EQ(TookSelector(), row.leaves);
        layer->DeleteAll(false);
        line.Activate(false);
        EXPECT_EQ(line.States(), "0 0");
    }
}

TEST_F(Creators, StayWhereNothingFollowsAndAskAtARightClick)
{
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        if (row.events[0] == 's')
            continue;
        rect.Activate(false);
        rect.Activate(true);
        layer->queries.clear();
        Play(rect, row.events);
        EXPECT_EQ(rect.States(), row.states);
        EXPECT_EQ(layer->CountLnk(), row.made);
        EXPECT_EQ(layer->queries, row.leaves && row.made == 0 ? "21515 again " : "");
        EXPECT_FALSE(TookSelector());
        layer->DeleteAll(false);
    }
}

TEST_F(Creators, AreDeafWithoutALayer)
{
    line.SetLayer(NULL);
    for (const Row &row : rows)
        Play(line, row.events);
    EXPECT_EQ(line.calls, "");
    EXPECT_EQ(line.leftState + line.rightState, 0);
    line.Activate(false);
    line.Activate(true);
    EXPECT_EQ(layer->queries, "");
    EXPECT_FALSE(TookSelector());
}

/// The constrained ends by plain arithmetic: the wanted end, then the middle.
void PlainEnds(bool square, double &x, double &y, int keys, double &fromX, double &fromY)
{
    double dx = x - fromX, dy = y - fromY;
    bool steep = std::fabs(dx) <= std::fabs(dy);
    if (keys & WIN_KEY_SHIFT) {
        if (square && steep)
            dx = dx < 0 ? -std::fabs(dy) : std::fabs(dy);
        else if (square)
            dy = dy < 0 ? -std::fabs(dx) : std::fabs(dx);
        else if (steep)
            dx = 0;
        else
            dy = 0;
    }
    x = fromX + dx;
    y = fromY + dy;
    if (keys & WIN_KEY_CTRL) {
        fromX -= dx;
        fromY -= dy;
    }
}

template <class CREATOR>
void CheckConstraints(CREATOR &tool, bool square)
{
    const double steps[] = {-3.5, -2, -0.5, 0, 0.5, 2, 3.5};
    for (int keys : {0, int{WIN_KEY_SHIFT}, int{WIN_KEY_CTRL}, WIN_KEY_SHIFT | WIN_KEY_CTRL})
        for (double dx : steps)
            for (double dy : steps) {
                SCOPED_TRACE(std::to_string(keys) + " " + Number(dx) + " " + Number(dy));
                double fromX = 4.5, fromY = 7, x = fromX + dx, y = fromY + dy;
                tool.origin = AgPOINT(fromX, fromY);
                tool.start = AgPOINT(-99, -99); // of a former step
                tool.end = AgPOINT(x, y);
                tool.Constrain(static_cast<unsigned>(keys));
                PlainEnds(square, x, y, keys, fromX, fromY);
                EXPECT_EQ(Pair(tool.start), Pair(AgPOINT(fromX, fromY)));
                EXPECT_EQ(Pair(tool.end), Pair(AgPOINT(x, y)));
                EXPECT_EQ(tool.origin, AgPOINT(4.5, 7));
            }
}

TEST_F(Creators, KeepALineOnAnAxisWithShiftAndAboutThePressWithCtrl)
{
    CheckConstraints(line, false);
}

TEST_F(Creators, KeepARectangleSquareWithShiftAndAboutThePressWithCtrl)
{
    CheckConstraints(rect, true);
}

TEST_F(Creators, SnapToTheGridOfTheAxes)
{
    for (int px = 100; px < 140; ++px) {
        double x = std::round((px - 20) / 10.0 / 0.5) * 0.5;
        double y = std::round((300 - px) / 10.0 / 0.5) * 0.5;
        rect.LeftDown(dc, 0, {px, px});
        EXPECT_NEAR(rect.origin.x, x, 1e-12) << px;
        EXPECT_NEAR(rect.origin.y, y, 1e-12) << px;
        rect.RightDown(dc, 0, {px, px});
    }
    doc.plan->axes.SetSnap(0, 0);
    rect.LeftDown(dc, 0, {123, 123});
    EXPECT_NEAR(rect.origin.x, 10.3, 1e-12);
    EXPECT_NEAR(rect.origin.y, 17.7, 1e-12);
    rect.RightDown(dc, 0, {123, 123});
}

TEST_F(Creators, HandTheLayerARecordOfWhatWasDrawn)
{
    ToolRect *former = Put(30, 9);
    Draw(rect, 10, 10, 16, 7);
    Draw(line, 4, 5, 3, 8);
    ASSERT_EQ(layer->creations.size(), 2u);
    const TEdcDrawCreation &r = layer->creations[0];
    EXPECT_EQ(r.type, EDC_TlRECT);
    EXPECT_EQ(r.flags, 0x22);
    EXPECT_EQ(r.stock, &layer->stock);
    ASSERT_EQ(r.points.Count(), 2);
    EXPECT_EQ(r.points[0], AgPOINT(10, 10));
    EXPECT_EQ(r.points[1], AgPOINT(16, 7));
    const TEdcDrawCreation &l = layer->creations[1];
    EXPECT_EQ(l.type, PLAN_LINETOOL);
    EXPECT_EQ(l.flags, 0x11);
    ASSERT_EQ(l.points.Count(), 2);
    EXPECT_EQ(l.points[0], AgPOINT(4, 5));
    EXPECT_EQ(l.points[1], AgPOINT(3, 8));
    EXPECT_EQ(layer->CountLnk(), 3);
    EXPECT_FALSE(layer->IsSelected(former));
    EXPECT_EQ(layer->CountSel(), 1);
    EXPECT_EQ(layer->Focus(), layer->LnkLast());
    EXPECT_TRUE(doc.IsObsolete(EDC_LAYOUT));
}

TEST_F(Creators, AddTheirOwnFlagToThoseTheyWereGiven)
{
    const struct {
        uint16_t given, line, rect;
    } table[] = {{0, 1, 2}, {1, 1, 3}, {2, 3, 2}, {3, 3, 3}, {0x8000, 0x8001, 0x8002}};
    for (const auto &row : table) {
        TEdcDrawLineCreator aLine(PLAN_LINETOOL, 21694, 0, row.given);
        TEdcDrawRectCreator aRect(EDC_TlRECT, 21695, 0, row.given);
        for (TEdcDrawLineCreator *tool : {&aLine, static_cast<TEdcDrawLineCreator *>(&aRect)}) {
            tool->SetLayer(layer.get());
            tool->Activate(true);
            Draw(*tool, 10, 10, 16, 7);
            tool->Activate(false);
        }
        EXPECT_EQ(layer->creations[0].flags, row.line);
        EXPECT_EQ(layer->creations[1].flags, row.rect);
        layer->creations.clear();
    }
}

TEST_F(Creators, MakeTheSpritesOfThePlan)
{
    TDrawBlock &plan = *doc.plan;
    ASSERT_TRUE(plan.manager.SetTool(&plan.rectCreator));
    Draw(*plan.tool, 10, 10, 16, 7);
    ASSERT_EQ(plan.rects.CountLnk(), 1);
    const auto &made = static_cast<TPlanRect &>(*plan.rects.Focus());
    EXPECT_EQ(Pair(made.Centre()), "13,8.5");
    EXPECT_EQ(Pair(made.Size()), "6,-3");
    ASSERT_TRUE(plan.manager.SetLayer(&plan.lines));
    ASSERT_TRUE(plan.manager.SetTool(&plan.lineCreator));
    Draw(*plan.tool, 10, 10, 14, 7);
    ASSERT_EQ(plan.lines.CountLnk(), 1);
    const auto &drawn = static_cast<TPlanLine &>(*plan.lines.Focus());
    EXPECT_EQ(Pair(drawn.Centre()), "12,8.5");
    EXPECT_EQ(drawn.Length(), 5);
    EXPECT_NEAR(drawn.LineAngle(), std::atan2(-3.0, 4.0), 1e-12);
}

TEST_F(Creators, DrawTheirShapesExclusiveOr)
{
    Play(line, "L+120,200 M140,190");
    EXPECT_EQ(TakeCalls(), "Line 120,200 140,190 pen ffffff dot xor\n");
    Play(line, "R+1,1 L-1,1 R-1,1");
    EXPECT_EQ(TakeCalls(), "Line 120,200 140,190 pen ffffff dot xor\n");
    Play(rect, "L+120,200 M140,190");
    EXPECT_EQ(TakeCalls(), "Rect 120,190,141,201 pen ffffff brush none xor\n");
    Play(rect, "M100,230 R+1,1 L-1,1 R-1,1");
    EXPECT_EQ(TakeCalls(), "Rect 120,190,141,201 pen ffffff brush none xor\n"
                           "Rect 100,200,121,231 pen ffffff brush none xor\n"
                           "Rect 100,200,121,231 pen ffffff brush none xor\n");
    EXPECT_EQ(dc.State().mix, WIN_MIX_COPY);
}

TEST_F(Creators, LeaveNoTraceOfTheirShapes)
{
    const TSize size = {200, 160};
    TMemoryDC surface(size, 96);
    PaintGround(surface, size);
    const std::vector<TColor> before = PixelsOf(surface, size);
    for (TEdcMouseTool *tool : {static_cast<TEdcMouseTool *>(&line), static_cast<TEdcMouseTool *>(&rect)})
        for (unsigned keys : {0u, unsigned{WIN_KEY_SHIFT}, unsigned{WIN_KEY_CTRL}})
            for (TPoint to : {TPoint{150, 120}, {40, 30}, {90, 20}, {10, 80}}) {
                tool->LeftDown(surface, 0, {90, 80});
                tool->MouseMove(surface, keys, {70, 50});
                tool->MouseMove(surface, keys, to);
                EXPECT_NE(PixelsOf(surface, size), before);
                tool->Outside(surface, true);
                EXPECT_EQ(PixelsOf(surface, size), before);
                tool->Outside(surface, false);
                tool->LeftDown(surface, 0, to); // the release never came
                EXPECT_EQ(PixelsOf(surface, size), before);
                tool->MouseMove(surface, keys, {70, 50});
                tool->RightDown(surface, 0, to);
                EXPECT_EQ(PixelsOf(surface, size), before);
            }
}

/// What a creator of rectangles has to do, in steps of the grid.
struct PlainCreator {
    bool left = false, right = false, outside = false, drawn = false;
    TPoint from, to; // half metres
    int made = 0, asked = 0;

    static TPoint Step(TPoint px)
    {
        return {static_cast<int>(std::lround((px.x - 20) / 5.0)),
                static_cast<int>(std::lround((300 - px.y) / 5.0))};
    }
    bool Shows() const { return left && drawn && !outside; }
    void Play(const GestureEvent &event)
    {
        switch (event.kind) {
        case GestureEvent::LEFT_DOWN:
            if (!right) {
                left = true;
                drawn = outside = false;
                from = to = Step(event.at);
            }
            break;
        case GestureEvent::LEFT_UP:
            made += left && !outside && from != to;
            left = false;
            break;
        case GestureEvent::RIGHT_DOWN:
            right = !left || right;
            outside = left;
            left = false;
            break;
        case GestureEvent::RIGHT_UP:
            asked += right;
            right = false;
            break;
        case GestureEvent::MOVE:
            if (left && !outside) {
                to = Step(event.at);
                drawn = true;
            }
            break;
        case GestureEvent::LEFT_DOUBLE:
            break;
        default:
            outside = event.kind == GestureEvent::LEAVE;
        }
    }
};

TEST_F(Creators, DoAsAPlainModelForAnyRowOfEvents)
{
    CHANCE chance(9);
    PlainCreator model;
    std::set<std::string> shown; // what was drawn an odd number of times
    FixAxes();
    layer->most = INT_MAX;
    for (int i = 0; i < 20000 && !HasFailure(); ++i) {
        SCOPED_TRACE(i);
        GestureEvent event;
        event.kind = chance.One(2) ? GestureEvent::MOVE : static_cast<GestureEvent::Kind>(chance.Int(0, 7));
        // No point lies half way between two lines of the grid, where the last bit would decide.
        event.at = {20 + chance.Int(0, 40), 300 - chance.Int(0, 40)};
        if (event.kind == GestureEvent::LEAVE || event.kind == GestureEvent::COME_BACK) // on a change alone
            event.kind = model.outside ? GestureEvent::COME_BACK : GestureEvent::LEAVE;
        int former = model.made;
        PlayEvent(rect, dc, event);
        model.Play(event);
        std::istringstream calls(TakeCalls());
        for (std::string call; std::getline(calls, call);)
            if (!shown.erase(call))
                shown.insert(call);
        EXPECT_EQ(shown.size(), model.Shows() ? 1u : 0u);
        EXPECT_EQ(rect.leftState != 0, model.left);
        EXPECT_EQ(rect.rightState != 0, model.right);
        ASSERT_EQ(static_cast<int>(layer->creations.size()), model.made);
        EXPECT_EQ(static_cast<int>(std::count(layer->queries.begin(), layer->queries.end(), 'g')), model.asked);
        if (model.made > former) {
            const ARRAY<AgPOINT> &points = layer->creations.back().points;
            EXPECT_EQ(points[0], AgPOINT(model.from.x / 2.0, model.from.y / 2.0));
            EXPECT_EQ(points[1], AgPOINT(model.to.x / 2.0, model.to.y / 2.0));
        }
        layer->DeleteAll(false);
    }
    EXPECT_GT(model.made, 80);
    EXPECT_GT(model.asked, 500);
}

TEST_F(Creators, AskForParametersWhenTheyAreChosen)
{
    rect.Activate(false);
    EXPECT_EQ(layer->queries, "");
    rect.Activate(true);
    EXPECT_EQ(layer->queries, "21515 first ");
    layer->hasStock = false;
    Play(rect, "R+1,1 R-1,1");
    EXPECT_EQ(layer->queries, "21515 first 21515 again ");
    ExpectNoParameters();
    Draw(rect, 10, 10, 16, 7);
    EXPECT_EQ(layer->CountLnk(), 0);
    layer->hasStock = true;
    Play(rect, "R+1,1 R-1,1");
    Draw(rect, 10, 10, 16, 7);
    EXPECT_EQ(layer->CountLnk(), 1);
}

TEST_F(Creators, AreIdleAfterAnyFailureAndKeepWhatWasMadeWithoutAFocus)
{
    struct Case {
        bool ofLayer;
        const char *at;
        int call;
        const char *events;
        int made;
    };
    const char *whole = "L+120,200 M140,190 L-140,190";
    const Case cases[] = {{false, "draw", 1, "L+120,200 M140,190", 0},
                          {false, "draw", 2, "L+120,200 M140,190 M150,180", 0},
                          {false, "draw", 3, "L+120,200 M140,190 M150,180", 0},
                          {false, "draw", 2, whole, 0},
                          {false, "draw", 2, "L+120,200 M140,190 R+140,190", 0},
                          {false, "draw", 2, "L+120,200 M140,190 L+140,190", 0},
                          {false, "finish", 1, whole, 0},
                          {true, "create", 1, whole, 0},
                          {true, "select", 1, whole, 1},
                          {true, "focus", 1, whole, 1},
                          {true, "query", 1, "R+1,1 R-1,1", 0}};
    for (const Case &c : cases) {
        SCOPED_TRACE(c.events + std::string(" ") + c.at + std::to_string(c.call));
        (c.ofLayer ? layer->fault : rect.fault) = {c.at, c.call};
        Play(rect, c.events);
        EXPECT_EQ(TakeFailure(), XALLOC);
        EXPECT_EQ(rect.leftState + rect.rightState, 0);
        EXPECT_EQ(layer->CountLnk(), c.made);
        EXPECT_EQ(layer->Focus(), nullptr);
        layer->fault = rect.fault = {};
        layer->DeleteAll(false);
        Play(rect, "R+1,1 R-1,1");
        Play(rect, whole);
        EXPECT_EQ(layer->CountLnk(), 1);
        layer->DeleteAll(false);
    }
}

TEST_F(Creators, AreFollowedByNothingAfterAFailure)
{
    layer->fault = {"create", 1};
    Play(line, "L+120,200 M140,190 L-140,190");
    EXPECT_EQ(TakeFailure(), XALLOC);
    EXPECT_FALSE(TookSelector());
}
} // namespace
