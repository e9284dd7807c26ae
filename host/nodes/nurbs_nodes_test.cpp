// Curves and surfaces: shapes, the ribbon that is built along a curve, the creators.

#include "host/data/mesh_data.h"
#include "host/data/nurbs_data.h"
#include "host/nodes/shape_node.h"
#include "host/nodes/test_scene.h"

namespace vesk::nodes {
namespace {

class NurbsNodesTest : public NodesTest {
  protected:
    /// Cubic, clamped, two spans: a zigzag in the xy plane.
    static Ref<NurbsCurveData> zigzag() {
        auto curve = geom::NurbsCurve::create(geom::NurbsBasis::clamped(3, 2),
                                              {{0, 0, 0}, {1, 1, 0}, {2, 0, 0}, {3, 1, 0}, {4, 0, 0}});
        EXPECT_TRUE(curve);
        return makeRef<NurbsCurveData>(*curve);
    }
    std::vector<MPoint> cvs(const std::string& plug) {
        return getData<NurbsCurveData>(plug)->geometry().cvs();
    }
    /// curve -> rebuildCurve -> extrude -> nurbsTessellate, set as for a ribbon.
    void chain(const std::string& source) {
        make("rebuildCurve", "r"), make("extrude", "e"), make("nurbsTessellate", "t");
        set("r.rebuildType", 3), set("r.endKnots", 1);
        set("e.extrudeType", 0);
        set("t.polygonType", 1), set("t.format", 3), set("t.matchNormalDir", 1);
        connect(source, "r.inputCurve");
        connect("r.outputCurve", "e.profile");
        connect("e.outputSurface", "t.inputSurface");
    }
};

TEST_F(NurbsNodesTest, CurveShapesKeepTheirCurveAndAddTweaks) {
    Node& transform = make("transform", "t");
    make("nurbsCurve", "c", &transform);
    setData("c.cc", zigzag());
    EXPECT_EQ(get("c.degree"), 3);
    EXPECT_EQ(get("c.spans"), 2);
    EXPECT_EQ(get("c.form"), 0);
    EXPECT_EQ(get("c.maxValue"), 2);
    set("c.cp[3].yv", 4);
    set("c.cp[9].xv", 4);
    EXPECT_TRUE(isNear(cvs("c.l")[3], MPoint(3, 5, 0)));
    set("t.tx", 10);
    EXPECT_TRUE(isNear(MPoint() * getData<NurbsCurveData>("c.ws[0]")->matrix(), MPoint(10, 0, 0)));
    make("nurbsCurve", "d");
    connect("c.ws[0]", "d.create");
    EXPECT_TRUE(isNear(cvs("d.local")[3], MPoint(3, 5, 0))) << "object space";
    scene->remove(at("c.cc").node);
    EXPECT_TRUE(isNear(cvs("d.local")[3], MPoint(3, 5, 0)));
    EXPECT_TRUE(
        dynamic_cast<GeometryShapeNode&>(at("d.l").node).ownBounds().max().isEquivalent(MPoint(4, 5, 0)));
}

TEST_F(NurbsNodesTest, ARibbonFollowsTheCurveInWorldSpace) {
    Node& transform = make("transform", "top");
    make("nurbsCurve", "c", &transform);
    setData("c.cc", zigzag());
    set("top.tz", 7);
    chain("c.ws[0]");
    set("e.length", 2);
    set("e.direction", {0, 3, 0});
    make("mesh", "ribbon");
    connect("t.outputPolygon", "ribbon.i");
    const auto mesh = getData<MeshData>("ribbon.o")->geometry();
    ASSERT_EQ(mesh.vertexCount(), 10);
    ASSERT_EQ(mesh.faceCount(), 4);
    for (int i = 0; i < 5; ++i) {
        const MVector cv(i, i % 2, 7);
        EXPECT_TRUE(isNear(mesh.point(2 * i), cv)) << i;
        EXPECT_TRUE(isNear(mesh.point(2 * i + 1), cv + MVector(0, 2, 0))) << i;
    }
    // The curve runs along x, the ribbon goes up: normals look along x ^ y.
    EXPECT_TRUE(isNear(mesh.faceNormals()[0], MVector(0, 0, 1)));
    EXPECT_FALSE(getData<MeshData>("ribbon.o")->hasMatrix());
    set("t.matchNormalDir", 0);
    EXPECT_TRUE(isNear(getData<MeshData>("t.op")->geometry().faceNormals()[0], MVector(0, 0, -1)));
    set("top.tz", 8);
    EXPECT_EQ(getData<MeshData>("t.op")->geometry().point(0).z, 8);
    set("t.polygonType", 0);
    EXPECT_EQ(getData<MeshData>("t.op")->geometry().faceCount(), 8);
    // The profile lies in the xy plane, so its normal is along z; local space has no matrix.
    set("e.upn", 1);
    ASSERT_TRUE(graph::connect(at("c.l"), at("r.ic"), true));
    const auto flat = getData<MeshData>("t.op")->geometry();
    EXPECT_EQ(flat.point(2).z, 0);
    EXPECT_TRUE(isNear(MVector(0, 0, std::abs(flat.point(3).z)), MVector(0, 0, 2)));
    EXPECT_EQ(flat.point(3).y, 1);
}

TEST_F(NurbsNodesTest, WhatTheOperatorsDoNotDoIsAnError) {
    make("nurbsCurve", "c");
    chain("c.l");
    EXPECT_FALSE(getData<MeshData>("t.op")) << "nothing comes of nothing, and nobody complains";
    setData("c.cc", zigzag());
    EXPECT_TRUE(getData<MeshData>("t.op"));
    set("t.format", 1);
    EXPECT_FALSE(getData<MeshData>("t.op"));
    set("e.extrudeType", 2);
    EXPECT_FALSE(getData<NurbsSurfaceData>("e.os"));
    set("r.rebuildType", 4);
    EXPECT_FALSE(getData<NurbsCurveData>("r.oc"));
    const auto said = messages();
    ASSERT_EQ(said.size(), 3U);
    EXPECT_EQ(said[0], "'t': only format 3 (control points) is supported.");
    EXPECT_EQ(said[1], "'e': only extrudeType 0 (distance) is supported.");
    EXPECT_TRUE(said[2].starts_with("'r': ")) << said[2];
}

TEST_F(NurbsNodesTest, SurfaceShapesTessellateWithTheirTweaks) {
    Node& transform = make("transform", "top");
    make("nurbsSurface", "s", &transform);
    make("makeNurbPlane", "plane");
    set("plane.axis", {0, 0, 1}), set("plane.degree", 1);
    connect("plane.os", "s.create");
    set("s.controlPoints[3].zValue", 5);
    set("top.sx", 10);
    make("nurbsTessellate", "t");
    set("t.format", 3), set("t.polygonType", 1), set("t.mnd", 1);
    connect("s.ws[0]", "t.is");
    const auto mesh = getData<MeshData>("t.op")->geometry();
    ASSERT_EQ(mesh.vertexCount(), 4);
    // CVs with v fastest: (-.5,-.5) (-.5,.5) (.5,-.5) (.5,.5); x is scaled, the last one was lifted.
    EXPECT_TRUE(isNear(mesh.point(1), MVector(-5, 0.5, 0)));
    EXPECT_TRUE(isNear(mesh.point(3), MVector(5, 0.5, 5)));
    EXPECT_GT(mesh.faceNormals()[0].z, 0.0F);
    scene->remove(at("plane.os").node);
    EXPECT_EQ(get("s.degreeU"), 1);
    EXPECT_EQ(getData<MeshData>("t.op")->geometry().point(3).z, 5) << "tweaks are not added twice";
}

TEST_F(NurbsNodesTest, CreatorsTakeTheirAttributes) {
    make("makeNurbCircle", "circle");
    const auto circle = getData<NurbsCurveData>("circle.oc")->geometry();
    EXPECT_EQ(circle.cvCount(), 11);
    EXPECT_EQ(circle.form(), geom::NurbsForm::Periodic);
    set("circle.radius", 3), set("circle.center", {0, 0, 5}), set("circle.sections", 4);
    EXPECT_TRUE(isNear(getData<NurbsCurveData>("circle.oc")->geometry().pointAt(0), MPoint(0, 3, 5)));
    EXPECT_EQ(cvs("circle.oc").size(), 7U);
    make("makeNurbPlane", "plane");
    set("plane.axis", {0, 0, 1}), set("plane.width", 4), set("plane.lengthRatio", 0.5);
    set("plane.degree", 1), set("plane.patchesU", 2);
    const auto plane = getData<NurbsSurfaceData>("plane.os")->geometry();
    EXPECT_EQ(plane.cvCountU(), 3);
    EXPECT_EQ(plane.cvCountV(), 2);
    EXPECT_TRUE(isNear(plane.pointAt(1, 1) - plane.pointAt(0, 0), MVector(4, 2, 0)));
    make("makeNurbSphere", "sphere");
    set("sphere.pivot", {1, 0, 0}), set("sphere.radius", 2), set("sphere.nsp", 6);
    make("nurbsSurface", "s");
    connect("sphere.os", "s.cr");
    EXPECT_EQ(get("s.spansU"), 6);
    EXPECT_EQ(get("s.formV"), 2);
    // The lower pole lies a radius down the axis, which is x.
    EXPECT_TRUE(isNear(getData<NurbsSurfaceData>("s.l")->geometry().cvs()[0], MPoint(-1, 0, 0)));
    set("circle.degree", 2);
    EXPECT_FALSE(getData<NurbsCurveData>("circle.oc"));
    EXPECT_EQ(messages().size(), 1U);
}

} // namespace
} // namespace vesk::nodes
