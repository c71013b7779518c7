// What zulcalc does with wrong usage, bad files and disks that refuse: a clear message, the right exit status,
// and nothing lost or written half.
#include "tools/zulcalc_fixture.h"

#include "lib/cde.h"
#include "support/fault.h"
#include "tools/zulcalc_png.h"
#include "usr/zulcolors.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "lib/xon.h"

namespace
{
using TEXTS = std::vector<std::string>;

class ZulcalcFailure : public ZulcalcFolder
{
protected:
    void Put(const std::string &name, const std::string &bytes)
    {
        std::ofstream(Path(name), std::ios::binary) << bytes;
    }
    std::string Get(const std::string &name) { return FileBytes(Path(name)); }

    void ExpectFailure(const TEXTS &args, const std::string &message)
    {
        ProgramEnd end = Run(args);
        EXPECT_EQ(end.exitCode, 1) << testing::PrintToString(args);
        EXPECT_NE(end.err.find(message), std::string::npos) << testing::PrintToString(args) << '\n' << end.err;
        EXPECT_EQ(std::count(end.err.begin(), end.err.end(), '!'), 1) << "one message: " << end.err;
    }

    size_t FileCount()
    {
        auto files = std::filesystem::recursive_directory_iterator(folder);
        return static_cast<size_t>(std::distance(begin(files), end(files)));
    }
};

const std::string notOpened = "\" kann nicht geöffnet werden!\nWahrscheinlich falscher Name.\n";
const std::string notMade = "\" kann nicht gebildet werden!\nWahrscheinlich falscher Name oder wenig Platz";
const std::string notRead = "\" kann nicht gelesen werden!\nMöglicher Dateischaden.\n";
} // namespace

TEST_F(ZulcalcFailure, WrongUsageHasExitStatusTwoAndSaysWhy)
{
    SaveHall();
    const TEXTS cases[] = {
        {},
        {"halle.sc1", "noch.sc1"},
        {"halle.sc1", "--unbekannt"},
        {"halle.sc1", "-x"},
        {""},
        {"halle.sc1", "--height"},
        {"halle.sc1", "--height", ""},
        {"halle.sc1", "--height", "hoch"},
        {"halle.sc1", "--height", "1m"},
        {"halle.sc1", "--height", "1,5"},
        {"halle.sc1", "--height", "0x10"},
        {"halle.sc1", "--height", " 1"},
        {"halle.sc1", "--height", "-1"},
        {"halle.sc1", "--height", "1", "--height", "2"},
        {"halle.sc1", "--min", "nan"},
        {"halle.sc1", "--max", "inf"},
        {"halle.sc1", "--max", "-infinity"},
        {"halle.sc1", "--air-temp", "1e999"},
        {"halle.sc1", "--point"},
        {"halle.sc1", "--point", "1,2"},
        {"halle.sc1", "--point", "1,2,3,4"},
        {"halle.sc1", "--point", "1,2,"},
        {"halle.sc1", "--point", "1,2,nan"},
        {"halle.sc1", "--point", "1 2 3"},
        {"halle.sc1", "--map", ""},
        {"halle.sc1", "--json", ""},
        {"halle.sc1", "--map", "halle.sc1"},
        {"halle.sc1", "--json", "./halle.sc1"},
        {"halle.sc1", "--json", "a", "--map", "a"},
        {"halle.sc1", "--rewrite", "neu.sc1", "--json", "neu.sc1"},
        {"halle.sc1", "--hygiene", "h", "--map", "h-headtemp.png"},
        {"halle.sc1", "--json", "a", "--json", "b"},
    };
    std::string bytes = Get("halle.sc1");
    size_t files = FileCount() + 2; // what the program said
    for (const TEXTS &args : cases) {
        ProgramEnd end = Run(args);
        EXPECT_EQ(end.exitCode, 2) << testing::PrintToString(args);
        EXPECT_EQ(end.out, "") << testing::PrintToString(args);
        EXPECT_EQ(end.err.find("zulcalc: "), 0u) << testing::PrintToString(args) << end.err;
        EXPECT_NE(end.err.find("--help"), std::string::npos) << end.err;
    }
    EXPECT_EQ(Get("halle.sc1"), bytes);
    EXPECT_EQ(FileCount(), files);
}

TEST_F(ZulcalcFailure, HelpIsNoFailure)
{
    ProgramEnd end = Run({"--help"});
    EXPECT_EQ(end.exitCode, 0);
    EXPECT_EQ(end.err, "");
    for (const char *option : {"--models DIR", "--height M", "--min W", "--max W", "--air-temp C",
                               "--fine-grid", "--coarse-scale", "--point X,Y,Z", "--json FILE",
                               "--map FILE.png", "--hygiene PREFIX", "--rewrite FILE.sc1", "--timing"})
        EXPECT_NE(end.out.find(option), std::string::npos) << option;
}

