// The layer of the emitters over the hall's set: the record that goes between an emitter and a dialog, the
// making of emitters and sprites and what a failure leaves of them, labels, and a hall with five hundred.
#include "support/child.h"
#include "usr/edcutils.h"
#include "zulemittcase.h"

#include <cmath>
#include <functional>

namespace
{
const char SPRITE[] = "usr/zulemitt_sprite.cpp";

class Emitters : public testing::Test, protected EmitterBench
{
protected:
    ~Emitters() override { EXPECT_STREQ(xCode, XNULL); }

    TEdcDrawCreation Creation(int tool = EDC_TlSTOCK)
    {
        TEdcDrawCreation creation;
        creation.type = tool;
        creation.stock = &stock;
        return creation;
    }
    /// A stock as a dialog that was confirmed leaves it.
    void Stock(const char *model, double output, double height, double tilt)
    {
        if (model)
            stock.modelName = model;
        else
            stock.modelName.Set(EDC_VNUL, "");
        stock.output.Set(output);
        stock.height.Set(height);
        stock.tilt.Set(tilt);
        stock.target = &set;
    }
    /// The model's references, found out by what an acquisition would reuse.
    static bool IsLoaded(const char *model)
    {
        FaultArm noFiles(FAULT::OPEN, 1, true);
        EmMODEL *cached = ModelAcquire(model);
        xCode = XNULL;
        ModelRelease(cached);
        return cached != NULL;
    }

    TZulEmitterData stock;
};

std::string Shown(const TEdcFloat &v)
{
    return v.id == EDC_VVAL ? EdcFormat("%.15g", v.value) : v.id == EDC_VUDF ? "?" : "!";
}

std::string Shown(const TZulEmitterData &d)
{
    std::string name = d.modelName.id == EDC_VVAL   ? std::string(d.modelName.text)
                       : d.modelName.id == EDC_VNUL ? "-"
                                                    : "?";
    return name + " " + Shown(d.output) + " " + Shown(d.height) + " " + Shown(d.tilt);
}

constexpr double degree = AgPI / 180;
} // namespace

TEST_F(Emitters, AFreshRecordHasNoModelNothingEnteredALevelTiltAndNoTarget)
{
    EXPECT_EQ(Shown(stock), "- ? ? 0");
    EXPECT_EQ(stock.target, nullptr);
    Stock("Lang", 1, 2, 3);
    stock.Reset();
    EXPECT_EQ(Shown(stock), "- ? ? 0");
    EXPECT_EQ(stock.target, nullptr);
}

TEST_F(Emitters, LoadingTakesWhatTheEmitterHasRoundedAndInDegrees)
{
    EmEMITTER *e = Hang("Lang", {1, 2, 0.1 + 0.2}, 1, -30 * degree);
    e->power = 1.0 / 3;
    stock.Exchange(EDC_XLOAD, *e);
    EXPECT_EQ(Shown(stock), "Lang 0.333333333333 0.3 -30");
    for (int tilt = -89; tilt <= 89; ++tilt) { // there and back is the same angle
        e->tilt = tilt * degree;
        stock.Exchange(EDC_XLOAD, *e);
        ASSERT_EQ(stock.tilt.value, tilt);
        stock.Exchange(EDC_XSTORE, *e);
        ASSERT_EQ(e->tilt, tilt * degree);
    }
    stock.Exchange(EDC_XLOAD, *Hang(NULL, {0, 0, 4}));
    EXPECT_EQ(Shown(stock), "- 0 4 0");
}

TEST_F(Emitters, MergingLeavesUndefinedWhereTwoDiffer)
{
    const struct {
        const char *model;
        double power, height, tilt;
        const char *merged;
    } cases[] = {
        {"Lang", 20000, 5, 10, "Lang 20000 5 10"},
        {"Kurz", 20000, 5, 10, "? 20000 5 10"},
        {NULL, 20000, 5, 10, "? 20000 5 10"},
        {"Lang", 8000, 5, 10, "Lang ? 5 10"},
        {"Lang", 20000, 5.5, 10, "Lang 20000 ? 10"},
        {"Lang", 20000, 5, -10, "Lang 20000 5 ?"},
        {NULL, 0, 0, 0, "? ? ? ?"},
    };
    for (const auto &c : cases) {
        EmEMITTER *first = Hang("Lang", {1, 2, 5}, 0, 10 * degree);
        EmEMITTER *second = Hang(c.model, {3, 4, c.height}, 1, c.tilt * degree);
        second->power = c.power;
        stock.Exchange(EDC_XLOAD, *first);
        stock.Exchange(EDC_XMERGE, *second);
        EXPECT_EQ(Shown(stock), c.merged);
        stock.Exchange(EDC_XMERGE, *first); // what differed once stays undefined
        EXPECT_EQ(Shown(stock), c.merged);
    }
    EmEMITTER *nothing = Hang(NULL, {});
    stock.Exchange(EDC_XLOAD, *nothing);
    stock.Exchange(EDC_XMERGE, *nothing);
    EXPECT_EQ(Shown(stock), "- 0 0 0");
}

