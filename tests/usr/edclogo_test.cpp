// Logos: the file and who may read it, the table that shares images by name, and the place of the picture.
#include "usr/edcitem.h"

#include "support/child.h"
#include "support/fault.h"
#include "support/folder.h"
#include "support/logofile.h"
#include "support/memdisk.h"
#include "support/recorddc.h"

#include "win/application.h"
#include "win/metafile.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "lib/cde.h"
#include "lib/xon.h"

namespace
{
/// The pending failure, taken off.
XCODE Taken()
{
    XCODE code = xCode;
    xCode = XNULL;
    return code;
}

class EdcLogo : public testing::Test
{
protected:
    EdcLogo() { SetLogoDirectory("\\mem"); }
    ~EdcLogo() override
    {
        SetLogoDirectory(NULL);
        EXPECT_EQ(EdcLogoNodesInUse(), 0);
        EXPECT_EQ(MemOpenFiles(), 0);
    }

    /// Width and height of the picture's frame in 0.01 mm, or the code of the failure.
    static std::string Load(const char *fname)
    {
        std::unique_ptr<TMetafile> image = LoadLogo(fname);
        EXPECT_EQ(image != NULL, xCode == XNULL);
        if (image == NULL)
            return Taken();
        return std::to_string(image->Frame().cx) + " x " + std::to_string(image->Frame().cy);
    }
    static std::string LoadBytes(const std::string &bytes)
    {
        MemPut("/mem/a.lgo", bytes);
        return Load("a.lgo");
    }
    static void PutFramed(const char *name, int width, int height) // 0.01 mm
    {
        std::string image = SmallEnhanced();
        MetaPut32(image, 32, static_cast<uint32_t>(width));
        MetaPut32(image, 36, static_cast<uint32_t>(height));
        MemPut("/mem/" + std::string(name), LogoFile(name, static_cast<char>(name[0] & ~0x20), image));
    }

    MemDisk memory;
    TRecordDC dc;
};
} // namespace

TEST_F(EdcLogo, IsReadFromEachKindOfMetafile)
{
    EXPECT_EQ(LoadBytes(LogoFile("a.lgo", 'A', SmallEnhanced())), "16000 x 16000");
    EXPECT_EQ(LoadBytes(LogoFile("a.lgo", 'A', PlaceableFile({}, SmallPlain()))), "2540 x 1270");
    EXPECT_EQ(LoadBytes(LogoFile("a.lgo", 'A', SmallPlain())), "2646 x 1323"); // 100 x 50 at 96 an inch
}

TEST_F(EdcLogo, RenamedByItsUserIsRefused)
{
    std::string bytes = LogoFile("Zulerio.lgo", 'Z', SmallEnhanced());
    const struct {
        const char *name;
        bool loads;
    } rows[] = {{"Zulerio.lgo", true},  {"ZULERIO.LGO", true}, {"zulerio.lgo", true},   {"Zulerion.lgo", false},
                {"Torvane.lgo", false}, {"Zulerio.lg", false}, {"Zulerio.lgo2", false}, {"Xulerio.lgo", false}};
    for (const auto &row : rows) {
        MemPut(std::string("/mem/") + row.name, bytes);
        EXPECT_EQ(Load(row.name), row.loads ? "16000 x 16000" : "XFOPEN") << row.name;
    }
}

TEST_F(EdcLogo, HasItsNameMaskedWithItsFirstLetterInUpperCase)
{
    MemPut("/mem/\xC3\xA4.lgo",
           LogoFile("\xE4.lgo", '\xC4', SmallEnhanced())); // an umlaut has an upper case too
    EXPECT_EQ(Load("\xE4.lgo"), "16000 x 16000");
    EXPECT_EQ(LoadBytes(LogoFile("a.lgo", 'a', SmallEnhanced())), "XFOPEN");
    EXPECT_EQ(LoadBytes(LogoFile("A.LGO", 'A', SmallEnhanced())), "16000 x 16000");
}

