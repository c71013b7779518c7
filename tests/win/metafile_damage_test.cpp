// Metafiles from anywhere: cut short, damaged at random and starved of memory. Whatever the bytes are, reading
// ends in true or false, holds no more memory than a multiple of the file, and what was read plays.
#include "win/metafile.h"

#include "support/countdc.h"
#include "support/fault.h"
#include "support/metawriter.h"
#include "support/recorddc.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "lib/xon.h"

namespace
{
// A point of 4 bytes becomes a vertex of 24, a record of 8 bytes one of a handful of short lists; each list has
// been copied into a longer one on its way.
constexpr size_t MEMORY_TIMES = 64;
constexpr size_t MEMORY_MORE = 300000; // saved states and the first elements of the lists
constexpr size_t RECORD_MIN = 6;       // bytes of the shortest record
constexpr size_t POINTS_TIMES = 64;    // lines of a curve, whose points take 4 bytes and more

bool Parse(TMetafile &metafile, const std::string &file, bool narrow)
{
    const uint8_t *bytes = reinterpret_cast<const uint8_t *>(file.data());
    return narrow ? metafile.ParsePlain(bytes, file.size(), {}) : metafile.ParseEnhanced(bytes, file.size());
}

std::string Random(CHANCE &chance, bool narrow)
{
    return narrow ? RandomPlain(chance) : RandomEnhanced(chance);
}

std::string Played(const std::string &file, bool narrow)
{
    TMetafile metafile;
    if (!Parse(metafile, file, narrow))
        return "refused";
    TRecordDC dc;
    metafile.Play(dc, {0, 0, 100, 100});
    return dc.calls;
}

/// Reads and plays what may be anything. True where it could be read.
bool Survives(const std::string &file, bool narrow)
{
    TMetafile metafile;
    const size_t before = BytesAsked();
    const bool sound = Parse(metafile, file, narrow);
    EXPECT_LE(BytesAsked() - before, MEMORY_TIMES * file.size() + MEMORY_MORE);
    EXPECT_LE(static_cast<size_t>(metafile.RecordCount()), file.size() / RECORD_MIN);
    EXPECT_TRUE(sound || metafile.IsEmpty());
    EXPECT_TRUE(metafile.Frame().cx >= 0 && metafile.Frame().cy >= 0);
    TCountDC dc;
    metafile.Play(dc, {-50, 20, 650, 820});
    EXPECT_LE(dc.shapes, static_cast<size_t>(metafile.RecordCount()));
    EXPECT_LE(dc.points, POINTS_TIMES * file.size());
    EXPECT_EQ(dc.others, 0u);
    return sound;
}

void DamageMany(bool narrow, unsigned start, int times)
{
    CHANCE chance(start);
    std::string original;
    int sound = 0;
    for (int i = 0; i < times && !testing::Test::HasFailure(); ++i) {
        if (i % 50 == 0)
            original = Random(chance, narrow);
        std::string file = original;
        DamageMetafile(file, narrow, chance);
        sound += Survives(file, narrow) ? 1 : 0;
    }
    EXPECT_GT(sound, times / 50); // most damage is seen, and some does no harm: both roads are walked
    EXPECT_LT(sound, times * 9 / 10);
}
} // namespace

TEST(MetafileDamage, RandomFilesAreSoundAndDraw)
{
    CHANCE chance(71);
    int shapes = 0;
    for (int i = 0; i < 500; ++i) {
        for (bool narrow : {false, true}) {
            const std::string file = Random(chance, narrow);
            TMetafile metafile;
            ASSERT_TRUE(Parse(metafile, file, narrow)) << i;
            EXPECT_TRUE(Survives(file, narrow));
            shapes += metafile.RecordCount();
        }
    }
    EXPECT_GT(shapes, 5000);
}

TEST(MetafileDamage, EnhancedFilesCutShortAreRefused)
{
    CHANCE chance(72);
    for (int i = 0; i < 8; ++i) {
        const std::string file = RandomEnhanced(chance);
        for (size_t size = 0; size < file.size(); ++size)
            ASSERT_EQ(Played(file.substr(0, size), false), "refused") << size;
    }
}

