#include "support/child.h"
#include "support/testapp.h"
#include "usr/edcdlg.h"
#include "win/boxes.h"
#include "win/testdoor.h"
#include "win/utf8.h"
#include "win/window.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>
#include <string>

namespace
{
const char source[] = "usr/edcdlg_validators.cpp";
const std::string digits40(40, '1'), letters300(300, 'x');

struct CHECK {
    const char *text;
    bool valid;
};

template <size_t N>
void CheckAll(TEdcValueValidator &validator, const CHECK (&rows)[N])
{
    for (const CHECK &row : rows)
        EXPECT_EQ(validator.IsValid(row.text), row.valid) << row.text;
}

const char *const blanks[] = {"", " ", "\t\r\n"};
} // namespace

TEST(TEdcFloatValidator, TakesNumbersOfItsRange)
{
    TEdcFloatValidator validator(0.5, 1500, false, "W");
    const CHECK rows[] = {
        {"500 mW", true}, {"499 mW", false}, {"1.5 kW", true},  {"1.501 kW", false},
        {"1500", true},   {"1500 w", false}, {"1,5", false},    {"-1", false},
        {"-0", false},    {"nan", false},    {"inf", false},    {"1e400", false},
        {"abc", false},   {"12\n", true},    {"5 \xE4", false}, {digits40.c_str(), false},
        {"1 m.", false},  {"1\n2", false},   {"1 k.", true},    {letters300.c_str(), false},
    };
    CheckAll(validator, rows);
}

TEST(TEdcFloatValidator, TakesPlainNumbersWithoutAUnit)
{
    TEdcFloatValidator validator(-10, 10, false, NULL);
    const CHECK rows[] = {
        {"10", true},
        {"10.0001", false},
        {"1e1", true},
        {"1e400", false},
        {"-1e400", false},
        {"nan", false},
        {"-nan", false},
        {"inf", false},
        {digits40.c_str(), false},
        {"5 W", false},
        {"-0", true},
        {"5\n", true},
        {"5\n5", false},
        {letters300.c_str(), false},
        {"\xBD", false},
    };
    CheckAll(validator, rows);
}

TEST(TEdcFloatValidator, NeverTakesWhatIsNotFinite)
{
    const double infinite = std::numeric_limits<double>::infinity();
    TEdcFloatValidator validator(-infinite, infinite, false, NULL);
    const CHECK rows[] = {{"inf", false}, {"-inf", false}, {"nan", false}, {"1e400", false}, {"1e308", true}};
    CheckAll(validator, rows);
}

TEST(TEdcIntValidator, TakesNumbersOfItsRange)
{
    TEdcIntValidator validator(-5, 2147483647, false);
    const CHECK rows[] = {
        {"-5", true},    {"-6", false},   {"2147483647", true},   {"2147483648", false},
        {"0", true},     {"-0", true},    {"99999999999", false}, {digits40.c_str(), false},
        {"1.0", false},  {"nan", false},  {"1e400", false},       {letters300.c_str(), false},
        {"1\n2", false}, {" 7 \n", true}, {"\xB2", false},        {"abc", false},
    };
    CheckAll(validator, rows);
}

TEST(TEdcTimeValidator, TakesTimesOfItsYears)
{
    TEdcTimeValidator validator("d.M.r", false, 1990, 2010);
    const CHECK rows[] = {
        {"1.1.1990", true}, {"31.12.1989", false}, {"31.12.2010", true}, {"1.1.2011", false},
        {"1.1", false},     {"31.4.2000", false},  {"1.1.99", false},    {"abc", false},
        {"inf", false},     {"1.1.\xB2", false},   {"1e400", false},     {digits40.c_str(), false},
        {"-0", false},      {"1.1.\n2000", true},  {"nan", false},       {letters300.c_str(), false},
    };
    CheckAll(validator, rows);
}

TEST(TEdcTimeValidator, AsksForNoYearWhereTheFormatHasNone)
{
    TEdcTimeValidator validator("h:m", false, 1990, 2010);
    const CHECK rows[] = {{"7:30", true}, {"24:00", false}, {"7", false}};
    CheckAll(validator, rows);
}

