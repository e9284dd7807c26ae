#pragma once

#include "host/graph/node_type.h"

namespace vesk::nodes {

/// Node types `animCurveTL`, `TA`, `TU`, `TT`, driven by the time (the current one while `input` has no
/// wire), and `animCurveUL`, `UA`, `UU`, `UT`, driven by a number.
///
/// Keys are held in the units of the interface (degrees, frames), the output is in internal units; the
/// directions of fixed tangents are in seconds and internal units.
void registerAnimCurves(graph::TypeRegistry& types);

} // namespace vesk::nodes
