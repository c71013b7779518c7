// Drop-down lists under a user's hands: what each action reports and what is selected then, and what is typed.
#include "listfixture.h"

#include "win/testdoor.h"

namespace
{
struct GESTURE {
    const char *name;
    void (*act)(Lists &test, Door &door, int id);
    const char *codes;
    int selected; // afterwards; entry 1 of five stood before
};

/// Alike with an edit field and without.
const std::vector<GESTURE> dropGestures = {
    {"a click on the arrow", [](Lists &, Door &d, int id) { d.Drop(id); }, "7", 1},
    {"F4", [](Lists &, Door &d, int) { d.Press("F4"); }, "7", 1},
    {"Alt+Down", [](Lists &, Door &d, int) { d.Press("Alt+Down"); }, "7", 1},
    {"Alt+Up", [](Lists &, Door &d, int) { d.Press("Alt+Up"); }, "7", 1},
    {"a click on an entry", [](Lists &, Door &d, int id) { d.Choose(id, 2); }, "7 1 9 8", 2},
    {"a click on the entry that stands", [](Lists &, Door &d, int id) { d.Choose(id, 1); }, "7 9 8", 1},
    {"a drag from the arrow to an entry", [](Lists &, Door &d, int id) { d.DragFromArrow(id, 3); }, "7 1 9 8",
     3},
    {"arrow keys in the list",
     [](Lists &, Door &d, int id) {
         d.Drop(id);
         d.Press("Down");
         d.Press("Down");
         d.Press("Up");
     },
     "7 1 1 1", 2},
    {"an arrow key beyond the end of the list",
     [](Lists &, Door &d, int id) {
         d.Drop(id);
         d.Press("Up");
         d.Press("Up");
     },
     "7 1", 0},
    {"page keys in the list",
     [](Lists &, Door &d, int id) {
         d.Drop(id);
         d.Press("PgDown");
         d.Press("PgUp");
     },
     "7 1 1", 0},
    {"arrow keys and Return",
     [](Lists &, Door &d, int) {
         d.Press("F4");
         d.Press("Down");
         d.Press("Return");
     },
     "7 1 9 8", 2},
    {"Return at once",
     [](Lists &, Door &d, int id) {
         d.Drop(id);
         d.Press("Return");
     },
     "7 9 8", 1},
    {"the pointer over an entry",
     [](Lists &, Door &d, int id) {
         d.Drop(id);
         d.PointAt(id, 3);
     },
     "7", 1},
    {"the pointer over an entry and Return",
     [](Lists &, Door &d, int id) {
         d.Drop(id);
         d.PointAt(id, 3);
         d.Press("Return");
     },
     "7 1 9 8", 3},
    {"the pointer over an entry and an arrow key from there",
     [](Lists &, Door &d, int id) {
         d.Drop(id);
         d.PointAt(id, 3);
         d.Press("Down");
     },
     "7 1", 4},
    {"the pointer over an entry and Esc",
     [](Lists &, Door &d, int id) {
         d.Drop(id);
         d.PointAt(id, 3);
         d.Press("Esc");
     },
     "7 10 8", 1},
    {"arrow keys and Esc",
     [](Lists &, Door &d, int id) {
         d.Drop(id);
         d.Press("Down");
         d.Press("Down");
         d.Press("Esc");
     },
     "7 1 1 10 8", 1},
    {"Esc at once",
     [](Lists &, Door &d, int id) {
         d.Drop(id);
         d.Press("Esc");
     },
     "7 10 8", 1},
    {"arrow keys and a click beside",
     [](Lists &, Door &d, int id) {
         d.Drop(id);
         d.Press("Down");
         d.ClickBeside(id);
     },
     "7 1 10 8", 2},
    {"a click beside at once",
     [](Lists &, Door &d, int id) {
         d.Drop(id);
         d.ClickBeside(id);
     },
     "7 10 8", 1},
    {"the pointer over an entry and a click beside",
     [](Lists &, Door &d, int id) {
         d.Drop(id);
         d.PointAt(id, 3);
         d.ClickBeside(id);
     },
     "7 10 8", 1},
    {"arrow keys and F4",
     [](Lists &, Door &d, int id) {
         d.Drop(id);
         d.Press("Down");
         d.Press("F4");
     },
     "7 1 10 8", 2},
    {"arrow keys and Alt+Up",
     [](Lists &, Door &d, int id) {
         d.Drop(id);
         d.Press("Down");
         d.Press("Alt+Up");
     },
     "7 1 10 8", 2},
    {"a window that is deactivated",
     [](Lists &test, Door &d, int id) {
         d.Drop(id);
         d.Press("Down");
         testdoor::LoseActivation(*test.dialog);
     },
     "7 1 10 8", 2},
    {"a control that is disabled",
     [](Lists &test, Door &d, int id) {
         d.Drop(id);
         d.Press("Down");
         test.Drop(id)->EnableWindow(false);
         test.Drop(id)->EnableWindow(true);
     },
     "7 1 10 8", 2},
    {"a list that the program closes",
     [](Lists &test, Door &d, int id) {
         d.Drop(id);
         d.Press("Down");
         test.Drop(id)->ShowList(false);
     },
     "7 1 10 8", 2},
    {"a list that the program opens",
     [](Lists &test, Door &d, int id) {
         test.Drop(id)->ShowList(true);
         d.Press("Down");
         d.Press("Return");
     },
     "7 1 9 8", 2},
    {"two choices in turn",
     [](Lists &, Door &d, int id) {
         d.Choose(id, 3);
         d.Choose(id, 4);
     },
     "7 1 9 8 7 1 9 8", 4},
    {"arrow keys of the closed list",
     [](Lists &, Door &d, int) {
         d.Press("Down");
         d.Press("Up");
     },
     "9 1 9 1", 1},
    {"an arrow key of the closed list that cannot move",
     [](Lists &, Door &d, int) {
         d.Press("Up");
         d.Press("Up");
     },
     "9 1", 0},
    {"page keys of the closed list",
     [](Lists &, Door &d, int) {
         d.Press("PgDown");
         d.Press("PgUp");
         d.Press("PgUp");
     },
     "9 1 9 1", 0},
    {"the wheel over the closed list", [](Lists &test, Door &, int id) { test.Turn(id, -2); }, "9 1 9 1", 3},
    {"the wheel away from the user", [](Lists &test, Door &, int id) { test.Turn(id, 3); }, "9 1", 0},
    {"the wheel over the open list",
     [](Lists &test, Door &d, int id) {
         d.Drop(id);
         test.Turn(id, -2);
     },
     "7", 1},
    {"Return on the closed list", [](Lists &, Door &d, int) { d.Press("Return"); }, "", 1},
    {"Esc on the closed list", [](Lists &, Door &d, int) { d.Press("Esc"); }, "", 1},
    {"Ctrl with an arrow key", [](Lists &, Door &d, int) { d.Press("Ctrl+Down"); }, "", 1},
};

const std::vector<GESTURE> choiceGestures = {
    {"a click on the closed list", [](Lists &, Door &d, int id) { d.Click(id); }, "7", 1},
    {"a click on the open list",
     [](Lists &, Door &d, int id) {
         d.Click(id);
         d.Press("Down");
         d.Drop(id);
     },
     "7 1 10 8", 2},
    {"Home and End in the list",
     [](Lists &, Door &d, int id) {
         d.Drop(id);
         d.Press("End");
         d.Press("Home");
     },
     "7 1 1", 0},
    {"Left and Right in the list",
     [](Lists &, Door &d, int id) {
         d.Drop(id);
         d.Press("Right");
         d.Press("Right");
         d.Press("Left");
     },
     "7 1 1 1", 2},
    {"a letter in the list",
     [](Lists &, Door &d, int id) {
         d.Drop(id);
         d.TypeKeys("z");
     },
     "7 1", 4},
    {"a letter in the list and Return",
     [](Lists &, Door &d, int id) {
         d.Drop(id);
         d.TypeKeys("k");
         d.Press("Return");
     },
     "7 1 9 8", 3},
    {"a letter that no entry begins with",
     [](Lists &, Door &d, int id) {
         d.Drop(id);
         d.TypeKeys("x");
     },
     "7", 1},
    {"Home and End of the closed list",
     [](Lists &, Door &d, int) {
         d.Press("End");
         d.Press("Home");
     },
     "9 1 9 1", 0},
    {"Left and Right of the closed list",
     [](Lists &, Door &d, int) {
         d.Press("Right");
         d.Press("Left");
     },
     "9 1 9 1", 1},
    {"a letter of the closed list", [](Lists &, Door &d, int) { d.TypeKeys("k"); }, "9 1", 3},
    {"a letter of the closed list that goes on to the next", [](Lists &, Door &d, int) { d.TypeKeys("b"); },
     "9 1", 2},
    {"letters of the closed list", [](Lists &, Door &d, int) { d.TypeKeys("bi"); }, "9 1", 2},
    {"a letter of the closed list that no entry begins with", [](Lists &, Door &d, int) { d.TypeKeys("x"); },
     "", 1},
};

const std::vector<GESTURE> comboGestures = {
    {"letters in the field", [](Lists &, Door &d, int id) { d.Type(id, "Birke"); }, "", -1},
    {"letters while the list is open",
     [](Lists &, Door &d, int id) {
         d.Drop(id);
         d.TypeKeys("x");
     },
     "7", -1},
    {"letters while the list is open, and Return",
     [](Lists &, Door &d, int id) {
         d.Drop(id);
         d.TypeKeys("x");
         d.Press("Return");
     },
     "7 9 8", -1},
    {"letters while the list is open, and Esc",
     [](Lists &, Door &d, int id) {
         d.Drop(id);
         d.TypeKeys("x");
         d.Press("Esc");
     },
     "7 10 8", 1},
    {"a click into the field", [](Lists &, Door &d, int id) { d.Click(id); }, "", 1},
    {"Home and End in the field",
     [](Lists &, Door &d, int) {
         d.Press("Home");
         d.Press("End");
     },
     "", 1},
    {"an entry taken after letters",
     [](Lists &, Door &d, int id) {
         d.Type(id, "Birke");
         d.Choose(id, 1);
     },
     "7 1 9 8", 1},
    {"an arrow key after letters",
     [](Lists &, Door &d, int id) {
         d.Type(id, "Birke");
         d.Press("Down");
     },
     "9 1", 0},
};
/// Each action on the list with entry 1 selected and the focus on it.
void CheckAll(Lists &test, const std::vector<GESTURE> &gestures, int id)
{
    Door door = test.OpenWith(materials);
    for (const GESTURE &gesture : gestures) {
        door.Click(FIELD);
        test.Drop(id)->SetSelIndex(1);
        test.Drop(id)->TakeFocus();
        test.Forget();
        gesture.act(test, door, id);
        EXPECT_EQ(test.Codes(id), gesture.codes) << gesture.name;
        EXPECT_EQ(test.Drop(id)->GetSelIndex(), gesture.selected) << gesture.name;
        EXPECT_EQ(door.Selected(id), gesture.selected) << gesture.name;
        if (door.IsDropped(id))
            door.Press("Esc");
        testdoor::Settle();
    }
}
} // namespace