TEST(Validators, TakeABlankTextWhereNothingIsAllowed)
{
    for (bool nullOK : {false, true}) {
        TEdcValueValidator plain(nullOK);
        TEdcFloatValidator real(1, 2, nullOK, "W");
        TEdcIntValidator number(1, 2, nullOK);
        TEdcTimeValidator time("d.M.r", nullOK, 1990, 2010);
        for (TEdcValueValidator *validator :
             std::initializer_list<TEdcValueValidator *>{&plain, &real, &number, &time})
            for (const char *blank : blanks)
                EXPECT_EQ(validator->IsValid(blank), nullOK);
        EXPECT_TRUE(plain.IsValid("x"));
        EXPECT_FALSE(real.IsValid("3"));
        EXPECT_FALSE(number.IsValid("3"));
        EXPECT_FALSE(time.IsValid("1.1.2011"));
    }
}

TEST(Validators, FollowTheirSetters)
{
    TEdcFloatValidator real(0, 1, false, "W");
    real.SetRange(10, 20);
    EXPECT_FALSE(real.IsValid("1"));
    EXPECT_TRUE(real.IsValid("15 W"));
    real.SetUnit("m");
    EXPECT_FALSE(real.IsValid("15 W"));
    EXPECT_TRUE(real.IsValid("15 m"));
    TEdcIntValidator number(0, 1, false);
    number.SetRange(10, 20);
    EXPECT_TRUE(number.IsValid("10"));
    EXPECT_FALSE(number.IsValid("1"));
    TEdcTimeValidator time("d.M.r", false, 1990, 2010);
    time.SetFormat("r");
    EXPECT_TRUE(time.IsValid("2000"));
    time.SetRange(2001, 2001);
    EXPECT_FALSE(time.IsValid("2000"));
}

TEST(Validators, TellWhetherTheyConvert)
{
    EXPECT_FALSE(TEdcValueValidator(true).HasOption(WIN_VALIDATOR_TRANSFER));
    EXPECT_TRUE(TEdcFloatValidator(0, 1, true, NULL).HasOption(WIN_VALIDATOR_TRANSFER));
    EXPECT_TRUE(TEdcIntValidator(0, 1, true).HasOption(WIN_VALIDATOR_TRANSFER));
    EXPECT_TRUE(TEdcTimeValidator("r", true, 0, 1).HasOption(WIN_VALIDATOR_TRANSFER));
    EXPECT_EQ(WIN_VALIDATOR_TRANSFER, 2);
}

TEST(Validators, ReadAValueFromTheText)
{
    char watts[SHORTSTRMAX] = "1.5 kW", count[SHORTSTRMAX] = "7", date[SHORTSTRMAX] = "1.2.2003";
    TEdcFloat real;
    TEdcInt number;
    TEdcTime time;
    EXPECT_EQ(TEdcFloatValidator(0, 1, true, "W").Transfer(watts, &real, WIN_TRANSFER_GETDATA), real.Size());
    EXPECT_EQ(TEdcIntValidator(0, 1, true).Transfer(count, &number, WIN_TRANSFER_GETDATA), number.Size());
    EXPECT_EQ(TEdcTimeValidator("d.M.r", true, 0, 1).Transfer(date, &time, WIN_TRANSFER_GETDATA), time.Size());
    EXPECT_EQ(real.id, EDC_VVAL);
    EXPECT_EQ(real.value, 1500);
    EXPECT_EQ(number.id, EDC_VVAL);
    EXPECT_EQ(number.value, 7);
    EXPECT_EQ(time.id, EDC_VVAL);
    EXPECT_EQ(time.year * 10000 + time.month * 100 + time.day, 20030201);
}

