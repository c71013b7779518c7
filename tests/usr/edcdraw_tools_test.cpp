// The aligner and the creator of objects from stock, event by event.
#include "support/child.h"
#include "toolcase.h"
#include "usr/edcutils.h"

#include <cmath>

namespace
{
using testdoor::DialogBox;

enum Id { COUNT = 101, X1 = 102, Y1 = 103, X2 = 104, Y2 = 105, STRETCH = 112, GAPS = 116 };

class SeenAligner : public SeenTool<TEdcDrawAligner>
{
public:
    using SeenTool::SeenTool;
    using TEdcDrawAligner::Axes;

    bool Finish() override
    {
        calls += "finish ";
        return !fault.Meets("finish") && done;
    }
    void DrawLine(TDC &) override
    {
        calls += std::to_string(start.x) + "," + std::to_string(start.y) + ">" + std::to_string(end.x) + "," +
                 std::to_string(end.y) + " ";
        fault.Meets("draw");
    }

    bool done = true;
};

class Aligner : public ToolOf<SeenAligner>
{
protected:
    Aligner() : ToolOf(EDC_TlALIGN, 21692, EDC_TlSELECT) {}
};

struct Row {
    const char *name;
    const char *events;
    const char *calls;
    const char *states;
    bool leaves; // for the selector
};
const Row rows[] = {
    {"a click finishes without a line", "L+5,5 L-5,5", "finish ", "0 0", true},
    {"a press waits", "L+5,5", "", "1 0", false},
    {"a move draws", "L+5,5 M9,7", "5,5>9,7 ", "1 0", false},
    {"the next one takes the line back", "L+5,5 M9,7 M20,8", "5,5>9,7 5,5>9,7 5,5>20,8 ", "1 0", false},
    {"an equal point draws nothing", "L+5,5 M5,5 M9,7 M9,7", "5,5>9,7 ", "1 0", false},
    {"a release takes the line back and finishes", "L+5,5 M9,7 L-9,7", "5,5>9,7 5,5>9,7 finish ", "0 0", true},
    {"the line ends where it was drawn last", "L+5,5 M9,7 L-50,50", "5,5>9,7 5,5>9,7 finish ", "0 0", true},
    {"a line back to the press", "L+5,5 M9,7 M5,5 L-5,5", "5,5>9,7 5,5>9,7 5,5>5,5 5,5>5,5 finish ", "0 0",
     true},
    {"a move without a press", "M9,7 L-9,7", "", "0 0", false},
    {"Shift pulls onto the x axis", "L+5,5 sM15,8 L-15,8", "5,5>15,5 5,5>15,5 finish ", "0 0", true},
    {"Shift pulls onto the y axis", "L+5,5 sM8,25 L-8,25", "5,5>5,25 5,5>5,25 finish ", "0 0", true},
    {"Shift with equal shares keeps x", "L+5,5 sM-5,15", "5,5>-5,5 ", "1 0", false},
    {"a pulled point that stays draws nothing", "L+5,5 sM15,8 sM15,2", "5,5>15,5 ", "1 0", false},
    {"Shift that comes later", "L+5,5 M15,8 sM15,8", "5,5>15,8 5,5>15,8 5,5>15,5 ", "1 0", false},
    {"Ctrl does nothing", "L+5,5 cM15,8", "5,5>15,8 ", "1 0", false},

    {"the right button takes a line back", "L+5,5 M9,7 R+9,7", "5,5>9,7 5,5>9,7 ", "0 0 outside", false},
    {"and its release goes nowhere", "L+5,5 M9,7 R+9,7 R-9,7 L-9,7", "5,5>9,7 5,5>9,7 ", "0 0 outside", false},
    {"moves behind it draw nothing", "L+5,5 M9,7 R+9,7 M40,40", "5,5>9,7 5,5>9,7 ", "0 0 outside", false},
    {"a press behind it begins anew", "L+5,5 M9,7 R+9,7 L-9,7 R-9,7 L+1,1 M2,2", "5,5>9,7 5,5>9,7 1,1>2,2 ",
     "1 0", false},
    {"a press without a line is taken back", "L+5,5 R+5,5 L-5,5 R-5,5", "", "0 0 outside", false},
    {"outside the line is gone already", "L+5,5 M9,7 O+ R+-3,7 L--3,7 R--3,7", "5,5>9,7 5,5>9,7 ",
     "0 0 outside", false},

    {"a right click leaves", "R+5,5 R-5,5", "", "0 0", true},
    {"a right click leaves where it ends", "R+5,5 M90,90 R-90,90", "", "0 0", true},
    {"a right press waits", "R+5,5", "", "0 1", false},
    {"a release without a right press", "R-5,5", "", "0 0", false},
    {"no line under the right button", "R+5,5 L+5,5 M9,7 L-9,7", "", "0 1", false},
    {"and the right click goes on", "R+5,5 L+5,5 M9,7 L-9,7 R-9,7", "", "0 0", true},

    {"leaving hides the line", "L+5,5 M9,7 O+", "5,5>9,7 5,5>9,7 ", "1 0 outside", false},
    {"moves outside are not drawn", "L+5,5 M9,7 O+ M-9,7 M-20,7", "5,5>9,7 5,5>9,7 ", "1 0 outside", false},
    {"coming back shows it where it was", "L+5,5 M9,7 O+ M-9,7 O- M8,8",
     "5,5>9,7 5,5>9,7 5,5>9,7 5,5>9,7 5,5>8,8 ", "1 0", false},
    {"a release outside does nothing", "L+5,5 M9,7 O+ L--9,7", "5,5>9,7 5,5>9,7 ", "0 0 outside", false},
    {"a press that left without a line", "L+5,5 O+ O- L-5,5", "finish ", "0 0", true},
    {"leaving without a press", "O+ O-", "", "0 0", false},
    {"a press inside after leaving", "O+ L+5,5 M9,7", "5,5>9,7 ", "1 0", false},
    {"a press whose release never came is taken back", "L+5,5 M9,7 L+1,1 M2,2", "5,5>9,7 5,5>9,7 1,1>2,2 ",
     "1 0", false},
    {"and ends as its own", "L+5,5 M9,7 L+1,1 L-1,1", "5,5>9,7 5,5>9,7 finish ", "0 0", true},
    {"what is hidden is not shown by it", "L+5,5 M9,7 O+ L+1,1 M2,2", "5,5>9,7 5,5>9,7 1,1>2,2 ", "1 0", false},
    {"nor what was let go outside", "L+5,5 M9,7 O+ L--9,7 O- L+1,1", "5,5>9,7 5,5>9,7 ", "1 0", false},
    {"two right presses are one", "R+5,5 R+9,9 R-9,9", "", "0 0", true},
    {"a double click begins nothing", "LL5,5 M9,7 L-9,7", "", "0 0", false},
};

TEST_F(Aligner, GoesFromStateToStateWithEachEvent)
{
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        tool.Activate(true);
        tool.calls.clear();
        Play(tool, row.events);
        EXPECT_EQ(tool.calls, row.calls);
        EXPECT_EQ(tool.States(), row.states);
        EXPECT_EQ(TookSelector(), row.leaves);
        tool.Activate(false);
        EXPECT_EQ(tool.States(), "0 0");
    }
}

