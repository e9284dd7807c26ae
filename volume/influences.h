#pragma once
// Which volumes act on a point, at which distances.

#include "volume/cloud_store.h"
#include "volume/volume_list.h"

namespace vesk::volume {

/// What one volume, or one point of a cloud, offers to a point.
struct Influence {
    double distance = 0; ///< normalised
    int volume = 0;
    int cloudPoint = 0; ///< place in the cloud store; 0 for primitives
};

/// The influences of one point that count: at most `maxInfluences`, below 1 none.
///
/// While there is room an offer takes the next slot. Then it replaces the first slot that is farther away; if
/// there is none it is dropped.
class InfluenceSlots {
  public:
    explicit InfluenceSlots(int maxInfluences)
        : width_(maxInfluences > 0 ? static_cast<std::size_t>(maxInfluences) : 0) {}

    static constexpr int kDropped = -1;

    void clear() { slots_.clear(); }
    /// The slot that the offer took, or `kDropped`.
    int offer(const Influence& influence) {
        if (slots_.size() < width_) {
            slots_.push_back(influence);
            return static_cast<int>(slots_.size()) - 1;
        }
        for (std::size_t i = 0; i < slots_.size(); ++i) {
            if (slots_[i].distance > influence.distance) {
                slots_[i] = influence;
                return static_cast<int>(i);
            }
        }
        return kDropped;
    }

    bool isEmpty() const { return slots_.empty(); }
    std::size_t size() const { return slots_.size(); }
    const Influence& operator[](std::size_t slot) const { return slots_[slot]; }

    /// The slots in the order of the point's list: each one that is farther away than the list's present
    /// first goes to the front, any other to the back. Sums hardly mind; what a capsule takes over from the
    /// entry before it does.
    void list(std::vector<int>& order) const;

  private:
    std::size_t width_;
    std::vector<Influence> slots_;
};

/// The box of a geometry's points against which clouds are culled: the origin and the points before the first
/// masked one, the geometry's last point excepted. `inside` has an entry for each point, 0 for masked ones.
///
/// The origin, the end at the first masked point and the missing last point stay as they are: they decide
/// which clouds are tried at all, and scenes rely on it.
Box pointBounds(std::span<const Vec3> points, std::span<const char> inside);

/// The volumes that are tried on the points of a geometry, in order.
///
/// Clouds are read in step with the cloud volumes that are tried. One whose cloud does not meet the bounds of
/// the points is skipped without moving on among the clouds, so that the next cloud volume reads the skipped
/// one's cloud. That stays, for the sake of scenes that were set up with it. It is in the constructor alone.
class InfluenceSearch {
  public:
    /// The list and the store have to stay.
    InfluenceSearch(const VolumeList& volumes, const CloudStore& clouds, const Box& pointBounds);

    /// Calls `offer` with an `Influence` for each volume, and each point of a cloud, that holds the point, in
    /// the order of volumes and of the cloud.
    template <class Offer>
    void eachHolding(const Vec3& p, Offer&& offer) const {
        for (const auto& tried : tried_) {
            if (tried.kind == kCloud) {
                clouds_->eachHolding(tried.cloud, p, [&](std::size_t place, double distance) {
                    offer(Influence{distance, tried.volume, static_cast<int>(place)});
                });
                continue;
            }
            const double distance = distanceInPrimitive(tried.kind, tried.capsule, tried.inverse.point(p));
            if (distance != kOutside) offer(Influence{distance, tried.volume, 0});
        }
    }

    /// The volume that is nearest by its plain distance, inside or not, the earlier one of equals; 0 when
    /// none is tried. Of clouds the centres count, and only while the point is in the cloud's box.
    int nearestVolume(const Vec3& p) const;

  private:
    struct Tried {
        int kind, volume;
        std::size_t cloud;
        Capsule capsule;
        Matrix inverse;
    };
    const CloudStore* clouds_;
    std::vector<Tried> tried_;
};

/// How a point's influences are weighed against each other.
class KernelWeights {
  public:
    /// `kernel` gives the ramp at a distance, in single precision; `distances` are those of the influences.
    /// A lone influence has the weight 1, and the kernel is not read. Negative values count as 0.
    template <class Ramp, class DistanceOf>
    void weigh(std::size_t count, DistanceOf&& distanceOf, const Ramp& kernel) {
        weights_.resize(count);
        sum_ = 0;
        if (count == 1) {
            weights_[0] = 1;
            return;
        }
        for (std::size_t i = 0; i < count; ++i) {
            const float value = kernel(static_cast<float>(distanceOf(i)));
            weights_[i] = value < 0 ? 0 : value;
            sum_ += weights_[i];
        }
    }

    float operator[](std::size_t i) const { return weights_[i]; }
    /// What a sum over weighted influences comes to: with several influences divided by the sum of the
    /// weights, and 0 where that sum is 0.
    float settled(float accumulated) const {
        if (weights_.size() == 1) return accumulated;
        return sum_ != 0 ? accumulated / sum_ : 0;
    }

  private:
    std::vector<float> weights_;
    float sum_ = 0;
};

} // namespace vesk::volume
