#pragma once
// Splitting one polygon into triangles.

#include <maya/MVector.h>

#include <array>
#include <span>
#include <vector>

namespace vesk::geom {

/// Splits polygons by clipping ears; keeps its buffers from one polygon to the next.
class EarClipper {
  public:
    /// Writes size - 2 triangles, as places in `loop`, for a polygon of three corners or more. Ears are
    /// looked for in the plane at right angles to `normal` (any length; zero: the plane of x and y),
    /// counter-clockwise about it. The search starts with the triangle of corners 0, 1, 2 and goes on from
    /// the corner at which the last ear was cut, so that a convex polygon becomes a fan round corner 0. A
    /// loop that crosses itself gets its triangles too, overlapping ones.
    void split(std::span<const MVector> loop, const MVector& normal, std::span<std::array<int, 3>> out);

  private:
    struct Flat {
        double x, y;
    };

    void flatten(std::span<const MVector> loop, const MVector& normal);
    double turn(int a, int b, int c) const; ///< twice the area of abc, positive counter-clockwise
    bool turnsLeft(int a, int b, int c) const;
    bool isEar(int a, int b, int c);
    bool isInside(int corner, int a, int b, int c) const;
    void findReflex();

    std::vector<Flat> flat_;
    std::vector<int> next_, previous_;
    std::vector<int> reflex_; ///< corners that may lie inside an ear; those that no longer can go on the way
    std::vector<char> removed_;
};

} // namespace vesk::geom
