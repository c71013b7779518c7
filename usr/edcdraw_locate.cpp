// The dialog for an exact place, and the step that it stands for.
#include "usr/edcdraw.h"
#include "usr/edcdraw_places.h"

#include "lib/xassert.h"
#include "usr/edcutils.h"
#include "win/boxes.h"

#include <limits>

#include "lib/xon.h"

namespace
{
enum { DIALOG_LOCATE = 21520 };
enum : int {
    ID_X = 100,
    ID_Y = 101,
    ID_SHOW_POINT = 102,
    ID_ANCHORS = 103,
    ID_FIRST_ANCHOR = 104,
    ID_CENTRE = 108,
    ID_ROTATION = 113,
    ID_ANGLE_LABEL = 114,
    ID_ANGLE = 115,
    ID_SHOW_ANGLE = 116,
    ID_SYNC = 117,
    ID_COPY = 118
};
enum { ANCHORS = 9, FIRST_PICTURE = 21670 };
enum SUBJECT { HANDLE = 1, ONE = 2, MANY = 3 };

/// In the order of the radio buttons.
const AgPOINT TEdcDrawDesc::*const anchorPoints[ANCHORS] = {
    &TEdcDrawDesc::topLeft,    &TEdcDrawDesc::topMid,    &TEdcDrawDesc::topRight,
    &TEdcDrawDesc::leftMid,    &TEdcDrawDesc::centre,    &TEdcDrawDesc::rightMid,
    &TEdcDrawDesc::bottomLeft, &TEdcDrawDesc::bottomMid, &TEdcDrawDesc::bottomRight};

const AgPOINT &AnchorOf(const TEdcDrawDesc &desc, const TEdcInt &anchor)
{
    int i = anchor.id == EDC_VVAL ? anchor.value - ID_FIRST_ANCHOR : -1;
    return i >= 0 && i < ANCHORS ? desc.*anchorPoints[i] : desc.centre;
}

/// What was entered last, whatever the layer.
struct TEdcDrawLocateData {
    TEdcFloat x, y; // m
    TEdcInt anchor = ID_CENTRE;
    TEdcFloat angle; // degrees
    TEdcInt sync = 0;
    TEdcInt copy = 0;
};
TEdcDrawLocateData entered;
TEdcDrawHandle placed; // a copy of the handle that an answer is about: the dialog outlives the sprite's own

class TEdcDrawLocateDialog : public TEdcDialog
{
public:
    TEdcDrawLocateDialog(TEdcDrawLocateData &data, SUBJECT aSubject, const TEdcDrawDesc &aDesc);
    void Changed(HWND control) override;
    void Button(int id) override;

private:
    void Open();
    void ShowPoint();
    void ShowAngle();

