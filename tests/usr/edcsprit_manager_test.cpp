#include "lib/platform.h"
#include "support/child.h"
#include "support/programtables.h"
#include "support/recorddc.h"
#include "support/testsprite.h"
#include "usr/edcutils.h"
#include "win/testdoor.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

namespace
{
enum { A = 31, B = 32, C = 33, S = 41, T = 42, U = 43 }; // command ids

struct TTestManager : TEdcSpriteManager {
    using TEdcSpriteManager::TEdcSpriteManager;
    bool IsTouched() const { return touched; }
    void SlipIn(TEdcSpriteTool *tl) { tlActive = tl; }
};

/// Layers a, b and c, of which c cannot become active; tools s for a and b, t for a, u for b. Everything is on
/// no screen.
class Manager : public testing::Test
{
protected:
    Manager()
    {
        for (TTestLayer *ly : {&a, &b, &c})
            manager.AddLayer(ly);
        for (TTestSpriteTool *tl : {&s, &t, &u})
            manager.AddTool(tl);
        manager.Permit(&a, &s);
        manager.Permit(&b, &s);
        manager.Permit(&a, &t);
        manager.Permit(&b, &u);
        Level();
    }
    int Level() { return std::exchange(doc.obsolete, 0); }
    XCODE TakeFailure() { return std::exchange(xCode, XNULL); }
    /// "a s": the active layer and tool. Block, tools and layers must agree with the manager.
    std::string Now()
    {
        std::string now = manager.Layer() ? static_cast<TTestLayer *>(manager.Layer())->name : "-";
        now += std::string(" ") + (manager.Tool() ? static_cast<TTestSpriteTool *>(manager.Tool())->name : "-");
        EXPECT_EQ(blk.tool, manager.IsSuspended() ? NULL : manager.Tool());
        for (TTestSpriteTool *tl : {&s, &t, &u})
            EXPECT_EQ(tl->Layer(), tl == manager.Tool() ? manager.Layer() : NULL) << tl->name;
        for (TTestLayer *ly : {&a, &b, &c})
            EXPECT_EQ(ly->IsActive(), ly == manager.Layer() && !manager.IsSuspended()) << ly->name;
        return now;
    }
    void Start()
    {
        manager.Resume(true);
        manager.Paint(dc, {}); // what is touched is worked off
        log.Take();
        Level();
    }

