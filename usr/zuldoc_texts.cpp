// The derived groups of the report: blocks of text made from numbered strings and the hall's data. A report has
// some fifty of them, built anew at each edit, so a builder holds nothing but the group that grows. What a
// failing builder has made goes with it.
#include "lib/platform.h"
#include "usr/edcblks.h"
#include "usr/edcutils.h"
#include "usr/zuldoc.h"
#include "usr/zulreport.h"
#include "win/dc.h"

#include <algorithm>
#include <deque>
#include <string>
#include <utility>
#include <vector>

#include "lib/xon.h"

namespace
{
enum {
    TEXT_EVALUATION = 1676,
    TEXT_EMITTERS = 1690,
    TEXT_AIR_HEATERS = 1692,
    TEXT_HOLES = 1694,
    TEXT_CLOSING_NOTE = 1707,
    TEXT_HYGIENE = 1720,
    TEXT_NO_HYGIENE = 1723,
    TEXT_CLASSES = 1740,
    TEXT_CLASSES_NOTE = 1741,
    TEXT_CLASS_FIRST = 1742, // the heading of a class; its text is the next one
    TEXT_CLASS_LAST = 1750,
};

const double FULL = 1.0; // widths, of the page
const double HALF = 0.5;
const double WORKPLACE = 0.4;
const double CONDITIONS = 0.6;

// Points.
const double TITLE_TOP = 32;
const double TEXT_TOP = 12;
const double LIST_TOP = 18;
const double HEADING_BOTTOM = 6;
const double MAP_TOP = 34; // as above the plans

struct LOOK {
    const TEdcFontRec *font; // view; NULL for a block that knows its own
    double width = FULL;
    unsigned options = 0; // EDC_Bo...
    double top = 0;       // points
    double bottom = 0;
};

LOOK Title(const TZulFonts &fonts, unsigned more = 0)
{
    return {&fonts.title, FULL, EDC_BoKEEP | more, TITLE_TOP};
}

LOOK Heading(const TZulFonts &fonts, double top)
{
    return {&fonts.heading, FULL, EDC_BoKEEP, top, HEADING_BOTTOM};
}

LOOK Paragraph(const TZulFonts &fonts, double width = FULL)
{
    return {&fonts.body, width, 0, TEXT_TOP};
}

TEdcBlock *GroupFirst(TEdcBlock *blk)
{
    return blk && blk->group ? blk->group : blk;
}

/// The group takes the block over.
void Add(TEdcBlock **group, TEdcBlock *blk, const LOOK &look)
{
    blk->SetSize(TEdcSize(look.width, 0, EDC_UREL));
    blk->SetMargins(TEdcMargins(0, look.top, 0, look.bottom, EDC_UPT));
    blk->SetOptions(look.options);
    blk->AddToGroup(group);
}

void AddText(TEdcBlock **group, const char *text, const LOOK &look)
{
    TEdcTextBlock *blk = NULL;
    __enter
        blk = new TEdcTextBlock;
        blk->SetText(text); __test;
        blk->SetFontRec(look.font);
        Add(group, blk, look);
    __point
        delete blk;
    __treat
}

void AddText(TEdcBlock **group, int id, const LOOK &look)
{
    AddText(group, ResText(id), look);
}

void AddTexts(TEdcBlock **group, const std::vector<std::string> &texts, const LOOK &look)
{
    __enter
        for (const std::string &text : texts) {
            AddText(group, text.c_str(), look); __test;
        }
    __point
    __treat
}

void LayoutLine(TEdcText &text, TDC &dc, const TEdcFontRec &rec, double scale, TRect &place)
{
    __enter
        text.SetFont(rec.name, EdcInchToPixel(rec.size / 72.0, scale, dc.DpiY()), rec.charset);
        text.SetFormat(rec.format);
        text.Layout(dc, place, EDC_BREAKNONE, EDC_HLEFT, EDC_VTOP); __test;
    __point
    __treat
}

/// Pixels of a character of a fixed-pitch font as a text in it has them on the device.
int CharacterWidth(TDC &dc, const TEdcFontRec &rec, double scale)
{
    TRect place;
    __enter
        TEdcText text;
        text.SetText("0");
        LayoutLine(text, dc, rec, scale, place); __test;
    __point
    __treat
    return std::max(place.Width(), 1);
}

/// The column head of a list. Its font is smaller than that of the rows, and by how much in pixels depends on
/// the device and the zoom: no number of blanks brings a title over its column. So each layout places the
/// titles singly.
class TColumnHead : public TEdcBlock
{
public:
    TColumnHead(ZulLIST aList, const TZulFonts &someFonts) : list(aList), fonts(someFonts) {}

