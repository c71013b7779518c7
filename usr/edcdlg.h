// Values that pass between the model and a dialog. A value knows, beside its content, whether it holds
// something, is undefined or is explicitly nothing: fields of several objects are merged one by one, a field
// that they disagree on turns undefined, the dialog shows it empty, and what stays undefined is not written
// back. The same state tells what came of parsing a text. A record of values is walked by Size(), so a value
// class has no virtual destructor and nothing stands before Size() in it.
// Validators check and convert a control's text against a range and a unit.
#ifndef USR_EDCDLG_H
#define USR_EDCDLG_H

#include "win/validator.h"

enum {
    EDC_VUDF = -2, // undefined: not set, merged values differ, parsing failed, or a text did not fit
    EDC_VVAL = -3, // holds a value
    EDC_VNUL = -4, // explicitly nothing; strings only
};                 // 0 and above: the identifier of an item in a list control; strings only

enum {
    EDC_XLOAD = 1,  // takes over the other
    EDC_XSTORE = 2, // gives itself to the other, unless undefined
    EDC_XMERGE = 3, // turns undefined where the two differ
    EDC_XMATCH = 4, // whether the two agree; undefined agrees with all
};

enum { SHORTSTRMAX = 32, LONGSTRMAX = 256 }; // capacities, with the terminator

/// One field of a record. What the derived classes call Exchange is called on the record's field, with the
/// object's own value; it is true but for strings that did not fit and for an EDC_XMATCH that fails.
class TEdcValue
{
public:
    int id = EDC_VUDF; // the state

    virtual int Size() const; // of the whole object, bytes
};

class TEdcInt : public TEdcValue
{
public:
    int value = 0;

    TEdcInt() = default;
    TEdcInt(int v) { Set(v); }
    int Size() const override;
    void Set(int v);
    bool Exchange(int mode, TEdcInt &other);
};

class TEdcFloat : public TEdcValue
{
public:
    double value = 0;

    TEdcFloat() = default;
    TEdcFloat(double v) { Set(v); }
    int Size() const override;
    void Set(double v);
    bool Exchange(int mode, TEdcFloat &other); // compares without tolerance
};

/// A date, a time of day, or both; a field that is not given is -1.
class TEdcTime : public TEdcValue
{
public:
    short year = -1;
    short month = -1; // from 1
    short day = -1;   // from 1
    short hour = -1;
    short minute = -1;
    short second = -1;

    TEdcTime() = default;
    TEdcTime(int y, int M, int d, int h, int m, int s);
    int Size() const override;
    void SetDate(int y, int M, int d, bool clearTime);
    void SetTime(int h, int m, int s, bool clearDate);
    bool Exchange(int mode, TEdcTime &other);
};

/// A text in a buffer of the caller's, or of a derived class. What does not fit is cut and makes the value
/// undefined. A copy made by the constructor shares the buffer; an assignment copies the text.
class TEdcAStr : public TEdcValue
{
public:
    char *text; // view, but for derived classes
    int max;    // capacity of `text`, terminator included

    TEdcAStr(char *buf, int aMax, int anId);
    TEdcAStr(const TEdcAStr &) = default;
    int Size() const override;
    virtual void BindText(); // points `text` at the object's own storage; base: there is none
    TEdcAStr &operator=(const char *s);
    TEdcAStr &operator=(const TEdcAStr &other);

    void Set(int newId, const char *s);
    void SetRes(int newId, int resId);
    /// printf. The caller sees to the width; what is too long for `max` is cut as by Set.
    void Format(int newId, const char *format, ...) __attribute__((format(printf, 3, 4)));
    void FormatRes(int newId, int resId, ...);
    void SetInt(const TEdcInt &v, int newId = EDC_VVAL);
    /// @param digits  behind the point; below 0 six significant ones, as "%lg" shows them
    /// @param unit    weak; picks a decimal prefix and stands behind the number, "" the prefix alone ("1.2
    /// k."),
    ///                NULL neither. From 1e21 on and below 1e-20 in size there is no prefix, and no unit.
    void SetFloat(const TEdcFloat &v, int digits, const char *unit, int newId = EDC_VVAL);
    /// @param format  weak; r or y, M, d, h, m and s stand for the fields, all else for itself; NULL is
    ///                "d.M.r, h:m:s". A field that is not given shows as "?".
    void SetTime(const TEdcTime &v, const char *format, int newId = EDC_VVAL);

    // Undefined where the text is undefined or no such thing; a number too large for its type is none.
    TEdcInt GetInt() const;
    TEdcFloat GetFloat(const char *unit) const; // NULL: a plain number, exponents included
    TEdcTime GetTime(const char *format) const; // what follows the format's end is ignored
    bool IsBlank() const;                       // nothing but white space

    /// @param exact  false: texts agree whatever their case and white space
    bool Exchange(int mode, TEdcAStr &other, bool exact = false);

private:
    void Finish(int newId, bool fits) { id = fits ? newId : static_cast<int>(EDC_VUDF); }
    bool Differs(const TEdcAStr &other, bool exact) const;
    void Append(const char *s, bool &fits);
};

class TEdcShortStr : public TEdcAStr
{
public:
    TEdcShortStr();
    TEdcShortStr(const TEdcShortStr &other);
    int Size() const override;
    void BindText() override;
    using TEdcAStr::operator=;
    TEdcShortStr &operator=(const TEdcShortStr &other);

private:
    char storage[SHORTSTRMAX];
};

class TEdcLongStr : public TEdcAStr
{
public:
    TEdcLongStr();
    TEdcLongStr(const TEdcLongStr &other);
    int Size() const override;
    void BindText() override;
    using TEdcAStr::operator=;
    TEdcLongStr &operator=(const TEdcLongStr &other);

private:
    char storage[LONGSTRMAX];
};

/// Transfer takes a pointer to the TEdcValue that the class converts, and texts of SHORTSTRMAX characters.
class TEdcValueValidator : public TValidator
{
public:
    explicit TEdcValueValidator(bool aNullOK) : nullOK(aNullOK) {}
    void Error(TWindow *owner) override; // a box with the reason; needs an owner
    bool IsValid(const char *text) override;
    int Transfer(char *text, void *value, int direction) override;

protected:
    bool nullOK; // a blank text will do
};

class TEdcFloatValidator : public TEdcValueValidator
{
public:
    TEdcFloatValidator(double aMin, double aMax, bool aNullOK, const char *aUnit);
    void SetRange(double aMin, double aMax);
    void SetUnit(const char *aUnit) { unit = aUnit; }
    void Error(TWindow *owner) override;
    bool IsValid(const char *text) override;
    int Transfer(char *text, void *value, int direction) override;

private:
    double min, max;  // both included
    const char *unit; // weak, may be NULL
};

class TEdcIntValidator : public TEdcValueValidator
{
public:
    TEdcIntValidator(int aMin, int aMax, bool aNullOK);
    void SetRange(int aMin, int aMax);
    void Error(TWindow *owner) override;
    bool IsValid(const char *text) override;
    int Transfer(char *text, void *value, int direction) override;

private:
    int min, max; // both included
};

class TEdcTimeValidator : public TEdcValueValidator
{
public:
    TEdcTimeValidator(const char *aFormat, bool aNullOK, int aMinYear, int aMaxYear);
    void SetRange(int aMinYear, int aMaxYear);
    void SetFormat(const char *aFormat);
    void Error(TWindow *owner) override;
    bool IsValid(const char *text) override;
    int Transfer(char *text, void *value, int direction) override;

private:
    int minYear, maxYear; // both included; nothing to a format without a year
    const char *format;   // weak
};

#endif
