#include "spritemodel.h"

#include "usr/edcsprit.h"
#include "win/window.h"

#include <algorithm>

namespace
{
void Erase(std::vector<int> &list, int spr)
{
    list.erase(std::find(list.begin(), list.end(), spr));
}
} // namespace

bool PlainLayer::Selected(int spr) const
{
    return std::find(sel.begin(), sel.end(), spr) != sel.end();
}

void PlainLayer::ToTop(int spr)
{
    if (!active)
        return;
    Erase(pnt, spr);
    pnt.push_back(spr);
}

void PlainLayer::Select(int spr, bool on)
{
    if (on == Selected(spr))
        return;
    if (!on && spr == focus)
        SetFocus(0);
    ToTop(spr);
    if (on)
        sel.push_back(spr);
    else
        Erase(sel, spr);
}

void PlainLayer::SelectAll(bool on)
{
    for (int spr : std::vector<int>(pnt))
        Select(spr, on);
}

void PlainLayer::Invert()
{
    for (int spr : std::vector<int>(pnt))
        Select(spr, !Selected(spr));
}

void PlainLayer::SetFocus(int spr)
{
    if (spr == focus)
        return;
    if (focus)
        ToTop(focus);
    focus = spr;
    if (focus)
        ToTop(focus);
}

void PlainLayer::RepaintSelection()
{
    for (int spr : sel)
        if (spr != focus)
            ToTop(spr);
    if (focus)
        ToTop(focus);
}

void PlainLayer::Add(int spr)
{
    lnk.push_back(spr);
    pnt.push_back(spr);
}

void PlainLayer::Remove(int spr)
{
    Select(spr, false);
    Erase(lnk, spr);
    Erase(pnt, spr);
}

int PlainManager::AddSprite(int ly, const TRect &place)
{
    int spr = static_cast<int>(sprites.size());
    sprites.push_back({place});
    layers[ly].Add(spr);
    return spr;
}

bool PlainManager::Command(int id)
{
    if (suspended || lyActive < 0)
        return false;
    switch (id) {
    case EDC_CmDELETE:
        while (!Layer().sel.empty())
            Layer().Remove(Layer().sel.front());
        return true;
    case EDC_CmSELECTALL:
    case EDC_CmSELECTNONE:
        Layer().SelectAll(id == EDC_CmSELECTALL);
        return true;
    case EDC_CmINVERT:
        Layer().Invert();
        return true;
    default:
        return false;
    }
}

void PlainManager::Activate()
{
    leftState = rightState = 0;
    dragging = band = false;
}

void PlainManager::SetLayer(int ly)
{
    if (suspended || ly == lyActive)
        return;
    if (lyActive >= 0) {
        if (tlActive == SELECTOR)
            Activate();
        Layer().active = false;
    }
    lyActive = ly;
    tlActive = NONE;
    if (ly >= 0) {
        Layer().active = true;
        tlActive = SELECTOR;
        Activate();
    }
}

void PlainManager::SetTool(Tool tl)
{
    bool permitted = tl == NONE || lyActive == 0 || (lyActive == 1 && tl == SELECTOR);
    if (suspended || tl == tlActive || !permitted)
        return;
    if (tl == SELECTOR || tlActive == SELECTOR)
        Activate();
    tlActive = tl;
}

void PlainManager::Suspend(bool forget)
{
    if (suspended)
        return;
    suspended = true;
    if (tlActive == SELECTOR)
        Activate();
    if (lyActive >= 0)
        Layer().active = false;
    if (forget) {
        lyActive = -1;
        tlActive = NONE;
    }
}

void PlainManager::Resume(bool reset)
{
    suspended = false;
    if (lyActive >= 0)
        Layer().active = true;
    if (tlActive == SELECTOR)
        Activate();
    if (!reset)
        return;
    for (PlainLayer &ly : layers)
        ly.SelectAll(false);
    SetLayer(0);
    SetTool(SELECTOR);
}

int PlainManager::TopAt(TPoint at)
{
    const std::vector<int> &pnt = Layer().pnt;
    auto hit = std::find_if(pnt.rbegin(), pnt.rend(), [&](int spr) { return At(spr).place.Contains(at); });
    return hit == pnt.rend() ? 0 : *hit;
}

void PlainManager::Pick(TPoint at)
{
    int spr = TopAt(at);
    if (!spr) {
        Layer().SelectAll(false);
        return;
    }
    if (!Layer().Selected(spr)) {
        Layer().SelectAll(false);
        Layer().Select(spr, true);
    }
    Layer().SetFocus(spr);
}

