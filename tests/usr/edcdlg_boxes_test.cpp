// Check boxes and their groups, texts and pictures by number, as the program sets them and as a user works
// them.
#include "support/child.h"
#include "support/hookdialog.h"
#include "support/programtables.h"
#include "support/testapp.h"
#include "support/testdialog.h"
#include "usr/edcutils.h"
#include "win/testdialog.h"

#include <gtest/gtest.h>

#include <array>
#include <vector>

namespace
{
enum { DIALOG = 30000, BOX = 101, OTHER = 102, GROUP = 200 };
const char file[] = "usr/edcdlg_boxes.cpp";

class Boxes : public testing::Test
{
protected:
    Boxes() { TestApplication(); }

    ProgramTables program;
    DialogTables tables;
};

TEdcInt State(int id, int value)
{
    TEdcInt v(value);
    v.id = id;
    return v;
}

/// A check box of one kind in a dialog that is up.
struct OneBox {
    OneBox(DialogTables &tables, ResCONTROLKIND kind, bool tristate, int flags = 0)
    {
        tables.Add(DIALOG, "", {Line(kind, BOX, "&Kasten"), Line(RES_DEFAULT, 1, "OK")});
        dialog = std::make_unique<HookDialog>(DIALOG);
        box = new TEdcCheckBox(dialog.get(), BOX, NULL, tristate, flags);
        dialog->Create();
        testdoor::Settle();
        dialog->Take();
    }
    unsigned Kind() const { return box->Style() & WIN_STYLE_KIND; }

    std::unique_ptr<HookDialog> dialog;
    TEdcCheckBox *box; // the dialog's
};

std::string Order(const TEdcCheckGroup &group)
{
    std::string ids;
    for (TEdcCheckBox *ck = group.First(); ck; ck = group.Next(ck))
        ids += std::to_string(ck->Id()) + " ";
    return ids;
}
} // namespace

TEST_F(Boxes, ShowTheirValueAndReadItBack)
{
    const struct {
        bool tristate;
        int id;
        int value;
        TCheckState shown;
        int readId;
        int readValue;
    } cases[] = {
        {false, EDC_VVAL, 0, WIN_UNCHECKED, EDC_VVAL, 0},
        {false, EDC_VVAL, 1, WIN_CHECKED, EDC_VVAL, 1},
        {false, EDC_VVAL, -7, WIN_CHECKED, EDC_VVAL, 1},
        {false, EDC_VUDF, 1, WIN_UNCHECKED, EDC_VVAL, 0},
        {false, EDC_VNUL, 1, WIN_UNCHECKED, EDC_VVAL, 0},
        {true, EDC_VVAL, 0, WIN_UNCHECKED, EDC_VVAL, 0},
        {true, EDC_VVAL, 1, WIN_CHECKED, EDC_VVAL, 1},
        {true, EDC_VVAL, 256, WIN_CHECKED, EDC_VVAL, 1},
        {true, EDC_VUDF, 1, WIN_INDETERMINATE, EDC_VUDF, 0},
        {true, EDC_VNUL, 0, WIN_INDETERMINATE, EDC_VUDF, 0},
    };
    for (TCheckState before : {WIN_UNCHECKED, WIN_CHECKED}) {
        for (const auto &c : cases) {
            OneBox one(tables, RES_CHECK, c.tristate);
            one.box->SetCheck(before);
            one.box->SetValue(State(c.id, c.value));
            EXPECT_EQ(one.box->GetCheck(), c.shown);
            EXPECT_EQ(testdoor::DialogBox(*one.dialog).Check(BOX), c.shown);
            TEdcInt read = State(77, 77);
            one.box->GetValue(read);
            EXPECT_EQ(read.id, c.readId);
            EXPECT_TRUE(read.id != EDC_VVAL || read.value == c.readValue);
            EXPECT_EQ(one.box->IsChecked(), c.shown == WIN_CHECKED);
            EXPECT_EQ(one.box->IsUnchecked(), c.shown == WIN_UNCHECKED);
            EXPECT_EQ(one.dialog->Take(), "") << "what the program does is not reported";
        }
    }
}

