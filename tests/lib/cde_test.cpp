#include "lib/cde.h"
#include "lib/xfail.h"

#include "support/cdeitems.h"
#include "support/chance.h"
#include "support/child.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <cstring>
#include <limits>
#include <string>

#include "lib/xon.h"

namespace
{
using std::string;

/// A medium in memory, as plain as can be: what is written comes behind what is there, reading starts in front.
class TextMEDIUM : public CdeMEDIUM
{
public:
    string bytes;
    size_t pos = 0;

    explicit TextMEDIUM(const string &aBytes = "") : bytes(aBytes) {}
    signed char Peek() override
    {
        return pos < bytes.size() ? static_cast<signed char>(bytes[pos]) : static_cast<signed char>(CDE_EOF);
    }
    void Write(const void *blk, int size) override
    {
        ++writes;
        bytes.append(static_cast<const char *>(blk), static_cast<size_t>(size));
    }
    void Read(void *blk, int size) override
    {
        __enter
            size_t count = static_cast<size_t>(size);
            if (count > bytes.size() - pos)
                __raise(XFREAD);
            memcpy(blk, bytes.data() + pos, count);
            pos += count;
        __point
        __treat
    }
    string Rest() const { return bytes.substr(pos); }
    int writes = 0;
};

/// Takes the pending failure off and tells what it was.
string Taken()
{
    string code = xCode;
    xCode = XNULL;
    return code;
}

string Str(CdeMEDIUM &medium, int max = CdeMAXSTR)
{
    string s(static_cast<size_t>(max), '#');
    medium.GetStr(s.data(), max);
    return s.c_str();
}

string Text(CdeMEDIUM &medium, int max)
{
    string s(static_cast<size_t>(max), '#');
    medium.GetText(s.data(), max);
    return s.c_str();
}

string Bytes(std::initializer_list<int> values)
{
    string bytes;
    for (int value : values)
        bytes.push_back(static_cast<char>(value));
    return bytes;
}
} // namespace

TEST(TypedItems, AreStoredByteForByteAsTheFormatSays)
{
    struct {
        const char *what;
        void (*put)(CdeMEDIUM &);
        string bytes;
    } rows[] = {
        {"section", [](CdeMEDIUM &m) { m.PutSection(0); }, Bytes({0xA1, 0, 0, 0, 0})},
        {"numbered section", [](CdeMEDIUM &m) { m.PutSection(-2); }, Bytes({0xA1, 0xFE, 0xFF, 0xFF, 0xFF})},
        {"section end", [](CdeMEDIUM &m) { m.PutEnd(); }, Bytes({0xA2})},
        {"integer", [](CdeMEDIUM &m) { m.PutInt(0x01020304); }, Bytes({0xA3, 4, 3, 2, 1})},
        {"least integer", [](CdeMEDIUM &m) { m.PutInt(INT_MIN); }, Bytes({0xA3, 0, 0, 0, 0x80})},
        {"real", [](CdeMEDIUM &m) { m.PutReal(-2); }, Bytes({0xA4, 0, 0, 0, 0, 0, 0, 0, 0xC0})},
        {"tenth", [](CdeMEDIUM &m) { m.PutReal(0.1); },
         Bytes({0xA4, 0x9A, 0x99, 0x99, 0x99, 0x99, 0x99, 0xB9, 0x3F})},
        {"empty string", [](CdeMEDIUM &m) { m.PutStr(""); }, Bytes({0xA5, 0})},
        {"string", [](CdeMEDIUM &m) { m.PutStr("a\n\xE4"); }, Bytes({0xA5, 3, 'a', '\n', 0xE4})},
        {"start of a string", [](CdeMEDIUM &m) { m.PutStr("abc", 2); }, Bytes({0xA5, 2, 'a', 'b'})},
        {"nothing of a string", [](CdeMEDIUM &m) { m.PutStr("abc", 0); }, Bytes({0xA5, 0})},
        {"header", [](CdeMEDIUM &m) { m.PutHeader("IE/GIM", 1); },
         Bytes({0xA6, 6, 'I', 'E', '/', 'G', 'I', 'M', 1, 0, 0, 0})},
        {"header without name", [](CdeMEDIUM &m) { m.PutHeader("", INT_MAX); },
         Bytes({0xA6, 0, 0xFF, 0xFF, 0xFF, 0x7F})},
        {"empty text", [](CdeMEDIUM &m) { m.PutText(""); }, Bytes({0xA7, 0, 0, 0, 0})},
        {"text", [](CdeMEDIUM &m) { m.PutText("Halle"); }, Bytes({0xA7, 5, 0, 0, 0, 'H', 'a', 'l', 'l', 'e'})},
        {"start of a text", [](CdeMEDIUM &m) { m.PutText("Halle", 1); }, Bytes({0xA7, 1, 0, 0, 0, 'H'})},
    };
    for (const auto &row : rows) {
        TextMEDIUM medium;
        row.put(medium);
        EXPECT_EQ(medium.bytes, row.bytes) << row.what;
        EXPECT_LE(medium.writes, row.bytes[0] == static_cast<char>(CDE_TEXT) ? 2 : 1) << row.what;
    }
}

