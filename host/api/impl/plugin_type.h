#pragma once
// Node types that plug-ins register: what each kind of them is built on, and which is being initialised.

#include "host/graph/node_type.h"

#include <maya/MPxNode.h>

#include <functional>
#include <memory>
#include <vector>

namespace vesk::graph {
class Scene;
} // namespace vesk::graph

namespace vesk::api {

/// What the nodes of one `MPxNode::Type` stand on.
struct PluginBase {
    std::string baseType; ///< the host's node type whose attributes they inherit
    MFn::Type apiType = MFn::kInvalid;
    std::vector<MFn::Type> alsoKinds;
    /// Makes the host's node around the plug-in's object.
    std::function<Ref<graph::Node>(const graph::NodeType&, std::unique_ptr<MPxNode>)> wrap;
    /// Called when a type on this base is registered, with that base: fills the static attributes of the API
    /// class.
    std::function<void(const graph::NodeType&)> bind;
};

/// Floors above add their kinds here; dependency nodes and locators are known from the start.
void setPluginBase(MPxNode::Type type, PluginBase base);
/// Null for a kind that nobody added.
const PluginBase* pluginBase(MPxNode::Type type);

/// The node type whose `initialize` runs, to which `MPxNode::addAttribute` adds; null outside.
graph::NodeType* typeInTheMaking();

/// While alive, the type is the one in the making.
class TypeInTheMaking {
  public:
    explicit TypeInTheMaking(graph::NodeType& type);
    ~TypeInTheMaking();
    TypeInTheMaking(const TypeInTheMaking&) = delete;
    TypeInTheMaking& operator=(const TypeInTheMaking&) = delete;

  private:
    graph::NodeType* outer_;
};

/// A node type as a plug-in describes it.
struct PluginTypeRequest {
    std::string name;
    unsigned typeId = 0;
    void* (*creator)() = nullptr;
    MStatus (*initialize)() = nullptr;
    MPxNode::Type kind = MPxNode::kDependNode;
    std::string classification;
    std::string plugin;
};

/// Runs `initialize` and adds the type. On any failure nothing is registered, and the sentence says why.
Outcome registerPluginType(graph::TypeRegistry& types, const PluginTypeRequest& request);

/// Takes a plug-in's type out of the registry. Its nodes in the scene, if one is given, keep their data and
/// wires but are `unknown` nodes from now on: the plug-in's code is not called again.
Outcome deregisterPluginType(graph::TypeRegistry& types, unsigned typeId, graph::Scene* scene);

/// The base attributes of all nodes as the API's static objects (`MPxNode::state` ...).
void bindBaseAttributes(const graph::NodeType& nodeType);

/// The host's locator shape: local and world position, local scale. For registries that have none yet.
void registerLocatorType(graph::TypeRegistry& types);

} // namespace vesk::api
