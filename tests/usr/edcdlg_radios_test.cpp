// Groups of radio buttons: values, clicks, keys, the focus and its mark.
#include "support/chance.h"
#include "support/child.h"
#include "support/hookdialog.h"
#include "support/testapp.h"
#include "support/testdialog.h"
#include "win/testdialog.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

namespace
{
enum { DIALOG = 30000, BOX = 101, OTHER = 102, GROUP = 200 };

class RadioGroup : public testing::Test
{
protected:
    RadioGroup() { TestApplication(); }

    DialogTables tables;
};

TEdcInt State(int id, int value)
{
    TEdcInt v(value);
    v.id = id;
    return v;
}

/// A group of radio buttons in a dialog that is up: an edit field, the group's frame, its buttons from 101 on
/// with the values 10, 20 and so on, and an edit field behind them.
struct Radios {
    enum { BEFORE = 90, BEHIND = 190 };

    Radios(DialogTables &tables, int count, bool allowNone, unsigned style = 0)
    {
        std::vector<ResCONTROL> lines = {Line(RES_EDIT, BEFORE), Line(RES_FRAME, GROUP, "Gruppe")};
        for (int i = 0; i < count; i++)
            lines.push_back(Line(RES_RADIO, BOX + i, "Knopf", style));
        lines.push_back(Line(RES_EDIT, BEHIND));
        lines.push_back(Line(RES_DEFAULT, 1, "OK"));
        tables.Add(DIALOG, "", lines);
        dialog = std::make_unique<HookDialog>(DIALOG);
        group = new TEdcRadioGroup(dialog.get(), GROUP, allowNone);
        for (int i = 0; i < count; i++)
            buttons.push_back(new TEdcRadioButton(dialog.get(), BOX + i, group, 10 * (i + 1)));
        dialog->Create();
        testdoor::Settle();
        dialog->Take();
    }

    int Value() const
    {
        TEdcInt v;
        group->GetValue(v);
        return v.id == EDC_VVAL ? v.value : v.id;
    }
    /// Numbers of the buttons that are on, as a person sees it.
    std::string On() const
    {
        std::string on;
        for (const TEdcRadioButton *button : buttons)
            if (testdoor::DialogBox(*dialog).Check(button->Id()) == WIN_CHECKED)
                on += std::to_string(button->Id()) + " ";
        return on;
    }
    /// Numbers of those at which Tab stops.
    std::string Stops() const
    {
        std::string stops = Stop(*group);
        for (const TEdcRadioButton *button : buttons)
            stops += Stop(*button);
        return stops;
    }

    std::unique_ptr<HookDialog> dialog;
    TEdcRadioGroup *group; // the dialog's, with the buttons
    std::vector<TEdcRadioButton *> buttons;

private:
    static std::string Stop(const TControl &control)
    {
        return control.Style() & WIN_STYLE_TABSTOP ? std::to_string(control.Id()) + " " : "";
    }
};
} // namespace

TEST_F(RadioGroup, StartsWithTheButtonAddedFirstOrWithNone)
{
    const struct {
        int count;
        bool allowNone;
        const char *on;
        const char *stops;
        int value;
    } cases[] = {
        {0, false, "", "", EDC_VUDF},    {0, true, "", "", EDC_VUDF},    {1, false, "101 ", "101 ", 10},
        {1, true, "", "200 ", EDC_VUDF}, {3, false, "101 ", "101 ", 10}, {3, true, "", "200 ", EDC_VUDF},
    };
    for (const auto &c : cases) {
        Radios radios(tables, c.count, c.allowNone);
        EXPECT_EQ(radios.On(), c.on);
        EXPECT_EQ(radios.Stops(), c.stops);
        EXPECT_EQ(radios.Value(), c.value);
        EXPECT_EQ(radios.group->GetAllowNone(), c.allowNone);
    }
}

