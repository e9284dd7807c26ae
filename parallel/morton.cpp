#include "parallel/morton.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace vesk::parallel {

namespace {

constexpr std::uint32_t cellsOfSide = 1024;

/// The ten bits of a cell's number with two blanks between each.
std::uint32_t spread(std::uint32_t bits) {
    bits = (bits | bits << 16) & 0x030000FFu;
    bits = (bits | bits << 8) & 0x0300F00Fu;
    bits = (bits | bits << 4) & 0x030C30C3u;
    return (bits | bits << 2) & 0x09249249u;
}

struct Keyed {
    std::uint32_t code, index;
};

/// One pass of a stable sort by the digit of 10 bits at `shift`.
void sortByDigit(const std::vector<Keyed>& from, std::vector<Keyed>& to, int shift) {
    std::array<std::uint32_t, 1024> start{};
    const auto digit = [shift](const Keyed& key) { return key.code >> shift & 1023u; };
    for (const Keyed& key : from)
        ++start[digit(key)];
    std::uint32_t sum = 0;
    for (std::uint32_t& each : start) {
        const std::uint32_t count = each;
        each = sum;
        sum += count;
    }
    for (const Keyed& key : from)
        to[start[digit(key)]++] = key;
}

} // namespace

std::vector<std::uint32_t> mortonOrder(const std::vector<std::array<float, 3>>& points) {
    std::array<double, 3> lower, scale;
    for (std::size_t axis = 0; axis < 3; ++axis) {
        double least = std::numeric_limits<double>::infinity(), most = -least;
        for (const auto& point : points) {
            if (!std::isfinite(point[axis])) continue;
            least = std::min<double>(least, point[axis]);
            most = std::max<double>(most, point[axis]);
        }
        lower[axis] = least;
        scale[axis] = most > least ? cellsOfSide / (most - least) : 0;
    }
    std::vector<Keyed> keys(points.size()), sorted(points.size());
    for (std::size_t i = 0; i < points.size(); ++i) {
        std::uint32_t code = 0;
        for (std::size_t axis = 0; axis < 3; ++axis) {
            const double cell = (points[i][axis] - lower[axis]) * scale[axis];
            const auto whole = cell > 0 ? static_cast<std::uint32_t>(std::min(cell, cellsOfSide - 1.0)) : 0u;
            code |= spread(whole) << axis;
        }
        keys[i] = {code, static_cast<std::uint32_t>(i)};
    }
    for (const int shift : {0, 10, 20}) {
        sortByDigit(keys, sorted, shift);
        keys.swap(sorted);
    }
    std::vector<std::uint32_t> order(points.size());
    std::transform(keys.begin(), keys.end(), order.begin(), [](const Keyed& key) { return key.index; });
    return order;
}

} // namespace vesk::parallel
