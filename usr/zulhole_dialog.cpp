// The dialog of the openings.
#include "usr/edcdraw_places.h"
#include "usr/edcutils.h"
#include "usr/zulhole.h"

#include <limits>
#include <string>

#include "lib/xon.h"

namespace
{
enum { DIALOG_HOLE = 3010 };
enum {
    ID_DESCRIPTION = 100,
    ID_TRANSMISSION = 101,
    ID_FIND = 102,
    ID_WIDTH_LABEL = 103,
    ID_WIDTH = 104,
    ID_HEIGHT_LABEL = 105,
    ID_HEIGHT = 106,
    ID_OWN_TEMP = 107,
    ID_EXTERNAL_TEMP = 108
};
constexpr double MOST = std::numeric_limits<double>::max(); // as good as no bound
constexpr double LEAST_SIDE = 0.01;                         // m
} // namespace

TZulHoleDialog::TZulHoleDialog(TZulHoleData &data, FORM form)
    : TEdcDialog(DIALOG_HOLE, static_cast<TEdcValue *>(&data.description)), isDrawn(form == DRAWN)
{
    bool mayLack = form == EDITING;
    auto number = [this](int id, double min, bool lacks) {
        return new TEdcEdit(this, id, SHORTSTRMAX, new TEdcFloatValidator(min, MOST, lacks, NULL));
    };
    description = new TEdcEdit(this, ID_DESCRIPTION, LONGSTRMAX, new TEdcValueValidator(mayLack));
    transmission = number(ID_TRANSMISSION, 0, mayLack);
    sizes[0] = number(ID_WIDTH, LEAST_SIDE, mayLack || isDrawn);
    sizes[1] = number(ID_HEIGHT, LEAST_SIDE, mayLack || isDrawn);
    ownTemp = new TEdcCheckBox(this, ID_OWN_TEMP, NULL, mayLack);
    externalTemp = number(ID_EXTERNAL_TEMP, -MOST, mayLack);
    sizes[2] = new TEdcStatic(this, ID_WIDTH_LABEL);
    sizes[3] = new TEdcStatic(this, ID_HEIGHT_LABEL);
}

void TZulHoleDialog::Changed(HWND control)
{
    if (control == NULL)
        Opened();
    if (control == NULL || control == ownTemp->GetHandle())
        externalTemp->EnableWindow(ownTemp->IsChecked());
}

/// A drawing has its size already; a temperature of its own that nobody stated is none.
void TZulHoleDialog::Opened()
{
    for (TControl *control : sizes)
        control->EnableWindow(!isDrawn);
    TEdcShortStr shown;
    externalTemp->GetValue(shown);
    if (ownTemp->IsChecked() && shown.id == EDC_VUDF)
        ownTemp->SetValue(0);
}

void TZulHoleDialog::Button(int id)
{
    __enter
        if (id == ID_FIND) {
            Find(); __test;
        } else {
            TEdcDialog::Button(id); __test;
        }
    __point
    __treat
}

void TZulHoleDialog::Find()
{
    __enter
        TZulHoleTypeCatalog catalog(this);
        const TEdcCtlgChoice *choice = catalog.Select(); __test;
        if (choice) {
            const auto &type = static_cast<TZulHoleTypeItem *>(choice->item)->record;
            TEdcLongStr text;
            text = (std::string(choice->group->name) + ", " + type.name.text).c_str();
            description->SetValue(text);
            EdcShowNumber(*transmission, type.transmission.value);
        }
    __point
    __treat
}
