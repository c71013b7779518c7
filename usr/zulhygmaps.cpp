#include "usr/zulhygmaps.h"

#include "lib/platform.h"

#include <algorithm>

#include "lib/xon.h"

namespace
{
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

/// What a class depends on besides the samples of a point.
struct AIR {
    double head;     // m
    double airHead;  // C
    double airAnkle; // C
};

void JudgePoint(const EmROOM &room, const AIR &air, const AgPOINT &p, double head, double ankle, int i, int j,
                ZulHygieneMaps &out)
{
    double temp = room.OperativeTemp(head, air.airHead);
    double diff = temp - room.OperativeTemp(ankle, air.airAnkle);
    double inte = head + room.Surfaces()->Ceiling()->Radiation(p);
    int classes[] = {out.headTemp.band.Classify(temp), out.diffTemp.band.Classify(diff),
                     out.headInte.band.Classify(inte)};
    out.headTemp.pixels.Row(j)[i] = static_cast<uint8_t>(classes[0]);
    out.diffTemp.pixels.Row(j)[i] = static_cast<uint8_t>(classes[1]);
    out.headInte.pixels.Row(j)[i] = static_cast<uint8_t>(classes[2]);
    if (classes[0] + classes[1] + classes[2] != 0) {
        out.summary.Row(j)[i] = 2;
        --out.passed;
    }
}

void Judge(const EmROOM &room, const TZulMapInfo &info, const EmRASTER &raster, ZulHygieneMaps &out)
{
    double height = HeadHeight(room.Data()->position);
    AIR air = {height, AirTempAt(info, height), AirTempAt(info, EM_ANKLE_HEIGHT)};
    __enter
        EmFIELD field(*room.Emitters()); __test;
        std::vector<double> head(raster.rows);
        std::vector<double> ankle(raster.rows);
        for (int i = 0; i < raster.columns; ++i) {
            field.Sample(raster, height, i, 1, head.data());
            field.Sample(raster, EM_ANKLE_HEIGHT, i, 1, ankle.data());
            for (int j = 0; j < raster.rows; ++j)
                JudgePoint(room, air, {raster.X(i), raster.Y(j), height}, head[j], ankle[j], i, j, out);
        }
    __point
    __treat
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
            Judge(room, info, raster, out); __test;
        }
        StatusMessage(NULL);
    __point
        Clear(out);
    __treat
}
