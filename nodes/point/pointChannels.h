#pragma once
// What the blocks read and write, as plain arrays, and how the results of the blocks enter them.

#include <maya/MColorArray.h>
#include <maya/MDoubleArray.h>
#include <maya/MFloatArray.h>
#include <maya/MIntArray.h>
#include <maya/MPointArray.h>
#include <maya/MVectorArray.h>

namespace vesk::nodes {

/// One entry for each point of a geometry.
struct PointChannels {
    MPointArray points;
    MDoubleArray rgba; ///< four a point
    MDoubleArray weights, radii;
    MVectorArray normals;
    MDoubleArray map;       ///< u, v of each chosen UV
    MDoubleArray sharedMap; ///< u, v of each point: those of the first of its UVs
};

/// The UVs of a mesh that belong to the chosen vertices, each once, vertex by vertex.
struct UvSelection {
    MIntArray ids;
    MIntArray vertices; ///< one for each id
};

/// Cuts the arrays, or fills them up: weights and radii with 0, colours with (0, 0, 0, 1), UVs with 0.
void fitToPoints(PointChannels& channels, unsigned pointCount);

/// u, v of these ids, (0, 0) for those that are not there.
MDoubleArray interleaved(const MFloatArray& us, const MFloatArray& vs, const MIntArray& ids);

// A result holds numbers for the points `ids`, in their order; all ids are within the arrays. What other
// points have stays.

void storePositions(const MDoubleArray& result, const MIntArray& ids, MPointArray& points);
void storeNumbers(const MDoubleArray& result, const MIntArray& ids, MDoubleArray& numbers);
void storeColors(const MDoubleArray& result, const MIntArray& ids, MDoubleArray& rgba);
void storeNormals(const MDoubleArray& result, const MIntArray& ids, MVectorArray& normals);
/// By UV id.
void storeUvs(const MDoubleArray& result, const MIntArray& ids, MFloatArray& us, MFloatArray& vs);

/// The result of the block on colours as colours.
MColorArray colorsOf(const MDoubleArray& result);
/// That of the block on normals as vectors.
MVectorArray vectorsOf(const MDoubleArray& result);

} // namespace vesk::nodes