TEST_F(Boxes, ReadAsUncheckedWithoutAWindow)
{
    HookDialog dialog(DIALOG);
    auto *box = new TEdcCheckBox(&dialog, BOX, NULL, true);
    box->SetValue(State(EDC_VVAL, 1));
    TEdcInt read;
    box->GetValue(read);
    EXPECT_EQ(read.id, EDC_VVAL);
    EXPECT_EQ(read.value, 0);
    EXPECT_FALSE(box->IsChecked());
}

TEST_F(Boxes, SwitchBetweenTwoStatesAndThree)
{
    const struct {
        unsigned before;
        bool tristate;
        unsigned after;
    } cases[] = {
        {WIN_BS_CHECK, true, WIN_BS_3STATE},  {WIN_BS_AUTOCHECK, true, WIN_BS_AUTO3STATE},
        {WIN_BS_3STATE, false, WIN_BS_CHECK}, {WIN_BS_AUTO3STATE, false, WIN_BS_AUTOCHECK},
        {WIN_BS_CHECK, false, WIN_BS_CHECK},  {WIN_BS_AUTOCHECK, false, WIN_BS_AUTOCHECK},
        {WIN_BS_3STATE, true, WIN_BS_3STATE}, {WIN_BS_AUTO3STATE, true, WIN_BS_AUTO3STATE},
    };
    for (const auto &c : cases) {
        OneBox one(tables, RES_CHECK, false);
        one.box->SetKind(c.before);
        one.box->SetTristate(c.tristate);
        EXPECT_EQ(one.Kind(), c.after) << c.before;
    }
    EXPECT_EQ(OneBox(tables, RES_CHECK, true).Kind(), unsigned{WIN_BS_AUTO3STATE});
    EXPECT_EQ(OneBox(tables, RES_CHECK3, false).Kind(), unsigned{WIN_BS_AUTOCHECK});
}

TEST_F(Boxes, UndeterminedBoxBecomesUncheckedWhenTheThirdStateGoes)
{
    for (TCheckState state : {WIN_UNCHECKED, WIN_CHECKED, WIN_INDETERMINATE}) {
        OneBox one(tables, RES_CHECK3, true);
        one.box->SetCheck(state);
        one.box->SetTristate(false);
        EXPECT_EQ(one.box->GetCheck(), state == WIN_CHECKED ? WIN_CHECKED : WIN_UNCHECKED);
        one.box->SetTristate(true);
        EXPECT_EQ(one.box->GetCheck(), state == WIN_CHECKED ? WIN_CHECKED : WIN_UNCHECKED);
    }
}

TEST_F(Boxes, ClicksOfTheUserGoThroughTheStates)
{
    for (bool tristate : {false, true}) {
        OneBox one(tables, RES_CHECK, tristate);
        testdoor::DialogBox door(*one.dialog);
        std::string seen;
        for (int i = 0; i < (tristate ? 3 : 2); i++) {
            door.Click(BOX);
            EXPECT_EQ(one.dialog->Take(), "changed 101");
            seen += std::to_string(one.box->GetCheck());
        }
        EXPECT_EQ(seen.back(), '0') << "back where it was";
        EXPECT_EQ(seen.find('1') != std::string::npos, true);
        EXPECT_EQ(seen.find('2') != std::string::npos, tristate);
        door.TypeKeys(" ");
        EXPECT_EQ(one.dialog->Take(), "changed 101");
        EXPECT_NE(one.box->GetCheck(), WIN_UNCHECKED);
    }
}

TEST_F(Boxes, AreChangedWhenTheyShowSomethingElseThanTheyWereGiven)
{
    const struct {
        bool tristate;
        int id;
        int value;
        TCheckState now;
        bool changed;
    } cases[] = {
        {false, EDC_VVAL, 0, WIN_UNCHECKED, false},    {false, EDC_VVAL, 0, WIN_CHECKED, true},
        {false, EDC_VVAL, 1, WIN_CHECKED, false},      {false, EDC_VVAL, 5, WIN_CHECKED, false},
        {false, EDC_VVAL, 5, WIN_UNCHECKED, true},     {true, EDC_VVAL, 1, WIN_INDETERMINATE, true},
        {true, EDC_VUDF, 0, WIN_INDETERMINATE, false}, {true, EDC_VUDF, 0, WIN_CHECKED, true},
        {true, EDC_VUDF, 0, WIN_UNCHECKED, true},
    };
    for (const auto &c : cases) {
        OneBox one(tables, RES_CHECK, c.tristate);
        TEdcInt field = State(c.id, c.value);
        one.box->Transfer(&field, WIN_TRANSFER_SETDATA);
        one.box->SetCheck(c.now);
        EXPECT_EQ(one.box->IsChanged(), c.changed) << c.id << " " << c.value << " " << c.now;
    }
}

