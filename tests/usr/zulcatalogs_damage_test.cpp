// Files of the application's catalogues that are not what a catalogue has written: read as far as they go, or
// refused with a message and kept. Everything here runs without windows.
#include "usr/zulcatalogs.h"
#include "lib/platform.h"
#include "support/fault.h"
#include "support/memdisk.h"
#include "usr/edcutils.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cfloat>
#include <cmath>

#include "lib/xon.h"

namespace
{
enum { TEXT_INVOLVED = 1012 };

const GROUPS elements = {{"W\xE4nde", {{"Ziegel", 0.5}, {"Beton", 2}}}, {"leer", {}}, {"Tore", {{"Tor", 3}}}};
const HEATERS heaters = {{"WG 24", {24000, 26, 2700, 0.9, 0.7, 0.8}}, {"\xC4nderung", {1, 2, 3, 4, 5, 6}}};

const std::string older = "what was set aside before, in a file of its own";
const char elementPath[] = "/mem/.StavPrv.zec";
const char heaterPath[] = "/mem/.TvAgreg.zec";

std::string Aside(const std::string &path)
{
    return path.substr(0, path.rfind('.')) + ".err";
}

std::vector<std::string> *shown = NULL; // messages; weak

void Note(const char *text, bool)
{
    shown->push_back(text);
}

bool IsSound(const std::string &name)
{
    return !StrIsBlank(name.c_str()) && std::none_of(name.begin(), name.end(), [](char c) {
        return static_cast<unsigned char>(c) < ' ' || c == 0x7F;
    });
}

bool IsSound(double number)
{
    return std::isfinite(number) && number >= 0;
}

void CheckValues(const GROUPS &groups)
{
    for (const PARTS &group : groups) {
        EXPECT_TRUE(IsSound(group.name)) << group.name;
        for (const PART &part : group.parts)
            EXPECT_TRUE(IsSound(part.name) && IsSound(part.value)) << part.name << " " << part.value;
    }
}

void CheckValues(const HEATERS &values)
{
    for (const HEATER &heater : values) {
        EXPECT_TRUE(IsSound(heater.type)) << heater.type;
        for (double number : heater.numbers)
            EXPECT_TRUE(IsSound(number)) << number;
    }
}

class DamagedCatalogs : public testing::Test
{
protected:
    DamagedCatalogs()
    {
        TEdcCtlgList::SetCatalogDirectory("\\mem", "zec");
        shown = &messages;
        SetMessageSink(Note);
        SetFailureHook(EdcFailureHook);
    }
    ~DamagedCatalogs() override
    {
        EXPECT_EQ(MemOpenFiles(), 0);
        SetFailureHook(NULL);
        SetMessageSink(NULL);
    }

