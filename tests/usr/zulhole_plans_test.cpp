// Openings and warm-air units on the plans of the report: on every surface, on the screen at several zooms and
// on paper, under the tools that place and draw them, and in halls of odd sizes.
#include "zulholecase.h"
#include "win/frame.h"
#include "zulmapcase.h"

#include <cmath>
#include <memory>

namespace
{
using testdoor::DialogBox;

enum { TEXT = 100, K = 101, W = 104, H = 106 };

/// A hall's plans as the report has them, with numbered texts and colours.
struct HALLPLANS : MAPDOC {
    TZulMapInfo info;
    EmROOM room;
    TZulRoomBlock floor;
    std::vector<std::unique_ptr<TZulWallBlock>> walls; // the ceiling first

    HALLPLANS(double length, double width, double height)
        : room(length, width, height, "", "", 0), floor(&room, &info, &palette,
                                                        "Fu\xDF"
                                                        "boden")
    {
        EmSURFACESET &surfaces = *room.Surfaces();
        for (EmSURFACE *surface = surfaces.First(); surface; surface = EmSURFACESET::Next(surface))
            if (surface != surfaces.Floor())
                walls.push_back(std::make_unique<TZulWallBlock>(&floor, surface, "Wand"));
    }
    ~HALLPLANS() { doc.modified = false; }
    void Update()
    {
        floor.Update(true);
        for (auto &wall : walls)
            wall->Update(true);
    }
};

/// One plan, whatever it shows.
struct PLANOF {
    TEdcBlock *blk;
    EmSURFACE *surface;
    TEdcAxes *axes;
    TEdcSpriteManager *sprites;

