// Drags on a plan, from the press to the drop: what becomes of the shapes, and what is drawn in between.
#include "dragcase.h"
#include "support/chance.h"

#include <algorithm>

namespace
{
using Drag = DragCase;

struct Row {
    const char *name;
    const char *selected; // before, in the order of selecting
    char focus;           // before, 0 for none
    double snap;          // m
    double turn;          // of a before, degrees
    const char *events;
    const char *shapes; // what is not where it was; new ones as "+"
    const char *lists;  // selection and focus behind it, "+" for a new one
};
const char *const same = "";
const Row rows[] = {
    // Moves.
    {"a move", "", 0, 0.5, 0, "L+A M125,195 M130,190 L-130,190", "a 11,11 4x2 0", "a a"},
    {"a move comes onto the grid", "", 0, 0.5, 0, "L+A M133,188 L-133,188", "a 11.5,11 4x2 0", "a a"},
    {"half way the grid draws outwards", "", 0, 1, 0, "L+A M125,200 L-125,200", "a 11,10 4x2 0", "a a"},
    {"without a grid", "", 0, 0, 0, "L+A M133,188 L-133,188", "a 11.3,11.2 4x2 0", "a a"},
    {"within a step of the grid nothing moves", "", 0, 0.5, 0, "L+A M122,202 L-122,202", same, "a a"},
    {"what lies off the grid comes onto it", "", 0, 0.5, 0, "L+C M322,198 L-322,198", "c 30,10 4x2 0", "c c"},
    {"the nearest corner is the one that comes onto it", "", 0, 3, 0, "L+A M128,200 L-128,200", "a 11,10 4x2 0",
     "a a"},
    {"of two equally near ones the left one", "", 0, 3, 0, "L+A M125,200 L-125,200", "a 11,10 4x2 0", "a a"},
    {"a turned one by the corners of what holds it", "", 0, 0.5, 90, "L+A M133,188 L-133,188",
     "a 11.5,11 4x2 90", "a a"},
    {"all that is selected moves", "ab", 'a', 0.5, 0, "L+B M230,190 L-230,190", "a 11,11 4x2 0;b 21,11 4x2 0",
     "ab b"},
    {"each comes onto the grid by itself", "ac", 'a', 0.5, 0, "L+A M133,200 L-133,200",
     "a 11.5,10 4x2 0;c 31.5,10 4x2 0", "ac a"},
    {"Shift keeps the larger part, to the side", "", 0, 0.5, 0, "L+A sM150,190 sL-150,190", "a 13,10 4x2 0",
     "a a"},
    {"Shift keeps the larger part, upwards", "", 0, 0.5, 0, "L+A sM110,150 sL-110,150", "a 10,15 4x2 0", "a a"},
    {"Shift counts where the button goes up", "", 0, 0.5, 0, "L+A sM150,190 L-150,190", "a 13,11 4x2 0", "a a"},
    {"a move back to the press", "", 0, 0.5, 0, "L+A M150,150 MA L-A", same, "a a"},

    // Copies.
    {"Ctrl moves a copy", "", 0, 0.5, 0, "L+A cM120,150 cL-120,150", "+ 10,15 4x2 0", "+ -"},
    {"Ctrl counts where the button goes up", "", 0, 0.5, 0, "L+A cM120,150 L-120,150", "a 10,15 4x2 0", "a a"},
    {"and may come late", "", 0, 0.5, 0, "L+A M120,150 cL-120,150", "+ 10,15 4x2 0", "+ -"},
    {"copies of all that is selected", "ab", 'b', 0.5, 0, "L+A cM130,150 cL-130,150",
     "+ 11,15 4x2 0;+ 21,15 4x2 0", "++ -"},
    {"Shift and Ctrl together", "", 0, 0.5, 0, "L+A scM150,190 scL-150,190", "+ 13,10 4x2 0", "+ -"},
    {"a copy on the spot", "", 0, 0.5, 0, "L+A cM121,200 cL-121,200", "+ 10,10 4x2 0", "+ -"},

    // Handles.
    {"the lower left corner", "a", 'a', 0.5, 0, "L+P M90,220 L-90,220", "a 9.5,9.5 5x3 0", "a a"},
    {"the lower right corner", "a", 'a', 0.5, 0, "L+Q M150,220 L-150,220", "a 10.5,9.5 5x3 0", "a a"},
    {"the upper right corner", "a", 'a', 0.5, 0, "L+R M150,180 L-150,180", "a 10.5,10.5 5x3 0", "a a"},
    {"the upper left corner", "a", 'a', 0.5, 0, "L+S M90,180 L-90,180", "a 9.5,10.5 5x3 0", "a a"},
    {"a corner of what was not selected", "b", 'b', 0.5, 0, "L+R M150,180 L-150,180", "a 10.5,10.5 5x3 0",
     "a a"},
    {"a corner across its opposite", "a", 'a', 0.5, 0, "L+Q M80,180 L-80,180", "a 7,11.5 -2x-1 0", "a a"},
    {"a corner across one side", "a", 'a', 0.5, 0, "L+R M80,180 L-80,180", "a 7,10.5 -2x3 0", "a a"},
    {"a corner onto its opposite", "a", 'a', 0.5, 0, "L+R M100,210 L-100,210", "a 8,9 0x0 0", "a a"},
    {"a corner comes onto the grid", "a", 'a', 0.5, 0, "L+R M152,181 L-152,181", "a 10.5,10.5 5x3 0", "a a"},
    {"without a grid", "a", 'a', 0, 0, "L+R M152,181 L-152,181", "a 10.6,10.45 5.2x2.9 0", "a a"},
    {"a corner and Shift", "a", 'a', 0.5, 0, "L+R sM160,181 sL-160,181", "a 11,10 6x2 0", "a a"},
    {"a corner and Ctrl copies nothing", "a", 'a', 0.5, 0, "L+R cM150,180 cL-150,180", "a 10.5,10.5 5x3 0",
     "a a"},
    {"a corner of one of many", "ab", 'a', 0.5, 0, "L+R M150,180 L-150,180", "a 10.5,10.5 5x3 0", "ab a"},
    {"a corner of one of many that had no focus", "ab", 'a', 0.5, 0, "L+X M250,180 L-250,180",
     "b 20.5,10.5 5x3 0", "ab b"},
    {"beside the handle all moves", "ab", 'a', 0.5, 0, "L+135,195 M145,185 L-145,185",
     "a 11,11 4x2 0;b 21,11 4x2 0", "ab a"},
    {"a corner of a turned one", "a", 'a', 0.5, 90, "L+110,220 M100,230 L-100,230", "a 9.5,9.5 5x3 90", "a a"},

    // Turns: the angle counts from where the first move saw the pointer.
    {"a quarter turn", "", 0, 0.5, 0, "R+130,200 M140,200 M120,150 R-120,150", "a 10,10 4x2 90", "a a"},
    {"back to the right", "", 0, 0.5, 0, "R+130,200 M140,200 M120,250 R-120,250", "a 10,10 4x2 -90", "a a"},
    {"half a turn", "", 0, 0.5, 0, "R+130,200 M140,200 M60,200 R-60,200", "a 10,10 4x2 180", "a a"},
    {"onto a turned one", "", 0, 0.5, 45, "R+130,200 M140,200 M120,150 R-120,150", "a 10,10 4x2 135", "a a"},
    {"beyond half a turn", "", 0, 0.5, 135, "R+A M140,200 M120,150 R-120,150", "a 10,10 4x2 -135", "a a"},
    {"in steps of five degrees", "", 0, 0.5, 0, "R+130,200 M140,200 M180,188 R-180,188", "a 10,10 4x2 10",
     "a a"},
    {"each about its own middle", "ab", 'a', 0.5, 0, "R+130,200 M140,200 M120,150 R-120,150",
     "a 10,10 4x2 90;b 20,10 4x2 90", "ab a"},
    {"the middle stays off the grid", "", 0, 0.5, 0, "R+C M341,198 M321,148 R-321,148", "c 30.1,10.2 4x2 90",
     "c c"},
    {"the first move alone turns nothing", "", 0, 0.5, 0, "R+130,200 M120,150 R-120,150", same, "a a"},
    {"Shift in quarters, from below", "", 0, 0.5, 0, "R+130,200 M140,200 sM170,151 sR-170,151", same, "a a"},
    {"Shift in quarters, from above", "", 0, 0.5, 0, "R+130,200 M140,200 sM169,150 sR-169,150",
     "a 10,10 4x2 90", "a a"},
    {"Shift turns a slanting one by quarters", "", 0, 0.5, 30, "R+130,200 M140,200 sM120,150 sR-120,150",
     "a 10,10 4x2 120", "a a"},
    {"Ctrl takes the direction of the pointer", "", 0, 0.5, 30, "R+130,200 M121,190 cM120,150 cR-120,150",
     "a 10,10 4x2 90", "a a"},
    {"of all that is selected", "ab", 'a', 0.5, 30, "R+130,200 M121,190 cM170,150 cR-170,150",
     "a 10,10 4x2 45;b 20,10 4x2 45", "ab a"},
    {"Shift and Ctrl give the nearest quarter", "", 0, 0.5, 30, "R+130,200 M121,190 scM125,160 scR-125,160",
     "a 10,10 4x2 90", "a a"},
    {"Ctrl copies nothing", "", 0, 0.5, 0, "R+130,200 cM140,200 cR-140,200", same, "a a"},
    {"a handle does not matter", "a", 'a', 0.5, 0, "R+R M160,200 M120,150 R-120,150", "a 10,10 4x2 90", "a a"},

    // Drags that are taken back.
    {"a drop outside", "ab", 'a', 0.5, 0, "L+A M150,150 O+ L--20,15", same, "ab a"},
    {"a copy outside", "", 0, 0.5, 0, "L+A cM150,150 O+ cL--20,15", same, "a a"},
    {"a turn outside", "", 0, 0.5, 0, "R+130,200 M140,200 M120,150 O+ R--20,15", same, "a a"},
    {"a handle outside", "a", 'a', 0.5, 0, "L+R M150,150 O+ L--20,15", same, "a a"},
    {"leaving and coming back", "ab", 'a', 0.5, 0, "L+A M150,150 O+ O-130,190 L-130,190",
     "a 11,11 4x2 0;b 21,11 4x2 0", "ab a"},
    {"leaving twice", "", 0, 0.5, 0, "L+A M150,150 O+ O-130,190 O+ L--20,15", same, "a a"},
    {"coming back to where it left", "", 0, 0.5, 0, "L+A M130,190 O+ O-130,190 L-130,190", "a 11,11 4x2 0",
     "a a"},
    {"the right button takes a move back", "ab", 'a', 0.5, 0, "L+A M150,150 R+150,150 R-150,150 L-150,150",
     same, "ab a"},
    {"the left button takes a turn back", "", 0, 0.5, 0,
     "R+130,200 M140,200 M120,150 L+120,150 L-120,150 R-120,150", same, "a a"},
    {"nothing comes behind it", "", 0, 0.5, 0, "L+A M150,150 R+150,150 M160,160 R-160,160 M170,170 L-170,170",
     same, "a a"},
    {"outside the other button ends it too", "", 0, 0.5, 0, "L+A M150,150 O+ R+-20,15 R--20,15 L--20,15", same,
     "a a"},
};

TEST_F(Drag, MakesOfEachGestureWhatItMeans)
{
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        Fill(row.selected, row.focus, row.turn);
        SetSnap(row.snap, AgPI / 36);
        doc.changes = 0;
        Send(row.events);
        EXPECT_EQ(Changes(), row.shapes);
        EXPECT_EQ(Lists(), row.lists);
        EXPECT_TRUE(AllErased(dc.calls)) << dc.calls;
        EXPECT_FALSE(TEdcDrawSprite::IsDragging());
        EXPECT_FALSE(TEdcDrawSprite::IsCopying());
        if (*row.shapes) {
            EXPECT_GT(doc.changes, 0) << "the model hears of it";
        }
        Tool().Activate(true); // idle again, whatever was pressed
    }
}

