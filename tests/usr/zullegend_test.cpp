// Legends of the maps, laid out on the recording device. Its Arial of 10 px is 12 px high, a nought 5 px wide:
// gaps of 1 px, swatches of 12 px.
#include "zulmapcase.h"

#include "support/child.h"
#include "support/fault.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace
{
const TColor RED = {200, 0, 0};
const TColor GREEN = {0, 200, 0};

struct Legend : testing::Test {
    TEdcDocument doc;
    TPlaceDC dc;
    TZulLegend legend;

    Legend() { SetAppDocument(&doc); }

    TRect LayOut(TRect offered, int mode)
    {
        legend.Layout(dc, offered, mode);
        EXPECT_EQ(offered, legend.Rect());
        return offered;
    }
    /// What it paints, with all places.
    const TPlaceDC &Painted()
    {
        dc.calls.clear();
        dc.cells.clear();
        dc.rects.clear();
        legend.Paint(dc);
        return dc;
    }
    /// No two of its texts and swatches meet, and none leaves what the legend takes.
    void ExpectTidy(const char *what)
    {
        Painted();
        std::vector<TRect> parts = dc.rects;
        for (const TPlaceDC::Cell &cell : dc.cells)
            parts.push_back(cell.rect);
        for (size_t i = 0; i < parts.size(); ++i) {
            EXPECT_TRUE(IsWithin(parts[i], legend.Rect()))
                << what << ": " << ShowRect(parts[i]) << " in " << ShowRect(legend.Rect());
            for (size_t j = 0; j < i; ++j)
                EXPECT_TRUE((parts[i] & parts[j]).IsEmpty())
                    << what << ": " << ShowRect(parts[i]) << " and " << ShowRect(parts[j]);
        }
    }
};
} // namespace

TEST_F(Legend, WithoutBoxesHasNoSizeAndShowsNothing)
{
    for (int mode : {TZulLegend::ROW, TZulLegend::COLUMN}) {
        legend.SetTitle("Legende");
        EXPECT_EQ(LayOut({30, 40, 300, 400}, mode), (TRect{30, 40, 30, 40}));
        EXPECT_EQ(Painted().calls, "");
    }
}

TEST_F(Legend, StandsInAColumnWithSwatchesOfTwoHeights)
{
    legend.SetTitle("Titel");
    legend.Add(RED, "rot");
    legend.Add(GREEN, "gr\xFCner");
    EXPECT_EQ(LayOut({100, 50, 300, 200}, TZulLegend::COLUMN), (TRect{100, 50, 155, 88}));
    EXPECT_EQ(Painted().calls, "Text 100,50 \"Titel\" Arial 12 bold 000000\n"
                               "Rect 100,63,124,75 pen 000000 brush c80000\n"
                               "Text 125,63 \"rot\" Arial 12 000000\n"
                               "Rect 100,76,124,88 pen 000000 brush 00c800\n"
                               "Text 125,76 \"grüner\" Arial 12 000000\n");
}

TEST_F(Legend, StandsInARowOfEqualCellsWithTheLimitsAtTheirEnds)
{
    legend.SetTitle("Titel");
    legend.Add(RED, "20.0");
    legend.Add(GREEN, "mehr");
    EXPECT_EQ(LayOut({100, 50, 200, 200}, TZulLegend::ROW), (TRect{100, 50, 199, 88}));
    EXPECT_EQ(Painted().calls, "Text 100,50 \"Titel\" Arial 12 bold 000000\n"
                               "Rect 100,63,149,75 pen 000000 brush c80000\n"
                               "Text 131,76 \"20.0\" Arial 12 000000\n"
                               "Rect 150,63,199,75 pen 000000 brush 00c800\n"
                               "Text 176,76 \"mehr\" Arial 12 000000\n");
}

TEST_F(Legend, WithoutATitleBeginsWithItsBoxes)
{
    legend.Add(RED, "rot");
    EXPECT_EQ(LayOut({0, 0, 100, 100}, TZulLegend::COLUMN), (TRect{0, 0, 40, 12}));
    EXPECT_EQ(LayOut({0, 0, 100, 100}, TZulLegend::ROW), (TRect{0, 0, 100, 25}));
}

