#include "usr/zulpass.h"

#include "lib/platform.h"
#include "usr/edcutils.h"

#include <cmath>
#include <cstdlib>

#include "lib/xon.h"

namespace
{
/// A number as printf("%le") shows it: mantissa to six decimals, decimal exponent. What is not finite has
/// exponent 0.
struct DECIMAL {
    double mantissa;
    int exponent = 0;

    explicit DECIMAL(double v) : mantissa(v)
    {
        if (!std::isfinite(v))
            return;
        std::string text = EdcFormat("%le", v);
        size_t e = text.find('e');
        mantissa = strtod(text.substr(0, e).c_str(), NULL);
        exponent = atoi(text.c_str() + e + 1);
    }
};

std::string IntensityText(double v, int exponent)
{
    DECIMAL d(v);
    // The power overflows for a header of E-309 and below; 0 is 0 under every header.
    double shown = d.mantissa == 0 ? 0 : d.mantissa * std::pow(10.0, d.exponent - exponent);
    return EdcFormat("%3.2lf", shown);
}

std::string AirTempText(const TZulMapInfo &info)
{
    std::string text = EdcResFormat(4233, info.airTemp);
    if (info.airTemp > info.maxAirTemp)
        text += ResText(4235);
    return text;
}

std::string ResultTempText(const EmROOMDATA &data)
{
    std::string limits;
    double low = 0;
    double high = 0;
    WorkLimits(data.workClass, low, high);
    if (data.workClass != 0 && !(data.resultTemp >= low && data.resultTemp <= high))
        limits = EdcResFormat(4236, low, high);
    return EdcResFormat(4234, data.resultTemp, limits.c_str());
}

void AddRows(const EmROOM &room, const TZulMapInfo &info, const ZulPassMap &map, ZulScaleTexts &texts)
{
    int exponent = DECIMAL(map.hi).exponent;
    int last = map.colors->count - 1;
    double kScale = (map.colors->count - 2) / (map.hi - map.lo);
    double airTemp = AirTempAt(info, info.height);
    texts.rows.emplace_back(EdcResFormat(4230, exponent), ResText(4231));
    for (int i = 0; i < last; ++i) {
        double v = i / kScale + map.lo;
        texts.rows.emplace_back(IntensityText(v, exponent),
                                info.airhtPower != 0 ? "-"
                                                     : EdcFormat("%3.1lf", room.OperativeTemp(v, airTemp)));
    }
    texts.rows.emplace_back(ResText(4232), info.airhtPower != 0 ? "-" : ResText(4232));
}
} // namespace

ZulScaleTexts ZulMakeScale(const EmROOM &room, const TZulMapInfo &info, const ZulPassMap &map)
{
    ZulScaleTexts texts;
    __enter
        texts.line1 = AirTempText(info);
        texts.line2 = ResultTempText(*room.Data());
        AddRows(room, info, map, texts);
    __point
    __treat
    return texts;
}
