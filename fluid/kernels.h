#pragma once
// The inner loops: one row of cells at a time, several cells in the lanes of a vector. There is one set for
// each vector width; all compute the same bits.

#include "fluid/fluid_3d.h"

namespace vesk::fluid {

/// A velocity field that carries something for the time dt.
struct Flow {
    const float *velX, *velY, *velZ;
    GridSize res;
    float dt;
};

/// A row of the first half of a MacCormack step.
struct ForwardRow {
    const float* oldField;
    float* advected;   ///< the whole grid: oldField traced back
    float *low, *high; ///< the whole grids: extremes of the eight cells round the source; or both null
    int y, z;
};

/// A row of the second half.
struct BackwardRow {
    const float *oldField, *advected;
    float* newField;  ///< the whole grid; holds the low extremes before, the result after
    float* back;      ///< the whole grid; holds the high extremes before, `advected` traced forward after
    float* unlimited; ///< a row: the result before it is limited; null where nobody needs the result
    bool limit;       ///< whether the row is interior
    int y, z;
};

/// The noise tile with rows of tileRowStride values, of which those from 128 on repeat the first.
struct TileRows {
    const float* values;
};
inline constexpr int tileRowStride = 136;

/// The coarse fields that a fine cell samples.
enum CoarseField : std::int8_t {
    velocityX,
    velocityY,
    velocityZ,
    textureU,
    textureV,
    textureW,
    kineticEnergy
};
inline constexpr int coarseFields = 7;

/// A row of fine cells to be given their velocity. All rows of one entry a fine cell are padded to a multiple
/// of maxLanes with copies of the last entry.
struct SynthesisRow {
    int count;                         ///< fine cells, without padding
    const std::int32_t* source;        ///< coarse cell to the left of each
    const float* fraction;             ///< how far to the next
    const float* coarse[coarseFields]; ///< rows of coarse values, already blended in y and z
    const float* calm;                 ///< not 0: the coarse cell's warp allows noise
    const float* const* unwarped;      ///< nine rows: the vectors for x, y, z; null for plain curl noise
    std::array<float, 3> resSm;
    float gain; ///< of the amplitude
    float cullThreshold;
    int octaves;
    TileRows tile;
    float *velX, *velY, *velZ; ///< rows, padded
};
inline constexpr int maxLanes = 8;

/// A row of coarse Jacobians, each of the nine entries a row, and where to put what they tell.
struct WarpRow {
    int count;
    const float* jacobian[9]; ///< row by row
    float *eigMin, *eigMax;
    /// Nine rows for the columns of the inverse, unit vectors where singular. Null: not wanted, and singular
    /// cells get 0.1 and 10 as their extremes, which otherwise stay.
    float* const* unwarped;
};

struct AdvectionKernels {
    /// The largest z to which the opposite step would reach from the row.
    float (*forward)(const Flow& flow, const ForwardRow& row);
    void (*backward)(const Flow& flow, const BackwardRow& row);
};

struct Kernels {
    int lanes; ///< of advection; of the others at most eight, as they wait for values from all over the tile
    AdvectionKernels advection;
    /// The largest squared velocity.
    float (*synthesize)(const SynthesisRow& row);
    void (*measureWarp)(const WarpRow& row);
};

/// The widest that this processor has, or what was last forced.
const Kernels& kernels();
/// 4, 8, 16, or 0 for the widest again; false, and nothing changes, if this processor has no such vectors.
/// Results do not depend on it. For tests and benchmarks, while nothing else runs.
bool forceLanes(int lanes);

/// How many threads may share the work: at most eight, one if it is too little to be worth a second.
int threadsFor(std::size_t cells);

} // namespace vesk::fluid
