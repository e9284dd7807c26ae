#include "nodes/pointAttributeToArray/pointAttributes.h"
#include "tests/session_fixture.h"

#include <cmath>

namespace vesk::nodes {
namespace {

constexpr double kDegrees = 57.29582; // the node's own factor

class PointAttributeToArray : public tests::PluginTest {
  protected:
    /// The node `p`, fed by a plug, with these switches on.
    void feed(const std::string& plug, const std::vector<std::string>& switches) {
        run("createNode pointAttributeToArray -n p; connectAttr " + plug + " p.inGeometry;");
        for (const auto& one : switches)
            run("setAttr p." + one + " 1");
    }
    void expectEmpty(const std::vector<std::string>& outputs) {
        for (const auto& one : outputs)
            EXPECT_EQ(run("size(`getAttr p." + one + "`)").asInt(), 0) << one;
    }
    const std::vector<std::string> all = {"pointPosition", "pointRotation", "pointNormal", "pointTangent",
                                          "pointBinormal", "pointColor",    "mapData"};
};

TEST_F(PointAttributeToArray, CubeFollowsItsTransformAndTheCoordinateSystem) {
    run("polyCube");
    feed("pCubeShape1.worldMesh[0]", {"pointPosition", "pointNormal"});
    EXPECT_EQ(ints("p.outIdPP"), (std::vector<int>{0, 1, 2, 3, 4, 5, 6, 7}));
    auto positions = floats("p.outPositionPP");
    expectNear({positions[0], positions[1], positions[2]}, {-0.5, -0.5, 0.5});
    expectNear({positions[21], positions[22], positions[23]}, {0.5, -0.5, -0.5});
    const double s = 1 / std::sqrt(3.0);
    auto normals = floats("p.outNormalPP");
    expectNear({normals[0], normals[1], normals[2]}, {-s, -s, s});
    // A quarter turn about y takes (x, y, z) to (z, y, -x); then 5 along x.
    run("setAttr pCube1.rotateY 90; setAttr pCube1.translateX 5;");
    positions = floats("p.outPositionPP");
    expectNear({positions[0], positions[1], positions[2]}, {5.5, -0.5, 0.5});
    normals = floats("p.outNormalPP");
    expectNear({normals[0], normals[1], normals[2]}, {s, -s, s});
    run("setAttr p.coordinateSystem 1");
    positions = floats("p.outPositionPP");
    expectNear({positions[0], positions[1], positions[2]}, {-0.5, -0.5, 0.5});
}

TEST_F(PointAttributeToArray, AllSwitchesOffGiveNothingAndNoMessage) {
    run("sphere -ch 0; createNode pointAttributeToArray -n p; connectAttr nurbsSphereShape1.worldSpace[0] "
        "p.inGeometry;"
        "setAttr p.useComponents 2; setAttr -type \"string\" p.uvSet \"nope\";");
    expectEmpty({"outIdPP", "outPositionPP", "outRotationPP", "outNormalPP", "outBinormalPP", "outTangentPP",
                 "outRgbaPP", "outMapCountPP", "outMapIdPP", "outMapPP", "outSharedMapPP"});
}

TEST_F(PointAttributeToArray, PlaneHasItsFrame) {
    run("polyPlane -sx 1 -sy 1");
    feed("pPlaneShape1.worldMesh[0]", {"pointRotation", "pointTangent", "pointBinormal"});
    // u runs along x, v along -z. The rotation step turns the running tangent to -x, and each later sum
    // starts there.
    const auto binormals = floats("p.outBinormalPP");
    expectNear({binormals[0], binormals[1], binormals[2]}, {0, 0, -1});
    // Rows normal (0,1,0), tangent (-1,0,0), binormal (0,0,-1): mirrored, so all rows turn round, and what is
    // left is a quarter turn backwards about z.
    const auto rotations = floats("p.outRotationPP");
    expectNear({rotations[0], rotations[1], rotations[2]}, {0, 0, -M_PI / 2 * kDegrees}, 1e-4);
    run("setAttr p.pointRotation 0");
    const auto tangents = floats("p.outTangentPP");
    expectNear({tangents[0], tangents[1], tangents[2], tangents[9], tangents[10], tangents[11]},
               {1, 0, 0, 1, 0, 0});
}

TEST_F(PointAttributeToArray, UvsOfACube) {
    run("polyCube");
    feed("pCubeShape1.worldMesh[0]", {"mapData"});
    // From the cube's layout: seams run through all vertices but 2 and 3.
    const auto counts = ints("p.outMapCountPP");
    EXPECT_EQ(counts, (std::vector<int>{2, 2, 1, 1, 2, 2, 2, 2}));
    const auto ids = ints("p.outMapIdPP");
    ASSERT_EQ(ids.size(), 14U);
    EXPECT_EQ(ids[4], 2);
    EXPECT_EQ(ids[5], 3);
    const auto maps = floats("p.outMapPP");
    ASSERT_EQ(maps.size(), 28U);
    expectNear({maps[8], maps[9], maps[10], maps[11]}, {0.375, 0.25, 0.625, 0.25});
    EXPECT_EQ(floats("p.outSharedMapPP").size(), 16U);
    run("setAttr -type \"string\" p.uvSet \"nope\"");
    expectEmpty({"outMapCountPP", "outMapIdPP", "outMapPP", "outSharedMapPP"});
    EXPECT_EQ(complaints(), Texts{"warning: p: Cannot find uvSet named \"nope\"."});
}

TEST_F(PointAttributeToArray, ColoursAndTheColourless) {
    run("polyCube -ch 0; polyColorPerVertex -rgb 0.25 0.5 1 -a 0.75 pCube1.vtx[2];");
    feed("pCubeShape1.worldMesh[0]", {"pointColor"});
    auto colors = floats("p.outRgbaPP");
    ASSERT_EQ(colors.size(), 32U);
    expectNear({colors[8], colors[9], colors[10], colors[11]}, {0.25, 0.5, 1, 0.75});
    expectNear({colors[0], colors[1], colors[2], colors[3]}, {0, 0, 0, 0});
    run("setAttr -type \"string\" p.colorSet \"another\"");
    colors = floats("p.outRgbaPP");
    EXPECT_EQ(colors, std::vector<double>(32, 0.0));
}

TEST_F(PointAttributeToArray, SelectionsPruneOrLeavePlaceholders) {
    run("polyPlane -sx 1 -sy 1 -w 2 -h 2");
    feed("pPlaneShape1.worldMesh[0]", all);
    // Of two entries the first alone counts.
    run("setAttr p.inComponents -type \"componentList\" 2 \"vtx[1:2]\" \"f[0]\"; setAttr p.useComponents 1;");
    EXPECT_EQ(ints("p.outIdPP"), (std::vector<int>{1, 2}));
    expectNear(floats("p.outPositionPP"), {1, 0, 1, -1, 0, -1});
    EXPECT_EQ(ints("p.outMapCountPP"), (std::vector<int>{1, 1}));
    run("setAttr p.prune 0");
    EXPECT_EQ(ints("p.outIdPP"), (std::vector<int>{0, 1, 2, 3}));
    expectNear(floats("p.outPositionPP"), {0, 0, 0, 1, 0, 1, -1, 0, -1, 0, 0, 0});
    expectNear(floats("p.outNormalPP"), {0, 0, 0, 0, 1, 0, 0, 1, 0, 0, 0, 0});
    EXPECT_EQ(floats("p.outRotationPP").size(), 6U) << "no placeholder for a rotation";
    EXPECT_EQ(ints("p.outMapCountPP"), (std::vector<int>{0, 1, 1, 0}));
    EXPECT_EQ(floats("p.outRgbaPP").size(), 16U);
    // Components of another kind select nothing.
    run("setAttr p.inComponents -type \"componentList\" 1 \"f[*]\"; setAttr p.prune 1;");
    expectEmpty({"outPositionPP", "outNormalPP"});
    run("setAttr p.useComponents 2");
    EXPECT_EQ(ints("p.outIdPP").size(), 4U) << "object groups are not taken: every point is in";
    EXPECT_EQ(
        complaints(),
        Texts{"warning: p: Object groups are not supported for vector arrays. Use components list instead."});
}

TEST_F(PointAttributeToArray, ParticlesYieldPositionsAlone) {
    run("createNode particle -n cloud; setAttr cloud.position -type \"vectorArray\" 3 1 2 3 4 5 6 7 8 9;");
    feed("cloud.position", all);
    expectNear(floats("p.outPositionPP"), {1, 2, 3, 4, 5, 6, 7, 8, 9});
    expectEmpty({"outIdPP", "outRgbaPP", "outNormalPP"});
    run("setAttr p.useComponents 1; setAttr p.inComponents -type \"Int32Array\" 4 2 0 7 2;");
    expectNear(floats("p.outPositionPP"), {7, 8, 9, 1, 2, 3, 7, 8, 9});
    run("setAttr p.inComponents -type \"componentList\" 1 \"pt[1:5]\"");
    expectNear(floats("p.outPositionPP"), {4, 5, 6, 7, 8, 9});
    run("setAttr p.useComponents 2");
    expectEmpty({"outPositionPP"});
    EXPECT_EQ(
        complaints(),
        Texts{"warning: p: Object groups are not supported for particles. Use components list instead."});
}

TEST_F(PointAttributeToArray, CurvesPairTheirIdsAndReadTheRibbon) {
    run("curve -d 3 -p 0 0 0 -p 1 2 0 -p 3 2 0 -p 4 0 0 -p 5 1 0;");
    feed("curveShape1.worldSpace[0]", {"pointPosition", "mapData", "pointNormal"});
    EXPECT_EQ(ints("p.outIdPP"), (std::vector<int>{0, 0, 1, 1, 2}));
    expectNear(floats("p.outPositionPP"), {0, 0, 0, 1, 2, 0, 3, 2, 0, 4, 0, 0, 5, 1, 0});
    EXPECT_EQ(ints("p.outMapCountPP"), (std::vector<int>{1, 1, 1, 1, 1}));
    EXPECT_EQ(ints("p.outMapIdPP"), (std::vector<int>{0, 2, 4, 6, 8})) << "the even vertices of the ribbon";
    EXPECT_EQ(floats("p.outNormalPP").size(), 15U);
    EXPECT_EQ(run("size(`ls -type nurbsTessellate -type extrude -type rebuildCurve`)").asInt(), 0)
        << "all gone again";
    run("setAttr p.useComponents 1; setAttr p.inComponents -type \"componentList\" 1 \"cv[3]\";");
    expectNear(floats("p.outPositionPP"), {4, 0, 0});
}

TEST_F(PointAttributeToArray, SurfacesHavePairsOfIdsAndPeriodicOnesAreRefused) {
    run("nurbsPlane -d 1 -u 2 -v 1");
    feed("nurbsPlaneShape1.worldSpace[0]", {"pointPosition"});
    EXPECT_EQ(ints("p.outIdPP"), (std::vector<int>{0, 0, 0, 1, 1, 0, 1, 1, 2, 0, 2, 1}));
    EXPECT_EQ(floats("p.outPositionPP").size(), 18U);
    run("setAttr p.useComponents 1; setAttr p.inComponents -type \"componentList\" 1 \"cv[1][0:1]\";");
    EXPECT_EQ(ints("p.outIdPP"), (std::vector<int>{1, 0, 1, 1}));
    run("sphere; connectAttr -f nurbsSphereShape1.worldSpace[0] p.inGeometry;");
    expectEmpty({"outIdPP", "outPositionPP"});
    EXPECT_EQ(
        complaints(),
        Texts{"warning: p: The geometry at the input is a periodic nurbs surface. Rebuild using the \"End "
              "Conditions\" / \"Multiple Knots\" options."});
}

TEST_F(PointAttributeToArray, StateGuardAndDisconnection) {
    run("polyCube");
    feed("pCubeShape1.worldMesh[0]", {"pointPosition"});
    EXPECT_EQ(ints("p.outIdPP").size(), 8U);
    run("setAttr p.nodeState 2; setAttr pCube1.translateX 3;");
    EXPECT_NEAR(floats("p.outPositionPP")[0], -0.5, 1e-12) << "blocking leaves the outputs as they were";
    run("setAttr p.nodeState 0; disconnectAttr pCubeShape1.worldMesh[0] p.inGeometry;");
    expectEmpty({"outPositionPP"});
    const auto refused = session->run("polyCube; connectAttr pCube1.translateX p.inGeometry;");
    EXPECT_FALSE(refused.ok);
    EXPECT_NE(refused.error.find("p.inGeometry"), std::string::npos);
    EXPECT_FALSE(session->run("setAttr p.outPositionPP -type \"vectorArray\" 0").ok);
    EXPECT_EQ(complaints().size(), 2U);
}

// --- the kernel on its own
// -------------------------------------------------------------------------------------------

/// Vertices with one face each, whose tangents and binormals are given.
PointGeometry fans(const std::vector<MFloatVector>& tangents,
                   const std::vector<std::vector<unsigned>>& cornersOf) {
    PointGeometry geometry;
    geometry.pointCount = static_cast<unsigned>(cornersOf.size());
    geometry.cornerStart.push_back(0);
    for (const auto& corners : cornersOf) {
        for (const unsigned corner : corners)
            geometry.corners.push_back(corner);
        geometry.cornerStart.push_back(static_cast<unsigned>(geometry.corners.size()));
        geometry.vertexNormals.append(MFloatVector(0, 1, 0));
    }
    for (const auto& tangent : tangents)
        geometry.cornerTangents.append(tangent);
    geometry.cornerNormals = geometry.cornerTangents;
    geometry.cornerBinormals = geometry.cornerTangents;
    return geometry;
}

struct Results {
    MIntArray ids, mapCounts, mapIds;
    MVectorArray positions, rotations, normals, binormals, tangents;
    MDoubleArray rgba, maps, sharedMaps;

