// The calls of the file system, and the two ways across the border of the system's character set. Names are
// some hundred bytes and texts a few kilobytes at most, so the conversions walk byte by byte.
#include "lib/disk.h"
#include "lib/xassert.h"

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{
int PosixOpen(const char *path, int flags, int mode)
{
    return open(path, flags | O_CLOEXEC, mode);
}

/// A renamed file may be lost in a power cut until its folder is on the disk. A failure of that step changes
/// nothing any more: the file has its name.
void SyncFolderOf(const char *path)
{
    char folder[NATIVE_MAX];
    const char *slash = strrchr(path, '/');
    size_t length = slash ? static_cast<size_t>(slash - path) : 0;
    if (length >= sizeof folder)
        return;
    memcpy(folder, path, length);
    folder[length] = '\0';
    int fd = PosixOpen(length > 0 ? folder : slash ? "/" : ".", O_RDONLY | O_DIRECTORY, 0);
    if (fd < 0)
        return;
    fsync(fd);
    close(fd);
}

int PosixRename(const char *from, const char *to)
{
    int result = rename(from, to);
    if (result == 0)
        SyncFolderOf(to);
    return result;
}

int PosixLikeness(int fd, int model)
{
    struct stat its;
    if (fstat(model, &its) != 0)
        return -1;
    if (!S_ISREG(its.st_mode)) {
        errno = EINVAL;
        return -1;
    }
    bool owned = fchown(fd, its.st_uid, its.st_gid) == 0;
    mode_t kept = owned ? 0777 : 0707; // to a foreign group no more than to all others
    mode_t shared = owned ? 0 : (its.st_mode & 07) << 3;
    return fchmod(fd, (its.st_mode & kept) | shared);
}

/// Code points of the bytes 0x80 to 0x9F. Five are not assigned; they keep their own value, so that every byte
/// comes back.
const uint16_t upperCodes[32] = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, //
    0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F, //
    0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014, //
    0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,
};

unsigned CodeOf(char c)
{
    unsigned char byte = static_cast<unsigned char>(c);
    return byte >= 0x80 && byte < 0xA0 ? upperCodes[byte - 0x80] : byte;
}

/// The byte of a code point; false for one outside the set.
bool ByteOf(unsigned code, char *c)
{
    bool plain = code < 0x80 || (code >= 0xA0 && code < 0x100);
    unsigned byte = plain ? code : 0x100;
    for (unsigned i = 0; i < 32 && byte == 0x100; ++i)
        if (upperCodes[i] == code)
            byte = 0x80 + i;
    *c = static_cast<char>(byte);
    return byte < 0x100;
}

/// Writes a code point of the set as UTF-8 and tells its length; no code of the set is above 0xFFFF.
int Encode(unsigned code, char *utf8)
{
    if (code < 0x80) {
        utf8[0] = static_cast<char>(code);
        return 1;
    }
    if (code < 0x800) {
        utf8[0] = static_cast<char>(0xC0 | code >> 6);
        utf8[1] = static_cast<char>(0x80 | (code & 0x3F));
        return 2;
    }
    utf8[0] = static_cast<char>(0xE0 | code >> 12);
    utf8[1] = static_cast<char>(0x80 | (code >> 6 & 0x3F));
    utf8[2] = static_cast<char>(0x80 | (code & 0x3F));
    return 3;
}

enum : unsigned { NO_CODE = 0xFFFFFFFF };

/// Takes one code point. A byte that starts none, an overlong form or half a surrogate pair costs that one byte
/// and gives NO_CODE.
unsigned Decode(const char **utf8)
{
    const unsigned char *s = reinterpret_cast<const unsigned char *>(*utf8);
    ++*utf8;
    if (s[0] < 0x80)
        return s[0];
    int more = s[0] < 0xC2 ? 0 : s[0] < 0xE0 ? 1 : s[0] < 0xF0 ? 2 : s[0] < 0xF5 ? 3 : 0;
    if (more == 0)
        return NO_CODE;
    unsigned code = s[0] & (0x3Fu >> more);
    for (int i = 1; i <= more; ++i) {
        if ((s[i] & 0xC0) != 0x80)
            return NO_CODE;
        code = code << 6 | (s[i] & 0x3F);
    }
    const unsigned least[4] = {0, 0x80, 0x800, 0x10000};
    if (code < least[more] || (code >= 0xD800 && code < 0xE000) || code > 0x10FFFF)
        return NO_CODE;
    *utf8 += more;
    return code;
}
} // namespace

const CdeDISK posixDisk = {PosixOpen, read,        write,  lseek,    fsync,
                           close,     PosixRename, unlink, readlink, PosixLikeness};
const CdeDISK *disk = &posixDisk;

bool TextToUtf8(char *dest, const char *src, int max)
{
    ASSERT(dest != NULL && src != NULL);
    ASSERT(max > 0);
    int used = 0;
    for (; *src; ++src) {
        char utf8[3];
        int length = Encode(CodeOf(*src), utf8);
        if (length > max - 1 - used)
            break;
        memcpy(dest + used, utf8, static_cast<size_t>(length));
        used += length;
    }
    dest[used] = '\0';
    return *src == '\0';
}

bool TextFromUtf8(char *dest, const char *src, int max)
{
    ASSERT(dest != NULL && src != NULL);
    ASSERT(max > 0);
    bool held = true;
    int used = 0;
    while (*src && used < max - 1) {
        if (!ByteOf(Decode(&src), &dest[used])) {
            dest[used] = '?';
            held = false;
        }
        ++used;
    }
    dest[used] = '\0';
    return held && *src == '\0';
}

bool NameFromNative(char *name, const char *path, int max)
{
    bool held = TextFromUtf8(name, path, max);
    for (char *c = name; *c; ++c) {
        if (*c == '\\') {
            *c = '?';
            held = false;
        } else if (*c == '/') {
            *c = '\\';
        }
    }
    return held;
}

bool NameToNative(char *path, const char *name, int max)
{
    bool fits = TextToUtf8(path, name, max);
    for (char *c = path; *c; ++c)
        if (*c == '\\')
            *c = '/';
    return fits;
}
