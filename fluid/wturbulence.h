#pragma once
// Detail for a low-resolution fluid: curl noise on a grid `amplify` times finer, and a field advected by it.
//
// The method is that of T. Kim, N. Thuerey, D. James, M. Gross, "Wavelet Turbulence for Fluid Simulation",
// SIGGRAPH 2008, on the noise of R. Cook, T. DeRose, "Wavelet Noise", SIGGRAPH 2005.

#include "fluid/float_array.h"
#include "fluid/fluid_3d.h"

#include <string>

namespace vesk::fluid {

/// The state of one up-resolved fluid. Load `densityBig`, take a step, read `densityBig`; again for another
/// scalar if wanted. Velocities handed over are arrays of the coarse grid, in coarse cells a unit of time.
///
/// Grids as in FLUID_3D. A side or `amplify` below 1 gives fine arrays without cells, on which a step does
/// nothing. Bad numbers in the velocity give bad numbers in the result at most.
class WTURBULENCE {
  public:
    /// Reads the noise tile from `noiseTileFile`, or makes it and writes it there.
    /// `octaveCount` as artists count them: `octaves` is the truncation of its logarithm to base 2 (none
    /// below 1). Throws std::length_error if the fine grid has more cells than an int32 counts, and
    /// std::bad_alloc.
    WTURBULENCE(std::int32_t xRes, std::int32_t yRes, std::int32_t zRes, std::int32_t amplify, float strength,
                std::int32_t octaveCount, const std::string& noiseTileFile);
    virtual ~WTURBULENCE();
    WTURBULENCE(const WTURBULENCE&) = delete;
    WTURBULENCE& operator=(const WTURBULENCE&) = delete;

    /// One step with plain curl noise. `maxSubSteps` below 1 counts as 1.
    void stepNoiseAdvection(float dt, const float* xvel, const float* yvel, const float* zvel,
                            bool useMacCormack, std::int32_t maxSubSteps);
    /// One step with curl noise taken back through the warp of the texture coordinates.
    void stepFullTurbulence(float dt, const float* xvel, const float* yvel, const float* zvel,
                            bool useMacCormack, std::int32_t maxSubSteps);

    // The parts of a step that work on the coarse grid, in the order in which a step takes them.

    void advanceTextureCoordinates(float dt, const float* xvel, const float* yvel, const float* zvel);
    /// `eigMin` and `eigMax` of the interior cells from the Jacobian of the texture coordinates; 0.1 and 10
    /// where it is singular.
    void measureTextureWarp();
    void measureEnergy(const float* xvel, const float* yvel, const float* zvel);
    /// Splits `energy`; the result is for whoever extends the amplitude model, no step reads it.
    void isolateHighFrequencyEnergy();
    /// Resets texture coordinates that are warped by more than a factor of 2.
    void restoreTextureCoordinates();

    std::int32_t amplify;         ///< fine cells for a coarse one, along each axis
    std::int32_t octaves;         ///< of noise
    float strength;               ///< gain of the noise
    float cullThreshold = 0.001F; ///< a base amplitude not above it gets no noise
    std::int32_t xResBig, yResBig, zResBig;
    GridSize resBig;
    std::array<float, 3> invResBig; ///< 1 / fine resolution
    std::int32_t totalCellsBig, slabSizeBig;
    std::int32_t xResSm, yResSm, zResSm;
    GridSize resSm;
    std::array<float, 3> invResSm; ///< 1 / coarse resolution
    std::int32_t totalCellsSm, slabSizeSm;
    FloatArray densityBig, densityBigOld; ///< fine: the scalar and its previous state
    FloatArray bigVelX, bigVelY,
        bigVelZ;                   ///< fine: velocity of the last step, fine cells a unit of dt*amplify
    FloatArray tempBig1, tempBig2; ///< scratch, the larger of fine and coarse
    FloatArray texU, texV, texW;   ///< coarse: texture coordinates, 0 to 1 over the grid
    FloatArray texTemp;            ///< coarse: scratch
    FloatArray eigMin, eigMax;     ///< coarse: smallest and largest eigenvalue magnitude of the warp
    FloatArray energy;             ///< coarse: kinetic energy
    FloatArray noiseTile;          ///< 128^3, see noise_tile.h
    std::int32_t stepCount = 0;
    FloatArray highFreqEnergy; ///< coarse

  private:
    void resetTextureCoordinates(std::size_t cell, int x, int y, int z);
    void advectThroughFineVelocity(float dt, float maxSquared, bool useMacCormack, std::int32_t maxSubSteps);
};

} // namespace vesk::fluid
