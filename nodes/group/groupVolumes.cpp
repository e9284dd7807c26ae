#include "nodes/group/groupVolumes.h"

#include "nodes/common/world_points.h"

namespace vesk::nodes {

namespace {

class VolumeTest {
  public:
    VolumeTest(std::span<const MPoint> points, volume::VolumeList& volumes, const volume::CloudStore& clouds)
        : points_(points), volumes_(volumes), clouds_(clouds) {
        for (const MPoint& point : points)
            bounds_.grow(toVec3(point));
    }

    /// Whether any volume selects an element with these points. The first that does ends the search.
    bool selects(std::span<const int> testPoints) {
        for (std::size_t i = 0; i < volumes_.size(); ++i) {
            if (!(volumes_.controls(i).envelope > 0)) continue;
            std::size_t hits = 0;
            for (const int point : testPoints)
                hits += hitsOf(i, toVec3(points_[static_cast<std::size_t>(point)]));
            // Read after the hits: reaching a cloud changes it.
            if (volumes_.controls(i).contained ? hits == testPoints.size() : hits > 0) return true;
        }
        return false;
    }

  private:
    std::size_t hitsOf(std::size_t volume, const volume::Vec3& p) {
        const volume::Controls& controls = volumes_.controls(volume);
        const bool isCloud = controls.kind == volume::kCloud;
        const volume::Vec3 local = isCloud ? p : volumes_.placement(volume).inverse.point(p);
        if (!isCloud &&
            volume::distanceInPrimitive(controls.kind, controls.capsule, local) != volume::kOutside)
            return 1;
        const bool reachesClouds = volume == 0 && (isCloud || controls.kind == volume::kCapsule);
        return reachesClouds ? hitsOfClouds(local) : 0;
    }

    std::size_t hitsOfClouds(const volume::Vec3& p) {
        std::size_t hits = 0;
        for (std::size_t cloud = 0; cloud < clouds_.cloudCount(); ++cloud) {
            if (!clouds_.box(cloud).meets(bounds_) || !clouds_.box(cloud).contains(p)) continue;
            clouds_.eachHolding(cloud, p, [&](std::size_t, double) { ++hits; });
            volumes_.controls(0).contained = false;
        }
        return hits;
    }

    std::span<const MPoint> points_;
    volume::VolumeList& volumes_;
    const volume::CloudStore& clouds_;
    volume::Box bounds_;
};

} // namespace

ElementSet elementsInVolumes(GroupKind kind, GroupGeometry& geometry, volume::VolumeList& volumes,
                             const volume::CloudStore& clouds) {
    VolumeTest test(geometry.points(), volumes, clouds);
    std::vector<int> found;
    const auto byCorners = [&](const Links& corners, int count) {
        for (int element = 0; element < count; ++element) {
            if (test.selects(corners.of(element))) found.push_back(element);
        }
    };
    const int count = geometry.count(kind);
    if (kind == GroupKind::kEdge) {
        byCorners(geometry.links.edgeVertices(), count);
    } else if (kind == GroupKind::kFace) {
        byCorners(geometry.links.faceVertices(), count);
    } else {
        for (int point = 0; point < count; ++point) {
            if (!test.selects({&point, 1})) continue;
            if (kind != GroupKind::kMap) {
                found.push_back(point);
                continue;
            }
            const auto uvs = geometry.vertexUvs().of(point);
            found.insert(found.end(), uvs.begin(), uvs.end());
        }
    }
    return geometry.selection(kind, found);
}

} // namespace vesk::nodes
