#include "support/catalogcase.h"
#include "support/child.h"
#include "support/memdisk.h"
#include "win/application.h"
#include "win/guard.h"

#include <sys/stat.h>
#include <unistd.h>

namespace
{
using testdoor::DialogBox;

const UNITS first = {{"Alpha", 10, 1}, {"\xC4nderung", 20, 2}};
const UNITS second = {{"Beta", 30, 3}};
const UNITS third = {};

std::string FileOf(const UNITS &units)
{
    return EncodeItems(UnitItems(units));
}

class CatalogFile : public CatalogCase
{
protected:
    void SaveNew(const UNITS &units)
    {
        TestSimpleCatalog catalog;
        catalog.Put(units);
        catalog.Save();
    }
};

TEST_F(CatalogFile, LiesInTheCatalogueFolderUnderItsNameAndTheExtension)
{
    TestSimpleCatalog catalog(".TvAgreg");
    EXPECT_EQ(std::string(catalog.Path()), folder.Name("Katalogy/.TvAgreg.zec"));
    EXPECT_FALSE(catalog.IsLoaded());
    EXPECT_TRUE(catalog.IsEmpty());
    EXPECT_TRUE(folder.List().empty()) << "nothing is read or made yet";
}

TEST_F(CatalogFile, ASimpleOneHasItsTagItsVersionAndTheItemsInOrder)
{
    TestSimpleCatalog catalog(".TvTest", "TEST/ZEC", 7, 7);
    catalog.Put(first);
    catalog.Save();
    CdeITEMS items = UnitItems(first);
    items[0].number = 7;
    EXPECT_EQ(GetFile(".TvTest.zec"), EncodeItems(items));
    EXPECT_EQ(Files(), std::set<std::string>{".TvTest.zec"});
}

TEST_F(CatalogFile, ADividedOneHasASectionForEachGroup)
{
    const GROUPS groups = {{"W\xE4nde", {{"Ziegel", 0.5}, {"Beton", 2}}}, {"leer", {}}, {"Tore", {{"Tor", 3}}}};
    TestDividedCatalog catalog;
    catalog.Put(groups);
    catalog.Save();
    const CdeITEMS expected = {ItHeader("DCAT/PARTS/ZEC", 1),
                               ItSection(0),
                               ItStr("W\xE4nde"),
                               ItStr("Ziegel"),
                               ItReal(0.5),
                               ItStr("Beton"),
                               ItReal(2),
                               ItEnd(),
                               ItSection(0),
                               ItStr("leer"),
                               ItEnd(),
                               ItSection(0),
                               ItStr("Tore"),
                               ItStr("Tor"),
                               ItReal(3),
                               ItEnd()};
    EXPECT_EQ(GetFile(".StTest.zec"), EncodeItems(expected));
    TestDividedCatalog again;
    again.Load();
    EXPECT_EQ(again.Values(), groups);
}

TEST_F(CatalogFile, IsReadInItsOrderWithTheVersionOfTheHeader)
{
    PutFile(".TvTest.zec", FileOf(first));
    for (int version : {1, -1}) {
        TestSimpleCatalog catalog(".TvTest", "TEST/ZEC", 1, version);
        catalog.Load();
        EXPECT_TRUE(catalog.IsLoaded());
        EXPECT_EQ(catalog.Values(), first);
        EXPECT_EQ(static_cast<TestUnit *>(catalog.First())->version, 1);
        EXPECT_STREQ(static_cast<TestUnit *>(catalog.Last())->name, "\xC4nderung");
    }
    EXPECT_EQ(Files(), std::set<std::string>{".TvTest.zec"});
}

TEST_F(CatalogFile, ATagThatIsTooLongIsCutTheSameWayOnBothSides)
{
    TestSimpleCatalog writer(".TvTest", "A TAG OF MORE THAN THIRTY-ONE CHARACTERS");
    writer.Put(second);
    writer.Save();
    EXPECT_EQ(DecodeItems(GetFile(".TvTest.zec"))[0].text, "SCAT/A TAG OF MORE THAN THIRTY-");
    TestSimpleCatalog reader(".TvTest", "A TAG OF MORE THAN THIRTY-ONE CHARACTERS");
    reader.Load();
    EXPECT_EQ(reader.Values(), second);
}

TEST_F(CatalogFile, TwoSavesLeaveTheFormerVersionAndAThirdReplacesIt)
{
    SaveNew(first);
    EXPECT_EQ(Files(), std::set<std::string>{".TvTest.zec"});
    SaveNew(second);
    EXPECT_EQ(Files(), (std::set<std::string>{".TvTest.bak", ".TvTest.zec"}));
    EXPECT_EQ(GetFile(".TvTest.bak"), FileOf(first));
    EXPECT_EQ(GetFile(".TvTest.zec"), FileOf(second));
    SaveNew(third);
    EXPECT_EQ(Files(), (std::set<std::string>{".TvTest.bak", ".TvTest.zec"}));
    EXPECT_EQ(GetFile(".TvTest.bak"), FileOf(second));
    EXPECT_EQ(GetFile(".TvTest.zec"), FileOf(third));
}

TEST_F(CatalogFile, SavingMakesTheFolderLikeItsParent)
{
    chmod(folder.path.c_str(), 0750);
    SaveNew(first);
    struct stat its;
    ASSERT_EQ(stat(folder.Path("Katalogy").c_str(), &its), 0);
    EXPECT_EQ(its.st_mode & 07777, 0750u);
    EXPECT_EQ(GetFile(".TvTest.zec"), FileOf(first));
}

TEST_F(CatalogFile, AFolderThatCannotBeMadeIsTold)
{
    TEdcCtlgList::SetCatalogDirectory(folder.Name("fehlt/Katalogy").c_str(), "zec");
    TestSimpleCatalog catalog;
    catalog.Put(first);
    AnswerOk(TEXT_NO_FOLDER);
    catalog.Save();
    EXPECT_TRUE(folder.List().empty());
    EXPECT_EQ(catalog.Values(), first);
    EXPECT_STREQ(GetResString(TEXT_NO_FOLDER),
                 "Katalogverzeichnis kann nicht gebildet werden.\n\nKatalog ist nicht gespeichert und seine "
                 "Daten\ngehen unwiedererbringlich verloren.");
}

TEST_F(CatalogFile, NothingIsSavedThatIsNotLoaded)
{
    TestSimpleCatalog catalog;
    catalog.Save();
    EXPECT_TRUE(folder.List().empty());
}

TEST_F(CatalogFile, SelectingFromAMissingOneTellsSoAndMakesNoFile)
{
    TestSimpleCatalog simple;
    AnswerOk(TEXT_NOTHING_TO_PICK);
    EXPECT_EQ(simple.Select(), nullptr);
    TestDividedCatalog divided;
    AnswerOk(TEXT_NOTHING_TO_PICK);
    EXPECT_EQ(divided.Select(), nullptr);
    EXPECT_TRUE(folder.List().empty());
}

TEST_F(CatalogFile, EditingAMissingOneThatIsNotWantedRunsNoDialogAndSavesNothing)
{
    TestSimpleCatalog catalog;
    AnswerNo(TEXT_MAKE_NEW);
    catalog.Edit();
    EXPECT_FALSE(catalog.IsLoaded());
    catalog.Save();
    EXPECT_TRUE(folder.List().empty());
}

TEST_F(CatalogFile, EditingAMissingOneMakesANewOne)
{
    TestSimpleCatalog catalog;
    AnswerYes(TEXT_MAKE_NEW);
    Click(105);
    catalog.Edit();
    EXPECT_TRUE(catalog.IsLoaded());
    catalog.Save();
    EXPECT_EQ(GetFile(".TvTest.zec"), FileOf({}));
}

TEST_F(CatalogFile, TheBackupTakesThePlaceOfAMissingFileOnTheUsersWord)
{
    PutFile(".TvTest.bak", FileOf(first));
    TestSimpleCatalog catalog;
    AnswerYes(TEXT_TAKE_BACKUP);
    catalog.Load();
    EXPECT_EQ(catalog.Values(), first);
    EXPECT_EQ(Files(), std::set<std::string>{".TvTest.zec"});
}

TEST_F(CatalogFile, ABackupThatIsNotWantedStaysWhereItIs)
{
    PutFile(".TvTest.bak", FileOf(first));
    TestSimpleCatalog catalog;
    AnswerNo(TEXT_TAKE_BACKUP);
    AnswerOk(TEXT_NOTHING_TO_PICK);
    EXPECT_EQ(catalog.Select(), nullptr);
    AnswerNo(TEXT_TAKE_BACKUP);
    AnswerYes(TEXT_MAKE_NEW);
    Click(105);
    catalog.Edit();
    catalog.Save();
    EXPECT_EQ(Files(), (std::set<std::string>{".TvTest.bak", ".TvTest.zec"}));
    EXPECT_EQ(GetFile(".TvTest.bak"), FileOf(first)) << "a first save has nothing to put there";
}

TEST_F(CatalogFile, ABackupThatCannotBeTakenIsAFailureOfItsOwn)
{
    MemDisk memory;
    TEdcCtlgList::SetCatalogDirectory("\\mem", "zec");
    MemPut("/mem/.TvTest.bak", FileOf(first));
    MemReadOnly("/mem/");
    TestSimpleCatalog catalog;
    AnswerYes(TEXT_TAKE_BACKUP);
    catalog.Load();
    EXPECT_STREQ(TakeFailure(), XFCREATE);
    EXPECT_STREQ(xFCreateName, "\\mem\\.TvTest.zec");
    EXPECT_FALSE(catalog.IsLoaded());
    EXPECT_EQ(MemGet("/mem/.TvTest.bak"), FileOf(first));
}

TEST_F(CatalogFile, AFileOfAnotherKindIsMovedAsideAndTheNextEditStartsAnew)
{
    CdeITEMS items = UnitItems(first);
    items[0].text = "SCAT/OTHER/ZEC";
    PutFile(".TvTest.zec", EncodeItems(items));
    PutFile(".TvTest.err", "an older one");
    TestSimpleCatalog catalog;
    catalog.Edit();
    EXPECT_STREQ(TakeFailure(), XCDE_INVOLVED);
    EXPECT_FALSE(catalog.IsLoaded());
    EXPECT_TRUE(catalog.IsEmpty());
    EXPECT_EQ(Files(), std::set<std::string>{".TvTest.err"});
    EXPECT_EQ(GetFile(".TvTest.err"), EncodeItems(items));
    catalog.Save();
    EXPECT_EQ(Files(), std::set<std::string>{".TvTest.err"});
    AnswerNo(TEXT_MAKE_NEW);
    catalog.Edit();
    EXPECT_STREQ(xCode, XNULL);
}

TEST_F(CatalogFile, ADamagedFileLeavesTheWayToTheBackup)
{
    PutFile(".TvTest.zec", FileOf(second).substr(0, 40));
    PutFile(".TvTest.bak", FileOf(first));
    TestSimpleCatalog catalog;
    catalog.Load();
    EXPECT_STREQ(TakeFailure(), XFREAD);
    AnswerYes(TEXT_TAKE_BACKUP);
    catalog.Load();
    EXPECT_EQ(catalog.Values(), first);
    EXPECT_EQ(Files(), (std::set<std::string>{".TvTest.err", ".TvTest.zec"}));
}

TEST_F(CatalogFile, WhatASelectionCannotReadGoesOnToItsCaller)
{
    PutFile(".TvTest.zec", "");
    TestSimpleCatalog simple;
    EXPECT_EQ(simple.Select(), nullptr);
    EXPECT_STREQ(TakeFailure(), XFREAD);
    PutFile(".StTest.zec", "x");
    TestDividedCatalog divided;
    EXPECT_EQ(divided.Select(), nullptr);
    EXPECT_STREQ(TakeFailure(), XCDE_INVOLVED);
    EXPECT_EQ(Files(), (std::set<std::string>{".StTest.err", ".TvTest.err"}));
}

TEST_F(CatalogFile, TheFrameOfItsCallerTellsWhatWentWrong)
{
    enum { TEXT_INVOLVED = 1012 };
    PutFile(".TvTest.zec", "damage");
    TestSimpleCatalog catalog;
    Script([](testdoor::ModalBox &box) {
        EXPECT_EQ(box.Text(), GetResString(TEXT_INVOLVED) + 1) << "without the mark of an error";
        box.Answer(WIN_ID_OK);
    });
    GuardedCall([&] { catalog.Edit(); });
    std::filesystem::create_directories(Path(".TvTest.zec"));
    Script([](testdoor::ModalBox &box) {
        EXPECT_NE(box.Text().find("Katalogy/.TvTest.zec\" kann nicht ge"), std::string::npos) << box.Text();
        box.Answer(WIN_ID_OK);
    });
    GuardedCall([&] { catalog.Select(); });
    EXPECT_STREQ(xCode, XNULL);
}

TEST_F(CatalogFile, AFileThatCannotBeOpenedStaysWhereItIs)
{
    MemDisk memory;
    TEdcCtlgList::SetCatalogDirectory("\\mem", "zec");
    MemPut("/mem/.TvTest.zec", FileOf(first));
    MemReadOnly("/mem/.TvTest.zec");
    TestSimpleCatalog catalog;
    catalog.Load();
    EXPECT_STREQ(TakeFailure(), XFOPEN);
    EXPECT_STREQ(xFOpenName, "\\mem\\.TvTest.zec");
    EXPECT_EQ(MemList(), std::vector<std::string>{"/mem/.TvTest.zec"});
    MemReadOnly("/mem/.TvTest.zec", false);
    catalog.Load();
    EXPECT_EQ(catalog.Values(), first);
}

TEST_F(CatalogFile, AFileWithoutRightsStaysWhereItIs)
{
    PutFile(".TvTest.zec", FileOf(first));
    chmod(Path(".TvTest.zec").c_str(), 0444);
    TestSimpleCatalog catalog;
    {
        chmod(folder.path.c_str(), 0755);
        PLAINUSER plain;
        catalog.Load();
    }
    EXPECT_STREQ(TakeFailure(), XFOPEN);
    EXPECT_EQ(Files(), std::set<std::string>{".TvTest.zec"});
    EXPECT_EQ(GetFile(".TvTest.zec"), FileOf(first));
}

TEST_F(CatalogFile, AFolderInItsPlaceIsNoCatalogue)
{
    std::filesystem::create_directories(Path(".TvTest.zec"));
    TestSimpleCatalog catalog;
    catalog.Load();
    EXPECT_STREQ(TakeFailure(), XFOPEN);
    EXPECT_EQ(Files(), std::set<std::string>{".TvTest.zec"});
}

TEST_F(CatalogFile, AFolderInThePlaceOfTheBackupIsInTheWayOfSaving)
{
    SaveNew(first);
    std::filesystem::create_directories(Path(".TvTest.bak/darin"));
    TestSimpleCatalog catalog;
    catalog.Put(second);
    Script([this](testdoor::ModalBox &box) {
        EXPECT_EQ(box.Text(), GetResString(TEXT_NOT_SAVED));
        EXPECT_EQ(GetFile(".TvTest.zec"), FileOf(first));
        box.Answer(WIN_ID_RETRY);
    });
    AnswerCancel();
    catalog.Save();
    EXPECT_EQ(GetFile(".TvTest.zec"), FileOf(first));
    std::filesystem::remove_all(Path(".TvTest.bak"));
    catalog.Save();
    EXPECT_EQ(GetFile(".TvTest.bak"), FileOf(first));
    EXPECT_EQ(GetFile(".TvTest.zec"), FileOf(second));
}

TEST_F(CatalogFile, AFolderInThePlaceOfTheDamagedFileKeepsItWhereItIs)
{
    PutFile(".TvTest.zec", "damage");
    std::filesystem::create_directories(Path(".TvTest.err/darin"));
    TestSimpleCatalog catalog;
    catalog.Load();
    EXPECT_STREQ(TakeFailure(), XCDE_INVOLVED);
    catalog.Save();
    EXPECT_EQ(GetFile(".TvTest.zec"), "damage");
}

TEST_F(CatalogFile, ANameThatIsTooLongForAFileIsRefused)
{
    TestSimpleCatalog catalog(std::string(240, 'n').c_str());
    EXPECT_TRUE(catalog.Path().IsBlank());
    catalog.Edit();
    EXPECT_STREQ(TakeFailure(), XFOPEN);
    EXPECT_EQ(std::string(xFOpenName), folder.Name("Katalogy"));
}

/// A disk with room for so many bytes, and a catalogue on it.
class FullDisk : public CatalogFile
{
protected:
    FullDisk()
    {
        TEdcCtlgList::SetCatalogDirectory("\\mem\\Katalogy", "zec");
        MemPut("/mem/Katalogy/.TvTest.zec", FileOf(first));
    }
    long long Size(const UNITS &units) { return static_cast<long long>(FileOf(units).size()); }

