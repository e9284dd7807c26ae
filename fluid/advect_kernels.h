#pragma once
// Tracing back through a velocity field, and the two halves of a MacCormack step.

#include "fluid/kernels.h"
#include "fluid/lanes.h"

namespace vesk::fluid {

/// A position between cells: the flat index of the lowest of the eight cells round it, and how far it is on
/// the way to the next.
template <int W>
struct Located {
    Ints<W> cell;
    Floats<W> x, y, z;
};

/// The eight cells round a position: pairs along x by [z][y].
template <int W>
struct Corners {
    LanePair<W> row[2][2];
};

template <int W>
struct Sampler {
    explicit Sampler(const GridSize& res) : xRes(res[0]), slab(res[0] * res[1]) {
        const int strides[3] = {1, xRes, slab};
        for (int axis = 0; axis < 3; ++axis) {
            // An axis of one cell: always in that cell.
            const bool line = res[axis] > 1;
            low[axis] = line ? 0.5F : 0.0F;
            high[axis] = line ? static_cast<float>(res[axis] - 1.5) : 0.0F;
            step[axis] = line ? strides[axis] : 0;
        }
        lastRun = slab * res[2] - step[0] - step[1] - step[2] - W;
    }

    [[gnu::always_inline]] Located<W> locate(Floats<W> x, Floats<W> y, Floats<W> z) const {
        const Floats<W> zero{};
        x = limited(x, zero + low[0], zero + high[0]);
        y = limited(y, zero + low[1], zero + high[1]);
        z = limited(z, zero + low[2], zero + high[2]);
        const Ints<W> ix = toInts<W>(x), iy = toInts<W>(y), iz = toInts<W>(z);
        return {ix + iy * xRes + iz * slab, x - toFloats<W>(ix), y - toFloats<W>(iy), z - toFloats<W>(iz)};
    }

    [[gnu::always_inline]] Corners<W> corners(const float* field, const Ints<W>& cell) const {
        // Neighbouring cells mostly come from neighbouring places: from a few runs of them at least.
        const Ints<W> inStep = cell - laneNumbers<W>();
        const unsigned missing = allLanes<W> & laneBits<W>(inStep != inStep[0]);
        if (missing == 0) return run(field + inStep[0]);
        if constexpr (hasMaskedLoads<W>)
            return runs(field, inStep);
        else
            return twoRuns(field, cell, inStep, missing);
    }

    [[gnu::always_inline]] Corners<W> runs(const float* field, const Ints<W>& inStep) const {
        alignas(W * 4) std::int32_t starts[W];
        std::memcpy(starts, &inStep, sizeof starts);
        Corners<W> corners{};
        unsigned missing = allLanes<W>;
        do {
            const int start = starts[__builtin_ctz(missing)];
            const Ints<W> lanes = inStep == start;
            // What the next row asks for anew, if the flow goes on as it does here.
            const float* const next = field + start + 2 * step[1];
            __builtin_prefetch(next);
            __builtin_prefetch(next + step[2]);
            addRun(corners, field + start, lanes);
            missing &= ~laneBits<W>(lanes);
        } while (missing != 0);
        return corners;
    }

    /// Lanes of their own if there are more runs than two.
    [[gnu::always_inline]] Corners<W> twoRuns(const float* field, const Ints<W>& cell, const Ints<W>& inStep,
                                              unsigned missing) const {
        alignas(W * 4) std::int32_t starts[W];
        std::memcpy(starts, &inStep, sizeof starts);
        const int second = starts[__builtin_ctz(missing)];
        const Ints<W> secondRun = inStep == second;
        missing &= ~laneBits<W>(secondRun);
        if (W > 4 && missing == 0 && isInside(starts[0]) && isInside(second))
            return merged(run(field + starts[0]), secondRun, run(field + second));
        return scattered(field, cell);
    }

    /// The corners of W cells in a row.
    [[gnu::always_inline]] Corners<W> run(const float* from) const {
        Corners<W> corners;
        for (int z = 0; z < 2; ++z) {
            for (int y = 0; y < 2; ++y) {
                const float* row = from + y * step[1] + z * step[2];
                corners.row[z][y] = {loadLanes<W>(row), loadLanes<W>(row + step[0])};
            }
        }
        return corners;
    }

    /// Whether a run of W cells from `cell` on may be read.
    [[gnu::always_inline]] bool isInside(int cell) const { return cell >= 0 && cell <= lastRun; }

