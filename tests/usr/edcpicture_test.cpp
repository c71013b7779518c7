// A map's bitmap over its part of the plan: which calls it makes, and which pixels come of them.
#include "support/recorddc.h"
#include "support/testapp.h"
#include "usr/edcapp.h"
#include "usr/edcbase2.h"
#include "usr/edcitem.h"

#include <gtest/gtest.h>

TEST(TEdcPicture, StretchesItsBitmapOverItsRectangle)
{
    TRecordDC dc;
    TEdcPicture picture(4, 3);
    picture.SetRect({10, 20, 110, 70});
    picture.Paint(dc);
    EXPECT_EQ(dc.calls, "Bitmap 10,20,110,70 4x3\n");
}

TEST(TEdcPicture, PrintsInAMixOfItsOwn)
{
    TRecordDC dc;
    TEdcPicture picture(4, 3);
    picture.SetRect({10, 20, 110, 70});
    picture.Print(dc);
    picture.printMix = WIN_MIX_MASK;
    picture.Print(dc);
    picture.Paint(dc);
    EXPECT_EQ(dc.calls, "Bitmap 10,20,110,70 4x3\n"
                        "Bitmap 10,20,110,70 4x3 mask\n"
                        "Bitmap 10,20,110,70 4x3\n");
}

TEST(TEdcPicture, LeavesTheMixOfTheDeviceContext)
{
    TRecordDC dc;
    TEdcPicture picture(1, 1);
    dc.SetMix(WIN_MIX_XOR);
    picture.Paint(dc);
    EXPECT_EQ(dc.State().mix, WIN_MIX_XOR);
    picture.Print(dc);
    EXPECT_EQ(dc.State().mix, WIN_MIX_XOR);
}

TEST(TEdcPicture, TakesTheCornersThatAxesGiveIt)
{
    TEdcDocument doc;
    SetAppDocument(&doc);
    TRecordDC dc;
    TEdcAxes axes;
    axes.SetFlags(0);
    axes.SetXRange(0, 20);
    axes.SetYRange(0, 10);
    axes.Layout(dc, {0, 0, 200, 100}, 1.0, true);
    TPoint low = axes.ToDevice(AgE0);
    TPoint high = axes.ToDevice(AgPOINT(20, 10));
    TEdcPicture picture(2, 1);
    picture.SetRect({low.x, low.y, high.x, high.y}); // y upwards, so top and bottom change places
    picture.Paint(dc);
    EXPECT_EQ(dc.calls, "Bitmap 0,0,200,100 2x1\n");
}

TEST(TEdcPicture, ShowsEachPointOfTheRasterAsABlock)
{
    TestApplication();
    TMemoryDC dc({60, 50}, 96);
    TEdcPicture picture(3, 2);
    TPalette palette;
    for (int i = 0; i < 6; ++i)
        palette.entries.push_back({static_cast<uint8_t>(40 * i), 100, 200});
    picture.bitmap.SetPalette(palette);
    for (int i = 0; i < 6; ++i)
        picture.bitmap.SetPixel(i % 3, i / 3, static_cast<uint8_t>(i));
    picture.SetRect({10, 5, 40, 25}); // blocks of 10 x 10
    picture.Paint(dc);
    for (int y = 0; y < 50; ++y) {
        for (int x = 0; x < 60; ++x) {
            TColor wanted = WIN_WHITE;
            if (TRect{10, 5, 40, 25}.Contains({x, y}))
                wanted = palette.entries[static_cast<size_t>((x - 10) / 10 + (y - 5) / 10 * 3)];
            ASSERT_EQ(dc.Pixel({x, y}), wanted) << x << "," << y;
        }
    }
}

TEST(TEdcPicture, LetsItsMixMeetWhatLiesUnderIt)
{
    TestApplication();
    TMemoryDC dc({4, 4}, 96);
    dc.FillRect({0, 0, 4, 4}, SolidBrush({0xF0, 0x0F, 0xFF}));
    TEdcPicture picture(1, 1);
    picture.bitmap.SetPalette(TPalette{{{0x3C, 0xFF, 0x0F}}});
    picture.SetRect({0, 0, 4, 4});
    picture.printMix = WIN_MIX_MASK;
    picture.Print(dc);
    EXPECT_EQ(dc.Pixel({2, 2}), (TColor{0x30, 0x0F, 0x0F}));
}