TEST(TypedItems, ComeBackBitForBit)
{
    const double reals[] = {0,   -0.0,     0.1,       1e300, -1e-300, std::numeric_limits<double>::denorm_min(),
                            NAN, INFINITY, -INFINITY, 5400};
    const int ints[] = {0, 1, -1, INT_MAX, INT_MIN, 0x01020304};
    TextMEDIUM medium;
    for (double real : reals)
        medium.PutReal(real);
    for (int i : ints)
        medium.PutInt(i);
    for (int i : ints)
        medium.PutSection(i);
    for (double real : reals) {
        double read = medium.GetReal();
        EXPECT_EQ(memcmp(&read, &real, sizeof real), 0) << real;
    }
    for (int i : ints)
        EXPECT_EQ(medium.GetInt(), i);
    for (int i : ints)
        EXPECT_EQ(medium.GetSection(), i);
    EXPECT_EQ(medium.Rest(), "");
}

TEST(TypedItems, TextOfEveryByteComesBack)
{
    string all;
    for (int c = 1; c < 256; ++c)
        all.push_back(static_cast<char>(c));
    TextMEDIUM medium;
    medium.PutStr(all.c_str());
    medium.PutText(all.c_str());
    EXPECT_EQ(Str(medium), all);
    EXPECT_EQ(Text(medium, 256), all);
}

TEST(ShortString, Of255CharactersIsWrittenAndRead)
{
    string s(255, 'x');
    TextMEDIUM medium;
    medium.PutStr(s.c_str());
    medium.PutHeader(s.c_str(), 7);
    EXPECT_EQ(medium.bytes.size(), 2 + 255 + 2 + 255 + 4u);
    EXPECT_EQ(Str(medium), s);
    EXPECT_EQ(medium.GetHeader(s.c_str(), 7), 7);
}

TEST(ShortString, Of256CharactersIsAFaultOfTheProgram)
{
    string s(256, 'x');
    TextMEDIUM medium;
    EXPECT_TRUE(AbortsOnAssertion("len < CdeMAXSTR", "lib/cde.cpp", [&] { medium.PutStr(s.c_str()); }));
    EXPECT_TRUE(AbortsOnAssertion("len < CdeMAXSTR", "lib/cde.cpp", [&] { medium.PutStr(s.c_str(), 256); }));
    EXPECT_TRUE(AbortsOnAssertion("len < CdeMAXSTR", "lib/cde.cpp", [&] { medium.PutHeader(s.c_str(), 1); }));
}

TEST(TypedItems, AWrongCallIsAFaultOfTheProgram)
{
    struct {
        const char *condition;
        void (*call)(CdeMEDIUM &);
    } rows[] = {
        {"type != NULL", [](CdeMEDIUM &m) { m.PutHeader(NULL, 1); }},
        {"ver >= 0", [](CdeMEDIUM &m) { m.PutHeader("A", -1); }},
        {"s != NULL", [](CdeMEDIUM &m) { m.PutStr(NULL); }},
        {"s != NULL", [](CdeMEDIUM &m) { m.PutText(NULL); }},
        {"type != NULL", [](CdeMEDIUM &m) { m.GetHeader(NULL, 1); }},
        {"count >= 0", [](CdeMEDIUM &m) { m.Skip(-1); }},
        {"count >= 0", [](CdeMEDIUM &m) { m.EndSection(-1); }},
    };
    for (const auto &row : rows) {
        TextMEDIUM medium;
        EXPECT_TRUE(AbortsOnAssertion(row.condition, "lib/cde.cpp", [&] { row.call(medium); }));
    }
}