TEST_F(Emitters, MatchingChangesNeitherSide)
{
    EmEMITTER *e = Hang("Lang", {1, 2, 5}, 0, 10 * degree);
    Stock("Kurz", 1, 2, 3);
    std::string before = TextOf(*e);
    stock.Exchange(EDC_XMATCH, *e);
    EXPECT_EQ(Shown(stock), "Kurz 1 2 3");
    EXPECT_EQ(TextOf(*e), before);
}

TEST_F(Emitters, StoringGivesAllThatIsDefinedAndLeavesTheRest)
{
    for (int defined = 0; defined < 16; ++defined) {
        EmEMITTER *e = Hang("Lang", {1, 2, 5}, 0.5, 10 * degree);
        Stock("Kurz", 7000, 3, -45);
        if (!(defined & 1))
            stock.modelName.id = EDC_VUDF;
        if (!(defined & 2))
            stock.output.id = EDC_VUDF;
        if (!(defined & 4))
            stock.height.id = EDC_VUDF;
        if (!(defined & 8))
            stock.tilt.id = EDC_VUDF;
        stock.Exchange(EDC_XSTORE, *e);
        EXPECT_STREQ(e->model->Info()->name, defined & 1 ? "Kurz" : "Lang");
        EXPECT_EQ(e->power, defined & 2 ? 7000 : 20000);
        EXPECT_EQ(e->pos, AgPOINT(1, 2, defined & 4 ? 3 : 5));
        EXPECT_EQ(e->tilt, defined & 8 ? -45 * degree : 10 * degree);
        EXPECT_EQ(e->rotation, 0.5);
    }
    Stock(NULL, 0, 3, 0);
    EmEMITTER *e = Hang("Lang", {});
    stock.Exchange(EDC_XSTORE, *e);
    EXPECT_EQ(e->model, nullptr);
    set.Clear();
    EXPECT_FALSE(IsLoaded("Lang"));
    EXPECT_FALSE(IsLoaded("Kurz"));
}

TEST_F(Emitters, AModelThatIsGoneChangesNothingOfTheEmitterAndOneInUseIsNotReadAgain)
{
    EmEMITTER *e = Hang("Lang", {1, 2, 5});
    std::string before = TextOf(*e);
    Stock("Fehlt", 1, 2, 3);
    stock.Exchange(EDC_XSTORE, *e);
    EXPECT_EQ(TakeFailure(), XFOPEN);
    EXPECT_EQ(TextOf(*e), before);
    home.Remove("Lang");
    Stock("Lang", 1, 2, 3);
    stock.Exchange(EDC_XSTORE, *e);
    EXPECT_STREQ(xCode, XNULL);
    EXPECT_EQ(e->power, 1);
    EmEMITTER *other = Hang(NULL, {});
    stock.Exchange(EDC_XSTORE, *other); // from those that have it
    EXPECT_EQ(other->model, e->model);
}

TEST_F(Emitters, ATextInTheModelNameThatIsNeitherAModelNorNoneIsAFault)
{
    Stock("Lang", 1, 2, 3);
    stock.modelName.id = 5;
    EmEMITTER *e = Hang(NULL, {});
    EXPECT_TRUE(AbortsOnAssertion("modelName.id == EDC_VNUL", "usr/zulemitt.cpp",
                                  [&] { stock.Exchange(EDC_XSTORE, *e); }));
}

TEST_F(Emitters, TheLayerIsNumber2001AndCanBeActivatedSeenAndPrinted)
{
    EXPECT_EQ(layer.Id(), 2001);
    EXPECT_EQ(layer.Options(), EDC_LoACTIVABLE | EDC_LoVISIBLE | EDC_LoPRINTED);
    EXPECT_EQ(layer.Options(), 7);
    EXPECT_TRUE(AbortsOnAssertion("aEmittSet != NULL", "usr/zulemitt.cpp",
                                  [this] { TZulEmitterLayer wrong(NULL, &axes); }));
    EXPECT_EQ(Show("Lang", {})->Type(), 2003);
}

