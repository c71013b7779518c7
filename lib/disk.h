// The one door to the file system. Everything above uses the system's own names: Windows-1252, folders parted
// by '\'. Everything below uses what the platform gives: UTF-8 and '/'. The calls go through a table, so that
// a test can hold files in memory or make the n-th call fail.
#ifndef LIB_DISK_H
#define LIB_DISK_H

#include <sys/types.h>

/// The calls that files are made of, with the contracts of POSIX: -1 and errno on failure.
/// Paths are native here.
struct CdeDISK {
    int (*open)(const char *path, int flags, int mode);
    ssize_t (*read)(int fd, void *blk, size_t size);
    ssize_t (*write)(int fd, const void *blk, size_t size);
    off_t (*seek)(int fd, off_t pos, int whence);
    int (*sync)(int fd);
    int (*close)(int fd);
    int (*rename)(const char *from, const char *to); // what it did is on the disk when it returns
    int (*unlink)(const char *path);
    ssize_t (*readlink)(const char *path, char *target, size_t size);
    /// Gives `fd` the permissions and, where the system lets us, the owner of the regular file `model`; EINVAL
    /// if that is none.
    int (*likeness)(int fd, int model);
    int (*access)(const char *path); // 0: there is something of that name, at the end of all links
    /// A folder with the permissions of the folder `model`, and open to us in any case.
    int (*mkdir)(const char *path, const char *model);
};

extern const CdeDISK posixDisk;
extern const CdeDISK *disk; // weak; the table in use

/// A native path in the system's form. False if it holds a character outside the set, or a '\' of its own,
/// or does not fit: such a path cannot be named without mangling it. Then `name` is the path cut to what fits,
/// with '?' for what the set lacks, for a message only.
bool NameFromNative(char *name, const char *path, int max);
/// The native form of a name. False if it does not fit into max.
bool NameToNative(char *path, const char *name, int max);

/// Text conversion between the system's set and UTF-8. False if it did not fit or could not be held; then
/// `dest` holds what fitted, with '?' for what the set lacks.
bool TextToUtf8(char *dest, const char *src, int max);
bool TextFromUtf8(char *dest, const char *src, int max);

// Files by their names in the system's form. Nothing here raises, so it serves repair sections too.

/// Whether there is a file or a folder of that name. True also where the system refuses to tell: whoever opens
/// it then gets the reason.
bool DiskHas(const char *name);
bool DiskDelete(const char *name); // a file
/// Takes the place of what `to` names. False if it did not; then both are as they were.
bool DiskRename(const char *from, const char *to);
/// A folder like the one that it stands in, which must be there.
bool DiskMakeFolder(const char *name);
/// Year and month, from 1, in which a file was last changed, local time. False where nothing tells it.
bool DiskDate(const char *name, int &year, int &month);

enum { NATIVE_MAX = 4096 }; // size of a native path buffer, terminator included

#endif
