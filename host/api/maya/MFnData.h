#pragma once

#include <maya/MFnBase.h>

/// Function set of every data object.
class MFnData : public MFnBase {
  public:
    enum Type {
        kInvalid = 0,
        kNumeric,
        kPlugin,
        kPluginGeometry,
        kString,
        kMatrix,
        kStringArray,
        kDoubleArray,
        kIntArray,
        kPointArray,
        kVectorArray,
        kComponentList,
        kMesh,
        kLattice,
        kNurbsCurve,
        kNurbsSurface,
        kSphere,
        kDynArrayAttrs,
        kDynSweptGeometry,
        kSubdSurface,
        kNObject,
        kNId,
        kAny,
        kLast
    };
    MFnData() = default;
    explicit MFnData(MObject& object, MStatus* status = nullptr);
    explicit MFnData(const MObject& object, MStatus* status = nullptr);
    MFn::Type type() const override { return MFn::kData; }
};
