// The sample halls of the program folder, as the build made them: whole, sensible, and sound however they are
// cut.
#include "support/memdisk.h"
#include "support/sampleroom.h"

#include "samples/samplehalls.h"

#include "lib/charstr.h"
#include "lib/disk.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <set>

namespace
{
const std::string folder = ZUL_PROGRAM_FOLDER;

std::string FileBytes(int i)
{
    std::ifstream file(folder + "/Beispiele/" + SampleHallFile(i), std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

/// The sample halls with the models of the program folder.
class SampleHalls : public testing::TestWithParam<int>
{
protected:
    std::unique_ptr<EmROOM> room;

    void SetUp() override
    {
        char models[X_NAME];
        ASSERT_TRUE(NameFromNative(models, (folder + "/Modely").c_str(), sizeof(models)));
        SetModelFolder(models);
        room = RoomOfBytes(FileBytes(GetParam()));
        ASSERT_STREQ(TakeFailure(), XNULL);
    }
    void TearDown() override
    {
        SetModelFolder("");
        room.reset();
    }

    /// Mean over a rectangle of the plan, W/m2, 1 m above the floor.
    double MeanIrradiation(const AgPOINT &from, const AgPOINT &to) const
    {
        const int STEPS = 20;
        double sum = 0;
        for (int i = 0; i < STEPS; ++i)
            for (int j = 0; j < STEPS; ++j)
                sum += room->Irradiation(AgPOINT(from.x + (to.x - from.x) * (i + 0.5) / STEPS,
                                                 from.y + (to.y - from.y) * (j + 0.5) / STEPS, 1));
        return sum / (STEPS * STEPS);
    }
};

TEST_P(SampleHalls, AreWhatTheBuilderMakes)
{
    std::unique_ptr<EmROOM> built(MakeSampleHall(GetParam()));
    ASSERT_STREQ(TakeFailure(), XNULL);
    EXPECT_EQ(RoomBytes(*built), FileBytes(GetParam()));
    EXPECT_EQ(RoomBytes(*room), FileBytes(GetParam()));
}

TEST_P(SampleHalls, HaveSixSurfacesAndAModelForEachEmitter)
{
    EXPECT_EQ(room->Surfaces()->Count(), EmSURFACESET::COUNT);
    EXPECT_GT(room->Emitters()->Count(), 0);
    std::set<std::string> models;
    bool turned = false, tilted = false;
    for (const EmEMITTER *e = room->Emitters()->First(); e != NULL; e = EmEMITTERSET::Next(e)) {
        ASSERT_NE(e->model, static_cast<EmMODEL *>(NULL));
        models.insert(e->model->Info()->name);
        turned = turned || e->rotation != 0;
        tilted = tilted || e->tilt != 0;
        EXPECT_TRUE(e->power == e->model->Info()->power || e->power == e->model->Info()->reducedPower);
        EXPECT_TRUE(e->pos.x > 0 && e->pos.x < room->Box().max.x);
        EXPECT_TRUE(e->pos.y > 0 && e->pos.y < room->Box().max.y);
        EXPECT_TRUE(e->pos.z > 3 && e->pos.z < room->Box().max.z);
    }
    EXPECT_GE(models.size(), 2u);
    EXPECT_TRUE(turned && tilted);
}

TEST_P(SampleHalls, HaveTheirOpeningsWithinTheirSurfaces)
{
    room->Surfaces()->Prepare();
    int openings = 0, surfaces = 0;
    for (const EmSURFACE *s = room->Surfaces()->First(); s != NULL; s = EmSURFACESET::Next(s)) {
        surfaces += !s->Holes()->IsEmpty();
        for (const EmHOLE *hole = s->Holes()->First(); hole != NULL; hole = EmHOLESET::Next(hole)) {
            ++openings;
            EXPECT_STRNE(hole->description, "");
            EXPECT_GT(hole->constr.k, 0.5);
            for (const AgPOINT &corner : hole->corners) {
                EXPECT_TRUE(corner.x >= -1e-9 && corner.x <= s->size.x + 1e-9) << hole->description;
                EXPECT_TRUE(corner.y >= -1e-9 && corner.y <= s->size.y + 1e-9) << hole->description;
            }
        }
    }
    EXPECT_GE(openings, 10);
    EXPECT_GE(surfaces, 5);
}

TEST_P(SampleHalls, GiveFiguresAsDesignersExpectThem)
{
    room->Emitters()->Prepare();
    room->Surfaces()->Prepare();
    double reachable = room->MaxAirTemp();
    EXPECT_GE(reachable, room->Data()->runAirTemp);
    EXPECT_LE(reachable, room->Data()->runAirTemp + 2);
    double emitters = 0, airHeaters = 0, loss = 0;
    room->Balance(emitters, airHeaters, loss);
    EXPECT_GT(emitters, loss);
    EXPECT_LT(emitters, 1.6 * loss);
    double wholeHall = MeanIrradiation(AgE0, room->Box().max);
    EXPECT_TRUE(wholeHall >= 60 && wholeHall <= 200) << wholeHall;
    for (const EmZONE *zone = room->Zones()->First(); zone != NULL; zone = EmZONESET::Next(zone)) {
        double zoneMean = MeanIrradiation(zone->pos - zone->size * 0.5, zone->pos + zone->size * 0.5);
        EXPECT_TRUE(zoneMean >= 60 && zoneMean <= 200)
            << zoneMean << " at " << zone->pos.x << " " << zone->pos.y;
        double felt = room->OperativeTemp(zoneMean, reachable);
        EXPECT_NEAR(felt, room->Data()->resultTemp, 3) << "at " << zone->pos.x << " " << zone->pos.y;
    }
}

TEST_P(SampleHalls, HaveAllTheirData)
{
    const EmROOMDATA &data = *room->Data();
    for (const EmCONSTRUCTION &constr : data.constr) {
        EXPECT_TRUE(constr.k > 0.1 && constr.k < 2);
        EXPECT_EQ(constr.alpha, 8.0);
    }
    EXPECT_TRUE(data.airChange > 0 && data.airChange < 2);
    EXPECT_TRUE(data.periodDays > 200 && data.periodDays < 250);
    EXPECT_TRUE(data.weekDays >= 5 && data.weekDays <= 7);
    EXPECT_TRUE(data.dayHours >= 8 && data.dayHours <= 24);
    EXPECT_LT(data.designOutTemp, data.meanOutTemp);
    EXPECT_LT(data.reducedAirTemp, data.runAirTemp);
    EXPECT_GT(data.fuelPrice, 0);
    EXPECT_TRUE(data.workClass >= 1 && data.workClass <= 5);
    EXPECT_GE(StrLength(room->Article()->text), 80);
    EXPECT_GE(StrLength(room->Conclusion()->text), 400);
    EXPECT_STREQ(room->Conclusion()->head, "Schlu\xDF"
                                           "folgerung");
    EXPECT_STRNE(room->Conclusion()->author, "");
    EXPECT_EQ(room->Conclusion()->date / 10000, 2026);
    double amount = 0, cost = 0;
    room->AnnualFuel(amount, cost);
    EXPECT_GT(cost, 1000);
}

// The models stay in the cache with the room that SetUp read, so each cut is a matter of the hall's bytes
// alone.
TEST_P(SampleHalls, FailOrOpenWhereverTheyAreCut)
{
    std::string whole = FileBytes(GetParam());
    MemDisk memory;
    int opened = 0;
    for (size_t length = 0; length < whole.size(); ++length) {
        auto cut = MakeEmptyRoom();
        MemPut("/mem/h.sc1", whole.substr(0, length));
        CdeFILE file;
        file.Open("\\mem\\h.sc1", "o");
        cut->Read(file);
        file.Close();
        XCODE code = TakeFailure();
        ASSERT_TRUE(code == XNULL || code == XFREAD || code == XCDE_INVOLVED) << length << " " << code;
        if (code != XNULL)
            continue;
        ++opened;
        ASSERT_EQ(cut->Surfaces()->Count(), EmSURFACESET::COUNT);
        AskAll(*cut);
    }
    EXPECT_GT(opened, 10);
}

std::string HallName(const testing::TestParamInfo<int> &info)
{
    std::string file = SampleHallFile(info.param);
    return file.substr(0, file.find('.'));
}

INSTANTIATE_TEST_SUITE_P(Of, SampleHalls, testing::Range(0, static_cast<int>(SAMPLE_HALLS)), HallName);

TEST(ProductionSample, HasOpeningsOnEverySurfaceZonesAndWarmAirUnits)
{
    char models[X_NAME];
    ASSERT_TRUE(NameFromNative(models, (folder + "/Modely").c_str(), sizeof(models)));
    SetModelFolder(models);
    std::unique_ptr<EmROOM> room(MakeSampleHall(1));
    ASSERT_STREQ(TakeFailure(), XNULL);
    for (const EmSURFACE *s = room->Surfaces()->First(); s != NULL; s = EmSURFACESET::Next(s))
        EXPECT_FALSE(s->Holes()->IsEmpty());
    EXPECT_GT(room->Zones()->Count(), 0);
    EXPECT_GT(room->AirHeaters()->Count(), 0);
    SetModelFolder("");
}

TEST(SampleHall, WithoutItsModelsFailsWithTheModelsName)
{
    SetModelFolder("\\nowhere\\at all");
    for (int i = 0; i < SAMPLE_HALLS; ++i) {
        EXPECT_EQ(MakeSampleHall(i), static_cast<EmROOM *>(NULL));
        EXPECT_STREQ(TakeFailure(), XFOPEN);
        EXPECT_NE(StrFind(xFOpenName, ".gim", 0), static_cast<const char *>(NULL));
    }
    SetModelFolder("");
}
} // namespace
