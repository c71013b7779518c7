// How a table is made: from a function, smoothed, and with its gaps filled.
#include "ker/emmodel.h"

#include "support/chance.h"
#include "support/child.h"
#include "support/fault.h"
#include "support/modelfolder.h"

#include "lib/platform.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <map>
#include <vector>

#include "lib/xon.h"

namespace
{
/// A table in the plainest form: every cell by its indices.
struct PLAIN {
    int rz = 0;
    std::vector<int> rx, ry;
    std::map<std::tuple<int, int, int>, double> cells; // ix, iy, iz

    double &At(int ix, int iy, int iz) { return cells.at({ix, iy, iz}); }
    int Columns(int iz) const { return std::min({rx[At(iz - 1)], rx[At(iz)], rx[At(iz + 1)]}); }
    int Rows(int iz) const { return std::min({ry[At(iz - 1)], ry[At(iz)], ry[At(iz + 1)]}); }
    static size_t At(int iz) { return static_cast<size_t>(iz); }
};

PLAIN PlainOf(const EmGRID &grid)
{
    PLAIN plain;
    plain.rz = grid.Depth();
    for (int iz = 0; iz <= plain.rz; ++iz) {
        int rx, ry;
        grid.Layer(iz, &rx, &ry);
        plain.rx.push_back(rx);
        plain.ry.push_back(ry);
        for (int ix = -rx; ix <= rx; ++ix) {
            for (int iy = 0; iy <= ry; ++iy)
                plain.cells[{ix, iy, iz}] = grid.Get(ix, iy, iz);
        }
    }
    return plain;
}

/// The six neighbours in the order in which the table adds them.
std::vector<double> Neighbours(PLAIN &t, int ix, int iy, int iz)
{
    int before = iy == 0 ? iy + 1 : iy - 1;
    return {t.At(ix - 1, iy, iz), t.At(ix + 1, iy, iz), t.At(ix, before, iz),
            t.At(ix, iy + 1, iz), t.At(ix, iy, iz - 1), t.At(ix, iy, iz + 1)};
}

void PlainSmooth(PLAIN &t, double weight, int count)
{
    auto cell = [&](int ix, int iy, int iz) {
        double s = 0;
        for (double n : Neighbours(t, ix, iy, iz))
            s += n;
        double v = t.At(ix, iy, iz);
        if (v > 0)
            t.At(ix, iy, iz) = (1 - weight) * v + weight / 6 * s;
    };
    for (int pass = 0; pass < count; ++pass) {
        for (int iz = 1; iz <= t.rz - 1; ++iz) {
            int cx = t.Columns(iz);
            for (int iy = 0; iy <= t.Rows(iz) - 1; ++iy) {
                for (int ix = 0; ix >= -cx + 1; --ix)
                    cell(ix, iy, iz);
                for (int ix = 1; ix <= cx - 1; ++ix)
                    cell(ix, iy, iz);
            }
        }
    }
}

void PlainFillGaps(PLAIN &t, int count)
{
    for (int pass = 0; pass < count; ++pass) {
        for (int iz = 1; iz <= t.rz - 1; ++iz) {
            int cx = t.Columns(iz), cy = t.Rows(iz);
            for (int iy = 0; iy <= cy - 1; ++iy) {
                for (int ix = -cx + 1; ix <= cx - 1; ++ix) {
                    double s = 0;
                    for (double n : Neighbours(t, ix, iy, iz))
                        s += n < 0 ? 0 : n;
                    if (t.At(ix, iy, iz) == 0)
                        t.At(ix, iy, iz) = -(s / 6);
                }
            }
            for (int iy = 0; iy <= cy - 1; ++iy) {
                for (int ix = -cx + 1; ix <= cx - 1; ++ix)
                    t.At(ix, iy, iz) = std::fabs(t.At(ix, iy, iz));
            }
        }
    }
}

void ExpectSame(const EmGRID &grid, PLAIN &plain)
{
    for (const auto &[at, value] : plain.cells)
        EXPECT_EQ(grid.Get(std::get<0>(at), std::get<1>(at), std::get<2>(at)), value)
            << std::get<0>(at) << " " << std::get<1>(at) << " " << std::get<2>(at);
}

/// Falls off linearly by 1 W/m2 a metre from `peak` W/m2, at a rate of its own along each axis.
struct PYRAMID {
    double peak;
    AgPOINT rate;
    int calls = 0;
};

double Pyramid(AgPOINT p, void *arg)
{
    PYRAMID *f = static_cast<PYRAMID *>(arg);
    ++f->calls;
    return std::max(0.0, f->peak - std::fabs(p.x) * f->rate.x - std::fabs(p.y) * f->rate.y - p.z * f->rate.z);
}

double Inverse(AgPOINT p, void *)
{
    return 100 / (1 + p * p);
}

double Shifted(AgPOINT p, void *)
{
    return Inverse(AgPOINT(p.x + 3, p.y, p.z), NULL);
}

double Everywhere(AgPOINT, void *)
{
    return 5;
}

double Negative(AgPOINT p, void *)
{
    return p.z == 0 && p.x == 0 && p.y == 0 ? NAN : 0;
}

std::vector<std::string> shown;

void Show(const char *text, bool)
{
    shown.push_back(text);
}
} // namespace

