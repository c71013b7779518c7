// Laying blocks out: the flow of the chain into rows and pages, the single opened block, and the pages on
// paper. A layout runs over all blocks, a few hundred of them, and measures each once; it knows inches only,
// and turns a place into pixels at the very end, so that rounding never adds up.
#include "lib/xassert.h"
#include "usr/edcbase2.h"
#include "usr/edcutils.h"
#include "win/dc.h"

#include <algorithm>

#include "lib/xon.h"

namespace
{
enum { ZOOM_FIT_ALL = 1, ZOOM_FIT_LARGER = 2, ZOOM_FIT_WIDTH = 3 };
enum { TEXT_DOUBLE = 20200, TEXT_STANDARD = 20201, TEXT_WINDOW = 20202, TEXT_NONE = 20203 };

/// Inches. A block that fills the page exactly must not fall over its edge by the last bit of a sum.
constexpr double SLACK = 1e-9;

/// Where the flow stands, in inches.
struct Cursor {
    double x = 0;      // in the row
    double y = 0;      // of the row, from the document's top; never starts over
    double pageY = 0;  // of the row, from the page's top
    double height = 0; // of the row so far

    void NewRow(bool newPage)
    {
        x = 0;
        y += height;
        pageY = newPage ? 0 : pageY + height;
        height = 0;
    }
};

void MarkPage(TEdcBlock *blk, bool on)
{
    blk->state = on ? blk->state | EDC_BsPAGE : blk->state & ~EDC_BsPAGE;
}

void StartWhereAsked(TEdcBlock *blk, Cursor &at)
{
    MarkPage(blk, false);
    if (!(blk->options & (EDC_BoPAGE | EDC_BoROW)))
        return;
    at.NewRow(blk->options & EDC_BoPAGE);
    MarkPage(blk, blk->options & EDC_BoPAGE);
}

/// What the block is offered: its wanted size within the page, all that is left where it wants none.
TEdcSize OfferedSize(const TEdcBlock *blk, const TEdcSize &page, const Cursor &at)
{
    TEdcSize offer = blk->size;
    offer.Clamp(page.Width() - blk->margins.Left(), page.Height() - blk->margins.Top());
    if (offer.Width() == 0)
        offer.SetWidth(page.Width() - at.x - blk->margins.Left());
    if (offer.Height() == 0)
        offer.SetHeight(page.Height() - blk->margins.Top());
    return offer;
}

/// A block that does not fit beside or below what stands there begins a row or a page.
void StartWhereItFits(TEdcBlock *blk, const TEdcSize &size, const TEdcSize &page, Cursor &at)
{
    bool overX = page.Width() + SLACK < size.Width() + blk->margins.Left() + at.x;
    bool overY =
        page.Height() + SLACK < size.Height() + (overX ? at.height : 0) + at.pageY + blk->margins.Top();
    if (!overX && !overY)
        return;
    at.NewRow(overY);
    if (overY)
        MarkPage(blk, true);
}

/// Takes the blocks in front that want to stay with this one over to its page: the page mark moves to the first
/// of them. Heights are the wanted ones, so an automatic one counts with its margins only. The blocks keep
/// their places, for only paper is cut at the marks.
void KeepTogether(TEdcBlock *blk, const TEdcSize &page, Cursor &at)
{
    double own = blk->size.Height() + blk->margins.Top();
    double kept = own;
    TEdcBlock *p = blk->prev;
    while (kept <= page.Height()) {
        ASSERT(p != NULL);
        if (!(p->options & EDC_BoKEEP)) {
            MarkPage(blk, false);
            MarkPage(p->next, true);
            at.pageY = kept - blk->size.Height() - blk->margins.Top();
            return;
        }
        kept += p->margins.Top() + p->size.Height() + p->margins.Bottom();
        p = p->prev;
    }
}

void Place(TEdcBlock *blk, const TDC &dc, const TEdcSize &size, double scale, const Cursor &at)
{
    TSize pixels = size.ToPixels(dc, scale);
    blk->rect.x = EdcInchToPixel(blk->margins.Left() + at.x, scale, dc.DpiX());
    blk->rect.y = EdcInchToPixel(blk->margins.Top() + at.y, scale, dc.DpiY());
    blk->rect.width = pixels.cx;
    blk->rect.height = pixels.cy;
}

/// Lets the block measure itself. It may come back smaller than offered, never larger.
void Measure(TEdcBlock *blk, TDC &dc, TEdcSize &size, double scale)
{
    __enter
        TEdcSize offer = size;
        blk->Layout(dc, size, scale); __test;
        size.ClampTo(offer);
    __point
    __treat
}
} // namespace

TSize TEdcDocument::ViewSpace() const
{
    TRect client = GetClientRect();
    return {std::max(0, client.Width() - 2 * FRAME), std::max(0, client.Height() - 2 * FRAME)};
}

