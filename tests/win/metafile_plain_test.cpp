// Plain metafiles: what each record draws, what gives the picture its place and its frame, and what is refused.
// With a window of 1600 x 1600 and a rectangle of 100 x 100 px a logical unit is 1/16 px.
#include "win/metafile.h"

#include "support/metawriter.h"
#include "support/recorddc.h"

#include <gtest/gtest.h>

#include <climits>

namespace
{
const TRect HUNDRED = {0, 0, 100, 100};

bool Parse(TMetafile &metafile, const std::string &file, TSize extent = {})
{
    return metafile.ParsePlain(reinterpret_cast<const uint8_t *>(file.data()), file.size(), extent);
}

std::string Played(const std::string &file, const TRect &rect = HUNDRED)
{
    TMetafile metafile;
    if (!Parse(metafile, file))
        return "refused";
    TRecordDC dc;
    metafile.Play(dc, rect);
    return dc.calls;
}

std::string Played(const std::vector<PlainRecord> &records)
{
    return Played(PlainFile(records));
}

uint16_t Half(int value)
{
    return static_cast<uint16_t>(value);
}

TSize FrameOf(const std::vector<PlainRecord> &records, TSize extent = {})
{
    TMetafile metafile;
    EXPECT_TRUE(Parse(metafile, PlainFile(records), extent));
    return metafile.Frame();
}

const PlainRecord WINDOW = {0x020C, {1600, 1600}};
const PlainRecord RECTANGLE = {0x041B, {64, 48, 32, 16}}; // bottom, right, top, left
const std::string BOX = "Shape alternate closed 16,32 48,32 48,64 16,64";
const char *const INK = " pen 000000 brush none\n";
const char *const BOTH = " pen 000000 brush ffffff\n";

struct DRAWN {
    const char *name;
    std::vector<PlainRecord> records; // behind WINDOW
    std::string calls;
};

void CheckDrawn(const std::vector<DRAWN> &table)
{
    for (const DRAWN &row : table) {
        std::vector<PlainRecord> records = {WINDOW};
        records.insert(records.end(), row.records.begin(), row.records.end());
        EXPECT_EQ(Played(records), row.calls) << row.name;
    }
}
} // namespace

TEST(PlainMetafile, FiguresAreOutlines)
{
    CheckDrawn({
        {"line", {{0x0214, {2, 1}}, {0x0213, {4, 3}}}, std::string("Shape alternate open 1,2 3,4") + INK},
        {"polyline",
         {{0x0325, {3, 1, 2, 3, 4, 5, Half(-6)}}},
         std::string("Shape alternate open 1,2 3,4 5,-6") + INK},
        {"polygon",
         {{0x0324, {3, 1, 2, 3, 4, 5, Half(-6)}}},
         std::string("Shape alternate closed 1,2 3,4 5,-6") + BOTH},
        {"polygons",
         {{0x0538, {2, 2, 3, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10}}},
         std::string("Shape alternate closed 1,2 3,4 closed 5,6 7,8 9,10") + BOTH},
        {"polygon of no points", {{0x0324, {0}}}, ""},
        {"rectangle", {RECTANGLE}, BOX + BOTH},
        {"a round rectangle without corners", {{0x061C, {0, 8, 64, 48, 32, 16}}}, BOX + BOTH},
        {"an ellipse without height", {{0x0418, {32, 48, 32, 16}}}, ""},
        {"winding",
         {{0x0106, {2}}, RECTANGLE},
         "Shape winding closed 16,32 48,32 48,64 16,64" + std::string(BOTH)},
        {"clipped",
         {{0x0416, {640, 480, 320, 160}}, RECTANGLE},
         BOX + " pen 000000 brush ffffff clip 10,20,30,40\n"},
        {"no longer clipped", {{0x0416, {640, 480, 320, 160}}, {0x012C, {0}}, RECTANGLE}, BOX + BOTH},
        {"records without effect",
         {{0x0102, {1}},
          {0x0104, {13}},
          {0x0201, {0, 0}},
          {0x0209, {0, 0}},
          {0x0626, {15, 0}},
          {0x0521, {0}},
          {0x0BAD, {1, 2, 3}},
          RECTANGLE},
         BOX + BOTH},
    });
}

