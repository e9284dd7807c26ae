#include "host/geometry/nurbs_primitives.h"
#include "host/geometry/nurbs_rebuild.h"

#include <gtest/gtest.h>

namespace vesk::geom {
namespace {

constexpr RebuildOptions clampEnds{.type = RebuildOptions::NoMultipleKnots,
                                   .endKnots = RebuildOptions::MultipleEnds};
const std::vector<MPoint> seven{{0, 0}, {1, 2}, {3, 2, 1}, {4, 0, 2}, {6, 1}, {7, 3}, {9, 0}};

double largestGap(const NurbsCurve& a, const NurbsCurve& b) {
    double gap = 0.0;
    for (int i = 0; i <= 50; ++i) {
        const auto at = [i](const NurbsCurve& c) {
            return c.pointAt(c.basis().start() + (c.basis().end() - c.basis().start()) * i / 50.0);
        };
        gap = std::max(gap, at(a).distanceTo(at(b)));
    }
    return gap;
}

TEST(RebuildCurve, ClampingLeavesClampedCurvesAlone) {
    NurbsBasis closed = NurbsBasis::clamped(3, 4);
    closed.form = NurbsForm::Closed;
    const NurbsCurve curve = *NurbsCurve::create(closed, seven);
    const NurbsCurve same = *rebuildCurve(curve, clampEnds);
    EXPECT_EQ(same.cvs(), curve.cvs());
    EXPECT_EQ(same.knots(), curve.knots());
    EXPECT_EQ(same.form(), NurbsForm::Open);

    const NurbsCurve ring = *makeCircle({});
    const NurbsCurve cut = *rebuildCurve(ring, clampEnds);
    EXPECT_EQ(cut.form(), NurbsForm::Open);
    EXPECT_EQ(cut.cvCount(), 11);
    EXPECT_TRUE(cut.basis().isClamped());
    EXPECT_LT(largestGap(cut, ring), 1e-14);
}

TEST(RebuildCurve, MovesMultipleInnerKnotsApart) {
    // Knot 2 twice, its neighbours 1 away: apart by 1/2, from 7/4 to 9/4. Functions 1 to 6 feel it.
    std::vector<MPoint> nine = seven;
    nine.insert(nine.end(), {{10, 1}, {12, 4, 4}});
    const NurbsCurve curve =
        *NurbsCurve::create({3, NurbsForm::Open, {0, 0, 0, 1, 2, 2, 3, 4, 5, 5, 5}}, nine);
    const NurbsCurve simple = *rebuildCurve(curve, clampEnds);
    EXPECT_EQ(simple.knots(), (std::vector<double>{0, 0, 0, 1, 1.75, 2.25, 3, 4, 5, 5, 5}));
    for (const int kept : {0, 7, 8})
        EXPECT_EQ(simple.cvs()[kept], nine[kept]);
    for (const int cv : {1, 2, 3, 4, 5, 6}) {
        const double site = simple.basis().greville(cv);
        EXPECT_LT(simple.pointAt(site).distanceTo(curve.pointAt(site)), 1e-13);
    }
    RebuildOptions uniformEnds = clampEnds;
    uniformEnds.endKnots = RebuildOptions::UniformEnds;
    EXPECT_FALSE(rebuildCurve(curve, uniformEnds));
    EXPECT_EQ(rebuildCurve(*makeCircle({}), uniformEnds)->form(), NurbsForm::Periodic);
}

TEST(RebuildCurve, UniformFollowsTheOldCurve) {
    // A parabola is any cubic spline.
    const NurbsCurve parabola = *NurbsCurve::create(NurbsBasis::clamped(2, 1, 5.0), {{0, 0}, {1, 2}, {2, 0}});
    const NurbsCurve cubic = *rebuildCurve(parabola, {});
    EXPECT_EQ(cubic.knots(), (std::vector<double>{0, 0, 0, 1.25, 2.5, 3.75, 5, 5, 5}));
    EXPECT_LT(largestGap(cubic, parabola), 1e-13);
    EXPECT_EQ(rebuildCurve(parabola, {.keepRange = RebuildOptions::ZeroToOne})->basis().end(), 1.0);
    EXPECT_EQ(rebuildCurve(parabola, {.keepRange = RebuildOptions::ZeroToSpans})->basis().end(), 4.0);

    // A ring stays one, odd or even; with its own knots it is itself again.
    const NurbsCurve ring = *makeCircle({});
    EXPECT_LT(largestGap(*rebuildCurve(ring, {.spans = 8}), ring), 1e-13);
    const NurbsCurve quadratic = *rebuildCurve(ring, {.spans = 20, .degree = 2});
    EXPECT_EQ(quadratic.form(), NurbsForm::Periodic);
    EXPECT_LT(largestGap(quadratic, ring), 1e-3);
    const NurbsCurve uneven = *NurbsCurve::create({3, NurbsForm::Open, {0, 0, 0, 1, 1, 7, 9, 9, 9}}, seven);
    const Result<NurbsCurve> sameCvs =
        rebuildCurve(uneven, {.keepRange = RebuildOptions::ZeroToSpans, .keepControlPoints = true});
    EXPECT_EQ(sameCvs->cvs(), seven);
    EXPECT_EQ(sameCvs->knots(), (std::vector<double>{0, 0, 0, 1, 2, 3, 4, 4, 4}));
}

TEST(RebuildCurve, RefusesWhatItCannotDo) {
    const NurbsCurve ring = *makeCircle({});
    EXPECT_FALSE(rebuildCurve({}, clampEnds));
    EXPECT_EQ(rebuildCurve(ring, {.type = 4}).error(), "rebuild type 4 is not supported");
    EXPECT_FALSE(rebuildCurve(ring, {.spans = 3})); // a cubic ring needs four
    EXPECT_FALSE(rebuildCurve(ring, {.spans = 2000000000}));
    EXPECT_FALSE(rebuildCurve(ring, {.degree = 0}));
}

} // namespace
} // namespace vesk::geom
