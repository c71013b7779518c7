// Enhanced metafiles: records of a 32-bit type and a 32-bit size, the first of them the header.
//
// Understood: the header and the end; window, viewport, map mode and world transform; save and restore; pens,
// brushes, stock objects, select and delete; fill mode and arc direction; lines, polylines, polygons, curves
// and their groups with 32-bit or 16-bit coordinates; rectangles (round ones too), ellipses, arcs, chords and
// pies; paths that are filled, stroked or both; clipping to upright rectangles.
// Without effect: text, bitmaps, regions that are painted, palettes, colour management, raster mixes (each
// shape covers what is under it), background and text colours, joins and caps, comments, unknown types.
// Refused: clipping to anything else and widened paths, for the picture would come out wrong.
// A hatched brush is solid in its colour, a bitmap brush grey.
#include "win/metafile_body.h"

#include <algorithm>
#include <cmath>
#include <climits>
#include <numbers>

namespace
{
constexpr uint32_t HEADER = 1;
constexpr uint32_t END = 14;
constexpr uint32_t FIRST_NARROW = 85; // types 85 to 92 are 2 to 8 and 56 with 16-bit coordinates
constexpr uint32_t STOCK = 0x80000000;
constexpr uint32_t SIGNATURE = 0x464D4520;
constexpr size_t HEADER_MIN = 88;

/// Offsets in the header, bytes.
enum {
    AT_FRAME = 24, // 0.01 mm: left, top, right, bottom
    AT_SIGNATURE = 40,
    AT_VERSION = 44,
    AT_BYTES = 48,
    AT_RECORDS = 52,
    AT_HANDLES = 56, // 16 bits; handle 0 is none of them
    AT_DESCRIPTION = 60,
    AT_DEVICE = 72, // pixels
    AT_MILLIMETERS = 80,
};

MetaObject Brush(TColor color)
{
    return {MetaObject::BRUSH, {}, {false, color}};
}

MetaObject Pen(TPenStyle style, TColor color)
{
    return {MetaObject::PEN, {style, color, 0}, {}};
}

/// The objects that every device has. False for a number that stands for none.
bool StockObject(uint32_t number, MetaObject &object)
{
    const TColor light = {192, 192, 192};
    const TColor dark = {64, 64, 64};
    const MetaObject other;
    const MetaObject none = {MetaObject::BRUSH, {}, {true, WIN_WHITE}};
    const MetaObject missing = {MetaObject::REGION, {}, {}};
    const MetaObject stock[] = {Brush(WIN_WHITE),
                                Brush(light),
                                Brush(META_GREY),
                                Brush(dark),
                                Brush(WIN_BLACK),
                                none,
                                Pen(WIN_PEN_SOLID, WIN_WHITE),
                                Pen(WIN_PEN_SOLID, WIN_BLACK),
                                Pen(WIN_PEN_NONE, WIN_BLACK),
                                missing, // there is no number 9
                                other,   // 10 to 14, 16 and 17: fonts
                                other,
                                other,
                                other,
                                other,
                                other, // the palette
                                other,
                                other,
                                Brush(WIN_WHITE), // the device's own brush and pen
                                Pen(WIN_PEN_SOLID, WIN_BLACK)};
    if (number >= sizeof stock / sizeof *stock)
        return false;
    object = stock[number];
    return object.kind != MetaObject::REGION;
}

class EnhancedReader
{
public:
    EnhancedReader(const uint8_t *aBytes, size_t aSize, uint32_t handles, MetaPicture &picture)
        : bytes(aBytes), size(aSize), objects(1, handles), canvas(picture)
    {
    }

