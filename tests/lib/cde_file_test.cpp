#include "lib/cde.h"
#include "lib/xfail.h"

#include "support/chance.h"
#include "support/child.h"
#include "support/folder.h"
#include "support/memdisk.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstring>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>

#include "lib/xon.h"

namespace
{
using std::string;

/// Takes the pending failure off and tells what it was.
string Taken()
{
    string code = xCode;
    xCode = XNULL;
    return code;
}

/// All bytes from the present position on, one by one.
string ReadAll(CdeFILE &file)
{
    string bytes;
    for (;;) {
        char c;
        file.Read(&c, 1);
        if (xCode != XNULL)
            break;
        bytes.push_back(c);
    }
    EXPECT_EQ(Taken(), XFREAD);
    return bytes;
}

void WriteBytes(CdeFILE &file, const string &bytes)
{
    file.Write(bytes.data(), static_cast<int>(bytes.size()));
}

/// A text in which every place differs from its neighbours and from those a buffer away.
string Pattern(int length)
{
    string bytes(static_cast<size_t>(length), '\0');
    for (size_t i = 0; i < bytes.size(); ++i)
        bytes[i] = static_cast<char>(i * 7 + i / 251);
    return bytes;
}
} // namespace

TEST(CdeFile, ModesOpenAppendAndCreate)
{
    struct {
        const char *mode;
        const char *before; // NULL: there is no file
        const char *code;
        const char *read;  // what can be read after opening
        const char *after; // when "XY" has been written after that and the file closed
    } rows[] = {
        {"o", NULL, "XFOPEN", "", NULL},
        {"o", "abc", XNULL, "abc", "abcXY"},
        {"a", NULL, XNULL, "", "XY"},
        {"a", "abc", XNULL, "abc", "abcXY"},
        {"c", NULL, XNULL, "", "XY"},
        {"c", "abc", XNULL, "", "XY"},
        {"ca", "abc", XNULL, "abc", "abcXY"},
        {"aco", NULL, "XFOPEN", "", NULL},
        {"create", "abc", XNULL, "abc", "abcXY"}, // `a` comes before `c`
        {"go on", "abc", XNULL, "abc", "abcXY"},
    };
    MemDisk mem;
    for (const auto &row : rows) {
        MemErase("/m/f");
        if (row.before)
            MemPut("/m/f", row.before);
        CdeFILE file;
        file.Open("\\m\\f", row.mode);
        EXPECT_EQ(Taken(), row.code) << row.mode;
        EXPECT_EQ(file.IsOpen(), row.code == XNULL);
        EXPECT_EQ(MemHas("/m/f"), row.after != NULL);
        if (file.IsOpen()) {
            EXPECT_EQ(ReadAll(file), row.read) << row.mode;
            WriteBytes(file, "XY");
            file.Close();
            EXPECT_EQ(MemGet("/m/f"), row.after) << row.mode;
        }
    }
    EXPECT_STREQ(xFOpenName, "\\m\\f");
}

TEST(CdeFile, OpenWritesInPlace)
{
    MemDisk mem;
    MemPut("/m/f", "abcdef");
    CdeFILE file;
    file.Open("\\m\\f", "o");
    file.Seek(2);
    WriteBytes(file, "XY");
    EXPECT_EQ(file.Tell(), 4);
    EXPECT_EQ(ReadAll(file), "ef");
    file.Close();
    EXPECT_EQ(MemGet("/m/f"), "abXYef");
}

TEST(CdeFile, WithoutAModeEndsTheProgramEvenIfTheFileExists)
{
    MemDisk mem;
    MemPut("/m/f", "abc");
    for (const char *mode : {"", "r+b", "O", "x"}) {
        EXPECT_TRUE(AbortsWith("CdeFILE: Should be specified open mode", [&] {
            CdeFILE file;
            file.Open("\\m\\f", mode);
        })) << mode;
    }
}

