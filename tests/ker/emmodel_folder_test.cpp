// Where models come from: names, the folder and its listing, and the cache that shares them.
#include "ker/emmodel.h"

#include "support/child.h"
#include "support/fault.h"
#include "support/modelfolder.h"

#include "lib/disk.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "lib/xon.h"

namespace
{
std::string SmallModel(unsigned start = 1)
{
    CHANCE chance(start);
    return ModelBytes(*RandomModel("klein", chance, 1, 2));
}

XCODE TakeOff()
{
    XCODE code = xCode;
    xCode = XNULL;
    return code;
}

/// "name:power" of each listed model.
std::vector<std::string> Listed()
{
    std::vector<std::string> names;
    EXPECT_EQ(ModelList(MODEL_OPEN), static_cast<EmMODELINFO *>(NULL));
    while (const EmMODELINFO *info = ModelList(MODEL_NEXT))
        names.push_back(std::string(info->name) + ":" + std::to_string(static_cast<int>(info->power)));
    EXPECT_EQ(ModelList(MODEL_CLOSE), static_cast<EmMODELINFO *>(NULL));
    return names;
}

using NAMES = std::vector<std::string>;
} // namespace

TEST(ModelFolderRule, TheFolderStandsBesideTheProgramUnlessAnotherIsSet)
{
    ASSERT_TRUE(SetProgramPath("/opt/werk/zulcalc"));
    SetModelFolder("");
    EXPECT_STREQ(ModelPath(NULL), "\\opt\\werk\\Modely");
    EXPECT_STREQ(ModelPath("Strahler 2.5 kW"), "\\opt\\werk\\Modely\\Strahler 2.5 kW.gim");
    SetModelFolder("meine  Modelle ");
    EXPECT_STREQ(ModelPath(NULL), "meine  Modelle ");
    EXPECT_STREQ(ModelPath("a"), "meine  Modelle \\a.gim");
    SetModelFolder("C:\\");
    EXPECT_STREQ(ModelPath("a"), "C:\\a.gim");
    SetModelFolder("");
    EXPECT_STREQ(ModelPath(NULL), "\\opt\\werk\\Modely");
}

TEST(ModelFolderRule, APathThatDoesNotFitIsRefusedAndNeverCut)
{
    const std::string longest(255, 'd');
    SetModelFolder((longest + "x").c_str());
    EXPECT_EQ(TakeOff(), XFOPEN);
    EXPECT_EQ(std::string(xFOpenName), longest);
    SetModelFolder(longest.c_str());
    EXPECT_EQ(std::string(ModelPath(NULL)), longest);
    EXPECT_STREQ(ModelPath("a"), "");
    EXPECT_EQ(TakeOff(), XFOPEN);
    EXPECT_EQ(ModelAcquire("a"), static_cast<EmMODEL *>(NULL));
    EXPECT_EQ(TakeOff(), XFOPEN);
    SetModelFolder(std::string(255 - 6, 'd').c_str());
    EXPECT_EQ(StrLength(ModelPath("a")), 255);
    EXPECT_STREQ(ModelPath("ab"), "");
    EXPECT_EQ(TakeOff(), XFOPEN);
    SetModelFolder("");
}

TEST(ModelName, OneWithPartsOfAPathNamesNoModel)
{
    ModelFolder folder;
    folder.Put("x.gim", SmallModel());
    mkdir(folder.Path("unten").c_str(), 0777);
    folder.Put("unten/x.gim", SmallModel());
    const char *const names[] = {".\\x", "unten\\x", "/x", "unten/x", "C:x", ".", "..", "..\\x", "x:"};
    for (const char *name : names) {
        EXPECT_EQ(ModelAcquire(name), static_cast<EmMODEL *>(NULL)) << name;
        EXPECT_EQ(TakeOff(), XFOPEN) << name;
        EXPECT_NE(strstr(xFOpenName, name), static_cast<char *>(NULL)) << name;
        EXPECT_EQ(ModelInfo(name), static_cast<EmMODELINFO *>(NULL)) << name;
        EXPECT_EQ(TakeOff(), XFOPEN) << name;
        EmMODEL model(name);
        EXPECT_EQ(TakeOff(), XFOPEN) << name;
        EmMODEL saved(SomeInfo(name), NULL);
        ModelSave(&saved);
        EXPECT_EQ(TakeOff(), XFOPEN) << name;
    }
    EXPECT_EQ(ModelInfo("  "), static_cast<EmMODELINFO *>(NULL));
    EXPECT_EQ(TakeOff(), XFOPEN);
}

