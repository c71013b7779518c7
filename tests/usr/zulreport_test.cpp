#include "usr/zulreport.h"
#include "usr/edcutils.h"

#include "lib/charstr.h"
#include "lib/platform.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace
{
using TEXTS = std::vector<std::string>;

const double notANumber = std::numeric_limits<double>::quiet_NaN();
const double degree = AgPI / 180;

/// The texts of the resources for the life of a test, and the report's sets to fill.
class ReportTexts : public testing::Test
{
protected:
    ReportTexts() : former(SetResTextSink(NULL)), model(Info(), NULL) { EdcUseResources(); }
    ~ReportTexts() override
    {
        for (EmEMITTER *e = emitters.First(); e != NULL; e = EmEMITTERSET::Next(e))
            e->model = NULL; // the models here are not counted
        SetResTextSink(former);
    }

    static EmMODELINFO Info()
    {
        EmMODELINFO info;
        StrCopy(info.name, "Platte 12", sizeof info.name);
        return info;
    }

    EmEMITTER *Hang(const char *name = NULL)
    {
        EmEMITTER *e = new EmEMITTER;
        e->Insert(&emitters);
        if (name != NULL) {
            StrCopy(const_cast<EmMODELINFO *>(model.Info())->name, name, sizeof(EmMODELINFO::name));
            e->model = &model;
        }
        return e;
    }

    EmAIRHEATER *Place(const char *type)
    {
        EmAIRHEATER *unit = new EmAIRHEATER;
        StrCopy(unit->type, type, sizeof unit->type);
        unit->Insert(&airHeaters);
        return unit;
    }

    EmHOLE *Open(EmSURFACE *surface)
    {
        EmHOLE *hole = new EmHOLE;
        hole->Insert(surface->Holes());
        return hole;
    }

    ResTextSink former;
    EmMODEL model;
    EmEMITTERSET emitters;
    EmAIRHEATERSET airHeaters;
    EmROOM room{20, 12, 6, "Titel", "Schluss", 20260101};
};

std::string WithBlanks(std::string text)
{
    std::replace(text.begin(), text.end(), '~', ' ');
    return text;
}

/// Runs of hard blanks as one: what stands in a text, whatever holds its columns.
std::string Squeezed(const std::string &text)
{
    std::string squeezed;
    for (char c : text)
        if (c != '~' || squeezed.empty() || squeezed.back() != '~')
            squeezed += c;
    return squeezed;
}

TEXTS LinesOf(const std::string &text)
{
    TEXTS lines;
    for (size_t begin = 0, end = 0; end != std::string::npos; begin = end + 1) {
        end = text.find('\n', begin);
        lines.push_back(text.substr(begin, end == std::string::npos ? end : end - begin));
    }
    return lines;
}
} // namespace

TEST(ZulCut, CutsToTheGivenLengthWithThreeDotsOfIt)
{
    const struct {
        const char *text;
        int max;
        const char *cut;
    } cases[] = {
        {"", 13, ""},
        {"dreizehnZeich", 13, "dreizehnZeich"},
        {"vierzehnZeiche", 13, "vierzehnZe..."},
        {"Ein langer Name eines Modells", 13, "Ein langer..."},
        {"Ein langer Name eines Modells", 19, "Ein langer Name ..."},
        {"123456789012345678901234", 23, "12345678901234567890..."},
    };
    for (const auto &c : cases)
        EXPECT_EQ(ZulCut(c.text, c.max), c.cut);
}

TEST_F(ReportTexts, AnEmptySetHasNoList)
{
    EXPECT_TRUE(ZulEmitterList(emitters).empty());
    EXPECT_TRUE(ZulAirHeaterList(airHeaters).empty());
    EXPECT_TRUE(ZulHoleList(*room.Surfaces()->Floor()->Holes()).empty());
}

TEST_F(ReportTexts, AnEmittersRowHasNamePowerPlaceAndWholeDegrees)
{
    EmEMITTER *e = Hang("Platte 12");
    e->power = 12000.4;
    e->pos = {1.005, 22.5, 5};
    e->rotation = 90 * degree;
    e->tilt = -29.6 * degree;
    ZulListBlocks list = ZulEmitterList(emitters);
    ASSERT_EQ(list.size(), 1u);
    EXPECT_EQ(list[0], "1~~~~Platte~12~~~~~~12000~~~~1.00~~22.50~~~5.00~~~~90~~~~~-30");
    EXPECT_EQ(WithBlanks(list[0]).size(), 61u);
}

