// The derived groups of the report: how many blocks each has, how they stand on the page, in which font, and
// what they say.
#include "reportgroups.h"

#include "ker/emhygiene.h"
#include "usr/zulreport.h"

#include <algorithm>

namespace
{
using LINES = std::vector<std::string>;

/// How a block is to stand and to be written.
struct LOOK {
    double width; // of the page
    unsigned options;
    double top, bottom; // points
    const char *face;
    int points;
    bool bold, italic, underline;
};

const LOOK title = {1, EDC_BoKEEP, 32, 0, "Arial", 16, true, true, false};
const LOOK half = {0.5, 0, 12, 0, "Courier New", 12, false, false, false};
const LOOK paragraph = {1, 0, 12, 0, "Courier New", 12, false, false, false};
const LOOK rows = {1, 0, 0, 0, "Courier New", 12, false, false, false};
const LOOK listHeading = {1, EDC_BoKEEP, 18, 6, "Courier New", 12, true, false, false};
const LOOK classHeading = {1, EDC_BoKEEP, 12, 6, "Courier New", 12, true, false, false};
const LOOK columnHead = {1, EDC_BoKEEP, 0, 0, "Courier New", 11, true, false, true};
const LOOK workplace = {0.4, 0, 12, 0, "Courier New", 12, false, false, false};
const LOOK conditions = {0.6, 0, 12, 0, "Courier New", 12, false, false, false};

/// The lines of a marked text as they are written.
LINES Plain(std::string text)
{
    std::replace(text.begin(), text.end(), '~', ' ');
    std::erase(text, '^');
    std::erase(text, '_');
    LINES lines(1);
    for (char c : text) {
        if (c == '\n')
            lines.emplace_back();
        else
            lines.back() += c;
    }
    std::erase(lines, "");
    return lines;
}

class ZulBuild : public ReportGroups
{
protected:
    /// Whether the block stands and is written so; `lines` is what it says on paper.
    void ExpectBlock(TEdcBlock *blk, const LOOK &look, const LINES &lines)
    {
        SCOPED_TRACE(lines.empty() ? "" : lines[0]);
        EXPECT_EQ(blk->size.width, look.width);
        EXPECT_EQ(blk->size.height, 0);
        EXPECT_EQ(blk->size.unit, EDC_UREL);
        EXPECT_EQ(blk->options, look.options);
        EXPECT_EQ(blk->margins.left, 0);
        EXPECT_EQ(blk->margins.top, look.top);
        EXPECT_EQ(blk->margins.right, 0);
        EXPECT_EQ(blk->margins.bottom, look.bottom);
        EXPECT_EQ(blk->margins.unit, EDC_UPT);
        dc.Write(*blk, look.width * PAGE_WIDTH);
        EXPECT_EQ(dc.Lines(), lines);
        for (const WRITTEN &piece : dc.written) {
            EXPECT_LE(piece.right, std::lround(look.width * PAGE_WIDTH * 600)) << piece.text;
            EXPECT_EQ(piece.font.face, look.face);
            EXPECT_EQ(piece.font.weight, look.bold ? 700 : 400);
            EXPECT_EQ(piece.font.italic, look.italic);
            EXPECT_EQ(piece.font.underline, look.underline);
        }
        ASSERT_FALSE(dc.written.empty());
        EXPECT_EQ(dc.written[0].font.height, dc.LineHeight(look.face, look.points));
    }

