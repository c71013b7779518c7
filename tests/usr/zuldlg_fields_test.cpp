// Every field of the six design dialogs, filled in by a person who makes every mistake: what is refused says
// why, keeps the focus and leaves the hall as it was; what is taken arrives there, and nowhere else.
#include "zuldlgcase.h"

namespace
{
const std::string digits40(40, '1'); // a field holds 31 of them
const char missing[] = "Wert muss eingegeben, bzw. gewählt werden.";

struct TAKEN {
    std::string input;
    const char *value; // in the record
};

/// What a field may hold.
struct RANGE {
    const char *message;
    std::vector<TAKEN> taken;
    std::vector<std::string> refused; // besides what no such field takes
};

const RANGE side = {"Man erwartet eine Dezimalzahl von 1 bis 1.79769e+308.",
                    {{"1", "1"}, {"1.0001", "1.0001"}, {"1e308", "1e+308"}, {digits40, "1.11111111111111e+30"}},
                    {"0.9999", "0", "-0", "-1", "-1e400"}};
const RANGE upwards = {"Man erwartet eine Dezimalzahl von 0 bis 1.79769e+308.",
                       {{"0", "0"},
                        {"0.001", "0.001"},
                        {" 12.5 ", "12.5"},
                        {"1e308", "1e+308"},
                        {digits40, "1.11111111111111e+30"}},
                       {"-0.0001", "-1", "-1e400"}};
const RANGE any = {"Man erwartet eine Dezimalzahl von -1.79769e+308 bis 1.79769e+308.",
                   {{"0", "0"},
                    {"-273.15", "-273.15"},
                    {"-1e308", "-1e+308"},
                    {"1e308", "1e+308"},
                    {"+20", "20"},
                    {digits40, "1.11111111111111e+30"}},
                   {"-1e400"}};
const RANGE hours = {"Man erwartet eine Dezimalzahl von 0 bis 24.",
                     {{"0", "0"}, {"7.75", "7.75"}, {"24", "24"}},
                     {"-0.0001", "24.0001", "-1", digits40, "-1e400"}};
const RANGE effect = {"Man erwartet eine Dezimalzahl von 0 bis 1.1.",
                      {{"0", "0"}, {"1", "1"}, {"1.1", "1.1"}},
                      {"-0.0001", "1.1001", "2", digits40, "-1e400"}};
// Watts are to stay finite.
const RANGE gain = {"Man erwartet eine Dezimalzahl von 0 bis 1.79769e+305.",
                    {{"0", "0"}, {"1.5", "1500"}, {"0.001", "1"}, {"1e305", "1e+308"}},
                    {"-0.0001", "-1", "1e306", "1e308", "-1e400"}};
const RANGE days = {"Ganze Zahl von 0 bis 365 erwartet.",
                    {{"0", "0"}, {"1", "1"}, {"365", "365"}, {" 7 ", "7"}},
                    {"-1", "366", "2147483648", "-2147483649", digits40, "1.5", "1e2", "0x10"}};
const RANGE weekDays = {"Ganze Zahl von 0 bis 7 erwartet.",
                        {{"0", "0"}, {"7", "7"}},
                        {"-1", "8", "2147483648", "-2147483649", digits40, "1.5", "1e0", "0x1"}};

const char *const noNumbers[] = {"viel", "1e400", "nan", "inf", "-inf", "1..2", "--1", "1 2", "5 m", "äöü"};

enum NEED { REQUIRED, OPTIONAL };
struct FIELD {
    int key;
    const RANGE &range;
    NEED need;
};
const FIELD fields[] = {
    {NEW_LENGTH, side, REQUIRED},    {NEW_WIDTH, side, REQUIRED},     {NEW_HEIGHT, side, REQUIRED},
    {MAP_HEIGHT, upwards, REQUIRED}, {MAP_MIN, any, OPTIONAL},        {MAP_MAX, any, OPTIONAL},
    {MAP_AIR, any, OPTIONAL},        {PERIOD_DAYS, days, REQUIRED},   {MEAN_OUT, any, REQUIRED},
    {DESIGN_OUT, any, REQUIRED},     {WEEK_DAYS, weekDays, REQUIRED}, {DAY_HOURS, hours, REQUIRED},
    {RUN_AIR, any, REQUIRED},        {RESULT, any, REQUIRED},         {REDUCED_AIR, any, REQUIRED},
    {FLOOR_K, upwards, REQUIRED},    {FLOOR_TEMP, any, REQUIRED},     {WALL_K, upwards, REQUIRED},
    {WALL_TEMP, any, REQUIRED},      {CEILING_K, upwards, REQUIRED},  {CEILING_TEMP, any, REQUIRED},
    {AIR_CHANGE, upwards, REQUIRED}, {AIR_TEMP, any, REQUIRED},       {REGULATION, effect, REQUIRED},
    {PRICE, upwards, REQUIRED},      {TECH_GAIN, gain, REQUIRED},
};

/// Those that are chosen, with how many entries there are.
const struct CHOICE {
    int key;
    std::vector<std::string> entries;
    int first; // number of the first entry
} choices[] = {
    {FUEL, {"Erdgas", "Propan"}, EM_NATURAL_GAS},
    {WORK_CLASS, {"(nichts)", "I", "IIa", "IIb", "IIIa", "IIIb"}, 0},
    {POSITION, {"stehend", "sitzend"}, EM_STANDING},
};

bool IsWhole(const FIELD &field)
{
    return &field.range == &days || &field.range == &weekDays;
}
} // namespace

