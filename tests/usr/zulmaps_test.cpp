// The maps of the hygiene evaluation: when they are made, which pixels they have, what the summary counts, and
// what their legends say.
#include "zulmapcase.h"

#include "support/child.h"
#include "support/fault.h"
#include "support/plainpass.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>

namespace
{
const char sourceFile[] = "usr/zulroom_criteria.cpp";

/// One of the three maps, judged point by point as the base does it.
template <class MAP>
struct TPlainMap : MAP {
    using MAP::MAP;
    void Classify(const EmRASTER &raster, ZulPixels &classes) override
    {
        TZulCriterionMap::Classify(raster, classes);
    }
};

/// A criterion of the test's own: its value is the point's x, and it writes down what it is asked.
struct TProbeMap : TZulCriterionMap {
    using TZulCriterionMap::TZulCriterionMap;

    std::string log;
    std::vector<AgPOINT> points;
    double bandMin = 0, bandMax = 6, bandTol = 3;
    const char *bandFormat = "%.1lf";
    XCODE failing = XNULL; // of Finish

    void Prepare() override
    {
        log += "prepare ";
        SetBand(bandMin, bandMax, bandTol, bandFormat);
    }
    double Value(AgPOINT p) override
    {
        points.push_back(p);
        return p.x;
    }
    void Finish() override
    {
        log += "finish(" + std::to_string(points.size()) + ") ";
        if (strcmp(failing, XNULL) != 0)
            XRaise(failing, __FILE__, __LINE__);
    }
};

std::string Texts(const TZulLegend *legend, const TEdcColorScale &colors)
{
    if (legend == NULL)
        return "none";
    std::string all;
    for (int i = 0; i < legend->Count(); ++i) {
        int entry = 0;
        while (entry < colors.Size() && !(colors.Color(entry) == legend->Box(i).color))
            ++entry;
        all += std::to_string(entry) + ":" + legend->Box(i).text + "|";
    }
    return all;
}

/// Pixels of the picture that differ from the classes.
int Differing(const MAPCASE &maps, const TEdcPicture &picture, const ZulPixels &classes)
{
    int count = 0;
    for (int j = 0; j < classes.Height(); ++j)
        for (int i = 0; i < classes.Width(); ++i)
            count += maps.Class(picture, i, j) != classes.Row(j)[i];
    return count;
}

int DifferingPixels(const TEdcPicture &a, const TEdcPicture &b)
{
    if (a.bitmap.Width() != b.bitmap.Width() || a.bitmap.Height() != b.bitmap.Height())
        return -1;
    int count = 0;
    for (int j = 0; j < a.bitmap.Height(); ++j)
        for (int i = 0; i < a.bitmap.Width(); ++i)
            count += a.bitmap.Pixel(i, j) != b.bitmap.Pixel(i, j);
    return count;
}

void ExpectNoMaps(MAPCASE &maps)
{
    EXPECT_EQ(maps.summary.Picture(), nullptr);
    for (TZulCriterionMap *map : maps.Criteria())
        EXPECT_EQ(map->Picture(), nullptr);
    TPlaceDC dc;
    for (TEdcBlock *map : maps.Maps()) {
        LayoutBlock(*map, dc, {718, 1000});
        map->Paint(dc, {0, 0, 718, 1000});
    }
    EXPECT_EQ(maps.summary.Legend(), nullptr);
    for (TZulCriterionMap *map : maps.Criteria()) {
        EXPECT_EQ(map->LegendA(), nullptr);
        EXPECT_EQ(map->LegendB(), nullptr);
    }
    EXPECT_TRUE(dc.pictures.empty());
    EXPECT_EQ(dc.rects.size(), 4u) << "a frame each, and no swatches";
    EXPECT_FALSE(dc.Shows("Legende"));
    EXPECT_TRUE(dc.Shows("X [m]"));
    EXPECT_TRUE(dc.Shows("12")) << "a label of the axis";
}
} // namespace

// Updating

TEST(HygieneMaps, ShowAxesAloneBeforeAnEvaluation)
{
    ONEEMITTERHALL hall;
    MAPCASE maps(hall.room);
    ExpectNoMaps(maps);
    MAPCASE::Answer(false); // the designer cancels
    maps.Update();
    EXPECT_FALSE(maps.roomBlk.IsValid());
    ExpectNoMaps(maps);
    MAPCASE::Answer(true);
    maps.Update(true); // lists and texts only
    ExpectNoMaps(maps);
    EXPECT_TRUE(TEXTSINUSE::Status().empty());
}

