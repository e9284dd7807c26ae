#include "tests/session_fixture.h"

#include <maya/MBoundingBox.h>
#include <maya/MFnDagNode.h>
#include <maya/MSelectionList.h>

#include <cmath>

namespace vesk::nodes {
namespace {

class BoundingObject : public tests::PluginTest {
  protected:
    void SetUp() override {
        PluginTest::SetUp();
        run("createNode transform -n place; createNode boundingObject -n b -p place;"
            "connectAttr place.matrix b.inParentMatrix; createNode transform -n arrays;");
    }
    /// An array on a wire to an input of the node.
    void feed(const std::string& input, const std::string& type, const std::string& values) {
        run("addAttr -ln " + input + " -dt \"" + type + "\" arrays; setAttr arrays." + input + " -type \"" +
            type + "\" " + values + "; connectAttr -f arrays." + input + " b." + input);
    }
    /// x of each point of the cloud.
    std::vector<double> xs() {
        const auto points = floats("b.positionPP");
        std::vector<double> result;
        for (std::size_t i = 0; i < points.size(); i += 4)
            result.push_back(points[i]);
        return result;
    }
    void expectEmptyCloud() {
        for (const char* one : {"positionPP", "normalPP", "radiusPP", "weightPP", "rgbaPP"})
            EXPECT_EQ(floats(std::string("b.") + one).size(), 0U) << one;
    }
    MBoundingBox box() {
        MSelectionList list;
        list.add("b");
        MObject node;
        list.getDependNode(0, node);
        return MFnDagNode(node).boundingBox();
    }
    void expectBox(const MPoint& low, const MPoint& high) {
        const MBoundingBox is = box();
        EXPECT_TRUE(is.min().isEquivalent(low, 1e-9)) << is.min();
        EXPECT_TRUE(is.max().isEquivalent(high, 1e-9)) << is.max();
    }
    static std::string lengthWarning(const std::string& array, const std::string& source) {
        return "warning: b: " + array + " array length does not match the " + source +
               " point count. Result will be unpredictable.";
    }
};

TEST_F(BoundingObject, PrimitivesHaveNoCloudAndFollowTheirParent) {
    run("polyCube; connectAttr pCubeShape1.worldMesh[0] b.inMesh; setAttr place.translate 1 2 3;");
    for (const char* type : {"0", "1", "2"}) {
        run(std::string("setAttr b.type ") + type);
        expectEmptyCloud();
    }
    const auto matrix = floats("b.outParentMatrix");
    expectNear({matrix[12], matrix[13], matrix[14]}, {1, 2, 3});
    run("setAttr b.type 3; setAttr b.envelope 0;");
    expectEmptyCloud();
    run("setAttr b.envelope 1");
    EXPECT_EQ(xs().size(), 8U);
    run("setAttr b.nodeState 1; setAttr pCube1.translateX 5;");
    expectNear({xs()[0]}, {-0.5});
}

TEST_F(BoundingObject, RampsStartAsArtistsKnowThem) {
    for (const char* ramp : {"positionFalloff", "weightFalloff", "normalFalloff", "radiusFalloff"}) {
        const std::string name = ramp, entry = "b." + name;
        EXPECT_EQ(run("size(`getAttr -mi " + entry + "`)").asInt(), 2) << ramp;
        expectNear({run("getAttr " + entry + "[0]." + name + "_FloatValue").asFloat(),
                    run("getAttr " + entry + "[1]." + name + "_FloatValue").asFloat(),
                    run("getAttr " + entry + "[1]." + name + "_Position").asFloat()},
                   {1, 0, 1});
    }
    expectNear(floats("b.colorFalloff[0].colorFalloff_Color"), {1, 1, 1});
    EXPECT_EQ(run("getAttr b.alphaFalloff[0].alphaFalloff_FloatValue").asFloat(), 1);
}

TEST_F(BoundingObject, AMeshWithItsArraysAndColours) {
    run("polyPlane -ch 0 -sx 1 -sy 1 -w 2 -h 2; polyColorPerVertex -rgb 0.25 0.5 0.75 -a 0.5 pPlane1.vtx[2];"
        "setAttr pPlane1.translateX 10; connectAttr pPlaneShape1.worldMesh[0] b.inMesh;"
        "setAttr b.type 3; setAttr b.pointWeight 0.5; setAttr b.pointColor 0.1 0.2 0.3; setAttr b.pointAlpha "
        "0.4;");
    expectNear(xs(), {9, 11, 9, 11});
    const auto normals = floats("b.normalPP");
    expectNear({normals[0], normals[1], normals[2]}, {0, 1, 0});
    expectNear(floats("b.radiusPP"), {1, 1, 1, 1});
    expectNear(floats("b.weightPP"), {0.5, 0.5, 0.5, 0.5});
    expectNear(floats("b.rgbaPP"), {0, 0, 0, 0, 0, 0, 0, 0, 0.25, 0.5, 0.75, 0.5, 0, 0, 0, 0});
    run("setAttr b.inMeshColorSet -type \"string\" \"nope\"");
    const auto rgba = floats("b.rgbaPP");
    expectNear({rgba[8], rgba[9], rgba[10], rgba[11]}, {0.1, 0.2, 0.3, 0.4}, 1e-6);
    feed("inMeshRadiusPP", "doubleArray", "4 -1 2 -3 0");
    feed("inMeshWeightPP", "doubleArray", "3 -1 2 3");
    expectNear(floats("b.radiusPP"), {1, 2, 3, 0});
    EXPECT_EQ(complaints(), Texts{lengthWarning("inMeshWeightPP", "inMesh")});
    expectNear(floats("b.weightPP"), {-1, 2, 3, 0});
    run("setAttr b.inMeshUseWeightPP 0");
    expectNear(floats("b.weightPP"), {0.5, 0.5, 0.5, 0.5});
}

TEST_F(BoundingObject, OnlyChosenPointsMakeTheCloud) {
    run("polyPlane -sx 3 -sy 1 -w 3; connectAttr pPlaneShape1.worldMesh[0] b.inMesh; setAttr b.type 3;"
        "setAttr b.inMeshUseComponents 2;");
    expectEmptyCloud();
    run("setAttr b.inMeshUseComponents 1");
    expectEmptyCloud();
    run("setAttr b.inMeshComponents -type \"componentList\" 2 \"vtx[1:2]\" \"f[*]\"");
    expectNear(xs(), {-0.5, 0.5});
    run("setAttr b.inMeshComponents -type \"componentList\" 1 \"f[*]\"");
    expectEmptyCloud();
    run("setAttr b.useInMesh 0; setAttr b.inMeshUseComponents 0;");
    expectEmptyCloud();
}

TEST_F(BoundingObject, CurvesAndSurfaces) {
    run("curve -d 1 -p 0 0 0 -p 1 0 0 -p 3 0 0; connectAttr curveShape1.worldSpace[0] b.inCurve;"
        "setAttr b.type 3; nurbsPlane -d 1 -u 1 -v 1;");
    expectNear(xs(), {0, 1, 3});
    const auto normals = floats("b.normalPP");
    // The ribbon stands up from the line.
    for (std::size_t i = 0; i < 9; i += 3)
        expectNear({normals[i], normals[i + 1], std::abs(normals[i + 2])}, {0, 0, 1});
    EXPECT_EQ(run("size(`ls -type nurbsTessellate -type extrude -type rebuildCurve`)").asInt(), 0);
    run("connectAttr nurbsPlaneShape1.worldSpace[0] b.inSurface");
    EXPECT_EQ(xs().size(), 7U) << "behind the curve";
    feed("inCurveRgbaPP", "vectorArray", "2 0.1 0.2 0.3 0.4 0.5 0.6");
    const auto rgba = floats("b.rgbaPP");
    expectNear({rgba.begin(), rgba.begin() + 12}, {0.1, 0.2, 0.3, 1, 0.4, 0.5, 0.6, 1, 0, 0, 0, 0});
    EXPECT_EQ(complaints(), Texts{lengthWarning("inCurveRgbaPP", "inCurve")});
    run("sphere; connectAttr -f nurbsSphereShape1.worldSpace[0] b.inSurface; setAttr b.inCurveUseRgbaPP 0;");
    EXPECT_EQ(xs().size(), 3U);
    EXPECT_EQ(complaints(),
              Texts{"warning: b: The geometry at the \"inSurface\" input is a periodic nurbs surface. "
                    "Rebuild using the \"End Conditions\" / \"Multiple Knots\" options."});
}

TEST_F(BoundingObject, ParticlesInTheOrderOfTheirIds) {
    run("createNode particle -n cloud; setAttr cloud.position -type \"vectorArray\" 3 1 0 0 2 0 0 3 0 0;"
        "connectAttr cloud.position b.inParticlePositionPP; setAttr b.type 3; setAttr place.rotateZ 90;");
    expectNear(xs(), {1, 2, 3});
    auto normals = floats("b.normalPP");
    expectNear({normals[0], normals[1], normals[2]}, {-1, 0, 0}); // up, turned with the parent
    run("setAttr b.inParticleUseComponents 1");
    expectEmptyCloud();
    run("setAttr b.inParticleComponents -type \"Int32Array\" 4 2 7 -1 0");
    expectNear(xs(), {3, 1});
    run("setAttr cloud.velocity -type \"vectorArray\" 1 0 0 5; connectAttr cloud.velocity "
        "b.inParticleVelocityPP;");
    feed("inParticleOpacityPP", "doubleArray", "2 0.5 0.5");
    feed("inParticleRgbPP", "vectorArray", "3 1 0 0 0 1 0 0 0 1");
    feed("inParticleRadiusPP", "doubleArray", "3 -1 2 -3");
    expectNear(floats("b.normalPP"), {-1, 0, 0, 0, 0, 5});
    EXPECT_EQ(complaints(), (Texts{lengthWarning("inParticleVelocityPP", "inParticle"),
                                   lengthWarning("inParticleOpacityPP", "inParticle")}));
    expectNear(floats("b.rgbaPP"), {0, 0, 1, 0, 1, 0, 0, 0.5});
    expectNear(floats("b.radiusPP"), {3, 1});
    run("setAttr b.inParticleComponents -type \"componentList\" 1 \"pt[1]\"");
    expectNear(xs(), {2});
    (void)complaints();
}

TEST_F(BoundingObject, BoxesOfTheKinds) {
    expectBox({-1, -1, -1}, {1, 1, 1});
    run("setAttr b.type 2; setAttr b.topCapOffset 2; setAttr b.topCapScale 1 2 3; setAttr b.bottomCapOffset "
        "3;"
        "setAttr b.bottomCapScale 4 1 0.5;");
    expectBox({-4, -4, -3}, {4, 4, 3});
    run("setAttr b.type 3");
    expectBox({-0.5, -0.5, -0.5}, {0.5, 0.5, 0.5});
    run("createNode particle -n cloud; setAttr cloud.position -type \"vectorArray\" 1 3 0 0;"
        "connectAttr cloud.position b.inParticlePositionPP; setAttr place.scale 2 2 2; setAttr b.pointRadius "
        "0.25;");
    expectBox({-0.5, -0.5, -0.5}, {1.75, 0.5, 0.5}); // the centre is taken to 1.5, the radius stays
    run("setAttr b.displayPointCloudBoundingVolumes 0");
    expectBox({-0.5, -0.5, -0.5}, {0.5, 0.5, 0.5});
}

} // namespace
} // namespace vesk::nodes