    Results(const PointGeometry& geometry, const PointSettings& settings) {
        PointArrays out{ids,  positions, rotations, normals, binormals, tangents,
                        rgba, mapCounts, mapIds,    maps,    sharedMaps};
        readPointAttributes(geometry, settings, std::vector<char>(geometry.pointCount, 1), out);
    }
};

TEST(PointAttributes, SumsStartFromThePreviousPoint) {
    PointSettings settings;
    settings.tangent = true;
    const Results r(fans({{1, 0, 0}, {0, 1, 0}, {-1, 0, 0}}, {{0}, {1}, {}, {2}}), settings);
    const double s = std::sqrt(0.5);
    EXPECT_EQ(r.tangents[0], MVector(1, 0, 0));
    EXPECT_TRUE(r.tangents[1].isEquivalent(MVector(s, s, 0), 1e-12));
    EXPECT_TRUE(r.tangents[2].isEquivalent(MVector(s, s, 0), 1e-12)) << "no face: the sum stands";
    MVector last(s - 1, s, 0);
    last.normalize();
    EXPECT_TRUE(r.tangents[3].isEquivalent(last, 1e-12));
}

TEST(PointAttributes, ASumThatCancelsFallsBackOnTheFirstFace) {
    PointSettings settings;
    settings.binormal = true;
    const Results lone(fans({}, {{}}), settings);
    EXPECT_EQ(lone.binormals[0], MVector(0, 1, 0)) << "no face at all";
    const Results r(fans({{1, 0, 0}, {-1, 0, 0}}, {{0, 1}}), settings);
    EXPECT_EQ(r.binormals[0], MVector(1, 0, 0));
}

TEST(PointAttributes, ALoweredOffsetStaysLowered) {
    PointSettings settings;
    settings.normal = true;
    settings.averagedNormals = false;
    settings.normalIdOffset = 5;
    const auto geometry =
        fans({{1, 0, 0}, {2, 0, 0}, {3, 0, 0}, {4, 0, 0}, {5, 0, 0}}, {{0, 1}, {2, 3, 4}, {}});
    const Results r(geometry, settings);
    EXPECT_EQ(r.normals[0], MVector(2, 0, 0));
    EXPECT_EQ(r.normals[1], MVector(4, 0, 0)) << "offset 1 now, though there are three faces";
    EXPECT_EQ(r.normals[2], MVector(4, 0, 0)) << "no face: what it was before";
}

TEST(PointAttributes, ParallelNormalAndTangentTakeTheBinormalRoute) {
    PointSettings settings;
    settings.rotation = true;
    settings.rotationOrder = 1; // normal, binormal, tangent: a right-handed frame
    // Just parallel enough or not: the limit of 0.01 radians itself counts as not parallel.
    for (const auto& [angle, parallel] :
         {std::pair{0.0, true}, {0.0099, true}, {0.0101, false}, {3.1305, true}}) {
        auto geometry =
            fans({{static_cast<float>(std::sin(angle)), static_cast<float>(std::cos(angle)), 0}}, {{0}});
        geometry.cornerBinormals[0] = MFloatVector(0, 0, 1);
        const Results r(geometry, settings);
        // Binormal route: tangent = n ^ b = (1,0,0), binormal = n ^ t = (0,0,-1). Otherwise: binormal = n ^ t
        // = (0,0,-1), tangent = n ^ b = (-1,0,0). Rows (0,1,0), (0,0,-1), (+-1,0,0): m02 = 0, x = atan2(-1,
        // 0), z = atan2(1, 0) for the mirrored one turned.
        const double x = parallel ? 90 : -90, z = parallel ? -90 : 90;
        EXPECT_NEAR(r.rotations[0].x, x, 1e-3) << angle;
        EXPECT_NEAR(r.rotations[0].y, 0, 1e-3) << angle;
        EXPECT_NEAR(r.rotations[0].z, z, 1e-3) << angle;
    }
}

} // namespace
} // namespace vesk::nodes
