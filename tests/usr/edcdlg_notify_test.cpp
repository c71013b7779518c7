// Which report of a control calls which hook: the table by class and style, and the drop list, which tells of a
// change only when the user has finished choosing.
#include "support/hookdialog.h"
#include "support/testapp.h"
#include "support/testdialog.h"
#include "win/boxes.h"
#include "win/controlparts.h"
#include "win/testdialog.h"
#include "win/testdoor.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

namespace
{
enum { DIALOG = 30110, CHOICE = 100, OTHER_CHOICE = 101, COMBO = 102, PLAIN = 103, LIST = 104 };
const int allCodes[] = {-99, -1, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 0x100, 0x101};

class Notifications : public testing::Test
{
protected:
    void SetUp() override
    {
        TestApplication();
        tables = std::make_unique<DialogTables>();
        tables->Add(DIALOG, "Meldungen",
                    {Line(RES_CHOICE, CHOICE), Line(RES_CHOICE, OTHER_CHOICE), Line(RES_COMBO, COMBO),
                     Line(RES_BUTTON, PLAIN, "Knopf"), Line(RES_LIST, LIST), Line(RES_LABEL, 110, "Schild"),
                     Line(RES_FRAME, 111, "Rahmen"), Line(RES_EDIT, 112), Line(RES_MEMO, 113),
                     Line(RES_DEFAULT, 114, "Vorgabe"), Line(RES_CHECK, 115, "Haken"),
                     Line(RES_CHECK3, 116, "Drei"), Line(RES_RADIO, 117, "Wahl"), Line(RES_PICTURE, 118)});
        dialog = std::make_unique<HookDialog>(DIALOG, static_cast<void *>(NULL), false);
        for (int id : {CHOICE, OTHER_CHOICE, COMBO})
            combos.push_back(new TComboBox(dialog.get(), id));
        dialog->Create();
        for (TComboBox *combo : combos)
            for (const char *entry : {"eins", "zwei", "drei", "vier"})
                combo->AddString(entry);
        dialog->Take();
    }
    void TearDown() override
    {
        dialog.reset();
        tables.reset();
        EXPECT_EQ(testdoor::PendingScripts(), 0);
        EXPECT_EQ(testdoor::UnexpectedBoxes(), 0);
    }

    /// What the hooks are told of one report, with the drop list's machine at its start.
    std::string Told(int id, int code)
    {
        dialog->SendCommand(dialog->Item(CHOICE), WIN_CBN_SETFOCUS);
        dialog->Take();
        dialog->SendCommand(dialog->Item(id), code);
        return dialog->Take();
    }
    int CallsOf(int id, const std::vector<int> &codes)
    {
        dialog->Take();
        for (int code : codes)
            dialog->SendCommand(dialog->Item(id), code);
        std::string log = dialog->Take();
        return static_cast<int>(log.empty() ? 0 : 1 + std::count(log.begin(), log.end(), ','));
    }

    std::unique_ptr<DialogTables> tables;
    std::unique_ptr<HookDialog> dialog;
    std::vector<TComboBox *> combos; // views
};

/// One row of the table; all that no row names calls nothing.
struct RULE {
    const char *windowClass;
    unsigned from, to; // kinds
    int code;
    const char *call;
};
const RULE rules[] = {
    {"BUTTON", 0, 1, 0, "button"},    {"BUTTON", 2, 15, 0, "changed"},  {"BUTTON", 2, 15, 5, "double"},
    {"COMBOBOX", 3, 3, 9, "changed"}, {"LISTBOX", 0, 15, 1, "changed"}, {"LISTBOX", 0, 15, 2, "double"},
};

std::string Ruled(const std::string &windowClass, unsigned kind, int code)
{
    for (const RULE &rule : rules)
        if (windowClass == rule.windowClass && rule.from <= kind && kind <= rule.to && code == rule.code)
            return rule.call;
    return "";
}
} // namespace

