#include "support/fault.h"
#include "support/fieldhall.h"
#include "support/sampleroom.h"
#include "usr/edcutils.h"
#include "usr/zulpass.h"

#include "lib/platform.h"

#include <gtest/gtest.h>

#include <cstring>

namespace
{
/// A hall's run without the hall's sampling: only what the texts are made of.
class ScaleTexts : public testing::Test
{
protected:
    ScaleTexts() : hall(20, 12, 6)
    {
        former = SetResTextSink(NULL);
        EdcUseResources();
        map.colors = &mapColors;
        map.hi = 100;
        info.airTemp = info.maxAirTemp = 15;
        info.height = 1.5;
        hall.room.Data()->resultTemp = 18;
    }
    ~ScaleTexts() override { SetResTextSink(former); }

    ZulScaleTexts Make() { return ZulMakeScale(hall.room, info, map); }

    FIELDHALL hall;
    TZulMapInfo info;
    ZulPassMap map;
    ResTextSink former;
};

std::vector<std::string> Firsts(const ZulScaleTexts &texts)
{
    std::vector<std::string> firsts;
    for (const auto &row : texts.rows)
        firsts.push_back(row.first);
    return firsts;
}
} // namespace

TEST_F(ScaleTexts, OfAFineScaleHaveElevenRowsAndMore)
{
    EXPECT_EQ(Firsts(Make()),
              (std::vector<std::string>{"Strahlungsint. [E+2 W/m2]", "0.00", "0.10", "0.20", "0.30", "0.40",
                                        "0.50", "0.60", "0.70", "0.80", "0.90", "1.00", "mehr"}));
}

TEST_F(ScaleTexts, OfTheSmallestScaleThereIsShowNoughtAsNought)
{
    map.hi = 5e-324; // the row of 0 has another exponent than the header, by more than a power can tell
    EXPECT_EQ(Firsts(Make())[1], "0.00");
}

TEST_F(ScaleTexts, OfACoarseScaleHaveTwoRowsAndMore)
{
    map.colors = &mapColorsCoarse;
    EXPECT_EQ(Firsts(Make()), (std::vector<std::string>{"Strahlungsint. [E+2 W/m2]", "0.00", "1.00", "mehr"}));
}

TEST_F(ScaleTexts, ShowIntensitiesInTheExponentOfTheUpperEnd)
{
    static const struct {
        double lo, hi;
        const char *head, *first, *second, *last;
    } cases[] = {
        {0, 350, "Strahlungsint. [E+2 W/m2]", "0.00", "0.35", "3.50"},
        {20, 95, "Strahlungsint. [E+1 W/m2]", "2.00", "2.75", "9.50"},
        {0, 5, "Strahlungsint. [E+0 W/m2]", "0.00", "0.50", "5.00"},
        {0, 0.02, "Strahlungsint. [E-2 W/m2]", "0.00", "0.20", "2.00"},
        {-50, 50, "Strahlungsint. [E+1 W/m2]", "-5.00", "-4.00", "5.00"},
        {0, 2.5e12, "Strahlungsint. [E+12 W/m2]", "0.00", "0.25", "2.50"},
        {0, 9.9999999, "Strahlungsint. [E+1 W/m2]", "0.00", "0.10", "1.00"}, // printed as 1.000000e+01
        {-1e5, 3, "Strahlungsint. [E+0 W/m2]", "-100000.00", "-89999.70", "3.00"},
    };
    for (const auto &c : cases) {
        map.lo = c.lo;
        map.hi = c.hi;
        std::vector<std::string> firsts = Firsts(Make());
        EXPECT_EQ(firsts[0], c.head);
        EXPECT_EQ(firsts[1], c.first);
        EXPECT_EQ(firsts[2], c.second) << c.lo << " to " << c.hi;
        EXPECT_EQ(firsts[11], c.last);
    }
}

TEST_F(ScaleTexts, ShowWhatAPersonFeelsAtTheMapsHeight)
{
    map.lo = 0;
    info.height = 4.5; // 0.9 K warmer than at 1.5 m
    ZulScaleTexts texts = Make();
    EXPECT_EQ(texts.rows[0].second, "Ergebnistemperatur [C]");
    EXPECT_EQ(texts.rows[1].second, "15.9");
    for (int i = 1; i <= 11; ++i)
        EXPECT_EQ(texts.rows[i].second,
                  EdcFormat("%3.1lf", hall.room.OperativeTemp((i - 1) * 10.0, AirTempAt(info, 4.5))));
    EXPECT_EQ(texts.rows[12].second, "mehr");
}