TEST_F(Aligner, StaysWhereItIsNotDoneOrHasNothingToFollow)
{
    tool.done = false;
    Play(tool, "L+5,5 M9,7 L-9,7");
    EXPECT_FALSE(TookSelector());
    SeenAligner last(EDC_TlALIGN, 21692, 0);
    last.SetLayer(layer.get());
    Play(last, "L+5,5 M9,7 L-9,7 R+5,5 R-5,5");
    EXPECT_EQ(last.calls, "5,5>9,7 5,5>9,7 finish ");
    EXPECT_EQ(last.States(), "0 0");
    EXPECT_FALSE(TookSelector());
}

TEST_F(Aligner, IsDeafWithoutALayer)
{
    tool.SetLayer(NULL);
    for (const Row &row : rows)
        Play(tool, row.events);
    EXPECT_EQ(tool.calls, "");
    EXPECT_EQ(tool.leftState + tool.rightState, 0);
    EXPECT_FALSE(TookSelector());
    EXPECT_TRUE(AbortsOnAssertion("layer != NULL", "usr/edcdraw_tools.cpp", [this] { tool.Axes(); }));
}

TEST_F(Aligner, DoesNotLeaveForARightPressThatIsTakenBack)
{
    tool.RightDown(dc, 0, {5, 5});
    tool.Outside(dc, true);
    tool.RightUp(dc, EDC_KEY_TAKEBACK, {5, 5});
    EXPECT_EQ(tool.rightState, 0);
    EXPECT_FALSE(TookSelector());
}

