#include "tools/passoptions.h"

#include "lib/cde.h"
#include "ker/emmodel.h"
#include "tools/console.h"

#include <CLI/CLI.hpp>

#include <charconv>
#include <cmath>
#include <filesystem>
#include <optional>

#include "lib/xon.h"

namespace
{
void ReadLimit(const std::string &option, const std::string &text, std::optional<double> &value)
{
    if (!text.empty())
        value = ReadNumber(option, text);
}

/// "-.5" would be taken for an option; "-0.5" is not.
std::string WithLeadingZero(const std::string &arg)
{
    bool isNumber = arg.starts_with("-.") && arg.size() > 2 && arg[2] >= '0' && arg[2] <= '9';
    return isNumber ? "-0" + arg.substr(1) : arg;
}

} // namespace

std::vector<std::string> ArgumentsToParse(int argc, char **argv)
{
    std::vector<std::string> args;
    for (int i = argc - 1; i > 0; --i)
        args.push_back(WithLeadingZero(argv[i]));
    return args;
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

void DescribeHall(CLI::App &app, PassArguments &pass)
{
    app.get_formatter()->label("Usage", "Aufruf");
    app.get_formatter()->label("OPTIONS", "Optionen");
    app.get_formatter()->label("Positionals", "Angaben");
    app.get_formatter()->label("REQUIRED", "");
    app.option_defaults()->group("Optionen");
    app.set_help_flag("-h,--help", "diese Hilfe");
    AddFile(app, "HALL.sc1", pass.hall, "die Halle", " ");
    app.get_option("HALL.sc1")->required();
}

void DescribePass(CLI::App &app, PassArguments &pass)
{
    AddFile(app, "--models", pass.models, "Ordner der Strahlermodelle statt Modely neben dem Programm", "DIR");
    AddNumber(app, "--height", pass.height, "Höhe der Karte über dem Fußboden in m (0)", "M");
    AddNumber(app, "--min", pass.minInte, "unteres Ende der Farbskala in W/m²", "W");
    AddNumber(app, "--max", pass.maxInte, "oberes Ende der Farbskala in W/m²", "W");
    AddNumber(app, "--air-temp", pass.airTemp, "Lufttemperatur in 1.5 m Höhe in °C statt der erreichbaren",
              "C");
    app.add_flag("--fine-grid", pass.fineGrid, "feines Raster statt des groben");
    app.add_flag("--coarse-scale", pass.coarseScale, "drei Farben statt zwölf");
}

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

void ReadPass(const PassArguments &pass, ZulPassParams &params)
{
    params.height = ReadNumber("--height", pass.height);
    if (params.height < 0)
        throw WrongUsage{"--height: die Karte liegt nicht unter dem Fußboden"};
    ReadLimit("--min", pass.minInte, params.minInte);
    ReadLimit("--max", pass.maxInte, params.maxInte);
    ReadLimit("--air-temp", pass.airTemp, params.airTemp);
    params.draft = !pass.fineGrid;
    params.fineScale = !pass.coarseScale;
}

std::string CanonicalPath(const std::string &path)
{
    std::error_code fault;
    std::filesystem::path whole = std::filesystem::absolute(path, fault);
    if (!fault)
        whole = std::filesystem::weakly_canonical(whole, fault);
    return fault ? path : whole.string();
}

void ChooseModelFolder(const std::string &path)
{
    __enter
        if (path.empty()) {
            FindProgramPath(); __test;
        } else {
            CdeFILENAME folder;
            ConsoleName(folder, path.c_str(), XFOPEN); __test;
            SetModelFolder(folder); __test;
        }
    __point
    __treat
}
