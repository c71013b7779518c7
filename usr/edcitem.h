// Things that blocks show: marked-up text, axes in model units, pictures and logos. All are plain members of
// blocks.
#ifndef USR_EDCITEM_H
#define USR_EDCITEM_H

#include "lib/ag.h"
#include "win/gdi.h"
#include <cstdint>
#include <memory>

class TDC;
class TMetafile;

// Styles of text; the numbers are bits of `format`.
enum {
    EDC_TfSUB = 1,
    EDC_TfSUPER = 2,
    EDC_TfBOLD = 4,
    EDC_TfITALIC = 8,
    EDC_TfUNDERLINE = 16,
    EDC_TfLEFT = 32,
    EDC_TfRIGHT = 64,
    EDC_TfCENTER = 128,
};
enum { EDC_BREAKNONE = 1, EDC_BREAKLINES = 2, EDC_BREAKWIDTH = 3 };
enum { EDC_HLEFT = 1, EDC_HRIGHT = 2, EDC_VTOP = 3, EDC_VBOTTOM = 4, EDC_CENTER = 5 };

/// Font of a report's texts.
struct TEdcFontRec {
    enum { NAMEMAX = 32 };
    char name[NAMEMAX] = "Arial"; // terminator included
    int size = 10;                // points
    uint8_t charset = 1;          // 1: the system's
    int format = 0;               // EDC_Tf...

    void Set(const char *aName, int aSize, int aFormat);
};
/// What stands where nobody chose a font.
extern const TEdcFontRec edcDefaultFont;

/// One piece of one line, in one style.
struct TEdcTextFrag {
    int x = 0; // px within the text
    int y = 0;
    int width = 0;
    int style = 0;     // 0 normal, EDC_TfSUB, EDC_TfSUPER
    char *text = NULL; // the characters; not terminated
    int length = 0;
    TEdcTextFrag *next = NULL;
    bool completed = false; // `text` is a cleaned copy; until then there is none
};

/// Text with inline markup: _subscript_, ^superscript^, ~ a blank that is no place to break, ! before a mark
/// makes it literal, \n ends a line. Measured by single characters, broken and aligned for a device.
class TEdcText
{
public:
    TEdcText(const TEdcText &) = delete;
    TEdcText &operator=(const TEdcText &) = delete;
    TEdcText();
    ~TEdcText();

    void SetText(const char *s);                               // the caller's, must outlive the text
    void SetFont(const char *name, int size, uint8_t charset); // px; the name stays the caller's
    void SetFormat(int aFormat);
    void SetColor(TColor c);
    /// Parses, breaks and aligns the text and places it in `rect`, which becomes the measured rectangle.
    void Layout(TDC &dc, TRect &rect, int breakMode, int hAlign, int vAlign);
    void Paint(TDC &dc) const;
    /// Only the lines that meet `part` or stand next to it: a text may be far longer than the window.
    void Paint(TDC &dc, const TRect &part) const;
    void Clear();

    TEdcTextFrag *first = NULL;  // owned; NULL when not laid out
    const char *text = NULL;     // view
    const char *fontName = NULL; // view; NULL: the default font's
    int fontSize = 1;            // px
    uint8_t charset = 1;
    int format = 0;
    TColor color;
    int x = 0; // px, place of the whole text
    int y = 0;
    int width = 0;
    int height = 0;

private:
    struct Pool; // the copies of a layout, so that a split costs no copying
    std::unique_ptr<Pool> pool;
    int lineHeight = 0;

    void Parse(const char *s);
    void Break(TDC &dc, int breakMode, int maxWidth);
    void Align();
    void PaintLines(TDC &dc, int top, int bottom) const;
    const char *FaceName() const { return fontName != NULL ? fontName : edcDefaultFont.name; }
    TFont FragmentFont(int style) const;
    friend struct TEdcTextBreaker;
};

struct TEdcAxesLabel {
    enum { TEXTMAX = 32 };
    double value = 0; // model units
    char text[TEXTMAX] = "";
    int x = 0; // px
    int y = 0;
    TEdcAxesLabel *next = NULL;
};

enum { EDC_AxXAXIS = 1, EDC_AxYAXIS = 2, EDC_AxGRID = 4, EDC_AxMINORGRID = 8 };

/// Into (-pi, pi], rad. The noise of a sum of degrees does not turn pi into -pi.
double EdcWrapAngle(double angle);

/// A pair of scaled axes in model units with ticks and labels.
class TEdcAxes
{
public:
    TEdcAxes() = default;
    TEdcAxes(const TEdcAxes &) = delete;
    TEdcAxes &operator=(const TEdcAxes &) = delete;
    ~TEdcAxes();

    // Setting up.
    void SetFlags(unsigned f);              // raises layout where an axis comes or goes, else paint
    void SetXRange(double min, double max); // widened so that it holds 0
    void SetYRange(double min, double max);
    void SetFont(const char *name, int points, bool bold); // the name stays the caller's
    void SetTitles(const char *x, const char *y);          // likewise
    void SetXDigits(int digits, int exponent);
    void SetYDigits(int digits, int exponent);
    void SetMaxScale(double x, double y); // px per model unit at zoom 1 and 1 px/in; 0 for none
    void SetDivision(double x, double y);
    void SetMinorDivision(double x, double y);
    void SetSnap(double x, double y);
    void SetAngle(double base, double snap); // rad
    void SetColor(TColor c);
    void SetGridStyle(TMix mix);

