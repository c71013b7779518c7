#include "support/fault.h"
#include "support/folder.h"
#include "support/pdftext.h"
#include "support/recorddc.h"
#include "support/testblock.h"
#include "usr/edcutils.h"
#include "win/boxes.h"
#include "win/testdoor.h"
#include "win/utf8.h"

#include "lib/platform.h"

#include <gtest/gtest.h>

#include "lib/xon.h"

namespace
{
enum { COMMAND_PRINT = 20013 };
constexpr double CM = 72 / 2.54;      // points
constexpr double ASCENT = 0.905 * 12; // points, of the 12 point Liberation Sans over its baseline
constexpr double DPC = 600 / 2.54;    // dots a centimetre at 600 dpi

/// Writes the block's name at 12 points, half an inch below its left upper corner, and fills its first
/// centimetre square.
void PaintNamed(TTestBlock *blk)
{
    blk->onPaint = [blk](TDC &dc) {
        TFont font;
        font.height = -dc.DpiY() / 6;
        dc.SetFont(font);
        dc.SetTextAlign(WIN_TEXT_BASELINE);
        dc.SetOpaque(false);
        dc.TextOut(dc.DpiX(), dc.DpiY() / 2, blk->name.c_str(), static_cast<int>(blk->name.size()));
        int side = EdcInchToPixel(1 / 2.54, 1.0, dc.DpiX());
        dc.FillRect({0, 0, side, side}, SolidBrush(WIN_BLACK));
    };
}

/// A document of five blocks, two to a page: A4 with margins of 1 cm, each block 19 x 12 cm.
class Printout : public testing::Test
{
protected:
    void SetUp() override
    {
        TestApplication();
        EdcUseResources();
        testdoor::PendingScripts();
        testdoor::UnexpectedBoxes();
        doc.SetPaper(TEdcSize(21, 29.7, EDC_UCM));
        doc.SetMargins(TEdcMargins(1, 1, 1, 1, EDC_UCM));
    }
    void TearDown() override
    {
        EXPECT_EQ(testdoor::PendingScripts(), 0);
        EXPECT_EQ(testdoor::UnexpectedBoxes(), 0);
        EXPECT_EQ(doc.locked, 0);
        SetResTextSink(NULL);
    }

    TTestBlock *Add(const char *name, unsigned options = 0, double heightCm = 12)
    {
        TTestBlock *blk = doc.Append(name, options, 19 / 2.54, heightCm / 2.54);
        PaintNamed(blk);
        return blk;
    }
    void AddFive()
    {
        for (const char *name : {"eins", "zwei", "drei", "vier", "ende"})
            Add(name);
        doc.Start();
    }
    /// Prints all pages into the file without asking.
    bool Print()
    {
        TEdcPrintout printout(doc);
        doc.printer->SetPdf(path);
        return doc.printer->Print(&doc, printout, false);
    }
    /// The command, its dialog answered with these pages.
    void PrintByCommand(int from, int to)
    {
        testdoor::Script([=, this](testdoor::ModalBox &box) {
            box.FileName(path);
            box.Pages(from, to);
            box.Answer(WIN_ID_OK);
        });
        doc.EvCommand(COMMAND_PRINT);
    }
    void ExpectError()
    {
        testdoor::Script([this](testdoor::ModalBox &box) {
            error = box.Text();
            box.Answer(WIN_ID_OK);
        });
    }
    bool HasPdf() const { return folder.List().count("a.pdf") > 0; }

