#include "planmodel.h"

#include "usr/edcsprit.h"
#include "win/window.h"

#include <algorithm>
#include <cmath>
#include <utility>

using plain::POINT;
using plain::SHAPE;
using plain::STEP;

bool ModelShape::Adopt(const SHAPE &real)
{
    bool one =
        std::any_of(may.begin(), may.end(), [&](const SHAPE &shape) { return plain::Near(shape, real); });
    may = {real};
    return one;
}

int PlanModel::Add(int ly, const SHAPE &shape)
{
    sprites[++count].may = {shape};
    layers[ly].Add(count);
    return count;
}

void PlanModel::Remove(int ly, int spr)
{
    layers[ly].Remove(spr);
    sprites.erase(spr);
}

void PlanModel::Command(int id)
{
    if (id == EDC_CmDELETE)
        while (!Layer().sel.empty())
            Remove(active, Layer().sel.front());
    else if (id == EDC_CmINVERT)
        Layer().Invert();
    else
        Layer().SelectAll(id == EDC_CmSELECTALL);
}

void PlanModel::Idle()
{
    leftState = rightState = 0;
    dragging = band = false;
    if (tool == CREATOR)
        outside = false;
}

void PlanModel::SetLayer(int ly)
{
    if (ly == active)
        return;
    Idle();
    Layer().active = false;
    active = ly;
    Layer().active = true;
    tool = SELECTOR;
    Idle();
}

void PlanModel::SetTool(TOOL tl)
{
    if (tl == tool)
        return;
    Idle();
    tool = tl;
    Idle();
}

bool PlanModel::IsHit(int spr, TPoint at) const
{
    const SHAPE &shape = sprites.at(spr).Now();
    return plain::Meets(shape, axes, REACH, at) == plain::HITS ||
           (spr == layers[active].focus && plain::HandleAt(shape, axes, HANDLE, at) >= 0);
}

bool PlanModel::IsDoubtful(TPoint at) const
{
    return std::any_of(layers[active].lnk.begin(), layers[active].lnk.end(), [&](int spr) {
        return plain::Meets(sprites.at(spr).Now(), axes, REACH, at) == plain::DOUBTFUL;
    });
}

int PlanModel::TopAt(TPoint at) const
{
    const std::vector<int> &pnt = layers[active].pnt;
    auto hit = std::find_if(pnt.rbegin(), pnt.rend(), [&](int spr) { return IsHit(spr, at); });
    return hit == pnt.rend() ? 0 : *hit;
}

void PlanModel::Pick(TPoint at)
{
    int spr = TopAt(at);
    if (!spr || !Layer().Selected(spr))
        Layer().SelectAll(false);
    if (spr)
        Layer().Select(spr, true);
    Layer().SetFocus(spr);
}

void PlanModel::PickToggle(TPoint at, bool toggle)
{
    int spr = TopAt(at);
    bool leaves = spr && toggle && Layer().Selected(spr);
    if (spr)
        Layer().Select(spr, !leaves);
    if (!leaves)
        Layer().SetFocus(spr);
}

std::vector<int> PlanModel::FocusFirst()
{
    std::vector<int> order;
    if (Layer().focus)
        order.push_back(Layer().focus);
    for (int spr : Layer().sel)
        if (spr != Layer().focus)
            order.push_back(spr);
    return order;
}

void PlanModel::Begin(TPoint at)
{
    const SHAPE &lead = sprites[Layer().focus].Now();
    grip = STEP();
    grip.handle = plain::HandleAt(lead, axes, HANDLE, start);
    grip.kind = button == 2 ? STEP::TURN : grip.handle >= 0 ? STEP::HANDLE : STEP::MOVE;
    grip.pivot = axes.Pixel(lead.centre);
    TPoint seen = at - grip.pivot;
    grip.startAngle = std::arg(POINT(seen.x, seen.y == 0 ? 0 : -seen.y));
    for (int spr : FocusFirst()) {
        sprites[spr].drags = grip.kind != STEP::HANDLE || spr == Layer().focus;
        sprites[spr].hidden = false;
    }
    dragging = true;
}

void PlanModel::DropOne(int spr, const STEP &step)
{
    if (!std::exchange(sprites[spr].drags, false) || sprites[spr].hidden)
        return;
    if (step.kind == STEP::HANDLE && spr != Layer().focus)
        return;
    std::vector<SHAPE> ends = plain::Stepped(sprites[spr].Now(), step, axes);
    ++drops[step.kind];
    if (step.kind == STEP::MOVE && step.ctrl) {
        int copy = Add(active, ends.front());
        Layer().Select(spr, false);
        Layer().Select(copy, true);
        ++copies;
        spr = copy;
    }
    sprites[spr].may = ends;
}

