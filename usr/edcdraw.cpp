// What layers on axes have beside the generic ones, and what each draw sprite is by itself: the description of
// its place, its handles, what follows a drop. How a drag goes stands in edcdraw_drag.cpp.
#include "usr/edcdraw.h"

#include "lib/xassert.h"
#include "usr/edcapp.h"
#include "usr/edcbase2.h"
#include "usr/edcutils.h"
#include "win/application.h"
#include "win/boxes.h"
#include "win/dc.h"
#include "win/frame.h"

#include <algorithm>
#include <cmath>

#include "lib/xon.h"

namespace
{
enum { TEXT_NO_PARAMETERS = 21605 };
enum { MENU_SPRITE = 21750, MENU_HANDLE = 21751 };
const double PICK_INCHES = 2.0 / 72;   // how far beside a line a click still hits it
const double HANDLE_INCHES = 5.0 / 72; // extent of a handle
} // namespace

AgPOINT EdcTurned(const AgPOINT &p, double angle)
{
    double c = std::cos(angle);
    double s = std::sin(angle);
    return AgPOINT(p.x * c - p.y * s, p.x * s + p.y * c, p.z);
}

void Complete(TEdcDrawDesc &desc)
{
    double w = desc.size.x;
    double h = desc.size.y;
    auto place = [&desc](double x, double y) {
        return desc.position + EdcTurned(AgPOINT(x, y), desc.refAngle);
    };
    desc.topLeft = place(0, h);
    desc.topRight = place(w, h);
    desc.bottomLeft = place(0, 0);
    desc.bottomRight = place(w, 0);
    desc.topMid = place(w / 2, h);
    desc.bottomMid = place(w / 2, 0);
    desc.leftMid = place(0, h / 2);
    desc.rightMid = place(w, h / 2);
    desc.centre = place(w / 2, h / 2);
}

void EdcDescribe(TEdcDrawDesc &desc, const AgPOINT *points, int n, const AgPOINT &centre, double refAngle)
{
    AgPOINT least;
    AgPOINT most;
    for (int i = 0; i < n; ++i) {
        AgPOINT p = centre + EdcTurned(points[i] - centre, -refAngle);
        least = i == 0 ? p : AgPOINT(std::min(least.x, p.x), std::min(least.y, p.y));
        most = i == 0 ? p : AgPOINT(std::max(most.x, p.x), std::max(most.y, p.y));
    }
    desc.position = centre + EdcTurned(least - centre, refAngle);
    desc.size = most - least;
    desc.refAngle = refAngle;
}

void EdcSelectCopy(TEdcDrawSprite &original, TEdcDrawSprite &copy)
{
    TEdcSpriteLayer *layer = original.layer;
    __enter
        layer->Add(&copy); __test;
        layer->Select(&original, false, NULL); __test;
        layer->Select(&copy, true, NULL); __test;
    __point
    __treat
}

void EdcSetGhostPen(TDC &dc, TPenStyle style, int width)
{
    dc.SetPen({WIN_WHITE, width, style});
    dc.SetBrush(NoBrush());
    dc.SetOpaque(false);
    dc.SetMix(WIN_MIX_XOR);
}

void EdcInvertGhost(TDC &dc, const TPoint *points, int n)
{
    TDCState former = dc.State();
    EdcSetGhostPen(dc, WIN_PEN_SOLID);
    dc.Polyline(points, n);
    dc.SetState(former);
}

TEdcDrawLayer::TEdcDrawLayer(int aId, uint16_t anOptions, TEdcAxes *aAxes)
    : TEdcSpriteLayer(aId, anOptions), axes(aAxes)
{
    ASSERT(aAxes != NULL);
}

void TEdcDrawLayer::Reset()
{
    __enter
        TEdcSpriteLayer::Reset(); __test;
        EdcForgetPlaces();
    __point
    __treat
}

