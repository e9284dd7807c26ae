#include "nodes/rayProject/rayKernel.h"

#include "host/data/mesh_data.h"
#include "host/geometry/mesh_index.h"
#include "parallel/loops.h"
#include "tests/api_access.h"
#include "tests/session_fixture.h"

#include <maya/MFnMesh.h>
#include <maya/MFnNurbsCurve.h>
#include <maya/MFnNurbsSurface.h>
#include <maya/MPointArray.h>

#include <cmath>

namespace vesk::nodes {
namespace {

class RayProject : public tests::PluginTest {
  protected:
    /// A sheet of 2 by 1 at height 4, vertices (-1, 0.5) (1, 0.5) (-1, -0.5) (1, -0.5) in x and z, above the
    /// ground, with rays straight down.
    void SetUp() override {
        PluginTest::SetUp();
        run("polyPlane -ch 0 -sx 1 -sy 1 -w 2 -h 1 -n sheet; setAttr sheet.translateY 4;"
            "polyPlane -ch 0 -sx 3 -sy 3 -w 20 -h 20 -n ground; createNode rayProject -n p;"
            "connectAttr sheetShape.worldMesh[0] p.inGeometry;"
            "connectAttr groundShape.worldMesh[0] p.inCollisionMesh; createNode rayProject -n other;"
            "setAttr p.rayDirectionMode 3; setAttr p.rayDirection -type \"float3\" 0 -2 0;");
    }
    /// x, y and z of all points of the output.
    static MPointArray points() {
        MObject data = tests::plugNamed("p.outGeometry").asMObject();
        MPointArray all;
        if (data.apiType() == MFn::kMeshData) MFnMesh(data).getPoints(all, MSpace::kWorld);
        if (data.apiType() == MFn::kNurbsCurveData) MFnNurbsCurve(data).getCVs(all, MSpace::kWorld);
        if (data.apiType() == MFn::kNurbsSurfaceData) MFnNurbsSurface(data).getCVs(all, MSpace::kWorld);
        return all;
    }
    static std::vector<double> heights() {
        std::vector<double> all;
        const MPointArray found = points();
        for (unsigned i = 0; i < found.length(); ++i)
            all.push_back(found[i].y);
        return all;
    }
    void expectHeights(const std::vector<double>& expected) { expectNear(heights(), expected); }
    static void expectPoint(unsigned i, const MPoint& expected) {
        const MPoint found = points()[i];
        EXPECT_TRUE(found.isEquivalent(expected, 1e-5))
            << "point " << i << ": " << found.x << " " << found.y << " " << found.z;
    }
    const std::vector<double> unmoved_ = {4, 4, 4, 4}, down_ = {0, 0, 0, 0};
};

TEST_F(RayProject, DirectionsByMode) {
    expectHeights(down_);
    expectPoint(1, {1, 0, 0.5});
    run("setAttr p.reverseRayDirection 1");
    expectHeights(unmoved_);
    run("setAttr p.testBothDirections 1");
    expectHeights(down_);
    run("setAttr p.testBothDirections 0; setAttr p.rayDirection -type \"float3\" 0 0 0;");
    expectHeights(unmoved_);
    // The sheet's normals look up.
    run("setAttr p.rayDirectionMode 0");
    expectHeights(down_);
    run("setAttr p.reverseRayDirection 0");
    expectHeights(unmoved_);
    // From (0, 6, 0) through (1, 4, 0.5).
    run("setAttr p.rayDirectionMode 2; setAttr p.rayPosition 0 6 0;");
    expectPoint(1, {3, 0, 1.5});
    run("setAttr p.reverseRayDirection 1");
    expectPoint(1, {3, 0, 1.5});
}

TEST_F(RayProject, RaysFromTheCentreHaveALargestAngle) {
    // Walls of 10 by 10 round the sheet; rays meet those at x = 5 and -5 at atan(0.5), 26.6 degrees.
    run("polyCube -ch 0 -w 10 -h 10 -d 10 -n room; setAttr room.translateY 4; setAttr p.rayDirectionMode 1;"
        "connectAttr -f roomShape.worldMesh[0] p.inCollisionMesh;");
    struct {
        const char* settings;
        MPoint second;
    } const cases[] = {
        {"setAttr p.maxAngle 80", {5, 4, 2.5}},
        {"setAttr p.maxAngle 26", {1, 4, 0.5}},
        {"setAttr p.maxAngle 27", {5, 4, 2.5}},
        {"setAttr p.maxAngle 0", {5, 4, 2.5}},
        {"setAttr p.reverseRayDirection 1", {-5, 4, -2.5}},
        // Now the nearer wall lies behind the turned ray, and looks the other way.
        {"setAttr p.testBothDirections 1", {5, 4, 2.5}},
        {"setAttr p.maxAngle 80", {1, 4, 0.5}},
        {"setAttr p.reverseRayDirection 0", {5, 4, 2.5}},
        // The centre of the chosen points alone: for one point there is no direction.
        {"setAttr p.useComponents 1; setAttr p.inComponents -type \"componentList\" 1 \"vtx[1]\"",
         {1, 4, 0.5}},
        {"setAttr p.inComponents -type \"componentList\" 1 \"vtx[0:1]\"", {5, 4, 0.5}},
    };
    for (const auto& one : cases) {
        run(one.settings);
        SCOPED_TRACE(one.settings);
        expectPoint(1, one.second);
    }
    expectPoint(3, {1, 4, -0.5});
    run("setAttr p.useComponents 0; setAttr p.rayDirectionMode 2; setAttr p.rayPosition 0 4 0; setAttr "
        "p.maxAngle 1;");
    expectPoint(1, {5, 4, 2.5});
}

TEST_F(RayProject, DistancesAndWeights) {
    struct {
        const char* settings;
        double height;
    } const cases[] = {
        {"setAttr p.minDistance 4.5", 4}, {"setAttr p.minDistance 4", 0}, {"setAttr p.maxDistance 3.9", 4},
        {"setAttr p.maxDistance 4", 0},   {"setAttr p.maxDistance 0", 4}, {"setAttr p.maxDistance -0.1", 0},
        {"setAttr p.minDistance -5", 0},  {"setAttr p.weight 0.25", 3},   {"setAttr p.weight 1.5", -2},
        {"setAttr p.weight -0.5", 6},
    };
    for (const auto& one : cases) {
        run(one.settings);
        SCOPED_TRACE(one.settings);
        expectHeights(std::vector<double>(4, one.height));
    }
    run("setAttr p.weight 0.5; setAttr p.inWeightPP -type \"doubleArray\" 3 1 0 -1;");
    expectHeights({2, 4, 6, 2});
    run("setAttr p.envelope 0");
    expectHeights(unmoved_);
}

TEST_F(RayProject, NormalsOfItsOwn) {
    run("setAttr other.inNormalPP -type \"vectorArray\" 2 0 -7 0 0 1 0; setAttr p.rayDirectionMode 0;"
        "connectAttr other.inNormalPP p.inNormalPP;");
    expectHeights({0, 4, 4, 4});
    const Texts mismatch = {"warning: p: inNormalPP array length does not match the inGeometry point count."};
    EXPECT_EQ(complaints(), mismatch);
    run("setAttr p.reverseRayDirection 1");
    expectHeights({4, 0, 4, 4});
    EXPECT_EQ(complaints(), mismatch);
    run("setAttr p.rayDirectionMode 3");
    expectHeights(unmoved_);
    // None given: the mesh's own.
    run("setAttr p.rayDirectionMode 0; setAttr other.inNormalPP -type \"vectorArray\" 0;");
    expectHeights(down_);
}

TEST_F(RayProject, SelectionsOfAMesh) {
    run("setAttr p.useComponents 1");
    expectHeights(unmoved_);
    run("setAttr p.inComponents -type \"componentList\" 2 \"vtx[1]\" \"vtx[3]\"");
    expectHeights({4, 0, 4, 0});
    run("setAttr p.inComponents -type \"componentList\" 1 \"vtx[9]\"");
    expectHeights(unmoved_);
    run("setAttr p.useComponents 2; setAttr p.groupId 3;");
    expectHeights(unmoved_);
}

TEST_F(RayProject, HistoryGoesOnFromTheLastOutput) {
    run("setAttr p.weight 0.5; setAttr p.keepHistory 1; setAttr p.startTime 1; setAttr p.endTime 4;");
    const auto heightAt = [&](const char* time) {
        run(std::string("setAttr p.inTime ") + time);
        return heights()[0];
    };
    EXPECT_EQ(heightAt("1"), 2);
    EXPECT_EQ(heightAt("2"), 1);
    run("setAttr sheet.translateY 40"); // dirties, and is not looked at
    EXPECT_EQ(heights()[0], 0.5);
    EXPECT_EQ(heightAt("4"), 0.25) << "the end itself still goes on";
    EXPECT_EQ(heightAt("4.5"), 20);
    EXPECT_EQ(heightAt("1"), 20);
    EXPECT_EQ(heightAt("1.5"), 10);
    run("setAttr p.keepHistory 0");
    EXPECT_EQ(heights()[0], 20);
    // What the output holds may lie in a space of its own.
    run("setAttr p.envelope 0");
    EXPECT_EQ(heights()[0], 40);
    run("setAttr p.envelope 1; setAttr p.keepHistory 1; setAttr p.inTime 3;");
    EXPECT_EQ(heights()[0], 20);
    // Something of another kind begins anew.
    run("curve -d 1 -p 0 8 0 -p 1 8 0 -n path; connectAttr -f pathShape.worldSpace[0] p.inGeometry;");
    EXPECT_EQ(heights(), (std::vector<double>{4, 4}));
    EXPECT_EQ(heightAt("4"), 2);
}

TEST_F(RayProject, CurvesAndSurfaces) {
    run("curve -d 1 -p 0 4 0 -p 2 4 0 -p 2 4 2 -n path; connectAttr -f pathShape.worldSpace[0] "
        "p.inGeometry;");
    expectHeights({0, 0, 0});
    run("setAttr p.useComponents 1; setAttr p.inComponents -type \"componentList\" 1 \"cv[1]\";");
    expectHeights({4, 0, 4});
    // The ribbon stands upright: its normals lie across the curve, halfway in the bend.
    run("polyCube -ch 0 -w 10 -h 20 -d 12 -n room; connectAttr -f roomShape.worldMesh[0] p.inCollisionMesh;"
        "setAttr p.useComponents 0; setAttr p.rayDirectionMode 0; setAttr p.testBothDirections 1;"
        "setAttr room.translateX 1; setAttr room.translateZ 1;"); // x from -4 to 6, z from -5 to 7
    expectPoint(0, {0, 4, -5});
    expectPoint(2, {6, 4, 2});
    run("connectAttr -f groundShape.worldMesh[0] p.inCollisionMesh; setAttr p.testBothDirections 0;"
        "nurbsPlane -ax 0 1 0 -d 1 -u 1 -v 1 -n board; setAttr board.translateY 4; connectAttr -f "
        "boardShape.worldSpace[0] p.inGeometry;"
        "setAttr p.reverseRayDirection 1;");
    expectHeights(down_);
    run("sphere -n ball; setAttr ball.translateY 4; connectAttr -f ballShape.worldSpace[0] p.inGeometry;");
    const MPointArray untouched = points();
    EXPECT_GT(untouched.length(), 20U);
    for (unsigned i = 0; i < untouched.length(); ++i)
        EXPECT_GT(untouched[i].y, 2);
    EXPECT_EQ(complaints(), Texts{"warning: p: inGeometry is periodic nurbs surface. Rebuild using \"End "
                                  "Conditions\" / \"Multiple Knots\" options."});
}

TEST_F(RayProject, Particles) {
    run("setAttr other.inNormalPP -type \"vectorArray\" 3 0 4 0 1 2 0 30 2 0; connectAttr -f "
        "other.inNormalPP p.inGeometry;");
    expectNear(floats("p.outGeometry"), {0, 0, 0, 1, 0, 0, 30, 2, 0});
    run("setAttr p.useComponents 2");
    expectNear(floats("p.outGeometry"), {0, 0, 0, 1, 0, 0, 30, 2, 0});
    EXPECT_EQ(complaints(),
              Texts{"warning: p: Object groups and component lists are not supported for particles."});
    run("setAttr p.useComponents 0; setAttr p.weight 0.5; setAttr p.keepHistory 1; setAttr p.endTime 9;");
    expectNear(floats("p.outGeometry"), {0, 2, 0, 1, 1, 0, 30, 2, 0});
    run("setAttr p.inTime 1");
    expectNear(floats("p.outGeometry"), {0, 1, 0, 1, 0.5, 0, 30, 2, 0});
    run("setAttr p.rayDirectionMode 0"); // no normals: nothing moves
    expectNear(floats("p.outGeometry"), {0, 1, 0, 1, 0.5, 0, 30, 2, 0});
}

TEST_F(RayProject, WhatIsNotConnectedOrBlockedStaysAsItWas) {
    expectHeights(down_);
    run("disconnectAttr groundShape.worldMesh[0] p.inCollisionMesh; setAttr p.weight 0.5;");
    expectHeights(down_);
    run("connectAttr groundShape.worldMesh[0] p.inCollisionMesh; setAttr p.nodeState 2;");
    expectHeights(down_);
    run("setAttr p.nodeState 0; setAttr p.weight 0.25;");
    expectHeights({3, 3, 3, 3});
    run("createNode rayProject -n p2; connectAttr groundShape.worldMesh[0] p2.inCollisionMesh;");
    EXPECT_TRUE(tests::plugNamed("p2.outGeometry").asMObject().isNull());
}

TEST_F(RayProject, OneIndexServesAllFramesOfAColliderThatRests) {
    run("setAttr ground.translateY -1; setAttr p.keepHistory 1; setAttr p.endTime 9; setAttr p.weight 0.5;");
    expectHeights({1.5, 1.5, 1.5, 1.5});
    MObject data = tests::plugNamed("groundShape.worldMesh[0]").asMObject();
    const auto* collider = static_cast<MeshData*>(data.hostObject());
    const auto* placed = static_cast<MeshData*>(const_cast<MeshData*>(collider)->transformed().get());
    const geom::MeshIndex* index = &placed->geometry().index();
    run("setAttr p.inTime 1");
    expectHeights({0.25, 0.25, 0.25, 0.25});
    const auto* again = static_cast<MeshData*>(const_cast<MeshData*>(collider)->transformed().get());
    EXPECT_EQ(&again->geometry().index(), index);
}

TEST(RayKernel, TheSameForAnyNumberOfThreads) {
    std::vector<MPoint> points;
    std::vector<RayHit> hits;
    std::vector<double> weights;
    for (int i = 0; i < 50'000; ++i) {
        points.emplace_back(std::sin(i), 0.001 * i, std::cos(i));
        hits.push_back({MFloatPoint(static_cast<float>(i % 7), 2, 1), i % 3 - 1});
        weights.push_back(0.1 * (i % 11));
    }
    RaySettings settings;
    settings.mode = kFromCentroid, settings.weight = 0.5, settings.maxDistance = 20;
    const Chosen chosen(points.size());
    const int before = parallel::threads();
    std::vector<MPoint> expected;
    for (const int threads : {1, 2, 5}) {
        parallel::setThreads(threads);
        std::vector<MPoint> moved = points;
        const Rays rays = raysFrom(moved, chosen, {}, settings);
        pull(moved, chosen, rays, hits, {}, weights, settings);
        if (expected.empty()) expected = moved;
        EXPECT_EQ(moved, expected);
        EXPECT_NE(moved, points);
    }
    parallel::setThreads(before);
}

} // namespace
} // namespace vesk::nodes
