// Rectangles and lines on a plan, and the layer that carries them, while nothing is dragged: what they cover,
// how they are described and drawn, where they are hit and grasped, and what follows a drop.
#include "plancase.h"
#include "support/chance.h"
#include "support/child.h"
#include "win/boxes.h"
#include "win/frame.h"
#include "win/testdoor.h"

#include <algorithm>

namespace
{
using plain::POINT;

POINT At(const AgPOINT &p)
{
    return {p.x, p.y};
}

const struct {
    const char *name;
    AgPOINT TEdcDrawDesc::*point;
    double x, y; // of the extents
} places[] = {
    {"topLeft", &TEdcDrawDesc::topLeft, 0, 1},       {"topRight", &TEdcDrawDesc::topRight, 1, 1},
    {"bottomLeft", &TEdcDrawDesc::bottomLeft, 0, 0}, {"bottomRight", &TEdcDrawDesc::bottomRight, 1, 0},
    {"topMid", &TEdcDrawDesc::topMid, 0.5, 1},       {"bottomMid", &TEdcDrawDesc::bottomMid, 0.5, 0},
    {"leftMid", &TEdcDrawDesc::leftMid, 0, 0.5},     {"rightMid", &TEdcDrawDesc::rightMid, 1, 0.5},
    {"centre", &TEdcDrawDesc::centre, 0.5, 0.5}};

class Shapes : public PlanCase
{
protected:
    /// A new one that lies where the plain one lies.
    TEdcDrawSprite *Put(const plain::SHAPE &shape)
    {
        AgPOINT middle(shape.centre.real(), shape.centre.imag());
        if (!shape.line)
            return PutRect(middle, shape.width, shape.height, shape.angle);
        AgVECTOR half = EdcTurned(AgPOINT(shape.width / 2, 0), shape.angle);
        return PutLine(middle - half, middle + half);
    }
    static plain::SHAPE AnyShape(CHANCE &chance, bool line)
    {
        plain::SHAPE shape;
        shape.line = line;
        shape.centre = {chance.Real(-30, 60), chance.Real(-30, 60)};
        shape.width = chance.One(10) ? 0 : chance.Real(line ? 0 : -9, 9);
        shape.height = line || chance.One(10) ? 0 : chance.Real(-9, 9);
        shape.angle = chance.One(4) ? 0 : chance.Real(-3.14, 3.14);
        return shape;
    }
    void Compare(const TEdcDrawDesc &desc, const plain::SHAPE &shape, double refAngle)
    {
        plain::BOX box = plain::Around(shape, refAngle);
        EXPECT_LT(std::abs(At(desc.position) - box.At(0, 0)), 1e-9);
        EXPECT_LT(std::abs(At(desc.size) - (box.high - box.low)), 1e-9);
        EXPECT_EQ(desc.refAngle, refAngle);
        EXPECT_NEAR(std::remainder(desc.angle - shape.angle, 2 * AgPI), 0, 1e-9);
        for (const auto &place : places)
            EXPECT_LT(std::abs(At(desc.*place.point) - box.At(place.x, place.y)), 1e-9) << place.name;
    }
};

TEST_F(Shapes, ADescriptionIsCompletedByNinePointsInItsFrame)
{
    CHANCE chance(1);
    for (int round = 0; round < 3000; ++round) {
        TEdcDrawDesc desc;
        desc.position = AgPOINT(chance.Real(-50, 50), chance.Real(-50, 50));
        desc.size = AgVECTOR(chance.Real(0, 9), chance.Real(0, 9));
        desc.refAngle = chance.Real(-7, 7);
        Complete(desc);
        for (const auto &place : places) {
            POINT within(place.x * desc.size.x, place.y * desc.size.y);
            POINT expected = At(desc.position) + within * std::polar(1.0, desc.refAngle);
            ASSERT_LT(std::abs(At(desc.*place.point) - expected), 1e-12) << place.name;
        }
    }
}

TEST_F(Shapes, TheyHaveTheirCornersAndEndsAroundTheirCentre)
{
    CHANCE chance(2);
    for (int round = 0; round < 2000; ++round) {
        plain::SHAPE shape = AnyShape(chance, round % 2);
        TEdcDrawSprite *spr = Put(shape);
        spr->Recompute();
        std::vector<POINT> expected = shape.Corners();
        for (int i = 0; i < static_cast<int>(expected.size()); ++i) {
            const AgPOINT &corner =
                shape.line ? static_cast<SeenLine *>(spr)->End(i) : static_cast<SeenRect *>(spr)->Corner(i);
            ASSERT_LT(std::abs(At(corner) - expected[static_cast<size_t>(i)]), 1e-9) << round << " " << i;
        }
        delete spr;
    }
}

TEST_F(Shapes, TheyAreDescribedAtAnyReferenceAngle)
{
    CHANCE chance(3);
    for (int round = 0; round < 3000 && !HasFailure(); ++round) {
        SCOPED_TRACE(round);
        plain::SHAPE shape = AnyShape(chance, round % 2);
        TEdcDrawSprite *spr = Put(shape);
        if (shape.width == 0)
            shape.angle = shape.line ? 0 : shape.angle; // a point has no direction
        double refAngle = chance.One(5) ? shape.angle : chance.Real(-4, 4);
        TEdcDrawDesc desc;
        spr->Recompute();
        spr->Describe(desc, refAngle);
        Complete(desc);
        Compare(desc, shape, refAngle);
        spr->Layout(dc);
        Compare(spr->Desc(), shape, 0);
        delete spr;
    }
}

TEST_F(Shapes, SeenAlongItsOwnSidesARectangleHasItsOwnExtents)
{
    SeenRect *spr = PutRect(AgPOINT(7, 5), 4, -2, 0.6);
    TEdcDrawDesc desc;
    spr->Recompute();
    spr->Describe(desc, 0.6);
    EXPECT_NEAR(desc.size.x, 4, 1e-12);
    EXPECT_NEAR(desc.size.y, 2, 1e-12);
    Complete(desc);
    EXPECT_LT(std::abs(At(desc.topLeft) - At(spr->Corner(0))), 1e-12) << "the negative side turns it over";
}

TEST_F(Shapes, ShapesWithoutAnExtentStayVisible)
{
    const struct {
        double width, height;
        const char *points;
    } rects[] = {
        {4, 2, " 100,210 140,210 140,190 100,190 100,210"},
        {-4, 2, " 140,210 100,210 100,190 140,190 140,210"},
        {0, 0, " 120,200 120,200 120,200 120,200 121,200"},
        {0.04, 0.04, " 120,200 120,200 120,200 120,200 121,200"}, // all of it within a pixel
        {0, 2, " 120,210 120,210 120,190 120,190 120,210"},       // a stroke is seen as it is
        {4, 0, " 100,200 140,200 140,200 100,200 100,200"},
    };
    for (const auto &row : rects) {
        SeenRect *spr = PutRect(AgPOINT(10, 10), row.width, row.height);
        spr->Layout(dc);
        EXPECT_EQ(PointsText({spr->devCorners, spr->devCorners + 5}), row.points);
        TEdcDrawDrag still;
        still.mode = EDC_DRAWDRAGMOVE;
        spr->DragUpdate(still);
        EXPECT_EQ(PointsText({spr->dragCorners, spr->dragCorners + 5}), row.points) << "of the ghost";
        delete spr;
    }
    const struct {
        double x, y;
        const char *points;
    } lines[] = {{14, 8, " 120,200 160,220"}, {10, 10, " 120,200 121,200"}, {10.04, 10, " 120,200 121,200"}};
    for (const auto &row : lines) {
        SeenLine *spr = PutLine(AgPOINT(10, 10), AgPOINT(row.x, row.y));
        spr->Layout(dc);
        EXPECT_EQ(PointsText({spr->devEnds, spr->devEnds + 2}), row.points);
        TEdcDrawDrag still;
        still.mode = EDC_DRAWDRAGMOVE;
        spr->DragUpdate(still);
        EXPECT_EQ(PointsText({spr->dragEnds, spr->dragEnds + 2}), row.points) << "of the ghost";
        delete spr;
    }
}

TEST_F(Shapes, AGhostWithoutWidthIsSeenOnTheScreen)
{
    for (double height : {0.0, 2.0}) {
        SeenRect *spr = PutRect(AgPOINT(10, 10), 0, height);
        spr->Layout(dc);
        TEdcDrawDrag still;
        still.mode = EDC_DRAWDRAGMOVE;
        spr->DragUpdate(still);
        TMemoryDC screen({200, 300}, 96);
        spr->DragPaint(screen);
        EXPECT_EQ(screen.Pixel({120, 200}), WIN_BLACK) << height;
        spr->DragPaint(screen);
        EXPECT_EQ(screen.Pixel({120, 200}), WIN_WHITE) << height;
        delete spr;
    }
}

/// A device that is finer in one direction than in the other.
class UnevenDC : public TRecordDC
{
public:
    UnevenDC() : TRecordDC(96) {}
    int DpiY() const override { return 300; }
};

TEST_F(Shapes, HandlesAndTheReachOfAClickAreAsLargeAsTheDeviceMakesThem)
{
    const struct {
        int dpi;
        int extent, reach; // px: 5 and 2 points
    } rows[] = {{96, 7, 3}, {120, 8, 3}, {144, 10, 4}, {192, 13, 5}, {600, 42, 17}};
    for (const auto &row : rows) {
        TRecordDC device(row.dpi);
        Rects().Layout(device);
        EXPECT_EQ(Rects().HandleWidth(), row.extent) << row.dpi;
        EXPECT_EQ(Rects().HandleHeight(), row.extent) << row.dpi;
        EXPECT_DOUBLE_EQ(Rects().PickTolerance(), row.reach / 10.0) << row.dpi;
    }
    UnevenDC uneven;
    Rects().Layout(uneven);
    EXPECT_EQ(Rects().HandleWidth(), 7);
    EXPECT_EQ(Rects().HandleHeight(), 21);
    EXPECT_DOUBLE_EQ(Rects().PickTolerance(), 0.3);
}

TEST_F(Shapes, TheSelectorFindsAHandleAtEachCornerAndAtEachEnd)
{
    SeenRect *rect = PutRect(AgPOINT(10, 10), 4, 2);
    SeenLine *line = PutLine(AgPOINT(3, 4), AgPOINT(5, 8));
    LayOut();
    rect->SetTool(EDC_TlSELECT);
    line->SetTool(EDC_TlSELECT);
    const TPoint corners[] = {{100, 210}, {140, 210}, {140, 190}, {100, 190}};
    const TPoint ends[] = {{50, 260}, {70, 220}};
    ASSERT_EQ(rect->handles.Count(), 4);
    ASSERT_EQ(line->handles.Count(), 2);
    for (int i = 0; i < 4; ++i) {
        const TEdcDrawHandle &handle = rect->handles[i];
        EXPECT_EQ(handle.flags, TEdcDrawHandle::SNAPS | TEdcDrawHandle::DRAWN);
        EXPECT_EQ((TPoint{handle.x, handle.y}), corners[i]);
        EXPECT_EQ(handle.width, 7);
        EXPECT_EQ(handle.height, 7);
        EXPECT_EQ(handle.point, rect->Corner(i));
        EXPECT_EQ(handle.index, i);
    }
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ((TPoint{line->handles[i].x, line->handles[i].y}), ends[i]);
        EXPECT_EQ(line->handles[i].point, line->End(i));
        EXPECT_EQ(line->handles[i].index, i);
    }
}

