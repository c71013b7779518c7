// The evaluation as a person runs it: "Aktualisierung" by key, menu and tool bar, its parameters, what stands
// in the report behind it and what a cancelled run leaves. The figures must be those of zulcalc.
#include "zulerioncase.h"

#include <array>

namespace
{
using testdoor::DialogBox;

const char *const halls[] = {"Werkstatt", "Produktionshalle", "Logistikhalle"};

enum Field { HEIGHT = 100, LOW = 101, HIGH = 102, AIR = 103, DRAFT = 104, FINE = 105 };

/// The fine scale of the irradiation map.
const TColor fineColors[] = {{112, 0, 120}, {112, 0, 0},   {150, 0, 0},   {188, 0, 0},
                             {218, 0, 0},   {235, 32, 0},  {235, 65, 0},  {235, 95, 0},
                             {235, 125, 0}, {235, 155, 0}, {235, 185, 0}, {235, 185, 175}};
const TColor metColor = {230, 160, 125};

class Updates : public Zulerion
{
protected:
    void OpenFloorPlan()
    {
        ScrollTo(Doc().RoomBlock());
        TRect place = Doc().ToWindow(Doc().RoomBlock()->rect.Rect());
        testdoor::DoubleClick(Doc(), {(place.left + place.right) / 2, place.top + 5});
        testdoor::Settle();
        ASSERT_EQ(Doc().openedBlk, Doc().RoomBlock());
    }
    long MapPixels()
    {
        long pixels = 0;
        for (const TColor &color : fineColors)
            pixels += CountPixels(color);
        return pixels;
    }
    /// Runs an update in the way that the dialog's command was given.
    void UpdateBy(const std::function<void()> &command)
    {
        InDialog("Aktualisierung", [](DialogBox &box) { box.Press("Return"); });
        command();
    }
};

std::vector<std::string> Texts(const Lines &lines)
{
    std::vector<std::string> texts;
    for (const PdfWord &word : lines.Words())
        texts.push_back(word.text);
    return texts;
}
} // namespace

TEST_F(Updates, OfTheSampleHallsHaveTheFiguresOfZulcalc)
{
    const std::function<void()> ways[] = {[this] { Key("F5"); }, [this] { Choose(RECALC); },
                                          [this] { EXPECT_TRUE(Press(UPDATE_BUTTON)); }};
    for (size_t i = 0; i < std::size(halls); ++i) {
        SCOPED_TRACE(halls[i]);
        OpenSample(halls[i]);
        EXPECT_EQ(Caption(), std::string("Zulerion - ") + halls[i]);
        std::string pdf = Print();
        EXPECT_EQ(Lines(pdf).PageOf("Auswertung"), 0) << "nothing is evaluated yet";
        EXPECT_TRUE(PdfImages(pdf).empty());
        UpdateBy(ways[i]);
        EXPECT_EQ(Status(), "");
        EXPECT_FALSE(testdoor::IsWaitCursor());
        EXPECT_TRUE(LooksFresh(Doc()));
        pdf = Print();
        CompareAll(Lines(pdf), Figures({Sample(halls[i])}));
        EXPECT_EQ(PdfImages(pdf).size(), 5u) << "the irradiation map and four of the hygiene";
        EXPECT_FALSE(Doc().modified);
        EXPECT_EQ(Caption(), std::string("Zulerion - ") + halls[i]);
    }
}

