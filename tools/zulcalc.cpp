// Reads a hall, evaluates it and tells the figures: as a report, as JSON, as pictures. The same evaluation as
// that of the program, without a window.
#include "lib/platform.h"
#include "lib/xassert.h"
#include "tools/console.h"
#include "tools/passoptions.h"
#include "tools/zulcalc_evaluation.h"
#include "tools/zulcalc_json.h"
#include "tools/zulcalc_options.h"
#include "tools/zulcalc_png.h"
#include "tools/zulcalc_report.h"
#include "usr/zulreport.h"

#include <chrono>
#include <cstdio>
#include <new>

#include "lib/xon.h"

namespace
{
enum { TEXT_ARTICLE_HEAD = 1650, TEXT_CONCLUSION_HEAD = 1651 };

/// Adds the seconds from its beginning to its end.
class StopWatch
{
public:
    explicit StopWatch(double &aSeconds) : seconds(aSeconds), begin(std::chrono::steady_clock::now()) {}
    ~StopWatch() { seconds += std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count(); }
    StopWatch(const StopWatch &) = delete;
    StopWatch &operator=(const StopWatch &) = delete;

private:
    double &seconds;
    std::chrono::steady_clock::time_point begin;
};

void LoadHall(const std::string &path, ZulcalcEvaluation &evaluation)
{
    CdeFILE file;
    __enter
        StopWatch watch(evaluation.timing.load);
        CdeFILENAME name;
        ConsoleName(name, path.c_str(), XFOPEN); __test;
        file.Open(name, "o"); __test;
        evaluation.room = std::make_unique<EmROOM>(0, 0, 0, ResText(TEXT_ARTICLE_HEAD),
                                                   ResText(TEXT_CONCLUSION_HEAD), ZulToday()); __test;
        evaluation.room->Read(file); __test;
        file.Close(); __test;
    __point
    __treat
}

void SaveHall(const std::string &path, ZulcalcEvaluation &evaluation)
{
    CdeFILE file;
    __enter
        StopWatch watch(evaluation.timing.save);
        CdeFILENAME name;
        ConsoleName(name, path.c_str(), XFCREATE); __test;
        file.OpenReplacing(name); __test;
        evaluation.room->Write(file); __test;
        file.Close(); __test;
    __point
    __treat
}

/// The criterion maps cost as much as the pass, and four times its memory.
bool NeedsHygiene(const ZulcalcOptions &options, const EmROOM &room)
{
    return !options.IsReport() || !options.hygiene.empty() || options.timing || room.Data()->workClass != 0;
}

void Evaluate(const ZulcalcOptions &options, ZulcalcEvaluation &evaluation)
{
    __enter
        {
            StopWatch watch(evaluation.timing.pass);
            ZulRunPass(*evaluation.room, options.params, evaluation.info, evaluation.map); __test;
        }
        if (NeedsHygiene(options, *evaluation.room)) {
            StopWatch watch(evaluation.timing.hygiene);
            ZulJudgePlan(*evaluation.room, evaluation.info, evaluation.map, evaluation.hygiene); __test;
        }
    __point
    __treat
}

void WriteTextFile(const std::string &path, const std::string &text)
{
    CdeFILE file;
    __enter
        CdeFILENAME name;
        ConsoleName(name, path.c_str(), XFCREATE); __test;
        file.OpenReplacing(name); __test;
        enum { PIECE = 1 << 20 };
        for (size_t begin = 0; begin < text.size(); begin += PIECE) {
            file.Write(text.data() + begin, static_cast<int>(std::min<size_t>(PIECE, text.size() - begin)));
            __test;
        }
        file.Close(); __test;
    __point
    __treat
}

void WriteFigures(const ZulcalcOptions &options, const ZulcalcEvaluation &evaluation)
{
    __enter
        if (options.IsReport()) {
            ConsoleWrite(ReportText(evaluation, options)); __test;
        } else if (options.json == "-") {
            ConsoleWrite(JsonText(evaluation, options)); __test;
        } else {
            WriteTextFile(options.json, JsonText(evaluation, options)); __test;
        }
    __point
    __treat
}

void WritePicture(const std::string &path, const ZulPixels &pixels, const ZulCOLORS &colors)
{
    __enter
        CdeFILENAME name;
        ConsoleName(name, path.c_str(), XFCREATE); __test;
        WritePng(name, pixels, colors); __test;
    __point
    __treat
}

void WriteHygiene(const std::string &prefix, const ZulHygieneMaps &maps)
{
    __enter
        const ZulPixels *pixels[] = {&maps.summary, &maps.headTemp.pixels, &maps.diffTemp.pixels,
                                     &maps.headInte.pixels};
        std::vector<std::string> files = HygieneFiles(prefix);
        for (size_t i = 0; i < files.size(); ++i) {
            WritePicture(files[i], *pixels[i], criterionColors); __test;
        }
    __point
    __treat
}

void WritePictures(const ZulcalcOptions &options, const ZulcalcEvaluation &evaluation)
{
    __enter
        bool isWanted = !options.map.empty() || !options.hygiene.empty();
        if (isWanted && !evaluation.map.HasMap()) {
            std::fprintf(stderr,
                         "zulcalc: Es entsteht keine Karte, das untere Ende der Farbskala liegt nicht unter "
                         "dem oberen. Es wird kein Bild geschrieben.\n");
        } else {
            if (!options.map.empty()) {
                ASSERT(evaluation.map.colors != NULL);
                WritePicture(options.map, evaluation.map.pixels, *evaluation.map.colors); __test;
            }
            if (!options.hygiene.empty()) {
                WriteHygiene(options.hygiene, evaluation.hygiene); __test;
            }
        }
    __point
    __treat
}

void RunSteps(const ZulcalcOptions &options, ZulcalcEvaluation &evaluation)
{
    __enter
        ChooseModelFolder(options.models); __test;
        LoadHall(options.hall, evaluation); __test;
        if (!options.rewrite.empty()) {
            SaveHall(options.rewrite, evaluation); __test;
        }
        Evaluate(options, evaluation); __test;
        WriteFigures(options, evaluation); __test;
        WritePictures(options, evaluation); __test;
    __point
    __treat
}

/// The end of every failure's road: its message, and exit status 1.
int Run(int argc, char **argv)
{
    int status = 1;
    __enter
        ZulcalcOptions options;
        ZulcalcUsage usage = ReadOptions(argc, argv, options);
        if (usage == ZULCALC_RUN) {
            ZulcalcEvaluation evaluation;
            RunSteps(options, evaluation);
            __repair;
            __report;
            status = xRepaired == XNULL ? 0 : 1;
        } else {
            status = usage == ZULCALC_HELP ? 0 : 2;
        }
    __point
        __repair;
        __report;
    __treat
    return status;
}
} // namespace

ZulcalcPoint AskPoint(const ZulcalcEvaluation &evaluation, const AgPOINT &p)
{
    const EmROOM &room = *evaluation.room;
    const TZulMapInfo &info = evaluation.info;
    ZulcalcPoint at;
    at.p = p;
    at.irradiation = room.Irradiation(p);
    at.operative = room.OperativeTemp(at.irradiation, AirTempAt(info, p.z));
    at.headTemp = HeadTemp(room, info, p.x, p.y);
    at.diffTemp = DiffTemp(room, info, p.x, p.y);
    at.headInte = HeadInte(room, p.x, p.y);
    at.headTempClass = HeadTempCriterion(room.Data()->workClass).Classify(at.headTemp);
    at.diffTempClass = DiffTempCriterion().Classify(at.diffTemp);
    at.headInteClass = HeadInteCriterion().Classify(at.headInte);
    return at;
}

int main(int argc, char **argv)
{
    ConsoleStart();
    return Run(argc, argv);
}