    void Layout(TDC &dc, TEdcSize &trueSize, double scale) override
    {
        __enter
            titles.clear();
            int rowChar = CharacterWidth(dc, fonts.body, scale); __test;
            int headChar = CharacterWidth(dc, fonts.columns, scale); __test;
            TRect place;
            for (ZulTITLE &source : ZulColumnTitles(list, rowChar, headChar)) {
                TITLE &title = titles.emplace_back();
                title.text = std::move(source.text);
                title.shown.SetText(title.text.c_str());
                place = {source.place, 0, source.place, 0};
                LayoutLine(title.shown, dc, fonts.columns, scale, place); __test;
            }
            trueSize.SetHeight(EdcPixelToInch(place.bottom, scale, dc.DpiY()));
        __point
            titles.clear();
        __treat
    }

    void Paint(TDC &dc, const TRect &part) override
    {
        for (const TITLE &title : titles)
            title.shown.Paint(dc, part);
    }

private:
    struct TITLE {
        std::string text;
        TEdcText shown;
    };
    ZulLIST list;
    const TZulFonts &fonts;
    std::deque<TITLE> titles; // they stay where they are
};

/// A heading, the column head and the rows; NULL without rows.
TEdcBlock *BuildList(int headingId, ZulLIST list, const ZulListBlocks &rows, const TZulFonts &fonts)
{
    TEdcBlock *group = NULL;
    __enter
        if (!rows.empty()) {
            AddText(&group, headingId, Heading(fonts, LIST_TOP)); __test;
            Add(&group, new TColumnHead(list, fonts), {NULL, FULL, EDC_BoKEEP});
            AddTexts(&group, rows, {&fonts.body}); __test;
        }
    __point
        ZulDeleteGroup(group);
        group = NULL;
    __treat
    return GroupFirst(group);
}
} // namespace

TZulFonts::TZulFonts()
{
    plain.Set("Times New Roman", 12, 0);
    title.Set("Arial", 16, EDC_TfBOLD | EDC_TfITALIC);
    heading.Set("Courier New", 12, EDC_TfBOLD);
    columns.Set("Courier New", 11, EDC_TfBOLD | EDC_TfUNDERLINE);
    body.Set("Courier New", 12, 0);
    note.Set("Courier New", 12, EDC_TfBOLD);
}

void ZulDeleteGroup(TEdcBlock *first)
{
    for (TEdcBlock *blk = GroupFirst(first); blk;) {
        TEdcBlock *doomed = blk;
        blk = blk->next;
        delete doomed;
    }
}

TEdcBlock *ZulBuildInput(const EmROOM &room, const TZulFonts &fonts)
{
    TEdcBlock *group = NULL;
    __enter
        AddTexts(&group, ZulInputTexts(room), Paragraph(fonts, HALF)); __test;
    __point
        ZulDeleteGroup(group);
        group = NULL;
    __treat
    return GroupFirst(group);
}

TEdcBlock *ZulBuildEmitterList(const EmEMITTERSET &set, const TZulFonts &fonts)
{
    TEdcBlock *first = NULL;
    __enter
        first = BuildList(TEXT_EMITTERS, ZUL_EMITTER_LIST, ZulEmitterList(set), fonts); __test;
    __point
    __treat
    return first;
}

TEdcBlock *ZulBuildAirHeaterList(const EmAIRHEATERSET &set, const TZulFonts &fonts)
{
    TEdcBlock *first = NULL;
    __enter
        first = BuildList(TEXT_AIR_HEATERS, ZUL_AIR_HEATER_LIST, ZulAirHeaterList(set), fonts); __test;
    __point
    __treat
    return first;
}

TEdcBlock *ZulBuildHoleList(const EmHOLESET &set, const TZulFonts &fonts)
{
    TEdcBlock *first = NULL;
    __enter
        first = BuildList(TEXT_HOLES, ZUL_HOLE_LIST, ZulHoleList(set), fonts); __test;
    __point
    __treat
    return first;
}

