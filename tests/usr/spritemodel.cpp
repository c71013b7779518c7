#include "spritemodel.h"

#include "win/window.h"

#include <utility>

int PlainManager::AddSprite(int ly, const TRect &place)
{
    int spr = static_cast<int>(sprites.size());
    sprites.push_back({place});
    layers[ly].Add(spr);
    return spr;
}

bool PlainManager::Command(int id)
{
    return !suspended && lyActive >= 0 && layers[lyActive].Command(id);
}

void PlainManager::SetLayer(int ly)
{
    if (suspended || ly == lyActive)
        return;
    if (lyActive >= 0) {
        if (tlActive == SELECTOR)
            Rest();
        layers[lyActive].active = false;
    }
    lyActive = ly;
    tlActive = NONE;
    if (ly >= 0) {
        layers[lyActive].active = true;
        tlActive = SELECTOR;
        Rest();
    }
}

void PlainManager::SetTool(Tool tl)
{
    bool permitted = tl == NONE || lyActive == 0 || (lyActive == 1 && tl == SELECTOR);
    if (suspended || tl == tlActive || !permitted)
        return;
    if (tl == SELECTOR || tlActive == SELECTOR)
        Rest();
    tlActive = tl;
}

void PlainManager::Suspend(bool forget)
{
    if (suspended)
        return;
    suspended = true;
    if (tlActive == SELECTOR)
        Rest();
    if (lyActive >= 0)
        layers[lyActive].active = false;
    if (forget) {
        lyActive = -1;
        tlActive = NONE;
    }
}

void PlainManager::Resume(bool reset)
{
    suspended = false;
    if (lyActive >= 0)
        layers[lyActive].active = true;
    if (tlActive == SELECTOR)
        Rest();
    if (!reset)
        return;
    for (PlainLayer &ly : layers)
        ly.SelectAll(false);
    SetLayer(0);
    SetTool(SELECTOR);
}

/// What the selector works on while it is the block's tool.
PlainLayer *PlainManager::Layer()
{
    return !suspended && tlActive == SELECTOR ? &layers[lyActive] : NULL;
}

void PlainManager::Grip(TPoint)
{
    for (int spr : FocusFirst()) {
        At(spr).drags = true;
        At(spr).hidden = false;
    }
}

void PlainManager::DropOne(int spr, unsigned keys, TPoint at)
{
    if (!std::exchange(At(spr).drags, false) || At(spr).hidden)
        return;
    TRect place = At(spr).place.Offset(at.x - start.x, at.y - start.y);
    if (keys & WIN_KEY_CTRL) {
        int copy = AddSprite(lyActive, place);
        layers[lyActive].Select(spr, false);
        layers[lyActive].Select(copy, true);
    } else {
        At(spr).place = place;
    }
}
