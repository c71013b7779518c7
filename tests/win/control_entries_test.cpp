// Entries of drop-down lists and list boxes: their order, their data, what the program does with them in
// silence; list boxes under a user's hands; and hearers that do away with the dialog.
#include "listfixture.h"

#include "lib/platform.h"
#include "support/chance.h"
#include "support/fault.h"
#include "win/testdoor.h"

#include <algorithm>
#include <memory>

#include "lib/xon.h"

TEST_F(Lists, WhatTheProgramDoesIsNotReported)
{
    Door door = OpenWith(materials);
    for (bool open : {false, true}) {
        for (int id : {CHOICE, COMBO}) {
            TComboBox *list = Drop(id);
            list->SetSelIndex(1);
            if (open)
                door.Drop(id);
            Forget();
            list->SetSelIndex(3);
            list->AddString("Neu");
            list->InsertString(0, "Zuerst");
            list->SetItemData(2, 77);
            list->SetText("frei");
            list->SetEditSelection(0, -1);
            list->DeleteString(0);
            list->SetSelIndex(-1);
            list->SetInputRules(NULL);
            list->SetSelIndex(2);
            list->DeleteString(2);
            list->ClearList();
            list->AddString("Letzter");
            EXPECT_TRUE(heard.empty()) << id << open;
            EXPECT_EQ(list->GetSelIndex(), -1);
            if (open)
                door.Press("Esc");
            list->ClearList();
            for (const char *entry : materials)
                list->AddString(entry);
        }
    }
    Forget();
    box->SetSelIndex(3);
    box->AddString("Neu");
    box->InsertString(0, "Zuerst");
    box->SetItemData(2, 77);
    box->SetTopIndex(2);
    box->SetRedraw(false);
    box->DeleteString(box->GetSelIndex());
    box->SetRedraw(true);
    box->SetSelIndex(-1);
    box->ClearList();
    EXPECT_TRUE(heard.empty());
}

TEST_F(Lists, WithoutAWindowReadAsEmptyAndKeepNothing)
{
    Make({Line(RES_CHOICE, CHOICE), Line(RES_COMBO, COMBO), BoxLine()});
    TComboBox &list = *new TComboBox(dialog.get(), CHOICE); // the dialog's
    TListBox &other = *new TListBox(dialog.get(), BOX);
    EXPECT_LT(list.AddString("a"), 0);
    EXPECT_LT(list.InsertString(0, "a"), 0);
    EXPECT_LT(other.AddString("a"), 0);
    EXPECT_LT(other.InsertString(0, "a"), 0);
    list.SetItemData(0, 1);
    list.SetSelIndex(0);
    list.SetText("a");
    list.SetEditSelection(0, 1);
    list.ShowList(true);
    list.DeleteString(0);
    list.ClearList();
    other.SetTopIndex(3);
    other.SetRedraw(true);
    EXPECT_EQ(list.GetCount(), 0);
    EXPECT_EQ(list.GetString(0), "");
    EXPECT_EQ(list.GetItemData(0), 0);
    EXPECT_EQ(list.GetSelIndex(), -1);
    EXPECT_FALSE(list.HasEdit());
    EXPECT_EQ(other.GetCount(), 0);
    EXPECT_EQ(other.GetSelIndex(), -1);
    EXPECT_EQ(other.GetTopIndex(), 0);
    Open();
    EXPECT_EQ(list.GetCount(), 0) << "nothing was kept for later";
    EXPECT_EQ(other.GetCount(), 0);
}

TEST_F(Lists, AnswerNothingBesideTheirEntries)
{
    OpenWith(materials);
    for (int beside : {-1, 5, 1000000}) {
        EXPECT_EQ(choice->GetString(beside), "");
        EXPECT_EQ(choice->GetItemData(beside), 0);
        EXPECT_EQ(box->GetString(beside), "");
        choice->SetItemData(beside, 9);
        choice->DeleteString(beside);
        box->DeleteString(beside);
        choice->SetSelIndex(2);
        choice->SetSelIndex(beside);
        EXPECT_EQ(choice->GetSelIndex(), -1);
        box->SetSelIndex(beside);
        EXPECT_EQ(box->GetSelIndex(), -1);
    }
    EXPECT_LT(choice->InsertString(6, "zu weit"), 0);
    EXPECT_LT(box->InsertString(-1, "davor"), 0);
    EXPECT_EQ(choice->GetCount(), 5);
    EXPECT_EQ(box->GetCount(), 5);
}

