#pragma once

#include "host/api/mesh_walk.h"

#include <maya/MColor.h>
#include <maya/MPoint.h>
#include <maya/MSpace.h>
#include <maya/MString.h>
#include <maya/MTypes.h>
#include <maya/MVector.h>

class MFloatArray;
class MIntArray;

/// Walks the vertices of a mesh by ascending id. Calls past the end fail with `kFailure`.
class MItMeshVertex : public vesk::api::MeshWalk {
  public:
    explicit MItMeshVertex(const MObject& mesh, MStatus* status = nullptr)
        : MeshWalk(mesh, MFn::kMeshVertComponent, status) {}

    MPoint position(MSpace::Space space = MSpace::kObject, MStatus* status = nullptr) const;
    MStatus getNormal(MVector& normal, MSpace::Space space = MSpace::kObject) const;
    bool onBoundary(MStatus* status = nullptr) const;

    // Neighbours go round counter-clockwise from the lowest edge, or from the border.
    MStatus getConnectedFaces(MIntArray& faces) const;
    MStatus getConnectedEdges(MIntArray& edges) const;
    MStatus getConnectedVertices(MIntArray& vertices) const;
    MStatus numConnectedEdges(int& count) const;

    /// The mean of the face-vertex colours, (-1,-1,-1,-1) when there is none.
    MStatus getColor(MColor& color, const MString* colorSet = nullptr) const;

    /// Different UVs at the vertex.
    MStatus numUVs(int& count, const MString* uvSet = nullptr) const;
    /// One per connected face, in their order; -1 for a face that is not mapped.
    MStatus getUVIndices(MIntArray& ids, const MString* uvSet = nullptr) const;
    /// One per connected face that is mapped.
    MStatus getUVs(MFloatArray& us, MFloatArray& vs, MIntArray& faces, const MString* uvSet = nullptr) const;
    /// That of the first mapped face; `kFailure`, and the argument untouched, when there is none.
    MStatus getUV(float2& uv, const MString* uvSet = nullptr) const;
};
