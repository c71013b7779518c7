// The heads of the lists stand over their columns: measured with the real fonts, on screens and on paper, at
// each zoom. The head has smaller characters than the rows, so it meets a column to half of its own character.
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

    /// One written line with the places of its words.
    struct LINE {
        std::string text;
        int x;
        TFont font;
    };
    LINE WriteLine(TWriteDC &device, TEdcBlock *blk, double scale)
    {
        device.Write(*blk, PAGE_WIDTH, scale);
        EXPECT_EQ(device.written.size(), 1u) << device.DpiX() << " dpi at " << scale;
        const WRITTEN &piece = device.written.at(0);
        return {piece.text, piece.x, piece.font};
    }
    /// Left edge of character `at` of the line, px.
    double Edge(TWriteDC &device, const LINE &line, size_t at)
    {
        return line.x + device.Width(line.font, line.text.substr(0, at));
    }

    template <size_t COUNT>
    void ExpectOver(const COLUMN (&columns)[COUNT], TEdcBlock *fresh, int dpi, double scale)
    {
        TWriteDC device(dpi);
        std::vector<TEdcBlock *> blocks = Blocks(fresh);
        ASSERT_EQ(blocks.size(), 3u);
        LINE head = WriteLine(device, blocks[1], scale);
        LINE row = WriteLine(device, blocks[2], scale);
        double headChar = device.Width(head.font, "0");
        size_t headAt = 0, rowAt = 0;
        for (const COLUMN &column : columns) {
            SCOPED_TRACE(EdcFormat("%s, %d dpi at %lg", column.title, dpi, scale));
            std::string title = column.title, value = column.value;
            headAt = head.text.find(title, headAt);
            rowAt = row.text.find(value, rowAt);
            ASSERT_NE(headAt, std::string::npos) << head.text;
            ASSERT_NE(rowAt, std::string::npos) << row.text;
            ASSERT_TRUE(headAt == 0 || head.text[headAt - 1] == ' ') << "titles stand apart";
            size_t width = static_cast<size_t>(column.width);
            double left = Edge(device, head, headAt) - Edge(device, row, rowAt);
            double right = Edge(device, head, headAt + title.size()) - Edge(device, row, rowAt + width);
            double off = column.kind == NAME ? left : column.kind == NUMBER ? right : (left + right) / 2;
            double limit =
                column.kind == WIDE ? 1.0 : 0.5; // of the head's character: wide titles may make room
            EXPECT_LE(std::fabs(off), limit * headChar + 0.5);
            headAt += title.size();
            rowAt += value.size();
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
    std::vector<TEdcBlock *> blocks = Blocks(ZulBuildEmitterList(*room.Emitters(), fonts));
    TWriteDC screen(96);
    std::string small = WriteLine(screen, blocks[1], 0.5).text; // 5 px over 4 px
    std::string even = WriteLine(screen, blocks[1], 0.75).text; // 7 px over 7 px
    std::string paper = WriteLine(dc, blocks[1], 1.0).text;     // 60 px over 55 px
    EXPECT_EQ(even, "Nr.  Modell          P[W]    X[m]   Y[m]   Z[m] Dreh[\xB0] Neig[\xB0]");
    EXPECT_EQ(paper, "Nr.  Modell            P[W]     X[m]    Y[m]   Z[m]  Dreh[\xB0] Neig[\xB0]");
    EXPECT_GT(small.size(), paper.size());
    EXPECT_EQ(WriteLine(screen, blocks[1], 0.75).text, even) << "and back again";
}
} // namespace
