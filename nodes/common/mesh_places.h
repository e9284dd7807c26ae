#pragma once
// Places on the triangles of a mesh.

#include <maya/MFloatArray.h>
#include <maya/MFnMesh.h>
#include <maya/MIntArray.h>

#include <array>
#include <vector>

namespace vesk::nodes {

/// A place on a triangle of a mesh by the weights of its corners.
struct Place {
    int face = 0, triangle = 0; ///< triangle within the face
    std::array<double, 3> weights{};
};

/// The mesh's vertices at the corners of the place's triangle.
std::array<int, 3> verticesAt(const MFnMesh& mesh, const Place& place);

/// Reads the UVs of a mesh once. Unlike a query by position, it does not mix up faces that touch.
class PlaceUvs {
  public:
    /// The set must be there; null means the current one.
    PlaceUvs(const MFnMesh& mesh, const MString* uvSet);

    /// (0, 0) on a face that is not mapped.
    std::array<double, 2> at(const Place& place) const;

  private:
    const MFnMesh& mesh_;
    MIntArray counts_, vertices_;     ///< of faces, and of their corners
    std::vector<unsigned> faceStart_; ///< first corner of each face
    std::vector<int> uvIds_;          ///< by corner, -1 unmapped
    MFloatArray us_, vs_;
};

} // namespace vesk::nodes
