#pragma once
// The other side of a plane, among points.

#include <maya/MBoundingBox.h>
#include <maya/MPoint.h>

#include <span>
#include <vector>

namespace vesk::nodes {

/// Values of `mirrorDirection`.
enum class MirrorDirection : short { kBothWays = 0, kPositiveToNegative = 1, kNegativeToPositive = 2 };

struct MirrorSettings {
    int axis = 0;  ///< 0, 1, 2: the plane's normal is the world's x, y or z
    MPoint origin; ///< a point of the plane
    MirrorDirection direction = MirrorDirection::kBothWays;
    bool precise = true;
    double radius = 0.1;
    int resolution[3] = {10, 10, 10}; ///< of the grid, 2 and more
};

/// Every selected point widened by the radius.
MBoundingBox mirrorReach(std::span<const MPoint> points, std::span<const int> selected, double radius);

/// Points on the other side of what is selected: those within the radius of a selected point's reflection, or
/// without `precise` those whose reflection lies in the reach of the selection. Ascending.
///
/// The sides of `direction` are told by the coordinate's sign, not by the plane. Points are sorted into the
/// cells of a grid, and a cell is left out as a whole where its box is not within the radius. Cells of some
/// resolutions along z share their keys, and with them the box of the one that was met last: see
/// `mirrorKeyResolution`.
///
/// Costs grow with the points, not with the cells or with their product.
std::vector<int> mirroredPoints(std::span<const MPoint> points, std::span<const int> selected,
                                const MirrorSettings& settings);

/// The resolution along z by which keys are made: one less for 3 and its doubles up to 6144. Groups of scenes
/// that use such a resolution depend on it.
int mirrorKeyResolution(int resolutionZ);

} // namespace vesk::nodes