TEST_F(Drag, TheDocumentHearsNothingOfWhatIsTakenBack)
{
    for (const char *events :
         {"L+A M150,150 O+ L--20,15", "L+A cM150,150 R+150,150", "R+A M140,200 O+ R--20,15", "L+A L-A",
          "L+A M130,190 O+ O-140,180 O+ L--20,15"}) {
        Fill("ab", 'a');
        doc.changes = 0;
        Send(events);
        EXPECT_EQ(doc.changes, 0) << events;
        Tool().Activate(true);
    }
}

/// What the plain geometry says of any gesture on any shapes.
TEST_F(Drag, DoesAsThePlainGeometryForAnyGesture)
{
    CHANCE chance(31);
    int moved = 0, turned = 0, reshaped = 0;
    for (int round = 0; round < 6000 && !HasFailure(); ++round) {
        SCOPED_TRACE(round);
        bool lines = round % 3 == 2;
        TPlanLayer &ly = lines ? Lines() : Rects();
        Plan().manager.SetLayer(&ly);
        ly.DeleteAll(false);
        SetSnap(chance.One(2) ? 0.5 : 0, chance.One(2) ? AgPI / 36 : 0);
        std::vector<TEdcDrawSprite *> all;
        for (int n = chance.Int(1, 3); n > 0; --n) {
            AgPOINT at(chance.Real(2, 50), chance.Real(2, 22));
            if (lines)
                all.push_back(PutLine(at, at + AgPOINT(chance.Real(-6, 6), chance.Real(-6, 6))));
            else
                all.push_back(PutRect(at, chance.Real(-6, 6), chance.Real(-6, 6),
                                      chance.One(3) ? 0 : chance.Real(-3, 3)));
        }
        LayOut();
        std::vector<plain::SHAPE> before;
        for (TEdcDrawSprite *spr : all) {
            before.push_back(PlainOf(spr));
            ly.Select(spr, true, NULL);
        }
        // the press: near the middle of one, or on one of its handles
        size_t pressed = static_cast<size_t>(chance.Int(0, static_cast<int>(all.size()) - 1));
        std::vector<TPoint> outline = plain::Outline(before[pressed], axes);
        TPoint start = axes.Pixel(before[pressed].centre);
        if (chance.One(2))
            start = outline[static_cast<size_t>(chance.Int(0, lines ? 1 : 3))];
        bool right = chance.One(2);
        auto keys = [&] { return 4u * static_cast<unsigned>(chance.Int(0, 3)); };
        auto point = [&] { return start + TPoint{chance.Int(-150, 150), chance.Int(-150, 150)}; };
        right ? Tool().RightDown(dc, 0, start) : Tool().LeftDown(dc, 0, start);
        if (!ly.Focus() || ly.CountSel() != static_cast<int>(all.size())) { // another one on top of it
            Tool().Activate(true);
            continue;
        }
        size_t lead = static_cast<size_t>(std::find(all.begin(), all.end(), ly.Focus()) - all.begin());
        TPoint first = point();
        first.x += first == start;
        Tool().MouseMove(dc, keys(), first);
        for (int n = chance.Int(0, 2); n > 0; --n)
            Tool().MouseMove(dc, keys(), point());
        TPoint end = point();
        unsigned last = keys();
        right ? Tool().RightUp(dc, last, end) : Tool().LeftUp(dc, last, end);

        plain::STEP step;
        step.shift = last & 4;
        step.ctrl = last & 8;
        step.by = end - start;
        step.pointer = end;
        step.handle = plain::HandleAt(before[lead], axes, 7, start);
        step.kind = right ? plain::STEP::TURN : step.handle >= 0 ? plain::STEP::HANDLE : plain::STEP::MOVE;
        step.pivot = axes.Pixel(before[lead].centre);
        step.startAngle = std::arg(plain::POINT(first.x - step.pivot.x, -(first.y - step.pivot.y) + 0.0));
        bool copies = step.kind == plain::STEP::MOVE && step.ctrl;
        size_t made = all.size() * (copies ? 2 : 1);
        ASSERT_EQ(ly.CountLnk(), static_cast<int>(made));
        ASSERT_EQ(ly.CountSel(), static_cast<int>(all.size()));
        const TEdcSprite *after = ly.LnkFirst();
        for (size_t i = 0; i < made; ++i, after = after->lnkNext) {
            plain::SHAPE now = PlainOf(after);
            EXPECT_LE(now.angle, AgPI);
            EXPECT_GT(now.angle, -AgPI);
            bool stays = (copies && i < all.size()) || (step.kind == plain::STEP::HANDLE && i != lead);
            // copies come in the order of the drag: the focus first
            size_t of = i < all.size()           ? i
                        : i == all.size()        ? lead
                        : i - all.size() <= lead ? i - all.size() - 1
                                                 : i - all.size();
            if (stays)
                EXPECT_EQ(plain::Text(now), plain::Text(before[of]));
            else
                EXPECT_TRUE(plain::Leads(before[of], step, axes, now))
                    << plain::Text(before[of]) << " became " << plain::Text(now);
        }
        EXPECT_TRUE(AllErased(TakeCalls()));
        moved += step.kind == plain::STEP::MOVE;
        turned += step.kind == plain::STEP::TURN;
        reshaped += step.kind == plain::STEP::HANDLE;
    }
    EXPECT_GT(moved, 500);
    EXPECT_GT(turned, 1000);
    EXPECT_GT(reshaped, 500);
}

