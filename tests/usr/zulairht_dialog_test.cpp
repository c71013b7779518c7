// The dialog of warm-air units, by itself and over a selection, and what it makes of the catalogue.
#include "support/folder.h"
#include "usr/zulcatalogs.h"
#include "zulairhtcase.h"

namespace
{
using testdoor::DialogBox;

enum { TEXT = 100, REMOVE = 101, CHANGE = 102 };
enum { HEATER_LIST = 100 };

const HEATERS heaters = {
    {"T\xFCrschleier \xC4\xD6\xDC\xE4\xF6\xFC\xDF 4 m, 18 kW", {18000, 18, 3000, 4, 0.5, 0.4}},
    {"WG 24", {24000, 26.5, 2700, 0.1 + 0.2, 0.7, 0.8}}};
const UNITVALUES chosen = {"WG 24", "24000", "26.5", "2700", "0.3", "0.7", "0.8"};

/// The lines that a person reads, a blank for each tab.
std::string Lines(const UNITVALUES &values)
{
    auto with = [](const std::string &value, const char *unit) { return value == "?" ? "" : value + unit; };
    if (values[TYPE_NAME] == "-")
        return "Typ:\t\t\n";
    std::string text = "Typ:\t\t" + with(values[TYPE_NAME], "") + "\n";
    text += "Leistung:\t" + with(values[OUTPUT], " W") + "\n";
    text += "Temp.erh\xF6hung:\t" + with(values[TEMP_RISE], " K") + "\n";
    text += "Luftdurchfluss:\t" + with(values[AIR_FLOW], " m\xB3/h") + "\n";
    bool sized = values[LENGTH] != "?" && values[WIDTH] != "?" && values[HEIGHT] != "?";
    std::string size = values[LENGTH] + " x " + values[WIDTH] + " x " + values[HEIGHT] + " m";
    return text + "Abmessungen:\t" + (sized ? size : "") + "\n";
}

class UnitDialog : public UnitCase
{
protected:
    UnitDialog() { TEdcCtlgList::SetCatalogDirectory(folder.Name("Katalogy").c_str(), "zec"); }

