#pragma once
// The node types of the plug-in, for sweeps over all of them.

#include "host/graph/attribute.h"
#include "host/graph/node_type.h"
#include "host/session/session.h"

#include <vector>

namespace vesk::tests {

inline constexpr const char* kNames[] = {
#define NODE(name, typeId, kind, classification, state) #name,
#include "plugin/nodes.def"
#undef NODE
};

/// Those that are there, in the order of the table.
inline std::vector<const graph::NodeType*> registeredTypes(Session& session) {
    std::vector<const graph::NodeType*> found;
    for (const char* name : kNames) {
        if (const auto* type = session.types().find(name)) found.push_back(type);
    }
    return found;
}

/// Attributes of the type itself, in the order of declaration.
inline std::vector<const graph::Attribute*> ownAttributes(const graph::NodeType& type) {
    std::vector<const graph::Attribute*> attributes;
    for (std::size_t i = type.base() ? type.base()->attributes().size() : 0; i < type.attributes().size();
         ++i)
        attributes.push_back(type.attributes()[i].get());
    return attributes;
}

} // namespace vesk::tests
