#include "nodes/common/vertex_walks.h"

#include "parallel/loops.h"

#include <maya/MIntArray.h>

#include <algorithm>

namespace vesk::nodes {

namespace {

constexpr bool mayRunTogether = VESK_CONCURRENT_QUERIES;
constexpr std::size_t grain = 16384;

} // namespace

void inVertexPieces(std::initializer_list<MObject> meshes, std::size_t count, const VertexWork& work) {
    // Iterators are made and destroyed here: the host counts references on one thread alone.
    std::vector<MItMeshVertex> walks;
    walks.reserve(meshes.size() * (count / grain + 1));
    for (std::size_t begin = 0; begin < count; begin += grain) {
        for (const MObject& mesh : meshes)
            walks.emplace_back(mesh);
    }
    const auto piece = [&](std::size_t begin, std::size_t end) {
        work({walks.data() + begin / grain * meshes.size(), meshes.size()}, begin, end);
    };
    if constexpr (mayRunTogether) {
        parallel::inPieces(count, grain, piece);
    } else {
        for (std::size_t begin = 0; begin < count; begin += grain)
            piece(begin, std::min(count, begin + grain));
    }
}

Links connectedVertices(MItMeshVertex& walk, std::span<const int> vertices) {
    Links links;
    links.start.reserve(vertices.size() + 1);
    links.ids.reserve(6 * vertices.size());
    MIntArray around;
    for (const int v : vertices) {
        int previous = 0;
        if (walk.setIndex(v, previous) && walk.getConnectedVertices(around) && around.length() > 0)
            links.ids.insert(links.ids.end(), &around[0], &around[0] + around.length());
        links.endList();
    }
    return links;
}

} // namespace vesk::nodes
