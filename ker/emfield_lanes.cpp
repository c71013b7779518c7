#include "ker/emfield_lanes.h"

#include <cstddef>

#ifdef __SSE2__
#include <immintrin.h>
#endif

namespace
{
// Vectors as the compiler knows them, so that the same text serves both sets.
#ifdef __AVX2__
enum { WIDTH = 4 };
#else
enum { WIDTH = 2 };
#endif
typedef double REALS __attribute__((vector_size(8 * WIDTH)));
typedef long long WHOLES __attribute__((vector_size(8 * WIDTH)));
typedef double PAIR __attribute__((vector_size(16)));

template <class T, class S>
inline T Load(const S *p)
{
    T v;
    __builtin_memcpy(&v, p, sizeof v);
    return v;
}

inline void Store(double *p, REALS v)
{
    __builtin_memcpy(p, &v, sizeof v);
}

// Without the intrinsic the compiler turns the mask of a comparison back into a choice value by value.
inline REALS Keep(REALS v, WHOLES where)
{
#if defined(__SSE2__) && !defined(__AVX2__)
    return _mm_and_pd(v, (REALS)where);
#else
    return (REALS)((WHOLES)v & where);
#endif
}

inline REALS Choose(WHOLES where, REALS yes, REALS no)
{
    return Keep(yes, where) + Keep(no, ~where);
}

inline REALS Abs(REALS v)
{
    return (REALS)((WHOLES)v & 0x7FFFFFFFFFFFFFFFLL);
}

inline REALS Floor(REALS v)
{
#ifdef __AVX2__
    return _mm256_floor_pd(v);
#else
    const double round = 6755399441055744.0; // 1.5 * 2^52: its sum has no room for a fraction
    REALS r = v + round - round;
    return r - Keep(REALS{} + 1.0, r > v);
#endif
}

/// Numbers without a fraction, within 2^51, as integers.
inline WHOLES Whole(REALS v)
{
    const double round = 6755399441055744.0;
    return (WHOLES)(v + round) - (WHOLES)(REALS{} + round);
}

/// The two values at each of the places, parted into first ones and second ones.
inline void LoadPairs(const double *base, WHOLES place, REALS &first, REALS &second)
{
#ifdef __AVX2__
    __m256d even = _mm256_insertf128_pd(_mm256_castpd128_pd256(_mm_loadu_pd(base + place[0])),
                                        _mm_loadu_pd(base + place[2]), 1);
    __m256d odd = _mm256_insertf128_pd(_mm256_castpd128_pd256(_mm_loadu_pd(base + place[1])),
                                       _mm_loadu_pd(base + place[3]), 1);
    first = _mm256_unpacklo_pd(even, odd);
    second = _mm256_unpackhi_pd(even, odd);
#else
    PAIR even = Load<PAIR>(base + place[0]);
    PAIR odd = Load<PAIR>(base + place[1]);
    first = __builtin_shufflevector(even, odd, 0, 2);
    second = __builtin_shufflevector(even, odd, 1, 3);
#endif
}

/// A layer's values between the four corners of each point's cell.
inline REALS Bilinear(const double *layer, long long strideX, WHOLES cell, REALS dx, REALS dy)
{
    REALS a0, a1, b0, b1;
    LoadPairs(layer, cell, a0, a1);
    LoadPairs(layer + strideX, cell, b0, b1);
    REALS near = a0 * (1 - dx) + b0 * dx;
    REALS far = a1 * (1 - dx) + b1 * dx;
    return near * (1 - dy) + far * dy;
}

/// One row of the matrix on a column's points.
struct AXIS {
    double a; // the terms of the point's x and z
    double b;
    double m1;
    double m3;

