#include "tools/zulcalc_report.h"
#include "lib/platform.h"
#include "tools/console.h"
#include "tools/zulcalc_text.h"
#include "usr/edcutils.h"
#include "usr/zulreport.h"

#include <algorithm>
#include <cmath>

namespace
{
enum { PAGE = 76, HALF = 39, TWO_FIFTHS = 30 }; // characters

enum {
    TEXT_FLOOR = 1670, // and the walls A to D and the ceiling behind it
    TEXT_CEILING = 1675,
    TEXT_EVALUATION = 1676,
    TEXT_EMITTERS = 1690,
    TEXT_AIR_HEATERS = 1692,
    TEXT_HOLES = 1694,
    TEXT_HYGIENE = 1720,
    TEXT_NO_HYGIENE = 1723,
    TEXT_SUMMARY = 4290,
    TEXT_ALL_MET = 4292,
    TEXT_NOT_ALL_MET = 4293,
    TEXT_MET = 4301,
    TEXT_NOT_MET = 4302,
    TEXT_HEAD_TEMP = 4310,
    TEXT_DIFF_TEMP = 4312,
    TEXT_HEAD_INTE = 4314,
};

class Report
{
public:
    void Line(const std::string &utf8 = "") { text += utf8 + '\n'; }
    void Lines(const TextLines &lines)
    {
        for (const std::string &line : lines)
            Line(line);
    }

    /// A chapter's title; markup in it as in any text.
    void Title(const std::string &marked, char under)
    {
        Gap();
        for (const std::string &line : MarkupLines(marked, PAGE)) {
            Line(line);
            Line(std::string(static_cast<size_t>(TextWidth(line)), under));
        }
    }

    /// A paragraph of running text, with an empty line before it.
    void Paragraph(const std::string &marked)
    {
        Gap();
        Lines(MarkupLines(marked, PAGE));
    }

    void Pair(const std::string &left, const std::string &right, int leftWidth = HALF)
    {
        Gap();
        Lines(BesideLines(MarkupLines(left, 0), MarkupLines(right, 0), leftWidth));
    }

    /// One empty line, unless there is one already.
    void Gap()
    {
        if (!text.empty() && !text.ends_with("\n\n"))
            Line();
    }

