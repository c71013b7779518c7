// Alignment along a line: measure, turn, spread, move. The focus goes first wherever a step is applied.
#include "usr/edcdraw.h"

#include "lib/xassert.h"
#include "usr/edcapp.h"
#include "usr/edcbase2.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "lib/xon.h"

namespace
{
/// One sprite on the line.
struct TEdcDrawAlignNode {
    TEdcDrawSprite *sprite = NULL; // view
    TEdcDrawDesc desc;             // in the line's frame
    AgPOINT target;                // m, where its anchor is to come
    double param = 0;              // m, along the line
};
using NODES = std::vector<TEdcDrawAlignNode>;

/// The line, and what is to be done along it.
struct GUIDE {
    const TEdcDrawAlign &spec;
    AgVECTOR dir;      // of length 1
    double length = 0; // m
    double angle = 0;  // rad

    explicit GUIDE(const TEdcDrawAlign &aSpec) : spec(aSpec)
    {
        ASSERT_AS(spec.org != spec.end, "org != end");
        AgVECTOR way = spec.end - spec.org;
        length = way.Length();
        dir = way / length;
        angle = std::acos(std::clamp(dir * AgE1, -1.0, 1.0)) * (dir * AgE2 < 0 ? -1 : 1);
    }
};

void Place(TEdcDrawAlignNode &node, const GUIDE &guide, double param)
{
    node.param = param;
    node.target = guide.spec.org + guide.dir * param;
}

void Measure(TEdcDrawAlignNode &node, const GUIDE &guide)
{
    __enter
        node.sprite->Recompute(); __test;
        node.sprite->Describe(node.desc, guide.angle); __test;
        Complete(node.desc);
        Place(node, guide, (node.desc.centre - guide.spec.org) * guide.dir);
    __point
    __treat
}

/// The selection in the order of selecting, or as it lies along the line.
void MakeNodes(NODES &desc, const TEdcSpriteLayer &layer, const GUIDE &guide)
{
    __enter
        ASSERT_AS(desc.empty(), "desc.Size() == 0");
        for (TEdcSprite *spr = layer.SelFirst(); spr; spr = spr->selNext) {
            TEdcDrawAlignNode node;
            node.sprite = static_cast<TEdcDrawSprite *>(spr);
            Measure(node, guide); __test;
            desc.push_back(node);
        }
        bool spreads = (guide.spec.mode & TEdcDrawAlign::STRETCH) != 0;
        if (spreads && !(guide.spec.mode & TEdcDrawAlign::SELORDER))
            std::stable_sort(desc.begin(), desc.end(),
                             [](const auto &a, const auto &b) { return a.param < b.param; });
    __point
    __treat
}

/// Calls `work` on the focus' node and then on the others in order.
template <class WORK>
void ForEachNode(NODES &desc, const TEdcSprite *focus, WORK work)
{
    __enter
        TEdcDrawAlignNode *focusNode = NULL;
        for (TEdcDrawAlignNode &node : desc)
            if (node.sprite == focus)
                focusNode = &node;
        ASSERT(focusNode != NULL);
        work(*focusNode); __test;
        for (TEdcDrawAlignNode &node : desc)
            if (&node != focusNode) {
                work(node); __test;
            }
    __point
    __treat
}

void TurnNode(TEdcDrawAlignNode &node, const GUIDE &guide)
{
    __enter
        TEdcDrawDrag drag;
        drag.mode = EDC_DRAWDRAGROTATE | EDC_DRAWDRAGABSOLUTE;
        drag.tool = EDC_TlSELECT;
        drag.pivot = node.desc.centre;
        drag.angle = guide.spec.angle + (guide.spec.mode & TEdcDrawAlign::TOXAXIS ? 0 : guide.angle);
        node.sprite->Apply(drag); __test;
        Measure(node, guide); __test;
    __point
    __treat
}

void SpreadNodes(NODES &desc, const GUIDE &guide)
{
    auto n = static_cast<double>(desc.size());
    bool gaps = (guide.spec.mode & TEdcDrawAlign::GAPS) != 0;
    double room = guide.length; // m, what the steps have to fill
    if (gaps)
        for (const TEdcDrawAlignNode &node : desc)
            room -= node.desc.size.x;
    double step = n < 2 ? 0 : room / (n - 1);
    if (guide.spec.mode & TEdcDrawAlign::VALUE)
        step = guide.spec.value;
    double t = 0; // m, where the next one begins
    double i = 0;
    for (TEdcDrawAlignNode &node : desc) {
        double width = node.desc.size.x;
        Place(node, guide, gaps ? t + width / 2 : i * step);
        t += width + step;
        ++i;
    }
}

void MoveNode(TEdcDrawAlignNode &node, const GUIDE &guide)
{
    __enter
        const unsigned sides = TEdcDrawAlign::BELOW | TEdcDrawAlign::MIDDLE | TEdcDrawAlign::ABOVE;
        unsigned side = guide.spec.mode & sides;
        AgPOINT anchor = node.desc.centre;
        if (side == TEdcDrawAlign::BELOW)
            anchor = node.desc.topMid;
        else if (side == TEdcDrawAlign::ABOVE)
            anchor = node.desc.bottomMid;
        TEdcDrawDrag drag;
        drag.mode = EDC_DRAWDRAGMOVE;
        drag.tool = EDC_TlSELECT;
        drag.shift = node.target - anchor;
        node.sprite->Apply(drag); __test;
    __point
    __treat
}
} // namespace

