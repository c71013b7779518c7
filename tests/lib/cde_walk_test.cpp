#include "lib/cde.h"
#include "lib/xfail.h"

#include "support/cdeitems.h"
#include "support/chance.h"
#include "support/fault.h"
#include "support/memdisk.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <string>

#include "lib/xon.h"

namespace
{
using std::string;

string Taken()
{
    string code = xCode;
    xCode = XNULL;
    return code;
}

/// Puts the bytes into a file, walks it from `from`, and tells the failure.
string Walked(const string &bytes, int from = 0)
{
    MemPut("/m/f", bytes);
    CdeFILE file;
    file.Open("\\m\\f", "o");
    file.Seek(from);
    file.Walk();
    string code = Taken();
    EXPECT_EQ(file.Tell(), from) << "the walk comes back";
    file.Close();
    return code;
}

string Bytes(std::initializer_list<int> values)
{
    string bytes;
    for (int value : values)
        bytes.push_back(static_cast<char>(value));
    return bytes;
}

const CdeITEMS someItems = {ItInt(1), ItReal(2), ItStr("drei"), ItText(string(300, 'v'))};
} // namespace

TEST(Walk, PassesSoundFilesAndRefusesWhatIsNoItemInASection)
{
    string sound = EncodeItems(ItGroup(someItems + ItGroup(someItems) + someItems));
    string open = EncodeItems(CdeITEMS{ItSection()} + someItems);
    struct {
        const char *what;
        string bytes;
        const char *code;
    } rows[] = {
        {"empty file", "", XNULL},
        {"a record", sound, XNULL},
        {"a header and a record", EncodeItems({ItHeader("A", 1)}) + sound, XNULL},
        {"two records", sound + sound, XNULL},
        {"items without a section", EncodeItems(someItems), XNULL},
        {"a record without its end", open, XNULL},
        {"a byte that is no tag outside of sections", sound + "x", XNULL},
        {"the same, with anything behind", sound + "x" + open + "x", XNULL},
        {"a byte that is no tag in a section", open + "x", XCDE_INVOLVED},
        {"a stored end mark in a section", open + "\xA0", XCDE_INVOLVED},
        {"the byte behind the last tag", open + "\xA8", XCDE_INVOLVED},
        {"the last byte", open + "\xFF", XCDE_INVOLVED},
        {"a byte that is no tag in an inner section", open + open + EncodeItems({ItEnd()}) + "x",
         XCDE_INVOLVED},
        {"the same behind the outer section", open + open + EncodeItems({ItEnd(), ItEnd()}) + "x", XNULL},
        {"a header in a section", open + EncodeItems({ItHeader("A", 1)}) + "x", XNULL},
        {"a header, then a bad section", EncodeItems({ItHeader("A", 1)}) + open + "x", XCDE_INVOLVED},
        {"an end too many, then a bad section", sound + EncodeItems({ItEnd()}) + open + "x", XCDE_INVOLVED},
        {"an end too many, then a byte that is no tag", sound + EncodeItems({ItEnd()}) + "x", XNULL},
        {"a negative length in a section", open + Bytes({0xA7, 0xFF, 0xFF, 0xFF, 0xFF}), XCDE_INVOLVED},
        {"the least length in a section", open + Bytes({0xA7, 0, 0, 0, 0x80}), XCDE_INVOLVED},
        {"a negative length outside", Bytes({0xA7, 0xFF, 0xFF, 0xFF, 0xFF}), XCDE_INVOLVED},
        {"a length beyond the end", open + Bytes({0xA7, 0xFF, 0xFF, 0xFF, 0x7F}) + "xxx", XNULL},
        {"a length that ends with the file", open + Bytes({0xA7, 3, 0, 0, 0}) + "xxx", XNULL},
        {"a length that ends just before", open + Bytes({0xA7, 2, 0, 0, 0}) + "xxx", XCDE_INVOLVED},
        {"a string beyond the end", open + Bytes({0xA5, 255}) + "xxx", XNULL},
        {"bytes of a number that look like no tags", open + Bytes({0xA3, 1, 2, 3, 4}), XNULL},
    };
    MemDisk mem;
    for (const auto &row : rows)
        EXPECT_EQ(Walked(row.bytes), row.code) << row.what;
}

TEST(Walk, PassesEveryCutOfASoundFile)
{
    MemDisk mem;
    string bytes = EncodeItems(CdeITEMS{ItHeader("IE/GIM", 1)} + ItGroup(someItems + ItGroup(someItems)));
    for (size_t length = 0; length <= bytes.size(); ++length)
        EXPECT_EQ(Walked(bytes.substr(0, length)), XNULL) << length;
}

TEST(Walk, BeginsWhereTheFileStands)
{
    MemDisk mem;
    string bad = EncodeItems({ItSection()}) + "x";
    string bytes = bad + EncodeItems(ItGroup(someItems));
    EXPECT_EQ(Walked(bytes), XCDE_INVOLVED);
    EXPECT_EQ(Walked(bytes, static_cast<int>(bad.size())), XNULL);
    EXPECT_EQ(Walked(bytes, static_cast<int>(bytes.size())), XNULL);
    EXPECT_EQ(Walked(bytes, static_cast<int>(bytes.size()) + 100), XNULL);
}