TEST_F(RadioGroup, ShowsAValueByTheButtonThatStandsForIt)
{
    const struct {
        bool allowNone;
        int id;
        int value;
        const char *on;
        const char *stops;
        int read;
    } cases[] = {
        {false, EDC_VVAL, 10, "101 ", "101 ", 10},  {false, EDC_VVAL, 20, "102 ", "102 ", 20},
        {false, EDC_VVAL, 30, "103 ", "103 ", 30},  {false, EDC_VVAL, 11, "101 ", "101 ", 10},
        {false, EDC_VUDF, 20, "101 ", "101 ", 10},  {false, EDC_VNUL, 20, "101 ", "101 ", 10},
        {true, EDC_VVAL, 30, "103 ", "103 ", 30},   {true, EDC_VVAL, 11, "", "200 ", EDC_VUDF},
        {true, EDC_VUDF, 20, "", "200 ", EDC_VUDF},
    };
    for (int before : {10, 20, 30}) {
        for (const auto &c : cases) {
            Radios radios(tables, 3, c.allowNone);
            radios.group->SetValue(TEdcInt(before));
            radios.group->SetValue(State(c.id, c.value));
            EXPECT_EQ(radios.On(), c.on) << before << " " << c.id << " " << c.value;
            EXPECT_EQ(radios.Stops(), c.stops);
            EXPECT_EQ(radios.Value(), c.read);
            EXPECT_EQ(radios.dialog->Take(), "") << "what the program does is not reported";
        }
    }
}

TEST_F(RadioGroup, UndefinedValueShowsTheButtonAddedFirstWhereNoneIsNotAllowed)
{
    Radios radios(tables, 3, false);
    radios.group->SetValue(TEdcInt(30));
    TEdcInt undefined;
    radios.group->Transfer(&undefined, WIN_TRANSFER_SETDATA);
    EXPECT_EQ(radios.On(), "101 ");
}

TEST_F(RadioGroup, ClickOnTheButtonThatIsOnClearsAGroupThatAllowsNone)
{
    Radios radios(tables, 3, true);
    testdoor::DialogBox door(*radios.dialog);
    door.Click(102);
    EXPECT_EQ(radios.On(), "102 ");
    EXPECT_EQ(radios.Stops(), "102 ");
    EXPECT_EQ(radios.dialog->Take(), "changed 200, changed 102");
    door.Click(102);
    EXPECT_EQ(radios.On(), "");
    EXPECT_EQ(radios.Stops(), "200 ");
    EXPECT_EQ(radios.Value(), EDC_VUDF);
    EXPECT_EQ(radios.dialog->Take(), "changed 200, changed 102");
    door.Click(103);
    door.Click(101);
    EXPECT_EQ(radios.On(), "101 ") << "one at a time";
}

TEST_F(RadioGroup, ClickOnTheButtonThatIsOnKeepsItWhereOneMustBe)
{
    Radios radios(tables, 3, false);
    testdoor::DialogBox door(*radios.dialog);
    door.Click(103);
    door.Click(103);
    EXPECT_EQ(radios.On(), "103 ");
    EXPECT_EQ(radios.dialog->Take(), "changed 200, changed 103, changed 200, changed 103");
}

TEST_F(RadioGroup, SecondClickOnARadioButtonIsToldApart)
{
    Radios radios(tables, 2, false);
    testdoor::DialogBox(*radios.dialog).DoubleClick(102);
    EXPECT_EQ(radios.On(), "102 ");
    EXPECT_NE(radios.dialog->Take().find("double 102"), std::string::npos);
}

TEST_F(RadioGroup, ForbiddingNoneSwitchesOnTheButtonAddedFirst)
{
    Radios radios(tables, 3, true);
    radios.group->SetAllowNone(false);
    EXPECT_EQ(radios.On(), "101 ");
    EXPECT_EQ(radios.Stops(), "101 ");
    radios.group->SetAllowNone(true);
    EXPECT_EQ(radios.On(), "101 ") << "none may be, but one is";
    radios.group->SetValue(TEdcInt(20));
    radios.group->SetAllowNone(false);
    EXPECT_EQ(radios.On(), "102 ") << "one is on already";
}

