#include "lib/cde.h"
#include "lib/xfail.h"

#include "support/fault.h"
#include "support/folder.h"
#include "support/memdisk.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <string>
#include <sys/stat.h>

#include "lib/xon.h"

namespace
{
using std::string;

string Taken()
{
    string code = xCode;
    xCode = XNULL;
    return code;
}

/// Writes a file of some size by replacing; 200 KB reach the disk in several pieces.
void Replace(const string &name, const string &bytes)
{
    __enter
        CdeFILE file;
        file.OpenReplacing(name.c_str()); __test;
        file.Write(bytes.data(), static_cast<int>(bytes.size())); __test;
        file.Close(); __test;
    __point
    __treat
}

mode_t ModeOf(const string &path)
{
    struct stat its;
    return stat(path.c_str(), &its) == 0 ? its.st_mode & 07777 : 0;
}
} // namespace

TEST(Replacing, TakesTheTargetsPlaceInCloseAndOnlyThere)
{
    FOLDER folder;
    folder.Put("halle.sc1", "alt");
    CdeFILE file;
    file.OpenReplacing(folder.Name("halle.sc1").c_str());
    EXPECT_EQ(string(file.Name()), folder.Name("halle.sc1"));
    file.Write("neu", 3);
    file.Seek(1);
    EXPECT_EQ(file.Peek(), 'e');
    EXPECT_EQ(folder.Get("halle.sc1"), "alt");
    EXPECT_EQ(folder.List(), (std::set<string>{"halle.sc1", "halle.sc1.~neu1"}));
    file.Close();
    EXPECT_STREQ(xCode, XNULL);
    EXPECT_EQ(folder.Get("halle.sc1"), "neu");
    EXPECT_EQ(folder.List(), std::set<string>{"halle.sc1"});
}

TEST(Replacing, MakesAFileThatWasNotThere)
{
    FOLDER folder;
    int before = OpenDescriptors();
    Replace(folder.Name("halle.sc1"), "neu");
    EXPECT_EQ(folder.Get("halle.sc1"), "neu");
    EXPECT_EQ(folder.List(), std::set<string>{"halle.sc1"});
    EXPECT_EQ(OpenDescriptors(), before);
    std::ofstream(folder.Path("plain")) << "x";
    EXPECT_EQ(ModeOf(folder.Path("halle.sc1")), ModeOf(folder.Path("plain")));
}

TEST(Replacing, WithoutCloseLeavesTheTargetAndNoTemporary)
{
    FOLDER folder;
    folder.Put("halle.sc1", "alt");
    {
        CdeFILE file;
        file.OpenReplacing(folder.Name("halle.sc1").c_str());
        file.Write("neu", 3);
    }
    EXPECT_EQ(folder.Get("halle.sc1"), "alt");
    EXPECT_EQ(folder.List(), std::set<string>{"halle.sc1"});
}

TEST(Replacing, KeepsThePermissions)
{
    FOLDER folder;
    for (mode_t mode : {0600, 0640, 0666, 0755}) {
        folder.Put("halle.sc1", "alt");
        chmod(folder.Path("halle.sc1").c_str(), mode);
        Replace(folder.Name("halle.sc1"), "neu");
        EXPECT_EQ(ModeOf(folder.Path("halle.sc1")), mode);
    }
}

TEST(Replacing, LeavesLinksAndReplacesWhatTheyPointTo)
{
    FOLDER folder;
    namespace fs = std::filesystem;
    fs::create_directories(folder.Path("da/tief"));
    folder.Put("da/tief/halle.sc1", "alt");
    fs::create_symlink("tief/halle.sc1", folder.Path("da/zwei"));    // relative to its own folder
    fs::create_symlink(folder.Path("da/zwei"), folder.Path("eins")); // rooted
    fs::create_symlink("da/noch nicht", folder.Path("leer"));        // to nothing yet
    Replace(folder.Name("eins"), "neu");
    EXPECT_EQ(folder.Get("da/tief/halle.sc1"), "neu");
    EXPECT_TRUE(fs::is_symlink(folder.Path("eins")));
    EXPECT_TRUE(fs::is_symlink(folder.Path("da/zwei")));
    Replace(folder.Name("leer"), "neu");
    EXPECT_EQ(folder.Get("da/noch nicht"), "neu");
    EXPECT_TRUE(fs::is_symlink(folder.Path("leer")));
}