TEST_F(EdcLogo, IsRefusedWithAHeaderThatIsNone)
{
    const std::string sound = LogoFile("a.lgo", 'A', SmallEnhanced());
    auto with = [&](size_t at, const std::string &bytes) {
        std::string file = sound;
        return LoadBytes(file.replace(at, bytes.size(), bytes));
    };
    EXPECT_EQ(with(0, "LOGOFILE"), "16000 x 16000");
    EXPECT_EQ(with(0, "logofile"), "XFOPEN");
    EXPECT_EQ(with(0, "LOGOFILES"), "XFOPEN");
    EXPECT_EQ(with(0, std::string("LOGOFIL\0", 8)), "XFOPEN");
    EXPECT_EQ(with(32, std::string(32, 'x')), "XFOPEN"); // a name without an end
    EXPECT_EQ(LoadBytes(""), "XFOPEN");
    EXPECT_EQ(LoadBytes(sound.substr(0, 63)), "XFOPEN");
    EXPECT_EQ(LoadBytes(sound.substr(0, 64)), "XFOPEN");
}

TEST_F(EdcLogo, TakesItsExtentFromAPlaceableHeader)
{
    const struct {
        PlaceableHeader header;
        const char *frame;
    } rows[] = {
        {{0, 0, 1440, 720, 1440}, "2540 x 1270"},
        {{-720, -720, 720, 0, 1440}, "2540 x 1270"},
        {{0, 0, 1000, 1000, 96}, "26458 x 26458"},
        {{0, 0, 1000, 1000, 1440}, "1764 x 1764"}, // rounded
        {{-32768, -32768, 32767, 32767, 65535}, "2540 x 2540"},
        {{0, 0, 1000, 1000, 0}, "XFOPEN"},
        {{0, 0, 0, 1000, 96}, "XFOPEN"},
        {{0, 0, 1000, 0, 96}, "XFOPEN"},
        {{1000, 0, 0, 1000, 96}, "XFOPEN"},
        {{0, 1000, 1000, 0, 96}, "XFOPEN"},
        {{0, 0, 1, 1, 65535}, "XFOPEN"}, // nothing left of it
    };
    for (const auto &row : rows)
        EXPECT_EQ(LoadBytes(LogoFile("a.lgo", 'A', PlaceableFile(row.header, SmallPlain()))), row.frame)
            << row.header.left << " " << row.header.right << " " << row.header.inch;
    for (size_t length = 0; length < 22; ++length)
        EXPECT_EQ(LoadBytes(LogoFile("a.lgo", 'A', PlaceableFile({}, "").substr(0, length))), "XFOPEN")
            << length;
}

TEST_F(EdcLogo, ThatIsMissingIsTheFailureToOpenIt)
{
    EXPECT_EQ(Load("fehlt.lgo"), "XFOPEN");
    EXPECT_STREQ(xFOpenName, "\\mem\\fehlt.lgo");
    SetLogoDirectory("\\mem\\"); // the '\' may be there or not
    EXPECT_EQ(Load("auch.lgo"), "XFOPEN");
    EXPECT_STREQ(xFOpenName, "\\mem\\auch.lgo");
    EXPECT_EQ(Load(""), "XFOPEN");
}

TEST_F(EdcLogo, IsLookedForBesideTheProgram)
{
    SetLogoDirectory(NULL);
    ASSERT_TRUE(SetProgramPath("/mem/Programme/zulerion"));
    EXPECT_EQ(Load("fehlt.lgo"), "XFOPEN");
    EXPECT_STREQ(xFOpenName, "\\mem\\Programme\\fehlt.lgo");
}

TEST_F(EdcLogo, OfMoreThanSixteenMegabytesIsNotRead)
{
    std::string sound = LogoFile("a.lgo", 'A', SmallEnhanced());
    EXPECT_EQ(LoadBytes(sound + std::string((16 << 20) - sound.size(), '\0')), "16000 x 16000");
    EXPECT_EQ(LoadBytes(sound + std::string(17 << 20, '\0')), "XFOPEN");
}