TEST_F(Updates, TakeTheirParametersFromTheDialog)
{
    const struct {
        std::array<const char *, 4> typed; // height, ends of the scale, air
        bool draft, fine;
        std::vector<std::string> args;
    } table[] = {
        {{"1.5", "", "", ""}, true, true, {"--height", "1.5"}},
        {{"0", "20", "180", ""}, true, true, {"--min", "20", "--max", "180"}},
        {{"1", "", "", "30"}, true, false, {"--height", "1", "--air-temp", "30", "--coarse-scale"}},
        {{"0.5", "", "150", "12"},
         false,
         true,
         {"--height", "0.5", "--max", "150", "--air-temp", "12", "--fine-grid"}},
    };
    OpenSample("Werkstatt");
    for (const auto &row : table) {
        SCOPED_TRACE(testing::PrintToString(row.args));
        Update([&row](DialogBox &box) {
            for (int i = 0; i < 4; ++i)
                box.Type(HEIGHT + i, row.typed[static_cast<size_t>(i)]);
            if ((box.Check(DRAFT) == WIN_CHECKED) != row.draft)
                box.Click(DRAFT);
            if ((box.Check(FINE) == WIN_CHECKED) != row.fine)
                box.Click(FINE);
        });
        std::vector<std::string> args = row.args;
        args.push_back(Sample("Werkstatt"));
        nlohmann::json figures = Figures(args);
        std::string pdf = Print();
        Lines lines(pdf);
        CompareAll(lines, figures);
        bool isReachable = figures["info"]["airTemp"] <= figures["info"]["maxAirTemp"];
        EXPECT_EQ(lines.Has("Unerreichbar - Leistung erhöhen!"), !isReachable);
        for (const PdfImage &image : PdfImages(pdf)) {
            EXPECT_EQ(image.width, figures["columns"].get<int>());
            EXPECT_EQ(image.height, figures["rows"].get<int>());
        }
    }
}

TEST_F(Updates, KeepTheirParametersAsLongAsTheHall)
{
    auto expectDefaults = [](DialogBox &box) {
        EXPECT_EQ(box.Text(HEIGHT), "0");
        for (int id : {LOW, HIGH, AIR})
            EXPECT_EQ(box.Text(id), "");
        EXPECT_EQ(box.Check(DRAFT), WIN_CHECKED);
        EXPECT_EQ(box.Check(FINE), WIN_CHECKED);
    };
    auto expectTyped = [](DialogBox &box) {
        EXPECT_EQ(box.Text(HEIGHT), "1.75");
        EXPECT_EQ(box.Text(LOW), "");
        EXPECT_EQ(box.Text(HIGH), "160");
        EXPECT_EQ(box.Text(AIR), "14.5");
        EXPECT_EQ(box.Check(DRAFT), WIN_CHECKED);
        EXPECT_EQ(box.Check(FINE), WIN_UNCHECKED);
    };
    OpenSample("Werkstatt");
    Update([&](DialogBox &box) {
        expectDefaults(box);
        box.Type(HEIGHT, "1.75");
        box.Type(HIGH, "160");
        box.Type(AIR, "14.5");
        box.Click(FINE);
    });
    InDialog("Aktualisierung", [&](DialogBox &box) {
        expectTyped(box);
        box.Type(HEIGHT, "9");
        box.Click(DRAFT);
        box.Press("Esc"); // what was typed is dropped
    });
    Key("F5");
    Update(expectTyped);
    OpenSample("Werkstatt");
    Update(expectDefaults);
}

TEST_F(Updates, RefuseAHeightBelowTheFloor)
{
    OpenSample("Werkstatt");
    Update([](DialogBox &box) {
        for (const char *height : {"", "-0.1", "hoch"}) {
            box.Type(HEIGHT, height);
            EXPECT_NE(SaidWhile([&box] { box.Press("Return"); }), "");
            EXPECT_EQ(box.Focus(), HEIGHT);
        }
        box.Type(HEIGHT, "0");
    });
    EXPECT_TRUE(Report().Has("Auswertung"));
}

