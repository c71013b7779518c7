#include "support/testcatalog.h"

#include "lib/charstr.h"

#include <memory>

#include "lib/xon.h"

namespace
{
ResCONTROL Line(ResCONTROLKIND kind, int id, const char *text)
{
    return {kind, id, text, 0, 0, 0, 0, 0, 0};
}

/// A field of an item that a user has to fill.
void AddEdit(TDialog *dialog, int id, int limit, std::unique_ptr<TValidator> validator)
{
    auto *edit = new TEdcEdit(dialog, id, limit);
    edit->SetValidator(validator.release());
}

template <class ITEM>
TEdcCtlgItem *NewOf(TEdcCtlgItem *copy)
{
    TEdcCtlgItem *item = NULL;
    __enter
        item = copy != NULL ? new ITEM(*static_cast<ITEM *>(copy)) : new ITEM;
    __point
    __treat
    return item;
}
} // namespace

CatalogTables::CatalogTables()
{
    added.Add(TEST_UNIT_DIALOG, "Gerät",
              {Line(RES_LABEL, -1, "&Typ"), Line(RES_EDIT, TEST_KEY, ""), Line(RES_LABEL, -1, "&Leistung"),
               Line(RES_EDIT, TEST_OUTPUT, ""), Line(RES_LABEL, -1, "L&änge"), Line(RES_EDIT, TEST_LENGTH, ""),
               Line(RES_DEFAULT, 1, "OK"), Line(RES_BUTTON, 2, "Abbrechen")});
    added.Add(TEST_PART_DIALOG, "Teil",
              {Line(RES_LABEL, -1, "&Name"), Line(RES_EDIT, TEST_KEY, ""), Line(RES_LABEL, -1, "&Wert"),
               Line(RES_EDIT, TEST_OUTPUT, ""), Line(RES_DEFAULT, 1, "OK"), Line(RES_BUTTON, 2, "Abbrechen")});
}

CdeITEMS UnitItems(const UNITS &units)
{
    CdeITEMS items = {ItHeader("SCAT/TEST/ZEC", 1)};
    for (const UNIT &unit : units)
        items = std::move(items) + ItGroup({ItStr(unit.key), ItReal(unit.output), ItReal(unit.length)});
    return items;
}

CdeITEMS GroupItems(const GROUPS &groups)
{
    CdeITEMS items = {ItHeader("DCAT/PARTS/ZEC", 1)};
    for (const PARTS &group : groups) {
        CdeITEMS inner = {ItStr(group.name)};
        for (const PART &part : group.parts)
            inner = std::move(inner) + CdeITEMS{ItStr(part.name), ItReal(part.value)};
        items = std::move(items) + ItGroup(inner);
    }
    return items;
}

std::string RandomName(CHANCE &chance, int number)
{
    const char *const words[] = {"Wand",
                                 "T\xFCr",
                                 "Gr\xF6\xDF"
                                 "e",
                                 "\xC4u\xDF"
                                 "ere",
                                 "Fenster",
                                 "\x80uro",
                                 "K-Wert",
                                 "2,5",
                                 "M\xD6"
                                 "BEL",
                                 "\xBD Zoll"};
    std::string name = chance.Of(words);
    while (chance.One(2) && name.size() < 16)
        name += std::string(" ") + chance.Of(words);
    return name + " " + std::to_string(number);
}

UNITS RandomUnits(CHANCE &chance, int count)
{
    UNITS units;
    for (int i = 0; i < count; ++i)
        units.push_back({RandomName(chance, i), chance.Real(0, 1e6), chance.Real(-1, 1)});
    return units;
}

GROUPS RandomGroups(CHANCE &chance, int count, int most)
{
    GROUPS groups;
    for (int i = 0; i < count; ++i) {
        PARTS &group = groups.emplace_back(PARTS{RandomName(chance, i), {}});
        for (int parts = chance.Int(0, most); parts > 0; --parts)
            group.parts.push_back({RandomName(chance, parts), chance.Real(0, 10)});
    }
    return groups;
}

void TestUnit::GetName(char *buf, int max)
{
    StrCopy(buf, record.key.id == EDC_VVAL ? record.key.text : "", max);
}

