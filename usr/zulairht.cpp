// The warm-air units of the hall on the floor plan.
#include "usr/zulairht.h"
#include "lib/charstr.h"
#include "lib/xassert.h"
#include "usr/edcapp.h"
#include "usr/edcbase2.h"
#include "usr/edcutils.h"
#include "usr/zulvalue.h"
#include "win/boxes.h"
#include "win/dc.h"

#include <algorithm>
#include <cmath>

#include "lib/xon.h"

namespace
{
/// Every second pixel, in rows that alternate.
const uint8_t checkered[8] = {0xAA, 0x55, 0xAA, 0x55, 0xAA, 0x55, 0xAA, 0x55};

/// Sizes of warm-air units on a device, px: `least` at least, or a part of the whole.
int Part(int whole, int part, int least)
{
    return std::max(whole / part, least);
}
} // namespace

/// A unit without a type has no data of its own.
void TZulAirHeaterData::Exchange(int mode, EmAIRHEATER &unit)
{
    bool hasType = !StrIsBlank(unit.type);
    if (mode == EDC_XSTORE) {
        if (typeName.id == EDC_VNUL)
            unit.type[0] = EOS;
        else if (typeName.id != EDC_VUDF)
            StrCopy(unit.type, typeName.text, sizeof unit.type);
    } else {
        TEdcShortStr own;
        own.Set(hasType ? EDC_VVAL : EDC_VNUL, hasType ? unit.type : "");
        typeName.Exchange(mode, own, true);
    }
    struct FIELD {
        TEdcFloat &field;
        double &number;
    };
    for (FIELD f : {FIELD{output, unit.power}, FIELD{tempRise, unit.tempRise}, FIELD{airFlow, unit.airFlow},
                    FIELD{length, unit.size.x}, FIELD{width, unit.size.y}, FIELD{height, unit.size.z}}) {
        ZulExchange(mode, f.field, f.number);
        if (mode != EDC_XSTORE && !hasType)
            f.field.id = EDC_VUDF;
    }
}

TZulAirHeaterLayer::TZulAirHeaterLayer(EmAIRHEATERSET *aAirhtSet, TEdcAxes *anAxes)
    : TZulObjectLayer(ZUL_AIRHEATERS, aAirhtSet, anAxes)
{
    ASSERT(aAirhtSet != NULL);
}

void TZulAirHeaterLayer::Layout(TDC &dc)
{
    NumberSprites();
    MakeRoundMarker(dc, set->Count());
    TZulMarkedLayer::Layout(dc);
}

bool TZulAirHeaterLayer::Ask(TZulAirHeaterData &data, int)
{
    bool confirmed = false;
    __enter
        TZulAirHeaterDialog dialog(data);
        confirmed = dialog.Execute() == WIN_ID_OK; __test;
    __point
        confirmed = false;
    __treat
    return confirmed;
}

TZulAirHeaterSprite::TZulAirHeaterSprite(EmAIRHEATER *object) : TEdcDrawSprite(ZUL_AIRHEATER), airhtObj(object)
{
    ASSERT(object != NULL);
}

/// The new unit is the set's; a sprite that fails takes it back.
TZulAirHeaterSprite::TZulAirHeaterSprite(const TEdcDrawCreation &creation)
    : TEdcDrawSprite(ZUL_AIRHEATER), airhtObj(NULL)
{
    __enter
        auto *params = static_cast<TZulAirHeaterData *>(creation.stock);
        ASSERT(params != NULL);
        airhtObj = new EmAIRHEATER;
        params->Exchange(EDC_XSTORE, *airhtObj);
        airhtObj->Insert(params->target);
        AppDocument()->SetModified(); __test;
    __point
        delete airhtObj;
        airhtObj = NULL;
    __treat
}

TZulAirHeaterSprite::TZulAirHeaterSprite(const TZulAirHeaterSprite &airht)
    : TEdcDrawSprite(airht), airhtObj(NULL)
{
    __enter
        ASSERT(airht.airhtObj != NULL);
        airhtObj = new EmAIRHEATER(*airht.airhtObj);
        airhtObj->InsertAfter(airht.airhtObj);
        AppDocument()->SetModified(); __test;
    __point
        delete airhtObj;
        airhtObj = NULL;
    __treat
}

void TZulAirHeaterSprite::Discard()
{
    ASSERT(airhtObj != NULL);
    delete airhtObj;
    airhtObj = NULL;
    AppDocument()->SetModified();
}

TZulAirHeaterLayer *TZulAirHeaterSprite::AirHeaterLayer() const
{
    auto *ly = static_cast<TZulAirHeaterLayer *>(layer);
    ASSERT(ly != NULL && airhtObj != NULL);
    return ly;
}

/// The footprint as a frame turned by `refAngle` sees it; a unit itself does not turn.
void TZulAirHeaterSprite::Describe(TEdcDrawDesc &d, double refAngle)
{
    ASSERT(airhtObj != NULL);
    AgPOINT place(airhtObj->pos.x, airhtObj->pos.y, 0);
    if (StrIsBlank(airhtObj->type)) {
        d.position = place;
        d.size = AgVECTOR();
    } else {
        double w = airhtObj->size.x / 2;
        double h = airhtObj->size.y / 2;
        const AgPOINT corners[] = {place + AgVECTOR(-w, -h), place + AgVECTOR(w, -h), place + AgVECTOR(w, h),
                                   place + AgVECTOR(-w, h)};
        EdcDescribe(d, corners, 4, place, refAngle);
    }
    d.refAngle = refAngle;
    d.angle = 0;
}

