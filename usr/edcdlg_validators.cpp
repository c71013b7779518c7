#include "lib/charstr.h"
#include "lib/xassert.h"
#include "usr/edcdlg.h"
#include "usr/edcutils.h"
#include "win/application.h"
#include "win/boxes.h"

namespace
{
enum { TEXT_VALUE = 20500, TEXT_FLOAT = 20501, TEXT_INT = 20503, TEXT_TIME = 20504 };

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
    return IsBlankText(text) ? nullOK : true;
}

int TEdcValueValidator::Transfer(char *, void *value, int)
{
    return static_cast<TEdcValue *>(value)->Size();
}

TEdcFloatValidator::TEdcFloatValidator(double aMin, double aMax, bool aNullOK, const char *aUnit)
    : TEdcValueValidator(aNullOK), unit(aUnit)
{
    options |= WIN_VALIDATOR_TRANSFER;
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
    TEdcLongStr message;
    TEdcShortStr from, to;
    from.SetFloat(min, -1, unit);
    to.SetFloat(max, -1, unit);
    message.FormatRes(EDC_VVAL, TEXT_FLOAT, from.text, to.text);
    ShowRefusal(owner, message.text);
}

bool TEdcFloatValidator::IsValid(const char *text)
{
    if (IsBlankText(text))
        return nullOK;
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
    TEdcLongStr message;
    TEdcShortStr from, to;
    from.SetInt(min);
    to.SetInt(max);
    message.FormatRes(EDC_VVAL, TEXT_INT, from.text, to.text);
    ShowRefusal(owner, message.text);
}

bool TEdcIntValidator::IsValid(const char *text)
{
    if (IsBlankText(text))
        return nullOK;
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
    TEdcLongStr message;
    TEdcShortStr from, to;
    from.SetInt(minYear);
    to.SetInt(maxYear);
    message.FormatRes(EDC_VVAL, TEXT_TIME, format, from.text, to.text);
    ShowRefusal(owner, message.text);
}

bool TEdcTimeValidator::IsValid(const char *text)
{
    if (IsBlankText(text))
        return nullOK;
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
