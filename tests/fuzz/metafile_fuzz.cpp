// Metafiles from a fuzzer, the first byte telling the kind: each is refused and leaves an empty picture, or
// plays in any size within the numbers of a drawing surface, with the context given back as it was.
#include "support/countdc.h"
#include "support/metawriter.h"

#include "lib/xassert.h"
#include "win/metafile.h"

#include <algorithm>
#include <climits>
#include <cstddef>
#include <cstdint>
#include <cstring>

extern "C" size_t LLVMFuzzerMutate(uint8_t *data, size_t size, size_t maxSize);

static void PlayInto(const TMetafile &metafile, const TRect &rect)
{
    TCountDC dc;
    dc.SetMix(WIN_MIX_XOR);
    metafile.Play(dc, rect);
    ASSERT(dc.shapes <= static_cast<size_t>(metafile.RecordCount()) && dc.others == 0);
    ASSERT(dc.State().mix == WIN_MIX_XOR && !dc.State().clipped && dc.State().pen == TPen());
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    if (size == 0)
        return 0;
    TMetafile metafile;
    const bool narrow = (data[0] & 1) != 0;
    const TSize extent = {(data[0] & 2) * 1000, (data[0] & 4) * 1000};
    const bool sound =
        narrow ? metafile.ParsePlain(data + 1, size - 1, extent) : metafile.ParseEnhanced(data + 1, size - 1);
    ASSERT(sound || (metafile.IsEmpty() && metafile.Frame() == TSize()));
    ASSERT(metafile.Frame().cx >= 0 && metafile.Frame().cy >= 0);
    ASSERT(static_cast<size_t>(metafile.RecordCount()) <= size / 6);
    PlayInto(metafile, {10, -20, 410, 280});
    PlayInto(metafile, {0, 0, 1, 1});
    PlayInto(metafile, {INT_MIN, INT_MIN, INT_MAX, INT_MAX});
    return 0;
}

// Plain mutations rarely keep lengths and counts: a few of the inputs are sound files, and half of the changes
// are made to records.
extern "C" size_t LLVMFuzzerCustomMutator(uint8_t *data, size_t size, size_t maxSize, unsigned start)
{
    CHANCE chance(start);
    std::string bytes(reinterpret_cast<const char *>(data), size);
    if (size < 10 || chance.One(100)) {
        const bool narrow = chance.One(2);
        bytes = narrow ? RandomPlain(chance) : RandomEnhanced(chance);
        bytes.insert(bytes.begin(), narrow ? '\1' : '\0');
    } else if (chance.One(2)) {
        std::string file = bytes.substr(1);
        DamageMetafile(file, (bytes[0] & 1) != 0, chance);
        bytes.replace(1, std::string::npos, file);
    } else {
        return LLVMFuzzerMutate(data, size, maxSize);
    }
    const size_t length = std::min(bytes.size(), maxSize);
    memcpy(data, bytes.data(), length);
    return length;
}
