// Geometry in three dimensions: points and vectors, lines, planes, affine transforms, polar coordinates and
// intersections. All values are doubles, all angles radians. Plain values of at most twelve doubles, passed and
// returned by copy. Bad input (a line without direction, a flat frame) is a fault of the program: assertion.
#ifndef LIB_AG_H
#define LIB_AG_H

struct AgCYLINDRIC;
struct AgSPHERIC;

inline constexpr double AgPI = 3.14159265358979323846;

/// A point, also used as a vector.
struct AgPOINT {
    double x = 0;
    double y = 0;
    double z = 0;

    constexpr AgPOINT() = default;
    constexpr AgPOINT(double aX, double aY, double aZ = 0) : x(aX), y(aY), z(aZ) {}
    AgPOINT(const AgCYLINDRIC &c);
    AgPOINT(const AgSPHERIC &s); // theta counts from the z axis

    AgPOINT &operator+=(const AgPOINT &b);
    AgPOINT &operator-=(const AgPOINT &b);
    AgPOINT &operator*=(double f);
    AgPOINT &operator/=(double f);
    AgPOINT &operator%=(const AgPOINT &b); // cross product
    double Length() const;
};

using AgVECTOR = AgPOINT; // where a direction or a size is meant

AgPOINT operator+(const AgPOINT &a, const AgPOINT &b);
AgPOINT operator-(const AgPOINT &a, const AgPOINT &b);
AgPOINT operator-(const AgPOINT &a);
AgPOINT operator*(const AgPOINT &a, double f);
AgPOINT operator*(double f, const AgPOINT &a);
AgPOINT operator/(const AgPOINT &a, double f);
AgPOINT operator%(const AgPOINT &a, const AgPOINT &b); // cross product
double operator*(const AgPOINT &a, const AgPOINT &b);  // scalar product
/// Equal if no coordinate differs by more than AgTolerance.
bool operator==(const AgPOINT &a, const AgPOINT &b);
bool operator!=(const AgPOINT &a, const AgPOINT &b);
/// acos(a . b / (|a| * |b|)), 0 to pi; NaN if one has no length.
double Angle(const AgPOINT &a, const AgPOINT &b);

inline constexpr AgPOINT AgE0{0, 0, 0};
inline constexpr AgPOINT AgE1{1, 0, 0};
inline constexpr AgPOINT AgE2{0, 1, 0};
inline constexpr AgPOINT AgE3{0, 0, 1};

/// What counts as 0 in comparisons and in decisions on rank; 1e-13 until it is set.
extern double AgTolerance;
void AgSetTolerance(double tolerance); // its absolute value

struct AgCYLINDRIC {
    double r = 0;
    double phi = 0; // (-pi, pi], 0 on the axis
    double z = 0;

    AgCYLINDRIC() = default;
    AgCYLINDRIC(double aR, double aPhi, double aZ) : r(aR), phi(aPhi), z(aZ) {}
    AgCYLINDRIC(const AgPOINT &p);
};

struct AgSPHERIC {
    double r = 0;
    double phi = 0;   // (-pi, pi], 0 on the axis
    double theta = 0; // from the z axis, 0 to pi

    AgSPHERIC() = default;
    AgSPHERIC(double aR, double aPhi, double aTheta) : r(aR), phi(aPhi), theta(aTheta) {}
    AgSPHERIC(const AgPOINT &p);
};

bool operator==(const AgCYLINDRIC &a, const AgCYLINDRIC &b);
bool operator!=(const AgCYLINDRIC &a, const AgCYLINDRIC &b);
bool operator==(const AgSPHERIC &a, const AgSPHERIC &b);
bool operator!=(const AgSPHERIC &a, const AgSPHERIC &b);

struct AgLINE {
    AgPOINT point;
    AgPOINT dir;

    AgLINE() : dir(AgE1) {}
    AgLINE(const AgPOINT &aPoint, const AgPOINT &aS);
    AgPOINT At(double t) const { return point + dir * t; }
};