TEST_F(RadioGroup, ButtonsReportTheirNumberUntilTheyAreGivenData)
{
    tables.Add(DIALOG, "", {Line(RES_FRAME, GROUP), Line(RES_RADIO, BOX), Line(RES_RADIO, OTHER)});
    HookDialog dialog(DIALOG);
    auto *group = new TEdcRadioGroup(&dialog, GROUP);
    auto *button = new TEdcRadioButton(&dialog, BOX, group);
    new TEdcRadioButton(&dialog, OTHER, group);
    dialog.Create();
    TEdcInt v;
    group->GetValue(v);
    EXPECT_EQ(v.value, 101);
    group->SetValue(TEdcInt(102));
    group->GetValue(v);
    EXPECT_EQ(v.value, 102);
    button->SetData(-3);
    group->SetValue(TEdcInt(-3));
    group->GetValue(v);
    EXPECT_EQ(v.value, -3);
    EXPECT_EQ(button->Data(), -3);
    EXPECT_TRUE(AbortsOnAssertion("resId <= MAXLONG", "usr/edcdlg_boxes.cpp",
                                  [&] { new TEdcRadioButton(&dialog, MAXLONG + 1, group); }));
}

TEST_F(RadioGroup, TransfersForItsButtons)
{
    struct {
        TEdcInt first = State(EDC_VVAL, 20);
        TEdcInt second = State(EDC_VUDF, 0);
    } record;
    tables.Add(DIALOG, "",
               {Line(RES_FRAME, GROUP), Line(RES_RADIO, 101), Line(RES_RADIO, 102), Line(RES_FRAME, 300),
                Line(RES_RADIO, 301), Line(RES_RADIO, 302), Line(RES_DEFAULT, 1, "OK")});
    HookDialog dialog(DIALOG, &record);
    auto *first = new TEdcRadioGroup(&dialog, GROUP);
    new TEdcRadioButton(&dialog, 101, first, 10);
    new TEdcRadioButton(&dialog, 102, first, 20);
    auto *second = new TEdcRadioGroup(&dialog, 300, true);
    new TEdcRadioButton(&dialog, 301, second, 10);
    new TEdcRadioButton(&dialog, 302, second, 20);
    testdoor::Script([&](testdoor::ModalBox &modal) {
        testdoor::DialogBox door(modal);
        EXPECT_EQ(door.Check(102), WIN_CHECKED);
        EXPECT_EQ(door.Check(301), WIN_UNCHECKED);
        EXPECT_EQ(door.Check(302), WIN_UNCHECKED);
        EXPECT_FALSE(first->IsChanged() || second->IsChanged());
        door.Click(302);
        EXPECT_TRUE(!first->IsChanged() && second->IsChanged());
        door.Click(101);
        EXPECT_TRUE(first->IsChanged());
        door.Click(1);
    });
    EXPECT_EQ(dialog.Execute(), 1);
    EXPECT_EQ(record.first.value, 10);
    EXPECT_EQ(record.second.id, EDC_VVAL);
    EXPECT_EQ(record.second.value, 20);
}

TEST_F(RadioGroup, TransfersAsItsFlagsSay)
{
    const struct {
        int flags;
        int size;
        const char *shown; // of a field that says 20
        int read;          // once the user has taken 30
    } cases[] = {
        {0, sizeof(TEdcInt), "102 ", 30},
        {EDC_CfNOTRANSFER, 0, "101 ", 20},
        {EDC_CfNOGET, sizeof(TEdcInt), "102 ", 20},
    };
    for (const auto &c : cases) {
        Radios radios(tables, 3, false);
        radios.group->SetFlags(c.flags);
        EXPECT_EQ(radios.group->GetFlags(), c.flags);
        TEdcInt field(20);
        EXPECT_EQ(radios.group->Transfer(&field, WIN_TRANSFER_SETDATA), c.size);
        EXPECT_EQ(radios.On(), c.shown);
        testdoor::DialogBox(*radios.dialog).Click(103);
        EXPECT_EQ(radios.group->Transfer(&field, WIN_TRANSFER_GETDATA), c.size);
        EXPECT_EQ(field.value, c.read);
    }
}

