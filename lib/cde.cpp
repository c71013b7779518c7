#include "lib/cde.h"
#include "lib/charstr.h"
#include "lib/xassert.h"

#include <climits>
#include <cstdint>
#include <cstring>

#include "lib/xon.h"

namespace
{
void StoreInt(char *bytes, int value)
{
    uint32_t bits = static_cast<uint32_t>(value);
    for (int i = 0; i < 4; ++i)
        bytes[i] = static_cast<char>(bits >> 8 * i);
}

int LoadInt(const char *bytes)
{
    uint32_t bits = 0;
    for (int i = 0; i < 4; ++i)
        bits |= static_cast<uint32_t>(static_cast<unsigned char>(bytes[i])) << 8 * i;
    return static_cast<int>(bits);
}

void StoreReal(char *bytes, double value)
{
    uint64_t bits;
    memcpy(&bits, &value, sizeof bits);
    for (int i = 0; i < 8; ++i)
        bytes[i] = static_cast<char>(bits >> 8 * i);
}

double LoadReal(const char *bytes)
{
    uint64_t bits = 0;
    for (int i = 0; i < 8; ++i)
        bits |= static_cast<uint64_t>(static_cast<unsigned char>(bytes[i])) << 8 * i;
    double value;
    memcpy(&value, &bits, sizeof value);
    return value;
}

/// Puts tag, length byte and bytes of a short string into an item and tells its length.
int StoreShort(char *item, unsigned char tag, const char *s, int len)
{
    item[0] = static_cast<char>(tag);
    item[1] = static_cast<char>(len);
    memcpy(item + 2, s, static_cast<size_t>(len));
    return 2 + len;
}

unsigned char Tag(signed char next)
{
    return static_cast<unsigned char>(next);
}
} // namespace

void CdeMEDIUM::PutHeader(const char *type, int ver)
{
    __enter
        char item[2 + CdeMAXSTR + 4];
        ASSERT(type != NULL);
        ASSERT(ver >= 0);
        int len = StrLength(type);
        ASSERT(len < CdeMAXSTR);
        int size = StoreShort(item, CDE_HEADER, type, len);
        StoreInt(item + size, ver);
        Write(item, size + 4); __test;
    __point
    __treat
}

void CdeMEDIUM::PutSection(int num)
{
    __enter
        char item[5] = {static_cast<char>(CDE_SECTION)};
        StoreInt(item + 1, num);
        Write(item, sizeof item); __test;
    __point
    __treat
}

void CdeMEDIUM::PutEnd()
{
    __enter
        const char item = static_cast<char>(CDE_END);
        Write(&item, 1); __test;
    __point
    __treat
}

void CdeMEDIUM::PutInt(int value)
{
    __enter
        char item[5] = {static_cast<char>(CDE_INT)};
        StoreInt(item + 1, value);
        Write(item, sizeof item); __test;
    __point
    __treat
}

void CdeMEDIUM::PutReal(double value)
{
    __enter
        char item[9] = {static_cast<char>(CDE_REAL)};
        StoreReal(item + 1, value);
        Write(item, sizeof item); __test;
    __point
    __treat
}

void CdeMEDIUM::PutStr(const char *s, int len)
{
    __enter
        char item[2 + CdeMAXSTR];
        ASSERT(s != NULL);
        if (len < 0)
            len = StrLength(s);
        ASSERT(len < CdeMAXSTR);
        Write(item, StoreShort(item, CDE_STR, s, len)); __test;
    __point
    __treat
}

void CdeMEDIUM::PutText(const char *s, int len)
{
    __enter
        char head[5] = {static_cast<char>(CDE_TEXT)};
        ASSERT(s != NULL);
        if (len < 0)
            len = StrLength(s);
        ASSERT(len >= 0);
        StoreInt(head + 1, len);
        Write(head, sizeof head); __test;
        Write(s, len); __test;
    __point
    __treat
}

void CdeMEDIUM::GetTag(unsigned char tag)
{
    __enter
        char found;
        Read(&found, 1); __test;
        if (static_cast<unsigned char>(found) != tag)
            __raise(XCDE_INVOLVED);
    __point
    __treat
}

/// Reads length byte and bytes of a short string.
static void GetShort(CdeMEDIUM &medium, char (&s)[CdeMAXSTR])
{
    __enter
        unsigned char len;
        medium.Read(&len, 1); __test;
        medium.Read(s, len); __test;
        s[len] = EOS;
    __point
    __treat
}

static int GetPlainInt(CdeMEDIUM &medium)
{
    int value = 0;
    __enter
        char bytes[4];
        medium.Read(bytes, sizeof bytes); __test;
        value = LoadInt(bytes);
    __point
    __treat
    return value;
}

