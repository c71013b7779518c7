// Emission models: what one type of infrared emitter does to the points around it, as a table of irradiation
// intensity at its nominal power, with 1 m spacing in the emitter's own coordinates (x along the body, y
// across, z away from it towards the floor). A model is one file in the model folder; loaded on first use and
// shared by all emitters of its type. Tables run from some thousand to some hundred thousand values, and the
// look-up is the innermost function of the program, so the table is plain arrays behind plain pointers.
#ifndef KER_EMMODEL_H
#define KER_EMMODEL_H

#include "lib/ag.h"
#include "lib/cde.h"
#include "lib/linkage.h"

#include <cstdint>

/// The table of a model. Mirrored to y < 0; 0 outside. Values in W/m2.
class EmGRID
{
public:
    struct LAYER {
        int32_t rx = 0; // columns run from -rx to rx
        int32_t ry = 0; // rows run from 0 to ry
        double **F =
            NULL; // owner; valid for F[-rx] to F[rx], each a column of ry + 1 values; NULL: not allocated
    };

    EmGRID() = default;
    ~EmGRID() { Free(); }
    EmGRID(const EmGRID &) = delete;
    EmGRID &operator=(const EmGRID &) = delete;

    void Alloc(int arz);                       // arz + 1 empty layers; XALLOC
    void AllocLayer(int iz, int arx, int ary); // values are not initialised; XALLOC
    void FreeLayer(int iz);
    void Free();

    void Set(int ix, int iy, int iz, double v);
    double Get(int ix, int iy, int iz) const;
    LAYER *Layer(int iz, int *rx, int *ry); // either pointer may be NULL
    const LAYER *Layer(int iz, int *rx, int *ry) const { return const_cast<EmGRID *>(this)->Layer(iz, rx, ry); }
    int Depth() const { return rz; }

    /// Trilinear intensity at a point in the model's coordinates, W/m2. 0 outside the table; the last row,
    /// column and layer are entered as upper corners only. No allocation and no assertion.
    double Value(const AgPOINT &p) const;

    void Write(CdeFILE &file) const;
    void
    Read(CdeFILE &file); // XCDE_INVOLVED for extents below 1; nothing is allocated that the file cannot fill

private:
    int32_t rz = 0;     // index of the last layer; 0 when empty
    LAYER *data = NULL; // owner; rz + 1 layers, NULL when empty

    double *Cell(int ix, int iy, int iz) const;
};

/// The technical data of a model; copied as a block.
struct EmMODELINFO {
    char name[32] = "";         // the file's base name, never stored in the file
    char description[256] = ""; // free text
    AgPOINT size;               // of the body, m: x length, y width, z height
    double radiantPart = 0;     // share of the power that leaves as radiation, 0 to 1
    double power = 0;           // nominal, W: the power at which the table holds
    double reducedPower = 0;    // W; the second stage, offered only if below `power`
};

class EmMODEL : public LINK
{
public:
    /// Loads the model of that name from the model folder; the name is cut to 31 characters.
    explicit EmMODEL(const char *name);
    /// An empty model to be filled by Compute; `grid`, if not NULL, takes a view of its table.
    EmMODEL(const EmMODELINFO &info, EmGRID **grid);

    const EmMODELINFO *Info() const { return &info; }
    double Value(const AgPOINT &p) const { return grid.Value(p); }
    const EmGRID &Grid() const { return grid; }

    /// Intensity at a point of the emitter's coordinates, W/m2, never negative.
    using FIELD = double (*)(AgPOINT p, void *arg);

    /// Fills the table from `fn`, as far as it reaches `stop` (W/m2, above 0) along the axes. XALLOC for a
    /// field that no table can hold.
    void Compute(FIELD fn, void *arg, double stop);
    /// Blends each cell with its six neighbours, `count` times, starting at the axis and working outward in
    /// place.
    void Smooth(double weight, int count);
    /// Gives each empty cell the mean of its neighbours, `count` times, layer by layer; a cell that is filled
    /// feeds none of its own layer in that pass.
    void FillGaps(int count);

    void Write(CdeFILE &file) const; // the whole file: header, data, table
    void Read(CdeFILE &file);        // empties info.name
    /// Header and technical data alone, with an empty name. Whatever reads a model's file comes in here: its
    /// items are walked first.
    static void ReadInfo(CdeFILE &file, EmMODELINFO &info);

private:
    friend EmMODEL *ModelAcquire(const char *name);
    friend EmMODEL *ModelAddRef(EmMODEL *model);
    friend void ModelRelease(EmMODEL *model);

    EmMODELINFO info;
    EmGRID grid;
    int32_t used = 0; // references; above 0 for every model in the cache

    void ComputeLayer(int iz, FIELD fn, void *arg, double stop);
};

/// Where models are looked up instead of "Modely" beside the program; "" goes back to that. XFOPEN for a folder
/// whose name does not fit.
void SetModelFolder(const char *folder);
/// The path of a model's file, or with NULL of the folder; one static buffer.
const char *ModelPath(const char *name);
/// Only the technical data of the model; one static record, overwritten by the next call.
const EmMODELINFO *ModelInfo(const char *name);

enum { MODEL_OPEN = 0, MODEL_NEXT = 1, MODEL_CLOSE = 2, MODEL_NAME = 3 };
/// Walks the model folder: open, next until NULL, close. A damaged model comes with its name and empty data; by
/// MODEL_NAME in place of MODEL_NEXT every one does, and none of the files, of a megabyte each, is read.
const EmMODELINFO *ModelList(int mode);

/// A counted pointer to the model, loaded if need be; NULL without failure for a blank name. A name with parts
/// of a path names no model: XFOPEN.
EmMODEL *ModelAcquire(const char *name);
EmMODEL *ModelAddRef(EmMODEL *model); // NULL passes through
void ModelRelease(EmMODEL *model);    // NULL is allowed; the last release deletes the model
/// Writes the model's file, beside the former one first: a failure leaves that whole.
void ModelSave(const EmMODEL *model);

#endif