TEST(Walk, SeesWhatHasJustBeenWritten)
{
    MemDisk mem;
    CdeFILE file;
    file.Open("\\m\\f", "c");
    file.PutSection(0);
    file.PutText("abc");
    file.Write("x", 1);
    file.Seek(0);
    file.Walk();
    EXPECT_EQ(Taken(), XCDE_INVOLVED);
    EXPECT_EQ(file.GetSection(), 0);
}

TEST(Walk, MeetsItemsAcrossEveryBorderOfTheBuffer)
{
    MemDisk mem;
    for (int lead = 65536 - 40; lead <= 65536 + 3; ++lead) {
        string text(static_cast<size_t>(lead), 't');
        CdeITEMS items =
            CdeITEMS{ItSection(), ItText(text)} + someItems + ItGroup(someItems) + CdeITEMS{ItStr("")};
        string bytes = EncodeItems(items);
        EXPECT_EQ(Walked(bytes + static_cast<char>(CDE_END)), XNULL) << lead;
        EXPECT_EQ(Walked(bytes + "x"), XCDE_INVOLVED) << lead;
    }
}

TEST(Walk, OfMillionsOfNestedSectionsNeedsNoStackAndThenSkipDoesNot)
{
    enum { DEEP = 5000000 };
    string begin = EncodeItems({ItSection()}), bytes;
    bytes.reserve(DEEP * 6 + 1);
    for (int i = 0; i < DEEP; ++i)
        bytes += begin;
    MemDisk mem;
    EXPECT_EQ(Walked(bytes), XNULL);
    EXPECT_EQ(Walked(bytes + "x"), XCDE_INVOLVED);
    bytes.append(DEEP, static_cast<char>(CDE_END));
    EXPECT_EQ(Walked(bytes + "x"), XNULL);
    CdeFILE file;
    file.Open("\\m\\f", "o");
    file.GetSection();
    file.EndSection(1);
    EXPECT_EQ(file.Tell(), 6 * DEEP);
}

namespace
{
/// The twin of the walk, over bytes in memory.
string PlainWalk(const string &bytes)
{
    int depth = 0;
    size_t pos = 0;
    while (pos < bytes.size()) {
        unsigned char tag = static_cast<unsigned char>(bytes[pos]);
        size_t left = bytes.size() - pos;
        size_t length = 1;
        if (tag == CDE_SECTION || tag == CDE_INT)
            length = 5;
        if (tag == CDE_REAL)
            length = 9;
        if (tag == CDE_STR || tag == CDE_HEADER)
            length =
                2 + (left < 2 ? 0 : static_cast<unsigned char>(bytes[pos + 1])) + (tag == CDE_HEADER ? 4 : 0);
        if (tag == CDE_TEXT) {
            int32_t stored = 0;
            if (left >= 5)
                memcpy(&stored, &bytes[pos + 1], 4);
            if (stored < 0)
                return XCDE_INVOLVED;
            length = 5 + static_cast<size_t>(stored);
        }
        if (tag < CDE_SECTION || tag > CDE_TEXT)
            return depth > 0 ? XCDE_INVOLVED : XNULL;
        if (tag == CDE_HEADER && depth > 0)
            return XNULL;
        if (tag == CDE_SECTION)
            ++depth;
        if (tag == CDE_END && depth > 0)
            --depth;
        pos += length;
    }
    return XNULL;
}

/// Leaves the file's sections as a reader does. That it ends is the point.
void SkipThrough(CdeFILE &file)
{
    __enter
        file.GetSection(); __test;
        file.EndSection(1); __test;
    __point
    __treat
}
} // namespace

TEST(Walk, OfDamagedAndRandomBytesAgreesWithAPlainOneAndMakesSkipSafe)
{
    MemDisk mem;
    CdeITEMS sound = ItGroup(someItems + ItGroup(someItems + ItGroup({})) + someItems);
    int refused = 0, passed = 0;
    for (unsigned start = 0; start < 30000 && !HasFailure(); ++start) {
        CHANCE chance(start);
        CdeITEMS items = sound;
        if (chance.One(2))
            DamageItems(items, chance);
        string bytes = EncodeItems(items);
        if (chance.One(2))
            DamageBytes(bytes, chance);
        if (chance.One(10))
            for (char &c : bytes)
                c = static_cast<char>(chance.One(4) ? chance.Int(0, 255) : chance.Int(0xA0, 0xA8));
        string code = Walked(bytes);
        EXPECT_EQ(code, PlainWalk(bytes)) << "start " << start;
        if (code == XNULL) {
            CdeFILE file;
            file.Open("\\m\\f", "o");
            SkipThrough(file);
            Taken(); // a short read or a wrong tag: the reader has decided
            ++passed;
        } else {
            ++refused;
        }
    }
    EXPECT_GT(refused, 1000);
    EXPECT_GT(passed, 1000);
}

TEST(FaultsInTheWalk, AreReadFailures)
{
    MemDisk mem;
    string bytes = EncodeItems(CdeITEMS{ItSection()} + ItReals(std::vector<double>(20000, 1.0)));
    MemPut("/m/f", bytes);
    CdeFILE file;
    auto prepare = [&] {
        file.Close();
        file.Open("\\m\\f", "o");
        file.GetSection();
    };
    auto check = [&](const FaultRun &run) { EXPECT_EQ(string(run.code), run.fired ? XFREAD : XNULL); };
    EXPECT_GE(SweepFaults(
                  prepare, [&] { file.Walk(); }, check),
              2 * 5);
    file.Close();
}
