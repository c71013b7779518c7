// A dialog with one field of each kind, filled in by a person who makes every mistake: what is refused says
// why, gets the focus with its text selected and leaves the record as it was; what is taken arrives there.
#include "lib/charstr.h"
#include "support/hookdialog.h"
#include "support/testapp.h"
#include "support/testdialog.h"
#include "usr/edcutils.h"
#include "win/boxes.h"
#include "win/testdialog.h"
#include "win/testdoor.h"
#include "win/utf8.h"

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <string>
#include <vector>

namespace
{
enum { DIALOG = 30130 };
enum {
    POWER = 100, // float with a unit, required
    SHARE,       // float without a unit, required
    LENGTH,      // float with a unit, optional, without upper bound
    TEMP,        // float without a unit, optional
    DAYS,        // whole number, required
    COUNT,       // whole number, optional
    DATE,        // date, required
    CLOCK,       // time of day, optional
    NAME,        // text, required
    NOTE,        // text, optional
    PRICE,       // combo box with an edit field for a number, required
    MODEL,       // drop list, required
    FIELD_END
};
const double NO_LIMIT = 1e300;
const std::string digits40(40, '1'), letters300(300, 'x');

struct RECORD {
    TEdcFloat power, share, length, temp;
    TEdcInt days, count;
    TEdcTime date, clock;
    TEdcShortStr name, note;
    TEdcFloat price;
    TEdcShortStr model;
};

std::string Shown(const TEdcValue &value, const std::string &text)
{
    return value.id == EDC_VVAL ? text : value.id == EDC_VUDF ? "?" : std::to_string(value.id);
}
std::string Shown(const TEdcFloat &v)
{
    return Shown(v, EdcFormat("%.15g", v.value));
}
std::string Shown(const TEdcInt &v)
{
    return Shown(v, std::to_string(v.value));
}
std::string Shown(const TEdcAStr &v)
{
    return Shown(v, ToUtf8(v.text));
}
std::string Shown(const TEdcTime &v)
{
    return Shown(v, EdcFormat("%d-%d-%d %d:%d", v.year, v.month, v.day, v.hour, v.minute));
}

/// Each field by its number, so that a test sees which ones have changed.
std::map<int, std::string> Fields(const RECORD &r)
{
    return {{POWER, Shown(r.power)}, {SHARE, Shown(r.share)}, {LENGTH, Shown(r.length)},
            {TEMP, Shown(r.temp)},   {DAYS, Shown(r.days)},   {COUNT, Shown(r.count)},
            {DATE, Shown(r.date)},   {CLOCK, Shown(r.clock)}, {NAME, Shown(r.name)},
            {NOTE, Shown(r.note)},   {PRICE, Shown(r.price)}, {MODEL, Shown(r.model)}};
}

RECORD GoodRecord()
{
    RECORD r;
    r.power.Set(1000);
    r.share.Set(0.5);
    r.length.Set(12);
    r.temp.Set(-5);
    r.days.Set(200);
    r.count.Set(3);
    r.date.SetDate(2001, 2, 28, true);
    r.clock.SetTime(7, 30, -1, true);
    r.name = "Halle";
    r.note = "kalt";
    r.price.Set(10);
    r.model = "A";
    return r;
}

class PriceBox : public TEdcComboBox
{
public:
    explicit PriceBox(TDialog *owner)
        : TEdcComboBox(owner, PRICE, SHORTSTRMAX, new TEdcFloatValidator(0, 100, false, NULL))
    {
    }
    void SetupWindow() override
    {
        TEdcComboBox::SetupWindow();
        for (const char *entry : {"10", "20", "500"}) {
            TEdcShortStr item;
            item = entry;
            Add(item);
        }
    }
};

class ModelBox : public TEdcComboBox
{
public:
    explicit ModelBox(TDialog *owner) : TEdcComboBox(owner, MODEL, SHORTSTRMAX, new TEdcValueValidator(false))
    {
    }
    void SetupWindow() override
    {
        TEdcComboBox::SetupWindow();
        const struct {
            int id;
            const char *text;
        } entries[] = {{EDC_VUDF, "(Auswahl)"}, {EDC_VVAL, "A"}, {EDC_VVAL, "B"}};
        for (const auto &entry : entries)
            SetItemData(AddString(entry.text), entry.id);
    }
};

class FieldsDialog : public HookDialog
{
public:
    explicit FieldsDialog(RECORD *r) : HookDialog(DIALOG, r)
    {
        auto edit = [this](int id, TValidator *validator) { new TEdcEdit(this, id, SHORTSTRMAX, validator); };
        edit(POWER, new TEdcFloatValidator(0.5, 1500, false, "W"));
        edit(SHARE, new TEdcFloatValidator(0, 1.1, false, NULL));
        edit(LENGTH, new TEdcFloatValidator(1, NO_LIMIT, true, "m"));
        edit(TEMP, new TEdcFloatValidator(-273, 1000, true, NULL));
        edit(DAYS, new TEdcIntValidator(0, 365, false));
        edit(COUNT, new TEdcIntValidator(-5, 5, true));
        edit(DATE, new TEdcTimeValidator("d.M.r", false, 1990, 2010));
        edit(CLOCK, new TEdcTimeValidator("h:m", true, 1990, 2010));
        edit(NAME, new TEdcValueValidator(false));
        edit(NOTE, NULL);
        new PriceBox(this);
        new ModelBox(this);
    }
};

class EveryField : public testing::Test
{
protected:
    void SetUp() override
    {
        TestApplication();
        tables = std::make_unique<DialogTables>();
        std::vector<ResCONTROL> lines;
        const char *const labels[] = {"&Leistung", "&Wirkung", "Lä&nge", "&Temperatur", "&Heiztage", "An&zahl",
                                      "&Datum",    "&Uhrzeit", "Na&me",  "&Bemerkung",  "&Preis",    "M&odell"};
        for (int id = POWER; id < FIELD_END; ++id) {
            lines.push_back(Line(RES_LABEL, -1, labels[id - POWER]));
            lines.push_back(Line(id == PRICE ? RES_COMBO : id == MODEL ? RES_CHOICE : RES_EDIT, id));
        }
        lines.push_back(Line(RES_DEFAULT, WIN_ID_OK, "OK"));
        lines.push_back(Line(RES_BUTTON, WIN_ID_CANCEL, "Abbrechen"));
        tables->Add(DIALOG, "Felder", lines);
        record = GoodRecord();
    }
    void TearDown() override
    {
        tables.reset();
        EXPECT_EQ(testdoor::PendingScripts(), 0);
        EXPECT_EQ(testdoor::UnexpectedBoxes(), 0);
    }

