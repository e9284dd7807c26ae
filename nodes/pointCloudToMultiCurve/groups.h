#pragma once

#include <map>
#include <span>
#include <vector>

namespace vesk::nodes {

/// Places of the points by the group that each names, in ascending order of their ids; equal ids, and those
/// that are no numbers, which come last, in the order of the points. Without groups all points are in group
/// 0, without ids they stay in their order. Numbers are truncated to groups; a group that is negative, no
/// number or beyond an int leaves the point out.
std::map<int, std::vector<unsigned>> groupedPoints(std::size_t count, std::span<const double> groups,
                                                   std::span<const double> ids);

} // namespace vesk::nodes
