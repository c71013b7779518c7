// Random numbers for tests: the same on every machine for the same start, which the standard's distributions
// are not.
#ifndef TESTS_SUPPORT_CHANCE_H
#define TESTS_SUPPORT_CHANCE_H

#include <random>

class CHANCE
{
public:
    explicit CHANCE(unsigned start) : engine(start) {}

    /// lo to hi, both included.
    int Int(int lo, int hi)
    {
        long long span = static_cast<long long>(hi) - lo + 1;
        return static_cast<int>(lo + static_cast<long long>(engine() % static_cast<unsigned long long>(span)));
    }
    double Real(double lo, double hi)
    {
        return lo + (hi - lo) * (static_cast<double>(engine()) / 4294967296.0);
    }
    bool One(int in) { return Int(1, in) == 1; } // true once in so many times
    template <class T, size_t N>
    const T &Of(const T (&values)[N])
    {
        return values[Int(0, static_cast<int>(N) - 1)];
    }

private:
    std::mt19937 engine;
};

#endif
