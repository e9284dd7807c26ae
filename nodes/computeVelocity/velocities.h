#pragma once

#include <maya/MVector.h>

#include <span>

namespace vesk::nodes {

/// `out[i]` = (`now[i]` - `before[i]`) * `rate`; zero where `chosen` is 0. An empty `chosen` chooses all. All
/// other arrays are of one length.
void velocities(std::span<const MVector> now, std::span<const MVector> before, double rate,
                std::span<const char> chosen, std::span<MVector> out);

} // namespace vesk::nodes
