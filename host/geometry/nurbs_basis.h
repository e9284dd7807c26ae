#pragma once
// One parameter direction of a curve or surface: degree, form and knots, and the basis functions over them.

#include "host/core/outcome.h"

#include <maya/MPoint.h>
#include <maya/MVector.h>

#include <array>
#include <vector>

namespace vesk::geom {

/// Numbers as the function sets name them. Scene files write one less.
enum class NurbsForm {
    Open = 1,
    Closed = 2,   ///< the ends meet; every CV stands for itself
    Periodic = 3, ///< the last `degree` CVs repeat the first ones
};

inline constexpr int maxNurbsDegree = 7;

/// The basis functions that are not zero at a parameter: `values[k][j]` is the k-th derivative of function
/// `firstCv + j`, for k = 0 up to the order asked for and j = 0 up to the degree.
struct NurbsRow {
    int firstCv = 0;
    std::array<std::array<double, maxNurbsDegree + 1>, 3> values{};
};

/// Degree, form and knots. The knot vector is that of the books without its first and last entry:
/// spans + 2 degree - 1 knots for spans + degree CVs, so that one cubic span has the knots 0 0 0 1 1 1.
/// Without knots it is empty: no CV, domain 0 to 0.
struct NurbsBasis {
    int degree = 1;
    NurbsForm form = NurbsForm::Open;
    std::vector<double> knots; ///< never decreasing

    /// Knots 0 0 0 1 2 .. s s s, for at least degree + 1 CVs; `scale` is the length of a span.
    static NurbsBasis clamped(int degree, int spans, double scale = 1.0);
    /// Knots 1 - degree .. spans + degree - 1.
    static NurbsBasis periodic(int degree, int spans);

    /// Whether it is 1 to `maxNurbsDegree`.
    static Outcome checkDegree(int degree);
    /// Names the first fault: degree outside 1..7, an unknown form, too few knots, a knot that is smaller
    /// than the one before or not finite, a knot more than `degree` times, a domain without length, a
    /// periodic form with fewer than 2 degree + 1 CVs. What follows needs a basis without fault, or empty.
    Outcome check() const;

    bool empty() const { return knots.empty(); }
    bool isPeriodic() const { return form == NurbsForm::Periodic; }
    int knotCount() const { return static_cast<int>(knots.size()); }
    int cvCount() const { return empty() ? 0 : knotCount() - degree + 1; } ///< repeated ones too
    int spanCount() const { return empty() ? 0 : cvCount() - degree; }     ///< also those without length
    int distinctCvCount() const { return isPeriodic() ? cvCount() - degree : cvCount(); }
    double start() const { return empty() ? 0.0 : knots[degree - 1]; }
    double end() const { return empty() ? 0.0 : knots[cvCount() - 1]; }

    bool contains(double parameter) const { return parameter >= start() && parameter <= end(); }
    /// Into the domain: round it when periodic, else to the nearest end. The start for a NaN.
    double normalized(double parameter) const;
    /// Functions at a parameter, which is normalized first; `order` 0 to 2. Not for an empty basis.
    NurbsRow row(double parameter, int order = 0) const;
    /// Mean of the knots of a CV: where it has most weight. May lie outside the domain at unclamped ends.
    double greville(int cv) const;
    /// Where spans meet, ends included, ascending; a periodic direction leaves out its end.
    std::vector<double> editParameters() const;
    /// How often the knot stands in the vector.
    int multiplicity(double knot) const;
    /// Whether both ends of the domain are `degree` times knots.
    bool isClamped() const;

    friend bool operator==(const NurbsBasis&, const NurbsBasis&) = default;

  private:
    int spanKnot(double parameter) const;
};

/// A weighted sum of CVs: the numerator and the weight of a rational point, or a derivative of both.
struct NurbsSum {
    MVector xyz;
    double w = 0.0;

    void add(const MPoint& cv, double factor) {
        const double weighted = factor * cv.w;
        xyz += MVector(cv) * weighted;
        w += weighted;
    }
};

} // namespace vesk::geom
