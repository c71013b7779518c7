#include "usr/edcdlg.h"
#include "lib/charstr.h"
#include "lib/xassert.h"
#include "usr/edcutils.h"

#include <cerrno>
#include <climits>
#include <cmath>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace
{
const char prefixes[] = "afpnum kMGTPE"; // one step is a factor of 1000
enum { PREFIX_NONE = 6, PREFIX_COUNT = 13, PREFIX_STEP = 3 };
const char defaultTime[] = "d.M.r, h:m:s";

bool IsSpace(char c)
{
    return (ChrClass(c) & CHR_SPACE) != 0;
}

bool IsDigit(char c)
{
    return c >= '0' && c <= '9';
}

const char *SkipSpace(const char *s)
{
    while (IsSpace(*s))
        ++s;
    return s;
}

bool SameContent(const TEdcInt &a, const TEdcInt &b)
{
    return a.value == b.value;
}

bool SameContent(const TEdcFloat &a, const TEdcFloat &b)
{
    return a.value == b.value;
}

bool SameContent(const TEdcTime &a, const TEdcTime &b)
{
    return a.year == b.year && a.month == b.month && a.day == b.day && a.hour == b.hour &&
           a.minute == b.minute && a.second == b.second;
}

template <class T>
bool Differ(const T &a, const T &b)
{
    return a.id != b.id || (a.id == EDC_VVAL && !SameContent(a, b));
}

template <class T>
bool ExchangePlain(int mode, T &field, T &other)
{
    switch (mode) {
    case EDC_XLOAD:
        field = other;
        return true;
    case EDC_XSTORE:
        if (field.id != EDC_VUDF)
            other = field;
        return true;
    case EDC_XMERGE:
        if (Differ(field, other))
            field.id = EDC_VUDF;
        return true;
    case EDC_XMATCH:
        return field.id == EDC_VUDF || !Differ(field, other);
    default:
        return false;
    }
}
} // namespace

int TEdcValue::Size() const
{
    return sizeof(*this);
}

int TEdcInt::Size() const
{
    return sizeof(*this);
}

void TEdcInt::Set(int v)
{
    id = EDC_VVAL;
    value = v;
}

bool TEdcInt::Exchange(int mode, TEdcInt &other)
{
    return ExchangePlain(mode, *this, other);
}

int TEdcFloat::Size() const
{
    return sizeof(*this);
}

void TEdcFloat::Set(double v)
{
    id = EDC_VVAL;
    value = v;
}

bool TEdcFloat::Exchange(int mode, TEdcFloat &other)
{
    return ExchangePlain(mode, *this, other);
}

TEdcTime::TEdcTime(int y, int M, int d, int h, int m, int s)
{
    SetDate(y, M, d, false);
    SetTime(h, m, s, false);
}

int TEdcTime::Size() const
{
    return sizeof(*this);
}

void TEdcTime::SetDate(int y, int M, int d, bool clearTime)
{
    id = EDC_VVAL;
    year = static_cast<short>(y);
    month = static_cast<short>(M);
    day = static_cast<short>(d);
    if (clearTime)
        hour = minute = second = -1;
}

void TEdcTime::SetTime(int h, int m, int s, bool clearDate)
{
    id = EDC_VVAL;
    hour = static_cast<short>(h);
    minute = static_cast<short>(m);
    second = static_cast<short>(s);
    if (clearDate)
        year = month = day = -1;
}

bool TEdcTime::Exchange(int mode, TEdcTime &other)
{
    return ExchangePlain(mode, *this, other);
}

TEdcAStr::TEdcAStr(char *buf, int aMax, int anId) : text(buf), max(aMax)
{
    id = anId;
}

int TEdcAStr::Size() const
{
    return sizeof(*this);
}

void TEdcAStr::BindText() {}

TEdcAStr &TEdcAStr::operator=(const char *s)
{
    Set(EDC_VVAL, s);
    return *this;
}

namespace
{
/// The buffer of an undefined value that nothing was put into yet need not even end.
bool HasText(const TEdcAStr &s)
{
    if (s.id != EDC_VUDF)
        return true;
    return s.text != NULL && s.max > 0 && std::memchr(s.text, EOS, static_cast<size_t>(s.max)) != NULL;
}
} // namespace

