// Benchmarks of what a window shows.
#ifndef BENCHMARKS_SCREEN_H
#define BENCHMARKS_SCREEN_H

#include "twin.h"
#include "win/testdoor.h"

constexpr TSize WINDOW = {1280, 900}; // px

inline unsigned long long PixelSum(TWindow &window, unsigned long long sum = SUM_START)
{
    for (TColor c : testdoor::Pixels(window))
        sum = Mix(sum, c.red * 65536ULL + c.green * 256ULL + c.blue);
    return sum;
}

/// All benchmarks of the program; no screen is needed.
inline int RunOffScreen(int argc, char **argv)
{
    setenv("QT_QPA_PLATFORM", "offscreen", 0);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}

#endif
