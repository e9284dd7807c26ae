#include "host/geometry/nurbs_curve.h"

#include "host/geometry/nurbs_cvs.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <utility>

namespace vesk::geom {

namespace {

/// Equation 4.8 of Piegl and Tiller; sums without weight stay as they are.
CurvePoint divided(const std::array<NurbsSum, 3>& sums) {
    const double w = sums[0].w != 0.0 ? sums[0].w : 1.0;
    const MVector point = sums[0].xyz / w;
    const MVector d1 = (sums[1].xyz - sums[1].w * point) / w;
    const MVector d2 = (sums[2].xyz - 2.0 * sums[1].w * d1 - sums[2].w * point) / w;
    return {MPoint(point), d1, d2};
}

CvGrid gridOf(const NurbsBasis& basis) { return {basis.cvCount(), basis.distinctCvCount(), 1, 1}; }

/// A CV before its division by the weight.
NurbsSum weighted(const MPoint& cv) {
    NurbsSum sum;
    sum.add(cv, 1.0);
    return sum;
}

MPoint blend(const MPoint& before, const MPoint& after, double t) {
    const NurbsSum a = weighted(before);
    const NurbsSum b = weighted(after);
    const double w = a.w + (b.w - a.w) * t;
    const MVector xyz = a.xyz + (b.xyz - a.xyz) * t;
    const MVector point = w != 0.0 ? xyz / w : xyz;
    return {point.x, point.y, point.z, w};
}

/// Boehm's insertion of one knot between the domain's ends, these included, whatever the form. The knot
/// stands there fewer than `degree` times.
void insertOnce(NurbsBasis& basis, std::vector<MPoint>& cvs, double knot) {
    const int degree = basis.degree;
    const auto [low, high] = std::equal_range(basis.knots.begin(), basis.knots.end(), knot);
    const int below = static_cast<int>(low - basis.knots.begin());
    const int notAbove = static_cast<int>(high - basis.knots.begin());
    // New CVs that lie between two old ones; those before stay, those after move up by one.
    const int first = notAbove - degree + 1;
    const int last = below;
    std::vector<MPoint> between;
    for (int i = first; i <= last; ++i) {
        const double left = basis.knots[i - 1];
        const double right = basis.knots[i - 1 + degree];
        between.push_back(blend(cvs[i - 1], cvs[i], (knot - left) / (right - left)));
    }
    cvs.insert(cvs.begin() + last, MPoint());
    std::copy(between.begin(), between.end(), cvs.begin() + first);
    basis.knots.insert(basis.knots.begin() + notAbove, knot);
}

struct GaussNode {
    double at, weight;
};
/// Gauss-Legendre on 0..1, eight nodes: mirrored pairs about the middle, from M. Abramowitz and I. Stegun,
/// "Handbook of Mathematical Functions", table 25.4, halved.
constexpr GaussNode gaussPairs[] = {
    {0.183434642495649805 / 2.0, 0.362683783378361983 / 2.0},
    {0.525532409916328986 / 2.0, 0.313706645877887287 / 2.0},
    {0.796666477413626740 / 2.0, 0.222381034453374471 / 2.0},
    {0.960289856497536232 / 2.0, 0.101228536290376259 / 2.0},
};

constexpr int maxHalvings = 12;

} // namespace

Result<NurbsCurve> NurbsCurve::create(NurbsBasis basis, std::vector<MPoint> cvs, bool rational) {
    if (Outcome fault = basis.check(); !fault) return fault;
    if (static_cast<int>(cvs.size()) != basis.cvCount()) {
        return Outcome::fail(std::to_string(cvs.size()) + " CVs do not go with " +
                             std::to_string(basis.knotCount()) + " knots and degree " +
                             std::to_string(basis.degree));
    }
    NurbsCurve curve;
    curve.basis_.reset(std::move(basis));
    curve.rational_ = rational;
    settleCvs(gridOf(*curve.basis_), rational, cvs);
    curve.cvs_.reset(std::move(cvs));
    return curve;
}

Outcome NurbsCurve::setCvs(std::vector<MPoint> cvs) {
    if (static_cast<int>(cvs.size()) != cvCount()) {
        return Outcome::fail(std::to_string(cvs.size()) + " CVs for a curve that has " +
                             std::to_string(cvCount()));
    }
    settleCvs(gridOf(*basis_), rational_, cvs);
    cvs_.reset(std::move(cvs));
    return {};
}

Outcome NurbsCurve::setCv(int index, const MPoint& cv) {
    if (index < 0 || index >= cvCount())
        return Outcome::fail("CV " + std::to_string(index) + " does not exist");
    if (index >= distinctCvCount())
        return Outcome::fail("CV " + std::to_string(index) + " repeats another one");
    setCvAndRepeats(gridOf(*basis_), rational_, index, cv, cvs_.write());
    return {};
}

CurvePoint NurbsCurve::at(double parameter) const {
    if (empty()) return {};
    const NurbsRow row = basis_->row(parameter, 2);
    std::array<NurbsSum, 3> sums;
    for (int k = 0; k <= 2; ++k) {
        for (int j = 0; j <= degree(); ++j)
            sums[k].add((*cvs_)[row.firstCv + j], row.values[k][j]);
    }
    // Without this, rounding of the weights' sum would move points of plain curves.
    if (!rational_) sums[0].w = 1.0, sums[1].w = sums[2].w = 0.0;
    return divided(sums);
}

MPoint NurbsCurve::pointAt(double parameter) const {
    const NurbsSum sum = sumAt(parameter);
    return sum.w != 0.0 ? MPoint(sum.xyz / sum.w) : MPoint(sum.xyz);
}

NurbsSum NurbsCurve::sumAt(double parameter) const {
    NurbsSum sum;
    if (!empty()) {
        const NurbsRow row = basis_->row(parameter);
        for (int j = 0; j <= degree(); ++j)
            sum.add((*cvs_)[row.firstCv + j], row.values[0][j]);
    }
    if (!rational_) sum.w = 1.0;
    return sum;
}

std::vector<MPoint> NurbsCurve::editPoints() const {
    std::vector<MPoint> points;
    for (const double parameter : basis_->editParameters())
        points.push_back(pointAt(parameter));
    return points;
}

// ---- length ----

double NurbsCurve::speedIntegral(double from, double to) const {
    const double middle = 0.5 * (from + to);
    double sum = 0.0;
    for (const GaussNode& node : gaussPairs) {
        const double offset = node.at * (to - from);
        sum += node.weight * (at(middle - offset).d1.length() + at(middle + offset).d1.length());
    }
    return sum * (to - from);
}

double NurbsCurve::adaptiveLength(double from, double to, double whole, double tolerance, int depth) const {
    const double middle = 0.5 * (from + to);
    const double left = speedIntegral(from, middle);
    const double right = speedIntegral(middle, to);
    // Written so that a NaN ends it too.
    if (depth == 0 || !(std::abs(left + right - whole) > tolerance)) return left + right;
    return adaptiveLength(from, middle, left, 0.5 * tolerance, depth - 1) +
           adaptiveLength(middle, to, right, 0.5 * tolerance, depth - 1);
}

double NurbsCurve::length(double from, double to, double tolerance) const {
    if (empty()) return 0.0;
    const NurbsBasis& basis = *basis_;
    from = basis.normalized(from), to = basis.normalized(to);
    if (to < from) return -length(to, from, tolerance);
    // Span by span: in between the speed is smooth.
    double sum = 0.0;
    for (int i = basis.degree - 1; i < basis.cvCount() - 1; ++i) {
        const double a = std::max(from, basis.knots[i]);
        const double b = std::min(to, basis.knots[i + 1]);
        if (!(a < b)) continue;
        const double whole = speedIntegral(a, b);
        sum += adaptiveLength(a, b, whole, tolerance * whole, maxHalvings);
    }
    return sum;
}

double NurbsCurve::parameterAtLength(double wanted) const {
    if (empty() || !(wanted > 0.0)) return basis_->start();
    const NurbsBasis& basis = *basis_;
    double low = basis.start();
    double lowLength = 0.0;
    for (int i = basis.degree; i < basis.cvCount(); ++i) {
        double high = basis.knots[i];
        const double highLength = lowLength + length(low, high);
        if (!(highLength >= wanted)) {
            low = high, lowLength = highLength;
            continue;
        }
        double parameter = low;
        for (int step = 0; step < 60 && low < high; ++step) {
            parameter = 0.5 * (low + high);
            if (parameter == low || parameter == high) break;
            const double reached = lowLength + length(low, parameter);
            if (reached < wanted)
                low = parameter, lowLength = reached;
            else
                high = parameter;
        }
        return parameter;
    }
    return basis.end();
}

// ---- knots ----

Outcome NurbsCurve::insertKnot(double parameter, int times) {
    const NurbsBasis& basis = *basis_;
    if (empty() || !basis.contains(parameter))
        return Outcome::fail("the knot lies outside the curve's range");
    if (basis.isPeriodic())
        return Outcome::fail("a periodic curve takes no knot before its ends are clamped");
    for (const double knot : basis.knots) {
        if (std::abs(knot - parameter) <= 1e-12 * (basis.end() - basis.start())) parameter = knot;
    }
    const int present = basis.multiplicity(parameter);
    if (times < 0 || times > degree() - present) {
        return Outcome::fail("a knot can stand no more than " + std::to_string(degree()) + " times, " +
                             std::to_string(present) + " are there");
    }
    for (int i = 0; i < times; ++i)
        insertOnce(basis_.write(), cvs_.write(), parameter);
    return {};
}

NurbsCurve NurbsCurve::clamped() const {
    if (empty()) return *this;
    NurbsBasis basis = *basis_;
    std::vector<MPoint> cvs = *cvs_;
    const double start = basis.start();
    const double end = basis.end();
    for (const double knot : {start, end}) {
        while (basis.multiplicity(knot) < basis.degree)
            insertOnce(basis, cvs, knot);
    }
    // What lies before the first and behind the last full knot has no part in the curve any more.
    const auto first = std::lower_bound(basis.knots.begin(), basis.knots.end(), start) - basis.knots.begin();
    const auto last = std::upper_bound(basis.knots.begin(), basis.knots.end(), end) - basis.knots.begin();
    NurbsCurve curve;
    curve.basis_.reset(
        {basis.degree, NurbsForm::Open, {basis.knots.begin() + first, basis.knots.begin() + last}});
    curve.cvs_.reset({cvs.begin() + first, cvs.begin() + last - basis.degree + 1});
    curve.rational_ = rational_;
    return curve;
}

NurbsCurve NurbsCurve::withDomain(double start, double end) const {
    NurbsCurve curve = *this;
    const double from = basis_->start();
    const double range = basis_->end() - from;
    if (empty()) return curve;
    for (double& knot : curve.basis_.write().knots)
        knot = start + (end - start) * ((knot - from) / range);
    return curve;
}

NurbsCurve NurbsCurve::transformed(const MMatrix& matrix) const {
    NurbsCurve curve = *this;
    if (!empty()) transformCvs(matrix, curve.cvs_.write());
    return curve;
}

std::size_t NurbsCurve::byteSize() const {
    return sizeof(*this) + knots().size() * sizeof(double) + cvs_->size() * sizeof(MPoint);
}

} // namespace vesk::geom