    SUBJECT subject;
    const TEdcDrawDesc &desc;
    TEdcEdit *x, *y, *angle;
    TEdcRadioGroup *anchors;
    TEdcCheckBox *sync, *copy;
    std::vector<TControl *> rotation; // what is grey without one
};

TEdcDrawLocateDialog::TEdcDrawLocateDialog(TEdcDrawLocateData &data, SUBJECT aSubject,
                                           const TEdcDrawDesc &aDesc)
    : TEdcDialog(DIALOG_LOCATE, static_cast<TEdcValue *>(&data.x)), subject(aSubject), desc(aDesc)
{
    x = EdcAnyNumber(*this, ID_X);
    y = EdcAnyNumber(*this, ID_Y);
    anchors = new TEdcRadioGroup(this, ID_ANCHORS);
    for (int i = 0; i < ANCHORS; ++i) {
        auto *button = new TEdcRadioButton(this, static_cast<unsigned>(ID_FIRST_ANCHOR + i), anchors);
        button->SetRes(FIRST_PICTURE + i);
    }
    angle = EdcAnyNumber(*this, ID_ANGLE);
    sync = new TEdcCheckBox(this, ID_SYNC);
    copy = new TEdcCheckBox(this, ID_COPY);
    for (int id : {ID_ROTATION, ID_ANGLE_LABEL, ID_SHOW_ANGLE})
        rotation.push_back(new TControl(this, id));
    rotation.push_back(angle);
}

void TEdcDrawLocateDialog::Changed(HWND control)
{
    if (control == NULL)
        Open();
}

void TEdcDrawLocateDialog::Button(int id)
{
    if (id == ID_SHOW_POINT)
        ShowPoint();
    else if (id == ID_SHOW_ANGLE)
        ShowAngle();
    else
        TEdcDialog::Button(id);
}

/// A point has no anchors; a handle has no rotation either, and what is alone cannot be turned together.
void TEdcDrawLocateDialog::Open()
{
    bool isPoint = desc.size.x == 0 && desc.size.y == 0;
    if (subject == HANDLE || isPoint)
        anchors->SetValue(ID_CENTRE);
    if (subject == HANDLE) {
        for (TEdcCheckBox *button = anchors->First(); button != NULL; button = anchors->Next(button))
            button->ShowWindow(false);
        anchors->ShowWindow(false);
        for (TControl *part : rotation)
            part->EnableWindow(false);
        copy->SetValue(0);
        copy->EnableWindow(false);
    } else if (isPoint) {
        anchors->Enable(false);
    }
    if (subject != MANY) {
        sync->SetValue(0);
        sync->EnableWindow(false);
    }
    ShowPoint();
    ShowAngle();
    x->TakeFocus();
}

void TEdcDrawLocateDialog::ShowPoint()
{
    TEdcInt anchor;
    anchors->GetValue(anchor);
    const AgPOINT &point = subject == HANDLE ? desc.position : AnchorOf(desc, anchor);
    EdcShowNumber(*x, point.x);
    EdcShowNumber(*y, point.y);
}

void TEdcDrawLocateDialog::ShowAngle()
{
    EdcShowNumber(*angle, EdcDegrees(EdcWrapAngle(desc.angle)));
}

/// The step that brings the anchor of the turned sprite to the point that was entered.
void MakeStep(TEdcDrawDrag &drag, TEdcDrawSprite &sprite, const TEdcDrawDesc &desc, SUBJECT subject)
{
    __enter
        drag.mode = EDC_DRAWDRAGMOVE | EDC_DRAWDRAGROTATE;
        if (subject == MANY && EdcIsChecked(entered.sync))
            drag.mode |= EDC_DRAWDRAGABSOLUTE;
        if (EdcIsChecked(entered.copy))
            drag.mode |= EDC_DRAWDRAGCOPY;
        drag.pivot = desc.centre;
        double a = EdcWrapAngle(EdcRadians(entered.angle.value));
        double turn = a - desc.angle;
        drag.angle = drag.mode & EDC_DRAWDRAGABSOLUTE ? a : turn;
        TEdcDrawDesc turned = desc;
        sprite.Describe(turned, -turn); __test;
        Complete(turned);
        AgPOINT anchor = drag.pivot + EdcTurned(AnchorOf(turned, entered.anchor) - drag.pivot, turn);
        drag.shift = AgPOINT(entered.x.value, entered.y.value, anchor.z) - anchor;
    __point
    __treat
}
} // namespace

TEdcEdit *EdcAnyNumber(TEdcDialog &dialog, int id)
{
    const double most = std::numeric_limits<double>::max();
    return new TEdcEdit(&dialog, id, SHORTSTRMAX, new TEdcFloatValidator(-most, most, false, NULL));
}

void EdcShowNumber(TEdcEdit &edit, double value)
{
    TEdcShortStr text;
    text.SetFloat(EdcRound(value, EDC_NOISE), -1, NULL);
    edit.SetValue(text);
}

bool EdcIsChecked(const TEdcInt &chk)
{
    ASSERT(chk.id == EDC_VVAL);
    return chk.value != 0;
}

void EdcForgetPlaces()
{
    entered = TEdcDrawLocateData();
    EdcForgetAlign();
}

bool TEdcDrawLayer::Locate(TEdcDrawDrag &drag, TEdcDrawHandle *handle)
{
    bool answered = false;
    __enter
        TEdcDrawSprite *foc = DrawFocus();
        if (foc) {
            bool byHandle = handle != NULL && (handle->flags & TEdcDrawHandle::SNAPS);
            SUBJECT subject = byHandle ? HANDLE : CountSel() > 1 ? MANY : ONE;
            TEdcDrawDesc desc = foc->Desc();
            if (byHandle) {
                placed = *handle;
                desc.position = placed.point;
            }
            TEdcDrawLocateDialog dialog(entered, subject, desc);
            answered = dialog.Execute() == WIN_ID_OK; __test;
            drag = TEdcDrawDrag();
            drag.tool = EDC_TlSELECT;
            if (answered && byHandle) {
                drag.mode = EDC_DRAWDRAGMOVE | EDC_DRAWDRAGHANDLE;
                drag.handle = &placed;
                drag.shift = AgPOINT(entered.x.value, entered.y.value, placed.point.z) - placed.point;
            } else if (answered) {
                MakeStep(drag, *foc, desc, subject); __test;
            }
        }
    __point
        answered = false;
    __treat
    return answered;
}