TEST(CdeFile, ThatCannotBeOpenedRaisesTheCodeOfItsMode)
{
    FOLDER folder;
    std::filesystem::create_directory(folder.Path("folder"));
    mkfifo(folder.Path("pipe").c_str(), 0600);
    string names[] = {
        folder.Name("folder"),          // a folder
        folder.Name("pipe"),            // has no positions
        folder.Name("missing/file"),    // in no folder
        folder.Name(string(256, 'x')),  // the file system has no such long names
        string(NATIVE_MAX, '\\') + "f", // nor have we
        "",
    };
    int before = OpenDescriptors();
    for (const string &name : names) {
        for (const char *mode : {"o", "a", "c"}) {
            CdeFILE file;
            file.Open(name.c_str(), mode);
            EXPECT_EQ(Taken(), *mode == 'o' ? XFOPEN : XFCREATE) << mode << " of " << name;
            EXPECT_EQ(string(*mode == 'o' ? xFOpenName : xFCreateName), name.substr(0, 255));
            EXPECT_FALSE(file.IsOpen());
            EXPECT_STREQ(file.Name(), "???");
        }
    }
    EXPECT_EQ(OpenDescriptors(), before);
}

TEST(CdeFile, ThatMayNotBeWrittenIsNeitherOpenedNorEmptied)
{
    FOLDER folder;
    folder.Put("file", "abc");
    chmod(folder.path.c_str(), 0755);
    chmod(folder.Path("file").c_str(), 0444);
    PLAINUSER user;
    CdeFILE file;
    file.Open(folder.Name("file").c_str(), "o");
    EXPECT_EQ(Taken(), XFOPEN);
    file.Open(folder.Name("file").c_str(), "c");
    EXPECT_EQ(Taken(), XFCREATE);
    EXPECT_EQ(folder.Get("file"), "abc");
}

TEST(CdeFile, OfAGermanNameLiesUnderItsNativeName)
{
    FOLDER folder;
    CdeFILE file;
    file.Open(folder.Name("Prüfhalle 5 €.sc1").c_str(), "c");
    WriteBytes(file, "abc");
    file.Close();
    EXPECT_EQ(folder.List(), std::set<string>{"Prüfhalle 5 €.sc1"});
}

TEST(CdeFile, IsOpenedAsNamedAndShowsTheNormalisedName)
{
    MemDisk mem;
    CdeFILE file;
    EXPECT_STREQ(file.Name(), "???");
    file.Open(" \\m\\f. ", "c");
    EXPECT_TRUE(MemHas(" /m/f. "));
    EXPECT_STREQ(file.Name(), "\\m\\f");
    file.Close();
    EXPECT_STREQ(file.Name(), "???");
}

TEST(CdeFile, OpenClosesWhatIsOpenFirst)
{
    MemDisk mem;
    CdeFILE file;
    file.Open("\\m\\f", "c");
    WriteBytes(file, "abc");
    file.Open("\\m\\g", "c");
    EXPECT_EQ(MemGet("/m/f"), "abc");
    EXPECT_EQ(MemOpenFiles(), 1);
    EXPECT_STREQ(file.Name(), "\\m\\g");
}

TEST(CdeFile, MayBeOpenedAgainByItsOwnName)
{
    MemDisk mem;
    CdeFILE file;
    file.Open("\\m\\f", "c");
    WriteBytes(file, "abc");
    file.Open(file.Name(), "o");
    EXPECT_STREQ(file.Name(), "\\m\\f");
    EXPECT_EQ(ReadAll(file), "abc");
}

TEST(CdeFile, CloseOfAClosedFileDoesNothing)
{
    CdeFILE file;
    file.Close();
    EXPECT_FALSE(file.IsOpen());
    EXPECT_STREQ(xCode, XNULL);
}