TEST_F(Shapes, NoOtherToolFindsAHandle)
{
    SeenRect *rect = PutRect(AgPOINT(10, 10), 4, 2);
    SeenLine *line = PutLine(AgPOINT(3, 4), AgPOINT(5, 8));
    LayOut();
    for (int id : {0, int{EDC_TlALIGN}, int{EDC_TlSTOCK}, int{EDC_TlRECT}, int{PLAN_LINETOOL}}) {
        for (TEdcDrawSprite *spr : {static_cast<TEdcDrawSprite *>(rect), static_cast<TEdcDrawSprite *>(line)})
            spr->SetTool(EDC_TlSELECT), spr->SetTool(id);
        EXPECT_EQ(rect->handles.Count(), 0) << id;
        EXPECT_EQ(line->handles.Count(), 0) << id;
        EXPECT_EQ(rect->toolId, id);
        EXPECT_EQ(rect->HandleAt({100, 210}), static_cast<TEdcDrawHandle *>(NULL)) << id;
    }
}

TEST_F(Shapes, AHandleReachesHalfItsExtentToTheLeftAndTopAndLessByOneToTheRightAndBottom)
{
    const struct {
        int dpi;
        int x, y; // px from the corner
        bool there;
    } rows[] = {
        {96, 0, 0, true},   {96, -3, 0, true},   {96, -4, 0, false},   {96, 2, 0, true},    {96, 3, 0, false},
        {96, 0, -3, true},  {96, 0, -4, false},  {96, 0, 2, true},     {96, 0, 3, false},   {96, -3, -3, true},
        {96, 3, 3, false},  {144, -5, 0, true},  {144, -6, 0, false},  {144, 4, 4, true},   {144, 5, 4, false},
        {144, 4, 5, false}, {600, -21, 0, true}, {600, -22, 0, false}, {600, 20, 20, true}, {600, 21, 0, false},
    };
    for (const auto &row : rows) {
        TRecordDC device(row.dpi);
        SeenRect *spr = PutRect(AgPOINT(20, 10), 20, 12);
        Rects().Layout(device);
        spr->SetTool(EDC_TlSELECT);
        const TEdcDrawHandle *found = spr->HandleAt(spr->devCorners[2] + TPoint{row.x, row.y});
        EXPECT_EQ(found != NULL, row.there) << row.dpi << " " << row.x << "," << row.y;
        if (found) {
            EXPECT_EQ(found->index, 2);
        }
        delete spr;
    }
}

