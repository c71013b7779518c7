#include "support/plandoc.h"
#include "usr/edcapp.h"
#include "win/dc.h"

#include <algorithm>

#include "lib/xon.h"

namespace
{
constexpr double HALL_LENGTH = 60.0; // m
constexpr double HALL_WIDTH = 24.0;  // m
constexpr double GRID = 0.5;         // m
} // namespace

TPlanRect::TPlanRect(const AgPOINT &middle, double width, double height, double turn) : TEdcDrawRect(PLAN_RECT)
{
    centre = middle;
    size = AgVECTOR(width, height);
    angle = turn;
}

void TPlanRect::Store()
{
    AppDocument()->SetModified();
}

void TPlanLine::Store()
{
    AppDocument()->SetModified();
}

TEdcDrawSprite *TPlanLayer::CreateSprite(const TEdcDrawCreation &creation)
{
    TEdcDrawSprite *made = NULL;
    __enter
        bool may = CanCreate(creation); __test;
        if (may && creation.type == EDC_TlSTOCK)
            made = new TPlanRect(AgE0, stock.width, stock.height);
        else if (may && creation.type == EDC_TlRECT)
            made = new TPlanRect(creation);
        else if (may)
            made = new TPlanLine(creation);
    __point
    __treat
    return made;
}

void *TPlanLayer::QueryCreation(int, bool)
{
    ++asked;
    return hasStock ? &stock : NULL;
}

TDrawBlock::TDrawBlock()
    : rects(PLAN_RECTS, EDC_LoACTIVABLE | EDC_LoVISIBLE | EDC_LoPRINTED, &axes),
      lines(PLAN_LINES, EDC_LoACTIVABLE | EDC_LoVISIBLE | EDC_LoPRINTED, &axes)
{
    axes.SetXRange(0, HALL_LENGTH);
    axes.SetYRange(0, HALL_WIDTH);
    axes.SetTitles("X [m]", "Y [m]");
    axes.SetXDigits(3, 0);
    axes.SetYDigits(3, 0);
    axes.SetSnap(GRID, GRID);
    axes.SetAngle(0, AgPI / 36);
    manager.AddLayer(&rects);
    manager.AddLayer(&lines);
    manager.AddTool(&selector);
    manager.AddTool(&aligner);
    manager.AddTool(&stockCreator);
    manager.AddTool(&rectCreator);
    manager.AddTool(&lineCreator);
    for (TPlanLayer *layer : {&rects, &lines}) {
        manager.Permit(layer, &selector);
        manager.Permit(layer, &aligner);
    }
    manager.Permit(&rects, &stockCreator);
    manager.Permit(&rects, &rectCreator);
    manager.Permit(&lines, &lineCreator);
    SetSize(TEdcSize(1.0, 0, EDC_UREL));
    SetOptions(EDC_BoROW | EDC_BoSELECT);
}

void TDrawBlock::Update(bool)
{
    manager.Reload(NULL);
}

/// The range holds the hall and all that lies beyond it.
void TDrawBlock::GrowRange(TPlanLayer &layer)
{
    __enter
        for (TEdcSprite *spr = layer.LnkFirst(); spr; spr = spr->lnkNext) {
            auto &draw = static_cast<TEdcDrawSprite &>(*spr);
            TEdcDrawDesc desc;
            draw.Recompute(); __test;
            draw.Describe(desc, 0); __test;
            Complete(desc);
            axes.xMin = std::min(axes.xMin, desc.leftMid.x);
            axes.xMax = std::max(axes.xMax, desc.rightMid.x);
            axes.yMin = std::min(axes.yMin, desc.bottomMid.y);
            axes.yMax = std::max(axes.yMax, desc.topMid.y);
        }
    __point
    __treat
}

void TDrawBlock::Layout(TDC &dc, TEdcSize &trueSize, double scale)
{
    __enter
        axes.xMin = axes.yMin = 0;
        axes.xMax = HALL_LENGTH;
        axes.yMax = HALL_WIDTH;
        GrowRange(rects); __test;
        GrowRange(lines); __test;
        TSize room = trueSize.ToPixels(dc, scale);
        axes.Layout(dc, {0, 0, room.cx, room.cy}, scale, true); __test;
        trueSize.FromPixels(dc, {room.cx, axes.outer.bottom}, scale);
        manager.Layout(dc); __test;
    __point
    __treat
}

void TDrawBlock::Paint(TDC &dc, const TRect &part)
{
    __enter
        axes.Paint(dc, part); __test;
        manager.Paint(dc, part); __test;
    __point
    __treat
}

void TDrawBlock::Print(TDC &dc, const TRect &part)
{
    __enter
        axes.Paint(dc, part); __test;
        manager.PaintPlain(dc, part); __test;
    __point
    __treat
}

TPlanDoc::~TPlanDoc()
{
    TPlanDoc::ClearDocument();
}

bool TPlanDoc::NewDocument(bool create)
{
    __enter
        if (create) {
            SetPaper(TEdcSize(21.0, 29.7, EDC_UCM));
            SetMargins(TEdcMargins(1.0, 1.0, 1.0, 1.0, EDC_UCM));
            plan = new TDrawBlock;
            LinkBlock(plan, NULL, true); __test;
            Obsolete(EDC_UPDATE);
        }
    __point
    __treat
    return true;
}

void TPlanDoc::ClearDocument()
{
    TDrawBlock *gone = plan;
    plan = NULL;
    if (gone)
        RemoveBlock(gone);
}

void TPlanDoc::SetModified()
{
    ++changes;
    TEdcDocument::SetModified();
}

void TPlanDoc::Start()
{
    enum { COMMAND_NEW = 20003 };
    EvCommand(COMMAND_NEW);
    OpenBlock(plan);
    Refresh(0);
}

TPoint TPlanDoc::At(double x, double y) const
{
    TPoint corner = {plan->rect.x, plan->rect.y};
    return ToWindow(corner + plan->At(x, y));
}
