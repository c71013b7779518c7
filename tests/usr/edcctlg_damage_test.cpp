// Catalogue files that are not what a catalogue has written, and a disk and a memory that fail. Everything here
// runs without windows, so a question is answered with its cancelling button.
#include "support/fault.h"
#include "support/memdisk.h"
#include "support/testcatalog.h"
#include "lib/platform.h"
#include "usr/edcutils.h"

#include <gtest/gtest.h>

#include "lib/xon.h"

namespace
{
const UNITS units = {{"Alpha", 10, 1}, {"\xC4nderung", 20, 2}, {"  Gamma  3", 30, -1e300}};
const GROUPS groups = {{"W\xE4nde", {{"Ziegel", 0.5}, {"Beton", 2}}}, {"leer", {}}, {"Tore", {{"Tor", 3}}}};

const std::string older = "what a backup held before, or a file that was set aside";
const char simplePath[] = "/mem/.TvTest.zec";
const char dividedPath[] = "/mem/.StTest.zec";

std::string Companion(const std::string &path, const char *extension)
{
    return path.substr(0, path.rfind('.') + 1) + extension;
}

std::string BytesOf(const UNITS &values)
{
    return EncodeItems(UnitItems(values));
}

std::string BytesOf(const GROUPS &values)
{
    return EncodeItems(GroupItems(values));
}

XCODE TakeFailure()
{
    XCODE code = xCode;
    xCode = XNULL;
    return code;
}

class Damaged : public testing::Test
{
protected:
    Damaged() { TEdcCtlgList::SetCatalogDirectory("\\mem", "zec"); }
    ~Damaged() override { EXPECT_EQ(MemOpenFiles(), 0); }

    /// Reads a file and checks what must hold whatever is in it. @return whether it was read
    template <class CATALOG>
    bool Read(CATALOG &catalog, const char *path, const std::string &bytes)
    {
        MemPut(path, bytes);
        MemErase(Companion(path, "err"));
        size_t before = BytesAsked();
        catalog.Load();
        size_t asked = BytesAsked() - before;
        XCODE code = TakeFailure();
        bool read = code == XNULL;
        bool known = read || code == XCDE_INVOLVED || code == XFREAD;
        EXPECT_TRUE(known) << code;
        EXPECT_LE(asked, 80000 + 60 * bytes.size()) << "a file's buffer, and some bytes for each of the file";
        EXPECT_EQ(catalog.IsLoaded(), read);
        EXPECT_EQ(MemHas(path), read);
        EXPECT_EQ(MemGet(read ? path : Companion(path, "err")), bytes) << "nothing is lost";
        if (!read) {
            EXPECT_TRUE(catalog.IsEmpty());
        }
        return read;
    }
    /// What was read can be saved, and is then read as the same.
    template <class CATALOG>
    void SaveAndReadAgain(CATALOG &catalog, const char *path)
    {
        catalog.Save();
        std::string saved = MemGet(path);
        catalog.Load();
        EXPECT_EQ(TakeFailure(), XNULL);
        catalog.Save();
        EXPECT_EQ(MemGet(path), saved);
    }