TEST_F(Aligner, IsIdleAfterAnyFailure)
{
    struct Case {
        const char *at;
        int call;
        const char *events;
    };
    const Case cases[] = {{"draw", 1, "L+5,5 M9,7"},        {"draw", 2, "L+5,5 M9,7 M10,10"},
                          {"draw", 3, "L+5,5 M9,7 M10,10"}, {"draw", 2, "L+5,5 M9,7 L-9,7"},
                          {"finish", 1, "L+5,5 L-5,5"},     {"draw", 2, "L+5,5 M9,7 R+9,7"},
                          {"draw", 2, "L+5,5 M9,7 L+9,7"}};
    for (const Case &c : cases) {
        SCOPED_TRACE(c.events + std::string(" ") + c.at + std::to_string(c.call));
        tool.fault = {c.at, c.call};
        Play(tool, c.events);
        EXPECT_EQ(TakeFailure(), XALLOC);
        EXPECT_EQ(tool.leftState + tool.rightState, 0);
        tool.fault = {};
        EXPECT_FALSE(TookSelector());
        tool.calls.clear();
        Play(tool, "L+1,1 M2,2 L-2,2");
        EXPECT_EQ(tool.calls, "1,1>2,2 1,1>2,2 finish ");
        EXPECT_TRUE(TookSelector());
    }
}

TEST_F(Aligner, DrawsAnArrow)
{
    struct Case {
        const char *events;
        int dpi;
        const char *calls;
    };
    const Case cases[] = {
        // The head is 5/72 inch long: 6.67 px at 96 dpi.
        {"L+10,50 M110,50", 96,
         "Line 10,50 102,50 pen 000000 notxor\nPolygon 110,50 103,52 103,48 pen none brush 000000 notxor\n"},
        {"L+50,110 M50,10", 96,
         "Line 50,110 50,18 pen 000000 notxor\nPolygon 50,10 52,17 48,17 pen none brush 000000 notxor\n"},
        {"L+10,50 M110,50", 144,
         "Line 10,50 99,50 pen 000000 notxor\nPolygon 110,50 100,53 100,47 pen none brush 000000 notxor\n"},
        {"L+10,50 M13,50", 96, "Polygon 13,50 6,52 6,48 pen none brush 000000 notxor\n"},
        {"L+10,50", 96, ""},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.events);
        TRecordDC record(c.dpi);
        TEdcDrawAligner &aligner = doc.plan->aligner;
        aligner.SetLayer(layer.get());
        for (const GestureEvent &event : ParseGesture(c.events, NULL))
            if (event.kind == GestureEvent::LEFT_DOWN)
                aligner.LeftDown(record, 0, event.at);
            else
                aligner.MouseMove(record, 0, event.at);
        EXPECT_EQ(record.calls, c.calls);
        EXPECT_EQ(record.State().mix, WIN_MIX_COPY);
        aligner.RightDown(record, 0, {0, 0});
        aligner.SetLayer(NULL);
    }
}

TEST_F(Aligner, LeavesNoTraceOfItsArrow)
{
    const TSize size = {120, 120};
    TMemoryDC surface(size, 96);
    PaintGround(surface, size);
    const std::vector<TColor> before = PixelsOf(surface, size);
    TEdcDrawAligner &aligner = doc.plan->aligner;
    aligner.SetLayer(layer.get());
    for (int i = 0; i < 72; ++i) {
        double angle = i * AgPI / 36;
        double length = 2 + i;
        TPoint to = {static_cast<int>(std::lround(60 + length * std::cos(angle))),
                     static_cast<int>(std::lround(60 - length * std::sin(angle)))};
        aligner.LeftDown(surface, 0, {60, 60});
        aligner.MouseMove(surface, 0, to);
        EXPECT_NE(PixelsOf(surface, size), before) << i;
        aligner.LeftDown(surface, 0, to); // the release never came
        EXPECT_EQ(PixelsOf(surface, size), before) << i;
        aligner.MouseMove(surface, 0, {30, 90});
        aligner.RightDown(surface, 0, to);
        EXPECT_EQ(PixelsOf(surface, size), before) << i;
    }
    aligner.SetLayer(NULL);
}

class RealAligner : public ToolOf<TEdcDrawAligner>
{
protected:
    RealAligner() : ToolOf(EDC_TlALIGN, 21692, EDC_TlSELECT) {}
};

