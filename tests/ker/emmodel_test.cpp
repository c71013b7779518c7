// The table of a model: its checks, its look-up and its file.
#include "ker/emmodel.h"

#include "support/cdeitems.h"
#include "support/chance.h"
#include "support/child.h"
#include "support/fault.h"
#include "support/memdisk.h"
#include "support/modelfolder.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

#include "lib/xon.h"

namespace
{
const char FILE_OF_GRID[] = "ker/emmodel.cpp";

/// A table with one layer below, both of the same extents, all cells `v`.
void FillGrid(EmGRID &grid, int rz, int rx, int ry, double v)
{
    grid.Alloc(rz);
    for (int iz = 0; iz <= rz; ++iz) {
        grid.AllocLayer(iz, rx, ry);
        for (int ix = -rx; ix <= rx; ++ix) {
            for (int iy = 0; iy <= ry; ++iy)
                grid.Set(ix, iy, iz, v);
        }
    }
}

/// The look-up as its definition says it, on the checked operations.
double PlainValue(const EmGRID &grid, const AgPOINT &p)
{
    if (!(p.z >= 0) || !(std::trunc(p.z) < grid.Depth()))
        return 0;
    int iz = static_cast<int>(p.z);
    for (int l = iz; l <= iz + 1; ++l) {
        int rx, ry;
        grid.Layer(l, &rx, &ry);
        if (!(std::trunc(std::fabs(p.y)) < ry) || !(std::trunc(std::fabs(p.x)) < rx))
            return 0;
    }
    int ix = static_cast<int>(std::floor(p.x));
    int iy = static_cast<int>(std::fabs(p.y));
    double dx = p.x - ix, dy = std::fabs(p.y) - iy, dz = p.z - iz;
    double alongX[2][2], alongY[2];
    for (int l = 0; l < 2; ++l) {
        for (int row = 0; row < 2; ++row)
            alongX[l][row] =
                grid.Get(ix, iy + row, iz + l) * (1 - dx) + grid.Get(ix + 1, iy + row, iz + l) * dx;
        alongY[l] = alongX[l][0] * (1 - dy) + alongX[l][1] * dy;
    }
    return alongY[0] * (1 - dz) + alongY[1] * dz;
}

double RandomCoordinate(CHANCE &chance, double lo, double hi)
{
    static const double edges[] = {-0.0,
                                   1e300,
                                   -1e300,
                                   2147483648.0,
                                   -2147483649.0,
                                   std::numeric_limits<double>::infinity(),
                                   -std::numeric_limits<double>::infinity(),
                                   std::numeric_limits<double>::quiet_NaN(),
                                   5e-324,
                                   -5e-324};
    if (chance.One(12))
        return chance.Of(edges);
    double value = chance.Real(lo, hi);
    return chance.One(3) ? std::round(value * 2) / 2 : value;
}
} // namespace