namespace
{
/// The group as it should be, by buttons counted from 0.
struct PlainGroup {
    enum { ELSEWHERE = -2, ON_GROUP = -1 };

    int count;
    bool allowNone;
    int on = -1;
    int focus = ELSEWHERE;
    std::vector<bool> enabled = std::vector<bool>(static_cast<size_t>(count), true);
    bool stop; // Tab stops at the group itself

    PlainGroup(int aCount, bool aAllowNone) : count(aCount), allowNone(aAllowNone)
    {
        Set(-1);
        stop = on < 0 && count > 0;
    }

    void Set(int button)
    {
        on = button < 0 && !allowNone && count > 0 ? 0 : button;
        stop = on < 0;
        if (on >= 0 && focus == ON_GROUP && enabled[on])
            focus = on;
    }
    /// @return the button that was clicked, -1 for none
    int Click(int button)
    {
        if (!enabled[button])
            return -1;
        focus = button;
        if (button != on || allowNone)
            Set(button != on ? button : -1);
        return button;
    }
    /// @return as Click
    int Step(int direction)
    {
        if (focus == ELSEWHERE)
            return -1;
        int from = focus == ON_GROUP ? on : focus;
        int at = from < 0 && direction < 0 ? 0 : from;
        for (int i = 1; i <= count; i++) {
            int to = ((at + direction * i) % count + count) % count;
            if (to == from)
                return -1;
            if (!enabled[to])
                continue;
            focus = to;
            return to == on ? -1 : Click(to);
        }
        return -1;
    }
    void Tab() // from in front of the group
    {
        if (stop)
            focus = ON_GROUP;
        else if (on >= 0 && enabled[on])
            focus = on;
        else
            focus = ELSEWHERE;
    }
};

/// A group in a dialog beside the plain one, and what is done to both.
class RadioRun
{
public:
    RadioRun(DialogTables &tables, int count, bool allowNone, CHANCE &aChance)
        : radios(tables, count, allowNone), door(*radios.dialog), plain(count, allowNone), chance(aChance)
    {
    }

    void Step()
    {
        clicked = -1;
        switch (chance.Int(0, 9)) {
        case 0:
        case 1:
            if (plain.count > 0)
                ClickOne(chance.Int(0, plain.count - 1));
            break;
        case 2:
            SetOne(chance.Int(-1, plain.count));
            break;
        case 3:
            Allow(chance.One(2));
            break;
        case 4:
            Enter();
            break;
        case 5:
            if (plain.count > 0)
                Switch(chance.Int(0, plain.count - 1));
            break;
        default:
            PressOne();
        }
        Compare();
    }

private:
    void ClickOne(int button)
    {
        door.Click(BOX + button);
        clicked = plain.Click(button);
    }
    void SetOne(int button) // -1 is undefined, one too many a value that no button has
    {
        TEdcInt v(10 * (button + 1));
        v.id = button < 0 ? EDC_VUDF : EDC_VVAL;
        radios.group->SetValue(v);
        plain.Set(button < plain.count ? button : -1);
    }
    void Allow(bool on)
    {
        radios.group->SetAllowNone(on);
        plain.allowNone = on;
        if (!on && plain.on < 0)
            plain.Set(-1);
    }
    void Enter()
    {
        door.Click(Radios::BEFORE);
        door.Press("Tab");
        plain.Tab();
    }
    void Switch(int button) // one with the focus would pass it on
    {
        if (button == plain.focus)
            return;
        plain.enabled[button] = !plain.enabled[button];
        radios.buttons[button]->EnableWindow(plain.enabled[button]);
    }
    void PressOne()
    {
        const struct {
            const char *key;
            int direction;
        } keys[] = {{"Down", 1}, {"Right", 1}, {"Up", -1}, {"Left", -1}, {"Space", 0}};
        const auto &pressed = chance.Of(keys);
        door.Press(pressed.key);
        if (pressed.direction != 0 || plain.focus == PlainGroup::ON_GROUP)
            clicked = plain.Step(pressed.direction < 0 ? -1 : 1);
        else if (plain.focus >= 0)
            clicked = plain.Click(plain.focus);
    }

