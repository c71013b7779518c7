// Damaged model files: each ends in a failure code, or loads and can be looked up. Nothing else.
#include "ker/emmodel.h"

#include "support/cdeitems.h"
#include "support/memdisk.h"
#include "support/modelfolder.h"

#include <cmath>
#include <gtest/gtest.h>

#include "lib/xon.h"

namespace
{
/// Files in memory, and the models looked up there.
class DamagedModel : public testing::Test
{
protected:
    DamagedModel() { SetModelFolder("\\mem"); }
    ~DamagedModel() override { SetModelFolder(""); }

    MemDisk memory;
};

std::string SmallModel(int depth, int extent)
{
    CHANCE chance(31);
    return ModelBytes(*RandomModel("klein", chance, depth, extent));
}

/// Loads the bytes as a model and uses it. The failure, already taken off.
XCODE Load(const std::string &bytes, CHANCE &chance)
{
    MemPut("/mem/m.gim", bytes);
    EmMODEL *model = ModelAcquire("m");
    XCODE code = xCode;
    xCode = XNULL;
    EXPECT_EQ(model != NULL, code == XNULL);
    EXPECT_TRUE(code == XNULL || code == XFREAD || code == XCDE_INVOLVED) << code;
    for (int i = 0; model != NULL && i < 8; ++i) {
        AgPOINT p(chance.Real(-4, 4), chance.Real(-4, 4), chance.Real(-1, 4));
        EXPECT_TRUE(std::isfinite(model->Value(p)) || std::fabs(model->Value(p)) > 1e300);
    }
    ModelRelease(model);
    EXPECT_EQ(MemOpenFiles(), 0);
    return code;
}

/// The technical data alone have a reader of their own way.
XCODE LoadInfo()
{
    const EmMODELINFO *info = ModelInfo("m");
    XCODE code = xCode;
    xCode = XNULL;
    EXPECT_EQ(info != NULL, code == XNULL);
    return code;
}
} // namespace

TEST_F(DamagedModel, TruncatedAtAnyByteIsRefusedUnlessOnlySectionEndsAreMissing)
{
    CHANCE chance(1);
    const std::string bytes = SmallModel(3, 3);
    for (size_t length = 0; length <= bytes.size(); ++length) {
        // The last bytes are the ends of the last layer and of the table.
        XCODE code = Load(bytes.substr(0, length), chance);
        EXPECT_EQ(code, length + 2 >= bytes.size() ? XNULL : XFREAD) << length << " of " << bytes.size();
    }
}

TEST_F(DamagedModel, ChangedInItsItemsEndsInAFailureOrLoads)
{
    CHANCE chance(2);
    const CdeITEMS sound = DecodeItems(SmallModel(2, 2));
    int codes[3] = {};
    for (int i = 0; i < 60000; ++i) {
        CdeITEMS items = sound;
        DamageItems(items, chance);
        XCODE code = Load(EncodeItems(items), chance);
        ++codes[code == XNULL ? 0 : code == XFREAD ? 1 : 2];
        XCODE infoCode = LoadInfo();
        EXPECT_TRUE(code != XNULL || infoCode == XNULL); // what loads whole loads in part
    }
    for (int count : codes)
        EXPECT_GT(count, 1000); // the damage is neither too coarse nor too mild
}

TEST_F(DamagedModel, ChangedInItsBytesEndsInAFailureOrLoads)
{
    CHANCE chance(3);
    const std::string sound = SmallModel(2, 2);
    int codes[3] = {};
    for (int i = 0; i < 40000; ++i) {
        std::string bytes = sound;
        DamageBytes(bytes, chance);
        XCODE code = Load(bytes, chance);
        ++codes[code == XNULL ? 0 : code == XFREAD ? 1 : 2];
    }
    for (int count : codes)
        EXPECT_GT(count, 1000);
}

TEST_F(DamagedModel, NestedAMillionSectionsDeepIsWalkedWithoutAStack)
{
    CHANCE chance(4);
    CdeITEMS items = DecodeItems(SmallModel(1, 1));
    std::string open;
    for (int i = 0; i < 1000000; ++i)
        open += std::string("\xA1\0\0\0\0", 5);
    std::string bytes = EncodeItems(items);
    bytes.insert(bytes.size() - 1, open);     // in the table, behind its layers
    EXPECT_STREQ(Load(bytes, chance), XNULL); // the file merely ends early
}
