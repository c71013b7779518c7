// gimmake as its user meets it, and the physics behind it as laws.
#include "ker/emmodel.h"

#include "support/memdisk.h"
#include "support/modelfolder.h"

#include "tools/gimcsv.h"
#include "tools/gimfield.h"

#include <cmath>
#include <fstream>
#include <gtest/gtest.h>
#include <sys/wait.h>

#include "lib/xon.h"

namespace
{
struct RUN {
    int status = -1;
    std::string out;
    std::string err;
};

/// Runs the program with these arguments, as a shell reads them; @ stands for the test's folder.
class GimMake : public testing::Test
{
protected:
    ModelFolder folder;

    RUN Run(std::string arguments)
    {
        for (size_t at; (at = arguments.find('@')) != std::string::npos;)
            arguments.replace(at, 1, folder.Path("").substr(0, folder.Path("").size() - 1));
        std::string command = std::string(GIMMAKE) + " " + arguments + " >" + folder.Path("out") + " 2>" +
                              folder.Path("err") + " </dev/null";
        int status = std::system(command.c_str());
        return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, folder.Get("out"), folder.Get("err")};
    }
    static std::string Panel(const std::string &more)
    {
        return "panel --length 1.5 --width 0.5 --height 0.3 --power 20000 --radiant-part 0.6 --downward-share "
               "0.95 " +
               more;
    }
};

/// Power through a sphere of radius r (m) around the origin below the plane z = 0, as the function gives it.
template <class VALUE>
double SphereFlux(double r, VALUE value)
{
    const int steps = 200;
    double sum = 0;
    for (int i = 0; i < steps; ++i) {
        double theta = (i + 0.5) / steps * AgPI / 2;
        for (int j = 0; j < 2 * steps; ++j) {
            double phi = (j + 0.5) / steps * AgPI;
            double area = r * r * std::sin(theta) * (AgPI / 2 / steps) * (AgPI / steps);
            sum += area * value(AgPOINT(r * std::sin(theta) * std::cos(phi),
                                        r * std::sin(theta) * std::sin(phi), r * std::cos(theta)));
        }
    }
    return sum;
}

std::string LambertCsv(double peak, char separator, int step)
{
    std::string text = "quer\\laengs";
    for (int gamma = 0; gamma <= 90; gamma += step)
        text += separator + std::to_string(gamma);
    for (int beta = 0; beta <= 90; beta += step) {
        text += "\n" + std::to_string(beta);
        for (int gamma = 0; gamma <= 90; gamma += step) {
            double cosines = std::cos(beta * AgPI / 180) * std::cos(gamma * AgPI / 180);
            text += separator + std::to_string(peak * std::max(0.0, cosines));
        }
    }
    return text + "\n";
}
/// A command that the document shows, and the output behind it.
struct SHOWN {
    std::string arguments;
    std::string output;
};

std::vector<SHOWN> ShownRuns()
{
    std::vector<SHOWN> runs;
    std::ifstream document(EMISSION_MODELS_MD);
    bool inCommand = false, isOpen = false;
    for (std::string line; std::getline(document, line);) {
        std::string text = line.size() > 4 && line.compare(0, 4, "    ") == 0 ? line.substr(4) : "";
        if (text.compare(0, 8, "gimmake ") == 0) {
            runs.emplace_back();
            text = text.substr(8);
            inCommand = isOpen = true;
        }
        if (inCommand) {
            inCommand = text.back() == '\\';
            runs.back().arguments += inCommand ? text.substr(0, text.size() - 1) : text;
        } else if (isOpen && !text.empty()) {
            runs.back().output += text + "\n";
        } else if (isOpen && !runs.back().output.empty()) {
            isOpen = false;
        }
    }
    return runs;
}
} // namespace

TEST(GimBeam, IntegralsOfThePowersOfTheCosineAreThoseOfTheTextbook)
{
    const struct {
        double n, integral;
    } rows[] = {{0, AgPI}, {1, 2}, {2, AgPI / 2}, {3, 4.0 / 3}, {4, 3 * AgPI / 8}, {0.5, 2.3962804694711844}};
    for (const auto &row : rows)
        EXPECT_NEAR(GimCosineIntegral(row.n), row.integral, 1e-12) << row.n;
}

