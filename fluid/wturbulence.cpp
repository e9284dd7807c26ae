#include "fluid/wturbulence.h"

#include "fluid/kernels.h"
#include "fluid/line_filters.h"
#include "fluid/noise_tile.h"
#include "fluid/synthesis.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <stdexcept>

namespace vesk::fluid {

namespace {

std::int32_t checkedCells(const GridSize& res) {
    std::size_t cells = 1;
    for (const std::int32_t side : res) {
        if (side <= 0) return 0;
        cells *= static_cast<std::size_t>(side);
        if (cells > std::numeric_limits<std::int32_t>::max())
            throw std::length_error("WTURBULENCE: the grid has more cells than 2147483647");
    }
    return static_cast<std::int32_t>(cells);
}

std::int32_t fineSide(std::int32_t side, std::int32_t amplify) {
    const std::int64_t fine = std::int64_t{std::max(side, 0)} * std::max(amplify, 0);
    if (fine > std::numeric_limits<std::int32_t>::max())
        throw std::length_error("WTURBULENCE: a side has more cells than 2147483647");
    return static_cast<std::int32_t>(fine);
}

std::int32_t octavesFor(std::int32_t count) {
    return count < 1 ? 0 : static_cast<std::int32_t>(std::log(static_cast<float>(count)) / std::log(2.0F));
}

std::array<float, 3> inverse(const GridSize& res) {
    return {1.0F / static_cast<float>(res[0]), 1.0F / static_cast<float>(res[1]),
            1.0F / static_cast<float>(res[2])};
}

std::int32_t substeps(float maxSquared, float dt, std::int32_t most) {
    const float wanted = std::sqrt(maxSquared) * dt / static_cast<float>(most);
    if (!(wanted >= 1)) return 1;
    return wanted >= static_cast<float>(most) ? most : static_cast<std::int32_t>(wanted);
}

} // namespace

WTURBULENCE::WTURBULENCE(std::int32_t xRes, std::int32_t yRes, std::int32_t zRes, std::int32_t amplify_,
                         float strength_, std::int32_t octaveCount, const std::string& noiseTileFile)
    : amplify(amplify_), octaves(octavesFor(octaveCount)), strength(strength_),
      xResBig(fineSide(xRes, amplify)), yResBig(fineSide(yRes, amplify)),
      zResBig(fineSide(zRes, amplify)), resBig{xResBig, yResBig, zResBig}, invResBig(inverse(resBig)),
      totalCellsBig(checkedCells(resBig)), slabSizeBig(checkedCells({xResBig, yResBig, 1})),
      xResSm(std::max(xRes, 0)), yResSm(std::max(yRes, 0)),
      zResSm(std::max(zRes, 0)), resSm{xResSm, yResSm, zResSm}, invResSm(inverse(resSm)),
      totalCellsSm(checkedCells(resSm)), slabSizeSm(checkedCells({xResSm, yResSm, 1})) {
    for (FloatArray* fine : {&densityBig, &densityBigOld, &bigVelX, &bigVelY, &bigVelZ})
        *fine = FloatArray(totalCellsBig);
    for (FloatArray* scratch : {&tempBig1, &tempBig2})
        *scratch = FloatArray(std::max(totalCellsBig, totalCellsSm));
    for (FloatArray* coarse : {&texU, &texV, &texW, &texTemp, &eigMin, &eigMax, &energy, &highFreqEnergy})
        *coarse = FloatArray(totalCellsSm);
    std::size_t cell = 0;
    for (int z = 0; z < zResSm; ++z) {
        for (int y = 0; y < yResSm; ++y) {
            for (int x = 0; x < xResSm; ++x, ++cell)
                resetTextureCoordinates(cell, x, y, z);
        }
    }
    noiseTile = FloatArray(tileSize);
    buildNoiseTile(noiseTile.data(), noiseTileFile);
}

WTURBULENCE::~WTURBULENCE() = default;

void WTURBULENCE::resetTextureCoordinates(std::size_t cell, int x, int y, int z) {
    texU[cell] = static_cast<float>(x) / static_cast<float>(xResSm);
    texV[cell] = static_cast<float>(y) / static_cast<float>(yResSm);
    texW[cell] = static_cast<float>(z) / static_cast<float>(zResSm);
}

void WTURBULENCE::advanceTextureCoordinates(float dt, const float* xvel, const float* yvel,
                                            const float* zvel) {
    for (FloatArray* coordinate : {&texU, &texV, &texW}) {
        coordinate->swap(texTemp);
        FLUID_3D::copyBorderZ(texTemp.data(), resSm);
        FLUID_3D::copyBorderY(texTemp.data(), resSm);
        FLUID_3D::copyBorderX(texTemp.data(), resSm);
        FLUID_3D::advectMacCormack(dt, xvel, yvel, zvel, texTemp.data(), coordinate->data(), tempBig1.data(),
                                   tempBig2.data(), resSm);
    }
}

void WTURBULENCE::measureTextureWarp() {
    const Kernels& kernels = fluid::kernels();
    FloatArray rows(9 * static_cast<std::size_t>(xResSm));
    float* jacobian[9];
    WarpRow warp;
    warp.count = xResSm - 2;
    warp.unwarped = nullptr;
    for (int i = 0; i < 9; ++i) {
        jacobian[i] = rows.data() + static_cast<std::size_t>(i) * xResSm;
        warp.jacobian[i] = jacobian[i] + 1;
    }
    for (int z = 1; z < zResSm - 1; ++z) {
        for (int y = 1; y < yResSm - 1; ++y) {
            textureJacobians(*this, y, z, jacobian);
            const std::size_t start = static_cast<std::size_t>(z) * slabSizeSm + y * xResSm + 1;
            warp.eigMin = eigMin.data() + start;
            warp.eigMax = eigMax.data() + start;
            kernels.measureWarp(warp);
        }
    }
}

void WTURBULENCE::measureEnergy(const float* xvel, const float* yvel, const float* zvel) {
    for (std::int32_t i = 0; i < totalCellsSm; ++i)
        energy[i] = 0.5F * (xvel[i] * xvel[i] + yvel[i] * yvel[i] + zvel[i] * zvel[i]);
    FLUID_3D::copyBorderZ(energy.data(), resSm);
    FLUID_3D::copyBorderY(energy.data(), resSm);
    FLUID_3D::copyBorderX(energy.data(), resSm);
}

void WTURBULENCE::isolateHighFrequencyEnergy() {
    constexpr LineEnds ends = LineEnds::repeated;
    float *high = highFreqEnergy.data(), *temp = texTemp.data();
    downsampleLines(energy.data(), high, resSm, 0, ends);
    downsampleLines(high, temp, resSm, 1, ends);
    downsampleLines(temp, high, resSm, 2, ends);
    upsampleLines(high, temp, resSm, 2, ends);
    upsampleLines(temp, high, resSm, 1, ends);
    upsampleLines(high, temp, resSm, 0, ends);
    for (std::int32_t i = 0; i < totalCellsSm; ++i)
        high[i] = energy[i] - temp[i];
    FLUID_3D::zeroBorderX(high, resSm);
    FLUID_3D::zeroBorderY(high, resSm);
    FLUID_3D::zeroBorderZ(high, resSm);
}

void WTURBULENCE::restoreTextureCoordinates() {
    for (int z = 1; z < zResSm - 1; ++z) {
        for (int y = 1; y < yResSm - 1; ++y) {
            for (int x = 1; x < xResSm - 1; ++x) {
                const std::size_t cell = static_cast<std::size_t>(z) * slabSizeSm + y * xResSm + x;
                if (eigMax[cell] > 2 || eigMin[cell] < 0.5F) resetTextureCoordinates(cell, x, y, z);
            }
        }
    }
}

void WTURBULENCE::stepNoiseAdvection(float dt, const float* xvel, const float* yvel, const float* zvel,
                                     bool useMacCormack, std::int32_t maxSubSteps) {
    advanceTextureCoordinates(dt, xvel, yvel, zvel);
    measureTextureWarp();
    measureEnergy(xvel, yvel, zvel);
    isolateHighFrequencyEnergy();
    advectThroughFineVelocity(dt, synthesizeCurlNoise(*this, xvel, yvel, zvel), useMacCormack, maxSubSteps);
}

void WTURBULENCE::stepFullTurbulence(float dt, const float* xvel, const float* yvel, const float* zvel,
                                     bool useMacCormack, std::int32_t maxSubSteps) {
    advanceTextureCoordinates(dt, xvel, yvel, zvel);
    measureEnergy(xvel, yvel, zvel);
    isolateHighFrequencyEnergy();
    advectThroughFineVelocity(dt, synthesizeWarpedCurlNoise(*this, xvel, yvel, zvel), useMacCormack,
                              maxSubSteps);
}

void WTURBULENCE::advectThroughFineVelocity(float dt, float maxSquared, bool useMacCormack,
                                            std::int32_t maxSubSteps) {
    densityBig.swap(densityBigOld);
    const float dtBig = static_cast<float>(amplify) * dt;
    const std::int32_t steps = substeps(maxSquared, dtBig, std::max(maxSubSteps, 1));
    const float dtSub = dtBig / static_cast<float>(steps);
    FLUID_3D::zeroBorderZ(bigVelZ.data(), resBig);
    FLUID_3D::zeroBorderY(bigVelY.data(), resBig);
    FLUID_3D::zeroBorderX(bigVelX.data(), resBig);
    for (std::int32_t step = 0; step < steps; ++step) {
        if (step > 0) densityBig.swap(densityBigOld);
        if (useMacCormack) {
            FLUID_3D::advectMacCormack(dtSub, bigVelX.data(), bigVelY.data(), bigVelZ.data(),
                                       densityBigOld.data(), densityBig.data(), tempBig1.data(),
                                       tempBig2.data(), resBig);
        } else {
            FLUID_3D::advectSemiLagrange(dtSub, bigVelX.data(), bigVelY.data(), bigVelZ.data(),
                                         densityBigOld.data(), densityBig.data(), resBig);
        }
    }
    FLUID_3D::zeroBorderX(densityBig.data(), resBig);
    FLUID_3D::zeroBorderY(densityBig.data(), resBig);
    FLUID_3D::zeroBorderZ(densityBig.data(), resBig);
    restoreTextureCoordinates();
    ++stepCount;
}

} // namespace vesk::fluid
