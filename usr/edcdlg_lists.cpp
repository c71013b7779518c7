#include "lib/xassert.h"
#include "usr/edcdlg.h"
#include "usr/edcdlg_transfer.h"

#include "lib/xon.h"

// Combo and list box do the same on lists of different classes. What they share is written for any class with
// the entries of a list: GetCount(), GetString(), GetItemData(), SetItemData(), AddString(), SetSelIndex().
namespace
{
template <class LIST>
int FindEntry(const LIST &list, const char *text, int start, int id)
{
    for (int i = start < 0 ? 0 : start; i < list.GetCount(); ++i)
        if ((id == -1 || list.GetItemData(i) == id) &&
            EdcTextsMatch(list.GetString(i).c_str(), text, list.GetFlags()))
            return i;
    return -1;
}

template <class LIST>
int AddEntry(LIST &list, const TEdcAStr &v)
{
    const char *text = v.id == EDC_VUDF ? "" : v.text;
    int index = (list.GetFlags() & EDC_CfUNIQUE) != 0 ? FindEntry(list, text, 0, v.id) : -1;
    if (index >= 0)
        return index;
    index = list.AddString(text);
    if (index >= 0)
        list.SetItemData(index, v.id);
    return index;
}

template <class LIST>
int EntryById(const LIST &list, int id, bool forward)
{
    int undefined = -1; // the highest index of those walked so far
    for (int n = 0; n < list.GetCount(); ++n) {
        int i = forward ? n : list.GetCount() - 1 - n;
        int data = list.GetItemData(i);
        if (data == id)
            return i;
        if (data == EDC_VUDF && i > undefined)
            undefined = i;
    }
    return undefined;
}

template <class LIST>
int SelectEntry(LIST &list, int id, bool forward)
{
    int index = EntryById(list, id, forward);
    list.SetSelIndex(index);
    return index;
}

/// The value of the selected entry. @return false where none is selected
template <class LIST>
bool TakeSelected(const LIST &list, TEdcAStr &v)
{
    int index = list.GetSelIndex();
    if (index >= 0)
        v.Set(list.GetItemData(index), list.GetString(index).c_str());
    return index >= 0;
}

/// Selects the entry that reads like the value. @return false where there is none
template <class LIST>
bool SelectText(LIST &list, const TEdcAStr &v)
{
    int index = v.id == EDC_VVAL ? FindEntry(list, v.text, 0, EDC_VVAL) : -1;
    if (index >= 0)
        list.SetSelIndex(index);
    return index >= 0;
}

/// What stems from the list itself needs no look at its text.
template <class LIST>
bool AsksValidator(const LIST &list, TEdcAStr &v)
{
    if (list.GetValidator() == NULL)
        return false;
    list.GetValue(v);
    if (v.id == EDC_VUDF)
        *v.text = EOS;
    return v.id == EDC_VUDF || v.id == EDC_VVAL;
}

template <class LIST>
bool IsEntryValid(LIST &list, bool report)
{
    bool valid = true;
    __enter
        TEdcLongStr v;
        if (AsksValidator(list, v)) {
            valid = list.GetValidator()->IsValid(v.text); __test;
            if (!valid && report) {
                list.GetValidator()->Error(&list); __test;
            }
        }
    __point
        valid = false;
    __treat
    return valid;
}

/// What a list answers once the library's own test has agreed.
template <class LIST>
bool CanListClose(LIST &list)
{
    bool valid = true;
    __enter
        if (list.IsWindowEnabled()) {
            valid = list.IsValid(true); __test;
            if (!valid)
                list.TakeFocus();
        }
    __point
        valid = false;
    __treat
    return valid;
}
} // namespace

TEdcComboBox::TEdcComboBox(TDialog *aDialog, int resId, int txtLim, TValidator *aValidator, int aFlags)
    : TComboBox(aDialog, resId, txtLim), validator(aValidator), flags(aFlags)
{
    ASSERT(txtLim >= SHORTSTRMAX && txtLim <= LONGSTRMAX);
    SetInputRules(aValidator);
}

void TEdcComboBox::SetValidator(TValidator *v)
{
    if (v == validator.get())
        return;
    SetInputRules(v); // before the former one goes
    validator.reset(v);
    SetHint(v != NULL ? v->Hint().c_str() : "");
}

void TEdcComboBox::SetupWindow()
{
    TComboBox::SetupWindow();
    if (validator)
        SetHint(validator->Hint().c_str());
}

int TEdcComboBox::Add(const TEdcAStr &v)
{
    return AddEntry(*this, v);
}

int TEdcComboBox::Find(const char *text, int start, int anId) const
{
    return FindEntry(*this, text, start, anId);
}

int TEdcComboBox::SelectById(int anId, bool forward)
{
    return SelectEntry(*this, anId, forward);
}

/// What is not in the list stands in the edit field, or without one as the undefined entry.
void TEdcComboBox::SetValue(const TEdcAStr &v)
{
    if (SelectText(*this, v))
        return;
    if (v.id == EDC_VVAL && HasEdit())
        SetText(v.text);
    else
        SelectEntry(*this, v.id == EDC_VVAL ? static_cast<int>(EDC_VUDF) : v.id, true);
}

void TEdcComboBox::GetValue(TEdcAStr &v) const
{
    if (TakeSelected(*this, v))
        return;
    if (HasEdit())
        EdcTakeTyped(v, Text().c_str());
    else
        v.id = EDC_VUDF;
}

bool TEdcComboBox::IsChanged() const
{
    return EdcIsTextChanged(*this, value);
}

bool TEdcComboBox::IsValid(bool report)
{
    return IsEntryValid(*this, report);
}

bool TEdcComboBox::CanClose()
{
    return TComboBox::CanClose() && CanListClose(*this);
}

int TEdcComboBox::Transfer(void *field, int direction)
{
    return EdcTransferText(*this, value, validator.get(), field, direction);
}

TEdcListBox::TEdcListBox(TDialog *aDialog, int resId, TValidator *aValidator, int aFlags)
    : TListBox(aDialog, resId), validator(aValidator), flags(aFlags)
{
}

void TEdcListBox::SetValidator(TValidator *v)
{
    if (v == validator.get())
        return;
    validator.reset(v);
    SetHint(v != NULL ? v->Hint().c_str() : "");
}

void TEdcListBox::SetupWindow()
{
    TListBox::SetupWindow();
    if (validator)
        SetHint(validator->Hint().c_str());
}

int TEdcListBox::Add(const TEdcAStr &v)
{
    return AddEntry(*this, v);
}

int TEdcListBox::Find(const char *text, int start, int anId) const
{
    return FindEntry(*this, text, start, anId);
}

int TEdcListBox::SelectById(int anId, bool forward)
{
    return SelectEntry(*this, anId, forward);
}

void TEdcListBox::SetValue(const TEdcAStr &v)
{
    if (!SelectText(*this, v))
        SelectEntry(*this, v.id == EDC_VVAL ? static_cast<int>(EDC_VUDF) : v.id, true);
}

void TEdcListBox::GetValue(TEdcAStr &v) const
{
    if (!TakeSelected(*this, v))
        v.id = EDC_VUDF;
}

bool TEdcListBox::IsChanged() const
{
    return EdcIsTextChanged(*this, value);
}

bool TEdcListBox::IsValid(bool report)
{
    return IsEntryValid(*this, report);
}

bool TEdcListBox::CanClose()
{
    return TListBox::CanClose() && CanListClose(*this);
}

int TEdcListBox::Transfer(void *field, int direction)
{
    return EdcTransferText(*this, value, validator.get(), field, direction);
}
