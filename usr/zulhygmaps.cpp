#include "usr/zulhygmaps.h"

#include "ker/emceiling.h"
#include "ker/emfield_lanes.h"
#include "lib/platform.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "lib/xon.h"

namespace
{
enum {
    BAND_COLUMNS = 64, // a multiple of the ceiling's span; maps are written by lines of the cache
    BAND_POINTS = 1 << 20,
    PIECE = 256, // points of a column judged at a time, a multiple of the ceiling's span
    DOUBT = 3,   // what the lanes give for a class that they cannot tell
};

void Clear(ZulHygieneMaps &out)
{
    for (ZulCriterionMap *map : {&out.headTemp, &out.diffTemp, &out.headInte})
        map->pixels.Free();
    out.summary.Free();
    out.total = out.passed = 0;
}

void Begin(const EmROOM &room, const ZulPassMap &map, ZulHygieneMaps &out)
{
    __enter
        out.headTemp.band = HeadTempCriterion(room.Data()->workClass);
        out.diffTemp.band = DiffTempCriterion();
        out.headInte.band = HeadInteCriterion();
        if (map.HasMap()) {
            for (ZulCriterionMap *criterion : {&out.headTemp, &out.diffTemp, &out.headInte}) {
                criterion->pixels.Alloc(map.pixels.Width(), map.pixels.Height(), 0); __test;
            }
            out.summary.Alloc(map.pixels.Width(), map.pixels.Height(), 0); __test;
            out.total = out.passed = static_cast<long long>(map.pixels.Width()) * map.pixels.Height();
        }
    __point
    __treat
}

/// The judging of one plan, by bands of columns.
class JUDGE
{
public:
    JUDGE(const EmROOM &aRoom, const TZulMapInfo &info, const EmRASTER &aRaster, const EmFIELD &aField,
          ZulHygieneMaps &aOut);
    void Run();

private:
    const EmROOM &room;
    const EmRASTER &raster;
    const EmFIELD &field;
    ZulHygieneMaps &out;
    double height; // m, of the head
    EmCEILING ceiling;
    EmLANEJUDGE plan;
    int width;                // columns of a band
    std::vector<double> head; // W/m2 at the points of a band, by column
    std::vector<double> ankle;
    double knownHead = NAN; // the last intensity of which the exact temperature was taken, and that temperature
    double knownTemp = NAN;

    void SetLimits(int i, const EmCRITERION &band, double guard);
    void RunBand(int first, int columns);
    void RunPiece(int i, int top, int count, const double *headInte, const double *ankleInte);
    int Exact(int i, int j, double headInte, double ankleInte, int classes);
    double HeadTemp(double intensity);
};

JUDGE::JUDGE(const EmROOM &aRoom, const TZulMapInfo &info, const EmRASTER &aRaster, const EmFIELD &aField,
             ZulHygieneMaps &aOut)
    : room(aRoom), raster(aRaster), field(aField), out(aOut), height(HeadHeight(aRoom.Data()->position)),
      ceiling(*aRoom.Surfaces()->Ceiling(), aRaster, height), plan(),
      width(static_cast<int>(std::clamp<long long>(BAND_POINTS / aRaster.rows, 1, BAND_COLUMNS))),
      head(static_cast<size_t>(width) * aRaster.rows + PIECE), ankle(head.size())
{
    plan.airHead = AirTempAt(info, height);
    plan.airAnkle = AirTempAt(info, EM_ANKLE_HEIGHT);
    plan.levelHead = std::pow(plan.airHead + 273.15, 4.0);
    plan.levelAnkle = std::pow(plan.airAnkle + 273.15, 4.0);
    // Square roots and powers differ by some 1e-12 K, and sums of W/m2 by less still.
    SetLimits(0, out.headTemp.band, 1e-6);
    SetLimits(1, out.diffTemp.band, 1e-6);
    SetLimits(2, out.headInte.band, ceiling.Error() + 1e-6);
}

void JUDGE::SetLimits(int i, const EmCRITERION &band, double guard)
{
    double limits[] = {band.LowTol(), band.min, band.max, band.HighTol()};
    std::copy(limits, limits + 4, plan.limits[i]);
    plan.guard[i] = guard;
}

void JUDGE::Run()
{
    for (int i = 0; i < raster.columns; i += width)
        RunBand(i, std::min(width, raster.columns - i));
}

void JUDGE::RunBand(int first, int columns)
{
    field.Sample(raster, height, first, columns, head.data());
    field.Sample(raster, EM_ANKLE_HEIGHT, first, columns, ankle.data());
    ceiling.Begin(first, columns);
    for (int top = 0; top < raster.rows; top += PIECE)
        for (int i = 0; i < columns; ++i) {
            size_t at = static_cast<size_t>(i) * raster.rows + top;
            RunPiece(first + i, top, std::min<int>(PIECE, raster.rows - top), &head[at], &ankle[at]);
        }
}

void JUDGE::RunPiece(int i, int top, int count, const double *headInte, const double *ankleInte)
{
    double above[PIECE];
    long long classes[PIECE];
    ceiling.Column(i, top, count, above);
    EmGetLanes().judge(plan, headInte, ankleInte, above, count, classes);
    for (int j = 0; j < count; ++j) {
        int c = static_cast<int>(classes[j]);
        if ((c & c >> 1 & (1 | 4 | 16)) != 0)
            c = Exact(i, top + j, headInte[j], ankleInte[j], c);
        out.headTemp.pixels.Row(top + j)[i] = static_cast<uint8_t>(c & 3);
        out.diffTemp.pixels.Row(top + j)[i] = static_cast<uint8_t>(c >> 2 & 3);
        out.headInte.pixels.Row(top + j)[i] = static_cast<uint8_t>(c >> 4);
        out.summary.Row(top + j)[i] = c == 0 ? 0 : 2;
        out.passed -= c != 0;
    }
}

/// The classes with those in doubt taken from the values themselves.
int JUDGE::Exact(int i, int j, double headInte, double ankleInte, int classes)
{
    int temp = classes & 3;
    int diff = classes >> 2 & 3;
    int inte = classes >> 4;
    if (temp == DOUBT)
        temp = out.headTemp.band.Classify(HeadTemp(headInte));
    if (diff == DOUBT)
        diff = out.diffTemp.band.Classify(HeadTemp(headInte) - room.OperativeTemp(ankleInte, plan.airAnkle));
    if (inte == DOUBT) {
        AgPOINT p(raster.X(i), raster.Y(j), height);
        inte = out.headInte.band.Classify(headInte + room.Surfaces()->Ceiling()->Radiation(p));
    }
    return temp | diff << 2 | inte << 4;
}

/// Equal intensities come in great numbers: all points that no emitter reaches.
double JUDGE::HeadTemp(double intensity)
{
    if (intensity != knownHead) {
        knownHead = intensity;
        knownTemp = room.OperativeTemp(intensity, plan.airHead);
    }
    return knownTemp;
}
} // namespace

void ZulJudgePlan(const EmROOM &room, const TZulMapInfo &info, const ZulPassMap &map, ZulHygieneMaps &out)
{
    __enter
        Clear(out);
        StatusMessage("%s", ResText(4221));
        Begin(room, map, out); __test;
        if (map.HasMap()) {
            EmRASTER raster = CriterionRaster(room.Box(), map.raster);
            EmFIELD field(*room.Emitters()); __test;
            JUDGE(room, info, raster, field, out).Run(); __test;
        }
        StatusMessage(NULL);
    __point
        Clear(out);
    __treat
}