TEST(ModelName, IsCutTo31CharactersAndStillFindsItsFile)
{
    ModelFolder folder;
    const std::string name(40, 'n');
    folder.Put(name + ".gim", SmallModel());
    EXPECT_EQ(Listed(), NAMES{std::string(31, 'n') + ":20000"});
    EmMODEL *whole = ModelAcquire(name.c_str());
    EmMODEL *cut = ModelAcquire(std::string(31, 'n').c_str());
    EXPECT_EQ(whole, cut);
    ASSERT_NE(whole, static_cast<EmMODEL *>(NULL));
    EXPECT_EQ(std::string(whole->Info()->name), std::string(31, 'n'));
    ModelRelease(whole);
    ModelRelease(cut);
    cut = ModelAcquire(std::string(31, 'n').c_str()); // as a hall file names it
    EXPECT_NE(cut, static_cast<EmMODEL *>(NULL));
    ModelRelease(cut);
}

TEST(ModelInfoOf, ReadsTheTechnicalDataAlone)
{
    ModelFolder folder;
    folder.Put("Gut.gim", SmallModel());
    const EmMODELINFO *info = ModelInfo("Gut");
    ASSERT_NE(info, static_cast<EmMODELINFO *>(NULL));
    EXPECT_STREQ(info->name, "Gut");
    EXPECT_STREQ(info->description, "ein Modell");
    EXPECT_EQ(info->power, 20000);
    EXPECT_EQ(ModelInfo("Fehlt"), static_cast<EmMODELINFO *>(NULL));
    EXPECT_EQ(TakeOff(), XFOPEN);
    EXPECT_EQ(std::string(xFOpenName), ModelPath("Fehlt"));
    CdeITEMS headOnly = DecodeItems(SmallModel());
    headOnly.resize(10); // without a table
    folder.Put("Kopf.gim", EncodeItems(headOnly));
    EXPECT_NE(ModelInfo("Kopf"), static_cast<EmMODELINFO *>(NULL));
    EXPECT_EQ(ModelAcquire("Kopf"), static_cast<EmMODEL *>(NULL));
    EXPECT_EQ(TakeOff(), XFREAD);
}

TEST(ModelListing, ShowsEveryModelInOrderAndDamagedOnesWithTheirNameAlone)
{
    ModelFolder folder;
    const std::string sound = SmallModel();
    folder.Put("b.gim", sound);
    folder.Put("a.GIM", sound);
    folder.Put("Z.gim", sound);
    folder.Put("kaputt.gim", "IE/GIM");
    folder.Put("leer.gim", "");
    folder.Put("\xC3\xA4.gim", sound); // a umlaut
    folder.Put("\xCE\xA9.gim", sound); // omega: not in the character set
    folder.Put("a:b.gim", sound);      // can be no model's name
    folder.Put("a.gimx", sound);
    folder.Put("agim", sound);
    folder.Put(".gim", sound);
    folder.Put("  .gim", sound);
    folder.Put("c.pdf", sound);
    mkdir(folder.Path("ordner.gim").c_str(), 0777);
    mkfifo(folder.Path("rohr.gim").c_str(), 0666);
    EXPECT_EQ(Listed(), (NAMES{"Z:20000", "a:20000", "b:20000", "kaputt:0", "leer:0", "\xE4:20000"}));
    EXPECT_STREQ(xCode, XNULL);
    EXPECT_EQ(ModelAcquire("kaputt"), static_cast<EmMODEL *>(NULL));
    EXPECT_EQ(TakeOff(), XCDE_INVOLVED);
    EmMODEL *capital = ModelAcquire("a"); // what is listed can be had
    EXPECT_NE(capital, static_cast<EmMODEL *>(NULL));
    ModelRelease(capital);
    EXPECT_EQ(ModelAcquire("B"), static_cast<EmMODEL *>(NULL));
    EXPECT_EQ(TakeOff(), XFOPEN);
}

