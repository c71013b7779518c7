// Combo and list boxes as controls that carry a value: their entries by text and by what they stand for, what
// they show and read, what they give to the record, and what they refuse.
#include "edclistfixture.h"

#include "lib/xfail.h"
#include "support/child.h"

namespace
{
const char source[] = "usr/edcdlg_lists.cpp";
const char limitText[] = "txtLim >= SHORTSTRMAX && txtLim <= LONGSTRMAX";
const std::string letters31(31, 'x'), letters255(255, 'y');
} // namespace

TEST_F(EdcLists, HoldTextsFromShortToLong)
{
    for (int limit : {31, 0, -1, 257, 100000})
        EXPECT_TRUE(AbortsOnAssertion(limitText, source, [&] {
            TEdcComboBox refused(dialog.get(), COMBO, limit);
        })) << limit;
    for (int limit : {32, 33, 255, 256}) {
        Renew();
        auto *held = new TEdcComboBox(dialog.get(), COMBO, limit);
        dialog->Create();
        held->SetText(std::string(300, 'z').c_str());
        EXPECT_EQ(held->Text().size(), static_cast<size_t>(limit - 1));
    }
}

TEST_F(EdcLists, AddAnEntryWithWhatItStandsFor)
{
    Open();
    Each([](auto &list) {
        const ITEM items[] = {
            {EDC_VVAL, "Beton"}, {EDC_VUDF, "(Auswahl)"}, {EDC_VNUL, "(nichts)"}, {7, "sieben"}};
        int index = 0;
        for (const ITEM &item : items)
            EXPECT_EQ(list.Add(Value(item.id, item.text)), index++);
        EXPECT_EQ(list.GetString(0), "Beton");
        EXPECT_EQ(list.GetItemData(0), EDC_VVAL);
        EXPECT_EQ(list.GetString(1), "") << "an undefined value has no text";
        EXPECT_EQ(list.GetItemData(1), EDC_VUDF);
        EXPECT_EQ(list.GetString(2), "(nichts)");
        EXPECT_EQ(list.GetItemData(2), EDC_VNUL);
        EXPECT_EQ(list.GetItemData(3), 7);
    });
    EXPECT_EQ(dialog->Take(), "opened");
}

TEST_F(EdcLists, AddATextThatIsThereOnceMoreUnlessItIsUnique)
{
    const struct {
        int flags;
        ITEM item;
        int index; // of two entries "Beton" (a value) and "Holz" (7)
    } rows[] = {
        {0, {EDC_VVAL, "Beton"}, 2},
        {EDC_CfUNIQUE, {EDC_VVAL, "Beton"}, 0},
        {EDC_CfUNIQUE, {EDC_VVAL, "BETON"}, 0},
        {EDC_CfUNIQUE | EDC_CfCASE, {EDC_VVAL, "BETON"}, 2},
        {EDC_CfUNIQUE | EDC_CfCASE, {EDC_VVAL, "Beton"}, 0},
        {EDC_CfUNIQUE, {7, "Beton"}, 2},
        {EDC_CfUNIQUE, {7, "holz"}, 1},
        {EDC_CfUNIQUE, {EDC_VVAL, "Beto"}, 2},
        {EDC_CfUNIQUE, {EDC_VUDF, "Beton"}, 2},
        {EDC_CfCASE, {EDC_VVAL, "Beton"}, 2},
    };
    Open();
    Each([&rows](auto &list) {
        for (const auto &row : rows) {
            list.SetFlags(0);
            Fill(list, {{EDC_VVAL, "Beton"}, {7, "Holz"}});
            list.SetFlags(row.flags);
            EXPECT_EQ(list.Add(Value(row.item.id, row.item.text)), row.index) << row.flags << row.item.text;
            EXPECT_EQ(list.GetCount(), row.index == 2 ? 3 : 2);
        }
    });
}