TEST(LongText, HasNoBoundOfItsOwn)
{
    string s(1000000, 'y');
    TextMEDIUM medium;
    medium.PutText(s.c_str());
    EXPECT_EQ(medium.bytes, EncodeItems({ItText(s)}));
    EXPECT_EQ(Text(medium, 1000001), s);
    EXPECT_EQ(medium.Rest(), "");
}

TEST(GetStr, CutsToWhatFitsAndLeavesTheFileBehindTheString)
{
    TextMEDIUM medium(EncodeItems({ItStr(string(100, 'q')), ItInt(5)}));
    EXPECT_EQ(Str(medium, 32), string(31, 'q'));
    EXPECT_EQ(medium.GetInt(), 5);
}

TEST(GetText, ConsumesTheWholeTextWhateverFits)
{
    for (int length : {0, 1, 2, 255, 256, 257, 258, 512, 513, 100000}) {
        for (int max : {1, 2, 200, 1000}) {
            TextMEDIUM medium(EncodeItems({ItText(string(static_cast<size_t>(length), 'z')), ItInt(5)}));
            EXPECT_EQ(Text(medium, max), string(static_cast<size_t>(std::min(length, max - 1)), 'z'));
            EXPECT_EQ(medium.GetInt(), 5) << length << " into " << max;
        }
    }
}

TEST(GetText, RefusesANegativeLengthAndRunsShortOnAHugeOne)
{
    char s[8];
    TextMEDIUM negative(Bytes({0xA7, 0xFF, 0xFF, 0xFF, 0xFF, 'a'}));
    negative.GetText(s, sizeof s);
    EXPECT_EQ(Taken(), XCDE_INVOLVED);
    EXPECT_STREQ(s, "");
    TextMEDIUM least(Bytes({0xA7, 0, 0, 0, 0x80}));
    least.GetText(s, sizeof s);
    EXPECT_EQ(Taken(), XCDE_INVOLVED);
    TextMEDIUM huge(Bytes({0xA7, 0xFF, 0xFF, 0xFF, 0x7F}) + string(1000, 'a'));
    huge.GetText(s, sizeof s);
    EXPECT_EQ(Taken(), XFREAD);
    EXPECT_STREQ(s, "");
}

TEST(GetHeader, ChecksNameAndVersion)
{
    struct {
        const char *type;
        int ver;
        const char *code;
        int result;
    } rows[] = {
        {"TEMPHOLE/ZEC", 2, XNULL, 2},
        {"TEMPHOLE/ZEC", -1, XNULL, 2},
        {"TEMPHOLE/ZEC", -5, XNULL, 2},
        {"TEMPHOLE/ZEC", 1, XCDE_INVOLVED, -1},
        {"TEMPHOLE/ZEC", 0, XCDE_INVOLVED, -1},
        {"Temphole/zec", 2, XCDE_INVOLVED, -1},
        {"TEMPHOLE/ZE", -1, XCDE_INVOLVED, -1},
        {"TEMPHOLE/ZECX", -1, XCDE_INVOLVED, -1},
        {"", -1, XCDE_INVOLVED, -1},
    };
    for (const auto &row : rows) {
        TextMEDIUM medium(EncodeItems({ItHeader("TEMPHOLE/ZEC", 2)}));
        EXPECT_EQ(medium.GetHeader(row.type, row.ver), row.result) << row.type << " " << row.ver;
        EXPECT_EQ(Taken(), row.code) << row.type << " " << row.ver;
    }
}

TEST(GetHeader, AcceptsAStoredNegativeVersionForAnyVersion)
{
    TextMEDIUM medium(EncodeItems({ItHeader("A", -7)}));
    EXPECT_EQ(medium.GetHeader("A", -1), -7);
}