TEST_F(Boxes, TransferAsTheirFlagsSay)
{
    const struct {
        int flags;
        int size;
        int shown; // of a field that says 1
        int read;  // once the user has clicked
    } cases[] = {
        {0, sizeof(TEdcInt), 1, 0},
        {EDC_CfNOTRANSFER, 0, 0, 1},
        {EDC_CfNOGET, sizeof(TEdcInt), 1, 1},
        {EDC_CfNOTRANSFER | EDC_CfNOGET, 0, 0, 1},
    };
    for (const auto &c : cases) {
        OneBox one(tables, RES_CHECK, false);
        one.box->SetFlags(c.flags);
        EXPECT_EQ(one.box->GetFlags(), c.flags);
        TEdcInt field(1);
        EXPECT_EQ(one.box->Transfer(&field, WIN_TRANSFER_SETDATA), c.size);
        EXPECT_EQ(one.box->GetCheck(), c.shown ? WIN_CHECKED : WIN_UNCHECKED);
        one.box->SetCheck(WIN_CHECKED);
        testdoor::DialogBox(*one.dialog).Click(BOX);
        EXPECT_EQ(one.box->Transfer(&field, WIN_TRANSFER_GETDATA), c.size);
        EXPECT_EQ(field.id, EDC_VVAL);
        EXPECT_EQ(field.value, c.read) << c.flags;
    }
}

TEST_F(Boxes, IndeterminateBoxReadsUndefinedAndOkLeavesItSo)
{
    struct {
        TEdcInt first = State(EDC_VUDF, 0);
        TEdcInt second = State(EDC_VUDF, 0);
    } record;
    tables.Add(DIALOG, "",
               {Line(RES_CHECK3, BOX, "&A"), Line(RES_CHECK3, OTHER, "&B"), Line(RES_DEFAULT, 1, "OK")});
    HookDialog dialog(DIALOG, &record);
    auto *box = new TEdcCheckBox(&dialog, BOX, NULL, true);
    new TEdcCheckBox(&dialog, OTHER, NULL, true);
    testdoor::Script([&](testdoor::ModalBox &modal) {
        testdoor::DialogBox door(modal);
        EXPECT_EQ(door.Check(BOX), WIN_INDETERMINATE);
        EXPECT_FALSE(box->IsChanged());
        door.Click(OTHER);
        door.Click(1);
    });
    EXPECT_EQ(dialog.Execute(), 1);
    EXPECT_EQ(record.first.id, EDC_VUDF);
    EXPECT_EQ(record.second.id, EDC_VVAL);
    EXPECT_EQ(testdoor::UnexpectedBoxes(), 0);
}

TEST_F(Boxes, BoxWithoutTransferLeavesItsFieldToTheNextOne)
{
    struct {
        TEdcInt first = State(EDC_VVAL, 1);
        TEdcInt second = State(EDC_VVAL, 0);
    } record;
    tables.Add(DIALOG, "", {Line(RES_CHECK, BOX), Line(RES_CHECK, OTHER), Line(RES_CHECK, 103)});
    HookDialog dialog(DIALOG, &record);
    new TEdcCheckBox(&dialog, BOX, NULL, false, EDC_CfNOTRANSFER);
    new TEdcCheckBox(&dialog, OTHER);
    new TEdcCheckBox(&dialog, 103);
    dialog.Create();
    testdoor::DialogBox door(dialog);
    EXPECT_EQ(door.Check(BOX), WIN_UNCHECKED);
    EXPECT_EQ(door.Check(OTHER), WIN_CHECKED);
    EXPECT_EQ(door.Check(103), WIN_UNCHECKED);
    door.Click(BOX);
    door.Click(OTHER);
    door.Click(103);
    dialog.Close(1, false);
    EXPECT_EQ(record.first.value, 0);
    EXPECT_EQ(record.second.value, 1);
}