TEST_F(EdcLists, AnUndefinedEntryIsUniqueByItsEmptyText)
{
    Open(EDC_CfUNIQUE);
    Each([](auto &list) {
        EXPECT_EQ(list.Add(Value(EDC_VUDF, "eins")), 0);
        EXPECT_EQ(list.Add(Value(EDC_VUDF, "zwei")), 0);
        EXPECT_EQ(list.GetCount(), 1);
    });
}

TEST_F(EdcLists, AddNothingWithoutAWindow)
{
    auto &list = *new TEdcComboBox(dialog.get(), COMBO, SHORTSTRMAX, NULL, EDC_CfUNIQUE);
    auto &lines = *new TEdcListBox(dialog.get(), BOX);
    EXPECT_LT(list.Add(Value(EDC_VVAL, "Beton")), 0);
    EXPECT_LT(lines.Add(Value(EDC_VVAL, "Beton")), 0);
    EXPECT_EQ(list.Find("Beton", 0, -1), -1);
    EXPECT_EQ(list.SelectById(EDC_VVAL, true), -1);
    list.SetValue(Value(EDC_VVAL, "Beton"));
    EXPECT_EQ(Read(list), "U");
    EXPECT_EQ(Read(lines), "U");
    EXPECT_FALSE(list.IsChanged());
    EXPECT_TRUE(list.IsValid(true));
}

TEST_F(EdcLists, FindByTextFromAnIndexOn)
{
    const std::vector<ITEM> items = {{EDC_VVAL, "Beton"}, {7, "Holz"},  {EDC_VVAL, "beton"},
                                     {8, "Holz"},         {7, "Beton"}, {EDC_VUDF, "leer"}};
    const struct {
        int flags;
        const char *text;
        int start;
        int id;
        int index;
    } rows[] = {
        {0, "Beton", 0, -1, 0},
        {0, "Beton", 1, -1, 2},
        {0, "Beton", 3, -1, 4},
        {0, "Beton", 5, -1, -1},
        {0, "Beton", 0, EDC_VVAL, 0},
        {0, "Beton", 1, EDC_VVAL, 2},
        {0, "Beton", 3, EDC_VVAL, -1},
        {0, "Beton", 0, 7, 4},
        {0, "BETON", 1, EDC_VVAL, 2},
        {EDC_CfCASE, "Beton", 1, -1, 4},
        {EDC_CfCASE, "beton", 0, -1, 2},
        {EDC_CfCASE, "BETON", 0, -1, -1},
        {0, "Holz", 0, 8, 3},
        {0, "Holz", 0, 9, -1},
        {0, "Hol", 0, -1, -1},
        {0, "Holz ", 0, -1, -1},
        {0, "H*", 0, -1, -1},
        {0, "", 0, -1, 5},
        {0, "", 0, EDC_VUDF, 5},
        {0, "leer", 0, -1, -1},
        {0, "Beton", 6, -1, -1},
        {0, "Beton", 1000000, -1, -1},
        {0, "Beton", -3, -1, 0},
    };
    Open();
    Each([&](auto &list) {
        Fill(list, items);
        for (const auto &row : rows) {
            list.SetFlags(row.flags);
            EXPECT_EQ(list.Find(row.text, row.start, row.id), row.index)
                << row.flags << " " << row.text << " " << row.start << " " << row.id;
        }
    });
}

