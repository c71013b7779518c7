// What must hold of a layer of sprites at any time, for tests that look behind every step.
#ifndef TESTS_USR_LAYERFAULTS_H
#define TESTS_USR_LAYERFAULTS_H

#include "usr/edcsprit.h"

#include <string>

struct LayerLocks : TEdcSpriteLayer {
    static bool Free(const TEdcSpriteLayer &ly)
    {
        return ly.*&LayerLocks::repaintLock == 0 && ly.*&LayerLocks::decorateLock == 0;
    }
};

inline std::string FaultOfList(TEdcSprite *first, TEdcSprite *last, TEdcSprite *TEdcSprite::*prev,
                               TEdcSprite *TEdcSprite::*next, int count, const char *name)
{
    TEdcSprite *former = NULL;
    int left = count;
    for (TEdcSprite *spr = first; spr; spr = spr->*next) {
        if (spr->*prev != former || --left < 0)
            return std::string(name) + " is not linked both ways";
        former = spr;
    }
    return left == 0 && former == last ? "" : std::string(name) + " ends early";
}

/// What of this does not hold at any time: lists linked both ways, states as the lists say, no lock left. Empty
/// where the layer is sound.
inline std::string FaultOf(TEdcSpriteLayer &ly)
{
    int count = ly.CountLnk();
    std::string fault =
        FaultOfList(ly.LnkFirst(), ly.LnkLast(), &TEdcSprite::lnkPrev, &TEdcSprite::lnkNext, count, "creation");
    fault +=
        FaultOfList(ly.PntFirst(), ly.PntLast(), &TEdcSprite::pntPrev, &TEdcSprite::pntNext, count, "painting");
    fault += FaultOfList(ly.SelFirst(), ly.SelLast(), &TEdcSprite::selPrev, &TEdcSprite::selNext, ly.CountSel(),
                         "selection");
    if (ly.Focus() && !ly.IsSelected(ly.Focus()))
        fault += "the focus is not selected";
    for (TEdcSprite *spr = ly.LnkFirst(); spr && fault.empty(); spr = spr->lnkNext) {
        int expected = EDC_SsACTIVE * ly.IsActive() + EDC_SsSELECTED * ly.IsSelected(spr) +
                       EDC_SsFOCUS * (spr == ly.Focus());
        if (spr->state != expected || spr->layer != &ly)
            fault = "a state does not fit";
    }
    return LayerLocks::Free(ly) ? fault : fault + "locked";
}

#endif
