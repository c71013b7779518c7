// Plain metafiles: a header of 18 bytes, then records of a 32-bit size in 16-bit words, a 16-bit function and
// words, the parameters of a call from the last to the first.
//
// Understood: window and viewport, save and restore, pens, brushes, select and delete, fill mode, lines,
// polylines, polygons and their groups, rectangles (round ones too), ellipses, arcs, chords and pies, clipping
// to a rectangle. Objects have no handles: a creating record, also one of a kind that draws nothing here, takes
// the lowest free slot. Text, bitmaps, palettes, colours of the background, raster mixes and escapes are
// without effect. Clipping to other regions and the metric map modes are refused.
//
// Whoever plays such a file gives it the viewport; so the first window that something is drawn in, or the
// viewport that the file gives it, is scaled to the rectangle. A file that sets no window is as large as what
// it draws.
#include "win/metafile_body.h"

#include <algorithm>
#include <cmath>
#include <climits>

namespace
{
constexpr size_t HEADER_SIZE = 18; // bytes
constexpr size_t RECORD_MIN = 6;   // bytes
constexpr double MM100_PER_UNIT = 2540.0 / 96;

class PlainReader
{
public:
    PlainReader(const uint8_t *aBytes, size_t aSize, uint32_t slots, MetaPicture &aPicture)
        : bytes(aBytes), size(aSize), objects(0, slots), picture(aPicture), canvas(aPicture)
    {
        canvas.state.page.mode = 8;
    }

    bool Read();
    void Place(TSize extent);

private:
    using RECORD = const MetaRecord &;
    struct KIND {
        uint16_t function;
        size_t size; // the least, bytes
        bool (PlainReader::*read)(RECORD);
    };
    static const KIND kinds[];
    /// Parameters in the order of the file: y before x.
    static MetaPoint Point(RECORD r, size_t at)
    {
        return {static_cast<double>(r.I16(at + 2)), static_cast<double>(r.I16(at))};
    }
    static MetaBox Box(RECORD r, size_t at)
    {
        const MetaPoint to = Point(r, at);
        const MetaPoint from = Point(r, at + 4);
        return {from.x, from.y, to.x, to.y};
    }

    bool ReadRecord(RECORD r);
    void Frame();

    bool Refuse(RECORD) { return false; }

    bool WindowOrg(RECORD r);
    bool WindowExt(RECORD r);
    bool ViewportOrg(RECORD r);
    bool ViewportExt(RECORD r) { return canvas.SetViewportExt(Point(r, 6)); }
    bool OffsetWindow(RECORD r);
    bool OffsetViewport(RECORD r);
    bool ScaleWindow(RECORD r);
    bool ScaleViewport(RECORD r);
    bool MapMode(RECORD r);
    bool Save(RECORD) { return canvas.Save(); }
    bool Restore(RECORD r) { return canvas.Restore(r.I16(6)); }
    bool FillMode(RECORD r) { return canvas.SetFillMode(r.U16(6)); }
    bool ClipToRect(RECORD r) { return canvas.ClipTo(Box(r, 6)); }
    bool ClipToRegion(RECORD r);

    bool CreatePen(RECORD r);
    bool CreateBrush(RECORD r);
    bool CreateBitmapBrush(RECORD)
    {
        return objects.PutInFreeSlot({MetaObject::BRUSH, {}, {false, META_GREY}});
    }
    bool CreateRegion(RECORD) { return objects.PutInFreeSlot({MetaObject::REGION, {}, {}}); }
    bool CreateOther(RECORD) { return objects.PutInFreeSlot({}); }
    bool Select(RECORD r);
    bool Delete(RECORD r) { return objects.Delete(r.U16(6)); }

    bool MoveTo(RECORD r);
    bool LineTo(RECORD r);
    bool Polyline(RECORD r);
    bool Polygon(RECORD r);
    bool Polygons(RECORD r);
    bool Rectangle(RECORD r);
    bool RoundRect(RECORD r);
    bool Ellipse(RECORD r);
    bool Arc(RECORD r) { return AnyArc(r, META_ARC); }
    bool Pie(RECORD r) { return AnyArc(r, META_PIE); }
    bool Chord(RECORD r) { return AnyArc(r, META_CHORD); }
    bool AnyArc(RECORD r, MetaArc kind);