TEST_F(Drag, AMoveOfZeroLengthAfterThePressChangesNothing)
{
    Fill("a", 'a');
    TakeCalls();
    doc.changes = 0;
    Send("L+A MA MA L-A");
    EXPECT_EQ(Changes(), "");
    EXPECT_EQ(dc.calls, "");
    EXPECT_EQ(doc.changes, 0);
    EXPECT_EQ(doc.obsolete, 0);
}

TEST_F(Drag, WithShiftAMoveGoesAlongOneAxisOnly)
{
    const struct {
        int x, y; // px
        const char *shape;
    } table[] = {{50, 40, "a 15,10 4x2 0"},   {40, 50, "a 10,5 4x2 0"},  {-50, 40, "a 5,10 4x2 0"},
                 {30, 30, "a 10,7 4x2 0"},    {-30, 30, "a 10,7 4x2 0"}, {30, -30, "a 10,13 4x2 0"},
                 {-30, -30, "a 10,13 4x2 0"}, {0, 20, "a 10,8 4x2 0"},   {20, 0, "a 12,10 4x2 0"}};
    for (const auto &row : table) {
        Fill("a", 'a');
        TPoint to = TPoint{120 + row.x, 200 + row.y};
        Tool().LeftDown(dc, 0, {120, 200});
        Tool().MouseMove(dc, WIN_KEY_SHIFT, to);
        Tool().LeftUp(dc, WIN_KEY_SHIFT, to);
        EXPECT_EQ(Changes(), row.shape) << row.x << "," << row.y;
    }
}