    MemDisk memory;
};

TEST_F(Damaged, ASimpleOneThatIsCutOffAnywhereIsReadAsFarAsItGoesOrRefused)
{
    const std::string whole = BytesOf(units);
    TestSimpleCatalog catalog;
    int read = 0;
    for (size_t length = 0; length <= whole.size(); ++length) {
        SCOPED_TRACE(length);
        if (!Read(catalog, simplePath, whole.substr(0, length)))
            continue;
        ++read;
        UNITS values = catalog.Values();
        EXPECT_EQ(values, UNITS(units.begin(), units.begin() + static_cast<long>(values.size())));
    }
    EXPECT_EQ(read, 7) << "behind the header, and before and behind each end of an item";
}

TEST_F(Damaged, ADividedOneThatIsCutOffAnywhereIsReadAsFarAsItGoesOrRefused)
{
    const std::string whole = BytesOf(groups);
    TestDividedCatalog catalog;
    int read = 0;
    for (size_t length = 0; length <= whole.size(); ++length) {
        SCOPED_TRACE(length);
        if (!Read(catalog, dividedPath, whole.substr(0, length)))
            continue;
        ++read;
        GROUPS values = catalog.Values();
        ASSERT_LE(values.size(), groups.size());
        for (size_t i = 0; i < values.size(); ++i) {
            EXPECT_EQ(values[i].name, groups[i].name);
            EXPECT_LE(values[i].parts.size(), groups[i].parts.size());
        }
    }
    EXPECT_EQ(read, 10) << "behind the header, each name, each item and each end of a group";
}

TEST_F(Damaged, AWrongHeaderIsRefused)
{
    const struct {
        const char *name;
        std::string bytes;
        XCODE code;
    } rows[] = {
        {"empty file", "", XFREAD},
        {"text", "Katalog der Bauelemente\n", XCDE_INVOLVED},
        {"zeros", std::string(1000, '\0'), XCDE_INVOLVED},
        {"no header", EncodeItems({ItStr("SCAT/TEST/ZEC"), ItInt(1)}), XCDE_INVOLVED},
        {"other tag", EncodeItems({ItHeader("SCAT/TEST/ZED", 1)}), XCDE_INVOLVED},
        {"tag in another case", EncodeItems({ItHeader("scat/TEST/ZEC", 1)}), XCDE_INVOLVED},
        {"tag of the other form", EncodeItems({ItHeader("DCAT/TEST/ZEC", 1)}), XCDE_INVOLVED},
        {"shorter tag", EncodeItems({ItHeader("SCAT/TEST/ZE", 1)}), XCDE_INVOLVED},
        {"long tag", EncodeItems({ItHeader(std::string(255, 'S'), 1)}), XCDE_INVOLVED},
        {"older version", EncodeItems({ItHeader("SCAT/TEST/ZEC", 0)}), XCDE_INVOLVED},
        {"newer version", EncodeItems({ItHeader("SCAT/TEST/ZEC", 2)}), XCDE_INVOLVED},
        {"negative version", EncodeItems({ItHeader("SCAT/TEST/ZEC", -1)}), XCDE_INVOLVED},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        TestSimpleCatalog catalog;
        MemPut(simplePath, row.bytes);
        catalog.Load();
        EXPECT_STREQ(TakeFailure(), row.code);
        EXPECT_FALSE(catalog.IsLoaded());
        EXPECT_EQ(MemList(), std::vector<std::string>{Companion(simplePath, "err")});
        EXPECT_EQ(MemGet(Companion(simplePath, "err")), row.bytes);
        MemErase(Companion(simplePath, "err"));
    }
}

/// Mutations of a form's files, some of its items and some of its bytes.
template <class CATALOG, class MAKE>
void Mutate(int count, unsigned start, MAKE make, const std::function<void(CATALOG &, std::string)> &look)
{
    CHANCE chance(start);
    CATALOG catalog;
    for (int i = 0; i < count; ++i) {
        SCOPED_TRACE(i);
        CdeITEMS items = make(chance);
        if (chance.One(2))
            DamageItems(items, chance);
        std::string bytes = EncodeItems(items);
        if (chance.One(2))
            DamageBytes(bytes, chance);
        look(catalog, bytes);
        if (testing::Test::HasFailure())
            return;
    }
}

TEST_F(Damaged, MutationsOfASimpleOneDoNoHarm)
{
    int read = 0, refused = 0;
    auto look = [&](TestSimpleCatalog &catalog, const std::string &bytes) {
        if (Read(catalog, simplePath, bytes)) {
            ++read;
            SaveAndReadAgain(catalog, simplePath);
        } else {
            ++refused;
        }
    };
    auto make = [](CHANCE &chance) { return UnitItems(RandomUnits(chance, chance.Int(0, 5))); };
    Mutate<TestSimpleCatalog>(50000, 1, make, look);
    EXPECT_GT(read, 5000);
    EXPECT_GT(refused, 5000);
}

TEST_F(Damaged, MutationsOfADividedOneDoNoHarm)
{
    int read = 0, refused = 0;
    auto look = [&](TestDividedCatalog &catalog, const std::string &bytes) {
        if (Read(catalog, dividedPath, bytes)) {
            ++read;
            SaveAndReadAgain(catalog, dividedPath);
        } else {
            ++refused;
        }
    };
    auto make = [](CHANCE &chance) { return GroupItems(RandomGroups(chance, chance.Int(0, 4), 3)); };
    Mutate<TestDividedCatalog>(50000, 2, make, look);
    EXPECT_GT(read, 5000);
    EXPECT_GT(refused, 5000);
}

std::vector<std::string> *shown = NULL; // messages; weak

void Note(const char *text, bool)
{
    FaultPause pause;
    shown->push_back(text);
}

/// Faults over an operation on a catalogue, with the messages that came of them.
class CatalogFaults : public Damaged
{
protected:
    CatalogFaults()
    {
        shown = &messages;
        SetMessageSink(Note);
        SetFailureHook(EdcFailureHook);
        TestSimpleCatalog catalog; // what the disk in memory keeps for its descriptors is no leak
        catalog.Put(units);
        catalog.Save();
    }
    ~CatalogFaults() override
    {
        SetFailureHook(NULL);
        SetMessageSink(NULL);
    }

