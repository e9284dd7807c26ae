#include "host/geometry/mesh_samples.h"

namespace vesk::geom {
namespace {

using test::gathered;
using test::Ids;
using test::near;

const MColor red(1, 0, 0), blue(0, 0, 1);

TEST(MeshUvs, ANewMeshHasOneEmptySet) {
    Mesh mesh = test::fold();
    ASSERT_EQ(mesh.uvSetCount(), 1);
    EXPECT_EQ(mesh.uvSet(0).name, "map1");
    EXPECT_EQ(mesh.findUvSet("map1"), 0);
    EXPECT_EQ(mesh.findUvSet("other"), -1);
    EXPECT_EQ(mesh.addUvSet("other"), 1);
    EXPECT_EQ(mesh.addUvSet("map1"), 0);
    EXPECT_EQ(mesh.findUvSet(""), 0);
    mesh.setCurrentUvSet(1);
    EXPECT_EQ(mesh.findUvSet(""), 1);
    EXPECT_FALSE(mesh.vertexUv(0, 1).has_value());
    EXPECT_EQ(mesh.vertexUvCount(0, 1), 0);
    EXPECT_EQ(gathered([&](Ids& out) { mesh.vertexUvIds(0, 1, out); }), (Ids{-1, -1}));
}

TEST(MeshUvs, OfAVertexAreThoseOfItsFacesInTheirOrder) {
    // Round vertex 1 of the cube: bottom (UV 9), right (UV 1), front (UV 1).
    const Mesh cube = test::made(makeCube({}));
    EXPECT_EQ(gathered([&](Ids& out) { cube.vertexUvIds(0, 1, out); }), (Ids{9, 1, 1}));
    EXPECT_EQ(cube.vertexUvCount(0, 1), 2);
    const auto uv = cube.vertexUv(0, 1);
    ASSERT_TRUE(uv.has_value());
    EXPECT_FLOAT_EQ(uv->u, 0.625F);
    EXPECT_FLOAT_EQ(uv->v, 1.0F);
}

TEST(MeshUvs, RefuseWhatDoesNotFit) {
    Mesh mesh = test::fold();
    ASSERT_TRUE(mesh.setUvs(0, {0, 1, 1}, {0, 0, 1}));
    EXPECT_FALSE(mesh.setUvs(0, {0, 1}, {0, 0})) << "shorter than before";
    EXPECT_FALSE(mesh.setUvs(0, {0, 1, 1}, {0, 0})) << "u without v";
    EXPECT_FALSE(mesh.assignUvs(0, Ids{4}, Ids{0, 1, 2, 0})) << "a count missing";
    EXPECT_FALSE(mesh.assignUvs(0, Ids{3, 0}, Ids{0, 1, 2})) << "not the face's size";
    EXPECT_FALSE(mesh.assignUvs(0, Ids{4, 4}, Ids{0, 1, 2, 0})) << "ids missing";
    EXPECT_FALSE(mesh.assignUvs(0, Ids{0, 4}, Ids{0, 1, 2, 3})) << "id 3 of 3";
    EXPECT_TRUE(mesh.uvSet(0).ids.empty());
    ASSERT_TRUE(mesh.assignUvs(0, Ids{0, 4}, Ids{0, 1, 2, 1}));
    EXPECT_EQ(mesh.uvSet(0).ids, (Ids{-1, -1, -1, -1, 0, 1, 2, 1}));
    EXPECT_FALSE(mesh.setUvSets({}, 0));
    EXPECT_FALSE(mesh.setUvSets({UvSet{"a", {0}, {0}, {1}}}, 0));
    EXPECT_EQ(mesh.uvSet(0).name, "map1");
}

TEST(MeshColors, GoToEveryCornerOfAVertex) {
    Mesh mesh = test::fold();
    const Mesh before = mesh;
    EXPECT_EQ(mesh.findColorSet(""), -1);
    ASSERT_TRUE(mesh.setVertexColors(std::vector<MColor>{red, blue}, Ids{1, 0}));
    ASSERT_EQ(mesh.findColorSet(""), 0);
    EXPECT_EQ(mesh.colorSet(0).name, "colorSet1");
    EXPECT_EQ(mesh.cornerColor(0, 1), red);
    EXPECT_EQ(mesh.cornerColor(0, 4), red);
    EXPECT_EQ(mesh.cornerColor(0, 2), unsetColor);
    const std::vector<MColor> expected{blue, red, unsetColor, unsetColor, unsetColor, unsetColor};
    EXPECT_EQ(mesh.vertexColors(0), expected);
    EXPECT_EQ(mesh.vertexColors(0, MColor(0, 1, 0))[2], MColor(0, 1, 0));
    EXPECT_EQ(before.colorSetCount(), 0);

    ASSERT_TRUE(mesh.setCornerColors(std::vector<MColor>{blue}, Ids{4}));
    EXPECT_EQ(mesh.vertexColor(0, 1), MColor(0.5F, 0, 0.5F));
    mesh.clearColors(0);
    EXPECT_EQ(mesh.vertexColor(0, 1), unsetColor);
    EXPECT_EQ(mesh.colorSetCount(), 1);
}

TEST(MeshColors, AllInOrderAreAsOneByOne) {
    // Two triangles that share an edge, and a vertex that nobody has.
    const std::vector<MFloatVector> points(5);
    const Ids counts{3, 3}, connects{0, 1, 2, 2, 1, 3}, inOrder{0, 1, 2, 3, 4}, backwards{4, 3, 2, 1, 0};
    std::vector<MColor> colors;
    for (const int i : inOrder)
        colors.emplace_back(static_cast<float>(i) / 8, 0.5F, 0.25F);
    Mesh all = std::move(Mesh::create(points, counts, connects).mesh), single = all;
    ASSERT_TRUE(all.setVertexColors(colors, inOrder));
    ASSERT_TRUE(single.setVertexColors(std::vector<MColor>(colors.rbegin(), colors.rend()), backwards));
    for (const int i : inOrder) {
        EXPECT_EQ(all.vertexColor(0, i), i < 4 ? colors[static_cast<std::size_t>(i)] : unsetColor) << i;
        EXPECT_EQ(all.vertexColor(0, i), single.vertexColor(0, i)) << i;
    }
    EXPECT_EQ(all.colorSet(0).colors.size(), 4U) << "the loose vertex's colour is not kept";
}

TEST(MeshColors, RefuseWhatDoesNotFitAndChangeNothing) {
    Mesh mesh = test::fold();
    EXPECT_FALSE(mesh.setVertexColors(std::vector<MColor>{red, red}, Ids{0}));
    EXPECT_FALSE(mesh.setVertexColors(std::vector<MColor>{red, red}, Ids{0, 6}));
    EXPECT_FALSE(mesh.setCornerColors(std::vector<MColor>{red}, Ids{-1}));
    EXPECT_EQ(mesh.colorSetCount(), 0);
    EXPECT_FALSE(mesh.setColorSets({ColorSet{"c", {red}, {0, 1}}}, 0));
    EXPECT_FALSE(mesh.setColorSets({ColorSet{"c", {red}, {}}}, 1));
    ASSERT_TRUE(mesh.setColorSets({ColorSet{"c", {red}, Ids(8, 0)}}, 0));
    EXPECT_EQ(mesh.vertexColor(0, 5), red);
}

TEST(MeshColors, SetOverAndOverDoNotPileUp) {
    Mesh mesh = test::fold();
    for (int round = 0; round < 1000; ++round) {
        for (int v = 0; v < 6; ++v)
            ASSERT_TRUE(mesh.setVertexColors(std::vector<MColor>{MColor(float(round), float(v))}, Ids{v}));
    }
    EXPECT_LE(mesh.colorSet(0).colors.size(), 32U);
    EXPECT_EQ(mesh.usedColors(0).size(), 6U);
    for (int v = 0; v < 6; ++v)
        EXPECT_EQ(mesh.vertexColor(0, v), MColor(999, float(v)));
}

} // namespace
} // namespace vesk::geom
