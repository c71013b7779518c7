// The update of the floor plan: who is asked, what runs, and what is left behind.
#include "zuldlgcase.h"
#include "zulplancase.h"

#include "support/child.h"
#include "support/fault.h"
#include "support/plainpass.h"
#include "support/sampleroom.h"
#include "support/testblock.h"

#include <gtest/gtest.h>

#include <cmath>
#include <optional>

namespace
{
/// A floor plan over a hall; updates ask no dialog.
struct PLANCASE : MAPDOC {
    TZulMapInfo info;
    TZulRoomBlock blk;

    explicit PLANCASE(EmROOM *room) : blk(room, &info, &palette, "Plan")
    {
        asked = 0;
        answer = [](TZulUpdateData &) { return true; };
        TZulRoomBlock::askParams = Ask;
    }
    ~PLANCASE()
    {
        TZulRoomBlock::askParams = NULL;
        answer = NULL;
    }
    bool HasNoMap() const { return blk.Picture() == NULL && blk.Scale() == NULL && !blk.Map().HasMap(); }

    static int asked;
    static std::function<bool(TZulUpdateData &)> answer;

private:
    static bool Ask(TZulUpdateData &params)
    {
        ++asked;
        return answer(params);
    }
};

int PLANCASE::asked;
std::function<bool(TZulUpdateData &)> PLANCASE::answer;

/// What happens when the status line is told something, while it lives.
std::function<void(const std::string &)> onStatus;
struct STATUS {
    explicit STATUS(std::function<void(const std::string &)> act)
    {
        onStatus = std::move(act);
        former = SetStatusSink([](const char *text, bool) { onStatus(text); });
    }
    ~STATUS() { SetStatusSink(former); }
    STATUS(const STATUS &) = delete;
    STATUS &operator=(const STATUS &) = delete;

private:
    StatusSink former;
};

const char running[] = "Auswertung l\xE4uft . . .";

/// Lays the block out on a page and paints it.
void Show(TEdcBlock &blk, TPlaceDC &dc)
{
    TSize size = LayoutBlock(blk, dc, {718, 1000});
    blk.Paint(dc, {0, 0, size.cx, size.cy});
}
} // namespace

TEST(RoomUpdate, OfANewPlanHasRunNothing)
{
    ONEEMITTERHALL hall;
    PLANCASE plan(&hall.room);
    EXPECT_FALSE(plan.blk.IsValid());
    EXPECT_TRUE(plan.HasNoMap());
    EXPECT_EQ(plan.blk.params.height.value, 0);
    EXPECT_EQ(plan.blk.params.height.id, EDC_VVAL);
    for (const TEdcFloat *value :
         {&plan.blk.params.minInte, &plan.blk.params.maxInte, &plan.blk.params.airTemp})
        EXPECT_EQ(value->id, EDC_VUDF);
    EXPECT_EQ(plan.blk.params.draft.value, 1);
    EXPECT_EQ(plan.blk.params.fineScale.value, 1);
    EXPECT_EQ(plan.blk.Room(), &hall.room);
    EXPECT_EQ(plan.blk.Info(), &plan.info);
    EXPECT_EQ(plan.blk.Palette(), &plan.palette);
}

TEST(RoomUpdate, RunsWithWhatWasAnsweredAndIsThePlainEvaluation)
{
    for (unsigned start : {1U, 4U, 7U, 12U, 23U}) {
        SCOPED_TRACE(start);
        auto hall = MakeFieldHall(start);
        PLANCASE plan(&hall->room);
        PLANCASE::answer = [start](TZulUpdateData &params) {
            params.height.Set(0.5 * (start % 3));
            params.fineScale.Set(start & 1);
            if (start & 2)
                params.airTemp.Set(11.5);
            if (start & 4) {
                params.minInte.Set(-10);
                params.maxInte.Set(250);
            }
            return true;
        };
        plan.blk.Update(false);
        EXPECT_EQ(PLANCASE::asked, 1);
        ASSERT_TRUE(plan.blk.IsValid());
        TZulMapInfo info;
        ZulPassMap map;
        PlainRunPass(hall->room, plan.blk.params.Params(), info, map);
        EXPECT_EQ(DifferPass(plan.info, plan.blk.Map(), info, map), "");
        EXPECT_EQ(plan.blk.Picture() != NULL, map.HasMap());
        EXPECT_EQ(plan.blk.Scale() != NULL, map.HasMap());
    }
}

