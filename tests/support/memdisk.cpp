#include "support/memdisk.h"

#include "support/fault.h"

#include "lib/disk.h"
#include "lib/xassert.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <map>
#include <memory>
#include <set>
#include <unistd.h>

namespace
{
enum { FIRST_FD = 1000 }; // no number of a real descriptor in a test

struct DESCRIPTOR {
    std::shared_ptr<std::string> bytes; // empty: the slot is free
    off_t pos = 0;
    int flags = 0;
};

struct CONTENT {
    std::map<std::string, std::shared_ptr<std::string>> files;
    std::set<std::string> readOnly;
    std::vector<DESCRIPTOR> slots; // by descriptor, from FIRST_FD
    long long limit = -1;
};

CONTENT *content = NULL; // owner; NULL while no disk in memory is installed

int Failed(int error)
{
    errno = error;
    return -1;
}

DESCRIPTOR *Slot(int fd)
{
    size_t i = static_cast<size_t>(fd - FIRST_FD);
    bool open = fd >= FIRST_FD && i < content->slots.size() && content->slots[i].bytes;
    return open ? &content->slots[i] : NULL;
}

bool CanWrite(const std::string &path)
{
    return content->readOnly.count(path) == 0;
}

bool CanChangeFolderOf(const std::string &path)
{
    return CanWrite(path.substr(0, path.rfind('/') + 1));
}

long long Used()
{
    long long used = 0;
    for (const auto &[path, bytes] : content->files)
        used += static_cast<long long>(bytes->size());
    return used;
}

int MemOpen(const char *path, int flags, int)
{
    FaultPause pause;
    auto found = content->files.find(path);
    bool writes = (flags & O_ACCMODE) != O_RDONLY;
    if (found == content->files.end()) {
        if (!(flags & O_CREAT) || *path == '\0')
            return Failed(ENOENT);
        if (!CanChangeFolderOf(path))
            return Failed(EACCES);
        found = content->files.emplace(path, std::make_shared<std::string>()).first;
    } else if ((flags & O_CREAT) && (flags & O_EXCL)) {
        return Failed(EEXIST);
    } else if (writes && !CanWrite(path)) {
        return Failed(EACCES);
    }
    if (flags & O_TRUNC)
        found->second->clear();
    auto isFree = [](const DESCRIPTOR &slot) { return !slot.bytes; };
    auto slot = std::find_if(content->slots.begin(), content->slots.end(), isFree);
    if (slot == content->slots.end())
        slot = content->slots.insert(slot, DESCRIPTOR());
    *slot = {found->second, 0, flags};
    return FIRST_FD + static_cast<int>(slot - content->slots.begin());
}

ssize_t MemRead(int fd, void *blk, size_t size)
{
    DESCRIPTOR *slot = Slot(fd);
    if (slot == NULL || (slot->flags & O_ACCMODE) == O_WRONLY)
        return Failed(EBADF);
    size_t end = slot->bytes->size();
    size_t start = std::min(static_cast<size_t>(slot->pos), end);
    size_t count = std::min(size, end - start);
    memcpy(blk, slot->bytes->data() + start, count);
    slot->pos += static_cast<off_t>(count);
    return static_cast<ssize_t>(count);
}

ssize_t MemWrite(int fd, const void *blk, size_t size)
{
    FaultPause pause;
    DESCRIPTOR *slot = Slot(fd);
    if (slot == NULL || (slot->flags & O_ACCMODE) == O_RDONLY)
        return Failed(EBADF);
    std::string &bytes = *slot->bytes;
    if (slot->flags & O_APPEND)
        slot->pos = static_cast<off_t>(bytes.size());
    size_t start = static_cast<size_t>(slot->pos);
    if (content->limit >= 0) {
        long long most = std::max(0LL, content->limit - Used()) + static_cast<long long>(bytes.size());
        size_t fits = most > slot->pos ? static_cast<size_t>(most - slot->pos) : 0;
        if (fits == 0 && size > 0)
            return Failed(ENOSPC);
        size = std::min(size, fits);
    }
    if (bytes.size() < start + size)
        bytes.resize(start + size);
    memcpy(bytes.data() + start, blk, size);
    slot->pos += static_cast<off_t>(size);
    return static_cast<ssize_t>(size);
}

off_t MemSeek(int fd, off_t pos, int whence)
{
    DESCRIPTOR *slot = Slot(fd);
    if (slot == NULL)
        return Failed(EBADF);
    off_t from = whence == SEEK_SET   ? 0
                 : whence == SEEK_CUR ? slot->pos
                                      : static_cast<off_t>(slot->bytes->size());
    if (from + pos < 0)
        return Failed(EINVAL);
    return slot->pos = from + pos;
}

int MemSync(int fd)
{
    return Slot(fd) ? 0 : Failed(EBADF);
}

int MemClose(int fd)
{
    DESCRIPTOR *slot = Slot(fd);
    if (slot == NULL)
        return Failed(EBADF);
    *slot = DESCRIPTOR();
    return 0;
}

int MemRename(const char *from, const char *to)
{
    FaultPause pause;
    auto found = content->files.find(from);
    if (found == content->files.end())
        return Failed(ENOENT);
    if (!CanChangeFolderOf(from) || !CanChangeFolderOf(to))
        return Failed(EACCES);
    std::shared_ptr<std::string> bytes = found->second;
    content->files.erase(found);
    content->files[to] = bytes;
    return 0;
}

int MemUnlink(const char *path)
{
    FaultPause pause;
    if (content->files.count(path) == 0)
        return Failed(ENOENT);
    if (!CanChangeFolderOf(path))
        return Failed(EACCES);
    content->files.erase(path);
    return 0;
}

ssize_t MemReadlink(const char *path, char *, size_t)
{
    FaultPause pause;
    return Failed(content->files.count(path) ? EINVAL : ENOENT);
}

int MemLikeness(int fd, int model)
{
    return Slot(fd) && Slot(model) ? 0 : Failed(EBADF);
}

/// A folder is there as soon as a file is in it.
int MemAccess(const char *path)
{
    FaultPause pause;
    std::string folder = std::string(path) + "/";
    auto inside = content->files.lower_bound(folder);
    bool holds = inside != content->files.end() && inside->first.compare(0, folder.size(), folder) == 0;
    return holds || content->files.count(path) ? 0 : Failed(ENOENT);
}

int MemMkdir(const char *path, const char *)
{
    FaultPause pause;
    return CanChangeFolderOf(path) ? 0 : Failed(EACCES);
}

const CdeDISK memDisk = {MemOpen,   MemRead,   MemWrite,    MemSeek,     MemSync,   MemClose,
                         MemRename, MemUnlink, MemReadlink, MemLikeness, MemAccess, MemMkdir};
} // namespace

