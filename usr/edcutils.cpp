#include "usr/edcutils.h"
#include "lib/charstr.h"
#include "lib/platform.h"
#include "lib/xfail.h"
#include "res/strings.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <new>

namespace
{
enum { RES_BUFFER = 1024 };

/// The text itself, as long as the program runs; NULL for an unknown number.
const char *FindText(int id)
{
    const ResSTRING *end = resStrings + resStringCount;
    const ResSTRING *found = std::lower_bound(
        resStrings, end, id, [](const ResSTRING &entry, int wanted) { return entry.id < wanted; });
    return found != end && found->id == id ? found->text : NULL;
}

/// The result of vasprintf as a text; its block is freed whatever happens.
std::string TakeText(char *block, int length)
{
    if (length < 0)
        throw std::bad_alloc();
    std::unique_ptr<char, decltype(&std::free)> owner(block, std::free);
    return std::string(block, static_cast<size_t>(length));
}

/// A file name as the user knows it. In place, for it runs while memory may be exhausted.
const char *ShownName(const char *name)
{
    static char shown[X_NAME];
    StrCopy(shown, name, X_NAME);
    std::replace(shown, shown + StrLength(shown), '\\', '/');
    return shown;
}

/// Free text as a format without arguments: "%%" is a percent sign, and so is one that stands alone, whatever
/// follows it. Such a text may carry a file's name or content.
const char *SafeFormat(const char *text)
{
    static char format[2 * X_NAME];
    char *end = format;
    for (; *text != EOS; ++text) {
        *end++ = *text;
        if (*text != '%')
            continue;
        *end++ = '%';
        if (text[1] == '%')
            ++text;
    }
    *end = EOS;
    return format;
}

/// One step of the chain: true when the failure is this one, and when none of the steps before was.
bool Hits(XCODE code)
{
    if (xHit != 0)
        return false;
    xHit = xRepaired == code;
    return xHit != 0;
}

struct HookStep {
    XCODE code;
    int id;
    const char *name; // view; what the text's %s stands for
};

const HookStep hookSteps[] = {
    {XALLOC, 1010, ""},           {XLIMIT, 1011, ""},           {XCDE_INVOLVED, 1012, ""},
    {XFFOUND, 1013, xFFoundName}, {XFOPEN, 1014, xFOpenName},   {XFCREATE, 1015, xFCreateName},
    {XFREAD, 1016, xFReadName},   {XFWRITE, 1017, xFWriteName}, {XDCREATE, 1018, xDCreateName},
};
enum { TEXT_UNKNOWN_FAILURE = 1019 };
} // namespace

const char *GetResString(int id, int max)
{
    static char buffer[RES_BUFFER];
    if (max < 0 || max > RES_BUFFER)
        max = RES_BUFFER;
    const char *text = FindText(id);
    buffer[0] = EOS;
    if (text != NULL && max > 0)
        StrCopy(buffer, text, max);
    return buffer;
}

int EdcNearest(double value)
{
    if (!(std::fabs(value) < 2147483647.0))
        return std::isnan(value) ? 0 : value < 0 ? INT_MIN : INT_MAX;
    return static_cast<int>(std::round(value));
}

double Frexp10(double x, int &exponent)
{
    int binary = 0;
    std::frexp(x, &binary);
    exponent = x == 0 ? 0 : EdcNearest(binary * std::log(2.0) / std::log(10.0));
    double mantissa = x / std::pow(10.0, exponent);
    if (std::fabs(mantissa) >= 1) {
        ++exponent;
        mantissa = x / std::pow(10.0, exponent);
    }
    return mantissa;
}

double EdcRound(double value, int exponent)
{
    const double exact = 9007199254740992.0; // 2^53: from here on every double is a whole number
    double power = std::pow(10.0, std::abs(exponent));
    // Only a division by a power of ten gives the double nearest to the decimal number.
    double units = exponent < 0 ? value * power : value / power;
    if (!(std::fabs(units) < exact))
        return value;
    double whole = std::round(units);
    if (whole == 0)
        return 0; // no reader is to see "-0"
    return exponent < 0 ? whole / power : whole * power;
}

std::string EdcFormat(const char *format, ...)
{
    char *block = NULL;
    va_list args;
    va_start(args, format);
    int length = vasprintf(&block, format, args);
    va_end(args);
    return TakeText(block, length);
}

std::string EdcResFormat(int id, ...)
{
    const char *format = FindText(id);
    char *block = NULL;
    va_list args;
    va_start(args, id);
    int length = vasprintf(&block, format != NULL ? format : "", args);
    va_end(args);
    return TakeText(block, length);
}

void EdcFailureHook()
{
    for (const HookStep &step : hookSteps) {
        if (Hits(step.code))
            Message(GetResString(step.id), ShownName(step.name));
    }
    if (Hits(XGENERAL))
        Message(SafeFormat(xGeneralText), "");
    if (xHit == 0)
        Message(GetResString(TEXT_UNKNOWN_FAILURE), "");
}

void EdcUseResources()
{
    SetResTextSink(FindText);
}
