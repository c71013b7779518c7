#include "support/cdeitems.h"

#include "lib/cde.h"

#include <algorithm>
#include <climits>
#include <cstring>
#include <limits>

CdeITEM ItSection(int number)
{
    return {CDE_SECTION, number, 0, ""};
}

CdeITEM ItEnd()
{
    return {CDE_END, 0, 0, ""};
}

CdeITEM ItInt(int number)
{
    return {CDE_INT, number, 0, ""};
}

CdeITEM ItReal(double real)
{
    return {CDE_REAL, 0, real, ""};
}

CdeITEM ItStr(const std::string &text)
{
    return {CDE_STR, 0, 0, text};
}

CdeITEM ItText(const std::string &text)
{
    return {CDE_TEXT, 0, 0, text};
}

CdeITEM ItHeader(const std::string &type, int version)
{
    return {CDE_HEADER, version, 0, type};
}

CdeITEM ItRaw(const std::string &bytes)
{
    return {0, 0, 0, bytes};
}

CdeITEMS operator+(CdeITEMS a, const CdeITEMS &b)
{
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

CdeITEMS ItGroup(const CdeITEMS &inner)
{
    return CdeITEMS{ItSection()} + inner + CdeITEMS{ItEnd()};
}

CdeITEMS ItReals(const std::vector<double> &values)
{
    CdeITEMS items;
    for (double value : values)
        items.push_back(ItReal(value));
    return items;
}

// The machines this runs on are little-endian, as the format is.
template <class T>
static void Append(std::string &bytes, T value)
{
    char raw[sizeof(T)];
    memcpy(raw, &value, sizeof(T));
    bytes.append(raw, sizeof(T));
}

static void AppendItem(std::string &bytes, const CdeITEM &item)
{
    if (item.tag != 0)
        bytes += static_cast<char>(item.tag);
    if (item.tag == CDE_STR || item.tag == CDE_HEADER)
        bytes += static_cast<char>(std::min<size_t>(item.text.size(), 255));
    if (item.tag == CDE_TEXT)
        Append(bytes, static_cast<int32_t>(item.text.size()));
    if (item.tag == CDE_STR || item.tag == CDE_HEADER)
        bytes += item.text.substr(0, 255);
    if (item.tag == CDE_TEXT || item.tag == 0)
        bytes += item.text;
    if (item.tag == CDE_SECTION || item.tag == CDE_INT || item.tag == CDE_HEADER)
        Append(bytes, item.number);
    if (item.tag == CDE_REAL)
        Append(bytes, item.real);
}

std::string EncodeItems(const CdeITEMS &items)
{
    std::string bytes;
    for (const CdeITEM &item : items)
        AppendItem(bytes, item);
    return bytes;
}

namespace
{
struct READER {
    const std::string &bytes;
    size_t at = 0;

    bool Has(size_t n) const { return bytes.size() - at >= n; }
    template <class T>
    bool Take(T &value)
    {
        if (!Has(sizeof(T)))
            return false;
        memcpy(&value, bytes.data() + at, sizeof(T));
        at += sizeof(T);
        return true;
    }
    bool TakeText(std::string &text, long long length)
    {
        if (length < 0 || !Has(static_cast<size_t>(length)))
            return false;
        text = bytes.substr(at, static_cast<size_t>(length));
        at += static_cast<size_t>(length);
        return true;
    }
};
} // namespace

static bool TakeItem(READER &in, CdeITEM &item)
{
    uint8_t shortLength = 0;
    int32_t longLength = 0;
    if (!in.Take(item.tag))
        return false;
    switch (item.tag) {
    case CDE_SECTION:
    case CDE_INT:
        return in.Take(item.number);
    case CDE_END:
        return true;
    case CDE_REAL:
        return in.Take(item.real);
    case CDE_STR:
        return in.Take(shortLength) && in.TakeText(item.text, shortLength);
    case CDE_HEADER:
        return in.Take(shortLength) && in.TakeText(item.text, shortLength) && in.Take(item.number);
    case CDE_TEXT:
        return in.Take(longLength) && in.TakeText(item.text, longLength);
    }
    return false;
}

CdeITEMS DecodeItems(const std::string &bytes)
{
    CdeITEMS items;
    READER in{bytes};
    while (in.at < bytes.size()) {
        size_t start = in.at;
        CdeITEM item;
        if (!TakeItem(in, item)) {
            items.push_back(ItRaw(bytes.substr(start)));
            break;
        }
        items.push_back(item);
    }
    return items;
}

static double EdgeReal(CHANCE &chance)
{
    using limits = std::numeric_limits<double>;
    static const double edges[] = {0,
                                   -0.0,
                                   1,
                                   -1,
                                   1e-300,
                                   limits::denorm_min(),
                                   1e300,
                                   -1e300,
                                   1e6,
                                   2147483648.5,
                                   -2147483649.5,
                                   limits::max(),
                                   -1e18,
                                   9.3e6,
                                   1e-5,
                                   1e15,
                                   limits::lowest(),
                                   limits::infinity(),
                                   -limits::infinity(),
                                   limits::quiet_NaN()};
    return chance.One(3) ? chance.Real(-1e3, 1e3) : chance.Of(edges);
}

static int EdgeInt(CHANCE &chance)
{
    static const int edges[] = {0, 1, 2, -1, 6, 7, 255, 256, 0x7FFF, 1000000, INT_MAX, INT_MIN, INT_MAX - 1};
    return chance.One(4) ? chance.Int(-10, 10) : chance.Of(edges);
}

static std::string EdgeText(CHANCE &chance)
{
    static const char *const edges[] = {"",      "   ",   "%s%n%d", "..\\..\\x", "\\etc\\passwd", "C:x",
                                        "a.gim", "\xE4%", ".",      "^2^_3_",    "\n\n\n",        "/dev/zero"};
    if (chance.One(4))
        return std::string(static_cast<size_t>(chance.Int(0, 300)), 'x');
    if (chance.One(6))
        return std::string("ab\0cd", 5);
    return chance.Of(edges);
}

static CdeITEM EdgeItem(CHANCE &chance)
{
    static const unsigned char tags[] = {CDE_INT,     CDE_REAL, CDE_STR,   CDE_TEXT,
                                         CDE_SECTION, CDE_END,  CDE_HEADER};
    return {chance.Of(tags), EdgeInt(chance), EdgeReal(chance), EdgeText(chance)};
}

// Bytes that no encoder writes: a byte that is no tag, a length that is negative or beyond the file.
static CdeITEM UnsoundItem(CHANCE &chance)
{
    static const char *const unsound[] = {"\xA7\xFF\xFF\xFF\xFF",
                                          "\xA7\xFF\xFF\xFF\x7F",
                                          "\xA5\xFFx",
                                          "\xA0",
                                          "\xA8",
                                          "\x01",
                                          "\xA6\xFFx",
                                          "\xA1\x01"};
    return ItRaw(chance.Of(unsound));
}

static CdeITEMS Nest(int depth)
{
    return CdeITEMS(static_cast<size_t>(depth), ItSection()) + CdeITEMS(static_cast<size_t>(depth), ItEnd());
}

static size_t SectionEnd(const CdeITEMS &items, size_t begin)
{
    int depth = 0;
    for (size_t i = begin; i < items.size(); ++i) {
        depth += items[i].tag == CDE_SECTION;
        depth -= items[i].tag == CDE_END;
        if (depth <= 0)
            return i + 1;
    }
    return items.size();
}

static void Damage(CdeITEMS &items, CHANCE &chance)
{
    auto at = items.begin() + chance.Int(0, static_cast<int>(items.size()) - 1);
    auto stop = items.begin() + static_cast<long>(SectionEnd(items, static_cast<size_t>(at - items.begin())));
    CdeITEMS more;
    switch (chance.Int(0, 12)) {
    case 0:
        items.erase(at);
        break;
    case 1:
        items.insert(at, CdeITEM(*at));
        break;
    case 2:
        std::swap(*at, items[static_cast<size_t>(chance.Int(0, static_cast<int>(items.size()) - 1))]);
        break;
    case 3:
        *at = EdgeItem(chance);
        break;
    case 4:
        items.insert(at, EdgeItem(chance));
        break;
    case 5:
        *at = UnsoundItem(chance);
        break;
    case 6:
        items.insert(at, UnsoundItem(chance));
        break;
    case 7:
        more = Nest(chance.Int(1, 200));
        items.insert(at, more.begin(), more.end());
        break;
    case 8: // a whole section lost, or one item
        items.erase(at, stop);
        break;
    case 9: // a whole section doubled
        more.assign(at, stop);
        items.insert(stop, more.begin(), more.end());
        break;
    case 10:
        items.erase(at, items.end());
        break;
    default: // most of all, the values
        at->number = EdgeInt(chance);
        at->real = EdgeReal(chance);
        at->text = EdgeText(chance);
    }
}

void DamageItems(CdeITEMS &items, CHANCE &chance)
{
    for (int n = chance.Int(1, 3); n > 0 && !items.empty(); --n)
        Damage(items, chance);
}

void DamageBytes(std::string &bytes, CHANCE &chance)
{
    for (int n = chance.Int(1, 4); n > 0 && !bytes.empty(); --n) {
        size_t at = static_cast<size_t>(chance.Int(0, static_cast<int>(bytes.size()) - 1));
        switch (chance.Int(0, 5)) {
        case 0:
        case 1:
            bytes[at] = static_cast<char>(bytes[at] ^ (1 << chance.Int(0, 7)));
            break;
        case 2:
            bytes[at] = static_cast<char>(chance.Int(0, 255));
            break;
        case 3:
            bytes.insert(at, 1, static_cast<char>(chance.Int(0, 255)));
            break;
        case 4:
            bytes.erase(at, 1);
            break;
        default:
            if (chance.One(4))
                bytes.resize(at);
            else
                bytes[at] = static_cast<char>(0xA0 + chance.Int(0, 8));
        }
    }
}