TEST(Grid, AChecksItsUseByAssertionsWithTheirTexts)
{
    EmGRID empty;
    EmGRID grid;
    grid.Alloc(2);
    grid.AllocLayer(0, 3, 4);
    MemDisk memory;
    struct {
        const char *condition;
        std::function<void()> body;
    } rows[] = {
        {"arz > 0", [&] { empty.Alloc(0); }},
        {"data != NULL", [&] { empty.AllocLayer(0, 1, 1); }},
        {"iz >= 0 && iz <= rz", [&] { grid.AllocLayer(3, 1, 1); }},
        {"iz >= 0 && iz <= rz", [&] { grid.AllocLayer(-1, 1, 1); }},
        {"arx > 0 && ary > 0", [&] { grid.AllocLayer(1, 0, 1); }},
        {"arx > 0 && ary > 0", [&] { grid.AllocLayer(1, 1, 0); }},
        {"data != NULL", [&] { empty.FreeLayer(0); }},
        {"iz >= 0 && iz <= rz", [&] { grid.FreeLayer(3); }},
        {"iz >= 0 && iz <= rz", [&] { grid.Set(0, 0, 3, 1); }},
        {"iz >= 0 && iz <= rz", [&] { empty.Get(0, 0, 1); }},
        {"data != NULL", [&] { empty.Get(9, -1, 0); }},
        {"abs(ix) <= l->rx", [&] { grid.Get(4, -1, 0); }},
        {"abs(ix) <= l->rx", [&] { grid.Set(-4, 0, 0, 1); }},
        {"abs(ix) <= l->rx", [&] { grid.Get(std::numeric_limits<int>::min(), 0, 0); }},
        {"iy >= 0 && iy <= l->ry", [&] { grid.Get(3, -1, 0); }},
        {"iy >= 0 && iy <= l->ry", [&] { grid.Set(-3, 5, 0, 1); }},
        {"l->F[ix] != NULL", [&] { grid.Get(0, 0, 1); }},
        {"iz >= 0 && iz <= rz", [&] { grid.Layer(-1, NULL, NULL); }},
        {"data != NULL", [&] { empty.Layer(0, NULL, NULL); }},
        {"data[iz].F != NULL", [&] { grid.Layer(1, NULL, NULL); }},
    };
    for (const auto &row : rows)
        EXPECT_TRUE(AbortsOnAssertion(row.condition, FILE_OF_GRID, row.body)) << row.condition;
    EXPECT_TRUE(AbortsOnAssertion("data != NULL", "ker/emmodel_file.cpp", [&] {
        CdeFILE file;
        file.Open("\\mem\\leer", "c");
        empty.Write(file);
    }));
}

TEST(Grid, LayersHaveExtentsOfTheirOwnAndCanBeMadeAnew)
{
    EmGRID grid;
    grid.Alloc(1);
    grid.AllocLayer(0, 2, 5);
    grid.AllocLayer(1, 7, 1);
    grid.Set(-2, 5, 0, 1.5);
    grid.Set(7, 1, 1, 2.5);
    int rx = 0, ry = 0;
    EmGRID::LAYER *layer = grid.Layer(0, &rx, &ry);
    EXPECT_EQ(rx, 2);
    EXPECT_EQ(ry, 5);
    EXPECT_EQ(layer->F[-2][5], 1.5);
    grid.AllocLayer(0, 1, 1);
    grid.Layer(0, &rx, NULL);
    EXPECT_EQ(rx, 1);
    EXPECT_EQ(grid.Get(7, 1, 1), 2.5);
    grid.FreeLayer(1);
    EXPECT_EQ(grid.Depth(), 1);
    grid.Alloc(3);
    EXPECT_EQ(grid.Depth(), 3);
    grid.Free();
    EXPECT_EQ(grid.Depth(), 0);
    EXPECT_EQ(grid.Value(AgE0), 0);
}

TEST(Grid, AllocationThatFailsHalfWayLeavesNothingOfTheLayer)
{
    EmGRID grid;
    long left = 0;
    int swept = SweepFaults(
        [&] {
            long before = LiveBlocks();
            __enter
                grid.Alloc(2); __test;
                grid.AllocLayer(1, 3, 4); __test;
            __point
                EXPECT_EQ(grid.Value(AgPOINT(0, 0, 0.5)), 0);
            __treat
            grid.Free();
            left = LiveBlocks() - before;
        },
        [&](const FaultRun &run) {
            EXPECT_EQ(run.code, run.fired ? XALLOC : XNULL);
            EXPECT_EQ(left, 0);
        });
    EXPECT_EQ(swept, 2 * 9); // the layers, the pointers, seven columns
}

TEST(GridValue, InterpolatesToTheBordersAndIsZeroFromThemOn)
{
    EmGRID grid;
    FillGrid(grid, 3, 4, 2, 8);
    struct {
        AgPOINT p;
        double value;
    } rows[] = {
        {{0, 0, 0}, 8},           {{0, 0, 2.5}, 8},          {{0, 0, 3}, 0},     {{0, 0, -1e-300}, 0},
        {{3.5, 0, 1}, 8},         {{-3.5, 0, 1}, 8},         {{4, 0, 1}, 0},     {{-4, 0, 1}, 0},
        {{0, 1.5, 1}, 8},         {{0, -1.5, 1}, 8},         {{0, 2, 1}, 0},     {{0, -2, 1}, 0},
        {{3.999, 1.999, 2.9}, 8}, {{2147483648.0, 0, 1}, 0}, {{0, 1e300, 1}, 0}, {{0, 0, 1e18}, 0},
        {{NAN, 0, 1}, 0},         {{0, NAN, 1}, 0},          {{0, 0, NAN}, 0},   {{-INFINITY, 0, 1}, 0},
        {{0, INFINITY, 1}, 0},    {{0, 0, INFINITY}, 0},     {{0, 0, -0.0}, 8},
    };
    for (const auto &row : rows)
        EXPECT_NEAR(grid.Value(row.p), row.value, 1e-14) << row.p.x << " " << row.p.y << " " << row.p.z;
}

