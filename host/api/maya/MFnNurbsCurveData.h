#pragma once

#include <maya/MFnGeometryData.h>

/// Function set of curve data: makes the object that `MFnNurbsCurve` then fills.
class MFnNurbsCurveData : public MFnGeometryData {
  public:
    MFnNurbsCurveData() = default;
    explicit MFnNurbsCurveData(MObject& object, MStatus* status = nullptr);
    explicit MFnNurbsCurveData(const MObject& object, MStatus* status = nullptr);
    MFn::Type type() const override { return MFn::kNurbsCurveData; }

    MObject create(MStatus* status = nullptr);

  private:
    bool accepts(const vesk::Object& object) const override;
};
