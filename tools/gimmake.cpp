// gimmake: makes an emission model from a description of the emitter: a flat radiant panel, a tube with
// reflector, or a measured table of radiant intensity. docs/emission-models.md holds the physics.
#include "ker/emmodel.h"
#include "lib/charstr.h"
#include "lib/disk.h"
#include "tools/console.h"
#include "tools/gimcsv.h"
#include "tools/gimfield.h"
#include "usr/edcutils.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>
#include <memory>
#include <optional>

#include "lib/xon.h"

namespace
{
enum { DONE = 0, FAILED = 1, MISUSED = 2 }; // exit status

enum { PANEL = 1, TUBE = 2, TABLE = 4, ALL = PANEL | TUBE | TABLE };

// The order of the table of quantities below.
enum {
    LENGTH,
    WIDTH,
    HEIGHT,
    POWER,
    REDUCED,
    RADIANT,
    DOWNWARD,
    BEAM,
    BEAM_ALONG,
    STOP,
    SMOOTH,
    SMOOTH_PASSES,
    FILL_GAPS,
    QUANTITIES
};

const double NONE = std::numeric_limits<double>::quiet_NaN(); // no value: the option must be given
const double REACH_MAX = 100;                                 // m; such a table has some two million values
const int FILE_MAX = 1 << 20;                                 // bytes of a CSV file

struct QUANTITY {
    const char *option;
    int kinds; // that take it
    double low;
    double high;
    const char *unit;
    const char *help;
    double value; // the default until it is read
    bool whole = false;
    std::optional<std::string> text = {}; // as given
};

/// The order of the command line: what kind, and all that was said about it.
struct ORDER {
    QUANTITY quantities[QUANTITIES] = {
        {"--length", ALL, 0.1, 50, "m", "Länge des Körpers", NONE},
        {"--width", ALL, 0.05, 10, "m", "Breite des Körpers", NONE},
        {"--height", ALL, 0.02, 5, "m", "Höhe des Körpers", NONE},
        {"--power", ALL, 100, 500000, "W", "Nennleistung", NONE},
        {"--reduced-power", ALL, 1, 500000, "W", "Leistung der zweiten Stufe; ohne sie gibt es keine", NONE},
        {"--radiant-part", ALL, 0.05, 1, "", "Anteil der Leistung, der als Strahlung abgeht", NONE},
        {"--downward-share", ALL, 0.05, 1, "", "Anteil der Strahlung, der nach unten geht", 1},
        {"--beam", PANEL | TUBE, 0, 50, "", "Exponent n der Strahlstärke cos^n, beim Rohr quer zum Körper", 1},
        {"--beam-along", TUBE, 0, 50, "", "Exponent der Strahlstärke längs des Rohrs", 1},
        {"--stop", ALL, 0.1, 1000, "W/m2", "Bestrahlungsstärke, unter der die Tabelle endet", 2},
        {"--smooth", ALL, 0, 1, "", "glättet die Tabelle mit diesem Gewicht der Nachbarn", 0},
        {"--smooth-passes", ALL, 1, 100, "", "Durchgänge des Glättens", 1, true},
        {"--fill-gaps", ALL, 0, 100, "", "Durchgänge, die leere Zellen aus den Nachbarn füllen", 0, true},
    };
    std::string output;
    std::string description;
    std::string csv;
    std::vector<std::string> points; // "X,Y,Z"
    std::vector<AgPOINT> probes;     // the same as numbers
    int kind = 0;
    EmMODELINFO info;
    char folder[X_NAME] = "";