TEST_F(RealAligner, WithNoSelectionDoesNothingAndGoesBackToTheSelector)
{
    Draw(tool, 2, 3, 20, 9);
    EXPECT_TRUE(TookSelector());
    Click(tool, 2, 3);
    EXPECT_TRUE(TookSelector());
    ToolRect *spr = Put(10, 6);
    layer->SetFocus(NULL, NULL); // selected alone is not enough
    Draw(tool, 2, 3, 20, 9);
    EXPECT_TRUE(TookSelector());
    EXPECT_EQ(spr->Centre(), AgPOINT(10, 6));
    EXPECT_EQ(doc.changes, 0);
}

TEST_F(RealAligner, StaysAfterAClickWithASelection)
{
    Put(10, 6);
    Click(tool, 2, 3);
    EXPECT_FALSE(TookSelector());
    EXPECT_EQ(doc.changes, 0);
}

TEST_F(RealAligner, RightClickGoesBackToTheSelectorWithoutTouchingTheSelection)
{
    ToolRect *a = Put(10, 6);
    ToolRect *b = Put(20, 9);
    Play(tool, "R+40,40 R-40,40");
    EXPECT_TRUE(TookSelector());
    EXPECT_TRUE(layer->IsSelected(a));
    EXPECT_TRUE(layer->IsSelected(b));
    EXPECT_EQ(layer->Focus(), b);
    EXPECT_EQ(doc.changes, 0);
}

TEST_F(RealAligner, AsksWithTheDrawnLineAndAlignsTheSelection)
{
    ToolRect *a = Put(10, 6);
    ToolRect *b = Put(20, 9);
    Fill([](DialogBox &dialog) {
        EXPECT_EQ(dialog.Caption(), "Genauer Ausgleich");
        EXPECT_EQ(dialog.Text(COUNT), "2");
        EXPECT_EQ(dialog.Text(X1), "5.1"); // where the pointer was, not on the grid
        EXPECT_EQ(dialog.Text(Y1), "3.2");
        EXPECT_EQ(dialog.Text(X2), "25.1");
        EXPECT_EQ(dialog.Text(Y2), "3.2");
    });
    Draw(tool, 5.1, 3.2, 25.1, 3.2);
    EXPECT_TRUE(TookSelector());
    EXPECT_NEAR(a->Centre().x, 10, 1e-9);
    EXPECT_NEAR(a->Centre().y, 3.2, 1e-9);
    EXPECT_NEAR(b->Centre().x, 20, 1e-9);
    EXPECT_NEAR(b->Centre().y, 3.2, 1e-9);
    EXPECT_EQ(doc.changes, 2);
    EXPECT_EQ(layer->Focus(), b);
}

TEST_F(RealAligner, GoesBackFromACancelledDialogAndMovesNothing)
{
    ToolRect *a = Put(10, 6);
    Fill([](DialogBox &) {}, WIN_ID_CANCEL);
    Draw(tool, 5, 3, 25, 8);
    EXPECT_TRUE(TookSelector());
    EXPECT_EQ(a->Centre(), AgPOINT(10, 6));
    EXPECT_EQ(doc.changes, 0);
}

TEST_F(RealAligner, KeepsWhatWasAlignedBeforeAFailure)
{
    ToolRect *a = Put(10, 6);
    ToolRect *b = Put(20, 9); // the focus goes first
    Fill([](DialogBox &) {});
    layer->fault = {"apply", 2};
    Draw(tool, 5, 3, 25, 3);
    EXPECT_EQ(TakeFailure(), XALLOC);
    EXPECT_FALSE(TookSelector());
    EXPECT_NEAR(b->Centre().y, 3, 1e-9);
    EXPECT_EQ(a->Centre(), AgPOINT(10, 6));
    EXPECT_EQ(layer->CountSel(), 2);
}

class Tools : public ToolCase
{
};

