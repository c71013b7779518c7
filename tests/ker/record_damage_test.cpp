// Damaged hall files and failing disks: every cut, many thousand mutations, every fault while reading and
// writing. Each ends in a failure code or in a hall that answers, writes and reads again.
#include "support/cdeitems.h"
#include "support/fault.h"
#include "support/memdisk.h"
#include "support/sampleroom.h"

#include <gtest/gtest.h>

#include <map>

namespace
{
const char NATIVE[] = "/mem/halle.sc1";
const char NAME[] = "\\mem\\halle.sc1";
const char MODELS[] = "\\mem\\Modely"; // no folder on the disk, so that nothing but a cached model is found

/// A memory disk and models that are in the cache and nowhere else.
class RecordDamage : public testing::Test
{
protected:
    SAMPLEMODELS models; // before the disk: it goes through a folder
    MemDisk memory;

    void SetUp() override { SetModelFolder(MODELS); }
    void TearDown() override
    {
        SetModelFolder("");
        EXPECT_EQ(MemOpenFiles(), 0);
    }
};

/// Reads a hall from the file as a document is opened; NULL with a failure pending if it cannot be had.
std::unique_ptr<EmROOM> OpenHall(const std::string &bytes)
{
    auto room = MakeEmptyRoom();
    MemPut(NATIVE, bytes);
    CdeFILE file;
    file.Open(NAME, "o");
    room->Read(file);
    file.Close();
    if (xCode != XNULL)
        room.reset();
    return room;
}

bool IsHallFailure(XCODE code)
{
    return code == XCDE_INVOLVED || code == XFREAD || code == XFOPEN;
}

/// A hall that opened is whole: six surfaces, answers to all questions, and its file reads again.
void ExpectSoundHall(EmROOM &room)
{
    ASSERT_EQ(room.Surfaces()->Count(), EmSURFACESET::COUNT);
    AskAll(room);
    std::string bytes = RoomBytes(room);
    ASSERT_STREQ(xCode, XNULL);
    auto again = OpenHall(bytes);
    ASSERT_STREQ(TakeFailure(), XNULL);
    ASSERT_EQ(RoomBytes(*again), bytes);
}

TEST_F(RecordDamage, EveryCutOfAHallFailsOrOpens)
{
    std::string whole = RoomBytes(*MakeFullRoom(models));
    std::map<std::string, int> outcomes;
    for (size_t length = 0; length <= whole.size(); ++length) {
        SCOPED_TRACE(length);
        auto room = OpenHall(whole.substr(0, length));
        XCODE code = TakeFailure();
        ++outcomes[code];
        if (room != NULL)
            ExpectSoundHall(*room);
        else
            ASSERT_TRUE(code == XFREAD || code == XCDE_INVOLVED) << code;
    }
    EXPECT_GT(outcomes[XNULL], 20) << "cuts between portions and groups";
    EXPECT_GT(outcomes[XFREAD], 1000);
    EXPECT_GT(outcomes[XCDE_INVOLVED], 2) << "cuts between surfaces";
}

enum { HALLS = 50, MUTATIONS = 50000 };

const SAMPLECOUNTS tiny = {.emitters = 3, .airHeaters = 1, .holes = 1, .zones = 1, .textLength = 10};

/// How many of the mutated files opened; each of them is a sound hall, and each other one failed as files fail.
void MutateAndOpen(const SAMPLEMODELS &models, void (*damage)(std::string &bytes, CHANCE &chance), int &opened)
{
    std::string halls[HALLS];
    for (unsigned i = 0; i < HALLS; ++i)
        halls[i] = RoomBytes(*MakeSampleRoom(1000 + i, models, tiny));
    for (unsigned i = 0; i < MUTATIONS; ++i) {
        SCOPED_TRACE(i);
        CHANCE chance(i);
        std::string bytes = halls[i % HALLS];
        damage(bytes, chance);
        auto room = OpenHall(bytes);
        XCODE code = TakeFailure();
        if (room != NULL) {
            ++opened;
            ASSERT_NO_FATAL_FAILURE(ExpectSoundHall(*room));
        } else {
            ASSERT_TRUE(IsHallFailure(code)) << code;
        }
    }
}

TEST_F(RecordDamage, FiftyThousandMutationsOfItemsFailOrOpen)
{
    int opened = 0;
    MutateAndOpen(
        models,
        [](std::string &bytes, CHANCE &chance) {
            CdeITEMS items = DecodeItems(bytes);
            DamageItems(items, chance);
            bytes = EncodeItems(items);
        },
        opened);
    EXPECT_GT(opened, MUTATIONS / 20);
    EXPECT_LT(opened, MUTATIONS);
}

TEST_F(RecordDamage, FiftyThousandMutationsOfBytesFailOrOpen)
{
    int opened = 0;
    MutateAndOpen(models, DamageBytes, opened);
    EXPECT_GT(opened, MUTATIONS / 20);
    EXPECT_LT(opened, MUTATIONS);
}

// Faults

/// A hall of which the models are files on the memory disk and in no cache.
class RecordFaults : public testing::Test
{
protected:
    MemDisk memory;
    std::string bytes;

