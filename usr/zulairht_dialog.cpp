// The dialog of a warm-air unit: it shows what the unit is, takes another from the catalogue, or takes it off.
#include "usr/edcutils.h"
#include "usr/zulairht.h"

#include <string>

#include "lib/xon.h"

namespace
{
enum { DIALOG_AIR_HEATER = 2510 };
enum { ID_TEXT = 100, ID_REMOVE = 101, ID_CHANGE = 102, ID_OK = 1 };
enum { TEXT_TYPE = 2521, TEXT_OUTPUT = 2522, TEXT_RISE = 2523, TEXT_FLOW = 2524, TEXT_SIZE = 2525 };

std::string Number(const TEdcFloat &value)
{
    return value.id == EDC_VVAL ? EdcFormat("%lg", EdcRound(value.value, EDC_NOISE)) : std::string();
}

std::string Line(int label, const std::string &value, const char *unit)
{
    std::string line = GetResString(label) + value;
    if (!value.empty())
        line += unit;
    return line + "\n";
}

std::string Sizes(const TZulAirHeaterData &data)
{
    if (data.length.id != EDC_VVAL || data.width.id != EDC_VVAL || data.height.id != EDC_VVAL)
        return "";
    return Number(data.length) + " x " + Number(data.width) + " x " + Number(data.height);
}
} // namespace

TZulAirHeaterDialog::TZulAirHeaterDialog(TZulAirHeaterData &aData)
    : TEdcDialog(DIALOG_AIR_HEATER), data(aData), copy(aData)
{
    text = new TEdcStatic(this, ID_TEXT);
    ok = new TEdcButton(this, ID_OK);
}

void TZulAirHeaterDialog::Changed(HWND control)
{
    if (control == NULL)
        ShowUnit();
}

void TZulAirHeaterDialog::ShowUnit()
{
    std::string shown = Line(TEXT_TYPE, copy.typeName.id == EDC_VVAL ? copy.typeName.text : "", "");
    if (copy.typeName.id != EDC_VNUL) {
        shown += Line(TEXT_OUTPUT, Number(copy.output), " W");
        shown += Line(TEXT_RISE, Number(copy.tempRise), " K");
        shown += Line(TEXT_FLOW, Number(copy.airFlow), " m\xB3/h");
        shown += Line(TEXT_SIZE, Sizes(copy), " m");
    }
    text->SetText(shown.c_str());
}

void TZulAirHeaterDialog::Button(int id)
{
    __enter
        switch (id) {
        case ID_REMOVE:
            copy.Reset();
            ShowUnit();
            ok->TakeFocus();
            break;
        case ID_CHANGE:
            ChooseUnit();
            break;
        case ID_OK: {
            EmAIRHEATERSET *target = data.target;
            data = copy;
            data.target = target;
            TEdcDialog::Button(id);
            break;
        }
        default:
            TEdcDialog::Button(id);
        }
        __test;
    __point
    __treat
}

/// The catalogue lives for this one use.
void TZulAirHeaterDialog::ChooseUnit()
{
    __enter
        TZulAirHeaterTypeCatalog catalog(this);
        auto *chosen = static_cast<TZulAirHeaterTypeItem *>(catalog.Select()); __test;
        if (chosen) {
            copy = chosen->data;
            ShowUnit();
        }
    __point
    __treat
}