TEST(CdeFile, WithAFailurePendingNeitherOpensNorCloses)
{
    MemDisk mem;
    MemPut("/m/g", "abc");
    CdeFILE file;
    file.Open("\\m\\f", "c");
    xCode = XGENERAL;
    file.Close();
    file.Open("\\m\\g", "c");
    file.OpenReplacing("\\m\\g");
    EXPECT_STREQ(file.Name(), "\\m\\f");
    EXPECT_EQ(file.Peek(), static_cast<signed char>(CDE_EOF));
    EXPECT_EQ(file.Tell(), 0);
    file.Seek(-1);
    file.Walk();
    file.Require(1000);
    WriteBytes(file, "abc");
    EXPECT_EQ(Taken(), XGENERAL);
    file.Close();
    EXPECT_EQ(MemGet("/m/f"), "");
    EXPECT_EQ(MemGet("/m/g"), "abc");
}

TEST(CdeFile, OperationsOnAClosedFileAreFaultsOfTheProgram)
{
    struct {
        const char *condition;
        void (*call)(CdeFILE &);
    } rows[] = {
        {"f != NULL", [](CdeFILE &f) { f.Peek(); }},
        {"f != NULL", [](CdeFILE &f) { f.Write("a", 1); }},
        {"f != NULL",
         [](CdeFILE &f) {
             char c;
             f.Read(&c, 1);
         }},
        {"f != NULL", [](CdeFILE &f) { f.Tell(); }},
        {"f != NULL", [](CdeFILE &f) { f.Seek(0); }},
        {"f != NULL", [](CdeFILE &f) { f.Walk(); }},
        {"f != NULL", [](CdeFILE &f) { f.Require(1); }},
        {"f != NULL", [](CdeFILE &f) { f.PutInt(1); }},
    };
    for (const auto &row : rows) {
        CdeFILE file;
        EXPECT_TRUE(AbortsOnAssertion(row.condition, "lib/cde_file.cpp", [&] { row.call(file); }));
    }
}

TEST(CdeFile, BadArgumentsAreFaultsOfTheProgram)
{
    struct {
        const char *condition;
        void (*call)(CdeFILE &);
    } rows[] = {
        {"blk != NULL", [](CdeFILE &f) { f.Write(NULL, 1); }},
        {"size >= 0", [](CdeFILE &f) { f.Write("a", -1); }},
        {"blk != NULL", [](CdeFILE &f) { f.Read(NULL, 1); }},
        {"size >= 0",
         [](CdeFILE &f) {
             char c;
             f.Read(&c, -1);
         }},
        {"pos >= 0", [](CdeFILE &f) { f.Seek(-1); }},
        {"name != NULL", [](CdeFILE &f) { f.OpenReplacing(NULL); }},
    };
    MemDisk mem;
    for (const auto &row : rows) {
        CdeFILE file;
        file.Open("\\m\\f", "c");
        EXPECT_TRUE(AbortsOnAssertion(row.condition, "lib/cde_file.cpp", [&] { row.call(file); }));
    }
}

TEST(CdeFile, BlocksOfNoBytesChangeNothing)
{
    MemDisk mem;
    MemPut("/m/f", "abc");
    CdeFILE file;
    char c = '#';
    file.Open("\\m\\f", "a");
    file.Write("", 0);
    EXPECT_EQ(file.Tell(), 0);
    file.Seek(3);
    file.Read(&c, 0);
    EXPECT_EQ(c, '#');
    file.Seek(1000);
    file.Read(&c, 0);
    EXPECT_STREQ(xCode, XNULL);
    file.Close();
    EXPECT_EQ(MemGet("/m/f"), "abc");
}

TEST(Peek, LeavesThePositionAndGivesTheEndMarkAtTheEnd)
{
    MemDisk mem;
    MemPut("/m/f", "\xA3\xA0z");
    CdeFILE file;
    file.Open("\\m\\f", "o");
    for (int pos : {0, 1, 2, 3}) {
        const signed char expected[] = {-93, -96, 'z', -96}; // a stored 0xA0 cannot be told from the end
        file.Seek(pos);
        EXPECT_EQ(file.Peek(), expected[pos]);
        EXPECT_EQ(file.Peek(), expected[pos]);
        EXPECT_EQ(file.Tell(), pos);
    }
}