TEST_F(EdcLists, SelectWhatAnEntryStandsForFromEitherEnd)
{
    enum { U = EDC_VUDF, V = EDC_VVAL, N = EDC_VNUL };
    const struct {
        std::vector<int> data;
        int id;
        int forward, backward; // index
    } rows[] = {
        {{}, 5, -1, -1},
        {{5}, 5, 0, 0},
        {{V, 5, V}, 5, 1, 1},
        {{V, 5, 6, 5, V}, 5, 1, 3},
        {{V, V}, 5, -1, -1},
        {{U, V, V}, 5, 0, 0},
        {{V, V, U}, 5, 2, 2},
        {{U, V, U, V}, 5, 2, 2}, // of several undefined ones the one with the highest index
        {{U, 5, U}, 5, 1, 1},
        {{5, U, 5}, 5, 0, 2},
        {{V, U, V, U, V}, U, 1, 3}, // the one that is looked for stops the walk
        {{U, N}, N, 1, 1},
        {{U, V}, N, 0, 0},
        {{V, N}, U, -1, -1},
        {{V, V, V}, V, 0, 2},
        {{-1, V}, -1, 0, 0},
    };
    Open();
    Each([&rows](auto &list) {
        for (const auto &row : rows) {
            list.ClearList();
            for (int data : row.data)
                list.SetItemData(list.AddString("Eintrag"), data);
            list.SetSelIndex(0);
            EXPECT_EQ(list.SelectById(row.id, true), row.forward) << row.id;
            EXPECT_EQ(list.GetSelIndex(), row.forward);
            list.SetSelIndex(0);
            EXPECT_EQ(list.SelectById(row.id, false), row.backward) << row.id;
            EXPECT_EQ(list.GetSelIndex(), row.backward);
        }
    });
}

namespace
{
const std::vector<ITEM> complete = {{EDC_VUDF, ""}, {EDC_VVAL, "Beton"}, {EDC_VNUL, "(nichts)"},
                                    {3, "Beton"},   {EDC_VVAL, "Holz"},  {9, "neun"}};
const std::vector<ITEM> bare = {{EDC_VVAL, "Beton"}, {3, "drei"}};
} // namespace

TEST_F(EdcLists, ShowAValue)
{
    const struct {
        const std::vector<ITEM> *items;
        ITEM value;
        int choice, combo, box; // what is selected then
        const char *field;      // what stands in the edit field
    } rows[] = {
        {&complete, {EDC_VVAL, "Beton"}, 1, 1, 1, "Beton"},
        {&complete, {EDC_VVAL, "HOLZ"}, 4, 4, 4, "Holz"},
        {&complete, {EDC_VVAL, "Stein"}, 0, -1, 0, "Stein"},
        {&complete, {EDC_VVAL, ""}, 0, -1, 0, ""},
        {&complete, {EDC_VVAL, "neun"}, 0, -1, 0, "neun"}, // 9 is no plain value
        {&complete, {EDC_VVAL, "(nichts)"}, 0, -1, 0, "(nichts)"},
        {&complete, {EDC_VUDF, "Beton"}, 0, 0, 0, ""},
        {&complete, {EDC_VNUL, ""}, 2, 2, 2, "(nichts)"},
        {&complete, {3, ""}, 3, 3, 3, "Beton"},
        {&complete, {9, "egal"}, 5, 5, 5, "neun"},
        {&complete, {4, "Beton"}, 0, 0, 0, ""},
        {&bare, {EDC_VVAL, "Beton"}, 0, 0, 0, "Beton"},
        {&bare, {EDC_VVAL, "Stein"}, -1, -1, -1, "Stein"},
        {&bare, {EDC_VUDF, "Beton"}, -1, -1, -1, ""},
        {&bare, {EDC_VNUL, "Beton"}, -1, -1, -1, ""},
        {&bare, {3, ""}, 1, 1, 1, "drei"},
        {&bare, {4, ""}, -1, -1, -1, ""},
    };
    Open();
    for (const auto &row : rows) {
        Each([&row](auto &list) {
            Fill(list, *row.items);
            list.SetSelIndex(1);
            list.SetValue(Value(row.value.id, row.value.text));
        });
        EXPECT_EQ(choice->GetSelIndex(), row.choice) << row.value.id << row.value.text;
        EXPECT_EQ(combo->GetSelIndex(), row.combo) << row.value.id << row.value.text;
        EXPECT_EQ(box->GetSelIndex(), row.box) << row.value.id << row.value.text;
        EXPECT_EQ(combo->Text(), row.field) << row.value.id << row.value.text;
    }
    EXPECT_EQ(dialog->Take(), "opened") << "nothing of it is reported";
}

