// The drawn blocks of the report: the floor plan with its irradiation map, the plans of the walls and of the
// ceiling, and the maps of the hygiene evaluation. The floor plan runs the evaluation; it keeps raster and
// classes as plain pixels (usr/zulpass.h), and pictures are painted from them. All maps have its raster: one
// pixel a point.
#ifndef USR_ZULROOM_H
#define USR_ZULROOM_H

#include "usr/edcbase1.h"
#include "usr/edcitem.h"
#include "usr/edcsprit.h"
#include "usr/zulairht.h"
#include "usr/zuldlg.h"
#include "usr/zulemitt.h"
#include "usr/zulhole.h"
#include "usr/zulhygmaps.h"
#include "usr/zultools.h"
#include "usr/zulzone.h"

#include <memory>
#include <vector>

/// The colours of all plans and maps, registered with the document.
class TZulRoomPalette : public TEdcPalette
{
public:
    TZulRoomPalette();

    TEdcColorScale hallColors;      // background of the hall's plan
    TEdcColorScale mapColors;       // irradiation map, fine scale
    TEdcColorScale mapColorsCoarse; // irradiation map, coarse scale
    TEdcColorScale criterionColors; // criterion met, tolerance band, neither
    TEdcColorScale greyColors;      // black-and-white output
};

/// A picture of colour indices as a bitmap in the colours of the composed palette.
std::unique_ptr<TEdcPicture> ZulMakePicture(const ZulPixels &pixels, const TEdcColorScale &colors);

/// The head of a drawn block: the logo in the right upper corner, the title left of it.
class TZulPlanHead
{
public:
    explicit TZulPlanHead(const char *aTitle); // copied, at most 255 characters
    void SetTitle(const char *str);            // likewise
    const char *Title() const { return title; }
    /// Lays out the head in a block `width` px wide. @return its height, px: the taller of the two
    int Layout(TDC &dc, int width, double scale);
    void Paint(TDC &dc) const;

private:
    enum { TEXTMAX = 256 };
    char title[TEXTMAX];
    TEdcText titleText;
    TEdcLogo logo;
};

/// Titles, steps and angles that the axes of all plans share.
void ZulSetUpAxes(TEdcAxes &axes);
/// The range of a plan's axes. A plan without extent, as a damaged hall may have, counts as 1 m.
void ZulSetRange(TEdcAxes &axes, const EmBOX &bounds);
/// A frame of one pixel round the model rectangle.
void ZulFrame(TDC &dc, const TEdcAxes &axes, const AgPOINT &min, const AgPOINT &max);
/// Pixels of a font of so many points on the device at the view's scale, at least 1.
int ZulFontPixels(const TDC &dc, double points, double scale);

/// The small plan that names the walls: a letter at each side of a solid rectangle.
class TZulWallLetters
{
public:
    void SetFont(const char *name, int size); // px; 0 counts as 1
    void Layout(TDC &dc, const TRect &aRect);
    void Paint(TDC &dc) const;
    const TRect &Rect() const { return rect; }

private:
    enum { LETTERS = 4, NAMEMAX = 80 };
    TRect rect;             // px, what it takes
    TRect body;             // px, the hall
    TPoint points[LETTERS]; // px, where the letters of string 4237 begin: bottom, right, top, left
    char font[NAMEMAX] = "Arial";
    int fontSize = 10; // px
};

/// The colour table of the irradiation map: rows of a colour and two texts, a line above and one below. A row
/// without a colour is a head: its texts stand in the middle of their columns, those of the others below it,
/// flush right.
class TColorScale
{
public:
    enum { MAX = 20, TEXTMAX = 256 };