TEST(WrongTag, IsRefusedWithOnlyThatByteTaken)
{
    const CdeITEM items[] = {ItSection(), ItEnd(),          ItInt(1),   ItReal(1),
                             ItStr("a"),  ItHeader("a", 1), ItText("a")};
    struct {
        unsigned char tag;
        void (*get)(CdeMEDIUM &);
    } gets[] = {
        {CDE_SECTION, [](CdeMEDIUM &m) { m.GetSection(); }},     {CDE_INT, [](CdeMEDIUM &m) { m.GetInt(); }},
        {CDE_REAL, [](CdeMEDIUM &m) { m.GetReal(); }},           {CDE_STR, [](CdeMEDIUM &m) { Str(m); }},
        {CDE_HEADER, [](CdeMEDIUM &m) { m.GetHeader("a", 1); }}, {CDE_TEXT, [](CdeMEDIUM &m) { Text(m, 4); }},
    };
    for (const auto &get : gets) {
        for (const CdeITEM &item : items) {
            TextMEDIUM medium(EncodeItems({item}));
            get.get(medium);
            EXPECT_EQ(Taken(), get.tag == item.tag ? XNULL : XCDE_INVOLVED);
            EXPECT_EQ(medium.pos, get.tag == item.tag ? medium.bytes.size() : 1)
                << +get.tag << " on " << +item.tag;
        }
        for (int byte : {0x00, 0x9F, 0xA0, 0xA8, 0xFF}) {
            TextMEDIUM medium(Bytes({byte, 1, 2, 3}));
            get.get(medium);
            EXPECT_EQ(Taken(), XCDE_INVOLVED);
            EXPECT_EQ(medium.pos, 1u);
        }
    }
}

TEST(Get, AtTheEndOfTheFileOrInsideAnItemIsAReadFailure)
{
    const CdeITEM items[] = {ItSection(), ItInt(1), ItReal(1), ItStr("abc"), ItHeader("abc", 1), ItText("abc")};
    for (const CdeITEM &item : items) {
        string whole = EncodeItems({item});
        for (size_t length = 0; length < whole.size(); ++length) {
            TextMEDIUM medium(whole.substr(0, length));
            char s[300];
            switch (item.tag) {
            case CDE_SECTION:
                medium.GetSection();
                break;
            case CDE_INT:
                medium.GetInt();
                break;
            case CDE_REAL:
                medium.GetReal();
                break;
            case CDE_STR:
                medium.GetStr(s, sizeof s);
                break;
            case CDE_HEADER:
                medium.GetHeader("abc", 1);
                break;
            case CDE_TEXT:
                medium.GetText(s, sizeof s);
                break;
            }
            EXPECT_EQ(Taken(), XFREAD) << +item.tag << " cut at " << length;
        }
    }
}

TEST(GetOver, SeesTheEndOfASectionOfTheFileAndATypeHeader)
{
    struct {
        string bytes;
        bool over;
    } rows[] = {
        {"", true},
        {EncodeItems({ItEnd()}), true},
        {EncodeItems({ItHeader("A", 1)}), true},
        {EncodeItems({ItSection()}), false},
        {EncodeItems({ItInt(1)}), false},
        {EncodeItems({ItReal(1)}), false},
        {EncodeItems({ItStr("")}), false},
        {EncodeItems({ItText("")}), false},
        {Bytes({0xFF}), false},
    };
    for (const auto &row : rows) {
        TextMEDIUM medium(row.bytes);
        EXPECT_EQ(medium.GetOver(), row.over);
        EXPECT_EQ(medium.pos, 0u);
    }
}

TEST(PendingFailure, MakesEveryOperationReturnItsDefaultAndTouchNothing)
{
    char s[4] = "abc", t[4] = "def";
    string bytes = EncodeItems({ItInt(1), ItEnd()});
    TextMEDIUM medium(bytes);
    xCode = XGENERAL;
    medium.PutHeader(NULL, -1);
    medium.PutSection(1);
    medium.PutEnd();
    medium.PutInt(1);
    medium.PutReal(1);
    medium.PutStr(NULL);
    medium.PutText(NULL);
    EXPECT_EQ(medium.GetHeader(NULL, 1), -1);
    EXPECT_EQ(medium.GetSection(), 0);
    EXPECT_EQ(medium.GetInt(), 0);
    EXPECT_EQ(medium.GetReal(), 0);
    medium.GetStr(s, sizeof s);
    medium.GetText(t, sizeof t);
    EXPECT_TRUE(medium.GetOver());
    medium.Skip(-1);
    medium.EndSection(1);
    EXPECT_EQ(Taken(), XGENERAL);
    EXPECT_EQ(medium.bytes, bytes);
    EXPECT_EQ(medium.pos, 0u);
    EXPECT_STREQ(s, "abc");
    EXPECT_STREQ(t, "def");
}

