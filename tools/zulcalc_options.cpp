#include "tools/zulcalc_options.h"

#include <CLI/CLI.hpp>

#include <charconv>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <optional>
#include <set>

namespace
{
/// Options as they stand on the command line; their values are read afterwards, so that every fault is named in
/// the same words.
struct RawOptions {
    std::string height;
    std::string minInte;
    std::string maxInte;
    std::string airTemp;
    std::vector<std::string> points;
    bool fineGrid = false;
    bool coarseScale = false;
};

struct WrongUsage {
    std::string text;
};

double ReadNumber(const std::string &option, std::string_view text)
{
    double value = 0;
    const char *begin = text.data() + (text.starts_with('+') && !text.starts_with("+-"));
    const char *end = text.data() + text.size();
    auto [stop, fault] = std::from_chars(begin, end, value);
    if (fault != std::errc() || stop != end || !std::isfinite(value))
        throw WrongUsage{option + ": \"" + std::string(text) + "\" ist keine endliche Zahl"};
    return value + 0.0; // 0 for -0
}

void ReadLimit(const std::string &option, const std::string &text, std::optional<double> &value)
{
    if (!text.empty())
        value = ReadNumber(option, text);
}

AgPOINT ReadPoint(const std::string &text)
{
    std::vector<double> numbers;
    for (size_t begin = 0, end = 0; end != std::string::npos; begin = end + 1) {
        end = text.find(',', begin);
        size_t length = end == std::string::npos ? end : end - begin;
        numbers.push_back(ReadNumber("--point", std::string_view(text).substr(begin, length)));
    }
    if (numbers.size() != 3)
        throw WrongUsage{"--point: \"" + text + "\" sind nicht drei Zahlen X,Y,Z"};
    return {numbers[0], numbers[1], numbers[2]};
}

void ReadValues(const RawOptions &raw, ZulcalcOptions &options)
{
    ZulPassParams &params = options.params;
    params.height = ReadNumber("--height", raw.height);
    if (params.height < 0)
        throw WrongUsage{"--height: die Karte liegt nicht unter dem Fußboden"};
    ReadLimit("--min", raw.minInte, params.minInte);
    ReadLimit("--max", raw.maxInte, params.maxInte);
    ReadLimit("--air-temp", raw.airTemp, params.airTemp);
    params.draft = !raw.fineGrid;
    params.fineScale = !raw.coarseScale;
    for (const std::string &point : raw.points)
        options.points.push_back(ReadPoint(point));
}

/// One spelling for each file, as far as it can be known.
std::string Canonical(const std::string &path)
{
    std::error_code fault;
    std::filesystem::path whole = std::filesystem::absolute(path, fault);
    if (!fault)
        whole = std::filesystem::weakly_canonical(whole, fault);
    return fault ? path : whole.string();
}

/// No file is to be written twice, nor the hall over; only --rewrite may name the hall itself.
void CheckFiles(const ZulcalcOptions &options)
{
    std::vector<std::string> written = {options.map};
    if (options.json != "-")
        written.push_back(options.json);
    if (!options.hygiene.empty())
        for (const std::string &file : HygieneFiles(options.hygiene))
            written.push_back(file);
    std::set<std::string> known = {Canonical(options.hall)};
    if (!options.rewrite.empty())
        known.insert(Canonical(options.rewrite));
    for (const std::string &file : written)
        if (!file.empty() && !known.insert(Canonical(file)).second)
            throw WrongUsage{"\"" + file +
                             "\" soll zweimal geschrieben oder über die Halle geschrieben werden"};
}

void AddFile(CLI::App &app, const char *option, std::string &path, const char *description, const char *type)
{
    app.add_option(option, path, description)->type_name(type)->check([](const std::string &text) {
        return text.empty() ? std::string("ein leerer Name ist keine Datei") : std::string();
    });
}

void AddNumber(CLI::App &app, const char *option, std::string &text, const char *description, const char *type)
{
    app.add_option(option, text, description)->type_name(type)->check([](const std::string &value) {
        return value.empty() ? std::string("eine Zahl fehlt") : std::string();
    });
}

void Describe(CLI::App &app, RawOptions &raw, ZulcalcOptions &options)
{
    raw.height = "0";
    app.get_formatter()->label("Usage", "Aufruf");
    app.get_formatter()->label("OPTIONS", "Optionen");
    app.get_formatter()->label("Positionals", "Angaben");
    app.get_formatter()->label("REQUIRED", "");
    app.option_defaults()->group("Optionen");
    app.set_help_flag("-h,--help", "diese Hilfe");
    AddFile(app, "HALL.sc1", options.hall, "die Halle", " ");
    app.get_option("HALL.sc1")->required();
    AddFile(app, "--models", options.models, "Ordner der Strahlermodelle statt Modely neben dem Programm",
            "DIR");
    AddNumber(app, "--height", raw.height, "Höhe der Karte über dem Fußboden in m (0)", "M");
    AddNumber(app, "--min", raw.minInte, "unteres Ende der Farbskala in W/m²", "W");
    AddNumber(app, "--max", raw.maxInte, "oberes Ende der Farbskala in W/m²", "W");
    AddNumber(app, "--air-temp", raw.airTemp, "Lufttemperatur in 1.5 m Höhe in °C statt der erreichbaren", "C");
    app.add_flag("--fine-grid", raw.fineGrid, "feines Raster statt des groben");
    app.add_flag("--coarse-scale", raw.coarseScale, "drei Farben statt zwölf");
    app.add_option("--point", raw.points, "Werte in einem Punkt in m, mehrmals möglich")
        ->type_name("X,Y,Z")
        ->allow_extra_args(false);
    AddFile(app, "--json", options.json, "alle Werte als JSON statt des Berichtes, - für die Standardausgabe",
            "FILE");
    AddFile(app, "--map", options.map, "Bestrahlungskarte als Bild", "FILE.png");
    AddFile(app, "--hygiene", options.hygiene,
            "vier Bilder der hygienischen Prüfung: PREFIX-summary.png, -headtemp, -difftemp, -headinte",
            "PREFIX");
    AddFile(app, "--rewrite", options.rewrite, "die gelesene Halle neu schreiben", "FILE.sc1");
    app.add_flag("--timing", options.timing, "Zeiten der Schritte in Sekunden");
}

/// What the parser refuses, in the words of the other messages.
std::string RefusalText(const CLI::App &app, const CLI::ParseError &error)
{
    if (!app.remaining().empty())
        return "\"" + app.remaining().front() + "\" ist keine Option und keine Halle";
    if (error.get_name() == "RequiredError")
        return "die Angabe der Halle (HALL.sc1) fehlt";
    if (error.get_name() == "ArgumentMismatch")
        return std::string("eine Option steht zweimal oder ohne ihren Wert (") + error.what() + ")";
    return error.what();
}

/// "-.5" would be taken for an option; "-0.5" is not.
std::string WithLeadingZero(const std::string &arg)
{
    bool isNumber = arg.starts_with("-.") && arg.size() > 2 && arg[2] >= '0' && arg[2] <= '9';
    return isNumber ? "-0" + arg.substr(1) : arg;
}

ZulcalcUsage Refuse(const std::string &text)
{
    std::fprintf(stderr, "zulcalc: %s\nHilfe: zulcalc --help\n", text.c_str());
    return ZULCALC_WRONG;
}
} // namespace

std::vector<std::string> HygieneFiles(const std::string &prefix)
{
    return {prefix + "-summary.png", prefix + "-headtemp.png", prefix + "-difftemp.png",
            prefix + "-headinte.png"};
}

ZulcalcUsage ReadOptions(int argc, char **argv, ZulcalcOptions &options)
{
    CLI::App app("Wertet eine Halle aus: Wärmebilanz, Brennstoff, Bestrahlung und hygienische Kriterien.",
                 "zulcalc");
    RawOptions raw;
    Describe(app, raw, options);
    std::vector<std::string> args;
    for (int i = argc - 1; i > 0; --i) // the parser takes them from the end
        args.push_back(WithLeadingZero(argv[i]));
    try {
        app.parse(args);
        ReadValues(raw, options);
        CheckFiles(options);
    } catch (const CLI::CallForHelp &) {
        std::printf("%s", app.help().c_str());
        return ZULCALC_HELP;
    } catch (const CLI::ParseError &error) {
        return Refuse(RefusalText(app, error));
    } catch (const WrongUsage &wrong) {
        return Refuse(wrong.text);
    }
    return ZULCALC_RUN;
}