    int Run(const std::function<void(testdoor::DialogBox &)> &user)
    {
        FieldsDialog dialog(&record);
        testdoor::Script([&user](testdoor::ModalBox &face) {
            testdoor::DialogBox box(face);
            user(box);
        });
        return dialog.Execute();
    }
    /// Presses OK and reads what the message box says, UTF-8; "" where none came.
    static std::string PressOk(testdoor::DialogBox &box)
    {
        std::string said;
        testdoor::Script([&said](testdoor::ModalBox &face) {
            said = ToUtf8(face.Text().c_str());
            face.Answer(WIN_ID_OK);
        });
        box.Click(WIN_ID_OK);
        if (said.empty()) {
            EXPECT_EQ(testdoor::PendingScripts(), 1);
        }
        return said;
    }

    std::unique_ptr<DialogTables> tables;
    RECORD record;
};

enum WAY { TYPED = 1, PASTED = 2, BOTH = 3 };

void Enter(testdoor::DialogBox &box, int id, const std::string &text, int way)
{
    if (way == TYPED)
        box.Type(id, text);
    else
        box.Paste(id, text);
}

const char powerText[] = "Man erwartet eine Dezimalzahl von 500 mW bis 1.5 kW.";
const char shareText[] = "Man erwartet eine Dezimalzahl von 0 bis 1.1.";
const char lengthText[] = "Man erwartet eine Dezimalzahl von 1 m bis 1e+300.";
const char tempText[] = "Man erwartet eine Dezimalzahl von -273 bis 1000.";
const char daysText[] = "Ganze Zahl von 0 bis 365 erwartet.";
const char countText[] = "Ganze Zahl von -5 bis 5 erwartet.";
const char legend[] = "Legende: r - Jahr (von 1990 bis 2010), M - Monat,\nd - Tag, h - Stunde, m - Minute, s - "
                      "Sekunde";
const std::string dateText = std::string("Zeitangabe in Form \"d.M.r\" erwartet.\n\n") + legend;
const std::string clockText = std::string("Zeitangabe in Form \"h:m\" erwartet.\n\n") + legend;
const char valueText[] = "Wert muss eingegeben, bzw. gewählt werden.";
const char priceText[] = "Man erwartet eine Dezimalzahl von 0 bis 100.";

struct REFUSED {
    int id;
    std::string message;
    std::vector<std::string> inputs; // each typed, and each pasted
    std::vector<std::string> pasted; // these pasted only
};
const REFUSED refused[] = {
    {POWER,
     powerText,
     {"",     "   ",    "viel",   "1e400",  "1e3",  "nan",  "inf", "-inf", "-0",  "-5",   digits40,
      "0.49", "499 mW", "1500.1", "1.6 kW", "1 kw", "1 kg", "1 k", "W",    "--1", "0x10", letters300},
     {"1,5", "1\n2", "1\r\nkw", "1\n\nkg"}},
    {SHARE,
     shareText,
     {"", "  ", "halb", "1e400", "-1e400", "nan", "inf", digits40, "1.11", "-0.01", "0.5 W", "1 1", "1..1",
      letters300},
     {"0,5", "0\n5"}},
    {LENGTH, lengthText, {"weit", "1e400", "nan", "inf", "-0", "0", "0.99", "99 cm", "5 km2"}, {"1,5", "1\nx"}},
    {TEMP,
     tempText,
     {"kalt", "1e400", "nan", "inf", "-inf", digits40, "-273.1", "1000.01", "5 C"},
     {"1,5", "1\n5", "20 °C"}},
    {DAYS,
     daysText,
     {"", "  ", "alle", "1e400", "1e2", "nan", "inf", digits40, "-1", "366", "2147483648", "1.0", "1,5", "1 2",
      "0x10", letters300},
     {"1\n2", "1\r\n2"}},
    {COUNT,
     countText,
     {"keine", "1e400", "nan", "inf", digits40, "-6", "6", "-2147483649", "1.5", "1,5"},
     {"-\n1"}},
    {DATE,
     dateText,
     {"", " ", "heute", "1e400", "nan", "inf", "-0", digits40, "31.12.1989", "1.1.2011", "31.4.2000",
      "29.2.2001", "1.1", "1.1.99", "1,1,2000", letters300},
     {"1.1\n2000", "1\n1.1.2000"}},
    {CLOCK,
     clockText,
     {"bald", "1e400", "nan", "inf", "-0", digits40, "24:00", "7:60", "7", "7.30"},
     {"7\n30"}},
    {NAME, valueText, {"", " ", "    "}, {"\n", "\r\n", " \t \n"}},
    {PRICE,
     priceText,
     {"", "  ", "teuer", "1e400", "nan", "inf", digits40, "-0.01", "100.1", "5 W", letters300},
     {"1,5", "1\n5"}},
};

struct TAKEN {
    int id;
    int ways;
    std::string input;
    const char *value; // in the record
};
const TAKEN taken[] = {
    {POWER, BOTH, "0.5", "0.5"},
    {POWER, BOTH, "1500", "1500"},
    {POWER, BOTH, "1.5 kW", "1500"},
    {POWER, BOTH, "  1.5   kW  ", "1500"},
    {POWER, BOTH, "1.5 k.", "1500"},
    {POWER, BOTH, "+12 W", "12"},
    {POWER, BOTH, "500 mW", "0.5"},
    {POWER, TYPED, "1,5", "1.5"},
    {POWER, TYPED, "1,5 kW", "1500"},
    {POWER, PASTED, "12\n", "12"},
    {POWER, PASTED, "12\r\nW", "12"},
    {SHARE, BOTH, "0", "0"},
    {SHARE, BOTH, "-0", "-0"},
    {SHARE, BOTH, "1.1", "1.1"},
    {SHARE, BOTH, "5e-1", "0.5"},
    {SHARE, TYPED, "0,25", "0.25"},
    {SHARE, PASTED, "\n1\n", "1"},
    {LENGTH, TYPED, "", "?"},
    {LENGTH, BOTH, "   ", "?"},
    {LENGTH, BOTH, "1", "1"},
    {LENGTH, BOTH, "2 km", "2000"},
    {LENGTH, BOTH, digits40, "1.11111111111111e+30"}, // the field holds 31 of the digits
    {TEMP, TYPED, "", "?"},
    {TEMP, BOTH, "-273", "-273"},
    {TEMP, BOTH, "1e3", "1000"},
    {TEMP, BOTH, "-0", "-0"},
    {TEMP, TYPED, "-2,5", "-2.5"},
    {DAYS, BOTH, "0", "0"},
    {DAYS, BOTH, "-0", "0"},
    {DAYS, BOTH, "365", "365"},
    {DAYS, BOTH, " 007 ", "7"},
    {DAYS, PASTED, "31\n", "31"},
    {COUNT, TYPED, "", "?"},
    {COUNT, BOTH, "-5", "-5"},
    {COUNT, BOTH, "+5", "5"},
    {DATE, BOTH, "1.1.1990", "1990-1-1 -1:-1"},
    {DATE, BOTH, "31.12.2010", "2010-12-31 -1:-1"},
    {DATE, BOTH, " 29 . 2 . 2000 ", "2000-2-29 -1:-1"},
    {DATE, PASTED, "1.1.\n2000", "2000-1-1 -1:-1"},
    {CLOCK, TYPED, "", "?"},
    {CLOCK, BOTH, "0:00", "-1--1--1 0:0"},
    {CLOCK, BOTH, "23:59", "-1--1--1 23:59"},
    {NAME, BOTH, "Süd", "Süd"},
    {NAME, BOTH, "nan", "nan"},
    {NAME, BOTH, "1e400", "1e400"},
    {NAME, BOTH, "1,5", "1,5"},
    {NAME, BOTH, "100 % €", "100 % €"},
    {NAME, PASTED, "eins\nzwei", "eins zwei"},
    {NAME, PASTED, "eins\r\nzwei", "eins zwei"},
    {NAME, BOTH, letters300, "xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx"},
    {NOTE, TYPED, "", "?"},
    {NOTE, BOTH, "  ", "?"},
    {NOTE, BOTH, "%s%n&amp;<b>", "%s%n&amp;<b>"},
    {PRICE, BOTH, "0", "0"},
    {PRICE, BOTH, "99.9", "99.9"},
    {PRICE, BOTH, "20", "20"},
    {PRICE, TYPED, "1,5", "1.5"},
};
} // namespace

