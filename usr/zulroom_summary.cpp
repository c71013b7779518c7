// The map that sums the criteria up. Each failing point of a criterion is told to it once a pixel, and its
// legend is made at the layout, after all of them.
#include "usr/zulroom.h"

#include "lib/platform.h"
#include "lib/xassert.h"
#include "usr/edcutils.h"
#include "win/dc.h"

#include <algorithm>
#include <cstring>

#include "lib/xon.h"

namespace
{
enum {
    TEXT_TITLE = 4290,
    TEXT_LEGEND = 4291,
    TEXT_PASSED = 4292, // share in %
    TEXT_FAILED = 4293,
};
const char fontName[] = "Arial";
enum { FONT_POINTS = 10 };
} // namespace

TZulSummaryMap::TZulSummaryMap(TZulRoomBlock *aRoomBlk)
    : TZulMapBlock(*aRoomBlk->Room(), ResText(TEXT_TITLE)), roomBlk(aRoomBlk)
{
}

void TZulSummaryMap::Update(bool)
{
    __enter
        sprites.Reload(NULL); __test; // the zones show whether there is a map or not
        if (roomBlk->IsValid()) {
            isJudged = false;
            picture.reset();
            pixels = passed = 0;
            if (roomBlk->Map().HasMap()) {
                FillPicture(); __test;
            }
        }
    __point
        picture.reset();
        pixels = passed = 0;
    __treat
}

/// All points count as passed until a criterion says otherwise.
void TZulSummaryMap::FillPicture()
{
    __enter
        const TEdcColorScale &colors = roomBlk->Palette()->criterionColors;
        const ZulPixels &map = roomBlk->Map().pixels;
        picture = std::make_unique<TEdcPicture>(map.Width(), map.Height());
        picture->bitmap.SetPalette(*colors.palette);
        for (int j = 0; j < map.Height(); ++j)
            std::memset(picture->bitmap.Row(j), colors.Index(0), static_cast<size_t>(map.Width()));
        pixels = passed = map.Width() * map.Height();
    __point
    __treat
}

const ZulHygieneMaps &TZulSummaryMap::Judged()
{
    __enter
        if (!isJudged) {
            ZulJudgePlan(*roomBlk->Room(), *roomBlk->Info(), roomBlk->Map(), judged); __test;
            isJudged = true;
        }
    __point
    __treat
    return judged;
}

void TZulSummaryMap::Fail(int column, int row)
{
    if (picture == NULL)
        return;
    const TEdcColorScale &colors = roomBlk->Palette()->criterionColors;
    uint8_t &pixel = picture->bitmap.Row(row)[column];
    passed -= pixel == colors.Index(0);
    pixel = static_cast<uint8_t>(colors.Index(2));
}

void TZulSummaryMap::FillLegend(int fontSize)
{
    __enter
        const TEdcColorScale &colors = roomBlk->Palette()->criterionColors;
        double share = static_cast<double>(passed) / pixels * 100; // %
        legend = std::make_unique<TZulLegend>();
        legend->SetFont(fontName, fontSize);
        legend->SetTitle(ResText(TEXT_LEGEND));
        legend->Add(colors.Color(0), EdcResFormat(TEXT_PASSED, share).c_str());
        legend->Add(colors.Color(2), ResText(TEXT_FAILED));
    __point
    __treat
}

/// The legend first: it says how much height the plan has.
void TZulSummaryMap::Layout(TDC &dc, TEdcSize &trueSize, double scale)
{
    __enter
        TSize space = trueSize.ToPixels(dc, scale);
        int below = 0; // px, the legend and the gap above it
        legend.reset();
        if (picture != NULL) {
            int fontSize = ZulFontPixels(dc, FONT_POINTS, scale);
            TRect room = {0, 0, space.cx, space.cy};
            FillLegend(fontSize); __test;
            legend->Layout(dc, room, TZulLegend::COLUMN); __test;
            below = room.Height() + fontSize;
        }
        int bottom = LayoutPlan(dc, {space.cx, space.cy - below}, scale) + below; __test;
        if (legend != NULL)
            legend->MoveBy(0, bottom - legend->Rect().bottom);
        trueSize.FromPixels(dc, {space.cx, bottom}, scale);
    __point
        legend.reset();
    __treat
}

void TZulSummaryMap::PaintLegends(TDC &dc)
{
    if (legend != NULL)
        legend->Paint(dc);
}