TEST_F(Lists, KnowTheirKind)
{
    OpenWith({});
    EXPECT_FALSE(choice->HasEdit());
    EXPECT_TRUE(combo->HasEdit());
    EXPECT_STREQ(WindowClass(choice->GetHandle()), "COMBOBOX");
    EXPECT_STREQ(WindowClass(box->GetHandle()), "LISTBOX");
    EXPECT_EQ(choice->Style() & WIN_STYLE_KIND, WIN_CBS_DROPDOWNLIST);
    EXPECT_EQ(combo->Style() & WIN_STYLE_KIND, WIN_CBS_DROPDOWN);
    EXPECT_EQ(box->Style() & WIN_STYLE_KIND, WIN_LBS_NOTIFY);
}

TEST_F(Lists, StandInTheOrderOfAddingUnlessTheySort)
{
    Door door = OpenWith({"b", "a", "c"});
    EXPECT_EQ(door.Entries(CHOICE), (std::vector<std::string>{"b", "a", "c"}));
    EXPECT_EQ(choice->InsertString(1, "d"), 1);
    EXPECT_EQ(choice->AddString("aa"), 4);
    EXPECT_EQ(door.Entries(CHOICE), (std::vector<std::string>{"b", "d", "a", "c", "aa"}));
}

TEST_F(Lists, SortInThePlatformsOrder)
{
    TestServices services;
    Door door = OpenWith(
        {"Zange", "ärmel", "apfel", "Straße", "Apfel", "Ähre", "strasse", "Öl", "Ofen", "10", "9"}, RES_SORT);
    std::vector<std::string> expected;
    for (const char *entry :
         {"10", "9", "Ähre", "apfel", "Apfel", "ärmel", "Ofen", "Öl", "strasse", "Straße", "Zange"})
        expected.push_back(FromUtf8(entry));
    EXPECT_EQ(door.Entries(CHOICE), expected);
    EXPECT_EQ(door.Entries(COMBO), expected);
    EXPECT_EQ(door.Entries(BOX), expected);
    EXPECT_EQ(choice->InsertString(0, "Zuletzt"), 0) << "InsertString puts where it is told";
    EXPECT_EQ(choice->GetString(0), "Zuletzt");
}

TEST_F(Lists, EqualTextsOfASortedListStandInTheOrderOfAdding)
{
    OpenWith({"b", "a"}, RES_SORT);
    for (int i = 1; i <= 5; ++i) {
        int index = choice->AddString("a");
        EXPECT_EQ(index, i);
        choice->SetItemData(index, i);
    }
    for (int i = 1; i <= 5; ++i)
        EXPECT_EQ(choice->GetItemData(i), i);
    EXPECT_EQ(choice->GetString(6), "b");
}

TEST_F(Lists, TwoThousandEntriesSortAsAStableSortDoes)
{
    TestServices services;
    OpenWith({}, RES_SORT);
    CHANCE chance(4711);
    struct ENTRY {
        std::string text;
        int data;
    };
    std::vector<ENTRY> twin;
    for (int i = 0; i < 2000; ++i) {
        std::string text(static_cast<size_t>(chance.Int(0, 3)), ' ');
        for (char &c : text)
            c = "aAbB\xE4\xC4zZ1 "[chance.Int(0, 9)];
        twin.push_back({text, i});
        choice->SetItemData(choice->AddString(text.c_str()), i);
        box->SetItemData(box->AddString(text.c_str()), i);
    }
    std::stable_sort(twin.begin(), twin.end(), [](const ENTRY &a, const ENTRY &b) {
        return Collate(a.text.c_str(), b.text.c_str(), false) < 0;
    });
    ASSERT_EQ(choice->GetCount(), 2000);
    ASSERT_EQ(box->GetCount(), 2000);
    for (int i = 0; i < 2000; ++i) {
        const ENTRY &entry = twin[static_cast<size_t>(i)];
        ASSERT_EQ(choice->GetString(i), entry.text) << i;
        ASSERT_EQ(choice->GetItemData(i), entry.data) << i;
        ASSERT_EQ(box->GetString(i), entry.text) << i;
        ASSERT_EQ(box->GetItemData(i), entry.data) << i;
    }
}

