// One emitter on the plan: body, hook, tilted side and marker as geometry computed a second way (device vectors
// as complex numbers, y down), the side that gets more radiation, picking, ghosts, and what drags do to the
// hall.
#include "usr/edcutils.h"
#include "win/dc.h"
#include "zulemittcase.h"

#include <cmath>
#include <complex>
#include <map>

namespace
{
using VEC =
    std::complex<double>; // px, x + iy with y down: times i is a quarter turn on, clockwise as it is seen

VEC Vec(TPoint p)
{
    return {static_cast<double>(p.x), static_cast<double>(p.y)};
}

TPoint Rounded(VEC v)
{
    return {EdcNearest(v.real()), EdcNearest(v.imag())};
}

/// What the plan must show of an emitter.
struct FIGURE {
    bool hasModel = false, isTilted = false;
    int thick = 0, thin = 0, thinner = 0;
    TPoint centre, endA, endB, tiltA, tiltB, tipA, tipB, tipC;
};

TPoint Offset(TPoint from, VEC by)
{
    TPoint step = Rounded(by);
    return {from.x + step.x, from.y + step.y};
}

VEC OfLength(VEC v, double length)
{
    return std::abs(v) > 0 ? v * length / std::abs(v) : VEC();
}

VEC HalfOf(const EmEMITTER &e, double rotation, const TEdcAxes &axes, const TZulEmitterLayer &layer)
{
    if (!e.model)
        return {};
    VEC half = Vec(Rounded(std::polar(e.model->Info()->size.x / 2 * axes.xScale, -rotation)));
    double a = layer.minThick + layer.markerX;
    double b = layer.minThickY + layer.markerY;
    if (a * a * half.real() * half.real() + b * b * half.imag() * half.imag() <= a * a * b * b)
        return Vec(Rounded({a * std::cos(rotation), -b * std::sin(rotation)}));
    return half;
}

FIGURE FigureOf(const EmEMITTER &e, const TEdcAxes &axes, const TZulEmitterLayer &layer)
{
    FIGURE f;
    f.hasModel = e.model != NULL;
    f.isTilted = e.tilt != 0;
    f.thick = std::max(layer.minThick, f.hasModel ? EdcNearest(e.model->Info()->size.y * axes.xScale) : 0);
    f.thin = std::max(layer.minThin, f.thick / 3);
    f.thinner = std::max(layer.minThin, f.thick / 6);
    f.centre = Rounded({axes.originX + e.pos.x * axes.xScale, axes.originY - e.pos.y * axes.yScale});
    VEC h = HalfOf(e, e.rotation, axes, layer);
    VEC n = OfLength(h * VEC(0, -1), (f.thick - f.thin) / 2 - 1);
    VEC a = OfLength(h, f.thick);
    f.endA = Offset(f.centre, h);
    f.endB = Offset(f.centre, -h);
    f.tiltA = Offset(f.endA, e.tilt < 0 ? -n : n);
    f.tiltB = Offset(f.endB, e.tilt < 0 ? -n : n);
    f.tipA = Offset(f.endA, n);
    f.tipB = Offset(f.tipA, a);
    f.tipC = Offset(f.tipB, a * VEC(0, 1));
    return f;
}

std::string Points(std::initializer_list<TPoint> points)
{
    std::string text;
    for (TPoint p : points)
        text += " " + std::to_string(p.x) + "," + std::to_string(p.y);
    return text;
}

std::string Pen(const char *color, int width)
{
    return std::string(" pen ") + color + (width > 1 ? " " + std::to_string(width) : "") + "\n";
}

/// The calls that paint it. `label` is what the marker says.
std::string PaintOf(const FIGURE &f, const TZulEmitterLayer &layer, TRecordDC &dc, const char *label,
                    const char *line, const char *fill)
{
    std::string calls;
    if (f.hasModel) {
        calls += "Line" + Points({f.endA, f.endB}) + Pen(line, f.thick);
        calls += "Polyline" + Points({f.tipA, f.tipB, f.tipC}) + Pen(line, f.thinner);
        if (f.isTilted)
            calls += "Line" + Points({f.tiltA, f.tiltB}) + Pen(fill, f.thin);
    }
    TPoint c = f.centre;
    calls += "Ellipse " + std::to_string(c.x - layer.markerX) + "," + std::to_string(c.y - layer.markerY) +
             "," + std::to_string(c.x + layer.markerX) + "," + std::to_string(c.y + layer.markerY) + " pen " +
             line + " brush " + fill + "\n";
    TDCState former = dc.State();
    dc.SetFont(layer.Font());
    TSize half = {dc.TextWidth(label, static_cast<int>(std::string(label).size())) / 2,
                  dc.FontMetrics().height / 2};
    dc.SetState(former);
    return calls + "Text " + std::to_string(c.x - half.cx) + "," + std::to_string(c.y - half.cy) + " \"" +
           label + "\" Arial " + std::to_string(layer.Font().height) + " " + line + "\n";
}

const double turns[] = {0, 0.1,  0.5,       AgPI / 4,  1.2,  AgPI / 2, 2, 3 * AgPI / 4,
                        3, AgPI, -AgPI / 2, -AgPI / 4, -0.3, -2.5};
const double tilts[] = {0, 0.4, -0.4};
const double scales[] = {0.5, 3, 10, 37.5, 200}; // px a metre

class EmitterSprites : public testing::Test, protected EmitterBench
{
protected:
    EmitterSprites()
    {
        home.Put({.name = "Breit", .length = 6, .width = 1.5});
        home.Put({.name = "Strahl", .length = 2, .width = 0.5, .beam = true});
        home.Put({.name = "Punkt", .length = 0, .width = 0});
    }
    ~EmitterSprites() override { EXPECT_STREQ(xCode, XNULL); }

