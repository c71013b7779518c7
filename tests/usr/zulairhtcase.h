// A layer of warm-air units on the floor of a hall, and what is known of a unit as plain texts.
#ifndef TESTS_USR_ZULAIRHTCASE_H
#define TESTS_USR_ZULAIRHTCASE_H

#include "lib/charstr.h"
#include "usr/zulairht.h"
#include "zullayercase.h"

/// In the order of the record.
enum UnitField { TYPE_NAME, OUTPUT, TEMP_RISE, AIR_FLOW, LENGTH, WIDTH, HEIGHT, UNIT_FIELDS };
using UNITVALUES = std::array<std::string, UNIT_FIELDS>;

/// Two values for each field. No type is "-", an undefined field "?".
const UNITVALUES unitOnes = {"WG 24", "24000", "26", "2700", "4", "2", "0.8"};
const UNITVALUES unitOthers = {"T\xFCrschleier", "18000", "18.5", "3000", "3", "0.5", "0.4"};
const UNITVALUES unitNone = {"-", "?", "?", "?", "?", "?", "?"};

/// The ones, but for the fields of `others`.
inline UNITVALUES MixedUnit(unsigned others)
{
    UNITVALUES values = unitOnes;
    for (size_t i = 0; i < values.size(); ++i)
        if (Has(others, i))
            values[i] = unitOthers[i];
    return values;
}

inline void SetUnit(EmAIRHEATER &unit, const UNITVALUES &values)
{
    StrCopy(unit.type, values[TYPE_NAME] == "-" ? "" : values[TYPE_NAME].c_str(), sizeof unit.type);
    unit.power = atof(values[OUTPUT].c_str());
    unit.tempRise = atof(values[TEMP_RISE].c_str());
    unit.airFlow = atof(values[AIR_FLOW].c_str());
    unit.size =
        AgPOINT(atof(values[LENGTH].c_str()), atof(values[WIDTH].c_str()), atof(values[HEIGHT].c_str()));
}
/// All that the unit holds, its type taken or not.
inline UNITVALUES ValuesOf(const EmAIRHEATER &unit)
{
    return {*unit.type ? unit.type : "-", Shown(unit.power),  Shown(unit.tempRise), Shown(unit.airFlow),
            Shown(unit.size.x),           Shown(unit.size.y), Shown(unit.size.z)};
}
inline UNITVALUES ValuesOf(const TZulAirHeaterData &data)
{
    std::string type = data.typeName.id == EDC_VVAL ? data.typeName.text : "?";
    return {data.typeName.id == EDC_VNUL ? "-" : type,
            Shown(data.output),
            Shown(data.tempRise),
            Shown(data.airFlow),
            Shown(data.length),
            Shown(data.width),
            Shown(data.height)};
}

class SeenUnitLayer : public TZulAirHeaterLayer
{
public:
    using TZulAirHeaterLayer::stock;
    using TZulAirHeaterLayer::TZulAirHeaterLayer;
};

class UnitCase : public LayerCase
{
protected:
    UnitCase() { Ready(layer); }

    EmAIRHEATER *Put(const AgPOINT &middle, const UNITVALUES &values)
    {
        auto *unit = new EmAIRHEATER;
        SetUnit(*unit, values);
        unit->pos = middle;
        unit->Insert(set);
        return unit;
    }
    void Show()
    {
        layer.Reload(NULL);
        LayOut(layer);
    }
    TZulAirHeaterSprite *Alone(const AgPOINT &middle, const UNITVALUES &values)
    {
        set->Clear();
        Put(middle, values);
        Show();
        return First();
    }
    TZulAirHeaterSprite *Alone(const AgPOINT &middle, double length, double width)
    {
        Alone(middle, unitOnes);
        set->First()->size = AgPOINT(length, width);
        LayOut(layer);
        return First();
    }
    TZulAirHeaterSprite *First() { return static_cast<TZulAirHeaterSprite *>(layer.LnkFirst()); }
    TZulAirHeaterSprite *Last() { return static_cast<TZulAirHeaterSprite *>(layer.LnkLast()); }
    std::vector<TZulAirHeaterSprite *> Sprites()
    {
        std::vector<TZulAirHeaterSprite *> all;
        for (TEdcSprite *spr = layer.LnkFirst(); spr; spr = layer.LnkNext(spr))
            all.push_back(static_cast<TZulAirHeaterSprite *>(spr));
        return all;
    }
    std::vector<EmAIRHEATER *> InSet()
    {
        std::vector<EmAIRHEATER *> all;
        for (EmAIRHEATER *unit = set->First(); unit; unit = EmAIRHEATERSET::Next(unit))
            all.push_back(unit);
        return all;
    }
    std::string Places()
    {
        std::string text;
        for (const EmAIRHEATER *unit : InSet())
            text +=
                EdcFormat("%s%.6g,%.6g,%.6g", text.empty() ? "" : ";", unit->pos.x, unit->pos.y, unit->pos.z);
        return text;
    }
    TEdcDrawCreation Creation(int tool)
    {
        TEdcDrawCreation creation;
        creation.type = tool;
        creation.stock = &layer.stock;
        return creation;
    }
    void FillStock()
    {
        EmAIRHEATER unit;
        SetUnit(unit, unitOnes);
        layer.stock.Exchange(EDC_XLOAD, unit);
        layer.stock.target = set;
    }

    EmAIRHEATERSET *set = room.AirHeaters();
    SeenUnitLayer layer{set, &axes};
};

#endif
