// The design dialogs as a user meets them: what they show of a hall and give back to it, the buttons that fill
// a field, the texts that change with a choice, and what leaving a dialog leaves behind.
#include "support/folder.h"
#include "zulcatalogs.h"
#include "zuldlgcase.h"

namespace
{
using testdoor::DialogBox;

enum { FIND_FLOOR = 101, FIND_WALL = 104, FIND_CEILING = 108 };
enum { OUTSIDE_WALL = 106, OUTSIDE_CEILING = 110, OUTSIDE_AIR = 113 };
enum { PRICE_LABEL = 102, CONDITIONS = 102 };

// In the order of the keys.
const struct {
    int key;
    const char *shown;
} shownFields[] = {
    {NEW_LENGTH, "60"},    {NEW_WIDTH, "30.5"},  {NEW_HEIGHT, "8.25"}, {MAP_HEIGHT, "1.5"},
    {MAP_MIN, "20"},       {MAP_MAX, "180"},     {MAP_AIR, "14.5"},    {PERIOD_DAYS, "210"},
    {MEAN_OUT, "3.8"},     {DESIGN_OUT, "-15"},  {WEEK_DAYS, "5"},     {DAY_HOURS, "7.5"},
    {RUN_AIR, "15"},       {RESULT, "18"},       {REDUCED_AIR, "5"},   {FLOOR_K, "0.41"},
    {FLOOR_TEMP, "6"},     {WALL_K, "0.43"},     {WALL_TEMP, "-17"},   {CEILING_K, "0.42"},
    {CEILING_TEMP, "-16"}, {AIR_CHANGE, "0.75"}, {AIR_TEMP, "-14"},    {FUEL, "Erdgas"},
    {REGULATION, "0.95"},  {PRICE, "12.5"},      {TECH_GAIN, "1.5"},   {WORK_CLASS, "IIb"},
    {POSITION, "sitzend"},
};
const int dialogs[] = {NEW, UPDATE, PERIOD, INSULATION, ENERGY, HYGIENE};

/// Fields of the hall that are numbers, with the dialog that shows them.
const struct REALFIELD {
    int key;
    double &(*of)(EmROOMDATA &);
} realFields[] = {
    {MEAN_OUT, [](EmROOMDATA &d) -> double & { return d.meanOutTemp; }},
    {DESIGN_OUT, [](EmROOMDATA &d) -> double & { return d.designOutTemp; }},
    {DAY_HOURS, [](EmROOMDATA &d) -> double & { return d.dayHours; }},
    {RUN_AIR, [](EmROOMDATA &d) -> double & { return d.runAirTemp; }},
    {RESULT, [](EmROOMDATA &d) -> double & { return d.resultTemp; }},
    {REDUCED_AIR, [](EmROOMDATA &d) -> double & { return d.reducedAirTemp; }},
    {FLOOR_K, [](EmROOMDATA &d) -> double & { return d.constr[0].k; }},
    {FLOOR_TEMP, [](EmROOMDATA &d) -> double & { return d.constr[0].tExt; }},
    {WALL_K, [](EmROOMDATA &d) -> double & { return d.constr[2].k; }},
    {WALL_TEMP, [](EmROOMDATA &d) -> double & { return d.constr[2].tExt; }},
    {CEILING_K, [](EmROOMDATA &d) -> double & { return d.constr[1].k; }},
    {CEILING_TEMP, [](EmROOMDATA &d) -> double & { return d.constr[1].tExt; }},
    {AIR_CHANGE, [](EmROOMDATA &d) -> double & { return d.airChange; }},
    {AIR_TEMP, [](EmROOMDATA &d) -> double & { return d.airTemp; }},
    {REGULATION, [](EmROOMDATA &d) -> double & { return d.regulation; }},
    {PRICE, [](EmROOMDATA &d) -> double & { return d.fuelPrice; }},
};

/// The values of a record one by one, as its dialog walks them.
std::vector<TEdcValue *> Walk(void *record, size_t bytes)
{
    std::vector<TEdcValue *> values;
    char *at = static_cast<char *>(record);
    for (char *end = at + bytes; at < end; at += values.back()->Size())
        values.push_back(reinterpret_cast<TEdcValue *>(at));
    return values;
}

/// Loads a record from the design, makes one value of it undefined and stores it in an empty hall.
/// @return which of the design's fields arrived, and how many values the record has
template <class RECORD>
std::map<int, std::string> StoreWithout(size_t value, size_t &count)
{
    DESIGN from;
    RECORD record;
    record.Exchange(EDC_XLOAD, from.data);
    std::vector<TEdcValue *> values = Walk(&record, sizeof record);
    count = values.size();
    values[value]->id = EDC_VUDF;
    DESIGN to;
    to.data = EmROOMDATA();
    to.data.fuelType = EM_PROPANE;
    record.Exchange(EDC_XSTORE, to.data);
    return Values(to);
}

template <class RECORD>
void CheckUndefined(const std::vector<int> &keys)
{
    DESIGN empty;
    empty.data = EmROOMDATA();
    empty.data.fuelType = EM_PROPANE;
    size_t count = 0;
    for (size_t i = 0; i < keys.size(); ++i) {
        std::map<int, std::string> expected = Values(empty), from = Values(DESIGN());
        for (size_t k = 0; k < keys.size(); ++k)
            if (k != i)
                expected[keys[k]] = from[keys[k]];
        EXPECT_EQ(StoreWithout<RECORD>(i, count), expected) << keys[i];
    }
    EXPECT_EQ(count, keys.size());
}

/// A design dialog beside a catalogue of building elements on a disk of its own.
class FindingElements : public DesignDialogs
{
protected:
    enum { GROUP_LIST = 100, ITEM_LIST = 101 };