TEST_F(Updates, ThatAreCancelledRefreshTheListsAndKeepTheFigures)
{
    OpenSample("Werkstatt");
    Update();
    Lines before = Report();
    Edit(ENERGY, "Wärmequellen", [](DialogBox &box) { box.Type(104, "77.25"); });
    std::string pdf = Print();
    EXPECT_TRUE(Lines(pdf).Has("Dauerwärmegewinn: 77.25 kW"));
    EXPECT_EQ(PdfImages(pdf).size(), 5u) << "an edit leaves the maps";
    CancelUpdate();
    EXPECT_TRUE(LooksFresh(Doc()));
    pdf = Print();
    Lines after(pdf);
    EXPECT_TRUE(after.Has("Dauerwärmegewinn: 77.25 kW"));
    EXPECT_EQ(PdfImages(pdf).size(), 1u) << "the hygiene maps are those of no evaluation";
    EXPECT_TRUE(after.Has("Zusammenfass. aller Kriterien"));
    EXPECT_FALSE(after.Has("Legende"));
    for (const char *label : {"Wärmeverlust:", "Maximal:", "Jährlich:", "erreichbar:", "Intensität:"})
        EXPECT_EQ(after.Behind(label), before.Behind(label)) << label;
    OpenFloorPlan();
    EXPECT_EQ(MapPixels(), 0) << "a map that no longer holds is not drawn upon";
    Update();
    EXPECT_GT(MapPixels(), 10000);
    Key("Esc");
    pdf = Print();
    EXPECT_EQ(PdfImages(pdf).size(), 5u);
    EXPECT_NE(Lines(pdf).Behind("erreichbar:"), before.Behind("erreichbar:"));
}

TEST_F(Updates, ThatAreCancelledAtFirstShowNoFigureAndNoMap)
{
    OpenSample("Werkstatt");
    CancelUpdate();
    std::string pdf = Print();
    EXPECT_TRUE(PdfImages(pdf).empty());
    EXPECT_EQ(Lines(pdf).Behind("Wärmeverlust:"), "0");
    EXPECT_EQ(Lines(pdf).Behind("Höchstintensität:"), "0.0");
    OpenFloorPlan();
    EXPECT_EQ(MapPixels(), 0);
}

TEST_F(Updates, PaintTheMapInTheSharesThatZulcalcCounts)
{
    nlohmann::json figures = Figures({Sample("Werkstatt")});
    double points = figures["columns"].get<double>() * figures["rows"].get<double>();
    OpenSample("Werkstatt");
    Update();
    OpenFloorPlan();
    double all = static_cast<double>(MapPixels());
    ASSERT_GT(all, 10000);
    for (size_t i = 0; i < std::size(fineColors); ++i) {
        double wanted = figures["map"]["hist"][i].get<double>() / points;
        double seen = static_cast<double>(CountPixels(fineColors[i])) / all;
        EXPECT_NEAR(seen, wanted, 0.02) << "colour " << i; // emitters, zones and numbers cover some
    }
}

TEST_F(Updates, OfAHallWithoutEmittersHaveFiguresAndNoMap)
{
    OpenSample("Werkstatt");
    Update();
    OpenFloorPlan();
    EXPECT_TRUE(Press(2001)); // emitters
    EXPECT_TRUE(Press(21011));
    Key("Ctrl+A");
    Key("Del");
    EXPECT_TRUE(LooksFresh(Doc()));
    Key("Esc");
    EXPECT_TRUE(Doc().modified);
    Update();
    std::string pdf = Print();
    Lines lines(pdf);
    EXPECT_TRUE(PdfImages(pdf).empty());
    EXPECT_FALSE(lines.Has("Liste der Infrarotstrahler"));
    for (const char *label : {"Infrarotstrahler:", "Intensitätsstreuung:"})
        EXPECT_EQ(lines.Behind(label), "0") << label;
    for (const char *label : {"Mindestintensität:", "Höchstintensität:", "Intensität:"})
        EXPECT_EQ(lines.Behind(label), "0.0") << label;
    EXPECT_NE(lines.Behind("Wärmeverlust:"), "0");
    EXPECT_FALSE(lines.Has("Legende")) << "no map, no legend";
    EXPECT_TRUE(lines.Has("Operative Temperatur in Kopfhöhe"));
    EXPECT_EQ(MapPixels(), 0);
}

TEST_F(Updates, WithEndsThatLeaveNoScaleHaveFiguresAndNoMap)
{
    OpenSample("Werkstatt");
    Update();
    for (const char *low : {"100", "200"}) {
        Update([low](DialogBox &box) {
            box.Type(LOW, low);
            box.Type(HIGH, "100");
        });
        std::string pdf = Print();
        EXPECT_TRUE(PdfImages(pdf).empty());
        EXPECT_FALSE(Lines(pdf).Has("Werte gültig bei"));
        CompareInfo(Lines(pdf), Figures({Sample("Werkstatt")})["info"]);
    }
}

