// The numbers of an axis: which exponent it shows, how far its ticks stand apart, and what stands at them.
#include "support/child.h"
#include "usr/edcitem_axes.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstring>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <string>
#include <vector>

namespace
{
struct Tick {
    double value;
    std::string text;
};

/// The labels in the order of the chain, which is freed.
std::vector<Tick> Ticks(double min, double max, double step, int exponent)
{
    std::vector<Tick> ticks;
    TEdcAxesLabel *chain = EdcMakeTicks(min, max, step, exponent);
    for (const TEdcAxesLabel *label = chain; label != NULL; label = label->next)
        ticks.push_back({label->value, label->text});
    EdcFreeTicks(chain);
    EXPECT_EQ(chain, static_cast<TEdcAxesLabel *>(NULL));
    return ticks;
}

std::string Texts(double min, double max, double step, int exponent)
{
    std::string texts;
    for (const Tick &tick : Ticks(min, max, step, exponent))
        texts += (texts.empty() ? "" : " ") + tick.text;
    return texts;
}

/// Whether a step is 1, 2 or 5 times a power of ten.
bool IsRound(double step)
{
    double power = std::pow(10.0, std::floor(std::log10(step) + 1e-9));
    double factor = step / power;
    return std::min({std::fabs(factor - 1), std::fabs(factor - 2), std::fabs(factor - 5)}) < 1e-9;
}

/// The next round step below a round one.
double Finer(double step)
{
    double power = std::pow(10.0, std::floor(std::log10(step) + 1e-9));
    return std::fabs(step / power - 5) < 1e-6   ? 2 * power
           : std::fabs(step / power - 2) < 1e-6 ? power
                                                : power / 2;
}

std::string Composed(const char *title, int exponent)
{
    char text[TEdcAxes::TITLEMAX];
    EdcComposeTitle(text, title, exponent);
    return text;
}
} // namespace

TEST(EdcTickNumbers, ShiftTheLabelsByTheExponentThatTheDigitsLeave)
{
    struct {
        double min, max;
        int digits, exponent; // wanted
        int shown, places, longest;
    } rows[] = {
        // From ten on as many places as there are digits, the rest in the exponent.
        {0, 60, 1, 0, 1, 6, 1},
        {0, 60, 2, 0, 0, 60, 2},
        {0, 60, 3, 0, 0, 600, 3},
        {0, 24, 1, 0, 1, 2, 1},
        {0, 10, 1, 0, 1, 1, 1},
        {0, 10, 2, 0, 0, 10, 2},
        {0, 400, 1, 0, 2, 4, 1},
        {0, 400, 2, 0, 1, 40, 2},
        {0, 400, 3, 0, 0, 400, 3},
        {0, 99.9, 2, 0, 0, 99, 2},
        {0, 1e12, 3, 0, 10, 100, 3},
        {0, 12345678, 8, 0, 0, 12345678, 8},
        {0, 60, 8, 0, 0, 60000000, 8},
        // Below ten one place in front of the point.
        {0, 1, 1, 0, 0, 1, 1},
        {0, 5, 1, 0, 0, 5, 1},
        {0, 5, 3, 0, 0, 500, 3},
        {0, 9.99, 2, 0, 0, 99, 2},
        {0, 0.5, 1, 0, -1, 5, 1},
        {0, 0.05, 1, 0, -2, 5, 1},
        {0, 0.05, 2, 0, -2, 50, 2},
        {0, 1e-9, 3, 0, -9, 100, 3},
        // The longer half axis counts.
        {-60, 5, 1, 0, 1, 6, 1},
        {-5, 60, 1, 0, 1, 6, 1},
        {-60, 0, 2, 0, 0, 60, 2},
        {-5, 0, 1, 0, 0, 5, 1},
        // A wanted exponent shifts the point of the labels by so many places.
        {0, 60, 1, 1, 0, 6, 2},
        {0, 60, 1, 2, -1, 6, 3},
        {0, 60, 1, -1, 2, 6, 2},
        {0, 0.05, 2, -3, 0, 50, 4},
        // Without digits there is nothing to tell apart.
        {0, 60, 0, 0, 2, 0, 1},
    };
    for (const auto &row : rows) {
        TEdcTickNumbers numbers = EdcTickNumbers(row.min, row.max, row.digits, row.exponent);
        std::string which = std::to_string(row.min) + " to " + std::to_string(row.max) + ", digits " +
                            std::to_string(row.digits) + ", exponent " + std::to_string(row.exponent);
        EXPECT_EQ(numbers.exponent, row.shown) << which;
        EXPECT_EQ(numbers.places, row.places) << which;
        EXPECT_EQ(numbers.digits, row.longest) << which;
        EXPECT_EQ(numbers.span, std::max(-row.min, row.max));
    }
}

