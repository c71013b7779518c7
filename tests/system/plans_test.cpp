// Things on a plan as a person handles them: a real window, real mouse and keys, dialogs and menus, looked at
// pixel by pixel after each gesture and read back from the PDF. Runs without a screen at several display
// scales, and on one.
#include "lib/platform.h"
#include "lib/xfail.h"
#include "support/folder.h"
#include "support/freshpaint.h"
#include "support/pdftext.h"
#include "support/plandoc.h"
#include "support/programtables.h"
#include "support/testapp.h"
#include "usr/edcapp.h"
#include "usr/edcutils.h"
#include "win/boxes.h"
#include "win/frame.h"
#include "win/testdialog.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <string>

namespace
{
using testdoor::DialogBox;
using testdoor::ModalBox;

enum Command { PRINT = 20013 };
enum Id { LOCATE_X = 100, LOCATE_Y = 101, LOCATE_ANGLE = 115, ALIGN_COUNT = 101 };

const char spriteMenu[] = "\xD6&ffnen\n&Plazieren...\n&Ausgleichen...\n&Beseitigen\tEntf\n";

class Plans : public testing::Test
{
protected:
    Plans() : frame("Planprobe", doc)
    {
        TestApplication();
        EdcUseResources();
        SetFailureHook(EdcFailureHook);
        SetAppDocument(&doc);
        TestApplication().SetMainWindow(&frame);
        frame.AssignMenu(1000);
        frame.Create();
        testdoor::ResizeClient(doc, {800, 500});
        doc.Start();
        testdoor::Settle();
        EdcForgetPlaces();
    }
    ~Plans() override
    {
        EXPECT_EQ(testdoor::UnexpectedBoxes(), 0);
        EXPECT_EQ(testdoor::PendingScripts(), 0);
        doc.modified = false;
        TestApplication().SetMainWindow(NULL);
        SetFailureHook(NULL);
        SetResTextSink(NULL);
    }

    TPoint At(double x, double y) { return doc.At(x, y); }
    void Choose(int command)
    {
        ASSERT_TRUE(frame.TryCommand(command)) << command;
        testdoor::Settle();
    }
    /// Presses at one place, lets go at the other, with some steps in between; something is to be seen then.
    void Drag(TPoint from, TPoint to, testdoor::Button button = testdoor::LEFT, unsigned keys = 0)
    {
        testdoor::Settle();
        testdoor::Press(doc, from, button);
        std::vector<TColor> before = testdoor::Pixels(doc);
        Hold(from + TPoint{1, 0}, button, keys); // a hand never jumps
        Hold({(2 * from.x + to.x) / 3, (2 * from.y + to.y) / 3 + 9}, button, keys);
        EXPECT_NE(testdoor::Pixels(doc), before);
        Hold({(from.x + to.x) / 2 - 7, (from.y + to.y) / 2}, button, keys);
        Hold(to, button, keys);
        testdoor::Release(doc, to, button, keys);
        testdoor::Settle();
    }
    void Hold(TPoint at, testdoor::Button button = testdoor::LEFT, unsigned keys = 0)
    {
        testdoor::Move(doc, at, keys, button == testdoor::LEFT, button == testdoor::RIGHT);
    }
    static void Fill(std::function<void(DialogBox &)> work, int answer = WIN_ID_OK)
    {
        testdoor::Script([=](ModalBox &box) {
            EXPECT_EQ(box.Kind(), "dialog");
            DialogBox dialog(box);
            work(dialog);
            box.Answer(answer);
        });
    }
    static void Pick(int item, std::string items)
    {
        testdoor::Script([=](ModalBox &box) {
            EXPECT_EQ(box.Kind(), "popup");
            EXPECT_EQ(box.Text(), items);
            box.Answer(item);
        });
    }
    TPlanRect *Put(double x, double y, double width = 4, double height = 2)
    {
        auto *spr = new TPlanRect(AgPOINT(x, y), width, height);
        doc.plan->rects.Add(spr);
        doc.Refresh(EDC_LAYOUT);
        testdoor::Settle();
        return spr;
    }
    TPlanRect &Focus() { return static_cast<TPlanRect &>(*doc.plan->rects.Focus()); }
    TPlanLayer &Rects() { return doc.plan->rects; }
    static void ExpectAt(const TPlanRect &rect, double x, double y, double tolerance = 1e-9)
    {
        EXPECT_NEAR(rect.Centre().x, x, tolerance);
        EXPECT_NEAR(rect.Centre().y, y, tolerance);
    }

