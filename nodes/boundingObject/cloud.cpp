#include "nodes/boundingObject/cloud.h"

#include <cmath>

namespace vesk::nodes {

namespace {

/// The default when there is no array, what `missing` says past the array's end.
template <class T>
T entry(std::span<const T> array, std::size_t i, const T& byDefault, const T& missing) {
    if (array.empty()) return byDefault;
    return i < array.size() ? array[i] : missing;
}

void appendValues(CloudArrays& cloud, const CloudValues& values, std::size_t i,
                  const CloudDefaults& defaults) {
    // Only what came over the wire is made positive: the default is what the user typed, and has its limit.
    cloud.radii.push_back(values.radii.empty() ? defaults.radius
                                               : std::abs(entry(values.radii, i, 0.0, 0.0)));
    cloud.weights.push_back(entry(values.weights, i, defaults.weight, 0.0));
}

} // namespace

void append(CloudArrays& cloud, const PointSource& source, const CloudDefaults& defaults) {
    for (std::size_t i = 0; i < source.positions.size(); ++i) {
        if (source.inside[i] == 0) continue;
        cloud.positions.push_back(source.positions[i]);
        cloud.normals.push_back(source.normals[i]);
        appendValues(cloud, source.values, i, defaults);
        std::array<double, 4> rgba{};
        if (source.rgba.empty()) {
            rgba = {defaults.color[0], defaults.color[1], defaults.color[2], defaults.alpha};
        } else if (4 * i + 3 < source.rgba.size()) {
            std::copy_n(source.rgba.begin() + static_cast<std::ptrdiff_t>(4 * i), 4, rgba.begin());
        }
        cloud.rgba.insert(cloud.rgba.end(), rgba.begin(), rgba.end());
    }
}

void append(CloudArrays& cloud, const ParticleSource& source, const CloudDefaults& defaults) {
    const auto& [r, g, b] = defaults.color;
    for (const int id : source.ids) {
        if (id < 0 || static_cast<std::size_t>(id) >= source.positions.size()) continue;
        const auto i = static_cast<std::size_t>(id);
        cloud.positions.push_back(source.positions[i]);
        cloud.normals.push_back(entry(source.velocities, i, source.missingVelocity, source.missingVelocity));
        appendValues(cloud, source.values, i, defaults);
        const auto color = entry(source.colors, i, {r, g, b}, {});
        const double alpha = entry(source.opacities, i, defaults.alpha, 0.0);
        cloud.rgba.insert(cloud.rgba.end(), {color.x, color.y, color.z, alpha});
    }
}

} // namespace vesk::nodes