TEST_F(Emitters, ReloadMakesASpriteForEachInTheOrderOfTheSetAndTouchesNoEmitter)
{
    Hang("Lang", {1, 1, 4});
    Hang(NULL, {2, 2, 4});
    Hang("Kurz", {3, 3, 4});
    std::string before = TextOf(set);
    for (int run = 0; run < 3; ++run) {
        layer.Reload(NULL);
        EXPECT_EQ(layer.CountLnk(), 3);
        int number = 0;
        for (EmEMITTER *e = set.First(); e; e = EmEMITTERSET::Next(e))
            EXPECT_EQ(Sprite(++number)->Object(), e);
        EXPECT_EQ(layer.CountSel(), 0);
        layer.SelectAll(true, NULL);
    }
    EXPECT_EQ(TextOf(set), before);
    EXPECT_EQ(doc.changes, 0);
    Empty();
    layer.Reload(NULL);
    EXPECT_EQ(layer.CountLnk(), 0);
}

TEST_F(Emitters, OnlyTheStockCreatorMakesAnEmitterAndOnlyFromAStock)
{
    Stock("Lang", 15000, 4, 20);
    for (int tool : {int{EDC_TlSELECT}, int{EDC_TlALIGN}, int{EDC_TlRECT}, 0}) {
        EXPECT_EQ(layer.CreateSprite(Creation(tool)), nullptr);
        EXPECT_EQ(layer.QueryCreation(tool, true), nullptr);
    }
    EXPECT_TRUE(set.IsEmpty());
    Hang(NULL, {});
    TEdcDrawSprite *spr = layer.CreateSprite(Creation());
    ASSERT_NE(spr, nullptr);
    EXPECT_EQ(spr->layer, nullptr); // the caller adds it
    EXPECT_EQ(set.Count(), 2);
    EXPECT_EQ(static_cast<TZulEmitterSprite *>(spr)->Object(), set.Last());
    EXPECT_EQ(TextOf(*static_cast<EmEMITTER *>(set.Last())), "Lang 0 0 4 rot 0 tilt 0.349065850399 15000 W");
    EXPECT_EQ(doc.changes, 1);
    layer.Add(spr);
}

TEST_F(Emitters, TheConstructorsInsistOnTheirObjects)
{
    EXPECT_TRUE(
        AbortsOnAssertion("object != NULL", SPRITE, [] { TZulEmitterSprite(static_cast<EmEMITTER *>(NULL)); }));
    EXPECT_TRUE(AbortsOnAssertion("params != NULL", SPRITE, [] {
        TEdcDrawCreation empty;
        TZulEmitterSprite spr(empty);
    }));
    TZulEmitterSprite *spr = Show(NULL, {1, 1, 4});
    EXPECT_TRUE(AbortsOnAssertion("emitt.emittObj != NULL", SPRITE, [spr] {
        spr->Discard();
        TZulEmitterSprite copy(*spr);
    }));
    EXPECT_TRUE(AbortsOnAssertion("emittObj != NULL", SPRITE, [spr] {
        spr->Discard();
        spr->Discard();
    }));
    const std::function<void(TZulEmitterSprite &)> needObject[] = {
        [](TZulEmitterSprite &s) {
            TEdcDrawDesc d;
            s.Describe(d, 0);
        },
        [](TZulEmitterSprite &s) {
            TEdcDrawDrag drag;
            s.Apply(drag);
        },
        [](TZulEmitterSprite &s) {
            TEdcDrawDrag drag;
            s.DragUpdate(drag);
        },
    };
    for (const auto &act : needObject)
        EXPECT_TRUE(AbortsOnAssertion("emittObj != NULL", SPRITE, [&] {
            spr->Discard();
            act(*spr);
        }));
    const std::function<void(TZulEmitterSprite &)> needLayer[] = {
        [this](TZulEmitterSprite &s) { s.Paint(dc); },
        [this](TZulEmitterSprite &s) { s.DragPaint(dc); },
        [](TZulEmitterSprite &s) { s.HitTest({}); },
        [](TZulEmitterSprite &s) {
            TEdcDrawDrag drag;
            s.DragUpdate(drag);
        },
    };
    for (const auto &act : needLayer)
        EXPECT_TRUE(AbortsOnAssertion("ly != NULL && emittObj != NULL", SPRITE, [&] {
            layer.Remove(spr);
            act(*spr);
        }));
    EXPECT_TRUE(AbortsOnAssertion("ly != NULL", SPRITE, [&] {
        layer.Remove(spr);
        TEdcDrawDrag drag;
        drag.mode = EDC_DRAWDRAGMOVE | EDC_DRAWDRAGCOPY;
        spr->Apply(drag);
    }));
    EXPECT_TRUE(AbortsOnAssertion("drag.shift.z == 0", SPRITE, [&] {
        TEdcDrawDrag drag;
        drag.mode = EDC_DRAWDRAGMOVE;
        drag.shift = AgVECTOR(1, 1, 1);
        spr->Apply(drag);
    }));
}

