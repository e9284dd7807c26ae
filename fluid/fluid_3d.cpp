#include "fluid/fluid_3d.h"

#include "fluid/float_array.h"
#include "fluid/kernels.h"

#include <algorithm>

#include <omp.h>

namespace vesk::fluid {

namespace {

/// The cell whose value a cell takes when the border of its axis is copied.
int borderSource(int cell, int res) {
    if (res == 1) return cell;
    return res == 2 ? 1 : std::clamp(cell, 1, res - 2);
}

/// The cells along an axis that take the value of `cell`, itself among them if any.
struct Range {
    int first, last;
};

Range borderTargets(int cell, int res) {
    if (borderSource(cell, res) != cell) return {0, -1};
    const int first = cell == 1 ? 0 : cell;
    const int last = cell >= res - 2 ? res - 1 : cell;
    return {first, last};
}

/// The rows of some slabs in portions that one thread takes: few rows by few slabs, so that what the flow
/// fetches from neighbouring rows and slabs is still in the thread's cache.
class Tiles {
  public:
    Tiles(int yRes, int firstZ, int lastZ)
        : yRes_(yRes), firstZ_(firstZ), lastZ_(lastZ), across_((yRes + rows - 1) / rows) {}

    int count() const { return across_ * ((lastZ_ - firstZ_ + slabs - 1) / slabs); }

    template <class Do>
    void forEachRow(int tile, Do&& visit) const {
        const int y0 = tile % across_ * rows, y1 = std::min(y0 + rows, yRes_);
        const int z0 = firstZ_ + tile / across_ * slabs, z1 = std::min(z0 + slabs, lastZ_);
        for (int z = z0; z < z1; ++z) {
            for (int y = y0; y < y1; ++y)
                visit(y, z);
        }
    }

  private:
    static constexpr int rows = 16, slabs = 8;
    int yRes_, firstZ_, lastZ_, across_;
};

/// One MacCormack step. The second half of a slab follows as soon as the first half is done as far as the
/// flow reaches from it, while the values are still in the cache.
class MacCormack {
  public:
    MacCormack(const Flow& flow, const float* oldField, float* newField, float* temp1, float* temp2)
        : flow_(flow), xRes_(flow.res[0]), yRes_(flow.res[1]), zRes_(flow.res[2]), oldField_(oldField),
          newField_(newField), temp1_(temp1), temp2_(temp2), threads_(threadsFor(cellCount(flow.res))),
          reach_(static_cast<std::size_t>(yRes_) * zRes_), rows_(static_cast<std::size_t>(xRes_) * threads_) {
    }

    void run() {
        // Few slabs stay in a core's own cache; where the flow reaches far they wait longer than that, and
        // many slabs share what they fetch.
        const int few = slabsOf(1 << 16), many = slabsOf(1 << 19);
        constexpr int soon = 2;
#pragma omp parallel num_threads(threads_)
        {
            int corrected = 0, last = 0;
            while (last < zRes_) {
                const int first = last;
                last = std::min(first + (first - corrected > soon ? many : few), zRes_);
                const Tiles fresh(yRes_, first, last);
#pragma omp for schedule(dynamic)
                for (int tile = 0; tile < fresh.count(); ++tile)
                    fresh.forEachRow(tile, [&](int y, int z) { forward(y, z); });
                const int ready = slabsReady(corrected, last);
                const Tiles known(yRes_, corrected, ready);
#pragma omp for schedule(dynamic) nowait
                for (int tile = 0; tile < known.count(); ++tile)
                    known.forEachRow(tile, [&](int y, int z) { correct(y, z); });
                corrected = ready;
            }
        }
    }

  private:
    int slabsOf(int cells) const { return std::clamp(cells / std::max(1, xRes_ * yRes_), 1, zRes_); }

    /// Keeps the extremes that limit the result where the result and temp1 will be.
    void forward(int y, int z) {
        reach_[static_cast<std::size_t>(z) * yRes_ + y] = kernels_.forward(
            flow_,
            {.oldField = oldField_, .advected = temp2_, .low = newField_, .high = temp1_, .y = y, .z = z});
    }

    /// The end of the slabs, from `from`, that need nothing beyond the slabs before `done`.
    int slabsReady(int from, int done) const {
        if (done == zRes_) return zRes_;
        for (int z = from; z < done; ++z) {
            const float* reach = reach_.data() + static_cast<std::size_t>(z) * yRes_;
            const float farthest = *std::max_element(reach, reach + yRes_);
            // one more for the blend, and one at least for the border layer
            if (std::max(static_cast<float>(z), farthest) + 1 >= static_cast<float>(done)) return z;
        }
        return done;
    }

