#include "lib/platform.h"
#include "lib/charstr.h"
#include "lib/xassert.h"

#include <cstdio>
#include <utility>

namespace
{
int Code(char c, bool ignoreCase)
{
    return static_cast<unsigned char>(ignoreCase ? ChrLower(c) : c);
}

int CompareCodes(const char *s1, const char *s2, bool ignoreCase)
{
    while (*s1 != EOS && Code(*s1, ignoreCase) == Code(*s2, ignoreCase)) {
        ++s1;
        ++s2;
    }
    return Code(*s1, ignoreCase) - Code(*s2, ignoreCase);
}

int CollateByCode(const char *s1, const char *s2, bool ignoreCase)
{
    int order = CompareCodes(s1, s2, true);
    return order != 0 || ignoreCase ? order : CompareCodes(s1, s2, false);
}

void GermanShortDate(int year, int month, int day, char *text, int max)
{
    std::snprintf(text, static_cast<size_t>(max), "%02d.%02d.%04d", day, month, year);
}

const char *NoResText(int)
{
    return NULL;
}

const char euroSign[] = "\x80";

CollateSink collateSink = CollateByCode;
ShortDateSink shortDateSink = GermanShortDate;
ResTextSink resTextSink = NoResText;
const char *currencySymbol = euroSign;
} // namespace

CollateSink SetCollateSink(CollateSink sink)
{
    return std::exchange(collateSink, sink != NULL ? sink : CollateByCode);
}

ShortDateSink SetShortDateSink(ShortDateSink sink)
{
    return std::exchange(shortDateSink, sink != NULL ? sink : GermanShortDate);
}

ResTextSink SetResTextSink(ResTextSink sink)
{
    return std::exchange(resTextSink, sink != NULL ? sink : NoResText);
}

const char *SetCurrencySymbol(const char *symbol)
{
    return std::exchange(currencySymbol, symbol != NULL ? symbol : euroSign);
}

int Collate(const char *s1, const char *s2, bool ignoreCase)
{
    int order = collateSink(s1, s2, ignoreCase);
    return (order > 0) - (order < 0);
}

void ShortDate(int year, int month, int day, char *text, int max)
{
    ASSERT(text != NULL && max > 0);
    shortDateSink(year, month, day, text, max);
}

const char *ResText(int id)
{
    const char *text = resTextSink(id);
    return text != NULL ? text : "";
}

const char *CurrencySymbol()
{
    return currencySymbol;
}
