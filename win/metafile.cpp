// Playing: each shape of the list is scaled to the rectangle, its curves are broken into lines, and the device
// context draws it in 1/16 px.
#include "win/metafile.h"

#include "lib/xassert.h"
#include "win/dc.h"
#include "win/metafile_body.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace
{
constexpr double FARTHEST = 1 << 25; // px; in 1/16 px that leaves room for the viewport's place
constexpr double FLATNESS = 0.125;   // px that a line may stand off its curve
constexpr int LINES_MAX = 64;        // of one curve, enough for one of 1000 px
constexpr double WIDTH_MAX = 32767;  // px, of pens

/// Gives the context back as it was.
class StateKeeper
{
public:
    explicit StateKeeper(TDC &aDc) : dc(aDc), kept(aDc.State()) {}
    ~StateKeeper() { dc.SetState(kept); }
    StateKeeper(const StateKeeper &) = delete;
    StateKeeper &operator=(const StateKeeper &) = delete;

    const TDCState &Kept() const { return kept; }

private:
    TDC &dc;
    const TDCState kept;
};

/// One play of a picture.
class Player
{
public:
    Player(const MetaPicture &aPicture, TDC &aDc, const TRect &aRect);
    void Play(const MetaShape &shape, const TDCState &outside);

private:
    MetaPoint Place(MetaPoint p) const; // px
    TPen Pen(const MetaPen &pen, bool nearby) const;
    TRect ClipRect(const MetaBox &box) const;
    bool Clip(const MetaClip &clip, const TDCState &outside);
    void Flatten(const MetaVertex *curve, TDC::Outline &outline) const;
    TDC::Outline Outline(const MetaOutline &outline) const;
    bool IsNearby(const MetaShape &shape) const;

    const MetaPicture &picture;
    TDC &dc;
    const TRect rect;
    MetaPoint scale; // px per device unit
};

Player::Player(const MetaPicture &aPicture, TDC &aDc, const TRect &aRect)
    : picture(aPicture), dc(aDc), rect(aRect)
{
    const MetaBox &box = picture.box;
    scale.x = (static_cast<double>(rect.right) - rect.left) / (box.right - box.left);
    scale.y = (static_cast<double>(rect.bottom) - rect.top) / (box.bottom - box.top);
}

MetaPoint Player::Place(MetaPoint p) const
{
    const double x = rect.left + (p.x - picture.box.left) * scale.x;
    const double y = rect.top + (p.y - picture.box.top) * scale.y;
    return {std::clamp(x, -FARTHEST, FARTHEST), std::clamp(y, -FARTHEST, FARTHEST)};
}

TPoint Sixteenths(MetaPoint px)
{
    return {static_cast<int>(std::lround(px.x * 16)), static_cast<int>(std::lround(px.y * 16))};
}

/// A dashed line that runs far off the picture would be millions of dashes that nobody sees.
TPen Player::Pen(const MetaPen &pen, bool nearby) const
{
    const double width = std::min(pen.width * std::sqrt(scale.x * scale.y), WIDTH_MAX);
    TPen scaled = {pen.color, std::max(1, static_cast<int>(std::lround(width))), pen.style};
    if (!nearby && !pen.IsNone())
        scaled.style = WIN_PEN_SOLID;
    return scaled;
}

/// Whether all of the shape lies within the picture or less than a picture's size beside it.
bool Player::IsNearby(const MetaShape &shape) const
{
    const MetaBox &box = picture.box;
    const double width = box.right - box.left;
    const double height = box.bottom - box.top;
    for (size_t i = shape.first; i < shape.first + shape.count; ++i) {
        const MetaOutline &outline = picture.outlines[i];
        for (size_t k = outline.first; k < outline.first + outline.count; ++k) {
            const MetaPoint &p = picture.vertices[k].at;
            if (p.x < box.left - width || p.x > box.right + width || p.y < box.top - height ||
                p.y > box.bottom + height)
                return false;
        }
    }
    return true;
}

TRect Player::ClipRect(const MetaBox &box) const
{
    const MetaPoint a = Place({box.left, box.top});
    const MetaPoint b = Place({box.right, box.bottom});
    return {static_cast<int>(std::lround(a.x)), static_cast<int>(std::lround(a.y)),
            static_cast<int>(std::lround(b.x)), static_cast<int>(std::lround(b.y))};
}

/// Sets the clip of a shape within the one that the caller has set. False where nothing is left to draw on.
bool Player::Clip(const MetaClip &clip, const TDCState &outside)
{
    TDCState state = dc.State();
    state.clipped = outside.clipped;
    state.clip = outside.clip;
    dc.SetState(state);
    if (!clip.set)
        return true;
    dc.SetClip(ClipRect(clip.box));
    state = dc.State();
    if (outside.clipped)
        state.clip = state.clip & outside.clip;
    dc.SetState(state);
    return !state.clip.IsEmpty();
}

/// Appends the lines of a cubic curve behind its start. The distance of a line from the curve is at most 1/8 of
/// the largest second derivative over the square of the number of lines.
void Player::Flatten(const MetaVertex *curve, TDC::Outline &outline) const
{
    const MetaPoint p[] = {Place(curve[0].at), Place(curve[1].at), Place(curve[2].at), Place(curve[3].at)};
    auto bend = [&p](int i) {
        return std::hypot(p[i].x - 2 * p[i + 1].x + p[i + 2].x, p[i].y - 2 * p[i + 1].y + p[i + 2].y);
    };
    const double lines = std::ceil(std::sqrt(6 * std::max(bend(0), bend(1)) / (8 * FLATNESS)));
    const int count = static_cast<int>(std::clamp(lines, 1.0, static_cast<double>(LINES_MAX)));
    for (int i = 1; i <= count; ++i) {
        const double t = static_cast<double>(i) / count;
        const double s = 1 - t;
        const double w[] = {s * s * s, 3 * s * s * t, 3 * s * t * t, t * t * t};
        outline.points.push_back(Sixteenths({w[0] * p[0].x + w[1] * p[1].x + w[2] * p[2].x + w[3] * p[3].x,
                                             w[0] * p[0].y + w[1] * p[1].y + w[2] * p[2].y + w[3] * p[3].y}));
    }
}

TDC::Outline Player::Outline(const MetaOutline &source) const
{
    TDC::Outline outline;
    outline.closed = source.closed;
    outline.points.reserve(source.count);
    const MetaVertex *v = &picture.vertices[source.first];
    for (size_t i = 0; i < source.count; ++i) {
        if (!v[i].control) {
            outline.points.push_back(Sixteenths(Place(v[i].at)));
        } else {
            Flatten(v + i - 1, outline); // the canvas puts a start before and an end behind two controls
            i += 2;
        }
    }
    return outline;
}

void Player::Play(const MetaShape &shape, const TDCState &outside)
{
    if (!Clip(shape.clip, outside))
        return;
    dc.SetPen(Pen(shape.pen, shape.pen.style == WIN_PEN_SOLID || IsNearby(shape)));
    dc.SetBrush(shape.brush.none ? NoBrush() : SolidBrush(shape.brush.color));
    std::vector<TDC::Outline> outlines;
    outlines.reserve(shape.count);
    for (size_t i = shape.first; i < shape.first + shape.count; ++i)
        outlines.push_back(Outline(picture.outlines[i]));
    dc.Shape(outlines, shape.winding);
}
} // namespace