    MemDisk memory;
};

TEST_F(FullDisk, ACancelledSaveLeavesTheFormerContentInTheBackup)
{
    for (long long room = 0; room < Size(second); ++room) {
        MemErase("/mem/Katalogy/.TvTest.bak");
        MemPut("/mem/Katalogy/.TvTest.zec", FileOf(first));
        MemLimit(Size(first) + room);
        TestSimpleCatalog catalog;
        catalog.Put(second);
        AnswerCancel();
        catalog.Save();
        EXPECT_STREQ(xCode, XNULL);
        EXPECT_EQ(MemList(), std::vector<std::string>{"/mem/Katalogy/.TvTest.bak"}) << room;
        EXPECT_EQ(MemGet("/mem/Katalogy/.TvTest.bak"), FileOf(first));
        EXPECT_EQ(MemOpenFiles(), 0);
    }
}

TEST_F(FullDisk, ARetriedSaveSucceedsOnceThereIsRoom)
{
    MemLimit(Size(first));
    TestSimpleCatalog catalog;
    catalog.Put(second);
    AnswerRetry();
    Script([this](testdoor::ModalBox &box) {
        EXPECT_EQ(MemList(), std::vector<std::string>{"/mem/Katalogy/.TvTest.bak"});
        MemLimit(-1);
        box.Answer(WIN_ID_RETRY);
    });
    catalog.Save();
    EXPECT_EQ(MemGet("/mem/Katalogy/.TvTest.bak"), FileOf(first));
    EXPECT_EQ(MemGet("/mem/Katalogy/.TvTest.zec"), FileOf(second));
}

TEST_F(FullDisk, ASaveBehindACancelledOneKeepsTheBackup)
{
    MemLimit(Size(first));
    TestSimpleCatalog catalog;
    catalog.Put(second);
    AnswerCancel();
    catalog.Save();
    MemLimit(-1);
    catalog.Save();
    EXPECT_EQ(MemGet("/mem/Katalogy/.TvTest.bak"), FileOf(first));
    EXPECT_EQ(MemGet("/mem/Katalogy/.TvTest.zec"), FileOf(second));
}

TEST_F(FullDisk, AFolderWithoutRightsIsInTheWayOfSaving)
{
    MemReadOnly("/mem/Katalogy/");
    TestSimpleCatalog catalog;
    catalog.Put(second);
    AnswerCancel();
    catalog.Save();
    EXPECT_EQ(MemList(), std::vector<std::string>{"/mem/Katalogy/.TvTest.zec"});
    EXPECT_EQ(MemGet("/mem/Katalogy/.TvTest.zec"), FileOf(first));
}

TEST_F(CatalogFile, RandomCataloguesReadBackAsTheyWereSaved)
{
    MemDisk memory;
    TEdcCtlgList::SetCatalogDirectory("\\mem", "zec");
    CHANCE chance(20);
    for (int i = 0; i < 60; ++i) {
        UNITS units = RandomUnits(chance, chance.One(4) ? 0 : chance.Int(1, 300));
        GROUPS groups = RandomGroups(chance, chance.Int(0, 20), 30);
        TestSimpleCatalog simple, simpleAgain;
        simple.Put(units);
        simple.Save();
        simpleAgain.Load();
        EXPECT_TRUE(simpleAgain.Values() == units) << i;
        EXPECT_TRUE(MemGet("/mem/.TvTest.zec") == FileOf(units)) << i;
        TestDividedCatalog divided, dividedAgain;
        divided.Put(groups);
        divided.Save();
        dividedAgain.Load();
        EXPECT_TRUE(dividedAgain.Values() == groups) << i;
        EXPECT_TRUE(MemGet("/mem/.StTest.zec") == EncodeItems(GroupItems(groups))) << i;
    }
}

TEST_F(CatalogFile, NamesThatAreTooLongAreCut)
{
    const std::string key = "  a   very long key with more than thirty-one characters";
    PutFile(".TvTest.zec", FileOf({{key, 1, 2}}));
    TestSimpleCatalog catalog;
    catalog.Load();
    ASSERT_EQ(catalog.Count(), 1);
    EXPECT_STREQ(static_cast<TestUnit *>(catalog.First())->name, "a very long key with more t");
    EXPECT_EQ(catalog.Values()[0].key, key);
    PutFile(".StTest.zec", EncodeItems(GroupItems({{std::string(100, 'g'), {{std::string(200, 'p'), 1}}}})));
    TestDividedCatalog divided;
    divided.Load();
    EXPECT_EQ(divided.Values(), (GROUPS{{std::string(31, 'g'), {{std::string(31, 'p'), 1}}}}));
}

TEST_F(CatalogFile, ItemsOfTheSameNameAreAllKeptAndTheFirstIsFound)
{
    const UNITS units = {{"wand 1", 1, 0}, {"Wand  1", 2, 0}, {"Wand 1", 3, 0}, {"Wand 1", 4, 0}};
    PutFile(".TvTest.zec", FileOf(units));
    TestSimpleCatalog catalog;
    EXPECT_EQ(catalog.FindItem("Wand 1", false), nullptr) << "nothing is loaded";
    catalog.Load();
    EXPECT_EQ(catalog.Values(), units);
    auto output = [&](const char *name, bool exact, const TEdcCtlgItem *skip = NULL) {
        auto *found = static_cast<TestUnit *>(catalog.FindItem(name, exact, skip));
        return found ? found->record.output.value : 0;
    };
    TEdcCtlgItem *one = catalog.FindItem("WAND 1", false);
    EXPECT_EQ(output("WAND 1", false), 1);
    EXPECT_EQ(output("WAND 1", false, one), 2);
    EXPECT_EQ(output("Wand 1", true), 2); // the name, whose inner run is one blank
    EXPECT_EQ(output("Wand  1", true), 0);
    EXPECT_EQ(output(" wand   1 ", false), 1);
    EXPECT_EQ(output("Wand1", false), 0);
}

struct FOREIGN {
    const char *name;
    CdeITEMS items; // behind the header
    XCODE code;     // XNULL: it is read
};

TEST_F(CatalogFile, NothingInASimpleOneReachesAnAssertion)
{
    auto unit = [](const std::string &key) { return ItGroup({ItStr(key), ItReal(1), ItReal(2)}); };
    CdeITEMS deep;
    for (int i = 0; i < 100000; ++i)
        deep.push_back(ItSection());
    const FOREIGN rows[] = {
        {"blank key", unit("  \t "), XCDE_INVOLVED},
        {"no key", unit(""), XCDE_INVOLVED},
        {"key of no-break spaces", unit("\xA0\xA0"), XCDE_INVOLVED},
        {"key whose first 31 characters are blank", unit(std::string(31, ' ') + "a"), XCDE_INVOLVED},
        {"terminator at the start of the key", unit(std::string("\0a", 2)), XCDE_INVOLVED},
        {"terminator behind the key's start", unit(std::string("a\0b", 3)), XNULL},
        {"control character", unit("a\x01"), XCDE_INVOLVED},
        {"delete character", unit("a\x7F"), XCDE_INVOLVED},
        {"white space of all kinds", unit("a\t\r\n b"), XNULL},
        {"no item but a section", ItGroup({ItGroup({ItStr("a")})}), XCDE_INVOLVED},
        {"item without its section", {ItStr("a"), ItReal(1), ItReal(2)}, XCDE_INVOLVED},
        {"item with too little", ItGroup({ItStr("a"), ItReal(1)}), XCDE_INVOLVED},
        {"item with more", ItGroup({ItStr("a"), ItReal(1), ItReal(2), ItText("x"), ItSection(), ItEnd()}),
         XNULL},
        {"item that ends with the file", {ItSection(), ItStr("a"), ItReal(1), ItReal(2)}, XNULL},
        {"endless nesting", deep, XCDE_INVOLVED},
        {"endless nesting behind the item", CdeITEMS{ItSection(), ItStr("a"), ItReal(1), ItReal(2)} + deep,
         XNULL},
        {"nonsense inside a section", {ItSection(), ItRaw("\x01\x02")}, XCDE_INVOLVED},
        {"nonsense behind the items", unit("a") + CdeITEMS{ItRaw("\x01")}, XCDE_INVOLVED},
        {"section end outside of all", unit("a") + CdeITEMS{ItEnd()} + unit("b"), XCDE_INVOLVED},
        {"second header", unit("a") + CdeITEMS{ItHeader("SCAT/TEST/ZEC", 1)} + unit("b"), XCDE_INVOLVED},
        {"second header inside a section", {ItSection(), ItHeader("SCAT/TEST/ZEC", 1)}, XCDE_INVOLVED},
        {"nothing at all", {}, XNULL},
    };
    for (const FOREIGN &row : rows) {
        SCOPED_TRACE(row.name);
        std::string bytes = EncodeItems(CdeITEMS{ItHeader("SCAT/TEST/ZEC", 1)} + row.items);
        PutFile(".TvTest.zec", bytes);
        TestSimpleCatalog catalog;
        catalog.Load();
        EXPECT_STREQ(TakeFailure(), row.code);
        EXPECT_EQ(catalog.IsLoaded(), row.code == XNULL);
        EXPECT_EQ(GetFile(row.code == XNULL ? ".TvTest.zec" : ".TvTest.err"), bytes);
        if (row.code != XNULL) {
            EXPECT_TRUE(catalog.IsEmpty());
        }
    }
}

TEST_F(CatalogFile, NothingInADividedOneReachesAnAssertion)
{
    const CdeITEMS part = {ItStr("Teil"), ItReal(1)};
    CdeITEMS deep;
    for (int i = 0; i < 100000; ++i)
        deep.push_back(ItSection());
    const FOREIGN rows[] = {
        {"blank group", ItGroup(CdeITEMS{ItStr("  ")} + part), XCDE_INVOLVED},
        {"nameless group", ItGroup(CdeITEMS{ItStr("")}), XCDE_INVOLVED},
        {"group without a name", ItGroup({}), XCDE_INVOLVED},
        {"group with control characters", ItGroup({ItStr("a\x1F")}), XCDE_INVOLVED},
        {"group with a control character that is cut off", ItGroup({ItStr(std::string(31, 'a') + "\x1F")}),
         XNULL},
        {"item outside of all groups", part, XCDE_INVOLVED},
        {"section in place of an item", ItGroup(CdeITEMS{ItStr("a")} + ItGroup(part)), XCDE_INVOLVED},
        {"blank item", ItGroup({ItStr("a"), ItStr(""), ItReal(1)}), XCDE_INVOLVED},
        {"half an item", ItGroup({ItStr("a"), ItStr("b")}), XCDE_INVOLVED},
        {"integer in place of a number", ItGroup({ItStr("a"), ItStr("b"), ItInt(1)}), XCDE_INVOLVED},
        {"group that ends with the file", CdeITEMS{ItSection(), ItStr("a")} + part, XNULL},
        {"header in a group", {ItSection(), ItStr("a"), ItHeader("DCAT/PARTS/ZEC", 1)}, XCDE_INVOLVED},
        {"endless nesting", deep, XCDE_INVOLVED},
        {"endless nesting in a group", CdeITEMS{ItSection(), ItStr("a")} + deep, XCDE_INVOLVED},
        {"one end too many", ItGroup(CdeITEMS{ItStr("a")} + part) + CdeITEMS{ItEnd()}, XCDE_INVOLVED},
    };
    for (const FOREIGN &row : rows) {
        SCOPED_TRACE(row.name);
        std::string bytes = EncodeItems(CdeITEMS{ItHeader("DCAT/PARTS/ZEC", 1)} + row.items);
        PutFile(".StTest.zec", bytes);
        TestDividedCatalog catalog;
        catalog.Load();
        EXPECT_STREQ(TakeFailure(), row.code);
        EXPECT_EQ(catalog.IsLoaded(), row.code == XNULL);
        EXPECT_EQ(GetFile(row.code == XNULL ? ".StTest.zec" : ".StTest.err"), bytes);
    }
}

TEST_F(CatalogFile, GroupNamesCollapse)
{
    PutFile(".StTest.zec", EncodeItems(GroupItems({{"  W\xE4nde \t innen\n", {}}})));
    TestDividedCatalog catalog;
    catalog.Load();
    EXPECT_EQ(catalog.Values(), (GROUPS{{"W\xE4nde innen", {}}}));
}

TEST_F(CatalogFile, WrongUseIsAnAssertion)
{
    const char *const shell = "usr/edcctlg.cpp";
    const char *const simple = "usr/edcctlg_simple.cpp";
    const char *const divided = "usr/edcctlg_divided.cpp";
    const struct {
        const char *condition;
        const char *file;
        std::function<void()> body;
    } rows[] = {
        {"dir != NULL && !StrIsBlank(dir)", shell, [] { TEdcCtlgList::SetCatalogDirectory(" ", "zec"); }},
        {"dir != NULL && !StrIsBlank(dir)", shell, [] { TEdcCtlgList::SetCatalogDirectory(NULL, "zec"); }},
        {"ext != NULL && !StrIsBlank(ext)", shell, [] { TEdcCtlgList::SetCatalogDirectory("C:\\X", ""); }},
        {"ext != NULL && !StrIsBlank(ext)", shell, [] { TEdcCtlgList::SetCatalogDirectory("C:\\X", NULL); }},
        {"name != NULL", shell, [] { TestSimpleCatalog catalog(NULL); }},
        {"type != NULL && saveVer >= 0", shell, [] { TestSimpleCatalog catalog("x", NULL); }},
        {"type != NULL && saveVer >= 0", shell, [] { TestSimpleCatalog catalog("x", "y", -1); }},
        {"!StrIsBlank(name)", shell, [] { TestUnit().RefreshName(); }},
        {"name != NULL", shell, [] { TEdcCtlgGroup().FindItem(NULL, true); }},
        {"name != NULL", simple, [] { TestSimpleCatalog().FindItem(NULL, true); }},
        {"name != NULL", divided, [] { TestDividedCatalog().FindGroup(NULL, true); }},
    };
    for (const auto &row : rows)
        EXPECT_TRUE(AbortsOnAssertion(row.condition, row.file, [&] {
            RemoveServices(); // messages go to standard error
            row.body();
        }));
}

/// The folder is set once a process, so this is looked at before any test sets it.
class BeforeAllTests : public testing::Environment
{
public:
    void SetUp() override
    {
        found = AbortsOnAssertion("!ctlgDir.IsBlank()", "usr/edcctlg.cpp", [] { TestSimpleCatalog catalog; });
    }
    inline static testing::AssertionResult found = testing::AssertionFailure();
};

const testing::Environment *const before = testing::AddGlobalTestEnvironment(new BeforeAllTests);

TEST(CatalogFolder, IsSetBeforeTheFirstCatalogue)
{
    EXPECT_NE(before, nullptr);
    EXPECT_TRUE(BeforeAllTests::found);
}
} // namespace
