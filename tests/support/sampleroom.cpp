#include "support/sampleroom.h"

#include "lib/charstr.h"
#include "lib/disk.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <iterator>

// Models

namespace
{
/// A bell over the point below the emitter: reaches about twice each width.
struct BELL {
    double peak;       // W/m2
    double ax, ay, az; // m
    double skew;       // of the positive x side over the negative one, so that x and -x can be told apart
};

double BellAt(AgPOINT p, void *arg)
{
    const BELL *b = static_cast<const BELL *>(arg);
    double exponent = p.x * p.x / (b->ax * b->ax) + p.y * p.y / (b->ay * b->ay) + p.z * p.z / (b->az * b->az);
    return b->peak * std::exp(-exponent) * (1 + b->skew * std::tanh(p.x));
}

struct SAMPLEMODEL {
    const char *name; // as bytes of Windows-1252
    const char *description;
    double radiantPart;
    double power;        // W
    double reducedPower; // W
    BELL bell;
};

const SAMPLEMODEL sampleModels[SAMPLEMODELS::COUNT] = {
    {"Hellstrahler 12", "Hellstrahler, keramisch", 0.7, 12000, 12000, {180, 1.6, 1.4, 3.0, 0}},
    {"Dunkelstrahler_30 \xDC", "Dunkelstrahler, zweistufig", 0.55, 30000, 21000, {140, 3.1, 1.5, 3.5, 0.1}},
    {"Platte 100%", "Strahlplatte 100% ^2^ _n_", 0.62, 8500, 0, {60, 1.2, 1.2, 2.0, 0}},
    {"M\xFCller %s", "", 0.5, 45000, 30000, {250, 2.0, 2.6, 4.0, -0.2}},
    {"Ein Name von einunddrei\xDFig Z.%d",
     "Text mit 255 Zeichen gibt es auch",
     1.0,
     500,
     250,
     {20, 1, 1, 1, 0}},
};

/// Failures here are faults of the test's surroundings: nothing sensible can follow.
void Insist(bool good, const char *what)
{
    if (good && xCode == XNULL)
        return;
    fprintf(stderr, "cannot make the sample models: %s (%s %s:%d)\n", what, xCode, xFile, xLine);
    abort();
}
} // namespace

EmMODEL *SAMPLEMODELS::Make(int i)
{
    const SAMPLEMODEL &source = sampleModels[i];
    EmMODELINFO info;
    StrCopy(info.name, source.name, sizeof(info.name));
    StrCopy(info.description, source.description, sizeof(info.description));
    info.size = {1.5 + i, 0.4, 0.3};
    info.radiantPart = source.radiantPart;
    info.power = source.power;
    info.reducedPower = source.reducedPower;
    EmMODEL *model = new EmMODEL(info, NULL);
    BELL bell = source.bell;
    model->Compute(BellAt, &bell, 1.0);
    Insist(true, "table");
    return model;
}

SAMPLEMODELS::SAMPLEMODELS()
{
    char native[] = "/tmp/zulmodelsXXXXXX";
    char folder[sizeof(native)];
    Insist(mkdtemp(native) != NULL && NameFromNative(folder, native, sizeof(folder)), "folder");
    SetModelFolder(folder);
    for (int i = 0; i < COUNT; ++i) {
        std::unique_ptr<EmMODEL> fresh(Make(i));
        ModelSave(fresh.get());
        Insist(true, "save");
        models[i] = ModelAcquire(sampleModels[i].name);
        Insist(models[i] != NULL, "load");
    }
    SetModelFolder("");
    std::filesystem::remove_all(native);
}

SAMPLEMODELS::~SAMPLEMODELS()
{
    for (EmMODEL *model : models)
        ModelRelease(model);
}

// Halls

