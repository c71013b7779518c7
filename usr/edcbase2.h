// The document: a scrolling window over a chain of blocks, flowed into pages. Everything that changes raises
// one level, `obsolete`; the end of each event works it off once.
#ifndef USR_EDCBASE2_H
#define USR_EDCBASE2_H

#include "usr/edcbase1.h"
#include "win/window.h"
#include <memory>

class TClientDC;

class TEdcDocument : public TWindow
{
public:
    enum { FRAME = 5 }; // px to the left of the document and above it

    explicit TEdcDocument(TWindow *parent = NULL);
    ~TEdcDocument() override;

    // What an application's document overrides.
    virtual void SetModified() { modified = true; }
    virtual void Reconstruct(bool partial, bool before);
    virtual bool DoCommand(int id);
    virtual void EnableCommand(TCommandEnabler &ce);
    virtual bool NewDocument(bool create);
    virtual bool ReadFile(const char *path);
    virtual void WriteFile(const char *path);
    virtual void ClearDocument() {}
    virtual const char *FileType() { return "XXX File"; }
    virtual void PaintEmpty(TDC &dc, const TRect &rect);

    bool IdleAction(long idleCount) override;
    bool CanClose() override;
    void EvCommand(int id) override;
    void EvCommandEnable(TCommandEnabler &ce) override;
    void Paint(TDC &dc, bool erase, const TRect &rect) override;
    void EvLButtonDown(unsigned keys, TPoint point) override;
    void EvLButtonUp(unsigned keys, TPoint point) override;
    void EvLButtonDblClk(unsigned keys, TPoint point) override;
    void EvRButtonDown(unsigned keys, TPoint point) override;
    void EvRButtonUp(unsigned keys, TPoint point) override;
    void EvMouseMove(unsigned keys, TPoint point) override;
    void EvMouseWheel(unsigned keys, TPoint point, double notchesX, double notchesY) override;
    void EvSize(TSizeKind kind, TSize size) override;
    void EvSetFocus() override;
    void EvKeyDown(TVirtualKey key, unsigned keys) override;
    void EvDropFile(const char *name) override;
    void EvCaptureLost() override;

    // Staleness.
    void Obsolete(int level); // the higher of the two stays
    bool IsObsolete(int level) const { return obsolete >= level; }
    void Refresh(int level);
    void Lock(bool on);

    // Paper, chain and view.
    void SetPaper(const TEdcSize &size);
    void SetMargins(const TEdcMargins &m);
    void LinkBlock(TEdcBlock *blk, TEdcBlock *anchor, bool after);
    void UnlinkBlock(TEdcBlock *blk);
    void RemoveBlock(TEdcBlock *blk);
    void RemoveAllBlocks();
    bool SelectBlock(TEdcBlock *blk); // is a block selected now?
    void ActivateBlock(TEdcBlock *blk);
    void ExecuteBlock(TEdcBlock *blk);
    void OpenBlock(TEdcBlock *blk);
    void CloseBlock();
    void AddPalette(TEdcPalette *pal);
    void ComposePalette();
    TPoint GetScroll() const; // document units at scale 1
    void SetScroll(TPoint point);
    const char *FileName() const;

    // Coordinates: window pixels and document pixels.
    TPoint ToDocument(TPoint p) const;
    TRect ToDocument(const TRect &r) const;
    TPoint ToWindow(TPoint p) const;
    TRect ToWindow(const TRect &r) const;
    TEdcBlock *HitTest(TPoint windowPoint) const;

    void LayoutBlocks(TDC &dc, TEdcZoom *zoom); // NULL: the screen's
    void PrepareDC(TDC &dc) const;              // mapping mode, brush origin, palette
    int PageCount() const;                      // as the print dialog offers it
    void PrintPage(TDC &dc, int pageNum);
    TEdcZoom &CurrentZoom() { return openedBlk ? blockZoom : docZoom; }