TEST(RoomUpdate, PaintsEachPointInTheColourOfItsScale)
{
    ONEEMITTERHALL hall;
    PLANCASE plan(&hall.room);
    for (int fine : {0, 1}) {
        plan.blk.params.fineScale.Set(fine);
        plan.blk.Update(false);
        const TEdcPicture *picture = plan.blk.Picture();
        ASSERT_TRUE(picture);
        const ZulPixels &pixels = plan.blk.Map().pixels;
        const TEdcColorScale &scale = fine ? plan.palette.mapColors : plan.palette.mapColorsCoarse;
        ASSERT_EQ(picture->bitmap.Width(), 169);
        ASSERT_EQ(picture->bitmap.Width(), pixels.Width());
        ASSERT_EQ(picture->bitmap.Height(), pixels.Height());
        for (int j = 0; j < pixels.Height(); ++j)
            for (int i = 0; i < pixels.Width(); ++i)
                ASSERT_EQ(picture->bitmap.Pixel(i, j), scale.Index(pixels.Row(j)[i])) << i << "," << j;
        EXPECT_EQ(plan.blk.Scale()->Count(), fine ? 13 : 4);
    }
}

TEST(RoomUpdate, TellsTheStatusLineThatItRunsAndThenNothing)
{
    ONEEMITTERHALL hall;
    PLANCASE plan(&hall.room);
    plan.blk.Update(false);
    EXPECT_EQ(plan.Status(), (std::vector<std::string>{running, ""}));
}

TEST(RoomUpdate, ThatIsPartialAsksNothingAndIsNotValid)
{
    ONEEMITTERHALL hall;
    PLANCASE plan(&hall.room);
    plan.blk.Update(false);
    const TEdcPicture *picture = plan.blk.Picture();
    TZulMapInfo before = plan.info;
    plan.Status().clear();
    plan.blk.Update(true);
    EXPECT_EQ(PLANCASE::asked, 1);
    EXPECT_FALSE(plan.blk.IsValid());
    EXPECT_EQ(plan.blk.Picture(), picture); // results stay as they are until the next run
    EXPECT_TRUE(plan.blk.Scale());
    EXPECT_EQ(plan.info.meanInte, before.meanInte);
    EXPECT_TRUE(plan.Status().empty());
}

TEST(RoomUpdate, ThatIsCancelledComputesNothingAndIsNotValid)
{
    ONEEMITTERHALL hall;
    PLANCASE plan(&hall.room);
    plan.blk.Update(false);
    TZulMapInfo before = plan.info;
    const TEdcPicture *picture = plan.blk.Picture();
    hall.emitter->power = 1;
    PLANCASE::answer = [](TZulUpdateData &) { return false; };
    plan.blk.Update(false);
    EXPECT_EQ(PLANCASE::asked, 2);
    EXPECT_FALSE(plan.blk.IsValid());
    EXPECT_EQ(plan.info.maxInte, before.maxInte);
    EXPECT_EQ(plan.info.emittPower, before.emittPower);
    EXPECT_EQ(plan.blk.Picture(), picture);
    PLANCASE::answer = [](TZulUpdateData &) { return true; };
    plan.blk.Update(false);
    EXPECT_TRUE(plan.blk.IsValid());
    EXPECT_EQ(plan.info.emittPower, 1);
}

TEST(RoomUpdate, WithoutEmittersHasFiguresAndNoMap)
{
    FIELDHALL hall(12, 8, 5);
    PLANCASE plan(&hall.room);
    plan.blk.Update(false);
    EXPECT_TRUE(plan.blk.IsValid());
    EXPECT_TRUE(plan.HasNoMap());
    EXPECT_EQ(plan.info.minInte, 0);
    EXPECT_EQ(plan.info.maxInte, 0);
    EXPECT_EQ(plan.info.meanInte, 0);
    EXPECT_EQ(plan.info.spread, 0);
    EXPECT_EQ(plan.info.volume, 12 * 8 * 5);
    TPlaceDC dc;
    Show(plan.blk, dc);
    EXPECT_TRUE(dc.pictures.empty());
    EXPECT_EQ(Swatches(dc), 0U);
}

