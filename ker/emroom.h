// The hall: one box with its design data, its envelope and what hangs and stands in it, and the thermal
// questions that can be asked of it. Plain records that dialogs and drawing layers write into directly; there
// is no setter layer, and derived fields are valid only after Prepare. A hall has six surfaces, some dozen
// openings and from a few to a few hundred emitters; every list is intrusive because members are moved, picked
// and deleted singly. Lengths in m, temperatures in degrees Celsius, powers in W, angles in radians. x along
// the length, y along the width, z up; the floor's corner is the origin.
#ifndef KER_EMROOM_H
#define KER_EMROOM_H

#include "ker/emmodel.h"
#include "lib/ag.h"
#include "lib/cde.h"
#include "lib/linkage.h"

#include <cstdint>

struct EmBOX {
    AgPOINT min;
    AgPOINT max;

    /// Sides along the axes, never negative.
    double Length() const;
    double Width() const;
    double Height() const;
};

/// The smallest box around both, whichever way round their corners stand.
EmBOX Union(const EmBOX &a, const EmBOX &b);

/// The thermal description of one kind of building element.
struct EmCONSTRUCTION {
    double k = 0;         // overall transmittance, W/(m2 K)
    double upperArea = 0; // m2 above the split height; scratch of the balance
    double lowerArea = 0; // m2 below it; scratch
    double alpha = 8.0;   // inside surface coefficient, W/(m2 K)
    double tExt = 0;      // temperature on the outer side, C
    double tSurf = 0;     // C, inside surface; result of UpdateTemps
    double qSurf = 0;     // W/m2, radiant excess of the surface over the air; result of UpdateTemps
};

enum { EM_FLOOR = 0, EM_CEILING = 1, EM_WALLS = 2 }; // of EmROOMDATA::constr
enum { EM_NATURAL_GAS = 1, EM_PROPANE = 2 };         // fuelType
enum { EM_STANDING = 1, EM_SITTING = 2 };            // position

/// The design data, as the dialogs edit them.
struct EmROOMDATA {
    EmCONSTRUCTION constr[3];  // floor (tExt: ground), ceiling, all walls
    double airChange = 0;      // 1/h, multiples of the hall's volume
    double airTemp = 0;        // C, incoming air
    int32_t periodDays = 0;    // heating season, 0 to 365
    int32_t weekDays = 0;      // operating days a week, 0 to 7
    double dayHours = 0;       // operating hours a day, 0 to 24
    double meanOutTemp = 0;    // C, mean of the season
    double designOutTemp = 0;  // C
    double runAirTemp = 0;     // C, while operating
    double reducedAirTemp = 0; // C, outside operating hours
    double resultTemp = 0;     // C, wanted operative temperature
    int32_t fuelType = EM_NATURAL_GAS;
    double regulation = 0; // effect of the controls, a factor, 0 to 1.1
    double fuelPrice = 0;  // currency per fuel unit (m3 of natural gas, kg of propane)
    double techGain = 0;   // W, permanent gain from technology
    int32_t workClass = 0; // 0 none, 1 I, 2 IIa, 3 IIb, 4 IIIa, 5 IIIb
    int32_t position = EM_STANDING;
};

struct EmARTICLE {
    int32_t level = 1;    // of the heading; 1 selects the large title form
    int32_t reserved = 0; // kept in files
    char head[256] = "";
    char text[256] = "";
};

struct EmCONCLUSION {
    char head[256] = "";
    char text[16384] = "";
    char author[32] = "";
    int32_t date = 0; // (year * 100 + month) * 100 + day

    EmCONCLUSION(const char *aHead, int aDate);
};

class EmSURFACE;

/// A rectangular opening in a surface, with a construction of its own.
class EmHOLE : public LINK
{
public:
    enum { OWN_TEMP = 1 }; // bit of flags: tExt is its own, not its surface's

