#pragma once
// How far the points of a mesh are from their bind pose, and the shapes that this blends in.

#include <maya/MColor.h>
#include <maya/MPoint.h>

#include <array>
#include <optional>
#include <span>
#include <vector>

namespace vesk::nodes {

/// The mean length of each vertex's edges, 0 for one without. In single precision, so that a length that was
/// stored compares equal.
std::vector<float> meanEdgeLengths(std::span<const std::array<int, 2>> edges, std::span<const MPoint> points);

/// A side of the blend: what it is multiplied with, where it ends, its target and its colour.
struct BlendSide {
    double multiplier = 1; ///< that of the side and of the whole
    std::optional<double> limit;
    std::span<const MPoint> target; ///< vertices that it lacks are not moved
    MColor color;
};

/// A mesh against its bind pose. Bind data may be short: what is missing is 0. Runs over as many points as
/// all have.
struct BlendSource {
    std::span<const MPoint> points;     ///< in object space
    std::span<const MPoint> bindPoints; ///< the same
    std::span<const float> lengths;     ///< mean edge lengths in world space
    std::span<const float> bindLengths; ///< the same
};

/// One entry a vertex.
struct Blended {
    std::vector<MPoint> points;
    std::vector<float> stretch, compression; ///< what the colours show, at most 1
    std::vector<MColor> stretchColors;       ///< black where nothing is stretched
    std::vector<int> coloredVertices;        ///< those that have a colour on the output, too
    std::vector<MColor> outputColors;        ///< of these
};

/// Where edges are longer than they were, the stretch shape; where they are shorter, the compression shape.
/// The difference of the lengths times the multiplier is how much of (target - bind point) is added.
Blended blendByTension(const BlendSource& source, const BlendSide& stretch, const BlendSide& compression);

/// The stretch shape by the distance from the bind point. All colours are on the output.
Blended blendByDistance(const BlendSource& source, const BlendSide& stretch);

} // namespace vesk::nodes
