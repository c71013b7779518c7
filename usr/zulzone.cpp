#include "usr/zulzone.h"
#include "lib/xassert.h"
#include "usr/edcapp.h"
#include "usr/edcbase2.h"
#include "usr/edcutils.h"
#include "win/dc.h"

#include <algorithm>
#include <cmath>

#include "lib/xon.h"

namespace
{
constexpr uint16_t zoneOptions = EDC_LoACTIVABLE | EDC_LoVISIBLE | EDC_LoPRINTED | EDC_LoNOOPEN;

/// Odd, so that there is a middle pixel.
int MoreOdd(int width)
{
    return width | 1;
}

int LessOdd(int width)
{
    return (width - 1) | 1;
}

/// Centred on x = 0.
TRect Stacked(int top, int width, int height)
{
    return {-(width / 2), top, -(width / 2) + width, top + height};
}

double Ratio(const TDC &dc)
{
    return static_cast<double>(dc.DpiX()) / dc.DpiY();
}
} // namespace

TZulZoneLayer::TZulZoneLayer(EmZONESET *aZoneSet, TEdcAxes *anAxes)
    : TEdcDrawLayer(ZUL_ZONES, zoneOptions, anAxes), zoneSet(aZoneSet)
{
    ASSERT(aZoneSet != NULL);
}

void TZulZoneLayer::SetPerson(int size)
{
    person = std::max(0, size);
}

void ZulSizePerson(TZulZoneLayer &layer, const TDC &dc, double scale)
{
    layer.SetPerson(EdcInchToPixel(0.25, scale, dc.DpiY()));
}

void TZulZoneLayer::Layout(TDC &dc)
{
    int gap = std::max(person / 24, 1);
    int head = std::max(4 * person / 24, 3);
    int body = std::max(8 * person / 24, 4);
    int legs = std::max(11 * person / 24, 5);
    auto scaled = [ratio = Ratio(dc)](int width) { return EdcNearest(width * ratio); };
    int top = -(head + gap + body + legs) / 2;
    personHead = Stacked(top, MoreOdd(scaled(std::max(4 * person / 24, 3))), head);
    top += head + gap;
    personBody = Stacked(top, MoreOdd(scaled(std::max(8 * person / 24, 5))), body);
    top += body;
    personLegs = Stacked(top, LessOdd(scaled(std::max(5 * person / 24, 3))), legs);
    pixelRatio = Ratio(dc);
    TEdcDrawLayer::Layout(dc);
}

void TZulZoneLayer::Reload(void *)
{
    __enter
        DeleteAll(false); __test;
        for (EmZONE *zone = zoneSet->First(); zone; zone = EmZONESET::Next(zone)) {
            Add(new TZulZoneSprite(zone)); __test;
        }
    __point
    __treat
}

void *TZulZoneLayer::QueryCreation(int tool, bool)
{
    return tool == EDC_TlRECT ? zoneSet : NULL;
}

TEdcDrawSprite *TZulZoneLayer::CreateSprite(const TEdcDrawCreation &creation)
{
    TEdcDrawSprite *spr = NULL;
    __enter
        bool can = creation.type == EDC_TlRECT && CanCreate(creation); __test;
        if (can) {
            TEdcDrawCreation zone;
            zone.type = ZUL_ZONE;
            zone.flags = creation.flags | TEdcDrawRect::FRAMEONLY;
            zone.stock = creation.stock;
            for (int i = 0; i < creation.points.Count(); ++i) {
                zone.points.Insert(creation.points[i]); __test;
            }
            spr = new TZulZoneSprite(zone); __test;
        }
    __point
        delete spr;
        spr = NULL;
    __treat
    return spr;
}

TZulZoneSprite::TZulZoneSprite(EmZONE *object) : TEdcDrawRect(ZUL_ZONE), zoneObj(object)
{
    __enter
        ASSERT(object != NULL);
        kind |= FRAMEONLY;
        Reload(NULL); __test;
    __point
    __treat
}

