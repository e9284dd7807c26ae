#include "nodes/group/groupMirror.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <unordered_map>
#include <utility>

namespace vesk::nodes {

namespace {

MPoint reflected(const MPoint& p, const MirrorSettings& s) {
    MPoint q = p;
    const auto axis = static_cast<unsigned>(s.axis);
    q[axis] = p[axis] - 2 * (p[axis] - s.origin[axis]);
    return q;
}

bool isOnSide(const MPoint& p, const MirrorSettings& s) {
    const double coordinate = p[static_cast<unsigned>(s.axis)];
    if (s.direction == MirrorDirection::kPositiveToNegative) return !(coordinate < 0);
    if (s.direction == MirrorDirection::kNegativeToPositive) return !(coordinate > 0);
    return true;
}

double squaredDistance(const MBoundingBox& box, const MPoint& p) {
    double sum = 0;
    for (unsigned axis = 0; axis < 3; ++axis) {
        const double outside = std::max({box.min()[axis] - p[axis], 0.0, p[axis] - box.max()[axis]});
        sum += outside * outside;
    }
    return sum;
}

/// The cells of the contract: where the reflection of a point lies, and the cell's box brought back to the
/// point's side.
class MirrorGrid {
  public:
    MirrorGrid(std::span<const MPoint> points, const MirrorSettings& settings) : settings_(settings) {
        MBoundingBox all;
        for (const MPoint& point : points)
            all.expand(point);
        min_ = all.min();
        const double extent[] = {all.width(), all.height(), all.depth()};
        for (unsigned axis = 0; axis < 3; ++axis)
            cell_[axis] = extent[axis] / settings.resolution[axis];
    }

    /// Puts the cell of a reflected point on record and answers its key.
    std::int64_t enter(const MPoint& reflection) {
        std::int64_t at[3];
        MPoint low = min_, high = min_;
        for (unsigned axis = 0; axis < 3; ++axis) {
            at[axis] = cellAt(std::abs(reflection[axis] - min_[axis]), cell_[axis]);
            low[axis] += static_cast<double>(at[axis]) * cell_[axis];
            high[axis] += static_cast<double>(at[axis] + 1) * cell_[axis];
        }
        const std::int64_t key =
            (at[1] * mirrorKeyResolution(settings_.resolution[2]) + at[2]) * settings_.resolution[0] + at[0];
        boxes_.insert_or_assign(key, MBoundingBox(reflected(low, settings_), reflected(high, settings_)));
        return key;
    }

    bool isNear(std::int64_t key, const MPoint& p, double radius) const {
        const MBoundingBox& box = boxes_.at(key);
        return box.contains(p) || squaredDistance(box, p) <= radius * radius;
    }

  private:
    static std::int64_t cellAt(double distance, double cell) {
        if (!(cell > 0)) return 0; // flat along this axis
        const double up = std::ceil(distance / cell);
        return up > 0 && up < 1e15 ? static_cast<std::int64_t>(up) - 1 : 0;
    }

    const MirrorSettings& settings_;
    MPoint min_;
    double cell_[3];
    std::unordered_map<std::int64_t, MBoundingBox> boxes_;
};

/// Candidates by place, in cubes of the radius, so that what is within the radius lies in 27 of them.
class NearPoints {
  public:
    explicit NearPoints(double edge) : edge_(edge) {}

    void add(const MPoint& p, int point) { cubes_[key(cubeOf(p))].push_back(point); }

    /// Calls `visit` with each point that may be near; one for which it says so goes.
    template <class Visit>
    void takeNear(const MPoint& p, Visit&& visit) {
        const Cube middle = cubeOf(p);
        for (std::int64_t x = -1; x <= 1; ++x) {
            for (std::int64_t y = -1; y <= 1; ++y) {
                for (std::int64_t z = -1; z <= 1; ++z) {
                    const auto found = cubes_.find(key({middle.x + x, middle.y + y, middle.z + z}));
                    if (found == cubes_.end()) continue;
                    std::erase_if(found->second, visit);
                    if (found->second.empty()) cubes_.erase(found);
                }
            }
        }
    }

  private:
    struct Cube {
        std::int64_t x, y, z;
    };
    Cube cubeOf(const MPoint& p) const { return {along(p.x), along(p.y), along(p.z)}; }
    std::int64_t along(double coordinate) const {
        const double at = std::floor(coordinate / edge_);
        return std::abs(at) < 1e15 ? static_cast<std::int64_t>(at) : 0;
    }
    static std::uint64_t key(const Cube& cube) {
        return static_cast<std::uint64_t>(cube.x) * 0x9e3779b97f4a7c15U ^
               static_cast<std::uint64_t>(cube.y) * 0xc2b2ae3d27d4eb4fU ^
               static_cast<std::uint64_t>(cube.z) * 0x165667b19e3779f9U;
    }

    double edge_;
    std::unordered_map<std::uint64_t, std::vector<int>> cubes_;
};

} // namespace

int mirrorKeyResolution(int resolutionZ) {
    for (int shared = 3; shared <= 6144; shared *= 2) {
        if (resolutionZ == shared) return resolutionZ - 1;
    }
    return resolutionZ;
}

MBoundingBox mirrorReach(std::span<const MPoint> points, std::span<const int> selected, double radius) {
    const MVector reach(radius, radius, radius);
    MBoundingBox box;
    for (const int index : selected) {
        const MPoint& p = points[static_cast<std::size_t>(index)];
        box.expand(p + reach);
        box.expand(p - reach);
    }
    return box;
}

std::vector<int> mirroredPoints(std::span<const MPoint> points, std::span<const int> selected,
                                const MirrorSettings& settings) {
    const MBoundingBox reach = mirrorReach(points, selected, settings.radius);
    MirrorGrid grid(points, settings);
    NearPoints near(settings.radius);
    std::vector<std::int64_t> keys(points.size());
    std::vector<int> mirrored;
    for (std::size_t i = 0; i < points.size(); ++i) {
        const MPoint reflection = reflected(points[i], settings);
        if (!reach.contains(reflection) || !isOnSide(reflection, settings)) continue;
        const auto index = static_cast<int>(i);
        if (!settings.precise) {
            mirrored.push_back(index);
            continue;
        }
        keys[i] = grid.enter(reflection);
        near.add(points[i], index);
    }
    for (const int index : selected) {
        if (!settings.precise) break;
        const MPoint& p = points[static_cast<std::size_t>(index)];
        if (!isOnSide(p, settings)) continue;
        const MPoint reflection = reflected(p, settings);
        near.takeNear(reflection, [&](int candidate) {
            const auto at = static_cast<std::size_t>(candidate);
            const bool joins = points[at].distanceTo(reflection) <= settings.radius &&
                               grid.isNear(keys[at], reflection, settings.radius);
            if (joins) mirrored.push_back(candidate);
            return joins;
        });
    }
    std::sort(mirrored.begin(), mirrored.end());
    return mirrored;
}

} // namespace vesk::nodes