TEST(Replacing, IsRefusedWhereThereIsNoFileToReplace)
{
    FOLDER folder;
    std::filesystem::create_directory(folder.Path("folder"));
    std::filesystem::create_symlink("ring2", folder.Path("ring1"));
    std::filesystem::create_symlink("ring1", folder.Path("ring2"));
    mkfifo(folder.Path("pipe").c_str(), 0600);
    std::set<string> list = folder.List();
    int before = OpenDescriptors();
    string names[] = {
        folder.Name("folder"),
        folder.Name("ring1"),
        folder.Name("missing/halle.sc1"),
        "\\dev\\null",
        "\\dev\\full",
        folder.Name("pipe"),
        "",
        string(NATIVE_MAX, 'x'),
        "\\proc\\halle.sc1",
    };
    for (const string &name : names) {
        Replace(name, "neu");
        EXPECT_EQ(Taken(), XFCREATE) << name;
        EXPECT_EQ(string(xFCreateName), name.substr(0, 255));
    }
    EXPECT_EQ(folder.List(), list);
    EXPECT_EQ(OpenDescriptors(), before);
}

TEST(Replacing, RespectsAReadOnlyFileAndAReadOnlyFolder)
{
    FOLDER folder;
    folder.Put("halle.sc1", "alt");
    chmod(folder.path.c_str(), 0777);
    chmod(folder.Path("halle.sc1").c_str(), 0444);
    {
        PLAINUSER user;
        Replace(folder.Name("halle.sc1"), "neu");
        EXPECT_EQ(Taken(), XFCREATE);
    }
    chmod(folder.Path("halle.sc1").c_str(), 0666);
    chmod(folder.path.c_str(), 0555);
    {
        PLAINUSER user;
        Replace(folder.Name("halle.sc1"), "neu");
        EXPECT_EQ(Taken(), XFCREATE);
    }
    chmod(folder.path.c_str(), 0755);
    EXPECT_EQ(folder.Get("halle.sc1"), "alt");
    EXPECT_EQ(folder.List(), std::set<string>{"halle.sc1"});
}

TEST(Replacing, AFolderThatCannotBeChangedKeepsItsFileInMemoryToo)
{
    MemDisk mem;
    MemPut("/m/halle.sc1", "alt");
    MemReadOnly("/m/");
    Replace("\\m\\halle.sc1", "neu");
    EXPECT_EQ(Taken(), XFCREATE);
    MemReadOnly("/m/", false);
    MemReadOnly("/m/halle.sc1");
    Replace("\\m\\halle.sc1", "neu");
    EXPECT_EQ(Taken(), XFCREATE);
    EXPECT_EQ(MemGet("/m/halle.sc1"), "alt");
}

TEST(Replacing, NeverTouchesAnotherFileThatBearsTheTemporarysName)
{
    FOLDER folder;
    folder.Put("halle.sc1.~neu1", "von einem Absturz");
    Replace(folder.Name("halle.sc1"), "neu");
    EXPECT_EQ(folder.Get("halle.sc1"), "neu");
    EXPECT_EQ(folder.Get("halle.sc1.~neu1"), "von einem Absturz");
    EXPECT_EQ(folder.List().size(), 2u);
}

TEST(Replacing, GivesUpWhenEveryTemporarysNameIsTaken)
{
    MemDisk mem;
    for (int i = 1; i <= 1000; ++i)
        MemPut("/m/halle.sc1.~neu" + std::to_string(i), "");
    Replace("\\m\\halle.sc1", "neu");
    EXPECT_EQ(Taken(), XFCREATE);
    EXPECT_EQ(MemOpenFiles(), 0);
}

TEST(Replacing, WorksForNamesAsLongAsTheFileSystemHasThem)
{
    FOLDER folder;
    for (int length : {1, 239, 240, 241, 250, 255}) {
        string name(static_cast<size_t>(length), 'x');
        Replace(folder.Name(name), "neu");
        EXPECT_EQ(folder.Get(name), "neu") << length;
    }
    string umlauts = "x"; // an odd start, so that the cut would fall into a character
    for (int i = 0; i < 127; ++i)
        umlauts += "ü";
    Replace(folder.Name(umlauts), "neu");
    EXPECT_EQ(folder.Get(umlauts), "neu");
    EXPECT_EQ(folder.List().size(), 7u);
}

TEST(Replacing, LeavesTheOldFileWholeHoweverFullTheDisk)
{
    MemDisk mem;
    const string before(1000, 'a'), after(200000, 'n');
    for (int room : {0, 1, 65535, 65536, 65537, 131072, 199999, 200000}) {
        MemPut("/m/halle.sc1", before);
        MemLimit(static_cast<long long>(before.size()) + room);
        Replace("\\m\\halle.sc1", after);
        bool fits = room >= 200000;
        EXPECT_EQ(Taken(), fits ? XNULL : XFWRITE) << room;
        EXPECT_EQ(MemGet("/m/halle.sc1"), fits ? after : before) << room;
        EXPECT_EQ(MemList().size(), 1u) << room;
        EXPECT_EQ(MemOpenFiles(), 0) << room;
        MemLimit(-1);
    }
    EXPECT_STREQ(xFWriteName, "\\m\\halle.sc1");
}

