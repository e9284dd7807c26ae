#pragma once
// The clouds of a consumer's volumes, one behind the other.

#include "volume/sphere_index.h"

#include <array>
#include <span>
#include <vector>

namespace vesk::volume {

struct CloudPoint {
    Sphere sphere; ///< in world space
    Vec3 normal;
    double weight = 0;
    std::array<double, 4> rgba{};
};

/// A cloud as it came over the wire. Entries that shorter arrays lack are zeros.
struct Cloud {
    std::vector<CloudPoint> points;
    bool radiiMatch = true; ///< as many radii as positions
    bool allMatch = true;   ///< and normals, weights, four times as many colour values
    double envelope = 1;
};

/// In what the consumers differ.
struct CloudRules {
    /// A cloud takes part only with points, with a radius for each, and with an envelope of exactly 1.
    /// Without this, whatever came takes part.
    bool onlyWholeClouds = false;
    /// Points of radius 0 widen the cloud's box too.
    bool boxHoldsBarePoints = false;
};

class CloudStore {
  public:
    explicit CloudStore(const CloudRules& rules = {}) : rules_(rules) {}

    /// A cloud that takes no part, or that is faultlessly empty with an envelope other than exactly 1, gets
    /// an empty slice with a box at the origin.
    void add(const Cloud& cloud);

    std::size_t cloudCount() const { return slices_.size(); }
    std::size_t pointCount() const { return points_.size(); }
    const Box& box(std::size_t cloud) const { return slices_[cloud].box; }
    /// By place among the points of all clouds.
    const CloudPoint& point(std::size_t place) const { return points_[place]; }

    /// Calls `visit(place, distance)` for every sphere of the cloud that holds the point, in the cloud's
    /// order, with the distance as the sphere sees it. Nothing for a point outside the cloud's box.
    template <class Visit>
    void eachHolding(std::size_t cloud, const Vec3& p, Visit&& visit) const {
        const Slice& slice = slices_[cloud];
        if (!slice.box.contains(p)) return;
        const auto spheres = slice.spheres(spheres_);
        slice.index.eachNear(p, [&](std::uint32_t i) {
            const double distance = distanceInside(spheres[i], p);
            if (distance != kOutside) visit(slice.start + i, distance);
        });
    }

    /// From the point to the nearest centre of the cloud. `kOutside` for a point outside the cloud's box, and
    /// where there is no centre.
    double distanceToNearest(std::size_t cloud, const Vec3& p) const;

  private:
    struct Slice {
        std::size_t start, end;
        Box box;
        SphereIndex index;
        std::span<const Sphere> spheres(const std::vector<Sphere>& all) const {
            return std::span(all).subspan(start, end - start);
        }
    };
    bool takesPart(const Cloud& cloud) const;

    CloudRules rules_;
    std::vector<CloudPoint> points_;
    std::vector<Sphere> spheres_; ///< those of `points_`, close together for the search
    std::vector<Slice> slices_;
};

} // namespace vesk::volume
