#pragma once

#include <maya/MFnGeometryData.h>

/// Function set of mesh data: makes the object that `MFnMesh` then fills.
class MFnMeshData : public MFnGeometryData {
  public:
    MFnMeshData() = default;
    explicit MFnMeshData(MObject& object, MStatus* status = nullptr);
    explicit MFnMeshData(const MObject& object, MStatus* status = nullptr);
    MFn::Type type() const override { return MFn::kMeshData; }

    MObject create(MStatus* status = nullptr);

  private:
    bool accepts(const vesk::Object& object) const override;
};
