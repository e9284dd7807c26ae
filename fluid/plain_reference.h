#pragma once
// The same steps written plainly: one cell after the other, nothing shared, one thread. Tests compare the
// fast ones with these to the bit, and the benchmark measures against them.

#include "fluid/small_matrix.h"
#include "fluid/wturbulence.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace vesk::fluid::plain {

struct Vec3 {
    float x, y, z;
};

inline float dot(const Vec3& a, const Vec3& b) { return a.x * b.x + a.y * b.y + a.z * b.z; }

inline std::size_t cellAt(const GridSize& res, int x, int y, int z) {
    return x + static_cast<std::size_t>(y) * res[0] + static_cast<std::size_t>(z) * res[0] * res[1];
}

template <class Do>
void forEachCell(const GridSize& res, int margin, Do&& visit) {
    for (int z = margin; z < res[2] - margin; ++z) {
        for (int y = margin; y < res[1] - margin; ++y) {
            for (int x = margin; x < res[0] - margin; ++x)
                visit(x, y, z);
        }
    }
}

/// One coordinate of a sample: the two cells and how far it is from the first.
struct Between {
    Between(float p, int res) {
        if (res == 1) return;
        if (!(p >= 0.5)) p = 0.5F;
        if (p > res - 1.5) p = static_cast<float>(res - 1.5);
        first = static_cast<int>(p);
        second = first + 1;
        fraction = p - static_cast<float>(first);
    }
    int first = 0, second = 0;
    float fraction = 0;
};

inline float lerp3d(const float* field, const Vec3& p, const GridSize& res) {
    const Between x(p.x, res[0]), y(p.y, res[1]), z(p.z, res[2]);
    const float x0 = 1.0F - x.fraction, y0 = 1.0F - y.fraction, z0 = 1.0F - z.fraction;
    const auto column = [&](int cx) {
        return z0 * (y0 * field[cellAt(res, cx, y.first, z.first)] +
                     y.fraction * field[cellAt(res, cx, y.second, z.first)]) +
               z.fraction * (y0 * field[cellAt(res, cx, y.first, z.second)] +
                             y.fraction * field[cellAt(res, cx, y.second, z.second)]);
    };
    return x0 * column(x.first) + x.fraction * column(x.second);
}

inline void advectSemiLagrange(float dt, const float* velX, const float* velY, const float* velZ,
                               const float* oldField, float* newField, const GridSize& res) {
    forEachCell(res, 0, [&](int x, int y, int z) {
        const std::size_t i = cellAt(res, x, y, z);
        newField[i] = lerp3d(oldField,
                             {static_cast<float>(x) - dt * velX[i], static_cast<float>(y) - dt * velY[i],
                              static_cast<float>(z) - dt * velZ[i]},
                             res);
    });
}

inline float limitToNeighbours(float value, const float* oldField, const Vec3& from, const GridSize& res) {
    const Between x(from.x, res[0]), y(from.y, res[1]), z(from.z, res[2]);
    float low = oldField[cellAt(res, x.first, y.first, z.first)], high = low;
    for (const int cz : {z.first, z.second}) {
        for (const int cy : {y.first, y.second}) {
            for (const int cx : {x.first, x.second}) {
                const float v = oldField[cellAt(res, cx, cy, cz)];
                if (v < low) low = v;
                if (v > high) high = v;
            }
        }
    }
    if (value < low) value = low;
    if (value > high) value = high;
    return value;
}

inline bool isOutside(const Vec3& p, const GridSize& res) {
    const auto beyond = [](float c, int n) { return c < 1 || c > static_cast<float>(n - 2); };
    return beyond(p.x, res[0]) || beyond(p.y, res[1]) || beyond(p.z, res[2]);
}

inline void advectMacCormack(float dt, const float* velX, const float* velY, const float* velZ,
                             const float* oldField, float* newField, float* temp1, float* temp2,
                             const GridSize& res) {
    advectSemiLagrange(dt, velX, velY, velZ, oldField, temp2, res);
    advectSemiLagrange(-dt, velX, velY, velZ, temp2, temp1, res);
    for (std::size_t i = 0; i < cellCount(res); ++i)
        newField[i] = (oldField[i] - temp1[i]) * 0.5F + temp2[i];
    FLUID_3D::copyBorderX(newField, res);
    FLUID_3D::copyBorderY(newField, res);
    FLUID_3D::copyBorderZ(newField, res);
    forEachCell(res, 1, [&](int x, int y, int z) {
        const std::size_t i = cellAt(res, x, y, z);
        const Vec3 moved{dt * velX[i], dt * velY[i], dt * velZ[i]};
        const Vec3 at{static_cast<float>(x), static_cast<float>(y), static_cast<float>(z)};
        const Vec3 back{at.x - moved.x, at.y - moved.y, at.z - moved.z};
        newField[i] = limitToNeighbours(newField[i], oldField, back, res);
        if (isOutside(back, res) || isOutside({at.x + moved.x, at.y + moved.y, at.z + moved.z}, res))
            newField[i] = temp2[i];
    });
}