TEST_F(EdcLists, ReadTheSelectedEntryAsWhatItStandsFor)
{
    Open();
    Each([](auto &list) {
        Fill(list, complete);
        const char *const read[] = {"U", "V:Beton", "N:(nichts)", "3:Beton", "V:Holz", "9:neun"};
        for (int i = 0; i < list.GetCount(); ++i) {
            list.SetSelIndex(i);
            EXPECT_EQ(Read(list), read[i]);
        }
        list.SetSelIndex(-1);
        EXPECT_EQ(Read(list), "U");
    });
}

TEST_F(EdcLists, ReadAnEditFieldAsTypedWhereNothingIsSelected)
{
    Open();
    Fill(*combo, complete);
    for (const char *text : {"Stein", "Beton", "0", " x ", "\xE4"}) {
        combo->SetText(text);
        EXPECT_EQ(Read(*combo), std::string("V:") + text);
    }
    for (const char *blank : {"", " ", "   ", "\xA0"}) {
        combo->SetText(blank);
        EXPECT_EQ(Read(*combo), "U") << "'" << blank << "'";
    }
    combo->SetText(letters255.c_str());
    EXPECT_EQ(Read(*combo), "V:" + letters255);
    TEdcShortStr narrow;
    combo->GetValue(narrow);
    EXPECT_EQ(narrow.id, EDC_VUDF) << "what does not fit is undefined";
    combo->SetText(letters31.c_str());
    combo->GetValue(narrow);
    EXPECT_EQ(Shown(narrow), "V:" + letters31);
}

TEST_F(EdcLists, AnEntryThatDoesNotFitReadsAsUndefined)
{
    Open();
    Each([](auto &list) {
        list.SetItemData(list.AddString(std::string(300, 'z').c_str()), EDC_VVAL);
        list.SetSelIndex(0);
        EXPECT_EQ(list.GetSelIndex(), 0);
        EXPECT_EQ(Read(list), "U");
    });
}

TEST_F(EdcLists, AreChangedWhereTheyShowSomethingElse)
{
    const struct {
        int flags;
        ITEM stored;
        ITEM shown;
        bool changed;
    } rows[] = {
        {0, {EDC_VVAL, "Beton"}, {EDC_VVAL, "Beton"}, false},
        {0, {EDC_VVAL, "Beton"}, {EDC_VVAL, "Holz"}, true},
        {0, {EDC_VVAL, "BETON"}, {EDC_VVAL, "Beton"}, false},
        {EDC_CfCASE, {EDC_VVAL, "Beton"}, {EDC_VVAL, "Beton"}, false},
        {0, {EDC_VVAL, "Beton"}, {EDC_VUDF, ""}, true},
        {0, {EDC_VVAL, "Beton"}, {3, ""}, true}, // of the same text
        {0, {EDC_VUDF, ""}, {EDC_VUDF, ""}, false},
        {0, {EDC_VUDF, ""}, {EDC_VVAL, "Beton"}, true},
        {0, {EDC_VUDF, ""}, {EDC_VNUL, ""}, true},
        {0, {EDC_VNUL, "(nichts)"}, {EDC_VNUL, ""}, false},
        {0, {3, "egal"}, {3, ""}, false},
        {0, {3, "egal"}, {9, ""}, true},
        {0, {4, ""}, {4, ""}, true}, // 4 is not in the list and shows as undefined
    };
    Open();
    Each([&rows](auto &list) {
        Fill(list, complete);
        for (const auto &row : rows) {
            list.SetFlags(row.flags);
            TEdcLongStr field = Value(row.stored.id, row.stored.text);
            list.Transfer(static_cast<TEdcValue *>(&field), WIN_TRANSFER_SETDATA);
            list.SetValue(Value(row.shown.id, row.shown.text));
            EXPECT_EQ(list.IsChanged(), row.changed) << row.stored.text << " " << row.shown.text;
        }
    });
}

