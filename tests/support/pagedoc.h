// A document of the framework for tests, benchmarks and the program `pages`: texts, a plan on axes with a tool
// that draws lines, and a picture that changes its colours when it is executed. New ones fill three A4 pages.
#ifndef TESTS_SUPPORT_PAGEDOC_H
#define TESTS_SUPPORT_PAGEDOC_H

#include "usr/edcbase2.h"
#include "usr/edcblks.h"
#include "usr/edcitem.h"
#include "usr/edcsprit.h"

#include <string>
#include <vector>

/// A paragraph of some lines with marks; the number of the paragraph goes into it.
#define PAGEDOC_PARAGRAPH                                                                                      \
    "Absatz %d. Der W\xE4rme"                                                                                  \
    "durchgang der Wand betr\xE4gt 0.8~W/m^2^K, die Strahlungsintensit\xE4t im "                               \
    "Arbeitsbereich soll 200~W/m^2^ nicht \xFC"                                                                \
    "berschreiten. Bei CO_2_-freiem Betrieb und einer "                                                        \
    "Lufttemperatur von 15~^o^C stellt sich in Kopfh\xF6he die operative Temperatur t_o_ ein."

/// Draws a line from press to release, exclusive-or while the mouse moves; the plan keeps it in metres.
class TLineTool : public TEdcMouseTool
{
public:
    explicit TLineTool(class TPlanBlock &aPlan) : plan(aPlan) {}
    void LeftDown(TDC &dc, unsigned keys, TPoint point) override;
    void LeftUp(TDC &dc, unsigned keys, TPoint point) override;
    void MouseMove(TDC &dc, unsigned keys, TPoint point) override;
    void Outside(TDC &dc, bool outside) override;

private:
    void Draw(TDC &dc) const;
    TPlanBlock &plan;
    TPoint from, to; // px, relative to the block
    bool pressed = false;
    bool drawn = false;
    bool isOutside = false;
};

/// A plan of 60 x 24 m with grid, titles and the lines that were drawn on it.
class TPlanBlock : public TEdcBlock
{
public:
    TPlanBlock();
    void Layout(TDC &dc, TEdcSize &trueSize, double scale) override;
    void Paint(TDC &dc, const TRect &part) override;
    void Open() override { SetMouseTool(&lineTool); }
    void Close() override { SetMouseTool(NULL); }

    struct Line {
        AgPOINT from, to; // m
    };
    TEdcAxes axes;
    std::vector<Line> lines;

private:
    TEdcText title;
    TLineTool lineTool;
};

/// A map of 60 x 24 pixels in twelve colours of the document's palette.
class TMapBlock : public TEdcBlock
{
public:
    explicit TMapBlock(const TEdcColorScale &aColors);
    void Layout(TDC &dc, TEdcSize &trueSize, double scale) override;
    void Paint(TDC &dc, const TRect &part) override;
    void Print(TDC &dc, const TRect &part) override;
    void Execute() override; // turns the colours round by one

    int turns = 0;

private:
    void Fill();
    const TEdcColorScale &colors;
    TEdcPicture picture;
    bool printed = false;
};

class TPageDoc : public TEdcDocument
{
public:
    TPageDoc();
    ~TPageDoc() override;

    bool NewDocument(bool create) override;
    bool ReadFile(const char *file) override;
    void WriteFile(const char *file) override;
    void ClearDocument() override;
    const char *FileType() override { return "SEI Seitenprobe"; }
    void PaintEmpty(TDC &dc, const TRect &rect) override;
    void SetModified() override;

    /// A new document without a question, for tests. Paragraphs are numbered texts of some lines each.
    void Fill(int paragraphs);

    TPlanBlock *plan = NULL; // views
    TMapBlock *map = NULL;
    std::string remark; // the one thing that its file holds

private:
    TEdcTextBlock *AddText(const char *text, const TEdcFontRec &font, unsigned options, double top);
    TEdcFontRec fontTitle, fontHeading, fontBody;
    TEdcColorScale mapColors;
    TEdcPalette palette;
};

#endif
