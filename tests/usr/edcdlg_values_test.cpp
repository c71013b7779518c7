#include "support/chance.h"
#include "support/child.h"
#include "usr/edcdlg.h"
#include "usr/edcutils.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

namespace
{
const char source[] = "usr/edcdlg_values.cpp";

/// State and text after an operation: "V:" holds a value, "U:" undefined.
std::string Shown(const TEdcAStr &s)
{
    return (s.id == EDC_VVAL ? "V:" : s.id == EDC_VUDF ? "U:" : std::to_string(s.id) + ":") + s.text;
}

TEdcLongStr Text(const std::string &s)
{
    TEdcLongStr text;
    text = s.c_str();
    return text;
}

std::string FloatText(double value, int digits, const char *unit)
{
    TEdcShortStr text;
    text.SetFloat(value, digits, unit);
    return Shown(text);
}

struct FLOATTEXT {
    double value;
    int digits;
    const char *unit;
    const char *text;
};

const double infinite = std::numeric_limits<double>::infinity();

const FLOATTEXT floatTexts[] = {
    {1234, -1, "W", "V:1.234 kW"},
    {12, -1, "W", "V:12 W"},
    {0.5, -1, "W", "V:500 mW"},
    {1234, -1, "", "V:1.234 k."},
    {12, -1, "", "V:12"},
    {0, -1, "m", "V:0 m"},
    {0, -1, "", "V:0"},
    {0, -1, NULL, "V:0"},
    {0, 2, "m", "V:0.00 m"},
    {-0.0, -1, "m", "V:0 m"},
    {-0.0, 1, NULL, "V:0.0"},
    {1234.567, 2, NULL, "V:1234.57"},
    {1234.567, 0, NULL, "V:1235"},
    {1234567, -1, NULL, "V:1.23457e+06"},
    {0.1, -1, NULL, "V:0.1"},
    {-1234, -1, "W", "V:-1.234 kW"},
    {-0.5, -1, "W", "V:-500 mW"},
    {1, -1, "W", "V:1 W"},
    {10, -1, "W", "V:10 W"},
    {100, -1, "W", "V:100 W"},
    {999, -1, "W", "V:999 W"},
    {1000, -1, "W", "V:1 kW"},
    {0.999, -1, "W", "V:999 mW"},
    {0.1, -1, "W", "V:100 mW"},
    {0.001, -1, "m", "V:1 mm"},
    {1e6, -1, "W", "V:1 MW"},
    {1e9, -1, "W", "V:1 GW"},
    {1e12, -1, "W", "V:1 TW"},
    {1e15, -1, "W", "V:1 PW"},
    {1e18, -1, "W", "V:1 EW"},
    {1e-6, -1, "m", "V:1 um"},
    {1e-9, -1, "m", "V:1 nm"},
    {1e-12, -1, "m", "V:1 pm"},
    {1e-15, -1, "m", "V:1 fm"},
    {1e-18, -1, "m", "V:1 am"},
    {1e-19, -1, "m", "V:0.1 am"},
    {1e-20, -1, "m", "V:0.01 am"},
    {9.9e-21, -1, "m", "V:9.9e-21"},
    {5e-324, -1, "m", "V:4.94066e-324"},
    {9.99e20, -1, "m", "V:999 Em"},
    {1e21, -1, "m", "V:1e+21"},
    {1e300, -1, "m", "V:1e+300"},
    {-1e21, -1, "", "V:-1e+21"},
    {1e21, 0, "m", "V:1000000000000000000000"},
    {1234.5678, 2, "W", "V:1.23 kW"},
    {1234.5678, 0, "W", "V:1 kW"},
    {123456789, -1, "W", "V:123.457 MW"},
    {50, -1, "%", "V:50 %"},
    {50000, -1, "%", "V:50 k%"},
    {20, -1,
     "\xB0"
     "C",
     "V:20 \xB0"
     "C"},
    {12, -1, " W", "V:12 W"},
    {5, -1, "kg", "V:5 kg"},
    {5000, -1, "g", "V:5 kg"},
    {1e5, -1, "", "V:100 k."},
    {1e-3, -1, "", "V:1 m."},
    {infinite, -1, "W", "V:inf"},
    {-infinite, -1, NULL, "V:-inf"},
    {1e300, 2, NULL, "U:1000000000000000052504760255204"},
    {1.5, -1, "Kilogramm je Quadratmeter und s", "U:1.5 Kilogramm je Quadratmeter u"},
};

struct FLOATREAD {
    const char *text;
    const char *unit;
    bool known;
    double value;
};

const std::string digits40(40, '1'), letters300(300, 'x'), digits300(300, '7');

const FLOATREAD floatReads[] = {
    {"1.5 kW", "W", true, 1500},
    {"1.5 k.", "W", true, 1500},
    {"1500 W", "W", true, 1500},
    {"1500", "W", true, 1500},
    {"1500 w", "W", false, 0},
    {"12 mW", "W", true, 0.012},
    {"12 m.", "W", true, 0.012},
    {"12 M", "W", false, 0},
    {"12 M.", "W", true, 12e6},
    {"1,5", "W", false, 0},
    {"1,5", NULL, false, 0},
    {"1,5", "", false, 0},
    {"12 m", "m", true, 12},
    {"12 mm", "m", true, 0.012},
    {"12 mmm", "m", false, 0},
    {"12 m", "", false, 0},
    {"12 m.", "", true, 0.012},
    {"12 m.x", "W", true, 0.012},
    {"12 W", "", false, 0},
    {"12 .", "", false, 0},
    {"12kW", "W", true, 12000},
    {"  12   kW  ", "W", true, 12000},
    {"12 kW Rest", "W", true, 12000},
    {"12 k W", "W", false, 0},
    {"\t12\nkW\r\n", "W", true, 12000},
    {"12\n", "W", true, 12},
    {"-12", "W", true, -12},
    {"+12", "W", true, 12},
    {"- 12", "W", false, 0},
    {"--12", "W", false, 0},
    {"-0", "W", true, 0},
    {".5", "W", true, 0.5},
    {"5.", "W", true, 5},
    {".", "W", false, 0},
    {"-", "W", false, 0},
    {"-.", "W", false, 0},
    {"1.2.3", "W", false, 0},
    {"1e3", "W", false, 0},
    {"1e400", "W", false, 0},
    {"nan", "W", false, 0},
    {"inf", "W", false, 0},
    {"0x10", "W", false, 0},
    {"", "W", false, 0},
    {"   ", "W", false, 0},
    {"kW", "W", false, 0},
    {"abc", "W", false, 0},
    {"12 WW", "W", false, 0},
    {"12 kWh", "W", false, 0},
    {"1 aW", "W", true, 1e-18},
    {"1 fW", "W", true, 1e-15},
    {"1 pW", "W", true, 1e-12},
    {"1 nW", "W", true, 1e-9},
    {"1 uW", "W", true, 1e-6},
    {"1 GW", "W", true, 1e9},
    {"1 TW", "W", true, 1e12},
    {"1 PW", "W", true, 1e15},
    {"1 EW", "W", true, 1e18},
    {"50 %", "%", true, 50},
    {"5 \xB0"
     "C",
     "\xB0"
     "C",
     true, 5},
    {"5 \xE4", "W", false, 0},
    {"\xE4 5", "W", false, 0},
    {"1234567890123456789012345678901", "W", true, 1234567890123456789012345678901.0}, // 31 digits
    {"12345678901234567890123456789012", "W", false, 0},
    {digits40.c_str(), "W", false, 0},
    {"1 xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx", "W", false, 0}, // a token of 32
    {letters300.c_str(), "W", false, 0},
    {digits300.c_str(), "W", false, 0},

    {"1.5", NULL, true, 1.5},
    {" -2.5 ", NULL, true, -2.5},
    {"1e3", NULL, true, 1000},
    {"1.5 W", NULL, false, 0},
    {"1e400", NULL, false, 0},
    {"-1e400", NULL, false, 0},
    {"nan", NULL, false, 0},
    {"inf", NULL, false, 0},
    {"-0", NULL, true, 0},
    {"", NULL, false, 0},
    {"  ", NULL, false, 0},
    {"abc", NULL, false, 0},
    {"5\n", NULL, true, 5},
    {"5\n6", NULL, false, 0},
    {"\xB2", NULL, false, 0},
    {digits40.c_str(), NULL, true, 1111111111111111111111111111111111111111.0},
    {letters300.c_str(), NULL, false, 0},
};

struct INTREAD {
    const char *text;
    bool known;
    int value;
};

const INTREAD intReads[] = {
    {"0", true, 0},
    {"12", true, 12},
    {"-12", true, -12},
    {"+12", true, 12},
    {"  12  ", true, 12},
    {"12\n", true, 12},
    {"007", true, 7},
    {"-0", true, 0},
    {"2147483647", true, 2147483647},
    {"-2147483648", true, -2147483647 - 1},
    {"2147483648", false, 0},
    {"-2147483649", false, 0},
    {"99999999999999999999", false, 0},
    {"", false, 0},
    {"   ", false, 0},
    {"abc", false, 0},
    {"12a", false, 0},
    {"1 2", false, 0},
    {"1\n2", false, 0},
    {"1.5", false, 0},
    {"1e3", false, 0},
    {"0x10", false, 0},
    {"nan", false, 0},
    {"inf", false, 0},
    {"- 5", false, 0},
    {"\xB9", false, 0},
    {digits40.c_str(), false, 0},
    {letters300.c_str(), false, 0},
};

struct TIMETEXT {
    TEdcTime time;
    const char *format;
    const char *text;
};

const TIMETEXT timeTexts[] = {
    {{2000, 2, 29, 7, 5, 9}, NULL, "V:29.2.2000, 7:05:09"},
    {{2000, 2, 29, 7, 5, 9}, "d.M.r, h:m:s", "V:29.2.2000, 7:05:09"},
    {{2000, 2, 29, 7, 5, 9}, "d.M.r, h:m", "V:29.2.2000, 7:05"},
    {{2000, 2, 29, 7, 5, 9}, "d.M.r", "V:29.2.2000"},
    {{2000, 2, 29, 7, 5, 9}, "y-M-d", "V:2000-2-29"},
    {{2000, 2, 29, 7, 5, -1}, NULL, "V:29.2.2000, 7:05:?"},
    {{-1, -1, -1, -1, -1, -1}, NULL, "V:?.?.?, ?:?:?"},
    {{0, 1, 1, 0, 0, 0}, NULL, "V:1.1.0, 0:00:00"},
    {{2000, 2, 29, 7, 5, 9}, "", "V:"},
    {{2000, 2, 29, 7, 5, 9}, "%", "V:%"},
    {{2000, 2, 29, 7, 5, 9}, "r r r r r r r r", "U:2000 2000 2000 2000 2000 2000 2"},
};

struct TIMEREAD {
    const char *text;
    const char *format;
    const char *fields; // NULL: undefined
};

const TIMEREAD timeReads[] = {
    {"29.2.1900", "d.M.r", NULL},
    {"29.2.2000", "d.M.r", "2000 2 29 -1 -1 -1"},
    {"31.4.2000", "d.M.r", NULL},
    {"29.2.99", "d.M.r", "99 2 29 -1 -1 -1"},
    {"29.2.100", "d.M.r", NULL},
    {"29.2.2001", "d.M.r", NULL},
    {"29.2.2004", "d.M.r", "2004 2 29 -1 -1 -1"},
    {"30.2.2000", "d.M.r", NULL},
    {"30.2.99", "d.M.r", NULL},
    {"29.2.", "d.M.", "-1 2 29 -1 -1 -1"},
    {"31.1.2001", "d.M.r", "2001 1 31 -1 -1 -1"},
    {"31.12.2001", "d.M.r", "2001 12 31 -1 -1 -1"},
    {"31.6.2001", "d.M.r", NULL},
    {"31.9.2001", "d.M.r", NULL},
    {"31.11.2001", "d.M.r", NULL},
    {"32.1.2001", "d.M.r", NULL},
    {"0.1.2001", "d.M.r", NULL},
    {"1.0.2001", "d.M.r", NULL},
    {"1.13.2001", "d.M.r", NULL},
    {"1.1.0", "d.M.r", "0 1 1 -1 -1 -1"},
    {"1.1.9999", "d.M.r", "9999 1 1 -1 -1 -1"},
    {"1.1.10000", "d.M.r", NULL},
    {"1.1.-5", "d.M.r", NULL},
    {"1.1.2000, 7:05:09", NULL, "2000 1 1 7 5 9"},
    {"1.1.2000,7:5:9", NULL, "2000 1 1 7 5 9"},
    {" 1 . 1 . 2000 ,  7 : 5 : 9 ", NULL, "2000 1 1 7 5 9"},
    {"1.1.2000\n7:5:9", NULL, NULL},
    {"1.1.2000, 7:05", NULL, NULL},
    {"1.1.2000, 7:05", "d.M.r, h:m", "2000 1 1 7 5 -1"},
    {"23:59:59", "h:m:s", "-1 -1 -1 23 59 59"},
    {"24:00:00", "h:m:s", NULL},
    {"0:60:0", "h:m:s", NULL},
    {"0:0:60", "h:m:s", NULL},
    {"1.1.2000 ist es", "d.M.r", "2000 1 1 -1 -1 -1"},
    {"31", "d", "-1 -1 31 -1 -1 -1"},
    {"2000-2-29", "y-M-d", "2000 2 29 -1 -1 -1"},
    {"", "d.M.r", NULL},
    {"   ", "d.M.r", NULL},
    {"abc", "d.M.r", NULL},
    {"nan", "d.M.r", NULL},
    {"1e400", "r", "1 -1 -1 -1 -1 -1"},
    {"-0", "r", NULL},
    {"\xB2", "r", NULL},
    {"00000000000000000000000000000007", "d", "-1 -1 7 -1 -1 -1"}, // 32 digits
    {"000000000000000000000000000000007", "d", NULL},              // 32 zeros before the 7
    {"00000000000000000000000000000001.2", "d.M", "-1 2 1 -1 -1 -1"},
    {digits40.c_str(), "r", NULL},
    {digits300.c_str(), "r", NULL},
    {letters300.c_str(), "d.M.r", NULL},
};

std::string Fields(const TEdcTime &time)
{
    std::string all;
    for (short field : {time.year, time.month, time.day, time.hour, time.minute, time.second})
        all += (all.empty() ? "" : " ") + std::to_string(field);
    return all;
}

/// A text of any length, which a value of the framework's own would cut.
TEdcAStr Wrapped(std::string &s)
{
    return TEdcAStr(s.data(), static_cast<int>(s.size()) + 1, EDC_VVAL);
}

} // namespace

