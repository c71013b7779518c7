// A model folder of a test's own, in force while it lives, and models to put into it.
#ifndef TESTS_SUPPORT_MODELFOLDER_H
#define TESTS_SUPPORT_MODELFOLDER_H

#include "support/chance.h"
#include "support/cdeitems.h"

#include "ker/emmodel.h"
#include "lib/charstr.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>

class ModelFolder
{
public:
    ModelFolder()
    {
        if (mkdtemp(path) == NULL)
            std::abort();
        SetModelFolder(path);
    }
    ~ModelFolder()
    {
        SetModelFolder("");
        std::filesystem::remove_all(path);
    }
    ModelFolder(const ModelFolder &) = delete;
    ModelFolder &operator=(const ModelFolder &) = delete;

    std::string Path(const std::string &file) const { return std::string(path) + "/" + file; }
    void Put(const std::string &file, const std::string &bytes) const
    {
        std::ofstream(Path(file), std::ios::binary) << bytes;
    }
    std::string Get(const std::string &file) const
    {
        std::ifstream in(Path(file), std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }

private:
    char path[32] = "/tmp/zulmodelsXXXXXX";
};

inline EmMODELINFO SomeInfo(const char *name)
{
    EmMODELINFO info;
    StrCopy(info.name, name, sizeof info.name);
    StrCopy(info.description, "ein Modell", sizeof info.description);
    info.size = AgPOINT(1.5, 0.5, 0.25);
    info.radiantPart = 0.625;
    info.power = 20000;
    info.reducedPower = 12000;
    return info;
}

/// A model whose layers have extents of their own, filled with random values; zeros among them.
inline std::unique_ptr<EmMODEL> RandomModel(const char *name, CHANCE &chance, int depth, int extent)
{
    EmGRID *grid;
    auto model = std::make_unique<EmMODEL>(SomeInfo(name), &grid);
    grid->Alloc(depth);
    for (int iz = 0; iz <= depth; ++iz) {
        int rx = chance.Int(1, extent);
        int ry = chance.Int(1, extent);
        grid->AllocLayer(iz, rx, ry);
        for (int ix = -rx; ix <= rx; ++ix) {
            for (int iy = 0; iy <= ry; ++iy)
                grid->Set(ix, iy, iz, chance.One(4) ? 0 : chance.Real(0, 1000));
        }
    }
    return model;
}

/// The bytes that a file of this model has, formed without the code under test.
inline std::string ModelBytes(const EmMODEL &model)
{
    const EmMODELINFO &info = *model.Info();
    CdeITEMS technical =
        CdeITEMS{ItStr(info.description)} +
        ItReals({info.size.x, info.size.y, info.size.z, info.radiantPart, info.power, info.reducedPower});
    CdeITEMS table{ItInt(model.Grid().Depth())};
    for (int iz = 0; iz <= model.Grid().Depth(); ++iz) {
        int rx, ry;
        model.Grid().Layer(iz, &rx, &ry);
        CdeITEMS layer{ItInt(rx), ItInt(ry)};
        for (int iy = 0; iy <= ry; ++iy) {
            for (int ix = -rx; ix <= rx; ++ix)
                layer.push_back(ItReal(model.Grid().Get(ix, iy, iz)));
        }
        table = table + ItGroup(layer);
    }
    return EncodeItems(CdeITEMS{ItHeader("IE/GIM", 1)} + ItGroup(technical) + ItGroup(table));
}

#endif