TEST_F(Emitters, AFailureWhileOneIsMadeLeavesNoEmitterNoSpriteAndNoModel)
{
    layer.Reload(NULL);
    Stock("Lang", 15000, 4, 20);
    TEdcDrawSprite *made = NULL;
    long blocks = 0;
    int fired = SweepFaults([&] { blocks = LiveBlocks(); }, [&] { made = layer.CreateSprite(Creation()); },
                            [&](const FaultRun &run) {
                                EXPECT_EQ(made == NULL, run.code != XNULL) << FaultName(run.kind) << run.n;
                                EXPECT_EQ(set.Count(), made == NULL ? 0 : 1);
                                delete made;
                                set.Clear();
                                EXPECT_EQ(LiveBlocks(), blocks) << FaultName(run.kind) << " " << run.n;
                                EXPECT_FALSE(IsLoaded("Lang"));
                            });
    EXPECT_GT(fired, 10);
    home.Put("Kaputt", "IE/GIM");
    for (const char *model : {"Fehlt", "Kaputt"}) {
        Stock(model, 1, 2, 3);
        EXPECT_EQ(layer.CreateSprite(Creation()), nullptr);
        EXPECT_NE(TakeFailure(), XNULL);
        EXPECT_TRUE(set.IsEmpty());
    }
    doc.fails = true; // the last step of all
    Stock("Lang", 15000, 4, 20);
    EXPECT_EQ(layer.CreateSprite(Creation()), nullptr);
    EXPECT_EQ(TakeFailure(), XALLOC);
    EXPECT_TRUE(set.IsEmpty());
    EXPECT_FALSE(IsLoaded("Lang"));
    EXPECT_EQ(layer.CountLnk(), 0);
}

TEST_F(Emitters, AFailureWhileOneIsCopiedLeavesTheOriginalAsItWas)
{
    TZulEmitterSprite *spr = Show("Lang", {1, 2, 5}, 0.5, 0.1);
    Hang(NULL, {9, 9, 9});
    std::string before = TextOf(set);
    std::string moved = "Lang 4 2 5 rot 0.5 tilt 0.1 20000 W\n";
    long blocks = 0;
    TEdcDrawSprite *took = NULL;
    int fired = SweepFaults(
        [&] {
            layer.Select(spr, true, NULL);
            blocks = LiveBlocks();
        },
        [&] {
            TEdcDrawDrag drag;
            drag.mode = EDC_DRAWDRAGMOVE | EDC_DRAWDRAGCOPY;
            drag.shift = AgVECTOR(3, 0);
            took = spr->Apply(drag);
        },
        [&](const FaultRun &run) {
            EXPECT_EQ(took == spr, run.code != XNULL);
            if (took != spr)
                layer.Delete(took, true);
            EXPECT_EQ(TextOf(set), before);
            EXPECT_EQ(layer.CountLnk(), 1);
            EXPECT_EQ(LiveBlocks(), blocks) << FaultName(run.kind) << " " << run.n;
        });
    EXPECT_GE(fired, 2);
    doc.fails = true;
    TZulEmitterSprite copy(*spr);
    EXPECT_EQ(TakeFailure(), XALLOC);
    EXPECT_EQ(copy.Object(), nullptr);
    EXPECT_EQ(TextOf(set), before);
}

TEST_F(Emitters, AFailureWhileSpritesAreReloadedLeavesTheSetWhole)
{
    for (int i = 0; i < 5; ++i)
        Hang(i % 2 ? "Lang" : NULL, AgPOINT(i, i, 4));
    std::string before = TextOf(set);
    int fired = SweepFaults([&] { layer.Reload(NULL); },
                            [&](const FaultRun &run) {
                                EXPECT_EQ(layer.CountLnk() == 5, run.code == XNULL);
                                EXPECT_EQ(TextOf(set), before);
                            });
    EXPECT_GE(fired, 5);
    layer.Reload(NULL);
    EXPECT_EQ(layer.CountLnk(), 5);
}

