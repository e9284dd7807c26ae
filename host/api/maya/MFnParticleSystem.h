#pragma once

#include <maya/MFnDagNode.h>

class MVectorArray;

/// Function set of particle shapes: their arrays as they are at the current time.
class MFnParticleSystem : public MFnDagNode {
  public:
    MFnParticleSystem() = default;
    /// `kInvalidParameter` for an object that is no particle shape; then `isValid` is false and the arrays
    /// come back empty.
    explicit MFnParticleSystem(const MObject& object, MStatus* status = nullptr) { take(object, status); }
    explicit MFnParticleSystem(const MDagPath& path, MStatus* status = nullptr) {
        const MStatus done = setObject(path);
        if (status) *status = done;
    }
    MFn::Type type() const override { return MFn::kParticle; }

    bool isValid() const;
    unsigned int count() const;
    /// In the shape's own space.
    void position(MVectorArray& positions) const;
    void velocity(MVectorArray& velocities) const;
};
