#include "nodes/tensionBlendShape/tensionBlend.h"

#include "tests/api_access.h"
#include "tests/session_fixture.h"

#include <maya/MColorArray.h>
#include <maya/MFnMesh.h>
#include <maya/MPointArray.h>
#include <maya/MStringArray.h>

#include <limits>

namespace vesk::nodes {
namespace {

TEST(TensionBlend, ShortAndBrokenDataStaysInItsPlace) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const MPoint points[] = {{0, 0, 0}, {nan, 0, 0}, {2, 0, 0}}, target[] = {{0, 5, 0}, {0, 5, 0}};
    const float nanLength = std::numeric_limits<float>::quiet_NaN();
    const float lengths[] = {1.5F, nanLength, 2}, bound[] = {1, 1};
    const BlendSource source{points, {}, lengths, bound};
    const BlendSide side{.multiplier = 1, .limit = {}, .target = target, .color = MColor(1, 0.5F, 0)};
    const Blended tension = blendByTension(source, side, side);
    EXPECT_EQ(tension.points[0], MPoint(0, 2.5, 0));
    EXPECT_EQ(tension.points[2], points[2]) << "the target has no such point";
    EXPECT_EQ(tension.stretch, (std::vector<float>{0.5F, 0, 1})) << "without bind data all is stretch";
    EXPECT_EQ(tension.stretchColors[0], MColor(0.5F, 0.25F, 0, 1));
    EXPECT_TRUE(tension.coloredVertices.empty());
    const Blended distance = blendByDistance(source, side);
    EXPECT_EQ(distance.stretch, (std::vector<float>{0, 0, 1}));
    EXPECT_TRUE(std::isnan(distance.points[1].x));
    EXPECT_EQ(meanEdgeLengths({}, points), (std::vector<float>{0, 0, 0}));
}

class TensionBlendShape : public tests::PluginTest {
  protected:
    /// A square of four vertices, one unit wide, with a target one unit above it at either input.
    void SetUp() override {
        PluginTest::SetUp();
        run("polyPlane -ch 0 -w 1 -h 1 -sx 1 -sy 1 -n p; duplicate -n above p; move -r 0 1 0 above.vtx[0:3];"
            "duplicate -n below p; move -r 0 -1 0 below.vtx[0:3]; deformer -type tensionBlendShape -n d p;"
            "connectAttr aboveShape.outMesh d.inStretchMesh; connectAttr belowShape.outMesh "
            "d.inCompressionMesh;");
    }
    /// Moves the points of the undeformed square.
    void widen(double by) {
        run("move -r " + std::to_string(by) + " 0 0 pShapeOrig.vtx[1] pShapeOrig.vtx[3]");
    }
    double height(const std::string& point) {
        return run("pointPosition -l " + point).asFloatArray().read()[1];
    }
    double height(int vertex) { return height("p.vtx[" + std::to_string(vertex) + "]"); }
    std::vector<float> color(int vertex, const char* set = nullptr) {
        MColorArray colors;
        const MString name = set ? set : "";
        EXPECT_TRUE(MFnMesh(tests::plugNamed("pShape.outMesh").asMObject())
                        .getVertexColors(colors, set ? &name : nullptr));
        const MColor& c = colors[static_cast<unsigned>(vertex)];
        return {c.r, c.g, c.b, c.a};
    }
    using Color = std::vector<float>;
};

TEST_F(TensionBlendShape, AtItsBindPoseNothingHappens) {
    EXPECT_EQ(mel("getAttr pShape.displayColors"), "1");
    EXPECT_EQ(floats("d.originEdgeLength"), (std::vector<double>{1, 1, 1, 1}));
    expectNear(floats("d.origPoints[3]"), {0.5, 0, -0.5});
    EXPECT_EQ(height(0), 0);
    EXPECT_EQ(color(0, "stretch"), (Color{0, 0, 0, 1}));
    EXPECT_EQ(floats("d.stretchOutputArray"), (std::vector<double>{0, 0, 0, 0}));
    EXPECT_EQ(floats("d.compressionOutputArray"), (std::vector<double>{0, 0, 0, 0}));
}

TEST_F(TensionBlendShape, LongerAndShorterEdgesBlendAndPaint) {
    widen(1); // edges of two and one: half a unit too long in the mean
    EXPECT_NEAR(height(0), 0.5, 1e-6);
    EXPECT_EQ(color(0, "stretch"), (Color{0.5F, 0, 0, 1}));
    run("setAttr d.stretchMultiply 6; setAttr d.stretchLimitON 1; setAttr d.stretchLimit 0.5");
    EXPECT_NEAR(height(0), 0.5, 1e-6) << "the blend ends";
    EXPECT_EQ(color(0, "stretch"), (Color{1, 0, 0, 1})) << "the colour goes on to 1";
    expectNear(floats("d.stretchOutputArray"), {1, 1, 1, 1});
    run("setAttr d.stretchLimitON 0");
    EXPECT_NEAR(height(0), 3, 1e-6);
    widen(-1.5); // edges of a half and one: a quarter too short
    EXPECT_NEAR(height(0), -0.25, 1e-6);
    EXPECT_EQ(color(0), (Color{0, 0.25F, 0, 1}));
    EXPECT_EQ(color(0, "stretch"), (Color{0, 0, 0, 1}));
    expectNear(floats("d.compressionOutputArray"), {0.25, 0.25, 0.25, 0.25});
    EXPECT_EQ(floats("d.stretchOutputArray"), (std::vector<double>{0, 0, 0, 0}));
    run("setAttr d.compressionLimitON 1; setAttr d.compressionLimit 0.125");
    EXPECT_NEAR(height(0), -0.125, 1e-6);
    run("setAttr d.overallMultiply 0");
    EXPECT_EQ(height(0), 0);
}

TEST_F(TensionBlendShape, DistanceTakesThePlaceOfThePoint) {
    run("setAttr d.Mode 1; move -r 0.25 0 0 pShapeOrig.vtx[1]; setAttr d.overallMultiply 2;");
    EXPECT_NEAR(height(1), 0.5, 1e-6);
    EXPECT_EQ(height(0), 0);
    EXPECT_EQ(color(1), (Color{0.5F, 0, 0, 1}));
    EXPECT_EQ(color(0), (Color{0, 0, 0, 1}));
    expectNear(floats("d.stretchOutputArray"), {0, 0.5, 0, 0});
    EXPECT_EQ(mel("getAttr -size d.compressionOutputArray"), "0");
    run("setAttr d.stretchLimitON 1; setAttr d.stretchLimit 0.25");
    EXPECT_NEAR(height(1), 0.25, 1e-6);
}

TEST_F(TensionBlendShape, ArraysFollowTheGeometryThatComesIn) {
    EXPECT_EQ(floats("d.stretchOutputArray"), (std::vector<double>{0, 0, 0, 0}));
    widen(1);
    expectNear(floats("d.stretchOutputArray"), {0.5, 0.5, 0.5, 0.5});
    widen(-1);
    EXPECT_EQ(mel("getAttr d.stretchOutputArray[2]"), "0");
    run("connectAttr d.stretchOutputArray[2] above.scaleX");
    widen(0.5);
    EXPECT_NEAR(run("getAttr above.scaleX").asFloat(), 0.25, 1e-6);
}

TEST_F(TensionBlendShape, WithoutShapesThereAreColoursAndArrays) {
    run("polyPlane -ch 0 -w 1 -h 1 -sx 1 -sy 1 -n alone; deformer -type tensionBlendShape -n e alone;"
        "move -r 1 0 0 aloneShapeOrig.vtx[1] aloneShapeOrig.vtx[3];");
    expectNear(floats("e.stretchOutputArray"), {0.5, 0.5, 0.5, 0.5});
    EXPECT_EQ(height("alone.vtx[0]"), 0);
    run("setAttr e.Mode 1");
    expectNear(floats("e.stretchOutputArray"), {0, 1, 0, 1});
    EXPECT_EQ(height("alone.vtx[1]"), 0);
}

TEST_F(TensionBlendShape, TheStateAndTheEnvelopeAreNotAsked) {
    widen(1);
    run("setAttr d.envelope 0; setAttr d.nodeState 1");
    EXPECT_NEAR(height(0), 0.5, 1e-6);
    run("setAttr above.translateX 3");
    EXPECT_NEAR(height(0), 0.5, 1e-6) << "shapes count in their own space";
}

TEST_F(TensionBlendShape, BindDataIsSavedAndBoundByConnectingAlone) {
    widen(1);
    run("setAttr d.compressionMultiply 2");
    const std::string file = (folder / "d.ma").string();
    run("file -rename \"" + file + "\"; file -save; file -f -new; file -o \"" + file + "\"");
    EXPECT_EQ(floats("d.originEdgeLength"), (std::vector<double>{1, 1, 1, 1})) << "not those of now";
    EXPECT_NEAR(height(0), 0.5, 1e-6);
    const std::string source = mel("connectionInfo -sfd d.input[0].inputGeometry");
    run("disconnectAttr " + source + " d.input[0].inputGeometry; connectAttr " + source +
        " d.input[0].inputGeometry");
    EXPECT_EQ(floats("d.originEdgeLength"), (std::vector<double>{1.5, 1.5, 1.5, 1.5}));
    EXPECT_EQ(height(0), 0);
    expectNear(floats("d.origPoints[1]"), {1.5, 0, 0.5});
}

TEST_F(TensionBlendShape, InputsMayGoAndTargetsMayBeShort) {
    widen(1);
    run("polyPlane -ch 0 -w 1 -h 1 -sx 2 -sy 2 -n big; deformer -type tensionBlendShape -n e big;"
        "connectAttr aboveShape.outMesh e.inStretchMesh; move -r 2 0 0 bigShapeOrig.vtx[2] "
        "bigShapeOrig.vtx[5] bigShapeOrig.vtx[8];");
    EXPECT_GT(height("big.vtx[2]"), 0.5);
    EXPECT_EQ(height("big.vtx[5]"), 0) << "beyond the four of the target";
    run("setKeyframe -t 1 -v 1 d.stretchMultiply; setKeyframe -t 2 -v 3 d.stretchMultiply; currentTime 2");
    EXPECT_NEAR(height(0), 1.5, 1e-6);
    run("delete above");
    EXPECT_NEAR(height(0), 1.5, 1e-6) << "what was last seen of the shape stays";
    run("disconnectAttr `connectionInfo -sfd d.input[0].inputGeometry` d.input[0].inputGeometry; currentTime "
        "1");
    EXPECT_EQ(tests::plugNamed("d.outputGeometry[0]").asMObject().apiType(), MFn::kInvalid);
    EXPECT_EQ(mel("getAttr -size d.originEdgeLength"), "4") << "still bound";
}

} // namespace
} // namespace vesk::nodes
