// The framework as a person meets it: a document of three pages in a real window, driven by real events, looked
// at pixel by pixel and read back from its PDF. Runs without a screen at several display scales, and on one.
#include "lib/platform.h"
#include "lib/xfail.h"
#include "support/folder.h"
#include "support/freshpaint.h"
#include "support/pagedoc.h"
#include "support/pdftext.h"
#include "support/programtables.h"
#include "support/testapp.h"
#include "usr/edcapp.h"
#include "usr/edcutils.h"
#include "win/boxes.h"
#include "win/dc.h"
#include "win/frame.h"
#include "win/testdialog.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>

namespace
{
enum Command {
    NEW = 20003,
    OPEN = 20005,
    CLOSE = 20007,
    SAVE = 20009,
    SAVE_AS = 20011,
    PRINT = 20013,
    ZOOM = 20019,
    RECALC = 20023,
    BACK = 20035,
};
enum { ZOOM_BOX = 100 }; // of the zoom dialog

std::string reported; // what the message sink was told

class Pages : public testing::Test
{
protected:
    Pages() : frame("Seitenprobe", doc)
    {
        TestApplication();
        EdcUseResources();
        SetMessageSink([](const char *text, bool) { reported = text; });
        SetFailureHook(EdcFailureHook);
        reported.clear();
        SetAppDocument(&doc);
        TestApplication().SetMainWindow(&frame);
        frame.AssignMenu(1000);
        frame.Create();
        testdoor::ResizeClient(doc, {800, 600});
        testdoor::ChooseMenu(frame, NEW);
        testdoor::Settle();
    }
    ~Pages() override
    {
        EXPECT_EQ(testdoor::UnexpectedBoxes(), 0);
        EXPECT_EQ(testdoor::PendingScripts(), 0);
        doc.modified = false;
        TestApplication().SetMainWindow(NULL);
        SetFailureHook(NULL);
        SetMessageSink(NULL);
        SetResTextSink(NULL);
    }