TEST_F(Notifications, FollowClassAndStyle)
{
    const struct {
        const char *name;
        const char *upper;
    } classes[] = {
        {"BUTTON", "BUTTON"},     {"Button", "BUTTON"},   {"button", "BUTTON"},   {"COMBOBOX", "COMBOBOX"},
        {"ComboBox", "COMBOBOX"}, {"LISTBOX", "LISTBOX"}, {"ListBox", "LISTBOX"}, {"EDIT", "EDIT"},
        {"STATIC", "STATIC"},     {"BUTTON2", "BUTTON2"}, {"BUTTO", "BUTTO"},     {"", ""},
    };
    for (const auto &name : classes)
        for (unsigned kind = 0; kind <= WIN_STYLE_KIND; ++kind)
            for (int code : allCodes) {
                MarkControl(dialog->Item(PLAIN), name.name, WIN_STYLE_CHILD | kind, PLAIN);
                std::string call = Ruled(name.upper, kind, code);
                EXPECT_EQ(Told(PLAIN, code), call.empty() ? "" : call + " 103")
                    << name.name << " " << kind << " " << code;
            }
}

TEST_F(Notifications, LookAtTheLowFourBitsOfTheStyle)
{
    MarkControl(dialog->Item(PLAIN), "BUTTON", WIN_STYLE_CHILD | WIN_STYLE_TABSTOP | WIN_STYLE_BITMAP, PLAIN);
    EXPECT_EQ(Told(PLAIN, WIN_BN_CLICKED), "button 103");
    MarkControl(dialog->Item(PLAIN), "BUTTON", 0xFFFFFFF2u, PLAIN);
    EXPECT_EQ(Told(PLAIN, WIN_BN_CLICKED), "changed 103");
}

TEST_F(Notifications, CallNothingWithoutAStyleOrAClass)
{
    for (int code : allCodes) {
        MarkControl(dialog->Item(PLAIN), "BUTTON", 0, PLAIN);
        EXPECT_EQ(Told(PLAIN, code), "") << code;
        MarkControl(dialog->Item(PLAIN), NULL, WIN_STYLE_CHILD, PLAIN);
        EXPECT_EQ(Told(PLAIN, code), "") << code;
    }
}

TEST_F(Notifications, OfEachKindOfLine)
{
    const struct {
        int id;
        const char *calls; // "code call" for each code that calls one
    } rows[] = {
        {CHOICE, "9 changed 100"},
        {OTHER_CHOICE, "9 changed 101"},
        {COMBO, ""},
        {PLAIN, "0 button 103"},
        {LIST, "1 changed 104, 2 double 104"},
        {110, ""},
        {111, "0 changed 111, 5 double 111"},
        {112, ""},
        {113, ""},
        {114, "0 button 114"},
        {115, "0 changed 115, 5 double 115"},
        {116, "0 changed 116, 5 double 116"},
        {117, "0 changed 117, 5 double 117"},
        {118, ""},
    };
    for (const auto &row : rows) {
        std::string calls;
        for (int code : allCodes) {
            std::string told = Told(row.id, code);
            if (!told.empty())
                calls += (calls.empty() ? "" : ", ") + std::to_string(code) + " " + told;
        }
        EXPECT_EQ(calls, row.calls) << row.id;
    }
}

