// Openings on a plan: the record that dialogs share with them, the layer and its sprites over the set of a
// surface, how they are placed, drawn, hit, dragged, painted and deleted.
#include "zulholecase.h"

#include <algorithm>
#include <cmath>

namespace
{
using plain::POINT;

// The record

using HoleRecord = HoleCase;

TEST_F(HoleRecord, OfAResetHasNothingButABoxThatIsOff)
{
    TZulHoleData data;
    HOLEVALUES nothing = holeUndefined;
    nothing[OWN_TEMP] = "0";
    EXPECT_EQ(ValuesOf(data), nothing);
    EXPECT_EQ(data.target, nullptr);
    EmHOLE hole;
    SetHole(hole, holeOnes);
    data.Exchange(EDC_XLOAD, hole);
    data.target = set;
    data.Reset();
    EXPECT_EQ(ValuesOf(data), nothing);
    EXPECT_EQ(data.target, nullptr);
}

TEST_F(HoleRecord, LoadsEveryFieldOfAnOpening)
{
    for (unsigned others : Subsets(HOLE_FIELDS)) {
        EmHOLE hole;
        SetHole(hole, MixedHole(others));
        TZulHoleData data;
        data.Exchange(EDC_XLOAD, hole);
        EXPECT_EQ(ValuesOf(data), MixedHole(others));
        EXPECT_EQ(ValuesOf(hole), MixedHole(others)) << "the opening stays";
    }
}

/// A record with the other values in the fields of `defined` and nothing in the rest.
TZulHoleData OthersIn(unsigned defined)
{
    EmHOLE hole;
    SetHole(hole, holeOthers);
    TZulHoleData data;
    data.Exchange(EDC_XLOAD, hole);
    TEdcValue *const fields[] = {&data.description, &data.transmission, &data.width,
                                 &data.height,      &data.ownTemp,      &data.externalTemp};
    for (size_t i = 0; i < HOLE_FIELDS; ++i)
        if (!Has(defined, i))
            fields[i]->id = EDC_VUDF;
    return data;
}

TEST_F(HoleRecord, StoresWhatIsDefinedAndLeavesTheRest)
{
    for (unsigned defined : Subsets(HOLE_FIELDS)) {
        EmHOLE hole;
        SetHole(hole, holeOnes);
        TZulHoleData data = OthersIn(defined);
        data.Exchange(EDC_XSTORE, hole);
        EXPECT_EQ(ValuesOf(hole), MixedHole(defined)) << defined;
    }
}

TEST_F(HoleRecord, MergesToWhatOpeningsHaveInCommon)
{
    for (unsigned differing : Subsets(HOLE_FIELDS)) {
        EmHOLE first, second;
        SetHole(first, holeOnes);
        SetHole(second, MixedHole(differing));
        TZulHoleData data;
        data.Exchange(EDC_XLOAD, first);
        data.Exchange(EDC_XMERGE, second);
        data.Exchange(EDC_XMERGE, first); // what differed once stays undefined
        HOLEVALUES expected = holeOnes;
        for (size_t i = 0; i < HOLE_FIELDS; ++i)
            if (Has(differing, i))
                expected[i] = "?";
        EXPECT_EQ(ValuesOf(data), expected) << differing;
    }
}

TEST_F(HoleRecord, IsNotChangedByAMatchNorChangesAnything)
{
    for (unsigned differing : Subsets(HOLE_FIELDS)) {
        EmHOLE first, second;
        SetHole(first, holeOnes);
        SetHole(second, MixedHole(differing));
        TZulHoleData data;
        data.Exchange(EDC_XLOAD, first);
        data.Exchange(EDC_XMATCH, second);
        EXPECT_EQ(ValuesOf(data), holeOnes);
        EXPECT_EQ(ValuesOf(second), MixedHole(differing));
    }
}

TEST_F(HoleRecord, HasNumbersWithoutTheNoiseOfSums)
{
    EmHOLE noisy, clean;
    noisy.size = AgPOINT(0.1 + 0.2, 1.1 + 2.2);
    noisy.constr.k = 0.7 + 0.1;
    noisy.constr.tExt = -0.1 - 0.2;
    clean.size = AgPOINT(0.3, 3.3);
    clean.constr.k = 0.8;
    clean.constr.tExt = -0.3;
    TZulHoleData data;
    data.Exchange(EDC_XLOAD, noisy);
    data.Exchange(EDC_XMERGE, clean);
    EXPECT_EQ(data.width.value, 0.3);
    EXPECT_EQ(data.height.value, 3.3);
    EXPECT_EQ(data.transmission.value, 0.8);
    EXPECT_EQ(data.externalTemp.value, -0.3);
    EXPECT_EQ(ValuesOf(data), (HOLEVALUES{"", "0.8", "0.3", "3.3", "0", "-0.3"}));
}

TEST_F(HoleRecord, ChangesOneOfTheFlagsOnly)
{
    EmHOLE hole;
    TZulHoleData data;
    for (int flags : {0, 1, 6, 7, -1, -2}) {
        hole.flags = flags;
        data.Exchange(EDC_XLOAD, hole);
        EXPECT_EQ(data.ownTemp.value, flags & 1);
        for (int own : {0, 1}) {
            data.ownTemp.Set(own);
            data.Exchange(EDC_XSTORE, hole);
            EXPECT_EQ(hole.flags, (flags & ~1) | own);
        }
        data.ownTemp.id = EDC_VUDF;
        data.Exchange(EDC_XSTORE, hole);
        EXPECT_EQ(hole.flags, flags | 1) << "as it was stored last";
    }
}

TEST_F(HoleRecord, TellsDescriptionsApartByEveryCharacter)
{
    const struct {
        const char *one, *other;
        bool same;
    } rows[] = {{"Tor", "Tor", true}, {"Tor", "tor", false},      {"Tor", "Tor ", false},     {"", "", true},
                {"", "Tor", false},   {"T\xFCr", "T\xFCr", true}, {"T\xFCr", "T\xDCr", false}};
    for (const auto &row : rows) {
        EmHOLE first, second;
        StrCopy(first.description, row.one, sizeof first.description);
        StrCopy(second.description, row.other, sizeof second.description);
        TZulHoleData data;
        data.Exchange(EDC_XLOAD, first);
        data.Exchange(EDC_XMERGE, second);
        EXPECT_EQ(data.description.id == EDC_VVAL, row.same) << row.one << "|" << row.other;
    }
}

TEST_F(HoleRecord, HoldsTheLongestDescription)
{
    std::string longest(sizeof(EmHOLE::description) - 1, '\xE4');
    EmHOLE hole, copy;
    StrCopy(hole.description, longest.c_str(), sizeof hole.description);
    TZulHoleData data;
    data.Exchange(EDC_XLOAD, hole);
    data.Exchange(EDC_XSTORE, copy);
    EXPECT_EQ(copy.description, longest);
}

// The layer and its sprites

using Holes = HoleCase;

TEST_F(Holes, AreALayerOfTheirOwnThatIsShownPrintedAndEdited)
{
    EXPECT_EQ(layer.Id(), 3001);
    EXPECT_EQ(layer.Options(), 7);
    EXPECT_STREQ(GetResString(3001), "\nWahl der Bau\xF6"
                                     "ffnungsschicht");
    Put(AgPOINT(1, 1), 1, 1);
    Show();
    EXPECT_EQ(First()->Type(), 3003);
}

TEST_F(Holes, StopAtWhatOnlyAFaultOfTheProgramCanBring)
{
    const char *const file = "usr/zulhole.cpp";
    TZulHoleSprite *spr = Alone(AgPOINT(5, 5), 2, 1);
    FillStock();
    TEdcDrawCreation creation = Creation(ZUL_HOLE, AgPOINT(1, 1), AgPOINT(2, 2));
    auto stops = [&](const char *condition, const char *where, const std::function<void()> &body) {
        EXPECT_TRUE(AbortsOnAssertion(condition, where, [&] { RemoveServices(), body(); })); // without boxes
    };
    stops("aHoleSet != NULL", file, [&] { TZulHoleLayer none(NULL, &axes); });
    stops("aAxes != NULL", "usr/edcdraw.cpp", [&] { TZulHoleLayer none(set, NULL); });
    stops("object != NULL", file, [&] { TZulHoleSprite none(static_cast<EmHOLE *>(NULL)); });
    stops("creation.type == ZUL_HOLE", file, [&] {
        creation.type = ZUL_ZONE;
        TZulHoleSprite none(creation);
    });
    stops("params != NULL", file, [&] {
        creation.stock = NULL;
        TZulHoleSprite none(creation);
    });
    for (int what : {0, 1, 2})
        stops("holeObj != NULL", file, [&] {
            spr->Discard();
            what == 0 ? spr->Discard() : what == 1 ? spr->Reload(NULL) : spr->Store();
        });
    stops("hole.holeObj != NULL", file, [&] {
        spr->Discard();
        TZulHoleSprite copy(*spr);
    });
    stops("ly != NULL", file, [&] {
        layer.Remove(spr);
        spr->Paint(dc);
    });
    stops("name != NULL && size >= 0", "usr/zulmark.cpp", [&] { layer.SetFont(NULL, 1); });
    stops("name != NULL && size >= 0", "usr/zulmark.cpp", [&] { layer.SetFont("Arial", -1); });
}

TEST_F(Holes, GetASpriteEachInTheOrderOfTheSet)
{
    for (int i = 0; i < 5; ++i)
        Put(AgPOINT(i, 2 * i), 1 + i, 2, i * 0.1);
    layer.Reload(NULL);
    layer.Reload(NULL); // anew, not once more
    ASSERT_EQ(layer.CountLnk(), 5);
    for (size_t i = 0; i < 5; ++i) {
        const TZulHoleSprite &spr = *Sprites()[i];
        const EmHOLE &hole = *InSet()[i];
        EXPECT_EQ(spr.Object(), &hole);
        EXPECT_EQ(spr.Size(), hole.size);
        EXPECT_EQ(spr.Centre(), hole.pos);
        EXPECT_EQ(spr.RectAngle(), hole.rotation);
    }
    EXPECT_EQ(set->Count(), 5) << "the openings are not the sprites'";
    EXPECT_FALSE(doc.modified) << "nothing of the hall has changed";
    layer.DeleteAll(false);
    EXPECT_EQ(set->Count(), 5);
}

TEST_F(Holes, AreStoredWithoutTheSignsOfTheirSides)
{
    for (double w : {4.0, -4.0, 0.0})
        for (double h : {2.0, -2.0, 0.0}) {
            FillStock();
            set->Clear();
            layer.Reload(NULL);
            TEdcDrawCreation creation = Creation(ZUL_HOLE, AgPOINT(10, 10), AgPOINT(10 + w, 10 + h));
            doc.modified = false;
            auto *spr = new TZulHoleSprite(creation);
            layer.Add(spr);
            const EmHOLE &hole = *set->First();
            EXPECT_EQ(hole.size, AgPOINT(std::fabs(w), std::fabs(h)));
            EXPECT_EQ(hole.pos, AgPOINT(10 + w / 2, 10 + h / 2));
            EXPECT_EQ(hole.rotation, 0);
            EXPECT_EQ(spr->Size(), AgPOINT(w, h)) << "the drawn one keeps its direction";
            spr->Reload(NULL);
            EXPECT_EQ(spr->Size(), hole.size);
            EXPECT_TRUE(doc.modified);
        }
}

TEST_F(Holes, AreMadeBehindTheOthersWithTheParametersThatWereStated)
{
    Put(AgPOINT(1, 1), 1, 1);
    Show();
    FillStock();
    TZulHoleSprite spr(Creation(ZUL_HOLE, AgPOINT(3, 2), AgPOINT(8, 4)));
    EXPECT_EQ(spr.Object(), InSet().back());
    EXPECT_EQ(set->Count(), 2);
    HOLEVALUES expected = holeOnes;
    expected[WIDTH] = "5"; // what was drawn wins
    expected[HEIGHT] = "2";
    EXPECT_EQ(ValuesOf(*spr.Object()), expected);
    EXPECT_EQ(PlaceOf(*spr.Object()), "5.5,3 5x2 0");
    EXPECT_TRUE(doc.modified);
    EXPECT_EQ(spr.Object()->constr.alpha, 8) << "the kernel's own coefficient";
}

TEST_F(Holes, AreCopiedBehindTheirSource)
{
    for (int i = 0; i < 3; ++i)
        Put(AgPOINT(i, 0), 1, 2, 0.25);
    SetHole(*InSet()[1], holeOnes);
    Show();
    const EmHOLE *source = InSet()[1];
    TZulHoleSprite *copy = Sprites()[1]->Clone();
    ASSERT_EQ(set->Count(), 4);
    EXPECT_EQ(copy->Object(), InSet()[2]);
    EXPECT_EQ(InSet()[1], source);
    EXPECT_EQ(ValuesOf(*copy->Object()), holeOnes);
    EXPECT_EQ(PlaceOf(*copy->Object()), PlaceOf(*source));
    EXPECT_EQ(copy->Type(), 3003);
    EXPECT_EQ(copy->layer, nullptr);
    EXPECT_TRUE(doc.modified);
    copy->Discard();
    delete copy;
    EXPECT_EQ(set->Count(), 3);
}

TEST_F(Holes, GoWithTheirSpriteWhereItIsDiscarded)
{
    for (int i = 0; i < 3; ++i)
        Put(AgPOINT(i, 0), 1, 1);
    Show();
    EmHOLE *first = InSet()[0];
    EmHOLE *third = InSet()[2];
    layer.Select(Sprites()[1], true, NULL);
    EXPECT_TRUE(layer.Command(EDC_CmDELETE));
    EXPECT_EQ(InSet(), (std::vector<EmHOLE *>{first, third}));
    EXPECT_EQ(layer.CountLnk(), 2);
    EXPECT_TRUE(doc.modified);
}

std::string Labels(const std::vector<TZulHoleSprite *> &sprites)
{
    std::string text;
    for (const TZulHoleSprite *spr : sprites)
        text += std::string(spr->label.Text()) + " ";
    return text;
}

TEST_F(Holes, AreNumberedAnewAtEachLayout)
{
    for (int i = 0; i < 3; ++i)
        Put(AgPOINT(i, 0), 1, 1);
    layer.Reload(NULL);
    EXPECT_EQ(Labels(Sprites()), "   ");
    LayOut(layer);
    EXPECT_EQ(Labels(Sprites()), "1 2 3 ");
    layer.Delete(Sprites()[1], true);
    EXPECT_EQ(Labels(Sprites()), "1 3 ") << "until the next layout";
    LayOut(layer);
    EXPECT_EQ(Labels(Sprites()), "1 2 ");
    TZulHoleSprite *copy = First()->Clone(); // second in the set, last to be made
    layer.Add(copy);
    layer.SelectAll(true, NULL); // the order of painting does not matter
    layer.RepaintSprite(First(), NULL);
    LayOut(layer);
    EXPECT_EQ(Labels(Sprites()), "1 2 3 ");
    EXPECT_STREQ(copy->label.Text(), "3");
    layer.Reload(NULL);
    LayOut(layer);
    EXPECT_EQ(Labels(Sprites()), "1 2 3 ");
    EXPECT_EQ(Sprites()[1]->Object(), InSet()[1]) << "now in the order of the set";
}

TEST_F(Holes, HaveAMarkerForTheDigitsOfTheirNumber)
{
    const struct {
        int count, font;
        int x, y; // px
    } rows[] = {{1, 10, 3, 5},  {9, 10, 3, 5},    {10, 10, 5, 5}, {99, 10, 5, 5}, {100, 10, 7, 5},
                {1, 25, 8, 12}, {10, 25, 13, 12}, {1, 1, 0, 0},   {1, 0, 0, 0}};
    for (const auto &row : rows) {
        set->Clear();
        for (int i = 0; i < row.count; ++i)
            Put(AgPOINT(5, 5), 1, 1);
        layer.Reload(NULL);
        layer.SetFont("Arial", row.font);
        EXPECT_GE(doc.obsolete, EDC_LAYOUT);
        LayOut(layer);
        EXPECT_EQ(layer.markerX, row.x) << row.count << " " << row.font;
        EXPECT_EQ(layer.markerY, row.y) << row.count << " " << row.font;
    }
}

// Painting

TEST_F(Holes, ArePaintedAsAHatchedRectangleWithTheirNumber)
{
    Alone(AgPOINT(10, 10), 4, 2);
    for (const LOOK &look : looks) {
        std::string l = look.line;
        std::string expected = "Polygon 100,210 140,210 140,190 100,190 100,210 pen " + l +
                               " brush hatch bdiagonal " + l + "\nRect 117,195,123,205 pen " + l + " brush " +
                               look.fill + "\n" + LabelText(1, {120, 200}, look.line);
        Look(*First(), look);
        dc.SetOpaque(true);
        dc.SetMix(WIN_MIX_XOR); // whatever was drawn before
        First()->Paint(dc);
        EXPECT_EQ(TakeCalls(), expected) << look.name;
    }
}

TEST_F(Holes, ArePrintedAsIfIdle)
{
    Alone(AgPOINT(10, 10), 4, 2, 0.3);
    Look(*First(), looks[0]);
    First()->Paint(dc);
    std::string idle = TakeCalls();
    for (const LOOK &look : looks) {
        Look(*First(), look);
        uint16_t state = First()->state;
        First()->PaintPlain(dc);
        EXPECT_EQ(TakeCalls(), idle) << look.name;
        EXPECT_EQ(First()->state, state);
    }
}

TEST_F(Holes, ArePaintedWhereTheyStandTurnedAnyWay)
{
    CHANCE chance(5);
    for (int round = 0; round < 300; ++round) {
        Alone(AgPOINT(chance.Real(-5, 25), chance.Real(-5, 25)), chance.Real(0, 9), chance.Real(0, 9),
              chance.Real(-3.1, 3.1));
        First()->Paint(dc);
        std::string outline =
            "Polygon" + PointsText(plain::Outline(ShapeOf(*set->First()), plainAxes)) + " pen";
        EXPECT_TRUE(TakeCalls().starts_with(outline)) << round << " " << outline;
    }
}

// Hits

TEST_F(Holes, AreHitInsideWithinTheToleranceAndOnTheirMarker)
{
    CHANCE chance(6);
    int hits = 0;
    int byMarker = 0;
    for (int round = 0; round < 400; ++round) {
        double largest = round % 4 == 0 ? 0.5 : 9;
        Alone(AgPOINT(chance.Real(0, 25), chance.Real(0, 25)), chance.Real(0, largest), chance.Real(0, largest),
              chance.Real(-3.1, 3.1));
        plain::SHAPE shape = ShapeOf(*set->First());
        TPoint middle = plainAxes.Pixel(shape.centre);
        for (int i = 0; i < 100; ++i) {
            TPoint at = middle + TPoint{chance.Int(-60, 60), chance.Int(-60, 60)};
            if (i % 2)
                at = middle + TPoint{chance.Int(-6, 6), chance.Int(-8, 8)};
            TPoint away = at - middle;
            bool marker = away.x >= -3 && away.x < 3 && away.y >= -5 && away.y < 5;
            plain::MEETS meets = plain::Meets(shape, plainAxes, TOLERANCE, at);
            if (meets == plain::DOUBTFUL && !marker)
                continue;
            bool expected = marker || meets == plain::HITS;
            ASSERT_EQ(First()->HitTest(at), expected) << round << " " << at.x << "," << at.y;
            hits += expected;
            byMarker += expected && meets == plain::MISSES;
        }
    }
    EXPECT_GT(hits, 1000);
    EXPECT_GT(byMarker, 100);
}

TEST_F(Holes, CanBePickedInside)
{
    TZulHoleSprite *spr = Alone(AgPOINT(10, 10), 8, 6);
    EXPECT_TRUE(spr->HitTest({100, 180})) << "neither on the frame nor on the marker";
    FillStock();
    auto *made =
        static_cast<TZulHoleSprite *>(layer.CreateSprite(Creation(EDC_TlRECT, AgPOINT(2, 2), AgPOINT(8, 8))));
    ASSERT_NE(made, nullptr);
    layer.Add(made);
    LayOut(layer);
    EXPECT_TRUE(made->HitTest(Px(AgPOINT(3, 7))));
}

TEST_F(Holes, OfTheFocusAreHitOnTheirHandlesToo)
{
    TZulHoleSprite *spr = Alone(AgPOINT(10, 10), 4, 2, 0.4);
    plain::SHAPE shape = ShapeOf(*set->First());
    TPoint corner = plain::Outline(shape, plainAxes)[2];
    const TPoint beyond = corner + TPoint{2, -3}; // within the handle, beyond the reach of a side
    ASSERT_EQ(plain::Meets(shape, plainAxes, TOLERANCE, beyond), plain::MISSES);
    EXPECT_FALSE(spr->HitTest(beyond));
    Choose(layer, spr);
    EXPECT_TRUE(spr->HitTest(beyond));
}

TEST_F(Holes, LieInARubberBandThatHoldsThemWhole)
{
    TZulHoleSprite *spr = Alone(AgPOINT(10, 10), 4, 2);
    EXPECT_TRUE(spr->InRect({100, 190, 141, 211}));
    EXPECT_FALSE(spr->InRect({101, 190, 141, 211}));
    EXPECT_FALSE(spr->InRect({100, 191, 141, 211}));
    EXPECT_FALSE(spr->InRect({100, 190, 140, 211}));
    EXPECT_FALSE(spr->InRect({100, 190, 141, 210}));
}

// Drags

struct DRAG {
    const char *name;
    double angle; // degrees
    const char *events;
    const char *places; // behind it, in the order of the set
};
const DRAG drags[] = {
    {"a move", 0, "L+120,190 M125,185 M130,180 L-130,180", "11,11 4x2 0"},
    {"a move comes onto the grid", 0, "L+120,190 M133,178 L-133,178", "11.5,11 4x2 0"},
    {"a move with Shift", 0, "L+120,190 sM150,180 sL-150,180", "13,10 4x2 0"},
    {"a copy", 0, "L+120,190 cM120,140 cL-120,140", "10,10 4x2 0;10,15 4x2 0"},
    {"a copy with Shift", 90, "L+120,190 scM170,180 scL-170,180", "10,10 4x2 90;15,10 4x2 90"},
    {"a turn", 0, "R+130,200 M135,200 M120,180 R-120,180", "10,10 4x2 90"},
    {"a turn by steps of 5 degrees", 0, "R+130,200 M135,200 M150,186 R-150,186", "10,10 4x2 25"},
    {"a turn with Shift", 0, "R+130,200 sM135,200 sM130,180 sR-130,180", "10,10 4x2 90"},
    {"a turn to where the pointer is", 30, "R+130,200 cM130,199 cM150,170 cR-150,170", "10,10 4x2 45"},
    {"a turn by half a circle is positive", 0, "R+130,200 M135,200 M90,200 R-90,200", "10,10 4x2 180"},
    {"a drag that is taken back", 0, "L+120,190 M160,150 R+160,150 R-160,150", "10,10 4x2 0"},
    {"a drop outside", 0, "L+120,190 M160,150 O+ L-160,150", "10,10 4x2 0"},
};

TEST_F(Holes, AreMovedCopiedAndTurnedByTheMouse)
{
    for (const DRAG &drag : drags) {
        SCOPED_TRACE(drag.name);
        Alone(AgPOINT(10, 10), 4, 2, drag.angle * DEGREE);
        bool changes = std::string(drag.places) != PlaceOf(*set->First());
        Play(drag.events);
        EXPECT_EQ(Places(), drag.places);
        EXPECT_EQ(doc.modified, changes);
        EXPECT_TRUE(AllErased(dc.calls)) << dc.calls;
        EXPECT_FALSE(GhostsOf(TakeCalls()).empty());
        ASSERT_EQ(layer.CountLnk(), set->Count());
        for (const TZulHoleSprite *spr : Sprites())
            EXPECT_EQ(spr->Centre(), spr->Object()->pos) << "sprite and opening agree";
    }
}

TEST_F(Holes, KeepTheOppositeCornerWhereOneIsDragged)
{
    for (double degrees : {0.0, 30.0, 90.0, -135.0})
        for (int corner = 0; corner < 4; ++corner)
            for (TPoint by : {TPoint{30, -20}, TPoint{-20, 30}, TPoint{-200, -150}, TPoint{150, 200}}) {
                SCOPED_TRACE(testing::Message() << degrees << " " << corner << " " << by.x << "," << by.y);
                TZulHoleSprite *spr = Alone(AgPOINT(14, 14), 6, 4, degrees * DEGREE);
                axes.SetSnap(0, 0);
                Choose(layer, spr);
                LayOut(layer);
                plain::SHAPE before = ShapeOf(*set->First());
                size_t grasped = static_cast<size_t>(corner);
                POINT fixed = before.Corners()[(grasped + 2) % 4];
                TPoint press = plain::Outline(before, plainAxes)[grasped];
                TPoint drop = press + by;
                Play(EdcFormat("L+%d,%d M%d,%d L-%d,%d", press.x, press.y, drop.x, drop.y, drop.x, drop.y));
                const EmHOLE &hole = *set->First();
                POINT moved = before.Corners()[grasped] + POINT(by.x / 10.0, -by.y / 10.0);
                EXPECT_LT(std::abs(POINT(hole.pos.x, hole.pos.y) - (fixed + moved) / 2.0), 1e-9);
                POINT sides = (moved - fixed) * std::polar(1.0, -degrees * DEGREE);
                EXPECT_NEAR(hole.size.x, std::abs(sides.real()), 1e-9);
                EXPECT_NEAR(hole.size.y, std::abs(sides.imag()), 1e-9);
                EXPECT_NEAR(hole.rotation, degrees * DEGREE, 1e-12);
            }
}

TEST_F(Holes, AreReshapedOneAtATime)
{
    Put(AgPOINT(10, 10), 4, 2);
    Put(AgPOINT(20, 10), 4, 2);
    Show();
    layer.SelectAll(true, NULL);
    layer.SetFocus(First(), NULL);
    LayOut(layer);
    Play("L+140,190 M150,180 L-150,180");
    EXPECT_EQ(Places(), "10.5,10.5 5x3 0;20,10 4x2 0");
}

TEST_F(Holes, StandNextToTheirSourceInTheSetWhenDraggedWithCtrl)
{
    Put(AgPOINT(10, 10), 4, 2);
    Put(AgPOINT(20, 10), 2, 2);
    Show();
    layer.SelectAll(true, NULL);
    layer.SetFocus(First(), NULL);
    LayOut(layer);
    Play("L+115,205 cM115,155 cL-115,155");
    EXPECT_EQ(Places(), "10,10 4x2 0;10,15 4x2 0;20,10 2x2 0;20,15 2x2 0");
    EXPECT_EQ(layer.CountLnk(), 4);
    EXPECT_EQ(layer.CountSel(), 2);
    for (const TEdcSprite *spr = layer.SelFirst(); spr; spr = spr->selNext)
        EXPECT_EQ(static_cast<const TZulHoleSprite *>(spr)->Centre().y, 15) << "the copies are selected";
}

TEST_F(Holes, LeaveNoTraceOfTheirGhosts)
{
    TZulHoleSprite *spr = Alone(AgPOINT(10, 10), 6, 4, 0.3);
    Choose(layer, spr);
    LayOut(layer);
    TEdcDrawDrag drag;
    drag.mode = EDC_DRAWDRAGMOVE;
    drag.shift = AgVECTOR(2, 1);
    ExpectGhost(*spr, drag, layer);
    drag.mode = EDC_DRAWDRAGROTATE;
    drag.pivot = AgPOINT(10, 10);
    drag.angle = 1;
    ExpectGhost(*spr, drag, layer);
    drag.mode = EDC_DRAWDRAGMOVE | EDC_DRAWDRAGHANDLE;
    drag.handle = spr->HandleAt(plain::Outline(ShapeOf(*set->First()), plainAxes)[2]);
    ASSERT_NE(drag.handle, nullptr);
    ExpectGhost(*spr, drag, layer);
}

TEST_F(Holes, ThatAreDroppedBeyondTheAxesAskForALayout)
{
    axes.SetXRange(0, 20);
    axes.SetYRange(0, 12);
    const struct {
        const char *events;
        int level;
    } rows[] = {{"L+120,215 M130,215 L-130,215", EDC_PAINT}, {"L+120,215 M240,215 L-240,215", EDC_LAYOUT}};
    for (const auto &row : rows) {
        Alone(AgPOINT(10, 8), 4, 2);
        Play(row.events);
        EXPECT_EQ(doc.obsolete, row.level) << row.events;
    }
}

// Making them

TEST_F(Holes, AreOnlyMadeByTheToolsThatPlaceAndDraw)
{
    FillStock();
    for (int tool : {0, int{EDC_TlSELECT}, int{EDC_TlALIGN}, 1525, 3003}) {
        EXPECT_EQ(layer.CreateSprite(Creation(tool, AgPOINT(1, 1), AgPOINT(2, 2))), nullptr) << tool;
        EXPECT_EQ(layer.QueryCreation(tool, true), nullptr) << tool;
    }
    EXPECT_EQ(set->Count(), 0);
    EXPECT_FALSE(doc.modified);
}

TEST_F(Holes, FromStockHaveItsSizeAndBeginAtTheOrigin)
{
    FillStock();
    TEdcDrawCreation creation = Creation(EDC_TlSTOCK, AgPOINT(7, 7), AgPOINT(7, 7));
    TEdcDrawSprite *spr = layer.CreateSprite(creation);
    ASSERT_NE(spr, nullptr);
    EXPECT_EQ(ValuesOf(*set->First()), holeOnes);
    EXPECT_EQ(PlaceOf(*set->First()), "2,1 4x2 0");
    EXPECT_EQ(creation.type, EDC_TlSTOCK) << "the tool's record stays the tool's";
    delete spr;
}

TEST_F(Holes, ThatAreDrawnHaveTheSizeOfTheDrawing)
{
    FillStock();
    layer.stock.width.id = layer.stock.height.id = EDC_VUDF; // nobody was asked
    TEdcDrawSprite *spr = layer.CreateSprite(Creation(EDC_TlRECT, AgPOINT(9, 5), AgPOINT(6, 6.5)));
    ASSERT_NE(spr, nullptr);
    EXPECT_EQ(PlaceOf(*set->First()), "7.5,5.75 3x1.5 0");
    EXPECT_STREQ(set->First()->description, holeOnes[DESCRIPTION].c_str());
    delete spr;
}

TEST_F(Holes, NeedParametersBeforeTheyAreMade)
{
    for (int tool : {int{EDC_TlSTOCK}, int{EDC_TlRECT}}) {
        TEdcDrawCreation creation = Creation(tool, AgPOINT(1, 1), AgPOINT(2, 2));
        creation.stock = NULL;
        TEdcDrawSprite *spr = NULL;
        EXPECT_EQ(
            SaidWhile([&] { spr = layer.CreateSprite(creation); }),
            "Objekt kann nicht hergestellt werden.\n\nZuerst sind die Objektparameter\nzu spezifizieren.");
        EXPECT_EQ(spr, nullptr);
    }
    EXPECT_EQ(set->Count(), 0);
}

// Failures

using HoleFaults = HoleCase;

TEST_F(HoleFaults, AnOpeningThatCannotBeMadeIsNowhere)
{
    FillStock();
    int fired = 0;
    for (int tool : {int{EDC_TlSTOCK}, int{EDC_TlRECT}}) {
        TEdcDrawCreation creation = Creation(tool, AgPOINT(1, 1), AgPOINT(2, 2));
        TEdcDrawSprite *made = NULL;
        long blocks = 0;
        fired += SweepFaults(
            [&] {
                made = NULL;
                blocks = LiveBlocks();
            },
            [&] { made = layer.CreateSprite(creation); },
            [&](const FaultRun &run) {
                long now = LiveBlocks();
                if (run.fired > 0) {
                    EXPECT_EQ(now, blocks);
                    EXPECT_STREQ(run.code, XALLOC);
                    EXPECT_EQ(made, nullptr);
                    EXPECT_EQ(set->Count(), 0);
                } else {
                    EXPECT_EQ(set->Count(), 1);
                    set->Clear();
                    delete made;
                    EXPECT_EQ(LiveBlocks(), blocks);
                }
            });
    }
    EXPECT_GE(fired, 8) << "sprite, opening and the points on the way";
}

TEST_F(HoleFaults, ALayerThatCannotBeReloadedLosesNoOpening)
{
    for (int i = 0; i < 4; ++i)
        Put(AgPOINT(i, 0), 1, 1);
    int fired = SweepFaults([&] { layer.DeleteAll(false); }, [&] { layer.Reload(NULL); },
                            [&](const FaultRun &run) {
                                EXPECT_EQ(set->Count(), 4);
                                EXPECT_EQ(layer.CountLnk(), run.fired > 0 ? run.n - 1 : 4);
                            });
    EXPECT_GE(fired, 8);
}

TEST_F(HoleFaults, ACopyThatCannotBeMadeLeavesTheOriginal)
{
    Put(AgPOINT(10, 10), 4, 2);
    int fired = SweepFaults(
        [&] {
            Show();
            Choose(layer, First());
        },
        [&] {
            TEdcDrawDrag drag;
            drag.mode = EDC_DRAWDRAGMOVE | EDC_DRAWDRAGCOPY;
            drag.shift = AgVECTOR(1, 1);
            First()->Apply(drag);
        },
        [&](const FaultRun &run) {
            int count = run.fired > 0 ? 1 : 2;
            EXPECT_EQ(set->Count(), count);
            EXPECT_EQ(layer.CountLnk(), count);
            EXPECT_EQ(layer.CountSel(), 1);
            EXPECT_EQ(PlaceOf(*set->First()), "10,10 4x2 0");
            EXPECT_EQ(First()->Centre(), AgPOINT(10, 10));
            if (count == 2)
                layer.Delete(Last(), true);
        });
    EXPECT_GE(fired, 4) << "sprite and opening, once and from then on";
}

// Bad input

TEST_F(Holes, WithoutASideAreSeenAndPicked)
{
    const struct {
        double width, height;
        const char *points;
    } rows[] = {{0, 0, " 120,200 120,200 120,200 120,200 121,200"},
                {0, 2, " 120,210 120,210 120,190 120,190 120,210"},
                {4, 0, " 100,200 140,200 140,200 100,200 100,200"},
                {0.01, 0.01, " 120,200 120,200 120,200 120,200 121,200"}};
    for (const auto &row : rows) {
        TZulHoleSprite *spr = Alone(AgPOINT(10, 10), row.width, row.height);
        spr->Paint(dc);
        EXPECT_TRUE(TakeCalls().starts_with(std::string("Polygon") + row.points + " pen")) << row.points;
        EXPECT_TRUE(spr->HitTest({120, 200}));
        EXPECT_TRUE(spr->HitTest({122, 200})) << "within the tolerance";
        EXPECT_FALSE(spr->HitTest({124, 206}));
    }
}

TEST_F(Holes, WithNegativeSidesCoverWhatTheirPositiveTwinsCover)
{
    TZulHoleSprite *spr = Alone(AgPOINT(10, 10), -4, -2);
    spr->Paint(dc);
    EXPECT_TRUE(TakeCalls().starts_with("Polygon 140,190 100,190 100,210 140,210 140,190 pen"));
    EXPECT_TRUE(spr->HitTest({101, 191}));
    EXPECT_FALSE(spr->HitTest({104, 215}));
    EXPECT_TRUE(spr->InRect({100, 190, 141, 211}));
    Play("L+110,205 M120,195 L-120,195");
    EXPECT_EQ(Places(), "11,11 4x2 0") << "stored without the signs";
}

/// What a damaged file may hold.
TEST_F(Holes, OfAnySizeAreLaidOutPaintedHitAndDragged)
{
    const double extents[] = {0, 1e-300, 1e3, 1e9, 1e15, 1e300, -1e300};
    for (double width : extents)
        for (double height : extents)
            for (double angle : {0.0, 0.5, 1e300}) {
                SCOPED_TRACE(testing::Message() << width << " x " << height << ", " << angle);
                TZulHoleSprite *spr = Alone(AgPOINT(10, 10), width, height, angle);
                Choose(layer, spr);
                LayOut(layer);
                TMemoryDC screen({200, 320}, 96);
                layer.Paint(screen, {0, 0, 200, 320});
                EXPECT_EQ(screen.Pixel({117, 195}), (TColor{0, 255, 0})) << "the marker's corner";
                EXPECT_TRUE(spr->HitTest({120, 200}));
                spr->HitTest({0, 0});
                spr->InRect({0, 0, 100, 100});
                Play("L+120,198 M125,190 M130,188 L-130,188");
                EXPECT_NEAR(set->First()->pos.x, 10, 2);
                Play("R+130,188 M135,180 R-135,170");
            }
}

TEST_F(Holes, LargerThanTheirPlanArePickedAnywhereOnIt)
{
    TZulHoleSprite *spr = Alone(AgPOINT(10, 6), 100, 60);
    for (TPoint at : {TPoint{0, 0}, TPoint{220, 300}, TPoint{20, 180}, TPoint{400, 500}})
        EXPECT_TRUE(spr->HitTest(at));
    EXPECT_FALSE(spr->HitTest({900, 240}));
}
} // namespace