TEST_F(EdcLists, AFieldIsChangedByItsCaseOnlyWhereCaseCounts)
{
    Open();
    TEdcLongStr field = Value(EDC_VVAL, "Stein");
    combo->Transfer(static_cast<TEdcValue *>(&field), WIN_TRANSFER_SETDATA);
    combo->SetText("STEIN");
    EXPECT_FALSE(combo->IsChanged());
    combo->SetFlags(EDC_CfCASE);
    EXPECT_TRUE(combo->IsChanged());
}

TEST_F(EdcLists, TransferStringsBothWays)
{
    const ITEM rows[] = {{EDC_VVAL, "Beton"},    {EDC_VVAL, "Holz"}, {EDC_VUDF, ""},
                         {EDC_VNUL, "(nichts)"}, {3, "Beton"},       {9, "neun"}};
    Open();
    Each([&rows](auto &list) {
        Fill(list, complete);
        for (const ITEM &row : rows) {
            TEdcShortStr in, out;
            in.Set(row.id, row.text);
            out = "zuvor";
            int size = in.Size();
            EXPECT_EQ(list.Transfer(static_cast<TEdcValue *>(&in), WIN_TRANSFER_SETDATA), size);
            EXPECT_EQ(list.Transfer(static_cast<TEdcValue *>(&out), WIN_TRANSFER_GETDATA), size);
            EXPECT_EQ(Shown(out), Shown(in));
        }
    });
}

TEST_F(EdcLists, TransferWithoutTransferIsNothing)
{
    Open(EDC_CfNOTRANSFER);
    Each([](auto &list) {
        Fill(list, complete);
        TEdcShortStr field;
        field = "Holz";
        EXPECT_EQ(list.Transfer(static_cast<TEdcValue *>(&field), WIN_TRANSFER_SETDATA), 0);
        EXPECT_EQ(list.GetSelIndex(), -1);
        list.SetSelIndex(1);
        EXPECT_EQ(list.Transfer(static_cast<TEdcValue *>(&field), WIN_TRANSFER_GETDATA), 0);
        EXPECT_EQ(Shown(field), "V:Holz");
    });
}

TEST_F(EdcLists, TransferNumbersAndTimesThroughAConvertingValidator)
{
    Open();
    Each([](auto &list) {
        TEdcFloat power(1500);
        TEdcInt count(12);
        TEdcTime day;
        day.SetDate(2001, 2, 28, true);
        Fill(list,
             {{EDC_VUDF, ""}, {EDC_VVAL, "1.5 kW"}, {EDC_VVAL, "12"}, {EDC_VVAL, "28.2.2001"}, {5, "fünf"}});
        list.SetValidator(new TEdcFloatValidator(0, 1e9, true, "W"));
        EXPECT_EQ(list.Transfer(static_cast<TEdcValue *>(&power), WIN_TRANSFER_SETDATA), power.Size());
        EXPECT_EQ(list.GetSelIndex(), 1);
        power.Set(0);
        EXPECT_EQ(list.Transfer(static_cast<TEdcValue *>(&power), WIN_TRANSFER_GETDATA), power.Size());
        EXPECT_EQ(power.value, 1500);
        EXPECT_FALSE(list.IsChanged());
        list.SetValidator(new TEdcIntValidator(0, 100, true));
        EXPECT_EQ(list.Transfer(static_cast<TEdcValue *>(&count), WIN_TRANSFER_SETDATA), count.Size());
        EXPECT_EQ(list.GetSelIndex(), 2);
        count.Set(0);
        list.Transfer(static_cast<TEdcValue *>(&count), WIN_TRANSFER_GETDATA);
        EXPECT_EQ(count.value, 12);
        list.SetValidator(new TEdcTimeValidator("d.M.r", true, 1990, 2010));
        EXPECT_EQ(list.Transfer(static_cast<TEdcValue *>(&day), WIN_TRANSFER_SETDATA), day.Size());
        EXPECT_EQ(list.GetSelIndex(), 3);
        day = TEdcTime();
        list.Transfer(static_cast<TEdcValue *>(&day), WIN_TRANSFER_GETDATA);
        EXPECT_EQ(day.year * 10000 + day.month * 100 + day.day, 20010228);
    });
}