    AXIS(const double (&m)[4], double x, double z) : a(m[0] * x), b(m[2] * z), m1(m[1]), m3(m[3]) {}
    REALS At(REALS y) const { return a + m1 * y + b + m3; }
};

void Level(const EmLANEJOB &job, double x, const double *y, int first, int last, double *out)
{
    const AXIS axisX(job.m[0], x, job.z);
    const AXIS axisY(job.m[1], x, job.z);
    const double strideX = static_cast<double>(job.strideX);
    for (int j = first; j < last; j += WIDTH) {
        REALS lx = axisX.At(Load<REALS>(y + j));
        REALS ly = Abs(axisY.At(Load<REALS>(y + j)));
        WHOLES in = (Abs(lx) < job.limitX) & (ly < job.limitY);
        REALS ix = Floor(lx);
        REALS iy = Floor(ly);
        REALS dx = lx - ix;
        REALS dy = ly - iy;
        WHOLES cell = Whole(Keep(ix * strideX + iy, in));
        REALS above = Bilinear(job.table, job.strideX, cell, dx, dy);
        REALS below = Bilinear(job.table + job.strideZ, job.strideX, cell, dx, dy);
        REALS v = Keep(above * job.wz + below * job.dz, in);
        Store(out + j, Load<REALS>(out + j) + v * job.scale);
    }
}

template <bool EVEN>
inline void TiltedLoop(const EmLANEJOB &job, double x, const double *y, int first, int last, double *out)
{
    const AXIS axisX(job.m[0], x, job.z);
    const AXIS axisY(job.m[1], x, job.z);
    const AXIS axisZ(job.m[2], x, job.z);
    const double strideX = static_cast<double>(job.strideX);
    const double strideZ = static_cast<double>(job.strideZ);
    const REALS zero = {};
    for (int j = first; j < last; j += WIDTH) {
        REALS lx = axisX.At(Load<REALS>(y + j));
        REALS ly = Abs(axisY.At(Load<REALS>(y + j)));
        REALS lz = axisZ.At(Load<REALS>(y + j));
        WHOLES in = (lz >= 0.0) & (lz < job.depth);
        REALS iz = Floor(Keep(lz, in));
        REALS limitX = zero + job.limitX;
        REALS limitY = zero + job.limitY;
        if (!EVEN)
            LoadPairs(job.limits, Whole(iz + iz), limitX, limitY);
        in &= (Abs(lx) < limitX) & (ly < limitY);
        REALS ix = Floor(lx);
        REALS iy = Floor(ly);
        REALS dx = lx - ix;
        REALS dy = ly - iy;
        REALS dz = lz - iz;
        WHOLES cell = Whole(Keep(iz * strideZ + ix * strideX + iy, in));
        REALS above = Bilinear(job.table, job.strideX, cell, dx, dy);
        REALS below = Bilinear(job.table + job.strideZ, job.strideX, cell, dx, dy);
        REALS v = Keep(above * (1 - dz) + below * dz, in);
        Store(out + j, Load<REALS>(out + j) + v * job.scale);
    }
}

void Tilted(const EmLANEJOB &job, double x, const double *y, int first, int last, double *out)
{
    if (job.limits == NULL)
        TiltedLoop<true>(job, x, y, first, last, out);
    else
        TiltedLoop<false>(job, x, y, first, last, out);
}

void FindRows(const EmLANEJOB &job, double x, const double *y, int first, int last, EmLANEROWS &rows)
{
    const AXIS axisY(job.m[1], x, job.z);
    rows.lowest = EM_CELL_MAX;
    rows.highest = -1;
    for (int j = first; j < last; j += WIDTH) {
        REALS ly = Abs(axisY.At(Load<REALS>(y + j)));
        WHOLES in = ly < job.limitY;
        REALS iy = Floor(Keep(ly, in));
        REALS dy = Keep(ly, in) - iy;
        WHOLES cell = Whole(iy);
        Store(rows.dy + j, dy);
        Store(rows.wy + j, 1 - dy);
        __builtin_memcpy(rows.in + j, &in, sizeof in);
        for (int k = 0; k < WIDTH; ++k) {
            int c = static_cast<int>(cell[k]);
            rows.cell[j + k] = c;
            rows.lowest = c < rows.lowest ? c : rows.lowest;
            rows.highest = c > rows.highest ? c : rows.highest;
        }
    }
}

inline WHOLES Cells(const int *cell)
{
#ifdef __AVX2__
    return WHOLES{cell[0], cell[1], cell[2], cell[3]};
#else
    return WHOLES{cell[0], cell[1]};
#endif
}

void Straight(const EmLANEJOB &job, const EmLANEROWS &rows, double x, double y, int first, int last,
              double *out)
{
    // Values of the two layers at the column's x, one a cell in use and one behind.
    double above[EM_CELL_MAX + 1];
    double below[EM_CELL_MAX + 1];
    double lx = job.m[0][0] * x + job.m[0][1] * y + job.m[0][2] * job.z + job.m[0][3];
    if (!(lx < job.limitX && -lx < job.limitX))
        return;
    int ix = static_cast<int>(lx);
    if (lx < ix)
        --ix;
    const double dx = lx - ix;
    const double wx = 1 - dx;
    const double *a = job.table + ix * job.strideX;
    const double *b = a + job.strideX;
    for (int i = rows.lowest; i <= rows.highest + 1; ++i) {
        above[i] = a[i] * wx + b[i] * dx;
        below[i] = a[job.strideZ + i] * wx + b[job.strideZ + i] * dx;
    }
    for (int j = first; j < last; j += WIDTH) {
        REALS dy = Load<REALS>(rows.dy + j);
        REALS wy = Load<REALS>(rows.wy + j);
        REALS a0, a1, b0, b1;
        LoadPairs(above, Cells(rows.cell + j), a0, a1);
        LoadPairs(below, Cells(rows.cell + j), b0, b1);
        REALS v = (a0 * wy + a1 * dy) * job.wz + (b0 * wy + b1 * dy) * job.dz;
        Store(out + j, Load<REALS>(out + j) + Keep(v, Load<WHOLES>(rows.in + j)) * job.scale);
    }
}

inline REALS Root(REALS v)
{
#ifdef __AVX2__
    return _mm256_sqrt_pd(v);
#else
    return REALS{__builtin_sqrt(v[0]), __builtin_sqrt(v[1])};
#endif
}

/// The lesser of each pair; the second where one of them is no number.
inline REALS Least(REALS a, REALS b)
{
#if defined(__AVX2__)
    return _mm256_min_pd(a, b);
#elif defined(__SSE2__)
    return _mm_min_pd(a, b);
#else
    return Choose(a < b, a, b);
#endif
}

// A sum has one order, so this is as fast as additions can follow each other. The extremes have none: a first
// sample that is no number stays, later ones count for nothing, and there is no zero but +0.
void AddSamples(const double *samples, long long count, EmLANESUMS &sums)
{
    const REALS zero = {};
    REALS least = zero + sums.least;
    REALS most = -(zero + sums.most);
    double sum = sums.sum;
    double squares = sums.squares;
    for (long long i = 0; i < count / WIDTH * WIDTH; i += WIDTH) {
        REALS v = Load<REALS>(samples + i);
        least = Least(v, least);
        most = Least(-v, most);
        for (int k = 0; k < WIDTH; ++k) {
            sum += samples[i + k];
            squares += samples[i + k] * samples[i + k];
        }
    }
    for (long long i = count / WIDTH * WIDTH; i < count; ++i) {
        least = Least(zero + samples[i], least);
        most = Least(-(zero + samples[i]), most);
        sum += samples[i];
        squares += samples[i] * samples[i];
    }
    sums = {least[0], -most[0], sum, squares};
    for (int k = 1; k < WIDTH; ++k) {
        sums.least = least[k] < sums.least ? least[k] : sums.least;
        sums.most = -most[k] > sums.most ? -most[k] : sums.most;
    }
}

// Limited before it is rounded, so that every number fits; the limits are whole, so the order does not matter.
void FindIndexes(const double *samples, int count, double lo, double kScale, int last, unsigned char *indexes)
{
    const double most = last;
    for (int i = 0; i < count; ++i) {
        double v = (samples[i] - lo) * kScale;
        v = v > 0 ? v : 0;
        v = v < most ? v : most;
        int whole = static_cast<int>(v);
        indexes[i] = static_cast<unsigned char>(whole + (v > whole));
    }
}

/// The operative temperature by square roots, C: right to some parts in 10^15 where the intensity is not
/// negative.
inline REALS OperativeTemp(REALS intensity, double airTemp, double level)
{
    REALS radiant = Root(Root(intensity * (1 / 5.6687e-08) + level)) - 273.15;
    return ((airTemp + radiant) * 0.5 + airTemp) * 0.5;
}

/// The class of values that may be off by `guard`, 3 where that is in doubt, as for what is no number.
inline REALS Class(REALS v, const double (&limits)[4], double guard)
{
    const REALS zero = {};
    REALS c = Choose((v >= limits[0]) & (v <= limits[3]), zero + 1, zero + 2);
    c = Choose((v >= limits[1]) & (v <= limits[2]), zero, c);
    WHOLES sure = Abs(v) < 1e8;
    for (double limit : limits)
        sure &= Abs(v - limit) > guard;
    return Choose(sure, c, zero + 3);
}

void Judge(const EmLANEJUDGE &plan, const double *head, const double *ankle, const double *ceiling, int count,
           long long *classes)
{
    const REALS zero = {};
    for (int j = 0; j < count; j += WIDTH) {
        REALS h = Load<REALS>(head + j);
        REALS a = Load<REALS>(ankle + j);
        REALS headTemp = OperativeTemp(h, plan.airHead, plan.levelHead);
        REALS ankleTemp = OperativeTemp(a, plan.airAnkle, plan.levelAnkle);
        REALS temp = Class(headTemp, plan.limits[0], plan.guard[0]);
        REALS diff = Class(headTemp - ankleTemp, plan.limits[1], plan.guard[1]);
        // Below 0 the sum under the root can lose its digits.
        WHOLES known = h >= 0.0;
        temp = Choose(known, temp, zero + 3);
        diff = Choose(known & (a >= 0.0), diff, zero + 3);
        REALS inte = Class(h + Load<REALS>(ceiling + j), plan.limits[2], plan.guard[2]);
        WHOLES codes = Whole(temp + 4 * diff + 16 * inte);
        __builtin_memcpy(classes + j, &codes, sizeof codes);
    }
}
} // namespace

extern const EmLANES EM_LANES = {WIDTH, Level, Tilted, FindRows, Straight, AddSamples, FindIndexes, Judge};
