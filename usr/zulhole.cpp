// The openings of a surface on its plan.
#include "usr/zulhole.h"
#include "lib/charstr.h"
#include "lib/xassert.h"
#include "usr/edcapp.h"
#include "usr/edcbase2.h"
#include "usr/edcutils.h"
#include "usr/zulvalue.h"
#include "win/boxes.h"
#include "win/dc.h"

#include <cmath>

#include "lib/xon.h"

/// Two texts that differ in anything are different descriptions.
void TZulHoleData::Exchange(int mode, EmHOLE &hole)
{
    if (mode == EDC_XSTORE) {
        if (description.id != EDC_VUDF)
            StrCopy(hole.description, description.text, sizeof hole.description);
    } else {
        TEdcLongStr own;
        own = hole.description;
        description.Exchange(mode, own, true);
    }
    ZulExchange(mode, transmission, hole.constr.k);
    ZulExchange(mode, width, hole.size.x);
    ZulExchange(mode, height, hole.size.y);
    TEdcInt isOwn(hole.flags & EmHOLE::OWN_TEMP ? 1 : 0);
    ownTemp.Exchange(mode, isOwn);
    if (mode == EDC_XSTORE)
        hole.flags = (hole.flags & ~EmHOLE::OWN_TEMP) | (isOwn.value ? EmHOLE::OWN_TEMP : 0);
    ZulExchange(mode, externalTemp, hole.constr.tExt);
}

void TZulHoleData::Reset()
{
    description.id = EDC_VUDF;
    transmission.id = width.id = height.id = externalTemp.id = EDC_VUDF;
    ownTemp.Set(0);
    target = NULL;
}

TZulHoleLayer::TZulHoleLayer(EmHOLESET *aHoleSet, TEdcAxes *anAxes)
    : TZulObjectLayer(ZUL_HOLES, aHoleSet, anAxes)
{
    ASSERT(aHoleSet != NULL);
}

/// The marker is a box round the number.
void TZulHoleLayer::Layout(TDC &dc)
{
    NumberSprites();
    TSize digit = NumberSize(dc, 1);
    TSize number = NumberSize(dc, set->Count());
    markerX = number.cx / 2 + EdcNearest(digit.cx * 0.25);
    markerY = number.cy / 2;
    TZulMarkedLayer::Layout(dc);
}

bool TZulHoleLayer::IsCreator(int tool) const
{
    return tool == EDC_TlSTOCK || tool == EDC_TlRECT;
}

/// From stock an opening has the size that was stated; whoever places it moves it to where it belongs.
void TZulHoleLayer::Adapt(TEdcDrawCreation &creation) const
{
    __enter
        if (creation.type == EDC_TlSTOCK) {
            creation.flags = TEdcDrawRect::SOLID;
            creation.points.Clear(); __test;
            creation.points.Insert(AgPOINT(0, 0, 0)); __test;
            creation.points.Insert(AgPOINT(stock.width.value, stock.height.value, 0)); __test;
        }
        creation.type = ZUL_HOLE;
    __point
    __treat
}

bool TZulHoleLayer::Ask(TZulHoleData &data, int tool)
{
    bool confirmed = false;
    __enter
        TZulHoleDialog dialog(data, tool == 0             ? TZulHoleDialog::EDITING
                                    : tool == EDC_TlSTOCK ? TZulHoleDialog::STOCK
                                                          : TZulHoleDialog::DRAWN);
        confirmed = dialog.Execute() == WIN_ID_OK; __test;
    __point
        confirmed = false;
    __treat
    return confirmed;
}

TZulHoleSprite::TZulHoleSprite(EmHOLE *object) : TEdcDrawRect(ZUL_HOLE), holeObj(object)
{
    __enter
        ASSERT(object != NULL);
        TZulHoleSprite::Reload(NULL); __test;
    __point
    __treat
}

/// The new opening is the set's; a sprite that fails takes it back. What was drawn wins over the stock's size.
TZulHoleSprite::TZulHoleSprite(const TEdcDrawCreation &creation)
    : TEdcDrawRect(creation.type, creation), holeObj(NULL)
{
    __enter
        ASSERT(creation.type == ZUL_HOLE);
        auto *params = static_cast<TZulHoleData *>(creation.stock);
        ASSERT(params != NULL);
        holeObj = new EmHOLE;
        params->Exchange(EDC_XSTORE, *holeObj);
        holeObj->Insert(params->target);
        AppDocument()->SetModified(); __test;
        TZulHoleSprite::Store(); __test;
    __point
        delete holeObj;
        holeObj = NULL;
    __treat
}

TZulHoleSprite::TZulHoleSprite(const TZulHoleSprite &hole) : TEdcDrawRect(hole), holeObj(NULL)
{
    __enter
        ASSERT(hole.holeObj != NULL);
        holeObj = new EmHOLE(*hole.holeObj);
        holeObj->InsertAfter(hole.holeObj);
        AppDocument()->SetModified(); __test;
    __point
        delete holeObj;
        holeObj = NULL;
    __treat
}

void TZulHoleSprite::Discard()
{
    ASSERT(holeObj != NULL);
    delete holeObj;
    holeObj = NULL;
    AppDocument()->SetModified();
}

void TZulHoleSprite::Reload(void *)
{
    ASSERT(holeObj != NULL);
    size = holeObj->size;
    centre = holeObj->pos;
    angle = holeObj->rotation;
}

void TZulHoleSprite::Store()
{
    ASSERT(holeObj != NULL);
    holeObj->size = AgPOINT(std::fabs(size.x), std::fabs(size.y), 0);
    holeObj->pos = centre;
    holeObj->rotation = angle;
    AppDocument()->SetModified();
}

TZulHoleSprite *TZulHoleSprite::Clone()
{
    return new TZulHoleSprite(*this);
}

TZulHoleLayer *TZulHoleSprite::HoleLayer() const
{
    auto *ly = static_cast<TZulHoleLayer *>(layer);
    ASSERT(ly != NULL);
    return ly;
}

TRect TZulHoleSprite::Marker() const
{
    const TZulHoleLayer *ly = HoleLayer();
    TPoint middle = Axes().ToDevice(centre);
    return {middle.x - ly->markerX, middle.y - ly->markerY, middle.x + ly->markerX, middle.y + ly->markerY};
}

bool TZulHoleSprite::HitTest(TPoint point)
{
    return TEdcDrawRect::HitTest(point) || Marker().Contains(point);
}

void TZulHoleSprite::Paint(TDC &dc)
{
    const TZulHoleLayer *ly = HoleLayer();
    TColor line = ly->LineColor(state);
    dc.SetMix(WIN_MIX_COPY);
    dc.SetOpaque(false);
    dc.SetPen({.color = line});
    dc.SetBrush({.style = WIN_BRUSH_HATCH, .color = line, .hatch = WIN_HATCH_BDIAGONAL});
    dc.Polygon(devCorners, 5);
    dc.SetBrush(SolidBrush(ly->FillColor(state)));
    dc.Rectangle(Marker());
    label.Paint(dc, ly->Font(), Axes().ToDevice(centre), line);
}
