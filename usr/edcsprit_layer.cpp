// The layer: its sprites in three lists, selection and focus, and what is repainted for them. Lists, states and
// counts change first and cannot fail; only drawing can. So a sprite that cannot be painted is selected or
// deselected like any other, and a sprite leaves its layer also while a failure is pending. Drawing that was
// refused is left to the document's next refresh.
#include "usr/edcsprit.h"

#include "lib/xassert.h"
#include "usr/edcapp.h"
#include "usr/edcbase2.h"
#include "win/frame.h"

#include "lib/xon.h"

namespace
{
using Link = TEdcSprite *TEdcSprite::*;

/// One of a layer's lists, seen through the links that carry it.
struct Chain {
    TEdcSprite *&first;
    TEdcSprite *&last;
    Link prev, next;

    void Append(TEdcSprite *spr) const
    {
        spr->*prev = last;
        spr->*next = NULL;
        (last ? last->*next : first) = spr;
        last = spr;
    }
    void Unlink(TEdcSprite *spr) const
    {
        (spr->*prev ? spr->*prev->*next : first) = spr->*next;
        (spr->*next ? spr->*next->*prev : last) = spr->*prev;
        spr->*prev = spr->*next = NULL;
    }
};

/// A failure ends the walk.
template <class WORK>
void ForEach(TEdcSprite *first, Link next, WORK work)
{
    __enter
        for (TEdcSprite *spr = first; spr; spr = spr->*next) {
            work(*spr); __test;
        }
    __point
    __treat
}

/// A layer that outlives its document has nobody to tell.
void Raise(int level)
{
    if (HasAppDocument())
        AppDocument()->Obsolete(level);
}
} // namespace

TEdcSpriteLayer::TEdcSpriteLayer(int aId, uint16_t anOptions) : id(aId), options(anOptions)
{
    ASSERT(aId != 0);
}

TEdcSpriteLayer::~TEdcSpriteLayer()
{
    while (lnkFirst)
        delete lnkFirst; // NOLINT(clang-analyzer-cplusplus.NewDelete): it takes itself out of the list
}

void TEdcSpriteLayer::Reset()
{
    SelectAll(false, NULL);
}

void TEdcSpriteLayer::SetTool(int aToolId)
{
    toolId = static_cast<uint16_t>(aToolId);
    ForEach(lnkFirst, &TEdcSprite::lnkNext, [aToolId](TEdcSprite &spr) { spr.SetTool(aToolId); });
}

void TEdcSpriteLayer::Layout(TDC &dc)
{
    ForEach(lnkFirst, &TEdcSprite::lnkNext, [&dc](TEdcSprite &spr) { spr.Layout(dc); });
}

void TEdcSpriteLayer::Reload(void *arg)
{
    ForEach(lnkFirst, &TEdcSprite::lnkNext, [arg](TEdcSprite &spr) { spr.Reload(arg); });
}

/// A command of this layer is answered also where it does nothing.
bool TEdcSpriteLayer::Command(int command)
{
    switch (command) {
    case EDC_CmDELETE:
        if (IsActive())
            DeleteSelected(true);
        return true;
    case EDC_CmSELECTALL:
    case EDC_CmSELECTNONE:
        if (IsActive())
            SelectAll(command == EDC_CmSELECTALL, NULL);
        return true;
    case EDC_CmINVERT:
        if (IsActive())
            InvertSelection(NULL);
        return true;
    default:
        return false;
    }
}

void TEdcSpriteLayer::CommandEnable(TCommandEnabler &ce)
{
    switch (ce.id) {
    case EDC_CmDELETE:
    case EDC_CmSELECTNONE:
        ce.Enable(IsActive() && selFirst);
        break;
    case EDC_CmSELECTALL:
        ce.Enable(IsActive() && countLnk > countSel);
        break;
    case EDC_CmINVERT:
        ce.Enable(IsActive());
        break;
    default:
        break;
    }
}

void TEdcSpriteLayer::Paint(TDC &dc, const TRect &)
{
    __enter
        PaintAll(dc); __test;
        DecorateFocus(&dc); __test;
    __point
    __treat
}

void TEdcSpriteLayer::PaintAll(TDC &dc)
{
    ForEach(pntFirst, &TEdcSprite::pntNext, [&dc](TEdcSprite &spr) { spr.Paint(dc); });
}

void TEdcSpriteLayer::PaintPlain(TDC &dc, const TRect &)
{
    ForEach(pntFirst, &TEdcSprite::pntNext, [&dc](TEdcSprite &spr) { spr.PaintPlain(dc); });
}

