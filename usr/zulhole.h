// Building openings: the layer that shows those of a surface on its plan, the dialog for their data, and the
// catalogue of building elements that they and the hall's constructions take their transmittances from.
#ifndef USR_ZULHOLE_H
#define USR_ZULHOLE_H

#include "ker/emroom.h"
#include "usr/edcctlg.h"
#include "usr/zulobjects.h"

/// A named kind of building element. Its record is the dialog's: name, then transmittance.
class TZulHoleTypeItem : public TEdcCtlgItem
{
public:
    struct RECORD {
        TEdcShortStr name;
        TEdcFloat transmission; // W/(m2 K)
    };

    TZulHoleTypeItem() = default;
    TZulHoleTypeItem(const TZulHoleTypeItem &source);
    void GetName(char *buf, int max) override;
    void Read(CdeFILE &file, int ver) override;
    void Write(CdeFILE &file) override;
    void *Record() override { return &record; }

    RECORD record;
};

class TZulHoleTypeDialog : public TEdcDialog
{
public:
    TZulHoleTypeDialog();
};

/// The catalogue of building elements, in groups.
class TZulHoleTypeCatalog : public TEdcCtlgDividedList
{
public:
    explicit TZulHoleTypeCatalog(TWindow *aParent);
    TEdcCtlgItem *NewItem(TEdcCtlgItem *copy) override;
    TEdcDialog *ItemDialog() override { return &dialog; }

private:
    TZulHoleTypeDialog dialog;
};

/// What a dialog knows of openings.
struct TZulHoleData {
    TEdcLongStr description;
    TEdcFloat transmission;   // W/(m2 K)
    TEdcFloat width;          // m
    TEdcFloat height;         // m
    TEdcInt ownTemp;          // whether the temperature outside is its own
    TEdcFloat externalTemp;   // C
    EmHOLESET *target = NULL; // view; where new ones go, NULL until a dialog was confirmed

    TZulHoleData() { Reset(); }
    void Reset();                          // all undefined, but for ownTemp, which is 0
    void Exchange(int mode, EmHOLE &hole); // EDC_XLOAD, EDC_XSTORE, EDC_XMERGE
};

class TZulHoleDialog : public TEdcDialog
{
public:
    /// EDITING: of the selection, anything may stay undefined; STOCK: of what will be placed; DRAWN: the same
    /// where the size comes from the drawing
    enum FORM { EDITING = 1, STOCK = 2, DRAWN = 3 };

    TZulHoleDialog(TZulHoleData &data, FORM form); // a view
    void Button(int id) override;
    void Changed(HWND control) override;

private:
    void Opened();
    void Find();
    bool isDrawn;
    TEdcEdit *description, *transmission, *externalTemp;
    TEdcCheckBox *ownTemp;
    TControl *sizes[4]; // edits and labels of width and height
};

class TZulHoleSprite;

class TZulHoleLayer : public TZulObjectLayer<TZulHoleSprite, EmHOLESET, TZulHoleData>
{
public:
    TZulHoleLayer(EmHOLESET *aHoleSet, TEdcAxes *anAxes);
    void Layout(TDC &dc) override;

protected:
    bool IsCreator(int tool) const override; // also the one that draws rectangles
    void Adapt(TEdcDrawCreation &creation) const override;
    bool Ask(TZulHoleData &data, int tool) override;
};

class TZulHoleSprite : public TEdcDrawRect
{
public:
    explicit TZulHoleSprite(EmHOLE *object);
    explicit TZulHoleSprite(const TEdcDrawCreation &creation);
    TZulHoleSprite(const TZulHoleSprite &hole); // with a copy of the object
    void Discard() override;
    void Reload(void *arg) override;
    void Store() override;
    TZulHoleSprite *Clone() override;
    bool HitTest(TPoint point) override;
    void Paint(TDC &dc) override;

    EmHOLE *Object() const { return holeObj; }
    TZulLabel label;

private:
    TZulHoleLayer *HoleLayer() const; // asserts that there is one
    TRect Marker() const;             // px

    EmHOLE *holeObj; // the set's; Discard deletes it
};

#endif
