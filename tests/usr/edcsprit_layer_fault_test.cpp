#include "layerfixture.h"
#include "support/child.h"

#include <algorithm>
#include <functional>
#include <new>

namespace
{
TEST_F(Layer, ASpriteLeavesItsLayerAlsoWhileAFailureIsPending)
{
    Fill();
    ly.SetActive(true);
    Select("abc", 'b');
    XRaise(XLIMIT, __FILE__, __LINE__);
    delete (*this)['b'];
    ly.Remove((*this)['a']);
    EXPECT_EQ(TakeFailure(), XLIMIT);
    EXPECT_EQ(Lists(), "c c c -");
    EXPECT_TRUE(ly.IsSound());
    delete (*this)['a'];
}

struct Walk {
    const char *name;
    std::function<void(TTestLayer &, TDC &)> run;
    const char *calls; // on sprites a, b, c, painted in the order b, c, a
};
const Walk walks[] = {
    {"SetTool", [](TTestLayer &ly, TDC &) { ly.SetTool(21011); }, "a.tool21011 b.tool21011 c.tool21011 "},
    {"Layout", [](TTestLayer &ly, TDC &dc) { ly.Layout(dc); }, "a.layout b.layout c.layout "},
    {"Reload", [](TTestLayer &ly, TDC &) { ly.Reload(NULL); }, "a.reload b.reload c.reload "},
    {"Paint", [](TTestLayer &ly, TDC &dc) { ly.Paint(dc, {}); }, "b.paint c.paint a.paint a.decorate "},
    {"PaintPlain", [](TTestLayer &ly, TDC &dc) { ly.PaintPlain(dc, {}); }, "b.paint c.paint a.paint "},
};

TEST_F(Layer, WalksReachEverySpriteInTheirOrder)
{
    Fill();
    ly.logs = false;
    ly.SetActive(true);
    Select("a", 'a');
    EXPECT_EQ(ly.Pnt(), "bca");
    for (const Walk &walk : walks) {
        walk.run(ly, dc);
        EXPECT_EQ(log.Take(), walk.calls) << walk.name;
        EXPECT_STREQ(xCode, XNULL) << walk.name;
    }
    EXPECT_EQ(ly.ToolId(), 21011);
}

TEST_F(Layer, AFailureStopsAWalkAndStaysPending)
{
    Fill();
    ly.logs = false;
    ly.SetActive(true);
    Select("a", 'a');
    for (const Walk &walk : walks) {
        std::string calls;
        for (const char *p = walk.calls; *p; ++p) {
            calls += *p;
            if (*p != ' ')
                continue;
            int n = static_cast<int>(std::count(calls.begin(), calls.end(), ' '));
            log.failAt = n;
            walk.run(ly, dc);
            EXPECT_EQ(log.Take(), calls) << walk.name;
            EXPECT_EQ(TakeFailure(), XALLOC) << walk.name;
            EXPECT_TRUE(ly.IsSound()) << walk.name;
        }
    }
}

TEST_F(Layer, APendingFailureKeepsAWalkFromStarting)
{
    Fill();
    ly.SetActive(true);
    for (const Walk &walk : walks) {
        XRaise(XLIMIT, __FILE__, __LINE__);
        walk.run(ly, dc);
        EXPECT_EQ(TakeFailure(), XLIMIT) << walk.name;
        EXPECT_EQ(log.Take(), "") << walk.name;
    }
}

TEST_F(Layer, AnObjectThatCannotBeDiscardedKeepsItsSpriteAndThoseBehind)
{
    Fill("abcd");
    ly.SelectAll(true, NULL);
    log.Take();
    log.failAt = 3; // b.discard: a.discard, a.gone is only noted
    ly.DeleteAll(true);
    EXPECT_EQ(TakeFailure(), XALLOC);
    EXPECT_EQ(log.Take(), "a.discard a.gone b.discard b.gone c.discard ");
    EXPECT_EQ(ly.Lnk(), "cd");
    log.failAt = 1;
    ly.DeleteSelected(true);
    EXPECT_EQ(TakeFailure(), XALLOC);
    EXPECT_EQ(ly.Sel(), "cd");
    EXPECT_TRUE(ly.IsSound());
}

TEST_F(Layer, AFailedDeletionStillAnswersTheCommand)
{
    Fill();
    ly.SetActive(true);
    Select("ab");
    log.failAt = 2;
    EXPECT_TRUE(ly.Command(EDC_CmDELETE));
    EXPECT_EQ(TakeFailure(), XALLOC);
    EXPECT_EQ(Lists(), "bc cb b -");
    EXPECT_TRUE(ly.IsSound());
}

struct Drawing {
    const char *name;
    std::function<void(TTestLayer &, TDC &, TTestSprite *const *)> run; // sprites a, b, c ...
};
const Drawing drawings[] = {
    {"Select", [](TTestLayer &ly, TDC &dc, auto spr) { ly.Select(spr[3], true, &dc); }},
    {"Deselect", [](TTestLayer &ly, TDC &dc, auto spr) { ly.Select(spr[1], false, &dc); }},
    {"Deselect the focus", [](TTestLayer &ly, TDC &dc, auto spr) { ly.Select(spr[0], false, &dc); }},
    {"SelectAll", [](TTestLayer &ly, TDC &dc, auto) { ly.SelectAll(true, &dc); }},
    {"Select none", [](TTestLayer &ly, TDC &dc, auto) { ly.SelectAll(false, &dc); }},
    {"InvertSelection", [](TTestLayer &ly, TDC &dc, auto) { ly.InvertSelection(&dc); }},
    {"SetFocus", [](TTestLayer &ly, TDC &dc, auto spr) { ly.SetFocus(spr[1], &dc); }},
    {"No focus", [](TTestLayer &ly, TDC &dc, auto) { ly.SetFocus(NULL, &dc); }},
    {"RepaintSprite", [](TTestLayer &ly, TDC &dc, auto spr) { ly.RepaintSprite(spr[2], &dc); }},
    {"RepaintSelection", [](TTestLayer &ly, TDC &dc, auto) { ly.RepaintSelection(&dc); }},
    {"UnlockRepaint",
     [](TTestLayer &ly, TDC &dc, auto) {
         ly.LockRepaint();
         ly.UnlockRepaint(&dc, true);
     }},
    {"Decorate locks",
     [](TTestLayer &ly, TDC &dc, auto) {
         ly.LockDecorate(&dc);
         ly.UnlockDecorate(&dc);
     }},
};

TEST_F(Layer, WhereverDrawingFailsTheListsStaySoundAndTheRestIsLeftToTheRefresh)
{
    int failures = 0;
    for (const Drawing &row : drawings)
        for (int n = 1;; ++n) {
            SCOPED_TRACE(testing::Message() << row.name << ", call " << n);
            Fill("abcde");
            ly.SetActive(true);
            Select("abc", 'a');
            log.fired = 0;
            log.failAt = n;
            row.run(ly, dc, spr);
            bool fired = log.fired > 0;
            log.failAt = 0;
            EXPECT_EQ(TakeFailure(), fired ? XALLOC : XNULL);
            EXPECT_TRUE(ly.IsSound());
            EXPECT_EQ(Level(), fired ? EDC_PAINT : 0);
            std::string calls = log.Take();
            auto drawn = std::count(calls.begin(), calls.end(), ' ');
            EXPECT_TRUE(!fired || drawn == n) << "nothing is drawn behind it";
            ly.SetActive(false);
            ly.DeleteAll(false);
            failures += fired;
            if (!fired)
                break;
        }
    EXPECT_GT(failures, 40);
}

TEST_F(Layer, ASpriteThatCannotBePaintedIsSelectedAllTheSame)
{
    Fill();
    ly.SetActive(true);
    log.failAt = 1;
    ly.Select((*this)['a'], true, &dc);
    EXPECT_EQ(TakeFailure(), XALLOC);
    EXPECT_EQ(Lists(), "abc bca a -");
    log.failAt = 1;
    ly.SetFocus((*this)['a'], &dc);
    EXPECT_EQ(TakeFailure(), XALLOC);
    EXPECT_EQ(ly.FocusName(), "a");
    log.failAt = 1;
    ly.Select((*this)['a'], false, &dc);
    EXPECT_EQ(TakeFailure(), XALLOC);
    EXPECT_EQ(Lists(), "abc bca  -");
    EXPECT_TRUE(ly.IsSound());
}

TEST_F(Layer, APaintThatThrowsIsAFailure)
{
    struct Thrower : TTestSprite {
        using TTestSprite::TTestSprite;
        void Paint(TDC &) override { throw std::bad_alloc(); }
    };
    auto *t = new Thrower("t", TRect{}, log);
    ly.Add(t);
    ly.SetActive(true);
    ly.Select(t, true, &dc);
    EXPECT_EQ(TakeFailure(), XALLOC);
    EXPECT_TRUE(ly.IsSound());
    ly.Paint(dc, {});
    EXPECT_EQ(TakeFailure(), XALLOC);
    ly.PaintPlain(dc, {});
    EXPECT_EQ(TakeFailure(), XALLOC);
    EXPECT_TRUE(ly.IsSound());
}

TEST_F(Layer, ABrokenPreconditionEndsTheProgram)
{
    Fill();
    TTestLayer other("other", 8, 0, log);
    TTestSprite *stranger = other.Put("x", {});
    TTestSprite unowned("u", {}, log);
    TTestSprite *a = (*this)['a'];
    const struct {
        const char *condition;
        std::function<void()> body;
    } rows[] = {
        {"spr->layer == NULL", [&] { ly.Add(a); }},
        {"spr->layer == NULL", [&] { ly.Add(stranger); }},
        {"spr->layer == this", [&] { ly.Remove(stranger); }},
        {"spr->layer == this", [&] { ly.Delete(stranger, false); }},
        {"spr->layer == this", [&] { ly.Delete(&unowned, false); }},
        {"spr->layer == this", [&] { ly.Select(stranger, true, NULL); }},
        {"spr->layer == this", [&] { ly.Select(&unowned, false, NULL); }},
        {"spr->layer == this", [&] { ly.SetFocus(stranger, NULL); }},
        {"IsSelected(spr)", [&] { ly.SetFocus(a, NULL); }},
        {"IsSelected(spr)", [&] { ly.SelNext(a); }},
        {"IsSelected(spr)", [&] { ly.SelPrev(a); }},
        {"repaintLock >= 0", [&] { ly.UnlockRepaint(NULL, false); }},
        {"decorateLock >= 0", [&] { ly.UnlockDecorate(NULL); }},
        {"spr != NULL && spr->layer == this", [&] { ly.IsSelected(NULL); }},
        {"spr != NULL && spr->layer == this", [&] { ly.IsSelected(stranger); }},
        {"spr != NULL && spr->layer == this", [&] { ly.SelNext(NULL); }},
        {"spr != NULL && spr->layer == this", [&] { ly.LnkNext(NULL); }},
        {"spr != NULL && spr->layer == this", [&] { ly.LnkNext(stranger); }},
        {"spr != NULL && spr->layer == this", [&] { ly.LnkPrev(&unowned); }},
        {"aId != 0", [&] { TTestLayer("none", 0, 0, log); }},
        {"test == countLnk", [&] { ly.Miscount(), ly.CountLnk(); }},
        {"test == countSel", [&] { ly.Miscount(), ly.CountSel(); }},
    };
    for (const auto &row : rows)
        EXPECT_TRUE(AbortsOnAssertion(row.condition, "usr/edcsprit_layer.cpp", row.body)) << row.condition;
    EXPECT_TRUE(AbortsOnAssertion("aId != 0", "usr/edcsprit.cpp", [] { TEdcSpriteSelector(0); }));
}
} // namespace
