#include "nodes/common/bounding_volumes_test.h"
#include "tests/session_fixture.h"

#include <cmath>

namespace vesk::nodes {
namespace {

class AttributeTransfer : public tests::PluginTest {
  protected:
    void SetUp() override {
        PluginTest::SetUp();
        run("createNode attributeTransfer -n t; createNode transform -n arrays;");
    }
    /// Particles at x, y, z ... on the input.
    void feedParticles(const std::string& countAndPositions) {
        run("createNode particle -n cloud; setAttr cloud.position -type \"vectorArray\" " +
            countAndPositions + "; connectAttr cloud.position t.inGeometry;");
    }
    /// A volume on the next element, at a place.
    void addVolume(const std::string& name, int kind, const std::string& place = "0 0 0") {
        run(volumeText(name, kind, "t", volumes_++) + "setAttr " + name + "T.translate " + place);
    }
    void feed(const std::string& input, const std::string& type, const std::string& values) {
        run("addAttr -ln " + input + " -dt \"" + type + "\" arrays; setAttr arrays." + input + " -type \"" +
            type + "\" " + values + "; connectAttr -f arrays." + input + " t." + input);
    }
    void setRamp(const std::string& volume, const std::string& ramp, double value) {
        const std::string plug = volume + "." + ramp;
        run("removeMultiInstance -b 1 " + plug + "[1]; setAttr " + plug + "[0]." + ramp + "_FloatValue " +
            std::to_string(value));
    }
    void on(const std::string& switches) {
        run("string $s; for ($s in {" + switches + "}) setAttr (\"t.\" + $s) 1;");
    }