TEST_F(Lists, GesturesOnADropListReportWhatTheUserDid)
{
    CheckAll(*this, dropGestures, CHOICE);
    CheckAll(*this, choiceGestures, CHOICE);
}

TEST_F(Lists, GesturesOnAListWithAnEditFieldReportWhatTheUserDid)
{
    CheckAll(*this, dropGestures, COMBO);
    CheckAll(*this, comboGestures, COMBO);
}

TEST_F(Lists, TellOfTheFocusThatComesAndNotOfTheOneThatTheListGivesBack)
{
    Door door = OpenWith(materials);
    for (int id : {CHOICE, COMBO}) {
        door.Click(FIELD);
        door.Press("Home"); // a key makes the window the active one on every desktop
        Forget();
        door.Drop(id);
        door.Press("Return");
        EXPECT_EQ(Codes(id), "3 7 9 8") << "by the mouse";
        door.Click(FIELD);
        Forget();
        door.Press(id == CHOICE ? "Tab" : "Backtab");
        if (id == COMBO)
            door.Press("Backtab"); // past the list box
        EXPECT_EQ(door.Focus(), id);
        EXPECT_EQ(Codes(id), "3") << "by Tab";
    }
}

TEST_F(Lists, TabLeavesTheOpenListWithWhatItHasAndGoesOn)
{
    Door door = OpenWith(materials);
    const struct {
        int id;
        const char *key;
        int next;
    } rows[] = {{CHOICE, "Tab", COMBO}, {COMBO, "Tab", BOX}, {COMBO, "Shift+Tab", CHOICE}};
    for (const auto &row : rows) {
        Drop(row.id)->SetSelIndex(1);
        Drop(row.id)->TakeFocus();
        door.Press("F4");
        door.Press("Down");
        Forget();
        door.Press(row.key);
        EXPECT_EQ(Codes(row.id), "10 8") << row.key;
        EXPECT_FALSE(door.IsDropped(row.id));
        EXPECT_EQ(Drop(row.id)->GetSelIndex(), 2);
        EXPECT_EQ(door.Focus(), row.next) << row.key;
    }
}

