#include "nodes/peak/displacement.h"

#include "parallel/loops.h"

#include <algorithm>

namespace vesk::nodes {

namespace {

constexpr std::size_t kPointsInPiece = std::size_t{1} << 15;

template <class Direction>
void put(const float* from, const Direction& direction, const Displacement& by, double painted, double weight,
         float* to) {
    const auto moved = [&](float start, double along) {
        return static_cast<float>(start + along * by.distance * by.envelope * painted * weight);
    };
    to[0] = moved(from[0], direction.x);
    to[1] = moved(from[1], direction.y);
    to[2] = moved(from[2], direction.z);
    to[3] = 1;
}

/// Points `first` to `last`, whose directions begin with that of `first`. Where nothing differs from point
/// to point the loop has no questions in it; factors of 1 change nothing.
template <class Direction>
void displaceRun(const float* from, std::span<const Direction> directions, const Displacement& by,
                 std::span<const char> chosen, std::size_t first, std::size_t last, float* to) {
    if (chosen.empty() && by.painted.empty() && by.weights.empty()) {
        for (std::size_t i = first; i < last; ++i)
            put(from + 3 * i, directions[i], by, 1, 1, to + 4 * i);
        return;
    }
    for (std::size_t i = first; i < last; ++i) {
        if (!chosen.empty() && !chosen[i]) {
            std::copy_n(from + 3 * i, 3, to + 4 * i);
            to[4 * i + 3] = 1;
            continue;
        }
        const double painted = by.painted.empty() ? 1 : by.painted[i];
        const double weight = by.weights.empty() ? 1 : by.weights[i];
        put(from + 3 * i, directions[i], by, painted, weight, to + 4 * i);
    }
}

} // namespace

void displace(std::span<const float> from, const Directions& directions, const Displacement& by,
              std::span<const char> chosen, std::span<float> to) {
    parallel::inPieces(from.size() / 3, kPointsInPiece, [&](std::size_t begin, std::size_t end) {
        const std::size_t middle = std::clamp(directions.own.size(), begin, end);
        displaceRun(from.data(), directions.own, by, chosen, begin, middle, to.data());
        displaceRun(from.data(), directions.normals, by, chosen, middle, end, to.data());
    });
}

} // namespace vesk::nodes