    FIGURE Figure(const TZulEmitterSprite &spr) const { return FigureOf(*spr.Object(), axes, layer); }
    std::string Painted(TZulEmitterSprite &spr)
    {
        dc.calls.clear();
        spr.Paint(dc);
        return TakeCalls();
    }
    std::string Expected(const TZulEmitterSprite &spr, const char *line = "000000", const char *fill = "ffffff")
    {
        return PaintOf(Figure(spr), layer, dc, spr.label.Text(), line, fill);
    }
    /// As the room block does it at a zoom on a device.
    void Zoom(double scale, double mark)
    {
        Scale(scale);
        ZulSizeMarks(layer, dc, mark);
    }
    std::string Ghost(TEdcDrawDrag &drag, TZulEmitterSprite &spr)
    {
        dc.calls.clear();
        spr.DragUpdate(drag);
        spr.DragPaint(dc);
        return TakeCalls();
    }
};

const char *const models[] = {NULL, "Punkt", "Kurz", "Lang", "Breit"};
} // namespace

TEST_F(EmitterSprites, ShowBodyHookAndTiltedSideAtAnyTurnTiltAndScale)
{
    for (double scale : scales) {
        for (const char *model : models) {
            Zoom(scale, scale / 20);
            for (double turn : turns) {
                for (double tilt : tilts) {
                    TZulEmitterSprite *spr = Show(model, {3.25, 7.5, 5}, turn, tilt);
                    ASSERT_EQ(Painted(*spr), Expected(*spr))
                        << (model ? model : "none") << " at " << turn << " tilt " << tilt << " scale " << scale;
                }
            }
        }
    }
}

TEST_F(EmitterSprites, WithoutAModelShowTheNumberedMarkerAloneAndArePickedOnlyThere)
{
    TZulEmitterSprite *spr = Show(NULL, {3, 4, 5}, 0.5, 0.4);
    std::vector<std::string> lines = LinesOf(Painted(*spr));
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_EQ(lines[0].rfind("Ellipse ", 0), 0U);
    EXPECT_EQ(lines[1].rfind("Text ", 0), 0U);
    TPoint c = {230, 260};
    for (int dx = -60; dx <= 60; ++dx)
        for (int dy = -60; dy <= 60; ++dy)
            ASSERT_EQ(spr->HitTest({c.x + dx, c.y + dy}),
                      ZulInEllipse({dx, dy}, {}, layer.markerX, layer.markerY));
    EXPECT_TRUE(spr->InRect({c.x, c.y, c.x + 1, c.y + 1}));
    EXPECT_FALSE(spr->InRect({c.x + 1, c.y, c.x + 9, c.y + 9}));
    EXPECT_FALSE(spr->InRect({c.x - 9, c.y - 9, c.x, c.y + 9}));
}