TEST(ModelCompute, ReachesAsFarAsTheFieldDoesAlongTheAxes)
{
    struct {
        PYRAMID field;
        double stop;
        int rx, ry, rz;
    } rows[] = {
        {{10, {1, 1, 1}}, 1, 10, 10, 10},    // 10 - 9 is still at the threshold, 10 - 10 is not
        {{10, {1, 1, 1}}, 1.5, 9, 9, 9},     //
        {{10, {1, 2, 4}}, 1, 10, 5, 3},      //
        {{10, {100, 100, 100}}, 1, 1, 1, 1}, // never less than one metre
        {{0.5, {1, 1, 1}}, 1, 1, 1, 1},      // nor where the field is nowhere at the threshold
    };
    for (auto &row : rows) {
        EmGRID *grid;
        EmMODEL model(SomeInfo("m"), &grid);
        model.Compute(Pyramid, &row.field, row.stop);
        EXPECT_EQ(grid->Depth(), row.rz);
        for (int iz = 0; iz <= row.rz; ++iz) {
            int rx, ry;
            grid->Layer(iz, &rx, &ry);
            EXPECT_EQ(rx, row.rx);
            EXPECT_EQ(ry, row.ry);
        }
    }
}

TEST(ModelCompute, WidensToTheLayerThatReachesFarthest)
{
    // At z the field holds while x^2 + z^2 < 99: widest at z = 0 here; the mirrored half of a shifted one
    // counts too.
    EmGRID *grid;
    EmMODEL model(SomeInfo("m"), &grid);
    model.Compute(Shifted, NULL, 1);
    int rx, ry;
    grid->Layer(0, &rx, &ry);
    EXPECT_EQ(rx, 13); // to x = -12.9
    EXPECT_EQ(ry, 10);
    EXPECT_EQ(grid->Depth(), 10);
    EXPECT_EQ(grid->Get(-12, 0, 0), Shifted(AgPOINT(-12, 0, 0), NULL));
}

TEST(ModelCompute, HoldsTheFieldInsideAndZerosOnItsEdges)
{
    EmGRID *grid;
    EmMODEL model(SomeInfo("m"), &grid);
    model.Compute(Inverse, NULL, 2);
    int rx, ry, rz = grid->Depth();
    grid->Layer(0, &rx, &ry);
    ASSERT_EQ(rx, 8); // 100 / (1 + 49) is at the threshold
    for (int iz = 0; iz <= rz; ++iz) {
        for (int ix = -rx; ix <= rx; ++ix) {
            for (int iy = 0; iy <= ry; ++iy) {
                double v = Inverse(AgPOINT(ix, iy, iz), NULL);
                bool edge = std::abs(ix) == rx || iy == ry || iz == rz;
                EXPECT_EQ(grid->Get(ix, iy, iz), edge || v < 2 ? 0 : v);
            }
        }
    }
    EXPECT_EQ(model.Value(AgPOINT(2, -3, 4)), Inverse(AgPOINT(2, 3, 4), NULL));
}