void TEdcDrawLayer::Layout(TDC &dc)
{
    ASSERT(axes != NULL);
    pickTolerance = axes->ToModelX(EdcInchToPixel(PICK_INCHES, 1.0, dc.DpiX()));
    handleWidth = EdcInchToPixel(HANDLE_INCHES, 1.0, dc.DpiX());
    handleHeight = EdcInchToPixel(HANDLE_INCHES, 1.0, dc.DpiY());
    TEdcSpriteLayer::Layout(dc);
}

void TEdcDrawLayer::OpenAt(unsigned, TPoint point)
{
    if (Options() & EDC_LoNOOPEN)
        return;
    menuPoint = point;
    menuHandle = NULL;
    Open();
}

void TEdcDrawLayer::MenuAt(unsigned keys, TPoint point)
{
    menuPoint = point;
    menuHandle = NULL;
    if (focus && !(keys & WIN_KEY_SHIFT))
        menuHandle = DrawFocus()->HandleAt(point);
    ShowMenu();
}

/// The command comes behind the menu. By then the handles may have been made anew, so the one that was meant is
/// looked up again.
void TEdcDrawLayer::PlaceExactly()
{
    __enter
        TEdcDrawDrag drag;
        TEdcDrawHandle *handle = menuHandle ? DrawFocus()->HandleAt(menuPoint) : NULL;
        bool answered = Locate(drag, handle); __test;
        if (answered) {
            ApplyDrag(drag); __test;
        }
    __point
    __treat
}

bool TEdcDrawLayer::Command(int command)
{
    bool handled = command == EDC_CmOPEN || command == EDC_CmLOCATE || command == EDC_CmALIGN;
    __enter
        if (!handled) {
            handled = TEdcSpriteLayer::Command(command); __test;
        } else if (!IsActive()) {
            menuHandle = NULL;
        } else if (command == EDC_CmOPEN) {
            menuHandle = NULL;
            Open(); __test;
        } else if (command == EDC_CmLOCATE && focus) {
            PlaceExactly(); __test;
        } else if (command == EDC_CmALIGN && focus) {
            EdcPostCommand(EDC_TlALIGN);
        }
    __point
    __treat
    return handled;
}

void TEdcDrawLayer::CommandEnable(TCommandEnabler &ce)
{
    if (ce.id == EDC_CmOPEN)
        ce.Enable(IsActive() && CountSel() > 0 && !(Options() & EDC_LoNOOPEN));
    else if (ce.id == EDC_CmLOCATE || ce.id == EDC_CmALIGN)
        ce.Enable(IsActive() && focus);
    else
        TEdcSpriteLayer::CommandEnable(ce);
}

bool TEdcDrawLayer::CanCreate(const TEdcDrawCreation &creation)
{
    if (creation.stock)
        return true;
    TApplication *application = TApplication::Current();
    MessageBox(AppDocument(), GetResString(TEXT_NO_PARAMETERS), application ? application->Name().c_str() : "",
               WIN_BOX_OK, WIN_ICON_EXCLAMATION);
    return false;
}

TEdcDrawSprite *TEdcDrawLayer::CreateSprite(const TEdcDrawCreation &)
{
    return NULL;
}

void *TEdcDrawLayer::QueryCreation(int, bool)
{
    return NULL;
}

void TEdcDrawLayer::Open() {}

void TEdcDrawLayer::ShowMenu()
{
    const TEdcBlock *block = AppDocument()->openedBlk;
    if (!focus || !block)
        return;
    __enter
        TEdcPopupMenu menu(menuHandle ? MENU_HANDLE : MENU_SPRITE); __test;
        TPoint corner = {block->rect.x, block->rect.y};
        menu.Track(AppDocument()->ToWindow(corner + menuPoint), menuHandle ? 0 : EDC_CmOPEN); __test;
    __point
    __treat
}

TEdcDrawSprite *TEdcDrawLayer::DrawFocus() const
{
    return static_cast<TEdcDrawSprite *>(focus);
}

TColor TEdcDrawLayer::LineColor(uint16_t spriteState) const
{
    if (!(spriteState & EDC_SsACTIVE))
        return colorIdle;
    return spriteState & EDC_SsSELECTED ? colorSelected : colorActive;
}

