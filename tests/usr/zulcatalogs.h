// The catalogues of the application for tests: filled from plain values and read back into them, and their
// files made item by item.
#ifndef TESTS_USR_ZULCATALOGS_H
#define TESTS_USR_ZULCATALOGS_H

#include "lib/charstr.h"
#include "lib/disk.h"
#include "support/testcatalog.h"
#include "usr/zulairht.h"
#include "usr/zulhole.h"

#include <array>
#include <string>
#include <vector>

// Groups of building elements are GROUPS: a part is an element, its value the transmittance.

/// A warm-air unit: output, temperature rise, air flow, length, width, height.
struct HEATER {
    std::string type;
    std::array<double, 6> numbers;

    bool operator==(const HEATER &) const = default;
};
using HEATERS = std::vector<HEATER>;

inline std::string Text(const char *utf8) // in the system's character set
{
    char text[LONGSTRMAX];
    return TextFromUtf8(text, utf8, sizeof text) ? text : "?";
}

inline CdeITEMS ElementItems(const GROUPS &groups)
{
    CdeITEMS items = GroupItems(groups);
    items[0] = ItHeader("DCAT/TEMPHOLE/ZEC", 1);
    return items;
}

inline CdeITEMS HeaterItems(const HEATERS &heaters)
{
    CdeITEMS items = {ItHeader("SCAT/AIRHEATER/ZEC", 1)};
    for (const HEATER &heater : heaters) {
        items.push_back(ItStr(heater.type));
        for (double number : heater.numbers)
            items.push_back(ItReal(number));
    }
    return items;
}

class ElementCatalog : public TZulHoleTypeCatalog
{
public:
    ElementCatalog() : TZulHoleTypeCatalog(NULL) {}
    using TEdcCtlgList::Load;
    GROUPS Values() const
    {
        GROUPS values;
        for (LINK *link = First(); link != NULL; link = link->Next()) {
            auto *group = static_cast<TEdcCtlgGroup *>(link);
            PARTS &parts = values.emplace_back(PARTS{group->name, {}});
            for (TEdcCtlgItem *item = TEdcCtlgItem::First(*group); item != NULL; item = item->Next()) {
                auto &its = static_cast<TZulHoleTypeItem *>(item)->record;
                parts.parts.push_back({its.name.text, its.transmission.value});
            }
        }
        return values;
    }
    void Put(const GROUPS &values)
    {
        Clear();
        for (const PARTS &parts : values) {
            auto *group = new TEdcCtlgGroup;
            StrCopy(group->name, parts.name.c_str(), SHORTSTRMAX);
            group->Insert(this);
            for (const PART &part : parts.parts) {
                auto *item = new TZulHoleTypeItem;
                item->record.name = part.name.c_str();
                item->record.transmission = part.value;
                item->RefreshName();
                item->Insert(group);
            }
        }
        loaded = true;
    }
};

class HeaterCatalog : public TZulAirHeaterTypeCatalog
{
public:
    HeaterCatalog() : TZulAirHeaterTypeCatalog(NULL) {}
    using TEdcCtlgList::Load;
    static HEATER ValuesOf(const TZulAirHeaterData &data)
    {
        return {data.typeName.text,
                {data.output.value, data.tempRise.value, data.airFlow.value, data.length.value,
                 data.width.value, data.height.value}};
    }
    HEATERS Values() const
    {
        HEATERS values;
        for (TEdcCtlgItem *item = TEdcCtlgItem::First(*this); item != NULL; item = item->Next())
            values.push_back(ValuesOf(static_cast<TZulAirHeaterTypeItem *>(item)->data));
        return values;
    }
    void Put(const HEATERS &heaters)
    {
        Clear();
        for (const HEATER &heater : heaters) {
            auto *item = new TZulAirHeaterTypeItem;
            item->data.typeName = heater.type.c_str();
            item->data.output = heater.numbers[0];
            item->data.tempRise = heater.numbers[1];
            item->data.airFlow = heater.numbers[2];
            item->data.length = heater.numbers[3];
            item->data.width = heater.numbers[4];
            item->data.height = heater.numbers[5];
            item->RefreshName();
            item->Insert(this);
        }
        loaded = true;
    }
};

#endif