void PlainManager::PickToggle(TPoint at, bool toggle)
{
    int spr = TopAt(at);
    if (spr && toggle && Layer().Selected(spr)) {
        Layer().Select(spr, false);
        return;
    }
    if (spr)
        Layer().Select(spr, true);
    Layer().SetFocus(spr);
}

std::vector<int> PlainManager::FocusFirst()
{
    std::vector<int> order;
    if (Layer().focus)
        order.push_back(Layer().focus);
    for (int spr : Layer().sel)
        if (spr != Layer().focus)
            order.push_back(spr);
    return order;
}

void PlainManager::Drop(unsigned keys, TPoint at)
{
    dragging = false;
    for (int spr : FocusFirst()) {
        bool drops = At(spr).drags && !At(spr).hidden;
        At(spr).drags = false;
        if (!drops)
            continue;
        TRect place = At(spr).place.Offset(at.x - start.x, at.y - start.y);
        if (keys & WIN_KEY_CTRL) {
            int copy = AddSprite(lyActive, place);
            Layer().Select(spr, false);
            Layer().Select(copy, true);
        } else {
            At(spr).place = place;
        }
    }
    if (!outside)
        Layer().RepaintSelection();
}

void PlainManager::BandEnd()
{
    band = false;
    if (outside)
        return;
    TRect rect = TRect{start.x, start.y, bandEnd.x, bandEnd.y}.Normalized();
    for (int spr : Layer().lnk)
        if ((At(spr).place & rect) == At(spr).place)
            Layer().Select(spr, true);
}

void PlainManager::TakeBack(unsigned keys, TPoint at)
{
    if (!outside)
        Outside(true);
    if (dragging)
        Drop(keys, at);
    if (band)
        BandEnd();
}

void PlainManager::LeftDown(unsigned keys, TPoint at)
{
    if (!Works())
        return;
    if (rightState == 1) {
        if (!outside)
            Outside(true);
        RightUp(keys, at);
        return;
    }
    if (dragging || band)
        TakeBack(keys, at);
    leftState = button = 1;
    outside = false;
    start = last = at;
    if (!(keys & WIN_KEY_SHIFT))
        Pick(at);
}

void PlainManager::LeftUp(unsigned keys, TPoint at)
{
    if (!Works())
        return;
    int former = leftState;
    leftState = 0;
    if (former == 1 && dragging)
        Drop(keys, at);
    else if (former == 1 && band)
        BandEnd();
    else if (former == 1 && (keys & WIN_KEY_SHIFT) && !outside)
        PickToggle(at, true);
    else if (former == 2 && !outside)
        asked += "open ";
}

void PlainManager::LeftDouble(unsigned keys, TPoint at)
{
    if (!Works() || rightState != 0)
        return;
    if (dragging || band)
        TakeBack(keys, at);
    leftState = 2;
    outside = false;
}

void PlainManager::RightDown(unsigned keys, TPoint at)
{
    if (!Works())
        return;
    if (leftState == 1) {
        if (!outside)
            Outside(true);
        LeftUp(keys, at);
    } else if (leftState == 2) {
        leftState = 0;
    } else {
        if (dragging || band)
            TakeBack(keys, at);
        rightState = 1;
        button = 2;
        outside = false;
        start = last = at;
        Pick(at);
    }
}

void PlainManager::RightUp(unsigned keys, TPoint at)
{
    if (!Works())
        return;
    int former = rightState;
    rightState = 0;
    if (former == 1 && dragging)
        Drop(keys, at);
    else if (former == 1 && at == start && !outside)
        asked += "menu ";
}

void PlainManager::MouseMove(unsigned, TPoint at)
{
    if (!Works() || outside || at == last || (leftState != 1 && rightState != 1))
        return;
    last = at;
    if (!dragging && !band)
        PickToggle(start, false);
    if (Layer().focus && !band) {
        if (!dragging)
            for (int spr : FocusFirst())
                At(spr).drags = true, At(spr).hidden = false;
        dragging = true;
    } else if (leftState == 1 && !dragging) {
        band = true;
        bandEnd = at;
    }
}

void PlainManager::Outside(bool on)
{
    if (!Works())
        return;
    outside = on;
    if (dragging)
        for (int spr : Layer().sel)
            At(spr).hidden = on;
}

std::string PlainManager::States() const
{
    return std::to_string(leftState) + " " + std::to_string(rightState) + (dragging ? " drag" : "") +
           (band ? " band" : "") + (outside ? " outside" : "");
}
