// Geometry passed on: groups, tweaks, matrices.

#include "host/data/array_data.h"
#include "host/data/component_list_data.h"
#include "host/data/mesh_data.h"
#include "host/data/nurbs_data.h"
#include "host/nodes/test_scene.h"

namespace vesk::nodes {
namespace {

class GroupsTest : public NodesTest {
  protected:
    void SetUp() override {
        NodesTest::SetUp();
        make("polyCube", "cube");
    }
    static Ref<Data> list(std::vector<std::string> texts) {
        std::string error;
        return ComponentListData::fromTexts(texts, error);
    }
    geom::Mesh mesh(const std::string& plug) { return getData<MeshData>(plug)->geometry(); }
};

TEST_F(GroupsTest, GroupIdsAreNeverTheSame) {
    make("groupId", "a"), make("groupId", "b");
    EXPECT_EQ(get("a.id"), 1);
    EXPECT_EQ(get("b.id"), 2);
    scene->remove(at("b.id").node);
    make("groupId", "c");
    EXPECT_EQ(get("c.id"), 3);
    EXPECT_FALSE(graph::storeNumber(at("c.id"), 1));
}

TEST_F(GroupsTest, PartsAddTheirGroup) {
    make("groupId", "id"), make("groupParts", "one"), make("groupParts", "two");
    connect("cube.out", "one.ig");
    connect("id.id", "one.gi");
    setData("one.ic", list({"vtx[0:3]", "vtx[6]"}));
    setData("one.irc", list({"vtx[1]", "f[0]"}));
    connect("one.og", "two.ig");
    set("two.gi", 9);
    const auto data = getData<MeshData>("two.og");
    ASSERT_EQ(data->groups().count(), 2);
    EXPECT_EQ(data->groups().component(1)->texts(),
              (std::vector<std::string>{"vtx[0]", "vtx[2:3]", "vtx[6]"}));
    EXPECT_EQ(data->groups().component(9), nullptr);
    EXPECT_EQ(getData<MeshData>("cube.out")->groups().count(), 0) << "the input stays as it was";
    EXPECT_EQ(data->geometry().points().data(), mesh("cube.out").points().data());
    set("one.nodeState", 1);
    EXPECT_EQ(getData<MeshData>("one.og")->groups().count(), 0);
}

TEST_F(GroupsTest, TweaksMoveTheirPoints) {
    make("tweak", "t");
    make("mesh", "m");
    connect("cube.out", "t.ip[0].ig");
    connect("t.og[0]", "m.i");
    connect("t.vl[0].vt[0]", "m.twl");
    setData("t.vl[0].vt", packed<float>(3, {1, 0, 0, 0, 2, 0}));
    const MVector start = mesh("cube.out").point(0);
    EXPECT_TRUE(isNear(mesh("m.o").point(0), start + MVector(1, 0, 0)))
        << "a wire out of an element takes no value";
    EXPECT_TRUE(isNear(mesh("m.o").point(1), mesh("cube.out").point(1) + MVector(0, 2, 0)));
    set("cube.w", 3);
    EXPECT_TRUE(isNear(mesh("m.o").point(0), MVector(-1.5 + 1, start.y, start.z)));
    // Curves, and data without points of its own.
    make("nurbsCurve", "c");
    auto line = geom::NurbsCurve::create(geom::NurbsBasis::clamped(1, 1), {{0, 0, 0}, {1, 0, 0}});
    setData("c.cc", makeRef<NurbsCurveData>(*line));
    connect("c.l", "t.ip[1].ig");
    setData("t.vl[1].vt", packed<float>(3, {0, 0, 0, 0, 0, 4, 7, 7, 7}));
    EXPECT_TRUE(isNear(getData<NurbsCurveData>("t.og[1]")->geometry().cvs()[1], MPoint(1, 0, 4)));
    make("particle", "p");
    setData("p.pos", makeRef<VectorArrayData>(std::vector<MVector>{{1, 2, 3}}));
    connect("p.pos", "t.ip[2].ig");
    setData("t.vl[2].vt", packed<float>(3, {1, 1, 1}));
    EXPECT_EQ(getData<VectorArrayData>("t.og[2]")->values.read()[0], MVector(1, 2, 3));
}

TEST_F(GroupsTest, GeometryGoesThroughAMatrix) {
    make("transform", "place");
    set("place.translate", {0, 0, 4});
    make("transformGeometry", "g"), make("groupParts", "parts");
    connect("cube.out", "parts.ig");
    set("parts.gi", 5);
    connect("parts.og", "g.ig");
    connect("place.m", "g.txf");
    const MVector start = mesh("cube.out").point(0);
    EXPECT_TRUE(isNear(mesh("g.og").point(0), start + MVector(0, 0, 4)));
    EXPECT_TRUE(getData<MeshData>("g.og")->groups().has(5));
    EXPECT_FALSE(getData<MeshData>("g.og")->hasMatrix());
    set("g.itf", 1);
    EXPECT_TRUE(isNear(mesh("g.og").point(0), start - MVector(0, 0, 4)));
}

} // namespace
} // namespace vesk::nodes
