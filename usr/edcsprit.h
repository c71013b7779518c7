// What an opened block does with the mouse, and the things on it that can be seen, picked and dragged. A sprite
// is one such thing; a layer owns sprites of one kind and keeps three lists over them through links within the
// sprites, so that a sprite costs no allocation beyond itself: the order of creation, of painting, of
// selecting. A manager belongs to a block and says which of its layers and tools are active. A tool turns mouse
// events into work on a layer. Nothing here knows of metres or of what a sprite stands for.
// What is drawn at once needs a device context; without one the work is left to the document's next refresh.
#ifndef USR_EDCSPRIT_H
#define USR_EDCSPRIT_H

#include "win/geometry.h"
#include <cstddef>
#include <cstdint>

class TCommandEnabler;
class TDC;
class TEdcBlock;
class TEdcSpriteLayer;

/// With the bits of the mouse-key word: no button went up by hand, the gesture is taken back from outside.
enum { EDC_KEY_TAKEBACK = 0x100 };

/// Receives the raw mouse events of the opened block. `keys` is the mouse-key word (4 Shift, 8 Ctrl), `point`
/// in device pixels from the block's own origin, `dc` set up for the block.
class TEdcMouseTool
{
public:
    virtual void LeftDown(TDC &, unsigned, TPoint) {}
    virtual void LeftUp(TDC &, unsigned, TPoint) {}
    virtual void LeftDouble(TDC &, unsigned, TPoint) {}
    virtual void RightDown(TDC &, unsigned, TPoint) {}
    virtual void RightUp(TDC &, unsigned, TPoint) {}
    virtual void MouseMove(TDC &, unsigned, TPoint) {}
    /// The pointer has left the view (true) or come back; called only on a change, before the move itself.
    virtual void Outside(TDC &, bool) {}
    virtual void Activate(bool) {}

protected:
    ~TEdcMouseTool() = default; // tools are members of blocks, never deleted through this
};

enum : uint16_t {
    EDC_SsACTIVE = 1,   // the layer is the active one
    EDC_SsSELECTED = 2, // in the layer's selection
    EDC_SsFOCUS = 4     // the selected one that carries the handles
};

/// Coordinates are device pixels of the block. Whoever makes one adds it to a layer, which then owns it.
class TEdcSprite
{
public:
    TEdcSprite() = default;
    TEdcSprite(const TEdcSprite &) {} // a copy starts without a layer
    TEdcSprite &operator=(const TEdcSprite &) = delete;
    virtual ~TEdcSprite(); // leaves its layer

    virtual void Discard() {}               // deletes the object of the model that it stands for
    virtual void SetTool(int /*toolId*/) {} // which tool is active now
    virtual void Layout(TDC &) {}           // recomputes what depends on the device
    virtual void Reload(void * /*arg*/) {}  // reads the object of the model again
    virtual bool InRect(const TRect &) { return false; }
    virtual bool HitTest(TPoint) { return false; }
    /// A drag. `mode`: 1 left or 2 right button, 4 Shift, 8 Ctrl; `shift` is counted from `start`.
    virtual void DragBegin(TDC &, unsigned /*mode*/, TPoint /*start*/, TPoint /*shift*/) {}
    virtual void DragMove(TDC &, unsigned /*mode*/, TPoint /*start*/, TPoint /*shift*/) {}
    virtual void DragEnd(TDC &, unsigned /*mode*/, TPoint /*start*/, TPoint /*shift*/) {}
    virtual void DragHide(TDC &, bool /*hidden*/) {} // the pointer left the view, or came back
    virtual void SetState(uint16_t mask, bool on);
    virtual void Decorate(TDC &) {} // inverts the handles: twice is nothing
    virtual void Paint(TDC &) {}
    /// For paper: as if it were neither active nor selected.
    virtual void PaintPlain(TDC &dc);

    uint16_t state = 0;
    TEdcSpriteLayer *layer = NULL; // view; who owns it
    TEdcSprite *lnkPrev = NULL;    // views: order of creation
    TEdcSprite *lnkNext = NULL;
    TEdcSprite *pntPrev = NULL; // order of painting, the last one on top
    TEdcSprite *pntNext = NULL;
    TEdcSprite *selPrev = NULL; // order of selecting
    TEdcSprite *selNext = NULL;
};

enum : uint16_t { EDC_LsACTIVE = 1 };
enum : uint16_t {
    EDC_LoACTIVABLE = 0x001, // may become the active layer
    EDC_LoVISIBLE = 0x002,   // painted while it is not the active one
    EDC_LoPRINTED = 0x004,   // painted on paper
    EDC_LoNOOPEN = 0x100     // its sprites have no parameters to edit
};
enum { EDC_CmDELETE = 21001, EDC_CmSELECTALL = 21003, EDC_CmSELECTNONE = 21005, EDC_CmINVERT = 21007 };

