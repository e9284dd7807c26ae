#pragma once
// Smooth subdivision of polygon meshes.

#include "host/geometry/mesh.h"

namespace vesk::geom {

struct SubdivisionOptions {
    int divisions = 1; ///< levels; below 1 the mesh stays as it is
    /// Hard edges, which are then creased without end and hard in the result too; otherwise all edges of the
    /// result are smooth.
    bool keepHardEdges = false;
};

/// Faces that a result may have.
inline constexpr int maxSubdividedFaces = 1 << 26;

/// The mesh after so many levels of Catmull-Clark subdivision (E. Catmull and J. Clark, "Recursively
/// generated B-spline surfaces on arbitrary topological meshes", Computer-Aided Design 10(6), 1978; creases
/// and corners as in T. DeRose, M. Kass and T. Truong, "Subdivision surfaces in character animation",
/// SIGGRAPH 1998).
///
/// Boundary edges, and edges with more than two faces, are creases; vertices at a boundary with only two
/// edges stay where they are. Every level keeps the vertex ids, then come a point for each edge that has a
/// face and a point for each face, by id. Face f with n corners becomes n quads in the place of f, quad k
/// from corner k over the point of the edge after it and the face's point. The two halves of edge e are edges
/// 2e and 2e + 1, in its direction, those inside the faces follow; edges without a face are gone. Vertices
/// without a face stay. UVs and colours go along by linear interpolation in each face; locked normals go.
///
/// Fails on a mesh with a face that visits a vertex twice, more than 65,535 edges at a face or a vertex, or
/// more than `maxSubdividedFaces` faces to be.
MeshResult subdivided(const Mesh& mesh, const SubdivisionOptions& options);

} // namespace vesk::geom