    void SetDevice(MetaPoint pixelsPerMm) { canvas.unitsPerMm = pixelsPerMm; }
    bool Read(uint32_t records);

private:
    using RECORD = const MetaRecord &;
    struct KIND {
        uint32_t type;
        size_t size; // the least
        bool (EnhancedReader::*read)(RECORD);
    };
    static const KIND kinds[];
    static bool IsWide(RECORD r) { return r.U32(0) < FIRST_NARROW; }
    static MetaPoint Point(RECORD r, size_t at)
    {
        return {static_cast<double>(r.I32(at)), static_cast<double>(r.I32(at + 4))};
    }
    static MetaBox Box(RECORD r, size_t at)
    {
        const MetaPoint from = Point(r, at);
        const MetaPoint to = Point(r, at + 8);
        return {from.x, from.y, to.x, to.y};
    }
    static MetaMatrix Matrix(RECORD r);
    static bool HasPoints(RECORD r);

    bool ReadRecord(RECORD r);

    bool Accept(RECORD) { return true; }
    bool Refuse(RECORD) { return false; }

    bool WindowExt(RECORD r) { return canvas.SetWindowExt(Point(r, 8)); }
    bool WindowOrg(RECORD r);
    bool ViewportExt(RECORD r) { return canvas.SetViewportExt(Point(r, 8)); }
    bool ViewportOrg(RECORD r);
    bool ScaleViewport(RECORD r);
    bool ScaleWindow(RECORD r);
    bool MapMode(RECORD r) { return canvas.SetMode(r.I32(8)); }
    bool SetWorld(RECORD r) { return canvas.SetWorld(Matrix(r)); }
    bool ModifyWorld(RECORD r);
    bool Save(RECORD) { return canvas.Save(); }
    bool Restore(RECORD r) { return r.I32(8) < 0 && canvas.Restore(r.I32(8)); }
    bool FillMode(RECORD r) { return canvas.SetFillMode(r.U32(8)); }
    bool ArcDirection(RECORD r);

    bool CreatePen(RECORD r);
    bool CreateWidePen(RECORD r);
    bool CreateBrush(RECORD r);
    bool CreateBitmapBrush(RECORD r);
    bool CreateOther(RECORD r) { return objects.Put(r.U32(8), {}); }
    bool Select(RECORD r);
    bool Delete(RECORD r);

    bool MoveTo(RECORD r);
    bool LineTo(RECORD r);
    bool Polyline(RECORD r);
    bool PolylineTo(RECORD r);
    bool Polygon(RECORD r);
    bool Bezier(RECORD r);
    bool BezierTo(RECORD r);
    bool Draw(RECORD r);
    bool Polylines(RECORD r) { return Group(r, &MetaCanvas::AddPolyline, META_STROKE); }
    bool Polygons(RECORD r) { return Group(r, &MetaCanvas::AddPolygon, META_BOTH); }
    bool Group(RECORD r, void (MetaCanvas::*add)(const MetaPoints &), MetaInk ink);
    bool Rectangle(RECORD r);
    bool RoundRect(RECORD r);
    bool Ellipse(RECORD r);
    bool Arc(RECORD r);
    bool ArcTo(RECORD r);
    bool AngleArc(RECORD r);

    bool BeginPath(RECORD) { return canvas.BeginPath(); }
    bool EndPath(RECORD) { return canvas.EndPath(); }
    bool AbortPath(RECORD);
    bool CloseFigure(RECORD) { return canvas.CloseFigure(); }
    bool FillPath(RECORD) { return canvas.PaintPath(META_FILL); }
    bool StrokePath(RECORD) { return canvas.PaintPath(META_STROKE); }
    bool StrokeAndFillPath(RECORD) { return canvas.PaintPath(META_BOTH); }
    bool ClipToPath(RECORD r) { return canvas.ClipToPath(r.U32(8)); }
    bool ClipToRect(RECORD r) { return canvas.ClipTo(Box(r, 8)); }
    bool ClipToRegion(RECORD r);