TEST_F(ZulcalcFailure, NumbersMayBeNegativeOrBareOfTheirZero)
{
    SaveHall();
    for (const char *number : {"-5", "-.5", ".5", "-0", "+3", "1e2", "5."})
        EXPECT_EQ(Run({"halle.sc1", "--min", number, "--air-temp", number, "--point",
                       std::string(number) + ",-.5,-1"})
                      .exitCode,
                  0)
            << number;
}

TEST_F(ZulcalcFailure, AHallThatCannotBeReadIsNamed)
{
    SaveHall();
    std::string bytes = Get("halle.sc1");
    Put("kurz.sc1", bytes.substr(0, bytes.size() / 2));
    Put("leer.sc1", "");
    Put("text.sc1", "Das ist keine Halle.\n");
    Put("bild.sc1", std::string("\xA1\0\0\0\0\x89PNG", 9));
    std::filesystem::create_directory(Path("ordner.sc1"));
    ExpectFailure({"fehlt.sc1"}, "Datei \"fehlt.sc1" + notOpened);
    ExpectFailure({"fehlt/halle.sc1"}, "Datei \"fehlt/halle.sc1" + notOpened);
    ExpectFailure({"halle.sc1/halle.sc1"}, "Datei \"halle.sc1/halle.sc1" + notOpened);
    ExpectFailure({"ordner.sc1"}, "Datei \"ordner.sc1\" kann nicht ge");
    ExpectFailure({"kurz.sc1"}, "Datei \"kurz.sc1" + notRead);
    ExpectFailure({"leer.sc1"}, "Datei \"leer.sc1" + notRead);
    ExpectFailure({"text.sc1"}, "Versuch um Übertragung von Fehldaten!\n");
    ExpectFailure({"bild.sc1"}, "Versuch um Übertragung von Fehldaten!\n");
}

TEST_F(ZulcalcFailure, ANameThatTheSystemCannotHoldIsRefusedAndNotMangled)
{
    SaveHall();
    std::string bytes = Get("halle.sc1");
    Put("日本.sc1", bytes);
    Put("zeile\nneu.sc1", bytes);
    Put("rand.sc1\n", bytes);
    Put("rand.sc1", "etwas anderes");
    Put("rück\\strich.sc1", bytes);
    Put("Größe 5 €.sc1", bytes);
    ExpectFailure({"日本.sc1"}, "Datei \"??.sc1" + notOpened);
    ExpectFailure({"rand.sc1\n"}, "kann nicht geöffnet werden!");
    ExpectFailure({"halle.sc1 "}, "kann nicht geöffnet werden!");
    ExpectFailure({"rück\\strich.sc1"}, "Datei \"rück?strich.sc1" + notOpened);
    ExpectFailure({std::string(300, 'x') + ".sc1"}, "kann nicht geöffnet werden!");
    ExpectFailure({"zeile\nneu.sc1"}, "kann nicht geöffnet werden!");
    EXPECT_EQ(Run({"Größe 5 €.sc1"}).exitCode, 0);
    size_t files = FileCount();
    for (const char *option : {"--json", "--map", "--hygiene", "--rewrite"})
        ExpectFailure({"halle.sc1", option, "日本"}, "Datei \"??");
    ExpectFailure({"halle.sc1", "--json", "halle.sc1."}, "kann nicht gebildet werden!");
    EXPECT_EQ(FileCount(), files);
    EXPECT_EQ(Get("halle.sc1"), bytes);
    passModels = false;
    ExpectFailure({"halle.sc1", "--models", "日本"}, "Datei \"??" + notOpened);
}

TEST_F(ZulcalcFailure, AMissingOrDamagedModelIsNamed)
{
    SaveHall();
    Put("Modely/Ebene.gim", "kaputt");
    ExpectFailure({"halle.sc1"}, "Versuch um Übertragung von Fehldaten!\n");
    std::filesystem::remove(Path("Modely/Ebene.gim"));
    ExpectFailure({"halle.sc1"}, "Modely/Ebene.gim" + notOpened);
    std::filesystem::remove(Path("Modely"));
    ExpectFailure({"halle.sc1"}, "Modely/Ebene.gim" + notOpened);
}