    std::size_t volumes_ = 0;
};

TEST_F(AttributeTransfer, WeightsFallOffAndBlend) {
    feedParticles("4 0 0 0 0.5 0 0 1 0 0 2 0 0");
    addVolume("v", 0);
    on("\"weight\"");
    expectNear(floats("t.outWeightPP"), {1, 0.5, 0, 0});
    feed("inWeightPP", "doubleArray", "3 0.5 0.5 0.5"); // shorter is fine
    expectNear(floats("t.outWeightPP"), {1, 0.75, 0.5, 0});
    run("setAttr t.blend 0");
    expectNear(floats("t.outWeightPP"), {1, 0.5, 0, 0});
    run("setAttr t.blend 1; setAttr t.merge 0;");
    expectNear(floats("t.outWeightPP"), {1, 0.5, 0, 0});
    run("setAttr arrays.inWeightPP -type \"doubleArray\" 5 1 1 1 1 1; setAttr t.merge 1;");
    expectNear(floats("t.outWeightPP"), {1, 0.5, 0, 0});
    EXPECT_EQ(complaints(),
              Texts{"warning: t: inWeightPP array length does not match the inGeometry point count."});
    run("setAttr t.weight 0; setAttr arrays.inWeightPP -type \"doubleArray\" 2 0.25 0.5;");
    expectNear(floats("t.outWeightPP"), {0.25, 0.5});
    EXPECT_EQ(floats("t.outRadiusPP").size() + floats("t.outRgbaPP").size() + floats("t.outNormalPP").size(),
              0U);
}

TEST_F(AttributeTransfer, SeveralVolumesAreWeighedByTheKernel) {
    // 0.25 and 0.75 from the middles. The eased kernel 1 - (3u^2 - 2u^3) gives 0.84375 and 0.15625,
    // together 1.
    feedParticles("1 0.25 0 0");
    addVolume("near", 0);
    addVolume("far", 0, "1 0 0");
    on("\"weight\"");
    expectNear(floats("t.outWeightPP"), {0.75 * 0.84375 + 0.25 * 0.15625}, 1e-6);
    setRamp("t", "kernel", 0);
    expectNear(floats("t.outWeightPP"), {0});
    run("setAttr t.maxInfluences 1"); // the kernel is not read, and the far one does not displace the near
                                      // one
    expectNear(floats("t.outWeightPP"), {0.75});
}

TEST_F(AttributeTransfer, ColoursOfPrimitivesAndOfClouds) {
    feedParticles("2 0.5 0 0 9 0 0");
    addVolume("v", 1);
    on("\"color\"");
    run("setAttr v.colorFalloff[0].colorFalloff_Color 1 0.5 0.25; setAttr "
        "v.alphaFalloff[0].alphaFalloff_FloatValue 0.5;");
    expectNear(floats("t.outRgbaPP"), {0.5, 0.25, 0.125, 0.5, 0, 0, 0, 0});
    run("setAttr t.alphaModulate 0");
    expectNear(floats("t.outRgbaPP"), {1, 0.5, 0.25, 0.5, 0, 0, 0, 0});
    // Screened over the colours that come in; as long as the points, they show where no volume reaches.
    feed("inRgbaPP", "vectorArray", "2 0.5 0.5 0.5 0.1 0.2 0.3");
    expectNear(floats("t.outRgbaPP"), {1, 0.75, 0.625, 1, 0.1, 0.2, 0.3, 1});
    // A cloud gives the colours of its points. Its box has to reach the origin or a point that is not the
    // last.
    run("createNode particle -n sky; setAttr sky.position -type \"vectorArray\" 2 9 0 0 0 0 0.5; setAttr "
        "v.type 3;"
        "setAttr v.pointColor 0.5 0 0; setAttr v.pointAlpha 0.5; connectAttr sky.position "
        "v.inParticlePositionPP;"
        "setAttr t.blend 0; setAttr t.alphaModulate 1; disconnectAttr arrays.inRgbaPP t.inRgbaPP;");
    const auto rgba = floats("t.outRgbaPP");
    expectNear({rgba[4], rgba[5], rgba[6], rgba[7]}, {0.125, 0, 0, 0.25});
}

TEST_F(AttributeTransfer, PointsArePulledToTargets) {
    run("polyPlane -sx 1 -sy 1 -w 1 -h 1; connectAttr pPlaneShape1.worldMesh[0] t.inGeometry;");
    addVolume("v", 1, "0.5 0 0.5"); // holds all four vertices
    on("\"position\"");
    setRamp("v", "positionFalloff", 1);
    expectNear(floats("t.outPositionPP"), {0.5, 0, 0.5, 0.5, 0, 0.5, 0.5, 0, 0.5, 0.5, 0, 0.5});
    setRamp("v", "positionFalloff", 0.5);
    expectNear(floats("t.outPositionPP"), {0, 0, 0.5, 0.5, 0, 0.5, 0, 0, 0, 0.5, 0, 0});
    run("createNode pointAttributeToArray -n p; connectAttr t.outGeometry p.inGeometry; setAttr "
        "p.pointPosition 1;");
    const auto firstVertex = [&] {
        auto all = floats("p.outPositionPP");
        all.resize(3);
        return all;
    };
    expectNear(firstVertex(), {0, 0, 0.5});
    run("setAttr t.update 2");
    expectNear(firstVertex(), {-0.5, 0, 0.5});
    EXPECT_NEAR(floats("t.outPositionPP")[0], 0, 1e-6);
    run("setAttr t.update 1; setAttr vT.translateX 7;");
    expectNear(firstVertex(), {-0.5, 0, 0.5});
    EXPECT_NEAR(floats("t.outPositionPP")[0], 0, 1e-6) << "arrays stay as they were";
}

TEST_F(AttributeTransfer, CapsulesPullToTheirAxisAndParticlesIgnoreTheTranslation) {
    run("curve -d 1 -p 10.5 0.5 0 -p 10 2.5 0.5 -p 10 -1.5 0 -p 10 9 0;"
        "connectAttr curveShape1.worldSpace[0] t.inGeometry;");
    addVolume("v", 2, "10 0 0");
    run("setAttr v.topCapOffset 2;");
    setRamp("v", "positionFalloff", 1);
    on("\"position\"");
    expectNear(floats("t.outPositionPP"), {10, 0.5, 0, 10, 2, 0, 10, -1, 0, 10, 9, 0});
}

TEST_F(AttributeTransfer, ParticleTargetsOfCapsulesLackTheTranslation) {
    feedParticles("2 10.5 0.5 0 10 5 0");
    addVolume("v", 2, "10 0 0");
    setRamp("v", "positionFalloff", 1);
    on("\"position\"");
    expectNear(floats("t.outGeometry"), {0, 0.5, 0, 10, 5, 0});
    run("setAttr t.update 2");
    expectNear(floats("t.outGeometry"), {10.5, 0.5, 0, 10, 5, 0});
}

TEST_F(AttributeTransfer, NormalsTurnAndVelocitiesKeepTheirLength) {
    feedParticles("2 0 0.5 0 9 0 0");
    addVolume("v", 0);
    feed("inNormalPP", "doubleArray", "6 3 0 0 0 2 0");
    on("\"normal\"");
    run("setAttr v.normal 3; setAttr t.blend 0;");
    expectNear(floats("t.outNormalPP"), {0, 3, 0, 0, 2, 0});
    run("setAttr t.blend 1"); // half of (1, 0, 0) and half of (0, 1, 0), at length 3
    const double s = 3 * std::sqrt(0.5);
    expectNear(floats("t.outNormalPP"), {s, s, 0, 0, 2, 0});
    run("setAttr v.normal 2; setAttr vT.rotateX 90; setAttr t.blend 0;"); // the volume's z looks down
    expectNear(floats("t.outNormalPP"), {0, -3, 0, 0, 2, 0});
    run("setAttr arrays.inNormalPP -type \"doubleArray\" 5 1 1 1 1 1");
    expectNear(floats("t.outNormalPP"), {0, 0, 0, 0, 0, 0});
    EXPECT_EQ(complaints(),
              (Texts{"warning: t: inVelocityPP array length mismatch.",
                     "warning: t: inNormalPP array length does not match the inGeometry point count."}));
}

TEST_F(AttributeTransfer, AMeshTakesColoursNormalsAndPositionsHome) {
    run("polyPlane -sx 1 -sy 1 -w 1 -h 1; setAttr pPlane1.translateX 3; connectAttr "
        "pPlaneShape1.worldMesh[0] "
        "t.inGeometry; createNode mesh -n out; connectAttr t.outGeometry out.inMesh;");
    addVolume("v", 1, "3 0 0");
    on("\"color\", \"normal\", \"radius\"");
    setRamp("v", "radiusFalloff", -2);
    setRamp("v", "normalFalloff", 1);
    run("setAttr t.blend 0; setAttr v.alphaFalloff[0].alphaFalloff_FloatValue 0.5;"
        "createNode pointAttributeToArray -n p; connectAttr out.worldMesh[0] p.inGeometry; setAttr "
        "p.pointColor 1;"
        "setAttr p.pointNormal 1; setAttr p.averagedNormals 0; setAttr p.pointPosition 1;");
    const auto rgba = floats("p.outRgbaPP");
    ASSERT_EQ(rgba.size(), 16U);
    expectNear({rgba[0], rgba[1], rgba[2], rgba[3]}, {0.5, 0.5, 0.5, 0.5});
    const auto normals = floats("p.outNormalPP");
    expectNear({normals[0], normals[1], normals[2]}, {1, 0, 0});
    EXPECT_NEAR(floats("p.outPositionPP")[0], 2.5, 1e-6) << "in world space";
    expectNear(floats("t.outRadiusPP"), {0, 0, 0, 0});
}

TEST_F(AttributeTransfer, SelectionsMaskPoints) {
    feedParticles("3 0 0 0 0 0 0 0 0 0");
    addVolume("v", 0);
    feed("inRgbaPP", "doubleArray", "3 0.5 0.5 0.5");
    on("\"weight\", \"color\"");
    run("setAttr t.useComponents 1; setAttr t.inComponents -type \"componentList\" 1 \"pt[1]\";");
    expectNear(floats("t.outWeightPP"), {0, 1, 0});
    const auto rgba = floats("t.outRgbaPP");
    expectNear({rgba[0], rgba[3], rgba[4], rgba[7]}, {0, 0, 1, 1});
    run("setAttr t.inComponents -type \"Int32Array\" 3 2 9 -1");
    expectNear(floats("t.outWeightPP"), {0, 0, 1});
    run("setAttr t.useComponents 2");
    expectNear(floats("t.outWeightPP"), {0, 0, 0});
    EXPECT_EQ(complaints(),
              Texts{"warning: t: Object groups are not supported for particles. Use componentList instead."});
    run("polyPlane -sx 1 -sy 1 -w 1; connectAttr -f pPlaneShape1.worldMesh[0] t.inGeometry; setAttr "
        "t.useComponents "
        "1; setAttr t.inComponents -type \"componentList\" 1 \"f[0]\"; setAttr t.color 0;");
    expectNear(floats("t.outWeightPP"), {0, 0, 0, 0});
}

TEST_F(AttributeTransfer, ElementsThatAreHalfConnectedOffOrGone) {
    feedParticles("2 0 0 0 5 0 0");
    addVolume("first", 0, "0 0 0");
    addVolume("second", 0, "5 0 0");
    on("\"weight\"");
    expectNear(floats("t.outWeightPP"), {1, 1});
    run("setAttr first.envelope 0"); // the second one stands where nothing moved it
    expectNear(floats("t.outWeightPP"), {1, 0});
    run("disconnectAttr first.outData t.boundingObjects[0]"); // the matrix alone is no volume
    expectNear(floats("t.outWeightPP"), {0, 1});
    run("delete firstT; disconnectAttr second.outData.outParentMatrix "
        "t.boundingObjects[1].boundParentMatrix;");
    expectNear(floats("t.outWeightPP"), {0, 1});
    run("delete secondT");
    expectNear(floats("t.outWeightPP"), {0, 0});
}

TEST_F(AttributeTransfer, WhatIsNoVolumeIsLeftOutWithAWarning) {
    // Another node's compound with the right children, as far as wires can tell.
    const std::string parts =
        "addAttr -ln od -at compound -nc 3 arrays; addAttr -ln opm -at \"matrix\" -p od arrays;"
        "addAttr -ln cd -at compound -nc 8 -p od arrays;"
        "string $n; for ($n in {\"c0\", \"c1\", \"c2\", \"c3\"}) addAttr -ln $n -at double -p cd arrays;"
        "addAttr -ln c4 -at double3 -p cd arrays; for ($n in {\"c4x\", \"c4y\", \"c4z\"}) addAttr -ln $n -at "
        "double "
        "-p c4 arrays; addAttr -ln c5 -at double -p cd arrays; addAttr -ln c6 -at double3 -p cd arrays;"
        "for ($n in {\"c6x\", \"c6y\", \"c6z\"}) addAttr -ln $n -at double -p c6 arrays;"
        "addAttr -ln c7 -at double -p cd arrays; addAttr -ln dp -at compound -nc 5 -p od arrays;"
        "addAttr -ln d0 -dt \"pointArray\" -p dp arrays; addAttr -ln d1 -dt \"vectorArray\" -p dp arrays;"
        "for ($n in {\"d2\", \"d3\", \"d4\"}) addAttr -ln $n -dt \"doubleArray\" -p dp arrays;"
        "connectAttr arrays.od t.boundingObjects[0]; setAttr arrays.c0 1; setAttr arrays.c1 3;"
        "setAttr arrays.d0 -type \"pointArray\" 2 0 0 0 1 5 0 0 1; setAttr arrays.d2 -type \"doubleArray\" 1 "
        "2;";
    run(parts);
    feedParticles("2 0 0 0 0 0 0");
    on("\"weight\"");
    expectNear(floats("t.outWeightPP"), {0, 0});
    EXPECT_EQ(complaints(),
              Texts{"warning: t: boundingObjects[0] is fed by arrays.od, which is no bounding object. "
                    "It is left out."});
    // With a ramp of the name it counts, and what its arrays lack are zeros.
    run("addAttr -ln weightFalloff -at compound -m -nc 3 arrays; addAttr -ln weightFalloff_Position -at "
        "float -p "
        "weightFalloff arrays; addAttr -ln weightFalloff_FloatValue -at float -p weightFalloff arrays; "
        "addAttr -ln "
        "weightFalloff_Interp -at long -p weightFalloff arrays; setAttr arrays.weightFalloff[0] 0 1 1;"
        "setAttr arrays.d3 -type \"doubleArray\" 1 0.5;");
    expectNear(floats("t.outWeightPP"), {0.5, 0.5});
    EXPECT_EQ(complaints(),
              (Texts{"warning: t:arrays: the normalPP array length does not match the point count.",
                     "warning: t:arrays: the radiusPP array length does not match the point count.",
                     "warning: t:arrays: the weightPP array length does not match the point count.",
                     "warning: t:arrays: the rgbaPP array length does not match the point count."}));
}

TEST_F(AttributeTransfer, StateEnvelopeAndMissingGeometry) {
    on("\"weight\", \"color\", \"normal\", \"radius\", \"position\"");
    EXPECT_EQ(floats("t.outWeightPP").size(), 0U);
    feedParticles("1 0 0 0");
    EXPECT_EQ(floats("t.outWeightPP"), std::vector<double>{0}) << "without volumes what came in";
    expectNear(floats("t.outGeometry"), {0, 0, 0});
    run("setAttr t.envelope 0; setAttr cloud.position -type \"vectorArray\" 1 4 0 0;");
    expectNear(floats("t.outGeometry"), {4, 0, 0});
    EXPECT_EQ(floats("t.outWeightPP").size(), 0U);
    run("setAttr t.envelope 1; setAttr t.nodeState 2;");
    EXPECT_EQ(floats("t.outWeightPP").size(), 0U) << "blocking leaves what is there";
    run("setAttr t.nodeState 0; sphere; connectAttr -f nurbsSphereShape1.worldSpace[0] t.inGeometry;");
    EXPECT_EQ(floats("t.outWeightPP").size(), 0U);
    EXPECT_EQ(complaints(),
              Texts{"warning: t: inGeometry is periodic nurbs surface. Rebuild using \"End Conditions\" / "
                    "\"Multiple Knots\" options."});
}

} // namespace
} // namespace vesk::nodes