TEST_F(Lists, EveryCharacterOfTheSetComesBackAsItWasAdded)
{
    OpenWith({});
    std::string all;
    for (int c = 1; c < 256; ++c)
        all += static_cast<char>(c);
    choice->AddString(all.c_str());
    box->AddString(all.c_str());
    EXPECT_EQ(choice->GetString(0), all);
    EXPECT_EQ(box->GetString(0), all);
}

TEST_F(Lists, SelectionAndDataGoWithTheirEntry)
{
    OpenWith(materials);
    for (int i = 0; i < 5; ++i) {
        choice->SetItemData(i, 100 + i);
        combo->SetItemData(i, 100 + i);
        box->SetItemData(i, 100 + i);
    }
    for (TComboBox *list : {choice, combo}) {
        list->SetSelIndex(2);
        list->InsertString(0, "davor");
        EXPECT_EQ(list->GetSelIndex(), 3);
        list->InsertString(4, "dahinter");
        list->DeleteString(0);
        list->DeleteString(1);
        EXPECT_EQ(list->GetSelIndex(), 1);
        EXPECT_EQ(list->GetItemData(1), 102);
        EXPECT_EQ(list->GetString(1), "Birke");
        EXPECT_EQ(list->Text(), "Birke");
    }
    box->SetSelIndex(2);
    box->InsertString(0, "davor");
    EXPECT_EQ(box->GetSelIndex(), 3);
    box->DeleteString(0);
    box->DeleteString(1);
    EXPECT_EQ(box->GetSelIndex(), 1);
    EXPECT_EQ(box->GetItemData(1), 102);
}

TEST_F(Lists, NothingIsSelectedOnceTheSelectedEntryIsGone)
{
    for (int gone : {0, 2, 4}) {
        OpenWith(materials);
        for (TComboBox *list : {choice, combo}) {
            list->SetSelIndex(gone);
            list->DeleteString(gone);
            EXPECT_EQ(list->GetSelIndex(), -1) << gone;
        }
        EXPECT_EQ(choice->Text(), "");
        EXPECT_EQ(combo->Text(), materials[static_cast<size_t>(gone)]) << "a field keeps its text";
        box->SetSelIndex(gone);
        box->DeleteString(gone);
        EXPECT_EQ(box->GetSelIndex(), -1) << gone;
    }
}

TEST_F(Lists, AnEmptiedListAndANewFirstEntrySelectNothing)
{
    OpenWith(materials);
    for (TComboBox *list : {choice, combo}) {
        list->SetSelIndex(1);
        list->ClearList();
        EXPECT_EQ(list->GetCount(), 0);
        EXPECT_EQ(list->GetSelIndex(), -1);
        EXPECT_EQ(list->Text(), "");
        list->AddString("neu");
        EXPECT_EQ(list->GetSelIndex(), -1);
        EXPECT_EQ(list->Text(), "");
        list->DeleteString(0);
    }
    combo->SetText("frei");
    combo->AddString("neu");
    EXPECT_EQ(combo->Text(), "frei") << "what stands in the field outlives the first entry";
    combo->DeleteString(0);
    EXPECT_EQ(combo->Text(), "frei") << "and the last one that goes";
    EXPECT_EQ(combo->GetSelIndex(), -1);
}

TEST_F(Lists, ASelectionByTheProgramShowsInTheField)
{
    Door door = OpenWith(materials);
    combo->SetSelIndex(3);
    EXPECT_EQ(combo->Text(), "Kork");
    combo->SetText("Birke");
    EXPECT_EQ(combo->Text(), "Birke");
    EXPECT_EQ(combo->GetSelIndex(), -1) << "even where the text reads like an entry";
    combo->SetSelIndex(-1);
    EXPECT_EQ(combo->Text(), "");
    combo->SetSelIndex(3);
    combo->SetEditSelection(1, 3);
    EXPECT_EQ(door.SelectedText(COMBO), "or");
    choice->SetSelIndex(2);
    choice->SetText("egal");
    EXPECT_EQ(choice->Text(), "Birke");
    choice->SetSelIndex(-1);
    EXPECT_EQ(choice->Text(), "");
}