TEST(EdcTickNumbers, GiveNoPlacesToASpanThatHasNoPowerOfTen)
{
    double infinite = std::numeric_limits<double>::infinity();
    double none = std::numeric_limits<double>::quiet_NaN();
    for (double span : {0.0, 5e-324, 1e-308, 1e308, 1.7e308, infinite, none}) {
        EXPECT_EQ(EdcTickNumbers(0, span, 8, 0).places, 0) << span;
        EXPECT_EQ(EdcTickNumbers(-span, 0, 1, 0).exponent, 0) << span;
    }
    for (int exponent : {INT_MIN, INT_MAX}) {
        EXPECT_EQ(EdcTickNumbers(0, 60, 1, exponent).places, 6);
        EXPECT_LE(std::abs(EdcTickNumbers(0, 60, 1, exponent).exponent), 300);
    }
}

TEST(EdcTickStep, IsTheFinestRoundStepThatLeavesNoMoreTicksThanFit)
{
    struct {
        double span;
        int count;
        double step;
    } rows[] = {
        {10, 4, 5}, // 2.5 would do with 2, but that makes 5 ticks
        {10, 1, 10},  {10, 2, 5},    {10, 3, 5},     {10, 5, 2},    {10, 9, 2},       {10, 10, 1},
        {10, 19, 1},  {10, 20, 0.5}, {60, 6, 10},    {60, 7, 10},   {60, 11, 10},     {60, 12, 5},
        {60, 1, 50},  {24, 2, 10},   {24, 3, 10},    {24, 4, 5},    {24, 12, 2},      {1, 1, 1},
        {1, 2, 0.5},  {2, 1, 2},     {5, 1, 5},      {0.3, 3, 0.1}, {1e-9, 4, 5e-10}, {1e12, 4, 5e11},
        {400, 8, 50}, {9.99, 9, 1},  {99.99, 99, 1}, {10, 0, 0},    {10, -3, 0},
    };
    for (const auto &row : rows)
        EXPECT_DOUBLE_EQ(EdcTickStep(row.span, row.count), row.step) << row.span << " with " << row.count;
}

TEST(EdcTickStep, KeepsItsLawsForAnySpanAndRoom)
{
    std::mt19937 random(11);
    std::uniform_real_distribution<double> exponent(-9, 12);
    for (int run = 0; run < 20000; ++run) {
        double span =
            run % 3 == 0 ? std::pow(10.0, std::round(exponent(random))) : std::pow(10.0, exponent(random));
        int count = 1 + static_cast<int>(random() % (run % 2 == 0 ? 12 : 1000));
        double step = EdcTickStep(span, count);
        ASSERT_TRUE(IsRound(step)) << span << " " << count << " " << step;
        ASSERT_LT(span / step, (count + 1) * (1 - 1e-9)) << span << " " << count << " " << step;
        ASSERT_GE(span / Finer(step), (count + 1) * (1 - 2e-5)) << span << " " << count << " " << step;
    }
}

TEST(EdcTickStep, RefusesASpanWithoutAMantissa)
{
    double infinite = std::numeric_limits<double>::infinity();
    EXPECT_TRUE(AbortsOnAssertion("m < 1", "usr/edcitem_axes.cpp", [&] { EdcTickStep(infinite, 4); }));
}

TEST(EdcMakeTicks, LabelsEveryMultipleTheLastOneAtTheHead)
{
    EXPECT_EQ(Texts(0, 60, 10, 1), "6 5 4 3 2 1 0");
    EXPECT_EQ(Texts(0, 60, 20, 0), "60 40 20 0");
    EXPECT_EQ(Texts(0, 24, 5, 0), "20 15 10 5 0");
    EXPECT_EQ(Texts(-3, 5, 2, 0), "4 2 0 -2");
    EXPECT_EQ(Texts(-24, 0, 10, 1), "0 -1 -2");
    EXPECT_EQ(Texts(0, 0.004, 0.0005, -3), "4 3.5 3 2.5 2 1.5 1 0.5 0");
    EXPECT_EQ(Texts(0, 60, 25, -1), "500 250 0");
    EXPECT_EQ(Texts(0, 0.00006, 0.00003, 0), "6e-05 3e-05 0");
    EXPECT_EQ(Texts(0, 12345678, 12345678, 0), "12345678 0");
}