TEST(EndSection, SkipsWhatALaterVersionWroteAndTakesOneEnd)
{
    CdeITEMS later = {ItInt(1), ItReal(2), ItStr("neu"), ItText(string(1000, 't'))};
    CdeITEMS record = CdeITEMS{ItSection(), ItInt(7)} + later + ItGroup(later + ItGroup(later)) + later +
                      CdeITEMS{ItEnd(), ItEnd(), ItInt(9)};
    TextMEDIUM medium(EncodeItems(record));
    medium.GetSection();
    EXPECT_EQ(medium.GetInt(), 7);
    medium.EndSection(1);
    EXPECT_EQ(medium.Rest(), EncodeItems({ItEnd(), ItInt(9)}));
}

TEST(EndSection, LeavesSeveralLevelsAtOnce)
{
    TextMEDIUM medium(EncodeItems({ItInt(1), ItEnd(), ItReal(1), ItEnd(), ItInt(3), ItEnd()}));
    medium.EndSection(0);
    EXPECT_EQ(medium.pos, 0u);
    medium.EndSection(2);
    EXPECT_EQ(medium.Rest(), EncodeItems({ItInt(3), ItEnd()}));
}

TEST(EndSection, OnAFileThatEndsAtASectionBorderReturnsQuietly)
{
    TextMEDIUM medium(EncodeItems({ItInt(1)}));
    medium.EndSection(3);
    EXPECT_EQ(medium.Rest(), "");
    EXPECT_STREQ(xCode, XNULL);
    EXPECT_EQ(medium.GetInt(), 0);
    EXPECT_EQ(Taken(), XFREAD);
}

TEST(EndSection, InsideAnItemThatTheFileCutsIsAReadFailure)
{
    TextMEDIUM medium(Bytes({0xA3, 1, 2}));
    medium.EndSection(1);
    EXPECT_EQ(Taken(), XFREAD);
}

TEST(EndSection, StopsBeforeATypeHeader)
{
    CdeITEMS header = {ItHeader("A", 1), ItInt(2)};
    TextMEDIUM medium(EncodeItems(CdeITEMS{ItInt(1), ItSection()} + header));
    medium.EndSection(2);
    EXPECT_EQ(medium.Rest(), EncodeItems(header));
}

TEST(Skip, CountsANestedSectionAsOneItemAndStaysInItsSection)
{
    CdeITEMS items = ItGroup(CdeITEMS{ItInt(1)} + ItGroup({ItInt(2)}) + CdeITEMS{ItInt(3)});
    struct {
        int count;
        CdeITEMS rest;
    } rows[] = {
        {0, items + CdeITEMS{ItInt(4), ItEnd(), ItInt(5)}},
        {1, {ItInt(4), ItEnd(), ItInt(5)}},
        {2, {ItEnd(), ItInt(5)}},
        {3, {ItEnd(), ItInt(5)}},
        {INT_MAX, {ItEnd(), ItInt(5)}},
    };
    for (const auto &row : rows) {
        TextMEDIUM medium(EncodeItems(rows[0].rest));
        medium.Skip(row.count);
        EXPECT_EQ(medium.Rest(), EncodeItems(row.rest)) << row.count;
    }
}

TEST(Skip, OfMillionsOfNestedSectionsNeedsNoStack)
{
    enum { DEEP = 10000000 };
    string begin = EncodeItems({ItSection()}), bytes;
    bytes.reserve(DEEP * 6 + 5);
    for (int i = 0; i < DEEP; ++i)
        bytes += begin;
    TextMEDIUM torn(bytes); // the file ends before any section does
    torn.Skip(1);
    EXPECT_EQ(torn.pos, torn.bytes.size());
    TextMEDIUM whole(bytes + string(DEEP, static_cast<char>(CDE_END)) + EncodeItems({ItInt(8)}));
    whole.Skip(1);
    EXPECT_EQ(whole.GetInt(), 8);
    whole.pos = begin.size();
    whole.EndSection(1);
    EXPECT_EQ(whole.GetInt(), 8);
}

