#pragma once
// A B-spline curve, rational or not.

#include "host/core/result.h"
#include "host/core/shared.h"
#include "host/geometry/nurbs_basis.h"

#include <maya/MMatrix.h>

namespace vesk::geom {

/// A point of a curve and the derivatives by its parameter.
struct CurvePoint {
    MPoint position; ///< w is 1
    MVector d1, d2;
};

/// A curve in object space. Copies are cheap: knots and CVs are shared until one writes.
///
/// CVs are (x, y, z, w) with x, y, z not multiplied by w; w is 1 unless the curve is rational. The last
/// `degree` CVs of a periodic curve always equal the first ones: what is set for them is ignored.
/// A default-made curve is empty: no CV, no length, every point the origin.
class NurbsCurve {
  public:
    NurbsCurve() = default;
    /// Fails as `NurbsBasis::check` does, and unless there are as many CVs as the basis has functions.
    static Result<NurbsCurve> create(NurbsBasis basis, std::vector<MPoint> cvs, bool rational = false);

    const NurbsBasis& basis() const { return *basis_; }
    int degree() const { return basis_->degree; }
    NurbsForm form() const { return basis_->form; }
    const std::vector<double>& knots() const { return basis_->knots; }
    bool isRational() const { return rational_; }
    bool empty() const { return basis_->empty(); }

    // ---- CVs ----

    const std::vector<MPoint>& cvs() const { return *cvs_; } ///< repeated ones too
    int cvCount() const { return static_cast<int>(cvs_->size()); }
    int spanCount() const { return basis_->spanCount(); }
    /// A periodic curve's CVs without the repeated ones, which come last.
    int distinctCvCount() const { return basis_->distinctCvCount(); }
    /// Fails, changing nothing, on another count.
    Outcome setCvs(std::vector<MPoint> cvs);
    /// Fails on an index that does not exist or names a repeated CV.
    Outcome setCv(int index, const MPoint& cv);

    // ---- points; parameters outside the domain are taken into it ----

    CurvePoint at(double parameter) const;
    MPoint pointAt(double parameter) const;
    /// The point before its division by the weight, which is 1 unless the curve is rational.
    NurbsSum sumAt(double parameter) const;
    std::vector<MPoint> editPoints() const;
    /// Of the part from one parameter to the other, to about `tolerance`; negative when `to` lies before
    /// `from`.
    double length(double from, double to, double tolerance = 1e-9) const;
    double length() const { return length(basis_->start(), basis_->end()); }
    /// Where the part from the start is that long; an end of the domain when none is.
    double parameterAtLength(double length) const;

    // ---- knots ----

    /// Adds a knot `times` times without a change of shape (W. Boehm, "Inserting new knots into B-spline
    /// curves", Computer-Aided Design 12, 1980). A parameter within 1e-12 of the domain's length of a knot
    /// is taken for that knot. Fails, changing nothing, outside the domain, on a periodic curve, or when the
    /// knot would stand there more than `degree` times.
    Outcome insertKnot(double parameter, int times = 1);
    /// The same points as an open curve whose first and last CV are its ends; as many CVs.
    NurbsCurve clamped() const;
    /// The same points over the domain from `start` to `end`, which must be longer than zero.
    NurbsCurve withDomain(double start, double end) const;

    /// x, y, z of each CV by the matrix; weights stay.
    NurbsCurve transformed(const MMatrix& matrix) const;
    std::size_t byteSize() const;

  private:
    double speedIntegral(double from, double to) const;
    double adaptiveLength(double from, double to, double whole, double tolerance, int depth) const;

    Shared<NurbsBasis> basis_;
    Shared<std::vector<MPoint>> cvs_;
    bool rational_ = false;
};

} // namespace vesk::geom
