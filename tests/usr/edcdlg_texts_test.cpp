// The edit field as a control that carries a value: what it shows, reads, keeps and gives to the record.
#include "support/chance.h"
#include "support/child.h"
#include "support/hookdialog.h"
#include "support/testapp.h"
#include "support/testdialog.h"
#include "win/boxes.h"
#include "win/testdialog.h"
#include "win/testdoor.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace
{
enum { DIALOG = 30100, FIELD = 100, OTHER = 101, MEMO = 102 };
const char source[] = "usr/edcdlg_texts.cpp";
const std::string letters31(31, 'x'), letters255(255, 'y'), letters300(300, 'z');

TEdcLongStr Value(int id, const char *text = "")
{
    TEdcLongStr value;
    value.Set(id, text);
    return value;
}

std::string Shown(const TEdcAStr &value)
{
    std::string state = value.id == EDC_VVAL ? "V" : value.id == EDC_VUDF ? "U" : std::to_string(value.id);
    return state + ":" + (value.id == EDC_VVAL ? value.text : "");
}

class Edits : public testing::Test
{
protected:
    void SetUp() override
    {
        TestApplication();
        tables = std::make_unique<DialogTables>();
        tables->Add(DIALOG, "Felder",
                    {Line(RES_EDIT, FIELD), Line(RES_EDIT, OTHER), Line(RES_MEMO, MEMO),
                     Line(RES_DEFAULT, WIN_ID_OK, "OK")});
        Renew();
    }
    void TearDown() override
    {
        dialog.reset();
        tables.reset();
        EXPECT_EQ(testdoor::PendingScripts(), 0);
        EXPECT_EQ(testdoor::UnexpectedBoxes(), 0);
    }

    void Renew(void *record = NULL) { dialog = std::make_unique<HookDialog>(DIALOG, record); }

    TEdcEdit &Open(int limit = LONGSTRMAX, TValidator *validator = NULL, int flags = 0)
    {
        auto *edit = new TEdcEdit(dialog.get(), FIELD, limit, validator, flags);
        dialog->Create();
        return *edit;
    }

    std::string Read(const TEdcEdit &edit)
    {
        TEdcLongStr value;
        edit.GetValue(value);
        return Shown(value);
    }

    std::unique_ptr<DialogTables> tables;
    std::unique_ptr<HookDialog> dialog;
};
} // namespace

TEST_F(Edits, ShowAValueAndNothingElse)
{
    TEdcEdit &edit = Open();
    struct {
        int id;
        const char *text;
        const char *shown;
    } rows[] = {
        {EDC_VVAL, "Halle", "Halle"},
        {EDC_VUDF, "Halle", ""},
        {EDC_VNUL, "Halle", ""},
        {0, "Halle", ""},
        {7, "Halle", ""},
        {EDC_VVAL, "", ""},
        {EDC_VVAL, "  ", "  "},
        {EDC_VVAL, "\xDC\xDF", "\xDC\xDF"},
        {EDC_VVAL, letters255.c_str(), letters255.c_str()},
    };
    for (const auto &row : rows) {
        edit.SetValue(Value(EDC_VVAL, "zuvor"));
        edit.SetValue(Value(row.id, row.text));
        EXPECT_EQ(edit.Text(), row.shown) << row.id << " " << row.text;
    }
}

TEST_F(Edits, ReadBlankTextsAsUndefined)
{
    TEdcEdit &edit = Open();
    for (const char *blank : {"", " ", "   ", "\xA0"}) {
        edit.SetText(blank);
        EXPECT_EQ(Read(edit), "U:") << "'" << blank << "'";
    }
    for (const char *text : {"0", " x ", "\xE4"}) {
        edit.SetText(text);
        EXPECT_EQ(Read(edit), std::string("V:") + text);
    }
}