TEST(MetafileDamage, PlainFilesCutShortAreRefusedOrTheSame)
{
    CHANCE chance(73);
    for (int i = 0; i < 8; ++i) {
        const std::string file = RandomPlain(chance);
        const std::string longer = file + "what follows the end";
        const std::string whole = Played(file, true);
        for (size_t size = 0; size < longer.size(); ++size)
            ASSERT_EQ(Played(longer.substr(0, size), true), size < file.size() ? "refused" : whole) << size;
    }
}

TEST(MetafileDamage, DamagedEnhancedFilesDoNoHarm)
{
    DamageMany(false, 74, 100000);
}

TEST(MetafileDamage, DamagedPlainFilesDoNoHarm)
{
    DamageMany(true, 75, 100000);
}

TEST(MetafileDamage, BytesWithoutAnySenseDoNoHarm)
{
    CHANCE chance(76);
    for (int i = 0; i < 2000; ++i) {
        std::string file(static_cast<size_t>(chance.Int(0, 300)), ' ');
        std::generate(file.begin(), file.end(), [&chance] { return static_cast<char>(chance.Int(0, 255)); });
        EXPECT_FALSE(Survives(file, chance.One(2)));
    }
}

TEST(MetafileDamage, AHeaderThatPromisesMuchCostsNothing)
{
    const std::string file = EnhancedFile({{39, {65534, 0, 0, 0}}}, 65535);
    const size_t before = BytesAsked();
    TMetafile metafile;
    EXPECT_TRUE(Parse(metafile, file, false));
    EXPECT_LT(BytesAsked() - before, 2000u);
}

TEST(MetafileDamage, ManyObjectsAndStatesAreReadInTime)
{
    std::vector<PlainRecord> records;
    for (int i = 0; i < 60000; ++i)
        records.push_back({0x02FA, {0, 0, 0, 0, 0}});
    for (int i = 0; i < 60000; ++i) {
        records.push_back({0x01F0, {static_cast<uint16_t>(59999 - i)}});
        records.push_back({0x02FC, {0, 0, 0, 0}});
    }
    for (int i = 0; i < 60000; ++i) {
        records.push_back({0x001E, {}});
        records.push_back({0x0127, {0xFFFF}});
    }
    EXPECT_TRUE(Survives(PlainFile(records, 60000), true));
}

TEST(MetafileDamage, StarvedReadingLeavesAnEmptyObject)
{
    CHANCE chance(77);
    for (bool narrow : {false, true}) {
        const std::string file = Random(chance, narrow);
        const std::string former = Random(chance, narrow);
        TMetafile metafile;
        const int hits = SweepFaults([&] { EXPECT_TRUE(Parse(metafile, former, narrow)); },
                                     [&] {
                                         __enter
                                             Parse(metafile, file, narrow);
                                         __point
                                         __treat
                                     },
                                     [&](const FaultRun &run) {
                                         if (run.fired == 0)
                                             return;
                                         EXPECT_EQ(run.code, XALLOC);
                                         EXPECT_TRUE(metafile.IsEmpty());
                                         EXPECT_EQ(metafile.Frame(), TSize());
                                     });
        EXPECT_GT(hits, 20);
    }
}

TEST(MetafileDamage, StarvedPlayingGivesTheContextBack)
{
    CHANCE chance(78);
    const std::string file = RandomEnhanced(chance);
    TMetafile metafile;
    ASSERT_TRUE(Parse(metafile, file, false));
    TCountDC dc;
    dc.SetMix(WIN_MIX_XOR);
    dc.SetClip({1, 2, 30, 40});
    const TPen pen = dc.State().pen;
    const int hits = SweepFaults(
        [&] {
            __enter
                metafile.Play(dc, {0, 0, 100, 100});
            __point
            __treat
        },
        [&](const FaultRun &run) {
            EXPECT_TRUE(run.fired == 0 || run.code == XALLOC);
            EXPECT_EQ(dc.State().mix, WIN_MIX_XOR);
            EXPECT_EQ(dc.State().clip, (TRect{1, 2, 30, 40}));
            EXPECT_EQ(dc.State().pen, pen);
        });
    EXPECT_GT(hits, 20);
}
