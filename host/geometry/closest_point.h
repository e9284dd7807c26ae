#pragma once
// The point of a mesh nearest to another point.

#include "host/geometry/mesh.h"

#include <limits>
#include <memory>

namespace vesk::geom {

/// A point of a triangle by the weights of its corners, which sum to 1.
struct TrianglePoint {
    MVector point;
    std::array<double, 3> weights{};
};

/// The point of the triangle a b c nearest to `p`, by the region of the triangle's plane that `p` lies over
/// (C. Ericson, "Real-Time Collision Detection", 2005, 5.1.5). A triangle without area is taken as its edges.
TrianglePoint closestOnTriangle(const MVector& p, const MVector& a, const MVector& b, const MVector& c);

/// A point of a mesh.
struct MeshPoint : TrianglePoint {
    int face = -1, triangle = -1; ///< triangle within the face
    double squaredDistance = std::numeric_limits<double>::infinity();
};

/// Answers many queries on one mesh, whose triangles it sorts once. Queries are safe from several threads.
class ClosestPoints {
  public:
    explicit ClosestPoints(const Mesh& mesh);
    ~ClosestPoints();
    ClosestPoints(const ClosestPoints&) = delete;
    ClosestPoints& operator=(const ClosestPoints&) = delete;

    /// The same to the bit as the plain search through all triangles; of triangles at one distance the lowest
    /// face, then the lowest triangle. Nothing within `maxDistance`, or when `p` is no number. Triangles with
    /// a corner that is no finite number count for nothing.
    std::optional<MeshPoint> find(const MVector& p,
                                  double maxDistance = std::numeric_limits<double>::infinity()) const;
    const Mesh& mesh() const { return mesh_; }

  private:
    struct Tree;
    Mesh mesh_;
    std::vector<int> faceOfTriangle_;
    std::unique_ptr<Tree> tree_;
};

} // namespace vesk::geom