TEST_F(EveryField, IsRefusedWithItsReasonAndKeepsTheRecord)
{
    const std::map<int, std::string> before = Fields(record);
    const std::string missing = valueText;
    int count = 0;
    for (const REFUSED &row : refused) {
        auto attempt = [&](testdoor::DialogBox &box, const std::string &input, int way) {
            Enter(box, row.id, input, way);
            const std::string &expected = StrIsBlank(box.Text(row.id).c_str()) ? missing : row.message;
            EXPECT_EQ(PressOk(box), expected) << row.id << " '" << input << "' " << way;
            EXPECT_EQ(box.Focus(), row.id) << input;
            EXPECT_EQ(box.SelectedText(row.id), box.Text(row.id)) << row.id << " '" << input << "'";
            EXPECT_EQ(Fields(record), before) << input;
            ++count;
        };
        int result = Run([&](testdoor::DialogBox &box) {
            for (const std::string &input : row.inputs)
                for (int way : {TYPED, PASTED})
                    attempt(box, input, way);
            for (const std::string &input : row.pasted)
                attempt(box, input, PASTED);
            box.Press("Esc");
        });
        EXPECT_EQ(result, WIN_ID_CANCEL) << row.id;
        EXPECT_EQ(Fields(record), before);
    }
    EXPECT_GT(count, 200);
}