TEST_F(Shapes, WhereHandlesLieOverEachOtherTheFirstIsGrasped)
{
    SeenRect *spr = PutRect(AgPOINT(10, 10), 0, 0);
    LayOut();
    spr->SetTool(EDC_TlSELECT);
    ASSERT_TRUE(spr->HandleAt({120, 200}) != NULL);
    EXPECT_EQ(spr->HandleAt({120, 200})->index, 0);
}

TEST_F(Shapes, AHandleIsHitOnTheFocusAlone)
{
    SeenRect *spr = PutRect(AgPOINT(10, 10), 4, 2);
    LayOut();
    const TPoint onHandle = {97, 212}; // beyond what the rectangle itself is hit by
    EXPECT_FALSE(spr->HitTest(onHandle));
    Rects().Select(spr, true, NULL);
    EXPECT_FALSE(spr->HitTest(onHandle));
    Rects().SetFocus(spr, NULL);
    EXPECT_TRUE(spr->HitTest(onHandle));
    EXPECT_FALSE(spr->HitTest({96, 212}));
    spr->SetTool(EDC_TlALIGN);
    EXPECT_FALSE(spr->HitTest(onHandle));
}

/// Each pixel around a shape is hit where the plain geometry says so.
TEST_F(Shapes, APixelHitsWhatLiesWithinTheReachOfAClick)
{
    const struct {
        const char *name;
        double width, height, angle;
        bool line, frameOnly;
    } rows[] = {
        {"upright", 4.03, 2.07, 0, false, false},
        {"turned", 4.03, 2.07, 0.4, false, false},
        {"turned over", 4.03, -2.07, 2.5, false, false},
        {"both sides negative", -3.01, -5.02, -1, false, false},
        {"a frame", 4.03, 2.07, 0, false, true},
        {"a turned frame", 5.02, -3.01, 1.1, false, true},
        {"a frame so thin that it has no inside", 0.41, 4.1, 0.3, false, true},
        {"no width", 0, 4.03, 0.7, false, false},
        {"a frame without a width", 0, 4.03, 0.7, false, true},
        {"no size", 0, 0, 0, false, false},
        {"a frame without a size", 0, 0, 1, false, true},
        {"a line", 5.05, 0, 0, true, false},
        {"a steep line", 5.05, 0, 2, true, false},
        {"a point", 0, 0, 0, true, false},
    };
    for (const auto &row : rows) {
        plain::SHAPE shape = {row.line, {5.017, 5.029}, row.width, row.height, row.angle, row.frameOnly};
        TEdcDrawSprite *spr = Put(shape);
        if (row.frameOnly)
            static_cast<SeenRect *>(spr)->SetKind(TEdcDrawRect::FRAMEONLY);
        LayOut();
        int hits = 0, doubtful = 0;
        for (TPoint at = {0, 180}; at.y < 320; ++at.y)
            for (at.x = 0; at.x < 140; ++at.x) {
                plain::MEETS expected = plain::Meets(shape, axes, 3, at);
                hits += expected == plain::HITS;
                doubtful += expected == plain::DOUBTFUL;
                if (expected != plain::DOUBTFUL) {
                    ASSERT_EQ(spr->HitTest(at), expected == plain::HITS)
                        << row.name << " " << at.x << "," << at.y;
                }
            }
        EXPECT_GT(hits, 20) << row.name;
        EXPECT_LT(doubtful, 10) << row.name;
        delete spr;
    }
}

