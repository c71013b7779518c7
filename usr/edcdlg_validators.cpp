#include "lib/charstr.h"
#include "lib/xassert.h"
#include "usr/edcdlg.h"
#include "usr/edcutils.h"
#include "win/application.h"
#include "win/boxes.h"

#include <climits>
#include <cmath>

namespace
{
enum { TEXT_VALUE = 20500, TEXT_FLOAT = 20501, TEXT_INT = 20503, TEXT_TIME = 20504 };
enum {
    HINT_BETWEEN = 20520,
    HINT_FROM = 20521,
    HINT_TO = 20522,
    HINT_FLOAT = 20523,
    HINT_INT = 20524,
    HINT_DETAIL = 20525,
    HINT_TIME = 20526
};

/// A bound of that size tells a reader nothing.
bool IsBound(double value)
{
    return std::fabs(value) < 1e300;
}

void ShowRefusal(TWindow *owner, const char *text)
{
    TApplication *application = TApplication::Current();
    MessageBox(owner, text, application != NULL ? application->Name().c_str() : "", WIN_BOX_OK,
               WIN_ICON_EXCLAMATION);
}

/// A text that is only looked at, as a string value.
TEdcAStr Wrap(const char *text)
{
    ASSERT_AS(text != NULL, "val != NULL");
    return TEdcAStr(const_cast<char *>(text), StrLength(text) + 1, EDC_VVAL);
}

TEdcAStr WrapForTransfer(char *text)
{
    return TEdcAStr(text, SHORTSTRMAX, EDC_VVAL);
}

bool IsBlankText(const char *text)
{
    return Wrap(text).IsBlank();
}

/// @param from  the lower bound as a text, NULL for none. @param unit  shown where neither bound shows it
std::string RangeHint(int kind, const char *from, const char *to, const char *unit)
{
    std::string name = GetResString(kind), range;
    if (from != NULL && to != NULL)
        range = EdcResFormat(HINT_BETWEEN, from, to);
    else if (from != NULL)
        range = EdcResFormat(HINT_FROM, from);
    else if (to != NULL)
        range = EdcResFormat(HINT_TO, to);
    else if (unit != NULL)
        range = unit;
    return range.empty() ? name : EdcResFormat(HINT_DETAIL, name.c_str(), range.c_str());
}

template <class T>
T Known(const T &value)
{
    T copy = value;
    copy.id = EDC_VVAL;
    return copy;
}
} // namespace

void TEdcValueValidator::Error(TWindow *owner)
{
    ASSERT(owner != NULL);
    ShowRefusal(owner, GetResString(TEXT_VALUE));
}

bool TEdcValueValidator::IsValid(const char *text)
{
    wasBlank = IsBlankText(text);
    return !wasBlank || nullOK;
}

int TEdcValueValidator::Transfer(char *, void *value, int)
{
    return static_cast<TEdcValue *>(value)->Size();
}

TEdcFloatValidator::TEdcFloatValidator(double aMin, double aMax, bool aNullOK, const char *aUnit)
    : TEdcValueValidator(aNullOK), unit(aUnit)
{
    options |= WIN_VALIDATOR_TRANSFER | WIN_VALIDATOR_POINT;
    SetRange(aMin, aMax);
}

void TEdcFloatValidator::SetRange(double aMin, double aMax)
{
    ASSERT(aMin <= aMax);
    min = aMin;
    max = aMax;
}

void TEdcFloatValidator::Error(TWindow *owner)
{
    ASSERT(owner != NULL);
    if (wasBlank)
        return TEdcValueValidator::Error(owner);
    TEdcLongStr message;
    TEdcShortStr from, to;
    from.SetFloat(min, -1, unit);
    to.SetFloat(max, -1, unit);
    message.FormatRes(EDC_VVAL, TEXT_FLOAT, from.text, to.text);
    ShowRefusal(owner, message.text);
}

bool TEdcFloatValidator::IsValid(const char *text)
{
    bool present = TEdcValueValidator::IsValid(text);
    if (wasBlank)
        return present;
    TEdcFloat number = Wrap(text).GetFloat(unit);
    return number.id == EDC_VVAL && min <= number.value && number.value <= max;
}

int TEdcFloatValidator::Transfer(char *text, void *value, int direction)
{
    TEdcFloat &number = *static_cast<TEdcFloat *>(static_cast<TEdcValue *>(value));
    TEdcAStr string = WrapForTransfer(text);
    if (direction == WIN_TRANSFER_GETDATA)
        number = string.GetFloat(unit);
    else
        string.SetFloat(Known(number), -1, unit);
    return number.Size();
}

