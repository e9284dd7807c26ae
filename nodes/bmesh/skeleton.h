#pragma once
// The joints that feed a bmesh node, as spheres.

#include "bmesh/joint_sphere.h"

#include <maya/MObject.h>
#include <maya/MPlug.h>
#include <maya/MString.h>

#include <vector>

namespace vesk::nodes {

struct Skeleton {
    QVector<skin::JointSphere> spheres; ///< in the order of the hierarchy; empty without a root
    std::vector<MObject> joints;        ///< one a sphere
    QVector<skin::Position> positions;  ///< one an element that named a joint, in double precision

    MString jointName(int sphere) const;
};

/// Reads the elements of `inJoints`, whose children are the given attributes. What feeds the matrix of
/// element 0 is the root; joints are looked for below it. Elements that no joint below the root feeds are
/// left out; joints that no element names keep the sphere of radius 1 at the origin, without a parent.
Skeleton readSkeleton(MPlug inJoints, const MObject& matrix, const MObject& radius);

} // namespace vesk::nodes