namespace
{
/// The twin of Skip: over items that are already apart, recursive, one item or one whole section a call.
size_t PastOne(const CdeITEMS &items, size_t i)
{
    if (items[i].tag != CDE_SECTION)
        return i + 1;
    for (++i; i < items.size() && items[i].tag != CDE_END;)
        i = PastOne(items, i);
    return i + 1;
}

void AddRandomItems(CdeITEMS &items, CHANCE &chance, int depth)
{
    for (int i = chance.Int(0, 6); i > 0; --i) {
        switch (chance.Int(0, depth < 5 ? 5 : 3)) {
        case 0:
            items.push_back(ItInt(chance.Int(INT_MIN, INT_MAX)));
            break;
        case 1:
            items.push_back(ItReal(chance.Real(-1e6, 1e6)));
            break;
        case 2:
            items.push_back(ItStr(string(static_cast<size_t>(chance.Int(0, 255)), 's')));
            break;
        case 3:
            items.push_back(ItText(string(static_cast<size_t>(chance.Int(0, 600)), 't')));
            break;
        default:
            items.push_back(ItSection(chance.Int(-3, 3)));
            AddRandomItems(items, chance, depth + 1);
            items.push_back(ItEnd());
        }
    }
}

void Put(CdeMEDIUM &medium, const CdeITEM &item)
{
    switch (item.tag) {
    case CDE_SECTION:
        medium.PutSection(item.number);
        break;
    case CDE_END:
        medium.PutEnd();
        break;
    case CDE_INT:
        medium.PutInt(item.number);
        break;
    case CDE_REAL:
        medium.PutReal(item.real);
        break;
    case CDE_STR:
        medium.PutStr(item.text.c_str());
        break;
    case CDE_TEXT:
        medium.PutText(item.text.c_str());
        break;
    }
}

/// Reads one item and compares.
void Expect(CdeMEDIUM &medium, const CdeITEM &item)
{
    switch (item.tag) {
    case CDE_SECTION:
        EXPECT_EQ(medium.GetSection(), item.number);
        break;
    case CDE_INT:
        EXPECT_EQ(medium.GetInt(), item.number);
        break;
    case CDE_REAL:
        EXPECT_EQ(medium.GetReal(), item.real);
        break;
    case CDE_STR:
        EXPECT_EQ(Str(medium), item.text);
        break;
    case CDE_TEXT:
        EXPECT_EQ(Text(medium, 700), item.text);
        break;
    }
}

/// Reads, skips and leaves sections at random, each step beside the list of items; true if all agreed.
void WalkAtRandom(TextMEDIUM &medium, const CdeITEMS &items, CHANCE &chance)
{
    size_t at = 0;
    int depth = 0;
    while (at < items.size() && !testing::Test::HasFailure()) {
        bool end = items[at].tag == CDE_END;
        EXPECT_EQ(medium.GetOver(), end);
        int step = chance.Int(0, 4);
        if (end || (step == 0 && depth > 0)) {
            medium.EndSection(1);
            while (items[at].tag != CDE_END)
                at = PastOne(items, at);
            ++at;
            --depth;
        } else if (step == 1) {
            int count = chance.Int(0, 4);
            medium.Skip(count);
            for (; count > 0 && at < items.size() && items[at].tag != CDE_END; --count)
                at = PastOne(items, at);
        } else {
            Expect(medium, items[at]);
            depth += items[at].tag == CDE_SECTION;
            ++at;
        }
        CdeITEMS rest(items.begin() + static_cast<long>(at), items.end());
        EXPECT_EQ(medium.Rest(), EncodeItems(rest));
    }
    EXPECT_TRUE(medium.GetOver());
}
} // namespace

TEST(TypedItems, RandomProgramsAgreeWithAPlainListOfItems)
{
    for (unsigned start = 0; start < 300 && !HasFailure(); ++start) {
        CHANCE chance(start);
        CdeITEMS items;
        AddRandomItems(items, chance, 0);
        TextMEDIUM medium;
        for (const CdeITEM &item : items)
            Put(medium, item);
        ASSERT_EQ(medium.bytes, EncodeItems(items)) << "start " << start;
        for (int i = 0; i < 10; ++i) {
            medium.pos = 0;
            WalkAtRandom(medium, items, chance);
        }
    }
    EXPECT_STREQ(xCode, XNULL);
}
