// The catalogues of building elements and of warm-air units: their files, the dialogs for their items, what is
// picked from them, and the samples that the build makes.
#include "usr/zulcatalogs.h"
#include "samples/samplehalls.h"
#include "support/catalogcase.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <set>

#include "lib/xon.h"

namespace
{
using testdoor::DialogBox;
using STRINGS = std::vector<std::string>;

enum { GROUP_LIST = 100, ELEMENT_LIST = 101, ADD_ELEMENT = 103, ADJUST_ELEMENT = 104, CLOSE_ELEMENTS = 110 };
enum { HEATER_LIST = 100, ADD_HEATER = 102, ADJUST_HEATER = 103, CLOSE_HEATERS = 105 };
enum { NAME = 100, TRANSMISSION = 101 };
enum { TYPE = 100, OUTPUT = 101, TEMPRISE = 102, AIRFLOW = 103, LENGTH = 104, HEIGHT = 105, WIDTH = 106 };
const int heaterFields[] = {OUTPUT, TEMPRISE, AIRFLOW, LENGTH, WIDTH, HEIGHT}; // in the order of HEATER
enum { TEXT_VALUE = 20500, TEXT_FLOAT = 20501 };

const GROUPS elements = {{"W\xE4nde", {{"Ziegel 36,5 cm", 1.5}, {"Beton", 3.9}}},
                         {"leer", {}},
                         {"Tore und T\xFCren", {{"Tor", 5.9}}}};
const HEATERS heaters = {{"WG 24", {24000, 26, 2700, 0.9, 0.7, 0.8}},
                         {"T\xFCrschleier", {18000, 18, 3000, 4, 0.5, 0.4}}};

/// The next item dialog gets these texts (UTF-8), then the key.
class ItemCase : public CatalogCase
{
protected:
    void FillElement(const std::string &name, const std::string &k)
    {
        InDialog([=](DialogBox &dialog) {
            EXPECT_EQ(dialog.Caption(), "Bauelement");
            dialog.Type(NAME, name);
            dialog.Type(TRANSMISSION, k);
            dialog.Press("Return");
        });
    }
    void EditElements(const ACT &act)
    {
        InDialogFirst([act](DialogBox &dialog) {
            EXPECT_EQ(dialog.Caption(), "Katalog der Bauelemente");
            act(dialog);
            dialog.Click(CLOSE_ELEMENTS);
        });
        elementCatalog.Edit();
        EXPECT_STREQ(xCode, XNULL);
    }
    void EditHeaters(const ACT &act)
    {
        InDialogFirst([act](DialogBox &dialog) {
            EXPECT_EQ(dialog.Caption(), "Katalog der Warmluftaggregate");
            act(dialog);
            dialog.Click(CLOSE_HEATERS);
        });
        heaterCatalog.Edit();
        EXPECT_STREQ(xCode, XNULL);
    }
    static void Fill(DialogBox &dialog, const HEATER &heater)
    {
        dialog.Type(TYPE, heater.type);
        for (size_t i = 0; i < heater.numbers.size(); ++i)
            dialog.Type(heaterFields[i], EdcFormat("%g", heater.numbers[i]));
    }
    /// OK is refused with this message, and the field gets the focus.
    static void Refused(DialogBox &dialog, int id, const std::string &message)
    {
        std::string said;
        testdoor::Script([&said](testdoor::ModalBox &box) {
            said = box.Text();
            box.Answer(WIN_ID_OK);
        });
        dialog.Click(WIN_ID_OK);
        EXPECT_EQ(said, message);
        EXPECT_EQ(dialog.Focus(), id);
    }
    /// What a field that must be a decimal from 0 up says to each text; the others hold what will do.
    static void CheckDecimal(DialogBox &dialog, int id)
    {
        SCOPED_TRACE(id);
        const std::string range = EdcResFormat(TEXT_FLOAT, "0", "1.79769e+308");
        dialog.Type(id, "");
        Refused(dialog, id, GetResString(TEXT_VALUE));
        for (const char *text : {"-1", "-0.001", "abc", "1 W", "nan", "inf", "1e309", "1;5"}) {
            SCOPED_TRACE(text);
            dialog.Type(id, text);
            Refused(dialog, id, range);
        }
        dialog.Type(id, "0");
    }

