#pragma once
// How the surface and the UV layout of a mesh are shared out among its vertices.

#include <maya/MPoint.h>

#include <span>
#include <vector>

namespace vesk::nodes {

enum class LayoutMeasure { Area, EdgeLength };

/// A mesh and its layout, face by face. A face that is not mapped has -1 at its corners.
struct MappedFaces {
    std::span<const MPoint> points;
    std::span<const float> us, vs;
    std::span<const int> counts;   ///< corners of each face
    std::span<const int> vertices; ///< by corner
    std::span<const int> uvs;      ///< by corner; -1: unmapped
};

/// The binary logarithm of each vertex's share of the surface over its share of the layout: 0 where they are
/// alike, above 0 where the surface has more. Infinite where only one of them is there; not a number where
/// neither is, or where a number went wrong, which spoils its own vertices alone.
std::vector<double> layoutTension(const MappedFaces& mesh, LayoutMeasure measure);

} // namespace vesk::nodes