TEST(GimBeam, ALambertSourceSendsItsFluxOverPiStraightDown)
{
    GimCOSINE lambert(AgPI * 100, 1, 1);
    EXPECT_NEAR(lambert.Intensity(AgE3), 100, 1e-9);
    EXPECT_NEAR(lambert.Intensity(AgPOINT(0, std::sin(1), std::cos(1))), 100 * std::cos(1), 1e-9);
    EXPECT_EQ(lambert.Intensity(AgE1), 0);
    GimCOSINE even(2 * AgPI, 0, 0); // the same in all directions
    EXPECT_NEAR(even.Intensity(AgE3), 1, 1e-12);
    EXPECT_NEAR(even.Intensity(AgE2), 1, 1e-12);
}

TEST(GimBeam, EveryBeamSendsItsFluxThroughTheLowerHalfSpace)
{
    const struct {
        double across, along;
    } rows[] = {{0, 0}, {1, 1}, {1.6, 1.6}, {7, 7}, {1.4, 1}, {3, 0}, {0.5, 2.5}, {2, 8}};
    for (const auto &row : rows) {
        GimCOSINE beam(1000, row.across, row.along);
        double flux = SphereFlux(1, [&](const AgPOINT &u) { return beam.Intensity(u); });
        EXPECT_NEAR(flux, 1000, 3) << row.across << " " << row.along;
        EXPECT_NEAR(beam.Flux(), 1000, 1e-9);
        EXPECT_GE(beam.Peak(), beam.Intensity(AgPOINT(0.6, 0, 0.8)));
    }
}

TEST(GimField, FollowsTheInverseSquareFarFromTheBody)
{
    GimFIELD field(1, 0.5, std::make_unique<GimCOSINE>(5000, 2, 2));
    double peak = field.Beam().Peak();
    for (double z : {20.0, 40.0, 80.0})
        EXPECT_NEAR(field.At(AgPOINT(0, 0, z)) * z * z / peak, 1, 1 / (z * z)) << z;
}

TEST(GimField, ALineIsTheSumOfItsPoints)
{
    // Above the middle of a Lambert line of length l at height h, closed form of the integral of h / r^3
    // cos(gamma).
    const double l = 6, h = 3, flux = 1000;
    GimFIELD field(l, 0, std::make_unique<GimCOSINE>(flux, 1, 1));
    double half = l / 2;
    double closed =
        flux / AgPI / l * 2 * half / (h * std::hypot(half, h)); // integral of h dx / (x^2 + h^2)^(3/2)
    EXPECT_NEAR(field.At(AgPOINT(0, 0, h)), closed, closed * 1e-3);
    EXPECT_EQ(field.Elements(), 24);
}

TEST(GimField, ARectangleEqualsItsSolidAngle)
{
    // A Lambert face of flux q has the radiance q / pi; a small sphere takes radiance times solid angle.
    const double a = 1.5, b = 1, h = 2, q = 1000;
    GimFIELD field(a, b, std::make_unique<GimCOSINE>(q * a * b, 1, 1));
    double x = a / 2, y = b / 2;
    double solid = 4 * std::asin(x * y / std::sqrt((x * x + h * h) * (y * y + h * h)));
    EXPECT_NEAR(field.At(AgPOINT(0, 0, h)), q / AgPI * solid, q / AgPI * solid * 4e-3);
}

TEST(GimField, IsSymmetricFiniteAndNeverNegative)
{
    CHANCE chance(9);
    for (int i = 0; i < 300; ++i) {
        double n = chance.Real(0, 50), m = chance.One(2) ? n : chance.Real(0, 50);
        GimFIELD field(chance.Real(0.1, 20), chance.One(2) ? 0 : chance.Real(0.05, 3),
                       std::make_unique<GimCOSINE>(chance.Real(5, 5e5), n, m));
        AgPOINT p(chance.Int(-5, 5), chance.Int(-3, 3), chance.One(3) ? 0 : chance.Real(0, 4));
        double v = field.At(p);
        EXPECT_TRUE(std::isfinite(v) && v >= 0) << v;
        EXPECT_EQ(v, field.At(AgPOINT(-p.x, p.y, p.z)));
        EXPECT_EQ(v, field.At(AgPOINT(p.x, -p.y, p.z)));
        EXPECT_EQ(field.At(AgPOINT(p.x, p.y, -1)), 0);
    }
}