TEST_F(Updates, OfANewHallWithoutAnyDataSayWhatCanBeSaid)
{
    NewHall();
    Update();
    Lines lines = Report();
    EXPECT_EQ(lines.Behind("Grundfläche:"), "240");
    EXPECT_EQ(lines.Behind("Rauminhalt:"), "1440");
    for (const char *none : {"nan", "-nan", "inf", "-inf"})
        EXPECT_EQ(lines.Count(none), 0) << none;
    EXPECT_TRUE(LooksFresh(Doc()));
}

TEST_F(Updates, ShowFourMapsAsLongAsThereIsAWorkingClass)
{
    OpenSample("Produktionshalle"); // with warm-air units, which change nothing about it
    Update();
    std::string pdf = Print();
    EXPECT_TRUE(Lines(pdf).Has("Liste der Warmluftaggregate"));
    EXPECT_EQ(PdfImages(pdf).size(), 5u);
    auto choose = [this](int entry) {
        Edit(HYGIENE, "Arbeitsbedingungen", [entry](DialogBox &box) { box.Choose(100, entry); });
    };
    choose(4); // another class: its texts at once, the maps of the evaluation stay
    pdf = Print();
    EXPECT_TRUE(Lines(pdf).Has("Arbeitsklasse: IIIa"));
    EXPECT_EQ(PdfImages(pdf).size(), 5u);
    choose(0);
    pdf = Print();
    EXPECT_EQ(PdfImages(pdf).size(), 1u) << "they go at once";
    for (const char *word : {"Hygienische", "Zusammenfass.", "Kopfhöhe", "Anhang:"})
        EXPECT_EQ(Lines(pdf).PageOf(word), 0) << word;
    EXPECT_TRUE(LooksFresh(Doc()));
    Update();
    EXPECT_EQ(PdfImages(Print()).size(), 1u);
    choose(3);
    pdf = Print();
    EXPECT_TRUE(Lines(pdf).Has("Arbeitsklasse: IIb"));
    EXPECT_GT(Lines(pdf).PageOf("Anhang:"), 0);
    EXPECT_EQ(PdfImages(pdf).size(), 1u) << "maps come with the next evaluation";
    Update();
    EXPECT_EQ(PdfImages(Print()).size(), 5u);
}

TEST_F(Updates, ShowTheHygieneMapsOnTheScreenInTheSharesThatWereFound)
{
    nlohmann::json figures = Figures({Sample("Werkstatt")});
    double share = figures["hygiene"]["passed"].get<double>() / figures["hygiene"]["pixels"].get<double>();
    OpenSample("Werkstatt");
    Update();
    testdoor::ResizeClient(Doc(), {1200, 1500});
    testdoor::Settle();
    const TEdcBlock *summary = Doc().Parts()[18];
    ASSERT_NE(summary, nullptr);
    ScrollTo(summary);
    TRect place = Doc().ToWindow(summary->rect.Rect());
    std::vector<TColor> pixels = testdoor::Pixels(Doc());
    long met = 0, failed = 0;
    for (int y = std::max(place.top, 0); y < std::min(place.bottom, Doc().GetClientRect().bottom); ++y)
        for (int x = std::max(place.left, 0); x < std::min(place.right, Doc().GetClientRect().right); ++x) {
            const TColor &color = pixels[static_cast<size_t>(y) * Doc().GetClientRect().Width() + x];
            met += color == metColor;
            failed += color == TColor{125, 125, 185};
        }
    ASSERT_GT(met + failed, 10000);
    EXPECT_NEAR(static_cast<double>(met) / static_cast<double>(met + failed), share, 0.02);
}

TEST_F(Updates, GiveTheSameReportEachTime)
{
    OpenSample("Logistikhalle");
    Update();
    std::vector<std::string> first = Texts(Report());
    Update();
    EXPECT_EQ(Texts(Report()), first);
    Choose(CLOSE);
    EXPECT_TRUE(IsEmptyWindow());
    OpenSample("Logistikhalle");
    Update();
    EXPECT_EQ(Texts(Report()), first);
}
