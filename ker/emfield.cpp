#include "ker/emfield.h"
#include "ker/emfield_lanes.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <memory>
#include <vector>

#include "lib/xon.h"

double AirTempAt(const TZulMapInfo &r, double z)
{
    return (z - 1.5) * 0.3 + r.airTemp;
}

double HeadTemp(const EmROOM &room, const TZulMapInfo &r, double x, double y)
{
    double head = HeadHeight(room.Data()->position);
    return room.OperativeTemp(room.Irradiation({x, y, head}), AirTempAt(r, head));
}

double DiffTemp(const EmROOM &room, const TZulMapInfo &r, double x, double y)
{
    double ankle = room.OperativeTemp(room.Irradiation({x, y, EM_ANKLE_HEIGHT}), AirTempAt(r, EM_ANKLE_HEIGHT));
    return HeadTemp(room, r, x, y) - ankle;
}

double HeadInte(const EmROOM &room, double x, double y)
{
    AgPOINT p(x, y, HeadHeight(room.Data()->position));
    return room.Irradiation(p) + room.Surfaces()->Ceiling()->Radiation(p);
}

// Seven inches at 72 dots an inch, the nominal width of the map on paper.
EmRASTER IrradiationRaster(const EmBOX &box, bool draft)
{
    EmRASTER raster;
    double k = draft ? 3 : 1;
    double n = 7.0 * 72.0 / k;
    double step = box.Length() / n;
    double columns = std::trunc(n) + 1;
    double rows = std::trunc(box.Width() / step) + 1;
    __enter
        // Negated, so that a hall whose sides are no numbers is refused too.
        if (!std::isfinite(step) || !(rows * columns <= double{EM_RASTER_MAX}))
            __raise(XALLOC);
        raster.columns = static_cast<int>(columns);
        raster.rows = static_cast<int>(rows);
        raster.step = step;
        raster.xMin = std::min(box.min.x, box.max.x);
        raster.yMin = std::min(box.min.y, box.max.y);
    __point
    __treat
    return raster;
}

EmRASTER CriterionRaster(const EmBOX &box, const EmRASTER &irradiation)
{
    EmRASTER raster = irradiation;
    if (raster.rows > 1)
        raster.step = std::fabs(box.max.y - box.min.y) / (raster.rows - 1);
    return raster;
}

namespace
{
enum {
    TILE_COLUMNS = 32,
    TILE_PAD = 8,       // a multiple of every set's width
    FLAT_MAX = 1 << 25, // values of a flat table, 256 MB; extents that grow and shrink could ask for far more
};

const EmLANES *lanesSet = NULL; // weak

/// A model's table in one block. Layers are given the extents of the widest, so that one stride serves all;
/// what a layer lacks is never entered, because the limits are each layer's own.
struct TABLE {
    const EmMODEL *model; // view
    int depth = 0;        // index of the last layer; 0: an empty table
    int rx = 0;           // the widest extents
    int ry = 0;
    bool even = true;           // all layers have these extents
    bool flat = false;          // false: too large a block, the model is asked point by point
    std::vector<double> values; // by layer, column and row
    std::vector<double> limits; // in x and y of each pair of layers, m

