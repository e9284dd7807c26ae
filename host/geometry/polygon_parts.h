#pragma once
// What the makers of ready-made polygon meshes share.

#include "host/geometry/polygon_primitives.h"

namespace vesk::geom {

/// A mesh in the making: plain lists that end up in a `Mesh`.
struct PolygonParts {
    std::vector<MVector> points;
    std::vector<MeshEdge> edges;    ///< those whose ids matter; others follow by first use
    std::vector<std::uint8_t> hard; ///< of `edges`
    std::vector<int> counts, connects, uvIds;
    std::vector<float> u, v;

    int vertexCount() const { return static_cast<int>(points.size()); }
    int uvCount() const { return static_cast<int>(u.size()); }
    void addEdge(int a, int b, bool isHard) {
        edges.push_back({a, b});
        hard.push_back(isHard ? 1 : 0);
    }
    void addUv(double uu, double vv) {
        u.push_back(static_cast<float>(uu));
        v.push_back(static_cast<float>(vv));
    }
    void addFace(std::span<const int> vertices, std::span<const int> uvs) {
        counts.push_back(static_cast<int>(vertices.size()));
        connects.insert(connects.end(), vertices.begin(), vertices.end());
        uvIds.insert(uvIds.end(), uvs.begin(), uvs.end());
    }

    /// The mesh, turned so that y comes to `axis`. Edges that only the faces name are hard if `restHard`.
    MeshResult finish(const MVector& axis, bool restHard) const;
};

MeshResult refused(Outcome outcome);
/// Failure for a shape of more faces than a mesh may have.
Outcome checkFaceCount(const char* shape, double faces);

} // namespace vesk::geom