TEST_F(Lists, AnOpenListShowsUpToTwelveEntries)
{
    const struct {
        int count;
        int shown;
    } rows[] = {{1, 1}, {5, 5}, {12, 12}, {13, 12}, {200, 12}};
    for (const auto &row : rows) {
        Door door = OpenMany(row.count);
        for (int id : {CHOICE, COMBO}) {
            door.Drop(id);
            EXPECT_EQ(door.Dropped(id).shown, row.shown) << row.count;
            door.Press("Esc");
        }
    }
}

TEST_F(Lists, AnOpenListIsWideEnoughForItsLongestEntryAndStaysOnTheScreen)
{
    Door door = OpenWith(
        {"kurz", "ein Eintrag, der sehr viel breiter ist als das Feld, in dem er steht, wenn es zu ist",
         "mittel"});
    for (bool many : {false, true}) {
        for (int i = 0; many && i < 20; ++i) {
            choice->AddString("weiterer");
            combo->AddString("weiterer");
        }
        for (int id : {CHOICE, COMBO}) {
            door.Drop(id);
            testdoor::DroppedList list = door.Dropped(id);
            EXPECT_FALSE(list.isCut) << id << many;
            EXPECT_GE(list.rect.Width(), list.field.Width());
            EXPECT_GE(list.rect.left, list.screen.left);
            EXPECT_LE(list.rect.right, list.screen.right);
            EXPECT_TRUE(list.rect.top >= list.field.bottom - 1 || list.rect.bottom <= list.field.top + 1);
            door.Press("Esc");
        }
    }
}

TEST_F(Lists, AListBoxTellsOfEachChangeOfItsSelection)
{
    const struct {
        const char *name;
        void (*act)(Door &);
        const char *codes;
        int selected; // entry 1 of five stood before
    } rows[] = {
        {"a click", [](Door &d) { d.ClickEntry(BOX, 3); }, "1", 3},
        {"a click on the selected entry", [](Door &d) { d.ClickEntry(BOX, 1); }, "", 1},
        {"a double click", [](Door &d) { d.ClickEntry(BOX, 3, true); }, "1 2", 3},
        {"a double click on the selected entry", [](Door &d) { d.ClickEntry(BOX, 1, true); }, "2", 1},
        {"a drag", [](Door &d) { d.DragEntries(BOX, 1, 3); }, "1", 3},
        {"a drag out at the end", [](Door &d) { d.DragEntries(BOX, 3, 5); }, "1 1", 4},
        {"a drag out at the beginning", [](Door &d) { d.DragEntries(BOX, 1, -1); }, "1", 0},
        {"Down", [](Door &d) { d.Press("Down"); }, "1", 2},
        {"Right", [](Door &d) { d.Press("Right"); }, "1", 2},
        {"Up", [](Door &d) { d.Press("Up"); }, "1", 0},
        {"Left", [](Door &d) { d.Press("Left"); }, "1", 0},
        {"beyond the beginning",
         [](Door &d) {
             d.Press("Up");
             d.Press("Up");
         },
         "1", 0},
        {"End and beyond",
         [](Door &d) {
             d.Press("End");
             d.Press("Down");
         },
         "1", 4},
        {"Home", [](Door &d) { d.Press("Home"); }, "1", 0},
        {"PgDown", [](Door &d) { d.Press("PgDown"); }, "1", 4},
        {"PgUp", [](Door &d) { d.Press("PgUp"); }, "1", 0},
        {"a letter", [](Door &d) { d.TypeKeys("z"); }, "1", 4},
        {"a letter that no entry begins with", [](Door &d) { d.TypeKeys("x"); }, "", 1},
        {"Return", [](Door &d) { d.Press("Return"); }, "", 1},
        {"Esc", [](Door &d) { d.Press("Esc"); }, "", 1},
        {"Tab", [](Door &d) { d.Press("Tab"); }, "", 1},
        {"Ctrl+A", [](Door &d) { d.Press("Ctrl+A"); }, "", 1},
        {"two steps",
         [](Door &d) {
             d.Press("Down");
             d.Press("Down");
         },
         "1 1", 3},
    };
    Door door = OpenWith(materials);
    for (const auto &row : rows) {
        box->SetSelIndex(1);
        box->TakeFocus();
        Forget();
        row.act(door);
        EXPECT_EQ(Codes(BOX), row.codes) << row.name;
        EXPECT_EQ(box->GetSelIndex(), row.selected) << row.name;
        EXPECT_EQ(door.Selected(BOX), row.selected) << row.name;
    }
}