TEST_F(DesignDialogs, RefuseWhatAFieldCannotHoldAndKeepTheDesign)
{
    const std::map<int, std::string> before = Values(design);
    int count = 0;
    for (const FIELD &field : fields) {
        int id = IdOf(field.key);
        std::vector<std::pair<std::string, const char *>> rows;
        for (const char *input : noNumbers)
            rows.emplace_back(input, field.range.message);
        for (const std::string &input : field.range.refused)
            rows.emplace_back(input, field.range.message);
        if (field.need == REQUIRED) {
            rows.emplace_back("", missing);
            rows.emplace_back("   ", missing);
        }
        bool confirmed = Run(DialogOf(field.key), [&](testdoor::DialogBox &box) {
            for (const auto &[input, message] : rows) {
                box.Type(id, input);
                EXPECT_EQ(PressOk(box), message) << field.key << " '" << input << "'";
                EXPECT_EQ(box.Focus(), id) << field.key << " '" << input << "'";
                EXPECT_EQ(box.SelectedText(id), box.Text(id)) << field.key << " '" << input << "'";
                ++count;
            }
            box.Paste(id, "1,5");
            EXPECT_EQ(PressOk(box), field.range.message) << field.key;
            box.Press("Esc");
        });
        EXPECT_FALSE(confirmed) << field.key;
        EXPECT_EQ(Values(design), before) << field.key;
    }
    EXPECT_GT(count, 300);
}

TEST_F(DesignDialogs, TakeWhatAFieldCanHoldIntoThatFieldAlone)
{
    const std::map<int, std::string> before = Values(design);
    for (const FIELD &field : fields)
        for (const TAKEN &row : field.range.taken) {
            design = DESIGN();
            std::map<int, std::string> expected = before;
            expected[field.key] = row.value;
            std::string said;
            bool confirmed = Run(DialogOf(field.key), [&](testdoor::DialogBox &box) {
                box.Type(IdOf(field.key), row.input);
                said = PressOk(box);
                if (!said.empty())
                    box.Press("Esc");
            });
            EXPECT_TRUE(confirmed) << field.key << " '" << row.input << "': " << said;
            EXPECT_EQ(Values(design), expected) << field.key << " '" << row.input << "'";
        }
}

TEST_F(DesignDialogs, MayLeaveAnOptionalFieldEmpty)
{
    for (const FIELD &field : fields) {
        if (field.need == REQUIRED)
            continue;
        for (const char *input : {"", "   "}) {
            design = DESIGN();
            std::map<int, std::string> expected = Values(design);
            expected[field.key] = "?";
            EXPECT_TRUE(Run(DialogOf(field.key), [&](testdoor::DialogBox &box) {
                box.Type(IdOf(field.key), input);
                EXPECT_EQ(PressOk(box), "");
            }));
            EXPECT_EQ(Values(design), expected) << field.key;
        }
    }
}

