// The report as a program makes it: the three sample halls, whose figures must be those of zulcalc, and all
// that can go wrong.
#include "support/folder.h"
#include "support/reportlines.h"
#include "support/runprogram.h"
#include "tools/zulcalc_fixture.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <csignal>
#include <linux/capability.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/stat.h>

namespace
{
using TEXTS = std::vector<std::string>;

const std::string programFolder = ZUL_PROGRAM_FOLDER;
const char *const halls[] = {"Werkstatt", "Produktionshalle", "Logistikhalle"};

std::string HallFile(const std::string &hall)
{
    return programFolder + "/Beispiele/" + hall + ".sc1";
}

class ZulReport : public testing::Test
{
protected:
    ProgramRun Run(TEXTS args, const std::function<void()> &before = {})
    {
        args.insert(args.begin(), programFolder + "/zulreport");
        return RunProgram(args, folder.path, before);
    }
    nlohmann::json Figures(TEXTS args)
    {
        args.insert(args.begin(), {programFolder + "/zulcalc", "--json", "-"});
        return nlohmann::json::parse(RunProgram(args, folder.path).out);
    }
    std::string Path(const std::string &name) const { return folder.Path(name); }

    FOLDER folder;
};
} // namespace

TEST_F(ZulReport, FiguresOfTheSampleHallsAreThoseOfZulcalc)
{
    for (const char *hall : halls) {
        SCOPED_TRACE(hall);
        ProgramRun run = Run({HallFile(hall), "bericht.pdf"});
        ASSERT_EQ(run.exitCode, 0) << run.err;
        EXPECT_EQ(run.out + run.err, "");
        CompareAll(Lines(Path("bericht.pdf")), Figures({HallFile(hall)}));
    }
}

TEST_F(ZulReport, OptionsMeanWhatTheyMeanToZulcalc)
{
    const TEXTS cases[] = {
        {"--height", "1.5", "--air-temp", "12"},
        {"--min", "50", "--max", "150", "--coarse-scale"},
        {"--fine-grid"},
        {"--air-temp", "30", "--height", "0"},
    };
    for (TEXTS args : cases) {
        SCOPED_TRACE(testing::PrintToString(args));
        args.push_back(HallFile("Produktionshalle"));
        nlohmann::json figures = Figures(args);
        args.push_back("bericht.pdf");
        ASSERT_EQ(Run(args).exitCode, 0);
        CompareAll(Lines(Path("bericht.pdf")), figures);
    }
}

TEST_F(ZulReport, PagesAreA4AndInTheOrderOfTheProgram)
{
    for (const char *hall : halls) {
        SCOPED_TRACE(hall);
        ASSERT_EQ(Run({HallFile(hall), "bericht.pdf"}).exitCode, 0);
        std::vector<PdfPage> pages = PdfPages(Path("bericht.pdf"));
        EXPECT_GE(pages.size(), 6u);
        for (const PdfPage &page : pages) {
            EXPECT_NEAR(page.width, 595.28, 0.8);
            EXPECT_NEAR(page.height, 841.89, 0.8);
        }
        Lines lines(Path("bericht.pdf"));
        int former = 1;
        for (const char *word :
             {"Strahlungsheizung", "Decke", "Auswertung", "Hygienische", "Schlußfolgerung", "Anhang:"}) {
            int page = lines.PageOf(word);
            EXPECT_GE(page, former) << word;
            former = page;
        }
        EXPECT_EQ(PdfTitle(Path("bericht.pdf")), hall);
        EXPECT_EQ(lines.PageOf("Anhang:"), static_cast<int>(pages.size())) << "the last page is there";
        for (const PdfImage &image : PdfImages(Path("bericht.pdf")))
            EXPECT_EQ(image.encoding, "image") << "without loss";
        EXPECT_EQ(PdfImages(Path("bericht.pdf")).size(), 5u) << "the five maps";
    }
}