TEST_F(Lists, AClickBesideTheEntriesOfAListBoxChangesNothing)
{
    Door door = OpenWith({"eins", "zwei"});
    box->SetSelIndex(1);
    Forget();
    door.Click(BOX); // its middle, which is below the entries
    door.DoubleClick(BOX);
    EXPECT_EQ(Codes(BOX), "");
    EXPECT_EQ(box->GetSelIndex(), 1);
    EXPECT_EQ(door.Focus(), BOX);
}

TEST_F(Lists, ReturnAndEscInAListBoxAreTheDialogs)
{
    Door door = OpenWith(materials);
    box->TakeFocus();
    Forget();
    door.Press("Return");
    EXPECT_EQ(diary.Read(), "key1/0");
    door.Press("Esc");
    EXPECT_EQ(diary.Read(), "key2/0");
}

TEST_F(Lists, AListBoxScrollsToItsSelectionAndWhereItIsTold)
{
    Door door = OpenMany(100);
    EXPECT_EQ(box->GetTopIndex(), 0);
    box->SetTopIndex(40);
    EXPECT_EQ(box->GetTopIndex(), 40);
    box->SetSelIndex(10);
    EXPECT_EQ(box->GetTopIndex(), 10) << "the entry comes into view";
    box->SetSelIndex(11);
    EXPECT_EQ(box->GetTopIndex(), 10) << "one that shows moves nothing";
    box->SetTopIndex(1000);
    int last = box->GetTopIndex();
    EXPECT_GT(last, 80);
    EXPECT_LT(last, 100) << "the list's end stays at the bottom";
    box->SetTopIndex(-5);
    EXPECT_EQ(box->GetTopIndex(), 0);
    box->TakeFocus();
    box->SetSelIndex(0);
    door.Press("PgDown");
    int page = box->GetSelIndex();
    EXPECT_GT(page, 1);
    EXPECT_EQ(box->GetTopIndex(), 0) << "a page goes to the last entry that shows";
    door.Press("PgDown");
    EXPECT_EQ(box->GetSelIndex(), 2 * page);
    door.Press("PgUp");
    EXPECT_EQ(box->GetSelIndex(), page);
}

TEST_F(Lists, AListBoxIsFilledAnewBehindASwitchedOffDisplay)
{
    Door door = OpenWith(materials);
    TSize extent;
    std::vector<TColor> before = door.Pixels(BOX, extent);
    box->SetRedraw(false);
    box->ClearList();
    for (const char *entry : materials)
        box->AddString(entry);
    box->SetRedraw(true);
    testdoor::Settle();
    EXPECT_TRUE(before == door.Pixels(BOX, extent)) << "the same entries look the same";
    box->SetSelIndex(2);
    EXPECT_FALSE(before == door.Pixels(BOX, extent));
}

namespace
{
void Guarded(const std::function<void()> &what)
{
    __enter
        what(); __test;
    __point
    __treat
}

/// Deletes itself at a notification.
class Ending : public TDialog
{
public:
    enum { NUMBER = 7101 };
    Ending(std::unique_ptr<Ending> &aSelf, int anId, int aCode, int &aCount)
        : TDialog(NULL, NUMBER), self(aSelf), id(anId), code(aCode), count(aCount)
    {
    }
    void DialogProc(const TDialogMessage &message) override
    {
        if (message.control == NULL || message.id != id || message.code != code)
            return;
        ++count;
        self.reset(); // nothing behind this may touch the object
    }

private:
    std::unique_ptr<Ending> &self;
    int id;
    int code;
    int &count;
};
} // namespace

