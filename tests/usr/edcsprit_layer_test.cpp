#include "layerfixture.h"

#include <functional>
#include <memory>

namespace
{
TEST_F(Layer, StartsEmptyAndIdle)
{
    EXPECT_EQ(Lists(), "   -");
    EXPECT_EQ(ly.CountLnk(), 0);
    EXPECT_EQ(ly.CountSel(), 0);
    EXPECT_EQ(ly.Id(), 7);
    EXPECT_EQ(ly.Options(), ALL_OPTIONS);
    EXPECT_EQ(ly.ToolId(), 0);
    EXPECT_FALSE(ly.IsActive());
    EXPECT_TRUE(ly.IsSound());
}

TEST_F(Layer, AddPutsASpriteAtTheEndAndOnTop)
{
    TTestSprite *a = ly.Put("a", {0, 0, 10, 10});
    EXPECT_EQ(Level(), EDC_LAYOUT);
    EXPECT_EQ(a->layer, &ly);
    EXPECT_EQ(a->state, 0);
    ly.SetActive(true);
    auto *b = new TTestSprite("b", {}, log);
    b->state = EDC_SsSELECTED | EDC_SsFOCUS;
    log.states = true;
    ly.Add(b);
    EXPECT_EQ(b->state, EDC_SsACTIVE);
    EXPECT_EQ(log.Take(), "b+1 ");
    EXPECT_EQ(Lists(), "ab ab  -");
    EXPECT_EQ(ly.CountLnk(), 2);
    Level();
    ly.Add(NULL);
    EXPECT_EQ(Level(), 0);
    EXPECT_TRUE(ly.IsSound());
}

TEST_F(Layer, RemoveTakesASpriteOutOfAllLists)
{
    for (char gone : {'a', 'b', 'c', 'd'}) {
        SCOPED_TRACE(gone);
        Fill("abcd");
        ly.SetActive(true);
        Select("bcd", 'c');
        std::string before = ly.Lnk();
        ly.Remove((*this)[gone]);
        EXPECT_EQ(Level(), EDC_LAYOUT);
        EXPECT_EQ((*this)[gone]->layer, nullptr);
        EXPECT_EQ((*this)[gone]->state, 0);
        EXPECT_EQ((*this)[gone]->lnkPrev, nullptr);
        EXPECT_EQ((*this)[gone]->lnkNext, nullptr);
        EXPECT_EQ((*this)[gone]->pntPrev, nullptr);
        EXPECT_EQ((*this)[gone]->pntNext, nullptr);
        EXPECT_EQ((*this)[gone]->selPrev, nullptr);
        EXPECT_EQ((*this)[gone]->selNext, nullptr);
        EXPECT_EQ(ly.Lnk(), before.erase(before.find(gone), 1));
        EXPECT_EQ(ly.CountLnk(), 3);
        EXPECT_EQ(ly.CountSel(), gone == 'a' ? 3 : 2);
        EXPECT_EQ(ly.FocusName(), gone == 'c' ? "-" : "c");
        EXPECT_TRUE(ly.IsSound());
        EXPECT_EQ(log.Take(), "") << "nothing is drawn";
        ly.Remove((*this)[gone]); // it has no layer
        ly.Remove(NULL);
        EXPECT_EQ(Level(), 0);
        ly.Add((*this)[gone]);
        EXPECT_TRUE(ly.IsSound());
        ly.SetActive(false);
        ly.DeleteAll(false);
    }
}

TEST_F(Layer, ADeadSpriteHasLeftItsLayer)
{
    Fill();
    ly.SetActive(true);
    Select("abc", 'b');
    delete (*this)['b'];
    EXPECT_EQ(Lists(), "ac ac ac -");
    EXPECT_EQ(Level(), EDC_LAYOUT);
    EXPECT_TRUE(ly.IsSound());
    {
        TTestSprite unowned("x", {}, log); // leaves none
    }
    EXPECT_EQ(log.Take(), "b.gone x.gone ");
    EXPECT_EQ(Level(), 0);
}

TEST_F(Layer, TheCopyOfASpriteHasNoLayer)
{
    Fill();
    ly.SetActive(true);
    Select("abc", 'b');
    {
        TTestSprite copy(*(*this)['b']);
        EXPECT_EQ(copy.layer, nullptr);
        EXPECT_EQ(copy.state, 0);
        EXPECT_EQ(copy.lnkPrev, nullptr);
        EXPECT_EQ(copy.pntNext, nullptr);
        EXPECT_EQ(copy.selNext, nullptr);
    }
    EXPECT_TRUE(ly.IsSound());
    EXPECT_EQ(Lists(), "abc acb abc b");
}

TEST_F(Layer, DeletesSpritesWithOrWithoutTheirObjects)
{
    Fill("abcdef");
    ly.Delete(NULL, true);
    EXPECT_EQ(Level(), 0);
    ly.Delete((*this)['b'], true);
    EXPECT_EQ(log.Take(), "b.discard b.gone ");
    EXPECT_EQ(Level(), EDC_LAYOUT);
    ly.Delete((*this)['c'], false);
    EXPECT_EQ(log.Take(), "c.gone ");
    Select("ea", 'e');
    ly.DeleteSelected(true);
    EXPECT_EQ(log.Take(), "e.discard e.gone a.discard a.gone ");
    EXPECT_EQ(Level(), EDC_LAYOUT);
    EXPECT_EQ(Lists(), "df df  -");
    ly.DeleteSelected(true);
    EXPECT_EQ(Level(), 0);
    ly.DeleteAll(false);
    EXPECT_EQ(log.Take(), "d.gone f.gone ");
    EXPECT_EQ(Lists(), "   -");
    EXPECT_TRUE(ly.IsSound());
}

TEST_F(Layer, TakesItsSpritesWithIt)
{
    {
        TTestLayer other("other", 8, 0, log);
        other.Put("a", {});
        other.Put("b", {});
        other.SelectAll(true, NULL);
    }
    EXPECT_EQ(log.Take(), "a.gone b.gone ");
}

TEST_F(Layer, MayOutliveItsDocument)
{
    auto other = std::make_unique<TTestLayer>("other", 8, ALL_OPTIONS, log);
    other->Put("a", {});
    SetAppDocument(NULL);
    other->SetActive(true);
    other->SelectAll(true, NULL);
    other.reset();
    SetAppDocument(&doc);
    EXPECT_EQ(log.Take(), "a.gone ");
}

TEST_F(Layer, ActivityReachesEverySpriteOnce)
{
    Fill();
    log.states = true;
    ly.SetActive(false);
    EXPECT_EQ(log.Take(), "");
    EXPECT_EQ(Level(), 0);
    ly.SetActive(true);
    EXPECT_EQ(log.Take(), "a+1 b+1 c+1 ");
    EXPECT_EQ(Level(), EDC_PAINT);
    EXPECT_TRUE(ly.IsActive());
    ly.SetActive(true);
    EXPECT_EQ(Level(), 0);
    ly.SetActive(false);
    EXPECT_EQ(log.Take(), "a-1 b-1 c-1 ");
    EXPECT_EQ(Level(), EDC_PAINT);
    EXPECT_TRUE(ly.IsSound());
}

TEST_F(Layer, OptionsAskForALayoutOnlyWhereActivableChanges)
{
    const struct {
        uint16_t options;
        int level;
    } rows[] = {
        {EDC_LoACTIVABLE | EDC_LoVISIBLE, EDC_PAINT},
        {EDC_LoVISIBLE, EDC_LAYOUT},
        {0, EDC_PAINT},
        {EDC_LoNOOPEN, EDC_PAINT},
        {EDC_LoACTIVABLE, EDC_LAYOUT},
        {ALL_OPTIONS, EDC_PAINT},
    };
    for (const auto &row : rows) {
        ly.SetOptions(row.options);
        EXPECT_EQ(Level(), row.level) << row.options;
        EXPECT_EQ(ly.Options(), row.options);
    }
}

TEST_F(Layer, SelectingPutsASpriteOnTopAndPaintsItBetweenTheHandles)
{
    Fill();
    ly.SetActive(true);
    Select("a", 'a');
    log.states = true;
    ly.Select((*this)['b'], true, &dc);
    EXPECT_EQ(log.Take(), "a.decorate b+2 b.paint a.decorate ");
    EXPECT_EQ(Lists(), "abc cab ab a");
    EXPECT_EQ(Level(), 0) << "all of it is drawn";
    ly.Select((*this)['c'], true, NULL);
    EXPECT_EQ(log.Take(), "c+2 ");
    EXPECT_EQ(Lists(), "abc abc abc a");
    EXPECT_EQ(Level(), EDC_PAINT);
    EXPECT_EQ(ly.CountSel(), 3);
    EXPECT_TRUE(ly.IsSound());
}

TEST_F(Layer, SelectingTheSelectedChangesNothing)
{
    Fill();
    ly.SetActive(true);
    Select("ab", 'a');
    std::string before = Lists();
    log.states = true;
    ly.Select((*this)['b'], true, &dc);
    ly.Select((*this)['a'], true, &dc);
    ly.Select((*this)['c'], false, &dc);
    EXPECT_EQ(log.Take(), "a.decorate a.decorate a.decorate a.decorate a.decorate a.decorate ");
    EXPECT_EQ(Lists(), before);
    EXPECT_EQ(ly.CountSel(), 2);
    ly.Select(NULL, true, &dc);
    EXPECT_EQ(log.Take(), "");
    EXPECT_TRUE(ly.IsSound());
}

TEST_F(Layer, DeselectingTheFocusTakesTheFocusFirst)
{
    Fill();
    ly.SetActive(true);
    Select("ab", 'a');
    log.states = true;
    ly.Select((*this)['a'], false, &dc);
    EXPECT_EQ(log.Take(), "a.decorate a-4 a.paint a-2 a.paint ");
    EXPECT_EQ(Lists(), "abc cba b -");
    EXPECT_TRUE(ly.IsSound());
}

TEST_F(Layer, ASpriteIsStillSelectedWhileItIsRepaintedAsDeselected)
{
    struct Watcher : TTestSprite {
        using TTestSprite::TTestSprite;
        void Paint(TDC &) override { seen = layer->IsSelected(this) ? "in the list" : "out of it"; }
        std::string seen;
    };
    auto *w = new Watcher("w", TRect{}, log);
    ly.Add(w);
    ly.SetActive(true);
    ly.Select(w, true, NULL);
    ly.Select(w, false, &dc);
    EXPECT_EQ(w->seen, "in the list");
    EXPECT_FALSE(ly.IsSelected(w));
}

TEST_F(Layer, ASingleSelectedSpriteHasNoNeighboursInTheSelection)
{
    Fill();
    Select("b");
    EXPECT_EQ((*this)['b']->selPrev, nullptr);
    EXPECT_EQ((*this)['b']->selNext, nullptr);
    EXPECT_TRUE(ly.IsSelected((*this)['b']));
    EXPECT_FALSE(ly.IsSelected((*this)['a']));
    EXPECT_EQ(ly.SelFirst(), (*this)['b']);
    EXPECT_EQ(ly.SelLast(), (*this)['b']);
}

TEST_F(Layer, NeighboursAreFoundInBothLists)
{
    Fill();
    Select("cab");
    EXPECT_EQ(ly.LnkNext((*this)['a']), (*this)['b']);
    EXPECT_EQ(ly.LnkNext((*this)['c']), nullptr);
    EXPECT_EQ(ly.LnkPrev((*this)['a']), nullptr);
    EXPECT_EQ(ly.LnkPrev((*this)['c']), (*this)['b']);
    EXPECT_EQ(ly.SelNext((*this)['c']), (*this)['a']);
    EXPECT_EQ(ly.SelNext((*this)['b']), nullptr);
    EXPECT_EQ(ly.SelPrev((*this)['c']), nullptr);
    EXPECT_EQ(ly.SelPrev((*this)['b']), (*this)['a']);
    EXPECT_EQ(ly.LnkFirst(), (*this)['a']);
    EXPECT_EQ(ly.LnkLast(), (*this)['c']);
    EXPECT_EQ(ly.PntFirst(), (*this)['a']);
    EXPECT_EQ(ly.PntLast(), (*this)['c']);
}

TEST_F(Layer, SelectingAllKeepsThePaintingOrderAndSelectsInIt)
{
    Fill();
    ly.SetActive(true);
    Select("a");
    ly.SelectAll(false, NULL);
    EXPECT_EQ(ly.Pnt(), "bca");
    ly.SelectAll(true, NULL);
    EXPECT_EQ(Lists(), "abc bca bca -");
    EXPECT_EQ(ly.CountSel(), 3);
    EXPECT_TRUE(ly.IsSound());
}

struct Mass {
    const char *name;
    std::function<void(TEdcSpriteLayer &, TDC *)> run;
    bool active;
    const char *selected;
    char focus;
    const char *lists; // of a, b, c, d afterwards
    const char *calls; // with a device context
};
const Mass masses[] = {
    {"all of none", [](TEdcSpriteLayer &ly, TDC *dc) { ly.SelectAll(true, dc); }, true, "", 0,
     "abcd abcd abcd -", "a.paint b.paint c.paint d.paint "},
    {"all of some", [](TEdcSpriteLayer &ly, TDC *dc) { ly.SelectAll(true, dc); }, true, "ca", 'c',
     "abcd acbd cabd c", "c.decorate b.paint d.paint c.decorate "},
    {"all while idle", [](TEdcSpriteLayer &ly, TDC *dc) { ly.SelectAll(true, dc); }, false, "c", 'c',
     "abcd abcd cabd c", ""},
    {"none of some", [](TEdcSpriteLayer &ly, TDC *dc) { ly.SelectAll(false, dc); }, true, "ca", 'c',
     "abcd bdac  -", "c.decorate a.paint c.paint c.paint "},
    {"none of none", [](TEdcSpriteLayer &ly, TDC *dc) { ly.SelectAll(false, dc); }, true, "", 0, "abcd abcd  -",
     ""},
    {"other than the focus", [](TEdcSpriteLayer &ly, TDC *dc) { ly.InvertSelection(dc); }, true, "b", 'b',
     "abcd acdb acd -", "b.decorate a.paint c.paint d.paint b.paint b.paint "},
    {"other than some", [](TEdcSpriteLayer &ly, TDC *dc) { ly.InvertSelection(dc); }, true, "da", 'd',
     "abcd bcad bc -", "d.decorate b.paint c.paint a.paint d.paint d.paint "},
};

TEST_F(Layer, SelectionsOfManyTouchEachSpriteOnce)
{
    for (const Mass &row : masses) {
        for (bool draws : {true, false}) {
            SCOPED_TRACE(row.name);
            Fill("abcd");
            ly.SetActive(row.active);
            Select(row.selected, row.focus);
            row.run(ly, draws ? &dc : NULL);
            EXPECT_EQ(Lists(), row.lists);
            EXPECT_EQ(log.Take(), draws ? row.calls : "");
            EXPECT_EQ(Level(), draws || !*row.calls ? 0 : EDC_PAINT);
            EXPECT_TRUE(ly.IsSound());
            ly.SetActive(false);
            ly.DeleteAll(false);
        }
    }
}

TEST_F(Layer, SetFocusGivesTheHandlesOn)
{
    Fill();
    ly.SetActive(true);
    Select("abc");
    log.states = true;
    const struct {
        char to; // 0 for none
        const char *calls, *pnt;
    } rows[] = {
        {'a', "a+4 a.paint a.decorate ", "bca"},
        {'a', "", "bca"},
        {'b', "a.decorate a-4 a.paint b+4 b.paint b.decorate ", "cab"},
        {0, "b.decorate b-4 b.paint ", "cab"},
        {0, "", "cab"},
    };
    for (const auto &row : rows) {
        ly.SetFocus(row.to ? (*this)[row.to] : NULL, &dc);
        EXPECT_EQ(log.Take(), row.calls);
        EXPECT_EQ(ly.Pnt(), row.pnt);
        EXPECT_EQ(ly.Focus(), row.to ? (*this)[row.to] : NULL);
        EXPECT_EQ(ly.Sel(), "abc");
        EXPECT_EQ(Level(), 0);
        EXPECT_TRUE(ly.IsSound());
    }
    ly.SetFocus((*this)['c'], NULL);
    EXPECT_EQ(Level(), EDC_PAINT);
    EXPECT_EQ(log.Take(), "c+4 ");
}

TEST_F(Layer, ASpriteIsRepaintedOnTopUnlessTheLayerIsLockedOrIdle)
{
    Fill();
    ly.RepaintSprite((*this)['a'], &dc); // idle
    ly.SetActive(true);
    Forget();
    ly.RepaintSprite(NULL, &dc);
    ly.RepaintSprite(NULL, NULL);
    ly.LockRepaint();
    ly.RepaintSprite((*this)['a'], &dc);
    ly.RepaintSprite((*this)['a'], NULL);
    EXPECT_EQ(log.Take(), "");
    EXPECT_EQ(ly.Pnt(), "abc");
    EXPECT_EQ(Level(), 0);
    ly.UnlockRepaint(NULL, false);
    Forget();
    ly.RepaintSprite((*this)['a'], &dc);
    EXPECT_EQ(log.Take(), "a.paint ");
    EXPECT_EQ(Level(), 0);
    ly.RepaintSprite((*this)['b'], NULL);
    EXPECT_EQ(log.Take(), "");
    EXPECT_EQ(Level(), EDC_PAINT);
    EXPECT_EQ(ly.Pnt(), "cab");
    Select("c", 'c');
    ly.RepaintSprite((*this)['b'], &dc);
    EXPECT_EQ(log.Take(), "c.decorate b.paint c.decorate ");
    ly.RepaintSprite((*this)['c'], &dc);
    EXPECT_EQ(log.Take(), "c.decorate c.paint c.decorate ");
    EXPECT_EQ(ly.Pnt(), "abc");
}

TEST_F(Layer, TheSelectionIsRepaintedWithTheFocusOnTop)
{
    Fill("abcd");
    ly.SetActive(true);
    Select("dba", 'b');
    ly.RepaintSprite((*this)['c'], NULL);
    Forget();
    EXPECT_EQ(ly.Pnt(), "dabc");
    ly.RepaintSelection(&dc);
    EXPECT_EQ(log.Take(), "b.decorate d.paint a.paint b.paint b.decorate ");
    EXPECT_EQ(ly.Pnt(), "cdab");
    EXPECT_EQ(Level(), 0);
    ly.RepaintSprite((*this)['a'], NULL);
    Forget();
    ly.RepaintSelection(NULL);
    EXPECT_EQ(ly.Pnt(), "cdab");
    EXPECT_EQ(log.Take(), "");
    EXPECT_EQ(Level(), EDC_PAINT);
    ly.LockRepaint();
    ly.RepaintSelection(&dc);
    EXPECT_EQ(log.Take(), "");
    ly.UnlockRepaint(NULL, false);
    ly.SetActive(false);
    Forget();
    ly.RepaintSelection(&dc);
    ly.RepaintSelection(NULL);
    EXPECT_EQ(log.Take(), "");
    EXPECT_EQ(Level(), 0);
}

TEST_F(Layer, RepaintLocksNestAndTheOutermostPaintsAll)
{
    const struct {
        bool active, draws, toTop;
        const char *calls, *pnt;
        int level;
    } rows[] = {
        {true, true, false, "b.decorate a.paint b.paint c.paint d.paint b.decorate ", "abcd", 0},
        {true, true, true, "b.decorate a.paint d.paint c.paint b.paint b.decorate ", "adcb", 0},
        {true, false, false, "", "abcd", EDC_PAINT},
        {true, false, true, "", "adcb", EDC_PAINT},
        {false, true, true, "", "abcd", 0},
        {false, false, true, "", "abcd", 0},
    };
    for (const auto &row : rows) {
        Fill("abcd");
        Select("bdc", 'b');
        ly.SetActive(row.active);
        Forget();
        ly.LockRepaint();
        ly.LockRepaint();
        ly.UnlockRepaint(row.draws ? &dc : NULL, row.toTop);
        EXPECT_EQ(log.Take(), "");
        EXPECT_EQ(ly.Pnt(), "abcd");
        EXPECT_EQ(Level(), 0);
        ly.UnlockRepaint(row.draws ? &dc : NULL, row.toTop);
        EXPECT_EQ(log.Take(), row.calls);
        EXPECT_EQ(ly.Pnt(), row.pnt);
        EXPECT_EQ(Level(), row.level);
        EXPECT_TRUE(ly.IsSound());
        ly.SetActive(false);
        ly.DeleteAll(false);
    }
}

TEST_F(Layer, DecorateLocksNestAndTheOutermostTakesTheHandlesAway)
{
    Fill();
    ly.LockDecorate(&dc);
    ly.UnlockDecorate(&dc);
    EXPECT_EQ(log.Take(), "") << "idle, no focus";
    ly.SetActive(true);
    Forget();
    ly.LockDecorate(&dc);
    ly.UnlockDecorate(NULL);
    EXPECT_EQ(log.Take(), "") << "no focus";
    EXPECT_EQ(Level(), 0);
    Select("a", 'a');
    ly.LockDecorate(&dc);
    EXPECT_EQ(log.Take(), "a.decorate ");
    ly.LockDecorate(&dc);
    ly.LockDecorate(NULL);
    ly.Paint(dc, {}); // under a lock nothing is decorated
    EXPECT_EQ(log.Take(), "ly.paint b.paint c.paint a.paint ");
    ly.UnlockDecorate(NULL);
    ly.UnlockDecorate(&dc);
    EXPECT_EQ(log.Take(), "");
    EXPECT_EQ(Level(), 0);
    ly.UnlockDecorate(&dc);
    EXPECT_EQ(log.Take(), "a.decorate ");
    EXPECT_EQ(Level(), 0);
    ly.LockDecorate(NULL);
    EXPECT_EQ(Level(), EDC_PAINT);
    ly.UnlockDecorate(NULL);
    EXPECT_EQ(Level(), EDC_PAINT);
    EXPECT_EQ(log.Take(), "");
}

TEST_F(Layer, TheFocusThatChangesUnderALockIsTheOneThatIsDecoratedBehindIt)
{
    Fill();
    ly.SetActive(true);
    Select("ab", 'a');
    ly.LockDecorate(&dc);
    ly.SetFocus((*this)['b'], &dc);
    ly.UnlockDecorate(&dc);
    EXPECT_EQ(log.Take(), "a.decorate a.paint b.paint b.decorate ");
}

TEST_F(Layer, PaintsForPaperAsIfNothingWereActiveOrSelected)
{
    Fill();
    ly.logs = false;
    ly.SetActive(true);
    Select("b", 'b');
    log.states = true;
    dc.calls.clear();
    ly.PaintPlain(dc, {});
    EXPECT_EQ(log.Take(), "a-1 a.paint a+1 c-1 c.paint c+1 b-7 b.paint b+7 ");
    EXPECT_EQ(dc.calls.find("0000ff"), std::string::npos) << dc.calls;
    EXPECT_EQ(dc.calls.find("00ff00"), std::string::npos) << dc.calls;
    EXPECT_NE(dc.calls.find("a0a0a0"), std::string::npos) << dc.calls;
    EXPECT_TRUE(ly.IsSound());
    log.failAt = 3;
    ly.PaintPlain(dc, {});
    EXPECT_EQ(TakeFailure(), XALLOC);
    EXPECT_EQ(log.Take(), "a-1 a.paint a+1 c-1 c.paint c+1 b-7 b.paint b+7 ");
    EXPECT_TRUE(ly.IsSound()) << "the state comes back also after a failure";
}

TEST_F(Layer, ResetForgetsTheSelection)
{
    Fill();
    ly.SetActive(true);
    Select("ab", 'a');
    ly.Reset();
    EXPECT_EQ(Lists(), "abc cba  -");
    EXPECT_EQ(log.Take(), "ly.reset ");
    EXPECT_TRUE(ly.IsSound());
}

struct CommandRow {
    int id;
    const char *lists;  // of a, b, c with b selected, a layer that is active
    bool known;         // one of its own
    bool enabled[2][3]; // idle or active; none, some, all selected
};
const CommandRow commands[] = {
    {21001, "ac ac  -", true, {{false, false, false}, {false, true, true}}},
    {21003, "abc bac bac b", true, {{false, false, false}, {true, true, false}}},
    {21005, "abc acb  -", true, {{false, false, false}, {false, true, true}}},
    {21007, "abc acb ac -", true, {{false, false, false}, {true, true, true}}},
    {21002, "abc acb b b", false, {}},
    {7, "abc acb b b", false, {}},
    {0, "abc acb b b", false, {}},
};

TEST_F(Layer, AnswersItsCommandsAndCarriesThemOutWhileActive)
{
    for (const CommandRow &row : commands)
        for (bool active : {false, true}) {
            SCOPED_TRACE(testing::Message() << row.id << (active ? " active" : " idle"));
            Fill();
            ly.SetActive(active);
            Select("b", 'b');
            EXPECT_EQ(ly.Command(row.id), row.known);
            EXPECT_EQ(Lists(), active ? row.lists : "abc abc b b");
            EXPECT_EQ(log.Take(), row.id == 21001 && active ? "b.discard b.gone " : "");
            EXPECT_TRUE(ly.IsSound());
            ly.SetActive(false);
            ly.DeleteAll(false);
        }
}

TEST_F(Layer, EnablesItsCommandsByActivityAndSelection)
{
    Fill();
    const char *const selections[] = {"", "a", "bc"}; // none, some, all in turn
    for (const CommandRow &row : commands)
        for (bool active : {false, true}) {
            ly.SelectAll(false, NULL);
            ly.SetActive(active);
            for (int i = 0; i < 3; ++i) {
                Select(selections[i]);
                TCommandEnabler ce(row.id);
                ly.CommandEnable(ce);
                EXPECT_EQ(ce.IsAnswered(), row.known) << row.id;
                EXPECT_EQ(ce.IsEnabled(), row.enabled[active][i]) << row.id << " " << active << " " << i;
            }
        }
    ly.DeleteAll(false);
    TCommandEnabler ce(21003);
    ly.CommandEnable(ce);
    EXPECT_FALSE(ce.IsEnabled()) << "no sprite to select";
}

TEST_F(Layer, ABareSpriteDoesNothing)
{
    TEdcSprite bare;
    bare.Discard();
    bare.SetTool(1);
    bare.Layout(dc);
    bare.Reload(NULL);
    EXPECT_FALSE(bare.InRect({-1000, -1000, 1000, 1000}));
    EXPECT_FALSE(bare.HitTest({}));
    bare.DragBegin(dc, 1, {}, {});
    bare.DragMove(dc, 1, {}, {});
    bare.DragEnd(dc, 1, {}, {});
    bare.DragHide(dc, true);
    bare.Decorate(dc);
    bare.Paint(dc);
    bare.PaintPlain(dc);
    EXPECT_EQ(dc.calls, "");
    EXPECT_EQ(bare.state, 0);
    bare.SetState(EDC_SsACTIVE | EDC_SsFOCUS, true);
    bare.SetState(EDC_SsACTIVE | EDC_SsSELECTED, false);
    EXPECT_EQ(bare.state, EDC_SsFOCUS);
}
} // namespace
