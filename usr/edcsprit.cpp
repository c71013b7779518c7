// What every sprite and every tool does by itself.
#include "usr/edcsprit.h"

#include "lib/xassert.h"

#include "lib/xon.h"

TEdcSprite::~TEdcSprite()
{
    if (layer)
        layer->Remove(this);
}

void TEdcSprite::SetState(uint16_t mask, bool on)
{
    state = static_cast<uint16_t>(on ? state | mask : state & ~mask);
}

void TEdcSprite::PaintPlain(TDC &dc)
{
    uint16_t saved = state;
    SetState(saved, false);
    __enter
        Paint(dc); __test;
    __point
    __treat
    SetState(saved, true);
}

TEdcSpriteTool::TEdcSpriteTool(int aId) : id(aId)
{
    ASSERT(aId != 0);
}
