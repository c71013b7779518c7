// What the drawn blocks share: the palette, pictures of colour indices, the head, the settings of axes, and the
// small plan that names the walls.
#include "usr/zulroom.h"

#include "lib/charstr.h"
#include "lib/platform.h"
#include "lib/xassert.h"
#include "win/dc.h"

#include <algorithm>
#include <cstring>

#include "lib/xon.h"

namespace
{
enum { TEXT_XAXIS = 4210, TEXT_YAXIS = 4211, TEXT_WALLS = 4237 };

const char face[] = "Arial";
const double TITLE_POINTS = 14;
const double LOGO_WIDTH = 64; // pt
const double LOGO_HEIGHT = 32;
enum { LOGO_INSET = 5 };   // px from the corner
enum { AXES_POINTS = 10 }; // of titles and labels

const double DIVISION = 2.0;                   // m
const double SNAP = 0.01;                      // m
const double ANGLE_BASE = 1.0;                 // rad
const double ANGLE_SNAP = 0.08726646259971647; // rad, 5 degrees
enum { METRE_DIGITS = 3 };                     // labels stay in metres up to 999 m

void AddColors(TEdcPalette &palette, const ZulCOLORS &colors, TEdcColorScale &scale)
{
    for (int i = 0; i < colors.count; ++i)
        palette.Add(colors.colors[i].red, colors.colors[i].green, colors.colors[i].blue, &scale);
}
} // namespace

TZulRoomPalette::TZulRoomPalette()
{
    __enter
        SetColors(::hallColors.count + ::mapColors.count + ::mapColorsCoarse.count + ::criterionColors.count +
                  ::greyColors.count); __test;
        AddColors(*this, ::hallColors, hallColors);
        AddColors(*this, ::mapColors, mapColors);
        AddColors(*this, ::mapColorsCoarse, mapColorsCoarse);
        AddColors(*this, ::criterionColors, criterionColors);
        AddColors(*this, ::greyColors, greyColors);
    __point
    __treat
}

std::unique_ptr<TEdcPicture> ZulMakePicture(const ZulPixels &pixels, const TEdcColorScale &colors)
{
    std::unique_ptr<TEdcPicture> picture;
    __enter
        ASSERT(colors.palette != NULL);
        picture = std::make_unique<TEdcPicture>(pixels.Width(), pixels.Height());
        picture->bitmap.SetPalette(*colors.palette);
        for (int j = 0; j < pixels.Height(); ++j)
            std::transform(pixels.Row(j), pixels.Row(j) + pixels.Width(), picture->bitmap.Row(j),
                           [&colors](uint8_t index) { return static_cast<uint8_t>(colors.Index(index)); });
    __point
        picture.reset();
    __treat
    return picture;
}

TZulPlanHead::TZulPlanHead(const char *aTitle)
{
    SetTitle(aTitle);
    titleText.SetFormat(EDC_TfUNDERLINE);
    logo.Open("Torvane.lgo");
}

void TZulPlanHead::SetTitle(const char *str)
{
    ASSERT(str != NULL);
    StrCopy(title, str, TEXTMAX);
    titleText.SetText(title);
}

int TZulPlanHead::Layout(TDC &dc, int width, double scale)
{
    int height = 0;
    __enter
        TSize box = {EdcInchToPixel(LOGO_WIDTH / 72.0, scale, dc.DpiX()),
                     EdcInchToPixel(LOGO_HEIGHT / 72.0, scale, dc.DpiY())};
        TPoint corner = {std::max(0, width - LOGO_INSET - box.cx), LOGO_INSET};
        logo.Size(dc, box, scale); __test;
        logo.Fit(dc, box, true);
        logo.MoveBox(corner);
        logo.Place(9, 1);
        TRect rest = {0, 0, std::max(0, corner.x - LOGO_INSET), 0};
        titleText.SetFont(face, ZulFontPixels(dc, TITLE_POINTS, scale), edcDefaultFont.charset);
        titleText.Layout(dc, rest, EDC_BREAKWIDTH, EDC_HLEFT, EDC_VTOP); __test;
        height = std::max(corner.y + box.cy, rest.bottom);
    __point
    __treat
    return height;
}

void TZulPlanHead::Paint(TDC &dc) const
{
    __enter
        titleText.Paint(dc);
        logo.Paint(dc); __test;
    __point
    __treat
}

