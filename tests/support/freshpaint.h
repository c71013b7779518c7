// What the screen shows beside what it ought to show: whatever was drawn over the picture and not taken back is
// seen here.
#ifndef TESTS_SUPPORT_FRESHPAINT_H
#define TESTS_SUPPORT_FRESHPAINT_H

#include "win/testdoor.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

/// The window's pixels are those of a fresh paint of everything, which stands there afterwards.
inline testing::AssertionResult LooksFresh(TWindow &window)
{
    testdoor::Settle();
    std::vector<TColor> now = testdoor::Pixels(window);
    window.Invalidate();
    testdoor::Settle();
    std::vector<TColor> fresh = testdoor::Pixels(window);
    if (now == fresh)
        return testing::AssertionSuccess();
    size_t differing = 0;
    for (size_t i = 0; i < std::min(now.size(), fresh.size()); ++i)
        differing += !(now[i] == fresh[i]);
    return testing::AssertionFailure() << differing << " of " << now.size() << " pixels differ";
}

#endif
