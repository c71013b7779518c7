// Every guarded operation of a typed file with every call below it failing in turn.
#include "lib/cde.h"
#include "lib/xfail.h"

#include "support/fault.h"
#include "support/folder.h"
#include "support/memdisk.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "lib/xon.h"

using std::string;

namespace
{
string written; // what WriteFile writes

void WriteFile()
{
    __enter
        CdeFILE file;
        file.Open("\\m\\f", "c"); __test;
        file.PutHeader("A", 1); __test;
        file.PutSection(0); __test;
        file.PutText(written.c_str()); __test;
        file.PutEnd(); __test;
        file.Seek(0); __test;
        file.GetHeader("A", 1); __test;
        file.Close(); __test;
    __point
    __treat
}

void ReadFile()
{
    __enter
        CdeFILE file;
        char text[32];
        file.Open("\\m\\f", "o"); __test;
        file.Walk(); __test;
        file.GetHeader("A", 1); __test;
        file.GetSection(); __test;
        file.Require(5); __test;
        file.GetText(text, sizeof text); __test;
        EXPECT_TRUE(file.GetOver()); __test;
        file.EndSection(1); __test;
        file.Close(); __test;
    __point
    __treat
}

void UseTemporary()
{
    __enter
        CdeFILE file;
        file.Open(NULL, ""); __test;
        file.PutText(written.c_str()); __test;
        file.Seek(0); __test;
        file.Skip(1); __test;
        file.Close(); __test;
    __point
    __treat
}

/// The codes that a kind of fault may end in.
std::vector<string> CodesOf(FAULT kind)
{
    switch (kind) {
    case FAULT::ALLOC:
        return {XALLOC};
    case FAULT::OPEN:
        return {XFOPEN, XFCREATE};
    case FAULT::READ:
        return {XFREAD};
    case FAULT::SEEK:
        return {XFOPEN, XFCREATE, XFREAD, XFWRITE};
    default:
        return {XFWRITE};
    }
}

void CheckFailed(const FaultRun &run)
{
    std::vector<string> codes = run.fired ? CodesOf(run.kind) : std::vector<string>{XNULL};
    EXPECT_TRUE(std::count(codes.begin(), codes.end(), run.code)) << run.code;
    EXPECT_EQ(MemOpenFiles(), 0);
}
} // namespace

TEST(FaultsInAFile, EndInACodeAndLeaveNoDescriptor)
{
    MemDisk mem;
    written = string(150000, 't');
    int hits = SweepFaults([] { MemErase("/m/f"); }, WriteFile, CheckFailed);
    EXPECT_GE(hits, 2 * 8) << "allocation, open, seeks, reads, writes, close";
    string whole = MemGet("/m/f");
    hits = SweepFaults(ReadFile, CheckFailed);
    EXPECT_GE(hits, 2 * 10);
    EXPECT_EQ(MemGet("/m/f"), whole);
    hits = SweepFaults(
        [] {
            for (const string &path : MemList())
                MemErase(path);
        },
        UseTemporary,
        [](const FaultRun &run) {
            CheckFailed(run);
            bool stays = run.kind == FAULT::UNLINK && run.fired > 0;
            EXPECT_EQ(MemList().size(), stays ? 1u : 0u);
        });
    EXPECT_GE(hits, 2 * 8);
}

TEST(FaultsInAFile, OnTheRealDiskLeaveNoDescriptor)
{
    FOLDER folder;
    TMPDIR here(folder.path);
    int before = OpenDescriptors();
    written = "text";
    SweepFaults(UseTemporary, [&](const FaultRun &) { EXPECT_EQ(OpenDescriptors(), before); });
}

TEST(FaultsInAFile, APeekThatTheDiskDoesNotAnswerIsNoEndOfTheFile)
{
    MemDisk mem;
    MemPut("/m/f", "\xA3");
    CdeFILE file;
    file.Open("\\m\\f", "o");
    bool over = false;
    XCODE code = XNULL;
    {
        FaultArm arm(FAULT::READ, 1, false);
        over = file.GetOver();
        code = xCode;
        xCode = XNULL;
    }
    EXPECT_STREQ(code, XFREAD);
    EXPECT_TRUE(over) << "a loop over members ends";
    EXPECT_FALSE(file.GetOver()) << "the disk answers again";
}
