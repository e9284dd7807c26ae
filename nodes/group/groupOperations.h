#pragma once
// The procedural selections of `group`: each gives flat indices, in any order and with repetitions.

#include "nodes/group/groupGeometry.h"

#include <maya/MString.h>
#include <maya/MVector.h>

#include <vector>

namespace vesk::nodes {

/// Values of `mode`.
enum class GroupAngleMode : short { kDirection = 0, kInBetweenAngle = 1 };

struct GroupOperationSettings {
    GroupKind kind = GroupKind::kVertex;
    MString pattern, initialComponents;
    int rangeStart = 0, rangeEnd = -1; ///< the end is 0 or counts back from the last
    int stepA = 1, stepB = 2;
    GroupAngleMode mode = GroupAngleMode::kDirection;
    MVector direction{0, 1, 0};
    float spreadAngle = 0, inBetweenAngle = 0; ///< degrees
    int depth = 0;
    bool inUvSpace = false;
    double lengthThreshold = 0, areaThreshold = 0, perimeterThreshold = 0;
    MPlug input; ///< what feeds the geometry
};

/// Numbers and closed ranges ("3 7:9") below `count`; "*" is all. What is neither is passed over.
std::vector<int> patternIndices(const MString& pattern, int count);

/// Every stepB-th of start up to `count` + end, which is left out, with stepA of them in a row.
std::vector<int> rangeIndices(int start, int end, int stepA, int stepB, int count);

/// The operation of a value of `operation`; none for another number.
std::vector<int> operationIndices(short operation, const GroupOperationSettings& settings,
                                  GroupGeometry& geometry);

} // namespace vesk::nodes