TEdcAStr &TEdcAStr::operator=(const TEdcAStr &other)
{
    if (this == &other)
        return *this;
    if (HasText(other))
        Set(other.id, other.text);
    else
        id = EDC_VUDF;
    return *this;
}

// The texts of these assertions call the text pointer `val`.

void TEdcAStr::Set(int newId, const char *s)
{
    ASSERT(max > 0);
    ASSERT_AS(text != NULL, "val != NULL");
    Finish(newId, StrCopy(text, s, max));
}

void TEdcAStr::SetRes(int newId, int resId)
{
    Set(newId, GetResString(resId));
}

void TEdcAStr::Format(int newId, const char *format, ...)
{
    ASSERT(max > 0);
    ASSERT_AS(text != NULL, "val != NULL");
    va_list args;
    va_start(args, format);
    int length = std::vsnprintf(text, static_cast<size_t>(max), format, args);
    va_end(args);
    Finish(newId, length >= 0 && length < max);
}

void TEdcAStr::FormatRes(int newId, int resId, ...)
{
    ASSERT(max > 0);
    ASSERT_AS(text != NULL, "val != NULL");
    va_list args;
    va_start(args, resId);
    int length = std::vsnprintf(text, static_cast<size_t>(max), GetResString(resId), args);
    va_end(args);
    Finish(newId, length >= 0 && length < max);
}

void TEdcAStr::SetInt(const TEdcInt &v, int newId)
{
    ASSERT(max > 0);
    ASSERT_AS(text != NULL, "val != NULL");
    if (v.id == EDC_VUDF)
        id = EDC_VUDF;
    else
        Format(newId, "%ld", static_cast<long>(v.value));
}

namespace
{
/// What stands behind a number: a blank with the prefix and the unit, or nothing.
struct UNITTAIL {
    char blank = EOS;
    char prefix = EOS;     // EOS: none
    const char *unit = ""; // view
};

/// Scales the value to 1 up to 1000 and tells what to write behind it; a value beyond all prefixes stays plain.
UNITTAIL ScaleForUnit(double &value, const char *unit)
{
    UNITTAIL tail;
    if (!std::isfinite(value))
        return tail;
    int exponent = 0, index = PREFIX_NONE, shift = 0;
    double mantissa = Frexp10(value, exponent);
    if (mantissa != 0) {
        // Division truncates, so that the lowest prefix also serves the two places below its range.
        int place = exponent + PREFIX_STEP * PREFIX_NONE - 1;
        index = place / PREFIX_STEP;
        shift = place % PREFIX_STEP + 1;
    }
    if (index < 0 || index >= PREFIX_COUNT)
        return tail;
    value = std::pow(10.0, shift) * mantissa;
    if (index != PREFIX_NONE) {
        // The point tells a bare prefix from a unit of that name.
        return {' ', prefixes[index], *unit != EOS ? unit : "."};
    }
    tail.unit = unit + std::strspn(unit, " .");
    if (*tail.unit != EOS)
        tail.blank = tail.unit > unit ? tail.unit[-1] : ' ';
    return tail;
}
} // namespace

void TEdcAStr::SetFloat(const TEdcFloat &v, int digits, const char *unit, int newId)
{
    ASSERT(max > 0);
    ASSERT_AS(text != NULL, "val != NULL");
    if (v.id == EDC_VUDF) {
        id = EDC_VUDF;
        return;
    }
    double value = v.value + 0.0; // no reader is to see "-0"
    UNITTAIL tail;
    if (unit != NULL)
        tail = ScaleForUnit(value, unit);
    if (digits >= 0)
        Format(newId, "%.*lf", digits, value);
    else
        Format(newId, "%lg", value);
    bool fits = id == newId;
    const char behind[] = {tail.blank, tail.prefix, EOS};
    Append(behind, fits);
    Append(tail.unit, fits);
    Finish(newId, fits);
}

/// Adds to the text and tells by `fits` what did not go in.
void TEdcAStr::Append(const char *s, bool &fits)
{
    fits = StrCat(text, s, max) && fits;
}

