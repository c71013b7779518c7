// The dialogs of the free texts. A closing text has up to 16 KB, more than the values of the framework hold, so
// it has a value and a field of its own. A field that was emptied empties its text.
#include "lib/charstr.h"
#include "lib/xassert.h"
#include "usr/zulartic.h"
#include "win/boxes.h"

#include "lib/xon.h"

namespace
{
enum { DIALOG_ARTICLE = 3500, DIALOG_CONCLUSION = 3501 };
enum { ID_HEAD = 100, ID_TEXT = 101, ID_AUTHOR = 102 };

/// Every text of the report begins with a heading.
void AddHead(TEdcDialog *dialog)
{
    new TEdcEdit(dialog, ID_HEAD, LONGSTRMAX, new TEdcValueValidator(false));
}

template <int MAX>
void Store(const TEdcAStr &value, char (&field)[MAX])
{
    StrCopy(field, value.id == EDC_VVAL ? value.text : "", MAX);
}
} // namespace

TZulLargeStr::TZulLargeStr() : TEdcAStr(storage, LARGESTRMAX, EDC_VUDF)
{
    storage[0] = EOS;
}

TZulLargeStr::TZulLargeStr(const TZulLargeStr &other) : TZulLargeStr()
{
    TEdcAStr::operator=(other);
}

int TZulLargeStr::Size() const
{
    return sizeof(*this);
}

void TZulLargeStr::BindText()
{
    text = storage;
}

TZulLargeStr &TZulLargeStr::operator=(const TZulLargeStr &other)
{
    TEdcAStr::operator=(other);
    return *this;
}

TZulEdit::TZulEdit(TDialog *aDialog, int aResId) : TEdit(aDialog, aResId, TZulLargeStr::LARGESTRMAX) {}

void TZulEdit::SetValue(const TEdcAStr &v)
{
    SetText(v.id == EDC_VVAL ? v.text : "");
}

void TZulEdit::GetValue(TEdcAStr &v) const
{
    v.Set(EDC_VVAL, Text().c_str());
    if (*v.text == EOS)
        v.id = EDC_VUDF;
}

int TZulEdit::Transfer(void *field, int direction)
{
    TEdcAStr &value = *static_cast<TEdcAStr *>(static_cast<TEdcValue *>(field));
    if (direction == WIN_TRANSFER_GETDATA)
        GetValue(value);
    else
        SetValue(value);
    return value.Size();
}

TZulArticleDialog::TZulArticleDialog(TZulArticleData &data)
    : TEdcDialog(DIALOG_ARTICLE, static_cast<TEdcValue *>(&data.head))
{
    AddHead(this);
    new TEdcEdit(this, ID_TEXT, LONGSTRMAX);
}

TZulConclusionDialog::TZulConclusionDialog(TZulConclusionData &data)
    : TEdcDialog(DIALOG_CONCLUSION, static_cast<TEdcValue *>(&data.head))
{
    AddHead(this);
    new TZulEdit(this, ID_TEXT);
    new TEdcEdit(this, ID_AUTHOR, SHORTSTRMAX);
}

bool ZulEditArticle(EmARTICLE *articObj)
{
    bool confirmed = false;
    __enter
        ASSERT(articObj != NULL);
        TZulArticleData record;
        record.head = articObj->head;
        record.text = articObj->text;
        TZulArticleDialog dialog(record);
        confirmed = dialog.Execute() == WIN_ID_OK; __test;
        if (confirmed) {
            Store(record.head, articObj->head);
            Store(record.text, articObj->text);
        }
    __point
        confirmed = false;
    __treat
    return confirmed;
}

bool ZulEditConclusion(EmCONCLUSION *conclObj)
{
    bool confirmed = false;
    __enter
        ASSERT(conclObj != NULL);
        TZulConclusionData record;
        record.head = conclObj->head;
        record.text = conclObj->text;
        record.author = conclObj->author;
        TZulConclusionDialog dialog(record);
        confirmed = dialog.Execute() == WIN_ID_OK; __test;
        if (confirmed) {
            Store(record.head, conclObj->head);
            Store(record.text, conclObj->text);
            Store(record.author, conclObj->author);
        }
    __point
        confirmed = false;
    __treat
    return confirmed;
}
