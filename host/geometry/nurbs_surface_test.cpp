#include "host/geometry/nurbs_surface.h"

#include <gtest/gtest.h>

#include <cmath>

namespace vesk::geom {
namespace {

NurbsSurface make(NurbsBasis u, NurbsBasis v, std::vector<MPoint> cvs, bool rational = false) {
    Result<NurbsSurface> surface = NurbsSurface::create(std::move(u), std::move(v), std::move(cvs), rational);
    EXPECT_TRUE(surface) << surface.error();
    return surface ? *surface : NurbsSurface();
}

void expectNear(const MVector& a, const MVector& b, double tolerance = 1e-12) {
    EXPECT_LT((a - b).length(), tolerance) << a << " is not " << b;
}

/// Quadratic by linear, bent: an eighth of a cylinder in x and z, its weights uneven along y.
NurbsSurface shell() {
    const double w = std::sqrt(0.5);
    return make(NurbsBasis::clamped(2, 1), NurbsBasis::clamped(1, 1),
                {{1, 0, 0}, {1, 2, 0, 2}, {1, 0, 1, w}, {1, 2, 1, 2 * w}, {0, 0, 1}, {0, 2, 1, 2}}, true);
}

TEST(NurbsSurface, RefusesWhatDoesNotFit) {
    const NurbsBasis good = NurbsBasis::clamped(1, 1);
    const NurbsBasis bad{3, NurbsForm::Open, {0, 1}};
    const std::vector<MPoint> four(4);
    EXPECT_EQ(NurbsSurface::create(bad, good, four).error(), "u: 2 knots are too few for degree 3");
    EXPECT_EQ(NurbsSurface::create(good, bad, four).error(), "v: 2 knots are too few for degree 3");
    EXPECT_EQ(NurbsSurface::create(good, good, std::vector<MPoint>(5)).error(),
              "5 CVs where the knots ask for 2 times 2");
    NurbsSurface surface = make(good, good, four);
    EXPECT_FALSE(surface.setCvs(std::vector<MPoint>(3)) || surface.setCv(4, {}) || surface.setCv(-1, {}));
    const NurbsSurface none;
    EXPECT_TRUE(none.distinctCvs().empty());
    EXPECT_EQ(none.normalAt(0, 0), MVector());
}

TEST(NurbsSurface, OrdersCvsAlongVAndRepeatsPeriodicOnes) {
    // 3 by 2 distinct CVs, each direction linear and periodic: 4 by 3 in all.
    std::vector<MPoint> cvs;
    for (int i = 0; i < 12; ++i)
        cvs.push_back(MPoint(i, 0));
    NurbsSurface torus = make(NurbsBasis::periodic(1, 3), NurbsBasis::periodic(1, 2), cvs);
    EXPECT_EQ(torus.cvIndex(2, 1), 7);
    EXPECT_EQ(torus.distinctCvs(), (std::vector<int>{0, 1, 3, 4, 6, 7}));
    EXPECT_EQ(torus.cv(0, 2).x, 0);
    EXPECT_EQ(torus.cv(3, 1).x, 1);
    const NurbsSurface before = torus;
    EXPECT_TRUE(torus.setCv(0, {8, 8}));
    for (const int corner : {0, 2, 9, 11})
        EXPECT_EQ(torus.cvs()[corner], MPoint(8, 8));
    EXPECT_FALSE(torus.setCv(2, {}) || torus.setCv(9, {}));
    EXPECT_EQ(before.cvs()[0], MPoint(0, 0));
}

TEST(NurbsSurface, EvaluatesPointsAndDerivatives) {
    // The bilinear patch (u, v, u v): du = (1, 0, v), dv = (0, 1, u), duv = (0, 0, 1).
    const NurbsBasis linear = NurbsBasis::clamped(1, 1);
    const NurbsSurface saddle = make(linear, linear, {{0, 0, 0}, {0, 1, 0}, {1, 0, 0}, {1, 1, 1}});
    const SurfacePoint p = saddle.at(0.25, 0.5);
    expectNear(p.position, {0.25, 0.5, 0.125});
    expectNear(p.du, {1, 0, 0.5});
    expectNear(p.dv, {0, 1, 0.25});
    expectNear(p.duv, {0, 0, 1});
    expectNear(p.duu, {});
    expectNear(saddle.normalAt(0, 0), {0, 0, 1});

    const NurbsSurface round = shell();
    const double h = 1e-5;
    for (const double u : {0.2, 0.5, 0.9}) {
        for (const double v : {0.3, 0.7}) {
            const SurfacePoint at = round.at(u, v);
            EXPECT_NEAR(std::hypot(at.position.x, at.position.z), 1.0, 1e-14);
            expectNear(at.position, round.pointAt(u, v));
            const SurfacePoint u0 = round.at(u - h, v), u1 = round.at(u + h, v);
            const SurfacePoint v0 = round.at(u, v - h), v1 = round.at(u, v + h);
            expectNear(at.du, (u1.position - u0.position) / (2 * h), 1e-7);
            expectNear(at.dv, (v1.position - v0.position) / (2 * h), 1e-7);
            expectNear(at.duu, (u1.du - u0.du) / (2 * h), 1e-7);
            expectNear(at.duv, (v1.du - v0.du) / (2 * h), 1e-7);
            expectNear(at.dvv, (v1.dv - v0.dv) / (2 * h), 1e-7);
            // u turns from x to z, v goes up: z ^ y points inward.
            expectNear(round.normalAt(u, v), MVector(-at.position.x, 0, -at.position.z));
        }
    }
}

TEST(NurbsSurface, NormalAtAPoleIsTheLimit) {
    // A flat disc sector whose first row is one point.
    const NurbsSurface fan = make(NurbsBasis::clamped(1, 1), NurbsBasis::clamped(1, 2),
                                  {{0, 0}, {0, 0}, {0, 0}, {2, 0}, {1, 1}, {0, 2}});
    for (const double v : {0.0, 0.5, 1.5, 2.0})
        expectNear(fan.normalAt(0, v), {0, 0, 1});
    const NurbsSurface point =
        make(NurbsBasis::clamped(1, 1), NurbsBasis::clamped(1, 1), std::vector<MPoint>(4, MPoint(1, 2, 3)));
    EXPECT_EQ(point.normalAt(0.5, 0.5), MVector());
}

} // namespace
} // namespace vesk::geom