    explicit TABLE(const EmMODEL *aModel);
    long long StrideX() const { return ry + 1LL; }
    long long StrideZ() const { return (2LL * rx + 1) * StrideX(); }
    /// The value (0, 0) of a layer.
    const double *Centre(int iz) const { return values.data() + iz * StrideZ() + rx * StrideX(); }

private:
    void FindExtents();
    void Fill();
};

TABLE::TABLE(const EmMODEL *aModel) : model(aModel), depth(aModel->Grid().Depth())
{
    if (depth == 0)
        return;
    FindExtents();
    flat = (2.0 * rx + 1) * (ry + 1.0) * (depth + 1.0) <= double{FLAT_MAX};
    if (flat)
        Fill();
}

void TABLE::FindExtents()
{
    int formerX = 0;
    int formerY = 0;
    for (int iz = 0; iz <= depth; ++iz) {
        int layerX = 0;
        int layerY = 0;
        model->Grid().Layer(iz, &layerX, &layerY);
        if (iz > 0)
            limits.insert(limits.end(), {static_cast<double>(std::min(formerX, layerX)),
                                         static_cast<double>(std::min(formerY, layerY))});
        even = even && (iz == 0 || (layerX == rx && layerY == ry));
        rx = std::max(rx, layerX);
        ry = std::max(ry, layerY);
        formerX = layerX;
        formerY = layerY;
    }
}

void TABLE::Fill()
{
    values.resize(static_cast<size_t>(StrideZ()) * (depth + 1));
    for (int iz = 0; iz <= depth; ++iz) {
        const EmGRID::LAYER *layer = model->Grid().Layer(iz, NULL, NULL);
        double *centre = const_cast<double *>(Centre(iz));
        for (int ix = -layer->rx; ix <= layer->rx; ++ix)
            std::copy(layer->F[ix], layer->F[ix] + layer->ry + 1, centre + ix * StrideX());
    }
}

/// What an emitter asks for on one plane.
enum class WAY {
    NOTHING,  // the plane lies outside its table
    STRAIGHT, // level, its axes are the hall's
    LEVEL,
    TILTED,
    SINGLY,  // no flat table
    NOWHERE, // outside its table, with a scale that makes even that count
};

/// One coordinate of the model over a plane, m[0] * x + m[1] * y + rest, and the range that it must meet.
struct RANGE {
    double m[2] = {};
    double rest = 0;
    double lo = 0;
    double hi = 0;
    double perM1 = 0;

    RANGE() = default;
    /// From a row of the matrix. Widened by more than the coordinate and the range can be off by rounding, for
    /// points whose x and y are not beyond `reach`.
    RANGE(const double (&row)[4], double z, double aLo, double aHi, double reach)
        : m{row[0], row[1]}, rest(row[2] * z + row[3]), perM1(1 / row[1])
    {
        double size = (std::fabs(m[0]) + std::fabs(m[1])) * reach + std::fabs(row[2] * z) + std::fabs(row[3]);
        lo = aLo - 1e-13 * (size + 1);
        hi = aHi + 1e-13 * (size + 1);
    }

    bool Misses(double x, double halfX, double y, double halfY) const
    {
        double centre = m[0] * x + m[1] * y + rest;
        double spread = std::fabs(m[0]) * halfX + std::fabs(m[1]) * halfY;
        return centre - spread > hi || centre + spread < lo;
    }

    /// Cuts down the stretch of y on which it can be met at x. What is no number cuts nothing.
    void Narrow(double x, double &yLo, double &yHi) const
    {
        double at = m[0] * x + rest;
        if (m[1] == 0) {
            if (at < lo || at > hi)
                yHi = -HUGE_VAL;
            return;
        }
        double a = (lo - at) * perM1;
        double b = (hi - at) * perM1;
        if (m[1] < 0)
            std::swap(a, b);
        yLo = a > yLo ? a : yLo;
        yHi = b < yHi ? b : yHi;
    }
};

struct SOURCE {
    const EmEMITTER *emitter; // view
    const TABLE *table;       // view
    WAY way = WAY::NOTHING;
    bool everywhere = false; // 0 times a scale that is not finite is no number: no point may be left out
    EmLANEJOB job = {};
    RANGE ranges[3]; // what the model coordinates must meet, as far as they bind
    int bound = 0;

