#include "lib/charstr.h"
#include "lib/platform.h"
#include "support/child.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

namespace
{
TEST(Platform, CollatesByLowerCaseCodeFirstAndThenByCode)
{
    struct {
        const char *s1, *s2;
        int order, orderIgnoringCase;
    } table[] = {
        {"", "", 0, 0},
        {"", "a", -1, -1},
        {"a", "", 1, 1},
        {"a", "a", 0, 0},
        {"a", "b", -1, -1},
        {"B", "a", 1, 1}, // upper case does not come before all lower case
        {"a", "B", -1, -1},
        {"A", "a", -1, 0},
        {"ab", "Aa", 1, 1}, // case decides only between texts
                            // that are equal without it
        {"Tor", "Tore", -1, -1},
        {"tor", "Tore", -1, -1},
        {"z", "\xE4", -1, -1}, // codes are without sign
        {"\xC4", "\xE4", -1, 0},
        {"\x9F", "\xFF", -1, 0},
    };
    for (const auto &row : table) {
        EXPECT_EQ(Collate(row.s1, row.s2, false), row.order) << row.s1 << ", " << row.s2;
        EXPECT_EQ(Collate(row.s2, row.s1, false), -row.order) << row.s1 << ", " << row.s2;
        EXPECT_EQ(Collate(row.s1, row.s2, true), row.orderIgnoringCase) << row.s1 << ", " << row.s2;
        EXPECT_EQ(Collate(row.s2, row.s1, true), -row.orderIgnoringCase) << row.s1 << ", " << row.s2;
    }
}

TEST(Platform, DatesAreShortAndGerman)
{
    struct {
        int year, month, day;
        const char *text;
    } table[] = {
        {2026, 11, 21, "21.11.2026"}, {2026, 1, 2, "02.01.2026"}, {7, 1, 1, "01.01.0007"},
        {0, 0, 0, "00.00.0000"},      {-1, 99, -5, "-5.99.-001"}, {2147483647, 12, 31, "31.12.2147483647"},
    };
    for (const auto &row : table) {
        char text[64];
        ShortDate(row.year, row.month, row.day, text, sizeof text);
        EXPECT_STREQ(text, row.text);
    }
}

TEST(Platform, ADateKeepsItsBound)
{
    const std::string whole = "21.11.2026";
    for (int max = 1; max <= 12; ++max) {
        char text[16];
        std::memset(text, '#', sizeof text);
        ShortDate(2026, 11, 21, text, max);
        EXPECT_EQ(text, whole.substr(0, static_cast<size_t>(max) - 1));
        for (int i = max; i < 16; ++i)
            EXPECT_EQ(text[i], '#') << "max " << max;
    }
}

TEST(Platform, AnUnknownTextIsEmpty)
{
    EXPECT_STREQ(ResText(1010), "");
    EXPECT_STREQ(ResText(-1), "");
}

TEST(Platform, TheCurrencyIsTheEuro)
{
    EXPECT_STREQ(CurrencySymbol(), "\x80");
    EXPECT_EQ(ChrCode(*CurrencySymbol()), 0x20ACu);
}

int BackwardCollate(const char *s1, const char *s2, bool)
{
    return std::strcmp(s2, s1) * 100;
}

void IsoDate(int year, int month, int day, char *text, int max)
{
    std::snprintf(text, static_cast<size_t>(max), "%d-%d-%d", year, month, day);
}

const char *TwoTexts(int id)
{
    return id == 1 ? "eins" : id == 2 ? "zwei" : NULL;
}

TEST(Platform, ServicesAreReplacedAndPutBack)
{
    CollateSink collate = SetCollateSink(BackwardCollate);
    EXPECT_EQ(Collate("a", "b", false), 1);
    EXPECT_EQ(Collate("b", "a", false), -1);
    EXPECT_EQ(SetCollateSink(collate), BackwardCollate);
    EXPECT_EQ(Collate("a", "b", false), -1);

    char text[32];
    ShortDateSink date = SetShortDateSink(IsoDate);
    ShortDate(2026, 11, 21, text, sizeof text);
    EXPECT_STREQ(text, "2026-11-21");
    EXPECT_EQ(SetShortDateSink(date), IsoDate);
    ShortDate(2026, 11, 21, text, sizeof text);
    EXPECT_STREQ(text, "21.11.2026");

    ResTextSink texts = SetResTextSink(TwoTexts);
    EXPECT_STREQ(ResText(2), "zwei");
    EXPECT_STREQ(ResText(3), "");
    EXPECT_EQ(SetResTextSink(texts), TwoTexts);
    EXPECT_STREQ(ResText(2), "");

    const char *symbol = SetCurrencySymbol("CHF");
    EXPECT_STREQ(CurrencySymbol(), "CHF");
    EXPECT_STREQ(SetCurrencySymbol(symbol), "CHF");
    EXPECT_STREQ(CurrencySymbol(), "\x80");
}

TEST(Platform, NullBringsTheDefaultBack)
{
    SetCollateSink(BackwardCollate);
    SetShortDateSink(IsoDate);
    SetResTextSink(TwoTexts);
    SetCurrencySymbol("CHF");
    EXPECT_EQ(SetCollateSink(NULL), BackwardCollate);
    EXPECT_EQ(SetShortDateSink(NULL), IsoDate);
    EXPECT_EQ(SetResTextSink(NULL), TwoTexts);
    EXPECT_STREQ(SetCurrencySymbol(NULL), "CHF");
    char text[32];
    ShortDate(2026, 11, 21, text, sizeof text);
    EXPECT_STREQ(text, "21.11.2026");
    EXPECT_EQ(Collate("a", "b", false), -1);
    EXPECT_STREQ(ResText(1), "");
    EXPECT_STREQ(CurrencySymbol(), "\x80");
}

TEST(Platform, ADateWithoutRoomIsAFaultOfTheProgram)
{
    static char text[4];
    const char *condition = "text != NULL && max > 0";
    EXPECT_TRUE(AbortsOnAssertion(condition, "lib/platform.cpp", [] { ShortDate(2026, 1, 1, text, 0); }));
    EXPECT_TRUE(AbortsOnAssertion(condition, "lib/platform.cpp", [] { ShortDate(2026, 1, 1, NULL, 4); }));
}
} // namespace