struct AgPLANE {
    AgPOINT point;
    AgPOINT s1;
    AgPOINT s2;

    AgPLANE() : s1(AgE1), s2(AgE2) {}
    AgPLANE(const AgPOINT &aPoint, const AgPOINT &aS1, const AgPOINT &aS2);
    AgPLANE(const AgPOINT &aPoint, const AgPOINT &aN); // from a normal of any length
    AgPOINT At(double u, double v) const { return point + s1 * u + s2 * v; }
    AgPOINT Normal() const; // of length 1
};

/// An affine map, a 3 by 4 matrix. Each operation applies after what the transform already does.
class AgTRANSFORM
{
public:
    void Reset();
    void Translate(double x, double y, double z);
    void Translate(const AgPOINT &by) { Translate(by.x, by.y, by.z); }
    void Scale(double x, double y, double z);
    void Scale(const AgPOINT &by) { Scale(by.x, by.y, by.z); }
    void RotateX(double a);
    void RotateY(double a);
    void RotateZ(double a);
    void Project(int plane); // drops z for plane 0, y for 1, x for 2
    void Mirror(int plane);  // negates z for plane 0, y for 1, x for 2
    /// From the coordinates of a frame with these axes to the outer ones.
    void ToFrame(const AgPOINT &origin, const AgPOINT &a, const AgPOINT &b, const AgPOINT &c);
    /// From the outer coordinates to those of the frame; its axes must be independent.
    void FromFrame(const AgPOINT &origin, const AgPOINT &a, const AgPOINT &b, const AgPOINT &c);

    /// On the hot path of the table look-ups: sums run from left to right, the translation last.
    AgPOINT operator*(const AgPOINT &p) const
    {
        return {m[0][0] * p.x + m[0][1] * p.y + m[0][2] * p.z + m[0][3],
                m[1][0] * p.x + m[1][1] * p.y + m[1][2] * p.z + m[1][3],
                m[2][0] * p.x + m[2][1] * p.y + m[2][2] * p.z + m[2][3]};
    }
    AgLINE operator*(const AgLINE &l) const;
    AgPLANE operator*(const AgPLANE &p) const;

    /// Row i of the matrix: three linear coefficients and the translation.
    const double *Row(int i) const { return m[i]; }

private:
    double m[3][4] = {{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}};

    void Apply(const double (&op)[3][4]);
    void ScaleAxis(int plane, double factor); // the axis across the plane
    AgPOINT Direction(const AgPOINT &v) const;
};

/// The determinant of the frame with these axes, a . (b % c): 0 if they are not independent.
double AgDeterminant(const AgPOINT &a, const AgPOINT &b, const AgPOINT &c);

/// The working store of the intersection solver: three equations in up to three unknowns.
class AgSYSTEM
{
public:
    AgSYSTEM() = default;
    AgSYSTEM(const AgSYSTEM &) = delete;
    AgSYSTEM &operator=(const AgSYSTEM &) = delete;

    /// Coefficient (or, for j = 3, right-hand side) j of equation i.
    double &At(int i, int j);
    /// Sets coefficient j of the three equations, or for j = 3 their right-hand sides.
    void Column(int j, const AgPOINT &v);
    void Swap(int i, int j); // equations
    /// Reduces to triangular form by columns 0 and 1 and tells the rank, or 0 if the equations contradict.
    int Reduce();
    /// Solves the reduced system for the first k unknowns, 1 <= k <= 3; its rank must be k.
    void Solve(int k);
    double Result(int i) const;

private:
    double a[3][4] = {};
    double *row[3] = {a[0], a[1], a[2]}; // views into a; rows swap without copying
    double result[3] = {};

    void Eliminate(int i, int k);
    int Rank() const;
};

// 1: one solution, handed back; 2: the two lie in one another; 0: they do not meet.
int Intersect(const AgLINE &a, const AgLINE &b, AgPOINT &p);
int Intersect(const AgPLANE &plane, const AgLINE &line, AgPOINT &p);
int Intersect(const AgPLANE &a, const AgPLANE &b, AgLINE &line);

#endif
