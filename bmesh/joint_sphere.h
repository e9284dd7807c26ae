#pragma once
// What a skin mesh is made from: joints as spheres, and the faults that a list of them can have.

#include "bmesh/float3.h"

#include <QVector>

#include <array>

namespace vesk::skin {

/// A joint. A new one is a root of radius 1 at the origin.
struct JointSphere {
    Float3 center;
    std::array<Float3, 3> axes{{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};
    int parent = -1; ///< place in the list of spheres, -1 for a root
    QVector<int> children;

    /// The greatest length of the axes.
    float radius() const;
    /// Lays the radius on the axes' diagonal. Exactly 0 becomes 0.001.
    void setRadius(float radius);
};

enum class SphereFault {
    None,
    NotFinite,   ///< centre or radius is not a finite number
    ParentRange, ///< the parent is no sphere of the list
    Cycle,       ///< the parents lead back to the sphere, so that no root reaches it
};

struct FoundFault {
    SphereFault fault = SphereFault::None;
    int sphere = -1; ///< the first sphere that has it
};

/// The first sphere that no skin can be made from, and why. Linear in the spheres.
FoundFault findFault(const QVector<JointSphere>& spheres);

using Position = std::array<double, 3>;

/// Whether any two positions are at most 0.001 apart. All must be finite.
bool hasOverlap(QVector<Position> positions);

} // namespace vesk::skin
