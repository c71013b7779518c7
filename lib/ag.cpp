#include "lib/ag.h"
#include "lib/xassert.h"

#include <cmath>
#include <utility>

double AgTolerance = 1e-13;

void AgSetTolerance(double tolerance)
{
    AgTolerance = std::fabs(tolerance);
}

namespace
{
bool Near(double a, double b)
{
    return std::fabs(a - b) <= AgTolerance;
}

bool IsZero(double a)
{
    return std::fabs(a) <= AgTolerance;
}

AgPOINT Unit(const AgPOINT &v)
{
    return v / v.Length();
}

/// Angle of (x, y) from the x axis, (-pi, pi]. A point on an axis within the tolerance gets the axis's own
/// angle, so that rounding never turns pi into -pi; the origin gets 0.
double PolarAngle(double x, double y)
{
    if (IsZero(y))
        return x >= 0 ? 0 : AgPI;
    if (IsZero(x))
        return y >= 0 ? AgPI / 2 : -AgPI / 2;
    double phi = std::atan(y / x);
    if (x < 0)
        phi += y >= 0 ? AgPI : -AgPI;
    return phi;
}
} // namespace

AgPOINT::AgPOINT(const AgCYLINDRIC &c) : x(c.r * std::cos(c.phi)), y(c.r * std::sin(c.phi)), z(c.z) {}

AgPOINT::AgPOINT(const AgSPHERIC &s)
    : x(s.r * std::sin(s.theta) * std::cos(s.phi)), y(s.r * std::sin(s.theta) * std::sin(s.phi)),
      z(s.r * std::cos(s.theta))
{
}

AgPOINT &AgPOINT::operator+=(const AgPOINT &b)
{
    x += b.x;
    y += b.y;
    z += b.z;
    return *this;
}

AgPOINT &AgPOINT::operator-=(const AgPOINT &b)
{
    x -= b.x;
    y -= b.y;
    z -= b.z;
    return *this;
}

AgPOINT &AgPOINT::operator*=(double f)
{
    x *= f;
    y *= f;
    z *= f;
    return *this;
}

AgPOINT &AgPOINT::operator/=(double f)
{
    x /= f;
    y /= f;
    z /= f;
    return *this;
}

AgPOINT &AgPOINT::operator%=(const AgPOINT &b)
{
    return *this = *this % b;
}

double AgPOINT::Length() const
{
    return std::sqrt(x * x + y * y + z * z);
}

AgPOINT operator+(const AgPOINT &a, const AgPOINT &b)
{
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}

AgPOINT operator-(const AgPOINT &a, const AgPOINT &b)
{
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}

AgPOINT operator-(const AgPOINT &a)
{
    return {-a.x, -a.y, -a.z};
}

AgPOINT operator*(const AgPOINT &a, double f)
{
    return {a.x * f, a.y * f, a.z * f};
}

AgPOINT operator*(double f, const AgPOINT &a)
{
    return a * f;
}

AgPOINT operator/(const AgPOINT &a, double f)
{
    return {a.x / f, a.y / f, a.z / f};
}