void PlanModel::Drop(unsigned keys, TPoint at)
{
    dragging = false;
    STEP step = grip;
    step.shift = keys & WIN_KEY_SHIFT;
    step.ctrl = keys & WIN_KEY_CTRL;
    step.by = at - start;
    step.pointer = at;
    for (int spr : FocusFirst())
        DropOne(spr, step);
    if (!outside)
        Layer().RepaintSelection();
}

void PlanModel::BandEnd()
{
    band = false;
    if (outside)
        return;
    TRect rect = TRect{start.x, start.y, bandEnd.x, bandEnd.y}.Normalized();
    for (int spr : Layer().lnk) {
        plain::BOX box = plain::Around(sprites[spr].Now(), 0);
        if (rect.Contains(axes.Pixel(box.low)) && rect.Contains(axes.Pixel(box.high)))
            Layer().Select(spr, true);
    }
}

void PlanModel::TakeBack(unsigned keys, TPoint at)
{
    if (!outside)
        Outside(true);
    if (dragging)
        Drop(keys, at);
    if (band)
        BandEnd();
}

void PlanModel::LeftDown(unsigned keys, TPoint at)
{
    if (rightState == 1) {
        if (tool == SELECTOR) {
            if (!outside)
                Outside(true);
            RightUp(keys, at);
        }
        return;
    }
    if (dragging || band)
        TakeBack(keys, at);
    leftState = button = 1;
    outside = false;
    start = last = at;
    if (tool == CREATOR)
        origin = from = to = plain::Snapped(axes.Metres(at), axes.snap);
    else if (!(keys & WIN_KEY_SHIFT))
        Pick(at);
}

void PlanModel::LeftUp(unsigned keys, TPoint at)
{
    int former = std::exchange(leftState, 0);
    if (former == 1 && tool == CREATOR) {
        if (!outside)
            Create();
    } else if (former == 1 && dragging) {
        Drop(keys, at);
    } else if (former == 1 && band) {
        BandEnd();
    } else if (former == 1 && (keys & WIN_KEY_SHIFT) && !outside) {
        PickToggle(at, true);
    } else if (former == 0 && rightState == 0 && (dragging || band)) {
        TakeBack(keys, at);
    }
}

void PlanModel::LeftDouble()
{
    if (tool == CREATOR || rightState != 0)
        return;
    leftState = 2;
    outside = false;
}

void PlanModel::RightDown(unsigned keys, TPoint at)
{
    if (leftState == 1) {
        if (!outside)
            Outside(true);
        LeftUp(keys, at);
        return;
    }
    if (leftState == 2) {
        leftState = 0;
        return;
    }
    if (dragging || band)
        TakeBack(keys, at);
    rightState = 1;
    outside = false;
    if (tool == CREATOR)
        return;
    button = 2;
    start = last = at;
    Pick(at);
}

void PlanModel::RightUp(unsigned keys, TPoint at)
{
    int former = std::exchange(rightState, 0);
    if (former == 1 && dragging)
        Drop(keys, at);
    else if (former == 0 && leftState == 0 && (dragging || band))
        TakeBack(keys, at);
}

void PlanModel::MouseMove(unsigned keys, TPoint at)
{
    if (tool == CREATOR) {
        if (leftState == 1 && !outside) {
            to = plain::Snapped(axes.Metres(at), axes.snap);
            Constrain(keys);
        }
        return;
    }
    if (outside || at == last || (leftState != 1 && rightState != 1))
        return;
    last = at;
    if (!dragging && !band)
        PickToggle(start, false);
    if (Layer().focus && !band) {
        if (!dragging)
            Begin(at);
    } else if (leftState == 1 && !dragging) {
        band = true;
        bandEnd = at;
    }
}

void PlanModel::Outside(bool on)
{
    outside = on;
    if (dragging)
        for (int spr : Layer().sel)
            sprites[spr].hidden = on;
}

void PlanModel::Constrain(unsigned keys)
{
    from = origin;
    double x = to.real() - from.real();
    double y = to.imag() - from.imag();
    bool upright = std::abs(x) <= std::abs(y);
    if ((keys & WIN_KEY_SHIFT) && active == 1)
        (upright ? x : y) = 0;
    else if (keys & WIN_KEY_SHIFT)
        (upright ? x : y) = upright ? std::abs(y) * (x < 0 ? -1 : 1) : std::abs(x) * (y < 0 ? -1 : 1);
    to = from + POINT(x, y);
    if (keys & WIN_KEY_CTRL)
        from = origin - POINT(x, y);
}

void PlanModel::Create()
{
    POINT way = to - from;
    if (std::abs(way) == 0)
        return;
    SHAPE shape;
    shape.line = active == 1;
    shape.centre = (from + to) / 2.0;
    shape.width = shape.line ? std::abs(way) : way.real();
    shape.height = shape.line ? 0 : way.imag();
    shape.angle = shape.line ? std::arg(way) : 0;
    Layer().SelectAll(false);
    int spr = Add(active, shape);
    Layer().Select(spr, true);
    Layer().SetFocus(spr);
    ++made;
}
