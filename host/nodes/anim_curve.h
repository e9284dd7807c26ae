#pragma once
// Keys and what lies between them.

#include <vector>

namespace vesk::nodes {

/// Numbers as animation curve nodes hold them.
enum class Tangent {
    Fixed = 1,
    Linear = 2,
    Flat = 3,
    Smooth = 4,   ///< as Spline
    Step = 5,     ///< outgoing: the value stays up to the next key
    Slow = 6,     ///< as Linear
    Fast = 7,     ///< as Linear
    Spline = 9,   ///< the slope from the key before to the key after; at an end, that of the only segment
    Clamped = 10, ///< Spline, but flat where a neighbour has the same value
    Plateau =
        16, ///< Spline, but flat at ends and extremes, and never so steep that it passes a neighbour's value
    StepNext = 17, ///< outgoing: the next key's value from here on
    Auto = 18,     ///< as Plateau
};

enum class Infinity { Constant = 0, Linear = 1, Cycle = 3, CycleRelative = 4, Oscillate = 5 };

struct AnimKey {
    double time = 0;  ///< seconds, or whatever drives the curve
    double value = 0; ///< in the units of the result
    Tangent in = Tangent::Spline, out = Tangent::Spline;
    /// Directions of fixed tangents, in units of time and value. On a weighted curve they are three times the
    /// way to the control point.
    double inX = 1, inY = 0, outX = 1, outY = 0;
};

/// A curve through keys. Without keys it is 0 everywhere.
///
/// A segment of a curve without weights is a cubic Hermite polynomial with the keys' slopes. On a weighted
/// curve it is a cubic Bezier curve in time and value whose control points lie at a third of the tangents;
/// those of tangents that are not fixed at a third of the segment's time. Control points are kept within the
/// segment's time.
class AnimCurve {
  public:
    std::vector<AnimKey> keys; ///< ascending times; of equal times the last key counts from there on
    bool weighted = false;
    Infinity before = Infinity::Constant, after = Infinity::Constant;

    double at(double time) const;
    /// Value per time just before and just after a key.
    double inSlope(std::size_t key) const;
    double outSlope(std::size_t key) const;

  private:
    double inside(double time) const;
    double outside(double time, Infinity infinity) const;
    double onSegment(std::size_t first, double time) const;
    double onWeightedSegment(const AnimKey& from, const AnimKey& to, double slopeOut, double slopeIn,
                             double time) const;
    double segmentSlope(std::size_t first) const;
    double slope(std::size_t key, Tangent tangent, double x, double y, bool incoming) const;
    double splineSlope(std::size_t key) const;
    double limitedSlope(std::size_t key) const;
};

} // namespace vesk::nodes