TEST_F(EveryField, IsTakenWithItsValue)
{
    for (const TAKEN &row : taken)
        for (int way : {TYPED, PASTED}) {
            if ((row.ways & way) == 0)
                continue;
            record = GoodRecord();
            std::map<int, std::string> expected = Fields(record);
            expected[row.id] = row.value;
            std::string said;
            int result = Run([&](testdoor::DialogBox &box) {
                Enter(box, row.id, row.input, way);
                said = PressOk(box);
                if (!said.empty())
                    box.Press("Esc");
            });
            EXPECT_EQ(result, WIN_ID_OK) << row.id << " '" << row.input << "' " << way << ": " << said;
            EXPECT_EQ(Fields(record), expected) << row.id << " '" << row.input << "' " << way;
        }
}

TEST_F(EveryField, ComesBackAsItWasShown)
{
    const std::map<int, std::string> before = Fields(record);
    EXPECT_EQ(Run([](testdoor::DialogBox &box) { EXPECT_EQ(PressOk(box), ""); }), WIN_ID_OK);
    EXPECT_EQ(Fields(record), before);
}

TEST_F(EveryField, IsCorrectedByTypingOverWhatWasRefused)
{
    EXPECT_EQ(Run([](testdoor::DialogBox &box) {
                  box.Type(POWER, "viel");
                  EXPECT_EQ(PressOk(box), powerText);
                  box.TypeKeys("7");
                  box.Press("Return");
              }),
              WIN_ID_OK);
    EXPECT_EQ(record.power.value, 7);
}

