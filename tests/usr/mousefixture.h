// The fixture of a document in a small window whose first block has a tool that writes its events down.
#ifndef TESTS_USR_MOUSEFIXTURE_H
#define TESTS_USR_MOUSEFIXTURE_H

#include "support/testblock.h"
#include "win/testdoor.h"

#include <gtest/gtest.h>

/// Two blocks of 300 x 300 pixels below each other in a window of 200 x 150; the first one has a tool, the
/// second one is executed.
class Mouse : public testing::Test
{
protected:
    void SetUp() override
    {
        a = doc.Append("a", EDC_BoSELECT, 3.125, 3.125);
        b = doc.Append("b", EDC_BoSELECT | EDC_BoEXECUTE | EDC_BoROW, 3.125, 3.125);
        a->tool = &tool;
        doc.docZoom.SetCustom(100);
        doc.blockZoom.SetCustom(100);
        if (!doc.IsCreated())
            doc.Create();
        testdoor::ResizeClient(doc, {200, 150});
        doc.Start("C:\\x.tst");
        testdoor::Settle();
        testdoor::PendingScripts();
        testdoor::UnexpectedBoxes();
    }
    void TearDown() override
    {
        EXPECT_EQ(testdoor::PendingScripts(), 0);
        EXPECT_EQ(testdoor::UnexpectedBoxes(), 0);
        EXPECT_FALSE(doc.HasCapture());
    }
    void OpenA()
    {
        doc.OpenBlock(a);
        doc.Refresh(0);
        testdoor::Settle();
        doc.log.Take();
    }
    void ExpectIdle(const char *when)
    {
        EXPECT_EQ(doc.leftDown, 0) << when;
        EXPECT_EQ(doc.rightDown, 0) << when;
        EXPECT_FALSE(doc.autoScroll) << when;
        EXPECT_FALSE(doc.HasCapture()) << when;
    }

    TTestDoc doc;
    TTestTool tool{"t", doc.log};
    TTestBlock *a;
    TTestBlock *b;
};

#endif