    int32_t flags = 0;
    char description[256] = "";
    AgPOINT size;          // m: x width, y height
    AgPOINT pos;           // m: the centre, in the surface's coordinates
    double rotation = 0;   // in the surface's plane
    EmCONSTRUCTION constr; // tExt counts only with OWN_TEMP
    AgPOINT corners[4];    // derived: in the surface's coordinates
    AgTRANSFORM transform; // derived: hall to opening, origin in its first corner, before rotation

    EmHOLE() = default;
    EmHOLE(const EmHOLE &source);
    EmHOLE &operator=(const EmHOLE &) = delete;

    EmSURFACE *Surface() const;
    void Prepare();
    /// The opening's record with its areas above and below the height z of its surface's plan. Needs no
    /// Prepare.
    void Split(EmCONSTRUCTION *out, double z) const;
    /// What the opening adds to its surface's radiation at a hall point, W/m2; qOffset is the surface's own
    /// flux, negated.
    double Radiation(const AgPOINT &p, double qOffset) const;
    /// The temperature outside it, C.
    double OuterTemp() const;

    void Read(CdeFILE &file);
    void Write(CdeFILE &file) const;
};

class EmHOLESET : public LIST
{
public:
    EmSURFACE *const surface; // view; the owner of this set

    explicit EmHOLESET(EmSURFACE *owner) : surface(owner) {}
    EmHOLE *First() const { return static_cast<EmHOLE *>(LIST::First()); }
    static EmHOLE *Next(const EmHOLE *hole) { return static_cast<EmHOLE *>(hole->Next()); }
    void Read(CdeFILE &file);
    void Write(CdeFILE &file) const;
};

/// One side of the hall: a rectangle in space and its openings.
class EmSURFACE : public LINK
{
public:
    AgPOINT size;   // m: width along uAxis, height along vAxis
    AgPOINT origin; // hall coordinates of the corner from which both axes start
    AgPOINT uAxis;  // unit vectors of the plan; their cross product is the normal
    AgPOINT vAxis;
    EmCONSTRUCTION *constr; // view into EmROOMDATA
    AgTRANSFORM transform;  // derived: hall to surface; z is the signed distance from its plane

    explicit EmSURFACE(EmCONSTRUCTION *aConstr) : constr(aConstr), holes(this) {}
    EmSURFACE(const EmSURFACE &) = delete;
    EmSURFACE &operator=(const EmSURFACE &) = delete;

    void Set(const AgPOINT &aSize, const AgPOINT &aOrigin, const AgPOINT &aU, const AgPOINT &aV);
    EmHOLESET *Holes() { return &holes; }
    const EmHOLESET *Holes() const { return &holes; }

    void Prepare();
    EmBOX Bounds() const; // of the plan, widened to its openings' centres
    /// The surface's record with its net areas, openings taken off, above and below z.
    void SplitAreas(EmCONSTRUCTION *out, double z) const;
    /// Conductance and its product with the outer temperature, with openings: a, c below z and b, d above it;
    /// c and d in W/K, a and b in W C/K.
    void Transmission(double *a, double *b, double *c, double *d, double z) const;
    /// What the surface with its openings sends to a hall point, W/m2.
    double Radiation(const AgPOINT &p) const;

    void Read(CdeFILE &file);
    void Write(CdeFILE &file) const;

private:
    EmHOLESET holes;
};

/// The six surfaces: floor, ceiling, walls A (y = 0), B (x = L), C (y = W), D (x = 0).
class EmSURFACESET : public LIST
{
public:
    enum { COUNT = 6 };

    EmSURFACE *First() const { return static_cast<EmSURFACE *>(LIST::First()); }
    static EmSURFACE *Next(const EmSURFACE *surface) { return static_cast<EmSURFACE *>(surface->Next()); }
    EmSURFACE *Floor() const;
    EmSURFACE *Ceiling() const;
    EmSURFACE *FirstWall() const; // the walls are it and its three successors