TEST_F(ReportTexts, AnEmitterWithoutAModelIsNamedSo)
{
    Hang();
    EXPECT_EQ(ZulEmitterList(emitters)[0], "1~~~~(nichts)~~~~~~~~~~~0~~~~0.00~~~0.00~~~0.00~~~~~0~~~~~~~0");
}

TEST_F(ReportTexts, ALongNameIsCutAndItsMarkupSignsBecomeBlanks)
{
    Hang("Dunkel_strahler^2~x 100%s");
    EXPECT_EQ(ZulEmitterList(emitters)[0].substr(0, 19), "1~~~~Dunkel~str...~");
    Hang("a_b^c~d%n %s!");
    EXPECT_EQ(ZulEmitterList(emitters)[0].substr(0, 19), "1~~~~a~b~c~d%n~%s!~");
}

TEST_F(ReportTexts, RowsStandInBlocksOfFiveNumberedThrough)
{
    for (int i = 0; i < 11; ++i)
        Hang();
    ZulListBlocks list = ZulEmitterList(emitters);
    ASSERT_EQ(list.size(), 3u);
    int number = 0;
    for (size_t block = 0; block < 3; ++block) {
        size_t rows = 1 + std::count(list[block].begin(), list[block].end(), '\n');
        EXPECT_EQ(rows, block < 2 ? 5u : 1u);
        EXPECT_NE(list[block].back(), '\n');
        for (size_t at = 0; at != std::string::npos; at = list[block].find('\n', at)) {
            at += list[block][at] == '\n';
            EXPECT_EQ(atoi(list[block].c_str() + at), ++number);
        }
    }
    EXPECT_EQ(number, 11);
}

TEST_F(ReportTexts, SixEmittersGiveASecondBlockWithOneRow)
{
    for (int i = 0; i < 6; ++i)
        Hang();
    ZulListBlocks list = ZulEmitterList(emitters);
    ASSERT_EQ(list.size(), 2u);
    EXPECT_EQ(list[1].substr(0, 3), "6~~");
}

TEST_F(ReportTexts, ValuesBeyondAllColumnsStillGiveARow)
{
    const double values[] = {1e300, -1e300, 9.3e6, -0.0, notANumber, HUGE_VAL, -HUGE_VAL};
    for (double v : values) {
        EmEMITTER *e = Hang("Platte");
        e->power = v;
        e->pos = {v, v, v};
        e->rotation = e->tilt = v;
        EmAIRHEATER *unit = Place("Typ");
        unit->power = unit->airFlow = unit->tempRise = v;
        EmHOLE *hole = Open(room.Surfaces()->Floor());
        hole->constr.k = hole->constr.tExt = v;
        hole->size = {v, v};
    }
    EXPECT_EQ(ZulEmitterList(emitters).size(), 2u);
    EXPECT_EQ(ZulAirHeaterList(airHeaters).size(), 2u);
    EXPECT_EQ(ZulHoleList(*room.Surfaces()->Floor()->Holes()).size(), 2u);
    EXPECT_NE(ZulEmitterList(emitters)[0].find("~2147483647~~~~~2147483647"), std::string::npos) << "1e300 rad";
}

TEST_F(ReportTexts, AWarmAirUnitsRowHasTypePowerFlowAndRise)
{
    EmAIRHEATER *unit = Place("Lufterhitzer LH 40 Deckenger\xE4t");
    unit->power = 40000;
    unit->airFlow = 3500.4;
    unit->tempRise = 33.333;
    Place("");
    EXPECT_EQ(ZulAirHeaterList(airHeaters),
              TEXTS({"1~~~~Lufterhitzer~LH~...~~40000~~~~~~3500~~~~~~~~33.33\n2~~~~(nichts)~~~~~"}));
}

