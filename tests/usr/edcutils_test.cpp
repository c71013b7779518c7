#include "usr/edcutils.h"
#include "lib/charstr.h"
#include "lib/platform.h"
#include "lib/xfail.h"

#include <climits>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <utility>
#include <vector>

#include "lib/xon.h"

namespace
{
const double huge = 1e300;
const double infinite = std::numeric_limits<double>::infinity();

std::vector<std::pair<std::string, bool>> shown; // text, error look

void Keep(const char *text, bool error)
{
    shown.emplace_back(text, error);
}

/// Runs the hook as __report does, for a failure that was just taken off.
std::vector<std::pair<std::string, bool>> ShownFor(XCODE code)
{
    shown.clear();
    MessageSink former = SetMessageSink(Keep);
    xRepaired = code;
    xHit = 0;
    EdcFailureHook();
    xRepaired = XNULL;
    xHit = 0;
    SetMessageSink(former);
    return shown;
}
} // namespace

TEST(GetResString, GivesTheNumberedTextInTheSystemsCharacterSet)
{
    EXPECT_STREQ(GetResString(1010), "!Ungenug Speicher!");
    EXPECT_STREQ(GetResString(1651), "Schlu\xDF"
                                     "folgerung");
    EXPECT_STREQ(GetResString(4233), "Werte g\xFCltig bei Lufttemperatur von %3.1lf \xB0"
                                     "C");
    EXPECT_STREQ(GetResString(20206),
                 "Zur Durchsicht des gew\xFCnschten Dokuments\nist Acrobat Reader zu installieren.");
}

TEST(GetResString, GivesAnEmptyTextForAnUnknownNumber)
{
    for (int id : {-1, 0, 1009, 1020, 1706, 65536})
        EXPECT_STREQ(GetResString(id), "") << id;
}

TEST(GetResString, TakesALengthOutsideTheBufferAsTheWholeBuffer)
{
    EXPECT_STREQ(GetResString(4237, 3), "AB");
    EXPECT_STREQ(GetResString(4237, 1), "");
    EXPECT_STREQ(GetResString(4237, 0), "");
    for (int max : {-1, -1000, 5, 1024, 1025, 1000000})
        EXPECT_STREQ(GetResString(4237, max), "ABCD") << max;
}

TEST(GetResString, OverwritesItsOneBufferWithEachCall)
{
    const char *first = GetResString(4250);
    const char *second = GetResString(4251);
    EXPECT_EQ(first, second);
    EXPECT_STREQ(first, "Propan");
}

TEST(ResText, KeepsEachTextOfTheTableForTheProgramsLife)
{
    ResTextSink former = SetResTextSink(NULL);
    EdcUseResources();
    const char *first = ResText(4250);
    const char *second = ResText(4251);
    EXPECT_STREQ(first, "Erdgas");
    EXPECT_STREQ(second, "Propan");
    EXPECT_STREQ(ResText(4252), "");
    SetResTextSink(former);
}

TEST(ResText, HasEveryTextOfThisLayer)
{
    const std::pair<int, int> ranges[] = {
        {1010, 1019},   {1650, 1651},   {1660, 1660},   {1670, 1676},  {1680, 1687}, {1690, 1695}, {1700, 1705},
        {1707, 1707},   {1720, 1723},   {1740, 1751},   {1760, 1760},  {4210, 4211}, {4220, 4221}, {4230, 4237},
        {4250, 4251},   {4260, 4262},   {4270, 4274},   {4280, 4281},  {4290, 4293}, {4300, 4303}, {4310, 4315},
        {20206, 20206}, {20500, 20501}, {20503, 20504}, {20510, 20512}};
    for (auto [first, last] : ranges)
        for (int id = first; id <= last; ++id)
            EXPECT_STRNE(GetResString(id), "") << id;
}

TEST(EdcRound, RoundsHalvesAwayFromZero)
{
    const struct {
        double value;
        int exponent;
        double rounded;
    } cases[] = {
        {0.1 + 0.2, EDC_NOISE, 0.3},
        {0.7 + 0.1, EDC_NOISE, 0.8},
        {-(0.1 + 0.2), EDC_NOISE, -0.3},
        {2.5, 0, 3},
        {-2.5, 0, -3},
        {3.5, 0, 4},
        {0.49999999999999994, 0, 0},
        {-0.4, 0, 0},
        {1.25, -1, 1.3},
        {-1.25, -1, -1.3},
        {12.345678, -2, 12.35},
        {1449, 2, 1400},
        {1450, 2, 1500},
        {-1450, 2, -1500},
        {15, 1, 20},
        {0, EDC_NOISE, 0},
        {1e-13, EDC_NOISE, 0},
        {5e-13, EDC_NOISE, 1e-12},
        // From here on nothing is left to round.
        {9007199254740993.0, 0, 9007199254740993.0},
        {9.2e6 + 0.123456789, EDC_NOISE, 9.2e6 + 0.123456789},
        {huge, EDC_NOISE, huge},
        {-huge, EDC_NOISE, -huge},
        {huge, 0, huge},
        {1.5, -400, 1.5},
        {1.5, 400, 0},
        {0, -400, 0},
        {infinite, EDC_NOISE, infinite},
        {-infinite, 0, -infinite},
    };
    for (const auto &c : cases)
        EXPECT_EQ(EdcRound(c.value, c.exponent), c.rounded) << c.value << " to 10^" << c.exponent;
    EXPECT_TRUE(std::isnan(EdcRound(NAN, EDC_NOISE)));
}

