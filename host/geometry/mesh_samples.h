#pragma once
// Small meshes for tests, in groups by what they have in common, and shorthand to look at results.

#include "host/geometry/polygon_primitives.h"

#include <gtest/gtest.h>

#include <ostream>

namespace vesk::geom::test {

using Ids = std::vector<int>;

struct NamedMesh {
    std::string name;
    Mesh mesh;
};

inline void PrintTo(const NamedMesh& named, std::ostream* out) { *out << named.name; }

inline Mesh build(std::vector<MFloatVector> points, const Ids& counts, const Ids& connects) {
    MeshResult result = Mesh::create(std::move(points), counts, connects);
    EXPECT_TRUE(result) << result.outcome.error;
    return std::move(result.mesh);
}

inline Mesh made(MeshResult result) {
    EXPECT_TRUE(result) << result.outcome.error;
    return std::move(result.mesh);
}

/// Two unit squares that meet at right angles in the edge 1-2: one in the plane z = 0, facing +z, one in
/// x = 1, facing +x. The shared edge has id 1.
inline Mesh fold() {
    return build({{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}, {1, 0, -1}, {1, 1, -1}}, {4, 4},
                 {0, 1, 2, 3, 1, 4, 5, 2});
}

/// Two triangles that share vertex 0 only: one facing +z, one facing +x.
inline Mesh bowTie() {
    return build({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, -1, 0}, {0, 0, -1}}, {3, 3}, {0, 1, 2, 0, 3, 4});
}

inline std::vector<NamedMesh> closedMeshes() {
    CubeShape divided;
    divided.subdivisionsWidth = 2, divided.subdivisionsHeight = 3, divided.subdivisionsDepth = 4;
    CylinderShape capped;
    capped.subdivisionsAxis = 7, capped.subdivisionsHeight = 2, capped.subdivisionsCaps = 3;
    return {{"cube", made(makeCube({}))},
            {"divided cube", made(makeCube(divided))},
            {"sphere", made(makeSphere({}))},
            {"cylinder with n-gon caps", made(makeCylinder({}))},
            {"cylinder with rings in its caps", made(makeCylinder(capped))},
            {"cone", made(makeCone({}))},
            {"torus", made(makeTorus({}))}};
}

inline std::vector<NamedMesh> openMeshes() {
    return {{"one triangle", build({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}, {3}, {0, 1, 2})},
            {"fold", fold()},
            {"plane", made(makePlane({}))},
            {"concave n-gon",
             build({{0, 0, 0}, {2, 0, 0}, {2, 2, 0}, {1, 0.5, 0}, {0, 2, 0}}, {5}, {0, 1, 2, 3, 4})}};
}

inline std::vector<NamedMesh> oddMeshes() {
    return {{"empty", Mesh()},
            {"points only", build({{0, 0, 0}, {1, 0, 0}}, {}, {})},
            {"bow tie", bowTie()},
            {"three leaves on an edge",
             build({{0, 0, 0}, {0, 1, 0}, {1, 0, 0}, {1, 1, 0}, {-1, 0, 0}, {-1, 1, 0}, {0, 0, 1}, {0, 1, 1}},
                   {4, 4, 4}, {0, 2, 3, 1, 1, 5, 4, 0, 0, 1, 7, 6})},
            {"windings disagree", build({{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}, {2, 0, 0}, {2, 1, 0}},
                                        {4, 4}, {0, 1, 2, 3, 1, 2, 5, 4})},
            {"slit face", build({{0, 0, 0}, {4, 0, 0}, {4, 4, 0}, {0, 4, 0}, {1, 1, 0}, {1, 2, 0}, {2, 1, 0}},
                                {8}, {0, 4, 5, 6, 4, 0, 1, 2})},
            {"twice the same face", build({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}, {3, 3}, {0, 1, 2, 0, 1, 2})}};
}

inline std::vector<NamedMesh> allMeshes() {
    std::vector<NamedMesh> all = closedMeshes();
    for (auto group : {openMeshes(), oddMeshes()})
        all.insert(all.end(), group.begin(), group.end());
    return all;
}

inline Ids list(std::span<const int> ids) { return {ids.begin(), ids.end()}; }

inline ::testing::AssertionResult near(const MVector& value, const MVector& expected, double within = 1e-6) {
    if ((value - expected).length() <= within) return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure()
           << "(" << value.x << ", " << value.y << ", " << value.z << ") is not (" << expected.x << ", "
           << expected.y << ", " << expected.z << ")";
}
inline ::testing::AssertionResult near(const MFloatVector& value, const MVector& expected,
                                       double within = 1e-6) {
    return near(MVector(value), expected, within);
}

/// `query(out)` as a value.
template <class Query>
Ids gathered(Query query) {
    Ids out{-99};
    query(out);
    return out;
}

} // namespace vesk::geom::test
