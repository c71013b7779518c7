// The block: what it does by itself, and how it tells the document of a change.
#include "lib/xassert.h"
#include "usr/edcapp.h"
#include "usr/edcbase2.h"
#include "win/dc.h"

#include "lib/xon.h"

void TEdcBlock::Update(bool) {}

void TEdcBlock::Layout(TDC &, TEdcSize &, double) {}

bool TEdcBlock::DoCommand(int)
{
    return false;
}

void TEdcBlock::EnableCommand(TCommandEnabler &) {}

void TEdcBlock::Paint(TDC &dc, const TRect &)
{
    int right = rect.width - 1;
    int bottom = rect.height - 1;
    dc.SetPen(TPen());
    TPoint outline[] = {{0, 0}, {right, 0}, {right, bottom}, {0, bottom}, {0, 0}};
    dc.Polyline(outline, 5);
    dc.Line({0, 0}, {right, bottom});
    dc.Line({0, bottom}, {right, 0});
}

void TEdcBlock::SetOptions(unsigned o)
{
    options = o;
    if (state & EDC_BsLINKED)
        AppDocument()->Obsolete(EDC_LAYOUT);
}

void TEdcBlock::SetSize(const TEdcSize &s)
{
    const TEdcSize *own = size.base;
    size = s;
    size.base = own;
    if (state & EDC_BsLINKED)
        AppDocument()->Obsolete(EDC_LAYOUT);
}

void TEdcBlock::SetMargins(const TEdcMargins &m)
{
    const TEdcSize *own = margins.base;
    margins = m;
    margins.base = own;
    if (state & EDC_BsLINKED)
        AppDocument()->Obsolete(EDC_LAYOUT);
}

TEdcMouseTool *TEdcBlock::SetMouseTool(TEdcMouseTool *tl)
{
    TEdcMouseTool *former = tool;
    __enter
        if (former) {
            former->Activate(false); __test;
        }
        if (tl) {
            tl->Activate(true); __test;
        }
        tool = tl;
    __point
        tool = NULL;
    __treat
    return former;
}

void TEdcBlock::AddToGroup(TEdcBlock **first)
{
    ASSERT(group == NULL);
    if (!*first) {
        *first = this;
        return;
    }
    TEdcBlock *at = *first;
    if (at->state & EDC_BsLINKED) {
        state |= EDC_BsLINKED;
        size.base = at->size.base;
        margins.base = at->margins.base;
        AppDocument()->Obsolete(EDC_LAYOUT);
    }
    if (!at->group)
        at->group = at;
    while (at->next && at->next->group == at->group)
        at = at->next;
    group = at->group;
    prev = at;
    next = at->next;
    if (next)
        next->prev = this;
    at->next = this;
    *first = at;
}
