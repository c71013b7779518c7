// The colour table of the irradiation map: what its rows hold, and where they stand. On the recording device
// Arial of 10 px is 12 px high, so rows are 13 px apart and swatches 24 px wide.
#include "zulmapcase.h"

#include "support/child.h"
#include "support/fault.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <sstream>

namespace
{
const TColor RED = {200, 0, 0};
const TColor GREEN = {0, 200, 0};

/// What a table paints, and whether it is tidy.
struct Table : testing::Test {
    TPlaceDC dc;
    TColorScale table;

    Table() { table.SetFont("Arial", 10); }

    int LayOut(const TRect &place) { return table.Layout(dc, place); }
    const TPlaceDC &Painted() { return Painted(dc, table); }
    static const TPlaceDC &Painted(TPlaceDC &on, const TColorScale &shown)
    {
        on.calls.clear();
        on.cells.clear();
        on.rects.clear();
        shown.Paint(on);
        return on;
    }
    /// Nothing meets anything else.
    static void ExpectApart(const TPlaceDC &on)
    {
        std::vector<TRect> parts = on.rects;
        for (const TPlaceDC::Cell &cell : on.cells)
            parts.push_back(cell.rect);
        for (size_t i = 0; i < parts.size(); ++i)
            for (size_t j = 0; j < i; ++j)
                EXPECT_TRUE((parts[i] & parts[j]).IsEmpty())
                    << ShowRect(parts[i]) << ", " << ShowRect(parts[j]);
    }
    TRect Cell(const std::string &text) const
    {
        for (const TPlaceDC::Cell &cell : dc.cells)
            if (cell.text == text)
                return cell.rect;
        ADD_FAILURE() << "no " << text;
        return {};
    }
};

std::vector<std::string> Texts(const TPlaceDC &dc)
{
    std::vector<std::string> texts;
    for (const TPlaceDC::Cell &cell : dc.cells)
        texts.push_back(cell.text);
    return texts;
}

/// The colours that rectangles are filled with, rrggbb, in the order of painting.
std::vector<std::string> Fillings(const TPlaceDC &dc)
{
    std::vector<std::string> fillings;
    std::istringstream lines(dc.calls);
    for (std::string line; std::getline(lines, line);)
        if (line.rfind("Rect", 0) == 0)
            fillings.push_back(line.substr(line.find("brush ") + 6));
    return fillings;
}

/// A run on a hall and its table, without a block.
struct RUNTABLE : MAPDOC {
    TZulMapInfo info;
    ZulPassMap map;
    ZulScaleTexts texts;
    std::unique_ptr<TColorScale> table;

    RUNTABLE(EmROOM &room, const ZulPassParams &params)
    {
        ZulRunPass(room, params, info, map);
        texts = ZulMakeScale(room, info, map);
        table = ZulMakeColorScale(texts, Colors());
    }
    const TEdcColorScale &Colors() const
    {
        return map.colors == &::mapColors ? palette.mapColors : palette.mapColorsCoarse;
    }
};

/// A4 between margins of 1 cm, less the place of the walls' letters.
TRect PagePlace(int dpi)
{
    return {0, 0, EdcInchToPixel(16.6 / 2.54, 1, dpi), EdcInchToPixel(27.7 / 2.54, 1, dpi)};
}
} // namespace

TEST_F(Table, WithNothingInItHasNoHeightAndShowsNothing)
{
    EXPECT_EQ(LayOut({10, 20, 300, 200}), 0);
    EXPECT_EQ(Painted().calls, "");
}

TEST_F(Table, StandsOnTheBottomOfItsPlace)
{
    table.SetLines("oben", "unten");
    table.Add(false, WIN_WHITE, "Kopf", "Rumpf");
    table.Add(true, RED, "1", "2");
    int height = LayOut({10, 20, 300, 200});
    EXPECT_EQ(height, 61); // four rows of 13 px, a third of one on either side of the middle ones
    Painted();
    EXPECT_EQ(Cell("oben").top, 200 - height);
    EXPECT_EQ(Cell("Kopf").top, 200 - height + 17);
    EXPECT_EQ(Cell("1").top, 200 - height + 30);
    EXPECT_EQ(Cell("unten").top, 200 - 13);
    EXPECT_EQ(Cell("oben").left, 10);
    EXPECT_EQ(Cell("unten").left, 10);
    ASSERT_EQ(dc.rects.size(), 1U);
    EXPECT_EQ(dc.rects[0], (TRect{10, 200 - height + 30, 34, 200 - height + 42}));
}

