#include "win/gdi.h"

#include <gtest/gtest.h>

#include <climits>
#include <new>

TEST(Bitmap, ANewOneIsAllZeroAndHasNoColours)
{
    const TBitmap bitmap(3, 2);
    EXPECT_EQ(bitmap.Width(), 3);
    EXPECT_EQ(bitmap.Height(), 2);
    EXPECT_TRUE(bitmap.Colors().empty());
    for (int y = 0; y < 2; ++y) {
        for (int x = 0; x < 3; ++x)
            EXPECT_EQ(bitmap.Pixel(x, y), 0);
    }
}

TEST(Bitmap, KeepsEachPixelInItsRow)
{
    TBitmap bitmap(3, 2);
    bitmap.SetPixel(2, 0, 7);
    bitmap.SetPixel(0, 1, 255);
    EXPECT_EQ(bitmap.Row(0)[2], 7);
    EXPECT_EQ(bitmap.Row(1)[0], 255);
    EXPECT_EQ(bitmap.Pixel(2, 1), 0);
}

TEST(Bitmap, TakesTheFirst256ColoursOfAPalette)
{
    TBitmap bitmap(1, 1);
    TPalette palette;
    palette.entries.resize(300);
    palette.entries[255] = {1, 2, 3};
    bitmap.SetPalette(palette);
    ASSERT_EQ(bitmap.Colors().size(), 256u);
    EXPECT_EQ(bitmap.Colors()[255], (TColor{1, 2, 3}));
    palette.entries.resize(2);
    bitmap.SetPalette(palette);
    EXPECT_EQ(bitmap.Colors().size(), 2u);
}

TEST(Bitmap, OneThatNoMemoryHoldsThrows)
{
    EXPECT_THROW(TBitmap(INT_MAX, INT_MAX), std::bad_alloc);
    EXPECT_THROW(TBitmap(1 << 20, 1 << 20), std::bad_alloc);
}

TEST(Bitmap, MayBeEmpty)
{
    EXPECT_EQ(TBitmap(0, 5).Width(), 0);
    EXPECT_EQ(TBitmap(INT_MAX, 0).Height(), 0);
}

TEST(BitmapDeathTest, NegativeExtentsAreAFaultOfTheProgram)
{
    EXPECT_DEATH(TBitmap(-1, 5), "width >= 0 && height >= 0");
}