TEST(HygieneMaps, ShowAxesAloneAfterAnEvaluationWithoutAMap)
{
    ONEEMITTERHALL hall;
    hall.RemoveEmitters();
    MAPCASE maps(hall.room);
    maps.roomBlk.params.minInte.id = EDC_VUDF;
    maps.roomBlk.params.maxInte.id = EDC_VUDF;
    maps.Update();
    EXPECT_TRUE(maps.roomBlk.IsValid());
    EXPECT_EQ(maps.summary.Pixels(), 0);
    EXPECT_EQ(maps.summary.Passed(), 0);
    ExpectNoMaps(maps);
}

TEST(HygieneMaps, HaveAPixelForEachPointOfTheLastRaster)
{
    struct {
        double length, width;
        int draft;
        int columns, rows;
    } cases[] = {{12, 8, 1, 169, 113}, {12, 8, 0, 505, 337}, {60, 30, 1, 169, 85}, {60, 30, 0, 505, 253}};
    for (const auto &c : cases) {
        FIELDHALL hall(c.length, c.width, 6);
        MAPCASE maps(hall.room);
        maps.roomBlk.params.draft.Set(c.draft);
        maps.Update();
        ASSERT_NE(maps.summary.Picture(), nullptr);
        EXPECT_EQ(maps.summary.Picture()->bitmap.Width(), c.columns);
        EXPECT_EQ(maps.summary.Picture()->bitmap.Height(), c.rows);
        EXPECT_EQ(maps.summary.Pixels(), c.columns * c.rows);
        for (TZulCriterionMap *map : maps.Criteria()) {
            ASSERT_NE(map->Picture(), nullptr);
            EXPECT_EQ(map->Picture()->bitmap.Width(), c.columns);
            EXPECT_EQ(map->Picture()->bitmap.Height(), c.rows);
        }
    }
}

TEST(HygieneMaps, ShowWhatTheirCriteriaSayOnRandomHalls)
{
    int shared = 0; // points that more than one criterion refuses
    int mixed = 0;  // plans with points of all kinds
    for (unsigned start = 1; start <= 30; ++start) {
        SCOPED_TRACE(start);
        CHANCE chance(start);
        auto hall = MakeFieldHall(start);
        MAPCASE maps(hall->room);
        double low = 0;
        double high = 0;
        WorkLimits(hall->room.Data()->workClass, low, high);
        maps.SetAirTemp(chance.One(8) ? chance.Real(-400, 3000) : chance.Real(low - 5, low + 2));
        maps.Update();
        ZulHygieneMaps judged;
        ZulJudgePlan(hall->room, maps.info, maps.roomBlk.Map(), judged);
        ASSERT_NE(maps.summary.Picture(), nullptr);
        EXPECT_EQ(Differing(maps, *maps.headTemp.Picture(), judged.headTemp.pixels), 0);
        EXPECT_EQ(Differing(maps, *maps.diffTemp.Picture(), judged.diffTemp.pixels), 0);
        EXPECT_EQ(Differing(maps, *maps.headInte.Picture(), judged.headInte.pixels), 0);
        EXPECT_EQ(Differing(maps, *maps.summary.Picture(), judged.summary), 0);
        EXPECT_EQ(maps.summary.Passed(), judged.passed);
        EXPECT_EQ(maps.summary.Pixels(), judged.total);

        TZulSummaryMap plainSummary(&maps.roomBlk);
        TPlainMap<TZulHeadTempMap> headTemp(&plainSummary);
        TPlainMap<TZulDiffTempMap> diffTemp(&plainSummary);
        TPlainMap<TZulHeadInteMap> headInte(&plainSummary);
        for (TEdcBlock *map : std::vector<TEdcBlock *>{&plainSummary, &headTemp, &diffTemp, &headInte})
            map->Update(false);
        EXPECT_EQ(DifferingPixels(*maps.headTemp.Picture(), *headTemp.Picture()), 0);
        EXPECT_EQ(DifferingPixels(*maps.diffTemp.Picture(), *diffTemp.Picture()), 0);
        EXPECT_EQ(DifferingPixels(*maps.headInte.Picture(), *headInte.Picture()), 0);
        EXPECT_EQ(DifferingPixels(*maps.summary.Picture(), *plainSummary.Picture()), 0);
        EXPECT_EQ(maps.summary.Passed(), plainSummary.Passed());

        for (int j = 0; j < judged.summary.Height(); ++j)
            for (int i = 0; i < judged.summary.Width(); ++i)
                shared += (judged.headTemp.pixels.Row(j)[i] != 0) + (judged.diffTemp.pixels.Row(j)[i] != 0) +
                              (judged.headInte.pixels.Row(j)[i] != 0) >
                          1;
        mixed += judged.passed != 0 && judged.passed != judged.total;
    }
    EXPECT_GT(shared, 100) << "too few points that fail twice";
    EXPECT_GT(mixed, 5) << "too few plans with both kinds of points";
}

