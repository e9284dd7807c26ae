#include "fluid/synthesis.h"

#include "fluid/kernels.h"
#include "fluid/noise_tile.h"
#include "fluid/texture_jacobian.h"

#include <algorithm>
#include <vector>

#include <omp.h>

namespace vesk::fluid {

namespace {

/// Rounded up to whole vectors.
std::size_t padded(int count) {
    return (static_cast<std::size_t>(std::max(count, 0)) + maxLanes - 1) / maxLanes * maxLanes;
}

/// Where the interior fine cells of one axis lie in the coarse grid. Entry i belongs to fine cell i + 1; the
/// last entry is repeated to fill a vector.
struct FineAxis {
    FineAxis(int coarseRes, int amplify) : count(std::max(coarseRes * amplify - 2, 0)) {
        const float inverse = 1.0F / static_cast<float>(amplify);
        const bool line = coarseRes > 1;
        const float low = line ? 0.5F : 0.0F;
        const float high = line ? static_cast<float>(coarseRes - 1.5) : 0.0F;
        for (std::size_t i = 0; i < padded(count); ++i) {
            const int fine = std::min(static_cast<int>(i), count - 1) + 1;
            const float position = static_cast<float>(fine) * inverse;
            const float sample = std::min(std::max(position, low), high);
            source.push_back(static_cast<int>(sample));
            fraction.push_back(sample - static_cast<float>(source.back()));
            under.push_back(static_cast<int>(position));
            parent.push_back(fine / amplify);
        }
        step = line ? 1 : 0;
    }

    int count;                        ///< without the filling
    std::vector<std::int32_t> source; ///< the lower of the two cells between which a field is sampled
    std::vector<float> fraction;      ///< how far to the next
    std::vector<int> under;           ///< the coarse cell whose warp counts for plain curl noise
    std::vector<int> parent;          ///< the coarse cell that the fine cell is part of
    int step;                         ///< to the next coarse cell; 0 if there is none
};

/// What one thread works in.
class Rows {
  public:
    Rows(const FineAxis& x, int coarseRes)
        : fineStride_(padded(x.count)), coarseStride_(padded(coarseRes + 1)), fine_(fineStride_ * (4 + 9)),
          coarse_(coarseStride_ * (coarseFields + 18)) {}

    float* velocity(int axis) { return fine_.data() + fineStride_ * axis; }
    float* calm() { return fine_.data() + fineStride_ * 3; }
    float* unwarped(int i) { return fine_.data() + fineStride_ * (4 + i); }
    float* blended(int field) { return coarse_.data() + coarseStride_ * field; }
    float* jacobian(int i) { return coarse_.data() + coarseStride_ * (coarseFields + i); }
    float* coarseUnwarped(int i) { return coarse_.data() + coarseStride_ * (coarseFields + 9 + i); }

  private:
    std::size_t fineStride_, coarseStride_;
    FloatArray fine_, coarse_;
};

/// The noise tile in rows that continue past their seam.
FloatArray tileWithoutSeams(const FloatArray& noiseTile, int threads) {
    constexpr int lines = tileSide * tileSide, continued = tileRowStride - tileSide;
    FloatArray rows(std::size_t{lines} * tileRowStride);
#pragma omp parallel for schedule(static) num_threads(threads)
    for (int line = 0; line < lines; ++line) {
        const float* from = noiseTile.data() + static_cast<std::size_t>(line) * tileSide;
        float* to = rows.data() + static_cast<std::size_t>(line) * tileRowStride;
        std::copy_n(from, tileSide, to);
        std::copy_n(from, continued, to + tileSide);
    }
    return rows;
}

class Synthesis {
  public:
    Synthesis(WTURBULENCE& fluid, const float* xvel, const float* yvel, const float* zvel)
        : fluid_(fluid), x_(fluid.xResSm, fluid.amplify), y_(fluid.yResSm, fluid.amplify),
          z_(fluid.zResSm, fluid.amplify),
          threads_(threadsFor(fluid.densityBig.size())), fields_{xvel,
                                                                 yvel,
                                                                 zvel,
                                                                 fluid.texU.data(),
                                                                 fluid.texV.data(),
                                                                 fluid.texW.data(),
                                                                 fluid.energy.data()} {
        if (fluid.octaves > 0) tile_ = tileWithoutSeams(fluid.noiseTile, threads_);
        for (int i = 0; i < threads_; ++i)
            rows_.emplace_back(x_, fluid.xResSm);
    }