TEST(Read, ThatFallsShortNamesTheFile)
{
    MemDisk mem;
    MemPut("/m/f", "abc");
    CdeFILE file;
    char block[8];
    file.Open("\\m\\f", "o");
    file.Read(block, 4);
    EXPECT_EQ(Taken(), XFREAD);
    EXPECT_STREQ(xFReadName, "\\m\\f");
}

TEST(Write, ToAFullDiskShowsAtTheLatestWhenTheFileIsClosed)
{
    CdeFILE small;
    small.Open("\\dev\\full", "o");
    WriteBytes(small, "abc");
    EXPECT_STREQ(xCode, XNULL) << "the bytes wait in the buffer";
    small.Close();
    EXPECT_EQ(Taken(), XFWRITE);
    EXPECT_STREQ(xFWriteName, "\\dev\\full");
    EXPECT_FALSE(small.IsOpen());
    EXPECT_STREQ(small.Name(), "???");
    small.Close();
    EXPECT_STREQ(xCode, XNULL);

    void (*const later[])(CdeFILE &) = {
        [](CdeFILE &f) { f.Seek(0); },
        [](CdeFILE &f) { f.Peek(); },
        [](CdeFILE &f) {
            char c;
            f.Read(&c, 1);
        },
        [](CdeFILE &f) { f.Walk(); },
        [](CdeFILE &f) { f.Require(1); },
        [](CdeFILE &f) { WriteBytes(f, Pattern(200000)); },
    };
    for (auto operation : later) {
        CdeFILE file;
        file.Open("\\dev\\full", "o");
        WriteBytes(file, "abc");
        operation(file);
        EXPECT_EQ(Taken(), XFWRITE);
        file.Close();
        EXPECT_EQ(Taken(), XFWRITE) << "bytes are missing for good, whatever succeeds afterwards";
    }
}

TEST(Destructor, KeepsWhatWasWrittenAndReportsNothing)
{
    MemDisk mem;
    {
        CdeFILE file;
        file.Open("\\m\\f", "c");
        WriteBytes(file, "abc");
        xCode = XGENERAL;
    }
    EXPECT_EQ(Taken(), XGENERAL);
    EXPECT_EQ(MemGet("/m/f"), "abc");
    EXPECT_EQ(MemOpenFiles(), 0);
    {
        CdeFILE full;
        full.Open("\\m\\g", "c");
        MemLimit(0);
        WriteBytes(full, "abc");
    }
    EXPECT_STREQ(xCode, XNULL);
    EXPECT_EQ(MemOpenFiles(), 0);
}

namespace
{
/// What a file is, as a string and a position.
struct TWIN {
    string bytes;
    size_t pos = 0;
    bool append = false;