TEST_F(Table, WithoutLinesHasNoSpaceForThem)
{
    table.Add(true, RED, "1", "2");
    EXPECT_EQ(LayOut({0, 0, 300, 200}), 13);
    table.SetLines("oben", "");
    EXPECT_EQ(LayOut({0, 0, 300, 200}), 13 + 4 + 13);
    table.SetLines("", "unten");
    EXPECT_EQ(LayOut({0, 0, 300, 200}), 13 + 4 + 13);
}

TEST_F(Table, ShowsRowsInTheOrderInWhichTheyCame)
{
    table.SetLines("oben", "unten");
    table.Add(false, WIN_WHITE, "a", "b");
    table.Add(true, RED, "c", "d");
    table.Add(true, GREEN, "e", "f");
    LayOut({0, 0, 300, 200});
    EXPECT_EQ(Texts(Painted()), (std::vector<std::string>{"oben", "a", "b", "c", "d", "e", "f", "unten"}));
    EXPECT_EQ(Fillings(dc), (std::vector<std::string>{"c80000", "00c800"}));
}

TEST_F(Table, HasItsNumbersFlushRightUnderTheMiddleOfTheHead)
{
    table.Add(false, WIN_WHITE, "ein breiter Kopf", "noch ein breiter Kopf");
    table.Add(true, RED, "1.00", "9.5");
    table.Add(true, GREEN, "22.00", "10.5");
    LayOut({0, 0, 600, 200});
    Painted();
    struct {
        const char *head, *few, *many;
    } columns[] = {{"ein breiter Kopf", "1.00", "22.00"}, {"noch ein breiter Kopf", "9.5", "10.5"}};
    for (const auto &column : columns) {
        TRect head = Cell(column.head), many = Cell(column.many);
        EXPECT_EQ(Cell(column.few).right, many.right) << column.head;
        EXPECT_NEAR((head.left + head.right) / 2.0, (many.left + many.right) / 2.0, 1) << column.head;
    }
    EXPECT_GT(Cell("noch ein breiter Kopf").left, Cell("ein breiter Kopf").right);
}

TEST_F(Table, HasANarrowHeadOverTheMiddleOfWideNumbers)
{
    table.Add(false, WIN_WHITE, "K", "R");
    table.Add(true, RED, "1000000.00", "2");
    LayOut({0, 0, 600, 200});
    Painted();
    TRect head = Cell("K"), number = Cell("1000000.00");
    EXPECT_NEAR((head.left + head.right) / 2.0, (number.left + number.right) / 2.0, 1);
    EXPECT_GT(number.left, 24); // behind the swatch
}

TEST_F(Table, IgnoresRowsBeyondTwenty)
{
    for (int i = 0; i < 25; ++i)
        table.Add(true, RED, std::to_string(i).c_str(), "x");
    EXPECT_EQ(table.Count(), 20);
    EXPECT_EQ(LayOut({0, 0, 300, 400}), 20 * 13);
    Painted();
    EXPECT_TRUE(dc.Shows("19"));
    EXPECT_FALSE(dc.Shows("20"));
}

TEST_F(Table, AsksForBothTexts)
{
    const std::string file = "usr/zulroom_scale.cpp";
    EXPECT_TRUE(
        AbortsOnAssertion("str1 != NULL && str2 != NULL", file, [&] { table.Add(true, RED, NULL, ""); }));
    EXPECT_TRUE(
        AbortsOnAssertion("str1 != NULL && str2 != NULL", file, [&] { table.Add(true, RED, "", NULL); }));
    for (int i = 0; i < TColorScale::MAX; ++i)
        table.Add(true, RED, "1", "2");
    EXPECT_TRUE(
        AbortsOnAssertion("str1 != NULL && str2 != NULL", file, [&] { table.Add(true, RED, NULL, ""); }));
}

TEST_F(Table, TakesNoFontWithoutANameOrBelowNought)
{
    const std::string file = "usr/zulroom_scale.cpp";
    EXPECT_TRUE(AbortsOnAssertion("name != NULL && size >= 0", file, [&] { table.SetFont(NULL, 10); }));
    EXPECT_TRUE(AbortsOnAssertion("name != NULL && size >= 0", file, [&] { table.SetFont("Arial", -1); }));
    table.Add(true, RED, "1", "2");
    table.SetFont("Arial", 0);
    int none = LayOut({0, 0, 300, 200});
    table.SetFont("Arial", 1);
    EXPECT_EQ(LayOut({0, 0, 300, 200}), none);
}

