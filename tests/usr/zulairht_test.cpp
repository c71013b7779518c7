// Warm-air units on a plan: the record that dialogs share with them, the layer and its sprites over the hall's
// set, and how they are placed, drawn, hit and moved.
#include "zulairhtcase.h"

#include <algorithm>
#include <cmath>

namespace
{
using plain::POINT;

// The record

using UnitRecord = UnitCase;

TEST_F(UnitRecord, OfAResetHasNoType)
{
    TZulAirHeaterData data;
    EXPECT_EQ(ValuesOf(data), unitNone);
    EXPECT_EQ(data.target, nullptr);
    EmAIRHEATER unit;
    SetUnit(unit, unitOnes);
    data.Exchange(EDC_XLOAD, unit);
    EXPECT_EQ(ValuesOf(data), unitOnes);
    data.Reset();
    EXPECT_EQ(ValuesOf(data), unitNone);
}

TEST_F(UnitRecord, LoadsEveryFieldOfAUnit)
{
    for (unsigned others : Subsets(UNIT_FIELDS)) {
        EmAIRHEATER unit;
        SetUnit(unit, MixedUnit(others));
        TZulAirHeaterData data;
        data.Exchange(EDC_XLOAD, unit);
        EXPECT_EQ(ValuesOf(data), MixedUnit(others));
        EXPECT_EQ(ValuesOf(unit), MixedUnit(others)) << "the unit stays";
    }
}

TEST_F(UnitRecord, KnowsNothingOfAUnitWithoutAType)
{
    for (const char *type : {"", " ", "\t "}) {
        EmAIRHEATER unit;
        SetUnit(unit, unitOnes);
        StrCopy(unit.type, type, sizeof unit.type);
        TZulAirHeaterData data;
        data.Exchange(EDC_XLOAD, unit);
        EXPECT_EQ(ValuesOf(data), unitNone);
    }
}

TEST_F(UnitRecord, StoresWhatIsDefinedAndLeavesTheRest)
{
    for (unsigned defined : Subsets(UNIT_FIELDS)) {
        EmAIRHEATER source, unit;
        SetUnit(source, unitOthers);
        SetUnit(unit, unitOnes);
        TZulAirHeaterData data;
        data.Exchange(EDC_XLOAD, source);
        TEdcValue *const fields[] = {&data.typeName, &data.output, &data.tempRise, &data.airFlow,
                                     &data.length,   &data.width,  &data.height};
        for (size_t i = 0; i < UNIT_FIELDS; ++i)
            if (!Has(defined, i))
                fields[i]->id = EDC_VUDF;
        data.Exchange(EDC_XSTORE, unit);
        EXPECT_EQ(ValuesOf(unit), MixedUnit(defined)) << defined;
    }
}

TEST_F(UnitRecord, TakesTheTypeOffAndLeavesTheNumbersThatNobodySees)
{
    EmAIRHEATER unit;
    SetUnit(unit, unitOnes);
    TZulAirHeaterData data;
    data.Exchange(EDC_XSTORE, unit);
    UNITVALUES expected = unitOnes;
    expected[TYPE_NAME] = "-";
    EXPECT_EQ(ValuesOf(unit), expected);
    data.Exchange(EDC_XLOAD, unit);
    EXPECT_EQ(ValuesOf(data), unitNone);
}

TEST_F(UnitRecord, MergesToWhatUnitsHaveInCommon)
{
    for (unsigned differing : Subsets(UNIT_FIELDS)) {
        EmAIRHEATER first, second;
        SetUnit(first, unitOnes);
        SetUnit(second, MixedUnit(differing));
        TZulAirHeaterData data;
        data.Exchange(EDC_XLOAD, first);
        data.Exchange(EDC_XMERGE, second);
        data.Exchange(EDC_XMERGE, first);
        UNITVALUES expected = unitOnes;
        for (size_t i = 0; i < UNIT_FIELDS; ++i)
            if (Has(differing, i))
                expected[i] = "?";
        EXPECT_EQ(ValuesOf(data), expected) << differing;
        data.Exchange(EDC_XLOAD, first);
        data.Exchange(EDC_XMATCH, second);
        EXPECT_EQ(ValuesOf(data), unitOnes) << "a match changes nothing";
        EXPECT_EQ(ValuesOf(second), MixedUnit(differing));
    }
}

TEST_F(UnitRecord, MergesUnitsWithAndWithoutAType)
{
    const UNITVALUES nothing = {"?", "?", "?", "?", "?", "?", "?"};
    const struct {
        const UNITVALUES &one, &other, &merged;
    } rows[] = {{unitOnes, unitNone, nothing}, {unitNone, unitOnes, nothing}, {unitNone, unitNone, unitNone}};
    for (const auto &row : rows) {
        EmAIRHEATER first, second;
        SetUnit(first, row.one);
        SetUnit(second, row.other);
        TZulAirHeaterData data;
        data.Exchange(EDC_XLOAD, first);
        data.Exchange(EDC_XMERGE, second);
        EXPECT_EQ(ValuesOf(data), row.merged);
    }
}

TEST_F(UnitRecord, HoldsTheLongestTypeAndNumbersWithoutNoise)
{
    EmAIRHEATER unit, copy;
    std::string longest(sizeof unit.type - 1, '\xDF');
    StrCopy(unit.type, longest.c_str(), sizeof unit.type);
    unit.size = AgPOINT(0.1 + 0.2, 1, 1);
    TZulAirHeaterData data;
    data.Exchange(EDC_XLOAD, unit);
    data.Exchange(EDC_XSTORE, copy);
    EXPECT_EQ(copy.type, longest);
    EXPECT_EQ(copy.size.x, 0.3);
}

// The layer and its sprites

using Units = UnitCase;

TEST_F(Units, AreALayerOfTheirOwn)
{
    EXPECT_EQ(layer.Id(), 2501);
    EXPECT_EQ(layer.Options(), 7) << "what it may do is the block's to say";
    EXPECT_STREQ(GetResString(2501), "\nWahl der Schicht der Warmluftaggregate");
    EXPECT_EQ(Alone(AgPOINT(1, 1), unitOnes)->Type(), 2503);
}

TEST_F(Units, StopAtWhatOnlyAFaultOfTheProgramCanBring)
{
    const char *const file = "usr/zulairht.cpp";
    TZulAirHeaterSprite *spr = Alone(AgPOINT(5, 5), unitOnes);
    auto stops = [&](const char *condition, const char *where, const std::function<void()> &body) {
        EXPECT_TRUE(AbortsOnAssertion(condition, where, [&] { RemoveServices(), body(); })); // without boxes
    };
    TEdcDrawDrag drag;
    drag.mode = EDC_DRAWDRAGMOVE;
    TEdcDrawDesc desc;
    stops("aAirhtSet != NULL", file, [&] { TZulAirHeaterLayer none(NULL, &axes); });
    stops("object != NULL", file, [&] { TZulAirHeaterSprite none(static_cast<EmAIRHEATER *>(NULL)); });
    stops("params != NULL", file, [&] { TZulAirHeaterSprite none{TEdcDrawCreation()}; });
    const std::function<void()> uses[] = {[&] { spr->Discard(); }, [&] { spr->Describe(desc, 0); },
                                          [&] { spr->Apply(drag); }, [&] { spr->DragUpdate(drag); }};
    for (const auto &use : uses)
        stops("airhtObj != NULL", file, [&] {
            spr->Discard();
            use();
        });
    stops("airht.airhtObj != NULL", file, [&] {
        spr->Discard();
        TZulAirHeaterSprite copy(*spr);
    });
    stops("drag.shift.z == 0", file, [&] {
        drag.shift.z = 1;
        spr->Apply(drag);
    });
    const std::function<void()> looks_[] = {[&] { spr->Paint(dc); }, [&] { spr->HitTest({0, 0}); }};
    for (const auto &look : looks_) {
        stops("ly != NULL && airhtObj != NULL", file, [&] {
            layer.Remove(spr);
            look();
        });
        stops("ly != NULL && airhtObj != NULL", file, [&] {
            spr->Discard();
            look();
        });
    }
    stops("name != NULL && size >= 0", "usr/zulmark.cpp", [&] { layer.SetFont(NULL, 1); });
}

TEST_F(Units, GetASpriteEachInTheOrderOfTheSet)
{
    for (int i = 0; i < 4; ++i)
        Put(AgPOINT(i, i), i % 2 ? unitOnes : unitNone);
    layer.Reload(NULL);
    layer.Reload(NULL);
    ASSERT_EQ(layer.CountLnk(), 4);
    for (size_t i = 0; i < 4; ++i)
        EXPECT_EQ(Sprites()[i]->Object(), InSet()[i]);
    EXPECT_FALSE(doc.modified);
    layer.DeleteAll(false);
    EXPECT_EQ(set->Count(), 4);
}

TEST_F(Units, AreNumberedAnewAtEachLayout)
{
    auto labels = [this] {
        std::string text;
        for (const TZulAirHeaterSprite *spr : Sprites())
            text += std::string(spr->label.Text()) + " ";
        return text;
    };
    for (int i = 0; i < 3; ++i)
        Put(AgPOINT(i, i), unitOnes);
    Show();
    EXPECT_EQ(labels(), "1 2 3 ");
    layer.Delete(Sprites()[1], true);
    EXPECT_EQ(labels(), "1 3 ");
    LayOut(layer);
    EXPECT_EQ(labels(), "1 2 ");
    EXPECT_EQ(set->Count(), 2);
}

TEST_F(Units, AreMadeBehindTheOthersWithWhatWasChosen)
{
    Put(AgPOINT(1, 1), unitNone);
    FillStock();
    doc.modified = false;
    TEdcDrawSprite *spr = layer.CreateSprite(Creation(EDC_TlSTOCK));
    ASSERT_NE(spr, nullptr);
    ASSERT_EQ(set->Count(), 2);
    EXPECT_EQ(ValuesOf(*InSet()[1]), unitOnes);
    EXPECT_EQ(InSet()[1]->pos, AgPOINT(0, 0, 0)) << "whoever places it moves it";
    EXPECT_TRUE(doc.modified);
    delete spr;
    for (int tool : {0, int{EDC_TlSELECT}, int{EDC_TlALIGN}, int{EDC_TlRECT}, 2503}) {
        EXPECT_EQ(layer.CreateSprite(Creation(tool)), nullptr) << tool;
        EXPECT_EQ(layer.QueryCreation(tool, true), nullptr) << tool;
    }
    EXPECT_EQ(set->Count(), 2);
}

TEST_F(Units, NeedAStatedTypeOrNoneBeforeTheyAreMade)
{
    TEdcDrawCreation creation = Creation(EDC_TlSTOCK);
    creation.stock = NULL;
    TEdcDrawSprite *spr = NULL;
    EXPECT_EQ(SaidWhile([&] { spr = layer.CreateSprite(creation); }),
              "Objekt kann nicht hergestellt werden.\n\nZuerst sind die Objektparameter\nzu spezifizieren.");
    EXPECT_EQ(spr, nullptr);
    EXPECT_EQ(set->Count(), 0);
}

// Description

TEST_F(Units, AreDescribedByTheirFootprintInAnyFrame)
{
    CHANCE chance(1);
    for (int round = 0; round < 500; ++round) {
        TZulAirHeaterSprite *spr = Alone(AgPOINT(chance.Real(-9, 30), chance.Real(-9, 30), chance.Real(0, 5)),
                                         chance.Real(0, 5), chance.Real(0, 5));
        const EmAIRHEATER &unit = *set->First();
        plain::SHAPE shape{false, {unit.pos.x, unit.pos.y}, unit.size.x, unit.size.y, 0, false};
        double refAngle = round % 3 ? chance.Real(-4, 4) : 0;
        plain::BOX box = plain::Around(shape, refAngle);
        TEdcDrawDesc desc;
        spr->Describe(desc, refAngle);
        EXPECT_LT(std::abs(POINT(desc.position.x, desc.position.y) - box.At(0, 0)), 1e-9);
        EXPECT_LT(std::abs(POINT(desc.size.x, desc.size.y) - (box.high - box.low)), 1e-9);
        EXPECT_EQ(desc.position.z, 0);
        EXPECT_EQ(desc.size.z, 0);
        EXPECT_EQ(desc.refAngle, refAngle);
        EXPECT_EQ(desc.angle, 0) << "a unit does not turn";
    }
}

TEST_F(Units, WithoutATypeAreDescribedByAPoint)
{
    TZulAirHeaterSprite *spr = Alone(AgPOINT(3, 4, 2), unitNone);
    set->First()->size = AgPOINT(5, 6, 7); // of a type that was taken off
    TEdcDrawDesc desc;
    spr->Describe(desc, 0.7);
    EXPECT_EQ(desc.position, AgPOINT(3, 4));
    EXPECT_EQ(desc.size, AgPOINT());
    EXPECT_EQ(desc.refAngle, 0.7);
    EXPECT_EQ(desc.angle, 0);
}

// What they look like

/// Where the parts of a unit are to be drawn, px.
struct DRAWN {
    TRect box, bar;
    TSize boxCorner, barCorner; // whole axes of the corners' ellipses
};
DRAWN Drawn(const AgPOINT &pos, double length, double width, const plain::AXES &axes, const TZulMarkedLayer &ly)
{
    TPoint a = axes.Pixel({pos.x - length / 2, pos.y - width / 2});
    TPoint b = axes.Pixel({pos.x + length / 2, pos.y + width / 2});
    DRAWN d;
    TRect r = {std::min(a.x, b.x), std::min(a.y, b.y), std::max(a.x, b.x) + 1, std::max(a.y, b.y) + 1};
    int leastX = ly.minThick + ly.markerX;
    int leastY = ly.minThickY + ly.markerY;
    if ((r.right - r.left) / 2 < leastX) {
        int lack = leastX - (r.right - r.left) / 2;
        r.left -= lack;
        r.right += lack;
    }
    if ((r.bottom - r.top) / 2 < leastY) {
        int lack = leastY - (r.bottom - r.top) / 2;
        r.top -= lack;
        r.bottom += lack;
    }
    d.boxCorner = {std::max((r.right - r.left) / 4, 2), std::max((r.bottom - r.top) / 4, 2)};
    int bar = std::max((r.bottom - r.top) / 10, ly.minThickY);
    r.bottom -= bar;
    d.box = r;
    d.bar = {r.left + d.boxCorner.cx / 2, r.bottom - bar, r.right - d.boxCorner.cx / 2, r.bottom + bar};
    d.barCorner = {bar * d.boxCorner.cx / d.boxCorner.cy, bar};
    return d;
}

/// A recorded polygon.
struct POLYGON {
    std::vector<TPoint> points;
    std::string style;
    TRect Around() const
    {
        TRect r = {points[0].x, points[0].y, points[0].x, points[0].y};
        for (TPoint p : points)
            r = {std::min(r.left, p.x), std::min(r.top, p.y), std::max(r.right, p.x), std::max(r.bottom, p.y)};
        return {r.left, r.top, r.right + 1, r.bottom + 1};
    }
};
std::vector<POLYGON> Polygons(const std::string &calls)
{
    std::vector<POLYGON> found;
    for (const std::string &line : CallsOf(calls)) {
        if (!line.starts_with("Polygon "))
            continue;
        POLYGON &polygon = found.emplace_back();
        size_t style = line.find(" pen");
        std::istringstream words(line.substr(8, style - 8));
        for (std::string word; words >> word;)
            polygon.points.push_back({atoi(word.c_str()), atoi(word.c_str() + word.find(',') + 1)});
        polygon.style = line.substr(style + 1);
    }
    return found;
}

/// All of the outline lies on the rectangle's sides or on the ellipses of its corners.
void ExpectRounded(const POLYGON &polygon, const TRect &rect, TSize corner)
{
    EXPECT_EQ(polygon.Around(), rect);
    double a = std::min(corner.cx, rect.Width()) / 2.0;
    double b = std::min(corner.cy, rect.Height()) / 2.0;
    TPoint middle = {rect.left + rect.right - 1, rect.top + rect.bottom - 1}; // twice
    for (TPoint p : polygon.points) {
        double x = std::abs(2 * p.x - middle.x) / 2.0 - ((rect.Width() - 1) / 2.0 - a);
        double y = std::abs(2 * p.y - middle.y) / 2.0 - ((rect.Height() - 1) / 2.0 - b);
        if (x > 0.5 && y > 0.5) {
            EXPECT_NEAR(std::hypot(x / a, y / b), 1, 1 / std::min(a, b)) << p.x << "," << p.y;
        }
    }
    EXPECT_GE(polygon.points.size(), 8U);
}

TEST_F(Units, ArePaintedAsARoundedBoxOverABarWithTheirNumber)
{
    const double sizes[][2] = {{4, 2}, {2, 4}, {9.5, 6.25}, {20, 20}, {0, 0}, {0.3, 5}, {5, 0.3}, {1.45, 1.45}};
    for (const auto &size : sizes)
        for (const LOOK &look : looks) {
            SCOPED_TRACE(testing::Message() << size[0] << " x " << size[1] << " " << look.name);
            TZulAirHeaterSprite *spr = Alone(AgPOINT(10.03, 9.98, 3), size[0], size[1]);
            Look(*spr, look);
            spr->Paint(dc);
            DRAWN d = Drawn(set->First()->pos, size[0], size[1], plainAxes, layer);
            std::vector<POLYGON> polygons = Polygons(dc.calls);
            ASSERT_EQ(polygons.size(), 2U);
            std::string line = look.line;
            ExpectRounded(polygons[0], d.bar, d.barCorner);
            EXPECT_EQ(polygons[0].style, "pen " + line + " brush " + line);
            ExpectRounded(polygons[1], d.box, d.boxCorner);
            EXPECT_EQ(polygons[1].style,
                      "pen " + line + " brush pattern " + line + "/" + look.fill + " aa55aa55aa55aa55");
            TPoint middle = Px(set->First()->pos);
            std::string marker = EdcFormat("Ellipse %d,%d,%d,%d pen %s brush %s\n", middle.x - 5, middle.y - 4,
                                           middle.x + 5, middle.y + 4, look.line, look.fill) +
                                 LabelText(1, middle, look.line);
            EXPECT_TRUE(dc.calls.ends_with(marker)) << dc.calls;
            EXPECT_EQ(CallsOf(TakeCalls()).size(), 4U);
        }
}

TEST_F(Units, WithoutATypeAreOnlyAMarker)
{
    TZulAirHeaterSprite *spr = Alone(AgPOINT(10, 10), unitNone);
    set->First()->size = AgPOINT(5, 5, 1);
    LayOut(layer);
    for (const LOOK &look : looks) {
        Look(*spr, look);
        spr->Paint(dc);
        EXPECT_EQ(TakeCalls(), EdcFormat("Ellipse 115,196,125,204 pen %s brush %s\n", look.line, look.fill) +
                                   LabelText(1, {120, 200}, look.line));
    }
    EXPECT_TRUE(spr->HitTest({120, 200}));
    EXPECT_FALSE(spr->HitTest({130, 210})) << "within its former size";
}

TEST_F(Units, ArePrintedAsIfIdle)
{
    TZulAirHeaterSprite *spr = Alone(AgPOINT(10, 10), unitOnes);
    Look(*spr, looks[0]);
    spr->Paint(dc);
    std::string idle = TakeCalls();
    for (const LOOK &look : looks) {
        Look(*spr, look);
        uint16_t state = spr->state;
        spr->PaintPlain(dc);
        EXPECT_EQ(TakeCalls(), idle);
        EXPECT_EQ(spr->state, state);
    }
}

TEST_F(Units, AreCheckeredOnTheScreen)
{
    TZulAirHeaterSprite *spr = Alone(AgPOINT(10, 10), 8, 6);
    Look(*spr, looks[1]);
    TMemoryDC screen({240, 320}, 96);
    spr->Paint(screen);
    for (int y = 180; y < 190; ++y)
        for (int x = 100; x < 112; ++x) {
            bool line = screen.Pixel({x, y}) == TColor{0, 0, 255};
            EXPECT_EQ(screen.Pixel({x, y}), line ? (TColor{0, 0, 255}) : WIN_WHITE);
            EXPECT_NE(screen.Pixel({x + 1, y}), screen.Pixel({x, y}));
            EXPECT_NE(screen.Pixel({x, y + 1}), screen.Pixel({x, y}));
        }
}

/// A device that is finer in one direction than in the other.
class FlatDC : public TRecordDC
{
public:
    int DpiY() const override { return 300; }
};

TEST_F(Units, HaveARoundMarkerForTheDigitsOfTheirNumber)
{
    const struct {
        int count, font;
        int x, y; // px
    } rows[] = {{1, 10, 5, 4}, {9, 10, 5, 4}, {10, 10, 6, 5}, {100, 10, 8, 7}, {1, 40, 22, 21}};
    for (const auto &row : rows) {
        set->Clear();
        for (int i = 0; i < row.count; ++i)
            Put(AgPOINT(5, 5), unitNone);
        layer.Reload(NULL);
        layer.SetFont("Arial", row.font);
        LayOut(layer);
        EXPECT_EQ(layer.markerX, row.x) << row.count << " " << row.font;
        EXPECT_EQ(layer.markerY, row.y) << row.count << " " << row.font;
    }
    layer.SetFont("Arial", 10);
    FlatDC flat;
    set->Clear();
    layer.Reload(NULL);
    layer.Layout(flat);
    EXPECT_EQ(layer.markerX, 3) << "of one size in inches";
    EXPECT_EQ(layer.markerY, 7);
}

TEST_F(Units, KeepThickLinesThickerThanThinOnes)
{
    const struct {
        TSize thin, thick;
        int minThin, minThinY, minThick, minThickY;
    } rows[] = {{{1, 1}, {3, 3}, 1, 1, 3, 3},     {{0, 0}, {0, 0}, 1, 1, 3, 3},
                {{5, 2}, {4, 9}, 2, 2, 4, 9},     {{3, 8}, {10, 10}, 3, 8, 10, 10},
                {{8, 9}, {10, 10}, 8, 8, 10, 10}, {{-4, 1}, {1, 2}, 1, 1, 3, 3}};
    for (const auto &row : rows) {
        doc.obsolete = 0;
        layer.SetMinSizes(row.thin, row.thick);
        EXPECT_EQ(layer.minThin, row.minThin);
        EXPECT_EQ(layer.minThinY, row.minThinY);
        EXPECT_EQ(layer.minThick, row.minThick);
        EXPECT_EQ(layer.minThickY, row.minThickY);
        EXPECT_EQ(doc.obsolete, EDC_LAYOUT);
    }
}

// Hits

TEST_F(Units, AreHitOnMarkerBoxAndBar)
{
    CHANCE chance(7);
    int hits = 0;
    for (int round = 0; round < 300; ++round) {
        double length = round % 3 ? chance.Real(0, 9) : 0;
        double width = round % 3 ? chance.Real(0, 9) : chance.Real(0, 1);
        TZulAirHeaterSprite *spr = Alone(AgPOINT(chance.Real(0, 25), chance.Real(0, 25)), length, width);
        bool typed = round % 5 != 0;
        if (!typed)
            set->First()->type[0] = EOS;
        LayOut(layer);
        DRAWN d = Drawn(set->First()->pos, length, width, plainAxes, layer);
        TPoint middle = Px(set->First()->pos);
        auto within = [](const TRect &r, TPoint p) {
            return p.x >= r.left && p.x < r.right && p.y >= r.top && p.y < r.bottom;
        };
        for (int i = 0; i < 100; ++i) {
            int reach = i % 2 ? 60 : 10;
            TPoint at = middle + TPoint{chance.Int(-reach, reach), chance.Int(-reach, reach)};
            TPoint p = at - middle;
            bool marker = 25 * p.x * p.x + 16 * p.y * p.y <= 25 * 16;
            bool expected = marker || (typed && (within(d.box, at) || within(d.bar, at)));
            ASSERT_EQ(spr->HitTest(at), expected) << round << " " << p.x << "," << p.y;
            hits += expected;
        }
    }
    EXPECT_GT(hits, 1000);
}

TEST_F(Units, AreHitToTheirLeftAndTopEdgesAndShortOfTheOthers)
{
    TZulAirHeaterSprite *spr = Alone(AgPOINT(10, 10), 4, 2);
    DRAWN d = Drawn(set->First()->pos, 4, 2, plainAxes, layer);
    ASSERT_EQ(d.box, (TRect{100, 190, 141, 208}));
    ASSERT_EQ(d.bar, (TRect{105, 205, 136, 211}));
    const struct {
        TPoint at;
        bool hit;
    } rows[] = {{{100, 190}, true},  {{99, 190}, false},  {{100, 189}, false}, {{140, 207}, true},
                {{141, 207}, false}, {{140, 208}, false}, {{105, 208}, true},  {{104, 208}, false},
                {{135, 210}, true},  {{136, 210}, false}, {{135, 211}, false}};
    for (const auto &row : rows)
        EXPECT_EQ(spr->HitTest(row.at), row.hit) << row.at.x << "," << row.at.y;
}

TEST_F(Units, HaveNoHandles)
{
    TZulAirHeaterSprite *spr = Alone(AgPOINT(10, 10), 4, 2);
    Choose(layer, spr);
    LayOut(layer);
    for (TPoint at : {TPoint{100, 210}, TPoint{140, 190}})
        EXPECT_EQ(spr->HandleAt(at), nullptr);
    spr->Decorate(dc);
    EXPECT_EQ(TakeCalls(), "");
}

TEST_F(Units, LieInARubberBandThatHoldsTheirFootprint)
{
    TZulAirHeaterSprite *spr = Alone(AgPOINT(10, 10), 4, 2);
    EXPECT_TRUE(spr->InRect({100, 190, 141, 211}));
    EXPECT_FALSE(spr->InRect({101, 190, 141, 211}));
    spr = Alone(AgPOINT(10, 10), unitNone);
    EXPECT_TRUE(spr->InRect({120, 200, 121, 201}));
    EXPECT_FALSE(spr->InRect({121, 200, 130, 210}));
}

// Drags

TEST_F(Units, AreMovedAndCopiedAndNeverTurned)
{
    const struct {
        const char *name, *events, *places;
        bool ghost;
    } rows[] = {
        {"a move", "L+120,190 M125,185 M130,180 L-130,180", "11,11,3", true},
        {"a move comes onto the grid", "L+120,190 M133,178 L-133,178", "11.5,11,3", true},
        {"a move with Shift", "L+120,190 sM150,180 sL-150,180", "13,10,3", true},
        {"a copy", "L+120,190 cM120,140 cL-120,140", "10,10,3;10,15,3", true},
        {"a corner is none", "L+101,206 M91,216 L-91,216", "9,9,3", true},
        {"a turn", "R+130,200 M130,190 M120,180 R-120,180", "10,10,3", false},
        {"a turn with Ctrl", "R+130,200 cM130,190 cM120,180 cR-120,180", "10,10,3", false},
        {"what is taken back", "L+120,190 M160,150 R+160,150 R-160,150", "10,10,3", true},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        Alone(AgPOINT(10, 10, 3), unitOnes);
        Play(row.events);
        EXPECT_EQ(Places(), row.places);
        EXPECT_EQ(layer.CountLnk(), set->Count());
        std::string calls = TakeCalls();
        EXPECT_EQ(calls.find("notmask") != std::string::npos, row.ghost) << calls;
    }
}

TEST_F(Units, AreCopiedBehindTheirSourceAndTheCopyIsSelected)
{
    Put(AgPOINT(10, 10), unitOnes);
    Put(AgPOINT(20, 10), unitOthers);
    Show();
    EmAIRHEATER *first = InSet()[0];
    EmAIRHEATER *second = InSet()[1];
    Play("L+120,190 cM120,140 cL-120,140");
    ASSERT_EQ(set->Count(), 3);
    EXPECT_EQ(InSet()[0], first);
    EXPECT_EQ(InSet()[2], second);
    EXPECT_EQ(ValuesOf(*InSet()[1]), unitOnes);
    EXPECT_EQ(Last()->Object(), InSet()[1]);
    EXPECT_TRUE(layer.IsSelected(Last()));
    EXPECT_FALSE(layer.IsSelected(First()));
    EXPECT_TRUE(doc.modified);
    layer.DeleteSelected(true);
    EXPECT_EQ(InSet(), (std::vector<EmAIRHEATER *>{first, second}));
}

TEST_F(Units, IgnoreTheBitsOfADragThatTheyCannotFollow)
{
    TZulAirHeaterSprite *spr = Alone(AgPOINT(10, 10, 3), unitOnes);
    TEdcDrawDrag drag;
    drag.mode = EDC_DRAWDRAGROTATE | EDC_DRAWDRAGABSOLUTE;
    drag.pivot = AgPOINT(0, 0);
    drag.angle = 1;
    EXPECT_EQ(spr->Apply(drag), spr);
    EXPECT_EQ(Places(), "10,10,3");
    EXPECT_TRUE(doc.modified);
    drag.mode |= EDC_DRAWDRAGMOVE | EDC_DRAWDRAGHANDLE;
    drag.shift = AgVECTOR(1, -2);
    EXPECT_EQ(spr->Apply(drag), spr);
    EXPECT_EQ(Places(), "11,8,3");
}

TEST_F(Units, LeaveNoTraceOfTheirGhosts)
{
    for (const UNITVALUES *values : {&unitOnes, &unitNone}) {
        TZulAirHeaterSprite *spr = Alone(AgPOINT(10, 10), *values);
        TEdcDrawDrag drag;
        drag.mode = EDC_DRAWDRAGMOVE;
        drag.shift = AgVECTOR(2, 1);
        ExpectGhost(*spr, drag, layer);
        TPoint middle = Px(AgPOINT(12, 11));
        spr->DragPaint(dc);
        DRAWN d = Drawn(AgPOINT(12, 11), 4, 2, plainAxes, layer);
        TRect whole = {d.box.left, d.box.top, d.box.right, d.bar.bottom};
        EXPECT_EQ(TakeCalls(), values == &unitOnes
                                   ? EdcFormat("Rect %d,%d,%d,%d pen none brush ffffff notmask\n", whole.left,
                                               whole.top, whole.right, whole.bottom)
                                   : EdcFormat("Ellipse %d,%d,%d,%d pen ffffff brush none xor\n", middle.x - 5,
                                               middle.y - 4, middle.x + 5, middle.y + 4));
        drag.mode = EDC_DRAWDRAGROTATE;
        spr->DragUpdate(drag);
        spr->DragPaint(dc);
        EXPECT_EQ(TakeCalls(), "") << "there is no ghost of a turn";
    }
}

TEST_F(Units, ThatAreDroppedBeyondTheAxesAskForALayout)
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

// Failures

using UnitFaults = UnitCase;

TEST_F(UnitFaults, AUnitThatCannotBeMadeIsNowhere)
{
    FillStock();
    TEdcDrawCreation creation = Creation(EDC_TlSTOCK);
    TEdcDrawSprite *made = NULL;
    long blocks = 0;
    int fired = SweepFaults(
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
    EXPECT_GE(fired, 4);
}

TEST_F(UnitFaults, ALayerThatCannotBeReloadedLosesNoUnit)
{
    for (int i = 0; i < 4; ++i)
        Put(AgPOINT(i, 0), unitOnes);
    int fired = SweepFaults([&] { layer.DeleteAll(false); }, [&] { layer.Reload(NULL); },
                            [&](const FaultRun &run) {
                                EXPECT_EQ(set->Count(), 4);
                                EXPECT_EQ(layer.CountLnk(), run.fired > 0 ? run.n - 1 : 4);
                            });
    EXPECT_GE(fired, 8);
}

TEST_F(UnitFaults, ACopyThatCannotBeMadeLeavesTheOriginal)
{
    Put(AgPOINT(10, 10), unitOnes);
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
            EXPECT_EQ(InSet()[0]->pos, AgPOINT(10, 10));
            if (count == 2)
                layer.Delete(Last(), true);
        });
    EXPECT_GE(fired, 4);
}

/// What a damaged file may hold.
TEST_F(Units, OfAnySizeAreLaidOutPaintedHitAndDragged)
{
    const double extents[] = {0, 1e-300, 1e3, 1e9, 1e15, 1e300, -2, -1e300};
    for (double length : extents)
        for (double width : extents) {
            SCOPED_TRACE(testing::Message() << length << " x " << width);
            TZulAirHeaterSprite *spr = Alone(AgPOINT(10, 10), length, width);
            Choose(layer, spr);
            LayOut(layer);
            TMemoryDC screen({200, 320}, 96);
            layer.Paint(screen, {0, 0, 200, 320});
            EXPECT_EQ(screen.Pixel({115, 200}), (TColor{0, 255, 0})) << "the marker's side";
            EXPECT_TRUE(spr->HitTest({120, 200}));
            spr->InRect({0, 0, 100, 100});
            Play("L+120,198 M125,190 M130,188 L-130,188");
            EXPECT_NEAR(set->First()->pos.x, 11, 1);
        }
}
} // namespace