TEST(SetFloat, WritesEachRowOfTheTable)
{
    for (const FLOATTEXT &row : floatTexts)
        EXPECT_EQ(FloatText(row.value, row.digits, row.unit), row.text)
            << row.value << " " << row.digits << " " << (row.unit != NULL ? row.unit : "NULL");
}

TEST(GetFloat, ReadsEachRowOfTheTable)
{
    for (const FLOATREAD &row : floatReads) {
        std::string text = row.text;
        TEdcFloat read = Wrapped(text).GetFloat(row.unit);
        EXPECT_EQ(read.id, row.known ? EDC_VVAL : EDC_VUDF) << row.text << "|" << (row.unit ? row.unit : "");
        if (row.known) {
            EXPECT_DOUBLE_EQ(read.value, row.value) << row.text;
        }
    }
}

TEST(GetInt, ReadsEachRowOfTheTable)
{
    for (const INTREAD &row : intReads) {
        std::string text = row.text;
        TEdcInt read = Wrapped(text).GetInt();
        EXPECT_EQ(read.id, row.known ? EDC_VVAL : EDC_VUDF) << row.text;
        if (row.known) {
            EXPECT_EQ(read.value, row.value) << row.text;
        }
    }
}

TEST(SetTime, WritesEachRowOfTheTable)
{
    for (const TIMETEXT &row : timeTexts) {
        TEdcShortStr text;
        text.SetTime(row.time, row.format);
        EXPECT_EQ(Shown(text), row.text);
    }
}