TEST_F(ScaleTexts, ShowNoTemperatureWithWarmAir)
{
    info.airhtPower = 20000;
    ZulScaleTexts texts = Make();
    for (size_t i = 1; i < texts.rows.size(); ++i)
        EXPECT_EQ(texts.rows[i].second, "-");
    EXPECT_EQ(texts.rows.back().first, "mehr");
}

TEST_F(ScaleTexts, NameTheAirTemperatureAndWarnOfOneOutOfReach)
{
    EXPECT_EQ(Make().line1, "Werte g\xFCltig bei Lufttemperatur von 15.0 \xB0"
                            "C");
    info.airTemp = 15.01;
    EXPECT_EQ(Make().line1, "Werte g\xFCltig bei Lufttemperatur von 15.0 \xB0"
                            "C, die jedoch nicht erreichbar ist - Leistung erh\xF6hen!");
    info.airTemp = -8.25;
    EXPECT_EQ(Make().line1, "Werte g\xFCltig bei Lufttemperatur von -8.2 \xB0"
                            "C");
}

TEST_F(ScaleTexts, NameTheWantedTemperatureAndTheLimitsThatItMisses)
{
    static const struct {
        int workClass;
        double wanted;
        const char *line;
    } cases[] = {
        {0, 50,
         "(eingegebene Soll-Ergebnistemperatur ist 50 \xB0"
         "C)"},
        {2, 18,
         "(eingegebene Soll-Ergebnistemperatur ist 18 \xB0"
         "C)"},
        {2, 22,
         "(eingegebene Soll-Ergebnistemperatur ist 22 \xB0"
         "C)"},
        {2, 22.5,
         "(eingegebene Soll-Ergebnistemperatur ist 22.5 \xB0"
         "C, aber hygienisch zul\xE4\xDFig ist 18 - 22 \xB0"
         "C)"},
        {1, 19,
         "(eingegebene Soll-Ergebnistemperatur ist 19 \xB0"
         "C, aber hygienisch zul\xE4\xDFig ist 20 - 24 \xB0"
         "C)"},
        {9, 9,
         "(eingegebene Soll-Ergebnistemperatur ist 9 \xB0"
         "C, aber hygienisch zul\xE4\xDFig ist 10 - 24 \xB0"
         "C)"},
    };
    for (const auto &c : cases) {
        hall.room.Data()->workClass = c.workClass;
        hall.room.Data()->resultTemp = c.wanted;
        EXPECT_EQ(Make().line2, c.line);
    }
}

TEST_F(ScaleTexts, OfEndsThatAreNotFiniteAreStillTexts)
{
    for (double hi : {HUGE_VAL, 1e308}) {
        map.lo = -hi;
        map.hi = hi;
        ZulScaleTexts texts = Make();
        EXPECT_EQ(texts.rows.size(), 13U);
        EXPECT_EQ(texts.rows[12].first, "mehr");
    }
}

TEST_F(ScaleTexts, AreWholeOrOutOfMemory)
{
    int swept = SweepFaults([this] { Make(); },
                            [](const FaultRun &run) { EXPECT_EQ(run.code, run.fired ? XALLOC : XNULL); });
    EXPECT_GT(swept, 10);
}

TEST(Colors, OfTheScalesAreThoseOfThePalette)
{
    EXPECT_EQ(hallColors.count, 1);
    EXPECT_EQ(mapColors.count, 12);
    EXPECT_EQ(mapColorsCoarse.count, 3);
    EXPECT_EQ(criterionColors.count, 3);
    EXPECT_EQ(greyColors.count, 12);
    static const struct {
        const ZulCOLORS &scale;
        int index, red, green, blue;
    } cases[] = {
        {hallColors, 0, 100, 100, 100},      {mapColors, 0, 112, 0, 120},
        {mapColors, 1, 112, 0, 0},           {mapColors, 4, 218, 0, 0},
        {mapColors, 10, 235, 185, 0},        {mapColors, 11, 235, 185, 175},
        {mapColorsCoarse, 1, 235, 32, 0},    {mapColorsCoarse, 2, 235, 185, 175},
        {criterionColors, 0, 230, 160, 125}, {criterionColors, 1, 155, 155, 215},
        {criterionColors, 2, 125, 125, 185}, {greyColors, 0, 0, 0, 0},
        {greyColors, 1, 50, 50, 50},         {greyColors, 10, 194, 194, 194},
        {greyColors, 11, 255, 255, 255},
    };
    for (const auto &c : cases) {
        const ZulRGB &color = c.scale.colors[c.index];
        EXPECT_EQ(color.red, c.red);
        EXPECT_EQ(color.green, c.green);
        EXPECT_EQ(color.blue, c.blue);
    }
}
