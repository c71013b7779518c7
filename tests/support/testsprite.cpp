#include "support/testsprite.h"

#include "win/dc.h"

#include <vector>

#include "lib/xon.h"

namespace
{
enum { HANDLE = 4 }; // px

std::string Names(TEdcSprite *first, TEdcSprite *TEdcSprite::*next)
{
    std::string names;
    for (const TEdcSprite *spr = first; spr; spr = spr->*next)
        names += static_cast<const TTestSprite *>(spr)->name;
    return names;
}

/// A list walked from both ends.
testing::AssertionResult IsLinked(const char *list, TEdcSprite *first, TEdcSprite *last,
                                  TEdcSprite *TEdcSprite::*prev, TEdcSprite *TEdcSprite::*next, int count)
{
    std::vector<const TEdcSprite *> forth;
    for (const TEdcSprite *spr = first; spr; spr = spr->*next) {
        if (static_cast<int>(forth.size()) >= count)
            return testing::AssertionFailure() << list << ": longer than " << count;
        if (spr->*prev != (forth.empty() ? NULL : forth.back()))
            return testing::AssertionFailure() << list << ": a link back goes elsewhere";
        forth.push_back(spr);
    }
    if (static_cast<int>(forth.size()) != count)
        return testing::AssertionFailure() << list << ": " << forth.size() << " instead of " << count;
    if (last != (forth.empty() ? NULL : forth.back()))
        return testing::AssertionFailure() << list << ": the last one is another";
    return testing::AssertionSuccess();
}
} // namespace

void SpriteLog::Add(const std::string &word)
{
    Note(word);
    if (failAt == 0)
        return;
    if (--failAt == 0) {
        ++fired;
        if (onwards)
            failAt = 1;
        if (xCode == XNULL)
            XRaise(XALLOC, __FILE__, __LINE__);
    }
}

bool TTestSprite::InRect(const TRect &rect)
{
    if (log.queries)
        log.Add(name + ".in");
    return (place & rect) == place;
}

bool TTestSprite::HitTest(TPoint point)
{
    if (log.queries)
        log.Add(name + ".hit");
    return place.Contains(point);
}

void TTestSprite::Step(const char *what, unsigned mode, TPoint start, TPoint shift)
{
    log.Add(name + "." + what + std::to_string(mode) + "@" + PlaceText(start) + "+" + PlaceText(shift));
}

void TTestSprite::Ghost(TDC &dc) const
{
    TDCState former = dc.State();
    dc.SetMix(WIN_MIX_XOR);
    dc.SetPen({.color = WIN_WHITE});
    dc.SetBrush(NoBrush());
    if (draws)
        dc.Rectangle(place.Offset(offset.x, offset.y));
    dc.SetState(former);
}

void TTestSprite::DragBegin(TDC &dc, unsigned mode, TPoint start, TPoint shift)
{
    __enter
        drags = hidden = false;
        Step("begin", mode, start, shift); __test;
        drags = true;
        offset = shift;
        Ghost(dc);
    __point
    __treat
}

void TTestSprite::DragMove(TDC &dc, unsigned mode, TPoint start, TPoint shift)
{
    __enter
        Step("drag", mode, start, shift); __test;
        if (drags) {
            Ghost(dc);
            offset = shift;
            Ghost(dc);
        }
    __point
    __treat
}

void TTestSprite::DragHide(TDC &dc, bool aHidden)
{
    __enter
        log.Add(name + (aHidden ? ".hide" : ".show")); __test;
        if (drags)
            Ghost(dc);
        hidden = aHidden;
    __point
    __treat
}

void TTestSprite::DragEnd(TDC &dc, unsigned mode, TPoint start, TPoint shift)
{
    bool drops = drags && !hidden;
    drags = false;
    __enter
        Step("drop", mode, start, shift); __test;
        if (drops) {
            Ghost(dc);
            offset = shift;
            Drop(mode);
        }
    __point
    __treat
}

/// In place of the original the copy is selected.
void TTestSprite::Drop(unsigned mode)
{
    TRect dropped = place.Offset(offset.x, offset.y);
    if (mode & WIN_KEY_CTRL) {
        auto *copy = new TTestSprite(name + "'", dropped, log);
        copy->draws = draws;
        layer->Add(copy);
        layer->Select(this, false, NULL);
        layer->Select(copy, true, NULL);
    } else {
        place = dropped;
        AppDocument()->Obsolete(EDC_PAINT);
    }
}

void TTestSprite::SetState(uint16_t mask, bool on)
{
    if (log.states && mask != 0)
        log.Note(name + (on ? "+" : "-") + std::to_string(mask));
    TEdcSprite::SetState(mask, on);
}

void TTestSprite::Decorate(TDC &dc)
{
    __enter
        log.Add(name + ".decorate"); __test;
        for (int x : {place.left, place.right})
            for (int y : {place.top, place.bottom})
                if (draws)
                    dc.InvertRect({x - HANDLE / 2, y - HANDLE / 2, x + HANDLE / 2, y + HANDLE / 2});
    __point
    __treat
}

void TTestSprite::Paint(TDC &dc)
{
    const TColor idle = {160, 160, 160}, active = {0, 0, 255}, selected = {0, 255, 0};
    __enter
        log.Add(name + ".paint"); __test;
        bool picked = state & EDC_SsSELECTED;
        dc.SetPen({});
        dc.SetBrush(SolidBrush(!(state & EDC_SsACTIVE) ? idle : picked ? selected : active));
        if (draws)
            dc.Rectangle(place);
    __point
    __treat
}