TEST(RoomUpdate, WithEndsThatLeaveNoScaleDropsTheMapOfBefore)
{
    ONEEMITTERHALL hall;
    PLANCASE plan(&hall.room);
    plan.blk.Update(false);
    ASSERT_FALSE(plan.HasNoMap());
    for (double most : {20.0, 10.0}) {
        plan.blk.params.minInte.Set(20);
        plan.blk.params.maxInte.Set(most);
        plan.blk.Update(false);
        EXPECT_TRUE(plan.blk.IsValid());
        EXPECT_TRUE(plan.HasNoMap());
        EXPECT_GT(plan.info.maxInte, 0);
    }
    plan.blk.params.maxInte.Set(21);
    plan.blk.Update(false);
    EXPECT_FALSE(plan.HasNoMap());
}

TEST(RoomUpdate, TakesThePlaceOfTheMapOfBefore)
{
    ONEEMITTERHALL hall;
    PLANCASE plan(&hall.room);
    plan.blk.Update(false);
    int coarse = plan.blk.Picture()->bitmap.Width();
    plan.blk.params.draft.Set(0);
    plan.blk.Update(false);
    EXPECT_EQ(coarse, 504 / 3 + 1);
    EXPECT_EQ(plan.blk.Picture()->bitmap.Width(), 504 + 1);
    EXPECT_EQ(plan.blk.Map().pixels.Width(), 504 + 1);
}

TEST(RoomUpdate, ThatFailsWhileItAsksLeavesAllButTheValidity)
{
    ONEEMITTERHALL hall;
    PLANCASE plan(&hall.room);
    plan.blk.Update(false);
    PLANCASE::answer = [](TZulUpdateData &) {
        XRaise(XLIMIT, __FILE__, __LINE__);
        return true;
    };
    plan.blk.Update(false);
    EXPECT_STREQ(TakeFailure(), XLIMIT);
    EXPECT_FALSE(plan.blk.IsValid());
    EXPECT_FALSE(plan.HasNoMap());
}

TEST(RoomUpdate, ThatFailsOnItsWayLeavesNoMapAndItsStatusText)
{
    ONEEMITTERHALL hall;
    PLANCASE plan(&hall.room);
    plan.blk.Update(false);
    ASSERT_TRUE(plan.blk.IsValid());
    std::vector<std::string> told;
    {
        STATUS status([&told](const std::string &text) {
            told.push_back(text);
            XRaise(XLIMIT, __FILE__, __LINE__);
        });
        plan.blk.Update(false);
    }
    EXPECT_STREQ(TakeFailure(), XLIMIT);
    EXPECT_FALSE(plan.blk.IsValid());
    EXPECT_TRUE(plan.HasNoMap());
    EXPECT_EQ(told, (std::vector<std::string>{running}));
    plan.blk.Update(false);
    EXPECT_TRUE(plan.blk.IsValid());
    EXPECT_FALSE(plan.HasNoMap());
}

TEST(RoomUpdate, OfAHallThatHasNoRasterFails)
{
    auto room = MakeEmptyRoom();
    PLANCASE plan(room.get());
    plan.blk.Update(false);
    EXPECT_STREQ(TakeFailure(), XALLOC);
    EXPECT_FALSE(plan.blk.IsValid());
    EXPECT_TRUE(plan.HasNoMap());
}

TEST(RoomUpdate, WithoutMemoryForThePictureOrTheTableLeavesNoMap)
{
    ONEEMITTERHALL hall;
    PLANCASE plan(&hall.room);
    plan.blk.Update(false);
    ASSERT_TRUE(plan.blk.IsValid());
    for (int n = 1; n <= 6; ++n) { // all of them behind the figures, and before the cursor is given back
        SCOPED_TRACE(n);
        std::optional<FaultArm> arm;
        {
            STATUS status([&arm, n](const std::string &text) {
                if (text.empty())
                    arm.emplace(FAULT::ALLOC, n, false);
            });
            plan.blk.Update(false);
        }
        arm.reset();
        EXPECT_EQ(FaultsFired(), 1);
        EXPECT_STREQ(TakeFailure(), XALLOC);
        EXPECT_FALSE(plan.blk.IsValid());
        EXPECT_TRUE(plan.HasNoMap());
        EXPECT_GT(plan.info.maxInte, 0);
    }
    plan.blk.Update(false);
    EXPECT_TRUE(plan.blk.IsValid());
}

