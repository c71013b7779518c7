// The maker of metafiles from drawings, as a child process on small drawings. A drawing is 16 x 16 mm and 16 x
// 16 units; played into 16 x 16 px a unit is a pixel, so that numbers come out as they went in.
#include "support/recorddc.h"
#include "win/metafile.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>
#include <sys/wait.h>
#include <vector>

namespace
{
constexpr int FINE = 1000; // logical units in a unit of these drawings, 0.001 mm

std::string Drawing(const std::string &elements, const std::string &attributes = "")
{
    return "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"16mm\" height=\"16mm\" viewBox=\"0 0 16 16\"" +
           attributes + ">\n" + elements + "\n</svg>\n";
}

std::string Path(const std::string &data)
{
    return Drawing("<path d=\"" + data + "\"/>");
}

/// What came of a drawing: the metafile, or empty and the reason.
struct Made {
    std::string file;
    std::string said;
};

struct Record {
    uint32_t type;
    std::vector<int32_t> words; // behind type and size
};

class Svgmeta : public testing::Test
{
protected:
    Svgmeta()
    {
        char pattern[] = "/tmp/svgmeta-XXXXXX";
        folder = mkdtemp(pattern);
    }
    ~Svgmeta() override { std::filesystem::remove_all(folder); }

    std::string Bytes(const std::string &name) const
    {
        std::ifstream file(folder + "/" + name, std::ios::binary);
        std::ostringstream bytes;
        bytes << file.rdbuf();
        return bytes.str();
    }

    void Write(const std::string &name, const std::string &text) const
    {
        std::ofstream(folder + "/" + name, std::ios::binary) << text;
    }

