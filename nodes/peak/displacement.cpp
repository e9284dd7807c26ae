#include "nodes/peak/displacement.h"

#include "parallel/loops.h"

#include <algorithm>
#include <cstring>

namespace vesk::nodes {

namespace {

/// Smaller pieces cost more to hand to a thread than they take.
constexpr std::size_t kGrain = 1 << 16;

using Pair [[gnu::vector_size(16)]] = double;
using SinglePair [[gnu::vector_size(8)]] = float;

template <class Vector, class Number>
Vector load(const Number* from) {
    Vector vector;
    std::memcpy(&vector, from, sizeof vector);
    return vector;
}
Pair pairAt(const float* from) { return __builtin_convertvector(load<SinglePair>(from), Pair); }
Pair pairAt(const double* from) { return load<Pair>(from); }

template <class Direction>
void put(const float* from, const Direction& direction, const Displacement& by, double painted, double weight,
         float* to) {
    const auto moved = [&](auto start, auto along) {
        return start + along * by.distance * by.envelope * painted * weight;
    };
    const auto xy = __builtin_convertvector(moved(pairAt(from), pairAt(&direction.x)), SinglePair);
    std::memcpy(to, &xy, sizeof xy);
    to[2] = static_cast<float>(moved(static_cast<double>(from[2]), static_cast<double>(direction.z)));
    to[3] = 1;
}

/// Points `first` to `last`, each with the direction of its place. Where nothing differs from point to point
/// the loop has no questions in it: a factor of 1 changes nothing.
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
    const std::size_t count = from.size() / 3;
    const std::size_t given = std::min(directions.own.size(), count);
    parallel::inPieces(count, kGrain, [&](std::size_t begin, std::size_t end) {
        const std::size_t middle = std::clamp(given, begin, end);
        displaceRun(from.data(), directions.own, by, chosen, begin, middle, to.data());
        displaceRun(from.data(), directions.normals, by, chosen, middle, end, to.data());
    });
}

} // namespace vesk::nodes