    FindingElements() { TEdcCtlgList::SetCatalogDirectory(folder.Name("Katalogy").c_str(), "zec"); }

    void PutFile(const std::string &bytes)
    {
        std::filesystem::create_directories(folder.Path("Katalogy"));
        folder.Put("Katalogy/.StavPrv.zec", bytes);
    }
    void PutElements(double brick)
    {
        PutFile(EncodeItems(ElementItems(
            {{"Dach", {{"Blech", 1.25}}}, {"W\xE4nde", {{"Altbau", 1.23456789}, {"Ziegel", brick}}}})));
    }

    /// Presses a button of the dialog and does that in the catalogue.
    static void Find(DialogBox &box, int button, const USER &user)
    {
        bool came = false;
        InDialog([&](DialogBox &catalog) {
            came = true;
            user(catalog);
        });
        box.Click(button);
        EXPECT_TRUE(came);
    }
    static USER Picking(int group, int item)
    {
        return [=](DialogBox &catalog) {
            catalog.ClickEntry(GROUP_LIST, group);
            catalog.ClickEntry(ITEM_LIST, item);
            catalog.Click(WIN_ID_OK);
        };
    }

    FOLDER folder;
};

const struct FINDBUTTON {
    int button;
    int key;
} findButtons[] = {{FIND_FLOOR, FLOOR_K}, {FIND_WALL, WALL_K}, {FIND_CEILING, CEILING_K}};

const struct OUTSIDEBUTTON {
    int button;
    int key;
} outsideButtons[] = {{OUTSIDE_WALL, WALL_TEMP}, {OUTSIDE_CEILING, CEILING_TEMP}, {OUTSIDE_AIR, AIR_TEMP}};

std::string ConditionsWith(const std::string &energy)
{
    return "Wärmewiderst.d.Kleides\t\t0.75 - 1 clo\nEnergieausgabe\t\t\t" + energy +
           " W/m2\nLuftströmungsgeschwind.\t0 - 0.2 m/s\nRel. Luftfeuchtigkeit\t\t30 - 70 %";
}
} // namespace

