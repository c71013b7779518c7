// Zones of permanent occupancy on the floor plan: the layer and its sprites over the hall's set, the pictogram
// in the corner where a zone was begun, what of a zone can be hit, and how it is painted.
#include "zullayercase.h"

#include "usr/zulzone.h"
#include "win/application.h"
#include "win/frame.h"

#include <cmath>

namespace
{
using plain::POINT;

/// A device with its own resolution in each direction.
class WideDC : public TRecordDC
{
public:
    WideDC(int aDpiX, int aDpiY) : TRecordDC(aDpiY), dpiX(aDpiX) {}
    int DpiX() const override { return dpiX; }

private:
    int dpiX;
};

enum { PERSON = 24, TALL = 24 }; // px: a quarter of an inch, and the pictogram that comes of it

class Zones : public LayerCase
{
protected:
    Zones()
    {
        layer.SetActive(true);
        selector.SetLayer(&layer);
        layer.SetPerson(PERSON);
        LayOutZones();
    }

    void LayOutZones(TDC *device = NULL)
    {
        layer.Layout(device ? *device : dc);
        layer.SetTool(EDC_TlSELECT);
        dc.calls.clear();
        doc.obsolete = 0;
        doc.modified = false;
    }
    EmZONE *Put(const AgPOINT &middle, double width, double height, double angle = 0)
    {
        auto *zone = new EmZONE;
        zone->pos = middle;
        zone->size = AgPOINT(width, height);
        zone->rotation = angle;
        zone->Insert(set);
        return zone;
    }
    /// The only zone and its sprite.
    TZulZoneSprite *Alone(const AgPOINT &middle, double width, double height, double angle = 0)
    {
        layer.DeleteAll(false);
        set->Clear();
        Put(middle, width, height, angle);
        layer.Reload(NULL);
        LayOutZones();
        return Sprites()[0];
    }
    std::vector<TZulZoneSprite *> Sprites()
    {
        std::vector<TZulZoneSprite *> all;
        for (TEdcSprite *spr = layer.LnkFirst(); spr; spr = layer.LnkNext(spr))
            all.push_back(static_cast<TZulZoneSprite *>(spr));
        return all;
    }
    std::vector<EmZONE *> InSet() const
    {
        std::vector<EmZONE *> all;
        for (EmZONE *zone = set->First(); zone; zone = EmZONESET::Next(zone))
            all.push_back(zone);
        return all;
    }
    static std::string PlaceOf(const EmZONE &zone)
    {
        return plain::Text({false, {zone.pos.x, zone.pos.y}, zone.size.x, zone.size.y, zone.rotation, false});
    }
    TEdcDrawCreation Creation(int tool, const AgPOINT &from, const AgPOINT &to)
    {
        TEdcDrawCreation creation;
        creation.type = tool;
        creation.flags = TEdcDrawRect::SOLID;
        creation.stock = set;
        creation.points.Insert(from);
        creation.points.Insert(to);
        return creation;
    }
    /// Rectangles and ellipses of the pictogram as they were painted: head, body, legs.
    std::vector<TRect> PaintedPerson(TZulZoneSprite &spr)
    {
        dc.calls.clear();
        spr.Paint(dc);
        std::vector<TRect> rects;
        for (const std::string &line : CallsOf(TakeCalls())) {
            TRect r;
            if (sscanf(line.c_str(), "%*[A-Za-z] %d,%d,%d,%d", &r.left, &r.top, &r.right, &r.bottom) == 4)
                rects.push_back(r);
        }
        return rects;
    }
    /// The middle of the pictogram.
    TPoint PersonOf(TZulZoneSprite &spr)
    {
        std::vector<TRect> rects = PaintedPerson(spr);
        const TRect &head = rects.at(0);
        return {head.left + head.Width() / 2, head.top + (rects.at(2).bottom - head.top + 1) / 2};
    }

