// One emitter on the floor plan: its body, the hook at one end that shows which way it faces, a bright line
// along the side towards which it tilts, and the marker with its number. From above the plan looks along the
// beam: a positive tilt turns it to the left of the body's direction.
#include "lib/xassert.h"
#include "usr/edcapp.h"
#include "usr/edcbase2.h"
#include "usr/edcutils.h"
#include "usr/zulemitt.h"
#include "win/dc.h"

#include <algorithm>
#include <cmath>

#include "lib/xon.h"

namespace
{
/// A vector of the device, px.
struct VECTOR {
    double x;
    double y;

    double Length() const { return std::hypot(x, y); }
    VECTOR Scaled(double length) const
    {
        double present = Length();
        return present > 0 ? VECTOR{x * length / present, y * length / present} : VECTOR{0, 0};
    }
    VECTOR TurnedBack() const { return {y, -x}; } // a quarter turn, counter-clockwise on the screen
    VECTOR TurnedOn() const { return {-y, x}; }
    VECTOR operator-() const { return {-x, -y}; }
};

enum { FARTHEST = 1 << 28 }; // px, as far as the axes place anything

/// A model's length comes from a file: it may be of any size.
int Pixels(double value)
{
    return std::clamp<int>(EdcNearest(value), -FARTHEST, FARTHEST);
}

TPoint Moved(TPoint p, const VECTOR &v)
{
    return {p.x + EdcNearest(v.x), p.y + EdcNearest(v.y)};
}

/// Of a point from a segment, px.
double Distance(TPoint p, TPoint from, TPoint to)
{
    VECTOR along = {static_cast<double>(to.x) - from.x, static_cast<double>(to.y) - from.y};
    VECTOR seen = {static_cast<double>(p.x) - from.x, static_cast<double>(p.y) - from.y};
    double square = along.x * along.x + along.y * along.y;
    double foot = square > 0 ? std::clamp((seen.x * along.x + seen.y * along.y) / square, 0.0, 1.0) : 0;
    return std::hypot(seen.x - foot * along.x, seen.y - foot * along.y);
}
} // namespace

TZulEmitterSprite::TZulEmitterSprite(EmEMITTER *object) : TEdcDrawSprite(ZUL_EMITTER), emittObj(object)
{
    ASSERT(object != NULL);
}

/// The new emitter is the set's; a sprite that fails takes it back.
TZulEmitterSprite::TZulEmitterSprite(const TEdcDrawCreation &creation)
    : TEdcDrawSprite(ZUL_EMITTER), emittObj(NULL)
{
    __enter
        auto *params = static_cast<TZulEmitterData *>(creation.stock);
        ASSERT(params != NULL);
        emittObj = new EmEMITTER;
        params->Exchange(EDC_XSTORE, *emittObj); __test;
        emittObj->Insert(params->target);
        AppDocument()->SetModified(); __test;
    __point
        delete emittObj;
        emittObj = NULL;
    __treat
}

TZulEmitterSprite::TZulEmitterSprite(const TZulEmitterSprite &emitt) : TEdcDrawSprite(emitt), emittObj(NULL)
{
    __enter
        ASSERT(emitt.emittObj != NULL);
        emittObj = new EmEMITTER(*emitt.emittObj);
        emittObj->InsertAfter(emitt.emittObj);
        AppDocument()->SetModified(); __test;
    __point
        delete emittObj;
        emittObj = NULL;
    __treat
}

void TZulEmitterSprite::Discard()
{
    ASSERT(emittObj != NULL);
    delete emittObj;
    emittObj = NULL;
    AppDocument()->SetModified();
}

TZulEmitterLayer *TZulEmitterSprite::EmitterLayer() const
{
    auto *ly = static_cast<TZulEmitterLayer *>(layer);
    ASSERT(ly != NULL && emittObj != NULL);
    return ly;
}

void TZulEmitterSprite::Describe(TEdcDrawDesc &d, double refAngle)
{
    ASSERT(emittObj != NULL);
    d.position = AgPOINT(emittObj->pos.x, emittObj->pos.y, 0);
    d.size = AgVECTOR();
    d.refAngle = refAngle;
    d.angle = emittObj->rotation;
}

/// From the middle of the body to its end, px. A short emitter on a coarse scale stays longer than its marker.
TPoint TZulEmitterSprite::HalfVector(double rotation) const
{
    const TZulEmitterLayer *ly = EmitterLayer();
    if (!emittObj->model)
        return {};
    double half = emittObj->model->Info()->size.x / 2;
    double x = half * std::cos(rotation) * Axes().xScale;
    double y = -half * std::sin(rotation) * Axes().yScale;
    int a = ly->minThick + ly->markerX;
    int b = ly->minThickY + ly->markerY;
    TPoint vector = {Pixels(x), Pixels(y)};
    if (ZulInEllipse(vector, {}, a, b))
        return {EdcNearest(a * std::cos(-rotation)), EdcNearest(b * std::sin(-rotation))};
    return vector;
}