TEST_F(Drag, AHandleOfOneOfTwoSelectedRectanglesResizesOnlyTheFocus)
{
    Fill("ab", 'a');
    Send("L+R M150,180");
    EXPECT_TRUE(ByName('a')->dragOk);
    EXPECT_FALSE(ByName('b')->dragOk);
    EXPECT_EQ(GhostsOf(dc.calls).size(), 1u) << "no ghost of the other";
    Send("L-150,180");
    EXPECT_EQ(Changes(), "a 10.5,10.5 5x3 0");
}

TEST_F(Drag, CtrlWithAHandleUnderThePointerDoesNotCopy)
{
    Fill("a", 'a');
    Send("L+R cM150,180");
    EXPECT_FALSE(TEdcDrawSprite::IsCopying());
    Send("cL-150,180");
    EXPECT_EQ(Rects().CountLnk(), 3);
    EXPECT_EQ(Changes(), "a 10.5,10.5 5x3 0");
}

TEST_F(Drag, WithShiftATurnGoesInStepsOfNinetyDegrees)
{
    for (int degrees = -175; degrees <= 180; degrees += 5) {
        Fill("a", 'a');
        double angle = degrees * AgPI / 180;
        TPoint to = {120 + static_cast<int>(std::lround(90 * std::cos(angle))),
                     200 - static_cast<int>(std::lround(90 * std::sin(angle)))};
        Send("R+130,200 M140,200");
        Tool().MouseMove(dc, WIN_KEY_SHIFT, to);
        Tool().RightUp(dc, WIN_KEY_SHIFT, to);
        int quarters = static_cast<int>(std::lround(degrees / 90.0));
        double expected = quarters == -2 ? 180 : quarters * 90;
        if (std::abs(degrees) % 90 != 45) { // the pixels decide
            EXPECT_NEAR(ByName('a')->RectAngle() * 180 / AgPI, expected, 1e-9) << degrees;
        }
    }
}

