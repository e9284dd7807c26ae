#include "nodes/pointCloudToCurve/curveThrough.h"
#include "tests/session_fixture.h"

#include <maya/MFnNurbsCurve.h>

#include <cmath>

namespace vesk::nodes {
namespace {

class PointCloudToCurve : public tests::PluginTest {
  protected:
    void SetUp() override {
        PluginTest::SetUp();
        run("createNode pointCloudToCurve -n c; createNode nurbsCurve -n line; connectAttr c.outCurve "
            "line.create;"
            "createNode pointAttributeToArray -n p; connectAttr line.worldSpace[0] p.inGeometry; setAttr "
            "p.pointPosition 1;");
    }
};

TEST_F(PointCloudToCurve, TheCvsAreThePoints) {
    run("setAttr c.inArray -type \"vectorArray\" 5 0 0 0 1 2 0 3 2 0 4 0 0 5 1 0");
    EXPECT_EQ(run("getAttr line.degree").asInt(), 3);
    EXPECT_EQ(run("getAttr line.spans").asInt(), 2);
    expectNear(floats("p.outPositionPP"), {0, 0, 0, 1, 2, 0, 3, 2, 0, 4, 0, 0, 5, 1, 0});
    run("setAttr c.degree 1");
    EXPECT_EQ(run("getAttr line.spans").asInt(), 4);
    run("setAttr c.degree 7");
    EXPECT_EQ(run("getAttr line.degree").asInt(), 4) << "below the number of points";
    run("setAttr c.degree 2; setAttr c.close 1;");
    EXPECT_EQ(run("getAttr line.form").asInt(), 2);
    EXPECT_EQ(run("getAttr line.spans").asInt(), 5);
    run("setAttr c.close 0; setAttr c.inArray -type \"pointArray\" 2 1 2 3 9 4 5 6 9");
    EXPECT_EQ(run("getAttr line.degree").asInt(), 1);
    expectNear(floats("p.outPositionPP"), {1, 2, 3, 4, 5, 6});
}

TEST_F(PointCloudToCurve, FewerThanTwoPointsAreNoCurve) {
    for (const char* points : {"0", "1 5 5 5"}) {
        run("setAttr c.inArray -type \"vectorArray\" " + std::string(points));
        EXPECT_TRUE(floats("p.outPositionPP").empty());
    }
    run("setAttr c.inArray -type \"vectorArray\" 2 0 0 0 1 0 0");
    EXPECT_EQ(floats("p.outPositionPP").size(), 6U);
    run("setAttr c.nodeState 2; setAttr c.inArray -type \"vectorArray\" 3 0 0 0 1 0 0 2 0 0;");
    EXPECT_EQ(floats("p.outPositionPP").size(), 6U);
    run("createNode splitRgba -n s");
    const auto refused = session->run("connectAttr s.outArray c.inArray");
    EXPECT_FALSE(refused.ok);
    EXPECT_NE(refused.error.find("c.inArray"), std::string::npos) << refused.error;
    (void)complaints();
}

TEST(CurveThrough, KnotsAndForms) {
    EXPECT_EQ(knotsFor(5, 3, false), (std::vector<double>{0, 0, 0, 1, 2, 2, 2}));
    EXPECT_EQ(knotsFor(2, 1, false), (std::vector<double>{0, 1}));
    EXPECT_EQ(knotsFor(4, 2, true), (std::vector<double>{-1, 0, 1, 2, 3, 4, 5}));
    EXPECT_EQ(degreeFor(100, 0), kLowestDegree);
    EXPECT_EQ(degreeFor(100, 8), kHighestDegree);
    const std::vector<MVector> square = {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, std::nan(""), 0}};
    const MObject closed = curveThrough(square, 1, true);
    const MFnNurbsCurve curve(closed);
    EXPECT_EQ(curve.form(), MFnNurbsCurve::kPeriodic);
    EXPECT_EQ(curve.numCVs(), 5);
    MPoint point;
    EXPECT_TRUE(curve.getPointAtParam(1.5, point));
    EXPECT_TRUE(point.isEquivalent(MPoint(1, 0.5, 0), 1e-12)) << "what is no number stays with its point";
}

} // namespace
} // namespace vesk::nodes
