// What edit, combo and list box share: the way between the text that they show, the value that they keep and
// the field of the record, and the comparison behind IsChanged(). Private to usr/edcdlg_*.cpp. A control has
// SetValue(const TEdcAStr &), which shows a value, and GetValue(TEdcAStr &) const, which reads one; its stored
// value, flags and validator come as arguments, for they are its own.
#ifndef USR_EDCDLG_TRANSFER_H
#define USR_EDCDLG_TRANSFER_H

#include "lib/charstr.h"
#include "usr/edcdlg.h"

/// Whether the validator stands between the text and a field that is no text.
inline bool EdcConverts(const TValidator *validator)
{
    return validator != NULL && validator->HasOption(WIN_VALIDATOR_TRANSFER);
}

/// What was typed: undefined where it is blank or does not fit.
inline void EdcTakeTyped(TEdcAStr &v, const char *text)
{
    v.Set(EDC_VVAL, text);
    if (v.id == EDC_VVAL && v.IsBlank())
        v.id = EDC_VUDF;
}

/// From the stored value to the field of the record.
inline void EdcStoreField(TEdcLongStr &value, TValidator *validator, TEdcValue *field)
{
    if (!EdcConverts(validator)) {
        *static_cast<TEdcAStr *>(field) = value;
        return;
    }
    field->id = value.id;
    if (value.id == EDC_VVAL)
        validator->Transfer(value.text, field, WIN_TRANSFER_GETDATA);
}

/// From the field of the record to the stored value.
inline void EdcLoadField(TEdcLongStr &value, TValidator *validator, TEdcValue *field)
{
    if (!EdcConverts(validator)) {
        value = *static_cast<const TEdcAStr *>(field);
        return;
    }
    value.id = field->id;
    if (value.id == EDC_VVAL)
        validator->Transfer(value.text, field, WIN_TRANSFER_SETDATA);
}

/// A control's Transfer(). @return bytes of the field, 0 where the control has none
template <class CONTROL>
int EdcTransferText(CONTROL &control, TEdcLongStr &value, TValidator *validator, void *record, int direction)
{
    if ((control.GetFlags() & EDC_CfNOTRANSFER) != 0)
        return 0;
    TEdcValue *field = static_cast<TEdcValue *>(record);
    if (direction == WIN_TRANSFER_GETDATA) {
        if ((control.GetFlags() & EDC_CfNOGET) == 0)
            control.GetValue(value);
        EdcStoreField(value, validator, field);
    } else {
        EdcLoadField(value, validator, field);
        control.SetValue(value);
    }
    return field->Size();
}

inline bool EdcTextsMatch(const char *s1, const char *s2, int flags)
{
    return StrMatch(s1, s2, (flags & EDC_CfCASE) != 0 ? 0 : static_cast<int>(STR_NOCASE));
}

/// A control's IsChanged(): whether the window shows something else than the stored value.
template <class CONTROL>
bool EdcIsTextChanged(const CONTROL &control, const TEdcLongStr &value)
{
    TEdcLongStr now;
    control.GetValue(now);
    if (value.id != EDC_VVAL)
        return now.id != value.id;
    return now.id != EDC_VVAL || !EdcTextsMatch(now.text, value.text, control.GetFlags());
}

#endif