    void Add(bool hasColor, TColor color, const char *str1, const char *str2); // more than MAX: ignored
    void SetLines(const char *above, const char *below);
    void SetFont(const char *name, int size); // px; 0 counts as 1
    void SetPitch(double px); // from row to row; smaller fonts where it needs them; 0: as the font is
    /// Places the table in `rect`, from its bottom up. @return its height, px
    int Layout(TDC &dc, const TRect &rect);
    void Paint(TDC &dc) const;
    int Count() const { return count; }

private:
    enum { COLUMNS = 2 };
    struct ROW {
        bool hasColor = false;
        TColor color;
        char texts[COLUMNS][TEXTMAX] = {};
        TRect rects[COLUMNS]; // px
        TRect swatch;
    };
    struct PIECE {
        int start = 0; // in the text
        int length = 0;
        TPoint at; // px
    };
    struct LINE {
        char text[TEXTMAX] = "";
        std::vector<PIECE> pieces; // one below the other, where the text is longer than the table's place
    };
    static void Break(TDC &dc, LINE &line, int width);
    static void PaintLine(TDC &dc, const LINE &line);
    int ChooseFont(TDC &dc);
    int PlaceColumn(TDC &dc, int column, int left);
    int PlaceDown(const TRect &rect, double step, int text);

    int32_t count = 0;
    ROW rows[MAX];
    LINE line1, line2;
    char font[TEXTMAX] = "Arial";
    int fontSize = 1; // px, wanted
    int usedSize = 1; // px, as the pitch allows
    double pitch = 0; // px, 0 for that of the font
};

/// The table of a run that has a map. NULL where there is none.
std::unique_ptr<TColorScale> ZulMakeColorScale(const ZulScaleTexts &texts, const TEdcColorScale &colors);

/// One swatch of a legend with its label.
struct TZulLegendBox {
    enum { TEXTMAX = 256 };
    char text[TEXTMAX] = "";
    TColor color;
    TEdcText label;
    TRect box; // px, the swatch
};

/// Swatches under a title: in a column with the labels right of them, or in a row with the labels below. Labels
/// that are too long for their place take several lines.
class TZulLegend
{
public:
    enum { MAX = 20, TEXTMAX = 256 };
    enum { ROW = 1, COLUMN = 2 };

    void SetTitle(const char *str);
    void SetFont(const char *name, int size);    // px; 0 counts as 1
    void Add(TColor color, const char *str);     // more than MAX: ignored
    void Layout(TDC &dc, TRect &rect, int mode); // `rect`: what is offered, then what it takes, from its top
    void MoveBy(int dx, int dy);                 // px
    void Paint(TDC &dc) const;
    int Count() const { return count; }
    const TZulLegendBox &Box(int i) const { return boxes[i]; }
    const TEdcText &Title() const { return titleText; }
    TRect Rect() const { return {topLeft.x, topLeft.y, bottomRight.x, bottomRight.y}; }

private:
    struct MEASURES;
    void LayoutText(TDC &dc, TEdcText &text, TRect &rect, int hAlign) const;
    void LayoutRow(TDC &dc, const TRect &rect, const MEASURES &measures);
    void LayoutColumn(TDC &dc, const TRect &rect, const MEASURES &measures);

    int32_t count = 0;
    TZulLegendBox boxes[MAX];
    char title[TEXTMAX] = "";
    char font[TEXTMAX] = "Arial";
    int fontSize = 10; // px
    TEdcText titleText;
    TPoint topLeft, bottomRight; // px
};

/// A drawn block of the report: a plan with layers above it. On paper the picture comes first, for what it
/// covers stays covered there, and the layers show as nobody's choice.
class TZulDrawnBlock : public TEdcBlock
{
public:
    explicit TZulDrawnBlock(const char *aTitle);
    void Paint(TDC &dc, const TRect &part) override;
    void Print(TDC &dc, const TRect &part) override;

    const TEdcPicture *Picture() const { return picture.get(); }
    TEdcSpriteManager &Sprites() { return sprites; } // for tests and whoever drives the plan
    TEdcAxes &Axes() { return axes; }

protected:
    /// All but the layers.
    virtual void PaintPlan(TDC &dc, const TRect &part) = 0;
    virtual bool ShowsMap() const { return true; }

