// Inside the metafile player: the list that a parsed picture becomes, and the canvas that both kinds of files
// draw on while they are read. Points are resolved once, through world transform and page, to units of the
// device that the picture was recorded on; playing is one scaling of these. A list never holds more than a
// constant times the file's bytes: a point of 4 bytes becomes a vertex of 24.
#ifndef WIN_METAFILE_BODY_H
#define WIN_METAFILE_BODY_H

#include "win/gdi.h"
#include "win/metafile.h"
#include <map>
#include <set>

struct MetaPoint {
    double x = 0;
    double y = 0;
};

/// Edges may stand either way round where a file gives them.
struct MetaBox {
    double left = 0;
    double top = 0;
    double right = 0;
    double bottom = 0;

    MetaBox Normalized() const;
};

/// x' = xx x + yx y + dx, y' = xy x + yy y + dy.
struct MetaMatrix {
    double xx = 1;
    double xy = 0;
    double yx = 0;
    double yy = 1;
    double dx = 0;
    double dy = 0;

    MetaPoint Apply(MetaPoint p) const { return {xx * p.x + yx * p.y + dx, xy * p.x + yy * p.y + dy}; }
    MetaMatrix Then(const MetaMatrix &next) const; // this one first
    double Determinant() const { return xx * yy - xy * yx; }
    /// Invertible, and so far from any overflow that products with 32-bit coordinates stay finite.
    bool IsSound() const;
};

// The list.

struct MetaPen {
    TPenStyle style = WIN_PEN_SOLID;
    TColor color;
    double width = 0; // logical units in an object, device units in a shape; 0 is a hairline

    bool IsNone() const { return style == WIN_PEN_NONE; }
};

struct MetaBrush {
    bool none = false;
    TColor color = WIN_WHITE;
};

struct MetaVertex {
    MetaPoint at;         // device units
    bool control = false; // one of the two control points in front of a curve's end
};

struct MetaOutline {
    size_t first = 0; // into the vertices
    size_t count = 0;
    bool closed = false;
};

struct MetaClip {
    bool set = false;
    MetaBox box; // device units, normalized; may be empty
};

struct MetaShape {
    size_t first = 0; // into the outlines
    size_t count = 0;
    bool winding = false;
    MetaPen pen;
    MetaBrush brush;
    MetaClip clip;
};

struct MetaPicture {
    std::vector<MetaVertex> vertices;
    std::vector<MetaOutline> outlines;
    std::vector<MetaShape> shapes;
    MetaBox box; // what is scaled to fill the rectangle played into: device units, neither extent 0
    TSize frame; // 0.01 mm
};

struct TMetafile::Body {
    MetaPicture picture;
};

// Reading.

/// One record, the file's own header of it included. Numbers are little-endian.
class MetaRecord
{
public:
    MetaRecord(const uint8_t *aBytes, size_t aSize) : bytes(aBytes), size(aSize) {}

    size_t Size() const { return size; }
    const uint8_t *At(size_t offset, size_t length) const; // the reader has checked that it is within
    uint32_t U32(size_t offset) const;
    uint16_t U16(size_t offset) const;
    int32_t I32(size_t offset) const { return static_cast<int32_t>(U32(offset)); }
    int16_t I16(size_t offset) const { return static_cast<int16_t>(U16(offset)); }
    float F32(size_t offset) const;

private:
    const uint8_t *bytes;
    size_t size;
};

/// Points as they lie in a record, x before y.
class MetaPoints
{
public:
    MetaPoints(const MetaRecord &aRecord, size_t aOffset, size_t aCount, bool aWide)
        : record(aRecord), offset(aOffset), count(aCount), wide(aWide)
    {
    }

    static size_t Bytes(bool wide) { return wide ? 8 : 4; }
    size_t Count() const { return count; }
    MetaPoint operator[](size_t i) const;
    MetaPoints Part(size_t first, size_t length) const;

private:
    const MetaRecord &record;
    size_t offset; // bytes
    size_t count;
    bool wide; // 32 bits a coordinate, else 16
};

TColor MetaColor(uint32_t rgb); // red in the lowest byte
MetaPen MetaLogicalPen(uint32_t style, double width, TColor color);
MetaBrush MetaLogicalBrush(uint32_t style, TColor color);
inline constexpr TColor META_GREY = {128, 128, 128}; // stands for a brush that is a bitmap

struct MetaObject {
    enum KIND { PEN, BRUSH, REGION, OTHER } kind = OTHER;
    MetaPen pen;
    MetaBrush brush;
};

/// What a file has created, by handle. Grows with what is there, not with what the header promises.
class MetaObjects
{
public:
    MetaObjects(uint32_t aFirst, uint32_t aEnd) : first(aFirst), end(aEnd), next(aFirst) {}

    bool Put(uint32_t handle, const MetaObject &object); // replaces; false beyond the table
    bool PutInFreeSlot(const MetaObject &object);        // the lowest one; false where the table is full
    bool Delete(uint32_t handle);                        // false where there is none
    const MetaObject *Find(uint32_t handle) const;       // NULL where there is none

private:
    uint32_t first; // handles are from first to end - 1
    uint32_t end;
    uint32_t next; // slots from here on were never used; for PutInFreeSlot
    std::map<uint32_t, MetaObject> objects;
    std::set<uint32_t> freed; // slots below next
};