TEST_F(DesignDialogs, ShowEachValueOfTheHallInItsOwnField)
{
    for (int dialog : dialogs)
        Run(dialog, [&](DialogBox &box) {
            for (const auto &field : shownFields)
                if (DialogOf(field.key) == dialog) {
                    EXPECT_EQ(box.Text(IdOf(field.key)), field.shown) << field.key;
                }
            box.Press("Esc");
        });
}

TEST_F(DesignDialogs, GiveBackWhatTheyWereGiven)
{
    const std::map<int, std::string> before = Values(design);
    for (int dialog : dialogs) {
        EXPECT_TRUE(Run(dialog, [](DialogBox &box) { EXPECT_EQ(PressOk(box), ""); })) << dialog;
        EXPECT_EQ(Values(design), before) << dialog;
    }
}

TEST_F(DesignDialogs, ShowTheFloorThenTheWallsThenTheCeiling)
{
    EXPECT_TRUE(Run(INSULATION, [](DialogBox &box) {
        const struct {
            int key;
            const char *typed;
        } rows[] = {{FLOOR_K, "1"},   {FLOOR_TEMP, "2"}, {WALL_K, "3"},
                    {WALL_TEMP, "4"}, {CEILING_K, "5"},  {CEILING_TEMP, "6"}};
        for (const auto &row : rows)
            box.Type(IdOf(row.key), row.typed);
        EXPECT_EQ(PressOk(box), "");
    }));
    const double expected[3][2] = {{1, 2}, {5, 6}, {3, 4}};
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(design.data.constr[i].k, expected[i][0]) << i;
        EXPECT_EQ(design.data.constr[i].tExt, expected[i][1]) << i;
        EXPECT_EQ(design.data.constr[i].alpha, 8) << "what no dialog shows stays";
    }
}

TEST_F(DesignDialogs, TakeTheNoiseOutOfANumber)
{
    for (const REALFIELD &field : realFields) {
        design = DESIGN();
        field.of(design.data) = 0.1 + 0.2;
        EXPECT_TRUE(Run(DialogOf(field.key), [&](DialogBox &box) {
            EXPECT_EQ(box.Text(IdOf(field.key)), "0.3") << field.key;
            EXPECT_EQ(PressOk(box), "");
        }));
        EXPECT_EQ(field.of(design.data), 0.3) << field.key;
    }
    for (double tiny : {1e-13, -4e-13, -0.0}) {
        design.data.meanOutTemp = tiny;
        Run(PERIOD, [](DialogBox &box) {
            EXPECT_EQ(box.Text(IdOf(MEAN_OUT)), "0");
            box.Press("Esc");
        });
    }
}

TEST(DesignRecords, AreRoundedHalfAwayFromZeroOnTheirWayIn)
{
    const struct {
        double stored;
        double loaded;
    } rows[] = {{0.1 + 0.2, 0.3},       {-(0.1 + 0.2), -0.3},
                {4.9e-13, 0},           {5.1e-13, 1e-12},
                {-5.1e-13, -1e-12},     {20, 20},
                {1e300, 1e300},         {-1234.5678901, -1234.5678901},
                {7.0000000000004, 7.0}, {0.7 + 0.1, 0.8}};
    for (const auto &row : rows) {
        DESIGN design;
        for (const REALFIELD &field : realFields)
            field.of(design.data) = row.stored;
        TZulPeriodData period;
        period.Exchange(EDC_XLOAD, design.data);
        TZulInsulationData insulation;
        insulation.Exchange(EDC_XLOAD, design.data);
        TZulEnergyData energy;
        energy.Exchange(EDC_XLOAD, design.data);
        for (const TEdcFloat *value :
             {&period.meanOutTemp, &period.designOutTemp, &period.dayHours, &period.runAirTemp,
              &period.resultTemp, &period.reducedAirTemp, &insulation.floorK, &insulation.floorTemp,
              &insulation.wallK, &insulation.wallTemp, &insulation.ceilingK, &insulation.ceilingTemp,
              &insulation.airChange, &insulation.airTemp, &energy.regulation, &energy.fuelPrice}) {
            EXPECT_EQ(value->id, EDC_VVAL);
            EXPECT_DOUBLE_EQ(value->value, row.loaded);
        }
    }
}

