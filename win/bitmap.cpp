// A map of results has some 100,000 pixels. The limit keeps a product of two extents away from what only the
// kernel's overcommitment would grant.
#include "lib/xassert.h"
#include "win/gdi.h"
#include <algorithm>
#include <cstddef>
#include <new>

namespace
{

constexpr size_t BYTES_MAX = size_t(1) << 31;
constexpr size_t COLORS_MAX = 256; // what a byte can name

size_t BytesOf(int width, int height)
{
    ASSERT(width >= 0 && height >= 0);
    const size_t bytes = static_cast<size_t>(width) * static_cast<size_t>(height);
    if (bytes > BYTES_MAX)
        throw std::bad_alloc();
    return bytes;
}

} // namespace

TBitmap::TBitmap(int aWidth, int aHeight) : width(aWidth), height(aHeight), pixels(BytesOf(aWidth, aHeight)) {}

void TBitmap::SetPalette(const TPalette &palette)
{
    const size_t count = std::min(palette.entries.size(), COLORS_MAX);
    colors.assign(palette.entries.begin(), palette.entries.begin() + static_cast<ptrdiff_t>(count));
}