TEST(PlainMetafile, RoundFiguresAreTheSameAsInAnEnhancedFile)
{
    static const struct {
        PlainRecord plain;
        EnhancedRecord enhanced;
    } table[] = {
        {{0x0418, {800, 1600, 100, 200}}, {42, {200, 100, 1600, 800}}},
        {{0x061C, {80, 60, 800, 1600, 100, 200}}, {44, {200, 100, 1600, 800, 60, 80}}},
        {{0x0817, {1, 2, 3, 4, 800, 1600, 100, 200}}, {45, {200, 100, 1600, 800, 4, 3, 2, 1}}},
        {{0x0830, {1, 2, 3, 4, 800, 1600, 100, 200}}, {46, {200, 100, 1600, 800, 4, 3, 2, 1}}},
        {{0x081A, {1, 2, 3, 4, 800, 1600, 100, 200}}, {47, {200, 100, 1600, 800, 4, 3, 2, 1}}},
    };
    for (const auto &row : table) {
        const std::string file = EnhancedFile({row.enhanced});
        TMetafile enhanced;
        ASSERT_TRUE(enhanced.ParseEnhanced(reinterpret_cast<const uint8_t *>(file.data()), file.size()));
        TRecordDC dc;
        enhanced.Play(dc, HUNDRED);
        EXPECT_NE(dc.calls, "");
        EXPECT_EQ(Played({WINDOW, row.plain}), dc.calls);
    }
}

TEST(PlainMetafile, ObjectsTakeTheLowestFreeSlot)
{
    const PlainRecord pen = {0x02FA, {0, 48, 0, 0x00FF, 0}};
    const PlainRecord brush = {0x02FC, {0, 0xFF00, 0, 0}};
    auto select = [](uint16_t slot) { return PlainRecord{0x012D, {slot}}; };
    auto drop = [](uint16_t slot) { return PlainRecord{0x01F0, {slot}}; };
    CheckDrawn({
        {"in order", {pen, brush, select(1), select(0), RECTANGLE}, BOX + " pen ff0000 3 brush 00ff00\n"},
        {"a font takes one",
         {{0x02FB, {0, 0}}, pen, select(0), select(1), RECTANGLE},
         BOX + " pen ff0000 3 brush ffffff\n"},
        {"a palette, bitmaps and a region do too",
         {{0x00F7, {0}}, {0x02FD, {0}}, {0x06FE, {0}}, {0x06FF, {0}}, pen, select(4), RECTANGLE},
         BOX + " pen ff0000 3 brush ffffff\n"},
        {"bitmap brushes are grey",
         {{0x0142, {0}}, {0x01F9, {0}}, {0x00F8, {0}}, select(2), RECTANGLE},
         BOX + " pen 000000 brush 808080\n"},
        {"the lowest that was freed",
         {pen, pen, pen, drop(2), drop(1), brush, select(1), RECTANGLE},
         BOX + " pen 000000 brush 00ff00\n"},
        {"and then the next",
         {pen, pen, pen, drop(2), drop(1), pen, brush, select(2), RECTANGLE},
         BOX + " pen 000000 brush 00ff00\n"},
        {"no brush", {{0x02FC, {1, 0, 0, 0}}, select(0), RECTANGLE}, BOX + INK},
        {"a hatched brush",
         {{0x02FC, {2, 0x00FF, 0, 3}}, select(0), RECTANGLE},
         BOX + " pen 000000 brush ff0000\n"},
        {"dashes", {{0x02FA, {1, 0, 0, 0, 0}}, select(0), RECTANGLE}, BOX + " pen 000000 dash brush ffffff\n"},
        {"saved and restored", {{0x001E, {}}, pen, select(0), {0x0127, {Half(-1)}}, RECTANGLE}, BOX + BOTH},
        {"restored to the first level",
         {{0x001E, {}}, pen, select(0), {0x001E, {}}, {0x0127, {1}}, RECTANGLE},
         BOX + BOTH},
    });
}