TEST(DesignRecords, LeaveTheFieldOfAnUndefinedValue)
{
    CheckUndefined<TZulPeriodData>(
        {PERIOD_DAYS, MEAN_OUT, DESIGN_OUT, WEEK_DAYS, DAY_HOURS, RUN_AIR, RESULT, REDUCED_AIR});
    CheckUndefined<TZulInsulationData>(
        {FLOOR_K, FLOOR_TEMP, WALL_K, WALL_TEMP, CEILING_K, CEILING_TEMP, AIR_CHANGE, AIR_TEMP});
    CheckUndefined<TZulEnergyData>({FUEL, REGULATION, PRICE, TECH_GAIN});
    CheckUndefined<TZulHygieneData>({WORK_CLASS, POSITION});
}

TEST(DesignRecords, KnowNothingAtFirst)
{
    TZulPeriodData period;
    TZulInsulationData insulation;
    TZulEnergyData energy;
    TZulHygieneData hygiene;
    TZulNewData sizes;
    for (const auto &values :
         {Walk(&period, sizeof period), Walk(&insulation, sizeof insulation), Walk(&energy, sizeof energy),
          Walk(&hygiene, sizeof hygiene), Walk(&sizes, sizeof sizes)})
        for (const TEdcValue *value : values)
            EXPECT_EQ(value->id, EDC_VUDF);
}

TEST(DesignRecords, LeaveTheHallAsItIsOnTheirWayIn)
{
    DESIGN design;
    const std::map<int, std::string> before = Values(design);
    TZulPeriodData period;
    TZulInsulationData insulation;
    TZulEnergyData energy;
    TZulHygieneData hygiene;
    period.Exchange(EDC_XLOAD, design.data);
    insulation.Exchange(EDC_XLOAD, design.data);
    energy.Exchange(EDC_XLOAD, design.data);
    hygiene.Exchange(EDC_XLOAD, design.data);
    EXPECT_EQ(Values(design), before);
}

TEST_F(DesignDialogs, ShowTheTechnologicalGainInKilowatts)
{
    const struct {
        double watts;
        const char *shown;
        double back;
    } rows[] = {
        {1500, "1.5", 1500}, {0, "0", 0}, {1, "0.001", 1}, {250000, "250", 250000}, {12.5, "0.0125", 12.5}};
    for (const auto &row : rows) {
        design.data.techGain = row.watts;
        EXPECT_TRUE(Run(ENERGY, [&](DialogBox &box) {
            EXPECT_EQ(box.Text(IdOf(TECH_GAIN)), row.shown);
            EXPECT_EQ(PressOk(box), "");
        }));
        EXPECT_DOUBLE_EQ(design.data.techGain, row.back);
    }
}

TEST_F(DesignDialogs, ChangeNothingWhenTheyAreLeft)
{
    const std::map<int, std::string> before = Values(design);
    const std::function<void(DialogBox &)> ways[] = {
        [](DialogBox &box) { box.Press("Esc"); },
        [](DialogBox &box) { box.Click(WIN_ID_CANCEL); },
        [](DialogBox &box) { box.CloseByFrame(); },
    };
    for (int dialog : dialogs)
        for (const auto &leave : ways) {
            EXPECT_FALSE(Run(dialog, [&](DialogBox &box) {
                for (const auto &field : shownFields) {
                    if (DialogOf(field.key) != dialog)
                        continue;
                    if (field.key == FUEL || field.key == WORK_CLASS || field.key == POSITION)
                        box.Choose(IdOf(field.key), field.key == POSITION ? 0 : 1);
                    else
                        box.Type(IdOf(field.key), "nichts");
                }
                leave(box);
            })) << dialog;
            EXPECT_EQ(Values(design), before) << dialog;
        }
}