TEST_F(Lists, ReturnAndEscInAnOpenListAreNotTheDialogs)
{
    Door door = OpenWith(materials);
    for (int id : {CHOICE, COMBO})
        for (const char *key : {"Return", "Esc", "Enter"}) {
            door.Drop(id);
            Forget();
            door.Press(key);
            EXPECT_EQ(diary.Read().find("key"), std::string::npos) << id << key;
            EXPECT_FALSE(door.IsDropped(id));
            door.Press(key);
            EXPECT_NE(diary.Read().find(*key == 'E' && key[1] == 's' ? "key2/0" : "key1/0"), std::string::npos)
                << id << key;
        }
}

TEST_F(Lists, AnEmptyListDoesNotOpenAndMovesNowhere)
{
    Door door = OpenWith({});
    for (int id : {CHOICE, COMBO}) {
        Drop(id)->TakeFocus();
        Forget();
        door.Drop(id);
        for (const char *key : {"F4", "Alt+Down", "Down", "PgUp", "End"})
            door.Press(key);
        Turn(id, -1);
        EXPECT_FALSE(door.IsDropped(id));
        EXPECT_EQ(Codes(id), "");
        EXPECT_EQ(Drop(id)->GetSelIndex(), -1);
    }
    box->TakeFocus();
    door.TypeKeys("a");
    for (const char *key : {"Down", "PgUp", "End"})
        door.Press(key);
    EXPECT_EQ(Codes(BOX), "");
    EXPECT_EQ(box->GetSelIndex(), -1);
}

