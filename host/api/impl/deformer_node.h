#pragma once
// Deformers: the host's nodes around the objects of plug-ins.

#include "host/api/impl/plugin_type.h"

namespace vesk::api {

/// What `MPxNode::kDeformerNode` stands on: the host's type `geometryFilter`.
PluginBase pluginDeformers();

} // namespace vesk::api
