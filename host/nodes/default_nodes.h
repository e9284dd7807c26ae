#pragma once
// The nodes that every scene has from the start.

#include "host/graph/scene.h"

namespace vesk::nodes {

/// Makes `time1`, the four cameras, the initial shading groups, the default sets, layers, lists and settings,
/// as far as they are missing, and gives those that are there the values of a new scene: to be called for a
/// new scene and again after `Scene::clear`. All of them are `isDefault`. The time is frame 1.
void createDefaultNodes(graph::Scene& scene);

} // namespace vesk::nodes