TEST_F(DesignDialogs, OfANewHallStartEmptyAndAreAskedAgain)
{
    design.sizes.Reset();
    EXPECT_TRUE(Run(NEW, [](DialogBox &box) {
        for (int key : {NEW_LENGTH, NEW_WIDTH, NEW_HEIGHT})
            EXPECT_EQ(box.Text(IdOf(key)), "") << key;
        box.TypeKeys("60\t30\t8");
        box.Press("Return");
    }));
    EXPECT_EQ(design.sizes.length.value, 60);
    EXPECT_EQ(design.sizes.width.value, 30);
    EXPECT_EQ(design.sizes.height.value, 8);
    design.sizes.Reset();
    for (const TEdcFloat *size : {&design.sizes.length, &design.sizes.width, &design.sizes.height})
        EXPECT_EQ(size->id, EDC_VUDF);
    Run(NEW, [](DialogBox &box) {
        EXPECT_EQ(box.Text(IdOf(NEW_LENGTH)), "");
        box.Press("Esc");
    });
}

TEST_F(DesignDialogs, OfAnEvaluationStartWithTheFloorAndBothBoxesOn)
{
    design.update = TZulUpdateData();
    EXPECT_TRUE(Run(UPDATE, [](DialogBox &box) {
        EXPECT_EQ(box.Text(IdOf(MAP_HEIGHT)), "0");
        for (int key : {MAP_MIN, MAP_MAX, MAP_AIR})
            EXPECT_EQ(box.Text(IdOf(key)), "") << key;
        EXPECT_EQ(box.Check(IdOf(MAP_DRAFT)), WIN_CHECKED);
        EXPECT_EQ(box.Check(IdOf(MAP_FINE)), WIN_CHECKED);
        EXPECT_EQ(PressOk(box), "");
    }));
    ZulPassParams params = design.update.Params();
    EXPECT_EQ(params.height, 0);
    EXPECT_FALSE(params.minInte);
    EXPECT_FALSE(params.maxInte);
    EXPECT_FALSE(params.airTemp);
    EXPECT_TRUE(params.draft);
    EXPECT_TRUE(params.fineScale);
}

TEST_F(DesignDialogs, OfAnEvaluationKeepWhatWasEnteredLast)
{
    design.update = TZulUpdateData();
    EXPECT_TRUE(Run(UPDATE, [](DialogBox &box) {
        box.Type(IdOf(MAP_HEIGHT), "1.1");
        box.Type(IdOf(MAP_MIN), "-5");
        box.Type(IdOf(MAP_MAX), "250.5");
        box.Type(IdOf(MAP_AIR), "0");
        box.Click(IdOf(MAP_DRAFT));
        box.Press("Alt+F");
        EXPECT_EQ(box.Check(IdOf(MAP_DRAFT)), WIN_UNCHECKED);
        EXPECT_EQ(box.Check(IdOf(MAP_FINE)), WIN_UNCHECKED);
        EXPECT_EQ(PressOk(box), "");
    }));
    ZulPassParams params = design.update.Params();
    EXPECT_EQ(params.height, 1.1);
    EXPECT_EQ(params.minInte, -5);
    EXPECT_EQ(params.maxInte, 250.5);
    EXPECT_EQ(params.airTemp, 0);
    EXPECT_FALSE(params.draft);
    EXPECT_FALSE(params.fineScale);
    EXPECT_TRUE(Run(UPDATE, [](DialogBox &box) {
        EXPECT_EQ(box.Text(IdOf(MAP_HEIGHT)), "1.1");
        EXPECT_EQ(box.Text(IdOf(MAP_MIN)), "-5");
        EXPECT_EQ(box.Text(IdOf(MAP_MAX)), "250.5");
        EXPECT_EQ(box.Text(IdOf(MAP_AIR)), "0");
        EXPECT_EQ(box.Check(IdOf(MAP_DRAFT)), WIN_UNCHECKED);
        EXPECT_EQ(box.Check(IdOf(MAP_FINE)), WIN_UNCHECKED);
        box.Type(IdOf(MAP_MAX), "");
        box.Press("Alt+K");
        EXPECT_EQ(PressOk(box), "");
    }));
    params = design.update.Params();
    EXPECT_EQ(params.minInte, -5);
    EXPECT_FALSE(params.maxInte) << "emptied, so the evaluation finds it again";
    EXPECT_TRUE(params.draft);
    EXPECT_FALSE(params.fineScale);
}