std::string TEdcFloatValidator::Hint() const
{
    TEdcShortStr from, to;
    from.SetFloat(min, -1, unit);
    to.SetFloat(max, -1, unit);
    return RangeHint(HINT_FLOAT, IsBound(min) ? from.text : NULL, IsBound(max) ? to.text : NULL, unit);
}

TEdcIntValidator::TEdcIntValidator(int aMin, int aMax, bool aNullOK) : TEdcValueValidator(aNullOK)
{
    options |= WIN_VALIDATOR_TRANSFER;
    SetRange(aMin, aMax);
}

void TEdcIntValidator::SetRange(int aMin, int aMax)
{
    ASSERT(aMin <= aMax);
    min = aMin;
    max = aMax;
}

void TEdcIntValidator::Error(TWindow *owner)
{
    ASSERT(owner != NULL);
    if (wasBlank)
        return TEdcValueValidator::Error(owner);
    TEdcLongStr message;
    TEdcShortStr from, to;
    from.SetInt(min);
    to.SetInt(max);
    message.FormatRes(EDC_VVAL, TEXT_INT, from.text, to.text);
    ShowRefusal(owner, message.text);
}

bool TEdcIntValidator::IsValid(const char *text)
{
    bool present = TEdcValueValidator::IsValid(text);
    if (wasBlank)
        return present;
    TEdcInt number = Wrap(text).GetInt();
    return number.id == EDC_VVAL && min <= number.value && number.value <= max;
}

int TEdcIntValidator::Transfer(char *text, void *value, int direction)
{
    TEdcInt &number = *static_cast<TEdcInt *>(static_cast<TEdcValue *>(value));
    TEdcAStr string = WrapForTransfer(text);
    if (direction == WIN_TRANSFER_GETDATA)
        number = string.GetInt();
    else
        string.SetInt(Known(number));
    return number.Size();
}

std::string TEdcIntValidator::Hint() const
{
    TEdcShortStr from, to;
    from.SetInt(min);
    to.SetInt(max);
    return RangeHint(HINT_INT, min > INT_MIN ? from.text : NULL, max < INT_MAX ? to.text : NULL, NULL);
}

TEdcTimeValidator::TEdcTimeValidator(const char *aFormat, bool aNullOK, int aMinYear, int aMaxYear)
    : TEdcValueValidator(aNullOK)
{
    options |= WIN_VALIDATOR_TRANSFER;
    SetFormat(aFormat);
    SetRange(aMinYear, aMaxYear);
}

void TEdcTimeValidator::SetRange(int aMinYear, int aMaxYear)
{
    ASSERT(aMinYear >= 0 && aMinYear <= aMaxYear);
    minYear = aMinYear;
    maxYear = aMaxYear;
}

void TEdcTimeValidator::SetFormat(const char *aFormat)
{
    ASSERT(aFormat != NULL);
    format = aFormat;
}

void TEdcTimeValidator::Error(TWindow *owner)
{
    ASSERT(owner != NULL);
    if (wasBlank)
        return TEdcValueValidator::Error(owner);
    TEdcLongStr message;
    TEdcShortStr from, to;
    from.SetInt(minYear);
    to.SetInt(maxYear);
    message.FormatRes(EDC_VVAL, TEXT_TIME, format, from.text, to.text);
    ShowRefusal(owner, message.text);
}

bool TEdcTimeValidator::IsValid(const char *text)
{
    bool present = TEdcValueValidator::IsValid(text);
    if (wasBlank)
        return present;
    TEdcTime time = Wrap(text).GetTime(format);
    if (time.id != EDC_VVAL)
        return false;
    return time.year < 0 || (minYear <= time.year && time.year <= maxYear);
}

int TEdcTimeValidator::Transfer(char *text, void *value, int direction)
{
    TEdcTime &time = *static_cast<TEdcTime *>(static_cast<TEdcValue *>(value));
    TEdcAStr string = WrapForTransfer(text);
    if (direction == WIN_TRANSFER_GETDATA)
        time = string.GetTime(format);
    else
        string.SetTime(Known(time), format);
    return time.Size();
}

std::string TEdcTimeValidator::Hint() const
{
    return EdcResFormat(HINT_TIME, format);
}
