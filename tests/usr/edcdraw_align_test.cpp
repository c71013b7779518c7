// Alignment without its dialog, against the same geometry worked out on complex numbers: a rectangle is its
// centre, its extents and its direction, and what it measures along a line follows from the angle between the
// two.
#include "lib/xfail.h"
#include "support/chance.h"
#include "support/child.h"
#include "support/plandoc.h"
#include "support/testapp.h"
#include "usr/edcapp.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <vector>

namespace
{
using POINT = std::complex<double>; // m, x and y

struct BOX {
    POINT centre;
    double width;
    double height;
    double angle; // rad

    double Along(double line) const
    {
        return std::abs(width * std::cos(angle - line)) + std::abs(height * std::sin(angle - line));
    }
    double Across(double line) const { return Along(line + AgPI / 2); }
};

/// The plain twin of an alignment; `focus` turns and moves like all others.
std::vector<BOX> Aligned(std::vector<BOX> boxes, const TEdcDrawAlign &spec)
{
    POINT from(spec.org.x, spec.org.y);
    POINT way = POINT(spec.end.x, spec.end.y) - from;
    double line = std::arg(way);
    auto along = [&](const BOX &box) { return std::real((box.centre - from) / std::polar(1.0, line)); };
    std::vector<size_t> order(boxes.size());
    for (size_t i = 0; i < order.size(); ++i)
        order[i] = i;
    bool spreads = spec.mode & TEdcDrawAlign::STRETCH;
    if (spreads && !(spec.mode & TEdcDrawAlign::SELORDER))
        std::stable_sort(order.begin(), order.end(),
                         [&](size_t a, size_t b) { return along(boxes[a]) < along(boxes[b]); });
    if (spec.mode & TEdcDrawAlign::ROTATE)
        for (BOX &box : boxes)
            box.angle = spec.angle + (spec.mode & TEdcDrawAlign::TOXAXIS ? 0 : line);
    double taken = 0;
    for (const BOX &box : boxes)
        taken += box.Along(line);
    bool gaps = spec.mode & TEdcDrawAlign::GAPS;
    double steps = static_cast<double>(boxes.size()) - 1;
    double step = steps < 1 ? 0 : (std::abs(way) - (gaps ? taken : 0)) / steps;
    if (spec.mode & TEdcDrawAlign::VALUE)
        step = spec.value;
    double edge = 0;
    for (size_t n = 0; n < order.size(); ++n) {
        BOX &box = boxes[order[n]];
        double at = along(box);
        if (spreads)
            at = gaps ? edge + box.Along(line) / 2 : static_cast<double>(n) * step;
        edge += box.Along(line) + step;
        double aside = 0;
        if ((spec.mode & 7) == TEdcDrawAlign::BELOW)
            aside = -box.Across(line) / 2;
        if ((spec.mode & 7) == TEdcDrawAlign::ABOVE)
            aside = box.Across(line) / 2;
        box.centre = from + std::polar(1.0, line) * POINT(at, aside);
    }
    return boxes;
}

class Align : public testing::Test
{
protected:
    Align()
    {
        TestApplication();
        SetAppDocument(&doc);
        doc.NewDocument(true);
        doc.plan->rects.SetActive(true);
    }
    TPlanRect *Put(const BOX &box)
    {
        auto *spr =
            new TPlanRect(AgPOINT(box.centre.real(), box.centre.imag()), box.width, box.height, box.angle);
        doc.plan->rects.Add(spr);
        doc.plan->rects.Select(spr, true, NULL);
        return spr;
    }
    static BOX Now(const TPlanRect &rect)
    {
        return {{rect.Centre().x, rect.Centre().y}, rect.Size().x, rect.Size().y, rect.RectAngle()};
    }
    static testing::AssertionResult Near(const BOX &a, const BOX &b)
    {
        double turn = std::abs(std::remainder(a.angle - b.angle, 2 * AgPI));
        if (std::abs(a.centre - b.centre) < 1e-9 && turn < 1e-9 && a.width == b.width && a.height == b.height)
            return testing::AssertionSuccess();
        return testing::AssertionFailure()
               << a.centre << " at " << a.angle << " is not " << b.centre << " at " << b.angle;
    }
    TEdcDrawLayer &Layer() { return doc.plan->rects; }

