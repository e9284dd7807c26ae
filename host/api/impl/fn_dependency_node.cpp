#include <maya/MFnDependencyNode.h>

#include "host/api/impl/access.h"
#include "host/api/impl/create_node.h"
#include "host/api/impl/plugin_node.h"

#include <maya/MPlugArray.h>

using vesk::api::answer;
using vesk::api::attributeOf;
using vesk::api::handleOn;
using vesk::api::toStatus;
using vesk::api::view;
using vesk::graph::Cell;
using vesk::graph::Node;

Node* MFnDependencyNode::hostNode() const { return vesk::api::nodeOf(object_); }

void MFnDependencyNode::take(const MObject& object, MStatus* status) {
    vesk::api::report(status, setObject(object));
}

bool MFnDependencyNode::accepts(const vesk::Object& object) const {
    return MFnBase::accepts(object) && object.isAlive();
}

namespace {

/// Asks the node, or answers `kInvalidParameter` when there is none.
template <class Question>
auto ask(Node* node, MStatus* status, Question question) {
    using Answer = decltype(question(*node));
    if (!node) return answer(status, Answer(), MStatus::kInvalidParameter);
    return answer(status, question(*node));
}

} // namespace

MObject MFnDependencyNode::create(const MString& typeName, MStatus* status) {
    return create(typeName, MString(), status);
}
MObject MFnDependencyNode::create(const MString& typeName, const MString& name, MStatus* status) {
    return object_ = vesk::api::createNode(vesk::api::typeNamed(typeName), name, nullptr, status);
}
MObject MFnDependencyNode::create(const MTypeId& typeId, MStatus* status) {
    return create(typeId, MString(), status);
}
MObject MFnDependencyNode::create(const MTypeId& typeId, const MString& name, MStatus* status) {
    return object_ = vesk::api::createNode(vesk::api::typeWithId(typeId.id()), name, nullptr, status);
}

MString MFnDependencyNode::name(MStatus* status) const {
    return ask(hostNode(), status, [](const Node& node) { return vesk::toMString(node.name()); });
}

MString MFnDependencyNode::setName(const MString& name, MStatus* status) {
    Node* node = hostNode();
    if (!node) return answer(status, MString(), MStatus::kInvalidParameter);
    const auto renamed = node->scene()->rename(*node, view(name));
    return answer(status, vesk::toMString(node->name()), toStatus(renamed));
}

bool MFnDependencyNode::hasUniqueName(MStatus* status) const {
    return ask(hostNode(), status,
               [](const Node& node) { return node.scene()->named(node.name()).size() == 1; });
}
MString MFnDependencyNode::typeName(MStatus* status) const {
    return ask(hostNode(), status, [](const Node& node) { return vesk::toMString(node.type().name()); });
}
MTypeId MFnDependencyNode::typeId(MStatus* status) const {
    return ask(hostNode(), status, [](const Node& node) { return MTypeId(node.type().typeId); });
}
MString MFnDependencyNode::classification(const MString& typeName) {
    const auto* type = vesk::api::typeNamed(typeName);
    return type ? vesk::toMString(type->classification) : MString();
}
MString MFnDependencyNode::pluginName(MStatus* status) const {
    return ask(hostNode(), status, [](const Node& node) { return vesk::toMString(node.type().plugin); });
}
MPxNode* MFnDependencyNode::userNode(MStatus* status) const {
    return ask(hostNode(), status, [](Node& node) {
        const auto* host = dynamic_cast<vesk::api::PluginHost*>(&node);
        return host ? host->body() : nullptr;
    });
}

// --- attributes and plugs
// --------------------------------------------------------------------------------------------

unsigned int MFnDependencyNode::attributeCount(MStatus* status) const {
    return ask(hostNode(), status,
               [](const Node& node) { return static_cast<unsigned int>(node.attributeCount()); });
}

MObject MFnDependencyNode::attribute(unsigned int index, MStatus* status) const {
    const Node* node = hostNode();
    if (!node) return answer(status, MObject(), MStatus::kInvalidParameter);
    const auto& fixed = node->type().attributes();
    if (index < fixed.size()) return answer(status, handleOn(fixed[index].get()));
    const auto& own = node->dynamicAttributes();
    const std::size_t place = index - fixed.size();
    if (place < own.size()) return answer(status, handleOn(own[place].get()));
    return answer(status, MObject(), MStatus::kInvalidParameter);
}