    /// The exit status.
    int Call(const std::string &arguments)
    {
        std::string command = "cd " + folder + " && " PYTHON " " SVGMETA " " + arguments + " 2>said";
        int status = std::system(command.c_str());
        said = Bytes("said");
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

    std::vector<Made> MakeAll(const std::vector<std::string> &drawings)
    {
        for (size_t i = 0; i < drawings.size(); ++i) {
            std::filesystem::remove(folder + "/" + std::to_string(i) + ".emf");
            Write(std::to_string(i) + ".svg", drawings[i]);
        }
        std::string command =
            "cd " + folder + " && " PYTHON " " SVGMETA_BATCH " " SVGMETA " " + std::to_string(drawings.size());
        EXPECT_EQ(std::system(command.c_str()), 0);
        std::vector<Made> made;
        for (size_t i = 0; i < drawings.size(); ++i)
            made.push_back({Bytes(std::to_string(i) + ".emf"), Bytes(std::to_string(i) + ".said")});
        return made;
    }

    /// One drawing a row of a table.
    template <class ROWS, class DRAWING>
    std::vector<Made> MakeEach(const ROWS &rows, DRAWING drawing)
    {
        std::vector<std::string> drawings;
        for (const auto &row : rows)
            drawings.push_back(drawing(row));
        return MakeAll(drawings);
    }

    std::string Make(const std::string &drawing) { return MakeAll({drawing})[0].file; }

    static int32_t Word(const std::string &file, size_t at)
    {
        int32_t word = 0;
        if (at + sizeof word <= file.size())
            std::memcpy(&word, file.data() + at, sizeof word);
        return word;
    }

    static std::vector<Record> Records(const std::string &file)
    {
        std::vector<Record> records;
        for (size_t at = 0; at + 8 <= file.size();) {
            size_t size = static_cast<size_t>(Word(file, at + 4));
            EXPECT_GE(size, 8u);
            EXPECT_LE(at + size, file.size());
            if (size < 8 || at + size > file.size())
                break;
            Record record = {static_cast<uint32_t>(Word(file, at)), {}};
            for (size_t i = 8; i < size; i += 4)
                record.words.push_back(Word(file, at + i));
            records.push_back(record);
            at += size;
        }
        return records;
    }

    /// What the metafile calls, a pixel a unit.
    static std::string Played(const Made &made)
    {
        TMetafile metafile;
        if (!metafile.ParseEnhanced(reinterpret_cast<const uint8_t *>(made.file.data()), made.file.size()))
            return "refused " + made.said;
        TRecordDC dc;
        metafile.Play(dc, {0, 0, 16, 16});
        return dc.calls;
    }

    std::string folder;
    std::string said;
};

/// The only record of a type.
Record Single(const std::vector<Record> &records, uint32_t type)
{
    std::vector<Record> found;
    std::copy_if(records.begin(), records.end(), std::back_inserter(found),
                 [type](const Record &record) { return record.type == type; });
    EXPECT_EQ(found.size(), 1u);
    return found.empty() ? Record() : found[0];
}

std::string Types(const std::vector<Record> &records)
{
    std::string types;
    for (const Record &record : records)
        types += std::to_string(record.type) + " ";
    return types;
}
} // namespace

TEST_F(Svgmeta, HeaderTellsWhatIsInTheFile)
{
    std::string file = Make(Drawing("<rect x=\"1\" y=\"1\" width=\"2\" height=\"2\" stroke=\"#fff\"/>"));
    ASSERT_GE(file.size(), 108u);
    EXPECT_EQ(Word(file, 0), 1);
    EXPECT_EQ(Word(file, 4), 108);
    EXPECT_EQ(Word(file, 16), 1599) << "bounds, device units of 0.01 mm";
    EXPECT_EQ(Word(file, 20), 1599);
    EXPECT_EQ(Word(file, 32), 1600) << "frame, 0.01 mm";
    EXPECT_EQ(Word(file, 36), 1600);
    EXPECT_EQ(file.substr(40, 4), " EMF");
    EXPECT_EQ(Word(file, 44), 0x10000);
    EXPECT_EQ(static_cast<size_t>(Word(file, 48)), file.size());
    EXPECT_EQ(static_cast<size_t>(Word(file, 52)), Records(file).size());
    EXPECT_EQ(Word(file, 56) & 0xFFFF, 3) << "pen, brush and the file itself";
    EXPECT_EQ(Word(file, 72), 100 * Word(file, 80)) << "device pixels in its millimetres";
    EXPECT_EQ(Records(file).back().type, 14u);
    EXPECT_EQ(Records(file).back().words, (std::vector<int32_t>{0, 16, 20}));
}

TEST_F(Svgmeta, CountsJustTheHandlesThatAreUsed)
{
    const struct {
        const char *elements;
        int handles;
    } cases[] = {
        {"", 1},
        {"<rect width=\"1\" height=\"1\" fill=\"none\"/>", 1},
        {"<rect width=\"1\" height=\"1\"/>", 2},
        {"<rect width=\"1\" height=\"1\" fill=\"none\" stroke=\"#000\"/>", 2},
        {"<rect width=\"1\" height=\"1\"/><rect width=\"1\" height=\"1\" fill=\"#fff\"/>", 2},
        {"<rect width=\"1\" height=\"1\"/><rect width=\"1\" height=\"1\" stroke=\"#fff\"/>", 3},
    };
    std::vector<Made> made = MakeEach(cases, [](const auto &c) { return Drawing(c.elements); });
    for (size_t i = 0; i < std::size(cases); ++i) {
        const auto &c = cases[i];
        const std::string &file = made[i].file;
        EXPECT_EQ(Word(file, 56) & 0xFFFF, c.handles) << c.elements;
        std::vector<int32_t> alive;
        for (const Record &record : Records(file)) {
            if (record.type == 38 || record.type == 39)
                alive.push_back(record.words[0]);
            if (record.type == 40) {
                EXPECT_EQ(std::erase(alive, record.words[0]), 1u) << c.elements;
            }
            for (int32_t handle : alive)
                EXPECT_LT(handle, c.handles) << c.elements;
        }
        EXPECT_TRUE(alive.empty()) << c.elements;
    }
}

TEST_F(Svgmeta, EachElementBecomesItsRecords)
{
    const std::string lead = "1 17 10 9 12 11 "; // header and mapping
    const std::string fill = "37 39 37 ";        // no pen; brush made and selected
    const std::string end = "37 40 14 ";         // brush out and deleted
    const std::string ink = "38 37 37 ";         // pen made and selected, no brush
    const std::string inkEnd = "37 40 14 ";
    const std::string both = "38 37 39 37 ";
    const std::string bothEnd = "37 40 37 40 14 ";
    const struct {
        const char *element;
        std::string types;
    } cases[] = {
        {"<rect width=\"2\" height=\"3\"/>", lead + fill + "19 3 " + end},
        {"<polygon points=\"1,1 2,1 2,2\"/>", lead + fill + "19 3 " + end},
        {"<circle cx=\"5\" cy=\"5\" r=\"2\"/>", lead + fill + "19 59 27 5 61 60 62 " + end},
        {"<rect width=\"4\" height=\"3\" rx=\"1\"/>", lead + fill + "19 59 27 5 6 5 6 5 6 5 61 60 62 " + end},
        {"<path d=\"M1 1 H5 V5 C5 6 6 7 7 7\"/>", lead + fill + "19 59 27 6 5 60 62 " + end},
        {"<polyline points=\"1,1 2,1 2,2\"/>", lead + fill + "19 59 27 6 60 62 " + end},
        {"<rect width=\"2\" height=\"3\" stroke=\"#000\"/>", lead + both + "43 " + bothEnd},
        {"<ellipse rx=\"2\" ry=\"3\" stroke=\"#000\"/>", lead + both + "42 " + bothEnd},
        {"<path d=\"M1 1 H5 V5 Z\" stroke=\"#000\"/>", lead + both + "19 59 27 6 61 60 63 " + bothEnd},
        {"<path d=\"M1 1 H5 V5\" fill=\"none\" stroke=\"#000\"/>", lead + ink + "19 59 27 6 60 64 " + inkEnd},
        {"<line x2=\"4\" y2=\"4\" stroke=\"#000\"/>", lead + ink + "4 " + inkEnd},
        {"<polyline points=\"1,1 2,1 2,2\" fill=\"none\" stroke=\"#000\"/>", lead + ink + "4 " + inkEnd},
        {"<rect transform=\"rotate(9)\" width=\"2\" height=\"3\" stroke=\"#000\"/>",
         lead + both + "19 59 27 6 61 60 63 " + bothEnd},
    };
    std::vector<Made> made = MakeEach(cases, [](const auto &c) { return Drawing(c.element); });
    for (size_t i = 0; i < std::size(cases); ++i)
        EXPECT_EQ(Types(Records(made[i].file)), cases[i].types) << cases[i].element << made[i].said;
}

TEST_F(Svgmeta, WhatDrawsNothingLeavesNoRecord)
{
    const char *const elements[] = {
        "",
        "<rect width=\"0\" height=\"5\"/>",
        "<circle r=\"0\"/>",
        "<ellipse rx=\"3\" ry=\"0\"/>",
        "<path d=\"\"/>",
        "<path d=\"M3 4\"/>",
        "<polygon points=\"\"/>",
        "<polyline points=\"1,1\"/>",
        "<line x2=\"5\"/>",
        "<rect width=\"5\" height=\"5\" fill=\"none\"/>",
        "<g/>",
        "<g><title>Text</title></g>",
        "<desc>a <b>word</b></desc>",
        "<line x2=\"5\" stroke=\"#000\" stroke-width=\"0\"/>",
    };
    std::vector<Made> made = MakeEach(elements, [](const char *element) { return Drawing(element); });
    EXPECT_EQ(Types(Records(made[0].file)), "1 17 10 9 12 11 37 37 14 ");
    for (size_t i = 1; i < std::size(elements); ++i)
        EXPECT_EQ(made[i].file, made[0].file) << elements[i] << made[i].said;
}

TEST_F(Svgmeta, PointsAreKeptToATenThousandthOfTheDrawing)
{
    std::vector<Record> records =
        Records(Make(Drawing("<polygon points=\"0.0004,15.9996 1.2345,2 3.3333 4.6667\"/>")));
    std::vector<int32_t> words = Single(records, 3).words;
    EXPECT_EQ(std::vector<int32_t>(words.begin() + 4, words.end()),
              (std::vector<int32_t>{3, 0, 16 * FINE, 1234, 2000, 3333, 4667}));
}

TEST_F(Svgmeta, PathCommandsMeanTheSameInAllTheirForms)
{
    const struct {
        const char *data;
        const char *plain;
    } cases[] = {
        {"m1 2 3 4 5 6z", "M1 2 L4 6 L9 12 Z"},
        {"M1 2 3 4 5 6", "M1 2 L3 4 L5 6"},
        {"M1 2 l3 4", "M1 2 L4 6"},
        {"M1 2h3v4H5V6", "M1 2 L4 2 L4 6 L5 6 L5 6"},
        {"M1,2L3,4", "M1 2 L3 4"},
        {"M1 2c1 0 2 1 2 2", "M1 2 C2 2 3 3 3 4"},
        {"M1 2C1 3 2 4 3 4S5 5 6 6", "M1 2 C1 3 2 4 3 4 C4 4 5 5 6 6"},
        {"M1 2C1 3 2 4 3 4s2 1 3 2", "M1 2 C1 3 2 4 3 4 C4 4 5 5 6 6"},
        {"M1 2S5 5 6 6", "M1 2 C1 2 5 5 6 6"},
        {"M1 2L2 2S5 5 6 6", "M1 2 L2 2 C2 2 5 5 6 6"},
        {"M0 0Q3 3 6 0", "M0 0 C2 2 4 2 6 0"},
        {"M0 0q3 3 6 0", "M0 0 C2 2 4 2 6 0"},
        {"M0 6Q3 9 6 6T12 6", "M0 6 C2 8 4 8 6 6 C8 4 10 4 12 6"},
        {"M0 6q3 3 6 0t6 0", "M0 6 C2 8 4 8 6 6 C8 4 10 4 12 6"},
        {"M0 6T6 6", "M0 6 C0 6 2 6 6 6"},
        {"M1 1L2 2ZL4 1", "M1 1 L2 2 Z M1 1 L4 1"},
        {"M1 1L2 2zm3 0l1 1z", "M1 1 L2 2 Z M4 1 L5 2 Z"},
        {"M.5.5-1.5e0+2", "M0.5 0.5 L-1.5 2"},
        {"M1 1A0 5 0 0 1 3 3", "M1 1 L3 3"},
        {"M1 1L3 3A5 5 0 0 1 3 3", "M1 1 L3 3"},
        {"M2 2 a3 3 0 0130 0", "M2 2 A3 3 0 0 1 32 2"},
        {"M2 8A1 1 0 0 1 14 8", "M2 8 A6 6 0 0 1 14 8"},
        {"M2 8A-6 6 0 0 1 14 8", "M2 8 A6 6 0 0 1 14 8"},
    };
    std::vector<Made> made = MakeEach(cases, [](const auto &c) { return Path(c.data); });
    std::vector<Made> plain = MakeEach(cases, [](const auto &c) { return Path(c.plain); });
    for (size_t i = 0; i < std::size(cases); ++i) {
        EXPECT_FALSE(made[i].file.empty()) << cases[i].data << made[i].said;
        EXPECT_EQ(made[i].file, plain[i].file) << cases[i].data;
    }
}

TEST_F(Svgmeta, ArcsLieOnTheirEllipse)
{
    const struct {
        const char *data;
        double cx, cy, rx, ry;
        size_t curves; // one for each begun quarter
    } cases[] = {
        {"M4 8A4 4 0 0 1 12 8", 8, 8, 4, 4, 2},  {"M4 8A4 4 0 0 0 12 8", 8, 8, 4, 4, 2},
        {"M8 4A4 4 0 0 1 12 8", 8, 8, 4, 4, 1},  {"M8 4A4 4 0 1 0 12 8", 8, 8, 4, 4, 3},
        {"M8 4A4 4 0 1 1 12 8", 12, 4, 4, 4, 3}, {"M8 4A4 4 0 0 0 12 8", 12, 4, 4, 4, 1},
        {"M2 8A6 3 0 0 1 14 8", 8, 8, 6, 3, 2},  {"M8 2A6 3 90 0 1 8 14", 8, 8, 3, 6, 2},
    };
    std::vector<Made> made = MakeEach(cases, [](const auto &c) { return Path(c.data); });
    for (size_t number = 0; number < std::size(cases); ++number) {
        const auto &c = cases[number];
        size_t curves = 0;
        TPoint last = {};
        for (const Record &record : Records(made[number].file)) {
            if (record.type == 27)
                last = {record.words[0], record.words[1]};
            if (record.type != 5)
                continue;
            for (size_t i = 5; i + 5 < record.words.size(); i += 6, ++curves) {
                const int32_t *w = &record.words[i];
                for (double t : {0.25, 0.5, 0.75, 1.0}) {
                    double u = 1 - t;
                    double a = u * u * u, b = 3 * u * u * t, d = 3 * u * t * t, e = t * t * t;
                    double x = (a * last.x + b * w[0] + d * w[2] + e * w[4]) / FINE - c.cx;
                    double y = (a * last.y + b * w[1] + d * w[3] + e * w[5]) / FINE - c.cy;
                    EXPECT_NEAR(std::hypot(x / c.rx, y / c.ry), 1, 1e-3) << c.data;
                }
                last = {w[4], w[5]};
            }
        }
        EXPECT_EQ(curves, c.curves) << c.data;
    }
}

TEST_F(Svgmeta, ArcsTurnTheWayTheirFlagsSay)
{
    const struct {
        const char *data;
        const char *middle; // a point half-way, in logical units: the end of the first of two curves
    } cases[] = {
        {"M4 8A4 4 0 0 1 12 8", "8000 4000"},
        {"M4 8A4 4 0 0 0 12 8", "8000 12000"},
        {"M8 4A4 4 0 0 1 8 12", "12000 8000"},
        {"M8 4A4 4 0 1 0 8 12", "4000 8000"},
    };
    std::vector<Made> made = MakeEach(cases, [](const auto &c) { return Path(c.data); });
    for (size_t i = 0; i < std::size(cases); ++i) {
        Record curves = Single(Records(made[i].file), 5);
        ASSERT_EQ(curves.words.size(), 17u) << cases[i].data;
        EXPECT_EQ(std::to_string(curves.words[9]) + " " + std::to_string(curves.words[10]), cases[i].middle)
            << cases[i].data;
    }
}

TEST_F(Svgmeta, TransformsApplyFromTheInsideOut)
{
    const struct {
        const char *groups[2];
        const char *points; // of the triangle (1,0) (2,0) (1,1)
    } cases[] = {
        {{"translate(3,4)", ""}, "4,4 5,4 4,5"},
        {{"translate(3)", ""}, "4,0 5,0 4,1"},
        {{"scale(2)", ""}, "2,0 4,0 2,2"},
        {{"scale(2,3)", ""}, "2,0 4,0 2,3"},
        {{"rotate(90)", ""}, "0,1 0,2 -1,1"},
        {{"rotate(90, 1, 0)", ""}, "1,0 1,1 0,0"},
        {{"matrix(1 2 3 4 5 6)", ""}, "6,8 7,10 9,12"},
        {{"translate(3 4) scale(2)", ""}, "5,4 7,4 5,6"},
        {{"scale(2), translate(3 4)", ""}, "8,8 10,8 8,10"},
        {{"translate(3 4)", "scale(2)"}, "5,4 7,4 5,6"},
        {{"scale(2)", "rotate(90)"}, "0,2 0,4 -2,2"},
        {{"", ""}, "1,0 2,0 1,1"},
    };
    std::vector<Made> made = MakeEach(cases, [](const auto &c) {
        return Drawing(std::string("<g transform=\"") + c.groups[0] + "\"><polygon transform=\"" + c.groups[1] +
                       "\" points=\"1,0 2,0 1,1\"/></g>");
    });
    std::vector<Made> plain = MakeEach(
        cases, [](const auto &c) { return Drawing(std::string("<polygon points=\"") + c.points + "\"/>"); });
    for (size_t i = 0; i < std::size(cases); ++i) {
        EXPECT_FALSE(made[i].file.empty()) << made[i].said;
        EXPECT_EQ(made[i].file, plain[i].file) << cases[i].groups[0] << " " << cases[i].groups[1];
    }
}

TEST_F(Svgmeta, GroupsHandDownTheirPaint)
{
    std::string inherited = Drawing(
        "<g fill=\"#123456\" stroke=\"#abc\" stroke-width=\"2\" fill-rule=\"evenodd\">"
        "<g><path d=\"M1 1H5V5Z\"/><path d=\"M6 1H9V5Z\" fill=\"none\"/></g></g><path d=\"M1 1H2V2Z\"/>");
    EXPECT_EQ(Played(MakeAll({inherited})[0]),
              "Shape alternate closed 16,16 80,16 80,80 pen aabbcc 2 brush 123456\n"
              "Shape alternate closed 96,16 144,16 144,80 pen aabbcc 2 brush none\n"
              "Shape winding closed 16,16 32,16 32,32 pen none brush 000000\n");
}

TEST_F(Svgmeta, StrokesScaleWithTheTransform)
{
    std::string drawing =
        Drawing("<line transform=\"scale(2,8)\" x1=\"1\" y1=\"1\" x2=\"3\" y2=\"1\" stroke=\"black\"/>");
    EXPECT_EQ(Single(Records(Make(drawing)), 38).words[2], 4 * FINE);
}

TEST_F(Svgmeta, ShapesArePlayedWhereTheyWereDrawn)
{
    const struct {
        const char *element;
        const char *calls;
    } cases[] = {
        {"<rect x=\"1\" y=\"2\" width=\"3\" height=\"4\" fill=\"#f00\"/>",
         "Shape winding closed 16,32 64,32 64,96 16,96 pen none brush ff0000\n"},
        {"<path d=\"M0 0H8V8H0Z M2 2H6V6H2Z\" fill=\"#0000FF\" fill-rule=\"evenodd\"/>",
         "Shape alternate closed 0,0 128,0 128,128 0,128 closed 32,32 96,32 96,96 32,96 pen none brush "
         "0000ff\n"},
        {"<polyline points=\"0,0 4,0 4,4\" fill=\"white\"/>",
         "Shape winding closed 0,0 64,0 64,64 pen none brush ffffff\n"},
    };
    std::vector<Made> made = MakeEach(cases, [](const auto &c) { return Drawing(c.element); });
    for (size_t i = 0; i < std::size(cases); ++i)
        EXPECT_EQ(Played(made[i]), cases[i].calls) << cases[i].element;
}

TEST_F(Svgmeta, SizesAreInMillimetresAndPixels)
{
    const struct {
        const char *size;
        int width, height; // 0.01 mm
    } cases[] = {
        {"width=\"96px\" height=\"48px\"", 2540, 1270},
        {"width=\"96\" height=\"48\"", 2540, 1270},
        {"width=\"22.58mm\" height=\"11.29mm\" viewBox=\"0 0 64 32\"", 2258, 1129},
        {"width=\"2e1mm\" height=\" 5.5 mm \" viewBox=\"-3,-4 200,55\"", 2000, 550},
        {"width=\"2000mm\" height=\"2000mm\"", 200000, 200000},
    };
    std::vector<Made> made = MakeEach(cases, [](const auto &c) {
        return std::string("<svg xmlns=\"http://www.w3.org/2000/svg\" ") + c.size + "/>";
    });
    for (size_t i = 0; i < std::size(cases); ++i) {
        EXPECT_EQ(Word(made[i].file, 32), cases[i].width) << cases[i].size << made[i].said;
        EXPECT_EQ(Word(made[i].file, 36), cases[i].height) << cases[i].size;
    }
    std::string shifted = "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"16mm\" height=\"16mm\" "
                          "viewBox=\"-8 -8 32 32\"><rect x=\"-8\" y=\"-8\" width=\"16\" height=\"32\"/></svg>";
    EXPECT_EQ(Make(shifted), Make(Drawing("<rect width=\"8\" height=\"16\"/>")));
}

TEST_F(Svgmeta, RefusesWhatItCannotTakeOverWithItsLine)
{
    const struct {
        std::string elements; // from line 2
        const char *message;
    } cases[] = {
        {"<text>a</text>", ".svg:2: element \"text\" is not taken\n"},
        {"<g>\n<image/></g>", ".svg:3: element \"image\" is not taken\n"},
        {"<svg/>", ".svg:2: svg stands within svg\n"},
        {"Text", ".svg:2: text is not drawn; it must be paths\n"},
        {"<rect style=\"fill:red\"/>", ".svg:2: attribute \"style\" of rect is not taken\n"},
        {"<g opacity=\"0.5\"/>", ".svg:2: attribute \"opacity\" of g is not taken\n"},
        {"<path d=\"M1 1H2\" r=\"5\"/>", ".svg:2: attribute \"r\" of path is not taken\n"},
        {"<rect fill=\"red\"/>", ".svg:2: fill \"red\" is none of #rrggbb, #rgb, black, white and none\n"},
        {"<rect fill=\"#12345\"/>",
         ".svg:2: fill \"#12345\" is none of #rrggbb, #rgb, black, white and none\n"},
        {"<rect stroke=\"url(#a)\"/>",
         ".svg:2: stroke \"url(#a)\" is none of #rrggbb, #rgb, black, white and none\n"},
        {"<rect stroke-width=\"-1\"/>", ".svg:2: stroke-width is negative\n"},
        {"<rect stroke-width=\"1px\"/>", ".svg:2: stroke-width \"1px\" is no list of numbers\n"},
        {"<rect stroke-linecap=\"butt\"/>", ".svg:2: stroke-linecap can be round only\n"},
        {"<rect stroke-linejoin=\"miter\"/>", ".svg:2: stroke-linejoin can be round only\n"},
        {"<rect fill-rule=\"odd\"/>", ".svg:2: fill-rule \"odd\" is not known\n"},
        {"<g transform=\"skewX(3)\"/>", ".svg:2: transform skewX with 1 numbers is not understood\n"},
        {"<g transform=\"scale(1,2,3)\"/>", ".svg:2: transform scale with 3 numbers is not understood\n"},
        {"<g transform=\"scale(1\"/>", ".svg:2: transform \"scale(1\" is not understood\n"},
        {"<g transform=\"scale(a)\"/>", ".svg:2: transform \"a\" is no list of numbers\n"},
        {"<rect width=\"-1\"/>", ".svg:2: width is negative\n"},
        {"<rect x=\"\"/>", ".svg:2: x \"\" is no number\n"},
        {"<rect x=\"1 2\"/>", ".svg:2: x \"1 2\" is no number\n"},
        {"<rect x=\"nan\"/>", ".svg:2: x \"nan\" is no list of numbers\n"},
        {"<circle r=\"1%\"/>", ".svg:2: r \"1%\" is no list of numbers\n"},
        {"<polygon points=\"1,2 3\"/>", ".svg:2: points has an odd number of coordinates\n"},
        {"<polygon points=\"1,2,\"/>", ".svg:2: points \"1,2,\" is no list of numbers\n"},
        {"<path d=\"L1 1\"/>", ".svg:2: path data begins with M\n"},
        {"<path d=\"1 1\"/>", ".svg:2: path data \"1 1\": a command is expected\n"},
        {"<path d=\"M1 1Z1 1\"/>", ".svg:2: path data \"1 1\": a command is expected\n"},
        {"<path d=\"M1\"/>", ".svg:2: path data \"\": a number is expected\n"},
        {"<path d=\"M1 1 X\"/>", ".svg:2: path data \"X\": a number is expected\n"},
        {"<path d=\"M1 1A1 1 0 2 1 3 3\"/>", ".svg:2: path data \"2 1 3 3\": a number is expected\n"},
        {"<path d=\"M1 1L1e99 0\"/>", ".svg:2: a point lies too far outside\n"},
        {"<path d=\"M1 1L1e999 0\"/>", ".svg:2: a point lies too far outside\n"},
        {"<g>", ".svg:3: mismatched tag\n"},
    };
    std::vector<Made> made = MakeEach(cases, [](const auto &c) { return Drawing(c.elements); });
    for (size_t i = 0; i < std::size(cases); ++i) {
        EXPECT_EQ(made[i].file, "") << cases[i].elements;
        EXPECT_EQ(made[i].said, std::to_string(i) + cases[i].message) << cases[i].elements;
    }
}

TEST_F(Svgmeta, RefusesWhatIsNoDrawing)
{
    const std::string svg = "<svg xmlns=\"http://www.w3.org/2000/svg\" ";
    const struct {
        std::string text;
        const char *message;
    } cases[] = {
        {"", ".svg:1: no element found\n"},
        {"<g/>", ".svg:1: the outermost element is not svg\n"},
        {"<title/>", ".svg:1: the outermost element is not svg\n"},
        {"<!DOCTYPE svg [<!ENTITY a \"aaaa\">]><svg/>", ".svg:1: a document type is not taken\n"},
        {"<svg width=\"1\" height=\"1\"/>", ".svg:1: xmlns is not \"http://www.w3.org/2000/svg\"\n"},
        {svg + "height=\"1\"/>", ".svg:1: svg states no width\n"},
        {svg + "width=\"1\"/>", ".svg:1: svg states no height\n"},
        {svg + "width=\"1cm\" height=\"1\"/>", ".svg:1: width \"1cm\" is no length in mm or px\n"},
        {svg + "width=\"0\" height=\"1\"/>", ".svg:1: width \"0\" is not between 0 and 2000 mm\n"},
        {svg + "width=\"2001mm\" height=\"1\"/>", ".svg:1: width \"2001mm\" is not between 0 and 2000 mm\n"},
        {svg + "width=\"1\" height=\"1\" viewBox=\"0 0 1\"/>",
         ".svg:1: viewBox is not left, top, width and height\n"},
        {svg + "width=\"1\" height=\"1\" viewBox=\"0 0 0 1\"/>",
         ".svg:1: viewBox is not left, top, width and height\n"},
        {svg + "width=\"1\" height=\"1\" viewBox=\"0 0 2 1\"/>",
         ".svg:1: width and height are not in the proportion of the viewBox\n"},
        {svg + "width=\"1\" height=\"1\" data-hot-x=\"a\"/>",
         ".svg:1: data-hot-x \"a\" is no list of numbers\n"},
        {svg + "width=\"1\" height=\"1\" x=\"1\"/>", ".svg:1: attribute \"x\" of svg is not taken\n"},
    };
    std::vector<Made> made = MakeEach(cases, [](const auto &c) { return c.text; });
    for (size_t i = 0; i < std::size(cases); ++i) {
        EXPECT_EQ(made[i].file, "") << cases[i].text;
        EXPECT_EQ(made[i].said, std::to_string(i) + cases[i].message) << cases[i].text;
    }
    EXPECT_EQ(Call("keine.svg b.emf"), 1);
    EXPECT_EQ(said, "keine.svg: No such file or directory\n");
    EXPECT_EQ(Call("0.svg"), 2);
    EXPECT_EQ(Call("--tables 0.svg"), 2);
}

TEST_F(Svgmeta, TableHoldsThePicturesSortedByNumber)
{
    const std::string head = "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"24px\" height=\"16px\"";
    Write("200.svg", head + " data-hot-x=\"3\" data-hot-y=\"4\"/>");
    Write("31.svg", head + "><rect width=\"5\" height=\"5\"/></svg>");
    ASSERT_EQ(Call("--table table.cpp 200.svg 31.svg"), 0) << said;
    std::string table = Bytes("table.cpp");
    EXPECT_EQ(table.find("// Made by tools/svgmeta.\n#include \"res/tables.h\"\n"), 0u);
    EXPECT_NE(table.find("const ResPICTURE resPictures[] = {\n"
                         "    {31, picture31, sizeof picture31, 24, 16, 0, 0},\n"
                         "    {200, picture200, sizeof picture200, 24, 16, 3, 4},\n"
                         "};\nconst int resPictureCount = 2;\n"),
              std::string::npos)
        << table;
    ASSERT_EQ(Call("31.svg 31.emf"), 0);
    std::string bytes;
    for (unsigned char byte : Bytes("31.emf"))
        bytes += std::to_string(byte) + ", ";
    std::string flat = table;
    for (size_t at; (at = flat.find("\n    ")) != std::string::npos;)
        flat.replace(at, 5, at > 0 && flat[at - 1] == '{' ? "" : " ");
    EXPECT_NE(flat.find("picture31[] = {" + bytes.substr(0, bytes.size() - 1)), std::string::npos);
}

TEST_F(Svgmeta, TableWithoutPicturesCountsNone)
{
    ASSERT_EQ(Call("--table table.cpp"), 0) << said;
    EXPECT_NE(Bytes("table.cpp").find("const int resPictureCount = 0;\n"), std::string::npos);
}

TEST_F(Svgmeta, TableRefusesOtherNamesAndWritesNothing)
{
    Write("bild.svg", Drawing(""));
    Write("070.svg", Drawing(""));
    Write("70000.svg", Drawing(""));
    Write("5.svg", Drawing(""));
    Write("6.svg", Drawing("\n<text/>"));
    std::filesystem::create_directory(folder + "/zwei");
    Write("zwei/5.svg", Drawing(""));
    const struct {
        const char *files;
        const char *message;
    } cases[] = {
        {"bild.svg", "bild.svg: the name is no number up to 65535\n"},
        {"070.svg", "070.svg: the name is no number up to 65535\n"},
        {"70000.svg", "70000.svg: the name is no number up to 65535\n"},
        {"5.svg zwei/5.svg", "zwei/5.svg: number 5 stands twice\n"},
        {"5.svg 6.svg", "6.svg:3: element \"text\" is not taken\n"},
    };
    for (const auto &c : cases) {
        EXPECT_EQ(Call(std::string("--table table.cpp ") + c.files), 1) << c.files;
        EXPECT_EQ(said, c.message);
        EXPECT_FALSE(std::filesystem::exists(folder + "/table.cpp")) << c.files;
    }
}

TEST_F(Svgmeta, LogosOfTheProgramKeepTheirProportions)
{
    const struct {
        const char *name;
        int width, height;                                            // 0.01 mm
    } cases[] = {{"Zulerio", 19000, 14250}, {"Torvane", 2258, 1129}}; // the second: 64 x 32 pt
    for (const auto &c : cases) {
        ASSERT_EQ(Call(std::string(ART_FOLDER "/") + c.name + ".svg logo.emf"), 0) << said;
        std::string file = Bytes("logo.emf");
        TMetafile metafile;
        ASSERT_TRUE(metafile.ParseEnhanced(reinterpret_cast<const uint8_t *>(file.data()), file.size()));
        EXPECT_EQ(metafile.Frame(), (TSize{c.width, c.height}));
        EXPECT_GT(metafile.RecordCount(), 10);
    }
}
