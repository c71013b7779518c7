// Hall files from a fuzzer: each fails with a code of its own or opens as a hall that answers all questions, is
// written, and reads again as the same bytes.
#include "support/cdeitems.h"
#include "support/memdisk.h"
#include "support/sampleroom.h"

#include "lib/xassert.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

extern "C" size_t LLVMFuzzerMutate(uint8_t *data, size_t size, size_t maxSize);

static const SAMPLEMODELS &Models()
{
    static SAMPLEMODELS models;
    return models;
}

static std::unique_ptr<EmROOM> OpenHall(const std::string &bytes)
{
    auto room = MakeEmptyRoom();
    MemPut("/mem/halle.sc1", bytes);
    CdeFILE file;
    file.Open("\\mem\\halle.sc1", "o");
    room->Read(file);
    file.Close();
    return room;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    Models(); // through a folder on the disk, so before the disk in memory
    static MemDisk memory;
    SetModelFolder("\\mem\\Modely");
    auto room = OpenHall(std::string(reinterpret_cast<const char *>(data), size));
    XCODE code = TakeFailure();
    if (code != XNULL) {
        ASSERT(code == XCDE_INVOLVED || code == XFREAD || code == XFOPEN);
        return 0;
    }
    AskAll(*room);
    std::string written = RoomBytes(*room);
    auto again = OpenHall(written);
    ASSERT(xCode == XNULL);
    ASSERT(RoomBytes(*again) == written);
    return 0;
}

// Plain mutations rarely get past the tags: a few of the inputs are sound halls, and half of the changes are
// made to items.
extern "C" size_t LLVMFuzzerCustomMutator(uint8_t *data, size_t size, size_t maxSize, unsigned start)
{
    CHANCE chance(start);
    std::string bytes(reinterpret_cast<const char *>(data), size);
    if (size < 10 || chance.One(100)) {
        bytes = RoomBytes(*MakeSampleRoom(start, Models()));
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