TEST_F(Lists, AHearerMayEndTheDialogInTheMiddleOfAnAction)
{
    tables.Add(Ending::NUMBER, "Ende",
               {Line(RES_EDIT, FIELD), Line(RES_CHOICE, CHOICE), Line(RES_COMBO, COMBO), BoxLine()});
    const struct {
        int id;
        int code;
        const char *end; // key that ends the choice; NULL for a list box or a closed list
        bool wheel;
    } rows[] = {
        {CHOICE, 3, "Return", false}, {CHOICE, 7, "Return", false}, {CHOICE, 1, "Return", false},
        {CHOICE, 9, "Return", false}, {CHOICE, 8, "Return", false}, {CHOICE, 10, "Esc", false},
        {CHOICE, 8, "Esc", false},    {CHOICE, 10, "Tab", false},   {CHOICE, 8, "F4", false},
        {CHOICE, 9, NULL, false},     {CHOICE, 1, NULL, false},     {CHOICE, 9, NULL, true},
        {CHOICE, 1, NULL, true},      {COMBO, 3, "Return", false},  {COMBO, 7, "Return", false},
        {COMBO, 1, "Return", false},  {COMBO, 9, "Return", false},  {COMBO, 8, "Return", false},
        {COMBO, 10, "Tab", false},    {COMBO, 9, NULL, false},      {COMBO, 1, NULL, true},
        {BOX, 1, NULL, false},        {BOX, 2, NULL, false},
    };
    for (const auto &row : rows) {
        int count = 0;
        std::unique_ptr<Ending> ending;
        ending = std::make_unique<Ending>(ending, row.id, row.code, count);
        auto *list = new TComboBox(ending.get(), row.id == BOX ? int{CHOICE} : row.id); // the dialog's
        auto *other = new TListBox(ending.get(), BOX);
        ending->Create();
        testdoor::Settle();
        for (const char *entry : materials) {
            list->AddString(entry);
            other->AddString(entry);
        }
        Door door(*ending);
        door.Click(FIELD);
        door.Press("Home");
        if (row.id == BOX) {
            door.ClickEntry(BOX, 2, true);
        } else if (row.end == NULL) {
            list->TakeFocus();
            if (row.wheel)
                testdoor::Wheel(*list, {2, 2}, -3);
            else
                door.Press("Down");
        } else {
            door.Drop(row.id);
            if (ending)
                door.Press("Down");
            if (ending)
                door.Press(row.end);
        }
        testdoor::Settle();
        EXPECT_EQ(count, 1) << row.id << " " << row.code << (row.end ? row.end : "");
        EXPECT_FALSE(ending);
    }
}

TEST_F(Lists, AHearerMayKeepTheListFromDropping)
{
    Door door = OpenWith(materials);
    for (int id : {CHOICE, COMBO}) {
        for (bool clears : {true, false}) {
            Drop(id)->TakeFocus();
            onHeard = [this, id, clears](int code) {
                if (code == WIN_CBN_DROPDOWN && clears)
                    Drop(id)->ClearList();
                else if (code == WIN_CBN_DROPDOWN)
                    Drop(id)->EnableWindow(false);
            };
            Forget();
            door.Press("F4");
            EXPECT_EQ(Codes(id), "7 8") << id << clears;
            EXPECT_FALSE(door.IsDropped(id));
            Drop(id)->EnableWindow(true);
            Drop(id)->AddString("neu");
        }
    }
    onHeard = [this](int code) {
        if (code == WIN_CBN_DROPDOWN)
            choice->AddString("im letzten Augenblick");
    };
    choice->TakeFocus();
    door.Press("F4");
    EXPECT_TRUE(door.IsDropped(CHOICE));
    EXPECT_EQ(door.Entries(CHOICE).back(), "im letzten Augenblick");
}

