#pragma once

#include "host/api/mesh_walk.h"

#include <maya/MPoint.h>
#include <maya/MSpace.h>

class MIntArray;

/// Walks the edges of a mesh by ascending id. Calls past the end fail with `kFailure`.
class MItMeshEdge : public vesk::api::MeshWalk {
  public:
    explicit MItMeshEdge(const MObject& mesh, MStatus* status = nullptr)
        : MeshWalk(mesh, MFn::kMeshEdgeComponent, status) {}
    using MeshWalk::index;

    /// Vertex id of an end, 0 or 1.
    int index(int end, MStatus* status = nullptr) const;
    MPoint point(int end, MSpace::Space space = MSpace::kObject, MStatus* status = nullptr) const;
    bool onBoundary(MStatus* status = nullptr) const;

    /// Ascending; answers how many there are.
    int getConnectedFaces(MIntArray& faces, MStatus* status = nullptr) const;
    /// Edges that share a vertex with it, ascending.
    MStatus getConnectedEdges(MIntArray& edges) const;
};