    const uint8_t *bytes;
    size_t size;
    MetaObjects objects;
    MetaPicture &picture;
    MetaCanvas canvas;
    bool windowed = false; // the file has set a window
    bool framed = false;   // something was drawn, and the picture's box stands
    MetaPoint extent;      // of the window then, logical units; 0 without one
};

using READER = PlainReader;
const PlainReader::KIND PlainReader::kinds[] = {
    {0x001E, 6, &READER::Save},
    {0x00F7, 6, &READER::CreateOther}, // palette
    {0x00F8, 6, &READER::CreateBitmapBrush},
    {0x0103, 8, &READER::MapMode},
    {0x0106, 8, &READER::FillMode},
    {0x0127, 8, &READER::Restore},
    {0x012C, 8, &READER::ClipToRegion},
    {0x012D, 8, &READER::Select},
    {0x0142, 6, &READER::CreateBitmapBrush},
    {0x01F0, 8, &READER::Delete},
    {0x01F9, 6, &READER::CreateBitmapBrush},
    {0x020B, 10, &READER::WindowOrg},
    {0x020C, 10, &READER::WindowExt},
    {0x020D, 10, &READER::ViewportOrg},
    {0x020E, 10, &READER::ViewportExt},
    {0x020F, 10, &READER::OffsetWindow},
    {0x0211, 10, &READER::OffsetViewport},
    {0x0213, 10, &READER::LineTo},
    {0x0214, 10, &READER::MoveTo},
    {0x0220, 10, &READER::Refuse}, // moves the clip region
    {0x02FA, 16, &READER::CreatePen},
    {0x02FB, 6, &READER::CreateOther}, // font
    {0x02FC, 14, &READER::CreateBrush},
    {0x02FD, 6, &READER::CreateOther}, // bitmap
    {0x0324, 8, &READER::Polygon},
    {0x0325, 8, &READER::Polyline},
    {0x0410, 14, &READER::ScaleWindow},
    {0x0412, 14, &READER::ScaleViewport},
    {0x0415, 14, &READER::Refuse}, // takes a rectangle out of the clip region
    {0x0416, 14, &READER::ClipToRect},
    {0x0418, 14, &READER::Ellipse},
    {0x041B, 14, &READER::Rectangle},
    {0x0538, 8, &READER::Polygons},
    {0x061C, 18, &READER::RoundRect},
    {0x06FE, 6, &READER::CreateOther}, // bitmap
    {0x06FF, 6, &READER::CreateRegion},
    {0x0817, 22, &READER::Arc},
    {0x081A, 22, &READER::Pie},
    {0x0830, 22, &READER::Chord},
};

bool PlainReader::ReadRecord(RECORD r)
{
    const uint16_t function = r.U16(4);
    const KIND *end = kinds + sizeof kinds / sizeof *kinds;
    const KIND *kind =
        std::lower_bound(kinds, end, function, [](const KIND &k, uint16_t f) { return k.function < f; });
    if (kind == end || kind->function != function)
        return true;
    return r.Size() >= kind->size && (this->*kind->read)(r);
}

/// Walks the records up to the end record; what lies behind that is nobody's.
bool PlainReader::Read()
{
    for (size_t at = HEADER_SIZE; size - at >= RECORD_MIN;) {
        const size_t words = MetaRecord(bytes + at, RECORD_MIN).U32(0);
        if (words < RECORD_MIN / 2 || words > (size - at) / 2)
            return false;
        const MetaRecord r(bytes + at, 2 * words);
        at += 2 * words;
        if (r.U16(4) == 0)
            return true;
        if (!ReadRecord(r))
            return false;
        if (!framed && !picture.shapes.empty())
            Frame();
    }
    return false;
}

// The window.

/// Takes the picture's box from the window in force.
void PlainReader::Frame()
{
    framed = true;
    if (!windowed)
        return;
    const MetaPage &page = canvas.state.page;
    extent = page.windowExt;
    picture.box = MetaBox{page.viewportOrg.x, page.viewportOrg.y, page.viewportOrg.x + page.viewportExt.x,
                          page.viewportOrg.y + page.viewportExt.y}
                      .Normalized();
}

int Frame100(double units)
{
    return static_cast<int>(std::lround(std::min(std::fabs(units) * MM100_PER_UNIT, double(INT_MAX))));
}

/// The frame: the given extent, or that of the window; without a window both follow what was drawn.
void PlainReader::Place(TSize given)
{
    if (!framed)
        Frame();
    if (extent.x == 0 && !picture.vertices.empty()) {
        const MetaPoint &p = picture.vertices.front().at;
        MetaBox &box = picture.box;
        box = {p.x, p.y, p.x, p.y};
        for (const MetaVertex &v : picture.vertices)
            box = {std::min(box.left, v.at.x), std::min(box.top, v.at.y), std::max(box.right, v.at.x),
                   std::max(box.bottom, v.at.y)};
        extent = {box.right - box.left, box.bottom - box.top};
    }
    if (picture.box.right == picture.box.left)
        picture.box.right += 1;
    if (picture.box.bottom == picture.box.top)
        picture.box.bottom += 1;
    picture.frame = {Frame100(extent.x), Frame100(extent.y)};
    if (given.cx != 0 && given.cy != 0)
        picture.frame = {std::abs(std::max(given.cx, -INT_MAX)), std::abs(std::max(given.cy, -INT_MAX))};
}

bool PlainReader::WindowOrg(RECORD r)
{
    canvas.state.page.windowOrg = Point(r, 6);
    return true;
}

bool PlainReader::WindowExt(RECORD r)
{
    windowed = true;
    return canvas.SetWindowExt(Point(r, 6));
}

bool PlainReader::ViewportOrg(RECORD r)
{
    canvas.state.page.viewportOrg = Point(r, 6);
    return true;
}

bool PlainReader::OffsetWindow(RECORD r)
{
    MetaPoint &org = canvas.state.page.windowOrg;
    const MetaPoint by = Point(r, 6);
    org = {org.x + by.x, org.y + by.y};
    return true;
}

bool PlainReader::OffsetViewport(RECORD r)
{
    MetaPoint &org = canvas.state.page.viewportOrg;
    const MetaPoint by = Point(r, 6);
    org = {org.x + by.x, org.y + by.y};
    return true;
}

/// Two fractions, each with its divisor first, that of y before that of x.
bool PlainReader::ScaleWindow(RECORD r)
{
    return canvas.ScaleWindowExt({double(r.I16(12)), double(r.I16(8))}, {double(r.I16(10)), double(r.I16(6))});
}

bool PlainReader::ScaleViewport(RECORD r)
{
    return canvas.ScaleViewportExt({double(r.I16(12)), double(r.I16(8))},
                                   {double(r.I16(10)), double(r.I16(6))});
}

/// Pixels and both kinds of extents: the rectangle gives the scale in any case.
bool PlainReader::MapMode(RECORD r)
{
    const int mode = r.I16(6);
    return mode == 1 || mode == 7 || mode == 8;
}

/// Region 0 is none: the whole picture.
bool PlainReader::ClipToRegion(RECORD r)
{
    if (r.U16(6) != 0)
        return false;
    canvas.state.clip = {};
    return true;
}

// Objects.

bool PlainReader::CreatePen(RECORD r)
{
    const MetaPen pen = MetaLogicalPen(r.U16(6), r.I16(8), MetaColor(r.U32(12)));
    return objects.PutInFreeSlot({MetaObject::PEN, pen, {}});
}

bool PlainReader::CreateBrush(RECORD r)
{
    return objects.PutInFreeSlot({MetaObject::BRUSH, {}, MetaLogicalBrush(r.U16(6), MetaColor(r.U32(8)))});
}

bool PlainReader::Select(RECORD r)
{
    const MetaObject *object = objects.Find(r.U16(6));
    return object && canvas.Select(*object);
}

// Figures.

bool PlainReader::MoveTo(RECORD r)
{
    canvas.MoveTo(Point(r, 6));
    return true;
}

bool PlainReader::LineTo(RECORD r)
{
    canvas.LineTo(Point(r, 6));
    return true;
}

bool PlainReader::Polyline(RECORD r)
{
    const size_t count = r.U16(6);
    if (count > (r.Size() - 8) / 4)
        return false;
    canvas.Polyline({r, 8, count, false});
    return true;
}

bool PlainReader::Polygon(RECORD r)
{
    const size_t count = r.U16(6);
    if (count > (r.Size() - 8) / 4)
        return false;
    canvas.Polygon({r, 8, count, false});
    return true;
}

/// Count of polygons, the count of each, then the points of all.
bool PlainReader::Polygons(RECORD r)
{
    const size_t figures = r.U16(6);
    if (figures > (r.Size() - 8) / 2)
        return false;
    const size_t at = 8 + 2 * figures;
    const size_t total = (r.Size() - at) / 4;
    const MetaPoints points(r, at, total, false);
    size_t first = 0;
    for (size_t i = 0; i < figures; ++i) {
        const size_t count = r.U16(8 + 2 * i);
        if (count > total - first)
            return false;
        canvas.AddPolygon(points.Part(first, count));
        first += count;
    }
    canvas.Paint(META_BOTH);
    return true;
}

bool PlainReader::Rectangle(RECORD r)
{
    canvas.Rectangle(Box(r, 6));
    return true;
}

bool PlainReader::RoundRect(RECORD r)
{
    canvas.RoundRect(Box(r, 10), Point(r, 6));
    return true;
}

bool PlainReader::Ellipse(RECORD r)
{
    canvas.Ellipse(Box(r, 6));
    return true;
}

bool PlainReader::AnyArc(RECORD r, MetaArc kind)
{
    canvas.Arc(Box(r, 14), Point(r, 10), Point(r, 6), kind);
    return true;
}

/// In memory or on disk, 9 words of header, one of two versions, and a length within what there is.
bool IsPlainHeader(const MetaRecord &r, size_t size)
{
    const uint16_t type = r.U16(0);
    const uint16_t version = r.U16(4);
    return (type == 1 || type == 2) && r.U16(2) == HEADER_SIZE / 2 && (version == 0x100 || version == 0x300) &&
           r.U32(6) <= size / 2 && r.U32(6) >= (HEADER_SIZE + RECORD_MIN) / 2;
}
} // namespace

bool ReadPlain(const uint8_t *bytes, size_t size, TSize extent, MetaPicture &picture)
{
    if (size < HEADER_SIZE)
        return false;
    const MetaRecord header(bytes, HEADER_SIZE);
    if (!IsPlainHeader(header, size))
        return false;
    PlainReader reader(bytes, 2 * size_t(header.U32(6)), header.U16(10), picture);
    if (!reader.Read())
        return false;
    reader.Place(extent);
    return true;
}
