// The block of one text: its defaults, its own copies, and its height on devices and at scales.
#include "usr/edcapp.h"
#include "usr/edcbase2.h"
#include "usr/edcblks.h"

#include "support/fault.h"
#include "support/recorddc.h"

#include <gtest/gtest.h>

#include "lib/xon.h"

namespace
{
class EdcTextBlock : public testing::Test
{
protected:
    EdcTextBlock() { SetAppDocument(&doc); }

    /// The height in pixels that the block takes where it is offered this width, and what it then draws.
    int Height(TRecordDC &dc, double inches, double scale)
    {
        TEdcSize size(inches, 100);
        blk.Layout(dc, size, scale);
        EXPECT_EQ(size.Width(), inches);
        int height = size.ToPixels(dc, scale).cy;
        dc.calls.clear();
        blk.Paint(dc, {0, 0, 10, height});
        return height;
    }

    TEdcDocument doc;
    TEdcTextBlock blk;
    TRecordDC screen{96};
    TRecordDC printer{600};
};
} // namespace

TEST_F(EdcTextBlock, IsAsWideAsWhatIsLeftAndAsHighAsThePageWhenNew)
{
    EXPECT_EQ(blk.size.width, 0);
    EXPECT_EQ(blk.size.height, 1);
    EXPECT_EQ(blk.size.unit, EDC_UREL);
    blk.SetSize(0.5);
    EXPECT_EQ(blk.size.width, 0.5);
    EXPECT_EQ(blk.size.height, 1);
    EXPECT_EQ(blk.size.unit, EDC_UREL);
    blk.SetSize(3, 2, EDC_UCM);
    EXPECT_EQ(blk.size.width, 3);
    EXPECT_EQ(blk.size.height, 2);
    EXPECT_EQ(blk.size.unit, EDC_UCM);
}

TEST_F(EdcTextBlock, WithoutATextHasNoHeight)
{
    EXPECT_EQ(Height(screen, 1, 1), 0);
    EXPECT_EQ(screen.calls, "");
    blk.SetText("a");
    blk.SetText(NULL);
    EXPECT_EQ(Height(screen, 1, 1), 0);
    blk.SetText("");
    EXPECT_EQ(Height(screen, 1, 1), 16);
}

TEST_F(EdcTextBlock, IsAsHighAsItsTextIsOnTheDevice)
{
    // 10 points are 13.3 pixels on the screen, 83.3 on the printer.
    blk.SetText("abc def");
    EXPECT_EQ(Height(screen, 10, 1), 16);
    EXPECT_EQ(screen.calls, "Text 0,0 \"abc def\" Arial 16 000000\n");
    EXPECT_EQ(Height(printer, 10, 1), 103);
    EXPECT_EQ(printer.calls, "Text 0,0 \"abc def\" Arial 103 000000\n");
    EXPECT_EQ(Height(screen, 10, 2), 33);
    EXPECT_EQ(Height(screen, 10, 0.5), 8);
    EXPECT_EQ(Height(screen, 0.3, 1), 2 * 16); // 29 pixels
    EXPECT_EQ(screen.calls, "Text 0,0 \"abc\" Arial 16 000000\nText 0,16 \"def\" Arial 16 000000\n");
}

TEST_F(EdcTextBlock, IsWrittenInTheFontOfItsRecord)
{
    TEdcFontRec rec;
    rec.Set("Courier New", 18, EDC_TfBOLD | EDC_TfRIGHT);
    blk.SetFontRec(&rec);
    blk.SetText("abc\na");
    EXPECT_EQ(Height(screen, 10, 1), 2 * 30); // 24 pixels
    EXPECT_EQ(screen.calls,
              "Text 0,0 \"abc\" Courier New 30 bold 000000\nText 26,30 \"a\" Courier New 30 bold 000000\n");
    rec.Set("Arial", 36, 0); // the record is the document's; a new layout sees what it holds
    EXPECT_EQ(Height(screen, 10, 1), 2 * 60);
    blk.SetFontRec(NULL);
    EXPECT_EQ(Height(screen, 10, 1), 2 * 16);
}