TEST_F(EdcLists, WhatIsNoValueGoesThroughAConvertingValidatorByItsState)
{
    Open();
    Each([](auto &list) {
        list.SetValidator(new TEdcIntValidator(0, 100, true));
        Fill(list, {{EDC_VUDF, ""}, {EDC_VVAL, "12"}, {EDC_VNUL, "(nichts)"}, {5, "99"}});
        TEdcInt field;
        field.value = 77;
        const struct {
            int id;
            int selected;
        } rows[] = {{EDC_VUDF, 0}, {EDC_VNUL, 2}, {5, 3}, {6, 0}};
        for (const auto &row : rows) {
            field.id = row.id;
            list.Transfer(static_cast<TEdcValue *>(&field), WIN_TRANSFER_SETDATA);
            EXPECT_EQ(list.GetSelIndex(), row.selected) << row.id;
            field.id = EDC_VVAL;
            list.Transfer(static_cast<TEdcValue *>(&field), WIN_TRANSFER_GETDATA);
            EXPECT_EQ(field.id, row.id == 6 ? static_cast<int>(EDC_VUDF) : row.id);
            EXPECT_EQ(field.value, 77) << "the number is left alone";
        }
    });
}

TEST_F(EdcLists, ATypedNumberGoesToTheRecord)
{
    Open();
    combo->SetValidator(new TEdcFloatValidator(0, 1e9, true, "W"));
    TEdcFloat field(3);
    combo->SetText("2.5 kW");
    combo->Transfer(static_cast<TEdcValue *>(&field), WIN_TRANSFER_GETDATA);
    EXPECT_EQ(field.value, 2500);
    field.Set(250);
    combo->Transfer(static_cast<TEdcValue *>(&field), WIN_TRANSFER_SETDATA);
    EXPECT_EQ(combo->Text(), "250 W");
    EXPECT_EQ(combo->GetSelIndex(), -1);
}

TEST_F(EdcLists, AValidatorIsAskedForWhatIsNoEntryOfItsOwn)
{
    Open();
    Each([](auto &list) {
        EXPECT_TRUE(list.IsValid(true)) << "without a validator all is well";
        CountingValidator::LOG log;
        list.SetValidator(new CountingValidator(log));
        Fill(list,
             {{EDC_VUDF, ""}, {EDC_VVAL, "Alu"}, {EDC_VVAL, "Beton"}, {EDC_VNUL, "(nichts)"}, {5, "Blei"}});
        const struct {
            int selected;
            bool valid;
            int asked;
            const char *text;
        } rows[] = {
            {-1, false, 1, ""},     {0, false, 1, ""}, {1, true, 1, "Alu"},
            {2, false, 1, "Beton"}, {3, true, 0, ""},  {4, true, 0, ""},
        };
        for (const auto &row : rows) {
            for (bool report : {false, true}) {
                list.SetSelIndex(row.selected);
                log = {};
                EXPECT_EQ(list.IsValid(report), row.valid) << row.selected;
                EXPECT_EQ(log.asked, row.asked) << row.selected;
                EXPECT_EQ(log.text, row.text) << row.selected;
                EXPECT_EQ(log.errors, report && !row.valid ? 1 : 0) << row.selected;
            }
        }
        list.SetValidator(NULL);
    });
}

TEST_F(EdcLists, AnUndefinedTextIsEmptyForItsValidator)
{
    Open();
    CountingValidator::LOG log;
    combo->SetValidator(new CountingValidator(log));
    combo->SetText("   ");
    EXPECT_FALSE(combo->IsValid(false));
    EXPECT_EQ(log.text, "");
    combo->SetText(" A");
    EXPECT_FALSE(combo->IsValid(false));
    EXPECT_EQ(log.text, " A");
    combo->SetValidator(NULL);
}