    void Write(const string &written)
    {
        if (append)
            pos = bytes.size();
        if (pos + written.size() > bytes.size())
            bytes.resize(pos + written.size());
        bytes.replace(pos, written.size(), written);
        pos += written.size();
    }
    bool Has(size_t size) const { return pos <= bytes.size() && size <= bytes.size() - pos; }
};

/// Sizes around the buffer's, and small ones most of the time.
int RandomSize(CHANCE &chance)
{
    return chance.One(20) ? chance.Int(65000, 140000) : chance.One(5) ? chance.Int(0, 5000) : chance.Int(0, 12);
}

void StepBoth(CdeFILE &file, TWIN &twin, CHANCE &chance)
{
    int size = RandomSize(chance);
    switch (chance.Int(0, 5)) {
    case 0:
    case 1: {
        string written = Pattern(size + 3).substr(3);
        if (size == 0)
            break;
        WriteBytes(file, written);
        twin.Write(written);
        break;
    }
    case 2: {
        string block(static_cast<size_t>(size), '#');
        file.Read(block.data(), size);
        if (twin.Has(block.size())) {
            EXPECT_EQ(block, twin.bytes.substr(twin.pos, block.size()));
            twin.pos += block.size();
        } else {
            EXPECT_EQ(Taken(), XFREAD);
            file.Seek(0);
            twin.pos = 0;
        }
        break;
    }
    case 3:
        twin.pos =
            static_cast<size_t>(chance.Int(0, static_cast<int>(twin.bytes.size()) + (chance.One(10) ? 20 : 0)));
        file.Seek(static_cast<int>(twin.pos));
        break;
    case 4:
        EXPECT_EQ(file.Peek(), static_cast<signed char>(twin.Has(1) ? twin.bytes[twin.pos] : '\xA0'));
        break;
    case 5: {
        long long left = static_cast<long long>(twin.bytes.size()) - static_cast<long long>(twin.pos);
        file.Require(left);
        EXPECT_STREQ(xCode, XNULL);
        file.Require(left + 1);
        EXPECT_EQ(Taken(), left < 0 ? XNULL : XFREAD);
        break;
    }
    }
    EXPECT_EQ(file.Tell(), static_cast<int>(twin.pos));
}

/// A disk that interrupts each call once and never does more than a few bytes at a time.
namespace nervous
{
const CdeDISK *inner;
bool interrupted = false;

bool Interrupts()
{
    interrupted = !interrupted;
    errno = EINTR;
    return interrupted;
}

int Open(const char *path, int flags, int mode)
{
    return Interrupts() ? -1 : inner->open(path, flags, mode);
}

ssize_t Read(int fd, void *blk, size_t size)
{
    return Interrupts() ? -1 : inner->read(fd, blk, std::min<size_t>(size, 1 + size / 3));
}

ssize_t Write(int fd, const void *blk, size_t size)
{
    return Interrupts() ? -1 : inner->write(fd, blk, std::min<size_t>(size, 1 + size / 3));
}

int Sync(int fd)
{
    return Interrupts() ? -1 : inner->sync(fd);
}

/// While it lives, `disk` is one of these over the former one.
class Disk
{
public:
    Disk() : table(*disk)
    {
        inner = disk;
        table.open = Open;
        table.read = Read;
        table.write = Write;
        table.sync = Sync;
        disk = &table;
    }
    ~Disk() { disk = inner; }

private:
    CdeDISK table;
};
} // namespace nervous

void RunRandomPrograms(unsigned starts)
{
    for (unsigned start = 0; start < starts && !testing::Test::HasFailure(); ++start) {
        CHANCE chance(start);
        TWIN twin;
        CdeFILE file;
        const char *mode = &"oac"[chance.Int(0, 2)];
        string before = Pattern(RandomSize(chance));
        MemPut("/m/f", before);
        file.Open("\\m\\f", string(mode, 1).c_str());
        twin.append = *mode == 'a';
        if (*mode != 'c')
            twin.bytes = before;
        for (int step = 0; step < 200 && !testing::Test::HasFailure(); ++step)
            StepBoth(file, twin, chance);
        file.Close();
        EXPECT_EQ(MemGet("/m/f"), twin.bytes) << "start " << start << ", mode " << *mode;
    }
}
} // namespace

TEST(CdeFile, RandomProgramsAgreeWithAStringAndAPosition)
{
    MemDisk mem;
    RunRandomPrograms(150);
}

TEST(CdeFile, InterruptedAndPartialCallsOfTheSystemAreGoneOnWith)
{
    MemDisk mem;
    nervous::Disk disturbed;
    RunRandomPrograms(30);
    CdeFILE file;
    file.OpenReplacing("\\m\\g");
    WriteBytes(file, Pattern(100000));
    file.Close();
    EXPECT_EQ(MemGet("/m/g"), Pattern(100000));
}