TEST(GetTime, ReadsEachRowOfTheTable)
{
    for (const TIMEREAD &row : timeReads) {
        std::string text = row.text;
        TEdcTime read = Wrapped(text).GetTime(row.format);
        EXPECT_EQ(read.id, row.fields != NULL ? EDC_VVAL : EDC_VUDF) << row.text;
        if (row.fields != NULL) {
            EXPECT_EQ(Fields(read), row.fields) << row.text;
        }
    }
}

TEST(ValueTables, HoldAtLeast150Rows)
{
    EXPECT_GE(std::size(floatTexts) + std::size(floatReads) + std::size(intReads) + std::size(timeTexts) +
                  std::size(timeReads),
              150u);
}

TEST(SetFloat, OfZeroHasAUnitAndNoPrefix)
{
    EXPECT_EQ(FloatText(0, -1, "m"), "V:0 m");
}

TEST(SetFloat, WithDigitsAndNoUnitIsPlainAndFixed)
{
    EXPECT_EQ(FloatText(12345.678, 2, NULL), "V:12345.68");
    EXPECT_EQ(FloatText(0.001, 2, NULL), "V:0.00");
}

TEST(SetFloat, BeyondThePrefixesHasNoUnit)
{
    for (double sign : {1.0, -1.0}) {
        std::string minus = sign < 0 ? "-" : "";
        EXPECT_EQ(FloatText(sign * 1e21, -1, "W"), "V:" + minus + "1e+21");
        EXPECT_EQ(FloatText(sign * 9.99e20, -1, "W"), "V:" + minus + "999 EW");
        EXPECT_EQ(FloatText(sign * 1e-20, -1, "W"), "V:" + minus + "0.01 aW");
        EXPECT_EQ(FloatText(sign * 9.99e-21, -1, "W"), "V:" + minus + "9.99e-21");
    }
}