    /// Fits the axes into `maxSize` px at (left, top). @return the outer rectangle they take
    TRect Layout(TDC &dc, const TRect &maxRect, double aZoom, bool keepRatio);
    void Paint(TDC &dc, const TRect &clip) const;

    // Conversions, once laid out.
    double ToModelX(int pixels) const; // a distance
    double ToModelY(int pixels) const; // y up, so the sign turns
    AgPOINT ToModel(TPoint p) const;
    TPoint ToDevice(const AgPOINT &p) const; // rounded half away from zero, limited to 2^28
    AgPOINT Snap(const AgPOINT &p) const;
    double SnapAngle(double a) const;
    double Angle(int dx, int dy) const;  // of a device vector, rad, (-pi, pi]
    double Length(int dx, int dy) const; // of a device vector, model units

    uint32_t flags = EDC_AxXAXIS | EDC_AxYAXIS;
    const char *fontName = NULL; // view; NULL: the default font
    int32_t fontSize = 0;        // points
    bool fontBold = true;
    TColor color;
    int32_t gridStyle = WIN_MIX_COPY;              // raster mix of the grid
    double xMin = 0, yMin = 0, xMax = 1, yMax = 1; // model units
    const char *xTitle = NULL;                     // views, may hold markup
    const char *yTitle = NULL;
    int32_t xDigits = 1, yDigits = 1;    // most significant digits of a tick label, 0 to 8
    int32_t xExp = 0, yExp = 0;          // decimal exponent that the labels are shifted by
    double xMaxScale = 0, yMaxScale = 0; // largest scale, in device units per model unit at zoom 1; 0: none
    double zoom = 1;
    double xStep = 0, yStep = 0;           // grid, model units
    double xMinorStep = 0, yMinorStep = 0; // finer grid
    double xSnap = 0, ySnap = 0;           // model units; 0: no snapping
    double xAngleBase = 0, angleSnap = 0;  // rad
    TRect outer;                           // px, all that the axes take
    TRect plot;                            // px, the range itself
    int32_t originX = 0, originY = 0;      // px, where the model's (0, 0) lies
    double xScale = 0, yScale = 0;         // px per model unit
    bool decorated = false;                // ticks and labels fit and are shown
    enum { TITLEMAX = 256 };
    char xText[TITLEMAX] = ""; // titles with their exponent note
    char yText[TITLEMAX] = "";
    TEdcText xLabel;
    TEdcText yLabel;
    TEdcAxesLabel *xTicks = NULL; // owned chains
    TEdcAxesLabel *yTicks = NULL;

private:
    friend struct TEdcAxesLayout;
};

/// A bitmap that a block computed, and where it stands.
class TEdcPicture
{
public:
    TEdcPicture(int width, int height); // throws std::bad_alloc
    void SetRect(const TRect &r) { rect = r; }
    void Paint(TDC &dc) const;
    /// On paper: in the print mode, below everything that is painted afterwards.
    void Print(TDC &dc) const;

    TBitmap bitmap;
    TRect rect; // px
    TMix printMix = WIN_MIX_COPY;
};

/// A vector image of a `.lgo` file, shared by name between all that show it.
class TEdcLogo
{
public:
    TEdcLogo() = default;
    TEdcLogo(const TEdcLogo &) = delete;
    TEdcLogo &operator=(const TEdcLogo &) = delete;
    ~TEdcLogo();

    void Open(const char *fname); // a name beside the program; loaded at the first Size or Paint
    void Close();
    void Size(TDC &dc, TSize aBox, double scale); // natural size, fitted where the box is smaller
    void Fit(TDC &dc, TSize aBox, bool keepRatio);
    void Place(int hPos, int vPos); // 1 start, 5 centre, 9 end of the box
    void Paint(TDC &dc) const;
    void MoveBox(TPoint corner) { box = corner; } // where the box lies

    struct Node;
    Node *node = NULL; // into the table, counted
    TPoint position;   // px
    TSize size;        // px

private:
    TPoint box;
    TSize boxSize;
    void Load() const;
};

enum { EDC_LOGO_TABMAX = 50 };
int EdcLogoNodesInUse(); // for tests and the closing check

/// The image of a logo file beside the program, checked. NULL and XFOPEN where it is missing or unfit.
std::unique_ptr<TMetafile> LoadLogo(const char *fname);
/// A picture as a logo file holds one: an enhanced, placeable or plain metafile, told by its bytes. NULL and
/// XFOPEN where it is missing or unfit.
std::unique_ptr<TMetafile> LoadLogoPicture(const char *mfpath);
/// Where LoadLogo looks: the program's folder by default; NULL brings that back.
void SetLogoDirectory(const char *directory);
/// Writes the logo file `lfpath` from the metafile `mfpath`. XFCREATE where that fails.
void MakeLogo(const char *lfpath, const char *mfpath);

#endif