TEST(HygieneMaps, HaveTheValuesOfTheFieldAtThePlacesOfTheirPoints)
{
    ONEEMITTERHALL hall;
    for (int position : {EM_STANDING, EM_SITTING}) {
        hall.room.Data()->position = position;
        MAPCASE maps(hall.room);
        maps.SetAirTemp(18);
        maps.Update();
        for (AgPOINT p : {AgPOINT(4, 4, 0), AgPOINT(4.5, 3.5, 77), AgPOINT(0, 0, -3), AgPOINT(12, 8, 1.7)}) {
            EXPECT_EQ(maps.headTemp.Value(p), HeadTemp(hall.room, maps.info, p.x, p.y));
            EXPECT_EQ(maps.diffTemp.Value(p), DiffTemp(hall.room, maps.info, p.x, p.y));
            EXPECT_EQ(maps.headInte.Value(p), HeadInte(hall.room, p.x, p.y));
        }
        double head = position == EM_SITTING ? 1.1 : 1.7;
        EXPECT_NEAR(maps.headTemp.Value(AgPOINT(40, 40, 0)), 18 + (head - 1.5) * 0.3, 1e-9)
            << "beyond all emitters";
    }
}

TEST(HygieneMaps, AskForEachPointOnceFromTheFarSideDown)
{
    FIELDHALL hall(50, 17, 5);
    MAPCASE maps(hall.room);
    TProbeMap probe(&maps.summary);
    maps.Update();
    probe.Update(false);
    EXPECT_EQ(probe.log, "prepare finish(9802) ");
    ASSERT_EQ(probe.points.size(), 169u * 58u);
    double step = 17.0 / 57; // by the width, not the irradiation map's
    for (size_t at : {size_t{0}, size_t{1}, size_t{57}, size_t{58}, size_t{9801}}) {
        int i = static_cast<int>(at / 58);
        int j = static_cast<int>(at % 58);
        EXPECT_EQ(probe.points[at].x, i * step);
        EXPECT_EQ(probe.points[at].y, (57 - j) * step);
        EXPECT_EQ(probe.points[at].z, 0);
    }
    EXPECT_EQ(maps.Class(*probe.Picture(), 0, 0), 0);
    EXPECT_EQ(maps.Class(*probe.Picture(), 20, 3), 0);  // 5.96 m
    EXPECT_EQ(maps.Class(*probe.Picture(), 21, 3), 1);  // 6.26 m
    EXPECT_EQ(maps.Class(*probe.Picture(), 30, 57), 1); // 8.95 m
    EXPECT_EQ(maps.Class(*probe.Picture(), 31, 57), 2); // 9.25 m
}

TEST(HygieneMaps, AreOfOneRowInAHallWithoutWidth)
{
    FIELDHALL hall(300, 1, 5);
    MAPCASE maps(hall.room);
    TProbeMap probe(&maps.summary);
    maps.Update();
    probe.Update(false);
    ASSERT_EQ(probe.Picture()->bitmap.Height(), 1);
    EXPECT_EQ(probe.points.back().x, 168 * (300.0 / 168));
}

