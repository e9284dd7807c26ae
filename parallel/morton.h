#pragma once
// An order of points in which neighbours come close to each other.

#include <array>
#include <cstdint>
#include <vector>

namespace vesk::parallel {

/// The indices of the points by the Morton code of their cell in a grid of 1024 cells a side over their box
/// (G. M. Morton, "A Computer Oriented Geodetic Data Base and a New Technique in File Sequencing", 1966),
/// equal cells in the order of their indices. A coordinate that is no number counts as the box's lower side.
std::vector<std::uint32_t> mortonOrder(const std::vector<std::array<float, 3>>& points);

} // namespace vesk::parallel
