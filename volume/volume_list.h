#pragma once
// The primitive side of a consumer's volumes: what each one is and where it stands.

#include "volume/shapes.h"

#include <vector>

namespace vesk::volume {

/// Values of `boundNormal`: the volume's own axes, or away from its middle.
enum NormalDirection : int { kAlongX = 0, kAlongY = 1, kAlongZ = 2, kAwayFromCenter = 3 };

/// The control values of a volume. A new one is switched off.
struct Controls {
    double envelope = 0; ///< 0 and less: switched off
    int kind = kSphere;
    bool contained = false;
    Capsule capsule;
    int normal = kAlongX;
};

/// Where a volume stands: its matrix into the world, the inverse, and the matrix's translation.
struct Placement {
    Vec3 translation;
    Matrix matrix, inverse;
};

/// Volumes in the order of the consumer's elements.
///
/// A switched-off volume has one place among the controls and two among the placements: its own and one of no
/// transformation. So every volume behind it is read with the placement one place before its own, and the
/// first of them with none. Users have built scenes on what that gives; a list that is in step moves the
/// volumes of those scenes. The shift is here and nowhere else.
class VolumeList {
  public:
    void add(const Controls& controls, const Placement& placement) {
        if (controls.envelope > 0) {
            controls_.push_back(controls);
            placements_.push_back(placement);
        } else {
            controls_.push_back({});
            placements_.push_back(placement);
            placements_.push_back({});
        }
    }

    std::size_t size() const { return controls_.size(); }
    Controls& controls(std::size_t volume) { return controls_[volume]; }
    const Controls& controls(std::size_t volume) const { return controls_[volume]; }
    /// The placement that the volume is read with.
    const Placement& placement(std::size_t volume) const { return placements_[volume]; }

  private:
    std::vector<Controls> controls_;
    std::vector<Placement> placements_; ///< never fewer than the controls
};

} // namespace vesk::volume
