// The design dialogs: what a designer enters about a hall that is not drawn. The four data dialogs work on
// EmROOMDATA through a record of values, so that a field that was left undefined is not touched; "Neu" fills
// the sizes that make the hall, "Aktualisierung" the parameters of one evaluation, which no file keeps.
#ifndef USR_ZULDLG_H
#define USR_ZULDLG_H

#include "ker/emroom.h"
#include "usr/edcdlg.h"
#include "usr/zulpass.h"

/// What "Neu" asks for.
struct TZulNewData {
    TEdcFloat length; // m
    TEdcFloat width;
    TEdcFloat height;

    void Reset(); // all undefined
};

/// What "Aktualisierung" asks for. A limit or an air temperature that is undefined is found by the evaluation.
struct TZulUpdateData {
    TEdcFloat height;  // m, of the map above the floor
    TEdcFloat minInte; // W/m2, lower end of the colour scale
    TEdcFloat maxInte;
    TEdcFloat airTemp; // C
    TEdcInt draft;     // coarse raster
    TEdcInt fineScale;

    TZulUpdateData(); // as in a new document: height 0, both boxes on
    ZulPassParams Params() const;
};

class TZulNewDialog : public TEdcDialog
{
public:
    explicit TZulNewDialog(TZulNewData &data); // a view, as in all of them
};

class TZulUpdateDialog : public TEdcDialog
{
public:
    explicit TZulUpdateDialog(TZulUpdateData &data);
};

/// Climate and operating mode, in the order of the dialog's controls.
struct TZulPeriodData {
    TEdcInt periodDays;
    TEdcFloat meanOutTemp;   // C
    TEdcFloat designOutTemp; // C
    TEdcInt weekDays;
    TEdcFloat dayHours;       // h
    TEdcFloat runAirTemp;     // C
    TEdcFloat resultTemp;     // C
    TEdcFloat reducedAirTemp; // C

    void Exchange(int mode, EmROOMDATA &data); // EDC_XLOAD and EDC_XSTORE
};

class TZulPeriodDialog : public TEdcDialog
{
public:
    explicit TZulPeriodDialog(TZulPeriodData &data);
};

/// Constructions and air change: floor, walls, ceiling, incoming air.
struct TZulInsulationData {
    TEdcFloat floorK;    // W/(m2 K)
    TEdcFloat floorTemp; // C, of the ground
    TEdcFloat wallK;
    TEdcFloat wallTemp; // C, outside
    TEdcFloat ceilingK;
    TEdcFloat ceilingTemp;
    TEdcFloat airChange; // 1/h
    TEdcFloat airTemp;   // C, of the incoming air

    void Exchange(int mode, EmROOMDATA &data);
};

/// "Finde" takes a transmittance from the catalogue of building elements, "Außen" the design outdoor
/// temperature; both only fill a field.
class TZulInsulationDialog : public TEdcDialog
{
public:
    /// @param designOutTemp  C, as the hall has it now
    TZulInsulationDialog(TZulInsulationData &data, double designOutTemp);
    void Button(int id) override;

private:
    void Find(TEdcEdit &edit);
    double outTemp; // C
    // What the buttons fill; the dialog's.
    TEdcEdit *floorK, *wallK, *wallTemp, *ceilingK, *ceilingTemp, *airTemp;
};

/// Fuel and gain.
struct TZulEnergyData {
    TEdcShortStr fuelType; // id: EM_NATURAL_GAS, EM_PROPANE
    TEdcFloat regulation;
    TEdcFloat fuelPrice; // currency per fuel unit
    TEdcFloat techGain;  // kW

    void Exchange(int mode, EmROOMDATA &data);
};

class TZulEnergyDialog : public TEdcDialog
{
public:
    explicit TZulEnergyDialog(TZulEnergyData &data);
    void Changed(HWND control) override;

private:
    void LabelPrice();
    TEdcComboBox *fuel;
    TEdcStatic *priceLabel;
};

/// Working conditions.
struct TZulHygieneData {
    TEdcShortStr workClass; // id: 0 to 5
    TEdcShortStr position;  // id: EM_STANDING, EM_SITTING

    void Exchange(int mode, EmROOMDATA &data);
};

class TZulHygieneDialog : public TEdcDialog
{
public:
    explicit TZulHygieneDialog(TZulHygieneData &data);
    void Changed(HWND control) override;

private:
    void ShowConditions();
    TEdcComboBox *workClass;
    TEdcStatic *conditions;
};

// A data dialog from filling its record to storing it. @return whether the dialog ended with OK; what follows
// an edit is the caller's.
bool ZulEditPeriod(EmROOMDATA &data);
bool ZulEditInsulation(EmROOMDATA &data);
bool ZulEditEnergy(EmROOMDATA &data);
bool ZulEditHygiene(EmROOMDATA &data);

#endif
