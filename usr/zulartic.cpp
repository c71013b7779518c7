// The introduction: a heading and a short text below it, measured and painted as one block.
#include "usr/zulartic.h"
#include "lib/charstr.h"
#include "lib/xassert.h"
#include "win/dc.h"

#include "lib/xon.h"

namespace
{
// Points.
enum { TITLE_SIZE = 16, HEADING_SIZE = 12, TEXT_SIZE = 12, GAP = 6 };
enum { LEVEL_TITLE = 1 };

int PointsToPixel(double points, double scale, int dpi)
{
    return EdcInchToPixel(points / 72.0, scale, dpi);
}
} // namespace

TZulArticleBlock::TZulArticleBlock(const EmARTICLE *aArticObj) : article(aArticObj)
{
    ASSERT(aArticObj != NULL);
    size = TEdcSize(1.0, 1.0, EDC_UREL);
    head.SetText(article->head);
    text.SetText(article->text);
}

/// The texts are read anew each time: the article is edited where it stands.
void TZulArticleBlock::Layout(TDC &dc, TEdcSize &trueSize, double scale)
{
    __enter
        bool isTitle = article->level == LEVEL_TITLE;
        int width = EdcInchToPixel(trueSize.Width(), scale, dc.DpiX());
        TRect place = {0, 0, width, 0};
        head.SetFont("Arial", PointsToPixel(isTitle ? TITLE_SIZE : HEADING_SIZE, scale, dc.DpiY()), 1);
        head.SetFormat(isTitle ? EDC_TfBOLD | EDC_TfITALIC : EDC_TfBOLD);
        head.Layout(dc, place, EDC_BREAKWIDTH, EDC_HLEFT, EDC_VTOP); __test;
        text.SetFont("Courier New", PointsToPixel(TEXT_SIZE, scale, dc.DpiY()), 1);
        text.SetFormat(0);
        if (article->text[0] != EOS) {
            int top = place.bottom + PointsToPixel(GAP, scale, dc.DpiY());
            place = {0, top, width, top};
            text.Layout(dc, place, EDC_BREAKWIDTH, EDC_HLEFT, EDC_VTOP); __test;
        }
        trueSize.SetHeight(EdcPixelToInch(place.bottom, scale, dc.DpiY()));
    __point
    __treat
}

void TZulArticleBlock::Paint(TDC &dc, const TRect &part)
{
    head.Paint(dc, part);
    text.Paint(dc, part);
}