    EmZONESET *set = room.Zones();
    TZulZoneLayer layer{set, &axes};
};

// The layer

TEST_F(Zones, HaveALayerWithoutProperties)
{
    EXPECT_EQ(layer.Id(), 5001);
    EXPECT_EQ(layer.Options(), 0x107);
    EXPECT_STREQ(GetResString(5001), "\nWahl der Daueraufenthaltszonenschicht");
    EXPECT_EQ(Alone(AgPOINT(5, 5), 4, 2)->Type(), 5003);
}

TEST_F(Zones, StopAtWhatOnlyAFaultOfTheProgramCanBring)
{
    const char *const file = "usr/zulzone.cpp";
    TZulZoneSprite *spr = Alone(AgPOINT(5, 5), 2, 1);
    TEdcDrawCreation creation = Creation(ZUL_ZONE, AgPOINT(1, 1), AgPOINT(2, 2));
    auto stops = [&](const char *condition, const char *where, const std::function<void()> &body) {
        EXPECT_TRUE(AbortsOnAssertion(condition, where, [&] {
            RemoveServices(); // or a box would say it
            body();
        }));
    };
    stops("aZoneSet != NULL", file, [&] { TZulZoneLayer none(NULL, &axes); });
    stops("aAxes != NULL", "usr/edcdraw.cpp", [&] { TZulZoneLayer none(set, NULL); });
    stops("object != NULL", file, [&] { TZulZoneSprite none(static_cast<EmZONE *>(NULL)); });
    stops("creation.type == ZUL_ZONE", file, [&] {
        creation.type = ZUL_HOLE;
        TZulZoneSprite none(creation);
    });
    stops("zoneSet != NULL", file, [&] {
        creation.stock = NULL;
        TZulZoneSprite none(creation);
    });
    for (int what : {0, 1, 2})
        stops("zoneObj != NULL", file, [&] {
            spr->Discard();
            what == 0 ? spr->Discard() : what == 1 ? spr->Reload(NULL) : spr->Store();
        });
    stops("zone.zoneObj != NULL", file, [&] {
        spr->Discard();
        TZulZoneSprite copy(*spr);
    });
    stops("ly != NULL", file, [&] {
        layer.Remove(spr);
        spr->Paint(dc);
    });
}

TEST_F(Zones, GetASpriteEachInTheOrderOfTheSet)
{
    for (int i = 0; i < 5; ++i)
        Put(AgPOINT(i, 2 * i), i - 2, 2 - i, i * 0.1);
    layer.Reload(NULL);
    layer.Reload(NULL); // anew, not once more
    ASSERT_EQ(layer.CountLnk(), 5);
    for (size_t i = 0; i < 5; ++i) {
        const TZulZoneSprite &spr = *Sprites()[i];
        const EmZONE &zone = *InSet()[i];
        EXPECT_EQ(spr.Object(), &zone);
        EXPECT_EQ(spr.Size(), zone.size);
        EXPECT_EQ(spr.Centre(), zone.pos);
        EXPECT_EQ(spr.RectAngle(), zone.rotation);
    }
    EXPECT_FALSE(doc.modified) << "nothing of the hall has changed";
    layer.DeleteAll(false);
    EXPECT_EQ(set->Count(), 5) << "the zones are not the sprites'";
}

TEST_F(Zones, AreTakenUpAnewFromTheHallAndWrittenBack)
{
    TZulZoneSprite *spr = Alone(AgPOINT(5, 5), 4, 2);
    EmZONE &zone = *spr->Object();
    zone.pos = AgPOINT(7, 6);
    zone.size = AgPOINT(-3, 1);
    zone.rotation = 0.5;
    spr->Reload(NULL);
    EXPECT_EQ(spr->Centre(), AgPOINT(7, 6));
    EXPECT_EQ(spr->Size(), AgPOINT(-3, 1));
    EXPECT_EQ(spr->RectAngle(), 0.5);
    EXPECT_FALSE(doc.modified);
    zone.pos = zone.size = AgPOINT();
    zone.rotation = 0;
    spr->Store();
    EXPECT_EQ(PlaceOf(zone), "7,6 -3x1 28.6479");
    EXPECT_TRUE(doc.modified);
}

TEST_F(Zones, ThatAreDeletedTakeTheirObjectsAlong)
{
    for (int i = 0; i < 4; ++i)
        Put(AgPOINT(5 + i, 5), 4, 2);
    layer.Reload(NULL);
    LayOutZones();
    std::vector<EmZONE *> before = InSet();
    layer.Select(Sprites()[1], true, NULL);
    layer.Select(Sprites()[3], true, NULL);
    EXPECT_FALSE(doc.modified);
    EXPECT_TRUE(layer.Command(EDC_CmDELETE));
    EXPECT_TRUE(doc.modified);
    EXPECT_TRUE(doc.IsObsolete(EDC_LAYOUT));
    EXPECT_EQ(InSet(), (std::vector<EmZONE *>{before[0], before[2]}));
    ASSERT_EQ(layer.CountLnk(), 2);
    EXPECT_EQ(Sprites()[1]->Object(), before[2]);
}

TEST_F(Zones, AreClonedWithTheirObjectBehindTheSource)
{
    Put(AgPOINT(10, 10), 16, -12, 0.25);
    Put(AgPOINT(9, 9), 1, 1);
    layer.Reload(NULL);
    LayOutZones();
    TZulZoneSprite *copy = Sprites()[0]->Clone();
    ASSERT_EQ(set->Count(), 3);
    EXPECT_EQ(copy->Object(), InSet()[1]);
    EXPECT_EQ(PlaceOf(*InSet()[1]), PlaceOf(*InSet()[0]));
    EXPECT_EQ(copy->layer, nullptr);
    EXPECT_TRUE(doc.modified);
    layer.Add(copy);
    LayOutZones();
    EXPECT_FALSE(copy->HitTest(Px(AgPOINT(10, 10)))) << "the copy's inside is as open as the source's";
}

// Making

TEST_F(Zones, AskForNothingBeforeTheyAreDrawn)
{
    for (bool first : {true, false}) {
        EXPECT_EQ(layer.QueryCreation(EDC_TlRECT, first), set);
        for (int tool : {EDC_TlSELECT, EDC_TlALIGN, EDC_TlSTOCK})
            EXPECT_EQ(layer.QueryCreation(tool, first), nullptr);
    }
}

TEST_F(Zones, AreMadeByTheToolOfRectanglesAlone)
{
    for (int tool : {int{EDC_TlSELECT}, int{EDC_TlALIGN}, int{EDC_TlSTOCK}, int{ZUL_ZONE}})
        EXPECT_EQ(layer.CreateSprite(Creation(tool, AgPOINT(1, 1), AgPOINT(3, 2))), nullptr);
    EXPECT_TRUE(set->IsEmpty());
    EXPECT_FALSE(doc.modified);
    Put(AgPOINT(9, 9), 1, 1);
    TEdcDrawCreation creation = Creation(EDC_TlRECT, AgPOINT(1, 12), AgPOINT(17, 2));
    auto *spr = static_cast<TZulZoneSprite *>(layer.CreateSprite(creation));
    ASSERT_NE(spr, nullptr);
    EXPECT_EQ(creation.type, EDC_TlRECT) << "the tool's record stays as it is";
    EXPECT_EQ(creation.flags, TEdcDrawRect::SOLID);
    EXPECT_EQ(spr->Type(), ZUL_ZONE);
    EXPECT_EQ(spr->layer, nullptr) << "who asked adds it";
    ASSERT_EQ(set->Count(), 2);
    EXPECT_EQ(spr->Object(), InSet()[1]) << "the last of the set";
    EXPECT_EQ(PlaceOf(*InSet()[1]), "9,7 16x-10 0");
    EXPECT_TRUE(doc.modified);
    layer.Add(spr);
    LayOutZones();
    EXPECT_FALSE(spr->HitTest(Px(AgPOINT(9, 7))));
}

TEST_F(Zones, WithoutASetAreRefusedWithAMessage)
{
    TEdcDrawCreation creation = Creation(EDC_TlRECT, AgPOINT(1, 1), AgPOINT(3, 2));
    creation.stock = NULL;
    TEdcDrawSprite *spr = NULL;
    std::string said = SaidWhile([&] { spr = layer.CreateSprite(creation); });
    EXPECT_EQ(spr, nullptr);
    EXPECT_EQ(said, "Objekt kann nicht hergestellt werden.\n\nZuerst sind die Objektparameter\n"
                    "zu spezifizieren.");
    EXPECT_TRUE(set->IsEmpty());
}

TEST_F(Zones, ThatAreDrawnBackwardsHaveNegativeSidesAndBeginWhereTheyWereBegun)
{
    TEdcDrawRectCreator creator(EDC_TlRECT, 21695, 0, 0);
    const struct {
        AgPOINT from, to;
        const char *place;
    } table[] = {{AgPOINT(2, 2), AgPOINT(10, 8), "6,5 8x6 0"},
                 {AgPOINT(10, 2), AgPOINT(2, 8), "6,5 -8x6 0"},
                 {AgPOINT(2, 8), AgPOINT(10, 2), "6,5 8x-6 0"},
                 {AgPOINT(10, 8), AgPOINT(2, 2), "6,5 -8x-6 0"},
                 {AgPOINT(10, 2), AgPOINT(2, 2), "6,2 -8x0 0"}};
    creator.SetLayer(&layer);
    creator.Activate(true); // asks nobody
    for (const auto &row : table) {
        layer.DeleteAll(true);
        creator.LeftDown(dc, 0, Px(row.from));
        creator.MouseMove(dc, 0, Px(row.to));
        creator.LeftUp(dc, 0, Px(row.to));
        ASSERT_EQ(set->Count(), 1) << row.place;
        EXPECT_EQ(PlaceOf(*set->First()), row.place);
        EXPECT_EQ(layer.Focus(), layer.LnkFirst()) << "what was made is selected";
        EXPECT_TRUE(layer.IsSelected(layer.LnkFirst()));
        LayOutZones();
        TPoint away = PersonOf(*Sprites()[0]) - Px(row.from);
        EXPECT_EQ(away.x > 0, row.to.x > row.from.x) << row.place;
        EXPECT_EQ(away.y < 0, row.to.y >= row.from.y) << row.place;
        EXPECT_EQ(std::abs(away.x), std::lround(int{TALL} * std::sqrt(0.5)));
        EXPECT_EQ(std::abs(away.y), std::lround(int{TALL} * std::sqrt(0.5)));
    }
    creator.RightDown(dc, 0, {50, 50});
    creator.RightUp(dc, 0, {50, 50}); // asks nobody either
    creator.Activate(false);
}

TEST_F(Zones, LeaveTheSetAsItWasWhereMemoryFails)
{
    enum WHAT { RELOAD, CREATE, COPY };
    RemoveServices();
    for (WHAT what : {RELOAD, CREATE, COPY}) {
        std::unique_ptr<TEdcDrawCreation> creation;
        TEdcDrawSprite *made = NULL;
        int runs = SweepFaults(
            [&] {
                layer.DeleteAll(false);
                set->Clear();
                for (int i = 0; i < 3; ++i)
                    Put(AgPOINT(5 + i, 5), 4, 2);
                if (what != RELOAD)
                    layer.Reload(NULL);
                LayOutZones();
                creation =
                    std::make_unique<TEdcDrawCreation>(Creation(EDC_TlRECT, AgPOINT(1, 1), AgPOINT(2, 3)));
                made = NULL;
                if (what == COPY) {
                    layer.Select(layer.LnkFirst(), true, NULL);
                    layer.SetFocus(layer.LnkFirst(), NULL);
                }
            },
            [&] {
                if (what == RELOAD)
                    layer.Reload(NULL);
                if (what == CREATE)
                    made = layer.CreateSprite(*creation);
                if (what == COPY) {
                    TEdcDrawDrag drag;
                    drag.mode = EDC_DRAWDRAGMOVE | EDC_DRAWDRAGCOPY;
                    drag.shift = AgVECTOR(1, 1);
                    static_cast<TZulZoneSprite *>(layer.LnkFirst())->Apply(drag);
                }
            },
            [&](const FaultRun &run) {
                int more = what == RELOAD || run.code != XNULL ? 0 : 1;
                EXPECT_EQ(set->Count(), 3 + more) << what << " " << run.n;
                if (made != NULL && made->layer == NULL)
                    layer.Add(made);
                if (what == RELOAD) {
                    EXPECT_LE(layer.CountLnk(), 3);
                    EXPECT_EQ(run.code == XNULL, layer.CountLnk() == 3);
                } else {
                    EXPECT_EQ(layer.CountLnk(), 3 + more);
                }
                for (size_t i = 0; i < Sprites().size(); ++i)
                    EXPECT_NE(Sprites()[i]->Object(), nullptr);
            });
        EXPECT_GT(runs, 0) << what;
    }
}

// The pictogram

TEST_F(Zones, StackAPersonInTheProportionsOfATwentyFourthOfItsSize)
{
    const struct {
        int size, dpiX, dpiY;   // px, px/in
        TRect head, body, legs; // px
    } table[] = {
        {24, 96, 96, {-2, -12, 3, -8}, {-4, -7, 5, 1}, {-2, 1, 3, 12}},
        {36, 144, 144, {-3, -17, 4, -11}, {-6, -10, 7, 2}, {-3, 2, 4, 18}},
        {48, 192, 192, {-4, -24, 5, -16}, {-8, -14, 9, 2}, {-4, 2, 5, 24}},
        {150, 600, 600, {-12, -74, 13, -49}, {-25, -43, 26, 7}, {-15, 7, 16, 75}},
        {0, 96, 96, {-1, -6, 2, -3}, {-2, -2, 3, 2}, {-1, 2, 2, 7}}, // never smaller than this
        {-5, 96, 96, {-1, -6, 2, -3}, {-2, -2, 3, 2}, {-1, 2, 2, 7}},
        {24, 192, 96, {-4, -12, 5, -8}, {-8, -7, 9, 1}, {-4, 1, 5, 12}}, // twice as wide
        {24, 48, 96, {-1, -12, 2, -8}, {-2, -7, 3, 1}, {-1, 1, 2, 12}},
        {24, 72, 96, {-1, -12, 2, -8}, {-3, -7, 4, 1}, {-1, 1, 2, 12}}, // 3, 6 and 4 px
    };
    for (const auto &row : table) {
        SCOPED_TRACE(std::to_string(row.size) + " at " + std::to_string(row.dpiX));
        WideDC device(row.dpiX, row.dpiY);
        layer.SetPerson(row.size);
        layer.Layout(device);
        EXPECT_EQ(layer.personHead, row.head);
        EXPECT_EQ(layer.personBody, row.body);
        EXPECT_EQ(layer.personLegs, row.legs);
        EXPECT_EQ(layer.PersonHeight(), row.legs.bottom - row.head.top);
    }
}

TEST_F(Zones, HaveAPersonOfAMiddlePixelAndOnePieceAtEverySize)
{
    for (int dpi : {72, 96, 120, 144, 300, 600, 1200})
        for (int percent : {50, 80, 100, 125, 200})
            for (int size = 0; size < 400; size += 7) {
                WideDC device(dpi * percent / 100, dpi);
                layer.SetPerson(size);
                layer.Layout(device);
                int gap = layer.personBody.top - layer.personHead.bottom;
                EXPECT_EQ(gap, std::max(size / 24, 1));
                EXPECT_EQ(layer.personLegs.top, layer.personBody.bottom);
                EXPECT_LE(std::abs(layer.personHead.top + layer.personLegs.bottom), 1) << "round its middle";
                for (const TRect &part : {layer.personHead, layer.personBody, layer.personLegs}) {
                    EXPECT_EQ(part.left, 1 - part.right) << "the same on both sides of pixel 0";
                    EXPECT_GT(part.Width(), 0);
                }
                EXPECT_GE(layer.personBody.Width(), layer.personHead.Width());
                EXPECT_GE(layer.personBody.Width(), layer.personLegs.Width());
            }
}

TEST_F(Zones, AreSizedToAQuarterOfAnInchAtTheViewsScale)
{
    for (double scale : {0.5, 1.0, 2.5}) {
        WideDC device(96, 192);
        ZulSizePerson(layer, device, scale);
        layer.Layout(device);
        TRect legs = layer.personLegs;
        layer.SetPerson(static_cast<int>(std::lround(48 * scale)));
        layer.Layout(device);
        EXPECT_EQ(layer.personLegs, legs) << scale;
    }
}

/// From the first corner towards the inside, turned as the zone is.
TPoint Inwards(const TZulZoneSprite &spr, double reach)
{
    double x = spr.Size().x < 0 ? -1 : 1;
    double y = spr.Size().y < 0 ? -1 : 1;
    POINT way = POINT(x, y) * std::sqrt(0.5) * std::polar(1.0, spr.RectAngle()) * reach;
    return {static_cast<int>(std::lround(way.real())), static_cast<int>(std::lround(-way.imag()))};
}

TEST_F(Zones, ShowThePersonInsideTheirFirstCornerWhateverTheirSidesAndTurn)
{
    for (double w : {8.0, -8.0, 0.0})
        for (double h : {6.0, -6.0, 0.0})
            for (int turn = -180; turn < 180; turn += 15) {
                SCOPED_TRACE(std::to_string(w) + " " + std::to_string(h) + " " + std::to_string(turn));
                TZulZoneSprite *spr = Alone(AgPOINT(10, 10), w, h, turn * DEGREE);
                POINT corner = POINT(10, 10) + POINT(-w / 2, -h / 2) * std::polar(1.0, turn * DEGREE);
                TPoint first = plainAxes.Pixel(corner);
                TPoint wanted = first + Inwards(*spr, layer.PersonHeight());
                TPoint at = PersonOf(*spr);
                EXPECT_LE(std::abs(at.x - wanted.x), 1);
                EXPECT_LE(std::abs(at.y - wanted.y), 1);
            }
}

TEST_F(Zones, MoveThePersonAsideAsFarAsTheDevicesPixelsAreNarrow)
{
    TZulZoneSprite *spr = Alone(AgPOINT(10, 10), 8, 6);
    TPoint before = PersonOf(*spr) - Px(AgPOINT(6, 7));
    WideDC narrow(192, 96);
    LayOutZones(&narrow);
    TPoint after = PersonOf(*spr) - Px(AgPOINT(6, 7));
    EXPECT_EQ(before, (TPoint{17, -17}));
    EXPECT_EQ(after, (TPoint{34, -17})); // 24 * 0.7071 * 2
}

// Hitting

TEST_F(Zones, AreHitOnTheFrameAndNotInside)
{
    TZulZoneSprite *spr = Alone(AgPOINT(10, 10), 16, 12); // 40 to 200 and 140 to 260 px
    const struct {
        TPoint at;
        bool hit;
        const char *what;
    } table[] = {
        {{120, 200}, false, "the middle"},
        {{40, 200}, true, "the left side"},
        {{200, 200}, true, "the right side"},
        {{120, 260}, true, "the lower side"},
        {{120, 140}, true, "the upper side"},
        {{40, 260}, true, "a corner"},
        {{200, 140}, true, "the opposite corner"},
        {{38, 200}, true, "within the tolerance outside"},
        {{42, 200}, true, "within the tolerance inside"},
        {{36, 200}, false, "beyond it outside"},
        {{44, 200}, false, "beyond it inside"},
        {{120, 262}, true, "below"},
        {{120, 264}, false, "too far below"},
        {{120, 142}, true, "inside of the upper side"},
        {{120, 144}, false, "too far inside"},
    };
    for (const auto &row : table)
        EXPECT_EQ(spr->HitTest(row.at), row.hit) << row.what;
}

TEST_F(Zones, AreHitOnTheirPersonLeftAndTopInclusive)
{
    TZulZoneSprite *spr = Alone(AgPOINT(10, 10), 16, 12);
    TPoint at = PersonOf(*spr);
    ASSERT_EQ(at, (TPoint{57, 243})); // 17 px into the corner at 40,260
    for (int dy = -22; dy <= 12; ++dy)
        for (int dx = -12; dx <= 22; ++dx) {
            bool hit = dx >= -17 && dx < 17 && dy >= -17 && dy < 17;
            EXPECT_EQ(spr->HitTest({at.x + dx, at.y + dy}), hit) << dx << "," << dy;
        }
}

TEST_F(Zones, OfNoExtentCanStillBeSeenAndPicked)
{
    TZulZoneSprite *spr = Alone(AgPOINT(10, 10), 0, 0);
    EXPECT_TRUE(spr->HitTest({120, 200}));
    EXPECT_TRUE(spr->HitTest({122, 198}));
    dc.calls.clear();
    spr->Paint(dc);
    EXPECT_TRUE(dc.calls.starts_with("Polygon 120,200 120,200 120,200 120,200 121,200 ")) << dc.calls;
}

TEST_F(Zones, LeaveWhatLiesInsideToTheMouse)
{
    Put(AgPOINT(10, 10), 4, 2);
    Put(AgPOINT(10, 10), 16, 12); // on top of it
    layer.Reload(NULL);
    LayOutZones();
    Play("L+80,200 L-80,200");
    EXPECT_EQ(layer.CountSel(), 0) << "between the frames";
    Play("L+100,195 L-100,195");
    EXPECT_EQ(layer.Focus(), Sprites()[0]) << "the frame of the inner one";
    Play("L+40,180 L-40,180");
    EXPECT_EQ(layer.Focus(), Sprites()[1]) << "the frame of the outer one";
    Play("L+100,180 L-100,180 L+56,244 L-56,244");
    EXPECT_EQ(layer.Focus(), Sprites()[1]) << "its person";
    EXPECT_EQ(layer.CountSel(), 1);
}

// Editing

TEST_F(Zones, AreMovedTurnedCopiedAndReshapedByTheMouse)
{
    const struct {
        const char *events;
        std::vector<std::string> places; // of the set
    } table[] = {
        {"L+40,200 M60,190 L-60,190", {"12,11 16x12 0"}},
        {"L+40,200 cM60,190 cL-60,190", {"10,10 16x12 0", "12,11 16x12 0"}},
        {"L+40,200 sM60,190 sL-60,190", {"12,10 16x12 0"}},
        {"R+200,200 M201,200 sM120,80 sR-120,80", {"10,10 16x12 90"}},
        {"L+40,200 L-40,200 L+200,140 M220,120 L-220,120", {"11,11 18x14 0"}},
        {"L+40,200 L-40,200 L+200,140 M20,280 L-20,280", {"1,3 -2x-2 0"}},
        {"L+40,200 M60,190 R+60,190", {"10,10 16x12 0"}}, // taken back
        {"L+40,200 M60,190 O+ L-60,190", {"10,10 16x12 0"}},
    };
    for (const auto &row : table) {
        SCOPED_TRACE(row.events);
        Alone(AgPOINT(10, 10), 16, 12);
        Play(row.events);
        std::vector<std::string> places;
        for (const EmZONE *zone : InSet())
            places.push_back(PlaceOf(*zone));
        EXPECT_EQ(places, row.places);
        bool same = places == std::vector<std::string>{"10,10 16x12 0"};
        EXPECT_EQ(doc.modified, !same);
        for (TZulZoneSprite *spr : Sprites())
            EXPECT_EQ(spr->Centre(), spr->Object()->pos);
    }
}

TEST_F(Zones, DoNothingAtADoubleClickAndHaveNoPropertiesToOpen)
{
    TZulZoneSprite *spr = Alone(AgPOINT(10, 10), 16, 12);
    std::string bare = PlaceOf(*spr->Object());
    Play("L+40,200 L-40,200 LL40,200 L-40,200"); // a box would be unexpected
    EXPECT_EQ(layer.Focus(), spr);
    TCommandEnabler open(EDC_CmOPEN);
    layer.CommandEnable(open);
    EXPECT_TRUE(open.IsAnswered());
    EXPECT_FALSE(open.IsEnabled());
    for (int id : {int{EDC_CmLOCATE}, int{EDC_CmALIGN}, int{EDC_CmDELETE}}) {
        TCommandEnabler other(id);
        layer.CommandEnable(other);
        EXPECT_TRUE(other.IsEnabled()) << id;
    }
    EXPECT_TRUE(layer.Command(EDC_CmOPEN)) << "nobody else gets it";
    EXPECT_EQ(PlaceOf(*spr->Object()), bare);
    EXPECT_FALSE(doc.modified);
    EXPECT_EQ(set->Count(), 1);
}

// Painting

TEST_F(Zones, ArePaintedAsAFrameWithAPersonInTheColourOfTheirState)
{
    TZulZoneSprite *spr = Alone(AgPOINT(10, 10), 16, 12);
    for (const LOOK &look : looks) {
        Look(*spr, look);
        dc.calls.clear();
        spr->Paint(dc);
        std::string solid = std::string(" pen ") + look.line + " brush " + look.line + "\n";
        std::string expected =
            std::string("Polygon 40,260 200,260 200,140 40,140 40,260 pen ") + look.line + " 2 brush none\n";
        expected += "Ellipse 55,231,60,235" + solid;
        expected += "Rect 53,236,62,244" + solid;
        expected += "Rect 55,244,60,255" + solid;
        EXPECT_EQ(dc.calls, expected) << look.name;
    }
    Look(*spr, looks[1]);
}

TEST_F(Zones, HaveAFrameOfATwentyFourthOfThePersonsHeight)
{
    for (const auto &[size, width] : {std::pair{0, 2}, {24, 2}, {71, 2}, {72, 3}, {150, 6}}) {
        layer.SetPerson(size);
        TZulZoneSprite *spr = Alone(AgPOINT(10, 10), 16, 12);
        ASSERT_EQ(std::max(layer.PersonHeight() / 24, 2), width);
        spr->Paint(dc);
        EXPECT_NE(dc.calls.find(" pen 0000ff " + std::to_string(width) + " brush none"), std::string::npos)
            << dc.calls;
    }
}

TEST_F(Zones, ArePrintedAsIfNobodyWorkedOnThem)
{
    TZulZoneSprite *spr = Alone(AgPOINT(10, 10), 16, 12);
    layer.Select(spr, true, NULL);
    layer.SetFocus(spr, NULL);
    uint16_t before = spr->state;
    dc.calls.clear();
    layer.PaintPlain(dc, {0, 0, 300, 300});
    EXPECT_EQ(spr->state, before);
    EXPECT_NE(dc.calls.find("pen 000000"), std::string::npos);
    EXPECT_EQ(dc.calls.find("00ff"), std::string::npos) << "neither blue nor green";
    EXPECT_EQ(dc.calls.find("Invert"), std::string::npos) << "no handles";
    layer.Paint(dc, {0, 0, 300, 300});
    EXPECT_NE(dc.calls.find("Invert"), std::string::npos);
}

TEST_F(Zones, LeaveNoTraceOfTheirGhost)
{
    TZulZoneSprite *spr = Alone(AgPOINT(10, 10), 16, 12, 0.3);
    TEdcDrawDrag drag;
    drag.mode = EDC_DRAWDRAGMOVE | EDC_DRAWDRAGROTATE;
    drag.shift = AgVECTOR(1, 2);
    drag.pivot = AgPOINT(10, 10);
    drag.angle = 0.7;
    ExpectGhost(*spr, drag, layer);
}

TEST_F(Zones, AsFarAndAsLargeAsAHallCanHoldThemArePaintedAndHit)
{
    const double far[] = {0, 1, -3, 10000, -1e7, 1e15};
    for (double x : far)
        for (double size : far) {
            TZulZoneSprite *spr = Alone(AgPOINT(x, -x), size, size / 3, 1);
            spr->Paint(dc);
            spr->HitTest({120, 200});
            EXPECT_TRUE(dc.calls.starts_with("Polygon ")) << x << " " << size;
        }
}
} // namespace
