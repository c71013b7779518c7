// The four tools that every plan has.
#ifndef USR_ZULTOOLS_H
#define USR_ZULTOOLS_H

#include "usr/zulmark.h"

#include <array>

struct TZulPlanTools {
    TEdcDrawSelector selector{EDC_TlSELECT, 21690, 21691};
    TEdcDrawAligner aligner{EDC_TlALIGN, 21692, EDC_TlSELECT}; // goes over to the selector when it is done
    TEdcDrawStockCreator stockCreator{EDC_TlSTOCK, 21693, 0};
    TEdcDrawRectCreator rectCreator{EDC_TlRECT, 21695, 0, 0};

    std::array<TEdcSpriteTool *, 4> All() { return {&selector, &aligner, &stockCreator, &rectCreator}; }
    void Join(TEdcSpriteManager &sprites)
    {
        for (TEdcSpriteTool *tool : All())
            sprites.AddTool(tool);
    }
};

#endif
