// The calls of the file system, and the two ways across the border of the system's character set. Names are
// some hundred bytes and texts a few kilobytes at most, so the conversions walk byte by byte.
#include "lib/disk.h"
#include "lib/charstr.h"
#include "lib/xassert.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <ctime>
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

int PosixAccess(const char *path)
{
    return access(path, F_OK);
}

/// What the umask takes away comes back; a file system that keeps no permissions is none the worse for it.
int PosixMkdir(const char *path, const char *model)
{
    struct stat its;
    if (stat(model, &its) != 0)
        return -1;
    mode_t mode = (its.st_mode & 07777) | 0700;
    if (mkdir(path, mode) != 0)
        return -1;
    chmod(path, mode);
    return 0;
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

const CdeDISK posixDisk = {PosixOpen,   read,   write,    lseek,         fsync,       close,
                           PosixRename, unlink, readlink, PosixLikeness, PosixAccess, PosixMkdir};
const CdeDISK *disk = &posixDisk;

bool TextToUtf8(char *dest, const char *src, int max)
{
    ASSERT(dest != NULL && src != NULL);
    ASSERT(max > 0);
    int used = 0;
    for (; *src; ++src) {
        char utf8[3];
        int length = Encode(ChrCode(*src), utf8);
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
        if (!ChrOfCode(&dest[used], Decode(&src))) {
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

bool DiskHas(const char *name)
{
    char path[NATIVE_MAX];
    if (!NameToNative(path, name, sizeof path))
        return false;
    return disk->access(path) == 0 || (errno != ENOENT && errno != ENOTDIR);
}

bool DiskDelete(const char *name)
{
    char path[NATIVE_MAX];
    return NameToNative(path, name, sizeof path) && disk->unlink(path) == 0;
}

bool DiskRename(const char *from, const char *to)
{
    char path[NATIVE_MAX], target[NATIVE_MAX];
    return NameToNative(path, from, sizeof path) && NameToNative(target, to, sizeof target) &&
           disk->rename(path, target) == 0;
}

bool DiskMakeFolder(const char *name)
{
    char path[NATIVE_MAX], model[NATIVE_MAX];
    if (!NameToNative(path, name, sizeof path))
        return false;
    const char *slash = strrchr(path, '/');
    size_t length = slash ? static_cast<size_t>(slash - path) : 0;
    memcpy(model, path, length);
    strcpy(model + length, length > 0 ? "" : slash ? "/" : ".");
    return disk->mkdir(path, model) == 0;
}

bool DiskDate(const char *name, int &year, int &month)
{
    char path[NATIVE_MAX];
    struct stat its;
    tm local = {};
    if (!NameToNative(path, name, sizeof path) || stat(path, &its) != 0 || !localtime_r(&its.st_mtime, &local))
        return false;
    year = local.tm_year + 1900;
    month = local.tm_mon + 1;
    return true;
}