TEST_F(ZulReport, PagesAreAlsoPictures)
{
    for (const auto &[option, width, height] : {std::tuple{"", 827, 1169}, std::tuple{"--dpi=50", 413, 585}}) {
        TEXTS args = {"--png", "Seite", HallFile("Werkstatt"), "bericht.pdf"};
        if (*option)
            args.push_back(option);
        ProgramRun run = Run(args);
        ASSERT_EQ(run.exitCode, 0) << run.err;
        size_t pages = PdfPages(Path("bericht.pdf")).size();
        for (size_t i = 1; i <= pages; ++i) {
            PngPicture picture = ReadPng(Path("Seite-" + std::to_string(i) + ".png"));
            EXPECT_NEAR(picture.width, width, 1);
            EXPECT_NEAR(picture.height, height, 1);
            long long dark = 0;
            for (const std::vector<int> &row : picture.rows)
                dark += std::count_if(row.begin(), row.end(), [](int value) { return value < 128; });
            EXPECT_GT(dark, picture.width * picture.height / 400) << "page " << i << " is drawn on";
        }
        EXPECT_EQ(folder.List().size(), pages + 1) << "nothing else is left behind";
    }
}

TEST_F(ZulReport, NeedsNoScreenWhateverTheEnvironmentSays)
{
    ProgramRun run = Run({HallFile("Werkstatt"), "bericht.pdf"}, [] {
        unsetenv("DISPLAY");
        unsetenv("XDG_RUNTIME_DIR");
        setenv("QT_QPA_PLATFORM", "xcb", 1);
        setenv("QT_SCALE_FACTOR", "2", 1);
        setenv("LC_ALL", "de_DE.UTF-8", 1);
    });
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.err, "");
    CompareAll(Lines(Path("bericht.pdf")), Figures({HallFile("Werkstatt")}));
}

TEST_F(ZulReport, WrongUsageHasExitStatusTwo)
{
    std::string hall = HallFile("Werkstatt");
    std::filesystem::copy(hall, Path("halle.sc1"));
    std::filesystem::copy(hall, Path("a-1.png"));
    const TEXTS cases[] = {
        {},
        {hall},
        {hall, "a.pdf", "b.pdf"},
        {hall, "a.pdf", "--unbekannt"},
        {hall, "a.pdf", "--height", "x"},
        {hall, "a.pdf", "--height", "-1"},
        {hall, "a.pdf", "--dpi", "19"},
        {hall, "a.pdf", "--dpi", "601"},
        {hall, "a.pdf", "--dpi", "1e2"},
        {hall, "a.pdf", "--png", ""},
        {hall, ""},
        {"halle.sc1", "halle.sc1"},
        {"halle.sc1", "./halle.sc1"},
        {"a-1.png", "a.pdf", "--png", "a"},
        {hall, "b-12.png", "--png", "b"},
    };
    for (const TEXTS &args : cases) {
        ProgramRun run = Run(args);
        EXPECT_EQ(run.exitCode, 2) << testing::PrintToString(args);
        EXPECT_TRUE(run.err.starts_with("zulreport: ") && run.err.ends_with("Hilfe: zulreport --help\n"))
            << run.err;
    }
    EXPECT_EQ(folder.List(), (std::set<std::string>{"halle.sc1", "a-1.png"}));
    ProgramRun help = Run({"--help"});
    EXPECT_EQ(help.exitCode, 0);
    EXPECT_NE(help.out.find("--air-temp"), std::string::npos);
}

namespace
{
/// A report that stands already, which no failure may touch.
class ZulReportFailure : public ZulReport
{
protected:
    ZulReportFailure() { folder.Put("bericht.pdf", "der alte Bericht"); }
    ~ZulReportFailure() override { chmod(folder.path.c_str(), 0700); }

    void ExpectFailure(const TEXTS &args, const TEXTS &messages, const std::function<void()> &before = {})
    {
        auto files = folder.List();
        ProgramRun run = Run(args, before);
        EXPECT_EQ(run.exitCode, 1) << testing::PrintToString(args) << run.signal;
        EXPECT_EQ(run.out, "");
        for (const std::string &message : messages)
            EXPECT_NE(run.err.find(message), std::string::npos) << message << "\n" << run.err;
        EXPECT_EQ(folder.Get("bericht.pdf"), "der alte Bericht");
        EXPECT_EQ(folder.List(), files);
    }