int CdeMEDIUM::GetHeader(const char *type, int ver)
{
    int stored = -1;
    __enter
        char found[CdeMAXSTR];
        ASSERT(type != NULL);
        GetTag(CDE_HEADER); __test;
        GetShort(*this, found); __test;
        if (!StrMatch(found, type, 0))
            __raise(XCDE_INVOLVED);
        int version = GetPlainInt(*this); __test;
        if (ver >= 0 && ver != version)
            __raise(XCDE_INVOLVED);
        stored = version;
    __point
    __treat
    return stored;
}

int CdeMEDIUM::GetSection()
{
    int num = 0;
    __enter
        GetTag(CDE_SECTION); __test;
        num = GetPlainInt(*this); __test;
    __point
    __treat
    return num;
}

int CdeMEDIUM::GetInt()
{
    int value = 0;
    __enter
        GetTag(CDE_INT); __test;
        value = GetPlainInt(*this); __test;
    __point
    __treat
    return value;
}

double CdeMEDIUM::GetReal()
{
    double value = 0;
    __enter
        char bytes[8];
        GetTag(CDE_REAL); __test;
        Read(bytes, sizeof bytes); __test;
        value = LoadReal(bytes);
    __point
    __treat
    return value;
}

void CdeMEDIUM::GetStr(char *s, int max)
{
    __enter
        char stored[CdeMAXSTR];
        GetTag(CDE_STR); __test;
        GetShort(*this, stored); __test;
        StrCopy(s, stored, max);
    __point
    __treat
}

void CdeMEDIUM::GetText(char *s, int max)
{
    __enter
        char dropped[256];
        ASSERT(s != NULL);
        ASSERT(max > 0);
        *s = EOS;
        GetTag(CDE_TEXT); __test;
        int left = GetPlainInt(*this); __test;
        if (left < 0) // untrusted: nobody could have written it
            __raise(XCDE_INVOLVED);
        int kept = left < max - 1 ? left : max - 1;
        Read(s, kept); __test;
        s[kept] = EOS;
        left -= kept;
        while (left > 0) {
            int piece = left < static_cast<int>(sizeof dropped) ? left : static_cast<int>(sizeof dropped);
            Read(dropped, piece); __test;
            left -= piece;
        }
    __point
        *s = EOS;
    __treat
}

bool CdeMEDIUM::GetOver()
{
    bool over = true; // with a failure pending, so that loops over members end
    __enter
        unsigned char next = Tag(Peek()); __test;
        over = next == CDE_EOF || next == CDE_END || next == CDE_HEADER;
    __point
    __treat
    return over;
}

/// Reads the item whose tag has been seen; what is no item stays.
static void PassItem(CdeMEDIUM &medium, unsigned char tag)
{
    __enter
        char start[2]; // of a text, which is of no interest
        switch (tag) {
        case CDE_SECTION:
            medium.GetSection(); __test;
            break;
        case CDE_END:
            medium.Read(start, 1); __test;
            break;
        case CDE_INT:
            medium.GetInt(); __test;
            break;
        case CDE_REAL:
            medium.GetReal(); __test;
            break;
        case CDE_STR:
            medium.GetStr(start, sizeof start); __test;
            break;
        case CDE_TEXT:
            medium.GetText(start, sizeof start); __test;
            break;
        }
    __point
    __treat
}

// One loop and a count of open sections, however deep they nest: the bytes decide on the depth, not the stack.
// A byte that is no tag keeps the loop for ever, which is why a file is walked before it is read:
// CdeFILE::Walk.
void CdeMEDIUM::Skip(int count)
{
    __enter
        int depth = 0;
        ASSERT(count >= 0);
        while (count > 0) {
            unsigned char next = Tag(Peek()); __test;
            if (next == CDE_EOF || next == CDE_HEADER || (next == CDE_END && depth == 0))
                break;
            PassItem(*this, next); __test;
            if (next == CDE_SECTION)
                ++depth;
            else if (next == CDE_END)
                --depth;
            if (depth == 0 && next >= CDE_SECTION && next <= CDE_TEXT)
                --count;
        }
    __point
    __treat
}

void CdeMEDIUM::EndSection(int count)
{
    __enter
        ASSERT(count >= 0);
        while (count > 0) {
            Skip(INT_MAX); __test;
            ASSERT(GetOver()); __test;
            unsigned char next = Tag(Peek()); __test;
            if (next == CDE_END) {
                GetTag(CDE_END); __test;
                --count;
            } else {
                count = 0; // the file ends before the section does
            }
        }
    __point
    __treat
}