    /// Empties the set and builds the six surfaces of a hall of dims (length, width, height); constr points to
    /// the three records of EmROOMDATA.
    void BuildSurfaces(const AgPOINT &dims, EmCONSTRUCTION *constr);
    void Prepare();
    /// Inside surface temperatures and radiant excess at an air temperature, C; the walls share one record.
    void UpdateTemps(double tAir);
    /// Totals of the surfaces for a split at height z. The ceiling is always above it, the floor below it if z
    /// is positive.
    void Transmission(double *a, double *b, double *c, double *d, double z) const;
    double Radiation(const AgPOINT &p) const; // of all surfaces, W/m2

    /// Refuses what no hall can have: fewer or more than six surfaces, or axes that span no plane
    /// (XCDE_INVOLVED).
    void Read(CdeFILE &file, EmCONSTRUCTION *constr);
    void Write(CdeFILE &file) const;
};

/// Share of a rectangle's flux that reaches a point, by solid angle over 2 pi.
/// The rectangle spans (0, 0) to (w, h) in the plane z = 0; the point stands at (px, py), pz above it.
/// No cosine: the receiver is a small sphere, not a plate.
/// @param q  flux of the rectangle over that of air, W/m2, may be negative (a cold window)
/// @return   W/m2; a point nearer than 1 cm counts as 1 cm away, so the plane itself stays finite
double RectangleFlux(double px, double py, double pz, double w, double h, double q);

class EmEMITTER : public LINK
{
public:
    EmMODEL *model = NULL; // counted; NULL while none is chosen
    AgPOINT pos;           // m, hall coordinates; z is the mounting height
    double rotation = 0;   // about the vertical
    double tilt = 0;       // about the body's long axis
    double power = 0;      // W, installed
    AgTRANSFORM transform; // derived: hall to model
    double scale = 0;      // derived: power over the model's nominal power

    EmEMITTER() = default;
    EmEMITTER(const EmEMITTER &source);
    ~EmEMITTER() override;
    EmEMITTER &operator=(const EmEMITTER &source);

    void SetModel(EmMODEL *m); // takes over the caller's reference
    void Reset();
    void Prepare();
    double Irradiation(const AgPOINT &p) const; // W/m2 at a hall point

    void Read(CdeFILE &file); // acquires the model: fails where its file is missing
    void Write(CdeFILE &file) const;
};

class EmEMITTERSET : public LIST
{
public:
    EmEMITTER *First() const { return static_cast<EmEMITTER *>(LIST::First()); }
    static EmEMITTER *Next(const EmEMITTER *emitter) { return static_cast<EmEMITTER *>(emitter->Next()); }
    EmBOX Bounds() const;        // of the positions; zeros for an empty set
    double NominalPower() const; // W, of the models, not as installed
    void Prepare();
    void Read(CdeFILE &file);
    void Write(CdeFILE &file) const;
};

/// A warm-air unit: data for lists and drawing.
class EmAIRHEATER : public LINK
{
public:
    char type[32] = "";
    double power = 0;    // W
    double tempRise = 0; // K
    double airFlow = 0;  // m3/h
    AgPOINT size;        // m: length, width, height
    AgPOINT pos;         // m, hall coordinates

    EmAIRHEATER() = default;
    EmAIRHEATER(const EmAIRHEATER &source) = default;
    EmAIRHEATER &operator=(const EmAIRHEATER &) = delete;

    void Read(CdeFILE &file);
    void Write(CdeFILE &file) const;
};

class EmAIRHEATERSET : public LIST
{
public:
    EmAIRHEATER *First() const { return static_cast<EmAIRHEATER *>(LIST::First()); }
    static EmAIRHEATER *Next(const EmAIRHEATER *unit) { return static_cast<EmAIRHEATER *>(unit->Next()); }
    EmBOX Bounds() const;
    /// Always 0: warm-air units enter neither balance nor fuel nor hygiene. The one place where that is
    /// decided.
    double TotalPower() const { return 0.0; }
    void Read(CdeFILE &file);
    void Write(CdeFILE &file) const;
};

/// A marked rectangle of permanent occupancy; no computation reads it.
class EmZONE : public LINK
{
public:
    AgPOINT size; // m: sides
    AgPOINT pos;  // m, on the floor plan
    double rotation = 0;