/// The new zone is the set's; a sprite that fails takes it back.
TZulZoneSprite::TZulZoneSprite(const TEdcDrawCreation &creation)
    : TEdcDrawRect(creation.type, creation), zoneObj(NULL)
{
    __enter
        ASSERT(creation.type == ZUL_ZONE);
        auto *zoneSet = static_cast<EmZONESET *>(creation.stock);
        ASSERT(zoneSet != NULL);
        zoneObj = new EmZONE;
        zoneObj->Insert(zoneSet);
        AppDocument()->SetModified(); __test;
        Store(); __test;
    __point
        delete zoneObj;
        zoneObj = NULL;
    __treat
}

TZulZoneSprite::TZulZoneSprite(const TZulZoneSprite &zone) : TEdcDrawRect(zone), zoneObj(NULL)
{
    __enter
        ASSERT(zone.zoneObj != NULL);
        zoneObj = new EmZONE(*zone.zoneObj);
        zoneObj->InsertAfter(zone.zoneObj);
        AppDocument()->SetModified(); __test;
    __point
        delete zoneObj;
        zoneObj = NULL;
    __treat
}

void TZulZoneSprite::Discard()
{
    ASSERT(zoneObj != NULL);
    delete zoneObj;
    zoneObj = NULL;
    AppDocument()->SetModified();
}

void TZulZoneSprite::Reload(void *)
{
    ASSERT(zoneObj != NULL);
    size = zoneObj->size;
    centre = zoneObj->pos;
    angle = zoneObj->rotation;
}

void TZulZoneSprite::Store()
{
    ASSERT(zoneObj != NULL);
    zoneObj->size = size;
    zoneObj->pos = centre;
    zoneObj->rotation = angle;
    AppDocument()->SetModified();
}

TZulZoneSprite *TZulZoneSprite::Clone()
{
    return new TZulZoneSprite(*this);
}

TZulZoneLayer *TZulZoneSprite::ZoneLayer() const
{
    auto *ly = static_cast<TZulZoneLayer *>(layer);
    ASSERT(ly != NULL);
    return ly;
}

/// Inside the first corner, whichever way round the sides were drawn.
TPoint TZulZoneSprite::PersonAt() const
{
    const TZulZoneLayer *ly = ZoneLayer();
    double direction = -angle - AgPI / 4;
    if (size.x < 0)
        direction -= AgPI / 2 * (size.y >= 0 ? 1 : -1);
    if (size.y < 0)
        direction += AgPI / 2;
    int tall = ly->PersonHeight();
    return {devCorners[0].x + EdcNearest(tall * std::cos(direction) * ly->PixelRatio()),
            devCorners[0].y + EdcNearest(tall * std::sin(direction))};
}

bool TZulZoneSprite::HitTest(TPoint point)
{
    if (TEdcDrawRect::HitTest(point))
        return true;
    const TZulZoneLayer *ly = ZoneLayer();
    TPoint at = PersonAt();
    int halfX = EdcNearest(ly->PersonHeight() * std::cos(AgPI / 4) * ly->PixelRatio());
    int halfY = EdcNearest(ly->PersonHeight() * std::sin(AgPI / 4));
    return TRect{at.x - halfX, at.y - halfY, at.x + halfX, at.y + halfY}.Contains(point);
}

void TZulZoneSprite::Paint(TDC &dc)
{
    const TZulZoneLayer *ly = ZoneLayer();
    TColor color = ly->LineColor(state);
    dc.SetMix(WIN_MIX_COPY);
    dc.SetPen({.color = color, .width = std::max(ly->PersonHeight() / 24, 2)});
    dc.SetBrush(NoBrush());
    dc.Polygon(devCorners, 5);
    TPoint at = PersonAt();
    dc.SetPen({.color = color});
    dc.SetBrush(SolidBrush(color));
    dc.Ellipse(ly->personHead.Offset(at.x, at.y));
    dc.Rectangle(ly->personBody.Offset(at.x, at.y));
    dc.Rectangle(ly->personLegs.Offset(at.x, at.y));
}