TEST_F(Drag, WithCtrlATurnTakesTheDirectionOfThePointerFromTheMiddle)
{
    SetSnap(0.5, 0);
    for (int degrees = -170; degrees <= 180; degrees += 10) {
        Fill("", 0, 33);
        double angle = degrees * AgPI / 180;
        TPoint to = {120 + static_cast<int>(std::lround(90 * std::cos(angle))),
                     200 - static_cast<int>(std::lround(90 * std::sin(angle)))};
        Send("R+130,200 M137,207");
        Tool().MouseMove(dc, WIN_KEY_CTRL, to);
        Tool().RightUp(dc, WIN_KEY_CTRL, to);
        EXPECT_NEAR(ByName('a')->RectAngle(), std::atan2(200 - to.y, to.x - 120), 1e-12) << degrees;
    }
}

TEST_F(Drag, ADropOutsideTheRangeOfTheAxesGrowsItAtTheNextLayout)
{
    const struct {
        const char *events;
        double xMin, xMax, yMin, yMax;
    } table[] = {{"L+A M20,200 L-20,200", -2, 60, 0, 24},
                 {"L+A M700,200 L-700,200", 0, 70, 0, 24},
                 {"L+A M120,340 L-120,340", 0, 60, -5, 24},
                 {"L+A M120,20 L-120,20", 0, 60, 0, 29},
                 {"L+A M140,200 L-140,200", 0, 60, 0, 24}};
    for (const auto &row : table) {
        Fill("", 0);
        Scale(10, {20, 300});
        LayOut();
        Send(row.events);
        bool beyond = row.xMin < 0 || row.xMax > 60 || row.yMin < 0 || row.yMax > 24;
        EXPECT_EQ(doc.obsolete, beyond ? EDC_LAYOUT : EDC_PAINT) << row.events;
        TEdcSize room(8, 6);
        Plan().Layout(dc, room, 1.0);
        EXPECT_NEAR(Plan().axes.xMin, row.xMin, 1e-9);
        EXPECT_NEAR(Plan().axes.xMax, row.xMax, 1e-9);
        EXPECT_NEAR(Plan().axes.yMin, row.yMin, 1e-9);
        EXPECT_NEAR(Plan().axes.yMax, row.yMax, 1e-9);
    }
}

