#include "nodes/retarget/carry.h"
#include "parallel/loops.h"
#include "tests/session_fixture.h"

#include <maya/MFnMesh.h>
#include <maya/MFnNurbsCurve.h>
#include <maya/MPlug.h>
#include <maya/MPointArray.h>
#include <maya/MSelectionList.h>

#include <cmath>
#include <limits>

namespace vesk::nodes {
namespace {

using Doubles = std::vector<double>;
using Ints = std::vector<int>;

TEST(CarryPoints, KeepTheirPlaceInTheTrianglesFrame) {
    // From a right angle to one of 45 degrees: along a to c, along a to b, and below the triangle, as y is
    // before x.
    const TriangleFrame from{{MVector(0, 0, 0), MVector(2, 0, 0), MVector(0, 3, 0)}, {0.5, 0.5, 0}};
    const TriangleFrame to{{MVector(0, 0, 0), MVector(5, 0, 0), MVector(3, 3, 0)}, {10, 0, 1}};
    const double s = std::sqrt(0.5);
    const MVector p(1, 2, 2), expected(10 + 1.5 * s + 0.5, 1.5 * s, 3);
    EXPECT_TRUE(carried(p, from, to).isEquivalent(expected, 1e-12));
    EXPECT_TRUE(carried(p, to, to).isEquivalent(p, 1e-12));
    EXPECT_TRUE(carried(expected, to, from).isEquivalent(p, 1e-12));
    // Without area it goes as the origin does.
    const TriangleFrame line{{MVector(0.1, 0.2, 0.3), MVector(1, 2, 3), MVector(0.7, 1.4, 2.1)}, {1, 1, 1}};
    EXPECT_EQ(carried(p, line, to), MVector(10, 1, 2));
    EXPECT_EQ(carried(p, to, line), MVector(-8, 3, 2));
}

TEST(CarryPoints, BindingsThatDontFitLeaveThePoint) {
    const std::vector<float> first = {0, 0, 0, 2, 0, 0, 0, 2, 0}, second = {0, 0, 5, 2, 0, 5, 0, 2, 5};
    const std::vector<float> far = {0, 0, std::numeric_limits<float>::infinity(), 2, 0, 5, 0, 2, 5};
    const Doubles uvs(8);
    const Ints faces = {0, 0, 0, 0};
    const Ints vertices = {0, 1, 2, 0, 1, 3, 0, -1, 2, 0, 1};
    const std::vector<MPoint> start(5, MPoint(1, 1, 1, 2));
    std::vector<MPoint> points = start;
    Carriage carriage{.points = points,
                      .chosen = {},
                      .binding = {uvs, faces, vertices},
                      .references = {first, second},
                      .weights = {}};
    // The first goes up by 5, by its triangle's corner; of the others vertices are missing, or the end.
    carryPoints(carriage, 0, std::vector<Origins>(5));
    EXPECT_EQ(points.front(), MPoint(1, 1, 6, 2));
    EXPECT_TRUE(std::equal(points.begin() + 1, points.end(), start.begin() + 1));
    points = start;
    carriage.references[1] = far;
    carryPoints(carriage, 0, std::vector<Origins>(1));
    EXPECT_EQ(points, start) << "nowhere finite";
}

/// A detail `d` at a reference `a`, carried to `b` by the node `r`.
class Retarget : public tests::PluginTest {
  protected:
    /// MEL that makes the reference of a name, and the detail.
    void build(const std::string& reference, const std::string& detail) {
        for (const std::string name : {"a", "b"})
            run(reference + " -ch 0 -n " + name);
        run(detail + "; createNode retarget -n r; connectAttr aShape.worldMesh[0] r.inReferenceMesh;"
                     "connectAttr bShape.worldMesh[0] r.inReferenceMesh2;");
    }
    /// MEL that makes a mesh of one face.
    static std::string facet(const std::string& name, const std::vector<std::string>& points) {
        std::string vertices, edges, loop;
        const std::size_t count = points.size();
        for (std::size_t i = 0; i < count; ++i) {
            vertices += " " + points[i];
            edges += " " + std::to_string(i) + " " + std::to_string((i + 1) % count) + " 0";
            loop += " " + std::to_string(i);
        }
        const std::string shape = name + "Shape", last = std::to_string(count - 1) + "]\"";
        return "createNode transform -n " + name + "; createNode mesh -n " + shape + " -p " + name +
               "; setAttr -s " + std::to_string(count) + " \"" + shape + ".vt[0:" + last + vertices +
               "; setAttr -s " + std::to_string(count) + " \"" + shape + ".ed[0:" + last + edges +
               "; setAttr \"" + shape + ".fc[0]\" -type \"polyFaces\" f " + std::to_string(count) + loop +
               ";";
    }
    /// Squares in the ground plane, from -2 to 2, with a triangle of points over them, each over another
    /// square.
    void buildSheets() {
        build("polyPlane -w 4 -h 4 -sx 2 -sy 2", facet("d", {"1 1 0.5", "0.5 2 -1", "-1 1 -0.5"}));
        run("connectAttr dShape.worldMesh[0] r.inGeometry");
    }
    void buildCubes(const std::string& detail) {
        build("polyCube -w 4 -h 4 -d 4", detail);
        run("connectAttr dShape.worldMesh[0] r.inGeometry");
    }
    static Doubles shown() {
        MSelectionList list;
        list.add("r.outGeometry");
        MPlug plug;
        list.getPlug(0, plug);
        MObject data;
        plug.getValue(data);
        MPointArray points;
        if (data.apiType() == MFn::kMeshData) {
            MFnMesh(data).getPoints(points, MSpace::kWorld);
        } else {
            MFnNurbsCurve(data).getCVs(points, MSpace::kWorld);
        }
        Doubles all;
        for (unsigned i = 0; i < points.length(); ++i)
            all.insert(all.end(), {points[i].x, points[i].y, points[i].z});
        return all;
    }
    const Doubles start_ = {1, 1, 0.5, 0.5, 2, -1, -1, 1, -0.5};
};

TEST_F(Retarget, PointsFollowTheSecondReference) {
    buildSheets();
    expectNear(shown(), start_);
    run("setAttr b.translate 10 0 0; setAttr b.rotate 0 0 90");
    const Doubles turned = {9, 1, 0.5, 8, 0.5, -1, 9, -1, -0.5};
    expectNear(shown(), turned);
    // Places on the surface grow with it, heights stay: axes are of unit length.
    run("setAttr b.translate 0 0 0; setAttr b.rotate 0 0 0; setAttr b.scale 2 2 2");
    expectNear(shown(), {2, 1, 1, 1, 2, -2, -2, 1, -1});
    // The geometry's own matrix comes along, and what was bound is not bound again: 3 farther up.
    run("setAttr d.translate 0 3 0");
    expectNear(shown(), {2, 4, 1, 1, 5, -2, -2, 4, -1});
    // A set that is not there: frames stand on the triangles' corners, which rigid motion does not show.
    run("setAttr d.translate 0 0 0; setAttr b.scale 1 1 1; setAttr b.translate 10 0 0; setAttr b.rotate 0 0 "
        "90;"
        "setAttr -type \"string\" r.uvSet2 \"other\"");
    expectNear(shown(), turned);
}

TEST_F(Retarget, EnvelopeSnapAndWeights) {
    buildSheets();
    run("setAttr b.translateY 4");
    run("setAttr r.envelope 0.25");
    expectNear(shown(), {1, 2, 0.5, 0.5, 3, -1, -1, 2, -0.5});
    run("setAttr r.inWeightPP -type \"doubleArray\" 2 0 0.5");
    expectNear(shown(), {1, 1, 0.5, 0.5, 2.5, -1, -1, 2, -0.5});
    run("setAttr r.snapToReferenceMesh 1");
    // A quarter of the way from the origin to (0.5, 4, -1), and of that half; likewise for the third.
    expectNear(shown(), {1, 1, 0.5, 0.3125, 1.5, -0.625, -0.25, 1, -0.125});
    run("setAttr r.inWeightPP -type \"doubleArray\" 0; setAttr r.envelope 0");
    expectNear(shown(), Doubles(9, 0.0));
    run("setAttr r.snapToReferenceMesh 0");
    expectNear(shown(), start_);
}

TEST_F(Retarget, AChoiceMovesAloneAndTheBindingCoversAll) {
    buildSheets();
    run("setAttr b.translateY 4; setAttr r.useComponents 1;"
        "setAttr r.inComponents -type \"componentList\" 1 \"vtx[1]\"");
    expectNear(shown(), {1, 1, 0.5, 0.5, 6, -1, -1, 1, -0.5});
    EXPECT_EQ(ints("r.cacheFaceIds"), (Ints{1, 3, 2})) << "of the four squares, front row first";
    EXPECT_EQ(ints("r.cachePointIds").size(), 9U);
    expectNear(floats("r.cacheUVs"), {0.75, 0.375, 0.625, 0.75, 0.25, 0.625});
    const Doubles all = {1, 5, 0.5, 0.5, 6, -1, -1, 5, -0.5};
    run("setAttr r.inComponents -type \"componentList\" 0");
    expectNear(shown(), all);
    run("setAttr r.useComponents 2");
    expectNear(shown(), all);
}

TEST_F(Retarget, TheBindingStandsUntilItIsSetAgain) {
    buildSheets();
    (void)shown();
    run("setAttr d.translateX -2"); // the first two are over other squares now
    (void)shown();
    EXPECT_EQ(ints("r.cacheFaceIds"), (Ints{1, 3, 2}));
    run("setAttr r.setInitialState 1");
    (void)shown();
    EXPECT_EQ(ints("r.cacheFaceIds"), (Ints{0, 2, 2}));
    EXPECT_EQ(run("getAttr r.setInitialState").asInt(), 0);
    // Another number of points binds by itself.
    run(facet("e", {"1 0 1", "1 0 -1", "-1 0 -1", "-1 0 1"}) +
        "connectAttr -f eShape.worldMesh[0] r.inGeometry");
    (void)shown();
    EXPECT_EQ(ints("r.cacheFaceIds"), (Ints{1, 3, 2, 0}));
    // What is stored counts, whatever it says.
    run("setAttr b.translateY 1; setAttr r.cacheFaceIds -type \"Int32Array\" 4 0 99 -1 0;"
        "setAttr r.cachePointIds -type \"Int32Array\" 8 0 1 4 0 1 3 0 99");
    expectNear(shown(), {1, 1, 1, 1, 1, -1, -1, 0, -1, -1, 0, 1});
}

TEST_F(Retarget, TheBindingIsSavedWithTheScene) {
    buildSheets();
    (void)shown();
    const std::string file = (folder / "bound.ma").string();
    run("file -rename \"" + file + "\"; file -save -type \"mayaAscii\"; file -f -new; file -o \"" + file +
        "\"; setAttr d.translateX -2; setAttr b.translateY 1");
    expectNear(shown(), {-1, 2, 0.5, -1.5, 3, -1, -3, 2, -0.5});
    EXPECT_EQ(ints("r.cacheFaceIds"), (Ints{1, 3, 2}));
    expectNear(floats("r.cacheUVs"), {0.75, 0.375, 0.625, 0.75, 0.25, 0.625});
}

TEST_F(Retarget, RaysRunInwardByDefault) {
    // Near the right wall, facing up.
    buildCubes("polyPlane -ch 0 -w 0.2 -h 0.2 -sx 1 -sy 1 -n d; setAttr d.translate 1.5 0 0");
    (void)shown();
    EXPECT_EQ(ints("r.cacheFaceIds"), Ints(4, 4)) << "the nearest: the right side";
    run("setAttr r.mode 1; setAttr r.setInitialState 1");
    (void)shown();
    EXPECT_EQ(ints("r.cacheFaceIds"), Ints(4, 3)) << "the bottom";
    run("setAttr r.reverseNormals 0; setAttr r.setInitialState 1");
    (void)shown();
    EXPECT_EQ(ints("r.cacheFaceIds"), Ints(4, 1)) << "the top";
    run("setAttr d.translateY 5; setAttr r.setInitialState 1; setAttr b.translateX 3; setAttr "
        "r.snapToReferenceMesh 1");
    expectNear(shown(), {4.4, 2, 0.1, 4.6, 2, 0.1, 4.4, 2, -0.1, 4.6, 2, -0.1}); // missed, so the nearest
}

TEST_F(Retarget, ClosestUvGoesByTheVerticesUvs) {
    // A small cube inside, at the right side: by place all would go there.
    buildCubes("polyCube -ch 0 -w 1 -h 1 -d 1 -n d; setAttr d.translate 1.4 0 0");
    run("setAttr r.mode 2; setAttr r.snapToReferenceMesh 1; setAttr b.translateX 10");
    expectNear(shown(), {8, -2, 2, 12, -2, 2, 8, 2, 2, 12, 2, 2, 8, 2, -2, 12, 2, -2, 8, -2, -2, 12, -2, -2});
    // Without UVs on the geometry's own set it is the nearest point.
    run("setAttr -type \"string\" r.uvSet \"other\"; setAttr r.setInitialState 1");
    (void)shown();
    EXPECT_EQ(ints("r.cacheFaceIds"), Ints(8, 4));
}

TEST_F(Retarget, CurvesGoByTheNearestPoint) {
    build("polyPlane -w 4 -h 4 -sx 2 -sy 2",
          "curve -d 1 -p 1 1 0.5 -p -1 2 -1 -n d; rename `listRelatives -s d` dShape");
    run("connectAttr dShape.worldSpace[0] r.inGeometry; setAttr b.translateY 4");
    const Doubles up = {1, 5, 0.5, -1, 6, -1};
    expectNear(shown(), up);
    const std::string closing =
        " method is not supported for nurbs curves. Assuming \"closest point\" instead.";
    run("setAttr r.mode 1");
    expectNear(shown(), up);
    EXPECT_EQ(complaints(), Texts{"warning: r: \"ray projection\"" + closing});
    run("setAttr r.mode 2; setAttr r.setInitialState 1");
    expectNear(shown(), up);
    EXPECT_EQ(complaints(), Texts{"warning: r: \"closest uv\"" + closing});
}

TEST_F(Retarget, WhatIsMissingLeavesTheCopy) {
    buildSheets();
    run("setAttr b.translateY 4; polyPlane -ch 0 -sx 3 -sy 3 -n c; connectAttr -f cShape.worldMesh[0] "
        "r.inReferenceMesh2");
    const Texts differ = {
        "warning: r: inReferenceMesh and inReferenceMesh2 shapes are empty or have different point count."};
    expectNear(shown(), start_);
    EXPECT_EQ(complaints(), differ);
    run("disconnectAttr cShape.worldMesh[0] r.inReferenceMesh2; disconnectAttr aShape.worldMesh[0] "
        "r.inReferenceMesh");
    expectNear(shown(), start_);
    EXPECT_EQ(complaints(), differ);
    // Points without faces: nothing to bind to.
    run("createNode mesh -n loose; setAttr -s 3 loose.vt[0:2] 0 0 0 1 0 0 0 0 1;"
        "connectAttr loose.outMesh r.inReferenceMesh; connectAttr loose.outMesh r.inReferenceMesh2");
    expectNear(shown(), start_);
    EXPECT_EQ(complaints(), Texts{"warning: r: internal cache is empty."});
    EXPECT_TRUE(ints("r.cacheFaceIds").empty());

    run("connectAttr -f aShape.worldMesh[0] r.inReferenceMesh; connectAttr -f bShape.worldMesh[0] "
        "r.inReferenceMesh2;"
        "setAttr r.nodeState 1");
    expectNear(shown(), start_);
    run("setAttr r.nodeState 0");
    const Doubles up = {1, 5, 0.5, 0.5, 6, -1, -1, 5, -0.5};
    expectNear(shown(), up);
    run("setAttr r.nodeState 2; setAttr b.translateY 0");
    expectNear(shown(), up);
}

TEST_F(Retarget, TheSameBitsForAnyNumberOfThreads) {
    build("polySphere -r 2 -sx 60 -sy 40", "polySphere -ch 0 -r 2.2 -sx 120 -sy 90 -n d");
    run("connectAttr dShape.worldMesh[0] r.inGeometry; setAttr b.scale 1.3 0.7 1; setAttr b.rotate 20 30 40");
    const int before = parallel::threads();
    for (const int mode : {0, 1, 2}) {
        run("setAttr r.mode " + std::to_string(mode));
        Doubles points, uvs;
        for (const int threads : {1, 2, 5}) {
            parallel::setThreads(threads);
            run("setAttr r.setInitialState 1");
            const Doubles now = shown();
            if (threads == 1) points = now, uvs = floats("r.cacheUVs");
            EXPECT_EQ(now, points) << mode << " with " << threads;
            EXPECT_EQ(floats("r.cacheUVs"), uvs);
        }
    }
    parallel::setThreads(before);
}

} // namespace
} // namespace vesk::nodes