    [[gnu::always_inline]] static Corners<W> merged(Corners<W> corners, const Ints<W>& mask,
                                                    const Corners<W>& other) {
        for (int i = 0; i < 4; ++i) {
            LanePair<W>& pair = corners.row[i >> 1][i & 1];
            const LanePair<W>& from = other.row[i >> 1][i & 1];
            pair = {mask ? from.first : pair.first, mask ? from.second : pair.second};
        }
        return corners;
    }

    /// Those lanes of the corners that belong to the run.
    [[gnu::always_inline]] void addRun(Corners<W>& corners, const float* from, const Ints<W>& lanes) const {
        for (int z = 0; z < 2; ++z) {
            for (int y = 0; y < 2; ++y) {
                const float* row = from + y * step[1] + z * step[2];
                LanePair<W>& pair = corners.row[z][y];
                pair = {loadWhere<W>(lanes, row, pair.first),
                        loadWhere<W>(lanes, row + step[0], pair.second)};
            }
        }
    }

    [[gnu::always_inline]] Corners<W> scattered(const float* field, const Ints<W>& cell) const {
        Corners<W> corners;
        std::int32_t cells[W];
        std::memcpy(cells, &cell, sizeof cells);
        for (int z = 0; z < 2; ++z) {
            for (int y = 0; y < 2; ++y) {
                const float* from = field + y * step[1] + z * step[2];
                if (step[0] != 0) {
                    corners.row[z][y] = loadPairs<W>(from, cells);
                } else {
                    Floats<W>& value = corners.row[z][y].first;
                    for (int i = 0; i < W; ++i)
                        value[i] = from[cells[i]];
                    corners.row[z][y].second = value;
                }
            }
        }
        return corners;
    }

    int xRes, slab;
    float low[3], high[3];
    int step[3]; ///< to the next cell along each axis
    int lastRun; ///< the last cell from which a run may be read
};

/// Blends along y, then z, then x.
template <int W>
[[gnu::always_inline]] inline Floats<W> blend(const Corners<W>& c, const Located<W>& at) {
    const Floats<W> y0 = 1.0F - at.y, z0 = 1.0F - at.z;
    const Floats<W> left = z0 * (y0 * c.row[0][0].first + at.y * c.row[0][1].first) +
                           at.z * (y0 * c.row[1][0].first + at.y * c.row[1][1].first);
    const Floats<W> right = z0 * (y0 * c.row[0][0].second + at.y * c.row[0][1].second) +
                            at.z * (y0 * c.row[1][0].second + at.y * c.row[1][1].second);
    return (1.0F - at.x) * left + at.x * right;
}

template <int W>
[[gnu::always_inline]] inline void extremes(const Corners<W>& c, Floats<W>& low, Floats<W>& high) {
    low = high = c.row[0][0].first;
    for (int i = 1; i < 8; ++i) {
        const LanePair<W>& pair = c.row[i >> 2][i >> 1 & 1];
        const Floats<W> value = i & 1 ? pair.second : pair.first;
        low = value < low ? value : low;
        high = value > high ? value : high;
    }
}

/// A row of cells and the flow through it; what is the same for all its vectors is made once.
template <int W>
struct FlowRow {
    FlowRow(const Flow& flow, int cellY, int cellZ)
        : start((static_cast<std::size_t>(cellZ) * flow.res[1] + cellY) * flow.res[0]),
          velX(flow.velX + start), velY(flow.velY + start), velZ(flow.velZ + start),
          dt(Floats<W>{} + flow.dt), y(Floats<W>{} + static_cast<float>(cellY)),
          z(Floats<W>{} + static_cast<float>(cellZ)) {}

    std::size_t start; ///< of the row in the grid
    const float *velX, *velY, *velZ;
    Floats<W> dt, y, z;
};

/// A vector of cells of a row: where they are and how far the flow carries them.
template <int W>
struct MovedCells {
    [[gnu::always_inline]] MovedCells(const FlowRow<W>& row, int first, int count)
        : dx(row.dt * loadSome<W>(row.velX + first, count)),
          dy(row.dt * loadSome<W>(row.velY + first, count)),
          dz(row.dt * loadSome<W>(row.velZ + first, count)), x(toFloats<W>(laneNumbers<W>() + first)),
          y(row.y), z(row.z) {}

