#include "support/plainpass.h"

#include "lib/charstr.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "lib/xon.h"

namespace
{
bool SameBits(double a, double b)
{
    return (std::isnan(a) && std::isnan(b)) || memcmp(&a, &b, sizeof a) == 0;
}

/// A point of the plan as the two scans see it.
struct SCAN {
    int columns;
    int rows;
    double step;
    double xMin;
    double yMin;

    AgPOINT At(int i, int j, double z) const { return {i * step + xMin, (rows - j - 1) * step + yMin, z}; }
};

SCAN PlainScan(const EmBOX &box, bool draft)
{
    double n = 7.0 * 72.0 / (draft ? 3 : 1);
    double step = std::fabs(box.max.x - box.min.x) / n;
    return {static_cast<int>(n) + 1, static_cast<int>(std::fabs(box.max.y - box.min.y) / step) + 1, step,
            std::min(box.min.x, box.max.x), std::min(box.min.y, box.max.y)};
}

void PlainStatistics(const EmROOM &room, const SCAN &scan, TZulMapInfo &info)
{
    double sum = 0;
    double squares = 0;
    for (int i = 0; i < scan.columns; ++i)
        for (int j = 0; j < scan.rows; ++j) {
            double v = room.Irradiation(scan.At(i, j, info.height));
            if (i == 0 && j == 0)
                info.minInte = info.maxInte = v;
            if (v < info.minInte)
                info.minInte = v;
            if (v > info.maxInte)
                info.maxInte = v;
            sum += v;
            squares += v * v;
        }
    double count = static_cast<double>(scan.rows) * scan.columns;
    double mean = sum / count;
    info.meanInte = mean;
    info.sumInte = sum;
    info.spread = mean == 0 ? 0 : std::sqrt((squares - mean * sum) / (count - 1)) / mean;
}

void PlainPaint(const EmROOM &room, const SCAN &scan, const TZulMapInfo &info, ZulPassMap &map)
{
    int n = map.colors->count;
    double kScale = (n - 2) / (map.hi - map.lo);
    map.pixels.Alloc(scan.columns, scan.rows, 0);
    for (int i = 0; i < scan.columns; ++i)
        for (int j = 0; j < scan.rows; ++j) {
            double v = room.Irradiation(scan.At(i, j, info.height));
            double index = std::ceil((v - map.lo) * kScale);
            if (!(index >= 0))
                index = 0;
            if (index > n - 1)
                index = n - 1;
            map.pixels.Row(j)[i] = static_cast<uint8_t>(index);
        }
}

int PlainClass(const EmCRITERION &band, double v)
{
    double lowTol = band.min - band.tol < -DBL_MAX ? -DBL_MAX : band.min - band.tol;
    double highTol = band.max + band.tol > DBL_MAX ? DBL_MAX : band.max + band.tol;
    if (band.min <= v && v <= band.max)
        return 0;
    return lowTol <= v && v <= highTol ? 1 : 2;
}

template <class VALUE>
void PlainCriterion(const SCAN &scan, const EmCRITERION &band, ZulCriterionMap &map, ZulHygieneMaps &out,
                    const VALUE &value)
{
    map.band = band;
    map.pixels.Alloc(scan.columns, scan.rows, 0);
    for (int i = 0; i < scan.columns; ++i)
        for (int j = 0; j < scan.rows; ++j) {
            AgPOINT p = scan.At(i, j, 0);
            int c = PlainClass(band, value(p.x, p.y));
            map.pixels.Row(j)[i] = static_cast<uint8_t>(c);
            if (c != 0) {
                if (out.summary.Row(j)[i] == 0)
                    --out.passed;
                out.summary.Row(j)[i] = 2;
            }
        }
}

std::string DifferPixels(const char *name, const ZulPixels &a, const ZulPixels &b)
{
    std::string text(name);
    if (a.Width() != b.Width() || a.Height() != b.Height())
        return text + " differ in size";
    for (int j = 0; j < a.Height(); ++j)
        for (int i = 0; i < a.Width(); ++i)
            if (a.Row(j)[i] != b.Row(j)[i])
                return text + " differ at column " + std::to_string(i) + " row " + std::to_string(j) + ": " +
                       std::to_string(a.Row(j)[i]) + " and " + std::to_string(b.Row(j)[i]);
    return "";
}

unsigned long long Mix(unsigned long long sum, const void *bytes, size_t count)
{
    for (size_t i = 0; i < count; ++i)
        sum = (sum ^ static_cast<const unsigned char *>(bytes)[i]) * 1099511628211ULL;
    return sum;
}

unsigned long long Mix(unsigned long long sum, const ZulPixels &pixels)
{
    for (int j = 0; j < pixels.Height(); ++j)
        sum = Mix(sum, pixels.Row(j), pixels.Width());
    return sum;
}

enum : unsigned long long { MIX_START = 14695981039346656037ULL };
} // namespace