TEST_F(EveryField, TheFirstWrongOneIsNamed)
{
    Run([](testdoor::DialogBox &box) {
        box.Type(DAYS, "400");
        box.Type(SHARE, "9");
        EXPECT_EQ(PressOk(box), shareText);
        EXPECT_EQ(box.Focus(), SHARE);
        box.TypeKeys("1");
        EXPECT_EQ(PressOk(box), daysText);
        EXPECT_EQ(box.Focus(), DAYS);
        box.Press("Esc");
    });
}

TEST_F(EveryField, OfADropListAsksForAChoice)
{
    record.model.id = EDC_VUDF;
    const std::map<int, std::string> before = Fields(record);
    EXPECT_EQ(Run([&](testdoor::DialogBox &box) {
                  EXPECT_EQ(box.Text(MODEL), "(Auswahl)");
                  EXPECT_EQ(PressOk(box), valueText);
                  EXPECT_EQ(box.Focus(), MODEL);
                  EXPECT_EQ(Fields(record), before);
                  box.Choose(MODEL, 2);
                  EXPECT_EQ(PressOk(box), "");
              }),
              WIN_ID_OK);
    EXPECT_EQ(Shown(record.model), "B");
}

TEST_F(EveryField, OfAComboBoxTakesAnEntryAndChecksIt)
{
    EXPECT_EQ(Run([](testdoor::DialogBox &box) {
                  EXPECT_EQ(box.Text(PRICE), "10");
                  EXPECT_EQ(box.Selected(PRICE), 0);
                  box.Choose(PRICE, 2);
                  EXPECT_EQ(PressOk(box), priceText) << "500 is beyond";
                  EXPECT_EQ(box.Focus(), PRICE);
                  box.Choose(PRICE, 1);
                  EXPECT_EQ(PressOk(box), "");
              }),
              WIN_ID_OK);
    EXPECT_EQ(record.price.value, 20);
}

TEST_F(EveryField, TakesNothingThatTheCharacterSetCannotHold)
{
    // Neither sends a character on: a snowman, a Greek letter, a face beyond the first plane.
    for (const char *foreign : {"☃", "Ω", "😀"})
        Run([foreign](testdoor::DialogBox &box) {
            for (int id = POWER; id < MODEL; ++id) {
                box.Type(id, "7");
                box.TypeKeys(foreign);
                EXPECT_EQ(box.Text(id), "7") << id;
                box.Paste(id, foreign);
                EXPECT_EQ(box.Text(id).find('?'), std::string::npos) << id;
                EXPECT_LE(box.Text(id).size(), 1u) << id;
            }
            box.Press("Esc");
        });
}

