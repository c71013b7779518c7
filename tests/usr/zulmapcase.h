// A hall with its floor plan and the four maps of the hygiene evaluation, as the report holds them, and a
// device context that keeps places. Nothing of it is linked into a document: the test calls the blocks itself.
#ifndef TESTS_USR_ZULMAPCASE_H
#define TESTS_USR_ZULMAPCASE_H

#include "lib/disk.h"
#include "lib/platform.h"
#include "support/fault.h"
#include "support/fieldhall.h"
#include "support/recorddc.h"
#include "support/testapp.h"
#include "usr/edcapp.h"
#include "usr/edcbase2.h"
#include "usr/edcutils.h"
#include "usr/zulroom.h"

#include <string>
#include <vector>

/// Keeps what is drawn as rectangles on the surface.
class TPlaceDC : public TRecordDC
{
public:
    using TRecordDC::TRecordDC;

    struct Cell {
        TRect rect;
        std::string text; // Windows-1252
    };
    std::vector<Cell> cells;     // texts
    std::vector<TRect> rects;    // rectangles
    std::vector<TRect> pictures; // bitmaps
    std::vector<TRect> strokes;  // shapes of logos

    void TextOut(int x, int y, const char *text, int length) override
    {
        int height = FontMetrics().height;
        int top = State().align == WIN_TEXT_BOTTOM ? y - height : y;
        cells.push_back({ToSurface(TRect{x, top, x + TextWidth(text, length), top + height}),
                         std::string(text, static_cast<size_t>(length))});
        TRecordDC::TextOut(x, y, text, length);
    }
    void Rectangle(const TRect &rect) override
    {
        rects.push_back(ToSurface(rect));
        TRecordDC::Rectangle(rect);
    }
    void StretchBitmap(const TRect &rect, const TBitmap &bitmap) override
    {
        pictures.push_back(ToSurface(rect));
        TRecordDC::StretchBitmap(rect, bitmap);
    }
    void Shape(const std::vector<Outline> &outlines, bool winding) override
    {
        for (const Outline &outline : outlines)
            for (TPoint p : outline.points)
                strokes.push_back({p.x / 16, p.y / 16, p.x / 16 + 1, p.y / 16 + 1});
        TRecordDC::Shape(outlines, winding);
    }
    bool Shows(const std::string &text) const
    {
        for (const Cell &cell : cells)
            if (cell.text == text)
                return true;
        return false;
    }
};

inline bool IsWithin(const TRect &inner, const TRect &outer)
{
    return inner.left >= outer.left && inner.top >= outer.top && inner.right <= outer.right &&
           inner.bottom <= outer.bottom;
}

inline std::string ShowRect(const TRect &r)
{
    return std::to_string(r.left) + "," + std::to_string(r.top) + "," + std::to_string(r.right) + "," +
           std::to_string(r.bottom);
}

/// The numbered texts and a record of status texts while it lives.
class TEXTSINUSE
{
public:
    TEXTSINUSE() : formerTexts(SetResTextSink(NULL)), formerStatus(SetStatusSink(Keep))
    {
        EdcUseResources();
        Status().clear();
    }
    ~TEXTSINUSE()
    {
        SetStatusSink(formerStatus);
        SetResTextSink(formerTexts);
    }
    TEXTSINUSE(const TEXTSINUSE &) = delete;
    TEXTSINUSE &operator=(const TEXTSINUSE &) = delete;

    static std::vector<std::string> &Status()
    {
        static std::vector<std::string> texts;
        return texts;
    }

private:
    static void Keep(const char *text, bool)
    {
        FaultPause pause;
        Status().push_back(text);
    }
    ResTextSink formerTexts;
    StatusSink formerStatus;
};

/// The document that blocks report to, with the colours composed.
struct MAPDOC : TEXTSINUSE {
    TZulRoomPalette palette;
    TEdcDocument doc;

    MAPDOC()
    {
        char logos[X_NAME];
        TestApplication();
        SetAppDocument(&doc);
        doc.AddPalette(&palette);
        doc.ComposePalette();
        SetLogoDirectory(NameFromNative(logos, ZUL_PROGRAM_FOLDER, sizeof logos) ? logos : NULL);
    }
    ~MAPDOC() { SetLogoDirectory(NULL); }
};

/// The blocks over a hall. An update runs with `params`, without a dialog.
struct MAPCASE : MAPDOC {
    TZulMapInfo info;
    TZulRoomBlock roomBlk;
    TZulSummaryMap summary;
    TZulHeadTempMap headTemp;
    TZulDiffTempMap diffTemp;
    TZulHeadInteMap headInte;

    explicit MAPCASE(EmROOM &room)
        : roomBlk(&room, &info, &palette, "Plan"), summary(&roomBlk), headTemp(&summary), diffTemp(&summary),
          headInte(&summary)
    {
        roomBlk.params.minInte.Set(0); // a map whatever the samples are
        roomBlk.params.maxInte.Set(100);
        formerAsk = TZulRoomBlock::askParams;
        Answer(true);
    }
    ~MAPCASE() { TZulRoomBlock::askParams = formerAsk; }

    /// What the designer makes of the question for parameters.
    static void Answer(bool ok)
    {
        TZulRoomBlock::askParams =
            ok ? [](TZulUpdateData &) { return true; } : [](TZulUpdateData &) { return false; };
    }
    void SetAirTemp(double t) { roomBlk.params.airTemp.Set(t); } // C

    std::vector<TZulCriterionMap *> Criteria() { return {&headTemp, &diffTemp, &headInte}; }
    std::vector<TEdcBlock *> Maps() { return {&summary, &headTemp, &diffTemp, &headInte}; }
    /// As the document updates them: from the first to the last.
    void Update(bool partial = false)
    {
        roomBlk.Update(partial);
        for (TEdcBlock *map : Maps())
            map->Update(partial);
    }

    /// The class that a pixel shows.
    int Class(const TEdcPicture &picture, int i, int j) const
    {
        return picture.bitmap.Pixel(i, j) - palette.criterionColors.Index(0);
    }

private:
    bool (*formerAsk)(TZulUpdateData &);
};

/// Lays out a block in what is offered. @return what it takes, px
inline TSize LayoutBlock(TEdcBlock &blk, TDC &dc, TSize offered, double scale = 1)
{
    TEdcSize size;
    size.FromPixels(dc, offered, scale);
    blk.Layout(dc, size, scale);
    return size.ToPixels(dc, scale);
}

/// 12 x 8 x 5 m with one emitter.
struct ONEEMITTERHALL : FIELDHALL {
    CHANCE chance{3};
    EmMODEL *model;
    EmEMITTER *emitter;

    ONEEMITTERHALL()
        : FIELDHALL(12, 8, 5), model(AddModel(FIELDTABLE(), chance)), emitter(AddEmitter(model, {4, 4, 4}))
    {
        room.Data()->workClass = 2;
    }
};

#endif