    void Compare()
    {
        std::string button = plain.on >= 0 ? std::to_string(BOX + plain.on) + " " : "";
        std::string group = plain.stop ? std::to_string(GROUP) + " " : "";
        std::string click = clicked < 0 ? "" : "changed 200, changed " + std::to_string(BOX + clicked);
        EXPECT_EQ(radios.On(), button);
        EXPECT_EQ(radios.Value(), plain.on >= 0 ? 10 * (plain.on + 1) : int{EDC_VUDF});
        EXPECT_EQ(radios.Stops(), group + button);
        EXPECT_EQ(radios.dialog->Take(), click);
        EXPECT_EQ(radios.group->IsMarked(), plain.focus == PlainGroup::ON_GROUP);
        int focus = door.Focus();
        if (plain.focus == PlainGroup::ELSEWHERE)
            EXPECT_TRUE(focus == Radios::BEFORE || focus == Radios::BEHIND) << focus;
        else
            EXPECT_EQ(focus, plain.focus == PlainGroup::ON_GROUP ? int{GROUP} : BOX + plain.focus);
    }

    Radios radios;
    testdoor::DialogBox door;
    PlainGroup plain;
    CHANCE &chance;
    int clicked = -1; // in this step
};
} // namespace

TEST_F(RadioGroup, AgreesWithAPlainModelWhateverIsDoneToIt)
{
    CHANCE chance(31117);
    for (int round = 0; round < 4; round++) {
        for (int count = 0; count <= 6; count++) {
            for (bool allowNone : {false, true}) {
                RadioRun run(tables, count, allowNone, chance);
                for (int step = 0; step < 180; step++) {
                    run.Step();
                    ASSERT_FALSE(HasFailure()) << "step " << step << " of " << count << " buttons";
                }
            }
        }
    }
}

TEST_F(RadioGroup, ArrowKeysClickTheNeighbourInTheOrderOfAdding)
{
    const struct {
        int from;
        const char *key;
        int to;
    } cases[] = {
        {101, "Down", 102}, {101, "Right", 102}, {102, "Down", 103}, {103, "Down", 101}, {103, "Right", 101},
        {103, "Up", 102},   {102, "Left", 101},  {101, "Up", 103},   {101, "Left", 103},
    };
    for (bool allowNone : {false, true}) {
        for (const auto &c : cases) {
            Radios radios(tables, 3, allowNone);
            testdoor::DialogBox door(*radios.dialog);
            door.Click(c.from);
            radios.dialog->Take();
            door.Press(c.key);
            EXPECT_EQ(door.Focus(), c.to) << c.from << c.key;
            EXPECT_EQ(radios.On(), std::to_string(c.to) + " ");
            EXPECT_EQ(radios.dialog->Take(), "changed 200, changed " + std::to_string(c.to));
        }
    }
}

TEST_F(RadioGroup, ArrowKeysPassByWhatIsDisabledOrHidden)
{
    Radios radios(tables, 4, false);
    testdoor::DialogBox door(*radios.dialog);
    radios.buttons[1]->EnableWindow(false);
    radios.buttons[2]->ShowWindow(false);
    door.Click(101);
    door.Press("Down");
    EXPECT_EQ(radios.On(), "104 ");
    door.Press("Up");
    EXPECT_EQ(radios.On(), "101 ");
    radios.buttons[3]->EnableWindow(false);
    radios.dialog->Take();
    door.Press("Down");
    EXPECT_EQ(radios.On(), "101 ");
    EXPECT_EQ(radios.dialog->Take(), "") << "there is no other to go to";
}

TEST_F(RadioGroup, ArrowKeyToTheButtonThatIsOnOnlyMovesTheFocus)
{
    Radios radios(tables, 3, true);
    testdoor::DialogBox door(*radios.dialog);
    door.Click(102);
    radios.group->SetValue(TEdcInt(10));
    radios.dialog->Take();
    door.Press("Up");
    EXPECT_EQ(door.Focus(), 101);
    EXPECT_EQ(radios.On(), "101 ");
    EXPECT_EQ(radios.dialog->Take(), "");
}

