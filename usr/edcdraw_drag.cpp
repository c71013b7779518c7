// The drag of draw sprites, from the first move to the drop. The focus goes first and decides for the others
// what the drag is; what all sprites of one drag share is kept here, for there is one drag at a time.
#include "usr/edcdraw.h"

#include "lib/xassert.h"
#include "usr/edcapp.h"
#include "win/dc.h"

#include <cmath>

#include "lib/xon.h"

namespace
{
enum : unsigned { BUTTON_LEFT = 1, BUTTON_RIGHT = 2 }; // bits of a drag's mode, beside those of the keys

/// Defined from the focus' first step to the end of the gesture.
struct SHARED {
    uint32_t mode = 0;     // EDC_DRAWDRAG..., 0: nothing to drag
    TEdcDrawHandle handle; // a copy of the grabbed one: handles are made anew at each layout
    TPoint pivotDev;       // px, what a rotation turns about
    double startAngle = 0; // rad, where the pointer was seen from there
    TEdcDrawDrag step;     // the focus' last one
};
SHARED g;
} // namespace

bool TEdcDrawSprite::dragging = false;
bool TEdcDrawSprite::dragCopy = false;

const TEdcDrawDrag *TEdcDrawSprite::RunningDrag()
{
    return dragging ? &g.step : NULL;
}

/// What the focus finds at the start of the gesture.
void TEdcDrawSprite::ChooseDrag(unsigned mode, TPoint start, TPoint shift)
{
    g = SHARED();
    if (mode & BUTTON_LEFT) {
        g.mode = EDC_DRAWDRAGMOVE;
        if (const TEdcDrawHandle *handle = HandleAt(start)) {
            g.handle = *handle;
            g.mode |= EDC_DRAWDRAGHANDLE;
        }
    }
    if (mode & BUTTON_RIGHT) {
        g.mode = EDC_DRAWDRAGROTATE;
        g.pivotDev = Axes().ToDevice(desc.centre);
        TPoint seen = start + shift - g.pivotDev;
        g.startAngle = Axes().Angle(seen.x, seen.y);
    }
}

/// The step in metres. @return whether there is anything to do for this sprite
bool TEdcDrawSprite::MakeDrag(TEdcDrawDrag &drag, unsigned mode, TPoint start, TPoint shift, bool first)
{
    bool isFocus = (state & EDC_SsFOCUS) != 0;
    if (isFocus && first)
        ChooseDrag(mode, start, shift);
    if ((g.mode & EDC_DRAWDRAGHANDLE) && !isFocus)
        return false;
    drag.tool = toolId;
    drag.mode = g.mode;
    if (g.mode & EDC_DRAWDRAGMOVE)
        MakeMove(drag, mode, shift);
    if (g.mode & EDC_DRAWDRAGROTATE)
        MakeTurn(drag, mode, start + shift);
    if (isFocus)
        g.step = drag;
    return g.mode != 0;
}

void TEdcDrawSprite::MakeMove(TEdcDrawDrag &drag, unsigned mode, TPoint shift) const
{
    bool byHandle = (g.mode & EDC_DRAWDRAGHANDLE) != 0;
    drag.handle = byHandle ? &g.handle : NULL;
    if (!byHandle && (mode & WIN_KEY_CTRL))
        drag.mode |= EDC_DRAWDRAGCOPY;
    AgVECTOR move(Axes().ToModelX(shift.x), Axes().ToModelY(shift.y));
    if ((mode & WIN_KEY_SHIFT) && std::fabs(move.x) <= std::fabs(move.y))
        move.x = 0;
    else if (mode & WIN_KEY_SHIFT)
        move.y = 0;
    if (!byHandle)
        move += NearestSnap({desc.topLeft, desc.topRight, desc.bottomLeft, desc.bottomRight}, move);
    else if (g.handle.flags & TEdcDrawHandle::SNAPS)
        move += NearestSnap({g.handle.point}, move);
    drag.shift = move;
}

/// What brings that of the moved points onto the grid which lies nearest to it; the earlier one on a tie.
AgVECTOR TEdcDrawSprite::NearestSnap(std::initializer_list<AgPOINT> points, const AgVECTOR &move) const
{
    AgVECTOR nearest;
    bool found = false;
    for (const AgPOINT &point : points) {
        AgPOINT moved = point + move;
        AgVECTOR rest = Axes().Snap(moved) - moved;
        if (!found || rest.Length() < nearest.Length())
            nearest = rest;
        found = true;
    }
    return nearest;
}

/// Each sprite of a selection turns about its own centre, by what the pointer has turned about the focus'.
void TEdcDrawSprite::MakeTurn(TEdcDrawDrag &drag, unsigned mode, TPoint pointer) const
{
    if (mode & WIN_KEY_CTRL)
        drag.mode |= EDC_DRAWDRAGABSOLUTE;
    drag.pivot = desc.centre;
    TPoint seen = pointer - g.pivotDev;
    double angle = Axes().Angle(seen.x, seen.y);
    if (!(drag.mode & EDC_DRAWDRAGABSOLUTE))
        angle -= g.startAngle;
    if (mode & WIN_KEY_SHIFT)
        angle = std::round(angle * 2 / AgPI) * AgPI / 2;
    drag.angle = Axes().SnapAngle(angle);
}

/// The copy of the focus counts for the cursor, and that of any other sprite.
void TEdcDrawSprite::ShowGhost(TDC &dc, TEdcDrawDrag &drag)
{
    __enter
        bool copies = (drag.mode & EDC_DRAWDRAGCOPY) != 0;
        dragCopy = copies || (dragCopy && !(state & EDC_SsFOCUS));
        DragUpdate(drag); __test;
        DragPaint(dc); __test;
    __point
    __treat
}

void TEdcDrawSprite::DragBegin(TDC &dc, unsigned mode, TPoint start, TPoint shift)
{
    __enter
        TEdcDrawDrag drag;
        hidden = false;
        dragOk = MakeDrag(drag, mode, start, shift, true); __test;
        if (dragOk) {
            dragging = true;
            ShowGhost(dc, drag); __test;
        }
    __point
        dragOk = false;
    __treat
}

void TEdcDrawSprite::DragMove(TDC &dc, unsigned mode, TPoint start, TPoint shift)
{
    __enter
        TEdcDrawDrag drag;
        if (dragOk) {
            DragPaint(dc); __test;
            MakeDrag(drag, mode, start, shift, false); __test;
            ShowGhost(dc, drag); __test;
        }
    __point
        dragOk = false;
    __treat
}

void TEdcDrawSprite::DragHide(TDC &dc, bool on)
{
    if (dragOk)
        DragPaint(dc);
    hidden = on;
}

/// A drop while the pointer is outside changes nothing.
void TEdcDrawSprite::DragEnd(TDC &dc, unsigned mode, TPoint start, TPoint shift)
{
    __enter
        TEdcDrawDrag drag;
        if (dragOk && !hidden) {
            DragPaint(dc); __test;
            MakeDrag(drag, mode, start, shift, false); __test;
            TEdcDrawSprite *draw = Apply(drag); __test;
            ASSERT(draw != NULL);
            draw->Commit(dc); __test;
        }
    __point
    __treat
    dragOk = false;
    ForgetDrag();
}