namespace
{
/// The field that a character of a time format stands for, NULL for a character that stands for itself.
short *TimeField(TEdcTime &time, char c)
{
    switch (c) {
    case 'r':
    case 'y':
        return &time.year;
    case 'M':
        return &time.month;
    case 'd':
        return &time.day;
    case 'h':
        return &time.hour;
    case 'm':
        return &time.minute;
    case 's':
        return &time.second;
    default:
        return NULL;
    }
}

bool IsInRange(char field, int value)
{
    switch (field) {
    case 'M':
        return value >= 1 && value <= 12;
    case 'd':
        return value >= 1 && value <= 31;
    case 'h':
        return value <= 23;
    case 'm':
    case 's':
        return value <= 59;
    default:
        return value <= 9999;
    }
}

/// Years of at most two digits leave open which century is meant, so they always have a 29 February.
bool HasDay(const TEdcTime &time)
{
    const int lengths[] = {31, 29, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    if (time.day < 1 || time.month < 1)
        return true;
    int length = lengths[time.month - 1];
    bool leap = time.year % 4 == 0 && (time.year % 100 != 0 || time.year % 400 == 0);
    if (time.month == 2 && time.year >= 100 && !leap)
        --length;
    return time.day <= length;
}

/// Reads up to 32 digits; false where there is none or where the field cannot hold them.
bool TakeField(const char *&s, char field, short &value)
{
    enum { DIGITS = 32, TOO_LARGE = 10000 };
    int number = 0, count = 0;
    for (; count < DIGITS && IsDigit(*s); ++count, ++s) {
        number = number * 10 + (*s - '0');
        if (number > TOO_LARGE)
            number = TOO_LARGE;
    }
    value = static_cast<short>(number);
    return count > 0 && IsInRange(field, number);
}

bool TakeTime(const char *s, const char *format, TEdcTime &time)
{
    for (; *format != EOS; ++format) {
        short *field = TimeField(time, *format);
        if (field != NULL ? !TakeField(s, *format, *field) : *s++ != *format)
            return false;
    }
    return HasDay(time);
}

/// "[sign]digits[.digits]"; false without a digit and where the number is longer than its buffer.
bool TakeNumber(const char *&s, double &number)
{
    char buffer[SHORTSTRMAX];
    int length = 0, digits = 0;
    bool point = false;
    if (*s == '-' || *s == '+')
        buffer[length++] = *s++;
    for (; IsDigit(*s) || (*s == '.' && !point); ++s) {
        if (length >= SHORTSTRMAX - 1)
            return false;
        point = point || *s == '.';
        digits += *s != '.';
        buffer[length++] = *s;
    }
    buffer[length] = EOS;
    number = std::strtod(buffer, NULL);
    return digits > 0;
}

bool TakeToken(const char *s, char (&token)[SHORTSTRMAX])
{
    int length = 0;
    for (; *s != EOS && !IsSpace(*s); ++s) {
        if (length >= SHORTSTRMAX - 1)
            return false;
        token[length++] = *s;
    }
    token[length] = EOS;
    return true;
}

/// The power of ten of a prefix with its unit, or of the unit alone.
bool ExponentOf(const char *token, const char *unit, int &exponent)
{
    exponent = 0;
    if (*token == EOS)
        return true;
    const char *prefix = std::strchr(prefixes, *token);
    const char *rest = token + 1;
    if (prefix != NULL && (*rest == '.' || (*unit != EOS && std::strcmp(rest, unit) == 0))) {
        exponent = (static_cast<int>(prefix - prefixes) - PREFIX_NONE) * PREFIX_STEP;
        return true;
    }
    return std::strcmp(token, unit) == 0;
}

bool ParseWithUnit(const char *s, const char *unit, double &value)
{
    char token[SHORTSTRMAX];
    int exponent = 0;
    s = SkipSpace(s);
    if (!TakeNumber(s, value) || !TakeToken(SkipSpace(s), token) || !ExponentOf(token, unit, exponent))
        return false;
    value *= std::pow(10.0, exponent);
    return true;
}

bool ParsePlain(const char *s, double &value)
{
    char *end = NULL;
    value = std::strtod(s, &end);
    return end != s && *SkipSpace(end) == EOS && std::isfinite(value);
}
} // namespace

void TEdcAStr::SetTime(const TEdcTime &v, const char *format, int newId)
{
    ASSERT(max > 0);
    ASSERT_AS(text != NULL, "val != NULL");
    if (v.id == EDC_VUDF) {
        id = EDC_VUDF;
        return;
    }
    TEdcTime time = v;
    bool fits = true;
    *text = EOS;
    for (const char *f = format != NULL ? format : defaultTime; *f != EOS; ++f) {
        const short *field = TimeField(time, *f);
        char piece[8] = {*f, EOS};
        if (field != NULL && *field < 0)
            piece[0] = '?';
        else if (field != NULL)
            std::snprintf(piece, sizeof(piece), *f == 'm' || *f == 's' ? "%02hd" : "%hd", *field);
        Append(piece, fits);
    }
    Finish(newId, fits);
}

TEdcInt TEdcAStr::GetInt() const
{
    ASSERT(max > 0);
    ASSERT_AS(text != NULL, "val != NULL");
    TEdcInt result;
    if (id == EDC_VUDF)
        return result;
    char *end = NULL;
    errno = 0;
    long number = std::strtol(text, &end, 10);
    bool held = errno != ERANGE && number >= INT_MIN && number <= INT_MAX;
    if (end != text && *SkipSpace(end) == EOS && held)
        result.Set(static_cast<int>(number));
    return result;
}

TEdcFloat TEdcAStr::GetFloat(const char *unit) const
{
    TEdcFloat result;
    double value = 0;
    if (id == EDC_VUDF || text == NULL)
        return result;
    if (unit != NULL ? ParseWithUnit(text, unit, value) : ParsePlain(text, value))
        result.Set(value);
    return result;
}

TEdcTime TEdcAStr::GetTime(const char *format) const
{
    char from[LONGSTRMAX], pattern[LONGSTRMAX];
    TEdcTime result;
    if (id == EDC_VUDF || text == NULL)
        return result;
    StrCopy(from, text, LONGSTRMAX);
    StrCopy(pattern, format != NULL ? format : defaultTime, LONGSTRMAX);
    StrCollapse(from, STR_NOSPACE);
    StrCollapse(pattern, STR_NOSPACE);
    if (TakeTime(from, pattern, result))
        result.id = EDC_VVAL;
    return result;
}

bool TEdcAStr::IsBlank() const
{
    ASSERT_AS(text != NULL, "val != NULL");
    ASSERT(id != EDC_VUDF);
    return StrIsBlank(text);
}

bool TEdcAStr::Differs(const TEdcAStr &other, bool exact) const
{
    if (id != other.id)
        return true;
    return id == EDC_VVAL && !StrMatch(text, other.text, exact ? 0 : STR_NOCASE | STR_NOSPACE);
}

bool TEdcAStr::Exchange(int mode, TEdcAStr &other, bool exact)
{
    switch (mode) {
    case EDC_XLOAD:
        *this = other;
        return id != EDC_VUDF || other.id == EDC_VUDF;
    case EDC_XSTORE:
        if (id == EDC_VUDF)
            return true;
        other = *this;
        return other.id != EDC_VUDF;
    case EDC_XMERGE:
        if (Differs(other, exact))
            id = EDC_VUDF;
        return true;
    case EDC_XMATCH:
        return id == EDC_VUDF || !Differs(other, exact);
    default:
        return false;
    }
}

TEdcShortStr::TEdcShortStr() : TEdcAStr(storage, SHORTSTRMAX, EDC_VUDF)
{
    storage[0] = EOS;
}

TEdcShortStr::TEdcShortStr(const TEdcShortStr &other) : TEdcShortStr()
{
    TEdcAStr::operator=(other);
}

int TEdcShortStr::Size() const
{
    return sizeof(*this);
}

void TEdcShortStr::BindText()
{
    text = storage;
}

TEdcShortStr &TEdcShortStr::operator=(const TEdcShortStr &other)
{
    TEdcAStr::operator=(other);
    return *this;
}

TEdcLongStr::TEdcLongStr() : TEdcAStr(storage, LONGSTRMAX, EDC_VUDF)
{
    storage[0] = EOS;
}

TEdcLongStr::TEdcLongStr(const TEdcLongStr &other) : TEdcLongStr()
{
    TEdcAStr::operator=(other);
}

int TEdcLongStr::Size() const
{
    return sizeof(*this);
}

void TEdcLongStr::BindText()
{
    text = storage;
}

TEdcLongStr &TEdcLongStr::operator=(const TEdcLongStr &other)
{
    TEdcAStr::operator=(other);
    return *this;
}
