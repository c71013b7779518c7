// Texts and pictures by number, check boxes, radio buttons and their groups. A group knows its boxes by a chain
// through them, the one added last first; whichever of the two goes first takes itself out of it.
#include "lib/xassert.h"
#include "usr/edcdlg.h"
#include "usr/edcutils.h"

namespace
{
const char *NumberedText(int resId)
{
    return resId != 0 ? GetResString(resId) : "";
}

/// The transfer of a control that stands for a number. `value` is what was set or got last.
/// @return bytes of the field
template <class CONTROL>
int TransferNumber(CONTROL &control, TEdcInt &value, TEdcInt &field, int direction)
{
    if (control.GetFlags() & EDC_CfNOTRANSFER)
        return 0;
    if (direction == WIN_TRANSFER_SETDATA) {
        value = field;
        control.SetValue(value);
    } else {
        if (!(control.GetFlags() & EDC_CfNOGET))
            control.GetValue(value);
        field = value;
    }
    return field.Size();
}

const TEdcRadioButton *AsRadio(const TEdcCheckBox *ck)
{
    return dynamic_cast<const TEdcRadioButton *>(ck);
}
} // namespace

void TEdcStatic::SetRes(int aResId)
{
    resId = aResId;
    ShowRes();
}

void TEdcStatic::SetupWindow()
{
    TStatic::SetupWindow();
    ShowRes();
}

void TEdcStatic::CleanupWindow()
{
    if (resId != NONE && (Style() & WIN_STYLE_KIND) == WIN_SS_BITMAP)
        SetPicture(0);
    TStatic::CleanupWindow();
}

void TEdcStatic::ShowRes()
{
    if (resId == NONE)
        return;
    if ((Style() & WIN_STYLE_KIND) == WIN_SS_BITMAP)
        SetPicture(resId);
    else
        SetText(NumberedText(resId));
}

void TEdcButton::SetRes(int aResId)
{
    resId = aResId;
    ShowRes();
}

void TEdcButton::SetupWindow()
{
    TButton::SetupWindow();
    ShowRes();
}

void TEdcButton::CleanupWindow()
{
    if (resId != NONE && (Style() & WIN_STYLE_BITMAP))
        SetPicture(0);
    TButton::CleanupWindow();
}

void TEdcButton::ShowRes()
{
    if (resId == NONE)
        return;
    if (Style() & WIN_STYLE_BITMAP)
        SetPicture(resId);
    else
        SetText(NumberedText(resId));
}

TEdcCheckBox::TEdcCheckBox(TDialog *aDialog, int aResId, TEdcCheckGroup *aGroup, bool aTristate, int aFlags)
    : TEdcButton(aDialog, aResId), tristate(aTristate), flags(aFlags)
{
    if (aGroup)
        aGroup->Add(this);
}

TEdcCheckBox::~TEdcCheckBox()
{
    if (group)
        group->Remove(this);
}

void TEdcCheckBox::SetTristate(bool on)
{
    tristate = on;
    unsigned kind = Style() & WIN_STYLE_KIND;
    if (on && (kind == WIN_BS_CHECK || kind == WIN_BS_AUTOCHECK)) {
        SetKind(kind + (WIN_BS_3STATE - WIN_BS_CHECK));
    } else if (!on && (kind == WIN_BS_3STATE || kind == WIN_BS_AUTO3STATE)) {
        bool undefined = GetCheck() == WIN_INDETERMINATE;
        SetKind(kind - (WIN_BS_3STATE - WIN_BS_CHECK));
        if (undefined)
            SetCheck(WIN_UNCHECKED);
    }
}

void TEdcCheckBox::SetValue(const TEdcInt &v)
{
    if (v.id == EDC_VVAL)
        SetCheck(v.value != 0 ? WIN_CHECKED : WIN_UNCHECKED);
    else
        SetCheck(tristate ? WIN_INDETERMINATE : WIN_UNCHECKED);
}