TEST_F(Drag, ADropRepaintsTheSelectionOnTopTheFocusLast)
{
    Fill("ba", 'a');
    Rects().RepaintSprite(ByName('c'), NULL);
    LayOut();
    Send("L+A M130,190 L-130,190");
    EXPECT_EQ(NameOf(Rects().PntLast()), 'a');
    EXPECT_EQ(NameOf(Rects().PntLast()->pntPrev), 'b');
    EXPECT_EQ(NameOf(Rects().PntFirst()), 'c');
    EXPECT_EQ(doc.obsolete, EDC_PAINT);
    EXPECT_EQ(TakeCalls().find("Polygon"), std::string::npos) << "nothing is repainted before the refresh";
}

TEST_F(Drag, AGhostIsTheOutlineOfWhatWouldBeDropped)
{
    for (const Row &row : rows) {
        std::vector<GestureEvent> events = ParseGesture(row.events, DragPlace);
        const GestureEvent &last = events.back();
        bool drops = last.kind == GestureEvent::LEFT_UP || last.kind == GestureEvent::RIGHT_UP;
        const GestureEvent &before = events[events.size() - 2];
        if (!drops || before.kind != GestureEvent::MOVE || before.keys != last.keys)
            continue;
        SCOPED_TRACE(row.name);
        Fill(row.selected, row.focus, row.turn);
        SetSnap(row.snap, AgPI / 36);
        events.pop_back();
        for (const GestureEvent &event : events)
            Send(Tool(), event);
        std::map<std::string, int> ghosts = GhostsOf(TakeCalls());
        Send(Tool(), last);
        std::vector<std::string> shown;
        for (const auto &[line, count] : ghosts)
            if (count % 2 != 0)
                shown.push_back(line);
        std::vector<std::string> expected;
        for (TEdcSprite *spr = Rects().SelFirst(); spr; spr = spr->selNext)
            if (row.selected[0] == '\0' || std::string(row.shapes).find(NameOf(spr)) != std::string::npos)
                expected.push_back(GhostText(PlainOf(spr), axes));
        std::sort(expected.begin(), expected.end());
        if (*row.shapes) {
            EXPECT_EQ(shown, expected);
        }
    }
}