TEST_F(Lists, WhatIsDisabledOrHiddenDoesNotDrop)
{
    Door door = OpenWith(materials);
    for (int id : {CHOICE, COMBO}) {
        Drop(id)->EnableWindow(false);
        Forget();
        Drop(id)->ShowList(true);
        EXPECT_FALSE(door.IsDropped(id));
        Drop(id)->EnableWindow(true);
        Drop(id)->ShowWindow(false);
        Drop(id)->ShowList(true);
        EXPECT_FALSE(door.IsDropped(id));
        EXPECT_EQ(Codes(id), "");
    }
}

TEST_F(Lists, AnEntryIsAddedWholeOrNotAtAll)
{
    OpenWith(materials);
    auto count = [this] { return choice->GetCount() + 1000 * box->GetCount(); };
    int before = 0;
    int faults =
        SweepFaults([&] { before = count(); },
                    [&] {
                        Guarded([&] { choice->AddString("ein Eintrag, für den Speicher nötig ist"); });
                        if (!XPending())
                            Guarded([&] { box->AddString("ein Eintrag, für den Speicher nötig ist"); });
                    },
                    [&](const FaultRun &run) {
                        EXPECT_STREQ(run.code, run.fired > 0 ? XALLOC : XNULL);
                        int added = count() - before;
                        EXPECT_TRUE(added == 0 || added == 1 || added == 1001) << added;
                        EXPECT_EQ(added == 1001, run.fired == 0);
                        EXPECT_EQ(choice->GetSelIndex(), -1);
                    });
    EXPECT_GT(faults, 2);
}

TEST_F(Lists, ADialogThatGoesWithItsListOpenReportsNothing)
{
    Door door = OpenWith(materials);
    for (int id : {CHOICE, COMBO}) {
        dialog->Create();
        testdoor::Settle();
        Drop(id)->AddString("eins");
        door = Door(*dialog);
        door.Drop(id);
        Forget();
        dialog->Destroy(2);
        testdoor::Settle();
        EXPECT_EQ(Codes(id), "");
    }
}

TEST_F(Lists, AFailureInAHearerIsReportedAndTheListGoesOn)
{
    Door door = OpenWith(materials);
    onHeard = [](int code) {
        if (code == WIN_CBN_SELENDOK)
            XRaise(XGENERAL, __FILE__, __LINE__);
    };
    door.Choose(CHOICE, 3);
    EXPECT_EQ(reports, 1);
    EXPECT_EQ(Codes(CHOICE), "3 7 1 9 8");
    EXPECT_EQ(choice->GetSelIndex(), 3);
    onHeard = nullptr;
    door.Choose(CHOICE, 1);
    EXPECT_EQ(choice->GetSelIndex(), 1);
    EXPECT_EQ(reports, 1);
}

TEST_F(Lists, AClosedListNeedsRoomForItsLongestEntry)
{
    Door door = OpenWith({"kurz"});
    auto needed = [&door](int id) {
        for (const testdoor::Placed &placed : door.Layout())
            if (placed.id == id)
                return placed.needed;
        return TSize{};
    };
    TSize before = needed(CHOICE), combosBefore = needed(COMBO), boxBefore = needed(BOX);
    choice->AddString("ein viel längerer Eintrag");
    combo->AddString("ein viel längerer Eintrag");
    box->AddString("ein viel längerer Eintrag");
    EXPECT_GT(needed(CHOICE).cx, before.cx + 50);
    EXPECT_GT(needed(COMBO).cx, combosBefore.cx + 50);
    EXPECT_EQ(needed(CHOICE).cy, before.cy);
    EXPECT_EQ(needed(BOX), boxBefore) << "a list box scrolls";
}

TEST_F(Lists, StylesOfTheResourceHold)
{
    Make({Line(RES_CHOICE, CHOICE, "", RES_GREY), Line(RES_COMBO, COMBO, "", RES_HIDDEN), BoxLine(RES_NOTAB),
          Line(RES_EDIT, FIELD)});
    Door door = Open();
    EXPECT_FALSE(door.IsEnabled(CHOICE));
    EXPECT_FALSE(door.IsShown(COMBO));
    EXPECT_EQ(door.Focus(), FIELD);
    door.Press("Tab");
    EXPECT_EQ(door.Focus(), FIELD) << "Tab passes the list box";
    door.Click(BOX);
    EXPECT_EQ(door.Focus(), BOX);
}
