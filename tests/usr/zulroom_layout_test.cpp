// Where the parts of the plans stand on the page, and in which order they are drawn on the screen and on paper.
#include "zulplancase.h"

#include "support/child.h"
#include "support/folder.h"
#include "support/sampleroom.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <new>

namespace
{
/// What a block offers to a plan on A4 between margins of 1 cm, below a margin of 34 pt.
TSize PageSize(int dpi, double scale = 1)
{
    return {EdcInchToPixel(19.0 / 2.54, scale, dpi), EdcInchToPixel(27.7 / 2.54 - 34 / 72.0, scale, dpi)};
}

/// The floor plan of a hall as it is drawn on a device. Runs have fixed ends, so that each gives a map.
struct PLAN : MAPDOC {
    TZulMapInfo info;
    TZulRoomBlock blk;
    TPlaceDC dc;
    TSize size;

    explicit PLAN(EmROOM &room, int dpi = 96) : blk(&room, &info, &palette, "Plan"), dc(dpi)
    {
        TZulRoomBlock::askParams = [](TZulUpdateData &params) {
            params.minInte.Set(0);
            params.maxInte.Set(100);
            return true;
        };
    }
    ~PLAN() { TZulRoomBlock::askParams = NULL; }

    void LayOut(double scale = 1) { size = LayoutBlock(blk, dc, PageSize(dc.DpiX(), scale), scale); }
    void Paint()
    {
        Forget();
        blk.Paint(dc, {0, 0, size.cx, size.cy});
    }
    void Print()
    {
        Forget();
        blk.Print(dc, {0, 0, size.cx, size.cy});
    }
    TRect Frame() const { return ::Frame(dc); }

private:
    void Forget()
    {
        dc.calls.clear();
        dc.cells.clear();
        dc.rects.clear();
        dc.pictures.clear();
        dc.strokes.clear();
    }
};

/// The parts of a plan in the order in which they are drawn, each named once in a row.
std::string Order(const TPlaceDC &dc)
{
    std::string order;
    size_t rects = 0;
    for (const std::string &line : Lines(dc.calls)) {
        std::string word;
        if (line.rfind("Bitmap", 0) == 0)
            word = "map ";
        else if (line.rfind("Shape", 0) == 0)
            word = "logo ";
        else if (line.rfind("Fill", 0) == 0)
            word = "letters ";
        else if (line.rfind("Rect", 0) == 0)
            word = ++rects > Swatches(dc) ? "frame " : "table ";
        else if (line.rfind("Line", 0) == 0)
            word = "axes ";
        else if (line.find("underline") != std::string::npos)
            word = "title ";
        if (!word.empty() && (order.size() < word.size() || order.substr(order.size() - word.size()) != word))
            order += word;
    }
    return order;
}

/// The axes' lines: the longest one of each direction. Where they meet is the model's origin.
struct AXES {
    int left = 0, right = 0, top = 0, bottom = 0; // px
    TPoint origin;

