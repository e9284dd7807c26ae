#include "host/api/impl/plugin_type.h"

#include "host/api/impl/access.h"
#include "host/api/impl/guarded.h"
#include "host/api/impl/locator_node.h"
#include "host/api/impl/plugin_node.h"

#include <array>
#include <utility>

namespace vesk::api {

using graph::NodeType;

namespace {

NodeType* inTheMaking = nullptr;

PluginBase dependNodes() {
    return {"node",
            MFn::kPluginDependNode,
            {},
            [](const NodeType& type, std::unique_ptr<MPxNode> body) -> Ref<graph::Node> {
                return makeRef<PluginNode>(type, std::move(body));
            },
            {}};
}

std::array<PluginBase, MPxNode::kLast>& bases() {
    static std::array<PluginBase, MPxNode::kLast> table = [] {
        std::array<PluginBase, MPxNode::kLast> start;
        start[MPxNode::kDependNode] = dependNodes();
        start[MPxNode::kLocatorNode] = pluginLocators();
        return start;
    }();
    return table;
}

} // namespace

void setPluginBase(MPxNode::Type type, PluginBase base) {
    if (type >= 0 && type < MPxNode::kLast) bases()[type] = std::move(base);
}

const PluginBase* pluginBase(MPxNode::Type type) {
    if (type < 0 || type >= MPxNode::kLast) return nullptr;
    const PluginBase& base = bases()[type];
    return base.wrap ? &base : nullptr;
}

NodeType* typeInTheMaking() { return inTheMaking; }

TypeInTheMaking::TypeInTheMaking(NodeType& type) : outer_(std::exchange(inTheMaking, &type)) {}
TypeInTheMaking::~TypeInTheMaking() { inTheMaking = outer_; }

void bindBaseAttributes(const NodeType& nodeType) {
    MPxNode::state = handleOn(nodeType.find("nodeState"));
    MPxNode::caching = handleOn(nodeType.find("caching"));
    MPxNode::message = handleOn(nodeType.find("message"));
    MPxNode::isHistoricallyInteresting = handleOn(nodeType.find("isHistoricallyInteresting"));
}

namespace {

/// Types that are registered no more, for the nodes that still refer to them.
std::vector<std::unique_ptr<NodeType>>& retired() {
    static std::vector<std::unique_ptr<NodeType>> types;
    return types;
}

/// Makes the plug-in's object and the node around it; null when the creator fails.
Ref<graph::Node> build(const NodeType& type, const PluginBase& base, void* (*creator)()) {
    std::unique_ptr<MPxNode> body;
    guarded([&] { return "the creator of node type '" + type.name() + "'"; },
            [&] { body.reset(static_cast<MPxNode*>(creator())); });
    if (!body) return {};
    return base.wrap(type, std::move(body));
}

} // namespace

Outcome registerPluginType(graph::TypeRegistry& types, const PluginTypeRequest& request) {
    const std::string what = "Cannot register node type '" + request.name + "': ";
    if (request.name.empty() || !request.creator || !request.initialize) {
        return Outcome::fail(what + "a name, a creator and an initialize function are needed.");
    }
    const NodeType* there = types.find(request.name);
    // A file may have brought nodes of the type before its plug-in came: these stay as they are.
    const bool isPlaceholder = there && there->apiType() == MFn::kUnknown;
    if (there && !isPlaceholder) return Outcome::fail(what + "the name is taken.");
    if (const NodeType* other = types.findId(request.typeId); other && request.typeId != 0) {
        return Outcome::fail(what + "its id is that of '" + other->name() + "'.");
    }
    const PluginBase* base = pluginBase(request.kind);
    const NodeType* baseType = base ? types.find(base->baseType) : nullptr;
    if (!baseType) {
        return Outcome::fail(what + "nodes of kind " + std::to_string(request.kind) + " are not supported.");
    }
    auto type = std::make_unique<NodeType>(
        request.name, base->apiType, baseType,
        [base, creator = request.creator](const NodeType& self) { return build(self, *base, creator); });
    type->typeId = request.typeId;
    type->classification = request.classification;
    type->plugin = request.plugin;
    for (const auto kind : base->alsoKinds)
        type->alsoKind(kind);
    if (const NodeType* node = types.find("node")) bindBaseAttributes(*node);
    if (base->bind) base->bind(*baseType);
    MStatus status = MStatus::kFailure;
    {
        const TypeInTheMaking making(*type);
        guarded([&] { return "initialize of node type '" + request.name + "'"; },
                [&] { status = request.initialize(); });
    }
    if (!status) return Outcome::fail(what + "its initialize function failed.");
    if (isPlaceholder) retired().push_back(types.remove(request.name));
    return types.add(std::move(type));
}

Outcome deregisterPluginType(graph::TypeRegistry& types, unsigned typeId, graph::Scene* scene) {
    const NodeType* type = types.findId(typeId);
    if (!type || type->plugin.empty()) {
        return Outcome::fail("No plug-in's node type has the id " + std::to_string(typeId) + ".");
    }
    if (scene) {
        for (graph::Node* node : scene->nodes()) {
            if (&node->type() != type) continue;
            if (auto* host = dynamic_cast<PluginHost*>(node)) host->orphan();
        }
    }
    retired().push_back(types.remove(type->name()));
    return {};
}

} // namespace vesk::api
