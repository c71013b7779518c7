// The chain of blocks and its groups, the paper, and the palette that all colours of the document share. The
// links lie in the blocks and nothing here allocates but the palette, so that nothing but that can fail: a
// block comes out of the chain also while a failure is pending.
#include "lib/xassert.h"
#include "usr/edcbase2.h"

#include <climits>

#include "lib/xon.h"

TEdcBlock *TEdcDocument::GroupFirst(TEdcBlock *blk)
{
    return blk->group ? blk->group : blk;
}

TEdcBlock *TEdcDocument::GroupLast(TEdcBlock *blk)
{
    if (blk->group)
        while (blk->next && blk->next->group == blk->group)
            blk = blk->next;
    return blk;
}

bool TEdcDocument::IsInChain(const TEdcBlock *wanted) const
{
    const TEdcBlock *blk = blocks;
    while (blk && blk != wanted)
        blk = blk->next;
    return blk != NULL;
}

/// Where a run goes in front of, NULL for the end: behind the anchor's group or before it.
TEdcBlock *TEdcDocument::PlaceInChain(TEdcBlock *anchor, bool after) const
{
    if (!IsInChain(anchor))
        return NULL;
    return after ? GroupLast(anchor)->next : GroupFirst(anchor);
}

void TEdcDocument::LinkBlock(TEdcBlock *blk, TEdcBlock *anchor, bool after)
{
    if (!blk)
        return;
    TEdcBlock *first = GroupFirst(blk);
    TEdcBlock *last = GroupLast(blk);
    ASSERT(first->prev == NULL);
    ASSERT(last->next == NULL);
    ASSERT(!(first->state & EDC_BsLINKED));
    for (TEdcBlock *member = first; member; member = member->next) {
        member->state |= EDC_BsLINKED;
        member->size.base = &page;
        member->margins.base = &page;
    }
    TEdcBlock *behind = PlaceInChain(anchor, after);
    TEdcBlock *before = behind ? behind->prev : blocks;
    while (!behind && before && before->next)
        before = before->next;
    first->prev = before;
    last->next = behind;
    (before ? before->next : blocks) = first;
    if (behind)
        behind->prev = last;
    Obsolete(EDC_LAYOUT);
}

void TEdcDocument::UnlinkBlock(TEdcBlock *blk)
{
    if (!blk)
        return;
    TEdcBlock *first = GroupFirst(blk);
    TEdcBlock *last = GroupLast(blk);
    if (first->prev)
        first->prev->next = last->next;
    else if (blocks == first)
        blocks = last->next;
    if (last->next)
        last->next->prev = first->prev;
    first->prev = NULL;
    last->next = NULL;
    for (TEdcBlock *member = first; member; member = member->next) {
        member->state &= ~EDC_BsLINKED;
        member->size.base = NULL;
        member->margins.base = NULL;
    }
    Obsolete(EDC_LAYOUT);
}

void TEdcDocument::RemoveBlock(TEdcBlock *blk)
{
    if (!blk)
        return;
    UnlinkBlock(blk);
    for (TEdcBlock *member = GroupFirst(blk); member;) {
        TEdcBlock *doomed = member;
        member = member->next;
        if (doomed == selectedBlk)
            SelectBlock(NULL);
        if (doomed == openedBlk)
            CloseBlock();
        delete doomed;
    }
}

void TEdcDocument::RemoveAllBlocks()
{
    while (blocks)
        RemoveBlock(blocks);
}

void TEdcDocument::UpdatePage()
{
    page.SetWidth(paper.Width() - margins.Left() - margins.Right());
    page.SetHeight(paper.Height() - margins.Top() - margins.Bottom());
}

void TEdcDocument::SetPaper(const TEdcSize &size)
{
    paper = size;
    UpdatePage();
    Obsolete(EDC_LAYOUT);
}

void TEdcDocument::SetMargins(const TEdcMargins &m)
{
    margins = m;
    UpdatePage();
    Obsolete(EDC_LAYOUT);
}

void TEdcDocument::AddPalette(TEdcPalette *pal)
{
    pal->next = regpal;
    regpal = pal;
}

/// Where a scale's colours stand in the composed palette. They stand together, so a run is one scale.
void TEdcDocument::PlaceScales()
{
    int index = 0;
    const TEdcColorScale *former = NULL;
    for (TEdcPalette *pal = regpal; pal; pal = pal->next) {
        pal->compal = compal;
        for (int i = 0; i < pal->count; ++i, ++index) {
            TEdcColorScale *scaleOf = pal->defs[i].scale;
            if (scaleOf && scaleOf != former) {
                scaleOf->first = index;
                scaleOf->size = 0;
                scaleOf->palette = compal;
            }
            if (scaleOf)
                ++scaleOf->size;
            former = scaleOf;
        }
    }
}

void TEdcDocument::ComposePalette()
{
    std::unique_ptr<TPalette> fresh;
    __enter
        ASSERT(regpal != NULL);
        int psize = 0;
        for (const TEdcPalette *pal = regpal; pal; pal = pal->next) {
            ASSERT_AS(static_cast<long long>(psize) + pal->count < INT_MAX, "(long)psize+pal->count < MAXINT");
            psize += pal->count;
        }
        fresh = std::make_unique<TPalette>();
        fresh->entries.reserve(static_cast<size_t>(psize));
        for (const TEdcPalette *pal = regpal; pal; pal = pal->next)
            for (int i = 0; i < pal->count; ++i)
                fresh->entries.push_back({pal->defs[i].red, pal->defs[i].green, pal->defs[i].blue});
        delete compal;
        compal = fresh.release();
        PlaceScales();
        Obsolete(EDC_PAINT);
    __point
    __treat
}
