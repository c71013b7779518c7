#include "support/pagedoc.h"
#include "lib/cde.h"
#include "lib/charstr.h"
#include "usr/edcapp.h"
#include "usr/edcutils.h"
#include "win/dc.h"

#include <algorithm>
#include <cmath>

#include "lib/xon.h"

namespace
{
constexpr int MAP_WIDTH = 60;
constexpr int MAP_HEIGHT = 24;
constexpr int MAP_COLORS = 12;
constexpr double HALL_LENGTH = 60.0; // m
constexpr double HALL_WIDTH = 24.0;  // m
} // namespace

void TLineTool::Draw(TDC &dc) const
{
    TDCState former = dc.State();
    dc.SetPen({.color = WIN_WHITE, .style = WIN_PEN_DOT});
    dc.SetMix(WIN_MIX_XOR);
    dc.SetOpaque(false);
    dc.Line(from, to);
    dc.SetState(former);
}

void TLineTool::LeftDown(TDC &, unsigned, TPoint point)
{
    from = to = point;
    pressed = true;
    drawn = isOutside = false;
}

void TLineTool::MouseMove(TDC &dc, unsigned, TPoint point)
{
    if (!pressed || isOutside || point == to)
        return;
    if (drawn)
        Draw(dc);
    to = point;
    drawn = true;
    Draw(dc);
}

void TLineTool::Outside(TDC &dc, bool outside)
{
    isOutside = outside;
    if (pressed && drawn)
        Draw(dc);
}

void TLineTool::LeftUp(TDC &dc, unsigned, TPoint)
{
    if (!pressed)
        return;
    pressed = false;
    if (!drawn || isOutside)
        return;
    Draw(dc);
    plan.lines.push_back({plan.axes.ToModel(from), plan.axes.ToModel(to)});
    AppDocument()->SetModified();
    AppDocument()->Obsolete(EDC_PAINT);
}

TPlanBlock::TPlanBlock() : lineTool(*this)
{
    axes.SetXRange(0, HALL_LENGTH);
    axes.SetYRange(0, HALL_WIDTH);
    axes.SetTitles("X [m]", "Y [m]");
    axes.SetXDigits(3, 0);
    axes.SetYDigits(3, 0);
    axes.SetFlags(EDC_AxXAXIS | EDC_AxYAXIS | EDC_AxGRID);
    axes.SetDivision(2, 2);
    axes.SetGridStyle(WIN_MIX_MASK);
    title.SetText("Fu\xDF"
                  "boden");
    title.SetFormat(EDC_TfUNDERLINE);
}

void TPlanBlock::Layout(TDC &dc, TEdcSize &trueSize, double scale)
{
    __enter
        TSize room = trueSize.ToPixels(dc, scale);
        TRect head = {0, 0, room.cx, room.cy};
        title.SetFont("Arial", EdcInchToPixel(14.0 / 72, scale, dc.DpiY()), 1);
        title.Layout(dc, head, EDC_BREAKNONE, EDC_HLEFT, EDC_VTOP); __test;
        axes.Layout(dc, {0, head.bottom, room.cx, room.cy}, scale, true); __test;
        trueSize.FromPixels(dc, {room.cx, axes.outer.bottom}, scale);
    __point
    __treat
}

void TPlanBlock::Paint(TDC &dc, const TRect &part)
{
    __enter
        title.Paint(dc);
        axes.Paint(dc, part); __test;
        TPoint a = axes.ToDevice({0, 0, 0}), b = axes.ToDevice({HALL_LENGTH, HALL_WIDTH, 0});
        dc.SetPen({});
        dc.SetBrush(NoBrush());
        dc.Rectangle({a.x, b.y, b.x + 1, a.y + 1});
        for (const Line &line : lines)
            dc.Line(axes.ToDevice(line.from), axes.ToDevice(line.to));
    __point
    __treat
}

TMapBlock::TMapBlock(const TEdcColorScale &aColors) : colors(aColors), picture(MAP_WIDTH, MAP_HEIGHT)
{
    Fill();
}

void TMapBlock::Fill()
{
    for (int y = 0; y < MAP_HEIGHT; ++y)
        for (int x = 0; x < MAP_WIDTH; ++x) {
            double wave = (std::sin(x * 0.2) * std::cos(y * 0.3) + 1) / 2; // 0 to 1
            int index = (static_cast<int>(wave * (MAP_COLORS - 0.001)) + turns) % MAP_COLORS;
            picture.bitmap.SetPixel(x, y, static_cast<uint8_t>(colors.Index(index)));
        }
}

void TMapBlock::Execute()
{
    ++turns;
    Fill();
    AppDocument()->Obsolete(EDC_PAINT);
}

