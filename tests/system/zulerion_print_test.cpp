// The report on paper, as a person gets it from "Drucken" and from zulreport: pages, the order of its parts,
// what belongs together on one page, and nothing outside of it.
#include "zulerioncase.h"

#include "win/printer.h"

#include <map>
#include <sys/stat.h>

namespace
{
const char *const halls[] = {"Werkstatt", "Produktionshalle", "Logistikhalle"};
const double margin = 72 / 2.54; // points

using testdoor::DialogBox;

class Printing : public Zulerion
{
protected:
    ~Printing() override { chmod(folder.path.c_str(), 0700); }

    void OpenAndUpdate(const std::string &hall)
    {
        OpenSample(hall);
        Update();
    }
    /// The report as zulreport prints it.
    std::string PrintAlone(const std::string &hall)
    {
        ProgramRun run = RunProgram({ZUL_PROGRAM_FOLDER "/zulreport", Sample(hall), "allein.pdf"}, folder.path);
        EXPECT_EQ(run.exitCode, 0) << run.err;
        return folder.Path("allein.pdf");
    }
};

void ExpectWithinPages(const std::string &pdf)
{
    for (const PdfPage &page : PdfPages(pdf)) {
        EXPECT_NEAR(page.width, 595.28, 0.8);
        EXPECT_NEAR(page.height, 841.89, 0.8);
    }
    for (const PdfWord &word : PdfWords(pdf)) {
        EXPECT_GE(word.x, margin - 1) << word.text;
        EXPECT_GE(word.y, margin - 4) << word.text; // the ascent has some room above
        EXPECT_LE(word.right, 595.28 - margin + 1) << word.text;
        EXPECT_LE(word.bottom, 841.89 - margin + 1) << word.text;
    }
}

/// Where a line begins that reads like that: page * 10000 + points from its top; -1 without one.
double PlaceOf(const Lines &lines, const std::string &text, double after = -1)
{
    const std::vector<PdfWord> &words = lines.Words();
    std::istringstream in(text);
    std::vector<std::string> parts(std::istream_iterator<std::string>(in), {});
    for (size_t i = 0; i + parts.size() <= words.size(); ++i) {
        double place = words[i].page * 10000 + words[i].y;
        size_t n = 0;
        while (n < parts.size() && words[i + n].text == parts[n])
            ++n;
        if (n == parts.size() && place > after)
            return place;
    }
    return -1;
}

/// Lines that the parts of the report begin with, in their order; a part may have none of its own.
const char *const heads[] = {"Fußboden",
                             "Wand A",
                             "Wand B",
                             "Wand C",
                             "Wand D",
                             "Decke",
                             "Auswertung",
                             "Hygienische Prüfung",
                             "Zusammenfass. aller Kriterien",
                             "Operative Temperatur in Kopfhöhe",
                             "Differenz operativer Temp. zwischen Kopf und Knöcheln",
                             "Intensität der Kopfbestrahlung",
                             "Schlußfolgerung",
                             "Den",
                             "Anhang: Arbeitsklassen",
                             "Klasse I",
                             "Klasse IIIb"};

/// The texts of a report with their places, for comparison.
std::vector<std::string> Placed(const std::string &pdf)
{
    std::vector<std::string> placed;
    for (const PdfWord &word : PdfWords(pdf))
        placed.push_back(Format("%d %.0f %.0f ", word.page, word.x, word.y) + word.text);
    return placed;
}
} // namespace

TEST_F(Printing, GivesA4PagesWithNothingOutsideOfThem)
{
    const std::map<std::string, size_t> pages = {
        {"Werkstatt", 10}, {"Produktionshalle", 9}, {"Logistikhalle", 9}};
    for (const char *hall : halls) {
        SCOPED_TRACE(hall);
        OpenAndUpdate(hall);
        std::string pdf = Print();
        EXPECT_EQ(PdfPages(pdf).size(), pages.at(hall));
        ExpectWithinPages(pdf);
        EXPECT_EQ(PdfTitle(pdf), hall);
    }
}

TEST_F(Printing, OfAHallOfAnyShapeStaysOnItsPages)
{
    const char *const shapes[][3] = {
        {"100", "5", "4"}, {"5", "100", "4"}, {"1", "1", "1"}, {"1000", "1000", "1000"}, {"3", "200", "60"},
    };
    for (const auto &shape : shapes) {
        SCOPED_TRACE(testing::Message() << shape[0] << " x " << shape[1] << " x " << shape[2]);
        NewHall(shape[0], shape[1], shape[2]);
        Edit(HYGIENE, "Arbeitsbedingungen", [](DialogBox &box) { box.Choose(100, 2); });
        Update();
        EXPECT_TRUE(LooksFresh(Doc()));
        std::string pdf = Print();
        ExpectWithinPages(pdf);
        Lines lines(pdf);
        for (const char *title :
             {"Fußboden", "Wand A", "Wand D", "Decke", "Auswertung", "Anhang: Arbeitsklassen"})
            EXPECT_TRUE(lines.Has(title)) << title;
        Expect(WIN_ID_NO);
        Choose(CLOSE);
    }
}

