// Labels, pictures, frames, buttons and check boxes, and what all controls have in common.
#include "controlfixture.h"

#include <algorithm>
#include <cstring>

namespace
{
constexpr TColor RED = {255, 0, 0};

/// Part of a control that is not its ground, in device pixels.
struct Ink {
    TRect box;      // empty where there is none
    long count = 0; // pixels
    TSize extent;   // of the control
};

template <class IS>
Ink FindInk(const testdoor::DialogBox &box, int id, IS is)
{
    Ink ink;
    std::vector<TColor> pixels = box.Pixels(id, ink.extent);
    for (int y = 0; y < ink.extent.cy; ++y)
        for (int x = 0; x < ink.extent.cx; ++x)
            if (is(pixels[static_cast<size_t>(y * ink.extent.cx + x)])) {
                ++ink.count;
                ink.box = ink.box | TRect{x, y, x + 1, y + 1};
            }
    return ink;
}

/// What is written on a label: dark on light.
Ink Written(const testdoor::DialogBox &box, int id)
{
    return FindInk(box, id, [](TColor c) { return c.red < 128 && c.green < 128 && c.blue < 128; });
}

Ink Reds(const testdoor::DialogBox &box, int id)
{
    return FindInk(box, id, [](TColor c) { return c == RED; });
}

testdoor::Placed PlacedOf(const testdoor::DialogBox &box, int id)
{
    for (const testdoor::Placed &placed : box.Layout())
        if (placed.id == id)
            return placed;
    ADD_FAILURE() << "no control " << id;
    return {};
}

ResCONTROL Picture(ResCONTROLKIND kind, int id, int picture, unsigned style = 0)
{
    ResCONTROL line = Line(kind, id, "", style);
    line.picture = picture;
    return line;
}

class ControlTest : public Controls
{
protected:
    enum { A = 10, B = 11, C = 12, D = 13, E = 14, F = 15 };
    static int Device(int units) { return static_cast<int>(units * TestScale() + 0.5); }
};
} // namespace

TEST_F(ControlTest, EveryKindHasItsWindowClassStyleAndNumber)
{
    const struct {
        ResCONTROLKIND kind;
        unsigned style; // ResCONTROLSTYLE
        const char *windowClass;
        unsigned expected;
        bool tabStop;
    } table[] = {
        {RES_LABEL, 0, "STATIC", WIN_SS_TEXT, false},
        {RES_PICTURE, 0, "STATIC", WIN_SS_BITMAP, false},
        {RES_FRAME, 0, "BUTTON", WIN_BS_GROUP, false},
        {RES_EDIT, 0, "EDIT", 0, true},
        {RES_MEMO, 0, "EDIT", 0, true},
        {RES_COMBO, 0, "COMBOBOX", WIN_CBS_DROPDOWN, true},
        {RES_CHOICE, 0, "COMBOBOX", WIN_CBS_DROPDOWNLIST, true},
        {RES_LIST, 0, "LISTBOX", WIN_LBS_NOTIFY, true},
        {RES_BUTTON, 0, "BUTTON", WIN_BS_PUSH, true},
        {RES_BUTTON, RES_BITMAP, "BUTTON", WIN_BS_PUSH | WIN_STYLE_BITMAP, true},
        {RES_DEFAULT, 0, "BUTTON", WIN_BS_DEFPUSH, true},
        {RES_CHECK, 0, "BUTTON", WIN_BS_AUTOCHECK, true},
        {RES_CHECK, RES_PUSH | RES_BITMAP, "BUTTON", WIN_BS_AUTOCHECK | WIN_STYLE_BITMAP, true},
        {RES_CHECK3, RES_NOTAB, "BUTTON", WIN_BS_AUTO3STATE, false},
        {RES_RADIO, RES_PUSH, "BUTTON", WIN_BS_RADIO, true},
        {RES_EDIT, RES_NOTAB | RES_GREY | RES_HIDDEN, "EDIT", 0, false},
    };
    std::vector<ResCONTROL> lines;
    for (const auto &row : table)
        lines.push_back(Line(row.kind, 100 + static_cast<int>(lines.size()), "Text", row.style));
    Make(lines);
    std::vector<TControl *> controls;
    for (const ResCONTROL &line : lines)
        controls.push_back(new TControl(dialog.get(), line.id));
    Open();
    for (size_t i = 0; i < lines.size(); ++i) {
        SCOPED_TRACE(i);
        HWND handle = dialog->Item(lines[i].id);
        EXPECT_STREQ(WindowClass(handle), table[i].windowClass);
        unsigned expected = table[i].expected | WIN_STYLE_CHILD;
        EXPECT_EQ(WindowStyle(handle), expected | (table[i].tabStop ? unsigned{WIN_STYLE_TABSTOP} : 0U));
        EXPECT_EQ(WindowId(handle), lines[i].id);
        EXPECT_EQ(controls[i]->Style(), WindowStyle(handle));
        EXPECT_EQ(controls[i]->GetHandle(), handle);
        EXPECT_EQ(controls[i]->IsWindowVisible(), !(table[i].style & RES_HIDDEN));
        EXPECT_EQ(controls[i]->IsWindowEnabled(), !(table[i].style & RES_GREY));
    }
    HWND gone = dialog->Item(100);
    dialog->Destroy(WIN_ID_CANCEL);
    testdoor::Settle();
    for (HWND other : {gone, HWND(NULL)}) {
        EXPECT_EQ(WindowClass(other), static_cast<const char *>(NULL));
        EXPECT_EQ(WindowStyle(other), 0U);
        EXPECT_EQ(WindowId(other), 0);
    }
}