    explicit AXES(const TPlaceDC &dc)
    {
        for (const std::string &line : Lines(dc.calls)) {
            TPoint a, b;
            if (sscanf(line.c_str(), "Line %d,%d %d,%d", &a.x, &a.y, &b.x, &b.y) != 4)
                continue;
            if (a.y == b.y && b.x - a.x > right - left) {
                left = a.x;
                right = b.x;
                origin.y = a.y;
            }
            if (a.x == b.x && std::abs(b.y - a.y) > bottom - top) {
                top = std::min(a.y, b.y);
                bottom = std::max(a.y, b.y);
                origin.x = a.x;
            }
        }
    }
};

/// The solid rectangle of the walls' letters.
TRect KeyBody(const TPlaceDC &dc)
{
    TRect body;
    for (const std::string &line : Lines(dc.calls))
        if (sscanf(line.c_str(), "Fill %d,%d,%d,%d", &body.left, &body.top, &body.right, &body.bottom) == 4)
            return body;
    return body;
}

/// All of the key plan, letters and rectangle.
TRect KeyPlan(const TPlaceDC &dc)
{
    TRect all = KeyBody(dc);
    for (const TPlaceDC::Cell &cell : dc.cells)
        if (cell.text == "A" || cell.text == "B" || cell.text == "C" || cell.text == "D")
            all = all | cell.rect;
    return all;
}

TRect Around(const std::vector<TRect> &rects)
{
    TRect all;
    for (const TRect &r : rects)
        all = all | r;
    return all;
}

/// Texts, swatches, logo and key plan lie within the block and meet nothing; nothing but the map lies under the
/// frame.
void ExpectTidy(const TPlaceDC &dc, TSize size)
{
    TRect block = {0, 0, size.cx, size.cy};
    std::vector<TRect> apart = {Around(dc.strokes)};
    for (const TPlaceDC::Cell &cell : dc.cells)
        apart.push_back(cell.rect);
    apart.insert(apart.end(), dc.rects.begin(), dc.rects.begin() + static_cast<long>(Swatches(dc)));
    if (!KeyBody(dc).IsEmpty())
        apart.push_back(KeyBody(dc));
    for (size_t i = 0; i < apart.size(); ++i) {
        EXPECT_TRUE(IsWithin(apart[i], block)) << ShowRect(apart[i]) << " in " << ShowRect(block);
        EXPECT_TRUE((apart[i] & Frame(dc)).IsEmpty()) << ShowRect(apart[i]) << " within the frame";
        for (size_t j = 0; j < i; ++j)
            EXPECT_TRUE((apart[i] & apart[j]).IsEmpty()) << ShowRect(apart[i]) << " and " << ShowRect(apart[j]);
    }
    EXPECT_TRUE(IsWithin(Frame(dc), block));
}
} // namespace

TEST(PlanLayout, HasItsPartsApartOnEveryPageAndNoTallerThanIsOffered)
{
    const double halls[][2] = {{12, 8}, {60, 30}, {120, 12}, {10, 60}, {30, 30}, {1, 1}, {400, 3}};
    for (const auto &side : halls) {
        FIELDHALL hall(side[0], side[1], 6);
        PLAN plan(hall.room);
        for (bool run : {false, true}) {
            if (run)
                plan.blk.Update(false);
            for (double scale : {0.6, 1.0, 1.37, 2.0}) {
                SCOPED_TRACE(testing::Message() << side[0] << " x " << side[1] << " at " << scale << run);
                plan.LayOut(scale);
                plan.Paint();
                TSize page = PageSize(96, scale);
                EXPECT_EQ(plan.size.cx, page.cx);
                EXPECT_LE(plan.size.cy, page.cy);
                ExpectTidy(plan.dc, plan.size);
            }
        }
    }
}

TEST(PlanLayout, LooksAlikeOnPaperAndOnTheScreen)
{
    FIELDHALL hall(60, 30, 6);
    PLAN plan(hall.room);
    plan.blk.Update(false);
    plan.LayOut();
    plan.Paint();
    TPlaceDC paper(600);
    TSize size = LayoutBlock(plan.blk, paper, PageSize(600));
    plan.blk.Paint(paper, {0, 0, size.cx, size.cy});
    ExpectTidy(paper, size);
    EXPECT_NEAR(plan.size.cy / 96.0, size.cy / 600.0, 0.15) << "inches";
    EXPECT_NEAR(plan.Frame().Width() / 96.0, Frame(paper).Width() / 600.0, 0.15);
}

TEST(PlanLayout, IsAsTallAtEachZoomAsTheZoomSays)
{
    FIELDHALL hall(60, 30, 6);
    PLAN plan(hall.room);
    plan.blk.Update(false);
    plan.LayOut();
    int natural = plan.size.cy;
    for (int percent = 40; percent <= 250; ++percent) {
        plan.LayOut(percent / 100.0);
        EXPECT_NEAR(plan.size.cy, natural * percent / 100.0, 6) << percent; // an opened plan fits its window
    }
}

TEST(PlanLayout, HasTheLogoInTheRightUpperCornerAndTheTitleBesideIt)
{
    FIELDHALL hall(60, 30, 6);
    PLAN plan(hall.room);
    plan.LayOut();
    plan.Paint();
    TRect logo = Around(plan.dc.strokes);
    EXPECT_TRUE(IsWithin(logo, TRect{718 - 5 - 85, 5, 713, 48}.Inflated(1, 1))) << ShowRect(logo);
    ASSERT_FALSE(plan.dc.cells.empty());
    EXPECT_EQ(plan.dc.cells[0].text, "Plan");
    EXPECT_EQ(plan.dc.cells[0].rect.TopLeft(), (TPoint{0, 0}));
    EXPECT_GE(plan.Frame().top, 48);
}