MemDisk::MemDisk() : former(disk)
{
    ASSERT(content == NULL);
    content = new CONTENT;
    disk = &memDisk;
}

MemDisk::~MemDisk()
{
    disk = former;
    delete content;
    content = NULL;
}

void MemPut(const std::string &path, const std::string &bytes)
{
    FaultPause pause;
    content->files[path] = std::make_shared<std::string>(bytes);
}

std::string MemGet(const std::string &path)
{
    FaultPause pause;
    auto found = content->files.find(path);
    return found == content->files.end() ? std::string() : *found->second;
}

bool MemHas(const std::string &path)
{
    return content->files.count(path) > 0;
}

void MemErase(const std::string &path)
{
    content->files.erase(path);
}

std::vector<std::string> MemList()
{
    std::vector<std::string> paths;
    for (const auto &[path, bytes] : content->files)
        paths.push_back(path);
    return paths;
}

void MemLimit(long long bytes)
{
    content->limit = bytes;
}

void MemReadOnly(const std::string &path, bool readOnly)
{
    if (readOnly)
        content->readOnly.insert(path);
    else
        content->readOnly.erase(path);
}

int MemOpenFiles()
{
    auto isOpen = [](const DESCRIPTOR &slot) { return slot.bytes != NULL; };
    return static_cast<int>(std::count_if(content->slots.begin(), content->slots.end(), isOpen));
}
