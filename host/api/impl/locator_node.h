#pragma once
// Locators: the host's own, and those around a plug-in's object.

#include "host/api/impl/plugin_type.h"
#include "host/graph/dag.h"

namespace vesk::api {

/// A shape that marks a place: serves `worldPosition`.
class LocatorNode : public graph::DagNode {
  public:
    using DagNode::DagNode;
    graph::ComputeResult compute(graph::Cell& requested) override;
};

PluginBase pluginLocators();

} // namespace vesk::api
