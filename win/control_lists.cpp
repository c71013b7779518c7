#include "win/listparts.h"

namespace
{
// What the control objects of both kinds ask of their widget; a control without one has an empty list.

int AddTo(HWND control, const char *text)
{
    TListFace *list = ListFace(control);
    if (list == NULL)
        return -1;
    int place = list->Store().Place(text);
    list->Insert(place, text);
    return place;
}

int InsertInto(HWND control, int index, const char *text)
{
    TListFace *list = ListFace(control);
    if (list == NULL || index < 0 || index > list->Store().Count())
        return -1;
    list->Insert(index, text);
    return index;
}

void DeleteFrom(HWND control, int index)
{
    TListFace *list = ListFace(control);
    if (list != NULL && list->Store().Has(index))
        list->Delete(index);
}

void ClearAll(HWND control)
{
    if (TListFace *list = ListFace(control))
        list->Clear();
}

int CountOf(HWND control)
{
    TListFace *list = ListFace(control);
    return list != NULL ? list->Store().Count() : 0;
}

std::string StringOf(HWND control, int index)
{
    TListFace *list = ListFace(control);
    return list != NULL ? list->Store().Text(index) : std::string();
}

void SetDataOf(HWND control, int index, int data)
{
    if (TListFace *list = ListFace(control))
        list->Store().SetData(index, data);
}

int DataOf(HWND control, int index)
{
    TListFace *list = ListFace(control);
    return list != NULL ? list->Store().Data(index) : 0;
}

int SelectionOf(HWND control)
{
    TListFace *list = ListFace(control);
    return list != NULL ? list->Selected() : -1;
}

/// A number beside the list selects nothing.
void SelectIn(HWND control, int index)
{
    if (TListFace *list = ListFace(control))
        list->Select(list->Store().Has(index) ? index : -1);
}
} // namespace

TComboBox::TComboBox(TDialog *aDialog, int resId, int aTextLimit)
    : TControl(aDialog, resId), textLimit(aTextLimit)
{
}

bool TComboBox::HasEdit() const
{
    return (Style() & WIN_STYLE_KIND) == WIN_CBS_DROPDOWN;
}

int TComboBox::AddString(const char *text)
{
    return AddTo(GetHandle(), text);
}

int TComboBox::InsertString(int index, const char *text)
{
    return InsertInto(GetHandle(), index, text);
}

void TComboBox::DeleteString(int index)
{
    DeleteFrom(GetHandle(), index);
}

void TComboBox::ClearList()
{
    ClearAll(GetHandle());
}

int TComboBox::GetCount() const
{
    return CountOf(GetHandle());
}

std::string TComboBox::GetString(int index) const
{
    return StringOf(GetHandle(), index);
}

void TComboBox::SetItemData(int index, int data)
{
    SetDataOf(GetHandle(), index, data);
}

int TComboBox::GetItemData(int index) const
{
    return DataOf(GetHandle(), index);
}

int TComboBox::GetSelIndex() const
{
    return SelectionOf(GetHandle());
}

void TComboBox::SetSelIndex(int index)
{
    SelectIn(GetHandle(), index);
}

void TComboBox::SetText(const char *text)
{
    if (TDropFace *drop = DropFace(GetHandle()))
        drop->SetFieldText(text);
}

void TComboBox::SetEditSelection(int start, int end)
{
    TDropFace *drop = DropFace(GetHandle());
    if (TFieldFace *field = drop != NULL ? FieldFace(drop->Field()) : NULL)
        field->SetSelection(start, end);
}

void TComboBox::ShowList(bool down)
{
    if (TDropFace *drop = DropFace(GetHandle()))
        drop->Drop(down);
}

void TComboBox::SetInputRules(const TValidator *validator)
{
    rules = validator;
    TDropFace *drop = DropFace(GetHandle());
    if (drop != NULL && drop->Field() != NULL)
        SetFieldRules(drop->Field(), textLimit, rules);
}

void TComboBox::SetupWindow()
{
    TControl::SetupWindow();
    SetInputRules(rules);
}

TListBox::TListBox(TDialog *aDialog, int resId) : TControl(aDialog, resId) {}

int TListBox::AddString(const char *text)
{
    return AddTo(GetHandle(), text);
}

int TListBox::InsertString(int index, const char *text)
{
    return InsertInto(GetHandle(), index, text);
}

void TListBox::DeleteString(int index)
{
    DeleteFrom(GetHandle(), index);
}

void TListBox::ClearList()
{
    ClearAll(GetHandle());
}

int TListBox::GetCount() const
{
    return CountOf(GetHandle());
}

std::string TListBox::GetString(int index) const
{
    return StringOf(GetHandle(), index);
}

void TListBox::SetItemData(int index, int data)
{
    SetDataOf(GetHandle(), index, data);
}

int TListBox::GetItemData(int index) const
{
    return DataOf(GetHandle(), index);
}

int TListBox::GetSelIndex() const
{
    return SelectionOf(GetHandle());
}

void TListBox::SetSelIndex(int index)
{
    SelectIn(GetHandle(), index);
}

int TListBox::GetTopIndex() const
{
    TBoxFace *box = BoxFace(GetHandle());
    return box != NULL ? box->TopIndex() : 0;
}

void TListBox::SetTopIndex(int index)
{
    if (TBoxFace *box = BoxFace(GetHandle()))
        box->SetTopIndex(index);
}

void TListBox::SetRedraw(bool on)
{
    if (TBoxFace *box = BoxFace(GetHandle()))
        box->SetRedraw(on);
}
