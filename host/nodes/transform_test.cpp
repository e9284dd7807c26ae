// Local and world matrices, worked out by hand: a quarter turn moves axes onto axes.

#include "host/nodes/default_nodes.h"
#include "host/nodes/test_scene.h"

namespace vesk::nodes {
namespace {

class TransformTest : public NodesTest {
  protected:
    /// The point after the node's matrix.
    MPoint moved(const std::string& plug, const MPoint& point) { return point * matrixIn(at(plug)); }
};

TEST_F(TransformTest, EachRotationOrderTurnsAboutItsAxesInTurn) {
    make("transform", "t");
    set("t.rotate", {90 * kDegree, 90 * kDegree, 90 * kDegree});
    // Quarter turns: x takes (x,y,z) to (x,-z,y), y to (z,y,-x), z to (-y,x,z).
    const MPoint expected[] = {{3, 2, -1}, {-2, 1, 3}, {1, -3, 2}, {2, 1, -3}, {-1, 3, 2}, {3, -2, 1}};
    for (int order = 0; order < 6; ++order) {
        set("t.rotateOrder", order);
        EXPECT_TRUE(isNear(moved("t.matrix", {1, 2, 3}), expected[order])) << "order " << order;
    }
}

TEST_F(TransformTest, PivotsShearAndAxisHaveTheirPlaces) {
    make("transform", "t");
    set("t.rotatePivot", {1, 0, 0});
    set("t.rz", 90 * kDegree);
    EXPECT_TRUE(isNear(moved("t.m", {2, 0, 0}), MPoint(1, 1, 0)));
    set("t.rpt", {0, 0, 5});
    set("t.scalePivot", {0, 1, 0});
    set("t.scale", {2, 2, 2});
    // About (0,1,0) the point (1,2,0) grows to (2,3,0); that lies (1,3) from the rotate pivot: (-3,1).
    EXPECT_TRUE(isNear(moved("t.m", {1, 2, 0}), MPoint(-2, 1, 5)));
    set("t.spt", {1, 0, 0});
    set("t.translate", {10, 0, 0});
    EXPECT_TRUE(isNear(moved("t.m", {1, 2, 0}), MPoint(8, 2, 5)));
    make("transform", "u");
    set("u.shear", {1, 10, 100});
    EXPECT_TRUE(isNear(moved("u.m", {0, 1, 0}), MPoint(1, 1, 0)));
    EXPECT_TRUE(isNear(moved("u.m", {0, 0, 1}), MPoint(10, 100, 1)));
    make("transform", "v");
    set("v.rotateAxis", {0, 0, 90 * kDegree});
    set("v.rotate", {90 * kDegree, 0, 0});
    EXPECT_TRUE(isNear(moved("v.m", {1, 0, 0}), MPoint(0, 0, 1)));
}

TEST_F(TransformTest, JointsPutTheOrientAfterTheRotationAndUndoTheParentsScale) {
    make("joint", "j");
    set("j.scale", {2, 1, 1});
    set("j.rz", 90 * kDegree);
    set("j.jointOrient", {90 * kDegree, 0, 0});
    set("j.inverseScale", {1, 1, 4});
    set("j.translate", {1, 1, 1});
    // (1,0,0) is scaled to (2,0,0), turned to (0,2,0), oriented to (0,0,2), squeezed to (0,0,0.5), moved.
    EXPECT_TRUE(isNear(moved("j.m", {1, 0, 0}), MPoint(1, 1, 1.5)));
    set("j.segmentScaleCompensate", 0);
    EXPECT_TRUE(isNear(moved("j.m", {1, 0, 0}), MPoint(1, 1, 3)));
    EXPECT_TRUE(at("j.m").node.hasFn(MFn::kTransform));
    EXPECT_EQ(at("j.radius").number, 1);
}

TEST_F(TransformTest, WorldMatricesFollowParentsUnlessTheyDoNotInherit) {
    Node& top = make("transform", "top");
    make("transform", "below", &top);
    set("top.ty", 3);
    set("below.tx", 1);
    EXPECT_TRUE(isNear(moved("below.wm[0]", {}), MPoint(1, 3, 0)));
    set("top.ty", 4);
    EXPECT_TRUE(isNear(moved("below.wm[0]", {}), MPoint(1, 4, 0)));
    EXPECT_TRUE(isNear(moved("below.wim[0]", {1, 4, 0}), MPoint()));
    set("below.inheritsTransform", 0);
    EXPECT_TRUE(isNear(moved("below.wm[0]", {}), MPoint(1, 0, 0)));
    set("top.ty", 9);
    EXPECT_TRUE(isNear(moved("below.wm[0]", {}), MPoint(1, 0, 0)));
}

TEST_F(TransformTest, TheSessionsOwnNodesComeBackAfterClear) {
    createDefaultNodes(*scene);
    const auto count = scene->nodeCount();
    // The side camera looks along -x: its own -z axis.
    EXPECT_TRUE(isNear(moved("sideShape.worldMatrix[0]", {0, 0, -100.1}), MPoint()));
    EXPECT_TRUE(isNear(moved("topShape.worldMatrix[0]", {0, 0, -100.1}), MPoint()));
    EXPECT_EQ(scene->frame(), 1);
    EXPECT_EQ(at("initialShadingGroup.ss").source, &at("lambert1.oc"));
    make("transform", "mine");
    set("persp.tx", 0);
    connect("layerManager.displayLayerId[0]", "defaultLayer.identification");
    scene->setFrame(7);
    scene->clear();
    createDefaultNodes(*scene);
    EXPECT_EQ(scene->nodeCount(), count);
    EXPECT_EQ(get("persp.tx"), 28);
    EXPECT_EQ(scene->frame(), 1);
    EXPECT_EQ(at("renderPartition.sets").existingIndices().size(), 2U);
    EXPECT_EQ(at("defaultLayer.identification").source, nullptr) << "a file wires it anew";
}

} // namespace
} // namespace vesk::nodes