TEST_F(Emitters, LabelsCountFromOneInTheOrderOfCreationAndAnewAtEachLayout)
{
    for (int i = 0; i < 3; ++i)
        Hang("Lang", AgPOINT(i, 0, 4));
    LayOut();
    EXPECT_EQ(Labels(), "1 2 3 ");
    layer.Select(Sprite(2), true, NULL);
    layer.DeleteSelected(true);
    EXPECT_EQ(set.Count(), 2);
    EXPECT_EQ(doc.changes, 1);
    EXPECT_EQ(doc.obsolete, EDC_LAYOUT);
    EXPECT_EQ(Labels(), "1 3 ");
    layer.Layout(dc);
    EXPECT_EQ(Labels(), "1 2 ");
    layer.RepaintSprite(Sprite(1), NULL); // the order of painting is another
    layer.Layout(dc);
    EXPECT_EQ(Labels(), "1 2 ");
    TEdcDrawDrag drag;
    drag.mode = EDC_DRAWDRAGMOVE | EDC_DRAWDRAGCOPY;
    drag.shift = AgVECTOR(0, 1);
    Sprite(1)->Apply(drag);
    layer.Layout(dc);
    EXPECT_EQ(Labels(), "1 3 2 "); // behind its source in the set, the last one made on the plan
    layer.Reload(NULL);
    layer.Layout(dc);
    EXPECT_EQ(Labels(), "1 2 3 ");
}

TEST_F(Emitters, TheMarkersAreAsWideAsTheNumberOfEmittersNeeds)
{
    LayOut();
    int former = layer.markerX;
    EXPECT_GT(former, 0); // also of an empty hall
    for (int count : {9, 10, 99, 100}) {
        while (set.Count() < count)
            Hang(NULL, {});
        LayOut();
        EXPECT_EQ(layer.markerX > former, count == 10 || count == 100) << count;
        former = layer.markerX;
        EXPECT_NEAR(layer.markerX, layer.markerY + 1, 1);
    }
}

TEST_F(Emitters, DiscardTakesTheEmitterOutOfTheHallAndGivesItsModelBack)
{
    Show("Lang", {1, 1, 4});
    Hang("Kurz", {2, 2, 4});
    LayOut();
    layer.Delete(Sprite(1), true);
    EXPECT_EQ(TextOf(set), "Kurz 2 2 4 rot 0 tilt 0 8000 W\n");
    EXPECT_EQ(doc.changes, 1);
    EXPECT_FALSE(IsLoaded("Lang"));
    EXPECT_TRUE(IsLoaded("Kurz"));
    layer.Delete(Sprite(1), false); // the sprite alone
    EXPECT_EQ(set.Count(), 1);
    EXPECT_EQ(doc.changes, 1);
}

TEST_F(Emitters, FiveHundredCostTenTimesWhatFiftyCostAndNoMore)
{
    struct COST {
        size_t layout, select, drag, bytes;
    };
    auto measure = [this](int count) {
        Empty();
        for (int i = 0; i < count; ++i)
            Hang(i % 3 ? "Lang" : NULL, AgPOINT(i % 25, i / 25.0, 5), i * 0.1, i % 2 * 0.2);
        COST cost = {};
        size_t from = BytesAsked();
        LayOut();
        layer.SetActive(true);
        layer.SetTool(EDC_TlSELECT);
        layer.Layout(dc);
        cost.layout = LinesOf(TakeCalls()).size();
        layer.SelectAll(true, &dc);
        layer.SetFocus(layer.SelFirst(), &dc);
        cost.select = LinesOf(TakeCalls()).size();
        for (TEdcSprite *spr = layer.SelFirst(); spr; spr = layer.SelNext(spr))
            spr->DragBegin(dc, 1, {200, 300}, {5, 0});
        for (TEdcSprite *spr = layer.SelFirst(); spr; spr = layer.SelNext(spr))
            spr->DragMove(dc, 1, {200, 300}, {20, 10});
        for (TEdcSprite *spr = layer.SelFirst(); spr; spr = layer.SelNext(spr))
            spr->DragEnd(dc, 1, {200, 300}, {20, 10});
        cost.drag = LinesOf(TakeCalls()).size();
        cost.bytes = BytesAsked() - from;
        EXPECT_EQ(layer.CountSel(), count);
        EXPECT_EQ(doc.changes, count);
        doc.changes = 0;
        layer.SetActive(false);
        return cost;
    };
    measure(50); // what is grown once is there
    COST few = measure(50);
    COST many = measure(500);
    EXPECT_EQ(many.layout, 0U);
    EXPECT_LE(many.select, 11 * few.select);
    EXPECT_LE(many.drag, 11 * few.drag);
    EXPECT_GE(many.drag, 4 * 500U);
    EXPECT_LE(many.bytes, 15 * few.bytes); // of the recording too
    EXPECT_STREQ(Sprite(500)->label.Text(), "500");
}