TEST(GridValue, TakesTheColumnsOnBothSidesOfANegativeX)
{
    EmGRID grid;
    FillGrid(grid, 2, 3, 3, 0);
    grid.Set(-1, 1, 1, 10);
    EXPECT_EQ(grid.Value(AgPOINT(-0.5, 1, 1)), 5);
    EXPECT_EQ(grid.Value(AgPOINT(0.5, 1, 1)), 0);
    EXPECT_EQ(grid.Value(AgPOINT(-1, 1, 1)), 10);
    EXPECT_EQ(grid.Value(AgPOINT(-1.25, 1, 1)), 7.5);
    EXPECT_EQ(grid.Value(AgPOINT(-0.5, -1.5, 1)), grid.Value(AgPOINT(-0.5, 1.5, 1)));
    EXPECT_EQ(grid.Value(AgPOINT(-0.5, -1.5, 1)), 2.5);
    EXPECT_EQ(grid.Value(AgPOINT(-1, 1, 1.5)), 5); // the last two layers
}

TEST(GridValue, ANarrowerLayerBelowLimitsTheTable)
{
    EmGRID grid;
    grid.Alloc(3);
    const int extents[] = {5, 2, 5, 5};
    for (int iz = 0; iz <= 3; ++iz) {
        grid.AllocLayer(iz, extents[iz], extents[iz]);
        for (int ix = -extents[iz]; ix <= extents[iz]; ++ix) {
            for (int iy = 0; iy <= extents[iz]; ++iy)
                grid.Set(ix, iy, iz, 1);
        }
    }
    EXPECT_EQ(grid.Value(AgPOINT(1.5, 0, 0)), 1); // layer 0 itself is wide, but layer 1 counts too
    EXPECT_EQ(grid.Value(AgPOINT(3, 0, 0)), 0);
    EXPECT_EQ(grid.Value(AgPOINT(0, 3, 1.5)), 0);
    EXPECT_EQ(grid.Value(AgPOINT(3, 3, 2)), 1);
}

TEST(GridValue, EqualsThePlainLookUpBitForBit)
{
    CHANCE chance(2401);
    for (int table = 0; table < 60; ++table) {
        auto model = RandomModel("zufall", chance, chance.Int(1, 6), 7);
        for (int i = 0; i < 2000; ++i) {
            AgPOINT p(RandomCoordinate(chance, -8, 8), RandomCoordinate(chance, -8, 8),
                      RandomCoordinate(chance, -1, 7));
            EXPECT_EQ(model->Value(p), PlainValue(model->Grid(), p)) << p.x << " " << p.y << " " << p.z;
        }
    }
}

TEST(GridValue, IsContinuousAcrossTheBordersOfItsCells)
{
    CHANCE chance(7);
    EmGRID grid;
    FillGrid(grid, 5, 5, 5, 0);
    for (int iz = 0; iz < 5; ++iz) {
        for (int ix = -4; ix <= 4; ++ix) {
            for (int iy = 0; iy < 5; ++iy)
                grid.Set(ix, iy, iz, chance.Real(0, 100));
        }
    }
    const double step = 1e-9; // times a slope of at most 300 W/m2 a metre
    for (int i = 0; i < 3000; ++i) {
        AgPOINT border(chance.Int(-5, 5), chance.Real(-5, 5), chance.Real(0.1, 5));
        AgPOINT row(chance.Real(-5, 5), chance.Int(-5, 5), chance.Real(0.1, 5));
        AgPOINT layer(chance.Real(-5, 5), chance.Real(-5, 5), chance.Int(1, 5));
        EXPECT_NEAR(grid.Value(border - AgE1 * step), grid.Value(border + AgE1 * step), 1e-6);
        EXPECT_NEAR(grid.Value(row - AgE2 * step), grid.Value(row + AgE2 * step), 1e-6);
        EXPECT_NEAR(grid.Value(layer - AgE3 * step), grid.Value(layer + AgE3 * step), 1e-6);
    }
}