void TMapBlock::Layout(TDC &dc, TEdcSize &trueSize, double scale)
{
    if (colors.palette)
        picture.bitmap.SetPalette(*colors.palette);
    TSize room = trueSize.ToPixels(dc, scale);
    picture.SetRect({0, 0, room.cx, std::min(room.cy, room.cx * MAP_HEIGHT / MAP_WIDTH)});
    trueSize.FromPixels(dc, {room.cx, picture.rect.Height()}, scale);
}

void TMapBlock::Paint(TDC &dc, const TRect &)
{
    if (!printed)
        picture.Paint(dc);
    dc.SetPen({});
    dc.SetBrush(NoBrush());
    dc.Rectangle(picture.rect);
}

void TMapBlock::Print(TDC &dc, const TRect &part)
{
    picture.Print(dc);
    printed = true;
    Paint(dc, part);
    printed = false;
}

TPageDoc::TPageDoc()
{
    fontTitle.Set("Arial", 16, EDC_TfBOLD | EDC_TfITALIC);
    fontHeading.Set("Courier New", 12, EDC_TfBOLD);
    fontBody.Set("Courier New", 12, 0);
    palette.SetColors(MAP_COLORS);
    for (int i = 0; i < MAP_COLORS; ++i)
        palette.Add(static_cast<uint8_t>(112 + 10 * i), static_cast<uint8_t>(15 * i), 0, &mapColors);
    AddPalette(&palette);
    ComposePalette();
}

TPageDoc::~TPageDoc()
{
    TPageDoc::ClearDocument();
}

void TPageDoc::ClearDocument()
{
    RemoveAllBlocks();
    plan = NULL;
    map = NULL;
}

void TPageDoc::SetModified()
{
    TEdcDocument::SetModified();
    remark = "ge\xE4ndert";
}

TEdcTextBlock *TPageDoc::AddText(const char *text, const TEdcFontRec &font, unsigned options, double top)
{
    TEdcTextBlock *blk = NULL;
    __enter
        blk = new TEdcTextBlock();
        blk->SetText(text); __test;
        blk->SetFontRec(&font);
        blk->SetSize(1.0, 0); // what follows a kept heading counts its wanted height
        blk->SetMargins(TEdcMargins(0, top, 0, 0, EDC_UPT));
        blk->SetOptions(options | EDC_BoROW);
        LinkBlock(blk, NULL, true); __test;
    __point
        delete blk;
        blk = NULL;
    __treat
    return blk;
}

void TPageDoc::Fill(int paragraphs)
{
    __enter
        SetPaper(TEdcSize(21.0, 29.7, EDC_UCM));
        SetMargins(TEdcMargins(1.0, 1.0, 1.0, 1.0, EDC_UCM));
        AddText("Entwurf der Strahlungsheizung", fontTitle, 0, 0); __test;
        for (int i = 1; i <= paragraphs; ++i) {
            AddText(EdcFormat(PAGEDOC_PARAGRAPH, i).c_str(), fontBody, 0, 12); __test;
        }
        AddText("Grundri\xDF", fontHeading, EDC_BoKEEP, 24); __test;
        plan = new TPlanBlock();
        plan->SetSize(TEdcSize(1.0, 0, EDC_UREL));
        plan->SetMargins(TEdcMargins(0, 12, 0, 0, EDC_UPT));
        plan->SetOptions(EDC_BoROW | EDC_BoSELECT);
        LinkBlock(plan, NULL, true); __test;
        AddText("Karte", fontHeading, EDC_BoKEEP | EDC_BoPAGE, 24); __test;
        map = new TMapBlock(mapColors);
        map->SetSize(TEdcSize(0.8, 0, EDC_UREL));
        map->SetMargins(TEdcMargins(0, 12, 0, 0, EDC_UPT));
        map->SetOptions(EDC_BoROW | EDC_BoSELECT | EDC_BoEXECUTE);
        LinkBlock(map, NULL, true); __test;
        Obsolete(EDC_UPDATE);
    __point
        ClearDocument();
    __treat
}

bool TPageDoc::NewDocument(bool create)
{
    if (create)
        Fill(8);
    return true;
}

bool TPageDoc::ReadFile(const char *file)
{
    bool read = false;
    CdeFILE data;
    char text[X_NAME] = "";
    __enter
        data.Open(file, "o"); __test;
        data.GetStr(text, X_NAME); __test;
        data.Close(); __test;
        Fill(8); __test;
        remark = text;
        read = true;
    __point
        data.Close();
    __treat
    return read;
}

void TPageDoc::WriteFile(const char *file)
{
    CdeFILE data;
    __enter
        data.OpenReplacing(file); __test;
        data.PutStr(remark.c_str()); __test;
        data.Close(); __test;
    __point
        data.Close();
    __treat
}

void TPageDoc::PaintEmpty(TDC &dc, const TRect &)
{
    dc.FillRect(GetClientRect(), SolidBrush({0, 0, 128}));
}
