#include "nodes/common/mesh_edges.h"

#include <maya/MFnMesh.h>

namespace vesk::nodes {

std::vector<std::array<int, 2>> edgesOf(const MFnMesh& mesh) {
    std::vector<std::array<int, 2>> edges(static_cast<std::size_t>(mesh.numEdges()));
    for (std::size_t i = 0; i < edges.size(); ++i) {
        int2 ends;
        mesh.getEdgeVertices(static_cast<int>(i), ends);
        edges[i] = {ends[0], ends[1]};
    }
    return edges;
}

} // namespace vesk::nodes
