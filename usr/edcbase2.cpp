// The document itself: one level of staleness and its working off, painting, coordinates, the selected and the
// opened block, and the way of a command. A message of the window is a root of the failure protocol: what fails
// below it is repaired and shown there, and the window stays usable.
#include "usr/edcbase2.h"
#include "lib/xassert.h"
#include "usr/edcapp.h"
#include "usr/edcutils.h"
#include "win/dc.h"
#include "win/frame.h"

#include <algorithm>
#include <climits>

#include "lib/xon.h"

namespace
{
enum { SCROLL_LINE = 20 };     // px
enum { SELECTION_GAP = 2 };    // px between a selected block and its frame
enum { BRUSH_CELL = 8 };       // px, of hatches and patterns
enum { COMMAND_EXIT = 20001 }; // the others are in DoCommand
} // namespace

TEdcDocument::TEdcDocument(TWindow *aParent)
    : TWindow(aParent), paper(21.0, 29.7, EDC_UCM), margins(2.0, 2.0, 2.0, 2.0, EDC_UCM)
{
    SetScroller(std::make_unique<TScroller>(*this, 1, 1, 1, 1));
    Scroller()->SetLine(SCROLL_LINE, SCROLL_LINE);
    Scroller()->autoMode = false;
    Scroller()->trackMode = false;
    UpdatePage();
    printer = new TPrinter;
}

TEdcDocument::~TEdcDocument()
{
    __enter
        CloseBlock(); __test;
    __point
        __repair;
        __report;
    __treat
    while (blocks)
        UnlinkBlock(blocks);
    if (HasAppDocument() && AppDocument() == this)
        SetAppDocument(NULL);
    delete[] path;
    delete printer;
    delete compal;
}

void TEdcDocument::Reconstruct(bool, bool) {}

bool TEdcDocument::NewDocument(bool)
{
    return false;
}

bool TEdcDocument::ReadFile(const char *)
{
    return false;
}

void TEdcDocument::WriteFile(const char *) {}

void TEdcDocument::PaintEmpty(TDC &, const TRect &) {}

void TEdcDocument::Obsolete(int level)
{
    obsolete = std::max(obsolete, level);
}

/// While a level is being worked off, say under a dialog that an update shows, it is only raised.
void TEdcDocument::Refresh(int level)
{
    Obsolete(level);
    if (locked != 0 || refreshing)
        return;
    __enter
        DropUnusable(); __test;
        Work(); __test;
    __point
    __treat
}

/// Selection and opening end with what makes a block fit for them. An opened block is judged by the selected
/// one where there is one.
void TEdcDocument::DropUnusable()
{
    __enter
        if (selectedBlk && !IsUsable(selectedBlk)) {
            SelectBlock(NULL); __test;
        }
        const TEdcBlock *judged = selectedBlk ? selectedBlk : openedBlk;
        if (openedBlk && (!(openedBlk->state & EDC_BsLINKED) || !(judged->options & EDC_BoSELECT))) {
            CloseBlock(); __test;
        }
    __point
    __treat
}

void TEdcDocument::Work()
{
    refreshing = true;
    __enter
        if (IsObsolete(EDC_UPDATE)) {
            UpdateBlocks(obsolete == EDC_UPDATE); __test;
        }
        if (IsObsolete(EDC_LAYOUT)) {
            LayoutScreen(); __test;
        }
        if (IsObsolete(EDC_PAINT)) {
            ApplyScroll(); __test;
            obsolete = 0;
            Invalidate(true);
        }
    __point
    __treat
    refreshing = false;
}

void TEdcDocument::UpdateBlocks(bool partial)
{
    __enter
        Reconstruct(partial, true); __test;
        for (TEdcBlock *blk = blocks; blk; blk = blk->next) {
            blk->Update(partial); __test;
        }
        Reconstruct(partial, false); __test;
    __point
    __treat
}

void TEdcDocument::LayoutScreen()
{
    __enter
        TMeasureDC dc(Dpi());
        LayoutBlocks(dc, NULL); __test;
        Invalidate(true);
        SetScrollRange();
    __point
    __treat
}