    EmZONE() = default;
    EmZONE(const EmZONE &source) = default;
    EmZONE &operator=(const EmZONE &) = delete;

    void Read(CdeFILE &file);
    void Write(CdeFILE &file) const;
};

class EmZONESET : public LIST
{
public:
    EmZONE *First() const { return static_cast<EmZONE *>(LIST::First()); }
    static EmZONE *Next(const EmZONE *zone) { return static_cast<EmZONE *>(zone->Next()); }
    EmBOX Bounds() const; // z is 0
    void Read(CdeFILE &file);
    void Write(CdeFILE &file) const;
};

class EmROOM
{
public:
    EmROOM(double length, double width, double height, const char *articleHead, const char *conclusionHead,
           int date);
    EmROOM(const EmROOM &) = delete;
    EmROOM &operator=(const EmROOM &) = delete;

    /// Reads a whole hall document, from where the file stands, and replaces what the room holds. The bytes are
    /// walked first; what no hall can have is XCDE_INVOLVED. After a failure the room is partly filled and only
    /// good to be deleted.
    void Read(CdeFILE &file);
    void Write(CdeFILE &file) const;

    EmBOX Box() const { return box; }
    EmROOMDATA *Data() { return &data; }
    const EmROOMDATA *Data() const { return &data; }
    EmEMITTERSET *Emitters() { return &emittSet; }
    const EmEMITTERSET *Emitters() const { return &emittSet; }
    EmAIRHEATERSET *AirHeaters() { return &airhtSet; }
    const EmAIRHEATERSET *AirHeaters() const { return &airhtSet; }
    EmSURFACESET *Surfaces() { return &surfSet; }
    const EmSURFACESET *Surfaces() const { return &surfSet; }
    EmZONESET *Zones() { return &zoneSet; }
    const EmZONESET *Zones() const { return &zoneSet; }
    EmARTICLE *Article() { return &articObj; }
    const EmARTICLE *Article() const { return &articObj; }
    EmCONCLUSION *Conclusion() { return &conclObj; }
    const EmCONCLUSION *Conclusion() const { return &conclObj; }

    /// Sum of the emitters at a hall point, W/m2, in the order of the set. The hall's surfaces do not enter it.
    double Irradiation(const AgPOINT &p) const;
    /// What a person feels, C: three quarters air, one quarter the radiant temperature that the air's
    /// black-body level plus the intensity (W/m2) corresponds to. Not a number where that sum is negative.
    double OperativeTemp(double intensity, double airTemp) const;

    /// The air temperature at 1.5 m that the emitters can hold, C: two zones split at their mean height, or one
    /// zone where that does not stratify.
    double MaxAirTemp() const;
    void VolumeAndArea(double &volume, double &area) const; // m3, m2
    /// Installed powers and heat loss at the operating air temperature, W.
    void Balance(double &emitters, double &airHeaters, double &loss) const;
    void AnnualFuel(double &amount, double &cost) const; // fuel units and currency a year
    double MaxFuelRate() const;                          // fuel units an hour, from the models' nominal power
    double HeatValue() const;                            // MJ per fuel unit; 0 for an unknown fuel

private:
    EmBOX box;
    EmROOMDATA data; // the surfaces point into it
    EmEMITTERSET emittSet;
    EmAIRHEATERSET airhtSet;
    EmSURFACESET surfSet;
    EmZONESET zoneSet;
    EmARTICLE articObj;
    EmCONCLUSION conclObj;

    double VentilationConductance() const; // W/K
    void Empty();
    void BuildOldSurfaces();
    void ReadEnvelope(CdeFILE &file);
    void ReadBox(CdeFILE &file);
    void WriteBox(CdeFILE &file) const;
    void ReadData(CdeFILE &file);
    void ReadSeason(CdeFILE &file);
    void WriteData(CdeFILE &file) const;
    void ReadArticle(CdeFILE &file);
    void WriteArticle(CdeFILE &file) const;
    void ReadConclusion(CdeFILE &file);
    void WriteConclusion(CdeFILE &file) const;
};

#endif
