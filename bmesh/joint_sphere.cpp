#include "bmesh/joint_sphere.h"

#include <algorithm>
#include <limits>

namespace vesk::skin {

float JointSphere::radius() const {
    double greatest = 0.0;
    for (const Float3& axis : axes)
        greatest = std::max(greatest, length(axis));
    return static_cast<float>(greatest);
}

void JointSphere::setRadius(float radius) {
    const float r = radius == 0.0F ? 0.001F : radius;
    axes = {{{r, 0, 0}, {0, r, 0}, {0, 0, r}}};
}

namespace {

bool isUsable(const JointSphere& sphere) {
    return isFinite(sphere.center) && std::all_of(sphere.axes.begin(), sphere.axes.end(), isFinite) &&
           std::isfinite(sphere.radius());
}

/// The first sphere from which no root is reached, or -1. Parents must be in range.
int findCycle(const QVector<JointSphere>& spheres) {
    enum Mark : char { Unseen, OnTheWay, LeadsToRoot };
    QVector<char> marks(spheres.size(), Unseen);
    for (int first = 0; first < spheres.size(); ++first) {
        int i = first;
        for (; i >= 0 && marks[i] == Unseen; i = spheres[i].parent)
            marks[i] = OnTheWay;
        if (i >= 0 && marks[i] == OnTheWay) return first;
        for (i = first; i >= 0 && marks[i] == OnTheWay; i = spheres[i].parent)
            marks[i] = LeadsToRoot;
    }
    return -1;
}

} // namespace

FoundFault findFault(const QVector<JointSphere>& spheres) {
    for (int i = 0; i < spheres.size(); ++i) {
        if (!isUsable(spheres[i])) return {SphereFault::NotFinite, i};
        if (spheres[i].parent < -1 || spheres[i].parent >= spheres.size())
            return {SphereFault::ParentRange, i};
    }
    const int cycle = findCycle(spheres);
    return cycle < 0 ? FoundFault{} : FoundFault{SphereFault::Cycle, cycle};
}

namespace {

/// The axis along which the positions reach farthest.
std::size_t longestAxis(const QVector<Position>& positions) {
    std::size_t longest = 0;
    double reach = -1.0;
    for (std::size_t axis = 0; axis < 3; ++axis) {
        double low = std::numeric_limits<double>::max();
        double high = std::numeric_limits<double>::lowest();
        for (const Position& p : positions) {
            low = std::min(low, p[axis]);
            high = std::max(high, p[axis]);
        }
        if (high - low > reach) {
            reach = high - low;
            longest = axis;
        }
    }
    return longest;
}

} // namespace

bool hasOverlap(QVector<Position> positions) {
    constexpr double touching = 0.001;
    // Sorted along one axis, only neighbours within the distance need a look.
    const std::size_t axis = longestAxis(positions);
    std::sort(positions.begin(), positions.end(),
              [axis](const Position& a, const Position& b) { return a[axis] < b[axis]; });
    for (auto a = positions.cbegin(); a != positions.cend(); ++a) {
        for (auto b = a + 1; b != positions.cend() && (*b)[axis] - (*a)[axis] <= touching; ++b) {
            if (std::hypot((*a)[0] - (*b)[0], (*a)[1] - (*b)[1], (*a)[2] - (*b)[2]) <= touching) return true;
        }
    }
    return false;
}

} // namespace vesk::skin
