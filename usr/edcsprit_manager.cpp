// The manager: which layer and which tool of a block are active, and the way of painting and commands to them.
// A block has a handful of layers and tools, so they are found by walking.
#include "usr/edcsprit.h"

#include "lib/xassert.h"
#include "usr/edcapp.h"
#include "usr/edcbase2.h"
#include "win/frame.h"

#include "lib/xon.h"

TEdcSpriteManager::TEdcSpriteManager(TEdcBlock *aBlk) : blk(aBlk)
{
    ASSERT(blk != NULL);
}

void TEdcSpriteManager::Reload(void *arg)
{
    __enter
        for (TEdcSpriteLayer *ly = lyFirst; ly; ly = ly->next) {
            ly->Reload(arg); __test;
        }
    __point
    __treat
}

void TEdcSpriteManager::Layout(TDC &dc)
{
    __enter
        if (lyActive && !(lyActive->options & EDC_LoACTIVABLE)) {
            SetLayer(NULL); __test;
        }
        for (TEdcSpriteLayer *ly = lyFirst; ly; ly = ly->next) {
            ly->Layout(dc); __test;
        }
        Touch();
    __point
    __treat
}

/// No box may open within a paint event, so that a failure ends here, with the manager out of use.
void TEdcSpriteManager::Paint(TDC &dc, const TRect &rect)
{
    bool failed = false;
    __enter
        PaintLayers(dc, rect); __test;
    __point
        failed = true;
        __repair;
    __treat
    if (!failed)
        return;
    __enter
        Suspend(false); __test;
    __point
        __repair;
    __treat
}

void TEdcSpriteManager::PaintLayers(TDC &dc, const TRect &rect)
{
    __enter
        for (TEdcSpriteLayer *ly = lyFirst; ly; ly = ly->next)
            if (ly != lyActive && (ly->options & EDC_LoVISIBLE)) {
                ly->Paint(dc, rect); __test;
            }
        if (lyActive && touched) {
            lyActive->SetTool(tlActive ? tlActive->id : 0); __test;
            touched = false;
        }
        if (lyActive) {
            lyActive->Paint(dc, rect); __test;
        }
    __point
    __treat
}

void TEdcSpriteManager::PaintPlain(TDC &dc, const TRect &rect)
{
    __enter
        for (TEdcSpriteLayer *ly = lyFirst; ly; ly = ly->next)
            if (ly->options & EDC_LoPRINTED) {
                ly->PaintPlain(dc, rect); __test;
            }
    __point
    __treat
}

bool TEdcSpriteManager::Command(int command)
{
    bool handled = false;
    if (suspended)
        return false;
    __enter
        if (lyActive) {
            handled = lyActive->Command(command); __test;
        }
        TEdcSpriteTool *tl = handled ? NULL : FindTool(command);
        TEdcSpriteLayer *ly = handled || tl ? NULL : FindLayer(command);
        if (tl) {
            handled = true;
            SetTool(tl); __test;
        } else if (ly) {
            handled = true;
            SetLayer(ly); __test;
        }
    __point
    __treat
    return handled;
}

void TEdcSpriteManager::CommandEnable(TCommandEnabler &ce)
{
    if (suspended)
        return;
    __enter
        if (lyActive) {
            lyActive->CommandEnable(ce); __test;
        }
        const TEdcSpriteTool *tl = ce.IsAnswered() ? NULL : FindTool(ce.id);
        if (tl) {
            ce.Enable(lyActive && IsPermitted(lyActive, tl));
            ce.SetCheck(tl == tlActive);
        }
        const TEdcSpriteLayer *ly = ce.IsAnswered() ? NULL : FindLayer(ce.id);
        if (ly) {
            ce.Enable(ly->options & EDC_LoACTIVABLE);
            ce.SetCheck(ly == lyActive);
        }
    __point
    __treat
}

void TEdcSpriteManager::AddLayer(TEdcSpriteLayer *ly)
{
    ASSERT(ly != NULL);
    ly->next = lyFirst;
    lyFirst = ly;
}

void TEdcSpriteManager::AddTool(TEdcSpriteTool *tl)
{
    ASSERT(tl != NULL);
    tl->next = tlFirst;
    tlFirst = tl;
}

