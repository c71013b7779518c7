#include "tools/zulcalc_options.h"

#include "tools/passoptions.h"

#include <CLI/CLI.hpp>

#include <cstdio>
#include <set>

namespace
{
/// Options as they stand on the command line; their values are read afterwards.
struct RawOptions {
    PassArguments pass;
    std::vector<std::string> points;
};

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
    options.hall = raw.pass.hall;
    options.models = raw.pass.models;
    ReadPass(raw.pass, options.params);
    for (const std::string &point : raw.points)
        options.points.push_back(ReadPoint(point));
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
    std::set<std::string> known = {CanonicalPath(options.hall)};
    if (!options.rewrite.empty())
        known.insert(CanonicalPath(options.rewrite));
    for (const std::string &file : written)
        if (!file.empty() && !known.insert(CanonicalPath(file)).second)
            throw WrongUsage{"\"" + file +
                             "\" soll zweimal geschrieben oder über die Halle geschrieben werden"};
}

void Describe(CLI::App &app, RawOptions &raw, ZulcalcOptions &options)
{
    DescribeHall(app, raw.pass);
    DescribePass(app, raw.pass);
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
    try {
        app.parse(ArgumentsToParse(argc, argv));
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
