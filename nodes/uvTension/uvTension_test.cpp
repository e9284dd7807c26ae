#include "nodes/uvTension/layoutTension.h"

#include "tests/api_access.h"
#include "tests/session_fixture.h"

#include <maya/MColorArray.h>
#include <maya/MFnMesh.h>

#include <cmath>
#include <limits>

namespace vesk::nodes {
namespace {

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kEver = std::numeric_limits<double>::infinity();

/// Two unit squares side by side along x, vertices 0 1 2 below and 3 4 5 above, each with its own four UVs.
struct TwoSquares {
    std::vector<MPoint> points{{0, 0, 0}, {1, 0, 0}, {2, 0, 0}, {0, 1, 0}, {1, 1, 0}, {2, 1, 0}};
    std::vector<float> us, vs;
    std::vector<int> counts{4, 4}, vertices{0, 1, 4, 3, 1, 2, 5, 4}, uvs{0, 1, 2, 3, 4, 5, 6, 7};

    /// Gives the next square a rectangle of UVs.
    TwoSquares& map(float width, float height) {
        for (const auto& [u, v] : {std::pair(0.0F, 0.0F), {width, 0.0F}, {width, height}, {0.0F, height}}) {
            us.push_back(u);
            vs.push_back(v);
        }
        return *this;
    }
    std::vector<double> tension(LayoutMeasure measure) const {
        return layoutTension({points, us, vs, counts, vertices, uvs}, measure);
    }
};

TEST(LayoutTension, SharesOfAreaAndLengthAreCompared) {
    EXPECT_EQ(TwoSquares().map(0.1F, 0.1F).map(-0.1F, 0.1F).tension(LayoutMeasure::Area),
              std::vector<double>(6, 0))
        << "neither size nor side of the layout counts";
    // Areas 3 and 1: half of the surface has three quarters of the layout, and a quarter.
    const auto area = TwoSquares().map(3, 1).map(1, 1).tension(LayoutMeasure::Area);
    EXPECT_NEAR(area[0], std::log2(0.5 / 0.75), 1e-12);
    EXPECT_NEAR(area[1], 0, 1e-12) << "half of each";
    EXPECT_NEAR(area[2], 1, 1e-12);
    // At each corner edges of 2 on the surface, of 4 and 2 in the layout.
    const auto length = TwoSquares().map(3, 1).map(1, 1).tension(LayoutMeasure::EdgeLength);
    EXPECT_NEAR(length[0], std::log2(0.5 / (4.0 / 6)), 1e-12);
    EXPECT_NEAR(length[5], std::log2(0.5 / (2.0 / 6)), 1e-12);
}

TEST(LayoutTension, WhatIsMissingSpoilsItsOwnVerticesAlone) {
    auto unmapped = TwoSquares().map(1, 1).map(1, 1);
    unmapped.uvs[5] = -1;
    const auto half = unmapped.tension(LayoutMeasure::Area);
    EXPECT_EQ(half[0], 0) << "only mapped faces count";
    EXPECT_TRUE(std::isnan(half[2]));
    const auto flat = TwoSquares().map(1, 1).map(1, 0).tension(LayoutMeasure::Area);
    EXPECT_EQ(flat[2], kEver);
    auto thin = TwoSquares().map(1, 1).map(1, 1);
    thin.points[2] = thin.points[1];
    thin.points[5] = thin.points[4];
    EXPECT_EQ(thin.tension(LayoutMeasure::Area)[2], -kEver);
    auto broken = TwoSquares().map(1, 1).map(1, 1);
    broken.points[2].y = kNan;
    const auto left = broken.tension(LayoutMeasure::Area);
    EXPECT_EQ(left[0], 0);
    EXPECT_TRUE(std::isnan(left[5]));
    EXPECT_TRUE(layoutTension({}, LayoutMeasure::Area).empty());
}

class UvTension : public tests::PluginTest {
  protected:
    /// Two faces of a plane between a creator and its shape; the right one has twice the width of the left.
    void SetUp() override {
        PluginTest::SetUp();
        run("polyPlane -w 2 -h 1 -sx 2 -sy 1 -n p; createNode uvTension -n t; connectAttr polyPlane1.output "
            "t.inMesh;"
            "connectAttr -f t.outMesh pShape.inMesh;");
    }
    std::vector<float> color(unsigned vertex) const {
        MColorArray colors;
        MFnMesh(tests::plugNamed("pShape.outMesh").asMObject()).getVertexColors(colors);
        if (vertex >= colors.length()) return {};
        return {colors[vertex].r, colors[vertex].g, colors[vertex].b, colors[vertex].a};
    }
    using Color = std::vector<float>;
};

TEST_F(UvTension, ColoursShowWhereTheLayoutDiffers) {
    EXPECT_EQ(color(2), (Color{1, 1, 1, 1}));
    // The layout of the plane on a shape that is moved below: the right face gets three quarters of the
    // surface.
    run("createNode mesh -n q; connectAttr polyPlane1.output q.inMesh; setAttr q.pnts[2] 2 0 0; setAttr "
        "q.pnts[5] 2 0 0;"
        "connectAttr -f q.outMesh t.inMesh;");
    const auto right = static_cast<float>(1 - std::log2(1.5));
    EXPECT_NEAR(color(2)[0], 1, 1e-6);
    EXPECT_NEAR(color(2)[1], right, 1e-6);
    EXPECT_EQ(color(0), (Color{0, 0, 1, 1})) << "a quarter for a half";
    run("setAttr t.multiplier 0.5; setAttr t.compressionColor 0 1 0; setAttr t.defaultColor 0 0 0");
    EXPECT_NEAR(color(0)[1], 0.5, 1e-6);
    run("setAttr t.mode 1");
    // Corners with edges of 3 and 1, or 1 and 1, for 0.5 and 1 in the layout: shares 4 and 2 of 6.
    EXPECT_NEAR(color(2)[0], 0.5 * std::log2((4.0 / 6) / 0.5), 1e-6);
    run("setAttr t.multiplier 0");
    EXPECT_EQ(color(0), (Color{0, 0, 0, 1}));
}

TEST_F(UvTension, PassesWhatItCannotJudge) {
    run("setAttr -type \"string\" t.uvSet \"other\"");
    EXPECT_TRUE(color(0).empty());
    EXPECT_EQ(complaints(), Texts{"warning: t: Cannot find uvSet named \"other\"."});
    run("setAttr -type \"string\" t.uvSet \"\"; setAttr t.envelope 0");
    EXPECT_TRUE(color(0).empty());
    run("setAttr t.envelope 1; setAttr t.nodeState 1");
    EXPECT_TRUE(color(0).empty());
    run("setAttr t.nodeState 0");
    EXPECT_EQ(color(0), (Color{1, 1, 1, 1}));
    // A mesh without UVs, then none at all.
    run("createNode mesh -n bare; setAttr -type mesh bare.inMesh v 3 0 0 0 1 0 0 0 1 0 e 3 0 1 smooth 1 2 "
        "smooth 2 0 smooth "
        "f 3 0 1 2; connectAttr -f bare.outMesh t.inMesh;");
    EXPECT_TRUE(color(0).empty());
    EXPECT_EQ(complaints(), Texts{"warning: t: inMesh has no UVs to compare with."});
    run("setAttr t.nodeState 2; connectAttr -f polyPlane1.output t.inMesh");
    EXPECT_TRUE(color(0).empty()) << "blocking";
    run("connectAttr -f bare.outMesh t.inMesh; setAttr t.nodeState 0");
    run("delete bare");
    EXPECT_EQ(tests::plugNamed("t.outMesh").asMObject().apiType(), MFn::kInvalid);
}

} // namespace
} // namespace vesk::nodes
