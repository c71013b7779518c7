// Building openings: the catalogue of building elements that they and the hall's constructions take their
// transmittances from.
#ifndef USR_ZULHOLE_H
#define USR_ZULHOLE_H

#include "usr/edcctlg.h"

/// A named kind of building element. Its record is the dialog's: name, then transmittance.
class TZulHoleTypeItem : public TEdcCtlgItem
{
public:
    struct RECORD {
        TEdcShortStr name;
        TEdcFloat transmission; // W/(m2 K)
    };

    TZulHoleTypeItem() = default;
    TZulHoleTypeItem(const TZulHoleTypeItem &source);
    void GetName(char *buf, int max) override;
    void Read(CdeFILE &file, int ver) override;
    void Write(CdeFILE &file) override;
    void *Record() override { return &record; }

    RECORD record;
};

class TZulHoleTypeDialog : public TEdcDialog
{
public:
    TZulHoleTypeDialog();
};

/// The catalogue of building elements, in groups.
class TZulHoleTypeCatalog : public TEdcCtlgDividedList
{
public:
    explicit TZulHoleTypeCatalog(TWindow *aParent);
    TEdcCtlgItem *NewItem(TEdcCtlgItem *copy) override;
    TEdcDialog *ItemDialog() override { return &dialog; }

private:
    TZulHoleTypeDialog dialog;
};

#endif
