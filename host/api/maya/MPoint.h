#pragma once

#include <maya/MVector.h>

#include "host/api/point_of.h"

class MFloatPoint;

/// Position in doubles, with a weight w that is 1 unless a matrix changed it.
class MPoint : public vesk::PointOf<MPoint, MVector, MMatrix, double> {
  public:
    static constexpr double kTolerance = 1.0e-10;

    using PointOf::PointOf;
    constexpr MPoint(const MVector& v) noexcept : PointOf(v.x, v.y, v.z) {}
    constexpr explicit MPoint(const MFloatPoint& p) noexcept;

    static const MPoint origin;
};

inline constexpr MPoint MPoint::origin;

constexpr MVector::MVector(const MPoint& p) noexcept : VectorOf(p.x, p.y, p.z) {}