    const std::string hall = HallFile("Werkstatt");
};

/// In the child: the superuser is bound to the rights of files as everybody is. The owner stays who it is, for
/// the program may lie where nobody else can reach it.
void BecomePlain()
{
    for (int right : {CAP_DAC_OVERRIDE, CAP_DAC_READ_SEARCH})
        if (geteuid() == 0 && prctl(PR_CAPBSET_DROP, right, 0, 0, 0) != 0)
            _exit(125);
}
} // namespace

TEST_F(ZulReportFailure, HallThatIsMissingOrDamagedIsNamed)
{
    folder.Put("leer.sc1", "");
    folder.Put("text.sc1", "Das ist keine Halle.");
    std::string whole = FileBytes(hall);
    folder.Put("schnitt.sc1", whole.substr(0, 40));
    whole[5] = '\x7F';
    folder.Put("byte.sc1", whole);
    ExpectFailure({"fehlt.sc1", "bericht.pdf"}, {"Datei \"fehlt.sc1\" kann nicht geöffnet werden!"});
    for (const char *name : {"leer.sc1", "text.sc1", "schnitt.sc1", "byte.sc1"})
        ExpectFailure({name, "bericht.pdf"}, {"!"});
}

TEST_F(ZulReportFailure, MissingModelIsNamed)
{
    std::filesystem::create_directory(Path("Modely"));
    ExpectFailure({hall, "bericht.pdf", "--models", "Modely"}, {".gim\" kann nicht geöffnet werden!"});
    ExpectFailure({hall, "bericht.pdf", "--models", "nirgends"}, {".gim\" kann nicht geöffnet werden!"});
}

TEST_F(ZulReportFailure, FolderWithoutRightsIsTold)
{
    // Halls and models are opened for writing too.
    std::filesystem::copy(programFolder + "/Modely", Path("Modely"));
    std::filesystem::copy(hall, Path("halle.sc1"));
    chmod(Path("halle.sc1").c_str(), 0666);
    for (const auto &model : std::filesystem::directory_iterator(Path("Modely")))
        chmod(model.path().c_str(), 0666);
    chmod(Path("Modely").c_str(), 0755);
    chmod(folder.path.c_str(), 0555);
    chmod(Path("bericht.pdf").c_str(), 0444);
    ExpectFailure({"halle.sc1", "bericht.pdf", "--models", "Modely"},
                  {"Die Rechte reichen nicht aus.", "zulreport: \"bericht.pdf\" ist nicht geschrieben."},
                  BecomePlain);
    ExpectFailure({"halle.sc1", "neu.pdf", "--models", "Modely"},
                  {"Die Rechte reichen nicht aus.", "zulreport: \"neu.pdf\" ist nicht geschrieben."},
                  BecomePlain);
}

TEST_F(ZulReportFailure, FullDiskIsTold)
{
    auto fillDisk = [] {
        signal(SIGXFSZ, SIG_IGN);
        rlimit limit = {30000, 30000};
        setrlimit(RLIMIT_FSIZE, &limit);
    };
    ExpectFailure({hall, "bericht.pdf"},
                  {"Nicht genug Platz auf der Platte.", "zulreport: \"bericht.pdf\" ist nicht geschrieben."},
                  fillDisk);
    ExpectFailure({hall, "/dev/full"}, {"zulreport: \"/dev/full\" ist nicht geschrieben."});
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/full"));
    ExpectFailure({hall, "nirgends/a.pdf"}, {"Der Ordner ist nicht vorhanden.", "\"nirgends/a.pdf\""});
}

TEST_F(ZulReportFailure, PictureThatCannotBeWrittenIsNamed)
{
    ProgramRun run = Run({hall, "neu.pdf", "--png", "nirgends/Seite"});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_NE(run.err.find("Datei \"nirgends/Seite-1.png\" kann nicht gebildet werden!"), std::string::npos)
        << run.err;
    EXPECT_GE(PdfPages(Path("neu.pdf")).size(), 6u) << "the report itself is whole";
    std::filesystem::create_directory(Path("Seite-2.png"));
    run = Run({hall, "neu.pdf", "--png", "Seite"});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_NE(run.err.find("\"Seite-2.png\""), std::string::npos) << run.err;
    EXPECT_EQ(folder.List(), (std::set<std::string>{"bericht.pdf", "neu.pdf", "Seite-1.png", "Seite-2.png"}));
}
