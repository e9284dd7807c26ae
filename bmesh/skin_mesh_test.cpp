#include "bmesh/test_skeletons.h"

#include <cmath>
#include <limits>

namespace vesk::skin {
namespace {

TEST(SkinMesh, OneJointIsACube) {
    const SkinMesh mesh = skinOf({{{1, 2, 3}, -1, 2}});
    ASSERT_EQ(mesh.vertices.size(), 8);
    EXPECT_EQ(mesh.quads.size(), 6);
    expectAt(mesh, 0, {3, 4, 5});
    expectAt(mesh, 5, {-1, 0, 5});
    expectClosedSphere(mesh);
    EXPECT_NEAR(volume(mesh), 64, 1e-4);
    EXPECT_EQ(mesh.vertices[0].weights, (QHash<int, float>{{0, 1.0F}}));
    const float s = 1 / std::sqrt(3.0F);
    EXPECT_NEAR(length(mesh.vertices[0].normal - Float3{s, s, s}), 0, 1e-6);
    EXPECT_EQ(skinOf({}).vertices.size(), 0);
}

TEST(SkinMesh, TwoJointsAreACappedBox) {
    // A gap of one is below one sum of radii, so there is no ring between.
    const SkinMesh box = skinOf({{{0, 0, 0}, -1}, {{0, 3, 0}, 0}});
    ASSERT_EQ(box.vertices.size(), 16);
    EXPECT_EQ(box.quads.size(), 5 + 4 + 5);
    // The bone is along y: the ring begins at u + w = z + x, pushed out by the radius.
    expectAt(box, 0, {1, 4, 1});
    expectAt(box, 5, {1, 3, -1});
    expectAt(box, 8, {1, 0, 1});
    expectAt(box, 12, {1, -1, 1});
    expectClosedSphere(box);
    EXPECT_NEAR(volume(box), 2 * 2 * 5, 1e-4);
    EXPECT_EQ(box.vertices[8].weights.keys(), QList<int>{1}); // a tube belongs to the joint farther out
    EXPECT_EQ(box.vertices[12].weights.keys(), QList<int>{0});
}

TEST(SkinMesh, LongTubesGetRingsAndRadiiAreInterpolated) {
    // Distance 8: a gap of 6 is three sums of radii; rings stand 1, 4 and 7 from the tip.
    const SkinMesh three = skinOf({{{0, 0, 0}, -1}, {{0, 8, 0}, 0}});
    ASSERT_EQ(three.vertices.size(), 8 + 12 + 4 + 4);
    expectAt(three, 8, {1, 7, 1});
    expectAt(three, 12, {1, 4, 1});
    expectAt(three, 16, {1, 1, 1});
    expectAt(three, 20, {1, 0, 1});
    // Distance 4 has one, one radius out from the tip's ring.
    const SkinMesh one = skinOf({{{0, 0, 0}, -1}, {{0, 4, 0}, 0}});
    ASSERT_EQ(one.vertices.size(), 8 + 4 + 4 + 4);
    expectAt(one, 8, {1, 3, 1});
    // Radius 1 at the tip, 3 at the root, distance 12: a gap of 8 gives two rings, at 1 and 9 from the tip,
    // of radius 1 + 2 * 1/12 and 1 + 2 * 9/12.
    const SkinMesh cone = skinOf({{{0, 0, 0}, -1, 3}, {{0, 12, 0}, 0, 1}});
    ASSERT_EQ(cone.vertices.size(), 8 + 8 + 4 + 4);
    expectAt(cone, 8, {7.0F / 6, 11, 7.0F / 6});
    expectAt(cone, 12, {2.5F, 3, 2.5F});
    expectAt(cone, 16, {3, 0, 3});
    expectClosedSphere(cone);
}

TEST(SkinMesh, StraightChainsAreNudgedWhateverTheirDirection) {
    const SkinMesh along = skinOf({{{0, 0, 0}, -1}, {{3, 0, 0}, 0}, {{6, 0, 0}, 1}});
    ASSERT_EQ(along.vertices.size(), 8 + 4 + 4 + 4);
    expectAt(along, 4, {6, 1, -1}); // u = y ^ x = -z, w = x ^ u = y
    expectAt(along, 8, {3, 0.999F, -1});
    expectAt(along, 12, {0, 0.999F, -1});
    expectClosedSphere(along);
    // d = (1,1,1) / sqrt(3): its y is above 0.5, so u = x ^ d = (0, -s, s) and w = d ^ u = (2, -1, -1) /
    // sqrt(6).
    const SkinMesh slanted = skinOf({{{0, 0, 0}, -1}, {{3, 3, 3}, 0}, {{6, 6, 6}, 1}});
    const float s = 1 / std::sqrt(2.0F), t = 1 / std::sqrt(6.0F);
    const Float3 corner{2 * t, -s - t, s - t};
    expectAt(slanted, 4, Float3{6, 6, 6} + corner);
    const int middle = 8 + 4 * static_cast<int>((3 * std::sqrt(3.0) - 2) / 2);
    expectAt(slanted, middle, Float3{3, 2.999F, 3} + corner);
}

TEST(SkinMesh, BendsTurnHalfWayInTheMiddleAndHandOnTheWholeTurn) {
    // From x round to y: minus a quarter turn about z, of which half at the joint.
    const SkinMesh mesh = skinOf({{{0, 3, 0}, -1, 2}, {{0, 0, 0}, 0}, {{3, 0, 0}, 1}});
    const float h = std::sqrt(0.5F);
    expectAt(mesh, 4, {3, 1, -1});
    expectAt(mesh, 8, {h, h, -1});
    // The root is twice as large as the joint: (0, 1, -1) turned is (1, 0, -1), doubled.
    expectAt(mesh, 12, {2, 3, -2});
    expectClosedSphere(mesh);
    const Float3 turned = rotateAboutAxis({1, 0, 0}, {0, 0, 1}, static_cast<float>(M_PI / 2));
    EXPECT_NEAR(length(turned - Float3{0, 1, 0}), 0, 1e-7);
    // A bone that folds back onto itself is odd but has its place.
    EXPECT_EQ(skinOf({{{0, 0, 0}, -1}, {{3, 0, 0}, 0}, {{1, 0, 0}, 1}}).vertices.size(), 20);
}

TEST(SkinMesh, BranchesAreStitched) {
    // Two arms along x without a parent: the squares at x = 1 and -1 are joined by four sides.
    const SkinMesh bar = skinOf({{{0, 0, 0}, -1}, {{3, 0, 0}, 0}, {{-3, 0, 0}, 0}});
    EXPECT_EQ(bar.vertices.size(), 2 * 12);
    EXPECT_EQ(bar.quads.size(), 2 * 9 + 4);
    EXPECT_EQ(bar.triangles.size(), 0);
    expectAt(bar, 8, {1, 1, -1});
    expectClosedSphere(bar);
    EXPECT_NEAR(volume(bar), 2 * 2 * 8, 1e-4);
    // With a parent there are three faces; the ring towards the parent stands one radius out.
    const SkinMesh tee = skinOf({{{0, -3, 0}, -1}, {{0, 0, 0}, 0}, {{3, 0, 0}, 1}, {{-3, 0, 0}, 1}});
    EXPECT_EQ(tee.vertices.size(), 2 * 12 + 4 + 4 + 4);
    // d = y: u = x ^ y = z, w = x.
    expectAt(tee, 24, {1, -1, 1});
    // Each of the three patches has two corners on each side of the plane: 12 corners give 20 triangles on
    // the hull, of which 2 a patch are dropped.
    EXPECT_EQ(tee.triangles.size() + 2 * (tee.quads.size() - 2 * 9 - 4 - 5), 20 - 6);
    expectClosedSphere(tee);
    EXPECT_GT(volume(tee), 0);
}

TEST(SkinMesh, AWholeCreatureIsClosed) {
    const SkinMesh mesh = skinOf({{{0, 5, 0}, -1, 1.5F}, // hip
                                  {{0, 8, 0.3F}, 0, 1.2F},
                                  {{0, 11, 0}, 1, 1.4F}, // spine, chest
                                  {{0, 13, 0.2F}, 2, 0.5F},
                                  {{0, 15, 0.4F}, 3, 1.0F}, // neck, head
                                  {{3, 11, 0}, 2, 0.6F},
                                  {{5, 8, -1}, 5, 0.5F},
                                  {{6, 5, 0.5F}, 6, 0.4F},
                                  {{-3, 11, 0}, 2, 0.6F},
                                  {{-5, 8, -1}, 8, 0.5F},
                                  {{-6, 5, 0.5F}, 8, 0.4F},
                                  {{1.5F, 2, 0}, 0, 0.7F},
                                  {{1.6F, -2, -0.4F}, 11, 0.5F}, // legs
                                  {{-1.5F, 2, 0}, 0, 0.7F},
                                  {{-1.6F, -2, -0.4F}, 13, 0.5F}});
    expectClosedSphere(mesh);
    EXPECT_GT(volume(mesh), 0);
    EXPECT_GT(mesh.quads.size(), 10 * mesh.triangles.size());
}

TEST(SkinMesh, NoInputCrashes) {
    EXPECT_EQ(skinOf({{{0, 0, 0}, -1, 0}}).spheres[0].radius(), 0.001F);
    EXPECT_EQ(skinOf({{{0, 0, 0}, -1, -2}}).spheres[0].radius(), 2.0F);
    // Two arms in one direction have one patch: flat, so nothing closes the ends, which then are open.
    const SkinMesh flat = skinOf({{{0, 0, 0}, -1}, {{3, 0, 0}, 0}, {{6, 0, 0}, 0}});
    EXPECT_EQ(flat.triangles.size(), 0);
    EXPECT_EQ(flat.quads.size(), 9 + 9 + 4);
    // Coincident joints, as bones and as branches; a bone without a length points along y.
    for (const auto& joints :
         {std::vector<Joint>{{{0, 0, 0}, -1}, {{0, 0, 0}, 0}, {{0, 0, 0}, 1}},
          std::vector<Joint>{{{0, 0, 0}, -1}, {{0, 0, 0}, 0}, {{0, 0, 0}, 0}, {{0, 0, 0}, 0}}}) {
        for (const SkinVertex& vertex : skinOf(joints).vertices)
            EXPECT_TRUE(isFinite(vertex.position));
    }
    // The largest floats only have to end.
    const float huge = 3e38F;
    EXPECT_GT(
        skinOf({{{huge, 0, 0}, -1}, {{-huge, huge, 0}, 0}, {{0, -huge, huge}, 0, huge}}).vertices.size(), 0);
    // A chain as long as no stack would bear.
    std::vector<Joint> chain{{{0, 0, 0}, -1}};
    for (int i = 1; i < 200000; ++i)
        chain.push_back({{3.0F * static_cast<float>(i), 0, 0}, i - 1});
    EXPECT_EQ(skinOf(chain).vertices.size(), 8 + 4 * 199999 + 4);
}

TEST(SkinMesh, ExtraRingsHaveALimit) {
    constexpr int limit = SkinMesh::kMaxExtraRings;
    const auto joints = [](int rings) {
        return std::vector<Joint>{{{0, 0, 0}, -1}, {{0, 2.5F + 2.0F * static_cast<float>(rings), 0}, 0}};
    };
    const SkinMesh below = skinOf(joints(limit));
    EXPECT_EQ(below.vertices.size(), 16 + 4 * limit);
    EXPECT_EQ(below.missingRings(), 0);
    const SkinMesh above = skinOf(joints(limit + 3));
    EXPECT_EQ(above.vertices.size(), 16 + 4 * limit);
    EXPECT_EQ(above.missingRings(), 3);
    // The rings that there are still reach from one end to the other.
    expectAt(above, 8 + 4 * (limit - 1), {1, 1, 1});
}

TEST(JointSpheres, FaultsAreFound) {
    const auto faultOf = [](std::vector<int> parents, Float3 center = {}, float radius = 1) {
        QVector<JointSphere> spheres;
        for (const int parent : parents) {
            spheres.append(JointSphere{});
            spheres.last().parent = parent;
        }
        spheres.last().center = center;
        spheres.last().setRadius(radius);
        const FoundFault found = findFault(spheres);
        return std::pair(found.fault, found.sphere);
    };
    constexpr float nan = std::numeric_limits<float>::quiet_NaN();
    constexpr float inf = std::numeric_limits<float>::infinity();
    EXPECT_EQ(faultOf({-1, 0, 1, -1}), std::pair(SphereFault::None, -1));
    EXPECT_EQ(faultOf({-1, 0}, {0, nan, 0}), std::pair(SphereFault::NotFinite, 1));
    EXPECT_EQ(faultOf({-1, 0}, {}, inf), std::pair(SphereFault::NotFinite, 1));
    EXPECT_EQ(faultOf({-1, 2}), std::pair(SphereFault::ParentRange, 1));
    EXPECT_EQ(faultOf({-1, -2, 0}), std::pair(SphereFault::ParentRange, 1));
    EXPECT_EQ(faultOf({-1, 2, 3, 2}), std::pair(SphereFault::Cycle, 1));
    EXPECT_EQ(faultOf({-1, 1}), std::pair(SphereFault::Cycle, 1));
}

TEST(JointSpheres, OverlapIsFoundOnEitherSideOfTheLimit) {
    QVector<Position> grid;
    for (int i = 0; i < 300; ++i)
        grid.append(
            {static_cast<double>(i % 10), static_cast<double>(i / 10 % 3), static_cast<double>(i / 30)});
    EXPECT_FALSE(hasOverlap(grid));
    EXPECT_FALSE(hasOverlap({}));
    grid.append({5, 2.00101, 3});
    EXPECT_FALSE(hasOverlap(grid));
    grid.append({5, 1.001, 3});
    EXPECT_TRUE(hasOverlap(grid));
}

} // namespace
} // namespace vesk::skin
