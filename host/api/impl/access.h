#pragma once
// From the API's handles to what stands behind them, and back.

#include "host/api/impl/result.h"
#include "host/core/outcome.h"
#include "host/graph/dag.h"
#include "host/graph/plug.h"
#include "host/graph/scene.h"

#include <maya/MObject.h>
#include <maya/MPlug.h>
#include <maya/MStatus.h>
#include <maya/MString.h>

#include <string_view>
#include <typeinfo>

namespace vesk::api {

/// Null when the handle holds anything but an attribute.
inline graph::Attribute* attributeOf(const MObject& handle) {
    Object* object = handle.hostObject();
    if (!object) return nullptr;
    const Object& what = *object;
    return typeid(what) == typeid(graph::Attribute) ? static_cast<graph::Attribute*>(object) : nullptr;
}

/// Null when the handle holds anything but a node that is alive.
inline graph::Node* nodeOf(const MObject& handle) {
    auto* node = dynamic_cast<graph::Node*>(handle.hostObject());
    return node && node->isAlive() ? node : nullptr;
}

inline graph::DagNode* dagNodeOf(const MObject& handle) {
    auto* node = dynamic_cast<graph::DagNode*>(handle.hostObject());
    return node && node->isAlive() ? node : nullptr;
}

inline Data* dataOf(const MObject& handle) { return dynamic_cast<Data*>(handle.hostObject()); }

inline MObject handleOn(const Object* object, bool readOnly = false) {
    return MObject(const_cast<Object*>(object), readOnly);
}

inline std::string_view view(const MString& string) { return {string.asChar(), string.length()}; }
inline MString toMString(std::string_view string) { return vesk::toMString(std::string(string)); }

inline MStatus toStatus(const Outcome& outcome, MStatus::MStatusCode failure = MStatus::kFailure) {
    return outcome ? MStatus() : MStatus(failure);
}

/// Whether the node's data block has one cell for this attribute: it is the node's and stands below no multi.
inline bool hasOneCell(const graph::Node& node, const graph::Attribute& attribute) {
    return attribute.index >= 0 && node.attributeAt(attribute.index) == &attribute &&
           attribute.multiDepth() == (attribute.array ? 1 : 0);
}

} // namespace vesk::api