TEST(ModelCompute, TellsItsProgressInTheStatusLine)
{
    StatusSink former = SetStatusSink(Show);
    shown.clear();
    PYRAMID field{10, {1, 2, 3.3}};
    EmMODEL model(SomeInfo("m"), NULL);
    model.Compute(Pyramid, &field, 1);
    SetStatusSink(former);
    std::vector<std::string> expected{"Vypocet modelu (priprava)",        "Vypocet modelu (20x10x3m - 0%)",
                                      "Vypocet modelu (20x10x3m - 33%)",  "Vypocet modelu (20x10x3m - 66%)",
                                      "Vypocet modelu (20x10x3m - 100%)", ""};
    EXPECT_EQ(shown, expected);
}

TEST(ModelCompute, AFieldThatNeverEndsIsRefused)
{
    EmGRID *grid;
    EmMODEL model(SomeInfo("m"), &grid);
    model.Compute(Everywhere, NULL, 5);
    EXPECT_STREQ(xCode, XALLOC);
    xCode = XNULL;
    EXPECT_EQ(grid->Depth(), 0);
    EXPECT_EQ(model.Value(AgE0), 0);
}

TEST(ModelCompute, ChecksItsUseByAssertions)
{
    EmMODEL model(SomeInfo("m"), NULL);
    const char file[] = "ker/emmodel_compute.cpp";
    EXPECT_TRUE(AbortsOnAssertion("stop > 0", file, [&] { model.Compute(Inverse, NULL, 0); }));
    EXPECT_TRUE(AbortsOnAssertion("w >= 0", file, [&] { model.Compute(Negative, NULL, 1); }));
    EXPECT_TRUE(AbortsOnAssertion("weight >= 0 && weight <= 1", file, [&] { model.Smooth(-0.1, 1); }));
    EXPECT_TRUE(AbortsOnAssertion("weight >= 0 && weight <= 1", file, [&] { model.Smooth(1.1, 1); }));
    EXPECT_TRUE(AbortsOnAssertion("count >= 0", file, [&] { model.Smooth(0.5, -1); }));
    EXPECT_TRUE(AbortsOnAssertion("count >= 0", file, [&] { model.FillGaps(-1); }));
}

TEST(ModelCompute, AFaultLeavesAnEmptyTable)
{
    EmGRID *grid;
    EmMODEL model(SomeInfo("m"), &grid);
    int swept = SweepFaults([&] { model.Compute(Inverse, NULL, 5); },
                            [&](const FaultRun &run) {
                                EXPECT_EQ(run.code, run.fired ? XALLOC : XNULL);
                                EXPECT_EQ(grid->Depth() > 0, run.code == XNULL);
                                EXPECT_EQ(model.Value(AgE3) > 0, run.code == XNULL);
                            });
    EXPECT_GT(swept, 50);
}

TEST(ModelSmooth, EqualsThePlainTranscription)
{
    CHANCE chance(81);
    for (int i = 0; i < 40; ++i) {
        auto model = RandomModel("m", chance, chance.Int(1, 6), 6);
        PLAIN plain = PlainOf(model->Grid());
        double weight = chance.One(5) ? 1 : chance.Real(0, 1);
        int count = chance.Int(0, 3);
        model->Smooth(weight, count);
        PlainSmooth(plain, weight, count);
        ExpectSame(model->Grid(), plain);
    }
}

