#include "tools/zulcalc_json.h"
#include "tools/console.h"
#include "usr/zulreport.h"

#include <charconv>
#include <cmath>
#include <nlohmann/json.hpp>

namespace
{
using JSON = nlohmann::ordered_json;

JSON Number(double value)
{
    if (std::isnan(value))
        return "NaN";
    if (std::isinf(value))
        return value > 0 ? "Infinity" : "-Infinity";
    return value;
}

JSON Numbers(std::initializer_list<double> values)
{
    JSON list = JSON::array();
    for (double value : values)
        list.push_back(Number(value));
    return list;
}

JSON Text(const char *text)
{
    return ConsoleUtf8(text);
}

JSON Texts(const std::vector<std::string> &texts)
{
    JSON list = JSON::array();
    for (const std::string &text : texts)
        list.push_back(Text(text.c_str()));
    return list;
}

JSON InfoJson(const TZulMapInfo &info)
{
    return {{"height", Number(info.height)},
            {"minInte", Number(info.minInte)},
            {"maxInte", Number(info.maxInte)},
            {"meanInte", Number(info.meanInte)},
            {"spread", Number(info.spread)},
            {"sumInte", Number(info.sumInte)},
            {"loss", Number(info.loss)},
            {"emittPower", Number(info.emittPower)},
            {"airhtPower", Number(info.airhtPower)},
            {"area", Number(info.area)},
            {"volume", Number(info.volume)},
            {"airTemp", Number(info.airTemp)},
            {"maxAirTemp", Number(info.maxAirTemp)},
            {"maxFuel", Number(info.maxFuel)},
            {"yearFuel", Number(info.yearFuel)},
            {"yearCost", Number(info.yearCost)},
            {"fuelUnit", Text(info.fuelUnit)}};
}

JSON MapJson(const ZulcalcEvaluation &evaluation)
{
    const ZulPassMap &map = evaluation.map;
    if (!map.HasMap())
        return nullptr;
    ZulScaleTexts texts = ZulMakeScale(*evaluation.room, evaluation.info, map);
    JSON rows = JSON::array();
    for (const auto &[intensity, temperature] : texts.rows)
        rows.push_back(Texts({intensity, temperature}));
    return {{"lo", Number(map.lo)},
            {"hi", Number(map.hi)},
            {"hist", map.pixels.Histogram(map.colors->count)},
            {"line1", Text(texts.line1.c_str())},
            {"line2", Text(texts.line2.c_str())},
            {"scale", std::move(rows)}};
}

JSON SurfacesJson(const EmSURFACESET &surfaces)
{
    JSON list = JSON::array();
    for (const EmSURFACE *s = surfaces.First(); s != NULL; s = EmSURFACESET::Next(s)) {
        JSON holes = JSON::array();
        for (const EmHOLE *h = s->Holes()->First(); h != NULL; h = EmHOLESET::Next(h))
            holes.push_back(Numbers({h->constr.tSurf, h->constr.qSurf}));
        list.push_back({{"tSurf", Number(s->constr->tSurf)},
                        {"qSurf", Number(s->constr->qSurf)},
                        {"holes", std::move(holes)}});
    }
    return list;
}

JSON PointsJson(const ZulcalcEvaluation &evaluation, const std::vector<AgPOINT> &points)
{
    JSON list = JSON::array();
    for (const AgPOINT &p : points) {
        ZulcalcPoint at = AskPoint(evaluation, p);
        list.push_back({{"p", Numbers({p.x, p.y, p.z})},
                        {"irradiation", Number(at.irradiation)},
                        {"operative", Number(at.operative)},
                        {"headTemp", Number(at.headTemp)},
                        {"diffTemp", Number(at.diffTemp)},
                        {"headInte", Number(at.headInte)},
                        {"class", {at.headTempClass, at.diffTempClass, at.headInteClass}}});
    }
    return list;
}

JSON CriterionJson(const ZulCriterionMap &map)
{
    return {{"min", Number(map.band.min)},
            {"max", Number(map.band.max)},
            {"tol", Number(map.band.tol)},
            {"hist", map.pixels.Histogram(criterionColors.count)}};
}

JSON HygieneJson(const ZulHygieneMaps &hygiene)
{
    if (!hygiene.HasMaps())
        return nullptr;
    return {{"pixels", hygiene.total},
            {"passed", hygiene.passed},
            {"maps",
             {{"headTemp", CriterionJson(hygiene.headTemp)},
              {"diffTemp", CriterionJson(hygiene.diffTemp)},
              {"headInte", CriterionJson(hygiene.headInte)}}}};
}

JSON ListsJson(const EmROOM &room)
{
    const char *names[EmSURFACESET::COUNT] = {"floor", "ceiling", "A", "B", "C", "D"};
    JSON holes = JSON::object();
    int i = 0;
    for (const EmSURFACE *s = room.Surfaces()->First(); s != NULL; s = EmSURFACESET::Next(s))
        holes[names[i++]] = Texts(ZulHoleList(*s->Holes()));
    return {{"emitters", Texts(ZulEmitterList(*room.Emitters()))},
            {"airheaters", Texts(ZulAirHeaterList(*room.AirHeaters()))},
            {"holes", std::move(holes)}};
}

JSON TimingJson(const ZulcalcTiming &timing)
{
    return {{"load", timing.load}, {"pass", timing.pass}, {"hygiene", timing.hygiene}, {"save", timing.save}};
}

bool IsNested(const JSON &value)
{
    if (!value.is_structured())
        return false;
    for (const JSON &item : value)
        if (item.is_structured())
            return true;
    return value.is_object();
}

void AppendValue(std::string &text, const JSON &value, const std::string &indent);

/// Lists of plain values stand on one line, all else one item a line.
void AppendItems(std::string &text, const JSON &value, const std::string &indent)
{
    bool isNested = IsNested(value);
    std::string inner = indent + "  ";
    const char *separator = "";
    for (const auto &[key, item] : value.items()) {
        text += separator;
        text += isNested ? "\n" + inner : *separator != '\0' ? " " : "";
        if (value.is_object())
            text += JSON(key).dump() + ": ";
        AppendValue(text, item, inner);
        separator = ",";
    }
    if (isNested && !value.empty())
        text += "\n" + indent;
}

/// The library's own output of doubles is not always the shortest that reads back; the standard's is.
void AppendValue(std::string &text, const JSON &value, const std::string &indent)
{
    if (value.is_structured()) {
        text += value.is_object() ? '{' : '[';
        AppendItems(text, value, indent);
        text += value.is_object() ? '}' : ']';
    } else if (value.is_number_float()) {
        char digits[32];
        text.append(digits, std::to_chars(digits, digits + sizeof digits, value.get<double>()).ptr);
    } else {
        text += value.dump();
    }
}
} // namespace

std::string JsonText(const ZulcalcEvaluation &evaluation, const ZulcalcOptions &options)
{
    const EmRASTER &raster = evaluation.map.raster;
    JSON root = {{"info", InfoJson(evaluation.info)},
                 {"columns", raster.columns},
                 {"rows", raster.rows},
                 {"step", Number(raster.step)},
                 {"map", MapJson(evaluation)},
                 {"surfaces", SurfacesJson(*evaluation.room->Surfaces())},
                 {"points", PointsJson(evaluation, options.points)},
                 {"hygiene", HygieneJson(evaluation.hygiene)},
                 {"lists", ListsJson(*evaluation.room)}};
    if (options.timing)
        root["timing"] = TimingJson(evaluation.timing);
    std::string text;
    AppendValue(text, root, "");
    return text + '\n';
}
