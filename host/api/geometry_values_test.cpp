#include <maya/MBoundingBox.h>
#include <maya/MColor.h>
#include <maya/MFloatMatrix.h>
#include <maya/MFloatPoint.h>
#include <maya/MMatrix.h>
#include <maya/MPoint.h>
#include <maya/MVector.h>

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

namespace {

constexpr double pi = std::numbers::pi;

/// Doubles x, triples y, moves by (10, 20, 30).
const double placing[4][4] = {{2, 0, 0, 0}, {0, 3, 0, 0}, {0, 0, 1, 0}, {10, 20, 30, 1}};

TEST(Vector, Products) {
    const MVector a(1, 2, 3);
    const MVector b(4, -5, 6);
    EXPECT_EQ(a * b, 12.0);
    EXPECT_EQ(a ^ b, MVector(27, 6, -13));
    EXPECT_EQ(2 * a - b / 2, MVector(0, 6.5, 3));
    EXPECT_EQ(MVector(a) *= MMatrix(placing), MVector(2, 6, 3)) << "no translation";
    EXPECT_EQ(a.transformAsNormal(MMatrix(placing)), MVector(0.5, 2.0 / 3.0, 3));
    // A shear of y into x tilts the normal of the y planes' sides the other way.
    const double shear[4][4] = {{1, 0, 0, 0}, {2, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}};
    EXPECT_EQ(MVector::xAxis.transformAsNormal(MMatrix(shear)), MVector(1, -2, 0));
}

TEST(Vector, NormalsAndAngles) {
    MVector zero;
    EXPECT_TRUE(zero.normalize());
    EXPECT_EQ(zero, MVector(0, 0, 0));
    EXPECT_EQ(MFloatVector(0, 3, 4).normal(), MFloatVector(0, 0.6F, 0.8F));
    EXPECT_EQ(zero.angle(MVector::xAxis), 0.0);
    EXPECT_DOUBLE_EQ(MVector(2, 0).angle(MVector(-3, 0)), pi);
    EXPECT_DOUBLE_EQ(MVector(2, 0).angle(MVector(5, 5)), pi / 4);
    // Rounding takes the cosine of some of these past 1.
    for (int i = 1; i < 100; ++i) {
        const MVector v(0.1 * i, 0.2, 0.3);
        EXPECT_LT(v.angle(v * 7.0), 1e-7) << i;
        EXPECT_GT(v.angle(v * -7.0), 3.14159) << i;
    }
    EXPECT_TRUE(MVector(1, 2, 3).isParallel(MVector(-2, -4, -6)));
    EXPECT_FALSE(MVector(1, 2, 3).isParallel(MVector(1, 2, 3.1)));
    EXPECT_TRUE(MVector(1, 2, 3).isEquivalent(MVector(1, 2, 3 + 0.9e-10)));
    EXPECT_FALSE(MVector(1, 2, 3).isEquivalent(MVector(1, 2, 3 + 1.1e-10)));
}

TEST(Point, MatrixKeepsTheWeight) {
    const MPoint p(1, 2, 3);
    EXPECT_EQ(p * MMatrix(placing), MPoint(12, 26, 33, 1));
    EXPECT_EQ(MPoint(1, 2, 3, 0) * MMatrix(placing), MPoint(2, 6, 3, 0));
    double perspective[4][4] = {{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 2}, {0, 0, 0, 0}};
    MPoint seen = p * MMatrix(perspective);
    EXPECT_EQ(seen, MPoint(1, 2, 3, 6));
    EXPECT_EQ(seen.cartesianize(), MPoint(1.0 / 6, 2.0 / 6, 0.5, 1));
    EXPECT_EQ(p * 2.0, MPoint(2, 4, 6, 1));
    EXPECT_EQ(MPoint(4, 6, 3) - p, MVector(3, 4, 0));
    EXPECT_EQ(p - MVector(1, 1, 1), MPoint(0, 1, 2));
    EXPECT_EQ(p.distanceTo(MPoint(4, 6, 3)), 5.0);
    EXPECT_EQ(MFloatPoint(1, 2, 3) * MFloatMatrix(placing), MFloatPoint(12, 26, 33));
}

TEST(Matrix, InverseAndDeterminant) {
    const MMatrix inverse = MMatrix(placing).inverse();
    EXPECT_TRUE((MPoint(12, 26, 33) * inverse).isEquivalent(MPoint(1, 2, 3), 1e-14));
    EXPECT_EQ(MMatrix(placing).det4x4(), 6.0);
    // By the first row: 1 * |3x3| of the lower right, found by hand, and 2 * that of the columns 0 1 3.
    const double full[4][4] = {{1, 0, 2, 0}, {3, 1, 0, 1}, {0, 2, 1, 0}, {1, 0, 1, 2}};
    const MMatrix m(full);
    EXPECT_EQ(m.det4x4(), 1 * 4.0 + 2 * 10.0);
    EXPECT_EQ(m.det3x3(), 13.0);
    EXPECT_TRUE((m * m.inverse()).isEquivalent(MMatrix::identity, 1e-14));
    EXPECT_TRUE((m.adjoint() * m).isEquivalent(MMatrix::identity * 24.0, 1e-12));
    EXPECT_EQ(m.transpose()(2, 0), 2.0);
    EXPECT_FALSE(m.isSingular());

    MMatrix flat;
    flat(1, 1) = 0.0;
    const MMatrix broken = flat.inverse();
    for (unsigned int i = 0; i < 16; ++i)
        EXPECT_FALSE(std::isfinite(broken(i / 4, i % 4)));
    EXPECT_TRUE(flat.isSingular());
}

TEST(BoundingBox, GrowsFromItsFirstPoint) {
    MBoundingBox box;
    EXPECT_FALSE(box.contains(MPoint()));
    box.transformUsing(MMatrix(placing));
    box.expand(MBoundingBox());
    box.expand(MPoint(5, 6, 7));
    EXPECT_EQ(box.min(), MPoint(5, 6, 7));
    box.expand(MBoundingBox(MPoint(4, 8, 7), MPoint(5, 5, 9)));
    EXPECT_EQ(box.min(), MPoint(4, 5, 7));
    EXPECT_EQ(box.max(), MPoint(5, 8, 9));
    EXPECT_EQ(box.center(), MPoint(4.5, 6.5, 8));
    EXPECT_TRUE(box.width() == 1 && box.height() == 3 && box.depth() == 2);
    EXPECT_TRUE(box.contains(MPoint(5, 8, 9)));
    EXPECT_FALSE(box.contains(MPoint(5, 8, 9.001)) || box.contains(MPoint(5, std::nan(""), 9)));
}

TEST(BoundingBox, MeetsAndTurns) {
    MBoundingBox box(MPoint(0, 0, 0), MPoint(1, 2, 1));
    EXPECT_TRUE(box.intersects(MBoundingBox(MPoint(1, 2, 1), MPoint(3, 3, 3))));
    const MBoundingBox apart(MPoint(1.5, 0, 0), MPoint(2, 1, 1));
    EXPECT_FALSE(box.intersects(apart) || box.intersects(apart, 0.4));
    EXPECT_TRUE(box.intersects(apart, 0.5));
    EXPECT_FALSE(box.intersects(MBoundingBox(), 100.0));
    const double quarterAboutZ[4][4] = {{0, 1, 0, 0}, {-1, 0, 0, 0}, {0, 0, 1, 0}, {0, 0, 5, 1}};
    box.transformUsing(MMatrix(quarterAboutZ));
    EXPECT_EQ(box.min(), MPoint(-2, 0, 5));
    EXPECT_EQ(box.max(), MPoint(0, 1, 6));
}

TEST(Color, HueSaturationValue) {
    const auto rgb = [](float h, float s, float v) { return MColor(MColor::kHSV, h, s, v); };
    EXPECT_EQ(rgb(0, 1, 1), MColor(1, 0, 0));
    EXPECT_EQ(rgb(60, 1, 1), MColor(1, 1, 0));
    EXPECT_EQ(rgb(240, 0.5F, 1), MColor(0.5F, 0.5F, 1));
    EXPECT_EQ(rgb(-60, 1, 0.5F), MColor(0.5F, 0, 0.5F));
    float h = 0, s = 0, v = 0;
    MColor(0.25F, 0.5F, 0.25F).get(MColor::kHSV, h, s, v);
    EXPECT_TRUE(h == 120 && s == 0.5F && v == 0.5F);
    MColor(1, 0, 0.5F).get(MColor::kHSV, h, s, v);
    EXPECT_EQ(h, 330);
    MColor(2, 2, 2).get(MColor::kHSV, h, s, v);
    EXPECT_TRUE(h == 0 && s == 0 && v == 2);
}

} // namespace