TEdcBlock *ZulBuildEvaluation(const TZulMapInfo &info, const TZulFonts &fonts)
{
    TEdcBlock *group = NULL;
    __enter
        AddText(&group, TEXT_EVALUATION, Title(fonts)); __test;
        AddTexts(&group, ZulEvaluationTexts(info), Paragraph(fonts, HALF)); __test;
        AddText(&group, TEXT_CLOSING_NOTE, Paragraph(fonts)); __test;
    __point
        ZulDeleteGroup(group);
        group = NULL;
    __treat
    return GroupFirst(group);
}

TEdcBlock *ZulBuildHygiene(const EmROOM &room, const TZulFonts &fonts)
{
    TEdcBlock *group = NULL;
    __enter
        std::vector<std::string> texts = ZulHygieneTexts(room);
        if (!texts.empty()) {
            AddText(&group, TEXT_HYGIENE, Title(fonts)); __test;
            AddText(&group, texts[0].c_str(), Paragraph(fonts, WORKPLACE)); __test;
            AddText(&group, texts[1].c_str(), Paragraph(fonts, CONDITIONS)); __test;
        }
    __point
        ZulDeleteGroup(group);
        group = NULL;
    __treat
    return GroupFirst(group);
}

namespace
{
/// The summary stands first: the criteria report to it. A map whose making has failed half way goes with the
/// group.
TEdcBlock *BuildMaps(TZulRoomBlock &roomBlk)
{
    TEdcBlock *group = NULL;
    __enter
        const LOOK look = {.font = NULL, .top = MAP_TOP};
        TZulSummaryMap *summary = new TZulSummaryMap(&roomBlk);
        Add(&group, summary, look); __test;
        Add(&group, new TZulHeadTempMap(summary), look); __test;
        Add(&group, new TZulDiffTempMap(summary), look); __test;
        Add(&group, new TZulHeadInteMap(summary), look); __test;
    __point
        ZulDeleteGroup(group);
        group = NULL;
    __treat
    return GroupFirst(group);
}
} // namespace

TEdcBlock *ZulBuildHygieneResult(TZulRoomBlock &roomBlk, const TZulFonts &fonts)
{
    TEdcBlock *first = NULL;
    __enter
        if (roomBlk.Room()->AirHeaters()->TotalPower() != 0.0) {
            AddText(&first, TEXT_NO_HYGIENE, {&fonts.note, FULL, 0, TEXT_TOP}); __test;
        } else {
            first = BuildMaps(roomBlk); __test;
        }
    __point
    __treat
    return first;
}

TEdcBlock *ZulBuildClasses(const TZulFonts &fonts)
{
    TEdcBlock *group = NULL;
    __enter
        AddText(&group, TEXT_CLASSES, Title(fonts, EDC_BoPAGE)); __test;
        AddText(&group, TEXT_CLASSES_NOTE, Paragraph(fonts)); __test;
        for (int id = TEXT_CLASS_FIRST; id <= TEXT_CLASS_LAST; id += 2) {
            AddText(&group, id, Heading(fonts, TEXT_TOP)); __test;
            AddText(&group, id + 1, {&fonts.body}); __test;
        }
    __point
        ZulDeleteGroup(group);
        group = NULL;
    __treat
    return GroupFirst(group);
}

TEdcBlock *ZulBuildConclusion(const EmCONCLUSION &conclusion, const TZulFonts &fonts)
{
    TEdcBlock *group = NULL;
    __enter
        AddText(&group, conclusion.head, Title(fonts)); __test;
        std::vector<std::string> pieces = ZulClosingPieces(conclusion.text);
        for (size_t i = 0; i < pieces.size(); ++i) {
            unsigned options = i + 1 == pieces.size() ? EDC_BoKEEP : 0;
            double top = i == 0 ? TEXT_TOP : 0;
            AddText(&group, pieces[i].c_str(), {&fonts.body, FULL, options, top}); __test;
        }
        AddText(&group, ZulClosingLine(conclusion).c_str(), Paragraph(fonts)); __test;
    __point
        ZulDeleteGroup(group);
        group = NULL;
    __treat
    return GroupFirst(group);
}
