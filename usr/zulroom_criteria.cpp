// The maps of one criterion each. A fine map of a long hall has millions of points, so the three criteria of
// this system are judged together, once an update, and their maps take the classes from there; Value() and the
// base's Classify() state what a class means, point by point.
#include "usr/zulroom.h"

#include "lib/charstr.h"
#include "lib/platform.h"
#include "lib/xassert.h"
#include "usr/edcutils.h"
#include "win/dc.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "lib/xon.h"

namespace
{
enum {
    TEXT_STATUS = 4221,
    TEXT_LEGEND = 4300,
    TEXT_MET = 4301,
    TEXT_MISSED = 4302,
    TEXT_MORE = 4303,
    TEXT_HEAD_TEMP = 4310, // and its legend
    TEXT_DIFF_TEMP = 4312,
    TEXT_HEAD_INTE = 4314,
};
enum { MET = 0, TOLERATED = 1, MISSED = 2 }; // classes, and their colours
const char fontName[] = "Arial";
enum { FONT_POINTS = 10 };

void CopyPixels(const ZulPixels &from, ZulPixels &to)
{
    for (int j = 0; j < to.Height(); ++j)
        std::memcpy(to.Row(j), from.Row(j), static_cast<size_t>(to.Width()));
}
} // namespace

TZulCriterionMap::TZulCriterionMap(TZulSummaryMap *aSummary)
    : TZulMapBlock(*aSummary->RoomBlock()->Room(), ""), summary(aSummary)
{
}

void TZulCriterionMap::SetTitle(const char *str)
{
    ASSERT(str != NULL);
    head.SetTitle(str);
}

void TZulCriterionMap::SetLegendTitle(const char *str)
{
    ASSERT(str != NULL);
    StrCopy(legendTitle, str, TEXTMAX);
}

void TZulCriterionMap::SetBand(double aMin, double aMax, double aTol, const char *frm)
{
    ASSERT_AS(aTol >= 0, "tol >= 0");
    ASSERT_AS(aMin != aMax, "min != max");
    ASSERT(frm != NULL);
    band = {std::min(aMin, aMax), std::max(aMin, aMax), aTol};
    StrCopy(format, frm, FORMATMAX);
}

void TZulCriterionMap::Update(bool)
{
    __enter
        sprites.Reload(NULL); __test; // the zones show whether there is a map or not
        if (summary->RoomBlock()->IsValid()) {
            StatusMessage("%s", ResText(TEXT_STATUS));
            picture.reset();
            Prepare(); __test;
            if (summary->RoomBlock()->Map().HasMap()) {
                Judge(); __test;
            }
            Finish(); __test;
            StatusMessage(NULL);
        }
    __point
        picture.reset();
    __treat
}

/// The picture of the classes. What is not met fails in the summary too.
void TZulCriterionMap::Judge()
{
    __enter
        const TZulRoomBlock &roomBlk = *summary->RoomBlock();
        EmRASTER raster = CriterionRaster(roomBlk.Room()->Box(), roomBlk.Map().raster);
        ZulPixels classes;
        classes.Alloc(raster.columns, raster.rows, MET); __test;
        Classify(raster, classes); __test;
        for (int j = 0; j < raster.rows; ++j)
            for (int i = 0; i < raster.columns; ++i)
                if (classes.Row(j)[i] != MET)
                    summary->Fail(i, j);
        picture = ZulMakePicture(classes, roomBlk.Palette()->criterionColors); __test;
    __point
    __treat
}

void TZulCriterionMap::Classify(const EmRASTER &raster, ZulPixels &classes)
{
    for (int i = 0; i < raster.columns; ++i)
        for (int j = 0; j < raster.rows; ++j)
            classes.Row(j)[i] =
                static_cast<uint8_t>(band.Classify(Value(AgPOINT(raster.X(i), raster.Y(j), 0))));
}

/// A box of legendB up to the limit, its label in the criterion's format.
void TZulCriterionMap::AddLimit(int color, double limit)
{
    char text[TZulLegendBox::TEXTMAX];
    snprintf(text, sizeof text, format, EdcRound(limit, EDC_NOISE));
    legendB->Add(summary->RoomBlock()->Palette()->criterionColors.Color(color), text);
}

void TZulCriterionMap::FillLegends(int fontSize)
{
    __enter
        const TEdcColorScale &colors = summary->RoomBlock()->Palette()->criterionColors;
        legendA = std::make_unique<TZulLegend>();
        legendA->SetFont(fontName, fontSize);
        legendA->SetTitle(ResText(TEXT_LEGEND));
        legendA->Add(colors.Color(MET), ResText(TEXT_MET));
        legendA->Add(colors.Color(MISSED), ResText(TEXT_MISSED));
        legendB = std::make_unique<TZulLegend>();
        legendB->SetFont(fontName, fontSize);
        legendB->SetTitle(legendTitle);
        bool hasMax = band.max < DBL_MAX;
        if (band.min > -DBL_MAX) {
            AddLimit(MISSED, band.LowTol());
            if (band.tol > 0)
                AddLimit(TOLERATED, band.min);
        }
        if (hasMax) {
            AddLimit(MET, band.max);
            if (band.tol > 0)
                AddLimit(TOLERATED, band.HighTol());
        }
        legendB->Add(colors.Color(hasMax ? MISSED : MET), ResText(TEXT_MORE));
    __point
    __treat
}