    FOLDER folder;
    std::string path = folder.Path("a.pdf");
    TTestDoc doc;
    std::string error; // the last message
};

struct PLACE {
    const char *name;
    int page;
    double top; // cm from the paper's upper edge
};

TEST_F(Printout, BlocksStandOnPaperWhereTheLayoutPutsThem)
{
    AddFive();
    ASSERT_TRUE(Print());
    const PLACE places[] = {{"eins", 1, 1}, {"zwei", 1, 13}, {"drei", 2, 1}, {"vier", 2, 13}, {"ende", 3, 1}};
    std::vector<PdfWord> words = PdfWords(path);
    ASSERT_EQ(words.size(), 5u);
    EXPECT_EQ(PdfPages(path).size(), 3u);
    for (size_t i = 0; i < words.size(); ++i) {
        EXPECT_EQ(words[i].text, places[i].name);
        EXPECT_EQ(words[i].page, places[i].page);
        EXPECT_NEAR(words[i].x, CM + 72, 0.2) << places[i].name;
        EXPECT_NEAR(words[i].y, places[i].top * CM + 36 - ASCENT, 0.2) << places[i].name;
    }
    EXPECT_EQ(PdfTitle(path), "neu");
}

/// The black run through the pixel at (x, y), along the row or the column: where it starts and ends.
std::pair<int, int> BlackRun(const PdfRaster &page, int x, int y, bool row)
{
    auto black = [&](int i) { return row ? page.At(i, y) < 128 : page.At(x, i) < 128; };
    int start = row ? x : y;
    int end = start;
    while (start > 0 && black(start - 1))
        --start;
    while (black(end))
        ++end;
    return {start, end};
}

TEST_F(Printout, ACentimetreIsACentimetreOnEachPage)
{
    AddFive();
    ASSERT_TRUE(Print());
    for (int number : {1, 2, 3}) {
        PdfRaster page = PdfPixels(path, number, 600);
        int mid = static_cast<int>(1.5 * DPC);
        auto [left, right] = BlackRun(page, mid, mid, true);
        auto [top, bottom] = BlackRun(page, mid, mid, false);
        EXPECT_NEAR(left, DPC, 1.5) << number;
        EXPECT_NEAR(right, 2 * DPC, 1.5);
        EXPECT_NEAR(top, DPC, 1.5);
        EXPECT_NEAR(bottom, 2 * DPC, 1.5);
    }
}

TEST_F(Printout, TheCommandPrintsTheChosenRange)
{
    AddFive();
    PrintByCommand(2, 3);
    ASSERT_EQ(PdfPages(path).size(), 2u);
    std::vector<PdfWord> words = PdfWords(path);
    ASSERT_EQ(words.size(), 3u);
    EXPECT_EQ(words[0].text, "drei");
    EXPECT_EQ(words[0].page, 1);
    EXPECT_EQ(words[2].text, "ende");
}

TEST_F(Printout, TheCommandNeedsADocumentWithBlocks)
{
    doc.Start();
    doc.EvCommand(COMMAND_PRINT);
    AddFive();
    delete[] std::exchange(doc.path, static_cast<char *>(NULL));
    doc.EvCommand(COMMAND_PRINT);
    EXPECT_FALSE(HasPdf());
}

TEST_F(Printout, AnOpenedBlockIsOnePageAtFullSize)
{
    AddFive();
    TEdcBlock *third = doc.blocks->next->next;
    third->options |= EDC_BoSELECT;
    doc.OpenBlock(third);
    doc.blockZoom.SetCustom(40);
    doc.Refresh(EDC_LAYOUT);
    ASSERT_TRUE(Print());
    std::vector<PdfWord> words = PdfWords(path);
    EXPECT_EQ(PdfPages(path).size(), 1u);
    ASSERT_EQ(words.size(), 1u);
    EXPECT_EQ(words[0].text, "drei");
    EXPECT_NEAR(words[0].x, CM + 72, 0.2);
    EXPECT_NEAR(words[0].y, CM + 36 - ASCENT, 0.2);
    EXPECT_EQ(doc.blockZoom.Percent(), 40) << "the view keeps its own zoom";
    doc.CloseBlock();
}

TEST_F(Printout, TheLastPageIsEmptyWhereTheFirstBlockAsksForAPage)
{
    Add("eins", EDC_BoPAGE);
    Add("zwei", EDC_BoPAGE);
    doc.Start();
    ASSERT_TRUE(Print());
    EXPECT_EQ(PdfPages(path).size(), 3u);
    std::vector<PdfWord> words = PdfWords(path);
    ASSERT_EQ(words.size(), 2u);
    EXPECT_EQ(words[0].page, 1);
    EXPECT_EQ(words[1].page, 2);
}

TEST_F(Printout, AFineDevicePrintsSmallerByTheBoundOfAPage)
{
    const struct {
        int dpi;
        int percent; // 8000 px over the 27.7 cm of the page's height, cut
    } rows[] = {{300, 100}, {600, 100}, {1200, 61}, {2400, 30}};
    for (const auto &row : rows) {
        doc.RemoveAllBlocks();
        TTestBlock *blk = Add("eins");
        int width = 0;
        blk->onPaint = [&](TDC &) { width = blk->rect.width; };
        doc.Start();
        doc.printer->SetResolution(row.dpi);
        ASSERT_TRUE(Print());
        EXPECT_NEAR(width, 19 / 2.54 * row.dpi * row.percent / 100, 1) << row.dpi;
    }
}

TEST_F(Printout, BitmapsOfBlocksStayAsTheyAre)
{
    TBitmap bitmap(4, 1);
    bitmap.SetPalette({{{0, 0, 0}, {80, 80, 80}, {160, 160, 160}, {230, 230, 230}}});
    for (int i = 0; i < 4; ++i)
        bitmap.SetPixel(i, 0, static_cast<uint8_t>(i));
    TTestBlock *blk = Add("karte");
    blk->onPaint = [&](TDC &dc) { dc.StretchBitmap({0, 0, 1600, 400}, bitmap); };
    doc.Start();
    ASSERT_TRUE(Print());
    for (const PdfImage &image : PdfImages(path))
        EXPECT_EQ(image.encoding, "image");
    PdfRaster page = PdfPixels(path, 1, 600);
    const int values[] = {0, 80, 160, 230};
    for (int i = 0; i < 4; ++i)
        for (int dx : {5, 200, 394})
            EXPECT_NEAR(page.At(236 + 400 * i + dx, 436), values[i], 1) << i << " " << dx;
}

TEST_F(Printout, NoBlockSeesThePensAndClipsOfAnother)
{
    AddFive();
    auto *first = static_cast<TTestBlock *>(doc.blocks);
    auto *second = static_cast<TTestBlock *>(first->next);
    first->onPaint = [](TDC &dc) {
        dc.SetClip({0, 0, 1, 1});
        dc.SetBrush(SolidBrush(WIN_BLACK));
        dc.SetTurn(1);
    };
    ASSERT_TRUE(Print());
    EXPECT_FALSE(second->lastState.clipped);
    EXPECT_EQ(second->lastState.brush, TBrush());
    EXPECT_EQ(second->lastState.turn, 0);
}

TEST_F(Printout, TheViewIsAsItWasBehindTheJob)
{
    TDecoratedFrame frame("Zulerion", doc);
    frame.Create();
    testdoor::ResizeClient(doc, {400, 300});
    doc.docZoom.SetCustom(50);
    AddFive();
    doc.SelectBlock(NULL);
    testdoor::Settle();
    double scale = doc.scale;
    TEdcRect rect = doc.blocks->next->rect;
    std::vector<TColor> pixels = testdoor::Pixels(doc);
    ASSERT_TRUE(Print());
    testdoor::Settle();
    EXPECT_EQ(doc.scale, scale);
    EXPECT_EQ(doc.blocks->next->rect.Rect(), rect.Rect());
    EXPECT_TRUE(testdoor::Pixels(doc) == pixels);
    EXPECT_TRUE(doc.IsScrollBarEnabled(WIN_BAR_VERTICAL));
    path = folder.Path("b.pdf");
    PrintByCommand(1, 3);
    testdoor::Settle();
    EXPECT_EQ(PdfPages(path).size(), 3u);
    EXPECT_TRUE(testdoor::Pixels(doc) == pixels);
}

TEST_F(Printout, NothingReachesTheDocumentWhileItPrints)
{
    TDecoratedFrame frame("Zulerion", doc);
    frame.Create();
    testdoor::ResizeClient(doc, {400, 300});
    AddFive();
    auto *first = static_cast<TTestBlock *>(doc.blocks);
    first->options |= EDC_BoSELECT;
    bool mayClose = true;
    int paints = 0;
    auto paint = first->onPaint;
    first->onPaint = [&](TDC &dc) {
        ++paints;
        paint(dc);
        if (doc.locked == 0)
            return;
        doc.EvCommand(COMMAND_PRINT);
        testdoor::DoubleClick(doc, {10, 10});
        doc.Invalidate();
        doc.UpdateWindow();
        mayClose = doc.CanClose();
    };
    paints = 0;
    ASSERT_TRUE(Print());
    EXPECT_EQ(paints, 1) << "on paper, and not on the screen";
    EXPECT_FALSE(mayClose);
    EXPECT_EQ(doc.openedBlk, static_cast<TEdcBlock *>(NULL));
    EXPECT_EQ(doc.selectedBlk, static_cast<TEdcBlock *>(NULL));
    testdoor::Settle();
    EXPECT_GT(paints, 1);
}

TEST_F(Printout, AbortingLeavesTheWindowUsable)
{
    AddFive();
    testdoor::ScriptAbort(2, [](testdoor::ModalBox &box) { box.Answer(WIN_ID_CANCEL); });
    ExpectError();
    EXPECT_FALSE(Print());
    EXPECT_EQ(error, "'neu' nicht ausgedruckt.\nDruck abgebrochen.");
    EXPECT_EQ(doc.locked, 0);
    EXPECT_FALSE(HasPdf());
    EXPECT_TRUE(Print());
}

struct FAULTPLACE {
    const char *word; // what fails
    int obsolete;     // level before the job
    int pages;        // blocks that were painted up to the failure
};

TEST_F(Printout, AFailureIsReportedOnceAndEndsTheJob)
{
    AddFive();
    const FAULTPLACE rows[] = {
        {"drei.layout", 0, 0},          // the layout for the printer
        {"full.before", EDC_RECALC, 0}, // what was to be done before it
        {"eins.paint", 0, 1},
        {"vier.paint", 0, 4},
    };
    for (const FAULTPLACE &row : rows) {
        TestHook hook;
        int paints = 0;
        for (TEdcBlock *blk = doc.blocks; blk; blk = blk->next)
            static_cast<TTestBlock *>(blk)->paints = 0;
        doc.log.failing = row.word;
        doc.Obsolete(row.obsolete);
        testdoor::Script([&](testdoor::ModalBox &box) { // the cause of it is gone by the time of the message
            doc.log.failing.clear();
            error = box.Text();
            box.Answer(WIN_ID_OK);
        });
        bool isLayout = row.pages == 0;
        EXPECT_FALSE(Print()) << row.word;
        EXPECT_EQ(doc.printer->Result(), WIN_PRINT_FAILED);
        EXPECT_EQ(error, FromUtf8("'neu' nicht ausgedruckt.\nFehler während des Druckens."));
        EXPECT_EQ(hook.Reports(), isLayout ? 2 : 1) << row.word << ": once more where the screen meets it too";
        for (TEdcBlock *blk = doc.blocks; blk; blk = blk->next)
            paints += static_cast<TTestBlock *>(blk)->paints;
        EXPECT_EQ(paints, row.pages) << row.word;
        EXPECT_EQ(doc.locked, 0);
        EXPECT_FALSE(HasPdf());
        doc.Refresh(EDC_LAYOUT);
        EXPECT_EQ(doc.obsolete, 0) << "the window is usable again";
    }
    EXPECT_TRUE(Print());
}

TEST_F(Printout, AFailureOfTheScreensLayoutDoesNotSpoilThePaper)
{
    TestHook hook;
    AddFive();
    auto *last = static_cast<TTestBlock *>(doc.blocks->next->next->next->next);
    last->onPaint = [&](TDC &) { doc.log.failing = "eins.layout"; };
    EXPECT_TRUE(Print());
    doc.log.failing.clear();
    EXPECT_EQ(PdfPages(path).size(), 3u);
    EXPECT_EQ(hook.Reports(), 1);
    EXPECT_EQ(doc.locked, 0);
    EXPECT_GE(doc.obsolete, static_cast<int>(EDC_LAYOUT)) << "the next turn tries again";
    doc.Refresh(0);
    EXPECT_EQ(doc.obsolete, 0);
}

TEST_F(Printout, APrinterThatRefusesToStartNeverLocks)
{
    AddFive();
    path = folder.Path("kein/a.pdf");
    ExpectError();
    EXPECT_FALSE(Print());
    EXPECT_EQ(doc.locked, 0);
    EXPECT_NE(error.find("'neu' nicht ausgedruckt."), std::string::npos);
}

/// The callbacks as a printer makes them, without a printer.
void RunCallbacks(TEdcDocument &doc, TDC &dc, bool &failed)
{
    __enter
        TEdcPrintout printout(doc);
        int from, to, none;
        printout.GetDialogInfo(from, to, none, none);
        printout.SetDC(&dc);
        printout.BeginPrinting();
        for (int page = from; page <= to && !printout.HasFailed(); ++page)
            printout.PrintPage(page, {}, 0);
        failed = printout.HasFailed();
        printout.EndPrinting();
    __point
        failed = true;
        __repair;
    __treat
}

TEST_F(Printout, NoFaultLeavesTheDocumentLocked)
{
    AddFive();
    TRecordDC plain(600);
    bool failed = false;
    RunCallbacks(doc, plain, failed);
    ASSERT_FALSE(failed);
    std::unique_ptr<TRecordDC> dc;
    auto prepare = [&] {
        doc.Refresh(EDC_LAYOUT);
        dc = std::make_unique<TRecordDC>(600);
        failed = false;
    };
    auto operation = [&] { RunCallbacks(doc, *dc, failed); };
    auto check = [&](const FaultRun &run) {
        EXPECT_EQ(doc.locked, 0) << FaultName(run.kind) << " " << run.n;
        EXPECT_EQ(run.code, XNULL) << "each callback takes its failure off";
        EXPECT_TRUE(failed || dc->calls == plain.calls);
        doc.Refresh(EDC_LAYOUT);
        EXPECT_EQ(doc.obsolete, 0);
    };
    EXPECT_GT(SweepFaults(prepare, operation, check), 5);
}
} // namespace
