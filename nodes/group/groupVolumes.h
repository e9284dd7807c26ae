#pragma once
// What bounding volumes select.

#include "nodes/group/groupGeometry.h"
#include "volume/cloud_store.h"
#include "volume/volume_list.h"

namespace vesk::nodes {

/// Elements of a kind in the first volume that has them: by any of their points, or, in a volume that
/// contains, by all. The test points of a vertex, a UV or a CV are its own, those of an edge and of a face
/// its vertices.
///
/// Clouds are met by one road alone: where the first of all volumes is a cloud, or a capsule that the point
/// is not in. Then all clouds are tried, with the point in that capsule's space, and from the first cloud
/// that is reached on, the first volume no longer asks for all points. A cloud behind another kind of volume
/// selects nothing. Scenes rest on what comes of it.
ElementSet elementsInVolumes(GroupKind kind, GroupGeometry& geometry, volume::VolumeList& volumes,
                             const volume::CloudStore& clouds);

} // namespace vesk::nodes