    float plain() {
        float most = 0;
        const int rows = y_.count * z_.count;
#pragma omp parallel for schedule(static) num_threads(threads_) reduction(max : most)
        for (int row = 0; row < rows; ++row) {
            const int y = row % y_.count, z = row / y_.count;
            Rows& mine = rows_[omp_get_thread_num()];
            markCalm(mine, y_.under[y], z_.under[z], x_.under);
            most = std::max(most, synthesize(mine, y, z, nullptr));
        }
        return most;
    }

    float warped() {
        std::array<float, 8> most;
        most.fill(-1);
#pragma omp parallel for schedule(static) num_threads(threads_)
        for (int z = 0; z < fluid_.zResSm; ++z) {
            const int thread = omp_get_thread_num();
            for (int y = 0; y < fluid_.yResSm; ++y)
                most[thread] = std::max(most[thread], warpedRow(rows_[thread], y, z));
        }
        return std::max(0.0F, *std::max_element(most.begin(), most.end()));
    }

  private:
    /// All fine cells of a row of coarse cells.
    float warpedRow(Rows& rows, int y, int z) {
        unwarp(rows, y, z);
        markCalm(rows, y, z, x_.parent);
        const float* unwarped[9];
        for (int i = 0; i < 9; ++i) {
            unwarped[i] = rows.unwarped(i);
            for (std::size_t x = 0; x < x_.parent.size(); ++x)
                rows.unwarped(i)[x] = rows.coarseUnwarped(i)[x_.parent[x]];
        }
        float most = -1;
        const auto children = [this](const FineAxis& axis, int coarse) {
            return std::pair(std::max(coarse * fluid_.amplify, 1) - 1,
                             std::min((coarse + 1) * fluid_.amplify - 1, axis.count));
        };
        const auto [firstY, endY] = children(y_, y);
        const auto [firstZ, endZ] = children(z_, z);
        for (int fineZ = firstZ; fineZ < endZ; ++fineZ) {
            for (int fineY = firstY; fineY < endY; ++fineY)
                most = std::max(most, synthesize(rows, fineY, fineZ, unwarped));
        }
        return most;
    }

    void unwarp(Rows& rows, int y, int z) {
        WarpRow warp;
        float *jacobian[9], *unwarped[9];
        for (int i = 0; i < 9; ++i) {
            warp.jacobian[i] = jacobian[i] = rows.jacobian(i);
            unwarped[i] = rows.coarseUnwarped(i);
        }
        textureJacobians(fluid_, y, z, jacobian);
        const std::size_t start = coarseRow(y, z);
        warp.count = fluid_.xResSm;
        warp.eigMin = fluid_.eigMin.data() + start;
        warp.eigMax = fluid_.eigMax.data() + start;
        warp.unwarped = unwarped;
        kernels_.measureWarp(warp);
    }

    std::size_t coarseRow(int y, int z) const {
        return (static_cast<std::size_t>(z) * fluid_.yResSm + y) * fluid_.xResSm;
    }

    void markCalm(Rows& rows, int y, int z, const std::vector<int>& coarseX) const {
        const float* eigMin = fluid_.eigMin.data() + coarseRow(y, z);
        const float* eigMax = fluid_.eigMax.data() + coarseRow(y, z);
        float* calm = rows.calm();
        for (std::size_t x = 0; x < coarseX.size(); ++x)
            calm[x] = eigMax[coarseX[x]] < 2 && eigMin[coarseX[x]] > 0.5F ? 1.0F : 0.0F;
    }