void TEdcDocument::SetScrollRange()
{
    TPoint extent;
    for (const TEdcBlock *blk = openedBlk ? openedBlk : blocks; blk; blk = openedBlk ? NULL : blk->next) {
        extent.x = std::max(extent.x, blk->rect.Rect().right);
        extent.y = std::max(extent.y, blk->rect.Rect().bottom);
    }
    TRect client = GetClientRect();
    int beyondX = blocks ? extent.x + 2 * FRAME - client.Width() : 0;
    int beyondY = blocks ? extent.y + 2 * FRAME - client.Height() : 0;
    EnableScrollBar(WIN_BAR_HORIZONTAL, beyondX > 0);
    EnableScrollBar(WIN_BAR_VERTICAL, beyondY > 0);
    if (Scroller())
        Scroller()->SetRange(std::max(1, beyondX), std::max(1, beyondY));
}

void TEdcDocument::ApplyScroll()
{
    if (!scrollPending || !Scroller())
        return;
    Scroller()->ScrollTo(EdcNearest(scrollTarget.x * scale), EdcNearest(scrollTarget.y * scale));
    scrollPending = false;
}

TPoint TEdcDocument::GetScroll() const
{
    if (!Scroller())
        return {};
    return {EdcNearest(Scroller()->XPos() / scale), EdcNearest(Scroller()->YPos() / scale)};
}

void TEdcDocument::SetScroll(TPoint point)
{
    scrollTarget = point;
    scrollPending = true;
    Obsolete(EDC_PAINT);
}

TPoint TEdcDocument::StandsAt() const
{
    return scrollPending ? scrollTarget : GetScroll();
}

void TEdcDocument::Lock(bool on)
{
    if (on) {
        ASSERT_AS(locked < INT_MAX, "locked < MAXINT");
        if (locked++ == 0) {
            EnableScrollBar(WIN_BAR_BOTH, false);
            Invalidate(true);
        }
    } else {
        ASSERT(locked > 0);
        if (--locked == 0)
            Obsolete(EDC_LAYOUT);
    }
}

TPoint TEdcDocument::ToDocument(TPoint p) const
{
    TPoint scrolled = Scroller() ? TPoint{Scroller()->XPos(), Scroller()->YPos()} : TPoint();
    return p + scrolled - TPoint{FRAME, FRAME};
}

TPoint TEdcDocument::ToWindow(TPoint p) const
{
    return p - ToDocument(TPoint());
}

TRect TEdcDocument::ToDocument(const TRect &r) const
{
    TPoint corner = ToDocument(TPoint());
    return r.Offset(corner.x, corner.y);
}

TRect TEdcDocument::ToWindow(const TRect &r) const
{
    TPoint corner = ToWindow(TPoint());
    return r.Offset(corner.x, corner.y);
}

TEdcBlock *TEdcDocument::HitTest(TPoint windowPoint) const
{
    TPoint p = ToDocument(windowPoint);
    TEdcBlock *blk = openedBlk ? openedBlk : blocks;
    while (blk && !blk->rect.Rect().Contains(p))
        blk = openedBlk ? NULL : blk->next;
    return blk;
}

/// Brush cells stick to the document, so that a scrolled picture and what is painted beside it match.
void TEdcDocument::PrepareDC(TDC &dc) const
{
    int sx = Scroller() ? Scroller()->XPos() : 0;
    int sy = Scroller() ? Scroller()->YPos() : 0;
    dc.SetViewportOrg({});
    dc.SetTurn(0);
    dc.SetBrushOrg({(BRUSH_CELL - sx % BRUSH_CELL) % BRUSH_CELL, (BRUSH_CELL - sy % BRUSH_CELL) % BRUSH_CELL});
    if (dc.HasPalette() && compal)
        dc.SelectPalette(*compal);
}

/// What fails in it travels on to the window, which shows it behind the paint event: no box may open within
/// one.
void TEdcDocument::Paint(TDC &dc, bool, const TRect &rect)
{
    __enter
        if (locked == 0 && !path) {
            PaintEmpty(dc, rect); __test;
        } else if (locked == 0 && obsolete == 0) {
            PaintBlocks(dc, rect); __test;
        }
    __point
    __treat
}

void TEdcDocument::PaintBlocks(TDC &dc, const TRect &rect)
{
    __enter
        PrepareDC(dc);
        TDCState fresh = dc.State();
        TRect wanted = ToDocument(rect);
        for (TEdcBlock *blk = openedBlk ? openedBlk : blocks; blk; blk = openedBlk ? NULL : blk->next) {
            TRect part = blk->rect.Rect() & wanted;
            if (part.IsEmpty())
                continue;
            dc.SetState(fresh);
            dc.SetViewportOrg(ToWindow(TPoint{blk->rect.x, blk->rect.y}));
            blk->Paint(dc, part.Offset(-blk->rect.x, -blk->rect.y)); __test;
        }
        dc.SetState(fresh);
        if (!openedBlk && selectedBlk)
            DrawSelection(dc);
        ASSERT(obsolete <= EDC_PAINT);
        obsolete = 0;
    __point
    __treat
}