TEST(Validators, ReadNothingFromABadText)
{
    char text[SHORTSTRMAX] = "?";
    TEdcFloat real(5);
    TEdcInt number(5);
    TEdcTime time(2000, 1, 2, 3, 4, 5);
    TEdcFloatValidator(0, 1, true, "W").Transfer(text, &real, WIN_TRANSFER_GETDATA);
    TEdcIntValidator(0, 1, true).Transfer(text, &number, WIN_TRANSFER_GETDATA);
    TEdcTimeValidator("d.M.r", true, 0, 1).Transfer(text, &time, WIN_TRANSFER_GETDATA);
    EXPECT_EQ(real.id, EDC_VUDF);
    EXPECT_EQ(number.id, EDC_VUDF);
    EXPECT_EQ(time.id, EDC_VUDF);
}

TEST(Validators, WriteAValueWhateverItsState)
{
    for (int state : {EDC_VVAL, EDC_VUDF}) {
        char text[SHORTSTRMAX] = "alt";
        TEdcFloat real(1500);
        TEdcInt number(-7);
        TEdcTime time(2003, 2, 1, 4, 5, 6);
        real.id = number.id = time.id = state;
        TEdcFloatValidator floats(0, 1, true, "W");
        EXPECT_EQ(floats.Transfer(text, &real, WIN_TRANSFER_SETDATA), real.Size());
        EXPECT_STREQ(text, "1.5 kW");
        EXPECT_EQ(TEdcIntValidator(0, 1, true).Transfer(text, &number, WIN_TRANSFER_SETDATA), number.Size());
        EXPECT_STREQ(text, "-7");
        TEdcTimeValidator times("d.M.r, h:m:s", true, 0, 1);
        EXPECT_EQ(times.Transfer(text, &time, WIN_TRANSFER_SETDATA), time.Size());
        EXPECT_STREQ(text, "1.2.2003, 4:05:06");
        EXPECT_EQ(real.id, state) << "only a copy is taken as known";
    }
}

TEST(Validators, TheBaseConvertsNothing)
{
    char text[SHORTSTRMAX] = "7";
    TEdcInt number(3);
    TEdcValueValidator validator(true);
    for (int direction : {WIN_TRANSFER_GETDATA, WIN_TRANSFER_SETDATA}) {
        EXPECT_EQ(validator.Transfer(text, &number, direction), number.Size());
        EXPECT_EQ(number.value, 3);
        EXPECT_STREQ(text, "7");
    }
}

TEST(TValidator, TakesEverythingAndConvertsNothing)
{
    char text[] = "x";
    int value = 3;
    TValidator validator;
    EXPECT_TRUE(validator.IsValid(text));
    EXPECT_TRUE(validator.IsValidInput(text, false));
    EXPECT_EQ(validator.Transfer(text, &value, WIN_TRANSFER_GETDATA), 0);
    EXPECT_EQ(validator.Adjust(text, 1), 0);
    EXPECT_FALSE(validator.HasOption(WIN_VALIDATOR_TRANSFER));
    validator.Error(NULL);
    EXPECT_EQ(std::string(text) + std::to_string(value), "x3");
}

namespace
{
class Refusals : public testing::Test
{
protected:
    void SetUp() override
    {
        TestApplication();
        testdoor::PendingScripts();
        testdoor::UnexpectedBoxes();
        owner = std::make_unique<TWindow>();
        owner->Create();
    }
    void TearDown() override
    {
        EXPECT_EQ(testdoor::PendingScripts(), 0);
        EXPECT_EQ(testdoor::UnexpectedBoxes(), 0);
    }

    /// What the box of the validator says, UTF-8, with its buttons behind it.
    std::string Shown(TValidator &&validator) { return Shown(validator); }
    std::string Shown(TValidator &validator)
    {
        std::string seen;
        testdoor::Script([&seen](testdoor::ModalBox &box) {
            seen = box.Kind() + "|" + ToUtf8(box.Text().c_str()) + "|" + box.Buttons();
            box.Answer(WIN_ID_OK);
        });
        validator.Error(owner.get());
        return seen;
    }

    std::unique_ptr<TWindow> owner;
};
} // namespace

TEST_F(Refusals, AskForAValue)
{
    EXPECT_EQ(Shown(TEdcValueValidator(false)), "message|Wert muss eingegeben, bzw. gewählt werden.|OK");
}