    ProgramTables tables;
    TPlanDoc doc;
    TDecoratedFrame frame;
    FOLDER folder;
};

TEST_F(Plans, AreOpenedWithTheSelectorOnTheFirstLayer)
{
    EXPECT_EQ(doc.openedBlk, doc.plan);
    EXPECT_EQ(doc.plan->manager.Tool(), &doc.plan->selector);
    EXPECT_EQ(doc.plan->manager.Layer(), &doc.plan->rects);
    EXPECT_TRUE(LooksFresh(doc));
}

TEST_F(Plans, TakeRectanglesAndLinesThatAreDrawn)
{
    Choose(EDC_TlRECT);
    Drag(At(10, 5), At(16, 9));
    ASSERT_EQ(Rects().CountLnk(), 1);
    ExpectAt(Focus(), 13, 7);
    EXPECT_NEAR(std::fabs(Focus().Size().x), 6, 1e-9);
    EXPECT_NEAR(std::fabs(Focus().Size().y), 4, 1e-9);
    EXPECT_TRUE(LooksFresh(doc));
    Drag(At(30, 10), At(33, 12), testdoor::LEFT, WIN_KEY_SHIFT | WIN_KEY_CTRL); // a square about the press
    ASSERT_EQ(Rects().CountLnk(), 2);
    ExpectAt(Focus(), 30, 10);
    EXPECT_NEAR(std::fabs(Focus().Size().x), 6, 1e-9);
    EXPECT_NEAR(std::fabs(Focus().Size().y), 6, 1e-9);
    EXPECT_TRUE(LooksFresh(doc));
    Choose(PLAN_LINES);
    Choose(PLAN_LINETOOL);
    Drag(At(5, 20), At(25, 15));
    ASSERT_EQ(doc.plan->lines.CountLnk(), 1);
    const auto &line = static_cast<TPlanLine &>(*doc.plan->lines.Focus());
    EXPECT_NEAR(line.Length(), std::hypot(20, 5), 1e-9);
    EXPECT_TRUE(LooksFresh(doc));
    EXPECT_FALSE(frame.TryCommand(EDC_TlRECT)); // not on this layer
    Choose(PLAN_RECTS);
    EXPECT_TRUE(LooksFresh(doc));
}

TEST_F(Plans, KeepNothingOfADrawingThatIsTakenBack)
{
    Choose(EDC_TlRECT);
    testdoor::Settle();
    std::vector<TColor> before = testdoor::Pixels(doc);
    testdoor::Press(doc, At(10, 5));
    Hold(At(16, 9));
    EXPECT_NE(testdoor::Pixels(doc), before);
    Hold({-30, 40}); // out of the view
    EXPECT_EQ(testdoor::Pixels(doc), before);
    Hold(At(17, 9));
    EXPECT_NE(testdoor::Pixels(doc), before);
    testdoor::Press(doc, At(17, 9), testdoor::RIGHT);
    EXPECT_EQ(testdoor::Pixels(doc), before);
    testdoor::Release(doc, At(17, 9), testdoor::RIGHT);
    testdoor::Release(doc, At(17, 9));
    EXPECT_EQ(Rects().CountLnk(), 0);
    testdoor::Press(doc, At(10, 5));
    Hold(At(16, 9));
    testdoor::Key(doc, "Esc");
    testdoor::Settle();
    EXPECT_EQ(testdoor::Pixels(doc), before);
    testdoor::Release(doc, At(16, 9));
    EXPECT_EQ(Rects().CountLnk(), 0);
    EXPECT_EQ(doc.openedBlk, doc.plan);
    EXPECT_TRUE(LooksFresh(doc));
}

TEST_F(Plans, PlaceObjectsFromStockAndRowsOfThem)
{
    Choose(EDC_TlSTOCK);
    testdoor::Click(doc, At(8, 4));
    testdoor::Settle();
    ASSERT_EQ(Rects().CountLnk(), 1);
    ExpectAt(Focus(), 8, 4, 0.1); // half a pixel
    EXPECT_TRUE(LooksFresh(doc));
    Fill([](DialogBox &dialog) { dialog.Type(ALIGN_COUNT, "4"); });
    Drag(At(10, 10), At(40, 10));
    ASSERT_EQ(Rects().CountLnk(), 5);
    EXPECT_EQ(Rects().CountSel(), 4);
    double x = 10;
    for (TEdcSprite *spr = Rects().SelFirst(); spr; spr = spr->selNext, x += 10)
        ExpectAt(static_cast<TPlanRect &>(*spr), x, 10, 0.2);
    EXPECT_TRUE(LooksFresh(doc));
    Fill([](DialogBox &) {}, WIN_ID_CANCEL);
    Drag(At(10, 15), At(40, 18));
    EXPECT_EQ(Rects().CountLnk(), 5);
    EXPECT_TRUE(LooksFresh(doc));
}

TEST_F(Plans, SelectWithARubberBandAndWithTheKeyboard)
{
    Put(10, 6);
    Put(20, 6);
    Put(40, 15);
    Drag(At(5, 2), At(25, 9));
    EXPECT_EQ(Rects().CountSel(), 2);
    EXPECT_TRUE(LooksFresh(doc));
    testdoor::Key(doc, "Ctrl+A");
    testdoor::Settle();
    EXPECT_EQ(Rects().CountSel(), 3);
    EXPECT_TRUE(LooksFresh(doc));
    testdoor::Click(doc, At(50, 20));
    EXPECT_EQ(Rects().CountSel(), 0);
    EXPECT_TRUE(LooksFresh(doc));
    testdoor::Click(doc, At(40, 15));
    testdoor::Key(doc, "Del");
    testdoor::Settle();
    EXPECT_EQ(Rects().CountLnk(), 2);
    EXPECT_TRUE(LooksFresh(doc));
    testdoor::Key(doc, "Ctrl+A");
    testdoor::Key(doc, "Del");
    testdoor::Settle();
    EXPECT_EQ(Rects().CountLnk(), 0);
    EXPECT_TRUE(LooksFresh(doc));
}

TEST_F(Plans, AreDraggedCopiedTurnedAndResized)
{
    TPlanRect *rect = Put(10, 6);
    Drag(At(10, 6), At(15, 9));
    ExpectAt(*rect, 15, 9);
    EXPECT_TRUE(LooksFresh(doc));

    Drag(At(15, 9), At(25, 9), testdoor::LEFT, WIN_KEY_CTRL);
    ASSERT_EQ(Rects().CountLnk(), 2);
    ExpectAt(*rect, 15, 9);
    ExpectAt(static_cast<TPlanRect &>(*Rects().LnkLast()), 25, 9);
    EXPECT_EQ(Rects().SelFirst(), Rects().LnkLast());
    EXPECT_TRUE(LooksFresh(doc));

    Drag(At(16.5, 9), At(15, 13), testdoor::RIGHT); // from the east to the north
    EXPECT_NEAR(rect->RectAngle(), AgPI / 2, 1e-9);
    ExpectAt(*rect, 15, 9);
    EXPECT_TRUE(LooksFresh(doc));

    testdoor::Click(doc, At(25, 9));
    EXPECT_TRUE(LooksFresh(doc));
    Drag(At(27, 10), At(30, 12)); // a corner
    auto *copy = static_cast<TPlanRect *>(Rects().Focus());
    ASSERT_NE(copy, nullptr);
    EXPECT_NEAR(copy->Size().x, 7, 1e-9);
    EXPECT_NEAR(copy->Size().y, 4, 1e-9);
    ExpectAt(*copy, 26.5, 10);
    EXPECT_TRUE(LooksFresh(doc));
    EXPECT_TRUE(doc.modified);
}

TEST_F(Plans, AreGivenBackByEscInTheMiddleOfADrag)
{
    TPlanRect *rect = Put(10, 6);
    testdoor::Click(doc, At(10, 6));
    testdoor::Settle();
    std::vector<TColor> before = testdoor::Pixels(doc);
    testdoor::Press(doc, At(10, 6));
    Hold(At(14, 9));
    Hold(At(20, 12));
    EXPECT_NE(testdoor::Pixels(doc), before);
    testdoor::Key(doc, "Esc");
    testdoor::Settle();
    EXPECT_EQ(testdoor::Pixels(doc), before);
    Hold(At(25, 12));
    testdoor::Release(doc, At(25, 12));
    ExpectAt(*rect, 10, 6);
    EXPECT_EQ(doc.changes, 0);
    EXPECT_EQ(doc.openedBlk, doc.plan);
    EXPECT_TRUE(LooksFresh(doc));
}

TEST_F(Plans, PutThingsExactlyFromTheMenu)
{
    TPlanRect *rect = Put(10, 6);
    Pick(EDC_CmLOCATE, spriteMenu);
    Fill([](DialogBox &dialog) {
        EXPECT_EQ(dialog.Caption(), "Genaue Plazierung");
        dialog.Type(LOCATE_X, "20.25");
        dialog.Type(LOCATE_Y, "8.125");
        dialog.Type(LOCATE_ANGLE, "30");
    });
    testdoor::Click(doc, At(10, 6), testdoor::RIGHT);
    testdoor::Settle();
    ExpectAt(*rect, 20.25, 8.125);
    EXPECT_NEAR(rect->RectAngle(), AgPI / 6, 1e-12);
    EXPECT_TRUE(LooksFresh(doc));

    Pick(EDC_CmOPEN, spriteMenu);
    testdoor::Click(doc, At(20.25, 8.125), testdoor::RIGHT);
    testdoor::Settle();
    EXPECT_EQ(Rects().opened, 1);
    Pick(EDC_CmDELETE, spriteMenu);
    testdoor::Click(doc, At(20.25, 8.125), testdoor::RIGHT);
    testdoor::Settle();
    EXPECT_EQ(Rects().CountLnk(), 0);
    EXPECT_TRUE(LooksFresh(doc));
}

TEST_F(Plans, PutACornerExactlyFromItsOwnMenu)
{
    TPlanRect *rect = Put(10, 6);
    testdoor::Click(doc, At(10, 6));
    testdoor::Settle();
    Pick(EDC_CmLOCATE, "&Plazieren...\n");
    Fill([](DialogBox &dialog) {
        EXPECT_EQ(dialog.Text(LOCATE_X), "12");
        EXPECT_EQ(dialog.Text(LOCATE_Y), "7");
        dialog.Type(LOCATE_X, "14.5");
        dialog.Type(LOCATE_Y, "8.5");
    });
    testdoor::Click(doc, At(12, 7), testdoor::RIGHT);
    testdoor::Settle();
    EXPECT_NEAR(rect->Size().x, 6.5, 1e-9);
    EXPECT_NEAR(rect->Size().y, 3.5, 1e-9);
    ExpectAt(*rect, 11.25, 6.75);
    EXPECT_TRUE(LooksFresh(doc));
}

TEST_F(Plans, AlignASelectionFromTheMenuAlongADrawnLine)
{
    TPlanRect *a = Put(10, 6);
    TPlanRect *b = Put(20, 9);
    TPlanRect *c = Put(30, 4);
    testdoor::Key(doc, "Ctrl+A");
    testdoor::Settle();
    Pick(EDC_CmALIGN, spriteMenu);
    testdoor::Click(doc, At(20, 9), testdoor::RIGHT);
    testdoor::Settle();
    ASSERT_EQ(doc.plan->manager.Tool(), &doc.plan->aligner);
    EXPECT_TRUE(LooksFresh(doc)); // without handles
    Fill([](DialogBox &dialog) { EXPECT_EQ(dialog.Text(ALIGN_COUNT), "3"); });
    TPoint from = At(5, 15);
    double height = doc.plan->axes.ToModel(doc.ToDocument(from) - TPoint{doc.plan->rect.x, doc.plan->rect.y}).y;
    Drag(from, At(45, 16), testdoor::LEFT, WIN_KEY_SHIFT);
    ExpectAt(*a, 10, height, 1e-4); // the dialog's digits
    ExpectAt(*b, 20, height, 1e-4);
    ExpectAt(*c, 30, height, 1e-4);
    EXPECT_EQ(doc.plan->manager.Tool(), &doc.plan->selector);
    EXPECT_TRUE(LooksFresh(doc));
    Drag(At(20, 15), At(20, 20)); // all three, which are still selected
    EXPECT_GT(a->Centre().y, 18);
    EXPECT_NEAR(a->Centre().y, c->Centre().y, 0.5);
    EXPECT_TRUE(LooksFresh(doc));
}

TEST_F(Plans, LeaveTheAlignerByARightClick)
{
    TPlanRect *rect = Put(10, 6);
    testdoor::Click(doc, At(10, 6));
    Choose(EDC_TlALIGN);
    testdoor::Click(doc, At(40, 20), testdoor::RIGHT);
    testdoor::Settle();
    EXPECT_EQ(doc.plan->manager.Tool(), &doc.plan->selector);
    EXPECT_EQ(Rects().Focus(), rect);
    EXPECT_TRUE(LooksFresh(doc));
}

TEST_F(Plans, KeepTheirPicturesAtAnyZoomAndScroll)
{
    TPlanRect *rect = Put(10, 12);
    for (int notches : {6, 5, -4}) {
        SCOPED_TRACE(notches);
        testdoor::Click(doc, At(rect->Centre().x, rect->Centre().y));
        testdoor::Wheel(doc, At(rect->Centre().x, rect->Centre().y), notches, WIN_KEY_CTRL);
        EXPECT_TRUE(LooksFresh(doc));
        AgPOINT former = rect->Centre();
        Drag(At(former.x, former.y), At(former.x + 2, former.y - 1));
        ExpectAt(*rect, former.x + 2, former.y - 1, 1e-6);
        EXPECT_TRUE(LooksFresh(doc));
        Drag(At(rect->Centre().x + 1, rect->Centre().y), At(rect->Centre().x, rect->Centre().y + 1.5),
             testdoor::RIGHT, WIN_KEY_SHIFT);
        EXPECT_TRUE(LooksFresh(doc));
    }
}

TEST_F(Plans, ScrollUnderARunningDragWithoutTraces)
{
    TPlanRect *rect = Put(10, 12);
    testdoor::Click(doc, At(10, 12));
    testdoor::Wheel(doc, At(10, 12), 8, WIN_KEY_CTRL);
    ASSERT_GT(doc.Scroller()->YRange(), 40);
    testdoor::Key(doc, "Home");
    testdoor::Key(doc, "PgDown");
    testdoor::Settle();
    TRect client = doc.GetClientRect();
    TPoint grip = At(rect->Centre().x, rect->Centre().y);
    if (!client.Contains(grip)) { // above or below of what the page left
        doc.Scroller()->ScrollBy(0, grip.y - client.Height() / 2);
        testdoor::Settle();
        grip = At(rect->Centre().x, rect->Centre().y);
    }
    ASSERT_TRUE(client.Contains(grip));
    for (testdoor::Button button : {testdoor::LEFT, testdoor::RIGHT}) {
        testdoor::Press(doc, grip, button);
        Hold(grip + TPoint{15, 11}, button);
        testdoor::Wheel(doc, grip + TPoint{15, 11}, 1);
        Hold(grip + TPoint{25, 10}, button);
        testdoor::Key(doc, "Down");
        testdoor::Key(doc, "Down");
        Hold(grip + TPoint{30, 12}, button);
        testdoor::Wheel(doc, grip + TPoint{30, 12}, -1);
        testdoor::Key(doc, "Esc");
        EXPECT_TRUE(LooksFresh(doc));
        testdoor::Release(doc, grip, button);
        EXPECT_TRUE(LooksFresh(doc));
        ExpectAt(*rect, 10, 12);
        EXPECT_NEAR(rect->RectAngle(), 0, 1e-12);
        grip = At(10, 12);
        ASSERT_TRUE(client.Contains(grip));
    }
    EXPECT_EQ(doc.changes, 0);
}

TEST_F(Plans, GrowWhereThingsAreDroppedBeyondThem)
{
    TPlanRect *rect = Put(57, 12);
    Drag(At(57, 12), At(59.5, 12));
    ExpectAt(*rect, 59.5, 12);
    EXPECT_GE(doc.plan->axes.xMax, 61.5);
    EXPECT_TRUE(LooksFresh(doc));
}

TEST_F(Plans, ComeBackAsTheyWereWhenTheyAreClosedAndOpened)
{
    Put(10, 6);
    testdoor::Click(doc, At(10, 6));
    testdoor::Key(doc, "Esc");
    testdoor::Settle();
    EXPECT_EQ(doc.openedBlk, nullptr);
    EXPECT_TRUE(LooksFresh(doc));
    TRect place = doc.ToWindow(doc.plan->rect.Rect());
    testdoor::DoubleClick(doc, {(place.left + place.right) / 2, (place.top + place.bottom) / 2});
    testdoor::Settle();
    EXPECT_EQ(doc.openedBlk, doc.plan);
    EXPECT_EQ(Rects().CountLnk(), 1);
    EXPECT_EQ(Rects().CountSel(), 0);
    EXPECT_EQ(doc.plan->manager.Tool(), &doc.plan->selector);
    EXPECT_TRUE(LooksFresh(doc));
}

/// Where the two differ.
TRect Difference(const PdfRaster &a, const PdfRaster &b)
{
    TRect box = {a.width, a.height, 0, 0};
    for (int y = 0; y < a.height; ++y)
        for (int x = 0; x < a.width; ++x)
            if (a.At(x, y) != b.At(x, y))
                box = {std::min(box.left, x), std::min(box.top, y), std::max(box.right, x + 1),
                       std::max(box.bottom, y + 1)};
    return box;
}

TEST_F(Plans, PrintTheirThingsAsIfNothingWereSelected)
{
    auto print = [&](const char *name) {
        testdoor::Script([&](ModalBox &box) {
            EXPECT_EQ(box.Kind(), "print");
            box.FileName(folder.Path(name));
            box.Answer(WIN_ID_OK);
        });
        testdoor::ChooseMenu(frame, PRINT);
        testdoor::Settle();
        return PdfPixels(folder.Path(name), 1, 144);
    };
    PdfRaster empty = print("Leer.pdf");
    Put(30, 12, 40, 16);
    auto *line = new TPlanLine(AgPOINT(10, 1), AgPOINT(50, 3));
    doc.plan->lines.Add(line);
    doc.Refresh(EDC_LAYOUT);
    testdoor::Click(doc, At(12, 18));
    testdoor::Settle();
    ASSERT_EQ(Rects().CountSel(), 1);
    PdfRaster full = print("Voll.pdf");
    ASSERT_EQ(empty.width, full.width);
    ASSERT_EQ(empty.height, full.height);
    TRect box = Difference(empty, full);
    ASSERT_GT(box.Width(), 300);
    EXPECT_NEAR(static_cast<double>(box.Width()) / box.Height(), 40.0 / 19, 0.05);
    auto shade = [&](double x, double y) { // parts of what was printed, from the left upper corner
        int least = 255;
        for (int dy = -2; dy <= 2; ++dy)
            least = std::min(least, full.At(box.left + static_cast<int>(std::lround(x * box.Width())),
                                            box.top + static_cast<int>(std::lround(y * box.Height())) + dy));
        return least;
    };
    EXPECT_LT(shade(0.5, 18.0 / 19), 100);  // the line's middle
    EXPECT_LT(shade(0.25, 18.5 / 19), 100); // and a quarter of it
    EXPECT_GT(shade(0.5, 8.0 / 19), 200);   // the rectangle is empty: not black, as what is selected
    EXPECT_LT(shade(0.5, 0), 100);          // but has an edge
    EXPECT_TRUE(LooksFresh(doc));
}
} // namespace
