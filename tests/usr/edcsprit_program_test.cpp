// Random programs of gestures and commands on two layers, followed by a plain model: selection, focus, painting
// order, places and the selector's state agree after each event, and all lists are sound.
#include "spritemodel.h"
#include "support/chance.h"
#include "support/countdc.h"
#include "support/freshpaint.h"
#include "support/testsprite.h"
#include "win/testdoor.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace
{
/// What a program works on.
struct Kind {
    const char *name;
    int sprites;     // of each layer at the start
    int most;        // of each layer
    TSize field;     // px, where they lie and the pointer moves
    int extent;      // px, of the largest sprite
    int commandOnce; // in so many events
    int failOnce;    // in so many events, 0 for never
};
const Kind kinds[] = {
    {"few apart", 4, 8, {300, 200}, 30, 12, 0},
    {"a heap", 12, 24, {60, 60}, 40, 12, 0},
    {"many", 30, 40, {400, 300}, 40, 30, 0},
    {"one or none", 1, 2, {50, 50}, 50, 10, 0},
    {"gestures alone", 10, 60, {200, 150}, 40, 500, 0},
    {"that fail", 6, 12, {120, 120}, 40, 15, 4},
};

/// Two layers with the model beside them; what drives them comes below.
class Program
{
public:
    Program(const Kind &aKind, unsigned aFrom)
        : kind(aKind), from(aFrom), chance(aFrom), blk(new TSpriteBlock(log, 4, 3))
    {
        doc.LinkBlock(blk, NULL, true);
        for (int i = 0; i < kind.sprites; ++i)
            for (int ly : {0, 1})
                Put(ly);
    }
    virtual ~Program() = default;
    virtual void Start() { Resume(true); }
    std::string Name() const { return std::string(kind.name) + ", program " + std::to_string(from); }

    void Step()
    {
        bool fails = kind.failOnce && chance.One(kind.failOnce);
        log.fired = 0;
        log.failAt = fails ? chance.Int(1, 4) : 0;
        if (chance.One(kind.commandOnce) && MayChange())
            Change();
        else
            Gesture();
        log.failAt = 0;
        if (log.fired > 0) {
            ++failures;
            Recover();
            Adopt();
        }
        events += 1;
        drags += model.dragging;
        bands += model.band;
        Compare();
    }

    int events = 0, failures = 0, drags = 0, bands = 0, asked = 0, copies = 0;

protected:
    virtual void Gesture() = 0;
    virtual bool MayChange() const { return true; }
    virtual TDC *Screen() { return &dc; }
    virtual void Recover() {}

    TTestLayer &Real(int ly) { return ly == 0 ? blk->main : blk->side; }
    TPoint Point()
    {
        // half of the points hit something
        const PlainLayer &ly = model.layers[std::max(0, model.lyActive)];
        if (!ly.lnk.empty() && chance.One(2)) {
            size_t at = static_cast<size_t>(chance.Int(0, static_cast<int>(ly.lnk.size()) - 1));
            const TRect &r = model.PlaceOf(ly.lnk[at]);
            return {chance.Int(r.left, r.right - 1), chance.Int(r.top, r.bottom - 1)};
        }
        return {chance.Int(-10, kind.field.cx), chance.Int(-10, kind.field.cy)};
    }
    unsigned Keys() { return chance.One(3) ? 4u * static_cast<unsigned>(chance.Int(0, 3)) : 0; }

    void Put(int ly)
    {
        TPoint at = {chance.Int(0, kind.field.cx), chance.Int(0, kind.field.cy)};
        TRect place = {at.x, at.y, at.x + chance.Int(1, kind.extent), at.y + chance.Int(1, kind.extent)};
        Real(ly).Put("x", place)->number = model.AddSprite(ly, place);
    }
    void Resume(bool reset)
    {
        blk->manager.Resume(reset);
        model.Resume(reset);
    }
    void Command(int id) { EXPECT_EQ(blk->manager.Command(id), model.Command(id)); }

    /// What the program does between two events of the mouse.
    void Change()
    {
        int ly = chance.Int(0, 1);
        switch (chance.Int(0, 15)) {
        case 0:
        case 1:
        case 2:
            if (Real(ly).CountLnk() < kind.most)
                Put(ly);
            break;
        case 3:
        case 4:
            if (TEdcSprite *spr = Any(Real(ly))) {
                model.layers[ly].Remove(Test(spr).number);
                if (chance.One(2))
                    Real(ly).Remove(spr);
                delete spr;
            }
            break;
        case 5:
            Command(EDC_CmDELETE);
            break;
        case 6:
            Command(EDC_CmSELECTALL);
            break;
        case 7:
            Command(EDC_CmSELECTNONE);
            break;
        case 8:
            Command(EDC_CmINVERT);
            break;
        case 9:
            if (TEdcSprite *spr = Any(Real(ly))) {
                bool on = chance.One(2);
                Real(ly).Select(spr, on, chance.One(2) ? Screen() : NULL);
                model.layers[ly].Select(Test(spr).number, on);
            }
            break;
        case 10:
            Real(ly).LockRepaint();
            Real(ly).UnlockRepaint(chance.One(2) ? Screen() : NULL, true);
            if (model.layers[ly].active)
                model.layers[ly].RepaintSelection();
            break;
        case 11:
            blk->manager.SetLayer(ly == 0 ? &blk->main : &blk->side);
            model.SetLayer(ly);
            break;
        case 12:
            if (chance.One(4)) {
                blk->manager.SetLayer(NULL);
                model.SetLayer(-1);
            }
            break;
        case 13: {
            static const PlainManager::Tool tools[] = {PlainManager::NONE, PlainManager::OTHER,
                                                       PlainManager::SELECTOR, PlainManager::SELECTOR};
            PlainManager::Tool tl = chance.Of(tools);
            TEdcSpriteTool *real =
                tl == PlainManager::OTHER ? static_cast<TEdcSpriteTool *>(&blk->other) : &blk->selector;
            blk->manager.SetTool(tl == PlainManager::NONE ? NULL : real);
            model.SetTool(tl);
            break;
        }
        case 14: {
            bool forget = chance.One(3);
            blk->manager.Suspend(forget);
            model.Suspend(forget);
            break;
        }
        default:
            Resume(chance.One(2));
        }
        if (blk->manager.IsSuspended() || !blk->manager.Tool())
            Resume(chance.One(2) || !blk->manager.Layer() || !blk->manager.Tool());
    }
    TEdcSprite *Any(const TTestLayer &ly)
    {
        TEdcSprite *spr = ly.LnkFirst();
        for (int i = ly.CountLnk() > 0 ? chance.Int(0, ly.CountLnk() - 1) : 0; i > 0; --i)
            spr = ly.LnkNext(spr);
        return spr;
    }

    static TTestSprite &Test(TEdcSprite *spr) { return *static_cast<TTestSprite *>(spr); }
    static std::vector<int> Numbers(TEdcSprite *first, TEdcSprite *TEdcSprite::*next)
    {
        std::vector<int> list;
        for (TEdcSprite *spr = first; spr; spr = spr->*next)
            list.push_back(Test(spr).number);
        return list;
    }
    /// Sprites that a drag made get their numbers from the model.
    void NumberCopies(int ly)
    {
        auto number = model.layers[ly].lnk.begin();
        for (TEdcSprite *spr = Real(ly).LnkFirst(); spr && number != model.layers[ly].lnk.end(); ++number) {
            if (Test(spr).number == 0) {
                Test(spr).number = *number;
                ++copies;
            }
            spr = Real(ly).LnkNext(spr);
        }
    }
    void Compare()
    {
        for (int ly : {0, 1}) {
            NumberCopies(ly);
            const TTestLayer &real = Real(ly);
            const PlainLayer &plain = model.layers[ly];
            ASSERT_TRUE(real.IsSound()) << ly;
            ASSERT_EQ(Numbers(real.LnkFirst(), &TEdcSprite::lnkNext), plain.lnk) << ly;
            ASSERT_EQ(Numbers(real.PntFirst(), &TEdcSprite::pntNext), plain.pnt) << ly;
            ASSERT_EQ(Numbers(real.SelFirst(), &TEdcSprite::selNext), plain.sel) << ly;
            ASSERT_EQ(real.Focus() ? Test(real.Focus()).number : 0, plain.focus) << ly;
            ASSERT_EQ(real.IsActive(), plain.active) << ly;
            for (TEdcSprite *spr = real.LnkFirst(); spr; spr = real.LnkNext(spr))
                ASSERT_EQ(Test(spr).place, model.PlaceOf(Test(spr).number));
        }
        ASSERT_EQ(blk->selector.States(), model.States());
        ASSERT_EQ(blk->tool != NULL, !model.suspended && model.tlActive != PlainManager::NONE);
        std::string calls = log.Take();
        ASSERT_EQ(calls.find(".open") != std::string::npos, model.asked.find("open") != std::string::npos);
        ASSERT_EQ(calls.find(".menu") != std::string::npos, model.asked.find("menu") != std::string::npos);
        asked += !model.asked.empty();
        model.asked.clear();
        ASSERT_STREQ(xCode, XNULL);
    }
    /// Behind a failure the model takes over what it finds; what must hold is that all is sound and idle.
    void Adopt()
    {
        log.Take();
        model.asked.clear();
        model.suspended = blk->manager.IsSuspended();
        model.lyActive = !blk->manager.Layer() ? -1 : blk->manager.Layer() == &blk->main ? 0 : 1;
        model.tlActive = !blk->manager.Tool()                    ? PlainManager::NONE
                         : blk->manager.Tool() == &blk->selector ? PlainManager::SELECTOR
                                                                 : PlainManager::OTHER;
        for (int ly : {0, 1})
            AdoptLayer(Real(ly), model.layers[ly], ly);
        EXPECT_TRUE(blk->selector.IsIdle());
        model.leftState = model.rightState = 0;
        model.dragging = model.band = false;
        model.outside = blk->selector.States().find("outside") != std::string::npos;
        if (model.suspended || model.lyActive < 0 || model.tlActive == PlainManager::NONE)
            Resume(true);
    }
    void AdoptLayer(TTestLayer &real, PlainLayer &plain, int ly)
    {
        plain = PlainLayer();
        for (TEdcSprite *spr = real.LnkFirst(); spr; spr = real.LnkNext(spr)) {
            TTestSprite &own = Test(spr);
            own.number = model.AddSprite(ly, own.place);
            model.sprites.back() = {own.place, own.drags, own.hidden};
        }
        plain.pnt = Numbers(real.PntFirst(), &TEdcSprite::pntNext);
        plain.sel = Numbers(real.SelFirst(), &TEdcSprite::selNext);
        plain.focus = real.Focus() ? Test(real.Focus()).number : 0;
        plain.active = real.IsActive();
    }

    const Kind &kind;
    const unsigned from;
    CHANCE chance;
    SpriteLog log;
    TTestDoc doc;
    TCountDC dc;
    TSpriteBlock *blk;
    PlainManager model;
};

/// Events that go to the block's tool as they come, also in orders that no mouse makes.
class BareProgram : public Program
{
public:
    using Program::Program;

protected:
    void Gesture() override
    {
        TPoint at = chance.One(4) ? model.last : chance.One(6) ? model.start : Point();
        unsigned keys = Keys();
        struct NoTool : TEdcMouseTool {
        } none;
        TEdcMouseTool &tool = blk->tool ? *blk->tool : static_cast<TEdcMouseTool &>(none);
        switch (chance.Int(0, 24)) {
        case 0:
        case 1:
        case 2:
            tool.LeftDown(dc, keys, at);
            model.LeftDown(keys, at);
            break;
        case 3:
        case 4:
        case 5:
            tool.LeftUp(dc, keys, at);
            model.LeftUp(keys, at);
            break;
        case 6:
            tool.LeftDouble(dc, keys, at);
            model.LeftDouble(keys, at);
            break;
        case 7:
            tool.RightDown(dc, keys, at);
            model.RightDown(keys, at);
            break;
        case 8:
        case 9:
            tool.RightUp(dc, keys, at);
            model.RightUp(keys, at);
            break;
        case 10: {
            bool out = chance.One(3);
            tool.Outside(dc, out);
            model.Outside(out);
            break;
        }
        default:
            tool.MouseMove(dc, keys, at);
            model.MouseMove(keys, at);
        }
    }
    /// What the document does behind a failure.
    void Recover() override
    {
        EXPECT_EQ(xCode, XALLOC);
        xCode = XNULL;
        blk->selector.Outside(dc, true);
        blk->selector.LeftUp(dc, EDC_KEY_TAKEBACK, model.last);
        blk->selector.RightUp(dc, EDC_KEY_TAKEBACK, model.last);
        EXPECT_STREQ(xCode, XNULL);
    }
};

/// Events as the desktop sends them to a window.
class WindowProgram : public Program
{
public:
    using Program::Program;
    void Start() override
    {
        doc.docZoom.SetCustom(100);
        doc.blockZoom.SetCustom(100);
        doc.Create();
        testdoor::ResizeClient(doc, {SIDE, SIDE});
        doc.Start("C:\\x.tst");
        doc.OpenBlock(blk);
        model.Resume(true);
        doc.Refresh(0);
        testdoor::Settle();
        log.Take();
    }
    ~WindowProgram() override { doc.EvCaptureLost(); }

    /// The gesture ends, and what the window shows is what a fresh paint shows.
    void Finish()
    {
        doc.EvCaptureLost();
        Lose();
        ASSERT_TRUE(LooksFresh(doc));
        Compare();
    }

protected:
    enum { SIDE = 200 }; // px, of the window

    /// While the mouse is captured nothing else comes from the user.
    bool MayChange() const override { return !left && !right; }
    TDC *Screen() override { return NULL; }
    void Gesture() override
    {
        TPoint at = Point();
        TPoint window = doc.ToWindow(at + TPoint{blk->rect.x, blk->rect.y});
        unsigned keys = Keys();
        switch (chance.Int(0, 13)) {
        case 0:
        case 1:
            doc.EvLButtonDown(keys, window);
            left = 1;
            model.LeftDown(keys, at);
            if (autoScroll)
                model.Outside(true);
            lastPoint = at;
            break;
        case 2:
        case 3:
            doc.EvLButtonUp(keys, window);
            if (left) {
                left = 0;
                autoScroll &= right != 0;
                model.LeftUp(keys, at);
                lastPoint = at;
            }
            break;
        case 4:
            doc.EvLButtonDblClk(keys, window);
            left = 2;
            model.LeftDouble(keys, at);
            lastPoint = at;
            break;
        case 5:
            doc.EvRButtonDown(keys, window);
            right = 1;
            model.RightDown(keys, at);
            if (autoScroll)
                model.Outside(true);
            lastPoint = at;
            break;
        case 6:
        case 7:
            doc.EvRButtonUp(keys, window);
            if (right) {
                right = 0;
                autoScroll &= left != 0;
                model.RightUp(keys, at);
                lastPoint = at;
            }
            break;
        case 8:
            doc.EvKeyDown(WIN_VK_ESCAPE, 0);
            Lose();
            break;
        case 9:
            if (chance.One(10))
                Finish();
            break;
        default: {
            bool former = autoScroll;
            autoScroll = (left || right) && !TRect{0, 0, SIDE, SIDE}.Contains(window);
            doc.EvMouseMove(keys, window);
            if (autoScroll != former)
                model.Outside(autoScroll);
            model.MouseMove(keys, at);
            lastPoint = at;
        }
        }
    }

private:
    void Lose()
    {
        if (!autoScroll && (left || right))
            model.Outside(true);
        autoScroll = false;
        if (left)
            model.LeftUp(EDC_KEY_TAKEBACK, lastPoint);
        if (right)
            model.RightUp(EDC_KEY_TAKEBACK, lastPoint);
        left = right = 0;
    }

    int left = 0, right = 0;
    bool autoScroll = false;
    TPoint lastPoint;
};

struct Tally {
    int events = 0, failures = 0, drags = 0, bands = 0, asked = 0, copies = 0;

    void Add(const Program &p)
    {
        events += p.events;
        failures += p.failures;
        drags += p.drags;
        bands += p.bands;
        asked += p.asked;
        copies += p.copies;
    }
};

void RunProgram(Program &program, int steps, Tally &tally)
{
    program.Start();
    for (int i = 0; i < steps && !testing::Test::HasFailure(); ++i)
        program.Step();
    EXPECT_FALSE(testing::Test::HasFailure()) << program.Name() << ", step " << program.events;
    tally.Add(program);
}

TEST(SpriteProgram, WhateverTheMouseDoesTheLayersFollowTheModel)
{
    enum { PROGRAMS = 15, STEPS = 2000 }; // of each kind
    Tally tally;
    for (const Kind &kind : kinds)
        for (unsigned from = 1; from <= PROGRAMS && !testing::Test::HasFailure(); ++from) {
            BareProgram program(kind, from);
            RunProgram(program, STEPS, tally);
        }
    EXPECT_EQ(tally.events, 180000);
    EXPECT_GT(tally.drags, 10000);
    EXPECT_GT(tally.bands, 5000);
    EXPECT_GT(tally.asked, 1000);
    EXPECT_GT(tally.copies, 200);
    EXPECT_GT(tally.failures, 500);
}

TEST(SpriteProgram, AWindowFollowsTheModelAndShowsNoTraces)
{
    enum { PROGRAMS = 5, STEPS = 1000 };
    Tally tally;
    for (const Kind &kind : kinds) {
        if (kind.failOnce)
            continue;
        for (unsigned from = 101; from <= 100 + PROGRAMS && !testing::Test::HasFailure(); ++from) {
            WindowProgram program(kind, from);
            RunProgram(program, STEPS, tally);
        }
    }
    EXPECT_EQ(tally.events, 25000);
    EXPECT_GT(tally.drags, 800);
    EXPECT_GT(tally.bands, 500);
    EXPECT_GT(tally.copies, 25);
}

TEST(SpriteProgram, ItsChecksSeeWhatIsWrong)
{
    SpriteLog log;
    TTestDoc doc;
    for (int fault = 0; fault <= 8; ++fault) {
        TTestLayer ly("ly", 7, EDC_LoACTIVABLE, log);
        TTestSprite *a = ly.Put("a", {}), *b = ly.Put("b", {});
        ly.SelectAll(true, NULL);
        ly.SetFocus(b, NULL);
        EXPECT_TRUE(ly.IsSound());
        TEdcSprite *const good[] = {a->lnkNext, a->pntNext, b->selPrev, b->lnkPrev};
        uint16_t state = b->state;
        switch (fault) {
        case 1:
            a->lnkNext = NULL;
            break;
        case 2:
            a->pntNext = a;
            break;
        case 3:
            b->selPrev = NULL;
            break;
        case 4:
            b->lnkPrev = b;
            break;
        case 5:
            b->state = EDC_SsSELECTED;
            break;
        case 6:
            b->state |= EDC_SsACTIVE;
            break;
        case 7:
            ly.LockRepaint();
            break;
        case 8:
            ly.LockDecorate(NULL);
            break;
        default:
            break;
        }
        EXPECT_EQ(ly.IsSound(), fault == 0) << fault;
        a->lnkNext = good[0];
        a->pntNext = good[1];
        b->selPrev = good[2];
        b->lnkPrev = good[3];
        b->state = state;
    }
}
} // namespace
