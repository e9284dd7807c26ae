#include "nodes/peak/displacement.h"
#include "parallel/loops.h"
#include "tests/session_fixture.h"

#include "host/data/mesh_data.h"
#include "host/graph/scene.h"
#include "host/nodes/mesh_node.h"

#include <maya/MFnParticleSystem.h>
#include <maya/MVectorArray.h>

#include <random>

namespace vesk::nodes {
namespace {

class Peak : public tests::PluginTest {
  protected:
    /// A flat square, without history: all normals point up.
    void makePlane(const std::string& name = "p", const std::string& flags = "") {
        run("polyPlane -sx 1 -sy 1 -ch 0 -n " + name + "; deformer -type peak " + flags + name +
            "; setAttr peak1.distance 2");
    }
    std::vector<double> at(const std::string& point) { return floats_("pointPosition -l " + point); }
    double height(int vertex, const std::string& shape = "p") {
        return at(shape + ".vtx[" + std::to_string(vertex) + "]")[1];
    }
    std::vector<double> heights(const std::string& shape = "p") {
        return {height(0, shape), height(1, shape), height(2, shape), height(3, shape)};
    }
    /// Three particles with a velocity each, and what their positions become.
    void makeParticles(const std::string& velocities = "3 0 5 0 0 0 0 -3 0 4") {
        run("createNode particle -n dust; setAttr dust.pos -type \"vectorArray\" 3 0 0 0 1 0 0 2 0 0;"
            "setAttr dust.vel -type \"vectorArray\" " +
            velocities + "; deformer -type peak dust; setAttr peak1.d 2");
    }
    std::vector<double> moved() { return floats("dust.deformedPosition"); }
    std::vector<double> floats_(const std::string& text) {
        const mel::Value value = run(text);
        return *value.asFloatArray();
    }
    void expectWarned(const std::string& text) { EXPECT_EQ(complaints(), Texts{"warning: peak1: " + text}); }
    static std::string mismatch(const std::string& attribute) {
        return "The " + attribute +
               " array length does not match the number of points. The result will be unpredictable.";
    }
};

TEST_F(Peak, MeshMovesAlongItsNormals) {
    makePlane();
    run("rotate -a 0 0 90 p; move -a 5 5 5 p");
    EXPECT_EQ(heights(), (std::vector<double>{2, 2, 2, 2})) << "in the mesh's own space";
    run("setAttr peak1.envelope 0.25; setAttr -s 2 \"peak1.wl[0].w[1:2]\" 0.5 0;"
        "setAttr peak1.inWeightPP -type doubleArray 4 1 4 9 -2");
    EXPECT_EQ(heights(), (std::vector<double>{0.5, 1, 0, -1}));
    run("setAttr peak1.nodeState 1");
    EXPECT_EQ(heights(), (std::vector<double>{0, 0, 0, 0}));
    run("setAttr peak1.nodeState 2; setAttr peak1.nodeState 0; setAttr peak1.envelope 0");
    EXPECT_EQ(heights(), (std::vector<double>{0, 0, 0, 0}));
    // Corners of a cube: the mean of three faces.
    run("polyCube -n c; deformer -type peak c; setAttr peak2.d `sqrt 3`");
    expectNear(at("c.vtx[3]"), {1.5, 1.5, 1.5});
}

TEST_F(Peak, OnlyPointsOfTheSetMove) {
    run("polyPlane -sx 1 -sy 1 -n p; deformer -type peak p.vtx[1:2]; setAttr peak1.d 3");
    EXPECT_EQ(heights(), (std::vector<double>{0, 3, 3, 0}));
    run("setAttr peak1GroupParts.ic -type componentList 1 \"vtx[3]\"");
    EXPECT_EQ(heights(), (std::vector<double>{0, 0, 0, 3}));
    run("setAttr peak1.inComponents -type componentList 1 \"vtx[0]\"");
    EXPECT_EQ(heights(), (std::vector<double>{0, 0, 0, 3})) << "inComponents is for particles";
    run("disconnectAttr peak1GroupId.groupId peak1.ip[0].gi; setAttr peak1.ip[0].gi 99");
    EXPECT_EQ(heights(), (std::vector<double>{0, 0, 0, 0})) << "a group that isn't there";
}

TEST_F(Peak, ArraysOfOtherLengths) {
    makePlane();
    run("setAttr peak1.inWeightPP -type doubleArray 2 0.5 3");
    EXPECT_EQ(heights(), (std::vector<double>{1, 6, 2, 2}));
    expectWarned(mismatch("inWeightPP"));
    run("setAttr peak1.inWeightPP -type doubleArray 5 1 1 1 0 9");
    EXPECT_EQ(heights(), (std::vector<double>{2, 2, 2, 0}));
    expectWarned(mismatch("inWeightPP"));
    run("setAttr peak1.inWeightPP -type doubleArray 0");
    EXPECT_EQ(heights(), (std::vector<double>{2, 2, 2, 2}));
}

TEST_F(Peak, WeightsOverAWire) {
    makePlane();
    run("createNode arrayToMulti -n w; setAttr w.inWeightPP -type doubleArray 3 0 0.5 1.5;"
        "connectAttr w.outWeightList[0] peak1.weightList[0]");
    EXPECT_EQ(heights(), (std::vector<double>{0, 1, 3, 2}));
    run("setAttr w.inWeightPP -type doubleArray 1 0.25");
    EXPECT_EQ(heights(), (std::vector<double>{0.5, 2, 2, 2}));
}

TEST_F(Peak, NormalsFromAnArray) {
    makePlane();
    run("createNode particle -n normals;"
        "setAttr normals.pos -type \"vectorArray\" 2 0 3 0 1 0 0; connectAttr normals.pos peak1.inNormalPP");
    expectNear(at("p.vtx[0]"), {-0.5, 6, 0.5});
    expectWarned(mismatch("inNormalPP"));
    expectNear(at("p.vtx[1]"), {2.5, 0, 0.5});
    expectNear(at("p.vtx[2]"), {-0.5, 2, -0.5});
    run("setAttr normals.pos -type \"vectorArray\" 4 0 0 1 0 0 0 0 0 0 0 0 0;");
    expectNear(at("p.vtx[0]"), {-0.5, 0, 2.5});
    expectNear(at("p.vtx[3]"), {0.5, 0, -0.5});
}

TEST_F(Peak, FurtherGeometriesWaitForTheSwitch) {
    run("polyPlane -sx 1 -sy 1 -n p; polyPlane -sx 1 -sy 1 -n q; createNode particle -n dust;"
        "setAttr dust.pos -type vectorArray 1 7 7 7; setAttr dust.vel -type vectorArray 1 1 0 0;"
        "deformer -type peak p q dust; setAttr peak1.d 1;"
        "setAttr peak1.inWeightPP -type doubleArray 4 2 2 2 2; setAttr \"peak1.wl[1].w[3]\" 0.5");
    EXPECT_EQ(heights("q"), (std::vector<double>{0, 0, 0, 0}));
    run("setAttr peak1.forceEvaluateAllInputs 1");
    EXPECT_EQ(heights("q"), (std::vector<double>{1, 1, 1, 0.5})) << "without inWeightPP";
    EXPECT_EQ(heights("p"), (std::vector<double>{2, 2, 2, 2}));
    EXPECT_EQ(floats("dust.deformedPosition"), (std::vector<double>{7, 7, 7}));
    // The array of normals is for the first one, but its length is looked at for each.
    run("createNode particle -n n; setAttr n.pos -type vectorArray 4 1 0 0 1 0 0 1 0 0 1 0 0;"
        "connectAttr n.pos peak1.inNormalPP");
    EXPECT_EQ(heights("q"), (std::vector<double>{1, 1, 1, 0.5}));
    expectNear(at("p.vtx[0]"), {1.5, 0, 0.5});
}

TEST_F(Peak, CurvesFollowTheirPlane) {
    // In the plane z = 0 and counter-clockwise: the ribbon stands along z, its normals point outward.
    run("curve -d 1 -p 0 0 0 -p 4 0 0 -p 4 4 0 -n c; rotate -a 90 0 0 c; deformer -type peak c;"
        "setAttr peak1.d 1");
    expectNear(at("c.cv[0]"), {0, -1, 0});
    const double half = std::sqrt(0.5);
    expectNear(at("c.cv[1]"), {4 + half, -half, 0});
    expectNear(at("c.cv[2]"), {5, 4, 0});
    EXPECT_EQ(mel("ls -type nurbsTessellate -type extrude -type rebuildCurve"), "") << "nothing is left";
    run("setAttr \"peak1.wl[0].w[2]\" 0; setAttr peak1GroupParts.ic -type componentList 1 \"cv[1:2]\"");
    expectNear(at("c.cv[0]"), {0, 0, 0});
    expectNear(at("c.cv[2]"), {4, 4, 0});
}

TEST_F(Peak, SurfacesGoTheWayOfTheirNormals) {
    run("nurbsPlane -ch 0 -ax 0 1 0 -n s; rotate -a 0 0 90 s; deformer -type peak s; setAttr peak1.d 2");
    expectNear(at("s.cv[0][0]"), {-0.5, 2, 0.5});
    expectNear(at("s.cv[3][1]"), {0.5, 2, 0.5 - 1.0 / 3});
    run("setAttr peak1GroupParts.ic -type componentList 1 \"cv[3][0:1]\"");
    expectNear(at("s.cv[0][0]"), {-0.5, 0, 0.5});
    expectNear(at("s.cv[3][1]"), {0.5, 2, 0.5 - 1.0 / 3});
    // Directions of an array are turned round too, and a zero one is rebuilt.
    run("createNode particle -n n; setAttr n.pos -type vectorArray 16 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 "
        "0 0 0 0 0"
        " 0 0 0 0 0 0 0 0 0 0 0 0 1 0 0 0 0 0 0 0 0 0 0 0;connectAttr n.pos peak1.inNormalPP");
    expectNear(at("s.cv[3][0]"), {0.5 - 2, 0, 0.5});
    expectNear(at("s.cv[3][1]"), {0.5, 2, 0.5 - 1.0 / 3});

    run("sphere -ch 0 -n tube; deformer -type peak tube; setAttr peak2.d 2");
    const auto start = at("tube.cv[1][1]");
    EXPECT_EQ(complaints(),
              Texts{"warning: peak2: The geometry on the input is a periodic nurbs surface. Rebuild using "
                    "\"End Conditions\" / \"Multiple Knots\" options."});
    run("setAttr peak2.envelope 0");
    EXPECT_EQ(at("tube.cv[1][1]"), start);
}

TEST_F(Peak, ParticlesFollowTheirVelocity) {
    makeParticles();
    expectNear(moved(), {0, 2, 0, 1, 0, 0, 2 - 1.2, 0, 1.6}); // a particle at rest stays
    run("setAttr peak1.envelope 0.5; setAttr \"peak1.wl[0].w[0]\" 3;"
        "setAttr peak1.inWeightPP -type doubleArray 3 2 1 0");
    expectNear(moved(), {0, 6, 0, 1, 0, 0, 2, 0, 0});
    run("setAttr peak1.inWeightPP -type doubleArray 0");
    // Ids: one twice, one beyond the end, one below zero.
    run("createNode objGrpToCompList -n ids; addAttr -ln list -dt Int32Array dust;"
        "setAttr dust.list -type Int32Array 5 2 9 0 -1 0; connectAttr dust.list peak1.inComponents");
    expectNear(moved(), {0, 6, 0, 1, 0, 0, 2 - 0.6, 0, 0.8});
    run("connectAttr -f peak1GroupParts.inputComponents peak1.inComponents");
    expectNear(moved(), {0, 3, 0, 1, 0, 0, 2 - 0.6, 0, 0.8});
    run("setAttr peak1GroupParts.ic -type componentList 1 \"pt[1:2]\"");
    expectNear(moved(), {0, 0, 0, 1, 0, 0, 2 - 0.6, 0, 0.8});
}

TEST_F(Peak, SuppliedVelocities) {
    makeParticles();
    run("addAttr -ln rows -dt doubleArray dust; setAttr dust.rows -type doubleArray 9 0 0 3 4 0 0 9 9 9;"
        "connectAttr dust.rows peak1.inVelocityPP");
    // The triples overlap: (0,0,3), (0,3,4), (3,4,0).
    expectNear(moved(), {0, 0, 2, 1, 1.2, 1.6, 2 + 1.2, 1.6, 0});
    run("setAttr dust.rows -type doubleArray 8 0 0 3 4 0 0 9 9");
    expectNear(moved(), {0, 0, 2, 1, 1.2, 1.6, 2, 0, 0});
    expectWarned(mismatch("inVelocityPP"));
    run("addAttr -ln flow -dt vectorArray dust; setAttr dust.flow -type vectorArray 4 1 0 0 0 1 0 0 0 1 9 9 "
        "9;"
        "connectAttr -f dust.flow peak1.inVelocityPP");
    expectNear(moved(), {2, 0, 0, 1, 2, 0, 2, 0, 2});
    expectWarned(mismatch("inVelocityPP"));
    run("setAttr dust.flow -type vectorArray 0; setAttr peak1.inWeightPP -type doubleArray 1 1");
    expectNear(moved(), {0, 0, 0, 1, 0, 0, 2, 0, 0});
    expectWarned(mismatch("inWeightPP"));
}

TEST_F(Peak, ParticlesThatCannotBeFound) {
    run("createNode transform -n t; addAttr -ln a -dt vectorArray t; setAttr t.a -type vectorArray 1 1 2 3;"
        "createNode peak -n peak1; connectAttr t.a peak1.ip[0].ig; setAttr peak1.d 1");
    EXPECT_EQ(mel("getAttr peak1.og[0]"), "1 2 3");
    expectWarned("Cannot find particle shape node on the input. Supply velocity data to the inVelocityPP "
                 "attribute.");
    MFnParticleSystem none;
    MVectorArray velocities(3);
    none.velocity(velocities);
    EXPECT_EQ(velocities.length() + none.count(), 0U);
    EXPECT_FALSE(none.isValid());
}

TEST_F(Peak, NormalsAreFoundOncePerInput) {
    makePlane();
    const auto meshAt = [&](const char* plug) {
        return graph::pullAs<MeshData>(*graph::findPlug(session->scene(), plug).plug.cell());
    };
    (void)height(0);
    const auto input = meshAt("peak1GroupParts.og");
    const auto* normals = input->geometry().vertexNormals().data();
    run("setAttr peak1.d 5");
    EXPECT_EQ(height(0), 5);
    EXPECT_EQ(meshAt("peak1GroupParts.og")->geometry().vertexNormals().data(), normals);
    EXPECT_EQ(input->geometry().points()[0].y, 0) << "the input is left alone";
    EXPECT_NE(meshAt("peak1.og[0]")->geometry().vertexNormals().data(), normals);
}

TEST(Displacement, IsTheFormulaOfOnePointToTheBitOnAnyThreads) {
    const int before = parallel::threads();
    std::mt19937 random(5);
    std::uniform_real_distribution<float> number(-2, 2);
    const std::size_t count = 140003; // more than two pieces
    std::vector<float> from(3 * count), painted(count);
    std::vector<MFloatVector> normals(count);
    std::vector<MVector> own(70001);
    std::vector<double> weights(count);
    std::vector<char> chosen(count);
    for (float& x : from)
        x = number(random);
    for (std::size_t i = 0; i < count; ++i) {
        normals[i] = {number(random), number(random), number(random)};
        if (i < own.size()) own[i] = {number(random), number(random), 0.1};
        painted[i] = number(random);
        weights[i] = number(random);
        chosen[i] = number(random) < 1;
    }
    for (const auto& [by, all] : {std::pair(Displacement{0.3, 0.7, painted, weights}, false),
                                  std::pair(Displacement{0.3, 0.7, {}, weights}, true),
                                  std::pair(Displacement{0.3, 0.7, {}, {}}, true)}) {
        std::vector<float> plain(4 * count, 1), to(4 * count);
        for (std::size_t i = 0; i < count; ++i) {
            MVector at(from[3 * i], from[3 * i + 1], from[3 * i + 2]);
            if (all || chosen[i]) at += by(i, i < own.size() ? own[i] : MVector(normals[i]));
            const MFloatVector point(at);
            std::copy_n(&point.x, 3, &plain[4 * i]);
        }
        for (const int threads : {1, 2, 5}) {
            parallel::setThreads(threads);
            displace(from, {own, normals}, by, all ? std::span<const char>() : chosen, to);
            EXPECT_TRUE(to == plain) << threads << " threads";
        }
    }
    parallel::setThreads(before);
}

} // namespace
} // namespace vesk::nodes