TEST_F(EmitterSprites, AreLongerThanTheirMarkersHoweverShortTheModelIs)
{
    for (double scale : scales) {
        Zoom(scale, 1);
        for (const char *model : {"Punkt", "Kurz", "Lang"}) {
            for (double turn : turns) {
                FIGURE f = Figure(*Show(model, {}, turn));
                TPoint half = {f.endA.x - f.centre.x, f.endA.y - f.centre.y};
                double x = half.x / double(layer.markerX); // NOLINT: px
                double y = half.y / double(layer.markerY); // NOLINT
                EXPECT_GT(x * x + y * y, 1) << model << " at scale " << scale << " turned " << turn;
                double length = std::hypot(half.x, half.y);
                double trueHalf = (model == std::string("Lang")   ? 2
                                   : model == std::string("Kurz") ? 0.25
                                                                  : 0) *
                                  scale;
                EXPECT_GE(length + 2, trueHalf); // whole pixels, and the marker is a pixel lower than wide
                if (length > layer.markerX + layer.minThick + 2) {
                    EXPECT_NEAR(length, trueHalf, 1);
                }
                double direction = std::atan2(-half.y, half.x); // as the emitter is turned
                EXPECT_NEAR(std::remainder(direction - turn, 2 * AgPI), 0, 2.5 / length);
            }
        }
    }
}

TEST_F(EmitterSprites, TheBrightLineLiesOnTheSideThatGetsMoreRadiation)
{
    Scale(40);
    for (double turn : turns) {
        for (double tilt : {0.2, 0.6, -0.2, -0.6}) {
            TZulEmitterSprite *spr = Show("Strahl", {4, 3, 6}, turn, tilt);
            std::vector<std::string> lines = LinesOf(Painted(*spr));
            ASSERT_EQ(lines.size(), 5U);
            TPoint body, bright, bodyB, brightB;
            ASSERT_EQ(sscanf(lines[0].c_str(), "Line %d,%d %d,%d", &body.x, &body.y, &bodyB.x, &bodyB.y), 4);
            ASSERT_EQ(
                sscanf(lines[2].c_str(), "Line %d,%d %d,%d", &bright.x, &bright.y, &brightB.x, &brightB.y), 4);
            EXPECT_NE(lines[2].find("pen ffffff"), std::string::npos); // the fill colour
            // From the body to the line in metres of the hall, 2 m long.
            AgPOINT aside(bright.x - body.x, body.y - bright.y);
            aside = aside * (2 / aside.Length());
            EmEMITTER *e = spr->Object();
            e->Prepare();
            AgPOINT below = e->pos - AgPOINT(0, 0, 5);
            double there = e->Irradiation(below + aside);
            double opposite = e->Irradiation(below - aside);
            EXPECT_GT(there, opposite) << "turned " << turn << " tilted " << tilt;
        }
    }
}

TEST_F(EmitterSprites, TheHookShowsTheWayTheEmitterFacesAndIsTheSameOnBothTilts)
{
    Scale(40);
    for (double turn : turns) {
        FIGURE level = Figure(*Show("Breit", {}, turn, 0));
        FIGURE tilted = Figure(*Show("Breit", {}, turn, -0.4));
        EXPECT_EQ(level.tipC, tilted.tipC);
        VEC ahead = Vec(level.endA) - Vec(level.centre);
        VEC out = Vec(level.tipB) - Vec(level.tipA);
        EXPECT_NEAR(std::abs(std::arg(out / ahead)), 0, 0.05); // goes on beyond the end
        EXPECT_NEAR(std::abs(out), level.thick, 1);
        VEC back = Vec(level.tipC) - Vec(level.tipB);
        EXPECT_NEAR(std::arg(back / ahead), AgPI / 2, 0.05); // and turns across the end
    }
}

