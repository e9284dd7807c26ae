#pragma once

#include <maya/MAngle.h>
#include <maya/MDistance.h>
#include <maya/MFnAttribute.h>
#include <maya/MTime.h>

/// Function set of angles, distances and times. Plain numbers are in internal units: radians, centimetres,
/// seconds.
class MFnUnitAttribute : public MFnAttribute {
  public:
    enum Type { kInvalid, kAngle, kDistance, kTime, kLast };

    MFnUnitAttribute() = default;
    explicit MFnUnitAttribute(const MObject& object, MStatus* status = nullptr) { take(object, status); }
    MFn::Type type() const override { return MFn::kUnitAttribute; }

    MObject create(const MString& longName, const MString& shortName, Type unitType, double defaultValue = 0,
                   MStatus* status = nullptr);
    MObject create(const MString& longName, const MString& shortName, const MAngle& defaultValue,
                   MStatus* status = nullptr);
    MObject create(const MString& longName, const MString& shortName, const MDistance& defaultValue,
                   MStatus* status = nullptr);
    MObject create(const MString& longName, const MString& shortName, const MTime& defaultValue,
                   MStatus* status = nullptr);

    Type unitType(MStatus* status = nullptr) const;

    MStatus setDefault(double value);
    MStatus setDefault(const MAngle& value);
    MStatus setDefault(const MDistance& value);
    MStatus setDefault(const MTime& value);
    MStatus getDefault(double& value) const;
    MStatus getDefault(MAngle& value) const;
    MStatus getDefault(MDistance& value) const;
    MStatus getDefault(MTime& value) const;

    bool hasMin(MStatus* status = nullptr) const;
    bool hasMax(MStatus* status = nullptr) const;
    MStatus getMin(double& value) const;
    MStatus getMax(double& value) const;
    MStatus setMin(double value);
    MStatus setMax(double value);
    MStatus setSoftMin(double value);
    MStatus setSoftMax(double value);
};
