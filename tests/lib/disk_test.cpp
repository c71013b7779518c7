#include "lib/disk.h"

#include "support/child.h"
#include "support/folder.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace
{
using std::string;

string ToUtf8(const string &text, int max = 1000, bool whole = true)
{
    string dest(static_cast<size_t>(max) + 1, '#');
    EXPECT_EQ(TextToUtf8(dest.data(), text.c_str(), max), whole) << text;
    EXPECT_EQ(dest[static_cast<size_t>(max)], '#') << "written beyond the bound";
    return dest.c_str();
}

string FromUtf8(const string &text, int max = 1000, bool whole = true)
{
    string dest(static_cast<size_t>(max) + 1, '#');
    EXPECT_EQ(TextFromUtf8(dest.data(), text.c_str(), max), whole) << text;
    EXPECT_EQ(dest[static_cast<size_t>(max)], '#') << "written beyond the bound";
    return dest.c_str();
}

mode_t ModeOf(const string &path)
{
    struct stat its;
    EXPECT_EQ(stat(path.c_str(), &its), 0);
    return its.st_mode & 07777;
}
} // namespace

TEST(CharacterSet, EveryByteComesBackFromUtf8)
{
    string all;
    for (int c = 1; c < 256; ++c)
        all.push_back(static_cast<char>(c));
    string utf8 = ToUtf8(all);
    EXPECT_GT(utf8.size(), all.size());
    EXPECT_EQ(FromUtf8(utf8), all);
}

TEST(CharacterSet, IsWindows1252)
{
    struct {
        const char *text;
        const char *utf8;
    } rows[] = {
        {"", ""},
        {"Halle 7\n\t~", "Halle 7\n\t~"},
        {"\xE4\xF6\xFC\xC4\xD6\xDC\xDF", "äöüÄÖÜß"},
        {"\x80 \x8A \x9F \x85", "€ Š Ÿ …"},
        {"m\xB2 \xB0"
         "C \xB5",
         "m² °C µ"},
        {"\x93gut\x94 \x96 \x97", "“gut” – —"},
        {"\xA0\xFF", "\u00A0ÿ"},
        {"\x81\x8D\x8F\x90\x9D", "\xC2\x81\xC2\x8D\xC2\x8F\xC2\x90\xC2\x9D"},
    };
    for (const auto &row : rows) {
        EXPECT_EQ(ToUtf8(row.text), row.utf8);
        EXPECT_EQ(FromUtf8(row.utf8), row.text);
    }
}

TEST(CharacterSet, WhatItCannotHoldIsToldAndShownAsQuestionMark)
{
    struct {
        const char *utf8;
        const char *text;
    } rows[] = {
        {"a\u0159b", "a?b"},     // not in the set
        {"\u65E5\u672C", "??"},  // three bytes each
        {"x\U0001F525y", "x?y"}, // four bytes
        {"\xC2\x80", "?"},       // a control code whose byte means something else
        {"\xE4\xF6", "??"},      // no UTF-8 at all
        {"\x80", "?"},           // a continuation without a start
        {"\xC3", "?"},           // cut
        {"\xE2\x82", "??"},      // cut
        {"\xC3"
         "A",
         "?A"},                            // the start of a character, then another one
        {"\xC0\xAF", "??"},                // overlong
        {"\xE0\x80\xAF", "???"},           // overlong
        {"\xF0\x80\x80\xAF", "????"},      // overlong
        {"\xED\xA0\x80", "???"},           // half a surrogate pair
        {"\xF4\x90\x80\x80", "????"},      // behind the last code point
        {"\xF8\x88\x80\x80\x80", "?????"}, // five bytes
        {"\xFF\xFE", "??"},
    };
    for (const auto &row : rows)
        EXPECT_EQ(FromUtf8(row.utf8, 100, false), row.text);
}

TEST(CharacterSet, TextIsCutBetweenCharactersAtTheBound)
{
    EXPECT_EQ(ToUtf8("abc", 4), "abc");
    EXPECT_EQ(ToUtf8("abc", 3, false), "ab");
    EXPECT_EQ(ToUtf8("abc", 1, false), "");
    EXPECT_EQ(ToUtf8("", 1), "");
    EXPECT_EQ(ToUtf8("a\xE4", 4), "aä");
    EXPECT_EQ(ToUtf8("a\xE4", 3, false), "a");
    EXPECT_EQ(ToUtf8("\x80", 3, false), "");
    EXPECT_EQ(ToUtf8("\x80", 4), "€");
    EXPECT_EQ(FromUtf8("aä", 3), "a\xE4");
    EXPECT_EQ(FromUtf8("aä", 2, false), "a");
    EXPECT_EQ(FromUtf8("ä", 1, false), "");
}