TEST_F(ReportTexts, AnOpeningsRowHasWidthTimesHeightThoughItWasNeverPrepared)
{
    EmHOLE *gate = Open(room.Surfaces()->FirstWall());
    gate->constr.k = 1.2;
    gate->constr.tExt = 15;
    gate->flags = EmHOLE::OWN_TEMP;
    gate->size = {4, 4.2};
    StrCopy(gate->description, "Rolltor zur Nachbarhalle, ged\xE4mmt", sizeof gate->description);
    EmHOLE *window = Open(room.Surfaces()->FirstWall());
    window->constr.tExt = 99;
    window->size = {1, 0.5};
    room.Data()->constr[EM_WALLS].tExt = -12;
    EXPECT_EQ(ZulHoleList(*room.Surfaces()->FirstWall()->Holes()),
              TEXTS({"1~~~~~1.200~~~15.00~~~16.80~~~~4.00~~~~~4.20~~~~Rolltor~zur~Nachbarh...\n"
                     "2~~~~~0.000~~-12.00~~~~0.50~~~~1.00~~~~~0.50~~~~"}));
}

TEST_F(ReportTexts, ColumnHeadsStandOverTheirColumns)
{
    // Names begin with their titles and numbers end with them; a title wider than its column stands over its
    // middle. The rows are those of the tests above.
    const struct {
        ZulLIST list;
        const char *head;
        const char *row;
    } table[] = {
        {ZUL_EMITTER_LIST, "Nr.  Modell          P[W]    X[m]   Y[m]   Z[m] Dreh[\xB0] Neig[\xB0]",
         "1    Platte 12      12000    1.00  22.50   5.00    90     -30"},
        {ZUL_AIR_HEATER_LIST, "Nr.  Typ                   P[W]  Luft[m\xB3/h]  Erw\xE4rmung[K]",
         "1    Lufterhitzer LH ...  40000      3500        33.33"},
        {ZUL_HOLE_LIST,
         "Nr. K[W/m\xB2K] Ta[\xB0"
         "C]   A[m\xB2] Breite[m] H\xF6he[m]   Beschreibung",
         "1     1.200   15.00   16.80    4.00     4.20    Rolltor"},
    };
    for (const auto &t : table)
        EXPECT_EQ(WithBlanks(ZulColumnHead(t.list)), t.head) << t.row;
}

TEST_F(ReportTexts, ColumnTitlesArePlacedForTheWidthOfTheirCharacters)
{
    const int table[][2] = {{1, 1}, {12, 11}, {5, 4}, {7, 7}, {60, 55}, {3, 2}, {2, 1}, {1, 7}};
    for (auto [rowChar, headChar] : table)
        for (ZulLIST list : {ZUL_EMITTER_LIST, ZUL_AIR_HEATER_LIST, ZUL_HOLE_LIST}) {
            int end = 0; // px, of the title before
            for (const auto &[place, text] : ZulColumnTitles(list, rowChar, headChar)) {
                EXPECT_EQ(text.find_first_of(" ^_!"), std::string::npos) << "one width for all characters";
                EXPECT_LE(place, end) << "the underline is whole";
                EXPECT_GT(place, end - headChar - (end == 0)) << "with no blank too many";
                end = place + static_cast<int>(text.size()) * headChar;
            }
        }
    auto titles = ZulColumnTitles(ZUL_EMITTER_LIST, 60, 55); // paper at 600 dpi
    ASSERT_EQ(titles.size(), 8u);
    EXPECT_EQ(titles[0].place, 0);
    EXPECT_EQ(titles[1].place, 5 * 60) << "begins with the names";
    EXPECT_EQ(titles[2].place, 25 * 60 - 4 * 55) << "ends with the numbers";
    EXPECT_EQ(titles[6].place, (103 * 60 - 7 * 55) / 2) << "over the middle";
    EXPECT_EQ(titles[1].text, "Modell~~~~~~~~~~~~") << "650 px up to the next one are 12 blanks";
}

