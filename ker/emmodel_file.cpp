// The model's file: a typed file "IE/GIM" of technical data and table. Files come from anywhere, so nothing is
// taken on trust: the items are walked before they are read, extents are checked against what the file still
// holds before memory is taken for them, and a number that is not finite is refused.
#include "ker/emmodel.h"

#include "ker/emrecord.h"

#include "lib/xon.h"

namespace
{
const char FILE_TAG[] = "IE/GIM";
enum { FILE_VERSION = 1 };
enum { EXTENT_MAX = 1000000 }; // far above any model; keeps products of three extents in 64 bits

// Bytes in the file: an integer, a real, and the least that a layer takes.
enum { INT_BYTES = 5, REAL_BYTES = 9, LAYER_BYTES = INT_BYTES + 2 * INT_BYTES };

int GetExtent(CdeFILE &file)
{
    int extent = 0;
    __enter
        extent = file.GetInt(); __test;
        if (extent < 1 || extent > EXTENT_MAX)
            __raise(XCDE_INVOLVED);
    __point
        extent = 0;
    __treat
    return extent;
}

void WriteLayer(CdeFILE &file, const EmGRID::LAYER *l)
{
    __enter
        file.PutSection(0); __test;
        file.PutInt(l->rx); __test;
        file.PutInt(l->ry); __test;
        for (int iy = 0; iy <= l->ry; ++iy) {
            for (int ix = -l->rx; ix <= l->rx; ++ix) {
                file.PutReal(l->F[ix][iy]); __test;
            }
        }
        file.PutEnd(); __test;
    __point
    __treat
}

void ReadLayer(CdeFILE &file, EmGRID &grid, int iz)
{
    __enter
        file.GetSection(); __test;
        int rx = GetExtent(file); __test;
        int ry = GetExtent(file); __test;
        file.Require((2LL * rx + 1) * (ry + 1LL) * REAL_BYTES); __test;
        grid.AllocLayer(iz, rx, ry); __test;
        double **F = grid.Layer(iz, NULL, NULL)->F;
        for (int iy = 0; iy <= ry; ++iy) {
            for (int ix = -rx; ix <= rx; ++ix) {
                F[ix][iy] = GetFinite(file); __test;
            }
        }
        file.EndSection(1); __test;
    __point
    __treat
}

void WriteInfo(CdeFILE &file, const EmMODELINFO &info)
{
    __enter
        file.PutSection(0); __test;
        file.PutStr(info.description); __test;
        PutPoint(file, info.size); __test;
        file.PutReal(info.radiantPart); __test;
        file.PutReal(info.power); __test;
        file.PutReal(info.reducedPower); __test;
        file.PutEnd(); __test;
    __point
    __treat
}
} // namespace

void EmGRID::Write(CdeFILE &file) const
{
    __enter
        ASSERT(data != NULL);
        file.PutSection(0); __test;
        file.PutInt(rz); __test;
        for (int iz = 0; iz <= rz; ++iz) {
            WriteLayer(file, Layer(iz, NULL, NULL)); __test;
        }
        file.PutEnd(); __test;
    __point
    __treat
}

void EmGRID::Read(CdeFILE &file)
{
    __enter
        file.GetSection(); __test;
        int depth = GetExtent(file); __test;
        file.Require((depth + 1LL) * LAYER_BYTES); __test;
        Alloc(depth); __test;
        for (int iz = 0; iz <= depth; ++iz) {
            ReadLayer(file, *this, iz); __test;
        }
        file.EndSection(1); __test;
    __point
        Free();
    __treat
}

void EmMODEL::Write(CdeFILE &file) const
{
    __enter
        file.PutHeader(FILE_TAG, FILE_VERSION); __test;
        WriteInfo(file, info); __test;
        grid.Write(file); __test;
    __point
    __treat
}

void EmMODEL::ReadInfo(CdeFILE &file, EmMODELINFO &info)
{
    __enter
        file.Walk(); __test;
        file.GetHeader(FILE_TAG, FILE_VERSION); __test;
        file.GetSection(); __test;
        info.name[0] = '\0';
        file.GetStr(info.description, sizeof info.description); __test;
        info.size = GetPoint(file); __test;
        info.radiantPart = GetFinite(file); __test;
        info.power = GetFinite(file); __test;
        info.reducedPower = GetFinite(file); __test;
        file.EndSection(1); __test;
    __point
    __treat
}

void EmMODEL::Read(CdeFILE &file)
{
    __enter
        ReadInfo(file, info); __test;
        grid.Read(file); __test;
    __point
    __treat
}

void ModelSave(const EmMODEL *model)
{
    __enter
        ASSERT(model != NULL);
        const char *path = ModelPath(model->Info()->name); __test;
        CdeFILE file;
        file.OpenReplacing(path); __test;
        model->Write(file); __test;
        file.Close(); __test;
    __point
    __treat
}
