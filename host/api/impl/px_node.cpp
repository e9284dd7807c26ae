#include <maya/MPxNode.h>

#include "host/api/impl/access.h"
#include "host/api/impl/plugin_node.h"
#include "host/api/impl/plugin_type.h"
#include "host/core/log.h"

#include <maya/MPxLocatorNode.h>

using vesk::api::attributeOf;
using vesk::api::handleOn;

MObject MPxNode::state;
MObject MPxNode::caching;
MObject MPxNode::message;
MObject MPxNode::isHistoricallyInteresting;

MPxNode::~MPxNode() = default;

MStatus MPxNode::compute(const MPlug&, MDataBlock&) { return MStatus::kUnknownParameter; }
MStatus MPxNode::setDependentsDirty(const MPlug&, MPlugArray&) { return {}; }
MStatus MPxNode::connectionMade(const MPlug&, const MPlug&, bool) { return MStatus::kUnknownParameter; }
MStatus MPxNode::connectionBroken(const MPlug&, const MPlug&, bool) { return MStatus::kUnknownParameter; }

MObject MPxNode::thisMObject() const { return host_ ? handleOn(&host_->hostNode()) : MObject(); }

MString MPxNode::name() const { return host_ ? vesk::toMString(host_->hostNode().name()) : MString(); }

MString MPxNode::typeName() const {
    return host_ ? vesk::toMString(host_->hostNode().type().name()) : MString();
}

MTypeId MPxNode::typeId() const { return host_ ? MTypeId(host_->hostNode().type().typeId) : MTypeId(); }

MDataBlock MPxNode::forceCache(MDGContext&) { return MDataBlock(host_ ? &host_->hostNode() : nullptr); }

MStatus MPxNode::addAttribute(const MObject& attribute) {
    auto* type = vesk::api::typeInTheMaking();
    auto* attr = attributeOf(attribute);
    if (!attr) return MStatus::kInvalidParameter;
    if (!type) return MStatus::kFailure;
    const auto outcome = type->add(vesk::graph::AttrRef(attr));
    if (!outcome) vesk::log().error(outcome.error);
    return vesk::api::toStatus(outcome);
}

MStatus MPxNode::attributeAffects(const MObject& whenChanges, const MObject& isAffected) {
    auto* type = vesk::api::typeInTheMaking();
    auto* in = attributeOf(whenChanges);
    auto* out = attributeOf(isAffected);
    if (!in || !out) return MStatus::kInvalidParameter;
    if (!type) return MStatus::kFailure;
    return vesk::api::toStatus(type->affects(in, out));
}

MObject MPxLocatorNode::localPosition, MPxLocatorNode::localPositionX, MPxLocatorNode::localPositionY,
    MPxLocatorNode::localPositionZ;
MObject MPxLocatorNode::worldPosition, MPxLocatorNode::worldPositionX, MPxLocatorNode::worldPositionY,
    MPxLocatorNode::worldPositionZ;
MObject MPxLocatorNode::localScale, MPxLocatorNode::localScaleX, MPxLocatorNode::localScaleY,
    MPxLocatorNode::localScaleZ;
MObject MPxLocatorNode::matrix, MPxLocatorNode::inverseMatrix, MPxLocatorNode::worldMatrix,
    MPxLocatorNode::worldInverseMatrix, MPxLocatorNode::parentMatrix, MPxLocatorNode::parentInverseMatrix;
MObject MPxLocatorNode::visibility, MPxLocatorNode::intermediateObject;
