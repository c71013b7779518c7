// What the cursor and the right field of the status bar tell while the pointer is on a plan.
#include "dragcase.h"
#include "win/gadgets.h"

namespace
{
using PlanCursor = DragCase;

TEST_F(PlanCursor, TheCursorTellsOfACopyWhileItIsDragged)
{
    const TCursor selecting = {TCursor::RESOURCE, 21690};
    const TCursor copying = {TCursor::RESOURCE, 21691};
    auto cursor = [this] {
        TCursor now = doc.SetCursor(TCursor());
        doc.SetCursor(now);
        return now;
    };
    Fill("ab", 'a');
    EXPECT_EQ(cursor(), selecting);
    Send("L+A cMA");
    EXPECT_EQ(cursor(), selecting) << "nothing is dragged yet";
    Send("cM130,190");
    EXPECT_EQ(cursor(), copying);
    EXPECT_TRUE(TEdcDrawSprite::IsCopying());
    Send("M131,190");
    EXPECT_EQ(cursor(), selecting);
    Send("cM132,190");
    EXPECT_EQ(cursor(), copying);
    Send("cL-132,190");
    EXPECT_EQ(cursor(), selecting) << "behind the drop";
    Fill("a", 'a');
    Send("L+R cM150,180");
    EXPECT_EQ(cursor(), selecting) << "a handle copies nothing";
    Send("cL-150,180 R+A cM140,180");
    EXPECT_EQ(cursor(), selecting) << "nor does a turn";
    Send("cR-140,180");
    Plan().manager.Suspend(false);
    EXPECT_EQ(cursor(), TCursor());
    Plan().manager.Resume(false);
    EXPECT_EQ(cursor(), selecting);
}

TEST_F(PlanCursor, ASelectorWithoutACopyCursorKeepsItsOwn)
{
    Fill("a", 'a');
    TEdcDrawSelector plainSelector(99, 21690, 0);
    plainSelector.SetLayer(&Rects());
    plainSelector.Activate(true);
    for (const GestureEvent &event : ParseGesture("L+A cM130,190", DragPlace))
        Send(plainSelector, event);
    EXPECT_TRUE(TEdcDrawSprite::IsCopying());
    EXPECT_EQ(doc.SetCursor(TCursor()), (TCursor{TCursor::RESOURCE, 21690}));
    for (const GestureEvent &event : ParseGesture("O+ L--20,10", DragPlace))
        Send(plainSelector, event);
    plainSelector.Activate(false);
}

/// The right field of the status bar.
class PlanStatus : public DragCase
{
protected:
    PlanStatus() { TEdcApplication::statusBar = &bar; }
    ~PlanStatus() override { TEdcApplication::statusBar = NULL; }

    TStatusBar bar;
};

TEST_F(PlanStatus, TheStatusBarTellsWhereThePointerIsAndHowFarADragHasCome)
{
    const struct {
        const char *events, *text;
    } table[] = {
        {"M120,200", "x = 10.00 m   y = 10.00 m"},
        {"M123,199", "x = 10.30 m   y = 10.10 m"},
        {"M20,300", "x = 0.00 m   y = 0.00 m"},
        {"M10,320", "x = -1.00 m   y = -2.00 m"},
        {"L+A", "x = -1.00 m   y = -2.00 m"}, // from the move before
        {"M133,188", "x = 11.30 m   y = 11.20 m   Verschiebung 1.50 m; 1.00 m"},
        {"sM133,189", "x = 11.30 m   y = 11.10 m   Verschiebung 1.50 m; 0.00 m"},
        {"cM133,188", "x = 11.30 m   y = 11.20 m   Verschiebung 1.50 m; 1.00 m"},
        {"L-133,188", "x = 11.30 m   y = 11.20 m"},
        {"M140,180", "x = 12.00 m   y = 12.00 m"},
        {"R+A M140,190 M135,170", "x = 11.50 m   y = 13.00 m   Drehung 90.0\xB0"},
        {"M150,205", "x = 13.00 m   y = 9.50 m   Drehung -45.0\xB0"},
        {"O+", "x = -4.00 m   y = 28.50 m   Drehung -45.0\xB0"},
        {"R--20,15", "x = -4.00 m   y = 28.50 m"},
        {"L+155,180 M165,160", "x = 14.50 m   y = 14.00 m   Verschiebung 1.00 m; 2.00 m"}, // a handle
        {"R+165,160", "x = 14.50 m   y = 14.00 m"},
    };
    Fill("a", 'a');
    for (const auto &row : table) {
        Send(row.events);
        EXPECT_EQ(bar.RightText(), row.text) << row.events;
    }
    Tool().Activate(true);
}

TEST_F(PlanStatus, NothingIsToldOnceTheToolOrTheBlockIsLeft)
{
    Fill("a", 'a');
    Send("M120,200");
    EXPECT_NE(bar.RightText(), "");
    Plan().manager.SetTool(&Plan().rectCreator);
    EXPECT_EQ(bar.RightText(), "");
    Tool().MouseMove(dc, 0, {123, 199});
    EXPECT_EQ(bar.RightText(), "x = 10.50 m   y = 10.00 m") << "a creator works on the grid";
    Plan().manager.SetTool(&Plan().aligner);
    Tool().MouseMove(dc, 0, {123, 199});
    EXPECT_EQ(bar.RightText(), "x = 10.30 m   y = 10.10 m");
    Plan().Close();
    EXPECT_EQ(bar.RightText(), "");
    Plan().Open();
    EXPECT_EQ(bar.RightText(), "");
    Plan().manager.SetLayer(&Lines());
    Send("M120,200");
    EXPECT_EQ(bar.RightText(), "x = 10.00 m   y = 10.00 m");
    Plan().manager.SetLayer(NULL);
    EXPECT_EQ(bar.RightText(), "");
}

TEST_F(PlanCursor, WithoutAStatusBarNobodyIsTold)
{
    Fill("a", 'a');
    Send("M120,200 L+A M130,190 L-130,190");
    EXPECT_EQ(Changes(), "a 11,11 4x2 0");
}
} // namespace
