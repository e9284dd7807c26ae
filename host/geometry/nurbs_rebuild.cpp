#include "host/geometry/nurbs_rebuild.h"

#include "host/geometry/nurbs_fit.h"

#include <algorithm>
#include <string>
#include <utility>

namespace vesk::geom {

namespace {

constexpr int maxSpans = 100000;

/// Knots that stand more than once inside the domain, moved apart. Equal to `basis` when there are none.
NurbsBasis withSimpleInnerKnots(const NurbsBasis& basis) {
    NurbsBasis simple = basis;
    int i = basis.degree;
    while (i < basis.cvCount() - 1) {
        const double knot = basis.knots[i];
        int next = i + 1;
        while (basis.knots[next] == knot)
            ++next;
        const int run = next - i;
        if (run > 1 && knot > basis.start() && knot < basis.end()) {
            const double step = std::min(knot - basis.knots[i - 1], basis.knots[next] - knot) / run;
            for (int k = 0; k < run; ++k)
                simple.knots[i + k] = knot + (k - 0.5 * (run - 1)) * step;
        }
        i = next;
    }
    return simple;
}

/// The curve over other knots, as many: CVs whose functions the change touches are fitted anew.
Result<NurbsCurve> refitted(const NurbsCurve& curve, NurbsBasis basis) {
    std::vector<double> sites;
    std::vector<NurbsSum> targets;
    int first = basis.cvCount();
    int last = -1;
    for (int i = 0; i < basis.knotCount(); ++i) {
        if (basis.knots[i] == curve.knots()[i]) continue;
        // Function c lives from knot c - 1 to knot c + degree.
        first = std::min(first, std::max(0, i - basis.degree));
        last = std::max(last, std::min(basis.cvCount() - 1, i + 1));
    }
    for (int cv = first; cv <= last; ++cv) {
        sites.push_back(basis.greville(cv));
        targets.push_back(curve.sumAt(sites.back()));
    }
    std::vector<MPoint> cvs = curve.cvs();
    if (Outcome fault = fitCvs(basis, first, sites, targets, cvs); !fault) return fault;
    return NurbsCurve::create(std::move(basis), std::move(cvs), curve.isRational());
}

Result<NurbsCurve> withoutMultipleKnots(const NurbsCurve& curve, const RebuildOptions& options) {
    const bool cut = options.endKnots == RebuildOptions::MultipleEnds;
    NurbsCurve result = cut ? curve.clamped() : curve;
    NurbsBasis simple = withSimpleInnerKnots(result.basis());
    if (simple == result.basis()) return result;
    if (!cut) return Outcome::fail("inner knots that stand more than once need multiple end knots");
    return refitted(result, std::move(simple));
}

Result<NurbsCurve> uniform(const NurbsCurve& curve, const RebuildOptions& options) {
    const bool ring = curve.form() == NurbsForm::Periodic && options.endKnots == RebuildOptions::UniformEnds;
    const int degree = options.keepControlPoints ? curve.degree() : options.degree;
    const int spans = options.keepControlPoints ? curve.spanCount() : options.spans;
    const int fewest = ring ? degree + 1 : 1;
    if (Outcome fault = NurbsBasis::checkDegree(degree); !fault) return fault;
    if (spans < fewest || spans > maxSpans)
        return Outcome::fail("cannot rebuild with " + std::to_string(spans) + " spans");

    NurbsBasis basis = ring ? NurbsBasis::periodic(degree, spans) : NurbsBasis::clamped(degree, spans);
    const double start = curve.basis().start();
    const double end = curve.basis().end();
    std::vector<MPoint> cvs(basis.cvCount());
    if (options.keepControlPoints) {
        cvs = ring ? curve.cvs() : curve.clamped().cvs();
    } else {
        std::vector<double> sites;
        std::vector<NurbsSum> targets;
        for (int cv = 0; cv < basis.distinctCvCount(); ++cv) {
            sites.push_back(basis.normalized(basis.greville(cv)));
            targets.push_back(curve.sumAt(start + (end - start) * (sites.back() / spans)));
        }
        if (Outcome fault = fitCvs(basis, 0, sites, targets, cvs); !fault) return fault;
    }
    Result<NurbsCurve> result = NurbsCurve::create(std::move(basis), std::move(cvs), curve.isRational());
    if (!result) return result;
    return result->withDomain(start, end);
}

} // namespace

Result<NurbsCurve> rebuildCurve(const NurbsCurve& curve, const RebuildOptions& options) {
    if (curve.empty()) return Outcome::fail("there is no curve to rebuild");
    if (options.type != RebuildOptions::Uniform && options.type != RebuildOptions::NoMultipleKnots)
        return Outcome::fail("rebuild type " + std::to_string(options.type) + " is not supported");
    Result<NurbsCurve> result = options.type == RebuildOptions::Uniform
                                    ? uniform(curve, options)
                                    : withoutMultipleKnots(curve, options);
    if (!result || options.keepRange == RebuildOptions::Keep) return result;
    return result->withDomain(0.0,
                              options.keepRange == RebuildOptions::ZeroToOne ? 1.0 : result->spanCount());
}

} // namespace vesk::geom
