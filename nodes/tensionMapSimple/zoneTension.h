#pragma once
// Zones of a mesh by the numbers of their vertices, and how far their edges are from rest.

#include <maya/MPoint.h>

#include <array>
#include <span>
#include <string_view>
#include <vector>

namespace vesk::nodes {

/// The vertices that a text names: numbers and ranges, parted by blanks and commas, bare or in the brackets
/// of a name (`12 20:24, arm.vtx[3]`).
struct Zone {
    std::vector<char> contains; ///< by vertex
    bool namesMissing = false;  ///< some that are named are not on the mesh
    std::string_view fault;     ///< the first word that is no such thing; empty when there is none
};
Zone zoneOf(std::string_view text, std::size_t vertexCount);

/// The lengths of edges now and at rest.
struct EdgeLengths {
    std::vector<double> now, rest;
};
/// Both sets of points have the vertices that the edges name.
EdgeLengths lengthsOf(std::span<const std::array<int, 2>> edges, std::span<const MPoint> now,
                      std::span<const MPoint> rest);

/// (now - rest) / rest of the edges that touch the zone, their lengths summed in the order of the edges. 0
/// for a zone without edges, without length at rest, or with lengths that are no finite numbers.
double tensionOf(std::span<const std::array<int, 2>> edges, const EdgeLengths& lengths,
                 std::span<const char> zone);

} // namespace vesk::nodes