    /// Loads as the frame around a command does. @return the failure that it has shown
    template <class CATALOG>
    static XCODE InFrame(CATALOG &catalog)
    {
        XCODE failure = XNULL;
        __enter
            catalog.Load(); __test;
        __point
            __repair;
            failure = xRepaired;
            __report;
        __treat
        return failure;
    }
    /// Reads a file and checks what must hold whatever is in it. @return the failure, XNULL where it was read
    template <class CATALOG>
    XCODE Read(CATALOG &catalog, const std::string &path, const std::string &bytes)
    {
        MemPut(path, bytes);
        MemErase(Aside(path));
        messages.clear();
        size_t before = BytesAsked();
        XCODE failure = InFrame(catalog);
        size_t asked = BytesAsked() - before;
        EXPECT_LE(asked, 80000 + 200 * bytes.size()) << "a file's buffer, and some bytes for each of the file";
        bool read = failure == XNULL;
        EXPECT_EQ(catalog.IsLoaded(), read);
        EXPECT_EQ(MemHas(path), read);
        EXPECT_EQ(MemGet(read ? path : Aside(path)), bytes) << "nothing is lost";
        EXPECT_EQ(messages.size(), read ? 0u : 1u);
        if (read)
            CheckValues(catalog.Values());
        else
            CheckRefusal(catalog, path, failure);
        return failure;
    }
    template <class CATALOG>
    void CheckRefusal(CATALOG &catalog, const std::string &path, XCODE failure)
    {
        bool known = failure == XCDE_INVOLVED || failure == XFREAD;
        EXPECT_TRUE(known) << failure;
        EXPECT_TRUE(catalog.IsEmpty());
        ASSERT_EQ(messages.size(), 1u);
        if (failure == XFREAD)
            EXPECT_NE(messages[0].find(path), std::string::npos) << messages[0];
        else
            EXPECT_EQ(messages[0], GetResString(TEXT_INVOLVED) + 1);
        catalog.Save();
        EXPECT_FALSE(MemHas(path)) << "what was not read is not written";
    }
    /// What was read can be saved, and is then read as the same.
    template <class CATALOG>
    void SaveAndReadAgain(CATALOG &catalog, const std::string &path)
    {
        auto values = catalog.Values();
        catalog.Save();
        std::string saved = MemGet(path);
        EXPECT_EQ(InFrame(catalog), XNULL);
        EXPECT_TRUE(catalog.Values() == values);
        catalog.Save();
        EXPECT_EQ(MemGet(path), saved);
    }
    /// A file cut off at every place. @return the cuts that could be read
    template <class CATALOG, class VALUES>
    int Cuts(const std::string &path, const std::string &whole, const VALUES &values)
    {
        CATALOG catalog;
        int read = 0;
        for (size_t length = 0; length <= whole.size(); ++length) {
            SCOPED_TRACE(length);
            if (Read(catalog, path, whole.substr(0, length)) == XNULL) {
                ++read;
                EXPECT_LE(catalog.Values().size(), values.size());
            }
        }
        EXPECT_TRUE(catalog.Values() == values);
        return read;
    }
    /// Mutations of files, some of their items and some of their bytes.
    template <class CATALOG, class MAKE>
    void Mutate(int count, unsigned start, const std::string &path, MAKE make)
    {
        CHANCE chance(start);
        CATALOG catalog;
        int read = 0, refused = 0;
        for (int i = 0; i < count && !HasFailure(); ++i) {
            SCOPED_TRACE(i);
            CdeITEMS items = make(chance);
            if (chance.One(2))
                DamageItems(items, chance);
            std::string bytes = EncodeItems(items);
            if (chance.One(2))
                DamageBytes(bytes, chance);
            if (Read(catalog, path, bytes) == XNULL) {
                ++read;
                SaveAndReadAgain(catalog, path);
            } else {
                ++refused;
            }
        }
        EXPECT_GT(read, count / 10);
        EXPECT_GT(refused, count / 10);
    }