TEST_F(Shapes, TheInsideOfAFrameIsTransparentToTheMouse)
{
    SeenRect *under = PutRect(AgPOINT(10, 10), 2, 1);
    SeenRect *frame = PutRect(AgPOINT(10, 10), 8, 6);
    frame->SetKind(TEdcDrawRect::FRAMEONLY);
    LayOut();
    Tool().LeftDown(dc, 0, {120, 200});
    Tool().LeftUp(dc, 0, {120, 200});
    EXPECT_EQ(Rects().Focus(), under);
    Tool().LeftDown(dc, 0, {80, 200}); // on its left side
    Tool().LeftUp(dc, 0, {80, 200});
    EXPECT_EQ(Rects().Focus(), frame);
    frame->SetKind(TEdcDrawRect::SOLID);
    Rects().SelectAll(false, NULL);
    Tool().LeftDown(dc, 0, {120, 200});
    Tool().LeftUp(dc, 0, {120, 200});
    EXPECT_EQ(Rects().Focus(), frame);
}

TEST_F(Shapes, ARectangleWithoutASizeIsSeenAndPicked)
{
    SeenRect *spr = PutRect(AgPOINT(10, 10), 0, 0);
    LayOut();
    TMemoryDC screen({200, 300}, 96);
    spr->Paint(screen);
    EXPECT_EQ(screen.Pixel({120, 200}), (TColor{0, 0, 255}));
    const struct {
        TPoint at;
        bool picked;
    } rows[] = {{{120, 200}, true}, {{122, 201}, true}, {{124, 200}, false}, {{120, 196}, false}};
    for (const auto &row : rows) {
        Rects().SelectAll(false, NULL);
        Tool().LeftDown(dc, 0, row.at);
        Tool().LeftUp(dc, 0, row.at);
        EXPECT_EQ(Rects().Focus() == spr, row.picked) << row.at.x << "," << row.at.y;
    }
}