    void correct(int y, int z) {
        const Range targetY = borderTargets(y, yRes_), targetZ = borderTargets(z, zRes_);
        const bool isSource = targetY.first <= targetY.last && targetZ.first <= targetZ.last;
        float* unlimited = rows_.data() + static_cast<std::size_t>(omp_get_thread_num()) * xRes_;
        const bool interior = y > 0 && y < yRes_ - 1 && z > 0 && z < zRes_ - 1;
        kernels_.backward(flow_, {.oldField = oldField_,
                                  .advected = temp2_,
                                  .newField = newField_,
                                  .back = temp1_,
                                  .unlimited = isSource ? unlimited : nullptr,
                                  .limit = interior,
                                  .y = y,
                                  .z = z});
        if (!isSource) return;
        unlimited[0] = unlimited[borderSource(0, xRes_)];
        unlimited[xRes_ - 1] = unlimited[borderSource(xRes_ - 1, xRes_)];
        for (int toZ = targetZ.first; toZ <= targetZ.last; ++toZ) {
            for (int toY = targetY.first; toY <= targetY.last; ++toY) {
                float* to = newField_ + (static_cast<std::size_t>(toZ) * yRes_ + toY) * xRes_;
                if (interior && toY == y && toZ == z) {
                    to[0] = unlimited[0];
                    to[xRes_ - 1] = unlimited[xRes_ - 1];
                } else {
                    std::copy_n(unlimited, xRes_, to);
                }
            }
        }
    }

    const AdvectionKernels& kernels_ = kernels().advection;
    Flow flow_;
    int xRes_, yRes_, zRes_;
    const float* oldField_;
    float *newField_, *temp1_, *temp2_;
    int threads_;
    FloatArray reach_; ///< per row: the largest z that its second half asks for
    FloatArray rows_;  ///< per thread: a row before it is limited
};

/// The layers of a grid along one axis: `count` of them, each of `lines` runs of `run` cells, `stride` apart.
struct Layers {
    Layers(const GridSize& res, int axis) : count(res[axis]) {
        for (int i = 0; i < axis; ++i)
            run *= res[i];
        for (int i = axis + 1; i < 3; ++i)
            lines *= res[i];
        stride = run * count;
    }
    template <class Change>
    void forEachRun(float* field, Change&& change) const {
        for (std::size_t i = 0; i < lines; ++i)
            change(field + i * stride);
    }

    std::size_t count, run = 1, lines = 1, stride;
};

void copyBorder(float* field, const GridSize& res, int axis) {
    if (cellCount(res) == 0 || res[axis] == 1) return;
    const Layers layers(res, axis);
    layers.forEachRun(field, [&](float* first) {
        float* last = first + (layers.count - 1) * layers.run;
        std::copy_n(first + layers.run, layers.run, first);
        std::copy_n(last - layers.run, layers.run, last);
    });
}

void zeroBorder(float* field, const GridSize& res, int axis) {
    if (cellCount(res) == 0) return;
    const Layers layers(res, axis);
    layers.forEachRun(field, [&](float* first) {
        std::fill_n(first, layers.run, 0.0F);
        std::fill_n(first + (layers.count - 1) * layers.run, layers.run, 0.0F);
    });
}

} // namespace

void FLUID_3D::advectSemiLagrange(float dt, const float* velX, const float* velY, const float* velZ,
                                  const float* oldField, float* newField, const GridSize& res) {
    if (cellCount(res) == 0) return;
    const AdvectionKernels& kernels = fluid::kernels().advection;
    const Flow flow{velX, velY, velZ, res, dt};
    const Tiles tiles(res[1], 0, res[2]);
#pragma omp parallel for schedule(dynamic) num_threads(threadsFor(cellCount(res)))
    for (int tile = 0; tile < tiles.count(); ++tile) {
        tiles.forEachRow(tile, [&](int y, int z) {
            kernels.forward(flow, {.oldField = oldField,
                                   .advected = newField,
                                   .low = nullptr,
                                   .high = nullptr,
                                   .y = y,
                                   .z = z});
        });
    }
}

void FLUID_3D::advectMacCormack(float dt, const float* velX, const float* velY, const float* velZ,
                                const float* oldField, float* newField, float* temp1, float* temp2,
                                const GridSize& res) {
    if (cellCount(res) == 0) return;
    MacCormack({velX, velY, velZ, res, dt}, oldField, newField, temp1, temp2).run();
}

void FLUID_3D::copyBorderX(float* field, const GridSize& res) { copyBorder(field, res, 0); }
void FLUID_3D::copyBorderY(float* field, const GridSize& res) { copyBorder(field, res, 1); }
void FLUID_3D::copyBorderZ(float* field, const GridSize& res) { copyBorder(field, res, 2); }
void FLUID_3D::zeroBorderX(float* field, const GridSize& res) { zeroBorder(field, res, 0); }
void FLUID_3D::zeroBorderY(float* field, const GridSize& res) { zeroBorder(field, res, 1); }
void FLUID_3D::zeroBorderZ(float* field, const GridSize& res) { zeroBorder(field, res, 2); }

} // namespace vesk::fluid
