#pragma once
// Each point taken from a time of its own.

#include <maya/MVectorArray.h>

#include <functional>
#include <span>
#include <vector>

namespace vesk::nodes {

/// How far from the present frame a point may be taken, in frames.
inline constexpr double kFarthestOffset = 1000;

/// Frames to take the points from: `now` + `offset` * weight each, no farther than `kFarthestOffset`. What is
/// no number stays at `now`. Without weights each is 1.
std::vector<double> offsetFrames(double now, double offset, std::span<const double> weights,
                                 std::size_t count);

/// Moves each point that is asked for at another frame than `now` to where it is then: between whole frames
/// in a straight line. `pointsAt` gives all points at a whole frame and is asked once for each that is
/// needed, upwards. Points that are not all there at a frame stay; then the result is false.
bool offsetPoints(std::span<const double> frames, double now, std::span<MVector> points,
                  const std::function<MVectorArray(double frame)>& pointsAt);

} // namespace vesk::nodes
