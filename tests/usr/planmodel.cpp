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
        for (int spr : Layer()->sel)
            sprites.erase(spr);
    Layer()->Command(id);
}

void PlanModel::Idle()
{
    Rest();
    if (tool == CREATOR)
        outside = false;
}

void PlanModel::SetLayer(int ly)
{
    if (ly == active)
        return;
    Idle();
    Layer()->active = false;
    active = ly;
    Layer()->active = true;
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

bool PlanModel::IsIn(int spr, const TRect &rect) const
{
    plain::BOX box = plain::Around(sprites.at(spr).Now(), 0);
    return rect.Contains(axes.Pixel(box.low)) && rect.Contains(axes.Pixel(box.high));
}

void PlanModel::Grip(TPoint at)
{
    const SHAPE &lead = sprites[Layer()->focus].Now();
    grip = STEP();
    grip.handle = plain::HandleAt(lead, axes, HANDLE, start);
    grip.kind = button == 2 ? STEP::TURN : grip.handle >= 0 ? STEP::HANDLE : STEP::MOVE;
    grip.pivot = axes.Pixel(lead.centre);
    TPoint seen = at - grip.pivot;
    grip.startAngle = std::arg(POINT(seen.x, seen.y == 0 ? 0 : -seen.y));
    for (int spr : FocusFirst()) {
        sprites[spr].drags = grip.kind != STEP::HANDLE || spr == Layer()->focus;
        sprites[spr].hidden = false;
    }
}

void PlanModel::DropOne(int spr, unsigned keys, TPoint at)
{
    if (!std::exchange(sprites[spr].drags, false) || sprites[spr].hidden)
        return;
    if (grip.kind == STEP::HANDLE && spr != Layer()->focus)
        return;
    STEP step = grip;
    step.shift = keys & WIN_KEY_SHIFT;
    step.ctrl = keys & WIN_KEY_CTRL;
    step.by = at - start;
    step.pointer = at;
    std::vector<SHAPE> ends = plain::Stepped(sprites[spr].Now(), step, axes);
    ++drops[step.kind];
    if (step.kind == STEP::MOVE && step.ctrl) {
        int copy = Add(active, ends.front());
        Layer()->Select(spr, false);
        Layer()->Select(copy, true);
        ++copies;
        spr = copy;
    }
    sprites[spr].may = ends;
}

void PlanModel::LeftDown(unsigned keys, TPoint at)
{
    if (tool == SELECTOR) {
        PlainSelector::LeftDown(keys, at);
    } else if (rightState == 0) {
        leftState = 1;
        outside = false;
        start = last = at;
        origin = from = to = plain::Snapped(axes.Metres(at), axes.snap);
    }
}

void PlanModel::LeftUp(unsigned keys, TPoint at)
{
    if (tool == SELECTOR)
        PlainSelector::LeftUp(keys, at);
    else if (std::exchange(leftState, 0) == 1 && !outside)
        Create();
}

void PlanModel::LeftDouble(unsigned keys, TPoint at)
{
    if (tool == SELECTOR)
        PlainSelector::LeftDouble(keys, at);
}

void PlanModel::RightDown(unsigned keys, TPoint at)
{
    if (tool == SELECTOR) {
        PlainSelector::RightDown(keys, at);
    } else {
        outside = leftState == 1; // the shape is taken back
        rightState = leftState == 0;
        leftState = 0;
    }
}

void PlanModel::RightUp(unsigned keys, TPoint at)
{
    if (tool == SELECTOR)
        PlainSelector::RightUp(keys, at);
    else
        rightState = 0;
}

void PlanModel::MouseMove(unsigned keys, TPoint at)
{
    if (tool == SELECTOR) {
        PlainSelector::MouseMove(keys, at);
    } else if (leftState == 1 && !outside) {
        to = plain::Snapped(axes.Metres(at), axes.snap);
        Constrain(keys);
    }
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
    Layer()->SelectAll(false);
    int spr = Add(active, shape);
    Layer()->Select(spr, true);
    Layer()->SetFocus(spr);
    ++made;
}