void TEdcCheckBox::GetValue(TEdcInt &v) const
{
    TCheckState state = GetCheck();
    v.id = state == WIN_INDETERMINATE ? EDC_VUDF : EDC_VVAL;
    v.value = state == WIN_CHECKED;
}

bool TEdcCheckBox::IsChecked() const
{
    return GetCheck() == WIN_CHECKED;
}

bool TEdcCheckBox::IsUnchecked() const
{
    return GetCheck() == WIN_UNCHECKED;
}

bool TEdcCheckBox::IsChanged() const
{
    TEdcInt now;
    GetValue(now);
    if (value.id == EDC_VVAL)
        return now.id != EDC_VVAL || (now.value != 0) != (value.value != 0);
    return now.id != value.id;
}

void TEdcCheckBox::SetupWindow()
{
    TEdcButton::SetupWindow();
    SetTristate(tristate);
}

int TEdcCheckBox::Transfer(void *field, int direction)
{
    return TransferNumber(*this, value, *static_cast<TEdcInt *>(field), direction);
}

void TEdcCheckBox::EvNotify(int code)
{
    if (code == WIN_BN_CLICKED && group)
        group->Clicked(this);
    TEdcButton::EvNotify(code);
}

TEdcRadioButton::TEdcRadioButton(TDialog *aDialog, unsigned aResId, TEdcCheckGroup *aGroup)
    : TEdcRadioButton(aDialog, aResId, aGroup, static_cast<int>(aResId))
{
    ASSERT_AS(aResId <= MAXLONG, "resId <= MAXLONG");
}

TEdcRadioButton::TEdcRadioButton(TDialog *aDialog, unsigned aResId, TEdcCheckGroup *aGroup, int aData)
    : TEdcCheckBox(aDialog, static_cast<int>(aResId), aGroup), data(aData)
{
}

void TEdcRadioButton::SetupWindow()
{
    TEdcCheckBox::SetupWindow();
    auto *radioGroup = dynamic_cast<TEdcRadioGroup *>(Group());
    if (!radioGroup)
        return;
    SetTabStop(false);
    if (radioGroup->Next(this))
        return;
    bool chosen = !radioGroup->GetAllowNone();
    radioGroup->SetTabStop(!chosen);
    if (chosen) {
        SetCheck(WIN_CHECKED);
        SetTabStop(true);
    }
}

int TEdcRadioButton::Transfer(void *, int)
{
    return 0;
}

void TEdcRadioButton::EvNotify(int code)
{
    TEdcCheckBox::EvNotify(code);
    auto *radioGroup = dynamic_cast<TEdcRadioGroup *>(Group());
    if (radioGroup && (code == WIN_BN_NEXT || code == WIN_BN_PRIOR))
        radioGroup->Step(this, code == WIN_BN_NEXT);
}

TEdcCheckGroup::TEdcCheckGroup(TDialog *aDialog, int resId) : TControl(aDialog, resId) {}

TEdcCheckGroup::~TEdcCheckGroup()
{
    while (first)
        Remove(first);
}

void TEdcCheckGroup::Add(TEdcCheckBox *ck)
{
    ASSERT(ck != NULL && ck->next == NULL);
    if (ck->group)
        ck->group->Remove(ck);
    ck->next = first;
    ck->group = this;
    first = ck;
}

void TEdcCheckGroup::Remove(TEdcCheckBox *ck)
{
    TEdcCheckBox **link = &first;
    while (*link && *link != ck)
        link = &(*link)->next;
    if (*link)
        *link = ck->next;
    ck->next = NULL;
    ck->group = NULL;
}

TEdcCheckBox *TEdcCheckGroup::Next(TEdcCheckBox *ck) const
{
    ASSERT(ck != NULL);
    return ck->next;
}

void TEdcCheckGroup::Enable(bool on)
{
    for (TEdcCheckBox *ck = first; ck; ck = Next(ck))
        ck->EnableWindow(on);
    EnableWindow(on);
}

void TEdcCheckGroup::Clicked(TEdcCheckBox *)
{
    if (GetHandle())
        Dialog()->SendCommand(GetHandle(), WIN_BN_CLICKED);
}