MObject MFnDependencyNode::attribute(const MString& name, MStatus* status) const {
    const Node* node = hostNode();
    const auto* found = node ? node->findAttribute(view(name)) : nullptr;
    return answer(status, handleOn(found), found ? MStatus::kSuccess : MStatus::kInvalidParameter);
}

bool MFnDependencyNode::hasAttribute(const MString& name, MStatus* status) const {
    return ask(hostNode(), status,
               [&](const Node& node) { return node.findAttribute(view(name)) != nullptr; });
}

MPlug MFnDependencyNode::findPlug(const MString& name, MStatus* status) const {
    Node* node = hostNode();
    if (!node) return answer(status, MPlug(), MStatus::kInvalidParameter);
    const auto range = vesk::graph::findPlug(*node, view(name));
    const bool isOne = range.error.empty() && range.first < 0 && range.childPath.empty();
    if (!isOne) return answer(status, MPlug(), MStatus::kInvalidParameter);
    return answer(status, MPlug(range.plug));
}

MPlug MFnDependencyNode::findPlug(const MString& name, bool, MStatus* status) const {
    return findPlug(name, status);
}

MPlug MFnDependencyNode::findPlug(const MObject& attribute, MStatus* status) const {
    const MPlug plug(object_, attribute);
    return answer(status, plug, plug.isNull() ? MStatus::kInvalidParameter : MStatus::kSuccess);
}

MPlug MFnDependencyNode::findPlug(const MObject& attribute, bool, MStatus* status) const {
    return findPlug(attribute, status);
}

MStatus MFnDependencyNode::addAttribute(const MObject& attribute) {
    Node* node = hostNode();
    auto* attr = attributeOf(attribute);
    if (!node || !attr) return MStatus::kInvalidParameter;
    if (attr->index >= 0 || attr->parent) return MStatus::kFailure;
    return toStatus(node->addDynamicAttribute(vesk::graph::AttrRef(attr)));
}

MStatus MFnDependencyNode::removeAttribute(const MObject& attribute) {
    Node* node = hostNode();
    auto* attr = attributeOf(attribute);
    if (!node || !attr || attr->index < 0 || node->attributeAt(attr->index) != attr)
        return MStatus::kInvalidParameter;
    return toStatus(node->removeDynamicAttribute(*attr));
}

MStatus MFnDependencyNode::getConnections(MPlugArray& plugs) const {
    plugs.clear();
    Node* node = hostNode();
    if (!node) return MStatus::kInvalidParameter;
    node->eachCell([&](Cell& cell) {
        if (cell.source || !cell.destinations.empty()) plugs.append(MPlug(cell));
    });
    return plugs.length() > 0 ? MStatus::kSuccess : MStatus::kFailure;
}

MString MFnDependencyNode::plugsAlias(const MPlug& plug, MStatus* status) const {
    const auto host = plug.hostPlug();
    if (host.isNull() || host.node.get() != hostNode())
        return answer(status, MString(), MStatus::kInvalidParameter);
    return answer(status,
                  vesk::toMString(host.node->alias(*host.attr, host.isElement() ? host.indices[0] : -1)));
}

bool MFnDependencyNode::findAlias(const MString& alias, MObject& attribute, MStatus* status) const {
    return ask(hostNode(), status, [&](const Node& node) {
        for (const auto& one : node.aliases) {
            if (one.name != view(alias)) continue;
            attribute = handleOn(one.attribute.get());
            return true;
        }
        return false;
    });
}

// --- flags
// -----------------------------------------------------------------------------------------------------------

bool MFnDependencyNode::isDefaultNode(MStatus* status) const {
    return ask(hostNode(), status, [](const Node& node) { return node.isDefault; });
}
bool MFnDependencyNode::isFromReferencedFile(MStatus* status) const {
    return ask(hostNode(), status, [](const Node& node) { return node.isReferenced; });
}
bool MFnDependencyNode::isLocked(MStatus* status) const {
    return ask(hostNode(), status, [](const Node& node) { return node.isLocked; });
}
MStatus MFnDependencyNode::setLocked(bool locked) {
    Node* node = hostNode();
    if (!node) return MStatus::kInvalidParameter;
    node->isLocked = locked;
    return {};
}