TEST_F(EmitterSprites, TheBrightLineLeavesARimOfTheBodyOutside)
{
    for (int thick = 5; thick < 40; ++thick) {
        for (double turn : {0.0, AgPI / 2, AgPI, -AgPI / 2}) {
            for (double tilt : {0.3, -0.3}) {
                Scale(thick * 2); // of half a metre's width
                TZulEmitterSprite *spr = Show("Lang", {0, 0, 5}, turn, tilt);
                TMemoryDC picture({160, 160}, 96);
                bool across = std::fabs(std::sin(turn)) > 0.5;
                // A cut through the body beside its marker.
                TPoint from = Figure(*spr).centre;
                VEC along = Vec(Figure(*spr).endA) - Vec(from);
                TPoint cut = Offset({80, 80}, along * 0.75);
                picture.SetViewportOrg({80 - from.x - (cut.x - 80), 80 - from.y - (cut.y - 80)});
                spr->Paint(picture);
                std::string row;
                for (int i = 0; i < 160; ++i)
                    row += picture.Pixel(across ? TPoint{i, 80} : TPoint{80, i}) == WIN_BLACK ? '#' : '.';
                size_t first = row.find('#'), last = row.rfind('#');
                ASSERT_NE(first, std::string::npos);
                EXPECT_EQ(last - first + 1, static_cast<size_t>(thick))
                    << "turned " << turn; // a rim on both sides
                EXPECT_EQ(std::count(row.begin(), row.end(), '#'), thick - std::max(1, thick / 3));
            }
        }
    }
}

TEST_F(EmitterSprites, LinesAreAtLeastAsWideAsCanBeSeenAndKeepTheirProportions)
{
    const struct {
        double scale;
        const char *model;
        int thick, thin, thinner;
    } cases[] = {{1, "Breit", 3, 1, 1},  {10, "Breit", 15, 5, 2}, {40, "Breit", 60, 20, 10},
                 {10, "Punkt", 3, 1, 1}, {10, "Kurz", 3, 1, 1},   {100, "Kurz", 25, 8, 4},
                 {10, "Lang", 5, 1, 1},  {40, "Lang", 20, 6, 3}};
    for (const auto &c : cases) {
        Scale(c.scale);
        TZulEmitterSprite *spr = Show(c.model, {}, 0.3, 0.1);
        std::vector<std::string> lines = LinesOf(Painted(*spr));
        ASSERT_EQ(lines.size(), 5U);
        auto width = [](const std::string &line) {
            size_t at = line.rfind(' ');
            return line[at + 1] == '0' || line[at + 1] == 'f' ? 1 : atoi(line.c_str() + at + 1);
        };
        EXPECT_EQ(width(lines[0]), c.thick) << c.model << " at " << c.scale;
        EXPECT_EQ(width(lines[1]), c.thinner) << c.model << " at " << c.scale;
        EXPECT_EQ(width(lines[2]), c.thin) << c.model << " at " << c.scale;
    }
    layer.SetMinSizes({8, 8}, {25, 25}); // on paper
    Scale(10);
    TZulEmitterSprite *spr = Show("Kurz", {}, 0.3, 0.1);
    std::vector<std::string> lines = LinesOf(Painted(*spr));
    EXPECT_TRUE(lines[0].ends_with("pen 000000 25")) << lines[0];
    EXPECT_TRUE(lines[1].ends_with("pen 000000 8")) << lines[1];
    EXPECT_TRUE(lines[2].ends_with("pen ffffff 8")) << lines[2];
}

TEST_F(EmitterSprites, AreBlackWhenIdleBlueWhenActiveGreenOnBlackWhenSelectedAndBlackOnPaper)
{
    for (double scale : scales) {
        Zoom(scale, scale / 20);
        for (const char *model : {"Kurz", "Lang"}) {
            TZulEmitterSprite *spr = Show(model, {1, 2, 3}, 0.7, 0.2);
            const std::string idle = Expected(*spr);
            EXPECT_EQ(Painted(*spr), idle);
            layer.SetActive(true);
            EXPECT_EQ(Painted(*spr), Expected(*spr, "0000ff"));
            layer.Select(spr, true, NULL);
            EXPECT_EQ(Painted(*spr), Expected(*spr, "00ff00", "000000"));
            layer.SetFocus(spr, NULL);
            EXPECT_EQ(Painted(*spr), Expected(*spr, "00ff00", "000000"));
            spr->PaintPlain(dc);
            EXPECT_EQ(TakeCalls(), idle);
            EXPECT_EQ(spr->state, EDC_SsACTIVE | EDC_SsSELECTED | EDC_SsFOCUS);
            spr->Decorate(dc); // there are no handles
            EXPECT_EQ(TakeCalls(), "");
            layer.SetActive(false);
        }
    }
}

