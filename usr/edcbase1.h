// The framework's lengths, the block, the zoom of a view, the palette registry and the printout. A report has a
// few hundred blocks; they are linked by pointers inside them, so that a chain or a group costs no allocation.
#ifndef USR_EDCBASE1_H
#define USR_EDCBASE1_H

#include "usr/edcsprit.h"
#include "win/dialog.h"
#include "win/gdi.h"
#include "win/printer.h"
#include <cstdint>
#include <string>
#include <vector>

class TCommandEnabler;
class TDC;
class TEdcDocument;

enum {
    EDC_UIN = 0,  // inches
    EDC_UCM = 1,  // centimetres
    EDC_UPT = 2,  // points, 1/72 inch
    EDC_UREL = 3, // fraction of the base's width or height
};

/// A width and a height in one unit; asked and set in inches. Sizes are never negative.
class TEdcSize
{
public:
    TEdcSize() = default; // 0 x 0 inches
    TEdcSize(double aWidth, double aHeight, int aUnit = EDC_UIN, const TEdcSize *aBase = NULL);

    double Width() const; // inches
    double Height() const;
    void SetWidth(double inches);
    void SetHeight(double inches);
    void Clamp(double maxWidth, double maxHeight); // inches; a negative limit is 0
    void ClampTo(const TEdcSize &other) { Clamp(other.Width(), other.Height()); }
    void FromPixels(const TDC &dc, TSize pixels, double scale);
    TSize ToPixels(const TDC &dc, double scale) const; // rounded half away from zero

    double width = 0; // in the unit
    double height = 0;
    int unit = EDC_UIN;
    const TEdcSize *base = NULL; // view; what fractions refer to
};

/// Four margins in one unit; asked in inches. Fractions: of the base's width at the sides, of its height above
/// and below.
class TEdcMargins
{
public:
    TEdcMargins() = default;
    TEdcMargins(double aLeft, double aTop, double aRight, double aBottom, int aUnit = EDC_UIN,
                const TEdcSize *aBase = NULL);

    double Left() const; // inches
    double Top() const;
    double Right() const;
    double Bottom() const;

    double left = 0; // in the unit
    double top = 0;
    double right = 0;
    double bottom = 0;
    int unit = EDC_UIN;
    const TEdcSize *base = NULL; // view
};

/// Pixels of a length: round(inches * scale * dpi), half away from zero.
int EdcInchToPixel(double inches, double scale, int dpi);
double EdcPixelToInch(int pixels, double scale, int dpi);

enum { EDC_BsPAGE = 1, EDC_BsLINKED = 2, EDC_BsBUSY = 4 };
enum { EDC_BoPAGE = 1, EDC_BoROW = 2, EDC_BoKEEP = 4, EDC_BoSELECT = 8, EDC_BoEXECUTE = 16 };
enum { EDC_PAINT = 1, EDC_LAYOUT = 2, EDC_UPDATE = 3, EDC_RECALC = 4 };

struct TEdcRect { // px from the origin of the laid-out document
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;

    TRect Rect() const { return {x, y, x + width, y + height}; }
};

/// One rectangle of content. The document's chain owns it once it is linked.
class TEdcBlock
{
public:
    TEdcBlock() = default;
    TEdcBlock(const TEdcBlock &) = delete;
    TEdcBlock &operator=(const TEdcBlock &) = delete;
    virtual ~TEdcBlock() = default;
    virtual void Execute() {}
    virtual void Open() {}
    virtual void Close() {}
    virtual void Update(bool partial);
    /// Measures for the device and writes the true size into `trueSize`, which holds what is offered.
    virtual void Layout(TDC &dc, TEdcSize &trueSize, double scale);
    /// Paints `part` (px, relative to the block). Base: a placeholder.
    virtual void Paint(TDC &dc, const TRect &part);
    virtual void Print(TDC &dc, const TRect &part) { Paint(dc, part); }
    virtual bool DoCommand(int id);
    virtual void EnableCommand(TCommandEnabler &ce);

    void SetOptions(unsigned o);
    void SetSize(const TEdcSize &s);       // keeps the block's own base
    void SetMargins(const TEdcMargins &m); // likewise
    /// Activate(false) on the former tool, Activate(true) on the new one. @return the former; after a failure
    /// the block has none
    TEdcMouseTool *SetMouseTool(TEdcMouseTool *tl);
    /// Appends this block to the group that `*first` stands for. A builder starts with NULL and keeps the
    /// pointer: it becomes the first block, then moves along to the last one as the group grows.
    void AddToGroup(TEdcBlock **first);