TEST_F(Printing, HasThePartsInTheirOrder)
{
    for (const char *hall : halls) {
        SCOPED_TRACE(hall);
        OpenAndUpdate(hall);
        Lines lines(Print());
        double former = PlaceOf(lines, "Klima und Betriebsmodus");
        EXPECT_GT(former, PlaceOf(lines, "Strahlungsheizung der"));
        for (const char *head : heads) {
            double place = PlaceOf(lines, head, former);
            EXPECT_GT(place, former) << head;
            former = place;
        }
        double floor = PlaceOf(lines, "Fußboden", 20000), wall = PlaceOf(lines, "Wand A");
        double emitters = PlaceOf(lines, "Liste der Infrarotstrahler");
        EXPECT_GT(emitters, floor);
        EXPECT_LT(emitters, wall);
        if (hall == std::string("Logistikhalle"))
            continue; // its floor has no openings
        double holes = PlaceOf(lines, "Liste der Bauöffnungen");
        EXPECT_GT(holes, floor);
        EXPECT_LT(holes, emitters);
    }
}

TEST_F(Printing, KeepsTitlesWithWhatFollows)
{
    for (const char *hall : halls) {
        SCOPED_TRACE(hall);
        OpenAndUpdate(hall);
        Lines lines(Print());
        std::map<int, double> lowest; // baseline of each page's last line
        for (const PdfWord &word : lines.Words())
            lowest[word.page] = std::max(lowest[word.page], word.y);
        int checked = 0;
        for (const char *head :
             {"Liste der Infrarotstrahler", "Liste der Warmluftaggregate", "Liste der Bauöffnungen",
              "Auswertung", "Hygienische Prüfung", "Schlußfolgerung", "Klasse IIa", "Nr."})
            for (double place = PlaceOf(lines, head); place >= 0; place = PlaceOf(lines, head, place)) {
                int page = static_cast<int>(place / 10000);
                EXPECT_GT(lowest[page], place - page * 10000 + 10)
                    << head << " is the last line of page " << page;
                ++checked;
            }
        EXPECT_GT(checked, 10);
        EXPECT_EQ(static_cast<int>(PlaceOf(lines, "Anhang: Arbeitsklassen") / 10000),
                  lines.Words().back().page);
    }
}

TEST_F(Printing, IsTheSameThroughZulreport)
{
    for (const char *hall : halls) {
        SCOPED_TRACE(hall);
        OpenAndUpdate(hall);
        std::string pdf = Print(), alone = PrintAlone(hall);
        EXPECT_EQ(Placed(alone), Placed(pdf));
        EXPECT_EQ(PdfTitle(alone), PdfTitle(pdf));
        size_t pages = PdfPages(pdf).size();
        ASSERT_EQ(PdfPages(alone).size(), pages);
        for (size_t page = 1; page <= pages; ++page)
            EXPECT_EQ(PdfPixels(alone, static_cast<int>(page), 40).gray,
                      PdfPixels(pdf, static_cast<int>(page), 40).gray);
    }
}

TEST_F(Printing, LeavesTheScreenAsItWas)
{
    OpenAndUpdate("Werkstatt");
    ScrollTo(Doc().RoomBlock());
    std::vector<TColor> before = testdoor::Pixels(Doc());
    Print();
    testdoor::Settle();
    EXPECT_EQ(testdoor::Pixels(Doc()), before);
    EXPECT_TRUE(LooksFresh(Doc()));
    EXPECT_EQ(Doc().locked, 0);
    EXPECT_FALSE(Doc().modified);
    testdoor::DoubleClick(Doc(), Middle(Doc().RoomBlock()));
    testdoor::Settle();
    ASSERT_NE(Doc().openedBlk, nullptr);
    before = testdoor::Pixels(Doc());
    std::string pdf = Print();
    EXPECT_EQ(PdfPages(pdf).size(), 1u) << "an opened plan alone";
    EXPECT_TRUE(Lines(pdf).Has("Fußboden"));
    EXPECT_EQ(PdfImages(pdf).size(), 1u);
    testdoor::Settle();
    EXPECT_EQ(testdoor::Pixels(Doc()), before);
    Key("Esc");
    EXPECT_TRUE(LooksFresh(Doc()));
}

