#pragma once
// Stateless operations on dense grids of cells: advection and the outer layers.

#include <array>
#include <cstddef>
#include <cstdint>

namespace vesk::fluid {

/// Cells along x, y, z.
using GridSize = std::array<std::int32_t, 3>;

/// Number of cells; 0 if any side is not positive.
constexpr std::size_t cellCount(const GridSize& res) {
    if (res[0] <= 0 || res[1] <= 0 || res[2] <= 0) return 0;
    return static_cast<std::size_t>(res[0]) * static_cast<std::size_t>(res[1]) *
           static_cast<std::size_t>(res[2]);
}

/// Grids are float arrays of cellCount(res) values, x fastest: cell (x, y, z) lies at
/// x + y*xRes + z*xRes*yRes. Positions and velocities are in cells, time in the unit that makes dt*velocity
/// cells; a sample at the integer position (x, y, z) is the value of that cell.
///
/// A field is sampled between cells trilinearly, each coordinate limited to [0.5, res - 1.5]; one that is not
/// a number counts as 0.5, and along an axis of one cell a field is constant. Interior cells are those with
/// each index in [1, res - 2].
///
/// All work is per cell and independent of the thread count and of the processor's vector unit, to the bit.
/// At most eight threads work on one call; OMP_NUM_THREADS and omp_set_num_threads lower that.
/// No array may be given twice, except that the three velocities may be the same one.
class FLUID_3D {
  public:
    /// newField(p) = oldField(p - dt*vel(p)) for every cell.
    static void advectSemiLagrange(float dt, const float* velX, const float* velY, const float* velZ,
                                   const float* oldField, float* newField, const GridSize& res);

    /// Second-order advection: a semi-Lagrangian step forward (left in `temp2`), one back from there (left in
    /// `temp1`), and half their disagreement with `oldField` taken off; limited to the eight cells round the
    /// source, plain where a trace leaves [1, res - 2], border layers copied from their neighbours.
    /// Selle, Fedkiw, Kim, Liu, Rossignac, "An Unconditionally Stable MacCormack Method", J. Sci. Comput.
    /// 2008.
    static void advectMacCormack(float dt, const float* velX, const float* velY, const float* velZ,
                                 const float* oldField, float* newField, float* temp1, float* temp2,
                                 const GridSize& res);

    /// The first layer along the axis takes the second, then the last takes the one before it. An axis of one
    /// cell stays.
    static void copyBorderX(float* field, const GridSize& res);
    static void copyBorderY(float* field, const GridSize& res);
    static void copyBorderZ(float* field, const GridSize& res);

    /// 0 into the first and the last layer along the axis.
    static void zeroBorderX(float* field, const GridSize& res);
    static void zeroBorderY(float* field, const GridSize& res);
    static void zeroBorderZ(float* field, const GridSize& res);
};

} // namespace vesk::fluid