    TEdcAxes axes;
    TEdcSpriteManager sprites;
    std::unique_ptr<TEdcPicture> picture; // NULL without a map
    TZulPlanHead head;
};

/// A drawn block that opens for editing, with the tools of a plan.
class TZulPlanBlock : public TZulDrawnBlock
{
public:
    using TZulDrawnBlock::TZulDrawnBlock;
    void Open() override;
    void Close() override;
    bool DoCommand(int id) override;
    void EnableCommand(TCommandEnabler &ce) override;

protected:
    TZulPlanTools tools;
};

/// The floor plan. Its Update is the evaluation.
class TZulRoomBlock : public TZulPlanBlock
{
public:
    TZulRoomBlock(EmROOM *aRoom, TZulMapInfo *anInfo, TZulRoomPalette *aPalette, const char *aTitle);
    ~TZulRoomBlock() override;
    void Update(bool partial) override;
    void Layout(TDC &dc, TEdcSize &trueSize, double viewScale) override;

    EmROOM *Room() const { return room; }
    TZulRoomPalette *Palette() const { return palette; }
    const TZulMapInfo *Info() const { return info; }
    bool IsValid() const { return valid; } // an evaluation has run in the last update
    const ZulPassMap &Map() const { return map; }
    const TColorScale *Scale() const { return scale.get(); }
    TZulUpdateData params;

    /// Asks for the parameters of a run, true where it is to be made. NULL: the dialog asks; a program without
    /// a window puts its own in.
    static bool (*askParams)(TZulUpdateData &params);

private:
    bool AsksForRun();
    void Evaluate();
    void DropMap();
    bool ShowsMap() const override;
    int LayoutFoot(TDC &dc, const TRect &foot, double viewScale);
    void PaintPlan(TDC &dc, const TRect &part) override;

    void AddLayers();

    EmROOM *room; // view
    TZulEmitterLayer emittLayer;
    TZulAirHeaterLayer airhtLayer; // shown and printed, never the active one
    TZulHoleLayer holeLayer;       // of the floor
    TZulZoneLayer zoneLayer;
    bool valid = false;
    ZulPassMap map; // what the last run left
    std::unique_ptr<TColorScale> scale;
    TZulWallLetters letters;
    TZulRoomPalette *palette; // view
    TZulMapInfo *info;        // view
};

/// The plan of a wall or of the ceiling.
class TZulWallBlock : public TZulPlanBlock
{
public:
    TZulWallBlock(TZulRoomBlock *rm, EmSURFACE *surf, const char *aTitle);
    void Update(bool partial) override;
    void Layout(TDC &dc, TEdcSize &trueSize, double scale) override;
    virtual EmSURFACE *Surface() const { return surface; }
    TZulRoomBlock *RoomBlock() const { return roomBlk; }

private:
    void PaintPlan(TDC &dc, const TRect &part) override;

    TZulHoleLayer holeLayer;
    TZulRoomBlock *roomBlk; // view
    EmSURFACE *surface;     // view
};

/// A map of the hygiene evaluation: head, picture over the hall's rectangle, axes, frame and the zones above
/// them. Its legends lie below the plan.
class TZulMapBlock : public TZulDrawnBlock
{
public:
    TZulMapBlock(EmROOM &room, const char *aTitle);

protected:
    /// Head and plan in the upper left corner of `space` px. @return how far down they reach, px
    int LayoutPlan(TDC &dc, TSize space, double scale);
    void PaintPlan(TDC &dc, const TRect &part) override;
    virtual void PaintLegends(TDC &dc) = 0;
    TRect HallRect() const; // px, the hall as the axes have it

private:
    TZulZoneLayer zoneLayer;
    AgPOINT min, max; // m, corners of the hall
};

/// Where all criteria are met, and on what share of the plan.
class TZulSummaryMap : public TZulMapBlock
{
public:
    explicit TZulSummaryMap(TZulRoomBlock *aRoomBlk);
    void Update(bool partial) override;
    void Layout(TDC &dc, TEdcSize &trueSize, double scale) override;

