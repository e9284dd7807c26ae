#include "nodes/rayProject/rayKernel.h"

#include "parallel/loops.h"

#include <maya/MBoundingBox.h>

namespace vesk::nodes {

namespace {

constexpr std::size_t grain = 16384;

/// Middle of the box of the chosen points.
MVector centerOf(std::span<const MPoint> points, const Chosen& chosen) {
    MBoundingBox box;
    for (std::size_t k = 0; k < chosen.size(); ++k)
        box.expand(points[chosen[k]]);
    return MVector(box.center());
}

/// What the directions of one mode have in common.
class Aim {
  public:
    Aim(std::span<const MFloatVector> normals, const MVector& origin, const RaySettings& settings)
        : normals_(normals), origin_(origin), mode_(settings.mode) {
        const bool isReversed = settings.reverse && !settings.bothDirections;
        switch (mode_) {
        case kAlongNormals: isReversed_ = isReversed; break;
        case kFromCentroid: isReversed_ = settings.reverse; break; // deliberately whatever the test is
        case kCustomDirection:
            direction_ = settings.direction.normal();
            if (isReversed) direction_ = -direction_;
            break;
        default: break;
        }
    }
    MFloatVector operator()(const MPoint& point, std::size_t index) const {
        if (mode_ == kCustomDirection) return direction_;
        const MFloatVector away = mode_ != kAlongNormals    ? MFloatVector(MVector(point) - origin_)
                                  : index < normals_.size() ? normals_[index].normal()
                                                            : MFloatVector();
        return isReversed_ ? -away : away;
    }

  private:
    std::span<const MFloatVector> normals_;
    MVector origin_;
    MFloatVector direction_;
    short mode_;
    bool isReversed_ = false;
};

} // namespace

Rays raysFrom(std::span<const MPoint> points, const Chosen& chosen, std::span<const MFloatVector> normals,
              const RaySettings& settings) {
    Rays rays{std::vector<MFloatPoint>(chosen.size()), std::vector<MFloatVector>(chosen.size())};
    const Aim aim(normals, settings.mode == kFromCentroid ? centerOf(points, chosen) : settings.position,
                  settings);
    parallel::inPieces(chosen.size(), grain, [&](std::size_t begin, std::size_t end) {
        for (std::size_t k = begin; k < end; ++k) {
            const MPoint& point = points[chosen[k]];
            rays.sources[k] = MFloatPoint(MPoint(point.x, point.y, point.z));
            rays.directions[k] = aim(point, chosen[k]);
        }
    });
    return rays;
}

void pull(std::span<MPoint> points, const Chosen& chosen, const Rays& rays, std::span<const RayHit> hits,
          std::span<const MVector> hitNormals, std::span<const double> weights, const RaySettings& settings) {
    const auto counts = [&](std::size_t k) {
        if (!hits[k]) return false;
        const auto distance = static_cast<double>(rays.sources[k].distanceTo(hits[k].point));
        if (settings.minDistance >= 0 && settings.minDistance > distance) return false;
        if (settings.maxDistance >= 0 && distance > settings.maxDistance) return false;
        return !settings.testsAngles() ||
               !(hitNormals[k].angle(MVector(rays.directions[k])) > settings.maxAngle);
    };
    parallel::inPieces(chosen.size(), grain, [&](std::size_t begin, std::size_t end) {
        for (std::size_t k = begin; k < end; ++k) {
            if (!counts(k)) continue;
            const std::size_t i = chosen[k];
            const double weight = i < weights.size() ? settings.weight * weights[i] : settings.weight;
            const MVector to = MVector(points[i]) * (1 - weight) + MVector(MPoint(hits[k].point)) * weight;
            points[i] = MPoint(to.x, to.y, to.z, points[i].w);
        }
    });
}

} // namespace vesk::nodes
