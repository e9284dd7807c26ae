#pragma once
// Points pulled along rays onto what the rays hit.

#include "nodes/common/mesh_queries.h"

#include <maya/MFloatPoint.h>
#include <maya/MFloatVector.h>
#include <maya/MPoint.h>
#include <maya/MVector.h>

#include <span>
#include <vector>

namespace vesk::nodes {

/// Values of `rayDirectionMode`.
enum RayDirectionMode : short { kAlongNormals, kFromCentroid, kFromPosition, kCustomDirection };

struct RaySettings {
    short mode = kAlongNormals;
    bool reverse = false, bothDirections = false;
    MVector position;       ///< where rays come from, in the mode of that name
    MFloatVector direction; ///< in the mode of a custom direction
    double weight = 1;
    double minDistance = -1, maxDistance = -1; ///< negative ones test nothing
    double maxAngle = 0;                       ///< radians, for rays from the centroid; up to 0 tests nothing

    bool testsAngles() const { return mode == kFromCentroid && maxAngle > 0; }
};

/// Which points are at work: all, or those of a list of ids.
class Chosen {
  public:
    explicit Chosen(std::size_t all) : count_(all) {}
    /// The ids must stay; each is that of a point.
    explicit Chosen(std::span<const int> ids) : ids_(ids.data()), count_(ids.size()) {}
    std::size_t size() const { return count_; }
    std::size_t operator[](std::size_t i) const { return ids_ ? static_cast<std::size_t>(ids_[i]) : i; }

  private:
    const int* ids_ = nullptr;
    std::size_t count_;
};

/// One ray for each chosen point.
struct Rays {
    std::vector<MFloatPoint> sources;
    std::vector<MFloatVector> directions;
};

/// A point beyond the end of `normals` gets a zero direction in the mode that goes by them.
Rays raysFrom(std::span<const MPoint> points, const Chosen& chosen, std::span<const MFloatVector> normals,
              const RaySettings& settings);

/// Moves each chosen point towards its hit, by `weight` times its own of `weights`; those beyond the end of
/// `weights` by `weight` alone. Hits too near, too far or too steep count as none. `hits` are those of the
/// rays; `hitNormals` the normals of the faces hit, needed if the settings test angles.
void pull(std::span<MPoint> points, const Chosen& chosen, const Rays& rays, std::span<const RayHit> hits,
          std::span<const MVector> hitNormals, std::span<const double> weights, const RaySettings& settings);

} // namespace vesk::nodes