TEST_F(EdcLogo, IsMadeFromAMetafileAndReadsBack)
{
    MemPut("/mem/bild.emf", SmallEnhanced());
    MakeLogo("\\mem\\Zulerio.lgo", "\\mem\\bild.emf");
    EXPECT_EQ(MemGet("/mem/Zulerio.lgo"), LogoFile("Zulerio.lgo", 'Z', SmallEnhanced()));
    EXPECT_EQ(Load("Zulerio.lgo"), "16000 x 16000");
    MakeLogo("\\mem\\torvane.lgo", "\\mem\\bild.emf");
    EXPECT_EQ(MemGet("/mem/torvane.lgo"), LogoFile("torvane.lgo", 'T', SmallEnhanced()));
    EXPECT_EQ(Load("Torvane.lgo"), "XFOPEN"); // there is no file of that name on this disk
    EXPECT_EQ(Load("torvane.lgo"), "16000 x 16000");
    EXPECT_EQ(MemList(), (std::vector<std::string>{"/mem/Zulerio.lgo", "/mem/bild.emf", "/mem/torvane.lgo"}));
}

TEST_F(EdcLogo, HasANameOfUpToThirtyOneCharacters)
{
    std::string longest = std::string(27, 'n') + ".lgo";
    MemPut("/mem/bild.emf", SmallEnhanced());
    MakeLogo(("\\mem\\" + longest).c_str(), "\\mem\\bild.emf");
    EXPECT_EQ(Load(longest.c_str()), "16000 x 16000");
    {
        TEdcLogo logo;
        logo.Open(longest.c_str());
        logo.Size(dc, {100, 100}, 1);
        EXPECT_EQ(logo.size, (TSize{100, 100}));
    }
    MakeLogo(("\\mem\\n" + longest).c_str(), "\\mem\\bild.emf");
    EXPECT_STREQ(Taken(), "XFCREATE");
    EXPECT_EQ(std::string(xFCreateName), "\\mem\\n" + longest);
    EXPECT_EQ(MemList().size(), 2u);
    TEdcLogo logo;
    EXPECT_TRUE(AbortsOnAssertion("strlen(fname) < 32", "usr/edcitem_logo.cpp",
                                  [&] { logo.Open(("n" + longest).c_str()); }));
}

TEST_F(EdcLogo, ThatCannotBeMadeLeavesWhatWasThere)
{
    MemPut("/mem/bild.emf", SmallEnhanced());
    MemPut("/mem/da.lgo", "alt");
    MakeLogo("\\mem\\da.lgo", "\\mem\\fehlt.emf");
    EXPECT_STREQ(Taken(), "XFCREATE");
    EXPECT_STREQ(xFCreateName, "\\mem\\da.lgo");
    MemLimit(static_cast<long long>(SmallEnhanced().size()) + 100);
    MakeLogo("\\mem\\da.lgo", "\\mem\\bild.emf");
    EXPECT_STREQ(Taken(), "XFCREATE");
    MemLimit(-1);
    MemReadOnly("/mem/");
    MakeLogo("\\mem\\da.lgo", "\\mem\\bild.emf");
    EXPECT_STREQ(Taken(), "XFCREATE");
    MakeLogo("\\mem\\", "\\mem\\bild.emf");
    EXPECT_STREQ(Taken(), "XFCREATE");
    EXPECT_EQ(MemGet("/mem/da.lgo"), "alt");
    EXPECT_EQ(MemList().size(), 2u);
}

TEST_F(EdcLogo, MadeWithAnyFaultIsWholeOrNotThere)
{
    const std::string sound = LogoFile("da.lgo", 'D', SmallEnhanced());
    MemPut("/mem/bild.emf", SmallEnhanced());
    int failed = SweepFaults(
        [&] { MemPut("/mem/da.lgo", "alt"); }, [&] { MakeLogo("\\mem\\da.lgo", "\\mem\\bild.emf"); },
        [&](const FaultRun &run) {
            EXPECT_TRUE(run.code == XNULL || run.code == XFCREATE ||
                        (run.kind == FAULT::ALLOC && run.code == XALLOC))
                << FaultName(run.kind) << run.n << run.code;
            EXPECT_EQ(MemGet("/mem/da.lgo"), run.code == XNULL ? sound : "alt") << FaultName(run.kind) << run.n;
            EXPECT_EQ(MemOpenFiles(), 0);
        });
    EXPECT_GT(failed, 20);
}