TEST(GimField, IsBelowTheThresholdBeyondItsReach)
{
    GimFIELD field(9, 0.5, std::make_unique<GimCOSINE>(17000, 1.4, 1));
    double reach = field.Reach(2);
    SphereFlux(reach, [&](const AgPOINT &p) {
        EXPECT_LT(field.At(p), 2);
        return 0.0;
    });
    EXPECT_GT(field.At(AgPOINT(0, 0, reach * 0.8)), 2); // and is no wild guess
}

TEST(GimTable, InterpolatesAndIntegratesWhatItHolds)
{
    GimTABLE table;
    ASSERT_EQ(ReadGimTable("x,0,45,90\n0,100,50,0\n90,20,10,0\n", table), "");
    EXPECT_NEAR(table.Intensity(AgE3), 100, 1e-12);
    EXPECT_NEAR(table.Intensity(AgPOINT(std::sin(AgPI / 8), 0, std::cos(AgPI / 8))), 75, 1e-9);
    EXPECT_NEAR(table.Intensity(AgPOINT(0, -std::sin(AgPI / 4), std::cos(AgPI / 4))), 60, 1e-9);
    EXPECT_NEAR(table.Intensity(AgE1), 0, 1e-12);
    EXPECT_NEAR(table.Intensity(AgE2), 20, 1e-12);
    EXPECT_EQ(table.Peak(), 100);
    double flux = SphereFlux(1, [&](const AgPOINT &u) { return table.Intensity(u); });
    EXPECT_NEAR(table.Flux(), flux, flux * 1e-3);
}

TEST(GimCsv, UnderstandsTheUsualWaysOfWriting)
{
    const std::string rows[] = {
        "x,0,90\n0,1.5,0\n90,0,0\n",
        "\xEF\xBB\xBF;0;90\r\n0;1,5;0\r\n90;0;0\r\n",
        "# gemessen\n\n\t0\t90\n0\t1,5\t0\n# Rand\n90\t0\t0",
        "x ; 0 ; 90 \n 0 ; 1.5 ; 0 \n 90 ; 0 ; 0 ",
        "x,0,90\n0,15e-1,0\n90,0,0",
    };
    for (const std::string &text : rows) {
        GimTABLE table;
        EXPECT_EQ(ReadGimTable(text, table), "") << text;
        EXPECT_EQ(table.intensity, (std::vector<double>{1.5, 0, 0, 0})) << text;
    }
}

TEST(GimCsv, SaysWhereATableIsWrong)
{
    const struct {
        std::string text, wrong;
    } rows[] = {
        {"", "Die Datei enthält keine Tabelle."},
        {"# nichts\n\n", "Die Datei enthält keine Tabelle."},
        {"x\n0\n", "Zeile 1: Die Winkel längs müssen von 0 bis 90 Grad reichen."},
        {"x,0,80\n0,1,1\n90,1,1\n", "Zeile 1: Die Winkel längs müssen von 0 bis 90 Grad reichen."},
        {"x,0,90\n0,1,1\n80,1,1\n", "Zeile 3: Die Winkel quer müssen von 0 bis 90 Grad reichen."},
        {"x,0,90\n", "Zeile 1: Die Winkel quer müssen von 0 bis 90 Grad reichen."},
        {"x,10,90\n", "Zeile 1, Feld 2: Die Winkel müssen mit 0 beginnen und steigen."},
        {"x,0,50,50,90\n", "Zeile 1, Feld 4: Die Winkel müssen mit 0 beginnen und steigen."},
        {"x,0,91\n", "Zeile 1, Feld 3: Der Winkel 91 liegt über 90 Grad."},
        {"x,0,neunzig\n", "Zeile 1, Feld 3: \"neunzig\" ist kein Winkel."},
        {"x,0,90\n0,1\n", "Zeile 2: 2 Felder statt 3."},
        {"x,0,90\n0,1,2,3\n", "Zeile 2: 4 Felder statt 3."},
        {"x,0,90\n0,1,\n", "Zeile 2, Feld 3: \"\" ist keine Strahlstärke."},
        {"x,0,90\n0,1,nan\n", "Zeile 2, Feld 3: \"nan\" ist keine Strahlstärke."},
        {"x,0,90\n0,1e999,1\n", "Zeile 2, Feld 2: \"1e999\" ist keine Strahlstärke."},
        {"x,0,90\n0,-1,1\n", "Zeile 2, Feld 2: Die Strahlstärke -1 W/sr liegt nicht zwischen 0 und 10000000."},
        {"x,0,90\n0,1,2e7\n",
         "Zeile 2, Feld 3: Die Strahlstärke 2e+07 W/sr liegt nicht zwischen 0 und 10000000."},
        {"x,0,90\n0,0,0\n90,0,0\n", "Alle Strahlstärken sind 0."},
        {"x,0,90\n0,\x1B[2J\xFF,0\n", "Zeile 2, Feld 2: \"?[2J?\" ist keine Strahlstärke."},
        {"x," + std::string(1200, ','), "Zeile 1: Mehr als 1000 Winkel."},
        {"x,0,90\nx,0,90\n", "Zeile 2, Feld 1: \"x\" ist kein Winkel."},
    };
    for (const auto &row : rows) {
        GimTABLE table;
        EXPECT_EQ(ReadGimTable(row.text, table), row.wrong) << row.text.substr(0, 60);
    }
}