TEST_F(Drag, EachMoveDrawsTwoGhostsOfASpriteAndPaintsNone)
{
    Fill("abc", 'a');
    TakeCalls();
    Send("L+A");
    EXPECT_EQ(dc.calls, "") << "it is the focus already";
    Send("M121,200"); // the first also shows it, and the handles go and come
    EXPECT_EQ(CountGhosts(), 3 * 3);
    for (int i = 0; i < 20; ++i) {
        Tool().MouseMove(dc, 0, {130 + 7 * i, 190 - i});
        std::vector<std::string> calls = CallsOf(TakeCalls());
        ASSERT_EQ(calls.size(), 3u * 2);
        for (const std::string &call : calls)
            EXPECT_TRUE(call.starts_with("Polyline ") && call.ends_with(" pen ffffff xor")) << call;
    }
    Tool().Outside(dc, true);
    EXPECT_EQ(CountGhosts(), 3);
    Tool().MouseMove(dc, 0, {-20, 10});
    EXPECT_EQ(dc.calls, "") << "nothing is drawn outside";
    Tool().Outside(dc, false);
    EXPECT_EQ(CountGhosts(), 3);
    Tool().LeftUp(dc, 0, {150, 190});
    EXPECT_EQ(CountGhosts(), 3);
}

TEST_F(Drag, AGhostLeavesTheStateOfTheDeviceAsItWas)
{
    Fill("a", 'a');
    dc.SetPen({.color = {1, 2, 3}, .width = 4});
    TDCState before = dc.State();
    Send("L+A M130,190 M140,190");
    EXPECT_EQ(dc.State().pen, before.pen);
    EXPECT_EQ(dc.State().mix, before.mix);
    Send("L-140,190");
    EXPECT_EQ(dc.State().mix, before.mix);
}

