#include "nodes/multiAttributeTransfer/weights.h"

namespace vesk::nodes {

PointWeights::PointWeights(const WeightVolumes& volumes, int maxInfluences, FreePoints freePoints,
                           std::span<const volume::Vec3> points, std::span<const char> inside)
    : v_(volumes), maxInfluences_(maxInfluences), freePoints_(freePoints), points_(points),
      search_(volumes.list, volumes.clouds, volume::pointBounds(points, inside)), slots_(maxInfluences) {
    if (freePoints == kFirstInfluence && !points.empty() && inside[0] != 0)
        firstVolume_ = search_.nearestVolume(points[0]);
}

bool PointWeights::isCloud(const volume::Influence& influence) const {
    return v_.list.controls(static_cast<std::size_t>(influence.volume)).kind == volume::kCloud;
}

void PointWeights::findInfluences(const volume::Vec3& p) {
    slots_.clear();
    sum_ = 0;
    float cloudSum = 0;
    int cloud = -1;
    std::vector<std::size_t> touched; // by the present cloud
    const auto closeCloud = [&] {
        for (const std::size_t slot : touched)
            cloudSums_[slot] = cloudSum;
        touched.clear();
        cloudSum = 0;
    };
    search_.eachHolding(p, [&](const volume::Influence& influence) {
        if (influence.volume != cloud) closeCloud();
        cloud = influence.volume;
        const int taken = slots_.offer(influence);
        if (taken == volume::InfluenceSlots::kDropped) return;
        const auto slot = static_cast<std::size_t>(taken);
        if (slot >= values_.size()) {
            values_.resize(slot + 1);
            cloudSums_.resize(slot + 1);
        }
        float value = v_.falloffs[static_cast<std::size_t>(influence.volume)].at(
            static_cast<float>(influence.distance))[0];
        if (isCloud(influence)) {
            const auto& point = v_.clouds.point(static_cast<std::size_t>(influence.cloudPoint));
            value = static_cast<float>(static_cast<double>(value) * point.weight);
            cloudSum += value;
            touched.push_back(slot);
        }
        values_[slot] = value;
        sum_ += value; // what a slot held before stays in the sum
    });
    closeCloud();
}

float PointWeights::ofPoint(std::size_t point) {
    findInfluences(points_[point]);
    if (slots_.isEmpty() || sum_ == 0) return 0;
    slots_.list(order_);
    const auto slotAt = [&](std::size_t n) { return static_cast<std::size_t>(order_[n]); };
    kernel_.weigh(
        order_.size(), [&](std::size_t n) { return slots_[slotAt(n)].distance; },
        [&](float distance) { return v_.kernel.at(distance)[0]; });
    float total = 0;
    for (std::size_t n = 0; n < order_.size(); ++n)
        total += values_[slotAt(n)] * kernel_[n];
    const float weight = kernel_.settled(total);
    return weight > 1 ? 1 : weight;
}

int PointWeights::freeVolume(std::size_t point) const {
    // The first influence is the one that is closest to point 0, not volume 0: rigs are bound by it.
    return freePoints_ == kFirstInfluence ? firstVolume_ : search_.nearestVolume(points_[point]);
}

const std::vector<VolumeWeight>& PointWeights::ofVolumes(std::size_t point) {
    findInfluences(points_[point]);
    found_.clear();
    if (sum_ == 0) {
        if (freePoints_ != kNowhere) found_.push_back({freeVolume(point), 1});
        return found_;
    }
    for (std::size_t slot = 0; slot < slots_.size(); ++slot) {
        const float part = isCloud(slots_[slot]) ? cloudSums_[slot] : values_[slot];
        found_.push_back({slots_[slot].volume, maxInfluences_ == 1 ? 1 : part / sum_});
    }
    return found_;
}

} // namespace vesk::nodes