TEdcRadioGroup::TEdcRadioGroup(TDialog *aDialog, int resId, bool aAllowNone, int aFlags)
    : TEdcCheckGroup(aDialog, resId), allowNone(aAllowNone), flags(aFlags)
{
}

void TEdcRadioGroup::SetAllowNone(bool on)
{
    allowNone = on;
    if (!on && !Chosen())
        SetValue(TEdcInt());
}

void TEdcRadioGroup::SetValue(const TEdcInt &v)
{
    TEdcCheckBox *taken = NULL;
    TEdcCheckBox *last = NULL;
    for (TEdcCheckBox *ck = first; ck; ck = Next(ck)) {
        ck->SetCheck(WIN_UNCHECKED);
        ck->SetTabStop(false);
        if (v.id == EDC_VVAL && AsRadio(ck) && AsRadio(ck)->Data() == v.value)
            taken = ck;
        last = ck;
    }
    if (!taken && !allowNone)
        taken = last;
    SetTabStop(!taken);
    if (!taken)
        return;
    taken->SetCheck(WIN_CHECKED);
    taken->SetTabStop(true);
    if (HasFocus())
        taken->TakeFocus(); // the group has the focus only while there is no button to have it
}

void TEdcRadioGroup::GetValue(TEdcInt &v) const
{
    v = TEdcInt();
    if (const TEdcRadioButton *on = AsRadio(Chosen()))
        v.Set(on->Data());
}

bool TEdcRadioGroup::IsChanged() const
{
    TEdcInt now;
    GetValue(now);
    return now.id != value.id || (value.id == EDC_VVAL && now.value != value.value);
}

void TEdcRadioGroup::Clicked(TEdcCheckBox *ck)
{
    if (!ck->IsChecked()) {
        TEdcInt v;
        if (AsRadio(ck))
            v.Set(AsRadio(ck)->Data());
        SetValue(v);
    } else if (allowNone) {
        SetValue(TEdcInt());
    }
    TEdcCheckGroup::Clicked(ck);
}

int TEdcRadioGroup::Transfer(void *field, int direction)
{
    return TransferNumber(*this, value, *static_cast<TEdcInt *>(field), direction);
}

void TEdcRadioGroup::EvNotify(int code)
{
    TEdcCheckGroup::EvNotify(code);
    if (code == WIN_BN_SETFOCUS || code == WIN_BN_KILLFOCUS)
        Mark(code == WIN_BN_SETFOCUS ? 2 : 1);
    else if (code == WIN_BN_NEXT || code == WIN_BN_PRIOR)
        Step(Chosen(), code == WIN_BN_NEXT);
}

void TEdcRadioGroup::Step(TEdcCheckBox *from, bool forward)
{
    TEdcCheckBox *start = Neighbour(from, forward);
    TEdcCheckBox *to = start;
    while (to && to != from && !(to->IsWindowEnabled() && to->IsWindowVisible())) {
        to = Neighbour(to, forward);
        if (to == start)
            return;
    }
    if (!to || to == from)
        return;
    to->TakeFocus();
    if (!to->IsChecked())
        Dialog()->SendCommand(to->GetHandle(), WIN_BN_CLICKED);
}

TEdcCheckBox *TEdcRadioGroup::Chosen() const
{
    TEdcCheckBox *ck = first;
    while (ck && !ck->IsChecked())
        ck = Next(ck);
    return ck;
}

/// In the order of adding, which is the chain's from behind.
TEdcCheckBox *TEdcRadioGroup::Neighbour(TEdcCheckBox *from, bool forward) const
{
    if (!forward)
        return from && Next(from) ? Next(from) : first;
    TEdcCheckBox *ck = first;
    while (ck && Next(ck) && Next(ck) != from)
        ck = Next(ck);
    return ck;
}

void TEdcRadioGroup::Mark(int aMark)
{
    mark = aMark;
    ShowMark(mark == 2);
    if (mark == 1)
        mark = 0;
}