TEST(HygieneMaps, PrepareAndFinishAroundAnEvaluationWithoutAMapToo)
{
    ONEEMITTERHALL hall;
    MAPCASE maps(hall.room);
    TProbeMap probe(&maps.summary);
    maps.roomBlk.params.minInte.Set(100);
    maps.roomBlk.params.maxInte.Set(100);
    maps.Update();
    probe.Update(false);
    EXPECT_EQ(probe.log, "prepare finish(0) ");
    EXPECT_EQ(probe.Picture(), nullptr);
}

TEST(HygieneMaps, TellTheStatusLineWhileTheyAreMade)
{
    const std::string running = "Hygienische Pr\xFC"
                                "fung l\xE4uft . . .";
    ONEEMITTERHALL hall;
    MAPCASE maps(hall.room);
    TProbeMap probe(&maps.summary);
    maps.roomBlk.Update(false);
    TEXTSINUSE::Status().clear();
    maps.summary.Update(false);
    EXPECT_TRUE(TEXTSINUSE::Status().empty());
    probe.Update(false);
    EXPECT_EQ(TEXTSINUSE::Status(), (std::vector<std::string>{running, ""}));
    for (TZulCriterionMap *map : maps.Criteria()) {
        TEXTSINUSE::Status().clear();
        map->Update(false);
        ASSERT_FALSE(TEXTSINUSE::Status().empty());
        EXPECT_EQ(TEXTSINUSE::Status().front(), running);
        EXPECT_EQ(TEXTSINUSE::Status().back(), "");
    }
}

TEST(HygieneMaps, LoseTheirPicturesWithTheNextEvaluationOnly)
{
    ONEEMITTERHALL hall;
    MAPCASE maps(hall.room);
    maps.Update();
    ASSERT_NE(maps.headTemp.Picture(), nullptr);
    maps.Update(true);
    EXPECT_NE(maps.headTemp.Picture(), nullptr) << "a partial update evaluates nothing";
    EXPECT_NE(maps.summary.Picture(), nullptr);
    MAPCASE::Answer(false);
    maps.Update();
    EXPECT_NE(maps.headTemp.Picture(), nullptr) << "neither does one that was cancelled";
    MAPCASE::Answer(true);
    maps.roomBlk.params.minInte.Set(100); // no map between equal ends
    maps.Update();
    ExpectNoMaps(maps);
}

TEST(HygieneMaps, AreJudgedAnewWithEachEvaluation)
{
    ONEEMITTERHALL hall;
    MAPCASE maps(hall.room);
    maps.SetAirTemp(20);
    maps.Update();
    int warm = maps.summary.Passed();
    EXPECT_GT(warm, 0);
    maps.SetAirTemp(-40);
    maps.Update();
    EXPECT_EQ(maps.summary.Passed(), 0);
    maps.SetAirTemp(20);
    maps.Update();
    EXPECT_EQ(maps.summary.Passed(), warm);
}

TEST(HygieneMaps, AreTheSameForTheTwoHardestClasses)
{
    ONEEMITTERHALL hall;
    MAPCASE maps(hall.room);
    maps.SetAirTemp(11);
    auto pixels = [&](int workClass) {
        hall.room.Data()->workClass = workClass;
        maps.Update();
        std::vector<uint8_t> all;
        for (const TEdcPicture *picture : {maps.summary.Picture(), maps.headTemp.Picture(),
                                           maps.diffTemp.Picture(), maps.headInte.Picture()})
            for (int j = 0; j < picture->bitmap.Height(); ++j)
                all.insert(all.end(), picture->bitmap.Row(j), picture->bitmap.Row(j) + picture->bitmap.Width());
        return all;
    };
    EXPECT_EQ(pixels(4), pixels(5));
    EXPECT_NE(pixels(4), pixels(1));
}

// Counting

TEST(SummaryMap, CountsAFailingPointOnceWhoeverFails)
{
    ONEEMITTERHALL hall;
    MAPCASE maps(hall.room);
    maps.roomBlk.Update(false);
    maps.summary.Update(false);
    const TEdcPicture &picture = *maps.summary.Picture();
    EXPECT_EQ(maps.summary.Passed(), maps.summary.Pixels());
    for (int again = 0; again < 3; ++again) {
        maps.summary.Fail(0, 0);
        maps.summary.Fail(168, 112);
    }
    EXPECT_EQ(maps.summary.Passed(), maps.summary.Pixels() - 2);
    EXPECT_EQ(maps.Class(picture, 0, 0), 2);
    EXPECT_EQ(maps.Class(picture, 168, 112), 2);
    EXPECT_EQ(maps.Class(picture, 1, 0), 0);
    maps.summary.Update(false);
    EXPECT_EQ(maps.summary.Passed(), maps.summary.Pixels());
}