TEST_F(Table, CutsTextsThatAreTooLong)
{
    std::string endless(400, 'x');
    table.Add(true, RED, endless.c_str(), endless.c_str());
    table.SetLines(endless.c_str(), endless.c_str());
    LayOut({0, 0, 300, 200});
    Painted();
    for (const TPlaceDC::Cell &cell : dc.cells)
        EXPECT_EQ(cell.text, endless.substr(0, 255));
    EXPECT_EQ(dc.cells.size(), 4U);
}

TEST_F(Table, BreaksALineThatIsTooLongAtItsBlanks)
{
    table.SetLines("eins zwei drei  vier", "Donaudampfschifffahrtsgesellschaft a b");
    table.Add(true, RED, "1", "2");
    int height = LayOut({0, 0, 50, 300}); // ten characters
    EXPECT_EQ(height, (2 + 1 + 2) * 13 + 9);
    Painted();
    EXPECT_EQ(Texts(dc), (std::vector<std::string>{"eins zwei", "drei  vier", "1", "2",
                                                   "Donaudampfschifffahrtsgesellschaft", "a b"}));
    EXPECT_EQ(Cell("drei  vier").top, Cell("eins zwei").top + 13);
    EXPECT_EQ(Cell("a b").top, 300 - 13);
    ExpectApart(dc);
}

TEST_F(Table, LosesNoWordOfALineWhateverTheWidth)
{
    const std::string line = "  Werte g\xFCltig bei Lufttemperatur von 15.0 \xB0"
                             "C, die jedoch nicht erreichbar ist ";
    std::istringstream all(line);
    std::vector<std::string> words;
    for (std::string word; all >> word;)
        words.push_back(word);
    table.SetLines(line.c_str(), "");
    dc.SetFont({.face = "Arial", .height = -10});
    for (int width : {0, 1, 7, 40, 90, 91, 92, 200, 1000}) {
        LayOut({0, 0, width, 100});
        std::vector<std::string> seen;
        for (const std::string &piece : Texts(Painted())) {
            std::istringstream in(piece);
            int count = 0;
            for (std::string word; in >> word; ++count)
                seen.push_back(word);
            EXPECT_TRUE(count <= 1 || dc.TextWidth(piece.c_str(), static_cast<int>(piece.size())) <= width)
                << piece << " in " << width;
        }
        EXPECT_EQ(seen, words) << width;
    }
}

TEST_F(Table, KeepsToItsPitchWithASmallerFontWhereItMust)
{
    table.SetLines("oben", "unten");
    for (int i = 0; i < 12; ++i)
        table.Add(true, RED, std::to_string(i).c_str(), "x");
    for (double pitch : {3.0, 7.3, 11.9, 12.0, 12.5, 13.75, 20.0}) {
        table.SetPitch(pitch);
        EXPECT_EQ(LayOut({0, 0, 300, 400}), EdcNearest((14 + 2.0 / 3) * pitch));
        Painted();
        ExpectApart(dc);
        EXPECT_NEAR(Cell("11").top - Cell("0").top, 11 * pitch, 1);
        EXPECT_LE(Cell("0").Height(), pitch);
    }
    EXPECT_NE(dc.calls.find("Arial -10 "), std::string::npos); // room for the wanted one
    table.SetPitch(0.5);
    LayOut({0, 0, 300, 400}); // no font is as small as that
    EXPECT_NE(Painted().calls.find("Arial -1 "), std::string::npos);
    table.SetPitch(0);
    EXPECT_EQ(LayOut({0, 0, 300, 400}), EdcNearest((14 + 2.0 / 3) * 13));
    EXPECT_TRUE(AbortsOnAssertion("px >= 0", "usr/zulroom_scale.cpp", [&] { table.SetPitch(-1); }));
}

TEST_F(Table, LeavesTheDeviceAsItWas)
{
    table.SetLines("oben", "unten");
    table.Add(true, RED, "1", "2");
    dc.SetFont({.face = "Courier New", .height = -33});
    dc.SetTextColor(GREEN);
    dc.SetOpaque(true);
    TDCState former = dc.State();
    LayOut({0, 0, 300, 100});
    EXPECT_EQ(dc.State().font, former.font);
    table.Paint(dc);
    EXPECT_EQ(dc.State().font, former.font);
    EXPECT_EQ(dc.State().textColor, former.textColor);
    EXPECT_EQ(dc.State().pen, former.pen);
    EXPECT_EQ(dc.State().brush, former.brush);
    EXPECT_TRUE(dc.State().opaque);
}