TEST_F(Shapes, ABandHoldsWhatHasItsLowerLeftAndUpperRightCornersInIt)
{
    const struct {
        TRect band;
        bool holds;
    } rows[] = {{{100, 190, 141, 211}, true},  {{101, 190, 141, 211}, false}, {{100, 191, 141, 211}, false},
                {{100, 190, 140, 211}, false}, {{100, 190, 141, 210}, false}, {{0, 0, 500, 500}, true},
                {{110, 195, 130, 205}, false}, {{0, 0, 0, 0}, false}};
    for (double width : {4.0, -4.0}) {
        SeenRect *spr = PutRect(AgPOINT(10, 10), width, 2);
        LayOut();
        for (const auto &row : rows)
            EXPECT_EQ(spr->InRect(row.band), row.holds)
                << row.band.left << " " << row.band.top << " " << row.band.right << " " << row.band.bottom;
        delete spr;
    }
    SeenLine *falling = PutLine(AgPOINT(8, 11), AgPOINT(12, 9)); // between the other two corners
    LayOut();
    for (const auto &row : rows)
        EXPECT_EQ(falling->InRect(row.band), row.holds);
}

TEST_F(Shapes, ColoursTellTheStateOfAThing)
{
    const char *const black = "000000", *const blue = "0000ff", *const green = "00ff00",
                      *const white = "ffffff";
    const struct {
        uint16_t state;
        const char *line, *fill;
    } rows[] = {
        {0, black, white},
        {EDC_SsSELECTED, black, white}, // in a layer that is not the active one
        {EDC_SsSELECTED | EDC_SsFOCUS, black, white},
        {EDC_SsACTIVE, blue, white},
        {EDC_SsACTIVE | EDC_SsSELECTED, green, black},
        {EDC_SsACTIVE | EDC_SsSELECTED | EDC_SsFOCUS, green, black},
    };
    SeenRect *rect = PutRect(AgPOINT(10, 10), 4, 2);
    SeenLine *line = PutLine(AgPOINT(3, 4), AgPOINT(5, 8));
    LayOut();
    const std::string outline = "Polygon 100,210 140,210 140,190 100,190 100,210 pen ";
    for (const auto &row : rows) {
        uint16_t saved = rect->state;
        rect->state = line->state = row.state;
        dc.SetMix(WIN_MIX_XOR); // whatever was drawn before
        rect->SetKind(TEdcDrawRect::SOLID);
        rect->Paint(dc);
        EXPECT_EQ(TakeCalls(), outline + row.line + " brush " + row.fill + "\n") << row.state;
        rect->SetKind(TEdcDrawRect::FRAMEONLY);
        rect->Paint(dc);
        EXPECT_EQ(TakeCalls(), outline + row.line + " brush none\n") << row.state;
        line->Paint(dc);
        EXPECT_EQ(TakeCalls(), std::string("Line 50,260 70,220 pen ") + row.line + "\n") << row.state;
        line->PaintPlain(dc);
        EXPECT_EQ(TakeCalls(), "Line 50,260 70,220 pen 000000\n") << row.state;
        EXPECT_EQ(line->state, row.state);
        rect->state = line->state = saved;
    }
}

TEST_F(Shapes, HandlesAreInvertedWhereTheyAreDrawn)
{
    SeenRect *spr = PutRect(AgPOINT(10, 10), 4, 2);
    LayOut();
    spr->SetTool(EDC_TlSELECT);
    spr->Decorate(dc);
    EXPECT_EQ(TakeCalls(), "Invert 97,207,103,213\nInvert 137,207,143,213\nInvert 137,187,143,193\n"
                           "Invert 97,187,103,193\n");
    spr->handles[1].flags = TEdcDrawHandle::SNAPS;
    spr->handles[3].flags = 0;
    spr->Decorate(dc);
    EXPECT_EQ(TakeCalls(), "Invert 97,207,103,213\nInvert 137,187,143,193\n");
    spr->SetTool(0);
    spr->Decorate(dc);
    EXPECT_EQ(TakeCalls(), "");
}

