#pragma once
// For tests: a small mesh with every layer, and meshes as text, so that a failed comparison shows where.

#include "host/geometry/mesh.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

namespace vesk::formats {

inline geom::Mesh meshOf(std::vector<MFloatVector> points, const std::vector<int>& counts,
                         const std::vector<int>& connects) {
    geom::MeshResult made = geom::Mesh::create(std::move(points), counts, connects);
    EXPECT_TRUE(made) << made.outcome.error;
    return made.mesh;
}

/// A triangle, a quad and a pentagon round vertex 1, and the loose vertex 8. No UVs, normals or colours.
inline geom::Mesh plainMesh() {
    return meshOf({{0, 0, 0},
                   {1, 0, 0.1F},
                   {1, 1, 0},
                   {0, 1, 1e-30F},
                   {2, 0, -0.3333333F},
                   {3, 1, 1e30F},
                   {2, 2, 0},
                   {1, -1, 16777216},
                   {-5, -6, -7}},
                  {3, 4, 5}, {0, 7, 1, 0, 1, 2, 3, 1, 4, 5, 6, 2});
}

/// Faces, with everything that hangs on their corners, by value.
inline std::string textOf(const geom::Mesh& mesh) {
    std::ostringstream text;
    text.precision(9);
    for (const MFloatVector& point : mesh.points())
        text << "point " << point << '\n';
    for (int face = 0; face < mesh.faceCount(); ++face) {
        text << "face\n";
        for (int corner = mesh.topology().faceStart()[face]; corner < mesh.topology().faceStart()[face + 1];
             ++corner) {
            text << "  " << mesh.topology().faceVertices()[corner];
            if (const auto uv = mesh.cornerUv(mesh.currentUvSet(), corner))
                text << " uv " << mesh.uvSet(mesh.currentUvSet()).idOfCorner(corner) << ' ' << uv->u << ' '
                     << uv->v;
            if (mesh.isNormalLocked(corner)) text << " normal " << mesh.lockedNormals().values[corner];
            if (mesh.currentColorSet() >= 0) {
                const MColor c = mesh.cornerColor(mesh.currentColorSet(), corner);
                text << " color " << c.r << ' ' << c.g << ' ' << c.b << ' ' << c.a;
            }
            text << '\n';
        }
    }
    return text.str();
}

} // namespace vesk::formats
