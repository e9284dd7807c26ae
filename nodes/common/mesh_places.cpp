#include "nodes/common/mesh_places.h"

#include "nodes/common/arrays.h"

namespace vesk::nodes {

std::array<int, 3> verticesAt(const MFnMesh& mesh, const Place& place) {
    int vertices[3] = {};
    mesh.getPolygonTriangleVertices(place.face, place.triangle, vertices);
    return {vertices[0], vertices[1], vertices[2]};
}

PlaceUvs::PlaceUvs(const MFnMesh& mesh, const MString* uvSet) : mesh_(mesh) {
    mesh.getVertices(counts_, vertices_);
    unsigned start = 0;
    for (const int corners : elements(counts_)) {
        faceStart_.push_back(start);
        start += static_cast<unsigned>(corners);
    }
    uvIds_.assign(start, -1);
    MIntArray mapped, ids;
    if (!mesh.getUVs(us_, vs_, uvSet) || !mesh.getAssignedUVs(mapped, ids, uvSet)) return;
    unsigned next = 0;
    for (unsigned face = 0; face < mapped.length(); ++face) {
        for (int corner = 0; corner < mapped[face]; ++corner)
            uvIds_[faceStart_[face] + static_cast<unsigned>(corner)] = ids[next++];
    }
}

std::array<double, 2> PlaceUvs::at(const Place& place) const {
    const auto vertices = verticesAt(mesh_, place);
    const auto face = static_cast<unsigned>(place.face);
    std::array<double, 2> uv{};
    for (std::size_t k = 0; k < 3; ++k) {
        unsigned corner = faceStart_[face];
        const unsigned end = corner + static_cast<unsigned>(counts_[face]);
        while (corner < end && vertices_[corner] != vertices[k])
            ++corner;
        const int id = corner < end ? uvIds_[corner] : -1;
        if (id < 0) return {};
        uv[0] += static_cast<double>(us_[static_cast<unsigned>(id)]) * place.weights[k];
        uv[1] += static_cast<double>(vs_[static_cast<unsigned>(id)]) * place.weights[k];
    }
    return uv;
}

} // namespace vesk::nodes