TEST_F(Tools, ShowTheirCursorsAndGiveTheFormerOneBack)
{
    TDrawBlock &plan = *doc.plan;
    struct Case {
        TEdcSpriteTool *tool;
        int cursor;
    };
    const Case cases[] = {{&plan.selector, 21690},
                          {&plan.aligner, 21692},
                          {&plan.stockCreator, 21693},
                          {&plan.rectCreator, 21695},
                          {&plan.lineCreator, 21694}};
    plan.manager.SetTool(NULL);
    for (const TCursor &former : {TCursor{TCursor::CROSS}, TCursor{}}) {
        doc.SetCursor(former);
        for (const Case &c : cases) {
            SCOPED_TRACE(c.cursor);
            c.tool->Activate(true);
            EXPECT_EQ(Shown(), (TCursor{TCursor::RESOURCE, c.cursor}));
            c.tool->Activate(true);
            c.tool->Activate(false);
            EXPECT_EQ(Shown(), former);
            c.tool->Activate(false);
            EXPECT_EQ(Shown(), former);
        }
    }
}

TEST_F(Tools, ChangeTheirCursorsInTurn)
{
    TDrawBlock &plan = *doc.plan;
    ASSERT_EQ(plan.manager.Tool(), &plan.selector);
    for (auto [id, cursor] : {std::pair{int{EDC_TlALIGN}, 21692},
                              {int{EDC_TlSTOCK}, 21693},
                              {int{EDC_TlRECT}, 21695},
                              {int{EDC_TlSELECT}, 21690}}) {
        ASSERT_TRUE(frame.TryCommand(id)) << id;
        EXPECT_EQ(Shown(), (TCursor{TCursor::RESOURCE, cursor}));
    }
    doc.OpenBlock(NULL);
    EXPECT_EQ(Shown(), TCursor{});
}

TEST_F(Tools, TellInTheStatusLineWhatTheyAreFor)
{
    EXPECT_STREQ(GetResString(EDC_TlSELECT), "\nObjekthandhabungsinstrument");
    EXPECT_STREQ(GetResString(EDC_TlSTOCK), "\nObjektbildungsinstrument");
    EXPECT_STREQ(GetResString(EDC_TlRECT), "\nInstrument zur Herstellung rechteckiger Objekte");
    EXPECT_STREQ(GetResString(EDC_CmDELETE), "\nBefehl zur Beseitigung ausgew\xE4hlter Objekte");
}

using SeenStock = SeenTool<TEdcDrawStockCreator>;

class Stock : public ToolOf<SeenStock>
{
protected:
    Stock() : ToolOf(EDC_TlSTOCK, 21693, 0) {}
    ~Stock() override { tool.Activate(false); }
    const ToolRect &Made(int i) const
    {
        TEdcSprite *spr = layer->LnkFirst();
        while (i-- > 0)
            spr = spr->lnkNext;
        return static_cast<ToolRect &>(*spr);
    }
    static void TypeCount(DialogBox &dialog, const char *count) { dialog.Type(COUNT, count); }
};

TEST_F(Stock, AsksForParametersWhenItIsChosenAndAtARightClick)
{
    tool.Activate(true);
    EXPECT_EQ(layer->queries, "21511 first ");
    Play(tool, "R+40,40 R-40,40");
    EXPECT_EQ(layer->queries, "21511 first 21511 again ");
    Play(tool, "R-40,40 L+5,5 M9,9 R+9,9 R-9,9 L-9,9"); // no right click
    tool.RightDown(dc, 0, {40, 40});
    tool.RightUp(dc, EDC_KEY_TAKEBACK, {40, 40});
    EXPECT_EQ(layer->queries, "21511 first 21511 again ");
    tool.Activate(false);
    EXPECT_EQ(layer->queries, "21511 first 21511 again ");
    tool.SetLayer(NULL);
    tool.Activate(true);
    EXPECT_EQ(layer->queries, "21511 first 21511 again ");
    EXPECT_FALSE(TookSelector());
}

TEST_F(Stock, ThatIsFollowedByAnotherToolGoesThereAtARightClick)
{
    SeenStock followed(EDC_TlSTOCK, 21693, EDC_TlSELECT);
    followed.SetLayer(layer.get());
    followed.Activate(true);
    Play(followed, "R+40,40 R-40,40");
    EXPECT_EQ(layer->queries, "21511 first ");
    EXPECT_TRUE(TookSelector());
    Click(followed, 5, 5);
    EXPECT_EQ(layer->CountLnk(), 1);
    EXPECT_TRUE(TookSelector());
    followed.Activate(false);
}