TEST_F(Edits, ReadATextThatDoesNotFitAsUndefined)
{
    TEdcEdit &edit = Open();
    edit.SetText(letters31.c_str());
    TEdcShortStr narrow;
    edit.GetValue(narrow);
    EXPECT_EQ(Shown(narrow), "V:" + letters31);
    edit.SetText((letters31 + "x").c_str());
    edit.GetValue(narrow);
    EXPECT_EQ(narrow.id, EDC_VUDF);
    EXPECT_EQ(narrow.text, letters31) << "the cut text stays";
}

TEST_F(Edits, HoldOneCharacterLessThanTheirLimit)
{
    for (int limit : {static_cast<int>(SHORTSTRMAX), 100, static_cast<int>(LONGSTRMAX)}) {
        Renew();
        TEdcEdit &edit = Open(limit);
        EXPECT_EQ(edit.TextLimit(), limit);
        edit.SetText(letters300.c_str());
        EXPECT_EQ(Read(edit), "V:" + letters300.substr(0, static_cast<size_t>(limit) - 1));
    }
}

TEST_F(Edits, RefuseALimitBesideTheStringsOfARecord)
{
    const char limits[] = "txtLim >= SHORTSTRMAX && txtLim <= LONGSTRMAX";
    for (int limit : {-1, 0, SHORTSTRMAX - 1, LONGSTRMAX + 1})
        EXPECT_TRUE(AbortsOnAssertion(limits, source, [&] { TEdcEdit(dialog.get(), FIELD, limit); })) << limit;
    EXPECT_EQ(TEdcEdit(dialog.get(), FIELD).TextLimit(), SHORTSTRMAX);
}

TEST_F(Edits, ReadBackWhateverTheCharacterSetHolds)
{
    TEdcEdit &edit = Open();
    CHANCE chance(311);
    for (int i = 0; i < 300; ++i) {
        std::string text;
        for (int left = chance.Int(1, 255); left > 0; --left) {
            char c = static_cast<char>(chance.Int(33, 255));
            bool open = std::string("\x7F\x81\x8D\x8F\x90\x9D\xA0\xAD").find(c) != std::string::npos;
            text += open ? '.' : c;
        }
        edit.SetValue(Value(EDC_VVAL, text.c_str()));
        ASSERT_EQ(Read(edit), "V:" + text);
    }
}

TEST_F(Edits, LeaveNoTraceWithoutTheirWindow)
{
    TEdcEdit edit(dialog.get(), FIELD);
    edit.SetValue(Value(EDC_VVAL, "x"));
    EXPECT_EQ(Read(edit), "U:");
    EXPECT_FALSE(edit.IsChanged());
    dialog->Create();
    EXPECT_EQ(Read(edit), "U:");
}

namespace
{
struct CHANGE {
    int id; // of the stored value
    const char *stored;
    const char *shown;
    int flags;
    bool changed;
};
const CHANGE changes[] = {
    {EDC_VVAL, "Tor", "Tor", 0, false},
    {EDC_VVAL, "Tor", "TOR", 0, false},
    {EDC_VVAL, "Tor", "TOR", EDC_CfCASE, true},
    {EDC_VVAL, "Tor", "Tor", EDC_CfCASE, false},
    {EDC_VVAL,
     "\xDC"
     "ber",
     "\xFC"
     "BER",
     0, false},
    {EDC_VVAL,
     "\xDC"
     "ber",
     "\xFC"
     "BER",
     EDC_CfCASE, true},
    {EDC_VVAL, "Tor", "Tor ", 0, true},
    {EDC_VVAL, "Tor", " Tor", 0, true},
    {EDC_VVAL, "a b", "a  b", 0, true},
    {EDC_VVAL, "T*r", "Tor", 0, true},
    {EDC_VVAL, "Tor", "T?r", 0, true},
    {EDC_VVAL, "Tor", "", 0, true},
    {EDC_VVAL, "Tor", "  ", 0, true},
    {EDC_VVAL, "1.0", "1", 0, true},
    {EDC_VUDF, "", "", 0, false},
    {EDC_VUDF, "", "  ", 0, false},
    {EDC_VUDF, "Tor", "", 0, false},
    {EDC_VUDF, "", "Tor", 0, true},
    {EDC_VUDF, "Tor", "Tor", 0, true},
    {EDC_VNUL, "", "", 0, true}, // the window can show no such state
    {EDC_VNUL, "", "Tor", 0, true},
    {EDC_VVAL, "", "", 0, true},
};
} // namespace