    ElementCatalog elementCatalog;
    HeaterCatalog heaterCatalog;
};

class Catalogs : public ItemCase
{
};

TEST_F(Catalogs, LieInTheCatalogueFolderUnderTheirNames)
{
    EXPECT_EQ(std::string(elementCatalog.Path()), folder.Name("Katalogy/.StavPrv.zec"));
    EXPECT_EQ(std::string(heaterCatalog.Path()), folder.Name("Katalogy/.TvAgreg.zec"));
}

TEST_F(Catalogs, AnElementIsANameAndANumberInTheSectionOfItsGroup)
{
    elementCatalog.Put(elements);
    elementCatalog.Save();
    const CdeITEMS expected = {ItHeader("DCAT/TEMPHOLE/ZEC", 1),
                               ItSection(0),
                               ItStr("W\xE4nde"),
                               ItStr("Ziegel 36,5 cm"),
                               ItReal(1.5),
                               ItStr("Beton"),
                               ItReal(3.9),
                               ItEnd(),
                               ItSection(0),
                               ItStr("leer"),
                               ItEnd(),
                               ItSection(0),
                               ItStr("Tore und T\xFCren"),
                               ItStr("Tor"),
                               ItReal(5.9),
                               ItEnd()};
    EXPECT_EQ(GetFile(".StavPrv.zec"), EncodeItems(expected));
    EXPECT_EQ(Files(), std::set<std::string>{".StavPrv.zec"});
    ElementCatalog again;
    again.Load();
    EXPECT_EQ(again.Values(), elements);
}

TEST_F(Catalogs, AUnitIsATypeAndSixNumbers)
{
    heaterCatalog.Put(heaters);
    heaterCatalog.Save();
    const CdeITEMS expected = {ItHeader("SCAT/AIRHEATER/ZEC", 1),
                               ItStr("WG 24"),
                               ItReal(24000),
                               ItReal(26),
                               ItReal(2700),
                               ItReal(0.9),
                               ItReal(0.7),
                               ItReal(0.8),
                               ItStr("T\xFCrschleier"),
                               ItReal(18000),
                               ItReal(18),
                               ItReal(3000),
                               ItReal(4),
                               ItReal(0.5),
                               ItReal(0.4)};
    EXPECT_EQ(GetFile(".TvAgreg.zec"), EncodeItems(expected));
    HeaterCatalog again;
    again.Load();
    EXPECT_EQ(again.Values(), heaters);
}

TEST_F(Catalogs, ANameIsReadAsTheListShowsIt)
{
    const std::string full = "\xDC" + std::string(30, '\xE4');
    const struct {
        std::string stored, read;
    } rows[] = {
        {full, full},
        {full + "!", full}, // what is too long is cut, as any text in a file
        {"  W\xE4nde \t aus  Holz ", "W\xE4nde aus Holz"},
        {"\x80uro\n2", "\x80uro 2"},
    };
    for (const auto &row : rows) {
        PutFile(".StavPrv.zec", EncodeItems(ElementItems({{"Gruppe", {{row.stored, 1}}}})));
        PutFile(".TvAgreg.zec", EncodeItems(HeaterItems({{row.stored, {1, 2, 3, 4, 5, 6}}})));
        ElementCatalog element;
        HeaterCatalog heater;
        element.Load();
        heater.Load();
        EXPECT_EQ(element.Values(), (GROUPS{{"Gruppe", {{row.read, 1}}}}));
        EXPECT_EQ(heater.Values(), (HEATERS{{row.read, {1, 2, 3, 4, 5, 6}}}));
        EXPECT_EQ(heater.FindItem(row.read.c_str(), true), heater.First());
    }
}

TEST_F(Catalogs, ACopyOfAnItemHasAllOfItAndStandsInNoList)
{
    heaterCatalog.Put(heaters);
    elementCatalog.Put(elements);
    auto *unit = static_cast<TEdcCtlgItem *>(heaterCatalog.Last());
    auto *tor = TEdcCtlgItem::First(*elementCatalog.FindGroup("Tore und T\xFCren", true));
    std::unique_ptr<TEdcCtlgItem> unitCopy(heaterCatalog.NewItem(unit));
    std::unique_ptr<TEdcCtlgItem> torCopy(elementCatalog.NewItem(tor));
    EXPECT_EQ(HeaterCatalog::ValuesOf(static_cast<TZulAirHeaterTypeItem *>(unitCopy.get())->data), heaters[1]);
    auto &record = static_cast<TZulHoleTypeItem *>(torCopy.get())->record;
    EXPECT_STREQ(record.name.text, "Tor");
    EXPECT_EQ(record.transmission.value, 5.9);
    for (TEdcCtlgItem *copy : {unitCopy.get(), torCopy.get()})
        EXPECT_EQ(copy->List(), nullptr);
    EXPECT_STREQ(torCopy->name, "Tor");
    EXPECT_NE(torCopy->Record(), tor->Record());
}

TEST_F(Catalogs, AFreshItemHasNoNameAndNothingInItIsKnown)
{
    std::unique_ptr<TEdcCtlgItem> unit(heaterCatalog.NewItem(NULL)), element(elementCatalog.NewItem(NULL));
    for (TEdcCtlgItem *item : {unit.get(), element.get()}) {
        char name[SHORTSTRMAX] = "former";
        item->GetName(name, SHORTSTRMAX);
        EXPECT_STREQ(name, "");
    }
    EXPECT_EQ(static_cast<TZulHoleTypeItem *>(element.get())->record.transmission.id, EDC_VUDF);
}

TEST_F(Catalogs, AResetUnitHasNoTypeAndKeepsItsTarget)
{
    EmAIRHEATERSET set;
    TZulAirHeaterData data;
    EXPECT_EQ(data.target, nullptr);
    data.typeName = "WG 24";
    data.output = 24000;
    data.height = 1;
    data.target = &set;
    data.Reset();
    EXPECT_EQ(data.typeName.id, EDC_VNUL);
    EXPECT_STREQ(data.typeName.text, "");
    for (const TEdcFloat *number :
         {&data.output, &data.tempRise, &data.airFlow, &data.length, &data.width, &data.height})
        EXPECT_EQ(number->id, EDC_VUDF);
    EXPECT_EQ(data.target, &set);
}

class ElementDialog : public ItemCase
{
protected:
    ElementDialog() { elementCatalog.Put(elements); }
};

TEST_F(ElementDialog, AddsAnElementToTheSelectedGroup)
{
    FillElement("T\xC3\xBCr", "2.75");
    EditElements([](DialogBox &dialog) {
        EXPECT_EQ(dialog.Entries(GROUP_LIST), (STRINGS{"leer", "Tore und T\xFCren", "W\xE4nde"}));
        dialog.ClickEntry(GROUP_LIST, 1);
        dialog.Click(ADD_ELEMENT);
        EXPECT_EQ(dialog.Entries(ELEMENT_LIST), (STRINGS{"Tor", "T\xFCr"}));
    });
    GROUPS expected = elements;
    expected[2].parts.push_back({"T\xFCr", 2.75});
    EXPECT_EQ(elementCatalog.Values(), expected);
    elementCatalog.Save();
    EXPECT_EQ(GetFile(".StavPrv.zec"), EncodeItems(ElementItems(expected)));
}

TEST_F(ElementDialog, ShowsTheElementAndChangesItInItsPlace)
{
    InDialog([](DialogBox &dialog) {
        EXPECT_EQ(dialog.Text(NAME), "Ziegel 36,5 cm");
        EXPECT_EQ(dialog.Text(TRANSMISSION), "1.5");
        EXPECT_EQ(dialog.Focus(), NAME);
        dialog.Press("Alt+D");
        EXPECT_EQ(dialog.Focus(), TRANSMISSION);
        dialog.Type(TRANSMISSION, "0.25");
        dialog.Click(WIN_ID_OK);
    });
    InDialog([](DialogBox &dialog) {
        dialog.Type(NAME, "Beton 20 cm");
        dialog.Click(WIN_ID_CANCEL);
    });
    EditElements([](DialogBox &dialog) {
        dialog.ClickEntry(GROUP_LIST, 2);
        dialog.ClickEntry(ELEMENT_LIST, 1, true);
        dialog.ClickEntry(ELEMENT_LIST, 0);
        dialog.Click(ADJUST_ELEMENT);
    });
    GROUPS expected = elements;
    expected[0].parts[0].value = 0.25;
    EXPECT_EQ(elementCatalog.Values(), expected);
}

TEST_F(ElementDialog, AsksForANameAndADecimalFrom0Up)
{
    InDialog([](DialogBox &dialog) {
        dialog.Type(TRANSMISSION, "1");
        for (const char *blank : {"", "  ", "\xC2\xA0"}) {
            dialog.Type(NAME, blank);
            Refused(dialog, NAME, GetResString(TEXT_VALUE));
        }
        dialog.Type(NAME, "Neu");
        CheckDecimal(dialog, TRANSMISSION);
        dialog.Click(WIN_ID_OK);
    });
    EditElements([](DialogBox &dialog) { dialog.Click(ADD_ELEMENT); });
    EXPECT_EQ(elementCatalog.Values()[1], (PARTS{"leer", {{"Neu", 0}}}));
}

TEST_F(ElementDialog, ANameIsTheOnlyOneInItsGroupAndMayStandInAnother)
{
    FillElement("BETON ", "2");
    AnswerOk(TEXT_NAME_CLASH);
    InDialog([](DialogBox &dialog) { dialog.Press("Esc"); });
    FillElement("Beton", "2");
    EditElements([](DialogBox &dialog) {
        dialog.ClickEntry(GROUP_LIST, 2);
        dialog.Click(ADD_ELEMENT);
        dialog.ClickEntry(GROUP_LIST, 0);
        dialog.Click(ADD_ELEMENT);
    });
    GROUPS expected = elements;
    expected[1].parts = {{"Beton", 2}};
    EXPECT_EQ(elementCatalog.Values(), expected);
}

TEST_F(ElementDialog, TakesANameOf31CharactersAndNoMore)
{
    std::string typed, name;
    for (int i = 0; i < 40; ++i)
        typed += "\xC3\xA4";
    FillElement(typed, "1");
    EditElements([](DialogBox &dialog) { dialog.Click(ADD_ELEMENT); });
    EXPECT_EQ(elementCatalog.Values()[1].parts, (std::vector<PART>{{std::string(31, '\xE4'), 1}}));
    elementCatalog.Save();
    ElementCatalog again;
    again.Load();
    EXPECT_EQ(again.Values(), elementCatalog.Values());
}

TEST_F(ElementDialog, WhatIsPastedIntoANameCanBeReadAgain)
{
    InDialog([](DialogBox &dialog) {
        for (const char *controls : {"Wand\x01 1", "\x1B[2J", "Wand\x7F"}) {
            dialog.Paste(NAME, controls);
            EXPECT_EQ(dialog.Text(NAME), "");
        }
        dialog.Paste(NAME, "Wand\t 1\nzwei");
        dialog.Type(TRANSMISSION, "1");
        dialog.Click(WIN_ID_OK);
    });
    EditElements([](DialogBox &dialog) {
        dialog.Click(ADD_ELEMENT);
        EXPECT_EQ(dialog.Entries(ELEMENT_LIST), STRINGS{"Wand 1 zwei"});
    });
    elementCatalog.Save();
    ElementCatalog again;
    again.Load();
    EXPECT_STREQ(TakeFailure(), XNULL);
    ASSERT_EQ(again.Values().size(), 3u);
    EXPECT_EQ(again.Values()[1].parts, (std::vector<PART>{{"Wand 1 zwei", 1}}));
}

TEST_F(ElementDialog, PickingGivesTheElementAndItsGroup)
{
    InDialog([](DialogBox &dialog) {
        dialog.ClickEntry(GROUP_LIST, 2);
        EXPECT_EQ(dialog.Entries(ELEMENT_LIST), (STRINGS{"Beton", "Ziegel 36,5 cm"}));
        dialog.ClickEntry(ELEMENT_LIST, 1, true);
    });
    const TEdcCtlgChoice *choice = elementCatalog.Select();
    ASSERT_NE(choice, nullptr);
    EXPECT_STREQ(choice->group->name, "W\xE4nde");
    EXPECT_STREQ(choice->item->name, "Ziegel 36,5 cm");
    EXPECT_EQ(static_cast<TZulHoleTypeItem *>(choice->item)->record.transmission.value, 1.5);
    Click(WIN_ID_CANCEL);
    EXPECT_EQ(elementCatalog.Select(), nullptr);
}

class HeaterDialog : public ItemCase
{
protected:
    HeaterDialog() { heaterCatalog.Put(heaters); }
};

TEST_F(HeaterDialog, AddsAUnitWithEachNumberInItsPlace)
{
    const HEATER added = {"WG 30", {30000, 27.6, 3200, 0.95, 0.75, 0.85}};
    InDialog([&](DialogBox &dialog) {
        EXPECT_EQ(dialog.Caption(), "Warmluftaggregat");
        for (int id : {TYPE, OUTPUT, TEMPRISE, AIRFLOW, LENGTH, WIDTH, HEIGHT})
            EXPECT_EQ(dialog.Text(id), "");
        Fill(dialog, added);
        dialog.Press("Return");
    });
    EditHeaters([](DialogBox &dialog) {
        dialog.Click(ADD_HEATER);
        EXPECT_EQ(dialog.Entries(HEATER_LIST), (STRINGS{"T\xFCrschleier", "WG 24", "WG 30"}));
        EXPECT_EQ(dialog.Selected(HEATER_LIST), 2);
    });
    HEATERS expected = heaters;
    expected.push_back(added);
    EXPECT_EQ(heaterCatalog.Values(), expected);
    heaterCatalog.Save();
    EXPECT_EQ(GetFile(".TvAgreg.zec"), EncodeItems(HeaterItems(expected)));
}

TEST_F(HeaterDialog, ShowsTheUnitUnderItsLabelsAndChangesIt)
{
    InDialog([](DialogBox &dialog) {
        const struct {
            int id;
            const char *label, *text;
        } rows[] = {
            {TYPE, "Typ", "WG 24"},
            {OUTPUT, "Leistung [W]", "24000"},
            {AIRFLOW, "Luftdurchfluss [m\xB3/h]", "2700"},
            {TEMPRISE, "Temperaturerh\xF6hung [K]", "26"},
            {LENGTH, "L\xE4nge [m]", "0.9"},
            {WIDTH, "Breite [m]", "0.7"},
            {HEIGHT, "H\xF6he [m]", "0.8"},
        };
        for (const auto &row : rows) {
            EXPECT_EQ(dialog.Focus(), row.id);
            EXPECT_EQ(dialog.AccessibleName(row.id), row.label);
            EXPECT_EQ(dialog.Text(row.id), row.text);
            dialog.Press("Tab");
        }
        dialog.Type(WIDTH, "0.75");
        dialog.Click(WIN_ID_OK);
    });
    EditHeaters([](DialogBox &dialog) {
        dialog.ClickEntry(HEATER_LIST, 1);
        dialog.Click(ADJUST_HEATER);
    });
    HEATERS expected = heaters;
    expected[0].numbers[4] = 0.75;
    EXPECT_EQ(heaterCatalog.Values(), expected);
}

TEST_F(HeaterDialog, AsksForATypeAndDecimalsFrom0Up)
{
    InDialog([](DialogBox &dialog) {
        Fill(dialog, heaters[0]);
        dialog.Type(TYPE, " ");
        Refused(dialog, TYPE, GetResString(TEXT_VALUE));
        dialog.Type(TYPE, "WG 25");
        for (int id : heaterFields)
            CheckDecimal(dialog, id);
        dialog.Click(WIN_ID_OK);
    });
    EditHeaters([](DialogBox &dialog) { dialog.Click(ADD_HEATER); });
    ASSERT_EQ(heaterCatalog.Count(), 3);
    EXPECT_EQ(heaterCatalog.Values()[2], (HEATER{"WG 25", {0, 0, 0, 0, 0, 0}}));
}

TEST_F(HeaterDialog, PickingGivesTheUnitWithAllItsFields)
{
    heaterCatalog.Save();
    HeaterCatalog reader;
    InDialog([](DialogBox &dialog) {
        EXPECT_EQ(dialog.Caption(), "Katalog der Warmluftaggregate");
        dialog.ClickEntry(HEATER_LIST, 0, true);
    });
    auto *picked = static_cast<TZulAirHeaterTypeItem *>(reader.Select());
    ASSERT_NE(picked, nullptr);
    EXPECT_EQ(HeaterCatalog::ValuesOf(picked->data), heaters[1]);
    EXPECT_EQ(picked->data.typeName.id, EDC_VVAL);
}

/// Copies of the catalogues that the build has made.
class SampleCatalogs : public ItemCase
{
protected:
    SampleCatalogs()
    {
        PutFile(".StavPrv.zec", Made(".StavPrv.zec"));
        PutFile(".TvAgreg.zec", Made(".TvAgreg.zec"));
        elementCatalog.Load();
        heaterCatalog.Load();
        EXPECT_STREQ(TakeFailure(), XNULL);
    }
    static std::string Made(const char *file)
    {
        std::ifstream in(ZUL_SAMPLE_CATALOGS + std::string("/") + file, std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(in), {});
    }
};

TEST_F(SampleCatalogs, ElementsAreManyAndTheirTransmittancesSensible)
{
    GROUPS groups = elementCatalog.Values();
    std::set<std::string> names;
    size_t count = 0;
    EXPECT_GE(groups.size(), 5u);
    for (const PARTS &group : groups) {
        names.insert(group.name);
        EXPECT_GE(group.parts.size(), 4u) << group.name;
        for (const PART &part : group.parts) {
            EXPECT_TRUE(part.value >= 0.1 && part.value <= 7) << part.name << " " << part.value;
            EXPECT_EQ(
                elementCatalog.FindGroup(group.name.c_str(), true)->FindItem(part.name.c_str(), false)->name,
                part.name)
                << "the only one of that name";
            ++count;
        }
    }
    EXPECT_GE(count, 20u);
    for (const char *name : {"Fußböden", "Wände", "Decken und Dächer", "Fenster", "Tore und Türen"})
        EXPECT_TRUE(names.count(Text(name))) << name;
}

TEST_F(SampleCatalogs, MoreInsulationLetsLessHeatThrough)
{
    const struct {
        const char *group, *better, *worse;
    } rows[] = {
        {"Fußböden", "Betonplatte, 10 cm Dämmung", "Betonplatte 20 cm"},
        {"Wände", "Vollziegel 36,5 cm, verputzt", "Vollziegel 24 cm, verputzt"},
        {"Wände", "Sandwichpaneel 10 cm", "Sandwichpaneel 6 cm"},
        {"Fenster", "Wärmeschutzglas, dreifach", "Einfachglas, Holzrahmen"},
        {"Oberlichter", "Lichtkuppel, dreischalig", "Lichtkuppel, zweischalig"},
        {"Tore und Türen", "Sektionaltor, 8 cm gedämmt", "Stahltor, ungedämmt"},
    };
    auto k = [this](const char *group, const char *name) {
        TEdcCtlgGroup *list = elementCatalog.FindGroup(Text(group).c_str(), true);
        TEdcCtlgItem *item = list != NULL ? list->FindItem(Text(name).c_str(), true) : NULL;
        EXPECT_NE(item, nullptr) << group << " " << name;
        return item != NULL ? static_cast<TZulHoleTypeItem *>(item)->record.transmission.value : std::nan("");
    };
    for (const auto &row : rows)
        EXPECT_LT(k(row.group, row.better), k(row.group, row.worse)) << row.better;
}

TEST_F(SampleCatalogs, UnitsGiveOffWhatTheirAirTakesUp)
{
    HEATERS units = heaterCatalog.Values();
    EXPECT_GE(units.size(), 8u);
    for (const HEATER &unit : units) {
        auto [output, rise, flow, length, width, height] = unit.numbers;
        EXPECT_NEAR(0.34 * flow * rise / output, 1, 0.025) << unit.type;
        EXPECT_TRUE(rise > 15 && rise < 40) << unit.type;
        for (double size : {length, width, height})
            EXPECT_TRUE(size >= 0.3 && size <= 5) << unit.type;
        EXPECT_EQ(heaterCatalog.FindItem(unit.type.c_str(), false)->name, unit.type)
            << "the only one of that name";
    }
}

TEST_F(SampleCatalogs, HoldTheUnitsOfTheSampleHalls)
{
    char models[X_NAME];
    ASSERT_TRUE(NameFromNative(models, ZUL_PROGRAM_FOLDER "/Modely", sizeof models));
    SetModelFolder(models);
    int found = 0;
    for (int i = 0; i < SAMPLE_HALLS; ++i) {
        std::unique_ptr<EmROOM> room(MakeSampleHall(i));
        ASSERT_STREQ(TakeFailure(), XNULL);
        EmAIRHEATERSET &set = *room->AirHeaters();
        for (EmAIRHEATER *unit = set.First(); unit != NULL; unit = EmAIRHEATERSET::Next(unit)) {
            auto *item = static_cast<TZulAirHeaterTypeItem *>(heaterCatalog.FindItem(unit->type, true));
            ASSERT_NE(item, nullptr) << unit->type;
            EXPECT_EQ(HeaterCatalog::ValuesOf(item->data),
                      (HEATER{unit->type,
                              {unit->power, unit->tempRise, unit->airFlow, unit->size.x, unit->size.y,
                               unit->size.z}}));
            ++found;
        }
    }
    SetModelFolder("");
    EXPECT_GT(found, 0);
}

TEST_F(SampleCatalogs, AreInTheProgramFolder)
{
    for (const char *file : {".StavPrv.zec", ".TvAgreg.zec"})
        EXPECT_TRUE(std::filesystem::is_regular_file(ZUL_PROGRAM_FOLDER "/Katalogy/" + std::string(file)));
}

TEST_F(SampleCatalogs, AreTheirOwnFilesByteForByte)
{
    elementCatalog.Save();
    heaterCatalog.Save();
    EXPECT_EQ(GetFile(".StavPrv.zec"), Made(".StavPrv.zec"));
    EXPECT_EQ(GetFile(".TvAgreg.zec"), Made(".TvAgreg.zec"));
}
} // namespace
