#pragma once
// The velocity of the fine grid: the coarse velocity between cells, and curl noise on top.

#include "fluid/wturbulence.h"

namespace vesk::fluid {

/// Both fill bigVelX, bigVelY and bigVelZ in the interior of the fine grid and return the largest squared
/// velocity, at least 0.
float synthesizeCurlNoise(WTURBULENCE& fluid, const float* xvel, const float* yvel, const float* zvel);
/// Measures the warp of the texture coordinates on the way: `eigMin` and `eigMax` of every coarse cell that
/// is not singular.
float synthesizeWarpedCurlNoise(WTURBULENCE& fluid, const float* xvel, const float* yvel, const float* zvel);

/// Nine rows of the Jacobians along the coarse row (y, z): rows the derivatives along x, y, z, columns those
/// of texU, texV, texW.
void textureJacobians(const WTURBULENCE& fluid, int y, int z, float* const* rows);

} // namespace vesk::fluid