TEST_F(ControlTest, ControlsAreShownEnabledFocusedAndRenamedByTheProgram)
{
    Make({Line(RES_LABEL, A, "&Länge"), Line(RES_EDIT, B), Line(RES_BUTTON, C, "&Öffnen"),
          Line(RES_FRAME, D, "Gruppe"), Line(RES_CHECK, E, "Konzept")});
    std::vector<TControl *> controls;
    for (int id : {A, B, C, D, E})
        controls.push_back(new TControl(dialog.get(), id));
    auto box = Open();
    const char *const texts[] = {"L\344nge && \200", "H\366he", "", "Geb\344ude", "<b>"};
    for (size_t i = 0; i < controls.size(); ++i) {
        SCOPED_TRACE(i);
        TControl &control = *controls[i];
        control.SetText(texts[i]);
        EXPECT_EQ(control.Text(), texts[i]);
        EXPECT_EQ(box.Text(control.Id()), texts[i]);
        control.ShowWindow(false);
        EXPECT_FALSE(control.IsWindowVisible());
        EXPECT_FALSE(box.IsShown(control.Id()));
        control.ShowWindow(true);
        EXPECT_TRUE(box.IsShown(control.Id()));
        control.EnableWindow(false);
        EXPECT_FALSE(control.IsWindowEnabled());
        EXPECT_FALSE(box.IsEnabled(control.Id()));
        control.EnableWindow(true);
        EXPECT_TRUE(control.IsWindowEnabled());
        control.SetTip("Ma\337");
        EXPECT_EQ(box.Tip(control.Id()), "Ma\337");
    }
    controls[2]->TakeFocus();
    EXPECT_TRUE(controls[2]->HasFocus());
    EXPECT_FALSE(controls[1]->HasFocus());
    EXPECT_EQ(box.Focus(), C);
    EXPECT_EQ(diary.Read(), "") << "what the program does is not told";
}

TEST_F(ControlTest, WithoutItsWindowAControlIsNothing)
{
    Make({Line(RES_LABEL, A, "Text"), Line(RES_BUTTON, B, "Knopf"), Line(RES_CHECK, C, "Wahl")});
    auto *label = new TStatic(dialog.get(), A);
    auto *check = new TButton(dialog.get(), C);
    auto probe = [&] {
        for (TControl *control : {static_cast<TControl *>(label), static_cast<TControl *>(check)}) {
            control->SetText("verloren");
            control->EnableWindow(false);
            control->ShowWindow(false);
            control->TakeFocus();
            control->SetTabStop(false);
            control->SetTip("verloren");
            EXPECT_EQ(control->Text(), "");
            EXPECT_EQ(control->Style(), 0U);
            EXPECT_FALSE(control->IsWindowEnabled());
            EXPECT_FALSE(control->IsWindowVisible());
            EXPECT_FALSE(control->HasFocus());
            EXPECT_TRUE(control->CanClose());
            EXPECT_EQ(control->Transfer(NULL, WIN_TRANSFER_GETDATA), 0);
        }
        label->SetPicture(SQUARE);
        check->SetPicture(SQUARE);
        check->SetCheck(WIN_CHECKED);
        check->SetKind(WIN_BS_3STATE);
        EXPECT_EQ(check->GetCheck(), WIN_UNCHECKED);
    };
    probe();
    Open();
    EXPECT_EQ(label->Text(), "Text");
    EXPECT_EQ(check->Text(), "Wahl");
    EXPECT_EQ(check->GetCheck(), WIN_UNCHECKED);
    EXPECT_TRUE(check->IsWindowEnabled());
    dialog->Destroy(WIN_ID_CANCEL);
    testdoor::Settle();
    probe();
}