TEST(RoomUpdate, DoesNotMakeTheDocumentModified)
{
    ONEEMITTERHALL hall;
    PLANCASE plan(&hall.room);
    plan.blk.Update(false);
    EXPECT_FALSE(plan.doc.modified);
}

TEST(RoomUpdate, LeavesAMapThatNoLongerHoldsInTheReportButNotUnderTheEditorsHands)
{
    ONEEMITTERHALL hall;
    PLANCASE plan(&hall.room);
    struct {
        bool valid, opened, shown;
    } rows[] = {{true, false, true}, {true, true, true}, {false, false, true}, {false, true, false}};
    for (const auto &row : rows) {
        SCOPED_TRACE(testing::Message() << row.valid << row.opened);
        plan.blk.Update(false);
        if (!row.valid)
            plan.blk.Update(true);
        plan.blk.state = row.opened ? EDC_BsBUSY : 0;
        TPlaceDC dc;
        Show(plan.blk, dc);
        EXPECT_EQ(dc.pictures.size(), row.shown ? 1U : 0U);
        EXPECT_EQ(Swatches(dc), row.shown ? 12U : 0U);
        dc.pictures.clear();
        plan.blk.Print(dc, {0, 0, 718, 1000});
        EXPECT_EQ(dc.pictures.size(), row.shown ? 1U : 0U);
    }
}

TEST(RoomUpdate, AsksForWhatItNeedsToBeMade)
{
    ONEEMITTERHALL hall;
    MAPDOC map;
    TZulMapInfo info;
    EXPECT_TRUE(AbortsOnAssertion("room != NULL", "usr/zulroom.cpp",
                                  [&] { TZulRoomBlock blk(NULL, &info, &map.palette, "Plan"); }));
    const std::string condition = "info != NULL && palette != NULL";
    EXPECT_TRUE(AbortsOnAssertion(condition, "usr/zulroom.cpp",
                                  [&] { TZulRoomBlock blk(&hall.room, NULL, &map.palette, "Plan"); }));
    EXPECT_TRUE(AbortsOnAssertion(condition, "usr/zulroom.cpp",
                                  [&] { TZulRoomBlock blk(&hall.room, &info, NULL, "Plan"); }));
}

namespace
{
/// A floor plan in a document that works off its levels.
struct DocumentRun : testing::Test, TEXTSINUSE {
    ONEEMITTERHALL hall;
    TZulRoomPalette palette;
    TZulMapInfo info;
    TTestDoc doc;
    TZulRoomBlock *blk = NULL;

    DocumentRun()
    {
        char logos[X_NAME];
        SetLogoDirectory(NameFromNative(logos, ZUL_PROGRAM_FOLDER, sizeof logos) ? logos : NULL);
        doc.AddPalette(&palette);
        doc.ComposePalette();
        blk = new TZulRoomBlock(&hall.room, &info, &palette, "Plan");
        blk->SetSize(TEdcSize(1.0, 0, EDC_UREL));
        blk->SetOptions(EDC_BoSELECT);
        doc.LinkBlock(blk, NULL, true);
        doc.Start();
    }
    ~DocumentRun() override
    {
        TZulRoomBlock::askParams = NULL;
        SetLogoDirectory(NULL);
    }
};
} // namespace

TEST_F(DocumentRun, FullUpdateRunsAndAPartialOneDoesNot)
{
    TZulRoomBlock::askParams = [](TZulUpdateData &) { return true; };
    doc.Refresh(EDC_UPDATE);
    EXPECT_FALSE(blk->IsValid());
    doc.Refresh(EDC_RECALC);
    EXPECT_TRUE(blk->IsValid());
    EXPECT_EQ(doc.log.Take(), "partial.before partial.after full.before full.after ");
    EXPECT_FALSE(doc.IsObsolete(EDC_PAINT));
    EXPECT_FALSE(doc.modified);
}

TEST_F(DocumentRun, FailureLeavesTheLevelSoThatTheNextRefreshAsksAgain)
{
    static int asked;
    asked = 0;
    TZulRoomBlock::askParams = [](TZulUpdateData &) {
        if (++asked == 1)
            XRaise(XLIMIT, __FILE__, __LINE__);
        return true;
    };
    doc.Refresh(EDC_RECALC);
    EXPECT_STREQ(TakeFailure(), XLIMIT);
    EXPECT_TRUE(doc.IsObsolete(EDC_RECALC));
    EXPECT_FALSE(blk->IsValid());
    doc.Refresh(0);
    EXPECT_EQ(asked, 2);
    EXPECT_TRUE(blk->IsValid());
}

