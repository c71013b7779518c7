// The dialog of the emitters. What the output may be follows from the model.
#include "lib/cde.h"
#include "lib/disk.h"
#include "usr/edcutils.h"
#include "usr/zuldoc.h"
#include "usr/zulemitt.h"

#include <algorithm>
#include <limits>

#include "lib/xon.h"

namespace
{
enum { DIALOG_EMITTER = 2010 };
enum { ID_MODEL = 100, ID_OUTPUT = 101, ID_INFO = 102, ID_HEIGHT = 103, ID_TILT = 104 };
enum { TEXT_NOTHING = 20510, TEXT_CHOICE = 20511, TEXT_MODEL_TIP = 2011, TEXT_REDUCED_TIP = 2012 };
constexpr double MOST = std::numeric_limits<double>::max(); // as good as no bound
constexpr double TILT_MAX = 89;                             // degrees

/// An entry that stands for no text of its own: Add() shows one that is undefined as empty.
void AddStandIn(TEdcComboBox &box, int id, int text)
{
    int entry = box.AddString(GetResString(text));
    if (entry >= 0)
        box.SetItemData(entry, id);
}

/// The models of the folder, and what stands for none and for several.
class ModelBox : public TEdcComboBox
{
public:
    ModelBox(TDialog *aDialog, bool anEditing)
        : TEdcComboBox(aDialog, ID_MODEL, SHORTSTRMAX, new TEdcValueValidator(anEditing), EDC_CfCASE),
          editing(anEditing)
    {
    }

    /// By name alone: a folder may hold thousands.
    void SetupWindow() override
    {
        TEdcComboBox::SetupWindow();
        __enter
            if (editing)
                AddStandIn(*this, EDC_VUDF, TEXT_CHOICE);
            AddStandIn(*this, EDC_VNUL, TEXT_NOTHING);
            ModelList(MODEL_OPEN); __test;
            for (;;) {
                const EmMODELINFO *info = ModelList(MODEL_NAME); __test;
                if (!info)
                    break;
                TEdcShortStr entry;
                entry.Set(EDC_VVAL, info->name);
                Add(entry);
            }
            ModelList(MODEL_CLOSE);
        __point
            ModelList(MODEL_CLOSE);
        __treat
    }

private:
    bool editing;
};

TEdcShortStr OutputText(double output)
{
    TEdcShortStr text;
    text.SetFloat(TEdcFloat(EdcRound(output, EDC_NOISE)), -1, NULL);
    return text;
}

CdeFILENAME DataSheet(const char *model)
{
    CdeFILENAME path(ProgramFolder());
    path.AddName("Modely");
    path.AddName((std::string(model) + ".pdf").c_str());
    return path;
}

std::string TechnicalData(const EmMODELINFO &info)
{
    std::string text = EdcResFormat(TEXT_MODEL_TIP, info.description, info.size.x, info.size.y, info.size.z,
                                    info.power, info.radiantPart * 100);
    if (info.power > info.reducedPower)
        text += EdcResFormat(TEXT_REDUCED_TIP, info.reducedPower);
    return text;
}
} // namespace

TZulEmitterDialog::TZulEmitterDialog(TZulEmitterData &data, bool anEditing)
    : TEdcDialog(DIALOG_EMITTER, static_cast<TEdcValue *>(&data.modelName)), editing(anEditing)
{
    model = new ModelBox(this, editing);
    range = new TEdcFloatValidator(0, MOST, editing, NULL);
    output = new TEdcComboBox(this, ID_OUTPUT, SHORTSTRMAX, range);
    new TEdcEdit(this, ID_HEIGHT, SHORTSTRMAX, new TEdcFloatValidator(0, MOST, editing, NULL));
    new TEdcEdit(this, ID_TILT, SHORTSTRMAX, new TEdcFloatValidator(-TILT_MAX, TILT_MAX, editing, NULL));
    techInfo = new TEdcButton(this, ID_INFO);
}

void TZulEmitterDialog::Changed(HWND control)
{
    __enter
        if (control == NULL)
            output->GetValue(own);
        if (control == NULL || control == model->GetHandle()) {
            TEdcShortStr name;
            model->GetValue(name);
            techInfo->EnableWindow(name.id == EDC_VVAL && DiskHas(DataSheet(name.text)));
            model->SetTip("");
            FillOutputs(name); __test;
        }
    __point
    __treat
}

void TZulEmitterDialog::FillOutputs(const TEdcShortStr &name)
{
    __enter
        output->ClearList();
        output->EnableWindow(name.id == EDC_VVAL);
        if (name.id == EDC_VVAL) {
            OfferOutputs(name.text); __test;
        } else {
            ShowFixed(name.id);
        }
    __point
    __treat
}

/// Without a model nothing is left to choose: there is no power, or each emitter keeps its own.
void TZulEmitterDialog::ShowFixed(int modelId)
{
    SetRange(0, 0);
    output->SetTip("");
    if (modelId == EDC_VUDF)
        AddStandIn(*output, EDC_VUDF, TEXT_CHOICE);
    else
        output->Add(OutputText(0));
    output->SetSelIndex(0);
}

/// The record's own output goes with the record's model, another model comes with its nominal one. Of a damaged
/// model nothing is known: what was there stays, anything may be entered.
void TZulEmitterDialog::OfferOutputs(const char *name)
{
    __enter
        bool unchanged = !model->IsChanged();
        TEdcShortStr shown;
        if (unchanged)
            shown = own;
        if (editing && unchanged)
            AddStandIn(*output, EDC_VUDF, TEXT_CHOICE);
        output->SetValue(shown);
        SetRange(0, MOST);
        const EmMODELINFO *info = ModelInfo(name); __test;
        model->SetTip(TechnicalData(*info).c_str());
        TEdcShortStr nominal = OutputText(info->power);
        TEdcShortStr reduced = OutputText(info->reducedPower);
        output->Add(nominal);
        if (info->power > info->reducedPower)
            output->Add(reduced);
        // An output that is offered is within the range, whatever digits its text has dropped.
        SetRange(std::min(info->reducedPower, std::min(info->power, reduced.GetFloat(NULL).value)),
                 std::max(info->power, nominal.GetFloat(NULL).value));
        output->SetValue(unchanged ? own : nominal);
    __point
    __treat
}

void TZulEmitterDialog::SetRange(double least, double most)
{
    range->SetRange(least, most);
    output->SetTip(range->Hint().c_str());
}

void TZulEmitterDialog::Button(int id)
{
    __enter
        if (id == ID_INFO) {
            TEdcShortStr name;
            model->GetValue(name);
            ZulShowPdf(this, DataSheet(name.text)); __test;
        } else {
            TEdcDialog::Button(id); __test;
        }
    __point
    __treat
}