void TEdcSpriteManager::Permit(TEdcSpriteLayer *ly, TEdcSpriteTool *tl)
{
    ASSERT(ly != NULL && tl != NULL);
    ASSERT(tl->useCount < EDC_TOOL_USINGMAX);
    tl->layers[tl->useCount++] = ly;
}

bool TEdcSpriteManager::IsPermitted(const TEdcSpriteLayer *ly, const TEdcSpriteTool *tl) const
{
    for (int i = 0; i < tl->useCount; ++i)
        if (tl->layers[i] == ly)
            return true;
    return false;
}

TEdcSpriteTool *TEdcSpriteManager::LastPermitted() const
{
    TEdcSpriteTool *found = NULL;
    for (TEdcSpriteTool *tl = tlFirst; tl && lyActive; tl = tl->next)
        if (IsPermitted(lyActive, tl))
            found = tl;
    return found;
}

/// Makes a tool the active one and hands it to the block. A block that does not get it has none, and neither
/// has the manager then.
void TEdcSpriteManager::TakeTool(TEdcSpriteTool *tl)
{
    __enter
        if (tl)
            tl->SetLayer(lyActive);
        blk->SetMouseTool(tl); __test;
        if (tlActive != tl)
            DropTool();
        ASSERT(tlActive == NULL || tlActive == tl);
        tlActive = tl;
    __point
        if (tl)
            tl->SetLayer(NULL);
        DropTool();
    __treat
}

void TEdcSpriteManager::DropTool()
{
    if (tlActive)
        tlActive->SetLayer(NULL);
    tlActive = NULL;
}

bool TEdcSpriteManager::SetLayer(TEdcSpriteLayer *ly)
{
    if (ly != lyActive && !suspended) {
        __enter
            if (lyActive) {
                TakeTool(NULL); __test;
                lyActive->SetActive(false);
                lyActive = NULL;
            }
            if (ly && (ly->options & EDC_LoACTIVABLE)) {
                ly->SetActive(true);
                lyActive = ly;
                ASSERT(tlActive == NULL);
                TakeTool(LastPermitted()); __test;
            }
        __point
        __treat
        Touch();
    }
    return ly == lyActive;
}

bool TEdcSpriteManager::SetTool(TEdcSpriteTool *tl)
{
    if (tl != tlActive && !suspended) {
        if (!tl || (lyActive && IsPermitted(lyActive, tl)))
            TakeTool(tl);
        Touch();
    }
    return tl == tlActive;
}

TEdcSpriteLayer *TEdcSpriteManager::FindLayer(int id) const
{
    TEdcSpriteLayer *ly = lyFirst;
    while (ly && ly->id != id)
        ly = ly->next;
    return ly;
}

TEdcSpriteTool *TEdcSpriteManager::FindTool(int id) const
{
    TEdcSpriteTool *tl = tlFirst;
    while (tl && tl->id != id)
        tl = tl->next;
    return tl;
}

/// Carried through whatever the tool does, for the block is being closed.
void TEdcSpriteManager::Suspend(bool forget)
{
    if (suspended)
        return;
    suspended = true;
    blk->SetMouseTool(NULL);
    if (lyActive)
        lyActive->SetActive(false);
    if (forget) {
        lyActive = NULL;
        DropTool();
    }
}

void TEdcSpriteManager::Resume(bool reset)
{
    __enter
        suspended = false;
        if (lyActive)
            lyActive->SetActive(true);
        Touch();
        TakeTool(tlActive); __test;
        if (reset) {
            TEdcSpriteLayer *primary = NULL;
            for (TEdcSpriteLayer *ly = lyFirst; ly; ly = ly->next) {
                ly->Reset(); __test;
                if (ly->options & EDC_LoACTIVABLE)
                    primary = ly;
            }
            SetLayer(primary); __test;
            SetTool(LastPermitted()); __test;
        }
    __point
    __treat
}

void TEdcSpriteManager::Touch()
{
    touched = true;
    if (HasAppDocument())
        AppDocument()->Obsolete(EDC_PAINT);
}
