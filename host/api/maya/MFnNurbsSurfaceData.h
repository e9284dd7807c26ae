#pragma once

#include <maya/MFnGeometryData.h>

/// Function set of surface data: makes the object that `MFnNurbsSurface` then fills.
class MFnNurbsSurfaceData : public MFnGeometryData {
  public:
    MFnNurbsSurfaceData() = default;
    explicit MFnNurbsSurfaceData(MObject& object, MStatus* status = nullptr);
    explicit MFnNurbsSurfaceData(const MObject& object, MStatus* status = nullptr);
    MFn::Type type() const override { return MFn::kNurbsSurfaceData; }

    MObject create(MStatus* status = nullptr);

  private:
    bool accepts(const vesk::Object& object) const override;
};