namespace
{
double Angle(CHANCE &chance)
{
    static const double quarters[] = {0, AgPI / 2, AgPI, -AgPI / 2};
    return chance.One(3) ? chance.Real(-AgPI, AgPI) : chance.Of(quarters);
}

/// A number as dialogs leave them, now and then as computations do.
double Number(CHANCE &chance, double lo, double hi)
{
    double value = chance.Real(lo, hi);
    return chance.One(4) ? value : std::round(value * 10) / 10;
}

void FillText(CHANCE &chance, char *text, int size, int most)
{
    static const char set[] =
        "abcdefghijklmnopqrstuvwxyzABCDEFGHIJ0123456789      \n,.-%%%___^^~\xE4\xF6\xFC\xC4"
        "\xD6\xDC\xDF\x80\\\"'";
    int length = chance.Int(0, std::min(size - 1, most));
    for (int i = 0; i < length; ++i)
        text[i] = set[chance.Int(0, static_cast<int>(sizeof(set)) - 2)];
    text[length] = EOS;
}

void AddEmitter(EmROOM &room, CHANCE &chance, EmMODEL *model)
{
    EmEMITTER *emitter = new EmEMITTER;
    emitter->SetModel(ModelAddRef(model));
    emitter->pos = {Number(chance, -2, room.Box().max.x + 2), Number(chance, -2, room.Box().max.y + 2),
                    Number(chance, 2, std::max(3.0, room.Box().max.z))};
    emitter->rotation = Angle(chance);
    emitter->tilt = chance.One(3) ? Number(chance, -1, 1) : 0;
    emitter->power = model != NULL && !chance.One(3) ? model->Info()->power : Number(chance, 0, 60000);
    emitter->Insert(room.Emitters());
}

void AddAirHeater(EmROOM &room, CHANCE &chance, int textLength)
{
    EmAIRHEATER *unit = new EmAIRHEATER;
    FillText(chance, unit->type, sizeof(unit->type), textLength);
    unit->power = Number(chance, 0, 80000);
    unit->tempRise = Number(chance, 5, 40);
    unit->airFlow = Number(chance, 500, 8000);
    unit->size = {Number(chance, 0.3, 2), Number(chance, 0.3, 2), Number(chance, 0.3, 2)};
    unit->pos = {Number(chance, 0, room.Box().max.x), Number(chance, 0, room.Box().max.y),
                 Number(chance, 0, 6)};
    unit->Insert(room.AirHeaters());
}

void AddHole(EmSURFACE &surface, CHANCE &chance, int textLength)
{
    EmHOLE *hole = new EmHOLE;
    hole->flags = chance.Int(0, 1);
    FillText(chance, hole->description, sizeof(hole->description), textLength);
    hole->size = {Number(chance, 0.5, 6), Number(chance, 0.5, 5)};
    hole->pos = {Number(chance, 0, surface.size.x), Number(chance, 0, surface.size.y)};
    hole->rotation = Angle(chance);
    hole->constr.k = Number(chance, 0.5, 6);
    hole->constr.tExt = Number(chance, -20, 20);
    hole->Insert(surface.Holes());
}

void AddZone(EmROOM &room, CHANCE &chance)
{
    EmZONE *zone = new EmZONE;
    zone->size = {Number(chance, 0.5, 10), Number(chance, 0.5, 10)};
    zone->pos = {Number(chance, 0, room.Box().max.x), Number(chance, 0, room.Box().max.y)};
    zone->rotation = Angle(chance);
    zone->Insert(room.Zones());
}

void FillData(EmROOMDATA &data, CHANCE &chance)
{
    for (EmCONSTRUCTION &constr : data.constr) {
        constr.k = Number(chance, 0.2, 4);
        constr.alpha = Number(chance, 5, 10);
        constr.tExt = Number(chance, -20, 10);
    }
    data.airChange = Number(chance, 0, 2);
    data.airTemp = Number(chance, -20, 10);
    data.periodDays = chance.Int(0, 365);
    data.weekDays = chance.Int(0, 7);
    data.dayHours = Number(chance, 0, 24);
    data.meanOutTemp = Number(chance, -5, 10);
    data.designOutTemp = Number(chance, -20, 0);
    data.runAirTemp = Number(chance, 5, 22);
    data.reducedAirTemp = Number(chance, 0, 15);
    data.resultTemp = Number(chance, 10, 22);
    data.fuelType = chance.Int(1, 2);
    data.regulation = Number(chance, 0, 1.1);
    data.fuelPrice = Number(chance, 0, 2);
    data.techGain = Number(chance, 0, 20) * 1000.0;
    data.workClass = chance.Int(0, 5);
    data.position = chance.Int(1, 2);
}

void FillTexts(EmROOM &room, CHANCE &chance, int textLength)
{
    EmARTICLE &article = *room.Article();
    article.level = chance.Int(1, 3);
    article.reserved = chance.Int(-3, 3);
    FillText(chance, article.head, sizeof(article.head), textLength);
    FillText(chance, article.text, sizeof(article.text), textLength);
    EmCONCLUSION &conclusion = *room.Conclusion();
    FillText(chance, conclusion.head, sizeof(conclusion.head), textLength);
    FillText(chance, conclusion.text, sizeof(conclusion.text), textLength * 3);
    FillText(chance, conclusion.author, sizeof(conclusion.author), textLength);
    conclusion.date = chance.Int(19950101, 20491231);
}
} // namespace

