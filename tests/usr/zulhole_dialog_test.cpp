// The dialog of openings in its three forms, by itself, over a selection, and for what the tools will make.
#include "support/folder.h"
#include "usr/zulcatalogs.h"
#include "zulholecase.h"

namespace
{
using testdoor::DialogBox;
using STRINGS = std::vector<std::string>;
using FORM = TZulHoleDialog::FORM;

enum { TEXT = 100, K = 101, FIND = 102, WIDTH_LABEL, W = 104, HEIGHT_LABEL, H = 106, OWN = 107, TEMP = 108 };
const int edits[] = {TEXT, K, W, H, TEMP};
const int sizeControls[] = {WIDTH_LABEL, W, HEIGHT_LABEL, H};

const char missing[] = "Wert muss eingegeben, bzw. gew\xC3\xA4hlt werden.";
std::string Expected(const char *from)
{
    return EdcFormat("Man erwartet eine Dezimalzahl von %s bis 1.79769e+308.", from);
}

const GROUPS elements = {
    {"Tore und T\xFCren", {{"Sektionaltor \xFC\xC4\xDF", 1.8}, {"Drehfl\xFCgelt\xFCr", 2.1}}},
    {"W\xE4nde", {{"Ziegel 36,5 cm", 1.5}}}};

class HoleDialog : public HoleCase
{
protected:
    HoleDialog() { TEdcCtlgList::SetCatalogDirectory(folder.Name("Katalogy").c_str(), "zec"); }

