#include "plainselector.h"

#include "usr/edcsprit.h"
#include "win/window.h"

#include <algorithm>
#include <utility>

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

bool PlainLayer::Command(int id)
{
    switch (id) {
    case EDC_CmDELETE:
        while (!sel.empty())
            Remove(sel.front());
        return true;
    case EDC_CmSELECTALL:
    case EDC_CmSELECTNONE:
        SelectAll(id == EDC_CmSELECTALL);
        return true;
    case EDC_CmINVERT:
        Invert();
        return true;
    default:
        return false;
    }
}

void PlainSelector::Rest()
{
    leftState = rightState = 0;
    dragging = band = false;
}

int PlainSelector::TopAt(TPoint at)
{
    const std::vector<int> &pnt = Layer()->pnt;
    auto hit = std::find_if(pnt.rbegin(), pnt.rend(), [&](int spr) { return IsHit(spr, at); });
    return hit == pnt.rend() ? 0 : *hit;
}

void PlainSelector::Pick(TPoint at)
{
    int spr = TopAt(at);
    if (!spr || !Layer()->Selected(spr))
        Layer()->SelectAll(false);
    if (spr)
        Layer()->Select(spr, true);
    Layer()->SetFocus(spr);
}

void PlainSelector::PickToggle(TPoint at, bool toggle)
{
    int spr = TopAt(at);
    bool leaves = spr && toggle && Layer()->Selected(spr);
    if (spr)
        Layer()->Select(spr, !leaves);
    if (!leaves)
        Layer()->SetFocus(spr);
}

std::vector<int> PlainSelector::FocusFirst()
{
    std::vector<int> order;
    if (Layer()->focus)
        order.push_back(Layer()->focus);
    for (int spr : Layer()->sel)
        if (spr != Layer()->focus)
            order.push_back(spr);
    return order;
}

void PlainSelector::Drop(unsigned keys, TPoint at)
{
    dragging = false;
    for (int spr : FocusFirst())
        DropOne(spr, keys, at);
    if (!outside)
        Layer()->RepaintSelection();
}

void PlainSelector::BandEnd()
{
    band = false;
    if (outside)
        return;
    TRect rect = TRect{start.x, start.y, bandEnd.x, bandEnd.y}.Normalized();
    for (int spr : Layer()->lnk)
        if (IsIn(spr, rect))
            Layer()->Select(spr, true);
}

void PlainSelector::Leave()
{
    if (!outside)
        Outside(true);
}

void PlainSelector::TakeBack(unsigned keys, TPoint at)
{
    if (dragging || band)
        Leave();
    if (dragging)
        Drop(keys, at);
    if (band)
        BandEnd();
}

void PlainSelector::Begin(int which, unsigned keys, TPoint at)
{
    TakeBack(keys, at);
    button = which;
    outside = false;
    start = last = at;
}

void PlainSelector::LeftDown(unsigned keys, TPoint at)
{
    if (!Layer())
        return;
    if (rightState == 1) {
        Leave();
        RightUp(keys, at);
        return;
    }
    Begin(1, keys, at);
    leftState = 1;
    if (!(keys & WIN_KEY_SHIFT))
        Pick(at);
}

void PlainSelector::LeftUp(unsigned keys, TPoint at)
{
    if (!Layer())
        return;
    int former = std::exchange(leftState, 0);
    if (former == 1 && dragging)
        Drop(keys, at);
    else if (former == 1 && band)
        BandEnd();
    else if (former == 1 && (keys & WIN_KEY_SHIFT) && !outside)
        PickToggle(at, true);
    else if (former == 2 && !(keys & EDC_KEY_TAKEBACK))
        asked += "open ";
    else if (former == 0 && rightState == 0)
        TakeBack(keys, at);
}

void PlainSelector::LeftDouble(unsigned keys, TPoint at)
{
    if (!Layer() || rightState != 0)
        return;
    TakeBack(keys, at);
    leftState = 2;
    outside = false;
}

void PlainSelector::RightDown(unsigned keys, TPoint at)
{
    if (!Layer())
        return;
    if (leftState == 1) {
        Leave();
        LeftUp(keys, at);
    } else if (leftState == 2) {
        leftState = 0;
    } else {
        Begin(2, keys, at);
        rightState = 1;
        Pick(at);
    }
}

void PlainSelector::RightUp(unsigned keys, TPoint at)
{
    if (!Layer())
        return;
    int former = std::exchange(rightState, 0);
    if (former == 1 && dragging)
        Drop(keys, at);
    else if (former == 1 && at == start && !outside)
        asked += "menu ";
    else if (former == 0 && leftState == 0)
        TakeBack(keys, at);
}

void PlainSelector::MouseMove(unsigned, TPoint at)
{
    if (!Layer() || outside || at == last || (leftState != 1 && rightState != 1))
        return;
    last = at;
    if (!dragging && !band)
        PickToggle(start, false);
    if (Layer()->focus && !band) {
        if (!dragging)
            Grip(at);
        dragging = true;
    } else if (leftState == 1 && !dragging) {
        band = true;
        bandEnd = at;
    }
}

void PlainSelector::Outside(bool on)
{
    if (!Layer())
        return;
    outside = on;
    if (dragging)
        for (int spr : Layer()->sel)
            Hide(spr, on);
}

std::string PlainSelector::States() const
{
    return std::to_string(leftState) + " " + std::to_string(rightState) + (dragging ? " drag" : "") +
           (band ? " band" : "") + (outside ? " outside" : "");
}