TEST(SummaryMap, TakesTheToleratedForFailed)
{
    ONEEMITTERHALL hall;
    hall.RemoveEmitters();
    MAPCASE maps(hall.room);
    maps.SetAirTemp(17); // class IIa wants 18, and tolerates 16
    maps.Update();
    EXPECT_EQ(maps.Class(*maps.headTemp.Picture(), 50, 50), 1);
    EXPECT_EQ(maps.summary.Passed(), 0);
    TPlaceDC dc;
    LayoutBlock(maps.summary, dc, {718, 1000});
    EXPECT_STREQ(maps.summary.Legend()->Box(0).text, "alle Kriterien sind erf\xFCllt - 0% Grundri\xDF");
}

TEST(SummaryMap, IgnoresFailuresWithoutAPicture)
{
    ONEEMITTERHALL hall;
    MAPCASE maps(hall.room);
    maps.summary.Fail(3, 3);
    EXPECT_EQ(maps.summary.Passed(), 0);
}

TEST(SummaryMap, StatesTheShareThatIsLeftInTheEnd)
{
    ONEEMITTERHALL hall;
    MAPCASE maps(hall.room);
    maps.SetAirTemp(20);
    maps.Update();
    int failed = maps.summary.Pixels() * 2 / 3 - (maps.summary.Pixels() - maps.summary.Passed());
    for (int k = 0; failed > 0; ++k) {
        int before = maps.summary.Passed();
        maps.summary.Fail(k % 169, k / 169);
        failed -= before - maps.summary.Passed();
    }
    TPlaceDC dc;
    LayoutBlock(maps.summary, dc, {718, 1000});
    EXPECT_EQ(Texts(maps.summary.Legend(), maps.palette.criterionColors),
              "0:alle Kriterien sind erf\xFCllt - 33% Grundri\xDF|"
              "2:wenigstens eines der Kriterien nicht erf\xFCllt (siehe unten)|");
}

// Bands and legends

TEST(CriterionMap, HasTheLimitsOfItsCriterionInItsLegend)
{
    struct {
        int workClass;
        const char *headTemp;
    } cases[] = {
        {0, "2:8.0|1:10.0|0:24.0|1:26.0|2:mehr|"},  {1, "2:18.0|1:20.0|0:24.0|1:26.0|2:mehr|"},
        {2, "2:16.0|1:18.0|0:22.0|1:24.0|2:mehr|"}, {3, "2:12.0|1:14.0|0:18.0|1:20.0|2:mehr|"},
        {4, "2:8.0|1:10.0|0:14.0|1:16.0|2:mehr|"},  {5, "2:8.0|1:10.0|0:14.0|1:16.0|2:mehr|"},
    };
    for (const auto &c : cases) {
        ONEEMITTERHALL hall;
        hall.room.Data()->workClass = c.workClass;
        MAPCASE maps(hall.room);
        const TEdcColorScale &colors = maps.palette.criterionColors;
        maps.Update();
        TPlaceDC dc;
        for (TZulCriterionMap *map : maps.Criteria()) {
            LayoutBlock(*map, dc, {718, 1000});
            EXPECT_EQ(Texts(map->LegendA(), colors), "0:erf\xFCllt das Kriterium|2:nicht entsprechend|");
        }
        EXPECT_EQ(Texts(maps.headTemp.LegendB(), colors), c.headTemp);
        EXPECT_EQ(Texts(maps.diffTemp.LegendB(), colors), "2:-10.0|1:-9.0|0:3.0|1:4.0|2:mehr|");
        EXPECT_EQ(Texts(maps.headInte.LegendB(), colors), "0:200|1:250|2:mehr|");
    }
}

