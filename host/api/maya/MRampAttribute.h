#pragma once

#include <maya/MColor.h>
#include <maya/MColorArray.h>
#include <maya/MFloatArray.h>
#include <maya/MIntArray.h>
#include <maya/MObject.h>
#include <maya/MPlug.h>
#include <maya/MString.h>

#include <memory>

namespace vesk::api {
class RampReader;
} // namespace vesk::api

/// A ramp on a node: entries of a position, a value or colour, and how the ramp goes on from there. Calls for
/// the other kind of ramp fail with `kFailure`; everything fails with `kInvalidParameter` on what is no ramp.
class MRampAttribute {
  public:
    enum MInterpolation { kNone = 0, kLinear = 1, kSmooth = 2, kSpline = 3 };

    MRampAttribute() = default;
    explicit MRampAttribute(const MPlug& plug, MStatus* status = nullptr);
    MRampAttribute(const MObject& node, const MObject& attribute, MStatus* status = nullptr);

    /// A new attribute: a multi `x` of `x_Position`, `x_FloatValue` or `x_Color`, and `x_Interp`.
    static MObject createCurveRamp(const MString& longName, const MString& shortName,
                                   MStatus* status = nullptr);
    static MObject createColorRamp(const MString& longName, const MString& shortName,
                                   MStatus* status = nullptr);

    bool isCurveRamp(MStatus* status = nullptr) const;
    bool isColorRamp(MStatus* status = nullptr) const;

    unsigned int getNumEntries(MStatus* status = nullptr) const;
    /// Entries by ascending index, which is not the order of their positions.
    void getEntries(MIntArray& indices, MFloatArray& positions, MFloatArray& values,
                    MIntArray& interpolations, MStatus* status = nullptr) const;
    void getEntries(MIntArray& indices, MFloatArray& positions, MColorArray& colors,
                    MIntArray& interpolations, MStatus* status = nullptr) const;
    /// Appends entries behind the highest index. `kInvalidParameter` when the arrays differ in length.
    void addEntries(const MFloatArray& positions, const MFloatArray& values, const MIntArray& interpolations,
                    MStatus* status = nullptr);
    void addEntries(const MFloatArray& positions, const MColorArray& colors, const MIntArray& interpolations,
                    MStatus* status = nullptr);
    /// `kInvalidParameter` when one does not exist; `kFailure` when none would be left. Nothing is deleted
    /// then.
    void deleteEntries(const MIntArray& indices, MStatus* status = nullptr);

    // `kInvalidParameter` when there is no such entry.

    void setPositionAtIndex(float position, unsigned int index, MStatus* status = nullptr);
    void setValueAtIndex(float value, unsigned int index, MStatus* status = nullptr);
    void setColorAtIndex(const MColor& color, unsigned int index, MStatus* status = nullptr);
    void setInterpolationAtIndex(MInterpolation interpolation, unsigned int index, MStatus* status = nullptr);

    /// Evaluates entries that are connected. Alpha is 1.
    void getValueAtPosition(float position, float& value, MStatus* status = nullptr) const;
    void getColorAtPosition(float position, MColor& color, MStatus* status = nullptr) const;

  private:
    MPlug ramp_; ///< null unless a ramp
    std::shared_ptr<vesk::api::RampReader> reader_;
};
