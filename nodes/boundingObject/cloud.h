#pragma once
// A cloud gathered from several sources, over plain arrays.

#include "volume/space.h"

#include <array>
#include <span>
#include <vector>

namespace vesk::nodes {

/// The five arrays of a cloud: one entry a point, of `rgba` four.
struct CloudArrays {
    std::vector<volume::Vec3> positions, normals;
    std::vector<double> radii, weights, rgba;
};

/// What a point gets when its source has no array for it.
struct CloudDefaults {
    double radius = 1, weight = 1;
    std::array<double, 3> color{1, 1, 1};
    double alpha = 1;
};

/// Values for the points of a source. An empty one is not there, and the default fills in; entries that a
/// shorter one lacks are zeros.
struct CloudValues {
    std::span<const double> radii, weights;
};

/// A mesh, curve or surface. All spans but those of the values are as long as the points.
struct PointSource {
    std::span<const volume::Vec3> positions, normals;
    std::span<const char> inside; ///< 0 for points that are left out
    CloudValues values;
    std::span<const double> rgba; ///< four a point; a point that lacks one of them gets zeros
};

struct ParticleSource {
    std::span<const volume::Vec3> positions;
    std::span<const int> ids; ///< which, and in which order; those out of range are skipped
    CloudValues values;
    std::span<const volume::Vec3> velocities, colors;
    std::span<const double> opacities;
    volume::Vec3 missingVelocity;
};

void append(CloudArrays& cloud, const PointSource& source, const CloudDefaults& defaults);
void append(CloudArrays& cloud, const ParticleSource& source, const CloudDefaults& defaults);

} // namespace vesk::nodes
