#pragma once

#include "host/graph/node_type.h"

namespace vesk::nodes {

/// Nodes that calculate with numbers: `unitConversion` and its siblings for time, `addDoubleLinear`,
/// `multDoubleLinear`, `multiplyDivide`, `plusMinusAverage`, `reverse`, `condition`, `clamp`.
void registerArithmetic(graph::TypeRegistry& types);

} // namespace vesk::nodes
