// The polygon creators: what their attributes change.

#include "host/data/mesh_data.h"
#include "host/geometry/polygon_primitives.h"
#include "host/nodes/test_scene.h"

namespace vesk::nodes {
namespace {

class CreatorsTest : public NodesTest {
  protected:
    geom::Mesh mesh(const std::string& plug) { return getData<MeshData>(plug)->geometry(); }
    /// Size of the mesh along x, y and z.
    MVector extent(const std::string& plug) {
        MBoundingBox box;
        const geom::Mesh found = mesh(plug);
        for (const auto& point : found.points())
            box.expand(MPoint(point.x, point.y, point.z));
        return box.max() - box.min();
    }
};

TEST_F(CreatorsTest, DefaultsAreThoseOfTheNodes) {
    struct Row {
        const char* type;
        int vertices, faces;
        MVector size;
    };
    // Round shapes with 20 places reach their radius on the axes, since 90° is a whole number of steps.
    const double sphereHeight = 2, tube = 3;
    const Row rows[] = {{"polyCube", 8, 6, {1, 1, 1}},
                        {"polyPlane", 121, 100, {1, 0, 1}},
                        {"polySphere", 382, 400, {2, sphereHeight, 2}},
                        {"polyCylinder", 40, 22, {2, 2, 2}},
                        {"polyCone", 21, 21, {2, 2, 2}},
                        {"polyTorus", 400, 400, {tube, 1, tube}}};
    for (const auto& row : rows) {
        make(row.type, "n");
        EXPECT_EQ(mesh("n.out").vertexCount(), row.vertices) << row.type;
        EXPECT_EQ(mesh("n.out").faceCount(), row.faces) << row.type;
        EXPECT_TRUE(isNear(extent("n.out"), row.size)) << row.type;
        EXPECT_GT(mesh("n.out").uvSet(0).uvCount(), 0) << row.type;
        scene->remove(at("n.out").node);
    }
}

TEST_F(CreatorsTest, AttributesReachTheMesh) {
    make("polyCube", "cube");
    set("cube.w", 2), set("cube.h", 3), set("cube.d", 4);
    set("cube.sw", 2), set("cube.sh", 3), set("cube.sd", 4);
    EXPECT_TRUE(isNear(extent("cube.out"), MVector(2, 3, 4)));
    EXPECT_EQ(mesh("cube.out").faceCount(), 2 * (2 * 3 + 2 * 4 + 3 * 4));
    set("cube.axis", {1, 0, 0});
    EXPECT_TRUE(isNear(extent("cube.out"), MVector(3, 2, 4))) << "y stands along x now";
    set("cube.cuv", 0);
    EXPECT_EQ(mesh("cube.out").uvSet(0).uvCount(), 0);
    make("polyTorus", "torus");
    set("torus.r", 2), set("torus.sr", 0.25), set("torus.sa", 4), set("torus.sh", 8);
    EXPECT_EQ(mesh("torus.out").faceCount(), 32);
    EXPECT_TRUE(isNear(extent("torus.out"), MVector(4.5, 0.5, 4.5)));
    make("polyCylinder", "cylinder");
    set("cylinder.sc", 1), set("cylinder.sh", 2), set("cylinder.sa", 6);
    EXPECT_EQ(mesh("cylinder.out").vertexCount(), 3 * 6 + 2);
    // A wire drives it, and a shape shows it.
    make("transform", "t");
    set("t.sx", 5);
    connect("t.sx", "cube.h");
    make("mesh", "m");
    connect("cube.out", "m.i");
    EXPECT_TRUE(isNear(extent("m.o"), MVector(5, 2, 4)));
}

TEST_F(CreatorsTest, TooManyFacesAreRefused) {
    make("polyPlane", "plane");
    set("plane.sw", geom::maxPrimitiveFaces), set("plane.sh", 2);
    EXPECT_EQ(mesh("plane.out").faceCount(), 0);
    const auto said = messages();
    ASSERT_EQ(said.size(), 1U);
    EXPECT_TRUE(said[0].starts_with("'plane': ")) << said[0];
}

} // namespace
} // namespace vesk::nodes
