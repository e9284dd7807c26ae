#pragma once
// What finds a mesh's triangles by place: hits of rays and nearest points.

#include "host/geometry/closest_point.h"
#include "host/geometry/mesh.h"
#include "host/geometry/ray_triangle.h"

#include <limits>

namespace vesk::geom {

/// A point of a mesh.
struct MeshPoint : TrianglePoint {
    int face = -1, triangle = -1; ///< triangle within the face
    double squaredDistance = std::numeric_limits<double>::infinity();
};

/// Where a ray meets a mesh.
struct MeshHit : TriangleHit {
    int face = -1, triangle = -1; ///< triangle within the face
};

/// A ray and how far it goes: from 0 to `maxParam` lengths of its direction, and as far back when both ways
/// are asked for. `tolerance` as for `hitTriangle`; below 0 counts as 0.
struct RayQuery {
    Ray ray;
    double maxParam = std::numeric_limits<double>::infinity();
    bool bothDirections = false;
    double tolerance = 1e-6;
};

/// The triangles of a mesh at one time, sorted once. Answers are the same to the bit as those of the plain
/// loop through all triangles with `hitTriangle` and `closestOnTriangle`; of equals the lowest face is taken,
/// then its lowest triangle. Triangles with a corner that is no finite number count for nothing; a query with
/// such numbers finds nothing. Queries are safe from several threads.
class MeshIndex {
  public:
    explicit MeshIndex(const Mesh& mesh);
    ~MeshIndex();
    MeshIndex(const MeshIndex&) = delete;
    MeshIndex& operator=(const MeshIndex&) = delete;

    /// Nothing beyond `maxDistance`, which itself is in reach.
    std::optional<MeshPoint> closestPoint(const MVector& p,
                                          double maxDistance = std::numeric_limits<double>::infinity()) const;
    /// The hit nearest to the source, on either side of it when both ways are asked for.
    std::optional<MeshHit> firstHit(const RayQuery& query) const;
    /// Every triangle that is met, by ascending param, then face and triangle.
    std::vector<MeshHit> allHits(const RayQuery& query) const;

    std::size_t byteSize() const;

  private:
    struct Parts;
    std::unique_ptr<Parts> parts_;
};

} // namespace vesk::geom