TEST(PlainMetafile, TheWindowFillsTheRectangle)
{
    static const struct {
        const char *name;
        std::vector<PlainRecord> records;
        const char *box;
    } table[] = {
        {"extent", {{0x020C, {100, 200}}, {0x041B, {75, 100, 50, 0}}}, "0,800 800,800 800,1200 0,1200"},
        {"extent and origin",
         {{0x020B, {50, 0}}, {0x020C, {100, 200}}, {0x041B, {75, 100, 50, 0}}},
         "0,0 800,0 800,400 0,400"},
        {"moved origin",
         {{0x020F, {50, 0}}, {0x020C, {100, 200}}, {0x041B, {75, 100, 50, 0}}},
         "0,0 800,0 800,400 0,400"},
        {"y up",
         {{0x020B, {100, 0}}, {0x020C, {Half(-100), 200}}, {0x041B, {75, 100, 50, 0}}},
         "0,800 800,800 800,400 0,400"},
        {"scaled extent",
         {{0x020C, {50, 400}}, {0x0410, {1, 2, 2, 1}}, {0x041B, {75, 100, 50, 0}}},
         "0,800 800,800 800,1200 0,1200"},
        {"map modes change nothing",
         {{0x0103, {7}}, {0x020C, {100, 200}}, {0x0103, {1}}, {0x041B, {75, 100, 50, 0}}},
         "0,800 800,800 800,1200 0,1200"},
        {"a viewport of the file's own",
         {{0x020C, {100, 200}}, {0x020D, {7, 9}}, {0x020E, {30, 40}}, {0x041B, {75, 100, 50, 0}}},
         "0,800 800,800 800,1200 0,1200"},
        {"a viewport with y up",
         {{0x020C, {100, 200}}, {0x020D, {100, 0}}, {0x020E, {Half(-100), 200}}, {0x041B, {75, 100, 50, 0}}},
         "0,800 800,800 800,400 0,400"},
        {"no window: what is drawn", {{0x041B, {75, 100, 50, 0}}}, "0,0 1600,0 1600,1600 0,1600"},
        {"no window, and an origin",
         {{0x020B, {50, 0}}, {0x041B, {75, 100, 50, 0}}},
         "0,0 1600,0 1600,1600 0,1600"},
        {"no window, and no height", {{0x041B, {50, 100, 50, 0}}}, "0,0 1600,0 1600,0 0,0"},
    };
    for (const auto &row : table)
        EXPECT_EQ(Played(row.records), std::string("Shape alternate closed ") + row.box + BOTH) << row.name;
}

TEST(PlainMetafile, ALaterWindowMovesOnlyWhatFollows)
{
    EXPECT_EQ(Played({WINDOW, RECTANGLE, {0x020C, {800, 800}}, RECTANGLE, {0x020E, {1, 2}}, RECTANGLE}),
              BOX + BOTH + "Shape alternate closed 32,64 96,64 96,128 32,128" + BOTH +
                  "Shape alternate closed 64,64 192,64 192,128 64,128" + BOTH);
}

TEST(PlainMetafile, HalfTheRectangleIsHalfTheCoordinates)
{
    const std::vector<PlainRecord> records = {
        WINDOW, {0x02FA, {0, 64, 0, 0, 0}}, {0x012D, {0}}, {0x041B, {640, 480, 320, 160}}};
    EXPECT_EQ(Played(PlainFile(records)),
              "Shape alternate closed 160,320 480,320 480,640 160,640 pen 000000 4 brush ffffff\n");
    EXPECT_EQ(Played(PlainFile(records), {0, 0, 50, 50}),
              "Shape alternate closed 80,160 240,160 240,320 80,320 pen 000000 2 brush ffffff\n");
    EXPECT_EQ(Played(PlainFile(records), {10, 10, 110, 60}),
              "Shape alternate closed 320,320 640,320 640,480 320,480 pen 000000 3 brush ffffff\n");
}

TEST(PlainMetafile, FrameIsAsGivenOrThatOfTheWindow)
{
    EXPECT_EQ(FrameOf({WINDOW, RECTANGLE}, {5000, 2000}), (TSize{5000, 2000}));
    EXPECT_EQ(FrameOf({WINDOW, RECTANGLE}, {-5000, INT_MIN}), (TSize{5000, INT_MAX}));
    EXPECT_EQ(FrameOf({{0x020C, {Half(-48), 192}}, RECTANGLE}), (TSize{5080, 1270}));
    EXPECT_EQ(FrameOf({{0x020C, {48, 192}}}), (TSize{5080, 1270}));
    EXPECT_EQ(FrameOf({{0x020C, {48, 192}}, RECTANGLE, {0x020C, {9, 9}}}, {0, 2000}), (TSize{5080, 1270}));
    EXPECT_EQ(FrameOf({{0x041B, {196, 148, 100, 100}}}), (TSize{1270, 2540}));
    EXPECT_EQ(FrameOf({}), TSize());
}

TEST(PlainMetafile, WhatLiesBehindTheEndIsNobodys)
{
    const std::string sound = PlainFile({WINDOW, RECTANGLE});
    EXPECT_EQ(Played(sound + "anything"), BOX + BOTH);
    std::string longer = sound + std::string(8, '\1');
    MetaPut32(longer, 6, static_cast<uint32_t>(longer.size() / 2));
    EXPECT_EQ(Played(longer), BOX + BOTH);
}