    bool Run(TZulAirHeaterData &data, const USER &user)
    {
        InDialog([&user](DialogBox &box) {
            EXPECT_EQ(box.Caption(), "Warmluftaggregat");
            user(box);
        });
        TZulAirHeaterDialog dialog(data);
        bool confirmed = dialog.Execute() == WIN_ID_OK;
        EXPECT_STREQ(xCode, XNULL);
        return confirmed;
    }
    static TZulAirHeaterData Filled(const UNITVALUES &values)
    {
        EmAIRHEATER unit;
        SetUnit(unit, values);
        TZulAirHeaterData data;
        data.Exchange(EDC_XLOAD, unit);
        return data;
    }
    void FillCatalog()
    {
        std::filesystem::create_directories(folder.Path("Katalogy"));
        HeaterCatalog catalog;
        catalog.Put(heaters);
        catalog.Save();
        ASSERT_STREQ(xCode, XNULL);
    }
    /// Takes an entry of the catalogue, by its place in the alphabet.
    static void Choose(DialogBox &box, int entry)
    {
        InDialog([entry](DialogBox &catalog) {
            EXPECT_EQ(catalog.Caption(), "Katalog der Warmluftaggregate");
            catalog.ClickEntry(HEATER_LIST, entry);
            catalog.Click(WIN_ID_OK);
        });
        box.Click(CHANGE);
    }
    FOLDER folder;
};

TEST_F(UnitDialog, TellsWhatTheUnitIsLineByLine)
{
    for (unsigned undefined : Subsets(UNIT_FIELDS)) {
        UNITVALUES values = unitOnes;
        TZulAirHeaterData data = Filled(unitOnes);
        TEdcValue *const fields[] = {&data.typeName, &data.output, &data.tempRise, &data.airFlow,
                                     &data.length,   &data.width,  &data.height};
        for (size_t i = 0; i < UNIT_FIELDS; ++i)
            if (Has(undefined, i)) {
                fields[i]->id = EDC_VUDF;
                values[i] = "?";
            }
        Run(data, [&](DialogBox &box) {
            EXPECT_EQ(box.Text(TEXT), Lines(values)) << undefined;
            box.Press("Esc");
        });
    }
    TZulAirHeaterData none;
    Run(none, [](DialogBox &box) {
        EXPECT_EQ(box.Text(TEXT), "Typ:\t\t\n");
        box.Press("Esc");
    });
}

TEST_F(UnitDialog, ShowsTheLongestTypeWhole)
{
    UNITVALUES values = unitOnes;
    values[TYPE_NAME] = std::string(sizeof(EmAIRHEATER::type) - 1, '\xDC');
    TZulAirHeaterData data = Filled(values);
    Run(data, [&](DialogBox &box) {
        EXPECT_EQ(box.Text(TEXT), Lines(values));
        EXPECT_TRUE(Fits(box, TEXT));
        box.Press("Esc");
    });
}

TEST_F(UnitDialog, TakesTheTypeOffAndLeadsToOk)
{
    TZulAirHeaterData data = Filled(unitOnes);
    data.target = set;
    EXPECT_TRUE(Run(data, [](DialogBox &box) {
        box.Click(REMOVE);
        EXPECT_EQ(box.Text(TEXT), "Typ:\t\t\n");
        EXPECT_EQ(box.Focus(), WIN_ID_OK);
        box.Press("Return");
    }));
    EXPECT_EQ(ValuesOf(data), unitNone);
    EXPECT_EQ(data.target, set) << "where it goes is not the dialog's";
}

TEST_F(UnitDialog, TakesAnotherTypeFromTheCatalogue)
{
    FillCatalog();
    for (const UNITVALUES *before : {&unitOnes, &unitNone}) {
        TZulAirHeaterData data = Filled(*before);
        data.target = set;
        EXPECT_TRUE(Run(data, [](DialogBox &box) {
            Choose(box, 0);
            EXPECT_EQ(box.Text(TEXT).find(heaters[0].type), 6U) << "behind the label";
            Choose(box, 1);
            EXPECT_EQ(box.Text(TEXT), Lines(chosen));
            box.Click(WIN_ID_OK);
        }));
        UNITVALUES expected = chosen;
        expected[LENGTH] = Shown(0.1 + 0.2); // the catalogue's own
        EXPECT_EQ(ValuesOf(data), expected);
        EXPECT_EQ(data.target, set);
    }
}

TEST_F(UnitDialog, WorksOnACopyUntilOk)
{
    FillCatalog();
    TZulAirHeaterData data = Filled(unitOnes);
    EXPECT_FALSE(Run(data, [&](DialogBox &box) {
        Choose(box, 0);
        box.Click(REMOVE);
        EXPECT_EQ(ValuesOf(data), unitOnes);
        box.Click(WIN_ID_CANCEL);
    }));
    EXPECT_EQ(ValuesOf(data), unitOnes);
    EXPECT_FALSE(Run(data, [](DialogBox &box) {
        box.Click(REMOVE);
        box.CloseByFrame();
    }));
    EXPECT_EQ(ValuesOf(data), unitOnes);
}

TEST_F(UnitDialog, IsAsItWasWhereNothingIsChosen)
{
    FillCatalog();
    TZulAirHeaterData data = Filled(unitOnes);
    EXPECT_TRUE(Run(data, [](DialogBox &box) {
        InDialog([](DialogBox &catalog) {
            catalog.ClickEntry(HEATER_LIST, 0);
            catalog.Press("Esc");
        });
        box.Click(CHANGE);
        EXPECT_EQ(box.Text(TEXT), Lines(unitOnes));
        box.Press("Alt+B"); // "Abnehmen"
        EXPECT_EQ(box.Text(TEXT), Lines(unitNone));
        Choose(box, 1);
        EXPECT_EQ(box.Text(TEXT), Lines(chosen)) << "taken off and put on again";
        box.Click(WIN_ID_OK);
    }));
    EXPECT_EQ(ValuesOf(data)[TYPE_NAME], "WG 24");
}

TEST_F(UnitDialog, SaysThatThereIsNoCatalogue)
{
    TZulAirHeaterData data = Filled(unitOnes);
    EXPECT_TRUE(Run(data, [](DialogBox &box) {
        EXPECT_EQ(SaidWhile([&box] { box.Click(CHANGE); }), "Katalog liegt nicht vor.");
        EXPECT_EQ(box.Text(TEXT), Lines(unitOnes));
        box.Click(WIN_ID_OK);
    }));
    EXPECT_EQ(ValuesOf(data), unitOnes);
}

// Over a selection

class UnitSelection : public UnitDialog
{
protected:
    /// Two units of that kind, both selected, and one that is not.
    void Pair(const UNITVALUES &a, const UNITVALUES &b)
    {
        layer.DeleteAll(false);
        set->Clear();
        Put(AgPOINT(1, 5, 2), a);
        Put(AgPOINT(6, 5, 3), b);
        Put(AgPOINT(12, 5, 4), unitOthers);
        Show();
        layer.Select(Sprites()[1], true, NULL);
        layer.Select(Sprites()[0], true, NULL);
        layer.SetFocus(Sprites()[1], NULL);
        doc.obsolete = 0;
        doc.modified = false;
    }
    void Open(const USER &user)
    {
        InDialog(user);
        layer.OpenAt(0, {0, 0});
        EXPECT_STREQ(xCode, XNULL);
    }
    UNITVALUES Unit(size_t i) { return ValuesOf(*InSet()[i]); }
};

TEST_F(UnitSelection, ShowsWhatItsUnitsHaveInCommonAndKeepsTheRest)
{
    for (unsigned differing : Subsets(UNIT_FIELDS)) {
        SCOPED_TRACE(differing);
        UNITVALUES second = MixedUnit(differing);
        UNITVALUES seen = unitOnes;
        for (size_t i = 0; i < UNIT_FIELDS; ++i)
            if (Has(differing, i))
                seen[i] = "?";
        Pair(unitOnes, second);
        Open([&](DialogBox &box) {
            EXPECT_EQ(box.Text(TEXT), Lines(seen));
            box.Click(WIN_ID_OK);
        });
        EXPECT_EQ(Unit(0), unitOnes);
        EXPECT_EQ(Unit(1), second);
        EXPECT_EQ(Places(), "1,5,2;6,5,3;12,5,4");
        EXPECT_EQ(doc.obsolete, EDC_LAYOUT);
        EXPECT_TRUE(doc.modified);
        Open([](DialogBox &box) {
            box.Click(REMOVE);
            box.Click(WIN_ID_OK);
        });
        EXPECT_EQ(Unit(0)[TYPE_NAME], "-");
        EXPECT_EQ(Unit(1)[TYPE_NAME], "-");
        EXPECT_EQ(Unit(2), unitOthers) << "of no concern";
    }
}

TEST_F(UnitSelection, OfUnitsWithAndWithoutATypeKeepsBoth)
{
    UNITVALUES nothing;
    nothing.fill("?");
    const UNITVALUES former = {"-", "1", "2", "3", "4", "5", "6"}; // what a type left behind
    Pair(unitOnes, former);
    Open([&](DialogBox &box) {
        EXPECT_EQ(box.Text(TEXT), Lines(nothing));
        box.Click(WIN_ID_OK);
    });
    EXPECT_EQ(Unit(0), unitOnes);
    EXPECT_EQ(Unit(1), former);
}

TEST_F(UnitSelection, TakesOneTypeForAll)
{
    FillCatalog();
    for (const UNITVALUES *second : {&unitOnes, &unitOthers, &unitNone}) {
        Pair(unitOnes, *second);
        Open([](DialogBox &box) {
            Choose(box, 1);
            box.Click(WIN_ID_OK);
        });
        UNITVALUES expected = chosen;
        expected[LENGTH] = Shown(0.1 + 0.2);
        EXPECT_EQ(Unit(0), expected);
        EXPECT_EQ(Unit(1), expected);
        EXPECT_EQ(Unit(2), unitOthers);
    }
}

TEST_F(UnitSelection, StaysAsItIsWithoutAFocusAndWhenCancelled)
{
    Pair(unitOnes, unitOthers);
    layer.SetFocus(NULL, NULL);
    layer.OpenAt(0, {0, 0});
    EXPECT_EQ(testdoor::UnexpectedBoxes(), 0);
    layer.SetFocus(First(), NULL);
    doc.obsolete = 0;
    Open([](DialogBox &box) {
        box.Click(REMOVE);
        box.Press("Esc");
    });
    EXPECT_EQ(Unit(0), unitOnes);
    EXPECT_EQ(Unit(1), unitOthers);
    EXPECT_FALSE(doc.modified);
    EXPECT_EQ(doc.obsolete, 0);
}

TEST_F(UnitDialog, IsAskedForNewUnitsAndRememberedWithinTheToolsLife)
{
    FillCatalog();
    auto ask = [&](bool first, const USER &user) {
        InDialog(user);
        return layer.QueryCreation(EDC_TlSTOCK, first);
    };
    auto cancel = [](DialogBox &box) { box.Press("Esc"); };
    EXPECT_EQ(ask(true, cancel), nullptr);
    EXPECT_EQ(ask(true,
                  [](DialogBox &box) {
                      EXPECT_EQ(box.Text(TEXT), Lines(unitNone));
                      Choose(box, 1);
                      box.Click(WIN_ID_OK);
                  }),
              &layer.stock);
    EXPECT_EQ(layer.stock.target, set);
    EXPECT_EQ(ask(false,
                  [](DialogBox &box) {
                      EXPECT_EQ(box.Text(TEXT), Lines(chosen)) << "the last input";
                      box.Click(REMOVE);
                      box.Press("Esc");
                  }),
              &layer.stock);
    EXPECT_EQ(ValuesOf(layer.stock)[TYPE_NAME], "WG 24") << "a cancelled run keeps the former parameters";
    EXPECT_EQ(ask(false,
                  [](DialogBox &box) {
                      box.Click(REMOVE);
                      box.Click(WIN_ID_OK);
                  }),
              &layer.stock);
    EXPECT_EQ(layer.stock.target, set) << "a unit without a type can be made too";
    EXPECT_EQ(ask(true, cancel), nullptr);
}
} // namespace
