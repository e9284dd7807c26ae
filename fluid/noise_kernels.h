#pragma once
// The curl of the tile's B-spline interpolant, and the velocity of a row of fine cells.

#include "fluid/kernels.h"
#include "fluid/lanes.h"

namespace vesk::fluid {

template <int W>
[[gnu::always_inline]] inline Floats<W> squareRoots(Floats<W> value) {
#if defined(__AVX__)
    if constexpr (W == 8) return reinterpret_cast<Floats<W>>(_mm256_sqrt_ps(reinterpret_cast<__m256>(value)));
#endif
#if defined(__SSE2__)
    if constexpr (W == 4) return reinterpret_cast<Floats<W>>(_mm_sqrt_ps(reinterpret_cast<__m128>(value)));
#endif
    for (int i = 0; i < W; ++i)
        value[i] = __builtin_sqrtf(value[i]);
    return value;
}

/// The quadratic B-spline along one axis at a position: the cell in the middle, the weights of it and its two
/// neighbours, and the weights of the derivative.
template <int W>
struct SplineAxis {
    [[gnu::always_inline]] explicit SplineAxis(Floats<W> p) {
        constexpr float bound = 1073741824; // whole numbers beyond are of no use and do not fit
        p = limited(p, Floats<W>{} - bound, Floats<W>{} + bound);
        const Ints<W> cut = toInts<W>(p);
        const Ints<W> below = cut + (toFloats<W>(cut) > p);
        const Floats<W> beyond = p - toFloats<W>(below);
        middle = below - (beyond > 0.5F);
        // Exact up to the last addition, so that nothing is lost against the same in double precision.
        const Floats<W> t = 0.5F + (toFloats<W>(middle) - p);
        const Floats<W> rest = 1.0F - t;
        value[0] = t * t * 0.5F;
        value[2] = rest * rest * 0.5F;
        value[1] = 1.0F - value[0] - value[2];
        slope[0] = -t;
        slope[1] = 2.0F * t - 1.0F;
        slope[2] = rest;
    }

