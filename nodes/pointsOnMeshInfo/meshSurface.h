#pragma once
// What a mesh is like between its vertices.

#include <maya/MFloatArray.h>
#include <maya/MFloatVectorArray.h>
#include <maya/MFnMesh.h>
#include <maya/MIntArray.h>
#include <maya/MVector.h>

#include <array>
#include <vector>

namespace vesk::nodes {

/// A place on a triangle of a mesh by the weights of its corners.
struct Place {
    int face = 0, triangle = 0;
    std::array<double, 3> weights{};
};

/// Reads normals and UVs of a mesh, in its own space, once.
class MeshSurface {
  public:
    /// The set must be there; null means the current one.
    MeshSurface(const MFnMesh& mesh, const MString* uvSet);

    /// The vertex normals weighted, of unit length; zero where they cancel out.
    MVector normalAt(const Place& place) const;
    /// (0, 0) on a face that is not mapped.
    std::array<double, 2> uvAt(const Place& place) const;

  private:
    std::array<int, 3> verticesOf(const Place& place) const;

    const MFnMesh& mesh_;
    MFloatVectorArray normals_;
    MIntArray counts_, vertices_;     ///< of faces, and of their corners
    std::vector<unsigned> faceStart_; ///< first corner of each face
    std::vector<int> uvIds_;          ///< by corner, -1 unmapped
    MFloatArray us_, vs_;
};

} // namespace vesk::nodes
