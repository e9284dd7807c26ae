#include "nodes/vertexConstraint/surfaceFrame.h"

#include "tests/session_fixture.h"

#include <limits>

namespace vesk::nodes {
namespace {

TEST(SurfaceFrame, AxesStandSquareAndRightHanded) {
    const auto rows = [](const MMatrix& m) {
        std::vector<double> all;
        for (unsigned row = 0; row < 3; ++row) {
            for (unsigned column = 0; column < 3; ++column)
                all.push_back(m[row][column] + 0.0);
        }
        return all;
    };
    using Rows = std::vector<double>;
    EXPECT_EQ(rows(surfaceFrame({0, 3, 0}, {2, 5, 0}, 1)), (Rows{1, 0, 0, 0, 1, 0, 0, 0, 1}));
    EXPECT_EQ(rows(surfaceFrame({0, 1, 0}, {1, 0, 0}, 0)), (Rows{0, 1, 0, 0, 0, 1, 1, 0, 0}));
    EXPECT_EQ(rows(surfaceFrame({0, 1, 0}, {1, 0, 0}, 2)), (Rows{0, 0, 1, 1, 0, 0, 0, 1, 0}));
    // Nothing to go by.
    const double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(rows(surfaceFrame({}, {}, 1)), (Rows{1, 0, 0, 0, 1, 0, 0, 0, 1}));
    EXPECT_EQ(rows(surfaceFrame({nan, 0, 0}, {nan, 0, 0}, 1)), (Rows{1, 0, 0, 0, 1, 0, 0, 0, 1}));
    EXPECT_EQ(rows(surfaceFrame({2, 0, 0}, {5, 0, 0}, 1)), (Rows{0, 1, 0, 1, 0, 0, 0, 0, -1}));
}

class VertexConstraint : public tests::PluginTest {
  protected:
    /// One face; vertices 0 and 1 at z 0.5, 2 and 3 at z -0.5. A locator on element 2.
    void SetUp() override {
        PluginTest::SetUp();
        run("polyPlane -w 1 -h 1 -sx 1 -sy 1 -n board; createNode vertexConstraint -n pins;"
            "connectAttr boardShape.worldMesh[0] pins.inMesh; spaceLocator -n l;"
            "connectAttr pins.outTransforms[2].t l.t; connectAttr pins.outTransforms[2].r l.r;");
    }
    void expectAt(const std::vector<double>& translate, const std::vector<double>& rotate) {
        expectNear(floats("l.t"), translate);
        expectNear(floats("l.r"), rotate);
    }
    /// Where the axes of the locator point.
    std::vector<double> axes() {
        const auto m = floats("l.matrix");
        return {m[0], m[1], m[2], m[4], m[5], m[6], m[8], m[9], m[10]};
    }
};

TEST_F(VertexConstraint, LocatorsFollowPlaceAndTurn) {
    expectAt({-0.5, 0, -0.5}, {0, -90, 0}); // the lowest neighbour is vertex 0, towards z
    run("setAttr pins.vertexId[2] 1; setAttr pins.offset 0.25");
    expectNear(floats("l.t"), {0.5, 0.25, 0.5});
    expectNear(axes(), {-1, 0, 0, 0, 1, 0, 0, 0, -1}); // towards vertex 0, against x
    run("setAttr pins.vertexId[2] 0; setAttr board.rotateZ 90; setAttr board.translateX 10");
    expectAt({10 - 0.25, -0.5, 0.5}, {0, 0, 90});
    run("setAttr pins.coordinateSystem 1");
    expectAt({-0.5, 0.25, 0.5}, {0, 0, 0});
    run("setAttr pins.axis 2; setAttr pins.rotateOrder 5; setAttr l.rotateOrder 5");
    expectNear(axes(), {0, 0, 1, 1, 0, 0, 0, 1, 0});
    expectNear(floats("pins.outTransforms[1].translate"), {0.5, 0.25, 0.5});
}

TEST_F(VertexConstraint, ComponentsChooseAndNumbersWin) {
    run("addAttr -ln parts -dt componentList board; setAttr -type componentList board.parts 1 \"vtx[1:3]\";"
        "connectAttr board.parts pins.inComponents;");
    expectNear(floats("l.t"), {0.5, 0, -0.5}); // the third of 1, 2, 3
    run("setAttr pins.vertexId[2] 0");
    expectNear(floats("l.t"), {-0.5, 0, 0.5});
    run("setAttr pins.vertexId[2] -1; addAttr -ln ids -dt Int32Array board; setAttr -type Int32Array "
        "board.ids 3 3 3 1;"
        "connectAttr -f board.ids pins.inComponents;");
    expectNear(floats("l.t"), {0.5, 0, 0.5});
    run("setAttr -type Int32Array board.ids 1 3");
    expectNear(floats("l.t"), {0.5, 0, 0.5});
    EXPECT_EQ(complaints(), Texts{"warning: pins: outTransforms[2] has no vertex to follow: inMesh has 4."});
}

TEST_F(VertexConstraint, WhatIsGoneLeavesThemWhereTheyWere) {
    expectNear(floats("l.t"), {-0.5, 0, -0.5});
    run("setAttr pins.vertexId[2] 99");
    expectNear(floats("l.t"), {-0.5, 0, -0.5});
    EXPECT_EQ(complaints(), Texts{"warning: pins: outTransforms[2] has no vertex to follow: inMesh has 4."});
    run("setAttr pins.vertexId[2] 3; setKeyframe -t 1 -v 1 polyPlane1.width; setKeyframe -t 2 -v 3 "
        "polyPlane1.width;"
        "currentTime 2;");
    expectNear(floats("l.t"), {1.5, 0, -0.5});
    run("delete board; currentTime 1");
    expectNear(floats("l.t"), {1.5, 0, -0.5});
}

TEST_F(VertexConstraint, StaysOverSavingAndOpening) {
    run("setAttr pins.vertexId[2] 0; setAttr pins.offset 2");
    const std::string file = (folder / "pins.ma").string();
    run("file -rename \"" + file + "\"; file -save; file -f -new; file -o \"" + file + "\"");
    expectAt({-0.5, 2, 0.5}, {0, 0, 0});
}

} // namespace
} // namespace vesk::nodes
