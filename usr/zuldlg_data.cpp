// The way of the design data into the records of their dialogs and back. A number loses the noise of sums on
// its way in; a value that is undefined on its way out leaves the hall's own.
#include "usr/zuldlg.h"
#include "usr/zulvalue.h"
#include "win/boxes.h"

#include "lib/xon.h"

namespace
{
void ExchangeInt(int mode, TEdcInt &value, int32_t &field)
{
    TEdcInt own(field);
    value.Exchange(mode, own);
    if (mode == EDC_XSTORE)
        field = own.value;
}

/// A number that chooses, as the state of a text; one outside the bounds chooses nothing.
void ExchangeChoice(int mode, TEdcShortStr &value, int32_t &field, int first, int last)
{
    if (mode == EDC_XLOAD)
        value.id = field >= first && field <= last ? field : static_cast<int>(EDC_VUDF);
    else if (mode == EDC_XSTORE && value.id >= first && value.id <= last)
        field = value.id;
}

std::optional<double> Given(const TEdcFloat &value)
{
    return value.id == EDC_VVAL ? std::optional<double>(value.value) : std::nullopt;
}

bool IsOn(const TEdcInt &box)
{
    return box.id == EDC_VVAL && box.value != 0;
}

/// Runs the dialog of a record that the hall's data fill. @param more  what else the dialog asks for
template <class DIALOG, class RECORD, class... MORE>
bool EditData(EmROOMDATA &data, MORE... more)
{
    bool confirmed = false;
    __enter
        RECORD record;
        record.Exchange(EDC_XLOAD, data);
        DIALOG dialog(record, more...);
        confirmed = dialog.Execute() == WIN_ID_OK; __test;
        if (confirmed)
            record.Exchange(EDC_XSTORE, data);
    __point
        confirmed = false;
    __treat
    return confirmed;
}
} // namespace

void TZulNewData::Reset()
{
    length.id = width.id = height.id = EDC_VUDF;
}

TZulUpdateData::TZulUpdateData() : height(0.0), draft(1), fineScale(1) {}

ZulPassParams TZulUpdateData::Params() const
{
    ZulPassParams params;
    params.height = height.value;
    params.minInte = Given(minInte);
    params.maxInte = Given(maxInte);
    params.airTemp = Given(airTemp);
    params.draft = IsOn(draft);
    params.fineScale = IsOn(fineScale);
    return params;
}

void TZulPeriodData::Exchange(int mode, EmROOMDATA &data)
{
    ExchangeInt(mode, periodDays, data.periodDays);
    ZulExchange(mode, meanOutTemp, data.meanOutTemp);
    ZulExchange(mode, designOutTemp, data.designOutTemp);
    ExchangeInt(mode, weekDays, data.weekDays);
    ZulExchange(mode, dayHours, data.dayHours);
    ZulExchange(mode, runAirTemp, data.runAirTemp);
    ZulExchange(mode, resultTemp, data.resultTemp);
    ZulExchange(mode, reducedAirTemp, data.reducedAirTemp);
}

void TZulInsulationData::Exchange(int mode, EmROOMDATA &data)
{
    ZulExchange(mode, floorK, data.constr[EM_FLOOR].k);
    ZulExchange(mode, floorTemp, data.constr[EM_FLOOR].tExt);
    ZulExchange(mode, wallK, data.constr[EM_WALLS].k);
    ZulExchange(mode, wallTemp, data.constr[EM_WALLS].tExt);
    ZulExchange(mode, ceilingK, data.constr[EM_CEILING].k);
    ZulExchange(mode, ceilingTemp, data.constr[EM_CEILING].tExt);
    ZulExchange(mode, airChange, data.airChange);
    ZulExchange(mode, airTemp, data.airTemp);
}

/// The hall's gain is in W, the dialog's in kW.
void TZulEnergyData::Exchange(int mode, EmROOMDATA &data)
{
    ExchangeChoice(mode, fuelType, data.fuelType, EM_NATURAL_GAS, EM_PROPANE);
    ZulExchange(mode, regulation, data.regulation);
    ZulExchange(mode, fuelPrice, data.fuelPrice);
    double kilowatts = data.techGain * 0.001;
    ZulExchange(mode, techGain, kilowatts);
    if (mode == EDC_XSTORE && techGain.id != EDC_VUDF)
        data.techGain = kilowatts * 1000;
}

void TZulHygieneData::Exchange(int mode, EmROOMDATA &data)
{
    enum { WORK_CLASS_MAX = 5 };
    ExchangeChoice(mode, workClass, data.workClass, 0, WORK_CLASS_MAX);
    ExchangeChoice(mode, position, data.position, EM_STANDING, EM_SITTING);
}

bool ZulEditPeriod(EmROOMDATA &data)
{
    return EditData<TZulPeriodDialog, TZulPeriodData>(data);
}

bool ZulEditInsulation(EmROOMDATA &data)
{
    return EditData<TZulInsulationDialog, TZulInsulationData>(data, data.designOutTemp);
}

bool ZulEditEnergy(EmROOMDATA &data)
{
    return EditData<TZulEnergyDialog, TZulEnergyData>(data);
}

bool ZulEditHygiene(EmROOMDATA &data)
{
    return EditData<TZulHygieneDialog, TZulHygieneData>(data);
}
