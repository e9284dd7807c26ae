#pragma once
// Skeletons for tests, and what every sound skin has.

#include "bmesh/skin_mesh.h"

#include <gtest/gtest.h>

#include <map>
#include <utility>
#include <vector>

namespace vesk::skin {

struct Joint {
    Float3 center;
    int parent;
    float radius = 1.0F;
};

inline SkinMesh skinOf(const std::vector<Joint>& joints) {
    SkinMesh mesh;
    for (const Joint& joint : joints) {
        JointSphere sphere;
        sphere.center = joint.center;
        sphere.parent = joint.parent;
        sphere.setRadius(joint.radius);
        mesh.spheres.append(sphere);
    }
    mesh.build();
    return mesh;
}

/// How often each directed edge is used.
inline std::map<std::pair<int, int>, int> directedEdges(const SkinMesh& mesh) {
    std::map<std::pair<int, int>, int> uses;
    const auto add = [&](const auto& face) {
        for (std::size_t k = 0; k < face.size(); ++k)
            ++uses[{face[k].vertex, face[(k + 1) % face.size()].vertex}];
    };
    for (const Quad& quad : mesh.quads)
        add(quad);
    for (const Triangle& triangle : mesh.triangles)
        add(triangle);
    return uses;
}

/// A closed surface of the kind of a sphere whose faces all turn the same way.
inline void expectClosedSphere(const SkinMesh& mesh) {
    const auto uses = directedEdges(mesh);
    for (const auto& [edge, count] : uses) {
        EXPECT_EQ(count, 1) << edge.first << " to " << edge.second;
        EXPECT_EQ(uses.count({edge.second, edge.first}), 1U) << edge.first << " to " << edge.second;
    }
    EXPECT_EQ(mesh.vertices.size() - static_cast<int>(uses.size() / 2) + mesh.quads.size() +
                  mesh.triangles.size(),
              2);
}

/// Six times the volume inside, positive when the faces turn outward.
inline double volume(const SkinMesh& mesh) {
    double sum = 0.0;
    const auto part = [&](int a, int b, int c) {
        const Float3 p = mesh.vertices[a].position, q = mesh.vertices[b].position,
                     r = mesh.vertices[c].position;
        const Float3 cross{q.y * r.z - q.z * r.y, q.z * r.x - q.x * r.z, q.x * r.y - q.y * r.x};
        sum += dot(p, cross) / 6.0;
    };
    for (const Quad& q : mesh.quads) {
        part(q[0].vertex, q[1].vertex, q[2].vertex);
        part(q[0].vertex, q[2].vertex, q[3].vertex);
    }
    for (const Triangle& t : mesh.triangles)
        part(t[0].vertex, t[1].vertex, t[2].vertex);
    return sum;
}

inline void expectAt(const SkinMesh& mesh, int vertex, Float3 expected) {
    ASSERT_LT(vertex, mesh.vertices.size());
    const Float3 p = mesh.vertices[vertex].position;
    EXPECT_NEAR(length(p - expected), 0.0, 1e-5)
        << "vertex " << vertex << " at " << p.x << ' ' << p.y << ' ' << p.z;
}

} // namespace vesk::skin