class TEdcSpriteLayer
{
public:
    TEdcSpriteLayer(int aId, uint16_t anOptions);
    TEdcSpriteLayer(const TEdcSpriteLayer &) = delete;
    TEdcSpriteLayer &operator=(const TEdcSpriteLayer &) = delete;
    virtual ~TEdcSpriteLayer(); // with its sprites

    virtual void Reset(); // forgets the interaction
    virtual void SetTool(int toolId);
    virtual void Layout(TDC &dc);
    virtual void Reload(void *arg);
    virtual void OpenAt(unsigned /*keys*/, TPoint) {} // a double click
    virtual void MenuAt(unsigned /*keys*/, TPoint) {} // a right click
    virtual bool Command(int id);                     // @return whether it is one of this layer's
    virtual void CommandEnable(TCommandEnabler &ce);
    virtual void Paint(TDC &dc, const TRect &rect);
    virtual void PaintPlain(TDC &dc, const TRect &rect);

    void Add(TEdcSprite *spr);                  // on top; owns it from now on
    void Remove(TEdcSprite *spr);               // the caller owns it again
    void Delete(TEdcSprite *spr, bool discard); // `discard`: with its object of the model
    void DeleteAll(bool discard);
    void DeleteSelected(bool discard);
    void SetActive(bool on);
    bool IsActive() const { return (state & EDC_LsACTIVE) != 0; }
    void SetOptions(uint16_t o); // raises layout where activable changes, else paint
    uint16_t Options() const { return options; }
    int Id() const { return id; }

    // Selection and focus. Drawn at once where `dc` is given.
    void Select(TEdcSprite *spr, bool on, TDC *dc);
    void SelectAll(bool on, TDC *dc);
    void InvertSelection(TDC *dc);
    void SetFocus(TEdcSprite *spr, TDC *dc); // a selected one, or NULL
    TEdcSprite *Focus() const { return focus; }
    bool IsSelected(const TEdcSprite *spr) const;

    // Repainting. What is repainted alone comes to the top. The locks nest; the outermost one works.
    void RepaintSprite(TEdcSprite *spr, TDC *dc);
    void RepaintSelection(TDC *dc); // the focus last
    void LockRepaint() { ++repaintLock; }
    void UnlockRepaint(TDC *dc, bool toTop);
    void LockDecorate(TDC *dc);   // the handles go ...
    void UnlockDecorate(TDC *dc); // ... and come back on top

    // The lists; the counts are checked against them.
    int CountLnk() const;
    int CountSel() const;
    TEdcSprite *LnkFirst() const { return lnkFirst; }
    TEdcSprite *LnkLast() const { return lnkLast; }
    TEdcSprite *LnkNext(const TEdcSprite *spr) const;
    TEdcSprite *LnkPrev(const TEdcSprite *spr) const;
    TEdcSprite *SelFirst() const { return selFirst; }
    TEdcSprite *SelLast() const { return selLast; }
    TEdcSprite *SelNext(const TEdcSprite *spr) const;
    TEdcSprite *SelPrev(const TEdcSprite *spr) const;
    TEdcSprite *PntFirst() const { return pntFirst; }
    TEdcSprite *PntLast() const { return pntLast; }
    int ToolId() const { return toolId; }

protected:
    uint16_t state = 0;
    uint16_t toolId = 0;                          // of the tool that is active on this layer, 0 for none
    TEdcSprite *lnkFirst = NULL, *lnkLast = NULL; // owned
    TEdcSprite *pntFirst = NULL, *pntLast = NULL; // views
    TEdcSprite *selFirst = NULL, *selLast = NULL; // views
    TEdcSprite *focus = NULL;                     // view; one of the selection
    int32_t countLnk = 0, countSel = 0;
    int32_t repaintLock = 0, decorateLock = 0; // depth

private:
    friend class TEdcSpriteManager;
    template <class CHOICE>
    void SelectEach(CHOICE choice, TDC *dc);
    void ToTop(TEdcSprite *spr);
    void DeleteFrom(TEdcSprite *const &first, bool discard);
    void PaintAll(TDC &dc);
    void DecorateFocus(TDC *dc);
    TEdcSpriteLayer *next = NULL; // view: the manager's next layer
    int id;
    uint16_t options;
};

enum { EDC_TOOL_USINGMAX = 50 };

/// A mouse tool that works on a layer.
class TEdcSpriteTool : public TEdcMouseTool
{
public:
    explicit TEdcSpriteTool(int aId);
    void SetLayer(TEdcSpriteLayer *ly) { layer = ly; }
    TEdcSpriteLayer *Layer() const { return layer; }
    int Id() const { return id; }

protected:
    TEdcSpriteLayer *layer = NULL; // view; what it works on now

private:
    friend class TEdcSpriteManager;
    int id;
    int32_t useCount = 0;
    TEdcSpriteLayer *layers[EDC_TOOL_USINGMAX] = {}; // views; where it may work
    TEdcSpriteTool *next = NULL;                     // view: the manager's next tool
};