    TZulHoleLayer &Holes() const { return static_cast<TZulHoleLayer &>(*sprites->FindLayer(ZUL_HOLES)); }
    plain::AXES PlainAxes() const { return {axes->xScale, {axes->originX, axes->originY}, 0, 0}; }
};

class Plans : public DialogCase
{
protected:
    std::vector<PLANOF> Six(HALLPLANS &hall)
    {
        std::vector<PLANOF> six = {
            {&hall.floor, hall.room.Surfaces()->Floor(), &hall.floor.Axes(), &hall.floor.Sprites()}};
        for (auto &wall : hall.walls)
            six.push_back({wall.get(), wall->Surface(), &wall->Axes(), &wall->Sprites()});
        return six;
    }
    static EmHOLE *Put(EmSURFACE &surface, const AgPOINT &middle, double width, double height, double angle = 0)
    {
        auto *hole = new EmHOLE;
        hole->pos = middle;
        hole->size = AgPOINT(width, height);
        hole->rotation = angle;
        hole->Insert(surface.Holes());
        return hole;
    }
    static std::string Picture(TEdcBlock &blk, TRecordDC &dc, double scale = 1, bool onPaper = false)
    {
        TSize space = {static_cast<int>(718 * scale * dc.DpiX() / 96),
                       static_cast<int>(1000 * scale * dc.DpiX() / 96)};
        TSize size = LayoutBlock(blk, dc, space, scale);
        dc.calls.clear();
        onPaper ? blk.Print(dc, {0, 0, size.cx, size.cy}) : blk.Paint(dc, {0, 0, size.cx, size.cy});
        return dc.calls;
    }
    /// Outline and colour of each opening in a picture.
    static std::vector<std::string> Hatched(const std::string &calls)
    {
        std::vector<std::string> found;
        for (const std::string &line : CallsOf(calls))
            if (line.find("brush hatch bdiagonal") != std::string::npos)
                found.push_back(line);
        return found;
    }
    static std::string Outlined(const EmHOLE &hole, const PLANOF &plan, const char *color)
    {
        return "Polygon" + PointsText(plain::Outline(ShapeOf(hole), plan.PlainAxes())) + " pen " + color +
               " brush hatch bdiagonal " + color;
    }
    static std::vector<std::string> Outlines(const PLANOF &plan, const char *color)
    {
        std::vector<std::string> all;
        for (EmHOLE *hole = plan.surface->Holes()->First(); hole; hole = EmHOLESET::Next(hole))
            all.push_back(Outlined(*hole, plan, color));
        return all;
    }
    static void FillStock(DialogBox &box, bool drawn)
    {
        EXPECT_EQ(box.Caption(), "Bau\xF6"
                                 "ffnung");
        box.Type(TEXT, "Tor");
        box.Type(K, "2.5");
        if (!drawn) {
            box.Type(W, "1.5");
            box.Type(H, "0.5");
        }
        box.Press("Return");
    }
    /// The plan is opened and the tool is chosen and told what to make.
    static TEdcMouseTool &Take(const PLANOF &plan, int tool)
    {
        plan.sprites->Resume(true);
        EXPECT_TRUE(plan.sprites->SetLayer(&plan.Holes()));
        InDialog([tool](DialogBox &box) { FillStock(box, tool == EDC_TlRECT); });
        EXPECT_TRUE(plan.sprites->SetTool(plan.sprites->FindTool(tool)));
        return *plan.sprites->Tool();
    }
};

TEST_F(Plans, ShowOpeningsOnEverySurfaceAsTheyStand)
{
    HALLPLANS hall(20, 12, 6);
    for (const PLANOF &plan : Six(hall)) {
        const AgPOINT size = plan.surface->size;
        Put(*plan.surface, AgPOINT(size.x / 4, size.y / 2), 2, 1);
        Put(*plan.surface, AgPOINT(size.x / 2, size.y / 3), 3, 1.5, 30 * DEGREE);
        Put(*plan.surface, AgPOINT(size.x, size.y), 4, 2, -100 * DEGREE); // half outside
        Put(*plan.surface, AgPOINT(0, 0), 1, 1, AgPI);
    }
    hall.Update();
    for (int dpi : {96, 144, 600})
        for (double zoom : {0.25, 1.0, 3.0})
            for (bool onPaper : {false, true})
                for (const PLANOF &plan : Six(hall)) {
                    TRecordDC dc(dpi);
                    std::string calls = Picture(*plan.blk, dc, zoom, onPaper);
                    EXPECT_EQ(Hatched(calls), Outlines(plan, "000000")) << dpi << " " << zoom;
                    for (const char *label : {"\"1\"", "\"2\"", "\"3\"", "\"4\""})
                        EXPECT_NE(calls.find(label), std::string::npos) << "each surface counts for itself";
                }
}

TEST_F(Plans, ColourOpeningsWhileTheyAreEdited)
{
    HALLPLANS hall(20, 12, 6);
    for (const PLANOF &plan : Six(hall)) {
        Put(*plan.surface, AgPOINT(3, 3), 2, 1);
        Put(*plan.surface, AgPOINT(6, 3), 2, 1, 0.5);
    }
    hall.Update();
    for (const PLANOF &plan : Six(hall)) {
        TRecordDC dc;
        plan.sprites->Resume(true);
        plan.sprites->SetLayer(&plan.Holes());
        TEdcSprite *first = plan.Holes().LnkFirst();
        plan.Holes().Select(first, true, NULL);
        std::vector<std::string> seen = Hatched(Picture(*plan.blk, dc));
        ASSERT_EQ(seen.size(), 2U);
        const EmHOLE *second = EmHOLESET::Next(plan.surface->Holes()->First());
        EXPECT_EQ(seen[0], Outlined(*second, plan, "0000ff")); // what is selected is on top
        EXPECT_EQ(seen[1], Outlined(*plan.surface->Holes()->First(), plan, "00ff00"));
        for (const std::string &line : Hatched(Picture(*plan.blk, dc, 1, true)))
            EXPECT_NE(line.find("pen 000000"), std::string::npos) << "but not on paper";
        plan.sprites->Suspend(true);
        EXPECT_EQ(Hatched(Picture(*plan.blk, dc))[0].find("pen 0000ff"), std::string::npos)
            << "nor when closed";
    }
}

TEST_F(Plans, ShowOpeningsOfTheFloorWhileItsEmittersAreEdited)
{
    HALLPLANS hall(20, 12, 6);
    PLANOF plan = Six(hall)[0];
    Put(*plan.surface, AgPOINT(3, 3), 2, 1);
    hall.Update();
    plan.sprites->Resume(true);
    ASSERT_EQ(plan.sprites->Layer()->Id(), ZUL_EMITTERS);
    TRecordDC dc;
    std::string calls = Picture(*plan.blk, dc);
    EXPECT_EQ(Hatched(calls), Outlines(plan, "000000"));
    plan.sprites->Suspend(true);
}

TEST_F(Plans, LetEachToolWorkOnTheOpenings)
{
    HALLPLANS hall(20, 12, 6);
    for (const PLANOF &plan : Six(hall))
        for (int tool : {int{EDC_TlSELECT}, int{EDC_TlALIGN}, int{EDC_TlSTOCK}, int{EDC_TlRECT}})
            EXPECT_TRUE(plan.sprites->IsPermitted(&plan.Holes(), plan.sprites->FindTool(tool))) << tool;
}

TEST_F(Plans, PlaceAnOpeningOfTheStocksSizeInTheMiddleOfTheClick)
{
    HALLPLANS hall(20, 12, 6);
    for (const PLANOF &plan : Six(hall)) {
        TRecordDC dc;
        Picture(*plan.blk, dc);
        TEdcMouseTool &tool = Take(plan, EDC_TlSTOCK);
        TPoint at = plan.axes->ToDevice(AgPOINT(3.21, 2.34));
        tool.LeftDown(dc, 0, at);
        tool.LeftUp(dc, 0, at);
        ASSERT_EQ(plan.surface->Holes()->Count(), 1);
        const EmHOLE &hole = *plan.surface->Holes()->First();
        plain::POINT clicked = plan.PlainAxes().Metres(at);
        EXPECT_NEAR(hole.pos.x, clicked.real(), 1e-9) << "on no grid";
        EXPECT_NEAR(hole.pos.y, clicked.imag(), 1e-9);
        EXPECT_NEAR(hole.size.x, 1.5, 1e-12);
        EXPECT_NEAR(hole.size.y, 0.5, 1e-12);
        EXPECT_STREQ(hole.description, "Tor");
        EXPECT_EQ(hole.constr.k, 2.5);
        EXPECT_EQ(plan.Holes().CountSel(), 1);
        EXPECT_NE(plan.Holes().Focus(), nullptr);
        EXPECT_TRUE(hall.doc.modified);
        tool.LeftDown(dc, 0, at + TPoint{40, 0});
        tool.LeftUp(dc, 0, at + TPoint{40, 0});
        EXPECT_EQ(plan.surface->Holes()->Count(), 2) << "one more, and nobody asks again";
        plan.sprites->Suspend(true);
    }
}

TEST_F(Plans, DrawAnOpeningOfTheSizeOfTheDrag)
{
    HALLPLANS hall(20, 12, 6);
    for (const PLANOF &plan : Six(hall)) {
        TRecordDC dc;
        Picture(*plan.blk, dc);
        TEdcMouseTool &tool = Take(plan, EDC_TlRECT);
        TPoint from = plan.axes->ToDevice(AgPOINT(5, 4));
        TPoint to = plan.axes->ToDevice(AgPOINT(2, 2.5));
        tool.LeftDown(dc, 0, from);
        tool.LeftUp(dc, 0, from);
        EXPECT_EQ(plan.surface->Holes()->Count(), 0) << "a click draws nothing";
        tool.LeftDown(dc, 0, from);
        tool.MouseMove(dc, 0, to);
        tool.LeftUp(dc, 0, to);
        ASSERT_EQ(plan.surface->Holes()->Count(), 1);
        const EmHOLE &hole = *plan.surface->Holes()->First();
        plain::POINT a = plain::Snapped(plan.PlainAxes().Metres(from), 0.01);
        plain::POINT b = plain::Snapped(plan.PlainAxes().Metres(to), 0.01);
        EXPECT_NEAR(hole.size.x, a.real() - b.real(), 1e-9);
        EXPECT_NEAR(hole.size.y, a.imag() - b.imag(), 1e-9);
        EXPECT_NEAR(hole.pos.x, (a + b).real() / 2, 1e-9);
        EXPECT_NEAR(hole.pos.y, (a + b).imag() / 2, 1e-9);
        EXPECT_EQ(hole.rotation, 0);
        EXPECT_STREQ(hole.description, "Tor");
        plan.sprites->Suspend(true);
    }
}

TEST_F(Plans, AskAgainAtARightClickWithTheLastInput)
{
    HALLPLANS hall(20, 12, 6);
    PLANOF plan = Six(hall)[2];
    TRecordDC dc;
    Picture(*plan.blk, dc);
    TEdcMouseTool &tool = Take(plan, EDC_TlSTOCK);
    InDialog([](DialogBox &box) {
        EXPECT_EQ(box.Text(TEXT), "Tor");
        EXPECT_EQ(box.Text(W), "1.5");
        box.Type(TEXT, "Fenster");
        box.Press("Return");
    });
    TPoint at = plan.axes->ToDevice(AgPOINT(3, 2));
    tool.RightDown(dc, 0, at);
    tool.RightUp(dc, 0, at);
    tool.LeftDown(dc, 0, at);
    tool.LeftUp(dc, 0, at);
    ASSERT_EQ(plan.surface->Holes()->Count(), 1);
    EXPECT_STREQ(plan.surface->Holes()->First()->description, "Fenster");
    plan.sprites->Suspend(true);
}

TEST_F(Plans, PlaceARowOfOpenings)
{
    enum { COUNT = 101 };
    HALLPLANS hall(20, 12, 6);
    PLANOF plan = Six(hall)[2];
    TRecordDC dc;
    Picture(*plan.blk, dc);
    TEdcMouseTool &tool = Take(plan, EDC_TlSTOCK);
    InDialog([](DialogBox &box) {
        box.Type(COUNT, "3");
        box.Click(WIN_ID_OK);
    });
    TPoint from = plan.axes->ToDevice(AgPOINT(2, 3));
    TPoint to = plan.axes->ToDevice(AgPOINT(18, 3));
    tool.LeftDown(dc, 0, from);
    tool.MouseMove(dc, 0, to);
    tool.LeftUp(dc, 0, to);
    ASSERT_EQ(plan.surface->Holes()->Count(), 3);
    Picture(*plan.blk, dc);
    int number = 0;
    for (TEdcSprite *spr = plan.Holes().LnkFirst(); spr; spr = spr->lnkNext) {
        const auto *hole = static_cast<const TZulHoleSprite *>(spr);
        EXPECT_EQ(hole->label.Text(), std::to_string(++number));
        EXPECT_NEAR(hole->Object()->size.x, 1.5, 1e-12);
        EXPECT_EQ(hole->Centre(), hole->Object()->pos) << "sprite and opening agree";
    }
    plan.sprites->Suspend(true);
}

TEST_F(Plans, KeepOpeningsBeyondTheirSurfaceInView)
{
    HALLPLANS hall(20, 12, 6);
    for (const PLANOF &plan : Six(hall)) {
        Put(*plan.surface, AgPOINT(-3, plan.surface->size.y + 5), 2, 1);
        plan.blk->Update(true);
        TRecordDC dc;
        Picture(*plan.blk, dc);
        TPoint middle = plan.axes->ToDevice(AgPOINT(-3, plan.surface->size.y + 5));
        EXPECT_GE(middle.x, 0);
        EXPECT_LE(middle.x, 718);
        EXPECT_GE(middle.y, 0);
        EXPECT_LE(middle.y, 1000);
        EXPECT_EQ(Hatched(dc.calls), Outlines(plan, "000000"));
    }
}

TEST_F(Plans, TakeOpeningsThatAreLargerThanTheirWall)
{
    const double halls[][3] = {{1, 1, 1}, {20, 12, 6}, {10000, 8000, 20}};
    for (const auto &sides : halls) {
        HALLPLANS hall(sides[0], sides[1], sides[2]);
        for (const PLANOF &plan : Six(hall)) {
            const AgPOINT size = plan.surface->size;
            Put(*plan.surface, AgPOINT(size.x / 2, size.y / 2), 3 * size.x, 2 * size.y);
            Put(*plan.surface, AgPOINT(size.x / 2, size.y / 2), 0, 0);
            Put(*plan.surface, AgPOINT(size.x / 3, size.y / 3), 1e300, 1e300, 0.3);
            Put(*plan.surface, AgPOINT(size.x / 4, size.y / 4), -0.25, -0.5, 0.3);
            plan.blk->Update(true);
            TRecordDC dc;
            std::vector<std::string> seen = Hatched(Picture(*plan.blk, dc));
            std::vector<std::string> expected = Outlines(plan, "000000");
            ASSERT_EQ(seen.size(), 4U);
            for (size_t i : {0U, 1U, 3U})
                EXPECT_EQ(seen[i], expected[i]) << sides[0] << " " << i;
            for (TEdcSprite *spr = plan.Holes().LnkFirst(); spr; spr = spr->lnkNext)
                EXPECT_TRUE(spr->HitTest(plan.axes->ToDevice(static_cast<TZulHoleSprite *>(spr)->Centre())));
            TMemoryDC screen({718, 1000}, 96);
            plan.blk->Paint(screen, {0, 0, 718, 1000});
        }
    }
}

TEST_F(Plans, OfTheSmallestAndOfAVeryLargeHallPlaceToThePixel)
{
    const double halls[][3] = {{1, 1, 1}, {10000, 10000, 10000}};
    for (const auto &sides : halls) {
        HALLPLANS hall(sides[0], sides[1], sides[2]);
        for (const PLANOF &plan : Six(hall)) {
            TRecordDC dc;
            Picture(*plan.blk, dc);
            TEdcMouseTool &tool = Take(plan, EDC_TlSTOCK);
            TPoint at = plan.axes->ToDevice(AgPOINT(0.4 * sides[0], 0.6 * sides[1]));
            tool.LeftDown(dc, 0, at);
            tool.LeftUp(dc, 0, at);
            ASSERT_EQ(plan.surface->Holes()->Count(), 1);
            EXPECT_EQ(plan.axes->ToDevice(plan.surface->Holes()->First()->pos), at);
            EXPECT_EQ(plan.surface->Holes()->First()->size, AgPOINT(1.5, 0.5));
            plan.sprites->Suspend(true);
        }
    }
}

// Warm-air units

EmAIRHEATER *PutUnit(EmROOM &room, const AgPOINT &middle, const char *type)
{
    auto *unit = new EmAIRHEATER;
    StrCopy(unit->type, type, sizeof unit->type);
    unit->size = AgPOINT(2, 1, 1);
    unit->pos = middle;
    unit->Insert(room.AirHeaters());
    return unit;
}

std::vector<std::string> Patterned(const std::string &calls)
{
    std::vector<std::string> found;
    for (const std::string &line : CallsOf(calls))
        if (line.find("brush pattern") != std::string::npos)
            found.push_back(line);
    return found;
}

TEST_F(Plans, ShowAndPrintWarmAirUnitsAndNeverEditThem)
{
    HALLPLANS hall(20, 12, 6);
    PutUnit(hall.room, AgPOINT(5, 5, 3), "WG 24");
    PutUnit(hall.room, AgPOINT(10, 5, 3), "");
    hall.Update();
    TEdcSpriteManager &sprites = hall.floor.Sprites();
    TEdcSpriteLayer *units = sprites.FindLayer(ZUL_AIRHEATERS);
    EXPECT_EQ(units->Options(), EDC_LoVISIBLE | EDC_LoPRINTED);
    TRecordDC dc;
    for (bool opened : {false, true}) {
        if (opened) {
            hall.floor.Open();
            EXPECT_FALSE(sprites.SetLayer(units));
            sprites.SetLayer(sprites.FindLayer(ZUL_ZONES));
        }
        for (bool onPaper : {false, true}) {
            std::vector<std::string> seen = Patterned(Picture(hall.floor, dc, 1, onPaper));
            ASSERT_EQ(seen.size(), 1U) << "the other one has no type";
            EXPECT_NE(seen[0].find("pattern 000000/ffffff"), std::string::npos) << "idle";
            for (const char *label : {"\"1\"", "\"2\""})
                EXPECT_NE(dc.calls.find(label), std::string::npos);
        }
        EXPECT_FALSE(units->IsActive());
        TCommandEnabler enabler(ZUL_AIRHEATERS);
        hall.floor.EnableCommand(enabler);
        EXPECT_EQ(enabler.IsAnswered(), opened);
        EXPECT_FALSE(enabler.IsEnabled());
    }
    hall.floor.Close();
}

TEST_F(Plans, KeepWarmAirUnitsBeyondTheHallInView)
{
    HALLPLANS hall(20, 12, 6);
    PutUnit(hall.room, AgPOINT(30, -5, 3), "WG 24");
    hall.Update();
    TRecordDC dc;
    EXPECT_EQ(Patterned(Picture(hall.floor, dc)).size(), 1U);
    TPoint middle = hall.floor.Axes().ToDevice(AgPOINT(30, -5));
    EXPECT_TRUE((TRect{0, 0, 718, 1000}).Contains(middle));
}

TEST_F(Plans, KeepTheMarkersReadableAtEveryZoom)
{
    HALLPLANS hall(2000, 1200, 6);
    PutUnit(hall.room, AgPOINT(500, 500, 3), "WG 24");
    Put(*hall.room.Surfaces()->Floor(), AgPOINT(1000, 800), 1, 1);
    hall.Update();
    for (double zoom : {0.1, 0.5, 1.0, 4.0}) {
        TRecordDC dc;
        std::string calls = Picture(hall.floor, dc, zoom);
        auto &units = static_cast<TZulMarkedLayer &>(*hall.floor.Sprites().FindLayer(ZUL_AIRHEATERS));
        auto &holes = static_cast<TZulMarkedLayer &>(*hall.floor.Sprites().FindLayer(ZUL_HOLES));
        int font = std::max(1, EdcInchToPixel(8 / 72.0, zoom, 96));
        EXPECT_EQ(units.Font().height, font);
        EXPECT_EQ(holes.Font().height, font);
        EXPECT_EQ(units.Font().face, "Arial");
        EXPECT_EQ(units.minThin, std::max(1, std::min(EdcInchToPixel(1 / 72.0, zoom, 96),
                                                      EdcInchToPixel(3 / 72.0, zoom, 96) - 2)));
        EXPECT_EQ(Patterned(calls).size(), 1U) << "no smaller than its marker";
    }
}
} // namespace
