#pragma once
// Colours as arrays: four numbers a point, r, g, b, a, or a vector of r, g, b and a number.

#include <maya/MPoint.h>
#include <maya/MVector.h>

#include <span>

namespace vesk::nodes {

enum Channel { kRed = 0, kGreen = 1, kBlue = 2, kAlpha = 3 };

/// What a colour array that four does not divide is told; what is over at its end is left out.
inline constexpr const char* kTornColor =
    "The array length is no multiple of four (r, g, b, a). Its end is left out.";

/// `out` holds one number for each whole colour.
void takeChannel(std::span<const double> rgba, int channel, std::span<double> out);
/// Vectors have no alpha: it is 1, as that of an opaque colour.
void takeChannel(std::span<const MVector> rgb, int channel, std::span<double> out);
/// Alpha is the point's w.
void takeChannel(std::span<const MPoint> rgba, int channel, std::span<double> out);

/// `rgb` and `alpha` hold one entry for each whole colour.
void splitColors(std::span<const double> rgba, std::span<MVector> rgb, std::span<double> alpha);

} // namespace vesk::nodes