TEST_F(ReportTexts, InputTextsCarryTheDesignDataInTheirOrder)
{
    EmROOMDATA &data = *room.Data();
    data.constr[EM_FLOOR] = {0.1 + 0.2, 0, 0, 8, 8, 0, 0};
    data.constr[EM_CEILING] = {0.4, 0, 0, 8, -12, 0, 0};
    data.constr[EM_WALLS] = {1.5, 0, 0, 8, -11.5, 0, 0};
    data.airChange = 0.5;
    data.airTemp = -10;
    data.periodDays = 220;
    data.meanOutTemp = 3.5;
    data.designOutTemp = -13;
    data.weekDays = 5;
    data.dayHours = 7.5;
    data.runAirTemp = 16;
    data.resultTemp = 18;
    data.reducedAirTemp = 9;
    data.fuelType = EM_PROPANE;
    data.regulation = 0.9;
    data.fuelPrice = 1.25;
    data.techGain = 1500;
    TEXTS texts = ZulInputTexts(room);
    ASSERT_EQ(texts.size(), 6u);
    EXPECT_EQ(Squeezed(texts[0]), "Fu\xDF"
                                  "boden\n~Durchgangsquotient:~0.3~W/m^2^K\n~Bodentemperatur:~8~^o^C");
    EXPECT_EQ(Squeezed(texts[1]), "Decke\n~Durchgangsquotient:~0.4~W/m^2^K\n~Externe~Temp.:~-12~^o^C");
    EXPECT_EQ(Squeezed(texts[2]), "W\xE4nde\n~Durchgangsquotient:~1.5~W/m^2^K\n~Externe~Temp.:~-11.5~^o^C");
    EXPECT_EQ(Squeezed(texts[3]), "Luftaustausch\n~Hallenvol.vielfaches:~0.5/h\n~Lufttemperatur:~-10~^o^C");
    EXPECT_EQ(Squeezed(texts[4]), "Klima und Betriebsmodus\n"
                                  "~Heizperiode:~220~Tage\n"
                                  "~Mittl.~Au\xDF"
                                  "entemp.:~3.5~^o^C\n"
                                  "~Berechn.~Au\xDF"
                                  "entemp.:~-13~^o^C\n"
                                  "~Betriebstage/Woche:~5\n"
                                  "~Betriebsstunden/Tag:~7.5\n"
                                  "~Betriebslufttemp.:~16~^o^C\n"
                                  "~Soll-Ergebnistemp.:~18~^o^C\n"
                                  "~Reduzierte~Lufttemp.:~9~^o^C");
    EXPECT_EQ(Squeezed(texts[5]), "W\xE4rmequellen und Hallenma\xDF"
                                  "e\n"
                                  "~Brennstoff:~Propan\n"
                                  "~Wirkung~der~Regul.:~0.9\n"
                                  "~Preis:~1.25~\x80/kg\n"
                                  "~Dauerw\xE4rmegewinn:~1.5~kW\n"
                                  "~L\xE4nge:~20~m\n"
                                  "~Breite:~12~m\n"
                                  "~H\xF6he:~6~m");
}

TEST_F(ReportTexts, EvaluationTextsCarryTheRunsFigures)
{
    TZulMapInfo info;
    info.loss = 41234.56;
    info.area = 240;
    info.volume = 1440.1 + 0.2;
    info.emittPower = 1234567.5;
    info.maxFuel = 4.786;
    info.yearFuel = 5123.5;
    info.yearCost = 2511.4;
    StrCopy(info.fuelUnit, "m^3^", sizeof info.fuelUnit);
    info.height = 0.15;
    info.minInte = 12.34;
    info.maxInte = 210.06;
    info.meanInte = -0.04;
    info.spread = -0.4199;
    info.maxAirTemp = info.airTemp = 15.25;
    TEXTS texts = ZulEvaluationTexts(info);
    ASSERT_EQ(texts.size(), 4u);
    EXPECT_EQ(Squeezed(texts[0]), "Halle\n~W\xE4rmeverlust:~41235~W\n~Grundfl\xE4"
                                  "che:~240~m^2^\n"
                                  "~Rauminhalt:~1440.3~m^3^");
    EXPECT_EQ(Squeezed(texts[1]),
              "Installierte Leistung\n~Infrarotstrahler:~1234567.5~W\n~Warmluftaggregate:~0~W\n"
              "~Insgesamt:~1234567.5~W");
    EXPECT_EQ(Squeezed(texts[2]), "Brennstoffverbrauch\n~Maximal:~4.79~m^3^/h\n~J\xE4hrlich:~5124~m^3^/a\n"
                                  "~Jahreskosten:~3~Tsd.~\x80\n"
                                  "\nLufttemperatur\n~Max.~erreichbar:~15.3~^o^C\n~Entworfen:~15.3~^o^C\n"
                                  "~Bem.:~Temp.~in~H\xF6he~1.5~m");
    EXPECT_EQ(Squeezed(texts[3]), "Bestrahlungskarte\n~H\xF6he~\xFC"
                                  "ber~Fu\xDF"
                                  "boden:~0.15~m\n~Mindestintensit\xE4t:~12.3~W/m^2^\n"
                                  "~H\xF6"
                                  "chstintensit\xE4t:~210.1~W/m^2^\n~Mittl.~Intensit\xE4t:~0.0~W/m^2^\n"
                                  "~Intensit\xE4tsstreuung:~41~%");
}