TEST_F(Lists, AListWithoutASelectionBeginsAtItsFirstEntry)
{
    for (const char *key : {"Down", "Up", "PgUp", "Home"}) {
        Door door = OpenWith(materials);
        choice->TakeFocus();
        Forget();
        door.Press(key);
        EXPECT_EQ(Codes(CHOICE), "9 1") << key;
        EXPECT_EQ(choice->GetSelIndex(), 0) << key;
        box->TakeFocus();
        EXPECT_EQ(box->GetSelIndex(), -1) << "the focus alone selects nothing";
        door.Press(key);
        EXPECT_EQ(Codes(BOX), "1") << key;
        EXPECT_EQ(box->GetSelIndex(), 0) << key;
    }
}

TEST_F(Lists, TheWheelChangesOnlyWhatHasTheFocus)
{
    Door door = OpenWith(materials);
    for (int id : {CHOICE, COMBO}) {
        Drop(id)->SetSelIndex(1);
        door.Click(FIELD);
        Forget();
        Turn(id, -1);
        EXPECT_EQ(Codes(id), "");
        EXPECT_EQ(Drop(id)->GetSelIndex(), 1);
    }
}

TEST_F(Lists, WhatIsTypedStaysAndUnselects)
{
    Door door = OpenWith(materials);
    const struct {
        const char *name;
        void (*act)(Door &);
        const char *text;
    } rows[] = {
        {"a letter more",
         [](Door &d) {
             d.Press("End");
             d.TypeKeys("x");
         },
         "Betonx"},
        {"the text of another entry", [](Door &d) { d.Type(COMBO, "Kork"); }, "Kork"},
        {"the text of the entry itself", [](Door &d) { d.Type(COMBO, "Beton"); }, "Beton"},
        {"the beginning of an entry is not completed", [](Door &d) { d.Type(COMBO, "Zie"); }, "Zie"},
        {"nothing", [](Door &d) { d.Type(COMBO, ""); }, ""},
        {"a pasted entry", [](Door &d) { d.Paste(COMBO, "Ziegel"); }, "Ziegel"},
        {"a letter less and the same again",
         [](Door &d) {
             d.Press("End");
             d.Press("Backspace");
             d.TypeKeys("n");
         },
         "Beton"},
        {"letters in the open list go to the field",
         [](Door &d) {
             d.Drop(COMBO);
             d.Press("End");
             d.TypeKeys("b\xC3\xA4r");
             d.Press("Return");
         },
         "Betonb\xE4r"},
        {"an entry, then letters behind it",
         [](Door &d) {
             d.Press("Down");
             d.Press("End");
             d.TypeKeys("nholz");
         },
         "Birkenholz"},
    };
    for (const auto &row : rows) {
        combo->SetSelIndex(1);
        combo->TakeFocus();
        row.act(door);
        EXPECT_EQ(combo->Text(), row.text) << row.name;
        EXPECT_EQ(combo->GetSelIndex(), -1) << row.name;
        if (door.Focus() == COMBO)
            door.Press("Tab");
        EXPECT_EQ(combo->Text(), row.text) << row.name << ", left by Tab";
        EXPECT_EQ(combo->GetSelIndex(), -1) << row.name << ", left by Tab";
        combo->TakeFocus();
        door.Press("Return");
        EXPECT_EQ(combo->GetSelIndex(), -1) << row.name << ", then Return";
    }
}