void PlainRunPass(EmROOM &room, const ZulPassParams &params, TZulMapInfo &info, ZulPassMap &map)
{
    info = TZulMapInfo();
    map.pixels.Free();
    room.Emitters()->Prepare();
    room.Surfaces()->Prepare();
    info.maxAirTemp = room.MaxAirTemp();
    info.airTemp = params.airTemp ? *params.airTemp : info.maxAirTemp;
    room.Surfaces()->UpdateTemps(info.airTemp);
    room.VolumeAndArea(info.volume, info.area);
    room.Balance(info.emittPower, info.airhtPower, info.loss);
    room.AnnualFuel(info.yearFuel, info.yearCost);
    info.maxFuel = room.MaxFuelRate();
    StrCopy(info.fuelUnit, FuelUnit(room.Data()->fuelType, true), sizeof info.fuelUnit);
    info.height = params.height;
    SCAN scan = PlainScan(room.Box(), params.draft);
    map.raster.columns = scan.columns;
    map.raster.rows = scan.rows;
    map.raster.step = scan.step;
    map.raster.xMin = scan.xMin;
    map.raster.yMin = scan.yMin;
    PlainStatistics(room, scan, info);
    map.colors = params.fineScale ? &mapColors : &mapColorsCoarse;
    map.lo = params.minInte ? *params.minInte : info.minInte;
    map.hi = params.maxInte ? *params.maxInte : info.maxInte;
    if (map.lo < map.hi)
        PlainPaint(room, scan, info, map);
}

void PlainJudgePlan(const EmROOM &room, const TZulMapInfo &info, const ZulPassMap &map, ZulHygieneMaps &out)
{
    EmBOX box = room.Box();
    const EmROOMDATA &data = *room.Data();
    double head = data.position == 2 ? 1.1 : 1.7;
    double low = 0;
    double high = 0;
    WorkLimits(data.workClass, low, high);
    SCAN scan = {map.pixels.Width(), map.pixels.Height(), map.raster.step, std::min(box.min.x, box.max.x),
                 std::min(box.min.y, box.max.y)};
    if (scan.rows > 1)
        scan.step = std::fabs(box.max.y - box.min.y) / (scan.rows - 1);
    out.summary.Free();
    out.total = out.passed = 0;
    if (!map.HasMap())
        return;
    out.summary.Alloc(scan.columns, scan.rows, 0);
    out.total = out.passed = static_cast<long long>(scan.columns) * scan.rows;
    auto headTemp = [&](double x, double y) {
        return room.OperativeTemp(room.Irradiation({x, y, head}), (head - 1.5) * 0.3 + info.airTemp);
    };
    auto ankleTemp = [&](double x, double y) {
        return room.OperativeTemp(room.Irradiation({x, y, 0.15}), (0.15 - 1.5) * 0.3 + info.airTemp);
    };
    PlainCriterion(scan, {low, high, 2.0}, out.headTemp, out, headTemp);
    PlainCriterion(scan, {-9.0, 3.0, 1.0}, out.diffTemp, out,
                   [&](double x, double y) { return headTemp(x, y) - ankleTemp(x, y); });
    PlainCriterion(scan, {-DBL_MAX, 200.0, 50.0}, out.headInte, out, [&](double x, double y) {
        AgPOINT p(x, y, head);
        return room.Irradiation(p) + room.Surfaces()->Ceiling()->Radiation(p);
    });
}

