// A document with a plan on axes in metres for tests, benchmarks and the program `plans`: one block with a
// layer of rectangles and a layer of lines, and every tool there is. What is drawn keeps itself; there is no
// model behind it but a count of changes.
#ifndef TESTS_SUPPORT_PLANDOC_H
#define TESTS_SUPPORT_PLANDOC_H

#include "usr/edcbase2.h"
#include "usr/edcdraw.h"

#include <string>

enum { PLAN_RECT = 7001, PLAN_LINE = 7002 };   // kinds of sprites
enum { PLAN_RECTS = 5001, PLAN_LINES = 2501 }; // layers, with commands that the menus and the bar know
enum { PLAN_LINETOOL = 1525 };                 // the creator of lines

class TPlanRect : public TEdcDrawRect
{
public:
    TPlanRect(const AgPOINT &middle, double width, double height, double turn = 0); // m, rad
    TPlanRect(const TEdcDrawCreation &creation) : TEdcDrawRect(PLAN_RECT, creation) {}
    TPlanRect(const TPlanRect &) = default;
    void Store() override;
    TEdcDrawRect *Clone() override { return new TPlanRect(*this); }
    void SetKind(uint16_t k) { kind = k; }
    const AgPOINT &Corner(int i) const { return corners[i]; }
};

class TPlanLine : public TEdcDrawLine
{
public:
    TPlanLine(const AgPOINT &from, const AgPOINT &to) : TEdcDrawLine(PLAN_LINE, from, to) {}
    TPlanLine(const TEdcDrawCreation &creation) : TEdcDrawLine(PLAN_LINE, creation) {}
    TPlanLine(const TPlanLine &) = default;
    void Store() override;
    TEdcDrawLine *Clone() override { return new TPlanLine(*this); }
    const AgPOINT &End(int i) const { return ends[i]; }
};

/// What new rectangles from stock are like.
struct PlanStock {
    double width = 4; // m
    double height = 2;
};

class TPlanLayer : public TEdcDrawLayer
{
public:
    using TEdcDrawLayer::TEdcDrawLayer;
    TEdcDrawSprite *CreateSprite(const TEdcDrawCreation &creation) override;
    void *QueryCreation(int toolId, bool first) override;
    void Open() override { ++opened; }

    PlanStock stock;
    bool hasStock = true; // else whoever is asked for parameters has cancelled
    int asked = 0;        // for parameters
    int opened = 0;
};

class TDrawBlock : public TEdcBlock
{
public:
    TDrawBlock();
    void Open() override { manager.Resume(true); }
    void Close() override { manager.Suspend(false); }
    void Update(bool partial) override;
    void Layout(TDC &dc, TEdcSize &trueSize, double scale) override;
    void Paint(TDC &dc, const TRect &part) override;
    void Print(TDC &dc, const TRect &part) override;
    bool DoCommand(int id) override { return manager.Command(id); }
    void EnableCommand(TCommandEnabler &ce) override { manager.CommandEnable(ce); }
    TPoint At(double x, double y) const { return axes.ToDevice(AgPOINT(x, y)); } // px of the block

    TEdcAxes axes;
    TPlanLayer rects;
    TPlanLayer lines;
    TEdcDrawSelector selector{EDC_TlSELECT, 21690, 21691};
    TEdcDrawAligner aligner{EDC_TlALIGN, 21692, EDC_TlSELECT};
    TEdcDrawStockCreator stockCreator{EDC_TlSTOCK, 21693, 0};
    TEdcDrawLineCreator lineCreator{PLAN_LINETOOL, 21694, 0, 0};
    TEdcDrawRectCreator rectCreator{EDC_TlRECT, 21695, 0, 0};
    TEdcSpriteManager manager{this};

private:
    void GrowRange(TPlanLayer &layer);
};

class TPlanDoc : public TEdcDocument
{
public:
    TPlanDoc() = default;
    ~TPlanDoc() override;
    bool NewDocument(bool create) override;
    void ClearDocument() override;
    const char *FileType() override { return "PLN Planprobe"; }
    void SetModified() override;

    /// A new document with its plan opened, without a question. The window must be created.
    void Start();
    /// Window pixels of a place on the opened plan.
    TPoint At(double x, double y) const;

    TDrawBlock *plan = NULL; // view
    int changes = 0;         // SetModified() calls
};

#endif