TEST_F(Lists, TypingCanBeUndoneUpToTheEntryThatWasTaken)
{
    Door door = OpenWith(materials);
    combo->TakeFocus();
    door.Choose(COMBO, 2);
    EXPECT_EQ(door.SelectedText(COMBO), "Birke") << "an entry that was taken can be typed over";
    door.Press("End");
    door.TypeKeys("n");
    door.Press("Ctrl+Z");
    EXPECT_EQ(combo->Text(), "Birke");
    EXPECT_EQ(combo->GetSelIndex(), -1);
}

TEST_F(Lists, EscBringsBackWhatStoodWhenTheListDropped)
{
    Door door = OpenWith(materials);
    combo->TakeFocus();
    door.Type(COMBO, "eigenes");
    door.Press("F4");
    door.Press("Down");
    door.Press("Down");
    EXPECT_EQ(combo->Text(), "Beton");
    door.Press("Esc");
    EXPECT_EQ(combo->Text(), "eigenes");
    EXPECT_EQ(combo->GetSelIndex(), -1);
    choice->SetSelIndex(-1);
    door.Drop(CHOICE);
    door.Press("Down");
    door.Press("Esc");
    EXPECT_EQ(choice->GetSelIndex(), -1);
    EXPECT_EQ(choice->Text(), "");
}