TEST_F(RadioGroup, TabEntersAGroupOnce)
{
    Radios radios(tables, 3, false);
    testdoor::DialogBox door(*radios.dialog);
    radios.group->SetValue(TEdcInt(20));
    door.Click(Radios::BEFORE);
    for (int expected : {102, int{Radios::BEHIND}, 1, int{Radios::BEFORE}}) {
        door.Press("Tab");
        EXPECT_EQ(door.Focus(), expected);
    }
    for (int expected : {1, int{Radios::BEHIND}, 102, int{Radios::BEFORE}}) {
        door.Press("Shift+Tab");
        EXPECT_EQ(door.Focus(), expected);
    }
    EXPECT_EQ(radios.dialog->Take(), "");
}

TEST_F(RadioGroup, GroupWithoutAChosenButtonHasTheFocusItself)
{
    const struct {
        const char *key;
        int chosen;
    } cases[] = {{"Space", 101}, {"Down", 101}, {"Right", 101}, {"Up", 103}, {"Left", 103}};
    for (const auto &c : cases) {
        Radios radios(tables, 3, true);
        testdoor::DialogBox door(*radios.dialog);
        door.Click(Radios::BEHIND);
        door.Press("Shift+Tab");
        EXPECT_EQ(door.Focus(), GROUP);
        door.Press("Shift+Tab");
        EXPECT_EQ(door.Focus(), Radios::BEFORE);
        door.Press("Tab");
        EXPECT_EQ(door.Focus(), GROUP);
        door.Press(c.key);
        EXPECT_EQ(door.Focus(), c.chosen);
        EXPECT_EQ(radios.On(), std::to_string(c.chosen) + " ");
        EXPECT_EQ(radios.dialog->Take(), "changed 200, changed " + std::to_string(c.chosen));
    }
}

TEST_F(RadioGroup, FocusOfTheGroupGoesToTheButtonThatTheProgramChooses)
{
    Radios radios(tables, 3, true);
    testdoor::DialogBox door(*radios.dialog);
    door.Click(Radios::BEFORE);
    door.Press("Tab");
    EXPECT_TRUE(radios.group->IsMarked());
    radios.group->SetValue(TEdcInt(30));
    EXPECT_EQ(door.Focus(), 103);
    EXPECT_FALSE(radios.group->IsMarked());
    EXPECT_EQ(radios.dialog->Take(), "");
}

TEST_F(RadioGroup, DisabledButtonsCannotBeChosenByKeys)
{
    Radios radios(tables, 2, true);
    testdoor::DialogBox door(*radios.dialog);
    for (TEdcRadioButton *button : radios.buttons)
        button->EnableWindow(false);
    door.Click(Radios::BEFORE);
    door.Press("Tab");
    for (const char *key : {"Space", "Down", "Up"})
        door.Press(key);
    EXPECT_EQ(radios.On(), "");
    EXPECT_EQ(door.Focus(), GROUP);
    radios.group->Enable(false);
    EXPECT_NE(door.Focus(), GROUP);
    EXPECT_FALSE(radios.group->IsMarked());
}

namespace
{
/// The dialog as the screen shows it.
struct Picture {
    explicit Picture(TDialog &dialog)
    {
        testdoor::Settle();
        pixels = testdoor::ShownPixels(dialog);
        width = dialog.GetClientRect().right;
    }
    TColor At(int x, int y) const { return pixels[static_cast<size_t>(y) * width + x]; }

