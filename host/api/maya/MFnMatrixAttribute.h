#pragma once

#include <maya/MFloatMatrix.h>
#include <maya/MFnAttribute.h>
#include <maya/MMatrix.h>

/// Function set of matrix attributes; the default is the identity.
class MFnMatrixAttribute : public MFnAttribute {
  public:
    enum Type { kDouble = 0, kFloat = 1 };

    MFnMatrixAttribute() = default;
    explicit MFnMatrixAttribute(const MObject& object, MStatus* status = nullptr) { take(object, status); }
    MFn::Type type() const override { return MFn::kMatrixAttribute; }

    MObject create(const MString& longName, const MString& shortName, Type matrixType = kDouble,
                   MStatus* status = nullptr);
    MStatus setDefault(const MMatrix& value);
    MStatus setDefault(const MFloatMatrix& value) { return setDefault(MMatrix(value.matrix)); }
    MMatrix getDefault(MStatus* status = nullptr) const;
};
