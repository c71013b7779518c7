// What the reader of a hall passes over, what it takes as it comes, and what it refuses.
#include "recorditems.h"

#include "lib/charstr.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace
{
TEST(Reading, TakesNoNoticeOfReservedNumbers)
{
    for (double reserved : {0.0, -1.0, 1e300, std::numeric_limits<double>::quiet_NaN(),
                            std::numeric_limits<double>::infinity()}) {
        auto room = Read(ItGroup(Box() + ItGroup(Emitter("")) + DataGroup(5, reserved) + Surfaces() +
                                 ItGroup(Unit(reserved)) + Article() + ItGroup(Zone())) +
                         Conclusion());
        ASSERT_STREQ(TakeFailure(), XNULL);
        EXPECT_EQ(RoomBytes(*room), EncodeItems(WholeHall())) << "33.4 and 0.0 stand there again";
    }
}

TEST(Reading, ReplacesWhatARoomHeld)
{
    SAMPLEMODELS models;
    auto room = MakeFullRoom(models);
    CdeFILE file;
    file.Open(NULL, "c");
    std::string old = EncodeItems(ItGroup(Box() + NoMembers()));
    file.Write(old.data(), static_cast<int>(old.size()));
    file.Seek(0);
    room->Read(file);
    ASSERT_STREQ(TakeFailure(), XNULL);
    EXPECT_EQ(room->Emitters()->Count() + room->AirHeaters()->Count() + room->Zones()->Count(), 0);
    EXPECT_EQ(room->Surfaces()->Count(), 6);
    EXPECT_EQ(SurfaceOf(*room, 0)->Holes()->Count(), 0);
    EXPECT_EQ(room->Data()->airChange, 0.0);
    EXPECT_EQ(room->Data()->constr[EM_FLOOR].k, 0.0);
}

// What a later version may add

const CdeITEMS unknown = {ItInt(-1), ItReal(NAN), ItStr("neu"), ItText("neu"), ItSection(3), ItSection(4),
                          ItStr(""), ItEnd(),     ItReal(1),    ItEnd(),       ItInt(9)};

/// Whether the section that begins there holds members and nothing else.
bool IsListOf(const CdeITEMS &items, size_t begin)
{
    int depth = 0;
    for (size_t i = begin; i < items.size(); ++i) {
        depth += items[i].tag == CDE_SECTION;
        depth -= items[i].tag == CDE_END;
        if (depth == 0)
            return begin != 0; // the room itself holds groups of many kinds
        if (depth == 1 && items[i].tag != CDE_SECTION && items[i].tag != CDE_END)
            return false;
    }
    return false;
}

TEST(Reading, SkipsWhatALaterVersionAddsToAnyRecord)
{
    const CdeITEMS table = WholeHall();
    const std::string bytes = EncodeItems(table);
    std::vector<size_t> open;
    int records = 0, lists = 0;
    for (size_t i = 0; i < table.size(); ++i) {
        if (table[i].tag == CDE_SECTION)
            open.push_back(i);
        if (table[i].tag != CDE_END)
            continue;
        SCOPED_TRACE(i);
        bool list = IsListOf(table, open.back());
        open.pop_back();
        CdeITEMS longer = table;
        longer.insert(longer.begin() + static_cast<long>(i), unknown.begin(), unknown.end());
        auto room = Read(longer);
        EXPECT_STREQ(TakeFailure(), list ? XCDE_INVOLVED : XNULL);
        if (!list) {
            EXPECT_EQ(RoomBytes(*room), bytes);
        }
        ++(list ? lists : records);
    }
    EXPECT_EQ(records, 15); // room, box, emitter, data, 6 surfaces, opening, unit, article, zone, conclusion
    EXPECT_EQ(lists, 10);   // emitters, surfaces, openings of 6, units, zones
}

TEST(Reading, TakesNoNoticeOfSectionNumbersAndOfWhatFollowsTheConclusion)
{
    CdeITEMS items = WholeHall();
    for (CdeITEM &item : items)
        if (item.tag == CDE_SECTION)
            item.number = 4711;
    auto room = Read(items + unknown);
    ASSERT_STREQ(TakeFailure(), XNULL);
    EXPECT_EQ(RoomBytes(*room), EncodeItems(WholeHall()));
}

// What no hall can have

TEST(Refused, IsANumberThatIsNotFiniteWhereverItStands)
{
    SAMPLEMODELS models;
    const CdeITEMS table = WholeHall(Emitter(models.Model(0)->Info()->name));
    int numbers = 0, ignored = 0;
    for (size_t i = 0; i < table.size(); ++i) {
        if (table[i].tag != CDE_REAL)
            continue;
        ++numbers;
        for (double bad : {std::nan(""), HUGE_VAL, -HUGE_VAL}) {
            CdeITEMS damaged = table;
            damaged[i].real = bad;
            XCODE code = Failure(damaged);
            if (code == XNULL)
                ++ignored;
            else
                EXPECT_STREQ(code, XCDE_INVOLVED) << i;
        }
    }
    EXPECT_EQ(numbers, 6 + 6 + 9 + 12 + 66 + 8 + 10 + 5);
    EXPECT_EQ(ignored, 2 * 3) << "the two reserved numbers";
}

TEST(Refused, IsAnItemOfAnotherKindWhereverItStands)
{
    const CdeITEMS table = WholeHall();
    for (size_t i = 0; i < table.size(); ++i) {
        if (table[i].tag == CDE_SECTION || table[i].tag == CDE_END)
            continue;
        for (const CdeITEM &other : {ItInt(1), ItReal(1), ItStr("1"), ItText("1")}) {
            if (other.tag == table[i].tag)
                continue;
            CdeITEMS damaged = table;
            damaged[i] = other;
            EXPECT_STREQ(Failure(damaged), XCDE_INVOLVED) << i;
        }
    }
}

TEST(Refused, IsAnyOtherNumberOfSurfacesThanSix)
{
    for (int count : {0, 1, 2, 5, 7, 12}) {
        CdeITEMS surfaces;
        for (int i = 0; i < count; ++i)
            surfaces = surfaces + Surface(static_cast<size_t>(i % 6));
        EXPECT_STREQ(Failure(ItGroup(Box() + NoMembers() + DataGroup() + ItGroup(surfaces))), XCDE_INVOLVED)
            << count;
        EXPECT_STREQ(Failure(CdeITEMS{ItSection()} + Box() + NoMembers() + DataGroup() + CdeITEMS{ItSection()} +
                             surfaces),
                     XCDE_INVOLVED)
            << count;
    }
}

TEST(Refused, AreSurfaceAxesThatSpanNoPlane)
{
    const struct {
        const char *why;
        double u[3], v[3];
        XCODE code;
    } cases[] = {
        {"one is nothing", {0, 0, 0}, {0, 1, 0}, XCDE_INVOLVED},
        {"both are nothing", {0, 0, 0}, {0, 0, 0}, XCDE_INVOLVED},
        {"the same", {1, 0, 0}, {1, 0, 0}, XCDE_INVOLVED},
        {"opposite", {0, 0, 2}, {0, 0, -1}, XCDE_INVOLVED},
        {"so short that nothing is left", {1e-200, 0, 0}, {0, 1e-200, 0}, XCDE_INVOLVED},
        {"so long that all bounds are left", {1e200, 0, 0}, {0, 1e200, 0}, XCDE_INVOLVED},
        {"oblique and long, as nobody draws it", {3, 0, 1}, {0, 1, 1}, XNULL},
        {"short", {1e-30, 0, 0}, {0, 1e-30, 0}, XNULL},
    };
    for (const auto &row : cases) {
        CdeITEMS axes = ItReals({row.u[0], row.u[1], row.u[2], row.v[0], row.v[1], row.v[2]});
        CdeITEMS surfaces = ItGroup(ItReals({6, 4, 0, 0, 0}) + axes) + NoMembers();
        for (size_t i = 1; i < 6; ++i)
            surfaces = surfaces + Surface(i, Hole());
        auto room = Read(ItGroup(Box() + NoMembers() + DataGroup() + ItGroup(surfaces)));
        XCODE code = TakeFailure();
        EXPECT_STREQ(code, row.code) << row.why;
        if (code == XNULL)
            room->Surfaces()->Prepare();
    }
}

TEST(Refused, IsAFileThatIsNoHall)
{
    const struct {
        const char *what;
        std::string bytes;
        XCODE code;
    } cases[] = {
        {"nothing", "", XFREAD},
        {"a text", "Hallo Halle", XCDE_INVOLVED},
        {"a model", EncodeItems({ItHeader("IE/GIM", 1), ItSection(), ItStr("x"), ItEnd()}), XCDE_INVOLVED},
        {"an empty section", EncodeItems(ItGroup({})), XCDE_INVOLVED},
        {"no emitters", EncodeItems(ItGroup(Box())), XCDE_INVOLVED},
        {"the end of a section", EncodeItems({ItEnd()}), XCDE_INVOLVED},
        {"a box of five numbers", EncodeItems(ItGroup(ItGroup(ItReals({0, 0, 0, 1, 1})) + NoMembers())),
         XCDE_INVOLVED},
        {"a section that ends with the file", EncodeItems({ItSection()}), XFREAD},
        {"bytes that are no item behind all that is read",
         EncodeItems(ItGroup(Box() + NoMembers() + CdeITEMS{ItRaw("\x01")})), XCDE_INVOLVED},
        {"a negative length behind all that is read",
         EncodeItems(ItGroup(Box() + NoMembers() + DataGroup() + Surfaces() + NoMembers() + Article() +
                             NoMembers() + CdeITEMS{ItRaw("\xA7\xFF\xFF\xFF\xFF")})),
         XCDE_INVOLVED},
    };
    for (const auto &row : cases) {
        RoomOfBytes(row.bytes);
        EXPECT_STREQ(TakeFailure(), row.code) << row.what;
    }
}

// The walk comes first: a byte at the very end that is no item costs the room nothing of what it held.
TEST(Refused, AreUnsoundBytesBeforeTheRoomIsTouched)
{
    SAMPLEMODELS models;
    auto room = MakeFullRoom(models);
    std::string before = RoomBytes(*room);
    for (const char *unsound : {"\x01", "\xA8", "\xA7\xFF\xFF\xFF\xFF"}) {
        CdeITEMS items = WholeHall();
        items.insert(items.end() - 1, ItRaw(unsound));
        std::string bytes = EncodeItems(items);
        CdeFILE file;
        file.Open(NULL, "c");
        file.Write(bytes.data(), static_cast<int>(bytes.size()));
        file.Seek(0);
        room->Read(file);
        EXPECT_STREQ(TakeFailure(), XCDE_INVOLVED);
        EXPECT_EQ(RoomBytes(*room), before);
    }
}

TEST(Reading, PassesOverSectionsNestedAsDeepAsTheFileIsLong)
{
    enum { DEPTH = 100000 };
    CdeITEMS nest = CdeITEMS(DEPTH, ItSection()) + CdeITEMS(DEPTH, ItEnd());
    auto room = Read(
        ItGroup(Box() + NoMembers() + DataGroup() + Surfaces() + NoMembers() + Article() + NoMembers() + nest));
    EXPECT_STREQ(TakeFailure(), XNULL);
    EXPECT_STREQ(Failure(CdeITEMS(DEPTH, ItSection())), XCDE_INVOLVED);
}

TEST(Reading, FailsAsAWholeWhereAModelIsGone)
{
    SAMPLEMODELS models;
    SetModelFolder("\\nowhere\\at all");
    CdeITEMS emitters = Emitter(models.Model(0)->Info()->name) + Emitter("Fehlt") + Emitter("");
    auto room = Read(WholeHall(emitters));
    EXPECT_STREQ(TakeFailure(), XFOPEN);
    EXPECT_NE(StrFind(xFOpenName, "Fehlt.gim", 0), static_cast<const char *>(NULL)) << xFOpenName;
    EXPECT_EQ(room->Emitters()->Count(), 1) << "the emitter that was read by half is not in the set";
    SetModelFolder("");
}

TEST(Reading, LooksForNoModelOutsideItsFolder)
{
    for (const char *name : {"..\\x", "\\x", "C:x", "a/b", "../x", "..", ".", "/etc/passwd"})
        EXPECT_STREQ(Failure(WholeHall(Emitter(name))), XFOPEN) << name;
}

TEST(Reading, TakesABlankNameForNoModel)
{
    auto room = Read(WholeHall(Emitter("   ")));
    ASSERT_STREQ(TakeFailure(), XNULL);
    EXPECT_EQ(room->Emitters()->First()->model, static_cast<EmMODEL *>(NULL));
    EXPECT_EQ(RoomBytes(*room), EncodeItems(WholeHall(Emitter(""))));
}

TEST(Reading, TakesIntegersAsTheyCome)
{
    for (int value : {0, -1, 77, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()}) {
        CdeITEMS items = WholeHall();
        for (CdeITEM &item : items)
            if (item.tag == CDE_INT)
                item.number = value;
        auto room = Read(items);
        ASSERT_STREQ(TakeFailure(), XNULL);
        EXPECT_EQ(room->Data()->fuelType, value);
        EXPECT_EQ(room->HeatValue(), 0.0);
        AskAll(*room);
        EXPECT_EQ(RoomBytes(*room), EncodeItems(items));
    }
}

// Legal, if odd: they read, answer and write.
TEST(Reading, TakesHallsWithoutSizeAndBeyondAllSize)
{
    for (double size : {0.0, -5.0, 1e-300, 1e4, 1e150, 1e308}) {
        SCOPED_TRACE(size);
        EmROOM room(size, 1, size, "", "", 0);
        std::string bytes = RoomBytes(room);
        auto read = RoomOfBytes(bytes);
        ASSERT_STREQ(TakeFailure(), XNULL);
        AskAll(*read);
        EXPECT_EQ(RoomBytes(*read), bytes);
    }
}
} // namespace
