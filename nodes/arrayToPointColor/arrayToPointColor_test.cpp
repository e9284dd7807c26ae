#include "nodes/arrayToPointColor/pointColors.h"
#include "tests/api_access.h"
#include "tests/session_fixture.h"

#include <maya/MFnMesh.h>

#include <cmath>

namespace vesk::nodes {
namespace {

class ArrayToPointColor : public tests::PluginTest {
  protected:
    void SetUp() override {
        PluginTest::SetUp();
        run("polyPlane -ch 0 -sx 1 -sy 1 -n plane; polyColorPerVertex -rgb 0 0 1 -a 0.5 plane.vtx[0:3];"
            "createNode arrayToPointColor -n p; connectAttr planeShape.worldMesh[0] p.inGeometry;");
    }
    void set(const std::string& array) { run("setAttr p.inRgbaPP -type " + array); }
    /// r, g, b, a of a point of the output.
    static std::vector<double> color(unsigned point, const char* plug = "p.outGeometry") {
        MColorArray colors;
        MFnMesh(tests::plugNamed(plug).asMObject()).getVertexColors(colors);
        const MColor c = colors[point];
        return {static_cast<double>(c.r), static_cast<double>(c.g), static_cast<double>(c.b),
                static_cast<double>(c.a)};
    }
    const std::vector<double> own = {0, 0, 1, 0.5};
};

TEST_F(ArrayToPointColor, EveryFormOfTheArray) {
    set("doubleArray 16 0 0 0 0  0.5 0.25 0.125 0.75  2 -1 0 3  1 1 1 1");
    expectNear(color(1), {0.5, 0.25, 0.125, 0.75});
    expectNear(color(2), {2, -1, 0, 3});
    run("setAttr p.clamp 1");
    expectNear(color(2), {1, 0, 0, 1});
    run("setAttr p.solidAlpha 1");
    expectNear(color(1), {0.5, 0.25, 0.125, 1});
    set("doubleArray 4 0 0.25 5 1");
    expectNear(color(1), {0.25, 0.25, 0.25, 1});
    expectNear(color(2), {1, 1, 1, 1});
    run("setAttr p.solidAlpha 0; setAttr p.clampMin 0.5;");
    expectNear(color(1), {0.5, 0.5, 0.5, 0.5});
    set("vectorArray 4 0 0 0 0.25 0.75 2 0 0 0 0 0 0");
    expectNear(color(1), {0.5, 0.75, 1, 0});
    set("pointArray 4 0 0 0 9 0.25 0.75 2 9 0 0 0 9 0 0 0 9");
    expectNear(color(1), {0.5, 0.75, 1, 0});
    run("setAttr p.solidAlpha 1");
    expectNear(color(1), {0.5, 0.75, 1, 1});
    expectNear(color(1, "planeShape.outMesh"), own);
}

TEST_F(ArrayToPointColor, LengthsThatDoNotFitLeaveTheColours) {
    const Texts mismatch = {"warning: p: inRgbaPP array length does not match the point count."};
    for (const char* array : {"doubleArray 12 0 0 0 0 0 0 0 0 0 0 0 0", "doubleArray 5 1 1 1 1 1",
                              "vectorArray 1 1 1 1", "pointArray 1 1 1 1 1", "doubleArray 0"}) {
        set(array);
        expectNear(color(3), own);
        EXPECT_EQ(complaints(), mismatch) << array;
    }
    run("createNode arrayToPointColor -n bare; connectAttr planeShape.outMesh bare.inGeometry;");
    expectNear(color(3, "bare.outGeometry"), own);
    run("createNode arrayToPointColor -n loose");
    EXPECT_TRUE(tests::plugNamed("loose.outGeometry").asMObject().isNull());
}

TEST_F(ArrayToPointColor, SelectedPointsAlone) {
    set("doubleArray 4 1 1 1 1");
    const auto changed = [&] {
        std::string points;
        for (unsigned i = 0; i < 4; ++i) {
            if (color(i) != own) points += std::to_string(i);
        }
        return points;
    };
    EXPECT_EQ(changed(), "0123");
    run("setAttr p.useComponents 1");
    EXPECT_EQ(changed(), "") << "no list";
    run("setAttr p.inComponents -type componentList 2 \"vtx[1:2]\" \"f[0]\";");
    EXPECT_EQ(changed(), "12");
    run("setAttr p.inComponents -type componentList 1 \"f[0]\"");
    EXPECT_EQ(changed(), "");
    run("setAttr p.useComponents 2");
    EXPECT_EQ(changed(), "") << "no group";
    run("createNode groupParts -n parts; setAttr parts.groupId 5; setAttr parts.inputComponents -type "
        "componentList 1 \"vtx[3]\"; connectAttr planeShape.outMesh parts.inputGeometry;"
        "connectAttr -f parts.outputGeometry p.inGeometry; setAttr p.groupId 5;");
    EXPECT_EQ(changed(), "3");
    run("setAttr p.groupId 6");
    EXPECT_EQ(changed(), "");
}

TEST_F(ArrayToPointColor, StatesAndEnvelope) {
    set("doubleArray 4 1 1 1 1");
    run("setAttr p.envelope 0");
    expectNear(color(0), own);
    run("setAttr p.envelope 1");
    expectNear(color(0), {1, 1, 1, 1});
    run("setAttr p.nodeState 1");
    expectNear(color(0), own);
    run("setAttr p.nodeState 2; setAttr p.inRgbaPP -type doubleArray 4 0 0 0 0;");
    expectNear(color(0), own);
}

TEST(PointColors, OnePointAndOddNumbers) {
    const std::vector<double> values = {0.1, 0.2, NAN, INFINITY};
    const auto of = [&](std::size_t length, std::size_t points, const ColorSettings& settings) {
        return colorsOf(std::span<const double>(values).first(length), std::vector<char>(points, 1),
                        settings);
    };
    ASSERT_TRUE(fitsPoints(std::span<const double>(values), 1));
    const PointColors one = of(4, 1, {});
    EXPECT_EQ(one.colors[0].r, 0.1F);
    EXPECT_TRUE(std::isnan(one.colors[0].b));
    const PointColors four = of(4, 4, {.clamp = true, .clampMin = 0.15, .clampMax = 0.05});
    EXPECT_EQ(four.colors[0].r, 0.15F) << "below the lower limit, whatever the upper";
    EXPECT_EQ(four.colors[1].r, 0.05F);
    EXPECT_TRUE(std::isnan(four.colors[2].r));
    EXPECT_EQ(four.colors[3].r, 0.05F);
    EXPECT_EQ(of(0, 0, {}).points.length(), 0U);
    EXPECT_FALSE(fitsPoints(std::span<const double>(values).first(3), 1));
}

} // namespace
} // namespace vesk::nodes