TEST_F(ControlTest, AControlThatGoesTakesItsWindowAlong)
{
    Make({Line(RES_EDIT, A), Line(RES_EDIT, B)});
    auto *first = new TEdit(dialog.get(), A);
    new TEdit(dialog.get(), B);
    Open();
    EXPECT_EQ(dialog->Controls().size(), 2U);
    delete first;
    EXPECT_EQ(dialog->Controls().size(), 1U);
    EXPECT_EQ(dialog->Item(A), HWND(NULL));
    EXPECT_NE(dialog->Item(B), HWND(NULL));
}

TEST_F(ControlTest, ColumnsOfALabelStandEveryEightAverageCharacters)
{
    auto box = Open(
        {Placed(Line(RES_LABEL, A, "I"), 2, 2, 160, 8), Placed(Line(RES_LABEL, B, "\tI"), 2, 12, 160, 8),
         Placed(Line(RES_LABEL, C, "\t\tI"), 2, 22, 160, 8), Placed(Line(RES_LABEL, D, "a\tI"), 2, 32, 160, 8),
         Placed(Line(RES_LABEL, E, "abcdefghijkl\tI"), 2, 42, 160, 8),
         Placed(Line(RES_LABEL, F, "&abc\tx\tI"), 2, 52, 160, 8)});
    int start = Written(box, A).box.left;
    int first = Written(box, B).box.left - start;
    EXPECT_GT(first, 4 * start);
    // A stop is 32 dialog units, and the label is 160 of them wide.
    EXPECT_NEAR(first, Written(box, A).extent.cx / 5, 6 * TestScale());
    EXPECT_NEAR(Written(box, C).box.left - start, 2 * first, 1);
    int right = Written(box, A).box.right;
    EXPECT_NEAR(Written(box, D).box.right - right, first, 1);
    EXPECT_NEAR(Written(box, E).box.right - right, 2 * first, 1) << "behind what reaches over the first stop";
    EXPECT_NEAR(Written(box, F).box.right - right, 2 * first, 1);
    EXPECT_NEAR(PlacedOf(box, C).needed.cx, 2 * first / TestScale(), 8);
}

TEST_F(ControlTest, ColumnsOfALabelStandBelowEachOther)
{
    const char *text = "Wärmewiderst.d.Kleides\t\tI\nEnergieausgabe\t\t\tI\nLuftströmungsgeschwind.\tI\n"
                       "Rel. Luftfeuchtigkeit\t\tI";
    auto box = Open({Placed(Line(RES_LABEL, A, text), 2, 2, 200, 40)});
    Ink all = Written(box, A);
    int height =
        all.extent.cy * PlacedOf(box, A).needed.cy / PlacedOf(box, A).rect.Height() / 4; // px, of a line
    for (int line = 0; line < 4; ++line) {
        Ink ink = FindInk(box, A, [&, at = 0](TColor c) mutable {
            int y = at++ / all.extent.cx;
            return y / height == line && c.red < 128;
        });
        EXPECT_NEAR(ink.box.right, all.box.right, 1) << line;
    }
}

TEST_F(ControlTest, ALabelStandsAtItsSide)
{
    auto box = Open({Placed(Line(RES_LABEL, A, "HHH"), 2, 2, 100, 8),
                     Placed(Line(RES_LABEL, B, "HHH", RES_RIGHT), 2, 12, 100, 8),
                     Placed(Line(RES_LABEL, C, "HHH", RES_CENTER), 2, 22, 100, 8)});
    Ink left = Written(box, A);
    Ink right = Written(box, B);
    Ink center = Written(box, C);
    ASSERT_GT(left.count, 0);
    int margin = Device(3);
    EXPECT_LE(left.box.left, margin);
    EXPECT_GE(right.box.right, right.extent.cx - margin);
    EXPECT_NEAR(center.box.left, center.extent.cx - center.box.right, margin);
    EXPECT_NEAR(static_cast<double>(left.count), static_cast<double>(right.count), 8);
}