    TPlanDoc doc;
};

TEST_F(Align, DoesAsThePlainGeometryForAnySelectionAndLine)
{
    CHANCE chance(20);
    for (int round = 0; round < 3000; ++round) {
        SCOPED_TRACE(round);
        std::vector<BOX> boxes;
        std::vector<TPlanRect *> sprites;
        int n = chance.Int(1, 7);
        for (int i = 0; i < n; ++i) {
            boxes.push_back({{chance.Real(-10, 70), chance.Real(-10, 40)},
                             chance.Real(0, 6),
                             chance.Real(0, 6),
                             chance.One(3) ? 0 : chance.Real(-3.1, 3.1)});
            sprites.push_back(Put(boxes.back()));
        }
        Layer().SetFocus(sprites[static_cast<size_t>(chance.Int(0, n - 1))], NULL);
        TEdcDrawAlign spec;
        const uint32_t sides[] = {TEdcDrawAlign::BELOW, TEdcDrawAlign::MIDDLE, TEdcDrawAlign::ABOVE};
        spec.mode = chance.Of(sides) | (static_cast<uint32_t>(chance.Int(0, 63)) << 3);
        spec.org = AgPOINT(chance.Real(0, 60), chance.Real(0, 24));
        spec.end = spec.org + AgPOINT(chance.Real(1, 30), chance.Real(-20, 20)) * (chance.One(2) ? 1 : -1);
        spec.angle = chance.Real(-3, 3);
        spec.value = chance.Real(-2, 9);
        Layer().Align(spec);
        ASSERT_EQ(xCode, XNULL);
        std::vector<BOX> expected = Aligned(boxes, spec);
        for (size_t i = 0; i < boxes.size(); ++i)
            ASSERT_TRUE(Near(Now(*sprites[i]), expected[i])) << "mode " << spec.mode << " sprite " << i;
        EXPECT_TRUE(doc.IsObsolete(EDC_LAYOUT));
        Layer().DeleteAll(true);
    }
}

TEST_F(Align, PutsASingleSpriteThatIsSpreadOnTheBeginning)
{
    TPlanRect *only = Put({{30, 5}, 4, 2, 0});
    Layer().SetFocus(only, NULL);
    Layer().Align({TEdcDrawAlign::MIDDLE | TEdcDrawAlign::STRETCH, AgPOINT(3, 4), AgPOINT(20, 9), 0, 0});
    EXPECT_TRUE(Near(Now(*only), {{3, 4}, 4, 2, 0}));
}

TEST_F(Align, LetsSpritesOverlapThatAreLongerThanTheLine)
{
    TPlanRect *a = Put({{1, 1}, 8, 1, 0});
    TPlanRect *b = Put({{2, 1}, 8, 1, 0});
    Layer().SetFocus(a, NULL);
    Layer().Align({TEdcDrawAlign::MIDDLE | TEdcDrawAlign::STRETCH | TEdcDrawAlign::GAPS, AgPOINT(0, 0),
                   AgPOINT(10, 0), 0, 0});
    EXPECT_TRUE(Near(Now(*a), {{4, 0}, 8, 1, 0}));
    EXPECT_TRUE(Near(Now(*b), {{6, 0}, 8, 1, 0})); // from 2 to 10, over the first by 6 m
}

TEST_F(Align, KeepsTheOrderAlongTheLineOrThatOfSelecting)
{
    for (bool bySelection : {false, true}) {
        TPlanRect *right = Put({{20, 0}, 1, 1, 0});
        TPlanRect *left = Put({{10, 0}, 1, 1, 0});
        Layer().SetFocus(left, NULL);
        uint32_t order = bySelection ? uint32_t{TEdcDrawAlign::SELORDER} : 0U;
        Layer().Align(
            {TEdcDrawAlign::MIDDLE | TEdcDrawAlign::STRETCH | order, AgPOINT(0, 0), AgPOINT(9, 0), 0, 0});
        EXPECT_NEAR(right->Centre().x, bySelection ? 0 : 9, 1e-12);
        EXPECT_NEAR(left->Centre().x, bySelection ? 9 : 0, 1e-12);
        Layer().DeleteAll(true);
    }
}

TEST_F(Align, TurnsAlongTheLineOrAlongTheXAxis)
{
    for (bool toAxis : {false, true}) {
        TPlanRect *a = Put({{5, 5}, 4, 1, 1});
        Layer().SetFocus(a, NULL);
        uint32_t kind = toAxis ? uint32_t{TEdcDrawAlign::TOXAXIS} : 0U;
        Layer().Align(
            {TEdcDrawAlign::MIDDLE | TEdcDrawAlign::ROTATE | kind, AgPOINT(0, 0), AgPOINT(3, -3), 0, 0});
        EXPECT_NEAR(a->RectAngle(), toAxis ? 0 : -AgPI / 4, 1e-12);
        Layer().DeleteAll(true);
    }
}

TEST_F(Align, NeedsALineAndAFocus)
{
    TPlanRect *a = Put({{5, 5}, 4, 1, 1});
    EXPECT_TRUE(AbortsOnAssertion("focusNode != NULL", "usr/edcdraw_align.cpp", [&] {
        Layer().Align({TEdcDrawAlign::MIDDLE, AgPOINT(0, 0), AgPOINT(1, 0), 0, 0});
    }));
    Layer().SetFocus(a, NULL);
    EXPECT_TRUE(AbortsOnAssertion("org != end", "usr/edcdraw_align.cpp", [&] {
        Layer().Align({TEdcDrawAlign::MIDDLE, AgPOINT(2, 1), AgPOINT(2, 1), 0, 0});
    }));
    Layer().SelectAll(false, NULL);
    EXPECT_TRUE(AbortsOnAssertion("foc != NULL", "usr/edcdraw_align.cpp", [&] {
        TEdcDrawDrag drag;
        Layer().ApplyDrag(drag);
    }));
}

TEST_F(Align, NeedsAHandleForAStepOfAHandle)
{
    TPlanRect *a = Put({{5, 5}, 4, 1, 0});
    Layer().SetFocus(a, NULL);
    TEdcDrawDrag drag;
    drag.mode = EDC_DRAWDRAGMOVE | EDC_DRAWDRAGHANDLE;
    drag.shift = AgPOINT(1, 1);
    EXPECT_TRUE(AbortsOnAssertion("handle != NULL", "usr/edcdraw_align.cpp", [&] { Layer().ApplyDrag(drag); }));
    TEdcDrawHandle handle;
    handle.index = 2;
    drag.handle = &handle;
    Layer().ApplyDrag(drag);
    EXPECT_NEAR(a->Centre().x, 5.5, 1e-12);
    EXPECT_NEAR(a->Centre().y, 5.5, 1e-12);
    EXPECT_NEAR(a->Size().x, 5, 1e-12);
    EXPECT_NEAR(a->Size().y, 2, 1e-12);
}

/// A sprite that fails when it is to be applied to.
class Stubborn : public TPlanRect
{
public:
    using TPlanRect::TPlanRect;
    TEdcDrawSprite *Apply(TEdcDrawDrag &) override
    {
        XRaise(XALLOC, __FILE__, __LINE__);
        return this;
    }
};

TEST_F(Align, LeavesSpritesAsFarAsTheyWereMovedWhereOneFails)
{
    TPlanRect *first = Put({{5, 5}, 4, 1, 0});
    auto *second = new Stubborn(AgPOINT(9, 9), 2, 2);
    Layer().Add(second);
    Layer().Select(second, true, NULL);
    Layer().SetFocus(first, NULL);
    Layer().Align({TEdcDrawAlign::MIDDLE | TEdcDrawAlign::STRETCH, AgPOINT(0, 0), AgPOINT(10, 0), 0, 0});
    EXPECT_EQ(xCode, XALLOC);
    xCode = XNULL;
    EXPECT_TRUE(Near(Now(*first), {{0, 0}, 4, 1, 0}));
    EXPECT_TRUE(Near(Now(*second), {{9, 9}, 2, 2, 0}));
}

TEST_F(Align, AppliesAStepToTheWholeSelectionAboutEachCentre)
{
    TPlanRect *a = Put({{5, 5}, 4, 1, 0});
    TPlanRect *b = Put({{9, 9}, 2, 2, 0.5});
    Layer().SetFocus(b, NULL);
    TEdcDrawDrag drag;
    drag.mode = EDC_DRAWDRAGMOVE | EDC_DRAWDRAGROTATE;
    drag.shift = AgPOINT(1, -2);
    drag.angle = 0.25;
    Layer().ApplyDrag(drag);
    EXPECT_TRUE(Near(Now(*a), {{6, 3}, 4, 1, 0.25}));
    EXPECT_TRUE(Near(Now(*b), {{10, 7}, 2, 2, 0.75}));
    drag.mode = EDC_DRAWDRAGMOVE | EDC_DRAWDRAGCOPY;
    Layer().ApplyDrag(drag);
    EXPECT_EQ(Layer().CountLnk(), 4);
    EXPECT_EQ(Layer().CountSel(), 2);
    EXPECT_TRUE(Near(Now(*a), {{6, 3}, 4, 1, 0.25})); // the originals stay
    for (TEdcSprite *spr = Layer().SelFirst(); spr; spr = spr->selNext)
        EXPECT_NE(spr, a);
}
} // namespace