TEST_F(EdcLogo, ReadWithAnyFaultIsAnImageOrAFailure)
{
    MemPut("/mem/a.lgo", LogoFile("a.lgo", 'A', SmallEnhanced()));
    std::unique_ptr<TMetafile> image;
    int failed = SweepFaults([&] { image.reset(); }, [&] { image = LoadLogo("a.lgo"); },
                             [&](const FaultRun &run) {
                                 EXPECT_EQ(image != NULL, run.code == XNULL);
                                 EXPECT_TRUE(run.code == XNULL || run.code == XFOPEN ||
                                             (run.kind == FAULT::ALLOC && run.code == XALLOC))
                                     << FaultName(run.kind) << run.n << run.code;
                                 EXPECT_EQ(MemOpenFiles(), 0);
                             });
    EXPECT_GT(failed, 10);
}

TEST_F(EdcLogo, SharesOneImageAmongAllOfItsName)
{
    PutFramed("a.lgo", 2540, 1270);
    TEdcLogo one, two;
    one.Open("a.lgo");
    two.Open("A.LGO");
    EXPECT_EQ(one.node, two.node);
    EXPECT_EQ(EdcLogoNodesInUse(), 1);
    one.Size(dc, {1000, 1000}, 1);
    MemErase("/mem/a.lgo"); // it is read once
    two.Size(dc, {1000, 1000}, 1);
    EXPECT_EQ(two.size, (TSize{96, 48}));
    one.Close();
    EXPECT_EQ(one.size, TSize());
    EXPECT_EQ(EdcLogoNodesInUse(), 1);
    two.Paint(dc);
    EXPECT_NE(dc.calls, "");
    two.Close();
    two.Close(); // a second time is nothing
    EXPECT_EQ(EdcLogoNodesInUse(), 0);
    two.Open("a.lgo");
    two.Size(dc, {1000, 1000}, 1); // the image went with its last holder
    EXPECT_STREQ(Taken(), "XFOPEN");
    EXPECT_EQ(two.size, TSize());
}

TEST_F(EdcLogo, IsReadAtItsFirstSizeOrPaintAndNotBefore)
{
    TEdcLogo sized, painted;
    sized.Open("a.lgo");
    painted.Open("b.lgo");
    PutFramed("a.lgo", 2540, 1270);
    PutFramed("b.lgo", 2540, 1270);
    sized.Size(dc, {50, 50}, 1);
    painted.Paint(dc);
    EXPECT_EQ(sized.size, (TSize{50, 25}));
    MemErase("/mem/b.lgo");
    painted.Size(dc, {50, 50}, 1);
    EXPECT_EQ(painted.size, (TSize{50, 25}));
    TEdcLogo missing;
    missing.Open("c.lgo");
    missing.Paint(dc);
    EXPECT_STREQ(Taken(), "XFOPEN");
    EXPECT_STREQ(xFOpenName, "\\mem\\c.lgo");
    PutFramed("c.lgo", 2540, 1270); // it may come later
    missing.Size(dc, {50, 50}, 1);
    EXPECT_EQ(missing.size, (TSize{50, 25}));
}

TEST_F(EdcLogo, OpenedAnewHoldsTheNewName)
{
    TEdcLogo logo;
    logo.Open("a.lgo");
    logo.Open("b.lgo");
    EXPECT_EQ(EdcLogoNodesInUse(), 1);
    PutFramed("b.lgo", 2540, 1270);
    logo.Size(dc, {50, 50}, 1);
    MemErase("/mem/b.lgo");
    logo.Open("b.lgo"); // the same: its image stays
    logo.Size(dc, {50, 50}, 1);
    EXPECT_EQ(logo.size, (TSize{50, 25}));
}

