#pragma once
// The work of tensionMap over plain arrays.

#include "nodes/common/mesh_links.h"
#include "nodes/common/ramp.h"

#include <maya/MFloatVector.h>

#include <array>
#include <span>
#include <vector>

namespace vesk::nodes {

/// Vertices that are measured together. Of the lists there is one a vertex, of ids that both meshes have.
struct TensionRun {
    std::span<const int> vertices;
    Links neighbors;             ///< on the current mesh
    Links restNeighbors;         ///< on the rest mesh; without lists when only positions are compared
    std::vector<char> isSkipped; ///< 1: the meshes disagree on how many neighbours the vertex has
};

/// How much longer the edges round each vertex are than at rest, times the number of its neighbours: positive
/// where the surface is stretched. Points are x, y, z each; both meshes go by the neighbours of the current
/// one. 0 where either sum of lengths is 0. One value a vertex, 0 for those that are skipped.
std::vector<double> distanceTensions(const TensionRun& run, const float* points, const float* restPoints);

/// Directions and their lengths, which every angle at them needs.
struct Directions {
    explicit Directions(std::span<const MFloatVector> directions);
    std::span<const MFloatVector> directions;
    std::vector<double> lengths;
};

/// How much more each vertex's normal differs from its neighbours' than at rest, in half turns: the angles
/// summed. Each mesh goes by its own neighbours. One value a vertex, 0 for those that are skipped.
std::vector<double> angleTensions(const TensionRun& run, const Directions& normals,
                                  const Directions& restNormals);

/// The tension that goes out: `raw` in thousandths, what is below cut off, mixed by `mix` with the vertex's
/// weight alone.
double weightedTension(double raw, double weight, double mix);

/// How tension becomes a colour.
struct TensionColors {
    using Rgb = std::array<double, 3>;

    short coding = 0; ///< 0 to 5: which channel is whose; 6: grey
    double defaultMultiplier = 0.5, compressionMultiplier = 1, stretchMultiplier = 1;
    CurveRamp compression, stretch;

    Rgb of(double tension) const;
};

} // namespace vesk::nodes
