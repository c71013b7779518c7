// Warm-air units: their catalogue, and the layer that shows them on the floor plan. The plan shows and prints
// them; its block never lets the layer become the active one.
#ifndef USR_ZULAIRHT_H
#define USR_ZULAIRHT_H

#include "ker/emroom.h"
#include "usr/edcctlg.h"
#include "usr/zulobjects.h"

/// What a dialog or the catalogue knows of a unit.
struct TZulAirHeaterData {
    TEdcShortStr typeName;         // EDC_VNUL: no type
    TEdcFloat output;              // W
    TEdcFloat tempRise;            // K
    TEdcFloat airFlow;             // m3/h
    TEdcFloat length;              // m
    TEdcFloat width;               // m
    TEdcFloat height;              // m
    EmAIRHEATERSET *target = NULL; // view; where new ones go, NULL until a dialog was confirmed

    TZulAirHeaterData() { Reset(); }
    void Reset();                               // no type, all numbers undefined; the target stays
    void Exchange(int mode, EmAIRHEATER &unit); // EDC_XLOAD, EDC_XSTORE, EDC_XMERGE
};

/// A kind of unit. The catalogue's dialog walks the record up to `height`.
class TZulAirHeaterTypeItem : public TEdcCtlgItem
{
public:
    TZulAirHeaterTypeItem() = default;
    TZulAirHeaterTypeItem(const TZulAirHeaterTypeItem &source);
    void GetName(char *buf, int max) override;
    void Read(CdeFILE &file, int ver) override;
    void Write(CdeFILE &file) override;
    void *Record() override { return &data; }

    TZulAirHeaterData data;
};

class TZulAirHeaterTypeDialog : public TEdcDialog
{
public:
    TZulAirHeaterTypeDialog();
};

/// The catalogue of warm-air units.
class TZulAirHeaterTypeCatalog : public TEdcCtlgSimpleList
{
public:
    explicit TZulAirHeaterTypeCatalog(TWindow *aParent);
    TEdcCtlgItem *NewItem(TEdcCtlgItem *copy) override;
    TEdcDialog *ItemDialog() override { return &dialog; }

private:
    TZulAirHeaterTypeDialog dialog;
};

/// Works on a copy of the record, which OK gives back.
class TZulAirHeaterDialog : public TEdcDialog
{
public:
    explicit TZulAirHeaterDialog(TZulAirHeaterData &data); // a view
    void Button(int id) override;
    void Changed(HWND control) override;

private:
    void ShowUnit();
    void ChooseUnit();
    TZulAirHeaterData &data;
    TZulAirHeaterData copy;
    TEdcStatic *text;
    TEdcButton *ok;
};

class TZulAirHeaterSprite;

class TZulAirHeaterLayer : public TZulObjectLayer<TZulAirHeaterSprite, EmAIRHEATERSET, TZulAirHeaterData>
{
public:
    TZulAirHeaterLayer(EmAIRHEATERSET *aAirhtSet, TEdcAxes *anAxes);
    void Layout(TDC &dc) override;

protected:
    bool Ask(TZulAirHeaterData &data, int tool) override;
};

class TZulAirHeaterSprite : public TEdcDrawSprite
{
public:
    explicit TZulAirHeaterSprite(EmAIRHEATER *object);
    explicit TZulAirHeaterSprite(const TEdcDrawCreation &creation);
    TZulAirHeaterSprite(const TZulAirHeaterSprite &airht); // with a copy of the object
    void Discard() override;
    void Layout(TDC &dc) override;
    bool HitTest(TPoint point) override;
    void Paint(TDC &dc) override;
    void Describe(TEdcDrawDesc &d, double refAngle) override;
    TEdcDrawSprite *Apply(TEdcDrawDrag &drag) override; // moves alone: a unit does not turn
    void DragUpdate(TEdcDrawDrag &drag) override;
    void DragPaint(TDC &dc) override;

    EmAIRHEATER *Object() const { return airhtObj; }
    TZulLabel label;

private:
    TZulAirHeaterLayer *AirHeaterLayer() const; // asserts that there is one
    TRect BoxAt(const AgPOINT &pos) const;

    EmAIRHEATER *airhtObj;          // the set's; Discard deletes it
    TRect box, lowerBar, ghostBox;  // px
    TPoint centre, ghostCentre;     // px
    int32_t thickX = 0, thickY = 0; // px, corners of the box
    int32_t barX = 0, barY = 0;     // px, corners of the bar
    bool hasType = false;
    bool ghostValid = false;
};

#endif
