#include "volume/influences.h"

namespace vesk::volume {

void InfluenceSlots::list(std::vector<int>& order) const {
    order.clear();
    if (slots_.empty()) return;
    // Entries that went to the front, the last of them first; then slot 0 and those that went to the back.
    int first = 0;
    std::size_t front = 0;
    for (std::size_t i = 1; i < slots_.size(); ++i) {
        if (!(slots_[i].distance > slots_[static_cast<std::size_t>(first)].distance)) continue;
        first = static_cast<int>(i);
        order.push_back(first);
        ++front;
    }
    std::reverse(order.begin(), order.end());
    order.push_back(0);
    first = 0;
    for (std::size_t i = 1; i < slots_.size(); ++i) {
        if (slots_[i].distance > slots_[static_cast<std::size_t>(first)].distance) {
            first = static_cast<int>(i);
        } else {
            order.push_back(static_cast<int>(i));
        }
    }
}

Box pointBounds(std::span<const Vec3> points, std::span<const char> inside) {
    Box box(Vec3{});
    for (std::size_t i = 0; i + 1 < points.size() && inside[i] != 0; ++i)
        box.grow(points[i]);
    return box;
}

InfluenceSearch::InfluenceSearch(const VolumeList& volumes, const CloudStore& clouds, const Box& bounds)
    : clouds_(&clouds) {
    std::size_t cloud = 0;
    for (std::size_t i = 0; i < volumes.size(); ++i) {
        const Controls& c = volumes.controls(i);
        if (c.envelope == 0) continue;
        if (c.kind == kCloud && !clouds.box(cloud).meets(bounds)) continue;
        tried_.push_back({c.kind, static_cast<int>(i), cloud, c.capsule, volumes.placement(i).inverse});
        if (c.kind == kCloud) ++cloud;
    }
}

int InfluenceSearch::nearestVolume(const Vec3& p) const {
    int nearest = 0;
    double smallest = kOutside;
    for (const auto& tried : tried_) {
        const double distance = tried.kind == kCloud
                                    ? clouds_->distanceToNearest(tried.cloud, p)
                                    : plainDistance(tried.kind, tried.capsule, tried.inverse.point(p));
        if (!(distance >= 0)) continue; // not measured, or no number
        if (smallest != kOutside && distance >= smallest) continue;
        smallest = distance;
        nearest = tried.volume;
    }
    return nearest;
}

} // namespace vesk::volume