    /// Runs the dialog on a record with a user who does that. @return whether it ended with OK
    bool Run(TZulHoleData &data, FORM form, const USER &user)
    {
        InDialog([&user](DialogBox &box) {
            EXPECT_EQ(box.Caption(), "Bau\xF6"
                                     "ffnung");
            user(box);
        });
        TZulHoleDialog dialog(data, form);
        bool confirmed = dialog.Execute() == WIN_ID_OK;
        EXPECT_STREQ(xCode, XNULL);
        return confirmed;
    }
    static TZulHoleData Filled(const HOLEVALUES &values)
    {
        EmHOLE hole;
        SetHole(hole, values);
        TZulHoleData data;
        data.Exchange(EDC_XLOAD, hole);
        return data;
    }
    static TZulHoleData Undefined()
    {
        TZulHoleData data;
        data.ownTemp.id = EDC_VUDF;
        return data;
    }
    /// What a person sees in the fields and the box.
    static HOLEVALUES Seen(const DialogBox &box)
    {
        const std::string checks[] = {"0", "1", "?"};
        return {box.Text(TEXT), box.Text(K), box.Text(W), box.Text(H), checks[box.Check(OWN)], box.Text(TEMP)};
    }
    void Fill(const GROUPS &groups)
    {
        std::filesystem::create_directories(folder.Path("Katalogy"));
        ElementCatalog catalog;
        catalog.Put(groups);
        catalog.Save();
        ASSERT_STREQ(xCode, XNULL);
    }
    FOLDER folder;
};

HOLEVALUES Blank()
{
    HOLEVALUES values;
    values[OWN_TEMP] = "0";
    return values;
}

TEST_F(HoleDialog, ShowsWhatItIsGiven)
{
    for (FORM form : {TZulHoleDialog::EDITING, TZulHoleDialog::STOCK, TZulHoleDialog::DRAWN}) {
        TZulHoleData data = Filled(holeOnes);
        EXPECT_FALSE(Run(data, form, [](DialogBox &box) {
            EXPECT_EQ(Seen(box), holeOnes);
            EXPECT_EQ(box.Focus(), TEXT);
            box.Click(WIN_ID_CANCEL);
        }));
        TZulHoleData fresh;
        EXPECT_FALSE(Run(fresh, form, [](DialogBox &box) {
            EXPECT_EQ(Seen(box), Blank());
            box.Click(WIN_ID_CANCEL);
        }));
    }
}

TEST_F(HoleDialog, AsksForTheSizeButOfWhatIsDrawn)
{
    for (FORM form : {TZulHoleDialog::EDITING, TZulHoleDialog::STOCK, TZulHoleDialog::DRAWN}) {
        TZulHoleData data = Filled(holeOnes);
        Run(data, form, [form](DialogBox &box) {
            for (int id : sizeControls)
                EXPECT_EQ(box.IsEnabled(id), form != TZulHoleDialog::DRAWN) << form << " " << id;
            for (int id : {int{TEXT}, int{K}, int{FIND}, int{OWN}, int{TEMP}})
                EXPECT_TRUE(box.IsEnabled(id)) << form << " " << id;
            box.Press("Esc");
        });
    }
}

TEST_F(HoleDialog, WantsEveryValueOfANewOpening)
{
    TZulHoleData data;
    EXPECT_TRUE(Run(data, TZulHoleDialog::STOCK, [](DialogBox &box) {
        for (int id : edits) {
            if (id == TEMP)
                box.Click(OWN); // only then there is one
            EXPECT_EQ(PressOk(box), missing) << id;
            EXPECT_EQ(box.Focus(), id);
            box.Type(id, "1");
        }
        box.Press("Return");
    }));
    EXPECT_EQ(ValuesOf(data), (HOLEVALUES{"1", "1", "1", "1", "1", "1"}));
}

TEST_F(HoleDialog, WantsNoSizeOfWhatIsDrawn)
{
    TZulHoleData data;
    EXPECT_TRUE(Run(data, TZulHoleDialog::DRAWN, [](DialogBox &box) {
        EXPECT_EQ(PressOk(box), missing);
        EXPECT_EQ(box.Focus(), TEXT);
        box.Type(TEXT, "Tor");
        EXPECT_EQ(PressOk(box), missing);
        EXPECT_EQ(box.Focus(), K);
        box.Type(K, "1.5");
        box.Click(WIN_ID_OK);
    }));
    EXPECT_EQ(ValuesOf(data), (HOLEVALUES{"Tor", "1.5", "?", "?", "0", "?"}));
}

TEST_F(HoleDialog, LetsEverythingOfASelectionStayUndefined)
{
    TZulHoleData data = Undefined();
    EXPECT_TRUE(Run(data, TZulHoleDialog::EDITING, [](DialogBox &box) {
        HOLEVALUES nothing;
        nothing[OWN_TEMP] = "?";
        EXPECT_EQ(Seen(box), nothing);
        EXPECT_FALSE(box.IsEnabled(TEMP));
        box.Click(WIN_ID_OK);
    }));
    EXPECT_EQ(ValuesOf(data), holeUndefined);
}

TEST_F(HoleDialog, RefusesWhatIsNoNumberOrOutOfItsRange)
{
    const struct {
        int id;
        const char *from;
        STRINGS bad, good;
    } rows[] = {
        {K, "0", {"-0.001", "-1", "abc", "1 W", "nan", "inf", "1e309", "1;5"}, {"0", "0.001", "1e300", "5.7"}},
        {W, "0.01", {"0.009", "0", "-1", "x", "1e309"}, {"0.01", "0.011", "12345.5"}},
        {H, "0.01", {"0.00999", "0", "-2", "-", "nan"}, {"0.01", "3", "1e6"}},
        {TEMP, "-1.79769e+308", {"warm", "1 C", "nan", "-1e309"}, {"-273", "0", "-0.5", "1e9"}},
    };
    for (FORM form : {TZulHoleDialog::EDITING, TZulHoleDialog::STOCK})
        for (const auto &row : rows) {
            SCOPED_TRACE(testing::Message() << form << " " << row.id);
            TZulHoleData data = Filled(holeOnes);
            Run(data, form, [&](DialogBox &box) {
                for (const std::string &text : row.bad) {
                    box.Type(row.id, text);
                    EXPECT_EQ(PressOk(box), Expected(row.from)) << text;
                    EXPECT_EQ(box.Focus(), row.id) << text;
                }
                box.Click(WIN_ID_CANCEL);
            });
            EXPECT_EQ(ValuesOf(data), holeOnes) << "nothing of it came through";
            for (const std::string &text : row.good)
                EXPECT_TRUE(Run(data, form, [&](DialogBox &box) {
                    box.Type(row.id, text);
                    box.Click(WIN_ID_OK);
                })) << text;
        }
}

TEST_F(HoleDialog, TakesATemperatureOnlyWhileItsBoxIsOn)
{
    for (FORM form : {TZulHoleDialog::EDITING, TZulHoleDialog::STOCK, TZulHoleDialog::DRAWN}) {
        TZulHoleData data = Filled(holeOthers);
        EXPECT_TRUE(Run(data, form, [](DialogBox &box) {
            EXPECT_EQ(box.Check(OWN), WIN_UNCHECKED);
            EXPECT_FALSE(box.IsEnabled(TEMP));
            box.Click(OWN);
            EXPECT_TRUE(box.IsEnabled(TEMP));
            box.Type(TEMP, "-30");
            box.Click(OWN);
            if (box.Check(OWN) != WIN_UNCHECKED)
                box.Click(OWN); // through the third state
            EXPECT_FALSE(box.IsEnabled(TEMP));
            box.Press("Alt+T");
            while (box.Check(OWN) != WIN_CHECKED)
                box.Press("Space");
            EXPECT_TRUE(box.IsEnabled(TEMP));
            EXPECT_EQ(box.Text(TEMP), "-30") << "what was typed is still there";
            box.Click(WIN_ID_OK);
        }));
        HOLEVALUES expected = holeOthers;
        expected[OWN_TEMP] = "1";
        expected[EXTERNAL_TEMP] = "-30";
        EXPECT_EQ(ValuesOf(data), expected) << form;
    }
}

TEST_F(HoleDialog, AsksForNoTemperatureWhileItsBoxIsOff)
{
    TZulHoleData data;
    EXPECT_TRUE(Run(data, TZulHoleDialog::STOCK, [](DialogBox &box) {
        for (int id : {int{TEXT}, int{K}, int{W}, int{H}})
            box.Type(id, "2");
        box.Click(WIN_ID_OK);
    }));
    EXPECT_EQ(ValuesOf(data), (HOLEVALUES{"2", "2", "2", "2", "0", "?"}));
}

TEST_F(HoleDialog, TurnsTheBoxOffWhereNoTemperatureIsKnown)
{
    const struct {
        int own, ownId, tempId;
        TCheckState shown;
    } rows[] = {{1, EDC_VVAL, EDC_VUDF, WIN_UNCHECKED},     {1, EDC_VVAL, EDC_VVAL, WIN_CHECKED},
                {0, EDC_VVAL, EDC_VUDF, WIN_UNCHECKED},     {0, EDC_VVAL, EDC_VVAL, WIN_UNCHECKED},
                {0, EDC_VUDF, EDC_VUDF, WIN_INDETERMINATE}, {0, EDC_VUDF, EDC_VVAL, WIN_INDETERMINATE}};
    for (const auto &row : rows) {
        TZulHoleData data = Filled(holeOnes);
        data.ownTemp.value = row.own;
        data.ownTemp.id = row.ownId;
        data.externalTemp.id = row.tempId;
        Run(data, TZulHoleDialog::EDITING, [&](DialogBox &box) {
            EXPECT_EQ(box.Check(OWN), row.shown);
            EXPECT_EQ(box.IsEnabled(TEMP), row.shown == WIN_CHECKED);
            box.Press("Esc");
        });
    }
}

TEST_F(HoleDialog, KeepsTheRecordWhenCancelled)
{
    for (const char *key : {"Esc", "frame", "button"}) {
        TZulHoleData data = Filled(holeOnes);
        EXPECT_FALSE(Run(data, TZulHoleDialog::STOCK, [key](DialogBox &box) {
            for (int id : edits)
                box.Type(id, "7");
            box.Click(OWN);
            if (key == std::string("frame"))
                box.CloseByFrame();
            else if (key == std::string("button"))
                box.Click(WIN_ID_CANCEL);
            else
                box.Press(key);
        }));
        EXPECT_EQ(ValuesOf(data), holeOnes) << key;
    }
}

TEST_F(HoleDialog, HoldsTheLongestDescriptionWithUmlauts)
{
    std::string longest(255, 'x');
    for (size_t i = 0; i < longest.size(); i += 3)
        longest[i] = "\xE4\xF6\xFC\xC4\xD6\xDC\xDF"[i % 7];
    HOLEVALUES values = holeOnes;
    values[DESCRIPTION] = longest;
    TZulHoleData data = Filled(values);
    EXPECT_TRUE(Run(data, TZulHoleDialog::STOCK, [&](DialogBox &box) {
        EXPECT_EQ(box.Text(TEXT), longest);
        box.Click(WIN_ID_OK);
    }));
    EXPECT_EQ(ValuesOf(data), values);
}

// The catalogue

TEST_F(HoleDialog, FindsAnElementInTheCatalogue)
{
    Fill(elements);
    const struct {
        int group, item;
        const char *text, *k;
    } rows[] = {{0, 0, "Tore und T\xFCren, Drehfl\xFCgelt\xFCr", "2.1"},
                {0, 1, "Tore und T\xFCren, Sektionaltor \xFC\xC4\xDF", "1.8"},
                {1, 0, "W\xE4nde, Ziegel 36,5 cm", "1.5"}};
    for (FORM form : {TZulHoleDialog::EDITING, TZulHoleDialog::STOCK, TZulHoleDialog::DRAWN})
        for (const auto &row : rows) {
            TZulHoleData data = Filled(holeOnes);
            EXPECT_TRUE(Run(data, form, [&](DialogBox &box) {
                InDialog([&](DialogBox &catalog) {
                    EXPECT_EQ(catalog.Caption(), "Katalog der Bauelemente");
                    catalog.ClickEntry(100, row.group);
                    catalog.ClickEntry(101, row.item);
                    catalog.Click(WIN_ID_OK);
                });
                box.Click(FIND);
                HOLEVALUES expected = holeOnes;
                expected[DESCRIPTION] = row.text;
                expected[TRANSMISSION] = row.k;
                EXPECT_EQ(Seen(box), expected);
                box.Click(WIN_ID_OK);
            }));
            EXPECT_STREQ(data.description.text, row.text);
            EXPECT_EQ(data.transmission.value, atof(row.k));
        }
}

/// Names as long as a catalogue takes them, full of what other sets of characters do not have.
TEST_F(HoleDialog, TakesTheLongestNamesOfTheCatalogue)
{
    std::string group(SHORTSTRMAX - 1, '\xDC');
    std::string item(SHORTSTRMAX - 1, '\xE4');
    item[3] = ' ';
    Fill({{group, {{item, 0.1 + 0.2}}}});
    TZulHoleData data;
    EXPECT_TRUE(Run(data, TZulHoleDialog::DRAWN, [&](DialogBox &box) {
        InDialog([](DialogBox &catalog) {
            catalog.ClickEntry(100, 0);
            catalog.ClickEntry(101, 0, true);
        });
        box.Click(FIND);
        box.Click(WIN_ID_OK);
    }));
    EXPECT_EQ(data.description.text, group + ", " + item);
    EXPECT_EQ(data.transmission.value, 0.3) << "without the noise of sums";
}

TEST_F(HoleDialog, IsAsItWasWhereNothingIsChosen)
{
    Fill(elements);
    TZulHoleData data = Filled(holeOnes);
    EXPECT_TRUE(Run(data, TZulHoleDialog::STOCK, [&](DialogBox &box) {
        InDialog([](DialogBox &catalog) {
            catalog.ClickEntry(100, 0);
            catalog.ClickEntry(101, 0);
            catalog.Click(WIN_ID_CANCEL);
        });
        box.Click(FIND);
        EXPECT_EQ(Seen(box), holeOnes);
        box.Click(WIN_ID_OK);
    }));
    EXPECT_EQ(ValuesOf(data), holeOnes);
}

TEST_F(HoleDialog, FindsNothingInAnEmptyCatalogue)
{
    Fill({});
    TZulHoleData data = Filled(holeOnes);
    Run(data, TZulHoleDialog::STOCK, [&](DialogBox &box) {
        InDialog([](DialogBox &catalog) {
            EXPECT_EQ(catalog.Entries(100), STRINGS());
            EXPECT_EQ(catalog.Entries(101), STRINGS());
            catalog.Click(WIN_ID_OK);
            catalog.Press("Esc"); // where OK wanted something to be chosen
        });
        box.Click(FIND);
        EXPECT_EQ(Seen(box), holeOnes);
        box.Press("Esc");
    });
}

TEST_F(HoleDialog, SaysThatThereIsNoCatalogue)
{
    TZulHoleData data = Filled(holeOnes);
    Run(data, TZulHoleDialog::STOCK, [&](DialogBox &box) {
        EXPECT_EQ(SaidWhile([&box] { box.Click(FIND); }), "Katalog liegt nicht vor.");
        EXPECT_EQ(Seen(box), holeOnes);
        box.Press("Esc");
    });
}

// Over a selection

/// What OK leaves of an opening whose dialog was opened for two, and of the fields `typed` in the dialog.
struct EXPECTATION {
    HOLEVALUES seen; // when the dialog opens
    HOLEVALUES left[2];
};

/// An own temperature that is not the same everywhere is not shown as one: its box is off.
EXPECTATION Expect(const HOLEVALUES &a, const HOLEVALUES &b, const HOLEVALUES &typed)
{
    EXPECTATION expected;
    for (size_t i = 0; i < HOLE_FIELDS; ++i)
        expected.seen[i] = a[i] == b[i] ? a[i] : "";
    if (a[OWN_TEMP] != b[OWN_TEMP])
        expected.seen[OWN_TEMP] = "?";
    else if (a[OWN_TEMP] == "1" && expected.seen[EXTERNAL_TEMP].empty())
        expected.seen[OWN_TEMP] = "0";
    const HOLEVALUES *const before[] = {&a, &b};
    for (int hole = 0; hole < 2; ++hole)
        for (size_t i = 0; i < HOLE_FIELDS; ++i) {
            std::string shown = typed[i].empty() ? expected.seen[i] : typed[i];
            expected.left[hole][i] = shown.empty() || shown == "?" ? (*before[hole])[i] : shown;
        }
    return expected;
}

void Type(DialogBox &box, const HOLEVALUES &typed)
{
    const int ids[] = {TEXT, K, W, H, OWN, TEMP};
    for (size_t i = 0; i < HOLE_FIELDS; ++i)
        if (ids[i] == OWN && !typed[i].empty())
            for (int clicks = 0; box.Check(OWN) != (typed[i] == "1" ? WIN_CHECKED : WIN_UNCHECKED); ++clicks) {
                ASSERT_LT(clicks, 3);
                box.Click(OWN);
            }
        else if (!typed[i].empty())
            box.Type(ids[i], ToUtf8(typed[i].c_str()));
}

class HoleSelection : public HoleDialog
{
protected:
    void Open(const USER &user)
    {
        InDialog(user);
        layer.OpenAt(0, {0, 0});
        EXPECT_STREQ(xCode, XNULL);
    }
    /// Two openings with those values, both selected, and a third that is not.
    void Pair(const HOLEVALUES &a, const HOLEVALUES &b)
    {
        layer.DeleteAll(false);
        set->Clear();
        for (const HOLEVALUES *values : {&a, &b, &holeOthers})
            SetHole(*Put(AgPOINT(3.0 * set->Count(), 5), 1, 1), *values);
        Show();
        layer.Select(Sprites()[1], true, NULL);
        layer.Select(Sprites()[0], true, NULL);
        layer.SetFocus(Sprites()[0], NULL);
        doc.obsolete = 0;
        doc.modified = false;
    }
    void Check(const HOLEVALUES &a, const HOLEVALUES &b, const HOLEVALUES &typed)
    {
        EXPECTATION expected = Expect(a, b, typed);
        Pair(a, b);
        std::string places = EdcFormat("%g,%g", Holes(0).pos.x, Holes(1).pos.x);
        Open([&](DialogBox &box) {
            EXPECT_EQ(Seen(box), expected.seen);
            Type(box, typed);
            box.Click(WIN_ID_OK);
        });
        for (int i = 0; i < 2; ++i) {
            EXPECT_EQ(ValuesOf(Holes(i)), expected.left[i]) << "opening " << i;
            EXPECT_EQ(Sprites()[static_cast<size_t>(i)]->Size(), Holes(i).size) << "the sprite follows";
        }
        EXPECT_EQ(ValuesOf(Holes(2)), holeOthers) << "of no concern";
        EXPECT_EQ(EdcFormat("%g,%g", Holes(0).pos.x, Holes(1).pos.x), places);
        EXPECT_EQ(doc.obsolete, EDC_LAYOUT);
        EXPECT_TRUE(doc.modified);
    }
    EmHOLE &Holes(int i) { return *InSet()[static_cast<size_t>(i)]; }
};

TEST_F(HoleSelection, OpensWithAFocusOnly)
{
    Pair(holeOnes, holeOthers);
    layer.SetFocus(NULL, NULL);
    layer.OpenAt(0, {0, 0});
    EXPECT_EQ(testdoor::UnexpectedBoxes(), 0);
    EXPECT_FALSE(doc.modified);
}

TEST_F(HoleSelection, IsEditedWhateverItsOpeningsHaveInCommon)
{
    const HOLEVALUES fresh = {"Oberlicht", "0.9", "1.25", "0.5", "1", "-3"};
    for (unsigned differing : Subsets(HOLE_FIELDS)) {
        SCOPED_TRACE(differing);
        HOLEVALUES second = MixedHole(differing);
        Check(holeOnes, second, HOLEVALUES());
        Check(holeOnes, second, fresh);
        for (size_t i = 0; i < HOLE_FIELDS; ++i) {
            HOLEVALUES one;
            one[i] = fresh[i];
            if (i == EXTERNAL_TEMP)
                one[OWN_TEMP] = "1"; // else the field is closed
            Check(second, holeOnes, one);
        }
    }
}

TEST_F(HoleSelection, KeepsDifferingDescriptions)
{
    HOLEVALUES other = holeOnes;
    other[DESCRIPTION] = "Tor S\xFC"
                         "d";
    Pair(holeOnes, other);
    Open([](DialogBox &box) {
        EXPECT_EQ(box.Text(TEXT), "");
        box.Type(W, "5");
        box.Click(WIN_ID_OK);
    });
    EXPECT_STREQ(Holes(0).description, "Tor Nord");
    EXPECT_STREQ(Holes(1).description, "Tor S\xFC"
                                       "d");
    EXPECT_EQ(Holes(0).size.x, 5);
    EXPECT_EQ(Holes(1).size.x, 5);
}

TEST_F(HoleSelection, OfOneOpeningIsThatOpening)
{
    Pair(holeOnes, holeOthers);
    Choose(layer, First());
    Open([](DialogBox &box) {
        EXPECT_EQ(Seen(box), holeOnes);
        box.Type(K, "0.333");
        box.Click(WIN_ID_OK);
    });
    HOLEVALUES expected = holeOnes;
    expected[TRANSMISSION] = "0.333";
    EXPECT_EQ(ValuesOf(Holes(0)), expected);
    EXPECT_EQ(ValuesOf(Holes(1)), holeOthers);
}

TEST_F(HoleSelection, StaysAsItIsWhenCancelled)
{
    Pair(holeOnes, holeOthers);
    Open([](DialogBox &box) {
        for (int id : edits)
            box.Type(id, "9");
        box.Press("Esc");
    });
    EXPECT_EQ(ValuesOf(Holes(0)), holeOnes);
    EXPECT_EQ(ValuesOf(Holes(1)), holeOthers);
    EXPECT_FALSE(doc.modified);
    EXPECT_EQ(doc.obsolete, 0);
}

TEST_F(HoleSelection, KeepsAnEmptyDescription)
{
    HOLEVALUES none = holeOnes;
    none[DESCRIPTION] = "";
    Pair(none, none);
    Open([](DialogBox &box) { box.Click(WIN_ID_OK); });
    EXPECT_STREQ(Holes(0).description, "");
}

// Of what the tools will make

using HoleStock = HoleDialog;

TEST_F(HoleStock, IsAskedForAndRememberedWithinTheToolsLife)
{
    for (int tool : {int{EDC_TlSTOCK}, int{EDC_TlRECT}}) {
        bool drawn = tool == EDC_TlRECT;
        auto ask = [&](bool first, const USER &user) {
            InDialog(user);
            return layer.QueryCreation(tool, first);
        };
        EXPECT_EQ(ask(true, [](DialogBox &box) { box.Press("Esc"); }), nullptr) << "cancelled at once";
        HOLEVALUES typed = holeOnes;
        if (drawn)
            typed[WIDTH] = typed[HEIGHT] = "";
        EXPECT_EQ(ask(true,
                      [&](DialogBox &box) {
                          EXPECT_EQ(Seen(box), Blank());
                          for (int id : sizeControls)
                              EXPECT_EQ(box.IsEnabled(id), !drawn);
                          Type(box, typed);
                          box.Click(WIN_ID_OK);
                      }),
                  &layer.stock);
        EXPECT_EQ(layer.stock.target, set);
        auto look = [&](DialogBox &box) {
            EXPECT_EQ(Seen(box), typed) << "the last input";
            box.Type(TEXT, "verworfen");
            box.Press("Esc");
        };
        EXPECT_EQ(ask(false, look), &layer.stock) << "a cancelled second run keeps the former parameters";
        EXPECT_EQ(ask(false, look), &layer.stock);
        EXPECT_EQ(ask(true,
                      [](DialogBox &box) {
                          EXPECT_EQ(Seen(box), Blank()) << "a tool that is chosen anew begins anew";
                          box.Press("Esc");
                      }),
                  nullptr);
        EXPECT_EQ(layer.stock.target, nullptr);
    }
    EXPECT_FALSE(doc.modified);
    EXPECT_EQ(set->Count(), 0);
}
} // namespace