/// Both at the top, the classes at the left with half of the width at most, the limits over the rest.
/// @return their height and the gap above them, px
int TZulCriterionMap::LayoutLegends(TDC &dc, TSize space, double scale)
{
    int below = 0;
    __enter
        int fontSize = ZulFontPixels(dc, FONT_POINTS, scale);
        TRect a = {0, 0, space.cx / 2, space.cy};
        FillLegends(fontSize); __test;
        legendA->Layout(dc, a, TZulLegend::COLUMN); __test;
        TRect b = {a.right + 2 * fontSize, 0, space.cx, space.cy};
        legendB->Layout(dc, b, TZulLegend::ROW); __test;
        below = std::max(a.Height(), b.Height()) + fontSize;
    __point
    __treat
    return below;
}

/// The legends first: the taller one says how much height the plan has.
void TZulCriterionMap::Layout(TDC &dc, TEdcSize &trueSize, double scale)
{
    __enter
        TSize space = trueSize.ToPixels(dc, scale);
        int below = 0; // px, the legends and the gap above them
        legendA.reset();
        legendB.reset();
        if (picture != NULL) {
            below = LayoutLegends(dc, space, scale); __test;
        }
        int bottom = LayoutPlan(dc, {space.cx, space.cy - below}, scale) + below; __test;
        if (legendA != NULL) {
            int height = std::max(legendA->Rect().Height(), legendB->Rect().Height());
            legendA->MoveBy(0, bottom - height);
            legendB->MoveBy(0, bottom - height);
        }
        trueSize.FromPixels(dc, {space.cx, bottom}, scale);
    __point
        legendA.reset();
        legendB.reset();
    __treat
}

void TZulCriterionMap::PaintLegends(TDC &dc)
{
    __enter
        if (legendA != NULL) {
            legendA->Paint(dc); __test;
            legendB->Paint(dc); __test;
        }
    __point
    __treat
}

TZulHeadTempMap::TZulHeadTempMap(TZulSummaryMap *aSummary) : TZulCriterionMap(aSummary)
{
    SetTitle(ResText(TEXT_HEAD_TEMP));
    SetLegendTitle(ResText(TEXT_HEAD_TEMP + 1));
}

void TZulHeadTempMap::Prepare()
{
    room = summary->RoomBlock()->Room();
    EmCRITERION criterion = HeadTempCriterion(room->Data()->workClass);
    SetBand(criterion.min, criterion.max, criterion.tol, "%.1lf");
    head = HeadHeight(room->Data()->position);
    airAtHead = AirTempAt(*summary->RoomBlock()->Info(), head);
}

double TZulHeadTempMap::Value(AgPOINT p)
{
    return room->OperativeTemp(room->Irradiation(AgPOINT(p.x, p.y, head)), airAtHead);
}

void TZulHeadTempMap::Classify(const EmRASTER &, ZulPixels &classes)
{
    __enter
        const ZulHygieneMaps &judged = summary->Judged(); __test;
        CopyPixels(judged.headTemp.pixels, classes);
    __point
    __treat
}

TZulDiffTempMap::TZulDiffTempMap(TZulSummaryMap *aSummary) : TZulCriterionMap(aSummary)
{
    SetTitle(ResText(TEXT_DIFF_TEMP));
    SetLegendTitle(ResText(TEXT_DIFF_TEMP + 1));
}

void TZulDiffTempMap::Prepare()
{
    EmCRITERION criterion = DiffTempCriterion();
    SetBand(criterion.min, criterion.max, criterion.tol, "%.1lf");
    room = summary->RoomBlock()->Room();
    head = HeadHeight(room->Data()->position);
    airAtHead = AirTempAt(*summary->RoomBlock()->Info(), head);
    airAtAnkle = AirTempAt(*summary->RoomBlock()->Info(), EM_ANKLE_HEIGHT);
}

double TZulDiffTempMap::Value(AgPOINT p)
{
    double above = room->Irradiation(AgPOINT(p.x, p.y, head));            // W/m2
    double below = room->Irradiation(AgPOINT(p.x, p.y, EM_ANKLE_HEIGHT)); // W/m2
    return room->OperativeTemp(above, airAtHead) - room->OperativeTemp(below, airAtAnkle);
}

void TZulDiffTempMap::Classify(const EmRASTER &, ZulPixels &classes)
{
    __enter
        const ZulHygieneMaps &judged = summary->Judged(); __test;
        CopyPixels(judged.diffTemp.pixels, classes);
    __point
    __treat
}

TZulHeadInteMap::TZulHeadInteMap(TZulSummaryMap *aSummary) : TZulCriterionMap(aSummary)
{
    SetTitle(ResText(TEXT_HEAD_INTE));
    SetLegendTitle(ResText(TEXT_HEAD_INTE + 1));
}

void TZulHeadInteMap::Prepare()
{
    EmCRITERION criterion = HeadInteCriterion();
    SetBand(criterion.min, criterion.max, criterion.tol, "%.0lf");
    room = summary->RoomBlock()->Room();
    head = HeadHeight(room->Data()->position);
}

double TZulHeadInteMap::Value(AgPOINT p)
{
    AgPOINT at(p.x, p.y, head);
    return room->Irradiation(at) + room->Surfaces()->Ceiling()->Radiation(at);
}

void TZulHeadInteMap::Classify(const EmRASTER &, ZulPixels &classes)
{
    __enter
        const ZulHygieneMaps &judged = summary->Judged(); __test;
        CopyPixels(judged.headInte.pixels, classes);
    __point
    __treat
}
