#include "win/resources.h"

#include "win/dc.h"
#include "win/metafile.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace
{
const ResTABLES *tablesInUse = NULL;

/// The entry of a table sorted by number, NULL where there is none.
template <class ENTRY>
const ENTRY *FindEntry(const ENTRY *entries, int count, int ENTRY::*number, int wanted)
{
    const ENTRY *end = entries + count;
    const ENTRY *found =
        std::lower_bound(entries, end, wanted, [number](const ENTRY &e, int id) { return e.*number < id; });
    return found != end && found->*number == wanted ? found : NULL;
}

/// The pixels of a metafile on a ground of one colour, row by row.
std::vector<TColor> PaintOn(const TMetafile &picture, TSize size, int dpi, TColor ground)
{
    TMemoryDC dc(size, dpi);
    TRect all = {0, 0, size.cx, size.cy};
    dc.FillRect(all, SolidBrush(ground));
    picture.Play(dc, all);
    std::vector<TColor> pixels;
    pixels.reserve(static_cast<size_t>(size.cx) * static_cast<size_t>(size.cy));
    for (int y = 0; y < size.cy; ++y)
        for (int x = 0; x < size.cx; ++x)
            pixels.push_back(dc.Pixel({x, y}));
    return pixels;
}

/// What a pixel covers shows in how little of a white ground remains compared with a black one.
uint32_t PixelOver(TColor onBlack, TColor onWhite)
{
    auto part = [](uint8_t black, uint8_t white) { return 255 - std::clamp(white - black, 0, 255); };
    int alpha = std::max(
        {part(onBlack.red, onWhite.red), part(onBlack.green, onWhite.green), part(onBlack.blue, onWhite.blue)});
    auto limited = [alpha](uint8_t channel) { return static_cast<uint32_t>(std::min<int>(channel, alpha)); };
    return static_cast<uint32_t>(alpha) << 24 | limited(onBlack.red) << 16 | limited(onBlack.green) << 8 |
           limited(onBlack.blue);
}
} // namespace

const ResTABLES *SetResourceTables(const ResTABLES *tables)
{
    return std::exchange(tablesInUse, tables);
}

const ResMENU *FindMenu(int id)
{
    return tablesInUse ? FindEntry(tablesInUse->menus, tablesInUse->menuCount, &ResMENU::id, id) : NULL;
}

const char *FindAccelerator(int command)
{
    if (!tablesInUse)
        return NULL;
    const ResACCEL *found =
        FindEntry(tablesInUse->accels, tablesInUse->accelCount, &ResACCEL::command, command);
    return found ? found->key : NULL;
}

std::span<const ResACCEL> Accelerators()
{
    if (!tablesInUse)
        return {};
    return {tablesInUse->accels, static_cast<size_t>(tablesInUse->accelCount)};
}

const ResPICTURE *FindPicture(int id)
{
    return tablesInUse ? FindEntry(tablesInUse->pictures, tablesInUse->pictureCount, &ResPICTURE::id, id)
                       : NULL;
}

const ResDIALOG *FindDialog(int id)
{
    return tablesInUse ? FindEntry(tablesInUse->dialogs, tablesInUse->dialogCount, &ResDIALOG::id, id) : NULL;
}

TDrawnPicture DrawPicture(int id, double scale)
{
    TDrawnPicture drawn;
    const ResPICTURE *picture = FindPicture(id);
    TMetafile metafile;
    if (!picture || !metafile.ParseEnhanced(picture->bytes, picture->size))
        return drawn;
    auto pixels = [scale](int length) { return static_cast<int>(std::lround(length * scale)); };
    TSize size = {std::clamp(pixels(picture->width), 1, PICTURE_MAX),
                  std::clamp(pixels(picture->height), 1, PICTURE_MAX)};
    int dpi = std::max(1, pixels(96));
    std::vector<TColor> onBlack = PaintOn(metafile, size, dpi, WIN_BLACK);
    std::vector<TColor> onWhite = PaintOn(metafile, size, dpi, WIN_WHITE);
    drawn.pixels.reserve(onBlack.size());
    std::transform(onBlack.begin(), onBlack.end(), onWhite.begin(), std::back_inserter(drawn.pixels),
                   PixelOver);
    drawn.size = size;
    drawn.hot = {pixels(picture->hotX), pixels(picture->hotY)};
    return drawn;
}
