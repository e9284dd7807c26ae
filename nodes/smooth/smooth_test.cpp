#include "nodes/smooth/relax.h"
#include "parallel/loops.h"
#include "tests/api_access.h"
#include "tests/session_fixture.h"

#include <maya/MFnMesh.h>
#include <maya/MFnSingleIndexedComponent.h>
#include <maya/MIntArray.h>
#include <maya/MItMeshPolygon.h>
#include <maya/MItMeshVertex.h>
#include <maya/MPointArray.h>
#include <maya/MVector.h>

#include <cmath>
#include <random>

namespace vesk::nodes {
namespace {

class Smooth : public tests::PluginTest {
  protected:
    std::vector<double> at(const std::string& point) {
        return *run("pointPosition -l " + point).asFloatArray();
    }
    double height(int vertex) { return at("p.vtx[" + std::to_string(vertex) + "]")[1]; }
    /// Nine vertices, 0.5 apart; the middle one of an edge is lifted by 1.
    void makeSheet() {
        run("polyPlane -ch 0 -sx 2 -sy 2 -n p; move -r 0 1 0 p.vtx[1]; deformer -type smooth p;"
            "setAttr smooth1.iterations 1;");
    }
    static MPointArray output(const char* plug) {
        MPointArray points;
        MFnMesh(tests::plugNamed(plug).asMObject()).getPoints(points);
        return points;
    }
};

TEST_F(Smooth, MeansOfNeighboursAndBoundary) {
    makeSheet();
    EXPECT_NEAR(height(4), 1.0 / 5, 1e-6);
    EXPECT_EQ(height(1), 1);
    run("setAttr smooth1.iterations 2");
    EXPECT_NEAR(height(4), 1.2 / 5, 1e-6);
    run("setAttr smooth1.lookup 1"); // all nine, and the vertex once more
    EXPECT_NEAR(height(4), 1.2 / 10, 1e-6);
    run("setAttr smooth1.lookup 0; setAttr smooth1.preserveBoundary 0; setAttr smooth1.iterations 1;");
    EXPECT_NEAR(height(4), 0.2, 1e-6);
    EXPECT_NEAR(height(0), 1.0 / 3, 1e-6);
    expectNear(at("p.vtx[1]"), {0, 0.25, 0.375});
    run("setAttr smooth1.iterations 0");
    EXPECT_EQ(height(4), 0);
}

TEST_F(Smooth, EnvelopeAndPaintedWeights) {
    makeSheet();
    for (const auto& [envelope, expected] : {std::pair{0.5, 0.1}, {0.0005, 0.0}, {0.0, 0.0}, {3.0, 0.2}}) {
        run("setAttr smooth1.envelope " + std::to_string(envelope));
        EXPECT_NEAR(height(4), expected, 1e-6) << envelope;
    }
    run("setAttr \"smooth1.wl[0].w[1]\" 0; setAttr \"smooth1.wl[0].w[99]\" 0;");
    EXPECT_NEAR(height(4), 0.2, 1e-6) << "what is not painted has 1, what is beyond the mesh none";
    run("setAttr \"smooth1.wl[0].w[4]\" 0.25; setAttr smooth1.envelope 0.5;");
    EXPECT_NEAR(height(4), 0.025, 1e-6);
    run("setAttr smooth1.nodeState 2; setAttr smooth1.envelope 1;");
    EXPECT_NEAR(height(4), 0.025, 1e-6) << "blocked: as it was";
}

TEST_F(Smooth, OnlyTheDeformersSet) {
    run("polyPlane -ch 0 -sx 3 -sy 2 -n p; move -r 0 1 0 p.vtx[5]; deformer -type smooth p.vtx[6];"
        "setAttr smooth1.iterations 1;");
    EXPECT_NEAR(height(6), 0.2, 1e-6);
    EXPECT_EQ(height(5), 1);
}

TEST_F(Smooth, ProjectionBackOntoTheSurface) {
    // A corner at (0.5, 0.6, 0.7) and its three neighbours: each pass halves the box.
    run("polyCube -ch 0 -w 1 -h 1.2 -d 1.4 -n p; deformer -type smooth p; setAttr smooth1.iterations 1;");
    const std::vector<double> halved = {0.25, 0.3, 0.35};
    const auto corner = [&] { return at("p.vtx[3]"); };
    expectNear(corner(), halved);
    run("setAttr smooth1.preserveVolume 1; setAttr smooth1.maxDistance 2;");
    expectNear(corner(), {0.5, 0.3, 0.35});
    run("setAttr smooth1.mode 1; setAttr smooth1.maxDistance 1;");
    expectNear(corner(), {0.5, 0.55, 0.6}); // 0.25 along each axis
    run("setAttr smooth1.blend 0.5");
    expectNear(corner(), {0.375, 0.425, 0.475});
    run("setAttr smooth1.maxDistance 0.4"); // the face is 0.433 away
    expectNear(corner(), halved);
    run("setAttr smooth1.maxDistance 0");
    expectNear(corner(), halved);
    run("setAttr smooth1.maxDistance 1; setAttr smooth1.iterations 2;");
    expectNear(corner(), {0.3125, 0.3375, 0.3625}); // (0.125, 0.15, 0.175) and half of 0.375
    run("setAttr smooth1.preserveVolume 2");
    // (0.375, 0.425, 0.475) halved, and half of 0.3125
    expectNear(corner(), {0.34375, 0.36875, 0.39375});
}

TEST_F(Smooth, NeighboursStayUntilTheCountChangesOrTheButton) {
    // A square, and the same four points as two triangles: vertex 0 has one neighbour more.
    run("polyPlane -ch 0 -sx 1 -sy 1 -n square; createNode mesh -n two; setAttr -s 4 \".vt[0:3]\" -0.5 0 0.5 "
        "0.5 0 0.5 -0.5 0 -0.5 0.5 0 -0.5; setAttr -s 5 \".ed[0:4]\" 0 1 0 1 3 0 3 0 0 3 2 0 2 0 0;"
        "setAttr -s 2 \".fc[0:1]\" -type \"polyFaces\" f 3 0 1 2 f 3 -3 3 4;"
        "createNode groupParts -n g; setAttr g.groupId 5; setAttr g.inputComponents -type componentList 1 "
        "\"vtx[*]\"; createNode smooth -n s; setAttr s.iterations 1; setAttr s.preserveBoundary 0;"
        "connectAttr squareShape.outMesh g.inputGeometry; connectAttr g.outputGeometry s.ip[0].ig;"
        "setAttr s.ip[0].gi 5;");
    const double ofSquare = -0.5 / 3, ofTriangles = 0;
    const auto first = [] { return output("s.outputGeometry[0]")[0].x; };
    EXPECT_NEAR(first(), ofSquare, 1e-6);
    run("connectAttr -f two.outMesh g.inputGeometry");
    EXPECT_NEAR(first(), ofSquare, 1e-6) << "as before";
    run("setAttr s.clearConnectivityCache 1");
    EXPECT_NEAR(first(), ofTriangles, 1e-6);
    EXPECT_EQ(mel("getAttr s.clearConnectivityCache"), "0");
    run("connectAttr -f squareShape.outMesh g.inputGeometry; setAttr s.lookup 1;");
    EXPECT_NEAR(first(), -0.5 / 5, 1e-6) << "four of the face, and itself";
    run("connectAttr -f two.outMesh g.inputGeometry; setAttr s.lookup 0;");
    EXPECT_NEAR(first(), ofTriangles, 1e-6) << "made for another lookup";
    run("polyPlane -ch 0 -sx 1 -sy 2 -n tall; connectAttr -f tallShape.outMesh g.inputGeometry");
    EXPECT_NEAR(output("s.outputGeometry[0]")[2].z, 0, 1e-6);
    run("connectAttr -f squareShape.outMesh g.inputGeometry");
    EXPECT_NEAR(first(), ofSquare, 1e-6);
}

TEST_F(Smooth, InputsThatAreNoMeshOrNone) {
    run("createNode mesh -n none; createNode smooth -n s; setAttr s.iterations 3; setAttr s.preserveVolume 1;"
        "connectAttr none.outMesh s.ip[0].ig;");
    EXPECT_EQ(output("s.outputGeometry[0]").length(), 0U);
    run("createNode nurbsCurve -n c; connectAttr -f c.local s.ip[0].ig;");
    (void)tests::plugNamed("s.outputGeometry[0]").asMObject();
    run("polySphere -ch 0 -n ball; connectAttr -f ballShape.outMesh s.ip[0].ig;");
    EXPECT_GT(output("s.outputGeometry[0]").length(), 0U);
    run("currentTime 2; delete ball none c");
    EXPECT_EQ(output("s.outputGeometry[0]").length(), 0U);
}

/// What the description says of one pass, through the host.
MPointArray plainPass(const MObject& mesh, const MPointArray& before, bool byFaces) {
    MPointArray after = before;
    for (MItMeshVertex vertex(mesh); !vertex.isDone(); vertex.next()) {
        MIntArray near;
        vertex.getConnectedVertices(near);
        if (byFaces) {
            MIntArray faces;
            vertex.getConnectedFaces(faces);
            MFnSingleIndexedComponent merged;
            merged.create(MFn::kMeshVertComponent);
            MItMeshPolygon polygon(mesh);
            for (unsigned i = 0; i < faces.length(); ++i) {
                int previous = 0;
                polygon.setIndex(faces[i], previous);
                polygon.getVertices(near);
                merged.addElements(near);
            }
            merged.getElements(near);
        }
        near.append(vertex.index());
        MVector sum;
        for (unsigned k = 0; k < near.length(); ++k)
            sum += MVector(before[static_cast<unsigned>(near[k])]);
        after[static_cast<unsigned>(vertex.index())] = MPoint(sum / near.length());
    }
    return after;
}

TEST_F(Smooth, EqualToAPlainLoop) {
    run("polySphere -ch 0 -sx 12 -sy 9 -n p; scale 1.3 0.7 2.1 p.vtx[5:60]; deformer -type smooth p; setAttr "
        "smooth1.iterations 3; setAttr smooth1.preserveBoundary 0;");
    const MObject original = tests::plugNamed("smooth1GroupParts.outputGeometry").asMObject();
    for (const bool byFaces : {false, true}) {
        run(std::string("setAttr smooth1.lookup ") + (byFaces ? "1" : "0"));
        MPointArray expected = output("smooth1GroupParts.outputGeometry");
        for (int pass = 0; pass < 3; ++pass)
            expected = plainPass(original, expected, byFaces);
        const MPointArray actual = output("pShape.outMesh");
        ASSERT_EQ(actual.length(), expected.length());
        for (unsigned v = 0; v < actual.length(); ++v) {
            EXPECT_EQ(actual[v].x, double(float(expected[v].x))) << v;
            EXPECT_EQ(actual[v].y, double(float(expected[v].y))) << v;
        }
    }
}

TEST(Relax, AnyNumberOfThreadsAndPointsThatAreNone) {
    constexpr int kCount = 30000;
    std::mt19937 random(5);
    std::vector<MPoint> from, to(kCount), expected;
    std::vector<char> moves;
    Links links;
    for (int v = 0; v < kCount; ++v) {
        from.emplace_back(0.001 * double(random() % 1000), random() % 7, v == 77 ? NAN : v);
        moves.push_back(random() % 4 != 0);
        for (unsigned k = random() % 9; k > 0; --k)
            links.ids.push_back(int(random() % kCount));
        links.endList();
    }
    for (int v = 0; v < kCount; ++v) {
        MVector sum;
        for (const int j : links.of(v))
            sum += MVector(from[std::size_t(j)]);
        sum += MVector(from[std::size_t(v)]);
        sum /= double(links.of(v).size() + 1);
        const bool stays = !moves[std::size_t(v)] || std::isnan(sum.z);
        expected.push_back(stays ? from[std::size_t(v)] : MPoint(sum));
    }
    EXPECT_TRUE(std::isnan(expected[77].z));
    expected[77].z = 0;
    const int threads = parallel::threads();
    for (const int count : {1, 2, 5}) {
        parallel::setThreads(count);
        averagePass(links, moves, from, to);
        to[77].z = std::isnan(to[77].z) ? 0 : 1;
        EXPECT_EQ(to, expected) << count;
    }
    parallel::setThreads(threads);
    EXPECT_EQ(std::count_if(to.begin(), to.end(), [](const MPoint& p) { return std::isnan(p.z); }), 0)
        << "neighbours of a point that is none keep theirs";
}

} // namespace
} // namespace vesk::nodes