    double operator[](int quantity) const { return quantities[quantity].value; }
};

void Complain(std::string text)
{
    ConsoleDisarm(text.data());
    std::fprintf(stderr, "gimmake: %s\n", text.c_str());
}

int Misused(const std::string &text)
{
    Complain(text);
    return MISUSED;
}

/// "" or what is wrong with a quantity that was given, or was not.
std::string ReadQuantity(QUANTITY &q)
{
    if (!q.text)
        return "";
    if (!ParseNumber(*q.text, q.value))
        return EdcFormat("%s: \"%s\" ist keine Zahl.", q.option, q.text->c_str());
    if (!(q.value >= q.low && q.value <= q.high))
        return EdcFormat("%s: %s liegt nicht zwischen %g und %g%s%s.", q.option, q.text->c_str(), q.low, q.high,
                         *q.unit ? " " : "", q.unit);
    if (q.whole && q.value != std::floor(q.value))
        return EdcFormat("%s: %s ist keine ganze Zahl.", q.option, q.text->c_str());
    return "";
}

std::string ReadQuantities(ORDER &order)
{
    for (QUANTITY &q : order.quantities) {
        std::string wrong = ReadQuantity(q);
        if (!wrong.empty())
            return wrong;
        if ((q.kinds & order.kind) && std::isnan(q.value) && &q != order.quantities + REDUCED)
            return EdcFormat("%s fehlt.", q.option);
    }
    if (order[REDUCED] > order[POWER])
        return "--reduced-power: Die zweite Stufe liegt über der Nennleistung.";
    if (std::isnan(order[REDUCED]))
        order.quantities[REDUCED].value = order[POWER];
    return "";
}

std::string ReadPoint(const std::string &text, AgPOINT &p)
{
    double *coordinates[] = {&p.x, &p.y, &p.z};
    size_t from = 0;
    for (int i = 0; i < 3; ++i) {
        size_t end = i < 2 ? text.find(',', from) : text.size();
        if (end == std::string::npos || !ParseNumber(text.substr(from, end - from), *coordinates[i]))
            return EdcFormat("--point: \"%s\" ist kein Punkt X,Y,Z.", text.c_str());
        from = end + 1;
    }
    return "";
}

/// Takes the output's name apart: the folder, and the base name as the name of the model.
std::string ReadOutput(ORDER &order)
{
    const std::string extension = ".gim";
    size_t slash = order.output.rfind('/');
    std::string folder = slash == std::string::npos ? "." : slash == 0 ? "/" : order.output.substr(0, slash);
    std::string file = order.output.substr(slash == std::string::npos ? 0 : slash + 1);
    if (order.output.empty())
        return "--output fehlt.";
    if (file.size() <= extension.size() || file.substr(file.size() - extension.size()) != extension)
        return EdcFormat("--output: \"%s\" hat nicht die Endung gim.", file.c_str());
    std::string name = file.substr(0, file.size() - extension.size());
    if (!NameFromNative(order.info.name, name.c_str(), sizeof order.info.name) ||
        name.find(':') != std::string::npos || StrIsBlank(order.info.name))
        return EdcFormat("--output: \"%s\" ist kein Name eines Modells (höchstens 31 westeuropäische Zeichen, "
                         "ohne \\ und :).",
                         name.c_str());
    if (!NameFromNative(order.folder, folder.c_str(), sizeof order.folder))
        return EdcFormat("--output: Der Ordner \"%s\" ist nicht darstellbar oder zu lang.", folder.c_str());
    return "";
}

std::string ReadOrder(ORDER &order)
{
    std::string wrong = ReadQuantities(order);
    if (wrong.empty())
        wrong = ReadOutput(order);
    for (const std::string &text : order.points) {
        order.probes.emplace_back();
        if (wrong.empty())
            wrong = ReadPoint(text, order.probes.back());
    }
    if (!wrong.empty())
        return wrong;
    EmMODELINFO &info = order.info;
    if (!TextFromUtf8(info.description, order.description.c_str(), sizeof info.description))
        return "--description: höchstens 255 westeuropäische Zeichen.";
    if (order.kind == TABLE && order.csv.empty())
        return "--csv fehlt.";
    info.size = AgPOINT(order[LENGTH], order[WIDTH], order[HEIGHT]);
    info.radiantPart = order[RADIANT];
    info.power = order[POWER];
    info.reducedPower = order[REDUCED];
    return "";
}

/// The whole of a small text file. False, with a message, if it cannot be had.
bool ReadText(const std::string &path, std::string &text)
{
    std::unique_ptr<FILE, int (*)(FILE *)> file(std::fopen(path.c_str(), "rb"), std::fclose);
    text.resize(FILE_MAX + 1);
    size_t got = file ? std::fread(text.data(), 1, text.size(), file.get()) : 0;
    text.resize(got);
    if (!file || std::ferror(file.get())) {
        Complain(EdcFormat("Datei \"%s\" kann nicht gelesen werden.", path.c_str()));
        return false;
    }
    if (got > FILE_MAX) {
        Complain(EdcFormat("Datei \"%s\" ist zu groß für eine Tabelle.", path.c_str()));
        return false;
    }
    return true;
}

/// The intensities of the CSV file; NULL, with a message, if they are none or more than the emitter can have.
std::unique_ptr<GimBEAM> ReadBeam(const ORDER &order)
{
    std::string text;
    if (!ReadText(order.csv, text))
        return NULL;
    auto table = std::make_unique<GimTABLE>();
    std::string wrong = ReadGimTable(text, *table);
    double radiation = order[RADIANT] * order[POWER];
    if (wrong.empty() && order.quantities[DOWNWARD].text)
        table->Scale(order[DOWNWARD] * radiation / table->Flux());
    else if (wrong.empty() && table->Flux() > 1.01 * radiation)
        wrong = EdcFormat("Die Tabelle ergibt %.0f W nach unten, mehr als die %.0f W Strahlung des Geräts.",
                          table->Flux(), radiation);
    if (!wrong.empty()) {
        Complain(EdcFormat("%s: %s", order.csv.c_str(), wrong.c_str()));
        return NULL;
    }
    return table;
}

std::unique_ptr<GimBEAM> MakeBeam(const ORDER &order)
{
    if (order.kind == TABLE)
        return ReadBeam(order);
    double along = order[order.kind == TUBE ? BEAM_ALONG : BEAM];
    return std::make_unique<GimCOSINE>(order[DOWNWARD] * order[RADIANT] * order[POWER], order[BEAM], along);
}

double FieldAt(AgPOINT p, void *arg)
{
    return static_cast<const GimFIELD *>(arg)->At(p);
}

std::string DescribeModel(const ORDER &order, const GimFIELD &field, const EmMODEL &model)
{
    int rx, ry;
    model.Grid().Layer(0, &rx, &ry);
    std::string text =
        EdcFormat("%s: %.0f W Strahlung nach unten, höchste Strahlstärke %.1f W/sr, %d Quellpunkte, "
                  "Tabelle x ±%d m, y ±%d m, z %d m\n",
                  ConsoleUtf8(order.info.name).c_str(), field.Beam().Flux(), field.Beam().Peak(),
                  field.Elements(), rx, ry, model.Grid().Depth());
    for (const AgPOINT &p : order.probes)
        text += EdcFormat("(%g, %g, %g): %.3f W/m2, aus der Tabelle %.3f W/m2\n", p.x, p.y, p.z, field.At(p),
                          model.Value(p));
    return text;
}

void MakeModel(const ORDER &order, GimFIELD &field)
{
    EmMODEL *model = NULL; // ours
    __enter
        SetModelFolder(order.folder); __test;
        model = new EmMODEL(order.info, NULL);
        model->Compute(FieldAt, &field, order[STOP]); __test;
        model->Smooth(order[SMOOTH], static_cast<int>(order[SMOOTH_PASSES]));
        model->FillGaps(static_cast<int>(order[FILL_GAPS]));
        ModelSave(model); __test;
        ConsoleWrite(DescribeModel(order, field, *model)); __test;
        delete model;
        model = NULL;
    __point
        delete model;
    __treat
}

int Make(ORDER &order)
{
    std::string wrong = ReadOrder(order);
    if (!wrong.empty())
        return Misused(wrong);
    std::unique_ptr<GimBEAM> beam = MakeBeam(order);
    if (beam == NULL)
        return FAILED;
    // A tube radiates from its axis, the others from their whole face.
    GimFIELD field(order[LENGTH], order.kind == TUBE ? 0 : order[WIDTH], std::move(beam));
    double reach = field.Reach(order[STOP]);
    if (reach > REACH_MAX)
        return Misused(
            EdcFormat("--stop: Die Tabelle könnte %.0f m weit reichen, höchstens %.0f m sind möglich: "
                      "einen höheren Wert wählen.",
                      reach, REACH_MAX));
    if (field.At(AgPOINT(0, 0, 1)) < order[STOP])
        return Misused(
            "--stop: Schon 1 m unter dem Gerät liegt die Bestrahlungsstärke darunter: einen niedrigeren "
            "Wert wählen.");
    MakeModel(order, field);
    return DONE;
}

void AddOptions(CLI::App &command, ORDER &order, int kind)
{
    command.group("Befehle");
    command.get_help_ptr()->group("Optionen");
    command.option_defaults()->group("Optionen");
    for (QUANTITY &q : order.quantities) {
        if (q.kinds & kind)
            command.add_option(
                q.option, q.text,
                EdcFormat("%s, %g bis %g%s%s", q.help, q.low, q.high, *q.unit ? " " : "", q.unit));
    }
    if (kind == TABLE)
        command.add_option(
            "--csv", order.csv,
            "CSV-Datei mit den Strahlstärken in W/sr; mit --downward-share zählt nur ihr Verhältnis");
    command.add_option("--description", order.description, "Beschreibung im Modell");
    command.add_option("--point", order.points, "X,Y,Z: druckt die Bestrahlungsstärke an diesem Punkt")
        ->expected(1)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
    command.add_option("-o,--output", order.output, "Modelldatei; ihr Name ist der Name des Modells");
    command.callback([&order, kind] { order.kind = kind; });
}

/// The library's texts are English; what kind of mistake it was is enough to say it in German.
std::string WrongUsage(const CLI::App &app, const CLI::ParseError &e)
{
    std::vector<std::string> extra = app.remaining(true);
    if (!extra.empty())
        return EdcFormat("\"%s\" ist hier unbekannt.", extra[0].c_str());
    if (dynamic_cast<const CLI::RequiredError *>(&e))
        return "Es fehlt, was zu tun ist: panel, tube oder table.";
    std::string what = e.what();
    return EdcFormat("%s: Genau ein Wert wird gebraucht.", what.substr(0, what.find_first_of(": ")).c_str());
}

void SpeakGerman(CLI::App &app)
{
    auto format = std::make_shared<CLI::Formatter>();
    format->label("Usage", "Aufruf");
    format->label("OPTIONS", "OPTIONEN");
    format->label("SUBCOMMAND", "BEFEHL");
    format->label("TEXT", "WERT");
    app.formatter(format);
    app.option_defaults()->group("Optionen");
    app.set_help_flag("-h,--help", "zeigt diese Hilfe");
}

int Run(int argc, char **argv)
{
    int status = FAILED;
    __enter
        ORDER order;
        CLI::App app("Macht ein Strahlungsmodell (.gim) aus der Beschreibung eines Geräts.", "gimmake");
        SpeakGerman(app);
        app.require_subcommand(1);
        AddOptions(*app.add_subcommand("panel", "ebene Strahlplatte"), order, PANEL);
        AddOptions(*app.add_subcommand("tube", "Rohr mit Reflektor"), order, TUBE);
        AddOptions(*app.add_subcommand("table", "gemessene Strahlstärken aus einer CSV-Datei"), order, TABLE);
        try {
            app.parse(argc, argv);
            status = Make(order);
        } catch (const CLI::CallForHelp &) {
            ConsoleWrite(app.help()); __test;
            status = DONE;
        } catch (const CLI::ParseError &e) {
            status = Misused(WrongUsage(app, e));
        }
        __test;
    __point
        __repair;
        __report;
        status = FAILED;
    __treat
    return status;
}
} // namespace

int main(int argc, char **argv)
{
    ConsoleStart();
    return Run(argc, argv);
}