void TZulEmitterSprite::Layout(TDC &dc)
{
    __enter
        TEdcDrawSprite::Layout(dc); __test;
        const TZulEmitterLayer *ly = EmitterLayer();
        hasModel = emittObj->model != NULL;
        isTilted = emittObj->tilt != 0;
        double width = hasModel ? emittObj->model->Info()->size.y * Axes().xScale : 0;
        thick = std::max(Pixels(std::fabs(width)), ly->minThick);
        thin = std::max(thick / 3, ly->minThin);
        thinner = std::max(thick / 6, ly->minThin);
        TPoint half = HalfVector(emittObj->rotation);
        VECTOR h = {static_cast<double>(half.x), static_cast<double>(half.y)};
        VECTOR n =
            h.TurnedBack().Scaled((thick - thin) / 2 - 1); // whole pixels: a rim stays outside of the line
        VECTOR a = h.Scaled(thick);
        VECTOR side = emittObj->tilt >= 0 ? n : -n;
        centre = Axes().ToDevice(desc.centre);
        endA = centre + half;
        endB = centre - half;
        tiltA = Moved(endA, side);
        tiltB = Moved(endB, side);
        tipA = Moved(endA, n);
        tipB = Moved(tipA, a);
        tipC = Moved(tipB, a.TurnedOn());
    __point
    __treat
}

void TZulEmitterSprite::Paint(TDC &dc)
{
    const TZulEmitterLayer *ly = EmitterLayer();
    TColor line = ly->LineColor(state);
    TColor fill = ly->FillColor(state);
    dc.SetMix(WIN_MIX_COPY);
    if (hasModel) {
        const TPoint body[] = {endA, endB};
        const TPoint hook[] = {tipA, tipB, tipC};
        const TPoint mark[] = {tiltA, tiltB};
        dc.SetPen({.color = line, .width = thick});
        dc.Polyline(body, 2);
        dc.SetPen({.color = line, .width = thinner});
        dc.Polyline(hook, 3);
        dc.SetPen({.color = fill, .width = thin});
        if (isTilted)
            dc.Polyline(mark, 2);
    }
    ZulPaintMarker(dc, centre, ly->markerX, ly->markerY, line, fill);
    label.Paint(dc, ly->Font(), centre, line);
}

bool TZulEmitterSprite::InRect(const TRect &rect)
{
    return hasModel ? rect.Contains(endA) && rect.Contains(endB) : rect.Contains(centre);
}

bool TZulEmitterSprite::HitTest(TPoint point)
{
    const TZulEmitterLayer *ly = EmitterLayer();
    return TEdcDrawSprite::HitTest(point) || ZulInEllipse(point, centre, ly->markerX, ly->markerY) ||
           (hasModel && Distance(point, endA, endB) <= thick / 2.0);
}

TEdcDrawSprite *TZulEmitterSprite::Apply(TEdcDrawDrag &drag)
{
    TZulEmitterSprite *dragObj = this;
    __enter
        ASSERT(emittObj != NULL);
        if (drag.mode & EDC_DRAWDRAGCOPY) {
            ASSERT_AS(layer != NULL, "ly != NULL");
            dragObj = new TZulEmitterSprite(*this); __test;
            EdcSelectCopy(*this, *dragObj); __test;
        }
        ASSERT(dragObj != NULL);
        EmEMITTER &emitter = *dragObj->emittObj;
        if (drag.mode & EDC_DRAWDRAGROTATE) {
            double turn = drag.mode & EDC_DRAWDRAGABSOLUTE ? drag.angle - emitter.rotation : drag.angle;
            emitter.pos = drag.pivot + EdcTurned(emitter.pos - drag.pivot, turn);
            emitter.rotation = EdcWrapAngle(emitter.rotation + turn);
        }
        if (drag.mode & EDC_DRAWDRAGMOVE) {
            ASSERT(drag.shift.z == 0);
            emitter.pos = emitter.pos + drag.shift;
        }
        AppDocument()->SetModified(); __test;
    __point
        if (dragObj != this && !dragObj->layer) {
            delete dragObj->emittObj;
            delete dragObj;
        }
        dragObj = this;
    __treat
    return dragObj;
}

void TZulEmitterSprite::DragUpdate(TEdcDrawDrag &drag)
{
    ASSERT(emittObj != NULL);
    AgPOINT place = desc.centre;
    double rotation = emittObj->rotation;
    if (drag.mode & EDC_DRAWDRAGROTATE) {
        double turn = drag.mode & EDC_DRAWDRAGABSOLUTE ? drag.angle - rotation : drag.angle;
        place = drag.pivot + EdcTurned(place - drag.pivot, turn);
        rotation += turn;
    }
    if (drag.mode & EDC_DRAWDRAGMOVE)
        place = place + drag.shift;
    TPoint half = HalfVector(rotation);
    ghostCentre = Axes().ToDevice(place);
    ghostA = ghostCentre + half;
    ghostB = ghostCentre - half;
}

void TZulEmitterSprite::DragPaint(TDC &dc)
{
    const TZulEmitterLayer *ly = EmitterLayer();
    TDCState former = dc.State();
    EdcSetGhostPen(dc, WIN_PEN_SOLID, hasModel ? thick : 1);
    if (hasModel) {
        const TPoint body[] = {ghostA, ghostB};
        dc.Polyline(body, 2);
    } else {
        dc.Ellipse({ghostCentre.x - ly->markerX, ghostCentre.y - ly->markerY, ghostCentre.x + ly->markerX,
                    ghostCentre.y + ly->markerY});
    }
    dc.SetState(former);
}
