#include "support/fault.h"

#include "lib/disk.h"
#include "lib/xassert.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdlib>
#include <new>

#include "lib/xon.h"

namespace
{
const char *const names[] = {"ALLOC", "OPEN", "READ", "WRITE", "SEEK", "SYNC", "CLOSE", "RENAME", "UNLINK"};
enum { KINDS = sizeof names / sizeof *names };

// What is armed. Plain globals: operator new runs before any constructor of ours.
bool armed = false;
int paused = 0;
FAULT armedKind;
int callsLeft = 0; // calls until the fault, the failing one included; 0: fired
bool armedOnwards = false;
int fired = 0;
long liveBlocks = 0;
size_t bytesAsked = 0;
const CdeDISK *inner = NULL; // weak; the disk under the faulty one

/// Counts one call and tells whether it is to fail.
bool Fails(FAULT kind)
{
    if (!armed || paused > 0 || kind != armedKind)
        return false;
    if (callsLeft == 0 ? !armedOnwards : --callsLeft > 0)
        return false;
    ++fired;
    return true;
}

/// The result of a failing call.
int Failed(int error)
{
    errno = error;
    return -1;
}

int FaultyOpen(const char *path, int flags, int mode)
{
    return Fails(FAULT::OPEN) ? Failed(EMFILE) : inner->open(path, flags, mode);
}

ssize_t FaultyRead(int fd, void *blk, size_t size)
{
    return Fails(FAULT::READ) ? Failed(EIO) : inner->read(fd, blk, size);
}

ssize_t FaultyWrite(int fd, const void *blk, size_t size)
{
    return Fails(FAULT::WRITE) ? Failed(ENOSPC) : inner->write(fd, blk, size);
}

off_t FaultySeek(int fd, off_t pos, int whence)
{
    return Fails(FAULT::SEEK) ? Failed(EIO) : inner->seek(fd, pos, whence);
}

int FaultySync(int fd)
{
    return Fails(FAULT::SYNC) ? Failed(EIO) : inner->sync(fd);
}

int FaultyClose(int fd)
{
    if (!Fails(FAULT::CLOSE))
        return inner->close(fd);
    inner->close(fd);
    return Failed(EIO);
}

int FaultyRename(const char *from, const char *to)
{
    return Fails(FAULT::RENAME) ? Failed(EIO) : inner->rename(from, to);
}

int FaultyUnlink(const char *path)
{
    return Fails(FAULT::UNLINK) ? Failed(EACCES) : inner->unlink(path);
}

ssize_t FaultyReadlink(const char *path, char *target, size_t size)
{
    return Fails(FAULT::OPEN) ? Failed(EACCES) : inner->readlink(path, target, size);
}

int FaultyLikeness(int fd, int model)
{
    return Fails(FAULT::OPEN) ? Failed(EPERM) : inner->likeness(fd, model);
}

int FaultyAccess(const char *path)
{
    return Fails(FAULT::OPEN) ? Failed(EACCES) : inner->access(path);
}

int FaultyMkdir(const char *path, const char *model)
{
    return Fails(FAULT::OPEN) ? Failed(EACCES) : inner->mkdir(path, model);
}

const CdeDISK faultyDisk = {FaultyOpen,     FaultyRead,     FaultyWrite,  FaultySeek,
                            FaultySync,     FaultyClose,    FaultyRename, FaultyUnlink,
                            FaultyReadlink, FaultyLikeness, FaultyAccess, FaultyMkdir};

void *Allocate(size_t size) noexcept
{
    if (Fails(FAULT::ALLOC))
        return NULL;
    void *block = std::malloc(size > 0 ? size : 1);
    if (block != NULL) {
        ++liveBlocks;
        bytesAsked += size;
    }
    return block;
}

void *AllocateOrThrow(size_t size)
{
    void *block = Allocate(size);
    if (block == NULL)
        throw std::bad_alloc();
    return block;
}

void Release(void *block) noexcept
{
    if (block != NULL)
        --liveBlocks;
    std::free(block);
}

/// Takes the pending failure off, as a frame at the window system does, and tells what it was.
XCODE TakeOff()
{
    XCODE code = xCode;
    xCode = XNULL;
    return code;
}

FaultRun RunOnce(FAULT kind, int n, bool onwards, const std::function<void()> &operation)
{
    bool escaped = false;
    {
        FaultArm arm(kind, n, onwards);
        try {
            operation();
        } catch (...) {
            escaped = true;
        }
    }
    EXPECT_FALSE(escaped) << "an exception came out of the operation";
    EXPECT_EQ(xDepth, 0);
    FaultRun run = {kind, n, onwards, FaultsFired(), TakeOff()};
    if (run.fired == 0) {
        EXPECT_STREQ(run.code, XNULL) << "raised at " << xFile << ":" << xLine;
    }
    return run;
}
} // namespace

void *operator new(size_t size)
{
    return AllocateOrThrow(size);
}

void *operator new[](size_t size)
{
    return AllocateOrThrow(size);
}

void *operator new(size_t size, const std::nothrow_t &) noexcept
{
    return Allocate(size);
}

void *operator new[](size_t size, const std::nothrow_t &) noexcept
{
    return Allocate(size);
}

void operator delete(void *block) noexcept
{
    Release(block);
}

void operator delete[](void *block) noexcept
{
    Release(block);
}

void operator delete(void *block, size_t) noexcept
{
    Release(block);
}

void operator delete[](void *block, size_t) noexcept
{
    Release(block);
}

void operator delete(void *block, const std::nothrow_t &) noexcept
{
    Release(block);
}

void operator delete[](void *block, const std::nothrow_t &) noexcept
{
    Release(block);
}

const char *FaultName(FAULT kind)
{
    return names[static_cast<int>(kind)];
}

FaultArm::FaultArm(FAULT kind, int n, bool onwards)
{
    ASSERT(!armed && n > 0);
    armedKind = kind;
    callsLeft = n;
    armedOnwards = onwards;
    fired = 0;
    inner = disk;
    disk = &faultyDisk;
    armed = true;
}

FaultArm::~FaultArm()
{
    armed = false;
    disk = inner;
}

int FaultsFired()
{
    return fired;
}

FaultPause::FaultPause()
{
    ++paused;
}

FaultPause::~FaultPause()
{
    --paused;
}

long LiveBlocks()
{
    return liveBlocks;
}

size_t BytesAsked()
{
    return bytesAsked;
}

int SweepFaults(const std::function<void()> &prepare, const std::function<void()> &operation,
                const std::function<void(const FaultRun &)> &check)
{
    int hits = 0;
    for (int kind = 0; kind < KINDS; ++kind) {
        for (bool onwards : {false, true}) {
            bool more = true;
            for (int n = 1; more; ++n) {
                SCOPED_TRACE(testing::Message()
                             << names[kind] << " number " << n << (onwards ? " onwards" : ""));
                prepare();
                FaultRun run = RunOnce(static_cast<FAULT>(kind), n, onwards, operation);
                check(run);
                hits += run.fired > 0;
                more = run.fired > 0;
            }
        }
    }
    return hits;
}

int SweepFaults(const std::function<void()> &operation, const std::function<void(const FaultRun &)> &check)
{
    return SweepFaults([] {}, operation, check);
}