TEST(PlanLayout, HasAKeyPlanOfTheHallsProportionsWithinItsSizes)
{
    struct {
        double length, width; // m
        double keyWidth;      // cm
    } rows[] = {{60, 60, 1.5}, {60, 50, 1.8}, {60, 45, 2.0}, {60, 30, 2.0}, {400, 3, 2.0}, {30, 60, 0.75}};
    for (const auto &row : rows) {
        SCOPED_TRACE(testing::Message() << row.length << " x " << row.width);
        FIELDHALL hall(row.length, row.width, 6);
        PLAN plan(hall.room, 600);
        plan.LayOut();
        plan.Paint();
        TRect key = KeyPlan(plan.dc);
        EXPECT_NEAR(key.Width() / 600.0 * 2.54, row.keyWidth, 0.03);
        EXPECT_NEAR(key.Height() / 600.0 * 2.54, 1.5, 0.01);
        EXPECT_FALSE(KeyBody(plan.dc).IsEmpty());
        EXPECT_GT(key.left, plan.size.cx / 2);
        EXPECT_GE(key.top, plan.Frame().bottom);
    }
}

TEST(PlanLayout, OfAHallMuchWiderThanLongHasAKeyPlanNarrowerThanTallThatCanBeRead)
{
    FIELDHALL hall(10, 60, 6);
    PLAN plan(hall.room);
    plan.LayOut();
    plan.Paint();
    TRect key = KeyPlan(plan.dc);
    EXPECT_LT(key.Width(), key.Height());
    ExpectTidy(plan.dc, plan.size);
}

TEST(PlanLayout, NamesTheWallsWhereTheyStand)
{
    FIELDHALL hall(60, 30, 6);
    PLAN plan(hall.room);
    plan.LayOut();
    plan.Paint();
    TRect body = KeyBody(plan.dc);
    for (const TPlaceDC::Cell &cell : plan.dc.cells) {
        if (cell.text == "A") {
            EXPECT_GE(cell.rect.top, body.bottom); // y = 0
        }
        if (cell.text == "B") {
            EXPECT_GE(cell.rect.left, body.right); // x = length
        }
        if (cell.text == "C") {
            EXPECT_LE(cell.rect.bottom, body.top); // y = width
        }
        if (cell.text == "D") {
            EXPECT_LE(cell.rect.right, body.left); // x = 0
        }
    }
}

TEST(PlanLayout, HasTheTableBelowThePlanAndLeftOfTheKeyPlan)
{
    FIELDHALL hall(60, 30, 6);
    PLAN plan(hall.room);
    plan.blk.Update(false);
    plan.LayOut();
    plan.Paint();
    ASSERT_EQ(Swatches(plan.dc), 12U);
    TRect key = KeyPlan(plan.dc);
    for (size_t i = 0; i < 12; ++i) {
        EXPECT_GT(plan.dc.rects[i].top, plan.Frame().bottom);
        EXPECT_LT(plan.dc.rects[i].right, key.left);
        if (i > 0) {
            EXPECT_EQ(plan.dc.rects[i].left, plan.dc.rects[0].left);
            EXPECT_GT(plan.dc.rects[i].top, plan.dc.rects[i - 1].top);
        }
    }
    int bottom = 0;
    for (const TPlaceDC::Cell &cell : plan.dc.cells)
        bottom = std::max(bottom, cell.rect.bottom);
    EXPECT_NEAR(plan.size.cy, bottom, 2); // the line below the table ends the block
}

TEST(PlanLayout, IsAsTallAsTheKeyPlanNeedsWithoutATable)
{
    FIELDHALL hall(60, 30, 6);
    PLAN plan(hall.room);
    plan.LayOut();
    plan.Paint();
    EXPECT_EQ(plan.size.cy, KeyPlan(plan.dc).bottom);
    int bare = plan.size.cy;
    plan.blk.Update(false);
    plan.LayOut();
    EXPECT_GT(plan.size.cy, bare);
}