void TEdcSpriteLayer::Add(TEdcSprite *spr)
{
    if (!spr)
        return;
    ASSERT(spr->layer == NULL);
    spr->state = 0;
    spr->layer = this;
    Chain{lnkFirst, lnkLast, &TEdcSprite::lnkPrev, &TEdcSprite::lnkNext}.Append(spr);
    Chain{pntFirst, pntLast, &TEdcSprite::pntPrev, &TEdcSprite::pntNext}.Append(spr);
    ++countLnk;
    if (IsActive())
        spr->SetState(EDC_SsACTIVE, true);
    Raise(EDC_LAYOUT);
}

void TEdcSpriteLayer::Remove(TEdcSprite *spr)
{
    if (!spr || !spr->layer)
        return;
    ASSERT(spr->layer == this);
    Select(spr, false, NULL);
    spr->SetState(spr->state, false);
    spr->layer = NULL;
    Chain{lnkFirst, lnkLast, &TEdcSprite::lnkPrev, &TEdcSprite::lnkNext}.Unlink(spr);
    Chain{pntFirst, pntLast, &TEdcSprite::pntPrev, &TEdcSprite::pntNext}.Unlink(spr);
    --countLnk;
    Raise(EDC_LAYOUT);
}

/// A sprite whose object of the model cannot be deleted stays.
void TEdcSpriteLayer::Delete(TEdcSprite *spr, bool discard)
{
    if (!spr)
        return;
    ASSERT(spr->layer == this);
    __enter
        if (discard) {
            spr->Discard(); __test;
        }
        delete spr;
        Raise(EDC_LAYOUT);
    __point
    __treat
}

/// `first` is the head of a list, which every deletion shortens.
void TEdcSpriteLayer::DeleteFrom(TEdcSprite *const &first, bool discard)
{
    __enter
        while (first) {
            Delete(first, discard); // NOLINT(clang-analyzer-cplusplus.NewDelete): as in the destructor
            __test;
        }
    __point
    __treat
}

void TEdcSpriteLayer::DeleteAll(bool discard)
{
    DeleteFrom(lnkFirst, discard);
}

void TEdcSpriteLayer::DeleteSelected(bool discard)
{
    DeleteFrom(selFirst, discard);
}

void TEdcSpriteLayer::SetActive(bool on)
{
    if (on == IsActive())
        return;
    state = static_cast<uint16_t>(on ? state | EDC_LsACTIVE : state & ~EDC_LsACTIVE);
    for (TEdcSprite *spr = lnkFirst; spr; spr = spr->lnkNext)
        spr->SetState(EDC_SsACTIVE, on);
    Raise(EDC_PAINT);
}

void TEdcSpriteLayer::SetOptions(uint16_t o)
{
    bool activable = (options ^ o) & EDC_LoACTIVABLE;
    options = o;
    Raise(activable ? EDC_LAYOUT : EDC_PAINT);
}

void TEdcSpriteLayer::Select(TEdcSprite *spr, bool on, TDC *dc)
{
    if (!spr)
        return;
    ASSERT(spr->layer == this);
    const Chain selection = {selFirst, selLast, &TEdcSprite::selPrev, &TEdcSprite::selNext};
    bool selected = IsSelected(spr);
    LockDecorate(dc);
    if (on && !selected) {
        selection.Append(spr);
        ++countSel;
        spr->SetState(EDC_SsSELECTED, true);
        RepaintSprite(spr, dc);
    } else if (!on && selected) {
        if (spr == focus)
            SetFocus(NULL, dc);
        spr->SetState(EDC_SsSELECTED, false);
        RepaintSprite(spr, dc);
        selection.Unlink(spr);
        --countSel;
    }
    UnlockDecorate(dc);
}

/// Selecting moves a sprite to the end of the painting list, so the count ends the walk.
template <class CHOICE>
void TEdcSpriteLayer::SelectEach(CHOICE choice, TDC *dc)
{
    LockDecorate(dc);
    __enter
        TEdcSprite *following = NULL;
        int32_t left = countLnk;
        for (TEdcSprite *spr = pntFirst; spr && left > 0; spr = following, --left) {
            following = spr->pntNext;
            Select(spr, choice(spr), dc); __test;
        }
    __point
    __treat
    UnlockDecorate(dc);
}

void TEdcSpriteLayer::SelectAll(bool on, TDC *dc)
{
    SelectEach([on](const TEdcSprite *) { return on; }, dc);
}

void TEdcSpriteLayer::InvertSelection(TDC *dc)
{
    SelectEach([this](const TEdcSprite *spr) { return !IsSelected(spr); }, dc);
}