TEST_F(Stock, AClickPlacesOneObjectCentredOnTheClickOnTheUnsnappedPoint)
{
    tool.Activate(true);
    ToolRect *former = Put(30, 9);
    Click(tool, 12.3, 4.7);
    ASSERT_EQ(layer->CountLnk(), 2);
    ASSERT_EQ(layer->creations.size(), 1u);
    EXPECT_EQ(layer->creations[0].type, EDC_TlSTOCK);
    EXPECT_EQ(layer->creations[0].stock, &layer->stock);
    EXPECT_EQ(layer->creations[0].points.Count(), 0);
    EXPECT_NEAR(Made(1).Centre().x, 12.3, 1e-9);
    EXPECT_NEAR(Made(1).Centre().y, 4.7, 1e-9);
    EXPECT_FALSE(layer->IsSelected(former));
    EXPECT_EQ(layer->CountSel(), 1);
    EXPECT_EQ(layer->Focus(), &Made(1));
    EXPECT_TRUE(doc.IsObsolete(EDC_LAYOUT));
    EXPECT_TRUE(doc.modified);
    EXPECT_FALSE(TookSelector());
}

TEST_F(Stock, ADrawnLineAsksForACountAndPlacesARow)
{
    tool.Activate(true);
    ToolRect *former = Put(30, 9);
    Fill([](DialogBox &dialog) {
        EXPECT_EQ(dialog.Text(COUNT), "");
        EXPECT_TRUE(dialog.IsEnabled(COUNT));
        EXPECT_FALSE(dialog.IsEnabled(STRETCH));
        TypeCount(dialog, "4");
    });
    Draw(tool, 2.1, 3.2, 8.1, 11.2); // 10 m, 3 : 4
    ASSERT_EQ(layer->CountLnk(), 5);
    for (int i = 0; i < 4; ++i) {
        SCOPED_TRACE(i);
        EXPECT_NEAR(Made(i + 1).Centre().x, 2.1 + 6.0 * i / 3, 1e-9);
        EXPECT_NEAR(Made(i + 1).Centre().y, 3.2 + 8.0 * i / 3, 1e-9);
        EXPECT_NEAR(Made(i + 1).RectAngle(), std::atan2(8.0, 6.0), 1e-9); // parallel to the line
        EXPECT_TRUE(layer->IsSelected(&Made(i + 1)));
    }
    EXPECT_FALSE(layer->IsSelected(former));
    EXPECT_EQ(layer->CountSel(), 4);
    EXPECT_EQ(layer->Focus(), nullptr);
    EXPECT_EQ(former->Centre(), AgPOINT(30, 9));
}

TEST_F(Stock, ARowMayHaveGapsAndOneMember)
{
    tool.Activate(true);
    Fill([](DialogBox &dialog) {
        TypeCount(dialog, "3");
        dialog.Click(GAPS);
    });
    Draw(tool, 2, 3, 22, 3); // 20 m for 3 times 4 m: gaps of 4 m
    ASSERT_EQ(layer->CountLnk(), 3);
    for (int i = 0; i < 3; ++i)
        EXPECT_NEAR(Made(i).Centre().x, 2 + 2 + 8 * i, 1e-9) << i;
    Fill([](DialogBox &dialog) { TypeCount(dialog, "1"); });
    Draw(tool, 5, 9, 22, 9);
    ASSERT_EQ(layer->CountLnk(), 4);
    EXPECT_NEAR(Made(3).Centre().x, 7, 1e-9); // the gaps are remembered: it begins where the line does
    EXPECT_NEAR(Made(3).Centre().y, 9, 1e-9);
}

TEST_F(Stock, ACancelledRowMakesNothingAndKeepsTheSelection)
{
    tool.Activate(true);
    ToolRect *former = Put(30, 9);
    Fill([](DialogBox &dialog) { TypeCount(dialog, "4"); }, WIN_ID_CANCEL);
    Draw(tool, 2, 3, 8, 11);
    EXPECT_EQ(layer->CountLnk(), 1);
    EXPECT_EQ(layer->Focus(), former);
    EXPECT_EQ(layer->creations.size(), 0u);
    EXPECT_EQ(doc.changes, 0);
}