TEST(EdcRound, NeverGivesAReaderMinusZero)
{
    EXPECT_FALSE(std::signbit(EdcRound(-0.4, 0)));
    EXPECT_FALSE(std::signbit(EdcRound(-1e-20, EDC_NOISE)));
}

TEST(EdcFormat, MakesTextsOfAnyLength)
{
    EXPECT_EQ(EdcFormat("%s-%d", "a", 7), "a-7");
    EXPECT_EQ(EdcFormat("%s", ""), "");
    EXPECT_EQ(EdcFormat("%.2lf", huge).size(), 304u);
    std::string text(100000, 'x');
    EXPECT_EQ(EdcFormat("<%s>", text.c_str()), "<" + text + ">");
}

TEST(EdcResFormat, TakesItsFormatFromTheResources)
{
    EXPECT_EQ(EdcResFormat(4236, 18.0, 22.5), ", aber hygienisch zul\xE4\xDFig ist 18 - 22.5 \xB0"
                                              "C");
    EXPECT_EQ(EdcResFormat(4230, 2), "Strahlungsint. [E+2 W/m2]");
    EXPECT_EQ(EdcResFormat(4292, 12.0), "alle Kriterien sind erf\xFCllt - 12% Grundri\xDF");
    EXPECT_EQ(EdcResFormat(1, 12.0), "");
}

TEST(EdcNearest, RoundsHalvesAwayFromZeroAndKeepsToTheIntegers)
{
    const struct {
        double value;
        int nearest;
    } cases[] = {
        {0, 0},
        {0.49, 0},
        {0.5, 1},
        {-0.5, -1},
        {1.5, 2},
        {2.5, 3},
        {-2.5, -3},
        {-2.49, -2},
        {0.49999999999999994, 0},
        {4.5e8, 450000000},
        {2147483646.4, 2147483646},
        {2147483646.5, INT_MAX},
        {2147483647, INT_MAX},
        {-2147483647.4, INT_MIN},
        {-2147483646.5, -INT_MAX},
        {2147483648.0, INT_MAX},
        {-2147483648.0, INT_MIN},
        {huge, INT_MAX},
        {-huge, INT_MIN},
        {infinite, INT_MAX},
        {-infinite, INT_MIN},
        {std::nan(""), 0},
    };
    for (const auto &c : cases)
        EXPECT_EQ(EdcNearest(c.value), c.nearest) << c.value;
}

TEST(Frexp10, SplitsANumberIntoAMantissaBelowOneAndAPowerOfTen)
{
    const struct {
        double x, mantissa;
        int exponent;
    } cases[] = {
        {0, 0, 0},           {1, 0.1, 1},       {-1, -0.1, 1},   {0.1, 0.1, 0},     {9.99, 0.999, 1},
        {10, 0.1, 2},        {60, 0.6, 2},      {2.5, 0.25, 1},  {1234, 0.1234, 4}, {0.5, 0.5, 0},
        {0.05, 0.5, -1},     {1e-9, 0.1, -8},   {1e12, 0.1, 13}, {-24, -0.24, 2},   {0.012, 0.12, -1},
        {8e-300, 0.8, -299}, {3e300, 0.3, 301},
    };
    for (const auto &c : cases) {
        int exponent = -1;
        double mantissa = Frexp10(c.x, exponent);
        EXPECT_NEAR(mantissa, c.mantissa, 1e-12) << c.x;
        EXPECT_EQ(exponent, c.exponent) << c.x;
    }
}

TEST(Frexp10, GivesAMantissaFromATenthToOneOnEveryDecade)
{
    for (int decade = -290; decade <= 290; ++decade) {
        for (double factor : {1.0, 1.0000001, 2.0, 3.1622, 3.1623, 5.0, 7.5, 9.9999999}) {
            double x = factor * std::pow(10.0, decade);
            int exponent = 0;
            double mantissa = Frexp10(x, exponent);
            ASSERT_LT(mantissa, 1) << x;
            ASSERT_GE(mantissa, 0.1 * (1 - 1e-12)) << x;
            ASSERT_NEAR(mantissa * std::pow(10.0, exponent) / x, 1, 1e-12);
            int negative = 0;
            ASSERT_EQ(Frexp10(-x, negative), -mantissa);
            ASSERT_EQ(negative, exponent);
        }
    }
}