TEST_F(Edits, AreChangedWhereTheWindowDiffersFromWhatWasSet)
{
    TEdcLongStr field;
    Renew(&field);
    TEdcEdit &edit = Open();
    for (const CHANGE &row : changes) {
        edit.SetFlags(row.flags);
        EXPECT_EQ(edit.GetFlags(), row.flags);
        field.Set(row.id, row.stored);
        dialog->TransferData(WIN_TRANSFER_SETDATA);
        edit.SetText(row.shown);
        EXPECT_EQ(edit.IsChanged(), row.changed) << row.id << " '" << row.stored << "' '" << row.shown << "'";
    }
}

TEST_F(Edits, AreUnchangedOnceTheRecordHasTakenThem)
{
    TEdcLongStr field;
    Renew(&field);
    TEdcEdit &edit = Open();
    testdoor::DialogBox box(*dialog);
    EXPECT_FALSE(edit.IsChanged());
    box.Type(FIELD, "Tor");
    EXPECT_TRUE(edit.IsChanged());
    dialog->TransferData(WIN_TRANSFER_GETDATA);
    EXPECT_FALSE(edit.IsChanged());
    EXPECT_EQ(Shown(field), "V:Tor");
}

TEST_F(Edits, GiveTheirTextToAFieldOfText)
{
    TEdcShortStr field;
    field = "Nord";
    Renew(&field);
    TEdcEdit &edit = Open();
    EXPECT_EQ(edit.Text(), "Nord");
    EXPECT_EQ(edit.Transfer(&field, WIN_TRANSFER_SETDATA), field.Size());
    edit.SetText("S\xFC"
                 "d");
    EXPECT_EQ(edit.Transfer(&field, WIN_TRANSFER_GETDATA), field.Size());
    EXPECT_EQ(Shown(field), "V:S\xFC"
                            "d");
    edit.SetText("  ");
    edit.Transfer(&field, WIN_TRANSFER_GETDATA);
    EXPECT_EQ(field.id, EDC_VUDF);
    edit.SetText((letters31 + "x").c_str());
    edit.Transfer(&field, WIN_TRANSFER_GETDATA);
    EXPECT_EQ(field.id, EDC_VUDF) << "too long for the field";
}

TEST_F(Edits, GiveANumberToAFieldWhereTheValidatorConverts)
{
    TEdcFloat field(1500);
    Renew(&field);
    TEdcEdit &edit = Open(SHORTSTRMAX, new TEdcFloatValidator(0, 1e6, true, "W"));
    EXPECT_EQ(edit.Text(), "1.5 kW");
    EXPECT_FALSE(edit.IsChanged());
    edit.SetText("2 kW");
    EXPECT_TRUE(edit.IsChanged());
    EXPECT_EQ(edit.Transfer(&field, WIN_TRANSFER_GETDATA), field.Size());
    EXPECT_EQ(field.id, EDC_VVAL);
    EXPECT_EQ(field.value, 2000);
    field.id = EDC_VUDF;
    EXPECT_EQ(edit.Transfer(&field, WIN_TRANSFER_SETDATA), field.Size());
    EXPECT_EQ(edit.Text(), "");
    edit.SetText("zwei");
    edit.Transfer(&field, WIN_TRANSFER_GETDATA);
    EXPECT_EQ(field.id, EDC_VUDF) << "no number";
}

TEST_F(Edits, GiveATimeToAFieldWhereTheValidatorConverts)
{
    TEdcTime field;
    field.SetDate(2001, 2, 28, true);
    Renew(&field);
    TEdcEdit &edit = Open(SHORTSTRMAX, new TEdcTimeValidator("d.M.r", true, 1990, 2010));
    EXPECT_EQ(edit.Text(), "28.2.2001");
    edit.SetText("1.3.2001");
    EXPECT_EQ(edit.Transfer(&field, WIN_TRANSFER_GETDATA), field.Size());
    EXPECT_EQ(field.month * 100 + field.day, 301);
}