TEST(PlanLayout, HasTheMapOverTheHallExactlyAndAFrameRoundIt)
{
    for (double length : {12.0, 60.0, 120.0}) {
        FIELDHALL hall(length, 20, 6);
        CHANCE chance(3);
        EmMODEL *model = hall.AddModel(FIELDTABLE(), chance);
        hall.AddEmitter(model, {-7, 31, 4}); // hangs outside
        PLAN plan(hall.room);
        plan.blk.Update(false);
        plan.LayOut();
        plan.Paint();
        ASSERT_EQ(plan.dc.pictures.size(), 1U);
        TRect map = plan.dc.pictures[0];
        EXPECT_EQ(plan.Frame(), (TRect{map.left, map.top, map.right + 1, map.bottom + 1}));
        EXPECT_NEAR(static_cast<double>(map.Width()) / map.Height(), length / 20, 0.05 * length / 20);
        AXES axes(plan.dc);
        EXPECT_EQ(map.left, axes.origin.x);
        EXPECT_EQ(map.bottom, axes.origin.y);
        EXPECT_LT(axes.left, map.left); // the axes reach out to the emitter
        EXPECT_LT(axes.top, map.top);
    }
}

TEST(PlanLayout, KeepsInViewWhatStandsOutsideTheHall)
{
    enum KIND { EMITTER, UNIT, HOLE, ZONE };
    struct {
        KIND kind;
        AgPOINT pos;
        double xMin, yMin, xMax, yMax; // m, what the axes must show
    } rows[] = {{EMITTER, {-20, 10}, -20, 0, 60, 30}, {EMITTER, {90, 10}, 0, 0, 90, 30},
                {UNIT, {30, -15}, 0, -15, 60, 30},    {UNIT, {30, 50}, 0, 0, 60, 50},
                {HOLE, {-10, -10}, -10, -10, 60, 30}, {HOLE, {30, 15}, 0, 0, 60, 30},
                {ZONE, {80, 40}, 0, 0, 80, 40},       {ZONE, {-5, 20}, -5, 0, 60, 30}};
    for (const auto &row : rows) {
        SCOPED_TRACE(testing::Message() << row.kind << " at " << row.pos.x << "," << row.pos.y);
        FIELDHALL hall(60, 30, 6);
        CHANCE chance(3);
        if (row.kind == EMITTER) {
            hall.AddEmitter(hall.AddModel(FIELDTABLE(), chance), row.pos);
        } else if (row.kind == UNIT) {
            auto *unit = new EmAIRHEATER;
            unit->pos = row.pos;
            unit->Insert(hall.room.AirHeaters());
        } else if (row.kind == HOLE) {
            hall.AddHole(hall.room.Surfaces()->Floor(), row.pos, {1, 1}, 2);
        } else {
            auto *zone = new EmZONE;
            zone->pos = row.pos;
            zone->Insert(hall.room.Zones());
        }
        PLAN plan(hall.room);
        plan.LayOut();
        plan.Paint();
        AXES axes(plan.dc);
        double pitch = (plan.Frame().Width() - 1) / 60.0; // px/m
        EXPECT_NEAR((axes.origin.x - axes.left) / pitch, -row.xMin, 0.2);
        EXPECT_NEAR((axes.right - axes.origin.x) / pitch, row.xMax, 0.2);
        EXPECT_NEAR((axes.origin.y - axes.top) / pitch, row.yMax, 0.2);
        EXPECT_NEAR((axes.bottom - axes.origin.y) / pitch, -row.yMin, 0.2);
        EXPECT_NEAR((plan.Frame().Height() - 1) / pitch, 30, 0.2); // the hall keeps its proportions
        EXPECT_LE(plan.size.cy, PageSize(96).cy);
    }
}

TEST(PlanLayout, BearsHallsAndPlacesThatNoDesignerWouldEnter)
{
    const double far = 1e308;
    const AgPOINT places[] = {{far, far}, {-far, far}, {1e9, -1e9}, {5e-324, 0}};
    for (const AgPOINT &place : places) {
        FIELDHALL hall(60, 30, 6);
        CHANCE chance(3);
        hall.AddEmitter(hall.AddModel(FIELDTABLE(), chance), place);
        PLAN plan(hall.room);
        plan.blk.Update(false);
        plan.LayOut();
        plan.Paint();
        EXPECT_LE(plan.size.cy, PageSize(96).cy);
    }
    auto room = MakeEmptyRoom();
    PLAN plan(*room);
    plan.LayOut();
    plan.Paint();
    EXPECT_LE(plan.size.cy, PageSize(96).cy);
    TZulWallBlock wall(&plan.blk, room->Surfaces()->First(), "Wand");
    TSize size = LayoutBlock(wall, plan.dc, PageSize(96));
    wall.Paint(plan.dc, {0, 0, size.cx, size.cy});
}