TEST_F(DesignDialogs, TypeAPointWithTheCommaKeyWhereANumberHasOne)
{
    for (const FIELD &field : fields)
        Run(DialogOf(field.key), [&](testdoor::DialogBox &box) {
            box.Type(IdOf(field.key), "1,5");
            EXPECT_EQ(box.Text(IdOf(field.key)), IsWhole(field) ? "1,5" : "1.5") << field.key;
            box.Press("Esc");
        });
}

TEST_F(DesignDialogs, HoldThirtyOneCharactersInAField)
{
    for (const FIELD &field : fields)
        Run(DialogOf(field.key), [&](testdoor::DialogBox &box) {
            box.Type(IdOf(field.key), digits40);
            EXPECT_EQ(box.Text(IdOf(field.key)).size(), 31u) << field.key;
            box.Paste(IdOf(field.key), digits40 + digits40);
            EXPECT_EQ(box.Text(IdOf(field.key)).size(), 31u) << field.key;
            box.Press("Esc");
        });
}

TEST_F(DesignDialogs, OfferEachChoiceInItsOrderAndTakeIt)
{
    for (const CHOICE &choice : choices)
        for (size_t i = 0; i < choice.entries.size(); ++i) {
            design = DESIGN();
            std::map<int, std::string> expected = Values(design);
            expected[choice.key] = std::to_string(choice.first + static_cast<int>(i));
            EXPECT_TRUE(Run(DialogOf(choice.key), [&](testdoor::DialogBox &box) {
                EXPECT_EQ(box.Entries(IdOf(choice.key)), choice.entries);
                box.Choose(IdOf(choice.key), static_cast<int>(i));
                EXPECT_EQ(box.Text(IdOf(choice.key)), choice.entries[i]);
                EXPECT_EQ(PressOk(box), "");
            }));
            EXPECT_EQ(Values(design), expected) << choice.key << " " << i;
        }
}

TEST_F(DesignDialogs, AskForAChoiceWhereTheHallHasANumberThatIsNone)
{
    const struct {
        int key;
        int32_t EmROOMDATA::*field;
        std::vector<int32_t> numbers;
    } rows[] = {
        {FUEL, &EmROOMDATA::fuelType, {0, 3, -1, EDC_VVAL, EDC_VNUL, 2147483647}},
        {WORK_CLASS, &EmROOMDATA::workClass, {-1, 6, EDC_VVAL, EDC_VNUL, -2147483647}},
        {POSITION, &EmROOMDATA::position, {0, 3, EDC_VVAL, EDC_VNUL}},
    };
    for (const auto &row : rows)
        for (int32_t number : row.numbers) {
            design.data.*row.field = number;
            const std::map<int, std::string> before = Values(design);
            auto refuse = [&](testdoor::DialogBox &box) {
                EXPECT_EQ(box.Text(IdOf(row.key)), "") << number;
                EXPECT_EQ(PressOk(box), missing);
                EXPECT_EQ(box.Focus(), IdOf(row.key));
            };
            EXPECT_FALSE(Run(DialogOf(row.key), [&](testdoor::DialogBox &box) {
                refuse(box);
                box.Press("Esc");
            }));
            EXPECT_EQ(Values(design), before) << row.key << " " << number;
            EXPECT_TRUE(Run(DialogOf(row.key), [&](testdoor::DialogBox &box) {
                refuse(box);
                box.Choose(IdOf(row.key), 1);
                EXPECT_EQ(PressOk(box), "");
            }));
            design = DESIGN();
        }
}

TEST_F(DesignDialogs, AreCorrectedByTypingOverWhatWasRefused)
{
    EXPECT_TRUE(Run(PERIOD, [](testdoor::DialogBox &box) {
        box.Type(IdOf(WEEK_DAYS), "8");
        box.Type(IdOf(RESULT), "warm");
        EXPECT_EQ(PressOk(box), weekDays.message) << "the first wrong one is named";
        box.TypeKeys("6");
        EXPECT_EQ(PressOk(box), any.message);
        box.TypeKeys("19");
        box.Press("Return");
    }));
    EXPECT_EQ(design.data.weekDays, 6);
    EXPECT_EQ(design.data.resultTemp, 19);
}
