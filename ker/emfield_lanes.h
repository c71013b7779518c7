// The innermost loops of the field, for several points of a raster's column at a time. They are compiled once
// for any processor and once for those with AVX2, so they share no inline function with the rest of the
// program: plain records here, pointers to the loops in a table. All arithmetic is done in the order in which
// EmGRID::Value and AgTRANSFORM do it, so that every set of loops gives the same bits.
#ifndef KER_EMFIELD_LANES_H
#define KER_EMFIELD_LANES_H

enum {
    EM_TILE_ROWS = 512, // points of a column in one piece; a multiple of every set's width
    EM_CELL_MAX = 512,  // cells across that an unturned emitter may have to take the short way
};

/// One emitter over one horizontal plane.
struct EmLANEJOB {
    double m[3][4];      // hall to model
    double z;            // m, the plane
    double scale;        // of the table's values
    const double *table; // view; value (0, 0) of the layer above the plane, or of layer 0 for a tilted emitter
    long long strideX;   // values from one column of the table to the next
    long long strideZ;   // values from one layer to the next
    // Level emitters: the plane cuts one pair of layers.
    double limitX; // m, the cells of both layers, or of all, lie within it
    double limitY; // m
    double dz;     // share of the layer below
    double wz;     // share of the layer above
    // Tilted emitters.
    const double *limits; // view; limits in x and y of each pair of layers; NULL where all have those above
    double depth;         // m, of the whole table
};

/// The rows of one piece in the table of an unturned emitter: the same for all columns.
struct EmLANEROWS {
    int lowest; // cells in use
    int highest;
    int cell[EM_TILE_ROWS];
    double dy[EM_TILE_ROWS];
    double wy[EM_TILE_ROWS];
    long long in[EM_TILE_ROWS]; // all bits set, or none outside the table
};

/// What is kept of a raster's samples: the sums run in the order of the samples.
struct EmLANESUMS {
    double least;   // W/m2
    double most;    // W/m2
    double sum;     // W/m2
    double squares; // W2/m4
};

/// What the classes of the points of one plan depend on, besides their samples.
struct EmLANEJUDGE {
    double airHead; // C
    double airAnkle;
    double levelHead; // K4, fourth power of the air's absolute temperature
    double levelAnkle;
    // Of head temperature, difference and head irradiation: the limits in rising order, from the lower
    // tolerance to the upper one, and by how much the value may be off.
    double limits[3][4];
    double guard[3];
};

struct EmLANES {
    int width; // points taken at a time; all pieces begin and end at multiples of it

    // Each adds to out[first] to out[last - 1], at x and y[first] to y[last - 1].
    void (*level)(const EmLANEJOB &job, double x, const double *y, int first, int last, double *out);
    void (*tilted)(const EmLANEJOB &job, double x, const double *y, int first, int last, double *out);
    /// For level emitters whose axes are the hall's.
    void (*findRows)(const EmLANEJOB &job, double x, const double *y, int first, int last, EmLANEROWS &rows);
    void (*straight)(const EmLANEJOB &job, const EmLANEROWS &rows, double x, double y, int first, int last,
                     double *out);
    void (*addSamples)(const double *samples, long long count, EmLANESUMS &sums);
    /// Places of samples in a scale: the next whole number from (sample - lo) * kScale upwards, within 0 and
    /// `last`; 0 for what is no number.
    void (*findIndexes)(const double *samples, int count, double lo, double kScale, int last,
                        unsigned char *indexes);
    /// Classes of points from their samples at head and ankle and from what the ceiling adds at the head, W/m2:
    /// class of the head temperature, plus 4 times that of the difference, plus 16 times that of the head
    /// irradiation. A class is 3 where a limit lies within the guard, or a sample puts the short formulas in
    /// doubt. Takes `count` points, rounded up to the width.
    void (*judge)(const EmLANEJUDGE &plan, const double *head, const double *ankle, const double *ceiling,
                  int count, long long *classes);
};

extern const EmLANES EmLanesPlain;
#ifdef __x86_64__
extern const EmLANES EmLanesAvx2;
#endif

/// The set in use: the best for this processor, unless one was set. NULL goes back to that.
const EmLANES &EmGetLanes();
void EmSetLanes(const EmLANES *lanes); // the set must fit the processor
bool EmHasAvx2();

#endif