void TEdcSpriteLayer::SetFocus(TEdcSprite *spr, TDC *dc)
{
    if (spr == focus)
        return;
    LockDecorate(dc);
    if (focus) {
        focus->SetState(EDC_SsFOCUS, false);
        RepaintSprite(focus, dc);
        focus = NULL;
    }
    if (spr) {
        ASSERT(spr->layer == this);
        ASSERT(IsSelected(spr));
        focus = spr;
        focus->SetState(EDC_SsFOCUS, true);
        RepaintSprite(focus, dc);
    }
    UnlockDecorate(dc);
}

bool TEdcSpriteLayer::IsSelected(const TEdcSprite *spr) const
{
    ASSERT(spr != NULL && spr->layer == this);
    return spr->selPrev || spr->selNext || spr == selFirst;
}

void TEdcSpriteLayer::ToTop(TEdcSprite *spr)
{
    const Chain painting = {pntFirst, pntLast, &TEdcSprite::pntPrev, &TEdcSprite::pntNext};
    if (spr == pntLast)
        return;
    painting.Unlink(spr);
    painting.Append(spr);
}

void TEdcSpriteLayer::RepaintSprite(TEdcSprite *spr, TDC *dc)
{
    if (repaintLock != 0 || !IsActive() || !spr)
        return;
    ASSERT(spr->layer == this);
    ToTop(spr);
    if (!dc) {
        Raise(EDC_PAINT);
        return;
    }
    LockDecorate(dc);
    bool painted = false;
    __enter
        spr->Paint(*dc); __test;
        painted = true;
    __point
    __treat
    if (!painted)
        Raise(EDC_PAINT);
    UnlockDecorate(dc);
}

void TEdcSpriteLayer::RepaintSelection(TDC *dc)
{
    if (repaintLock != 0 || !IsActive())
        return;
    LockDecorate(dc);
    __enter
        for (TEdcSprite *spr = selFirst; spr; spr = spr->selNext)
            if (spr != focus) {
                RepaintSprite(spr, dc); __test;
            }
        RepaintSprite(focus, dc); __test;
    __point
    __treat
    UnlockDecorate(dc);
}

void TEdcSpriteLayer::UnlockRepaint(TDC *dc, bool toTop)
{
    --repaintLock;
    ASSERT(repaintLock >= 0);
    if (repaintLock != 0 || !IsActive())
        return;
    if (toTop) {
        for (TEdcSprite *spr = selFirst; spr; spr = spr->selNext)
            if (spr != focus)
                ToTop(spr);
        if (focus)
            ToTop(focus);
    }
    if (!dc) {
        Raise(EDC_PAINT);
        return;
    }
    LockDecorate(dc);
    PaintAll(*dc);
    UnlockDecorate(dc);
}

void TEdcSpriteLayer::LockDecorate(TDC *dc)
{
    DecorateFocus(dc);
    ++decorateLock;
}

void TEdcSpriteLayer::UnlockDecorate(TDC *dc)
{
    --decorateLock;
    ASSERT(decorateLock >= 0);
    DecorateFocus(dc);
}

/// Inverts the handles, or leaves them to the refresh.
void TEdcSpriteLayer::DecorateFocus(TDC *dc)
{
    if (decorateLock != 0 || !IsActive() || !focus)
        return;
    bool drawn = false;
    __enter
        if (dc) {
            focus->Decorate(*dc); __test;
            drawn = true;
        }
    __point
    __treat
    if (!drawn)
        Raise(EDC_PAINT);
}

int TEdcSpriteLayer::CountLnk() const
{
    int32_t test = 0;
    for (const TEdcSprite *spr = lnkFirst; spr; spr = spr->lnkNext)
        ++test;
    ASSERT(test == countLnk);
    return test;
}

int TEdcSpriteLayer::CountSel() const
{
    int32_t test = 0;
    for (const TEdcSprite *spr = selFirst; spr; spr = spr->selNext)
        ++test;
    ASSERT(test == countSel);
    return test;
}

TEdcSprite *TEdcSpriteLayer::LnkNext(const TEdcSprite *spr) const
{
    ASSERT(spr != NULL && spr->layer == this);
    return spr->lnkNext;
}

TEdcSprite *TEdcSpriteLayer::LnkPrev(const TEdcSprite *spr) const
{
    ASSERT(spr != NULL && spr->layer == this);
    return spr->lnkPrev;
}

TEdcSprite *TEdcSpriteLayer::SelNext(const TEdcSprite *spr) const
{
    ASSERT(IsSelected(spr));
    return spr->selNext;
}

TEdcSprite *TEdcSpriteLayer::SelPrev(const TEdcSprite *spr) const
{
    ASSERT(IsSelected(spr));
    return spr->selPrev;
}