TEST_F(EveryField, HoldsNoMoreThanItsRecord)
{
    Run([](testdoor::DialogBox &box) {
        for (int id = POWER; id < MODEL; ++id) {
            box.Type(id, letters300);
            EXPECT_EQ(box.Text(id).size(), 31u) << id;
            box.Paste(id, letters300);
            EXPECT_EQ(box.Text(id).size(), 31u) << id;
        }
        box.Press("Esc");
    });
}

TEST_F(EveryField, OfADecimalNumberTypesAPointWithTheCommaKey)
{
    const struct {
        int id;
        const char *typed;
        const char *pasted;
    } rows[] = {
        {POWER, "1.5", "1,5"}, {SHARE, "1.5", "1,5"}, {LENGTH, "1.5", "1,5"}, {TEMP, "1.5", "1,5"},
        {PRICE, "1.5", "1,5"}, {DAYS, "1,5", "1,5"},  {COUNT, "1,5", "1,5"},  {DATE, "1,5", "1,5"},
        {CLOCK, "1,5", "1,5"}, {NAME, "1,5", "1,5"},  {NOTE, "1,5", "1,5"},
    };
    Run([&rows](testdoor::DialogBox &box) {
        for (const auto &row : rows) {
            box.Type(row.id, "1,5");
            EXPECT_EQ(box.Text(row.id), row.typed) << row.id;
            box.Paste(row.id, "1,5");
            EXPECT_EQ(box.Text(row.id), row.pasted) << row.id;
        }
        box.Press("Esc");
    });
}

TEST_F(EveryField, TellsWhatItTakesAndWhatItIs)
{
    const struct {
        int id;
        const char *tip;
        const char *name;
    } rows[] = {
        {POWER, "Dezimalzahl: 500 mW bis 1.5 kW", "Leistung"},
        {SHARE, "Dezimalzahl: 0 bis 1.1", "Wirkung"},
        {LENGTH, "Dezimalzahl: ab 1 m", "Länge"},
        {TEMP, "Dezimalzahl: -273 bis 1000", "Temperatur"},
        {DAYS, "Ganze Zahl: 0 bis 365", "Heiztage"},
        {COUNT, "Ganze Zahl: -5 bis 5", "Anzahl"},
        {DATE, "Form \"d.M.r\"", "Datum"},
        {CLOCK, "Form \"h:m\"", "Uhrzeit"},
        {NAME, "", "Name"},
        {NOTE, "", "Bemerkung"},
        {PRICE, "Dezimalzahl: 0 bis 100", "Preis"},
        {MODEL, "", "Modell"},
    };
    Run([&rows](testdoor::DialogBox &box) {
        for (const auto &row : rows) {
            EXPECT_EQ(ToUtf8(box.Tip(row.id).c_str()), row.tip) << row.id;
            EXPECT_EQ(ToUtf8(box.AccessibleName(row.id).c_str()), row.name) << row.id;
        }
        box.Press("Esc");
    });
}

TEST_F(EveryField, IsReachedByTabAndByItsMnemonic)
{
    Run([](testdoor::DialogBox &box) {
        EXPECT_EQ(box.Focus(), POWER);
        EXPECT_EQ(box.SelectedText(POWER), "1 kW") << "the first field is ready to be typed over";
        for (int id = POWER + 1; id < FIELD_END; ++id) {
            box.Press("Tab");
            EXPECT_EQ(box.Focus(), id);
            if (id != MODEL) {
                EXPECT_EQ(box.SelectedText(id), box.Text(id));
            }
        }
        box.Press("Tab");
        EXPECT_EQ(box.Focus(), WIN_ID_OK);
        box.Press("Alt+N");
        EXPECT_EQ(box.Focus(), LENGTH);
        box.Press("Alt+O");
        EXPECT_EQ(box.Focus(), MODEL);
        box.Press("Alt+P");
        EXPECT_EQ(box.Focus(), PRICE);
        box.Press("Shift+Tab");
        EXPECT_EQ(box.Focus(), NOTE);
        box.Press("Esc");
    });
}