TColor TEdcDrawLayer::FillColor(uint16_t spriteState) const
{
    bool selected = (spriteState & EDC_SsACTIVE) && (spriteState & EDC_SsSELECTED);
    return selected ? fillSelected : fillIdle;
}

void EdcPostCommand(int id)
{
    TApplication *application = TApplication::Current();
    if (application && application->MainWindow())
        application->MainWindow()->PostCommand(id);
}

TEdcDrawSprite::TEdcDrawSprite(int aType) : type(aType)
{
    ASSERT(aType != 0);
}

TEdcDrawSprite::TEdcDrawSprite(const TEdcDrawSprite &other) : TEdcSprite(other), type(other.type) {}

TEdcDrawLayer *TEdcDrawSprite::DrawLayer() const
{
    auto *ly = static_cast<TEdcDrawLayer *>(layer);
    ASSERT(ly != NULL);
    return ly;
}

TEdcAxes &TEdcDrawSprite::Axes() const
{
    auto *ly = static_cast<TEdcDrawLayer *>(layer);
    ASSERT_AS(ly != NULL && ly->Axes() != NULL, "ly != NULL && ly->axes != NULL");
    return *ly->Axes();
}

void TEdcDrawSprite::SetTool(int id)
{
    toolId = id;
}

void TEdcDrawSprite::Layout(TDC &)
{
    __enter
        Recompute(); __test;
        Describe(desc, 0); __test;
        Complete(desc);
    __point
    __treat
}

void TEdcDrawSprite::Describe(TEdcDrawDesc &, double) {}

bool TEdcDrawSprite::InRect(const TRect &rect)
{
    return rect.Contains(Axes().ToDevice(desc.bottomLeft)) && rect.Contains(Axes().ToDevice(desc.topRight));
}

bool TEdcDrawSprite::HitTest(TPoint point)
{
    return (state & EDC_SsFOCUS) && HandleAt(point);
}

TEdcDrawHandle *TEdcDrawSprite::HandleAt(TPoint point)
{
    for (int i = 0; i < handles.Count(); ++i) {
        TEdcDrawHandle &handle = handles[i];
        if (handle.Box().Contains(point))
            return &handle;
    }
    return NULL;
}

void TEdcDrawSprite::Decorate(TDC &dc)
{
    for (int i = 0; i < handles.Count(); ++i)
        if (handles[i].flags & TEdcDrawHandle::DRAWN)
            dc.InvertRect(handles[i].Box());
}

/// One handle a point, drawn and snapping, where the selector works; none with another tool.
void TEdcDrawSprite::MakeHandles(const AgPOINT *points, const TPoint *device, int n)
{
    __enter
        ASSERT(n > 0);
        handles.Clear();
        if (toolId == EDC_TlSELECT) {
            handles.Extend(n); __test;
            for (int i = 0; i < n; ++i)
                handles[i] = {TEdcDrawHandle::SNAPS | TEdcDrawHandle::DRAWN,
                              device[i].x,
                              device[i].y,
                              DrawLayer()->HandleWidth(),
                              DrawLayer()->HandleHeight(),
                              points[i],
                              i};
        }
    __point
        handles.Clear();
    __treat
}

TEdcDrawSprite *TEdcDrawSprite::Apply(TEdcDrawDrag &)
{
    return this;
}

/// A coming layout does all of this anyway.
void TEdcDrawSprite::Commit(TDC &dc)
{
    if (AppDocument()->IsObsolete(EDC_LAYOUT))
        return;
    __enter
        Layout(dc); __test;
        if (state & EDC_SsACTIVE) {
            SetTool(toolId); __test;
        }
        const TEdcAxes &axes = Axes();
        bool beyond = desc.leftMid.x < axes.xMin || desc.rightMid.x > axes.xMax ||
                      desc.bottomMid.y < axes.yMin || desc.topMid.y > axes.yMax;
        AppDocument()->Obsolete(beyond ? EDC_LAYOUT : EDC_PAINT);
    __point
    __treat
}

void TEdcDrawSprite::DragUpdate(TEdcDrawDrag &) {}

void TEdcDrawSprite::DragPaint(TDC &) {}
