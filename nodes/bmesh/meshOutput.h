#pragma once
// From the lists of a skin to a mesh of the host.

#include "bmesh/skin_mesh.h"

#include <maya/MObject.h>

namespace vesk::nodes {

/// New mesh data without vertices and faces.
MObject emptyMesh();

/// Quads first, then triangles; equal vertices (to 1e-10) are one. A corner that falls together with an
/// earlier one of its face goes, and a face left with fewer than three is left out. Null without a face.
MObject weldedMesh(const skin::SkinMesh& skin);

/// Moves the vertices of mesh data: in each pass every one goes to the mean of itself and the vertices that
/// edges join it to, as they were before the pass.
void relaxMesh(MObject& mesh, int passes);

/// New data with the mesh subdivided; null when it cannot be.
MObject subdividedMesh(const MObject& mesh, int divisions);

} // namespace vesk::nodes