TEST(ModelListing, ByNameAloneIsTheSameListAndReadsNoFile)
{
    ModelFolder folder;
    folder.Put("b.gim", SmallModel());
    folder.Put("a.GIM", SmallModel());
    folder.Put("kaputt.gim", "IE/GIM");
    folder.Put("kein.pdf", SmallModel());
    FaultArm noFiles(FAULT::OPEN, 1, true);
    for (int run = 0; run < 2; ++run) {
        NAMES names;
        ModelList(MODEL_OPEN);
        while (const EmMODELINFO *info = ModelList(MODEL_NAME)) {
            names.emplace_back(info->name);
            EXPECT_EQ(info->power, 0);
            EXPECT_STREQ(info->description, "");
        }
        EXPECT_EQ(names, (NAMES{"a", "b", "kaputt"}));
        EXPECT_EQ(ModelList(MODEL_NAME), static_cast<EmMODELINFO *>(NULL));
    }
    EXPECT_EQ(FaultsFired(), 0);
    EXPECT_STREQ(xCode, XNULL);
}

TEST(ModelListing, ADamagedModelHidesNothingOfTheOneListedBeforeIt)
{
    ModelFolder folder;
    folder.Put("1.gim", SmallModel());
    folder.Put("2.gim", "x");
    ModelList(MODEL_OPEN);
    EXPECT_STREQ(ModelList(MODEL_NEXT)->description, "ein Modell");
    const EmMODELINFO *damaged = ModelList(MODEL_NEXT);
    EXPECT_STREQ(damaged->name, "2");
    EXPECT_STREQ(damaged->description, "");
    EXPECT_EQ(damaged->size, AgE0);
    EXPECT_EQ(damaged->radiantPart, 0);
    EXPECT_EQ(ModelList(MODEL_NEXT), static_cast<EmMODELINFO *>(NULL));
    EXPECT_EQ(ModelList(MODEL_NEXT), static_cast<EmMODELINFO *>(NULL));
}

TEST(ModelListing, NeedsAnOpenScanAndMayBeOpenedAgainOrClosedEarly)
{
    ModelFolder folder;
    folder.Put("1.gim", SmallModel());
    EXPECT_EQ(ModelList(MODEL_NEXT), static_cast<EmMODELINFO *>(NULL));
    ModelList(MODEL_CLOSE);
    ModelList(MODEL_OPEN);
    EXPECT_NE(ModelList(MODEL_NEXT), static_cast<EmMODELINFO *>(NULL));
    ModelList(MODEL_OPEN);
    EXPECT_NE(ModelList(MODEL_NEXT), static_cast<EmMODELINFO *>(NULL));
    ModelList(MODEL_CLOSE);
    EXPECT_EQ(ModelList(MODEL_NEXT), static_cast<EmMODELINFO *>(NULL));
    SetModelFolder("\\gibt es nicht");
    EXPECT_EQ(Listed(), NAMES());
    EXPECT_STREQ(xCode, XNULL);
}

TEST(ModelListing, SurvivesEveryFault)
{
    ModelFolder folder;
    folder.Put("1.gim", SmallModel());
    folder.Put("2.gim", SmallModel());
    int listed = 0;
    long left = 0;
    int swept = SweepFaults(
        [&] {
            long before = LiveBlocks();
            listed = 0;
            ModelList(MODEL_OPEN);
            while (ModelList(MODEL_NEXT) != NULL)
                ++listed;
            ModelList(MODEL_CLOSE);
            left = LiveBlocks() - before;
        },
        [&](const FaultRun &run) {
            // Only the walk over the folder can fail; a file that does is listed all the same.
            EXPECT_TRUE(run.code == XNULL || run.code == XALLOC);
            EXPECT_EQ(listed, run.code == XNULL ? 2 : 0) << FaultName(run.kind) << " " << run.n;
            EXPECT_EQ(left, 0);
        });
    EXPECT_GE(swept, 8);
}