TEST(EdcMakeTicks, ShowsNoNoiseAndNoNegativeNought)
{
    EXPECT_EQ(Texts(-0.3, 0.3, 0.1, 0), "0.3 0.2 0.1 0 -0.1 -0.2 -0.3");
    EXPECT_EQ(Texts(-0.7, 0.1, 0.1, -1), "1 0 -1 -2 -3 -4 -5 -6 -7");
    EXPECT_EQ(Texts(-0.4, 6, 5, 0), "5 0");
}

TEST(EdcMakeTicks, KeepsTheLastLabelThatRoundingPutBeyondTheEnd)
{
    EXPECT_EQ(Texts(0, 60 - 0.9e-4, 10, 1), "6 5 4 3 2 1 0");
    EXPECT_EQ(Texts(0, 60 - 1.1e-4, 10, 1), "5 4 3 2 1 0");
    EXPECT_EQ(Texts(0, 0.3, 0.1, 0), "0.3 0.2 0.1 0") << "3 * 0.1 is above 0.3";
}

TEST(EdcMakeTicks, KeepsItsLawsForAnyRange)
{
    std::mt19937 random(13);
    std::uniform_real_distribution<double> exponent(-9, 12);
    std::uniform_real_distribution<double> share(-1, 1);
    for (int run = 0; run < 4000; ++run) {
        double size = std::pow(10.0, exponent(random));
        double min = run % 3 == 0 ? 0 : -size * std::fabs(share(random));
        double max = run % 3 == 1 ? 0 : size * std::fabs(share(random));
        int digits = 1 + static_cast<int>(random() % 8);
        int count = 1 + static_cast<int>(random() % 20);
        TEdcTickNumbers numbers = EdcTickNumbers(min, max, digits, static_cast<int>(random() % 7) - 3);
        count = std::min(count, numbers.places);
        if (count == 0)
            continue;
        double step = EdcTickStep(numbers.span, count);
        std::vector<Tick> ticks = Ticks(min, max, step, numbers.exponent);
        double expected = std::floor(max / step + 1e-5) - std::ceil(min / step - 1e-5) + 1;
        ASSERT_EQ(static_cast<double>(ticks.size()), expected) << min << " to " << max << " by " << step;
        ASSERT_LE(ticks.size(), 2u * static_cast<unsigned>(count) + 1);
        double unit = std::pow(10.0, numbers.exponent);
        for (size_t i = 0; i < ticks.size(); ++i) {
            double shown = ticks[i].value / unit;
            ASSERT_NEAR(strtod(ticks[i].text.c_str(), NULL), shown, 6e-8 * std::fabs(shown));
            ASSERT_NEAR(ticks[i].value / step, std::round(ticks[i].value / step), 1e-6);
            ASSERT_LE(ticks[i].text.size(), 31u);
            ASSERT_TRUE(i == 0 || ticks[i].value < ticks[i - 1].value);
        }
    }
}

TEST(EdcMakeTicks, TellsNeighboursApartByTheDigitsAlone)
{
    for (int digits = 1; digits <= 4; ++digits) {
        for (double max : {3.0, 9.9, 24.0, 60.0, 0.07, 123456.0}) {
            TEdcTickNumbers numbers = EdcTickNumbers(0, max, digits, 0);
            double step = EdcTickStep(numbers.span, std::min(numbers.places, 500));
            for (const Tick &tick : Ticks(0, max, step, numbers.exponent)) {
                int significant = static_cast<int>(std::count_if(tick.text.begin(), tick.text.end(),
                                                                 [](char c) { return c >= '0' && c <= '9'; }));
                EXPECT_LE(significant, digits) << tick.text << " of " << max;
            }
        }
    }
}

TEST(EdcComposeTitle, AppendsTheExponentThatTheLabelsAreShiftedBy)
{
    EXPECT_EQ(Composed("X [m]", 0), "X [m]");
    EXPECT_EQ(Composed("X [m]", 1), "X [m]\n(x10^1^)");
    EXPECT_EQ(Composed("X [m]", -12), "X [m]\n(x10^-12^)");
    EXPECT_EQ(Composed(NULL, 0), "");
    EXPECT_EQ(Composed("", 0), "");
    EXPECT_EQ(Composed(NULL, 3), "(x10^3^)");
    EXPECT_EQ(Composed("", -3), "(x10^-3^)");
}

TEST(EdcComposeTitle, TakesUpTo255CharactersAndKeepsTheNoteWhole)
{
    std::string title(300, 'X');
    EXPECT_EQ(Composed(title.c_str(), 0), std::string(255, 'X'));
    EXPECT_EQ(Composed(title.c_str(), 2), std::string(246, 'X') + "\n(x10^2^)");
    EXPECT_EQ(Composed(std::string(246, 'X').c_str(), 2), std::string(246, 'X') + "\n(x10^2^)");
}
