#pragma once
// The work of smooth over plain arrays.

#include "nodes/common/mesh_links.h"

#include <maya/MPoint.h>

#include <span>
#include <vector>

namespace vesk::nodes {

/// One step of Jacobi's method: each vertex that `moves` has becomes the mean of its neighbours and itself in
/// `from`, summed in the order of its list and itself last; a list that holds the vertex counts it twice. The
/// others are handed on, and so is a vertex whose mean is no finite point. There is a list and a mark for
/// each point, and `to` has as many, apart from `from`; their w stays that of the vertex.
void averagePass(const Links& neighbors, std::span<const char> moves, std::span<const MPoint> from,
                 std::span<MPoint> to);

/// Between a vertex's point as it came in (x, y, z each in `originals`) and the relaxed one, by `envelope`
/// times its weight in single precision. Without weights each is 1. What is not chosen stays as it is in
/// `points`.
void blendWithOriginal(std::span<MPoint> points, const float* originals, std::span<const char> isChosen,
                       float envelope, std::span<const float> weights);

/// By `by` of the way from the point to the hit; w stays.
MPoint towards(const MPoint& point, const MPoint& hit, double by);

/// For each vertex the vertices of the faces around it, ascending, itself among them; nothing without faces.
Links verticesOfFacesAround(MeshLinks& mesh);

} // namespace vesk::nodes