void TestUnit::Read(CdeFILE &file, int ver)
{
    __enter
        char key[LONGSTRMAX] = "";
        version = ver;
        file.GetSection(); __test;
        file.GetStr(key, LONGSTRMAX); __test;
        record.key = key;
        double output = file.GetReal(); __test;
        record.output.Set(output);
        double length = file.GetReal(); __test;
        record.length.Set(length);
        file.EndSection(1); __test;
    __point
    __treat
}

void TestUnit::Write(CdeFILE &file)
{
    __enter
        file.PutSection(0); __test;
        file.PutStr(record.key.text); __test;
        file.PutReal(record.output.value); __test;
        file.PutReal(record.length.value); __test;
        file.PutEnd(); __test;
    __point
    __treat
}

TestUnitDialog::TestUnitDialog() : TEdcDialog(TEST_UNIT_DIALOG)
{
    AddEdit(this, TEST_KEY, LONGSTRMAX, std::make_unique<TEdcValueValidator>(false));
    AddEdit(this, TEST_OUTPUT, SHORTSTRMAX, std::make_unique<TEdcFloatValidator>(0, 1e9, false, nullptr));
    AddEdit(this, TEST_LENGTH, SHORTSTRMAX, std::make_unique<TEdcFloatValidator>(-1e9, 1e9, false, nullptr));
}

TEdcCtlgItem *TestSimpleCatalog::NewItem(TEdcCtlgItem *copy)
{
    return NewOf<TestUnit>(copy);
}

UNITS TestSimpleCatalog::Values() const
{
    UNITS units;
    for (TEdcCtlgItem *item = TEdcCtlgItem::First(*this); item != NULL; item = item->Next())
        units.push_back(static_cast<TestUnit *>(item)->Values());
    return units;
}

void TestSimpleCatalog::Put(const UNITS &units)
{
    Clear();
    for (const UNIT &unit : units) {
        auto *item = new TestUnit;
        item->record.key = unit.key.c_str();
        item->record.output.Set(unit.output);
        item->record.length.Set(unit.length);
        item->RefreshName();
        item->Insert(this);
    }
    loaded = true;
}

void TestPart::GetName(char *buf, int max)
{
    StrCopy(buf, record.name.id == EDC_VVAL ? record.name.text : "", max);
}

void TestPart::Read(CdeFILE &file, int)
{
    __enter
        char text[SHORTSTRMAX] = "";
        file.GetStr(text, SHORTSTRMAX); __test;
        record.name = text;
        double value = file.GetReal(); __test;
        record.value.Set(value);
    __point
    __treat
}

void TestPart::Write(CdeFILE &file)
{
    __enter
        file.PutStr(record.name.text); __test;
        file.PutReal(record.value.value); __test;
    __point
    __treat
}

TestPartDialog::TestPartDialog() : TEdcDialog(TEST_PART_DIALOG)
{
    AddEdit(this, TEST_KEY, SHORTSTRMAX, std::make_unique<TEdcValueValidator>(false));
    AddEdit(this, TEST_OUTPUT, SHORTSTRMAX, std::make_unique<TEdcFloatValidator>(0, 1e9, false, nullptr));
}

TEdcCtlgItem *TestDividedCatalog::NewItem(TEdcCtlgItem *copy)
{
    return NewOf<TestPart>(copy);
}

GROUPS TestDividedCatalog::Values() const
{
    GROUPS values;
    for (LINK *link = First(); link != NULL; link = link->Next()) {
        auto *group = static_cast<TEdcCtlgGroup *>(link);
        PARTS &parts = values.emplace_back(PARTS{group->name, {}});
        for (TEdcCtlgItem *item = TEdcCtlgItem::First(*group); item != NULL; item = item->Next()) {
            auto *part = static_cast<TestPart *>(item);
            parts.parts.push_back({part->record.name.text, part->record.value.value});
        }
    }
    return values;
}

void TestDividedCatalog::Put(const GROUPS &values)
{
    Clear();
    for (const PARTS &parts : values) {
        auto *group = new TEdcCtlgGroup;
        StrCopy(group->name, parts.name.c_str(), SHORTSTRMAX);
        group->Insert(this);
        for (const PART &part : parts.parts) {
            auto *item = new TestPart;
            item->record.name = part.name.c_str();
            item->record.value.Set(part.value);
            item->RefreshName();
            item->Insert(group);
        }
    }
    loaded = true;
}