TEST_F(Stock, CancellingTheParametersLeavesNoneAndClicksTellOfIt)
{
    layer->hasStock = false;
    tool.Activate(true);
    ToolRect *former = Put(30, 9);
    for (int i = 0; i < 2; ++i) {
        ExpectNoParameters();
        Click(tool, 12, 4);
        EXPECT_EQ(testdoor::PendingScripts(), 0);
    }
    EXPECT_EQ(layer->CountLnk(), 1);
    EXPECT_FALSE(layer->IsSelected(former));
    layer->hasStock = true;
    Play(tool, "R+40,40 R-40,40"); // now they are there
    Click(tool, 12, 4);
    EXPECT_EQ(layer->CountLnk(), 2);
    layer->hasStock = false;
    tool.Activate(false);
    tool.Activate(true); // chosen anew, it has forgotten them
    ExpectNoParameters();
    Click(tool, 12, 4);
    EXPECT_EQ(layer->CountLnk(), 2);
}

TEST_F(Stock, ARowStopsAtTheFirstObjectThatIsNotMade)
{
    layer->hasStock = false;
    tool.Activate(true);
    testdoor::Script([](testdoor::ModalBox &box) {
        DialogBox dialog(box);
        TypeCount(dialog, "4");
        box.Answer(WIN_ID_OK);
    });
    ExpectNoParameters(); // once, not four times
    Draw(tool, 2, 3, 22, 3);
    EXPECT_EQ(layer->CountLnk(), 0);
    EXPECT_EQ(layer->creations.size(), 1u);
    EXPECT_EQ(layer->Focus(), nullptr);

    layer->hasStock = true;
    Play(tool, "R+40,40 R-40,40");
    layer->most = 3; // one was refused already
    Fill([](DialogBox &dialog) { TypeCount(dialog, "5"); });
    Draw(tool, 2, 3, 22, 3);
    ASSERT_EQ(layer->CountLnk(), 2);
    EXPECT_NEAR(Made(0).Centre().x, 2, 1e-9); // those that are there take the whole line
    EXPECT_NEAR(Made(1).Centre().x, 22, 1e-9);
    EXPECT_EQ(layer->CountSel(), 2);
    EXPECT_EQ(layer->Focus(), nullptr);
}

TEST_F(Stock, KeepsWhatWasMadeBeforeAFailureWithoutAFocus)
{
    struct Case {
        const char *at;
        int call;
        int row; // objects, 0 for a click
        int made;
    };
    const Case cases[] = {{"create", 1, 0, 0},    {"select", 1, 0, 1},   {"focus", 1, 0, 1},
                          {"recompute", 1, 0, 1}, {"describe", 1, 0, 1}, {"describe", 2, 0, 1},
                          {"apply", 1, 0, 1},     {"create", 1, 3, 0},   {"create", 3, 3, 2},
                          {"select", 2, 3, 2},    {"focus", 1, 3, 3},    {"recompute", 2, 3, 3},
                          {"describe", 3, 3, 3},  {"apply", 1, 3, 3},    {"apply", 5, 3, 3}};
    for (const Case &c : cases) {
        SCOPED_TRACE(c.at + std::to_string(c.call) + " of " + std::to_string(c.row));
        tool.Activate(true);
        layer->fault = {c.at, c.call};
        if (c.row > 0) {
            Fill([](DialogBox &dialog) { TypeCount(dialog, "3"); });
            Draw(tool, 2, 3, 22, 3);
        } else {
            Click(tool, 12, 4);
        }
        EXPECT_EQ(TakeFailure(), XALLOC);
        EXPECT_EQ(layer->CountLnk(), c.made);
        EXPECT_EQ(layer->Focus(), nullptr);
        EXPECT_EQ(tool.leftState + tool.rightState, 0);
        layer->fault = {};
        layer->DeleteAll(false);
        Click(tool, 12, 4); // it goes on
        EXPECT_EQ(layer->CountLnk(), 1);
        layer->DeleteAll(false);
        tool.Activate(false);
    }
}

TEST_F(Stock, HasNoParametersWhereAskingFails)
{
    layer->fault = {"query", 1};
    tool.Activate(true);
    EXPECT_EQ(TakeFailure(), XALLOC);
    EXPECT_EQ(Shown(), (TCursor{TCursor::RESOURCE, 21693}));
    ExpectNoParameters();
    Click(tool, 12, 4);
    layer->fault = {"query", 1};
    Play(tool, "R+40,40 R-40,40");
    EXPECT_EQ(TakeFailure(), XALLOC);
    EXPECT_EQ(tool.rightState, 0);
    Play(tool, "R+40,40 R-40,40");
    Click(tool, 12, 4);
    EXPECT_EQ(layer->CountLnk(), 1);
}
} // namespace