/// Clicks, rubber band and drags. The other button takes a gesture back; so does leaving the view.
class TEdcSpriteSelector : public TEdcSpriteTool
{
public:
    using TEdcSpriteTool::TEdcSpriteTool;
    void LeftDown(TDC &dc, unsigned keys, TPoint point) override;
    void LeftUp(TDC &dc, unsigned keys, TPoint point) override;
    void LeftDouble(TDC &dc, unsigned keys, TPoint point) override;
    void RightDown(TDC &dc, unsigned keys, TPoint point) override;
    void RightUp(TDC &dc, unsigned keys, TPoint point) override;
    void MouseMove(TDC &dc, unsigned keys, TPoint point) override;
    void Outside(TDC &dc, bool on) override;
    void Activate(bool on) override;

    virtual void MenuAt(unsigned keys, TPoint point);
    virtual void OpenAt(unsigned keys, TPoint point);
    /// What a press with Shift does: the sprite joins the selection, or leaves it where `toggle` allows.
    virtual void PickToggle(TDC &dc, TPoint point, bool toggle);
    virtual void Pick(TDC &dc, TPoint point);
    virtual void Drag(TDC &dc, unsigned keys, TPoint point); // the focus first: it decides for the others
    virtual void Drop(TDC &dc, unsigned keys, TPoint point);
    virtual void RubberMove(TDC &dc, TPoint point);
    virtual void RubberEnd(TDC &dc); // only adds to the selection
    virtual void RubberDraw(TDC &dc);

protected:
    TPoint start;     // px, of the press
    TPoint last;      // px, last seen
    TPoint rubberEnd; // px, the band's other corner
    bool dragging = false;
    bool rubber = false;
    bool outside = false;
    int32_t leftState = 0;  // 0 idle, 1 pressed, 2 double click
    int32_t rightState = 0; // 0 idle, 1 pressed
    int32_t button = 0;     // 1 left, 2 right: what began the gesture

private:
    using DragStep = void (TEdcSprite::*)(TDC &dc, unsigned mode, TPoint start, TPoint shift);
    void DragEach(DragStep step, TDC &dc, unsigned keys, TPoint point);
    void Begin(TDC &dc, int32_t which, unsigned keys, TPoint point);
    void Leave(TDC &dc);
    void TakeBack(TDC &dc, unsigned keys, TPoint point);
    void Forget();
};

/// The layers and tools of one block; all of them are members of the block. Starts suspended.
class TEdcSpriteManager
{
public:
    explicit TEdcSpriteManager(TEdcBlock *aBlk);
    TEdcSpriteManager(const TEdcSpriteManager &) = delete;
    TEdcSpriteManager &operator=(const TEdcSpriteManager &) = delete;
    virtual ~TEdcSpriteManager() = default;

    virtual void Reload(void *arg);
    virtual void Layout(TDC &dc);
    virtual void Paint(TDC &dc, const TRect &rect); // a failure suspends and ends here
    virtual void PaintPlain(TDC &dc, const TRect &rect);
    virtual bool Command(int id); // @return whether somebody answered
    virtual void CommandEnable(TCommandEnabler &ce);

    // The first layer that is added is the first to be active; so with tools.
    void AddLayer(TEdcSpriteLayer *ly);
    void AddTool(TEdcSpriteTool *tl);
    void Permit(TEdcSpriteLayer *ly, TEdcSpriteTool *tl); // the tool may work on the layer
    bool IsPermitted(const TEdcSpriteLayer *ly, const TEdcSpriteTool *tl) const;
    bool SetLayer(TEdcSpriteLayer *ly); // NULL for none. @return whether it is the active one now
    bool SetTool(TEdcSpriteTool *tl);   // likewise
    TEdcSpriteLayer *Layer() const { return lyActive; }
    TEdcSpriteTool *Tool() const { return tlActive; }
    TEdcSpriteLayer *FindLayer(int id) const; // NULL where there is none
    TEdcSpriteTool *FindTool(int id) const;
    void Suspend(bool forget); // the block is closed; `forget`: what was active too
    void Resume(bool reset);   // the block is opened; `reset`: from the beginning
    bool IsSuspended() const { return suspended; }
    void Touch(); // the layer's handles are made anew at the next paint

protected:
    TEdcSpriteLayer *lyFirst = NULL; // views
    TEdcSpriteLayer *lyActive = NULL;
    TEdcSpriteTool *tlFirst = NULL;
    TEdcSpriteTool *tlActive = NULL;
    TEdcBlock *blk; // view
    bool touched = false;
    bool suspended = true;

private:
    TEdcSpriteTool *LastPermitted() const; // on the active layer; the one that was added first
    void TakeTool(TEdcSpriteTool *tl);
    void DropTool();
    void PaintLayers(TDC &dc, const TRect &rect);
};

#endif
