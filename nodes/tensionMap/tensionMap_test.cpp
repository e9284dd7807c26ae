#include "nodes/tensionMap/tension.h"
#include "parallel/loops.h"
#include "tests/api_access.h"
#include "tests/session_fixture.h"

#include <maya/MColorArray.h>
#include <maya/MFnMesh.h>
#include <maya/MIntArray.h>
#include <maya/MItMeshVertex.h>
#include <maya/MPointArray.h>

#include <cmath>

namespace vesk::nodes {
namespace {

class TensionMap : public tests::PluginTest {
  protected:
    /// A square of one face at rest, and what is made of it: each vertex has one neighbour along x and one
    /// along z, both at a distance of 1.
    void SetUp() override {
        PluginTest::SetUp();
        run("polyPlane -ch 0 -sx 1 -sy 1 -n rest; polyPlane -ch 0 -sx 1 -sy 1 -n now;"
            "createNode tensionMap -n t; connectAttr restShape.worldMesh[0] t.restGeometry;"
            "connectAttr nowShape.worldMesh[0] t.inGeometry; setAttr t.coordinateSystem 1;");
    }
    /// Stretches along x: 3 gives lengths of 3 and 1 instead of 1 and 1, (4 - 2) / 2 for two neighbours: 2.
    void stretch(double x) { run("setAttr now.scaleX " + std::to_string(x)); }
    std::vector<double> tension() { return floats("t.outTensionPP"); }
    std::vector<double> rgba() { return floats("t.outRgbaPP"); }
    static MObject mesh(const char* plug) { return tests::plugNamed(plug).asMObject(); }
    static MColorArray colors() {
        MColorArray colors;
        MFnMesh(mesh("t.outGeometry")).getVertexColors(colors);
        return colors;
    }
};

TEST_F(TensionMap, StretchAndCompressionByTheNumberOfNeighbours) {
    expectNear(tension(), {0, 0, 0, 0});
    expectNear(rgba(), {0, .5, 0, 1, 0, .5, 0, 1, 0, .5, 0, 1, 0, .5, 0, 1});
    stretch(3);
    expectNear(tension(), {2, 2, 2, 2});
    stretch(0.75);
    expectNear(tension(), {-.25, -.25, -.25, -.25});
    stretch(1.0009);
    expectNear(tension(), {0, 0, 0, 0}, 0);
    run("setAttr t.coordinateSystem 0; setAttr now.scaleX 3;");
    expectNear(tension(), {0, 0, 0, 0}, 0);
    run("setAttr t.coordinateSystem 1; setAttr rest.scale 0 0 0; setAttr t.weight 0.75;");
    expectNear(tension(), {.25, .25, .25, .25});
}

TEST_F(TensionMap, EveryCoding) {
    run("setAttr t.compressionColorMult 2; setAttr t.stretchColorMult 0.5; setAttr t.alpha 0.25;");
    // Compressed by 0.25, twice as much in colour: 0.25 is left of the default. Stretched by 0.5, half of it.
    const struct {
        const char* name;
        std::vector<double> compressed, stretched;
    } rows[] = {{"GRB", {.5, .25, 0}, {0, .375, .25}},
                {"GBR", {0, .25, .5}, {.25, .375, 0}},
                {"BRG", {.5, 0, .25}, {0, .25, .375}},
                {"BGR", {0, .5, .25}, {.25, 0, .375}},
                {"RGB", {.25, .5, 0}, {.375, 0, .25}},
                {"RBG", {.25, 0, .5}, {.375, .25, 0}},
                {"Grayscale", {.75, .75, .75}, {.375, .375, .375}}};
    for (int coding = 0; coding < 7; ++coding) {
        run("setAttr t.colorCoding " + std::to_string(coding));
        for (const double x : {0.75, 1.5}) {
            stretch(x);
            const auto& expected = x < 1 ? rows[coding].compressed : rows[coding].stretched;
            const MColor c = colors()[3];
            expectNear({double(c.r), double(c.g), double(c.b)}, expected);
            const auto array = rgba();
            expectNear({array.begin() + 12, array.begin() + 15}, expected);
            EXPECT_EQ(array[15], 0.25) << rows[coding].name;
        }
    }
    run("setAttr t.stretchColorRemap[1].stretchColorRemap_FloatValue 0.5; setAttr t.colorCoding 0;");
    expectNear({rgba()[2]}, {.125});
}

TEST_F(TensionMap, WeightsOfAnyLength) {
    stretch(3);
    run("setAttr t.weight 0.75; setAttr t.inWeightPP -type doubleArray 2 0 0.5");
    // 2 * w * 0.75 + 0.25 * w
    expectNear(tension(), {0, .875, 1.75, 1.75});
    run("addAttr -ln given -dt doubleArray rest; setAttr rest.given -type doubleArray 5 1 0.5 0 1 9;"
        "connectAttr rest.given t.inWeightPP;");
    expectNear(tension(), {1.75, .875, 0, 1.75});
    const std::string text = "warning: t: inWeightPP array length does not match current point count. Result "
                             "will be unpredictable.";
    EXPECT_EQ(complaints(), (Texts{text}));
    run("disconnectAttr rest.given t.inWeightPP; setAttr t.inWeightPP -type doubleArray 0; setAttr t.weight "
        "0");
    expectNear(tension(), {1, 1, 1, 1});
    expectNear({rgba()[2]}, {1});
}

TEST_F(TensionMap, SkippedVerticesBlackenTheFirst) {
    // Two triangles: vertices 0 and 3 have three neighbours, the square's have two.
    run("createNode mesh -n two; setAttr two.vt -s 4; setAttr \".vt[0:3]\" 0 0 0 1 0 0 0 0 1 1 0 1;"
        "setAttr -s 5 \".ed[0:4]\" 0 1 0 1 3 0 3 0 0 3 2 0 2 0 0;"
        "setAttr -s 2 \".fc[0:1]\" -type \"polyFaces\" f 3 0 1 2 f 3 -3 3 4;"
        "connectAttr -f two.outMesh t.inGeometry;");
    expectNear(tension(), {0, 0, 0, 0}, 0);
    expectNear(rgba(), {0, 0, 0, 0, 0, .5, 0, 1, 0, .5, 0, 1, 0, 0, 0, 0});
    EXPECT_EQ(colors()[0], MColor(0, 0, 0, 1));
    EXPECT_EQ(colors()[1], MColor(0, .5F, 0, 1));
    EXPECT_EQ(colors()[3], MColor(-1, -1, -1, -1)) << "no colour at all";
}

TEST_F(TensionMap, SelectedVerticesAndWhatIsUpdated) {
    stretch(2);
    run("setAttr t.useComponents 1; setAttr t.inComponents -type componentList 1 \"vtx[1:2]\"");
    expectNear(tension(), {0, 1, 1, 0});
    EXPECT_EQ(colors()[3], MColor(-1, -1, -1, -1));
    run("setAttr t.useComponents 2");
    expectNear(tension(), {0, 0, 0, 0});
    run("setAttr t.useComponents 0; setAttr t.update 1;");
    expectNear(tension(), {1, 1, 1, 1});
    EXPECT_EQ(MFnMesh(mesh("t.outGeometry")).numColorSets(), 0);
    run("setAttr t.update 2");
    stretch(3);
    EXPECT_EQ(colors()[1], MColor(0, -.5F, 1, 1));
    expectNear(tension(), {1, 1, 1, 1}, 1e-9);
    EXPECT_EQ(MFnMesh(mesh("nowShape.outMesh")).numColorSets(), 0) << "the input keeps its own";
}

TEST_F(TensionMap, WithoutAFittingRestMeshTheCopyGoesOut) {
    const auto vertices = [&] { return MFnMesh(mesh("t.outGeometry")).numVertices(); };
    run("polyPlane -ch 0 -sx 2 -sy 1 -n wide; connectAttr -f wideShape.outMesh t.restGeometry;");
    EXPECT_EQ(vertices(), 4);
    EXPECT_TRUE(mesh("t.outTensionPP").isNull());
    run("connectAttr -f restShape.worldMesh[0] t.restGeometry;");
    expectNear(tension(), {0, 0, 0, 0});
    run("currentTime 2; delete rest; setAttr now.scaleX 2;");
    EXPECT_EQ(vertices(), 4);
    run("setAttr t.envelope 0");
    EXPECT_EQ(vertices(), 4);
    run("createNode mesh -n none; connectAttr -f none.outMesh t.inGeometry; connectAttr none.outMesh "
        "t.restGeometry; setAttr t.envelope 1;");
    EXPECT_EQ(tension().size(), 0U);
    run("delete now none");
    EXPECT_EQ(tension().size(), 0U);
}

/// What the description says, one vertex after the other through the host.
std::vector<double> plainTensions(const MObject& now, const MObject& rest, bool byAngle) {
    std::vector<double> result;
    MPointArray p, q;
    MFnMesh(now).getPoints(p);
    MFnMesh(rest).getPoints(q);
    const auto normal = [](const MObject& mesh, int v) {
        MVector n;
        MFnMesh(mesh).getVertexNormal(v, false, n);
        return n;
    };
    for (MItMeshVertex vertex(now), other(rest); !vertex.isDone(); vertex.next(), other.next()) {
        MIntArray near, restNear;
        vertex.getConnectedVertices(near);
        other.getConnectedVertices(restNear);
        const int v = vertex.index();
        double c = 0, r = 0;
        for (unsigned k = 0; k < near.length(); ++k) {
            c += byAngle ? normal(now, v).angle(normal(now, near[k]))
                         : p[unsigned(v)].distanceTo(p[unsigned(near[k])]);
            r += byAngle ? normal(rest, v).angle(normal(rest, restNear[k]))
                         : q[unsigned(v)].distanceTo(q[unsigned(near[k])]);
        }
        const double t = byAngle ? (c - r) / 3.14159265 : (c - r) / r * near.length();
        result.push_back(int(t * 1000) * 0.001);
    }
    return result;
}

TEST_F(TensionMap, EqualToAPlainLoopForAnyNumberOfThreads) {
    run("polyPlane -ch 0 -sx 140 -sy 140 -n flat; polyPlane -ch 0 -sx 140 -sy 140 -n waves;");
    std::string offsets = "setAttr \"wavesShape.pnts[0:19880]\"";
    for (int i = 0; i <= 19880; ++i)
        offsets += " 0 " + std::to_string(0.01 * std::sin(i * 0.7)) + " " + std::to_string(1e-3 * (i % 7));
    run(offsets + "; connectAttr -f flatShape.outMesh t.restGeometry;"
                  "connectAttr -f wavesShape.outMesh t.inGeometry;");
    const int threads = parallel::threads();
    for (const bool byAngle : {false, true}) {
        run(std::string("setAttr t.mode ") + (byAngle ? "1" : "0"));
        const auto plain = plainTensions(mesh("wavesShape.outMesh"), mesh("flatShape.outMesh"), byAngle);
        EXPECT_GT(std::count_if(plain.begin(), plain.end(), [](double t) { return t != 0; }), 10000);
        for (const int count : {1, 2, 5}) {
            parallel::setThreads(count);
            run("setAttr t.alpha " + std::to_string(count)); // for a new evaluation
            EXPECT_EQ(tension(), plain) << byAngle << " on " << count;
        }
    }
    parallel::setThreads(threads);
}

TEST(Tension, AnglesOfAFoldAndOddNumbers) {
    // A strip of three vertices; the middle one leans by 0.4 away from the first and 0.3 from the last.
    const MFloatVector flat[3] = {{0, 1, 0}, {0, 1, 0}, {0, 1, 0}};
    const MFloatVector bent[3] = {
        {0, 1, 0}, {std::sin(.4F), std::cos(.4F), 0}, {std::sin(.7F), std::cos(.7F), 0}};
    const int ids[] = {0, 1, 2};
    const Links links{{0, 1, 3, 4}, {1, 0, 2, 1}};
    const TensionRun strip{ids, links, links, {0, 0, 1}};
    const auto tensions = angleTensions(strip, Directions(bent), Directions(flat));
    EXPECT_NEAR(tensions[0], .4 / 3.14159265, 1e-6);
    EXPECT_NEAR(tensions[1], .7 / 3.14159265, 1e-6);
    EXPECT_EQ(tensions[2], 0);
    const float rest[9] = {0, 0, 0, 1, 0, 0, 2, 0, 0}, broken[9] = {NAN, 0, 0, 1, 0, 0, 3, 0, 0};
    const TensionRun all{ids, links, {}, {0, 0, 0}};
    const auto raw = distanceTensions(all, broken, rest);
    EXPECT_EQ(weightedTension(raw[1], 1, 1), 0) << "a neighbour that is nowhere is no measure";
    EXPECT_EQ(raw[2], 1);
    EXPECT_NEAR(weightedTension(1e30, 1, 1), 2147483.647, 1e-6);
    EXPECT_EQ(weightedTension(-.0019, 1, 1), -.001);
}

} // namespace
} // namespace vesk::nodes