    SpriteLog log;
    TTestDoc doc;
    TRecordDC dc;
    TEdcBlock blk;
    TTestLayer a{"a", A, EDC_LoACTIVABLE | EDC_LoVISIBLE | EDC_LoPRINTED, log};
    TTestLayer b{"b", B, EDC_LoACTIVABLE | EDC_LoVISIBLE | EDC_LoPRINTED, log};
    TTestLayer c{"c", C, EDC_LoVISIBLE, log};
    TTestSpriteTool s{"s", S, log}, t{"t", T, log}, u{"u", U, log};
    TTestManager manager{&blk};
};

TEST_F(Manager, StartsSuspendedAndAnswersNothing)
{
    EXPECT_TRUE(manager.IsSuspended());
    EXPECT_FALSE(manager.IsTouched());
    EXPECT_EQ(Now(), "- -");
    EXPECT_FALSE(manager.SetLayer(&a));
    EXPECT_FALSE(manager.SetTool(&s));
    for (int id : {int{A}, int{S}, int{EDC_CmSELECTALL}}) {
        EXPECT_FALSE(manager.Command(id)) << id;
        TCommandEnabler ce(id);
        manager.CommandEnable(ce);
        EXPECT_FALSE(ce.IsAnswered()) << id;
    }
    EXPECT_EQ(Now(), "- -");
    EXPECT_EQ(log.Take(), "");
    EXPECT_EQ(Level(), 0);
}

TEST_F(Manager, FindsLayersAndToolsByTheirIds)
{
    EXPECT_EQ(manager.FindLayer(A), &a);
    EXPECT_EQ(manager.FindLayer(C), &c);
    EXPECT_EQ(manager.FindLayer(S), nullptr);
    EXPECT_EQ(manager.FindTool(S), &s);
    EXPECT_EQ(manager.FindTool(U), &u);
    EXPECT_EQ(manager.FindTool(A), nullptr);
    TTestLayer twin("twin", A, 0, log);
    manager.AddLayer(&twin);
    EXPECT_EQ(manager.FindLayer(A), &twin) << "the one that was added last";
}

TEST_F(Manager, PermitsAToolOnSomeLayers)
{
    const struct {
        const TTestLayer *ly;
        const TTestSpriteTool *tl;
        bool permitted;
    } rows[] = {{&a, &s, true},  {&b, &s, true},  {&c, &s, false}, {&a, &t, true},
                {&b, &t, false}, {&a, &u, false}, {&b, &u, true},  {NULL, &u, false}};
    for (const auto &row : rows)
        EXPECT_EQ(manager.IsPermitted(row.ly, row.tl), row.permitted) << row.tl->name;
}

TEST_F(Manager, ResumesFromTheBeginningWithWhatWasAddedFirst)
{
    manager.Resume(true);
    EXPECT_EQ(log.Take(), "c.reset b.reset a.reset s.on ");
    EXPECT_EQ(Now(), "a s");
    EXPECT_FALSE(manager.IsSuspended());
    EXPECT_TRUE(manager.IsTouched());
    EXPECT_EQ(Level(), EDC_PAINT);
}

TEST_F(Manager, GoesFromLayerToLayerAndFromToolToTool)
{
    const struct {
        const char *name;
        std::function<bool()> run;
        bool answer;
        const char *now, *calls;
        bool touches;
    } steps[] = {
        {"the same layer", [&] { return manager.SetLayer(&a); }, true, "a s", "", false},
        {"the same tool", [&] { return manager.SetTool(&s); }, true, "a s", "", false},
        {"another tool", [&] { return manager.SetTool(&t); }, true, "a t", "s.off t.on ", true},
        {"a tool of another layer", [&] { return manager.SetTool(&u); }, false, "a t", "", true},
        {"another layer", [&] { return manager.SetLayer(&b); }, true, "b s", "t.off s.on ", true},
        {"its other tool", [&] { return manager.SetTool(&u); }, true, "b u", "s.off u.on ", true},
        {"a tool no more", [&] { return manager.SetTool(&t); }, false, "b u", "", true},
        {"no tool", [&] { return manager.SetTool(NULL); }, true, "b -", "u.off ", true},
        {"no tool again", [&] { return manager.SetTool(NULL); }, true, "b -", "", false},
        {"a tool", [&] { return manager.SetTool(&s); }, true, "b s", "s.on ", true},
        {"a layer that cannot", [&] { return manager.SetLayer(&c); }, false, "- -", "s.off ", true},
        {"a tool without a layer", [&] { return manager.SetTool(&s); }, false, "- -", "", true},
        {"no layer", [&] { return manager.SetLayer(NULL); }, true, "- -", "", false},
        {"a layer again", [&] { return manager.SetLayer(&a); }, true, "a s", "s.on ", true},
        {"none", [&] { return manager.SetLayer(NULL); }, true, "- -", "s.off ", true},
    };
    Start();
    for (const auto &step : steps) {
        SCOPED_TRACE(step.name);
        EXPECT_EQ(step.run(), step.answer);
        EXPECT_EQ(Now(), step.now);
        EXPECT_EQ(log.Take(), step.calls);
        EXPECT_EQ(Level(), step.touches ? EDC_PAINT : 0);
        EXPECT_TRUE(manager.IsTouched() || !step.touches);
        manager.Paint(dc, {});
        log.Take();
    }
}

TEST_F(Manager, ALayerWithoutToolsHasNone)
{
    TTestLayer lone("lone", 34, EDC_LoACTIVABLE, log);
    manager.AddLayer(&lone);
    Start();
    EXPECT_TRUE(manager.SetLayer(&lone));
    EXPECT_EQ(manager.Tool(), nullptr);
    EXPECT_EQ(blk.tool, nullptr);
    EXPECT_TRUE(lone.IsActive());
    EXPECT_EQ(log.Take(), "s.off ");
    manager.Paint(dc, {});
    EXPECT_EQ(log.Take(), "c.paint b.paint a.paint lone.tool0 lone.paint ");
}

TEST_F(Manager, SuspendsAndComesBackWithWhatWasActive)
{
    Start();
    manager.SetLayer(&b);
    manager.SetTool(&u);
    log.Take();
    Level();
    manager.Suspend(false);
    EXPECT_EQ(log.Take(), "u.off ");
    EXPECT_EQ(Now(), "b u");
    EXPECT_EQ(Level(), EDC_PAINT);
    EXPECT_FALSE(manager.SetLayer(&a));
    EXPECT_FALSE(manager.SetTool(&s));
    EXPECT_TRUE(manager.SetLayer(&b)) << "it is noted";
    EXPECT_FALSE(manager.Command(EDC_CmSELECTALL));
    manager.Suspend(true); // it is suspended already
    EXPECT_EQ(Now(), "b u");
    EXPECT_EQ(log.Take(), "");
    manager.Resume(false);
    EXPECT_EQ(log.Take(), "u.on ");
    EXPECT_EQ(Now(), "b u");
    EXPECT_TRUE(manager.IsTouched());
    EXPECT_EQ(Level(), EDC_PAINT);
}

TEST_F(Manager, ForgetsWhatWasActiveWhereItIsTold)
{
    Start();
    manager.Suspend(true);
    EXPECT_EQ(log.Take(), "s.off ");
    EXPECT_EQ(Now(), "- -");
    manager.Resume(false);
    EXPECT_EQ(log.Take(), "");
    EXPECT_EQ(Now(), "- -");
    manager.Suspend(true); // nothing to forget
    EXPECT_EQ(Now(), "- -");
}

TEST_F(Manager, ResetBeginsAnewWhetherItWasSuspendedOrNot)
{
    for (bool suspended : {false, true})
        for (TTestLayer *ly : {&a, &b})
            for (TTestSpriteTool *tl : {&s, &t, &u}) {
                SCOPED_TRACE(ly->name + tl->name + (suspended ? " suspended" : ""));
                Start();
                manager.SetLayer(ly);
                manager.SetTool(tl);
                ly->Put("x", {});
                ly->SelectAll(true, NULL);
                if (suspended)
                    manager.Suspend(false);
                manager.Resume(true);
                EXPECT_EQ(Now(), "a s");
                EXPECT_EQ(ly->CountSel(), 0);
                EXPECT_TRUE(ly->IsSound());
            }
}

TEST_F(Manager, ResetTakesTheFirstLayerThatCanBeActive)
{
    a.SetOptions(EDC_LoVISIBLE);
    manager.Resume(true);
    EXPECT_EQ(Now(), "b s");
    b.SetOptions(EDC_LoVISIBLE);
    log.Take();
    manager.Resume(true);
    EXPECT_EQ(Now(), "- -");
    EXPECT_EQ(log.Take(), "s.off s.on c.reset b.reset a.reset s.off ");
}

TEST_F(Manager, LayoutDropsALayerThatCannotBeActiveAnyMore)
{
    Start();
    manager.Layout(dc);
    EXPECT_EQ(log.Take(), "c.layout b.layout a.layout ");
    EXPECT_EQ(Now(), "a s");
    EXPECT_TRUE(manager.IsTouched());
    a.SetOptions(EDC_LoVISIBLE);
    manager.Layout(dc);
    EXPECT_EQ(log.Take(), "s.off c.layout b.layout a.layout ");
    EXPECT_EQ(Now(), "- -");
    EXPECT_EQ(Level(), EDC_LAYOUT);
}

TEST_F(Manager, ReloadReachesEveryLayer)
{
    manager.Reload(NULL);
    EXPECT_EQ(log.Take(), "c.reload b.reload a.reload ");
}

TEST_F(Manager, ReloadHandsItsArgumentOnToTheSprites)
{
    struct Watcher : TTestSprite {
        using TTestSprite::TTestSprite;
        void Reload(void *arg) override { seen = arg; }
        void *seen = NULL;
    };
    int argument = 0;
    auto *w = new Watcher("w", TRect{}, log);
    b.Add(w);
    manager.Reload(&argument);
    EXPECT_EQ(w->seen, &argument);
}

TEST_F(Manager, PaintsTheActiveLayerOverTheVisibleOnes)
{
    const struct {
        TEdcSpriteLayer *active;
        bool visibleA, visibleB, visibleC;
        const char *calls;
    } rows[] = {
        {&a, true, true, true, "c.paint b.paint a.paint "},
        {&b, true, true, true, "c.paint a.paint b.paint "},
        {&b, true, false, true, "c.paint a.paint b.paint "},
        {&b, false, true, false, "b.paint "},
        {&a, false, false, false, "a.paint "},
        {NULL, true, true, true, "c.paint b.paint a.paint "},
        {NULL, false, true, false, "b.paint "},
        {NULL, false, false, false, ""},
    };
    Start();
    for (const auto &row : rows) {
        auto options = [](bool visible) {
            return static_cast<uint16_t>(EDC_LoACTIVABLE | (visible ? EDC_LoVISIBLE : 0));
        };
        manager.SetLayer(row.active);
        a.SetOptions(options(row.visibleA));
        b.SetOptions(options(row.visibleB));
        c.SetOptions(options(row.visibleC));
        manager.Paint(dc, {});
        log.Take();
        manager.Paint(dc, {});
        EXPECT_EQ(log.Take(), row.calls);
    }
}

TEST_F(Manager, PrintsWhatIsToBePrintedWhetherVisibleOrActiveOrNot)
{
    Start();
    manager.PaintPlain(dc, {});
    EXPECT_EQ(log.Take(), "b.plain a.plain ");
    a.SetOptions(EDC_LoPRINTED);
    b.SetOptions(EDC_LoVISIBLE | EDC_LoACTIVABLE);
    c.SetOptions(EDC_LoPRINTED);
    manager.PaintPlain(dc, {});
    EXPECT_EQ(log.Take(), "c.plain a.plain ");
}

TEST_F(Manager, TellsTheLayerItsToolAtTheNextPaintOnly)
{
    a.Put("x", {});
    manager.Resume(true);
    log.Take();
    manager.Paint(dc, {});
    EXPECT_EQ(log.Take(), "c.paint b.paint a.tool41 x.tool41 a.paint x.paint ");
    EXPECT_EQ(a.ToolId(), S);
    EXPECT_FALSE(manager.IsTouched());
    manager.Paint(dc, {});
    EXPECT_EQ(log.Take(), "c.paint b.paint a.paint x.paint ");
    manager.SetTool(&t);
    manager.SetTool(NULL);
    log.Take();
    manager.Paint(dc, {});
    EXPECT_EQ(log.Take(), "c.paint b.paint a.tool0 x.tool0 a.paint x.paint ");
    manager.Touch();
    EXPECT_EQ(Level(), EDC_LAYOUT) << "of the sprite that was added";
    manager.Touch();
    EXPECT_EQ(Level(), EDC_PAINT);
    manager.SetLayer(NULL);
    manager.Paint(dc, {});
    EXPECT_TRUE(manager.IsTouched()) << "there was no layer to tell";
}

TEST_F(Manager, GivesCommandsToTheLayerThenToToolsThenToLayers)
{
    const struct {
        const char *name;
        int id;
        bool known;
        const char *now, *calls;
    } rows[] = {
        {"the layer's own", EDC_CmSELECTALL, true, "a s", ""},
        {"a tool", T, true, "a t", "s.off t.on "},
        {"a tool that is not permitted", U, true, "a t", ""},
        {"the active tool", T, true, "a t", ""},
        {"a layer", B, true, "b s", "t.off s.on "},
        {"unknown", 99, false, "b s", ""},
        {"no layer", C, true, "- -", "s.off "},
        {"a tool for no layer", S, true, "- -", ""},
        {"what a layer would know", EDC_CmSELECTALL, false, "- -", ""},
        {"back", A, true, "a s", "s.on "},
    };
    a.Put("x", {});
    Start();
    for (const auto &row : rows) {
        EXPECT_EQ(manager.Command(row.id), row.known) << row.name;
        EXPECT_EQ(Now(), row.now) << row.name;
        EXPECT_EQ(log.Take(), row.calls) << row.name;
    }
    EXPECT_EQ(a.Sel(), "x");
}

TEST_F(Manager, ToolsComeBeforeLayersOfTheSameId)
{
    TTestSpriteTool same("same", B, log);
    manager.AddTool(&same);
    manager.Permit(&a, &same);
    Start();
    EXPECT_TRUE(manager.Command(B));
    EXPECT_EQ(manager.Tool(), &same);
    EXPECT_EQ(manager.Layer(), &a);
    TCommandEnabler ce(B);
    manager.CommandEnable(ce);
    EXPECT_TRUE(ce.IsChecked());
    TTestSpriteTool all("all", EDC_CmSELECTALL, log);
    manager.AddTool(&all);
    manager.Permit(&a, &all);
    EXPECT_TRUE(manager.Command(EDC_CmSELECTALL)); // the layer's
    EXPECT_EQ(manager.Tool(), &same);
}

TEST_F(Manager, EnablesAndTicksWhatItKnows)
{
    const struct {
        TEdcSpriteLayer *layer;
        TEdcSpriteTool *tool;
        int id;
        bool answered, enabled, checked;
    } rows[] = {
        {&a, &s, S, true, true, true},
        {&a, &s, T, true, true, false},
        {&a, &s, U, true, false, false},
        {&a, &t, T, true, true, true},
        {&b, &u, U, true, true, true},
        {&b, &u, T, true, false, false},
        {&a, &s, A, true, true, true},
        {&a, &s, B, true, true, false},
        {&a, &s, C, true, false, false},
        {NULL, NULL, S, true, false, false},
        {NULL, NULL, A, true, true, false},
        {&a, &s, 99, false, false, false},
        {&a, &s, EDC_CmINVERT, true, true, false},
        {NULL, NULL, EDC_CmINVERT, false, false, false},
    };
    Start();
    for (const auto &row : rows) {
        manager.SetLayer(row.layer);
        manager.SetTool(row.tool);
        TCommandEnabler ce(row.id);
        manager.CommandEnable(ce);
        EXPECT_EQ(ce.IsAnswered(), row.answered) << row.id;
        EXPECT_EQ(ce.IsEnabled(), row.enabled) << row.id;
        EXPECT_EQ(ce.IsChecked(), row.checked) << row.id;
    }
}

TEST_F(Manager, AFailedPaintSuspendsAndGoesNoFurther)
{
    a.Put("x", {0, 0, 9, 9});
    b.Put("y", {0, 0, 9, 9});
    const std::string whole = "c.paint b.paint y.paint a.tool41 x.tool41 a.paint x.paint x.decorate ";
    TestHook hook;
    std::string calls;
    for (char ch : whole) {
        calls += ch;
        if (ch != ' ')
            continue;
        manager.Resume(true);
        a.SelectAll(true, NULL);
        a.SetFocus(a.LnkFirst(), NULL);
        log.Take();
        log.failAt = static_cast<int>(std::count(calls.begin(), calls.end(), ' '));
        manager.Paint(dc, {});
        EXPECT_EQ(log.Take(), calls + "s.off ");
        EXPECT_STREQ(xCode, XNULL);
        EXPECT_TRUE(manager.IsSuspended());
        EXPECT_EQ(Now(), "a s") << "noted for the next time";
        EXPECT_TRUE(a.IsSound());
        manager.Paint(dc, {}); // still to be seen
        EXPECT_NE(log.Take(), "");
    }
    EXPECT_EQ(hook.Reports(), 0) << "no box opens within a paint event";
    EXPECT_EQ(calls, whole);
}

TEST_F(Manager, AToolThatFailsOverAFailedPaintIsAbsorbedToo)
{
    Start();
    log.onwards = true;
    log.failAt = 1;
    manager.Paint(dc, {});
    log.failAt = 0;
    EXPECT_STREQ(xCode, XNULL);
    EXPECT_TRUE(manager.IsSuspended());
    EXPECT_EQ(blk.tool, nullptr);
    EXPECT_FALSE(a.IsActive());
}

TEST_F(Manager, AFailureStopsEveryOtherWalkAndStaysPending)
{
    Start();
    const struct {
        const char *name;
        std::function<void()> run;
        const char *calls;
    } rows[] = {
        {"Layout", [&] { manager.Layout(dc); }, "c.layout b.layout a.layout "},
        {"Reload", [&] { manager.Reload(NULL); }, "c.reload b.reload a.reload "},
        {"PaintPlain", [&] { manager.PaintPlain(dc, {}); }, "b.plain a.plain "},
    };
    for (const auto &row : rows) {
        std::string calls;
        for (const char *p = row.calls; *p; ++p) {
            calls += *p;
            if (*p != ' ')
                continue;
            log.failAt = static_cast<int>(std::count(calls.begin(), calls.end(), ' '));
            row.run();
            EXPECT_EQ(log.Take(), calls) << row.name;
            EXPECT_EQ(TakeFailure(), XALLOC) << row.name;
            EXPECT_EQ(Now(), "a s") << row.name;
        }
    }
}

TEST_F(Manager, AToolThatFailsIsNobodys)
{
    const struct {
        const char *name;
        std::function<void()> run;
        int calls;          // that may fail
        const char *now[5]; // behind each failure
    } rows[] = {
        {"SetTool", [&] { manager.SetTool(&t); }, 2, {"a -", "a -"}},
        {"no tool", [&] { manager.SetTool(NULL); }, 1, {"a -"}},
        {"SetLayer", [&] { manager.SetLayer(&b); }, 2, {"a -", "b -"}},
        {"no layer", [&] { manager.SetLayer(NULL); }, 1, {"a -"}},
        {"a command", [&] { manager.Command(T); }, 2, {"a -", "a -"}},
        {"Layout",
         [&] {
             a.SetOptions(EDC_LoVISIBLE);
             manager.Layout(dc);
             a.SetOptions(EDC_LoVISIBLE | EDC_LoACTIVABLE);
         },
         1,
         {"a -"}},
        {"Resume", [&] { manager.Resume(true); }, 5, {"a -", "a -", "a s", "a s", "a s"}},
        {"Suspend", [&] { manager.Suspend(false); }, 1, {"a s"}},
        {"Suspend and forget", [&] { manager.Suspend(true); }, 1, {"- -"}},
    };
    for (const auto &row : rows)
        for (int n = 1; n <= row.calls + 1; ++n) {
            SCOPED_TRACE(testing::Message() << row.name << ", call " << n);
            Start();
            log.fired = 0;
            log.failAt = n;
            row.run();
            log.failAt = 0;
            EXPECT_EQ(log.fired, n <= row.calls || std::string(row.name) == "Layout");
            EXPECT_EQ(TakeFailure(), log.fired ? XALLOC : XNULL);
            std::string now = Now();
            EXPECT_TRUE(n > row.calls || now == row.now[n - 1]) << now;
            manager.Resume(true); // and all is well again
            EXPECT_EQ(Now(), "a s");
        }
}

TEST_F(Manager, ABrokenPreconditionEndsTheProgram)
{
    Start();
    for (int i = 1; i < EDC_TOOL_USINGMAX; ++i)
        manager.Permit(&b, &t);
    EXPECT_TRUE(manager.IsPermitted(&b, &t));
    const struct {
        const char *condition;
        std::function<void()> body;
    } rows[] = {
        {"blk != NULL", [] { TEdcSpriteManager(NULL); }},
        {"ly != NULL", [&] { manager.AddLayer(NULL); }},
        {"tl != NULL", [&] { manager.AddTool(NULL); }},
        {"ly != NULL && tl != NULL", [&] { manager.Permit(NULL, &s); }},
        {"ly != NULL && tl != NULL", [&] { manager.Permit(&a, NULL); }},
        {"tl->useCount < EDC_TOOL_USINGMAX", [&] { manager.Permit(&c, &t); }},
        {"tlActive == NULL",
         [&] {
             manager.SetLayer(NULL);
             manager.SlipIn(&s);
             manager.SetLayer(&a);
         }},
    };
    for (const auto &row : rows)
        EXPECT_TRUE(AbortsOnAssertion(row.condition, "usr/edcsprit_manager.cpp", row.body)) << row.condition;
}

TEST_F(Manager, ABareToolDoesNothing)
{
    TEdcSpriteTool bare(1);
    bare.LeftDown(dc, 0, {});
    bare.LeftUp(dc, 0, {});
    bare.LeftDouble(dc, 0, {});
    bare.RightDown(dc, 0, {});
    bare.RightUp(dc, 0, {});
    bare.MouseMove(dc, 0, {});
    bare.Outside(dc, true);
    bare.Activate(true);
    EXPECT_EQ(dc.calls, "");
    EXPECT_EQ(bare.Layer(), nullptr);
    bare.SetLayer(&a);
    EXPECT_EQ(bare.Layer(), &a);
    EXPECT_EQ(bare.Id(), 1);
}

/// A block with a manager in a document that is shown in a frame of the program's menus.
class ManagerInADocument : public testing::Test
{
protected:
    ManagerInADocument() : frame("Probe", doc)
    {
        EdcUseResources();
        blk = new TSpriteBlock(log, 3, 2);
        blk->main.Put("m", {10, 10, 50, 50});
        blk->side.Put("n", {30, 30, 90, 90});
        doc.LinkBlock(blk, NULL, true);
        doc.docZoom.SetCustom(100);
        doc.blockZoom.SetCustom(100);
        TestApplication().SetMainWindow(&frame);
        frame.AssignMenu(1000);
        frame.Create();
        testdoor::ResizeClient(doc, {400, 300});
        doc.Start("C:\\x.tst");
        testdoor::Settle();
        log.Take();
    }
    ~ManagerInADocument() override
    {
        EXPECT_EQ(testdoor::UnexpectedBoxes(), 0);
        TestApplication().SetMainWindow(NULL);
        SetResTextSink(NULL);
    }
    TColor At(TPoint p)
    {
        testdoor::Settle();
        return testdoor::Pixel(doc, doc.ToWindow(p + TPoint{blk->rect.x, blk->rect.y}));
    }
    void Open()
    {
        testdoor::DoubleClick(doc, doc.ToWindow(TPoint{150, 100}));
        testdoor::Settle();
        ASSERT_EQ(doc.openedBlk, blk);
    }