    SOURCE(const EmEMITTER *aEmitter, const TABLE *aTable) : emitter(aEmitter), table(aTable) {}
    /// @param reach  the largest coordinate of the points to come, m
    void Place(double z, double reach);

private:
    void Choose();
    void ChooseLevel(double localZ);
    void SetRanges(double reach);
};

void SOURCE::Place(double z, double reach)
{
    for (int i = 0; i < 3; ++i)
        std::copy_n(emitter->transform.Row(i), 4, job.m[i]);
    job.z = z;
    job.scale = emitter->scale;
    everywhere = !std::isfinite(job.scale);
    Choose();
    SetRanges(reach);
}

void SOURCE::Choose()
{
    if (table->depth == 0) {
        way = everywhere ? WAY::NOWHERE : WAY::NOTHING;
        return;
    }
    job.limitX = table->rx;
    job.limitY = table->ry;
    job.depth = table->depth;
    if (!table->flat) {
        way = WAY::SINGLY;
        return;
    }
    job.table = table->Centre(0);
    job.limits = table->even ? NULL : table->limits.data();
    job.strideX = table->StrideX();
    job.strideZ = table->StrideZ();
    way = WAY::TILTED;
    // Without a share of x and y the local z is one number for the whole plane, but for the sign of a zero.
    if (job.m[2][0] == 0 && job.m[2][1] == 0)
        ChooseLevel((emitter->transform * AgPOINT(0, 0, job.z)).z);
}

void SOURCE::ChooseLevel(double localZ)
{
    if (!(localZ >= 0 && localZ < job.depth)) {
        way = everywhere ? WAY::NOWHERE : WAY::NOTHING;
        return;
    }
    int iz = static_cast<int>(localZ);
    job.table = table->Centre(iz);
    job.limitX = table->limits[2 * iz];
    job.limitY = table->limits[2 * iz + 1];
    job.dz = localZ - iz;
    job.wz = 1 - job.dz;
    bool straight = job.m[0][1] == 0 && job.m[1][0] == 0 && job.limitY < double{EM_CELL_MAX} && !everywhere;
    way = straight ? WAY::STRAIGHT : WAY::LEVEL;
}

void SOURCE::SetRanges(double reach)
{
    ranges[0] = RANGE(job.m[0], job.z, -job.limitX, job.limitX, reach);
    ranges[1] = RANGE(job.m[1], job.z, -job.limitY, job.limitY, reach);
    ranges[2] = RANGE(job.m[2], job.z, 0, job.depth, reach);
    bound = way == WAY::TILTED || way == WAY::SINGLY ? 3 : 2;
}

/// A piece of the raster on its way: its points and their sums, each column from its far end.
struct TILE {
    double x[TILE_COLUMNS];
    double y[EM_TILE_ROWS];
    double sum[TILE_COLUMNS][EM_TILE_ROWS];
    int columns;
    int rows;
    int padded; // rows, rounded up to what the loops take at a time
    double z;
    // A point at y has the row near - y * perStep, counted from the tile's first and give or take the slack of
    // rounding.
    double near;
    double perStep; // 1/m
    double slack;

    void Begin(const EmRASTER &aRaster, double aZ, double reach, int left, int width, int aTop, int height);
    /// Whether any of its points can lie in the table.
    bool Touches(const SOURCE &source) const;
    /// The rows of a column that can; none if first is not below last.
    void FindSpan(const SOURCE &source, double columnX, int &first, int &last) const;
};

void TILE::Begin(const EmRASTER &aRaster, double aZ, double reach, int left, int width, int aTop, int height)
{
    z = aZ;
    columns = width;
    rows = height;
    padded = (height + TILE_PAD - 1) / TILE_PAD * TILE_PAD;
    perStep = 1 / aRaster.step;
    near = aRaster.rows - 1 - aTop + aRaster.yMin * perStep;
    slack = 1 + 1e-14 * (reach * std::fabs(perStep) + aRaster.rows);
    for (int i = 0; i < columns; ++i) {
        x[i] = aRaster.X(left + i);
        std::fill_n(sum[i], padded, 0.0);
    }
    // Behind the last row stand points that are computed and thrown away.
    for (int j = 0; j < padded; ++j)
        y[j] = aRaster.Y(aTop + std::min(j, rows - 1));
}

bool TILE::Touches(const SOURCE &source) const
{
    double halfX = (x[columns - 1] - x[0]) / 2;
    double halfY = (y[0] - y[rows - 1]) / 2;
    for (int k = 0; k < source.bound; ++k)
        if (source.ranges[k].Misses(x[0] + halfX, halfX, y[0] - halfY, halfY))
            return false;
    return true;
}

void TILE::FindSpan(const SOURCE &source, double columnX, int &first, int &last) const
{
    double yLo = -HUGE_VAL;
    double yHi = HUGE_VAL;
    for (int k = 0; k < source.bound; ++k)
        source.ranges[k].Narrow(columnX, yLo, yHi);
    double from = near - yHi * perStep - slack;
    double to = near - yLo * perStep + slack + 1;
    first = from > 0 ? static_cast<int>(std::min<double>(from, rows)) : 0;
    last = to < rows ? static_cast<int>(std::max<double>(to, -1)) + 1 : rows;
}
} // namespace