TEST_F(EdcLogo, HasRoomForFiftyNames)
{
    TEdcLogo logos[EDC_LOGO_TABMAX];
    for (int i = 0; i < EDC_LOGO_TABMAX; ++i)
        logos[i].Open(("logo" + std::to_string(i)).c_str());
    EXPECT_EQ(EdcLogoNodesInUse(), 50);
    TEdcLogo more;
    more.Open("LOGO7");
    EXPECT_EQ(more.node, logos[7].node);
    EXPECT_TRUE(AbortsOnAssertion("node-logotab < EDC_LOGO_TABMAX", "usr/edcitem_logo.cpp",
                                  [&] { TEdcLogo().Open("logo50"); }));
    logos[3].Close();
    more.Open("logo50");
    EXPECT_EQ(EdcLogoNodesInUse(), 50);
}

TEST_F(EdcLogo, StopsTheProgramWhenItIsMisused)
{
    PutFramed("a.lgo", 2540, 1270);
    TEdcLogo logo;
    logo.Open("a.lgo");
    const char *file = "usr/edcitem_logo.cpp";
    EXPECT_TRUE(AbortsOnAssertion("fname != NULL", file, [] { LoadLogo(NULL); }));
    EXPECT_TRUE(AbortsOnAssertion("lfpath != NULL", file, [] { MakeLogo(NULL, "a"); }));
    EXPECT_TRUE(AbortsOnAssertion("mfpath != NULL", file, [] { MakeLogo("a", NULL); }));
    EXPECT_TRUE(AbortsOnAssertion("node->hemf != NULL", file, [&] { logo.Fit(dc, {1, 1}, true); }));
    EXPECT_TRUE(AbortsOnAssertion("node->hemf != NULL && scale >= 0", file, [&] {
        logo.Size(dc, {1, 1}, -1);
    }));
}

TEST_F(EdcLogo, HasItsNaturalSizeUnlessItsBoxIsSmaller)
{
    const struct {
        TSize frame; // 0.01 mm
        TSize box;
        double scale;
        TSize size;
    } rows[] = {
        {{2540, 1270}, {1000, 1000}, 1, {96, 48}},
        {{2540, 1270}, {96, 48}, 1, {96, 48}},
        {{2540, 1270}, {1000, 1000}, 0.5, {48, 24}},
        {{2540, 1270}, {1000, 1000}, 2.5, {240, 120}},
        {{2540, 1270}, {1000, 1000}, 0, {0, 0}},
        {{2540, 1270}, {95, 1000}, 1, {95, 48}}, // 47.5, rounded away from zero
        {{2540, 1270}, {1000, 40}, 1, {80, 40}},
        {{2540, 1270}, {40, 40}, 1, {40, 20}},
        {{1270, 2540}, {40, 40}, 1, {20, 40}},
        {{2540, 2540}, {0, 40}, 1, {0, 40}},       // an empty box has no ratio
        {{1000, 1000}, {1000, 1000}, 1, {38, 38}}, // 37.8
    };
    for (const auto &row : rows) {
        PutFramed("a.lgo", row.frame.cx, row.frame.cy);
        TEdcLogo logo;
        logo.Open("a.lgo");
        logo.Size(dc, row.box, row.scale);
        EXPECT_EQ(logo.size, row.size) << row.frame.cx << " in " << row.box.cx << " x " << row.box.cy << " at "
                                       << row.scale << ": " << logo.size.cx << " x " << logo.size.cy;
    }
}

TEST_F(EdcLogo, FillsItsBoxWithOrWithoutItsRatio)
{
    PutFramed("a.lgo", 2000, 1000);
    TEdcLogo logo;
    logo.Open("a.lgo");
    logo.Size(dc, {10, 10}, 1);
    const struct {
        TSize box;
        bool keepRatio;
        TSize size;
    } rows[] = {
        {{200, 300}, false, {200, 300}}, {{200, 300}, true, {200, 100}}, {{200, 100}, true, {200, 100}},
        {{200, 99}, true, {198, 99}},    {{300, 100}, true, {200, 100}}, {{0, 100}, true, {0, 100}},
        {{1, 1}, true, {1, 1}}, // half a pixel counts
    };
    for (const auto &row : rows) {
        logo.Fit(dc, row.box, row.keepRatio);
        EXPECT_EQ(logo.size, row.size) << row.box.cx << " x " << row.box.cy;
    }
}