    /// The lines of a running text, without looking where they are broken.
    std::string Words(TEdcBlock *blk)
    {
        dc.Write(*blk, PAGE_WIDTH);
        std::string words;
        for (const std::string &line : dc.Lines())
            words += (words.empty() ? "" : " ") + line;
        return words;
    }
    /// The same for a block that stands and is written so.
    void ExpectWords(TEdcBlock *blk, const LOOK &look, const std::string &words)
    {
        dc.Write(*blk, PAGE_WIDTH);
        ExpectBlock(blk, look, dc.Lines());
        EXPECT_EQ(Words(blk), words);
    }
};

TEST_F(ZulBuild, TheFontsAreThoseOfTheReport)
{
    const struct {
        const TEdcFontRec &rec;
        const char *name;
        int size, format;
    } table[] = {
        {fonts.plain, "Times New Roman", 12, 0}, {fonts.title, "Arial", 16, 12},
        {fonts.heading, "Courier New", 12, 4},   {fonts.columns, "Courier New", 11, 20},
        {fonts.body, "Courier New", 12, 0},      {fonts.note, "Courier New", 12, 4},
    };
    for (const auto &row : table) {
        EXPECT_STREQ(row.rec.name, row.name);
        EXPECT_EQ(row.rec.size, row.size);
        EXPECT_EQ(row.rec.format, row.format);
        EXPECT_EQ(row.rec.charset, 1);
    }
}

TEST_F(ZulBuild, InputIsSixBlocksOfHalfWidth)
{
    EmROOMDATA &data = *room.Data();
    data.constr[EM_FLOOR].k = 0.1 + 0.2;
    data.constr[EM_FLOOR].tExt = 8;
    data.constr[EM_CEILING].k = 0.4;
    data.constr[EM_WALLS].k = 0.55;
    data.airChange = 0.5;
    data.fuelPrice = 0.85;
    std::vector<TEdcBlock *> blocks = Blocks(ZulBuildInput(room, fonts));
    ASSERT_EQ(blocks.size(), 6u);
    ExpectBlock(blocks[0], half,
                {"Fu\xDF"
                 "boden",
                 " Durchgangsquotient:   0.3 W/m2K", " Bodentemperatur:      8 oC"});
    ExpectBlock(blocks[1], half, {"Decke", " Durchgangsquotient:   0.4 W/m2K", " Externe Temp.:        0 oC"});
    ExpectBlock(blocks[2], half,
                {"W\xE4nde", " Durchgangsquotient:   0.55 W/m2K", " Externe Temp.:        0 oC"});
    std::vector<std::string> texts = ZulInputTexts(room);
    for (size_t i = 0; i < 6; ++i)
        ExpectBlock(blocks[i], half, Plain(texts[i]));
}

TEST_F(ZulBuild, AnEmptySetHasNoList)
{
    EXPECT_EQ(ZulBuildEmitterList(*room.Emitters(), fonts), static_cast<TEdcBlock *>(NULL));
    EXPECT_EQ(ZulBuildAirHeaterList(*room.AirHeaters(), fonts), static_cast<TEdcBlock *>(NULL));
    EXPECT_EQ(ZulBuildHoleList(*Holes(), fonts), static_cast<TEdcBlock *>(NULL));
}

TEST_F(ZulBuild, SixEmittersGiveTwoBlocksOfRows)
{
    for (int i = 0; i < 6; ++i)
        Hang("Platte 12")->power = 1000 * i;
    std::vector<TEdcBlock *> blocks = Blocks(ZulBuildEmitterList(*room.Emitters(), fonts));
    ASSERT_EQ(blocks.size(), 4u);
    ExpectBlock(blocks[0], listHeading, {"Liste der Infrarotstrahler"});
    dc.Write(*blocks[1], PAGE_WIDTH);
    ExpectBlock(blocks[1], columnHead, dc.Lines());
    LINES five;
    for (int i = 0; i < 5; ++i)
        five.push_back(
            EdcFormat("%d    Platte 12       %4d    0.00   0.00   0.00     0       0", i + 1, 1000 * i));
    ExpectBlock(blocks[2], rows, five);
    ExpectBlock(blocks[3], rows, {"6    Platte 12       5000    0.00   0.00   0.00     0       0"});
}

TEST_F(ZulBuild, NamesSetOffNoMarkup)
{
    Hang("a_b^c d~e!f");
    Place("Typ_1^2 x_");
    Open("_Tor^ mit_Fenster~!");
    dc.Write(*Blocks(ZulBuildEmitterList(*room.Emitters(), fonts)).back(), PAGE_WIDTH);
    ASSERT_EQ(dc.written.size(), 1u) << "one piece, in one style";
    EXPECT_EQ(dc.written[0].text.substr(0, 18), "1    a b c d e!f  ");
    dc.Write(*Blocks(ZulBuildAirHeaterList(*room.AirHeaters(), fonts)).back(), PAGE_WIDTH);
    ASSERT_EQ(dc.written.size(), 1u);
    EXPECT_EQ(dc.written[0].text.substr(0, 16), "1    Typ 1 2 x  ");
    dc.Write(*Blocks(ZulBuildHoleList(*Holes(), fonts)).back(), PAGE_WIDTH);
    ASSERT_EQ(dc.written.size(), 1u);
    EXPECT_EQ(dc.written[0].text.substr(44), "     Tor  mit Fenster !");
}

TEST_F(ZulBuild, AListOfWarmAirUnitsNamesThoseWithoutType)
{
    EmAIRHEATER *unit = Place("Lufterhitzer LH 40 Deckenger\xE4t");
    unit->power = 40000;
    unit->airFlow = 3500;
    unit->tempRise = 33.333;
    Place("");
    std::vector<TEdcBlock *> blocks = Blocks(ZulBuildAirHeaterList(*room.AirHeaters(), fonts));
    ASSERT_EQ(blocks.size(), 3u);
    ExpectBlock(blocks[0], listHeading, {"Liste der Warmluftaggregate"});
    dc.Write(*blocks[1], PAGE_WIDTH);
    ExpectBlock(blocks[1], columnHead, dc.Lines());
    ExpectBlock(blocks[2], rows, {"1    Lufterhitzer LH ...  40000      3500        33.33", "2    (nichts)"});
}

TEST_F(ZulBuild, AListOfOpeningsHasElevenRowsInThreeBlocks)
{
    for (int i = 0; i < 11; ++i)
        Open("Rolltor zur Nachbarhalle, ged\xE4mmt")->size = {4, 4.2};
    std::vector<TEdcBlock *> blocks = Blocks(ZulBuildHoleList(*Holes(), fonts));
    ASSERT_EQ(blocks.size(), 5u);
    ExpectBlock(blocks[0], listHeading,
                {"Liste der Bau\xF6"
                 "ffnungen"});
    dc.Write(*blocks[1], PAGE_WIDTH);
    ExpectBlock(blocks[1], columnHead, dc.Lines());
    ExpectBlock(blocks[4], rows, {"11    0.000    0.00   16.80    4.00     4.20    Rolltor zur Nachbarh..."});
    EXPECT_EQ(dc.written.size(), 1u);
}

TEST_F(ZulBuild, TheEvaluationHasATitleFourTextsAndANote)
{
    TZulMapInfo info;
    info.loss = 41234.56;
    info.area = 240;
    info.volume = 1440;
    info.emittPower = 48000;
    info.maxFuel = 4.786;
    StrCopy(info.fuelUnit, "m^3^", sizeof info.fuelUnit);
    info.maxAirTemp = info.airTemp = 15;
    std::vector<TEdcBlock *> blocks = Blocks(ZulBuildEvaluation(info, fonts));
    ASSERT_EQ(blocks.size(), 6u);
    ExpectBlock(blocks[0], title, {"Auswertung"});
    ExpectBlock(blocks[1], half,
                {"Halle", " W\xE4rmeverlust:        41235 W",
                 " Grundfl\xE4"
                 "che:         240 m2",
                 " Rauminhalt:          1440 m3"});
    ExpectBlock(blocks[2], half,
                {"Installierte Leistung", " Infrarotstrahler:    48000 W", " Warmluftaggregate:   0 W",
                 " Insgesamt:           48000 W"});
    std::vector<std::string> texts = ZulEvaluationTexts(info);
    for (size_t i = 0; i < 4; ++i)
        ExpectBlock(blocks[i + 1], half, Plain(texts[i]));
    ExpectWords(blocks[5], paragraph,
                "Wir freuen uns, dass Sie zur Verarbeitung Ihres Entwurfs Programm Zulerion eingesetzt haben. "
                "Jede Bemerkungen oder Vorschl\xE4ge senden Sie an Adresse \"info@zulerion.example\".");
}

TEST_F(ZulBuild, EqualAirTemperaturesRaiseNoWarning)
{
    TZulMapInfo info;
    info.maxAirTemp = info.airTemp = 15;
    auto fuel = [&] { return Words(Blocks(ZulBuildEvaluation(info, fonts))[3]); };
    EXPECT_EQ(fuel().find("erreichbar -"), std::string::npos);
    info.airTemp = 15.5;
    EXPECT_NE(fuel().find("Unerreichbar - Leistung erh\xF6hen!"), std::string::npos);
    info.airTemp = 14;
    EXPECT_EQ(fuel().find("erreichbar -"), std::string::npos);
}

TEST_F(ZulBuild, HygieneExistsOnlyWithAWorkingClass)
{
    EXPECT_EQ(ZulBuildHygiene(room, fonts), static_cast<TEdcBlock *>(NULL));
    room.Data()->workClass = 4;
    room.Data()->position = EM_SITTING;
    std::vector<TEdcBlock *> blocks = Blocks(ZulBuildHygiene(room, fonts));
    ASSERT_EQ(blocks.size(), 3u);
    ExpectBlock(blocks[0], title,
                {"Hygienische Pr\xFC"
                 "fung"});
    ExpectBlock(blocks[1], workplace, {"Arbeitsstelle", " Arbeitsklasse: IIIa", " Personenlage:  sitzend"});
    ExpectBlock(blocks[2], conditions,
                {"Voraussetzungen", " W\xE4rmewiderst.d.Kleides:  0.75 - 1 clo",
                 " Energieausgabe:          131 - 160 W/m2", " Luftstr\xF6mungsgeschwind.: 0 - 0.2 m/s",
                 " Rel. Luftfeuchtigkeit:   30 - 70 %"});
    EXPECT_EQ(dc.Write(*blocks[1], 3), dc.Write(*blocks[2], 4.4)) << "no page parts the pair";
}

TEST_F(ZulBuild, WarmAirUnitsKeepNoMapAway)
{
    Place("LH 40")->power = 40000;
    TZulMapInfo info;
    TZulRoomPalette palette;
    doc.AddPalette(&palette);
    doc.ComposePalette();
    TZulRoomBlock roomBlk(&room, &info, &palette, "Plan");
    std::vector<TEdcBlock *> blocks = Blocks(ZulBuildHygieneResult(roomBlk, fonts));
    ASSERT_EQ(blocks.size(), 4u);
    auto *summary = dynamic_cast<TZulSummaryMap *>(blocks[0]);
    ASSERT_NE(summary, static_cast<TZulSummaryMap *>(NULL));
    EXPECT_EQ(summary->RoomBlock(), &roomBlk);
    EXPECT_NE(dynamic_cast<TZulHeadTempMap *>(blocks[1]), static_cast<TZulHeadTempMap *>(NULL));
    EXPECT_NE(dynamic_cast<TZulDiffTempMap *>(blocks[2]), static_cast<TZulDiffTempMap *>(NULL));
    EXPECT_NE(dynamic_cast<TZulHeadInteMap *>(blocks[3]), static_cast<TZulHeadInteMap *>(NULL));
    for (TEdcBlock *blk : blocks) {
        EXPECT_EQ(blk->size.width, 1);
        EXPECT_EQ(blk->size.height, 0);
        EXPECT_EQ(blk->size.unit, EDC_UREL);
        EXPECT_EQ(blk->options, 0u);
        EXPECT_EQ(blk->margins.top, 34) << "points, as above the plans";
    }
    Blocks(NULL);
}

TEST_F(ZulBuild, TheAppendixTellsEachClassWithItsLimits)
{
    std::vector<TEdcBlock *> blocks = Blocks(ZulBuildClasses(fonts));
    ASSERT_EQ(blocks.size(), 12u);
    LOOK first = title;
    first.options |= EDC_BoPAGE;
    ExpectBlock(blocks[0], first, {"Anhang: Arbeitsklassen"});
    dc.Write(*blocks[1], PAGE_WIDTH);
    ExpectBlock(blocks[1], paragraph, dc.Lines());
    for (int workClass = 1; workClass <= 5; ++workClass) {
        TEdcBlock *heading = blocks[static_cast<size_t>(workClass) * 2];
        TEdcBlock *text = heading->next;
        ExpectBlock(heading, classHeading, {std::string("Klasse ") + WorkName(workClass)});
        dc.Write(*text, PAGE_WIDTH);
        ExpectBlock(text, rows, dc.Lines());
        double low, high;
        WorkLimits(workClass, low, high);
        std::string energy = WorkEnergy(workClass);
        energy = (workClass == 1 ? "" : energy.substr(0, energy.find(' ')) + " ") + "bis " +
                 energy.substr(energy.rfind(' ') + 1) + " W/m2";
        EXPECT_NE(Words(text).find("Energieausgabe " + energy), std::string::npos) << Words(text);
        std::string limits = EdcFormat("%.0lf bis %.0lf oC", low, high);
        EXPECT_NE(Words(text).find(limits), std::string::npos) << Words(text);
    }
}

TEST_F(ZulBuild, GroupsPairUpOnThePage)
{
    room.Data()->workClass = 5;
    doc.SetPaper(TEdcSize(21, 29.7, EDC_UCM));
    doc.SetMargins(TEdcMargins(1, 1, 1, 1, EDC_UCM));
    TZulMapInfo info;
    info.maxAirTemp = -1;
    TEdcBlock *input = ZulBuildInput(room, fonts);
    doc.LinkBlock(input, NULL, true);
    TEdcBlock *evaluation = ZulBuildEvaluation(info, fonts);
    doc.LinkBlock(evaluation, NULL, true);
    TEdcBlock *hygiene = ZulBuildHygiene(room, fonts);
    doc.LinkBlock(hygiene, NULL, true);
    const TEdcBlock *lefts[] = {input,
                                input->next->next,
                                input->next->next->next->next,
                                evaluation->next,
                                evaluation->next->next->next,
                                hygiene->next};
    for (int dpi : {96, 144, 600})
        for (int percent : {50, 66, 100, 150}) {
            TWriteDC device(dpi);
            TEdcZoom zoom;
            zoom.SetCustom(percent);
            doc.LayoutBlocks(device, &zoom);
            for (const TEdcBlock *left : lefts) {
                const TEdcBlock *right = left->next;
                EXPECT_EQ(left->rect.x, 0);
                EXPECT_EQ(left->rect.y, right->rect.y) << dpi << " " << percent;
                EXPECT_LE(left->rect.width, right->rect.x + 1);
                EXPECT_GE(left->rect.height + 1, right->rect.height) << "no page parts the pair";
                if (right->next != NULL) {
                    EXPECT_GE(right->next->rect.y, left->rect.y + left->rect.height);
                }
            }
        }
    doc.RemoveAllBlocks();
}

TEST_F(ZulBuild, TextsOfHalfWidthStayInTheirLinesAtEachUsualZoom)
{
    EmROOMDATA &data = *room.Data();
    for (EmCONSTRUCTION &constr : data.constr)
        constr = {0.55, 0, 0, 8, -12.5, 0, 0};
    data.airTemp = data.meanOutTemp = data.designOutTemp = data.reducedAirTemp = -12.5;
    data.fuelPrice = 0.85;
    data.workClass = 3;
    TZulMapInfo info;
    info.loss = info.emittPower = 123456;
    info.area = info.volume = 123456.5;
    info.yearFuel = 123456;
    info.yearCost = 1e6;
    info.maxInte = 1234.5;
    info.maxAirTemp = -1;
    StrCopy(info.fuelUnit, "m^3^", sizeof info.fuelUnit);
    for (TEdcBlock *fresh :
         {ZulBuildInput(room, fonts), ZulBuildEvaluation(info, fonts), ZulBuildHygiene(room, fonts)})
        for (TEdcBlock *blk : Blocks(fresh)) {
            if (blk->size.width == 1)
                continue;
            dc.Write(*blk, 100);
            LINES lines = dc.Lines();
            for (int dpi : {96, 120, 144, 192, 600})
                for (int percent = 50; percent <= 200; ++percent) {
                    TWriteDC device(dpi);
                    device.Write(*blk, blk->size.width * PAGE_WIDTH, percent * 0.01);
                    EXPECT_EQ(device.Lines(), lines) << dpi << " " << percent;
                }
        }
}

TEST_F(ZulBuild, AGroupGoesWholeWhicheverMemberIsNamed)
{
    ZulDeleteGroup(NULL);
    ZulDeleteGroup(ZulBuildClasses(fonts)->next->next);
    ZulDeleteGroup(new TEdcTextBlock);
}
} // namespace