TEST_F(Boxes, GroupMeetsThoseAddedLastFirst)
{
    HookDialog dialog(DIALOG);
    auto *group = new TEdcCheckGroup(&dialog, GROUP);
    EXPECT_EQ(Order(*group), "");
    new TEdcCheckBox(&dialog, 101, group);
    new TEdcCheckBox(&dialog, 102, group);
    auto *late = new TEdcCheckBox(&dialog, 103);
    EXPECT_EQ(late->Group(), static_cast<TEdcCheckGroup *>(NULL));
    group->Add(late);
    EXPECT_EQ(Order(*group), "103 102 101 ");
    EXPECT_EQ(late->Group(), group);
}

TEST_F(Boxes, ThatGoLeaveTheirGroupWhole)
{
    const struct {
        std::vector<int> gone; // by the order of adding, from 0
        const char *left;
    } cases[] = {
        {{0}, "104 103 102 "}, {{1}, "104 103 101 "}, {{3}, "103 102 101 "}, {{1, 2}, "104 101 "},
        {{3, 0}, "103 102 "},  {{0, 1, 2, 3}, ""},    {{3, 2, 1, 0}, ""},
    };
    for (const auto &c : cases) {
        HookDialog dialog(DIALOG);
        auto *group = new TEdcCheckGroup(&dialog, GROUP);
        std::vector<TEdcCheckBox *> boxes;
        for (int id = 101; id <= 104; id++)
            boxes.push_back(new TEdcCheckBox(&dialog, id, group));
        for (int i : c.gone)
            delete boxes[i];
        EXPECT_EQ(Order(*group), c.left);
    }
}

TEST_F(Boxes, OutliveTheirGroupAndGoOnWithoutIt)
{
    tables.Add(DIALOG, "", {Line(RES_FRAME, GROUP, "Gruppe"), Line(RES_CHECK, BOX), Line(RES_CHECK, OTHER)});
    HookDialog dialog(DIALOG);
    auto *group = new TEdcCheckGroup(&dialog, GROUP);
    auto *box = new TEdcCheckBox(&dialog, BOX, group);
    auto *other = new TEdcCheckBox(&dialog, OTHER, group);
    dialog.Create();
    dialog.Take();
    delete group;
    EXPECT_EQ(box->Group(), static_cast<TEdcCheckGroup *>(NULL));
    testdoor::DialogBox(dialog).Click(BOX);
    EXPECT_EQ(dialog.Take(), "changed 101");
    TEdcCheckGroup *fresh = new TEdcCheckGroup(&dialog, GROUP);
    fresh->Add(box);
    fresh->Add(other);
    EXPECT_EQ(Order(*fresh), "102 101 ");
    testdoor::DialogBox(dialog).Click(BOX);
    EXPECT_EQ(dialog.Take(), "changed 101") << "made too late for a line of its own";
}

TEST_F(Boxes, MoveFromOneGroupToAnother)
{
    HookDialog dialog(DIALOG);
    auto *group = new TEdcCheckGroup(&dialog, GROUP);
    auto *another = new TEdcCheckGroup(&dialog, GROUP + 1);
    auto *box = new TEdcCheckBox(&dialog, BOX, group); // the last of its chain, so nothing follows it
    new TEdcCheckBox(&dialog, OTHER, group);
    another->Add(box);
    EXPECT_EQ(Order(*group), "102 ");
    EXPECT_EQ(Order(*another), "101 ");
    another->Add(box);
    EXPECT_EQ(Order(*another), "101 ") << "adding it again keeps it once";
}

TEST_F(Boxes, ClickInAGroupIsAClickOfTheGroupBeforeItIsTheBoxes)
{
    tables.Add(DIALOG, "", {Line(RES_FRAME, GROUP, "Gruppe"), Line(RES_CHECK, BOX), Line(RES_CHECK, OTHER)});
    HookDialog dialog(DIALOG);
    auto *group = new TEdcCheckGroup(&dialog, GROUP);
    auto *box = new TEdcCheckBox(&dialog, BOX, group);
    new TEdcCheckBox(&dialog, OTHER);
    std::string checked;
    dialog.behind = [&](const std::string &) { checked += box->IsChecked() ? "on " : "off "; };
    dialog.Create();
    EXPECT_EQ(dialog.Take(), "opened");
    testdoor::DialogBox door(dialog);
    door.Click(BOX);
    EXPECT_EQ(dialog.Take(), "changed 200, changed 101");
    EXPECT_EQ(checked, "off on on ");
    door.TypeKeys(" ");
    EXPECT_EQ(dialog.Take(), "changed 200, changed 101");
    door.Click(OTHER);
    EXPECT_EQ(dialog.Take(), "changed 102") << "in no group";
    box->SetCheck(WIN_UNCHECKED);
    group->Enable(false);
    door.Click(BOX);
    EXPECT_EQ(dialog.Take(), "");
}