    Floats<W> dx, dy, dz;
    Floats<W> x, y, z;
};

/// Calls with the first cell and the count of each vector of a row, all but the last known to be full.
template <int W, class Do>
[[gnu::always_inline]] inline void forEachVector(int cells, Do&& visit) {
    int x = 0;
    for (; x + W <= cells; x += W)
        visit(x, W);
    if (x < cells) visit(x, cells - x);
}

inline constexpr int slabsAhead = 4;

/// The row some slabs further on, which is fetched into the cache meanwhile: the flow jumps between slabs too
/// much for the processor to see it coming.
[[gnu::always_inline]] inline const float* rowAhead(const float* field, const GridSize& res, int y, int z) {
    const int ahead = z + slabsAhead < res[2] ? z + slabsAhead : res[2] - 1;
    return field + (static_cast<std::size_t>(ahead) * res[1] + y) * res[0];
}

template <int W, bool wantExtremes>
float forward(const Flow& flow, const ForwardRow& row) {
    const Sampler<W> sampler(flow.res);
    const FlowRow<W> carried(flow, row.y, row.z);
    const float *oldField = row.oldField, *ahead = rowAhead(oldField, flow.res, row.y, row.z);
    float* advected = row.advected + carried.start;
    float* lows = wantExtremes ? row.low + carried.start : nullptr;
    float* highs = wantExtremes ? row.high + carried.start : nullptr;
    Floats<W> farthest{};
    forEachVector<W>(
        flow.res[0], [&](int x, int count) __attribute__((always_inline)) {
            const MovedCells<W> cells(carried, x, count);
            const Located<W> from =
                sampler.locate(cells.x - cells.dx, cells.y - cells.dy, cells.z - cells.dz);
            __builtin_prefetch(ahead + x);
            const Corners<W> corners = sampler.corners(oldField, from.cell);
            storeSome<W>(advected + x, blend(corners, from), count);
            if constexpr (wantExtremes) {
                Floats<W> low, high;
                extremes(corners, low, high);
                storeSome<W>(lows + x, low, count);
                storeSome<W>(highs + x, high, count);
            }
            farthest = cells.dz > farthest ? cells.dz : farthest;
        });
    float most = 0;
    for (int i = 0; i < W; ++i)
        most = farthest[i] > most ? farthest[i] : most;
    return static_cast<float>(row.z) + most;
}

template <int W>
float forwardRow(const Flow& flow, const ForwardRow& row) {
    return row.low ? forward<W, true>(flow, row) : forward<W, false>(flow, row);
}

/// Lanes whose coordinate lies outside [1, last] on the way forward or back.
template <int W>
[[gnu::always_inline]] inline Ints<W> leaves(const Floats<W>& cell, const Floats<W>& moved, float last) {
    const Floats<W> far = magnitude<W>(moved);
    return (cell - far < 1.0F) | (cell + far > last);
}

template <int W, bool limit>
void backward(const Flow& flow, const BackwardRow& row) {
    const Sampler<W> sampler(flow.res);
    const FlowRow<W> carried(flow, row.y, row.z);
    const float *field = row.advected, *advected = field + carried.start,
                *oldField = row.oldField + carried.start;
    float *newField = row.newField + carried.start, *backs = row.back + carried.start;
    float* unlimited = row.unlimited;
    const float last[3] = {static_cast<float>(flow.res[0] - 2), static_cast<float>(flow.res[1] - 2),
                           static_cast<float>(flow.res[2] - 2)};
    forEachVector<W>(
        flow.res[0], [&](int x, int count) __attribute__((always_inline)) {
            const MovedCells<W> cells(carried, x, count);
            const Located<W> from =
                sampler.locate(cells.x + cells.dx, cells.y + cells.dy, cells.z + cells.dz);
            const Floats<W> back = blend(sampler.corners(field, from.cell), from);
            const Floats<W> low = loadSome<W>(newField + x, count), high = loadSome<W>(backs + x, count);
            storeSome<W>(backs + x, back, count);
            if (!unlimited) return;
            const Floats<W> forward = loadSome<W>(advected + x, count);
            Floats<W> value = (loadSome<W>(oldField + x, count) - back) * 0.5F + forward;
            storeSome<W>(unlimited + x, value, count);
            if constexpr (limit) {
                value = value < low ? low : value;
                value = value > high ? high : value;
                const Ints<W> outside = leaves<W>(cells.x, cells.dx, last[0]) |
                                        leaves<W>(cells.y, cells.dy, last[1]) |
                                        leaves<W>(cells.z, cells.dz, last[2]);
                storeSome<W>(newField + x, outside ? forward : value, count);
            }
        });
}

template <int W>
void backwardRow(const Flow& flow, const BackwardRow& row) {
    if (row.limit)
        backward<W, true>(flow, row);
    else
        backward<W, false>(flow, row);
}

} // namespace vesk::fluid