TEST(CriterionMap, HasItsTitles)
{
    struct {
        const char *title, *legend;
    } wanted[] = {
        {"Operative Temperatur in Kopfh\xF6he", "Wert operativer Temperaturen ["},
        {"Differenz operativer Temp. zwischen Kopf und Kn\xF6"
         "cheln",
         "Differenzwerte operativer Temperaturen ["},
        {"Intensit\xE4t der Kopfbestrahlung", "Intensit\xE4tswerte des Strahlflusses [W/m"},
    };
    ONEEMITTERHALL hall;
    MAPCASE maps(hall.room);
    maps.Update();
    for (size_t i = 0; i < 3; ++i) {
        TPlaceDC dc;
        LayoutBlock(*maps.Criteria()[i], dc, {1000, 1000});
        maps.Criteria()[i]->Paint(dc, {0, 0, 1000, 1000});
        EXPECT_TRUE(dc.Shows(wanted[i].title)) << dc.calls;
        EXPECT_TRUE(dc.Shows(wanted[i].legend)) << dc.calls;
        EXPECT_TRUE(dc.Shows("Legende"));
    }
    TPlaceDC dc;
    LayoutBlock(maps.summary, dc, {1000, 1000});
    maps.summary.Paint(dc, {0, 0, 1000, 1000});
    EXPECT_TRUE(dc.Shows("Zusammenfass. aller Kriterien"));
    EXPECT_TRUE(dc.Shows("Legende"));
}

TEST(CriterionMap, BuildsItsLegendOfTheSidesThatItsBandHas)
{
    struct {
        double min, max, tol;
        const char *format;
        const char *boxes;
    } cases[] = {
        {1, 5, 2, "%.0lf", "2:-1|1:1|0:5|1:7|2:mehr|"},
        {1, 5, 0, "%.0lf", "2:1|0:5|2:mehr|"},
        {-DBL_MAX, 5, 2, "%.2lf", "0:5.00|1:7.00|2:mehr|"},
        {-DBL_MAX, 5, 0, "%lg", "0:5|2:mehr|"},
        {1, DBL_MAX, 2, "%lg", "2:-1|1:1|0:mehr|"},
        {1, DBL_MAX, 0, "%lg", "2:1|0:mehr|"},
        {-DBL_MAX, DBL_MAX, 2, "%lg", "0:mehr|"},
        {-DBL_MAX, DBL_MAX, 0, "%lg", "0:mehr|"},
        {0.3, 0.7, 0.1, "%.17lg",
         "2:0.20000000000000001|1:0.29999999999999999|0:0.69999999999999996|"
         "1:0.80000000000000004|2:mehr|"},
    };
    ONEEMITTERHALL hall;
    MAPCASE maps(hall.room);
    maps.Update();
    for (const auto &c : cases) {
        TProbeMap probe(&maps.summary);
        probe.bandMin = c.min;
        probe.bandMax = c.max;
        probe.bandTol = c.tol;
        probe.bandFormat = c.format;
        probe.Update(false);
        TPlaceDC dc;
        LayoutBlock(probe, dc, {718, 1000});
        EXPECT_EQ(Texts(probe.LegendB(), maps.palette.criterionColors), c.boxes) << c.min << " to " << c.max;
    }
}

TEST(CriterionMap, TakesItsLimitsInEitherOrder)
{
    ONEEMITTERHALL hall;
    MAPCASE maps(hall.room);
    TZulCriterionMap map(&maps.summary);
    EXPECT_EQ(map.Band().min, -DBL_MAX);
    EXPECT_EQ(map.Band().max, DBL_MAX);
    EXPECT_EQ(map.Band().tol, 0);
    map.SetBand(3, -9, 1, "%lg");
    EXPECT_EQ(map.Band().min, -9);
    EXPECT_EQ(map.Band().max, 3);
    EXPECT_EQ(map.Band().tol, 1);
    map.SetBand(-9, 3, 0, "%lg");
    EXPECT_EQ(map.Band().min, -9);
    EXPECT_EQ(map.Band().max, 3);
}

TEST(CriterionMap, WithoutAClassOfItsOwnMeetsEverything)
{
    ONEEMITTERHALL hall;
    MAPCASE maps(hall.room);
    TZulCriterionMap map(&maps.summary);
    maps.roomBlk.Update(false);
    maps.summary.Update(false);
    map.Update(false);
    ASSERT_NE(map.Picture(), nullptr);
    EXPECT_EQ(maps.Class(*map.Picture(), 84, 50), 0);
    EXPECT_EQ(maps.summary.Passed(), maps.summary.Pixels());
}

