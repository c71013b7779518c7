// Looking up menus, keys, pictures and dialogs, and drawing pictures at any scale.
#include "frameclient.h"
#include "support/metawriter.h"

#include <gtest/gtest.h>

namespace
{
/// A picture of 1600 units in both directions: one red polygon without an outline.
std::string RedPolygon(const std::vector<TPoint> &points)
{
    META32 polygon = {0, 0, 1600, 1600, static_cast<uint32_t>(points.size())};
    for (TPoint p : points) {
        polygon.push_back(static_cast<uint32_t>(p.x));
        polygon.push_back(static_cast<uint32_t>(p.y));
    }
    return EnhancedFile({{39, {1, 0, 0x0000FF, 0}}, // solid brush 1, red
                         {37, {1}},
                         {37, {0x80000008}}, // no pen
                         {3, polygon}});
}

const uint32_t RED = 0xFFFF0000;
const uint32_t CLEAR = 0;

class Pictures : public testing::Test
{
protected:
    Pictures() { TestApplication(); }

    /// Makes `bytes` picture 7.
    TDrawnPicture Draw(const std::string &bytes, int width, int height, double scale)
    {
        picture = {7, reinterpret_cast<const uint8_t *>(bytes.data()), bytes.size(), width, height, 3, 4};
        resources.tables.pictures = &picture;
        resources.tables.pictureCount = 1;
        return DrawPicture(7, scale);
    }

    ClientResources resources;
    ResPICTURE picture = {};
};
} // namespace

TEST_F(Pictures, KeepTheirColoursAndLeaveFreeWhatTheyDoNotCover)
{
    std::string half = RedPolygon({{0, 0}, {800, 0}, {800, 1600}, {0, 1600}});
    for (double scale : {1.0, 1.5, 2.0}) {
        TDrawnPicture drawn = Draw(half, 8, 4, scale);
        ASSERT_EQ(drawn.size, (TSize{static_cast<int>(8 * scale), static_cast<int>(4 * scale)}));
        ASSERT_EQ(drawn.pixels.size(), static_cast<size_t>(drawn.size.cx * drawn.size.cy));
        for (int y = 0; y < drawn.size.cy; ++y)
            for (int x = 0; x < drawn.size.cx; ++x)
                EXPECT_EQ(drawn.pixels[static_cast<size_t>(y * drawn.size.cx + x)],
                          x < drawn.size.cx / 2 ? RED : CLEAR)
                    << x << "," << y << " at " << scale;
    }
}

TEST_F(Pictures, PartlyCoveredPixelsArePartlyTransparent)
{
    TDrawnPicture drawn = Draw(RedPolygon({{0, 0}, {1600, 0}, {0, 1600}}), 16, 16, 1);
    uint32_t edge = drawn.pixels[16 * 7 + 8]; // the slope halves it
    EXPECT_GT(edge >> 24, 80u);
    EXPECT_LT(edge >> 24, 176u);
    EXPECT_EQ(edge >> 16 & 0xFF, edge >> 24) << "red times its share";
    EXPECT_EQ(edge & 0xFFFF, 0u);
    EXPECT_EQ(drawn.pixels[0], RED);
    EXPECT_EQ(drawn.pixels[255], CLEAR);
}

TEST_F(Pictures, HotSpotFollowsTheScale)
{
    TDrawnPicture drawn = Draw(RedPolygon({{0, 0}, {1600, 0}, {0, 1600}}), 32, 32, 1.5);
    EXPECT_EQ(drawn.hot, (TPoint{5, 6})); // 4.5 and 6
}

TEST_F(Pictures, UnsoundAndMissingOnesAreEmpty)
{
    for (const std::string &bytes :
         {std::string(), std::string(200, '\0'), RedPolygon({{0, 0}, {9, 9}}).substr(0, 120)}) {
        TDrawnPicture drawn = Draw(bytes, 8, 8, 1);
        EXPECT_EQ(drawn.size, TSize());
        EXPECT_TRUE(drawn.pixels.empty());
    }
    EXPECT_TRUE(DrawPicture(8, 1).pixels.empty());
}

TEST_F(Pictures, ExtentsStayWithinBounds)
{
    std::string red = RedPolygon({{0, 0}, {1600, 0}, {0, 1600}});
    EXPECT_EQ(Draw(red, 10, 10, 1e6).size, (TSize{PICTURE_MAX, PICTURE_MAX}));
    EXPECT_EQ(Draw(red, 0, -5, 1).size, (TSize{1, 1}));
    EXPECT_EQ(Draw(red, 10, 10, 0).size, (TSize{1, 1}));
}

TEST(Tables, AreSearchedByNumber)
{
    ClientResources resources;
    EXPECT_EQ(FindMenu(1)->items, clientItems);
    EXPECT_EQ(FindMenu(3)->items, otherItems);
    for (int id : {0, 4, -1, 100000})
        EXPECT_EQ(FindMenu(id), static_cast<const ResMENU *>(NULL)) << id;
    EXPECT_STREQ(FindAccelerator(101), "Ctrl+O");
    EXPECT_STREQ(FindAccelerator(107), "F5");
    EXPECT_EQ(FindAccelerator(103), static_cast<const char *>(NULL));
    EXPECT_EQ(Accelerators().size(), 6u);
}

TEST(Tables, FirstOfSeveralKeysIsTheOneThatMenusShow)
{
    static const ResACCEL keys[] = {{1, "F2"}, {5, "Del"}, {5, "Ctrl+D"}, {5, "F8"}, {6, "F9"}};
    ClientResources resources;
    resources.tables.accels = keys;
    resources.tables.accelCount = 5;
    EXPECT_STREQ(FindAccelerator(5), "Del");
}

TEST(Tables, HaveDialogsByNumber)
{
    static const ResCONTROL lines[] = {{RES_EDIT, 100, "", 0, 7, 7, 50, 13, 0},
                                       {RES_DEFAULT, 1, "OK", 0, 7, 27, 50, 14, 0}};
    static const ResDIALOG dialogs[] = {{20100, "a", 64, 48, lines, 2}, {22000, "b", 64, 48, lines, 1}};
    ClientResources resources;
    EXPECT_EQ(FindDialog(20100), static_cast<const ResDIALOG *>(NULL));
    resources.tables.dialogs = dialogs;
    resources.tables.dialogCount = 2;
    EXPECT_EQ(FindDialog(20100), dialogs);
    EXPECT_EQ(FindDialog(22000), dialogs + 1);
    for (int id : {0, -1, 20099, 20101, 22001, 100000})
        EXPECT_EQ(FindDialog(id), static_cast<const ResDIALOG *>(NULL)) << id;
}

TEST(Tables, WithoutThemNothingIsFound)
{
    const ResTABLES *former = SetResourceTables(NULL);
    EXPECT_EQ(FindMenu(1), static_cast<const ResMENU *>(NULL));
    EXPECT_EQ(FindAccelerator(101), static_cast<const char *>(NULL));
    EXPECT_EQ(FindPicture(1), static_cast<const ResPICTURE *>(NULL));
    EXPECT_EQ(FindDialog(1), static_cast<const ResDIALOG *>(NULL));
    EXPECT_TRUE(Accelerators().empty());
    EXPECT_EQ(SetResourceTables(former), static_cast<const ResTABLES *>(NULL));
}