TEST_F(EdcLists, OwnTheirValidators)
{
    CountingValidator::LOG first, second, third;
    Open();
    Each([&](auto &list) {
        first = second = {};
        list.SetValidator(new CountingValidator(first));
        list.SetValidator(list.GetValidator());
        EXPECT_EQ(first.deleted, 0) << "the same one stays";
        list.SetValidator(new CountingValidator(second));
        EXPECT_EQ(first.deleted, 1);
        list.SetValidator(NULL);
        EXPECT_EQ(second.deleted, 1);
        EXPECT_EQ(list.GetValidator(), static_cast<TValidator *>(NULL));
        list.SetValidator(new CountingValidator(third));
    });
    dialog.reset();
    EXPECT_EQ(third.deleted, 3) << "and go with the dialog";
}

TEST_F(EdcLists, ShowTheirValidatorsHintAndFollowItsCommaKey)
{
    CountingValidator::LOG log;
    new TEdcComboBox(dialog.get(), CHOICE, SHORTSTRMAX, new CountingValidator(log));
    combo = new TEdcComboBox(dialog.get(), COMBO, SHORTSTRMAX, new CountingValidator(log, WIN_VALIDATOR_POINT));
    box = new TEdcListBox(dialog.get(), BOX, new CountingValidator(log));
    dialog->Create();
    testdoor::DialogBox door(*dialog);
    for (int id : {CHOICE, COMBO, BOX})
        EXPECT_EQ(door.Tip(id), "beginnt mit A") << id;
    door.Type(COMBO, "1,5");
    EXPECT_EQ(combo->Text(), "1.5");
    combo->SetValidator(new CountingValidator(log));
    door.Type(COMBO, "1,5");
    EXPECT_EQ(combo->Text(), "1,5");
    combo->SetValidator(new CountingValidator(log, WIN_VALIDATOR_POINT));
    door.Type(COMBO, "2,5");
    EXPECT_EQ(combo->Text(), "2.5");
    combo->SetValidator(NULL);
    box->SetValidator(NULL);
    EXPECT_EQ(door.Tip(COMBO), "");
    EXPECT_EQ(door.Tip(BOX), "");
    door.Type(COMBO, "3,5");
    EXPECT_EQ(combo->Text(), "3,5");
    dialog.reset(); // with the last validator
}

TEST_F(EdcLists, RefuseToCloseAndTakeTheFocus)
{
    Open();
    testdoor::DialogBox door(*dialog);
    Each([&door](auto &list) {
        CountingValidator::LOG log;
        list.SetValidator(new CountingValidator(log));
        Fill(list, {{EDC_VVAL, "Alu"}, {EDC_VVAL, "Beton"}});
        list.SetSelIndex(1);
        door.Click(OTHER);
        EXPECT_FALSE(list.CanClose());
        EXPECT_EQ(log.errors, 1);
        EXPECT_EQ(door.Focus(), list.Id());
        list.SetSelIndex(0);
        door.Click(OTHER);
        EXPECT_TRUE(list.CanClose());
        EXPECT_EQ(log.errors, 1);
        EXPECT_EQ(door.Focus(), OTHER);
        list.SetValidator(NULL);
    });
}

TEST_F(EdcLists, AFailureOfTheValidatorRefusesToo)
{
    struct FAILING : TEdcValueValidator {
        FAILING() : TEdcValueValidator(true) {}
        bool IsValid(const char *) override
        {
            XRaise(XGENERAL, __FILE__, __LINE__);
            return true;
        }
    };
    Open();
    Each([](auto &list) {
        list.SetValidator(new FAILING);
        EXPECT_FALSE(list.IsValid(true));
        EXPECT_STREQ(xCode, XGENERAL);
        XTakeOff(0);
        EXPECT_FALSE(list.CanClose());
        EXPECT_STREQ(xCode, XGENERAL);
        XTakeOff(0);
        list.SetValidator(NULL);
    });
}
