// The numbered marks of a plan: fonts, smallest sizes, markers that are round on the device, and the ellipse
// test.
#include "support/child.h"
#include "usr/edcutils.h"
#include "win/dc.h"
#include "zulemittcase.h"

#include <climits>
#include <cmath>

namespace
{
class MarkLayer : public TZulMarkedLayer
{
public:
    using TZulMarkedLayer::fontSize;
    using TZulMarkedLayer::MakeRoundMarker;
    using TZulMarkedLayer::NumberSize;
    explicit MarkLayer(TEdcAxes *plan) : TZulMarkedLayer(77, 7, plan) {}
};

/// A printer with different resolutions across and down.
class WideDC : public TRecordDC
{
public:
    WideDC(int x, int y) : TRecordDC(x), down(y) {}
    int DpiY() const override { return down; }

private:
    int down;
};

class Marks : public testing::Test
{
protected:
    Marks()
    {
        TestApplication();
        SetAppDocument(&doc);
    }
    TEdcDocument doc;
    TEdcAxes axes;
    MarkLayer layer{&axes};
    TRecordDC dc;
};
} // namespace

TEST_F(Marks, AFontOfNoHeightCountsAsOnePixelAndANewFontAsksForALayout)
{
    const struct {
        int given, taken;
    } cases[] = {{0, 1}, {1, 1}, {10, 10}, {300, 300}};
    for (const auto &c : cases) {
        doc.obsolete = 0;
        layer.SetFont("Courier New", c.given);
        EXPECT_EQ(layer.fontSize, c.taken);
        EXPECT_EQ(layer.Font(), (TFont{.face = "Courier New", .height = c.taken, .weight = 400}));
        EXPECT_EQ(doc.obsolete, EDC_LAYOUT);
    }
    EXPECT_TRUE(
        AbortsOnAssertion("name != NULL && size >= 0", "usr/zulmark.cpp", [this] { layer.SetFont(NULL, 10); }));
    EXPECT_TRUE(AbortsOnAssertion("name != NULL && size >= 0", "usr/zulmark.cpp",
                                  [this] { layer.SetFont("Arial", -1); }));
}

TEST_F(Marks, AThickLineIsTwoPixelsWiderThanAThinOneWhichIsAtLeastOneWide)
{
    EXPECT_EQ(layer.minThin, 1);
    EXPECT_EQ(layer.minThick, 3);
    const struct {
        int thin, thick, takenThin, takenThick;
    } cases[] = {
        {0, 0, 1, 3}, {1, 1, 1, 3}, {1, 3, 1, 3}, {1, 4, 1, 4},  {2, 4, 2, 4},  {3, 4, 2, 4},
        {9, 4, 2, 4}, {4, 9, 4, 9}, {8, 9, 7, 9}, {-5, 7, 1, 7}, {7, -5, 1, 3}, {8, 25, 8, 25},
    };
    for (const auto &x : cases) {
        for (const auto &y : cases) {
            doc.obsolete = 0;
            layer.SetMinSizes({x.thin, y.thin}, {x.thick, y.thick});
            EXPECT_EQ(layer.minThin, x.takenThin) << x.thin << " of " << x.thick;
            EXPECT_EQ(layer.minThick, x.takenThick) << x.thin << " of " << x.thick;
            EXPECT_EQ(layer.minThinY, y.takenThin) << y.thin << " of " << y.thick;
            EXPECT_EQ(layer.minThickY, y.takenThick) << y.thin << " of " << y.thick;
            EXPECT_EQ(doc.obsolete, EDC_LAYOUT);
        }
    }
}

TEST_F(Marks, ALayerCanBeSetUpBeforeThereIsADocument)
{
    EXPECT_EQ(RunInChild([] {
                  SetAppDocument(NULL);
                  TEdcAxes plan;
                  MarkLayer early(&plan);
                  early.SetFont("Arial", 12);
                  early.SetMinSizes({2, 2}, {5, 5});
                  exit(early.fontSize == 12 && early.minThick == 5 ? 42 : 1);
              }).exitCode,
              42);
}

TEST_F(Marks, ANumberIsAsWideAsManyZerosAsTheCountHasDigits)
{
    const struct {
        int count, digits;
    } cases[] = {{0, 1},   {1, 1},   {9, 1},   {10, 2},   {99, 2},
                 {100, 3}, {500, 3}, {999, 3}, {1000, 4}, {INT_MAX, 10}};
    layer.SetFont("Arial", 20);
    dc.SetFont({.face = "Arial", .height = 20, .weight = 400});
    int zero = dc.TextWidth("0", 1);
    int height = dc.FontMetrics().height;
    dc.SetFont({.face = "Courier New", .height = 50});
    for (const auto &c : cases) {
        TSize size = layer.NumberSize(dc, c.count);
        EXPECT_EQ(size.cx, zero * c.digits) << c.count;
        EXPECT_EQ(size.cy, height) << c.count;
    }
    EXPECT_EQ(dc.State().font.height, 50); // measuring leaves the context as it was
}

