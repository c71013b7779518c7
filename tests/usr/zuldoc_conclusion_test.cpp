// The closing text as blocks: a title, pieces that pages may part, and the closing line.
#include "reportgroups.h"

#include "usr/zulreport.h"

namespace
{
class Conclusion : public ReportGroups
{
protected:
    Conclusion() { StrCopy(concl.author, "M\xFCller", sizeof concl.author); }

    std::vector<TEdcBlock *> Build(const std::string &text)
    {
        StrCopy(concl.text, text.c_str(), sizeof concl.text);
        return Blocks(ZulBuildConclusion(concl, fonts));
    }
    std::vector<std::string> Lines(TEdcBlock *blk)
    {
        dc.Write(*blk, PAGE_WIDTH);
        return dc.Lines();
    }
    void ExpectLook(const TEdcBlock *blk, double top, unsigned options)
    {
        EXPECT_EQ(blk->size.width, 1);
        EXPECT_EQ(blk->size.height, 0);
        EXPECT_EQ(blk->size.unit, EDC_UREL);
        EXPECT_EQ(blk->options, options);
        EXPECT_EQ(blk->margins.left, 0);
        EXPECT_EQ(blk->margins.top, top);
        EXPECT_EQ(blk->margins.right, 0);
        EXPECT_EQ(blk->margins.bottom, 0);
        EXPECT_EQ(blk->margins.unit, EDC_UPT);
    }
    /// Whether all of what was written last has this face and size, and no style.
    void ExpectBody()
    {
        ASSERT_FALSE(dc.written.empty());
        for (const WRITTEN &piece : dc.written) {
            EXPECT_EQ(piece.font.face, "Courier New");
            EXPECT_EQ(piece.font.weight, 400);
            EXPECT_EQ(piece.font.height, dc.LineHeight("Courier New", 12));
        }
    }

    EmCONCLUSION concl{"Schlu\xDF"
                       "folgerung",
                       20260312};
};

using LINES = std::vector<std::string>;

TEST_F(Conclusion, WithoutATextIsTheTitleAndTheClosingLine)
{
    std::vector<TEdcBlock *> blocks = Build("");
    ASSERT_EQ(blocks.size(), 2u);
    ExpectLook(blocks[0], 32, EDC_BoKEEP);
    EXPECT_EQ(Lines(blocks[0]), LINES({"Schlu\xDF"
                                       "folgerung"}));
    EXPECT_EQ(dc.written[0].font.face, "Arial");
    EXPECT_EQ(dc.written[0].font.weight, 700);
    EXPECT_TRUE(dc.written[0].font.italic);
    ExpectLook(blocks[1], 12, 0);
    EXPECT_EQ(Lines(blocks[1]), LINES({"Den 12.03.2026, Ersteller: M\xFCller"}));
    ExpectBody();
}

TEST_F(Conclusion, OnePieceIsFirstAndLast)
{
    std::vector<TEdcBlock *> blocks = Build("Die Halle\r\nist warm.\r\n");
    ASSERT_EQ(blocks.size(), 3u);
    ExpectLook(blocks[1], 12, EDC_BoKEEP);
    EXPECT_EQ(Lines(blocks[1]), LINES({"Die Halle", "ist warm."}));
    ExpectBody();
}

TEST_F(Conclusion, ThreeShortLinesStayTogetherAndFourArePairs)
{
    std::vector<TEdcBlock *> blocks = Build("a\r\nb\r\nc");
    ASSERT_EQ(blocks.size(), 3u);
    EXPECT_EQ(Lines(blocks[1]), LINES({"a", "b", "c"}));
    blocks = Build("a\r\nb\r\nc\r\nd");
    ASSERT_EQ(blocks.size(), 4u);
    ExpectLook(blocks[1], 12, 0);
    EXPECT_EQ(Lines(blocks[1]), LINES({"a", "b"}));
    ExpectLook(blocks[2], 0, EDC_BoKEEP);
    EXPECT_EQ(Lines(blocks[2]), LINES({"c", "d"}));
}

TEST_F(Conclusion, ALongTextHasAllItsWordsInOrder)
{
    std::string text;
    for (int i = 0; text.size() < 16300; ++i)
        text += EdcFormat("Wort%d ", i);
    std::vector<TEdcBlock *> blocks = Build(text);
    ASSERT_GT(blocks.size(), 22u);
    std::string words;
    for (size_t i = 1; i + 1 < blocks.size(); ++i) {
        ExpectLook(blocks[i], i == 1 ? 12 : 0, i + 2 == blocks.size() ? EDC_BoKEEP : 0);
        for (const std::string &line : Lines(blocks[i]))
            words += line + " ";
        for (const WRITTEN &piece : dc.written)
            EXPECT_LE(piece.right, std::lround(PAGE_WIDTH * 600));
    }
    EXPECT_EQ(words, text);
    EXPECT_EQ(concl.text, text) << "the text itself is untouched";
}

TEST_F(Conclusion, AFullTextWithoutBlanksIsSplitInTheMiddle)
{
    std::vector<TEdcBlock *> blocks = Build(std::string(sizeof concl.text - 1, 'x'));
    ASSERT_EQ(blocks.size(), 30u) << "28 pieces of 600 characters at most";
    ExpectLook(blocks[27], 0, 0);
    ExpectLook(blocks[28], 0, EDC_BoKEEP);
    size_t length = 0;
    for (size_t i = 1; i + 1 < blocks.size(); ++i)
        for (const std::string &line : Lines(blocks[i]))
            length += line.size();
    EXPECT_EQ(length, sizeof concl.text - 1);
}

TEST_F(Conclusion, TheLastPieceStaysWithTheClosingLine)
{
    std::string text;
    for (int i = 0; i < 8; ++i)
        text += std::string(95, static_cast<char>('a' + i)) + "\r\n";
    doc.SetPaper(TEdcSize(21, 29.7, EDC_UCM));
    doc.SetMargins(TEdcMargins(1, 1, 1, 1, EDC_UCM));
    StrCopy(concl.text, text.c_str(), sizeof concl.text);
    TEdcBlock *first = ZulBuildConclusion(concl, fonts);
    TEdcTextBlock *filler = new TEdcTextBlock;
    doc.LinkBlock(filler, NULL, true);
    doc.LinkBlock(first, NULL, true);
    TEdcBlock *last = first;
    while (last->next != NULL)
        last = last->next;
    TEdcZoom zoom;
    zoom.SetCustom(100);
    int parted = 0;
    for (double height = 9.5; height < 10.9; height += 0.1) { // inches; moves the page's end through the text
        filler->SetSize(TEdcSize(1, height));
        doc.LayoutBlocks(dc, &zoom);
        EXPECT_FALSE(last->state & EDC_BsPAGE) << height;
        EXPECT_FALSE(first->next->state & EDC_BsPAGE) << "nor does the title stand alone";
        parted += first->state & EDC_BsPAGE ? 0 : 1;
    }
    EXPECT_GT(parted, 1);
    doc.RemoveAllBlocks();
}
} // namespace
