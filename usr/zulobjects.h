// A layer over a set of the hall whose members have a number and parameters: emitters, warm-air units,
// openings. The set is what is stored; sprites follow it. What such layers do alike stands here once, for each
// kind of sprite, set and exchange record.
#ifndef USR_ZULOBJECTS_H
#define USR_ZULOBJECTS_H

#include "usr/edcapp.h"
#include "usr/edcbase2.h"
#include "usr/edcdlg.h"
#include "usr/zulmark.h"

#include "lib/xon.h"

/// SPRITE has Object() and a label, and is made from an object or from a creation record; DATA has Reset(),
/// Exchange(mode, object) and a target.
template <class SPRITE, class SET, class DATA>
class TZulObjectLayer : public TZulMarkedLayer
{
public:
    TZulObjectLayer(int aId, SET *aSet, TEdcAxes *anAxes)
        : TZulMarkedLayer(aId, EDC_LoACTIVABLE | EDC_LoVISIBLE | EDC_LoPRINTED, anAxes), set(aSet)
    {
    }
    void Reload(void *arg) override;
    TEdcDrawSprite *CreateSprite(const TEdcDrawCreation &creation) override;
    void *QueryCreation(int tool, bool first) override;
    void Open() override;

protected:
    /// Whether a tool makes objects of this kind. Base: the one that places from stock.
    virtual bool IsCreator(int tool) const { return tool == EDC_TlSTOCK; }
    /// The creation record as the sprite wants it. Base: as it is.
    virtual void Adapt(TEdcDrawCreation &) const {}
    /// Shows the dialog on the record: for what `tool` will make, or with 0 for the selection. @return OK
    virtual bool Ask(DATA &data, int tool) = 0;
    void NumberSprites();

    SET *set;   // view
    DATA stock; // what the next created object will be

private:
    void Merge(DATA &data);
    void Spread(DATA &data);
};

/// In the order of creation, from 1.
template <class SPRITE, class SET, class DATA>
void TZulObjectLayer<SPRITE, SET, DATA>::NumberSprites()
{
    int number = 0;
    for (TEdcSprite *spr = LnkFirst(); spr; spr = LnkNext(spr))
        static_cast<SPRITE *>(spr)->label.Set(++number);
}

template <class SPRITE, class SET, class DATA>
void TZulObjectLayer<SPRITE, SET, DATA>::Reload(void *)
{
    __enter
        DeleteAll(false); __test;
        for (auto *object = set->First(); object; object = SET::Next(object)) {
            Add(new SPRITE(object)); __test;
        }
    __point
    __treat
}

template <class SPRITE, class SET, class DATA>
TEdcDrawSprite *TZulObjectLayer<SPRITE, SET, DATA>::CreateSprite(const TEdcDrawCreation &creation)
{
    TEdcDrawSprite *spr = NULL;
    __enter
        bool can = IsCreator(creation.type) && CanCreate(creation); __test;
        if (can) {
            TEdcDrawCreation adapted = creation;
            Adapt(adapted); __test;
            spr = new SPRITE(adapted); __test;
        }
    __point
        delete spr;
        spr = NULL;
    __treat
    return spr;
}

/// A dialog that is cancelled leaves what was stated before.
template <class SPRITE, class SET, class DATA>
void *TZulObjectLayer<SPRITE, SET, DATA>::QueryCreation(int tool, bool first)
{
    void *params = NULL;
    __enter
        if (IsCreator(tool)) {
            if (first) {
                stock.Reset();
                stock.target = NULL; // nothing is stated any more
            }
            bool confirmed = Ask(stock, tool); __test;
            if (confirmed)
                stock.target = set;
            params = stock.target ? &stock : NULL;
        }
    __point
    __treat
    return params;
}

template <class SPRITE, class SET, class DATA>
void TZulObjectLayer<SPRITE, SET, DATA>::Open()
{
    if (!Focus())
        return;
    __enter
        DATA data;
        Merge(data); __test;
        bool confirmed = Ask(data, 0); __test;
        if (confirmed) {
            AppDocument()->Obsolete(EDC_LAYOUT);
            AppDocument()->SetModified(); __test;
            Spread(data); __test;
        }
    __point
    __treat
}

/// Fields in which the selected objects differ turn undefined.
template <class SPRITE, class SET, class DATA>
void TZulObjectLayer<SPRITE, SET, DATA>::Merge(DATA &data)
{
    __enter
        int mode = EDC_XLOAD;
        for (TEdcSprite *spr = SelFirst(); spr; spr = SelNext(spr)) {
            data.Exchange(mode, *static_cast<SPRITE *>(spr)->Object()); __test;
            mode = EDC_XMERGE;
        }
    __point
    __treat
}

/// Fields that are still undefined leave each object its own.
template <class SPRITE, class SET, class DATA>
void TZulObjectLayer<SPRITE, SET, DATA>::Spread(DATA &data)
{
    __enter
        for (TEdcSprite *spr = SelFirst(); spr; spr = SelNext(spr)) {
            data.Exchange(EDC_XSTORE, *static_cast<SPRITE *>(spr)->Object()); __test;
            spr->Reload(NULL); __test;
        }
    __point
    __treat
}

#include "lib/xoff.h"

#endif
