#include <maya/MDGModifier.h>

#include "host/api/impl/access.h"
#include "host/api/impl/create_node.h"
#include "host/graph/evaluate.h"

#include <maya/MFnDependencyNode.h>
#include <maya/MGlobal.h>

#include <utility>

using vesk::api::toStatus;

MDGModifier::~MDGModifier() = default;

MStatus MDGModifier::note(bool isValid, std::function<MStatus()> change) {
    if (!isValid) return MStatus::kInvalidParameter;
    changes_.push_back(std::move(change));
    return {};
}

MObject MDGModifier::createNode(const MString& typeName, MStatus* status) {
    return vesk::api::createNode(vesk::api::typeNamed(typeName), MString(), nullptr, status);
}
MObject MDGModifier::createNode(const MTypeId& typeId, MStatus* status) {
    return vesk::api::createNode(vesk::api::typeWithId(typeId.id()), MString(), nullptr, status);
}

MStatus MDGModifier::deleteNode(const MObject& node) {
    return note(vesk::api::nodeOf(node),
                [doomed = MObject(node)]() mutable { return MGlobal::deleteNode(doomed); });
}

MStatus MDGModifier::renameNode(const MObject& node, const MString& name) {
    return note(vesk::api::nodeOf(node) && name.length() > 0, [node, name] {
        MStatus status;
        MFnDependencyNode(node).setName(name, &status);
        return status;
    });
}

MStatus MDGModifier::connect(const MPlug& source, const MPlug& destination) {
    return note(!source.isNull() && !destination.isNull(), [source, destination]() -> MStatus {
        auto* from = source.hostPlug().cell();
        auto* to = destination.hostPlug().cell();
        return from && to ? toStatus(vesk::graph::connect(*from, *to)) : MStatus(MStatus::kFailure);
    });
}

MStatus MDGModifier::connect(const MObject& sourceNode, const MObject& sourceAttribute,
                             const MObject& destinationNode, const MObject& destinationAttribute) {
    return connect(MPlug(sourceNode, sourceAttribute), MPlug(destinationNode, destinationAttribute));
}

MStatus MDGModifier::disconnect(const MPlug& source, const MPlug& destination) {
    return note(!source.isNull() && !destination.isNull(), [source, destination]() -> MStatus {
        auto* from = source.hostPlug().cellIfThere();
        auto* to = destination.hostPlug().cellIfThere();
        return from && to ? toStatus(vesk::graph::disconnect(*from, *to)) : MStatus(MStatus::kFailure);
    });
}

MStatus MDGModifier::addAttribute(const MObject& node, const MObject& attribute) {
    return note(vesk::api::nodeOf(node) && vesk::api::attributeOf(attribute),
                [node, attribute] { return MFnDependencyNode(node).addAttribute(attribute); });
}

MStatus MDGModifier::removeAttribute(const MObject& node, const MObject& attribute) {
    return note(vesk::api::nodeOf(node) && vesk::api::attributeOf(attribute),
                [node, attribute] { return MFnDependencyNode(node).removeAttribute(attribute); });
}

MStatus MDGModifier::commandToExecute(const MString& command) {
    return note(true, [command] { return MGlobal::executeCommand(command); });
}

MStatus MDGModifier::doIt() {
    const auto changes = std::exchange(changes_, {});
    for (const auto& change : changes) {
        if (const MStatus done = change(); !done) return done;
    }
    return {};
}

MStatus MDGModifier::undoIt() { return MStatus::kNotImplemented; }
