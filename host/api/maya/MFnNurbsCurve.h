#pragma once

#include <maya/MFnBase.h>
#include <maya/MSpace.h>

class MDoubleArray;
class MPoint;
class MPointArray;
class MVector;

namespace vesk::geom {
class NurbsCurve;
}
class MMatrix;

/// Function set of NURBS curves: curve data, or a curve shape, whose output is read. Spaces and failures as
/// `MFnMesh`.
class MFnNurbsCurve : public MFnBase {
  public:
    enum Form { kInvalid = 0, kOpen, kClosed, kPeriodic, kLast };

    MFnNurbsCurve() = default;
    explicit MFnNurbsCurve(MObject& object, MStatus* status = nullptr);
    explicit MFnNurbsCurve(const MObject& object, MStatus* status = nullptr);
    MFn::Type type() const override { return MFn::kNurbsCurve; }

    // --- building: into curve data; the set then works on it ---

    /// As many knots as CVs + degree - 1; the last `degree` CVs of a periodic curve repeat the first ones.
    /// `kInvalidParameter` when they do not go together or the degree is not 1 to 7.
    MObject create(const MPointArray& cvs, const MDoubleArray& knots, unsigned int degree, Form form,
                   bool create2D, bool createRational, MObject parentOrOwner = MObject::kNullObj,
                   MStatus* status = nullptr);
    MObject copy(const MObject& source, MObject parentOrOwner = MObject::kNullObj, MStatus* status = nullptr);

    Form form(MStatus* status = nullptr) const;
    int degree(MStatus* status = nullptr) const;
    int numSpans(MStatus* status = nullptr) const;
    int numKnots(MStatus* status = nullptr) const;
    MStatus getKnots(MDoubleArray& knots) const;
    MStatus getKnotDomain(double& start, double& end) const;
    /// Repeated CVs of a periodic curve count.
    int numCVs(MStatus* status = nullptr) const;
    MStatus getCVs(MPointArray& cvs, MSpace::Space space = MSpace::kObject) const;
    MStatus getCV(int index, MPoint& cv, MSpace::Space space = MSpace::kObject) const;
    /// Positions of repeated CVs are ignored and follow the first ones.
    MStatus setCVs(const MPointArray& cvs, MSpace::Space space = MSpace::kObject);
    MStatus getPointAtParam(double parameter, MPoint& point, MSpace::Space space = MSpace::kObject) const;
    MVector tangent(double parameter, MSpace::Space space = MSpace::kObject, MStatus* status = nullptr) const;
    double length(MStatus* status = nullptr) const;

  protected:
    bool accepts(const vesk::Object& object) const override;

  private:
    const vesk::geom::NurbsCurve* curve() const;
    const MMatrix* matrixFor(MSpace::Space space) const;

    MObject shape_;
};