TEST_F(GimMake, MakesAModelUnderTheNameOfItsFile)
{
    RUN run = Run(
        Panel("--reduced-power 12000 --description 'Gerät für die Prüfung' -o '@/Prüf 20.gim' --point 0,0,4 "
              "--point=-1,2,4"));
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(
        run.out,
        "Prüf 20: 11400 W Strahlung nach unten, höchste Strahlstärke 3628.7 W/sr, 12 Quellpunkte, Tabelle "
        "x ±27 m, y ±27 m, z 43 m\n"
        "(0, 0, 4): 222.690 W/m2, aus der Tabelle 222.690 W/m2\n"
        "(-1, 2, 4): 149.339 W/m2, aus der Tabelle 149.339 W/m2\n");
    EmMODEL model("Pr\xFC"
                  "f 20");
    EXPECT_STREQ(model.Info()->description, "Ger\xE4t f\xFCr die Pr\xFC"
                                            "fung");
    EXPECT_EQ(model.Info()->size, AgPOINT(1.5, 0.5, 0.3));
    EXPECT_EQ(model.Info()->power, 20000);
    EXPECT_EQ(model.Info()->reducedPower, 12000);
    EXPECT_EQ(model.Info()->radiantPart, 0.6);
    EXPECT_NEAR(model.Value(AgPOINT(0, 0, 4)), 222.690, 5e-4);
}

TEST_F(GimMake, WithoutAReducedStageTheSecondPowerIsTheNominalOne)
{
    EXPECT_EQ(Run(Panel("-o @/a.gim")).status, 0);
    EmMODEL model("a");
    EXPECT_EQ(model.Info()->reducedPower, 20000);
}

TEST_F(GimMake, TablesAreProportionalToThePowerAndSymmetric)
{
    EXPECT_EQ(Run("tube --length 6 --width 0.5 --height 0.3 --power 20000 --radiant-part 0.5 --beam 1.4 --stop "
                  "5 -o @/a.gim")
                  .status,
              0);
    EXPECT_EQ(Run("tube --length 6 --width 0.5 --height 0.3 --power 40000 --radiant-part 0.5 --beam 1.4 --stop "
                  "10 -o @/b.gim")
                  .status,
              0);
    EmMODEL a("a"), b("b");
    int rx, ry, rxB, ryB;
    a.Grid().Layer(0, &rx, &ry);
    b.Grid().Layer(0, &rxB, &ryB);
    ASSERT_EQ(rx, rxB);
    ASSERT_EQ(ry, ryB);
    ASSERT_EQ(a.Grid().Depth(), b.Grid().Depth());
    EXPECT_GT(rx, ry); // the tube is long
    for (int iz = 0; iz <= a.Grid().Depth(); ++iz) {
        for (int ix = 0; ix <= rx; ++ix) {
            for (int iy = 0; iy <= ry; ++iy) {
                EXPECT_EQ(2 * a.Grid().Get(ix, iy, iz), b.Grid().Get(ix, iy, iz));
                EXPECT_EQ(a.Grid().Get(ix, iy, iz), a.Grid().Get(-ix, iy, iz));
            }
        }
    }
}

