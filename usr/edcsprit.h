// What an opened block does with the mouse.
#ifndef USR_EDCSPRIT_H
#define USR_EDCSPRIT_H

#include "win/geometry.h"

class TDC;

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

#endif