TEST(GetFloat, TakesAPrefixWithItsUnitOrAPointOnly)
{
    EXPECT_DOUBLE_EQ(Text("12 mW").GetFloat("W").value, 0.012);
    EXPECT_DOUBLE_EQ(Text("12 m.").GetFloat("W").value, 0.012);
    EXPECT_EQ(Text("12 M").GetFloat("W").id, EDC_VUDF);
}

TEST(GetFloat, RefusesADecimalComma)
{
    EXPECT_EQ(Text("1,5").GetFloat("W").id, EDC_VUDF);
    EXPECT_EQ(Text("1,5").GetFloat(NULL).id, EDC_VUDF);
}

TEST(GetTime, KnowsTheMonthsAndTheLeapYears)
{
    EXPECT_EQ(Text("29.2.1900").GetTime("d.M.r").id, EDC_VUDF);
    EXPECT_EQ(Text("29.2.2000").GetTime("d.M.r").id, EDC_VVAL);
    EXPECT_EQ(Text("31.4.2000").GetTime("d.M.r").id, EDC_VUDF);
    EXPECT_EQ(Text("29.2.99").GetTime("d.M.r").id, EDC_VVAL);
}

TEST(GetTime, LeavesSecondsOutThatTheFormatLeavesOut)
{
    TEdcTime time = Text("1.2.2003, 4:05").GetTime("d.M.r, h:m");
    EXPECT_EQ(time.second, -1);
    TEdcShortStr text;
    text.SetTime(time, NULL);
    EXPECT_EQ(Shown(text), "V:1.2.2003, 4:05:?");
}

