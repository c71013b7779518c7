// What a recorded plan shows: its frame among the rectangles, and the swatches of its colour table. Whatever
// stands on the plan is drawn behind them.
#ifndef TESTS_USR_ZULPLANCASE_H
#define TESTS_USR_ZULPLANCASE_H

#include "zulmapcase.h"

#include <sstream>

inline std::vector<std::string> Lines(const std::string &calls)
{
    std::vector<std::string> lines;
    std::istringstream in(calls);
    for (std::string line; std::getline(in, line);)
        lines.push_back(line);
    return lines;
}

/// Filled rectangles before the frame, which is the first one without a brush.
inline size_t Swatches(const TPlaceDC &dc)
{
    size_t count = 0;
    for (const std::string &line : Lines(dc.calls)) {
        if (line.rfind("Rect", 0) != 0)
            continue;
        if (line.find("brush none") != std::string::npos)
            break;
        ++count;
    }
    return count;
}

inline TRect Frame(const TPlaceDC &dc)
{
    size_t at = Swatches(dc);
    return at < dc.rects.size() ? dc.rects[at] : TRect();
}

#endif