/// How logical units become device units.
struct MetaPage {
    int mode = 1; // 1 pixels, 2 to 6 metric with y up, 7 extents with equal scales, 8 extents
    MetaPoint windowOrg;
    MetaPoint windowExt = {1, 1}; // never 0
    MetaPoint viewportOrg;
    MetaPoint viewportExt = {1, 1}; // never 0
};

struct MetaState {
    MetaPen pen;
    MetaBrush brush;
    bool winding = false;
    bool clockwise = false; // arcs, as they are seen
    MetaPoint position;     // logical units
    MetaPage page;
    MetaMatrix world;
    MetaClip clip;
};

enum MetaInk { META_STROKE = 1, META_FILL = 2, META_BOTH = 3 };
enum MetaArc { META_ARC, META_CHORD, META_PIE };

/// What drawing records call. Points are in logical units; inside a path bracket they gather in the path,
/// outside each call becomes a shape. An operation that returns bool answers false where the file is not sound.
class MetaCanvas
{
public:
    explicit MetaCanvas(MetaPicture &aPicture) : picture(aPicture) {}

    MetaState state;
    MetaPoint unitsPerMm = {1, 1}; // device units

    bool Save();
    bool Restore(int level); // below 0: so many back; above: back to the level of that number
    bool Select(const MetaObject &object);

    // Each of these keeps what it is given only if it is sound.
    bool SetMode(int mode);
    bool SetWindowExt(MetaPoint extent) { return SetExt(state.page.windowExt, extent); }
    bool SetViewportExt(MetaPoint extent) { return SetExt(state.page.viewportExt, extent); }
    bool ScaleWindowExt(MetaPoint num, MetaPoint denom);
    bool ScaleViewportExt(MetaPoint num, MetaPoint denom);
    bool SetWorld(const MetaMatrix &world);
    bool SetFillMode(uint32_t mode);

    void MoveTo(MetaPoint p);
    void LineTo(MetaPoint p);
    void Polyline(const MetaPoints &points);
    void PolylineTo(const MetaPoints &points);
    void Polygon(const MetaPoints &points);
    void AddPolygon(const MetaPoints &points);  // one of several, which Paint() then shows together
    void AddPolyline(const MetaPoints &points); // likewise
    bool Bezier(const MetaPoints &points);
    bool BezierTo(const MetaPoints &points);
    bool Draw(const MetaPoints &points, const uint8_t *types);
    void Rectangle(const MetaBox &box);
    void RoundRect(const MetaBox &box, MetaPoint corner); // corner: whole axes of its ellipse
    void Ellipse(const MetaBox &box);
    void Arc(const MetaBox &box, MetaPoint from, MetaPoint to, MetaArc kind);
    void ArcTo(const MetaBox &box, MetaPoint from, MetaPoint to);
    void AngleArc(MetaPoint center, double radius, double start, double sweep); // rad, counter-clockwise
    void Paint(MetaInk ink);

    bool BeginPath();
    bool EndPath();
    void AbortPath();
    bool CloseFigure();
    bool PaintPath(MetaInk ink);
    bool ClipToPath(uint32_t mode); // 1 within the present clip, 5 instead of it; rectangles only
    bool InPath() const { return path == OPEN; }

    bool ClipTo(const MetaBox &box); // within the present clip; false where it comes to stand askew

private:
    enum PATH { NONE, OPEN, READY };
    struct Ellipsis { // an elliptic arc: angles of the unit circle it is stretched from, y down
        MetaPoint center;
        MetaPoint radius;
        double start;
        double sweep;

        MetaPoint At(double angle) const;
    };

    MetaMatrix ToDevice() const;
    MetaPoint PageScale() const;
    bool SetExt(MetaPoint &extent, MetaPoint value);
    double Turning() const;
    bool SpanArc(const MetaBox &box, MetaPoint from, MetaPoint to, Ellipsis &arc) const;

    void Start(MetaPoint p);
    void Continue();
    void Line(MetaPoint p) { AddVertex(p, false); }
    void Curve(MetaPoint c1, MetaPoint c2, MetaPoint end);
    void Close();
    void AddVertex(MetaPoint p, bool control);
    void AddArc(const Ellipsis &arc);
    void AddShape(size_t first, size_t last, MetaInk ink);
    bool PathBox(MetaBox &box) const;
    void Narrow(const MetaBox &box);

    MetaPicture &picture;
    std::vector<MetaState> saved;
    bool figure = false; // the last outline is open and goes on at the current position
    size_t painted = 0;  // outlines that shapes or paths have taken
    PATH path = NONE;
    size_t pathFirst = 0; // outlines of the path
    size_t pathLast = 0;  // once it is READY
};

bool ReadEnhanced(const uint8_t *bytes, size_t size, MetaPicture &picture);
bool ReadPlain(const uint8_t *bytes, size_t size, TSize extent, MetaPicture &picture);

#endif
