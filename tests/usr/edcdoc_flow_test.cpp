// The flow of blocks into rows and pages: by hand, by law, and against a twin that works on plain arrays.
#include "support/child.h"
#include "support/recorddc.h"
#include "support/testapp.h"
#include "usr/edcapp.h"
#include "usr/edcbase2.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <string>
#include <vector>

#include "lib/xon.h"

namespace
{
/// What a test says of a block, in inches.
struct Wish {
    double width = 0; // 0: automatic
    double height = 0;
    unsigned options = 0;
    double left = 0, top = 0, right = 0, bottom = 0;
    double trueHeight = 0; // what Layout makes of an automatic height; 0: leaves the offer
};

class WishBlock : public TEdcBlock
{
public:
    explicit WishBlock(const Wish &w) : wish(w)
    {
        SetOptions(w.options);
        SetSize(TEdcSize(w.width, w.height));
        SetMargins(TEdcMargins(w.left, w.top, w.right, w.bottom));
    }
    void Layout(TDC &, TEdcSize &trueSize, double) override
    {
        offered = trueSize;
        ++layouts;
        __enter
            if (failing)
                __raise(XALLOC);
            if (wish.trueHeight > 0)
                trueSize.SetHeight(wish.trueHeight);
            if (grows)
                trueSize = TEdcSize(1000, 1000);
        __point
        __treat
    }

    Wish wish;
    TEdcSize offered;
    int layouts = 0;
    bool failing = false;
    bool grows = false;
};

/// A document with a page of 10 x 20 inches, laid out for a device of 100 dots per inch at 100 %.
class Flow : public testing::Test
{
protected:
    Flow() : dc(100)
    {
        SetAppDocument(&doc);
        doc.SetPaper(TEdcSize(12, 22));
        doc.SetMargins(TEdcMargins(1, 1, 1, 1));
        zoom.SetCustom(100);
    }
    ~Flow() override { doc.RemoveAllBlocks(); }

    WishBlock *Add(const Wish &wish)
    {
        WishBlock *blk = new WishBlock(wish);
        doc.LinkBlock(blk, NULL, true);
        return blk;
    }
    void Layout() { doc.LayoutBlocks(dc, &zoom); }
    static std::string Show(const TEdcBlock *blk)
    {
        std::string text = std::to_string(blk->rect.x) + "," + std::to_string(blk->rect.y) + " " +
                           std::to_string(blk->rect.width) + "x" + std::to_string(blk->rect.height);
        return blk->state & EDC_BsPAGE ? text + " page" : text;
    }
    std::vector<std::string> ShowAll()
    {
        std::vector<std::string> all;
        for (TEdcBlock *blk = doc.blocks; blk; blk = blk->next)
            all.push_back(Show(blk));
        return all;
    }