TEST(EdcFailureHook, ShowsTheMessageOfEachCodeWithItsName)
{
    StrCopy(xFFoundName, "g\\gesucht.gim", X_NAME);
    StrCopy(xFOpenName, "C\\D\\hall.sc1", X_NAME);
    StrCopy(xFCreateName, "neu.sc1", X_NAME);
    StrCopy(xFReadName, "kurz 100%s.sc1", X_NAME);
    StrCopy(xFWriteName, "\\voll\\%n.sc1", X_NAME);
    StrCopy(xDCreateName, "Ordner", X_NAME);
    const struct {
        XCODE code;
        const char *text;
    } cases[] = {
        {XALLOC, "Ungenug Speicher!"},
        {XLIMIT, "Interne Programmtabellen \xFC"
                 "berf\xFCllt!"},
        {XCDE_INVOLVED, "Versuch um \xDC"
                        "bertragung von Fehldaten!"},
        {XFFOUND, "Datei \"g/gesucht.gim\" nicht gefunden!"},
        {XFOPEN, "Datei \"C/D/hall.sc1\" kann nicht ge\xF6"
                 "ffnet werden!\nWahrscheinlich falscher Name."},
        {XFCREATE, "Datei \"neu.sc1\" kann nicht gebildet werden!\n"
                   "Wahrscheinlich falscher Name oder wenig Platz auf der Platte."},
        {XFREAD, "Datei \"kurz 100%s.sc1\" kann nicht gelesen werden!\nM\xF6glicher Dateischaden."},
        {XFWRITE, "Keine Eintr\xE4ge in Datei \"/voll/%n.sc1\" m\xF6glich!\n"
                  "Wahrscheinlich wenig Platz auf der Platte."},
        {XDCREATE, "Verzeichnis \"Ordner\" kann nicht gebildet werden!\nWahrscheinlich falscher Name."},
        {XUNKNOWN, "N\xE4her nicht spezifizierter Fehler!"},
    };
    for (const auto &c : cases) {
        auto messages = ShownFor(c.code);
        ASSERT_EQ(messages.size(), 1u) << c.code;
        EXPECT_EQ(messages[0].first, c.text) << c.code;
        EXPECT_TRUE(messages[0].second) << c.code;
    }
}

TEST(EdcFailureHook, ShowsFreeTextWithoutReadingArgumentsForItsPercentSigns)
{
    const struct {
        const char *general;
        const char *text;
        bool error;
    } cases[] = {
        {"!Platte voll", "Platte voll", true},
        {"Hinweis", "Hinweis", false},
        {"100 %", "100 %", false},
        {"100 %% fertig", "100 % fertig", false},
        {"%s%s%s%n%d", "%s%s%s%n%d", false},
        {"!%", "%", true},
        {"%%%s", "%%s", false},
    };
    for (const auto &c : cases) {
        StrCopy(xGeneralText, c.general, X_NAME);
        auto messages = ShownFor(XGENERAL);
        ASSERT_EQ(messages.size(), 1u) << c.general;
        EXPECT_EQ(messages[0].first, c.text);
        EXPECT_EQ(messages[0].second, c.error) << c.general;
    }
    StrCopy(xGeneralText, std::string(255, '%').c_str(), X_NAME);
    EXPECT_EQ(ShownFor(XGENERAL)[0].first, std::string(128, '%'));
    StrCopy(xGeneralText, "", X_NAME);
}

TEST(EdcFailureHook, ShowsNothingMoreOnceAStepHasHit)
{
    shown.clear();
    MessageSink former = SetMessageSink(Keep);
    xRepaired = XALLOC;
    xHit = 1;
    EdcFailureHook();
    EXPECT_TRUE(shown.empty());
    xRepaired = XNULL;
    xHit = 0;
    SetMessageSink(former);
}

TEST(EdcFailureHook, EndsTheRoadOfAFailure)
{
    shown.clear();
    MessageSink former = SetMessageSink(Keep);
    SetFailureHook(EdcFailureHook);
    __enter
        StrCopy(xFReadName, "hall.sc1", X_NAME);
        __raise(XFREAD);
    __point
        __repair;
        __report;
    __treat
    EXPECT_EQ(shown.size(), 1u);
    EXPECT_EQ(xCode, XNULL);
    EXPECT_EQ(xRepaired, XFREAD);
    xRepaired = XNULL;
    xHit = 0;
    SetFailureHook(NULL);
    SetMessageSink(former);
}