TEST(PlanLayout, BearsPlacesOfAnySize)
{
    FIELDHALL hall(60, 30, 6);
    PLAN plan(hall.room);
    plan.blk.Update(false);
    TZulWallBlock wall(&plan.blk, hall.room.Surfaces()->FirstWall(), "Wand");
    for (TSize space : {TSize{0, 0}, {1, 1}, {50, 1000}, {1000, 50}, {100, 100}, {300, 200}})
        for (TEdcBlock *blk : {static_cast<TEdcBlock *>(&plan.blk), static_cast<TEdcBlock *>(&wall)}) {
            TPlaceDC dc;
            TSize size = LayoutBlock(*blk, dc, space);
            blk->Paint(dc, {0, 0, size.cx, size.cy});
            EXPECT_FALSE(dc.rects.empty());
        }
}

TEST(PlanLayout, WithoutTheLogoFileFails)
{
    FIELDHALL hall(60, 30, 6);
    PLAN plan(hall.room);
    TZulWallBlock wall(&plan.blk, hall.room.Surfaces()->FirstWall(), "Wand");
    FOLDER empty;
    SetLogoDirectory(empty.Name("").c_str());
    for (TEdcBlock *blk : {static_cast<TEdcBlock *>(&plan.blk), static_cast<TEdcBlock *>(&wall)}) {
        LayoutBlock(*blk, plan.dc, PageSize(96));
        EXPECT_STREQ(TakeFailure(), XFOPEN);
    }
}

TEST(PlanOrder, OnTheScreenIsHeadMapLettersTableAxesFrame)
{
    FIELDHALL hall(60, 30, 6);
    PLAN plan(hall.room);
    plan.LayOut();
    plan.Paint();
    EXPECT_EQ(Order(plan.dc), "title logo letters axes frame ");
    plan.blk.Update(false);
    plan.LayOut();
    plan.Paint();
    EXPECT_EQ(Order(plan.dc), "title logo map letters table axes frame ");
}

TEST(PlanOrder, OnPaperHasTheMapBelowEverythingAndOnce)
{
    FIELDHALL hall(60, 30, 6);
    PLAN plan(hall.room, 600);
    plan.blk.Update(false);
    plan.LayOut();
    plan.Print();
    EXPECT_EQ(Order(plan.dc), "map title logo letters table axes frame ");
    EXPECT_EQ(plan.dc.pictures.size(), 1U);
    EXPECT_TRUE(plan.blk.Picture());
    plan.Paint();
    EXPECT_EQ(Order(plan.dc), "title logo map letters table axes frame ");
}

TEST(PlanOrder, WithoutAMapIsTheSameOnPaper)
{
    FIELDHALL hall(60, 30, 6);
    PLAN plan(hall.room);
    plan.LayOut();
    plan.Paint();
    std::string shown = plan.dc.calls;
    plan.Print();
    EXPECT_EQ(plan.dc.calls, shown);
}

namespace
{
/// Has no memory for texts.
struct TFailingDC : TPlaceDC {
    void TextOut(int, int, const char *, int) override { throw std::bad_alloc(); }
};
} // namespace

TEST(PlanOrder, ThatFailsOnItsWayKeepsTheMap)
{
    FIELDHALL hall(60, 30, 6);
    PLAN plan(hall.room);
    plan.blk.Update(false);
    plan.LayOut();
    TFailingDC failing;
    plan.blk.Print(failing, {0, 0, plan.size.cx, plan.size.cy});
    EXPECT_STREQ(TakeFailure(), XALLOC);
    EXPECT_EQ(failing.pictures.size(), 1U);
    EXPECT_TRUE(failing.rects.empty()); // it stopped at once
    ASSERT_TRUE(plan.blk.Picture());
    plan.Paint();
    EXPECT_EQ(plan.dc.pictures.size(), 1U);
}

