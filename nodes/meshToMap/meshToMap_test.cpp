#include "tests/session_fixture.h"

namespace vesk::nodes {
namespace {

class MeshToMap : public tests::PluginTest {
  protected:
    /// `m` gives `board` (2 by 1 faces) the layout of `flat`; `p` reads its UVs.
    void SetUp() override {
        PluginTest::SetUp();
        run("polyPlane -sx 2 -sy 1 -n board; createNode mapToMesh -n layout; connectAttr boardShape.outMesh "
            "layout.inMesh;"
            "createNode transform -n flat; createNode mesh -n flatShape -p flat; connectAttr layout.outMesh "
            "flatShape.inMesh;"
            "createNode meshToMap -n m; connectAttr boardShape.worldMesh[0] m.inMesh; connectAttr "
            "flatShape.outMesh m.inMesh2;"
            "createNode pointAttributeToArray -n p; connectAttr m.outMesh p.inGeometry; setAttr p.mapData 1;"
            "setAttr p.pointPosition 1;");
    }
    const std::vector<double> original = {0, 0, 0.5, 0, 1, 0, 0, 1, 0.5, 1, 1, 1};
};

TEST_F(MeshToMap, TheLayoutGoesThereAndBack) {
    expectNear(floats("p.outMapPP"), original);
    run("setAttr flatShape.pnts[1] 0.25 -1 9; setAttr flat.translateX 7; setAttr board.translateX 5;");
    auto moved = original;
    moved[2] = 0.75;
    moved[3] = -1;
    expectNear(floats("p.outMapPP"), moved);
    EXPECT_NEAR(floats("p.outPositionPP")[0], 4.5, 1e-6) << "the mesh keeps its matrix";
    run("setAttr m.envelope 0");
    expectNear(floats("p.outMapPP"), original);
    run("setAttr m.nodeState 1; setAttr m.envelope 1;");
    expectNear(floats("p.outMapPP"), original);
    run("setAttr m.nodeState 0; setAttr -type \"string\" m.uvSet \"map1\";");
    expectNear(floats("p.outMapPP"), moved);
    run("setAttr m.nodeState 2; setAttr flatShape.pnts[1] 0 0 0;");
    expectNear(floats("p.outMapPP"), moved);
}

TEST_F(MeshToMap, AMeshWithTheSameFacesLendsANewLayout) {
    // The cube has 14 UVs; another cube shows it 8 vertices in its place, and they become its UVs.
    run("polyCube -n box; polyCube -w 4 -h 2 -n other; connectAttr -f boxShape.outMesh m.inMesh;"
        "connectAttr -f otherShape.outMesh m.inMesh2;");
    EXPECT_EQ(ints("p.outMapCountPP"), std::vector<int>(8, 1));
    EXPECT_EQ(ints("p.outMapIdPP"), (std::vector<int>{0, 1, 2, 3, 4, 5, 6, 7}));
    const auto map = floats("p.outMapPP");
    expectNear({map[0], map[1], map[14], map[15]}, {-2, -1, 2, -1});
}

TEST_F(MeshToMap, WhatDoesNotGoTogetherIsLeftAsItIs) {
    run("polyCube -n box; connectAttr -f boxShape.outMesh m.inMesh2;");
    expectNear(floats("p.outMapPP"), original);
    EXPECT_EQ(complaints(),
              Texts{"warning: m: inMesh2 has neither a vertex for each UV of inMesh nor the same faces."});
    run("setAttr -type \"string\" m.uvSet \"other\"");
    expectNear(floats("p.outMapPP"), original);
    EXPECT_EQ(complaints(), Texts{"warning: m: Cannot find uvSet named \"other\"."});
    run("disconnectAttr boxShape.outMesh m.inMesh2");
    expectNear(floats("p.outMapPP"), original);
    run("disconnectAttr boardShape.worldMesh[0] m.inMesh");
    EXPECT_TRUE(floats("p.outMapPP").empty());
}

} // namespace
} // namespace vesk::nodes
