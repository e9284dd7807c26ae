#pragma once
// Geometry in world space, as the nodes of bounding volumes read it.

#include "volume/space.h"

#include <maya/MDataHandle.h>
#include <maya/MFn.h>
#include <maya/MFnData.h>
#include <maya/MObject.h>
#include <maya/MPlug.h>
#include <maya/MPoint.h>
#include <maya/MPointArray.h>
#include <maya/MVector.h>

#include <vector>

namespace vesk::nodes {

inline volume::Vec3 toVec3(const MPoint& p) { return {p.x, p.y, p.z}; }
inline volume::Vec3 toVec3(const MVector& v) { return {v.x, v.y, v.z}; }
inline MVector toVector(const volume::Vec3& v) { return {v.x, v.y, v.z}; }
inline MPoint toPoint(const volume::Vec3& v) { return {v.x, v.y, v.z}; }

/// The points of a geometry in the order of all per-point arrays. Without a geometry, or of a surface that is
/// periodic, there are none.
struct WorldPoints {
    MFnData::Type kind = MFnData::kInvalid;
    MObject geometry;                  ///< in world space, for reading; null for particles
    MPointArray points;                ///< in world space; CVs with their weights
    std::vector<volume::Vec3> normals; ///< in world space; empty unless asked for, and for particles
    unsigned numCVsInV = 0;            ///< of a surface
    bool isPeriodicSurface = false;

    /// The kind of components that the points are.
    MFn::Type pointKind() const;
};

/// Whether vertex normals are read, too. Those of CVs come from the curve's ribbon and the surface's
/// tessellation, which are made from what feeds `input`: vertex i stands for CV i.
WorldPoints worldPoints(MDataHandle& handle, const MPlug& input, bool withNormals);

} // namespace vesk::nodes
