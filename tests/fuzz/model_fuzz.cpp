// Model files from a fuzzer: each fails with a code of its own, or loads as a table that can be looked up, and
// is saved and loaded again as the same bytes.
#include "support/memdisk.h"
#include "support/modelfolder.h"

#include "lib/xassert.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

extern "C" size_t LLVMFuzzerMutate(uint8_t *data, size_t size, size_t maxSize);

static void LookUp(const EmMODEL &model)
{
    int depth = model.Grid().Depth();
    for (double z = -1; z <= std::min(depth, 20) + 1; z += 0.75) {
        for (double x = -5; x <= 5; x += 1.25)
            ASSERT(model.Value(AgPOINT(x, x / 2, z)) == model.Value(AgPOINT(x, -x / 2, z)));
    }
    const double far[] = {1e300, -1e300, 2147483648.0, -2147483649.0};
    for (double v : far)
        ASSERT(model.Value(AgPOINT(v, 0, 1)) == 0 && model.Value(AgPOINT(0, v, 1)) == 0 &&
               model.Value(AgPOINT(0, 0, v)) == 0);
}

static void SaveAndReload(const EmMODEL &model)
{
    ModelSave(&model);
    ASSERT(xCode == XNULL);
    std::string written = MemGet("/mem/m.gim");
    EmMODEL again("m");
    ASSERT(xCode == XNULL);
    ModelSave(&again);
    ASSERT(xCode == XNULL);
    ASSERT(MemGet("/mem/m.gim") == written);
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static MemDisk memory;
    SetModelFolder("\\mem");
    MemPut("/mem/m.gim", std::string(reinterpret_cast<const char *>(data), size));
    EmMODEL *model = ModelAcquire("m");
    XCODE code = xCode;
    xCode = XNULL;
    ASSERT(code == XNULL || code == XCDE_INVOLVED || code == XFREAD);
    ASSERT((model != NULL) == (code == XNULL));
    ModelInfo("m");
    ASSERT(xCode == XNULL || code != XNULL); // what loads whole loads in part
    xCode = XNULL;
    if (model != NULL) {
        LookUp(*model);
        SaveAndReload(*model);
    }
    ModelRelease(model);
    ASSERT(MemOpenFiles() == 0);
    return 0;
}

// Plain mutations rarely get past the tags: a few of the inputs are sound models, and half of the changes are
// made to items.
extern "C" size_t LLVMFuzzerCustomMutator(uint8_t *data, size_t size, size_t maxSize, unsigned start)
{
    CHANCE chance(start);
    std::string bytes(reinterpret_cast<const char *>(data), size);
    if (size < 10 || chance.One(100)) {
        bytes = ModelBytes(*RandomModel("m", chance, chance.Int(1, 4), 4));
    } else if (chance.One(2)) {
        CdeITEMS items = DecodeItems(bytes);
        DamageItems(items, chance);
        bytes = EncodeItems(items);
    } else {
        return LLVMFuzzerMutate(data, size, maxSize);
    }
    size_t length = std::min(bytes.size(), maxSize);
    memcpy(data, bytes.data(), length);
    return length;
}
