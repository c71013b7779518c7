#include "lib/cde.h"
#include "lib/charstr.h"
#include "lib/xassert.h"

#include <bit>
#include <climits>
#include <cstdint>
#include <cstring>

#include "lib/xon.h"

namespace
{
// The format's numbers are the machine's own, which saves a loop an item.
static_assert(std::endian::native == std::endian::little);

/// Puts a tag and a number behind it into an item.
template <class T>
void StoreItem(char (&item)[1 + sizeof(T)], unsigned char tag, T number)
{
    item[0] = static_cast<char>(tag);
    memcpy(item + 1, &number, sizeof number);
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
        int32_t version = ver;
        int len = StrLength(type);
        ASSERT(len < CdeMAXSTR);
        int size = StoreShort(item, CDE_HEADER, type, len);
        memcpy(item + size, &version, sizeof version);
        Write(item, size + static_cast<int>(sizeof version)); __test;
    __point
    __treat
}

void CdeMEDIUM::PutSection(int num)
{
    __enter
        char item[5];
        StoreItem<int32_t>(item, CDE_SECTION, num);
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
        char item[5];
        StoreItem<int32_t>(item, CDE_INT, value);
        Write(item, sizeof item); __test;
    __point
    __treat
}

void CdeMEDIUM::PutReal(double value)
{
    __enter
        char item[9];
        StoreItem(item, CDE_REAL, value);
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
        char head[5];
        ASSERT(s != NULL);
        if (len < 0)
            len = StrLength(s);
        ASSERT(len >= 0);
        StoreItem<int32_t>(head, CDE_TEXT, len);
        Write(head, sizeof head); __test;
        Write(s, len); __test;
    __point
    __treat
}

static void RaiseInvolved()
{
    __enter
        __raise(XCDE_INVOLVED);
    __point
    __treat
}

// On the road of every item that is read, so without a frame of its own: after a failed Read nothing is left to
// do, and `found` is as it was.
inline void CdeMEDIUM::GetTag(unsigned char tag)
{
    unsigned char found = tag;
    Read(&found, 1);
    if (found != tag)
        RaiseInvolved();
}

/// Length byte and bytes of a short string; of no use after a failure. No frame, as above.
static inline void GetShort(CdeMEDIUM &medium, char (&s)[CdeMAXSTR])
{
    unsigned char len = 0;
    medium.Read(&len, 1);
    medium.Read(s, len);
    s[len] = EOS;
}

/// An integer without a tag; 0 after a failure. No frame, as above.
static inline int GetPlainInt(CdeMEDIUM &medium)
{
    int32_t value = 0;
    medium.Read(&value, sizeof value);
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
        GetTag(CDE_REAL); __test;
        Read(&value, sizeof value); __test;
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

// True with a failure, before or in it, so that loops over members end. No frame, as in GetTag.
bool CdeMEDIUM::GetOver()
{
    if (XPending())
        return true;
    unsigned char next = Tag(Peek());
    return next == CDE_EOF || next == CDE_END || next == CDE_HEADER || XPending();
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