TEST(PlainMetafile, UnsoundHeadersAreRefused)
{
    const std::string sound = PlainFile({WINDOW, RECTANGLE});
    static const struct {
        const char *name;
        size_t at;
        uint16_t value;
    } table[] = {
        {"type", 0, 3},
        {"length of the header", 2, 8},
        {"version", 4, 0x200},
        {"file longer than it is", 6, static_cast<uint16_t>(sound.size() / 2 + 1)},
        {"file much longer than it is", 8, 0x8000},
        {"file without its end", 6, static_cast<uint16_t>(sound.size() / 2 - 1)},
        {"file without a record", 6, 9},
    };
    for (const auto &row : table) {
        std::string file = sound;
        MetaPut16(file, row.at, row.value);
        EXPECT_EQ(Played(file), "refused") << row.name;
    }
    for (uint16_t version : {0x100, 0x300}) {
        std::string file = sound;
        MetaPut16(file, 0, 2);
        MetaPut16(file, 4, version);
        EXPECT_EQ(Played(file), BOX + BOTH) << version;
    }
    TMetafile metafile;
    EXPECT_FALSE(metafile.ParsePlain(NULL, 0, {}));
}

TEST(PlainMetafile, UnsoundRecordsAreRefused)
{
    const PlainRecord pen = {0x02FA, {0, 0, 0, 0, 0}};
    const std::vector<PlainRecord> deep(257, PlainRecord{0x001E, {}});
    const std::vector<PlainRecord> many(10, pen);
    const struct {
        const char *name;
        std::vector<PlainRecord> records;
    } table[] = {
        {"a short record", {{0x0213, {1}}}},
        {"polyline: count beyond the record", {{0x0325, {3, 1, 2, 3, 4}}}},
        {"polygon: count below 0", {{0x0324, {0xFFFF, 1, 2, 3, 4}}}},
        {"polygons: count of figures", {{0x0538, {9, 1, 2}}}},
        {"polygons: count of points", {{0x0538, {1, 3, 1, 2, 3, 4}}}},
        {"polygons: count of later points", {{0x0538, {2, 1, 2, 1, 2, 3, 4}}}},
        {"more objects than slots", many},
        {"select an empty slot", {{0x012D, {0}}}},
        {"select what is gone", {pen, {0x01F0, {0}}, {0x012D, {0}}}},
        {"select a region", {{0x06FF, {0}}, {0x012D, {0}}}},
        {"delete an empty slot", {{0x01F0, {0}}}},
        {"restore what was not saved", {{0x0127, {Half(-1)}}}},
        {"restore 0", {{0x001E, {}}, {0x0127, {0}}}},
        {"restore a level that is not there", {{0x001E, {}}, {0x0127, {2}}}},
        {"257 states", deep},
        {"metric map mode", {{0x0103, {2}}}},
        {"map mode 9", {{0x0103, {9}}}},
        {"window without width", {{0x020C, {1, 0}}}},
        {"window scaled to nothing", {{0x020C, {1, 1}}, {0x0410, {1, 1, 1, 0}}}},
        {"window scaled by a fraction of nothing", {{0x020C, {1, 1}}, {0x0410, {0, 1, 1, 1}}}},
        {"viewport without height", {{0x020E, {0, 1}}}},
        {"fill mode 3", {{0x0106, {3}}}},
        {"clip to a region", {{0x06FF, {0}}, {0x012C, {1}}}},
        {"clip that leaves a rectangle out", {{0x0415, {9, 9, 0, 0}}}},
        {"clip that moves", {{0x0220, {1, 1}}}},
    };
    for (const auto &row : table)
        EXPECT_EQ(Played(row.records), "refused") << row.name;
}

TEST(PlainMetafile, UnsoundLengthsAreRefused)
{
    const std::string sound = PlainFile({RECTANGLE, RECTANGLE});
    for (uint32_t words : {0u, 1u, 2u, 5u, 8u, 1000u, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFFu}) {
        std::string file = sound;
        MetaPut32(file, 18, words);
        EXPECT_EQ(Played(file), "refused") << words;
    }
}

TEST(PlainMetafile, ScalingWithoutEndStaysWithinItsNumbers)
{
    std::vector<PlainRecord> records(40, PlainRecord{0x0410, {1, 32767, 1, 32767}});
    EXPECT_EQ(Played(records), "refused");
    records.assign(40, PlainRecord{0x0412, {32767, 1, 32767, 1}});
    EXPECT_EQ(Played(records), "refused");
    records.assign(40, PlainRecord{0x020F, {32767, 32767}});
    records.push_back(WINDOW);
    records.push_back(RECTANGLE);
    EXPECT_NE(Played(records), "refused");
}
