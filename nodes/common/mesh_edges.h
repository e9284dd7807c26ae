#pragma once

#include <array>
#include <vector>

class MFnMesh;

namespace vesk::nodes {

/// The ends of a mesh's edges, in their order.
std::vector<std::array<int, 2>> edgesOf(const MFnMesh& mesh);

} // namespace vesk::nodes
