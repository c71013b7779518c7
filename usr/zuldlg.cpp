// The design dialogs as their users see them: what each field takes, which button fills which one, and the
// texts that change with a choice. Units stand beside the fields, so numbers are plain ones.
#include "usr/zuldlg.h"
#include "ker/emhygiene.h"
#include "lib/platform.h"
#include "usr/edcdraw_places.h"
#include "usr/edcutils.h"
#include "usr/zulhole.h"

#include <limits>

#include "lib/xon.h"

namespace
{
enum { TEXT_PRICE = 4600, TEXT_CONDITIONS = 4601 };
enum {
    DIALOG_NEW = 4500,
    DIALOG_UPDATE = 4501,
    DIALOG_PERIOD = 4502,
    DIALOG_INSULATION = 4503,
    DIALOG_ENERGY = 4504,
    DIALOG_HYGIENE = 4505
};
enum { ID_LENGTH = 100, ID_WIDTH = 101, ID_HEIGHT = 102 };
enum {
    ID_MAP_HEIGHT = 100,
    ID_MIN_INTE = 101,
    ID_MAX_INTE = 102,
    ID_MAP_AIR_TEMP = 103,
    ID_DRAFT = 104,
    ID_FINE_SCALE = 105
};
enum {
    ID_PERIOD_DAYS = 100,
    ID_MEAN_OUT_TEMP = 101,
    ID_DESIGN_OUT_TEMP = 102,
    ID_WEEK_DAYS = 103,
    ID_DAY_HOURS = 104,
    ID_RUN_AIR_TEMP = 105,
    ID_RESULT_TEMP = 106,
    ID_REDUCED_AIR_TEMP = 107
};
enum {
    ID_FLOOR_K = 100,
    ID_FIND_FLOOR = 101,
    ID_FLOOR_TEMP = 102,
    ID_WALL_K = 103,
    ID_FIND_WALL = 104,
    ID_WALL_TEMP = 105,
    ID_OUTSIDE_WALL = 106,
    ID_CEILING_K = 107,
    ID_FIND_CEILING = 108,
    ID_CEILING_TEMP = 109,
    ID_OUTSIDE_CEILING = 110,
    ID_AIR_CHANGE = 111,
    ID_AIR_TEMP = 112,
    ID_OUTSIDE_AIR = 113
};
enum { ID_FUEL = 100, ID_REGULATION = 101, ID_PRICE_LABEL = 102, ID_PRICE = 103, ID_TECH_GAIN = 104 };
enum { ID_WORK_CLASS = 100, ID_POSITION = 101, ID_CONDITIONS = 102 };

const double MOST = std::numeric_limits<double>::max(); // as good as no bound
const double LEAST_SIDE = 1;                            // m, of a hall
const double REGULATION_MAX = 1.1;
const double KILOWATTS_MAX = MOST / 1000; // stays finite in W; a file with an infinite gain could not be read
enum { YEAR_DAYS = 365, WEEK_DAYS = 7, DAY_HOURS = 24, WORK_CLASS_MAX = 5 };

/// A number that must be there.
TEdcEdit *AddReal(TEdcDialog *dialog, int id, double min, double max = MOST)
{
    return new TEdcEdit(dialog, id, SHORTSTRMAX, new TEdcFloatValidator(min, max, false, NULL));
}

/// Any number, or none.
void AddOptional(TEdcDialog *dialog, int id)
{
    new TEdcEdit(dialog, id, SHORTSTRMAX, new TEdcFloatValidator(-MOST, MOST, true, NULL));
}

void AddInt(TEdcDialog *dialog, int id, int max)
{
    new TEdcEdit(dialog, id, SHORTSTRMAX, new TEdcIntValidator(0, max, false));
}

/// A drop-down list of things that have numbers. One of them must be chosen: a number that the list does not
/// have shows as none.
class NumberBox : public TEdcComboBox
{
public:
    using NAME = const char *(*)(int number);

    NumberBox(TDialog *aDialog, int aResId, int aFirst, int aLast, NAME aName)
        : TEdcComboBox(aDialog, aResId, SHORTSTRMAX, new TEdcValueValidator(false)), first(aFirst), last(aLast),
          name(aName)
    {
    }

    void SetupWindow() override
    {
        TEdcComboBox::SetupWindow();
        for (int number = first; number <= last; ++number) {
            TEdcShortStr entry;
            entry.Set(number, name(number));
            Add(entry);
        }
    }

private:
    int first, last;
    NAME name;
};

/// The number of what is chosen, EDC_VUDF for none.
int Chosen(const TEdcComboBox &box)
{
    TEdcShortStr entry;
    box.GetValue(entry);
    return entry.id;
}
} // namespace

TZulNewDialog::TZulNewDialog(TZulNewData &data) : TEdcDialog(DIALOG_NEW, static_cast<TEdcValue *>(&data.length))
{
    AddReal(this, ID_LENGTH, LEAST_SIDE);
    AddReal(this, ID_WIDTH, LEAST_SIDE);
    AddReal(this, ID_HEIGHT, LEAST_SIDE);
}