void TEdcDocument::RebuildDocZoom(TDC &dc)
{
    TSize space = ViewSpace();
    docZoom.Clear();
    docZoom.Add(docZoom.Fit(dc, page, space.cx, space.cy, ZOOM_FIT_WIDTH), TEXT_STANDARD);
    docZoom.Add(100, TEXT_NONE);
}

void TEdcDocument::RebuildBlockZoom(TDC &dc, const TEdcSize &size)
{
    TSize space = ViewSpace();
    int larger = blockZoom.Fit(dc, size, space.cx, space.cy, ZOOM_FIT_LARGER);
    blockZoom.Clear();
    blockZoom.Add(blockZoom.Fit(dc, size, space.cx, space.cy, ZOOM_FIT_ALL), TEXT_WINDOW);
    blockZoom.Add(larger, TEXT_STANDARD);
    blockZoom.Add(EdcNearest(2.0 * larger), TEXT_DOUBLE);
}

void TEdcDocument::LayoutBlocks(TDC &dc, TEdcZoom *zoom)
{
    __enter
        if (openedBlk) {
            LayoutOpened(dc, zoom); __test;
        } else {
            if (!zoom)
                RebuildDocZoom(dc);
            TEdcZoom &used = zoom ? *zoom : docZoom;
            used.Limit(dc, page);
            scale = used.Scale();
            FlowBlocks(dc); __test;
        }
    __point
    __treat
}

void TEdcDocument::FlowBlocks(TDC &dc)
{
    __enter
        Cursor at;
        for (TEdcBlock *blk = blocks; blk; blk = blk->next) {
            StartWhereAsked(blk, at);
            TEdcSize size = OfferedSize(blk, page, at);
            Measure(blk, dc, size, scale); __test;
            StartWhereItFits(blk, size, page, at);
            at.height = std::max(at.height, blk->margins.Top() + size.Height() + blk->margins.Bottom());
            if ((blk->state & EDC_BsPAGE) && !(blk->options & EDC_BoPAGE))
                KeepTogether(blk, page, at);
            Place(blk, dc, size, scale, at);
            at.x += blk->margins.Left() + size.Width() + blk->margins.Right();
        }
    __point
    __treat
}

/// An opened block alone. The screen measures it at scale 1 first, for its presets depend on its true size.
void TEdcDocument::LayoutOpened(TDC &dc, TEdcZoom *zoom)
{
    __enter
        ASSERT(openedBlk->state & EDC_BsLINKED);
        TEdcSize offer = openedBlk->size;
        offer.ClampTo(page);
        if (offer.Width() == 0)
            offer.SetWidth(page.Width());
        if (offer.Height() == 0)
            offer.SetHeight(page.Height());
        if (!zoom) {
            TEdcSize natural = offer;
            Measure(openedBlk, dc, natural, 1.0); __test;
            RebuildBlockZoom(dc, natural);
        }
        TEdcZoom &used = zoom ? *zoom : blockZoom;
        used.Limit(dc, page);
        scale = used.Scale();
        Measure(openedBlk, dc, offer, scale); __test;
        TSize pixels = offer.ToPixels(dc, scale);
        openedBlk->rect = {0, 0, pixels.cx, pixels.cy};
    __point
    __treat
}

int TEdcDocument::PageCount() const
{
    int pages = 1;
    if (openedBlk)
        return pages;
    for (const TEdcBlock *blk = blocks; blk; blk = blk->next)
        if (blk->state & EDC_BsPAGE)
            ++pages;
    return pages;
}

/// First block of the page; NULL behind the last page. A mark on the very first block begins no further page.
TEdcBlock *TEdcDocument::PageFirst(int pageNum) const
{
    TEdcBlock *blk = blocks;
    while (blk && pageNum > 1) {
        blk = blk->next;
        if (blk && (blk->state & EDC_BsPAGE))
            --pageNum;
    }
    return blk;
}

void TEdcDocument::PrintPage(TDC &dc, int pageNum)
{
    TDCState fresh = dc.State(); // for each block: none sees pens and clips of another
    __enter
        ASSERT(blocks != NULL);
        ASSERT(pageNum >= 1);
        TPoint origin = {EdcInchToPixel(margins.Left(), 1.0, dc.DpiX()),
                         EdcInchToPixel(margins.Top(), 1.0, dc.DpiY())};
        origin = origin - dc.PhysicalOffset();
        TEdcBlock *first = openedBlk ? openedBlk : PageFirst(pageNum);
        for (TEdcBlock *blk = first; blk; blk = openedBlk ? NULL : blk->next) {
            if (blk != first && (blk->state & EDC_BsPAGE))
                break;
            dc.SetState(fresh);
            dc.SetViewportOrg(TPoint{blk->rect.x - first->rect.x, blk->rect.y - first->rect.y} + origin);
            blk->Print(dc, {0, 0, blk->rect.width, blk->rect.height}); __test;
        }
    __point
    __treat
    dc.SetState(fresh);
}