TEST_F(ControlTest, LinesOfAHigherLabelAreBrokenAtItsWidth)
{
    const char *text = "Bem.: hier eingeg. Maße können später nicht geändert werden.";
    auto box =
        Open({Placed(Line(RES_LABEL, A, text), 2, 2, 80, 8), Placed(Line(RES_LABEL, B, text), 2, 12, 80, 32),
              Placed(Line(RES_LABEL, C, "eins\nzwei\r\ndrei"), 2, 46, 80, 8),
              Placed(Line(RES_LABEL, D, "Hallenvolumenvielfaches-Berechnung"), 2, 56, 30, 32),
              Placed(Line(RES_LABEL, E, "eins\nzwei\r\ndrei"), 2, 90, 80, 26)});
    testdoor::Placed one = PlacedOf(box, A);
    EXPECT_GT(one.needed.cx, one.rect.Width()) << "a single line is not broken";
    EXPECT_LE(one.needed.cy, one.rect.Height());
    testdoor::Placed broken = PlacedOf(box, B);
    EXPECT_LE(broken.needed.cx, broken.rect.Width());
    EXPECT_GE(broken.needed.cy, 3 * one.needed.cy);
    EXPECT_LE(broken.needed.cy, broken.rect.Height());
    Ink ink = Written(box, B);
    EXPECT_GT(ink.box.Height(), 2 * Written(box, A).extent.cy);
    EXPECT_LE(ink.box.right, ink.extent.cx);
    EXPECT_EQ(PlacedOf(box, C).needed.cy, 3 * one.needed.cy) << "line breaks always count";
    EXPECT_GT(Written(box, E).box.Height(), 2 * Written(box, C).box.Height());
    testdoor::Placed word = PlacedOf(box, D);
    EXPECT_GT(word.needed.cx, word.rect.Width()) << "a word is not broken";
}

TEST_F(ControlTest, AFieldIsNamedAfterItsLabelAlsoWhenThatChanges)
{
    Make({Line(RES_LABEL, A, "&Preis [€/m3]"), Line(RES_EDIT, B)});
    auto *label = new TStatic(dialog.get(), A);
    auto box = Open();
    EXPECT_EQ(box.AccessibleName(B), "Preis [\200/m3]");
    label->SetText("&Preis [\200/kg] && mehr");
    EXPECT_EQ(box.AccessibleName(B), "Preis [\200/kg] & mehr");
}

TEST_F(ControlTest, WhatAControlNeedsFollowsItsText)
{
    const char *text = "Umbenennen wäre länger";
    Make({Line(RES_LABEL, A, text), Line(RES_BUTTON, B, text), Line(RES_CHECK, C, text),
          Line(RES_RADIO, D, text), Line(RES_FRAME, E, text), Line(RES_CHECK, F, text, RES_PUSH)});
    std::vector<TControl *> controls;
    for (int id : {A, B, C, D, E, F})
        controls.push_back(new TControl(dialog.get(), id));
    auto box = Open();
    for (TControl *control : controls) {
        SCOPED_TRACE(control->Id());
        TSize whole = PlacedOf(box, control->Id()).needed;
        control->SetText("Umbenennen w\344re");
        TSize shorter = PlacedOf(box, control->Id()).needed;
        EXPECT_LT(shorter.cx, whole.cx);
        EXPECT_EQ(shorter.cy, whole.cy);
        control->SetText("&Umbenennen w\344re");
        EXPECT_EQ(PlacedOf(box, control->Id()).needed, shorter) << "a mnemonic has no width";
        control->SetText("&&Umbenennen w\344re");
        EXPECT_GT(PlacedOf(box, control->Id()).needed.cx, shorter.cx);
        EXPECT_LE(shorter.cy, PlacedOf(box, control->Id()).rect.Height());
        control->SetText("");
        EXPECT_LT(PlacedOf(box, control->Id()).needed.cx, 40);
    }
    EXPECT_GT(PlacedOf(box, C).needed.cx, PlacedOf(box, A).needed.cx) << "a check box has its box";
}

