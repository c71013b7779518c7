// Edit fields as the program sees them. What the user does in them stays between the widget and its user: a
// dialog asks for the text when it needs it.
#include "lib/charstr.h"
#include "win/controlparts.h"
#include "win/dialog.h"
#include "win/validator.h"

#include "lib/xon.h"

TEdit::TEdit(TDialog *dialog, int resId, int aTextLimit, TValidator *aValidator)
    : TControl(dialog, resId), textLimit(aTextLimit), validator(aValidator)
{
}

TEdit::~TEdit() = default;

void TEdit::SetValidator(TValidator *v)
{
    if (v == validator.get())
        return;
    if (GetHandle())
        SetFieldRules(GetHandle(), textLimit, v); // before the former one goes
    validator.reset(v);
    if (GetHandle())
        SetHint(v ? v->Hint().c_str() : "");
}

int TEdit::GetText(char *buf, int max) const
{
    if (max < 1)
        return 0;
    StrCopy(buf, Text().c_str(), max);
    return StrLength(buf);
}

int TEdit::TextLength() const
{
    const TFieldFace *field = FieldFace(GetHandle());
    return field ? field->Length() : 0;
}

void TEdit::GetSelection(int &start, int &end) const
{
    start = 0;
    end = 0;
    if (const TFieldFace *field = FieldFace(GetHandle()))
        field->GetSelection(start, end);
}

void TEdit::SetSelection(int start, int end)
{
    if (TFieldFace *field = FieldFace(GetHandle()))
        field->SetSelection(start, end);
}

void TEdit::ReplaceSelection(const char *text)
{
    if (TFieldFace *field = FieldFace(GetHandle()))
        field->Insert(text);
}

bool TEdit::IsValid(bool report)
{
    bool valid = false;
    __enter
        valid = !validator || validator->IsValid(Text().c_str()); __test;
        if (!valid && report) {
            validator->Error(this); __test;
        }
    __point
        valid = false;
    __treat
    return valid;
}

bool TEdit::CanClose()
{
    bool can = false;
    __enter
        can = TControl::CanClose(); __test;
        if (can && IsWindowEnabled() && !IsValid(true)) {
            can = false;
            TakeFocus();
        }
        __test;
    __point
        can = false;
    __treat
    return can;
}

void TEdit::SetupWindow()
{
    TControl::SetupWindow();
    if (!GetHandle())
        return;
    SetFieldRules(GetHandle(), textLimit, validator.get());
    if (validator)
        SetHint(validator->Hint().c_str());
}
