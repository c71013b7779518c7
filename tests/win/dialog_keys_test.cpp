// What a person sees of a dialog and does in it: place, tab order, mnemonics, keys and the open lists.
#include "dialogfixture.h"
#include "win/utf8.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace
{
using testdoor::DialogBox;
using testdoor::Placed;

/// What the dialog heard while its script ran, without the INIT.
std::string Hear(Diary &diary, int id, const std::function<void(DialogBox &)> &part, bool passive = false)
{
    std::string heard;
    HearingDialog dialog(id, diary);
    dialog.passive = passive;
    Play([&](DialogBox &box) {
        diary.Read();
        part(box);
        heard = diary.Read();
        dialog.Destroy(WIN_ID_CANCEL);
    });
    dialog.Execute();
    diary.Read();
    return heard;
}

/// Runs a dialog for what can be seen in it.
void Show(Diary &diary, int id, const std::function<void(DialogBox &)> &part)
{
    Hear(diary, id, part, true);
}

// Place.

/// Toolkit's units in a dialog unit, from lines that are thousands of them long.
struct Scale {
    double x, y;
};

Scale ScaleOf(const std::vector<Placed> &layout, int id, int units)
{
    for (const Placed &placed : layout)
        if (placed.id == id)
            return {static_cast<double>(placed.rect.Width()) / units,
                    static_cast<double>(placed.rect.Height()) / units};
    return {};
}

TEST_F(Dialogs, PlacesAreRoundedAtBothEdges)
{
    std::vector<ResCONTROL> lines = {{RES_FRAME, 1, "", 0, 0, 0, 4000, 4000, 0}};
    for (int i = 0; i < 40; ++i)
        lines.push_back({RES_LABEL, 100 + i, "x", 0, 3 + 7 * i, 2 + 5 * i, 7, 5, 0});
    tables.Add(7002, "Raster", lines);
    Show(diary, 7002, [](DialogBox &box) {
        std::vector<Placed> layout = box.Layout();
        Scale scale = ScaleOf(layout, 1, 4000);
        ASSERT_EQ(layout.size(), 41U);
        for (int i = 0; i < 40; ++i) {
            const Placed &placed = layout[static_cast<size_t>(i) + 1];
            EXPECT_EQ(placed.id, 100 + i);
            EXPECT_EQ(placed.rect.left, std::lround((3 + 7 * i) * scale.x));
            EXPECT_EQ(placed.rect.top, std::lround((2 + 5 * i) * scale.y));
            EXPECT_EQ(placed.rect.right, std::lround((10 + 7 * i) * scale.x)) << "where the next one begins";
            EXPECT_EQ(placed.rect.bottom, std::lround((7 + 5 * i) * scale.y));
        }
        EXPECT_EQ(box.Extent().cx, std::lround(4002 * scale.x));
        EXPECT_EQ(box.Extent().cy, std::lround(4002 * scale.y));
    });
}

/// A unit is a quarter of the average letter wide and an eighth of a line high, whatever the screen's scale is;
/// Arial at 9 points has letters of 7 and lines of 14 of the toolkit's units.
TEST_F(Dialogs, DialogUnitsAreThoseOfArialAtNinePoints)
{
    tables.Add(7002, "Raster", {{RES_FRAME, 1, "", 0, 0, 0, 4000, 4000, 0}});
    Show(diary, 7002, [](DialogBox &box) {
        Scale scale = ScaleOf(box.Layout(), 1, 4000);
        EXPECT_NEAR(scale.x * 4, 7, 0.3);
        EXPECT_NEAR(scale.y * 8, 14, 0.3);
    });
}

TEST_F(Dialogs, LayoutTellsOfEachLine)
{
    tables.Add(7002, "Alles",
               {Line(RES_FRAME, 20, "Rahmen"), Line(RES_LABEL, -1, "&Länge:"), Line(RES_EDIT, 21),
                Line(RES_CHOICE, 22), Line(RES_LIST, 23), Line(RES_BUTTON, 24, "&Größe", RES_HIDDEN)});
    Show(diary, 7002, [](DialogBox &box) {
        std::string seen;
        for (const Placed &placed : box.Layout())
            seen += std::to_string(placed.id) + placed.windowClass + "'" + placed.text + "'" +
                    (placed.shown ? "" : "hidden") + (placed.isFrame ? "frame" : "") + " ";
        EXPECT_EQ(seen, FromUtf8("20BUTTON'Rahmen'frame -1STATIC'&Länge:' 21EDIT'' 22COMBOBOX'' 23LISTBOX'' "
                                 "24BUTTON'&Größe'hidden "));
        EXPECT_GT(box.Layout()[1].needed.cx, 10);
    });
}

/// Neither white on white nor black on black: the picture holds both dark and light.
TEST_F(Dialogs, ADialogCanBeReadInADarkTheme)
{
    for (bool dark : {false, true}) {
        testdoor::DarkTheme(dark);
        Numbers numbers(diary);
        numbers.dialog.Create();
        testdoor::Settle();
        std::vector<TColor> pixels = testdoor::ShownPixels(numbers.dialog);
        ASSERT_GT(pixels.size(), 1000U);
        TColor ground = pixels[pixels.size() - 1]; // nothing stands in the corner
        EXPECT_EQ(ground.red < 128, dark);
        auto far = [ground](const TColor &c) { return std::abs(c.red - ground.red) > 100; };
        EXPECT_GT(std::count_if(pixels.begin(), pixels.end(), far), 300);
        numbers.dialog.Destroy(2);
    }
    testdoor::DarkTheme(false);
    testdoor::Settle();
}

// Focus, Tab and mnemonics.

TEST_F(Dialogs, TheFocusIsInTheFirstFieldWithItsTextSelected)
{
    const struct {
        std::vector<ResCONTROL> lines;
        int focus;
    } rows[] = {
        {{Line(RES_LABEL, -1, "x"), Line(RES_EDIT, 10), Line(RES_EDIT, 11)}, 10},
        {{Line(RES_EDIT, 10, "", RES_HIDDEN), Line(RES_EDIT, 11)}, 11},
        {{Line(RES_EDIT, 10, "", RES_GREY), Line(RES_EDIT, 11)}, 11},
        {{Line(RES_EDIT, 10, "", RES_NOTAB), Line(RES_EDIT, 11)}, 11},
        {{Line(RES_FRAME, 9, "Rahmen"), Line(RES_CHECK, 10, "Haken"), Line(RES_EDIT, 11)}, 10},
        {{Line(RES_PICTURE, 9), Line(RES_COMBO, 10), Line(RES_EDIT, 11)}, 10},
        {{Line(RES_LABEL, 9, "Text"), Line(RES_BUTTON, 3, "Weiter"), Line(RES_DEFAULT, 1, "OK")}, 3},
        {{Line(RES_LABEL, 9, "Text")}, 0},
    };
    for (const auto &row : rows) {
        tables.Add(7002, "Kopf", row.lines);
        Show(diary, 7002, [&](DialogBox &box) { EXPECT_EQ(box.Focus(), row.focus); });
    }
    Numbers numbers(diary);
    Play([](DialogBox &box) {
        EXPECT_EQ(box.SelectedText(10), "12");
        box.TypeKeys("9");
        EXPECT_EQ(box.Text(10), "9");
        box.Press("Esc");
    });
    numbers.dialog.Execute();
}

TEST_F(Dialogs, WhoTakesTheFocusAtTheStartKeepsIt)
{
    Numbers numbers(diary);
    numbers.dialog.onMessage = [&](const TDialogMessage &message) {
        if (message.kind == TDialogMessage::INIT)
            numbers.second->TakeFocus();
    };
    Play([](DialogBox &box) {
        EXPECT_EQ(box.Focus(), 11);
        EXPECT_EQ(box.SelectedText(11), "34");
        box.Press("Esc");
    });
    numbers.dialog.Execute();
}

TEST_F(Dialogs, TabGoesInTheOrderOfTheResource)
{
    // Neither from left to right nor from top to bottom.
    tables.Add(7002, "Kopf",
               {{RES_EDIT, 10, "", 0, 90, 30, 30, 12, 0},
                {RES_LABEL, 90, "x", 0, 0, 0, 30, 12, 0},
                {RES_COMBO, 11, "", 0, 2, 30, 30, 12, 0},
                {RES_LIST, 12, "", 0, 90, 2, 30, 12, 0},
                {RES_CHOICE, 13, "", 0, 2, 2, 30, 12, 0},
                {RES_EDIT, 91, "", 0, 50, 2, 30, 12, RES_NOTAB},
                {RES_EDIT, 92, "", 0, 50, 20, 30, 12, RES_GREY},
                {RES_EDIT, 93, "", 0, 50, 40, 30, 12, RES_HIDDEN},
                {RES_MEMO, 14, "", 0, 90, 60, 30, 24, 0},
                {RES_CHECK, 15, "y", 0, 2, 60, 30, 12, 0},
                {RES_DEFAULT, 1, "OK", 0, 2, 80, 30, 12, 0}});
    Show(diary, 7002, [](DialogBox &box) {
        std::vector<int> met;
        for (int i = 0; i < 8; ++i) {
            met.push_back(box.Focus());
            if (box.Focus() == 14) {
                box.Press("Ctrl+Tab"); // in a memo the key itself may make a tab
                if (box.Focus() == 14)
                    box.Press("Tab");
            } else {
                box.Press("Tab");
            }
        }
        EXPECT_EQ(met, (std::vector<int>{10, 11, 12, 13, 14, 15, 1, 10}));
        box.Press("Shift+Tab");
        EXPECT_EQ(box.Focus(), 10);
    });
}

TEST_F(Dialogs, ALabelLeadsToTheNextLineThatTakesTheFocus)
{
    tables.Add(7002, "Kopf",
               {Line(RES_LABEL, -1, "&Anfang:"), Line(RES_EDIT, 10), Line(RES_LABEL, -1, "m"),
                Line(RES_LABEL, -1, "&Länge && Breite:"), Line(RES_PICTURE, 90), Line(RES_FRAME, 91, "Rahmen"),
                Line(RES_COMBO, 11), Line(RES_LABEL, -1, "&Ziel:"), Line(RES_LABEL, -1, "&Noch eins"),
                Line(RES_LIST, 12), Line(RES_LABEL, -1, "&ohne Ziel")});
    Show(diary, 7002, [](DialogBox &box) {
        box.Press("Alt+L");
        EXPECT_EQ(box.Focus(), 11);
        box.Press("Alt+A");
        EXPECT_EQ(box.Focus(), 10);
        box.Press("Alt+Z");
        EXPECT_EQ(box.Focus(), 12);
        box.Press("Alt+O");
        EXPECT_EQ(box.Focus(), 12);
        EXPECT_EQ(box.AccessibleName(10), "Anfang:");
        EXPECT_EQ(box.AccessibleName(11), FromUtf8("Länge & Breite:")) << "the nearest label";
        EXPECT_EQ(box.AccessibleName(12), "Noch eins");
    });
}

TEST_F(Dialogs, AMnemonicOfAButtonPressesIt)
{
    EXPECT_EQ(Hear(diary, NUMBERS, [](DialogBox &box) { box.Press("Alt+M"); }), "command3/0");
}

// Return and Esc.

TEST_F(Dialogs, ReturnPressesTheButtonWithTheFocusOrElseTheDefault)
{
    const struct {
        std::vector<ResCONTROL> lines;
        int focus;
        const char *heard;
    } rows[] = {
        {{Line(RES_EDIT, 10), Line(RES_DEFAULT, 1, "OK"), Line(RES_BUTTON, 3, "x")}, 10, "command1/0"},
        {{Line(RES_CHECK, 10, "y"), Line(RES_DEFAULT, 5, "OK")}, 10, "command5/0"},
        {{Line(RES_RADIO, 10, "y"), Line(RES_DEFAULT, 5, "OK")}, 10, "command5/0"},
        {{Line(RES_CHECK, 10, "y", RES_PUSH), Line(RES_DEFAULT, 5, "OK")}, 10, "command5/0"},
        {{Line(RES_CHOICE, 10), Line(RES_DEFAULT, 5, "OK")}, 10, "command5/0"},
        {{Line(RES_COMBO, 10), Line(RES_DEFAULT, 5, "OK")}, 10, "command5/0"},
        {{Line(RES_LIST, 10), Line(RES_DEFAULT, 5, "OK")}, 10, "command5/0"},
        {{Line(RES_BUTTON, 3, "x"), Line(RES_DEFAULT, 1, "OK")}, 3, "command3/0"},
        {{Line(RES_BUTTON, 3, "x"), Line(RES_EDIT, 10)}, 3, "command3/0"},
        {{Line(RES_EDIT, 10), Line(RES_DEFAULT, 1, "OK", RES_GREY)}, 10, ""},
        {{Line(RES_EDIT, 10), Line(RES_DEFAULT, 5, "OK", RES_HIDDEN)}, 10, "key1/0"},
        {{Line(RES_EDIT, 10), Line(RES_BUTTON, 3, "x")}, 10, "key1/0"},
        {{Line(RES_LABEL, 9, "nichts")}, 0, "key1/0"},
    };
    for (const auto &row : rows) {
        tables.Add(7002, "Kopf", row.lines);
        for (const char *key : {"Return", "Enter"}) {
            EXPECT_EQ(Hear(
                          diary, 7002,
                          [&](DialogBox &box) {
                              EXPECT_EQ(box.Focus(), row.focus);
                              box.Press(key);
                          },
                          true),
                      row.heard)
                << &row - rows;
        }
    }
}

TEST_F(Dialogs, AButtonThatTheProgramShowsOrHidesLaterCounts)
{
    tables.Add(7002, "Kopf",
               {Line(RES_EDIT, 10), Line(RES_DEFAULT, 1, "OK", RES_HIDDEN), Line(RES_BUTTON, 3, "x")});
    HearingDialog dialog(7002, diary);
    auto *button = new TButton(&dialog, 1);
    dialog.passive = true;
    Play([&](DialogBox &box) {
        diary.Read();
        button->ShowWindow(true);
        box.Press("Return");
        EXPECT_EQ(diary.Read(), "command1/0");
        button->EnableWindow(false);
        box.Press("Return");
        EXPECT_EQ(diary.Read(), "");
        button->EnableWindow(true);
        button->ShowWindow(false);
        box.Press("Return");
        EXPECT_EQ(diary.Read(), "key1/0");
        dialog.Destroy(2);
    });
    dialog.Execute();
}

TEST_F(Dialogs, EscIsACancelFromAnywhere)
{
    for (ResCONTROLKIND kind : {RES_EDIT, RES_MEMO, RES_COMBO, RES_CHOICE, RES_LIST, RES_BUTTON, RES_DEFAULT,
                                RES_CHECK, RES_CHECK3, RES_RADIO}) {
        tables.Add(7002, "Kopf", {Line(kind, 10, kind >= RES_BUTTON ? "x" : "")});
        EXPECT_EQ(Hear(diary, 7002, [](DialogBox &box) { box.Press("Esc"); }), "key2/0") << kind;
        EXPECT_EQ(Hear(diary, 7002, [](DialogBox &box) { box.Press("Alt+F4"); }), "close") << kind;
    }
}

TEST_F(Dialogs, ReturnInAMemoMakesALine)
{
    tables.Add(7002, "Kopf", {Line(RES_MEMO, 10), Line(RES_DEFAULT, 1, "OK")});
    EXPECT_EQ(Hear(diary, 7002,
                   [](DialogBox &box) {
                       box.Type(10, "eins\nzwei");
                       EXPECT_EQ(box.Text(10), "eins\r\nzwei");
                   }),
              "");
}

// The door's own hands.

TEST_F(Dialogs, TypingReplacesWhatIsThere)
{
    tables.Add(7002, "Kopf", {Line(RES_EDIT, 10), Line(RES_EDIT, 11, "", RES_GREY)});
    Show(diary, 7002, [](DialogBox &box) {
        box.Type(10, "Höhe 1 €");
        EXPECT_EQ(box.Text(10), FromUtf8("Höhe 1 €"));
        box.Type(10, "zwei");
        EXPECT_EQ(box.Text(10), "zwei");
        box.Paste(10, "drei");
        EXPECT_EQ(box.Text(10), "drei");
        box.Type(10, "");
        EXPECT_EQ(box.Text(10), "");
        box.Type(11, "grau");
        EXPECT_EQ(box.Text(10) + box.Text(11), "") << "nobody types into a grey field, nor beside it";
        EXPECT_FALSE(box.IsEnabled(11));
    });
}

TEST_F(Dialogs, ClicksMoveTheFocusAndSwitch)
{
    tables.Add(7002, "Kopf",
               {Line(RES_EDIT, 10), Line(RES_EDIT, 11), Line(RES_CHECK, 12, "Haken"),
                Line(RES_BUTTON, 13, "Grau", RES_GREY), Line(RES_BUTTON, 14, "Knopf")});
    EXPECT_EQ(Hear(diary, 7002,
                   [](DialogBox &box) {
                       box.Click(11);
                       EXPECT_EQ(box.Focus(), 11);
                       box.Click(12);
                       EXPECT_EQ(box.Check(12), WIN_CHECKED);
                       box.Click(13);
                       box.Click(14);
                       box.DoubleClick(12);
                   }),
              "command12/0 command14/0 command12/0 command12/5");
}

TEST_F(Dialogs, DroppedListsAreUsedByTheMouse)
{
    tables.Add(7002, "Kopf",
               {Line(RES_EDIT, 9), Line(RES_CHOICE, 10), Line(RES_COMBO, 11), Line(RES_BUTTON, 3, "Knopf"),
                Line(RES_LABEL, 8, "leer")});
    HearingDialog dialog(7002, diary);
    auto *choice = new TComboBox(&dialog, 10);
    auto *combo = new TComboBox(&dialog, 11);
    dialog.passive = true;
    Play([&](DialogBox &box) {
        for (TComboBox *list : {choice, combo})
            for (const char *entry : {"eins", "zwei", "drei"})
                list->AddString(entry);
        for (int id : {10, 11}) {
            EXPECT_EQ(box.Entries(id), (std::vector<std::string>{"eins", "zwei", "drei"}));
            EXPECT_FALSE(box.IsDropped(id));
            box.Drop(id);
            EXPECT_TRUE(box.IsDropped(id));
            EXPECT_EQ(box.Focus(), id);
            box.PointAt(id, 2);
            EXPECT_EQ(box.Selected(id), -1) << "only pointed at";
            box.ClickDropped(id, 1);
            EXPECT_FALSE(box.IsDropped(id));
            EXPECT_EQ(box.Text(id), "zwei");
            box.Choose(id, 2);
            EXPECT_EQ(box.Selected(id), 2);
            box.Drop(id);
            diary.Read();
            box.ClickBeside(id);
            EXPECT_FALSE(box.IsDropped(id));
            EXPECT_EQ(box.Text(id), "drei");
            std::string number = std::to_string(id);
            EXPECT_EQ(diary.Read(), "command" + number + "/10 command" + number + "/8");
            box.Drop(id);
            box.Press("Up");
            box.Press("Return");
            EXPECT_EQ(box.Text(id), "zwei");
            EXPECT_FALSE(box.IsDropped(id));
            box.Drop(id);
            box.Press("Up");
            box.Press("Esc");
            EXPECT_EQ(box.Text(id), "zwei");
            EXPECT_FALSE(box.IsDropped(id));
        }
        EXPECT_TRUE(box.IsShown(10)) << "keys of an open list are not the dialog's";
        dialog.Destroy(2);
    });
    dialog.Execute();
}

TEST_F(Dialogs, AnOpenListGoesWithItsDialog)
{
    tables.Add(7002, "Kopf", {Line(RES_CHOICE, 10)});
    HearingDialog dialog(7002, diary);
    auto *choice = new TComboBox(&dialog, 10);
    Play([&](DialogBox &box) {
        choice->AddString("eins");
        box.Drop(10);
        dialog.Destroy(4);
        EXPECT_FALSE(box.IsDropped(10));
    });
    EXPECT_EQ(dialog.Execute(), 4);
}

TEST_F(Dialogs, ListBoxesAreClickedByTheirEntries)
{
    tables.Add(7002, "Kopf", {{RES_LIST, 10, "", 0, 2, 2, 80, 40, 0}});
    HearingDialog dialog(7002, diary);
    auto *list = new TListBox(&dialog, 10);
    dialog.passive = true;
    Play([&](DialogBox &box) {
        for (int i = 0; i < 30; ++i)
            list->AddString(("Eintrag " + std::to_string(i)).c_str());
        diary.Read();
        box.ClickEntry(10, 25);
        EXPECT_EQ(box.Selected(10), 25);
        EXPECT_EQ(diary.Read(), "command10/1");
        box.ClickEntry(10, 1, true);
        EXPECT_EQ(box.Selected(10), 1);
        EXPECT_EQ(diary.Read(), "command10/1 command10/2");
        dialog.Destroy(2);
    });
    dialog.Execute();
}
} // namespace
