// The document when memory runs out at any allocation: nothing leaks, nothing is half done, and what was there
// before stays usable.
#include "support/fault.h"
#include "support/testapp.h"
#include "usr/edcapp.h"
#include "usr/edcbase2.h"
#include "win/dc.h"

#include <gtest/gtest.h>

#include <memory>

namespace
{
class PlainDoc : public TEdcDocument
{
public:
    PlainDoc() { SetAppDocument(this); }
    ~PlainDoc() override { RemoveAllBlocks(); }
    bool NewDocument(bool) override { return true; }
    bool ReadFile(const char *) override { return true; }
    void ClearDocument() override { RemoveAllBlocks(); }
};

class PlainFrame : public TWindow
{
};

class DocumentFaults : public testing::Test
{
protected:
    void Prepare()
    {
        doc.reset();
        TestApplication();
        doc = std::make_unique<PlainDoc>();
        doc->SetParent(&frame);
        for (int i = 0; i < 3; ++i) {
            auto *blk = new TEdcBlock;
            blk->size = TEdcSize(1, 1);
            blk->options = EDC_BoSELECT;
            doc->LinkBlock(blk, NULL, true);
        }
        doc->Refresh(0);
    }
    void CheckWorks()
    {
        doc->Refresh(EDC_LAYOUT);
        EXPECT_EQ(doc->obsolete, 0);
        doc->OpenBlock(doc->blocks);
        doc->CloseBlock();
        doc->Refresh(0);
        EXPECT_EQ(xCode, XNULL);
    }

    PlainFrame frame;
    std::unique_ptr<PlainDoc> doc;
};

TEST_F(DocumentFaults, ARefreshKeepsItsLevelUntilItSucceeds)
{
    int hits = SweepFaults([this] { Prepare(); }, [this] { doc->Refresh(EDC_UPDATE); },
                           [this](const FaultRun &run) {
                               EXPECT_EQ(run.code, run.fired > 0 ? XALLOC : XNULL);
                               EXPECT_EQ(doc->obsolete, run.fired > 0 ? EDC_UPDATE : 0);
                               CheckWorks();
                           });
    EXPECT_GT(hits, 0);
}

TEST_F(DocumentFaults, ABlockIsOpenedWholeOrNotAtAll)
{
    int hits = SweepFaults([this] { Prepare(); }, [this] { doc->OpenBlock(doc->blocks); },
                           [this](const FaultRun &run) {
                               EXPECT_EQ(doc->openedBlk != NULL, run.fired == 0);
                               EXPECT_EQ(doc->openedDC != NULL, run.fired == 0);
                               EXPECT_EQ(run.code, run.fired > 0 ? XALLOC : XNULL);
                               CheckWorks();
                           });
    EXPECT_GT(hits, 0);
}

TEST_F(DocumentFaults, ADocumentIsOpenWithItsNameOrThereIsNone)
{
    int hits = SweepFaults([this] { Prepare(); }, [this] { doc->EvDropFile("C:\\Hallen\\Werkhalle 17.xxx"); },
                           [this](const FaultRun &run) {
                               EXPECT_EQ(run.code, XNULL); // the message's root has reported it
                               if (run.fired == 0) {
                                   EXPECT_STREQ(doc->path, "C:\\Hallen\\Werkhalle 17.xxx");
                                   EXPECT_NE(frame.Caption().find("Werkhalle 17"), std::string::npos);
                               }
                               if (doc->path) {
                                   EXPECT_STREQ(doc->path, "C:\\Hallen\\Werkhalle 17.xxx");
                               }
                               doc->Refresh(EDC_LAYOUT);
                               EXPECT_EQ(doc->obsolete, 0);
                           });
    EXPECT_GT(hits, 0);
}

TEST_F(DocumentFaults, AComposedPaletteStaysUntilTheNextOneIsWhole)
{
    TEdcColorScale scale;
    TEdcPalette one, two;
    one.SetColors(1);
    one.Add(1, 2, 3, &scale);
    two.SetColors(1);
    two.Add(4, 5, 6, NULL);
    auto prepare = [&] {
        one.next = two.next = NULL;
        Prepare();
        doc->AddPalette(&one);
        doc->ComposePalette();
        doc->AddPalette(&two);
    };
    int hits = SweepFaults(
        prepare, [this] { doc->ComposePalette(); },
        [&](const FaultRun &run) {
            ASSERT_NE(doc->compal, nullptr);
            EXPECT_EQ(doc->compal->entries.size(), run.fired > 0 ? 1u : 2u);
            EXPECT_EQ(one.compal, doc->compal);
            EXPECT_EQ(scale.palette, doc->compal);
            EXPECT_EQ(scale.first, run.fired > 0 ? 0 : 1);
            EXPECT_EQ(run.code, run.fired > 0 ? XALLOC : XNULL);
        });
    EXPECT_GT(hits, 0);
}
} // namespace