TEST(SetText, TooLongIsCutAndUndefined)
{
    char buffer[5];
    TEdcAStr text(buffer, 5, EDC_VVAL);
    text.Set(EDC_VVAL, "Halle");
    EXPECT_EQ(Shown(text), "U:Hall");
    text.Set(7, "Tor");
    EXPECT_EQ(Shown(text), "7:Tor");
    text.Set(EDC_VNUL, "");
    EXPECT_EQ(Shown(text), "-4:");
}

TEST(SetText, ComesFromTheResources)
{
    TEdcShortStr text;
    text.SetRes(EDC_VNUL, 20510);
    EXPECT_EQ(Shown(text), "-4:(nichts)");
    text.SetRes(EDC_VUDF, 20511);
    EXPECT_EQ(Shown(text), "U:(Auswahl)");
    text.SetRes(EDC_VVAL, 20512);
    EXPECT_EQ(Shown(text), "V:(alles)");
    text.SetRes(EDC_VVAL, 20500);
    EXPECT_EQ(Shown(text), "U:Wert muss eingegeben, bzw. gew\xE4");
    text.SetRes(EDC_VVAL, 1);
    EXPECT_EQ(Shown(text), "V:");
}

TEST(FormatText, IsPrintfWithAState)
{
    TEdcShortStr text;
    text.Format(3, "%d Tore, %s", 2, "Wand A");
    EXPECT_EQ(Shown(text), "3:2 Tore, Wand A");
    text.FormatRes(EDC_VVAL, 4233, 21.5);
    EXPECT_EQ(text.id, EDC_VUDF) << "longer than the storage";
    TEdcLongStr wide;
    wide.FormatRes(EDC_VVAL, 20503, "1", "9");
    EXPECT_EQ(Shown(wide), "V:Ganze Zahl von 1 bis 9 erwartet.");
}

