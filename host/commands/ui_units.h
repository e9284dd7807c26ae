#pragma once
// Between the units that commands speak and those that the graph holds.

#include "host/graph/scene.h"

namespace vesk::commands {

double toInternal(const graph::Scene& scene, graph::UnitKind kind, double uiValue);
double toUi(const graph::Scene& scene, graph::UnitKind kind, double internalValue);

} // namespace vesk::commands
