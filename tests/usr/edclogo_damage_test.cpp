// Damaged logo files: whatever the bytes are, there is an image or the failure to open the file, and the next
// file is read as ever.
#include "usr/edcitem.h"

#include "support/countdc.h"
#include "support/logofile.h"
#include "support/memdisk.h"

#include "win/metafile.h"

#include <gtest/gtest.h>

#include "lib/xon.h"

namespace
{
struct KIND {
    const char *name;
    bool narrow; // records of 16-bit words
    std::string (*image)(CHANCE &chance);
};

std::string RandomPlaceable(CHANCE &chance)
{
    return PlaceableFile({}, RandomPlain(chance));
}

const KIND kinds[] = {
    {"enhanced", false, RandomEnhanced},
    {"placeable", true, RandomPlaceable},
    {"plain", true, RandomPlain},
};

class DamagedLogo : public testing::Test
{
protected:
    DamagedLogo() { SetLogoDirectory("\\mem"); }
    ~DamagedLogo() override { SetLogoDirectory(NULL); }

    /// Loads the bytes and plays what comes. True for an image.
    static bool Loads(const std::string &bytes)
    {
        MemPut("/mem/a.lgo", bytes);
        xFOpenName[0] = '\0';
        std::unique_ptr<TMetafile> image = LoadLogo("a.lgo");
        XCODE code = xCode;
        xCode = XNULL;
        if (image != NULL) {
            EXPECT_STREQ(code, XNULL);
            TCountDC dc;
            image->Play(dc, {0, 0, 64, 32});
            EXPECT_TRUE(image->Frame().cx >= 0 && image->Frame().cy >= 0);
        } else {
            EXPECT_STREQ(code, XFOPEN);
            EXPECT_STREQ(xFOpenName, "\\mem\\a.lgo");
        }
        EXPECT_EQ(MemOpenFiles(), 0);
        return image != NULL;
    }
    /// One to four places anywhere in the file, or damage that knows the records.
    static std::string Damaged(const std::string &sound, const KIND &kind, CHANCE &chance)
    {
        std::string file = sound;
        if (chance.One(2)) {
            std::string image = file.substr(64);
            DamageMetafile(image, kind.narrow, chance);
            return file.substr(0, 64) + image;
        }
        for (int i = chance.Int(1, 4); i > 0 && !file.empty(); --i) {
            size_t at = static_cast<size_t>(chance.Int(0, static_cast<int>(file.size()) - 1));
            if (chance.One(3)) // the headers are small, and what they say counts
                at %= 64 + 108;
            at = std::min(at, file.size() - 1);
            switch (chance.Int(0, 3)) {
            case 0:
                file[at] = static_cast<char>(file[at] ^ 1 << chance.Int(0, 7));
                break;
            case 1:
                file[at] = static_cast<char>(chance.Int(0, 255));
                break;
            case 2:
                file.erase(at, static_cast<size_t>(chance.Int(1, 4)));
                break;
            case 3:
                file.insert(at, static_cast<size_t>(chance.Int(1, 4)), static_cast<char>(chance.Int(0, 255)));
                break;
            }
        }
        return file;
    }

    MemDisk memory;
};
} // namespace

TEST_F(DamagedLogo, CutAtAnyByteIsRefusedOrAnImage)
{
    for (const KIND &kind : kinds) {
        CHANCE chance(1);
        const std::string sound = LogoFile("a.lgo", 'A', kind.image(chance));
        int images = 0;
        for (size_t length = 0; length < sound.size(); ++length) {
            bool loads = Loads(sound.substr(0, length));
            EXPECT_TRUE(length >= 64 + 18 || !loads) << kind.name << " " << length;
            images += loads;
        }
        EXPECT_TRUE(Loads(sound)) << kind.name;
        EXPECT_LT(images, static_cast<int>(sound.size()) / 10) << kind.name;
    }
}

TEST_F(DamagedLogo, ChangedAnywhereIsRefusedOrAnImage)
{
    for (const KIND &kind : kinds) {
        CHANCE chance(2);
        std::string sound;
        int images = 0;
        const int times = 34000; // of a hundred thousand for all kinds
        for (int i = 0; i < times && !HasFailure(); ++i) {
            if (i % 100 == 0)
                sound = LogoFile("a.lgo", 'A', kind.image(chance));
            images += Loads(Damaged(sound, kind, chance));
            if (i % 100 == 99) {
                EXPECT_TRUE(Loads(sound)) << kind.name;
            }
        }
        EXPECT_GT(images, times / 50) << kind.name; // both ends are met
        EXPECT_LT(images, times * 9 / 10) << kind.name;
    }
}

TEST_F(DamagedLogo, LeavesTheTableAsItWas)
{
    CHANCE chance(3);
    TCountDC dc;
    const std::string sound = LogoFile("a.lgo", 'A', RandomEnhanced(chance));
    for (int i = 0; i < 500; ++i) {
        TEdcLogo logo;
        MemPut("/mem/a.lgo", Damaged(sound, kinds[0], chance));
        logo.Open("a.lgo");
        logo.Size(dc, {64, 32}, 1);
        logo.Place(5, 5);
        if (xCode == XNULL)
            logo.Paint(dc);
        XCODE code = xCode;
        xCode = XNULL;
        EXPECT_TRUE(code == XNULL || code == XFOPEN) << code;
        EXPECT_TRUE(logo.size.cx >= 0 && logo.size.cx <= 64 && logo.size.cy >= 0 && logo.size.cy <= 32);
        logo.Close();
        EXPECT_EQ(EdcLogoNodesInUse(), 0);
    }
}