void ZulSetUpAxes(TEdcAxes &axes)
{
    axes.SetTitles(ResText(TEXT_XAXIS), ResText(TEXT_YAXIS));
    axes.SetFont(face, AXES_POINTS, false);
    axes.SetXDigits(METRE_DIGITS, 0);
    axes.SetYDigits(METRE_DIGITS, 0);
    axes.SetDivision(DIVISION, DIVISION);
    axes.SetSnap(SNAP, SNAP);
    axes.SetAngle(ANGLE_BASE, ANGLE_SNAP);
}

void ZulSetRange(TEdcAxes &axes, const EmBOX &bounds)
{
    double right = std::max(bounds.max.x, 0.0), left = std::min(bounds.min.x, 0.0);
    double top = std::max(bounds.max.y, 0.0), bottom = std::min(bounds.min.y, 0.0);
    axes.SetXRange(left, left < right ? right : 1.0);
    axes.SetYRange(bottom, bottom < top ? top : 1.0);
}

void ZulFrame(TDC &dc, const TEdcAxes &axes, const AgPOINT &min, const AgPOINT &max)
{
    TPoint low = axes.ToDevice(min);
    TPoint high = axes.ToDevice(max);
    TPen formerPen = dc.SetPen(TPen());
    TBrush formerBrush = dc.SetBrush(NoBrush());
    dc.Rectangle({low.x, high.y, high.x + 1, low.y + 1});
    dc.SetPen(formerPen);
    dc.SetBrush(formerBrush);
}

int ZulFontPixels(const TDC &dc, double points, double scale)
{
    return std::max(1, EdcInchToPixel(points / 72.0, scale, dc.DpiY()));
}

void TZulWallLetters::SetFont(const char *name, int size)
{
    ASSERT(name != NULL && size >= 0);
    StrCopy(font, name, NAMEMAX);
    fontSize = std::max(1, size);
}

/// A hall much wider than long leaves no width for its letters; they then take what they need.
void TZulWallLetters::Layout(TDC &dc, const TRect &aRect)
{
    const char *text = ResText(TEXT_WALLS);
    ASSERT_AS(std::strlen(text) == LETTERS, "strlen(letters) == LETTERS");
    TFont former = dc.SetFont({.face = font, .height = -fontSize});
    int height = dc.FontMetrics().height;
    int width = 0;
    for (int i = 0; i < LETTERS; ++i)
        width = std::max(width, dc.CharWidth(static_cast<unsigned char>(text[i])));
    int gap = std::max(1, height / 6);
    int least = height / 2; // of the solid rectangle
    int missingX = std::max(0, 2 * (width + gap) + least - aRect.Width());
    int missingY = std::max(0, 2 * height + least - aRect.Height());
    rect = {aRect.left - missingX / 2, aRect.top - missingY / 2, aRect.right + (missingX + 1) / 2,
            aRect.bottom + (missingY + 1) / 2};
    body = rect.Inflated(-width - gap, -height);
    auto place = [&](int i, int left, int top) { // in the middle of a cell of the widest letter
        int own = dc.CharWidth(static_cast<unsigned char>(text[i]));
        points[i] = {left + (width - own) / 2, top};
    };
    int middleX = (rect.left + rect.right - width) / 2;
    int middleY = (rect.top + rect.bottom - height) / 2;
    place(0, middleX, rect.bottom - height);
    place(1, rect.right - width, middleY);
    place(2, middleX, rect.top);
    place(3, rect.left, middleY);
    dc.SetFont(former);
}

void TZulWallLetters::Paint(TDC &dc) const
{
    const char *text = ResText(TEXT_WALLS);
    const ZulRGB &grey = ::hallColors.colors[0];
    TDCState former = dc.State();
    dc.SetFont({.face = font, .height = -fontSize});
    dc.SetTextColor(WIN_BLACK);
    dc.SetTextAlign(WIN_TEXT_TOP);
    dc.SetOpaque(false);
    dc.FillRect(body, SolidBrush({grey.red, grey.green, grey.blue}));
    for (int i = 0; i < LETTERS; ++i)
        dc.TextOut(points[i].x, points[i].y, text + i, 1);
    dc.SetState(former);
}