TEST_F(Shapes, ADropIsLaidOutAtOnceAndGrowsTheAxesWhereItLiesBeyondThem)
{
    const struct {
        const char *name;
        AgPOINT middle; // 4 x 2 m on a plan of 60 x 24 m
        int level;
    } rows[] = {
        {"within", {10, 10}, EDC_PAINT},
        {"on the left edge", {2, 10}, EDC_PAINT},
        {"on the right edge", {58, 10}, EDC_PAINT},
        {"on the lower edge", {10, 1}, EDC_PAINT},
        {"on the upper edge", {10, 23}, EDC_PAINT},
        {"beyond the left edge", {1.9, 10}, EDC_LAYOUT},
        {"beyond the right edge", {58.1, 10}, EDC_LAYOUT},
        {"beyond the lower edge", {10, 0.9}, EDC_LAYOUT},
        {"beyond the upper edge", {10, 23.1}, EDC_LAYOUT},
    };
    for (const auto &row : rows) {
        SeenRect *spr = PutRect(AgPOINT(30, 12), 4, 2);
        LayOut();
        TEdcDrawDrag drag;
        drag.mode = EDC_DRAWDRAGMOVE;
        drag.shift = row.middle - AgPOINT(30, 12);
        EXPECT_EQ(spr->Apply(drag), spr);
        EXPECT_EQ(doc.obsolete, 0);
        spr->Commit(dc);
        EXPECT_EQ(doc.obsolete, row.level) << row.name;
        EXPECT_EQ(spr->Desc().centre, row.middle) << row.name;
        EXPECT_EQ(spr->devCorners[0], Plan().At(row.middle.x - 2, row.middle.y - 1)) << row.name;
        ASSERT_EQ(spr->handles.Count(), 4) << row.name;
        EXPECT_EQ(spr->handles[2].point, row.middle + AgPOINT(2, 1)) << row.name;
        delete spr;
    }
}

TEST_F(Shapes, ADropWaitsForALayoutThatIsComingAnyway)
{
    SeenRect *spr = PutRect(AgPOINT(30, 12), 4, 2);
    LayOut();
    TEdcDrawDrag drag;
    drag.mode = EDC_DRAWDRAGMOVE;
    drag.shift = AgPOINT(-50, 0);
    spr->Apply(drag);
    for (int level : {int{EDC_LAYOUT}, int{EDC_UPDATE}, int{EDC_RECALC}}) {
        doc.obsolete = level;
        spr->Commit(dc);
        EXPECT_EQ(doc.obsolete, level);
        EXPECT_EQ(spr->Desc().centre, AgPOINT(30, 12));
    }
    doc.obsolete = EDC_PAINT;
    spr->Commit(dc);
    EXPECT_EQ(doc.obsolete, EDC_LAYOUT);
    EXPECT_EQ(spr->Desc().centre, AgPOINT(-20, 12));
}

TEST_F(Shapes, ADropOnALayerThatIsNotActiveMakesNoHandles)
{
    SeenLine *spr = PutLine(AgPOINT(3, 4), AgPOINT(5, 8));
    LayOut();
    spr->Commit(dc);
    EXPECT_EQ(doc.obsolete, EDC_PAINT);
    EXPECT_EQ(spr->handles.Count(), 0);
}

TEST_F(Shapes, TwoPointsMakeARectangleOrALine)
{
    const struct {
        AgPOINT from, to;
        const char *rect, *line;
    } rows[] = {
        {{1, 2}, {5, 4}, "3,3 4x2 0", "3,3 4.47214x0 26.5651"},
        {{5, 4}, {1, 2}, "3,3 -4x-2 0", "3,3 4.47214x0 -153.435"},
        {{1, 4}, {5, 2}, "3,3 4x-2 0", "3,3 4.47214x0 -26.5651"},
        {{3, 1}, {3, 5}, "3,3 0x4 0", "3,3 4x0 90"},
        {{5, 3}, {1, 3}, "3,3 -4x0 0", "3,3 4x0 180"},
        {{5, 0.0}, {1, -0.0}, "3,0 -4x0 0", "3,0 4x0 180"}, // not -180
        {{3, 3}, {3, 3}, "3,3 0x0 0", "3,3 0x0 0"},
        {{0.0, 0.0}, {-0.0, -0.0}, "0,0 0x0 0", "0,0 0x0 0"},
    };
    for (const auto &row : rows) {
        TEdcDrawCreation creation;
        creation.points.Insert(row.from);
        creation.points.Insert(row.to);
        for (uint16_t flags : {1, 2, 3}) {
            creation.flags = flags;
            SeenRect rect(creation);
            EXPECT_EQ(Place(&rect), row.rect);
            EXPECT_EQ(rect.kind, flags);
        }
        SeenLine line(creation);
        EXPECT_EQ(Place(&line), row.line);
        SeenLine direct(row.from, row.to);
        EXPECT_EQ(Place(&direct), row.line);
    }
    EXPECT_EQ(SeenRect(AgPOINT(1, 1), 2, 3).kind, TEdcDrawRect::SOLID);
}