/// What the unit covers when it stands at `pos`, px; never smaller than its marker needs.
TRect TZulAirHeaterSprite::BoxAt(const AgPOINT &pos) const
{
    const TZulAirHeaterLayer *ly = AirHeaterLayer();
    double w = airhtObj->size.x / 2;
    double h = airhtObj->size.y / 2;
    TPoint a = Axes().ToDevice(AgPOINT(pos.x - w, pos.y - h, 0));
    TPoint b = Axes().ToDevice(AgPOINT(pos.x + w, pos.y + h, 0));
    TRect covered = {std::min(a.x, b.x), std::min(a.y, b.y), std::max(a.x, b.x) + 1, std::max(a.y, b.y) + 1};
    int lackX = std::max(0, ly->minThick + ly->markerX - covered.Width() / 2);
    int lackY = std::max(0, ly->minThickY + ly->markerY - covered.Height() / 2);
    return covered.Inflated(lackX, lackY);
}

void TZulAirHeaterSprite::Layout(TDC &dc)
{
    __enter
        TEdcDrawSprite::Layout(dc); __test;
        const TZulAirHeaterLayer *ly = AirHeaterLayer();
        hasType = !StrIsBlank(airhtObj->type);
        centre = Axes().ToDevice(AgPOINT(airhtObj->pos.x, airhtObj->pos.y, 0));
        box = BoxAt(airhtObj->pos);
        thickX = Part(box.Width(), 4, 2);
        thickY = Part(box.Height(), 4, 2);
        barY = Part(box.Height(), 10, ly->minThickY);
        barX = static_cast<int32_t>(int64_t{barY} * thickX / thickY);
        box.bottom -= barY;
        lowerBar = {box.left + thickX / 2, box.bottom - barY, box.right - thickX / 2, box.bottom + barY};
    __point
    __treat
}

void TZulAirHeaterSprite::Paint(TDC &dc)
{
    const TZulAirHeaterLayer *ly = AirHeaterLayer();
    TColor line = ly->LineColor(state);
    TColor fill = ly->FillColor(state);
    dc.SetMix(WIN_MIX_COPY);
    if (hasType) {
        dc.SetPen({.color = line});
        dc.SetBrush(SolidBrush(line));
        ZulRoundRect(dc, lowerBar, barX, barY);
        TBrush pattern = {.style = WIN_BRUSH_PATTERN, .color = line, .back = fill};
        std::copy(std::begin(checkered), std::end(checkered), pattern.pattern);
        dc.SetBrush(pattern);
        ZulRoundRect(dc, box, thickX, thickY);
    }
    ZulPaintMarker(dc, centre, ly->markerX, ly->markerY, line, fill);
    label.Paint(dc, ly->Font(), centre, line);
}

bool TZulAirHeaterSprite::HitTest(TPoint point)
{
    const TZulAirHeaterLayer *ly = AirHeaterLayer();
    return TEdcDrawSprite::HitTest(point) || ZulInEllipse(point, centre, ly->markerX, ly->markerY) ||
           (hasType && (box.Contains(point) || lowerBar.Contains(point)));
}

TEdcDrawSprite *TZulAirHeaterSprite::Apply(TEdcDrawDrag &drag)
{
    TZulAirHeaterSprite *dragObj = this;
    __enter
        ASSERT(airhtObj != NULL);
        if (drag.mode & EDC_DRAWDRAGCOPY) {
            dragObj = new TZulAirHeaterSprite(*this); __test;
            EdcSelectCopy(*this, *dragObj); __test;
        }
        ASSERT(dragObj != NULL);
        if (drag.mode & EDC_DRAWDRAGMOVE) {
            ASSERT(drag.shift.z == 0);
            dragObj->airhtObj->pos = dragObj->airhtObj->pos + drag.shift;
        }
        AppDocument()->SetModified(); __test;
    __point
        if (dragObj != this && !dragObj->layer) {
            delete dragObj->airhtObj;
            delete dragObj;
        }
        dragObj = this;
    __treat
    return dragObj;
}

void TZulAirHeaterSprite::DragUpdate(TEdcDrawDrag &drag)
{
    ASSERT(airhtObj != NULL);
    ghostValid = (drag.mode & EDC_DRAWDRAGMOVE) != 0;
    if (!ghostValid)
        return;
    AgPOINT place = airhtObj->pos + drag.shift;
    ghostBox = BoxAt(place);
    ghostCentre = Axes().ToDevice(AgPOINT(place.x, place.y, 0));
}

void TZulAirHeaterSprite::DragPaint(TDC &dc)
{
    if (!ghostValid)
        return;
    const TZulAirHeaterLayer *ly = AirHeaterLayer();
    TDCState former = dc.State();
    EdcSetGhostPen(dc, WIN_PEN_SOLID);
    if (hasType) {
        dc.SetPen(NoPen());
        dc.SetBrush(SolidBrush(WIN_WHITE));
        dc.SetMix(WIN_MIX_NOTMASK);
        dc.Rectangle(ghostBox);
    } else {
        dc.Ellipse({ghostCentre.x - ly->markerX, ghostCentre.y - ly->markerY, ghostCentre.x + ly->markerX,
                    ghostCentre.y + ly->markerY});
    }
    dc.SetState(former);
}