TEST_F(DesignDialogs, TakeTheDesignOutdoorTemperatureOfTheHall)
{
    const struct {
        double stored;
        const char *shown;
        double taken;
    } rows[] = {{-15, "-15", -15}, {0.1 + 0.2, "0.3", 0.3}, {-12.3456789, "-12.3457", -12.3457}, {0, "0", 0}};
    for (const OUTSIDEBUTTON &row : outsideButtons)
        for (const auto &temperature : rows) {
            design = DESIGN();
            design.data.designOutTemp = temperature.stored;
            std::map<int, std::string> expected = Values(design);
            expected[row.key] = Shown(temperature.taken);
            EXPECT_TRUE(Run(INSULATION, [&](DialogBox &box) {
                box.Click(row.button);
                EXPECT_EQ(box.Text(IdOf(row.key)), temperature.shown) << row.key;
                EXPECT_EQ(PressOk(box), "");
            }));
            EXPECT_EQ(Values(design), expected) << row.key;
        }
}

TEST_F(DesignDialogs, TakeTheOutdoorTemperatureAsItWasLastStored)
{
    Run(PERIOD, [](DialogBox &box) {
        box.Type(IdOf(DESIGN_OUT), "-30");
        box.Press("Esc");
    });
    auto outside = [this](const char *shown) {
        Run(INSULATION, [&](DialogBox &box) {
            for (const OUTSIDEBUTTON &row : outsideButtons) {
                box.Click(row.button);
                EXPECT_EQ(box.Text(IdOf(row.key)), shown) << row.key;
            }
            box.Press("Esc");
        });
    };
    outside("-15");
    Run(PERIOD, [](DialogBox &box) {
        box.Type(IdOf(DESIGN_OUT), "-30");
        EXPECT_EQ(PressOk(box), "");
    });
    outside("-30");
    EXPECT_EQ(design.data.constr[2].tExt, -17) << "nothing is stored before OK";
}

TEST_F(FindingElements, FillsTheFieldBesideTheButton)
{
    PutElements(0.3);
    for (const FINDBUTTON &row : findButtons) {
        design = DESIGN();
        std::map<int, std::string> expected = Values(design);
        EXPECT_TRUE(Run(INSULATION, [&](DialogBox &box) {
            Find(box, row.button, Picking(1, 1));
            EXPECT_EQ(box.Text(IdOf(row.key)), "0.3") << row.key;
            EXPECT_EQ(Values(design), expected) << "nothing is stored before OK";
            EXPECT_EQ(PressOk(box), "");
        }));
        expected[row.key] = "0.3";
        EXPECT_EQ(Values(design), expected) << row.key;
    }
}

TEST_F(FindingElements, ShowsSixDigitsAtMost)
{
    PutElements(0.3);
    EXPECT_TRUE(Run(INSULATION, [](DialogBox &box) {
        Find(box, FIND_WALL, Picking(1, 0));
        EXPECT_EQ(box.Text(IdOf(WALL_K)), "1.23457");
        EXPECT_EQ(PressOk(box), "");
    }));
    EXPECT_EQ(design.data.constr[2].k, 1.23457);
}