TEST(ModelFile, HoldsTheItemsOfItsFormatAndReadsBack)
{
    ModelFolder folder;
    CHANCE chance(11);
    for (int i = 0; i < 10; ++i) {
        auto model = RandomModel("Muster", chance, chance.Int(1, 5), 6);
        ModelSave(model.get());
        std::string bytes = folder.Get("Muster.gim");
        EXPECT_EQ(bytes, ModelBytes(*model));
        EmMODEL back("Muster");
        EXPECT_STREQ(back.Info()->name, "Muster");
        EXPECT_STREQ(back.Info()->description, "ein Modell");
        EXPECT_EQ(back.Info()->size, AgPOINT(1.5, 0.5, 0.25));
        EXPECT_EQ(back.Info()->radiantPart, 0.625);
        EXPECT_EQ(back.Info()->power, 20000);
        EXPECT_EQ(back.Info()->reducedPower, 12000);
        EXPECT_EQ(ModelBytes(back), bytes);
    }
}

TEST(ModelFile, ReaderSkipsWhatALaterVersionWroteBehindItsFields)
{
    ModelFolder folder;
    CdeITEMS more = CdeITEMS{ItInt(7), ItStr("neu"), ItText("lang")} +
                    ItGroup({ItReal(1), ItGroup({ItInt(2)})[0], ItEnd()});
    CdeITEMS layer{ItInt(1), ItInt(1)};
    for (int i = 0; i < 6; ++i)
        layer.push_back(ItReal(i));
    CdeITEMS infoGroup = ItGroup(CdeITEMS{ItStr("d")} + ItReals({1, 2, 3, 0.5, 0, -4}) + more);
    infoGroup[0].number = 99; // the number of a section means nothing
    CdeITEMS file = CdeITEMS{ItHeader("IE/GIM", 1)} + infoGroup +
                    ItGroup(CdeITEMS{ItInt(1)} + ItGroup(layer + more) + ItGroup(layer) + more);
    folder.Put("Neu.gim", EncodeItems(file));
    EmMODEL model("Neu");
    EXPECT_EQ(model.Info()->power, 0); // no power is a legal one, and so is a negative one
    EXPECT_EQ(model.Info()->reducedPower, -4);
    EXPECT_EQ(model.Grid().Get(1, 1, 1), 5);
    EXPECT_EQ(model.Grid().Get(-1, 1, 0), 3);
}

