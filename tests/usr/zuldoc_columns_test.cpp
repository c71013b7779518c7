// The heads of the lists stand over their columns: measured with the real fonts, on screens and on paper, at
// each zoom.
#include "reportgroups.h"

#include <algorithm>

namespace
{
enum KIND { NAME, NUMBER, WIDE }; // begins with its column, ends with it, stands over its middle

struct COLUMN {
    const char *title;
    const char *value; // as it stands in the row
    int width;         // characters that the row's format gives the value
    KIND kind;
};

const COLUMN emitterColumns[] = {
    {"Nr.", "1", 3, NAME},          {"Modell", "Dreizehn Zei.", 13, NAME}, {"P[W]", "123456", 6, NUMBER},
    {"X[m]", "111.25", 6, NUMBER},  {"Y[m]", "122.50", 6, NUMBER},         {"Z[m]", "133.75", 6, NUMBER},
    {"Dreh[\xB0]", "180", 3, WIDE}, {"Neig[\xB0]", "-45", 3, WIDE},
};
const COLUMN airHeaterColumns[] = {
    {"Nr.", "1", 3, NAME},
    {"Typ", "Neunzehn Zeichen...", 19, NAME},
    {"P[W]", "123456", 6, NUMBER},
    {"Luft[m\xB3/h]", "234567", 6, WIDE},
    {"Erw\xE4rmung[K]", "345.25", 6, WIDE},
};
const COLUMN holeColumns[] = {
    {"Nr.", "1", 3, NAME},
    {"K[W/m\xB2K]", "1.125", 5, WIDE},
    {"Ta[\xB0"
     "C]",
     "-12.50", 6, NUMBER},
    {"A[m\xB2]", "1000.00", 7, NUMBER},
    {"Breite[m]", "100.00", 6, WIDE},
    {"H\xF6he[m]", " 10.00", 6, WIDE},
    {"Beschreibung", "Dreiundzwanzig Zeich...", 23, NAME},
};

class ColumnHeads : public ReportGroups
{
protected:
    void SetUp() override
    {
        EmEMITTER *e = Hang("Dreizehn Zei.");
        e->power = 123456;
        e->pos = {111.25, 122.5, 133.75};
        e->rotation = AgPI;
        e->tilt = -AgPI / 4;
        EmAIRHEATER *unit = Place("Neunzehn Zeichen und mehr");
        unit->power = 123456;
        unit->airFlow = 234567;
        unit->tempRise = 345.25;
        EmHOLE *hole = Open("Dreiundzwanzig Zeichen und mehr");
        hole->flags = EmHOLE::OWN_TEMP;
        hole->constr.k = 1.125;
        hole->constr.tExt = -12.5;
        hole->size = {100, 10};
    }

    template <size_t COUNT>
    void ExpectOver(const COLUMN (&columns)[COUNT], TEdcBlock *fresh, int dpi, double scale)
    {
        TWriteDC device(dpi);
        std::vector<TEdcBlock *> blocks = Blocks(fresh);
        ASSERT_EQ(blocks.size(), 3u);
        device.Write(*blocks[1], PAGE_WIDTH, scale);
        std::vector<WRITTEN> titles = device.written;
        ASSERT_EQ(titles.size(), COUNT);
        device.Write(*blocks[2], PAGE_WIDTH * 2, scale);
        ASSERT_EQ(device.written.size(), 1u);
        const WRITTEN row = device.written[0];
        auto edge = [&](size_t at) { return row.x + device.Width(row.font, row.text.substr(0, at)); };
        size_t at = 0;
        for (size_t i = 0; i < COUNT; ++i) {
            const COLUMN &column = columns[i];
            SCOPED_TRACE(EdcFormat("%s, %d dpi at %lg", column.title, dpi, scale));
            std::string title = column.title;
            at = row.text.find(column.value, at);
            ASSERT_NE(at, std::string::npos) << row.text;
            EXPECT_EQ(titles[i].text.substr(0, title.size()), title);
            EXPECT_EQ(titles[i].text.find_first_not_of(' ', title.size()), std::string::npos);
            int width = device.Width(titles[i].font, title);
            int left = titles[i].x - edge(at);
            int right = titles[i].x + width - edge(at + static_cast<size_t>(column.width));
            if (column.kind == NAME) {
                EXPECT_EQ(left, 0);
            } else if (column.kind == NUMBER) {
                EXPECT_EQ(right, 0);
            } else {
                EXPECT_LE(std::abs(left + right), 3) << "at most a pixel and a half off the middle";
            }
            if (i + 1 < COUNT) {
                EXPECT_LE(titles[i + 1].x, titles[i].right) << "the underline is whole";
                EXPECT_GT(titles[i + 1].x, titles[i].x + width) << "titles stand apart";
            }
            EXPECT_LE(titles[i].x + width, std::lround(PAGE_WIDTH * scale * dpi)) << "within the page";
            at += std::string(column.value).size();
        }
    }
};

TEST_F(ColumnHeads, StandOverTheirColumnsOnScreensAndOnPaper)
{
    for (int dpi : {96, 120, 144, 192, 600})
        for (double scale : {0.5, 0.6, 0.75, 0.8, 0.87, 1.0, 1.13, 1.25, 1.5, 2.0, 3.0}) {
            ExpectOver(emitterColumns, ZulBuildEmitterList(*room.Emitters(), fonts), dpi, scale);
            ExpectOver(airHeaterColumns, ZulBuildAirHeaterList(*room.AirHeaters(), fonts), dpi, scale);
            ExpectOver(holeColumns, ZulBuildHoleList(*Holes(), fonts), dpi, scale);
        }
}

TEST_F(ColumnHeads, FollowTheDeviceOfEachLayout)
{
    TEdcBlock *head = Blocks(ZulBuildEmitterList(*room.Emitters(), fonts))[1];
    TWriteDC screen(96);
    const struct {
        TWriteDC &device;
        double scale;
        int rowChar, headChar; // px
    } table[] = {{screen, 0.5, 5, 4}, {screen, 0.75, 7, 7}, {dc, 1.0, 60, 55}, {screen, 1.0, 10, 9}};
    for (int round = 0; round < 2; ++round)
        for (const auto &row : table) {
            int height = row.device.Write(*head, PAGE_WIDTH, row.scale);
            EXPECT_EQ(height, row.device.LineHeight("Courier New", 11, row.scale));
            ASSERT_EQ(row.device.written.size(), 8u);
            EXPECT_EQ(row.device.written[1].x, 5 * row.rowChar);
            EXPECT_EQ(row.device.written[2].x, 25 * row.rowChar - 4 * row.headChar);
            EXPECT_EQ(row.device.written[5].x, 47 * row.rowChar - 4 * row.headChar);
        }
}
} // namespace
