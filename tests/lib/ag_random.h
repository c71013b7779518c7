// Random points, frames and transforms for the tests of the geometry, and the comparison of points in them.
#ifndef TESTS_LIB_AG_RANDOM_H
#define TESTS_LIB_AG_RANDOM_H

#include "lib/ag.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

inline const double ROUNDING = 1e-12; // for values of about 1 after a dozen operations

inline testing::AssertionResult Close(const AgPOINT &a, const AgPOINT &b, double eps = ROUNDING)
{
    if (std::fabs(a.x - b.x) <= eps && std::fabs(a.y - b.y) <= eps && std::fabs(a.z - b.z) <= eps)
        return testing::AssertionSuccess();
    return testing::AssertionFailure() << "(" << a.x << ", " << a.y << ", " << a.z << ") is not (" << b.x
                                       << ", " << b.y << ", " << b.z << ")";
}

/// Random geometry; coordinates between -10 and 10 m.
class AgRandom
{
public:
    explicit AgRandom(unsigned start) : engine(start) {}
    double Number(double lo, double hi) { return std::uniform_real_distribution<double>(lo, hi)(engine); }
    AgPOINT Point() { return {Number(-10, 10), Number(-10, 10), Number(-10, 10)}; }
    AgPOINT Direction()
    {
        for (;;) {
            AgPOINT p = Point();
            if (p.Length() > 0.5)
                return p / p.Length();
        }
    }
    /// Three axes well away from lying in one plane.
    void Frame(AgPOINT &a, AgPOINT &b, AgPOINT &c)
    {
        do {
            a = Point();
            b = Point();
            c = Point();
        } while (std::fabs(AgDeterminant(a, b, c)) < 100);
    }
    AgTRANSFORM Transform()
    {
        AgTRANSFORM t;
        t.RotateX(Number(-4, 4));
        t.Scale(Number(0.5, 2), Number(0.5, 2), Number(0.5, 2));
        t.RotateY(Number(-4, 4));
        t.Translate(Point());
        t.RotateZ(Number(-4, 4));
        return t;
    }

private:
    std::mt19937 engine;
};

#endif
