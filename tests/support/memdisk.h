// A disk that holds its files in memory, for tests that read and write many thousands of them. It has no
// folders and no links: every path may be created. Paths are native ("/mem/halle.sc1" is "\mem\halle.sc1"
// above).
#ifndef TESTS_SUPPORT_MEMDISK_H
#define TESTS_SUPPORT_MEMDISK_H

#include <string>
#include <vector>

/// While it lives, `disk` is an empty disk in memory; its end puts the former one back and drops all files.
/// One at a time.
class MemDisk
{
public:
    MemDisk();
    ~MemDisk();
    MemDisk(const MemDisk &) = delete;
    MemDisk &operator=(const MemDisk &) = delete;

private:
    const struct CdeDISK *former; // weak
};

void MemPut(const std::string &path, const std::string &bytes);
std::string MemGet(const std::string &path); // "" where there is none, see MemHas
bool MemHas(const std::string &path);
void MemErase(const std::string &path);
std::vector<std::string> MemList(); // all paths, sorted

/// All files together may hold this many bytes; a write that goes beyond takes what fits, then fails with
/// ENOSPC. -1: no limit.
void MemLimit(long long bytes);
/// Opening a marked file for writing fails with EACCES. A path that ends in '/' marks a folder: nothing can be
/// created, renamed or deleted in it.
void MemReadOnly(const std::string &path, bool readOnly = true);
/// Descriptors that are open now.
int MemOpenFiles();

#endif