TEST_F(Legend, HoldsTwentyBoxesAndIgnoresMore)
{
    for (int i = 1; i <= 25; ++i)
        legend.Add(RED, std::to_string(i).c_str());
    EXPECT_EQ(legend.Count(), 20);
    EXPECT_STREQ(legend.Box(19).text, "20");
    EXPECT_EQ(LayOut({0, 0, 100, 100}, TZulLegend::COLUMN).bottom, 20 * 12 + 19);
    ExpectTidy("column");
    EXPECT_EQ(LayOut({0, 0, 800, 100}, TZulLegend::ROW).bottom, 25);
    ExpectTidy("row");
    EXPECT_EQ(Painted().rects.size(), 20u);
    for (int i = 0; i < 20; ++i)
        EXPECT_EQ(legend.Box(i).box.Width(), (800 - 19) / 20);
}

TEST_F(Legend, BreaksLongTextsSoThatNothingMeets)
{
    const std::string words = "wenigstens eines der Kriterien nicht erf\xFCllt (siehe unten)";
    legend.SetTitle("Differenzwerte operativer Temperaturen [^o^C] in einer langen Zeile");
    for (int count = 1; count <= 20; ++count) {
        legend.Add(count % 2 ? RED : GREEN, words.substr(0, size_t{3} * static_cast<size_t>(count)).c_str());
        for (int width : {60, 97, 190, 400, 718}) {
            std::string what = std::to_string(count) + " boxes at " + std::to_string(width);
            EXPECT_LE(LayOut({7, 9, 7 + width, 500}, TZulLegend::COLUMN).right, 7 + width) << what;
            ExpectTidy((what + " in a column").c_str());
            if (width < count * 20)
                continue; // cells narrower than the widest of their characters
            EXPECT_LE(LayOut({7, 9, 7 + width, 500}, TZulLegend::ROW).right, 7 + width) << what;
            ExpectTidy((what + " in a row").c_str());
        }
    }
}

TEST_F(Legend, PutsASwatchBesideTheFirstLineOfItsLabel)
{
    legend.Add(RED, "ein langer Text in vielen Zeilen");
    legend.Add(GREEN, "kurz");
    LayOut({0, 0, 70, 100}, TZulLegend::COLUMN);
    EXPECT_GT(legend.Box(0).label.height, 24);
    EXPECT_EQ(legend.Box(0).box, (TRect{0, 0, 24, 12}));
    EXPECT_EQ(legend.Box(1).box.top, legend.Box(0).label.height + 1);
}

TEST_F(Legend, IsAsTallAsTheTallestLabelOfItsRow)
{
    legend.Add(RED, "1");
    legend.Add(GREEN, "zwei Worte oder mehr");
    legend.Add(RED, "3");
    TRect taken = LayOut({0, 0, 120, 100}, TZulLegend::ROW);
    EXPECT_EQ(taken.bottom, legend.Box(1).label.y + legend.Box(1).label.height);
    EXPECT_GE(legend.Box(1).label.height, 24);
}

TEST_F(Legend, HasASizeInNextToNoRoom)
{
    legend.SetTitle("Titel");
    legend.Add(RED, "rot");
    legend.Add(GREEN, "gr\xFCn");
    for (int mode : {TZulLegend::ROW, TZulLegend::COLUMN})
        for (TRect offered : {TRect{5, 5, 5, 5}, TRect{5, 5, 2, 1}, TRect{5, 5, 6, 6}}) {
            TRect taken = LayOut(offered, mode);
            EXPECT_EQ(taken.TopLeft(), (TPoint{5, 5}));
            EXPECT_FALSE(taken.IsEmpty());
        }
}

TEST_F(Legend, MovesWithAllItsParts)
{
    legend.SetTitle("Titel");
    legend.Add(RED, "rot");
    legend.Add(GREEN, "gr\xFCn");
    LayOut({0, 0, 100, 100}, TZulLegend::COLUMN);
    std::string there = Painted().calls;
    LayOut({40, 30, 140, 130}, TZulLegend::COLUMN);
    std::string away = Painted().calls;
    legend.MoveBy(-40, -30);
    EXPECT_NE(away, there);
    EXPECT_EQ(Painted().calls, there);
    EXPECT_EQ(legend.Rect().TopLeft(), TPoint());
}