    const uint8_t *bytes;
    size_t size;
    MetaObjects objects;
    MetaCanvas canvas;
};

using READER = EnhancedReader;
const EnhancedReader::KIND EnhancedReader::kinds[] = {
    {2, 28, &READER::Bezier},
    {3, 28, &READER::Polygon},
    {4, 28, &READER::Polyline},
    {5, 28, &READER::BezierTo},
    {6, 28, &READER::PolylineTo},
    {7, 32, &READER::Polylines},
    {8, 32, &READER::Polygons},
    {9, 16, &READER::WindowExt},
    {10, 16, &READER::WindowOrg},
    {11, 16, &READER::ViewportExt},
    {12, 16, &READER::ViewportOrg},
    {17, 12, &READER::MapMode},
    {19, 12, &READER::FillMode},
    {26, 16, &READER::Refuse}, // moves the clip region
    {27, 16, &READER::MoveTo},
    {28, 8, &READER::Refuse},  // makes the clip region the outermost one
    {29, 24, &READER::Refuse}, // takes a rectangle out of the clip region
    {30, 24, &READER::ClipToRect},
    {31, 24, &READER::ScaleViewport},
    {32, 24, &READER::ScaleWindow},
    {33, 8, &READER::Save},
    {34, 12, &READER::Restore},
    {35, 32, &READER::SetWorld},
    {36, 36, &READER::ModifyWorld},
    {37, 12, &READER::Select},
    {38, 28, &READER::CreatePen},
    {39, 24, &READER::CreateBrush},
    {40, 12, &READER::Delete},
    {41, 28, &READER::AngleArc},
    {42, 24, &READER::Ellipse},
    {43, 24, &READER::Rectangle},
    {44, 32, &READER::RoundRect},
    {45, 40, &READER::Arc},
    {46, 40, &READER::Arc},         // chord
    {47, 40, &READER::Arc},         // pie
    {49, 12, &READER::CreateOther}, // palette
    {54, 16, &READER::LineTo},
    {55, 40, &READER::ArcTo},
    {56, 28, &READER::Draw},
    {57, 12, &READER::ArcDirection},
    {59, 8, &READER::BeginPath},
    {60, 8, &READER::EndPath},
    {61, 8, &READER::CloseFigure},
    {62, 8, &READER::FillPath},
    {63, 8, &READER::StrokeAndFillPath},
    {64, 8, &READER::StrokePath},
    {65, 8, &READER::Accept}, // curves of the path become lines, as they do in playing
    {66, 8, &READER::Refuse}, // the path becomes the outline of its stroke
    {67, 12, &READER::ClipToPath},
    {68, 8, &READER::AbortPath},
    {75, 16, &READER::ClipToRegion},
    {82, 12, &READER::CreateOther}, // font
    {85, 28, &READER::Bezier},
    {86, 28, &READER::Polygon},
    {87, 28, &READER::Polyline},
    {88, 28, &READER::BezierTo},
    {89, 28, &READER::PolylineTo},
    {90, 32, &READER::Polylines},
    {91, 32, &READER::Polygons},
    {92, 28, &READER::Draw},
    {93, 12, &READER::CreateBitmapBrush}, // of one bit a pixel
    {94, 12, &READER::CreateBitmapBrush},
    {95, 52, &READER::CreateWidePen},
    {99, 12, &READER::CreateOther},  // colour space
    {101, 12, &READER::Delete},      // colour space
    {122, 12, &READER::CreateOther}, // colour space
};

bool EnhancedReader::ReadRecord(RECORD r)
{
    const uint32_t type = r.U32(0);
    const KIND *end = kinds + sizeof kinds / sizeof *kinds;
    const KIND *kind = std::lower_bound(kinds, end, type, [](const KIND &k, uint32_t t) { return k.type < t; });
    if (kind == end || kind->type != type)
        return type != 0 && type != HEADER; // there is one header
    return r.Size() >= kind->size && (this->*kind->read)(r);
}

/// Walks the records behind the header, up to the end record, which must be the last one and complete.
bool EnhancedReader::Read(uint32_t records)
{
    uint32_t count = 0;
    for (size_t at = 0; size - at >= 8;) {
        const MetaRecord head(bytes + at, 8);
        const size_t length = head.U32(4);
        if (length < 8 || length % 4 != 0 || length > size - at)
            return false;
        const MetaRecord r(bytes + at, length);
        at += length;
        ++count;
        if (r.U32(0) == END)
            return length >= 20 && at == size && count == records && !canvas.InPath();
        if (at != length && !ReadRecord(r)) // the header has been read
            return false;
    }
    return false;
}

// The page and the state.

bool EnhancedReader::WindowOrg(RECORD r)
{
    canvas.state.page.windowOrg = Point(r, 8);
    return true;
}

bool EnhancedReader::ViewportOrg(RECORD r)
{
    canvas.state.page.viewportOrg = Point(r, 8);
    return true;
}

/// Two fractions: one that the x extent is multiplied by, one for the y extent.
bool EnhancedReader::ScaleViewport(RECORD r)
{
    const MetaBox v = Box(r, 8);
    return canvas.ScaleViewportExt({v.left, v.right}, {v.top, v.bottom});
}

bool EnhancedReader::ScaleWindow(RECORD r)
{
    const MetaBox v = Box(r, 8);
    return canvas.ScaleWindowExt({v.left, v.right}, {v.top, v.bottom});
}

MetaMatrix EnhancedReader::Matrix(RECORD r)
{
    MetaMatrix m;
    m.xx = r.F32(8);
    m.xy = r.F32(12);
    m.yx = r.F32(16);
    m.yy = r.F32(20);
    m.dx = r.F32(24);
    m.dy = r.F32(28);
    return m;
}

bool EnhancedReader::ModifyWorld(RECORD r)
{
    const MetaMatrix m = Matrix(r);
    const MetaMatrix world = canvas.state.world;
    switch (r.U32(32)) {
    case 1:
        return canvas.SetWorld({});
    case 2: // the new one first
        return m.IsSound() && canvas.SetWorld(m.Then(world));
    case 3: // the new one last
        return m.IsSound() && canvas.SetWorld(world.Then(m));
    case 4:
        return canvas.SetWorld(m);
    }
    return false;
}

bool EnhancedReader::ArcDirection(RECORD r)
{
    canvas.state.clockwise = r.U32(8) == 2;
    return r.U32(8) == 1 || r.U32(8) == 2;
}

/// A region in device units, 0 bytes of it for none: the whole picture.
/// Its head is 32 bytes: own size, kind 1, count of rectangles, their bytes, bounds.
bool EnhancedReader::ClipToRegion(RECORD r)
{
    const uint32_t length = r.U32(8);
    const uint32_t mode = r.U32(12);
    if (length == 0 && mode == 5) {
        canvas.state.clip = {};
        return true;
    }
    if (length < 48 || length > r.Size() - 16 || (mode != 1 && mode != 5))
        return false;
    if (r.U32(16) != 32 || r.U32(20) != 1 || r.U32(24) != 1)
        return false; // of one rectangle only
    MetaState &state = canvas.state;
    const MetaPage page = state.page;
    const MetaMatrix world = state.world;
    if (mode == 5)
        state.clip = {};
    state.page = {};
    state.world = {};
    const bool done = canvas.ClipTo(Box(r, 48));
    state.page = page;
    state.world = world;
    return done;
}

// Objects.

bool EnhancedReader::CreatePen(RECORD r)
{
    return objects.Put(r.U32(8),
                       {MetaObject::PEN, MetaLogicalPen(r.U32(12), r.I32(16), MetaColor(r.U32(24))), {}});
}

/// A pen with a brush of its own: style, width, kind of brush, colour, hatch, lengths of own dashes. Without
/// bit 0x10000 of the style it is one pixel wide.
bool EnhancedReader::CreateWidePen(RECORD r)
{
    const uint32_t style = r.U32(28);
    if (r.U32(48) > (r.Size() - 52) / 4)
        return false;
    const double width = (style & 0x10000) != 0 ? r.U32(32) : 0;
    const MetaBrush brush = MetaLogicalBrush(r.U32(36), MetaColor(r.U32(40)));
    MetaPen pen = MetaLogicalPen(style, width, brush.color);
    if (brush.none)
        pen.style = WIN_PEN_NONE;
    return objects.Put(r.U32(8), {MetaObject::PEN, pen, {}});
}

bool EnhancedReader::CreateBrush(RECORD r)
{
    return objects.Put(r.U32(8), {MetaObject::BRUSH, {}, MetaLogicalBrush(r.U32(12), MetaColor(r.U32(16)))});
}

bool EnhancedReader::CreateBitmapBrush(RECORD r)
{
    return objects.Put(r.U32(8), Brush(META_GREY));
}

bool EnhancedReader::Select(RECORD r)
{
    const uint32_t handle = r.U32(8);
    MetaObject stock;
    if ((handle & STOCK) != 0)
        return StockObject(handle & ~STOCK, stock) && canvas.Select(stock);
    const MetaObject *object = objects.Find(handle);
    return object && canvas.Select(*object);
}

/// What is selected goes on drawing.
bool EnhancedReader::Delete(RECORD r)
{
    const uint32_t handle = r.U32(8);
    MetaObject stock;
    return (handle & STOCK) != 0 ? StockObject(handle & ~STOCK, stock) : objects.Delete(handle);
}

// Lines and curves.

/// Points behind bounds and count, as most of these records have them.
bool EnhancedReader::HasPoints(RECORD r)
{
    return r.U32(24) <= (r.Size() - 28) / MetaPoints::Bytes(IsWide(r));
}

bool EnhancedReader::MoveTo(RECORD r)
{
    canvas.MoveTo(Point(r, 8));
    return true;
}

bool EnhancedReader::LineTo(RECORD r)
{
    canvas.LineTo(Point(r, 8));
    return true;
}

bool EnhancedReader::Polyline(RECORD r)
{
    if (!HasPoints(r))
        return false;
    canvas.Polyline({r, 28, r.U32(24), IsWide(r)});
    return true;
}

bool EnhancedReader::PolylineTo(RECORD r)
{
    if (!HasPoints(r))
        return false;
    canvas.PolylineTo({r, 28, r.U32(24), IsWide(r)});
    return true;
}

bool EnhancedReader::Polygon(RECORD r)
{
    if (!HasPoints(r))
        return false;
    canvas.Polygon({r, 28, r.U32(24), IsWide(r)});
    return true;
}

bool EnhancedReader::Bezier(RECORD r)
{
    return HasPoints(r) && canvas.Bezier({r, 28, r.U32(24), IsWide(r)});
}

bool EnhancedReader::BezierTo(RECORD r)
{
    return HasPoints(r) && canvas.BezierTo({r, 28, r.U32(24), IsWide(r)});
}

/// A byte for each point lies behind them.
bool EnhancedReader::Draw(RECORD r)
{
    const size_t count = r.U32(24);
    const size_t each = MetaPoints::Bytes(IsWide(r));
    if (count > (r.Size() - 28) / (each + 1))
        return false;
    return canvas.Draw({r, 28, count, IsWide(r)}, r.At(28 + count * each, count));
}

/// Count of figures, count of all points, the count of each figure, then the points.
bool EnhancedReader::Group(RECORD r, void (MetaCanvas::*add)(const MetaPoints &), MetaInk ink)
{
    const size_t figures = r.U32(24);
    const size_t total = r.U32(28);
    if (figures > (r.Size() - 32) / 4)
        return false;
    const size_t at = 32 + 4 * figures;
    if (total > (r.Size() - at) / MetaPoints::Bytes(IsWide(r)))
        return false;
    const MetaPoints points(r, at, total, IsWide(r));
    size_t first = 0;
    for (size_t i = 0; i < figures; ++i) {
        const size_t count = r.U32(32 + 4 * i);
        if (count > total - first)
            return false;
        (canvas.*add)(points.Part(first, count));
        first += count;
    }
    canvas.Paint(ink);
    return first == total;
}

bool EnhancedReader::Rectangle(RECORD r)
{
    canvas.Rectangle(Box(r, 8));
    return true;
}

bool EnhancedReader::RoundRect(RECORD r)
{
    canvas.RoundRect(Box(r, 8), Point(r, 24));
    return true;
}

bool EnhancedReader::Ellipse(RECORD r)
{
    canvas.Ellipse(Box(r, 8));
    return true;
}

bool EnhancedReader::Arc(RECORD r)
{
    static const MetaArc arcs[] = {META_ARC, META_CHORD, META_PIE};
    canvas.Arc(Box(r, 8), Point(r, 24), Point(r, 32), arcs[r.U32(0) - 45]);
    return true;
}

bool EnhancedReader::ArcTo(RECORD r)
{
    canvas.ArcTo(Box(r, 8), Point(r, 24), Point(r, 32));
    return true;
}

/// Centre, radius, and two angles in degrees.
bool EnhancedReader::AngleArc(RECORD r)
{
    const double start = r.F32(20) * std::numbers::pi / 180;
    const double sweep = r.F32(24) * std::numbers::pi / 180;
    if (!std::isfinite(start) || !std::isfinite(sweep))
        return false;
    canvas.AngleArc(Point(r, 8), r.U32(16), start, sweep);
    return true;
}

bool EnhancedReader::AbortPath(RECORD)
{
    canvas.AbortPath();
    return true;
}

/// The header's fields that anything is read by or that place the picture.
bool IsHeader(const MetaRecord &r, size_t size)
{
    const size_t length = r.U32(4);
    if (r.U32(0) != HEADER || length < HEADER_MIN || length > size || r.U32(AT_SIGNATURE) != SIGNATURE ||
        r.U32(AT_VERSION) != 0x10000)
        return false;
    const size_t bytes = r.U32(AT_BYTES);
    if (bytes > size || bytes < length || r.U16(AT_HANDLES) == 0)
        return false;
    const size_t letters = r.U32(AT_DESCRIPTION); // 16 bits each
    const size_t lettersAt = r.U32(AT_DESCRIPTION + 4);
    return letters == 0 || (lettersAt <= length && letters <= (length - lettersAt) / 2);
}

/// The frame and the device it was measured on, which give the picture its box in device units.
bool PlacePicture(const MetaRecord &r, MetaPicture &picture, MetaPoint &unitsPerMm)
{
    const int64_t width = int64_t(r.I32(AT_FRAME + 8)) - r.I32(AT_FRAME);
    const int64_t height = int64_t(r.I32(AT_FRAME + 12)) - r.I32(AT_FRAME + 4);
    const int32_t device[] = {r.I32(AT_DEVICE), r.I32(AT_DEVICE + 4)};
    const int32_t mm[] = {r.I32(AT_MILLIMETERS), r.I32(AT_MILLIMETERS + 4)};
    if (width <= 0 || width > INT_MAX || height <= 0 || height > INT_MAX || device[0] <= 0 || device[1] <= 0 ||
        mm[0] <= 0 || mm[1] <= 0)
        return false;
    picture.frame = {static_cast<int>(width), static_cast<int>(height)};
    unitsPerMm = {static_cast<double>(device[0]) / mm[0], static_cast<double>(device[1]) / mm[1]};
    const MetaPoint unit = {unitsPerMm.x / 100, unitsPerMm.y / 100};
    picture.box = {r.I32(AT_FRAME) * unit.x, r.I32(AT_FRAME + 4) * unit.y, r.I32(AT_FRAME + 8) * unit.x,
                   r.I32(AT_FRAME + 12) * unit.y};
    return true;
}
} // namespace

bool ReadEnhanced(const uint8_t *bytes, size_t size, MetaPicture &picture)
{
    if (size < HEADER_MIN)
        return false;
    const MetaRecord header(bytes, HEADER_MIN);
    MetaPoint unitsPerMm;
    if (!IsHeader(header, size) || !PlacePicture(header, picture, unitsPerMm))
        return false;
    EnhancedReader reader(bytes, header.U32(AT_BYTES), header.U16(AT_HANDLES), picture);
    reader.SetDevice(unitsPerMm);
    return reader.Read(header.U32(AT_RECORDS));
}
