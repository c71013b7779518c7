// Deliberate faults: the n-th allocation, open, read and so on of an operation fails, once or from then on.
// Faults are armed around the operation only; test code before and after it runs undisturbed. A test that uses
// this header runs on replaced global operators new and delete, which count and can refuse.
#ifndef TESTS_SUPPORT_FAULT_H
#define TESTS_SUPPORT_FAULT_H

#include "lib/xfail.h"

#include <cstddef>
#include <functional>

enum class FAULT {
    ALLOC, // operator new in all its kinds but the over-aligned ones
    OPEN,  // the calls that lead to an open file: also the look for a file, for a link, the
           // making of a folder and the taking over of permissions
    READ,
    WRITE,
    SEEK,
    SYNC,
    CLOSE, // the descriptor is gone, as it is with a close that reports an error
    RENAME,
    UNLINK,
};

const char *FaultName(FAULT kind);

/// While it lives, call number n (from 1) of the kind fails; with `onwards` every later one too. Calls of the
/// file system go to the disk that was installed when the fault was armed. One at a time.
class FaultArm
{
public:
    FaultArm(FAULT kind, int n, bool onwards);
    ~FaultArm();
    FaultArm(const FaultArm &) = delete;
    FaultArm &operator=(const FaultArm &) = delete;
};

/// Faults that fired since the last one was armed.
int FaultsFired();

/// While it lives, nothing is counted and nothing fails: for test code that an operation calls back.
class FaultPause
{
public:
    FaultPause();
    ~FaultPause();
    FaultPause(const FaultPause &) = delete;
    FaultPause &operator=(const FaultPause &) = delete;
};

/// Blocks that operator new has handed out and operator delete has not got back: equal before and after an
/// operation that leaks nothing. The files of a MemDisk count too.
long LiveBlocks();

/// Bytes that operator new has handed out since the start, whether they came back or not: the difference over
/// an operation bounds what it held at any time.
size_t BytesAsked();

/// One run of an operation, as its check sees it.
struct FaultRun {
    FAULT kind;
    int n;
    bool onwards;
    int fired;  // faults that fired in this run; 0 in the last one of each row
    XCODE code; // the failure that was pending at the end, XNULL for none; it is already taken off
};

/// Runs `operation` for each kind of fault, once and onwards, with n = 1, 2, ... until nothing fires, and
/// `check` behind each run, with faults off and the failure taken off. `prepare` runs before each, with faults
/// off. Besides what `check` looks at, each run must leave the protocol clean and let no exception out, a run
/// without a fault must not fail, and one failure at most may be pending.
/// @return  runs in which a fault fired, so that a test can see that there was something to sweep
int SweepFaults(const std::function<void()> &prepare, const std::function<void()> &operation,
                const std::function<void(const FaultRun &)> &check);
int SweepFaults(const std::function<void()> &operation, const std::function<void(const FaultRun &)> &check);

#endif