TEST(ModelCache, ABlankNameIsNoModelAndNoFailure)
{
    EXPECT_EQ(ModelAcquire(""), static_cast<EmMODEL *>(NULL));
    EXPECT_EQ(ModelAcquire("   "), static_cast<EmMODEL *>(NULL));
    EXPECT_EQ(ModelAcquire(" \t\xA0"), static_cast<EmMODEL *>(NULL));
    EXPECT_STREQ(xCode, XNULL);
    EXPECT_EQ(ModelAddRef(NULL), static_cast<EmMODEL *>(NULL));
    ModelRelease(NULL);
}

TEST(ModelCache, SharesAModelAndForgetsItWithItsLastHolder)
{
    ModelFolder folder;
    folder.Put("Eins.gim", SmallModel(1));
    folder.Put("Zwei.gim", SmallModel(2));
    long before = LiveBlocks();
    EmMODEL *one = ModelAcquire("Eins");
    ASSERT_NE(one, static_cast<EmMODEL *>(NULL));
    EXPECT_EQ(ModelAcquire("Eins"), one);
    EmMODEL *two = ModelAcquire("Zwei");
    EXPECT_NE(two, one);
    ASSERT_NE(one->List(), static_cast<LIST *>(NULL));
    EXPECT_EQ(one->List()->Count(), 2);
    EXPECT_EQ(one->List()->Last(), two);
    EXPECT_EQ(ModelAddRef(one), one);
    folder.Put("Eins.gim", SmallModel(3)); // not read again while it is held
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(ModelBytes(*one), SmallModel(1)) << i;
        ModelRelease(one);
    }
    EXPECT_EQ(two->List()->Count(), 1);
    one = ModelAcquire("Eins");
    EXPECT_EQ(ModelBytes(*one), SmallModel(3));
    ModelRelease(two);
    ModelRelease(one);
    EXPECT_EQ(LiveBlocks(), before);
}

TEST(ModelCache, ChecksItsUseByAssertions)
{
    EmMODEL loose(SomeInfo("lose"), NULL);
    EXPECT_TRUE(AbortsOnAssertion("model->used > 0", "ker/emmodel.cpp", [&] { ModelAddRef(&loose); }));
    EXPECT_TRUE(AbortsOnAssertion("model->used > 0", "ker/emmodel.cpp", [&] { ModelRelease(&loose); }));
    EXPECT_TRUE(AbortsOnAssertion("name != NULL", "ker/emmodel.cpp", [] { ModelAcquire(NULL); }));
    EXPECT_TRUE(AbortsOnAssertion("name != NULL", "ker/emmodel.cpp",
                                  [] { EmMODEL model(static_cast<const char *>(NULL)); }));
    EXPECT_TRUE(AbortsOnAssertion("model != NULL", "ker/emmodel_file.cpp", [] { ModelSave(NULL); }));
}

TEST(ModelCache, AModelThatFailsToLoadLeavesNothingBehind)
{
    ModelFolder folder;
    folder.Put("A.gim", SmallModel());
    bool loaded = false;
    long left = 0;
    int swept = SweepFaults(
        [&] {
            long before = LiveBlocks();
            EmMODEL *model = ModelAcquire("A");
            loaded = model != NULL;
            ModelRelease(model);
            left = LiveBlocks() - before;
        },
        [&](const FaultRun &run) {
            EXPECT_EQ(loaded, run.code == XNULL);
            EXPECT_TRUE(run.code == XNULL || run.code == XALLOC || run.code == XFOPEN || run.code == XFREAD ||
                        run.code == XFWRITE);
            EXPECT_EQ(left, 0) << FaultName(run.kind) << " " << run.n;
        });
    EXPECT_GE(swept, 10);
}