TEST_F(Drag, HandlesFollowTheDrop)
{
    Fill("a", 'a');
    Send("L+R M150,180 L-150,180");
    LayOut();
    Send("L+150,180 M140,190 L-140,190");
    EXPECT_EQ(Changes(), "");
    Send("L+R M150,180 L-150,180"); // and without a layout in between
    EXPECT_EQ(Changes(), "a 10.5,10.5 5x3 0");
}

TEST_F(Drag, LinesMoveTurnAndStretchLikeRectangles)
{
    Plan().manager.SetLayer(&Lines());
    const struct {
        const char *name, *events, *shape;
    } table[] = {
        // from (8, 10) to (12, 10)
        {"move", "L+A M130,190 L-130,190", "11,11 4x0 0"},
        {"the far end", "L+140,200 M140,170 L-140,170", "10,11.5 5x0 36.8699"},
        {"the near end", "L+100,200 M100,170 L-100,170", "10,11.5 5x0 -36.8699"},
        {"the far end across", "L+140,200 M60,200 L-60,200", "6,10 4x0 180"},
        {"the near end across", "L+100,200 M180,200 L-180,200", "14,10 4x0 180"},
        {"the far end upright", "L+140,200 M100,240 L-100,240", "8,8 4x0 -90"},
        {"one end onto the other", "L+100,200 M140,200 L-140,200", "12,10 0x0 0"},
        {"turn", "R+A M140,200 M120,150 R-120,150", "10,10 4x0 90"},
        {"half a turn", "R+A M140,200 M60,200 R-60,200", "10,10 4x0 180"},
        {"Ctrl on an end", "L+140,200 cM160,200 cL-160,200", "11,10 6x0 0"},
    };
    for (const auto &row : table) {
        Lines().DeleteAll(false);
        SeenLine *line = PutLine(AgPOINT(8, 10), AgPOINT(12, 10));
        Lines().Select(line, true, NULL);
        Lines().SetFocus(line, NULL);
        LayOut();
        Send(row.events);
        EXPECT_EQ(Place(line), row.shape) << row.name;
        EXPECT_GT(line->LineAngle(), -AgPI) << row.name;
        EXPECT_TRUE(AllErased(TakeCalls())) << row.name;
        EXPECT_EQ(Lines().CountLnk(), 1);
    }
    Lines().DeleteAll(false);
    SeenLine *line = PutLine(AgPOINT(8, 10), AgPOINT(12, 10));
    LayOut();
    Send("L+A cM120,150 cL-120,150");
    EXPECT_EQ(Lines().CountLnk(), 2);
    EXPECT_EQ(Place(line), "10,10 4x0 0");
    EXPECT_EQ(Place(Lines().SelFirst()), "10,15 4x0 0");
    EXPECT_EQ(Lines().Focus(), static_cast<TEdcSprite *>(NULL));
}

TEST_F(Drag, ACopyKeepsTheOriginalAndTakesItsPlaceInTheSelection)
{
    Fill("ab", 'b');
    ByName('a')->SetKind(TEdcDrawRect::FRAMEONLY);
    Send("L+100,200 cM100,150 cL-100,150"); // a's frame
    EXPECT_EQ(Changes(), "+ 10,15 4x2 0;+ 20,15 4x2 0");
    EXPECT_EQ(Lists(), "++ -");
    EXPECT_FALSE(Rects().IsSelected(ByName('a')));
    EXPECT_FALSE(Rects().IsSelected(ByName('b')));
    auto *copy = dynamic_cast<SeenRect *>(Rects().LnkLast()->lnkPrev);
    ASSERT_TRUE(copy);
    EXPECT_EQ(copy->kind, TEdcDrawRect::FRAMEONLY);
    EXPECT_EQ(copy->state, EDC_SsACTIVE | EDC_SsSELECTED);
    EXPECT_EQ(doc.obsolete, EDC_LAYOUT);
    LayOut();
    EXPECT_EQ(copy->handles.Count(), 4);
}
} // namespace