TEST(FormatText, NeverLeavesItsBuffer)
{
    char buffer[8] = "xxxxxxx";
    TEdcAStr text(buffer, 4, EDC_VVAL);
    text.Format(EDC_VVAL, "%s", digits300.c_str());
    EXPECT_EQ(Shown(text), "U:777");
    EXPECT_EQ(std::string(buffer + 4, 3), "xxx");
    text.Format(EDC_VVAL, "%d", 123);
    EXPECT_EQ(Shown(text), "V:123");
}

TEST(SetInt, WritesTheNumberInFull)
{
    TEdcShortStr text;
    text.SetInt(-2147483647 - 1);
    EXPECT_EQ(Shown(text), "V:-2147483648");
    text.SetInt(5, 12);
    EXPECT_EQ(Shown(text), "12:5");
    char buffer[3];
    TEdcAStr narrow(buffer, 3, EDC_VVAL);
    narrow.SetInt(123);
    EXPECT_EQ(Shown(narrow), "U:12");
}

TEST(SettingAnUndefinedValue, LeavesTheTextAndMakesItUndefined)
{
    TEdcShortStr text;
    auto check = [&text] {
        EXPECT_EQ(Shown(text), "U:alt");
        text = "alt";
    };
    text = "alt";
    text.SetInt(TEdcInt());
    check();
    text.SetFloat(TEdcFloat(), 2, "W");
    check();
    text.SetTime(TEdcTime(), NULL);
    check();
}

TEST(ReadingAnUndefinedText, GivesUndefinedValues)
{
    TEdcShortStr text;
    text = "1";
    text.id = EDC_VUDF;
    EXPECT_EQ(text.GetInt().id, EDC_VUDF);
    EXPECT_EQ(text.GetFloat(NULL).id, EDC_VUDF);
    EXPECT_EQ(text.GetFloat("W").id, EDC_VUDF);
    EXPECT_EQ(text.GetTime("d").id, EDC_VUDF);
    TEdcAStr none(NULL, 0, EDC_VVAL);
    EXPECT_EQ(none.GetFloat(NULL).id, EDC_VUDF);
    EXPECT_EQ(none.GetTime(NULL).id, EDC_VUDF);
}

TEST(IsBlank, IsTrueOfWhiteSpaceOnly)
{
    for (const char *blank : {"", " ", " \t\r\n "})
        EXPECT_TRUE(Text(blank).IsBlank());
    for (const char *text : {"x", " . ", "\xE4"})
        EXPECT_FALSE(Text(text).IsBlank());
}

