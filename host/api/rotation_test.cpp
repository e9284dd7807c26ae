#include <maya/MEulerRotation.h>
#include <maya/MQuaternion.h>
#include <maya/MTransformationMatrix.h>

#include <gtest/gtest.h>

#include <numbers>

namespace {

using Euler = MEulerRotation;
constexpr double pi = std::numbers::pi;
constexpr Euler::RotationOrder orders[] = {Euler::kXYZ, Euler::kYZX, Euler::kZXY,
                                           Euler::kXZY, Euler::kYXZ, Euler::kZYX};
const MVector x = MVector::xAxis, y = MVector::yAxis, z = MVector::zAxis;

MMatrix withRows(const MVector& a, const MVector& b, const MVector& c) {
    MMatrix m;
    a.get(m[0]), b.get(m[1]), c.get(m[2]);
    return m;
}

// A quarter turn about x takes y to z, about y takes z to x, about z takes x to y. The rows say where x, y
// and z end when the three quarter turns follow each other in the order.
TEST(Euler, QuarterTurnsInEveryOrder) {
    const MMatrix expected[] = {withRows(-z, y, x), withRows(y, -x, z), withRows(x, z, -y),
                                withRows(y, x, -z), withRows(-x, z, y), withRows(z, -y, x)};
    for (const Euler::RotationOrder order : orders) {
        const Euler quarters(pi / 2, pi / 2, pi / 2, order);
        EXPECT_TRUE(quarters.asMatrix().isEquivalent(expected[order], 1e-15)) << order;
        // The middle turn is a right angle: another triple, with nothing left for the last axis.
        const Euler found = Euler::decompose(expected[order], order);
        EXPECT_TRUE(found.asMatrix().isEquivalent(expected[order], 1e-15)) << order;
        EXPECT_EQ(found[order == Euler::kXYZ || order == Euler::kYXZ   ? 2
                        : order == Euler::kYZX || order == Euler::kZYX ? 0
                                                                       : 1],
                  0.0);
    }
}

TEST(Euler, AnglesSurviveMatrixQuaternionAndReordering) {
    for (const Euler::RotationOrder order : orders) {
        const Euler angles(0.3, -0.7, 1.1, order);
        EXPECT_TRUE(Euler::decompose(angles.asMatrix(), order).isEquivalent(angles, 1e-14));
        Euler again(0, 0, 0, order);
        again = angles.asQuaternion();
        EXPECT_TRUE(again.isEquivalent(angles, 1e-14));
        EXPECT_TRUE(angles.reorder(Euler::kZXY).reorder(order).isEquivalent(angles, 1e-14));
        const Euler other = angles.alternateSolution();
        EXPECT_TRUE(other.asMatrix().isEquivalent(angles.asMatrix(), 1e-14));
        EXPECT_FALSE(other.isEquivalent(angles, 0.1));
        EXPECT_TRUE(other.closestSolution(angles).isEquivalent(angles, 1e-14));
        EXPECT_TRUE((angles * angles.inverse()).isZero(1e-14));
    }
    EXPECT_TRUE(Euler(2.5 * pi, -3 * pi / 2, 0).bound().isEquivalent(Euler(pi / 2, pi / 2, 0), 1e-14));
    EXPECT_TRUE(
        Euler(0.1, 0, 0).closestSolution(Euler(4 * pi, 0, 0)).isEquivalent(Euler(4 * pi + 0.1, 0, 0), 1e-13));
}

TEST(Quaternion, TurnsAsMatricesDo) {
    const MQuaternion aboutZ(pi / 2, MVector(0, 0, 3));
    const MQuaternion aboutX(pi / 2, x);
    EXPECT_TRUE(x.rotateBy(aboutZ).isEquivalent(y));
    EXPECT_TRUE(x.rotateBy(aboutZ * aboutX).isEquivalent(z)) << "the left factor turns first";
    EXPECT_TRUE(x.rotateBy(aboutX * aboutZ).isEquivalent(y));
    EXPECT_TRUE((2.0 * aboutZ).inverse().isEquivalent(0.5 * aboutZ.conjugate()));
    MVector axis;
    double angle = 0.0;
    EXPECT_TRUE(aboutZ.getAxisAngle(axis, angle));
    EXPECT_TRUE(axis.isEquivalent(z));
    EXPECT_DOUBLE_EQ(angle, pi / 2);
    EXPECT_FALSE(MQuaternion().getAxisAngle(axis, angle));
    EXPECT_TRUE(slerp(MQuaternion(), -aboutZ, 1.0 / 3.0).isEquivalent(MQuaternion(pi / 6, z)));
    // Half turns leave no room for w; each axis leads the matrix's way back once.
    for (const MVector& half : {x, y, z, MVector(1, -2, 3)}) {
        const MMatrix m = MQuaternion(pi, half).asMatrix();
        EXPECT_TRUE((MQuaternion() = m).asMatrix().isEquivalent(m, 1e-15));
    }
}

TEST(Quaternion, FromOneDirectionToAnother) {
    EXPECT_TRUE(MVector(2, 0, 0).rotateTo(MVector(0, 5, 0)).isEquivalent(MQuaternion(pi / 2, z)));
    for (const MVector& v : {x, y, z, MVector(1, 2, -3)}) {
        EXPECT_TRUE(v.rotateBy(v.rotateTo(-v)).isEquivalent(-v, 1e-15 * 10)) << v;
        EXPECT_EQ(v.rotateTo(MVector::zero), MQuaternion::identity);
    }
}

// (3,2,0) by hand: off the scale pivot (2,2,0), scaled (4,2,0), sheared (5,2,0), back (6,2,0), shifted
// (6,3,0), off the rotate pivot (5,2,0), oriented about z (-2,5,0), turned about x (-2,0,5), back (-1,1,5),
// shifted
// (-1,1,6), moved (9,1,6).
TEST(Transformation, ComponentsActInTheirOrder) {
    const double scale[3] = {2, 1, 1};
    const double shear[3] = {0.5, 0, 0};
    const double turn[3] = {pi / 2, 0, 0};
    const MSpace::Space space = MSpace::kTransform;
    MTransformationMatrix t;
    t.setScale(scale, space);
    t.setShear(shear, space);
    t.setScalePivot(MPoint(1, 0, 0), space, false);
    t.setScalePivotTranslation(MVector(0, 1, 0), space);
    t.setRotatePivot(MPoint(1, 1, 0), space, false);
    t.setRotationOrientation(MQuaternion(pi / 2, z));
    t.setRotation(turn, MTransformationMatrix::kXYZ);
    t.setRotatePivotTranslation(MVector(0, 0, 1), space);
    t.setTranslation(MVector(10, 0, 0), space);
    EXPECT_TRUE((MPoint(3, 2, 0) * t.asMatrix()).isEquivalent(MPoint(9, 1, 6), 1e-14));
    EXPECT_TRUE((MPoint(9, 1, 6) * t.asMatrixInverse()).isEquivalent(MPoint(3, 2, 0), 1e-14));

    const MTransformationMatrix before = t;
    t.setScalePivot(MPoint(-4, 7, 2), space, true);
    t.setRotatePivot(MPoint(3, -2, 5), space, true);
    EXPECT_TRUE(t.isEquivalent(before, 1e-13)) << "balanced pivots";
    EXPECT_EQ(t.rotatePivot(MSpace::kWorld), MPoint(3, -2, 5));
    t.setRotatePivot(MPoint(), space, false);
    EXPECT_FALSE(t.isEquivalent(before, 1e-3));
}

TEST(Transformation, ScaleStaysBeforeRotation) {
    const double scale[3] = {2, 3, 4};
    const double turn[3] = {0, 0, pi / 2};
    MTransformationMatrix t;
    t.setRotation(turn, MTransformationMatrix::kXYZ);
    t.setScale(scale, MSpace::kWorld);
    EXPECT_TRUE(t.asMatrix().isEquivalent(withRows(2 * y, -3 * x, 4 * z), 1e-15));
    EXPECT_EQ(t.setRotation(turn, MTransformationMatrix::kInvalid), MS::kInvalidParameter);
}

TEST(Transformation, FindsComponentsOfAMatrix) {
    // Rows 2x, 3(x + y), 4(x + 2y + z), all turned by a quarter about z.
    MMatrix m = withRows(2 * y, 3 * (y - x), 4 * (y - 2 * x + z));
    MVector(5, 6, 7).get(m[3]);
    const MTransformationMatrix t(m);
    double found[3];
    MTransformationMatrix::RotationOrder order = MTransformationMatrix::kInvalid;
    t.getScale(found, MSpace::kTransform);
    EXPECT_TRUE(MVector(found).isEquivalent(MVector(2, 3, 4)));
    t.getShear(found, MSpace::kTransform);
    EXPECT_TRUE(MVector(found).isEquivalent(MVector(1, 1, 2)));
    t.getRotation(found, order);
    EXPECT_TRUE(MVector(found).isEquivalent(MVector(0, 0, pi / 2)));
    EXPECT_EQ(order, MTransformationMatrix::kXYZ);
    EXPECT_EQ(t.getTranslation(MSpace::kTransform), MVector(5, 6, 7));
    EXPECT_TRUE(t.asMatrix().isEquivalent(m, 1e-14));
}

TEST(Transformation, MirrorsAndFlatMatrices) {
    double scale[3];
    const MTransformationMatrix mirror(withRows(-2 * x, 3 * y, 4 * z));
    mirror.getScale(scale, MSpace::kTransform);
    EXPECT_EQ(MVector(scale), MVector(-2, -3, -4));
    EXPECT_NEAR(std::abs(mirror.eulerRotation().x), pi, 1e-15);

    const MTransformationMatrix flat(withRows(x, 2 * x, 3 * z));
    flat.getScale(scale, MSpace::kTransform);
    EXPECT_EQ(MVector(scale), MVector(1, 0, 3));
    EXPECT_TRUE(flat.eulerRotation().isZero());
    EXPECT_TRUE(MTransformationMatrix(withRows(0 * x, 0 * x, 0 * x)).eulerRotation().isZero());
    // One row left: whatever frame is found around it gives the same matrix again.
    for (const MMatrix& line :
         {withRows(MVector(1, 2, 3), 0 * x, 0 * x), withRows(0 * x, 0 * x, MVector(0, 5, 0))}) {
        EXPECT_TRUE(MTransformationMatrix(line).asMatrix().isEquivalent(line, 1e-14));
    }
}

TEST(Transformation, TurnsFurtherInItsOwnOrder) {
    const double aboutZ[3] = {0, 0, pi / 2};
    const double aboutX[3] = {pi / 2, 0, 0};
    MTransformationMatrix t;
    t.setRotation(aboutZ, MTransformationMatrix::kZYX);
    t.addRotation(aboutX, MTransformationMatrix::kXYZ);
    EXPECT_EQ(t.rotationOrder(), MTransformationMatrix::kZYX);
    EXPECT_TRUE((x * t.asMatrix()).isEquivalent(z)) << "z first, then x";
    t.reorderRotation(MTransformationMatrix::kXYZ);
    EXPECT_EQ(t.rotationOrder(), MTransformationMatrix::kXYZ);
    EXPECT_TRUE((x * t.asMatrix()).isEquivalent(z));
    t.rotateTo(MQuaternion(pi / 2, y));
    EXPECT_TRUE((z * t.asMatrix()).isEquivalent(x));
}

} // namespace
