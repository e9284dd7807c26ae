#pragma once
// Points of geometry, whatever its kind, now and at other times.

#include <maya/MObject.h>
#include <maya/MVectorArray.h>

class MDataHandle;
class MPlug;

namespace vesk::nodes {

/// The points of a mesh, curve, surface or vector array in the order of all per-point arrays, in the space of
/// `coordinateSystem` (vectors have no space). Vectors are a view, for reading only. Empty for any other
/// data.
MVectorArray pointsIn(const MObject& geometry, short coordinateSystem);

/// Sets a copy of the geometry on `out`, object groups included, with other points, as many as it has, in the
/// space of `coordinateSystem`. In world space the copy carries no matrix, in object space that of the
/// original.
void setWithPoints(MDataHandle& out, MDataHandle& geometry, MVectorArray& points, short coordinateSystem);

/// The data of an input at a frame other than the present one, which is evaluated for it and not kept. Null
/// when there is none.
MObject dataAtFrame(const MPlug& input, double frame);

} // namespace vesk::nodes
