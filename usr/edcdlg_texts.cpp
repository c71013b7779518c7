#include "lib/xassert.h"
#include "usr/edcdlg.h"
#include "usr/edcdlg_transfer.h"

TEdcEdit::TEdcEdit(TDialog *aDialog, int resId, int txtLim, TValidator *aValidator, int aFlags)
    : TEdit(aDialog, resId, txtLim, aValidator), flags(aFlags)
{
    ASSERT(txtLim >= SHORTSTRMAX && txtLim <= LONGSTRMAX);
}

void TEdcEdit::SetValue(const TEdcAStr &v)
{
    SetText(v.id == EDC_VVAL ? v.text : "");
}

void TEdcEdit::GetValue(TEdcAStr &v) const
{
    char text[LONGSTRMAX] = "";
    GetText(text, LONGSTRMAX);
    EdcTakeTyped(v, text);
}

bool TEdcEdit::IsChanged() const
{
    return EdcIsTextChanged(*this, value);
}

int TEdcEdit::Transfer(void *field, int direction)
{
    return EdcTransferText(*this, value, GetValidator(), field, direction);
}