/// A call of its own, which may fail, and behind it what every layer does.
template <class WORK>
void TTestLayer::Logged(const std::string &word, WORK work)
{
    __enter
        if (logs) {
            log.Add(name + "." + word); __test;
        }
        work(); __test;
    __point
    __treat
}

void TTestLayer::Reset()
{
    Logged("reset", [this] { TEdcSpriteLayer::Reset(); });
}

void TTestLayer::SetTool(int aToolId)
{
    Logged("tool" + std::to_string(aToolId), [=, this] { TEdcSpriteLayer::SetTool(aToolId); });
}

void TTestLayer::Layout(TDC &dc)
{
    Logged("layout", [&] { TEdcSpriteLayer::Layout(dc); });
}

void TTestLayer::Reload(void *arg)
{
    Logged("reload", [=, this] { TEdcSpriteLayer::Reload(arg); });
}

void TTestLayer::OpenAt(unsigned keys, TPoint point)
{
    log.Add(name + ".open" + std::to_string(keys) + "@" + PlaceText(point));
}

void TTestLayer::MenuAt(unsigned keys, TPoint point)
{
    log.Add(name + ".menu" + std::to_string(keys) + "@" + PlaceText(point));
}

void TTestLayer::Paint(TDC &dc, const TRect &rect)
{
    Logged("paint", [&] { TEdcSpriteLayer::Paint(dc, rect); });
}

void TTestLayer::PaintPlain(TDC &dc, const TRect &rect)
{
    Logged("plain", [&] { TEdcSpriteLayer::PaintPlain(dc, rect); });
}

TTestSprite *TTestLayer::Put(const char *spriteName, const TRect &place)
{
    auto *spr = new TTestSprite(spriteName, place, log);
    Add(spr);
    return spr;
}

std::string TTestLayer::Lnk() const
{
    return Names(lnkFirst, &TEdcSprite::lnkNext);
}

std::string TTestLayer::Pnt() const
{
    return Names(pntFirst, &TEdcSprite::pntNext);
}

std::string TTestLayer::Sel() const
{
    return Names(selFirst, &TEdcSprite::selNext);
}

std::string TTestLayer::FocusName() const
{
    return focus ? static_cast<const TTestSprite *>(focus)->name : "-";
}

testing::AssertionResult TTestLayer::IsSound() const
{
    testing::AssertionResult lnk =
        IsLinked("creation", lnkFirst, lnkLast, &TEdcSprite::lnkPrev, &TEdcSprite::lnkNext, countLnk);
    testing::AssertionResult pnt =
        IsLinked("painting", pntFirst, pntLast, &TEdcSprite::pntPrev, &TEdcSprite::pntNext, countLnk);
    testing::AssertionResult sel =
        IsLinked("selection", selFirst, selLast, &TEdcSprite::selPrev, &TEdcSprite::selNext, countSel);
    for (testing::AssertionResult *list : {&lnk, &pnt, &sel})
        if (!*list)
            return *list;
    for (TEdcSprite *first : {lnkFirst, pntFirst})
        for (const TEdcSprite *spr = first; spr; spr = first == lnkFirst ? spr->lnkNext : spr->pntNext) {
            int wanted = (IsActive() ? EDC_SsACTIVE : 0) | (IsSelected(spr) ? EDC_SsSELECTED : 0) |
                         (spr == focus ? EDC_SsFOCUS : 0);
            if (spr->layer != this || spr->state != wanted)
                return testing::AssertionFailure() << "state " << spr->state << " instead of " << wanted;
        }
    for (const TEdcSprite *spr = selFirst; spr; spr = spr->selNext)
        if (spr->layer != this)
            return testing::AssertionFailure() << "one of another layer is selected";
    if (focus && (focus->layer != this || !IsSelected(focus)))
        return testing::AssertionFailure() << "the focus is not selected";
    return Unlocked() ? testing::AssertionSuccess() : testing::AssertionFailure() << "locked";
}

std::string TTestSelector::States() const
{
    return std::to_string(leftState) + " " + std::to_string(rightState) + (dragging ? " drag" : "") +
           (rubber ? " band" : "") + (outside ? " outside" : "");
}

TSpriteBlock::TSpriteBlock(SpriteLog &aLog, double width, double height)
    : main("main", MAIN, EDC_LoACTIVABLE | EDC_LoVISIBLE | EDC_LoPRINTED, aLog),
      side("side", SIDE, EDC_LoACTIVABLE | EDC_LoVISIBLE | EDC_LoPRINTED, aLog), other("other", OTHER, aLog)
{
    options = EDC_BoSELECT;
    size = TEdcSize(width, height);
    main.logs = side.logs = false;
    manager.AddLayer(&main);
    manager.AddLayer(&side);
    manager.AddTool(&selector);
    manager.AddTool(&other);
    for (TTestLayer *ly : {&main, &side})
        manager.Permit(ly, &selector);
    manager.Permit(&main, &other);
}

void TSpriteBlock::Layout(TDC &dc, TEdcSize &, double)
{
    manager.Layout(dc);
}

void TSpriteBlock::Paint(TDC &dc, const TRect &part)
{
    __enter
        dc.FillRect({0, 0, rect.width, rect.height}, SolidBrush({255, 250, 220}));
        manager.Paint(dc, part); __test;
    __point
    __treat
}

void TSpriteBlock::Print(TDC &dc, const TRect &part)
{
    manager.PaintPlain(dc, part);
}