TEST_F(Table, FailsCleanlyWhereMemoryEnds)
{
    table.SetLines("eins zwei drei vier f\xFCnf", "sechs sieben acht");
    table.Add(true, RED, "1", "2");
    int fired = SweepFaults(
        [&] {
            LayOut({0, 0, 40, 300});
        },
        [&](const FaultRun &run) {
            if (run.fired > 0 && run.kind == FAULT::ALLOC) {
                EXPECT_STREQ(run.code, XALLOC);
            }
        });
    EXPECT_GT(fired, 0);
    EXPECT_EQ(LayOut({0, 0, 1000, 300}), 3 * 13 + 9); // good again
}

TEST(RunTable, IsThatOfTheTextsRowByRow)
{
    for (unsigned start : {2U, 5U, 11U, 19U}) {
        SCOPED_TRACE(start);
        auto hall = MakeFieldHall(start);
        for (bool fine : {false, true}) {
            ZulPassParams params;
            params.fineScale = fine;
            params.minInte = 0;
            params.maxInte = 100 + start;
            RUNTABLE run(hall->room, params);
            ASSERT_TRUE(run.table);
            TPlaceDC dc;
            run.table->SetFont("Arial", 10);
            run.table->Layout(dc, {0, 0, 100000, 1000});
            run.table->Paint(dc);
            std::vector<std::string> wanted = {run.texts.line1};
            for (const auto &[first, second] : run.texts.rows) {
                wanted.push_back(first);
                wanted.push_back(second);
            }
            wanted.push_back(run.texts.line2);
            EXPECT_EQ(Texts(dc), wanted);
            const ZulCOLORS &colors = fine ? mapColors : mapColorsCoarse;
            std::vector<std::string> fillings;
            for (int i = 0; i < colors.count; ++i) {
                const ZulRGB &c = colors.colors[i];
                fillings.push_back(EdcFormat("%02x%02x%02x", c.red, c.green, c.blue));
            }
            EXPECT_EQ(Fillings(dc), fillings);
        }
    }
}

TEST(RunTable, HasElevenRowsAndMoreOrTwoAndMore)
{
    ONEEMITTERHALL hall;
    for (bool fine : {false, true}) {
        ZulPassParams params;
        params.fineScale = fine;
        RUNTABLE run(hall.room, params);
        ASSERT_TRUE(run.table);
        EXPECT_EQ(run.table->Count(), 1 + (fine ? 11 : 2) + 1); // head, rows, "mehr"
        EXPECT_EQ(run.texts.rows.back().first, "mehr");
    }
}

TEST(RunTable, IsNoneWhereThereAreNoRows)
{
    MAPDOC doc;
    EXPECT_FALSE(ZulMakeColorScale(ZulScaleTexts(), doc.palette.mapColors));
}

TEST(RunTable, StandsTidyOnThePageAtEveryResolution)
{
    ONEEMITTERHALL hall;
    hall.room.Data()->workClass = 4;
    hall.room.Data()->resultTemp = 40; // too warm: the longest line below
    for (int dpi : {72, 96, 144, 200, 600})
        for (bool fine : {false, true}) {
            SCOPED_TRACE(dpi);
            ZulPassParams params;
            params.fineScale = fine;
            params.airTemp = 60; // out of reach: the longest line above
            RUNTABLE run(hall.room, params);
            ASSERT_TRUE(run.table);
            TPlaceDC dc(dpi);
            TRect place = PagePlace(dpi);
            run.table->SetFont("Arial", ZulFontPixels(dc, 10, 1));
            int height = run.table->Layout(dc, place);
            run.table->Paint(dc);
            Table::ExpectApart(dc);
            TRect taken = {place.left, place.bottom - height, place.right, place.bottom};
            for (const TPlaceDC::Cell &cell : dc.cells)
                EXPECT_TRUE(IsWithin(cell.rect, taken)) << cell.text << " at " << ShowRect(cell.rect);
            for (const TRect &swatch : dc.rects)
                EXPECT_TRUE(IsWithin(swatch, taken)) << ShowRect(swatch);
        }
}

TEST(RunTable, IsXallocWhereMemoryEnds)
{
    ONEEMITTERHALL hall;
    RUNTABLE run(hall.room, ZulPassParams());
    ASSERT_TRUE(run.map.HasMap());
    std::unique_ptr<TColorScale> table;
    int fired = SweepFaults([&] { table.reset(); }, [&] { table = ZulMakeColorScale(run.texts, run.Colors()); },
                            [&](const FaultRun &fault) {
                                EXPECT_EQ(table == NULL, fault.fired > 0 && fault.kind == FAULT::ALLOC);
                            });
    EXPECT_GT(fired, 0);
}
