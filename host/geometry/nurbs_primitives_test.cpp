#include "host/geometry/nurbs_primitives.h"

#include <gtest/gtest.h>

#include <cmath>

namespace vesk::geom {
namespace {

void expectNear(const MVector& a, const MVector& b, double tolerance = 1e-12) {
    EXPECT_LT((a - b).length(), tolerance) << a << " is not " << b;
}

TEST(MakeCircle, IsAnEvenRing) {
    const NurbsCurve circle = *makeCircle({});
    EXPECT_EQ(circle.basis(),
              (NurbsBasis{3, NurbsForm::Periodic, {-2, -1, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10}}));
    EXPECT_EQ(circle.cvCount(), 11);
    // Radius r of the CVs from (r cos 45 + 4 r + r cos 45) / 6 = 1.
    const double r = 6.0 / (4.0 + std::sqrt(2.0));
    expectNear(circle.cvs()[1], {0, r, 0});
    expectNear(circle.cvs()[0], {r * std::sqrt(0.5), r * std::sqrt(0.5), 0});
    expectNear(circle.pointAt(2), {-1, 0, 0});
    for (int i = 0; i < 8; ++i) {
        EXPECT_NEAR(circle.cvs()[i].distanceTo({}), r, 1e-14);
        EXPECT_NEAR(circle.pointAt(i).distanceTo({}), 1.0, 1e-14);
        EXPECT_NEAR(circle.pointAt(i + 0.5).distanceTo({}), circle.pointAt(0.5).distanceTo({}), 1e-14);
    }
    EXPECT_NEAR(circle.pointAt(0.5).distanceTo({}), 1.0, 0.0012);
}

TEST(MakeCircle, FollowsItsOptions) {
    const NurbsCurve polygon =
        *makeCircle({.center = {1, 2, 3}, .normal = {0, 2, 0}, .radius = 5, .degree = 1, .sections = 4});
    EXPECT_EQ(polygon.cvCount(), 5);
    expectNear(polygon.cvs()[0], {1, 2, -2});
    expectNear(polygon.cvs()[1], {-4, 2, 3}); // counter-clockwise about y: from -z to -x
    const NurbsCurve half = *makeCircle({.sweep = std::numbers::pi, .sections = 6});
    EXPECT_EQ(half.form(), NurbsForm::Open);
    EXPECT_EQ(half.cvCount(), 9);
    for (int i = 0; i <= 6; ++i)
        expectNear(half.pointAt(i),
                   {-std::sin(i * std::numbers::pi / 6), std::cos(i * std::numbers::pi / 6)});
    expectNear(half.at(0).d1, {-2 * std::sin(std::numbers::pi / 12), 0}); // a chord long

    EXPECT_FALSE(makeCircle({.degree = 2}));
    EXPECT_FALSE(makeCircle({.sections = 3}));
    EXPECT_FALSE(makeCircle({.sections = 1000000000}));
    EXPECT_FALSE(makeCircle({.sweep = std::nan("")}));
}

TEST(MakeCurve, AddsKnotsAndChecks) {
    const std::vector<MPoint> square{{0, 0}, {1, 0}, {1, 1}, {0, 1}};
    const NurbsCurve plain = *makeCurve(2, square);
    EXPECT_EQ(plain.knots(), (std::vector<double>{0, 0, 1, 2, 2}));
    EXPECT_FALSE(plain.isRational());
    EXPECT_TRUE(makeCurve(1, {{0, 0}, {1, 0, 0, 2}})->isRational());
    EXPECT_EQ(makeCurve(3, {{0, 0}, {1, 0}}).error(), "2 CVs are too few for degree 3");
    EXPECT_FALSE(makeCurve(0, square) || makeCurve(3, {}) || makeCurve(3, square, {0, 0, 1, 1}));
    EXPECT_FALSE(makeCurve(1, square, {}, true) || makeCurve(1, square, {0, 1, 2, 3}, true));
    std::vector<MPoint> round = square;
    round.push_back(square[0]);
    EXPECT_EQ(makeCurve(1, round, {0, 1, 2, 3, 4}, true)->distinctCvCount(), 4);
}

TEST(MakePlane, IsEvenInBothDirections) {
    const NurbsSurface plane = *makePlane({.axis = {0, 1, 0}});
    EXPECT_EQ(plane.basisU().knots, (std::vector<double>{0, 0, 0, 1, 1, 1}));
    ASSERT_EQ(plane.cvCount(), 16);
    expectNear(plane.cv(0, 0), {-0.5, 0, 0.5});
    expectNear(plane.cv(1, 0), {-1.0 / 6, 0, 0.5});
    expectNear(plane.cv(0, 3), {-0.5, 0, -0.5});
    expectNear(plane.normalAt(0.2, 0.9), {0, 1, 0});
    const NurbsSurface wide = *makePlane({.pivot = {5, 0, 0},
                                          .axis = {0, 0, 1},
                                          .width = 4,
                                          .lengthRatio = 0.5,
                                          .patchesU = 2,
                                          .patchesV = 4});
    EXPECT_EQ(wide.basisV().knots, (std::vector<double>{0, 0, 0, 0.25, 0.5, 0.75, 1, 1, 1}));
    EXPECT_EQ(wide.cvCountU(), 5);
    expectNear(wide.pointAt(0.125, 0.75), {5 - 1.5, 0.5, 0});
    EXPECT_FALSE(makePlane({.degree = 0}) || makePlane({.patchesU = 0}));
}

TEST(Revolved, NormalsPointOutward) {
    const RevolvedOptions upright{.axis = {0, 1, 0}};
    const NurbsSurface sphere = *makeSphere(upright);
    EXPECT_EQ(sphere.cvCountU(), 7);
    EXPECT_EQ(sphere.cvCountV(), 11);
    EXPECT_EQ(sphere.basisV().form, NurbsForm::Periodic);
    for (int v = 0; v < 11; ++v) {
        expectNear(sphere.cv(0, v), {0, -1, 0});
        expectNear(sphere.cv(6, v), {0, 1, 0});
    }
    for (int u = 0; u <= 4; ++u) {
        for (int v = 0; v < 8; ++v) {
            const MPoint point = sphere.pointAt(u, v);
            EXPECT_NEAR(point.distanceTo({}), 1.0, 1e-13);
            EXPECT_GT(sphere.normalAt(u, v) * MVector(point), 0.999);
        }
    }
    expectNear(sphere.pointAt(2, 0), {1, 0, 0});
    expectNear(sphere.pointAt(2, 2), {0, 0, 1});

    const NurbsSurface cylinder = *makeCylinder(upright, 3, 2);
    expectNear(cylinder.pointAt(0.5, 4), {-1, -0.75, 0});
    expectNear(cylinder.normalAt(0.5, 4), {-1, 0, 0});
    const NurbsSurface cone = *makeCone(upright);
    expectNear(cone.pointAt(1, 3), {0, 1, 0});
    expectNear(cone.normalAt(0.5, 0), MVector(2, 1, 0).normal());
    const NurbsSurface torus = *makeTorus(upright);
    expectNear(torus.pointAt(0, 0), {1.5, 0, 0});
    expectNear(torus.pointAt(1, 2), {0, 0.5, 1});
    expectNear(torus.normalAt(2, 0), {-1, 0, 0});

    const NurbsSurface lying = *makeSphere({.pivot = {0, 0, 7}, .radius = 2});
    expectNear(lying.pointAt(4, 0), {2, 0, 7});
    const NurbsSurface half =
        *makeSphere({.axis = {0, 1, 0}, .startSweep = 0.5 * fullTurn, .degree = 1, .sections = 2}, 2);
    EXPECT_EQ(half.cvCount(), 9);
    expectNear(half.cv(1, 0), {-1, 0, 0});
    expectNear(half.cv(1, 1), {0, 0, -1});
    EXPECT_FALSE(makeCylinder({.degree = 0}) || makeSphere({.sections = 2}) || makeSphere({}, 0));
    EXPECT_FALSE(makeTorus({.endSweep = -1}));
}

} // namespace
} // namespace vesk::geom
