#include "tests/api_access.h"
#include "tests/session_fixture.h"

#include <maya/MFnComponentListData.h>
#include <maya/MFnSingleIndexedComponent.h>

namespace vesk::nodes {
namespace {

class Cage : public tests::PluginTest {
  protected:
    void SetUp() override {
        PluginTest::SetUp();
        run("polyCube -ch 0 -n box; polyCube -ch 0 -w 5 -h 5 -d 5 -n room; createNode cage -n c;"
            "connectAttr boxShape.worldMesh[0] c.inMesh; connectAttr roomShape.worldMesh[0] c.inMeshCage;");
    }
    std::string outside() { return mel("stringArrayToString(`getAttr c.outComponents`, \" \")"); }
};

TEST_F(Cage, InsideAndOutside) {
    EXPECT_EQ(outside(), "");
    run("setAttr box.translateX 20");
    EXPECT_EQ(outside(), "f[0:5]");
    // Rays that run into the room from before it leave it by no means.
    run("setAttr room.translateX 30; setAttr room.scale 1 40 40;");
    EXPECT_EQ(outside(), "f[0:5]");
}

TEST_F(Cage, FacesRoundOutsideVertices) {
    // Vertices at x from -4 to 4 by 2, looking up; the room ends at 2.5.
    run("polyPlane -ch 0 -sx 4 -sy 1 -w 8 -h 1 -n strip; connectAttr -f stripShape.worldMesh[0] c.inMesh;");
    EXPECT_EQ(outside(), "f[0] f[3]");
    run("setAttr strip.translateX 1"); // -3 to 5
    EXPECT_EQ(outside(), "f[0] f[2:3]");
    run("setAttr strip.rotateZ 180"); // turned over, faces count from the other end
    EXPECT_EQ(outside(), "f[0:1] f[3]");
}

TEST_F(Cage, TheAngleToTheCage) {
    // Off the middle, so that the rays from the corners, 54.7 degrees to each axis, leave within faces.
    run("setAttr box.translate 0.3 0.2 0.1; setAttr c.tolerance 54;");
    EXPECT_EQ(outside(), "f[0:5]");
    run("setAttr c.tolerance 55");
    EXPECT_EQ(outside(), "");
    run("setAttr c.tolerance 0");
    EXPECT_EQ(outside(), "f[0:5]");
}

TEST_F(Cage, SwitchedOffOrWithoutAMeshThereIsOneEmptyComponent) {
    run("setAttr box.translateX 20; setAttr c.envelope 0;");
    EXPECT_EQ(outside(), "");
    EXPECT_EQ(mel("size(`getAttr c.outComponents`)"), "0");
    run("setAttr c.envelope 1");
    EXPECT_EQ(outside(), "f[0:5]");
    run("setAttr c.nodeState 2; setAttr c.envelope 0;");
    EXPECT_EQ(outside(), "f[0:5]");
    run("setAttr c.nodeState 0; setAttr c.envelope 1; disconnectAttr roomShape.worldMesh[0] c.inMeshCage;");
    EXPECT_EQ(outside(), "");
    MObject data = tests::plugNamed("c.outComponents").asMObject();
    const MFnComponentListData list(data);
    ASSERT_EQ(list.length(), 1U);
    MObject component = list[0];
    EXPECT_EQ(component.apiType(), MFn::kMeshPolygonComponent);
    EXPECT_EQ(MFnSingleIndexedComponent(component).elementCount(), 0);
}

} // namespace
} // namespace vesk::nodes