    uint32_t state = 0;     // EDC_Bs...
    TEdcBlock *prev = NULL; // views: neighbours in the chain, or in the group while not linked
    TEdcBlock *next = NULL;
    TEdcBlock *group = NULL; // view: first block of the group, NULL for a single block
    uint32_t options = 0;    // EDC_Bo...
    TEdcSize size;           // wanted; 0 in a dimension is automatic
    TEdcMargins margins;
    TEdcRect rect;              // where layout put it
    TEdcMouseTool *tool = NULL; // view; gets the mouse while the block is opened
};

/// Presets computed from the window, and a free percentage.
struct TEdcZoom {
    enum { MAX = 10 };
    int32_t percents[MAX] = {};
    int32_t labels[MAX] = {}; // string numbers, 0 for none
    int32_t count = 0;
    int32_t presetIndex = 0; // -1: the free percentage applies
    int32_t custom = 100;

    int Percent() const;
    double Scale() const { return Percent() * 0.01; }
    void SetCustom(int percent);
    void SetPreset(int index);
    void Clear() { count = 0; }
    void Add(int percent, int label);
    int PresetPercent(int index) const;
    /// The label cut to `maxlen` bytes, at most 256, in a static buffer.
    const char *PresetLabel(int index, int maxlen) const;
    /// Percentage at which `size` fits into w x h px: mode 1 the whole, 2 the larger factor, 3 the width, else
    /// 100.
    int Fit(const TDC &dc, const TEdcSize &size, int w, int h, int mode) const;
    /// Keeps presets and free percentage where the scaled size has at most 8000 px on its long side and at
    /// least 100 on its short one.
    void Limit(const TDC &dc, const TEdcSize &size);
};

/// What the zoom dialog shows and what it makes of an answer.
struct TEdcZoomChoice {
    std::vector<std::string> entries; // one a preset, "ins Fenster (87%)"
    int selected = -1;                // entry, or -1 with the free percentage in `text`
    std::string text;

    void Load(const TEdcZoom &zoom);
    void Store(TEdcZoom &zoom) const; // an entry, or the leading number of the text
};

/// Asks for the zoom of a view: one of its presets, or a percentage that is typed.
class TEdcZoomDialog : public TDialog
{
public:
    /// @param choice  a view; has the answer where the dialog ended with WIN_ID_OK, and stays as it is else
    TEdcZoomDialog(TWindow *aParent, TEdcZoomChoice &choice);
};

/// A run of colours in the composed palette. Composition fills it in.
class TEdcColorScale
{
public:
    int first = 0; // index into the composed palette
    int size = 0;
    const TPalette *palette = NULL; // view

    int Size() const { return size; }
    TColor Color(int index) const; // 0 to size - 1
    int Index(int index) const { return first + index; }
};

struct TEdcColorDef {
    uint8_t red;
    uint8_t green;
    uint8_t blue;
    uint8_t flags;
    TEdcColorScale *scale; // view; what the colour belongs to, may be NULL
};

/// Colours that one part of the application registers with the document.
class TEdcPalette
{
public:
    TEdcPalette() = default;
    TEdcPalette(const TEdcPalette &) = delete;
    TEdcPalette &operator=(const TEdcPalette &) = delete;
    ~TEdcPalette();
    void SetColors(int n); // room for n
    void Add(uint8_t red, uint8_t green, uint8_t blue, TEdcColorScale *scale,
             uint8_t flags = 0); // more than that: ignored
    void Select(TDC &dc) const;  // into devices that have a palette

    TEdcColorDef *defs = NULL; // owned
    int32_t count = 0;
    int32_t colors = 0;            // capacity
    TEdcPalette *next = NULL;      // view: chain of the document
    const TPalette *compal = NULL; // view: the composed palette
};

/// Carries the document's pages to the printer, laid out anew at 100 % of the printer's resolution.
class TEdcPrintout : public TPrintout
{
public:
    explicit TEdcPrintout(TEdcDocument &document);
    void GetDialogInfo(int &minPage, int &maxPage, int &selFrom, int &selTo) override;
    void BeginPrinting() override;
    bool HasPage(int page) override;
    void PrintPage(int page, const TRect &rect, unsigned flags) override;
    void EndPrinting() override;

private:
    void Lock();

    TEdcDocument &doc;
    bool locked = false; // by this printout
};

#endif
