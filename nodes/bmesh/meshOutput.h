#pragma once
// From the lists of a skin to a mesh of the host.

#include "bmesh/skin_mesh.h"

#include <maya/MObject.h>
#include <maya/MPointArray.h>

#include <vector>

namespace vesk::nodes {

/// New mesh data without vertices and faces.
MObject emptyMesh();

/// Quads first, then triangles; equal vertices (to 1e-10) are one. A corner that falls together with an
/// earlier one of its face goes, and a face left with fewer than three is left out. Null without a face.
MObject weldedMesh(const skin::SkinMesh& skin);

/// Vertices that each point is averaged with: those of point v are vertices[start[v]] .. [start[v + 1] - 1].
struct Neighbours {
    std::vector<int> start{0}, vertices;
};

/// In each pass every point becomes the mean of itself and its neighbours as they were before the pass.
void relax(MPointArray& points, const Neighbours& neighbours, int passes);
/// The same to the vertices of mesh data.
void relaxMesh(MObject& mesh, int passes);

/// New data with the mesh subdivided; null when it cannot be.
MObject subdividedMesh(const MObject& mesh, int divisions);

} // namespace vesk::nodes
