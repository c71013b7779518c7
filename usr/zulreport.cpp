#include "usr/zulreport.h"
#include "lib/charstr.h"
#include "lib/platform.h"
#include "lib/xassert.h"
#include "usr/edcutils.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstring>

namespace
{
enum {
    TEXT_FLOOR = 1680,
    TEXT_WALLS = 1681,
    TEXT_CEILING = 1682,
    TEXT_AIR_CHANGE = 1683,
    TEXT_CLIMATE = 1684,
    TEXT_FUEL = 1685,
    TEXT_GAIN = 1686,
    TEXT_SIZES = 1687,
    TEXT_EMITTER_HEAD = 1691,
    TEXT_AIR_HEATER_HEAD = 1693,
    TEXT_HOLE_HEAD = 1695,
    TEXT_HALL = 1700,
    TEXT_POWER = 1701,
    TEXT_FUEL_USE = 1702,
    TEXT_IRRADIATION = 1703,
    TEXT_AIR_TEMP = 1704,
    TEXT_UNREACHABLE = 1705,
    TEXT_WORKPLACE = 1721,
    TEXT_CONDITIONS = 1722,
    TEXT_NOTHING = 20510,
};

enum { BLOCK_ROWS = 5 };

/// Where a value stands in each row of a list.
struct COLUMN {
    int begin; // characters
    int end;   // behind it
    bool isName;
};
struct LISTHEAD {
    int titles; // number of the text: titles with blanks between them, hard blanks within them
    std::vector<COLUMN> columns;
};

/// The columns follow the formats of the rows below.
LISTHEAD ListHead(ZulLIST list)
{
    switch (list) {
    case ZUL_EMITTER_LIST:
        return {TEXT_EMITTER_HEAD,
                {{0, 3, true},
                 {5, 18, true},
                 {19, 25, false},
                 {27, 33, false},
                 {34, 40, false},
                 {41, 47, false},
                 {50, 53, false},
                 {58, 61, false}}};
    case ZUL_AIR_HEATER_LIST:
        return {TEXT_AIR_HEATER_HEAD,
                {{0, 3, true}, {5, 24, true}, {25, 31, false}, {35, 41, false}, {48, 54, false}}};
    default:
        return {TEXT_HOLE_HEAD,
                {{0, 3, true},
                 {6, 11, false},
                 {13, 19, false},
                 {20, 27, false},
                 {29, 35, false},
                 {38, 44, false},
                 {48, 71, true}}};
    }
}

double Noiseless(double value)
{
    return EdcRound(value, EDC_NOISE);
}

/// Whole degrees; an angle beyond all counting shows the largest number there is, one that is no number 0.
int WholeDegrees(double radians)
{
    double degrees = EdcRound(radians * 180 / AgPI, 0);
    if (std::isnan(degrees))
        return 0;
    return static_cast<int>(std::clamp<double>(degrees, INT_MIN, INT_MAX));
}

/// Rows gathered into blocks; the markup signs of names lose their meaning, and blanks hold the columns.
class ListRows
{
public:
    void Add(const std::string &row)
    {
        if (rows++ % BLOCK_ROWS == 0)
            blocks.emplace_back();
        blocks.back() += row;
    }

    ZulListBlocks Finished()
    {
        for (std::string &block : blocks) {
            std::replace_if(
                block.begin(), block.end(), [](char c) { return c == '_' || c == '^' || c == ' '; }, '~');
            block.pop_back(); // the line break of the last row
        }
        return std::move(blocks);
    }

    int NextNumber() const { return rows + 1; }

private:
    ZulListBlocks blocks;
    int rows = 0;
};

std::string ConstructionText(int id, const EmCONSTRUCTION &constr)
{
    return EdcResFormat(id, Noiseless(constr.k), Noiseless(constr.tExt));
}

std::string ClimateText(const EmROOMDATA &data)
{
    return EdcResFormat(TEXT_CLIMATE, data.periodDays, Noiseless(data.meanOutTemp),
                        Noiseless(data.designOutTemp), data.weekDays, Noiseless(data.dayHours),
                        Noiseless(data.runAirTemp), Noiseless(data.resultTemp), Noiseless(data.reducedAirTemp));
}

std::string FuelText(const EmROOMDATA &data, const EmBOX &box)
{
    return EdcResFormat(TEXT_FUEL, FuelName(data.fuelType), Noiseless(data.regulation),
                        Noiseless(data.fuelPrice), CurrencySymbol(), FuelUnit(data.fuelType, true)) +
           EdcResFormat(TEXT_GAIN, Noiseless(data.techGain * 0.001)) +
           EdcResFormat(TEXT_SIZES, Noiseless(box.Length()), Noiseless(box.Width()), Noiseless(box.Height()));
}

std::string FuelUseText(const TZulMapInfo &info)
{
    const char *warning = info.maxAirTemp < info.airTemp ? ResText(TEXT_UNREACHABLE) : "";
    return EdcResFormat(TEXT_FUEL_USE, EdcRound(info.maxFuel, -2), info.fuelUnit, EdcRound(info.yearFuel, 0),
                        info.fuelUnit, EdcRound(info.yearCost * 0.001, 0), CurrencySymbol()) +
           EdcResFormat(TEXT_AIR_TEMP, EdcRound(info.maxAirTemp, -1), EdcRound(info.airTemp, -1), warning);
}

std::string IrradiationText(const TZulMapInfo &info)
{
    double percent = std::trunc(std::fabs(info.spread) * 100);
    return EdcResFormat(TEXT_IRRADIATION, Noiseless(info.height), EdcRound(info.minInte, -1),
                        EdcRound(info.maxInte, -1), EdcRound(info.meanInte, -1), percent);
}
} // namespace