bool EmHasAvx2()
{
#ifdef __x86_64__
    return __builtin_cpu_supports("avx2");
#else
    return false;
#endif
}

const EmLANES &EmGetLanes()
{
#ifdef __x86_64__
    if (lanesSet == NULL && EmHasAvx2())
        return EmLanesAvx2;
#endif
    return lanesSet != NULL ? *lanesSet : EmLanesPlain;
}

void EmSetLanes(const EmLANES *lanes)
{
    lanesSet = lanes;
}

struct EmFIELD::STORE {
    std::vector<std::unique_ptr<TABLE>> tables;
    std::vector<SOURCE> sources; // in the order of the set
    TILE tile;
    EmLANEROWS rows; // scratch of Sample

    const TABLE *TableOf(const EmMODEL *model);
    void Add(SOURCE &source);
    void AddColumn(const SOURCE &source, const EmLANES &lanes, int i);
};

const TABLE *EmFIELD::STORE::TableOf(const EmMODEL *model)
{
    for (const auto &table : tables)
        if (table->model == model)
            return table.get();
    tables.push_back(std::make_unique<TABLE>(model));
    return tables.back().get();
}

void EmFIELD::STORE::Add(SOURCE &source)
{
    const EmLANES &lanes = EmGetLanes();
    if (source.way == WAY::NOTHING || (!source.everywhere && !tile.Touches(source)))
        return;
    if (source.way == WAY::STRAIGHT)
        lanes.findRows(source.job, tile.x[0], tile.y, 0, tile.padded, rows);
    for (int i = 0; i < tile.columns; ++i)
        AddColumn(source, lanes, i);
}

void EmFIELD::STORE::AddColumn(const SOURCE &source, const EmLANES &lanes, int i)
{
    int first = 0;
    int last = tile.rows;
    double x = tile.x[i];
    double *sum = tile.sum[i];
    if (!source.everywhere)
        tile.FindSpan(source, x, first, last);
    first = first / lanes.width * lanes.width;
    switch (source.way) {
    case WAY::STRAIGHT:
        lanes.straight(source.job, rows, x, tile.y[0], first, last, sum);
        break;
    case WAY::LEVEL:
        lanes.level(source.job, x, tile.y, first, last, sum);
        break;
    case WAY::TILTED:
        lanes.tilted(source.job, x, tile.y, first, last, sum);
        break;
    case WAY::SINGLY:
        for (int j = first; j < last; ++j)
            sum[j] += source.emitter->Irradiation({x, tile.y[j], tile.z});
        break;
    case WAY::NOWHERE:
        for (int j = first; j < last; ++j)
            sum[j] += 0.0 * source.job.scale;
        break;
    case WAY::NOTHING:
        break;
    }
}

EmFIELD::EmFIELD(const EmEMITTERSET &set) : store(NULL)
{
    __enter
        store = new STORE; __test;
        for (const EmEMITTER *e = set.First(); e != NULL; e = EmEMITTERSET::Next(e))
            if (e->model != NULL)
                store->sources.emplace_back(e, store->TableOf(e->model));
    __point
        delete store;
        store = NULL;
    __treat
}

EmFIELD::~EmFIELD()
{
    delete store;
}

void EmFIELD::Sample(const EmRASTER &raster, double z, int first, int count, double *out) const
{
    TILE &tile = store->tile;
    double reach = std::max({std::fabs(raster.X(0)), std::fabs(raster.X(raster.columns - 1)),
                             std::fabs(raster.Y(0)), std::fabs(raster.Y(raster.rows - 1))});
    for (SOURCE &source : store->sources)
        source.Place(z, reach);
    for (int left = 0; left < count; left += TILE_COLUMNS)
        for (int top = 0; top < raster.rows; top += EM_TILE_ROWS) {
            tile.Begin(raster, z, reach, first + left, std::min<int>(TILE_COLUMNS, count - left), top,
                       std::min<int>(EM_TILE_ROWS, raster.rows - top));
            for (SOURCE &source : store->sources)
                store->Add(source);
            for (int i = 0; i < tile.columns; ++i)
                std::copy_n(tile.sum[i], tile.rows, out + static_cast<size_t>(left + i) * raster.rows + top);
        }
}
