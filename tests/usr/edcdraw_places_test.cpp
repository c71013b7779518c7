// The dialogs for exact places, filled in by hand, and what comes of their answers.
#include "planwindow.h"
#include "support/child.h"
#include "usr/edcdraw_places.h"

namespace
{
using testdoor::DialogBox;
using testdoor::ModalBox;

// Numbers of the controls: of the dialog for a place, and of that for a line.
enum Id {
    X = 100,
    Y = 101,
    SHOW_POINT = 102,
    ANCHORS = 103,
    FIRST_ANCHOR = 104,
    CENTRE = 108,
    ROTATION = 113,
    ANGLE_LABEL = 114,
    ANGLE = 115,
    SHOW_ANGLE = 116,
    SYNC = 117,
    COPY = 118,
    COUNT_LABEL = 100,
    COUNT = 101,
    X1 = 102,
    Y1 = 103,
    X2 = 104,
    Y2 = 105,
    SHOW_LINE = 106,
    SIDES = 107,
    SIDE_PICTURE = 108,
    BELOW = 109,
    MIDDLE = 110,
    ABOVE = 111,
    STRETCH = 112,
    STRETCH_PICTURE = 114,
    DISTANCES = 115,
    GAPS = 116,
    SELORDER = 117,
    USE_VALUE = 118,
    VALUE_LABEL = 119,
    VALUE = 120,
    ROTATE = 121,
    ROTATE_PICTURE = 123,
    TO_LINE = 124,
    TO_XAXIS = 125,
    ALIGN_ANGLE_LABEL = 126,
    ALIGN_ANGLE = 127
};

class Places : public PlanWindow
{
protected:
    TPlanRect *Put(double x, double y, double width, double height, double angle = 0)
    {
        auto *spr = new TPlanRect(AgPOINT(x, y), width, height, angle);
        Layer().Add(spr);
        Layer().Select(spr, true, NULL);
        Layer().SetFocus(spr, NULL);
        doc.Refresh(EDC_LAYOUT);
        testdoor::Settle();
        return spr;
    }
    /// The locate dialog for the focus, and what its answer stands for.
    bool Locate(std::function<void(DialogBox &)> work, TEdcDrawHandle *handle = NULL, int answer = WIN_ID_OK)
    {
        Fill(work, answer);
        TEdcDrawDrag drag;
        bool answered = Layer().Locate(drag, handle);
        if (answered)
            Layer().ApplyDrag(drag);
        return answered;
    }
    TPlanLayer &Layer() { return doc.plan->rects; }
};

void Enter(DialogBox &dialog, const char *x, const char *y)
{
    dialog.Type(X, x);
    dialog.Type(Y, y);
}

TEST_F(Places, OpenWithWhereTheAnchorIsNow)
{
    Put(10.5, 6.25, 4, 2, AgPI / 6);
    std::string x, y, angle;
    Locate(
        [&](DialogBox &dialog) {
            EXPECT_EQ(dialog.Caption(), "Genaue Plazierung");
            EXPECT_EQ(dialog.Focus(), X);
            EXPECT_EQ(dialog.SelectedText(X), "10.5");
            x = dialog.Text(X);
            y = dialog.Text(Y);
            angle = dialog.Text(ANGLE);
            EXPECT_EQ(dialog.Check(CENTRE), WIN_CHECKED);
            EXPECT_FALSE(dialog.IsEnabled(SYNC)); // alone it turns with nobody
            EXPECT_TRUE(dialog.IsEnabled(COPY));
        },
        NULL, WIN_ID_CANCEL);
    EXPECT_EQ(x, "10.5");
    EXPECT_EQ(y, "6.25");
    EXPECT_EQ(angle, "30");
    EXPECT_EQ(doc.changes, 0);
}

const AgPOINT &PointOf(const TEdcDrawDesc &desc, int anchor)
{
    const AgPOINT *points[] = {&desc.topLeft,    &desc.topMid,    &desc.topRight,
                               &desc.leftMid,    &desc.centre,    &desc.rightMid,
                               &desc.bottomLeft, &desc.bottomMid, &desc.bottomRight};
    return *points[anchor];
}

TEdcDrawDesc Described(TEdcDrawSprite &spr)
{
    TEdcDrawDesc desc;
    spr.Recompute();
    spr.Describe(desc, 0);
    Complete(desc);
    return desc;
}

TEST_F(Places, BringEachAnchorOfTheTurnedSpriteToThePoint)
{
    for (int i = 0; i < 9; ++i) {
        SCOPED_TRACE(i);
        TPlanRect *spr = Put(10, 6, 4, 2, 0.1);
        ASSERT_TRUE(Locate([i](DialogBox &dialog) {
            dialog.Click(FIRST_ANCHOR + i);
            Enter(dialog, "20.5", "-3");
            dialog.Type(ANGLE, "50");
        }));
        EXPECT_NEAR(spr->RectAngle(), 50 * AgPI / 180, 1e-12);
        AgPOINT landed = PointOf(Described(*spr), i); // of the upright bounding box, as it lies now
        EXPECT_NEAR(landed.x, 20.5, 1e-9);
        EXPECT_NEAR(landed.y, -3, 1e-9);
        EXPECT_TRUE(doc.IsObsolete(EDC_LAYOUT));
        Layer().DeleteAll(true);
        EdcForgetPlaces();
    }
}

TEST_F(Places, ShowWhereTheChosenAnchorIsOnDemand)
{
    Put(10, 6, 4, 2);
    Locate(
        [](DialogBox &dialog) {
            dialog.Click(FIRST_ANCHOR); // top left
            EXPECT_EQ(dialog.Text(X), "10");
            Enter(dialog, "1", "2");
            dialog.Type(ANGLE, "77");
            dialog.Click(SHOW_POINT);
            EXPECT_EQ(dialog.Text(X), "8");
            EXPECT_EQ(dialog.Text(Y), "7");
            EXPECT_EQ(dialog.Text(ANGLE), "77");
            dialog.Click(SHOW_ANGLE);
            EXPECT_EQ(dialog.Text(ANGLE), "0");
        },
        NULL, WIN_ID_CANCEL);
}

TEST_F(Places, RememberTheAnchorAndTheChecksButShowEachSpriteWhereItIs)
{
    Put(10, 6, 4, 2);
    ASSERT_TRUE(Locate([](DialogBox &dialog) {
        dialog.Click(FIRST_ANCHOR + 8); // bottom right
        dialog.Click(COPY);
    }));
    EXPECT_EQ(Layer().CountLnk(), 2);
    Layer().SelectAll(false, NULL);
    Put(30, 10, 2, 2);
    Locate(
        [](DialogBox &dialog) {
            EXPECT_EQ(dialog.Check(FIRST_ANCHOR + 8), WIN_CHECKED);
            EXPECT_EQ(dialog.Check(COPY), WIN_CHECKED);
            EXPECT_EQ(dialog.Text(X), "31");
            EXPECT_EQ(dialog.Text(Y), "9");
        },
        NULL, WIN_ID_CANCEL);
    Layer().Reset();
    Put(30, 10, 2, 2);
    Locate(
        [](DialogBox &dialog) {
            EXPECT_EQ(dialog.Check(CENTRE), WIN_CHECKED);
            EXPECT_EQ(dialog.Check(COPY), WIN_UNCHECKED);
        },
        NULL, WIN_ID_CANCEL);
}

TEST_F(Places, TurnASelectionByTheSameAngleOrToTheSameAngle)
{
    for (bool together : {false, true}) {
        SCOPED_TRACE(together);
        TPlanRect *a = Put(10, 6, 4, 2, 0.5);
        TPlanRect *b = Put(20, 6, 4, 2, 0.25); // the focus
        ASSERT_TRUE(Locate([together](DialogBox &dialog) {
            EXPECT_TRUE(dialog.IsEnabled(SYNC));
            dialog.Type(ANGLE, "45");
            if (together)
                dialog.Click(SYNC);
        }));
        EXPECT_NEAR(b->RectAngle(), AgPI / 4, 1e-12);
        EXPECT_NEAR(a->RectAngle(), together ? AgPI / 4 : 0.5 + AgPI / 4 - 0.25, 1e-12);
        EXPECT_NEAR(a->Centre().x, 10, 1e-9); // the focus stayed, so nobody moved
        Layer().DeleteAll(true);
        EdcForgetPlaces();
    }
}

TEST_F(Places, MoveAHandleAndLeaveTheOppositeCorner)
{
    TPlanRect *spr = Put(10, 6, 4, 2);
    TEdcDrawHandle *handle = spr->HandleAt(doc.plan->At(12, 7)); // top right
    ASSERT_NE(handle, nullptr);
    ASSERT_TRUE(Locate(
        [](DialogBox &dialog) {
            EXPECT_FALSE(dialog.IsShown(ANCHORS));
            EXPECT_FALSE(dialog.IsShown(CENTRE));
            for (int id : {ANGLE, SHOW_ANGLE, ANGLE_LABEL, ROTATION, SYNC, COPY})
                EXPECT_FALSE(dialog.IsEnabled(id)) << id;
            EXPECT_EQ(dialog.Text(X), "12");
            EXPECT_EQ(dialog.Text(Y), "7");
            Enter(dialog, "15", "9");
        },
        handle));
    EXPECT_EQ(Layer().CountLnk(), 1);
    EXPECT_NEAR(spr->Size().x, 7, 1e-9);
    EXPECT_NEAR(spr->Size().y, 4, 1e-9);
    spr->Recompute();
    EXPECT_NEAR(spr->Corner(0).x, 8, 1e-9);
    EXPECT_NEAR(spr->Corner(0).y, 5, 1e-9);
}

TEST_F(Places, GiveAPointNoAnchorButItsCentre)
{
    Put(10, 6, 0, 0);
    Locate(
        [](DialogBox &dialog) {
            EXPECT_EQ(dialog.Check(CENTRE), WIN_CHECKED);
            for (int i = 0; i < 9; ++i)
                EXPECT_FALSE(dialog.IsEnabled(FIRST_ANCHOR + i));
        },
        NULL, WIN_ID_CANCEL);
}

TEST_F(Places, RefuseWhatIsNoNumber)
{
    TPlanRect *spr = Put(10, 6, 4, 2);
    testdoor::Script([](ModalBox &box) {
        DialogBox dialog(box);
        dialog.Type(X, "zehn");
        testdoor::Script([](ModalBox &message) {
            EXPECT_EQ(message.Kind(), "message");
            message.Answer(WIN_ID_OK);
        });
        box.Answer(WIN_ID_OK);
        EXPECT_EQ(dialog.Focus(), X);
        EXPECT_EQ(dialog.SelectedText(X), "zehn");
        dialog.Type(X, "11");
        box.Answer(WIN_ID_OK);
    });
    TEdcDrawDrag drag;
    ASSERT_TRUE(Layer().Locate(drag, NULL));
    Layer().ApplyDrag(drag);
    EXPECT_NEAR(spr->Centre().x, 11, 1e-9);
}

TEST_F(Places, AreNowhereWithoutAFocus)
{
    TEdcDrawDrag drag;
    EXPECT_FALSE(Layer().Locate(drag, NULL));
}

TEST_F(Places, ComeWithTheCommandsOfTheLayer)
{
    TPlanRect *spr = Put(10, 6, 4, 2);
    Fill([](DialogBox &dialog) { Enter(dialog, "12", "7"); });
    ASSERT_TRUE(frame.TryCommand(EDC_CmLOCATE));
    testdoor::Settle();
    EXPECT_NEAR(spr->Centre().x, 12, 1e-9);
    EXPECT_EQ(doc.changes, 1);
    Layer().SelectAll(false, NULL);
    EXPECT_FALSE(frame.TryCommand(EDC_CmLOCATE));
    EXPECT_FALSE(frame.TryCommand(EDC_CmALIGN));
}

TEST_F(Places, HaveTheirTextsOnTheControls)
{
    const std::pair<int, const char *> texts[] = {{SHOW_POINT, "&Zeige jetzigen"},
                                                  {ROTATION, "Drehung"},
                                                  {ANGLE_LABEL, "&Winkel"},
                                                  {SHOW_ANGLE, "Z&eige jetzigen"},
                                                  {SYNC, "&Auswahl syn-\nchronisieren"},
                                                  {COPY, "&Kopie plazieren"}};
    Put(10, 6, 4, 2);
    Locate(
        [&](DialogBox &dialog) {
            for (const auto &[id, text] : texts)
                EXPECT_EQ(dialog.Text(id), text);
        },
        NULL, WIN_ID_CANCEL);
}

TEST_F(Places, TakeNoHandleThatDoesNotSnap)
{
    TPlanRect *spr = Put(10, 6, 4, 2);
    TEdcDrawHandle handle = *spr->HandleAt(doc.plan->At(12, 7));
    handle.flags = TEdcDrawHandle::DRAWN;
    ASSERT_TRUE(Locate(
        [](DialogBox &dialog) {
            EXPECT_TRUE(dialog.IsShown(ANCHORS));
            EXPECT_TRUE(dialog.IsEnabled(ANGLE));
            EXPECT_EQ(dialog.Text(X), "10");
            Enter(dialog, "15", "9");
        },
        &handle));
    EXPECT_EQ(spr->Centre(), AgPOINT(15, 9));
    EXPECT_EQ(spr->Size(), AgVECTOR(4, 2));
}

TEST_F(Places, NeverCopyByAHandle)
{
    TPlanRect *spr = Put(10, 6, 4, 2);
    Put(30, 6, 4, 2);
    ASSERT_TRUE(Locate([](DialogBox &dialog) {
        dialog.Click(COPY);
        dialog.Click(SYNC);
    }));
    ASSERT_EQ(Layer().CountLnk(), 4);
    Layer().SelectAll(false, NULL);
    Layer().Select(spr, true, NULL);
    Layer().SetFocus(spr, NULL);
    doc.plan->manager.Touch();
    doc.Refresh(EDC_LAYOUT);
    testdoor::Settle();
    ASSERT_TRUE(Locate(
        [](DialogBox &dialog) {
            EXPECT_EQ(dialog.Check(COPY), WIN_UNCHECKED);
            EXPECT_EQ(dialog.Check(SYNC), WIN_UNCHECKED);
            Enter(dialog, "14", "8");
        },
        spr->HandleAt(doc.plan->At(12, 7))));
    EXPECT_EQ(Layer().CountLnk(), 4);
    EXPECT_EQ(spr->Centre(), AgPOINT(11, 6.5));
    EXPECT_EQ(spr->Size(), AgVECTOR(6, 3));
}

TEST_F(Places, CopyASelectionAndTurnTheCopiesTogether)
{
    TPlanRect *a = Put(10, 6, 4, 2, 0.5);
    TPlanRect *b = Put(20, 6, 4, 2, 0.25);
    ASSERT_TRUE(Locate([](DialogBox &dialog) {
        Enter(dialog, "21", "8");
        dialog.Type(ANGLE, "270"); // a quarter back
        dialog.Click(SYNC);
        dialog.Click(COPY);
    }));
    EXPECT_EQ(a->RectAngle(), 0.5);
    EXPECT_EQ(b->RectAngle(), 0.25);
    ASSERT_EQ(Layer().CountLnk(), 4);
    EXPECT_EQ(Layer().CountSel(), 2);
    const double middles[][2] = {{21, 8}, {11, 8}}; // the copy of the focus first
    const TEdcSprite *spr = b->lnkNext;
    for (const auto &middle : middles) {
        const auto &copy = static_cast<const TPlanRect &>(*spr);
        EXPECT_NEAR(copy.Centre().x, middle[0], 1e-9);
        EXPECT_NEAR(copy.Centre().y, middle[1], 1e-9);
        EXPECT_NEAR(copy.RectAngle(), -AgPI / 2, 1e-12);
        EXPECT_TRUE(Layer().IsSelected(spr));
        spr = spr->lnkNext;
    }
}

TEST_F(Places, ShowNumbersWithoutTheNoiseOfSumsAndAnglesWithinOneTurn)
{
    Put(0.1 + 0.2, 1.0 / 3, 4, 2, 3 * AgPI / 2);
    Locate(
        [](DialogBox &dialog) {
            EXPECT_EQ(dialog.Text(X), "0.3");
            EXPECT_EQ(dialog.Text(Y), "0.333333");
            EXPECT_EQ(dialog.Text(ANGLE), "-90");
        },
        NULL, WIN_ID_CANCEL);
}

TEST_F(Places, ComeFromTheMenuOfASpriteOrOfOneOfItsHandles)
{
    Put(10, 6, 4, 2);
    const TPoint middle = doc.plan->At(10, 6);
    const TPoint corner = doc.plan->At(12, 7);
    const char *const sprite = "\xD6&ffnen\n&Plazieren...\n&Ausgleichen...\n&Beseitigen\tEntf\n";
    const char *const handle = "&Plazieren...\n";
    const struct {
        TPoint at;
        unsigned keys;
        const char *items;
        int shown; // bold
    } table[] = {{middle, 0, sprite, EDC_CmOPEN},
                 {corner, 0, handle, 0},
                 {corner, WIN_KEY_SHIFT, sprite, EDC_CmOPEN},
                 {corner, WIN_KEY_CTRL, handle, 0},
                 {middle, 0, sprite, EDC_CmOPEN}};
    for (const auto &row : table) {
        testdoor::Script([&row](ModalBox &box) {
            EXPECT_EQ(box.Kind(), "popup");
            EXPECT_EQ(box.Text(), row.items);
            EXPECT_EQ(box.Default(), row.shown);
            box.Press("Esc");
        });
        Layer().MenuAt(row.keys, row.at);
        EXPECT_EQ(testdoor::PendingScripts(), 0);
    }
    Layer().SetFocus(NULL, NULL);
    Layer().MenuAt(0, middle); // none then
}

TEST_F(Places, FollowTheHandleThatTheMenuWasAbout)
{
    Put(10, 6, 4, 2);
    testdoor::Script([](ModalBox &box) {
        EXPECT_EQ(box.Text(), "&Plazieren...\n");
        box.Press("Esc");
    });
    Layer().MenuAt(0, doc.plan->At(12, 7));
    Fill([](DialogBox &dialog) { EXPECT_EQ(dialog.Text(X), "12"); }, WIN_ID_CANCEL);
    Layer().Command(EDC_CmLOCATE);
    Layer().OpenAt(0, doc.plan->At(12, 7)); // a double click is about the sprite
    EXPECT_EQ(Layer().opened, 1);
    Fill([](DialogBox &dialog) { EXPECT_EQ(dialog.Text(X), "10"); }, WIN_ID_CANCEL);
    Layer().Command(EDC_CmLOCATE);
}

TEST(Checks, MustBeOneOrTheOther)
{
    EXPECT_TRUE(EdcIsChecked(TEdcInt(1)));
    EXPECT_FALSE(EdcIsChecked(TEdcInt(0)));
    EXPECT_TRUE(
        AbortsOnAssertion("chk.id == EDC_VVAL", "usr/edcdraw_locate.cpp", [] { EdcIsChecked(TEdcInt()); }));
}

class Lines : public Places
{
protected:
    bool Ask(TEdcDrawAlign &spec, std::function<void(DialogBox &)> work, int *count = NULL,
             int answer = WIN_ID_OK)
    {
        Fill(work, answer);
        return Layer().AlignQuery(spec, AgPOINT(1, 2), AgPOINT(0.1 + 0.2, 4), count);
    }
};

TEST_F(Lines, AskForASelectionWithTheDrawnLine)
{
    Put(10, 6, 4, 2);
    Put(20, 6, 4, 2);
    TEdcDrawAlign spec;
    ASSERT_TRUE(Ask(spec, [](DialogBox &dialog) {
        EXPECT_EQ(dialog.Caption(), "Genauer Ausgleich");
        EXPECT_EQ(dialog.Text(COUNT), "2");
        EXPECT_FALSE(dialog.IsEnabled(COUNT));
        EXPECT_EQ(dialog.Text(X2), "0.3"); // without the noise of the sum
        EXPECT_EQ(dialog.Check(MIDDLE), WIN_CHECKED);
        EXPECT_EQ(dialog.Check(STRETCH), WIN_UNCHECKED);
        for (int id :
             {DISTANCES, GAPS, SELORDER, USE_VALUE, VALUE_LABEL, VALUE, TO_LINE, TO_XAXIS, ALIGN_ANGLE})
            EXPECT_FALSE(dialog.IsEnabled(id)) << id;
        dialog.Type(X1, "9");
        dialog.Click(SHOW_LINE);
        EXPECT_EQ(dialog.Text(X1), "1");
    }));
    EXPECT_EQ(spec.mode, uint32_t{TEdcDrawAlign::MIDDLE});
    EXPECT_EQ(spec.org, AgPOINT(1, 2));
    EXPECT_EQ(spec.end, AgPOINT(0.3, 4));
    EXPECT_EQ(spec.angle, 0);
}

TEST_F(Lines, EnableWhatBelongsTogether)
{
    Put(10, 6, 4, 2);
    TEdcDrawAlign spec;
    ASSERT_TRUE(Ask(spec, [](DialogBox &dialog) {
        dialog.Click(STRETCH);
        for (int id : {DISTANCES, GAPS, SELORDER, USE_VALUE})
            EXPECT_TRUE(dialog.IsEnabled(id)) << id;
        EXPECT_FALSE(dialog.IsEnabled(VALUE));
        EXPECT_EQ(dialog.Text(VALUE_LABEL), "&Abstand");
        dialog.Click(GAPS);
        EXPECT_EQ(dialog.Text(VALUE_LABEL), "&L\xFC"
                                            "cke");
        EXPECT_EQ(dialog.Text(USE_VALUE), "Eingeg. L\xFC&cke anwenden");
        dialog.Click(USE_VALUE);
        EXPECT_EQ(dialog.Focus(), VALUE);
        dialog.Type(VALUE, "1.5");
        dialog.Click(SELORDER);
        dialog.Click(ABOVE);
        dialog.Click(ROTATE);
        dialog.Click(TO_XAXIS);
        dialog.Type(ALIGN_ANGLE, "-90");
    }));
    EXPECT_EQ(spec.mode, uint32_t{TEdcDrawAlign::ABOVE | TEdcDrawAlign::STRETCH | TEdcDrawAlign::SELORDER |
                                  TEdcDrawAlign::GAPS | TEdcDrawAlign::VALUE | TEdcDrawAlign::ROTATE |
                                  TEdcDrawAlign::TOXAXIS});
    EXPECT_EQ(spec.value, 1.5);
    EXPECT_NEAR(spec.angle, -AgPI / 2, 1e-15);
}

TEST_F(Lines, ForceOnWhatNewObjectsNeed)
{
    TEdcDrawAlign spec;
    int count = 0;
    ASSERT_TRUE(Ask(
        spec,
        [](DialogBox &dialog) {
            EXPECT_EQ(dialog.Focus(), COUNT);
            EXPECT_EQ(dialog.Text(COUNT), "");
            for (int id : {STRETCH, ROTATE, SELORDER})
                EXPECT_FALSE(dialog.IsEnabled(id)) << id;
            EXPECT_EQ(dialog.Check(STRETCH), WIN_CHECKED);
            EXPECT_EQ(dialog.Check(ROTATE), WIN_CHECKED);
            EXPECT_EQ(dialog.Check(SELORDER), WIN_UNCHECKED);
            dialog.TypeKeys("12");
            dialog.Click(BELOW);
        },
        &count));
    EXPECT_EQ(count, 12);
    EXPECT_EQ(spec.mode, uint32_t{TEdcDrawAlign::BELOW | TEdcDrawAlign::STRETCH | TEdcDrawAlign::SELORDER |
                                  TEdcDrawAlign::ROTATE});
}

TEST_F(Lines, RefuseEqualPointsAndCountsBeyondTheRange)
{
    TEdcDrawAlign spec;
    int count = 0;
    testdoor::Script([](ModalBox &box) {
        DialogBox dialog(box);
        auto refused = [&](const char *expected) {
            testdoor::Script([expected](ModalBox &message) {
                EXPECT_EQ(message.Text(), expected);
                message.Answer(WIN_ID_OK);
            });
            box.Answer(WIN_ID_OK);
        };
        for (const char *text : {"", "0", "32768", "2.5"}) {
            dialog.Type(COUNT, text);
            refused(*text ? "Ganze Zahl von 1 bis 32767 erwartet."
                          : "Wert muss eingegeben, bzw. gew\xE4hlt werden.");
            EXPECT_EQ(dialog.Focus(), COUNT);
        }
        dialog.Type(COUNT, "3");
        dialog.Type(X2, "1");
        dialog.Type(Y2, "2.0");
        refused("Man erwartet zwei verschiedene Punkte.");
        EXPECT_EQ(dialog.Focus(), X1);
        box.Answer(WIN_ID_CANCEL);
    });
    EXPECT_FALSE(Layer().AlignQuery(spec, AgPOINT(1, 2), AgPOINT(3, 4), &count));
    EXPECT_EQ(count, 0);
}

TEST_F(Lines, HaveTheirTextsOnTheControls)
{
    const std::pair<int, const char *> texts[] = {{COUNT_LABEL, "An&zahl"},
                                                  {SHOW_LINE, "Z&eige jetzigen"},
                                                  {SIDES, "Zustellung"},
                                                  {BELOW, "&Unter die Skala"},
                                                  {MIDDLE, "Mit der &Mitte zur Skala"},
                                                  {ABOVE, "\xDC&ber die Skala"},
                                                  {STRETCH, "&Dehnung"},
                                                  {DISTANCES, "Gleiche Mittelpu&nktabst."},
                                                  {GAPS, "Gleiche L\xFC"
                                                         "c&kenl\xE4nge"},
                                                  {SELORDER, "&Reihenf. nach Auswahl"},
                                                  {USE_VALUE, "Eingeg. Ab&stand anwenden"},
                                                  {VALUE_LABEL, "&Abstand"},
                                                  {ROTATE, "Dre&hung"},
                                                  {TO_LINE, "Im Bezug au&f die Skala"},
                                                  {TO_XAXIS, "&Im Bezug auf Achse X"},
                                                  {ALIGN_ANGLE_LABEL, "&Winkel"}};
    Put(10, 6, 4, 2);
    TEdcDrawAlign spec;
    Ask(
        spec,
        [&](DialogBox &dialog) {
            for (const auto &[id, text] : texts)
                EXPECT_EQ(dialog.Text(id), text) << id;
        },
        NULL, WIN_ID_CANCEL);
}

/// The same dialog with a given picture at one place.
class Pictured : public TEdcDialog
{
public:
    Pictured(int id, int aNumber) : TEdcDialog(21521), number(aNumber), picture(new TEdcStatic(this, id)) {}
    void Changed(HWND control) override
    {
        if (control == NULL)
            picture->SetRes(number);
    }

private:
    int number;
    TEdcStatic *picture;
};

std::vector<TColor> PixelsAt(const DialogBox &dialog, int id)
{
    TSize extent;
    return dialog.Pixels(id, extent);
}

TEST_F(Lines, ShowWhatTheChosenOptionsMean)
{
    auto shown = [](int id, int number) {
        std::vector<TColor> pixels;
        Pictured dialog(id, number);
        Fill([&](DialogBox &box) { pixels = PixelsAt(box, id); }, WIN_ID_CANCEL);
        dialog.Execute();
        return pixels;
    };
    const struct {
        int click;
        int id;
        int number;
    } table[] = {
        {BELOW, SIDE_PICTURE, 21651},      {ABOVE, SIDE_PICTURE, 21653},    {MIDDLE, SIDE_PICTURE, 21652},
        {STRETCH, STRETCH_PICTURE, 21654}, {GAPS, STRETCH_PICTURE, 21655},  {STRETCH, STRETCH_PICTURE, 21650},
        {STRETCH, STRETCH_PICTURE, 21655}, {ROTATE, ROTATE_PICTURE, 21656}, {TO_XAXIS, ROTATE_PICTURE, 21657},
        {TO_LINE, ROTATE_PICTURE, 21656},  {ROTATE, ROTATE_PICTURE, 21650}, {DISTANCES, STRETCH_PICTURE, 21654},
    };
    EXPECT_NE(shown(SIDE_PICTURE, 21651), shown(SIDE_PICTURE, 21652));
    std::vector<std::vector<TColor>> expected = {shown(SIDE_PICTURE, 21652), shown(STRETCH_PICTURE, 21650),
                                                 shown(ROTATE_PICTURE, 21650)};
    for (const auto &row : table)
        expected.push_back(shown(row.id, row.number));
    Put(10, 6, 4, 2);
    TEdcDrawAlign spec;
    Ask(
        spec,
        [&](DialogBox &dialog) {
            size_t n = 0;
            for (int id : {SIDE_PICTURE, STRETCH_PICTURE, ROTATE_PICTURE})
                EXPECT_EQ(PixelsAt(dialog, id), expected[n++]) << id;
            for (const auto &row : table) {
                dialog.Click(row.click);
                EXPECT_EQ(PixelsAt(dialog, row.id), expected[n++]) << row.click << " " << row.number;
            }
        },
        NULL, WIN_ID_CANCEL);
}

TEST_F(Lines, DisableWhatNoLongerCounts)
{
    Put(10, 6, 4, 2);
    TEdcDrawAlign spec;
    Ask(
        spec,
        [](DialogBox &dialog) {
            auto expect = [&](std::initializer_list<int> ids, bool enabled) {
                for (int id : ids)
                    EXPECT_EQ(dialog.IsEnabled(id), enabled) << id;
            };
            dialog.Click(STRETCH);
            dialog.Click(USE_VALUE);
            expect({DISTANCES, GAPS, SELORDER, USE_VALUE, VALUE, VALUE_LABEL}, true);
            dialog.Click(USE_VALUE);
            expect({VALUE, VALUE_LABEL}, false);
            expect({DISTANCES, GAPS, SELORDER, USE_VALUE}, true);
            dialog.Click(USE_VALUE);
            dialog.Click(STRETCH);
            expect({DISTANCES, GAPS, SELORDER, USE_VALUE, VALUE, VALUE_LABEL}, false);
            EXPECT_EQ(dialog.Check(USE_VALUE), WIN_CHECKED);
            dialog.Click(STRETCH);
            expect({USE_VALUE, VALUE, VALUE_LABEL}, true);
            dialog.Click(ROTATE);
            expect({TO_LINE, TO_XAXIS, ALIGN_ANGLE, ALIGN_ANGLE_LABEL}, true);
            dialog.Click(ROTATE);
            expect({TO_LINE, TO_XAXIS, ALIGN_ANGLE, ALIGN_ANGLE_LABEL}, false);
            expect({COUNT}, false);
            expect({SHOW_LINE}, true);
        },
        NULL, WIN_ID_CANCEL);
}

TEST_F(Lines, RememberWhatWasEnteredButNotTheLine)
{
    Put(10, 6, 4, 2);
    TEdcDrawAlign spec;
    ASSERT_TRUE(Ask(spec, [](DialogBox &dialog) {
        dialog.Click(STRETCH);
        dialog.Click(GAPS);
        dialog.Click(BELOW);
        dialog.Type(X1, "7");
    }));
    ASSERT_TRUE(Ask(spec, [](DialogBox &dialog) {
        EXPECT_EQ(dialog.Check(STRETCH), WIN_CHECKED);
        EXPECT_EQ(dialog.Check(GAPS), WIN_CHECKED);
        EXPECT_EQ(dialog.Check(BELOW), WIN_CHECKED);
        EXPECT_EQ(dialog.Text(X1), "1");
    }));
    EXPECT_EQ(spec.mode, uint32_t{TEdcDrawAlign::BELOW | TEdcDrawAlign::STRETCH | TEdcDrawAlign::GAPS});
    Layer().Reset();
    Put(10, 6, 4, 2);
    ASSERT_TRUE(Ask(spec, [](DialogBox &) {}));
    EXPECT_EQ(spec.mode, uint32_t{TEdcDrawAlign::MIDDLE});
}
} // namespace
