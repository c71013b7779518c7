// The zones of permanent occupancy on the floor plan: rectangles with the pictogram of a person. They have no
// parameters beyond their rectangle, and no computation reads them.
#ifndef USR_ZULZONE_H
#define USR_ZULZONE_H

#include "ker/emroom.h"
#include "usr/zulmark.h"

class TZulZoneLayer : public TEdcDrawLayer
{
public:
    TZulZoneLayer(EmZONESET *aZoneSet, TEdcAxes *aAxes);
    void Layout(TDC &dc) override;
    void Reload(void *arg) override;
    TEdcDrawSprite *CreateSprite(const TEdcDrawCreation &creation) override;
    void *QueryCreation(int tool, bool first) override;
    void Open() override {}   // nothing to edit
    void SetPerson(int size); // px; below 0 counts as 0

    int PersonHeight() const { return personLegs.bottom - personHead.top; } // px
    double PixelRatio() const { return pixelRatio; } // of the horizontal resolution to the vertical one

    TRect personHead, personBody, personLegs; // px, stacked round (0, 0)

private:
    EmZONESET *zoneSet; // view
    int32_t person = 0; // px
    double pixelRatio = 1;
};

/// A quarter of an inch at the view's scale.
void ZulSizePerson(TZulZoneLayer &layer, const TDC &dc, double scale);

class TZulZoneSprite : public TEdcDrawRect
{
public:
    explicit TZulZoneSprite(EmZONE *object);
    explicit TZulZoneSprite(const TEdcDrawCreation &creation);
    TZulZoneSprite(const TZulZoneSprite &zone); // with a copy of the object
    void Discard() override;
    void Reload(void *arg) override;
    void Store() override;
    TZulZoneSprite *Clone() override;
    bool HitTest(TPoint point) override;
    void Paint(TDC &dc) override;

    EmZONE *Object() const { return zoneObj; }

private:
    TZulZoneLayer *ZoneLayer() const; // asserts that there is one
    TPoint PersonAt() const;          // px, middle of the pictogram

    EmZONE *zoneObj; // the set's; Discard deletes it
};

#endif
