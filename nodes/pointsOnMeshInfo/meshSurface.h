#pragma once
// What a mesh is like between its vertices.

#include "nodes/common/mesh_places.h"

#include <maya/MFloatVectorArray.h>
#include <maya/MVector.h>

namespace vesk::nodes {

/// Reads normals and UVs of a mesh, in its own space, once.
class MeshSurface {
  public:
    /// The set must be there; null means the current one.
    MeshSurface(const MFnMesh& mesh, const MString* uvSet);

    /// The vertex normals weighted, of unit length; zero where they cancel out.
    MVector normalAt(const Place& place) const;
    /// (0, 0) on a face that is not mapped.
    std::array<double, 2> uvAt(const Place& place) const { return uvs_.at(place); }

  private:
    const MFnMesh& mesh_;
    MFloatVectorArray normals_;
    PlaceUvs uvs_;
};

} // namespace vesk::nodes
