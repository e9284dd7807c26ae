#include "nodes/group/groupMirror.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <numeric>
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

/// Candidates in a hashed grid of cubes twice as wide as the radius, so that what is within the radius of a
/// place lies in at most eight of them.
class NearPoints {
  public:
    NearPoints(std::span<const MPoint> points, const std::vector<int>& candidates, double radius)
        : reach_(radius * (1 + 1e-9)), edge_(2 * radius) {
        while (mask_ < candidates.size())
            mask_ = 2 * mask_ + 1;
        std::vector<std::uint64_t> buckets;
        buckets.reserve(candidates.size());
        start_.assign(mask_ + 2, 0);
        for (const int candidate : candidates) {
            const MPoint& p = points[static_cast<std::size_t>(candidate)];
            buckets.push_back(bucketOf(cubeAt(p.x), cubeAt(p.y), cubeAt(p.z)));
            ++start_[buckets.back() + 1];
        }
        std::partial_sum(start_.begin(), start_.end(), start_.begin());
        end_.assign(start_.begin(), start_.end() - 1);
        places_.resize(candidates.size());
        for (std::size_t i = 0; i < candidates.size(); ++i)
            places_[end_[buckets[i]]++] = candidates[i];
    }

    /// Calls `visit` with each candidate that may be near; one for which it says so goes.
    template <class Visit>
    void takeNear(const MPoint& p, Visit&& visit) {
        for (std::int64_t x = cubeAt(p.x - reach_); x <= cubeAt(p.x + reach_); ++x) {
            for (std::int64_t y = cubeAt(p.y - reach_); y <= cubeAt(p.y + reach_); ++y) {
                for (std::int64_t z = cubeAt(p.z - reach_); z <= cubeAt(p.z + reach_); ++z)
                    takeFrom(bucketOf(x, y, z), visit);
            }
        }
    }

  private:
    template <class Visit>
    void takeFrom(std::uint64_t bucket, Visit&& visit) {
        std::uint32_t& end = end_[bucket];
        for (std::uint32_t i = start_[bucket]; i < end;) {
            if (visit(places_[i])) {
                std::swap(places_[i], places_[--end]);
            } else {
                ++i;
            }
        }
    }
    std::int64_t cubeAt(double coordinate) const {
        const double at = std::floor(coordinate / edge_);
        return std::abs(at) < 1e15 ? static_cast<std::int64_t>(at) : 0;
    }
    std::uint64_t bucketOf(std::int64_t x, std::int64_t y, std::int64_t z) const {
        const std::uint64_t mixed = static_cast<std::uint64_t>(x) * 0x9e3779b97f4a7c15U ^
                                    static_cast<std::uint64_t>(y) * 0xc2b2ae3d27d4eb4fU ^
                                    static_cast<std::uint64_t>(z) * 0x165667b19e3779f9U;
        return (mixed ^ mixed >> 32) & mask_;
    }

    double reach_, edge_;
    std::uint64_t mask_ = 15;
    std::vector<std::uint32_t> start_, end_; ///< of each bucket
    std::vector<int> places_;
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
    std::vector<int> candidates;
    for (std::size_t i = 0; i < points.size(); ++i) {
        const MPoint reflection = reflected(points[i], settings);
        if (reach.contains(reflection) && isOnSide(reflection, settings))
            candidates.push_back(static_cast<int>(i));
    }
    if (!settings.precise) return candidates;
    MirrorGrid grid(points, settings);
    std::vector<std::int64_t> keys(points.size());
    for (const int candidate : candidates) {
        const auto at = static_cast<std::size_t>(candidate);
        keys[at] = grid.enter(reflected(points[at], settings));
    }
    NearPoints near(points, candidates, settings.radius);
    std::vector<int> mirrored;
    for (const int index : selected) {
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
