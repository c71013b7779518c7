// Enhanced metafiles: what each record draws, what places the picture, and what is refused. Logical units are
// 1/16 px in these tables unless a row sets a page of its own.
#include "win/metafile.h"

#include "support/metawriter.h"
#include "support/recorddc.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace
{
const TRect HUNDRED = {0, 0, 100, 100};

bool Parse(TMetafile &metafile, const std::string &file)
{
    return metafile.ParseEnhanced(reinterpret_cast<const uint8_t *>(file.data()), file.size());
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

std::string Played(const std::vector<EnhancedRecord> &records)
{
    return Played(EnhancedFile(records));
}

uint32_t Word(int value)
{
    return static_cast<uint32_t>(value);
}

META32 World(float xx, float xy, float yx, float yy, float dx, float dy)
{
    return {MetaReal(xx), MetaReal(xy), MetaReal(yx), MetaReal(yy), MetaReal(dx), MetaReal(dy)};
}

META32 World(float xx, float xy, float yx, float yy, float dx, float dy, uint32_t mode)
{
    META32 words = World(xx, xy, yx, yy, dx, dy);
    words.push_back(mode);
    return words;
}

const EnhancedRecord LINE = {54, {160, 320}};
const EnhancedRecord RECTANGLE = {43, {16, 32, 48, 64}};
const char *const RED_PEN = " pen ff0000 brush none\n";
const char *const INK = " pen 000000 brush none\n";
const char *const BOTH = " pen 000000 brush ffffff\n";

struct DRAWN {
    const char *name;
    std::vector<EnhancedRecord> records;
    std::string calls;
};

void CheckDrawn(const std::vector<DRAWN> &table)
{
    for (const DRAWN &row : table)
        EXPECT_EQ(Played(row.records), row.calls) << row.name;
}
} // namespace

TEST(EnhancedMetafile, LinesAndPolygonsComeInBothWidths)
{
    const std::string polyline = std::string("Shape alternate open 1,2 3,4 5,-6") + INK;
    const std::string polygon = std::string("Shape alternate closed 1,2 3,4 5,-6") + BOTH;
    const std::string two = "Shape alternate open 1,2 3,4 open 5,6 7,8 9,10";
    const std::string closed = "Shape alternate closed 1,2 3,4 closed 5,6 7,8 9,10";
    const META32 wide = {0, 0, 0, 0, 3, 1, 2, 3, 4, 5, Word(-6)};
    const META32 narrow = {0, 0, 0, 0, 3, MetaPair(1, 2), MetaPair(3, 4), MetaPair(5, -6)};
    const META32 group = {0, 0, 0, 0, 2, 5, 2, 3, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10};
    const META32 narrowGroup = {0,
                                0,
                                0,
                                0,
                                2,
                                5,
                                2,
                                3,
                                MetaPair(1, 2),
                                MetaPair(3, 4),
                                MetaPair(5, 6),
                                MetaPair(7, 8),
                                MetaPair(9, 10)};
    const META32 empties = {0, 0, 0, 0, 3, 2, 0, 2, 0, 1, 2, 3, 4};
    CheckDrawn({
        {"polyline", {{4, wide}}, polyline},
        {"narrow polyline", {{87, narrow}}, polyline},
        {"polygon", {{3, wide}}, polygon},
        {"narrow polygon", {{86, narrow}}, polygon},
        {"polylines", {{7, group}}, two + INK},
        {"narrow polylines", {{90, narrowGroup}}, two + INK},
        {"polygons", {{8, group}}, closed + BOTH},
        {"narrow polygons", {{91, narrowGroup}}, closed + BOTH},
        {"empty ones among the polygons", {{8, empties}}, std::string("Shape alternate closed 1,2 3,4") + BOTH},
        {"nothing but empty ones", {{8, {0, 0, 0, 0, 2, 0, 0, 0}}}, ""},
        {"a polyline of no points", {{4, {0, 0, 0, 0, 0}}}, ""},
    });
}

TEST(EnhancedMetafile, LinesToGoOnAtTheCurrentPosition)
{
    const META32 to = {0, 0, 0, 0, 2, 5, 6, 7, 8};
    const META32 narrowTo = {0, 0, 0, 0, 2, MetaPair(5, 6), MetaPair(7, 8)};
    const EnhancedRecord move = {27, {1, 2}};
    const std::string bent = std::string("Shape alternate open 1,2 5,6 7,8") + INK;
    const std::string after = std::string("Shape alternate open 7,8 160,320") + INK;
    CheckDrawn({
        {"a line from the start", {LINE}, std::string("Shape alternate open 0,0 160,320") + INK},
        {"a line from a place", {move, LINE}, std::string("Shape alternate open 1,2 160,320") + INK},
        {"a second line",
         {move, {54, {3, 4}}, LINE},
         std::string("Shape alternate open 1,2 3,4") + INK + "Shape alternate open 3,4 160,320" + INK},
        {"polyline to", {move, {6, to}, LINE}, bent + after},
        {"narrow polyline to", {move, {89, narrowTo}, LINE}, bent + after},
        {"a polyline leaves the position alone",
         {move, {4, {0, 0, 0, 0, 2, 5, 6, 7, 8}}, LINE},
         std::string("Shape alternate open 5,6 7,8") + INK + "Shape alternate open 1,2 160,320" + INK},
        {"saved and restored with the state",
         {move, {33, {}}, {27, {9, 9}}, {34, {Word(-1)}}, LINE},
         std::string("Shape alternate open 1,2 160,320") + INK},
    });
}

TEST(EnhancedMetafile, CurvesAreBrokenIntoLines)
{
    // All four points on a line, evenly: no line leaves the curve, so one is enough.
    const std::string straight = std::string("Shape alternate open 0,0 300,0") + INK;
    const META32 flat = {0, 0, 0, 0, 4, 0, 0, 100, 0, 200, 0, 300, 0};
    const META32 narrow = {0, 0, 0, 0, 4, 0, MetaPair(100, 0), MetaPair(200, 0), MetaPair(300, 0)};
    const META32 to = {0, 0, 0, 0, 3, 100, 0, 200, 0, 300, 0};
    const META32 narrowTo = {0, 0, 0, 0, 3, MetaPair(100, 0), MetaPair(200, 0), MetaPair(300, 0)};
    // Second differences of (10, -10) px ask for the square root of 6 * 14.1 / (8 * 1/8) = 9.2 lines.
    CheckDrawn({
        {"curve", {{2, flat}}, straight},
        {"narrow curve", {{85, narrow}}, straight},
        {"curve to", {{5, to}}, straight},
        {"narrow curve to", {{88, narrowTo}}, straight},
        {"where a curve to ends",
         {{5, to}, {54, {300, 7}}},
         straight + "Shape alternate open 300,0 300,7" + INK},
        {"a curve of ten lines",
         {{2, {0, 0, 0, 0, 4, 0, 0, 0, 160, 160, 160, 160, 0}}},
         std::string("Shape alternate open 0,0 4,43 17,77 35,101 56,115 80,120 104,115 125,101 143,77 156,43 "
                     "160,0") +
             INK},
    });
}

TEST(EnhancedMetafile, FiguresAreOutlines)
{
    const META32 box = {16, 32, 48, 64};
    CheckDrawn({
        {"rectangle", {RECTANGLE}, std::string("Shape alternate closed 16,32 48,32 48,64 16,64") + BOTH},
        {"a round rectangle without corners",
         {{44, {16, 32, 48, 64, 0, 10}}},
         std::string("Shape alternate closed 16,32 48,32 48,64 16,64") + BOTH},
        {"an ellipse without height", {{42, {16, 32, 48, 32}}}, ""},
        {"an arc without width", {{45, {16, 32, 16, 64, 0, 0, 5, 5}}}, ""},
    });
}

namespace
{
/// The points of the only shape, in 1/16 px.
std::vector<TPoint> PointsOf(const std::vector<EnhancedRecord> &records, bool &closed)
{
    class LastShapeDC : public TRecordDC
    {
    public:
        void Shape(const std::vector<Outline> &outlines, bool) override { shape = outlines; }
        std::vector<Outline> shape;
    };
    TMetafile metafile;
    LastShapeDC dc;
    EXPECT_TRUE(Parse(metafile, EnhancedFile(records)));
    EXPECT_EQ(metafile.RecordCount(), 1);
    metafile.Play(dc, HUNDRED);
    EXPECT_EQ(dc.shape.size(), 1u);
    closed = dc.shape[0].closed;
    return dc.shape[0].points;
}

double AreaOf(const std::vector<TPoint> &points)
{
    double twice = 0;
    for (size_t i = 0; i < points.size(); ++i) {
        const TPoint a = points[i];
        const TPoint b = points[(i + 1) % points.size()];
        twice += static_cast<double>(a.x) * b.y - static_cast<double>(b.x) * a.y;
    }
    return twice / 2;
}

/// How far the points' distance from a centre is off the radius.
double WorstRadius(const std::vector<TPoint> &points, double x, double y, double radius)
{
    double worst = 0;
    for (const TPoint &p : points)
        worst = std::max(worst, std::abs(std::hypot(p.x - x, p.y - y) - radius));
    return worst;
}
} // namespace

TEST(EnhancedMetafile, CirclesAreRoundWithinAnEighthOfAPixel)
{
    bool closed = false;
    const std::vector<TPoint> circle = PointsOf({{42, {0, 0, 1600, 1600}}}, closed);
    EXPECT_TRUE(closed);
    EXPECT_LT(WorstRadius(circle, 800, 800, 800), 2);
    EXPECT_NEAR(std::abs(AreaOf(circle)), 3.14159265 * 800 * 800, 3.14159265 * 1600 * 1.5);
    const std::vector<TPoint> turned = PointsOf({{42, {1600, 1600, 0, 0}}}, closed);
    EXPECT_LT(WorstRadius(turned, 800, 800, 800), 2);
}

TEST(EnhancedMetafile, RoundCornersTakeOffWhatAnEllipseLeavesOfItsBox)
{
    bool closed = false;
    const std::vector<TPoint> shape = PointsOf({{44, {0, 0, 1600, 800, 400, 200}}}, closed);
    EXPECT_TRUE(closed);
    EXPECT_NEAR(std::abs(AreaOf(shape)), 1600.0 * 800 - 400.0 * 200 * (1 - 3.14159265 / 4), 1000);
    for (const TPoint &p : shape)
        EXPECT_TRUE(p.x >= 0 && p.x <= 1600 && p.y >= 0 && p.y <= 800) << p.x << "," << p.y;
}

TEST(EnhancedMetafile, ArcsRunCounterClockwiseAsTheyAreSeen)
{
    static const struct {
        const char *name;
        std::vector<EnhancedRecord> before;
        uint32_t type;
        META32 rays; // in the order start, end
        double area; // of the closed shape over that of the circle; above 0 where it runs clockwise
        bool closed;
    } table[] = {
        {"a quarter pie", {}, 47, {1600, 800, 800, 0}, -0.25, true},
        {"three quarters of a pie", {}, 47, {800, 0, 1600, 800}, -0.75, true},
        {"clockwise", {{57, {2}}}, 47, {800, 0, 1600, 800}, 0.25, true},
        {"a pie all round", {}, 47, {1600, 800, 1600, 800}, -1, true},
        {"a chord", {}, 46, {1600, 800, 0, 800}, -0.5, true},
        {"an arc", {}, 45, {1600, 800, 0, 800}, -0.5, false},
        {"rays of any length", {}, 46, {801, 800, Word(-90000), 800}, -0.5, true},
        {"y up",
         {{17, {8}}, {9, {1600, Word(-1600)}}, {10, {0, 1600}}, {11, {1600, 1600}}},
         47,
         {1600, 800, 800, 1600},
         -0.25,
         true},
    };
    for (const auto &row : table) {
        std::vector<EnhancedRecord> records = row.before;
        META32 words = {0, 0, 1600, 1600};
        words.insert(words.end(), row.rays.begin(), row.rays.end());
        records.push_back({row.type, words});
        bool closed = false;
        const double area = AreaOf(PointsOf(records, closed));
        EXPECT_NEAR(area / (3.14159265 * 800 * 800), row.area, 0.005) << row.name;
        EXPECT_EQ(closed, row.closed) << row.name;
    }
}

TEST(EnhancedMetafile, ArcsThatGoOnStartAtThePosition)
{
    bool closed = true;
    const std::vector<TPoint> arc =
        PointsOf({{27, {1600, 1600}}, {55, {0, 0, 1600, 1600, 1600, 800, 800, 0}}}, closed);
    EXPECT_FALSE(closed);
    EXPECT_EQ(arc[0], (TPoint{1600, 1600}));
    EXPECT_EQ(arc[1], (TPoint{1600, 800}));
    EXPECT_EQ(arc.back(), (TPoint{800, 0}));
    const EnhancedRecord byAngles = {41, {800, 800, 800, MetaReal(0), MetaReal(90)}};
    EXPECT_EQ(PointsOf({{27, {1600, 1600}}, byAngles}, closed), arc);
    const std::string calls = Played({{27, {1600, 1600}}, byAngles, LINE});
    EXPECT_NE(calls.find("open 800,0 160,320"), std::string::npos) << calls;
    const EnhancedRecord often = {41, {800, 800, 800, MetaReal(0), MetaReal(3600090)}};
    EXPECT_EQ(PointsOf({{27, {1600, 1600}}, often}, closed).back(), (TPoint{800, 0}));
}

TEST(EnhancedMetafile, MixedFiguresFollowTheirTypes)
{
    const META32 points = {0, 0, 0, 0, 7, 10, 10, 20, 10, 30, 10, 40, 10, 50, 10, 90, 90, 95, 95};
    META32 wide = points;
    wide.push_back(0x04040206); // to (10, 10), line to (20, 10), curve to (50, 10)
    wide.push_back(0x00020605); // and close, to (90, 90), line to (95, 95)
    META32 narrow = {0, 0, 0, 0, 7};
    for (size_t i = 5; i < points.size(); i += 2)
        narrow.push_back(MetaPair(static_cast<int>(points[i]), static_cast<int>(points[i + 1])));
    narrow.push_back(0x04040206);
    narrow.push_back(0x00020605);
    const std::string drawn = std::string("Shape alternate closed 10,10 20,10 50,10 open 90,90 95,95") + INK;
    CheckDrawn({
        {"wide", {{56, wide}}, drawn},
        {"narrow", {{92, narrow}}, drawn},
    });
}

TEST(EnhancedMetafile, PensAndBrushesAreAsSelected)
{
    const META32 line = {0, 0, 0, 0, 2, 1, 2, 3, 4};
    const EnhancedRecord polyline = {4, line};
    auto pen = [](uint32_t style, uint32_t width) {
        return EnhancedRecord{38, {1, style, width, 0, 0x0000FF}};
    };
    auto wide = [](uint32_t style, uint32_t brush) {
        return EnhancedRecord{95, {1, 0, 0, 0, 0, style, 48, brush, 0x0000FF, 0, 0}};
    };
    const EnhancedRecord select = {37, {1}};
    const std::string stroke = "Shape alternate open 1,2 3,4";
    const std::string box = "Shape alternate closed 16,32 48,32 48,64 16,64";
    CheckDrawn({
        {"a hairline", {pen(0, 0), select, polyline}, stroke + RED_PEN},
        {"thinner than a pixel", {pen(0, 7), select, polyline}, stroke + RED_PEN},
        {"3 px wide", {pen(0, 48), select, polyline}, stroke + " pen ff0000 3 brush none\n"},
        {"dashes", {pen(1, 0), select, polyline}, stroke + " pen ff0000 dash brush none\n"},
        {"dots", {pen(2, 0), select, polyline}, stroke + " pen ff0000 dot brush none\n"},
        {"dashes and dots", {pen(4, 0), select, polyline}, stroke + " pen ff0000 dash brush none\n"},
        {"no pen", {pen(5, 0), select, polyline}, ""},
        {"inside the frame", {pen(6, 0), select, polyline}, stroke + RED_PEN},
        {"a wide pen", {wide(0x10000, 0), select, polyline}, stroke + " pen ff0000 3 brush none\n"},
        {"a wide pen with joins and caps",
         {wide(0x12100, 0), select, polyline},
         stroke + " pen ff0000 3 brush none\n"},
        {"a pen of one pixel", {wide(0, 0), select, polyline}, stroke + RED_PEN},
        {"a wide pen with no brush", {wide(0x10000, 1), select, polyline}, ""},
        {"a wide pen with a bitmap",
         {wide(0x10000, 3), select, polyline},
         stroke + " pen 808080 3 brush none\n"},
        {"a brush", {{39, {1, 0, 0x00FF00, 0}}, select, RECTANGLE}, box + " pen 000000 brush 00ff00\n"},
        {"no brush", {{39, {1, 1, 0x00FF00, 0}}, select, RECTANGLE}, box + INK},
        {"a hatched brush", {{39, {1, 2, 0x00FF00, 3}}, select, RECTANGLE}, box + " pen 000000 brush 00ff00\n"},
        {"a bitmap brush", {{94, {1, 0, 0}}, select, RECTANGLE}, box + " pen 000000 brush 808080\n"},
        {"a brush of one bit", {{93, {1, 0, 0}}, select, RECTANGLE}, box + " pen 000000 brush 808080\n"},
        {"neither pen nor brush", {{37, {0x80000005}}, {37, {0x80000008}}, RECTANGLE}, ""},
        {"stock pen and brush",
         {{37, {0x80000006}}, {37, {0x80000002}}, RECTANGLE},
         box + " pen ffffff brush 808080\n"},
        {"a font", {{82, {1, 0, 0}}, select, {37, {0x8000000D}}, RECTANGLE}, box + BOTH},
        {"a brush that is deleted goes on",
         {{39, {1, 0, 0x00FF00, 0}}, select, {40, {1}}, RECTANGLE},
         box + " pen 000000 brush 00ff00\n"},
        {"a handle used again",
         {pen(0, 0), {40, {1}}, {39, {1, 0, 0x0000FF, 0}}, select, RECTANGLE},
         box + " pen 000000 brush ff0000\n"},
        {"stock objects stay when they are deleted", {{40, {0x80000005}}, RECTANGLE}, box + BOTH},
        {"restored", {{33, {}}, pen(0, 0), select, {34, {Word(-1)}}, RECTANGLE}, box + BOTH},
        {"two states back",
         {{33, {}}, pen(0, 0), select, {33, {}}, {37, {0x80000006}}, {34, {Word(-2)}}, RECTANGLE},
         box + BOTH},
        {"winding", {{19, {2}}, RECTANGLE}, "Shape winding closed 16,32 48,32 48,64 16,64" + std::string(BOTH)},
        {"records without effect",
         {{18, {1}},
          {20, {7}},
          {21, {3}},
          {22, {24}},
          {24, {255}},
          {25, {255}},
          {58, {10}},
          {13, {0, 0}},
          {70, {4, 0}},
          {76, {}},
          {84, {}},
          {4711, {1, 2, 3}},
          RECTANGLE},
         box + BOTH},
    });
}

TEST(EnhancedMetafile, PathsGatherFigures)
{
    const EnhancedRecord begin = {59, {}};
    const EnhancedRecord end = {60, {}};
    const EnhancedRecord close = {61, {}};
    const EnhancedRecord move = {27, {1, 2}};
    const EnhancedRecord line = {54, {3, 4}};
    const EnhancedRecord next = {54, {5, 9}};
    const EnhancedRecord fill = {62, {}};
    const EnhancedRecord both = {63, {}};
    const EnhancedRecord stroke = {64, {}};
    const std::string box = " closed 16,32 48,32 48,64 16,64";
    CheckDrawn({
        {"stroked",
         {begin, move, line, next, end, stroke},
         std::string("Shape alternate open 1,2 3,4 5,9") + INK},
        {"closed and stroked",
         {begin, move, line, next, close, end, stroke},
         std::string("Shape alternate closed 1,2 3,4 5,9") + INK},
        {"filled, and so closed",
         {begin, move, line, next, end, fill},
         "Shape alternate closed 1,2 3,4 5,9 pen none brush ffffff\n"},
        {"both",
         {begin, move, line, next, end, both},
         std::string("Shape alternate closed 1,2 3,4 5,9") + BOTH},
        {"two figures",
         {begin, move, line, {27, {7, 7}}, next, end, stroke},
         std::string("Shape alternate open 1,2 3,4 open 7,7 5,9") + INK},
        {"figures of other records",
         {begin, RECTANGLE, move, line, RECTANGLE, end, stroke},
         "Shape alternate" + box + " open 1,2 3,4" + box + INK},
        {"a polyline that is closed",
         {begin, {4, {0, 0, 0, 0, 2, 1, 2, 3, 4}}, close, end, stroke},
         std::string("Shape alternate closed 1,2 3,4") + INK},
        {"a line behind a closed figure starts a new one",
         {begin, move, line, close, next, end, stroke},
         std::string("Shape alternate closed 1,2 3,4 open 3,4 5,9") + INK},
        {"given up", {begin, move, line, {68, {}}}, ""},
        {"given up when complete", {begin, move, line, end, {68, {}}}, ""},
        {"never used", {begin, move, line, end}, ""},
        {"replaced", {begin, move, line, end, begin, RECTANGLE, end, stroke}, "Shape alternate" + box + INK},
        {"figures between a path and its use",
         {begin, move, line, end, RECTANGLE, stroke},
         "Shape alternate" + box + BOTH + "Shape alternate open 1,2 3,4" + INK},
        {"figures behind one that was given up",
         {begin, move, line, {68, {}}, RECTANGLE},
         "Shape alternate" + box + BOTH},
        {"an empty one", {begin, end, both, begin, close, end, stroke}, ""},
        {"flattened",
         {begin, move, line, end, {65, {}}, stroke},
         std::string("Shape alternate open 1,2 3,4") + INK},
        {"drawn with the pen of its use",
         {begin, move, line, end, {37, {0x80000006}}, stroke},
         "Shape alternate open 1,2 3,4 pen ffffff brush none\n"},
    });
}

TEST(EnhancedMetafile, PageAndWorldPlaceWhatIsDrawn)
{
    const std::string box = "Shape alternate closed ";
    const EnhancedRecord free = {17, {8}};
    const EnhancedRecord equal = {17, {7}};
    CheckDrawn({
        {"origins", {{10, {16, 32}}, {12, {5, 6}}, RECTANGLE}, box + "5,6 37,6 37,38 5,38" + BOTH},
        {"extents are idle in pixels",
         {{9, {1, 1}}, {11, {9, 9}}, RECTANGLE},
         box + "16,32 48,32 48,64 16,64" + BOTH},
        {"extents",
         {free, {9, {16, 16}}, {11, {160, 80}}, RECTANGLE},
         box + "160,160 480,160 480,320 160,320" + BOTH},
        {"extents with origins",
         {free, {9, {16, 16}}, {11, {160, 80}}, {10, {16, 32}}, {12, {7, 8}}, RECTANGLE},
         box + "7,8 327,8 327,168 7,168" + BOTH},
        {"equal scales",
         {equal, {9, {16, 16}}, {11, {160, 80}}, RECTANGLE},
         box + "80,160 240,160 240,320 80,320" + BOTH},
        {"y up",
         {free, {9, {16, Word(-16)}}, {11, {16, 16}}, {12, {0, 100}}, RECTANGLE},
         box + "16,68 48,68 48,36 16,36" + BOTH},
        {"scaled extents",
         {free, {9, {16, 16}}, {11, {16, 16}}, {32, {1, 2, 1, 4}}, {31, {3, 1, 1, 1}}, RECTANGLE},
         box + "96,128 288,128 288,256 96,256" + BOTH},
        {"tenths of a millimetre, y up",
         {{17, {2}}, {12, {0, 100}}, RECTANGLE},
         box + "16,68 48,68 48,36 16,36" + BOTH},
        {"hundredths of an inch, y up",
         {{17, {4}}, {12, {0, 254}}, {43, {0, 0, 100, 100}}},
         box + "0,254 254,254 254,0 0,0" + BOTH},
        {"twentieths of a point, y up",
         {{17, {6}}, {12, {0, 254}}, {43, {0, 0, 1440, 1440}}},
         box + "0,254 254,254 254,0 0,0" + BOTH},
        {"world", {{35, World(0, 1, -1, 0, 100, 0)}, RECTANGLE}, box + "68,16 68,48 36,48 36,16" + BOTH},
        {"world in front of the page",
         {{12, {1000, 0}}, {35, World(2, 0, 0, 2, 0, 0)}, RECTANGLE},
         box + "1032,64 1096,64 1096,128 1032,128" + BOTH},
        {"a new world in front",
         {{35, World(2, 0, 0, 2, 0, 0)}, {36, World(1, 0, 0, 1, 10, 0, 2)}, RECTANGLE},
         box + "52,64 116,64 116,128 52,128" + BOTH},
        {"a new world behind",
         {{35, World(2, 0, 0, 2, 0, 0)}, {36, World(1, 0, 0, 1, 10, 0, 3)}, RECTANGLE},
         box + "42,64 106,64 106,128 42,128" + BOTH},
        {"a new world instead",
         {{35, World(2, 0, 0, 2, 0, 0)}, {36, World(1, 0, 0, 1, 10, 0, 4)}, RECTANGLE},
         box + "26,32 58,32 58,64 26,64" + BOTH},
        {"no world",
         {{35, World(2, 0, 0, 2, 0, 0)}, {36, World(7, 7, 7, 7, 7, 7, 1)}, RECTANGLE},
         box + "16,32 48,32 48,64 16,64" + BOTH},
        {"pens are scaled too",
         {{35, World(2, 0, 0, 8, 0, 0)}, {38, {1, 0, 16, 0, 0xFF}}, {37, {1}}, LINE},
         "Shape alternate open 0,0 320,2560 pen ff0000 4 brush none\n"},
    });
}

TEST(EnhancedMetafile, RectanglesClip)
{
    const EnhancedRecord clip = {30, {160, 320, 480, 640}};
    const std::string box = "Shape alternate closed 16,32 48,32 48,64 16,64 pen 000000 brush ffffff";
    const EnhancedRecord inner = {30, {320, 0, 1600, 1600}};
    const META32 one = {48, 1, 32, 1, 1, 16, 0, 0, 0, 0, 0, 160, 160, 320};
    const META32 instead = {48, 5, 32, 1, 1, 16, 0, 0, 0, 0, 0, 160, 160, 320};
    const std::vector<EnhancedRecord> path = {{59, {}}, {43, {0, 0, 160, 320}}, {60, {}}};
    CheckDrawn({
        {"one", {clip, RECTANGLE}, box + " clip 10,20,30,40\n"},
        {"two", {clip, inner, RECTANGLE}, box + " clip 20,20,30,40\n"},
        {"apart", {clip, {30, {0, 0, 16, 16}}, RECTANGLE}, ""},
        {"restored", {{33, {}}, clip, {34, {Word(-1)}}, RECTANGLE}, box + "\n"},
        {"taken off", {clip, {75, {0, 5}}, RECTANGLE}, box + "\n"},
        {"a region of one rectangle", {{75, one}, RECTANGLE}, box + " clip 0,10,10,20\n"},
        {"a region within a clip", {inner, {75, one}, RECTANGLE}, ""},
        {"a region instead of a clip", {inner, {75, instead}, RECTANGLE}, box + " clip 0,10,10,20\n"},
        {"a path", {path[0], path[1], path[2], {67, {1}}, RECTANGLE}, box + " clip 0,0,10,20\n"},
        {"a path instead of a clip",
         {inner, path[0], path[1], path[2], {67, {5}}, RECTANGLE},
         box + " clip 0,0,10,20\n"},
        {"turned by a quarter",
         {{35, World(0, 1, -1, 0, 0, 0)},
          {30, {0, 0, 160, Word(-320)}},
          {36, World(1, 0, 0, 1, 0, 0, 1)},
          RECTANGLE},
         box + " clip 0,0,20,10\n"},
    });
}

TEST(EnhancedMetafile, TheClipOfTheContextHolds)
{
    TMetafile metafile;
    ASSERT_TRUE(Parse(
        metafile, EnhancedFile({RECTANGLE, {30, {160, 320, 480, 640}}, RECTANGLE, {75, {0, 5}}, RECTANGLE})));
    TRecordDC dc;
    dc.SetViewportOrg({1000, 0});
    dc.SetClip({25, 0, 100, 100});
    metafile.Play(dc, HUNDRED);
    const std::string box =
        "Shape alternate closed 16016,32 16048,32 16048,64 16016,64 pen 000000 brush ffffff clip ";
    EXPECT_EQ(dc.calls, box + "1025,0,1100,100\n" + box + "1025,20,1030,40\n" + box + "1025,0,1100,100\n");
}

TEST(EnhancedMetafile, FrameIsThatOfTheHeader)
{
    std::string file = EnhancedFile({RECTANGLE});
    MetaPut32(file, 24, Word(-2000)); // left
    MetaPut32(file, 28, 4000);        // top
    MetaPut32(file, 32, 6000);        // right
    MetaPut32(file, 36, 5000);        // bottom
    TMetafile metafile;
    ASSERT_TRUE(Parse(metafile, file));
    EXPECT_EQ(metafile.Frame(), (TSize{8000, 1000}));
    // (16, 32) px is (1.6, 3.2) mm, so (21.6, -36.8) mm of 80 x 10 mm.
    EXPECT_EQ(Played(file, {0, 0, 800, 100}),
              std::string("Shape alternate closed 3456,-5888 3968,-5888 3968,-5376 3456,-5376") + BOTH);
}

TEST(EnhancedMetafile, HalfTheRectangleIsHalfTheCoordinates)
{
    static const struct {
        TRect rect;
        const char *box;
    } table[] = {
        {{0, 0, 100, 100}, "160,320 480,320 480,640 160,640"},
        {{0, 0, 50, 50}, "80,160 240,160 240,320 80,320"},
        {{0, 0, 50, 100}, "80,320 240,320 240,640 80,640"},
        {{3, -5, 103, 95}, "208,240 528,240 528,560 208,560"},
    };
    for (const auto &row : table)
        EXPECT_EQ(Played(EnhancedFile({{43, {160, 320, 480, 640}}}), row.rect),
                  std::string("Shape alternate closed ") + row.box + BOTH);
    EXPECT_EQ(Played(EnhancedFile({{38, {1, 0, 64, 0, 0xFF}}, {37, {1}}, LINE}), {0, 0, 50, 50}),
              "Shape alternate open 0,0 80,160 pen ff0000 2 brush none\n");
}

TEST(EnhancedMetafile, RectanglesWithoutAnInsideShowNothing)
{
    for (const TRect &rect :
         {TRect{0, 0, 0, 10}, TRect{0, 0, 10, 0}, TRect{10, 10, 0, 0}, TRect{INT32_MAX, 0, INT32_MIN, 10}})
        EXPECT_EQ(Played(EnhancedFile({RECTANGLE}), rect), "");
}

TEST(EnhancedMetafile, HugeRectanglesStayWithinTheirNumbers)
{
    EXPECT_EQ(Played(EnhancedFile({{43, {0, 0, 1600, 1600}}}), {INT32_MIN, INT32_MIN, INT32_MAX, INT32_MAX}),
              std::string("Shape alternate closed -536870912,-536870912 536870912,-536870912 "
                          "536870912,536870912 -536870912,536870912") +
                  BOTH);
    EXPECT_EQ(Played(EnhancedFile({{54, {INT32_MAX, Word(INT32_MIN)}}})),
              std::string("Shape alternate open 0,0 536870912,-536870912") + INK);
}

TEST(EnhancedMetafile, DashesThatRunFarOffArePlain)
{
    const EnhancedRecord pen = {38, {1, 1, 0, 0, 0xFF}};
    EXPECT_EQ(Played({pen, {37, {1}}, {54, {3200, 3200}}}),
              "Shape alternate open 0,0 3200,3200 pen ff0000 dash brush none\n");
    EXPECT_EQ(Played({pen, {37, {1}}, {54, {3201, 3200}}}),
              "Shape alternate open 0,0 3201,3200 pen ff0000 brush none\n");
}

TEST(EnhancedMetafile, TheContextIsGivenBackAsItWas)
{
    TMetafile metafile;
    ASSERT_TRUE(Parse(metafile, EnhancedFile({{30, {0, 0, 100, 100}}, RECTANGLE})));
    TRecordDC dc;
    dc.SetMix(WIN_MIX_XOR);
    dc.SetPen({WIN_WHITE, 7, WIN_PEN_DOT});
    dc.SetBrush(NoBrush());
    metafile.Play(dc, HUNDRED);
    EXPECT_EQ(dc.calls,
              "Shape alternate closed 16,32 48,32 48,64 16,64 pen 000000 brush ffffff clip 0,0,6,6\n");
    EXPECT_EQ(dc.State().mix, WIN_MIX_XOR);
    EXPECT_EQ(dc.State().pen, (TPen{WIN_WHITE, 7, WIN_PEN_DOT}));
    EXPECT_EQ(dc.State().brush, NoBrush());
    EXPECT_TRUE(dc.State().opaque);
    EXPECT_FALSE(dc.State().clipped);
}

TEST(EnhancedMetafile, AnObjectThatHasReadNothingIsEmpty)
{
    TMetafile metafile;
    EXPECT_TRUE(metafile.IsEmpty());
    ASSERT_TRUE(Parse(metafile, EnhancedFile({RECTANGLE, LINE})));
    EXPECT_FALSE(metafile.IsEmpty());
    EXPECT_EQ(metafile.RecordCount(), 2);
    EXPECT_FALSE(Parse(metafile, "something else"));
    EXPECT_TRUE(metafile.IsEmpty());
    EXPECT_EQ(metafile.Frame(), TSize());
    TRecordDC dc;
    metafile.Play(dc, HUNDRED);
    EXPECT_EQ(dc.calls, "");
    ASSERT_TRUE(Parse(metafile, EnhancedFile({}))); // a sound picture of nothing
    EXPECT_TRUE(metafile.IsEmpty());
    EXPECT_EQ(metafile.Frame(), (TSize{16000, 16000}));
    EXPECT_FALSE(metafile.ParseEnhanced(NULL, 0));
}

TEST(EnhancedMetafile, UnsoundHeadersAreRefused)
{
    const std::string sound = EnhancedFile({RECTANGLE});
    const uint32_t size = static_cast<uint32_t>(sound.size());
    ASSERT_NE(Played(sound), "refused");
    static const struct {
        const char *name;
        size_t at;
        uint32_t value;
    } table[] = {
        {"type", 0, 2},
        {"length below the least", 4, 84},
        {"length of no whole words", 4, 90},
        {"length beyond the file", 4, size + 4},
        {"frame without width", 32, 0},
        {"frame without height", 36, 0},
        {"frame the wrong way round", 32, Word(-1)},
        {"frame too wide for its number", 24, 0x80000000},
        {"signature", 40, 0x464D4521},
        {"version", 44, 0x10001},
        {"bytes beyond the file", 48, size + 4},
        {"bytes short of the end record", 48, size - 4},
        {"bytes short of the header", 48, 84},
        {"more records than there are", 52, 4},
        {"fewer records than there are", 52, 2},
        {"no handle", 56, 0},
        {"description outside", 60, 1},
        {"no device width", 72, 0},
        {"negative device height", 76, Word(-1600)},
        {"no millimetres across", 80, 0},
        {"no millimetres down", 84, 0},
    };
    for (const auto &row : table) {
        std::string file = sound;
        MetaPut32(file, row.at, row.value);
        if (row.at == 60)
            MetaPut32(file, 64, 88);
        EXPECT_EQ(Played(file), "refused") << row.name;
    }
    EXPECT_NE(Played(sound + "behind the end"), "refused");
}

TEST(EnhancedMetafile, UnsoundRecordsAreRefused)
{
    const float inf = std::numeric_limits<float>::infinity();
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const META32 two = {0, 0, 0, 0, 2, 1, 2, 3, 4};
    const EnhancedRecord begin = {59, {}};
    const EnhancedRecord end = {60, {}};
    const std::vector<EnhancedRecord> deep(257, EnhancedRecord{33, {}});
    const struct {
        const char *name;
        std::vector<EnhancedRecord> records;
    } table[] = {
        {"a second header", {{1, META32(22)}}},
        {"type 0", {{0, {}}}},
        {"the end in the middle", {{14, {0, 16, 20}}}},
        {"a short record", {{54, {1}}}},
        {"polyline: count beyond the record", {{4, {0, 0, 0, 0, 3, 1, 2, 3, 4}}}},
        {"polyline: count that overflows", {{4, {0, 0, 0, 0, 0x20000002, 1, 2, 3, 4}}}},
        {"narrow polyline: count that overflows", {{87, {0, 0, 0, 0, 0x40000001, 1}}}},
        {"curve: not a start and threes", {{2, two}}},
        {"curve: no point", {{2, {0, 0, 0, 0, 0}}}},
        {"curve to: not threes", {{5, two}}},
        {"curve to: no point", {{5, {0, 0, 0, 0, 0}}}},
        {"polygons: count of figures", {{8, {0, 0, 0, 0, 9, 0, 0, 0}}}},
        {"polygons: figures that overflow", {{8, {0, 0, 0, 0, 0x40000000, 0, 0, 0}}}},
        {"polygons: count of points", {{8, {0, 0, 0, 0, 1, 3, 3, 1, 2, 3, 4}}}},
        {"polygons: figure beyond the points", {{8, {0, 0, 0, 0, 1, 2, 3, 1, 2, 3, 4}}}},
        {"polygons: sum that overflows", {{8, {0, 0, 0, 0, 2, 2, 0xFFFFFFFF, 3, 1, 2, 3, 4}}}},
        {"polygons: points left over", {{8, {0, 0, 0, 0, 1, 2, 1, 1, 2, 3, 4}}}},
        {"mixed: no room for the types", {{56, {0, 0, 0, 0, 2, 1, 2, 3, 4}}}},
        {"mixed: unknown type", {{56, {0, 0, 0, 0, 1, 1, 2, 8}}}},
        {"mixed: half a curve", {{56, {0, 0, 0, 0, 2, 1, 2, 3, 4, 0x0404}}}},
        {"mixed: curve that changes", {{56, {0, 0, 0, 0, 3, 1, 2, 3, 4, 5, 6, 0x040204}}}},
        {"mixed: curve that closes early", {{56, {0, 0, 0, 0, 3, 1, 2, 3, 4, 5, 6, 0x040504}}}},
        {"handle 0", {{39, {0, 0, 0, 0}}}},
        {"handle beyond the table", {{39, {9, 0, 0, 0}}}},
        {"select what was never made", {{37, {1}}}},
        {"select what is gone", {{39, {1, 0, 0, 0}}, {40, {1}}, {37, {1}}}},
        {"delete what was never made", {{40, {1}}}},
        {"stock object 9", {{37, {0x80000009}}}},
        {"stock object 20", {{37, {0x80000014}}}},
        {"dashes beyond the pen", {{95, {1, 0, 0, 0, 0, 7, 1, 0, 0, 0, 1}}}},
        {"restore what was not saved", {{34, {Word(-1)}}}},
        {"restore more than was saved", {{33, {}}, {34, {Word(-2)}}}},
        {"restore 0", {{33, {}}, {34, {0}}}},
        {"restore to a level", {{33, {}}, {34, {1}}}},
        {"restore the lowest number", {{33, {}}, {34, {0x80000000}}}},
        {"257 states", deep},
        {"map mode 0", {{17, {0}}}},
        {"map mode 9", {{17, {9}}}},
        {"window without width", {{9, {0, 1}}}},
        {"viewport without height", {{11, {1, 0}}}},
        {"window scaled to nothing", {{32, {0, 1, 1, 1}}}},
        {"window scaled by a fraction of nothing", {{32, {1, 1, 1, 0}}}},
        {"world of infinity", {{35, World(inf, 0, 0, 1, 0, 0)}}},
        {"world of no number", {{35, World(1, 0, 0, 1, nan, 0)}}},
        {"world that flattens", {{35, World(1, 1, 1, 1, 0, 0)}}},
        {"world that flattens in front", {{36, World(0, 0, 0, 0, 0, 0, 2)}}},
        {"world beyond all measure", {{35, World(1e16F, 0, 0, 1, 0, 0)}}},
        {"world multiplied beyond all measure",
         {{35, World(1e15F, 0, 0, 1, 0, 0)}, {36, World(10, 0, 0, 1, 0, 0, 3)}}},
        {"world mode 5", {{36, World(1, 0, 0, 1, 0, 0, 5)}}},
        {"fill mode 0", {{19, {0}}}},
        {"arc direction 3", {{57, {3}}}},
        {"arc by no angle", {{41, {0, 0, 9, MetaReal(nan), 0}}}},
        {"arc by an infinite angle", {{41, {0, 0, 9, 0, MetaReal(inf)}}}},
        {"path within a path", {begin, begin, end}},
        {"end of no path", {end}},
        {"path without an end", {begin, LINE}},
        {"close without a path", {{61, {}}}},
        {"close behind a path", {begin, LINE, end, {61, {}}}},
        {"fill without a path", {{62, {}}}},
        {"stroke within a path", {begin, LINE, {64, {}}, end}},
        {"stroke a path twice", {begin, LINE, end, {64, {}}, {64, {}}}},
        {"widened path", {begin, LINE, end, {66, {}}}},
        {"clip to no path", {{67, {5}}}},
        {"clip to a path of a triangle", {begin, {3, {0, 0, 0, 0, 3, 0, 0, 9, 0, 9, 9}}, end, {67, {5}}}},
        {"clip to a path that stands askew",
         {begin, {3, {0, 0, 0, 0, 4, 0, 0, 9, 1, 9, 9, 0, 9}}, end, {67, {5}}}},
        {"clip to a path of an ellipse", {begin, {42, {0, 0, 9, 9}}, end, {67, {5}}}},
        {"clip to two rectangles", {begin, RECTANGLE, RECTANGLE, end, {67, {5}}}},
        {"clip outside a path", {begin, RECTANGLE, end, {67, {4}}}},
        {"clip to a turned rectangle", {{35, World(1, 1, -1, 1, 0, 0)}, {30, {0, 0, 9, 9}}}},
        {"clip that leaves a rectangle out", {{29, {0, 0, 9, 9}}}},
        {"clip that moves", {{26, {1, 1}}}},
        {"clip that becomes the outermost", {{28, {}}}},
        {"region of two rectangles", {{75, {64, 5, 32, 1, 2, 32, 0, 0, 9, 9, 0, 0, 1, 1, 2, 2, 3, 3}}}},
        {"region beyond its record", {{75, {52, 5, 32, 1, 1, 16, 0, 0, 9, 9, 0, 0, 9, 9}}}},
        {"region shorter than a rectangle", {{75, {44, 5, 32, 1, 1, 16, 0, 0, 9, 9, 0, 0, 9, 9}}}},
        {"region that is cut out", {{75, {48, 4, 32, 1, 1, 16, 0, 0, 9, 9, 0, 0, 9, 9}}}},
    };
    for (const auto &row : table)
        EXPECT_EQ(Played(row.records), "refused") << row.name;
}

TEST(EnhancedMetafile, UnsoundLengthsAreRefused)
{
    const std::string sound = EnhancedFile({RECTANGLE, LINE});
    for (uint32_t length : {0u, 4u, 7u, 25u, 26u, 28u, 1000u, 0x80000000u, 0xFFFFFFFCu, 0xFFFFFFFFu}) {
        std::string file = sound;
        MetaPut32(file, 88 + 4, length);
        EXPECT_EQ(Played(file), "refused") << length;
    }
}

TEST(EnhancedMetafile, StatesNestTo256)
{
    std::vector<EnhancedRecord> records(256, EnhancedRecord{33, {}});
    records.push_back(RECTANGLE);
    EXPECT_NE(Played(records), "refused");
}