TEST_F(Refusals, AskForAValueWhereABlankTextWasRefused)
{
    TEdcFloatValidator power(0.5, 1500, false, "W");
    TEdcIntValidator days(0, 365, false);
    TEdcTimeValidator date("d.M.r", false, 1990, 2010);
    for (TValidator *validator : std::initializer_list<TValidator *>{&power, &days, &date}) {
        EXPECT_FALSE(validator->IsValid("  "));
        EXPECT_EQ(Shown(*validator), "message|Wert muss eingegeben, bzw. gewählt werden.|OK");
        EXPECT_FALSE(validator->IsValid("x"));
        EXPECT_NE(Shown(*validator), "message|Wert muss eingegeben, bzw. gewählt werden.|OK");
    }
}

TEST_F(Refusals, NameTheRangeWithItsUnit)
{
    EXPECT_EQ(Shown(TEdcFloatValidator(0.5, 1500, false, "W")),
              "message|Man erwartet eine Dezimalzahl von 500 mW bis 1.5 kW.|OK");
    EXPECT_EQ(Shown(TEdcFloatValidator(-2.5, 1500, false, NULL)),
              "message|Man erwartet eine Dezimalzahl von -2.5 bis 1500.|OK");
    EXPECT_EQ(Shown(TEdcIntValidator(-5, 2147483647, false)),
              "message|Ganze Zahl von -5 bis 2147483647 erwartet.|OK");
}

TEST_F(Refusals, ExplainTheFormOfATime)
{
    EXPECT_EQ(Shown(TEdcTimeValidator("d.M.r, h:m", false, 1990, 2010)),
              "message|Zeitangabe in Form \"d.M.r, h:m\" erwartet.\n\n"
              "Legende: r - Jahr (von 1990 bis 2010), M - Monat,\nd - Tag, h - Stunde, m - Minute, s - "
              "Sekunde|OK");
}

TEST_F(Refusals, NeedAnOwner)
{
    TEdcValueValidator plain(false);
    TEdcFloatValidator real(0, 1, false, NULL);
    TEdcIntValidator number(0, 1, false);
    TEdcTimeValidator time("r", false, 0, 1);
    for (TValidator *validator : std::initializer_list<TValidator *>{&plain, &real, &number, &time})
        EXPECT_TRUE(AbortsOnAssertion("owner != NULL", source, [&] { validator->Error(NULL); }));
}

TEST(Validators, RefuseARangeThatIsNone)
{
    TEdcFloatValidator real(0, 1, false, NULL);
    TEdcIntValidator number(0, 1, false);
    TEdcTimeValidator time("r", false, 0, 1);
    const char order[] = "aMin <= aMax", years[] = "aMinYear >= 0 && aMinYear <= aMaxYear";
    EXPECT_TRUE(AbortsOnAssertion(order, source, [] { TEdcFloatValidator(1, 0.5, false, NULL); }));
    EXPECT_TRUE(AbortsOnAssertion(order, source, [] { TEdcFloatValidator(std::nan(""), 1, false, NULL); }));
    EXPECT_TRUE(AbortsOnAssertion(order, source, [&] { real.SetRange(1, 0.5); }));
    EXPECT_TRUE(AbortsOnAssertion(order, source, [] { TEdcIntValidator(1, 0, false); }));
    EXPECT_TRUE(AbortsOnAssertion(order, source, [&] { number.SetRange(1, 0); }));
    EXPECT_TRUE(AbortsOnAssertion(years, source, [] { TEdcTimeValidator("r", false, -1, 5); }));
    EXPECT_TRUE(AbortsOnAssertion(years, source, [] { TEdcTimeValidator("r", false, 6, 5); }));
    EXPECT_TRUE(AbortsOnAssertion(years, source, [&] { time.SetRange(6, 5); }));
    EXPECT_TRUE(AbortsOnAssertion("aFormat != NULL", source, [] { TEdcTimeValidator(NULL, false, 0, 5); }));
    EXPECT_TRUE(AbortsOnAssertion("aFormat != NULL", source, [&] { time.SetFormat(NULL); }));
}