TEST(WallLayout, IsHeadAxesAndAFrameRoundTheSurface)
{
    FIELDHALL hall(60, 30, 6);
    PLAN plan(hall.room);
    EmSURFACESET *surfaces = hall.room.Surfaces();
    EmSURFACE *wall = surfaces->FirstWall();
    EmSURFACE *all[] = {wall, EmSURFACESET::Next(wall), EmSURFACESET::Next(EmSURFACESET::Next(wall)),
                        surfaces->Ceiling()};
    for (EmSURFACE *surface : all) {
        TZulWallBlock blk(&plan.blk, surface, "Seite");
        EXPECT_EQ(blk.Surface(), surface);
        EXPECT_EQ(blk.RoomBlock(), &plan.blk);
        TPlaceDC dc;
        TSize size = LayoutBlock(blk, dc, PageSize(96));
        blk.Paint(dc, {0, 0, size.cx, size.cy});
        EXPECT_EQ(Order(dc), "title logo axes frame ");
        ExpectTidy(dc, size);
        EXPECT_LE(size.cy, PageSize(96).cy);
        AXES axes(dc);
        TRect frame = Frame(dc);
        EXPECT_EQ(frame.left, axes.left);
        EXPECT_EQ(frame.bottom, axes.bottom + 1);
        EXPECT_NEAR(static_cast<double>(frame.Width()) / frame.Height(), surface->size.x / surface->size.y,
                    0.2);
        TPlaceDC paper;
        LayoutBlock(blk, paper, PageSize(96));
        blk.Print(paper, {0, 0, size.cx, size.cy});
        EXPECT_EQ(paper.calls, dc.calls);
    }
}

TEST(WallLayout, ShowsAnOpeningOutsideItsWallAndFramesTheWallAlone)
{
    FIELDHALL hall(60, 30, 6);
    EmSURFACE *wall = hall.room.Surfaces()->FirstWall();
    hall.AddHole(wall, {75, 3}, {2, 2}, 1.5);
    PLAN plan(hall.room);
    TZulWallBlock blk(&plan.blk, wall, "Wand A");
    TPlaceDC dc;
    TSize size = LayoutBlock(blk, dc, PageSize(96));
    blk.Paint(dc, {0, 0, size.cx, size.cy});
    AXES axes(dc);
    double pitch = (axes.right - axes.left) / 75.0; // px/m
    EXPECT_NEAR((Frame(dc).Width() - 1) / pitch, 60, 0.2);
}

TEST(WallLayout, OfATallHallKeepsToThePage)
{
    FIELDHALL hall(4, 4, 60);
    PLAN plan(hall.room);
    TZulWallBlock blk(&plan.blk, hall.room.Surfaces()->FirstWall(), "Wand A");
    TPlaceDC dc;
    TSize size = LayoutBlock(blk, dc, PageSize(96));
    blk.Paint(dc, {0, 0, size.cx, size.cy});
    EXPECT_LE(size.cy, PageSize(96).cy);
    EXPECT_LE(Frame(dc).bottom, size.cy);
    ExpectTidy(dc, size);
}

TEST(WallLayout, NeedsAFloorPlanAndASurface)
{
    FIELDHALL hall(60, 30, 6);
    PLAN plan(hall.room);
    const std::string condition = "rm != NULL && surf != NULL";
    const std::string file = "usr/zulroom_wall.cpp";
    EXPECT_TRUE(AbortsOnAssertion(condition, file,
                                  [&] { TZulWallBlock blk(NULL, hall.room.Surfaces()->FirstWall(), "Wand"); }));
    EXPECT_TRUE(AbortsOnAssertion(condition, file, [&] { TZulWallBlock blk(&plan.blk, NULL, "Wand"); }));
}

TEST(WallLayout, UpdateOfAWallRunsNothing)
{
    FIELDHALL hall(60, 30, 6);
    PLAN plan(hall.room);
    TZulWallBlock blk(&plan.blk, hall.room.Surfaces()->FirstWall(), "Wand");
    blk.Update(false);
    blk.Update(true);
    EXPECT_FALSE(plan.blk.IsValid());
    EXPECT_TRUE(plan.Status().empty());
}