/// Weights along one axis, of the value or of the derivative, for the cells middle - 1 to middle + 1.
struct Spline {
    Spline(float p, bool derivative) {
        const double bounded = std::clamp(static_cast<double>(p), -1073741824.0, 1073741824.0);
        const double ceiling = std::ceil(bounded - 0.5);
        middle = static_cast<int>(ceiling);
        const auto t = static_cast<float>(ceiling - (bounded - 0.5));
        if (derivative) {
            weight[0] = -t, weight[1] = 2 * t - 1, weight[2] = 1 - t;
        } else {
            weight[0] = t * t / 2, weight[2] = (1 - t) * (1 - t) / 2;
            weight[1] = 1 - weight[0] - weight[2];
        }
    }
    int middle;
    float weight[3];
};

/// The derivative along `axis` of the tile's interpolant.
inline float noiseDerivative(const float* tile, const Vec3& p, int axis) {
    const Spline x(p.x, axis == 0), y(p.y, axis == 1), z(p.z, axis == 2);
    float slabs[3];
    for (int k = 0; k < 3; ++k) {
        float rows[3];
        for (int j = 0; j < 3; ++j) {
            const float* row = tile + (((z.middle + k - 1) & 127) * 128 + ((y.middle + j - 1) & 127)) * 128;
            rows[j] = x.weight[0] * row[(x.middle - 1) & 127] + x.weight[1] * row[x.middle & 127] +
                      x.weight[2] * row[(x.middle + 1) & 127];
        }
        slabs[k] = y.weight[0] * rows[0] + y.weight[1] * rows[1] + y.weight[2] * rows[2];
    }
    return z.weight[0] * slabs[0] + z.weight[1] * slabs[1] + z.weight[2] * slabs[2];
}

inline Vec3 noiseGradient(const float* tile, const Vec3& p) {
    return {noiseDerivative(tile, p, 0), noiseDerivative(tile, p, 1), noiseDerivative(tile, p, 2)};
}

inline Vec3 curlNoise(const float* tile, const Vec3& p) {
    const Vec3 p1{p.x + 64, p.y, p.z}, p2{p.x, p.y + 64, p.z}, p3{p.x, p.y, p.z + 64};
    return {noiseDerivative(tile, p3, 1) - noiseDerivative(tile, p2, 2),
            noiseDerivative(tile, p1, 2) - noiseDerivative(tile, p3, 0),
            noiseDerivative(tile, p2, 0) - noiseDerivative(tile, p1, 1)};
}

inline Vec3 warpedCurlNoise(const float* tile, const Vec3& p, const Vec3 (&unwarped)[3]) {
    const Vec3 g1 = noiseGradient(tile, {p.x + 64, p.y, p.z});
    const Vec3 g2 = noiseGradient(tile, {p.x, p.y + 64, p.z});
    const Vec3 g3 = noiseGradient(tile, {p.x, p.y, p.z + 64});
    return {dot(unwarped[1], g3) - dot(unwarped[2], g2), dot(unwarped[2], g1) - dot(unwarped[0], g3),
            dot(unwarped[0], g2) - dot(unwarped[1], g1)};
}

inline float smallestDifference(const float* field, const GridSize& res, std::size_t cell, int c, int axis) {
    const std::ptrdiff_t row = res[0], strides[3] = {1, row, row * res[1]};
    const float* f = field + cell;
    const auto n = static_cast<float>(res[axis]);
    const std::ptrdiff_t step = strides[axis];
    const bool hasBack = c > 1, hasForward = c < res[axis] - 2;
    const float forward = hasForward ? (f[step] - f[0]) * n : std::numeric_limits<float>::max();
    if (c <= 1) return forward;
    const float back = hasBack ? (f[0] - f[-step]) * n : 0;
    if (c >= res[axis] - 2) return back;
    float value = (f[step] - f[-step]) * n * 0.5F;
    if (!(std::fabs(forward) > std::fabs(value))) value = forward;
    if (!(std::fabs(back) > std::fabs(value))) value = back;
    return value;
}

