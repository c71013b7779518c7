// Colours that a part of the application registers, and the scales that find theirs in the composed palette.
#include "support/child.h"
#include "support/fault.h"
#include "support/recorddc.h"
#include "usr/edcapp.h"
#include "usr/edcbase2.h"

#include <gtest/gtest.h>

#include "lib/xon.h"

namespace
{
const char *const SOURCE = "usr/edcbase1.cpp";
} // namespace

TEST(TEdcPalette, TakesColoursUpToItsCapacityAndIgnoresMore)
{
    TEdcColorScale scale;
    TEdcPalette palette;
    EXPECT_EQ(palette.colors, 0);
    palette.SetColors(2);
    palette.Add(1, 2, 3, &scale, 4);
    palette.Add(5, 6, 7, NULL);
    palette.Add(8, 9, 10, &scale);
    ASSERT_EQ(palette.count, 2);
    EXPECT_EQ(palette.colors, 2);
    EXPECT_EQ(palette.defs[0].red, 1);
    EXPECT_EQ(palette.defs[0].green, 2);
    EXPECT_EQ(palette.defs[0].blue, 3);
    EXPECT_EQ(palette.defs[0].flags, 4);
    EXPECT_EQ(palette.defs[0].scale, &scale);
    EXPECT_EQ(palette.defs[1].red, 5);
    EXPECT_EQ(palette.defs[1].flags, 0);
    EXPECT_EQ(palette.defs[1].scale, static_cast<TEdcColorScale *>(NULL));
}

TEST(TEdcPalette, StartsOverWithANewCapacity)
{
    TEdcPalette palette;
    palette.SetColors(1);
    palette.Add(1, 1, 1, NULL);
    palette.SetColors(3);
    EXPECT_EQ(palette.count, 0);
    EXPECT_EQ(palette.colors, 3);
}

TEST(TEdcPalette, KeepsItsColoursWhereMemoryIsOut)
{
    TEdcPalette palette;
    palette.SetColors(1);
    palette.Add(1, 2, 3, NULL);
    {
        FaultArm arm(FAULT::ALLOC, 1, true);
        palette.SetColors(5);
    }
    EXPECT_EQ(xCode, XALLOC);
    xCode = XNULL;
    EXPECT_EQ(palette.colors, 1);
    ASSERT_EQ(palette.count, 1);
    EXPECT_EQ(palette.defs[0].green, 2);
}

TEST(TEdcPalette, RefusesColoursBeforeItHasRoomForThem)
{
    TEdcPalette palette;
    EXPECT_TRUE(AbortsOnAssertion("colors > 0", SOURCE, [&] { palette.SetColors(0); }));
    EXPECT_TRUE(AbortsOnAssertion("colors > 0", SOURCE, [&] { palette.SetColors(-1); }));
    EXPECT_TRUE(AbortsOnAssertion("defs != NULL", SOURCE, [&] { palette.Add(0, 0, 0, NULL); }));
}

TEST(TEdcPalette, IsSelectedOnlyIntoDevicesThatHaveOne)
{
    TPalette composed{{{1, 2, 3}, {4, 5, 6}}};
    TEdcPalette palette;
    TRecordDC dc;
    EXPECT_TRUE(AbortsOnAssertion("compal != NULL", SOURCE, [&] { palette.Select(dc); }));
    palette.compal = &composed;
    palette.Select(dc);
    EXPECT_EQ(dc.calls, "");
    dc.palette = true;
    palette.Select(dc);
    EXPECT_EQ(dc.calls, "Palette 2\n");
}

TEST(TEdcColorScale, FindsItsColoursInTheComposedPalette)
{
    TPalette composed{{{1, 1, 1}, {2, 2, 2}, {3, 3, 3}, {4, 4, 4}}};
    TEdcColorScale scale;
    scale.first = 1;
    scale.size = 2;
    scale.palette = &composed;
    EXPECT_EQ(scale.Size(), 2);
    EXPECT_EQ(scale.Color(0), (TColor{2, 2, 2}));
    EXPECT_EQ(scale.Color(1), (TColor{3, 3, 3}));
    EXPECT_EQ(scale.Index(1), 2);
    EXPECT_TRUE(AbortsOnAssertion("index >= 0 && index < size", SOURCE, [&] { scale.Color(2); }));
    EXPECT_TRUE(AbortsOnAssertion("index >= 0 && index < size", SOURCE, [&] { scale.Color(-1); }));
    scale.palette = NULL;
    EXPECT_TRUE(AbortsOnAssertion("palette != NULL", SOURCE, [&] { scale.Color(0); }));
}

TEST(TEdcDocument, ComposesThePalettesOfItsPartsIntoOne)
{
    TEdcDocument doc;
    SetAppDocument(&doc);
    TEdcColorScale plan, map;
    TEdcPalette a, b;
    a.SetColors(3);
    a.Add(10, 0, 0, &plan);
    a.Add(11, 0, 0, &plan);
    a.Add(12, 0, 0, NULL);
    b.SetColors(2);
    b.Add(20, 0, 0, &map);
    b.Add(21, 0, 0, &map);
    doc.AddPalette(&a);
    doc.AddPalette(&b); // the head of the chain
    doc.obsolete = 0;
    doc.ComposePalette();
    EXPECT_EQ(doc.obsolete, EDC_PAINT);
    ASSERT_NE(doc.compal, static_cast<TPalette *>(NULL));
    ASSERT_EQ(doc.compal->entries.size(), 5u);
    const uint8_t reds[] = {20, 21, 10, 11, 12};
    for (size_t i = 0; i < 5; ++i)
        EXPECT_EQ(doc.compal->entries[i].red, reds[i]);
    EXPECT_EQ(map.first, 0);
    EXPECT_EQ(map.size, 2);
    EXPECT_EQ(plan.first, 2);
    EXPECT_EQ(plan.size, 2);
    EXPECT_EQ(plan.palette, doc.compal);
    EXPECT_EQ(a.compal, doc.compal);
    EXPECT_EQ(b.compal, doc.compal);
    EXPECT_EQ(plan.Color(1).red, 11);
    EXPECT_EQ(map.Index(1), 1);
}

TEST(TEdcDocument, ComposedAgainHandsOutTheNewPalette)
{
    TEdcDocument doc;
    SetAppDocument(&doc);
    TEdcColorScale first, second;
    TEdcPalette a, b;
    a.SetColors(1);
    a.Add(1, 0, 0, &first);
    doc.AddPalette(&a);
    doc.ComposePalette();
    b.SetColors(2);
    b.Add(2, 0, 0, &second);
    b.Add(3, 0, 0, &second);
    doc.AddPalette(&b);
    doc.ComposePalette();
    EXPECT_EQ(first.first, 2);
    EXPECT_EQ(first.size, 1);
    EXPECT_EQ(first.Color(0).red, 1);
    EXPECT_EQ(second.Color(1).red, 3);
}
