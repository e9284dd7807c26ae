#pragma once

#include <maya/MObject.h>

namespace vesk::nodes {

/// The array that lies at `share` of the way from one to the other, entry by entry in a straight line. Arrays
/// of ints, of different kinds or different lengths do not mix: the earlier one.
MObject blendedArray(const MObject& earlier, const MObject& later, double share);

} // namespace vesk::nodes