TEST_F(Printing, ProposesTheHallsNameAndTakesSomeOfThePages)
{
    OpenAndUpdate("Werkstatt");
    std::vector<std::string> all = Placed(Print());
    testdoor::Script([](testdoor::ModalBox &box) {
        EXPECT_NE(box.FileName().find("Werkstatt.pdf"), std::string::npos) << box.FileName();
        box.Answer(WIN_ID_CANCEL);
    });
    Choose(PRINT);
    std::string pdf = Print(2, 3);
    EXPECT_EQ(PdfPages(pdf).size(), 2u);
    std::vector<std::string> some = Placed(pdf);
    EXPECT_TRUE(std::ranges::all_of(some, [&all](std::string text) {
        ++text[0]; // its page
        return std::ranges::count(all, text) > 0;
    }));
    NewHall();
    testdoor::Script([](testdoor::ModalBox &box) {
        EXPECT_NE(box.FileName().find("neu.pdf"), std::string::npos) << box.FileName();
        box.Answer(WIN_ID_CANCEL);
    });
    Choose(PRINT);
}

TEST_F(Printing, ThatIsStoppedLeavesNoFileAndAUsableWindow)
{
    OpenAndUpdate("Werkstatt");
    std::string pdf = folder.Path("bericht.pdf");
    testdoor::ScriptAbort(3, [](testdoor::ModalBox &box) { box.Answer(WIN_ID_CANCEL); });
    testdoor::Script([&pdf](testdoor::ModalBox &box) {
        box.FileName(pdf);
        box.Answer(WIN_ID_OK);
    });
    testdoor::Script([](testdoor::ModalBox &box) {
        EXPECT_EQ(ToUtf8(box.Text().c_str()), "'Werkstatt' nicht ausgedruckt.\nDruck abgebrochen.");
        box.Answer(WIN_ID_OK);
    });
    Choose(PRINT);
    EXPECT_FALSE(std::filesystem::exists(pdf));
    EXPECT_EQ(Doc().locked, 0);
    EXPECT_TRUE(LooksFresh(Doc()));
    EXPECT_EQ(PdfPages(Print()).size(), 10u);
}

TEST_F(Printing, IntoAFolderWithoutRightsSaysSo)
{
    OpenAndUpdate("Werkstatt");
    chmod(folder.path.c_str(), 0555);
    testdoor::Script([this](testdoor::ModalBox &box) {
        box.FileName(folder.Path("bericht.pdf"));
        box.Answer(WIN_ID_OK);
    });
    testdoor::Script([this](testdoor::ModalBox &box) {
        EXPECT_EQ(box.Kind(), "message");
        EXPECT_NE(box.Text().find(folder.Path("bericht.pdf")), std::string::npos) << box.Text();
        box.Answer(WIN_ID_OK);
    });
    testdoor::Script([](testdoor::ModalBox &box) { box.Answer(WIN_ID_CANCEL); }); // it stays for another name
    {
        PLAINUSER plain;
        Choose(PRINT);
    }
    EXPECT_TRUE(folder.List().empty());
    EXPECT_EQ(Doc().locked, 0);
    EXPECT_TRUE(LooksFresh(Doc()));
}

TEST_F(Printing, CutsAClosingTextBetweenPagesAtItsParagraphs)
{
    OpenAndUpdate("Werkstatt");
    Edit(CONCLUSION, "Schlußtext", [](DialogBox &box) {
        std::string text;
        for (int i = 1; i <= 60; ++i)
            text +=
                "Absatz " + std::to_string(i) +
                " der Schlußfolgerung ist so lang, dass er mehr als eine Zeile hat, und gehört zusammen.\n\n";
        box.Paste(101, text);
    });
    Lines lines = Report();
    const std::vector<PdfWord> &words = lines.Words();
    int found = 0;
    std::map<int, int> pages;
    for (size_t i = 0; i + 1 < words.size(); ++i)
        if (words[i].text == "Absatz") {
            ++found;
            EXPECT_EQ(words[i + 1].text, std::to_string(found));
            size_t end = i;
            while (words[end].text != "zusammen.")
                ++end;
            EXPECT_EQ(words[end].page, words[i].page) << "paragraph " << found;
            ++pages[words[i].page];
        }
    EXPECT_EQ(found, 60);
    EXPECT_GT(pages.size(), 2u);
    EXPECT_EQ(static_cast<int>(PlaceOf(lines, "Absatz 60") / 10000),
              static_cast<int>(PlaceOf(lines, "Den ") / 10000))
        << "the closing line is not alone";
}

TEST_F(Printing, OfAnEmptyClosingTextHasTitleAndClosingLine)
{
    OpenAndUpdate("Werkstatt");
    Edit(CONCLUSION, "Schlußtext", [](DialogBox &box) { box.Type(101, ""); });
    Lines lines = Report();
    double title = PlaceOf(lines, "Schlußfolgerung"), line = PlaceOf(lines, "Den");
    EXPECT_GT(line, title);
    EXPECT_LT(line, title + 60);
}
