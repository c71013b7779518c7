// The free texts of a report: the introduction as a block, the closing text cut into blocks that may be parted
// between pages, and the dialogs that edit both.
#ifndef USR_ZULARTIC_H
#define USR_ZULARTIC_H

#include "ker/emroom.h"
#include "usr/edcblks.h"
#include "usr/edcdlg.h"

/// The introduction: a heading and a text.
class TZulArticleBlock : public TEdcBlock
{
public:
    explicit TZulArticleBlock(const EmARTICLE *aArticObj); // a view
    void Layout(TDC &dc, TEdcSize &trueSize, double scale) override;
    void Paint(TDC &dc, const TRect &part) override;

private:
    const EmARTICLE *article;
    TEdcText head, text;
};

/// A text as long as a closing text may be, in the record of its dialog.
class TZulLargeStr : public TEdcAStr
{
public:
    enum { LARGESTRMAX = 16384 }; // capacity with the terminator

    TZulLargeStr();
    TZulLargeStr(const TZulLargeStr &other);
    int Size() const override;
    void BindText() override;
    using TEdcAStr::operator=;
    TZulLargeStr &operator=(const TZulLargeStr &other);

private:
    char storage[LARGESTRMAX];
};

/// A field of many lines whose text goes straight between window and value.
class TZulEdit : public TEdit
{
public:
    TZulEdit(TDialog *dialog, int resId);
    void SetValue(const TEdcAStr &v); // an undefined value shows as empty
    void GetValue(TEdcAStr &v) const; // empty is undefined
    int Transfer(void *field, int direction) override;
};

struct TZulArticleData {
    TEdcLongStr head;
    TEdcLongStr text;
};

class TZulArticleDialog : public TEdcDialog
{
public:
    explicit TZulArticleDialog(TZulArticleData &data); // a view
};

struct TZulConclusionData {
    TEdcLongStr head;
    TZulLargeStr text;
    TEdcShortStr author;
};

class TZulConclusionDialog : public TEdcDialog
{
public:
    explicit TZulConclusionDialog(TZulConclusionData &data); // a view
};

// From filling the record to storing it. @return whether the dialog ended with OK
bool ZulEditArticle(EmARTICLE *articObj);
bool ZulEditConclusion(EmCONCLUSION *conclObj);

#endif