std::vector<ZulTITLE> ZulColumnTitles(ZulLIST list, int rowChar, int headChar)
{
    ASSERT(rowChar > 0 && headChar > 0);
    std::vector<ZulTITLE> titles;
    LISTHEAD head = ListHead(list);
    const char *title = ResText(head.titles);
    int end = 0; // px, of the title before
    for (const COLUMN &column : head.columns) {
        int length = static_cast<int>(std::strcspn(title, " "));
        int begin = column.begin * rowChar;
        int spare = column.end * rowChar - begin - length * headChar;
        int shift = column.isName ? 0 : spare >= 0 ? spare : -((1 - spare) / 2);
        int place = std::max(begin + shift, titles.empty() ? 0 : end + (headChar + 1) / 2); // none touches
        int blanks = (place - end + headChar - 1) / headChar;
        if (!titles.empty())
            titles.back().text.append(static_cast<size_t>(blanks), '~');
        titles.push_back({place, std::string(title, static_cast<size_t>(length))});
        end = place + length * headChar;
        title += length + static_cast<int>(std::strspn(title + length, " "));
    }
    return titles;
}

std::string ZulColumnHead(ZulLIST list)
{
    std::string text;
    for (const ZulTITLE &title : ZulColumnTitles(list, 1, 1))
        text += title.text;
    return text;
}

std::string ZulCut(const char *text, int max)
{
    std::string cut = text;
    if (cut.size() > static_cast<size_t>(max))
        cut = cut.substr(0, static_cast<size_t>(max - 3)) + "...";
    return cut;
}

ZulListBlocks ZulEmitterList(const EmEMITTERSET &set)
{
    ListRows rows;
    for (const EmEMITTER *e = set.First(); e != NULL; e = EmEMITTERSET::Next(e)) {
        const char *name = e->model != NULL ? e->model->Info()->name : ResText(TEXT_NOTHING);
        rows.Add(EdcFormat("%-3d  %-13s %6.0lf  %6.2lf %6.2lf %6.2lf   %3d     %3d\n", rows.NextNumber(),
                           ZulCut(name, 13).c_str(), Noiseless(e->power), Noiseless(e->pos.x),
                           Noiseless(e->pos.y), Noiseless(e->pos.z), WholeDegrees(e->rotation),
                           WholeDegrees(e->tilt)));
    }
    return rows.Finished();
}

ZulListBlocks ZulAirHeaterList(const EmAIRHEATERSET &set)
{
    ListRows rows;
    for (const EmAIRHEATER *unit = set.First(); unit != NULL; unit = EmAIRHEATERSET::Next(unit)) {
        if (StrIsBlank(unit->type))
            rows.Add(EdcFormat("%-3d  %-13s\n", rows.NextNumber(), ResText(TEXT_NOTHING)));
        else
            rows.Add(EdcFormat("%-3d  %-19s %6.0lf    %6.0lf       %6.2lf\n", rows.NextNumber(),
                               ZulCut(unit->type, 19).c_str(), Noiseless(unit->power), Noiseless(unit->airFlow),
                               Noiseless(unit->tempRise)));
    }
    return rows.Finished();
}

ZulListBlocks ZulHoleList(const EmHOLESET &set)
{
    ListRows rows;
    for (const EmHOLE *hole = set.First(); hole != NULL; hole = EmHOLESET::Next(hole))
        rows.Add(EdcFormat("%-3d   %5.3lf  %6.2lf %7.2lf  %6.2lf   %6.2lf    %s\n", rows.NextNumber(),
                           Noiseless(hole->constr.k), Noiseless(hole->OuterTemp()),
                           Noiseless(hole->size.x * hole->size.y), Noiseless(hole->size.x),
                           Noiseless(hole->size.y), ZulCut(hole->description, 23).c_str()));
    return rows.Finished();
}

std::vector<std::string> ZulInputTexts(const EmROOM &room)
{
    const EmROOMDATA &data = *room.Data();
    return {ConstructionText(TEXT_FLOOR, data.constr[EM_FLOOR]),
            ConstructionText(TEXT_CEILING, data.constr[EM_CEILING]),
            ConstructionText(TEXT_WALLS, data.constr[EM_WALLS]),
            EdcResFormat(TEXT_AIR_CHANGE, Noiseless(data.airChange), Noiseless(data.airTemp)),
            ClimateText(data),
            FuelText(data, room.Box())};
}

std::vector<std::string> ZulEvaluationTexts(const TZulMapInfo &info)
{
    return {EdcResFormat(TEXT_HALL, EdcRound(info.loss, 0), Noiseless(info.area), Noiseless(info.volume)),
            EdcResFormat(TEXT_POWER, Noiseless(info.emittPower), Noiseless(info.airhtPower),
                         Noiseless(info.emittPower + info.airhtPower)),
            FuelUseText(info), IrradiationText(info)};
}

std::vector<std::string> ZulHygieneTexts(const EmROOM &room)
{
    const EmROOMDATA &data = *room.Data();
    if (data.workClass == 0)
        return {};
    return {EdcResFormat(TEXT_WORKPLACE, WorkName(data.workClass), PositionName(data.position)),
            EdcResFormat(TEXT_CONDITIONS, WorkEnergy(data.workClass))};
}