TEST_F(Marks, AMarkerIsRoundOnTheDeviceAndHoldsItsNumber)
{
    const struct {
        int dpiX, dpiY;
    } devices[] = {{96, 96}, {144, 144}, {600, 600}, {600, 300}, {72, 216}};
    for (const auto &d : devices) {
        WideDC device(d.dpiX, d.dpiY);
        for (int size : {1, 8, 11, 30, 67, 200}) {
            layer.SetFont("Arial", size);
            for (int count : {3, 42, 500}) {
                TSize number = layer.NumberSize(device, count);
                layer.MakeRoundMarker(device, count);
                double x = number.cx / 2 / double(d.dpiX); // NOLINT: whole pixels
                double y = number.cy / 2 / double(d.dpiY); // NOLINT
                double inches = std::hypot(x, y);
                EXPECT_EQ(layer.markerX, std::lround(inches * d.dpiX)) << size << " px, " << count;
                EXPECT_EQ(layer.markerY, std::lround(inches * d.dpiY) - 1) << size << " px, " << count;
                EXPECT_NEAR(layer.markerX / double(d.dpiX), (layer.markerY + 1) / double(d.dpiY),
                            0.5 / d.dpiX + 0.5 / d.dpiY);
                EXPECT_GE(layer.markerX, number.cx / 2);
                EXPECT_GE(layer.markerY + 1, number.cy / 2);
            }
        }
    }
}

TEST_F(Marks, TheEllipseTestTakesTheSquaresAsTheyAreWritten)
{
    const TPoint centre = {1000, -2000};
    const struct {
        int a, b;
    } ellipses[] = {{0, 0}, {1, 1}, {7, 6}, {6, 7}, {12, 12}, {20, 3}, {0, 5}, {-4, 4}};
    for (const auto &e : ellipses)
        for (int dx = -25; dx <= 25; ++dx)
            for (int dy = -25; dy <= 25; ++dy)
                ASSERT_EQ(ZulInEllipse({centre.x + dx, centre.y + dy}, centre, e.a, e.b),
                          e.a * e.a * dx * dx + e.b * e.b * dy * dy <= e.a * e.a * e.b * e.b)
                    << dx << "," << dy << " in " << e.a << "," << e.b;
    EXPECT_TRUE(ZulInEllipse({6, 0}, {}, 7, 6)); // the first half axis is that of y
    EXPECT_FALSE(ZulInEllipse({7, 0}, {}, 7, 6));
    EXPECT_TRUE(ZulInEllipse({0, 7}, {}, 7, 6));
    EXPECT_FALSE(ZulInEllipse({INT_MAX, INT_MAX}, {INT_MIN, INT_MIN}, 10, 10));
    EXPECT_TRUE(ZulInEllipse({INT_MAX, 0}, {INT_MIN, 0}, INT_MAX, INT_MAX) == false);
}

TEST_F(Marks, FontAndLinesKeepTheirSizeOnPaperWhateverTheZoom)
{
    const struct {
        int dpi;
        double scale;
        int font, thin, thick;
    } cases[] = {{96, 1, 11, 1, 4},  {96, 0.5, 5, 1, 3},  {96, 2, 21, 3, 8},  {96, 5, 53, 7, 20},
                 {144, 1, 16, 2, 6}, {600, 1, 67, 8, 25}, {96, 0.05, 1, 1, 3}};
    for (const auto &c : cases) {
        TRecordDC device(c.dpi);
        ZulSizeMarks(layer, device, c.scale);
        EXPECT_EQ(layer.Font(), (TFont{.face = "Arial", .height = c.font, .weight = 400})) << c.dpi;
        EXPECT_EQ(layer.minThin, c.thin) << c.dpi << " dpi at " << c.scale;
        EXPECT_EQ(layer.minThinY, c.thin);
        EXPECT_EQ(layer.minThick, c.thick) << c.dpi << " dpi at " << c.scale;
        EXPECT_EQ(layer.minThickY, c.thick);
    }
}

TEST_F(Marks, AMarkerIsAFilledEllipseWithAThinOutlineAndTheNumberStandsInItsMiddle)
{
    dc.SetPen({.color = {1, 2, 3}, .width = 9});
    ZulPaintMarker(dc, {100, 50}, 8, 7, {0, 0, 255}, WIN_WHITE);
    EXPECT_EQ(dc.calls, "Ellipse 92,43,108,57 pen 0000ff brush ffffff\n");
    EXPECT_EQ(dc.State().pen.width, 9);
    dc.calls.clear();
    TZulLabel label;
    EXPECT_STREQ(label.Text(), "");
    label.Set(107);
    EXPECT_STREQ(label.Text(), "107");
    label.Set(INT_MAX);
    EXPECT_STREQ(label.Text(), "2147483647");
    label.Set(12);
    TFont font = {.face = "Arial", .height = 20, .weight = 400};
    label.Paint(dc, font, {100, 50}, {0, 255, 0});
    dc.SetFont(font);
    int left = 100 - dc.TextWidth("12", 2) / 2;
    int top = 50 - dc.FontMetrics().height / 2;
    EXPECT_EQ(dc.calls,
              "Text " + std::to_string(left) + "," + std::to_string(top) + " \"12\" Arial 20 00ff00\n");
}

TEST_F(Marks, ARectangleWithRoundedCornersStaysWithinItsPlaceAndTouchesAllSides)
{
    class PointsDC : public TRecordDC
    {
    public:
        void Polygon(const TPoint *p, int count) override { points.assign(p, p + count); }
        std::vector<TPoint> points;
    } device;
    for (const TRect &rect :
         {TRect{10, 20, 110, 60}, TRect{0, 0, 5, 5}, TRect{3, 4, 4, 5}, TRect{-9, -9, 40, 0}}) {
        for (int corner : {0, 1, 8, 500}) {
            ZulRoundRect(device, rect, corner, corner / 2);
            TRect box = {INT_MAX, INT_MAX, INT_MIN, INT_MIN};
            for (TPoint p : device.points)
                box = {std::min(box.left, p.x), std::min(box.top, p.y), std::max(box.right, p.x),
                       std::max(box.bottom, p.y)};
            EXPECT_EQ(box, (TRect{rect.left, rect.top, rect.right - 1, rect.bottom - 1})) << corner;
        }
    }
}