TEST(CriterionMap, AssertsWhatAProgrammerMustGive)
{
    ONEEMITTERHALL hall;
    MAPCASE maps(hall.room);
    TZulCriterionMap map(&maps.summary);
    EXPECT_TRUE(AbortsOnAssertion("tol >= 0", sourceFile, [&] { map.SetBand(0, 1, -0.5, "%lg"); }));
    EXPECT_TRUE(AbortsOnAssertion("tol >= 0", sourceFile, [&] { map.SetBand(0, 1, std::nan(""), "%lg"); }));
    EXPECT_TRUE(AbortsOnAssertion("min != max", sourceFile, [&] { map.SetBand(1, 1, 0, "%lg"); }));
    EXPECT_TRUE(AbortsOnAssertion("frm != NULL", sourceFile, [&] { map.SetBand(0, 1, 0, NULL); }));
    EXPECT_TRUE(AbortsOnAssertion("str != NULL", sourceFile, [&] { map.SetTitle(NULL); }));
    EXPECT_TRUE(AbortsOnAssertion("str != NULL", sourceFile, [&] { map.SetLegendTitle(NULL); }));
}

// Failures

TEST(HygieneMaps, OutOfMemoryLeaveNoPictureAndWorkAgainAfterwards)
{
    FIELDHALL hall(12, 1, 5); // few points: each fault runs it anew
    CHANCE chance(3);
    hall.AddEmitter(hall.AddModel(FIELDTABLE(), chance), {4, 0.5, 4});
    hall.room.Data()->workClass = 2;
    MAPCASE maps(hall.room);
    maps.Update();
    int swept = SweepFaults([&] { maps.summary.Update(false); },
                            [&](const FaultRun &run) {
                                EXPECT_EQ(run.code, run.fired ? XALLOC : XNULL);
                                EXPECT_EQ(maps.summary.Picture() == NULL, run.fired != 0);
                                EXPECT_EQ(maps.summary.Pixels() == 0, run.fired != 0);
                            });
    EXPECT_GT(swept, 3);
    for (TZulCriterionMap *map : maps.Criteria()) {
        swept = SweepFaults([&] { maps.summary.Update(false); }, // so that the plan is judged anew
                            [&] { map->Update(false); },
                            [&](const FaultRun &run) {
                                EXPECT_EQ(run.code, run.fired ? XALLOC : XNULL);
                                EXPECT_EQ(map->Picture() == NULL, run.fired != 0);
                            });
        EXPECT_GT(swept, 10);
    }
}

TEST(HygieneMaps, OutOfMemoryAtALayoutLeaveNoLegend)
{
    ONEEMITTERHALL hall;
    MAPCASE maps(hall.room);
    maps.Update();
    TPlaceDC dc;
    for (TEdcBlock *map : maps.Maps())
        LayoutBlock(*map, dc, {718, 1000}); // the logo is there from now on
    int swept = SweepFaults(
        [&] {
            LayoutBlock(maps.summary, dc, {718, 1000});
        },
        [&](const FaultRun &run) {
            EXPECT_EQ(run.code, run.fired ? XALLOC : XNULL);
            EXPECT_EQ(maps.summary.Legend() == NULL, run.fired != 0);
        });
    EXPECT_GT(swept, 20);
    swept = SweepFaults(
        [&] {
            LayoutBlock(maps.diffTemp, dc, {718, 1000});
        },
        [&](const FaultRun &run) {
            EXPECT_EQ(run.code, run.fired ? XALLOC : XNULL);
            EXPECT_EQ(maps.diffTemp.LegendA() == NULL, run.fired != 0);
            EXPECT_EQ(maps.diffTemp.LegendB() == NULL, run.fired != 0);
        });
    EXPECT_GT(swept, 30);
}

TEST(HygieneMaps, DropThePictureOfACriterionThatFailsAtItsEnd)
{
    ONEEMITTERHALL hall;
    MAPCASE maps(hall.room);
    TProbeMap probe(&maps.summary);
    maps.Update();
    probe.Update(false);
    ASSERT_NE(probe.Picture(), nullptr);
    probe.failing = XLIMIT;
    probe.Update(false);
    EXPECT_STREQ(xCode, XLIMIT);
    xCode = XNULL;
    EXPECT_EQ(probe.Picture(), nullptr);
}