TEST_F(ControlTest, FieldsNeedALineAndListsAnEntry)
{
    auto box = Open({Placed(Line(RES_EDIT, A), 2, 2, 80, 13), Placed(Line(RES_MEMO, B), 2, 17, 80, 40),
                     Placed(Line(RES_COMBO, C), 2, 60, 80, 13), Placed(Line(RES_CHOICE, D), 2, 75, 80, 13),
                     Placed(Line(RES_LIST, E), 2, 90, 80, 40), Placed(Line(RES_PICTURE, F), 90, 2, 20, 20)});
    for (int id : {A, B, C, D, E}) {
        SCOPED_TRACE(id);
        testdoor::Placed placed = PlacedOf(box, id);
        EXPECT_GT(placed.needed.cx, 0);
        EXPECT_GT(placed.needed.cy, 8);
        EXPECT_LE(placed.needed.cx, placed.rect.Width());
        EXPECT_LE(placed.needed.cy, placed.rect.Height());
    }
    EXPECT_EQ(PlacedOf(box, F).needed, (TSize{0, 0})) << "a picture fits in anywhere";
}

TEST_F(ControlTest, AComboBoxNeedsRoomForItsWidestEntry)
{
    Make({Placed(Line(RES_CHOICE, A), 2, 2, 40, 13)});
    auto *combo = new TComboBox(dialog.get(), A);
    auto box = Open();
    combo->AddString("kurz");
    EXPECT_LE(PlacedOf(box, A).needed.cx, PlacedOf(box, A).rect.Width());
    combo->AddString("ein Eintrag, der nicht hineinpa\337t");
    EXPECT_GT(PlacedOf(box, A).needed.cx, PlacedOf(box, A).rect.Width());
}

TEST_F(ControlTest, PicturesFillTheirPlaceInTheirProportions)
{
    Make({Placed(Picture(RES_PICTURE, A, SQUARE), 2, 2, 80, 20),
          Placed(Picture(RES_PICTURE, B, WIDE), 2, 30, 20, 60),
          Placed(Picture(RES_PICTURE, C, 999), 2, 100, 20, 20)});
    auto *picture = new TStatic(dialog.get(), A);
    auto box = Open();
    Ink square = Reds(box, A);
    EXPECT_NEAR(square.box.Height(), square.extent.cy, 1);
    EXPECT_NEAR(square.box.Width(), square.box.Height(), 1);
    EXPECT_EQ(square.count, static_cast<long>(square.box.Width()) * square.box.Height()) << "sharp edges";
    EXPECT_NEAR(square.box.left, square.extent.cx - square.box.right, 2) << "in the middle";
    Ink wide = Reds(box, B);
    EXPECT_NEAR(wide.box.Width(), wide.extent.cx, 1);
    EXPECT_NEAR(wide.box.Width(), 2 * wide.box.Height(), 2);
    EXPECT_NEAR(wide.box.top, wide.extent.cy - wide.box.bottom, 2);
    EXPECT_EQ(Reds(box, C).count, 0) << "there is no such picture";
    EXPECT_NEAR(square.extent.cy, Device(PlacedOf(box, A).rect.Height()), 1) << "drawn in device pixels";

    picture->SetPicture(WIDE);
    EXPECT_NEAR(Reds(box, A).box.Width(), 2 * Reds(box, A).box.Height(), 2);
    picture->EnableWindow(false);
    EXPECT_EQ(Reds(box, A).count, 0) << "grey";
    picture->EnableWindow(true);
    for (int none : {0, 999}) {
        picture->SetPicture(SQUARE);
        EXPECT_GT(Reds(box, A).count, 0);
        picture->SetPicture(none);
        EXPECT_EQ(Reds(box, A).count, 0);
    }
    picture->SetText("kein Text");
    EXPECT_EQ(picture->Text(), "");
}