TEST(NativeName, SwapsTheSeparatorsAndTheCharacterSet)
{
    char path[NATIVE_MAX], name[256];
    EXPECT_TRUE(NameToNative(path, "\\home\\h\xE4nsel\\halle.sc1", sizeof path));
    EXPECT_STREQ(path, "/home/hänsel/halle.sc1");
    EXPECT_TRUE(NameFromNative(name, path, sizeof name));
    EXPECT_STREQ(name, "\\home\\h\xE4nsel\\halle.sc1");
}

TEST(NativeName, ThatCannotBeNamedIsRefusedNotMangled)
{
    char name[256], small[8];
    EXPECT_FALSE(NameFromNative(name, "/tmp/a\\b", sizeof name)) << "'\\' would part folders";
    EXPECT_STREQ(name, "\\tmp\\a?b");
    EXPECT_FALSE(NameFromNative(name, "/tmp/\u0159eka", sizeof name));
    EXPECT_STREQ(name, "\\tmp\\?eka");
    EXPECT_FALSE(NameFromNative(small, "/tmp/halle", sizeof small));
    EXPECT_STREQ(small, "\\tmp\\ha");
    EXPECT_FALSE(NameToNative(small, "\\tmp\\halle", sizeof small));
    EXPECT_STREQ(small, "/tmp/ha");
}

TEST(Conversion, WithoutTextOrRoomIsAFaultOfTheProgram)
{
    char text[4];
    EXPECT_TRUE(
        AbortsOnAssertion("dest != NULL && src != NULL", "lib/disk.cpp", [&] { TextToUtf8(text, NULL, 4); }));
    EXPECT_TRUE(
        AbortsOnAssertion("dest != NULL && src != NULL", "lib/disk.cpp", [&] { TextFromUtf8(NULL, "a", 4); }));
    EXPECT_TRUE(AbortsOnAssertion("max > 0", "lib/disk.cpp", [&] { TextToUtf8(text, "a", 0); }));
    EXPECT_TRUE(AbortsOnAssertion("max > 0", "lib/disk.cpp", [&] { TextFromUtf8(text, "a", -1); }));
}

TEST(PosixDisk, GivesAFileTheLikenessOfAnother)
{
    FOLDER folder;
    folder.Put("model", "");
    folder.Put("file", "");
    for (mode_t mode : {0600, 0644, 0664, 0440, 0755}) {
        chmod(folder.Path("model").c_str(),
              mode | 04000); // what a program may do by its owner's right is no likeness
        int model = disk->open(folder.Path("model").c_str(), O_RDONLY, 0);
        int file = disk->open(folder.Path("file").c_str(), O_RDONLY, 0);
        EXPECT_EQ(disk->likeness(file, model), 0);
        EXPECT_EQ(ModeOf(folder.Path("file")), mode);
        disk->close(model);
        disk->close(file);
    }
}

TEST(PosixDisk, FindsNoLikenessInWhatIsNoRegularFile)
{
    FOLDER folder;
    folder.Put("file", "");
    int model = disk->open("/dev/null", O_WRONLY, 0);
    int file = disk->open(folder.Path("file").c_str(), O_RDONLY, 0);
    mode_t before = ModeOf(folder.Path("file"));
    EXPECT_EQ(disk->likeness(file, model), -1);
    EXPECT_EQ(errno, EINVAL);
    EXPECT_EQ(disk->likeness(file, -1), -1);
    EXPECT_EQ(ModeOf(folder.Path("file")), before);
    disk->close(model);
    disk->close(file);
}

TEST(PosixDisk, RenamesOverAFileAndLeavesNoDescriptor)
{
    FOLDER folder;
    folder.Put("new", "neu");
    folder.Put("old", "alt");
    int before = OpenDescriptors();
    EXPECT_EQ(disk->rename(folder.Path("new").c_str(), folder.Path("old").c_str()), 0);
    EXPECT_EQ(folder.Get("old"), "neu");
    EXPECT_EQ(folder.List(), std::set<string>{"old"});
    EXPECT_EQ(disk->rename(folder.Path("new").c_str(), folder.Path("old").c_str()), -1);
    EXPECT_EQ(errno, ENOENT);
    EXPECT_EQ(OpenDescriptors(), before);
}