void TEdcDrawLayer::Align(const TEdcDrawAlign &spec)
{
    NODES desc;
    __enter
        GUIDE guide(spec);
        MakeNodes(desc, *this, guide); __test;
        if (spec.mode & TEdcDrawAlign::ROTATE) {
            ForEachNode(desc, focus, [&guide](TEdcDrawAlignNode &node) { TurnNode(node, guide); }); __test;
        }
        if (spec.mode & TEdcDrawAlign::STRETCH)
            SpreadNodes(desc, guide);
        ForEachNode(desc, focus, [&guide](TEdcDrawAlignNode &node) { MoveNode(node, guide); }); __test;
        RepaintSelection(NULL); __test;
        AppDocument()->Obsolete(EDC_LAYOUT);
    __point
        AppDocument()->Obsolete(EDC_LAYOUT);
    __treat
}

/// The count ends the walk: with the copy bit each copy takes its original's place in the selection.
void TEdcDrawLayer::ApplyDrag(TEdcDrawDrag &drag)
{
    __enter
        TEdcDrawSprite *foc = DrawFocus();
        ASSERT(foc != NULL);
        const TEdcDrawHandle *handle = drag.handle;
        ASSERT_AS(handle != NULL || !(drag.mode & EDC_DRAWDRAGHANDLE), "handle != NULL");
        int others = CountSel() - 1;
        EdcApplyAbout(*foc, drag); __test;
        TEdcSprite *following = NULL;
        TEdcSprite *spr = drag.mode & EDC_DRAWDRAGHANDLE ? NULL : selFirst;
        for (; spr && others > 0; spr = following) {
            following = spr->selNext;
            if (spr != foc) {
                --others;
                EdcApplyAbout(static_cast<TEdcDrawSprite &>(*spr), drag); __test;
            }
        }
        RepaintSelection(NULL); __test;
        AppDocument()->Obsolete(EDC_LAYOUT);
    __point
        AppDocument()->Obsolete(EDC_LAYOUT);
    __treat
}

void EdcApplyAbout(TEdcDrawSprite &sprite, TEdcDrawDrag &drag)
{
    __enter
        TEdcDrawDesc desc;
        sprite.Recompute(); __test;
        sprite.Describe(desc, 0); __test;
        Complete(desc);
        drag.pivot = desc.centre;
        sprite.Apply(drag); __test;
    __point
    __treat
}