TZulUpdateDialog::TZulUpdateDialog(TZulUpdateData &data)
    : TEdcDialog(DIALOG_UPDATE, static_cast<TEdcValue *>(&data.height))
{
    AddReal(this, ID_MAP_HEIGHT, 0);
    AddOptional(this, ID_MIN_INTE);
    AddOptional(this, ID_MAX_INTE);
    AddOptional(this, ID_MAP_AIR_TEMP);
    new TEdcCheckBox(this, ID_DRAFT);
    new TEdcCheckBox(this, ID_FINE_SCALE);
}

TZulPeriodDialog::TZulPeriodDialog(TZulPeriodData &data)
    : TEdcDialog(DIALOG_PERIOD, static_cast<TEdcValue *>(&data.periodDays))
{
    AddInt(this, ID_PERIOD_DAYS, YEAR_DAYS);
    AddReal(this, ID_MEAN_OUT_TEMP, -MOST);
    AddReal(this, ID_DESIGN_OUT_TEMP, -MOST);
    AddInt(this, ID_WEEK_DAYS, WEEK_DAYS);
    AddReal(this, ID_DAY_HOURS, 0, DAY_HOURS);
    AddReal(this, ID_RUN_AIR_TEMP, -MOST);
    AddReal(this, ID_RESULT_TEMP, -MOST);
    AddReal(this, ID_REDUCED_AIR_TEMP, -MOST);
}

TZulInsulationDialog::TZulInsulationDialog(TZulInsulationData &data, double designOutTemp)
    : TEdcDialog(DIALOG_INSULATION, static_cast<TEdcValue *>(&data.floorK)), outTemp(designOutTemp)
{
    floorK = AddReal(this, ID_FLOOR_K, 0);
    AddReal(this, ID_FLOOR_TEMP, -MOST);
    wallK = AddReal(this, ID_WALL_K, 0);
    wallTemp = AddReal(this, ID_WALL_TEMP, -MOST);
    ceilingK = AddReal(this, ID_CEILING_K, 0);
    ceilingTemp = AddReal(this, ID_CEILING_TEMP, -MOST);
    AddReal(this, ID_AIR_CHANGE, 0);
    airTemp = AddReal(this, ID_AIR_TEMP, -MOST);
}

void TZulInsulationDialog::Button(int id)
{
    switch (id) {
    case ID_FIND_FLOOR:
        return Find(*floorK);
    case ID_FIND_WALL:
        return Find(*wallK);
    case ID_FIND_CEILING:
        return Find(*ceilingK);
    case ID_OUTSIDE_WALL:
        return EdcShowNumber(*wallTemp, outTemp);
    case ID_OUTSIDE_CEILING:
        return EdcShowNumber(*ceilingTemp, outTemp);
    case ID_OUTSIDE_AIR:
        return EdcShowNumber(*airTemp, outTemp);
    default:
        return TEdcDialog::Button(id);
    }
}

/// The catalogue lives for this one use, so each press shows it as its file is now.
void TZulInsulationDialog::Find(TEdcEdit &edit)
{
    __enter
        TZulHoleTypeCatalog catalog(this);
        const TEdcCtlgChoice *choice = catalog.Select(); __test;
        if (choice != NULL)
            EdcShowNumber(edit, static_cast<TZulHoleTypeItem *>(choice->item)->record.transmission.value);
    __point
    __treat
}

TZulEnergyDialog::TZulEnergyDialog(TZulEnergyData &data)
    : TEdcDialog(DIALOG_ENERGY, static_cast<TEdcValue *>(&data.fuelType))
{
    fuel = new NumberBox(this, ID_FUEL, EM_NATURAL_GAS, EM_PROPANE, FuelName);
    AddReal(this, ID_REGULATION, 0, REGULATION_MAX);
    priceLabel = new TEdcStatic(this, ID_PRICE_LABEL);
    AddReal(this, ID_PRICE, 0);
    AddReal(this, ID_TECH_GAIN, 0, KILOWATTS_MAX);
}

void TZulEnergyDialog::Changed(HWND control)
{
    if (control == NULL || control == fuel->GetHandle())
        LabelPrice();
}

/// While no fuel is chosen the price has no unit.
void TZulEnergyDialog::LabelPrice()
{
    int chosen = Chosen(*fuel);
    if (chosen != EDC_VUDF)
        priceLabel->SetText(EdcResFormat(TEXT_PRICE, CurrencySymbol(), FuelUnit(chosen, false)).c_str());
}

TZulHygieneDialog::TZulHygieneDialog(TZulHygieneData &data)
    : TEdcDialog(DIALOG_HYGIENE, static_cast<TEdcValue *>(&data.workClass))
{
    workClass = new NumberBox(this, ID_WORK_CLASS, 0, WORK_CLASS_MAX, WorkName);
    new NumberBox(this, ID_POSITION, EM_STANDING, EM_SITTING, PositionName);
    conditions = new TEdcStatic(this, ID_CONDITIONS);
}

void TZulHygieneDialog::Changed(HWND control)
{
    if (control == NULL || control == workClass->GetHandle())
        ShowConditions();
}

void TZulHygieneDialog::ShowConditions()
{
    conditions->SetText(EdcResFormat(TEXT_CONDITIONS, WorkEnergy(Chosen(*workClass))).c_str());
}