TEST_F(Lists, AFieldIsBoundAsAnyField)
{
    struct POINTS : TValidator {
        POINTS() { options = WIN_VALIDATOR_POINT; }
    } points;
    Make({Line(RES_COMBO, COMBO)});
    combo = new TComboBox(dialog.get(), COMBO, 8);
    combo->SetInputRules(&points);
    Door door = Open();
    door.Type(COMBO, "1,5");
    EXPECT_EQ(combo->Text(), "1.5") << "the comma key types a point";
    door.Paste(COMBO, "1,5");
    EXPECT_EQ(combo->Text(), "1,5") << "what is pasted stays";
    combo->SetInputRules(NULL);
    door.Type(COMBO, "1,5");
    EXPECT_EQ(combo->Text(), "1,5");
    beeps.Read();
    door.Type(COMBO, "123456789");
    EXPECT_EQ(combo->Text(), "1234567");
    door.Type(COMBO, "\xCE\xA9");
    EXPECT_EQ(combo->Text().find('?'), std::string::npos);
    EXPECT_GT(beeps.Read(), 0) << "the set has no omega";
    door.Paste(COMBO, "a\nb");
    EXPECT_EQ(combo->Text(), "a b");
    combo->SetText("zu langer Text");
    EXPECT_EQ(combo->Text(), "zu lang");
    EXPECT_EQ(combo->GetSelIndex(), -1);
    dialog.reset();
}

TEST_F(Lists, JumpToTheLettersThatAreTyped)
{
    const std::vector<const char *> cities = {"Aachen",   "Ärmel", "Berlin", "bochum", "Bonn",    "bonn-beuel",
                                              "Öhringen", "Ulm",   "Über",   "ßtra",   "1 Halle", "San Remo"};
    const struct {
        int from; // what is selected before
        const char *typed;
        int to;
    } rows[] = {
        {-1, "b", 2},        {2, "b", 3},        {3, "b", 4},         {5, "b", 2},   {-1, "B", 2},
        {2, "bb", 4},        {-1, "bo", 3},      {2, "bon", 4},       {4, "bon", 5}, {-1, "bonn-", 5},
        {0, "\xC3\xA4", 1},  {0, "\xC3\x84", 1}, {0, "a", 0},         {1, "a", 0},   {-1, "\xC3\xB6", 6},
        {-1, "\xC3\xBC", 8}, {-1, "u", 7},       {-1, "\xC3\x9F", 9}, {-1, "1", 10}, {-1, "1 h", 10},
        {-1, "san r", 11},   {3, "x", 3},        {3, "bx", 4},        {-1, "x", -1}, {-1, "\xCE\xA9", -1},
    };
    Door door = OpenWith(cities);
    for (const auto &row : rows) {
        for (bool open : {false, true}) {
            door.Click(FIELD); // what was typed before counts no more
            choice->SetSelIndex(row.from);
            choice->TakeFocus();
            if (open)
                door.Press("F4");
            door.TypeKeys(row.typed);
            EXPECT_EQ(choice->GetSelIndex(), row.to) << row.from << " " << row.typed << " " << open;
            if (open)
                door.Press("Return");
        }
        door.Click(FIELD);
        box->SetSelIndex(row.from);
        box->TakeFocus();
        door.TypeKeys(row.typed);
        EXPECT_EQ(box->GetSelIndex(), row.to) << "list box: " << row.from << " " << row.typed;
    }
}

TEST_F(Lists, AnArrowKeyEndsTheWordThatIsTyped)
{
    Door door = OpenWith({"Bonn", "Bern", "Oslo", "Emden"});
    for (TControl *list : {static_cast<TControl *>(choice), static_cast<TControl *>(box)}) {
        list->TakeFocus();
        door.TypeKeys("b");
        door.Press("Down");
        door.TypeKeys("e");
        EXPECT_EQ(door.Selected(list->Id()), 3) << "Emden, and not Bern";
    }
}