TEST_F(GimMake, TheRadiationOfTheTableIsThatOfTheDescription)
{
    EXPECT_EQ(Run("panel --length 0.8 --width 0.4 --height 0.3 --power 10000 --radiant-part 0.6 "
                  "--downward-share 0.95 "
                  "--beam 1.5 --stop 0.5 -o @/a.gim")
                  .status,
              0);
    EmMODEL model("a");
    // Far enough that the body is small, near enough that nothing of it is below the threshold but the grazing
    // rays.
    double flux = SphereFlux(10, [&](const AgPOINT &p) { return model.Value(p); });
    EXPECT_NEAR(flux, 0.95 * 0.6 * 10000, 0.02 * 5700);
}

TEST_F(GimMake, ATableOfALambertSourceGivesTheLambertPanel)
{
    std::string body = "--length 1 --width 0.5 --height 0.3 --power 10000 --radiant-part 0.5 --stop 2 ";
    EXPECT_EQ(Run("panel " + body + "-o @/formel.gim").status, 0);
    folder.Put("absolut.csv", LambertCsv(5000 / AgPI, ';', 1));
    folder.Put("relativ.csv", LambertCsv(1, ',', 1));
    RUN run = Run("table " + body + "--csv @/absolut.csv -o @/absolut.gim");
    EXPECT_EQ(run.status, 0) << run.err;
    run = Run("table " + body + "--csv @/relativ.csv --downward-share 1 -o @/relativ.gim");
    EXPECT_EQ(run.status, 0) << run.err;
    EmMODEL panel("formel"), absolute("absolut"), relative("relativ");
    CHANCE chance(3);
    for (int i = 0; i < 500; ++i) {
        AgPOINT p(chance.Int(-8, 8), chance.Int(-8, 8), chance.Int(1, 15));
        double v = panel.Value(p);
        if (v < 2.1)
            continue; // close to the threshold one of them may be cut
        EXPECT_NEAR(absolute.Value(p), v, v * 2e-3 + 0.02);
        EXPECT_NEAR(relative.Value(p), v, v * 2e-3 + 0.02);
    }
}

TEST_F(GimMake, SmoothsAndFillsAsTheKernelDoes)
{
    EXPECT_EQ(Run(Panel("--stop 20 -o @/roh.gim")).status, 0);
    EXPECT_EQ(Run(Panel("--stop 20 --smooth 0.5 --smooth-passes 2 --fill-gaps 1 -o @/glatt.gim")).status, 0);
    EmMODEL raw("roh"), smooth("glatt");
    EXPECT_NE(ModelBytes(raw), ModelBytes(smooth));
    raw.Smooth(0.5, 2);
    raw.FillGaps(1);
    EXPECT_EQ(ModelBytes(raw), ModelBytes(smooth));
}