TEST(SetFloat, ReadsBackToSixDigitsThroughEveryPrefix)
{
    CHANCE chance(33);
    const char *const units[] = {"W", "m", "", "kg", "k", "%", "M", "W/m2K"};
    for (int i = 0; i < 20000; ++i) {
        double value = std::pow(10.0, chance.Real(-20, 21)) * (chance.One(2) ? 1 : -1);
        const char *unit = chance.Of(units);
        TEdcShortStr text;
        text.SetFloat(value, -1, unit);
        ASSERT_EQ(text.id, EDC_VVAL);
        TEdcFloat read = text.GetFloat(unit);
        ASSERT_EQ(read.id, EDC_VVAL) << text.text;
        ASSERT_NEAR(read.value / value, 1, 5.001e-6) << text.text;
    }
}

TEST(SetInt, ReadsBackEveryNumber)
{
    CHANCE chance(34);
    for (int i = 0; i < 5000; ++i) {
        int value = chance.Int(-2147483647 - 1, 2147483647);
        TEdcShortStr text;
        text.SetInt(value);
        ASSERT_EQ(text.GetInt().value, value);
    }
}

TEST(SetTime, ReadsBackEveryTime)
{
    CHANCE chance(35);
    for (int i = 0; i < 5000; ++i) {
        TEdcTime time(chance.Int(0, 9999), chance.Int(1, 12), chance.Int(1, 28), chance.Int(0, 23),
                      chance.Int(0, 59), chance.Int(0, 59));
        TEdcShortStr text;
        text.SetTime(time, NULL);
        TEdcTime read = text.GetTime(NULL);
        ASSERT_EQ(read.id, EDC_VVAL) << text.text;
        ASSERT_EQ(Fields(read), Fields(time));
    }
}

TEST(Parsers, TakeAnyBytes)
{
    CHANCE chance(36);
    const char alphabet[] = " 0123456789.,+-eExkMm:\n\t%nainf\xE4\xA0\x81\xFF";
    for (int i = 0; i < 20000; ++i) {
        std::string text;
        for (int left = chance.Int(0, chance.One(20) ? 300 : 12); left > 0; --left)
            text += chance.One(8) ? static_cast<char>(chance.Int(1, 255)) : chance.Of(alphabet);
        text = text.c_str();
        TEdcAStr value = Wrapped(text);
        TEdcFloat plain = value.GetFloat(NULL), scaled = value.GetFloat("W");
        ASSERT_TRUE(std::isfinite(plain.value) && std::isfinite(scaled.value)) << text;
        TEdcTime time = value.GetTime(NULL);
        ASSERT_TRUE(time.id == EDC_VUDF || time.second >= 0) << text;
        value.GetInt();
    }
}

TEST(StringOperations, RefuseABufferThatIsNone)
{
    char buffer[4] = "";
    TEdcAStr empty(buffer, 0, EDC_VVAL), none(NULL, 4, EDC_VVAL);
    const std::function<void(TEdcAStr &)> calls[] = {
        [](TEdcAStr &s) { s.Set(EDC_VVAL, ""); },
        [](TEdcAStr &s) { s.SetRes(EDC_VVAL, 20510); },
        [](TEdcAStr &s) { s.Format(EDC_VVAL, "x"); },
        [](TEdcAStr &s) { s.FormatRes(EDC_VVAL, 20510); },
        [](TEdcAStr &s) { s.SetInt(1); },
        [](TEdcAStr &s) { s.SetFloat(1, 0, NULL); },
        [](TEdcAStr &s) { s.SetTime(TEdcTime(), NULL); },
        [](TEdcAStr &s) { s.GetInt(); },
        [](TEdcAStr &s) { s = ""; },
    };
    for (const auto &call : calls) {
        EXPECT_TRUE(AbortsOnAssertion("max > 0", source, [&] { call(empty); }));
        EXPECT_TRUE(AbortsOnAssertion("val != NULL", source, [&] { call(none); }));
    }
}

TEST(IsBlank, RefusesAnUndefinedText)
{
    TEdcShortStr text;
    EXPECT_TRUE(AbortsOnAssertion("id != EDC_VUDF", source, [&] { text.IsBlank(); }));
    text.text = NULL;
    EXPECT_TRUE(AbortsOnAssertion("val != NULL", source, [&] { text.IsBlank(); }));
}
