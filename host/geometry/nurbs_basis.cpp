#include "host/geometry/nurbs_basis.h"

#include <algorithm>
#include <cmath>
#include <string>

namespace vesk::geom {

namespace {

using Values = std::array<double, maxNurbsDegree + 1>;

/// All functions of `degree` that are not zero between knots[span] and knots[span + 1], at a parameter in
/// there: algorithm A2.2 of L. Piegl and W. Tiller, "The NURBS Book", 2nd edition, 1997.
Values functionsOfSpan(const std::vector<double>& knots, int span, int degree, double parameter) {
    Values values{1.0};
    for (int d = 1; d <= degree; ++d) {
        double carried = 0.0;
        for (int j = 0; j < d; ++j) {
            const double right = knots[span + 1 + j];
            const double left = knots[span + 1 + j - d];
            const double part = values[j] / (right - left);
            values[j] = carried + (right - parameter) * part;
            carried = (parameter - left) * part;
        }
        values[d] = carried;
    }
    return values;
}

/// From functions, or derivatives of them, of degree - 1 to the next derivative of those of `degree`:
/// equation 2.7 there. No division by zero: each difference spans knots[span]..knots[span + 1].
Values derived(const std::vector<double>& knots, int span, int degree, const Values& lower) {
    Values result{};
    for (int j = 0; j < degree; ++j) {
        const double slope = degree * lower[j] / (knots[span + 1 + j] - knots[span + 1 + j - degree]);
        result[j] -= slope;
        result[j + 1] += slope;
    }
    return result;
}

std::string text(int number) { return std::to_string(number); }

} // namespace

NurbsBasis NurbsBasis::clamped(int degree, int spans, double scale) {
    NurbsBasis basis{degree, NurbsForm::Open, {}};
    basis.knots.reserve(spans + 2 * degree - 1);
    for (int i = 1 - degree; i < spans + degree; ++i)
        basis.knots.push_back(scale * std::clamp(i, 0, spans));
    return basis;
}

NurbsBasis NurbsBasis::periodic(int degree, int spans) {
    NurbsBasis basis{degree, NurbsForm::Periodic, {}};
    basis.knots.reserve(spans + 2 * degree - 1);
    for (int i = 1 - degree; i < spans + degree; ++i)
        basis.knots.push_back(i);
    return basis;
}

Outcome NurbsBasis::checkDegree(int degree) {
    if (degree >= 1 && degree <= maxNurbsDegree) return {};
    return Outcome::fail("degree " + text(degree) + " is not between 1 and " + text(maxNurbsDegree));
}

Outcome NurbsBasis::check() const {
    if (Outcome fault = checkDegree(degree); !fault) return fault;
    if (form != NurbsForm::Open && form != NurbsForm::Closed && form != NurbsForm::Periodic)
        return Outcome::fail("form " + text(static_cast<int>(form)) + " is not known");
    if (knots.size() < 2U * degree)
        return Outcome::fail(text(knotCount()) + " knots are too few for degree " + text(degree));
    for (int i = 0, run = 1; i < knotCount(); ++i) {
        if (!std::isfinite(knots[i])) return Outcome::fail("knot " + text(i) + " is not a finite number");
        if (i == 0) continue;
        if (knots[i] < knots[i - 1])
            return Outcome::fail("knot " + text(i) + " is smaller than the one before");
        run = knots[i] == knots[i - 1] ? run + 1 : 1;
        if (run > degree)
            return Outcome::fail("knot " + text(i) + " stands more than " + text(degree) + " times");
    }
    if (!(start() < end())) return Outcome::fail("the knots leave no range of parameters");
    if (isPeriodic() && cvCount() < 2 * degree + 1)
        return Outcome::fail(text(cvCount()) + " CVs are too few for a periodic form of degree " +
                             text(degree));
    return {};
}

double NurbsBasis::normalized(double parameter) const {
    const double from = start();
    const double to = end();
    if (contains(parameter)) return parameter;
    if (std::isnan(parameter)) return from;
    if (isPeriodic() && std::isfinite(parameter)) {
        const double turns = std::floor((parameter - from) / (to - from));
        return std::clamp(parameter - turns * (to - from), from, to);
    }
    return std::clamp(parameter, from, to);
}

/// The knot at which the span of a parameter in the domain begins: a span with length, the last one at the
/// end.
int NurbsBasis::spanKnot(double parameter) const {
    const auto first = knots.begin();
    auto next = std::upper_bound(first + degree, first + cvCount() - 1, parameter);
    while (next - first > degree && *(next - 1) == *next)
        --next;
    return static_cast<int>(next - first) - 1;
}

NurbsRow NurbsBasis::row(double parameter, int order) const {
    parameter = normalized(parameter);
    const int span = spanKnot(parameter);
    NurbsRow row;
    row.firstCv = span - degree + 1;
    for (int k = 0; k <= std::min(order, degree); ++k) {
        Values values = functionsOfSpan(knots, span, degree - k, parameter);
        for (int d = degree - k + 1; d <= degree; ++d)
            values = derived(knots, span, d, values);
        row.values[k] = values;
    }
    return row;
}

double NurbsBasis::greville(int cv) const {
    double sum = 0.0;
    for (int i = 0; i < degree; ++i)
        sum += knots[cv + i];
    return sum / degree;
}

std::vector<double> NurbsBasis::editParameters() const {
    if (empty()) return {};
    std::vector<double> parameters(knots.begin() + degree - 1, knots.begin() + cvCount());
    parameters.erase(std::unique(parameters.begin(), parameters.end()), parameters.end());
    if (isPeriodic()) parameters.pop_back();
    return parameters;
}

int NurbsBasis::multiplicity(double knot) const {
    return static_cast<int>(std::count(knots.begin(), knots.end(), knot));
}

bool NurbsBasis::isClamped() const { return !empty() && knots.front() == start() && knots.back() == end(); }

} // namespace vesk::geom