TEST_F(Edits, KeepTextWithAValidatorThatConvertsNothing)
{
    TEdcShortStr field;
    field = "Nord";
    Renew(&field);
    TEdcEdit &edit = Open(SHORTSTRMAX, new TEdcValueValidator(false));
    EXPECT_EQ(edit.Text(), "Nord");
    edit.SetText("West");
    edit.Transfer(&field, WIN_TRANSFER_GETDATA);
    EXPECT_EQ(Shown(field), "V:West");
}

TEST_F(Edits, TakeNoPartInTransferWhereTheirFlagSaysSo)
{
    TEdcShortStr field;
    field = "Nord";
    Renew(&field);
    TEdcEdit &edit = Open(SHORTSTRMAX, NULL, EDC_CfNOTRANSFER);
    EXPECT_EQ(edit.Text(), "");
    edit.SetText("West");
    for (int direction : {WIN_TRANSFER_SETDATA, WIN_TRANSFER_GETDATA})
        EXPECT_EQ(edit.Transfer(&field, direction), 0);
    EXPECT_EQ(edit.Text(), "West");
    EXPECT_EQ(Shown(field), "V:Nord");
    EXPECT_EQ(edit.Transfer(NULL, WIN_TRANSFER_GETDATA), 0) << "without a record";
}

TEST_F(Edits, GiveBackWhatWasSetWhereTheirFlagSaysSo)
{
    TEdcFloat number(1500);
    Renew(&number);
    TEdcEdit &edit = Open(SHORTSTRMAX, new TEdcFloatValidator(0, 1e6, true, "W"), EDC_CfNOGET);
    testdoor::DialogBox box(*dialog);
    box.Type(FIELD, "77");
    number.Set(3);
    EXPECT_EQ(edit.Transfer(&number, WIN_TRANSFER_GETDATA), number.Size());
    EXPECT_EQ(number.value, 1500);
    EXPECT_EQ(edit.Text(), "77") << "the window keeps what the user typed";
}

TEST_F(Edits, UndefinedStaysUndefinedAndLeavesTheObjectAlone)
{
    TEdcFloat field;
    double object = 42;
    Renew(&field);
    TEdcEdit &edit = Open(SHORTSTRMAX, new TEdcFloatValidator(0, 1e6, true, "W"));
    EXPECT_EQ(edit.Text(), "") << "an undefined field shows empty";
    EXPECT_TRUE(dialog->CloseWindow(WIN_ID_OK)) << "blank is allowed";
    EXPECT_EQ(field.id, EDC_VUDF);
    TEdcFloat own(object);
    EXPECT_TRUE(field.Exchange(EDC_XSTORE, own));
    EXPECT_EQ(own.value, object);
    EXPECT_EQ(own.id, EDC_VVAL);
}

TEST_F(Edits, OfManyLinesKeepTheirLineBreaks)
{
    TEdcLongStr field;
    field = "eins\r\nzwei";
    Renew(&field);
    auto *edit = new TEdcEdit(dialog.get(), MEMO, LONGSTRMAX);
    dialog->Create();
    dialog->TransferData(WIN_TRANSFER_GETDATA);
    EXPECT_EQ(Shown(field), "V:eins\r\nzwei");
    EXPECT_FALSE(edit->IsChanged());
}

TEST_F(Edits, TellInTheirTooltipWhatTheyTake)
{
    new TEdcEdit(dialog.get(), FIELD, SHORTSTRMAX, new TEdcFloatValidator(0.5, 1500, true, "W"));
    new TEdcEdit(dialog.get(), OTHER);
    dialog->Create();
    testdoor::DialogBox box(*dialog);
    EXPECT_EQ(box.Tip(FIELD), "Dezimalzahl: 500 mW bis 1.5 kW");
    EXPECT_EQ(box.Tip(OTHER), "");
}
