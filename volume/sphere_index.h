#pragma once
// Finds the spheres around a point without looking at all of them.

#include "volume/shapes.h"

#include <cstdint>
#include <span>
#include <vector>

namespace vesk::volume {

/// Hashed grids of cells, one for each size of sphere by powers of two: a sphere lies in a few cells of its
/// level, and a point in one cell of each. Time and memory to build grow with the spheres; a query costs a
/// look at each level that is in use, and what lies nearby. Far outliers and mixed sizes do no harm.
class SphereIndex {
  public:
    explicit SphereIndex(std::span<const Sphere> spheres);

    /// Calls `visit` with the places of spheres, ascending. Every sphere that holds the point is among them.
    template <class Visit>
    void eachNear(const Vec3& p, Visit&& visit) const {
        if (levels_.size() == 1 && everywhere_.empty()) {
            for (const std::uint32_t place : levels_.front().bucketAt(p))
                visit(place);
            return;
        }
        for (const std::uint32_t place : gathered(p))
            visit(place);
    }

  private:
    struct Level {
        int exponent = 0; ///< the cells' edge is two to this power
        double perUnit = 1;
        std::uint64_t mask = 0;           ///< buckets less one
        std::vector<std::uint32_t> start; ///< of each bucket, and the end
        std::vector<std::uint32_t> places;

        std::uint64_t bucketOf(std::int64_t x, std::int64_t y, std::int64_t z) const;
        std::span<const std::uint32_t> bucketAt(const Vec3& p) const;
        void fill(std::span<const Sphere> spheres, const std::vector<std::uint32_t>& members);
    };
    std::vector<std::uint32_t> gathered(const Vec3& p) const;

    std::vector<Level> levels_;
    std::vector<std::uint32_t> everywhere_; ///< without end
};

} // namespace vesk::volume
