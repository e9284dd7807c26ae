#pragma once
// Neighbours of many vertices, asked of the host in pieces, on several threads where it allows that.

#include "nodes/common/mesh_links.h"

#include <maya/MItMeshVertex.h>

#include <cstddef>
#include <functional>
#include <initializer_list>
#include <span>

namespace vesk::nodes {

/// Calls work(walks, begin, end) for pieces that together cover 0 to count - 1, in any order and on any
/// thread. `walks` holds an iterator over each of the meshes that is the piece's own, to be set to any
/// vertex. The pieces are the same for any number of threads.
using VertexWork = std::function<void(std::span<MItMeshVertex> walks, std::size_t begin, std::size_t end)>;
void inVertexPieces(std::initializer_list<MObject> meshes, std::size_t count, const VertexWork& work);

/// The vertices that edges join to each of those given, in the order of
/// `MItMeshVertex::getConnectedVertices`; none for a vertex that the mesh doesn't have.
Links connectedVertices(MItMeshVertex& walk, std::span<const int> vertices);

} // namespace vesk::nodes