TEST(ModelFillGaps, EqualsThePlainTranscription)
{
    CHANCE chance(82);
    for (int i = 0; i < 40; ++i) {
        auto model = RandomModel("m", chance, chance.Int(1, 6), 6);
        PLAIN plain = PlainOf(model->Grid());
        int count = chance.Int(0, 3);
        model->FillGaps(count);
        PlainFillGaps(plain, count);
        ExpectSame(model->Grid(), plain);
    }
}

TEST(ModelFillGaps, AGapTakesTheMeanOfItsNeighboursAndFeedsNoneOfItsLayer)
{
    EmGRID *grid;
    EmMODEL model(SomeInfo("m"), &grid);
    grid->Alloc(2);
    for (int iz = 0; iz <= 2; ++iz) {
        grid->AllocLayer(iz, 3, 3);
        for (int ix = -3; ix <= 3; ++ix) {
            for (int iy = 0; iy <= 3; ++iy)
                grid->Set(ix, iy, iz, 0);
        }
    }
    grid->Set(0, 0, 0, 60);
    model.FillGaps(1);
    EXPECT_EQ(grid->Get(0, 0, 1), 10);
    EXPECT_EQ(grid->Get(1, 0, 1), 0);
    EXPECT_EQ(grid->Get(0, 1, 1), 0);
    model.FillGaps(1);
    EXPECT_EQ(grid->Get(0, 0, 1), 10);
    EXPECT_EQ(grid->Get(1, 0, 1), 10.0 / 6);
    EXPECT_EQ(grid->Get(0, 1, 1), 10.0 / 6);
}

TEST(ModelSmooth, KeepsWhatIsSymmetricSymmetric)
{
    CHANCE chance(83);
    for (int i = 0; i < 10; ++i) {
        EmGRID *grid;
        EmMODEL model(SomeInfo("m"), &grid);
        grid->Alloc(4);
        for (int iz = 0; iz <= 4; ++iz) {
            grid->AllocLayer(iz, 4 + iz % 2, 5);
            for (int ix = 0; ix <= 4 + iz % 2; ++ix) {
                for (int iy = 0; iy <= 5; ++iy) {
                    double v = chance.One(3) ? 0 : chance.Real(0, 100);
                    grid->Set(ix, iy, iz, v);
                    grid->Set(-ix, iy, iz, v);
                }
            }
        }
        model.FillGaps(2);
        model.Smooth(0.7, 3);
        for (int iz = 0; iz <= 4; ++iz) {
            for (int ix = 1; ix <= 4; ++ix) {
                for (int iy = 0; iy <= 5; ++iy)
                    EXPECT_EQ(grid->Get(ix, iy, iz), grid->Get(-ix, iy, iz));
            }
        }
        AgPOINT p(1.25, 2.75, 1.5);
        EXPECT_EQ(model.Value(p), model.Value(AgPOINT(p.x, -p.y, p.z)));
        EXPECT_NEAR(model.Value(p), model.Value(AgPOINT(-p.x, p.y, p.z)), 1e-12);
    }
}

TEST(ModelSmooth, KeepsAConstantFieldAndLeavesGapsAlone)
{
    EmGRID *grid;
    EmMODEL model(SomeInfo("m"), &grid);
    grid->Alloc(4);
    for (int iz = 0; iz <= 4; ++iz) {
        grid->AllocLayer(iz, 4, 4);
        for (int ix = -4; ix <= 4; ++ix) {
            for (int iy = 0; iy <= 4; ++iy)
                grid->Set(ix, iy, iz, 12);
        }
    }
    grid->Set(2, 2, 2, 0);
    model.Smooth(0.6, 1);
    EXPECT_EQ(grid->Get(2, 2, 2), 0);
    EXPECT_NEAR(grid->Get(-2, 1, 2), 12, 1e-12);
    EXPECT_NEAR(grid->Get(2, 1, 2), 0.4 * 12 + 0.6 / 6 * 60, 1e-9);
    EmMODEL empty(SomeInfo("leer"), NULL);
    empty.Smooth(1, 3);
    empty.FillGaps(3);
    EXPECT_EQ(empty.Value(AgE0), 0);
}