    /// Blends the four coarse rows round fine row (y, z): first in y, then in z.
    void blendCoarse(Rows& rows, int y, int z) const {
        const float y1 = y_.fraction[y], y0 = 1.0F - y1, z1 = z_.fraction[z], z0 = 1.0F - z1;
        const std::size_t stepY = static_cast<std::size_t>(y_.step) * fluid_.xResSm;
        const std::size_t stepZ = static_cast<std::size_t>(z_.step) * fluid_.slabSizeSm;
        const int count = fluid_.xResSm;
        for (int field = 0; field < coarseFields; ++field) {
            const float* a = fields_[field] + coarseRow(y_.source[y], z_.source[z]);
            const float *b = a + stepY, *c = a + stepZ, *d = c + stepY;
            float* out = rows.blended(field);
#pragma omp simd
            for (int x = 0; x < count; ++x)
                out[x] = z0 * (y0 * a[x] + y1 * b[x]) + z1 * (y0 * c[x] + y1 * d[x]);
        }
    }

    /// Row (y, z) counts from the first interior one.
    float synthesize(Rows& rows, int y, int z, const float* const* unwarped) {
        if (x_.count < 1) return 0;
        blendCoarse(rows, y, z);
        SynthesisRow row = {.count = x_.count,
                            .source = x_.source.data(),
                            .fraction = x_.fraction.data(),
                            .coarse = {},
                            .calm = rows.calm(),
                            .unwarped = unwarped,
                            .resSm = {},
                            .gain = fluid_.strength,
                            .cullThreshold = fluid_.cullThreshold,
                            .octaves = fluid_.octaves,
                            .tile = {tile_.data()},
                            .velX = rows.velocity(0),
                            .velY = rows.velocity(1),
                            .velZ = rows.velocity(2)};
        for (int field = 0; field < coarseFields; ++field)
            row.coarse[field] = rows.blended(field);
        for (int axis = 0; axis < 3; ++axis)
            row.resSm[axis] = static_cast<float>(fluid_.resSm[axis]);
        const float most = kernels_.synthesize(row);
        FloatArray* const targets[3] = {&fluid_.bigVelX, &fluid_.bigVelY, &fluid_.bigVelZ};
        const std::size_t start =
            (static_cast<std::size_t>(z + 1) * fluid_.yResBig + (y + 1)) * fluid_.xResBig + 1;
        for (int axis = 0; axis < 3; ++axis)
            std::copy_n(rows.velocity(axis), x_.count, targets[axis]->data() + start);
        return most;
    }

    WTURBULENCE& fluid_;
    const Kernels& kernels_ = kernels();
    FineAxis x_, y_, z_;
    int threads_;
    const float* fields_[coarseFields];
    FloatArray tile_;
    std::vector<Rows> rows_;
};

} // namespace

void textureJacobians(const WTURBULENCE& fluid, int y, int z, float* const* rows) {
    const float* const coordinates[3] = {fluid.texU.data(), fluid.texV.data(), fluid.texW.data()};
    for (int axis = 0; axis < 3; ++axis) {
        for (int i = 0; i < 3; ++i)
            smallestDifferences(coordinates[i], fluid.resSm, axis, y, z, rows[3 * axis + i]);
    }
}

float synthesizeCurlNoise(WTURBULENCE& fluid, const float* xvel, const float* yvel, const float* zvel) {
    return Synthesis(fluid, xvel, yvel, zvel).plain();
}

float synthesizeWarpedCurlNoise(WTURBULENCE& fluid, const float* xvel, const float* yvel, const float* zvel) {
    return Synthesis(fluid, xvel, yvel, zvel).warped();
}

} // namespace vesk::fluid