    std::vector<TColor> pixels;
    int width;
};

/// Where the mark of a control stands, in device pixels.
TRect MarkPlace(const testdoor::DialogBox &door, int id)
{
    auto pixel = [](int units) { return static_cast<int>(std::lround(units * TestScale())); };
    for (const testdoor::Placed &placed : door.Layout())
        if (placed.id == id)
            return {pixel(placed.rect.left - 2), pixel(placed.rect.top - 2), pixel(placed.rect.right + 2),
                    pixel(placed.rect.bottom + 2)};
    return {};
}

/// Whether the pixels along a line come by turns in two colours, and what stands a dot beside the line stays.
void ExpectDither(const Picture &before, const Picture &after, TPoint from, bool down, int length,
                  TPoint inside)
{
    int dot = std::max(1, static_cast<int>(std::lround(TestScale())));
    for (int i = 2 * dot; i < length - 4 * dot; i++) { // the corners belong to two sides
        TPoint at = {from.x + (down ? 0 : i), from.y + (down ? i : 0)};
        TPoint next = {at.x + (down ? 0 : dot), at.y + (down ? dot : 0)};
        TPoint then = {next.x + (down ? 0 : dot), next.y + (down ? dot : 0)};
        ASSERT_EQ(after.At(at.x, at.y), after.At(then.x, then.y)) << at.x << " " << at.y;
        ASSERT_NE(after.At(at.x, at.y), after.At(next.x, next.y)) << at.x << " " << at.y;
        TPoint beside = {at.x + inside.x * dot, at.y + inside.y * dot};
        ASSERT_EQ(before.At(beside.x, beside.y), after.At(beside.x, beside.y)) << at.x << " " << at.y;
    }
}
} // namespace

TEST_F(RadioGroup, FocusOfAGroupShowsAsADitheredFrameTwoPixelsOutside)
{
    tables.Add(DIALOG, "",
               {{RES_EDIT, 90, "", 0, 5, 5, 60, 12, 0},
                {RES_FRAME, GROUP, "Gruppe", 0, 10, 30, 100, 40, 0},
                {RES_RADIO, BOX, "Knopf", 0, 20, 45, 60, 12, 0}});
    HookDialog dialog(DIALOG);
    auto *group = new TEdcRadioGroup(&dialog, GROUP, true);
    new TEdcRadioButton(&dialog, BOX, group);
    dialog.Create();
    testdoor::DialogBox door(dialog);
    door.Click(90);
    Picture before(dialog);
    door.Press("Tab");
    ASSERT_EQ(door.Focus(), GROUP);
    EXPECT_TRUE(group->IsMarked());
    EXPECT_EQ(group->FocusMark(), 2);
    Picture marked(dialog);
    TRect place = MarkPlace(door, GROUP);
    int dot = std::max(1, static_cast<int>(std::lround(TestScale())));
    ExpectDither(before, marked, {place.left, place.top}, false, place.Width(), {0, 1});
    ExpectDither(before, marked, {place.left, place.bottom - dot}, false, place.Width(), {0, -1});
    ExpectDither(before, marked, {place.left, place.top}, true, place.Height(), {1, 0});
    ExpectDither(before, marked, {place.right - dot, place.top}, true, place.Height(), {-1, 0});
    door.Press("Shift+Tab");
    EXPECT_FALSE(group->IsMarked());
    EXPECT_EQ(group->FocusMark(), 0);
    Picture after(dialog);
    for (int y = place.top; y < place.bottom; y++)
        for (int x = place.left; x < place.right; x++)
            ASSERT_EQ(before.At(x, y), after.At(x, y)) << "gone without a trace at " << x << " " << y;
}

TEST_F(RadioGroup, MarkFollowsItsGroupAndLetsTheMouseThrough)
{
    Radios radios(tables, 2, true);
    testdoor::DialogBox door(*radios.dialog);
    radios.group->ShowMark(true);
    radios.group->ShowMark(true);
    EXPECT_TRUE(radios.group->IsMarked());
    radios.group->ShowWindow(false);
    radios.group->ShowWindow(true);
    door.Click(101);
    EXPECT_EQ(radios.On(), "101 ");
    radios.group->ShowMark(false);
    EXPECT_FALSE(radios.group->IsMarked());
    radios.group->ShowMark(true);
    radios.dialog->Destroy(2);
    EXPECT_FALSE(radios.group->IsMarked()) << "it goes with the window";
    radios.group->ShowMark(true);
    EXPECT_FALSE(radios.group->IsMarked());
}
