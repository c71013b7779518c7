// The introduction as a block: its two texts, their fonts, its height, at each scale.
#include "support/fault.h"
#include "support/recorddc.h"
#include "usr/zulartic.h"
#include "writtenlines.h"

#include "lib/charstr.h"

#include <gtest/gtest.h>

#include "lib/xon.h"

namespace
{
using LINES = std::vector<std::string>;

/// Texts ask for a document from their first day on.
struct DOCUMENT {
    DOCUMENT()
    {
        TestApplication();
        SetAppDocument(&doc);
    }
    TEdcDocument doc;
};

class ZulArticle : public testing::Test, protected DOCUMENT
{
protected:
    ZulArticle() { Set("Entwurf der Strahlungsheizung", "Die Halle wird beheizt."); }
    void Set(const std::string &head, const std::string &text)
    {
        StrCopy(article.head, head.c_str(), sizeof article.head);
        StrCopy(article.text, text.c_str(), sizeof article.text);
    }

    EmARTICLE article;
    TZulArticleBlock blk{&article};
    TWriteDC paper{600};
};

struct FORM {
    int level;
    int points; // of the head
    bool italic;
};
const FORM forms[] = {{1, 16, true}, {0, 12, false}, {2, 12, false}, {-1, 12, false}};

TEST_F(ZulArticle, ShowsTheLargeHeadAtLevelOneAndTheSmallOneElse)
{
    for (const FORM &form : forms) {
        article.level = form.level;
        paper.Write(blk, 7);
        ASSERT_EQ(paper.written.size(), 2u);
        const WRITTEN &head = paper.written[0];
        EXPECT_EQ(head.text, "Entwurf der Strahlungsheizung");
        EXPECT_EQ(head.font.face, "Arial");
        EXPECT_EQ(head.font.height, paper.LineHeight("Arial", form.points)) << form.level;
        EXPECT_EQ(head.font.weight, 700);
        EXPECT_EQ(head.font.italic, form.italic);
        EXPECT_FALSE(head.font.underline);
        const WRITTEN &text = paper.written[1];
        EXPECT_EQ(text.text, "Die Halle wird beheizt.");
        EXPECT_EQ(text.font.face, "Courier New");
        EXPECT_EQ(text.font.height, paper.LineHeight("Courier New", 12));
        EXPECT_EQ(text.font.weight, 400);
        EXPECT_FALSE(text.font.italic);
    }
}

TEST_F(ZulArticle, HasTheTextSixPointsBelowTheHeadAtEachScale)
{
    for (int dpi : {96, 144, 600})
        for (double scale : {0.5, 1.0, 1.5, 2.0}) {
            TWriteDC dc(dpi);
            int height = dc.Write(blk, 7, scale);
            ASSERT_EQ(dc.written.size(), 2u) << dpi << " " << scale;
            int head = dc.LineHeight("Arial", 16, scale);
            int gap = static_cast<int>(std::lround(6.0 / 72 * scale * dpi));
            EXPECT_EQ(dc.written[0].y, 0);
            EXPECT_EQ(dc.written[1].y, head + gap) << dpi << " " << scale;
            EXPECT_EQ(height, head + gap + dc.LineHeight("Courier New", 12, scale));
            EXPECT_EQ(dc.written[0].x, 0);
            EXPECT_EQ(dc.written[1].x, 0);
        }
}

TEST_F(ZulArticle, WithoutATextIsAsHighAsItsHead)
{
    paper.Write(blk, 7);
    Set("Titel", "");
    EXPECT_EQ(paper.Write(blk, 7), paper.LineHeight("Arial", 16));
    EXPECT_EQ(paper.Lines(), LINES({"Titel"})) << "nothing is left of the former text";
    Set("", "");
    EXPECT_EQ(paper.Write(blk, 7), paper.LineHeight("Arial", 16)) << "an empty head has its line";
}

TEST_F(ZulArticle, WrapsBothTextsToTheWidthOffered)
{
    std::string head, text;
    for (int i = 0; i < 28; ++i) {
        head += "Halle ";
        text += i % 4 == 3 ? "Zeile\r\n" : "Wort ";
    }
    Set(head, text);
    for (double scale : {0.5, 1.0, 2.0}) {
        int height = paper.Write(blk, 2.5, scale);
        int headLines = 0, textLines = 0;
        for (const WRITTEN &piece : paper.written) {
            EXPECT_LE(piece.right, std::lround(2.5 * scale * 600));
            (piece.font.face == "Arial" ? headLines : textLines) += 1;
        }
        EXPECT_GT(headLines, 5);
        EXPECT_EQ(textLines, 7) << "24 characters a line fit, 20 are there";
        int gap = static_cast<int>(std::lround(6.0 / 72 * scale * 600));
        EXPECT_EQ(height, headLines * paper.LineHeight("Arial", 16, scale) + gap +
                              (textLines + 1) * paper.LineHeight("Courier New", 12, scale))
            << "the last line break makes a line";
    }
}

TEST_F(ZulArticle, ShowsMarkup)
{
    Set("CO_2_", "5 m^3^/h");
    paper.Write(blk, 7);
    ASSERT_EQ(paper.written.size(), 5u);
    EXPECT_EQ(paper.written[1].text, "2");
    EXPECT_LT(paper.written[1].font.height, paper.written[0].font.height);
    EXPECT_EQ(paper.written[3].text, "3");
}

TEST_F(ZulArticle, FillsAPagesWidthAndAsMuchHeightAsItNeeds)
{
    doc.SetPaper(TEdcSize(21, 29.7, EDC_UCM));
    doc.SetMargins(TEdcMargins(1, 1, 1, 1, EDC_UCM));
    EXPECT_EQ(blk.size.width, 1);
    EXPECT_EQ(blk.size.height, 1);
    EXPECT_EQ(blk.size.unit, EDC_UREL);
    TEdcTextBlock next;
    next.SetSize(1, 0);
    next.SetText("Fu\xDF"
                 "boden");
    doc.LinkBlock(&blk, NULL, true);
    doc.LinkBlock(&next, NULL, true);
    TEdcZoom zoom;
    zoom.SetCustom(100);
    doc.LayoutBlocks(paper, &zoom);
    int height = paper.LineHeight("Arial", 16) + 50 +
                 paper.LineHeight("Courier New", 12); // the gap is 50 px of 1/600 in
    EXPECT_EQ(blk.rect.Rect(), (TRect{0, 0, 4488, height}));
    EXPECT_EQ(next.rect.y, height);
    doc.UnlinkBlock(&next);
    doc.UnlinkBlock(&blk);
}

TEST_F(ZulArticle, KeepsItsSizeWhereMemoryFails)
{
    TRecordDC dc(96);
    TEdcSize size;
    int failed = SweepFaults([&] { size = TEdcSize(2, 3); }, [&] { blk.Layout(dc, size, 1); },
                             [&](const FaultRun &run) {
                                 EXPECT_STREQ(run.code, run.fired ? XALLOC : XNULL);
                                 EXPECT_EQ(size.Height() == 3, run.fired > 0);
                                 blk.Paint(dc, {0, 0, 10, 10}); // of whatever is laid out
                             });
    EXPECT_GE(failed, 8);
}
} // namespace
