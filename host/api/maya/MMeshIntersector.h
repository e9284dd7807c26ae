#pragma once

#include <maya/MFloatPoint.h>
#include <maya/MFloatVector.h>
#include <maya/MMatrix.h>
#include <maya/MStatus.h>

#include <cfloat>
#include <memory>

class MObject;
class MPoint;

namespace vesk::geom {
class Mesh;
}

/// A point of a mesh, as `MMeshIntersector` finds it, in the mesh's own space.
class MPointOnMesh {
  public:
    MFloatPoint& getPoint() { return point_; }
    /// Of the face.
    MFloatVector& getNormal() { return normal_; }
    int faceIndex() const { return face_; }
    /// Within the face.
    int triangleIndex() const { return triangle_; }
    /// Weights of the triangle's first two corners.
    void getBarycentricCoords(float& u, float& v) const { u = u_, v = v_; }

  private:
    friend class MMeshIntersector;
    MFloatPoint point_;
    MFloatVector normal_;
    int face_ = -1, triangle_ = -1;
    float u_ = 0, v_ = 0;
};

/// Closest points of one mesh. Query points are taken through the inverse of the matrix, answers are in the
/// mesh's own space.
class MMeshIntersector {
  public:
    MMeshIntersector();
    ~MMeshIntersector();
    MMeshIntersector(const MMeshIntersector&) = delete;
    MMeshIntersector& operator=(const MMeshIntersector&) = delete;

    /// Of mesh data or a mesh shape; `kInvalidParameter` for anything else. Later changes of the mesh do not
    /// count.
    MStatus create(MObject& mesh, const MMatrix& matrix = MMatrix::identity);
    bool isCreated() const { return mesh_ != nullptr; }
    /// `kFailure`, and the point left alone, when nothing lies within the distance.
    MStatus getClosestPoint(const MPoint& point, MPointOnMesh& found, double maxDistance = DBL_MAX) const;

  private:
    std::unique_ptr<const vesk::geom::Mesh> mesh_;
    MMatrix inverse_;
};
