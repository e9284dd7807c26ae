#pragma once
// The stages of `group`, in their order. Each takes the running list and leaves it for the next.

#include "nodes/group/groupMirror.h"
#include "nodes/group/groupOperations.h"
#include "nodes/group/groupVolumes.h"

#include <maya/MMatrix.h>

#include <functional>

namespace vesk::nodes {

enum class GroupCombine : short { kNone = 0, kUnion, kSubtract, kIntersect };
enum class GroupMirror : short { kNone = 0, kReplace, kUnion };
enum class GroupBoundary : short { kNone = 0, kReplace, kUnion, kSubtract, kIntersect };

struct GroupSettings {
    GroupKind kind = GroupKind::kVertex;
    GroupCombine combine = GroupCombine::kNone;
    bool filterInput = false;
    short operation = 0;
    GroupOperationSettings operations;
    GroupMirror mirrorMode = GroupMirror::kNone;
    bool hasMirrorMatrix = false;
    MirrorSettings mirror;
    MMatrix mirrorInverse;
    bool contained = false;
    GroupBoundary boundary = GroupBoundary::kNone;
    bool invert = false;
    double currentTime = 0;
    MString resetFrames{"*"}, startFrames;
};

/// Tells of a fault in the node's manner.
using GroupWarning = std::function<void(const char*)>;

/// Elements of the kind into the list, or out of it with "Subtract".
void combineInto(RunningList& list, const ElementSet& set, GroupCombine combine);

/// What the input contributes: its first entry, with "Union" and "Subtract".
void seedStage(RunningList& list, const RunningList& input, const GroupSettings& s,
               const GroupGeometry& geometry);
void operationStage(RunningList& list, const GroupSettings& s, GroupGeometry& geometry);
/// Without a volume nothing changes.
void volumeStage(RunningList& list, const GroupSettings& s, GroupGeometry& geometry,
                 volume::VolumeList& volumes, const volume::CloudStore& clouds);
/// What input and list have in common. Sets of one size are not compared, deliberately: the list stays then.
void intersectStage(RunningList& list, const RunningList& input, const GroupSettings& s);
void mirrorStage(RunningList& list, const GroupSettings& s, GroupGeometry& geometry,
                 const GroupWarning& warning);
void boundaryStage(RunningList& list, const GroupSettings& s, GroupGeometry& geometry);
void invertStage(RunningList& list, const GroupSettings& s, const GroupGeometry& geometry);
/// An empty list gets an element just beyond those that there are, so that nobody reads it as "all".
void nothingStage(RunningList& list, const GroupSettings& s, const GroupGeometry& geometry);
/// Merges what the node gave out last, and the start components, as the frames say.
void accumulationStage(RunningList& list, const RunningList& previous, const RunningList& start,
                       const GroupSettings& s);

} // namespace vesk::nodes
