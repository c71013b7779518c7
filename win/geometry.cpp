#include "win/geometry.h"
#include <algorithm>

TRect TRect::Normalized() const
{
    return {std::min(left, right), std::min(top, bottom), std::max(left, right), std::max(top, bottom)};
}

TRect TRect::operator&(const TRect &r) const
{
    const TRect common = {std::max(left, r.left), std::max(top, r.top), std::min(right, r.right),
                          std::min(bottom, r.bottom)};
    return common.IsEmpty() ? TRect() : common;
}

TRect TRect::operator|(const TRect &r) const
{
    if (r.IsEmpty())
        return *this;
    if (IsEmpty())
        return r;
    return {std::min(left, r.left), std::min(top, r.top), std::max(right, r.right), std::max(bottom, r.bottom)};
}