std::unique_ptr<EmROOM> MakeSampleRoom(unsigned start, const SAMPLEMODELS &models, const SAMPLECOUNTS &counts)
{
    CHANCE chance(start);
    auto room = std::make_unique<EmROOM>(Number(chance, 1, 120), Number(chance, 1, 60), Number(chance, 1, 15),
                                         "Einleitung", "Schlu\xDF", 20260115);
    for (int n = chance.Int(0, counts.emitters); n > 0; --n)
        AddEmitter(*room, chance, chance.One(5) ? NULL : models.Model(chance.Int(0, SAMPLEMODELS::COUNT - 1)));
    for (int n = chance.Int(0, counts.airHeaters); n > 0; --n)
        AddAirHeater(*room, chance, counts.textLength);
    for (EmSURFACE *surface = room->Surfaces()->First(); surface != NULL; surface = EmSURFACESET::Next(surface))
        for (int n = chance.Int(0, counts.holes); n > 0; --n)
            AddHole(*surface, chance, counts.textLength);
    for (int n = chance.Int(0, counts.zones); n > 0; --n)
        AddZone(*room, chance);
    FillData(*room->Data(), chance);
    FillTexts(*room, chance, counts.textLength);
    return room;
}

std::unique_ptr<EmROOM> MakeFullRoom(const SAMPLEMODELS &models)
{
    enum { TEXT = 40 };
    CHANCE chance(1);
    auto room = std::make_unique<EmROOM>(24.0, 12.0, 6.5, "Einleitung", "Schlu\xDF", 20260115);
    for (int i = 0; i < SAMPLEMODELS::COUNT; ++i)
        AddEmitter(*room, chance, models.Model(i));
    AddEmitter(*room, chance, NULL);
    AddAirHeater(*room, chance, TEXT);
    for (EmSURFACE *surface = room->Surfaces()->First(); surface != NULL; surface = EmSURFACESET::Next(surface))
        AddHole(*surface, chance, TEXT);
    AddZone(*room, chance);
    AddZone(*room, chance);
    FillData(*room->Data(), chance);
    FillTexts(*room, chance, TEXT);
    return room;
}

std::unique_ptr<EmROOM> MakeEmptyRoom()
{
    return std::make_unique<EmROOM>(0.0, 0.0, 0.0, "Entwurf", "Schlu\xDF", 20260115);
}

// Bytes

std::string RoomBytes(const EmROOM &room)
{
    CdeFILE file;
    file.Open(NULL, "c");
    room.Write(file);
    if (xCode != XNULL)
        return "";
    std::string bytes(static_cast<size_t>(file.Tell()), '\0');
    file.Seek(0);
    file.Read(bytes.data(), static_cast<int>(bytes.size()));
    file.Close();
    return bytes;
}

std::unique_ptr<EmROOM> RoomOfBytes(const std::string &bytes)
{
    auto room = MakeEmptyRoom();
    CdeFILE file;
    file.Open(NULL, "c");
    if (xCode == XNULL)
        file.Write(bytes.data(), static_cast<int>(bytes.size()));
    if (xCode == XNULL)
        file.Seek(0);
    room->Read(file);
    file.Close();
    return room;
}

XCODE TakeFailure()
{
    XCODE code = xCode;
    xCode = XNULL;
    return code;
}

// Questions

static double AskPoints(EmROOM &room)
{
    double sum = 0;
    for (double part : {0.0, 0.25, 0.5, 1.0}) {
        AgPOINT p = room.Box().min + (room.Box().max - room.Box().min) * part;
        double intensity = room.Irradiation(p);
        sum +=
            intensity + room.OperativeTemp(intensity, room.Data()->runAirTemp) + room.Surfaces()->Radiation(p);
    }
    return sum;
}

static double AskSurfaces(const EmROOM &room)
{
    double sum = 0;
    for (const EmSURFACE *s = room.Surfaces()->First(); s != NULL; s = EmSURFACESET::Next(s)) {
        EmCONSTRUCTION split;
        s->SplitAreas(&split, 1.5);
        sum += split.upperArea + split.lowerArea + s->Bounds().Length();
    }
    return sum;
}

double AskAll(EmROOM &room)
{
    room.Emitters()->Prepare();
    room.Surfaces()->Prepare();
    double airTemp = room.MaxAirTemp();
    room.Surfaces()->UpdateTemps(airTemp);
    double volume = 0, area = 0, emitters = 0, airHeaters = 0, loss = 0, amount = 0, cost = 0;
    room.VolumeAndArea(volume, area);
    room.Balance(emitters, airHeaters, loss);
    room.AnnualFuel(amount, cost);
    double bounds = room.Emitters()->Bounds().Length() + room.AirHeaters()->Bounds().Width() +
                    room.Zones()->Bounds().Height();
    return airTemp + volume + area + emitters + airHeaters + loss + amount + cost + room.MaxFuelRate() +
           bounds + AskPoints(room) + AskSurfaces(room);
}
