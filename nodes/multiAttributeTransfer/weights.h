#pragma once
// Volumes as weights of points, over plain arrays.

#include "nodes/common/ramp.h"
#include "volume/influences.h"

#include <span>
#include <vector>

namespace vesk::nodes {

/// Values of `weightFreePointsTo`: where a point without weight belongs.
enum FreePoints : short { kNowhere = 0, kFirstInfluence = 1, kClosestInfluence = 2 };

struct WeightVolumes {
    const volume::VolumeList& list;
    const volume::CloudStore& clouds;
    std::span<const CurveRamp> falloffs; ///< one for each volume
    const CurveRamp& kernel;
};

/// A weight of a point under a volume, by the volume's place in the list.
struct VolumeWeight {
    int volume = 0;
    float weight = 0;
};

class PointWeights {
  public:
    /// The volumes have to stay. `inside` is 0 for points that are left out; `points` are in world space.
    PointWeights(const WeightVolumes& volumes, int maxInfluences, FreePoints freePoints,
                 std::span<const volume::Vec3> points, std::span<const char> inside);

    /// One weight for the point, at most 1.
    float ofPoint(std::size_t point);
    /// The weights of the point under each volume; a volume that comes twice has the same weight twice. A
    /// point whose influences sum up to 0 belongs to the volume that `freePoints` says, or to none.
    const std::vector<VolumeWeight>& ofVolumes(std::size_t point);

  private:
    void findInfluences(const volume::Vec3& p);
    bool isCloud(const volume::Influence& influence) const;
    int freeVolume(std::size_t point) const;

    WeightVolumes v_;
    int maxInfluences_;
    FreePoints freePoints_;
    std::span<const volume::Vec3> points_;
    volume::InfluenceSearch search_;
    int firstVolume_ = 0; ///< the volume nearest to point 0

    // Of the present point.
    volume::InfluenceSlots slots_;
    std::vector<float> values_, cloudSums_; ///< by slot
    float sum_ = 0;
    volume::KernelWeights kernel_;
    std::vector<int> order_;
    std::vector<VolumeWeight> found_;
};

} // namespace vesk::nodes