TEST_F(EmitterSprites, ArePickedOnTheMarkerAndWithinHalfAThicknessOfTheBody)
{
    for (double scale : {3.0, 10.0, 30.0}) {
        Scale(scale);
        for (const char *model : {"Kurz", "Lang", "Breit"}) {
            for (double turn : {0.0, 0.5, AgPI / 2, -2.5}) {
                TZulEmitterSprite *spr = Show(model, {1, 2, 3}, turn, 0.3);
                FIGURE f = Figure(*spr);
                VEC along = Vec(f.endB) - Vec(f.endA);
                int hits = 0;
                for (int x = f.centre.x - 110; x <= f.centre.x + 110; ++x) {
                    for (int y = f.centre.y - 110; y <= f.centre.y + 110; ++y) {
                        // In the frame of the body: ahead of its end A and aside.
                        VEC local = (Vec({x, y}) - Vec(f.endA)) / along * std::abs(along);
                        double over = std::max({0.0, -local.real(), local.real() - std::abs(along)});
                        double distance = std::hypot(over, local.imag());
                        if (std::fabs(distance - f.thick / 2.0) < 1e-9)
                            continue; // rounding decides
                        bool hit = distance < f.thick / 2.0 ||
                                   ZulInEllipse({x, y}, f.centre, layer.markerX, layer.markerY);
                        hits += hit;
                        ASSERT_EQ(spr->HitTest({x, y}), hit)
                            << model << " turned " << turn << " at " << x << "," << y;
                    }
                }
                EXPECT_GT(hits, 50);
            }
        }
    }
}

TEST_F(EmitterSprites, LieInARectangleThatHoldsBothEnds)
{
    TZulEmitterSprite *spr = Show("Lang", {1, 2, 3}, 0.5);
    FIGURE f = Figure(*spr);
    TRect around = {std::min(f.endA.x, f.endB.x), std::min(f.endA.y, f.endB.y),
                    std::max(f.endA.x, f.endB.x) + 1, std::max(f.endA.y, f.endB.y) + 1};
    EXPECT_TRUE(spr->InRect(around));
    EXPECT_FALSE(spr->InRect({around.left + 1, around.top, around.right, around.bottom}));
    EXPECT_FALSE(spr->InRect({around.left, around.top + 1, around.right, around.bottom}));
    EXPECT_FALSE(spr->InRect({around.left, around.top, around.right - 1, around.bottom}));
    EXPECT_FALSE(spr->InRect({around.left, around.top, around.right, around.bottom - 1}));
    EXPECT_FALSE(spr->InRect({f.centre.x - 9, f.centre.y - 9, f.centre.x + 9, f.centre.y + 9}));
}

TEST_F(EmitterSprites, AreSeenFromOutsideAsAPointWithAnAngle)
{
    TZulEmitterSprite *spr = Show("Lang", {1, 2, 3}, 0.5);
    for (double ref : {0.0, 1.0}) {
        TEdcDrawDesc d;
        spr->Describe(d, ref);
        Complete(d);
        EXPECT_EQ(d.position, AgPOINT(1, 2, 0)); // without its height
        EXPECT_EQ(d.size, AgVECTOR());
        EXPECT_EQ(d.refAngle, ref);
        EXPECT_EQ(d.angle, 0.5);
        EXPECT_EQ(d.topRight, AgPOINT(1, 2, 0));
        EXPECT_EQ(d.centre, AgPOINT(1, 2, 0));
    }
}