TEST_F(ZulcalcFailure, ATargetThatCannotBeWrittenIsNamedAndStaysAsItWas)
{
    SaveHall();
    std::filesystem::create_directory(Path("ordner"));
    std::filesystem::create_directory(Path("ordner-summary.png"));
    const std::pair<const char *, const char *> cases[] = {
        {"--json", "fehlt/werte.json"},   {"--map", "fehlt/karte.png"}, {"--hygiene", "fehlt/hyg"},
        {"--rewrite", "fehlt/halle.sc1"}, {"--json", "ordner"},         {"--map", "ordner"},
        {"--hygiene", "ordner"},          {"--rewrite", "ordner"},      {"--map", "/proc/karte.png"},
    };
    Run({"halle.sc1"}); // for what the program says
    size_t files = FileCount();
    for (const auto &[option, target] : cases) {
        ProgramEnd end = Run({"halle.sc1", option, target});
        EXPECT_EQ(end.exitCode, 1) << option << ' ' << target;
        EXPECT_NE(end.err.find(std::string("Datei \"") + target), std::string::npos) << end.err;
        EXPECT_EQ(FileCount(), files) << "nothing is left over";
    }
}

TEST_F(ZulcalcFailure, AFullOrClosedOutputIsAFailure)
{
    SaveHall();
    for (const char *output : {"/dev/full", "closed"})
        for (const TEXTS &args : {TEXTS{"halle.sc1"}, TEXTS{"--json", "-", "halle.sc1"}}) {
            ProgramEnd end = Run(args, output);
            EXPECT_EQ(end.exitCode, 1) << output;
            EXPECT_EQ(end.err, "Keine Einträge in Datei \"Standardausgabe\" möglich!\n"
                               "Wahrscheinlich wenig Platz auf der Platte.\n")
                << output;
        }
}

TEST_F(ZulcalcFailure, AMessageDoesNotSteerTheTerminal)
{
    ExpectFailure({"\x1B[2J.sc1"}, "Datei \"?[2J.sc1" + notOpened);
    ExpectFailure({"%s%n%d.sc1"}, "Datei \"%s%n%d.sc1" + notOpened);
}

TEST_F(ZulcalcFailure, AHallOfAnySizeIsEvaluatedOrRefused)
{
    room = std::make_unique<EmROOM>(1e6, 1e-3, 5, "", "", 0);
    SaveHall();
    EXPECT_EQ(Run({"halle.sc1", "--json", "-"}).exitCode, 0) << "one row";
    for (double width : {1e9, 1e300}) {
        room = std::make_unique<EmROOM>(1, width, 5, "", "", 0);
        SaveHall();
        ExpectFailure({"halle.sc1"}, "Ungenug Speicher!");
    }
    room = std::make_unique<EmROOM>(0, 0, 0, "", "", 0);
    SaveHall();
    int status = Run({"halle.sc1"}).exitCode;
    EXPECT_TRUE(status == 0 || status == 1) << status;
}

TEST(WritePng, TakesPicturesWithSidesOfAMillionPixels)
{
    char pattern[] = "/tmp/zulcalc-XXXXXX";
    std::string folder = mkdtemp(pattern);
    ZulPixels pixels;
    pixels.Alloc(1, 1000001, 2);
    pixels.Row(1000000)[0] = 1;
    WritePng(CdeFILENAME(("\\tmp\\" + folder.substr(5) + "\\hoch.png").c_str()), pixels, criterionColors);
    PngPicture picture = ReadPng(folder + "/hoch.png");
    EXPECT_EQ(picture.height, 1000001);
    ASSERT_EQ(picture.rows.size(), 1000001u);
    EXPECT_EQ(picture.rows[0], std::vector<int>{2});
    EXPECT_EQ(picture.rows[1000000], std::vector<int>{1});
    std::filesystem::remove_all(folder);
}

TEST(WritePng, LeavesTheFormerPictureWholeWhateverFails)
{
    char pattern[] = "/tmp/zulcalc-XXXXXX";
    std::string folder = mkdtemp(pattern);
    std::string path = folder + "/bild.png";
    CdeFILENAME name(("\\tmp\\" + folder.substr(5) + "\\bild.png").c_str());
    ZulPixels pixels;
    pixels.Alloc(40, 30, 1);
    WritePng(name, pixels, criterionColors);
    std::string fresh = FileBytes(path);
    int fired =
        SweepFaults([&] { std::ofstream(path, std::ios::binary) << "alt"; },
                    [&] { WritePng(name, pixels, criterionColors); },
                    [&](const FaultRun &run) {
                        std::string bytes = FileBytes(path);
                        EXPECT_EQ(bytes, run.code == XNULL ? fresh : "alt")
                            << FaultName(run.kind) << ' ' << run.n;
                        auto files = std::filesystem::directory_iterator(folder);
                        EXPECT_LE(std::distance(begin(files), end(files)), run.kind == FAULT::UNLINK ? 2 : 1)
                            << FaultName(run.kind) << ' ' << run.n;
                    });
    EXPECT_GT(fired, 5);
    std::filesystem::remove_all(folder);
}