/// The warp of one coarse cell; whether its Jacobian can be inverted.
inline bool measureWarp(WTURBULENCE& w, int x, int y, int z, Vec3 (&unwarped)[3]) {
    const std::size_t cell = cellAt(w.resSm, x, y, z);
    const float* const coordinates[3] = {w.texU.data(), w.texV.data(), w.texW.data()};
    const int index[3] = {x, y, z};
    double jacobian[3][3];
    for (int axis = 0; axis < 3; ++axis) {
        for (int i = 0; i < 3; ++i)
            jacobian[axis][i] = smallestDifference(coordinates[i], w.resSm, cell, index[axis], axis);
    }
    const LuFactors<double> lu = luFactors(jacobian);
    for (int i = 0; i < 3; ++i)
        unwarped[i] = {i == 0 ? 1.0F : 0.0F, i == 1 ? 1.0F : 0.0F, i == 2 ? 1.0F : 0.0F};
    if (isSingular(lu)) return false;
    for (int i = 0; i < 3; ++i) {
        double u[3];
        solveUnit(lu, i, u);
        unwarped[i] = {static_cast<float>(u[0]), static_cast<float>(u[1]), static_cast<float>(u[2])};
    }
    const EigenvalueRange<double> range = eigenvalueRange(jacobian);
    w.eigMin[cell] = static_cast<float>(range.smallest);
    w.eigMax[cell] = static_cast<float>(range.largest);
    return true;
}

inline void advanceTextureCoordinates(WTURBULENCE& w, float dt, const float* xvel, const float* yvel,
                                      const float* zvel) {
    for (FloatArray* coordinate : {&w.texU, &w.texV, &w.texW}) {
        coordinate->swap(w.texTemp);
        FLUID_3D::copyBorderZ(w.texTemp.data(), w.resSm);
        FLUID_3D::copyBorderY(w.texTemp.data(), w.resSm);
        FLUID_3D::copyBorderX(w.texTemp.data(), w.resSm);
        plain::advectMacCormack(dt, xvel, yvel, zvel, w.texTemp.data(), coordinate->data(), w.tempBig1.data(),
                                w.tempBig2.data(), w.resSm);
    }
}

/// The velocity of one fine cell under the coarse cell `coarse`.
inline float synthesize(WTURBULENCE& w, const float* const (&vel)[3], int x, int y, int z, std::size_t coarse,
                        const Vec3 (*unwarped)[3]) {
    const float inverse = 1.0F / static_cast<float>(w.amplify);
    const Vec3 at{static_cast<float>(x) * inverse, static_cast<float>(y) * inverse,
                  static_cast<float>(z) * inverse};
    Vec3 v{lerp3d(vel[0], at, w.resSm), lerp3d(vel[1], at, w.resSm), lerp3d(vel[2], at, w.resSm)};
    Vec3 p{lerp3d(w.texU.data(), at, w.resSm) * static_cast<float>(w.xResSm),
           lerp3d(w.texV.data(), at, w.resSm) * static_cast<float>(w.yResSm),
           lerp3d(w.texW.data(), at, w.resSm) * static_cast<float>(w.zResSm)};
    const float energy = lerp3d(w.energy.data(), at, w.resSm);
    float amplitude = std::fabs(0.5F * std::sqrt(2 * std::fabs(energy))) * w.strength * 0.56123F;
    if (w.eigMax[coarse] < 2 && w.eigMin[coarse] > 0.5F && amplitude > w.cullThreshold) {
        const float* tile = w.noiseTile.data();
        for (int octave = 0; octave < w.octaves; ++octave) {
            const Vec3 noise = unwarped ? warpedCurlNoise(tile, p, *unwarped) : curlNoise(tile, p);
            v = {v.x + amplitude * noise.x, v.y + amplitude * noise.y, v.z + amplitude * noise.z};
            amplitude *= 0.56123F;
            p = {p.x * 2, p.y * 2, p.z * 2};
        }
    }
    const std::size_t fine = cellAt(w.resBig, x, y, z);
    w.bigVelX[fine] = v.x, w.bigVelY[fine] = v.y, w.bigVelZ[fine] = v.z;
    return dot(v, v);
}

