#include "tests/session_fixture.h"

namespace vesk::nodes {
namespace {

class MapToMesh : public tests::PluginTest {
  protected:
    void SetUp() override {
        PluginTest::SetUp();
        run("polyCube -n box; createNode mapToMesh -n m; connectAttr boxShape.outMesh m.inMesh;"
            "createNode mesh -n flat; connectAttr m.outMesh flat.inMesh; createNode pointAttributeToArray -n "
            "p;"
            "connectAttr flat.outMesh p.inGeometry; setAttr p.pointPosition 1; setAttr p.mapData 1;");
    }
};

TEST_F(MapToMesh, AVertexForEachUv) {
    // A cube's layout: columns at u 0.375 and 0.625, rows of a quarter; UVs 10 to 13 are the side flaps.
    const auto points = floats("p.outPositionPP"), map = floats("p.outMapPP");
    ASSERT_EQ(points.size(), 42U);
    expectNear({points[0], points[1], points[2]}, {0.375, 0, 0});
    expectNear({points[9], points[10], points[11]}, {0.625, 0.25, 0});
    expectNear({points[30], points[31], points[32]}, {0.875, 0, 0});
    EXPECT_EQ(run("polyEvaluate -f flat").asInt(), 6);
    ASSERT_EQ(map.size(), 28U) << "it has the layout as its own UVs";
    for (std::size_t i = 0; i < 14; ++i)
        expectNear({map[2 * i], map[2 * i + 1]}, {points[3 * i], points[3 * i + 1]});
}

TEST_F(MapToMesh, UnmappedFacesSetsThatAreNotThereAndNoInput) {
    run("setAttr -type \"string\" m.uvSet \"other\"");
    EXPECT_TRUE(floats("p.outPositionPP").empty());
    EXPECT_EQ(complaints(), Texts{"warning: m: Cannot find uvSet named \"other\"."});
    run("setAttr -type \"string\" m.uvSet \"map1\"");
    EXPECT_EQ(floats("p.outPositionPP").size(), 42U);
    run("createNode pointCloudToMesh -n q; setAttr q.meshType 1;"
        "setAttr q.inPositionPP -type \"vectorArray\" 3 0 0 0 1 0 0 0 1 0; connectAttr -f q.outMesh "
        "m.inMesh;");
    EXPECT_TRUE(floats("p.outPositionPP").empty()) << "no face is mapped";
    run("setAttr m.nodeState 2; connectAttr -f boxShape.outMesh m.inMesh;");
    EXPECT_TRUE(floats("p.outPositionPP").empty());
    const auto refused = session->run("sphere -n ball; connectAttr -f ballShape.local m.inMesh;");
    EXPECT_FALSE(refused.ok);
    EXPECT_NE(refused.error.find("m.inMesh"), std::string::npos) << refused.error;
    (void)complaints();
}

} // namespace
} // namespace vesk::nodes
