// The dialog of alignment. It has two forms: for a selection, and for objects that are about to be made.
#include "usr/edcdraw.h"
#include "usr/edcdraw_places.h"

#include "usr/edcutils.h"
#include "win/application.h"
#include "win/boxes.h"

#include <climits>

#include "lib/xon.h"

namespace
{
enum { DIALOG_ALIGN = 21521 };
enum {
    TEXT_GAP = 21600,
    TEXT_USE_GAP = 21601,
    TEXT_DISTANCE = 21602,
    TEXT_USE_DISTANCE = 21603,
    TEXT_TWO_POINTS = 21604
};
enum { PICTURE_OFF = 21650, PICTURE_SIDE = 21651, PICTURE_STRETCH = 21654, PICTURE_ROTATE = 21656 };
enum { COUNT_MOST = 32767 };
enum : int {
    ID_COUNT = 101,
    ID_X1 = 102,
    ID_Y1 = 103,
    ID_X2 = 104,
    ID_Y2 = 105,
    ID_SHOW_LINE = 106,
    ID_SIDES = 107,
    ID_SIDE_PICTURE = 108,
    ID_BELOW = 109,
    ID_MIDDLE = 110,
    ID_ABOVE = 111,
    ID_STRETCH = 112,
    ID_STRETCH_KINDS = 113,
    ID_STRETCH_PICTURE = 114,
    ID_DISTANCES = 115,
    ID_GAPS = 116,
    ID_SELORDER = 117,
    ID_USE_VALUE = 118,
    ID_VALUE_LABEL = 119,
    ID_VALUE = 120,
    ID_ROTATE = 121,
    ID_ROTATE_KINDS = 122,
    ID_ROTATE_PICTURE = 123,
    ID_TO_LINE = 124,
    ID_TO_XAXIS = 125,
    ID_ANGLE_LABEL = 126,
    ID_ANGLE = 127
};

/// What was entered last, whatever the layer. The kinds are bits of TEdcDrawAlign's mode.
struct TEdcDrawAlignData {
    TEdcInt count;
    TEdcFloat x1, y1, x2, y2; // m
    TEdcInt side = TEdcDrawAlign::MIDDLE;
    TEdcInt stretch = 0;
    TEdcInt stretchKind = 0;
    TEdcInt bySelection = 0;
    TEdcInt useValue = 0;
    TEdcFloat value; // m
    TEdcInt rotate = 0;
    TEdcInt rotateKind = 0;
    TEdcFloat angle = 0.0; // degrees
};
TEdcDrawAlignData entered;

class TEdcDrawAlignDialog : public TEdcDialog
{
public:
    TEdcDrawAlignDialog(TEdcDrawAlignData &data, bool aCreating);
    void Changed(HWND control) override;
    void Button(int id) override;
    bool CanClose() override;

private:
    TEdcRadioGroup *Kinds(int groupId, std::initializer_list<std::pair<int, int>> buttons);
    void Open();
    void ShowLine();
    void ShowKinds();
    void EnableParts();
    int Kind(const TEdcRadioGroup &group) const;