AgPOINT operator%(const AgPOINT &a, const AgPOINT &b)
{
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

double operator*(const AgPOINT &a, const AgPOINT &b)
{
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

bool operator==(const AgPOINT &a, const AgPOINT &b)
{
    return Near(a.x, b.x) && Near(a.y, b.y) && Near(a.z, b.z);
}

bool operator!=(const AgPOINT &a, const AgPOINT &b)
{
    return !(a == b);
}

double Angle(const AgPOINT &a, const AgPOINT &b)
{
    double cosine = a * b / (a.Length() * b.Length());
    // Rounding may carry the cosine of parallel vectors, such as (1, 1, 1) with itself, past 1.
    return std::acos(cosine > 1 ? 1 : cosine < -1 ? -1 : cosine);
}

AgCYLINDRIC::AgCYLINDRIC(const AgPOINT &p)
    : r(std::sqrt(p.x * p.x + p.y * p.y)), phi(PolarAngle(p.x, p.y)), z(p.z)
{
}

AgSPHERIC::AgSPHERIC(const AgPOINT &p)
    : r(p.Length()), phi(PolarAngle(p.x, p.y)), theta(IsZero(r) ? 0 : std::acos(p.z / r))
{
}

bool operator==(const AgCYLINDRIC &a, const AgCYLINDRIC &b)
{
    return Near(a.r, b.r) && Near(a.phi, b.phi) && Near(a.z, b.z);
}

bool operator!=(const AgCYLINDRIC &a, const AgCYLINDRIC &b)
{
    return !(a == b);
}

bool operator==(const AgSPHERIC &a, const AgSPHERIC &b)
{
    return Near(a.r, b.r) && Near(a.phi, b.phi) && Near(a.theta, b.theta);
}

bool operator!=(const AgSPHERIC &a, const AgSPHERIC &b)
{
    return !(a == b);
}

AgLINE::AgLINE(const AgPOINT &aPoint, const AgPOINT &aS) : point(aPoint), dir(aS)
{
    ASSERT(aS != AgE0);
}

AgPLANE::AgPLANE(const AgPOINT &aPoint, const AgPOINT &aS1, const AgPOINT &aS2)
    : point(aPoint), s1(aS1), s2(aS2)
{
    ASSERT(aS1 % aS2 != AgE0);
}

AgPLANE::AgPLANE(const AgPOINT &aPoint, const AgPOINT &aN) : point(aPoint)
{
    ASSERT(aN != AgE0);
    AgPOINT help(1, 1, 1); // anything well away from the normal
    if (std::fabs(Angle(help, aN) - AgPI / 2) > AgPI / 4)
        help.x = -1;
    s2 = Unit(aN % help);
    s1 = Unit(s2 % aN);
}

AgPOINT AgPLANE::Normal() const
{
    return Unit(s1 % s2);
}

void AgTRANSFORM::Reset()
{
    *this = AgTRANSFORM();
}

void AgTRANSFORM::Translate(double x, double y, double z)
{
    Apply({{1, 0, 0, x}, {0, 1, 0, y}, {0, 0, 1, z}});
}

void AgTRANSFORM::Scale(double x, double y, double z)
{
    Apply({{x, 0, 0, 0}, {0, y, 0, 0}, {0, 0, z, 0}});
}

void AgTRANSFORM::RotateX(double a)
{
    double c = std::cos(a);
    double s = std::sin(a);
    Apply({{1, 0, 0, 0}, {0, c, -s, 0}, {0, s, c, 0}});
}

void AgTRANSFORM::RotateY(double a)
{
    double c = std::cos(a);
    double s = std::sin(a);
    Apply({{c, 0, s, 0}, {0, 1, 0, 0}, {-s, 0, c, 0}});
}

void AgTRANSFORM::RotateZ(double a)
{
    double c = std::cos(a);
    double s = std::sin(a);
    Apply({{c, -s, 0, 0}, {s, c, 0, 0}, {0, 0, 1, 0}});
}

void AgTRANSFORM::Project(int plane)
{
    ScaleAxis(plane, 0);
}

void AgTRANSFORM::Mirror(int plane)
{
    ScaleAxis(plane, -1);
}

void AgTRANSFORM::ScaleAxis(int plane, double factor)
{
    Scale(plane == 2 ? factor : 1, plane == 1 ? factor : 1, plane == 0 ? factor : 1);
}

void AgTRANSFORM::ToFrame(const AgPOINT &origin, const AgPOINT &a, const AgPOINT &b, const AgPOINT &c)
{
    Apply({{a.x, b.x, c.x, origin.x}, {a.y, b.y, c.y, origin.y}, {a.z, b.z, c.z, origin.z}});
}

void AgTRANSFORM::FromFrame(const AgPOINT &origin, const AgPOINT &a, const AgPOINT &b, const AgPOINT &c)
{
    double D = AgDeterminant(a, b, c);
    ASSERT(D != 0);
    // The rows of the inverse are its cofactors, written as cross products of the axes, each divided by D; the
    // translation takes the finished rows.
    AgPOINT u = b % c / D;
    AgPOINT v = c % a / D;
    AgPOINT w = a % b / D;
    Apply({{u.x, u.y, u.z, -(u * origin)}, {v.x, v.y, v.z, -(v * origin)}, {w.x, w.y, w.z, -(w * origin)}});
}

AgLINE AgTRANSFORM::operator*(const AgLINE &l) const
{
    AgLINE moved; // filled by field: a projection may leave no direction
    moved.point = *this * l.point;
    moved.dir = Direction(l.dir);
    return moved;
}

AgPLANE AgTRANSFORM::operator*(const AgPLANE &p) const
{
    AgPLANE moved;
    moved.point = *this * p.point;
    moved.s1 = Direction(p.s1);
    moved.s2 = Direction(p.s2);
    return moved;
}

void AgTRANSFORM::Apply(const double (&op)[3][4])
{
    AgTRANSFORM old = *this;
    for (int i = 0; i < 3; ++i) {
        for (int j = 0; j < 4; ++j)
            m[i][j] = op[i][0] * old.m[0][j] + op[i][1] * old.m[1][j] + op[i][2] * old.m[2][j];
        m[i][3] += op[i][3];
    }
}

AgPOINT AgTRANSFORM::Direction(const AgPOINT &v) const
{
    return {m[0][0] * v.x + m[0][1] * v.y + m[0][2] * v.z, m[1][0] * v.x + m[1][1] * v.y + m[1][2] * v.z,
            m[2][0] * v.x + m[2][1] * v.y + m[2][2] * v.z};
}

double AgDeterminant(const AgPOINT &a, const AgPOINT &b, const AgPOINT &c)
{
    return a * (b % c);
}

double &AgSYSTEM::At(int i, int j)
{
    ASSERT(i >= 0 && i < 3);
    ASSERT(j >= 0 && j < 4);
    return row[i][j];
}

void AgSYSTEM::Swap(int i, int j)
{
    ASSERT(i >= 0 && i < 3);
    ASSERT(j >= 0 && j < 3);
    std::swap(row[i], row[j]);
}

int AgSYSTEM::Reduce()
{
    for (int k = 0; k < 2; ++k) {
        int pivot = k;
        for (int i = k + 1; i < 3; ++i)
            if (std::fabs(row[i][k]) > std::fabs(row[pivot][k]))
                pivot = i;
        Swap(k, pivot);
        for (int i = k + 1; i < 3; ++i)
            if (row[i][k] != 0)
                Eliminate(i, k);
    }
    return Rank();
}

void AgSYSTEM::Eliminate(int i, int k)
{
    double f = row[i][k] / row[k][k];
    row[i][k] = 0;
    for (int j = k + 1; j < 4; ++j)
        row[i][j] -= f * row[k][j];
}

int AgSYSTEM::Rank() const
{
    for (int count = 3; count > 0; --count) {
        const double *last = row[count - 1];
        if (!IsZero(last[count - 1]))
            return count;
        if (!IsZero(last[3]))
            return 0;
    }
    return 0;
}

void AgSYSTEM::Solve(int k)
{
    ASSERT(k >= 1 && k <= 3);
    for (int i = k - 1; i >= 0; --i) {
        result[i] = row[i][3];
        for (int j = i + 1; j < k; ++j)
            result[i] -= row[i][j] * result[j];
        result[i] /= row[i][i];
    }
}

double AgSYSTEM::Result(int i) const
{
    ASSERT(i >= 0 && i < 3);
    return result[i];
}

void AgSYSTEM::Column(int j, const AgPOINT &v)
{
    At(0, j) = v.x;
    At(1, j) = v.y;
    At(2, j) = v.z;
}

int Intersect(const AgLINE &a, const AgLINE &b, AgPOINT &p)
{
    AgSYSTEM system; // two unknowns; the third column stays 0 and never counts for the rank
    system.Column(0, a.dir);
    system.Column(1, -b.dir);
    system.Column(3, b.point - a.point);
    int rank = system.Reduce();
    if (rank != 2)
        return rank == 1 ? 2 : 0;
    system.Solve(2);
    p = a.At(system.Result(0));
    return 1;
}

int Intersect(const AgPLANE &plane, const AgLINE &line, AgPOINT &p)
{
    AgSYSTEM system;
    system.Column(0, plane.s1);
    system.Column(1, plane.s2);
    system.Column(2, -line.dir);
    system.Column(3, line.point - plane.point);
    int rank = system.Reduce();
    if (rank != 3)
        return rank == 2 ? 2 : 0;
    system.Solve(3);
    p = line.At(system.Result(2));
    return 1;
}

int Intersect(const AgPLANE &a, const AgPLANE &b, AgLINE &line)
{
    AgPOINT n = a.Normal();
    AgPOINT dir = IsZero(b.s1 * n) ? b.s1 + b.s2 : b.s1;
    AgPOINT p;
    int found = Intersect(a, AgLINE(b.point, dir), p);
    if (found != 1)
        return found;
    AgPOINT common = n % b.Normal();
    if (common.Length() == 0) // parallel within rounding, though the long axis still met the other plane
        return IsZero((b.point - a.point) * n) ? 2 : 0;
    line = AgLINE(p, Unit(common));
    return 1;
}
