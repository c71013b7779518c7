// A fast road beside its plain twin in the same run: both are timed and summed up, and the sums must be equal.
#ifndef BENCHMARKS_TWIN_H
#define BENCHMARKS_TWIN_H

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <functional>
#include <map>
#include <string>

/// Processor time of this thread, kernel included: the machine may have other work.
inline double Seconds()
{
    timespec t;
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &t);
    return static_cast<double>(t.tv_sec) + 1e-9 * static_cast<double>(t.tv_nsec);
}

enum : unsigned long long { SUM_START = 1469598103934665603ULL };

inline unsigned long long Mix(unsigned long long sum, unsigned long long value)
{
    return (sum ^ value) * 1099511628211ULL;
}

/// What a twin took and came to.
struct Twin {
    double seconds = 1e9; // least of its runs
    unsigned long long sum = 0;
};

/// Times `work`, the twin's or that which is set beside it. The twin comes first. The counter "times" is the
/// ratio to the twin; where the sums differ the program ends with an error.
/// @param key  the same for a twin and what stands beside it
inline void Measure(benchmark::State &state, const std::string &key, bool twin,
                    const std::function<void()> &work, const std::function<unsigned long long()> &sum)
{
    static std::map<std::string, Twin> twins;
    double least = 1e9;
    for (auto _ : state) {
        double start = Seconds();
        work();
        least = std::min(least, Seconds() - start);
    }
    unsigned long long end = sum();
    if (twin) {
        twins[key] = {std::min(least, twins[key].seconds), end};
    } else if (twins.count(key) == 0) {
        state.SkipWithError("the plain twin must run in the same run");
        return;
    } else if (end != twins[key].sum) {
        fprintf(stderr, "%s differs from its plain twin\n", key.c_str());
        exit(1);
    }
    state.counters["times"] = twins[key].seconds / least;
}

#endif