    TEdcDocument doc;
    TRecordDC dc;
    TEdcZoom zoom;
};

using Places = std::vector<std::string>;
enum { PAGE = EDC_BoPAGE, ROW = EDC_BoROW, KEEP = EDC_BoKEEP };

struct Case {
    const char *what;
    std::vector<Wish> wishes;
    Places places;
};

const Case cases[] = {
    {"two that fit stand in a row", {{3, 2}, {4, 5}}, {"0,0 300x200", "300,0 400x500"}},
    {"the third begins a row below the taller one",
     {{3, 2}, {4, 5}, {4, 1}},
     {"0,0 300x200", "300,0 400x500", "0,500 400x100"}},
    {"an asked row begins below", {{3, 2}, {3, 2, ROW}}, {"0,0 300x200", "0,200 300x200"}},
    {"an automatic width takes the rest of the row", {{3, 2}, {0, 1}}, {"0,0 300x200", "300,0 700x100"}},
    {"an automatic height takes the page", {{3, 0}}, {"0,0 300x2000"}},
    {"a measured height counts", {{0, 0, 0, 0, 0, 0, 0, 1.5}, {10, 1}}, {"0,0 1000x150", "0,150 1000x100"}},
    {"margins keep a distance",
     {{3, 2, 0, 0.5, 0.25, 0.75, 1}, {3, 2}, {0, 1, ROW}},
     {"50,25 300x200", "425,0 300x200", "0,325 1000x100"}},
    {"wider than the page is clamped", {{50, 2}}, {"0,0 1000x200"}},
    {"a margin takes from the width", {{50, 2, 0, 1}}, {"100,0 900x200"}},
    {"what overflows the page begins the next one, without a gap on the screen",
     {{10, 15}, {10, 8}},
     {"0,0 1000x1500", "0,1500 1000x800 page"}},
    {"what fills the page exactly stays on it", {{10, 15}, {10, 5}}, {"0,0 1000x1500", "0,1500 1000x500"}},
    {"an asked page is marked", {{10, 2}, {10, 2, PAGE}}, {"0,0 1000x200", "0,200 1000x200 page"}},
    {"also on the first block", {{10, 2, PAGE}}, {"0,0 1000x200 page"}},
    {"a row that overflows as a whole goes over with its last block only",
     {{5, 15}, {5, 18}, {5, 3}},
     {"0,0 500x1500", "500,0 500x1800", "0,1800 500x300 page"}},
    {"a heading is kept with what follows it",
     {{10, 15}, {10, 1, KEEP}, {10, 8}},
     {"0,0 1000x1500", "0,1500 1000x100 page", "0,1600 1000x800"}},
    {"two headings likewise",
     {{10, 14}, {10, 1, KEEP}, {10, 1, KEEP}, {10, 8}},
     {"0,0 1000x1400", "0,1400 1000x100 page", "0,1500 1000x100", "0,1600 1000x800"}},
    {"what is kept fills the new page from its top",
     {{10, 15}, {10, 1, KEEP}, {10, 8}, {10, 12}},
     {"0,0 1000x1500", "0,1500 1000x100 page", "0,1600 1000x800", "0,2400 1000x1200 page"}},
    {"kept blocks that would not fit on one page leave the mark",
     {{10, 5}, {10, 14, KEEP}, {10, 8}},
     {"0,0 1000x500", "0,500 1000x1400", "0,1900 1000x800 page"}},
    {"an automatic height counts with its margins only when keeping",
     {{10, 12}, {10, 0, KEEP, 0, 0, 0, 0, 7}, {10, 14}},
     {"0,0 1000x1200", "0,1200 1000x700 page", "0,1900 1000x1400"}},
    {"an asked page does not pull what is kept",
     {{10, 2}, {10, 1, KEEP}, {10, 2, PAGE}},
     {"0,0 1000x200", "0,200 1000x100", "0,300 1000x200 page"}},
    {"an automatic width behind a full row has nothing left",
     {{10, 2}, {0, 1}},
     {"0,0 1000x200", "1000,0 0x100"}},
};

TEST_F(Flow, FollowsTheTable)
{
    for (const Case &c : cases) {
        SCOPED_TRACE(c.what);
        for (const Wish &wish : c.wishes)
            Add(wish);
        Layout();
        EXPECT_EQ(ShowAll(), c.places);
        doc.RemoveAllBlocks();
    }
}

TEST_F(Flow, OffersWhatIsLeftAndTakesNoMore)
{
    Add({3, 2});
    WishBlock *blk = Add({0, 0, 0, 1, 2});
    blk->grows = true;
    Layout();
    EXPECT_DOUBLE_EQ(blk->offered.Width(), 6);
    EXPECT_DOUBLE_EQ(blk->offered.Height(), 18);
    EXPECT_EQ(Show(blk), "400,200 600x1800");
}

TEST_F(Flow, ScalesPlacesNotTheFlow)
{
    for (const Wish &wish : {Wish{3.33, 2}, Wish{4.44, 5}, Wish{4, 1, 0, 0.1, 0.1}})
        Add(wish);
    zoom.SetCustom(37);
    Layout();
    EXPECT_DOUBLE_EQ(doc.scale, 0.37);
    EXPECT_EQ(ShowAll(), (Places{"0,0 123x74", "123,0 164x185", "4,189 148x37"}));
}

TEST_F(Flow, LimitsTheZoomItIsGiven)
{
    Add({3, 2});
    zoom.SetCustom(9999);
    Layout();
    EXPECT_EQ(zoom.custom, 400); // 8000 px for the page's 20 in at 100 dots
    EXPECT_DOUBLE_EQ(doc.scale, 4.0);
}

TEST_F(Flow, OfAnEmptyChainIsNothing)
{
    Layout();
    EXPECT_EQ(doc.blocks, nullptr);
    EXPECT_EQ(doc.PageCount(), 1);
}

TEST_F(Flow, StopsAtAFailingBlockAndPassesTheFailureOn)
{
    Add({3, 2});
    Add({3, 2})->failing = true;
    WishBlock *last = Add({3, 2});
    Layout();
    EXPECT_EQ(xCode, XALLOC);
    xCode = XNULL;
    EXPECT_EQ(last->layouts, 0);
}

// What the flow makes of a chain, worked out on plain arrays.
struct Twin {
    struct Out {
        double x, y, w, h;
        bool page;
    };
    double pageW, pageH;