TEST_F(ControlTest, ButtonsShowPictures)
{
    Make({Placed(Picture(RES_BUTTON, A, SQUARE, RES_BITMAP), 2, 2, 40, 26),
          Placed(Picture(RES_CHECK, B, WIDE, RES_BITMAP | RES_PUSH), 2, 30, 40, 26),
          Placed(Line(RES_BUTTON, C, "", RES_BITMAP), 2, 60, 40, 26)});
    auto *plain = new TButton(dialog.get(), C);
    auto *toggle = new TButton(dialog.get(), B);
    auto box = Open();
    EXPECT_NEAR(Reds(box, A).box.Width(), Device(24), 1);
    EXPECT_NEAR(Reds(box, A).box.Height(), Device(24), 1);
    EXPECT_NEAR(Reds(box, B).box.Width(), Device(48), 2);
    EXPECT_NEAR(Reds(box, B).box.Height(), Device(24), 2);
    EXPECT_GE(PlacedOf(box, A).needed.cx, 24);
    EXPECT_GE(PlacedOf(box, B).needed.cx, 48);
    EXPECT_EQ(Reds(box, C).count, 0);
    plain->SetPicture(SQUARE);
    EXPECT_GT(Reds(box, C).count, 0);
    plain->SetPicture(0);
    EXPECT_EQ(Reds(box, C).count, 0);
    box.Click(B);
    EXPECT_EQ(toggle->GetCheck(), WIN_CHECKED);
    EXPECT_EQ(diary.Read(), "command11/0");
}

TEST_F(ControlTest, ALabelHasNoPictureAndAPictureNoTabStop)
{
    Make({Line(RES_LABEL, A, "Text"), Line(RES_PICTURE, B), Line(RES_EDIT, C)});
    auto *label = new TStatic(dialog.get(), A);
    auto *picture = new TStatic(dialog.get(), B);
    auto box = Open();
    label->SetPicture(SQUARE);
    EXPECT_EQ(Reds(box, A).count, 0);
    EXPECT_EQ(label->Text(), "Text");
    for (TStatic *fixed : {label, picture}) {
        fixed->SetTabStop(true);
        EXPECT_FALSE(fixed->Style() & WIN_STYLE_TABSTOP);
    }
}

TEST_F(ControlTest, CheckBoxesSwitchThemselvesByMouseSpaceAndMnemonic)
{
    const struct {
        ResCONTROLKIND kind;
        std::vector<TCheckState> states; // one click after the other
    } table[] = {
        {RES_CHECK, {WIN_CHECKED, WIN_UNCHECKED, WIN_CHECKED, WIN_UNCHECKED}},
        {RES_CHECK3, {WIN_CHECKED, WIN_INDETERMINATE, WIN_UNCHECKED, WIN_CHECKED}},
        {RES_RADIO, {WIN_UNCHECKED, WIN_UNCHECKED, WIN_UNCHECKED}},
    };
    for (const auto &row : table)
        for (unsigned look : {0U, unsigned{RES_PUSH}}) {
            SCOPED_TRACE(row.kind);
            const std::pair<const char *, std::function<void(testdoor::DialogBox &)>> ways[] = {
                {"mouse", [](testdoor::DialogBox &box) { box.Click(A); }},
                {"space", [](testdoor::DialogBox &box) { box.Press("Space"); }},
                {"mnemonic", [](testdoor::DialogBox &box) { box.Press("Alt+K"); }},
            };
            for (const auto &[name, act] : ways) {
                SCOPED_TRACE(name);
                Make({Line(row.kind, A, "&Konzept", look), Line(RES_EDIT, B)});
                auto *button = new TButton(dialog.get(), A);
                auto box = Open();
                button->TakeFocus();
                for (TCheckState state : row.states) {
                    act(box);
                    EXPECT_EQ(button->GetCheck(), state);
                    EXPECT_EQ(box.Check(A), state);
                    EXPECT_EQ(box.Focus(), A);
                    EXPECT_EQ(diary.Read(), "command10/0");
                }
            }
        }
}