const uint8_t *MetaRecord::At(size_t offset, size_t length) const
{
    ASSERT(offset <= size && length <= size - offset);
    return bytes + offset;
}

uint16_t MetaRecord::U16(size_t offset) const
{
    const uint8_t *b = At(offset, 2);
    return static_cast<uint16_t>(b[0] | b[1] << 8);
}

uint32_t MetaRecord::U32(size_t offset) const
{
    const uint8_t *b = At(offset, 4);
    return b[0] | static_cast<uint32_t>(b[1]) << 8 | static_cast<uint32_t>(b[2]) << 16 |
           static_cast<uint32_t>(b[3]) << 24;
}

float MetaRecord::F32(size_t offset) const
{
    const uint32_t bits = U32(offset);
    float value;
    memcpy(&value, &bits, sizeof value);
    return value;
}

MetaPoint MetaPoints::operator[](size_t i) const
{
    const size_t at = offset + i * Bytes(wide);
    if (wide)
        return {static_cast<double>(record.I32(at)), static_cast<double>(record.I32(at + 4))};
    return {static_cast<double>(record.I16(at)), static_cast<double>(record.I16(at + 2))};
}

MetaPoints MetaPoints::Part(size_t first, size_t length) const
{
    ASSERT(first <= count && length <= count - first);
    return MetaPoints(record, offset + first * Bytes(wide), length, wide);
}

TColor MetaColor(uint32_t rgb)
{
    return {static_cast<uint8_t>(rgb), static_cast<uint8_t>(rgb >> 8), static_cast<uint8_t>(rgb >> 16)};
}

/// The style's lowest four bits: solid, dash, dot, two dash-dots, none, solid within the frame, the maker's own
/// dashes, every other pixel.
MetaPen MetaLogicalPen(uint32_t style, double width, TColor color)
{
    static const TPenStyle styles[] = {WIN_PEN_SOLID, WIN_PEN_DASH,  WIN_PEN_DOT,  WIN_PEN_DASH, WIN_PEN_DASH,
                                       WIN_PEN_NONE,  WIN_PEN_SOLID, WIN_PEN_DASH, WIN_PEN_DOT};
    const uint32_t kind = style & 15;
    return {kind < sizeof styles / sizeof *styles ? styles[kind] : WIN_PEN_SOLID, color, std::fabs(width)};
}

/// Styles: 0 solid, 1 none, 2 hatched, which counts as solid; above these the brush is a bitmap.
MetaBrush MetaLogicalBrush(uint32_t style, TColor color)
{
    return {style == 1, style <= 2 ? color : META_GREY};
}

TMetafile::TMetafile() = default;
TMetafile::~TMetafile() = default;

bool TMetafile::ParseEnhanced(const uint8_t *bytes, size_t size)
{
    body.reset();
    auto fresh = std::make_unique<Body>();
    if (!ReadEnhanced(bytes, size, fresh->picture))
        return false;
    body = std::move(fresh);
    return true;
}

bool TMetafile::ParsePlain(const uint8_t *bytes, size_t size, TSize extent)
{
    body.reset();
    auto fresh = std::make_unique<Body>();
    if (!ReadPlain(bytes, size, extent, fresh->picture))
        return false;
    body = std::move(fresh);
    return true;
}

bool TMetafile::IsEmpty() const
{
    return RecordCount() == 0;
}

TSize TMetafile::Frame() const
{
    return body ? body->picture.frame : TSize();
}

int TMetafile::RecordCount() const
{
    return body ? static_cast<int>(body->picture.shapes.size()) : 0;
}

void TMetafile::Play(TDC &dc, const TRect &rect) const
{
    if (IsEmpty() || rect.right <= rect.left || rect.bottom <= rect.top)
        return;
    const StateKeeper keeper(dc);
    dc.SetMix(WIN_MIX_COPY);
    dc.SetOpaque(false);
    Player player(body->picture, dc, rect);
    for (const MetaShape &shape : body->picture.shapes)
        player.Play(shape, keeper.Kept());
}