namespace
{
struct SEQUENCE {
    const char *name;
    std::vector<int> codes;
    int calls;
};
const SEQUENCE sequences[] = {
    {"moving calls nothing", {3, 7, 1, 1, 1}, 0},
    {"a confirmed choice calls once", {3, 7, 1, 1, 9, 8}, 1},
    {"a confirmed choice without a move calls once", {3, 7, 9, 8}, 1},
    {"a click outside after a move calls once", {3, 7, 1, 10, 8}, 1},
    {"a click outside without a move calls nothing", {3, 7, 10, 8}, 0},
    {"the OK end first", {3, 7, 1, 9, 10, 8}, 1},
    {"the cancel end first", {3, 7, 1, 10, 9, 8}, 1},
    {"the cancel end first, without a move", {3, 7, 10, 9, 8}, 0},
    {"each arrow key on a closed list calls once", {3, 9, 1, 9, 1, 9, 1}, 3},
    {"two choices in turn call twice", {3, 7, 1, 9, 8, 7, 1, 9, 8}, 2},
    {"a choice after one that was left calls", {3, 7, 1, 10, 8, 7, 1, 9, 8}, 2},
    {"a move of the closed list does not count for the next click outside", {3, 1, 7, 10, 8}, 0},
    {"the list drops anew and forgets the move", {3, 7, 1, 7, 10, 8}, 0},
    {"the focus forgets the move", {3, 7, 1, 3, 10}, 0},
    {"the close forgets the move", {3, 7, 1, 8, 10}, 0},
    {"the close lets the other end come", {3, 7, 1, 10, 8, 9}, 2},
    {"an end that comes twice calls twice", {3, 7, 1, 9, 9}, 2},
    {"other codes change nothing", {3, 7, 0, 2, 5, 1, 0, 2, 5, 10, 0, 2, 5, 9}, 1},
};
} // namespace

TEST_F(Notifications, OfADropListCallOnceTheUserHasChosen)
{
    for (const SEQUENCE &row : sequences)
        EXPECT_EQ(CallsOf(CHOICE, row.codes), row.calls) << row.name;
}

namespace
{
/// The machine's table as it stands on paper.
struct TWIN {
    int lastEnd = 1;
    bool dropped = false, selChanged = false, fire = false;

    bool Calls(int code)
    {
        if (code == 3 || code == 7 || code == 8) {
            dropped = code == 7;
            selChanged = fire = false;
            lastEnd = 1;
        } else if (code == 1 && dropped) {
            selChanged = true;
        } else if (code == 9 && lastEnd != 10) {
            fire = true;
            lastEnd = 9;
            return true;
        } else if (code == 10 && lastEnd != 9) {
            fire = selChanged;
            lastEnd = 10;
            return fire;
        }
        return false;
    }
};

class CountingDialog : public TEdcDialog
{
public:
    using TEdcDialog::TEdcDialog;
    void Changed(HWND) override { ++count; }
    int count = 0;
};
} // namespace

TEST_F(Notifications, OfADropListFollowTheTableInEveryOrderOfFive)
{
    const int codes[] = {0, 1, 2, 3, 5, 7, 8, 9, 10};
    const int length = 5, base = static_cast<int>(std::size(codes));
    CountingDialog counting(DIALOG);
    counting.Create();
    HWND choice = counting.Item(CHOICE);
    const int orders = 59049; // 9^5
    long calls = 0, wrong = 0;
    for (int order = 0; order < orders; ++order) {
        TWIN twin;
        counting.SendCommand(choice, WIN_CBN_SETFOCUS);
        for (int step = 0, rest = order; step < length; ++step, rest /= base) {
            counting.count = 0;
            counting.SendCommand(choice, codes[rest % base]);
            bool expected = twin.Calls(codes[rest % base]);
            calls += expected;
            wrong += counting.count != static_cast<int>(expected);
        }
        ASSERT_EQ(wrong, 0) << "order " << order;
    }
    EXPECT_GT(calls, orders / 3) << "many of them call";
}

TEST_F(Notifications, OfAllDropListsShareOneMachine)
{
    auto send = [this](int id, int code) { dialog->SendCommand(dialog->Item(id), code); };
    send(CHOICE, 3);
    send(CHOICE, 7);
    send(CHOICE, 1);
    send(OTHER_CHOICE, 3); // the user went on
    send(CHOICE, 10);
    EXPECT_EQ(dialog->Take(), "");
    HookDialog second(DIALOG, NULL, false);
    second.Create();
    second.Take();
    send(CHOICE, 7);
    send(CHOICE, 1);
    second.SendCommand(second.Item(OTHER_CHOICE), 10);
    EXPECT_EQ(second.Take(), "changed 101");
    EXPECT_EQ(dialog->Take(), "");
}