TEST_F(ControlTest, TheProgramSetsWhatDoesNotSwitchItselfAndIsNotToldOfIt)
{
    Make({Line(RES_CHECK, A, "Wahl"), Line(RES_CHECK, B, "Wahl", RES_PUSH), Line(RES_RADIO, C, "Wahl")});
    std::vector<TButton *> buttons;
    for (int id : {A, B, C})
        buttons.push_back(new TButton(dialog.get(), id));
    auto box = Open();
    for (TButton *button : buttons) {
        SCOPED_TRACE(button->Id());
        for (unsigned kind : {WIN_BS_CHECK, WIN_BS_3STATE, WIN_BS_RADIO}) {
            button->SetKind(kind);
            EXPECT_EQ(button->Style() & WIN_STYLE_KIND, kind);
            EXPECT_TRUE(button->Style() & WIN_STYLE_TABSTOP) << "the rest of the style stays";
            for (TCheckState state : {WIN_CHECKED, WIN_INDETERMINATE, WIN_UNCHECKED}) {
                button->SetCheck(state);
                EXPECT_EQ(button->GetCheck(), state);
                EXPECT_EQ(diary.Read(), "");
                box.Click(button->Id());
                EXPECT_EQ(button->GetCheck(), state);
                EXPECT_EQ(diary.Read(), "command" + std::to_string(button->Id()) + "/0");
            }
        }
        button->SetKind(WIN_BS_AUTO3STATE);
        for (TCheckState state : {WIN_CHECKED, WIN_INDETERMINATE, WIN_UNCHECKED}) {
            box.Click(button->Id());
            EXPECT_EQ(button->GetCheck(), state);
        }
        button->SetCheck(WIN_INDETERMINATE);
        button->SetKind(WIN_BS_AUTOCHECK);
        EXPECT_EQ(button->GetCheck(), WIN_INDETERMINATE);
        box.Click(button->Id());
        EXPECT_EQ(button->GetCheck(), WIN_UNCHECKED);
        diary.Read();
    }
}

TEST_F(ControlTest, EveryStateOfACheckBoxLooksDifferent)
{
    for (ResCONTROLKIND kind : {RES_CHECK3, RES_RADIO})
        for (unsigned look : {0U, unsigned{RES_PUSH}}) {
            if (kind == RES_RADIO && look == 0)
                continue; // two of them are drawn
            Make({Line(kind, A, "Wahl", look)});
            auto *button = new TButton(dialog.get(), A);
            auto box = Open();
            TSize extent;
            std::vector<std::vector<TColor>> shots;
            for (TCheckState state : {WIN_UNCHECKED, WIN_CHECKED, WIN_INDETERMINATE}) {
                button->SetCheck(state);
                shots.push_back(box.Pixels(A, extent));
            }
            EXPECT_FALSE(shots[0] == shots[1]);
            EXPECT_FALSE(shots[1] == shots[2]);
            EXPECT_FALSE(shots[0] == shots[2]);
        }
}

TEST_F(ControlTest, ADoubleClickIsToldOnceBehindItsClick)
{
    for (unsigned look : {0U, unsigned{RES_PUSH}}) {
        Make({Line(RES_CHECK, A, "Wahl", look), Line(RES_RADIO, B, "Wahl", look)});
        auto *check = new TButton(dialog.get(), A);
        auto box = Open();
        box.DoubleClick(A);
        EXPECT_EQ(diary.Read(), "command10/0 command10/5");
        EXPECT_EQ(check->GetCheck(), WIN_CHECKED);
        box.DoubleClick(B);
        EXPECT_EQ(diary.Read(), "command11/0 command11/5");
    }
}

TEST_F(ControlTest, ArrowKeysOnRadioButtonsAreForTheirGroup)
{
    auto box =
        Open({Line(RES_RADIO, A, "eins"), Line(RES_RADIO, B, "zwei", RES_PUSH), Line(RES_CHECK, C, "drei")});
    for (int id : {A, B}) {
        box.Click(id);
        diary.Read();
        std::string report = "command" + std::to_string(id) + "/";
        const std::pair<const char *, int> keys[] = {
            {"Up", WIN_BN_PRIOR}, {"Left", WIN_BN_PRIOR}, {"Down", WIN_BN_NEXT}, {"Right", WIN_BN_NEXT}};
        for (const auto &[key, code] : keys) {
            box.Press(key);
            EXPECT_EQ(diary.Read(), report + std::to_string(code));
            EXPECT_EQ(box.Focus(), id);
        }
    }
}