inline void finish(WTURBULENCE& w, float dt, float maxSquared, bool useMacCormack, int maxSubSteps) {
    w.densityBig.swap(w.densityBigOld);
    const float dtBig = static_cast<float>(w.amplify) * dt;
    const float wanted = std::sqrt(maxSquared) * dtBig / static_cast<float>(maxSubSteps);
    const int steps = static_cast<int>(std::clamp(wanted, 1.0F, static_cast<float>(maxSubSteps)));
    const float dtSub = dtBig / static_cast<float>(steps);
    FLUID_3D::zeroBorderZ(w.bigVelZ.data(), w.resBig);
    FLUID_3D::zeroBorderY(w.bigVelY.data(), w.resBig);
    FLUID_3D::zeroBorderX(w.bigVelX.data(), w.resBig);
    const float *x = w.bigVelX.data(), *y = w.bigVelY.data(), *z = w.bigVelZ.data();
    for (int step = 0; step < steps; ++step) {
        if (step > 0) w.densityBig.swap(w.densityBigOld);
        const float* from = w.densityBigOld.data();
        float* to = w.densityBig.data();
        if (useMacCormack)
            plain::advectMacCormack(dtSub, x, y, z, from, to, w.tempBig1.data(), w.tempBig2.data(), w.resBig);
        else
            plain::advectSemiLagrange(dtSub, x, y, z, from, to, w.resBig);
    }
    FLUID_3D::zeroBorderX(w.densityBig.data(), w.resBig);
    FLUID_3D::zeroBorderY(w.densityBig.data(), w.resBig);
    FLUID_3D::zeroBorderZ(w.densityBig.data(), w.resBig);
    w.restoreTextureCoordinates();
    ++w.stepCount;
}

inline void stepNoiseAdvection(WTURBULENCE& w, float dt, const float* xvel, const float* yvel,
                               const float* zvel, bool useMacCormack, int maxSubSteps) {
    plain::advanceTextureCoordinates(w, dt, xvel, yvel, zvel);
    Vec3 unused[3];
    forEachCell(w.resSm, 1, [&](int x, int y, int z) {
        if (measureWarp(w, x, y, z, unused)) return;
        const std::size_t cell = cellAt(w.resSm, x, y, z);
        w.eigMax[cell] = 10, w.eigMin[cell] = 0.1F;
    });
    w.measureEnergy(xvel, yvel, zvel);
    w.isolateHighFrequencyEnergy();
    float most = 0;
    const float inverse = 1.0F / static_cast<float>(w.amplify);
    const float* const vel[3] = {xvel, yvel, zvel};
    forEachCell(w.resBig, 1, [&](int x, int y, int z) {
        const auto under = [&](int fine) { return static_cast<int>(static_cast<float>(fine) * inverse); };
        const std::size_t coarse = cellAt(w.resSm, under(x), under(y), under(z));
        most = std::max(most, synthesize(w, vel, x, y, z, coarse, nullptr));
    });
    finish(w, dt, most, useMacCormack, maxSubSteps);
}

inline void stepFullTurbulence(WTURBULENCE& w, float dt, const float* xvel, const float* yvel,
                               const float* zvel, bool useMacCormack, int maxSubSteps) {
    plain::advanceTextureCoordinates(w, dt, xvel, yvel, zvel);
    w.measureEnergy(xvel, yvel, zvel);
    w.isolateHighFrequencyEnergy();
    float most = 0;
    const float* const vel[3] = {xvel, yvel, zvel};
    forEachCell(w.resSm, 0, [&](int x, int y, int z) {
        Vec3 unwarped[3];
        (void)measureWarp(w, x, y, z, unwarped);
        const std::size_t coarse = cellAt(w.resSm, x, y, z);
        const auto first = [&](int c) { return std::max(c * w.amplify, 1); };
        const auto end = [&](int c, int n) { return std::min((c + 1) * w.amplify, n - 1); };
        for (int fz = first(z); fz < end(z, w.zResBig); ++fz) {
            for (int fy = first(y); fy < end(y, w.yResBig); ++fy) {
                for (int fx = first(x); fx < end(x, w.xResBig); ++fx)
                    most = std::max(most, synthesize(w, vel, fx, fy, fz, coarse, &unwarped));
            }
        }
    });
    finish(w, dt, most, useMacCormack, maxSubSteps);
}

} // namespace vesk::fluid::plain