    /// Saves new content over a former one, with a backup of an older one.
    template <class CATALOG, class VALUES>
    int SweepSave(const char *path, const VALUES &former, const VALUES &fresh)
    {
        const std::string formerBytes = BytesOf(former), freshBytes = BytesOf(fresh);
        const std::string backup = Companion(path, "bak");
        CATALOG catalog;
        catalog.Put(fresh);
        long blocks = 0;
        auto prepare = [&] {
            MemPut(path, formerBytes);
            MemPut(backup, older);
            blocks = LiveBlocks();
        };
        auto check = [&](const FaultRun &run) {
            EXPECT_STREQ(run.code, XNULL) << "saving asks and reports by itself";
            EXPECT_EQ(MemOpenFiles(), 0);
            bool saved = MemGet(path) == freshBytes;
            EXPECT_EQ(MemHas(path), saved || MemGet(path) == formerBytes) << "nothing half done";
            EXPECT_TRUE(MemGet(path) == formerBytes || MemGet(backup) == formerBytes) << "nothing is lost";
            if (run.fired == 0) {
                EXPECT_TRUE(saved);
                EXPECT_TRUE(messages.empty());
            }
            EXPECT_TRUE(catalog.IsLoaded());
            EXPECT_TRUE(catalog.Values() == fresh);
            if (!saved)
                catalog.Save();
            EXPECT_TRUE(MemGet(path) == freshBytes) << "the next one succeeds";
            EXPECT_TRUE(MemGet(backup) == formerBytes);
            messages.clear();
            messages.shrink_to_fit();
            EXPECT_EQ(LiveBlocks(), blocks) << "so many files as before";
        };
        return SweepFaults(
            prepare, [&] { catalog.Save(); }, check);
    }

    /// Makes a catalogue, reads `bytes` into it and lets it go.
    template <class CATALOG>
    int SweepLoad(const char *path, const std::string &bytes, XCODE expected)
    {
        const std::string aside = Companion(path, "err");
        bool loaded = false, empty = false, leaked = false, inPlace = false, kept = false;
        auto prepare = [&] {
            FaultPause pause;
            MemPut(path, bytes);
            MemPut(aside, older);
        };
        auto read = [&] {
            __enter
                CATALOG catalog;
                catalog.Load();
                loaded = catalog.IsLoaded();
                empty = catalog.IsEmpty(); __test;
            __point
            __treat
        };
        auto operation = [&] {
            loaded = empty = false;
            long blocks = LiveBlocks();
            read();
            FaultPause pause;
            inPlace = MemGet(path) == bytes;
            kept = inPlace || MemGet(aside) == bytes;
            prepare(); // so many files as before
            leaked = LiveBlocks() != blocks;
            if (xCode == expected)
                xCode = XNULL; // as it should be without a fault
        };
        auto check = [&](const FaultRun &run) {
            EXPECT_EQ(MemOpenFiles(), 0);
            EXPECT_FALSE(leaked);
            bool whole = expected == XNULL && run.code == XNULL;
            EXPECT_EQ(loaded, whole);
            EXPECT_TRUE(loaded || empty || run.code == XALLOC);
            EXPECT_TRUE(kept) << "nothing is lost";
            if (whole) {
                EXPECT_TRUE(inPlace);
            }
        };
        return SweepFaults(prepare, operation, check);
    }

    std::vector<std::string> messages;
};

TEST_F(CatalogFaults, SavingLosesNothing)
{
    EXPECT_GT((SweepSave<TestSimpleCatalog, UNITS>(simplePath, units, {{"neu", 1, 2}, {"zwei", 3, 4}})), 10);
    EXPECT_GT((SweepSave<TestDividedCatalog, GROUPS>(dividedPath, groups, {{"neu", {{"zwei", 3}}}})), 10);
}

TEST_F(CatalogFaults, LoadingLosesNothing)
{
    EXPECT_GT(SweepLoad<TestSimpleCatalog>(simplePath, BytesOf(units), XNULL), 10);
    EXPECT_GT(SweepLoad<TestDividedCatalog>(dividedPath, BytesOf(groups), XNULL), 10);
}

TEST_F(CatalogFaults, MovingADamagedFileAsideLosesNothing)
{
    std::string simple = BytesOf(units), divided = BytesOf(groups);
    simple[simple.size() - 1] = 'x';
    divided[divided.size() - 1] = 'x';
    EXPECT_GT(SweepLoad<TestSimpleCatalog>(simplePath, simple, XCDE_INVOLVED), 10);
    EXPECT_GT(SweepLoad<TestDividedCatalog>(dividedPath, divided, XCDE_INVOLVED), 10);
}
} // namespace
