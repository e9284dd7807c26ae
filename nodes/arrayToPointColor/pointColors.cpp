#include "nodes/arrayToPointColor/pointColors.h"

#include <algorithm>

namespace vesk::nodes {

namespace {

using Rgba = std::array<double, 4>;

/// Calls `append` for each point that is in, with what `read` gives for it.
template <class Read>
PointColors collect(const std::vector<char>& inside, bool solidAlpha, Read read) {
    PointColors result;
    const auto count =
        static_cast<unsigned>(inside.size()) - static_cast<unsigned>(std::ranges::count(inside, 0));
    result.points.setLength(count);
    result.colors.setLength(count);
    const auto points = elements(result.points);
    const auto colors = elements(result.colors);
    std::size_t next = 0;
    for (std::size_t i = 0; i < inside.size(); ++i) {
        if (!inside[i]) continue;
        const Rgba rgba = read(i);
        points[next] = static_cast<int>(i);
        colors[next++] = MColor(static_cast<float>(rgba[0]), static_cast<float>(rgba[1]),
                                static_cast<float>(rgba[2]), solidAlpha ? 1.0F : static_cast<float>(rgba[3]));
    }
    return result;
}

} // namespace

bool fitsPoints(const AnyElements& values, std::size_t pointCount) {
    const std::size_t length = lengthOf(values);
    if (std::holds_alternative<std::span<const double>>(values) && length == 4 * pointCount) return true;
    return length == pointCount;
}

PointColors colorsOf(const AnyElements& values, const std::vector<char>& inside,
                     const ColorSettings& settings) {
    const auto limited = [&settings](double x) {
        if (!settings.clamp) return x;
        return x < settings.clampMin ? settings.clampMin : x > settings.clampMax ? settings.clampMax : x;
    };
    if (const auto* doubles = std::get_if<std::span<const double>>(&values)) {
        if (doubles->size() == 4 * inside.size()) {
            return collect(inside, settings.solidAlpha, [&](std::size_t i) {
                const auto rgba = doubles->subspan(4 * i, 4);
                return Rgba{limited(rgba[0]), limited(rgba[1]), limited(rgba[2]), limited(rgba[3])};
            });
        }
        return collect(inside, settings.solidAlpha, [&](std::size_t i) {
            const double grey = limited((*doubles)[i]);
            return Rgba{grey, grey, grey, grey};
        });
    }
    const auto ofTuples = [&](auto tuples) {
        return collect(inside, settings.solidAlpha, [&](std::size_t i) {
            return Rgba{limited(tuples[i].x), limited(tuples[i].y), limited(tuples[i].z), 0};
        });
    };
    if (const auto* vectors = std::get_if<std::span<const MVector>>(&values)) return ofTuples(*vectors);
    if (const auto* points = std::get_if<std::span<const MPoint>>(&values)) return ofTuples(*points);
    return {};
}

} // namespace vesk::nodes
