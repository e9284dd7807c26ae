#pragma once

#include <maya/MFnData.h>
#include <maya/MMatrix.h>
#include <maya/MTransformationMatrix.h>

/// Function set of a matrix as data, which may also remember the components that it was made from.
class MFnMatrixData : public MFnData {
  public:
    MFnMatrixData() = default;
    explicit MFnMatrixData(MObject& object, MStatus* status = nullptr);
    explicit MFnMatrixData(const MObject& object, MStatus* status = nullptr);
    MFn::Type type() const override { return MFn::kMatrixData; }

    /// Whether the data was set from components.
    bool isTransformation(MStatus* status = nullptr) const;
    MTransformationMatrix transformation(MStatus* status = nullptr) const;
    MMatrix matrix(MStatus* status = nullptr) const;
    MStatus set(const MTransformationMatrix& transformation);
    MStatus set(const MMatrix& matrix);
    /// Identity.
    MObject create(MStatus* status = nullptr);
    MObject create(const MTransformationMatrix& transformation, MStatus* status = nullptr);
    MObject create(const MMatrix& matrix, MStatus* status = nullptr);

  private:
    bool accepts(const vesk::Object& object) const override;
};