TEST_F(Legend, KeepsItsMarkup)
{
    legend.SetTitle("Fluss [W/m^2^]");
    legend.Add(RED, "t_o_");
    LayOut({0, 0, 300, 100}, TZulLegend::COLUMN);
    EXPECT_TRUE(Painted().Shows("Fluss [W/m"));
    EXPECT_TRUE(dc.Shows("2"));
    EXPECT_TRUE(dc.Shows("o"));
}

TEST_F(Legend, CutsTextsTo255CharactersAndTakesItsOwnCopies)
{
    char text[400];
    std::fill(text, text + sizeof text, 'x');
    text[399] = '\0';
    legend.SetTitle(text);
    legend.Add(RED, text);
    std::fill(text, text + 399, 'y');
    EXPECT_EQ(std::string(legend.Box(0).text), std::string(255, 'x'));
    LayOut({0, 0, 4000, 100}, TZulLegend::COLUMN);
    EXPECT_TRUE(Painted().Shows(std::string(255, 'x')));
    EXPECT_EQ(dc.cells.size(), 2u);
}

TEST_F(Legend, TakesItsFontAndFramesItsSwatchesThinOnPaperToo)
{
    legend.Add(RED, "rot");
    legend.SetFont("Courier New", 0);
    LayOut({0, 0, 300, 100}, TZulLegend::COLUMN);
    EXPECT_NE(Painted().calls.find("\"rot\" Courier New 1 "), std::string::npos) << dc.calls;
    legend.SetFont("Courier New", 83); // 10 pt at 600 dpi
    LayOut({0, 0, 3000, 1000}, TZulLegend::COLUMN);
    EXPECT_NE(Painted().calls.find("pen 000000 4 brush c80000"), std::string::npos) << dc.calls;
}

TEST_F(Legend, LeavesTheStateOfTheDevice)
{
    legend.SetTitle("Titel");
    legend.Add(RED, "rot");
    dc.SetPen({.color = GREEN, .width = 3});
    dc.SetBrush(NoBrush());
    dc.SetFont({.face = "Courier New", .height = -20});
    LayOut({0, 0, 300, 100}, TZulLegend::ROW);
    EXPECT_EQ(dc.State().font.face, "Courier New");
    legend.Paint(dc);
    EXPECT_EQ(dc.State().pen.width, 3);
    EXPECT_EQ(dc.State().brush, NoBrush());
}

TEST_F(Legend, OutOfMemoryAtItsLayoutLeavesNoSize)
{
    legend.SetTitle("Titel mit ^2^ Zeichen");
    legend.Add(RED, "rot");
    for (int mode : {TZulLegend::ROW, TZulLegend::COLUMN}) {
        int swept = SweepFaults(
            [&] {
                TRect rect = {10, 10, 100, 100};
                legend.Layout(dc, rect, mode);
            },
            [&](const FaultRun &run) {
                EXPECT_EQ(run.code, run.fired ? XALLOC : XNULL);
                EXPECT_EQ(legend.Rect().IsEmpty(), run.fired != 0);
            });
        EXPECT_GT(swept, 4);
    }
}

TEST_F(Legend, AssertsWhatAProgrammerMustGive)
{
    const char *file = "usr/zulroom_legend.cpp";
    EXPECT_TRUE(AbortsOnAssertion("str != NULL", file, [&] { legend.SetTitle(NULL); }));
    EXPECT_TRUE(AbortsOnAssertion("str != NULL", file, [&] { legend.Add(RED, NULL); }));
    EXPECT_TRUE(AbortsOnAssertion("name != NULL && size >= 0", file, [&] { legend.SetFont(NULL, 1); }));
    EXPECT_TRUE(AbortsOnAssertion("name != NULL && size >= 0", file, [&] { legend.SetFont("Arial", -1); }));
    EXPECT_TRUE(AbortsOnAssertion("mode == ROW || mode == COLUMN", file, [&] {
        TRect rect;
        legend.Layout(dc, rect, 0);
    }));
}