TEST(Validators, TakeTheLimitsThemselves)
{
    EXPECT_TRUE(TEdcFloatValidator(2, 2, false, NULL).IsValid("2"));
    EXPECT_TRUE(TEdcIntValidator(2, 2, false).IsValid("2"));
    EXPECT_TRUE(TEdcTimeValidator("r", false, 0, 0).IsValid("0"));
}

TEST(Hints, NameTheRangeWithItsUnit)
{
    const double infinite = std::numeric_limits<double>::infinity();
    struct {
        double min, max;
        const char *unit;
        const char *hint;
    } rows[] = {
        {0.5, 1500, "W", "Dezimalzahl: 500 mW bis 1.5 kW"},
        {0, 1.1, NULL, "Dezimalzahl: 0 bis 1.1"},
        {0, 1e300, NULL, "Dezimalzahl: ab 0"},
        {0, infinite, "kW", "Dezimalzahl: ab 0 kW"},
        {-1e300, 24, NULL, "Dezimalzahl: bis 24"},
        {-infinite, -2.5, "m", "Dezimalzahl: bis -2.5 m"},
        {-1e300, 1e300, NULL, "Dezimalzahl"},
        {-1e301, 1e301, NULL, "Dezimalzahl"},
        {-infinite, infinite, "m", "Dezimalzahl: m"},
        {-infinite, infinite, "", "Dezimalzahl"},
        {-9e299, 9e299, NULL, "Dezimalzahl: -9e+299 bis 9e+299"},
        {2, 2, "", "Dezimalzahl: 2 bis 2"},
    };
    for (const auto &row : rows)
        EXPECT_EQ(TEdcFloatValidator(row.min, row.max, true, row.unit).Hint(), row.hint);
}

TEST(Hints, NameTheRangeOfAWholeNumber)
{
    const int least = std::numeric_limits<int>::min(), most = std::numeric_limits<int>::max();
    struct {
        int min, max;
        const char *hint;
    } rows[] = {
        {0, 365, "Ganze Zahl: 0 bis 365"},
        {1, most, "Ganze Zahl: ab 1"},
        {least, -1, "Ganze Zahl: bis -1"},
        {least, most, "Ganze Zahl"},
        {least + 1, most - 1, "Ganze Zahl: -2147483647 bis 2147483646"},
    };
    for (const auto &row : rows)
        EXPECT_EQ(TEdcIntValidator(row.min, row.max, true).Hint(), row.hint);
}

TEST(Hints, NameTheFormOfATime)
{
    EXPECT_EQ(TEdcTimeValidator("d.M.r, h:m", true, 1990, 2010).Hint(), "Form \"d.M.r, h:m\"");
}

TEST(Hints, FollowTheSetters)
{
    TEdcFloatValidator real(0, 1, true, NULL);
    real.SetRange(2, 3);
    real.SetUnit("m");
    EXPECT_EQ(real.Hint(), "Dezimalzahl: 2 m bis 3 m");
    TEdcIntValidator number(0, 1, true);
    number.SetRange(2, 3);
    EXPECT_EQ(number.Hint(), "Ganze Zahl: 2 bis 3");
    TEdcTimeValidator time("r", true, 0, 1);
    time.SetFormat("d.M.r");
    EXPECT_EQ(time.Hint(), "Form \"d.M.r\"");
}

TEST(Hints, SayNothingOfWhatTakesAnyText)
{
    EXPECT_EQ(TEdcValueValidator(false).Hint(), "");
    EXPECT_EQ(TValidator().Hint(), "");
}

TEST(Validators, OfDecimalNumbersTakeTheCommaKeyAsAPoint)
{
    EXPECT_TRUE(TEdcFloatValidator(0, 1, true, NULL).HasOption(WIN_VALIDATOR_POINT));
    EXPECT_FALSE(TEdcIntValidator(0, 1, true).HasOption(WIN_VALIDATOR_POINT));
    EXPECT_FALSE(TEdcTimeValidator("r", true, 0, 1).HasOption(WIN_VALIDATOR_POINT));
    EXPECT_FALSE(TEdcValueValidator(true).HasOption(WIN_VALIDATOR_POINT));
}