TEST(Replacing, AfterALostWriteFailsEvenIfThereIsRoomAgain)
{
    MemDisk mem;
    MemPut("/m/halle.sc1", "alt");
    CdeFILE file;
    file.OpenReplacing("\\m\\halle.sc1");
    MemLimit(3);
    file.Write(string(100000, 'n').data(), 100000);
    EXPECT_EQ(Taken(), XFWRITE);
    MemLimit(-1);
    file.Close();
    EXPECT_EQ(Taken(), XFWRITE);
    EXPECT_EQ(MemGet("/m/halle.sc1"), "alt");
    EXPECT_EQ(MemList().size(), 1u);
}

namespace
{
/// The steps that end a replacement, in the order in which they reach the disk.
namespace recorded
{
const CdeDISK *inner;
string steps;

ssize_t Write(int fd, const void *blk, size_t size)
{
    steps += "write ";
    return inner->write(fd, blk, size);
}

int Sync(int fd)
{
    steps += "sync ";
    return inner->sync(fd);
}

int Close(int fd)
{
    steps += "close ";
    return inner->close(fd);
}

int Rename(const char *from, const char *to)
{
    steps += "rename ";
    return inner->rename(from, to);
}
} // namespace recorded
} // namespace

TEST(Replacing, HasTheBytesOnTheDiskBeforeTheyTakeTheTargetsPlace)
{
    MemDisk mem;
    CdeFILE file;
    file.OpenReplacing("\\m\\halle.sc1");
    file.Write("neu", 3);
    recorded::inner = disk;
    CdeDISK table = *disk;
    table.write = recorded::Write;
    table.sync = recorded::Sync;
    table.close = recorded::Close;
    table.rename = recorded::Rename;
    disk = &table;
    file.Close();
    disk = recorded::inner;
    EXPECT_EQ(recorded::steps, "write sync close rename ");
}

namespace
{
/// What a fault of each kind may end in while a file is replaced.
bool IsCodeOf(const FaultRun &run)
{
    string code = run.code;
    if (run.fired == 0)
        return code == XNULL;
    switch (run.kind) {
    case FAULT::ALLOC:
        return code == XALLOC;
    case FAULT::OPEN:
        return code == XFCREATE;
    case FAULT::SEEK:
    case FAULT::CLOSE: // the look at the former file has one too
        return code == XFCREATE || code == XFWRITE;
    default:
        return code == XFWRITE;
    }
}
} // namespace

TEST(FaultsInReplacing, LeaveTheOldFileWholeAndNothingElse)
{
    MemDisk mem;
    const string before(1000, 'a'), after(200000, 'n');
    for (bool exists : {false, true}) {
        auto prepare = [&] {
            for (const string &path : MemList())
                MemErase(path);
            if (exists)
                MemPut("/m/halle.sc1", before);
        };
        auto check = [&](const FaultRun &run) {
            EXPECT_TRUE(IsCodeOf(run)) << run.code;
            EXPECT_EQ(MemOpenFiles(), 0);
            string expected = run.fired == 0 ? after : exists ? before : "";
            EXPECT_EQ(MemGet("/m/halle.sc1"), expected);
            EXPECT_EQ(MemList().size(), run.fired == 0 || exists ? 1u : 0u);
        };
        int hits = SweepFaults(
            prepare, [&] { Replace("\\m\\halle.sc1", after); }, check);
        EXPECT_GE(hits, 2 * (exists ? 14 : 11));
    }
}

TEST(FaultsInReplacing, OnTheRealDiskLeaveNoDescriptorAndNoTemporary)
{
    FOLDER folder;
    int before = OpenDescriptors();
    auto check = [&](const FaultRun &run) {
        EXPECT_TRUE(IsCodeOf(run)) << run.code;
        EXPECT_EQ(OpenDescriptors(), before);
        EXPECT_EQ(folder.List(), std::set<string>{"halle.sc1"});
        EXPECT_EQ(folder.Get("halle.sc1"), run.fired == 0 ? "neu" : "alt");
    };
    SweepFaults([&] { folder.Put("halle.sc1", "alt"); },
                [&, name = folder.Name("halle.sc1")] { Replace(name, "neu"); }, check);
}

TEST(FaultsInReplacing, ATemporaryThatCannotBeRemovedIsTheWorstThatStays)
{
    MemDisk mem;
    MemPut("/m/halle.sc1", "alt");
    {
        CdeFILE file;
        file.OpenReplacing("\\m\\halle.sc1");
        FaultArm arm(FAULT::UNLINK, 1, true);
    }
    EXPECT_EQ(MemList().size(), 1u);
    {
        FaultArm arm(FAULT::UNLINK, 1, true);
        CdeFILE file;
        file.OpenReplacing("\\m\\halle.sc1");
    }
    EXPECT_STREQ(xCode, XNULL);
    EXPECT_EQ(MemGet("/m/halle.sc1"), "alt");
    EXPECT_EQ(MemList().size(), 2u);
}
