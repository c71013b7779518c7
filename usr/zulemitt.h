// The infrared emitters on the floor plan: a layer over the hall's set, a sprite for each emitter, and the
// dialog that states what the next one will be or changes all that are selected. Sprites are derived from the
// set and never stored.
#ifndef USR_ZULEMITT_H
#define USR_ZULEMITT_H

#include "ker/emroom.h"
#include "usr/edcdlg.h"
#include "usr/zulobjects.h"

/// What a dialog knows of emitters.
struct TZulEmitterData {
    TEdcShortStr modelName;      // EDC_VNUL: no model
    TEdcFloat output;            // W
    TEdcFloat height;            // m, of mounting
    TEdcFloat tilt;              // degrees
    EmEMITTERSET *target = NULL; // view; where new ones go, NULL until a dialog was confirmed

    TZulEmitterData() { Reset(); }
    void Reset();
    void Exchange(int mode, EmEMITTER &emitter); // EDC_XLOAD, EDC_XSTORE, EDC_XMERGE; stores may fail
};

class TZulEmitterDialog : public TEdcDialog
{
public:
    TZulEmitterDialog(TZulEmitterData &data, bool anEditing); // a view
    void Button(int id) override;
    void Changed(HWND control) override;

private:
    void FillOutputs(const TEdcShortStr &name);
    void ShowFixed(int modelId);
    void OfferOutputs(const char *name);
    void SetRange(double least, double most); // W
    bool editing;
    TEdcShortStr own; // the output that the record came with
    TEdcComboBox *model, *output;
    TEdcFloatValidator *range; // view; of the output
    TEdcButton *techInfo;
};

class TZulEmitterSprite;

class TZulEmitterLayer : public TZulObjectLayer<TZulEmitterSprite, EmEMITTERSET, TZulEmitterData>
{
public:
    TZulEmitterLayer(EmEMITTERSET *aEmittSet, TEdcAxes *anAxes);
    void Layout(TDC &dc) override;

protected:
    bool Ask(TZulEmitterData &data, int tool) override;
};

class TZulEmitterSprite : public TEdcDrawSprite
{
public:
    explicit TZulEmitterSprite(EmEMITTER *object);
    explicit TZulEmitterSprite(const TEdcDrawCreation &creation);
    TZulEmitterSprite(const TZulEmitterSprite &emitt); // with a copy of the object
    void Discard() override;
    void Layout(TDC &dc) override;
    bool InRect(const TRect &rect) override;
    bool HitTest(TPoint point) override;
    void Paint(TDC &dc) override;
    void Describe(TEdcDrawDesc &d, double refAngle) override;
    TEdcDrawSprite *Apply(TEdcDrawDrag &drag) override;
    void DragUpdate(TEdcDrawDrag &drag) override;
    void DragPaint(TDC &dc) override;

    EmEMITTER *Object() const { return emittObj; }
    TZulLabel label;

private:
    TZulEmitterLayer *EmitterLayer() const; // asserts that there is one
    TPoint HalfVector(double rotation) const;

    EmEMITTER *emittObj;                      // the set's; Discard deletes it
    TPoint tiltA, tiltB, endA, centre, endB;  // px
    TPoint tipA, tipB, tipC;                  // px, the hook
    TPoint ghostA, ghostCentre, ghostB;       // px
    int32_t thick = 0, thin = 0, thinner = 0; // px
    bool hasModel = false;
    bool isTilted = false;
};

#endif