namespace
{
struct GESTURE {
    const char *name;
    void (*act)(testdoor::DialogBox &);
    const char *calls;
    int selected; // afterwards; entry 1 stood before
};
const GESTURE gestures[] = {
    {"a click on an entry", [](testdoor::DialogBox &d) { d.Choose(CHOICE, 2); }, "changed 100", 2},
    {"a click on the entry that stands", [](testdoor::DialogBox &d) { d.Choose(CHOICE, 1); }, "changed 100", 1},
    {"an open list", [](testdoor::DialogBox &d) { d.Drop(CHOICE); }, "", 1},
    {"arrow keys in the list",
     [](testdoor::DialogBox &d) {
         d.Drop(CHOICE);
         d.Press("Down");
         d.Press("Down");
     },
     "", 3},
    {"arrow keys and Return",
     [](testdoor::DialogBox &d) {
         d.Drop(CHOICE);
         d.Press("Down");
         d.Press("Down");
         d.Press("Return");
     },
     "changed 100", 3},
    {"arrow keys and Esc",
     [](testdoor::DialogBox &d) {
         d.Drop(CHOICE);
         d.Press("Down");
         d.Press("Esc");
     },
     "changed 100", 1},
    {"Esc at once",
     [](testdoor::DialogBox &d) {
         d.Drop(CHOICE);
         d.Press("Esc");
     },
     "", 1},
    {"arrow keys and a click beside",
     [](testdoor::DialogBox &d) {
         d.Drop(CHOICE);
         d.Press("Down");
         d.ClickBeside(CHOICE);
     },
     "changed 100", 2},
    {"a click beside at once",
     [](testdoor::DialogBox &d) {
         d.Drop(CHOICE);
         d.ClickBeside(CHOICE);
     },
     "", 1},
    {"the pointer over an entry and a click beside",
     [](testdoor::DialogBox &d) {
         d.Drop(CHOICE);
         d.PointAt(CHOICE, 3);
         d.ClickBeside(CHOICE);
     },
     "", 1},
    {"the pointer over an entry and a click on it",
     [](testdoor::DialogBox &d) {
         d.Drop(CHOICE);
         d.PointAt(CHOICE, 3);
         d.ClickDropped(CHOICE, 3);
     },
     "changed 100", 3},
    {"arrow keys of the closed list",
     [](testdoor::DialogBox &d) {
         d.Press("Down");
         d.Press("Down");
         d.Press("Up");
     },
     "changed 100, changed 100, changed 100", 2},
    {"a letter of the closed list", [](testdoor::DialogBox &d) { d.TypeKeys("v"); }, "changed 100", 3},
    {"an arrow key that cannot move",
     [](testdoor::DialogBox &d) {
         d.Press("Up");
         d.Press("Up");
     },
     "changed 100", 0},
    {"a choice in a combo box with an edit field",
     [](testdoor::DialogBox &d) {
         d.Choose(COMBO, 2);
         d.Type(COMBO, "fünf");
     },
     "", 1},
};
} // namespace

TEST_F(Notifications, OfADropListComeOnceForWhatAPersonDoes)
{
    testdoor::DialogBox box(*dialog);
    for (const GESTURE &gesture : gestures) {
        box.Click(LIST);
        combos[0]->SetSelIndex(1);
        combos[0]->TakeFocus();
        dialog->Take();
        gesture.act(box);
        testdoor::Settle();
        EXPECT_EQ(dialog->Take(), gesture.calls) << gesture.name;
        EXPECT_EQ(box.Selected(CHOICE), gesture.selected) << gesture.name;
        if (box.IsDropped(CHOICE))
            box.Press("Esc");
        dialog->Take();
    }
}