    MemDisk memory;
    std::vector<std::string> messages;
};

TEST_F(DamagedCatalogs, ElementsThatAreCutOffAnywhereAreReadAsFarAsTheyGoOrRefused)
{
    int read = Cuts<ElementCatalog>(elementPath, EncodeItems(ElementItems(elements)), elements);
    EXPECT_EQ(read, 10) << "behind the header, each group's name, each element and each end of a group";
}

TEST_F(DamagedCatalogs, UnitsThatAreCutOffAnywhereAreReadAsFarAsTheyGoOrRefused)
{
    int read = Cuts<HeaterCatalog>(heaterPath, EncodeItems(HeaterItems(heaters)), heaters);
    EXPECT_EQ(read, 3) << "behind the header and each unit";
}

TEST_F(DamagedCatalogs, MutationsOfElementsDoNoHarm)
{
    Mutate<ElementCatalog>(20000, 1, elementPath, [](CHANCE &chance) {
        return ElementItems(RandomGroups(chance, chance.Int(0, 4), 3));
    });
}

TEST_F(DamagedCatalogs, MutationsOfUnitsDoNoHarm)
{
    Mutate<HeaterCatalog>(20000, 2, heaterPath, [](CHANCE &chance) {
        HEATERS values;
        for (int i = chance.Int(0, 5); i > 0; --i) {
            HEATER &heater = values.emplace_back(HEATER{RandomName(chance, i), {}});
            for (double &number : heater.numbers)
                number = chance.Real(0, 100000);
        }
        return HeaterItems(values);
    });
}

TEST_F(DamagedCatalogs, ANumberThatNoDialogTakesIsRefusedAtEachPlace)
{
    const struct {
        double number;
        XCODE failure;
    } rows[] = {
        {-1, XCDE_INVOLVED},
        {-DBL_MIN, XCDE_INVOLVED},
        {-DBL_MAX, XCDE_INVOLVED},
        {std::nan(""), XCDE_INVOLVED},
        {-std::nan(""), XCDE_INVOLVED},
        {HUGE_VAL, XCDE_INVOLVED},
        {-HUGE_VAL, XCDE_INVOLVED},
        {0, XNULL},
        {DBL_MIN, XNULL},
        {DBL_MAX, XNULL},
    };
    ElementCatalog elementCatalog;
    HeaterCatalog heaterCatalog;
    for (const auto &row : rows) {
        SCOPED_TRACE(row.number);
        CdeITEMS items = ElementItems({{"Tore", {{"Tor", row.number}}}});
        EXPECT_STREQ(Read(elementCatalog, elementPath, EncodeItems(items)), row.failure);
        for (size_t i = 0; i < heaters[1].numbers.size(); ++i) {
            HEATERS values = heaters;
            values[1].numbers[i] = row.number;
            EXPECT_STREQ(Read(heaterCatalog, heaterPath, EncodeItems(HeaterItems(values))), row.failure) << i;
        }
    }
}

TEST_F(DamagedCatalogs, ANameThatNobodyCanReadIsRefused)
{
    ElementCatalog elementCatalog;
    HeaterCatalog heaterCatalog;
    for (const std::string name : {"", " ", "\t\n", "\xA0\xA0", "a\x01z", "\x7F", "Tor\x1B[2J"}) {
        SCOPED_TRACE(name);
        CdeITEMS named = ElementItems({{"Tore", {{name, 1}}}}), inGroup = ElementItems({{name, {{"Tor", 1}}}});
        EXPECT_STREQ(Read(elementCatalog, elementPath, EncodeItems(named)), XCDE_INVOLVED);
        EXPECT_STREQ(Read(elementCatalog, elementPath, EncodeItems(inGroup)), XCDE_INVOLVED);
        CdeITEMS unit = HeaterItems({{name, {1, 2, 3, 4, 5, 6}}});
        EXPECT_STREQ(Read(heaterCatalog, heaterPath, EncodeItems(unit)), XCDE_INVOLVED);
    }
}

TEST_F(DamagedCatalogs, AFileOfAnotherCatalogueIsRefused)
{
    ElementCatalog elementCatalog;
    HeaterCatalog heaterCatalog;
    const CdeITEMS headers = {ItHeader("SCAT/TEMPHOLE/ZEC", 1), ItHeader("DCAT/AIRHEATER/ZEC", 1),
                              ItHeader("DCAT/TEMPHOLE/ZEC", 2), ItHeader("SCAT/AIRHEATER/ZEC", 2),
                              ItHeader("DCAT/TEMPHOLE/ZEC", 0), ItHeader("SCAT/AIRHEATER/ZEC", -1)};
    for (const CdeITEM &header : headers) {
        EXPECT_STREQ(Read(elementCatalog, elementPath, EncodeItems({header})), XCDE_INVOLVED);
        EXPECT_STREQ(Read(heaterCatalog, heaterPath, EncodeItems({header})), XCDE_INVOLVED);
    }
    EXPECT_STREQ(Read(elementCatalog, elementPath, EncodeItems(HeaterItems(heaters))), XCDE_INVOLVED);
    EXPECT_STREQ(Read(heaterCatalog, heaterPath, EncodeItems(ElementItems(elements))), XCDE_INVOLVED);
}

template <class CATALOG>
void LoadNew()
{
    __enter
        CATALOG catalog;
        catalog.Load(); __test;
    __point
    __treat
}

TEST_F(DamagedCatalogs, AMemoryOrADiskThatFailsLosesNoItem)
{
    const std::string elementBytes = EncodeItems(ElementItems(elements));
    const std::string heaterBytes = EncodeItems(HeaterItems(heaters));
    bool leaked = false, kept = false;
    auto prepare = [&] {
        FaultPause pause;
        MemPut(elementPath, elementBytes);
        MemPut(heaterPath, heaterBytes);
        MemPut(Aside(elementPath), older);
        MemPut(Aside(heaterPath), older);
    };
    auto operation = [&] {
        long blocks = LiveBlocks();
        LoadNew<ElementCatalog>();
        LoadNew<HeaterCatalog>();
        FaultPause pause;
        kept = (MemGet(elementPath) == elementBytes || MemGet(Aside(elementPath)) == elementBytes) &&
               (MemGet(heaterPath) == heaterBytes || MemGet(Aside(heaterPath)) == heaterBytes);
        prepare();
        leaked = LiveBlocks() != blocks;
    };
    auto check = [&](const FaultRun &) {
        EXPECT_FALSE(leaked);
        EXPECT_TRUE(kept);
        EXPECT_EQ(MemOpenFiles(), 0);
    };
    SetFailureHook(NULL);
    prepare();
    operation(); // what the disk in memory keeps for its descriptors is no leak
    EXPECT_GT(SweepFaults(prepare, operation, check), 20);
}
} // namespace