TEST_F(GimMake, RefusesWrongUsageWithItsReason)
{
    folder.Put("gut.csv", "x,0,90\n0,100,0\n90,0,0\n");
    const std::string body = " --length 1 --width 0.5 --height 0.3 --power 10000 --radiant-part 0.5 ";
    const struct {
        std::string arguments, reason;
    } rows[] = {
        {"", "Es fehlt, was zu tun ist: panel, tube oder table."},
        {"kugel", "\"kugel\" ist hier unbekannt."},
        {"panel" + body + "--farbe rot -o @/a.gim", "\"--farbe\" ist hier unbekannt."},
        {"panel" + body + "--beam-along 1 -o @/a.gim", "\"--beam-along\" ist hier unbekannt."},
        {"panel" + body + "-o", "--output: Genau ein Wert wird gebraucht."},
        {"panel" + body + "--stop 1 --stop 2 -o @/a.gim", "--stop: Genau ein Wert wird gebraucht."},
        {"panel --width 1", "--length fehlt."},
        {"panel" + body, "--output fehlt."},
        {"panel" + body + "-o @/a.txt", "--output: \"a.txt\" hat nicht die Endung gim."},
        {"panel" + body + "-o @/.gim", "--output: \".gim\" hat nicht die Endung gim."},
        {"panel" + body + "-o '@/a:b.gim'", "--output: \"a:b\" ist kein Name eines Modells (höchstens 31 "
                                            "westeuropäische Zeichen, ohne \\ und :)."},
        {"panel" + body + "-o @/" + std::string(32, 'n') + ".gim",
         "--output: \"" + std::string(32, 'n') +
             "\" ist kein Name eines Modells (höchstens 31 westeuropäische Zeichen, ohne \\ und :)."},
        {"panel" + body + "-o '@/Ω.gim'",
         "--output: \"Ω\" ist kein Name eines Modells (höchstens 31 westeuropäische Zeichen, ohne \\ und :)."},
        {"panel" + body + "--stop lang -o @/a.gim", "--stop: \"lang\" ist keine Zahl."},
        {"panel" + body + "--stop '' -o @/a.gim", "--stop: \"\" ist keine Zahl."},
        {"panel" + body + "--stop inf -o @/a.gim", "--stop: \"inf\" ist keine Zahl."},
        {"panel" + body + "--stop 0 -o @/a.gim", "--stop: 0 liegt nicht zwischen 0.1 und 1000 W/m2."},
        {"panel" + body + "--beam -1 -o @/a.gim", "--beam: -1 liegt nicht zwischen 0 und 50."},
        {"panel" + body + "--smooth 2 -o @/a.gim", "--smooth: 2 liegt nicht zwischen 0 und 1."},
        {"panel" + body + "--fill-gaps 1.5 -o @/a.gim", "--fill-gaps: 1.5 ist keine ganze Zahl."},
        {"panel" + body + "--reduced-power 10001 -o @/a.gim",
         "--reduced-power: Die zweite Stufe liegt über der Nennleistung."},
        {"panel" + body + "--point 1,2 -o @/a.gim", "--point: \"1,2\" ist kein Punkt X,Y,Z."},
        {"panel" + body + "--point 1,2,3,4 -o @/a.gim", "--point: \"1,2,3,4\" ist kein Punkt X,Y,Z."},
        {"panel" + body + "--description " + std::string(256, 'd') + " -o @/a.gim",
         "--description: höchstens 255 westeuropäische Zeichen."},
        {"panel" + body + "--stop 0.1 -o @/a.gim", "--stop: Die Tabelle könnte 127 m weit reichen, höchstens "
                                                   "100 m sind möglich: einen höheren Wert wählen."},
        {"panel --length 1 --width 0.5 --height 0.3 --power 100 --radiant-part 0.05 --stop 900 -o @/a.gim",
         "--stop: Schon 1 m unter dem Gerät liegt die Bestrahlungsstärke darunter: einen niedrigeren Wert "
         "wählen."},
        {"table" + body + "-o @/a.gim", "--csv fehlt."},
        {"table" + body + "--csv @/gut.csv --beam 1 -o @/a.gim", "\"--beam\" ist hier unbekannt."},
    };
    for (const auto &row : rows) {
        RUN run = Run(row.arguments);
        EXPECT_EQ(run.status, 2) << row.arguments;
        EXPECT_EQ(run.err, "gimmake: " + row.reason + "\n");
        EXPECT_EQ(run.out, "");
    }
    EXPECT_FALSE(std::filesystem::exists(folder.Path("a.gim")));
}

TEST_F(GimMake, TellsWhatFailsAndLeavesAFormerModelWhole)
{
    const std::string body = " --length 1 --width 0.5 --height 0.3 --power 10000 --radiant-part 0.5 ";
    const std::string name = folder.Path("");
    folder.Put("a.gim", "vorher");
    folder.Put("schief.csv", "x,0,90\n0,1\n");
    folder.Put("stark.csv", LambertCsv(6000 / AgPI, ',', 5));
    folder.Put("gross.csv", std::string(2 << 20, ' '));
    const struct {
        std::string arguments, message;
    } rows[] = {
        {"table" + body + "--csv @/fehlt.csv -o @/a.gim",
         "gimmake: Datei \"" + name + "fehlt.csv\" kann nicht gelesen werden.\n"},
        {"table" + body + "--csv @ -o @/a.gim",
         "gimmake: Datei \"" + name.substr(0, name.size() - 1) + "\" kann nicht gelesen werden.\n"},
        {"table" + body + "--csv @/gross.csv -o @/a.gim",
         "gimmake: Datei \"" + name + "gross.csv\" ist zu groß für eine Tabelle.\n"},
        {"table" + body + "--csv @/schief.csv -o @/a.gim",
         "gimmake: " + name + "schief.csv: Zeile 2: 2 Felder statt 3.\n"},
        {"table" + body + "--csv @/stark.csv -o @/a.gim",
         "gimmake: " + name +
             "stark.csv: Die Tabelle ergibt 5992 W nach unten, mehr als die 5000 W Strahlung des Geräts.\n"},
        {"panel" + body + "-o @/fehlt/a.gim",
         "Datei \"" + name +
             "fehlt/a.gim\" kann nicht gebildet werden!\nWahrscheinlich falscher Name oder wenig "
             "Platz auf der Platte.\n"},
    };
    for (const auto &row : rows) {
        RUN run = Run(row.arguments);
        EXPECT_EQ(run.status, 1) << row.arguments;
        EXPECT_EQ(run.err, row.message);
        EXPECT_EQ(run.out, "");
    }
    EXPECT_EQ(folder.Get("a.gim"), "vorher");
}

