// The fault loop and the disk in memory, which tests of all layers lean on: they must count right, fire where
// they should, and behave as a disk does.
#include "support/fault.h"

#include "lib/cde.h"
#include "lib/disk.h"

#include "support/memdisk.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <memory>
#include <new>
#include <string>
#include <vector>

#include "lib/xon.h"

TEST(FaultLoop, ItselfCountsFiresAndStops)
{
    std::vector<int> allocations; // how many of three were refused, by run
    auto operation = [] {
        __enter
            for (int i = 0; i < 3; ++i)
                delete new (std::nothrow) CdeFILENAME;
        __point
        __treat
    };
    int hits = SweepFaults(operation, [&](const FaultRun &run) {
        if (run.kind == FAULT::ALLOC)
            allocations.push_back(run.fired);
    });
    EXPECT_EQ(allocations, (std::vector<int>{1, 1, 1, 0, 3, 2, 1, 0}));
    EXPECT_EQ(hits, 6);
}

TEST(FaultLoop, SeesBlocksThatAreNotGivenBack)
{
    long before = LiveBlocks();
    auto block = std::make_unique<int>(1);
    EXPECT_EQ(LiveBlocks(), before + 1);
    block.reset();
    EXPECT_EQ(LiveBlocks(), before);
}

TEST(FaultLoop, ThrowsWhereThePlainNewIsCalled)
{
    FaultArm arm(FAULT::ALLOC, 2, false);
    int thrown = 0;
    for (int i = 0; i < 3; ++i) {
        try {
            std::unique_ptr<int[]> block(new int[100]);
        } catch (const std::bad_alloc &) {
            thrown = thrown * 10 + i;
        }
    }
    EXPECT_EQ(thrown, 1);
    EXPECT_EQ(FaultsFired(), 1);
}

TEST(FaultLoop, LetsAPauseThrough)
{
    FaultArm arm(FAULT::ALLOC, 1, true);
    int *paused = NULL;
    {
        FaultPause pause;
        paused = new (std::nothrow) int;
    }
    int *failed = new (std::nothrow) int;
    EXPECT_TRUE(paused != NULL && failed == NULL);
    delete paused;
}

TEST(MemDisk, BehavesAsADisk)
{
    MemDisk mem;
    char block[8] = "";
    EXPECT_EQ(disk->open("/m/f", O_RDWR, 0), -1);
    EXPECT_EQ(errno, ENOENT);
    int fd = disk->open("/m/f", O_RDWR | O_CREAT | O_EXCL, 0666);
    EXPECT_EQ(disk->write(fd, "abc", 3), 3);
    EXPECT_EQ(disk->seek(fd, 1, SEEK_SET), 1);
    EXPECT_EQ(disk->read(fd, block, 8), 2);
    EXPECT_STREQ(block, "bc");
    EXPECT_EQ(disk->read(fd, block, 8), 0);
    EXPECT_EQ(disk->seek(fd, 2, SEEK_END), 5);
    EXPECT_EQ(disk->write(fd, "x", 1), 1);
    EXPECT_EQ(MemGet("/m/f"), std::string("abc\0\0x", 6));
    EXPECT_EQ(disk->open("/m/f", O_RDWR | O_CREAT | O_EXCL, 0666), -1);
    EXPECT_EQ(errno, EEXIST);
    EXPECT_EQ(disk->rename("/m/f", "/m/g"), 0);
    EXPECT_EQ(disk->seek(fd, 0, SEEK_SET), 0);
    EXPECT_EQ(disk->write(fd, "A", 1), 1);
    EXPECT_EQ(MemGet("/m/g").substr(0, 3), "Abc") << "a descriptor follows its file";
    EXPECT_EQ(disk->unlink("/m/g"), 0);
    EXPECT_EQ(disk->unlink("/m/g"), -1);
    EXPECT_FALSE(MemHas("/m/g"));
    EXPECT_EQ(MemOpenFiles(), 1);
    EXPECT_EQ(disk->close(fd), 0);
    EXPECT_EQ(disk->close(fd), -1);
    EXPECT_EQ(disk->read(fd, block, 1), -1);
    EXPECT_EQ(errno, EBADF);
    EXPECT_EQ(MemOpenFiles(), 0);
}

TEST(MemDisk, IsFullAtItsLimitAndKeepsItsMarks)
{
    MemDisk mem;
    MemPut("/m/f", "abc");
    MemLimit(5);
    int fd = disk->open("/m/g", O_WRONLY | O_CREAT, 0666);
    EXPECT_EQ(disk->write(fd, "123", 3), 2) << "what fits";
    EXPECT_EQ(disk->write(fd, "3", 1), -1);
    EXPECT_EQ(errno, ENOSPC);
    EXPECT_EQ(disk->seek(fd, 0, SEEK_SET), 0);
    EXPECT_EQ(disk->write(fd, "98", 2), 2) << "in place there is always room";
    disk->close(fd);
    MemReadOnly("/m/f");
    EXPECT_EQ(disk->open("/m/f", O_RDWR, 0), -1);
    EXPECT_EQ(errno, EACCES);
    MemReadOnly("/m/");
    EXPECT_EQ(disk->unlink("/m/g"), -1);
    EXPECT_EQ(disk->rename("/m/g", "/n/g"), -1);
    EXPECT_EQ(disk->rename("/m/g", "/m/f"), -1);
    EXPECT_EQ(disk->open("/m/h", O_WRONLY | O_CREAT, 0666), -1);
    EXPECT_EQ(MemList(), (std::vector<std::string>{"/m/f", "/m/g"}));
}