    std::vector<Out> Run(const std::vector<Wish> &in) const
    {
        constexpr double eps = 1e-9;
        std::vector<Out> out;
        double x = 0, y = 0, used = 0, row = 0; // used: of the page above this row
        for (size_t i = 0; i < in.size(); ++i) {
            const Wish &b = in[i];
            bool page = b.options & PAGE;
            if (b.options & (PAGE | ROW)) {
                x = 0;
                y += row;
                used = page ? 0 : used + row;
                row = 0;
            }
            double w = std::max(0.0, std::min(b.width, pageW - b.left));
            double h = std::max(0.0, std::min(b.height, pageH - b.top));
            w = w == 0 ? std::max(0.0, pageW - x - b.left) : w;
            h = h == 0 ? std::max(0.0, pageH - b.top) : h;
            h = b.trueHeight > 0 ? std::min(h, b.trueHeight) : h;
            bool beside = x + b.left + w <= pageW + eps;
            bool below = used + (beside ? 0 : row) + b.top + h <= pageH + eps;
            if (!beside || !below) {
                x = 0;
                y += row;
                used = below ? used + row : 0;
                row = 0;
                page = page || !below;
            }
            row = std::max(row, b.top + h + b.bottom);
            size_t head = i;
            if (page && !(b.options & PAGE)) {
                double group = b.height + b.top;
                while (group <= pageH && (in[head - 1].options & KEEP)) {
                    --head;
                    group += in[head].top + in[head].height + in[head].bottom;
                }
                head = group <= pageH ? head : i;
                used = group <= pageH ? group - b.height - b.top : used;
            }
            out.push_back({b.left + x, b.top + y, w, h, page});
            if (head != i) {
                out[i].page = false;
                out[head].page = true;
            }
            x += b.left + w + b.right;
        }
        return out;
    }
};

Wish RandomWish(std::mt19937 &random, bool first)
{
    auto eighths = [&](int max) { return static_cast<double>(random() % (8 * max + 1)) / 8; };
    Wish wish;
    wish.width = random() % 3 ? eighths(11) : 0;
    wish.height = random() % 4 ? eighths(12) : 0;
    wish.options = random() % 8 & (random() % 3 ? ~0u : 0u);
    if (first)
        wish.options &= ~static_cast<unsigned>(KEEP);
    wish.left = eighths(1);
    wish.top = eighths(1);
    wish.right = eighths(1);
    wish.bottom = eighths(1);
    wish.trueHeight = random() % 2 ? 0.125 + eighths(9) : 0;
    return wish;
}

TEST_F(Flow, AgreesWithItsTwinOnRandomChains)
{
    std::mt19937 random(20261121);
    int marked = 0;
    for (int round = 0; round < 3000; ++round) {
        std::vector<Wish> wishes;
        size_t count = 1 + random() % 14;
        for (size_t i = 0; i < count; ++i)
            wishes.push_back(RandomWish(random, i == 0));
        for (const Wish &wish : wishes)
            Add(wish);
        Layout();
        std::vector<Twin::Out> twin = Twin{10, 20}.Run(wishes);
        Places expected;
        for (const Twin::Out &o : twin) {
            auto px = [](double inches) { return std::to_string(std::lround(inches * 100)); };
            expected.push_back(px(o.x) + "," + px(o.y) + " " + px(o.w) + "x" + px(o.h) +
                               (o.page ? " page" : ""));
            marked += o.page;
        }
        ASSERT_EQ(ShowAll(), expected) << "round " << round;
        doc.RemoveAllBlocks();
    }
    EXPECT_GT(marked, 3000);
}

TEST_F(Flow, CountsOnePageTooManyWhereTheFirstBlockAsksForOne)
{
    Add({0, 2, PAGE});
    Add({0, 2, PAGE});
    Layout();
    EXPECT_EQ(doc.PageCount(), 3);
    dc.calls.clear();
    doc.PrintPage(dc, 3);
    EXPECT_EQ(dc.calls, "");
}

/// Writes down where it is printed.
class NotedBlock : public WishBlock
{
public:
    NotedBlock(const Wish &w, std::string &aLog, char aName) : WishBlock(w), log(aLog), name(aName) {}
    void Print(TDC &dc, const TRect &part) override
    {
        TPoint at = dc.State().viewport;
        log += std::string(1, name) + " " + std::to_string(at.x) + "," + std::to_string(at.y) + " " +
               std::to_string(part.right) + "x" + std::to_string(part.bottom) + "; ";
    }
    std::string &log;
    char name;
};

TEST_F(Flow, PrintsEachPageFromItsOwnTop)
{
    std::string log;
    const Wish wishes[] = {{5, 15}, {4, 2, 0, 0.5, 0.25}, {10, 1, KEEP}, {10, 8}, {3, 3, PAGE, 1, 1}};
    char name = 'a';
    for (const Wish &wish : wishes)
        doc.LinkBlock(new NotedBlock(wish, log, name++), NULL, true);
    Layout();
    dc.offset = {20, 30};
    EXPECT_EQ(doc.PageCount(), 3);
    const char *pages[] = {"a 80,70 500x1500; b 630,95 400x200; ", "c 80,70 1000x100; d 80,170 1000x800; ",
                           "e 80,70 300x300; ", ""};
    for (int page = 1; page <= 4; ++page) {
        log.clear();
        doc.PrintPage(dc, page);
        EXPECT_EQ(log, pages[page - 1]);
    }
    EXPECT_EQ(dc.State().viewport, (TPoint{0, 0}));
}

TEST_F(Flow, OfAnOpenedBlockIsThatBlockAlone)
{
    std::string log;
    Add({0, 15});
    NotedBlock *blk = new NotedBlock({4, 0, EDC_BoSELECT, 1, 1, 0, 0, 3}, log, 'o');
    doc.LinkBlock(blk, NULL, true);
    doc.OpenBlock(blk);
    Layout();
    EXPECT_EQ(Show(blk), "0,0 400x300");
    EXPECT_DOUBLE_EQ(blk->offered.Height(), 20);
    EXPECT_EQ(blk->layouts, 1); // a caller's zoom needs no first pass
    EXPECT_EQ(doc.PageCount(), 1);
    doc.PrintPage(dc, 1);
    EXPECT_EQ(log, "o 100,100 400x300; ");
    doc.CloseBlock();
}

TEST_F(Flow, OfAnOpenedBlockOnTheScreenMeasuresAtScaleOneFirst)
{
    std::string log;
    NotedBlock *blk = new NotedBlock({4, 0, EDC_BoSELECT, 1, 1, 0, 0, 3}, log, 'o');
    doc.LinkBlock(blk, NULL, true);
    doc.OpenBlock(blk);
    doc.LayoutBlocks(dc, NULL);
    EXPECT_EQ(blk->layouts, 2);
    ASSERT_EQ(doc.blockZoom.count, 3);
    EXPECT_EQ(doc.blockZoom.labels[0], 20202);
    EXPECT_EQ(doc.blockZoom.labels[1], 20201);
    EXPECT_EQ(doc.blockZoom.labels[2], 20200);
    doc.CloseBlock();
}

TEST_F(Flow, RebuildsTheDocumentsPresetsOnTheScreen)
{
    doc.LayoutBlocks(dc, NULL);
    ASSERT_EQ(doc.docZoom.count, 2);
    EXPECT_EQ(doc.docZoom.labels[0], 20201);
    EXPECT_EQ(doc.docZoom.labels[1], 20203);
    EXPECT_EQ(doc.docZoom.percents[1], 100);
    // Without a client area nothing fits; the short side still gets its 100 px of 1000.
    EXPECT_EQ(doc.docZoom.percents[0], 11);
}

TEST(FlowAssertions, HoldTheirTexts)
{
    EXPECT_TRUE(AbortsOnAssertion("blocks != NULL", "usr/edcbase2_flow.cpp", [] {
        TEdcDocument doc;
        TRecordDC dc;
        doc.PrintPage(dc, 1);
    }));
    EXPECT_TRUE(AbortsOnAssertion("pageNum >= 1", "usr/edcbase2_flow.cpp", [] {
        TEdcDocument doc;
        SetAppDocument(&doc);
        doc.LinkBlock(new WishBlock({1, 1}), NULL, true);
        TRecordDC dc;
        doc.PrintPage(dc, 0);
    }));
    EXPECT_TRUE(AbortsOnAssertion("openedBlk->state & EDC_BsLINKED", "usr/edcbase2_flow.cpp", [] {
        TEdcDocument doc;
        WishBlock blk({1, 1});
        doc.openedBlk = &blk;
        TRecordDC dc;
        doc.LayoutBlocks(dc, NULL);
    }));
    EXPECT_TRUE(AbortsOnAssertion("p != NULL", "usr/edcbase2_flow.cpp", [] {
        TEdcDocument doc;
        SetAppDocument(&doc);
        doc.SetPaper(TEdcSize(10, 10));
        doc.SetMargins(TEdcMargins(0, 0, 0, 0));
        doc.LinkBlock(new WishBlock({0, 0, KEEP}), NULL, true);
        doc.LinkBlock(new WishBlock({10, 5}), NULL, true);
        TRecordDC dc;
        doc.LayoutBlocks(dc, NULL);
    }));
}
} // namespace
