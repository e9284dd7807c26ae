#pragma once

#include <maya/MFnBase.h>
#include <maya/MSpace.h>

class MDoubleArray;
class MPoint;
class MPointArray;
class MVector;

namespace vesk::geom {
class NurbsSurface;
}
class MMatrix;

/// Function set of NURBS surfaces: surface data, or a surface shape, whose output is read. Spaces and
/// failures as `MFnMesh`. The CV at (u, v) has the flat index numCVsInV * u + v.
class MFnNurbsSurface : public MFnBase {
  public:
    enum Form { kInvalid = 0, kOpen, kClosed, kPeriodic, kLast };

    MFnNurbsSurface() = default;
    explicit MFnNurbsSurface(MObject& object, MStatus* status = nullptr);
    explicit MFnNurbsSurface(const MObject& object, MStatus* status = nullptr);
    MFn::Type type() const override { return MFn::kNurbsSurface; }

    /// Into surface data; the set then works on it.
    MObject copy(const MObject& source, MObject parentOrOwner = MObject::kNullObj, MStatus* status = nullptr);

    Form formInU(MStatus* status = nullptr) const;
    Form formInV(MStatus* status = nullptr) const;
    int degreeU(MStatus* status = nullptr) const;
    int degreeV(MStatus* status = nullptr) const;
    int numSpansInU(MStatus* status = nullptr) const;
    int numSpansInV(MStatus* status = nullptr) const;
    /// Repeated CVs of a periodic direction count.
    int numCVsInU(MStatus* status = nullptr) const;
    int numCVsInV(MStatus* status = nullptr) const;
    MStatus getCVs(MPointArray& cvs, MSpace::Space space = MSpace::kObject) const;
    MStatus setCVs(const MPointArray& cvs, MSpace::Space space = MSpace::kObject);
    MStatus getPointAtParam(double u, double v, MPoint& point, MSpace::Space space = MSpace::kObject) const;
    /// dP/du ^ dP/dv at unit length.
    MVector normal(double u, double v, MSpace::Space space = MSpace::kObject,
                   MStatus* status = nullptr) const;

  protected:
    bool accepts(const vesk::Object& object) const override;

  private:
    const vesk::geom::NurbsSurface* surface() const;
    const MMatrix* matrixFor(MSpace::Space space) const;

    MObject shape_;
};