TEST(ModelFile, ReaderRefusesWhatNoModelHas)
{
    const CdeITEMS head{ItHeader("IE/GIM", 1)};
    const CdeITEMS info = ItGroup(CdeITEMS{ItStr("d")} + ItReals({1, 2, 3, 0.5, 100, 100}));
    auto table = [](int rz, int rx, int ry, int values, double value) {
        CdeITEMS layer =
            CdeITEMS{ItInt(rx), ItInt(ry)} + ItReals(std::vector<double>(static_cast<size_t>(values), value));
        return ItGroup(CdeITEMS{ItInt(rz)} + ItGroup(layer) + ItGroup(layer));
    };
    const double inf = std::numeric_limits<double>::infinity();
    struct {
        const char *what;
        CdeITEMS items;
        XCODE code;
    } rows[] = {
        {"sound", head + info + table(1, 1, 1, 6, 1), XNULL},
        {"empty", {}, XFREAD},
        {"no header", info + table(1, 1, 1, 6, 1), XCDE_INVOLVED},
        {"other type", CdeITEMS{ItHeader("IE/gim", 1)} + info + table(1, 1, 1, 6, 1), XCDE_INVOLVED},
        {"other version", CdeITEMS{ItHeader("IE/GIM", 2)} + info + table(1, 1, 1, 6, 1), XCDE_INVOLVED},
        {"no layer", head + info + table(0, 1, 1, 6, 1), XCDE_INVOLVED},
        {"negative depth", head + info + table(-1, 1, 1, 6, 1), XCDE_INVOLVED},
        {"huge depth", head + info + table(2147483647, 1, 1, 6, 1), XCDE_INVOLVED},
        {"depth beyond the file", head + info + table(900000, 1, 1, 6, 1), XFREAD},
        {"no columns", head + info + table(1, 0, 1, 2, 1), XCDE_INVOLVED},
        {"negative columns", head + info + table(1, -3, 1, 6, 1), XCDE_INVOLVED},
        {"no rows", head + info + table(1, 1, 0, 3, 1), XCDE_INVOLVED},
        {"lowest rows", head + info + table(1, 1, -2147483647 - 1, 6, 1), XCDE_INVOLVED},
        {"huge columns", head + info + table(1, 2147483647, 1, 6, 1), XCDE_INVOLVED},
        {"cells beyond the file", head + info + table(1, 1000000, 1000000, 6, 1), XFREAD},
        {"one value short", head + info + table(1, 1, 1, 5, 1), XCDE_INVOLVED},
        {"infinite value", head + info + table(1, 1, 1, 6, inf), XCDE_INVOLVED},
        {"value no number", head + info + table(1, 1, 1, 6, NAN), XCDE_INVOLVED},
        {"infinite power", head + ItGroup(CdeITEMS{ItStr("d")} + ItReals({1, 2, 3, 0.5, inf, 1})),
         XCDE_INVOLVED},
        {"size no number", head + ItGroup(CdeITEMS{ItStr("d")} + ItReals({NAN, 2, 3, 0.5, 1, 1})),
         XCDE_INVOLVED},
        {"integer for a real", head + ItGroup({ItStr("d"), ItInt(1)}), XCDE_INVOLVED},
        {"no table", head + info, XFREAD},
        {"no tag in a skipped part",
         head + ItGroup(CdeITEMS{ItStr("d")} + ItReals({1, 2, 3, 0.5, 1, 1}) + CdeITEMS{ItRaw("\x01")}),
         XCDE_INVOLVED},
    };
    MemDisk memory;
    SetModelFolder("\\mem");
    for (const auto &row : rows) {
        MemPut("/mem/x.gim", EncodeItems(row.items));
        EmMODEL *model = ModelAcquire("x");
        XCODE code = xCode;
        xCode = XNULL;
        EXPECT_STREQ(code, row.code) << row.what;
        EXPECT_EQ(model != NULL, code == XNULL) << row.what;
        ModelRelease(model);
    }
    SetModelFolder("");
}

TEST(ModelFile, SavingOverAModelLeavesTheFormerOneWholeWhereItFails)
{
    MemDisk memory;
    SetModelFolder("\\mem");
    CHANCE chance(5);
    auto former = RandomModel("A", chance, 2, 3);
    auto next = RandomModel("A", chance, 3, 4);
    const std::string formerBytes = ModelBytes(*former), nextBytes = ModelBytes(*next);
    ModelSave(next.get()); // the disk's own store has grown to what it needs
    long left = 0;
    int swept = SweepFaults(
        [&] {
            for (const std::string &path : MemList())
                MemErase(path);
            MemPut("/mem/A.gim", formerBytes);
        },
        [&] {
            long before = LiveBlocks();
            ModelSave(next.get());
            left = LiveBlocks() - before;
        },
        [&](const FaultRun &run) {
            if (run.kind != FAULT::UNLINK && run.kind != FAULT::SEEK) { // a half-made file may stay then
                EXPECT_EQ(left, 0) << FaultName(run.kind) << " " << run.n;
                EXPECT_EQ(MemList().size(), 1U);
            }
            EXPECT_TRUE(run.code == XNULL || run.code == XALLOC || run.code == XFCREATE || run.code == XFWRITE);
            EXPECT_EQ(MemGet("/mem/A.gim"), run.code == XNULL ? nextBytes : formerBytes);
            EXPECT_EQ(MemOpenFiles(), 0);
        });
    EXPECT_GE(swept, 8);
    SetModelFolder("");
}
