#pragma once
// What volumes do to points, over plain arrays.

#include "nodes/common/ramp.h"
#include "volume/influences.h"

#include <array>
#include <span>
#include <vector>

namespace vesk::nodes {

/// The falloffs of one volume.
struct VolumeRamps {
    CurveRamp position, weight, alpha, normal, radius;
    ColorRamp color;
};

/// What acts on the points. One entry of `ramps` for each volume.
struct TransferVolumes {
    const volume::VolumeList& list;
    const volume::CloudStore& clouds;
    std::span<const VolumeRamps> ramps;
    const CurveRamp& kernel;
};

struct TransferSettings {
    int maxInfluences = 5;
    bool position = false, weight = false, color = false, normal = false, radius = false;
    bool merge = true, blend = true, alphaModulate = true, solidAlpha = false;
    /// Normals are velocities, which turn and keep their length; and points of capsules' axes are taken into
    /// the world without the translation, as particle set-ups have always had it.
    bool areParticles = false;
};

using Rgba = std::array<float, 4>;

/// The attributes of the points, in world space: what is switched on has one entry a point, of `outRgba`
/// four; `outRgba` may be empty, and then is left alone.
struct TransferPoints {
    std::vector<volume::Vec3> positions, normals;
    std::vector<double> radii, weights;
    std::vector<Rgba> colors;
    std::vector<double> outRgba;
};

/// The colour of points without one.
inline Rgba defaultRgba(bool solidAlpha) { return {0, 0, 0, solidAlpha ? 1.0F : 0.0F}; }

/// Works on every point whose entry in `inside` is not 0. The cost grows with points times primitive volumes,
/// and for clouds with the spheres that hold a point.
void transfer(const TransferSettings& settings, const TransferVolumes& volumes, std::span<const char> inside,
              TransferPoints& points);

} // namespace vesk::nodes