TEST(PosixDisk, RenamesInTheWorkingFolderToo)
{
    FOLDER folder;
    folder.Put("new", "neu");
    EXPECT_EQ(RunInChild([&] {
                  if (chdir(folder.path.c_str()) != 0 || disk->rename("new", "old") != 0)
                      _exit(1);
              }).exitCode,
              0);
    EXPECT_EQ(folder.Get("old"), "neu");
}

TEST(PosixDisk, TellsWhetherThereIsAFileOrAFolder)
{
    FOLDER folder;
    folder.Put("Verzeichnis für Maße.zec", "");
    EXPECT_TRUE(DiskHas(folder.Name("Verzeichnis für Maße.zec").c_str()));
    EXPECT_TRUE(DiskHas(folder.Name("").c_str()));
    EXPECT_FALSE(DiskHas(folder.Name("anders").c_str()));
    EXPECT_FALSE(DiskHas(folder.Name("Verzeichnis für Maße.zec/darin").c_str()));
    EXPECT_EQ(symlink("nirgends", folder.Path("Verweis").c_str()), 0);
    EXPECT_FALSE(DiskHas(folder.Name("Verweis").c_str()));
}

TEST(PosixDisk, TakesWhatItMayNotLookAtAsThere)
{
    FOLDER folder;
    folder.Put("file", "");
    std::string name = folder.Name("file");
    PLAINUSER plain;
    chmod(folder.path.c_str(), 0);
    EXPECT_TRUE(DiskHas(name.c_str()));
    chmod(folder.path.c_str(), 0700);
}

TEST(PosixDisk, DeletesAndRenamesByTheSystemsNames)
{
    FOLDER folder;
    folder.Put("Öl.zec", "neu");
    folder.Put("Öl.bak", "alt");
    EXPECT_TRUE(DiskRename(folder.Name("Öl.zec").c_str(), folder.Name("Öl.bak").c_str()));
    EXPECT_EQ(folder.List(), std::set<string>{"Öl.bak"});
    EXPECT_EQ(folder.Get("Öl.bak"), "neu");
    EXPECT_FALSE(DiskRename(folder.Name("Öl.zec").c_str(), folder.Name("Öl.bak").c_str()));
    EXPECT_TRUE(DiskDelete(folder.Name("Öl.bak").c_str()));
    EXPECT_FALSE(DiskDelete(folder.Name("Öl.bak").c_str()));
    EXPECT_TRUE(folder.List().empty());
}

TEST(PosixDisk, MakesAFolderLikeTheOneItStandsIn)
{
    FOLDER folder;
    for (mode_t mode : {0700, 0755, 01777, 02750}) {
        chmod(folder.path.c_str(), mode);
        ASSERT_TRUE(DiskMakeFolder(folder.Name("Kataloge").c_str()));
        struct stat its;
        ASSERT_EQ(stat(folder.Path("Kataloge").c_str(), &its), 0);
        EXPECT_TRUE(S_ISDIR(its.st_mode));
        EXPECT_EQ(its.st_mode & 07777, mode);
        EXPECT_FALSE(DiskMakeFolder(folder.Name("Kataloge").c_str())) << "there already";
        rmdir(folder.Path("Kataloge").c_str());
    }
    EXPECT_FALSE(DiskMakeFolder(folder.Name("fehlt/Kataloge").c_str()));
    EXPECT_TRUE(folder.List().empty());
}

TEST(PosixDisk, MakesAFolderInTheWorkingFolderAndAtTheRoot)
{
    FOLDER folder;
    EXPECT_EQ(RunInChild([&] {
                  if (chdir(folder.path.c_str()) != 0 || !DiskMakeFolder("Kataloge"))
                      _exit(1);
                  if (DiskMakeFolder("\\tmp")) // there already, and its model is found
                      _exit(2);
              }).exitCode,
              0);
    EXPECT_EQ(folder.List(), std::set<string>{"Kataloge"});
}

TEST(PosixDisk, KeepsItsDescriptorsFromOtherPrograms)
{
    FOLDER folder;
    int fd = disk->open(folder.Path("file").c_str(), O_RDWR | O_CREAT, 0600);
    EXPECT_TRUE(fcntl(fd, F_GETFD) & FD_CLOEXEC);
    disk->close(fd);
}