TEST_F(GimMake, ItsModelCutAtAnyByteIsRefused)
{
    EXPECT_EQ(Run(Panel("--stop 80 -o @/a.gim")).status, 0);
    const std::string bytes = folder.Get("a.gim");
    ASSERT_GT(bytes.size(), 3000U);
    {
        MemDisk memory;
        SetModelFolder("\\mem");
        for (size_t length = 0; length <= bytes.size(); ++length) {
            MemPut("/mem/a.gim", bytes.substr(0, length));
            EmMODEL *model = ModelAcquire("a");
            EXPECT_EQ(xCode, length + 2 >= bytes.size() ? XNULL : XFREAD)
                << length; // two section ends may be missing
            xCode = XNULL;
            ModelRelease(model);
        }
    }
}

TEST_F(GimMake, PrintsTheNumbersOfItsDocument)
{
    std::vector<SHOWN> runs = ShownRuns();
    ASSERT_EQ(runs.size(), 2U);
    for (SHOWN &shown : runs) {
        size_t output = shown.arguments.find("-o ");
        ASSERT_NE(output, std::string::npos);
        RUN run = Run(shown.arguments.insert(output + 3, "@/"));
        EXPECT_EQ(run.status, 0) << run.err;
        EXPECT_EQ(run.out, shown.output);
    }
}

TEST_F(GimMake, ExplainsItselfInGerman)
{
    RUN run = Run("tube --help");
    EXPECT_EQ(run.status, 0);
    EXPECT_NE(run.out.find("Aufruf: gimmake tube [OPTIONEN]"), std::string::npos);
    EXPECT_NE(run.out.find("--radiant-part WERT"), std::string::npos);
    EXPECT_NE(run.out.find("Anteil der Leistung, der als Strahlung abgeht, 0.05 bis 1"), std::string::npos);
    EXPECT_EQ(run.out.find("Options"), std::string::npos);
}

TEST_F(GimMake, EveryModelItAcceptsIsFiniteAndNowhereNegative)
{
    const std::string rows[] = {
        "panel --length 0.1 --width 0.05 --height 0.02 --power 500000 --radiant-part 1 --beam 0 --stop 100",
        "panel --length 0.1 --width 0.05 --height 0.02 --power 500000 --radiant-part 1 --beam 50 --stop 1000",
        "panel --length 50 --width 10 --height 5 --power 500000 --radiant-part 0.05 --stop 50",
        "tube --length 50 --width 10 --height 5 --power 500000 --radiant-part 1 --beam 50 --beam-along 0 "
        "--stop 800",
        "tube --length 0.1 --width 0.05 --height 0.02 --power 100 --radiant-part 0.05 --beam 0 --beam-along 50 "
        "--stop 0.1",
    };
    for (const std::string &row : rows) {
        RUN run = Run(row + " --smooth 1 --smooth-passes 3 --fill-gaps 3 -o @/a.gim");
        EXPECT_EQ(run.status, 0) << run.err;
        EmMODEL model("a");
        ASSERT_STREQ(xCode, XNULL) << row;
        for (int iz = 0; iz <= model.Grid().Depth(); ++iz) {
            int rx, ry;
            model.Grid().Layer(iz, &rx, &ry);
            for (int ix = -rx; ix <= rx; ++ix) {
                for (int iy = 0; iy <= ry; ++iy)
                    EXPECT_GE(model.Grid().Get(ix, iy, iz), 0);
            }
        }
    }
}
