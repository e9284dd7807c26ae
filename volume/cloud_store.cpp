#include "volume/cloud_store.h"

namespace vesk::volume {

namespace {

bool isNumber(const Sphere& s) { return !std::isnan(s.center.x + s.center.y + s.center.z + s.radius); }

void growRound(Box& box, const Sphere& s) {
    const Vec3 reach{s.radius, s.radius, s.radius};
    box.grow(s.center - reach);
    box.grow(s.center + reach);
}

} // namespace

bool CloudStore::takesPart(const Cloud& cloud) const {
    const bool isWhole = cloud.envelope == 1;
    if (rules_.onlyWholeClouds) return isWhole && cloud.radiiMatch && !cloud.points.empty();
    return isWhole || !cloud.allMatch || !cloud.points.empty();
}

void CloudStore::add(const Cloud& cloud) {
    if (!takesPart(cloud)) {
        slices_.push_back({0, 0, Box(Vec3{}), SphereIndex(std::span<const Sphere>())});
        return;
    }
    const std::size_t start = points_.size();
    Box box;
    for (const auto& point : cloud.points) {
        points_.push_back(point);
        spheres_.push_back(point.sphere);
        if (isNumber(point.sphere) && (point.sphere.radius != 0 || rules_.boxHoldsBarePoints))
            growRound(box, point.sphere);
    }
    slices_.push_back({start, points_.size(), box, SphereIndex(std::span(spheres_).subspan(start))});
}

double CloudStore::distanceToNearest(std::size_t cloud, const Vec3& p) const {
    const Slice& slice = slices_[cloud];
    double nearest = kOutside;
    if (!slice.box.contains(p)) return nearest;
    for (const auto& sphere : slice.spheres(spheres_)) {
        const double distance = length(p - sphere.center);
        if (nearest == kOutside || distance < nearest) nearest = distance;
    }
    return nearest;
}

} // namespace vesk::volume
