// The evaluation of a hall, without any drawing: balance and fuel, the irradiation raster, its map of colour
// indices and the texts of the colour table. The floor plan, the maps and the command line all call it.
// A raster is held as one byte a point; samples live in a band of columns, and a raster that fits one band
// (2^24 points) is sampled once for statistics and map, a larger one twice, so that memory stays bounded.
#ifndef USR_ZULPASS_H
#define USR_ZULPASS_H

#include "ker/emfield.h"
#include "usr/zulcolors.h"

#include <optional>
#include <string>
#include <utility>
#include <vector>

/// What the designer states for one run.
struct ZulPassParams {
    double height = 0;             // m, of the map above the floor
    std::optional<double> minInte; // W/m2, lower end of the scale
    std::optional<double> maxInte; // W/m2, upper end
    std::optional<double> airTemp; // C at 1.5 m
    bool draft = true;             // coarse raster
    bool fineScale = true;         // twelve colours, else three
};

/// A picture of colour indices, row 0 on top (the far side of the plan).
class ZulPixels
{
public:
    ZulPixels() = default;
    ~ZulPixels() { delete[] data; }
    ZulPixels(const ZulPixels &) = delete;
    ZulPixels &operator=(const ZulPixels &) = delete;

    void Alloc(int aWidth, int aHeight, uint8_t color); // all pixels `color`; XALLOC
    void Free();
    bool IsEmpty() const { return data == NULL; }
    int Width() const { return width; }
    int Height() const { return height; }
    uint8_t *Row(int j) { return data + static_cast<size_t>(j) * width; }
    const uint8_t *Row(int j) const { return data + static_cast<size_t>(j) * width; }
    /// Pixels of each colour, from 0.
    std::vector<long long> Histogram(int colors) const;

private:
    uint8_t *data = NULL; // owner; height rows of width bytes
    int width = 0;
    int height = 0;
};

/// The colour table beside the irradiation map, as texts.
struct ZulScaleTexts {
    std::string line1;                                     // above: the air temperature for which it holds
    std::string line2;                                     // below: the wanted operative temperature
    std::vector<std::pair<std::string, std::string>> rows; // intensity, temperature; the header row first
};

/// One run's raster and map. `pixels` is empty where the ends of the scale leave no map.
struct ZulPassMap {
    EmRASTER raster;
    ZulPixels pixels;
    const ZulCOLORS *colors = NULL; // view; the scale in use
    double lo = 0;                  // W/m2, ends of the scale
    double hi = 0;

    bool HasMap() const { return !pixels.IsEmpty(); }
};

/// Runs the evaluation on the room: prepares emitters and surfaces, fills `info` and `map` anew. A failure ends
/// it where it stands, with no map.
void ZulRunPass(EmROOM &room, const ZulPassParams &params, TZulMapInfo &info, ZulPassMap &map);

/// Samples held at a time, 2^24 (128 MB) unless a test wants more and smaller bands; returns the former number.
long long ZulSetPassBand(long long samples);

/// The index of a sample in a scale of `colors` colours from lo to hi; a sample that is no number has 0.
int ZulColorIndex(double sample, double lo, double hi, int colors);

/// The texts of the colour table of a run that has a map.
ZulScaleTexts ZulMakeScale(const EmROOM &room, const TZulMapInfo &info, const ZulPassMap &map);

#endif
