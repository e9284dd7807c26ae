#pragma once
// Binding the points of a geometry to a mesh: to which place of which triangle each one belongs.

#include "nodes/retarget/carry.h"

#include <maya/MObject.h>
#include <maya/MString.h>

#include <vector>

namespace vesk::nodes {

/// Values of `mode`.
enum class RetargetMode : short { kClosestPoint = 0, kRayProjection = 1, kClosestUv = 2 };

struct BindingSettings {
    RetargetMode mode = RetargetMode::kClosestPoint;
    bool reverseNormals = true;     ///< rays run against the vertex normals
    const MString* uvSet = nullptr; ///< null: the current one
    float tolerance = 0.1F;         ///< of UVs that lie beside their face
};

struct Binding {
    std::vector<double> uvs;
    std::vector<int> faces, vertices; ///< -1 for a point that nothing was found for

    BindingView view() const { return {uvs, faces, vertices}; }
};

/// Binds every point of `geometry`, which lie in world space at `points`, to `reference`, a mesh in world
/// space. Only a mesh has modes other than "closest point". Empty when there is nothing to bind to.
Binding bindPoints(MObject& geometry, std::span<const MPoint> points, MObject& reference,
                   const BindingSettings& settings);

} // namespace vesk::nodes