    std::string Finished()
    {
        ConsoleDisarm(text.data());
        return std::move(text);
    }

private:
    std::string text;
};

std::string Resource(int id)
{
    return ConsoleUtf8(ResText(id));
}

void AddList(Report &report, const std::string &heading, ZulLIST list, const ZulListBlocks &blocks)
{
    if (blocks.empty())
        return;
    report.Gap();
    report.Line(heading);
    report.Line();
    report.Lines(MarkupLines(ZulColumnHead(list), 0));
    for (const std::string &block : blocks)
        report.Lines(MarkupLines(block, 0));
}

void AddHoles(Report &report, const EmSURFACE *surface, int nameId)
{
    AddList(report, Resource(nameId) + ": " + Resource(TEXT_HOLES), ZUL_HOLE_LIST,
            ZulHoleList(*surface->Holes()));
}

void AddIntroduction(Report &report, const EmROOM &room)
{
    const EmARTICLE *article = room.Article();
    report.Title(article->head, '=');
    if (article->text[0] != '\0')
        report.Paragraph(article->text);
    std::vector<std::string> input = ZulInputTexts(room);
    for (size_t i = 0; i + 1 < input.size(); i += 2)
        report.Pair(input[i], input[i + 1]);
}

void AddLists(Report &report, const EmROOM &room)
{
    AddHoles(report, room.Surfaces()->Floor(), TEXT_FLOOR);
    AddList(report, Resource(TEXT_EMITTERS), ZUL_EMITTER_LIST, ZulEmitterList(*room.Emitters()));
    AddList(report, Resource(TEXT_AIR_HEATERS), ZUL_AIR_HEATER_LIST, ZulAirHeaterList(*room.AirHeaters()));
    int nameId = TEXT_FLOOR;
    for (const EmSURFACE *wall = room.Surfaces()->FirstWall(); wall != NULL; wall = EmSURFACESET::Next(wall))
        AddHoles(report, wall, ++nameId);
    AddHoles(report, room.Surfaces()->Ceiling(), TEXT_CEILING);
}

std::string RightAligned(const std::string &utf8, int width)
{
    return std::string(static_cast<size_t>(std::max(width - TextWidth(utf8), 0)), ' ') + utf8;
}

std::string Share(long long count, long long total)
{
    return EdcFormat("%5.1lf %%", static_cast<double>(count) / static_cast<double>(total) * 100);
}

/// Each row's share of the plan is that of the samples up to its intensity and above that of the row before.
void AddScale(Report &report, const ZulcalcEvaluation &evaluation)
{
    const ZulPassMap &map = evaluation.map;
    report.Gap();
    if (!map.HasMap()) {
        report.Line("Ohne Farbskala: ihr unteres Ende liegt nicht unter dem oberen.");
        return;
    }
    ZulScaleTexts texts = ZulMakeScale(*evaluation.room, evaluation.info, map);
    std::vector<long long> hist = map.pixels.Histogram(map.colors->count);
    long long total = static_cast<long long>(map.raster.columns) * map.raster.rows;
    report.Lines(MarkupLines(texts.line1, PAGE));
    for (size_t i = 0; i < texts.rows.size(); ++i) {
        std::string share = i == 0 ? "Anteil" : Share(hist[i - 1], total);
        const auto &[intensity, temperature] = texts.rows[i];
        report.Line(RightAligned(ConsoleUtf8(intensity.c_str()), 28) +
                    RightAligned(ConsoleUtf8(temperature.c_str()), 25) + RightAligned(share, 11));
    }
    report.Lines(MarkupLines(texts.line2, PAGE));
}

void AddEvaluation(Report &report, const ZulcalcEvaluation &evaluation)
{
    std::vector<std::string> texts = ZulEvaluationTexts(evaluation.info);
    report.Title(ResText(TEXT_EVALUATION), '-');
    report.Pair(texts[0], texts[1]);
    report.Pair(texts[2], texts[3]);
    AddScale(report, evaluation);
}

void AddCriterion(Report &report, int nameId, const ZulCriterionMap &map)
{
    std::vector<long long> hist = map.pixels.Histogram(criterionColors.count);
    long long total = hist[0] + hist[1] + hist[2];
    report.Gap();
    report.Line(Resource(nameId));
    report.Line(" " + TextPadded(Resource(TEXT_MET), 24) + Share(hist[0], total));
    report.Line(" " + TextPadded("im Toleranzband", 24) + Share(hist[1], total));
    report.Line(" " + TextPadded(Resource(TEXT_NOT_MET), 24) + Share(hist[2], total));
}

void AddHygieneShares(Report &report, const ZulHygieneMaps &hygiene)
{
    report.Gap();
    if (!hygiene.HasMaps()) {
        report.Line("Ohne Bestrahlungskarte keine Karten der Kriterien.");
        return;
    }
    report.Line(Resource(TEXT_SUMMARY));
    report.Lines(MarkupLines("~" + EdcResFormat(TEXT_ALL_MET, hygiene.PassedShare()), PAGE));
    std::string rest = EdcFormat(" - %.0lf%%", 100 - std::nearbyint(hygiene.PassedShare()));
    report.Lines(MarkupLines(std::string("~") + ResText(TEXT_NOT_ALL_MET) + rest, PAGE));
    AddCriterion(report, TEXT_HEAD_TEMP, hygiene.headTemp);
    AddCriterion(report, TEXT_DIFF_TEMP, hygiene.diffTemp);
    AddCriterion(report, TEXT_HEAD_INTE, hygiene.headInte);
}

void AddHygiene(Report &report, const ZulcalcEvaluation &evaluation)
{
    report.Title(ResText(TEXT_HYGIENE), '-');
    std::vector<std::string> texts = ZulHygieneTexts(*evaluation.room);
    if (texts.empty()) {
        report.Gap();
        report.Line("Es ist keine Arbeitsklasse gewählt.");
        return;
    }
    report.Pair(texts[0], texts[1], TWO_FIFTHS);
    if (evaluation.room->AirHeaters()->TotalPower() != 0)
        report.Paragraph(ResText(TEXT_NO_HYGIENE));
    else
        AddHygieneShares(report, evaluation.hygiene);
}

/// A judged value to one decimal, with its class where a working class gives it a meaning.
std::string Judged(double value, int width, int valueClass, bool hasClass)
{
    std::string text = EdcFormat("%*.1lf", width, EdcRound(value, -1));
    return hasClass ? text + EdcFormat(" (%d)", valueClass) : text + "    ";
}

void AddPoints(Report &report, const ZulcalcEvaluation &evaluation, const std::vector<AgPOINT> &points)
{
    if (points.empty())
        return;
    bool hasClass = evaluation.room->Data()->workClass != 0;
    report.Title("Punkte", '-');
    report.Gap();
    report.Line("                              Ergebnis-  Kopf-       Differenz   Kopf-");
    report.Line("                    Bestrahl. temp.      temp.       Kopf-Knöch. bestrahl.");
    report.Line("  X [m]  Y [m]  Z [m] [W/m²]    [°C]      [°C]        [K]         [W/m²]");
    for (const AgPOINT &p : points) {
        ZulcalcPoint at = AskPoint(evaluation, p);
        report.Line(EdcFormat("%7.2lf%7.2lf%7.2lf%7.1lf%8.1lf  ", EdcRound(p.x, -2), EdcRound(p.y, -2),
                              EdcRound(p.z, -2), EdcRound(at.irradiation, -1), EdcRound(at.operative, -1)) +
                    Judged(at.headTemp, 8, at.headTempClass, hasClass) +
                    Judged(at.diffTemp, 8, at.diffTempClass, hasClass) +
                    Judged(at.headInte, 8, at.headInteClass, hasClass));
    }
    if (hasClass)
        report.Line(" (0) erfüllt das Kriterium, (1) im Toleranzband, (2) nicht entsprechend");
}

void AddClosing(Report &report, const EmCONCLUSION &conclusion)
{
    report.Title(conclusion.head, '-');
    report.Gap();
    for (const std::string &piece : ZulClosingPieces(conclusion.text))
        report.Lines(MarkupLines(piece, PAGE));
    report.Gap();
    report.Lines(MarkupLines(ZulClosingLine(conclusion), PAGE));
}

void AddTiming(Report &report, const ZulcalcTiming &timing)
{
    report.Title("Zeiten", '-');
    report.Gap();
    report.Line(EdcFormat(" Lesen %18.3lf s", timing.load));
    report.Line(EdcFormat(" Auswertung %13.3lf s", timing.pass));
    report.Line(EdcFormat(" Hygienische Prüfung %5.3lf s", timing.hygiene));
    report.Line(EdcFormat(" Schreiben %14.3lf s", timing.save));
}
} // namespace

std::string ReportText(const ZulcalcEvaluation &evaluation, const ZulcalcOptions &options)
{
    Report report;
    AddIntroduction(report, *evaluation.room);
    AddLists(report, *evaluation.room);
    AddEvaluation(report, evaluation);
    AddPoints(report, evaluation, options.points);
    AddHygiene(report, evaluation);
    AddClosing(report, *evaluation.room->Conclusion());
    if (options.timing)
        AddTiming(report, evaluation.timing);
    return report.Finished();
}