TEST_F(DocumentRun, CancellingGoesOnWithTheRestOfTheUpdate)
{
    TZulRoomBlock::askParams = [](TZulUpdateData &) { return false; };
    doc.Refresh(EDC_RECALC);
    EXPECT_EQ(doc.log.Take(), "full.before full.after ");
    EXPECT_FALSE(doc.IsObsolete(EDC_PAINT));
    EXPECT_FALSE(blk->IsValid());
}

TEST_F(DocumentRun, OpenedPlanFillsTheViewAndShowsAllOfItself)
{
    TZulRoomBlock::askParams = [](TZulUpdateData &) { return true; };
    doc.Create();
    testdoor::ResizeClient(doc, {900, 700});
    doc.Refresh(EDC_RECALC);
    doc.OpenBlock(blk);
    doc.Refresh(0);
    TRect client = doc.GetClientRect();
    TSize space = {client.Width() - 10, client.Height() - 10};
    EXPECT_EQ(blk->rect.Rect().TopLeft(), (TPoint{0, 0}));
    EXPECT_LE(blk->rect.width, space.cx + 5);
    EXPECT_LE(blk->rect.height, space.cy + 5);
    double fillX = static_cast<double>(blk->rect.width) / space.cx;
    double fillY = static_cast<double>(blk->rect.height) / space.cy;
    EXPECT_GT(std::max(fillX, fillY), 0.95) << fillX << " " << fillY;
    doc.CloseBlock();
    doc.Refresh(0);
}

namespace
{
/// The dialog itself, with a user in it.
struct DialogRun : DialogCase {
    ONEEMITTERHALL hall;
    TZulRoomPalette palette;
    TZulMapInfo info;
    TEdcDocument doc;
    std::unique_ptr<TZulRoomBlock> blk;

    DialogRun()
    {
        SetAppDocument(&doc);
        doc.AddPalette(&palette);
        doc.ComposePalette();
        blk = std::make_unique<TZulRoomBlock>(&hall.room, &info, &palette, "Plan");
    }
};
} // namespace

TEST_F(DialogRun, OkRunsWithWhatWasTyped)
{
    InDialog([](testdoor::DialogBox &box) {
        EXPECT_EQ(TextOf(box, 100), "0");
        EXPECT_EQ(TextOf(box, 101), "");
        box.Type(100, "1.5");
        box.Type(101, "5");
        box.Type(102, "150");
        box.Type(103, "16");
        box.Click(105);
        box.Click(WIN_ID_OK);
    });
    blk->Update(false);
    ASSERT_TRUE(blk->IsValid());
    EXPECT_EQ(info.height, 1.5);
    EXPECT_EQ(info.airTemp, 16);
    EXPECT_EQ(blk->Map().lo, 5);
    EXPECT_EQ(blk->Map().hi, 150);
    EXPECT_EQ(blk->Map().colors, &mapColorsCoarse);
    InDialog([](testdoor::DialogBox &box) { // the record lives as long as the block
        EXPECT_EQ(TextOf(box, 100), "1.5");
        EXPECT_EQ(TextOf(box, 103), "16");
        box.Type(103, "");
        box.Click(WIN_ID_OK);
    });
    blk->Update(false);
    EXPECT_TRUE(blk->IsValid());
    EXPECT_EQ(info.airTemp, info.maxAirTemp);
}

TEST_F(DialogRun, AbbrechenRunsNothing)
{
    InDialog([](testdoor::DialogBox &box) {
        box.Type(100, "1.5");
        box.Click(WIN_ID_CANCEL);
    });
    blk->Update(false);
    EXPECT_FALSE(blk->IsValid());
    EXPECT_EQ(info.volume, 0);
    EXPECT_EQ(blk->params.height.value, 0);
}

TEST_F(DialogRun, PartialUpdateOpensNoDialog)
{
    blk->Update(true); // the fixture counts boxes that nobody expected
    EXPECT_FALSE(blk->IsValid());
}