TEST_F(FindingElements, LeavesTheFieldWhereNothingIsChosen)
{
    PutElements(0.3);
    for (const FINDBUTTON &row : findButtons)
        Run(INSULATION, [&](DialogBox &box) {
            box.Type(IdOf(row.key), "0.77");
            Find(box, row.button, [](DialogBox &catalog) {
                catalog.ClickEntry(GROUP_LIST, 1);
                catalog.ClickEntry(ITEM_LIST, 1);
                catalog.Press("Esc");
            });
            EXPECT_EQ(box.Text(IdOf(row.key)), "0.77") << row.key;
            box.Press("Esc");
        });
}

TEST_F(FindingElements, LeavesTheFieldWhereTheCatalogueIsEmpty)
{
    for (const GROUPS &groups : {GROUPS(), GROUPS{{"leer", {}}}}) {
        PutFile(EncodeItems(ElementItems(groups)));
        Run(INSULATION, [&](DialogBox &box) {
            Find(box, FIND_FLOOR, [](DialogBox &catalog) {
                EXPECT_EQ(catalog.Entries(ITEM_LIST), std::vector<std::string>());
                EXPECT_FALSE(catalog.IsEnabled(WIN_ID_OK));
                catalog.Press("Return");
                catalog.Press("Esc");
            });
            EXPECT_EQ(box.Text(IdOf(FLOOR_K)), "0.41");
            box.Press("Esc");
        });
    }
}

TEST_F(FindingElements, SaysThatThereIsNoCatalogue)
{
    Run(INSULATION, [](DialogBox &box) {
        for (const FINDBUTTON &row : findButtons) {
            std::string before = box.Text(IdOf(row.key));
            EXPECT_EQ(SaidWhile([&] { box.Click(row.button); }), "Katalog liegt nicht vor.");
            EXPECT_EQ(box.Text(IdOf(row.key)), before);
        }
        box.Press("Esc");
    });
}

TEST_F(FindingElements, ReportsADamagedCatalogueAndKeepsWhatWasEntered)
{
    PutFile("kein Katalog");
    EXPECT_TRUE(Run(INSULATION, [&](DialogBox &box) {
        box.Type(IdOf(FLOOR_K), "0.5");
        EXPECT_NE(SaidWhile([&box] { box.Click(FIND_FLOOR); }), "");
        EXPECT_EQ(box.Text(IdOf(FLOOR_K)), "0.5");
        EXPECT_EQ(PressOk(box), "");
    }));
    EXPECT_EQ(design.data.constr[0].k, 0.5);
}

TEST_F(FindingElements, ReadsTheCatalogueAnewAtEachPress)
{
    PutElements(0.3);
    Run(INSULATION, [this](DialogBox &box) {
        Find(box, FIND_FLOOR, Picking(1, 1));
        EXPECT_EQ(box.Text(IdOf(FLOOR_K)), "0.3");
        PutElements(0.25);
        Find(box, FIND_FLOOR, Picking(1, 1));
        EXPECT_EQ(box.Text(IdOf(FLOOR_K)), "0.25");
        Find(box, FIND_CEILING, Picking(0, 0));
        EXPECT_EQ(box.Text(IdOf(CEILING_K)), "1.25");
        box.Press("Esc");
    });
}

