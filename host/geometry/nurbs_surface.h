#pragma once
// A tensor product B-spline surface, rational or not.

#include "host/core/result.h"
#include "host/core/shared.h"
#include "host/geometry/nurbs_basis.h"

#include <maya/MMatrix.h>

namespace vesk::geom {

/// A point of a surface and the derivatives by its parameters.
struct SurfacePoint {
    MPoint position; ///< w is 1
    MVector du, dv;
    MVector duu, duv, dvv;
};

/// A surface in object space. Copies are cheap: knots and CVs are shared until one writes.
///
/// The CVs stand in one list, v fastest: `cvIndex(u, v)` = cvCountV u + v. They are (x, y, z, w) with x, y, z
/// not multiplied by w; w is 1 unless the surface is rational. In a periodic direction the last `degree` rows
/// always equal the first ones: what is set for them is ignored. Nothing is trimmed.
/// A default-made surface is empty: no CV, every point the origin.
class NurbsSurface {
  public:
    NurbsSurface() = default;
    /// Fails as `NurbsBasis::check` does, the direction named, and on a number of CVs that is not the
    /// product of what both bases need.
    static Result<NurbsSurface> create(NurbsBasis u, NurbsBasis v, std::vector<MPoint> cvs,
                                       bool rational = false);

    const NurbsBasis& basisU() const { return *u_; }
    const NurbsBasis& basisV() const { return *v_; }
    bool isRational() const { return rational_; }
    bool empty() const { return cvs_->empty(); }

    // ---- CVs ----

    const std::vector<MPoint>& cvs() const { return *cvs_; } ///< repeated ones too
    int cvCount() const { return static_cast<int>(cvs_->size()); }
    int cvCountU() const { return u_->cvCount(); }
    int cvCountV() const { return v_->cvCount(); }
    int distinctCvCountU() const { return u_->distinctCvCount(); }
    int distinctCvCountV() const { return v_->distinctCvCount(); }
    int cvIndex(int u, int v) const { return cvCountV() * u + v; }
    const MPoint& cv(int u, int v) const { return (*cvs_)[cvIndex(u, v)]; }
    /// Indices into `cvs()` of those that repeat no other, ascending.
    std::vector<int> distinctCvs() const;
    /// Whether the CV only repeats another, which `setCv` refuses. False on an empty surface.
    bool isRepeatedCv(int index) const;
    /// Fails, changing nothing, on another count.
    Outcome setCvs(std::vector<MPoint> cvs);
    /// Fails on an index that does not exist or names a repeated CV.
    Outcome setCv(int index, const MPoint& cv);

    // ---- points; parameters outside the domain are taken into it ----

    SurfacePoint at(double u, double v) const;
    MPoint pointAt(double u, double v) const;
    /// Unit length, along du ^ dv. At a pole, the limit from the middle of the domain; zero where there is
    /// none either.
    MVector normalAt(double u, double v) const;

    /// x, y, z of each CV by the matrix; weights stay.
    NurbsSurface transformed(const MMatrix& matrix) const;
    std::size_t byteSize() const;

  private:
    Shared<NurbsBasis> u_, v_;
    Shared<std::vector<MPoint>> cvs_;
    bool rational_ = false;
};

} // namespace vesk::geom