TEST(Temporary, LivesInTheTemporaryFolderUntilItIsClosed)
{
    FOLDER folder;
    {
        TMPDIR here(folder.path);
        CdeFILE one, two;
        one.Open(NULL, "o");
        two.Open(NULL, "no mode at all, and it does not matter");
        EXPECT_EQ(folder.List().size(), 2u);
        EXPECT_STRNE(one.Name(), two.Name());
        EXPECT_EQ(string(one.Name()).find(folder.Name("")), 0u) << one.Name().operator const char *();
        WriteBytes(one, "abc");
        one.Seek(1);
        EXPECT_EQ(ReadAll(one), "bc");
        one.Close();
        EXPECT_STREQ(one.Name(), "???");
        EXPECT_EQ(folder.List().size(), 1u) << "gone with Close";
    }
    EXPECT_EQ(folder.List().size(), 0u) << "gone with the object";
    TMPDIR missing(folder.Path("missing"));
    CdeFILE file;
    file.Open(NULL, "c");
    EXPECT_EQ(Taken(), XFCREATE);
    EXPECT_EQ(string(xFCreateName).find(folder.Name("missing/")), 0u) << xFCreateName;
    EXPECT_STREQ(file.Name(), "???");
}

TEST(Temporary, ThatHasGoneAlreadyIsAWriteFailure)
{
    MemDisk mem;
    CdeFILE file;
    file.Open(NULL, "");
    string name = file.Name().operator const char *();
    MemErase(MemList().at(0));
    file.Close();
    EXPECT_EQ(Taken(), XFWRITE);
    EXPECT_EQ(xFWriteName, name);
    EXPECT_FALSE(file.IsOpen());
}

TEST(Require, AsksTheDiskHowMuchIsThere)
{
    MemDisk mem;
    MemPut("/m/f", Pattern(100000));
    CdeFILE file;
    file.Open("\\m\\f", "o");
    struct {
        int pos;
        long long bytes;
        const char *code;
    } rows[] = {
        {0, 100000, XNULL},  {0, 100001, XFREAD},    {0, 0, XNULL},
        {0, -5, XNULL},      {99999, 1, XNULL},      {99999, 2, XFREAD},
        {100000, 1, XFREAD}, {0, LLONG_MAX, XFREAD}, {50000, 50000, XNULL},
    };
    for (const auto &row : rows) {
        char c;
        file.Seek(row.pos);
        file.Require(row.bytes);
        EXPECT_EQ(Taken(), row.code) << row.pos << " " << row.bytes;
        EXPECT_EQ(file.Tell(), row.pos);
        if (row.pos < 100000) {
            file.Read(&c, 1);
            EXPECT_EQ(c, Pattern(100000)[static_cast<size_t>(row.pos)]);
        }
    }
}

TEST(BigFile, EndsForUsWherePositionsEnd)
{
    FOLDER folder;
    folder.Put("file", "abc");
    string name = folder.Name("file");
    char block[16];
    CdeFILE file;
    ASSERT_EQ(truncate(folder.Path("file").c_str(), INT_MAX), 0);
    file.Open(name.c_str(), "o");
    file.Walk();
    EXPECT_STREQ(xCode, XNULL);
    file.Seek(INT_MAX - 8);
    file.Read(block, 8);
    EXPECT_STREQ(xCode, XNULL);
    EXPECT_EQ(file.Tell(), INT_MAX);
    EXPECT_EQ(file.Peek(), static_cast<signed char>(CDE_EOF));
    file.Write("z", 1);
    EXPECT_EQ(Taken(), XFWRITE);
    file.Close();
    EXPECT_EQ(Taken(), XFWRITE);

    ASSERT_EQ(truncate(folder.Path("file").c_str(), off_t{INT_MAX} + 1), 0);
    file.Open(name.c_str(), "o");
    file.Walk();
    EXPECT_EQ(Taken(), XFREAD);
    EXPECT_STREQ(xFReadName, name.c_str());
    file.Read(block, 3);
    EXPECT_EQ(string(block, 3), "abc");
    file.Seek(INT_MAX - 8);
    file.Read(block, 8);
    EXPECT_EQ(Taken(), XFREAD);
    file.Seek(INT_MAX);
    file.Peek();
    EXPECT_EQ(Taken(), XFREAD);
    file.Close();
    file.Open(name.c_str(), "a");
    file.Write("z", 1);
    EXPECT_EQ(Taken(), XFWRITE);
    EXPECT_GE(file.Tell(), 0);
}
