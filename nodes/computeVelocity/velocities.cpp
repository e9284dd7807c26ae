#include "nodes/computeVelocity/velocities.h"

namespace vesk::nodes {

void velocities(std::span<const MVector> now, std::span<const MVector> before, double rate,
                std::span<const char> chosen, std::span<MVector> out) {
    for (std::size_t i = 0; i < out.size(); ++i) {
        if (chosen.empty() || chosen[i]) out[i] = (now[i] - before[i]) * rate;
    }
}

} // namespace vesk::nodes