void TEdcDocument::DrawSelection(TDC &dc)
{
    dc.SetPen({.color = WIN_WHITE, .style = WIN_PEN_DOT});
    dc.SetBrush(NoBrush());
    dc.SetOpaque(false);
    dc.SetMix(WIN_MIX_XOR);
    dc.Rectangle(ToWindow(selectedBlk->rect.Rect()).Inflated(SELECTION_GAP, SELECTION_GAP));
}

/// Draws the frame straight onto the window, or takes it away. Where that fails, painting does it.
void TEdcDocument::ToggleSelection()
{
    __enter
        TClientDC dc(*this);
        DrawSelection(dc);
    __point
        Invalidate(true);
    __treat
}

bool TEdcDocument::IsUsable(const TEdcBlock *blk) const
{
    return blk && (blk->options & EDC_BoSELECT) && (blk->state & EDC_BsLINKED);
}

bool TEdcDocument::SelectBlock(TEdcBlock *blk)
{
    if (selectedBlk && !openedBlk)
        ToggleSelection();
    selectedBlk = NULL;
    if (IsUsable(blk)) {
        selectedBlk = blk;
        if (!openedBlk && obsolete < EDC_LAYOUT)
            ToggleSelection();
    }
    return selectedBlk != NULL;
}

void TEdcDocument::ActivateBlock(TEdcBlock *blk)
{
    const unsigned executed = EDC_BoSELECT | EDC_BoEXECUTE;
    if (!blk)
        blk = selectedBlk;
    if (blk && (blk->options & executed) == executed)
        ExecuteBlock(blk);
    else
        OpenBlock(blk);
}

void TEdcDocument::ExecuteBlock(TEdcBlock *blk)
{
    if (!blk)
        blk = selectedBlk;
    __enter
        CloseBlock(); __test;
        if (IsUsable(blk)) {
            blk->state |= EDC_BsBUSY;
            blk->Execute(); __test;
            blk->state &= ~EDC_BsBUSY;
        }
    __point
        if (blk)
            blk->state &= ~EDC_BsBUSY;
    __treat
}

void TEdcDocument::OpenBlock(TEdcBlock *blk)
{
    if (!blk)
        blk = selectedBlk;
    __enter
        CloseBlock(); __test;
        if (IsUsable(blk)) {
            savedScroll = StandsAt();
            SetScroll({});
            openedBlk = blk;
            blk->state |= EDC_BsBUSY;
            blk->Open(); __test;
            openedDC = new TClientDC(*this);
            PrepareDC(*openedDC);
            Obsolete(EDC_LAYOUT);
        }
    __point
        CloseBlock();
    __treat
}

/// Carried through whatever the block's own Close does, for the block may be about to die.
void TEdcDocument::CloseBlock()
{
    TEdcBlock *blk = openedBlk;
    if (!blk)
        return;
    __enter
        blk->Close(); __test;
    __point
    __treat
    blk->state &= ~EDC_BsBUSY;
    openedBlk = NULL;
    SetScroll(savedScroll);
    delete openedDC;
    openedDC = NULL;
    Obsolete(EDC_LAYOUT);
}

void TEdcDocument::EvCommand(int id)
{
    if (locked != 0)
        return;
    __enter
        if (id == COMMAND_EXIT) {
            if (auto *frame = dynamic_cast<TDecoratedFrame *>(Parent()))
                frame->CloseWindow();
        } else {
            TEdcBlock *blk = openedBlk ? openedBlk : selectedBlk;
            bool known = blk && blk->DoCommand(id); __test;
            if (!known) {
                DoCommand(id); __test;
            }
            Refresh(0); __test;
        }
    __point
        __repair;
        __report;
    __treat
}

void TEdcDocument::EvCommandEnable(TCommandEnabler &ce)
{
    if (locked != 0)
        return;
    __enter
        if (ce.id == COMMAND_EXIT)
            ce.Enable(true);
        TEdcBlock *blk = openedBlk ? openedBlk : selectedBlk;
        if (!ce.IsAnswered() && blk) {
            blk->EnableCommand(ce); __test;
        }
        if (!ce.IsAnswered()) {
            EnableCommand(ce); __test;
        }
        if (!ce.IsAnswered())
            ce.Enable(false);
    __point
        __repair;
        __report;
    __treat
}