TEST_F(Boxes, DialogMayCloseFromTheGroupsClick)
{
    tables.Add(DIALOG, "", {Line(RES_FRAME, GROUP, "Gruppe"), Line(RES_CHECK, BOX)});
    HookDialog dialog(DIALOG);
    auto *group = new TEdcCheckGroup(&dialog, GROUP);
    new TEdcCheckBox(&dialog, BOX, group);
    dialog.behind = [&](const std::string &call) {
        if (call == "changed 200")
            dialog.Close(7, true);
    };
    testdoor::Script([&](testdoor::ModalBox &modal) { testdoor::DialogBox(modal).Click(BOX); });
    EXPECT_EQ(dialog.Execute(), 7);
    EXPECT_EQ(dialog.Take(), "opened, changed 200") << "nothing comes to a dialog that has ended";
}

TEST_F(Boxes, AreDisabledWithTheirGroup)
{
    tables.Add(DIALOG, "", {Line(RES_FRAME, GROUP), Line(RES_CHECK, BOX), Line(RES_CHECK, OTHER)});
    HookDialog dialog(DIALOG);
    auto *group = new TEdcCheckGroup(&dialog, GROUP);
    new TEdcCheckBox(&dialog, BOX, group);
    new TEdcCheckBox(&dialog, OTHER, group);
    dialog.Create();
    testdoor::DialogBox door(dialog);
    for (bool on : {false, true}) {
        group->Enable(on);
        for (int id : {GROUP, BOX, OTHER})
            EXPECT_EQ(door.IsEnabled(id), on) << id;
    }
}

TEST_F(Boxes, GroupsTakeAndPassOnlyBoxesThatAreThere)
{
    HookDialog dialog(DIALOG);
    auto *group = new TEdcCheckGroup(&dialog, GROUP);
    auto *box = new TEdcCheckBox(&dialog, BOX, group);
    auto *other = new TEdcCheckBox(&dialog, OTHER, group);
    const char added[] = "ck != NULL && ck->next == NULL";
    EXPECT_TRUE(AbortsOnAssertion(added, file, [&] { group->Add(NULL); }));
    EXPECT_TRUE(AbortsOnAssertion(added, file, [&] { group->Add(other); }));
    EXPECT_TRUE(AbortsOnAssertion("ck != NULL", file, [&] { group->Next(NULL); }));
    EXPECT_EQ(group->Next(box), static_cast<TEdcCheckBox *>(NULL));
}

namespace
{
enum { TEXT = 1650, OTHER_TEXT = 1651, PICTURE = 1600, OTHER_PICTURE = 1601 };

/// A static and a button of each style, in a dialog.
struct Numbered {
    enum { LABEL = 10, PICTURED, BUTTON, PICTURE_BUTTON, RADIO };

    explicit Numbered(DialogTables &tables)
    {
        tables.Add(DIALOG, "",
                   {Line(RES_LABEL, LABEL, "Text"),
                    {RES_PICTURE, PICTURED, "", PICTURE, 0, 20, 20, 20, 0},
                    Line(RES_BUTTON, BUTTON, "Text"),
                    {RES_BUTTON, PICTURE_BUTTON, "", PICTURE, 40, 20, 20, 20, RES_BITMAP},
                    {RES_RADIO, RADIO, "", PICTURE, 80, 20, 20, 20, RES_BITMAP | RES_PUSH}});
        dialog = std::make_unique<HookDialog>(DIALOG);
        label = new TEdcStatic(dialog.get(), LABEL);
        pictured = new TEdcStatic(dialog.get(), PICTURED);
        button = new TEdcButton(dialog.get(), BUTTON);
        pictureButton = new TEdcButton(dialog.get(), PICTURE_BUTTON);
        radio = new TEdcRadioButton(dialog.get(), RADIO, NULL);
    }
    void SetAll(int text, int picture)
    {
        label->SetRes(text);
        button->SetRes(text);
        pictured->SetRes(picture);
        pictureButton->SetRes(picture);
        radio->SetRes(picture);
    }
    std::vector<TColor> Look(TControl &control) const
    {
        testdoor::Settle();
        return testdoor::ShownPixels(control);
    }