    TPoint Middle(const TEdcBlock *blk)
    {
        TRect place = doc.ToWindow(blk->rect.Rect());
        return {(place.left + place.right) / 2, (place.top + place.bottom) / 2};
    }
    /// Brings the block's middle to the middle of the window, as far as the range goes.
    void ScrollTo(const TEdcBlock *blk)
    {
        TRect client = doc.GetClientRect();
        doc.Scroller()->ScrollTo(0, blk->rect.y + blk->rect.height / 2 - client.Height() / 2);
        testdoor::Settle();
    }
    void Choose(int command)
    {
        testdoor::ChooseMenu(frame, command);
        testdoor::Settle();
    }
    ProgramTables tables;
    TPageDoc doc;
    TDecoratedFrame frame;
    FOLDER folder;
};

TEST_F(Pages, AreThreeOfPaperAndWhite)
{
    EXPECT_EQ(doc.PageCount(), 3);
    EXPECT_EQ(std::string(frame.Caption()), "Zulerion - neu");
    EXPECT_EQ(testdoor::Pixel(doc, {1, 1}), WIN_WHITE);
    std::vector<TColor> pixels = testdoor::Pixels(doc);
    EXPECT_GT(std::count(pixels.begin(), pixels.end(), WIN_BLACK), 500); // there is writing on it
    EXPECT_TRUE(LooksFresh(doc));
}

TEST_F(Pages, ScrollWithTheWheelTheKeysAndTheBarWithoutTraces)
{
    int top = doc.Scroller()->YPos();
    testdoor::Wheel(doc, {100, 100}, -3);
    EXPECT_GT(doc.Scroller()->YPos(), top);
    EXPECT_TRUE(LooksFresh(doc));
    testdoor::Key(doc, "End");
    EXPECT_EQ(doc.Scroller()->YPos(), doc.Scroller()->YRange());
    EXPECT_TRUE(LooksFresh(doc));
    testdoor::Key(doc, "PgUp");
    EXPECT_LT(doc.Scroller()->YPos(), doc.Scroller()->YRange());
    EXPECT_TRUE(LooksFresh(doc));
    testdoor::Key(doc, "Home");
    EXPECT_EQ(doc.Scroller()->YPos(), 0);
    testdoor::Key(doc, "Down");
    EXPECT_EQ(doc.Scroller()->YPos(), 20);
    EXPECT_TRUE(LooksFresh(doc));
}

TEST_F(Pages, ZoomAtThePointerWithCtrlAndWheel)
{
    int before = doc.docZoom.Percent();
    ScrollTo(doc.plan);
    TPoint at = {300, 300};
    TPoint under = doc.ToDocument(at);
    double x = under.x / doc.scale, y = under.y / doc.scale;
    testdoor::Wheel(doc, at, 4, WIN_KEY_CTRL);
    EXPECT_EQ(doc.docZoom.presetIndex, -1);
    EXPECT_GT(doc.docZoom.Percent(), before);
    under = doc.ToDocument(at);
    EXPECT_NEAR(under.y / doc.scale, y, 4);
    EXPECT_NEAR(under.x / doc.scale, x, 4);
    EXPECT_TRUE(LooksFresh(doc));
}

TEST_F(Pages, TakeAZoomFromTheDialog)
{
    struct Row {
        const char *typed;
        int percent;
    };
    const Row rows[] = {{"150%", 150}, {"abc", 100}, {"-5", 100}, {"", 100}, {"73", 73}};
    for (const Row &row : rows) {
        SCOPED_TRACE(row.typed);
        testdoor::Script([&](testdoor::ModalBox &box) {
            testdoor::DialogBox(box).Type(ZOOM_BOX, row.typed);
            box.Answer(WIN_ID_OK);
        });
        Choose(ZOOM);
        EXPECT_EQ(doc.docZoom.Percent(), row.percent);
        EXPECT_TRUE(LooksFresh(doc));
    }
    testdoor::Script([](testdoor::ModalBox &box) {
        testdoor::DialogBox(box).Type(ZOOM_BOX, "999999999");
        box.Answer(WIN_ID_OK);
    });
    Choose(ZOOM);
    int limited = doc.docZoom.Percent();
    EXPECT_LT(limited, 1000);
    testdoor::Script([&](testdoor::ModalBox &box) {
        testdoor::DialogBox(box).Choose(ZOOM_BOX, 0);
        box.Answer(WIN_ID_OK);
    });
    Choose(ZOOM);
    EXPECT_EQ(doc.docZoom.presetIndex, 0);
    EXPECT_TRUE(LooksFresh(doc));
}

TEST_F(Pages, SelectABlockAndLetGoOfItWithoutTraces)
{
    ScrollTo(doc.plan);
    std::vector<TColor> before = testdoor::Pixels(doc);
    testdoor::Click(doc, Middle(doc.plan));
    EXPECT_EQ(doc.selectedBlk, doc.plan);
    EXPECT_NE(testdoor::Pixels(doc), before);
    EXPECT_TRUE(LooksFresh(doc));
    testdoor::Click(doc, {2, 2}); // beside the paper
    EXPECT_EQ(doc.selectedBlk, nullptr);
    EXPECT_EQ(testdoor::Pixels(doc), before);
}

TEST_F(Pages, OpenAPlanDrawOnItAndGoBackToWhereTheyStood)
{
    ScrollTo(doc.plan);
    int top = doc.Scroller()->YPos();
    testdoor::DoubleClick(doc, Middle(doc.plan));
    ASSERT_EQ(doc.openedBlk, doc.plan);
    EXPECT_EQ(doc.Scroller()->YPos(), 0);
    EXPECT_EQ(doc.blockZoom.presetIndex, 0);
    testdoor::Settle();
    TPoint from = Middle(doc.plan), to = from + TPoint{60, -40};
    std::vector<TColor> before = testdoor::Pixels(doc);
    testdoor::Press(doc, from);
    testdoor::Move(doc, to, 0, true);
    EXPECT_NE(testdoor::Pixels(doc), before); // the ghost
    testdoor::Move(doc, from, 0, true);
    testdoor::Move(doc, {-40, 20}, 0, true); // out of the view: no ghost, and it scrolls when there is time
    EXPECT_TRUE(doc.autoScroll);
    EXPECT_EQ(testdoor::Pixels(doc), before);
    testdoor::Move(doc, to, 0, true);
    EXPECT_FALSE(doc.autoScroll);
    testdoor::Release(doc, to);
    ASSERT_EQ(doc.plan->lines.size(), 1u);
    EXPECT_TRUE(doc.modified);
    EXPECT_TRUE(LooksFresh(doc));
    testdoor::Key(doc, "Esc");
    testdoor::Settle();
    EXPECT_EQ(doc.openedBlk, nullptr);
    EXPECT_EQ(doc.openedDC, nullptr);
    EXPECT_NEAR(doc.Scroller()->YPos(), top, 1);
    EXPECT_TRUE(LooksFresh(doc));
}

TEST_F(Pages, ExecuteAMapInPlace)
{
    ScrollTo(doc.map);
    std::vector<TColor> before = testdoor::Pixels(doc);
    testdoor::DoubleClick(doc, Middle(doc.map));
    EXPECT_EQ(doc.openedBlk, nullptr);
    EXPECT_EQ(doc.map->turns, 1);
    EXPECT_NE(testdoor::Pixels(doc), before);
    EXPECT_TRUE(LooksFresh(doc));
}

TEST_F(Pages, KeepTheirPlaceWhenTheWindowIsResized)
{
    ScrollTo(doc.plan);
    TPoint scroll = doc.GetScroll();
    testdoor::ResizeClient(doc, {600, 500});
    testdoor::Settle();
    EXPECT_NEAR(doc.GetScroll().y, scroll.y, 2);
    EXPECT_TRUE(LooksFresh(doc));
    testdoor::ResizeClient(doc, {40, 30});
    testdoor::Settle();
    EXPECT_TRUE(LooksFresh(doc));
    testdoor::ResizeClient(doc, {800, 600});
    EXPECT_TRUE(LooksFresh(doc));
}

TEST_F(Pages, AreSavedOpenedAndClosedWithTheirQuestions)
{
    std::string file = folder.Path("Probe.sei");
    doc.SetModified();
    testdoor::Script([&](testdoor::ModalBox &box) {
        EXPECT_EQ(box.Kind(), "save");
        box.FileName(folder.Path("Probe")); // the extension comes by itself
        box.Answer(WIN_ID_OK);
    });
    Choose(SAVE);
    EXPECT_FALSE(doc.modified);
    EXPECT_EQ(std::string(frame.Caption()), "Zulerion - Probe");
    doc.SetModified();
    testdoor::Script([](testdoor::ModalBox &box) {
        EXPECT_EQ(box.Text(), "Dokument wurde ver\xE4ndert.\nWollen Sie es speichern?");
        box.Answer(WIN_ID_CANCEL);
    });
    Choose(CLOSE);
    EXPECT_NE(doc.path, nullptr);
    testdoor::Script([](testdoor::ModalBox &box) { box.Answer(WIN_ID_NO); });
    Choose(CLOSE);
    EXPECT_EQ(doc.path, nullptr);
    EXPECT_EQ(doc.blocks, nullptr);
    EXPECT_EQ(testdoor::Pixel(doc, {50, 50}), (TColor{0, 0, 128}));
    testdoor::Script([&](testdoor::ModalBox &box) {
        box.FileName(file);
        box.Answer(WIN_ID_OK);
    });
    Choose(OPEN);
    ASSERT_NE(doc.path, nullptr);
    EXPECT_EQ(doc.remark, "ge\xE4ndert");
    EXPECT_TRUE(LooksFresh(doc));
}

TEST_F(Pages, ThatCannotBeReadLeaveAMessageAndNoDocument)
{
    std::string file = folder.Path("Kaputt.sei");
    std::ofstream(file) << "kein Dokument";
    testdoor::Script([&](testdoor::ModalBox &box) {
        box.FileName(file);
        box.Answer(WIN_ID_OK);
    });
    Choose(OPEN);
    EXPECT_NE(reported, "");
    EXPECT_EQ(doc.path, nullptr);
    EXPECT_FALSE(doc.IsScrollBarEnabled(WIN_BAR_VERTICAL));
    Choose(NEW);
    EXPECT_TRUE(LooksFresh(doc));
}

TEST_F(Pages, PrintIntoAPdfOfThreePagesAtFullSize)
{
    std::string file = folder.Path("Probe.pdf");
    testdoor::Script([&](testdoor::ModalBox &box) {
        EXPECT_EQ(box.Kind(), "print");
        EXPECT_NE(box.FileName().find("neu.pdf"), std::string::npos);
        box.FileName(file);
        box.Answer(WIN_ID_OK);
    });
    Choose(PRINT);
    EXPECT_EQ(doc.locked, 0);
    std::vector<PdfPage> pages = PdfPages(file);
    ASSERT_EQ(pages.size(), 3u);
    EXPECT_NEAR(pages[0].width, 595.3, 0.5);
    EXPECT_NEAR(pages[0].height, 841.9, 0.5);
    std::vector<PdfWord> words = PdfWords(file);
    ASSERT_FALSE(words.empty());
    EXPECT_EQ(words[0].text, "Entwurf");
    EXPECT_NEAR(words[0].x, 72 / 2.54, 1.0); // 1 cm
    auto page = [&](const char *text) {
        auto word = std::find_if(words.begin(), words.end(), [&](const PdfWord &w) { return w.text == text; });
        return word == words.end() ? 0 : word->page;
    };
    EXPECT_EQ(page("Grundri\xC3\x9F"), 2); // kept with its plan
    EXPECT_EQ(page("Fu\xC3\x9F"
                   "boden"),
              2);
    EXPECT_EQ(page("Karte"), 3);
    std::vector<PdfImage> images = PdfImages(file);
    ASSERT_EQ(images.size(), 1u);
    EXPECT_NE(images[0].encoding, "jpeg");
    EXPECT_TRUE(LooksFresh(doc));
}

TEST_F(Pages, SurviveAPdfThatCannotBeWritten)
{
    testdoor::Script([&](testdoor::ModalBox &box) {
        box.FileName(folder.Path("fehlt/Probe.pdf"));
        box.Answer(WIN_ID_OK);
    });
    testdoor::Script([](testdoor::ModalBox &box) {
        EXPECT_EQ(box.Kind(), "message");
        EXPECT_NE(box.Text().find("fehlt/Probe.pdf"), std::string::npos) << box.Text();
        box.Answer(WIN_ID_OK);
    });
    testdoor::Script([](testdoor::ModalBox &box) {
        EXPECT_EQ(box.Kind(), "print"); // it stays for another name
        box.Answer(WIN_ID_CANCEL);
    });
    Choose(PRINT);
    EXPECT_EQ(doc.locked, 0);
    testdoor::DoubleClick(doc, {2, 2});
    EXPECT_TRUE(LooksFresh(doc));
}

TEST_F(Pages, TakeTextsOfAnyKindAndSize)
{
    const std::string texts[] = {
        std::string(1 << 20, 'x').replace(500, 1, " "),
        std::string(100000, 'W'),
        "^ nie geschlossen _",
        std::string(5000, '_'),
        std::string(5000, '\n'),
        "!",
        std::string("\x01\x02\x7F\x80\x81\xFF", 6),
    };
    const TEdcFontRec font = edcDefaultFont;
    for (const std::string &text : texts) {
        SCOPED_TRACE(text.substr(0, 20));
        TEdcTextBlock *blk = new TEdcTextBlock();
        blk->SetText(text.c_str());
        blk->SetFontRec(&font);
        blk->SetSize(1.0);
        blk->SetOptions(EDC_BoROW);
        doc.LinkBlock(blk, NULL, true);
        doc.Refresh(0);
        EXPECT_STREQ(xCode, XNULL);
        testdoor::Key(doc, "End");
        EXPECT_TRUE(LooksFresh(doc));
        doc.RemoveBlock(blk);
        doc.Refresh(0);
    }
    EXPECT_TRUE(LooksFresh(doc));
}
} // namespace
