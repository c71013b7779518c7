#include "usr/zulpass.h"

#include "ker/emfield_lanes.h"
#include "lib/charstr.h"
#include "lib/platform.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <memory>

#include "lib/xon.h"

namespace
{
long long bandMax = 1 << 24; // samples

/// A raster's samples by bands of columns. A raster of one band keeps it for the second scan.
class BANDS
{
public:
    BANDS(const EmFIELD &aField, const EmRASTER &aRaster, double aHeight)
        : field(aField), raster(aRaster), height(aHeight),
          width(static_cast<int>(std::clamp<long long>(bandMax / aRaster.rows, 1, aRaster.columns))),
          samples(new double[static_cast<size_t>(width) * aRaster.rows])
    {
    }

    int Width() const { return width; } // columns of a band; the last one may have fewer
    int Columns(int first) const { return std::min(width, raster.columns - first); }
    /// The samples from column `first` on, column by column.
    const double *At(int first)
    {
        if (held != first)
            field.Sample(raster, height, first, Columns(first), samples.get());
        held = first;
        return samples.get();
    }

private:
    const EmFIELD &field;
    const EmRASTER &raster;
    double height; // m
    int width;
    std::unique_ptr<double[]> samples;
    int held = -1; // first column of the band in `samples`
};

void FillStatistics(BANDS &bands, const EmRASTER &raster, TZulMapInfo &info)
{
    double first = bands.At(0)[0];
    EmLANESUMS s = {first, first, 0, 0};
    for (int i = 0; i < raster.columns; i += bands.Width())
        EmGetLanes().addSamples(bands.At(i), static_cast<long long>(bands.Columns(i)) * raster.rows, s);
    double count = static_cast<double>(raster.rows) * raster.columns;
    info.minInte = s.least;
    info.maxInte = s.most;
    info.meanInte = s.sum / count;
    info.sumInte = s.sum;
    info.spread =
        info.meanInte == 0 ? 0 : std::sqrt((s.squares - info.meanInte * s.sum) / (count - 1)) / info.meanInte;
}

double Scale(double lo, double hi, int colors)
{
    return (colors - 2) / (hi - lo);
}

// Samples run down the columns and pixels along the rows: a tile keeps both in the cache.
void PaintBand(const double *samples, int first, int columns, ZulPassMap &map)
{
    enum { TILE = 64 };
    uint8_t indexes[TILE];
    double kScale = Scale(map.lo, map.hi, map.colors->count);
    int rows = map.raster.rows;
    for (int left = 0; left < columns; left += TILE)
        for (int top = 0; top < rows; top += TILE)
            for (int i = left; i < std::min<int>(left + TILE, columns); ++i) {
                int count = std::min<int>(TILE, rows - top);
                EmGetLanes().findIndexes(samples + static_cast<size_t>(i) * rows + top, count, map.lo, kScale,
                                         map.colors->count - 1, indexes);
                for (int j = 0; j < count; ++j)
                    map.pixels.Row(top + j)[first + i] = indexes[j];
            }
}

/// Balance and fuel, at the air temperature for which the run holds.
void FillBalance(EmROOM &room, const ZulPassParams &params, TZulMapInfo &info)
{
    __enter
        room.Emitters()->Prepare(); __test;
        room.Surfaces()->Prepare(); __test;
        info.maxAirTemp = room.MaxAirTemp(); __test;
        info.airTemp = params.airTemp.value_or(info.maxAirTemp);
        room.Surfaces()->UpdateTemps(info.airTemp); __test;
        room.VolumeAndArea(info.volume, info.area); __test;
        room.Balance(info.emittPower, info.airhtPower, info.loss); __test;
        room.AnnualFuel(info.yearFuel, info.yearCost); __test;
        info.maxFuel = room.MaxFuelRate(); __test;
        StrCopy(info.fuelUnit, FuelUnit(room.Data()->fuelType, true), sizeof info.fuelUnit);
        info.height = params.height;
    __point
    __treat
}

void FillField(const EmROOM &room, const ZulPassParams &params, TZulMapInfo &info, ZulPassMap &map)
{
    __enter
        map.raster = IrradiationRaster(room.Box(), params.draft); __test;
        EmFIELD field(*room.Emitters()); __test;
        BANDS bands(field, map.raster, params.height);
        FillStatistics(bands, map.raster, info);
        map.colors = params.fineScale ? &mapColors : &mapColorsCoarse;
        ASSERT_AS(map.colors->count >= 3, "cscale->Size() >= 3");
        map.lo = params.minInte.value_or(info.minInte);
        map.hi = params.maxInte.value_or(info.maxInte);
        if (map.lo < map.hi) {
            map.pixels.Alloc(map.raster.columns, map.raster.rows, 0); __test;
            for (int i = 0; i < map.raster.columns; i += bands.Width())
                PaintBand(bands.At(i), i, bands.Columns(i), map);
        }
    __point
    __treat
}
} // namespace

void ZulPixels::Alloc(int aWidth, int aHeight, uint8_t color)
{
    __enter
        Free();
        size_t size = static_cast<size_t>(aWidth) * aHeight;
        data = new uint8_t[size];
        memset(data, color, size);
        width = aWidth;
        height = aHeight;
    __point
    __treat
}

void ZulPixels::Free()
{
    delete[] data;
    data = NULL;
    width = height = 0;
}

std::vector<long long> ZulPixels::Histogram(int colors) const
{
    std::vector<long long> hist(colors, 0);
    for (size_t i = 0; i < static_cast<size_t>(width) * height; ++i)
        ++hist[data[i]];
    return hist;
}

long long ZulSetPassBand(long long samples)
{
    return std::exchange(bandMax, samples);
}

int ZulColorIndex(double sample, double lo, double hi, int colors)
{
    uint8_t index = 0;
    EmGetLanes().findIndexes(&sample, 1, lo, Scale(lo, hi, colors), colors - 1, &index);
    return index;
}

void ZulRunPass(EmROOM &room, const ZulPassParams &params, TZulMapInfo &info, ZulPassMap &map)
{
    __enter
        StatusMessage("%s", ResText(4220));
        map.pixels.Free();
        map.raster = EmRASTER();
        map.colors = NULL;
        map.lo = map.hi = 0;
        info = TZulMapInfo();
        FillBalance(room, params, info); __test;
        FillField(room, params, info, map); __test;
        StatusMessage(NULL);
    __point
        map.pixels.Free();
    __treat
}