TEST_F(DesignDialogs, LabelThePriceByTheFuelAndLeaveItsNumber)
{
    EXPECT_TRUE(Run(ENERGY, [](DialogBox &box) {
        EXPECT_EQ(TextOf(box, PRICE_LABEL), "&Preis [€/m3]");
        EXPECT_TRUE(Fits(box, PRICE_LABEL));
        box.Type(IdOf(PRICE), "11.25");
        box.Choose(IdOf(FUEL), 1);
        EXPECT_EQ(TextOf(box, PRICE_LABEL), "&Preis [€/kg]");
        EXPECT_EQ(box.Text(IdOf(PRICE)), "11.25");
        EXPECT_EQ(ToUtf8(box.AccessibleName(IdOf(PRICE)).c_str()), "Preis [€/kg]");
        box.Press("Alt+P");
        EXPECT_EQ(box.Focus(), IdOf(PRICE));
        box.Choose(IdOf(FUEL), 0);
        EXPECT_EQ(TextOf(box, PRICE_LABEL), "&Preis [€/m3]");
        box.Press("Alt+B");
        box.Press("Down");
        EXPECT_EQ(TextOf(box, PRICE_LABEL), "&Preis [€/kg]") << "by the keyboard, too";
        EXPECT_EQ(box.Text(IdOf(PRICE)), "11.25");
        EXPECT_EQ(PressOk(box), "");
    }));
    EXPECT_EQ(design.data.fuelType, EM_PROPANE);
    EXPECT_EQ(design.data.fuelPrice, 11.25);
    Run(ENERGY, [](DialogBox &box) {
        EXPECT_EQ(TextOf(box, PRICE_LABEL), "&Preis [€/kg]") << "as it opens";
        box.Press("Esc");
    });
}

TEST_F(DesignDialogs, LabelThePriceInTheCurrencyOfTheSystem)
{
    const char *former = SetCurrencySymbol("CHF");
    Run(ENERGY, [](DialogBox &box) {
        EXPECT_EQ(TextOf(box, PRICE_LABEL), "&Preis [CHF/m3]");
        EXPECT_TRUE(Fits(box, PRICE_LABEL));
        box.Press("Esc");
    });
    SetCurrencySymbol(former);
}

TEST_F(DesignDialogs, ShowThePriceWithoutAUnitWhileNoFuelIsChosen)
{
    design.data.fuelType = 7;
    Run(ENERGY, [](DialogBox &box) {
        EXPECT_EQ(TextOf(box, PRICE_LABEL), "&Preis");
        box.Choose(IdOf(FUEL), 0);
        EXPECT_EQ(TextOf(box, PRICE_LABEL), "&Preis [€/m3]");
        box.Press("Esc");
    });
}

TEST_F(DesignDialogs, ShowWhatAWorkingClassTakesForGranted)
{
    const char *const energies[] = {"", "0 - 80", "81 - 105", "106 - 130", "131 - 160", "161 - 200"};
    for (int workClass = 0; workClass <= 5; ++workClass) {
        design.data.workClass = workClass;
        Run(HYGIENE, [&](DialogBox &box) {
            EXPECT_EQ(TextOf(box, CONDITIONS), ConditionsWith(energies[workClass])) << "as it opens";
            for (int other : {5, 0, 2, 1, 4, 3}) {
                box.Choose(IdOf(WORK_CLASS), other);
                EXPECT_EQ(TextOf(box, CONDITIONS), ConditionsWith(energies[other])) << other;
                EXPECT_TRUE(Fits(box, CONDITIONS)) << other;
            }
            box.Choose(IdOf(POSITION), 0);
            EXPECT_EQ(TextOf(box, CONDITIONS), ConditionsWith(energies[3]));
            if (const char *folder = getenv("ZUL_PICTURES")) {
                EXPECT_TRUE(box.SaveScreenshot((std::string(folder) + "/4505-filled.png").c_str()));
            }
            box.Press("Esc");
        });
    }
}

TEST_F(DesignDialogs, MayBeRunAnyNumberOfTimes)
{
    TZulEnergyData record;
    record.Exchange(EDC_XLOAD, design.data);
    TZulEnergyDialog dialog(record);
    for (int i = 0; i < 3; ++i) {
        InDialog([](DialogBox &box) {
            EXPECT_EQ(box.Entries(IdOf(FUEL)).size(), 2u);
            box.Press("Return");
        });
        EXPECT_EQ(dialog.Execute(), WIN_ID_OK);
    }
}