std::string DifferPass(const TZulMapInfo &a, const ZulPassMap &mapA, const TZulMapInfo &b,
                       const ZulPassMap &mapB)
{
    static const struct {
        const char *name;
        double TZulMapInfo::*field;
    } fields[] = {
        {"height", &TZulMapInfo::height},
        {"minInte", &TZulMapInfo::minInte},
        {"maxInte", &TZulMapInfo::maxInte},
        {"meanInte", &TZulMapInfo::meanInte},
        {"spread", &TZulMapInfo::spread},
        {"sumInte", &TZulMapInfo::sumInte},
        {"loss", &TZulMapInfo::loss},
        {"emittPower", &TZulMapInfo::emittPower},
        {"airhtPower", &TZulMapInfo::airhtPower},
        {"area", &TZulMapInfo::area},
        {"volume", &TZulMapInfo::volume},
        {"airTemp", &TZulMapInfo::airTemp},
        {"maxAirTemp", &TZulMapInfo::maxAirTemp},
        {"maxFuel", &TZulMapInfo::maxFuel},
        {"yearFuel", &TZulMapInfo::yearFuel},
        {"yearCost", &TZulMapInfo::yearCost},
    };
    for (const auto &f : fields)
        if (!SameBits(a.*f.field, b.*f.field))
            return std::string(f.name) + ": " + std::to_string(a.*f.field) + " and " +
                   std::to_string(b.*f.field);
    if (strcmp(a.fuelUnit, b.fuelUnit) != 0)
        return "fuelUnit";
    if (mapA.raster.columns != mapB.raster.columns || mapA.raster.rows != mapB.raster.rows ||
        !SameBits(mapA.raster.step, mapB.raster.step))
        return "rasters differ";
    if (!SameBits(mapA.lo, mapB.lo) || !SameBits(mapA.hi, mapB.hi) || mapA.colors != mapB.colors)
        return "scales differ";
    return DifferPixels("maps", mapA.pixels, mapB.pixels);
}

std::string DifferHygiene(const ZulHygieneMaps &a, const ZulHygieneMaps &b)
{
    if (a.total != b.total || a.passed != b.passed)
        return "passed: " + std::to_string(a.passed) + " of " + std::to_string(a.total) + " and " +
               std::to_string(b.passed) + " of " + std::to_string(b.total);
    for (const std::string &text : {DifferPixels("head temperatures", a.headTemp.pixels, b.headTemp.pixels),
                                    DifferPixels("differences", a.diffTemp.pixels, b.diffTemp.pixels),
                                    DifferPixels("head irradiations", a.headInte.pixels, b.headInte.pixels),
                                    DifferPixels("summaries", a.summary, b.summary)})
        if (!text.empty())
            return text;
    return "";
}

unsigned long long Checksum(const TZulMapInfo &info, const ZulPassMap &map)
{
    unsigned long long sum = MIX_START;
    for (double v : {info.minInte, info.maxInte, info.meanInte, info.spread, info.sumInte})
        sum = Mix(sum, &v, sizeof v);
    return Mix(sum, map.pixels);
}

unsigned long long Checksum(const ZulHygieneMaps &maps)
{
    unsigned long long sum = Mix(MIX_START, &maps.passed, sizeof maps.passed);
    for (const ZulPixels *pixels :
         {&maps.headTemp.pixels, &maps.diffTemp.pixels, &maps.headInte.pixels, &maps.summary})
        sum = Mix(sum, *pixels);
    return sum;
}