TEST_F(EdcLogo, WithoutANodeIsNothing)
{
    TEdcLogo logo;
    logo.size = {5, 5};
    logo.Size(dc, {100, 100}, 1);
    EXPECT_EQ(logo.size, TSize());
    logo.size = {5, 5};
    logo.Fit(dc, {100, 100}, false);
    EXPECT_EQ(logo.size, TSize());
    logo.Paint(dc);
    EXPECT_EQ(dc.calls, "");
}

TEST_F(EdcLogo, StandsAtTheStartTheCentreOrTheEndOfItsBox)
{
    PutFramed("a.lgo", 2540, 1270);
    TEdcLogo logo;
    logo.Open("a.lgo");
    logo.Size(dc, {201, 101}, 1); // 96 x 48
    const struct {
        int hPos, vPos;
        TPoint corner, position;
    } rows[] = {
        {1, 1, {0, 0}, {0, 0}},   {5, 5, {0, 0}, {52, 26}},   {9, 9, {0, 0}, {105, 53}},
        {9, 1, {0, 0}, {105, 0}}, {1, 9, {10, 20}, {10, 73}}, {5, 9, {10, 20}, {62, 73}},
    };
    for (const auto &row : rows) {
        logo.MoveBox(row.corner);
        logo.Place(row.hPos, row.vPos);
        EXPECT_EQ(logo.position, row.position) << row.hPos << " " << row.vPos;
    }
}

TEST_F(EdcLogo, PlaysItsPictureIntoItsRectangle)
{
    MemPut("/mem/a.lgo", LogoFile("a.lgo", 'A', SmallEnhanced()));
    TEdcLogo logo;
    logo.Open("a.lgo");
    logo.Size(dc, {100, 100}, 1);
    logo.MoveBox({10, 20});
    logo.Place(1, 1);
    logo.Paint(dc);
    TRecordDC plain;
    LoadLogo("a.lgo")->Play(plain, {10, 20, 110, 120});
    EXPECT_EQ(dc.calls, plain.calls);
    EXPECT_NE(dc.calls, "");
}

TEST(EdcLogoOnDisk, FromWhatIsNoFileIsRefusedAtOnce)
{
    FOLDER folder;
    SetLogoDirectory(folder.Name("").c_str());
    ASSERT_EQ(mkdir(folder.Path("ordner.lgo").c_str(), 0700), 0);
    ASSERT_EQ(mkfifo(folder.Path("rohr.lgo").c_str(), 0600), 0);
    ASSERT_EQ(symlink("/dev/zero", folder.Path("null.lgo").c_str()), 0);
    int before = OpenDescriptors();
    for (const char *name : {"ordner.lgo", "rohr.lgo", "null.lgo", "fehlt.lgo"}) {
        EXPECT_TRUE(LoadLogo(name) == NULL) << name;
        EXPECT_STREQ(Taken(), "XFOPEN") << name;
        EXPECT_EQ(std::string(xFOpenName), folder.Name(name));
    }
    EXPECT_EQ(OpenDescriptors(), before);
    SetLogoDirectory(NULL);
}

TEST(EdcLogoOnDisk, OfAFolderThatMayNotBeWrittenIsRead)
{
    FOLDER folder;
    SetLogoDirectory(folder.Name("").c_str());
    folder.Put("a.lgo", LogoFile("a.lgo", 'A', SmallEnhanced()));
    ASSERT_EQ(chmod(folder.Path("a.lgo").c_str(), 0444), 0);
    ASSERT_EQ(chmod(folder.Path("").c_str(), 0555), 0);
    {
        PLAINUSER user;
        EXPECT_TRUE(LoadLogo("a.lgo") != NULL);
    }
    EXPECT_STREQ(Taken(), XNULL);
    SetLogoDirectory(NULL);
}