TEST_F(Shapes, ACopyHasTheShapeAndTheTypeAndNothingElse)
{
    SeenRect *rect = PutRect(AgPOINT(10, 10), 4, 2, 0.5);
    rect->SetKind(TEdcDrawRect::FRAMEONLY);
    LayOut();
    Rects().Select(rect, true, NULL);
    Rects().SetFocus(rect, NULL);
    ASSERT_EQ(rect->handles.Count(), 4);
    SeenRect copy(*rect);
    EXPECT_EQ(Place(&copy), Place(rect));
    EXPECT_EQ(copy.kind, TEdcDrawRect::FRAMEONLY);
    EXPECT_EQ(copy.Type(), PLAN_RECT);
    EXPECT_EQ(copy.layer, static_cast<TEdcSpriteLayer *>(NULL));
    EXPECT_EQ(copy.state, 0);
    EXPECT_EQ(copy.handles.Count(), 0);
    EXPECT_EQ(copy.toolId, 0);
    EXPECT_EQ(copy.Desc().size, AgVECTOR());
    EXPECT_EQ(copy.Desc().centre, AgPOINT());
    SeenLine *line = PutLine(AgPOINT(3, 4), AgPOINT(5, 8));
    SeenLine twin(*line);
    EXPECT_EQ(Place(&twin), Place(line));
    EXPECT_EQ(twin.Type(), PLAN_LINE);
    EXPECT_EQ(twin.layer, static_cast<TEdcSpriteLayer *>(NULL));
}

/// What each draw sprite does by itself.
class Bare : public TEdcDrawSprite
{
public:
    explicit Bare(int aType) : TEdcDrawSprite(aType) {}
    using TEdcDrawSprite::dragOk;
    using TEdcDrawSprite::handles;
    using TEdcDrawSprite::MakeHandles;
};

TEST_F(Shapes, ASpriteWithoutAShapeDoesNothingInADrag)
{
    auto *spr = new Bare(3);
    Rects().Add(spr);
    Rects().Select(spr, true, NULL);
    Rects().SetFocus(spr, NULL);
    LayOut();
    EXPECT_EQ(spr->Type(), 3);
    EXPECT_EQ(spr->handles.Count(), 0);
    EXPECT_EQ(spr->Desc().centre, AgPOINT());
    EXPECT_FALSE(spr->HitTest({20, 300}));
    spr->DragBegin(dc, 1, {20, 300}, {5, 5});
    EXPECT_TRUE(TEdcDrawSprite::IsDragging());
    spr->DragMove(dc, 1, {20, 300}, {6, 6});
    spr->DragEnd(dc, 1, {20, 300}, {6, 6});
    EXPECT_FALSE(TEdcDrawSprite::IsDragging());
    EXPECT_EQ(dc.calls, "");
    TEdcDrawDrag drag;
    EXPECT_EQ(spr->Apply(drag), spr);
}

/// A layer whose axes are taken away, and a sprite that nobody takes.
class Torn : public TPlanLayer
{
public:
    using TPlanLayer::TPlanLayer;
    void Tear() { axes = NULL; }
};
class Lost : public SeenRect
{
public:
    using SeenRect::SeenRect;
    TEdcDrawSprite *Apply(TEdcDrawDrag &) override { return NULL; }
};

TEST_F(Shapes, FaultsOfTheProgramEndIt)
{
    EXPECT_TRUE(AbortsOnAssertion("aType != 0", "usr/edcdraw.cpp", [] { TEdcDrawRect none(0); }));
    EXPECT_TRUE(AbortsOnAssertion("aAxes != NULL", "usr/edcdraw.cpp", [] { TEdcDrawLayer none(7, 0, NULL); }));
    SeenRect alone(AgPOINT(1, 1), 2, 2);
    EXPECT_TRUE(AbortsOnAssertion("ly != NULL", "usr/edcdraw.cpp", [&] { alone.DrawLayer(); }));
    EXPECT_TRUE(AbortsOnAssertion("ly != NULL && ly->axes != NULL", "usr/edcdraw.cpp", [&] { alone.Axes(); }));
    EXPECT_TRUE(
        AbortsOnAssertion("ly != NULL && ly->axes != NULL", "usr/edcdraw.cpp", [&] { alone.InRect({}); }));
    EXPECT_TRUE(AbortsOnAssertion("n > 0", "usr/edcdraw.cpp", [&] { alone.MakeHandles(NULL, NULL, 0); }));
    EXPECT_TRUE(AbortsOnAssertion("axes != NULL", "usr/edcdraw.cpp", [&] {
        Torn torn(7, 0, &Plan().axes);
        torn.Tear();
        torn.Layout(dc);
    }));
    EXPECT_TRUE(AbortsOnAssertion("ly != NULL && ly->axes != NULL", "usr/edcdraw.cpp", [&] {
        Torn torn(7, 0, &Plan().axes);
        auto *spr = new SeenRect(AgPOINT(1, 1), 2, 2);
        torn.Add(spr);
        torn.Tear();
        spr->Axes();
    }));
    EXPECT_TRUE(AbortsOnAssertion("draw != NULL", "usr/edcdraw_drag.cpp", [&] {
        auto *spr = new Lost(AgPOINT(10, 10), 4, 2);
        Rects().Add(spr);
        LayOut();
        Tool().LeftDown(dc, 0, {120, 200});
        Tool().MouseMove(dc, 0, {125, 200});
        Tool().LeftUp(dc, 0, {125, 200});
    }));
    const char *const copied = "~drag.mode & EDC_DRAWDRAGCOPY";
    TEdcDrawHandle handle;
    TEdcDrawDrag drag;
    drag.mode = EDC_DRAWDRAGMOVE | EDC_DRAWDRAGHANDLE | EDC_DRAWDRAGCOPY;
    drag.handle = &handle;
    EXPECT_TRUE(
        AbortsOnAssertion(copied, "usr/edcdraw_shape.cpp", [&] { PutRect(AgPOINT(1, 1), 2, 2)->Apply(drag); }));
    EXPECT_TRUE(AbortsOnAssertion(copied, "usr/edcdraw_shape.cpp",
                                  [&] { PutLine(AgPOINT(1, 1), AgPOINT(2, 2))->Apply(drag); }));
}