TEST_F(EmitterSprites, TakeADragOfEveryKind)
{
    const AgPOINT pos(3, 4, 5.5);
    const double rotation = 0.75;
    const AgPOINT pivot(1, -2, 0);
    const AgVECTOR shift(2.5, -1.25);
    for (unsigned mode = 0; mode < 32; ++mode) {
        TZulEmitterSprite *spr = Show("Lang", pos, rotation, 0.2);
        layer.Select(spr, true, NULL);
        layer.SetFocus(spr, NULL);
        TEdcDrawDrag drag;
        drag.mode = mode;
        drag.pivot = pivot;
        drag.angle = 1.5;
        drag.shift = shift;
        std::complex<double> place(pos.x, pos.y), about(pivot.x, pivot.y);
        double turn = 0;
        if (mode & EDC_DRAWDRAGROTATE) {
            turn = mode & EDC_DRAWDRAGABSOLUTE ? 1.5 - rotation : 1.5;
            place = about + (place - about) * std::polar(1.0, turn);
        }
        if (mode & EDC_DRAWDRAGMOVE)
            place += std::complex<double>(shift.x, shift.y);
        auto *took = static_cast<TZulEmitterSprite *>(spr->Apply(drag));
        EmEMITTER *e = took->Object();
        EXPECT_NEAR(e->pos.x, place.real(), 1e-12) << mode;
        EXPECT_NEAR(e->pos.y, place.imag(), 1e-12) << mode;
        EXPECT_EQ(e->pos.z, 5.5) << mode;
        EXPECT_NEAR(e->rotation, rotation + turn, 1e-12) << mode;
        EXPECT_EQ(e->tilt, 0.2);
        EXPECT_EQ(e->power, 20000);
        bool copies = (mode & EDC_DRAWDRAGCOPY) != 0;
        EXPECT_EQ(took != spr, copies);
        EXPECT_EQ(set.Count(), copies ? 2 : 1);
        EXPECT_EQ(layer.CountLnk(), copies ? 2 : 1);
        EXPECT_EQ(doc.changes, copies ? 2 : 1);
        EXPECT_EQ(layer.CountSel(), 1);
        EXPECT_TRUE(layer.IsSelected(took));
        EXPECT_EQ(layer.Focus(), copies ? NULL : spr);
        if (copies) {
            EXPECT_EQ(TextOf(*spr->Object()), "Lang 3 4 5.5 rot 0.75 tilt 0.2 20000 W");
            EXPECT_EQ(set.First(), spr->Object());
            EXPECT_EQ(EmEMITTERSET::Next(set.First()), e); // behind its source
            EXPECT_EQ(e->model, spr->Object()->model);
        }
    }
}

TEST_F(EmitterSprites, RotationsWrapIntoTheHalfOpenCircle)
{
    const struct {
        double from, turn;
        bool absolute;
        double to;
    } cases[] = {
        {3, 1, false, 4 - 2 * AgPI}, {-3, -1, false, 2 * AgPI - 4}, {0, AgPI, false, AgPI},
        {0, -AgPI, false, AgPI},     {AgPI, AgPI, false, 0},        {1, 7 * AgPI, false, 1 - AgPI},
        {0.5, 2, true, 2},           {0.5, -AgPI, true, AgPI},      {-2, 9, true, 9 - 2 * AgPI},
        {AgPI, 0, false, AgPI},
    };
    for (const auto &c : cases) {
        TZulEmitterSprite *spr = Show("Lang", {1, 2, 3}, c.from);
        TEdcDrawDrag drag;
        drag.mode = EDC_DRAWDRAGROTATE | (c.absolute ? EDC_DRAWDRAGABSOLUTE : 0U);
        drag.pivot = AgPOINT(1, 2, 0);
        drag.angle = c.turn;
        spr->Apply(drag);
        EXPECT_NEAR(spr->Object()->rotation, c.to, 1e-12) << c.from << " by " << c.turn;
        EXPECT_GT(spr->Object()->rotation, -AgPI);
        EXPECT_LE(spr->Object()->rotation, AgPI);
        EXPECT_EQ(spr->Object()->pos, AgPOINT(1, 2, 3)); // about itself
    }
}

TEST_F(EmitterSprites, AGhostStandsWhereTheEmitterWillStand)
{
    Scale(20);
    for (const char *model : models) {
        for (unsigned mode : {1U, 4U, 12U, 5U, 13U}) {
            for (double turn : turns) {
                TZulEmitterSprite *spr = Show(model, {3, 4, 5.5}, turn, 0.2);
                TEdcDrawDrag drag;
                drag.mode = mode;
                drag.pivot = AgPOINT(1, -2, 0);
                drag.angle = -1.1;
                drag.shift = AgVECTOR(2.5, -1.25);
                std::string before = TextOf(set);
                std::string ghost = Ghost(drag, *spr);
                EXPECT_EQ(TextOf(set), before);
                spr->Apply(drag);
                spr->Layout(dc);
                FIGURE f = Figure(*spr);
                int a = layer.markerX, b = layer.markerY;
                std::string expected =
                    model ? "Line" + Points({f.endA, f.endB}) + " pen ffffff " + std::to_string(f.thick) +
                                " xor\n"
                          : "Ellipse " + std::to_string(f.centre.x - a) + "," + std::to_string(f.centre.y - b) +
                                "," + std::to_string(f.centre.x + a) + "," + std::to_string(f.centre.y + b) +
                                " pen ffffff brush none xor\n";
                EXPECT_EQ(ghost, expected) << mode << " turned " << turn;
            }
        }
    }
}