TEST_F(ReportTexts, AnAirTemperatureOutOfReachIsWarnedOf)
{
    TZulMapInfo info;
    info.maxAirTemp = 15;
    info.airTemp = 15.000001;
    std::string text = ZulEvaluationTexts(info)[2];
    EXPECT_NE(text.find("15.0~^o^C\n~Unerreichbar~-~Leistung~erh\xF6hen!\n"), std::string::npos) << text;
    info.airTemp = 15;
    EXPECT_EQ(ZulEvaluationTexts(info)[2].find("Unerreichbar"), std::string::npos);
}

TEST_F(ReportTexts, EvaluationTextsStandAnyFigure)
{
    for (double v : {1e300, -1e300, notANumber, HUGE_VAL}) {
        TZulMapInfo info;
        info.loss = info.area = info.volume = info.emittPower = info.airhtPower = info.maxFuel = info.yearFuel =
            v;
        info.yearCost = info.maxAirTemp = info.airTemp = info.height = info.minInte = info.spread = v;
        for (const std::string &text : ZulEvaluationTexts(info))
            EXPECT_FALSE(text.empty()) << v;
    }
}

TEST_F(ReportTexts, HygieneTextsExistOnlyWithAWorkingClass)
{
    EXPECT_TRUE(ZulHygieneTexts(room).empty());
    room.Data()->workClass = 3;
    room.Data()->position = EM_SITTING;
    TEXTS texts = ZulHygieneTexts(room);
    ASSERT_EQ(texts.size(), 2u);
    EXPECT_EQ(texts[0], "Arbeitsstelle\n~Arbeitsklasse:~IIb\n~Personenlage:~~sitzend\n\n");
    EXPECT_NE(texts[1].find("~Energieausgabe:~~~~~~~~~~106 - 130~W/m^2^\n"), std::string::npos) << texts[1];
    EXPECT_NE(texts[1].find("30~-~70~%"), std::string::npos) << texts[1];
}

TEST_F(ReportTexts, InputAndEvaluationTextsFitHalfAPage)
{
    room.Data()->workClass = 5;
    TZulMapInfo info;
    info.loss = info.emittPower = 1234567;
    info.yearFuel = info.yearCost = 999999;
    StrCopy(info.fuelUnit, "m^3^", sizeof info.fuelUnit);
    info.maxAirTemp = -1;
    TEXTS texts = ZulInputTexts(room);
    for (const std::string &text : ZulEvaluationTexts(info))
        texts.push_back(text);
    for (const std::string &text : texts)
        for (const std::string &line : LinesOf(text))
            EXPECT_LE(line.size() - std::count(line.begin(), line.end(), '^'), 33u) << line;
}

TEST_F(ReportTexts, ValuesStandBelowEachOther)
{
    std::vector<TEXTS> groups = {ZulInputTexts(room), ZulEvaluationTexts(TZulMapInfo())};
    for (const TEXTS &texts : groups) {
        size_t column = 0;
        for (const std::string &text : texts)
            for (const std::string &line : LinesOf(text)) {
                size_t value = line.find_first_not_of('~', line.find(':') + 1);
                if (line[0] != '~' || line.find("Bem.") != std::string::npos)
                    continue; // a heading, the note
                column = column == 0 ? value : column;
                EXPECT_EQ(value, column) << line;
            }
    }
}
