#pragma once

#include "host/api/mesh_walk.h"

#include <maya/MPoint.h>
#include <maya/MSpace.h>

class MIntArray;
class MPointArray;
class MVector;

/// Walks the faces of a mesh by ascending id. Calls past the end fail with `kFailure`.
class MItMeshPolygon : public vesk::api::MeshWalk {
  public:
    explicit MItMeshPolygon(const MObject& mesh, MStatus* status = nullptr)
        : MeshWalk(mesh, MFn::kMeshPolygonComponent, status) {}

    unsigned int polygonVertexCount(MStatus* status = nullptr) const;
    /// Vertex id by its place in the face, and its point.
    int vertexIndex(int place, MStatus* status = nullptr) const;
    MPoint point(int place, MSpace::Space space = MSpace::kObject, MStatus* status = nullptr) const;
    void getPoints(MPointArray& points, MSpace::Space space = MSpace::kObject,
                   MStatus* status = nullptr) const;
    /// The mean of its points.
    MPoint center(MSpace::Space space = MSpace::kObject, MStatus* status = nullptr) const;
    MStatus getNormal(MVector& normal, MSpace::Space space = MSpace::kObject) const;
    /// Of its triangles.
    MStatus getArea(double& area, MSpace::Space space = MSpace::kObject) const;
    bool onBoundary(MStatus* status = nullptr) const;

    // In the order of the face's corners.

    MStatus getVertices(MIntArray& vertices) const;
    MStatus getEdges(MIntArray& edges) const;

    // Ascending.

    /// Faces that share an edge with it.
    MStatus getConnectedFaces(MIntArray& faces) const;
    /// Edges at its vertices that are not its own.
    MStatus getConnectedEdges(MIntArray& edges) const;
    /// Vertices one edge away.
    MStatus getConnectedVertices(MIntArray& vertices) const;
};
