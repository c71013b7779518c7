// Warm-air units: their exchange record and their catalogue.
#ifndef USR_ZULAIRHT_H
#define USR_ZULAIRHT_H

#include "ker/emroom.h"
#include "usr/edcctlg.h"

/// What a dialog or the catalogue knows of a unit.
struct TZulAirHeaterData {
    TEdcShortStr typeName;         // EDC_VNUL: no type
    TEdcFloat output;              // W
    TEdcFloat tempRise;            // K
    TEdcFloat airFlow;             // m3/h
    TEdcFloat length;              // m
    TEdcFloat width;               // m
    TEdcFloat height;              // m
    EmAIRHEATERSET *target = NULL; // view

    TZulAirHeaterData() { Reset(); }
    void Reset(); // no type, all numbers undefined
};

/// A kind of unit. The catalogue's dialog walks the record up to `height`.
class TZulAirHeaterTypeItem : public TEdcCtlgItem
{
public:
    TZulAirHeaterTypeItem() = default;
    TZulAirHeaterTypeItem(const TZulAirHeaterTypeItem &source);
    void GetName(char *buf, int max) override;
    void Read(CdeFILE &file, int ver) override;
    void Write(CdeFILE &file) override;
    void *Record() override { return &data; }

    TZulAirHeaterData data;
};

class TZulAirHeaterTypeDialog : public TEdcDialog
{
public:
    TZulAirHeaterTypeDialog();
};

/// The catalogue of warm-air units.
class TZulAirHeaterTypeCatalog : public TEdcCtlgSimpleList
{
public:
    explicit TZulAirHeaterTypeCatalog(TWindow *aParent);
    TEdcCtlgItem *NewItem(TEdcCtlgItem *copy) override;
    TEdcDialog *ItemDialog() override { return &dialog; }

private:
    TZulAirHeaterTypeDialog dialog;
};

#endif
