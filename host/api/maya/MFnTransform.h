#pragma once

#include <maya/MEulerRotation.h>
#include <maya/MFnDagNode.h>
#include <maya/MPoint.h>
#include <maya/MQuaternion.h>
#include <maya/MSpace.h>
#include <maya/MTransformationMatrix.h>
#include <maya/MVector.h>

/// Function set of transforms. World space needs a set that was made from a path: `kInvalidParameter`
/// otherwise.
class MFnTransform : public MFnDagNode {
  public:
    MFnTransform() = default;
    explicit MFnTransform(const MObject& object, MStatus* status = nullptr) { take(object, status); }
    explicit MFnTransform(const MDagPath& path, MStatus* status = nullptr) {
        const MStatus done = setObject(path);
        if (status) *status = done;
    }
    MFn::Type type() const override { return MFn::kTransform; }
    /// A new transform below the parent, or the world.
    MObject create(const MObject& parent = MObject::kNullObj, MStatus* status = nullptr);

    MTransformationMatrix transformation(MStatus* status = nullptr) const;
    MStatus set(const MTransformationMatrix& transformation);

    MVector getTranslation(MSpace::Space space, MStatus* status = nullptr) const;
    MVector translation(MSpace::Space space, MStatus* status = nullptr) const {
        return getTranslation(space, status);
    }
    MStatus setTranslation(const MVector& translation, MSpace::Space space);
    MStatus translateBy(const MVector& offset, MSpace::Space space);
    MStatus getRotation(MEulerRotation& rotation) const;
    MStatus getRotation(MQuaternion& rotation, MSpace::Space space = MSpace::kTransform) const;
    MStatus getRotation(double rotation[3], MTransformationMatrix::RotationOrder& order) const;
    MStatus setRotation(const MEulerRotation& rotation);
    MStatus setRotation(const MQuaternion& rotation, MSpace::Space space = MSpace::kTransform);
    MTransformationMatrix::RotationOrder rotationOrder(MStatus* status = nullptr) const;
    MStatus getScale(double scale[3]) const;
    MStatus setScale(const double scale[3]);
    MStatus getShear(double shear[3]) const;
    MStatus setShear(const double shear[3]);
    MPoint rotatePivot(MSpace::Space space, MStatus* status = nullptr) const;
    MPoint scalePivot(MSpace::Space space, MStatus* status = nullptr) const;
};