    Ints<W> middle;
    Floats<W> value[3], slope[3];
};

template <int W>
struct Vector {
    Floats<W> x, y, z;
};

template <int W>
[[gnu::always_inline]] inline Floats<W> dot(const Vector<W>& a, const Vector<W>& b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

template <int W>
[[gnu::always_inline]] inline Floats<W> weigh(const Floats<W> (&weight)[3], const Floats<W> (&value)[3]) {
    return weight[0] * value[0] + weight[1] * value[1] + weight[2] * value[2];
}

/// The three derivatives share the tile values and what of the sums they have in common. What the caller
/// leaves unused is not computed, as all of this is inlined.
template <int W, class Row>
[[gnu::always_inline]] inline Vector<W> gradientFrom(const SplineAxis<W>& x, const SplineAxis<W>& y,
                                                     const SplineAxis<W>& z, Row&& row) {
    Floats<W> dx[3], dy[3], dz[3];
#pragma GCC unroll 3
    for (int k = 0; k < 3; ++k) {
        Floats<W> value[3], slope[3];
#pragma GCC unroll 3
        for (int j = 0; j < 3; ++j) {
            const LaneTriple<W> v = row(j, k);
            value[j] = x.value[0] * v.a + x.value[1] * v.b + x.value[2] * v.c;
            slope[j] = x.slope[0] * v.a + x.slope[1] * v.b + x.slope[2] * v.c;
        }
        dx[k] = weigh<W>(y.value, slope);
        dy[k] = weigh<W>(y.slope, value);
        dz[k] = weigh<W>(y.value, value);
    }
    return {weigh<W>(z.value, dx), weigh<W>(z.value, dy), weigh<W>(z.slope, dz)};
}

template <int W>
[[gnu::always_inline]] inline Vector<W> gradient(TileRows tile, const SplineAxis<W>& x,
                                                 const SplineAxis<W>& y, const SplineAxis<W>& z) {
    constexpr int side = 128, mask = side - 1;
#if defined(__AVX2__)
    if constexpr (W == 8) {
        // Mostly all lanes need the same nine rows, and few of each: one load serves them all.
        const Ints<W> offset = x.middle - x.middle[0];
        const Ints<W> together =
            (offset >= 0) & (offset <= 5) & (y.middle == y.middle[0]) & (z.middle == z.middle[0]);
        if (laneBits<W>(together) == allLanes<W>) {
            const float* start = tile.values + ((x.middle[0] - 1) & mask);
            const int middleY = y.middle[0], middleZ = z.middle[0];
            return gradientFrom<W>(
                x, y, z, [&](int j, int k) __attribute__((always_inline)) {
                    const int line = ((middleZ + k - 1) & mask) * side + ((middleY + j - 1) & mask);
                    const __m256 values =
                        _mm256_loadu_ps(start + static_cast<std::ptrdiff_t>(line) * tileRowStride);
                    const auto pick = [&](const Ints<W>& at) __attribute__((always_inline)) {
                        return reinterpret_cast<Floats<W>>(
                            _mm256_permutevar8x32_ps(values, reinterpret_cast<__m256i>(at)));
                    };
                    return LaneTriple<W>{pick(offset), pick(offset + 1), pick(offset + 2)};
                });
        }
    }
#endif
    const Ints<W> first = (x.middle - 1) & mask;
    Ints<W> lineY[3], lineZ[3];
    for (int i = 0; i < 3; ++i) {
        lineY[i] = ((y.middle + (i - 1)) & mask) * tileRowStride + first;
        lineZ[i] = ((z.middle + (i - 1)) & mask) * (side * tileRowStride);
    }
    return gradientFrom<W>(
        x, y, z, [&](int j, int k) __attribute__((always_inline)) {
            const Ints<W> cell = lineY[j] + lineZ[k];
            std::int32_t cells[W];
            std::memcpy(cells, &cell, sizeof cells);
            return loadTriples<W>(tile.values, cells);
        });
}

/// The curl at p of three noises, which are the tile moved by half its side along x, y and z. `unwarped` are
/// the vectors along which the derivatives are taken; null: the axes.
template <int W>
[[gnu::always_inline]] inline Vector<W> curl(TileRows tile, const Vector<W>& p, const Vector<W>* unwarped) {
    constexpr float half = 64;
    const SplineAxis<W> x(p.x), y(p.y), z(p.z);
    const Vector<W> g1 = gradient<W>(tile, SplineAxis<W>(p.x + half), y, z);
    const Vector<W> g2 = gradient<W>(tile, x, SplineAxis<W>(p.y + half), z);
    const Vector<W> g3 = gradient<W>(tile, x, y, SplineAxis<W>(p.z + half));
    if (!unwarped) return {g3.y - g2.z, g1.z - g3.x, g2.x - g1.y};
    return {dot(unwarped[1], g3) - dot(unwarped[2], g2), dot(unwarped[2], g1) - dot(unwarped[0], g3),
            dot(unwarped[0], g2) - dot(unwarped[1], g1)};
}

template <int W, bool warped>
[[gnu::always_inline]] inline void addOctaves(const SynthesisRow& row, int x, const Ints<W>& active,
                                              Floats<W> amplitude, Vector<W> at, Vector<W>& velocity) {
    Vector<W> unwarped[3];
    if constexpr (warped) {
        for (int i = 0; i < 3; ++i)
            unwarped[i] = {loadLanes<W>(row.unwarped[3 * i] + x), loadLanes<W>(row.unwarped[3 * i + 1] + x),
                           loadLanes<W>(row.unwarped[3 * i + 2] + x)};
    }
    for (int octave = 0; octave < row.octaves; ++octave) {
        const Vector<W> noise = curl<W>(row.tile, at, warped ? unwarped : nullptr);
        velocity.x = active ? velocity.x + amplitude * noise.x : velocity.x;
        velocity.y = active ? velocity.y + amplitude * noise.y : velocity.y;
        velocity.z = active ? velocity.z + amplitude * noise.z : velocity.z;
        amplitude = amplitude * 0.56123F;
        at = {at.x * 2.0F, at.y * 2.0F, at.z * 2.0F};
    }
}

template <int W, bool warped>
float synthesize(const SynthesisRow& row) {
    Floats<W> most{};
    for (int x = 0; x < row.count; x += W) {
        const Floats<W> right = loadLanes<W>(row.fraction + x), left = 1.0F - right;
        const auto sample = [&](CoarseField field) __attribute__((always_inline)) {
            const LanePair<W> pair = loadPairs<W>(row.coarse[field], row.source + x);
            return left * pair.first + right * pair.second;
        };
        Vector<W> velocity = {sample(velocityX), sample(velocityY), sample(velocityZ)};
        const Floats<W> energy = sample(kineticEnergy);
        const Floats<W> amplitude =
            0.5F * squareRoots<W>(2.0F * (energy < 0.0F ? -energy : energy)) * row.gain * 0.56123F;
        const Ints<W> active = (loadLanes<W>(row.calm + x) != 0.0F) & (amplitude > row.cullThreshold);
        if (row.octaves > 0 && laneBits<W>(active) != 0) {
            const Vector<W> at = {sample(textureU) * row.resSm[0], sample(textureV) * row.resSm[1],
                                  sample(textureW) * row.resSm[2]};
            addOctaves<W, warped>(row, x, active, amplitude, at, velocity);
        }
        storeLanes<W>(row.velX + x, velocity.x);
        storeLanes<W>(row.velY + x, velocity.y);
        storeLanes<W>(row.velZ + x, velocity.z);
        const Floats<W> squared = dot(velocity, velocity);
        most = squared > most ? squared : most;
    }
    float result = 0;
    for (int i = 0; i < W; ++i)
        result = most[i] > result ? most[i] : result;
    return result;
}

template <int W>
float synthesizeRow(const SynthesisRow& row) {
    return row.unwarped ? synthesize<W, true>(row) : synthesize<W, false>(row);
}

} // namespace vesk::fluid