    TZulRoomBlock *RoomBlock() const { return roomBlk; }
    const TZulLegend *Legend() const { return legend.get(); } // NULL until laid out, and without a picture
    int Pixels() const { return pixels; }
    int Passed() const { return passed; }
    /// All three criteria on the raster of the last run, judged together when they are first asked for.
    const ZulHygieneMaps &Judged();
    /// A criterion fails at a point: it is no longer counted, once, and shows as failed.
    void Fail(int column, int row);

private:
    void FillPicture();
    void FillLegend(int fontSize);
    void PaintLegends(TDC &dc) override;

    TZulRoomBlock *roomBlk; // view
    std::unique_ptr<TZulLegend> legend;
    int32_t pixels = 0; // raster points in all
    int32_t passed = 0; // points where no criterion failed
    ZulHygieneMaps judged;
    bool isJudged = false;
};

/// A map of one criterion: whoever derives from it states a band and gives a value for each point of the plan.
class TZulCriterionMap : public TZulMapBlock
{
public:
    enum { FORMATMAX = 32, TEXTMAX = 256 };

    explicit TZulCriterionMap(TZulSummaryMap *aSummary);
    void Update(bool partial) override;
    void Layout(TDC &dc, TEdcSize &trueSize, double scale) override;
    virtual void Prepare() {}
    virtual double Value(AgPOINT) { return 0.0; }
    virtual void Finish() {}
    /// The class of each point. Base: judges Value() point by point; a class whose criterion is judged faster
    /// elsewhere, with the same result, takes it from there.
    virtual void Classify(const EmRASTER &raster, ZulPixels &classes);

    void SetTitle(const char *str);
    void SetLegendTitle(const char *str);
    /// The limits in either order. A limit of the lowest or highest double is none.
    void SetBand(double aMin, double aMax, double aTol, const char *frm);
    const EmCRITERION &Band() const { return band; }
    const TZulLegend *LegendA() const { return legendA.get(); } // NULL until laid out, and without a picture
    const TZulLegend *LegendB() const { return legendB.get(); }

protected:
    TZulSummaryMap *summary; // view

private:
    void Judge();
    void FillLegends(int fontSize);
    void AddLimit(int color, double limit);
    int LayoutLegends(TDC &dc, TSize space, double scale);
    void PaintLegends(TDC &dc) override;

    std::unique_ptr<TZulLegend> legendA, legendB; // the classes; the band's limits
    EmCRITERION band;                             // min, max, tol
    char format[FORMATMAX] = "%lg";
    char legendTitle[TEXTMAX] = "";
};

/// Operative temperature at the head.
class TZulHeadTempMap : public TZulCriterionMap
{
public:
    explicit TZulHeadTempMap(TZulSummaryMap *aSummary);
    void Prepare() override;
    double Value(AgPOINT p) override;
    void Classify(const EmRASTER &raster, ZulPixels &classes) override;

private:
    double head = 0;      // m above the floor
    double airAtHead = 0; // C
    EmROOM *room = NULL;  // view
};

/// Operative temperature at the head less that at the ankle.
class TZulDiffTempMap : public TZulCriterionMap
{
public:
    explicit TZulDiffTempMap(TZulSummaryMap *aSummary);
    void Prepare() override;
    double Value(AgPOINT p) override;
    void Classify(const EmRASTER &raster, ZulPixels &classes) override;

private:
    double head = 0;       // m above the floor
    double airAtHead = 0;  // C
    double airAtAnkle = 0; // C
    EmROOM *room = NULL;   // view
};

/// Irradiation of the head.
class TZulHeadInteMap : public TZulCriterionMap
{
public:
    explicit TZulHeadInteMap(TZulSummaryMap *aSummary);
    void Prepare() override;
    double Value(AgPOINT p) override;
    void Classify(const EmRASTER &raster, ZulPixels &classes) override;

private:
    double head = 0;     // m above the floor
    EmROOM *room = NULL; // view
};

#endif