    void SetUp() override
    {
        SetModelFolder(MODELS);
        auto model = SaveModel(2);
        EmROOM room(12, 8, 5, "Kopf", "Ende", 20260115);
        const char *name = model->Info()->name;
        for (int i = 0; i < 2; ++i)
            AddEmitter(room, name);
        (new EmAIRHEATER)->Insert(room.AirHeaters());
        (new EmHOLE)->Insert(room.Surfaces()->Ceiling()->Holes());
        (new EmZONE)->Insert(room.Zones());
        bytes = RoomBytes(room);
        ASSERT_STREQ(xCode, XNULL);
        MemPut(NATIVE, bytes);
    }
    void TearDown() override
    {
        SetModelFolder("");
        EXPECT_EQ(MemOpenFiles(), 0);
    }

    static std::unique_ptr<EmMODEL> SaveModel(int i)
    {
        std::unique_ptr<EmMODEL> model(SAMPLEMODELS::Make(i));
        ModelSave(model.get());
        return model;
    }
    static void AddEmitter(EmROOM &room, const char *name)
    {
        EmEMITTER *emitter = new EmEMITTER;
        emitter->SetModel(ModelAcquire(name));
        emitter->Insert(room.Emitters());
    }
};

/// The codes that a fault of a kind may end in while a hall is read.
bool Fits(const FaultRun &run)
{
    switch (run.kind) {
    case FAULT::ALLOC:
        return run.code == XALLOC;
    case FAULT::OPEN:
        return run.code == XFOPEN;
    case FAULT::READ:
        return run.code == XFREAD;
    case FAULT::SEEK: // the first one belongs to the opening
        return run.code == XFOPEN || run.code == XFREAD;
    default:
        return run.code == XNULL || run.code == XFWRITE; // closing after reading
    }
}

TEST_F(RecordFaults, AnyFaultWhileReadingLeavesARoomThatGoesWithoutALeak)
{
    std::unique_ptr<EmROOM> room;
    long blocks = 0;
    auto prepare = [&] {
        blocks = LiveBlocks();
        room = MakeEmptyRoom();
    };
    auto read = [&] {
        CdeFILE file;
        file.Open(NAME, "o");
        room->Read(file);
        file.Close();
    };
    auto check = [&](const FaultRun &run) {
        bool same = run.fired > 0 || RoomBytes(*room) == bytes;
        room.reset();
        long left = LiveBlocks() - blocks; // before the trace and what else of the test takes memory
        SCOPED_TRACE(testing::Message() << FaultName(run.kind) << " " << run.n << " " << run.onwards);
        EXPECT_EQ(left, 0) << "room, members and models";
        EXPECT_TRUE(same);
        EXPECT_TRUE(run.fired == 0 || Fits(run)) << run.code;
        EXPECT_EQ(MemOpenFiles(), 0);
        EXPECT_EQ(MemGet(NATIVE), bytes);
    };
    EXPECT_GT(SweepFaults(prepare, read, check), 40);
}

TEST_F(RecordFaults, AnyFaultWhileWritingLeavesTheRoomAndTheFormerFile)
{
    auto room = OpenHall(bytes);
    ASSERT_STREQ(xCode, XNULL);
    room->Data()->techGain = 5000;
    std::string changed = RoomBytes(*room);
    std::vector<std::string> files = MemList();
    long blocks = 0;
    auto prepare = [&] {
        MemPut(NATIVE, bytes);
        blocks = LiveBlocks();
    };
    auto write = [&] {
        CdeFILE file;
        file.OpenReplacing(NAME);
        room->Write(file);
        file.Close();
    };
    auto check = [&](const FaultRun &run) {
        long left = LiveBlocks() - blocks;
        SCOPED_TRACE(testing::Message() << FaultName(run.kind) << " " << run.n << " " << run.onwards);
        EXPECT_EQ(left, 0);
        EXPECT_EQ(MemOpenFiles(), 0);
        EXPECT_EQ(MemGet(NATIVE), run.code == XNULL ? changed : bytes);
        if (run.kind != FAULT::UNLINK) {
            EXPECT_EQ(MemList(), files);
        }
        EXPECT_EQ(RoomBytes(*room), changed);
    };
    EXPECT_GT(SweepFaults(prepare, write, check), 5);
}
} // namespace