TEST_F(Shapes, ADoubleClickAndTheCommandOpenTheParameters)
{
    SeenRect *spr = PutRect(AgPOINT(10, 10), 4, 2);
    TPlanLayer &ly = Rects();
    const struct {
        bool active, selected, noOpen;
        bool enabled;
    } rows[] = {{true, true, false, true},
                {true, false, false, false},
                {true, true, true, false},
                {false, true, false, false},
                {true, false, true, false}};
    for (const auto &row : rows) {
        ly.SetActive(row.active);
        ly.Select(spr, row.selected, NULL);
        ly.SetOptions(static_cast<uint16_t>(EDC_LoACTIVABLE | (row.noOpen ? EDC_LoNOOPEN : 0)));
        TCommandEnabler ce(EDC_CmOPEN);
        ly.CommandEnable(ce);
        EXPECT_TRUE(ce.IsAnswered());
        EXPECT_EQ(ce.IsEnabled(), row.enabled);
        ly.opened = 0;
        ly.OpenAt(0, {1, 2});
        EXPECT_EQ(ly.opened, row.noOpen ? 0 : 1);
        if (row.enabled || !row.active) {
            ly.opened = 0;
            EXPECT_TRUE(ly.Command(EDC_CmOPEN));
            EXPECT_EQ(ly.opened, row.active ? 1 : 0);
        }
    }
}

TEST_F(Shapes, PlacingAndAligningNeedAFocus)
{
    SeenRect *spr = PutRect(AgPOINT(10, 10), 4, 2);
    TPlanLayer &ly = Rects();
    for (int id : {int{EDC_CmLOCATE}, int{EDC_CmALIGN}})
        for (bool active : {true, false})
            for (bool focused : {true, false}) {
                ly.SetActive(true);
                ly.Select(spr, true, NULL);
                ly.SetFocus(focused ? spr : NULL, NULL);
                ly.SetActive(active);
                TCommandEnabler ce(id);
                ly.CommandEnable(ce);
                EXPECT_TRUE(ce.IsAnswered());
                EXPECT_EQ(ce.IsEnabled(), active && focused) << id;
                if (!active || !focused) {
                    EXPECT_TRUE(ly.Command(id)) << "answered, and nothing done";
                }
            }
    ly.SetActive(true);
    TCommandEnabler other(4711);
    ly.CommandEnable(other);
    EXPECT_FALSE(other.IsAnswered());
    EXPECT_FALSE(ly.Command(4711));
    EXPECT_TRUE(ly.Command(EDC_CmSELECTALL)) << "what each layer knows";
    EXPECT_EQ(Place(spr), "10,10 4x2 0");
    EXPECT_EQ(testdoor::UnexpectedBoxes(), 0);
}

TEST_F(Shapes, NewObjectsNeedParameters)
{
    TEdcDrawCreation creation;
    std::string text, kind;
    testdoor::Script([&](testdoor::ModalBox &box) {
        kind = box.Kind();
        text = box.Text();
        box.Answer(WIN_ID_OK);
    });
    EXPECT_FALSE(Rects().CanCreate(creation));
    EXPECT_EQ(kind, "message");
    EXPECT_EQ(text,
              "Objekt kann nicht hergestellt werden.\n\nZuerst sind die Objektparameter\nzu spezifizieren.");
    creation.stock = &Rects().stock;
    EXPECT_TRUE(Rects().CanCreate(creation));
    EXPECT_EQ(testdoor::PendingScripts(), 0);
    EXPECT_EQ(testdoor::UnexpectedBoxes(), 0);
    TEdcDrawLayer plainLayer(7, 0, &Plan().axes);
    EXPECT_EQ(plainLayer.CreateSprite(creation), static_cast<TEdcDrawSprite *>(NULL));
    EXPECT_EQ(plainLayer.QueryCreation(EDC_TlRECT, true), static_cast<void *>(NULL));
    plainLayer.Open();
    plainLayer.ShowMenu();
}
} // namespace
