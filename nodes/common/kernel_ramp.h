#pragma once
// How ramps of fresh nodes start, and ramps of the nodes that bounding objects are connected to.

#include "nodes/common/ramp.h"

#include <maya/MObject.h>

namespace vesk::nodes {

/// Gives a fresh `kernel` ramp its two entries: 1 in the middle, eased down to 0 at the surface.
void startKernel(const MObject& node, const MObject& kernel);

/// Gives a fresh ramp its second entry: straight from 0 at 0 to 1 at 1.
void startIdentity(const MObject& node, const MObject& ramp);

/// A ramp of another node by its name; without entries when there is no such ramp.
CurveRamp curveRampOf(const MObject& node, const char* name);
ColorRamp colorRampOf(const MObject& node, const char* name);

} // namespace vesk::nodes