    std::unique_ptr<HookDialog> dialog;
    TEdcStatic *label, *pictured; // the dialog's, all of them
    TEdcButton *button, *pictureButton;
    TEdcRadioButton *radio;
};
} // namespace

TEST_F(Boxes, TextOfTheResourceStaysUntilANumberIsSet)
{
    Numbered numbered(tables);
    numbered.dialog->Create();
    EXPECT_EQ(numbered.label->Text(), "Text");
    EXPECT_EQ(numbered.button->Text(), "Text");
    const struct {
        int number;
        std::string text;
    } cases[] = {{TEXT, GetResString(TEXT)},
                 {OTHER_TEXT, GetResString(OTHER_TEXT)},
                 {0, ""},
                 {TEXT, GetResString(TEXT)},
                 {999999, ""}};
    EXPECT_NE(cases[0].text, cases[1].text);
    for (const auto &c : cases) {
        numbered.label->SetRes(c.number);
        numbered.button->SetRes(c.number);
        EXPECT_EQ(numbered.label->Text(), c.text);
        EXPECT_EQ(numbered.button->Text(), c.text);
    }
    numbered.label->SetText("frei");
    EXPECT_EQ(numbered.label->Text(), "frei");
}

TEST_F(Boxes, NumberIsShownAgainWithEveryWindow)
{
    Numbered numbered(tables);
    numbered.SetAll(TEXT, OTHER_PICTURE);
    EXPECT_EQ(numbered.label->Text(), "") << "there is no window";
    std::vector<TColor> first;
    for (int run = 0; run < 3; run++) {
        numbered.dialog->Create();
        EXPECT_EQ(numbered.label->Text(), GetResString(TEXT));
        EXPECT_EQ(numbered.button->Text(), GetResString(TEXT));
        std::vector<TColor> look = numbered.Look(*numbered.pictured);
        EXPECT_TRUE(run == 0 || look == first);
        first = look;
        numbered.label->SetText("frei");
        numbered.dialog->Destroy(2);
    }
}

TEST_F(Boxes, PicturesChangeWithTheirNumber)
{
    Numbered numbered(tables);
    numbered.dialog->Create();
    for (TControl *control :
         std::initializer_list<TControl *>{numbered.pictured, numbered.pictureButton, numbered.radio}) {
        numbered.SetAll(0, 0);
        auto empty = numbered.Look(*control);
        numbered.SetAll(0, PICTURE);
        auto one = numbered.Look(*control);
        numbered.SetAll(0, OTHER_PICTURE);
        auto other = numbered.Look(*control);
        EXPECT_TRUE(empty != one && one != other && empty != other) << control->Id();
        numbered.SetAll(0, 999999);
        EXPECT_EQ(numbered.Look(*control), empty) << control->Id();
        numbered.SetAll(0, PICTURE);
        EXPECT_EQ(numbered.Look(*control), one) << control->Id();
    }
}

TEST_F(Boxes, PicturesGoBeforeTheirWindowDoes)
{
    for (size_t which : {0, 1, 2}) {
        Numbered numbered(tables);
        numbered.dialog->Create();
        TControl *control =
            std::array<TControl *, 3>{numbered.pictured, numbered.pictureButton, numbered.radio}[which];
        auto own = numbered.Look(*control);
        control->CleanupWindow();
        EXPECT_EQ(numbered.Look(*control), own) << "the resource's own is the window's";
        numbered.SetAll(0, 0);
        auto empty = numbered.Look(*control);
        numbered.SetAll(0, OTHER_PICTURE);
        EXPECT_NE(numbered.Look(*control), empty);
        control->CleanupWindow();
        EXPECT_EQ(numbered.Look(*control), empty) << control->Id();
    }
}