TEST_F(EmitterSprites, AGhostDrawnTwiceLeavesNoTrace)
{
    TMemoryDC picture({400, 400}, 96);
    for (int i = 0; i < 40; ++i) { // something below it
        picture.SetPen({.color = {static_cast<uint8_t>(i * 6), 90, 200}, .width = 5});
        picture.Line({0, i * 10}, {400, 400 - i * 9});
    }
    auto pixels = [&picture] {
        std::vector<TColor> all;
        for (int y = 0; y < 400; ++y)
            for (int x = 0; x < 400; ++x)
                all.push_back(picture.Pixel({x, y}));
        return all;
    };
    const std::vector<TColor> before = pixels();
    for (double scale : {2.0, 25.0}) {
        Scale(scale, {200, 200});
        for (const char *model : models) {
            TZulEmitterSprite *spr = Show(model, {1, -1, 5}, 0.4);
            TEdcDrawDrag drag;
            drag.mode = EDC_DRAWDRAGMOVE;
            drag.shift = AgVECTOR(-2, 1);
            TDCState state = picture.State();
            spr->DragUpdate(drag);
            spr->DragPaint(picture);
            EXPECT_NE(pixels(), before);
            spr->DragPaint(picture);
            EXPECT_EQ(pixels(), before) << (model ? model : "none") << " at " << scale;
            EXPECT_EQ(picture.State().mix, state.mix);
            EXPECT_EQ(picture.State().pen, state.pen);
        }
    }
}

TEST_F(EmitterSprites, AWholeDragErasesWhatItDrewAndDropsTheEmitterOnTheGrid)
{
    axes.SetSnap(0.5, 0.5);
    TZulEmitterSprite *spr = Show("Lang", {3.1, 4.2, 5.5}, 0.5);
    layer.SetActive(true);
    layer.Select(spr, true, NULL);
    layer.SetFocus(spr, NULL);
    layer.SetTool(EDC_TlSELECT);
    layer.Layout(dc);
    dc.calls.clear();
    spr->DragBegin(dc, 1, {231, 258}, {7, 0});
    spr->DragMove(dc, 1, {231, 258}, {12, -8});
    spr->DragHide(dc, true);
    spr->DragHide(dc, false);
    spr->DragEnd(dc, 1, {231, 258}, {20, -10});
    std::map<std::string, int> ghosts;
    for (const std::string &line : LinesOf(TakeCalls()))
        if (line.ends_with(" xor"))
            ++ghosts[line];
    EXPECT_EQ(ghosts.size(), 2U);
    for (const auto &[line, count] : ghosts)
        EXPECT_EQ(count % 2, 0) << line;
    EXPECT_EQ(TextOf(set), "Lang 5 5 5.5 rot 0.5 tilt 0 20000 W\n");
}

TEST_F(EmitterSprites, AModelOfAnyLengthStaysOnThePlan)
{
    home.Put({.name = "Weit", .length = 1e300, .width = 1e300});
    home.Put({.name = "Verkehrt", .length = -4, .width = -0.5});
    for (double turn : turns) {
        for (double place : {0.0, 1e9, -1e300}) {
            TZulEmitterSprite *spr = Show("Weit", {place, place, 4}, turn, 0.3);
            EXPECT_EQ(LinesOf(Painted(*spr)).size(), 5U);
            spr->HitTest({5, 5});
            TEdcDrawDrag drag;
            drag.mode = EDC_DRAWDRAGMOVE;
            EXPECT_NE(Ghost(drag, *spr), "");
        }
        FIGURE there = Figure(*Show("Lang", {1, 1, 4}, turn));
        TZulEmitterSprite *spr = Show("Verkehrt", {1, 1, 4}, turn);
        std::string body = LinesOf(Painted(*spr))[0]; // faces the other way, as thick
        EXPECT_EQ(body, "Line" + Points({there.endB, there.endA}) + " pen 000000 5");
    }
}