    bool creating;
    TEdcFloat given[4]; // m, the line that was drawn
    TEdcEdit *count, *ends[4], *value, *angle;
    TEdcRadioGroup *side, *stretchKind, *rotateKind;
    TEdcCheckBox *stretch, *bySelection, *useValue, *rotate;
    TEdcStatic *sidePicture, *stretchPicture, *rotatePicture, *valueLabel;
    TControl *angleLabel, *showLine;
};

TEdcDrawAlignDialog::TEdcDrawAlignDialog(TEdcDrawAlignData &data, bool aCreating)
    : TEdcDialog(DIALOG_ALIGN, static_cast<TEdcValue *>(&data.count)),
      creating(aCreating), given{data.x1, data.y1, data.x2, data.y2}
{
    count = new TEdcEdit(this, ID_COUNT, SHORTSTRMAX, new TEdcIntValidator(1, COUNT_MOST, false));
    for (int i = 0; i < 4; ++i)
        ends[i] = EdcAnyNumber(*this, ID_X1 + i);
    side = Kinds(ID_SIDES, {{ID_BELOW, TEdcDrawAlign::BELOW},
                            {ID_MIDDLE, TEdcDrawAlign::MIDDLE},
                            {ID_ABOVE, TEdcDrawAlign::ABOVE}});
    stretch = new TEdcCheckBox(this, ID_STRETCH);
    stretchKind = Kinds(ID_STRETCH_KINDS, {{ID_DISTANCES, 0}, {ID_GAPS, TEdcDrawAlign::GAPS}});
    bySelection = new TEdcCheckBox(this, ID_SELORDER);
    useValue = new TEdcCheckBox(this, ID_USE_VALUE);
    value = EdcAnyNumber(*this, ID_VALUE);
    rotate = new TEdcCheckBox(this, ID_ROTATE);
    rotateKind = Kinds(ID_ROTATE_KINDS, {{ID_TO_LINE, 0}, {ID_TO_XAXIS, TEdcDrawAlign::TOXAXIS}});
    angle = EdcAnyNumber(*this, ID_ANGLE);
    sidePicture = new TEdcStatic(this, ID_SIDE_PICTURE);
    stretchPicture = new TEdcStatic(this, ID_STRETCH_PICTURE);
    rotatePicture = new TEdcStatic(this, ID_ROTATE_PICTURE);
    valueLabel = new TEdcStatic(this, ID_VALUE_LABEL);
    angleLabel = new TControl(this, ID_ANGLE_LABEL);
    showLine = new TControl(this, ID_SHOW_LINE);
}

/// A group of radio buttons, each with what it stands for.
TEdcRadioGroup *TEdcDrawAlignDialog::Kinds(int groupId, std::initializer_list<std::pair<int, int>> buttons)
{
    auto *group = new TEdcRadioGroup(this, groupId);
    for (const auto &[id, data] : buttons)
        new TEdcRadioButton(this, static_cast<unsigned>(id), group, data);
    return group;
}

void TEdcDrawAlignDialog::Changed(HWND control)
{
    if (control == NULL)
        Open();
    ShowKinds();
    EnableParts();
    if (control != NULL && control == useValue->GetHandle() && useValue->IsChecked())
        value->TakeFocus();
}

void TEdcDrawAlignDialog::Button(int id)
{
    if (id == ID_SHOW_LINE)
        ShowLine();
    else
        TEdcDialog::Button(id);
}

/// What is made is always spread and turned, in the order of making.
void TEdcDrawAlignDialog::Open()
{
    count->EnableWindow(creating);
    if (creating) {
        stretch->SetValue(1);
        bySelection->SetValue(0);
        rotate->SetValue(1);
        stretch->EnableWindow(false);
        bySelection->EnableWindow(false);
        rotate->EnableWindow(false);
    }
    bool any = false;
    for (const TEdcFloat &number : given)
        any = any || number.id == EDC_VVAL;
    showLine->EnableWindow(any);
}

void TEdcDrawAlignDialog::ShowLine()
{
    for (int i = 0; i < 4; ++i)
        if (given[i].id == EDC_VVAL)
            EdcShowNumber(*ends[i], given[i].value);
}

int TEdcDrawAlignDialog::Kind(const TEdcRadioGroup &group) const
{
    TEdcInt kind;
    group.GetValue(kind);
    return kind.id == EDC_VVAL ? kind.value : 0;
}

void TEdcDrawAlignDialog::ShowKinds()
{
    int place = Kind(*side);
    sidePicture->SetRes(PICTURE_SIDE + (place == TEdcDrawAlign::ABOVE ? 2 : place == TEdcDrawAlign::MIDDLE));
    bool gaps = Kind(*stretchKind) == TEdcDrawAlign::GAPS;
    stretchPicture->SetRes(stretch->IsChecked() ? PICTURE_STRETCH + gaps : PICTURE_OFF);
    useValue->SetRes(gaps ? TEXT_USE_GAP : TEXT_USE_DISTANCE);
    valueLabel->SetRes(gaps ? TEXT_GAP : TEXT_DISTANCE);
    bool toAxis = Kind(*rotateKind) == TEdcDrawAlign::TOXAXIS;
    rotatePicture->SetRes(rotate->IsChecked() ? PICTURE_ROTATE + toAxis : PICTURE_OFF);
}

void TEdcDrawAlignDialog::EnableParts()
{
    bool spreads = stretch->IsChecked();
    bool byValue = spreads && useValue->IsChecked();
    bool turns = rotate->IsChecked();
    stretchKind->Enable(spreads);
    useValue->EnableWindow(spreads);
    bySelection->EnableWindow(spreads && !creating);
    value->EnableWindow(byValue);
    valueLabel->EnableWindow(byValue);
    rotateKind->Enable(turns);
    angle->EnableWindow(turns);
    angleLabel->EnableWindow(turns);
}

/// A line needs two points.
bool TEdcDrawAlignDialog::CanClose()
{
    bool may = false;
    __enter
        may = TEdcDialog::CanClose(); __test;
        if (may) {
            double at[4] = {};
            for (int i = 0; i < 4; ++i) {
                TEdcShortStr text;
                ends[i]->GetValue(text);
                at[i] = text.GetFloat(NULL).value;
            }
            may = AgPOINT(at[0], at[1]) != AgPOINT(at[2], at[3]);
            if (!may) {
                TApplication *application = TApplication::Current();
                MessageBox(this, GetResString(TEXT_TWO_POINTS), application ? application->Name().c_str() : "",
                           WIN_BOX_OK, WIN_ICON_EXCLAMATION); __test;
                ends[0]->TakeFocus();
            }
        }
    __point
        may = false;
    __treat
    return may;
}

uint32_t ModeBit(const TEdcInt &chk, uint32_t bit)
{
    return EdcIsChecked(chk) ? bit : 0;
}

uint32_t KindBits(const TEdcInt &kind)
{
    return kind.id == EDC_VVAL ? static_cast<uint32_t>(kind.value) : 0;
}

void TakeAnswer(TEdcDrawAlign &spec, bool creating)
{
    spec.mode = KindBits(entered.side) | KindBits(entered.stretchKind) | KindBits(entered.rotateKind) |
                ModeBit(entered.stretch, TEdcDrawAlign::STRETCH) |
                ModeBit(entered.bySelection, TEdcDrawAlign::SELORDER) |
                ModeBit(entered.useValue, TEdcDrawAlign::VALUE) |
                ModeBit(entered.rotate, TEdcDrawAlign::ROTATE);
    if (creating)
        spec.mode |= TEdcDrawAlign::STRETCH | TEdcDrawAlign::SELORDER | TEdcDrawAlign::ROTATE;
    spec.org = AgPOINT(entered.x1.value, entered.y1.value);
    spec.end = AgPOINT(entered.x2.value, entered.y2.value);
    spec.angle = EdcRadians(entered.angle.id == EDC_VVAL ? entered.angle.value : 0);
    spec.value = entered.value.id == EDC_VVAL ? entered.value.value : 0;
}
} // namespace

void EdcForgetAlign()
{
    entered = TEdcDrawAlignData();
}

bool TEdcDrawLayer::AlignQuery(TEdcDrawAlign &spec, const AgPOINT &org, const AgPOINT &end, int *number)
{
    bool answered = false;
    __enter
        bool creating = number != NULL;
        entered.x1 = EdcRound(org.x, EDC_NOISE);
        entered.y1 = EdcRound(org.y, EDC_NOISE);
        entered.x2 = EdcRound(end.x, EDC_NOISE);
        entered.y2 = EdcRound(end.y, EDC_NOISE);
        entered.count = creating ? TEdcInt() : TEdcInt(CountSel());
        TEdcDrawAlignDialog dialog(entered, creating);
        answered = dialog.Execute() == WIN_ID_OK; __test;
        if (answered)
            TakeAnswer(spec, creating);
        if (answered && creating)
            *number = entered.count.value;
    __point
        answered = false;
    __treat
    return answered;
}