    static constexpr TColor IDLE = {160, 160, 160}, ACTIVE = {0, 0, 255}, SELECTED = {0, 255, 0},
                            GROUND = {255, 250, 220};
    SpriteLog log;
    ProgramTables tables;
    TTestDoc doc;
    TSpriteBlock *blk;
    TDecoratedFrame frame;
};

TEST_F(ManagerInADocument, ABlockIsOpenedPaintedAndClosed)
{
    EXPECT_EQ(At({20, 20}), IDLE);
    EXPECT_EQ(At({40, 40}), IDLE);
    EXPECT_EQ(At({100, 20}), GROUND);
    Open();
    EXPECT_EQ(blk->manager.Layer(), &blk->main);
    EXPECT_EQ(blk->tool, &blk->selector);
    EXPECT_EQ(blk->main.ToolId(), TSpriteBlock::SELECT);
    EXPECT_EQ(At({20, 20}), ACTIVE);
    EXPECT_EQ(At({40, 40}), ACTIVE) << "the active layer is on top";
    EXPECT_EQ(At({80, 80}), IDLE);
    doc.EvCommand(TSpriteBlock::SIDE);
    EXPECT_EQ(At({40, 40}), ACTIVE);
    EXPECT_EQ(At({80, 80}), ACTIVE);
    EXPECT_EQ(At({20, 20}), IDLE);
    testdoor::Key(doc, "Esc");
    EXPECT_EQ(doc.openedBlk, nullptr);
    EXPECT_TRUE(blk->manager.IsSuspended());
    EXPECT_EQ(blk->tool, nullptr);
    EXPECT_EQ(At({20, 20}), IDLE);
    EXPECT_EQ(At({80, 80}), IDLE);
}

TEST_F(ManagerInADocument, AHiddenLayerIsSeenWhileItIsActiveAndOnPaper)
{
    blk->side.SetOptions(EDC_LoACTIVABLE | EDC_LoPRINTED);
    doc.Refresh(0);
    EXPECT_EQ(At({80, 80}), GROUND);
    Open();
    EXPECT_EQ(At({80, 80}), GROUND);
    doc.EvCommand(TSpriteBlock::SIDE);
    EXPECT_EQ(At({80, 80}), ACTIVE);
    blk->side.SelectAll(true, NULL);
    TMemoryDC paper({300, 200}, 96);
    blk->Print(paper, {0, 0, 300, 200});
    EXPECT_EQ(paper.Pixel({80, 80}), IDLE);
    EXPECT_EQ(paper.Pixel({20, 20}), IDLE);
    blk->side.SetOptions(EDC_LoACTIVABLE);
    TMemoryDC other({300, 200}, 96);
    blk->Print(other, {0, 0, 300, 200});
    EXPECT_EQ(other.Pixel({80, 80}), WIN_WHITE);
}

TEST_F(ManagerInADocument, TheMenuKeysReachTheLayerOfTheOpenedBlock)
{
    blk->main.Put("o", {100, 10, 120, 30});
    doc.Refresh(0);
    testdoor::Key(doc, "Ctrl+A"); // no block is opened
    EXPECT_EQ(blk->main.CountSel(), 0);
    Open();
    testdoor::Key(doc, "Ctrl+A");
    EXPECT_EQ(blk->main.Sel(), "mo");
    EXPECT_EQ(blk->side.Sel(), "");
    EXPECT_EQ(At({20, 20}), SELECTED);
    testdoor::Click(doc, doc.ToWindow(TPoint{110, 20}));
    testdoor::Click(doc, doc.ToWindow(TPoint{200, 150}));
    EXPECT_EQ(blk->main.Sel(), "");
    testdoor::Key(doc, "Del"); // nothing is selected
    EXPECT_EQ(blk->main.Lnk(), "mo");
    testdoor::Click(doc, doc.ToWindow(TPoint{110, 20}));
    EXPECT_EQ(blk->main.Sel(), "o");
    log.Take();
    testdoor::Key(doc, "Del");
    EXPECT_EQ(blk->main.Lnk(), "m");
    EXPECT_EQ(log.Take().find("o.discard o.gone n.layout m.layout "), 0u);
    EXPECT_EQ(At({110, 20}), GROUND);
    EXPECT_TRUE(blk->main.IsSound());
}

TEST_F(ManagerInADocument, TheMenuShowsWhatTheLayerAllows)
{
    enum { DOCUMENT_MENU = 1 };
    auto selectAll = [&] {
        for (const testdoor::MenuEntry &entry : testdoor::Menu(frame, DOCUMENT_MENU))
            if (entry.id == EDC_CmSELECTALL)
                return entry.enabled;
        ADD_FAILURE() << "no such item";
        return false;
    };
    EXPECT_FALSE(selectAll());
    Open();
    EXPECT_TRUE(selectAll());
    testdoor::ChooseMenu(frame, EDC_CmSELECTALL);
    EXPECT_EQ(blk->main.Sel(), "m");
    EXPECT_FALSE(selectAll());
}

TEST_F(ManagerInADocument, AFailedPaintLeavesAWindowWithoutATool)
{
    Open();
    TestHook hook;
    log.Take();
    log.failAt = 1;
    doc.Invalidate();
    testdoor::Settle();
    EXPECT_TRUE(blk->manager.IsSuspended());
    EXPECT_EQ(blk->tool, nullptr);
    EXPECT_EQ(hook.Reports(), 0);
    doc.Refresh(EDC_PAINT);
    EXPECT_EQ(At({20, 20}), IDLE);
    testdoor::Click(doc, doc.ToWindow(TPoint{20, 20}));
    EXPECT_EQ(blk->main.Sel(), "");
    doc.CloseBlock();
    doc.Refresh(0);
    Open();
    testdoor::Click(doc, doc.ToWindow(TPoint{20, 20}));
    EXPECT_EQ(blk->main.Sel(), "m");
}
} // namespace