TEST_F(EdcTextBlock, HoldsItsOwnCopyOfTheText)
{
    char text[] = "alt";
    blk.SetText(text);
    text[0] = 'x';
    Height(screen, 10, 1);
    EXPECT_EQ(screen.calls, "Text 0,0 \"alt\" Arial 16 000000\n");
    blk.SetText("neu");
    Height(screen, 10, 1);
    EXPECT_EQ(screen.calls, "Text 0,0 \"neu\" Arial 16 000000\n");
}

TEST_F(EdcTextBlock, AsksForALayoutWhenItChanges)
{
    TEdcFontRec rec;
    blk.SetFontRec(&rec);
    blk.SetSize(1);
    EXPECT_EQ(doc.obsolete, 0); // nobody shows it yet
    doc.LinkBlock(&blk, NULL, true);
    doc.obsolete = 0;
    blk.SetText("a");
    EXPECT_EQ(doc.obsolete, EDC_LAYOUT);
    doc.obsolete = 0;
    blk.SetFontRec(NULL);
    EXPECT_EQ(doc.obsolete, EDC_LAYOUT);
    doc.obsolete = 0;
    blk.SetSize(1);
    EXPECT_EQ(doc.obsolete, EDC_LAYOUT);
    doc.UnlinkBlock(&blk);
}

TEST_F(EdcTextBlock, PaintsTheLinesOfThePartAndTheirNeighboursOnly)
{
    std::string text;
    for (char c = 'a'; c <= 'z'; ++c)
        text.append(1, c).append("\n");
    blk.SetText(text.c_str());
    int line = Height(screen, 1, 1) / 27; // 26 and the empty one behind them
    struct {
        int top, bottom; // lines
        const char *painted;
    } table[] = {{0, 1, "ab"},   {10, 12, "jklm"}, {25, 26, "yz"}, {0, 27, "abcdefghijklmnopqrstuvwxyz"},
                 {100, 101, ""}, {-9, -8, ""}};
    for (const auto &row : table) {
        screen.calls.clear();
        blk.Paint(screen, {0, row.top * line + 1, 10, row.bottom * line - 1});
        std::string painted;
        for (size_t at = screen.calls.find('"'); at != std::string::npos; at = screen.calls.find('"', at + 3))
            painted += screen.calls[at + 1];
        EXPECT_EQ(painted, row.painted) << row.top;
    }
}

TEST_F(EdcTextBlock, FlowsThroughADocument)
{
    TEdcZoom zoom;
    zoom.SetCustom(100);
    zoom.presetIndex = -1;
    TEdcTextBlock second;
    blk.SetText("eins\nzwei");
    second.SetText("drei");
    doc.LinkBlock(&blk, NULL, true);
    doc.LinkBlock(&second, NULL, true);
    second.SetOptions(EDC_BoROW);
    doc.LayoutBlocks(screen, &zoom);
    EXPECT_EQ(blk.rect.Rect(), (TRect{0, 0, blk.rect.width, 32}));
    EXPECT_EQ(blk.rect.width, 643); // 17 cm
    EXPECT_EQ(second.rect.y, 32);
    EXPECT_EQ(second.rect.height, 16);
    doc.UnlinkBlock(&blk);
    doc.UnlinkBlock(&second);
}

TEST_F(EdcTextBlock, KeepsItsTextAndItsSizeWhereMemoryFails)
{
    blk.SetText("alt");
    int failed = SweepFaults([] {}, [&] { blk.SetText("ein neuer Text"); },
                             [&](const FaultRun &run) {
                                 EXPECT_STREQ(run.code, run.fired ? XALLOC : XNULL);
                                 Height(screen, 10, 1);
                                 EXPECT_EQ(screen.calls.find("alt") == std::string::npos, run.fired == 0);
                                 blk.SetText("alt");
                             });
    EXPECT_GE(failed, 2);
    TEdcSize size;
    failed = SweepFaults([&] { size = TEdcSize(2, 3); }, [&] { blk.Layout(screen, size, 1); },
                         [&](const FaultRun &run) {
                             EXPECT_STREQ(run.code, run.fired ? XALLOC : XNULL);
                             EXPECT_EQ(size.Height() == 3, run.fired > 0);
                         });
    EXPECT_GE(failed, 4);
}