TEST_F(ControlTest, AFrameLetsTheMouseThroughAndMayHaveTheFocus)
{
    Make({Placed(Line(RES_EDIT, A), 2, 2, 80, 12), Placed(Line(RES_FRAME, B, "&Gruppe"), 2, 18, 80, 60),
          Placed(Line(RES_CHECK, C, "Wahl"), 10, 40, 60, 12), Placed(Line(RES_EDIT, D), 2, 82, 80, 12)});
    auto *frame = new TControl(dialog.get(), B);
    auto box = Open();
    box.Click(C);
    EXPECT_EQ(diary.Read(), "command12/0");
    box.Click(A);
    box.Press("Tab");
    EXPECT_EQ(box.Focus(), C) << "a frame has no tab stop";
    box.Click(A);
    box.Press("Alt+G");
    EXPECT_EQ(box.Focus(), C) << "the mnemonic leads into the frame";
    EXPECT_EQ(diary.Read(), "");

    frame->SetTabStop(true);
    EXPECT_TRUE(frame->Style() & WIN_STYLE_TABSTOP);
    box.Click(A);
    box.Press("Tab");
    EXPECT_EQ(box.Focus(), B);
    EXPECT_TRUE(frame->HasFocus());
    EXPECT_EQ(diary.Read(), "command11/6");
    const std::pair<const char *, int> keys[] = {{"Up", WIN_BN_PRIOR},
                                                 {"Left", WIN_BN_PRIOR},
                                                 {"Down", WIN_BN_NEXT},
                                                 {"Right", WIN_BN_NEXT},
                                                 {"Space", WIN_BN_NEXT}};
    for (const auto &[key, code] : keys) {
        box.Press(key);
        EXPECT_EQ(diary.Read(), "command11/" + std::to_string(code));
    }
    box.Press("Tab");
    EXPECT_EQ(box.Focus(), C);
    EXPECT_EQ(diary.Read(), "command11/7");
    box.Press("Alt+G");
    EXPECT_EQ(box.Focus(), B) << "the frame itself, as it has a tab stop";
    frame->SetTabStop(false);
    EXPECT_FALSE(frame->Style() & WIN_STYLE_TABSTOP);
    diary.Read();
}

TEST_F(ControlTest, AFrameWithNothingToGoToLeavesTheFocus)
{
    auto box = Open({Line(RES_FRAME, A, "&Gruppe"), Line(RES_LABEL, B, "Text")});
    box.Press("Alt+G");
    EXPECT_EQ(box.Focus(), 0);
}

TEST_F(ControlTest, TabPassesByWhatHasNoTabStop)
{
    Make({Line(RES_EDIT, A), Line(RES_CHECK, B, "Wahl"), Line(RES_BUTTON, C, "Knopf", RES_NOTAB),
          Line(RES_EDIT, D)});
    auto *check = new TButton(dialog.get(), B);
    auto box = Open();
    EXPECT_EQ(box.Focus(), A);
    box.Press("Tab");
    EXPECT_EQ(box.Focus(), B);
    box.Press("Tab");
    EXPECT_EQ(box.Focus(), D);
    check->SetTabStop(false);
    box.Press("Shift+Tab");
    EXPECT_EQ(box.Focus(), A);
    box.Click(B);
    EXPECT_EQ(box.Focus(), B) << "the mouse gets there all the same";
}

TEST_F(ControlTest, AGreyButtonDoesNothing)
{
    Make({Line(RES_EDIT, A), Line(RES_CHECK, B, "&Wahl", RES_GREY), Line(RES_BUTTON, C, "&Knopf", RES_GREY)});
    auto *check = new TButton(dialog.get(), B);
    auto box = Open();
    box.Click(B);
    box.Click(C);
    box.Press("Alt+W");
    box.Press("Alt+K");
    EXPECT_EQ(diary.Read(), "");
    EXPECT_EQ(check->GetCheck(), WIN_UNCHECKED);
    check->SetCheck(WIN_CHECKED);
    EXPECT_EQ(box.Check(B), WIN_CHECKED) << "the program may";
}

TEST_F(ControlTest, AMnemonicThatTwoButtonsShareGoesFromOneToTheOther)
{
    auto box = Open({Line(RES_CHECK, A, "&Wahl"), Line(RES_CHECK, B, "&Wände"), Line(RES_EDIT, C)});
    box.Click(C);
    std::vector<int> met;
    for (int i = 0; i < 4; ++i) {
        box.Press("Alt+W");
        met.push_back(box.Focus());
    }
    EXPECT_EQ(std::count(met.begin(), met.end(), static_cast<int>(A)), 2);
    EXPECT_EQ(std::count(met.begin(), met.end(), static_cast<int>(B)), 2);
    EXPECT_EQ(diary.Read(), "") << "neither is pressed";
}
