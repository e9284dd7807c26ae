#include "volume/shapes.h"

#include <gtest/gtest.h>

#include <limits>

namespace vesk::volume {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

TEST(Shapes, SurfacesAreInside) {
    EXPECT_DOUBLE_EQ(distanceInSphere({0, 1, 0}), 1);
    EXPECT_DOUBLE_EQ(distanceInSphere({0.6, 0, 0.8}), 1);
    EXPECT_EQ(distanceInSphere({0, 1.000001, 0}), kOutside);
    EXPECT_DOUBLE_EQ(distanceInCube({1, -1, 1}), 1);
    EXPECT_EQ(distanceInCube({0, 0, -1.000001}), kOutside);
    EXPECT_DOUBLE_EQ(distanceInside({{1, 2, 3}, 2}, {1, 4, 3}), 1);
    EXPECT_EQ(distanceInside({{1, 2, 3}, 2}, {1, 4.001, 3}), kOutside);
}

TEST(Shapes, CubeDistanceIsThatOfTheLargestComponentAndOfTheLengthNextToTheMiddle) {
    EXPECT_EQ(distanceInCube({}), 0);
    EXPECT_DOUBLE_EQ(distanceInCube({0.25, -0.5, 0.1}), 0.5);
    EXPECT_DOUBLE_EQ(distanceInCube({3e-7, 4e-7, 0}), 5e-7);
    EXPECT_DOUBLE_EQ(distanceInCube({9e-7, 9e-7, 0}), 9e-7) << "longer than the limit: scaled again";
}

TEST(Shapes, CapsuleBodyIsAFrustumAndDecidesAlone) {
    // Radii go from 1, 1 at the top (y = 1) to 3, 2 at the bottom (y = -3).
    const Capsule c{1, 3, {1, 1, 1}, {3, 1, 2}};
    EXPECT_DOUBLE_EQ(distanceInCapsule(c, {0.5, 1, 0}), 0.5) << "the top of the body belongs to the body";
    EXPECT_DOUBLE_EQ(distanceInCapsule(c, {0, -3, 1}), 0.5);
    EXPECT_DOUBLE_EQ(distanceInCapsule(c, {1, -1, 0}), 0.5) << "half way: 2";
    EXPECT_DOUBLE_EQ(distanceInCapsule(c, {0, -1, 0.75}), 0.5) << "half way: 1.5";
    EXPECT_EQ(distanceInCapsule(c, {2.5, 0.9, 0}), kOutside);
    EXPECT_EQ(distanceInCapsule(c, {3.1, -3, 0}), kOutside);
}

TEST(Shapes, CapsuleCaps) {
    const Capsule c{1, 3, {2, 4, 1}, {1, 2, 1}};
    EXPECT_DOUBLE_EQ(distanceInCapsule(c, {0, 3, 0}), 0.5);
    EXPECT_DOUBLE_EQ(distanceInCapsule(c, {2, 1 + 1e-12, 0}), 1);
    EXPECT_EQ(distanceInCapsule(c, {0, 5.001, 0}), kOutside);
    EXPECT_EQ(distanceInCapsule(c, {1.9, 4.9, 0}), kOutside) << "in the window, not in the cap";
}

TEST(Shapes, TheWindowOfTheBottomCapIsItsOwn) {
    // The lower bound is -1 - 1 = -2, whatever the offset: below the body there is no cap.
    const Capsule longOne{1, 5, {1, 1, 1}, {1, 1, 1}};
    EXPECT_EQ(zoneOf(longOne, {0, -5.5, 0}), Zone::None);
    EXPECT_EQ(distanceInCapsule(longOne, {0, -5.5, 0}), kOutside);
    // A wide flat one: the window reaches down to -3 - 1, the distance trims it at -1 - 1.
    const Capsule flat{1, 1, {1, 1, 1}, {3, 1, 1}};
    EXPECT_DOUBLE_EQ(distanceInCapsule(flat, {0, -1.5, 0}), 0.5);
    EXPECT_EQ(zoneOf(flat, {0, -3.5, 0}), Zone::BottomCap);
    EXPECT_EQ(distanceInCapsule(flat, {0, -3.5, 0}), kOutside);
    // The upper bound is +1: beside a narrow top cap, above the body, the bottom cap is asked.
    const Capsule mixed{0, 1, {0.1, 1, 1}, {1, 2, 1}};
    EXPECT_EQ(zoneOf(mixed, {0.05, 0.5, 0}), Zone::TopCap);
    EXPECT_DOUBLE_EQ(distanceInCapsule(mixed, {0.5, 0.5, 0}), std::sqrt(0.25 + 0.5625));
    EXPECT_EQ(zoneOf(mixed, {0.5, 1, 0}), Zone::None);
}

TEST(Shapes, CapsulesWithoutHeightOrWidthGiveNumbers) {
    const Capsule flat{0, 0, {2, 1, 2}, {1, 1, 1}};
    EXPECT_DOUBLE_EQ(distanceInCapsule(flat, {1, 0, 0}), 0.5);
    EXPECT_EQ(distanceInCapsule(flat, {2.5, 0, 0}), kOutside);
    const Capsule thin{1, 1, {0, 0, 0}, {0, 0, 0}};
    for (const Vec3& p : {Vec3{}, Vec3{0, 0.5, 0}, Vec3{0, 1, 0}, Vec3{0.1, 0, 0}})
        EXPECT_EQ(distanceInCapsule(thin, p), kOutside);
    EXPECT_EQ(distanceInPrimitive(kSphere, {}, {std::nan(""), 0, 0}), kOutside);
    EXPECT_EQ(distanceInPrimitive(kCube, {}, {0, kInfinity, 0}), kOutside);
    EXPECT_EQ(distanceInPrimitive(7, {}, {}), kOutside);
}

TEST(Shapes, PlainDistances) {
    EXPECT_DOUBLE_EQ(plainDistance(kCube, {}, {3, 0, 4}), 5);
    const Capsule c{1, 2, {9, 9, 9}, {9, 9, 9}};
    EXPECT_DOUBLE_EQ(plainDistance(kCapsule, c, {3, 0.5, 4}), 5);
    EXPECT_DOUBLE_EQ(plainDistance(kCapsule, c, {0, 4, 0}), 3);
    EXPECT_DOUBLE_EQ(plainDistance(kCapsule, c, {0, -4, 0}), 2);
}

} // namespace
} // namespace vesk::volume