    char *path = NULL;             // owned. NULL: no document; "": a new one; else the file name
    TPrinter *printer = NULL;      // owned
    TEdcPalette *regpal = NULL;    // view: first registered palette
    TPalette *compal = NULL;       // owned: the composed palette
    TEdcBlock *blocks = NULL;      // owned: first block of the chain
    TEdcBlock *selectedBlk = NULL; // view
    TEdcBlock *openedBlk = NULL;   // view
    TClientDC *openedDC = NULL;    // owned: kept for the opened block
    double scale = 1.0;            // of the view
    int32_t leftDown = 0;          // 0 up, 1 down, 2 double click
    int32_t rightDown = 0;         // 0 or 1
    int32_t locked = 0;            // not 0 while printing
    bool autoScroll = false;       // the pointer is outside the client area
    int32_t scrollTick = 0;        // ms
    int32_t stepX = 0;             // px an auto-scroll step
    int32_t stepY = 0;
    bool scrollPending = false; // scrollTarget waits to be applied
    TPoint scrollTarget;        // document units at scale 1
    TPoint savedScroll;         // where the document stood before the block was opened
    TEdcZoom docZoom;
    TEdcZoom blockZoom;
    int32_t obsolete = 0;
    bool modified = false;
    TEdcSize paper;
    TEdcMargins margins;
    TEdcSize page; // inches; paper less margins; base of every linked block

private:
    TPoint lastPoint;        // window px, of the last mouse message
    double wheelRest = 0;    // notches with Ctrl that have not made a percent
    bool refreshing = false; // a level is being worked off

    // edcbase2_chain.cpp
    static TEdcBlock *GroupFirst(TEdcBlock *blk);
    static TEdcBlock *GroupLast(TEdcBlock *blk);
    bool IsInChain(const TEdcBlock *wanted) const;
    TEdcBlock *PlaceInChain(TEdcBlock *anchor, bool after) const;
    void UpdatePage();
    void PlaceScales();
    // edcbase2_flow.cpp
    void FlowBlocks(TDC &dc);
    void LayoutOpened(TDC &dc, TEdcZoom *zoom);
    void RebuildDocZoom(TDC &dc);
    void RebuildBlockZoom(TDC &dc, const TEdcSize &size);
    TEdcBlock *PageFirst(int pageNum) const;
    TSize ViewSpace() const; // client area less the frame on both sides
    // edcbase2_files.cpp
    void CommandNew();
    void CommandOpen();
    void CommandClose();
    void CommandSave();
    void CommandSaveAs();
    void CommandPrint();
    void CommandZoom();
    bool AskFileName(bool save, char *name, int max);
    void OpenNamed(const char *name);
    void ShutDocument();
    void TakePath(std::unique_ptr<char[]> &name);
    void UpdateCaption();
    void ShowNoDocument();
    // edcbase2_mouse.cpp
    enum ToolEvent {
        TOOL_LEFT_DOWN,
        TOOL_LEFT_UP,
        TOOL_LEFT_DOUBLE,
        TOOL_RIGHT_DOWN,
        TOOL_RIGHT_UP,
        TOOL_MOVE,
        TOOL_OUTSIDE,
        TOOL_INSIDE
    };
    using MouseWork = void (TEdcDocument::*)(unsigned keys, TPoint point);
    void MouseMessage(MouseWork work, unsigned keys, TPoint point);
    void LeftDown(unsigned keys, TPoint point);
    void LeftUp(unsigned keys, TPoint point);
    void LeftDouble(unsigned keys, TPoint point);
    void RightDown(unsigned keys, TPoint point);
    void RightUp(unsigned keys, TPoint point);
    void MouseMove(unsigned keys, TPoint point);
    void CallTool(ToolEvent event, unsigned keys, TPoint point);
    void PressTool(ToolEvent event, unsigned keys, TPoint point);
    void PrepareOpenedDC();
    void UpdateAutoScroll(TPoint point);
    void PressCapture();
    void ReleaseIfUp();
    void EndGesture();
    void HideGesture(bool on);
    void PaintPending();
    void RefreshUnderGesture();
    void ZoomAt(TPoint point, double notches);
    // edcbase2.cpp
    void Work();
    void DropUnusable();
    void UpdateBlocks(bool partial);
    void LayoutScreen();
    void SetScrollRange();
    void ApplyScroll();
    TPoint StandsAt() const; // document units at scale 1; what is still to be applied counts
    void PaintBlocks(TDC &dc, const TRect &rect);
    void DrawSelection(TDC &dc);
    void ToggleSelection();
    bool IsUsable(const TEdcBlock *blk) const; // linked and selectable
};

#endif
